#include "clip/whole_turns.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{

using Angles = std::vector<double>;

TEST(WholeTurns, Of_steps_up_to_half_a_turn_there_are_none)
{
    EXPECT_EQ(clip::FindJumpedTurns(Angles{}), Angles{});
    EXPECT_EQ(clip::FindJumpedTurns(Angles{700}), Angles{0});
    EXPECT_EQ(clip::FindJumpedTurns(Angles{0, 180, 360, 540, 360, 180, 0}), Angles(7, 0));
}

TEST(WholeTurns, A_step_over_half_a_turn_is_a_jump_in_either_direction)
{
    EXPECT_EQ(clip::FindJumpedTurns(Angles{170, 179, -172, -160}), (Angles{0, 0, -360, -360}));
    EXPECT_EQ(clip::FindJumpedTurns(Angles{-170, 175, -179, 181}), (Angles{0, 360, 0, 360}));
    EXPECT_EQ(clip::FindJumpedTurns(Angles{0, 180.5}), (Angles{0, 360}));
    EXPECT_EQ(clip::FindJumpedTurns(Angles{0, -180.5}), (Angles{0, -360}));
}

TEST(WholeTurns, Several_at_once_count_and_add_up)
{
    EXPECT_EQ(clip::FindJumpedTurns(Angles{5, 725, 730, 10, 1090}), (Angles{0, 720, 720, 0, 1080}));
}

} // namespace
