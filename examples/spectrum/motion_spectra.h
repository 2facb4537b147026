#pragma once

#include "clip/clip.h"
#include "clip/program.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace spectrum
{

/// The amplitudes of a motion over frequency.
struct Curve
{
    std::size_t joint;
    std::array<std::vector<double>, 3> axes; ///< X, Y, Z
    std::vector<double> all;                 ///< the root of the sum of the three squares
};

/// The spectra of a clip. All curves have as many points; the first is at 0.
struct MotionSpectra
{
    double frequencyStep;     ///< hertz from one point to the next
    std::size_t firstTold;    ///< the first point at one cycle per clip or more
    Curve angles;             ///< of one joint, in degrees
    std::vector<Curve> paths; ///< of each end of the skeleton in world space, in the unit of the clip's offsets
};

/// A clip or a joint of which there is no spectrum; `what()` says why.
class SpectrumError : public clip::RequestError
{
public:
    using clip::RequestError::RequestError;
};

/// The joint whose angles take the longest way over the clip, whole turns by which they jump not counted; the first
/// where none turns.
std::size_t FindMostTurning(clip::Clip const & motion);

/// The first joint of that name. \throws SpectrumError where there is none, or none but an end site
std::size_t FindJoint(clip::Skeleton const & skeleton, std::string const & name);

/// The path of an end is taken coordinate by coordinate: a foot that swings to and fro once a second is at 1 hertz, and
/// not at 2, as its speed is.
/// \throws SpectrumError where the frames follow each other so fast that their frequencies are no numbers
MotionSpectra ComputeSpectra(clip::Clip const & motion, std::size_t joint);

} // namespace spectrum
