#pragma once

/// \file
/// A stream on memory.

#include "math/api.h"
#include "math/platform/stream.h"

#include <cstddef>
#include <span>
#include <vector>

/// A growing stream on memory. Made by `Create` with one reference, which the creator gives back with `Release`.
///
/// - `Read` at or near the end gives what there is and returns `S_FALSE`.
/// - `Seek` beyond the end is allowed: nothing can be read there, and a `Write` there fills the gap with zeros.
///   A position before the start or above the largest `long long`, and an unknown origin, give `E_INVALIDARG`.
/// - `Write` is all or nothing: `E_OUTOFMEMORY` leaves bytes and position as they were. Its source may lie among the
///   bytes of the stream.
/// - A null buffer gives `E_POINTER`, unless the count is 0.
class MATH_API CMemoryStream final : public math::detail::CountedStream
{
public:
    /// An empty stream; null when memory is short.
    static CMemoryStream * Create();

    /// A stream that starts with a copy of `count` bytes, positioned at the first; null when memory is short, or when
    /// `bytes` is null and `count` is not 0.
    static CMemoryStream * Create(void const * bytes, std::size_t count);

    long Read(void * target, unsigned long count, unsigned long * done) override;
    long Write(void const * source, unsigned long count, unsigned long * done) override;
    long Seek(long long distance, unsigned long origin, unsigned long long * position) override;

    /// All bytes of the stream, whatever the position. Valid until the next `Write`.
    std::span<unsigned char const> GetBytes() const;

private:
    CMemoryStream() = default;
    ~CMemoryStream() override = default;

    std::vector<unsigned char> m_bytes;
    unsigned long long m_position{0};
};
