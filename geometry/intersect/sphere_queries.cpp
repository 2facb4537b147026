#include "geometry/intersect/posed_objects.h"
#include "geometry/sphere_surface.h"
#include "geometry/vector_expressions.h"
#include "math/box.h"
#include "math/box_intersection.h"
#include "math/platform/result.h"
#include "math/point.h"
#include "math/point_sphere_intersection.h"
#include "math/space_mapping.h"
#include "math/sphere.h"
#include "transform/component_mask.h"

using math::detail::Difference;
using math::detail::SphereParameters;
using Vector = C3DVector3Tpl<double>;

namespace
{

/// The position and scaling of a pose; the first failure of the two.
long GetPlace(I3DPose_QN * pose, Vector & position, Vector & scaling)
{
    position.SetNull();
    scaling.SetNull();
    if (long const result = pose->GetGlobalPosition(position); result < 0)
    {
        return result;
    }
    return pose->GetGlobalScaling(scaling);
}

} // namespace

long C3DBaseSphere::Intersect_Point(I3DPose_QN * const pose, C3DPoint const & /*other*/, I3DPose_QN * const otherPose,
                                    unsigned long & flags, tagS3DGEOMINFO * info, double tolerance,
                                    double /*unused*/) const
{
    Vector position;
    Vector scaling;
    if (long const result = GetPlace(pose, position, scaling); result < 0)
    {
        return result;
    }
    Vector point(0, 0, 0);
    otherPose->GetGlobalPosition(point);
    point.Sub(m_Center);
    F3DWorldPointVsSphereIntersection(point, position, math::detail::ScaleRadius(m_Radius, scaling), flags, info,
                                      tolerance);
    if (info != nullptr)
    {
        C3DTransfo space;
        if (long const result = pose->GetGlobalTransfo(space); result < 0)
        {
            return result;
        }
        C3DXfoMatTpl<double> toSpace;
        GetMapWorldToSpace(E3DVECTORTYPE_FULL, space, toSpace);
        SphereParameters(Vector().Mul(info->position, toSpace).Sub(m_Center), info->u, info->v);
    }
    return S_OK;
}

long C3DBaseSphere::Intersect_Sphere(I3DPose_QN * const pose, C3DBaseSphere const & other, I3DPose_QN * const otherPose,
                                     unsigned long & flags, tagS3DGEOMINFO * info, double tolerance,
                                     double /*unused*/) const
{
    Vector center;
    Vector otherCenter;
    Vector scaling;
    Vector otherScaling;
    if (long const result = GetPlace(pose, center, scaling); result < 0)
    {
        return result;
    }
    if (long const result = GetPlace(otherPose, otherCenter, otherScaling); result < 0)
    {
        return result;
    }
    center.Add(m_Center);
    otherCenter.Add(other.m_Center);
    F3DWorldSphereVsSphereIntersection(center, math::detail::ScaleRadius(m_Radius, scaling), otherCenter,
                                       math::detail::ScaleRadius(other.m_Radius, otherScaling), flags, info, tolerance);
    if (info != nullptr)
    {
        C3DTransfo space;
        if (long const result = pose->GetGlobalTransfo(space); result < 0)
        {
            return result;
        }
        // The parameters are those of the contact as it stands in the world.
        SphereParameters(Difference(info->position, m_Center), info->u, info->v);
    }
    return S_OK;
}

long C3DBaseSphere::Intersect_Box(I3DPose_QN * const pose, C3DBaseBox const & other, I3DPose_QN * const otherPose,
                                  unsigned long & flags, tagS3DGEOMINFO * info, double tolerance,
                                  double /*unused*/) const
{
    C3DTransfo relative;
    pose->GetRelativeTransfo(relative, otherPose, math::detail::k_AllComponents);
    math::detail::RelativeSphere sphere(m_Radius, relative);
    long const result = F3DLocalBoxVsSphereIntersection(other.GetMin(), other.GetMax(), sphere.center.Add(m_Center),
                                                        sphere.radius, flags, info, tolerance);
    if (info == nullptr || (flags & math::detail::k_AnyContact) == 0)
    {
        return result;
    }
    C3DTransfo space;
    C3DTransfo boxSpace;
    if (long const failure = math::detail::GetSpaces(pose, space, otherPose, boxSpace); failure < 0)
    {
        return failure;
    }
    C3DXfoMatTpl<double> map;
    Vector contact;
    contact.Mul(info->position, GetMapSpaceToSpace(E3DVECTORTYPE_FULL, boxSpace, space, map));
    SphereParameters(Difference(contact, m_Center), info->u, info->v);
    Vector const normal = math::detail::SphereNormal(info->u, info->v);
    info->position.Mul(contact, GetMapSpaceToWorld(E3DVECTORTYPE_FULL, space, map));
    info->normal.Mul(normal, GetMapSpaceToWorld(E3DVECTORTYPE_DIRECTION, space, map));
    return S_OK;
}
