#include "clip/pose.h"

#include "clip/joint_rotation.h"

#include <stdexcept>
#include <string>

namespace clip
{

namespace
{

constexpr unsigned char k_AllComponents = 63;

std::size_t CountPoses(std::size_t frameCount, std::size_t jointCount)
{
    if (frameCount > k_MostPoses / jointCount)
    {
        throw std::length_error("the clip has " + std::to_string(frameCount) + " frames of " +
                                std::to_string(jointCount) + " positions: more than " + std::to_string(k_MostPoses) +
                                " altogether");
    }
    return frameCount * jointCount;
}

C3DVector3Tpl<double> ReadTranslation(Joint const & joint, std::span<double const> frame)
{
    C3DVector3Tpl<double> translation = joint.offset;
    for (std::size_t i = 0; i < joint.channels.size(); ++i)
    {
        if (!IsRotation(joint.channels[i]))
        {
            int const axis = AxisOf(joint.channels[i]);
            translation.Set(axis, translation.Get(axis) + frame[joint.firstChannel + i]);
        }
    }
    return translation;
}

} // namespace

PoseTrack::PoseTrack(std::size_t frameCount, std::size_t jointCount)
    : m_JointCount(jointCount), m_Poses(CountPoses(frameCount, jointCount))
{
}

PoseTrack MakePoses(Clip const & motion)
{
    std::vector<Joint> const & joints = motion.skeleton.joints;
    std::vector<JointRotation> const rotations(joints.begin(), joints.end());
    PoseTrack poses(motion.frameCount, joints.size());
    for (std::size_t frame = 0; frame < motion.frameCount; ++frame)
    {
        std::span<double const> const channels = motion.Frame(frame);
        for (std::size_t i = 0; i < joints.size(); ++i)
        {
            JointPose & pose = poses.Frame(frame)[i];
            pose.translation = ReadTranslation(joints[i], channels);
            pose.angles = rotations[i].Radians(channels);
        }
    }
    return poses;
}

SkeletonPose::SkeletonPose(Skeleton const & skeleton, Composition composition)
    : m_Skeleton(skeleton), m_Locals(skeleton.joints.size()), m_Worlds(skeleton.joints.size())
{
    for (std::size_t i = 0; i < skeleton.joints.size(); ++i)
    {
        m_Locals[i].SetRotation(JointRotation(skeleton.joints[i]).Order().order, 0);
        m_Worlds[i].SetQNScalingFlag(composition == Composition::ByComponent ? 1 : 0);
    }
}

void SkeletonPose::Set(std::span<JointPose const> frame)
{
    for (std::size_t i = 0; i < frame.size(); ++i)
    {
        C3DTransfo & local = m_Locals[i];
        local.SetScaling(frame[i].scaling);
        local.SetRotation(frame[i].angles);
        local.SetTranslation(frame[i].translation);
        int const parent = m_Skeleton.joints[i].parent;
        m_Worlds[i].Mul(local, parent == k_NoParent ? m_Origin : m_Worlds[static_cast<std::size_t>(parent)],
                        k_AllComponents);
    }
}

} // namespace clip
