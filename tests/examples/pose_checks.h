#pragma once

#include "clip/clip.h"
#include "clip/pose.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

/// Adds a joint behind those that are there. \return its index
inline int PutJoint(clip::Skeleton & skeleton, std::string name, int parent, C3DVector3Tpl<double> const & offset,
                    std::vector<clip::Channel> channels)
{
    clip::Joint joint;
    joint.name = std::move(name);
    joint.parent = parent;
    joint.offset = offset;
    joint.channels = std::move(channels);
    return clip::AddJoint(skeleton, joint);
}

inline int PutEndSite(clip::Skeleton & skeleton, int parent, C3DVector3Tpl<double> const & offset)
{
    int const site =
        PutJoint(skeleton, skeleton.joints[static_cast<std::size_t>(parent)].name + "_end", parent, offset, {});
    skeleton.joints.back().isEndSite = true;
    return site;
}

inline bool HaveSameBits(C3DVector3Tpl<double> const & a, C3DVector3Tpl<double> const & b)
{
    auto const bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
    return bits(a.X) == bits(b.X) && bits(a.Y) == bits(b.Y) && bits(a.Z) == bits(b.Z);
}

inline bool HaveSameBits(clip::JointPose const & a, clip::JointPose const & b)
{
    return HaveSameBits(a.translation, b.translation) && HaveSameBits(a.angles, b.angles) &&
           HaveSameBits(a.scaling, b.scaling);
}

inline bool HaveSameBits(clip::PoseTrack const & a, clip::PoseTrack const & b)
{
    if (a.FrameCount() != b.FrameCount() || a.JointCount() != b.JointCount())
    {
        return false;
    }
    for (std::size_t frame = 0; frame < a.FrameCount(); ++frame)
    {
        for (std::size_t i = 0; i < a.JointCount(); ++i)
        {
            if (!HaveSameBits(a.Frame(frame)[i], b.Frame(frame)[i]))
            {
                return false;
            }
        }
    }
    return true;
}
