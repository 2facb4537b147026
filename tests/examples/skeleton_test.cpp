#include "clip/reader.h"
#include "clip/skeleton.h"

#include <Eigen/Geometry>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <numbers>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

using clip::Channel;
using Matrix = C3DMatrix44Tpl<double>;
using Vector = C3DVector3Tpl<double>;

/// A root with the channels given and one end site.
clip::Clip OneJoint(std::vector<Channel> channels, std::vector<double> values, Vector const & tip)
{
    clip::Clip motion;
    clip::Joint root;
    root.name = "root";
    root.channels = std::move(channels);
    clip::AddJoint(motion.skeleton, root);
    clip::Joint site;
    site.name = "root_end";
    site.parent = 0;
    site.offset = tip;
    site.isEndSite = true;
    clip::AddJoint(motion.skeleton, site);
    motion.frameCount = 1;
    motion.frameTime = 1;
    motion.values = std::move(values);
    return motion;
}

void ExpectNear(Vector const & actual, Vector const & expected, double tolerance)
{
    EXPECT_NEAR(actual.X, expected.X, tolerance);
    EXPECT_NEAR(actual.Y, expected.Y, tolerance);
    EXPECT_NEAR(actual.Z, expected.Z, tolerance);
}

Vector TipOf(clip::Clip const & motion)
{
    return clip::ComputeWorldPositions(motion).Frame(0)[1];
}

TEST(Skeleton, Positive_angles_are_right_handed)
{
    ExpectNear(TipOf(OneJoint({Channel::XRotation}, {90}, {0, 1, 0})), {0, 0, 1}, 1e-15);
    ExpectNear(TipOf(OneJoint({Channel::YRotation}, {90}, {0, 0, 1})), {1, 0, 0}, 1e-15);
    ExpectNear(TipOf(OneJoint({Channel::ZRotation}, {90}, {1, 0, 0})), {0, 1, 0}, 1e-15);
}

// The tip at (1, 0, 0) with Z and X turned a quarter each. Under "Zrotation Xrotation" the rotation about X acts first
// and leaves the tip, which lies on its axis; Z then takes it to (0, 1, 0). The other way round Z takes it to (0, 1, 0)
// and X from there to (0, 0, 1).
TEST(Skeleton, The_last_named_rotation_acts_first_on_a_point)
{
    ExpectNear(TipOf(OneJoint({Channel::ZRotation, Channel::XRotation}, {90, 90}, {1, 0, 0})), {0, 1, 0}, 1e-15);
    ExpectNear(TipOf(OneJoint({Channel::XRotation, Channel::ZRotation}, {90, 90}, {1, 0, 0})), {0, 0, 1}, 1e-15);
}

// Z, X and Y in this order with quarter turns: Y takes (0, 0, 1) to (1, 0, 0), X keeps that, Z takes it to (0, 1, 0).
TEST(Skeleton, Three_rotations_act_from_the_last_named_to_the_first)
{
    ExpectNear(TipOf(OneJoint({Channel::ZRotation, Channel::XRotation, Channel::YRotation}, {90, 90, 90}, {0, 0, 1})),
               {0, 1, 0}, 1e-15);
    ExpectNear(TipOf(OneJoint({Channel::YRotation, Channel::XRotation, Channel::ZRotation}, {90, 90, 90}, {0, 0, 1})),
               {0, -1, 0}, 1e-15);
}

TEST(Skeleton, Positions_add_to_the_offset_wherever_they_stand_in_the_list)
{
    clip::Clip motion = OneJoint({Channel::ZRotation, Channel::ZPosition, Channel::XPosition}, {90, 30, 10}, {1, 0, 0});
    motion.skeleton.joints[0].offset = {1, 2, 3};
    clip::WorldPositions const positions = clip::ComputeWorldPositions(motion);
    ExpectNear(positions.Frame(0)[0], {11, 2, 33}, 0);
    ExpectNear(positions.Frame(0)[1], {11, 3, 33}, 1e-15);
}

TEST(Skeleton, A_child_turns_in_the_frame_of_its_parent)
{
    clip::Clip motion = OneJoint({Channel::ZRotation}, {90, 90}, {2, 0, 0});
    motion.skeleton.joints[1].isEndSite = false;
    motion.skeleton.joints[1].channels = {Channel::XRotation};
    motion.skeleton.joints[1].firstChannel = 1;
    motion.skeleton.channelCount = 2;
    clip::Joint tip;
    tip.parent = 1;
    tip.offset = {0, 1, 0};
    clip::AddJoint(motion.skeleton, tip);
    clip::WorldPositions const positions = clip::ComputeWorldPositions(motion);
    ExpectNear(positions.Frame(0)[1], {0, 2, 0}, 1e-15);
    // X takes the tip's offset from Y to Z, which the parent's turn about Z leaves.
    ExpectNear(positions.Frame(0)[2], {0, 2, 1}, 1e-15);
}

TEST(Skeleton, World_matrices_hold_axes_in_rows_and_the_place_in_the_last)
{
    clip::Clip const motion = OneJoint({Channel::XPosition, Channel::ZRotation}, {5, 90}, {1, 0, 0});
    clip::SkeletonPose pose(motion.skeleton, clip::Composition::ByComponent);
    pose.Set(clip::MakePoses(motion).Frame(0));
    Matrix const root = *pose.World(0).GetMatrix();
    Matrix const site = *pose.World(1).GetMatrix();
    Vector tip(1, 0, 0);
    tip.Mul(tip, root);
    ExpectNear(tip, {5, 1, 0}, 1e-15);
    ExpectNear({root.Get(0, 0), root.Get(0, 1), root.Get(0, 2)}, {0, 1, 0}, 1e-15);
    ExpectNear({root.Get(3, 0), root.Get(3, 1), root.Get(3, 2)}, {5, 0, 0}, 0);
    for (int row = 0; row < 4; ++row)
    {
        EXPECT_EQ(site.Get(row, 3), row == 3 ? 1 : 0);
    }
}

TEST(Skeleton, A_clip_that_asks_for_too_many_positions_is_refused)
{
    clip::Clip motion = OneJoint({Channel::XRotation}, {0}, {1, 0, 0});
    motion.frameCount = clip::k_MostPoses / 2 + 1;
    EXPECT_THROW(clip::ComputeWorldPositions(motion), std::length_error);
    motion.frameCount = std::numeric_limits<std::size_t>::max();
    EXPECT_THROW(clip::ComputeWorldPositions(motion), std::length_error);
}

TEST(Skeleton, Bounds_hold_every_point_and_touch_the_outermost)
{
    std::vector<Vector> const points = {{1, -2, 3}, {-4, 5, 0}, {0, 0, 9}};
    clip::Bounds const bounds = clip::ComputeBounds(points);
    ExpectNear(bounds.smallest, {-4, -2, 0}, 0);
    ExpectNear(bounds.largest, {1, 5, 9}, 0);
    clip::Bounds const none = clip::ComputeBounds({});
    ExpectNear(none.smallest, {0, 0, 0}, 0);
    ExpectNear(none.largest, {0, 0, 0}, 0);
}

/// The position of every joint by the other library, in its convention: points are columns, the outermost
/// transformation stands on the left.
std::vector<Eigen::Vector3d> ReferencePositions(clip::Skeleton const & skeleton, std::span<double const> frame)
{
    std::vector<Eigen::Isometry3d> world;
    std::vector<Eigen::Vector3d> positions;
    for (clip::Joint const & joint : skeleton.joints)
    {
        Eigen::Vector3d place(joint.offset.X, joint.offset.Y, joint.offset.Z);
        Eigen::Quaterniond turn = Eigen::Quaterniond::Identity();
        for (std::size_t i = 0; i < joint.channels.size(); ++i)
        {
            double const value = frame[joint.firstChannel + i];
            Eigen::Vector3d const axis = Eigen::Vector3d::Unit(clip::AxisOf(joint.channels[i]));
            if (clip::IsRotation(joint.channels[i]))
            {
                turn = turn * Eigen::AngleAxisd(value / 180 * std::numbers::pi, axis);
            }
            else
            {
                place += value * axis;
            }
        }
        Eigen::Isometry3d const local = Eigen::Translation3d(place) * turn;
        world.push_back(joint.parent < 0 ? local : world[static_cast<std::size_t>(joint.parent)] * local);
        positions.emplace_back(world.back().translation());
    }
    return positions;
}

double LargestDifference(clip::Clip const & motion)
{
    clip::WorldPositions const positions = clip::ComputeWorldPositions(motion);
    double largest = 0;
    for (std::size_t frame = 0; frame < motion.frameCount; ++frame)
    {
        std::vector<Eigen::Vector3d> const expected = ReferencePositions(motion.skeleton, motion.Frame(frame));
        for (std::size_t joint = 0; joint < expected.size(); ++joint)
        {
            Vector const & actual = positions.Frame(frame)[joint];
            largest = std::max(largest, (Eigen::Vector3d(actual.X, actual.Y, actual.Z) - expected[joint]).norm());
        }
    }
    return largest;
}

TEST(Skeleton, Agrees_with_Eigen_on_the_shipped_clip)
{
    EXPECT_LT(LargestDifference(clip::ReadClip(std::filesystem::path(SHIPPED_CLIP))), 1e-9);
}

TEST(Skeleton, Agrees_with_Eigen_on_a_captured_clip)
{
    if (!std::filesystem::exists(CAPTURED_CLIP))
    {
        GTEST_SKIP() << "no captured clip beside the project";
    }
    clip::Clip const motion = clip::ReadClip(std::filesystem::path(CAPTURED_CLIP));
    EXPECT_EQ(motion.frameCount, 455U);
    EXPECT_LT(LargestDifference(motion), 1e-9);
}

TEST(Skeleton, Agrees_with_Eigen_on_random_trees_with_channels_in_any_order)
{
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> length(-10, 10);
    std::uniform_real_distribution<double> angle(-1000, 1000);
    for (int tree = 0; tree < 200; ++tree)
    {
        clip::Clip motion;
        motion.frameCount = 1;
        for (int i = 0; i < 12; ++i)
        {
            clip::Joint joint;
            joint.parent = i == 0 ? clip::k_NoParent : static_cast<int>(random() % static_cast<unsigned>(i));
            joint.offset = {length(random), length(random), length(random)};
            joint.channels = {Channel::XPosition, Channel::YPosition, Channel::ZPosition,
                              Channel::XRotation, Channel::YRotation, Channel::ZRotation};
            std::shuffle(joint.channels.begin(), joint.channels.end(), random);
            joint.channels.resize(random() % 7);
            for (Channel const channel : joint.channels)
            {
                motion.values.push_back(clip::IsRotation(channel) ? angle(random) : length(random));
            }
            clip::AddJoint(motion.skeleton, joint);
        }
        EXPECT_LT(LargestDifference(motion), 1e-11) << "tree " << tree;
    }
}

} // namespace
