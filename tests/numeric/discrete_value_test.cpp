#include "math/discrete_value.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace
{

constexpr double k_Infinity = std::numeric_limits<double>::infinity();
constexpr double k_NaN = std::numeric_limits<double>::quiet_NaN();

} // namespace

TEST(NearestDiscreteValue, Snaps_to_the_grid_of_step_through_base)
{
    EXPECT_EQ(F3DGetNearestDiscreteValue(6.9, 1, 4), 5);
    EXPECT_EQ(F3DGetNearestDiscreteValue(7.1, 1, 4), 9);
    EXPECT_EQ(F3DGetNearestDiscreteValue(1, 1, 4), 1);
    EXPECT_EQ(F3DGetNearestDiscreteValue(-4.9, 1, 4), -3);
    EXPECT_EQ(F3DGetNearestDiscreteValue(-5.1, 1, 4), -7);
    EXPECT_EQ(F3DGetNearestDiscreteValue(0.3, 0, 0.25), 0.25);
}

TEST(NearestDiscreteValue, Halves_go_away_from_the_base)
{
    EXPECT_EQ(F3DGetNearestDiscreteValue(7, 1, 4), 9);
    EXPECT_EQ(F3DGetNearestDiscreteValue(-5, 1, 4), -7);
    EXPECT_EQ(F3DGetNearestDiscreteValue(3, 1, 4), 5);
    EXPECT_EQ(F3DGetNearestDiscreteValue(-1, 1, 4), -3);
    // Half to even would give 2 for both.
    EXPECT_EQ(F3DGetNearestDiscreteValue(1.5, 0, 1), 2);
    EXPECT_EQ(F3DGetNearestDiscreteValue(2.5, 0, 1), 3);
}

TEST(NearestDiscreteValue, Just_below_a_half_goes_to_the_base)
{
    EXPECT_EQ(F3DGetNearestDiscreteValue(1.4999999999999998, 0, 1), 1);
    EXPECT_EQ(F3DGetNearestDiscreteValue(-1.4999999999999998, 0, 1), -1);
}

TEST(NearestDiscreteValue, The_last_number_below_one_half_goes_up_because_the_added_half_rounds)
{
    double const belowHalf = std::nextafter(0.5, 0.0);
    EXPECT_EQ(F3DGetNearestDiscreteValue(belowHalf, 0, 1), 1);
    EXPECT_EQ(F3DGetNearestDiscreteValue(-belowHalf, 0, 1), -1);
    EXPECT_EQ(F3DGetNearestDiscreteValue(std::nextafter(belowHalf, 0.0), 0, 1), 0);
}

TEST(NearestDiscreteValue, A_negative_step_is_the_same_grid)
{
    EXPECT_EQ(F3DGetNearestDiscreteValue(7, 1, -4), 9);
    EXPECT_EQ(F3DGetNearestDiscreteValue(-5, 1, -4), -7);
    EXPECT_EQ(F3DGetNearestDiscreteValue(6.9, 1, -4), 5);
}

TEST(NearestDiscreteValue, A_step_of_zero_or_nan_keeps_the_value)
{
    EXPECT_EQ(F3DGetNearestDiscreteValue(7, 1, 0), 7);
    EXPECT_EQ(F3DGetNearestDiscreteValue(7, 1, -0.0), 7);
    EXPECT_EQ(F3DGetNearestDiscreteValue(7, 1, k_NaN), 7);
    EXPECT_EQ(F3DGetNearestDiscreteValue(k_Infinity, 1, 0), k_Infinity);
}

TEST(NearestDiscreteValue, Places_beyond_every_integer_type_stay_where_they_are)
{
    EXPECT_EQ(F3DGetNearestDiscreteValue(1e300, 0, 1), 1e300);
    EXPECT_EQ(F3DGetNearestDiscreteValue(-1e300, 0, 1), -1e300);
    EXPECT_EQ(F3DGetNearestDiscreteValue(std::ldexp(1.0, 31) + 0.5, 0, 1), std::ldexp(1.0, 31) + 1);
    EXPECT_EQ(F3DGetNearestDiscreteValue(std::ldexp(1.0, 63), 0, 1), std::ldexp(1.0, 63));
    EXPECT_EQ(F3DGetNearestDiscreteValue(-std::ldexp(1.0, 64), 0, 1), -std::ldexp(1.0, 64));
}

TEST(NearestDiscreteValue, What_is_not_finite_gives_what_is_not_finite)
{
    EXPECT_EQ(F3DGetNearestDiscreteValue(k_Infinity, 0, 1), k_Infinity);
    EXPECT_EQ(F3DGetNearestDiscreteValue(-k_Infinity, 0, 1), -k_Infinity);
    EXPECT_TRUE(std::isnan(F3DGetNearestDiscreteValue(k_NaN, 0, 1)));
    EXPECT_TRUE(std::isnan(F3DGetNearestDiscreteValue(1, k_NaN, 1)));
    EXPECT_TRUE(std::isnan(F3DGetNearestDiscreteValue(1, 0, k_Infinity)));
    EXPECT_EQ(F3DGetNearestDiscreteValue(1e300, 0, 1e-300), k_Infinity);
}

TEST(NearestDiscreteValue, Is_a_grid_point_within_half_a_step)
{
    std::mt19937_64 generator(5);
    std::uniform_int_distribution<int> sixteenth(-160000, 160000);
    for (int i = 0; i < 2000; ++i)
    {
        // Sixteenths and a step of 3/8 keep every sum and product exact.
        double const value = sixteenth(generator) / 16.0;
        double const base = sixteenth(generator) / 16.0;
        double const snapped = F3DGetNearestDiscreteValue(value, base, 0.375);
        EXPECT_LE(std::abs(snapped - value), 0.1875);
        EXPECT_EQ(std::remainder(snapped - base, 0.375), 0) << value << ' ' << base;
    }
}
