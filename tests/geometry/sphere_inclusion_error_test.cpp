#include "geometry/constraint_checks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{

using namespace geometry_test;
using test_support::Random;
using test_support::SameBits;

TEST(Inclusion_error, Is_zero_for_a_primitive_that_is_inside)
{
    EXPECT_TRUE(SameBits(k_Include.AskLocal(C3DBaseSphere(2), {Vector(1, 0, 0), Vector(0, -1, 1)}), Vector(0, 0, 0)));
    EXPECT_TRUE(SameBits(k_Include.AskLocal(C3DBaseSphere(2), {Vector(0, 2, 0), Vector(0, 1, 0)}, Vector(0, 1, 0)),
                         Vector(0, 0, 0)))
        << "on the surface, partly";
}

TEST(Inclusion_error, Is_zero_for_a_primitive_on_the_surface_that_would_fit)
{
    EXPECT_TRUE(SameBits(k_Include.AskLocal(C3DBaseSphere(2), {Vector(2, 0, 0), Vector(0, 2, 0)}, Vector(1, 1, 0)),
                         Vector(0, 0, 0)));
}

TEST(Inclusion_error, Brings_one_point_to_the_surface)
{
    for (Vector const & point : {Vector(5, 0, 0), Vector(0, 5, 0), Vector(0, 0, -5), Vector(3, -4, 0)})
    {
        Vector const error = k_Include.AskLocal(C3DBaseSphere(2), {point}, point);
        Vector const expected = Vector().Mul(point, -3.0 / 5.0);
        EXPECT_TRUE(AreAlmostEqual(error, expected, 1e-14));
    }
}

TEST(Inclusion_error, Centers_the_reference_of_a_primitive_that_is_too_large)
{
    Points const points{Vector(10, 0, 0), Vector(20, 0, 0)};
    EXPECT_TRUE(SameBits(k_Include.AskLocal(C3DBaseSphere(2), points, Vector(15, 3, -4)), Vector(-15, -3, 4)));
}

TEST(Inclusion_error, Takes_a_primitive_wholly_on_the_surface_about_its_reference_for_too_large)
{
    Points const points{Vector(12, 0, 0), Vector(8, 0, 0)};
    EXPECT_TRUE(SameBits(k_Include.AskLocal(C3DBaseSphere(2), points, Vector(10, 0, 0)), Vector(-10, 0, 0)));
    // A point within makes it one that fits: it is pulled in, and not centered.
    Points const withMiddle{Vector(12, 0, 0), Vector(8, 0, 0), Vector(10, 0, 0)};
    Vector const error = k_Include.AskLocal(C3DBaseSphere(2), withMiddle, Vector(10, 0, 0));
    EXPECT_TRUE(AreAlmostEqual(error, Vector(-10, 0, 0), 1e-12));
}

TEST(Inclusion_error, Takes_points_on_the_surface_and_outside_for_too_large)
{
    Points const points{Vector(12, 0, 0), Vector(0, 0, 0)};
    EXPECT_TRUE(SameBits(k_Include.AskLocal(C3DBaseSphere(2), points, Vector(10, 0, 0)), Vector(-10, 0, 0)));
}

TEST(Inclusion_error, Of_no_points_centers_the_reference)
{
    EXPECT_TRUE(SameBits(k_Include.AskLocal(C3DBaseSphere(2), {}, Vector(5, 6, 7)), Vector(-5, -6, -7)));
}

TEST(Inclusion_error, Stops_within_a_ten_thousandth_of_the_radius)
{
    C3DBaseSphere const sphere(2);
    Vector const near(2 + 0.999 * 2e-4, 0, 0);
    EXPECT_TRUE(SameBits(k_Include.AskLocal(sphere, {near}, near), Vector(0, 0, 0)));
    Vector const beyond(2 + 1.001 * 2e-4, 0, 0);
    EXPECT_NEAR(k_Include.AskLocal(sphere, {beyond}, beyond).X, -1.001 * 2e-4, 1e-15);
}

/// Two points outside a sphere of radius 1. The step to the first, 0.1 along -X, takes the second to a gap of `next`.
Points PullingBothWays(double next)
{
    double const x = -0.5;
    double const squaredLength = (1 + next) * (1 + next) - 0.01 + 2 * x * 0.1;
    return {Vector(1.1, 0, 0), Vector(x, std::sqrt(squaredLength - x * x), 0)};
}

TEST(Inclusion_error, Stops_where_a_step_is_within_two_hundredths_of_the_last)
{
    // The difference over the sum is compared with a hundredth.
    for (double const next : {0.1, 0.1 * 0.9806, 0.1 * 1.0198})
    {
        Points const points = PullingBothWays(next);
        Vector const error = k_Include.AskLocal(C3DBaseSphere(1), points, Vector().SetMidpoint(points[0], points[1]));
        EXPECT_TRUE(AreAlmostEqual(error, Vector(-0.1, 0, 0), 1e-15)) << "though the second point is out by " << next;
    }
    for (double const next : {0.1 * 0.9794, 0.1 * 1.0206})
    {
        Points const points = PullingBothWays(next);
        Vector const error = k_Include.AskLocal(C3DBaseSphere(1), points, Vector().SetMidpoint(points[0], points[1]));
        EXPECT_LT(error.Y, -0.05);
    }
}

TEST(Inclusion_error, Gives_no_way_for_a_point_at_infinity)
{
    // The way of the point from its reference is no number, so that it counts as one that fits. The direction that the
    // pose gives it is none either, and the map to the world passes over that.
    PoseNode pose;
    pose.Local().SetRotation(0.5, 0.6, 0.7);
    Vector const point(k_Infinity, 0, 0);
    Correction const correction = k_Include.Ask(C3DBaseSphere(2), {point}, point, pose);
    EXPECT_EQ(correction.result, S_OK);
    EXPECT_TRUE(SameBits(correction.error, Vector(0, 0, 0)));
}

TEST(Inclusion_error, Falls_short_for_a_sphere_that_is_off_the_origin)
{
    // The step aims past the surface by the coordinate of the center.
    C3DBaseSphere const sphere(2, Vector(1.5, 0, 0));
    Vector const point(20, 0, 0);
    EXPECT_TRUE(AreAlmostEqual(k_Include.AskLocal(sphere, {point}, point), Vector(-15, 0, 0), 1e-13))
        << "to 5, where 3.5 would be on the surface";
}

TEST(Inclusion_error, Moves_a_primitive_that_fits_within_the_stated_closeness)
{
    Random random(20248);
    for (int i = 0; i < 2000; ++i)
    {
        PoseBranch branch(random, i % 2 == 0);
        double const radius = random.Uniform(0.5, 3.0);
        // Half of its size over the root of three leaves it a radius of half the sphere's.
        Vector const middle = RandomVector(random, 4 * radius);
        Points const points = InWorld(RandomPrimitive(random, middle, 0.28 * radius), branch.leaf);
        Vector const reference = InWorld({middle}, branch.leaf).front();
        Correction const correction = k_Include.Ask(C3DBaseSphere(radius), points, reference, branch.leaf);
        for (Vector const & point : MovedLocal(points, correction.error, branch.leaf))
        {
            EXPECT_LE(point.GetLength(), radius * 1.0001 + 1e-10);
        }
    }
}

TEST(Inclusion_error, Has_the_bits_of_its_steps)
{
    Random random(20249);
    ExpectBitsOfSteps(k_Include, random, 1000);
    ExpectBitsOfStepsForSpecialNumbers(k_Include, random, 200);
}

} // namespace
