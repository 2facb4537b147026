#include "math/closest_position.h"

#include "geometry/intersect/signed_areas.h"
#include "geometry/intersect/three_columns.h"
#include "geometry/vector_expressions.h"
#include "math/platform/result.h"

#include <initializer_list>

using math::detail::Cross;
using math::detail::Difference;
using math::detail::Dot;
using Vector = C3DVector3Tpl<double>;

namespace
{

/// The foot of a point on the line of a segment, measured from its start.
struct SegmentFoot
{
    SegmentFoot(Vector const & point, Vector const & start, Vector const & end) : direction(Difference(end, start))
    {
        constexpr double shortest = 1e-49;
        length = direction.GetLength();
        inverseLength = length >= shortest ? 1 / length : 0;
        direction.Mul(inverseLength);
        distance = Dot(Difference(point, start), direction);
    }

    bool IsBeforeEnd() const { return distance < length; }
    bool IsAfterStart() const { return distance > 0; }
    double WeightOfEnd() const { return distance * inverseLength; }
    Vector Position(Vector const & start) const { return math::detail::PointAlong(start, direction, distance); }

    Vector direction;
    double length;
    double inverseLength;
    double distance;
};

/// A position on a triangle by its weights.
struct Closest
{
    Vector position;
    double weights[3];
};

Closest AtVertex(Vector const * const (&vertices)[3], int i)
{
    Closest closest{*vertices[i], {0, 0, 0}};
    closest.weights[i] = 1;
    return closest;
}

/// The closest position in the interior of the edge opposite vertex i.
struct EdgeSearch
{
    EdgeSearch(Vector const & point, Vector const * const (&vertices)[3], int i)
        : start((i + 1) % 3), end((i + 2) % 3), foot(point, *vertices[start], *vertices[end]),
          isFound(foot.IsAfterStart() && foot.IsBeforeEnd())
    {
    }

    Closest Result(Vector const * const (&vertices)[3]) const
    {
        Closest closest{foot.Position(*vertices[start]), {0, 0, 0}};
        closest.weights[end] = foot.WeightOfEnd();
        closest.weights[start] = 1 - closest.weights[end];
        return closest;
    }

    int NearerEnd() const { return foot.IsAfterStart() ? end : start; }

    int start;
    int end;
    SegmentFoot foot;
    bool isFound;
};

/// The closest position of a triangle whose vertices have these weights at the foot of the point, not all positive.
Closest FindOnOutline(Vector const & point, Vector const * const (&vertices)[3], double const (&weights)[3],
                      int positiveCount)
{
    bool const isPositiveWanted = positiveCount == 1;
    int i = 0;
    while ((weights[i] > 0) != isPositiveWanted)
    {
        ++i;
    }
    if (isPositiveWanted)
    {
        // The two edges that meet at the vertex.
        for (int const opposite : {(i + 1) % 3, (i + 2) % 3})
        {
            EdgeSearch const search(point, vertices, opposite);
            if (search.isFound)
            {
                return search.Result(vertices);
            }
        }
        return AtVertex(vertices, i);
    }
    // Without any positive weight this is the edge opposite a; the other two are not looked at.
    EdgeSearch const search(point, vertices, i);
    return search.isFound ? search.Result(vertices) : AtVertex(vertices, search.NearerEnd());
}

/// The weights of the point's foot in the plane of a triangle with the normal N, and how far along N the foot is.
struct PlaneFoot
{
    PlaneFoot(Vector const & point, Vector const & a, Vector const & b, Vector const & c, Vector const & normal)
    {
        if (math::detail::SolveThreeColumns(normal, Difference(c, a), Difference(c, b), Difference(c, point), t,
                                            weights[0], weights[1]))
        {
            weights[2] = 1 - weights[0] - weights[1];
            return;
        }
        // The triangle is too thin for its determinant: take areas in its plane.
        Vector const unit = math::detail::UnitOrSame(normal);
        Vector const foot = math::detail::PointAlong(point, unit, Dot(Difference(a, point), unit));
        math::detail::SignedAreas areas(foot, a, b, c, normal);
        double const length = normal.GetLength();
        if (length > math::detail::k_StandardTolerance<double>)
        {
            areas.Divide(length);
        }
        weights[0] = areas.ofA;
        weights[1] = areas.ofB;
        weights[2] = areas.ofC;
        t = b.X - a.X; // no height of anything: what this path has always answered with
    }

    double t = 0;
    double weights[3] = {0, 0, 0};
};

} // namespace

long F3DClosestPositionOnSegment(Vector const & point, Vector const & a, Vector const & b, double & weightA,
                                 double & weightB, double * squaredDistance, Vector * closest)
{
    SegmentFoot const foot(point, a, b);
    Vector position = a;
    double ofEnd = 0;
    double ofStart = 1;
    if (foot.IsAfterStart() && foot.IsBeforeEnd())
    {
        position = foot.Position(a);
        ofEnd = foot.WeightOfEnd();
        ofStart = 1 - ofEnd;
    }
    else if (foot.IsAfterStart() && foot.distance >= foot.length)
    {
        position = b;
        ofEnd = 1;
        ofStart = 0;
    }
    weightA = ofStart;
    weightB = ofEnd;
    if (squaredDistance != nullptr)
    {
        *squaredDistance = GetSquaredDistance(point, position);
    }
    if (closest != nullptr)
    {
        *closest = position;
    }
    return S_OK;
}

long F3DClosestPositionOnTriangle(Vector const & point, Vector const & a, Vector const & b, Vector const & c,
                                  double & weightA, double & weightB, double & weightC, double * squaredDistance,
                                  Vector * closest)
{
    constexpr double leastSquare = 1e-50;
    Vector const edge1 = Difference(b, a);
    Vector const edge2 = Difference(c, a);
    Vector const normal = Cross(edge1, edge2);
    double const normalSquare = normal.GetSquaredLength();
    if (normalSquare < leastSquare)
    {
        if (edge1.GetSquaredLength() > edge2.GetSquaredLength())
        {
            weightC = 0;
            return F3DClosestPositionOnSegment(point, a, b, weightA, weightB, squaredDistance, closest);
        }
        weightB = 0;
        return F3DClosestPositionOnSegment(point, a, c, weightA, weightC, squaredDistance, closest);
    }
    PlaneFoot const foot(point, a, b, c, normal);
    int const positiveCount = (foot.weights[0] > 0) + (foot.weights[1] > 0) + (foot.weights[2] > 0);
    bool const isInside = positiveCount == 3;
    Closest const found = isInside ? Closest{math::detail::PointAlong(point, normal, foot.t),
                                             {foot.weights[0], foot.weights[1], foot.weights[2]}}
                                   : FindOnOutline(point, {&a, &b, &c}, foot.weights, positiveCount);
    weightA = found.weights[0];
    weightB = found.weights[1];
    weightC = found.weights[2];
    if (squaredDistance != nullptr)
    {
        *squaredDistance = isInside ? foot.t * foot.t * normalSquare : GetSquaredDistance(point, found.position);
    }
    if (closest != nullptr)
    {
        *closest = found.position;
    }
    return S_OK;
}
