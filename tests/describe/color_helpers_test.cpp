#include "describe/color_inspector.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using describe_test::ColorInspector;
using describe_test::SameBits;

namespace
{

constexpr float k_NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float k_Infinity = std::numeric_limits<float>::infinity();

long RoundDown(float x)
{
    return (C3DColor4f().*ColorInspector::RoundDown)(x);
}

void ExpectMinMax(C3DColor4f const & color, float min, float max)
{
    float foundMin = -77;
    float foundMax = -77;
    (color.*ColorInspector::MinMax)(foundMin, foundMax);
    EXPECT_TRUE(SameBits(foundMin, min) && SameBits(foundMax, max))
        << color.R() << ' ' << color.G() << ' ' << color.B() << ": " << foundMin << " to " << foundMax;
}

} // namespace

TEST(ColorRoundDown, Truncates_from_0_up)
{
    EXPECT_EQ(RoundDown(0), 0);
    EXPECT_EQ(RoundDown(-0.0F), 0);
    EXPECT_EQ(RoundDown(std::numeric_limits<float>::denorm_min()), 0);
    for (int const whole : {1, 2, 6, 7, 4096})
    {
        auto const x = static_cast<float>(whole);
        EXPECT_EQ(RoundDown(x), whole);
        EXPECT_EQ(RoundDown(std::nextafter(x, 0.0F)), whole - 1);
        EXPECT_EQ(RoundDown(std::nextafter(x, 2 * x)), whole);
    }
}

TEST(ColorRoundDown, Goes_to_the_floor_below_0)
{
    for (int const whole : {-1, -2, -3, -7, -4096, -(1 << 24)})
    {
        EXPECT_EQ(RoundDown(static_cast<float>(whole)), whole);
    }
    EXPECT_EQ(RoundDown(-0.5F), -1);
    EXPECT_EQ(RoundDown(-1.5F), -2);
    EXPECT_EQ(RoundDown(-6.75F), -7);
    EXPECT_EQ(RoundDown(std::nextafter(-1.0F, -2.0F)), -2);
    EXPECT_EQ(RoundDown(-std::numeric_limits<float>::denorm_min()), -1);
}

TEST(ColorRoundDown, Is_one_below_the_floor_where_the_step_down_rounds)
{
    // Just above -2^k the difference with 1 lies half-way between two numbers, and rounds to the even -2^k - 1, or -2.
    EXPECT_EQ(RoundDown(std::nextafter(-1.0F, 0.0F)), -2);
    EXPECT_EQ(RoundDown(std::nextafter(-2.0F, 0.0F)), -3);
    EXPECT_EQ(RoundDown(std::nextafter(-3.0F, 0.0F)), -3); // here it is exact
    EXPECT_EQ(RoundDown(std::nextafter(-4.0F, 0.0F)), -5);
}

TEST(ColorRoundDown, Is_the_least_integer_for_what_no_integer_holds)
{
    constexpr long least = std::numeric_limits<long>::min();
    auto const limit = -static_cast<float>(least);
    EXPECT_EQ(RoundDown(k_NaN), least);
    EXPECT_EQ(RoundDown(k_Infinity), least);
    EXPECT_EQ(RoundDown(-k_Infinity), least);
    EXPECT_EQ(RoundDown(limit), least);
    EXPECT_EQ(RoundDown(-limit), least);
    EXPECT_EQ(RoundDown(std::nextafter(-limit, -k_Infinity)), least);
    auto const below = std::nextafter(limit, 0.0F);
    EXPECT_EQ(RoundDown(below), static_cast<long>(below));
    EXPECT_EQ(RoundDown(-below), -static_cast<long>(below));
}

TEST(ColorMinMax, Finds_both_in_every_order)
{
    ExpectMinMax({1, 2, 3}, 1, 3);
    ExpectMinMax({1, 3, 2}, 1, 3);
    ExpectMinMax({2, 1, 3}, 1, 3);
    ExpectMinMax({2, 3, 1}, 1, 3);
    ExpectMinMax({3, 1, 2}, 1, 3);
    ExpectMinMax({3, 2, 1}, 1, 3);
}

TEST(ColorMinMax, Finds_both_among_equals)
{
    ExpectMinMax({1, 1, 2}, 1, 2);
    ExpectMinMax({1, 2, 1}, 1, 2);
    ExpectMinMax({2, 1, 1}, 1, 2);
    ExpectMinMax({2, 2, 1}, 1, 2);
    ExpectMinMax({2, 1, 2}, 1, 2);
    ExpectMinMax({1, 2, 2}, 1, 2);
    ExpectMinMax({5, 5, 5}, 5, 5);
}

TEST(ColorMinMax, Ignores_alpha_and_takes_negative_and_infinite_components)
{
    ExpectMinMax({1, 2, 3, 99}, 1, 3);
    ExpectMinMax({1, 2, 3, -99}, 1, 3);
    ExpectMinMax({-k_Infinity, -1, k_Infinity}, -k_Infinity, k_Infinity);
    ExpectMinMax({-1, -2, -3}, -3, -1);
}

TEST(ColorMinMax, Takes_the_later_of_two_equal_zeros_for_the_greater)
{
    ExpectMinMax({0, -0.0F, -1}, -1, -0.0F);
    ExpectMinMax({-0.0F, 0, -1}, -1, 0);
    ExpectMinMax({-1, 0, -0.0F}, -1, -0.0F);
    ExpectMinMax({0, -1, -0.0F}, -1, -0.0F);
    ExpectMinMax({0, -0.0F, 1}, 0, 1);
    ExpectMinMax({-0.0F, 0, 1}, -0.0F, 1);
    ExpectMinMax({0, 1, -0.0F}, 0, 1);
    ExpectMinMax({1, 0, -0.0F}, 0, 1);
    ExpectMinMax({1, -0.0F, 0}, -0.0F, 1);
}

TEST(ColorMinMax, Takes_the_second_operand_for_the_greater_of_a_comparison_with_a_NaN)
{
    ExpectMinMax({k_NaN, 2, 1}, k_NaN, 2);
    ExpectMinMax({k_NaN, 1, 2}, k_NaN, 2);
    ExpectMinMax({k_NaN, 1, 1}, k_NaN, 1);
    ExpectMinMax({1, k_NaN, 2}, 1, 2);
    ExpectMinMax({2, k_NaN, 1}, 2, 1); // the smallest is above the greatest
    ExpectMinMax({2, 1, k_NaN}, 1, k_NaN);
    ExpectMinMax({1, 2, k_NaN}, 1, k_NaN);
    ExpectMinMax({k_NaN, k_NaN, 1}, k_NaN, 1);
    ExpectMinMax({k_NaN, 1, k_NaN}, k_NaN, k_NaN);
    ExpectMinMax({1, k_NaN, k_NaN}, 1, k_NaN);
    ExpectMinMax({k_NaN, k_NaN, k_NaN}, k_NaN, k_NaN);
}
