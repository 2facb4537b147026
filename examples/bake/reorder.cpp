#include "bake/reorder.h"

#include "bake/pole_repair.h"
#include "math/rotation_conversions.h"

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace bake
{

namespace
{

using clip::Channel;
using Vector = C3DVector3Tpl<double>;

Channel RotationAbout(char axis)
{
    return static_cast<Channel>(static_cast<int>(Channel::XRotation) + (axis - 'X'));
}

std::vector<Channel> ReorderChannels(std::vector<Channel> channels, clip::ChannelOrder const & order)
{
    auto axis = order.name.begin();
    for (Channel & channel : channels)
    {
        if (clip::IsRotation(channel))
        {
            channel = RotationAbout(*axis++);
        }
    }
    while (axis != order.name.end())
    {
        channels.push_back(RotationAbout(*axis++));
    }
    return channels;
}

clip::Skeleton ReorderSkeleton(clip::Skeleton const & skeleton, clip::ChannelOrder const & order)
{
    clip::Skeleton reordered;
    for (clip::Joint joint : skeleton.joints)
    {
        if (!joint.isEndSite)
        {
            joint.channels = ReorderChannels(std::move(joint.channels), order);
        }
        clip::AddJoint(reordered, std::move(joint));
    }
    return reordered;
}

/// A joint's rotation before and after, and the angles of the frame before.
struct RotationTrack
{
    std::size_t joint;
    tagE3DROTORDER from;
    clip::JointRotation to;
    Vector angles;
};

std::vector<RotationTrack> FindRotations(clip::Skeleton const & skeleton, clip::Skeleton const & reordered,
                                         clip::PoseTrack const & poses)
{
    std::vector<RotationTrack> tracks;
    for (std::size_t i = 0; i < skeleton.joints.size(); ++i)
    {
        if (!skeleton.joints[i].isEndSite)
        {
            tracks.push_back({i, clip::JointRotation(skeleton.joints[i]).Order().order,
                              clip::JointRotation(reordered.joints[i]), poses.Frame(0)[i].angles});
        }
    }
    return tracks;
}

/// A position channel: the number that it adds to, and its place in a frame before and after.
struct PositionChannel
{
    std::size_t joint;
    int axis;
    double offset;
    std::size_t from;
    std::size_t to;
};

std::vector<PositionChannel> FindPositions(clip::Skeleton const & skeleton, clip::Skeleton const & reordered)
{
    std::vector<PositionChannel> positions;
    for (std::size_t i = 0; i < skeleton.joints.size(); ++i)
    {
        clip::Joint const & joint = skeleton.joints[i];
        for (std::size_t channel = 0; channel < joint.channels.size(); ++channel)
        {
            if (!clip::IsRotation(joint.channels[channel]))
            {
                int const axis = clip::AxisOf(joint.channels[channel]);
                positions.push_back({i, axis, joint.offset.Get(axis), joint.firstChannel + channel,
                                     reordered.joints[i].firstChannel + channel});
            }
        }
    }
    return positions;
}

/// The number in a position channel that gives a translation: the clip's own if it does, as a difference may round.
double FindPosition(PositionChannel const & channel, double translation, clip::Clip const & motion, std::size_t frame)
{
    if (frame < motion.frameCount && channel.offset + motion.Frame(frame)[channel.from] == translation)
    {
        return motion.Frame(frame)[channel.from];
    }
    return translation - channel.offset;
}

/// \return whether the angles had to be repaired
bool Extract(C3DRotMatTpl<double> const & matrix, clip::ChannelOrder const & order, Extraction extraction,
             Vector & angles)
{
    if (extraction == Extraction::Plain)
    {
        F3DMatToEuler(matrix, angles, order.order);
        return false;
    }
    return ExtractNearest(matrix, order, angles);
}

/// \return how many rotations had to be repaired
std::size_t ReorderFrame(std::span<clip::JointPose const> from, std::span<double> to, std::span<RotationTrack> tracks,
                         Extraction extraction)
{
    std::size_t repairs = 0;
    C3DRotMatTpl<double> matrix;
    for (RotationTrack & track : tracks)
    {
        F3DEulerToMat(from[track.joint].angles, matrix, track.from);
        repairs += Extract(matrix, track.to.Order(), extraction, track.angles) ? 1 : 0;
        track.to.SetRadians(to, track.angles);
    }
    return repairs;
}

} // namespace

Reordering Reorder(clip::Clip const & motion, clip::PoseTrack const & poses, clip::ChannelOrder const & order,
                   Extraction extraction)
{
    Reordering result;
    clip::Clip & reordered = result.clip;
    reordered.skeleton = ReorderSkeleton(motion.skeleton, order);
    reordered.frameTime = motion.frameTime;
    reordered.frameCount = poses.FrameCount();
    reordered.values.resize(reordered.frameCount * reordered.skeleton.channelCount);

    std::vector<RotationTrack> tracks = FindRotations(motion.skeleton, reordered.skeleton, poses);
    std::vector<PositionChannel> const positions = FindPositions(motion.skeleton, reordered.skeleton);
    for (std::size_t frame = 0; frame < reordered.frameCount; ++frame)
    {
        std::span<clip::JointPose const> const from = poses.Frame(frame);
        std::span<double> const to = reordered.Frame(frame);
        for (PositionChannel const & channel : positions)
        {
            to[channel.to] = FindPosition(channel, from[channel.joint].translation.Get(channel.axis), motion, frame);
        }
        result.repairs += ReorderFrame(from, to, tracks, extraction);
    }
    return result;
}

Reordering Reorder(clip::Clip const & motion, clip::ChannelOrder const & order, Extraction extraction)
{
    return Reorder(motion, clip::MakePoses(motion), order, extraction);
}

} // namespace bake
