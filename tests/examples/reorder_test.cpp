#include "bake/angle_motion.h"
#include "bake/reorder.h"
#include "clip/reader.h"
#include "clip/skeleton.h"
#include "clip/writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <numbers>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using bake::Extraction;
using clip::Channel;
using Vector = C3DVector3Tpl<double>;

clip::ChannelOrder FindOrder(std::string const & name)
{
    return *std::find_if(clip::k_ChannelOrders.begin(), clip::k_ChannelOrders.end(),
                         [&name](clip::ChannelOrder const & order) { return order.name == name; });
}

clip::Clip Nearest(clip::Clip const & motion, clip::ChannelOrder const & order)
{
    return bake::Reorder(motion, order, Extraction::Nearest).clip;
}

double GreatestDifference(clip::Clip const & one, clip::Clip const & other)
{
    clip::WorldPositions const a = clip::ComputeWorldPositions(one);
    clip::WorldPositions const b = clip::ComputeWorldPositions(other);
    EXPECT_EQ(a.All().size(), b.All().size());
    double greatest = 0;
    for (std::size_t i = 0; i < a.All().size(); ++i)
    {
        Vector way;
        way.Sub(a.All()[i], b.All()[i]);
        greatest = std::max(greatest, std::hypot(way.X, way.Y, way.Z));
    }
    return greatest;
}

/// The three angles of a joint in all frames, in degrees.
std::vector<Vector> Angles(clip::Clip const & motion, std::size_t joint)
{
    clip::JointRotation const rotation(motion.skeleton.joints[joint]);
    std::vector<Vector> angles;
    for (std::size_t frame = 0; frame < motion.frameCount; ++frame)
    {
        angles.push_back(rotation.Degrees(motion.Frame(frame)));
    }
    return angles;
}

/// Every joint has the three rotations in the order, and positions in their old places with their old values.
void ExpectReordered(clip::Clip const & motion, clip::Clip const & baked, clip::ChannelOrder const & order)
{
    ASSERT_EQ(baked.skeleton.joints.size(), motion.skeleton.joints.size());
    for (std::size_t i = 0; i < motion.skeleton.joints.size(); ++i)
    {
        clip::Joint const & before = motion.skeleton.joints[i];
        clip::Joint const & after = baked.skeleton.joints[i];
        std::string rotations;
        for (std::size_t channel = 0; channel < after.channels.size(); ++channel)
        {
            if (clip::IsRotation(after.channels[channel]))
            {
                rotations += "XYZ"[clip::AxisOf(after.channels[channel])];
                continue;
            }
            ASSERT_EQ(after.channels[channel], before.channels[channel]);
            for (std::size_t frame = 0; frame < motion.frameCount; ++frame)
            {
                ASSERT_EQ(baked.Frame(frame)[after.firstChannel + channel],
                          motion.Frame(frame)[before.firstChannel + channel]);
            }
        }
        EXPECT_EQ(rotations, after.isEndSite ? "" : order.name) << after.name;
        EXPECT_EQ(after.name, before.name);
        EXPECT_EQ(after.parent, before.parent);
    }
}

class ReorderInOrder : public testing::TestWithParam<clip::ChannelOrder>
{
protected:
    static void ExpectSameMotionWithoutJumps(clip::Clip const & motion)
    {
        bake::Reordering const baked = bake::Reorder(motion, GetParam(), Extraction::Nearest);
        ExpectReordered(motion, baked.clip, GetParam());
        EXPECT_LT(GreatestDifference(motion, baked.clip), 1e-9);
        EXPECT_EQ(bake::CountJumps(baked.clip, bake::k_HalfTurn), 0U);
        EXPECT_EQ(bake::CountJumps(baked.clip, bake::k_QuarterTurn), 0U);
        EXPECT_EQ(baked.repairs, 0U);
        bake::Reordering const plain = bake::Reorder(motion, GetParam(), Extraction::Plain);
        ExpectReordered(motion, plain.clip, GetParam());
        EXPECT_LT(GreatestDifference(motion, plain.clip), 1e-9);
    }

    static void ExpectReadsBackBitForBit(clip::Clip const & baked)
    {
        std::stringstream text;
        clip::WriteClip(text, baked);
        clip::Clip const again = clip::ReadClip(text, "baked.bvh");
        EXPECT_EQ(again.values, baked.values);
        for (std::size_t i = 0; i < baked.skeleton.joints.size(); ++i)
        {
            ASSERT_EQ(again.skeleton.joints[i].channels, baked.skeleton.joints[i].channels);
        }
    }

    clip::Clip m_Shipped = clip::ReadClip(std::filesystem::path(SHIPPED_CLIP));
};

TEST_P(ReorderInOrder, The_shipped_clip_moves_as_before_and_never_jumps)
{
    ExpectSameMotionWithoutJumps(m_Shipped);
}

TEST_P(ReorderInOrder, The_plain_extraction_of_the_shipped_clip_jumps)
{
    clip::Clip const plain = bake::Reorder(m_Shipped, GetParam(), Extraction::Plain).clip;
    EXPECT_GE(bake::CountJumps(plain, bake::k_HalfTurn), 2U);
    EXPECT_TRUE(
        std::all_of(plain.values.begin(), plain.values.end(), [](double value) { return std::isfinite(value); }));
    for (Vector const & angles : Angles(plain, 0))
    {
        for (double const angle : {angles.X, angles.Y, angles.Z})
        {
            ASSERT_LE(std::abs(angle), 180.0000001);
        }
    }
}

TEST_P(ReorderInOrder, Reads_back_bit_for_bit)
{
    ExpectReadsBackBitForBit(Nearest(m_Shipped, GetParam()));
}

// Where the vertical axis is the middle one, two whole turns pass the pole four times. Half of each turn then shows in
// the outer angles; what no order may lose is how far the angles have gone altogether.
TEST_P(ReorderInOrder, Whole_turns_are_kept)
{
    std::vector<Vector> const turn = Angles(Nearest(m_Shipped, GetParam()), 0);
    bool const isVerticalInTheMiddle = GetParam().name[1] == 'Y';
    Vector way;
    way.Sub(turn.back(), turn.front());
    if (isVerticalInTheMiddle)
    {
        EXPECT_GT(std::max({std::abs(way.X), std::abs(way.Y), std::abs(way.Z)}), 359);
    }
    else
    {
        EXPECT_NEAR(way.Y, 720, 0.01);
        EXPECT_NEAR(way.X, 0, 0.01);
        EXPECT_NEAR(way.Z, 0, 0.01);
    }
}

TEST_P(ReorderInOrder, Back_in_their_own_orders_the_angles_are_the_old_ones)
{
    clip::Clip const there = Nearest(m_Shipped, GetParam());
    clip::Clip const back = Nearest(there, FindOrder("ZXY"));
    std::size_t compared = 0;
    for (std::size_t joint = 0; joint < m_Shipped.skeleton.joints.size(); ++joint)
    {
        clip::Joint const & own = m_Shipped.skeleton.joints[joint];
        if (own.isEndSite || clip::JointRotation(own).Order().name != "ZXY")
        {
            continue;
        }
        std::vector<Vector> const expected = Angles(m_Shipped, joint);
        std::vector<Vector> const actual = Angles(back, joint);
        for (std::size_t frame = 0; frame < expected.size(); ++frame)
        {
            for (int axis = 0; axis < 3; ++axis)
            {
                ASSERT_NEAR(actual[frame].Get(axis), expected[frame].Get(axis), 1e-9) << own.name << ' ' << frame;
            }
        }
        ++compared;
    }
    EXPECT_EQ(compared, 16U);
}

TEST_P(ReorderInOrder, A_captured_clip_moves_as_before_and_never_jumps)
{
    if (!std::filesystem::exists(CAPTURED_CLIP))
    {
        GTEST_SKIP() << "no captured clip beside the project";
    }
    clip::Clip const motion = clip::ReadClip(std::filesystem::path(CAPTURED_CLIP));
    ExpectSameMotionWithoutJumps(motion);
    ExpectReadsBackBitForBit(Nearest(motion, GetParam()));
}

INSTANTIATE_TEST_SUITE_P(AllSix, ReorderInOrder, testing::ValuesIn(clip::k_ChannelOrders),
                         [](testing::TestParamInfo<clip::ChannelOrder> const & order)
                         { return std::string(order.param.name); });

/// A root with the channels given, then an arm without any and an end site.
clip::Clip Chain(std::string const & channels, std::vector<std::string> const & frames)
{
    std::string text = "HIERARCHY\nROOT Root\n{\nOFFSET 1 2 3\nCHANNELS " + channels +
                       "\nJOINT Arm\n{\nOFFSET 3 4 5\nCHANNELS 0\nEnd Site\n{\nOFFSET 7 -6 8\n}\n}\n}\nMOTION\n";
    text += "Frames: " + std::to_string(frames.size()) + "\nFrame Time: 0.1\n";
    for (std::string const & frame : frames)
    {
        text += frame + '\n';
    }
    return clip::ParseClip(text, "chain.bvh");
}

TEST(Reorder, Rotations_take_the_places_of_the_old_ones_and_missing_ones_stand_behind)
{
    clip::Clip const motion = Chain("4 Yrotation Zposition Xrotation Xposition", {"10 1 20 2", "11 3 21 4"});
    clip::Clip const baked = Nearest(motion, FindOrder("ZXY"));
    EXPECT_EQ(baked.skeleton.joints[0].channels,
              (std::vector<Channel>{Channel::ZRotation, Channel::ZPosition, Channel::XRotation, Channel::XPosition,
                                    Channel::YRotation}));
    EXPECT_EQ(baked.skeleton.joints[1].channels,
              (std::vector<Channel>{Channel::ZRotation, Channel::XRotation, Channel::YRotation}));
    EXPECT_TRUE(baked.skeleton.joints[2].channels.empty());
    EXPECT_EQ(baked.skeleton.channelCount, 8U);
    EXPECT_EQ(baked.Frame(1)[1], 3);
    EXPECT_EQ(baked.Frame(1)[3], 4);
    EXPECT_LT(GreatestDifference(motion, baked), 1e-13);
}

// 0.1 + 1e-17 is 0.1: from the sum the channel cannot be had back, nor can most others to the last bit.
TEST(Reorder, Positions_are_kept_bit_for_bit_beside_an_offset)
{
    clip::Clip motion = Chain("4 Xposition Yrotation Zposition Yposition", {"1e-17 3 0.7 -0.0", "0.3 4 -1e-17 1e12"});
    motion.skeleton.joints[0].offset = {0.1, -0.2, 0.3};
    clip::Clip const baked = Nearest(motion, FindOrder("ZXY"));
    EXPECT_EQ(baked.skeleton.joints[0].channels[3], Channel::YPosition);
    for (std::size_t const place : {0U, 2U, 3U})
    {
        EXPECT_EQ(baked.Frame(0)[place], motion.Frame(0)[place]);
        EXPECT_EQ(baked.Frame(1)[place], motion.Frame(1)[place]);
        EXPECT_EQ(std::signbit(baked.Frame(0)[place]), std::signbit(motion.Frame(0)[place]));
    }
}

TEST(Reorder, Poses_of_another_making_give_the_positions_beyond_the_offset)
{
    clip::Clip const motion = Chain("3 Zposition Xrotation Xposition", {"1 2 3"});
    clip::PoseTrack poses(2, 3);
    poses.Frame(0)[0].translation = {11, 0, 22};
    poses.Frame(1)[0].translation = {-11, 0, -22};
    poses.Frame(1)[0].angles = {0.5, 0, 0};
    clip::Clip const baked = bake::Reorder(motion, poses, FindOrder("XYZ"), Extraction::Nearest).clip;
    EXPECT_EQ(baked.frameCount, 2U);
    // The offset is (1, 2, 3).
    EXPECT_EQ(baked.Frame(0)[0], 19);
    EXPECT_EQ(baked.Frame(0)[2], 10);
    EXPECT_EQ(baked.Frame(1)[0], -25);
    EXPECT_EQ(baked.Frame(1)[2], -12);
    EXPECT_NEAR(Angles(baked, 0)[1].X, 0.5 * 180 / std::numbers::pi, 1e-13);
}

TEST(Reorder, A_clip_without_rotations_gets_zeros)
{
    clip::Clip const baked = Nearest(Chain("1 Yposition", {"5", "6"}), FindOrder("XZY"));
    EXPECT_EQ(baked.values, (std::vector<double>{5, 0, 0, 0, 0, 0, 0, 6, 0, 0, 0, 0, 0, 0}));
}

TEST(Reorder, Turns_with_which_a_clip_begins_are_kept)
{
    clip::Clip const motion = Chain("3 Zrotation Xrotation Yrotation", {"-725 3 1085", "-735 4 1095"});
    for (clip::ChannelOrder const & order : clip::k_ChannelOrders)
    {
        std::vector<Vector> const angles = Angles(Nearest(motion, order), 0);
        EXPECT_NEAR(angles[0].X, 3, 2) << order.name;
        EXPECT_NEAR(angles[0].Y, 1085, 2) << order.name;
        EXPECT_NEAR(angles[0].Z, -725, 2) << order.name;
    }
    std::vector<Vector> const plain = Angles(bake::Reorder(motion, FindOrder("YXZ"), Extraction::Plain).clip, 0);
    EXPECT_NEAR(plain[0].Y, 5, 2);
    EXPECT_NEAR(plain[0].Z, -5, 2);
}

TEST(Reorder, Wraps_in_the_clip_itself_are_unwound)
{
    clip::Clip const motion = Chain("3 Zrotation Xrotation Yrotation", {"0 0 170", "0 0 179", "0 0 -172", "0 0 -160"});
    EXPECT_EQ(bake::CountJumps(motion, bake::k_HalfTurn), 1U);
    std::vector<Vector> const angles = Angles(Nearest(motion, FindOrder("ZXY")), 0);
    EXPECT_NEAR(angles[2].Y, 188, 1e-12);
    EXPECT_NEAR(angles[3].Y, 200, 1e-12);
}

TEST(Reorder, A_sweep_through_the_pole_comes_back_as_it_was)
{
    std::vector<std::string> frames;
    for (int x = 60; x <= 120; ++x)
    {
        frames.push_back("12 " + std::to_string(x) + " -7");
    }
    bake::Reordering const baked =
        bake::Reorder(Chain("3 Zrotation Xrotation Yrotation", frames), FindOrder("ZXY"), Extraction::Nearest);
    std::vector<Vector> const angles = Angles(baked.clip, 0);
    for (std::size_t frame = 0; frame < angles.size(); ++frame)
    {
        EXPECT_NEAR(angles[frame].X, 60 + static_cast<double>(frame), 1e-9);
        EXPECT_NEAR(angles[frame].Y, -7, 1e-9);
        EXPECT_NEAR(angles[frame].Z, 12, 1e-9);
    }
}

// Quarter turns in every angle: each third frame or so lies on the pole, where an extraction with a distant target can
// give another rotation than the matrix.
TEST(Reorder, Quarter_turns_at_random_keep_their_positions_and_need_repairs)
{
    std::mt19937_64 random(3);
    std::vector<std::string> frames;
    for (int frame = 0; frame < 3000; ++frame)
    {
        std::string text;
        for (int channel = 0; channel < 3; ++channel)
        {
            text += std::to_string(90 * (static_cast<int>(random() % 5) - 2)) + ' ';
        }
        frames.push_back(text);
    }
    clip::Clip const motion = Chain("3 Zrotation Xrotation Yrotation", frames);
    for (clip::ChannelOrder const & order : clip::k_ChannelOrders)
    {
        bake::Reordering const baked = bake::Reorder(motion, order, Extraction::Nearest);
        EXPECT_LT(GreatestDifference(motion, baked.clip), 1e-9) << order.name;
        EXPECT_EQ(bake::CountJumps(baked.clip, bake::k_HalfTurn), 0U) << order.name;
        EXPECT_GT(baked.repairs, 0U) << order.name;
    }
}

} // namespace
