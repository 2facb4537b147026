#include "math/platform/file_stream.h"

#include "math/platform/result.h"
#include "platform/seek.h"

#include <algorithm>
#include <new>
#include <optional>
#include <utility>

namespace
{

char const * GetMode(CFileStream::Access access)
{
    switch (access)
    {
    case CFileStream::Access::Read:
        return "rb";
    case CFileStream::Access::Create:
        return "w+b";
    case CFileStream::Access::Update:
        return "r+b";
    }
    return nullptr;
}

} // namespace

void CFileStream::Close::operator()(std::FILE * file) const
{
    // Nothing is buffered, so closing has nothing left to write that could fail.
    static_cast<void>(std::fclose(file));
}

CFileStream::CFileStream(File file) : m_file(std::move(file)) {}

CFileStream * CFileStream::Open(char const * path, Access access)
{
    char const * const mode = GetMode(access);
    if (path == nullptr || mode == nullptr)
    {
        return nullptr;
    }
    File file(std::fopen(path, mode));
    if (file == nullptr || std::setvbuf(file.get(), nullptr, _IONBF, 0) != 0)
    {
        return nullptr;
    }
    return new (std::nothrow) CFileStream(std::move(file));
}

/// Between reading and writing the standard asks for a change of position.
bool CFileStream::Prepare(Transfer transfer)
{
    std::clearerr(m_file.get());
    if (m_last != transfer && m_last != Transfer::None && std::fseek(m_file.get(), 0, SEEK_CUR) != 0)
    {
        return false;
    }
    m_last = transfer;
    return true;
}

long CFileStream::Read(void * target, unsigned long count, unsigned long * done)
{
    if (done != nullptr)
    {
        *done = 0;
    }
    if (count == 0)
    {
        return S_OK;
    }
    if (target == nullptr)
    {
        return E_POINTER;
    }
    if (!Prepare(Transfer::Read))
    {
        return E_FAIL;
    }
    // Operating systems refuse a count beyond the address space outright, even where the file is short.
    constexpr unsigned long largest_block = 1UL << 16;
    unsigned long total = 0;
    unsigned long block = 0;
    unsigned long got = 0;
    do
    {
        block = std::min(count - total, largest_block);
        got = static_cast<unsigned long>(
            std::fread(static_cast<unsigned char *>(target) + total, 1, block, m_file.get()));
        total += got;
    } while (got == block && total < count);
    if (done != nullptr)
    {
        *done = total;
    }
    if (std::ferror(m_file.get()) != 0)
    {
        return E_FAIL;
    }
    return total == count ? S_OK : S_FALSE;
}

long CFileStream::Write(void const * source, unsigned long count, unsigned long * done)
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
    if (!Prepare(Transfer::Write))
    {
        return E_FAIL;
    }
    auto const written = static_cast<unsigned long>(std::fwrite(source, 1, count, m_file.get()));
    if (done != nullptr)
    {
        *done = written;
    }
    return written == count ? S_OK : E_FAIL;
}

/// Gives the position that the origin stands for. The end is found by going there.
bool CFileStream::FindOrigin(unsigned long origin, unsigned long long & base)
{
    base = 0;
    if (origin == STREAM_SEEK_SET)
    {
        return true;
    }
    if (origin == STREAM_SEEK_END && std::fseek(m_file.get(), 0, SEEK_END) != 0)
    {
        return false;
    }
    long const position = std::ftell(m_file.get());
    base = static_cast<unsigned long long>(position);
    return position >= 0;
}

long CFileStream::Seek(long long distance, unsigned long origin, unsigned long long * position)
{
    if (origin > STREAM_SEEK_END)
    {
        return E_INVALIDARG;
    }
    long const former = std::ftell(m_file.get());
    unsigned long long base = 0;
    if (former < 0 || !FindOrigin(origin, base))
    {
        return E_FAIL;
    }
    std::optional<unsigned long long> const target = math::detail::GetSeekTarget(base, distance);
    m_last = Transfer::None;
    if (!target || !std::in_range<long>(*target) || std::fseek(m_file.get(), static_cast<long>(*target), SEEK_SET) != 0)
    {
        static_cast<void>(std::fseek(m_file.get(), former, SEEK_SET));
        return E_INVALIDARG;
    }
    if (position != nullptr)
    {
        *position = *target;
    }
    return S_OK;
}
