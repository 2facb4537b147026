#pragma once

#include "clip/clip.h"
#include "clip/pose.h"
#include "math/vector3.h"

#include <array>
#include <cstddef>
#include <vector>

namespace cull
{

/// A foot: its joints, and where the heel lies. Joints alone lie on a line, and nothing can stand on that: the heel
/// gives the sole its width.
struct Foot
{
    std::size_t ankle;
    std::size_t toe;
    std::array<C3DVector3Tpl<double>, 2> heel; ///< its two points, from the ankle and in the ankle's frame
};

/// The feet of a skeleton, in its order. They are told by the rest pose:
///
/// - A toe is an end within a twentieth of the figure's height above the lowest end.
/// - From the toe a foot reaches up one joint at least, and on as long as the bone above is more level than steep and
///   the joint that it leads to lies in the lowest fifth of the figure; that is the ankle. Of several toes on one ankle
///   the one farthest from it counts.
/// - Its length is the distance from ankle to toe. The heel's points lie a fifth of it to either side, level and square
///   to the foot, beneath the ankle at the height of the toe. Where foot is more steep than level they lie to either
///   side of the ankle itself: dropped, they would meet the toe.
///
/// A toe without a parent, or one that is where its ankle is, has no foot.
std::vector<Foot> FindFeet(clip::Skeleton const & skeleton);

/// The triangle of a sole: the toe, then the two points of the heel.
using Sole = std::array<C3DVector3Tpl<double>, 3>;

/// A sole in all frames, in world space.
using SoleMotion = std::vector<Sole>;

/// The soles of all feet, in the order of the feet.
std::vector<SoleMotion> ComputeSoles(std::vector<Foot> const & feet, clip::Skeleton const & skeleton,
                                     clip::PoseTrack const & poses);

} // namespace cull
