#pragma once

/// \file
/// Contact arrays whose memory runs short on order. The queries that a test binary compiles in together with
/// task_memory_faults.cpp get their arrays from an allocator that obeys this object; those of the library do not, since
/// it binds its own functions when it is linked.

#include <cstddef>

namespace test_support
{

/// While it lives, allocations for a caller are counted and, if asked for, refused. One at a time.
class TaskMemoryFaults
{
public:
    enum class Answer
    {
        Serve,
        Refuse
    };

    explicit TaskMemoryFaults(Answer answer);
    TaskMemoryFaults(TaskMemoryFaults const &) = delete;
    TaskMemoryFaults & operator=(TaskMemoryFaults const &) = delete;
    ~TaskMemoryFaults();

    /// Allocations asked for since the start, refused ones included.
    long GetRequests() const;

    /// The bytes asked for last.
    std::size_t GetLastSize() const;
};

/// Whether a number in such an array still is what the allocator filled the array with.
bool IsAsAllocated(double value);

} // namespace test_support
