#pragma once

#include "clip/arguments.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace spectrum
{

using clip::UsageError;

/// What the command line asks for.
struct Options
{
    bool isHelpWanted = false; ///< with this, nothing else counts
    std::filesystem::path clip;
    std::filesystem::path outputFolder = "spectrum-out";
    std::optional<std::string> joint; ///< empty for the one that moves most
    bool isNoiseWanted = false;
    unsigned long seed = 1; ///< of the noise
};

/// What `--help` prints.
extern std::string_view const k_Usage;

/// Reads the arguments behind the program's name. \throws UsageError
Options ParseOptions(std::span<char const * const> arguments);

} // namespace spectrum
