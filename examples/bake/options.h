#pragma once

#include "clip/arguments.h"
#include "clip/joint_rotation.h"
#include "clip/pose.h"
#include "math/vector3.h"

#include <filesystem>
#include <optional>
#include <span>
#include <string_view>

namespace bake
{

/// What the command line asks for.
struct Options
{
    bool isHelpWanted = false; ///< with this, nothing else counts
    std::filesystem::path clip;
    std::filesystem::path outputFolder = "bake-out";
    std::optional<clip::ChannelOrder> order;      ///< in which to write the rotations; without it they are not written
    std::optional<C3DVector3Tpl<double>> scale;   ///< of the roots; without it they keep theirs
    std::optional<clip::Composition> composition; ///< without it by component, or as poses that are loaded have it
    std::optional<double> smoothing;              ///< hertz, below which motion stays; without it all does
    std::filesystem::path blendClip;              ///< empty for none
    double blendShare = 0.5;                      ///< of the clip blended in, 0 to 1
    std::filesystem::path poseSource;             ///< empty for the poses of the clip
    std::filesystem::path poseTarget;             ///< empty for none
};

using clip::UsageError;

/// What `--help` prints.
extern std::string_view const k_Usage;

/// Reads the arguments behind the program's name. `--out DIR` and `--out=DIR` are the same, likewise every option with
/// a value, and what follows `--` is no option. \throws UsageError
Options ParseOptions(std::span<char const * const> arguments);

} // namespace bake
