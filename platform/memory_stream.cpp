#include "math/platform/memory_stream.h"

#include "math/platform/result.h"
#include "platform/seek.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <optional>

namespace
{

/// No object is larger, so no stream on memory is either.
constexpr unsigned long long largest_size = PTRDIFF_MAX;

} // namespace

CMemoryStream * CMemoryStream::Create()
{
    return new (std::nothrow) CMemoryStream;
}

CMemoryStream * CMemoryStream::Create(void const * bytes, std::size_t count)
{
    if ((bytes == nullptr && count != 0) || count > largest_size)
    {
        return nullptr;
    }
    CMemoryStream * const stream = Create();
    if (stream == nullptr || count == 0)
    {
        return stream;
    }
    auto const * const first = static_cast<unsigned char const *>(bytes);
    try
    {
        stream->m_bytes.assign(first, first + count);
    }
    catch (std::bad_alloc const &)
    {
        stream->Release();
        return nullptr;
    }
    return stream;
}

long CMemoryStream::Read(void * target, unsigned long count, unsigned long * done)
{
    unsigned long transferred = 0;
    if (target != nullptr && m_position < m_bytes.size())
    {
        transferred = static_cast<unsigned long>(std::min<unsigned long long>(count, m_bytes.size() - m_position));
        std::memcpy(target, m_bytes.data() + m_position, transferred);
        m_position += transferred;
    }
    if (done != nullptr)
    {
        *done = transferred;
    }
    if (target == nullptr && count != 0)
    {
        return E_POINTER;
    }
    return transferred == count ? S_OK : S_FALSE;
}

long CMemoryStream::Write(void const * source, unsigned long count, unsigned long * done)
{
    if (done != nullptr)
    {
        *done = 0;
    }
    if (count == 0)
    {
        return S_OK;
    }
    if (source == nullptr)
    {
        return E_POINTER;
    }
    if (m_position > largest_size || count > largest_size - m_position)
    {
        return E_OUTOFMEMORY;
    }
    auto const end = static_cast<std::size_t>(m_position + count);
    std::vector<unsigned char> outgrown; // lives until the copy is done: the source may lie in it
    try
    {
        if (end > m_bytes.capacity())
        {
            outgrown.reserve(std::max(end, m_bytes.size() + m_bytes.size() / 2));
            outgrown.insert(outgrown.end(), m_bytes.begin(), m_bytes.end());
            outgrown.swap(m_bytes);
        }
        m_bytes.resize(std::max(end, m_bytes.size()));
    }
    catch (std::bad_alloc const &)
    {
        return E_OUTOFMEMORY;
    }
    std::memmove(m_bytes.data() + m_position, source, count);
    m_position = end;
    if (done != nullptr)
    {
        *done = count;
    }
    return S_OK;
}

long CMemoryStream::Seek(long long distance, unsigned long origin, unsigned long long * position)
{
    unsigned long long base = 0;
    switch (origin)
    {
    case STREAM_SEEK_SET:
        break;
    case STREAM_SEEK_CUR:
        base = m_position;
        break;
    case STREAM_SEEK_END:
        base = m_bytes.size();
        break;
    default:
        return E_INVALIDARG;
    }
    std::optional<unsigned long long> const target = math::detail::GetSeekTarget(base, distance);
    if (!target)
    {
        return E_INVALIDARG;
    }
    m_position = *target;
    if (position != nullptr)
    {
        *position = m_position;
    }
    return S_OK;
}

std::span<unsigned char const> CMemoryStream::GetBytes() const
{
    return m_bytes;
}
