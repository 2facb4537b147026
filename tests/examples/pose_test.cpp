#include "clip/pose.h"

#include "clip/joint_rotation.h"

#include "examples/eigen_rotation.h"
#include "examples/pose_checks.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace
{

using clip::Channel;
using clip::Composition;
using Vector = C3DVector3Tpl<double>;

constexpr double k_Quarter = std::numbers::pi / 2;

TEST(PoseTrack, Starts_without_any_motion)
{
    clip::PoseTrack const poses(2, 3);
    EXPECT_EQ(poses.FrameCount(), 2U);
    EXPECT_EQ(poses.JointCount(), 3U);
    for (std::size_t frame = 0; frame < 2; ++frame)
    {
        ASSERT_EQ(poses.Frame(frame).size(), 3U);
        for (clip::JointPose const & pose : poses.Frame(frame))
        {
            EXPECT_TRUE(HaveSameBits(pose.translation, {0, 0, 0}));
            EXPECT_TRUE(HaveSameBits(pose.angles, {0, 0, 0}));
            EXPECT_TRUE(HaveSameBits(pose.scaling, {1, 1, 1}));
        }
    }
}

TEST(PoseTrack, Every_joint_of_every_frame_has_a_place_of_its_own)
{
    clip::PoseTrack poses(3, 4);
    for (std::size_t frame = 0; frame < 3; ++frame)
    {
        for (std::size_t i = 0; i < 4; ++i)
        {
            poses.Frame(frame)[i].angles = {static_cast<double>(frame), static_cast<double>(i), 0};
        }
    }
    for (std::size_t frame = 0; frame < 3; ++frame)
    {
        for (std::size_t i = 0; i < 4; ++i)
        {
            Vector const & angles = std::as_const(poses).Frame(frame)[i].angles;
            EXPECT_EQ(angles, Vector(static_cast<double>(frame), static_cast<double>(i), 0));
        }
    }
}

TEST(PoseTrack, More_poses_than_can_be_held_are_refused)
{
    constexpr std::size_t k_Largest = std::numeric_limits<std::size_t>::max();
    EXPECT_THROW(clip::PoseTrack(clip::k_MostPoses + 1, 1), std::length_error);
    EXPECT_THROW(clip::PoseTrack(1, clip::k_MostPoses + 1), std::length_error);
    EXPECT_THROW(clip::PoseTrack(clip::k_MostPoses / 3 + 1, 3), std::length_error);
    EXPECT_THROW(clip::PoseTrack(k_Largest / 2 + 1, 2), std::length_error);
    EXPECT_THROW(clip::PoseTrack(k_Largest, k_Largest), std::length_error);
    EXPECT_EQ(clip::PoseTrack(0, k_Largest).FrameCount(), 0U);
    try
    {
        clip::PoseTrack const poses(20000000, 3);
        ADD_FAILURE() << "not refused";
    }
    catch (std::length_error const & error)
    {
        EXPECT_EQ(error.what(),
                  std::string("the clip has 20000000 frames of 3 positions: more than 16777216 altogether"));
    }
}

clip::Clip MakeClip(clip::Skeleton const & skeleton, std::vector<double> values)
{
    clip::Clip motion;
    motion.skeleton = skeleton;
    motion.frameTime = 0.1;
    motion.frameCount = values.size() / skeleton.channelCount;
    motion.values = std::move(values);
    return motion;
}

TEST(MakePoses, Position_channels_add_to_the_offset_and_angles_are_in_radians)
{
    clip::Skeleton skeleton;
    PutJoint(skeleton, "root", clip::k_NoParent, {1, 2, 3},
             {Channel::ZRotation, Channel::YPosition, Channel::XRotation, Channel::ZPosition, Channel::YRotation,
              Channel::XPosition});
    PutJoint(skeleton, "arm", 0, {4, 5, 6}, {Channel::YRotation, Channel::XPosition});
    PutEndSite(skeleton, 1, {7, 8, 9});
    clip::PoseTrack const poses =
        clip::MakePoses(MakeClip(skeleton, {10, 20, 30, 40, 50, 60, 70, 80, /**/ 180, -1, -90, -2, 720, -3, 0.5, -4}));
    ASSERT_EQ(poses.FrameCount(), 2U);
    ASSERT_EQ(poses.JointCount(), 3U);
    double const degree = std::numbers::pi / 180;
    EXPECT_EQ(poses.Frame(0)[0].translation, Vector(61, 22, 43));
    EXPECT_EQ(poses.Frame(0)[0].angles, Vector(30 * degree, 50 * degree, 10 * degree));
    EXPECT_EQ(poses.Frame(0)[1].translation, Vector(84, 5, 6));
    EXPECT_EQ(poses.Frame(0)[1].angles, Vector(0, 70 * degree, 0));
    EXPECT_EQ(poses.Frame(1)[0].translation, Vector(-2, 1, 1));
    EXPECT_EQ(poses.Frame(1)[0].angles, Vector(-90 * degree, 720 * degree, 180 * degree));
    EXPECT_EQ(poses.Frame(1)[1].translation, Vector(0, 5, 6));
    EXPECT_EQ(poses.Frame(1)[1].angles, Vector(0, 0.5 * degree, 0));
    for (std::size_t frame = 0; frame < 2; ++frame)
    {
        EXPECT_EQ(poses.Frame(frame)[2].translation, Vector(7, 8, 9));
        EXPECT_EQ(poses.Frame(frame)[2].angles, Vector(0, 0, 0));
        for (clip::JointPose const & pose : poses.Frame(frame))
        {
            EXPECT_EQ(pose.scaling, Vector(1, 1, 1));
        }
    }
}

/// For points as columns: T R S.
Eigen::Matrix4d ReferenceLocal(clip::Joint const & joint, clip::JointPose const & pose)
{
    Eigen::Affine3d const local = Eigen::Translation3d(ToEigen(pose.translation)) *
                                  ReferenceRotation(clip::JointRotation(joint).Order().name, pose.angles) *
                                  Eigen::Scaling(ToEigen(pose.scaling));
    return local.matrix();
}

/// Component by component: scales multiply axis by axis, rotations as rotations, and the place of a child is scaled and
/// turned with its parent.
struct ReferenceComponents
{
    Eigen::Vector3d scaling{1, 1, 1};
    Eigen::Quaterniond rotation = Eigen::Quaterniond::Identity();
    Eigen::Vector3d translation{0, 0, 0};

    Eigen::Matrix4d Matrix() const
    {
        return (Eigen::Translation3d(translation) * rotation * Eigen::Scaling(scaling)).matrix();
    }
    ReferenceComponents Under(ReferenceComponents const & parent) const
    {
        return {scaling.cwiseProduct(parent.scaling), parent.rotation * rotation,
                parent.translation + parent.rotation * parent.scaling.cwiseProduct(translation)};
    }
};

std::vector<Eigen::Matrix4d> ReferenceWorlds(clip::Skeleton const & skeleton, std::span<clip::JointPose const> frame,
                                             Composition composition)
{
    std::vector<Eigen::Matrix4d> matrices;
    std::vector<ReferenceComponents> components;
    for (std::size_t i = 0; i < skeleton.joints.size(); ++i)
    {
        clip::Joint const & joint = skeleton.joints[i];
        auto const parent = static_cast<std::size_t>(joint.parent);
        Eigen::Matrix4d const local = ReferenceLocal(joint, frame[i]);
        ReferenceComponents const own{ToEigen(frame[i].scaling),
                                      ReferenceRotation(clip::JointRotation(joint).Order().name, frame[i].angles),
                                      ToEigen(frame[i].translation)};
        bool const isRoot = joint.parent == clip::k_NoParent;
        components.push_back(isRoot ? own : own.Under(components[parent]));
        if (composition == Composition::ByComponent)
        {
            matrices.push_back(components.back().Matrix());
        }
        else
        {
            matrices.push_back(isRoot ? local : matrices[parent] * local);
        }
    }
    return matrices;
}

/// A tree of joints with channels in any order, two roots among them.
clip::Skeleton RandomTree(test_support::Random & random)
{
    clip::Skeleton skeleton;
    for (int i = 0; i < 12; ++i)
    {
        std::vector<Channel> channels = {Channel::XPosition, Channel::YPosition, Channel::ZPosition,
                                         Channel::XRotation, Channel::YRotation, Channel::ZRotation};
        for (std::size_t k = channels.size(); k > 1; --k)
        {
            std::swap(channels[k - 1], channels[static_cast<std::size_t>(random.Integer(0, static_cast<int>(k) - 1))]);
        }
        channels.resize(static_cast<std::size_t>(random.Integer(0, 6)));
        PutJoint(skeleton, std::to_string(i), i % 6 == 0 ? clip::k_NoParent : random.Integer(0, i - 1), {0, 0, 0},
                 channels);
    }
    return skeleton;
}

/// Scaled at every joint, mirrored now and then.
clip::PoseTrack RandomPoses(test_support::Random & random, std::size_t frameCount, std::size_t jointCount)
{
    auto const vector = [&random](double size)
    { return Vector(random.Uniform(-size, size), random.Uniform(-size, size), random.Uniform(-size, size)); };
    auto const factor = [&random] { return (random.Integer(0, 3) == 0 ? -1 : 1) * random.Uniform(0.5, 2.0); };
    clip::PoseTrack poses(frameCount, jointCount);
    for (std::size_t frame = 0; frame < frameCount; ++frame)
    {
        for (clip::JointPose & pose : poses.Frame(frame))
        {
            pose.translation = vector(10);
            pose.angles = vector(20);
            pose.scaling = {factor(), factor(), factor()};
        }
    }
    return poses;
}

class SkeletonPose : public testing::TestWithParam<Composition>
{
};

// The numbers grow by a factor of 2 a joint, so an error of a few roundings stays a few of them of the largest number.
TEST_P(SkeletonPose, Agrees_with_the_products_of_Eigen)
{
    test_support::Random random(11);
    for (int tree = 0; tree < 100; ++tree)
    {
        clip::Skeleton const skeleton = RandomTree(random);
        clip::PoseTrack const poses = RandomPoses(random, 3, skeleton.joints.size());
        clip::SkeletonPose pose(skeleton, GetParam());
        ASSERT_EQ(pose.JointCount(), skeleton.joints.size());
        // The third frame is set over what the others left.
        for (std::size_t frame = 0; frame < 3; ++frame)
        {
            pose.Set(poses.Frame(frame));
            std::vector<Eigen::Matrix4d> const worlds = ReferenceWorlds(skeleton, poses.Frame(frame), GetParam());
            for (std::size_t i = 0; i < worlds.size(); ++i)
            {
                Eigen::Matrix4d const local = ReferenceLocal(skeleton.joints[i], poses.Frame(frame)[i]);
                EXPECT_LT((ToEigen(*pose.Local(i).GetMatrix()) - local).norm(), 1e-13) << tree << ' ' << i;
                EXPECT_LT((ToEigen(*pose.World(i).GetMatrix()) - worlds[i]).norm(), 1e-13 * (1 + worlds[i].norm()))
                    << tree << ' ' << i;
            }
        }
    }
}

TEST_P(SkeletonPose, Keeps_what_was_set_in_the_local_transformations)
{
    test_support::Random random(12);
    clip::Skeleton const skeleton = RandomTree(random);
    clip::PoseTrack const poses = RandomPoses(random, 2, skeleton.joints.size());
    clip::SkeletonPose pose(skeleton, GetParam());
    pose.Set(poses.Frame(0));
    pose.Set(poses.Frame(1));
    for (std::size_t i = 0; i < pose.JointCount(); ++i)
    {
        clip::JointPose read;
        pose.Local(i).GetTranslation(read.translation);
        pose.Local(i).GetRotation(read.angles);
        pose.Local(i).GetScaling(read.scaling);
        EXPECT_TRUE(HaveSameBits(read, poses.Frame(1)[i])) << i;
        EXPECT_EQ(pose.Local(i).GetXYZRotOrder(), clip::JointRotation(skeleton.joints[i]).Order().order);
    }
}

TEST_P(SkeletonPose, A_mirrored_root_keeps_its_axes)
{
    clip::Skeleton skeleton;
    PutJoint(skeleton, "root", clip::k_NoParent, {0, 0, 0}, {Channel::ZRotation, Channel::XRotation});
    clip::SkeletonPose pose(skeleton, GetParam());
    for (Vector const & scaling : {Vector(1, 1, -1), Vector(-1, 1, 1), Vector(1, -1, 1), Vector(-1, -1, -1),
                                   Vector(-1, -1, 1), Vector(2, -3, 4), Vector(1, 1, 1)})
    {
        clip::JointPose root;
        root.translation = {1, 2, 3};
        root.angles = {0.5, 0, -0.75};
        root.scaling = scaling;
        pose.Set(std::array{root});
        Vector read;
        pose.World(0).GetScaling(read);
        for (int axis = 0; axis < 3; ++axis)
        {
            // A row of the matrix has a length that is off by a few roundings.
            EXPECT_NEAR(read.Get(axis), scaling.Get(axis), 4e-15) << scaling.X << scaling.Y << scaling.Z;
        }
        Eigen::Matrix4d const expected = ReferenceLocal(skeleton.joints[0], root);
        EXPECT_LT((ToEigen(*pose.World(0).GetMatrix()) - expected).norm(), 1e-14);
    }
}

INSTANTIATE_TEST_SUITE_P(BothWays, SkeletonPose, testing::Values(Composition::ByComponent, Composition::ByMatrix),
                         [](testing::TestParamInfo<Composition> const & composition)
                         { return composition.param == Composition::ByComponent ? "ByComponent" : "ByMatrix"; });

/// How far from perpendicular the rows of a matrix are: the largest product of two of them.
double ShearOf(C3DMatrix44Tpl<double> const & matrix)
{
    Eigen::Matrix3d const axes = ToEigen(matrix).topLeftCorner<3, 3>();
    return std::max({std::abs(axes.col(0).dot(axes.col(1))), std::abs(axes.col(0).dot(axes.col(2))),
                     std::abs(axes.col(1).dot(axes.col(2)))});
}

// Under a root scaled by (1, 2, 1) a child turned by an eighth about Z has, as a matrix, the rows (1, 2, 0) and
// (-1, 2, 0) times the square root of a half: their product is 3/2.
TEST(SkeletonPoseUnderScale, A_turned_child_shears_by_matrix_and_not_by_component)
{
    clip::Skeleton skeleton;
    PutJoint(skeleton, "root", clip::k_NoParent, {0, 0, 0}, {});
    PutJoint(skeleton, "child", 0, {0, 0, 0}, {Channel::ZRotation});
    PutEndSite(skeleton, 1, {0, 0, 0});
    std::array<clip::JointPose, 3> frame;
    frame[0].scaling = {1, 2, 1};
    frame[1].translation = {3, 5, 7};
    frame[1].angles = {0, 0, k_Quarter / 2};
    frame[2].translation = {1, 0, 0};

    clip::SkeletonPose byComponent(skeleton, Composition::ByComponent);
    byComponent.Set(frame);
    clip::SkeletonPose byMatrix(skeleton, Composition::ByMatrix);
    byMatrix.Set(frame);
    for (std::size_t i = 0; i < 3; ++i)
    {
        EXPECT_FALSE(byComponent.World(i).HasShearing()) << i;
        EXPECT_LT(ShearOf(*byComponent.World(i).GetMatrix()), 1e-15) << i;
        EXPECT_EQ(byMatrix.World(i).HasShearing(), i > 0) << i;
        EXPECT_NEAR(ShearOf(*byMatrix.World(i).GetMatrix()), i > 0 ? 1.5 : 0, 1e-15) << i;
        EXPECT_FALSE(byComponent.Local(i).HasShearing()) << i;
        EXPECT_FALSE(byMatrix.Local(i).HasShearing()) << i;
    }
    // The scale moves the child in both ways alike.
    Vector place;
    for (clip::SkeletonPose * const pose : {&byComponent, &byMatrix})
    {
        pose->World(1).GetMatrix()->GetTranslation(place);
        EXPECT_EQ(place, Vector(3, 10, 7));
    }
    // Its end site goes along the child's first axis: by component (1, 1, 0) of length 1, the scale of the root lying
    // across; by matrix (1, 2, 0).
    double const half = std::sqrt(0.5);
    byComponent.World(2).GetMatrix()->GetTranslation(place);
    EXPECT_LT((ToEigen(place) - Eigen::Vector3d(3 + half, 10 + half, 7)).norm(), 4e-15);
    byMatrix.World(2).GetMatrix()->GetTranslation(place);
    EXPECT_LT((ToEigen(place) - Eigen::Vector3d(3 + half, 10 + 2 * half, 7)).norm(), 4e-15);
}

TEST(SkeletonPoseUnderScale, An_even_scale_shears_in_neither_way)
{
    clip::Skeleton skeleton;
    PutJoint(skeleton, "root", clip::k_NoParent, {0, 0, 0}, {});
    PutJoint(skeleton, "child", 0, {0, 0, 0}, {Channel::ZRotation, Channel::XRotation, Channel::YRotation});
    std::array<clip::JointPose, 2> frame;
    frame[0].scaling = {3, 3, 3};
    frame[1].angles = {0.5, 0.25, -2};
    for (Composition const composition : {Composition::ByComponent, Composition::ByMatrix})
    {
        clip::SkeletonPose pose(skeleton, composition);
        pose.Set(frame);
        EXPECT_FALSE(pose.World(1).HasShearing());
    }
}

} // namespace
