#include "math/platform/stream_helper.h"

#include "math/platform/result.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace
{

constexpr unsigned long long no_end = std::numeric_limits<unsigned long long>::max();
constexpr std::uint32_t unfinished_length = 0xFFFFFFFFU;
constexpr unsigned long length_size = 4;
constexpr unsigned long header_size = 12;

template <std::size_t Size>
struct UnsignedOfSize;
template <>
struct UnsignedOfSize<1>
{
    using Type = std::uint8_t;
};
template <>
struct UnsignedOfSize<4>
{
    using Type = std::uint32_t;
};
template <>
struct UnsignedOfSize<8>
{
    using Type = std::uint64_t;
};

template <typename Value>
std::array<unsigned char, sizeof(Value)> ToLittleEndian(Value value)
{
    using Bits = typename UnsignedOfSize<sizeof(Value)>::Type;
    auto bits = std::uint64_t{std::bit_cast<Bits>(value)};
    std::array<unsigned char, sizeof(Value)> bytes{};
    for (unsigned char & byte : bytes)
    {
        byte = static_cast<unsigned char>(bits & 0xFFU);
        bits >>= 8;
    }
    return bytes;
}

template <typename Value>
Value FromLittleEndian(std::array<unsigned char, sizeof(Value)> const & bytes)
{
    using Bits = typename UnsignedOfSize<sizeof(Value)>::Type;
    std::uint64_t bits = 0;
    for (std::size_t i = bytes.size(); i-- > 0;)
    {
        bits = bits << 8 | bytes[i];
    }
    return std::bit_cast<Value>(static_cast<Bits>(bits));
}

std::uint32_t LowBits(unsigned long value)
{
    return static_cast<std::uint32_t>(value & 0xFFFFFFFFUL);
}

} // namespace

/// A chunk that is open in this helper. `end` is known only of a chunk being read.
struct CKVStreamHelper::OpenChunk
{
    bool writing;
    unsigned long long begin;
    unsigned long long end;
    std::unique_ptr<OpenChunk> enclosing;

    bool Contains(unsigned long long position) const { return position >= begin && position <= end; }
};

CKVStreamHelper::CKVStreamHelper(IStream * stream) : m_stream(stream)
{
    if (m_stream != nullptr)
    {
        m_stream->AddRef();
    }
}

CKVStreamHelper::~CKVStreamHelper()
{
    // One by one: left to itself, a long list would be destroyed recursively.
    while (m_innermost)
    {
        m_innermost = std::move(m_innermost->enclosing);
    }
    if (m_stream != nullptr)
    {
        m_stream->Release();
    }
}

template <typename Value>
long CKVStreamHelper::PutScalar(Value value)
{
    auto const bytes = ToLittleEndian(value);
    return WriteBytes(bytes.data(), bytes.size());
}

template <typename Value>
long CKVStreamHelper::GetScalar(Value * value)
{
    if (m_stream == nullptr)
    {
        return E_FAIL;
    }
    if (value == nullptr)
    {
        return E_POINTER;
    }
    std::array<unsigned char, sizeof(Value)> bytes{};
    long const result = ReadBytes(bytes.data(), bytes.size());
    if (result >= 0)
    {
        *value = FromLittleEndian<Value>(bytes);
    }
    return result;
}

long CKVStreamHelper::PutUInt8(unsigned char value)
{
    return PutScalar(value);
}
long CKVStreamHelper::GetUInt8(unsigned char * value)
{
    return GetScalar(value);
}
long CKVStreamHelper::PutInt8(char value)
{
    return PutScalar(value);
}
long CKVStreamHelper::GetInt8(char * value)
{
    return GetScalar(value);
}

long CKVStreamHelper::PutBool(int value)
{
    return PutBool(value != 0);
}
long CKVStreamHelper::PutBool(bool value)
{
    return PutScalar(static_cast<unsigned char>(value ? 1 : 0));
}

long CKVStreamHelper::GetBool(int * value)
{
    unsigned char byte = 0;
    long const result = GetScalar(value == nullptr ? nullptr : &byte);
    if (result >= 0)
    {
        *value = byte != 0 ? 1 : 0;
    }
    return result;
}

long CKVStreamHelper::PutFloat(float value)
{
    return PutScalar(value);
}
long CKVStreamHelper::GetFloat(float * value)
{
    return GetScalar(value);
}
long CKVStreamHelper::PutDouble(double value)
{
    return PutScalar(value);
}
long CKVStreamHelper::GetDouble(double * value)
{
    return GetScalar(value);
}

long CKVStreamHelper::PutByteArray(char const * bytes, unsigned long count)
{
    if (m_stream == nullptr)
    {
        return E_FAIL;
    }
    if (count == 0)
    {
        return S_OK;
    }
    return bytes == nullptr ? E_POINTER : WriteBytes(bytes, count);
}

long CKVStreamHelper::GetByteArray(char * bytes, unsigned long count)
{
    if (m_stream == nullptr)
    {
        return E_FAIL;
    }
    if (count == 0)
    {
        return S_OK;
    }
    if (bytes == nullptr)
    {
        return E_POINTER;
    }
    // A read can fail half-way, and the target must not see it: what is read arrives in a buffer first. That one is
    // only allocated for bytes that are there.
    std::array<char, 256> few{};
    std::unique_ptr<char[]> many;
    if (count > few.size())
    {
        unsigned long long position = 0;
        unsigned long long end = 0;
        long result = GetPosition(position);
        if (result >= 0)
        {
            result = GetReadableEnd(end);
        }
        if (result < 0)
        {
            return result;
        }
        if (position > end || count > end - position)
        {
            return E_FAIL;
        }
        if (count <= PTRDIFF_MAX) // a stream can claim to hold more than memory could
        {
            many.reset(new (std::nothrow) char[count]);
        }
        if (many == nullptr)
        {
            return E_OUTOFMEMORY;
        }
    }
    char * const buffer = many != nullptr ? many.get() : few.data();
    long const result = ReadBytes(buffer, count);
    if (result >= 0)
    {
        std::memcpy(bytes, buffer, count);
    }
    return result;
}

long CKVStreamHelper::GetPos(unsigned long * position)
{
    if (m_stream == nullptr)
    {
        return E_FAIL;
    }
    if (position == nullptr)
    {
        return E_POINTER;
    }
    unsigned long long current = 0;
    long const result = GetPosition(current);
    if (result < 0)
    {
        return result;
    }
    if (!std::in_range<unsigned long>(current))
    {
        return E_FAIL;
    }
    *position = static_cast<unsigned long>(current);
    return S_OK;
}

long CKVStreamHelper::MovePos(STMHELPERDIR direction, unsigned long distance)
{
    if (m_stream == nullptr)
    {
        return E_FAIL;
    }
    if (direction != STMHELPERDIR_FORWARD && direction != STMHELPERDIR_BACK)
    {
        return E_INVALIDARG;
    }
    unsigned long long position = 0;
    long const result = GetPosition(position);
    if (result < 0)
    {
        return result;
    }
    bool const back = direction == STMHELPERDIR_BACK;
    if (distance > (back ? position : no_end - position))
    {
        return E_INVALIDARG;
    }
    unsigned long long const target = back ? position - distance : position + distance;
    OpenChunk const * const bounds = GetInnermostRead();
    if (bounds != nullptr && !bounds->Contains(target))
    {
        return E_FAIL;
    }
    return SetPosition(target);
}

long CKVStreamHelper::ChunkWriteOpen(unsigned long tag, unsigned long version)
{
    if (m_stream == nullptr)
    {
        return E_FAIL;
    }
    unsigned long long start = 0;
    long result = GetPosition(start);
    if (result < 0)
    {
        return result;
    }
    std::unique_ptr<OpenChunk> chunk(new (std::nothrow) OpenChunk{true, start + header_size, no_end, nullptr});
    if (chunk == nullptr)
    {
        return E_OUTOFMEMORY;
    }
    result = WriteHeader(tag, version);
    if (result < 0)
    {
        static_cast<void>(SetPosition(start));
        return result;
    }
    chunk->enclosing = std::move(m_innermost);
    m_innermost = std::move(chunk);
    return S_OK;
}

long CKVStreamHelper::ChunkWriteClose()
{
    std::unique_ptr<OpenChunk> const chunk = TakeInnermost(true);
    return chunk != nullptr ? PatchLength(*chunk) : E_FAIL;
}

long CKVStreamHelper::ChunkReadOpen(unsigned long tag, unsigned long * version)
{
    if (m_stream == nullptr)
    {
        return E_FAIL;
    }
    if (version == nullptr)
    {
        return E_POINTER;
    }
    unsigned long long start = 0;
    long result = GetPosition(start);
    if (result < 0)
    {
        return result;
    }
    std::unique_ptr<OpenChunk> chunk(new (std::nothrow) OpenChunk{false, start, start, nullptr});
    if (chunk == nullptr)
    {
        return E_OUTOFMEMORY;
    }
    unsigned long found_version = 0;
    result = ReadHeader(tag, found_version, *chunk);
    if (result < 0)
    {
        static_cast<void>(SetPosition(start));
        return result;
    }
    chunk->enclosing = std::move(m_innermost);
    m_innermost = std::move(chunk);
    *version = found_version;
    return S_OK;
}

long CKVStreamHelper::ChunkReadClose()
{
    std::unique_ptr<OpenChunk> const chunk = TakeInnermost(false);
    if (chunk == nullptr)
    {
        return E_FAIL;
    }
    unsigned long long position = 0;
    long const known = GetPosition(position);
    if (known < 0)
    {
        return known;
    }
    long const moved = SetPosition(chunk->end);
    if (moved < 0)
    {
        return moved;
    }
    return chunk->Contains(position) ? S_OK : E_FAIL;
}

long CKVStreamHelper::WriteBytes(void const * source, unsigned long count)
{
    if (m_stream == nullptr)
    {
        return E_FAIL;
    }
    unsigned long done = 0;
    long const result = m_stream->Write(source, count, &done);
    if (result < 0)
    {
        return result;
    }
    return done == count ? S_OK : E_FAIL;
}

long CKVStreamHelper::ReadBytes(void * target, unsigned long count)
{
    long result = CheckBounds(count);
    if (result < 0)
    {
        return result;
    }
    unsigned long done = 0;
    result = m_stream->Read(target, count, &done);
    if (result < 0)
    {
        return result;
    }
    if (done == count)
    {
        return S_OK;
    }
    if (done < count)
    {
        unsigned long long position = 0;
        static_cast<void>(m_stream->Seek(-static_cast<long long>(done), STREAM_SEEK_CUR, &position));
    }
    return E_FAIL;
}

/// `S_OK` when the innermost chunk being read, if any, holds the next `count` bytes.
long CKVStreamHelper::CheckBounds(unsigned long count)
{
    OpenChunk const * const bounds = GetInnermostRead();
    if (bounds == nullptr)
    {
        return S_OK;
    }
    unsigned long long position = 0;
    long const result = GetPosition(position);
    if (result < 0)
    {
        return result;
    }
    bool const holds = bounds->Contains(position) && count <= bounds->end - position;
    return holds ? S_OK : E_FAIL;
}

long CKVStreamHelper::GetPosition(unsigned long long & position)
{
    long const result = m_stream->Seek(0, STREAM_SEEK_CUR, &position);
    return result < 0 ? result : S_OK;
}

long CKVStreamHelper::SetPosition(unsigned long long position)
{
    if (!std::in_range<long long>(position))
    {
        return E_INVALIDARG;
    }
    unsigned long long reached = 0;
    long const result = m_stream->Seek(static_cast<long long>(position), STREAM_SEEK_SET, &reached);
    return result < 0 ? result : S_OK;
}

/// Gives the end of what can be read: that of the stream, or of the innermost chunk being read where that comes first.
/// The position stays.
long CKVStreamHelper::GetReadableEnd(unsigned long long & end)
{
    unsigned long long position = 0;
    long result = GetPosition(position);
    if (result < 0)
    {
        return result;
    }
    result = m_stream->Seek(0, STREAM_SEEK_END, &end);
    if (result < 0)
    {
        return result;
    }
    OpenChunk const * const bounds = GetInnermostRead();
    if (bounds != nullptr && bounds->end < end)
    {
        end = bounds->end;
    }
    return SetPosition(position);
}

long CKVStreamHelper::WriteHeader(unsigned long tag, unsigned long version)
{
    for (std::uint32_t const word : {LowBits(tag), LowBits(version), unfinished_length})
    {
        long const result = PutScalar(word);
        if (result < 0)
        {
            return result;
        }
    }
    return S_OK;
}

/// Reads a header at the position, and on success leaves the position behind it and the content's bounds in `chunk`.
long CKVStreamHelper::ReadHeader(unsigned long tag, unsigned long & version, OpenChunk & chunk)
{
    std::array<std::uint32_t, 3> words{};
    for (std::uint32_t & word : words)
    {
        long const result = GetScalar(&word);
        if (result < 0)
        {
            return result;
        }
    }
    auto const [found_tag, found_version, length] = words;
    if (found_tag != LowBits(tag) || length == unfinished_length)
    {
        return E_FAIL;
    }
    unsigned long long readable_end = 0;
    long result = GetPosition(chunk.begin);
    if (result >= 0)
    {
        result = GetReadableEnd(readable_end);
    }
    if (result < 0)
    {
        return result;
    }
    if (chunk.begin > readable_end || length > readable_end - chunk.begin)
    {
        return E_FAIL;
    }
    chunk.end = chunk.begin + length;
    version = found_version;
    return S_OK;
}

/// Writes the length of a chunk that ends at the position, and leaves the position there.
long CKVStreamHelper::PatchLength(OpenChunk const & chunk)
{
    unsigned long long end = 0;
    long result = GetPosition(end);
    if (result < 0)
    {
        return result;
    }
    if (end < chunk.begin || end - chunk.begin >= unfinished_length)
    {
        return E_FAIL;
    }
    result = SetPosition(chunk.begin - length_size);
    if (result < 0)
    {
        return result;
    }
    long const written = PutScalar(static_cast<std::uint32_t>(end - chunk.begin));
    long const moved = SetPosition(end);
    return written < 0 ? written : moved;
}

/// The innermost chunk being read, which bounds what can be read; null where there is none.
CKVStreamHelper::OpenChunk const * CKVStreamHelper::GetInnermostRead() const
{
    OpenChunk const * chunk = m_innermost.get();
    while (chunk != nullptr && chunk->writing)
    {
        chunk = chunk->enclosing.get();
    }
    return chunk;
}

/// Closes the innermost chunk if it is of the kind asked for, and hands it over; null otherwise.
std::unique_ptr<CKVStreamHelper::OpenChunk> CKVStreamHelper::TakeInnermost(bool writing)
{
    if (m_innermost == nullptr || m_innermost->writing != writing)
    {
        return nullptr;
    }
    std::unique_ptr<OpenChunk> chunk = std::move(m_innermost);
    m_innermost = std::move(chunk->enclosing);
    return chunk;
}
