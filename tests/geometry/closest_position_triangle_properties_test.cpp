// The closest position on a triangle, judged by the closest of its inside and its three edges.
//
// Where the search by signs is not exact: a point beyond an obtuse corner, so far along one of its edges that the foot
// is past the far end of the edge, gets the corner and not that end. For triangles with vertices spread evenly over the
// cube from -1 to 1 and points over the cube from -2 to 2 this is 1.1 percent of all answers; for slivers, whose third
// vertex is within a tenth to a hundred-thousandth of the line of the other two, it is 25 percent. Everywhere else the
// answers are exact: beyond an edge the triangle lies behind the edge's line, and a foot past an end of it happens
// only beside that end.

#include "math/closest_position.h"

#include "vector_checks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using geometry_test::Random;
using geometry_test::RandomVector;
using geometry_test::Vector;
using Real = long double;

struct Point
{
    Point(Vector const & v) : x(v.X), y(v.Y), z(v.Z) {}
    Point(Real px, Real py, Real pz) : x(px), y(py), z(pz) {}

    Point operator+(Point const & o) const { return {x + o.x, y + o.y, z + o.z}; }
    Point operator-(Point const & o) const { return {x - o.x, y - o.y, z - o.z}; }
    Point operator*(Real s) const { return {x * s, y * s, z * s}; }

    Real x;
    Real y;
    Real z;
};

Real Dot(Point const & a, Point const & b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Point Cross(Point const & a, Point const & b)
{
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Real Distance(Point const & a, Point const & b)
{
    return std::sqrt(Dot(a - b, a - b));
}

struct Triangle
{
    Vector vertices[3];

    Point At(int i) const { return vertices[i % 3]; }
    Point Normal() const { return Cross(At(1) - At(0), At(2) - At(0)); }

    /// The barycentric weight of vertex i at the foot of a point on the plane.
    Real Weight(Point const & point, int i) const
    {
        Point const normal = Normal();
        return Dot(Cross(At(i + 2) - At(i + 1), point - At(i + 1)), normal) / Dot(normal, normal);
    }

    Real DistanceToEdge(Point const & point, int from, int to) const
    {
        Point const edge = At(to) - At(from);
        Real const t = Dot(point - At(from), edge) / Dot(edge, edge);
        return Distance(point, At(from) + edge * std::fmin(std::fmax(t, 0), 1));
    }

    Real DistanceTo(Point const & point) const
    {
        if (Weight(point, 0) > 0 && Weight(point, 1) > 0 && Weight(point, 2) > 0)
        {
            Point const normal = Normal();
            return std::abs(Dot(point - At(0), normal)) / std::sqrt(Dot(normal, normal));
        }
        return std::fmin(DistanceToEdge(point, 0, 1),
                         std::fmin(DistanceToEdge(point, 1, 2), DistanceToEdge(point, 2, 0)));
    }

    /// Whether vertex i is the only one with a positive weight, and the foot on one of its edges past the far end.
    bool IsFarBeyondCorner(Point const & point, int i) const
    {
        auto const isPast = [&](int end)
        {
            Point const edge = At(end) - At(i);
            return Dot(point - At(i), edge) >= Dot(edge, edge);
        };
        return !(Weight(point, i + 1) > 0) && !(Weight(point, i + 2) > 0) && (isPast(i + 1) || isPast(i + 2));
    }
};

struct Answer
{
    double weights[3];
    double squaredDistance;
    Vector closest;
};

Answer Ask(Vector const & point, Triangle const & triangle)
{
    Answer answer;
    F3DClosestPositionOnTriangle(point, triangle.vertices[0], triangle.vertices[1], triangle.vertices[2],
                                 answer.weights[0], answer.weights[1], answer.weights[2], &answer.squaredDistance,
                                 &answer.closest);
    return answer;
}

/// Position, weights and distance of an answer tell of the same point, which is a point of the triangle.
void ExpectConsistent(Answer const & answer, Vector const & point, Triangle const & triangle, double tolerance)
{
    Point weighted(0, 0, 0);
    double sum = 0;
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_GE(answer.weights[i], 0);
        weighted = weighted + triangle.At(i) * answer.weights[i];
        sum += answer.weights[i];
    }
    EXPECT_NEAR(sum, 1, 1e-15);
    EXPECT_LE(Distance(weighted, answer.closest), tolerance);
    EXPECT_NEAR(std::sqrt(answer.squaredDistance), static_cast<double>(Distance(point, answer.closest)), tolerance);
}

/// Compares the answer with the true one, or with the corner where that is what it has to be.
/// \return whether it was the corner, and the corner is not the closest
bool JudgeIsShortCut(Vector const & point, Triangle const & triangle, double tolerance)
{
    Answer const answer = Ask(point, triangle);
    ExpectConsistent(answer, point, triangle, tolerance);
    auto const distance = static_cast<double>(Distance(point, answer.closest));
    auto const least = static_cast<double>(triangle.DistanceTo(point));
    for (int i = 0; i < 3; ++i)
    {
        if (triangle.IsFarBeyondCorner(point, i))
        {
            EXPECT_EQ(answer.weights[i], 1);
            EXPECT_GT(distance, least);
            return true;
        }
    }
    EXPECT_NEAR(distance, least, tolerance);
    return false;
}

} // namespace

TEST(ClosestPositionOnTriangle, The_judge_agrees_with_samples_of_the_triangle)
{
    Random random(563);
    for (int i = 0; i < 100; ++i)
    {
        Triangle const triangle{{RandomVector(random, 1), RandomVector(random, 1), RandomVector(random, 1)}};
        Point const point = RandomVector(random, 2);
        Real best = std::numeric_limits<Real>::infinity();
        int const n = 60;
        for (int j = 0; j <= n; ++j)
        {
            for (int k = 0; j + k <= n; ++k)
            {
                Point const sample = triangle.At(0) * (Real(j) / n) + triangle.At(1) * (Real(k) / n) +
                                     triangle.At(2) * (Real(n - j - k) / n);
                best = std::fmin(best, Distance(point, sample));
            }
        }
        Real const distance = triangle.DistanceTo(point);
        EXPECT_LE(distance, best + 1e-15L);
        // No point of the triangle is farther from the samples than an edge of a cell.
        EXPECT_GE(distance, best - 2 * std::sqrt(Real(3)) / n);
    }
}

TEST(ClosestPositionOnTriangle, Only_far_beyond_obtuse_corners_is_there_a_closer_position)
{
    Random random(564);
    int const count = 20000;
    int shortCuts = 0;
    for (int i = 0; i < count; ++i)
    {
        Triangle const triangle{{RandomVector(random, 1), RandomVector(random, 1), RandomVector(random, 1)}};
        shortCuts += JudgeIsShortCut(RandomVector(random, 2), triangle, 1e-12) ? 1 : 0;
    }
    RecordProperty("short_cuts", shortCuts);
    EXPECT_NEAR(shortCuts / static_cast<double>(count), 0.011, 0.001);
}

TEST(ClosestPositionOnTriangle, On_slivers_too_only_far_beyond_obtuse_corners_is_there_a_closer_position)
{
    Random random(565);
    int const count = 10000;
    int shortCuts = 0;
    for (int i = 0; i < count; ++i)
    {
        Vector const a = RandomVector(random, 1);
        Vector const b = RandomVector(random, 1);
        Vector c;
        c.LinearPositionInterpolate(a, b, random.Uniform(-1.0, 2.0));
        c.Add(Vector().Mul(RandomVector(random, 1), std::abs(random.OverDecades(-5, -1))));
        Vector const * const vertices[3] = {&a, &b, &c};
        int const first = random.Integer(0, 2);
        Triangle const triangle{{*vertices[first], *vertices[(first + 1) % 3], *vertices[(first + 2) % 3]}};
        shortCuts += JudgeIsShortCut(RandomVector(random, 2), triangle, 1e-8) ? 1 : 0;
    }
    RecordProperty("short_cuts", shortCuts);
    EXPECT_NEAR(shortCuts / static_cast<double>(count), 0.25, 0.01);
}

TEST(ClosestPositionOnTriangle, Scale_and_place_do_not_matter)
{
    Random random(566);
    for (int i = 0; i < 5000; ++i)
    {
        double const size = std::abs(random.OverDecades(-4, 4));
        Vector const place = RandomVector(random, 10 * size);
        auto const near = [&](double reach) { return RandomVector(random, reach * size).Add(place); };
        Triangle const triangle{{near(1), near(1), near(1)}};
        JudgeIsShortCut(near(2), triangle, 1e-11 * size);
    }
}
