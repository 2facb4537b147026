#include "geometry/intersect/posed_objects.h"
#include "math/box.h"
#include "math/box_intersection.h"
#include "math/platform/result.h"
#include "math/point.h"
#include "math/point_sphere_intersection.h"
#include "math/space_mapping.h"
#include "math/sphere.h"

using Vector = C3DVector3Tpl<double>;

long C3DPoint::Intersect_Point(I3DPose_QN * const pose, C3DPoint const & /*other*/, I3DPose_QN * const otherPose,
                               unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double /*unused*/) const
{
    Vector position(0, 0, 0);
    Vector otherPosition(0, 0, 0);
    if (long const result = pose->GetGlobalPosition(position); result < 0)
    {
        return result;
    }
    if (long const result = otherPose->GetGlobalPosition(otherPosition); result < 0)
    {
        return result;
    }
    return F3DWorldPointVsPointIntersection(position, otherPosition, flags, info, tolerance);
}

long C3DPoint::Intersect_Sphere(I3DPose_QN * const pose, C3DBaseSphere const & other, I3DPose_QN * const otherPose,
                                unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double /*unused*/) const
{
    Vector position(0, 0, 0);
    Vector otherPosition(0, 0, 0);
    Vector scaling(1, 1, 1);
    pose->GetGlobalPosition(position);
    otherPose->GetGlobalPosition(otherPosition);
    otherPose->GetGlobalScaling(scaling);
    double radius = 0;
    other.GetRadius(radius);
    return F3DWorldPointVsSphereIntersection(position, otherPosition, math::detail::ScaleRadius(radius, scaling), flags,
                                             info, tolerance);
}

long C3DPoint::Intersect_Box(I3DPose_QN * const pose, C3DBaseBox const & other, I3DPose_QN * const otherPose,
                             unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double /*unused*/) const
{
    Vector position(0, 0, 0);
    C3DTransfo space;
    C3DTransfo otherSpace;
    if (long const result = pose->GetGlobalPosition(position); result < 0)
    {
        return result;
    }
    if (long const result = math::detail::GetSpaces(pose, space, otherPose, otherSpace); result < 0)
    {
        return result;
    }
    C3DXfoMatTpl<double> map;
    GetMapSpaceToSpace(E3DVECTORTYPE_FULL, space, otherSpace, map);
    position.Mul(position, map);
    return F3DLocalBoxVsPointIntersection(other.GetMin(), other.GetMax(), position, flags, info, tolerance);
}
