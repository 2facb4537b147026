#pragma once

/// \file
/// The box.

#include "math/geometry.h"

/// A box along the coordinate axes, from a minimum to a maximum corner. Nothing keeps the minimum below the maximum.
///
/// Its surface is a function of two parameters: v leads from the point X = Z = 0 of the top (+Y) over its edge at 0.25
/// down to the bottom at 0.75 and to its point X = Z = 0, u around. Each is taken modulo 1 with its sign, so that a
/// negative one stays negative: a negative u counts as the end of the outline, a negative v as the bottom, which leads
/// beyond the box. The parametrisation is not continuous: pieces do not join up, and the -Z side has a jump at
/// u = 0.1875. The points lie on the box where it holds the axis X = Z = 0.
class MATH_API C3DBaseBox : public math::detail::PartialGeometry
{
public:
    /// \name Construction
    ///@{

    /// All bounds 0.
    C3DBaseBox();
    /// A cube about the origin.
    explicit C3DBaseBox(double side);
    /// About the origin, with these sides.
    explicit C3DBaseBox(C3DVector3Tpl<double> const & sides);
    /// With these corners, as given.
    C3DBaseBox(C3DVector3Tpl<double> const & minimum, C3DVector3Tpl<double> const & maximum);
    /// The same corners.
    C3DBaseBox(C3DBaseBox const & other);
    /// Takes over the corners.
    C3DBaseBox & operator=(C3DBaseBox const & other);
    /// Nothing is owned.
    ~C3DBaseBox() override;

    ///@}

    /// \name Corners
    /// The bounds are read and stored as they are: a minimum above the maximum makes an inverted box, which holds no
    /// point.
    ///@{
    C3DVector3Tpl<double> const & GetMin() const;
    C3DVector3Tpl<double> const & GetMax() const;
    double GetMinX() const;
    double GetMinY() const;
    double GetMinZ() const;
    double GetMaxX() const;
    double GetMaxY() const;
    double GetMaxZ() const;

    void SetMin(C3DVector3Tpl<double> const & minimum);
    void SetMin(double x, double y, double z);
    void SetMax(C3DVector3Tpl<double> const & maximum);
    void SetMax(double x, double y, double z);
    void SetMinX(double x);
    void SetMinY(double y);
    void SetMinZ(double z);
    void SetMaxX(double x);
    void SetMaxY(double y);
    void SetMaxZ(double z);
    ///@}

    /// \name Boxes from other ones, from sides, from points
    ///@{

    /// Copies both corners of another box.
    void Set(C3DBaseBox const & box);

    /// **Not a copy:** the box about the origin whose sides are the maximum corner of this one. To copy use `Set` or
    /// assignment. The output may be this box.
    void Get(C3DBaseBox & out) const;

    /// A cube about the origin.
    void SetCube(double const & side);
    /// The greatest side; of equal ones that of the later axis, which tells where zeros differ in sign.
    void GetCube(double & side) const;
    /// A box about the origin, with these sides. They may be a corner of this box.
    void SetSideLengths(C3DVector3Tpl<double> const & sides);
    /// The maximum less the minimum; negative where the box is inverted.
    void GetSideLengths(C3DVector3Tpl<double> & sides) const;

    /// The bounds of points; a null array or a count of 0 changes nothing. A NaN in the first point stays; in a later
    /// one it is passed over.
    void SetFromVectorArray(C3DVector3Tpl<double> const * points, unsigned long count);
    ///@}

    /// \name Tests
    /// 1 where the named coordinates lie within the bounds, ends included, else 0.
    ///@{
    int IsBetweenXPlane(C3DVector3Tpl<double> const & point) const;
    int IsBetweenYPlane(C3DVector3Tpl<double> const & point) const;
    int IsBetweenZPlane(C3DVector3Tpl<double> const & point) const;
    int IsInsideYZRect(C3DVector3Tpl<double> const & point) const;
    int IsInsideXZRect(C3DVector3Tpl<double> const & point) const;
    int IsInsideXYRect(C3DVector3Tpl<double> const & point) const;
    int IsInsideBox(C3DVector3Tpl<double> const & point) const;
    ///@}

    /// \name Change of size
    ///@{

    /// Makes each side longer by a component, half at each end.
    void Inflate(C3DVector3Tpl<double> const & sizes);
    /// Scales each side by a factor, about the middle of the box.
    void Scale(C3DVector3Tpl<double> const & factors);
    ///@}

    /// \name Surface
    ///@{

    /// The distance that F3DLocalBoxVsSphereIntersection gives for a sphere of radius 0. It is no distance from the
    /// box. For a box that holds the origin it is, inside, the gap to the face across X on the point's side (negative),
    /// however near another face may be; the least coordinate for a point whose three coordinates are all out of
    /// bounds; and 0 for any other point. Returns 0.
    long GetDistanceFrom(C3DVector3Tpl<double> const & point, double & distance) const;

    /// Not implemented: `E_NOTIMPL`, with nothing written.
    long ProjectOn(C3DVector3Tpl<double> const & point, double & u, double & v) const;

    /// The point of the surface. Returns 0.
    long GetPos(double u, double v, C3DVector3Tpl<double> & point) const;
    /// The outward normal of the face. Returns 0.
    long GetNormal(double u, double v, C3DVector3Tpl<double> & normal) const;
    /// GetOrthogonalBasis of the normal. Returns 0.
    long GetTangents(double u, double v, C3DVector3Tpl<double> & first, C3DVector3Tpl<double> & second) const;
    ///@}

    /// \name Contacts
    ///@{

    /// A sphere against this box, in the space of the box.
    ///
    /// It returns `E_NOTIMPL` with `flags` and record filled where there is a record to fill; without one the code
    /// is 0. **The sphere is looked for where the box stands as seen from the sphere**, which is the opposite place for
    /// poses that are not turned: ask the sphere about the box for a box that is not symmetric. Its stored center plays
    /// no part, and the greatest scale factor in magnitude scales its radius. A failing pose is ignored.
    long Intersect_Sphere(I3DPose_QN * const pose, C3DBaseSphere const & other, I3DPose_QN * const otherPose,
                          unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
    /// Two boxes, which count as centered on their poses **and as twice their size**: whole sides go in for the half
    /// sizes of F3DLocalBoxVsBoxIntersection.
    long Intersect_Box(I3DPose_QN * const pose, C3DBaseBox const & other, I3DPose_QN * const otherPose,
                       unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
    ///@}

private:
    C3DVector3Tpl<double> m_Min;
    C3DVector3Tpl<double> m_Max;
};
