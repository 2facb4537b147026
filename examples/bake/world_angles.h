#pragma once

#include "clip/joint_rotation.h"
#include "clip/pose.h"
#include "math/vector3.h"

#include <cstddef>
#include <vector>

namespace bake
{

/// The angles of joints in world space, frame by frame, in the order of the joints.
struct WorldAngles
{
    std::vector<std::size_t> joints; ///< all but the end sites
    std::vector<C3DVector3Tpl<double>> degrees;
};

/// In an order of rotations; each frame's angles are the nearest to those of the frame before, and the first frame's
/// the nearest to zero.
WorldAngles ComputeWorldAngles(clip::Skeleton const & skeleton, clip::PoseTrack const & poses,
                               clip::Composition composition, clip::ChannelOrder const & order);

} // namespace bake
