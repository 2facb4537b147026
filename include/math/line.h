#pragma once

/// \file
/// The line.

#include "math/geometry.h"
#include "math/transformation_matrix.h"

/// How two lines, or a line and a plane, lie.
enum tagE3D_INTERSECTION_STATUS : int
{
    E3D_INTERSECTION_NONE = 0,      ///< degenerate input, or parallel and apart
    E3D_INTERSECTION_POINT = 1,     ///< one point; the outputs are written
    E3D_INTERSECTION_COINCIDENT = 2 ///< parallel and coincident within the tolerance; the outputs stay
};

/// A line of unlimited extent, p(t) = origin + t tangent. The tangent is its speed: it may have any length, null too.
class MATH_API C3DLine : public math::detail::PartialGeometry
{
public:
    /// The X axis.
    C3DLine();
    /// Along an axis; a value that names none gives Z.
    C3DLine(C3DVector3Tpl<double> const & origin, tagE3DAXISTYPE axis);
    /// Both as given: the tangent may have any length.
    C3DLine(C3DVector3Tpl<double> const & origin, C3DVector3Tpl<double> const & tangent);

    /// Copies origin and tangent of another line.
    void Set(C3DLine const & line);
    /// Stores the point at t = 0 and keeps the tangent, so that the point at t = 1 moves along.
    void SetOrigin(C3DVector3Tpl<double> const & origin);
    /// Stores the tangent as given, with its length.
    void SetTangent(C3DVector3Tpl<double> const & tangent);
    /// Through a at t = 0 and b at t = 1.
    void SetFromTwoPoints(C3DVector3Tpl<double> const & a, C3DVector3Tpl<double> const & b);

    /// The point at a parameter. Returns 0.
    long GetPos(double t, C3DVector3Tpl<double> & point) const;
    /// The tangent, which is the same at every parameter. Returns 0.
    long GetTangent(double t, C3DVector3Tpl<double> & tangent) const;

    /// The parameter of the point of the line that is closest to `point`. Where the squared length of the tangent is
    /// not above 1e-12 it is the plain dot product with the tangent. Returns 0.
    long ProjectOn(C3DVector3Tpl<double> const & point, double & t) const;

    /// The shortest vector from the point to the line. A tangent whose squared length is below 1e-12 projects nothing:
    /// the vector is then null.
    void GetMinProjectionVector(C3DVector3Tpl<double> const & point, C3DVector3Tpl<double> & out) const;

    /// The length of that vector. Returns 0.
    long GetDistanceFrom(C3DVector3Tpl<double> const & point, double & distance) const;

    /// The point of this line that is closest to another one.
    /// \param other the other line
    /// \param outParameter receives its parameter on this line; may be null
    /// \param outPoint receives the point
    /// \param parallelLimit lines whose directions have a cosine above it in magnitude count as parallel; the greater,
    /// the fewer do
    /// \param distanceLimit parallel lines that are closer than this count as coincident
    /// \return `E3D_INTERSECTION_NONE` too where a tangent is shorter than 1e-6
    tagE3D_INTERSECTION_STATUS GetClosestPointToOtherLine(C3DLine const & other, double * outParameter,
                                                          C3DVector3Tpl<double> & outPoint, double parallelLimit,
                                                          double distanceLimit) const;

    /// A line through an affine transformation. The tangent takes up scale and shear and is not normalised. The source
    /// may be this line.
    C3DLine & Mul(C3DLine const & line, C3DXfoMatTpl<double> const & matrix);

private:
    C3DVector3Tpl<double> m_Origin;
    C3DVector3Tpl<double> m_Tangent;
};
