#include "bake/smoothing.h"

#include "examples/made_clip.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <numbers>
#include <vector>

namespace
{

using Values = std::vector<double>;

constexpr double k_Rate = 60; ///< frames a second
constexpr double k_Turn = 2 * std::numbers::pi;

Values MakeValues(std::size_t frames, std::function<double(double)> const & valueOf)
{
    Values values;
    for (std::size_t i = 0; i < frames; ++i)
    {
        values.push_back(valueOf(static_cast<double>(i) / k_Rate));
    }
    return values;
}

/// A clip with one channel, smoothed.
Values Smooth(Values const & values, double hertz, clip::Channel channel = clip::Channel::XRotation)
{
    clip::Clip motion;
    clip::Joint joint;
    joint.channels = {channel};
    clip::AddJoint(motion.skeleton, joint);
    motion.frameTime = 1 / k_Rate;
    motion.frameCount = values.size();
    motion.values = values;
    bake::Smooth(motion, hertz);
    return motion.values;
}

double Largest(Values const & values)
{
    double largest = 0;
    for (double const value : values)
    {
        largest = std::max(largest, std::abs(value));
    }
    return largest;
}

double LargestDifference(Values const & one, Values const & other, std::size_t rim = 0)
{
    double largest = 0;
    for (std::size_t i = rim; i + rim < one.size(); ++i)
    {
        largest = std::max(largest, std::abs(one[i] - other[i]));
    }
    return largest;
}

TEST(Smoothing, A_tone_up_to_half_the_frequency_stays)
{
    struct Case
    {
        double hertz;
        double inner; ///< how far it may be off in size 1 away from the ends
        double atAll;
    };
    // A tone that ends at its peak has a corner there, with its mirror image, which is rounded off: for the slow ones
    // there is next to none.
    for (Case const & one : {Case{0.3, 1e-4, 0.002}, Case{1.0, 3e-4, 0.02}, Case{2.9, 2e-3, 0.16}})
    {
        for (double const phase : {0.0, 0.7, 1.571})
        {
            Values const tone = MakeValues(500, [&](double t) { return std::sin(k_Turn * one.hertz * t + phase); });
            Values const smooth = Smooth(tone, 6);
            EXPECT_LT(LargestDifference(tone, smooth, 60), one.inner) << one.hertz << ", " << phase;
            EXPECT_LT(LargestDifference(tone, smooth), one.atAll) << one.hertz << ", " << phase;
        }
    }
}

TEST(Smoothing, A_tone_at_the_frequency_or_above_goes)
{
    for (double const hertz : {6.0, 6.25, 9.0, 29.0})
    {
        Values const tone = MakeValues(481, [=](double t) { return std::sin(k_Turn * hertz * t); });
        EXPECT_LT(Largest(Smooth(tone, 6)), 0.01) << hertz;
    }
}

TEST(Smoothing, A_tremor_that_an_end_is_caught_in_fades_from_there)
{
    for (double const hertz : {7.0, 11.0, 29.0, 30.0})
    {
        Values const tone = MakeValues(481, [=](double t) { return std::cos(k_Turn * hertz * t); });
        Values const smooth = Smooth(tone, 6);
        EXPECT_EQ(smooth.front(), 1);
        EXPECT_EQ(smooth.back(), tone.back());
        EXPECT_GT(*std::min_element(smooth.begin(), smooth.begin() + 60), -0.3) << "it swings through a little";
        for (std::size_t i = 1; i <= 5; ++i)
        {
            EXPECT_LT(smooth[i], smooth[i - 1]) << hertz << ", " << i;
        }
        EXPECT_LT(LargestDifference(smooth, Values(481, 0), 10), 0.2) << "after a cycle of the frequency";
        EXPECT_LT(LargestDifference(smooth, Values(481, 0), 60), 0.004) << "after six of them";
    }
}

TEST(Smoothing, Between_half_the_frequency_and_all_of_it_the_gain_falls)
{
    double before = 40;
    for (double const hertz : {3.3, 4.5, 5.7})
    {
        Values const tone = MakeValues(1000, [=](double t) { return 40 * std::sin(k_Turn * hertz * t); });
        Values const smooth = Smooth(tone, 6);
        Values const inner(smooth.begin() + 200, smooth.end() - 200);
        double const gain = (1 + std::cos(std::numbers::pi * (hertz - 3) / 3)) / 2;
        EXPECT_NEAR(Largest(inner), 40 * gain, 0.5) << hertz;
        EXPECT_LT(Largest(inner), before);
        before = Largest(inner);
    }
}

TEST(Smoothing, Of_a_low_and_a_high_tone_the_low_one_is_left)
{
    Values const low = MakeValues(481, [](double t) { return 25 * std::sin(k_Turn * 1.25 * t); });
    Values both = low;
    for (std::size_t i = 0; i < both.size(); ++i)
    {
        both[i] += 5 * std::sin(k_Turn * 14 * static_cast<double>(i) / k_Rate);
    }
    EXPECT_LT(LargestDifference(Smooth(both, 5), low), 0.05);
}

TEST(Smoothing, A_constant_and_a_straight_line_stay)
{
    EXPECT_EQ(Smooth(Values(77, 12.345), 2), Values(77, 12.345));
    Values const line = MakeValues(240, [](double t) { return 100 - 182.5 * t; });
    EXPECT_LT(LargestDifference(Smooth(line, 0.5, clip::Channel::ZPosition), line), 1e-11);
    EXPECT_LT(LargestDifference(Smooth(line, 0.5), line), 1e-11) << "whole turns in small steps";
}

TEST(Smoothing, The_ends_stay_and_do_not_ring)
{
    // A tone on a slope, of which nothing is to go: reflected in a vertical mirror, or repeated from the start, it
    // would break at both ends.
    Values const walk = MakeValues(333, [](double t) { return 120 * t + 8 * std::sin(k_Turn * 0.8 * t); });
    Values const smooth = Smooth(walk, 6);
    EXPECT_EQ(smooth.front(), walk.front());
    EXPECT_EQ(smooth.back(), walk.back());
    EXPECT_LT(LargestDifference(walk, smooth), 0.06);
    for (std::size_t const i : {std::size_t{0}, walk.size() - 2})
    {
        EXPECT_NEAR(smooth[i + 1] - smooth[i], walk[i + 1] - walk[i], 0.03) << "the slope at the end";
    }
}

TEST(Smoothing, The_ends_run_on_into_the_clip_without_a_step)
{
    // Noise on a walk: what the filter makes of the frames beside the ends leads to the ends.
    Values walk = MakeValues(400, [](double t) { return 90 * t; });
    for (std::size_t i = 0; i < walk.size(); ++i)
    {
        walk[i] += std::sin(7.0 * static_cast<double>(i * i));
    }
    Values const smooth = Smooth(walk, 3);
    for (std::size_t i = 0; i + 1 < walk.size(); ++i)
    {
        EXPECT_NEAR(smooth[i + 1] - smooth[i], 1.5, 0.25) << i;
    }
    EXPECT_EQ(smooth.front(), walk.front());
    EXPECT_EQ(smooth.back(), walk.back());
}

TEST(Smoothing, Around_a_sudden_step_it_rings_for_two_cycles_and_no_longer)
{
    Values const step = MakeValues(600, [](double t) { return t < 5 ? 0.0 : 100.0; });
    Values const smooth = Smooth(step, 4, clip::Channel::XPosition);
    EXPECT_LT(*std::max_element(smooth.begin(), smooth.end()), 108) << "a gain that fell at once would give 109";
    EXPECT_GT(*std::min_element(smooth.begin(), smooth.end()), -8);
    for (std::size_t i = 0; i < smooth.size(); ++i)
    {
        if (i < 300 - 45 || i >= 300 + 45)
        {
            EXPECT_NEAR(smooth[i], step[i], 0.3) << i << ": it would be off by 1.7 at three quarters of a second";
        }
    }
}

/// What is to come out: without the line from end to end, the values are a sum of sines that are 0 at both ends, and
/// each has the gain of its frequency.
Values SmoothBySines(Values const & values, double hertz)
{
    std::size_t const last = values.size() - 1;
    auto const lineAt = [&](std::size_t i)
    { return values.front() + (values.back() - values.front()) * static_cast<double>(i) / static_cast<double>(last); };
    auto const sine = [last](std::size_t i, std::size_t k)
    { return std::sin(std::numbers::pi * static_cast<double>(i * k % (2 * last)) / static_cast<double>(last)); };
    Values smooth;
    for (std::size_t i = 0; i <= last; ++i)
    {
        smooth.push_back(lineAt(i));
    }
    for (std::size_t k = 1; k < last; ++k)
    {
        double product = 0;
        for (std::size_t i = 1; i < last; ++i)
        {
            product += (values[i] - lineAt(i)) * sine(i, k);
        }
        double const share = static_cast<double>(k) / static_cast<double>(2 * last) * k_Rate / hertz;
        double const gain = (1 + std::cos(std::numbers::pi * std::clamp(2 * share - 1, 0.0, 1.0))) / 2;
        for (std::size_t i = 1; i < last; ++i)
        {
            smooth[i] += 2 / static_cast<double>(last) * product * gain * sine(i, k);
        }
    }
    return smooth;
}

TEST(Smoothing, It_gives_every_sine_between_the_ends_the_gain_of_its_frequency)
{
    for (std::size_t const frames : {3U, 10U, 101U, 240U})
    {
        Values const values = MakeValues(
            frames, [](double t) { return 30 * t + 2 * std::cos(5 * t) + std::sin(25 * t) + std::sin(9e4 * t * t); });
        for (double const hertz : {0.01, 0.2, 0.5, 1.0, 3.0, 8.0, 20.0, 40.0})
        {
            double const difference = LargestDifference(Smooth(values, hertz), SmoothBySines(values, hertz));
            // A thousandth of the rest, which the padding, of finite length, may leave.
            EXPECT_LT(difference, 0.006) << frames << " frames, " << hertz << " hertz";
        }
    }
}

TEST(Smoothing, Angles_that_jump_by_a_whole_turn_do_so_in_the_same_place)
{
    Values const running = MakeValues(300, [](double t) { return 150 + 80 * t + 10 * std::sin(k_Turn * 0.7 * t); });
    Values wrapped = running;
    for (double & angle : wrapped)
    {
        angle -= 360 * std::round(angle / 360);
    }
    ASSERT_LT(*std::min_element(wrapped.begin(), wrapped.end()), -170);
    Values const expected = Smooth(running, 4);
    Values const smooth = Smooth(wrapped, 4);
    for (std::size_t i = 0; i < smooth.size(); ++i)
    {
        EXPECT_NEAR(smooth[i] - wrapped[i], expected[i] - running[i], 1e-10) << i;
    }
    EXPECT_LT(LargestDifference(smooth, wrapped), 0.1);
}

TEST(Smoothing, Positions_that_jump_are_no_angles)
{
    Values const step = MakeValues(300, [](double t) { return t < 2.5 ? 0.0 : 360.0; });
    EXPECT_EQ(Smooth(step, 4), step) << "as an angle it has turned nothing";
    Values const smooth = Smooth(step, 4, clip::Channel::YPosition);
    EXPECT_NEAR(smooth[150] + smooth[149], 360, 1e-6);
    EXPECT_GT(smooth[149], 100);
}

TEST(Smoothing, Clips_of_one_and_of_two_frames_stay)
{
    EXPECT_EQ(Smooth({12}, 1), Values{12});
    EXPECT_EQ(Smooth({12, -70}, 1), (Values{12, -70}));
    EXPECT_EQ(Smooth({}, 1), Values{});
}

TEST(Smoothing, Of_three_frames_the_middle_one_goes_to_the_line)
{
    Values const smooth = Smooth({10, 50, 30}, 0.5);
    EXPECT_EQ(smooth.front(), 10);
    EXPECT_EQ(smooth.back(), 30);
    EXPECT_NEAR(smooth[1], 20, 3);
}

TEST(Smoothing, Frequencies_beyond_the_frames_leave_all_and_the_lowest_leave_a_line)
{
    Values const walk = MakeValues(100, [](double t) { return 5 * std::sin(3000 * t * t); });
    EXPECT_LT(LargestDifference(Smooth(walk, 60), walk), 1e-12);
    EXPECT_LT(LargestDifference(Smooth(walk, 1e6), walk), 1e-12);
    Values const smooth = Smooth(walk, 1e-6);
    double const slope = (walk.back() - walk.front()) / 99;
    for (std::size_t i = 0; i < walk.size(); ++i)
    {
        EXPECT_NEAR(smooth[i], walk.front() + slope * static_cast<double>(i), 0.05) << i;
    }
}

TEST(Smoothing, Every_channel_is_smoothed_by_itself)
{
    clip::Clip motion;
    clip::Joint joint;
    joint.channels = {clip::Channel::XPosition, clip::Channel::ZRotation};
    int const root = clip::AddJoint(motion.skeleton, joint);
    joint.parent = root;
    joint.channels = {clip::Channel::YRotation};
    clip::AddJoint(motion.skeleton, joint);
    motion.frameTime = 1 / k_Rate;
    motion.frameCount = 200;
    std::vector<Values> const channels = {MakeValues(200, [](double t) { return 9 * t + std::sin(60 * t); }),
                                          MakeValues(200, [](double t) { return 30 * std::cos(90 * t); }),
                                          MakeValues(200, [](double t) { return 700 * t * t; })};
    for (std::size_t frame = 0; frame < 200; ++frame)
    {
        for (Values const & channel : channels)
        {
            motion.values.push_back(channel[frame]);
        }
    }
    bake::Smooth(motion, 5);
    std::vector<Values> const expected = {Smooth(channels[0], 5, clip::Channel::XPosition), Smooth(channels[1], 5),
                                          Smooth(channels[2], 5)};
    for (std::size_t frame = 0; frame < 200; ++frame)
    {
        for (std::size_t i = 0; i < channels.size(); ++i)
        {
            EXPECT_EQ(motion.Frame(frame)[i], expected[i][frame]);
        }
    }
}

} // namespace
