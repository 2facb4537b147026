#include "bake/joint_table.h"
#include "bake/pose_picture.h"
#include "clip/reader.h"
#include "clip/skeleton.h"

#include "examples/count_text.h"
#include "examples/xml_check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

namespace
{

/// A trunk, two arms and a leg; `frames` frames in which the trunk walks along X and an arm turns.
clip::Clip Figure(std::size_t frames)
{
    std::string text = R"(HIERARCHY
ROOT Trunk
{
  OFFSET 0 10 0
  CHANNELS 3 Xposition Yposition Zrotation
  JOINT Arm,Left
  {
    OFFSET 1 5 0
    CHANNELS 1 Xrotation
    End Site
    {
      OFFSET 0 -4 0
    }
  }
  JOINT "Arm"&Right
  {
    OFFSET -1 5 0
    End Site
    {
      OFFSET 0 -4 0
    }
  }
  JOINT Leg
  {
    OFFSET 0 -10 0
  }
}
MOTION
)";
    text += "Frames: " + std::to_string(frames) + "\nFrame Time: 0.1\n";
    for (std::size_t frame = 0; frame < frames; ++frame)
    {
        text += std::to_string(frame) + " 0 0 " + std::to_string(5 * frame) + "\n";
    }
    return clip::ParseClip(text, "figure.bvh");
}

std::string Table(clip::Clip const & motion)
{
    std::ostringstream stream;
    bake::WriteWorldTable(stream, motion.skeleton, clip::ComputeWorldPositions(motion));
    return stream.str();
}

TEST(WorldTable, Has_a_header_and_a_line_for_every_frame_and_joint)
{
    EXPECT_EQ(Table(Figure(1)), "frame,joint,x,y,z\n"
                                "0,Trunk,0,10,0\n"
                                "0,\"Arm,Left\",1,15,0\n"
                                "0,\"Arm,Left_end\",1,11,0\n"
                                "0,\"\"\"Arm\"\"&Right\",-1,15,0\n"
                                "0,\"\"\"Arm\"\"&Right_end\",-1,11,0\n"
                                "0,Leg,0,0,0\n");
    std::string const text = Table(Figure(2));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 2 * 6);
    EXPECT_NE(text.find("\n1,Leg,1,0,0\n"), std::string::npos);
}

TEST(WorldTable, Numbers_read_back_bit_for_bit)
{
    clip::Clip const motion = Figure(30);
    clip::WorldPositions const positions = clip::ComputeWorldPositions(motion);
    std::istringstream lines(Table(motion));
    std::string line;
    std::getline(lines, line);
    for (C3DVector3Tpl<double> const & place : positions.All())
    {
        ASSERT_TRUE(std::getline(lines, line));
        std::size_t const z = line.rfind(',');
        std::size_t const y = line.rfind(',', z - 1);
        std::size_t const x = line.rfind(',', y - 1);
        EXPECT_EQ(std::stod(line.substr(x + 1)), place.X);
        EXPECT_EQ(std::stod(line.substr(y + 1)), place.Y);
        EXPECT_EQ(std::stod(line.substr(z + 1)), place.Z);
    }
    EXPECT_FALSE(std::getline(lines, line));
}

std::string AngleTable(clip::Clip const & motion)
{
    std::ostringstream stream;
    bake::WriteAngleTable(stream, motion);
    return stream.str();
}

TEST(AngleTable, Has_a_header_and_a_line_for_every_frame_and_joint_without_the_end_sites)
{
    EXPECT_EQ(AngleTable(Figure(2)), "frame,joint,x,y,z\n"
                                     "0,Trunk,0,0,0\n"
                                     "0,\"Arm,Left\",0,0,0\n"
                                     "0,\"\"\"Arm\"\"&Right\",0,0,0\n"
                                     "0,Leg,0,0,0\n"
                                     "1,Trunk,0,0,0\n"
                                     "1,\"Arm,Left\",5,0,0\n"
                                     "1,\"\"\"Arm\"\"&Right\",0,0,0\n"
                                     "1,Leg,0,0,0\n");
}

TEST(AngleTable, Angles_stand_by_axis_whatever_the_order_of_the_channels)
{
    clip::Clip const motion =
        clip::ParseClip("HIERARCHY\nROOT A\n{\nOFFSET 0 0 0\nCHANNELS 4 Zrotation Yposition Xrotation Yrotation\n}\n"
                        "MOTION\nFrames: 1\nFrame Time: 1\n720.1 2 -0.30000000000000004 4e-7\n",
                        "a.bvh");
    EXPECT_EQ(AngleTable(motion), "frame,joint,x,y,z\n0,A,-0.30000000000000004,4e-07,720.1\n");
}

std::string Picture(clip::Clip const & motion, std::string const & name = "figure")
{
    std::ostringstream stream;
    bake::DrawPoses(motion, clip::ComputeWorldPositions(motion), name).Write(stream);
    return stream.str();
}

TEST(PosePicture, Is_well_formed_whatever_the_names_are)
{
    EXPECT_EQ(FindXmlFault(Picture(Figure(60), "<\"&\xFF\x01>")), "");
}

TEST(PosePicture, Shows_six_poses_in_two_views_with_the_path_of_every_end)
{
    std::string const text = Picture(Figure(60));
    EXPECT_EQ(Count(text, ">From the front<"), 1U);
    EXPECT_EQ(Count(text, ">From the side<"), 1U);
    for (char const * const frame : {"4", "14", "24", "34", "44", "54"})
    {
        EXPECT_EQ(Count(text, std::string(">frame ") + frame + "<"), 2U) << frame;
    }
    EXPECT_EQ(Count(text, "<polyline"), 3U * 6 * 2) << "three ends";
    EXPECT_EQ(Count(text, "<circle"), 3U * 6 * 2);
    EXPECT_EQ(Count(text, ">Arm,Left<"), 1U);
    EXPECT_EQ(Count(text, ">&quot;Arm&quot;&amp;Right<"), 1U);
    EXPECT_EQ(Count(text, ">Leg<"), 1U);
    EXPECT_EQ(Count(text, "4 joints, 60 frames, 6.00 s"), 1U);
}

TEST(PosePicture, Limbs_differ_in_color_and_the_trunk_from_all)
{
    std::string const text = Picture(Figure(60));
    // A bone is a pale rim and a line; a legend entry one line more.
    EXPECT_EQ(Count(text, "stroke=\"#0072b2\" stroke-width=\"6\"/>"), 2U * 12);
    EXPECT_EQ(Count(text, "stroke=\"#d55e00\" stroke-width=\"6\"/>"), 2U * 12);
    EXPECT_EQ(Count(text, "stroke=\"#8a6d00\" stroke-width=\"6\"/>"), 1U * 12);
}

TEST(PosePicture, A_short_clip_shows_each_of_its_frames)
{
    std::string const text = Picture(Figure(3));
    EXPECT_EQ(Count(text, ">frame 0<"), 2U);
    EXPECT_EQ(Count(text, ">frame 1<"), 2U);
    EXPECT_EQ(Count(text, ">frame 2<"), 2U);
    EXPECT_EQ(Count(text, ">frame "), 6U);
    EXPECT_EQ(Count(Picture(Figure(1)), ">frame 0<"), 2U);
    EXPECT_EQ(FindXmlFault(Picture(Figure(1))), "");
}

TEST(PosePicture, A_long_clip_is_no_larger_a_picture)
{
    EXPECT_LT(Picture(Figure(20000)).size(), 200000U);
}

TEST(PosePicture, A_figure_without_extent_is_drawn)
{
    clip::Clip const motion = clip::ParseClip("HIERARCHY\nROOT Dot\n{\nOFFSET 5 5 5\nCHANNELS 1 Xrotation\n}\nMOTION\n"
                                              "Frames: 2\nFrame Time: 1\n0\n90\n",
                                              "dot.bvh");
    std::string const text = Picture(motion);
    EXPECT_EQ(FindXmlFault(text), "");
    EXPECT_EQ(Count(text, "<circle"), 2U * 2);
}

TEST(PosePicture, The_largest_and_smallest_figures_fill_the_same_place)
{
    std::string const huge =
        "HIERARCHY\nROOT A\n{\nOFFSET 0 0 0\nCHANNELS 1 Xrotation\nEnd Site\n{\nOFFSET 3 4 0\n}\n}\n"
        "MOTION\nFrames: 2\nFrame Time: 1\n0\n0\n";
    std::string expected = Picture(clip::ParseClip(huge, "a.bvh"));
    for (char const * const offset : {"3e11 4e11 0", "3e-300 4e-300 0"})
    {
        std::string text = huge;
        text.replace(text.find("3 4 0"), 5, offset);
        EXPECT_EQ(Picture(clip::ParseClip(text, "a.bvh")), expected);
    }
}

TEST(PosePicture, More_ends_than_the_legend_holds_are_counted)
{
    std::string text = "HIERARCHY\nROOT Hand\n{\nOFFSET 0 0 0\nCHANNELS 1 Xrotation\n";
    for (int i = 0; i < 40; ++i)
    {
        text += "JOINT AFingerWithAVeryLong\xC3\xA4me" + std::to_string(i) + "\n{\nOFFSET 0 1 " + std::to_string(i) +
                "\n}\n";
    }
    text += "}\nMOTION\nFrames: 1\nFrame Time: 1\n0\n";
    std::string const picture = Picture(clip::ParseClip(text, "hand.bvh"));
    EXPECT_EQ(Count(picture, ">AFingerWithAVeryLong...<"), 4U);
    EXPECT_EQ(Count(picture, ">and 36 more<"), 1U);
    EXPECT_EQ(picture.find("\xEF\xBF\xBD"), std::string::npos) << "a character is cut in two";
}

TEST(PosePicture, The_same_clip_gives_the_same_bytes)
{
    EXPECT_EQ(Picture(Figure(50)), Picture(Figure(50)));
}

} // namespace
