#include "spectrum/spectrum.h"

#include "examples/example_program.h"
#include "examples/xml_check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <ios>
#include <iterator>
#include <sstream>
#include <string>

namespace
{

namespace fs = std::filesystem;

class SpectrumProgram : public ExampleProgram
{
protected:
    SpectrumProgram() : ExampleProgram(SPECTRUM_PROGRAM, "spectrum.csv", "spectrum.svg") {}
};

TEST_F(SpectrumProgram, Help_goes_to_standard_output_with_status_zero)
{
    for (char const * const option : {"--help", "-h"})
    {
        Outcome const outcome = Run(option);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_TRUE(outcome.output.starts_with("Usage: spectrum [options] CLIP.bvh\n"));
        for (char const * const part : {"--joint NAME", "--out DIR", "--noise", "--seed N", "spectrum.csv",
                                        "spectrum.svg", "noise.svg", "Status: 0 done"})
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

TEST_F(SpectrumProgram, Tells_the_frequencies_of_the_shipped_clip)
{
    Outcome const outcome = Run(m_Shipped);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "");
    for (char const * const line :
         {"frames        240 in 8 s, one cycle over all is 0.125 Hz\n", "angles        of LeftAnkle, ",
          "              X: 1.11 Hz, ", "paths         of the ends, ", "              RightToe_end: ",
          "wrote         spectrum-out/spectrum.csv\n", "wrote         spectrum-out/spectrum.svg\n"})
    {
        EXPECT_NE(outcome.output.find(line), std::string::npos) << line << outcome.output;
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(Path("spectrum-out")), fs::directory_iterator()), 2);
    std::string const table = ReadText(Path("spectrum-out/spectrum.csv"));
    EXPECT_EQ(std::count(table.begin(), table.end(), '\n'), 1 + 6 * 513);
    EXPECT_EQ(FindXmlFault(ReadText(Path("spectrum-out/spectrum.svg"))), "");
}

TEST_F(SpectrumProgram, A_joint_is_taken_by_name)
{
    Outcome const outcome = Run("--joint LeftKnee --out out " + m_Shipped);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("angles        of LeftKnee, "), std::string::npos) << outcome.output;
    EXPECT_NE(ReadText(Path("out/spectrum.csv")).find(",LeftKnee,angle,"), std::string::npos);
    EXPECT_NE(ReadText(Path("out/spectrum.svg")).find(">Angles of LeftKnee<"), std::string::npos);
}

TEST_F(SpectrumProgram, A_joint_that_is_not_there_gives_status_two_and_leaves_earlier_results)
{
    PutEarlierResults();
    Outcome const outcome = Run("--joint Tail --out out " + m_Shipped);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "spectrum: the clip has no joint \"Tail\"\n");
    ExpectEarlierResults();
}

TEST_F(SpectrumProgram, Noise_adds_its_picture)
{
    Outcome const outcome = Run("--noise --seed 12 " + m_Shipped);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("wrote         spectrum-out/noise.svg\n"), std::string::npos);
    EXPECT_NE(ReadText(Path("spectrum-out/noise.svg")).find(">Noise of the seed 12<"), std::string::npos);
}

TEST_F(SpectrumProgram, A_clip_of_one_frame_has_no_frequency)
{
    WriteText(Path("one.bvh"), "HIERARCHY\nROOT A\n{\nOFFSET 1 2 3\nCHANNELS 1 Zrotation\n}\n"
                               "MOTION\nFrames: 1\nFrame Time: 0.25\n90\n");
    Outcome const outcome = Run("one.bvh");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("              Z: no frequency stands out\n"), std::string::npos);
    EXPECT_NE(outcome.output.find("              A: no frequency stands out\n"), std::string::npos);
}

TEST_F(SpectrumProgram, A_wrong_command_line_gives_status_two_and_a_hint)
{
    Outcome const outcome = Run("--frames a.bvh");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(outcome.errors, "spectrum: unknown option \"--frames\"\nTry \"spectrum --help\".\n");
    EXPECT_EQ(Run("").errors, "spectrum: no clip given\nTry \"spectrum --help\".\n");
    EXPECT_EQ(m_Scratch.CountFiles(), 0U);
}

TEST_F(SpectrumProgram, A_malformed_clip_is_named_with_its_line_and_leaves_earlier_results)
{
    PutEarlierResults();
    WriteText(Path("bad.bvh"), "HIERARCHY\nROOT Hips\nOFFSET 0 0 0\n");
    Outcome const outcome = Run("--out out bad.bvh");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.errors, "bad.bvh:3: expected \"{\" after the joint's name, found \"OFFSET\"\n");
    ExpectEarlierResults();
}

TEST_F(SpectrumProgram, A_missing_clip_and_a_folder_that_cannot_be_made_give_status_one)
{
    Outcome const missing = Run("missing.bvh");
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.errors, "spectrum: cannot read missing.bvh: No such file or directory\n");
    WriteText(Path("file"), "x");
    Outcome const outcome = Run("--out file/inside " + m_Shipped);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.errors.find("spectrum: cannot make the folder file/inside: "), std::string::npos);
}

TEST_F(SpectrumProgram, A_full_disk_gives_status_one_and_leaves_earlier_results)
{
    if (!fs::exists("/dev/full"))
    {
        GTEST_SKIP() << "no device that is always full";
    }
    PutEarlierResults();
    fs::create_symlink("/dev/full", Path("out/.noise.svg.partial"));
    Outcome const outcome = Run("--out out --noise " + m_Shipped);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "spectrum: cannot write out/noise.svg: No space left on device\n");
    ExpectEarlierResults();
}

TEST_F(SpectrumProgram, An_output_that_cannot_be_written_gives_status_one)
{
    ExpectUnwritableOutputFails(spectrum::Run, "spectrum");
}

TEST_F(SpectrumProgram, Two_runs_write_the_same_bytes)
{
    EXPECT_EQ(Run("--out one --noise " + m_Shipped).status, 0);
    EXPECT_EQ(Run("--out two --noise " + m_Shipped).status, 0);
    for (std::string const name : {"spectrum.csv", "spectrum.svg", "noise.svg"})
    {
        EXPECT_TRUE(ReadText(Path("one/" + name)) == ReadText(Path("two/" + name))) << name;
    }
}

} // namespace
