#include "bake/options.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

namespace
{

bake::Options Parse(std::initializer_list<char const *> arguments)
{
    return bake::ParseOptions(std::vector<char const *>(arguments));
}

std::string Refusal(std::initializer_list<char const *> arguments)
{
    try
    {
        Parse(arguments);
        return {};
    }
    catch (bake::UsageError const & error)
    {
        return error.what();
    }
}

std::string ScaleRefusal(std::string const & list)
{
    return R"(option "--scale" wants three factors between 1e-6 and 1e6 in size, such as 1,2,-1, not ")" + list + "\"";
}

TEST(BakeOptions, A_clip_alone_goes_to_the_default_folder)
{
    bake::Options const options = Parse({"a.bvh"});
    EXPECT_EQ(options.clip, "a.bvh");
    EXPECT_EQ(options.outputFolder, "bake-out");
    EXPECT_FALSE(options.isHelpWanted);
}

TEST(BakeOptions, The_folder_may_stand_on_either_side_in_both_forms)
{
    EXPECT_EQ(Parse({"--out", "x", "a.bvh"}).outputFolder, "x");
    EXPECT_EQ(Parse({"a.bvh", "--out", "x"}).outputFolder, "x");
    EXPECT_EQ(Parse({"--out=x=y", "a.bvh"}).outputFolder, "x=y");
    EXPECT_EQ(Parse({"--out=x", "a.bvh", "--out", "y"}).outputFolder, "y");
    EXPECT_EQ(Parse({"--out", "--odd", "a.bvh"}).outputFolder, "--odd");
}

TEST(BakeOptions, The_order_may_stand_on_either_side_in_both_forms)
{
    EXPECT_FALSE(Parse({"a.bvh"}).order.has_value());
    for (char const * const name : {"XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX"})
    {
        EXPECT_EQ(Parse({"--order", name, "a.bvh"}).order.value().name, name);
        EXPECT_EQ(Parse({"a.bvh", (std::string("--order=") + name).c_str()}).order.value().name, name);
    }
    EXPECT_EQ(Parse({"--order", "XYZ", "a.bvh", "--order=ZXY"}).order.value().name, "ZXY");
    EXPECT_EQ(Parse({"--order", "ZXY", "--out", "x", "a.bvh"}).outputFolder, "x");
}

TEST(BakeOptions, A_clip_alone_keeps_its_scale_and_poses)
{
    bake::Options const options = Parse({"a.bvh"});
    EXPECT_FALSE(options.scale.has_value());
    EXPECT_FALSE(options.composition.has_value());
    EXPECT_FALSE(options.smoothing.has_value());
    EXPECT_TRUE(options.blendClip.empty());
    EXPECT_EQ(options.blendShare, 0.5);
    EXPECT_TRUE(options.poseSource.empty());
    EXPECT_TRUE(options.poseTarget.empty());
}

TEST(BakeOptions, A_scale_has_three_factors_in_both_forms)
{
    using Vector = C3DVector3Tpl<double>;
    EXPECT_EQ(Parse({"--scale", "1,2,-3", "a.bvh"}).scale.value(), Vector(1, 2, -3));
    EXPECT_EQ(Parse({"a.bvh", "--scale=0.5,+4,1e3"}).scale.value(), Vector(0.5, 4, 1000));
    EXPECT_EQ(Parse({"--scale=1,1,1", "--scale=-1,-2,-3", "a.bvh"}).scale.value(), Vector(-1, -2, -3));
    EXPECT_EQ(Parse({"--scale", "-1,1,1", "a.bvh"}).clip, "a.bvh");
}

TEST(BakeOptions, Factors_of_scale_reach_from_a_millionth_to_a_million)
{
    EXPECT_EQ(Parse({"--scale=1e-6,-1e-6,1e6", "a.bvh"}).scale.value().X, 1e-6);
    EXPECT_EQ(Parse({"--scale=1,1,-1000000", "a.bvh"}).scale.value().Z, -1e6);
    for (char const * const factor :
         {"0", "-0", "9.99e-7", "-9.99e-7", "1000000.1", "-1000000.1", "1e-400", "1e400", "nan", "-nan", "inf", "-inf"})
    {
        for (std::string const & list :
             {std::string(factor) + ",1,1", std::string("1,") + factor + ",1", std::string("1,1,") + factor})
        {
            EXPECT_EQ(Refusal({"--scale", list.c_str(), "a.bvh"}), ScaleRefusal(list));
        }
    }
}

TEST(BakeOptions, A_scale_of_other_than_three_numbers_is_refused)
{
    for (std::string const list : {"", ",", ",,", ",,,", "1", "1,2", "1,2,", "1,2,3,", "1,2,3,4", ",1,2,3", "1,,3",
                                   "1 ,2,3", "1, 2,3", "1,2,3 ", "1;2;3", "1,2,x", "1,2,3x", "+-1,2,3", "0x1,2,3"})
    {
        EXPECT_EQ(Refusal({"--scale", list.c_str(), "a.bvh"}), ScaleRefusal(list));
        EXPECT_EQ(Refusal({("--scale=" + list).c_str(), "a.bvh"}), ScaleRefusal(list));
    }
}

TEST(BakeOptions, The_mode_is_one_of_two_in_both_forms)
{
    EXPECT_EQ(Parse({"--mode", "component", "a.bvh"}).composition, clip::Composition::ByComponent);
    EXPECT_EQ(Parse({"a.bvh", "--mode=component"}).composition, clip::Composition::ByComponent);
    EXPECT_EQ(Parse({"--mode", "matrix", "a.bvh"}).composition, clip::Composition::ByMatrix);
    EXPECT_EQ(Parse({"a.bvh", "--mode=matrix"}).composition, clip::Composition::ByMatrix);
    EXPECT_EQ(Parse({"--mode=component", "--mode=matrix", "a.bvh"}).composition, clip::Composition::ByMatrix);
    for (std::string const name : {"", "Matrix", "components", "matrix "})
    {
        EXPECT_EQ(Refusal({"--mode", name.c_str(), "a.bvh"}),
                  "unknown mode \"" + name + "\": it is component or matrix");
    }
}

TEST(BakeOptions, A_blend_takes_a_clip_and_a_share_in_both_forms)
{
    bake::Options const apart = Parse({"--blend", "b.bvh", "--at", "0.25", "a.bvh"});
    EXPECT_EQ(apart.clip, "a.bvh");
    EXPECT_EQ(apart.blendClip, "b.bvh");
    EXPECT_EQ(apart.blendShare, 0.25);
    bake::Options const joined = Parse({"a.bvh", "--at=1", "--blend=c=d.bvh"});
    EXPECT_EQ(joined.clip, "a.bvh");
    EXPECT_EQ(joined.blendClip, "c=d.bvh");
    EXPECT_EQ(joined.blendShare, 1);
    EXPECT_EQ(Parse({"--blend=b.bvh", "a.bvh"}).blendShare, 0.5);
    EXPECT_EQ(Parse({"--blend=b.bvh", "--at=0", "a.bvh"}).blendShare, 0);
}

TEST(BakeOptions, A_share_is_from_zero_to_one)
{
    for (std::string const share : {"", "-0.001", "1.001", "2", "nan", "inf", "half", "0.5x", "0,5", " 1", "50%"})
    {
        EXPECT_EQ(Refusal({"--blend=b.bvh", "--at", share.c_str(), "a.bvh"}),
                  "option \"--at\" wants a share from 0 to 1, not \"" + share + "\"");
    }
    EXPECT_EQ(Refusal({"--at", "0.5", "a.bvh"}), "option \"--at\" is nothing without \"--blend\"");
    EXPECT_EQ(Refusal({"a.bvh", "--at=0.5"}), "option \"--at\" is nothing without \"--blend\"");
}

TEST(BakeOptions, A_smoothing_has_a_frequency_in_both_forms)
{
    EXPECT_EQ(Parse({"--smooth", "6", "a.bvh"}).smoothing, 6);
    EXPECT_EQ(Parse({"a.bvh", "--smooth=0.5"}).smoothing, 0.5);
    EXPECT_EQ(Parse({"--smooth=1e-6", "a.bvh"}).smoothing, 1e-6);
    EXPECT_EQ(Parse({"--smooth=1e6", "a.bvh"}).smoothing, 1e6);
    for (std::string const hertz : {"", "0", "-0", "-3", "9.9e-7", "1000001", "nan", "inf", "-inf", "x", "3Hz"})
    {
        EXPECT_EQ(Refusal({"--smooth", hertz.c_str(), "a.bvh"}),
                  "option \"--smooth\" wants a frequency from 1e-6 to 1e6 hertz, not \"" + hertz + "\"");
    }
    EXPECT_EQ(Refusal({"a.bvh", "--smooth"}), "option \"--smooth\" wants a value");
}

TEST(BakeOptions, Poses_that_are_loaded_cannot_be_smoothed)
{
    std::string const refusal = R"(options "--smooth" and "--load" exclude each other: poses have no channels)";
    EXPECT_EQ(Refusal({"--smooth=6", "--load=p.bin", "a.bvh"}), refusal);
    EXPECT_EQ(Refusal({"--load=p.bin", "a.bvh", "--smooth=6"}), refusal);
    EXPECT_EQ(Refusal({"--smooth=6", "--save=p.bin", "--blend=b.bvh", "a.bvh"}), "");
    EXPECT_TRUE(Parse({"--smooth=6", "--load=p.bin", "--help"}).isHelpWanted);
}

TEST(BakeOptions, Poses_are_saved_and_loaded_by_name_in_both_forms)
{
    bake::Options const apart = Parse({"--save", "s.bin", "--load", "l.bin", "a.bvh"});
    EXPECT_EQ(apart.poseTarget, "s.bin");
    EXPECT_EQ(apart.poseSource, "l.bin");
    EXPECT_EQ(apart.clip, "a.bvh");
    bake::Options const joined = Parse({"a.bvh", "--load=l=1.bin", "--save=s=1.bin"});
    EXPECT_EQ(joined.poseTarget, "s=1.bin");
    EXPECT_EQ(joined.poseSource, "l=1.bin");
}

TEST(BakeOptions, An_option_without_its_value_is_named)
{
    for (std::string const name : {"--scale", "--mode", "--blend", "--at", "--save", "--load"})
    {
        EXPECT_EQ(Refusal({"a.bvh", name.c_str()}), "option \"" + name + "\" wants a value");
        EXPECT_EQ(Refusal({(name + "s=1").c_str(), "a.bvh"}), "unknown option \"" + name + "s=1\"");
    }
    for (std::string const name : {"--save", "--load"})
    {
        EXPECT_EQ(Refusal({name.c_str(), "", "a.bvh"}), "option \"" + name + "\" wants a file");
        EXPECT_EQ(Refusal({(name + "=").c_str(), "a.bvh"}), "option \"" + name + "\" wants a file");
    }
    EXPECT_EQ(Refusal({"--blend", "", "a.bvh"}), "option \"--blend\" wants a clip");
    EXPECT_EQ(Refusal({"--blend=", "a.bvh"}), "option \"--blend\" wants a clip");
}

TEST(BakeOptions, Behind_two_dashes_nothing_is_an_option)
{
    EXPECT_EQ(Parse({"--", "--help"}).clip, "--help");
    EXPECT_EQ(Parse({"-"}).clip, "-");
}

TEST(BakeOptions, Help_stands_for_itself)
{
    EXPECT_TRUE(Parse({"--help"}).isHelpWanted);
    EXPECT_TRUE(Parse({"-h"}).isHelpWanted);
    EXPECT_TRUE(Parse({"a.bvh", "--help", "--nonsense"}).isHelpWanted);
}

TEST(BakeOptions, What_cannot_be_followed_is_named)
{
    EXPECT_EQ(Refusal({}), "no clip given");
    EXPECT_EQ(Refusal({"--out", "x"}), "no clip given");
    EXPECT_EQ(Refusal({"--frames", "a.bvh"}), "unknown option \"--frames\"");
    EXPECT_EQ(Refusal({"--help=1", "a.bvh"}), "unknown option \"--help=1\"");
    EXPECT_EQ(Refusal({"-x", "a.bvh"}), "unknown option \"-x\"");
    EXPECT_EQ(Refusal({"a.bvh", "--out"}), "option \"--out\" wants a value");
    EXPECT_EQ(Refusal({"a.bvh", "--out="}), "option \"--out\" wants a folder");
    EXPECT_EQ(Refusal({"a.bvh", "--out", ""}), "option \"--out\" wants a folder");
    EXPECT_EQ(Refusal({"a.bvh", "--order"}), "option \"--order\" wants a value");
    for (std::string const name : {"XYX", "ZX", "zxy", "", "ZXYZ"})
    {
        EXPECT_EQ(Refusal({"--order", name.c_str(), "a.bvh"}),
                  "unknown order \"" + name + "\": it is one of XYZ, XZY, YXZ, YZX, ZXY and ZYX");
    }
    EXPECT_EQ(Refusal({"a.bvh", "b.bvh"}), "more than one clip given: \"a.bvh\" and \"b.bvh\"");
    EXPECT_EQ(Refusal({""}), "the clip's name is empty");
}

} // namespace
