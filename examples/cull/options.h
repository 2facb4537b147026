#pragma once

#include "clip/arguments.h"
#include "cull/camera.h"
#include "cull/camera_motion.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string_view>

namespace cull
{

using clip::UsageError;

/// Where the floor lies: at a height, or where every foot comes down to.
struct FloorRequest
{
    std::optional<double> height; ///< empty for a height from the clip
};

/// What the command line asks for.
struct Options
{
    bool isHelpWanted = false; ///< with this, nothing else counts
    std::filesystem::path clip;
    std::filesystem::path outputFolder = "cull-out";
    CameraRequest camera;
    std::optional<Shake> shake;        ///< empty for a still camera
    std::optional<FloorRequest> floor; ///< empty for none
};

/// What `--help` prints.
extern std::string_view const k_Usage;

/// Reads the arguments behind the program's name. \throws UsageError
Options ParseOptions(std::span<char const * const> arguments);

} // namespace cull
