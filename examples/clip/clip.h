#pragma once

#include "math/vector3.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace clip
{

/// One animated number of a joint. The first three shift it along an axis of its parent, in the unit of the offsets;
/// the others turn it about an axis, in degrees, right-handed.
enum class Channel : unsigned char
{
    XPosition,
    YPosition,
    ZPosition,
    XRotation,
    YRotation,
    ZRotation
};

inline constexpr std::size_t k_ChannelKinds = 6;

/// The channels' names in a file, indexed by `Channel`.
inline constexpr std::array<std::string_view, k_ChannelKinds> k_ChannelNames = {"Xposition", "Yposition", "Zposition",
                                                                                "Xrotation", "Yrotation", "Zrotation"};

constexpr bool IsRotation(Channel channel)
{
    return channel >= Channel::XRotation;
}

/// The axis of a channel: 0 X, 1 Y, 2 Z.
constexpr int AxisOf(Channel channel)
{
    return static_cast<int>(channel) % 3;
}

inline constexpr int k_NoParent = -1;

/// A joint, or the end site of a chain: a position with no channels of its own, such as a fingertip.
struct Joint
{
    std::string name;                      ///< an end site is named after its parent, with "_end" behind
    int parent = k_NoParent;               ///< index of the parent, always below the joint's own
    C3DVector3Tpl<double> offset{0, 0, 0}; ///< from the parent's origin, in the parent's frame
    std::vector<Channel> channels;         ///< in file order, without repetition
    std::size_t firstChannel = 0;          ///< place of the first of them in a frame
    bool isEndSite = false;
};

/// Joints in file order, so that a parent stands before its children.
struct Skeleton
{
    std::vector<Joint> joints;
    std::size_t channelCount = 0; ///< of all joints together: the width of a frame
};

/// A skeleton and its motion. Frames lie one behind the other, each with the channels of all joints in file order,
/// degrees and lengths as they stand in the file.
struct Clip
{
    Skeleton skeleton;
    double frameTime = 0; ///< seconds from one frame to the next, above 0
    std::size_t frameCount = 0;
    std::vector<double> values; ///< frameCount times skeleton.channelCount

    std::span<double const> Frame(std::size_t frame) const
    {
        return {values.data() + frame * skeleton.channelCount, skeleton.channelCount};
    }
    std::span<double> Frame(std::size_t frame)
    {
        return {values.data() + frame * skeleton.channelCount, skeleton.channelCount};
    }
    /// The time that the frames fill, each shown for the frame time.
    double Length() const { return static_cast<double>(frameCount) * frameTime; }
};

/// Adds a joint behind those the skeleton has and gives it the next places of a frame. The parent must be there
/// already. \return the index of the new joint
int AddJoint(Skeleton & skeleton, Joint joint);

/// How many of the joints are joints proper, without the end sites.
std::size_t CountJoints(Skeleton const & skeleton);

/// The joints without children, in file order: fingertips, toes, the top of the head.
std::vector<int> FindEnds(Skeleton const & skeleton);

} // namespace clip
