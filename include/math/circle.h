#pragma once

/// \file
/// The circle.

#include "math/geometry.h"
#include "math/transformation_matrix.h"

/// A circle in space: center, normal, radius. A radius below 1e-6 becomes 1e-6 on its way in.
class MATH_API C3DBaseCircle : public math::detail::PartialGeometry
{
public:
    /// The unit circle about Z.
    C3DBaseCircle();

    /// The normal as given. A NaN stays as the radius.
    C3DBaseCircle(C3DVector3Tpl<double> const & center, double radius, C3DVector3Tpl<double> const & normal);
    /// About an axis; a value that names none leaves the normal uninitialised.
    C3DBaseCircle(C3DVector3Tpl<double> const & center, double radius, tagE3DAXISTYPE axis);

    /// Through a point, whose distance from the center is the radius; where it lies across the normal does not matter.
    C3DBaseCircle(C3DVector3Tpl<double> const & center, C3DVector3Tpl<double> const & pointOnCircle,
                  tagE3DAXISTYPE axis);
    C3DBaseCircle(C3DVector3Tpl<double> const & center, C3DVector3Tpl<double> const & pointOnCircle,
                  C3DVector3Tpl<double> const & normal);

    void SetCenter(C3DVector3Tpl<double> const & center);
    /// A NaN becomes 1e-6.
    void SetRadius(double radius);
    /// A value that names no axis changes nothing.
    void SetNormal(tagE3DAXISTYPE axis);

    void GetCenter(C3DVector3Tpl<double> & center) const;
    void GetNormal(C3DVector3Tpl<double> & normal) const;
    void GetRadius(double & radius) const;

    /// A circle through an affine transformation. The radius is the new distance from the center of the point along the
    /// first vector of GetOrthogonalBasis of the normal: right for a uniform scale alone. It is not raised to 1e-6. The
    /// source may be this circle.
    C3DBaseCircle & Mul(C3DBaseCircle const & circle, C3DXfoMatTpl<double> const & matrix);

private:
    C3DVector3Tpl<double> m_Center;
    C3DVector3Tpl<double> m_Normal;
    double m_Radius;
};
