#include "clip/reader.h"
#include "clip/skeleton.h"

#include "examples/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

using clip::Channel;

class WalkTurn : public testing::Test
{
protected:
    std::size_t FindJoint(std::string const & name) const
    {
        std::vector<clip::Joint> const & joints = m_Clip.skeleton.joints;
        auto const found =
            std::find_if(joints.begin(), joints.end(), [&](clip::Joint const & joint) { return joint.name == name; });
        EXPECT_NE(found, joints.end()) << name;
        return static_cast<std::size_t>(found - joints.begin());
    }

    std::vector<double> Curve(std::string const & name, Channel channel) const
    {
        clip::Joint const & joint = m_Clip.skeleton.joints[FindJoint(name)];
        auto const place = std::find(joint.channels.begin(), joint.channels.end(), channel);
        EXPECT_NE(place, joint.channels.end());
        std::vector<double> curve;
        for (std::size_t frame = 0; frame < m_Clip.frameCount; ++frame)
        {
            curve.push_back(
                m_Clip.Frame(frame)[joint.firstChannel + static_cast<std::size_t>(place - joint.channels.begin())]);
        }
        return curve;
    }

    clip::Clip m_Clip = clip::ReadClip(std::filesystem::path(SHIPPED_CLIP));
};

TEST_F(WalkTurn, Is_what_its_generator_writes)
{
    ScratchFolder scratch;
    std::filesystem::path const fresh = scratch.Path() / "walk-turn.bvh";
    std::string const command = std::string(GENERATE_WALK_TURN_PROGRAM) + " > '" + fresh.string() + "'";
    ASSERT_EQ(std::system(command.c_str()), 0); // NOLINT(cert-env33-c,concurrency-mt-unsafe)
    EXPECT_TRUE(ReadText(fresh) == ReadText(SHIPPED_CLIP)) << "run generate_walk_turn and keep its output";
}

TEST_F(WalkTurn, Has_some_twenty_joints_and_eight_seconds)
{
    EXPECT_EQ(clip::CountJoints(m_Clip.skeleton), 21U);
    EXPECT_EQ(clip::FindEnds(m_Clip.skeleton).size(), 5U);
    EXPECT_EQ(m_Clip.frameCount, 240U);
    EXPECT_NEAR(m_Clip.Length(), 8, 0.001);
}

TEST_F(WalkTurn, Turns_two_whole_turns_and_counts_them_on)
{
    std::vector<double> const yaw = Curve("Hips", Channel::YRotation);
    EXPECT_NEAR(yaw.back() - yaw.front(), 720, 0.01);
    EXPECT_GT(*std::max_element(yaw.begin(), yaw.end()), 700);
    EXPECT_EQ(m_Clip.skeleton.joints[0].channels[3], Channel::YRotation) << "the vertical axis is the outermost";
}

TEST_F(WalkTurn, No_angle_jumps)
{
    constexpr double k_Most = 15; // degrees from one frame to the next
    for (clip::Joint const & joint : m_Clip.skeleton.joints)
    {
        for (std::size_t i = 0; i < joint.channels.size(); ++i)
        {
            for (std::size_t frame = 1; frame < m_Clip.frameCount; ++frame)
            {
                std::size_t const place = joint.firstChannel + i;
                ASSERT_LT(std::abs(m_Clip.Frame(frame)[place] - m_Clip.Frame(frame - 1)[place]), k_Most)
                    << joint.name << " channel " << i << " frame " << frame;
            }
        }
    }
}

TEST_F(WalkTurn, The_right_arm_passes_the_pole_of_its_order_up_and_down)
{
    clip::Joint const & shoulder = m_Clip.skeleton.joints[FindJoint("RightShoulder")];
    ASSERT_EQ(shoulder.channels, (std::vector<Channel>{Channel::ZRotation, Channel::XRotation, Channel::YRotation}));
    std::vector<double> const middle = Curve("RightShoulder", Channel::XRotation);
    EXPECT_GT(middle.front(), -60);
    EXPECT_LT(*std::min_element(middle.begin(), middle.end()), -120);
    EXPECT_GT(middle.back(), -60);
    int passages = 0;
    for (std::size_t frame = 1; frame < middle.size(); ++frame)
    {
        passages += (middle[frame] < -90) != (middle[frame - 1] < -90) ? 1 : 0;
    }
    EXPECT_EQ(passages, 2);
}

TEST_F(WalkTurn, The_other_two_angles_of_the_arm_are_not_zero_at_the_pole)
{
    std::vector<double> const middle = Curve("RightShoulder", Channel::XRotation);
    std::vector<double> const outer = Curve("RightShoulder", Channel::ZRotation);
    std::vector<double> const inner = Curve("RightShoulder", Channel::YRotation);
    for (std::size_t frame = 0; frame < middle.size(); ++frame)
    {
        if (std::abs(middle[frame] + 90) < 10)
        {
            EXPECT_GT(std::abs(outer[frame]), 5);
            EXPECT_GT(std::abs(inner[frame]), 5);
        }
    }
}

TEST_F(WalkTurn, The_feet_stay_on_the_ground_and_never_sink)
{
    clip::WorldPositions const positions = clip::ComputeWorldPositions(m_Clip);
    for (std::size_t frame = 0; frame < m_Clip.frameCount; ++frame)
    {
        double lowest = positions.Frame(frame)[0].Y;
        for (C3DVector3Tpl<double> const & place : positions.Frame(frame))
        {
            lowest = std::min(lowest, place.Y);
        }
        EXPECT_GT(lowest, 0) << frame;
        EXPECT_LT(lowest, 2) << frame;
    }
}

TEST_F(WalkTurn, Each_foot_stands_still_for_a_part_of_every_step)
{
    clip::WorldPositions const positions = clip::ComputeWorldPositions(m_Clip);
    for (char const * const name : {"LeftToe", "RightToe"})
    {
        std::size_t const toe = FindJoint(name);
        int still = 0;
        for (std::size_t frame = 1; frame < m_Clip.frameCount; ++frame)
        {
            C3DVector3Tpl<double> step;
            step.Sub(positions.Frame(frame)[toe], positions.Frame(frame - 1)[toe]);
            still += std::hypot(step.X, step.Y, step.Z) < 0.05 ? 1 : 0;
        }
        EXPECT_GT(still, 9 * 4) << name << ", which does nine steps";
    }
}

TEST_F(WalkTurn, The_figure_gets_ahead)
{
    std::vector<double> const ahead = Curve("Hips", Channel::ZPosition);
    EXPECT_GT(ahead.back() - ahead.front(), 150);
}

} // namespace
