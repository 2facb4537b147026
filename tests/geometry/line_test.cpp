/// Lines of unlimited extent.

#include "math/line.h"

#include "geometry/vector_checks.h"

using namespace geometry_test;

namespace
{

Vector OriginOf(C3DLine const & line)
{
    Vector origin;
    line.GetPos(0, origin);
    return origin;
}

Vector TangentOf(C3DLine const & line)
{
    Vector tangent;
    line.GetTangent(0, tangent);
    return tangent;
}

/// The outputs of a query for two lines, marked.
struct Closest
{
    Closest(C3DLine const & line, C3DLine const & other, double parallelLimit = 0.999999, double distanceLimit = 1e-6)
        : status(line.GetClosestPointToOtherLine(other, &parameter, point, parallelLimit, distanceLimit))
    {
    }

    bool AreOutputsUntouched() const { return parameter == k_Mark && SameBits(point, MarkedVector()); }

    double parameter = k_Mark;
    Vector point = MarkedVector();
    tagE3D_INTERSECTION_STATUS status;
};

} // namespace

TEST(Line, Default_line_is_the_X_axis)
{
    C3DLine const line;
    EXPECT_TRUE(SameBits(OriginOf(line), Vector(0, 0, 0)));
    EXPECT_TRUE(SameBits(TangentOf(line), Vector(1, 0, 0)));
}

TEST(Line, Axis_tangent_is_Z_for_any_value_that_is_no_axis)
{
    Vector const origin(1, 2, 3);
    struct
    {
        int axis;
        Vector tangent;
    } const rows[] = {{0, Vector(1, 0, 0)}, {1, Vector(0, 1, 0)}, {2, Vector(0, 0, 1)},
                      {3, Vector(0, 0, 1)}, {7, Vector(0, 0, 1)}, {-1, Vector(0, 0, 1)}};
    for (auto const & row : rows)
    {
        C3DLine const line(origin, static_cast<tagE3DAXISTYPE>(row.axis));
        EXPECT_TRUE(SameBits(OriginOf(line), origin)) << row.axis;
        EXPECT_TRUE(SameBits(TangentOf(line), row.tangent)) << row.axis;
    }
}

TEST(Line, Origin_and_tangent_are_stored_as_given)
{
    Vector const null(0, 0, 0);
    C3DLine line(Vector(1, 2, 3), null);
    EXPECT_TRUE(SameBits(OriginOf(line), Vector(1, 2, 3)));
    EXPECT_TRUE(SameBits(TangentOf(line), null)) << "a null tangent is allowed";
    line.SetTangent(Vector(-4, 5e-20, k_Infinity));
    line.SetOrigin(Vector(7, 8, 9));
    EXPECT_TRUE(SameBits(TangentOf(line), Vector(-4, 5e-20, k_Infinity)));
    Vector tangent;
    EXPECT_EQ(line.GetTangent(k_Nan, tangent), 0);
    EXPECT_TRUE(SameBits(tangent, Vector(-4, 5e-20, k_Infinity))) << "the same at every parameter";
    line.SetTangent(Vector(1, 0, 0));
    EXPECT_TRUE(SameBits(OriginOf(line), Vector(7, 8, 9)));
}

TEST(Line, Set_copies_origin_and_tangent)
{
    C3DLine const source(Vector(1, 2, 3), Vector(4, 5, 6));
    C3DLine target;
    target.Set(source);
    EXPECT_TRUE(SameBits(OriginOf(target), Vector(1, 2, 3)));
    EXPECT_TRUE(SameBits(TangentOf(target), Vector(4, 5, 6)));
    target.Set(target);
    EXPECT_TRUE(SameBits(TangentOf(target), Vector(4, 5, 6)));
}

TEST(Line, Two_points_stand_at_parameters_0_and_1)
{
    C3DLine line;
    line.SetFromTwoPoints(Vector(1, 2, 3), Vector(5, -2, 3.5));
    EXPECT_TRUE(SameBits(OriginOf(line), Vector(1, 2, 3)));
    EXPECT_TRUE(SameBits(TangentOf(line), Vector(4, -4, 0.5)));
}

TEST(Line, GetPos_runs_at_the_speed_of_the_tangent)
{
    C3DLine const line(Vector(1, 2, 3), Vector(2, 0, -4));
    Vector point = MarkedVector();
    EXPECT_EQ(line.GetPos(1, point), 0);
    EXPECT_TRUE(SameBits(point, Vector(3, 2, -1)));
    line.GetPos(-0.5, point);
    EXPECT_TRUE(SameBits(point, Vector(0, 2, 5)));
}

TEST(Line, ProjectOn_gives_the_parameter_and_not_the_length)
{
    C3DLine const line(Vector(1, 0, 0), Vector(0, 4, 0));
    double t = k_Mark;
    EXPECT_EQ(line.ProjectOn(Vector(9, 2, -7), t), 0);
    EXPECT_EQ(t, 0.5);
}

TEST(Line, ProjectOn_divides_by_the_squared_length_only_above_its_limit)
{
    // sqrt(1e-12) rounds so that its square is exactly the limit.
    ASSERT_EQ(1e-6 * 1e-6, 1e-12);
    ASSERT_GT(Above(1e-6) * Above(1e-6), 1e-12);
    struct
    {
        double length;
        double t;
    } const rows[] = {{1e-6, 3e-6}, {Below(1e-6), 3 * Below(1e-6)}, {Above(1e-6), 3 / 1e-6}, {0, 0}};
    for (auto const & row : rows)
    {
        double t = k_Mark;
        EXPECT_EQ(C3DLine(Vector(0, 1, 0), Vector(0, row.length, 0)).ProjectOn(Vector(5, 4, 5), t), 0);
        EXPECT_NEAR(t, row.t, 1e-9 * row.t) << row.length;
    }
    double t = k_Mark;
    C3DLine(Vector(0, 0, 0), Vector(k_Nan, 0, 0)).ProjectOn(Vector(1, 1, 1), t);
    EXPECT_TRUE(std::isnan(t));
}

TEST(Line, Shortest_vector_leads_from_the_point_to_the_line)
{
    C3DLine const line(Vector(0, 0, 1), Vector(0, 0, 3));
    Vector way = MarkedVector();
    line.GetMinProjectionVector(Vector(3, -4, 100), way);
    EXPECT_TRUE(Same(way, Vector(-3, 4, 0)));
    double distance = k_Mark;
    EXPECT_EQ(line.GetDistanceFrom(Vector(3, -4, 100), distance), 0);
    EXPECT_EQ(distance, 5);
}

TEST(Line, Shortest_vector_may_replace_the_point)
{
    Vector point(3, -4, 100);
    C3DLine(Vector(0, 0, 1), Vector(0, 0, 3)).GetMinProjectionVector(point, point);
    EXPECT_TRUE(Same(point, Vector(-3, 4, 0)));
}

TEST(Line, A_tangent_whose_square_is_below_the_limit_projects_nothing)
{
    ASSERT_LT(Below(1e-6) * Below(1e-6), 1e-12);
    for (double const length : {0.0, 1e-200, Below(1e-6)})
    {
        Vector way = MarkedVector();
        double distance = k_Mark;
        C3DLine const line(Vector(0, 0, 0), Vector(length, 0, 0));
        line.GetMinProjectionVector(Vector(3, 4, 0), way);
        EXPECT_TRUE(Same(way, Vector(0, 0, 0))) << length;
        line.GetDistanceFrom(Vector(3, 4, 0), distance);
        EXPECT_EQ(distance, 0) << length;
    }
    Vector way;
    C3DLine(Vector(0, 0, 0), Vector(1e-6, 0, 0)).GetMinProjectionVector(Vector(3, 4, 0), way);
    EXPECT_TRUE(IsNear(way, Vector(0, -4, 0), 1e-12)) << "the limit itself projects";
}

TEST(Line, Distance_and_parameter_agree_with_dense_sampling)
{
    Random random(501);
    for (int i = 0; i < 100; ++i)
    {
        C3DLine const line(RandomVector(random, 3), RandomVector(random, 2));
        Vector const point = RandomVector(random, 5);
        double t = 0;
        double distance = 0;
        line.ProjectOn(point, t);
        line.GetDistanceFrom(point, distance);
        Vector foot;
        line.GetPos(t, foot);
        EXPECT_NEAR(GetDistance(foot, point), distance, 1e-9 * (1 + distance));
        for (int k = -100; k <= 100; ++k)
        {
            Vector other;
            line.GetPos(t + 0.01 * k, other);
            EXPECT_GE(GetDistance(other, point), distance * (1 - 1e-12) - 1e-12);
        }
    }
}

TEST(Line, Closest_point_lies_on_this_line)
{
    C3DLine const x(Vector(5, 0, 0), Vector(2, 0, 0));
    C3DLine const y(Vector(1, 7, 3), Vector(0, -4, 0));
    Closest const onX(x, y);
    EXPECT_EQ(onX.status, E3D_INTERSECTION_POINT);
    EXPECT_EQ(onX.parameter, -2);
    EXPECT_TRUE(Same(onX.point, Vector(1, 0, 0)));
    Closest const onY(y, x);
    EXPECT_EQ(onY.status, 1);
    EXPECT_EQ(onY.parameter, 1.75);
    EXPECT_TRUE(Same(onY.point, Vector(1, 0, 3)));
}

TEST(Line, Closest_point_needs_no_parameter_pointer)
{
    Vector point = MarkedVector();
    auto const status =
        C3DLine().GetClosestPointToOtherLine(C3DLine(Vector(2, 3, 4), E3D_AXIS_Y), nullptr, point, 0.99, 1e-6);
    EXPECT_EQ(status, E3D_INTERSECTION_POINT);
    EXPECT_TRUE(Same(point, Vector(2, 0, 0)));
}

TEST(Line, Closest_points_are_closest_among_samples)
{
    Random random(502);
    for (int i = 0; i < 100; ++i)
    {
        C3DLine const a(RandomVector(random, 3), RandomVector(random, 2));
        C3DLine const b(RandomVector(random, 3), RandomVector(random, 2));
        Closest const found(a, b, 1 - 1e-9);
        ASSERT_EQ(found.status, E3D_INTERSECTION_POINT);
        Vector onA;
        a.GetPos(found.parameter, onA);
        EXPECT_TRUE(SameBits(onA, found.point));
        double least = 0;
        b.GetDistanceFrom(found.point, least);
        for (int k = -50; k <= 50; ++k)
        {
            Vector point;
            double distance = 0;
            a.GetPos(found.parameter + 0.02 * k, point);
            b.GetDistanceFrom(point, distance);
            EXPECT_GE(distance, least - 1e-7);
        }
        Closest const back(b, a, 1 - 1e-9);
        Vector const between = Vector().Sub(back.point, found.point);
        EXPECT_NEAR(math::detail::Dot(between, TangentOf(a)), 0, 1e-6)
            << "the way between the two is orthogonal to both";
        EXPECT_NEAR(math::detail::Dot(between, TangentOf(b)), 0, 1e-6);
    }
}

TEST(Line, A_tangent_shorter_than_its_limit_gives_no_closest_point)
{
    C3DLine const y(Vector(1, 7, 3), E3D_AXIS_Y);
    for (double const length : {0.0, Below(1e-6), k_Nan})
    {
        C3DLine const shortLine(Vector(0, 0, 0), Vector(length, 0, 0));
        Closest const here(shortLine, y);
        EXPECT_EQ(here.status, E3D_INTERSECTION_NONE) << length;
        EXPECT_TRUE(here.AreOutputsUntouched()) << length;
        Closest const there(y, shortLine);
        EXPECT_EQ(there.status, E3D_INTERSECTION_NONE) << length;
        EXPECT_TRUE(there.AreOutputsUntouched()) << length;
    }
    C3DLine const atLimit(Vector(0, 0, 0), Vector(1e-6, 0, 0));
    EXPECT_EQ(Closest(atLimit, y).status, E3D_INTERSECTION_POINT);
    EXPECT_EQ(Closest(y, atLimit).status, E3D_INTERSECTION_POINT);
}

TEST(Line, Parallel_limit_is_a_cosine_whatever_the_lengths_and_directions)
{
    for (double const sign : {1.0, -1.0})
    {
        C3DLine const a(Vector(0, 0, 0), Vector(10, 0, 0));
        C3DLine const b(Vector(0, 5, 0), Vector(sign * 30, 40, 0)); // a cosine of 0.6 in magnitude
        EXPECT_EQ(Closest(a, b, 0.6 + 1e-12).status, E3D_INTERSECTION_POINT) << sign;
        EXPECT_EQ(Closest(a, b, 0.6 - 1e-12).status, E3D_INTERSECTION_NONE) << sign;
    }
}

TEST(Line, A_cosine_at_the_parallel_limit_is_not_parallel)
{
    C3DLine const a(Vector(0, 0, 0), Vector(4, 0, 0));
    C3DLine const b(Vector(0, 0, 1), Vector(0, 0, 2));
    EXPECT_EQ(Closest(a, b, 0.0).status, E3D_INTERSECTION_POINT);
    EXPECT_EQ(Closest(a, b, -std::numeric_limits<double>::denorm_min()).status, E3D_INTERSECTION_NONE);
    // A limit of 1 lets even truly parallel lines pass, to divide 0 by 0.
    Closest const divided(a, C3DLine(Vector(0, 3, 0), Vector(1, 0, 0)), 1);
    EXPECT_EQ(divided.status, E3D_INTERSECTION_POINT);
    EXPECT_TRUE(std::isnan(divided.parameter));
    EXPECT_EQ(Closest(a, b, k_Nan).status, E3D_INTERSECTION_POINT);
}

TEST(Line, Parallel_lines_coincide_closer_than_the_distance_limit)
{
    C3DLine const a(Vector(1, 0, 0), Vector(2, 0, 0));
    C3DLine const b(Vector(100, 3, 4), Vector(-7, 0, 0));
    struct
    {
        double limit;
        tagE3D_INTERSECTION_STATUS status;
    } const rows[] = {{5, E3D_INTERSECTION_NONE},
                      {Above(5), E3D_INTERSECTION_COINCIDENT},
                      {0, E3D_INTERSECTION_NONE},
                      {k_Nan, E3D_INTERSECTION_COINCIDENT}};
    for (auto const & row : rows)
    {
        Closest const found(a, b, 0.9, row.limit);
        EXPECT_EQ(found.status, row.status) << row.limit;
        EXPECT_TRUE(found.AreOutputsUntouched()) << row.limit;
    }
    EXPECT_EQ(Closest(a, a, 0.9, 0).status, E3D_INTERSECTION_NONE) << "no distance is below 0";
    EXPECT_EQ(Closest(a, C3DLine(Vector(0, k_Nan, 0), E3D_AXIS_X), 0.9).status, E3D_INTERSECTION_COINCIDENT)
        << "a distance that is not a number is not at or above the limit";
}

TEST(Line, Mul_takes_up_scale_shear_and_mirror)
{
    Random random(503);
    for (int i = 0; i < 100; ++i)
    {
        AffineMap const map = RandomAffineMap(random);
        C3DLine const source(RandomVector(random, 3), RandomVector(random, 3));
        C3DLine target;
        ASSERT_EQ(&target.Mul(source, map.ForRows()), &target);
        for (double const t : {-2.0, 0.0, 0.5, 1.0})
        {
            Vector before;
            Vector after;
            source.GetPos(t, before);
            target.GetPos(t, after);
            EXPECT_TRUE(IsNear(after, map(before), 1e-12)) << "the parameter is kept";
        }
        C3DLine inPlace(source);
        inPlace.Mul(inPlace, map.ForRows());
        EXPECT_TRUE(SameBits(OriginOf(inPlace), OriginOf(target)));
        EXPECT_TRUE(SameBits(TangentOf(inPlace), TangentOf(target)));
    }
}

TEST(Line, Mul_forms_the_tangent_as_a_difference_of_points)
{
    // Far out the difference has lost the small tangent, which a product with the upper block alone would keep.
    C3DLine line(Vector(1e17, 0, 0), Vector(1, 1, 0));
    Matrix identity;
    identity.SetIdentity();
    line.Mul(line, identity);
    EXPECT_TRUE(SameBits(TangentOf(line), Vector(0, 1, 0)));
}

TEST(Line, Mul_skips_zero_components)
{
    C3DLine line(Vector(0, 1, 2), Vector(0, 3, 4));
    line.Mul(line, WithInfiniteRow(0));
    EXPECT_TRUE(Same(OriginOf(line), Vector(0, 1, 2)));
    EXPECT_TRUE(Same(TangentOf(line), Vector(0, 3, 4)));
}
