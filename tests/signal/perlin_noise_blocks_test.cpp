#include "signal/noise_inspector.h"
#include "support/random.h"
#include "support/same_bits.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace
{

using signal_test::NoiseInspector;
using test_support::Random;
using test_support::SameBits;

constexpr double k_Infinity = std::numeric_limits<double>::infinity();
constexpr double k_NaN = std::numeric_limits<double>::quiet_NaN();
constexpr int k_Most = std::numeric_limits<int>::max();
constexpr int k_Least = std::numeric_limits<int>::min();

/// What the pairs of gradient components -1, 0 and 1 come to at a weight.
std::array<double, 9> BlendsAt(double weight)
{
    std::array<double, 9> w{};
    for (int a = -1; a <= 1; ++a)
    {
        for (int b = -1; b <= 1; ++b)
        {
            w[static_cast<std::size_t>(3 * (a + 1) + (b + 1))] = a + weight * (b - a);
        }
    }
    return w;
}

double Product(int gradient, double x, double y, double z, double t)
{
    auto const & g = C3DPerlinNoise::grad4[gradient];
    return g[0] * x + g[1] * y + g[2] * z + g[3] * t;
}

/// The two products of neighbouring gradients, the second one a step along t further, blended.
double BlendedAlongT(int first, int second, double weight, double x, double y, double z, double t)
{
    double const a = Product(first, x, y, z, t);
    return a + weight * (Product(second, x, y, z, t - 1) - a);
}

/// A multiple of 1/32 of at most four digits, so that a few products and sums of such are exact.
double ShortFraction(Random & random)
{
    return random.Integer(-96, 96) / 32.0;
}

} // namespace

TEST(PerlinNoiseFade, Joins_0_and_1_with_flat_ends)
{
    EXPECT_EQ(NoiseInspector::fade(0), 0);
    EXPECT_EQ(NoiseInspector::fade(1), 1);
    EXPECT_EQ(NoiseInspector::fade(0.5), 0.5);
    EXPECT_EQ(NoiseInspector::fade(0.25), 0.103515625);
    EXPECT_EQ(NoiseInspector::fade(0.75), 0.896484375);
    double const step = 0x1p-10;
    EXPECT_LT(NoiseInspector::fade(step), 10.01 * step * step * step);
    EXPECT_LT(1 - NoiseInspector::fade(1 - step), 10.01 * step * step * step);
}

TEST(PerlinNoiseFade, Is_the_same_polynomial_outside_of_the_unit_interval)
{
    EXPECT_EQ(NoiseInspector::fade(2), 32);
    EXPECT_EQ(NoiseInspector::fade(-1), -31);
    EXPECT_TRUE(SameBits(NoiseInspector::fade(-0.0), -0.0));
    EXPECT_TRUE(std::isnan(NoiseInspector::fade(k_NaN)));
    EXPECT_EQ(NoiseInspector::fade(k_Infinity), k_Infinity);
    EXPECT_EQ(NoiseInspector::fade(-k_Infinity), -k_Infinity);
}

TEST(PerlinNoiseFade, Is_monotonic_and_symmetric_about_a_half)
{
    for (int i = 1; i <= 1000; ++i)
    {
        double const t = i / 1000.0;
        EXPECT_GT(NoiseInspector::fade(t), NoiseInspector::fade((i - 1) / 1000.0)) << t;
        EXPECT_NEAR(NoiseInspector::fade(t) + NoiseInspector::fade(1 - t), 1, 1e-14) << t;
    }
}

TEST(PerlinNoiseLerp, Takes_the_weight_first_and_starts_from_the_first_value)
{
    EXPECT_EQ(NoiseInspector::lerp(0, 3, 7), 3);
    EXPECT_EQ(NoiseInspector::lerp(1, 3, 7), 7);
    EXPECT_EQ(NoiseInspector::lerp(0.25, 3, 7), 4);
    EXPECT_EQ(NoiseInspector::lerp(2, 3, 7), 11);
    EXPECT_EQ(NoiseInspector::lerp(-1, 3, 7), -1);
    // The difference loses the small one: the end is not met exactly.
    EXPECT_EQ(NoiseInspector::lerp(1, 1e17, 1), 0);
    EXPECT_EQ(NoiseInspector::lerp(0, 1e17, 1), 1e17);
    EXPECT_TRUE(std::isnan(NoiseInspector::lerp(0, k_Infinity, k_Infinity)));
    EXPECT_TRUE(std::isnan(NoiseInspector::lerp(0, 1, k_Infinity)));
}

TEST(PerlinNoiseFastFloor, Is_the_floor_of_what_is_not_whole)
{
    EXPECT_EQ(NoiseInspector::FastFloor(0.25), 0);
    EXPECT_EQ(NoiseInspector::FastFloor(-0.25), -1);
    EXPECT_EQ(NoiseInspector::FastFloor(7.999), 7);
    EXPECT_EQ(NoiseInspector::FastFloor(-7.001), -8);
    EXPECT_EQ(NoiseInspector::FastFloor(-7.999), -8);
    EXPECT_EQ(NoiseInspector::FastFloor(std::numeric_limits<double>::denorm_min()), 0);
    EXPECT_EQ(NoiseInspector::FastFloor(-std::numeric_limits<double>::denorm_min()), -1);
    Random random(811);
    for (int i = 0; i < 2000; ++i)
    {
        double const x = random.Uniform(-1e6, 1e6);
        if (x != std::floor(x))
        {
            EXPECT_EQ(NoiseInspector::FastFloor(x), static_cast<int>(std::floor(x))) << x;
        }
    }
}

TEST(PerlinNoiseFastFloor, Is_one_less_for_whole_numbers_that_are_not_above_0)
{
    EXPECT_EQ(NoiseInspector::FastFloor(0.0), -1);
    EXPECT_EQ(NoiseInspector::FastFloor(-0.0), -1);
    EXPECT_EQ(NoiseInspector::FastFloor(-1.0), -2);
    EXPECT_EQ(NoiseInspector::FastFloor(-256.0), -257);
    EXPECT_EQ(NoiseInspector::FastFloor(1.0), 1);
    EXPECT_EQ(NoiseInspector::FastFloor(256.0), 256);
}

TEST(PerlinNoiseFastFloor, Stops_at_the_ends_of_an_int)
{
    EXPECT_EQ(NoiseInspector::FastFloor(k_Most - 0.5), k_Most - 1);
    EXPECT_EQ(NoiseInspector::FastFloor(k_Most), k_Most);
    EXPECT_EQ(NoiseInspector::FastFloor(k_Most + 0.5), k_Most);
    EXPECT_EQ(NoiseInspector::FastFloor(0x1p31), k_Most);
    EXPECT_EQ(NoiseInspector::FastFloor(k_Least + 2.0), k_Least + 1);
    EXPECT_EQ(NoiseInspector::FastFloor(k_Least + 1.5), k_Least + 1);
    EXPECT_EQ(NoiseInspector::FastFloor(k_Least + 1.0), k_Least);
    EXPECT_EQ(NoiseInspector::FastFloor(k_Least + 0.5), k_Least);
    EXPECT_EQ(NoiseInspector::FastFloor(k_Least), k_Least);
    EXPECT_EQ(NoiseInspector::FastFloor(k_Least - 0.5), k_Least);
    EXPECT_EQ(NoiseInspector::FastFloor(1e300), k_Most);
    EXPECT_EQ(NoiseInspector::FastFloor(-1e300), k_Least);
    EXPECT_EQ(NoiseInspector::FastFloor(k_Infinity), k_Most);
    EXPECT_EQ(NoiseInspector::FastFloor(-k_Infinity), k_Least);
    EXPECT_EQ(NoiseInspector::FastFloor(k_NaN), -1);
}

TEST(PerlinNoiseGradient, Of_one_dimension_is_the_sign_of_an_odd_hash)
{
    for (int h : {-3, -1, 1, 3, 255, k_Most})
    {
        EXPECT_EQ(NoiseInspector::grad1D(h, 1.5), 1.5) << h;
    }
    for (int h : {k_Least, -2, 0, 2, 254})
    {
        EXPECT_EQ(NoiseInspector::grad1D(h, 1.5), -1.5) << h;
    }
    EXPECT_TRUE(SameBits(NoiseInspector::grad1D(0, 0.0), -0.0));
    EXPECT_TRUE(SameBits(NoiseInspector::grad1D(1, 0.0), 0.0));
}

TEST(PerlinNoiseGradient, Of_two_dimensions_is_a_diagonal_by_two_bits)
{
    constexpr double diagonals[4][2] = {{1, 1}, {-1, 1}, {-1, -1}, {1, -1}};
    for (int h = -8; h < 24; ++h)
    {
        auto const & diagonal = diagonals[h & 3];
        EXPECT_EQ(NoiseInspector::grad2D(h, 3, 0), 3 * diagonal[0]) << h;
        EXPECT_EQ(NoiseInspector::grad2D(h, 0, 5), 5 * diagonal[1]) << h;
        EXPECT_EQ(NoiseInspector::grad2D(h, 3, 5), 3 * diagonal[0] + 5 * diagonal[1]) << h;
    }
}

TEST(PerlinNoiseGradient, Of_three_dimensions_is_an_edge_by_four_bits)
{
    constexpr double edges[16][3] = {{1, 1, 0},  {-1, 1, 0},  {1, -1, 0}, {-1, -1, 0}, {1, 0, 1},  {-1, 0, 1},
                                     {1, 0, -1}, {-1, 0, -1}, {0, 1, 1},  {0, -1, 1},  {0, 1, -1}, {0, -1, -1},
                                     {1, 1, 0},  {-1, 1, 0},  {0, 1, -1}, {0, -1, -1}};
    for (int h = -16; h < 64; ++h)
    {
        auto const & edge = edges[h & 15];
        EXPECT_EQ(NoiseInspector::grad3D(h, 3, 0, 0), 3 * edge[0]) << h;
        EXPECT_EQ(NoiseInspector::grad3D(h, 0, 5, 0), 5 * edge[1]) << h;
        EXPECT_EQ(NoiseInspector::grad3D(h, 0, 0, 7), 7 * edge[2]) << h;
        EXPECT_EQ(NoiseInspector::grad3D(h, 3, 5, 7), 3 * edge[0] + 5 * edge[1] + 7 * edge[2]) << h;
    }
}

TEST(PerlinNoiseGradient, Of_three_dimensions_does_not_read_the_component_that_is_0)
{
    EXPECT_EQ(NoiseInspector::grad3D(0, 3, 5, k_NaN), 8);
    EXPECT_EQ(NoiseInspector::grad3D(4, 3, k_NaN, 7), 10);
    EXPECT_EQ(NoiseInspector::grad3D(8, k_NaN, 5, 7), 12);
    EXPECT_EQ(NoiseInspector::grad3D(12, 3, 5, k_Infinity), 8);
    EXPECT_EQ(NoiseInspector::grad3D(15, k_Infinity, 5, 7), -12);
}

TEST(PerlinNoiseGradient, Of_four_dimensions_is_the_product_with_a_row_of_the_table)
{
    for (int h = 0; h < 32; ++h)
    {
        EXPECT_EQ(NoiseInspector::grad4D(h, 3, 5, 7, 11), Product(h, 3, 5, 7, 11)) << h;
    }
    EXPECT_EQ(NoiseInspector::grad4D(1, 3, 5, 7, 11), 5 + 7 - 11);
    EXPECT_EQ(NoiseInspector::grad4D(15, 3, 5, 7, 11), -3 - 7 - 11);
    EXPECT_EQ(NoiseInspector::grad4D(20, 3, 5, 7, 11), -3 + 5 + 11);
    // A component of 0 is a factor as any other.
    EXPECT_TRUE(std::isnan(NoiseInspector::grad4D(0, k_Infinity, 0, 0, 0)));
}

TEST(PerlinNoiseDot, Reads_as_many_values_as_there_are_coordinates)
{
    constexpr double g[4] = {2, 3, 5, 7};
    EXPECT_EQ(NoiseInspector::Dot2D(g, 11, 13), 2 * 11 + 3 * 13);
    EXPECT_EQ(NoiseInspector::Dot3D(g, 11, 13, 17), 2 * 11 + 3 * 13 + 5 * 17);
    EXPECT_EQ(NoiseInspector::Dot4D(g, 11, 13, 17, 19), 2 * 11 + 3 * 13 + 5 * 17 + 7 * 19);
    constexpr double two[4] = {2, 3, k_NaN, k_NaN};
    EXPECT_EQ(NoiseInspector::Dot2D(two, 11, 13), 61);
    constexpr double three[4] = {2, 3, 5, k_NaN};
    EXPECT_EQ(NoiseInspector::Dot3D(three, 11, 13, 17), 146);
    EXPECT_EQ(NoiseInspector::Dot3D(C3DPerlinNoise::grad3[3], 11, 13, 17), -24);
}

TEST(PerlinNoiseDot, Adds_from_the_first_to_the_last)
{
    constexpr double g[4] = {1e17, 1, -1e17, 1};
    EXPECT_EQ(NoiseInspector::Dot3D(g, 1, 1, 1), 0);
    EXPECT_EQ(NoiseInspector::Dot4D(g, 1, 1, 1, 1), 1);
}

TEST(PerlinNoiseLerpgradt, Is_two_gradient_products_blended_along_t_for_every_pair_of_gradients)
{
    C3DPerlinNoise const noise;
    Random random(812);
    for (int first = 0; first < 32; ++first)
    {
        for (int second = 0; second < 32; ++second)
        {
            // All sums are exact, so that the two ways agree to the bit.
            double const x = ShortFraction(random);
            double const y = ShortFraction(random);
            double const z = ShortFraction(random);
            double const t = ShortFraction(random);
            double const weight = random.Integer(0, 16) / 16.0;
            int const p31[] = {31 - first, first, second, 31 - second};
            EXPECT_EQ((noise.*NoiseInspector::lerpgradt)(BlendsAt(weight).data(), p31, 1, x, y, z, t),
                      BlendedAlongT(first, second, weight, x, y, z, t))
                << first << ' ' << second << ' ' << weight;
        }
    }
}

TEST(PerlinNoiseLerpgradt, Weighs_the_columns_of_the_callers_table_as_they_are)
{
    C3DPerlinNoise const noise;
    // Gradients (0, 1, 1, 1) and (0, 1, 1, -1): codes 4, 8, 8, 6 and 5 for the second corner.
    constexpr int p31[] = {0, 1};
    constexpr double w[9] = {1e3, 1e4, 1e5, 1e6, 2, 3, 5, 1e7, 7};
    EXPECT_EQ((noise.*NoiseInspector::lerpgradt)(w, p31, 0, 11, 13, 17, 19), 11 * 2 + 13 * 7 + 17 * 7 + 19 * 5 + 3);
    // From the first to the last, the term of the second corner at the end.
    constexpr double order[9] = {0, 0, 0, 0, 1e17, 1, 1, 0, -1e17};
    EXPECT_EQ((noise.*NoiseInspector::lerpgradt)(order, p31, 0, 1, 1, 0, 1), 2);
    EXPECT_EQ((noise.*NoiseInspector::lerpgradt)(order, p31, 0, 1, 0, 1, 1), 2);
    constexpr double last[9] = {0, 0, 0, 0, 1, 1e17, -1e17, 0, 0};
    EXPECT_EQ((noise.*NoiseInspector::lerpgradt)(last, p31, 0, 1, 1, 0, 1), 0);
}

TEST(PerlinNoiseLerpgradt, Reads_the_table_that_a_slot_has_up_to_its_last_pair)
{
    C3DPerlinNoise noise(4711);
    signal_test::TableOwner const owner(noise);
    int const * const p31 = (noise.*NoiseInspector::GetP31Table)(0);
    int const * const pairs = (noise.*NoiseInspector::GetHashHashTable)(0);
    auto const w = BlendsAt(0.25);
    for (int i = 0; i < 511; ++i)
    {
        auto const & row = NoiseInspector::grad4hashhash[pairs[i]];
        auto const column = [&](int k) { return w[static_cast<std::size_t>(row[k])]; };
        EXPECT_EQ((noise.*NoiseInspector::lerpgradt)(w.data(), p31, i, 0.5, 0.25, -0.75, 0.125),
                  0.5 * column(0) + 0.25 * column(1) - 0.75 * column(2) + 0.125 * column(3) + column(4))
            << i;
    }
}

TEST(PerlinNoiseLerpgradxt, Blends_two_of_them_along_x)
{
    C3DPerlinNoise noise(99);
    signal_test::TableOwner const owner(noise);
    int const * const p31 = (noise.*NoiseInspector::GetP31Table)(0);
    Random random(813);
    for (int round = 0; round < 1000; ++round)
    {
        int const i = random.Integer(0, 510);
        int const j = random.Integer(0, 510);
        double const x = ShortFraction(random);
        double const y = ShortFraction(random);
        double const z = ShortFraction(random);
        double const t = ShortFraction(random);
        double const weight = random.Integer(0, 16) / 16.0;
        double const f = random.Integer(-8, 24) / 16.0;
        double const a = BlendedAlongT(p31[i], p31[i + 1], weight, x, y, z, t);
        double const b = BlendedAlongT(p31[j], p31[j + 1], weight, x - 1, y, z, t);
        EXPECT_EQ((noise.*NoiseInspector::lerpgradxt)(BlendsAt(weight).data(), f, p31, i, j, x, y, z, t),
                  a + f * (b - a))
            << i << ' ' << j;
    }
}

TEST(PerlinNoiseLerpgradxt, Starts_from_the_first_of_them)
{
    C3DPerlinNoise const noise;
    constexpr int p31[] = {0, 0, 31, 31};
    auto const w = BlendsAt(0.5);
    // The products are 1e17 - 1/2 and about -1e17: the weight 0 gives the first, the weight 1 loses what is small.
    double const first = (noise.*NoiseInspector::lerpgradt)(w.data(), p31, 0, 0, 1e17, 0, 0);
    double const second = (noise.*NoiseInspector::lerpgradt)(w.data(), p31, 2, -1, 1e17, 0, 0);
    EXPECT_EQ((noise.*NoiseInspector::lerpgradxt)(w.data(), 0, p31, 0, 2, 0, 1e17, 0, 0), first);
    EXPECT_EQ((noise.*NoiseInspector::lerpgradxt)(w.data(), 1, p31, 0, 2, 0, 1e17, 0, 0), (second - first) + first);
}
