#include "clip/reader.h"
#include "clip/writer.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <iomanip>
#include <locale>
#include <sstream>

namespace
{

constexpr char const * k_Clip = R"(HIERARCHY
ROOT Hips
{
  OFFSET 0 0.1 -2.5
  CHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation
  JOINT Arm
  {
    OFFSET 1 2 3
    CHANNELS 1 Yrotation
    End Site
    {
      OFFSET 0 4 0
    }
  }
  JOINT Tail
  {
    OFFSET 0 0 -1
    CHANNELS 0
  }
}
ROOT Ball
{
  OFFSET 9 9 9
  CHANNELS 3 Xposition Yposition Zposition
}
MOTION
Frames: 2
Frame Time: 0.04
0 1 2 3 4 5 6 7 8 9
0.1 -0.2 0.3 -1e-07 1e+11 720.125 -0 8 9 10
)";

std::string Written(clip::Clip const & motion)
{
    std::ostringstream stream;
    clip::WriteClip(stream, motion);
    return stream.str();
}

TEST(Writer, Writes_the_customary_form)
{
    EXPECT_EQ(Written(clip::ParseClip(k_Clip, "t.bvh")), k_Clip);
}

TEST(Writer, Numbers_read_back_bit_for_bit)
{
    clip::Clip motion = clip::ParseClip(k_Clip, "t.bvh");
    double value = 0.1;
    for (double & number : motion.values)
    {
        number = value;
        value *= -1.7320508075688772;
    }
    motion.frameTime = 1.0 / 30;
    motion.skeleton.joints[1].offset = {1.0 / 3, -2.0 / 7, 1e-200};
    clip::Clip const again = clip::ParseClip(Written(motion), "t.bvh");
    EXPECT_EQ(again.values, motion.values);
    EXPECT_EQ(std::bit_cast<std::uint64_t>(again.frameTime), std::bit_cast<std::uint64_t>(motion.frameTime));
    EXPECT_EQ(again.skeleton.joints[1].offset.X, 1.0 / 3);
    EXPECT_EQ(again.skeleton.joints[1].offset.Z, 1e-200);
}

TEST(Writer, Takes_no_notice_of_the_streams_format)
{
    struct CommaPunctuation : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\1"; }
    };
    std::ostringstream stream;
    stream.imbue(std::locale(std::locale::classic(), new CommaPunctuation)); // NOLINT: the locale owns its facet
    stream << std::hex << std::showpos << std::setprecision(2) << std::fixed;
    clip::WriteClip(stream, clip::ParseClip(k_Clip, "t.bvh"));
    EXPECT_EQ(stream.str(), k_Clip);
}

} // namespace
