/// The surface of the sphere as a function of two parameters, and back.

#include "geometry/vector_checks.h"
#include "math/platform/result.h"
#include "math/sphere.h"

#include <gtest/gtest.h>

#include <numbers>

using namespace geometry_test;

namespace
{

constexpr double k_Rounding = 1e-15;

Vector NormalAt(double u, double v)
{
    // Neither the radius nor the center counts.
    Vector normal = MarkedVector();
    EXPECT_EQ(C3DBaseSphere(7, Vector(1, 2, 3)).GetNormal(u, v, normal), S_OK);
    return normal;
}

Vector PositionAt(C3DBaseSphere const & sphere, double u, double v)
{
    Vector point = MarkedVector();
    EXPECT_EQ(sphere.GetPos(u, v, point), S_OK);
    return point;
}

struct Parameters
{
    double u = k_Mark;
    double v = k_Mark;
};

Parameters Project(C3DBaseSphere const & sphere, Vector const & point)
{
    Parameters result;
    EXPECT_EQ(sphere.ProjectOn(point, result.u, result.v), S_OK);
    return result;
}

} // namespace

TEST(SphereSurface, Normal_goes_around_Y_from_X_over_minus_Z)
{
    EXPECT_TRUE(IsNear(NormalAt(0, 0.5), Vector(1, 0, 0), k_Rounding));
    EXPECT_TRUE(IsNear(NormalAt(0.25, 0.5), Vector(0, 0, -1), k_Rounding));
    EXPECT_TRUE(IsNear(NormalAt(0.5, 0.5), Vector(-1, 0, 0), k_Rounding));
    EXPECT_TRUE(IsNear(NormalAt(0.75, 0.5), Vector(0, 0, 1), k_Rounding));
}

TEST(SphereSurface, Normal_goes_from_plus_Y_to_minus_Y)
{
    double const half = std::numbers::sqrt2 / 2;
    for (double const u : {0.0, 0.3, 0.8})
    {
        EXPECT_TRUE(IsNear(NormalAt(u, 0), Vector(0, 1, 0), k_Rounding));
        EXPECT_TRUE(IsNear(NormalAt(u, 1), Vector(0, -1, 0), k_Rounding));
    }
    EXPECT_TRUE(IsNear(NormalAt(0, 0.25), Vector(half, half, 0), k_Rounding));
    EXPECT_TRUE(IsNear(NormalAt(0, 0.75), Vector(half, -half, 0), k_Rounding));
    EXPECT_TRUE(IsNear(NormalAt(0.125, 0.25), Vector(0.5, half, -0.5), k_Rounding));
}

TEST(SphereSurface, Parameters_are_not_reduced)
{
    // Once around in v changes the sign of the ring, so that a reduction to 0.25 would show.
    double const half = std::numbers::sqrt2 / 2;
    EXPECT_TRUE(IsNear(NormalAt(0, 1.25), Vector(-half, -half, 0), k_Rounding));
    EXPECT_TRUE(IsNear(NormalAt(0, -0.25), Vector(-half, half, 0), k_Rounding));
    EXPECT_TRUE(IsNear(NormalAt(1.25, 0.5), Vector(0, 0, -1), k_Rounding));
    EXPECT_TRUE(IsNear(NormalAt(-0.25, 0.5), Vector(0, 0, 1), k_Rounding));
    EXPECT_TRUE(HasBits(NormalAt(k_Nan, 0.5), Vector(k_Nan, std::cos(0.5 * std::numbers::pi), k_Nan)));
    EXPECT_TRUE(HasBits(NormalAt(0.5, k_Infinity), Vector(k_Nan, k_Nan, k_Nan)));
}

TEST(SphereSurface, Position_is_the_radius_along_the_normal_from_the_center)
{
    C3DBaseSphere const sphere(7, Vector(1, 2, 3));
    EXPECT_TRUE(HasBits(PositionAt(sphere, 0, 0), Vector(1, 9, 3)));
    EXPECT_TRUE(IsNear(PositionAt(sphere, 0.25, 0.5), Vector(1, 2, -4), 1e-14));
    Random random(521);
    for (int i = 0; i < 300; ++i)
    {
        double const u = random.Uniform(-2.0, 2.0);
        double const v = random.Uniform(-2.0, 2.0);
        Vector const expected = Vector(1, 2, 3).Add(Vector().Mul(NormalAt(u, v), 7));
        EXPECT_TRUE(IsNear(PositionAt(sphere, u, v), expected, 1e-14));
        double distance = k_Mark;
        sphere.GetDistanceFrom(PositionAt(sphere, u, v), distance);
        EXPECT_NEAR(distance, 0, 1e-14);
    }
}

TEST(SphereSurface, Tangents_by_hand)
{
    Vector first = MarkedVector();
    Vector second = MarkedVector();
    C3DBaseSphere const sphere(7, Vector(1, 2, 3));
    EXPECT_EQ(sphere.GetTangents(0, 0.5, first, second), S_OK);
    EXPECT_TRUE(IsNear(first, Vector(0, 0, 1), k_Rounding));
    EXPECT_TRUE(IsNear(second, Vector(0, -1, 0), k_Rounding));
    EXPECT_EQ(sphere.GetTangents(0.25, 0.5, first, second), S_OK);
    EXPECT_TRUE(IsNear(first, Vector(1, 0, 0), k_Rounding));
    EXPECT_TRUE(IsNear(second, Vector(0, -1, 0), k_Rounding));
    EXPECT_EQ(sphere.GetTangents(0, 0, first, second), S_OK);
    EXPECT_TRUE(IsNear(first, Vector(0, 0, 1), k_Rounding)) << "at the poles too";
    EXPECT_TRUE(IsNear(second, Vector(1, 0, 0), k_Rounding));
    EXPECT_EQ(sphere.GetTangents(0, k_Nan, first, second), S_OK);
    EXPECT_TRUE(IsNear(first, Vector(0, 0, 1), k_Rounding)) << "the first one does not read v";
    EXPECT_TRUE(std::isnan(second.X) && std::isnan(second.Y) && std::isnan(second.Z));
}

TEST(SphereSurface, Tangents_run_against_u_and_along_v)
{
    Random random(522);
    C3DBaseSphere const sphere(7, Vector(1, 2, 3));
    double const step = 1e-5;
    for (int i = 0; i < 300; ++i)
    {
        double const u = random.Uniform(0.0, 1.0);
        double const v = random.Uniform(0.05, 0.95);
        Vector first;
        Vector second;
        sphere.GetTangents(u, v, first, second);
        Vector alongU = Vector().Sub(NormalAt(u - step, v), NormalAt(u + step, v));
        Vector alongV = Vector().Sub(NormalAt(u, v + step), NormalAt(u, v - step));
        alongU.Normalize();
        alongV.Normalize();
        EXPECT_TRUE(IsNear(first, alongU, 1e-8)) << u << ' ' << v;
        EXPECT_TRUE(IsNear(second, alongV, 1e-8)) << u << ' ' << v;
        EXPECT_NEAR(first.GetLength(), 1, k_Rounding);
        EXPECT_NEAR(second.GetLength(), 1, k_Rounding);
    }
}

TEST(SphereSurface, Second_tangent_takes_the_normal_made_unit)
{
    Random random(526);
    for (int i = 0; i < 100; ++i)
    {
        double const u = random.Uniform(0.0, 1.0);
        double const v = random.Uniform(0.0, 1.0);
        Vector first;
        Vector second;
        C3DBaseSphere().GetTangents(u, v, first, second);
        Vector unit = NormalAt(u, v);
        unit.Normalize();
        EXPECT_TRUE(HasBits(second, Vector().SetCross(unit, first))) << u << ' ' << v;
    }
}

TEST(SphereSurface, ProjectOn_the_axes)
{
    C3DBaseSphere const sphere(7, Vector(1, 2, 3));
    struct Row
    {
        Vector offset;
        double u;
        double v;
    };
    Row const rows[] = {{{2, 0, 0}, 0, 0.5},    {{0, 0, -2}, 0.25, 0.5}, {{-2, 0, 0}, 0.5, 0.5},
                        {{0, 0, 2}, 0.75, 0.5}, {{0, 2, 0}, 0, 0},       {{0, -2, 0}, 0, 1},
                        {{3, 3, 0}, 0, 0.25},   {{3, -3, 0}, 0, 0.75},   {{1, 0, 1}, 0.875, 0.5}};
    for (Row const & row : rows)
    {
        Parameters const found = Project(sphere, Vector(1, 2, 3).Add(row.offset));
        EXPECT_NEAR(found.u, row.u, 1e-15) << row.offset;
        EXPECT_NEAR(found.v, row.v, 1e-15) << row.offset;
    }
}

TEST(SphereSurface, ProjectOn_the_pole_that_GetPos_gives_is_0_0)
{
    C3DBaseSphere const sphere(7, Vector(1, 2, 3));
    Parameters const found = Project(sphere, PositionAt(sphere, 0, 0));
    EXPECT_EQ(found.u, 0);
    EXPECT_EQ(found.v, 0);
}

TEST(SphereSurface, ProjectOn_a_point_within_the_tolerance_of_the_center_is_0_0)
{
    C3DBaseSphere const sphere(7);
    double const limit = 1e-12;
    for (double const sign : {1.0, -1.0})
    {
        Parameters const found = Project(sphere, Vector(-limit, sign * limit, limit));
        EXPECT_EQ(found.u, 0) << "the length is above the limit, the components are not";
        EXPECT_EQ(found.v, 0);
    }
    EXPECT_EQ(Project(sphere, Vector(0, 0, 0)).v, 0);
    EXPECT_EQ(Project(sphere, Vector(0, 0, 0)).u, 0);
    double const above = Above(limit);
    EXPECT_DOUBLE_EQ(Project(sphere, Vector(-above, 0, 0)).u, 0.5);
    EXPECT_DOUBLE_EQ(Project(sphere, Vector(0, -above, 0)).v, 1);
    EXPECT_DOUBLE_EQ(Project(sphere, Vector(0, 0, -above)).u, 0.25);
}

TEST(SphereSurface, ProjectOn_measures_from_the_center)
{
    C3DBaseSphere const sphere(7, Vector(100, 200, 300));
    Parameters const found = Project(sphere, Vector(100, 200, 300));
    EXPECT_EQ(found.u, 0);
    EXPECT_EQ(found.v, 0);
    EXPECT_DOUBLE_EQ(Project(sphere, Vector(0, 200, 300)).u, 0.5);
}

TEST(SphereSurface, ProjectOn_gives_parameters_from_0_to_1_both_included)
{
    C3DBaseSphere const sphere(7);
    EXPECT_EQ(Project(sphere, Vector(1, 0, 1e-20)).u, 1) << "just below a whole turn";
    EXPECT_EQ(Project(sphere, Vector(0, -1, 0)).v, 1);
    Random random(523);
    for (int i = 0; i < 1000; ++i)
    {
        Parameters const found = Project(sphere, RandomVector(random, 9));
        EXPECT_TRUE(found.u >= 0 && found.u <= 1) << found.u;
        EXPECT_TRUE(found.v >= 0 && found.v <= 1) << found.v;
    }
}

TEST(SphereSurface, ProjectOn_a_direction_with_a_NaN_gives_NaNs)
{
    C3DBaseSphere const sphere(7);
    EXPECT_TRUE(std::isnan(Project(sphere, Vector(5, k_Nan, 0)).v));
    EXPECT_EQ(Project(sphere, Vector(5, k_Nan, 0)).u, 0);
    EXPECT_TRUE(std::isnan(Project(sphere, Vector(k_Nan, 5, 0)).u));
    EXPECT_TRUE(std::isnan(Project(sphere, Vector(0, 5, k_Nan)).u));
}

TEST(SphereSurface, ProjectOn_a_NaN_beside_coordinates_of_the_center_is_not_the_center)
{
    C3DBaseSphere const sphere(7);
    for (Vector const & point : {Vector(k_Nan, 0, 0), Vector(0, k_Nan, 0), Vector(0, 0, k_Nan)})
    {
        EXPECT_TRUE(std::isnan(Project(sphere, point).v));
    }
    EXPECT_TRUE(std::isnan(Project(sphere, Vector(k_Nan, 0, 0)).u));
    EXPECT_TRUE(std::isnan(Project(sphere, Vector(0, 0, k_Nan)).u));
}

TEST(SphereSurface, ProjectOn_undoes_GetPos)
{
    Random random(524);
    for (int i = 0; i < 1000; ++i)
    {
        C3DBaseSphere const sphere(random.Uniform(0.5, 9.0), RandomVector(random, 5));
        double const u = random.Uniform(0.001, 0.999);
        double const v = random.Uniform(0.01, 0.99);
        Parameters const found = Project(sphere, PositionAt(sphere, u, v));
        EXPECT_NEAR(found.u, u, 1e-12);
        EXPECT_NEAR(found.v, v, 1e-12);
    }
}

TEST(SphereSurface, GetPos_undoes_ProjectOn_of_a_point_at_any_distance)
{
    Random random(525);
    for (int i = 0; i < 1000; ++i)
    {
        Vector const center = RandomVector(random, 5);
        C3DBaseSphere const sphere(random.Uniform(0.5, 9.0), center);
        Vector const point = RandomVector(random, 20);
        Parameters const found = Project(sphere, point);
        Vector toPoint = Vector().Sub(point, center);
        Vector toSurface = Vector().Sub(PositionAt(sphere, found.u, found.v), center);
        toPoint.Normalize();
        toSurface.Normalize();
        EXPECT_TRUE(IsNear(toSurface, toPoint, 1e-7)) << found.u << ' ' << found.v;
    }
}
