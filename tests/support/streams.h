#pragma once

/// \file
/// Streams for tests: on memory, and with faults to order.

#include "math/platform/memory_stream.h"
#include "math/platform/result.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <span>
#include <vector>

namespace test_support
{

struct ReleaseReference
{
    void operator()(IUnknown * object) const { object->Release(); }
};

/// Holds one reference and gives it back.
template <typename Stream>
using StreamPointer = std::unique_ptr<Stream, ReleaseReference>;

using Bytes = std::vector<unsigned char>;

inline StreamPointer<CMemoryStream> MakeMemoryStream(std::span<unsigned char const> bytes = {})
{
    return StreamPointer<CMemoryStream>(CMemoryStream::Create(bytes.data(), bytes.size()));
}

inline Bytes GetBytes(CMemoryStream const & stream)
{
    return {stream.GetBytes().begin(), stream.GetBytes().end()};
}

inline unsigned long long GetPosition(IStream & stream)
{
    unsigned long long position = 0;
    stream.Seek(0, STREAM_SEEK_CUR, &position);
    return position;
}

/// References that are held, the caller's included.
inline unsigned long CountReferences(IUnknown & object)
{
    object.AddRef();
    return object.Release();
}

/// What goes wrong on a stream. By default nothing does.
struct StreamFaults
{
    static constexpr unsigned long long never = std::numeric_limits<unsigned long long>::max();

    unsigned long long writable = never; ///< Bytes that can be written before writing fails, overwriting included.
    unsigned long long readable = never; ///< Bytes that can be read before reading fails.
    unsigned long long seeks = never;    ///< Calls of `Seek` that succeed before seeking fails.
    unsigned long long largest = never;  ///< Most bytes that one `Read` gives.
    long code = E_FAIL;                  ///< What a failing call returns; not negative for a short transfer.
};

/// A stream on memory with faults. The bytes before a fault are transferred.
class FaultyStream final : public math::detail::CountedStream
{
public:
    FaultyStream(StreamPointer<CMemoryStream> memory, StreamFaults const & stream_faults)
        : faults(stream_faults), m_memory(std::move(memory))
    {
    }

    long Read(void * target, unsigned long count, unsigned long * done) override
    {
        unsigned long const most = Clamp(count, faults.largest);
        unsigned long const granted = Clamp(most, faults.readable);
        unsigned long transferred = 0;
        long const result = m_memory->Read(target, granted, &transferred);
        faults.readable -= faults.readable == StreamFaults::never ? 0 : transferred;
        Report(done, transferred);
        return granted < most ? faults.code : result;
    }

    long Write(void const * source, unsigned long count, unsigned long * done) override
    {
        unsigned long const granted = Clamp(count, faults.writable);
        unsigned long transferred = 0;
        long const result = m_memory->Write(source, granted, &transferred);
        faults.writable -= faults.writable == StreamFaults::never ? 0 : transferred;
        Report(done, transferred);
        return granted < count ? faults.code : result;
    }

    long Seek(long long distance, unsigned long origin, unsigned long long * position) override
    {
        if (faults.seeks == 0)
        {
            return faults.code < 0 ? faults.code : E_FAIL;
        }
        faults.seeks -= faults.seeks == StreamFaults::never ? 0 : 1;
        return m_memory->Seek(distance, origin, position);
    }

    CMemoryStream & GetMemory() { return *m_memory; }

    StreamFaults faults; ///< What is left before the faults; may be changed, for instance to lift them.

private:
    static unsigned long Clamp(unsigned long count, unsigned long long most)
    {
        return static_cast<unsigned long>(std::min<unsigned long long>(count, most));
    }

    static void Report(unsigned long * done, unsigned long transferred)
    {
        if (done != nullptr)
        {
            *done = transferred;
        }
    }

    StreamPointer<CMemoryStream> m_memory;
};

inline StreamPointer<FaultyStream> MakeFaultyStream(StreamFaults const & faults,
                                                    std::span<unsigned char const> bytes = {})
{
    return StreamPointer<FaultyStream>(new FaultyStream(MakeMemoryStream(bytes), faults));
}

/// An empty stream on which `count` bytes can be written; the next one fails with `code`.
inline StreamPointer<FaultyStream> MakeStreamFailingOnWrite(unsigned long long count, long code = E_FAIL)
{
    return MakeFaultyStream({.writable = count, .code = code});
}

/// A stream of these bytes, of which `count` can be read; the next one fails with `code`.
inline StreamPointer<FaultyStream> MakeStreamFailingOnRead(std::span<unsigned char const> bytes,
                                                           unsigned long long count, long code = E_FAIL)
{
    return MakeFaultyStream({.readable = count, .code = code}, bytes);
}

/// A stream of these bytes that gives at most `largest` of them in one `Read`, and reports success.
inline StreamPointer<FaultyStream> MakeStreamWithShortReads(std::span<unsigned char const> bytes,
                                                            unsigned long long largest)
{
    return MakeFaultyStream({.largest = largest}, bytes);
}

} // namespace test_support
