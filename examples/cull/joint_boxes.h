#pragma once

#include "clip/clip.h"
#include "clip/skeleton.h"
#include "math/vector3.h"

#include <array>
#include <cstddef>
#include <vector>

namespace cull
{

/// The minimum and the maximum of a box along the world axes, in a row as C3DViewVolume takes them.
using JointBox = std::array<C3DVector3Tpl<double>, 2>;

/// The boxes of all joints in all frames. End sites have none of their own: they lie in the boxes of their joints.
struct JointBoxes
{
    std::vector<std::size_t> joints; ///< those of the skeleton that have a box, in its order
    std::vector<JointBox> boxes;     ///< one for each of them, frame after frame

    std::size_t FrameCount() const { return boxes.size() / joints.size(); }
    /// \param place of the joint among `joints`
    JointBox const & At(std::size_t frame, std::size_t place) const { return boxes[frame * joints.size() + place]; }
};

/// Bounds every joint together with its children, in every frame, and adds a margin on every side.
JointBoxes ComputeJointBoxes(clip::Skeleton const & skeleton, clip::WorldPositions const & positions, double margin);

/// The smallest box that holds all boxes.
clip::Bounds ComputeBounds(JointBoxes const & boxes);

} // namespace cull
