#include "bake/angle_motion.h"
#include "bake/curve_picture.h"
#include "bake/reorder.h"
#include "clip/reader.h"

#include "examples/count_text.h"
#include "examples/xml_check.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

namespace
{

constexpr char const * k_DarkBand = R"(fill="#c0143c" fill-opacity="0.26"/>)";
constexpr char const * k_LightBand = R"(fill="#c0143c" fill-opacity="0.12"/>)";

/// A joint with three rotations, one line a frame: Z, X, Y.
clip::Clip Joint(std::vector<std::string> const & frames, std::string const & name = "Arm",
                 std::string const & frameTime = "0.1")
{
    std::string text = "HIERARCHY\nROOT " + name + "\n{\nOFFSET 0 0 0\nCHANNELS 3 Zrotation Xrotation Yrotation\n}\n" +
                       "MOTION\nFrames: " + std::to_string(frames.size()) + "\nFrame Time: " + frameTime + "\n";
    for (std::string const & frame : frames)
    {
        text += frame + '\n';
    }
    return clip::ParseClip(text, "joint.bvh");
}

std::string Picture(clip::Clip const & plain, clip::Clip const & nearest)
{
    std::ostringstream stream;
    bake::DrawCurves({plain, nearest}, 0, "clip").Write(stream);
    std::string text = stream.str();
    EXPECT_EQ(FindXmlFault(text), "");
    return text;
}

TEST(CurvePicture, Shows_three_curves_above_three_with_axes_and_a_legend)
{
    clip::Clip const motion = Joint({"0 10 20", "5 15 25", "10 20 30"});
    std::string const text = Picture(motion, motion);
    EXPECT_EQ(Count(text, "<polyline"), 6U);
    for (char const * const color : {"#d55e00", "#009e73", "#0072b2"})
    {
        EXPECT_EQ(Count(text, std::string("fill=\"none\" stroke=\"") + color + "\""), 2U);
    }
    for (char const * const label : {"Plain extraction: ", "With the frame before as target: ", "clip: Arm, "})
    {
        EXPECT_EQ(Count(text, std::string(">") + label), 1U) << label;
    }
    for (char const * const label : {">degrees<", ">seconds<", ">0°<", ">30°<", ">0.2<", ">no jump<", ">X 20°<"})
    {
        EXPECT_EQ(Count(text, label), 2U) << label;
    }
    for (char const * const label : {">about X<", ">about Y<", ">about Z<", ">jump over half a turn<",
                                     ">over a quarter turn<", ">order ZXY, 3 frames, 0.30 s<"})
    {
        EXPECT_EQ(Count(text, label), 1U) << label;
    }
    EXPECT_EQ(Count(text, k_DarkBand), 1U) << "the legend alone";
    EXPECT_EQ(Count(text, k_LightBand), 1U);
}

TEST(CurvePicture, Jumps_over_half_a_turn_stand_in_dark_bands_with_dashes_and_rings)
{
    clip::Clip const plain = Joint({"0 0 170", "0 0 179", "0 0 -172", "0 0 -160"});
    clip::Clip const nearest = Joint({"0 0 170", "0 0 179", "0 0 188", "0 0 200"});
    std::string const text = Picture(plain, nearest);
    EXPECT_EQ(Count(text, k_DarkBand), 2U) << "legend and jump";
    EXPECT_EQ(Count(text, k_LightBand), 1U);
    EXPECT_EQ(Count(text, ">−351°<"), 1U);
    EXPECT_EQ(Count(text, "stroke-dasharray"), 1U);
    EXPECT_EQ(Count(text, "<polyline"), 7U) << "the curve that jumps is in two pieces";
    EXPECT_EQ(Count(text, "r=\"4.6\""), 2U);
    EXPECT_EQ(Count(text, ">1 jump over half a turn<"), 1U);
    EXPECT_EQ(Count(text, ">no jump<"), 1U);
    EXPECT_EQ(Count(text, ">Y −160°<"), 1U);
    EXPECT_EQ(Count(text, ">Y 200°<"), 1U);
}

TEST(CurvePicture, Flips_short_of_half_a_turn_stand_in_light_bands)
{
    clip::Clip const plain = Joint({"0 80 0", "0 85 0", "175 95 -175", "175 100 -175"});
    clip::Clip const nearest = Joint({"0 80 0", "0 85 0", "-5 90 5", "-5 95 5"});
    std::string const text = Picture(plain, nearest);
    EXPECT_EQ(Count(text, k_DarkBand), 1U);
    EXPECT_EQ(Count(text, k_LightBand), 2U) << "two angles of one step share a band";
    EXPECT_EQ(Count(text, "stroke-dasharray"), 2U);
    EXPECT_EQ(Count(text, ">2 jumps over a quarter turn, 0 of them over half a turn<"), 1U);
}

/// The places of the first polyline, one a frame.
std::size_t CountPoints(std::string const & text)
{
    std::size_t const start = text.find("points=\"");
    return Count(text.substr(start, text.find('"', start + 8) - start), ",");
}

TEST(CurvePicture, A_short_clip_shows_each_of_its_frames)
{
    std::vector<std::string> frames;
    frames.reserve(500);
    for (int i = 0; i < 500; ++i)
    {
        frames.push_back("0 " + std::to_string(i % 7) + " 0");
    }
    clip::Clip const motion = Joint(frames);
    EXPECT_EQ(CountPoints(Picture(motion, motion)), 500U);
}

TEST(CurvePicture, A_long_or_wild_clip_is_no_larger_a_picture_and_keeps_its_peaks)
{
    std::vector<std::string> frames(60000, "0 0 0");
    frames[30001] = "0 89 0";
    clip::Clip const calm = Joint(frames);
    std::string const text = Picture(calm, calm);
    EXPECT_LT(text.size(), 200000U);
    EXPECT_EQ(Count(text, ">90°<"), 2U);
    for (std::size_t i = 0; i < frames.size(); i += 2)
    {
        frames[i] = "300 -300 300";
    }
    clip::Clip const wild = Joint(frames);
    EXPECT_LT(Picture(wild, wild).size(), 2000000U);
}

TEST(CurvePicture, A_single_frame_and_the_largest_numbers_are_drawn)
{
    clip::Clip const single = Joint({"1 2 3"});
    EXPECT_EQ(Count(Picture(single, single), ">Z 1°<"), 2U);
    for (char const * const time : {"1e-300", "5e-324", "1e12"})
    {
        clip::Clip const huge = Joint({"1e12 -1e12 0", "-1e12 1e12 1e-300"}, "Arm", time);
        std::string const text = Picture(huge, huge);
        EXPECT_EQ(text.find("nan"), std::string::npos);
        EXPECT_EQ(text.find("inf"), std::string::npos);
    }
}

TEST(CurvePicture, Is_well_formed_whatever_the_name_is)
{
    clip::Clip const motion = Joint({"1 2 3", "2 3 4"}, "<\"&\xFF>");
    EXPECT_EQ(Count(Picture(motion, motion), "clip: &lt;&quot;&amp;\xEF\xBF\xBD&gt;"), 2U) << "title and headline";
    clip::Clip const longName = Joint({"1 2 3"}, std::string(200, 'N'));
    EXPECT_EQ(Count(Picture(longName, longName), std::string(45, 'N') + "..."), 2U);
}

// The hips turn twice: the plain yaw drops by a whole turn at each half of a turn.
TEST(CurvePicture, On_the_shipped_clip_it_shows_the_turns_of_the_hips)
{
    clip::Clip const motion = clip::ReadClip(std::filesystem::path(SHIPPED_CLIP));
    clip::ChannelOrder const order = clip::k_ChannelOrders[4];
    clip::Clip const plain = bake::Reorder(motion, order, bake::Extraction::Plain).clip;
    clip::Clip const nearest = bake::Reorder(motion, order, bake::Extraction::Nearest).clip;
    EXPECT_EQ(order.name, "ZXY");
    EXPECT_EQ(bake::FindMostChanged(plain, nearest), 0U);
    std::string const text = Picture(plain, nearest);
    EXPECT_EQ(Count(text, k_DarkBand), 3U);
    EXPECT_EQ(Count(text, "stroke-dasharray"), 2U);
    EXPECT_EQ(Count(text, "<polyline"), 8U);
    EXPECT_EQ(Count(text, ">2 jumps over half a turn<"), 1U);
    EXPECT_EQ(Count(text, ">Y 717°<"), 1U);
    EXPECT_EQ(Count(text, ">Y −3°<"), 1U);
}

} // namespace
