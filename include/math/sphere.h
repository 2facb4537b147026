#pragma once

/// \file
/// The sphere.

#include "math/geometry.h"

namespace math::detail
{

class SphereInspector;

} // namespace math::detail

/// A sphere: radius and center. A radius not above 1e-6, or a NaN, becomes 1e-6 on its way in.
///
/// Its surface is a function of two parameters: v leads from the pole at +Y (0) to the pole at -Y (1), u around Y from
/// +X (0) over -Z back (1). They are used as given, without taking them modulo 1.
class MATH_API C3DBaseSphere : public C3DMathGeometry
{
public:
    /// \name Construction and access
    ///@{

    /// Radius 1e-6 about the origin.
    C3DBaseSphere();
    /// About the origin.
    explicit C3DBaseSphere(double radius);
    /// The center as given.
    C3DBaseSphere(double radius, C3DVector3Tpl<double> const & center);

    /// The radius by the rule of the class, the center as given.
    void Set(double radius, C3DVector3Tpl<double> const & center);
    /// **Copies the radius alone:** the center stays. Assignment copies both.
    void Set(C3DBaseSphere const & sphere);
    /// A radius not above 1e-6, or a NaN, becomes 1e-6.
    void SetRadius(double radius);
    /// Moves the sphere.
    void SetCenter(C3DVector3Tpl<double> const & center);
    /// Writes the radius, which is 1e-6 at least.
    void GetRadius(double & radius) const;
    /// Writes the center.
    void GetCenter(C3DVector3Tpl<double> & center) const;
    ///@}

    /// \name Surface
    ///@{

    /// The distance from the surface, negative inside. Returns 0.
    long GetDistanceFrom(C3DVector3Tpl<double> const & point, double & distance) const;

    /// The parameters of the point's direction from the center: u and v from 0 to 1, both included; zeros for a point
    /// within 1e-12 of the center on every axis; a point with a NaN is not, and gives NaNs. Returns 0.
    long ProjectOn(C3DVector3Tpl<double> const & point, double & u, double & v) const;

    /// The point of the surface. Returns 0.
    long GetPos(double u, double v, C3DVector3Tpl<double> & point) const;
    /// The outward unit normal. Returns 0.
    long GetNormal(double u, double v, C3DVector3Tpl<double> & normal) const;
    /// Two unit tangents: `first` runs along the circle of latitude against u, (cos a, 0, sin a) with
    /// a = (0.5 - 2u) pi; `second` is normal x first and runs along v, away from the pole at +Y. Returns 0.
    long GetTangents(double u, double v, C3DVector3Tpl<double> & first, C3DVector3Tpl<double> & second) const;
    ///@}

    /// \name Contacts
    /// This sphere against a point, another sphere or a box: all three answer. With a record they also give the
    /// parameters of the contact on this sphere.
    ///
    /// Against a point or a sphere the radius is scaled by the greatest factor of the pose, sign included, so that
    /// three negative factors make it negative; against a box by the greatest magnitude. A point stands where its pose
    /// does, less this center; if that pose fails, at the world's origin. A failure to tell where the sphere stands
    /// relative to a box is ignored too, and counts as the same place.
    ///
    /// The record is in world space. Of two spheres the parameters are those of the world point as it stands, and right
    /// for a pose at the world's origin alone. Against a box the contact of F3DLocalBoxVsSphereIntersection is mapped
    /// whole, with the components of the position that it leaves as they were: **clear the record before.** A pose that
    /// fails once the contact is found leaves `flags` written, and the record as the pair has filled it.
    ///@{
    long Intersect_Point(I3DPose_QN * const pose, C3DPoint const & other, I3DPose_QN * const otherPose,
                         unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
    long Intersect_Sphere(I3DPose_QN * const pose, C3DBaseSphere const & other, I3DPose_QN * const otherPose,
                          unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
    long Intersect_Box(I3DPose_QN * const pose, C3DBaseBox const & other, I3DPose_QN * const otherPose,
                       unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
    ///@}

    /// \name Constraints on primitives
    /// A primitive is an array of points. Is it inside, outside or on the sphere, and what translation would make it
    /// so? A point counts as on the surface within 1e-12.
    ///
    /// The kinds of a whole array, as `flags`:
    ///
    /// | value | points |
    /// |---|---|
    /// | 0x10000 | some inside and some outside |
    /// | 0x60000 | some inside, some on the surface |
    /// | 0x40000 | all inside |
    /// | 0x20004 | some on the surface, some outside |
    /// | 0x100000 | all on the surface |
    /// | 4 | all outside, or no point |
    ///
    /// The points of a kind are counted with 16 bits: 65536 of them count as none.
    ///@{

    /// The kind of one point, and its offset from the center. The pose is not read.
    long GetPointLocation(I3DPose_QN * const pose, C3DVector3Tpl<double> const & point, unsigned long & flags,
                          C3DVector3Tpl<double> & offset);

    /// The kind of an array in the space of the sphere. The pose is not read.
    long GetPrimitiveLocation(I3DPose_QN * const pose, C3DVector3Tpl<double> * points, unsigned long & flags,
                              unsigned long count);

    /// The same, with the offset from the center of the point that is farthest outside; null where none is outside.
    /// Note the order of the arguments.
    long CheckPrimitiveInclusion(I3DPose_QN * const pose, C3DVector3Tpl<double> * points, unsigned long count,
                                 unsigned long & flags, C3DVector3Tpl<double> & worst);

    /// The same, with that of the point that is deepest inside, the last one of several; null where all are outside.
    long CheckPrimitiveExclusion(I3DPose_QN * const pose, C3DVector3Tpl<double> * points, unsigned long & flags,
                                 C3DVector3Tpl<double> & worst, unsigned long count);

    /// The same, with that of the point that is nearest to the center; null for no point.
    long CheckPrimitiveOnSurface(I3DPose_QN * const pose, C3DVector3Tpl<double> * points, unsigned long & flags,
                                 C3DVector3Tpl<double> & worst, unsigned long count);

    /// The kind of the array when it is moved so that `reference` comes to the origin of the space. A bit 0x40000 tells
    /// that it can fit; a primitive wholly on the surface lacks it. The pose is not read.
    /// \return `E_POINTER` for a null array; `E_OUTOFMEMORY`
    long IsPrimitiveLarger(C3DVector3Tpl<double> const & reference, C3DVector3Tpl<double> * points, I3DPose_QN * pose,
                           unsigned long & flags, unsigned long count);

    /// The translation in world space that moves a primitive, given in world space, into the sphere, which stands in
    /// the space of the pose; minus the reference, so that this comes to the origin of the pose, where the primitive is
    /// too large. It is found step by step, to a ten thousandth of the radius, and may fall short where progress
    /// stalls.
    ///
    /// The steps aim at the sphere's surface as if its center were the origin of the pose, and are right there alone.
    /// That holds for the three operations. They give back the first negative code of the pose or of a step: `error`
    /// is then unwritten, or holds the sum of the steps so far in the space of the pose. Memory that cannot be had is
    /// not reported: the result is that of the pose, and `error` is unwritten; the memory of IsPrimitiveLarger alone
    /// is. `E_POINTER` for a null array that should hold points, or a pose without a matrix. A singular matrix brings
    /// the points in as they are, and takes the translation out all the same. `error` may be the reference or a point.
    ///
    /// Each ends after 100,000 steps at the latest. Near a radius of 10,000 and above, where neighbouring numbers are
    /// farther apart than the surface is thick, GetOnSurfaceError may go that far by rounding.
    long GetInclusionError(C3DVector3Tpl<double> const & reference, C3DVector3Tpl<double> * points, I3DPose_QN * pose,
                           C3DVector3Tpl<double> & error, unsigned long count);

    /// The same out of the sphere: no point is inside afterwards, for a center at the origin. `reference` is not read.
    long GetExclusionError(C3DVector3Tpl<double> const & reference, C3DVector3Tpl<double> * points, I3DPose_QN * pose,
                           C3DVector3Tpl<double> & error, unsigned long count);

    /// The same until the primitive touches the sphere from outside. All steps go along the first one and never back,
    /// so that it may stop before, with points inside. `reference` is not read.
    long GetOnSurfaceError(C3DVector3Tpl<double> const & reference, C3DVector3Tpl<double> * points, I3DPose_QN * pose,
                           C3DVector3Tpl<double> & error, unsigned long count);

    /// 1 where a point in world space is on or in a sphere of this radius about the origin of the pose, else 0, which a
    /// failing pose gives too. **The stored center is not read.** A null pose is the world, and so is a singular one.
    int PointIsIncluded(I3DPose_QN * const pose, C3DVector3Tpl<double> const & point);
    ///@}

private:
    friend class math::detail::SphereInspector;

    /// A step along `direction` that brings a point, of which `translation` is the way to the center, to the surface of
    /// a sphere about the origin; into `translation`. The null vector for a null direction. Returns 0.
    long FindBetterTranslation(C3DVector3Tpl<double> const & direction, C3DVector3Tpl<double> & translation) const;

protected:
    double m_Radius;                ///< At least 1e-6.
    C3DVector3Tpl<double> m_Center; ///< As it was given.
};
