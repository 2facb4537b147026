#include "support/allocation_faults.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace
{

struct Ledger
{
    bool open = false;
    long refused_number = -1;
    std::size_t most_bytes = static_cast<std::size_t>(-1);
    long requests = 0;
    long outstanding = 0;
    std::size_t largest = 0;
    std::size_t bytes = 0;
};

// Constant-initialised: the operators below run before any constructor does.
constinit Ledger ledger;

void * Allocate(std::size_t size)
{
    if (ledger.open)
    {
        ledger.largest = std::max(ledger.largest, size);
        ledger.bytes += size;
        if (ledger.requests++ == ledger.refused_number || size > ledger.most_bytes)
        {
            return nullptr;
        }
        ++ledger.outstanding;
    }
    return std::malloc(std::max<std::size_t>(size, 1));
}

void * AllocateOrThrow(std::size_t size)
{
    void * const block = Allocate(size);
    if (block == nullptr)
    {
        throw std::bad_alloc();
    }
    return block;
}

void Free(void * block)
{
    if (ledger.open && block != nullptr)
    {
        --ledger.outstanding;
    }
    std::free(block);
}

} // namespace

namespace test_support
{

AllocationFaults::AllocationFaults() : AllocationFaults(-1, static_cast<std::size_t>(-1)) {}

AllocationFaults::AllocationFaults(long refusedNumber, std::size_t mostBytes)
{
    ledger = Ledger{.open = true, .refused_number = refusedNumber, .most_bytes = mostBytes};
}

AllocationFaults::~AllocationFaults()
{
    ledger.open = false;
}

long AllocationFaults::GetRequests() const
{
    return ledger.requests;
}

long AllocationFaults::GetOutstanding() const
{
    return ledger.outstanding;
}

std::size_t AllocationFaults::GetLargestRequest() const
{
    return ledger.largest;
}

std::size_t AllocationFaults::GetRequestedBytes() const
{
    return ledger.bytes;
}

} // namespace test_support

void * operator new(std::size_t size)
{
    return AllocateOrThrow(size);
}

void * operator new[](std::size_t size)
{
    return AllocateOrThrow(size);
}

void * operator new(std::size_t size, std::nothrow_t const & /*unused*/) noexcept
{
    return Allocate(size);
}

void * operator new[](std::size_t size, std::nothrow_t const & /*unused*/) noexcept
{
    return Allocate(size);
}

void operator delete(void * block) noexcept
{
    Free(block);
}

void operator delete[](void * block) noexcept
{
    Free(block);
}

void operator delete(void * block, std::size_t /*unused*/) noexcept
{
    Free(block);
}

void operator delete[](void * block, std::size_t /*unused*/) noexcept
{
    Free(block);
}

void operator delete(void * block, std::nothrow_t const & /*unused*/) noexcept
{
    Free(block);
}

void operator delete[](void * block, std::nothrow_t const & /*unused*/) noexcept
{
    Free(block);
}
