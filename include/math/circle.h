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

    /// Through a point, whose distance from the center is the radius; that it may lie off the plane does not matter. A
    /// distance that is a NaN gives 1e-6. An axis that is none leaves the normal uninitialised.
    C3DBaseCircle(C3DVector3Tpl<double> const & center, C3DVector3Tpl<double> const & pointOnCircle,
                  tagE3DAXISTYPE axis);
    /// The same with a normal as given.
    C3DBaseCircle(C3DVector3Tpl<double> const & center, C3DVector3Tpl<double> const & pointOnCircle,
                  C3DVector3Tpl<double> const & normal);

    /// Moves the circle.
    void SetCenter(C3DVector3Tpl<double> const & center);
    /// A NaN becomes 1e-6.
    void SetRadius(double radius);
    /// A value that names no axis changes nothing.
    void SetNormal(tagE3DAXISTYPE axis);

    /// Writes the center.
    void GetCenter(C3DVector3Tpl<double> & center) const;
    /// Writes the normal as it is stored, of any length.
    void GetNormal(C3DVector3Tpl<double> & normal) const;
    /// Writes the radius.
    void GetRadius(double & radius) const;

    /// A circle through an affine transformation. With a the first vector of GetOrthogonalBasis of the normal, the new
    /// radius is the distance from the new center to the image of center + radius a, and the normal is the unit normal
    /// of the image of the plane, which a mirror reverses. The radius is not raised to 1e-6.
    ///
    /// Under a scale that is not uniform the circle follows the direction of a alone. Since a has the length of the two
    /// larger components of the normal, the radius is multiplied by that length too: a rigid motion keeps the radius
    /// of a circle whose unit normal lies in a coordinate plane, and of no other. The source may be this circle.
    C3DBaseCircle & Mul(C3DBaseCircle const & circle, C3DXfoMatTpl<double> const & matrix);

private:
    C3DVector3Tpl<double> m_Center;
    C3DVector3Tpl<double> m_Normal;
    double m_Radius;
};
