#include "bake/world_angles.h"

#include "bake/joint_table.h"
#include "clip/reader.h"

#include "examples/eigen_rotation.h"
#include "examples/pose_checks.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using bake::WorldAngles;
using clip::Channel;
using clip::Composition;
using Vector = C3DVector3Tpl<double>;

constexpr double k_Degree = std::numbers::pi / 180;

/// The orders by their names: ZXY.
clip::ChannelOrder const & k_Zxy = clip::k_ChannelOrders[4];

/// Root, child, end site, grandchild, all turning in the order ZXY.
clip::Skeleton Figure()
{
    std::vector<Channel> const channels = {Channel::ZRotation, Channel::XRotation, Channel::YRotation};
    clip::Skeleton skeleton;
    PutJoint(skeleton, "root", clip::k_NoParent, {0, 0, 0}, channels);
    PutJoint(skeleton, "child", 0, {0, 1, 0}, channels);
    PutEndSite(skeleton, 1, {0, 1, 0});
    PutJoint(skeleton, "grandchild", 1, {1, 0, 0}, channels);
    return skeleton;
}

Vector InRadians(Vector degrees)
{
    return degrees.Mul(degrees, k_Degree);
}

/// The product of the rotations from a joint up to its root, for points as columns.
Eigen::Quaterniond ReferenceWorldRotation(clip::Skeleton const & skeleton, std::span<clip::JointPose const> frame,
                                          std::size_t joint)
{
    Eigen::Quaterniond world = Eigen::Quaterniond::Identity();
    for (int i = static_cast<int>(joint); i != clip::k_NoParent;
         i = skeleton.joints[static_cast<std::size_t>(i)].parent)
    {
        auto const index = static_cast<std::size_t>(i);
        world =
            ReferenceRotation(clip::JointRotation(skeleton.joints[index]).Order().name, frame[index].angles) * world;
    }
    return world;
}

/// The largest difference between elements of the matrices that the angles give and that the poses ask for.
double GreatestMiss(clip::Skeleton const & skeleton, clip::PoseTrack const & poses, WorldAngles const & angles,
                    clip::ChannelOrder const & order)
{
    double greatest = 0;
    for (std::size_t frame = 0; frame < poses.FrameCount(); ++frame)
    {
        for (std::size_t i = 0; i < angles.joints.size(); ++i)
        {
            Eigen::Matrix3d const actual =
                ReferenceRotation(order.name, InRadians(angles.degrees[frame * angles.joints.size() + i]))
                    .toRotationMatrix();
            Eigen::Matrix3d const expected =
                ReferenceWorldRotation(skeleton, poses.Frame(frame), angles.joints[i]).toRotationMatrix();
            greatest = std::max(greatest, (actual - expected).cwiseAbs().maxCoeff());
        }
    }
    return greatest;
}

TEST(WorldAngles, Hold_all_joints_but_the_end_sites_frame_by_frame)
{
    clip::Skeleton const skeleton = Figure();
    clip::PoseTrack poses(2, 4);
    poses.Frame(0)[0].angles = InRadians({0, 10, 0});
    poses.Frame(0)[1].angles = InRadians({0, 20, 0});
    poses.Frame(1)[0].angles = InRadians({0, -40, 0});
    poses.Frame(1)[3].angles = InRadians({0, 15, 0});
    WorldAngles const world = bake::ComputeWorldAngles(skeleton, poses, Composition::ByComponent, k_Zxy);
    EXPECT_EQ(world.joints, (std::vector<std::size_t>{0, 1, 3}));
    std::vector<double> const expected = {10, 30, 30, -40, -40, -25};
    ASSERT_EQ(world.degrees.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        EXPECT_NEAR(world.degrees[i].X, 0, 1e-13);
        EXPECT_NEAR(world.degrees[i].Y, expected[i], 1e-13) << i;
        EXPECT_NEAR(world.degrees[i].Z, 0, 1e-13);
    }
}

class WorldAnglesInOrder : public testing::TestWithParam<clip::ChannelOrder>
{
};

INSTANTIATE_TEST_SUITE_P(AllSix, WorldAnglesInOrder, testing::ValuesIn(clip::k_ChannelOrders),
                         [](testing::TestParamInfo<clip::ChannelOrder> const & order)
                         { return std::string(order.param.name); });

TEST_P(WorldAnglesInOrder, Give_the_rotations_of_the_shipped_clip_and_never_jump)
{
    clip::Clip const motion = clip::ReadClip(std::filesystem::path(SHIPPED_CLIP));
    clip::PoseTrack const poses = clip::MakePoses(motion);
    WorldAngles const world = bake::ComputeWorldAngles(motion.skeleton, poses, Composition::ByComponent, GetParam());
    EXPECT_LT(GreatestMiss(motion.skeleton, poses, world, GetParam()), 1e-9);
    std::size_t const count = world.joints.size();
    ASSERT_EQ(world.degrees.size(), count * motion.frameCount);
    for (std::size_t i = 0; i < count; ++i)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            EXPECT_LE(std::abs(world.degrees[i].Get(axis)), 180) << "the first frame is nearest to zero";
        }
    }
    for (std::size_t i = count; i < world.degrees.size(); ++i)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            ASSERT_LE(std::abs(world.degrees[i].Get(axis) - world.degrees[i - count].Get(axis)), 180 + 1e-9);
        }
    }
}

// Whole turns of the root show in the world angles of all that hang on it.
TEST_P(WorldAnglesInOrder, Count_whole_turns_on)
{
    clip::Skeleton const skeleton = Figure();
    int const axis = GetParam().name[0] - 'X';
    clip::PoseTrack poses(201, 4);
    for (std::size_t frame = 0; frame <= 200; ++frame)
    {
        poses.Frame(frame)[0].angles.Set(axis, 5 * static_cast<double>(frame) * k_Degree);
    }
    WorldAngles const world = bake::ComputeWorldAngles(skeleton, poses, Composition::ByComponent, GetParam());
    for (std::size_t i = 0; i < 3; ++i)
    {
        EXPECT_NEAR(world.degrees[world.degrees.size() - 3 + i].Get(axis), 1000, 1e-9);
    }
}

// Where an extraction nearest to a target can give another rotation.
TEST_P(WorldAnglesInOrder, Give_the_rotation_at_the_poles_too)
{
    test_support::Random random(5);
    clip::Skeleton const skeleton = Figure();
    clip::PoseTrack poses(2000, 4);
    for (std::size_t frame = 0; frame < poses.FrameCount(); ++frame)
    {
        for (clip::JointPose & pose : poses.Frame(frame))
        {
            auto const quarters = [&random] { return 90.0 * random.Integer(-2, 2); };
            pose.angles = InRadians({quarters(), quarters(), quarters()});
        }
        poses.Frame(frame)[2].angles = {0, 0, 0};
    }
    WorldAngles const world = bake::ComputeWorldAngles(skeleton, poses, Composition::ByComponent, GetParam());
    EXPECT_LT(GreatestMiss(skeleton, poses, world, GetParam()), 1e-9);
}

TEST(WorldAngles, The_scale_of_the_root_does_not_turn_its_children_by_component)
{
    clip::Skeleton const skeleton = Figure();
    clip::PoseTrack poses(1, 4);
    poses.Frame(0)[0].angles = {0.1, 0.2, 0.3};
    poses.Frame(0)[1].angles = {-0.4, 0.5, 0.6};
    poses.Frame(0)[3].angles = {0.7, -0.8, 0.9};
    WorldAngles const plain = bake::ComputeWorldAngles(skeleton, poses, Composition::ByComponent, k_Zxy);
    for (Vector const & scaling : {Vector(1, 5, 1), Vector(-1, 1, 1), Vector(2, -3, -4)})
    {
        poses.Frame(0)[0].scaling = scaling;
        WorldAngles const scaled = bake::ComputeWorldAngles(skeleton, poses, Composition::ByComponent, k_Zxy);
        for (std::size_t i = 0; i < 3; ++i)
        {
            for (int axis = 0; axis < 3; ++axis)
            {
                EXPECT_EQ(scaled.degrees[i].Get(axis), plain.degrees[i].Get(axis));
            }
        }
    }
}

// As matrices for points as columns a child stands at A S B, with the rotation A and the scale S of its root and its
// own rotation B. Since A S B is A B times the symmetric B^T S B, its rotation in the polar decomposition is A B, what
// it is by component. A second scale on the way breaks that.
TEST(WorldAngles, By_matrix_are_those_of_the_rotation_in_the_sheared_matrix)
{
    clip::Skeleton const skeleton = Figure();
    clip::PoseTrack poses(1, 4);
    poses.Frame(0)[0].angles = {0.1, 0.2, 0.3};
    poses.Frame(0)[0].scaling = {1, 5, 2};
    poses.Frame(0)[1].angles = {-0.4, 0.5, 0.6};
    poses.Frame(0)[3].angles = {0.7, -0.8, 0.9};
    WorldAngles const scaledRoot = bake::ComputeWorldAngles(skeleton, poses, Composition::ByMatrix, k_Zxy);
    EXPECT_LT(GreatestMiss(skeleton, poses, scaledRoot, k_Zxy), 1e-12);

    poses.Frame(0)[1].scaling = {3, 1, 1};
    WorldAngles const world = bake::ComputeWorldAngles(skeleton, poses, Composition::ByMatrix, k_Zxy);
    clip::SkeletonPose pose(skeleton, Composition::ByMatrix);
    pose.Set(poses.Frame(0));
    for (std::size_t i = 0; i < 3; ++i)
    {
        Eigen::Matrix3d const matrix = ToEigen(*pose.World(world.joints[i]).GetMatrix()).topLeftCorner<3, 3>();
        Eigen::JacobiSVD<Eigen::Matrix3d> const svd(matrix, Eigen::ComputeFullU | Eigen::ComputeFullV);
        Eigen::Matrix3d const expected = svd.matrixU() * svd.matrixV().transpose();
        Eigen::Matrix3d const actual = ReferenceRotation("ZXY", InRadians(world.degrees[i])).toRotationMatrix();
        EXPECT_LT((actual - expected).norm(), 1e-12) << i;
    }
    EXPECT_GT(GreatestMiss(skeleton, poses, world, k_Zxy), 0.1);
}

TEST(WorldAngles, Of_an_unscaled_figure_are_the_same_by_matrix)
{
    clip::Clip const motion = clip::ReadClip(std::filesystem::path(SHIPPED_CLIP));
    clip::PoseTrack const poses = clip::MakePoses(motion);
    WorldAngles const world = bake::ComputeWorldAngles(motion.skeleton, poses, Composition::ByMatrix, k_Zxy);
    EXPECT_LT(GreatestMiss(motion.skeleton, poses, world, k_Zxy), 1e-9);
}

TEST(WorldAngleTable, Has_a_header_and_a_line_for_every_frame_and_joint_without_the_end_sites)
{
    clip::Skeleton skeleton = Figure();
    skeleton.joints[1].name = "child,left";
    WorldAngles const angles{
        {0, 1, 3},
        {{1, 2, 3}, {4.5, -0.30000000000000004, 1e-7}, {7, 8, 9}, {10, 11, 12}, {13, 14, 15}, {16, 17, 720.1}}};
    std::ostringstream stream;
    bake::WriteWorldAngleTable(stream, skeleton, angles);
    EXPECT_EQ(stream.str(), "frame,joint,x,y,z\n"
                            "0,root,1,2,3\n"
                            "0,\"child,left\",4.5,-0.30000000000000004,1e-07\n"
                            "0,grandchild,7,8,9\n"
                            "1,root,10,11,12\n"
                            "1,\"child,left\",13,14,15\n"
                            "1,grandchild,16,17,720.1\n");
}

} // namespace
