#include "math/closest_position.h"

#include "geometry/intersect/signed_areas.h"
#include "geometry/intersect/three_columns.h"
#include "geometry/vector_expressions.h"
#include "geometry/vector_pair.h"
#include "math/platform/result.h"

#include <array>
#include <cstddef>

using math::detail::Cross;
using math::detail::Difference;
using math::detail::Dot;
using math::detail::Length;
using math::detail::Pair;
using math::detail::PointAlong;
using math::detail::Product;
using math::detail::ToBits;
using math::detail::VectorPair;
using Vector = C3DVector3Tpl<double>;

namespace
{

/// The foot of a point on the line of a segment, measured from its start. For vectors, or for pairs of them.
template <typename V>
struct SegmentFoot
{
    using Scalar = decltype(Dot(V(), V()));

    SegmentFoot(V const & point, V const & start, V const & end)
        : direction(Difference(end, start)), length(Length(direction))
    {
        constexpr double shortest = 1e-49;
        inverseLength = length >= shortest ? 1 / length : Scalar{};
        direction = Product(direction, inverseLength);
        distance = Dot(Difference(point, start), direction);
    }

    auto IsBeforeEnd() const { return distance < length; }
    auto IsAfterStart() const { return distance > 0; }
    Scalar GetWeightOfEnd() const { return distance * inverseLength; }
    V GetPosition(V const & start) const { return PointAlong(start, direction, distance); }

    V direction;
    Scalar length;
    Scalar inverseLength;
    Scalar distance;
};

/// A position on a triangle by its weights.
struct Closest
{
    Vector position;
    double weights[3];
};

/// Where the closest position of a triangle to a point outside can be: in an edge, named by the opposite vertex, or at
/// a vertex. The numbers are those of the pairs in FindOnOutline.
enum Place : unsigned char
{
    k_InEdgeOfA = 0,
    k_InEdgeOfB = 1,
    k_InEdgeOfC = 2,
    k_AtA = 3,
    k_AtB = 4,
    k_AtC = 5
};

/// Which place it is, by truth values of a, b and c, a bit each: whose weights at the foot in the plane are positive;
/// on whose edges the foot is after the start; in whose edges it is.
constexpr Place FindPlace(int positive, int afterStart, int within)
{
    constexpr Place inEdges[3] = {k_InEdgeOfA, k_InEdgeOfB, k_InEdgeOfC};
    constexpr Place vertices[3] = {k_AtA, k_AtB, k_AtC};
    bool const isOnePositive = positive == 1 || positive == 2 || positive == 4;
    int i = 0;
    while (i < 2 && (positive >> i & 1) != static_cast<int>(isOnePositive))
    {
        ++i;
    }
    int const next = (i + 1) % 3;
    int const last = (i + 2) % 3;
    if (isOnePositive)
    {
        // The two edges that meet at the vertex.
        return (within >> next & 1) != 0 ? inEdges[next] : ((within >> last & 1) != 0 ? inEdges[last] : vertices[i]);
    }
    // Without any positive weight this is the edge opposite a; the other two are not looked at.
    return (within >> i & 1) != 0 ? inEdges[i] : ((afterStart >> i & 1) != 0 ? vertices[last] : vertices[next]);
}

/// FindPlace of all nine truth values, the first three in the lowest bits.
constexpr auto k_Places = []
{
    std::array<Place, 512> places{};
    for (int i = 0; i < 512; ++i)
    {
        places[static_cast<std::size_t>(i)] = FindPlace(i & 7, i >> 3 & 7, i >> 6 & 7);
    }
    return places;
}();

/// The closest position of a triangle to a point whose weights at its foot are not all positive. In which edge or at
/// which vertex it is is as good as random from point to point: it is cheaper to have them all than to branch.
Closest FindOnOutline(Vector const & point, Vector const & a, Vector const & b, Vector const & c, int positive)
{
    VectorPair const bc(b, c);
    SegmentFoot<VectorPair> const onEdgesOfAB(VectorPair(point), bc, {c, a});
    SegmentFoot<Vector> const onEdgeOfC(point, a, b);
    int const afterStart = ToBits(onEdgesOfAB.IsAfterStart()) | onEdgeOfC.IsAfterStart() << 2;
    int const beforeEnd = ToBits(onEdgesOfAB.IsBeforeEnd()) | onEdgeOfC.IsBeforeEnd() << 2;
    unsigned const place = k_Places[static_cast<unsigned>(positive | afterStart << 3 | (afterStart & beforeEnd) << 6)];

    Pair const ofEnds = onEdgesOfAB.GetWeightOfEnd();
    Pair const ofStarts = 1 - ofEnds;
    double const ofEnd = onEdgeOfC.GetWeightOfEnd();
    VectorPair const positions[3] = {onEdgesOfAB.GetPosition(bc), {onEdgeOfC.GetPosition(a), a}, bc};
    Pair const weightsOfA[3] = {{0, ofEnds[1]}, {1 - ofEnd, 1}, {0, 0}};
    Pair const weightsOfB[3] = {{ofStarts[0], 0}, {ofEnd, 0}, {1, 0}};
    Pair const weightsOfC[3] = {{ofEnds[0], ofStarts[1]}, {0, 0}, {0, 1}};
    unsigned const pair = place / 2;
    unsigned const i = place % 2;
    return {positions[pair].Get(i), {weightsOfA[pair][i], weightsOfB[pair][i], weightsOfC[pair][i]}};
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
        Vector const foot = PointAlong(point, unit, Dot(Difference(a, point), unit));
        math::detail::SignedAreas areas(foot, a, b, c);
        if (areas.ofWhole > math::detail::k_StandardTolerance<double>)
        {
            areas.DivideByWhole();
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
    SegmentFoot<Vector> const foot(point, a, b);
    Vector position = a;
    double ofEnd = 0;
    double ofStart = 1;
    if (foot.IsAfterStart() && foot.IsBeforeEnd())
    {
        position = foot.GetPosition(a);
        ofEnd = foot.GetWeightOfEnd();
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
    constexpr int allPositive = 7;
    int const positive = ToBits(Pair{foot.weights[0], foot.weights[1]} > 0) | (foot.weights[2] > 0) << 2;
    bool const isInside = positive == allPositive;
    Closest const found =
        isInside ? Closest{PointAlong(point, normal, foot.t), {foot.weights[0], foot.weights[1], foot.weights[2]}}
                 : FindOnOutline(point, a, b, c, positive);
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
