#include "geometry/intersect/posed_objects.h"
#include "math/box.h"
#include "math/box_intersection.h"
#include "math/platform/result.h"
#include "math/sphere.h"
#include "math/transformation.h"
#include "transform/component_mask.h"

using math::detail::k_AllComponents;
using Vector = C3DVector3Tpl<double>;

long C3DBaseBox::Intersect_Sphere(I3DPose_QN * const pose, C3DBaseSphere const & other, I3DPose_QN * const otherPose,
                                  unsigned long & flags, tagS3DGEOMINFO * info, double tolerance,
                                  double /*unused*/) const
{
    C3DTransfo relative;
    pose->GetRelativeTransfo(relative, otherPose, k_AllComponents);
    double radius = 0;
    other.GetRadius(radius);
    math::detail::RelativeSphere const sphere(radius, relative);
    long const result =
        F3DLocalBoxVsSphereIntersection(m_Min, m_Max, sphere.center, sphere.radius, flags, info, tolerance);
    // The record stays in the space of the box, which callers are told by this code.
    return info != nullptr ? E_NOTIMPL : result;
}

long C3DBaseBox::Intersect_Box(I3DPose_QN * const pose, C3DBaseBox const & other, I3DPose_QN * const otherPose,
                               unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double /*unused*/) const
{
    Vector sides;
    Vector otherSides;
    GetSideLengths(sides);
    other.GetSideLengths(otherSides);
    C3DTransfo relative;
    if (long const result = otherPose->GetRelativeTransfo(relative, pose, k_AllComponents); result < 0)
    {
        return result;
    }
    Vector translation;
    relative.GetTranslation(translation);
    return F3DLocalBoxVsBoxIntersection(*relative.GetRotation(), translation, sides, otherSides, flags, info,
                                        tolerance);
}
