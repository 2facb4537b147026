#include "geometry/polygon_line_checks.h"
#include "support/random.h"

#include <algorithm>

using namespace polygon_test;
using test_support::Random;

namespace
{

/// The polygon from another of its vertices on.
Polygon StartAt(Polygon polygon, std::size_t first)
{
    std::rotate(polygon.begin(), polygon.begin() + static_cast<std::ptrdiff_t>(first), polygon.end());
    return polygon;
}

Polygon MirrorAtX(Polygon polygon)
{
    for (Vector2 & vertex : polygon)
    {
        vertex.Y = -vertex.Y;
    }
    return polygon;
}

/// The places of the crossings whatever vertex the walk starts at, in order of place.
void ExpectFromAnyStart(std::vector<double> places, Polygon const & polygon, int orientation = 0)
{
    std::sort(places.begin(), places.end());
    for (std::size_t first = 0; first < polygon.size(); ++first)
    {
        SCOPED_TRACE(first);
        Answer answer = AskAlongX(StartAt(polygon, first), orientation);
        std::sort(answer.crossings.begin(), answer.crossings.end(),
                  [](Crossing const & l, Crossing const & r) { return l.t < r.t; });
        ExpectAt(places, answer);
    }
}

/// Turns left from the first of two vertices on the line to the second, coming from above.
Polygon const k_LeftOntoLine{Point(2, 1), Point(3, 0), Point(5, 0), Point(6, -1), Point(2, -1)};

/// The crossings by the signs of the vertices alone, for polygons on the lattice: one wherever the next vertex off the
/// line is on the other side.
struct Judge
{
    Judge(Polygon const & polygon, Vector2 const & d, int orientation)
    {
        std::size_t const n = polygon.size();
        auto const sideOf = [&](std::size_t i)
        {
            Vector2 const & v = polygon[i % n];
            double const side = d.X * v.Y - d.Y * v.X;
            return side > 0 ? 1 : (side < 0 ? -1 : 0);
        };
        for (std::size_t i = 0; i < n; ++i)
        {
            if (sideOf(i) == 0)
            {
                continue;
            }
            ++offLine;
            std::size_t j = i + 1;
            while (sideOf(j) == 0)
            {
                ++j;
            }
            if (sideOf(j) == sideOf(i))
            {
                continue;
            }
            Vector2 const & from = polygon[i];
            Vector2 const & next = polygon[(i + 1) % n];
            Vector2 const & last = polygon[(j - 1) % n];
            if (j == i + 1)
            {
                double const h0 = d.X * from.Y - d.Y * from.X;
                double const h1 = d.X * next.Y - d.Y * next.X;
                double const s = h0 / (h0 - h1);
                positions.emplace_back(from.X + s * (next.X - from.X), from.Y + s * (next.Y - from.Y));
                continue;
            }
            double const turn = (next.X - from.X) * (last.Y - next.Y) - (next.Y - from.Y) * (last.X - next.X);
            bool const isLeft = turn > 0;
            positions.push_back(isLeft == (orientation == 1) ? last : next);
        }
    }

    int offLine = 0;
    std::vector<Vector2> positions;
};

} // namespace

TEST(PolygonLineVertex, A_vertex_passed_through_counts_once)
{
    ExpectFromAnyStart({4, 2}, {Point(2, -1), Point(4, 0), Point(6, 1), Point(2, 1)});
    ExpectFromAnyStart({4, 2}, {Point(2, 1), Point(4, 0), Point(6, -1), Point(2, -1)});
    // Twice through vertices.
    ExpectFromAnyStart({1, 4}, {Point(1, 0), Point(2, -1), Point(4, 0), Point(2, 1)});
}

TEST(PolygonLineVertex, A_vertex_touched_does_not_count)
{
    Polygon const below{Point(2, -1), Point(4, 0), Point(6, -1)};
    ExpectFromAnyStart({}, below);
    ExpectFromAnyStart({}, MirrorAtX(below));
    // Touched by a spike: both neighbours are one vertex, or in one place.
    ExpectFromAnyStart({}, {Point(2, -2), Point(3, -1), Point(4, 0), Point(3, -1)});
}

TEST(PolygonLineVertex, The_walk_goes_on_with_the_edge_after_the_vertices_passed)
{
    ExpectFromAnyStart({3, 4.5}, {Point(2, -1), Point(3, 0), Point(4, 1), Point(5, -1)});
    ExpectFromAnyStart({4.5, 7}, {Point(2, -1), Point(3, 0), Point(4, -1), Point(5, 1), Point(9, -1)});
    ExpectFromAnyStart({3, 5.5, 6.5},
                       {Point(2, -1), Point(3, 0), Point(4, 0), Point(5, 1), Point(6, -1), Point(7, 1), Point(2, 9),
                        Point(-1, 9), Point(-1, -1)},
                       1);
}

TEST(PolygonLineVertex, A_run_on_the_line_counts_once_at_the_end_that_orientation_and_turn_choose)
{
    // The edge back, at x = 2, crosses in any case.
    ExpectFromAnyStart({5, 2}, k_LeftOntoLine, 1);
    ExpectFromAnyStart({3, 2}, k_LeftOntoLine, 0);
    ExpectFromAnyStart({3, 2}, MirrorAtX(k_LeftOntoLine), 1);
    ExpectFromAnyStart({5, 2}, MirrorAtX(k_LeftOntoLine), 0);
}

TEST(PolygonLineVertex, Another_orientation_always_takes_the_first_of_a_run)
{
    for (int const orientation : {2, -1, 0x10000})
    {
        ExpectFromAnyStart({3, 2}, k_LeftOntoLine, orientation);
        ExpectFromAnyStart({3, 2}, MirrorAtX(k_LeftOntoLine), orientation);
    }
}

TEST(PolygonLineVertex, A_run_that_turns_back_is_judged_by_its_last_vertex)
{
    // From 3 out to 8 and back to 2.5: the last vertex lies to the right of the edge that came down.
    Polygon const polygon{Point(2, 1), Point(3, 0), Point(8, 0), Point(2.5, 0), Point(1, -1), Point(1, 1)};
    ExpectFromAnyStart({3, 1}, polygon, 1);
    ExpectFromAnyStart({2.5, 1}, polygon, 0);
    // And out to 2.5 and on to 8.
    Polygon const forth{Point(2, 1), Point(3, 0), Point(2.5, 0), Point(8, 0), Point(1, -1), Point(1, 1)};
    ExpectFromAnyStart({8, 1}, forth, 1);
    ExpectFromAnyStart({3, 1}, forth, 0);
}

TEST(PolygonLineVertex, A_run_in_one_place_has_no_turn)
{
    Polygon const polygon{Point(2, 1), Point(3, 0), Point(3, 0), Point(4, -1), Point(2, -1)};
    ExpectFromAnyStart({3, 2}, polygon, 0);
    ExpectFromAnyStart({3, 2}, polygon, 1);
    // With 0 the position is the vertex itself, and with 1 the point of the segment beside it.
    double const height = 5e-11;
    Polygon const raised{Point(3, 1), Point(3, height), Point(3, height), Point(4, -1), Point(2, -1)};
    EXPECT_EQ(AskAlongX(raised, 0).crossings.at(0).position.Y, height);
    EXPECT_EQ(AskAlongX(raised, 1).crossings.at(0).position.Y, 0);
    // The turn is taken from the last vertex even where a run comes back to its first one.
    Polygon const there_and_back{Point(2, 1), Point(3, 0), Point(5, 0), Point(3, 0), Point(4, -1), Point(2, -1)};
    ExpectFromAnyStart({3, 2}, there_and_back, 1);
    ExpectFromAnyStart({3, 2}, there_and_back, 0);
}

TEST(PolygonLineVertex, A_run_that_is_only_touched_does_not_count)
{
    Polygon const two{Point(2, -1), Point(3, 0), Point(5, 0), Point(6, -1)};
    Polygon const three{Point(2, -1), Point(3, 0), Point(5, 0), Point(4, 0), Point(6, -1)};
    for (int const orientation : {0, 1})
    {
        ExpectFromAnyStart({}, two, orientation);
        ExpectFromAnyStart({}, three, orientation);
        ExpectFromAnyStart({}, MirrorAtX(three), orientation);
    }
}

TEST(PolygonLineVertex, A_record_at_the_last_vertex_of_a_run_has_its_exact_position)
{
    // On the line within the limit but not exactly, which shows which coordinate the parameter is from.
    Polygon const polygon{Point(2, 3), Point(3, 3), Point(5, 5 + 4e-7), Point(6, 5), Point(2, -1)};
    Answer const answer = Ask(polygon, Point(0, 0), Point(10, 10), 1);
    ASSERT_EQ(answer.count, 2U);
    EXPECT_EQ(answer.crossings[0].position.X, 5);
    EXPECT_EQ(answer.crossings[0].position.Y, 5 + 4e-7);
    EXPECT_EQ(answer.crossings[0].t, 0.5) << "by X, not by Y";
}

TEST(PolygonLineVertex, The_parameter_of_the_last_vertex_is_by_Y_where_the_segment_has_no_extent_in_X)
{
    Polygon const polygon{Point(-1, -1), Point(0, 0), Point(0, 5), Point(1, 6), Point(1, -1)};
    auto const parameterOfLast = [&](double dx)
    {
        for (int const orientation : {0, 1})
        {
            Answer const answer = Ask(polygon, Point(0, 0), Point(dx, 10), orientation);
            if (answer.count > 0 && answer.crossings[0].position.Y == 5)
            {
                return answer.crossings[0].t;
            }
        }
        return -1.0;
    };
    EXPECT_EQ(parameterOfLast(0), 0.5);
    EXPECT_EQ(parameterOfLast(1e-9), 0.5);
    EXPECT_EQ(parameterOfLast(-1e-9), 0.5);
    EXPECT_EQ(parameterOfLast(std::nextafter(1e-9, 1)), 0);
    EXPECT_EQ(parameterOfLast(-1.1e-9), 0);
}

TEST(PolygonLineVertex, Vertices_closer_to_the_line_than_a_millionth_are_on_it)
{
    // Up to the line, then a vertex above it by so much, then down again.
    auto const crossingsAt = [](double height) {
        return AskAlongX({Point(2, -1), Point(4, 0), Point(5, height), Point(6, -1)}).count;
    };
    EXPECT_EQ(crossingsAt(1.001e-6), 2U) << "the next vertex is off the line: up here, and down on the last edge";
    EXPECT_EQ(crossingsAt(0.999e-6), 0U) << "the next vertex is on the line, and that after it back below";
}

TEST(PolygonLineVertex, An_edge_that_ends_within_a_billionth_of_its_length_ends_on_the_line)
{
    auto const ask = [](double y) { return AskAlongX({Point(4, -1), Point(4, y), Point(6, -1)}); };
    // Just above the line: an end on it, touched.
    EXPECT_EQ(ask(0.5e-9).count, 0U);
    EXPECT_EQ(ask(-0.5e-9).count, 0U);
    // Farther above it: an ordinary crossing in and one out; farther below: nothing.
    EXPECT_EQ(ask(2e-9).count, 2U);
    EXPECT_EQ(ask(-2e-9).count, 0U);
}

TEST(PolygonLineVertex, Vertices_on_the_line_beyond_the_segment_do_not_count)
{
    ExpectFromAnyStart({}, {Point(11, -1), Point(12, 0), Point(13, 1), Point(14, -1)});
    // A run that reaches into the segment from beyond its end has its first vertex outside it.
    ExpectFromAnyStart({}, {Point(13, 1), Point(12, 0), Point(9, 0), Point(8, -1), Point(20, -1)}, 0);
    // A run that leaves it counts, and may be reported at its last vertex, beyond the end.
    Polygon const leaving{Point(8, 1), Point(9, 0), Point(12, 0), Point(13, -1), Point(20, -1), Point(20, 1)};
    ExpectFromAnyStart({12}, leaving, 1);
    ExpectFromAnyStart({9}, leaving, 0);
}

TEST(PolygonLineVertex, The_ends_of_the_segment_pass_through_vertices_too)
{
    ExpectFromAnyStart({10}, {Point(9, -1), Point(10, 0), Point(11, 1), Point(20, 1), Point(20, -1)});
    ExpectFromAnyStart({0}, {Point(-1, -1), Point(0, 0), Point(-1, 1), Point(-5, 0.5)});
}

TEST(PolygonLineVertex, A_polygon_without_another_vertex_off_the_line_is_refused)
{
    Polygon const polygons[] = {
        {Point(2, -1), Point(4, 0)},
        {Point(4, 0), Point(2, -1)},
        {Point(2, -1), Point(4, 0), Point(5, 0)},
        {Point(2, -1), Point(4, 0), Point(5, 0), Point(3, 0)},
    };
    for (Polygon const & polygon : polygons)
    {
        for (std::size_t first = 0; first < polygon.size(); ++first)
        {
            Answer const answer = AskAlongX(StartAt(polygon, first));
            EXPECT_EQ(answer.result, E_UNEXPECTED);
            EXPECT_EQ(answer.flags, k_MarkedFlags);
            EXPECT_EQ(answer.count, 0U);
        }
    }
}

TEST(PolygonLineVertex, For_a_segment_shorter_than_a_millionth_every_vertex_is_on_the_line)
{
    // It has no direction to measure offsets from. What was found up to there stays in the count.
    Polygon const polygon{Point(1e-7, -1), Point(1e-7, 1), Point(3e-7, 1), Point(3e-7, 0), Point(9, -1)};
    Answer const shorter = Ask(polygon, Point(0, 0), Point(0.9e-6, 0));
    EXPECT_EQ(shorter.result, E_UNEXPECTED);
    EXPECT_EQ(shorter.flags, k_MarkedFlags);
    EXPECT_EQ(shorter.count, 1U);
    Answer const longer = Ask(polygon, Point(0, 0), Point(1.1e-6, 0));
    EXPECT_EQ(longer.result, S_OK);
    EXPECT_EQ(longer.count, 2U);
}

TEST(PolygonLineVertex, On_the_lattice_crossings_are_changes_of_side)
{
    Random random(58);
    Vector2 const directions[] = {Point(1, 0), Point(-1, 0), Point(0, 1), Point(1, 1), Point(-1, 2)};
    int refused = 0;
    int runs = 0;
    for (int i = 0; i < 20000; ++i)
    {
        Vector2 const & d = directions[random.Integer(0, 4)];
        Polygon polygon(static_cast<std::size_t>(random.Integer(2, 9)));
        for (Vector2 & vertex : polygon)
        {
            // On the line one time in two.
            double const along = random.Integer(-2, 2);
            double const across = random.Integer(0, 1) == 0 ? 0 : random.Integer(-2, 2);
            vertex = Point(along * d.X - across * d.Y, along * d.Y + across * d.X);
        }
        int const orientation = random.Integer(0, 1);
        Answer const answer = Ask(polygon, Vector2(d).Mul(-16), Vector2(d).Mul(16), orientation);
        Judge const judge(polygon, d, orientation);
        if (judge.offLine == 1)
        {
            ASSERT_EQ(answer.result, E_UNEXPECTED);
            ++refused;
            continue;
        }
        ASSERT_EQ(answer.result, S_OK);
        ASSERT_EQ(answer.flags, judge.positions.empty() ? k_Apart : k_Crossing);
        ASSERT_EQ(answer.count, judge.positions.size());
        for (std::size_t n = 0; n < judge.positions.size(); ++n)
        {
            Crossing const & crossing = answer.crossings[n];
            ASSERT_NEAR(crossing.position.X, judge.positions[n].X, 1e-12);
            ASSERT_NEAR(crossing.position.Y, judge.positions[n].Y, 1e-12);
            ASSERT_NEAR(d.X * (32 * crossing.t - 16), crossing.position.X, 1e-12);
            ASSERT_NEAR(d.Y * (32 * crossing.t - 16), crossing.position.Y, 1e-12);
            ++runs;
        }
    }
    EXPECT_GT(refused, 100);
    EXPECT_GT(runs, 10000);
}
