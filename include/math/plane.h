#pragma once

/// \file
/// The plane.

#include "math/geometry.h"
#include "math/line.h"
#include "math/transformation_matrix.h"

/// A plane of unlimited extent, p(u, v) = origin + u first tangent + v second tangent, with a normal.
///
/// The tangents need not be of unit length or orthogonal, the normal need not be of unit length, and nothing keeps the
/// three together. What projects on the plane by its tangents is right only while they are orthogonal; what measures
/// along the normal says whether it makes it unit.
class MATH_API C3DPlane : public math::detail::PartialGeometry
{
public:
    /// \name Construction and access
    ///@{

    /// The XY plane.
    C3DPlane();

    /// With an axis as normal and the two axes that follow it in cyclic order as tangents; a value that names no axis
    /// gives Z.
    C3DPlane(C3DVector3Tpl<double> const & origin, tagE3DAXISTYPE normalAxis);

    /// The normal as given; the tangents by GetOrthogonalBasis, so that they have not its length.
    C3DPlane(C3DVector3Tpl<double> const & origin, C3DVector3Tpl<double> const & normal);

    /// With two axes as tangents; of two equal ones the second is replaced by the next in cyclic order. A value that
    /// names no axis gives Z. The normal is first x second and may point along a negative axis.
    C3DPlane(C3DVector3Tpl<double> const & origin, tagE3DAXISTYPE first, tagE3DAXISTYPE second);

    /// The first tangent as given, the normal first x second, the second tangent normal x first; nothing is normalised,
    /// so that a second tangent other than of unit length orthogonal to a unit one comes back longer or shorter. Use
    /// SetTangents to keep its length.
    C3DPlane(C3DVector3Tpl<double> const & origin, C3DVector3Tpl<double> const & first,
             C3DVector3Tpl<double> const & second);

    /// Copies origin, normal and tangents of another plane.
    void Set(C3DPlane const & plane);
    /// Stores the point at u = v = 0 and keeps normal and tangents.
    void SetOrigin(C3DVector3Tpl<double> const & origin);

    /// The normal as given; the tangents by GetOrthogonalBasis.
    void SetNormal(C3DVector3Tpl<double> const & normal);

    /// The first tangent as given, the unit normal first x second, and the second tangent turned in the plane to be
    /// orthogonal to the first, at its length. Where the vectors are parallel, a cross product not above 1e-12 stays as
    /// it is.
    void SetTangents(C3DVector3Tpl<double> const & first, C3DVector3Tpl<double> const & second);

    /// The point at two parameters. Returns 0.
    long GetPos(double u, double v, C3DVector3Tpl<double> & point) const;
    /// The tangents, which are the same everywhere. Returns 0.
    long GetTangents(double u, double v, C3DVector3Tpl<double> & first, C3DVector3Tpl<double> & second) const;
    /// The stored normal, which is the same everywhere. Returns 0.
    long GetNormal(double u, double v, C3DVector3Tpl<double> & normal) const;

    ///@}

    /// \name Comparison
    /// Exact comparison by "below" and "above" of all four vectors: a NaN compares equal to anything. Neither operator
    /// is const, so the left operand must not be. (The language also tries each comparison with its operands swapped.
    /// The forms for a plane that is not const, named or not, keep those from being the better match.)
    ///@{
    int operator==(C3DPlane const & other);
    int operator==(C3DPlane & other);
    int operator==(C3DPlane && other);
    int operator!=(C3DPlane const & other);
    int operator!=(C3DPlane & other);
    int operator!=(C3DPlane && other);
    ///@}

    /// \name Distances and projections
    ///@{

    /// The distance along the normal, whatever its length; never negative. A normal whose squared length is below 1e-12
    /// gives the distance from the origin. Returns 0.
    long GetDistanceFrom(C3DVector3Tpl<double> const & point, double & distance) const;

    /// The distance along the normal made unit, positive on its side. A normal not longer than 1e-12 is used as it is.
    double GetSignedDistanceFrom(C3DVector3Tpl<double> const & point) const;

    /// The parameters of the foot of a point, for orthogonal tangents.
    /// \return 0; `E_UNEXPECTED` where a tangent is null: its parameter is then the plain dot product, and `v` is not
    /// written where the first one is
    long ProjectOn(C3DVector3Tpl<double> const & point, double & u, double & v) const;

    /// The foot of a point, for orthogonal tangents. Null tangents add nothing. Input and output may be one object.
    /// Returns 0.
    long ProjectPoint(C3DVector3Tpl<double> const & point, C3DVector3Tpl<double> & out) const;

    /// The same for a vector: the foot of origin + vector, less the origin. Returns 0.
    long ProjectVector(C3DVector3Tpl<double> const & vector, C3DVector3Tpl<double> & out) const;

    /// The projection of a vector, for orthogonal tangents, unless it is too short or too near the normal.
    /// \param vector the vector
    /// \param out receives the projection
    /// \param cosLimit vectors at a cosine above it to the normal give the null vector; those against the normal do not
    /// \return 0; `S_FALSE` and the null vector for a vector shorter than 1e-9 or too near the normal; `E_UNEXPECTED`
    /// with `out` unwritten where a tangent is null
    long ProjectVectorOrthogonally(C3DVector3Tpl<double> const & vector, C3DVector3Tpl<double> & out,
                                   double cosLimit) const;

    /// The mirror image of a point by its foot. Input and output may be one object. Returns 0.
    long ReflectPoint(C3DVector3Tpl<double> const & point, C3DVector3Tpl<double> & out) const;
    /// The same for a vector, which the origin of the plane does not move. Returns 0.
    long ReflectVector(C3DVector3Tpl<double> const & vector, C3DVector3Tpl<double> & out) const;

    /// The projection of a line along the normal as it is stored: right for a unit normal alone. `out` may be `line`.
    void ProjectLineOn(C3DLine const & line, C3DLine & out) const;

    /// The angle from the projection of a to that of b, positive counter-clockwise about the normal.
    /// \return the code of the second projection; 1 with `angle` 0 where one fails. A vector within one degree of the
    /// normal projects to the null vector, and the angle is 0.
    long GetAngleOfProjectedVectors(C3DVector3Tpl<double> const & a, C3DVector3Tpl<double> const & b,
                                    double & angle) const;
    ///@}

    /// \name Intersection and transformation
    ///@{

    /// Where a line meets the plane.
    /// \param line the line, of unlimited extent
    /// \param outU,outV receive the parameters of the point by ProjectOn; may be null; 0 where ProjectOn writes none
    /// \param outPoint receives the point
    /// \param sineLimit a line at a lesser sine to the plane counts as parallel; the greater, the more do (contrast
    /// the limit of C3DLine::GetClosestPointToOtherLine)
    /// \param distanceLimit a parallel line closer than this lies in the plane
    /// \return `E3D_INTERSECTION_NONE` too where the normal is shorter than 1e-9
    tagE3D_INTERSECTION_STATUS LineIntersection(C3DLine const & line, double * outU, double * outV,
                                                C3DVector3Tpl<double> & outPoint, double sineLimit,
                                                double distanceLimit) const;

    /// The scale by s along the normal about the plane, which takes the normal as unit. Returns 0.
    long GetScaleMatrix(C3DXfoMatTpl<double> & out, double s) const;
    /// The scale by -1. Returns 0.
    long GetMirrorMatrix(C3DXfoMatTpl<double> & out) const;

    /// A plane through an affine transformation. The tangents take up scale and shear; the normal is the unit cross
    /// product of the new tangents, so that a mirror reverses it. The source may be this plane.
    C3DPlane & Mul(C3DPlane const & plane, C3DXfoMatTpl<double> const & matrix);
    ///@}

private:
    /// Both tangents by GetOrthogonalBasis of the normal as it is stored.
    void ComputeTangentsFromNormal();
    bool IsDifferentFrom(C3DPlane const & other) const;

    C3DVector3Tpl<double> m_Origin;
    C3DVector3Tpl<double> m_Normal;
    C3DVector3Tpl<double> m_FirstTangent;
    C3DVector3Tpl<double> m_SecondTangent;
};
