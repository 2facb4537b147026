#include "clip/reader.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <filesystem>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <streambuf>
#include <string>
#include <system_error>
#include <vector>

namespace
{

using clip::Channel;

/// One joint that turns about one axis; the motion may be given anew.
std::string SmallClip(std::string const & motion = "Frames: 2\nFrame Time: 0.5\n10\n20\n")
{
    return "HIERARCHY\nROOT Hips\n{\nOFFSET 1 2 3\nCHANNELS 1 Yrotation\n}\nMOTION\n" + motion;
}

clip::Clip Parse(std::string const & text)
{
    return clip::ParseClip(text, "test.bvh");
}

/// The message of the refusal, or nothing where the text is taken.
std::string Refusal(std::string const & text)
{
    try
    {
        Parse(text);
        return {};
    }
    catch (clip::FormatError const & error)
    {
        EXPECT_TRUE(std::string(error.what()).starts_with("test.bvh:" + std::to_string(error.Line()) + ": "));
        return error.what();
    }
}

std::string Replaced(std::string text, std::string const & from, std::string const & to)
{
    for (std::size_t place = 0; (place = text.find(from, place)) != std::string::npos; place += to.size())
    {
        text.replace(place, from.size(), to);
    }
    return text;
}

constexpr char const * k_Figure = R"(HIERARCHY
ROOT Hips
{
  OFFSET 0.5 -1 2e1
  CHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation
  JOINT Knee
  {
    OFFSET 0 -4 0
    CHANNELS 3 Yrotation Zrotation Xrotation
    End Site
    {
      OFFSET 0 -3 +1
    }
  }
  JOINT Tail
  {
    OFFSET 0 0 -1
    CHANNELS 2 Zposition Xrotation
  }
}
MOTION
Frames: 2
Frame Time: 0.0333333
1 2 3 4 5 6 7 8 9 10 11
-1 -2 -3 -4 -5 -6 -7 -8 -9 -10 -11
)";

TEST(Reader, Reads_the_joints_in_file_order_with_parents_and_offsets)
{
    std::vector<clip::Joint> const joints = Parse(k_Figure).skeleton.joints;
    ASSERT_EQ(joints.size(), 4U);
    EXPECT_EQ(joints[0].name, "Hips");
    EXPECT_EQ(joints[0].parent, clip::k_NoParent);
    EXPECT_EQ(joints[0].offset.X, 0.5);
    EXPECT_EQ(joints[0].offset.Y, -1);
    EXPECT_EQ(joints[0].offset.Z, 20);
    EXPECT_EQ(joints[1].name, "Knee");
    EXPECT_EQ(joints[1].parent, 0);
    EXPECT_EQ(joints[2].name, "Knee_end");
    EXPECT_EQ(joints[2].parent, 1);
    EXPECT_EQ(joints[2].offset.Z, 1);
    EXPECT_EQ(joints[3].name, "Tail");
    EXPECT_EQ(joints[3].parent, 0);
}

TEST(Reader, Marks_end_sites_alone)
{
    std::vector<clip::Joint> const joints = Parse(k_Figure).skeleton.joints;
    EXPECT_FALSE(joints[1].isEndSite);
    EXPECT_TRUE(joints[2].isEndSite);
    EXPECT_TRUE(joints[2].channels.empty());
    EXPECT_FALSE(joints[3].isEndSite);
    EXPECT_EQ(clip::CountJoints(Parse(k_Figure).skeleton), 3U);
    EXPECT_EQ(clip::FindEnds(Parse(k_Figure).skeleton), (std::vector<int>{2, 3}));
}

TEST(Reader, Keeps_the_channels_in_the_order_of_the_file)
{
    clip::Skeleton const skeleton = Parse(k_Figure).skeleton;
    EXPECT_EQ(skeleton.channelCount, 11U);
    EXPECT_EQ(skeleton.joints[0].channels,
              (std::vector<Channel>{Channel::XPosition, Channel::YPosition, Channel::ZPosition, Channel::ZRotation,
                                    Channel::XRotation, Channel::YRotation}));
    EXPECT_EQ(skeleton.joints[1].channels,
              (std::vector<Channel>{Channel::YRotation, Channel::ZRotation, Channel::XRotation}));
    EXPECT_EQ(skeleton.joints[3].channels, (std::vector<Channel>{Channel::ZPosition, Channel::XRotation}));
    EXPECT_EQ(skeleton.joints[0].firstChannel, 0U);
    EXPECT_EQ(skeleton.joints[1].firstChannel, 6U);
    EXPECT_EQ(skeleton.joints[3].firstChannel, 9U);
}

TEST(Reader, Reads_the_frames_one_behind_the_other)
{
    clip::Clip const motion = Parse(k_Figure);
    EXPECT_EQ(motion.frameCount, 2U);
    EXPECT_EQ(motion.frameTime, 0.0333333);
    EXPECT_DOUBLE_EQ(motion.Length(), 0.0666666);
    ASSERT_EQ(motion.values.size(), 22U);
    EXPECT_EQ(motion.Frame(0)[10], 11);
    EXPECT_EQ(motion.Frame(1)[0], -1);
    EXPECT_EQ(motion.Frame(1)[10], -11);
}

TEST(Reader, Every_line_end_and_blank_gives_the_same_clip)
{
    std::vector<double> const expected = Parse(k_Figure).values;
    std::vector<std::string> const variants = {Replaced(k_Figure, "\n", "\r\n"),
                                               Replaced(k_Figure, "\n", "\r"),
                                               Replaced(k_Figure, "\n", "\n\n \t\n"),
                                               Replaced(k_Figure, " ", "\t"),
                                               Replaced(k_Figure, " ", " \t \f\v"),
                                               Replaced(k_Figure, "\n", " \t\n"),
                                               "\xEF\xBB\xBF" + std::string(k_Figure),
                                               Replaced(Replaced(k_Figure, "\n  ", " "), "\n{", "{"),
                                               std::string(k_Figure).substr(0, std::string(k_Figure).size() - 1)};
    for (std::string const & text : variants)
    {
        clip::Clip const motion = Parse(text);
        EXPECT_EQ(motion.values, expected) << text;
        EXPECT_EQ(motion.skeleton.joints.size(), 4U) << text;
        EXPECT_EQ(motion.skeleton.joints[0].name, "Hips") << text;
    }
}

TEST(Reader, Upper_and_lower_case_are_alike_in_keywords_and_kept_in_names)
{
    clip::Clip const motion =
        Parse("hierarchy\nRoot HiPs\n{\nOffset 1 2 3\nChannels 2 XROTATION yPosition\nEND SITE\n{\n"
              "offset 0 0 0\n}\n}\nmotion\nFRAMES: 1\nframe TIME: 1\n1 2\n");
    EXPECT_EQ(motion.skeleton.joints[0].name, "HiPs");
    EXPECT_EQ(motion.skeleton.joints[0].channels, (std::vector<Channel>{Channel::XRotation, Channel::YPosition}));
}

TEST(Reader, Reads_several_roots)
{
    clip::Clip const motion = Parse("HIERARCHY\nROOT A\n{\nOFFSET 0 0 0\nCHANNELS 1 Xrotation\n}\nROOT B\n{\n"
                                    "OFFSET 0 0 0\nCHANNELS 1 Yrotation\n}\nMOTION\nFrames: 1\nFrame Time: 1\n1 2\n");
    ASSERT_EQ(motion.skeleton.joints.size(), 2U);
    EXPECT_EQ(motion.skeleton.joints[1].parent, clip::k_NoParent);
    EXPECT_EQ(motion.skeleton.joints[1].firstChannel, 1U);
}

TEST(Reader, A_joint_may_lack_channels)
{
    for (char const * const channels : {"", "CHANNELS 0\n"})
    {
        clip::Clip const motion =
            Parse(std::string("HIERARCHY\nROOT A\n{\nOFFSET 0 0 0\n") + channels +
                  "JOINT B\n{\nCHANNELS 1 Xrotation\nOFFSET 0 0 0\n}\n}\nMOTION\nFrames: 1\nFrame Time: 1\n5\n");
        EXPECT_TRUE(motion.skeleton.joints[0].channels.empty());
        EXPECT_EQ(motion.skeleton.joints[1].firstChannel, 0U);
        EXPECT_EQ(motion.skeleton.channelCount, 1U);
    }
}

TEST(Reader, Whole_turns_and_the_last_bit_of_a_number_are_kept)
{
    clip::Clip const motion = Parse(SmallClip("Frames: 3\nFrame Time: 0.5\n-720.0000000000001\n1e-300\n-0\n"));
    EXPECT_EQ(motion.values[0], -720.0000000000001);
    EXPECT_EQ(motion.values[1], 1e-300);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(motion.values[2]), std::uint64_t(1) << 63U);
}

TEST(Reader, Nesting_of_any_depth_is_read)
{
    constexpr int k_Depth = 100000;
    std::string text = "HIERARCHY\nROOT r{OFFSET 0 0 0 CHANNELS 1 Xrotation\n";
    for (int i = 0; i < k_Depth; ++i)
    {
        text += "JOINT j{OFFSET 0 1 0\n";
    }
    text += std::string(k_Depth + 1, '}') + "\nMOTION\nFrames: 1\nFrame Time: 1\n0\n";
    clip::Clip const motion = Parse(text);
    EXPECT_EQ(motion.skeleton.joints.size(), k_Depth + 1U);
    EXPECT_EQ(motion.skeleton.joints.back().parent, k_Depth - 1);
}

struct Fault
{
    char const * what;
    std::string text;
    std::string message; ///< behind the file's name
};

std::string Hierarchy(std::string const & body)
{
    return "HIERARCHY\nROOT Hips\n{\n" + body;
}

std::vector<Fault> HierarchyFaults()
{
    std::string const inside = R"(expected "OFFSET", "CHANNELS", "JOINT", "End Site" or "}", found )";
    std::string const offset = "OFFSET 0 0 0\n";
    return {
        {"empty", "", "1: expected \"HIERARCHY\", found the end of the file"},
        {"blank", "\n\n  \n", "1: expected \"HIERARCHY\", found the end of the file"},
        {"other format", "\nsolid cube\n", R"(2: expected "HIERARCHY", found "solid")"},
        {"no root", "HIERARCHY\nMOTION\n", R"(2: expected "ROOT", found "MOTION")"},
        {"joint as root", "HIERARCHY\nJOINT a\n", R"(2: expected "ROOT", found "JOINT")"},
        {"no name", "HIERARCHY\nROOT\n{\n", "3: expected a joint's name, found \"{\""},
        {"no name at the end", "HIERARCHY\nROOT", "2: expected a joint's name, found the end of the file"},
        {"name closes", "HIERARCHY\nROOT }", "2: expected a joint's name, found \"}\""},
        {"long name", "HIERARCHY\nROOT " + std::string(256, 'x') + " {",
         "2: the joint's name \"" + std::string(40, 'x') + "...\" is longer than 255 bytes"},
        {"no brace", "HIERARCHY\nROOT Hips\nOFFSET 0 0 0\n",
         R"(3: expected "{" after the joint's name, found "OFFSET")"},
        {"two words", "HIERARCHY\nROOT Left Hip\n{\n", R"(2: expected "{" after the joint's name, found "Hip")"},
        {"unknown word", Hierarchy("OFSET 0 0 0\n"), "4: " + inside + "\"OFSET\""},
        {"root inside", Hierarchy("ROOT b\n"), "4: " + inside + "\"ROOT\""},
        {"motion inside", Hierarchy(offset + "MOTION\n"), "5: " + inside + "\"MOTION\""},
        {"unfinished", Hierarchy(offset + "\n\n"), "4: " + inside + "the end of the file"},
        {"no offset", Hierarchy("CHANNELS 1 Xrotation\n}\n"), R"(5: the joint "Hips" has no "OFFSET")"},
        {"two offsets", Hierarchy(offset + offset), R"(5: the joint "Hips" has a second "OFFSET")"},
        {"short offset", Hierarchy("OFFSET 0 0\nCHANNELS"), "5: expected a number, found \"CHANNELS\""},
        {"offset no number", Hierarchy("OFFSET 0 0 abc\n"), "4: expected a number, found \"abc\""},
        {"offset with comma", Hierarchy("OFFSET 0 0 1,5\n"), "4: expected a number, found \"1,5\""},
        {"offset at the end", Hierarchy("OFFSET 0 0"), "4: expected a number, found the end of the file"},
        {"infinite offset", Hierarchy("OFFSET inf 0 0\n"), "4: the number \"inf\" is out of range"},
        {"offset not a number", Hierarchy("OFFSET 0 nan 0\n"), "4: the number \"nan\" is out of range"},
        {"huge offset", Hierarchy("OFFSET 0 0 -1.1e12\n"), "4: the number \"-1.1e12\" is out of range"},
        {"seven channels", Hierarchy(offset + "CHANNELS 7 Xrotation\n"),
         "5: expected a number of channels from 0 to 6, found \"7\""},
        {"negative channels", Hierarchy(offset + "CHANNELS -1\n"),
         "5: expected a number of channels from 0 to 6, found \"-1\""},
        {"huge channels", Hierarchy(offset + "CHANNELS 99999999999999999999999\n"),
         "5: expected a number of channels from 0 to 6, found \"99999999999999999999999\""},
        {"uncounted channels", Hierarchy(offset + "CHANNELS Xrotation\n"),
         "5: expected a number of channels from 0 to 6, found \"Xrotation\""},
        {"unknown channel", Hierarchy(offset + "CHANNELS 1 Wrotation\n"),
         R"(5: expected a channel such as "Xrotation", found "Wrotation")"},
        {"missing channel", Hierarchy(offset + "CHANNELS 2 Xrotation\n}"),
         R"(6: expected a channel such as "Xrotation", found "}")"},
        {"channel too many", Hierarchy(offset + "CHANNELS 1 Xrotation Yrotation\n"), "5: " + inside + "\"Yrotation\""},
        {"channel twice", Hierarchy(offset + "CHANNELS 3 Xrotation Yrotation xROTATION\n"),
         R"(5: the joint "Hips" has the channel "xROTATION" twice)"},
        {"channels twice", Hierarchy(offset + "CHANNELS 1 Xrotation\nCHANNELS 1 Yrotation\n"),
         R"(6: the joint "Hips" has a second "CHANNELS")"},
        {"channels behind children", Hierarchy(offset + "JOINT b\n{\n" + offset + "}\nCHANNELS 1 Xrotation\n"),
         R"(9: the "CHANNELS" of the joint "Hips" stand behind its children)"},
        {"end of what", Hierarchy(offset + "End Sight\n"), R"(5: expected "Site" after "End", found "Sight")"},
        {"end site without brace", Hierarchy(offset + "End Site\nOFFSET"),
         R"(6: expected "{" after "End Site", found "OFFSET")"},
        {"named end site", Hierarchy(offset + "End Site Toe\n"), R"(5: expected "{" after "End Site", found "Toe")"},
        {"moving end site", Hierarchy(offset + "End Site\n{\nCHANNELS 1 Xrotation\n"),
         R"(7: expected "OFFSET" or "}" in an end site, found "CHANNELS")"},
        {"child of an end site", Hierarchy(offset + "End Site\n{\nJOINT b\n"),
         R"(7: expected "OFFSET" or "}" in an end site, found "JOINT")"},
        {"end of an end site", Hierarchy(offset + "End Site\n{\nEnd Site\n"),
         R"(7: expected "OFFSET" or "}" in an end site, found "End")"},
        {"end site without offset", Hierarchy(offset + "End Site\n{\n}\n"),
         R"(7: the joint "Hips_end" has no "OFFSET")"},
        {"brace too many", Hierarchy(offset + "}\n}\n"), R"(6: expected "MOTION" or another "ROOT", found "}")"},
        {"no motion", Hierarchy(offset + "}\n"),
         R"(5: expected "MOTION" or another "ROOT", found the end of the file)"},
        {"binary", std::string("HIERARCHY\nROOT a\0b\n", 19), "2: found a byte that is no text: is this a BVH file?"},
        {"binary at once",
         "\x7f"
         "ELF",
         "1: found a byte that is no text: is this a BVH file?"},
    };
}

std::vector<Fault> MotionFaults()
{
    std::string const rest = "Frame Time: 1\n";
    std::string const twoChannels = "HIERARCHY\nROOT a\n{\nOFFSET 0 0 0\nCHANNELS 2 Xrotation Yrotation\n}\nMOTION\n";
    return {
        {"no frames", SmallClip(""), "7: expected \"Frames:\", found the end of the file"},
        {"time first", SmallClip("Frame Time: 1\n"), R"(8: expected "Frames:", found "Frame")"},
        {"none", SmallClip("Frames: 0\n"), "8: expected a number of frames above 0, found \"0\""},
        {"negative", SmallClip("Frames: -5\n"), "8: expected a number of frames above 0, found \"-5\""},
        {"broken", SmallClip("Frames: 1.5\n"), "8: expected a number of frames above 0, found \"1.5\""},
        {"overflowing", SmallClip("Frames: 18446744073709551616\n"),
         "8: expected a number of frames above 0, found \"18446744073709551616\""},
        {"no time", SmallClip("Frames: 1\n5\n"), R"(9: expected "Frame", found "5")"},
        {"frame rate", SmallClip("Frames: 1\nFrame Rate: 30\n"), R"(9: expected "Time:" after "Frame", found "Rate:")"},
        {"zero time", SmallClip("Frames: 1\nFrame Time: 0\n"), "9: expected a frame time above 0, found \"0\""},
        {"negative time", SmallClip("Frames: 1\nFrame Time: -1\n"), "9: expected a frame time above 0, found \"-1\""},
        {"time not a number", SmallClip("Frames: 1\nFrame Time: nan\n"), "9: the number \"nan\" is out of range"},
        {"nothing moves", "HIERARCHY\nROOT a\n{\nOFFSET 0 0 0\n}\nMOTION\nFrames: 1000000000000\nFrame Time: 1\n",
         "8: no joint has a channel: there is nothing that moves"},
        {"no frame", SmallClip("Frames: 2\n" + rest), "9: the motion ends after 0 of 2 frames"},
        {"frame missing", SmallClip("Frames: 3\n" + rest + "1\n2\n\n\n"), "11: the motion ends after 2 of 3 frames"},
        {"most frames missing", SmallClip("Frames: 18446744073709551615\n" + rest + "1\n"),
         "10: the motion ends after 1 of 18446744073709551615 frames"},
        {"frame too many", SmallClip("Frames: 1\n" + rest + "1\n2\n"),
         "11: expected the end of the file after 1 frames, found \"2\""},
        {"number missing", twoChannels + "Frames: 2\n" + rest + "1 2\n3\n4\n", "11: frame 2 has 1 of 2 numbers"},
        {"number missing at the end", twoChannels + "Frames: 1\n" + rest + "1", "10: frame 1 has 1 of 2 numbers"},
        {"number too many", twoChannels + "Frames: 2\n" + rest + "1 2\n3 4 5\n",
         "11: frame 2 has more than 2 numbers: found \"5\""},
        {"no number", twoChannels + "Frames: 1\n" + rest + "1 x\n", "10: expected a number, found \"x\""},
        {"not a number", twoChannels + "Frames: 1\n" + rest + "NaN 1\n", "10: the number \"NaN\" is out of range"},
        {"infinite", twoChannels + "Frames: 1\n" + rest + "1 -Infinity\n",
         "10: the number \"-Infinity\" is out of range"},
        {"huge", twoChannels + "Frames: 1\n" + rest + "1 1e13\n", "10: the number \"1e13\" is out of range"},
        {"beyond a double", twoChannels + "Frames: 1\n" + rest + "1 1e999\n", "10: expected a number, found \"1e999\""},
        {"brace", twoChannels + "Frames: 1\n" + rest + "1 }\n", "10: expected a number, found \"}\""},
        {"binary", SmallClip("Frames: 1\n" + rest + "\x01\n"), "10: found a byte that is no text: is this a BVH file?"},
    };
}

TEST(Reader, Each_fault_of_the_hierarchy_is_named_with_its_line)
{
    for (Fault const & fault : HierarchyFaults())
    {
        EXPECT_EQ(Refusal(fault.text), "test.bvh:" + fault.message) << fault.what;
    }
}

TEST(Reader, Each_fault_of_the_motion_is_named_with_its_line)
{
    for (Fault const & fault : MotionFaults())
    {
        EXPECT_EQ(Refusal(fault.text), "test.bvh:" + fault.message) << fault.what;
    }
}

TEST(Reader, Lines_are_counted_alike_whatever_ends_them)
{
    for (char const * const end : {"\n", "\r\n", "\r"})
    {
        for (Fault const & fault : MotionFaults())
        {
            EXPECT_EQ(Refusal(Replaced(fault.text, "\n", end)), "test.bvh:" + fault.message) << fault.what;
        }
    }
}

TEST(Reader, Numbers_at_the_limit_are_taken)
{
    EXPECT_EQ(Parse(SmallClip("Frames: 2\nFrame Time: 1e12\n1e12\n-1e12\n")).values[1], -clip::k_LargestNumber);
}

TEST(Reader, A_name_at_the_limit_is_taken)
{
    std::string const name(clip::k_LongestName, 'x');
    EXPECT_EQ(Parse(Replaced(SmallClip(), "Hips", name)).skeleton.joints[0].name, name);
}

TEST(Reader, Every_beginning_of_a_clip_is_refused)
{
    // The last number and the line end are the ones that the clip can spare.
    std::string const text = k_Figure;
    for (std::size_t length = 0; length < text.size() - 2; ++length)
    {
        EXPECT_NE(Refusal(text.substr(0, length)), "") << length;
    }
}

TEST(Reader, The_global_locale_has_no_say)
{
    struct CommaPunctuation : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
    };
    std::locale const before =
        std::locale::global(std::locale(std::locale::classic(), new CommaPunctuation)); // NOLINT: owned by the locale
    double const value = Parse(SmallClip("Frames: 1\nFrame Time: 0.5\n1.25\n")).values[0];
    std::locale::global(before);
    EXPECT_EQ(value, 1.25);
}

TEST(Reader, Reads_a_stream_to_its_end)
{
    std::istringstream stream(SmallClip());
    EXPECT_EQ(clip::ReadClip(stream, "stream").frameCount, 2U);
    std::istringstream wrong("x");
    EXPECT_THROW(clip::ReadClip(wrong, "stream"), clip::FormatError);
}

TEST(Reader, A_stream_that_fails_is_no_malformed_clip)
{
    struct FailingBuffer : std::streambuf
    {
        int_type underflow() override { throw std::runtime_error("the disk is gone"); }
    };
    FailingBuffer buffer;
    std::istream stream(&buffer);
    EXPECT_THROW(clip::ReadClip(stream, "stream"), std::system_error);
}

TEST(Reader, A_file_that_cannot_be_read_is_named_with_the_reason)
{
    try
    {
        clip::ReadClip(std::filesystem::path("no-such-folder/clip.bvh"));
        FAIL();
    }
    catch (std::system_error const & error)
    {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
        EXPECT_NE(std::string(error.what()).find("cannot read no-such-folder/clip.bvh"), std::string::npos);
    }
    try
    {
        clip::ReadClip(std::filesystem::temp_directory_path());
        FAIL();
    }
    catch (std::system_error const & error)
    {
        EXPECT_EQ(error.code(), std::errc::is_a_directory);
    }
}

} // namespace
