#include "cull/joint_boxes.h"

#include "math/bounding_box.h"

#include <span>

namespace cull
{

namespace
{

using Vector = C3DVector3Tpl<double>;

/// What a box of one frame holds: its joint, and the children.
std::vector<std::vector<std::size_t>> ListMembers(clip::Skeleton const & skeleton)
{
    std::vector<std::vector<std::size_t>> members(skeleton.joints.size());
    for (std::size_t i = 0; i < members.size(); ++i)
    {
        members[i].push_back(i);
        if (int const parent = skeleton.joints[i].parent; parent != clip::k_NoParent)
        {
            members[static_cast<std::size_t>(parent)].push_back(i);
        }
    }
    return members;
}

JointBox BoundMembers(std::vector<std::size_t> const & members, std::span<Vector const> positions, double margin)
{
    C3DBBox box(positions[members.front()], positions[members.front()]);
    for (std::size_t const member : members)
    {
        box.MergeVector(positions[member]);
    }
    // A box grows by half at each end.
    box.Inflate(Vector(2 * margin, 2 * margin, 2 * margin));
    return {box.GetMin(), box.GetMax()};
}

} // namespace

JointBoxes ComputeJointBoxes(clip::Skeleton const & skeleton, clip::WorldPositions const & positions, double margin)
{
    std::vector<std::vector<std::size_t>> const members = ListMembers(skeleton);
    JointBoxes result;
    for (std::size_t i = 0; i < skeleton.joints.size(); ++i)
    {
        if (!skeleton.joints[i].isEndSite)
        {
            result.joints.push_back(i);
        }
    }
    result.boxes.reserve(positions.FrameCount() * result.joints.size());
    for (std::size_t frame = 0; frame < positions.FrameCount(); ++frame)
    {
        for (std::size_t const joint : result.joints)
        {
            result.boxes.push_back(BoundMembers(members[joint], positions.Frame(frame), margin));
        }
    }
    return result;
}

clip::Bounds ComputeBounds(JointBoxes const & boxes)
{
    std::vector<Vector> corners;
    corners.reserve(2 * boxes.boxes.size());
    for (JointBox const & box : boxes.boxes)
    {
        corners.insert(corners.end(), box.begin(), box.end());
    }
    return clip::ComputeBounds(corners);
}

} // namespace cull
