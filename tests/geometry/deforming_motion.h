#pragma once

/// \file
/// A point and a triangle whose vertices move evenly, and what they span, for the tests of their collision.

#include "math/deforming_collision.h"

#include "vector_checks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

namespace geometry_test
{

inline constexpr double k_Tolerance = 1e-9;

/// A point from its first position to its second.
struct Path
{
    Vector from;
    Vector to;

    Vector At(double t) const { return Vector().Sub(to, from).Mul(t).Add(from); }
};

/// At rest.
inline Path Rest(double x, double y, double z)
{
    return {{x, y, z}, {x, y, z}};
}

struct Motion
{
    Path p;
    Path a;
    Path b;
    Path c;
};

struct Times
{
    long result = -77;
    unsigned long count = 99;
    double times[3] = {k_Mark, k_Mark, k_Mark};
};

inline Times FindTimes(Motion const & m, double tolerance = k_Tolerance)
{
    Times found;
    found.result = F3DGetFourDeformedPtsColinearTimes(m.p.from, m.p.to, m.a.from, m.a.to, m.b.from, m.b.to, m.c.from,
                                                      m.c.to, found.count, found.times, tolerance);
    return found;
}

/// A triangle at rest in the plane z = 0; the weights are (1 - x/4 - y/8, x/4, y/8).
inline Motion AgainstRestingTriangle(Path const & p)
{
    return {p, Rest(0, 0, 0), Rest(4, 0, 0), Rest(0, 8, 0)};
}

/// Down through the plane at time 0.5.
inline Path Fall(double x, double y)
{
    return {{x, y, 1}, {x, y, -1}};
}

template <typename Numbers>
void ExpectUnwritten(Numbers const & numbers, std::size_t from)
{
    for (std::size_t i = from; i < std::size(numbers); ++i)
    {
        EXPECT_EQ(numbers[i], k_Mark);
    }
}

inline Path RandomPath(Random & random)
{
    Vector const from = RandomVector(random, 1);
    return {from, RandomVector(random, 1)};
}

inline Motion RandomMotion(Random & random)
{
    Path const p = RandomPath(random);
    Path const a = RandomPath(random);
    Path const b = RandomPath(random);
    return {p, a, b, RandomPath(random)};
}

/// The four points at a time, from the point: what remains is a tetrahedron with a corner in the origin.
struct Tetrahedron
{
    Tetrahedron(Motion const & m, double t)
        : a(Vector().Sub(m.a.At(t), m.p.At(t))), b(Vector().Sub(m.b.At(t), m.p.At(t))),
          c(Vector().Sub(m.c.At(t), m.p.At(t))), normal(Vector().SetCross(a, b, c))
    {
    }

    double Volume() const { return math::detail::Dot(a, Vector().SetCross(b, c)); }
    double Height() const { return math::detail::Dot(a, normal) / normal.GetLength(); }

    /// The barycentric weight of a at the foot of the origin, for edge = (b, c), and so on around.
    double Weight(Vector const & from, Vector const & to) const
    {
        return math::detail::Dot(Vector().SetCross(from, to), normal) / normal.GetSquaredLength();
    }
    double LeastWeight() const { return std::min({Weight(b, c), Weight(c, a), Weight(a, b)}); }

    double Size() const { return std::max({a.GetLength(), b.GetLength(), c.GetLength()}); }

    Vector a;
    Vector b;
    Vector c;
    Vector normal;
};

} // namespace geometry_test
