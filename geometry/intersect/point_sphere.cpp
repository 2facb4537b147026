#include "geometry/intersect/gap.h"
#include "math/platform/result.h"
#include "math/point_sphere_intersection.h"

#include <cmath>

using math::detail::ClassifyGap;
using Vector = C3DVector3Tpl<double>;

long F3DWorldPointVsPointIntersection(Vector const & a, Vector const & b, unsigned long & flags, tagS3DGEOMINFO * info,
                                      double tol)
{
    double const square = GetSquaredDistance(a, b);
    flags = square > tol * tol ? math::detail::k_NoContact : math::detail::k_Touching;
    if (info != nullptr)
    {
        info->position = a;
        info->distance = std::sqrt(square) - tol;
    }
    return S_OK;
}

long F3DWorldPointVsSphereIntersection(Vector const & point, Vector const & center, double const & radius,
                                       unsigned long & flags, tagS3DGEOMINFO * info, double tol)
{
    math::detail::SphereGap sphere(point, center, radius);
    flags = sphere.Classify(tol);
    if (info != nullptr)
    {
        info->position = point;
        info->distance = sphere.gap;
        if (sphere.offset.Normalize() != 0)
        {
            info->normal = sphere.offset;
        }
    }
    return S_OK;
}

long F3DWorldPointVsSphereIntersection(Vector const & point, Vector const & center, double const & radius,
                                       unsigned long & flags, Vector & offset, double tol)
{
    math::detail::SphereGap const sphere(point, center, radius);
    flags = sphere.Classify(tol);
    offset = sphere.offset;
    return S_OK;
}

long F3DWorldSphereVsSphereIntersection(Vector const & c1, double const & r1, Vector const & c2, double const & r2,
                                        unsigned long & flags, tagS3DGEOMINFO * info, double tol)
{
    Vector way;
    double const length = way.Sub(c2, c1).GetLength();
    double const gap = length - (r1 + r2);
    bool const areSame = length < tol && std::abs(r1 - r2) < tol;
    flags = areSame ? math::detail::k_Coincident : ClassifyGap(gap, tol, math::detail::k_Intersecting);
    if (info != nullptr)
    {
        Vector contact = c1;
        if (way.Normalize() != 0)
        {
            contact.Add(Vector().Mul(way, gap + r1));
        }
        info->position = contact;
        info->normal = way;
        info->distance = gap;
    }
    return S_OK;
}
