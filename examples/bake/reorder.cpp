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
    clip::JointRotation from;
    clip::JointRotation to;
    Vector angles;
};

std::vector<RotationTrack> FindRotations(clip::Clip const & motion, clip::Skeleton const & reordered)
{
    std::vector<RotationTrack> tracks;
    for (std::size_t i = 0; i < motion.skeleton.joints.size(); ++i)
    {
        if (!motion.skeleton.joints[i].isEndSite)
        {
            clip::JointRotation const from(motion.skeleton.joints[i]);
            tracks.push_back({from, clip::JointRotation(reordered.joints[i]), from.Radians(motion.Frame(0))});
        }
    }
    return tracks;
}

/// A position channel's place in a frame before and after.
struct PositionPlaces
{
    std::size_t from;
    std::size_t to;
};

std::vector<PositionPlaces> FindPositions(clip::Skeleton const & skeleton, clip::Skeleton const & reordered)
{
    std::vector<PositionPlaces> places;
    for (std::size_t i = 0; i < skeleton.joints.size(); ++i)
    {
        clip::Joint const & joint = skeleton.joints[i];
        for (std::size_t channel = 0; channel < joint.channels.size(); ++channel)
        {
            if (!clip::IsRotation(joint.channels[channel]))
            {
                places.push_back({joint.firstChannel + channel, reordered.joints[i].firstChannel + channel});
            }
        }
    }
    return places;
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
    Vector const target = angles;
    F3DMatToEulerUsingTarget(matrix, angles, order.order);
    return RepairAtPole(matrix, order, target, angles);
}

/// \return how many rotations had to be repaired
std::size_t ReorderFrame(std::span<double const> from, std::span<double> to, std::span<RotationTrack> tracks,
                         Extraction extraction)
{
    std::size_t repairs = 0;
    C3DRotMatTpl<double> matrix;
    for (RotationTrack & track : tracks)
    {
        track.from.ComputeMatrix(from, matrix);
        repairs += Extract(matrix, track.to.Order(), extraction, track.angles) ? 1 : 0;
        track.to.SetRadians(to, track.angles);
    }
    return repairs;
}

} // namespace

Reordering Reorder(clip::Clip const & motion, clip::ChannelOrder const & order, Extraction extraction)
{
    Reordering result;
    clip::Clip & reordered = result.clip;
    reordered.skeleton = ReorderSkeleton(motion.skeleton, order);
    reordered.frameTime = motion.frameTime;
    reordered.frameCount = motion.frameCount;
    reordered.values.resize(motion.frameCount * reordered.skeleton.channelCount);

    std::vector<RotationTrack> tracks = FindRotations(motion, reordered.skeleton);
    std::vector<PositionPlaces> const positions = FindPositions(motion.skeleton, reordered.skeleton);
    for (std::size_t frame = 0; frame < motion.frameCount; ++frame)
    {
        std::span<double const> const from = motion.Frame(frame);
        std::span<double> const to = reordered.Frame(frame);
        for (PositionPlaces const & place : positions)
        {
            to[place.to] = from[place.from];
        }
        result.repairs += ReorderFrame(from, to, tracks, extraction);
    }
    return result;
}

} // namespace bake
