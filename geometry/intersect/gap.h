#pragma once

#include "math/contact_record.h"
#include "math/vector3.h"

namespace math::detail
{

/// The kind of contact for a gap between two surfaces: apart above `tol`, touching down to -`tol`, then `overlap`.
inline unsigned long ClassifyGap(double gap, double tol, unsigned long overlap)
{
    if (gap > tol)
    {
        return k_NoContact;
    }
    return gap >= -tol ? k_Touching : overlap;
}

/// A point against a sphere: its offset from the center, and how far it is outside the surface.
struct SphereGap
{
    SphereGap(C3DVector3Tpl<double> const & point, C3DVector3Tpl<double> const & center, double radius)
    {
        gap = offset.Sub(point, center).GetLength() - radius;
    }

    unsigned long Classify(double tol) const { return ClassifyGap(gap, tol, k_Inside); }

    C3DVector3Tpl<double> offset;
    double gap;
};

} // namespace math::detail
