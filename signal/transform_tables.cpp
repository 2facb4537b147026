#include "signal/transform_tables.h"

#include <cmath>
#include <cstdio>
#include <new>

namespace math::detail
{

namespace
{

template <typename Value>
bool Allocate(unsigned int count, Value *& table)
{
    if (count == 0)
    {
        return true;
    }
    table = new (std::nothrow) Value[count];
    if (table == nullptr)
    {
        return false;
    }
    table[0] = 0;
    return true;
}

} // namespace

unsigned int CountIndexes(unsigned int half)
{
    return static_cast<unsigned int>(std::ceil(std::sqrt(static_cast<double>(half) + 1) + 2));
}

bool AllocateTables(char const * owner, unsigned int workCount, unsigned int indexCount, unsigned int scratchCount,
                    double *& work, int *& index, double *& scratch)
{
    bool const hasWork = Allocate(workCount, work);
    bool const hasIndex = Allocate(indexCount, index);
    bool const hasScratch = Allocate(scratchCount, scratch);
    if (hasWork && hasIndex && hasScratch)
    {
        index[1] = 0;
        return true;
    }
    std::fprintf(stderr, "Out of memory in %s...", owner);
    return false;
}

} // namespace math::detail
