#include "clip/gradient_noise.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <set>

namespace
{

using Vector = C3DVector3Tpl<double>;

/// Places all over the lattice, below 0 and beyond its period too.
double RandomCoordinate(std::mt19937 & random)
{
    return std::uniform_real_distribution<double>(-700, 700)(random);
}

TEST(GradientNoise, Its_gradients_are_the_twelve_of_the_cube)
{
    clip::GradientNoise const noise(7);
    std::set<int> found;
    for (long long i = 0; i < 9; ++i)
    {
        for (long long j = 0; j < 9; ++j)
        {
            for (long long k = 0; k < 9; ++k)
            {
                Vector const gradient = noise.Gradient(i, j, k);
                auto const * const row =
                    std::find_if(std::begin(C3DPerlinNoise::grad3), std::end(C3DPerlinNoise::grad3),
                                 [&](auto const & g) { return Vector(g[0], g[1], g[2]) == gradient; });
                ASSERT_NE(row, std::end(C3DPerlinNoise::grad3)) << i << ", " << j << ", " << k;
                found.insert(static_cast<int>(row - std::begin(C3DPerlinNoise::grad3)));
            }
        }
    }
    EXPECT_EQ(found.size(), 12U);
}

// What the library gives for the lower faces of the first cell, whose coordinates are their own fractions.
TEST(GradientNoise, On_the_lower_faces_of_the_first_cell_it_is_the_noise_of_the_library)
{
    std::mt19937 random(11); // NOLINT(cert-msc51-cpp,bugprone-random-generator-seed)
    std::uniform_real_distribution<double> share(0, 1);
    for (unsigned long seed = 1; seed <= 20; ++seed)
    {
        clip::GradientNoise const noise(seed);
        double const s = share(random);
        double const t = share(random);
        double a = 0;
        double b = 0;
        double c = 0;
        noise.Source().DNoise(0, s, t, a, b, c);
        EXPECT_NEAR(noise.At(0, s, t), a, 1e-15);
        noise.Source().DNoise(s, 0, t, a, b, c);
        EXPECT_NEAR(noise.At(s, 0, t), b, 1e-15);
        noise.Source().DNoise(s, t, 0, a, b, c);
        EXPECT_NEAR(noise.At(s, t, 0), c, 1e-15);
    }
}

TEST(GradientNoise, At_lattice_points_it_is_zero_with_the_gradient_as_its_slope)
{
    clip::GradientNoise const noise(3);
    constexpr double k_Step = 1e-5;
    for (std::array<long long, 3> const & p :
         {std::array<long long, 3>{0, 0, 0}, {5, 9, 2}, {-1, -300, 17}, {255, 256, -256}})
    {
        auto const x = static_cast<double>(p[0]);
        auto const y = static_cast<double>(p[1]);
        auto const z = static_cast<double>(p[2]);
        EXPECT_EQ(noise.At(x, y, z), 0);
        Vector const gradient = noise.Gradient(p[0], p[1], p[2]);
        for (double const step : {k_Step, -k_Step})
        {
            EXPECT_NEAR(noise.At(x + step, y, z) / step, gradient.X, 1e-8);
            EXPECT_NEAR(noise.At(x, y + step, z) / step, gradient.Y, 1e-8);
            EXPECT_NEAR(noise.At(x, y, z + step) / step, gradient.Z, 1e-8);
        }
    }
}

TEST(GradientNoise, It_runs_on_smoothly_everywhere_and_keeps_its_bound)
{
    constexpr double k_Step = 1e-6;
    std::mt19937 random(5); // NOLINT(cert-msc51-cpp,bugprone-random-generator-seed)
    clip::GradientNoise const noise(99);
    double largest = 0;
    for (int i = 0; i < 8000; ++i)
    {
        // Every other place next to a face between two cells.
        double const x = i % 2 == 0 ? RandomCoordinate(random) : std::round(RandomCoordinate(random)) - k_Step / 2;
        double const y = RandomCoordinate(random);
        double const z = RandomCoordinate(random);
        double const here = noise.At(x, y, z);
        ASSERT_NEAR(noise.At(x + k_Step, y, z), here, 4 * k_Step) << x << ", " << y << ", " << z;
        largest = std::max(largest, std::abs(here));
    }
    EXPECT_LE(largest, clip::GradientNoise::k_Bound);
    EXPECT_GT(largest, 0.7);
}

// The worst that any gradients can do, at a fine grid of places in a cell: each corner contributes its largest product.
TEST(GradientNoise, No_choice_of_gradients_exceeds_the_bound)
{
    constexpr int k_Steps = 40;
    auto const fade = [](double t) { return ((t * 6 - 15) * t + 10) * t * t * t; };
    double largest = 0;
    for (int i = 0; i <= k_Steps; ++i)
    {
        for (int j = 0; j <= k_Steps; ++j)
        {
            for (int k = 0; k <= k_Steps; ++k)
            {
                std::array<double, 3> const place = {double(i) / k_Steps, double(j) / k_Steps, double(k) / k_Steps};
                double sum = 0;
                for (unsigned corner = 0; corner < 8; ++corner)
                {
                    double weight = 1;
                    std::array<double, 3> way{};
                    for (unsigned axis = 0; axis < 3; ++axis)
                    {
                        bool const isFar = (corner >> axis & 1U) != 0;
                        weight *= isFar ? fade(place[axis]) : 1 - fade(place[axis]);
                        way[axis] = std::abs(place[axis] - (isFar ? 1 : 0));
                    }
                    // The two largest of the three.
                    sum += weight * (way[0] + way[1] + way[2] - *std::min_element(way.begin(), way.end()));
                }
                largest = std::max(largest, sum);
            }
        }
    }
    EXPECT_LE(largest, clip::GradientNoise::k_Bound);
    EXPECT_GT(largest, 1);
}

TEST(GradientNoise, It_repeats_after_its_period_and_depends_on_the_seed)
{
    clip::GradientNoise const noise(1);
    clip::GradientNoise const same(1 + 0x100000000ULL);
    clip::GradientNoise const other(2);
    int differing = 0;
    for (int i = 0; i < 50; ++i)
    {
        double const x = i + 0.375;
        double const y = 3 * i - 70.25;
        double const z = 0.5 * i + 0.125;
        double const here = noise.At(x, y, z);
        EXPECT_EQ(noise.At(x + clip::GradientNoise::k_Period, y, z), here);
        EXPECT_EQ(noise.At(x, y - clip::GradientNoise::k_Period, z), here);
        EXPECT_EQ(noise.At(x, y, z + 4 * clip::GradientNoise::k_Period), here);
        EXPECT_EQ(same.At(x, y, z), here);
        differing += other.At(x, y, z) != here ? 1 : 0;
    }
    EXPECT_GT(differing, 45);
}

} // namespace
