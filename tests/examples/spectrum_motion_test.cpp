#include "spectrum/amplitudes.h"
#include "spectrum/motion_spectra.h"
#include "spectrum/table.h"

#include "clip/reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

namespace
{

constexpr double k_Turn = 2 * std::numbers::pi;
constexpr double k_Rate = 40;
constexpr std::size_t k_Frames = 400;

/// A root that moves along its axes, an arm that turns about Z and X, and a still leg with a comma in its name.
clip::Clip Figure(std::function<std::vector<double>(double)> const & valuesAt)
{
    clip::Clip motion = clip::ParseClip(R"(HIERARCHY
ROOT Root
{
  OFFSET 0 10 0
  CHANNELS 3 Xposition Yposition Zposition
  JOINT Arm
  {
    OFFSET 1 5 0
    CHANNELS 2 Zrotation Xrotation
    End Site
    {
      OFFSET 0 -4 0
    }
  }
  JOINT Leg,Left
  {
    OFFSET 0 -10 0
  }
}
MOTION
Frames: 1
Frame Time: 0.025
0 0 0 0 0
)",
                                        "figure.bvh");
    motion.frameCount = k_Frames;
    motion.values.clear();
    for (std::size_t frame = 0; frame < k_Frames; ++frame)
    {
        std::vector<double> const values = valuesAt(static_cast<double>(frame) / k_Rate);
        motion.values.insert(motion.values.end(), values.begin(), values.end());
    }
    return motion;
}

double PeakHertz(spectrum::MotionSpectra const & spectra, std::vector<double> const & amplitudes)
{
    auto const peak = spectrum::FindPeak(amplitudes, spectra.firstTold);
    return peak ? static_cast<double>(*peak) * spectra.frequencyStep : -1;
}

TEST(MotionSpectra, Angles_are_in_degrees_about_each_axis_over_hertz)
{
    clip::Clip const motion = Figure(
        [](double t) -> std::vector<double> {
            return {0, 0, 0, 30 * std::sin(k_Turn * 2 * t) + 90 * t, 5 * std::sin(k_Turn * 3.5 * t)};
        });
    spectrum::MotionSpectra const spectra = spectrum::ComputeSpectra(motion, 1);
    EXPECT_EQ(spectra.angles.joint, 1U);
    EXPECT_NEAR(static_cast<double>(spectra.angles.all.size() - 1) * spectra.frequencyStep, k_Rate / 2, 1e-9);
    EXPECT_NEAR(PeakHertz(spectra, spectra.angles.axes[2]), 2, 1.01 * spectra.frequencyStep);
    EXPECT_NEAR(*std::max_element(spectra.angles.axes[2].begin(), spectra.angles.axes[2].end()), 30, 0.6);
    EXPECT_NEAR(PeakHertz(spectra, spectra.angles.axes[0]), 3.5, 1.01 * spectra.frequencyStep);
    EXPECT_NEAR(*std::max_element(spectra.angles.axes[0].begin(), spectra.angles.axes[0].end()), 5, 0.1);
    EXPECT_EQ(PeakHertz(spectra, spectra.angles.axes[1]), -1) << "the joint does not turn about Y";
}

TEST(MotionSpectra, Jumps_by_whole_turns_are_no_motion)
{
    auto const swing = [](double t) { return 170 + 30 * std::sin(k_Turn * 1.5 * t); };
    clip::Clip const running = Figure(
        [&](double t) -> std::vector<double> {
            return {0, 0, 0, swing(t), 0};
        });
    clip::Clip const wrapped = Figure(
        [&](double t) -> std::vector<double> {
            return {0, 0, 0, std::remainder(swing(t), 360), 0};
        });
    ASSERT_NE(running.values, wrapped.values);
    std::vector<double> const one = spectrum::ComputeSpectra(running, 1).angles.axes[2];
    std::vector<double> const other = spectrum::ComputeSpectra(wrapped, 1).angles.axes[2];
    for (std::size_t i = 0; i < one.size(); ++i)
    {
        EXPECT_NEAR(one[i], other[i], 1e-9);
    }
}

TEST(MotionSpectra, Paths_are_those_of_the_ends_in_world_space_whatever_the_axes)
{
    clip::Clip const motion = Figure(
        [](double t) -> std::vector<double>
        {
            double const sway = std::sin(k_Turn * 1.25 * t);
            return {3 * sway + 50 * t, 0, 4 * sway, 0, 0};
        });
    spectrum::MotionSpectra const spectra = spectrum::ComputeSpectra(motion, 0);
    ASSERT_EQ(spectra.paths.size(), 2U) << "the arm's end site and the leg";
    EXPECT_EQ(motion.skeleton.joints[spectra.paths[0].joint].name, "Arm_end");
    EXPECT_EQ(motion.skeleton.joints[spectra.paths[1].joint].name, "Leg,Left");
    for (spectrum::Curve const & path : spectra.paths)
    {
        EXPECT_NEAR(PeakHertz(spectra, path.all), 1.25, 1.01 * spectra.frequencyStep)
            << "not twice that, as speed has it";
        EXPECT_NEAR(*std::max_element(path.axes[0].begin(), path.axes[0].end()), 3, 0.1);
        EXPECT_NEAR(*std::max_element(path.axes[2].begin(), path.axes[2].end()), 4, 0.1);
        EXPECT_NEAR(*std::max_element(path.all.begin(), path.all.end()), 5, 0.1);
        EXPECT_EQ(PeakHertz(spectra, path.axes[1]), -1);
    }
}

TEST(MotionSpectra, An_end_swings_with_the_joints_above_it)
{
    clip::Clip const motion = Figure(
        [](double t) -> std::vector<double> {
            return {0, 0, 0, 0, 2 * std::sin(k_Turn * 2.5 * t)};
        });
    spectrum::MotionSpectra const spectra = spectrum::ComputeSpectra(motion, 0);
    EXPECT_NEAR(PeakHertz(spectra, spectra.paths[0].axes[2]), 2.5, 1.01 * spectra.frequencyStep);
    EXPECT_NEAR(*std::max_element(spectra.paths[0].axes[2].begin(), spectra.paths[0].axes[2].end()),
                4 * 2 * std::numbers::pi / 180, 0.01);
    EXPECT_EQ(PeakHertz(spectra, spectra.paths[1].all), -1);
}

TEST(MotionSpectra, The_joint_that_turns_most_is_found_and_jumps_do_not_count)
{
    clip::Clip const still = Figure([](double) { return std::vector<double>(5, 3); });
    EXPECT_EQ(spectrum::FindMostTurning(still), 0U);
    clip::Clip const arm = Figure(
        [](double t) -> std::vector<double> {
            return {900 * t, 0, 0, 0, std::sin(20 * t)};
        });
    EXPECT_EQ(spectrum::FindMostTurning(arm), 1U) << "positions turn nothing";
    clip::Clip two =
        clip::ParseClip("HIERARCHY\nROOT A\n{\nOFFSET 0 0 0\nCHANNELS 1 Xrotation\nJOINT B\n{\nOFFSET 1 0 0\n"
                        "CHANNELS 1 Yrotation\n}\n}\nMOTION\nFrames: 4\nFrame Time: 1\n"
                        "179 0\n-179 40\n179 0\n-179 40\n",
                        "two.bvh");
    EXPECT_EQ(spectrum::FindMostTurning(two), 1U);
}

TEST(MotionSpectra, Joints_are_found_by_name_and_end_sites_are_none)
{
    clip::Clip const motion = Figure([](double) { return std::vector<double>(5, 0); });
    EXPECT_EQ(spectrum::FindJoint(motion.skeleton, "Root"), 0U);
    EXPECT_EQ(spectrum::FindJoint(motion.skeleton, "Leg,Left"), 3U);
    for (std::string const name : {"root", "", "Arm_end", "Arm "})
    {
        try
        {
            spectrum::FindJoint(motion.skeleton, name);
            ADD_FAILURE() << name;
        }
        catch (spectrum::SpectrumError const & error)
        {
            EXPECT_EQ(error.what(), "the clip has no joint \"" + name + "\"");
        }
    }
}

TEST(MotionSpectra, A_clip_of_one_frame_has_no_frequency)
{
    clip::Clip motion = Figure([](double) { return std::vector<double>(5, 30); });
    motion.frameCount = 1;
    motion.values.resize(5);
    spectrum::MotionSpectra const spectra = spectrum::ComputeSpectra(motion, 1);
    EXPECT_EQ(PeakHertz(spectra, spectra.angles.all), -1);
    for (spectrum::Curve const & path : spectra.paths)
    {
        EXPECT_EQ(*std::max_element(path.all.begin(), path.all.end()), 0);
    }
}

TEST(MotionSpectra, Frames_too_fast_for_frequencies_are_refused)
{
    clip::Clip motion = Figure([](double) { return std::vector<double>(5, 30); });
    motion.frameTime = std::numeric_limits<double>::denorm_min();
    EXPECT_THROW(spectrum::ComputeSpectra(motion, 1), spectrum::SpectrumError);
    motion.frameTime = std::numeric_limits<double>::min();
    EXPECT_NO_THROW(spectrum::ComputeSpectra(motion, 1));
}

TEST(SpectrumTable, Has_a_line_for_every_frequency_of_every_curve)
{
    clip::Clip const motion = Figure(
        [](double t) -> std::vector<double> {
            return {0, 0, 0, 0, 2 * std::sin(k_Turn * 2.5 * t)};
        });
    spectrum::MotionSpectra const spectra = spectrum::ComputeSpectra(motion, 1);
    std::ostringstream stream;
    spectrum::WriteSpectrumTable(stream, motion.skeleton, spectra);
    std::istringstream lines(stream.str());
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "frequency,joint,kind,x,y,z,all");
    for (spectrum::Curve const * const curve : {&spectra.angles, spectra.paths.data(), &spectra.paths[1]})
    {
        std::string const labels = curve == &spectra.angles        ? ",Arm,angle,"
                                   : curve == spectra.paths.data() ? ",Arm_end,path,"
                                                                   : ",\"Leg,Left\",path,";
        for (std::size_t i = 0; i < curve->all.size(); ++i)
        {
            std::getline(lines, line);
            std::size_t const place = line.find(labels);
            ASSERT_NE(place, std::string::npos) << line;
            EXPECT_EQ(std::stod(line.substr(0, place)), static_cast<double>(i) * spectra.frequencyStep);
            std::istringstream fields(line.substr(place + labels.size()));
            std::vector<double> numbers;
            for (std::string field; std::getline(fields, field, ',');)
            {
                numbers.push_back(std::stod(field));
            }
            EXPECT_EQ(numbers,
                      (std::vector<double>{curve->axes[0][i], curve->axes[1][i], curve->axes[2][i], curve->all[i]}));
        }
    }
    EXPECT_FALSE(std::getline(lines, line));
}

} // namespace
