#include "math/platform/task_memory.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

void * CoTaskMemAlloc(std::size_t size)
{
    // Sizes that no object can have are refused here, since some allocators end the process over them.
    if (size > PTRDIFF_MAX)
    {
        return nullptr;
    }
    return std::malloc(std::max<std::size_t>(size, 1));
}

void CoTaskMemFree(void * block)
{
    std::free(block);
}
