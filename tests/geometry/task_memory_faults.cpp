#include "geometry/task_memory_faults.h"

#include "math/platform/task_memory.h"

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace
{

struct Ledger
{
    bool refuses = false;
    long requests = 0;
    std::size_t lastSize = 0;
};

Ledger ledger;

constexpr unsigned char k_Filling = 0xA5;

} // namespace

namespace test_support
{

TaskMemoryFaults::TaskMemoryFaults(Answer answer)
{
    ledger = Ledger{.refuses = answer == Answer::Refuse};
}

TaskMemoryFaults::~TaskMemoryFaults()
{
    ledger = Ledger{};
}

// Members, so that they can be read while one lives and no longer.
long TaskMemoryFaults::GetRequests() const // NOLINT(readability-convert-member-functions-to-static)
{
    return ledger.requests;
}

std::size_t TaskMemoryFaults::GetLastSize() const // NOLINT(readability-convert-member-functions-to-static)
{
    return ledger.lastSize;
}

bool IsAsAllocated(double value)
{
    return std::bit_cast<std::uint64_t>(value) == k_Filling * 0x0101010101010101U;
}

} // namespace test_support

// Takes the place of the library's function for what the binary compiles in. The library frees with std::free.
void * CoTaskMemAlloc(std::size_t size)
{
    ++ledger.requests;
    ledger.lastSize = size;
    void * const block = ledger.refuses ? nullptr : std::malloc(size);
    return block == nullptr ? nullptr : std::memset(block, k_Filling, size);
}
