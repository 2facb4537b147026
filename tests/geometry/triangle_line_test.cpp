#include "math/platform/result.h"
#include "math/triangle_intersection.h"

#include "marked_record.h"
#include "vector_checks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using namespace geometry_test;

struct Hit
{
    long result = -77;
    double weightA = 3;
    double weightB = 5;
    double weightC = k_Mark;
    Vector position{k_Mark, k_Mark, k_Mark};
    double parameter = k_Mark;
};

struct Triangle
{
    Vector a;
    Vector b;
    Vector c;
};

/// In the plane z = 0; the weights are (1 - x/4 - y/8, x/4, y/8).
Triangle const k_Triangle{{0, 0, 0}, {4, 0, 0}, {0, 8, 0}};

Hit Intersect(Vector const & origin, Vector const & direction, Triangle const & t = k_Triangle)
{
    Hit hit;
    hit.result = F3DWorldSegmentVsTriangleIntersection(origin, direction, t.a, t.b, t.c, hit.weightA, hit.weightB,
                                                       hit.weightC, &hit.position, &hit.parameter);
    return hit;
}

Hit IntersectOld(Vector const & start, Vector const & end, Triangle const & t = k_Triangle)
{
    Hit hit;
    hit.result = F3DWorldSegmentVsTriangleIntersectionOld(start, end, t.a, t.b, t.c, hit.weightA, hit.weightB,
                                                          hit.weightC, &hit.position);
    return hit;
}

void ExpectWeights(Hit const & hit, double a, double b, double c)
{
    EXPECT_DOUBLE_EQ(hit.weightA, a);
    EXPECT_DOUBLE_EQ(hit.weightB, b);
    EXPECT_DOUBLE_EQ(hit.weightC, c);
}

void ExpectVector(Vector const & found, Vector const & expected)
{
    EXPECT_DOUBLE_EQ(found.X, expected.X);
    EXPECT_DOUBLE_EQ(found.Y, expected.Y);
    EXPECT_DOUBLE_EQ(found.Z, expected.Z);
}

/// Nothing that may stay unwritten was written.
void ExpectNoPosition(Hit const & hit)
{
    EXPECT_EQ(hit.result, S_FALSE);
    ExpectVector(hit.position, {k_Mark, k_Mark, k_Mark});
    EXPECT_EQ(hit.parameter, k_Mark);
}

Triangle RandomTriangle(Random & random, double reach)
{
    Vector const a = RandomVector(random, reach);
    Vector const b = RandomVector(random, reach);
    return {a, b, RandomVector(random, reach)};
}

Vector Weighted(Hit const & hit, Triangle const & t)
{
    Vector sum;
    sum.Mul(t.a, hit.weightA).Add(Vector().Mul(t.b, hit.weightB)).Add(Vector().Mul(t.c, hit.weightC));
    return sum;
}

} // namespace

// --- By the equations of line and plane ------------------------------------------------------------------------------

TEST(LineAgainstTriangle, A_hit_tells_weights_position_and_parameter)
{
    Hit const hit = Intersect({1, 2, 6}, {0, 0, -4});
    EXPECT_EQ(hit.result, S_OK);
    ExpectWeights(hit, 0.5, 0.25, 0.25);
    ExpectVector(hit.position, {1, 2, 0});
    EXPECT_EQ(hit.parameter, 1.5);
}

TEST(LineAgainstTriangle, The_second_argument_is_a_direction_and_not_an_end)
{
    // As an end, (1, 2, 3) would be reached from the origin of the line along (0, 0, 1).
    Hit const hit = Intersect({1, 2, 2}, {1, 2, 3}, {{0, 0, 5}, {4, 0, 5}, {0, 8, 5}});
    EXPECT_EQ(hit.result, S_OK);
    EXPECT_DOUBLE_EQ(hit.parameter, 1);
    ExpectVector(hit.position, {2, 4, 5});
    ExpectWeights(hit, 0, 0.5, 0.5);
}

TEST(LineAgainstTriangle, The_line_has_no_ends)
{
    Hit const behind = Intersect({1, 2, 6}, {0, 0, 4});
    EXPECT_EQ(behind.result, S_OK);
    EXPECT_EQ(behind.parameter, -1.5);
    ExpectWeights(behind, 0.5, 0.25, 0.25);
    Hit const within = Intersect({1, 2, 0}, {3, 1, 4});
    EXPECT_EQ(within.result, S_OK);
    EXPECT_EQ(within.parameter, 0);
    ExpectVector(within.position, {1, 2, 0});
}

TEST(LineAgainstTriangle, A_miss_of_the_triangle_is_no_failure)
{
    Hit const hit = Intersect({8, -8, 1}, {0, 0, 1});
    EXPECT_EQ(hit.result, S_OK);
    ExpectWeights(hit, 0, 2, -1);
    ExpectVector(hit.position, {8, -8, 0});
}

TEST(LineAgainstTriangle, Vertices_and_edges_have_weights_of_0)
{
    ExpectWeights(Intersect({0, 0, 1}, {0, 0, 1}), 1, 0, 0);
    ExpectWeights(Intersect({4, 0, 1}, {0, 0, 1}), 0, 1, 0);
    ExpectWeights(Intersect({0, 8, 1}, {0, 0, 1}), 0, 0, 1);
    ExpectWeights(Intersect({2, 4, 1}, {0, 0, 1}), 0, 0.5, 0.5);
}

TEST(LineAgainstTriangle, A_parallel_line_leaves_two_weights_and_makes_the_third_of_them)
{
    for (double const height : {0.0, 1.0})
    {
        Hit const hit = Intersect({1, 2, height}, {1, 1, 0});
        ExpectNoPosition(hit);
        EXPECT_EQ(hit.weightA, 3);
        EXPECT_EQ(hit.weightB, 5);
        EXPECT_EQ(hit.weightC, 1 - 3 - 5);
    }
}

TEST(LineAgainstTriangle, Without_a_direction_or_a_plane_there_is_no_position)
{
    ExpectNoPosition(Intersect({1, 2, 6}, {0, 0, 0}));
    ExpectNoPosition(Intersect({1, 2, 6}, {0, 0, 1}, {{0, 0, 0}, {4, 0, 0}, {2, 0, 0}}));
    ExpectNoPosition(Intersect({1, 2, 6}, {0, 0, 1}, {{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}));
}

TEST(LineAgainstTriangle, What_is_no_number_gives_no_position)
{
    ExpectNoPosition(Intersect({k_Nan, 2, 6}, {0, 0, 1}));
    ExpectNoPosition(Intersect({1, 2, 6}, {0, 0, k_Nan}));
    ExpectNoPosition(Intersect({1, 2, 6}, {0, 0, k_Infinity}));
    ExpectNoPosition(Intersect({1, 2, 6}, {0, 0, 1}, {{k_Nan, 0, 0}, {4, 0, 0}, {0, 8, 0}}));
    Hit hit;
    hit.weightA = k_Nan;
    hit.result =
        F3DWorldSegmentVsTriangleIntersection(Vector(1, 2, 1), Vector(1, 1, 0), k_Triangle.a, k_Triangle.b,
                                              k_Triangle.c, hit.weightA, hit.weightB, hit.weightC, nullptr, nullptr);
    EXPECT_EQ(hit.result, S_FALSE);
    EXPECT_TRUE(std::isnan(hit.weightC));
    EXPECT_EQ(hit.weightB, 5);
}

// The plane is as far away as it needs to be: what counts is the determinant beside the numerators.
TEST(LineAgainstTriangle, A_plane_more_than_1e12_directions_away_is_parallel)
{
    Triangle const unit{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    EXPECT_EQ(Intersect({0, 0, 0.5e12}, {0, 0, -1}, unit).result, S_OK);
    ExpectNoPosition(Intersect({0, 0, 2e12}, {0, 0, -1}, unit));
    EXPECT_EQ(Intersect({0, 0, 2e12}, {0, 0, -10}, unit).result, S_OK);
}

TEST(LineAgainstTriangle, Outputs_may_be_null)
{
    Vector const origin(1, 2, 6);
    Vector const direction(0, 0, -4);
    Hit hit;
    auto const intersect = [&](Vector * position, double * parameter)
    {
        hit.weightC = k_Mark;
        EXPECT_EQ(F3DWorldSegmentVsTriangleIntersection(origin, direction, k_Triangle.a, k_Triangle.b, k_Triangle.c,
                                                        hit.weightA, hit.weightB, hit.weightC, position, parameter),
                  S_OK);
        ExpectWeights(hit, 0.5, 0.25, 0.25);
    };
    intersect(nullptr, nullptr);
    intersect(&hit.position, nullptr);
    ExpectVector(hit.position, {1, 2, 0});
    intersect(nullptr, &hit.parameter);
    EXPECT_EQ(hit.parameter, 1.5);
}

TEST(LineAgainstTriangle, The_position_may_replace_an_input)
{
    for (int replaced = 0; replaced < 5; ++replaced)
    {
        Vector in[5] = {{1, 2, 6}, {0, 0, -4}, k_Triangle.a, k_Triangle.b, k_Triangle.c};
        Hit hit;
        EXPECT_EQ(F3DWorldSegmentVsTriangleIntersection(in[0], in[1], in[2], in[3], in[4], hit.weightA, hit.weightB,
                                                        hit.weightC, &in[replaced], &hit.parameter),
                  S_OK);
        ExpectVector(in[replaced], {1, 2, 0});
        ExpectWeights(hit, 0.5, 0.25, 0.25);
    }
}

TEST(LineAgainstTriangle, The_position_lies_on_the_line_and_in_the_plane)
{
    Random random(568);
    for (int i = 0; i < 5000; ++i)
    {
        Triangle const triangle = RandomTriangle(random, 1);
        Vector const origin = RandomVector(random, 3);
        Vector const direction = RandomVector(random, 1);
        Hit const hit = Intersect(origin, direction, triangle);
        ASSERT_EQ(hit.result, S_OK);
        EXPECT_TRUE(SameBits(hit.position, Vector().Mul(direction, hit.parameter).Add(origin)));
        EXPECT_EQ(hit.weightC, 1 - hit.weightA - hit.weightB);
        double const size = 1 + std::abs(hit.parameter) + std::abs(hit.weightA) + std::abs(hit.weightB);
        Vector const edge = Vector().Sub(triangle.b, triangle.a);
        Vector const normal = Vector().SetCross(triangle.a, triangle.b, triangle.c);
        // Of the determinant, whose rounding the solution carries, no more than its bound is known.
        double const determinant = std::abs(math::detail::Dot(normal, direction));
        EXPECT_LE(GetDistance(Weighted(hit, triangle), hit.position), 1e-14 * size * edge.GetLength() / determinant);
    }
}

// --- By projection along the line ------------------------------------------------------------------------------------

TEST(LineAgainstTriangleByProjection, A_hit_tells_weights_and_position)
{
    Hit const hit = IntersectOld({1, 2, 6}, {1, 2, 5});
    EXPECT_EQ(hit.result, S_OK);
    ExpectWeights(hit, 0.5, 0.25, 0.25);
    ExpectVector(hit.position, {1, 2, 0});
}

TEST(LineAgainstTriangleByProjection, Sense_and_length_of_the_segment_do_not_matter)
{
    for (double const z : {-1e6, -6.0, 5.0, 5.999, 6.001, 1e6})
    {
        Hit const hit = IntersectOld({1, 2, 6}, {1, 2, z});
        EXPECT_EQ(hit.result, S_OK);
        ExpectWeights(hit, 0.5, 0.25, 0.25);
    }
}

TEST(LineAgainstTriangleByProjection, Weights_beyond_an_edge_are_negative)
{
    ExpectWeights(IntersectOld({-1, 2, 6}, {-1, 2, 5}), 1, -0.25, 0.25);
    ExpectWeights(IntersectOld({1, -2, 6}, {1, -2, 5}), 1, 0.25, -0.25);
    ExpectWeights(IntersectOld({4, 8, 6}, {4, 8, 5}), -1, 1, 1);
    // From below the projected triangle has the other sense, and the same signs.
    ExpectWeights(IntersectOld({4, 8, 5}, {4, 8, 6}), -1, 1, 1);
}

TEST(LineAgainstTriangleByProjection, The_position_is_the_weighted_sum_of_the_vertices)
{
    Hit const hit = IntersectOld({1, 2, 6}, {1, 2, 5}, {{0, 0, 1}, {4, 0, 2}, {0, 8, 3}});
    ExpectWeights(hit, 0.5, 0.25, 0.25);
    ExpectVector(hit.position, {1, 2, 1.75});
}

TEST(LineAgainstTriangleByProjection, Points_that_agree_within_1e_12_are_no_line)
{
    Vector const start(0, 0, 0);
    double const limit = 1e-12;
    double const above = std::nextafter(limit, 1.0);
    for (Vector const & end : {Vector(0, 0, 0), Vector(limit, limit, limit), Vector(-limit, limit, -limit)})
    {
        Hit const hit = IntersectOld(start, end);
        ExpectNoPosition(hit);
        EXPECT_EQ(hit.weightA, 3);
        EXPECT_EQ(hit.weightB, 5);
        EXPECT_EQ(hit.weightC, k_Mark);
    }
    for (Vector const & end :
         {Vector(above, 0, 0), Vector(0, -above, 0), Vector(0, 0, above), Vector(limit, above, limit)})
    {
        EXPECT_EQ(IntersectOld(start, end).result, S_OK);
    }
}

TEST(LineAgainstTriangleByProjection, A_way_that_is_no_number_is_not_short)
{
    for (Vector const & end : {Vector(k_Nan, 0, 0), Vector(0, k_Nan, 0), Vector(0, 0, k_Nan)})
    {
        Hit const hit = IntersectOld({0, 0, 0}, end);
        EXPECT_EQ(hit.result, S_OK);
        EXPECT_TRUE(std::isnan(hit.weightA));
        EXPECT_TRUE(std::isnan(hit.weightB));
        EXPECT_TRUE(std::isnan(hit.weightC));
        EXPECT_TRUE(std::isnan(hit.position.X));
    }
}

// Seen edge-on the triangle is a line, there is nothing to divide by, and the weights are the areas as they are.
TEST(LineAgainstTriangleByProjection, In_the_plane_of_the_triangle_the_weights_are_areas)
{
    // Along X: a, b and c are seen at y = 0, 0 and 8, and the start at y = 2, z = 3.
    Hit const hit = IntersectOld({1, 2, 3}, {2, 2, 3}, {{0, 0, 0}, {4, 0, 0}, {0, 8, 0}});
    EXPECT_EQ(hit.result, S_OK);
    ExpectWeights(hit, 24, 24, 0);
    ExpectVector(hit.position, {96, 0, 0});
    // With the start on the line of the three all areas are null.
    ExpectWeights(IntersectOld({1, 2, 0}, {2, 2, 0}), 0, 0, 0);
}

TEST(LineAgainstTriangleByProjection, Areas_are_divided_above_1e_12)
{
    double const limit = 1e-12;
    auto const intersect = [](double width) {
        return IntersectOld({width / 4, 0.25, 6}, {width / 4, 0.25, 5}, {{0, 0, 0}, {width, 0, 0}, {0, 1, 0}});
    };
    ExpectWeights(intersect(limit), 0.5 * limit, 0.25 * limit, 0.25 * limit);
    ExpectWeights(intersect(std::nextafter(limit, 1.0)), 0.5, 0.25, 0.25);
}

TEST(LineAgainstTriangleByProjection, The_position_may_be_null)
{
    Hit hit;
    EXPECT_EQ(F3DWorldSegmentVsTriangleIntersectionOld(Vector(1, 2, 6), Vector(1, 2, 5), k_Triangle.a, k_Triangle.b,
                                                       k_Triangle.c, hit.weightA, hit.weightB, hit.weightC, nullptr),
              S_OK);
    ExpectWeights(hit, 0.5, 0.25, 0.25);
}

TEST(LineAgainstTriangleByProjection, The_position_may_replace_an_input)
{
    for (int replaced = 0; replaced < 5; ++replaced)
    {
        Vector in[5] = {{1, 2, 6}, {1, 2, 5}, k_Triangle.a, k_Triangle.b, k_Triangle.c};
        Hit hit;
        EXPECT_EQ(F3DWorldSegmentVsTriangleIntersectionOld(in[0], in[1], in[2], in[3], in[4], hit.weightA, hit.weightB,
                                                           hit.weightC, &in[replaced]),
                  S_OK);
        ExpectVector(in[replaced], {1, 2, 0});
        ExpectWeights(hit, 0.5, 0.25, 0.25);
    }
}

TEST(LineAgainstTriangleByProjection, Both_ways_agree_off_the_plane)
{
    Random random(569);
    int compared = 0;
    for (int i = 0; i < 5000; ++i)
    {
        Triangle const triangle = RandomTriangle(random, 1);
        Vector const start = RandomVector(random, 2);
        Vector const end = RandomVector(random, 2);
        Vector const way = Vector().Sub(end, start);
        Vector const normal = Vector().SetCross(triangle.a, triangle.b, triangle.c);
        double const determinant = std::abs(math::detail::Dot(normal, way));
        if (determinant < 1e-3)
        {
            continue;
        }
        ++compared;
        Hit const solved = Intersect(start, way, triangle);
        Hit const projected = IntersectOld(start, end, triangle);
        double const tolerance = 1e-12 / determinant;
        EXPECT_NEAR(projected.weightA, solved.weightA, tolerance);
        EXPECT_NEAR(projected.weightB, solved.weightB, tolerance);
        EXPECT_NEAR(projected.weightC, solved.weightC, tolerance);
        EXPECT_LE(GetDistance(projected.position, solved.position), 10 * tolerance);
        EXPECT_TRUE(SameBits(projected.position, Weighted(projected, triangle)));
    }
    EXPECT_GT(compared, 4500);
}

// --- What is not implemented -----------------------------------------------------------------------------------------

TEST(LineAgainstTriangleWithRecord, The_record_is_cleared_and_nothing_else_is_touched)
{
    Vector const before[5] = {{1, 2, 6}, {1, 2, -5}, k_Triangle.a, k_Triangle.b, k_Triangle.c};
    Vector in[5] = {before[0], before[1], before[2], before[3], before[4]};
    unsigned long flags = test_support::k_MarkedFlags;
    tagS3DGEOMINFO record = test_support::MakeMarkedRecord();
    EXPECT_EQ(F3DWorldSegmentVsTriangleIntersection(in[0], in[1], in[2], in[3], in[4], flags, &record, 0.1), E_NOTIMPL);
    EXPECT_TRUE(test_support::HasOnly(test_support::k_AllFields, record));
    EXPECT_TRUE(SameBits(record.position, {0, 0, 0}));
    EXPECT_TRUE(SameBits(record.normal, {0, 0, 0}));
    EXPECT_TRUE(SameBits(record.u, 0));
    EXPECT_TRUE(SameBits(record.v, 0));
    EXPECT_TRUE(SameBits(record.distance, 0));
    EXPECT_EQ(flags, test_support::k_MarkedFlags);
    for (int i = 0; i < 5; ++i)
    {
        EXPECT_TRUE(SameBits(in[i], before[i]));
    }
    EXPECT_EQ(F3DWorldSegmentVsTriangleIntersection(in[0], in[1], in[2], in[3], in[4], flags, nullptr, 0.1), E_NOTIMPL);
    EXPECT_EQ(flags, test_support::k_MarkedFlags);
}

TEST(PointAgainstTriangleWithRecord, Nothing_is_touched)
{
    Vector in[4] = {{1, 2, 0}, k_Triangle.a, k_Triangle.b, k_Triangle.c};
    unsigned long flags = test_support::k_MarkedFlags;
    tagS3DGEOMINFO record = test_support::MakeMarkedRecord();
    EXPECT_EQ(F3DWorldPointVsTriangleIntersection(in[0], in[1], in[2], in[3], flags, &record, 0.1), E_NOTIMPL);
    EXPECT_TRUE(test_support::HasOnly(test_support::k_NoField, record));
    EXPECT_EQ(flags, test_support::k_MarkedFlags);
    EXPECT_EQ(F3DWorldPointVsTriangleIntersection(in[0], in[1], in[2], in[3], flags, nullptr, 0.1), E_NOTIMPL);
}

TEST(TriangleQueriesWithRecord, The_code_is_negative_whatever_the_width_of_long)
{
    EXPECT_LT(E_NOTIMPL, 0);
    EXPECT_EQ(static_cast<unsigned long>(E_NOTIMPL) & 0xFFFFFFFFUL, 0x80004001UL);
}
