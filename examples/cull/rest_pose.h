#pragma once

#include "clip/clip.h"
#include "math/vector3.h"

#include <vector>

namespace cull
{

/// Where the joints are in the rest pose, in which nothing is turned: the offsets, added up from the root.
std::vector<C3DVector3Tpl<double>> ComputeRestPose(clip::Skeleton const & skeleton);

/// The longest side of the figure in its rest pose, the measure of all that is "little" or "near" on it.
double ComputeFigureSize(clip::Skeleton const & skeleton);

} // namespace cull
