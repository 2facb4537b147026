#pragma once

/// \file
/// A stream on a file.

#include "math/api.h"
#include "math/platform/stream.h"

#include <cstdio>
#include <memory>

/// A stream on a file of the file system. Made by `Open` with one reference, which the creator gives back with
/// `Release`; the last `Release` closes the file.
///
/// - The stream keeps no buffer of its own: a `Write` that reports success has reached the operating system, and a full
///   disk is reported by the `Write` that meets it (`E_FAIL`, with the bytes that still found room in `done`).
/// - `Read` at or near the end gives what there is and returns `S_FALSE`.
/// - `Seek` beyond the end is allowed: nothing can be read there, and a `Write` there fills the gap with zeros.
///   A position before the start or above what the file system can address, and an unknown origin, give `E_INVALIDARG`.
/// - A null buffer gives `E_POINTER`, unless the count is 0.
/// - Writing to a file opened for reading, and reading a folder, give `E_FAIL`.
class MATH_API CFileStream final : public math::detail::CountedStream
{
public:
    /// What a file is opened for.
    enum class Access
    {
        Read,   ///< Read a file that exists.
        Create, ///< Read and write a file that is made, or emptied.
        Update  ///< Read and write a file that exists, with its content.
    };

    /// Opens the file and stands at its start.
    /// \param path the file's path in the encoding of the file system
    /// \param access what it is opened for
    /// \return the stream; null when the file cannot be opened so, when `path` is null and when memory is short
    static CFileStream * Open(char const * path, Access access);

    long Read(void * target, unsigned long count, unsigned long * done) override;
    long Write(void const * source, unsigned long count, unsigned long * done) override;
    long Seek(long long distance, unsigned long origin, unsigned long long * position) override;

private:
    struct Close
    {
        void operator()(std::FILE * file) const;
    };
    using File = std::unique_ptr<std::FILE, Close>;

    enum class Transfer
    {
        None,
        Read,
        Write
    };

    explicit CFileStream(File file);
    ~CFileStream() override = default;

    bool Prepare(Transfer transfer);
    bool FindOrigin(unsigned long origin, unsigned long long & base);

    File m_file;
    Transfer m_last{Transfer::None};
};
