#pragma once

/// \file
/// The memory that the kernels take from the C library, on order. The binary that compiles malloc_faults.cpp is linked
/// with `--wrap=malloc`.

#include <cstddef>

namespace test_support
{

/// While it lives, blocks of exactly this size are counted, and refused if asked for. One at a time.
class MallocFaults
{
public:
    enum class Answer
    {
        Grant,
        Refuse
    };

    MallocFaults(std::size_t bytes, Answer answer);
    MallocFaults(MallocFaults const &) = delete;
    MallocFaults & operator=(MallocFaults const &) = delete;
    ~MallocFaults();

    /// Requests of that size since the start.
    long GetRequests() const;
};

} // namespace test_support
