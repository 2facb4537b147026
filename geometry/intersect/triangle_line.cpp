#include "geometry/intersect/signed_areas.h"
#include "geometry/intersect/three_columns.h"
#include "geometry/vector_expressions.h"
#include "math/platform/result.h"
#include "math/triangle_intersection.h"

#include <cmath>

using math::detail::Difference;
using math::detail::Dot;
using Vector = C3DVector3Tpl<double>;

long F3DWorldSegmentVsTriangleIntersection(Vector const & origin, Vector const & direction, Vector const & a,
                                           Vector const & b, Vector const & c, double & weightA, double & weightB,
                                           double & weightC, Vector * position, double * parameter)
{
    double t = 0;
    bool const isSolved = math::detail::SolveThreeColumns(direction, Difference(c, a), Difference(c, b),
                                                          Difference(c, origin), t, weightA, weightB);
    weightC = 1 - weightA - weightB;
    if (!isSolved)
    {
        return S_FALSE;
    }
    if (position != nullptr)
    {
        *position = math::detail::PointAlong(origin, direction, t);
    }
    if (parameter != nullptr)
    {
        *parameter = t;
    }
    return S_OK;
}

long F3DWorldSegmentVsTriangleIntersectionOld(Vector const & start, Vector const & end, Vector const & a,
                                              Vector const & b, Vector const & c, double & weightA, double & weightB,
                                              double & weightC, Vector * position)
{
    Vector direction = Difference(end, start);
    // A NaN is not short: it goes on into the outputs.
    constexpr double tolerance = math::detail::k_StandardTolerance<double>;
    if (std::abs(direction.X) <= tolerance && std::abs(direction.Y) <= tolerance && std::abs(direction.Z) <= tolerance)
    {
        return S_FALSE;
    }
    direction.Normalize();
    auto const project = [&](Vector const & vertex)
    { return Difference(vertex, Vector().Mul(direction, Dot(Difference(vertex, start), direction))); };
    Vector const projectedA = project(a);
    Vector const projectedB = project(b);
    Vector const projectedC = project(c);
    math::detail::SignedAreas areas(start, projectedA, projectedB, projectedC);
    if (areas.ofWhole > tolerance)
    {
        areas.DivideByWhole();
    }
    weightA = areas.ofA;
    weightB = areas.ofB;
    weightC = areas.ofC;
    if (position != nullptr)
    {
        Vector sum;
        sum.Mul(a, areas.ofA).Add(Vector().Mul(b, areas.ofB)).Add(Vector().Mul(c, areas.ofC));
        *position = sum;
    }
    return S_OK;
}

long F3DWorldSegmentVsTriangleIntersection(Vector & /*start*/, Vector & /*end*/, Vector & /*a*/, Vector & /*b*/,
                                           Vector & /*c*/, unsigned long & /*flags*/, tagS3DGEOMINFO * info,
                                           double /*tol*/)
{
    if (info != nullptr)
    {
        *info = tagS3DGEOMINFO{};
    }
    return E_NOTIMPL;
}

long F3DWorldPointVsTriangleIntersection(Vector & /*point*/, Vector & /*a*/, Vector & /*b*/, Vector & /*c*/,
                                         unsigned long & /*flags*/, tagS3DGEOMINFO * /*info*/, double /*tol*/)
{
    return E_NOTIMPL;
}
