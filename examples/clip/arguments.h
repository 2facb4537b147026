#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace clip
{

/// A command line that cannot be followed; `what()` says why.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The arguments behind a program's name: options, and one clip. `--out DIR` and `--out=DIR` are the same, likewise
/// every option with a value, and what follows `--` is no option.
class Arguments
{
public:
    /// The arguments must outlive the object.
    explicit Arguments(std::span<char const * const> arguments) : m_Arguments(arguments) {}

    /// Reads from the first argument to the last, or to the one that asks for help.
    /// \param readOption takes the name of an option, without its value, and reads the value with those below; it gives
    /// false for an option that it does not know
    /// \return whether help is wanted; otherwise there is a clip
    /// \throws UsageError
    bool Read(std::function<bool(std::string_view)> const & readOption);

    /// The clip, once all is read.
    std::filesystem::path const & Clip() const { return m_Clip; }

    /// The value of the option that is being read: what stands behind its equals sign, or else the next argument.
    std::string_view Value();
    /// The same as a path, which may not be empty. \param wanted what it is to be, in messages
    std::filesystem::path Path(std::string const & wanted);
    /// The same as the seed of a random sequence: a whole number of 32 bits.
    unsigned long Seed();

private:
    bool ReadOption(std::function<bool(std::string_view)> const & readOption);
    void ReadClip(std::string_view argument);

    std::span<char const * const> m_Arguments;
    std::size_t m_Next = 0;
    bool m_AreOptionsOver = false;
    std::string_view m_Option; ///< the argument of the option that is being read
    std::filesystem::path m_Clip;
};

} // namespace clip
