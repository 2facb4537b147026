#pragma once

#include "clip/joint_rotation.h"

#include <filesystem>
#include <optional>
#include <span>
#include <stdexcept>
#include <string_view>

namespace bake
{

/// What the command line asks for.
struct Options
{
    bool isHelpWanted = false; ///< with this, nothing else counts
    std::filesystem::path clip;
    std::filesystem::path outputFolder = "bake-out";
    std::optional<clip::ChannelOrder> order; ///< in which to write the rotations; without it they are not written
};

/// A command line that cannot be followed; `what()` says why.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// What `--help` prints.
extern std::string_view const k_Usage;

/// Reads the arguments behind the program's name. `--out DIR` and `--out=DIR` are the same, likewise `--order`, and
/// what follows `--` is no option.
/// \throws UsageError
Options ParseOptions(std::span<char const * const> arguments);

} // namespace bake
