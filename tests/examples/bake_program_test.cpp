#include "bake/bake.h"

#include "examples/scratch_folder.h"
#include "examples/xml_check.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <ios>
#include <iterator>
#include <sstream>
#include <string>

namespace
{

namespace fs = std::filesystem;

struct Outcome
{
    int status;
    std::string output;
    std::string errors;
};

class BakeProgram : public testing::Test
{
protected:
    /// Runs the program in the scratch folder, with arguments as a shell takes them.
    Outcome Run(std::string const & arguments) const
    {
        fs::path const output = m_Scratch.Path() / ".stdout";
        fs::path const errors = m_Scratch.Path() / ".stderr";
        std::string const command = "cd '" + m_Scratch.Path().string() + "' && '" + BAKE_PROGRAM + "' " + arguments +
                                    " > '" + output.string() + "' 2> '" + errors.string() + "'";
        int const result = std::system(command.c_str()); // NOLINT(cert-env33-c,concurrency-mt-unsafe)
        EXPECT_TRUE(WIFEXITED(result));
        Outcome outcome{WEXITSTATUS(result), ReadText(output), ReadText(errors)};
        fs::remove(output);
        fs::remove(errors);
        return outcome;
    }

    fs::path Path(std::string const & name) const { return m_Scratch.Path() / name; }

    /// Results of an earlier run in a folder `out`.
    void PutEarlierResults() const
    {
        fs::create_directory(Path("out"));
        WriteText(Path("out/world.csv"), "earlier table");
        WriteText(Path("out/pose.svg"), "earlier picture");
    }

    void ExpectEarlierResults() const
    {
        EXPECT_EQ(ReadText(Path("out/world.csv")), "earlier table");
        EXPECT_EQ(ReadText(Path("out/pose.svg")), "earlier picture");
        EXPECT_EQ(std::distance(fs::directory_iterator(Path("out")), fs::directory_iterator()), 2);
    }

    ScratchFolder m_Scratch;
    std::string const m_Shipped = std::string("'") + SHIPPED_CLIP + "'";
};

TEST_F(BakeProgram, Help_goes_to_standard_output_with_status_zero)
{
    for (char const * const option : {"--help", "-h"})
    {
        Outcome const outcome = Run(option);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_TRUE(outcome.output.starts_with("Usage: bake [--out DIR] CLIP.bvh\n"));
        EXPECT_NE(outcome.output.find("--out DIR"), std::string::npos);
        EXPECT_EQ(outcome.errors, "");
    }
    EXPECT_EQ(m_Scratch.CountFiles(), 0U);
}

TEST_F(BakeProgram, An_output_that_cannot_be_written_gives_status_one)
{
    std::ostringstream output;
    std::ostringstream errors;
    output.setstate(std::ios::badbit);
    char const * const arguments[] = {"--help"};
    EXPECT_EQ(bake::Run(arguments, output, errors), 1);
    EXPECT_EQ(errors.str(), "bake: cannot write to standard output\n");
}

TEST_F(BakeProgram, A_wrong_command_line_gives_status_two_and_a_hint)
{
    Outcome const unknown = Run("--frames a.bvh");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.output, "");
    EXPECT_EQ(unknown.errors, "bake: unknown option \"--frames\"\nTry \"bake --help\".\n");
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
          " ns per joint and frame\n", "wrote         bake-out/world.csv\n", "wrote         bake-out/pose.svg\n"})
    {
        EXPECT_NE(outcome.output.find(line), std::string::npos) << line;
    }
    EXPECT_EQ(FindXmlFault(ReadText(Path("bake-out/pose.svg"))), "");
    std::string const table = ReadText(Path("bake-out/world.csv"));
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 1 + 240 * 26);
    EXPECT_EQ(std::distance(fs::directory_iterator(Path("bake-out")), fs::directory_iterator()), 2);
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
}

TEST_F(BakeProgram, A_malformed_clip_is_named_with_its_line_and_leaves_earlier_results)
{
    PutEarlierResults();
    WriteText(Path("bad.bvh"), "HIERARCHY\nROOT Hips\nOFFSET 0 0 0\n");
    Outcome const outcome = Run("--out out bad.bvh");
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
    EXPECT_EQ(outcome.errors, "bake: the clip has 1200 frames of 60001 positions: more than 67108864 altogether\n");
    EXPECT_FALSE(fs::exists(Path("bake-out")));
}

TEST_F(BakeProgram, Bakes_a_captured_clip)
{
    if (!fs::exists(CAPTURED_CLIP))
    {
        GTEST_SKIP() << "no captured clip beside the project";
    }
    Outcome const outcome = Run(std::string("'") + CAPTURED_CLIP + "'");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("frames        455\n"), std::string::npos);
    EXPECT_EQ(FindXmlFault(ReadText(Path("bake-out/pose.svg"))), "");
}

} // namespace
