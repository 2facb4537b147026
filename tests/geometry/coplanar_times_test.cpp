#include "math/deforming_collision.h"
#include "math/platform/result.h"
#include "math/polynomial_roots.h"

#include "deforming_motion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

using namespace geometry_test;

} // namespace

TEST(CoplanarTimes, A_plane_at_rest_is_crossed_once)
{
    Times const found = FindTimes(AgainstRestingTriangle(Fall(1, 2)));
    EXPECT_EQ(found.result, S_OK);
    EXPECT_EQ(found.count, 1U);
    EXPECT_DOUBLE_EQ(found.times[0], 0.5);
    ExpectUnwritten(found.times, 1);
}

TEST(CoplanarTimes, The_plane_may_come_to_the_point)
{
    Motion const motion{Rest(1, 2, 0), {{0, 0, -1}, {0, 0, 3}}, {{4, 0, -1}, {4, 0, 3}}, {{0, 8, -1}, {0, 8, 3}}};
    Times const found = FindTimes(motion);
    ASSERT_EQ(found.count, 1U);
    EXPECT_DOUBLE_EQ(found.times[0], 0.25);
}

TEST(CoplanarTimes, Times_outside_of_0_to_1_are_told_too)
{
    EXPECT_DOUBLE_EQ(FindTimes(AgainstRestingTriangle({{1, 2, 3}, {1, 2, 1}})).times[0], 1.5);
    EXPECT_DOUBLE_EQ(FindTimes(AgainstRestingTriangle({{1, 2, 1}, {1, 2, 3}})).times[0], -0.5);
}

TEST(CoplanarTimes, Where_the_plane_is_crossed_does_not_matter)
{
    Times const found = FindTimes(AgainstRestingTriangle(Fall(100, -70)));
    ASSERT_EQ(found.count, 1U);
    EXPECT_DOUBLE_EQ(found.times[0], 0.5);
}

TEST(CoplanarTimes, Points_that_stay_in_a_plane_give_time_0)
{
    for (Path const & p : {Rest(1, 2, 0), Path{{1, 2, 0}, {3, 5, 0}}})
    {
        Times const found = FindTimes(AgainstRestingTriangle(p));
        EXPECT_EQ(found.result, S_OK);
        ASSERT_EQ(found.count, 1U);
        EXPECT_EQ(found.times[0], 0);
    }
}

TEST(CoplanarTimes, A_constant_volume_has_none)
{
    for (Path const & p : {Rest(1, 2, 3), Path{{1, 2, 3}, {3, 5, 3}}})
    {
        Times const found = FindTimes(AgainstRestingTriangle(p));
        EXPECT_EQ(found.result, S_OK);
        EXPECT_EQ(found.count, 0U);
        ExpectUnwritten(found.times, 0);
    }
}

// Each vertex passes the point on an axis of its own, so that the volume is (t - r) (t - s) (t - u).
TEST(CoplanarTimes, Three_crossings_are_found)
{
    Path const a{{-0.25, 0, 0}, {0.75, 0, 0}};
    Path const b{{0, -0.5, 0}, {0, 0.5, 0}};
    Path const c{{0, 0, -2}, {0, 0, -1}};
    Times found = FindTimes({Rest(0, 0, 0), a, b, c});
    ASSERT_EQ(found.count, 3U);
    std::sort(found.times, found.times + 3);
    EXPECT_NEAR(found.times[0], 0.25, 1e-15);
    EXPECT_NEAR(found.times[1], 0.5, 1e-15);
    EXPECT_NEAR(found.times[2], 2, 1e-14);
}

TEST(CoplanarTimes, Two_crossings_are_found)
{
    Path const a{{-0.25, 0, 0}, {0.75, 0, 0}};
    Path const b{{0, -0.75, 0}, {0, 0.25, 0}};
    Times found = FindTimes({Rest(0, 0, 0), a, b, Rest(0, 0, 1)});
    ASSERT_EQ(found.count, 2U);
    std::sort(found.times, found.times + 2);
    EXPECT_NEAR(found.times[0], 0.25, 1e-15);
    EXPECT_NEAR(found.times[1], 0.75, 1e-15);
    ExpectUnwritten(found.times, 2);
}

TEST(CoplanarTimes, A_quadratic_volume_that_touches_zero_gives_none)
{
    Path const a{{-0.5, 0, 0}, {0.5, 0, 0}};
    Path const b{{0, -0.5, 0}, {0, 0.5, 0}};
    EXPECT_EQ(FindTimes({Rest(0, 0, 0), a, b, Rest(0, 0, 1)}).count, 0U);
}

TEST(CoplanarTimes, A_cubic_volume_that_touches_zero_gives_the_time_twice)
{
    // t t (t - 3)
    Path const a{{0, 0, 0}, {1, 0, 0}};
    Path const b{{0, 0, 0}, {0, 1, 0}};
    Path const c{{0, 0, -3}, {0, 0, -2}};
    Times const found = FindTimes({Rest(0, 0, 0), a, b, c});
    ASSERT_EQ(found.count, 3U);
    EXPECT_DOUBLE_EQ(found.times[0], 3);
    EXPECT_DOUBLE_EQ(found.times[1], 0);
    EXPECT_TRUE(SameBits(found.times[1], found.times[2]));
}

TEST(CoplanarTimes, The_tolerance_is_relative_to_all_coefficients)
{
    // The height falls from 1 by a share: the linear coefficient is that share of the constant one.
    auto const countFor = [](double share, double size)
    {
        Motion const motion{
            {{0, 0, size}, {0, 0, size * (1 - share)}}, Rest(0, 0, 0), Rest(size, 0, 0), Rest(0, size, 0)};
        return FindTimes(motion, 0.125).count;
    };
    for (double const size : {1.0, 0x1p-20, 0x1p20})
    {
        EXPECT_EQ(countFor(0.25, size), 1U);
        EXPECT_EQ(countFor(0.140625, size), 0U); // just below 0.125 (1 + share)
        EXPECT_EQ(countFor(0.1484375, size), 1U);
    }
}

TEST(CoplanarTimes, What_is_no_number_gives_none)
{
    for (double const odd : {k_Nan, k_Infinity})
    {
        Times const found = FindTimes(AgainstRestingTriangle({{1, 2, odd}, {1, 2, -1}}));
        EXPECT_EQ(found.result, S_OK);
        EXPECT_EQ(found.count, 0U);
        EXPECT_EQ(FindTimes({Fall(1, 2), Rest(odd, 0, 0), Rest(4, 0, 0), Rest(0, 8, 0)}).count, 0U);
    }
}

// On small integers the coefficients are exact, in whatever order they are summed up.
TEST(CoplanarTimes, Times_are_the_roots_of_the_volume)
{
    Random random(576);
    auto const randomPath = [&random]
    {
        double v[6];
        std::generate_n(v, 6, [&random] { return random.Integer(-9, 9); });
        return Path{{v[0], v[1], v[2]}, {v[3], v[4], v[5]}};
    };
    unsigned long counts[4] = {0, 0, 0, 0};
    for (int i = 0; i < 3000; ++i)
    {
        Path const p = randomPath();
        Path const a = randomPath();
        Path const b = randomPath();
        Motion const motion{p, a, b, randomPath()};
        // From the volumes at -1, 0, 1 and 2, by finite differences.
        double const before = Tetrahedron(motion, -1).Volume();
        double const constant = Tetrahedron(motion, 0).Volume();
        double const after = Tetrahedron(motion, 1).Volume();
        double const quadratic = (after + before) / 2 - constant;
        double const sum = (after - before) / 2; // of the linear and the cubic coefficient
        double const cubic = (Tetrahedron(motion, 2).Volume() - constant - 4 * quadratic - 2 * sum) / 6;
        Times expected;
        F3DGetCubicRealRoots(cubic, quadratic, sum - cubic, constant, &expected.count, &expected.times[0],
                             &expected.times[1], &expected.times[2], k_Tolerance);
        Times const found = FindTimes(motion);
        EXPECT_EQ(found.result, S_OK);
        EXPECT_EQ(found.count, expected.count);
        for (int k = 0; k < 3; ++k)
        {
            EXPECT_TRUE(SameBits(found.times[k], expected.times[k]));
        }
        ++counts[found.count];
    }
    EXPECT_GT(counts[1], 500U);
    EXPECT_GT(counts[3], 500U);
}

TEST(CoplanarTimes, At_every_time_the_volume_is_null)
{
    Random random(577);
    for (int i = 0; i < 3000; ++i)
    {
        Motion const motion = RandomMotion(random);
        Times const found = FindTimes(motion);
        for (unsigned long k = 0; k < found.count; ++k)
        {
            Tetrahedron const tetrahedron(motion, found.times[k]);
            double const size = tetrahedron.Size();
            // Roots close to each other, and far away, are good to half the digits.
            EXPECT_LE(std::abs(tetrahedron.Volume()), 1e-6 * size * size * size);
        }
    }
}
