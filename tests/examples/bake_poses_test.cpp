#include "bake/bake.h"
#include "bake/pose_file.h"
#include "clip/reader.h"
#include "clip/writer.h"

#include "examples/bake_program.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace
{

namespace fs = std::filesystem;

/// The program with poses that are scaled, blended, saved and loaded.
class BakePoses : public BakeProgram
{
protected:
    Outcome RunWell(std::string const & arguments) const
    {
        Outcome outcome = Run(arguments);
        EXPECT_EQ(outcome.status, 0) << arguments << '\n' << outcome.errors;
        EXPECT_EQ(outcome.errors, "");
        return outcome;
    }

    void ExpectSameResults(std::string const & one, std::string const & other,
                           std::vector<std::string> const & names) const
    {
        for (std::string const & name : names)
        {
            EXPECT_TRUE(ReadText(Path(one) / name) == ReadText(Path(other) / name)) << name;
        }
    }

    void ExpectSameResults(std::string const & one, std::string const & other) const
    {
        ExpectSameResults(one, other,
                          {"world.csv", "pose.svg", "baked.bvh", "angles.csv", "world-angles.csv", "curves.svg"});
    }

    /// A refusal with one line to say why, that leaves the results of an earlier run.
    void ExpectRefusal(std::string const & arguments, int status, std::string const & errors) const
    {
        PutEarlierResults();
        Outcome const outcome = Run("--out out " + arguments);
        EXPECT_EQ(outcome.status, status) << arguments;
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, errors);
        ExpectEarlierResults();
    }

    /// A root and a bone of one unit along X, that turns about Z; the root is shifted along Y.
    void PutClip(std::string const & name, std::string const & frameTime, std::vector<std::string> const & frames,
                 std::string const & offset = "0 0 0") const
    {
        std::string text = "HIERARCHY\nROOT A\n{\nOFFSET 0 0 0\nCHANNELS 1 Yposition\nJOINT B\n{\nOFFSET " + offset +
                           "\nCHANNELS 1 Zrotation\nEnd Site\n{\nOFFSET 1 0 0\n}\n}\n}\nMOTION\n";
        text += "Frames: " + std::to_string(frames.size()) + "\nFrame Time: " + frameTime + "\n";
        for (std::string const & frame : frames)
        {
            text += frame + '\n';
        }
        WriteText(Path(name), text);
    }
};

TEST_F(BakePoses, Loaded_poses_give_the_results_of_the_run_that_saved_them)
{
    Outcome const saving = RunWell("--out one --order ZXY --save poses.bin " + m_Shipped);
    EXPECT_NE(saving.output.find("wrote         poses.bin\n"), std::string::npos) << saving.output;
    RunWell("--out two --order ZXY --load poses.bin " + m_Shipped);
    ExpectSameResults("one", "two");
    EXPECT_EQ(std::distance(fs::directory_iterator(Path("two")), fs::directory_iterator()), 6);
    EXPECT_EQ(fs::file_size(Path("poses.bin")), 36U + 240 * 26 * 101);
}

TEST_F(BakePoses, Scale_and_mode_are_saved_with_the_poses)
{
    for (std::string const mode : {"component", "matrix"})
    {
        std::string const common = " --order YXZ " + m_Shipped;
        std::string const scaled = "--out one --scale 1,2.5,-0.75 --save poses.bin --mode " + mode;
        RunWell(scaled + common);
        Outcome const loading = RunWell("--out two --load poses.bin" + common);
        ExpectSameResults("one", "two");
        EXPECT_NE(loading.output.find("composition   by " + mode + ", "), std::string::npos) << loading.output;
        RunWell("--out plain" + common);
        EXPECT_FALSE(ReadText(Path("plain/world.csv")) == ReadText(Path("one/world.csv")));
    }
}

TEST_F(BakePoses, Scale_and_mode_given_on_loading_take_the_place_of_those_saved)
{
    RunWell("--out one --scale 1,2,3 --mode component " + m_Shipped);
    RunWell("--out other --scale 3,2,1 --mode matrix --save poses.bin " + m_Shipped);
    RunWell("--out two --scale 1,2,3 --mode component --load poses.bin " + m_Shipped);
    ExpectSameResults("one", "two", {"world.csv", "pose.svg"});
    EXPECT_FALSE(ReadText(Path("one/world.csv")) == ReadText(Path("other/world.csv")));
}

TEST_F(BakePoses, A_blend_is_saved_too)
{
    clip::Clip motion = clip::ReadClip(fs::path(SHIPPED_CLIP));
    motion.frameCount -= 40;
    motion.values.erase(motion.values.begin(),
                        motion.values.begin() + static_cast<std::ptrdiff_t>(40 * motion.skeleton.channelCount));
    std::ofstream stream(Path("later.bvh"));
    clip::WriteClip(stream, motion);
    stream.close();
    std::string const common = " --order XYZ " + m_Shipped;
    Outcome const blending = RunWell("--out one --blend later.bvh --at 0.3 --scale 1,1,-2 --save poses.bin" + common);
    EXPECT_NE(blending.output.find("frames        200\n"), std::string::npos) << blending.output;
    RunWell("--out two --load poses.bin" + common);
    ExpectSameResults("one", "two");
    RunWell("--out three --blend later.bvh --at 0.4 --scale 1,1,-2" + common);
    EXPECT_FALSE(ReadText(Path("one/world.csv")) == ReadText(Path("three/world.csv")));
}

TEST_F(BakePoses, What_was_loaded_is_saved_again_as_it_was)
{
    RunWell("--out one --scale 2,1,-1 --mode matrix --save poses.bin " + m_Shipped);
    std::string const poses = ReadText(Path("poses.bin"));
    RunWell("--out two --load poses.bin --save deep/folder/again.bin " + m_Shipped);
    EXPECT_TRUE(ReadText(Path("deep/folder/again.bin")) == poses);
    RunWell("--out two --load poses.bin --save poses.bin " + m_Shipped);
    EXPECT_TRUE(ReadText(Path("poses.bin")) == poses);
    EXPECT_EQ(m_Scratch.CountFiles(), 4U);
}

// The clip gives the skeleton alone: its own motion may be shorter than the poses, or longer.
TEST_F(BakePoses, Poses_of_another_length_than_that_of_the_clip_are_taken)
{
    std::vector<std::string> frames(2000);
    for (std::size_t frame = 0; frame < frames.size(); ++frame)
    {
        frames[frame] = std::to_string(frame % 7) + " " + std::to_string(frame);
    }
    fs::create_directories(Path("long"));
    fs::create_directories(Path("short"));
    PutClip("long/a.bvh", "0.5", frames);
    PutClip("short/a.bvh", "0.25", {"5 6", "7 8", "9 10"});
    for (std::string const from : {"long", "short"})
    {
        std::string const to = from == "long" ? "short" : "long";
        Outcome const saving = RunWell("--out one --order XZY --save poses.bin " + from + "/a.bvh");
        Outcome const loading = RunWell("--out two --order XZY --load poses.bin " + to + "/a.bvh");
        ExpectSameResults("one", "two");
        EXPECT_EQ(loading.output.substr(0, loading.output.find("evaluation")),
                  saving.output.substr(0, saving.output.find("evaluation")));
    }
}

TEST_F(BakePoses, Damaged_poses_are_refused_and_leave_earlier_results)
{
    RunWell("--out one --save poses.bin " + m_Shipped);
    std::string const poses = ReadText(Path("poses.bin"));
    WriteText(Path("short.bin"), poses.substr(0, poses.size() - 1));
    ExpectRefusal("--order ZXY --load short.bin " + m_Shipped, 2,
                  "short.bin: it does not start with poses, or does not hold all\n");
    std::string broken = poses;
    broken[36 + 101 * 30] ^= 1;
    WriteText(Path("broken.bin"), broken);
    ExpectRefusal("--load broken.bin " + m_Shipped, 2,
                  "broken.bin: frame 1, joint \"" + clip::ReadClip(fs::path(SHIPPED_CLIP)).skeleton.joints[4].name +
                      "\": the transformation is damaged\n");
    ExpectRefusal("--load missing.bin " + m_Shipped, 1, "bake: cannot read missing.bin: No such file or directory\n");
    ExpectRefusal("--load one " + m_Shipped, 1, "bake: cannot read one: Is a directory\n");
    PutClip("other.bvh", "0.1", {"0 0"});
    ExpectRefusal("--load poses.bin other.bvh", 2, "poses.bin: the skeleton has another number of joints\n");
    ExpectRefusal("--load other.bvh other.bvh", 2, "other.bvh: it does not start with poses, or does not hold all\n");
}

TEST_F(BakePoses, A_clip_of_another_skeleton_or_pace_is_not_blended)
{
    PutClip("a.bvh", "0.5", {"0 0"});
    PutClip("skeleton.bvh", "0.5", {"0 0"}, "0 0 1e-300");
    ExpectRefusal("--blend skeleton.bvh a.bvh", 2, "skeleton.bvh: the skeleton is another one than that of the clip\n");
    ExpectRefusal("--blend " + m_Shipped + " a.bvh", 2,
                  std::string(SHIPPED_CLIP) + ": the skeleton is another one than that of the clip\n");
    for (char const * const time : {"0.499949", "0.500051", "1", "1e-300", "1e12"})
    {
        PutClip("pace.bvh", time, {"0 0"});
        ExpectRefusal("--blend pace.bvh a.bvh", 2, "pace.bvh: a frame takes another time than one of the clip\n");
    }
    for (char const * const time : {"0.499951", "0.500049"})
    {
        PutClip("pace.bvh", time, {"0 0"});
        EXPECT_NE(RunWell("--blend pace.bvh a.bvh").output.find("length        0.5 s\n"), std::string::npos);
    }
    ExpectRefusal("--blend missing.bvh a.bvh", 1, "bake: cannot read missing.bvh: No such file or directory\n");
    WriteText(Path("bad.bvh"), "HIERARCHY\n");
    ExpectRefusal("--blend bad.bvh a.bvh", 2, "bad.bvh:1: expected \"ROOT\", found the end of the file\n");
}

TEST_F(BakePoses, Half_of_a_blend_lies_between_the_clips)
{
    PutClip("a.bvh", "0.5", {"2 0", "4 0", "6 0"});
    PutClip("b.bvh", "0.5", {"4 90", "8 0"});
    for (std::string const share : {"", "--at 0.5 ", "--at=.5 "})
    {
        RunWell("--out out " + share + "--blend b.bvh a.bvh");
        std::string const table = ReadText(Path("out/world.csv"));
        EXPECT_TRUE(table.starts_with("frame,joint,x,y,z\n0,A,0,3,0\n0,B,0,3,0\n0,B_end,0.70710678118654")) << table;
        EXPECT_NE(table.find("\n1,A,0,6,0\n1,B,0,6,0\n1,B_end,1,6,0\n"), std::string::npos) << table;
        EXPECT_EQ(table.find("\n2,"), std::string::npos) << table;
    }
    RunWell("--out out --at 0.25 --blend=b.bvh a.bvh");
    EXPECT_NE(ReadText(Path("out/world.csv")).find("\n1,A,0,5,0\n"), std::string::npos);
}

TEST_F(BakePoses, Poses_are_blended_where_they_are_loaded)
{
    PutClip("a.bvh", "0.5", {"2 0", "4 0"});
    PutClip("b.bvh", "0.5", {"10 0", "20 0"});
    PutClip("c.bvh", "0.5", {"7 0"});
    RunWell("--save b.bin b.bvh");
    RunWell("--out out --load b.bin --blend a.bvh --at 0.75 c.bvh");
    EXPECT_NE(ReadText(Path("out/world.csv")).find("\n0,A,0,4,0\n"), std::string::npos);
    EXPECT_NE(ReadText(Path("out/world.csv")).find("\n1,A,0,8,0\n"), std::string::npos);
}

// Under a root scaled along Y the bone, turned by 45 degrees, is sheared with its end site; turned by none or a quarter
// it is not.
TEST_F(BakePoses, The_summary_tells_how_many_transformations_a_scale_shears)
{
    PutClip("a.bvh", "0.5", {"1 0", "2 45", "3 90"});
    Outcome const component = RunWell("--out component --scale 1,2,1 a.bvh");
    EXPECT_NE(component.output.find("composition   by component, 0 of 9 world transformations sheared\n"),
              std::string::npos)
        << component.output;
    EXPECT_TRUE(RunWell("--scale 1,2,1 --mode=component a.bvh").output.substr(0, 300).find("0 of 9") !=
                std::string::npos);
    Outcome const matrix = RunWell("--out matrix --scale 1,2,1 --mode matrix a.bvh");
    EXPECT_NE(matrix.output.find("composition   by matrix, 2 of 9 world transformations sheared\n"), std::string::npos)
        << matrix.output;
    EXPECT_NE(RunWell("--mode matrix a.bvh").output.find("by matrix, 0 of 9 world"), std::string::npos);
    // The bone's own scale is (1, 2, 1) by component, along its own X, and the root's by matrix, along Y.
    EXPECT_NE(component.output.find("bounding box  (0, 1, 0) to (1, 4, 0)\n"), std::string::npos) << component.output;
    EXPECT_NE(matrix.output.find("bounding box  (0, 1, 0) to (1, 5, 0)\n"), std::string::npos) << matrix.output;
}

// The turned bone lies along -Y by component, mirrored along its own X, and along Y as a matrix mirrors it.
TEST_F(BakePoses, A_negative_factor_mirrors_the_figure)
{
    PutClip("a.bvh", "0.5", {"3 0", "4 90"});
    Outcome const component = RunWell("--scale -2,1,1 a.bvh");
    EXPECT_NE(component.output.find("bounding box  (-2, 2, 0) to (0, 4, 0)\n"), std::string::npos) << component.output;
    Outcome const matrix = RunWell("--scale -2,1,1 --mode matrix a.bvh");
    EXPECT_NE(matrix.output.find("bounding box  (-2, 3, 0) to (0, 5, 0)\n"), std::string::npos) << matrix.output;
}

// Scale has no channel, and is given to the clip that is baked before its positions are compared.
TEST_F(BakePoses, A_scaled_clip_is_baked_without_a_difference)
{
    for (std::string const mode : {"component", "matrix"})
    {
        Outcome const outcome = RunWell("--order XZY --scale 1,-2,3 --mode " + mode + " " + m_Shipped);
        EXPECT_LT(std::stod(outcome.output.substr(outcome.output.find("difference") + 10)), 1e-9) << outcome.output;
        EXPECT_NE(outcome.output.find("after, nearest to the frame before:  0 over half a turn"), std::string::npos);
    }
    RunWell("--out plain --order XZY " + m_Shipped);
    ExpectSameResults("plain", "bake-out", {"baked.bvh", "angles.csv", "curves.svg"});
}

TEST_F(BakePoses, A_folder_for_poses_that_cannot_be_made_leaves_earlier_results)
{
    WriteText(Path("file"), "x");
    PutEarlierResults();
    Outcome const outcome = Run("--out out --save file/inside/poses.bin " + m_Shipped);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_TRUE(outcome.errors.starts_with("bake: cannot make the folder file/inside: ")) << outcome.errors;
    ExpectEarlierResults();
}

TEST_F(BakePoses, A_place_for_poses_that_is_a_folder_leaves_earlier_results)
{
    fs::create_directories(Path("taken"));
    ExpectRefusal("--save taken " + m_Shipped, 1, "bake: cannot write ./taken: File exists\n");
    fs::remove_all(Path("out"));
    ExpectRefusal("--save taken/ " + m_Shipped, 1, "bake: cannot write taken/: File exists\n");
    EXPECT_TRUE(fs::is_empty(Path("taken")));
}

TEST_F(BakePoses, Poses_may_stand_among_the_results_but_not_take_the_name_of_one)
{
    ExpectRefusal("--save out/world.csv " + m_Shipped, 1, "bake: cannot write out/world.csv: File exists\n");
    fs::remove_all(Path("out"));
    ExpectRefusal("--save ./out/../out/pose.svg " + m_Shipped, 1, "bake: cannot write out/pose.svg: File exists\n");
    Outcome const outcome = RunWell("--out out --save out/poses.bin " + m_Shipped);
    EXPECT_NE(outcome.output.find("wrote         out/poses.bin\n"), std::string::npos) << outcome.output;
    EXPECT_EQ(std::distance(fs::directory_iterator(Path("out")), fs::directory_iterator()), 3);
    RunWell("--out again --load out/poses.bin " + m_Shipped);
    ExpectSameResults("out", "again", {"world.csv", "pose.svg"});
    RunWell("--out . --save poses.bin " + m_Shipped);
    EXPECT_TRUE(ReadText(Path("poses.bin")) == ReadText(Path("out/poses.bin")));
}

TEST_F(BakePoses, A_full_disk_for_the_poses_leaves_earlier_results)
{
    if (!fs::exists("/dev/full"))
    {
        GTEST_SKIP() << "no device that is always full";
    }
    fs::create_directories(Path("deep"));
    WriteText(Path("deep/poses.bin"), "earlier poses");
    fs::create_symlink("/dev/full", Path("deep/.poses.bin.partial"));
    ExpectRefusal("--save deep/poses.bin " + m_Shipped, 1,
                  "bake: cannot write deep/poses.bin: No space left on device\n");
    EXPECT_EQ(ReadText(Path("deep/poses.bin")), "earlier poses");
}

TEST_F(BakePoses, A_captured_clip_gives_the_same_results_from_its_saved_poses)
{
    if (!fs::exists(CAPTURED_CLIP))
    {
        GTEST_SKIP() << "no captured clip beside the project";
    }
    std::string const common = std::string(" --order XYZ '") + CAPTURED_CLIP + "'";
    RunWell("--out one --save poses.bin" + common);
    RunWell("--out two --load poses.bin" + common);
    ExpectSameResults("one", "two");
}

} // namespace
