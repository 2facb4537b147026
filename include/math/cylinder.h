#pragma once

/// \file
/// The cylinder.

#include "math/geometry.h"

class C3DTransfo;
template <typename T>
class C3DXfoMatTpl;

/// The direction of a cylinder's axis. Another value sets no axis.
enum tagE3DCylinderAxisType : int
{
    E3DCYLINDERAXIS_X = 0,
    E3DCYLINDERAXIS_Y = 1,
    E3DCYLINDERAXIS_Z = 2,
    E3DCYLINDERAXIS_Y_AGAIN = 3 ///< along Y too
};

/// A cylinder: radius, start and end of its axis. A radius not above 1e-6, or a NaN, becomes 1e-6 on its way in.
///
/// Its surface is a function of two parameters: v, taken modulo 1 with its sign, chooses the side (0 to 0.25) or a rim
/// (from 0.25, and below 0), and u runs around. It is made in a frame whose rows are the X axis, the axis vector from
/// start to end and the cross product of the two, with the middle of the axis as its origin. **That frame is no
/// rotation**, unless the axis has unit length and is orthogonal to X; it is what callers of these functions have.
class MATH_API C3DBaseCylinder : public math::detail::PartialGeometry
{
public:
    /// Radius 1e-6, axis from (-1e-6, 0, 0) to (1e-6, 0, 0).
    C3DBaseCylinder();
    /// An axis about the origin; an unknown type leaves it uninitialised.
    C3DBaseCylinder(double radius, double length, tagE3DCylinderAxisType type);
    /// The axis as given, from start to end.
    C3DBaseCylinder(double radius, C3DVector3Tpl<double> const & start, C3DVector3Tpl<double> const & end);

    /// Radius, and an axis about the origin from minus half to plus half of the length. An unknown type leaves the axis
    /// and sets the radius alone.
    void Set(double radius, double length, tagE3DCylinderAxisType type);
    /// **Copies the radius alone:** the axis stays. Assignment copies both.
    void Set(C3DBaseCylinder const & cylinder);
    /// Stores the ends of the axis as given.
    void SetAxis(C3DVector3Tpl<double> const & start, C3DVector3Tpl<double> const & end);
    /// A radius not above 1e-6, or a NaN, becomes 1e-6.
    void SetRadius(double radius);
    /// Writes the radius, which is 1e-6 at least.
    void GetRadius(double & radius) const;
    /// The distance from start to end of the axis.
    void GetLength(double & length) const;

    /// The frame of the surface, which replaces all that the transformation held. Returns 0.
    long GetTransfo(C3DTransfo & out) const;

    /// The point of the surface. On the side it is the normal times the radius, which has passed the frame already, so
    /// that it passes it twice. Returns 0.
    long GetPos(double u, double v, C3DVector3Tpl<double> & point) const;
    /// A vector across the side, or half the axis, **taken through the frame as a position**: translated too. Returns
    /// 0.
    long GetNormal(double u, double v, C3DVector3Tpl<double> & normal) const;
    /// Two vectors along the surface, taken through the frame in the same way. Returns 0.
    long GetTangents(double u, double v, C3DVector3Tpl<double> & first, C3DVector3Tpl<double> & second) const;

private:
    C3DXfoMatTpl<double> GetFrame() const;
    double SignedHalfLength(double reduced) const;

    double m_Radius;
    C3DVector3Tpl<double> m_Start;
    C3DVector3Tpl<double> m_End;
};
