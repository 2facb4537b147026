#include "clip/input.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <fstream>
#include <system_error>

namespace clip
{

namespace
{

[[noreturn]] void FailToRead(std::string const & name, int error)
{
    throw std::system_error(error != 0 ? error : EIO, std::generic_category(), "cannot read " + name);
}

} // namespace

std::string ReadAll(std::istream & stream, std::string const & name)
{
    std::string text;
    std::array<char, 65536> block;
    errno = 0;
    do
    {
        stream.read(block.data(), block.size());
        text.append(block.data(), static_cast<std::size_t>(stream.gcount()));
    } while (stream);
    if (stream.bad())
    {
        FailToRead(name, errno);
    }
    return text;
}

std::string ReadAll(std::filesystem::path const & file)
{
    // A folder opens like a file and only fails, silently, on the first read.
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored))
    {
        FailToRead(file.string(), EISDIR);
    }
    errno = 0;
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
    {
        FailToRead(file.string(), errno);
    }
    return ReadAll(stream, file.string());
}

} // namespace clip
