#include "spectrum/options.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace
{

spectrum::Options Parse(std::initializer_list<char const *> arguments)
{
    return spectrum::ParseOptions(std::vector<char const *>(arguments));
}

std::string Refusal(std::initializer_list<char const *> arguments)
{
    try
    {
        Parse(arguments);
        return {};
    }
    catch (spectrum::UsageError const & error)
    {
        return error.what();
    }
}

TEST(SpectrumOptions, A_clip_alone_leaves_all_open)
{
    spectrum::Options const options = Parse({"a.bvh"});
    EXPECT_EQ(options.clip, "a.bvh");
    EXPECT_EQ(options.outputFolder, "spectrum-out");
    EXPECT_FALSE(options.isHelpWanted);
    EXPECT_FALSE(options.joint.has_value());
    EXPECT_FALSE(options.isNoiseWanted);
    EXPECT_EQ(options.seed, 1U);
}

TEST(SpectrumOptions, Every_option_stands_on_either_side_in_both_forms)
{
    spectrum::Options const apart = Parse({"--joint", "Left Arm", "--out", "x", "--noise", "--seed", "77", "a.bvh"});
    spectrum::Options const joined = Parse({"a.bvh", "--joint=Left Arm", "--out=x", "--seed=77", "--noise"});
    for (spectrum::Options const & options : {apart, joined})
    {
        EXPECT_EQ(options.clip, "a.bvh");
        EXPECT_EQ(options.joint.value(), "Left Arm");
        EXPECT_EQ(options.outputFolder, "x");
        EXPECT_TRUE(options.isNoiseWanted);
        EXPECT_EQ(options.seed, 77U);
    }
    EXPECT_EQ(Parse({"--joint=", "a.bvh"}).joint.value(), "") << "a clip may have such a joint";
}

TEST(SpectrumOptions, A_seed_has_32_bits)
{
    EXPECT_EQ(Parse({"--noise", "--seed=0", "a.bvh"}).seed, 0U);
    EXPECT_EQ(Parse({"--noise", "--seed=4294967295", "a.bvh"}).seed, 0xFFFFFFFFU);
    for (std::string const seed : {"", "-1", "4294967296", "99999999999999999999", "1.5", "x", "1 "})
    {
        EXPECT_EQ(Refusal({"--noise", "--seed", seed.c_str(), "a.bvh"}),
                  "option \"--seed\" wants a whole number from 0 to 4294967295, not \"" + seed + "\"");
    }
}

TEST(SpectrumOptions, A_seed_is_one_of_noise)
{
    EXPECT_EQ(Refusal({"--seed=1", "a.bvh"}), R"(option "--seed" is nothing without "--noise")");
    EXPECT_TRUE(Parse({"--seed=1", "--help"}).isHelpWanted);
}

TEST(SpectrumOptions, What_cannot_be_followed_is_named)
{
    EXPECT_EQ(Refusal({}), "no clip given");
    EXPECT_EQ(Refusal({"--noise"}), "no clip given");
    EXPECT_EQ(Refusal({"--order=XYZ", "a.bvh"}), "unknown option \"--order=XYZ\"");
    EXPECT_EQ(Refusal({"a.bvh", "b.bvh"}), "more than one clip given: \"a.bvh\" and \"b.bvh\"");
    EXPECT_EQ(Refusal({"--out=", "a.bvh"}), "option \"--out\" wants a folder");
    for (std::string const name : {"--joint", "--out", "--seed"})
    {
        EXPECT_EQ(Refusal({"a.bvh", name.c_str()}), "option \"" + name + "\" wants a value");
    }
}

} // namespace
