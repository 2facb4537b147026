#include "math/deforming_collision.h"

#include "geometry/intersect/signed_areas.h"
#include "geometry/vector_expressions.h"
#include "geometry/vector_pair.h"
#include "math/platform/result.h"
#include "math/polynomial_roots.h"

#include <cmath>

using math::detail::Cross;
using math::detail::Difference;
using math::detail::Dot;
using math::detail::Pair;
using math::detail::ToBits;
using Vector = C3DVector3Tpl<double>;

namespace
{

/// Whether the areas are those of a point in the triangle's plane: off it they do not add up to the whole. A root that
/// is not exact leaves the point off the plane.
bool IsInPlane(math::detail::SignedAreas const & areas)
{
    constexpr double share = 0.001;
    return std::abs(std::abs(areas.ofA + areas.ofB + areas.ofC) - areas.ofWhole) < areas.ofWhole * share;
}

/// Writes the weights of p in the triangle a b c.
/// \return whether p lies in it
bool FindWeights(Vector const & p, Vector const & a, Vector const & b, Vector const & c, double tolerance,
                 double * weights)
{
    math::detail::SignedAreas areas(p, a, b, c);
    bool isInPlane = true;
    if (areas.ofWhole > math::detail::k_StandardTolerance<double>)
    {
        isInPlane = IsInPlane(areas);
        areas.DivideByWhole();
    }
    weights[0] = areas.ofA;
    weights[1] = areas.ofB;
    weights[2] = areas.ofC;
    bool const isBeyondNoEdge = ToBits(Pair{areas.ofA, areas.ofB} > -tolerance) == 3;
    return isInPlane & isBeyondNoEdge & (areas.ofC > -tolerance);
}

} // namespace

long F3DGetFourDeformedPtsColinearTimes(Vector const & p0, Vector const & p1, Vector const & a0, Vector const & a1,
                                        Vector const & b0, Vector const & b1, Vector const & c0, Vector const & c1,
                                        unsigned long & count, double * times, double const & tolerance)
{
    // Offsets from the moving point, and their changes over the unit of time.
    Vector const way = Difference(p1, p0);
    Vector const a = Difference(a0, p0);
    Vector const b = Difference(b0, p0);
    Vector const c = Difference(c0, p0);
    Vector const da = Difference(Difference(a1, a0), way);
    Vector const db = Difference(Difference(b1, b0), way);
    Vector const dc = Difference(Difference(c1, c0), way);
    // The volume det(a + t da, b + t db, c + t dc), expanded in powers of t.
    Vector const bc = Cross(b, c);
    Vector const bdc = Cross(b, dc);
    Vector const dbc = Cross(db, c);
    Vector const dbdc = Cross(db, dc);
    double const cubic = Dot(da, dbdc);
    double const quadratic = Dot(a, dbdc) + Dot(da, bdc) + Dot(da, dbc);
    double const linear = Dot(a, bdc) + Dot(a, dbc) + Dot(da, bc);
    double const constant = Dot(a, bc);
    F3DGetCubicRealRoots(cubic, quadratic, linear, constant, &count, &times[0], &times[1], &times[2], tolerance);
    return S_OK;
}

long F3DDeformedPtVsDeformedTriangleIntersection(Vector const & p0, Vector const & p1, Vector const & a0,
                                                 Vector const & a1, Vector const & b0, Vector const & b1,
                                                 Vector const & c0, Vector const & c1, unsigned long & count,
                                                 double * times, double * weights, double const & tolerance)
{
    F3DGetFourDeformedPtsColinearTimes(p0, p1, a0, a1, b0, b1, c0, c1, count, times, tolerance);
    unsigned long const candidateCount = count;
    unsigned long kept = 0;
    for (unsigned long i = 0; i < candidateCount; ++i)
    {
        double const t = times[i];
        auto const at = [t](Vector const & from, Vector const & to)
        { return math::detail::PointAlong(from, Difference(to, from), t); };
        unsigned long const isKept =
            FindWeights(at(p0, p1), at(a0, a1), at(b0, b1), at(c0, c1), tolerance, weights + 3 * kept) ? 1 : 0;
        // An index and no branch, which nobody could foretell: a time that is dropped leaves the place as it is.
        times[kept] = times[kept + isKept * (i - kept)];
        kept += isKept;
    }
    count = kept;
    return kept > 0 ? S_OK : S_FALSE;
}
