#pragma once

#include "math/platform/pose.h"
#include "math/transformation.h"
#include "math/vector3.h"

namespace math::detail
{

/// The spaces of two poses; the first failure of the two.
inline long GetSpaces(I3DPose_QN * pose, C3DTransfo & space, I3DPose_QN * otherPose, C3DTransfo & otherSpace)
{
    if (long const result = pose->GetGlobalTransfo(space); result < 0)
    {
        return result;
    }
    return otherPose->GetGlobalTransfo(otherSpace);
}

/// The radius under the scaling of a pose: times the greatest factor, sign included.
inline double ScaleRadius(double radius, C3DVector3Tpl<double> const & scaling)
{
    return radius * scaling.GetMaxComponent(0);
}

/// A sphere in the space of another pose: the radius times the greatest factor in magnitude, and the center of its
/// pose.
struct RelativeSphere
{
    RelativeSphere(double ownRadius, C3DTransfo & relative)
    {
        C3DVector3Tpl<double> scaling;
        relative.GetScaling(scaling);
        relative.GetTranslation(center);
        radius = ownRadius * scaling.GetMaxComponent(1);
    }

    double radius;
    C3DVector3Tpl<double> center;
};

} // namespace math::detail
