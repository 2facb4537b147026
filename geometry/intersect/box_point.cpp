#include "geometry/intersect/gap.h"
#include "math/box_intersection.h"
#include "math/platform/result.h"

using Vector = C3DVector3Tpl<double>;

namespace
{

/// How far a coordinate lies outside the face on its side; negative inside.
double FaceGap(double c, double min, double max)
{
    return c >= 0 ? c - max : min - c;
}

} // namespace

long F3DLocalBoxVsPointIntersection(Vector const & min, Vector const & max, Vector const & point, unsigned long & flags,
                                    Vector & gaps, double tol)
{
    gaps = Vector(FaceGap(point.X, min.X, max.X), FaceGap(point.Y, min.Y, max.Y), FaceGap(point.Z, min.Z, max.Z));
    flags = math::detail::ClassifyGap(gaps.GetMaxComponent(0), tol, math::detail::k_Inside);
    return S_OK;
}

long F3DLocalBoxVsPointIntersection(Vector const & min, Vector const & max, Vector const & point, unsigned long & flags,
                                    tagS3DGEOMINFO * info, double tol)
{
    Vector gaps;
    F3DLocalBoxVsPointIntersection(min, max, point, flags, gaps, tol);
    if (info != nullptr)
    {
        info->position = point;
        info->distance = gaps.GetMinComponent(0);
    }
    return S_OK;
}
