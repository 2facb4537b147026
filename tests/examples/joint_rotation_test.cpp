#include "clip/joint_rotation.h"
#include "clip/pose.h"
#include "math/rotation_conversions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace
{

using clip::Channel;
using Vector = C3DVector3Tpl<double>;

clip::Joint JointWith(std::vector<Channel> channels, std::size_t firstChannel = 0)
{
    clip::Joint joint;
    joint.name = "joint";
    joint.channels = std::move(channels);
    joint.firstChannel = firstChannel;
    return joint;
}

/// The library's name of an order.
std::string LibraryName(tagE3DROTORDER order)
{
    switch (order)
    {
    case E3DROTORDER_XYZ:
        return "XYZ";
    case E3DROTORDER_XZY:
        return "XZY";
    case E3DROTORDER_YXZ:
        return "YXZ";
    case E3DROTORDER_YZX:
        return "YZX";
    case E3DROTORDER_ZXY:
        return "ZXY";
    case E3DROTORDER_ZYX:
        return "ZYX";
    }
    return {};
}

TEST(ChannelOrder, Is_named_from_the_outermost_axis_where_the_library_starts_with_the_innermost)
{
    std::vector<std::string> names;
    for (clip::ChannelOrder const & order : clip::k_ChannelOrders)
    {
        std::string const reversed(order.name.rbegin(), order.name.rend());
        EXPECT_EQ(LibraryName(order.order), reversed);
        names.emplace_back(order.name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX"}));
}

TEST(JointRotation, Follows_the_channel_list)
{
    auto const nameOf = [](std::vector<Channel> channels)
    { return clip::JointRotation(JointWith(std::move(channels))).Order().name; };
    EXPECT_EQ(nameOf({Channel::ZRotation, Channel::XRotation, Channel::YRotation}), "ZXY");
    EXPECT_EQ(nameOf({Channel::YRotation, Channel::YPosition, Channel::XRotation, Channel::ZRotation}), "YXZ");
    EXPECT_EQ(nameOf({Channel::ZRotation, Channel::YRotation, Channel::XRotation}), "ZYX");
}

TEST(JointRotation, Missing_channels_are_rotations_by_zero)
{
    clip::JointRotation const rotation(JointWith({Channel::ZPosition, Channel::YRotation}, 1));
    std::vector<double> frame = {7, 8, 30, 9};
    Vector const degrees = rotation.Degrees(frame);
    EXPECT_EQ(degrees.X, 0);
    EXPECT_EQ(degrees.Y, 30);
    EXPECT_EQ(degrees.Z, 0);
    EXPECT_NEAR(rotation.Radians(frame).Y, std::numbers::pi / 6, 1e-15);
    rotation.SetRadians(frame, {1, std::numbers::pi, 2});
    EXPECT_EQ(frame, (std::vector<double>{7, 8, 180, 9}));
    EXPECT_EQ(clip::JointRotation(JointWith({})).Degrees({}).Get(0), 0);
}

// The transformations of a skeleton go another way, by a quaternion.
TEST(JointRotation, The_matrix_of_its_angles_is_that_of_the_skeleton_for_every_channel_list)
{
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> value(-800, 800);
    for (int round = 0; round < 500; ++round)
    {
        std::vector<Channel> channels = {Channel::XPosition, Channel::YPosition, Channel::ZPosition,
                                         Channel::XRotation, Channel::YRotation, Channel::ZRotation};
        std::shuffle(channels.begin(), channels.end(), random);
        channels.resize(random() % 7);
        clip::Skeleton skeleton;
        clip::AddJoint(skeleton, JointWith(channels));
        std::vector<double> frame(channels.size());
        std::generate(frame.begin(), frame.end(), [&] { return value(random); });
        clip::Clip motion;
        motion.skeleton = skeleton;
        motion.frameCount = 1;
        motion.values = frame;
        clip::SkeletonPose pose(skeleton, clip::Composition::ByComponent);
        pose.Set(clip::MakePoses(motion).Frame(0));
        C3DMatrix44Tpl<double> const & world = *pose.World(0).GetMatrix();
        C3DRotMatTpl<double> matrix;
        clip::JointRotation const rotation(skeleton.joints[0]);
        F3DEulerToMat(rotation.Radians(frame), matrix, rotation.Order().order);
        for (int row = 0; row < 3; ++row)
        {
            for (int column = 0; column < 3; ++column)
            {
                ASSERT_NEAR(matrix.Get(row, column), world.Get(row, column), 1e-14) << round;
            }
        }
    }
}

} // namespace
