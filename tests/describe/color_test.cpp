#include "describe/color_inspector.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <type_traits>

using describe_test::SameBits;

namespace
{

constexpr float k_NaN = std::numeric_limits<float>::quiet_NaN();
constexpr float k_Infinity = std::numeric_limits<float>::infinity();
constexpr float k_Greatest = std::numeric_limits<float>::max();

} // namespace

TEST(Color, Default_construction_and_SetNull_give_black_without_alpha)
{
    EXPECT_TRUE(SameBits(C3DColor4f(), 0, 0, 0, 0));
    C3DColor4f color(1, 2, 3, 4);
    color.SetNull();
    EXPECT_TRUE(SameBits(color, 0, 0, 0, 0));
}

TEST(Color, Construction_defaults_the_components_that_are_not_given)
{
    EXPECT_TRUE(SameBits(C3DColor4f(1), 1, 0, 0, 0));
    EXPECT_TRUE(SameBits(C3DColor4f(1, 2), 1, 2, 0, 0));
    EXPECT_TRUE(SameBits(C3DColor4f(1, 2, 3), 1, 2, 3, 0));
    EXPECT_TRUE(SameBits(C3DColor4f(1, 2, 3, 4), 1, 2, 3, 4));
}

TEST(Color, Is_a_plain_value_of_four_floats_in_the_order_red_green_blue_alpha)
{
    static_assert(sizeof(C3DColor4f) == 16 && std::is_trivially_copyable_v<C3DColor4f>);
    C3DColor4f const color(1, 2, 3, 4);
    float const * const components = color.RGBA();
    EXPECT_EQ(static_cast<void const *>(components), static_cast<void const *>(&color));
    for (int i = 0; i < 4; ++i)
    {
        EXPECT_EQ(components[i], static_cast<float>(i + 1));
    }
}

TEST(Color, Set_stores_any_number_as_it_is)
{
    C3DColor4f color;
    color.Set(-3, k_Infinity, k_NaN, -0.0F);
    EXPECT_TRUE(SameBits(color, -3, k_Infinity, k_NaN, -0.0F));
    color.Set(5, 6, 7, 8, C3DColor4f::E3DCOLORTYPE_RGBA);
    EXPECT_TRUE(SameBits(color, 5, 6, 7, 8));
    EXPECT_TRUE(SameBits(C3DColor4f(-1, 2, -0.0F, 9, C3DColor4f::E3DCOLORTYPE_RGBA), -1, 2, -0.0F, 9));
}

TEST(Color, Types_have_their_numbers)
{
    EXPECT_EQ(C3DColor4f::E3DCOLORTYPE_RGBA, 0);
    EXPECT_EQ(C3DColor4f::E3DCOLORTYPE_HSVA, 1);
    EXPECT_EQ(C3DColor4f::E3DCOLORTYPE_HLSA, 2);
}

TEST(Color, Set_with_a_value_that_names_no_type_stores_alpha_alone)
{
    for (int const type : {-1, 3, 256, 257, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
    {
        C3DColor4f color(1, 2, 3, 4);
        color.Set(5, 6, 7, 8, static_cast<C3DColor4f::E3DColorType>(type));
        EXPECT_TRUE(SameBits(color, 1, 2, 3, 8)) << type;
        EXPECT_TRUE(SameBits(C3DColor4f(5, 6, 7, 8, static_cast<C3DColor4f::E3DColorType>(type)), 0, 0, 0, 8)) << type;
    }
}

TEST(Color, Accessors_refer_to_the_components)
{
    C3DColor4f color(1, 2, 3, 4);
    C3DColor4f const & fixed = color;
    EXPECT_EQ(&color.R(), color.RGBA());
    EXPECT_EQ(&color.G(), color.RGBA() + 1);
    EXPECT_EQ(&color.B(), color.RGBA() + 2);
    EXPECT_EQ(&color.A(), color.RGBA() + 3);
    EXPECT_EQ(&fixed.R(), &color.R());
    EXPECT_EQ(&fixed.G(), &color.G());
    EXPECT_EQ(&fixed.B(), &color.B());
    EXPECT_EQ(&fixed.A(), &color.A());
    EXPECT_EQ(static_cast<float *>(color), color.RGBA());
    static_assert(std::is_same_v<decltype(fixed.RGBA()), float const *>);
    static_assert(!std::is_convertible_v<C3DColor4f const &, float *>);
    color.RGBA()[2] = 9;
    EXPECT_TRUE(SameBits(color, 1, 2, 9, 4));
}

TEST(Color, Setters_of_a_component_store_it_and_refer_to_it)
{
    C3DColor4f color(1, 2, 3, 4);
    EXPECT_EQ(&color.SetR(5), &color.R());
    EXPECT_TRUE(SameBits(color, 5, 2, 3, 4));
    EXPECT_EQ(&color.SetG(6), &color.G());
    EXPECT_TRUE(SameBits(color, 5, 6, 3, 4));
    EXPECT_EQ(&color.SetB(7), &color.B());
    EXPECT_TRUE(SameBits(color, 5, 6, 7, 4));
    EXPECT_EQ(&color.SetA(8), &color.A());
    EXPECT_TRUE(SameBits(color, 5, 6, 7, 8));
    color.SetR(1) = 10;
    EXPECT_TRUE(SameBits(color, 10, 6, 7, 8));
}

TEST(Color, GetAsRGBA_gives_the_components_into_itself_too)
{
    C3DColor4f color(1, 2, 3, 4);
    float r = -1;
    float g = -1;
    float b = -1;
    float a = -1;
    color.GetAsRGBA(r, g, b, a);
    EXPECT_TRUE(SameBits(C3DColor4f(r, g, b, a), 1, 2, 3, 4));
    color.GetAsRGBA(color.A(), color.B(), color.G(), color.R());
    EXPECT_TRUE(SameBits(color, 4, 3, 2, 1));
}

TEST(Color, Arithmetic_goes_component_by_component_with_alpha)
{
    C3DColor4f color(1, 2, 3, 4);
    color.Add(C3DColor4f(10, 20, 30, 40));
    EXPECT_TRUE(SameBits(color, 11, 22, 33, 44));
    color.Sub(C3DColor4f(1, 4, 9, 16));
    EXPECT_TRUE(SameBits(color, 10, 18, 24, 28));
    color.MulComp(C3DColor4f(2, -1, 0.5F, 0.25F));
    EXPECT_TRUE(SameBits(color, 20, -18, 12, 7));
    color.Mul(-2);
    EXPECT_TRUE(SameBits(color, -40, 36, -24, -14));
    color.Negate();
    EXPECT_TRUE(SameBits(color, 40, -36, 24, 14));
}

TEST(Color, Arithmetic_with_itself_reads_before_it_writes)
{
    C3DColor4f color(1, 2, 3, 4);
    color.Add(color);
    EXPECT_TRUE(SameBits(color, 2, 4, 6, 8));
    color.MulComp(color);
    EXPECT_TRUE(SameBits(color, 4, 16, 36, 64));
    color.Mul(color.R());
    EXPECT_TRUE(SameBits(color, 16, 64, 144, 256));
    color.Sub(color);
    EXPECT_TRUE(SameBits(color, 0, 0, 0, 0));
}

TEST(Color, Operations_that_write_the_colour_give_it_back)
{
    C3DColor4f color;
    EXPECT_EQ(&color.SetNull(), &color);
    EXPECT_EQ(&color.Set(1, 2, 3, 4), &color);
    EXPECT_EQ(&color.Set(1, 2, 3, 4, C3DColor4f::E3DCOLORTYPE_HLSA), &color);
    EXPECT_EQ(&color.Add(color), &color);
    EXPECT_EQ(&color.Sub(color), &color);
    EXPECT_EQ(&color.MulComp(color), &color);
    EXPECT_EQ(&color.Mul(2), &color);
    EXPECT_EQ(&color.Negate(), &color);
    EXPECT_EQ(&color.InverseRGB(), &color);
}

TEST(Color, Negate_turns_the_signs_of_zeros)
{
    C3DColor4f color(0, -0.0F, k_Infinity, 0);
    color.Negate();
    EXPECT_TRUE(SameBits(color, -0.0F, 0, -k_Infinity, -0.0F));
}

TEST(Color, InverseRGB_complements_and_keeps_alpha)
{
    C3DColor4f color(0.25F, 1, -2, 0.75F);
    color.InverseRGB();
    EXPECT_TRUE(SameBits(color, 0.75F, 0, 3, 0.75F));
}

TEST(Color, IsNull_takes_each_component_at_its_bound_and_none_above)
{
    float const bound = 0.125F;
    EXPECT_EQ(C3DColor4f(bound, -bound, bound, -bound).IsNull(bound), 1);
    for (int i = 0; i < 4; ++i)
    {
        for (float const sign : {1.0F, -1.0F})
        {
            C3DColor4f color;
            color.RGBA()[i] = sign * std::nextafter(bound, 1.0F);
            EXPECT_EQ(color.IsNull(bound), 0) << i;
            color.RGBA()[i] = sign * bound;
            EXPECT_EQ(color.IsNull(bound), 1) << i;
        }
        C3DColor4f color;
        color.RGBA()[i] = k_NaN;
        EXPECT_EQ(color.IsNull(k_Infinity), 0) << i;
    }
}

TEST(Color, IsNull_of_black_holds_at_0_and_at_no_negative_or_unordered_bound)
{
    C3DColor4f const black(0, -0.0F, 0, -0.0F);
    EXPECT_EQ(black.IsNull(0), 1);
    EXPECT_EQ(black.IsNull(-std::numeric_limits<float>::denorm_min()), 0);
    EXPECT_EQ(black.IsNull(k_NaN), 0);
    EXPECT_EQ(C3DColor4f(k_Infinity, 0, 0, 0).IsNull(k_Infinity), 1);
}

TEST(Color, Comparison_is_exact_over_all_four)
{
    C3DColor4f const color(1, 2, 3, 4);
    EXPECT_TRUE(color == C3DColor4f(1, 2, 3, 4));
    EXPECT_FALSE(color != C3DColor4f(1, 2, 3, 4));
    for (int i = 0; i < 4; ++i)
    {
        C3DColor4f other = color;
        other.RGBA()[i] = std::nextafter(other.RGBA()[i], 100.0F);
        EXPECT_FALSE(color == other) << i;
        EXPECT_TRUE(color != other) << i;
        other.RGBA()[i] = k_NaN;
        EXPECT_FALSE(other == other) << i;
        EXPECT_TRUE(other != other) << i;
    }
    EXPECT_TRUE(C3DColor4f(0, -0.0F, 0, -0.0F) == C3DColor4f(-0.0F, 0, -0.0F, 0));
}

TEST(Color, Brightness_ignores_alpha_and_its_other_form_is_scaled_by_it)
{
    C3DColor4f const white(1, 1, 1, 0.5F);
    EXPECT_EQ(white.Brightness(), 3 * 0.33333334F);
    EXPECT_EQ(white.BrightnessWithAlpha(), 1.5F * 0.33333334F);
    EXPECT_EQ(C3DColor4f(-3, 0, 0, 1).Brightness(), -3 * 0.33333334F);
}

TEST(Color, Brightness_sums_blue_and_green_first)
{
    float const half = 0x1p-24F; // half the spacing above 1, lost in a sum with 1, not where two of them come first
    EXPECT_EQ(C3DColor4f(half, half, 1, 1).Brightness(), 1 * 0.33333334F);
    EXPECT_EQ(C3DColor4f(half, half, 1, 1).BrightnessWithAlpha(), 1 * 0.33333334F);
    EXPECT_EQ(C3DColor4f(1, half, half, 1).Brightness(), (1 + 0x1p-23F) * 0.33333334F);
    EXPECT_EQ(C3DColor4f(half, 1, half, 1).Brightness(), 1 * 0.33333334F);
}

TEST(Color, BrightnessWithAlpha_applies_alpha_before_the_third)
{
    EXPECT_EQ(C3DColor4f(0, 0, k_Greatest, 2).BrightnessWithAlpha(), k_Infinity);
    EXPECT_EQ(C3DColor4f(0, 0, k_Greatest, 2).Brightness(), k_Greatest * 0.33333334F);
}

TEST(Color, Grayscale_weighs_the_components)
{
    EXPECT_EQ(C3DColor4f(1, 0, 0, 9).Grayscale(), 0.3F);
    EXPECT_EQ(C3DColor4f(0, 1, 0, 9).Grayscale(), 0.59F);
    EXPECT_EQ(C3DColor4f(0, 0, 1, 9).Grayscale(), 0.11F);
    EXPECT_EQ(C3DColor4f(1, 1, 1, 1).Grayscale(), 0.11F + 0.59F + 0.3F);
    EXPECT_EQ(C3DColor4f(1, 1, 1, 0.5F).GrayscaleWithAlpha(), (0.11F + 0.59F + 0.3F) * 0.5F);
}

TEST(Color, Grayscale_has_the_bits_of_its_sum_from_blue_to_red)
{
    test_support::Random random(71);
    int telling = 0;
    for (int i = 0; i < 1000; ++i)
    {
        auto const r = random.Uniform<float>(-2, 2);
        auto const g = random.Uniform<float>(-2, 2);
        auto const b = random.Uniform<float>(-2, 2);
        auto const a = random.Uniform<float>(-2, 2);
        float const red = r * 0.3F;
        float const green = g * 0.59F;
        float const blue = b * 0.11F;
        float sum = blue + green;
        sum += red;
        C3DColor4f const color(r, g, b, a);
        EXPECT_TRUE(SameBits(color.Grayscale(), sum));
        EXPECT_TRUE(SameBits(color.GrayscaleWithAlpha(), sum * a));
        telling += red + green + blue != sum ? 1 : 0;
    }
    EXPECT_GT(telling, 100);
}
