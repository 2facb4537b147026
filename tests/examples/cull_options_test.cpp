#include "cull/options.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <numbers>
#include <string>
#include <vector>

namespace
{

using Vector = C3DVector3Tpl<double>;

cull::Options Parse(std::initializer_list<char const *> arguments)
{
    return cull::ParseOptions(std::vector<char const *>(arguments));
}

std::string Refusal(std::initializer_list<char const *> arguments)
{
    try
    {
        Parse(arguments);
        return {};
    }
    catch (cull::UsageError const & error)
    {
        return error.what();
    }
}

TEST(CullOptions, A_clip_alone_leaves_all_open)
{
    cull::Options const options = Parse({"a.bvh"});
    EXPECT_EQ(options.clip, "a.bvh");
    EXPECT_EQ(options.outputFolder, "cull-out");
    EXPECT_FALSE(options.isHelpWanted);
    EXPECT_FALSE(options.floor.has_value());
    EXPECT_FALSE(options.shake.has_value());
    EXPECT_FALSE(options.camera.eye.has_value());
    EXPECT_FALSE(options.camera.look.has_value());
    EXPECT_FALSE(options.camera.fieldOfView.has_value());
    EXPECT_FALSE(options.camera.orthographicWidth.has_value());
    EXPECT_FALSE(options.camera.nearDistance.has_value());
    EXPECT_FALSE(options.camera.farDistance.has_value());
    EXPECT_EQ(options.camera.aspect, 1.5);
}

TEST(CullOptions, Every_option_stands_on_either_side_in_both_forms)
{
    cull::Options const apart = Parse({"--eye", "1,2,3", "--look", "-4,5,-6", "--fov", "90", "--aspect", "2", "--near",
                                       "0.5", "--far", "700", "--floor", "-1.5", "--out", "x", "a.bvh"});
    cull::Options const joined = Parse({"a.bvh", "--eye=1,2,3", "--look=-4,5,-6", "--fov=90", "--aspect=2",
                                        "--near=0.5", "--far=700", "--floor=-1.5", "--out=x"});
    for (cull::Options const & options : {apart, joined})
    {
        EXPECT_EQ(options.clip, "a.bvh");
        EXPECT_EQ(options.camera.eye.value(), Vector(1, 2, 3));
        EXPECT_EQ(options.camera.look.value(), Vector(-4, 5, -6));
        EXPECT_DOUBLE_EQ(options.camera.fieldOfView.value(), std::numbers::pi / 2);
        EXPECT_EQ(options.camera.aspect, 2);
        EXPECT_EQ(options.camera.nearDistance.value(), 0.5);
        EXPECT_EQ(options.camera.farDistance.value(), 700);
        EXPECT_EQ(options.floor.value().height.value(), -1.5);
        EXPECT_EQ(options.outputFolder, "x");
    }
    EXPECT_EQ(Parse({"--ortho", "300", "a.bvh"}).camera.orthographicWidth.value(), 300);
    EXPECT_EQ(Parse({"a.bvh", "--ortho=300"}).camera.orthographicWidth.value(), 300);
    EXPECT_EQ(Parse({"--eye", "-1,2,3", "a.bvh"}).camera.eye.value(), Vector(-1, 2, 3));
}

TEST(CullOptions, The_last_of_an_option_counts)
{
    EXPECT_EQ(Parse({"--eye=1,2,3", "--eye=4,5,6", "a.bvh"}).camera.eye.value(), Vector(4, 5, 6));
    EXPECT_EQ(Parse({"--near=5", "--near=2", "--far=3", "a.bvh"}).camera.nearDistance.value(), 2);
    EXPECT_FALSE(Parse({"--floor=3", "--floor=auto", "a.bvh"}).floor.value().height.has_value());
}

TEST(CullOptions, A_place_is_three_numbers_of_bounded_size)
{
    for (std::string const name : {"--eye", "--look"})
    {
        for (std::string const text : {"", "1", "1,2", "1,2,3,4", "1,2,", ",1,2", "1,,3", "1,2,x", "1, 2,3", "nan,0,0",
                                       "0,inf,0", "0,0,1.1e12", "-1.1e12,0,0"})
        {
            EXPECT_EQ(Refusal({name.c_str(), text.c_str(), "a.bvh"}),
                      "option \"" + name + "\" wants three numbers up to 1e12 in size, such as 0,150,400, not \"" +
                          text + "\"");
        }
        EXPECT_EQ(Refusal({(name + "=1e12,-1e12,0").c_str(), "a.bvh"}), "");
    }
}

struct RangeCase
{
    std::string name;
    std::vector<std::string> good;
    std::vector<std::string> bad;
    std::string wanted;
};

TEST(CullOptions, Numbers_keep_their_ranges)
{
    std::vector<RangeCase> const cases = {
        {"--fov", {"0.1", "179"}, {"0.0999", "179.01", "0", "-40", "180"}, "an angle from 0.1 to 179 degrees"},
        {"--ortho", {"1e-6", "1e12"}, {"9.9e-7", "1.1e12", "0", "-3"}, "a distance from 1e-6 to 1e12"},
        {"--near", {"1e-6", "1e12"}, {"9.9e-7", "1.1e12", "0", "-3"}, "a distance from 1e-6 to 1e12"},
        {"--far", {"1e-6", "1e12"}, {"9.9e-7", "1.1e12", "0", "-3"}, "a distance from 1e-6 to 1e12"},
        {"--aspect", {"0.01", "100"}, {"0.0099", "100.1", "0", "-1", "16:9"}, "a ratio from 0.01 to 100"},
        {"--floor",
         {"0", "-1e12", "1e12"},
         {"1.1e12", "-1.1e12", "Auto", "auto "},
         R"(a height up to 1e12 in size or "auto")"}};
    for (RangeCase const & one : cases)
    {
        for (std::string const & text : one.good)
        {
            EXPECT_EQ(Refusal({one.name.c_str(), text.c_str(), "a.bvh"}), "");
        }
        std::vector<std::string> bad = one.bad;
        bad.insert(bad.end(), {"", "x", "1x", "nan", "-nan", "inf", "-inf", "1,2"});
        for (std::string const & text : bad)
        {
            EXPECT_EQ(Refusal({one.name.c_str(), text.c_str(), "a.bvh"}),
                      "option \"" + one.name + "\" wants " + one.wanted + ", not \"" + text + "\"");
        }
    }
}

TEST(CullOptions, An_automatic_floor_has_no_height)
{
    EXPECT_TRUE(Parse({"--floor", "auto", "a.bvh"}).floor.has_value());
    EXPECT_FALSE(Parse({"--floor=auto", "a.bvh"}).floor.value().height.has_value());
}

TEST(CullOptions, Angle_and_width_exclude_each_other)
{
    EXPECT_EQ(Refusal({"--fov=40", "--ortho=3", "a.bvh"}), R"(options "--fov" and "--ortho" exclude each other)");
    EXPECT_EQ(Refusal({"--ortho=3", "a.bvh", "--fov=40"}), R"(options "--fov" and "--ortho" exclude each other)");
}

TEST(CullOptions, A_shake_has_an_amplitude_and_a_seed)
{
    EXPECT_EQ(Parse({"--shake", "2.5", "a.bvh"}).shake.value().amplitude, 2.5);
    EXPECT_EQ(Parse({"--shake=1e-6", "a.bvh"}).shake.value().seed, 1U);
    EXPECT_EQ(Parse({"--shake=3", "--seed=0", "a.bvh"}).shake.value().seed, 0U);
    cull::Options const options = Parse({"--seed", "4294967295", "a.bvh", "--shake=1e12"});
    EXPECT_EQ(options.shake.value().seed, 0xFFFFFFFFU);
    EXPECT_EQ(options.shake.value().amplitude, 1e12);
    for (std::string const amplitude : {"", "0", "-1", "9e-7", "1.1e12", "nan", "inf", "x"})
    {
        EXPECT_EQ(Refusal({"--shake", amplitude.c_str(), "a.bvh"}),
                  "option \"--shake\" wants a distance from 1e-6 to 1e12, not \"" + amplitude + "\"");
    }
    for (std::string const seed : {"", "-1", "4294967296", "1.5", "x"})
    {
        EXPECT_EQ(Refusal({"--shake=1", ("--seed=" + seed).c_str(), "a.bvh"}),
                  "option \"--seed\" wants a whole number from 0 to 4294967295, not \"" + seed + "\"");
    }
    EXPECT_EQ(Refusal({"--seed=5", "a.bvh"}), R"(option "--seed" is nothing without "--shake")");
    EXPECT_TRUE(Parse({"--seed=5", "--help"}).isHelpWanted);
}

TEST(CullOptions, Near_is_less_than_far)
{
    EXPECT_EQ(Refusal({"--near=3", "--far=3", "a.bvh"}), R"(option "--near" wants less than "--far")");
    EXPECT_EQ(Refusal({"--far=2", "--near=3", "a.bvh"}), R"(option "--near" wants less than "--far")");
    EXPECT_EQ(Refusal({"--near=3", "--far=3.0001", "a.bvh"}), "");
}

TEST(CullOptions, An_option_without_its_value_is_named)
{
    for (std::string const name : {"--eye", "--look", "--fov", "--ortho", "--aspect", "--near", "--far", "--floor",
                                   "--shake", "--seed", "--out"})
    {
        EXPECT_EQ(Refusal({"a.bvh", name.c_str()}), "option \"" + name + "\" wants a value");
        EXPECT_EQ(Refusal({(name + "s=1").c_str(), "a.bvh"}), "unknown option \"" + name + "s=1\"");
    }
    EXPECT_EQ(Refusal({"--out=", "a.bvh"}), "option \"--out\" wants a folder");
}

TEST(CullOptions, Help_stands_for_itself)
{
    EXPECT_TRUE(Parse({"--help"}).isHelpWanted);
    EXPECT_TRUE(Parse({"-h"}).isHelpWanted);
    EXPECT_TRUE(Parse({"--fov=40", "--ortho=3", "--help", "--nonsense"}).isHelpWanted);
}

TEST(CullOptions, What_cannot_be_followed_is_named)
{
    EXPECT_EQ(Refusal({}), "no clip given");
    EXPECT_EQ(Refusal({"--fov=40"}), "no clip given");
    EXPECT_EQ(Refusal({"--order=XYZ", "a.bvh"}), "unknown option \"--order=XYZ\"");
    EXPECT_EQ(Refusal({"a.bvh", "b.bvh"}), "more than one clip given: \"a.bvh\" and \"b.bvh\"");
    EXPECT_EQ(Refusal({""}), "the clip's name is empty");
    EXPECT_EQ(Parse({"--", "--eye"}).clip, "--eye");
}

} // namespace
