#include "bake/bake.h"
#include "clip/reader.h"

#include "examples/bake_program.h"
#include "examples/xml_check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <ios>
#include <iterator>
#include <span>
#include <sstream>
#include <string>
#include <vector>

namespace
{

namespace fs = std::filesystem;

TEST_F(BakeProgram, Help_goes_to_standard_output_with_status_zero)
{
    for (char const * const option : {"--help", "-h"})
    {
        Outcome const outcome = Run(option);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_TRUE(outcome.output.starts_with("Usage: bake [options] CLIP.bvh\n"));
        for (char const * const part :
             {"--out DIR", "--order ABC", "outermost to the innermost", "Zrotation Xrotation Yrotation", "baked.bvh",
              "angles.csv", "curves.svg", "--scale X,Y,Z", "--mode MODE", "--blend OTHER.bvh", "--at SHARE",
              "--smooth HZ", "--save FILE", "--load FILE", "world-angles.csv"})
        {
            EXPECT_NE(outcome.output.find(part), std::string::npos) << part;
        }
        EXPECT_EQ(outcome.errors, "");
    }
    EXPECT_EQ(m_Scratch.CountFiles(), 0U);
}

TEST_F(BakeProgram, An_output_that_cannot_be_written_gives_status_one)
{
    ExpectUnwritableOutputFails(bake::Run, "bake");
}

TEST_F(BakeProgram, A_wrong_command_line_gives_status_two_and_a_hint)
{
    Outcome const unknown = Run("--frames a.bvh");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.output, "");
    EXPECT_EQ(unknown.errors, "bake: unknown option \"--frames\"\nTry \"bake --help\".\n");
    Outcome const order = Run("--order XYX a.bvh");
    EXPECT_EQ(order.status, 2);
    EXPECT_EQ(order.output, "");
    EXPECT_EQ(order.errors, "bake: unknown order \"XYX\": it is one of XYZ, XZY, YXZ, YZX, ZXY and ZYX\n"
                            "Try \"bake --help\".\n");
    Outcome const none = Run("");
    EXPECT_EQ(none.status, 2);
    EXPECT_EQ(none.errors, "bake: no clip given\nTry \"bake --help\".\n");
    EXPECT_EQ(m_Scratch.CountFiles(), 0U);
}

TEST_F(BakeProgram, Bakes_the_shipped_clip_into_the_default_folder)
{
    Outcome const outcome = Run(m_Shipped);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "");
    for (char const * const line :
         {"joints        21 and 5 end sites\n", "frames        240\n", "length        8 s\n", "bounding box  (",
          "composition   by component, 0 of 6240 world transformations sheared\n", " ns per joint and frame\n",
          "wrote         bake-out/world.csv\n", "wrote         bake-out/pose.svg\n"})
    {
        EXPECT_NE(outcome.output.find(line), std::string::npos) << line;
    }
    EXPECT_EQ(FindXmlFault(ReadText(Path("bake-out/pose.svg"))), "");
    std::string const table = ReadText(Path("bake-out/world.csv"));
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 1 + 240 * 26);
    EXPECT_EQ(std::distance(fs::directory_iterator(Path("bake-out")), fs::directory_iterator()), 2);
}

TEST_F(BakeProgram, An_order_adds_the_baked_clip_its_angles_and_its_curves)
{
    EXPECT_EQ(Run("--out plain " + m_Shipped).status, 0);
    Outcome const outcome = Run("--order ZXY " + m_Shipped);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "");
    for (char const * const line :
         {"order         ZXY, from the outermost to the innermost\n",
          "jumps         before, each frame by itself:        2 over half a turn, 2 over a quarter turn\n",
          "              after, nearest to the frame before:  0 over half a turn, 0 over a quarter turn\n",
          "              in the clip as it came:              0 over half a turn, 0 over a quarter turn\n",
          "difference    ", " at most between the world positions of the clip and of the baked one\n",
          "wrote         bake-out/world.csv\n", "wrote         bake-out/pose.svg\n",
          "wrote         bake-out/baked.bvh\n", "wrote         bake-out/angles.csv\n",
          "wrote         bake-out/world-angles.csv\n", "wrote         bake-out/curves.svg\n"})
    {
        EXPECT_NE(outcome.output.find(line), std::string::npos) << line << outcome.output;
    }
    EXPECT_EQ(outcome.output.find("repairs"), std::string::npos);
    EXPECT_LT(std::stod(outcome.output.substr(outcome.output.find("difference") + 10)), 1e-9);
    EXPECT_EQ(std::distance(fs::directory_iterator(Path("bake-out")), fs::directory_iterator()), 6);
    for (char const * const name : {"world.csv", "pose.svg"})
    {
        EXPECT_TRUE(ReadText(Path("bake-out") / name) == ReadText(Path("plain") / name)) << name;
    }
    EXPECT_EQ(FindXmlFault(ReadText(Path("bake-out/curves.svg"))), "");
    std::string const curves = ReadText(Path("bake-out/curves.svg"));
    std::size_t const plain = curves.find(">2 jumps over half a turn<");
    EXPECT_NE(plain, std::string::npos);
    EXPECT_GT(curves.find(">no jump<"), plain) << "the plain curves stand above";
}

// The numbers of one line of a table, those behind the name.
std::vector<double> Numbers(std::string const & line)
{
    std::vector<double> numbers;
    std::istringstream fields(line);
    std::string field;
    for (int i = 0; std::getline(fields, field, ','); ++i)
    {
        if (i >= 2)
        {
            numbers.push_back(std::stod(field));
        }
    }
    return numbers;
}

TEST_F(BakeProgram, The_baked_clip_bakes_to_the_same_positions_in_every_order)
{
    for (std::string const order : {"XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX"})
    {
        EXPECT_EQ(Run("--out there --order " + order + " " + m_Shipped).status, 0);
        EXPECT_EQ(Run("--out again there/baked.bvh").status, 0);
        std::istringstream expected(ReadText(Path("there/world.csv")));
        std::istringstream actual(ReadText(Path("again/world.csv")));
        std::string expectedLine;
        std::string actualLine;
        std::size_t count = 0;
        while (std::getline(expected, expectedLine) && std::getline(actual, actualLine))
        {
            std::vector<double> const one = Numbers(expectedLine[0] == 'f' ? "" : expectedLine);
            std::vector<double> const other = Numbers(actualLine[0] == 'f' ? "" : actualLine);
            ASSERT_EQ(one.size(), other.size());
            for (std::size_t i = 0; i < one.size(); ++i)
            {
                ASSERT_NEAR(one[i], other[i], 1e-9) << order << ' ' << expectedLine;
                ++count;
            }
        }
        EXPECT_EQ(count, 3U * 240 * 26);
    }
}

TEST_F(BakeProgram, The_angles_are_those_of_the_baked_clip_bit_for_bit)
{
    EXPECT_EQ(Run("--out out --order YXZ " + m_Shipped).status, 0);
    clip::Clip const baked = clip::ReadClip(Path("out/baked.bvh"));
    std::istringstream table(ReadText(Path("out/angles.csv")));
    std::string line;
    std::getline(table, line);
    EXPECT_EQ(line, "frame,joint,x,y,z");
    for (std::size_t frame = 0; frame < baked.frameCount; ++frame)
    {
        for (clip::Joint const & joint : baked.skeleton.joints)
        {
            if (joint.isEndSite)
            {
                continue;
            }
            ASSERT_TRUE(std::getline(table, line));
            std::string const start = std::to_string(frame) + ',' + joint.name + ',';
            ASSERT_TRUE(line.starts_with(start)) << line;
            std::vector<double> const angles = Numbers(line);
            ASSERT_EQ(angles.size(), 3U);
            // The channels are Y, X and Z, behind the positions where there are any.
            std::span<double const> const channels =
                baked.Frame(frame).subspan(joint.firstChannel + joint.channels.size() - 3, 3);
            ASSERT_EQ(angles, (std::vector<double>{channels[1], channels[0], channels[2]}));
        }
    }
    EXPECT_FALSE(std::getline(table, line));
}

/// A joint that turns about Z by 2 degrees a frame, with a tremor of 10 degrees that changes sides every frame. It
/// begins and ends in the middle of the tremor.
std::string Trembling(double tremor)
{
    std::string text = "HIERARCHY\nROOT A\n{\nOFFSET 0 0 0\nCHANNELS 3 Zrotation Xrotation Yrotation\nEnd Site\n{\n"
                       "OFFSET 10 0 0\n}\n}\nMOTION\nFrames: 401\nFrame Time: 0.02\n";
    for (int frame = 0; frame <= 400; ++frame)
    {
        double const side = frame == 0 || frame == 400 ? 0 : frame % 2 == 0 ? 1 : -1;
        text += std::to_string(2 * frame + side * tremor) + " 0 0\n";
    }
    return text;
}

TEST_F(BakeProgram, Smoothing_takes_a_tremor_out_and_leaves_whole_turns)
{
    WriteText(Path("tremor.bvh"), Trembling(10));
    WriteText(Path("steady.bvh"), Trembling(0));
    Outcome const outcome = Run("--order ZXY --smooth 5 tremor.bvh");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("smoothing     below 5 hertz alone\n"), std::string::npos) << outcome.output;
    clip::Clip const smooth = clip::ReadClip(Path("bake-out/baked.bvh"));
    clip::Clip const steady = clip::ReadClip(Path("steady.bvh"));
    for (std::size_t frame = 0; frame <= 400; ++frame)
    {
        EXPECT_NEAR(smooth.Frame(frame)[0], steady.Frame(frame)[0], 1.2) << frame;
    }
    EXPECT_NEAR(smooth.Frame(400)[0], 800, 1e-9) << "two whole turns and 80 degrees";
    Outcome const rough = Run("--order ZXY --out rough tremor.bvh");
    EXPECT_EQ(rough.output.find("smoothing"), std::string::npos);
    EXPECT_NEAR(clip::ReadClip(Path("rough/baked.bvh")).Frame(200)[0], 410, 1e-9);
}

TEST_F(BakeProgram, Smoothing_reaches_the_clip_that_is_blended_in)
{
    WriteText(Path("tremor.bvh"), Trembling(10));
    WriteText(Path("steady.bvh"), Trembling(0));
    EXPECT_EQ(Run("--order ZXY --smooth 5 --blend tremor.bvh --at 1 steady.bvh").status, 0);
    EXPECT_EQ(Run("--order ZXY --smooth 5 --out alone tremor.bvh").status, 0);
    clip::Clip const blended = clip::ReadClip(Path("bake-out/baked.bvh"));
    clip::Clip const alone = clip::ReadClip(Path("alone/baked.bvh"));
    for (std::size_t frame = 0; frame <= 400; ++frame)
    {
        EXPECT_NEAR(blended.Frame(frame)[0], alone.Frame(frame)[0], 1e-8) << frame;
    }
}

TEST_F(BakeProgram, Rotations_that_the_extraction_misses_are_counted)
{
    WriteText(Path("pole.bvh"),
              "HIERARCHY\nROOT A\n{\nOFFSET 0 0 0\nCHANNELS 3 Zrotation Xrotation Yrotation\nEnd Site\n{\n"
              "OFFSET 1 2 3\n}\n}\nMOTION\nFrames: 2\nFrame Time: 1\n30 90 40\n0 90 0\n");
    Outcome const outcome = Run("--order ZXY pole.bvh");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.output.find("repairs       1 rotations at a pole that the extraction missed\n"),
              std::string::npos)
        << outcome.output;
    EXPECT_LT(std::stod(outcome.output.substr(outcome.output.find("difference") + 10)), 1e-9);
}

// A hundred-thousandth of a degree beside the pole the extraction takes the middle angle for a quarter turn: a bone of
// length 100 is then off by up to 2e-5.
TEST_F(BakeProgram, The_difference_is_measured_between_the_positions)
{
    WriteText(Path("belt.bvh"),
              "HIERARCHY\nROOT A\n{\nOFFSET 0 0 0\nCHANNELS 3 Zrotation Xrotation Yrotation\nEnd Site\n{\n"
              "OFFSET 60 0 80\n}\n}\nMOTION\nFrames: 2\nFrame Time: 1\n30 60 40\n130 90.00001 -20\n");
    Outcome const outcome = Run("--order ZXY belt.bvh");
    EXPECT_EQ(outcome.status, 0);
    double const difference = std::stod(outcome.output.substr(outcome.output.find("difference") + 10));
    EXPECT_GT(difference, 1e-7);
    EXPECT_LT(difference, 2e-5);
}

TEST_F(BakeProgram, The_bounding_box_is_that_of_all_positions)
{
    WriteText(Path("a.bvh"),
              "HIERARCHY\nROOT A\n{\nOFFSET 1 2 3\nCHANNELS 1 Zrotation\nEnd Site\n{\nOFFSET 4 0 0\n}\n}\n"
              "MOTION\nFrames: 2\nFrame Time: 0.25\n0\n90\n");
    Outcome const outcome = Run("a.bvh");
    EXPECT_NE(outcome.output.find("joints        1 and 1 end sites\n"), std::string::npos);
    EXPECT_NE(outcome.output.find("length        0.5 s\n"), std::string::npos);
    EXPECT_NE(outcome.output.find("bounding box  (1, 2, 3) to (5, 6, 3)\n"), std::string::npos) << outcome.output;
}

TEST_F(BakeProgram, Replaces_earlier_results)
{
    PutEarlierResults();
    EXPECT_EQ(Run("--out out " + m_Shipped).status, 0);
    EXPECT_TRUE(ReadText(Path("out/world.csv")).starts_with("frame,joint,x,y,z\n0,Hips,"));
    EXPECT_TRUE(ReadText(Path("out/pose.svg")).starts_with("<svg "));
    EXPECT_EQ(std::distance(fs::directory_iterator(Path("out")), fs::directory_iterator()), 2);
}

TEST_F(BakeProgram, Two_runs_write_the_same_bytes)
{
    EXPECT_EQ(Run("--out=one " + m_Shipped).status, 0);
    EXPECT_EQ(Run("--out=two " + m_Shipped).status, 0);
    EXPECT_TRUE(ReadText(Path("one/world.csv")) == ReadText(Path("two/world.csv")));
    EXPECT_TRUE(ReadText(Path("one/pose.svg")) == ReadText(Path("two/pose.svg")));
    EXPECT_EQ(Run("--out=one --order=XZY " + m_Shipped).status, 0);
    EXPECT_EQ(Run("--out=two --order=XZY " + m_Shipped).status, 0);
    for (std::string const name : {"baked.bvh", "angles.csv", "world-angles.csv", "curves.svg"})
    {
        EXPECT_TRUE(ReadText(Path("one/" + name)) == ReadText(Path("two/" + name))) << name;
    }
}

TEST_F(BakeProgram, A_malformed_clip_is_named_with_its_line_and_leaves_earlier_results)
{
    PutEarlierResults();
    WriteText(Path("bad.bvh"), "HIERARCHY\nROOT Hips\nOFFSET 0 0 0\n");
    Outcome const outcome = Run("--out out --order ZXY bad.bvh");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.errors, "bad.bvh:3: expected \"{\" after the joint's name, found \"OFFSET\"\n");
    EXPECT_EQ(outcome.output, "");
    ExpectEarlierResults();
}

TEST_F(BakeProgram, A_malformed_clip_makes_no_folder)
{
    WriteText(Path("bad.bvh"), "");
    EXPECT_EQ(Run("--out out bad.bvh").status, 2);
    EXPECT_FALSE(fs::exists(Path("out")));
}

TEST_F(BakeProgram, A_missing_clip_gives_status_one)
{
    PutEarlierResults();
    Outcome const outcome = Run("--out out missing.bvh");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "bake: cannot read missing.bvh: No such file or directory\n");
    ExpectEarlierResults();
}

TEST_F(BakeProgram, A_folder_that_cannot_be_made_gives_status_one)
{
    WriteText(Path("file"), "x");
    Outcome const outcome = Run("--out file/inside " + m_Shipped);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.errors.find("bake: cannot make the folder file/inside: "), std::string::npos) << outcome.errors;
}

TEST_F(BakeProgram, A_full_disk_gives_status_one_and_leaves_earlier_results)
{
    if (!fs::exists("/dev/full"))
    {
        GTEST_SKIP() << "no device that is always full";
    }
    PutEarlierResults();
    fs::create_symlink("/dev/full", Path("out/.pose.svg.partial"));
    Outcome const outcome = Run("--out out " + m_Shipped);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "bake: cannot write out/pose.svg: No space left on device\n");
    EXPECT_EQ(outcome.output, "");
    ExpectEarlierResults();
}

TEST_F(BakeProgram, A_full_disk_at_the_last_file_leaves_earlier_results)
{
    if (!fs::exists("/dev/full"))
    {
        GTEST_SKIP() << "no device that is always full";
    }
    PutEarlierResults();
    fs::create_symlink("/dev/full", Path("out/.curves.svg.partial"));
    Outcome const outcome = Run("--out out --order ZXY " + m_Shipped);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "bake: cannot write out/curves.svg: No space left on device\n");
    ExpectEarlierResults();
}

TEST_F(BakeProgram, A_clip_too_large_to_hold_gives_status_one)
{
    // Sixty thousand joints and 1,200 frames of one channel: a megabyte and a half of text for more positions than fit.
    std::string text = "HIERARCHY\nROOT A{OFFSET 0 0 0 CHANNELS 1 Xrotation\n";
    for (int i = 0; i < 60000; ++i)
    {
        text += "End Site{OFFSET 0 0 0}\n";
    }
    text += "}\nMOTION\nFrames: 1200\nFrame Time: 1\n";
    for (int i = 0; i < 1200; ++i)
    {
        text += "0\n";
    }
    WriteText(Path("wide.bvh"), text);
    Outcome const outcome = Run("wide.bvh");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "bake: the clip has 1200 frames of 60001 positions: more than 16777216 altogether\n");
    EXPECT_FALSE(fs::exists(Path("bake-out")));
}

TEST_F(BakeProgram, Bakes_a_captured_clip)
{
    if (!fs::exists(CAPTURED_CLIP))
    {
        GTEST_SKIP() << "no captured clip beside the project";
    }
    Outcome const outcome = Run(std::string("--order XYZ '") + CAPTURED_CLIP + "'");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("frames        455\n"), std::string::npos);
    EXPECT_NE(outcome.output.find("in the clip as it came:              14 over half a turn"), std::string::npos);
    EXPECT_EQ(FindXmlFault(ReadText(Path("bake-out/pose.svg"))), "");
    EXPECT_EQ(FindXmlFault(ReadText(Path("bake-out/curves.svg"))), "");
}

} // namespace
