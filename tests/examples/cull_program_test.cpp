#include "cull/cull.h"

#include "clip/reader.h"

#include "examples/example_program.h"
#include "examples/xml_check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <ios>
#include <sstream>
#include <string>

namespace
{

namespace fs = std::filesystem;

class CullProgram : public ExampleProgram
{
protected:
    CullProgram() : ExampleProgram(CULL_PROGRAM, "view.csv", "cull.svg") {}
};

constexpr char const * k_Camera = "--eye 250,120,20 --look 10,80,140 --fov 40 --near 70 --far 330 --aspect 1.1 ";

TEST_F(CullProgram, Help_goes_to_standard_output_with_status_zero)
{
    for (char const * const option : {"--help", "-h"})
    {
        Outcome const outcome = Run(option);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_TRUE(outcome.output.starts_with("Usage: cull [options] CLIP.bvh\n"));
        for (char const * const part :
             {"--eye X,Y,Z", "--look X,Y,Z", "--fov DEGREES", "--ortho WIDTH", "--aspect R", "--near D", "--far D",
              "--shake A", "--seed N", "camera.csv", "--floor H", "--out DIR", "view.csv", "cull.svg", "floor.csv",
              "a fiftieth of the figure", "two heel points", "Status: 0 done"})
        {
            EXPECT_NE(outcome.output.find(part), std::string::npos) << part;
        }
        std::istringstream lines(outcome.output);
        for (std::string line; std::getline(lines, line);)
        {
            EXPECT_LE(line.size(), 88U) << line;
        }
        EXPECT_EQ(outcome.errors, "");
    }
    EXPECT_EQ(m_Scratch.CountFiles(), 0U);
}

TEST_F(CullProgram, A_wrong_command_line_gives_status_two_and_a_hint)
{
    Outcome const outcome = Run("--fov 200 a.bvh");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "cull: option \"--fov\" wants an angle from 0.1 to 179 degrees, not \"200\"\n"
                              "Try \"cull --help\".\n");
    EXPECT_EQ(Run("").errors, "cull: no clip given\nTry \"cull --help\".\n");
    EXPECT_EQ(m_Scratch.CountFiles(), 0U);
}

TEST_F(CullProgram, By_default_it_sees_the_whole_clip)
{
    Outcome const outcome = Run(m_Shipped);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "");
    for (char const * const line :
         {"camera        at (", "volume        perspective, 40 degrees from left to right, from ",
          "boxes         21 joints in 240 frames\n", "world space   5040 inside, 0 crossing, 0 outside, ",
          "view space    5040 inside, 0 crossing, 0 outside, ", " ns a box\n",
          "agreement     5040 alike, 0 with \"crossing\" from one of the two\n",
          "early outs    0 of 0 outside are beyond the bounds of the volume\n", "wrote         cull-out/view.csv\n",
          "wrote         cull-out/cull.svg\n"})
    {
        EXPECT_NE(outcome.output.find(line), std::string::npos) << line << outcome.output;
    }
    EXPECT_EQ(outcome.output.find("floor"), std::string::npos);
    EXPECT_EQ(std::distance(fs::directory_iterator(Path("cull-out")), fs::directory_iterator()), 2);
}

/// How many lines of a table end so.
std::size_t CountEnds(std::string const & table, std::string const & end)
{
    std::size_t count = 0;
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);)
    {
        count += line.ends_with(end) ? 1 : 0;
    }
    return count;
}

TEST_F(CullProgram, The_summary_counts_what_the_table_has)
{
    Outcome const outcome = Run(k_Camera + m_Shipped);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    std::string const table = ReadText(Path("cull-out/view.csv"));
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 1 + 240 * 21);
    EXPECT_TRUE(table.starts_with("frame,time,joint,world,view\n0,0,Hips,"));
    std::size_t const inside = CountEnds(table, ",inside");
    std::size_t const crossing = CountEnds(table, ",crossing");
    std::size_t const outside = CountEnds(table, ",outside");
    EXPECT_EQ(inside + crossing + outside, 240U * 21);
    EXPECT_GT(std::min({inside, crossing, outside}), 100U);
    EXPECT_NE(outcome.output.find("view space    " + std::to_string(inside) + " inside, " + std::to_string(crossing) +
                                  " crossing, " + std::to_string(outside) + " outside, "),
              std::string::npos)
        << outcome.output;
    EXPECT_EQ(CountEnds(table, ",inside,outside") + CountEnds(table, ",outside,inside"), 0U);
    std::string const picture = ReadText(Path("cull-out/cull.svg"));
    EXPECT_EQ(FindXmlFault(picture), "");
}

// The box is wide, and the volume, which stands on edge, lies off its left side.
TEST_F(CullProgram, Answers_that_differ_are_counted)
{
    WriteText(Path("wide.bvh"), "HIERARCHY\nROOT A\n{\nOFFSET 10.6 -5 -29\nCHANNELS 1 Zrotation\nEnd Site\n{\n"
                                "OFFSET 20 10 48\n}\n}\nMOTION\nFrames: 1\nFrame Time: 1\n0\n");
    Outcome const outcome = Run("--eye 0,0,0 --look 1,0,-1 --ortho 2 --aspect 1 --near 10 --far 12 wide.bvh");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    for (char const * const line :
         {"world space   0 inside, 0 crossing, 1 outside, ", "view space    0 inside, 1 crossing, 0 outside, ",
          "agreement     0 alike, 1 with \"crossing\" from one of the two\n",
          "early outs    1 of 1 outside are beyond the bounds of the volume\n"})
    {
        EXPECT_NE(outcome.output.find(line), std::string::npos) << line << outcome.output;
    }
    EXPECT_EQ(ReadText(Path("cull-out/view.csv")), "frame,time,joint,world,view\n0,0,A,outside,crossing\n");
}

TEST_F(CullProgram, An_orthographic_camera_is_told_by_its_size)
{
    Outcome const outcome = Run("--ortho 300 --aspect 2 --near 10 --far 500 " + m_Shipped);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("volume        orthographic, 300 wide and 150 high, from 10 to 500\n"),
              std::string::npos)
        << outcome.output;
}

TEST_F(CullProgram, A_floor_adds_the_contacts_of_the_feet)
{
    Outcome const outcome = Run("--floor auto " + m_Shipped);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("floor         at height "), std::string::npos);
    EXPECT_NE(outcome.output.find("              LeftAnkle meets it at "), std::string::npos) << outcome.output;
    EXPECT_NE(outcome.output.find("              RightAnkle meets it at "), std::string::npos) << outcome.output;
    std::string const table = ReadText(Path("cull-out/floor.csv"));
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 3);
    EXPECT_EQ(std::distance(fs::directory_iterator(Path("cull-out")), fs::directory_iterator()), 3);
    Outcome const deep = Run("--floor -1000 --out deep " + m_Shipped);
    EXPECT_NE(deep.output.find("floor         at height -1000, points "), std::string::npos);
    EXPECT_NE(deep.output.find("              LeftAnkle never meets it\n"), std::string::npos);
    EXPECT_EQ(ReadText(Path("deep/floor.csv")), "foot,frame,time,x,y,z\n");
}

TEST_F(CullProgram, A_made_step_meets_the_floor_at_its_time)
{
    // The sole falls from a height of 10 to one of -5 in the second of its steps of half a second.
    WriteText(Path("step.bvh"), "HIERARCHY\nROOT Hips\n{\nOFFSET 0 0 0\nCHANNELS 1 Yposition\nJOINT Ankle\n{\n"
                                "OFFSET 0 -80 0\nEnd Site\n{\nOFFSET 0 -5 20\n}\n}\n}\nMOTION\nFrames: 3\n"
                                "Frame Time: 0.5\n105\n95\n80\n");
    Outcome const outcome = Run("--floor 0 step.bvh");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("              Ankle meets it at 0.833 s at ("), std::string::npos) << outcome.output;
    EXPECT_TRUE(ReadText(Path("cull-out/floor.csv")).starts_with("foot,frame,time,x,y,z\nAnkle,1,0.8333333"));
}

TEST_F(CullProgram, A_figure_without_feet_is_told_so)
{
    WriteText(Path("a.bvh"), "HIERARCHY\nROOT A\n{\nOFFSET 1 2 3\nCHANNELS 1 Zrotation\n}\n"
                             "MOTION\nFrames: 2\nFrame Time: 0.25\n0\n90\n");
    Outcome const outcome = Run("--floor auto a.bvh");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("              the figure has no feet\n"), std::string::npos) << outcome.output;
    EXPECT_EQ(ReadText(Path("cull-out/floor.csv")), "foot,frame,time,x,y,z\n");
}

TEST_F(CullProgram, A_shake_adds_the_movement_of_the_camera_and_changes_what_it_sees)
{
    Outcome const still = Run("--out still " + (k_Camera + m_Shipped));
    EXPECT_EQ(still.output.find("shake"), std::string::npos);
    EXPECT_FALSE(fs::exists(Path("still/camera.csv")));
    EXPECT_EQ(ReadText(Path("still/cull.svg")).find("held by hand"), std::string::npos);
    Outcome const shaken = Run("--shake 8 --seed 5 " + (k_Camera + m_Shipped));
    EXPECT_EQ(shaken.status, 0) << shaken.errors;
    EXPECT_NE(shaken.output.find("shake         up to 8 along each axis, seed 5\n"), std::string::npos)
        << shaken.output;
    EXPECT_NE(shaken.output.find("wrote         cull-out/camera.csv\n"), std::string::npos);
    std::string const camera = ReadText(Path("cull-out/camera.csv"));
    EXPECT_EQ(std::count(camera.begin(), camera.end(), '\n'), 1 + 240);
    EXPECT_FALSE(ReadText(Path("cull-out/view.csv")) == ReadText(Path("still/view.csv")));
    std::string const picture = ReadText(Path("cull-out/cull.svg"));
    EXPECT_EQ(FindXmlFault(picture), "");
    EXPECT_NE(picture.find("21 joints, 240 frames, 8.00 s, camera held by hand<"), std::string::npos);
    EXPECT_EQ(Run("--out other --shake 8 --seed 6 " + (k_Camera + m_Shipped)).status, 0);
    EXPECT_FALSE(ReadText(Path("other/camera.csv")) == camera);
    EXPECT_EQ(Run("--out again --shake 8 --seed 5 " + (k_Camera + m_Shipped)).status, 0);
    EXPECT_TRUE(ReadText(Path("again/camera.csv")) == camera);
}

TEST_F(CullProgram, A_camera_that_cannot_be_placed_gives_status_two)
{
    PutEarlierResults();
    Outcome const outcome = Run("--out out --eye 1,2,3 --look 1,2,3 " + m_Shipped);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.errors, "cull: the camera stands at the very place at which it is to look\n");
    EXPECT_EQ(outcome.output, "");
    ExpectEarlierResults();
}

TEST_F(CullProgram, A_malformed_clip_is_named_with_its_line_and_leaves_earlier_results)
{
    PutEarlierResults();
    WriteText(Path("bad.bvh"), "HIERARCHY\nROOT Hips\nOFFSET 0 0 0\n");
    Outcome const outcome = Run("--out out bad.bvh");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.errors, "bad.bvh:3: expected \"{\" after the joint's name, found \"OFFSET\"\n");
    ExpectEarlierResults();
}

TEST_F(CullProgram, A_missing_clip_gives_status_one)
{
    PutEarlierResults();
    Outcome const outcome = Run("--out out missing.bvh");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "cull: cannot read missing.bvh: No such file or directory\n");
    ExpectEarlierResults();
}

TEST_F(CullProgram, A_folder_that_cannot_be_made_gives_status_one)
{
    WriteText(Path("file"), "x");
    Outcome const outcome = Run("--out file/inside " + m_Shipped);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.errors.find("cull: cannot make the folder file/inside: "), std::string::npos) << outcome.errors;
}

TEST_F(CullProgram, A_full_disk_gives_status_one_and_leaves_earlier_results)
{
    if (!fs::exists("/dev/full"))
    {
        GTEST_SKIP() << "no device that is always full";
    }
    PutEarlierResults();
    fs::create_symlink("/dev/full", Path("out/.floor.csv.partial"));
    Outcome const outcome = Run("--out out --floor auto " + m_Shipped);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "cull: cannot write out/floor.csv: No space left on device\n");
    ExpectEarlierResults();
}

TEST_F(CullProgram, An_output_that_cannot_be_written_gives_status_one)
{
    ExpectUnwritableOutputFails(cull::Run, "cull");
}

TEST_F(CullProgram, Two_runs_write_the_same_bytes)
{
    EXPECT_EQ(Run("--out one --floor auto " + (k_Camera + m_Shipped)).status, 0);
    EXPECT_EQ(Run("--out two --floor auto " + (k_Camera + m_Shipped)).status, 0);
    for (std::string const name : {"view.csv", "cull.svg", "floor.csv"})
    {
        EXPECT_TRUE(ReadText(Path("one/" + name)) == ReadText(Path("two/" + name))) << name;
    }
}

} // namespace
