#include "bake/blend.h"

#include "clip/joint_rotation.h"
#include "clip/reader.h"
#include "clip/skeleton.h"

#include "examples/eigen_rotation.h"
#include "examples/pose_checks.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

namespace
{

using clip::Channel;
using Vector = C3DVector3Tpl<double>;

constexpr double k_Degree = std::numbers::pi / 180;

clip::Skeleton Chain(std::vector<Channel> const & rotations)
{
    clip::Skeleton skeleton;
    PutJoint(skeleton, "root", clip::k_NoParent, {1, 2, 3}, rotations);
    PutJoint(skeleton, "arm", 0, {4, 5, 6}, rotations);
    PutEndSite(skeleton, 1, {7, 8, 9});
    return skeleton;
}

std::vector<Channel> const k_Zxy = {Channel::ZRotation, Channel::XRotation, Channel::YRotation};
std::vector<Channel> const k_Xyz = {Channel::XRotation, Channel::YRotation, Channel::ZRotation};

/// A clip that consists of a skeleton alone, for poses of another making.
clip::Clip Holding(clip::Skeleton const & skeleton)
{
    clip::Clip motion;
    motion.skeleton = skeleton;
    return motion;
}

/// One joint with the channels given, and a blend of two poses of it.
clip::JointPose BlendOne(clip::JointPose const & from, clip::JointPose const & to, double share)
{
    clip::Skeleton skeleton;
    PutJoint(skeleton, "root", clip::k_NoParent, {0, 0, 0}, k_Zxy);
    clip::PoseTrack a(1, 1);
    clip::PoseTrack b(1, 1);
    a.Frame(0)[0] = from;
    b.Frame(0)[0] = to;
    clip::Clip const motion = Holding(skeleton);
    return bake::Blend(motion, a, motion, b, share).Frame(0)[0];
}

void ExpectNear(Vector const & actual, Vector const & expected, double tolerance)
{
    EXPECT_NEAR(actual.X, expected.X, tolerance);
    EXPECT_NEAR(actual.Y, expected.Y, tolerance);
    EXPECT_NEAR(actual.Z, expected.Z, tolerance);
}

TEST(AreSameSkeleton, Compares_names_parents_and_offsets_and_not_channels)
{
    clip::Skeleton const skeleton = Chain(k_Zxy);
    EXPECT_TRUE(bake::AreSameSkeleton(skeleton, skeleton));
    EXPECT_TRUE(bake::AreSameSkeleton(skeleton, Chain(k_Xyz)));
    EXPECT_TRUE(bake::AreSameSkeleton(skeleton, Chain({Channel::ZPosition})));
    std::vector<std::function<void(clip::Skeleton &)>> const changes = {
        [](clip::Skeleton & s) { s.joints[1].name = "leg"; },
        [](clip::Skeleton & s) { s.joints[2].parent = 0; },
        [](clip::Skeleton & s) { s.joints[1].parent = clip::k_NoParent; },
        [](clip::Skeleton & s) { s.joints[0].offset.X = std::nextafter(1.0, 2.0); },
        [](clip::Skeleton & s) { s.joints[1].offset.Y = -5; },
        [](clip::Skeleton & s) { s.joints[2].offset.Z = 10; },
        [](clip::Skeleton & s) { s.joints.pop_back(); },
        [](clip::Skeleton & s) {
            PutEndSite(s, 0, {0, 0, 0});
        },
        [](clip::Skeleton & s) { std::swap(s.joints[1], s.joints[2]); }};
    for (std::size_t i = 0; i < changes.size(); ++i)
    {
        clip::Skeleton other = skeleton;
        changes[i](other);
        EXPECT_FALSE(bake::AreSameSkeleton(skeleton, other)) << i;
        EXPECT_FALSE(bake::AreSameSkeleton(other, skeleton)) << i;
    }
}

TEST(Blend, Half_way_is_between)
{
    clip::JointPose const from{{0, 0, 0}, {0, 0, 0}, {1, 1, 1}};
    clip::JointPose const to{{2, 4, -6}, {0, 0, 0}, {3, 2, -1}};
    clip::JointPose const half = BlendOne(from, to, 0.5);
    ExpectNear(half.translation, {1, 2, -3}, 1e-15);
    ExpectNear(half.angles, {0, 0, 0}, 0);
    ExpectNear(half.scaling, {2, 1.5, 0}, 0);
    for (int axis = 0; axis < 3; ++axis)
    {
        clip::JointPose turned;
        turned.angles.Set(axis, 90 * k_Degree);
        Vector expected(0, 0, 0);
        expected.Set(axis, 45 * k_Degree);
        ExpectNear(BlendOne({}, turned, 0.5).angles, expected, 1e-15);
    }
}

TEST(Blend, The_share_is_that_of_the_second)
{
    clip::JointPose to;
    to.translation = {8, 0, 0};
    to.scaling = {5, 1, 1};
    clip::JointPose const quarter = BlendOne({}, to, 0.25);
    ExpectNear(quarter.translation, {2, 0, 0}, 1e-15);
    ExpectNear(quarter.scaling, {2, 1, 1}, 0);
    // The linear blend of two quaternions: a quarter of 90 degrees is some 21 and not 22.5.
    to = {};
    to.angles = {0, 0, 90 * k_Degree};
    double const half = 45 * k_Degree;
    EXPECT_NEAR(BlendOne({}, to, 0.25).angles.Z, 2 * std::atan2(0.25 * std::sin(half), 0.75 + 0.25 * std::cos(half)),
                1e-15);
}

// 100 and -100 degrees differ by 160 over the half turn and by 200 over zero.
TEST(Blend, Rotations_take_the_short_arc)
{
    clip::JointPose from;
    clip::JointPose to;
    from.angles = {0, 0, 100 * k_Degree};
    to.angles = {0, 0, -100 * k_Degree};
    clip::JointPose const half = BlendOne(from, to, 0.5);
    EXPECT_NEAR(half.angles.Z, 180 * k_Degree, 1e-14);
    // A whole turn is none, wherever it stands.
    from.angles = {0, 0, 10 * k_Degree};
    to.angles = {0, 0, (360 + 20) * k_Degree};
    EXPECT_NEAR(BlendOne(from, to, 0.5).angles.Z, 15 * k_Degree, 1e-14);
    EXPECT_NEAR(BlendOne(to, from, 0.5).angles.Z, (360 + 15) * k_Degree, 1e-14);
}

/// Poses like those of a clip.
clip::PoseTrack RandomPoses(test_support::Random & random, std::size_t frameCount, std::size_t jointCount)
{
    auto const vector = [&random](double size)
    { return Vector(random.Uniform(-size, size), random.Uniform(-size, size), random.Uniform(-size, size)); };
    clip::PoseTrack poses(frameCount, jointCount);
    for (std::size_t frame = 0; frame < frameCount; ++frame)
    {
        for (clip::JointPose & pose : poses.Frame(frame))
        {
            pose.translation = vector(100);
            pose.angles = vector(3);
            pose.scaling = vector(2);
        }
    }
    return poses;
}

/// The dual quaternion p + e d of a rotation and then a translation, in the other library's arithmetic.
struct DualQuaternion
{
    Eigen::Vector4d real; ///< as X, Y, Z, W
    Eigen::Vector4d dual;
};

DualQuaternion ReferenceDual(std::string_view order, clip::JointPose const & pose)
{
    Eigen::Quaterniond const rotation = ReferenceRotation(order, pose.angles);
    Eigen::Quaterniond const place(0, pose.translation.X, pose.translation.Y, pose.translation.Z);
    return {rotation.coeffs(), 0.5 * (place * rotation).coeffs()};
}

Eigen::Isometry3d ReferenceBlend(DualQuaternion const & a, DualQuaternion b, double share)
{
    if (a.real.dot(b.real) < 0)
    {
        b = {-b.real, -b.dual};
    }
    Eigen::Quaterniond const real((1 - share) * a.real + share * b.real);
    Eigen::Quaterniond const dual((1 - share) * a.dual + share * b.dual);
    Eigen::Vector3d const place = 2 * (dual * real.conjugate()).vec() / real.squaredNorm();
    return Eigen::Translation3d(place) * real.normalized();
}

Eigen::Isometry3d Rigid(std::string_view order, clip::JointPose const & pose)
{
    return Eigen::Translation3d(ToEigen(pose.translation)) * ReferenceRotation(order, pose.angles);
}

TEST(Blend, Agrees_with_the_direct_computation_also_between_orders)
{
    test_support::Random random(21);
    clip::Clip const a = Holding(Chain(k_Zxy));
    clip::Clip const b = Holding(Chain(k_Xyz));
    clip::PoseTrack const from = RandomPoses(random, 300, 3);
    clip::PoseTrack const to = RandomPoses(random, 300, 3);
    for (double const share : {0.0, 0.125, 0.3, 0.5, 0.9, 1.0})
    {
        clip::PoseTrack const blend = bake::Blend(a, from, b, to, share);
        for (std::size_t frame = 0; frame < 300; ++frame)
        {
            for (std::size_t i = 0; i < 2; ++i)
            {
                clip::JointPose const & one = from.Frame(frame)[i];
                clip::JointPose const & other = to.Frame(frame)[i];
                clip::JointPose const & result = blend.Frame(frame)[i];
                Eigen::Isometry3d const expected =
                    ReferenceBlend(ReferenceDual("ZXY", one), ReferenceDual("XYZ", other), share);
                // Between opposite rotations the sum is short, and its error is that of its parts by its length.
                EXPECT_LT((Rigid("ZXY", result).matrix() - expected.matrix()).norm(), 1e-9) << share << ' ' << frame;
                Eigen::Vector3d const scaling = (1 - share) * ToEigen(one.scaling) + share * ToEigen(other.scaling);
                EXPECT_LT((ToEigen(result.scaling) - scaling).norm(), 1e-15);
            }
        }
    }
}

TEST(Blend, Shares_of_none_and_all_give_the_clips_back)
{
    clip::Clip const motion = clip::ReadClip(std::filesystem::path(SHIPPED_CLIP));
    clip::PoseTrack const poses = clip::MakePoses(motion);
    clip::PoseTrack reversed(poses.FrameCount(), poses.JointCount());
    for (std::size_t frame = 0; frame < poses.FrameCount(); ++frame)
    {
        std::span<clip::JointPose const> const from = poses.Frame(poses.FrameCount() - 1 - frame);
        std::copy(from.begin(), from.end(), reversed.Frame(frame).begin());
    }
    clip::PoseTrack const none = bake::Blend(motion, poses, motion, reversed, 0);
    clip::PoseTrack const all = bake::Blend(motion, reversed, motion, poses, 1);
    for (std::size_t frame = 0; frame < poses.FrameCount(); ++frame)
    {
        for (std::size_t i = 0; i < poses.JointCount(); ++i)
        {
            clip::JointPose const & expected = poses.Frame(frame)[i];
            ExpectNear(none.Frame(frame)[i].translation, expected.translation, 1e-12);
            ExpectNear(none.Frame(frame)[i].angles, expected.angles, 1e-12);
            EXPECT_TRUE(HaveSameBits(none.Frame(frame)[i].scaling, {1, 1, 1}));
            EXPECT_TRUE(HaveSameBits(all.Frame(frame)[i].scaling, {1, 1, 1}));
            std::string_view const order = clip::JointRotation(motion.skeleton.joints[i]).Order().name;
            EXPECT_LT((Rigid(order, all.Frame(frame)[i]).matrix() - Rigid(order, expected).matrix()).norm(), 1e-11);
        }
    }
}

// A root alone may be scaled in saved poses: a rounded share must not make a scale of another joint out of two ones.
TEST(Blend, Scales_of_one_stay_one_whatever_the_share)
{
    test_support::Random random(22);
    for (int i = 0; i < 2000; ++i)
    {
        EXPECT_TRUE(HaveSameBits(BlendOne({}, {}, random.Uniform(0.0, 1.0)).scaling, {1, 1, 1}));
    }
}

TEST(Blend, Is_as_long_as_the_shorter_one)
{
    test_support::Random random(23);
    clip::Clip const motion = Holding(Chain(k_Zxy));
    clip::PoseTrack const three = RandomPoses(random, 3, 3);
    clip::PoseTrack const five = RandomPoses(random, 5, 3);
    EXPECT_EQ(bake::Blend(motion, three, motion, five, 0.5).FrameCount(), 3U);
    EXPECT_EQ(bake::Blend(motion, five, motion, three, 0.5).FrameCount(), 3U);
    EXPECT_EQ(bake::Blend(motion, five, motion, five, 0.5).FrameCount(), 5U);
}

TEST(Blend, The_other_order_of_channels_is_read_and_the_own_one_written)
{
    clip::Clip const a = Holding(Chain(k_Zxy));
    clip::Clip const b = Holding(Chain(k_Xyz));
    clip::PoseTrack poses(1, 3);
    poses.Frame(0)[0].angles = {0.3, 0.5, -0.4};
    clip::JointPose const all = bake::Blend(a, clip::PoseTrack(1, 3), b, poses, 1).Frame(0)[0];
    EXPECT_LT((Rigid("ZXY", all).matrix() - Rigid("XYZ", poses.Frame(0)[0]).matrix()).norm(), 1e-14);
    EXPECT_GT((Rigid("XYZ", all).matrix() - Rigid("XYZ", poses.Frame(0)[0]).matrix()).norm(), 0.01);
    clip::JointPose const none = bake::Blend(b, poses, a, clip::PoseTrack(1, 3), 0).Frame(0)[0];
    ExpectNear(none.angles, {0.3, 0.5, -0.4}, 1e-15);
}

// Two figures that turn on and on, the second one 40 degrees ahead.
TEST(Blend, Angles_go_on_over_whole_turns)
{
    clip::Clip const motion = Holding(Chain(k_Zxy));
    clip::PoseTrack a(200, 3);
    clip::PoseTrack b(200, 3);
    for (std::size_t frame = 0; frame < 200; ++frame)
    {
        double const angle = 7 * static_cast<double>(frame) - 1000;
        a.Frame(frame)[0].angles = {0, 0, angle * k_Degree};
        b.Frame(frame)[0].angles = {0, 0, (angle + 40) * k_Degree};
        a.Frame(frame)[1].angles = {0, -angle * k_Degree, 0};
        b.Frame(frame)[1].angles = {0, (40 - angle) * k_Degree, 0};
    }
    clip::PoseTrack const blend = bake::Blend(motion, a, motion, b, 0.5);
    for (std::size_t frame = 0; frame < 200; ++frame)
    {
        double const angle = 7 * static_cast<double>(frame) - 1000;
        ExpectNear(blend.Frame(frame)[0].angles, {0, 0, (angle + 20) * k_Degree}, 1e-12);
        ExpectNear(blend.Frame(frame)[1].angles, {0, (20 - angle) * k_Degree, 0}, 1e-12);
    }
}

TEST(Blend, Wraps_in_the_clips_are_unwound)
{
    clip::Clip const motion = Holding(Chain(k_Zxy));
    std::array<double, 4> const from = {170, 179, -172, -160};
    std::array<double, 4> const to = {-170, -161, 208, 220};
    clip::PoseTrack a(4, 3);
    clip::PoseTrack b(4, 3);
    for (std::size_t frame = 0; frame < 4; ++frame)
    {
        a.Frame(frame)[1].angles = {0, from[frame] * k_Degree, 0};
        b.Frame(frame)[1].angles = {0, to[frame] * k_Degree, 0};
    }
    clip::PoseTrack const blend = bake::Blend(motion, a, motion, b, 0.5);
    std::array<double, 4> const expected = {180, 189, 198, 210};
    for (std::size_t frame = 0; frame < 4; ++frame)
    {
        ExpectNear(blend.Frame(frame)[1].angles, {0, expected[frame] * k_Degree, 0}, 1e-14);
    }
}

// Where an extraction nearest to a target can give another rotation.
TEST(Blend, Keeps_the_rotation_at_the_poles)
{
    test_support::Random random(24);
    for (std::vector<Channel> const & channels : {k_Zxy, k_Xyz})
    {
        clip::Clip const motion = Holding(Chain(channels));
        clip::PoseTrack poses(3000, 3);
        for (std::size_t frame = 0; frame < poses.FrameCount(); ++frame)
        {
            auto const quarters = [&random] { return 90 * k_Degree * random.Integer(-2, 2); };
            poses.Frame(frame)[0].angles = {quarters(), quarters(), quarters()};
        }
        clip::PoseTrack const blend = bake::Blend(motion, poses, motion, poses, 0.5);
        std::string_view const order = clip::JointRotation(motion.skeleton.joints[0]).Order().name;
        for (std::size_t frame = 0; frame < poses.FrameCount(); ++frame)
        {
            EXPECT_LT(
                (Rigid(order, blend.Frame(frame)[0]).matrix() - Rigid(order, poses.Frame(frame)[0]).matrix()).norm(),
                1e-9)
                << frame;
        }
    }
}

} // namespace
