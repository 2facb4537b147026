#include "cull/foot.h"

#include "clip/pose.h"
#include "clip/reader.h"

#include "examples/made_clip.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <vector>

namespace
{

using clip::Channel;
using cull::Foot;
using Vector = C3DVector3Tpl<double>;

void ExpectNear(Vector const & actual, Vector const & expected, double tolerance)
{
    EXPECT_NEAR(actual.X, expected.X, tolerance);
    EXPECT_NEAR(actual.Y, expected.Y, tolerance);
    EXPECT_NEAR(actual.Z, expected.Z, tolerance);
}

/// "ankle>toe" of every foot.
std::vector<std::string> NamesOfFeet(clip::Skeleton const & skeleton)
{
    std::vector<std::string> names;
    for (Foot const & foot : cull::FindFeet(skeleton))
    {
        names.push_back(skeleton.joints[foot.ankle].name + '>' + skeleton.joints[foot.toe].name);
    }
    return names;
}

/// A figure 100 high whose leg ends at the ankle, 10 above the ground.
struct Figure
{
    MadeClip made;
    int hips = made.Add("hips", MadeClip::k_Root, {0, 60, 0});
    int head = made.AddEndSite(hips, {0, 40, 0});
    int knee = made.Add("knee", hips, {5, -25, 0});
    int ankle = made.Add("ankle", knee, {0, -25, 0}, {Channel::YRotation});
};

TEST(CullFoot, The_shipped_figure_has_a_left_and_a_right_foot)
{
    clip::Clip const motion = clip::ReadClip(std::filesystem::path(SHIPPED_CLIP));
    EXPECT_EQ(NamesOfFeet(motion.skeleton),
              (std::vector<std::string>{"LeftAnkle>LeftToe_end", "RightAnkle>RightToe_end"}));
    Foot const foot = cull::FindFeet(motion.skeleton).front();
    // From the ankle the toe lies 7.5 down and 19 in front.
    double const width = std::hypot(7.5, 19) / 5;
    ExpectNear(foot.heel[0], {width, -7.5, 0}, 1e-12);
    ExpectNear(foot.heel[1], {-width, -7.5, 0}, 1e-12);
}

TEST(CullFoot, Reaches_up_level_bones_as_far_as_the_ankle)
{
    Figure figure;
    int const ball = figure.made.Add("ball", figure.ankle, {0, -6, 12});
    int const toes = figure.made.Add("toes", ball, {0, -2, 4});
    figure.made.AddEndSite(toes, {0, -2, 4});
    EXPECT_EQ(NamesOfFeet(figure.made.Get().skeleton), std::vector<std::string>{"ankle>toes_end"});
}

TEST(CullFoot, Reaches_up_at_least_one_bone_and_not_past_a_steep_one)
{
    Figure figure;
    int const ball = figure.made.Add("ball", figure.ankle, {0, -8, 7.9});
    figure.made.AddEndSite(ball, {0, -2, 1});
    EXPECT_EQ(NamesOfFeet(figure.made.Get().skeleton), std::vector<std::string>{"ball>ball_end"});
}

TEST(CullFoot, Reaches_no_higher_than_a_fifth_of_the_figure)
{
    // A level thigh is none of the foot.
    for (double const height : {19.0, 21.0})
    {
        MadeClip made;
        int const hips = made.Add("hips", MadeClip::k_Root, {0, height, 0});
        made.AddEndSite(hips, {0, 100 - height, 0});
        int const leg = made.Add("leg", hips, {0, 0, 50});
        made.AddEndSite(leg, {0, -height, 0});
        EXPECT_EQ(NamesOfFeet(made.Get().skeleton),
                  std::vector<std::string>{height < 20 ? "hips>leg_end" : "leg>leg_end"});
    }
}

TEST(CullFoot, Toes_are_the_ends_a_twentieth_above_the_lowest)
{
    for (double const higher : {4.0, 4.9, 5.1, 30.0})
    {
        Figure figure;
        figure.made.AddEndSite(figure.ankle, {0, -10, 20});
        int const knee = figure.made.Add("other knee", figure.hips, {-5, -25, 0});
        int const ankle = figure.made.Add("other ankle", knee, {0, -25 + higher, 0});
        figure.made.AddEndSite(ankle, {0, -10, 20});
        EXPECT_EQ(NamesOfFeet(figure.made.Get().skeleton).size(), higher < 5 ? 2U : 1U);
    }
}

TEST(CullFoot, The_farthest_of_several_toes_counts)
{
    Figure figure;
    figure.made.AddEndSite(figure.ankle, {-2, -10, 18});
    int const longest = figure.made.AddEndSite(figure.ankle, {2, -10, 20});
    figure.made.AddEndSite(figure.ankle, {0, -10, 19});
    std::vector<Foot> const feet = cull::FindFeet(figure.made.Get().skeleton);
    ASSERT_EQ(feet.size(), 1U);
    EXPECT_EQ(feet[0].toe, static_cast<std::size_t>(longest));
}

TEST(CullFoot, The_heel_lies_square_to_the_foot_at_the_height_of_the_toe)
{
    Figure figure;
    figure.made.AddEndSite(figure.ankle, {12, -10, 16});
    Foot const foot = cull::FindFeet(figure.made.Get().skeleton).at(0);
    double const width = std::hypot(12, 10, 16) / 5;
    ExpectNear(foot.heel[0], {0.8 * width, -10, -0.6 * width}, 1e-12);
    ExpectNear(foot.heel[1], {-0.8 * width, -10, 0.6 * width}, 1e-12);
}

TEST(CullFoot, A_leg_without_a_foot_is_wide_at_its_upper_end)
{
    Figure figure;
    figure.made.AddEndSite(figure.ankle, {0, -10, 0});
    Foot const straight = cull::FindFeet(figure.made.Get().skeleton).at(0);
    ExpectNear(straight.heel[0], {2, 0, 0}, 1e-12);
    ExpectNear(straight.heel[1], {-2, 0, 0}, 1e-12);
    Figure slanted;
    slanted.made.AddEndSite(slanted.ankle, {0, -10, 10});
    EXPECT_EQ(cull::FindFeet(slanted.made.Get().skeleton).at(0).heel[0].Y, 0);
    Figure flat;
    flat.made.AddEndSite(flat.ankle, {0, -10, 10.1});
    EXPECT_EQ(cull::FindFeet(flat.made.Get().skeleton).at(0).heel[0].Y, -10);
}

TEST(CullFoot, What_has_no_bone_has_no_foot)
{
    MadeClip lonely;
    lonely.Add("root", MadeClip::k_Root, {0, 0, 0});
    EXPECT_TRUE(cull::FindFeet(lonely.Get().skeleton).empty());
    MadeClip empty;
    empty.AddEndSite(empty.Add("root", MadeClip::k_Root, {0, 0, 0}), {0, 0, 0});
    EXPECT_TRUE(cull::FindFeet(empty.Get().skeleton).empty());
}

TEST(CullFoot, A_sole_moves_with_its_ankle)
{
    Figure figure;
    figure.made.AddEndSite(figure.ankle, {0, -10, 20});
    // Left as it is; then 100 to the side and the ankle turned by a quarter to the left.
    figure.made.AddFrame({0, 0, 0, 0});
    figure.made.AddFrame({100, 0, 0, 90});
    clip::Clip const & motion = figure.made.Get();
    std::vector<Foot> const feet = cull::FindFeet(motion.skeleton);
    std::vector<cull::SoleMotion> const soles = cull::ComputeSoles(feet, motion.skeleton, clip::MakePoses(motion));
    ASSERT_EQ(soles.size(), 1U);
    ASSERT_EQ(soles[0].size(), 2U);
    double const width = std::hypot(10, 20) / 5;
    ExpectNear(soles[0][0][0], {5, 0, 20}, 1e-12);
    ExpectNear(soles[0][0][1], {5 + width, 0, 0}, 1e-12);
    ExpectNear(soles[0][0][2], {5 - width, 0, 0}, 1e-12);
    ExpectNear(soles[0][1][0], {125, 0, 0}, 1e-12);
    ExpectNear(soles[0][1][1], {105, 0, -width}, 1e-12);
    ExpectNear(soles[0][1][2], {105, 0, width}, 1e-12);
}

} // namespace
