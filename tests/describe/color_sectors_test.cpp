#include "describe/color_inspector.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>

using describe_test::SameBits;

namespace
{

constexpr float k_NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float k_Infinity = std::numeric_limits<float>::infinity();
constexpr float k_Greatest = std::numeric_limits<float>::max();
constexpr auto k_HSVA = C3DColor4f::E3DCOLORTYPE_HSVA;
constexpr auto k_HLSA = C3DColor4f::E3DCOLORTYPE_HLSA;

/// A colour whose red, green and blue tell whether they were written.
C3DColor4f FromMarked(float c1, float c2, float c3, float a, C3DColor4f::E3DColorType type)
{
    C3DColor4f color(-11, -12, -13, -14);
    color.Set(c1, c2, c3, a, type);
    return color;
}

void ExpectAlphaAlone(float c1, float c2, float c3, C3DColor4f::E3DColorType type)
{
    EXPECT_TRUE(SameBits(FromMarked(c1, c2, c3, 0.5F, type), -11, -12, -13, 0.5F))
        << c1 << ' ' << c2 << ' ' << c3 << " of type " << type;
    EXPECT_TRUE(SameBits(C3DColor4f(c1, c2, c3, 0.5F, type), 0, 0, 0, 0.5F))
        << c1 << ' ' << c2 << ' ' << c3 << " of type " << type;
}

void ExpectColor(C3DColor4f const & color, float r, float g, float b)
{
    EXPECT_TRUE(SameBits(color, r, g, b, 0.5F))
        << color.R() << ' ' << color.G() << ' ' << color.B() << ", not " << r << ' ' << g << ' ' << b;
}

/// The part that each of red, green and blue plays in a sector: the highest, the lowest, the falling or rising one.
enum Part
{
    HIGH,
    LOW,
    FALLING,
    RISING
};
constexpr Part k_Parts[7][3] = {{HIGH, RISING, LOW}, {FALLING, HIGH, LOW}, {LOW, HIGH, RISING}, {LOW, FALLING, HIGH},
                                {RISING, LOW, HIGH}, {HIGH, LOW, FALLING}, {HIGH, RISING, LOW}};

/// Each step rounded on its own; the sector is that of the floor, which the hues here have.
void ExpectHSVBySteps(float h, float s, float v)
{
    float const x = h * 6.0F;
    float const i = std::floor(x);
    float const f = x - i;
    float const sf = f * s;
    float const rest = 1.0F - f;
    float const sRest = rest * s;
    float const highless = 1.0F - s;
    float const fallingShare = 1.0F - sf;
    float const risingShare = 1.0F - sRest;
    float const values[4] = {v, highless * v, fallingShare * v, risingShare * v};
    auto const & parts = k_Parts[static_cast<int>(i)];
    SCOPED_TRACE(testing::Message() << "hue " << h << " saturation " << s << " value " << v);
    ExpectColor(FromMarked(h, s, v, 0.5F, k_HSVA), values[parts[0]], values[parts[1]], values[parts[2]]);
}

void ExpectHLSBySteps(float h, float l, float s)
{
    float const sum = l + s;
    float const product = l * s;
    float const more = s + 1.0F;
    float const m2 = l > 0.5F ? sum - product : more * l;
    float const x = h * 6.0F;
    float const i = std::floor(x);
    float const f = x - i;
    float const twice = 2.0F * l;
    float const m1 = twice - m2;
    float const range = m2 - m1;
    float const e = range * f;
    float const values[4] = {m2, m1, m2 - e, e + m1};
    auto const & parts = k_Parts[static_cast<int>(i)];
    SCOPED_TRACE(testing::Message() << "hue " << h << " lightness " << l << " saturation " << s);
    ExpectColor(FromMarked(h, l, s, 0.5F, k_HLSA), values[parts[0]], values[parts[1]], values[parts[2]]);
}

/// The least hue whose sixfold is at least so many sectors.
float FirstHueOf(int sector)
{
    auto const start = static_cast<float>(sector);
    float hue = start / 6;
    while (hue * 6 >= start)
    {
        hue = std::nextafter(hue, 0.0F);
    }
    while (hue * 6 < start)
    {
        hue = std::nextafter(hue, 2.0F);
    }
    return hue;
}

/// Hues that no sector has.
constexpr float k_HuesOutside[] = {-std::numeric_limits<float>::denorm_min(),
                                   -0.1F,
                                   -1.0F / 6,
                                   -1,
                                   -5,
                                   1.1666667F,
                                   1.5F,
                                   2,
                                   1e9F,
                                   7.158279e8F, // its sixfold is 2^32, with low bits that are a sector's
                                   -7.158279e8F,
                                   3e18F,
                                   -3e18F,
                                   k_Greatest,
                                   -k_Greatest,
                                   k_Infinity,
                                   -k_Infinity,
                                   k_NaN};

/// The hexagon of hues in the continuous form: each component is a trapezoid of the hue, as wide as half a turn.
/// (A. R. Smith, "Color gamut transform pairs", 1978.) `turned` is 5, 3, 1 for red, green, blue.
double TrapezoidHSV(double turned, double h, double s, double v)
{
    double const k = std::fmod(turned + h * 6, 6.0);
    return v - v * s * std::fmax(0.0, std::fmin(std::fmin(k, 4 - k), 1.0));
}

/// `turned` is 0, 8, 4 for red, green, blue.
double TrapezoidHLS(double turned, double h, double l, double s)
{
    double const k = std::fmod(turned + h * 12, 12.0);
    return l - s * std::fmin(l, 1 - l) * std::fmax(-1.0, std::fmin(std::fmin(k - 3, 9 - k), 1.0));
}

} // namespace

TEST(ColorFromHSV, Each_sector_gives_its_components)
{
    // Eighths of a turn: the sixfold is exact. With saturation 1/2 and value 1 the lowest is 1/2.
    ExpectColor(FromMarked(0, 0.5F, 1, 0.5F, k_HSVA), 1, 0.5F, 0.5F);
    ExpectColor(FromMarked(0.125F, 0.5F, 1, 0.5F, k_HSVA), 1, 0.875F, 0.5F);
    ExpectColor(FromMarked(0.25F, 0.5F, 1, 0.5F, k_HSVA), 0.75F, 1, 0.5F);
    ExpectColor(FromMarked(0.375F, 0.5F, 1, 0.5F, k_HSVA), 0.5F, 1, 0.625F);
    ExpectColor(FromMarked(0.5F, 0.5F, 1, 0.5F, k_HSVA), 0.5F, 1, 1);
    ExpectColor(FromMarked(0.625F, 0.5F, 1, 0.5F, k_HSVA), 0.5F, 0.625F, 1);
    ExpectColor(FromMarked(0.75F, 0.5F, 1, 0.5F, k_HSVA), 0.75F, 0.5F, 1);
    ExpectColor(FromMarked(0.875F, 0.5F, 1, 0.5F, k_HSVA), 1, 0.5F, 0.875F);
}

TEST(ColorFromHLS, Each_sector_gives_its_components)
{
    // Lightness 1/2 and saturation 1/2: from 1/4 to 3/4.
    ExpectColor(FromMarked(0, 0.5F, 0.5F, 0.5F, k_HLSA), 0.75F, 0.25F, 0.25F);
    ExpectColor(FromMarked(0.125F, 0.5F, 0.5F, 0.5F, k_HLSA), 0.75F, 0.625F, 0.25F);
    ExpectColor(FromMarked(0.25F, 0.5F, 0.5F, 0.5F, k_HLSA), 0.5F, 0.75F, 0.25F);
    ExpectColor(FromMarked(0.375F, 0.5F, 0.5F, 0.5F, k_HLSA), 0.25F, 0.75F, 0.375F);
    ExpectColor(FromMarked(0.5F, 0.5F, 0.5F, 0.5F, k_HLSA), 0.25F, 0.75F, 0.75F);
    ExpectColor(FromMarked(0.625F, 0.5F, 0.5F, 0.5F, k_HLSA), 0.25F, 0.375F, 0.75F);
    ExpectColor(FromMarked(0.75F, 0.5F, 0.5F, 0.5F, k_HLSA), 0.5F, 0.25F, 0.75F);
    ExpectColor(FromMarked(0.875F, 0.5F, 0.5F, 0.5F, k_HLSA), 0.75F, 0.25F, 0.625F);
    // Light: the highest is 3/4 + 1/2 - 3/8.
    ExpectColor(FromMarked(0.25F, 0.75F, 0.5F, 0.5F, k_HLSA), 0.75F, 0.875F, 0.625F);
}

TEST(ColorFromHSV, The_hue_1_is_red_and_the_sector_behind_it_goes_on_as_the_first)
{
    EXPECT_TRUE(SameBits(C3DColor4f(1, 1, 1, 1, k_HSVA), 1, 0, 0, 1));
    ExpectColor(FromMarked(1, 0.5F, 1, 0.5F, k_HSVA), 1, 0.5F, 0.5F);
    ExpectColor(FromMarked(1.125F, 0.5F, 1, 0.5F, k_HSVA), 1, 0.875F, 0.5F);
    ExpectColor(FromMarked(1, 0.5F, 0.5F, 0.5F, k_HLSA), 0.75F, 0.25F, 0.25F);
    ExpectColor(FromMarked(1.125F, 0.5F, 0.5F, 0.5F, k_HLSA), 0.75F, 0.625F, 0.25F);
}

TEST(ColorFromHSV, A_hue_of_negative_zero_is_red)
{
    ExpectColor(FromMarked(-0.0F, 1, 1, 0.5F, k_HSVA), 1, 0, 0);
    ExpectColor(FromMarked(-0.0F, 0.5F, 1, 0.5F, k_HLSA), 1, 0, 0);
}

TEST(ColorFromHSV, Sectors_meet_at_their_bounds)
{
    for (int sector = 1; sector <= 6; ++sector)
    {
        float const first = FirstHueOf(sector);
        float const last = std::nextafter(first, 0.0F);
        ASSERT_EQ(std::floor(first * 6), static_cast<float>(sector));
        ASSERT_EQ(std::floor(last * 6), static_cast<float>(sector - 1));
        for (float const hue : {last, first, std::nextafter(first, 2.0F)})
        {
            ExpectHSVBySteps(hue, 1, 1);
            ExpectHSVBySteps(hue, 0.7F, 0.3F);
            ExpectHLSBySteps(hue, 0.5F, 1);
            ExpectHLSBySteps(hue, 0.6F, 0.7F);
        }
    }
}

TEST(ColorFromHSV, The_last_hue_that_counts_lies_below_seven_sixths)
{
    float const first = FirstHueOf(7);
    float const last = std::nextafter(first, 0.0F);
    ExpectHSVBySteps(last, 0.7F, 0.3F);
    ExpectHLSBySteps(last, 0.6F, 0.7F);
    ExpectAlphaAlone(first, 0.7F, 0.3F, k_HSVA);
    ExpectAlphaAlone(first, 0.6F, 0.7F, k_HLSA);
}

TEST(ColorFromHSV, A_hue_outside_writes_alpha_alone)
{
    ExpectAlphaAlone(-0.1F, 1, 1, k_HSVA);
    for (float const hue : k_HuesOutside)
    {
        ExpectAlphaAlone(hue, 1, 1, k_HSVA);
        ExpectAlphaAlone(hue, 0.5F, -2, k_HSVA);
        ExpectAlphaAlone(hue, k_NaN, 1, k_HSVA);
        ExpectAlphaAlone(hue, 0.5F, 1, k_HLSA);
        ExpectAlphaAlone(hue, 0.75F, 1, k_HLSA);
    }
}

TEST(ColorFromHSV, A_saturation_of_0_is_a_grey_of_any_hue)
{
    for (float const hue : k_HuesOutside)
    {
        ExpectColor(FromMarked(hue, 0, 0.7F, 0.5F, k_HSVA), 0.7F, 0.7F, 0.7F);
        ExpectColor(FromMarked(hue, -0.0F, -3, 0.5F, k_HSVA), -3, -3, -3);
    }
    ExpectColor(FromMarked(0.3F, 0, k_NaN, 0.5F, k_HSVA), k_NaN, k_NaN, k_NaN);
    ExpectColor(FromMarked(0.3F, 0, -0.0F, 0.5F, k_HSVA), -0.0F, -0.0F, -0.0F);
    ExpectColor(FromMarked(0.3F, 0, k_Infinity, 0.5F, k_HSVA), k_Infinity, k_Infinity, k_Infinity);
}

TEST(ColorFromHSV, The_least_saturation_is_none_that_is_0)
{
    ExpectAlphaAlone(2, std::numeric_limits<float>::denorm_min(), 1, k_HSVA);
}

TEST(ColorFromHLS, A_saturation_of_0_is_a_grey_of_the_hues_that_count_alone)
{
    for (float const hue : {0.0F, 0.2F, 0.4F, 0.5F, 0.7F, 0.9F, 1.0F})
    {
        ExpectColor(FromMarked(hue, 0.25F, 0, 0.5F, k_HLSA), 0.25F, 0.25F, 0.25F);
        ExpectColor(FromMarked(hue, 0.75F, 0, 0.5F, k_HLSA), 0.75F, 0.75F, 0.75F);
    }
    for (float const hue : k_HuesOutside)
    {
        ExpectAlphaAlone(hue, 0.25F, 0, k_HLSA);
        ExpectAlphaAlone(hue, 0.75F, 0, k_HLSA);
    }
}

TEST(ColorFromHLS, A_highest_component_of_0_is_black_of_any_hue)
{
    EXPECT_TRUE(SameBits(C3DColor4f(0.5F, 0, 0.7F, 1, k_HLSA), 0, 0, 0, 1));
    for (float const hue : k_HuesOutside)
    {
        ExpectColor(FromMarked(hue, 0, 0.7F, 0.5F, k_HLSA), 0, 0, 0);
        ExpectColor(FromMarked(hue, -0.0F, 0.7F, 0.5F, k_HLSA), 0, 0, 0);
        ExpectColor(FromMarked(hue, 0, -5, 0.5F, k_HLSA), 0, 0, 0);
        ExpectColor(FromMarked(hue, 0.25F, -1, 0.5F, k_HLSA), 0, 0, 0); // 0 times the lightness
        ExpectColor(FromMarked(hue, 2, 2, 0.5F, k_HLSA), 0, 0, 0);      // 2 + 2 - 4
    }
}

TEST(ColorFromHLS, Light_begins_above_one_half)
{
    // Saturation 3 outside the unit range: at 1/2 both forms of the highest give 2; of its neighbours each has its own.
    ExpectColor(FromMarked(0, 0.5F, 3, 0.5F, k_HLSA), 2, -1, -1);
    ExpectColor(FromMarked(0, 0.25F, 3, 0.5F, k_HLSA), 1, -0.5F, -0.5F);
    ExpectColor(FromMarked(0, 0.75F, 3, 0.5F, k_HLSA), 1.5F, 0, 0);
    int telling = 0;
    for (float s = 0.01F; s < 1; s += 0.01F)
    {
        float const l = std::nextafter(0.5F, 1.0F);
        ExpectHLSBySteps(0.3F, 0.5F, s);
        ExpectHLSBySteps(0.3F, l, s);
        telling += 0.5F + s - 0.5F * s != (s + 1) * 0.5F ? 1 : 0;
        telling += l + s - l * s != (s + 1) * l ? 1 : 0;
    }
    EXPECT_GT(telling, 10);
}

TEST(ColorFromHSV, Unordered_and_infinite_arguments_reach_the_components_that_they_enter)
{
    ExpectColor(FromMarked(0.125F, k_NaN, 1, 0.5F, k_HSVA), 1, k_NaN, k_NaN);
    ExpectColor(FromMarked(0.125F, 0.5F, k_NaN, 0.5F, k_HSVA), k_NaN, k_NaN, k_NaN);
    ExpectColor(FromMarked(0.125F, 0.5F, k_Infinity, 0.5F, k_HSVA), k_Infinity, k_Infinity, k_Infinity);
    ExpectColor(FromMarked(0.125F, k_Infinity, 1, 0.5F, k_HSVA), 1, -k_Infinity, -k_Infinity);
    ExpectColor(FromMarked(0.25F, k_NaN, 0.5F, 0.5F, k_HLSA), k_NaN, k_NaN, k_NaN); // lightness NaN
    ExpectColor(FromMarked(0.25F, 0.5F, k_NaN, 0.5F, k_HLSA), k_NaN, k_NaN, k_NaN);
    EXPECT_TRUE(SameBits(FromMarked(0, 1, 1, k_NaN, k_HSVA), 1, 0, 0, k_NaN));
}

TEST(ColorFromHSV, Has_the_bits_of_its_steps)
{
    test_support::Random random(72);
    for (int i = 0; i < 4000; ++i)
    {
        auto const hue = random.Uniform<float>(0, 1.16F);
        ExpectHSVBySteps(hue, random.Uniform<float>(0, 1), random.Uniform<float>(0, 1));
        ExpectHSVBySteps(hue, random.OverDecades<float>(-2, 2), random.OverDecades<float>(-2, 2));
    }
}

TEST(ColorFromHLS, Has_the_bits_of_its_steps)
{
    test_support::Random random(73);
    for (int i = 0; i < 4000; ++i)
    {
        auto const hue = random.Uniform<float>(0, 1.16F);
        ExpectHLSBySteps(hue, random.Uniform<float>(0, 1), random.Uniform<float>(0, 1));
        ExpectHLSBySteps(hue, random.OverDecades<float>(-2, 2), random.OverDecades<float>(-2, 2));
    }
}

TEST(ColorFromHSV, Agrees_with_the_trapezoids_of_the_hue)
{
    // In units u = 2^-24 of the unit range: the sixfold of the hue is rounded by 4, which enters a component with a
    // slope of at most 1; the few products and sums after it round by at most 1 each, five of them in a row.
    constexpr double tolerance = 10 * 0x1p-24;
    test_support::Random random(74);
    for (int i = 0; i < 4000; ++i)
    {
        auto const h = random.Uniform<float>(0, 1);
        auto const s = random.Uniform<float>(0.001F, 1);
        auto const x = random.Uniform<float>(0.001F, 1);
        C3DColor4f const fromValue(h, s, x, 1, k_HSVA);
        EXPECT_NEAR(fromValue.R(), TrapezoidHSV(5, h, s, x), tolerance);
        EXPECT_NEAR(fromValue.G(), TrapezoidHSV(3, h, s, x), tolerance);
        EXPECT_NEAR(fromValue.B(), TrapezoidHSV(1, h, s, x), tolerance);
        C3DColor4f const fromLightness(h, x, s, 1, k_HLSA);
        EXPECT_NEAR(fromLightness.R(), TrapezoidHLS(0, h, x, s), tolerance);
        EXPECT_NEAR(fromLightness.G(), TrapezoidHLS(8, h, x, s), tolerance);
        EXPECT_NEAR(fromLightness.B(), TrapezoidHLS(4, h, x, s), tolerance);
    }
}

TEST(ColorFromHSV, The_arguments_may_be_components_of_the_colour)
{
    C3DColor4f color(0.25F, 0.5F, 1, 0.75F);
    color.Set(color.R(), color.G(), color.B(), color.A(), k_HSVA);
    EXPECT_TRUE(SameBits(color, 0.75F, 1, 0.5F, 0.75F));
}
