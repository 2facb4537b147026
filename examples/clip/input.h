#pragma once

#include <filesystem>
#include <istream>
#include <string>

namespace clip
{

/// The bytes of a stream to its end.
/// \param name names the stream in messages
/// \throws std::system_error when the stream fails
std::string ReadAll(std::istream & stream, std::string const & name);

/// The bytes of a file.
/// \throws std::system_error when it cannot be read
std::string ReadAll(std::filesystem::path const & file);

} // namespace clip
