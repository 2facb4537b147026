#pragma once

/// \file
/// The bounding sphere.

#include "math/sphere.h"
#include "math/transformation_matrix.h"

/// A sphere that grows to hold what it bounds.
class MATH_API C3DBSphere : public C3DBaseSphere
{
public:
    /// Radius 1e-6 about the origin.
    C3DBSphere();
    /// About the origin. A radius not above 1e-6 becomes 1e-6, and the sphere is empty.
    explicit C3DBSphere(double radius);
    /// The same about a center.
    C3DBSphere(double radius, C3DVector3Tpl<double> const & center);

    /// 1 where the radius is not above 1e-6: the default sphere is empty, and each whose radius was raised to that. A
    /// NaN is not.
    int IsEmpty() const;

    /// Grows the radius to hold a point. The center stays.
    C3DBSphere & MergeVector(C3DVector3Tpl<double> const & point);
    /// The same for the point (x, y, z).
    C3DBSphere & MergeVector(double x, double y, double z);

    /// Moves, and grows or shrinks: the sphere over the diameter from this center to the far side of the other one.
    /// **This radius is not read,** so that what was held before may be lost, and the far side is measured from the
    /// world's origin, as if this center stood there: the result holds the other sphere only where the distance of the
    /// centers is no less than that of the other center from the origin, nor than the other radius. Another center at
    /// the origin divides by zero: infinities and NaNs.
    C3DBSphere & MergeBSphere(C3DBSphere const & sphere);

    /// The sphere that holds this one after a transformation without shear: the center transformed, the radius times
    /// the greatest scale factor in magnitude. With shear, images of its points can lie outside. The result is not
    /// raised to 1e-6.
    C3DBSphere & SetToBSphereOfTransformedBSphere(C3DXfoMatTpl<double> const & matrix);
};
