#include "clip/joint_rotation.h"

#include <algorithm>
#include <numbers>
#include <string>

namespace clip
{

namespace
{

using Vector = C3DVector3Tpl<double>;

constexpr double k_Degree = std::numbers::pi / 180;

/// The axes of the rotation channels in the order of the list, the missing ones behind.
std::string NameOrder(std::vector<Channel> const & channels)
{
    std::string name;
    for (Channel const channel : channels)
    {
        if (IsRotation(channel))
        {
            name += "XYZ"[AxisOf(channel)];
        }
    }
    for (char const axis : {'X', 'Y', 'Z'})
    {
        if (name.find(axis) == std::string::npos)
        {
            name += axis;
        }
    }
    return name;
}

} // namespace

JointRotation::JointRotation(Joint const & joint)
    : m_Order(std::find_if(k_ChannelOrders.begin(), k_ChannelOrders.end(),
                           [name = NameOrder(joint.channels)](ChannelOrder const & order)
                           { return order.name == name; }))
{
    for (std::size_t i = 0; i < joint.channels.size(); ++i)
    {
        if (IsRotation(joint.channels[i]))
        {
            m_Places[static_cast<std::size_t>(AxisOf(joint.channels[i]))] = joint.firstChannel + i;
        }
    }
}

Vector JointRotation::Degrees(std::span<double const> frame) const
{
    auto const at = [&](std::size_t place) { return place == k_NoPlace ? 0 : frame[place]; };
    return {at(m_Places[0]), at(m_Places[1]), at(m_Places[2])};
}

Vector JointRotation::Radians(std::span<double const> frame) const
{
    Vector angles = Degrees(frame);
    return angles.Mul(angles, k_Degree);
}

void JointRotation::SetRadians(std::span<double> frame, Vector const & angles) const
{
    for (int axis = 0; axis < 3; ++axis)
    {
        if (std::size_t const place = m_Places[static_cast<std::size_t>(axis)]; place != k_NoPlace)
        {
            frame[place] = angles.Get(axis) / k_Degree;
        }
    }
}

} // namespace clip
