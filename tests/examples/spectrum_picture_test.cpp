#include "spectrum/noise_picture.h"
#include "spectrum/spectrum_picture.h"

#include "clip/reader.h"

#include "examples/count_text.h"
#include "examples/xml_check.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

namespace
{

/// A root with a fan of so many ends, of which each swings more widely than the one before; it turns about Z at 2 hertz
/// by 10 degrees and about X at 3 hertz by 4.
clip::Clip Fan(std::size_t ends, std::size_t frames, std::string const & frameTime = "0.02")
{
    std::string text = "HIERARCHY\nROOT Wheel&Co\n{\nOFFSET 0 0 0\nCHANNELS 2 Zrotation Xrotation\n";
    for (std::size_t i = 1; i <= ends; ++i)
    {
        text += "JOINT e" + std::to_string(i) + "\n{\nOFFSET " + std::to_string(i) + " 0 0\n}\n";
    }
    text += "}\nMOTION\nFrames: " + std::to_string(frames) + "\nFrame Time: " + frameTime + "\n";
    for (std::size_t frame = 0; frame < frames; ++frame)
    {
        double const angle = 2 * std::numbers::pi * 0.02 * static_cast<double>(frame);
        text += std::to_string(10 * std::sin(2 * angle)) + ' ' + std::to_string(4 * std::sin(3 * angle)) + '\n';
    }
    return clip::ParseClip(text, "fan.bvh");
}

std::string Picture(clip::Clip const & motion)
{
    std::ostringstream stream;
    spectrum::DrawSpectra(motion, spectrum::ComputeSpectra(motion, 0), "clip").Write(stream);
    EXPECT_EQ(FindXmlFault(stream.str()), "");
    return stream.str();
}

TEST(SpectrumPicture, Has_axes_in_hertz_degrees_and_units_and_a_legend)
{
    std::string const text = Picture(Fan(2, 500));
    for (char const * const label :
         {">degrees<", ">units<", ">about X<", ">about Y<", ">about Z<", ">e1<", ">e2<", ">Angles of Wheel&amp;Co<",
          ">Paths of the ends in world space<", ">500 frames, 10.00 s: one cycle is 0.1 Hz<"})
    {
        EXPECT_EQ(Count(text, label), 1U) << label;
    }
    for (char const * const label : {">hertz<", ">1<", ">2<", ">3<"})
    {
        EXPECT_GE(Count(text, label), 2U) << label;
    }
    EXPECT_EQ(Count(text, "<polyline"), 5U) << "three axes and two ends";
    EXPECT_EQ(Count(text, ">5°<"), 1U);
    EXPECT_EQ(Count(text, ">10°<"), 1U);
}

TEST(SpectrumPicture, Marks_the_strongest_frequency_and_tells_every_peak)
{
    std::string const text = Picture(Fan(2, 500));
    EXPECT_EQ(Count(text, ">strongest: 2 Hz<"), 2U) << "of the angles and of the paths";
    EXPECT_EQ(Count(text, "stroke-dasharray"), 2U);
    EXPECT_EQ(Count(text, ">2 Hz, 10°<"), 1U) << "about Z";
    EXPECT_EQ(Count(text, ">3 Hz, 4°<"), 1U) << "about X";
    EXPECT_EQ(Count(text, ">no peak<"), 1U) << "about Y";
    EXPECT_EQ(Count(text, ">2 Hz, 0.174 units<"), 1U) << "the arc of the first end";
    EXPECT_EQ(Count(text, "<circle"), 8U) << "two for each of two axes and two ends";
}

TEST(SpectrumPicture, Of_many_ends_the_strongest_are_drawn)
{
    std::string const text = Picture(Fan(11, 200));
    EXPECT_EQ(Count(text, "<polyline"), 11U) << "three axes and eight ends";
    EXPECT_EQ(Count(text, ">all three coordinates together; the 8 strongest of 11 ends<"), 1U);
    EXPECT_EQ(Count(text, ">e3<"), 0U);
    for (char const * const name : {">e4<", ">e11<"})
    {
        EXPECT_EQ(Count(text, name), 1U) << name;
    }
    EXPECT_EQ(Count(Picture(Fan(8, 200)), "strongest of"), 0U);
}

TEST(SpectrumPicture, Its_range_reaches_as_far_as_there_is_something_to_see)
{
    // All lies below 4 hertz, of the 25 that the frames could tell.
    std::string const text = Picture(Fan(1, 500));
    EXPECT_EQ(Count(text, ">5<"), 0U);
    EXPECT_EQ(Count(text, ">10<"), 0U);
}

TEST(SpectrumPicture, Clips_without_motion_and_of_one_frame_are_drawn)
{
    for (clip::Clip const & motion :
         {Fan(1, 1), Fan(1, 2), Fan(0, 1), Fan(1, 1, "1e-300"), Fan(1, 30, "1e12"), Fan(1, 30, "2.5e-308")})
    {
        std::string const text = Picture(motion);
        EXPECT_EQ(text.find("nan"), std::string::npos);
        EXPECT_EQ(text.find("inf"), std::string::npos);
        if (motion.frameCount <= 2)
        {
            EXPECT_EQ(Count(text, "strongest: "), 0U);
            EXPECT_GE(Count(text, ">no peak<"), 3U);
        }
    }
}

TEST(SpectrumPicture, A_long_clip_is_thinned_out_and_keeps_its_peak)
{
    std::string const text = Picture(Fan(1, 60000));
    EXPECT_LT(text.size(), 400000U);
    EXPECT_EQ(Count(text, ">strongest: 2 Hz<"), 2U);
    EXPECT_EQ(Count(text, ">2 Hz, 9.9"), 1U);
    std::size_t const dot = text.find(" cy=\"", text.find("<circle")) + 5;
    std::string const height = text.substr(dot, text.find('"', dot) - dot);
    EXPECT_GE(Count(text, ',' + height + ' '), 1U) << "the curve goes through the dot at its peak";
}

std::string NoisePicture(unsigned long seed)
{
    std::ostringstream stream;
    spectrum::DrawNoise(seed).Write(stream);
    EXPECT_EQ(FindXmlFault(stream.str()), "");
    return stream.str();
}

TEST(NoisePicture, Shows_three_faces_gradient_noise_octaves_and_gradients)
{
    std::string const text = NoisePicture(1);
    for (char const * const label :
         {">DNoise, face at the lower x, at x = 0.5<", ">DNoise, face at the lower y, at y = 0.5<",
          ">DNoise, face at the lower z, at z = 0.5<", ">Gradient noise, at z = 0.5<", ">Five octaves of it<",
          ">The twelve gradients<"})
    {
        EXPECT_EQ(Count(text, label), 1U) << label;
    }
    EXPECT_EQ(Count(text, ">Noise of the seed 1<"), 2U) << "the title, and the heading";
    EXPECT_EQ(Count(text, "<circle"), 12U);
    EXPECT_EQ(Count(text, "<line"), 24U);
    EXPECT_GT(Count(text, "<rect"), 2000U);
    EXPECT_LT(text.size(), 1000000U);
}

TEST(NoisePicture, Depends_on_the_seed_alone)
{
    std::string const picture = NoisePicture(5);
    EXPECT_TRUE(NoisePicture(5) == picture);
    EXPECT_FALSE(NoisePicture(6) == picture);
}

} // namespace
