#pragma once

#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>

namespace clip
{

/// An input that is wrong, though it could be read; `what()` begins with the name of its file.
class InputError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// What was asked for cannot be done with this clip.
class RequestError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Runs a program, which writes its summary to `output`.
/// \param name its name, for messages
/// \return its exit status: 0 done, 1 a file could not be read or written, 2 an input or the command line is wrong
int RunProgram(std::string const & name, std::ostream & output, std::ostream & errors,
               std::function<void()> const & program);

} // namespace clip
