/// Planes: construction, access, comparison, intersection with a line.

#include "math/plane.h"

#include "geometry/plane_parts.h"
#include "math/co_plane.h"

#include <type_traits>

using namespace geometry_test;

namespace
{

Vector const k_X(1, 0, 0);
Vector const k_Y(0, 1, 0);
Vector const k_Z(0, 0, 1);
Vector const k_Origin(1, 2, 3);

tagE3DAXISTYPE Axis(int value)
{
    return static_cast<tagE3DAXISTYPE>(value);
}

/// The outputs of an intersection with a line, marked.
struct Meeting
{
    Meeting(C3DPlane const & plane, C3DLine const & line, double sineLimit = 1e-6, double distanceLimit = 1e-6)
        : status(plane.LineIntersection(line, &u, &v, point, sineLimit, distanceLimit))
    {
    }

    bool AreOutputsUntouched() const { return u == k_Mark && v == k_Mark && SameBits(point, MarkedVector()); }

    double u = k_Mark;
    double v = k_Mark;
    Vector point = MarkedVector();
    tagE3D_INTERSECTION_STATUS status;
};

} // namespace

TEST(Plane, Default_plane_is_the_XY_plane)
{
    EXPECT_TRUE(Same(C3DPlane(), {Vector(0, 0, 0), k_Z, k_X, k_Y}));
}

TEST(Plane, Normal_axis_is_followed_by_the_tangents_in_cyclic_order)
{
    EXPECT_TRUE(Same(C3DPlane(k_Origin, E3D_AXIS_X), {k_Origin, k_X, k_Y, k_Z}));
    EXPECT_TRUE(Same(C3DPlane(k_Origin, E3D_AXIS_Y), {k_Origin, k_Y, k_Z, k_X}));
    for (int const axis : {2, 3, 7, -1})
    {
        EXPECT_TRUE(Same(C3DPlane(k_Origin, Axis(axis)), {k_Origin, k_Z, k_X, k_Y})) << axis;
    }
}

TEST(Plane, Normal_is_stored_as_given_with_tangents_of_its_orthogonal_basis)
{
    PlaneParts const expected(k_Origin, Vector(3, -4, 0.5), Vector(4, 3, 0), Vector(-1.5, 2, 25));
    EXPECT_TRUE(Same(C3DPlane(k_Origin, Vector(3, -4, 0.5)), expected));
    C3DPlane plane(k_Origin, E3D_AXIS_X);
    plane.SetNormal(Vector(3, -4, 0.5));
    EXPECT_TRUE(Same(plane, expected));
    plane.SetNormal(k_Z);
    EXPECT_TRUE(Same(plane, {k_Origin, k_Z, Vector(-1, 0, 0), Vector(0, -1, 0)}));
    plane.SetNormal(Vector(0, 0, 0));
    EXPECT_TRUE(Same(plane, {k_Origin, Vector(0, 0, 0), Vector(0, 0, 0), Vector(0, 0, 0)}));
}

TEST(Plane, Two_axes_span_the_plane_with_their_cross_product_as_normal)
{
    Vector const axes[] = {k_X, k_Y, k_Z};
    for (int first = 0; first < 3; ++first)
    {
        for (int second = 0; second < 3; ++second)
        {
            int const replaced = first == second ? (second + 1) % 3 : second;
            Vector normal;
            normal.SetCross(axes[first], axes[replaced]);
            EXPECT_TRUE(
                Same(C3DPlane(k_Origin, Axis(first), Axis(second)), {k_Origin, normal, axes[first], axes[replaced]}))
                << first << second;
        }
    }
    EXPECT_TRUE(Same(C3DPlane(k_Origin, Axis(1), Axis(1)), {k_Origin, k_X, k_Y, k_Z}));
    EXPECT_TRUE(Same(C3DPlane(k_Origin, Axis(2), Axis(2)), {k_Origin, k_Y, k_Z, k_X}));
    EXPECT_TRUE(Same(C3DPlane(k_Origin, Axis(1), Axis(0)), {k_Origin, Vector(0, 0, -1), k_Y, k_X}));
}

TEST(Plane, Values_that_name_no_axis_give_Z_as_tangent)
{
    Vector const null(0, 0, 0);
    EXPECT_TRUE(Same(C3DPlane(k_Origin, Axis(7), Axis(0)), {k_Origin, k_Y, k_Z, k_X}));
    EXPECT_TRUE(Same(C3DPlane(k_Origin, Axis(0), Axis(-1)), {k_Origin, Vector(0, -1, 0), k_X, k_Z}));
    EXPECT_TRUE(Same(C3DPlane(k_Origin, Axis(2), Axis(9)), {k_Origin, null, k_Z, k_Z}))
        << "they differ, so the second is not replaced";
    // Equal values out of range follow the cyclic order too.
    EXPECT_TRUE(Same(C3DPlane(k_Origin, Axis(3), Axis(3)), {k_Origin, Vector(-1, 0, 0), k_Z, k_Y}));
    EXPECT_TRUE(Same(C3DPlane(k_Origin, Axis(4), Axis(4)), {k_Origin, null, k_Z, k_Z}));
    EXPECT_TRUE(Same(C3DPlane(k_Origin, Axis(5), Axis(5)), {k_Origin, k_Y, k_Z, k_X}));
    EXPECT_TRUE(Same(C3DPlane(k_Origin, Axis(-1), Axis(-1)), {k_Origin, k_Y, k_Z, k_X}));
    int const greatest = std::numeric_limits<int>::max(); // 1 modulo 3
    EXPECT_TRUE(Same(C3DPlane(k_Origin, Axis(greatest), Axis(greatest)), {k_Origin, null, k_Z, k_Z}));
}

TEST(Plane, Two_vectors_give_a_normal_and_a_second_tangent_that_are_not_normalised)
{
    // (2, 0, 0) x (5, 3, 0) = (0, 0, 6), and that x (2, 0, 0) = (0, 12, 0).
    EXPECT_TRUE(Same(C3DPlane(k_Origin, Vector(2, 0, 0), Vector(5, 3, 0)),
                     {k_Origin, Vector(0, 0, 6), Vector(2, 0, 0), Vector(0, 12, 0)}));
}

TEST(Plane, SetTangents_keeps_the_length_of_the_second_and_makes_the_normal_unit)
{
    C3DPlane plane(k_Origin, E3D_AXIS_X);
    plane.SetTangents(Vector(2, 0, 0), Vector(4, 3, 0));
    EXPECT_TRUE(Same(plane, {k_Origin, k_Z, Vector(2, 0, 0), Vector(0, 5, 0)}));
    plane.SetTangents(Vector(0, 0, -2), Vector(0, 3, 0));
    EXPECT_TRUE(Same(plane, {k_Origin, k_X, Vector(0, 0, -2), Vector(0, 3, 0)}));
}

TEST(Plane, SetTangents_keeps_cross_products_not_above_the_limit)
{
    C3DPlane plane;
    plane.SetTangents(Vector(2, 0, 0), Vector(-4, 0, 0));
    EXPECT_TRUE(Same(plane, {Vector(0, 0, 0), Vector(0, 0, 0), Vector(2, 0, 0), Vector(0, 0, 0)})) << "parallel";
    plane.SetTangents(k_X, Vector(0, 1e-12, 0));
    EXPECT_TRUE(Same(plane, {Vector(0, 0, 0), Vector(0, 0, 1e-12), k_X, Vector(0, 1e-12, 0)})) << "at the limit";
    plane.SetTangents(k_X, Vector(0, Above(1e-12), 0));
    EXPECT_TRUE(IsNear(PlaneParts(plane).normal, k_Z, 1e-15));
    EXPECT_TRUE(IsNear(PlaneParts(plane).second, Vector(0, 1e-12, 0), 1e-27));
    // The normal is made unit, but its cross product with a tiny tangent stays as short as that.
    plane.SetTangents(Vector(1e-12, 0, 0), Vector(0, 8, 0));
    EXPECT_TRUE(IsNear(PlaneParts(plane).normal, k_Z, 1e-15));
    EXPECT_TRUE(IsNear(PlaneParts(plane).second, Vector(0, 1e-12, 0), 1e-27));
    plane.SetTangents(Vector(1e-11, 0, 0), Vector(0, 8, 0));
    EXPECT_TRUE(IsNear(PlaneParts(plane).second, Vector(0, 8, 0), 1e-14));
}

TEST(Plane, Set_copies_all_and_SetOrigin_the_origin_alone)
{
    C3DPlane const source = PlaneOfTangents(k_Origin, Vector(2, 1, 0), Vector(0.5, 3, 1));
    C3DPlane target(Vector(9, 9, 9), E3D_AXIS_X);
    target.Set(source);
    EXPECT_TRUE(Same(target, PlaneParts(source)));
    PlaneParts expected(source);
    expected.origin = Vector(k_Infinity, -0.0, 4);
    target.SetOrigin(expected.origin);
    EXPECT_TRUE(Same(target, expected));
}

TEST(Plane, Parameters_count_tangents_from_the_origin_and_matter_nowhere_else)
{
    C3DPlane const plane(k_Origin, Vector(2, 0, 0), Vector(5, 3, 0));
    Vector point = MarkedVector();
    EXPECT_EQ(plane.GetPos(3, -0.5, point), 0);
    EXPECT_TRUE(Same(point, Vector(7, -4, 3)));
    Vector first = MarkedVector();
    Vector second = MarkedVector();
    Vector normal = MarkedVector();
    EXPECT_EQ(plane.GetTangents(k_Nan, 7, first, second), 0);
    EXPECT_TRUE(Same(first, Vector(2, 0, 0)));
    EXPECT_TRUE(Same(second, Vector(0, 12, 0)));
    EXPECT_EQ(plane.GetNormal(k_Infinity, k_Nan, normal), 0);
    EXPECT_TRUE(Same(normal, Vector(0, 0, 6)));
}

TEST(Plane, Comparison_is_exact_in_each_of_the_twelve_components)
{
    // Each change of the matrix moves one component of the image of the XY plane; the normal follows the tangents.
    C3DPlane plane(k_Origin, Vector(2, 0, 0), Vector(5, 3, 0));
    C3DPlane other(plane);
    EXPECT_EQ(plane == other, 1);
    EXPECT_EQ(plane != other, 0);
    Vector const steps[] = {Vector(1e-15, 0, 0), Vector(0, 1e-15, 0), Vector(0, 0, 1e-15)};
    for (Vector const & step : steps)
    {
        C3DPlane moved(plane);
        moved.SetOrigin(Vector().Add(k_Origin, Vector().Mul(step, 4)));
        C3DPlane back(plane);
        back.SetOrigin(Vector().Sub(k_Origin, Vector().Mul(step, 4)));
        for (C3DPlane & changed : {std::ref(moved), std::ref(back)})
        {
            EXPECT_EQ(plane == changed, 0);
            EXPECT_EQ(changed == plane, 0);
            EXPECT_EQ(plane != changed, 1);
        }
        C3DPlane const atTangents = PlaneOfTangents(Vector(0, 0, 0), k_X, k_Y);
        C3DPlane atFirst = PlaneOfTangents(Vector(0, 0, 0), Vector().Add(k_X, step), k_Y);
        C3DPlane atSecond = PlaneOfTangents(Vector(0, 0, 0), k_X, Vector().Add(k_Y, step));
        EXPECT_EQ(atFirst == atTangents, 0) << step;
        EXPECT_EQ(atSecond == atTangents, 0) << step;
    }
}

TEST(Plane, Comparison_looks_at_the_normal_by_itself)
{
    // Both have null tangents, so that the normals alone tell them apart.
    Vector const null(0, 0, 0);
    C3DPlane shortNormal(null, Vector(1e-200, 2e-200, 3e-200));
    for (Vector const & normal :
         {Vector(1.5e-200, 2e-200, 3e-200), Vector(1e-200, 1e-200, 3e-200), Vector(1e-200, 2e-200, 4e-200)})
    {
        C3DPlane otherNormal(null, normal);
        EXPECT_EQ(shortNormal == otherNormal, 0);
        EXPECT_EQ(shortNormal != otherNormal, 1);
    }
    C3DPlane small(null, k_X, k_Y);                           // normal Z, second tangent Y
    C3DPlane great(null, Vector(2, 0, 0), Vector(0, 0.5, 0)); // normal Z, tangents (2, 0, 0) and (0, 2, 0)
    EXPECT_EQ(small == great, 0);
}

TEST(Plane, A_NaN_compares_equal_to_anything)
{
    C3DPlane plane(Vector(k_Nan, 2, 3), E3D_AXIS_Z);
    C3DPlane other(Vector(1, 2, 3), E3D_AXIS_Z);
    EXPECT_EQ(plane == other, 1);
    EXPECT_EQ(other == plane, 1);
    EXPECT_EQ(plane != other, 0);
    other.SetOrigin(Vector(1, 2, 4));
    EXPECT_EQ(plane == other, 0) << "the other components still count";
    C3DPlane zero;
    C3DPlane negativeZero(Vector(-0.0, -0.0, -0.0), E3D_AXIS_Z);
    EXPECT_EQ(zero == negativeZero, 1);
}

TEST(Plane, Comparison_takes_every_right_operand)
{
    C3DPlane plane;
    C3DPlane const constant;
    C3DCoPlane wrapped;
    C3DCoPlane const constantWrapped;
    EXPECT_EQ(plane == constant, 1);
    EXPECT_EQ(plane != constant, 0);
    EXPECT_EQ(plane == plane, 1);
    EXPECT_EQ(plane == C3DPlane(), 1);
    EXPECT_EQ(plane != C3DPlane(), 0);
    EXPECT_EQ(plane == C3DCoPlane(), 1);
    EXPECT_EQ(wrapped != C3DPlane(), 0);
    EXPECT_EQ(C3DPlane() == C3DPlane(), 1);
    EXPECT_EQ(C3DPlane() != plane, 0);
    EXPECT_EQ(C3DPlane() == constant, 1);
    EXPECT_EQ(plane == wrapped, 1);
    EXPECT_EQ(wrapped == plane, 1);
    EXPECT_EQ(wrapped == wrapped, 1);
    EXPECT_EQ(wrapped != constantWrapped, 0);
    EXPECT_EQ(wrapped == constant, 1);
    static_assert(std::is_same_v<decltype(plane == constant), int>);
    static_assert(std::is_same_v<decltype(plane != plane), int>);
}

TEST(Plane, Line_meets_the_plane_at_a_point)
{
    C3DPlane const plane(k_Origin, Vector(2, 0, 0), Vector(5, 3, 0)); // a normal of length 6
    Meeting const found(plane, C3DLine(Vector(5, 26, 7), Vector(0, 0, -3)));
    EXPECT_EQ(found.status, E3D_INTERSECTION_POINT);
    EXPECT_TRUE(Same(found.point, Vector(5, 26, 3)));
    EXPECT_EQ(found.u, 2);
    EXPECT_EQ(found.v, 2);
}

TEST(Plane, Intersection_substitutes_back_into_line_and_plane)
{
    Random random(504);
    for (int i = 0; i < 500; ++i)
    {
        C3DPlane const plane(RandomVector(random, 3), RandomVector(random, 3));
        C3DLine const line(RandomVector(random, 3), RandomVector(random, 3));
        Meeting const found(plane, line, 0.01);
        if (found.status != E3D_INTERSECTION_POINT)
        {
            continue;
        }
        double toPlane = 0;
        double toLine = 0;
        plane.GetDistanceFrom(found.point, toPlane);
        line.GetDistanceFrom(found.point, toLine);
        EXPECT_NEAR(toPlane, 0, 1e-11);
        EXPECT_NEAR(toLine, 0, 1e-11);
        Vector byParameters;
        plane.GetPos(found.u, found.v, byParameters);
        EXPECT_TRUE(IsNear(byParameters, found.point, 1e-10));
    }
}

TEST(Plane, Intersection_writes_the_coordinates_that_are_asked_for)
{
    C3DPlane const plane(k_Origin, E3D_AXIS_Z);
    C3DLine const line(Vector(5, 7, 9), E3D_AXIS_Z);
    double u = k_Mark;
    double v = k_Mark;
    Vector point = MarkedVector();
    EXPECT_EQ(plane.LineIntersection(line, nullptr, nullptr, point, 0.1, 0.1), E3D_INTERSECTION_POINT);
    EXPECT_TRUE(Same(point, Vector(5, 7, 3)));
    EXPECT_EQ(plane.LineIntersection(line, &u, nullptr, point, 0.1, 0.1), E3D_INTERSECTION_POINT);
    EXPECT_EQ(u, 4);
    EXPECT_EQ(plane.LineIntersection(line, nullptr, &v, point, 0.1, 0.1), E3D_INTERSECTION_POINT);
    EXPECT_EQ(v, 5);
}

TEST(Plane, Intersection_gives_0_for_a_coordinate_that_has_no_tangent)
{
    // Tangents whose squares vanish beside a unit normal: the first one, then the second one.
    C3DPlane noFirst;
    noFirst.SetTangents(Vector(1e-170, 0, 0), Vector(0, 1e170, 0));
    ASSERT_TRUE(IsNear(PlaneParts(noFirst).normal, k_Z, 1e-15));
    C3DLine const line(Vector(5, 7, 9), E3D_AXIS_Z);
    Meeting const withoutFirst(noFirst, line);
    EXPECT_EQ(withoutFirst.status, E3D_INTERSECTION_POINT);
    EXPECT_EQ(withoutFirst.u, 5e-170) << "the plain dot product";
    EXPECT_EQ(withoutFirst.v, 0);
    C3DPlane const noSecond = PlaneOfTangents(Vector(0, 0, 0), Vector(1e170, 0, 0), Vector(0, 1e-170, 0));
    ASSERT_TRUE(Same(PlaneParts(noSecond).normal, k_Z));
    Meeting const withoutSecond(noSecond, line);
    EXPECT_EQ(withoutSecond.status, E3D_INTERSECTION_POINT);
    EXPECT_EQ(withoutSecond.u, 0) << "an infinite squared length divides";
    EXPECT_EQ(withoutSecond.v, 7e-170);
}

TEST(Plane, Sine_limit_is_inclusive_and_measures_unit_directions)
{
    for (double const sign : {1.0, -1.0})
    {
        // Lengths 6 and 5, sine 0.6.
        C3DPlane const plane(Vector(0, 0, 0), Vector(2, 0, 0), Vector(5, 3, 0));
        C3DLine const line(Vector(0, 0, 3), Vector(4, 0, sign * 3));
        EXPECT_EQ(Meeting(plane, line, 0.6 - 1e-15).status, E3D_INTERSECTION_POINT) << sign;
        Meeting const parallel(plane, line, 0.6 + 1e-15);
        EXPECT_EQ(parallel.status, E3D_INTERSECTION_NONE) << sign;
        EXPECT_TRUE(parallel.AreOutputsUntouched()) << sign;
    }
    C3DLine const upright(Vector(5, 7, 9), Vector(0, 0, 2));
    EXPECT_EQ(Meeting(C3DPlane(), upright, 1).status, E3D_INTERSECTION_POINT);
    EXPECT_EQ(Meeting(C3DPlane(), upright, Above(1)).status, E3D_INTERSECTION_NONE);
    EXPECT_EQ(Meeting(C3DPlane(), upright, k_Nan, 100).status, E3D_INTERSECTION_COINCIDENT);
    Meeting const divided(C3DPlane(), C3DLine(Vector(0, 0, 2), E3D_AXIS_X), 0);
    EXPECT_EQ(divided.status, E3D_INTERSECTION_POINT) << "a limit of 0 lets a parallel line pass";
    EXPECT_FALSE(std::isfinite(divided.point.X));
}

TEST(Plane, A_parallel_line_lies_in_the_plane_closer_than_the_distance_limit)
{
    C3DPlane const plane(k_Origin, Vector(2, 0, 0), Vector(5, 3, 0));
    struct
    {
        double limit;
        tagE3D_INTERSECTION_STATUS status;
    } const rows[] = {{4, E3D_INTERSECTION_NONE},
                      {Above(4), E3D_INTERSECTION_COINCIDENT},
                      {0, E3D_INTERSECTION_NONE},
                      {k_Nan, E3D_INTERSECTION_COINCIDENT}};
    for (double const height : {4.0, -4.0})
    {
        C3DLine const line(Vector(10, 20, 3 + height), Vector(1, 1, 0));
        for (auto const & row : rows)
        {
            Meeting const found(plane, line, 0.1, row.limit);
            EXPECT_EQ(found.status, row.status) << row.limit;
            EXPECT_TRUE(found.AreOutputsUntouched()) << row.limit;
        }
    }
    EXPECT_EQ(Meeting(plane, C3DLine(Vector(k_Nan, 0, 0), E3D_AXIS_X)).status, E3D_INTERSECTION_COINCIDENT);
    EXPECT_EQ(Meeting(plane, C3DLine(Vector(0, 0, 3), Vector(0, 0, 0))).status, E3D_INTERSECTION_COINCIDENT)
        << "a line without direction counts as parallel";
}

TEST(Plane, A_line_of_tiny_tangent_is_not_made_unit)
{
    // At the limit of 1e-12 the tangent stays as it is, and so does its sine.
    EXPECT_EQ(Meeting(C3DPlane(), C3DLine(Vector(1, 2, 5), Vector(0, 0, 1e-12)), 1e-11).status, E3D_INTERSECTION_NONE);
    Meeting const unscaled(C3DPlane(), C3DLine(Vector(1, 2, 5), Vector(0, 0, 1e-12)), 1e-12);
    EXPECT_EQ(unscaled.status, E3D_INTERSECTION_POINT);
    EXPECT_TRUE(IsNear(unscaled.point, Vector(1, 2, 0), 1e-12));
    EXPECT_EQ(Meeting(C3DPlane(), C3DLine(Vector(1, 2, 5), Vector(0, 0, Above(1e-12))), 0.9).status,
              E3D_INTERSECTION_POINT);
}

TEST(Plane, A_normal_shorter_than_its_limit_gives_no_intersection)
{
    C3DLine const line(Vector(5, 7, 9), E3D_AXIS_Z);
    for (double const length : {0.0, Below(1e-9), k_Nan})
    {
        Meeting const found(C3DPlane(k_Origin, Vector(0, 0, length)), line, 0, 1e9);
        EXPECT_EQ(found.status, E3D_INTERSECTION_NONE) << length;
        EXPECT_TRUE(found.AreOutputsUntouched()) << length;
    }
    Meeting const atLimit(C3DPlane(k_Origin, Vector(0, 0, 1e-9)), line);
    EXPECT_EQ(atLimit.status, E3D_INTERSECTION_POINT);
    EXPECT_TRUE(IsNear(atLimit.point, Vector(5, 7, 3), 1e-12));
}
