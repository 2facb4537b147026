#include "math/plane.h"
#include "math/line_intersection.h"
#include "math/platform/result.h"
#include "math/vector_geometry.h"

#include <cmath>

using namespace math::detail; // NOLINT(google-build-using-namespace): tolerances and kinds of contact
using Vector = C3DVector3Tpl<double>;

long F3DWorldPlaneVsPlaneIntersection(Vector const & origin1, Vector const & normal1, Vector const & origin2,
                                      Vector const & normal2, unsigned long & flags, tagS3DGEOMINFO * info,
                                      double parallelLimit, double distanceLimit)
{
    if (std::abs(Dot(normal1, normal2)) > parallelLimit)
    {
        bool const areApart = GetDistance(origin1, origin2) >= distanceLimit;
        flags = areApart ? k_ParallelApart : k_Coincident;
        return areApart ? S_FALSE : S_OK;
    }
    // Two lines in the first plane: where they meet the second one are two points of the line that is looked for, or
    // one point where the other line runs along it.
    constexpr double sineLimit = 0.05;
    Vector tangents[2];
    GetOrthogonalBasis(normal1, tangents[0], tangents[1]);
    C3DPlane const plane2(origin2, normal2);
    Vector points[2];
    bool areHits[2];
    for (int i = 0; i < 2; ++i)
    {
        areHits[i] = plane2.LineIntersection(C3DLine(origin1, tangents[i]), nullptr, nullptr, points[i], sineLimit,
                                             k_StandardTolerance<double>) == E3D_INTERSECTION_POINT;
    }
    if (!areHits[0] && !areHits[1])
    {
        return E_UNEXPECTED;
    }
    flags = k_Intersecting;
    if (info != nullptr)
    {
        info->position = areHits[0] ? points[0] : points[1];
        info->normal = areHits[0] ? tangents[1] : tangents[0];
        if (areHits[0] && areHits[1])
        {
            info->normal.Sub(points[1], points[0]);
        }
    }
    return S_OK;
}
