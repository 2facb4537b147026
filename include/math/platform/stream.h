#pragma once

/// \file
/// The byte stream through which objects are saved and loaded.
/// Ready streams stand in memory_stream.h and file_stream.h.

#include "math/api.h"
#include "math/platform/unknown.h"

/// {0000000C-0000-0000-C000-000000000046}
inline constexpr _GUID IID_IStream{0x0000000C, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

inline constexpr unsigned long STREAM_SEEK_SET = 0; ///< Seek from the start.
inline constexpr unsigned long STREAM_SEEK_CUR = 1; ///< Seek from the position.
inline constexpr unsigned long STREAM_SEEK_END = 2; ///< Seek from the end.

/// A stream of bytes with one position, shared by reading and writing.
class MATH_API IStream : public IUnknown
{
public:
    /// Reads from the position on, and moves it behind what was read.
    /// \param target room for `count` bytes
    /// \param count bytes wanted
    /// \param done receives the bytes read, also on failure; may be null
    /// \return `S_OK`; at the end of the stream a success with fewer bytes, or none; negative on failure
    virtual long Read(void * target, unsigned long count, unsigned long * done) = 0;

    /// Writes at the position, over what stands there and beyond the end, and moves it behind what was written.
    /// \param source `count` bytes
    /// \param count bytes to write
    /// \param done receives the bytes written, also on failure; may be null
    /// \return `S_OK`; negative on failure, where some bytes may have been written
    virtual long Write(void const * source, unsigned long count, unsigned long * done) = 0;

    /// Moves the position.
    /// \param distance bytes to move, negative towards the start
    /// \param origin `STREAM_SEEK_SET`, `STREAM_SEEK_CUR` or `STREAM_SEEK_END`
    /// \param position receives the new position, counted from the start; may be null
    /// \return `S_OK`; negative on failure, with the position where it was
    virtual long Seek(long long distance, unsigned long origin, unsigned long long * position) = 0;

protected:
    ~IStream() = default;
};

namespace math::detail
{

/// The reference count that the ready streams share. It starts at 1, for the creator, and is neither atomic nor locked:
/// a stream belongs to one thread at a time.
class MATH_API CountedStream : public IStream
{
public:
    CountedStream(CountedStream const &) = delete;
    CountedStream & operator=(CountedStream const &) = delete;

    /// Answers to `IID_IUnknown` and `IID_IStream`, with the same pointer.
    long QueryInterface(_GUID const & iid, void ** out) override;
    unsigned long AddRef() override;
    unsigned long Release() override;

protected:
    CountedStream() = default;
    virtual ~CountedStream() = default;

private:
    unsigned long m_references{1};
};

} // namespace math::detail
