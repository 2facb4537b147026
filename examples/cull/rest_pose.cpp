#include "cull/rest_pose.h"

#include "clip/skeleton.h"

#include <algorithm>
#include <cstddef>

namespace cull
{

std::vector<C3DVector3Tpl<double>> ComputeRestPose(clip::Skeleton const & skeleton)
{
    std::vector<C3DVector3Tpl<double>> positions;
    positions.reserve(skeleton.joints.size());
    for (clip::Joint const & joint : skeleton.joints)
    {
        C3DVector3Tpl<double> position = joint.offset;
        if (joint.parent != clip::k_NoParent)
        {
            position.Add(positions[static_cast<std::size_t>(joint.parent)]);
        }
        positions.push_back(position);
    }
    return positions;
}

double ComputeFigureSize(clip::Skeleton const & skeleton)
{
    clip::Bounds const bounds = clip::ComputeBounds(ComputeRestPose(skeleton));
    C3DVector3Tpl<double> sides;
    sides.Sub(bounds.largest, bounds.smallest);
    return std::max({sides.X, sides.Y, sides.Z});
}

} // namespace cull
