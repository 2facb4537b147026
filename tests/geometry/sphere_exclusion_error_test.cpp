#include "geometry/constraint_checks.h"
#include "geometry/sphere_inspector.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{

using namespace geometry_test;
using test_support::Random;
using test_support::SameBits;

constexpr double k_Pi = 3.14159265358979323846;

Vector BetterTranslation(C3DBaseSphere const & sphere, Vector const & direction, Vector translation)
{
    EXPECT_EQ(math::detail::SphereInspector::FindBetterTranslation(sphere, direction, translation), S_OK);
    return translation;
}

TEST(Better_translation, Leads_from_a_point_inside_to_the_surface_along_the_direction)
{
    Random random(20250);
    for (int i = 0; i < 1000; ++i)
    {
        double const radius = random.Uniform(0.5, 3.0);
        C3DBaseSphere const sphere(radius, RandomVector(random, 5));
        Vector point = RandomVector(random, 1);
        point.SetLength(random.Uniform(0.0, 0.999) * radius);
        Vector const direction = RandomVector(random, 7);
        Vector const step = BetterTranslation(sphere, direction, Vector().Negate(point));
        EXPECT_NEAR(Vector().Add(point, step).GetLength(), radius, 1e-9);
        EXPECT_NEAR(step.GetLength() * direction.GetLength(),
                    step.X * direction.X + step.Y * direction.Y + step.Z * direction.Z, 1e-12);
    }
}

TEST(Better_translation, Is_zero_for_a_direction_of_zero)
{
    EXPECT_TRUE(SameBits(BetterTranslation(C3DBaseSphere(2), Vector(0, 0, 0), Vector(1, 0, 0)), Vector(0, 0, 0)));
}

TEST(Better_translation, Is_a_direction_of_a_trillionth_as_it_stands)
{
    ASSERT_EQ(Vector(0, 1e-12, 0).GetLength(), 1e-12);
    EXPECT_TRUE(
        SameBits(BetterTranslation(C3DBaseSphere(2), Vector(0, 1e-12, 0), Vector(1, 0, 0)), Vector(0, 1e-12, 0)));
    EXPECT_GT(BetterTranslation(C3DBaseSphere(2), Vector(0, 1.0000001e-12, 0), Vector(1, 0, 0)).Y, 1);
}

TEST(Better_translation, Takes_the_angle_to_a_null_translation_for_zero)
{
    Vector const step = BetterTranslation(C3DBaseSphere(2), Vector(0, 0, 3), Vector(0, 0, 0));
    EXPECT_TRUE(AreAlmostEqual(step, Vector(0, 0, 2), 1e-15));
}

TEST(Better_translation, Takes_a_sine_above_one_for_a_right_angle)
{
    // A point out by 10 across the direction: the angles are right ones and the cosine of their sum -1.
    EXPECT_NEAR(BetterTranslation(C3DBaseSphere(2), Vector(1, 0, 0), Vector(0, 10, 0)).X, 10 - 2, 1e-14);
    // Of 45 degrees, whose sine is 7.07 of the radius 2 all the same.
    double const squared = 4 + 200 + 2 * 2 * std::sqrt(200.0) * std::cos(0.75 * k_Pi);
    EXPECT_NEAR(BetterTranslation(C3DBaseSphere(2), Vector(1, 0, 0), Vector(10, 10, 0)).X, std::sqrt(squared), 1e-12);
    // Just below: the sine is 1 within rounding, and its arc a right angle within the root of that.
    EXPECT_NEAR(BetterTranslation(C3DBaseSphere(2), Vector(1, 0, 0), Vector(0, 1.999999, 0)).X,
                std::sqrt(4 - 1.999999 * 1.999999), 1e-9);
}

TEST(Better_translation, Goes_the_whole_way_for_a_point_straight_ahead_or_behind)
{
    EXPECT_NEAR(BetterTranslation(C3DBaseSphere(2), Vector(1, 0, 0), Vector(1.5, 0, 0)).X, 3.5, 1e-14);
    EXPECT_NEAR(BetterTranslation(C3DBaseSphere(2), Vector(1, 0, 0), Vector(-1.5, 0, 0)).X, 0.5, 1e-14);
}

TEST(Better_translation, Is_zero_where_rounding_leaves_a_negative_square)
{
    // A point on the surface or next to it, which the direction leads out of: no way at all, within rounding.
    Random random(20257);
    for (int i = 0; i < 1000; ++i)
    {
        double const radius = random.Uniform(1.0, 4.0);
        double const length = radius * (1 + random.Integer(-8, 8) * 0x1p-52);
        Vector const step = BetterTranslation(C3DBaseSphere(radius), Vector(1, 0, 0), Vector(-length, 0, 0));
        EXPECT_GE(step.X, 0);
        EXPECT_LT(step.X, 1e-6);
    }
}

TEST(Better_translation, Does_not_look_at_the_center)
{
    EXPECT_TRUE(SameBits(BetterTranslation(C3DBaseSphere(2, Vector(7, 8, 9)), Vector(1, 2, 3), Vector(1, 0, 0)),
                         BetterTranslation(C3DBaseSphere(2), Vector(1, 2, 3), Vector(1, 0, 0))));
}

TEST(Better_translation, May_share_its_operands)
{
    Vector both(0, 1.5, 0);
    math::detail::SphereInspector::FindBetterTranslation(C3DBaseSphere(2), both, both);
    EXPECT_TRUE(AreAlmostEqual(both, Vector(0, 3.5, 0), 1e-14));
}

TEST(Better_translation, Is_no_number_where_the_translation_is_none)
{
    EXPECT_TRUE(std::isnan(BetterTranslation(C3DBaseSphere(2), Vector(1, 0, 0), Vector(k_Nan, 0, 0)).X));
}

TEST(Exclusion_error, Is_zero_for_a_primitive_wholly_outside_or_on_the_surface)
{
    EXPECT_TRUE(SameBits(k_Exclude.AskLocal(C3DBaseSphere(2), {Vector(3, 0, 0), Vector(0, -5, 1)}), Vector(0, 0, 0)));
    EXPECT_TRUE(SameBits(k_Exclude.AskLocal(C3DBaseSphere(2), {Vector(2, 0, 0), Vector(0, -2, 0)}), Vector(0, 0, 0)));
    EXPECT_TRUE(SameBits(k_Exclude.AskLocal(C3DBaseSphere(2), {Vector(2, 0, 0), Vector(0, -3, 0)}), Vector(0, 0, 0)));
    EXPECT_TRUE(SameBits(k_Exclude.AskLocal(C3DBaseSphere(2), {}), Vector(0, 0, 0)));
}

TEST(Exclusion_error, Brings_one_point_to_the_surface_the_short_way)
{
    for (Vector const & point : {Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, -1), Vector(0.6, -0.8, 0)})
    {
        // The mean is against the step: the target is turned to the side of the point.
        EXPECT_TRUE(AreAlmostEqual(k_Exclude.AskLocal(C3DBaseSphere(2), {point}), point, 1e-14));
    }
}

TEST(Exclusion_error, Leads_up_from_a_point_at_the_center)
{
    EXPECT_TRUE(AreAlmostEqual(k_Exclude.AskLocal(C3DBaseSphere(2), {Vector(0, 0, 0)}), Vector(0, 2, 0), 1e-15));
}

TEST(Exclusion_error, Turns_to_the_side_of_the_mean_beyond_a_trillionth)
{
    // A far point decides on which side the mean lies: the deepest point is at (0.5, 0, 0).
    auto const errorWith = [](double far) {
        return k_Exclude.AskLocal(C3DBaseSphere(2), {Vector(0.5, 0, 0), Vector(far, 9, 0)}).X;
    };
    EXPECT_NEAR(errorWith(9), 1.5, 1e-13) << "out on the side of the point";
    EXPECT_NEAR(errorWith(-9), -2.5, 1e-13) << "through the center to the side of the mean";
    // The product of the mean with minus the offset is -1/4 (0.5 + far).
    EXPECT_NEAR(errorWith(-0.5), -2.5, 1e-13) << "no side";
    EXPECT_NEAR(errorWith(-0.5 + 3.9e-12), -2.5, 1e-13) << "within a trillionth";
    EXPECT_NEAR(errorWith(-0.5 + 4.1e-12), 1.5, 1e-13);
}

TEST(Exclusion_error, Goes_on_along_the_first_step)
{
    // After a step of 1.75 along X the second point, on that line too, is inside by 0.5.
    Points const points{Vector(0.25, 0, 0), Vector(-0.25, 0, 0), Vector(9, 0, 0)};
    // The last of the two deepest leads: to the side of the mean, through the center.
    Vector const error = k_Exclude.AskLocal(C3DBaseSphere(2), points);
    EXPECT_TRUE(AreAlmostEqual(error, Vector(2.25, 0, 0), 1e-13));
    Points const aside{Vector(1, 0, 0), Vector(0, 1.2, 0), Vector(9, 0, 0)};
    Vector const second = k_Exclude.AskLocal(C3DBaseSphere(2), aside);
    EXPECT_NEAR(second.Y, 0, 1e-13);
    EXPECT_NEAR(second.X, 1.6, 1e-12) << "until the second point has left at (1.6, 1.2, 0)";
}

TEST(Exclusion_error, Leaves_no_point_inside)
{
    Random random(20251);
    for (int i = 0; i < 2000; ++i)
    {
        PoseBranch branch(random, i % 2 == 0);
        double const radius = random.Uniform(0.5, 3.0);
        Points const points = InWorld(
            RandomPrimitive(random, RandomVector(random, radius), random.Uniform(0.0, 2.0) * radius), branch.leaf);
        Correction const correction = k_Exclude.Ask(C3DBaseSphere(radius), points, Vector(0, 0, 0), branch.leaf);
        EXPECT_EQ(correction.result, S_OK);
        for (Vector const & point : MovedLocal(points, correction.error, branch.leaf))
        {
            EXPECT_GE(point.GetLength(), radius - 1e-10);
        }
    }
}

TEST(Exclusion_error, Ends_at_once_for_an_infinite_sphere)
{
    EXPECT_TRUE(SameBits(
        k_Exclude.AskLocal(C3DBaseSphere(k_Infinity), {Vector(1, 2, 3)}),
        ConstraintBySteps(C3DBaseSphere(k_Infinity), {Vector(1, 2, 3)}, {0, 0, 0}, C3DXfoMatTpl<double>()).Exclude()));
}

TEST(Exclusion_error, Has_the_bits_of_its_steps)
{
    Random random(20252);
    ExpectBitsOfSteps(k_Exclude, random, 1000);
    ExpectBitsOfStepsForSpecialNumbers(k_Exclude, random, 1000);
}

} // namespace
