#include "geometry/polygon_line_checks.h"
#include "support/random.h"

#include <limits>

using namespace polygon_test;
using test_support::Random;
using test_support::TaskMemoryFaults;

namespace
{

constexpr double k_NaN = std::numeric_limits<double>::quiet_NaN();

Polygon const k_Square{Point(1, -1), Point(3, -1), Point(3, 1), Point(1, 1)};

double Turn(Vector2 const & a, Vector2 const & b, Vector2 const & c)
{
    return (b.X - a.X) * (c.Y - a.Y) - (b.Y - a.Y) * (c.X - a.X);
}

bool DoSegmentsCross(Vector2 const & a, Vector2 const & b, Vector2 const & c, Vector2 const & d)
{
    return (Turn(a, b, c) > 0) != (Turn(a, b, d) > 0) && (Turn(c, d, a) > 0) != (Turn(c, d, b) > 0);
}

/// The even-odd rule, with a ray towards X.
bool IsInside(Polygon const & polygon, Vector2 const & point)
{
    bool isInside = false;
    for (std::size_t i = 0; i < polygon.size(); ++i)
    {
        Vector2 const & p = polygon[i];
        Vector2 const & q = polygon[(i + 1) % polygon.size()];
        if ((p.Y > point.Y) != (q.Y > point.Y) && point.X < p.X + (q.X - p.X) * (point.Y - p.Y) / (q.Y - p.Y))
        {
            isInside = !isInside;
        }
    }
    return isInside;
}

Vector2 RandomPoint(Random & random)
{
    double const x = random.Uniform(-2.0, 2.0);
    return {x, random.Uniform(-2.0, 2.0)};
}

} // namespace

TEST(PolygonLine, Crossings_come_in_the_order_of_the_edges)
{
    ExpectAt({3, 1}, AskAlongX(k_Square));
    Polygon const reversed(k_Square.rbegin(), k_Square.rend());
    ExpectAt({3, 1}, AskAlongX(reversed));
    Polygon const turned{k_Square[2], k_Square[3], k_Square[0], k_Square[1]};
    ExpectAt({1, 3}, AskAlongX(turned));
}

TEST(PolygonLine, A_segment_beside_or_within_the_polygon_crosses_nothing)
{
    for (Answer const & answer :
         {Ask(k_Square, Point(0, 2), Point(10, 2)), Ask(k_Square, Point(4, 0), Point(9, 0)),
          Ask(k_Square, Point(1.5, 0), Point(2.5, 0.5)), Ask(k_Square, Point(2, 0), Point(2, 0))})
    {
        EXPECT_EQ(answer.result, S_OK);
        EXPECT_EQ(answer.flags, k_Apart);
        EXPECT_EQ(answer.count, 0U);
    }
}

TEST(PolygonLine, A_segment_that_ends_within_crosses_once)
{
    Answer const answer = Ask(k_Square, Point(2, 0), Point(2, 2));
    EXPECT_EQ(answer.flags, k_Crossing);
    ASSERT_EQ(answer.count, 1U);
    EXPECT_EQ(answer.crossings[0].t, 0.5);
    EXPECT_EQ(answer.crossings[0].position.X, 2);
    EXPECT_EQ(answer.crossings[0].position.Y, 1);
}

TEST(PolygonLine, The_ends_of_the_segment_count_with_a_slack_and_a_negative_parameter_is_raised)
{
    // The edges at x = 3 and x = 1 are 2 long: 1e-9 of area is half of that in x. They run up and down.
    struct Row
    {
        double start;
        double end;
        unsigned int count;
        double t;
    };
    double const small = 0.2e-9;
    double const large = 0.8e-9;
    Row const rows[] = {
        // Beside the square, away from an edge and back to it.
        {3, 10, 1, 0},
        {3 + small, 10, 1, 0},
        {3 + large, 10, 0, 0},
        {1, -10, 1, 0},
        {1 - small, -10, 1, 0},
        {1 - large, -10, 0, 0},
        {10, 3, 1, 1},
        {10, 3 + small, 1, 1},
        {10, 3 + large, 0, 1},
        {-10, 1, 1, 1},
        {-10, 1 - small, 1, 1},
        {-10, 1 - large, 0, 1},
        // Within the square, from an edge to its middle and back.
        {3, 2, 1, 0},
        {3 - small, 2, 1, 0},
        {3 - large, 2, 0, 0},
        {1, 2, 1, 0},
        {1 + small, 2, 1, 0},
        {1 + large, 2, 0, 0},
        {2, 3, 1, 1},
        {2, 3 - small, 1, 1},
        {2, 3 - large, 0, 1},
        {2, 1, 1, 1},
        {2, 1 + small, 1, 1},
        {2, 1 + large, 0, 1},
    };
    for (Row const & row : rows)
    {
        Vector2 const a(row.start, 0);
        Answer const answer = Ask(k_Square, a, Point(row.end, 0));
        ASSERT_EQ(answer.count, row.count) << row.start << " to " << row.end;
        if (row.count > 0 && row.t == 0)
        {
            EXPECT_EQ(answer.crossings[0].t, 0);
            EXPECT_EQ(answer.crossings[0].position.X, row.start);
        }
        else if (row.count > 0)
        {
            EXPECT_NEAR(answer.crossings[0].t, 1, 1e-9) << "not lowered to 1";
            EXPECT_NEAR(answer.crossings[0].position.X, std::round(row.end), 1e-14);
        }
    }
}

TEST(PolygonLine, Edges_along_the_segment_are_passed_over)
{
    ExpectAt({}, AskAlongX({Point(1, 0), Point(5, 0), Point(3, 0)}));
    // The limit is one of area: an edge and a segment that are both short count as parallel at any angle.
    auto const tiny = [](double size)
    {
        Polygon const polygon{Point(1, -1).Mul(size), Point(3, -1).Mul(size), Point(3, 1).Mul(size),
                              Point(1, 1).Mul(size)};
        return Ask(polygon, Point(0, 0), Point(5 * size, 0)).count;
    };
    EXPECT_EQ(tiny(0.9e-5), 0U);
    EXPECT_EQ(tiny(1.1e-5), 2U);
}

TEST(PolygonLine, An_edge_that_ends_before_the_line_within_the_slack_of_area_is_passed_over)
{
    // The segment is so short that the area passes, but the parameter on the edge is 1.000001.
    Polygon const polygon{Point(0.5e-4, -1), Point(0.5e-4, -1e-6)};
    Answer const answer = Ask(polygon, Point(0, 0), Point(1e-4, 0));
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.flags, k_Apart);
}

TEST(PolygonLine, Few_vertices)
{
    ExpectAt({}, AskAlongX({}));
    ExpectAt({}, AskAlongX({Point(5, 0)}));
    ExpectAt({5, 5}, AskAlongX({Point(4, -1), Point(6, 1)}));
}

TEST(PolygonLine, NaN_vertices_end_the_walk_like_others)
{
    Vector2 const nan(k_NaN, k_NaN);
    EXPECT_EQ(AskAlongX({nan, nan, nan}).count, 0U);
    EXPECT_EQ(AskAlongX({Point(1, -1), nan, Point(3, 1)}).count, 1U);
    // All that follows the vertex on the line counts as on it.
    EXPECT_EQ(AskAlongX({Point(1, -1), Point(2, 0), nan, nan}).result, E_UNEXPECTED);
}

TEST(PolygonLine, The_array_has_a_record_for_each_vertex)
{
    TaskMemoryFaults const memory(TaskMemoryFaults::Answer::Serve);
    unsigned long flags = 0;
    unsigned int count = 0;
    F2DPolygonVs2DLineIntersection(4, k_Square.data(), 0, Point(0, 0), Point(9, 0), flags, count, nullptr);
    EXPECT_EQ(memory.GetRequests(), 0);
    tagS3DGEOMINFO * infos = nullptr;
    F2DPolygonVs2DLineIntersection(4, k_Square.data(), 0, Point(0, 5), Point(9, 5), flags, count, &infos);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(memory.GetRequests(), 1);
    EXPECT_EQ(memory.GetLastSize(), 4 * sizeof(tagS3DGEOMINFO));
    CoTaskMemFree(infos);
}

TEST(PolygonLine, Exhausted_memory_is_told_before_a_vertex_is_read)
{
    TaskMemoryFaults const memory(TaskMemoryFaults::Answer::Refuse);
    // A number of vertices that no memory holds, one whose size in bytes is 0 modulo the address space, and four.
    for (unsigned long const vertexCount : {1UL << 60U, 1UL << 61U, 4UL})
    {
        tagS3DGEOMINFO marked;
        tagS3DGEOMINFO * infos = &marked;
        unsigned long flags = k_MarkedFlags;
        unsigned int count = k_MarkedCount;
        EXPECT_EQ(
            F2DPolygonVs2DLineIntersection(vertexCount, nullptr, 0, Point(0, 0), Point(1, 0), flags, count, &infos),
            E_OUTOFMEMORY);
        EXPECT_EQ(infos, nullptr);
        EXPECT_EQ(count, 0U);
        EXPECT_EQ(flags, k_MarkedFlags);
    }
}

TEST(PolygonLine, Generic_segments_cross_as_often_as_the_even_odd_rule_says)
{
    Random random(57);
    int total = 0;
    for (int i = 0; i < 5000; ++i)
    {
        Polygon polygon(static_cast<std::size_t>(random.Integer(3, 12)));
        for (Vector2 & vertex : polygon)
        {
            vertex = RandomPoint(random);
        }
        Vector2 const a = RandomPoint(random);
        Vector2 const b = RandomPoint(random);
        Answer const answer = Ask(polygon, a, b, random.Integer(0, 1));
        ASSERT_EQ(answer.result, S_OK);
        ASSERT_EQ(answer.count % 2 == 1, IsInside(polygon, a) != IsInside(polygon, b));
        std::size_t n = 0;
        for (std::size_t edge = 0; edge < polygon.size(); ++edge)
        {
            Vector2 const & p = polygon[edge];
            Vector2 const & q = polygon[(edge + 1) % polygon.size()];
            if (DoSegmentsCross(a, b, p, q))
            {
                ASSERT_LT(n, answer.crossings.size());
                Crossing const & crossing = answer.crossings[n];
                ASSERT_NEAR(Turn(p, q, crossing.position), 0, 1e-12);
                ASSERT_NEAR(Turn(a, b, crossing.position), 0, 1e-12);
                ASSERT_NEAR(a.X + crossing.t * (b.X - a.X), crossing.position.X, 1e-12);
                ++n;
            }
        }
        ASSERT_EQ(n, answer.count);
        total += static_cast<int>(n);
    }
    EXPECT_GT(total, 5000);
}
