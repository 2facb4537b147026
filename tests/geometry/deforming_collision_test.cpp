#include "math/deforming_collision.h"
#include "math/platform/result.h"

#include "deforming_motion.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

namespace
{

using namespace geometry_test;

struct Collisions : Times
{
    double weights[9] = {k_Mark, k_Mark, k_Mark, k_Mark, k_Mark, k_Mark, k_Mark, k_Mark, k_Mark};
};

Collisions FindCollisions(Motion const & m, double tolerance = k_Tolerance)
{
    Collisions found;
    found.result =
        F3DDeformedPtVsDeformedTriangleIntersection(m.p.from, m.p.to, m.a.from, m.a.to, m.b.from, m.b.to, m.c.from,
                                                    m.c.to, found.count, found.times, found.weights, tolerance);
    return found;
}

/// The same with the weights (1 - x - y, x, y) and a normal of length 1.
Motion AgainstUnitTriangle(Path const & p)
{
    return {p, Rest(0, 0, 0), Rest(1, 0, 0), Rest(0, 1, 0)};
}

void ExpectCollision(Collisions const & found, unsigned long index, double time, double a, double b, double c)
{
    ASSERT_LT(index, found.count);
    EXPECT_DOUBLE_EQ(found.times[index], time);
    EXPECT_DOUBLE_EQ(found.weights[3 * index], a);
    EXPECT_DOUBLE_EQ(found.weights[3 * index + 1], b);
    EXPECT_DOUBLE_EQ(found.weights[3 * index + 2], c);
}

void ExpectNone(Collisions const & found)
{
    EXPECT_EQ(found.result, S_FALSE);
    EXPECT_EQ(found.count, 0U);
}

} // namespace

TEST(DeformingCollision, A_point_that_rests_on_a_triangle_at_rest_collides_at_time_0)
{
    Collisions const found = FindCollisions(AgainstRestingTriangle(Rest(1, 2, 0)));
    EXPECT_EQ(found.result, S_OK);
    EXPECT_EQ(found.count, 1U);
    ExpectCollision(found, 0, 0, 0.5, 0.25, 0.25);
}

TEST(DeformingCollision, A_point_that_rests_off_the_plane_does_not_collide)
{
    Collisions const found = FindCollisions(AgainstRestingTriangle(Rest(1, 2, 3)));
    ExpectNone(found);
    ExpectUnwritten(found.times, 0);
    ExpectUnwritten(found.weights, 0);
}

TEST(DeformingCollision, A_point_through_the_triangle_collides)
{
    Collisions const found = FindCollisions(AgainstRestingTriangle(Fall(1, 2)));
    EXPECT_EQ(found.result, S_OK);
    EXPECT_EQ(found.count, 1U);
    ExpectCollision(found, 0, 0.5, 0.5, 0.25, 0.25);
    ExpectUnwritten(found.times, 1);
    ExpectUnwritten(found.weights, 3);
    ExpectCollision(FindCollisions(AgainstRestingTriangle({{1, 2, -1}, {1, 2, 1}})), 0, 0.5, 0.5, 0.25, 0.25);
}

TEST(DeformingCollision, Weights_belong_to_the_vertices_in_their_order)
{
    ExpectCollision(FindCollisions(AgainstRestingTriangle(Fall(0.5, 2))), 0, 0.5, 0.625, 0.125, 0.25);
    // The other sense of the triangle.
    Motion const turned{Fall(0.5, 2), Rest(0, 0, 0), Rest(0, 8, 0), Rest(4, 0, 0)};
    ExpectCollision(FindCollisions(turned), 0, 0.5, 0.625, 0.25, 0.125);
}

TEST(DeformingCollision, Point_and_triangle_are_taken_at_the_time_of_collision)
{
    // At time 0.5 the point is at (1, 2, 0) and the vertices at (0, 0, 0), (4, 0, 0), (0, 8, 0), and never again.
    Motion const motion{
        {{-3, 7, 1}, {5, -3, -1}}, {{-7, 2, 0}, {7, -2, 0}}, {{5, 3, 0}, {3, -3, 0}}, {{2, 20, 0}, {-2, -4, 0}}};
    Collisions const found = FindCollisions(motion);
    EXPECT_EQ(found.result, S_OK);
    bool isFound = false;
    for (unsigned long k = 0; k < found.count; ++k)
    {
        if (std::abs(found.times[k] - 0.5) < 1e-12)
        {
            isFound = true;
            EXPECT_NEAR(found.weights[3 * k], 0.5, 1e-12);
            EXPECT_NEAR(found.weights[3 * k + 1], 0.25, 1e-12);
            EXPECT_NEAR(found.weights[3 * k + 2], 0.25, 1e-12);
        }
    }
    EXPECT_TRUE(isFound);
}

TEST(DeformingCollision, A_crossing_beside_the_triangle_is_dropped_and_leaves_its_weights)
{
    struct Case
    {
        double x;
        double y;
        double weights[3];
    };
    for (Case const & c : {Case{-1, 2, {1, -0.25, 0.25}}, Case{1, -2, {1, 0.25, -0.25}}, Case{4, 8, {-1, 1, 1}}})
    {
        Motion const motion = AgainstRestingTriangle(Fall(c.x, c.y));
        EXPECT_EQ(FindTimes(motion).count, 1U);
        Collisions const found = FindCollisions(motion);
        ExpectNone(found);
        EXPECT_DOUBLE_EQ(found.times[0], 0.5);
        for (int i = 0; i < 3; ++i)
        {
            EXPECT_DOUBLE_EQ(found.weights[i], c.weights[i]);
        }
        ExpectUnwritten(found.weights, 3);
    }
}

TEST(DeformingCollision, A_crossing_outside_of_0_to_1_is_told)
{
    ExpectCollision(FindCollisions(AgainstRestingTriangle({{1, 2, 3}, {1, 2, 1}})), 0, 1.5, 0.5, 0.25, 0.25);
    ExpectCollision(FindCollisions(AgainstRestingTriangle({{1, 2, 1}, {1, 2, 3}})), 0, -0.5, 0.5, 0.25, 0.25);
}

TEST(DeformingCollision, A_crossing_on_an_edge_or_a_vertex_collides)
{
    ExpectCollision(FindCollisions(AgainstRestingTriangle(Fall(2, 0))), 0, 0.5, 0.5, 0.5, 0);
    ExpectCollision(FindCollisions(AgainstRestingTriangle(Fall(0, 2))), 0, 0.5, 0.75, 0, 0.25);
    ExpectCollision(FindCollisions(AgainstRestingTriangle(Fall(1, 6))), 0, 0.5, 0, 0.25, 0.75);
    ExpectCollision(FindCollisions(AgainstRestingTriangle(Fall(0, 0))), 0, 0.5, 1, 0, 0);
}

TEST(DeformingCollision, Each_weight_must_be_above_the_negative_tolerance)
{
    double const tolerance = 0x1p-10;
    double const inside = std::nextafter(tolerance, 0.0);
    auto const countAt = [tolerance](double x, double y)
    { return FindCollisions(AgainstUnitTriangle(Fall(x, y)), tolerance).count; };
    EXPECT_EQ(countAt(-tolerance, 0.5), 0U);
    EXPECT_EQ(countAt(-inside, 0.5), 1U);
    EXPECT_EQ(countAt(0.5, -tolerance), 0U);
    EXPECT_EQ(countAt(0.5, -inside), 1U);
    // The first weight is 1 - x - y; the step that is left of it has the size of those at 1.
    EXPECT_EQ(countAt(0.5, 0.5 + tolerance), 0U);
    EXPECT_EQ(countAt(0.5, 0.5 + tolerance - 0x1p-50), 1U);
}

TEST(DeformingCollision, All_collisions_of_one_motion_are_told_in_the_order_of_the_roots)
{
    Path const a{{-0.25, 0, 0}, {0.75, 0, 0}};
    Path const b{{0, -0.5, 0}, {0, 0.5, 0}};
    Path const c{{0, 0, -2}, {0, 0, -1}};
    Motion const motion{Rest(0, 0, 0), a, b, c};
    Times const times = FindTimes(motion);
    Collisions const found = FindCollisions(motion);
    EXPECT_EQ(found.result, S_OK);
    ASSERT_EQ(found.count, 3U);
    for (unsigned long k = 0; k < 3; ++k)
    {
        EXPECT_EQ(found.times[k], times.times[k]);
        // Each vertex in turn is where the point is.
        EXPECT_NEAR(found.weights[3 * k], std::abs(found.times[k] - 0.25) < 1e-9 ? 1 : 0, 1e-12);
        EXPECT_NEAR(found.weights[3 * k + 1], std::abs(found.times[k] - 0.5) < 1e-9 ? 1 : 0, 1e-12);
        EXPECT_NEAR(found.weights[3 * k + 2], std::abs(found.times[k] - 2) < 1e-9 ? 1 : 0, 1e-12);
    }
}

// The volume is -3 t t (1 + t): the plane touches the point, inside the triangle, at time 0, and at time -1 the
// triangle has collapsed.
TEST(DeformingCollision, A_touch_is_told_twice)
{
    Motion const motion{
        Rest(0, 0, 0), {{1, 0, 0}, {2.5, 0, 1}}, {{-1, 1, 0}, {-1, 2, -1}}, {{-1, -1, 0}, {-1, -2, -1}}};
    Collisions const found = FindCollisions(motion);
    EXPECT_EQ(found.result, S_OK);
    ASSERT_EQ(found.count, 3U);
    ExpectCollision(found, 0, -1, 0, 1.5, 1.5);
    ExpectCollision(found, 1, 0, 0.5, 0.25, 0.25);
    ExpectCollision(found, 2, 0, 0.5, 0.25, 0.25);
}

// The triangle folds flat at time 0.5 while the point stays off its plane. Nothing can be told to be outside, and what
// stands for the weights are twice the areas.
TEST(DeformingCollision, A_collapsed_triangle_collides_with_any_point)
{
    Motion const motion{Rest(1, 0, 1), Rest(0, 0, 0), Rest(4, 0, 0), {{0, 8, 0}, {0, -8, 0}}};
    Collisions const found = FindCollisions(motion);
    EXPECT_EQ(found.result, S_OK);
    EXPECT_EQ(found.count, 1U);
    ExpectCollision(found, 0, 0.5, 4, 0, 4);
}

TEST(DeformingCollision, Areas_are_divided_above_1e_12)
{
    double const limit = 1e-12;
    auto const find = [](double width) {
        return FindCollisions({Fall(width / 4, 0.25), Rest(0, 0, 0), Rest(width, 0, 0), Rest(0, 1, 0)});
    };
    ExpectCollision(find(limit), 0, 0.5, 0.5 * limit, 0.25 * limit, 0.25 * limit);
    ExpectCollision(find(std::nextafter(limit, 1.0)), 0, 0.5, 0.5, 0.25, 0.25);
}

// With a tolerance above 1 every coefficient counts as zero, and time 0 is looked at whatever the height. There the sum
// of the areas exceeds the whole by 6 h h, to the first order.
TEST(DeformingCollision, A_time_that_leaves_the_point_off_the_plane_is_dropped)
{
    auto const find = [](double x, double y, double height, double tolerance)
    { return FindCollisions(AgainstUnitTriangle(Rest(x, y, height)), tolerance); };
    double const kept = std::sqrt(0.00099 / 6);
    double const dropped = std::sqrt(0.00102 / 6);
    for (double const sign : {1.0, -1.0})
    {
        Collisions const found = find(0.25, 0.25, sign * kept, 2);
        EXPECT_EQ(found.result, S_OK);
        EXPECT_EQ(found.count, 1U);
        EXPECT_NEAR(found.weights[0] + found.weights[1] + found.weights[2], 1.00099, 5e-6);
        ExpectNone(find(0.25, 0.25, sign * dropped, 2));
    }
}

// Beyond a corner the sum falls with the height, through 0 down to -1 and lower: its magnitude is what is compared.
TEST(DeformingCollision, The_magnitude_of_the_sum_of_areas_is_compared)
{
    auto const sumAt = [](double height)
    { return std::sqrt(2 * height * height + 1.44) - 2 * std::sqrt(height * height + 0.01); };
    auto const heightFor = [sumAt](double sum)
    {
        double low = 0;
        double high = 10;
        for (int i = 0; i < 100; ++i)
        {
            double const middle = (low + high) / 2;
            (sumAt(middle) > sum ? low : high) = middle;
        }
        return low;
    };
    auto const countFor = [&heightFor](double sum)
    { return FindCollisions(AgainstUnitTriangle(Rest(-0.1, -0.1, heightFor(sum))), 4).count; };
    EXPECT_EQ(countFor(-1), 1U);
    EXPECT_EQ(countFor(-1.0009), 1U);
    EXPECT_EQ(countFor(-1.0011), 0U);
    EXPECT_EQ(countFor(-0.9991), 1U);
    EXPECT_EQ(countFor(-0.9989), 0U);
    EXPECT_EQ(countFor(0), 0U);
    EXPECT_EQ(countFor(0.9989), 0U);
    EXPECT_EQ(countFor(0.9991), 1U);
}

// The tolerance of the plane is a share of the triangle.
TEST(DeformingCollision, Off_the_plane_is_measured_by_the_size_of_the_triangle)
{
    for (double const size : {0.001, 1000.0})
    {
        auto const find = [size](double height)
        {
            Motion const motion{Rest(size / 4, size / 4, height * size), Rest(0, 0, 0), Rest(size, 0, 0),
                                Rest(0, size, 0)};
            return FindCollisions(motion, 2);
        };
        EXPECT_EQ(find(std::sqrt(0.00099 / 6)).count, 1U);
        Collisions const none = find(std::sqrt(0.00102 / 6));
        ExpectNone(none);
        // What is dropped leaves its weights divided all the same.
        EXPECT_NEAR(none.weights[0] + none.weights[1] + none.weights[2], 1.00102, 5e-6);
    }
}

TEST(DeformingCollision, Kept_are_the_times_at_which_the_point_is_inside_and_in_their_order)
{
    Random random(578);
    int seen[4][4] = {};
    for (int i = 0; i < 100000; ++i)
    {
        Motion const motion = RandomMotion(random);
        double const tolerance = 1e-6;
        Times const times = FindTimes(motion, tolerance);
        double expected[3];
        unsigned long count = 0;
        bool isClear = true; // no time too close to the outline, and none in doubt about the plane
        for (unsigned long k = 0; k < times.count; ++k)
        {
            Tetrahedron const tetrahedron(motion, times.times[k]);
            double const least = tetrahedron.LeastWeight();
            isClear = isClear && std::abs(least) > 1e-3 &&
                      std::abs(tetrahedron.Height()) < 1e-4 * tetrahedron.normal.GetLength() / tetrahedron.Size();
            if (least > 0)
            {
                expected[count++] = times.times[k];
            }
        }
        if (!isClear)
        {
            continue;
        }
        ++seen[times.count][count];
        Collisions const found = FindCollisions(motion, tolerance);
        EXPECT_EQ(found.result, count > 0 ? S_OK : S_FALSE);
        ASSERT_EQ(found.count, count);
        for (unsigned long k = 0; k < count; ++k)
        {
            EXPECT_EQ(found.times[k], expected[k]);
            double const * const w = found.weights + 3 * k;
            EXPECT_NEAR(w[0] + w[1] + w[2], 1, 1e-3);
            Tetrahedron const tetrahedron(motion, expected[k]);
            Vector weighted;
            weighted.Mul(tetrahedron.a, w[0]).Add(Vector().Mul(tetrahedron.b, w[1]));
            weighted.Add(Vector().Mul(tetrahedron.c, w[2]));
            EXPECT_LE(weighted.GetLength(), 2e-3 * tetrahedron.Size());
        }
        // The free place after those that were kept holds what was dropped last.
        if (count < times.count && (count == 0 || found.times[count - 1] != times.times[times.count - 1]))
        {
            Tetrahedron const last(motion, times.times[times.count - 1]);
            double const scale = 1 + std::abs(last.Weight(last.b, last.c)) + std::abs(last.Weight(last.c, last.a));
            EXPECT_NEAR(found.weights[3 * count], last.Weight(last.b, last.c), 1e-3 * scale);
            EXPECT_NEAR(found.weights[3 * count + 1], last.Weight(last.c, last.a), 1e-3 * scale);
            EXPECT_NEAR(found.weights[3 * count + 2], last.Weight(last.a, last.b), 1e-3 * scale);
        }
    }
    // Of one time and of three, all numbers of them were kept.
    for (auto const & [candidates, kept] : {std::pair{1, 0}, {1, 1}, {3, 0}, {3, 1}, {3, 2}, {3, 3}})
    {
        EXPECT_GE(seen[candidates][kept], 5) << kept << " of " << candidates;
    }
}
