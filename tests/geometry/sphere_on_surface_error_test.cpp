#include "geometry/constraint_checks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{

using namespace geometry_test;
using test_support::Random;
using test_support::SameBits;

TEST(On_surface_error, Is_zero_for_a_primitive_that_touches_from_outside)
{
    Points const points{Vector(2, 0, 0), Vector(5, 1, 0)};
    EXPECT_TRUE(SameBits(k_PutOnSurface.AskLocal(C3DBaseSphere(2), points), Vector(0, 0, 0)));
}

TEST(On_surface_error, Of_no_points_is_zero)
{
    EXPECT_TRUE(SameBits(k_PutOnSurface.AskLocal(C3DBaseSphere(2), {}), Vector(0, 0, 0)));
}

TEST(On_surface_error, Brings_one_point_to_the_surface_from_either_side)
{
    for (double const length : {0.25, 1.0, 2.0, 3.5, 1e6})
    {
        for (Vector const & direction : {Vector(1, 0, 0), Vector(0, -1, 0), Vector(0, 0, 1), Vector(0.6, 0, -0.8)})
        {
            Vector const point = Vector().Mul(direction, length);
            Vector const error = k_PutOnSurface.AskLocal(C3DBaseSphere(2), {point});
            EXPECT_TRUE(AreAlmostEqual(error, Vector().Mul(direction, 2 - length), 1e-15 * (1 + length)));
        }
    }
}

TEST(On_surface_error, Leads_up_from_a_point_at_the_center)
{
    EXPECT_TRUE(AreAlmostEqual(k_PutOnSurface.AskLocal(C3DBaseSphere(2), {Vector(0, 0, 0)}), Vector(0, 2, 0), 1e-15));
}

TEST(On_surface_error, Turns_to_the_side_of_the_mean_below_a_trillionth)
{
    // A far point decides on which side the mean lies: the nearest point is at (0.5, 0, 0).
    auto const errorWith = [](double far) {
        return k_PutOnSurface.AskLocal(C3DBaseSphere(2), {Vector(0.5, 0, 0), Vector(far, 9, 0)}).X;
    };
    EXPECT_NEAR(errorWith(9), 1.5, 1e-13) << "out on the side of the point";
    EXPECT_NEAR(errorWith(-9), -2.5, 1e-13) << "through the center to the side of the mean";
    // The product of the mean with the offset is 1/4 (0.5 + far).
    EXPECT_NEAR(errorWith(-0.5), -2.5, 1e-13) << "no side";
    EXPECT_NEAR(errorWith(-0.5 + 3.9e-12), -2.5, 1e-13) << "within a trillionth";
    EXPECT_NEAR(errorWith(-0.5 + 4.1e-12), 1.5, 1e-13);
}

TEST(On_surface_error, Moves_a_primitive_wholly_on_the_surface_that_the_center_divides)
{
    Points const points{Vector(2, 0, 0), Vector(-2, 0, 0)};
    EXPECT_TRUE(AreAlmostEqual(k_PutOnSurface.AskLocal(C3DBaseSphere(2), points), Vector(-4, 0, 0), 1e-14));
    Points const onOneSide{Vector(2, 0, 0), Vector(0, 2, 0)};
    EXPECT_TRUE(AreAlmostEqual(k_PutOnSurface.AskLocal(C3DBaseSphere(2), onOneSide), Vector(0, 0, 0), 1e-14));
}

TEST(On_surface_error, Goes_on_along_the_first_step)
{
    // The second point is still inside when the first has come to the surface along X.
    Points const points{Vector(0.5, 0, 0), Vector(0, 1.2, 0)};
    Vector const error = k_PutOnSurface.AskLocal(C3DBaseSphere(2), points);
    EXPECT_NEAR(error.X, 1.6, 1e-11) << "until the second point has come to it at (1.6, 1.2, 0)";
    EXPECT_NEAR(error.Y, 0, 1e-13);
    // So it does where another point is too far away to be moved by the steps.
    Points const withFarPoint{points[0], points[1], Vector(1e20, 0, 0)};
    EXPECT_NEAR(k_PutOnSurface.AskLocal(C3DBaseSphere(2), withFarPoint).X, 1.6, 1e-11);
}

TEST(On_surface_error, Never_goes_back_and_may_leave_points_inside)
{
    // Through the center by 3, which brings the second point in to (0.5, 1, 0). Out for it is back.
    Points const points{Vector(1, 0, 0), Vector(3.5, 1, 0), Vector(-9, 9, 0)};
    EXPECT_TRUE(AreAlmostEqual(k_PutOnSurface.AskLocal(C3DBaseSphere(2), points), Vector(-3, 0, 0), 1e-14));
}

TEST(On_surface_error, Keeps_a_first_step_of_a_trillionth_as_it_stands_and_takes_none)
{
    C3DBaseSphere const sphere(1);
    EXPECT_TRUE(SameBits(k_PutOnSurface.AskLocal(sphere, {Vector(1 + 9e-13, 0, 0)}), Vector(0, 0, 0)));
    EXPECT_NEAR(k_PutOnSurface.AskLocal(sphere, {Vector(1 + 1.1e-12, 0, 0)}).X, -1.1e-12, 3e-16);
}

TEST(On_surface_error, Leaves_the_nearest_point_on_the_surface)
{
    Random random(20253);
    for (int i = 0; i < 2000; ++i)
    {
        PoseBranch branch(random, i % 2 == 0);
        double const radius = random.Uniform(0.5, 3.0);
        // The points lie within half a radius of their middle.
        Points const points =
            InWorld(RandomPrimitive(random, RandomVector(random, 4 * radius), 0.28 * radius), branch.leaf);
        Correction const correction = k_PutOnSurface.Ask(C3DBaseSphere(radius), points, Vector(0, 0, 0), branch.leaf);
        EXPECT_EQ(correction.result, S_OK);
        double nearest = k_Infinity;
        for (Vector const & point : MovedLocal(points, correction.error, branch.leaf))
        {
            nearest = std::min(nearest, point.GetLength());
        }
        EXPECT_NEAR(nearest, radius, 1e-9);
    }
}

TEST(On_surface_error, Ends_after_a_hundred_thousand_steps_where_numbers_are_coarser_than_the_surface)
{
    // At this radius neighbouring numbers are farther apart than the surface is thick: the last steps go back and
    // forth by rounding.
    Random random(20254);
    constexpr double radius = 1e5;
    C3DBaseSphere const sphere(radius);
    int endless = 0;
    for (int i = 0; i < 400 && endless == 0; ++i)
    {
        Points const points = RandomPrimitive(random, RandomVector(random, 2 * radius), radius);
        ConstraintBySteps steps(sphere, points, {0, 0, 0}, C3DXfoMatTpl<double>());
        Vector const expected = steps.PutOnSurface();
        if (steps.Steps() == ConstraintBySteps::k_MostSteps)
        {
            EXPECT_TRUE(SameBits(k_PutOnSurface.AskLocal(sphere, points), expected));
            ++endless;
        }
    }
    EXPECT_EQ(endless, 1);
}

TEST(On_surface_error, Has_the_bits_of_its_steps)
{
    Random random(20255);
    ExpectBitsOfSteps(k_PutOnSurface, random, 1000);
    ExpectBitsOfStepsForSpecialNumbers(k_PutOnSurface, random, 1000);
}

} // namespace
