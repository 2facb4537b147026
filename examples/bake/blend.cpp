#include "bake/blend.h"

#include "bake/pole_repair.h"
#include "clip/joint_rotation.h"
#include "math/dual_quaternion.h"
#include "math/rotation_conversions.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace bake
{

namespace
{

using DualQuaternion = C3DDualQuatTpl<double>;

DualQuaternion RigidPart(clip::JointPose const & pose, tagE3DROTORDER order)
{
    C3DQuatTpl<double> rotation;
    F3DEulerToQuat(pose.angles, rotation, order);
    return {rotation, pose.translation};
}

std::vector<clip::ChannelOrder> FindOrders(clip::Skeleton const & skeleton)
{
    std::vector<clip::ChannelOrder> orders;
    for (clip::Joint const & joint : skeleton.joints)
    {
        orders.push_back(clip::JointRotation(joint).Order());
    }
    return orders;
}

} // namespace

bool AreSameSkeleton(clip::Skeleton const & a, clip::Skeleton const & b)
{
    return std::equal(a.joints.begin(), a.joints.end(), b.joints.begin(), b.joints.end(),
                      [](clip::Joint const & one, clip::Joint const & other)
                      { return one.name == other.name && one.parent == other.parent && one.offset == other.offset; });
}

clip::PoseTrack Blend(clip::Clip const & a, clip::PoseTrack const & aPoses, clip::Clip const & b,
                      clip::PoseTrack const & bPoses, double share)
{
    std::vector<clip::ChannelOrder> const aOrders = FindOrders(a.skeleton);
    std::vector<clip::ChannelOrder> const bOrders = FindOrders(b.skeleton);
    clip::PoseTrack blend(std::min(aPoses.FrameCount(), bPoses.FrameCount()), aPoses.JointCount());
    for (std::size_t frame = 0; frame < blend.FrameCount(); ++frame)
    {
        for (std::size_t i = 0; i < blend.JointCount(); ++i)
        {
            clip::JointPose const & from = aPoses.Frame(frame)[i];
            clip::JointPose const & to = bPoses.Frame(frame)[i];
            clip::JointPose & result = blend.Frame(frame)[i];
            DualQuaternion rigid;
            rigid.LinearBlend(RigidPart(from, aOrders[i].order), RigidPart(to, bOrders[i].order), share);
            rigid.GetTranslation(result.translation);
            C3DRotMatTpl<double> rotation;
            F3DQuatToMat(rigid.GetReal(), rotation);
            result.angles = frame == 0 ? from.angles : blend.Frame(frame - 1)[i].angles;
            ExtractNearest(rotation, aOrders[i], result.angles);
            result.scaling.LinearPositionInterpolate(from.scaling, to.scaling, share);
        }
    }
    return blend;
}

} // namespace bake
