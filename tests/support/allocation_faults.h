#pragma once

/// \file
/// Memory that runs short on order. A test binary that compiles allocation_faults.cpp gets its allocations, and those
/// of the library under test, from operators that obey these objects.

#include <cstddef>

namespace test_support
{

/// While it lives, allocations are counted and, if asked for, refused. One at a time; the code in its scope should be
/// the code under test alone, since expectations allocate too.
class AllocationFaults
{
public:
    /// Counts and refuses nothing.
    AllocationFaults();

    /// Refuses the allocation of this number, counted from 0, and no other.
    static AllocationFaults RefuseOne(long number) { return AllocationFaults(number, static_cast<std::size_t>(-1)); }

    /// Refuses every allocation of more than so many bytes.
    static AllocationFaults RefuseAbove(std::size_t bytes) { return AllocationFaults(-1, bytes); }

    AllocationFaults(AllocationFaults const &) = delete;
    AllocationFaults & operator=(AllocationFaults const &) = delete;
    ~AllocationFaults();

    /// Allocations asked for since the start, refused ones included.
    long GetRequests() const;

    /// Blocks allocated since the start less blocks freed since then.
    long GetOutstanding() const;

    /// The most bytes asked for at once since the start.
    std::size_t GetLargestRequest() const;

    /// The bytes of all requests since the start, refused ones included.
    std::size_t GetRequestedBytes() const;

private:
    AllocationFaults(long refusedNumber, std::size_t mostBytes);
};

} // namespace test_support
