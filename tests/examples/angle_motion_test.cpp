#include "bake/angle_motion.h"
#include "clip/reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

/// Two joints with three rotations each and an end site.
clip::Clip TwoJoints(std::vector<std::string> const & frames)
{
    std::string text = "HIERARCHY\nROOT A\n{\nOFFSET 0 0 0\nCHANNELS 6 Xposition Yposition Zposition Zrotation "
                       "Xrotation Yrotation\nJOINT B\n{\nOFFSET 1 0 0\nCHANNELS 3 Zrotation Xrotation Yrotation\n"
                       "End Site\n{\nOFFSET 1 0 0\n}\n}\n}\nMOTION\nFrames: " +
                       std::to_string(frames.size()) + "\nFrame Time: 1\n";
    for (std::string const & frame : frames)
    {
        text += frame + '\n';
    }
    return clip::ParseClip(text, "two.bvh");
}

TEST(AngleMotion, A_step_of_the_limit_itself_is_no_jump)
{
    EXPECT_FALSE(bake::IsJump(0, 180, bake::k_HalfTurn));
    EXPECT_FALSE(bake::IsJump(0, 180.0000000001, bake::k_HalfTurn));
    EXPECT_TRUE(bake::IsJump(0, 180.00000001, bake::k_HalfTurn));
    EXPECT_TRUE(bake::IsJump(100, -80.1, bake::k_HalfTurn));
    EXPECT_FALSE(bake::IsJump(100, -79.9, bake::k_HalfTurn));
    EXPECT_TRUE(bake::IsJump(100, 9, bake::k_QuarterTurn));
}

TEST(AngleMotion, Each_angle_that_jumps_counts_and_positions_do_not)
{
    clip::Clip const motion = TwoJoints({"0 0 0 0 0 0 0 0 0", "900 0 900 181 0 -181 0 100 0", "0 0 0 0 0 0 0 0 0"});
    EXPECT_EQ(bake::CountJumps(motion, bake::k_HalfTurn), 4U);
    EXPECT_EQ(bake::CountJumps(motion, bake::k_QuarterTurn), 6U);
    EXPECT_EQ(bake::CountJumps(TwoJoints({"0 0 0 999 0 0 0 0 0"}), bake::k_HalfTurn), 0U);
}

TEST(AngleMotion, The_most_changed_joint_is_the_one_with_the_greatest_excess)
{
    clip::Clip const calm = TwoJoints({"0 0 0 0 0 0 0 0 0", "0 0 0 500 0 0 10 0 0"});
    clip::Clip const jumpy = TwoJoints({"0 0 0 0 0 0 0 0 0", "0 0 0 510 0 0 10 20 0"});
    EXPECT_EQ(bake::FindMostChanged(jumpy, calm), 1U);
}

TEST(AngleMotion, Without_an_excess_the_most_changed_joint_is_the_one_that_moves_most)
{
    clip::Clip const one = TwoJoints({"0 0 0 0 0 0 0 0 0", "0 0 0 5 0 0 0 6 0"});
    clip::Clip const other = TwoJoints({"0 0 0 0 0 0 0 0 0", "0 0 0 5.5 0 0 0 6 0"});
    EXPECT_EQ(bake::FindMostChanged(one, one), 1U);
    EXPECT_EQ(bake::FindMostChanged(other, one), 1U);
    clip::Clip const still = TwoJoints({"0 0 0 0 0 0 0 0 0"});
    EXPECT_EQ(bake::FindMostChanged(still, still), 0U);
}

} // namespace
