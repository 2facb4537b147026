#include "describe/color_inspector.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

using test_support::SameBits;

namespace
{

constexpr float k_NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float k_Infinity = std::numeric_limits<float>::infinity();
constexpr float k_TurnsPerDegree = 0.0027777778F;

struct Four
{
    float first = -101;
    float second = -102;
    float third = -103;
    float alpha = -104;
};

Four GetHSV(C3DColor4f const & color)
{
    Four f;
    color.GetAsHSVA(f.first, f.second, f.third, f.alpha);
    return f;
}

Four GetHLS(C3DColor4f const & color)
{
    Four f;
    color.GetAsHLSA(f.first, f.second, f.third, f.alpha);
    return f;
}

void ExpectFour(Four const & found, float first, float second, float third, float alpha)
{
    EXPECT_TRUE(SameBits(found.first, first) && SameBits(found.second, second) && SameBits(found.third, third) &&
                SameBits(found.alpha, alpha))
        << found.first << ' ' << found.second << ' ' << found.third << ' ' << found.alpha << ", not " << first << ' '
        << second << ' ' << third << ' ' << alpha;
}

/// The hue with each step rounded on its own. For components without a NaN.
float HueBySteps(C3DColor4f const & color)
{
    float const max = std::max({color.R(), color.G(), color.B()});
    float const min = std::min({color.R(), color.G(), color.B()});
    float const d = max - min;
    float difference = color.G() - color.B();
    float offset = 0;
    if (color.R() != max)
    {
        bool const isGreen = color.G() == max;
        difference = isGreen ? color.B() - color.R() : color.R() - color.G();
        offset = isGreen ? 2.0F : 4.0F;
    }
    float const ratio = difference / d;
    float const u = ratio + offset;
    float const degrees = u * 60.0F;
    float const turned = degrees >= 0 ? degrees : degrees + 360.0F;
    return turned * k_TurnsPerDegree;
}

/// The distance round the circle of hues.
double HueDistance(double a, double b)
{
    double const d = std::abs(a - b);
    return std::min(d, 1 - d);
}

C3DColor4f RandomColor(test_support::Random & random, float low, float high)
{
    auto const r = random.Uniform<float>(low, high);
    auto const g = random.Uniform<float>(low, high);
    auto const b = random.Uniform<float>(low, high);
    return {r, g, b, random.Uniform<float>(0, 1)};
}

} // namespace

TEST(ColorHue, Red_yellow_green_cyan_blue_and_magenta_lie_a_sixth_apart)
{
    EXPECT_EQ(C3DColor4f(1, 0, 0).H(), 0.0F);
    EXPECT_EQ(C3DColor4f(1, 1, 0).H(), 60 * k_TurnsPerDegree);
    EXPECT_EQ(C3DColor4f(0, 1, 0).H(), 120 * k_TurnsPerDegree);
    EXPECT_EQ(C3DColor4f(0, 1, 1).H(), 180 * k_TurnsPerDegree);
    EXPECT_EQ(C3DColor4f(0, 0, 1).H(), 240 * k_TurnsPerDegree);
    EXPECT_EQ(C3DColor4f(1, 0, 1).H(), 300 * k_TurnsPerDegree);
}

TEST(ColorHue, Lies_in_its_sector_in_every_order_of_the_components)
{
    EXPECT_EQ(C3DColor4f(1, 0.5F, 0).H(), 30 * k_TurnsPerDegree);
    EXPECT_EQ(C3DColor4f(0.5F, 1, 0).H(), 90 * k_TurnsPerDegree);
    EXPECT_EQ(C3DColor4f(0, 1, 0.5F).H(), 150 * k_TurnsPerDegree);
    EXPECT_EQ(C3DColor4f(0, 0.5F, 1).H(), 210 * k_TurnsPerDegree);
    EXPECT_EQ(C3DColor4f(0.5F, 0, 1).H(), 270 * k_TurnsPerDegree);
    EXPECT_EQ(C3DColor4f(1, 0, 0.5F).H(), 330 * k_TurnsPerDegree);
}

TEST(ColorHue, Is_a_whole_turn_just_before_red)
{
    // 360 less the least part of a degree rounds to 360, and 360 times the float nearest to its inverse to 1.
    C3DColor4f const color(1, 0, 0x1p-30F);
    EXPECT_EQ(color.H(), 360 * k_TurnsPerDegree);
    EXPECT_EQ(color.H(), 1.0F);
    C3DColor4f const back(color.H(), color.S_HSVA(), color.V(), 1, C3DColor4f::E3DCOLORTYPE_HSVA);
    EXPECT_TRUE(describe_test::SameBits(back, 1, 0, 0, 1));
}

TEST(ColorHue, Has_the_bits_of_its_steps_in_all_three_conversions)
{
    test_support::Random random(75);
    for (int i = 0; i < 4000; ++i)
    {
        C3DColor4f const color = RandomColor(random, i % 2 == 0 ? 0.001F : -3.0F, i % 2 == 0 ? 1.0F : 3.0F);
        float const hue = HueBySteps(color);
        EXPECT_TRUE(SameBits(color.H(), hue));
        EXPECT_TRUE(SameBits(GetHSV(color).first, hue));
        EXPECT_TRUE(SameBits(GetHLS(color).first, hue));
    }
}

TEST(ColorModels, Black_has_no_hue_and_no_saturation)
{
    for (C3DColor4f const & black : {C3DColor4f(0, 0, 0, 0.5F), C3DColor4f(-0.0F, 0, -0.0F, 0.5F)})
    {
        EXPECT_EQ(GetHSV(black).first, 0);
        EXPECT_EQ(GetHSV(black).second, 0);
        EXPECT_EQ(GetHSV(black).third, 0);
        EXPECT_EQ(GetHSV(black).alpha, 0.5F);
        EXPECT_EQ(GetHLS(black).first, 0);
        EXPECT_EQ(GetHLS(black).second, 0);
        EXPECT_EQ(GetHLS(black).third, 0);
        EXPECT_EQ(GetHLS(black).alpha, 0.5F);
        EXPECT_EQ(black.H(), 0);
        EXPECT_EQ(black.S_HSVA(), 0);
        EXPECT_EQ(black.S_HLSA(), 0);
    }
}

TEST(ColorModels, A_grey_has_no_hue_and_no_saturation)
{
    for (float const grey : {0.1F, 0.5F, 0.75F, 1.0F, 2.0F, -0.5F, std::numeric_limits<float>::denorm_min()})
    {
        C3DColor4f const color(grey, grey, grey, 7);
        EXPECT_EQ(GetHSV(color).first, 0) << grey;
        EXPECT_EQ(GetHSV(color).second, 0) << grey;
        EXPECT_EQ(GetHSV(color).third, grey);
        EXPECT_EQ(GetHSV(color).alpha, 7);
        EXPECT_EQ(GetHLS(color).first, 0) << grey;
        EXPECT_EQ(GetHLS(color).second, (grey + grey) * 0.5F);
        EXPECT_EQ(GetHLS(color).third, 0) << grey;
        EXPECT_EQ(GetHLS(color).alpha, 7);
        EXPECT_EQ(color.H(), 0) << grey;
        EXPECT_EQ(color.S_HSVA(), 0) << grey;
        EXPECT_EQ(color.S_HLSA(), 0) << grey;
    }
}

TEST(ColorModels, Exact_colours_give_exact_numbers)
{
    ExpectFour(GetHSV({0.5F, 1, 0.5F, 0.25F}), 120 * k_TurnsPerDegree, 0.5F, 1, 0.25F);
    ExpectFour(GetHSV({0.5F, 0.25F, 0.125F, 9}), HueBySteps({0.5F, 0.25F, 0.125F}), 0.75F, 0.5F, 9);
    ExpectFour(GetHLS({0.25F, 0.75F, 0.25F, 9}), 120 * k_TurnsPerDegree, 0.5F, 0.5F, 9);
    ExpectFour(GetHLS({0.5F, 1, 0.5F, 9}), 120 * k_TurnsPerDegree, 0.75F, 1, 9);             // 0.5 / (2 - 1.5)
    ExpectFour(GetHLS({0.125F, 0.375F, 0.125F, 9}), 120 * k_TurnsPerDegree, 0.25F, 0.5F, 9); // 0.25 / 0.5
}

TEST(ColorModels, Saturation_of_the_lightness_model_changes_its_divisor_above_a_sum_of_1)
{
    float const above = std::nextafter(1.0F, 2.0F);
    float const below = std::nextafter(1.0F, 0.0F);
    C3DColor4f const colors[] = {{1, 0, 0}, {above, 0, 0},    {below, 0, 0},
                                 {3, 0, 0}, {1.5F, 0.25F, 0}, {0.5F, 0, 0.25F}};
    for (C3DColor4f const & color : colors)
    {
        float const max = color.R();
        float const expected = max > 1 ? max / (2 - max) : max / max;
        EXPECT_EQ(color.S_HLSA(), expected) << max;
        EXPECT_EQ(GetHLS(color).third, expected) << max;
    }
    EXPECT_EQ(C3DColor4f(3, 0, 0).S_HLSA(), -3);
    EXPECT_EQ(C3DColor4f(above, 0, 0).S_HLSA(), above / (2 - above));
    EXPECT_NE(above / (2 - above), 1.0F);
}

TEST(ColorModels, Saturation_outside_the_unit_range_can_be_infinite)
{
    C3DColor4f const balanced(0.5F, 0, -0.5F, 1);
    EXPECT_EQ(balanced.S_HLSA(), k_Infinity);
    ExpectFour(GetHLS(balanced), 30 * k_TurnsPerDegree, 0, k_Infinity, 1);
    C3DColor4f const bright(1.5F, 1, 0.5F, 1); // the sum is 2
    EXPECT_EQ(bright.S_HLSA(), k_Infinity);
    ExpectFour(GetHLS(bright), 30 * k_TurnsPerDegree, 1, k_Infinity, 1);
}

TEST(ColorModels, A_greatest_component_of_0_counts_as_black_in_the_value_model_alone)
{
    C3DColor4f const color(0, -0.5F, -1, 1);
    ExpectFour(GetHSV(color), 0, 0, 0, 1);
    EXPECT_EQ(color.H(), 0);
    EXPECT_EQ(color.S_HSVA(), 0);
    ExpectFour(GetHLS(color), 30 * k_TurnsPerDegree, -0.5F, -1, 1);
    EXPECT_EQ(color.S_HLSA(), -1);
}

TEST(ColorModels, Negative_components_pass_through)
{
    C3DColor4f const color(-1, -2, -3, 1);
    ExpectFour(GetHSV(color), 30 * k_TurnsPerDegree, -2, -1, 1);
    ExpectFour(GetHLS(color), 30 * k_TurnsPerDegree, -2, -0.5F, 1);
}

TEST(ColorModels, A_saturation_that_vanishes_against_an_infinite_sum_takes_the_hue_with_it)
{
    C3DColor4f const color(1.75F * 0x1p127F, 1.5F * 0x1p127F, 1.25F * 0x1p127F, 1);
    ExpectFour(GetHLS(color), 0, k_Infinity, -0.0F, 1);
    EXPECT_EQ(color.H(), 30 * k_TurnsPerDegree);
    ExpectFour(GetHSV(color), 30 * k_TurnsPerDegree, 0.5F / 1.75F, 1.75F * 0x1p127F, 1);
}

TEST(ColorModels, Infinite_components_give_what_their_differences_give)
{
    C3DColor4f const color(k_Infinity, 1, 0, 1);
    ExpectFour(GetHSV(color), 0, k_NaN, k_Infinity, 1);
    ExpectFour(GetHLS(color), 0, k_Infinity, k_NaN, 1);
    C3DColor4f const grey(k_Infinity, k_Infinity, k_Infinity, 1); // infinity less infinity is no difference of 0
    ExpectFour(GetHSV(grey), k_NaN, k_NaN, k_Infinity, 1);
    ExpectFour(GetHLS(grey), k_NaN, k_Infinity, k_NaN, 1);
    EXPECT_TRUE(std::isnan(grey.H()));
}

TEST(ColorModels, A_NaN_goes_the_way_of_the_comparisons)
{
    C3DColor4f const red(k_NaN, 1, 0, 0.5F); // the smallest is the NaN
    ExpectFour(GetHSV(red), k_NaN, k_NaN, 1, 0.5F);
    ExpectFour(GetHLS(red), k_NaN, k_NaN, k_NaN, 0.5F);

    C3DColor4f const blue(1, 0, k_NaN, 0.5F); // the greatest is the NaN
    ExpectFour(GetHSV(blue), k_NaN, k_NaN, k_NaN, 0.5F);
    ExpectFour(GetHLS(blue), k_NaN, k_NaN, k_NaN, 0.5F);

    C3DColor4f const green(1, k_NaN, 0, 0.5F); // from 1 down to 0: the NaN is passed over
    ExpectFour(GetHSV(green), 0, 0, 0, 0.5F);
    EXPECT_EQ(green.H(), 0);
    ExpectFour(GetHLS(green), k_NaN, 0.5F, -1, 0.5F);
    EXPECT_EQ(green.L(), 0.5F);
    EXPECT_EQ(green.V(), 0);

    C3DColor4f const order(0.25F, k_NaN, 0.5F, 0.5F); // in order: 0.25 to 0.5
    ExpectFour(GetHSV(order), k_NaN, 0.5F, 0.5F, 0.5F);
}

TEST(ColorModels, Single_components_have_the_bits_of_the_whole_conversion)
{
    test_support::Random random(76);
    for (int i = 0; i < 4000; ++i)
    {
        C3DColor4f const color = RandomColor(random, i % 2 == 0 ? 0.001F : -3.0F, i % 2 == 0 ? 1.0F : 3.0F);
        Four const hsv = GetHSV(color);
        Four const hls = GetHLS(color);
        EXPECT_TRUE(SameBits(color.H(), hsv.first));
        EXPECT_TRUE(SameBits(color.S_HSVA(), hsv.second));
        EXPECT_TRUE(SameBits(color.V(), hsv.third));
        EXPECT_TRUE(SameBits(color.H(), hls.first));
        EXPECT_TRUE(SameBits(color.L(), hls.second));
        EXPECT_TRUE(SameBits(color.S_HLSA(), hls.third));
        EXPECT_TRUE(SameBits(color.A(), hsv.alpha) && SameBits(color.A(), hls.alpha));
    }
}

TEST(ColorModels, Saturation_value_and_lightness_have_the_bits_of_their_steps)
{
    test_support::Random random(77);
    for (int i = 0; i < 4000; ++i)
    {
        C3DColor4f const color = RandomColor(random, i % 2 == 0 ? 0.001F : -3.0F, i % 2 == 0 ? 1.0F : 3.0F);
        float const max = std::max({color.R(), color.G(), color.B()});
        float const min = std::min({color.R(), color.G(), color.B()});
        float const d = max - min;
        float const sum = max + min;
        float const rest = 2.0F - sum;
        EXPECT_TRUE(SameBits(color.V(), max));
        EXPECT_TRUE(SameBits(color.S_HSVA(), d / max));
        EXPECT_TRUE(SameBits(color.L(), sum * 0.5F));
        EXPECT_TRUE(SameBits(color.S_HLSA(), sum > 1 ? d / rest : d / sum));
    }
}

TEST(ColorModels, Outputs_may_be_components_of_the_colour)
{
    C3DColor4f const color(0.3F, 0.8F, 0.6F, 0.9F);
    Four const hsv = GetHSV(color);
    Four const hls = GetHLS(color);
    for (int turn = 0; turn < 4; ++turn)
    {
        C3DColor4f first = color;
        float * const c = first.RGBA();
        float * const o[4] = {c + turn, c + (turn + 1) % 4, c + (turn + 2) % 4, c + (turn + 3) % 4};
        first.GetAsHSVA(*o[0], *o[1], *o[2], *o[3]);
        ExpectFour({*o[0], *o[1], *o[2], *o[3]}, hsv.first, hsv.second, hsv.third, hsv.alpha);
        first = color;
        first.GetAsHLSA(*o[0], *o[1], *o[2], *o[3]);
        ExpectFour({*o[0], *o[1], *o[2], *o[3]}, hls.first, hls.second, hls.third, hls.alpha);
    }
}

TEST(ColorModels, Colours_come_back_from_both_models)
{
    // In units u = 2^-24, to first order. The sixfold of the hue: the ratio of two differences 3, its offset 4 (half a
    // unit in the last place below 8), four products and the turn by 360 at most 6 each, the constant's own error 6:
    // 43 at most. A component follows it with a slope of at most the saturation times the value, or the range, <= 1.
    // The rest of a component: saturation 4, lightness 2, the products and sums behind them 14 at most.
    constexpr double tolerance = 64 * 0x1p-24;
    test_support::Random random(78);
    for (int i = 0; i < 20000; ++i)
    {
        C3DColor4f color = RandomColor(random, 0, 1);
        if (i % 4 == 3) // near a bound of two sectors, where the hue may come to lie on the other side
        {
            color.RGBA()[i % 3] = color.RGBA()[(i + 1) % 3] * (1 + random.Uniform<float>(-1e-6F, 1e-6F));
        }
        Four const hsv = GetHSV(color);
        Four const hls = GetHLS(color);
        C3DColor4f const fromValue(hsv.first, hsv.second, hsv.third, hsv.alpha, C3DColor4f::E3DCOLORTYPE_HSVA);
        C3DColor4f const fromLightness(hls.first, hls.second, hls.third, hls.alpha, C3DColor4f::E3DCOLORTYPE_HLSA);
        for (int k = 0; k < 3; ++k)
        {
            EXPECT_NEAR(fromValue.RGBA()[k], color.RGBA()[k], tolerance);
            EXPECT_NEAR(fromLightness.RGBA()[k], color.RGBA()[k], tolerance);
        }
        EXPECT_EQ(fromValue.A(), color.A());
        EXPECT_EQ(fromLightness.A(), color.A());
    }
}

TEST(ColorModels, Hues_come_back_from_saturated_colours)
{
    // A component is off by up to 10 * 2^-24, the range is at least a quarter: a sixth of 20 * 4 of them, and the hue's
    // own rounding, eight products and sums of a turn.
    constexpr double tolerance = 32 * 0x1p-24;
    test_support::Random random(79);
    for (int i = 0; i < 4000; ++i)
    {
        auto const hue = random.Uniform<float>(0, 1);
        C3DColor4f const fromValue(hue, random.Uniform<float>(0.5F, 1), random.Uniform<float>(0.5F, 1), 1,
                                   C3DColor4f::E3DCOLORTYPE_HSVA);
        C3DColor4f const fromLightness(hue, random.Uniform<float>(0.25F, 0.75F), random.Uniform<float>(0.5F, 1), 1,
                                       C3DColor4f::E3DCOLORTYPE_HLSA);
        EXPECT_LE(HueDistance(GetHSV(fromValue).first, hue), tolerance);
        EXPECT_LE(HueDistance(GetHLS(fromLightness).first, hue), tolerance);
    }
}
