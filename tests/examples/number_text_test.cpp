#include "clip/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace
{

constexpr double k_Infinity = std::numeric_limits<double>::infinity();
constexpr double k_Nan = std::numeric_limits<double>::quiet_NaN();

TEST(NumberText, ParseNumber_reads_decimals_with_either_sign_and_exponents)
{
    EXPECT_EQ(clip::ParseNumber("1.5"), 1.5);
    EXPECT_EQ(clip::ParseNumber("-1.5"), -1.5);
    EXPECT_EQ(clip::ParseNumber("+1.5"), 1.5);
    EXPECT_EQ(clip::ParseNumber("1.5e-3"), 0.0015);
    EXPECT_EQ(clip::ParseNumber("1E+2"), 100.0);
    EXPECT_EQ(clip::ParseNumber(".5"), 0.5);
    EXPECT_EQ(clip::ParseNumber("5."), 5.0);
    EXPECT_TRUE(std::signbit(clip::ParseNumber("-0").value()));
}

TEST(NumberText, ParseNumber_refuses_what_is_no_number)
{
    for (char const * const text : {"", "+", "-", "+-1", "-+1", "++1", "1.5x", " 1", "1 ", "1,5", "0x10", "e5", "."})
    {
        EXPECT_FALSE(clip::ParseNumber(text).has_value()) << '"' << text << '"';
    }
}

TEST(NumberText, ParseNumber_refuses_what_a_double_cannot_hold)
{
    EXPECT_FALSE(clip::ParseNumber("1e400").has_value());
    EXPECT_FALSE(clip::ParseNumber("-1e400").has_value());
    EXPECT_FALSE(clip::ParseNumber("1e-400").has_value());
}

TEST(NumberText, ParseNumber_reads_nan_and_infinity_as_they_are)
{
    EXPECT_TRUE(std::isnan(clip::ParseNumber("nan").value()));
    EXPECT_EQ(clip::ParseNumber("-inf"), -k_Infinity);
}

TEST(NumberText, ParseCount_reads_non_negative_integers_only)
{
    EXPECT_EQ(clip::ParseCount("0"), 0U);
    EXPECT_EQ(clip::ParseCount("18446744073709551615"), std::numeric_limits<unsigned long long>::max());
    for (char const * const text : {"", "-1", "+1", "1.0", "1x", "18446744073709551616"})
    {
        EXPECT_FALSE(clip::ParseCount(text).has_value()) << '"' << text << '"';
    }
}

TEST(NumberText, ShortestText_reads_back_bit_for_bit)
{
    EXPECT_EQ(clip::ShortestText(0.1), "0.1");
    EXPECT_EQ(clip::ShortestText(-0.0), "-0");
    std::mt19937_64 random(20240501);
    int tried = 0;
    while (tried < 20000)
    {
        auto const value = std::bit_cast<double>(random());
        if (!std::isfinite(value))
        {
            continue;
        }
        ++tried;
        std::string const text = clip::ShortestText(value);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(clip::ParseNumber(text).value()), std::bit_cast<std::uint64_t>(value))
            << text;
    }
}

TEST(NumberText, ShortestText_holds_the_longest_numbers)
{
    for (double const value :
         {-std::numeric_limits<double>::max(), -std::numeric_limits<double>::denorm_min(), -1.2345678901234567e-300})
    {
        EXPECT_EQ(clip::ParseNumber(clip::ShortestText(value)), value);
    }
}

TEST(NumberText, FixedText_writes_every_place)
{
    EXPECT_EQ(clip::FixedText(3.3, 2), "3.30");
    EXPECT_EQ(clip::FixedText(-2, 2), "-2.00");
    EXPECT_EQ(clip::FixedText(7, 0), "7");
}

TEST(NumberText, RoundedText_drops_trailing_zeros_only_behind_the_point)
{
    EXPECT_EQ(clip::RoundedText(3.3, 2), "3.3");
    EXPECT_EQ(clip::RoundedText(3.337, 2), "3.34");
    EXPECT_EQ(clip::RoundedText(100, 2), "100");
    EXPECT_EQ(clip::RoundedText(100, 0), "100");
    EXPECT_EQ(clip::RoundedText(-12.5, 2), "-12.5");
}

TEST(NumberText, Rounding_gives_no_negative_zero)
{
    EXPECT_EQ(clip::RoundedText(-0.001, 2), "0");
    EXPECT_EQ(clip::FixedText(-0.001, 2), "0.00");
    EXPECT_EQ(clip::RoundedText(-0.0, 0), "0");
    EXPECT_EQ(clip::RoundedText(-0.01, 2), "-0.01");
}

TEST(NumberText, Rounding_takes_what_is_not_finite_or_too_large_for_zero)
{
    for (double const value : {k_Nan, k_Infinity, -k_Infinity, 1.0001e15, -1e300})
    {
        EXPECT_EQ(clip::RoundedText(value, 2), "0");
        EXPECT_EQ(clip::FixedText(value, 2), "0.00");
    }
    EXPECT_EQ(clip::RoundedText(-1e15, 17), "-1000000000000000");
}

TEST(NumberText, RoughText_keeps_the_leading_digits)
{
    EXPECT_EQ(clip::RoughText(6.4567e-13, 2), "6.5e-13");
    EXPECT_EQ(clip::RoughText(0, 2), "0");
    EXPECT_EQ(clip::RoughText(0.0123, 2), "0.012");
    EXPECT_EQ(clip::RoughText(-123456, 3), "-1.23e+05");
    EXPECT_EQ(clip::RoughText(0.1, 17), "0.10000000000000001");
}

TEST(ParseTriple, Reads_three_numbers_with_commas_between)
{
    EXPECT_EQ(clip::ParseTriple("1,-2.5,+3e2").value(), C3DVector3Tpl<double>(1, -2.5, 300));
    for (char const * const text :
         {"", ",", ",,", ",,,", "1", "1,2", "1,2,", "1,2,3,", "1,2,3,4", ",1,2", "1,,3", "1, 2,3", "1,2,x", "1;2;3"})
    {
        EXPECT_FALSE(clip::ParseTriple(text)) << text;
    }
}

TEST(PointText, Rounds_each_coordinate)
{
    EXPECT_EQ(clip::PointText({1, -2.346, -0.001}, 2), "(1, -2.35, 0)");
}

} // namespace
