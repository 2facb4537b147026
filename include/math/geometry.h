#pragma once

/// \file
/// The root of the geometry classes.

#include "math/contact_record.h"
#include "math/platform/pose.h"

class C3DBaseBox;
class C3DBaseSphere;
class C3DPoint;

/// The kind of a geometry object. The numbering has gaps.
enum e3dBaseGeomType : int
{
    E3DGEOMTYPE_NONE = 0,      ///< C3DMathGeometry by itself
    E3DGEOMTYPE_POINT = 1,     ///< C3DPoint, C3DCoPoint
    E3DGEOMTYPE_LINE = 2,      ///< C3DLine, C3DCoLine
    E3DGEOMTYPE_CIRCLE = 5,    ///< C3DBaseCircle
    E3DGEOMTYPE_PLANE = 10,    ///< C3DPlane, C3DCoPlane
    E3DGEOMTYPE_CYLINDER = 17, ///< C3DBaseCylinder, C3DBCylinder
    E3DGEOMTYPE_BOX = 18,      ///< C3DBaseBox, C3DBBox
    E3DGEOMTYPE_SPHERE = 20    ///< C3DBaseSphere, C3DBSphere
};

/// Base of the geometry objects: value classes of `double` that know their kind and can be asked for contacts.
///
/// The three queries are placed in the world by poses: `pose` places this object, `otherPose` the other one. Which
/// pairs have an implementation, and in which space they answer, is told at the classes; the others return `E_NOTIMPL`
/// and write nothing.
class MATH_API C3DMathGeometry
{
public:
    /// Of no kind.
    C3DMathGeometry();
    /// Of this kind, which Intersect_All trusts: an object of the kind of a class has to be of that class.
    explicit C3DMathGeometry(e3dBaseGeomType type);
    /// Of the kind of another one.
    C3DMathGeometry(C3DMathGeometry const & other);
    /// Takes over the kind of another one.
    C3DMathGeometry & operator=(C3DMathGeometry const & other);
    virtual ~C3DMathGeometry();

    /// \name Contacts
    /// Whether this object and another one touch, and where.
    /// \param pose places this object
    /// \param other the other object
    /// \param otherPose places the other object
    /// \param flags receives the kind of contact
    /// \param info receives the contact; may be null
    /// \param tolerance half the width of the shell in which surfaces count as touching
    /// \param unused read by no implementation
    /// \return 0; `E_NOTIMPL` where this pair has no implementation; a failure of a pose
    ///@{
    virtual long Intersect_Point(I3DPose_QN * const pose, C3DPoint const & other, I3DPose_QN * const otherPose,
                                 unsigned long & flags, tagS3DGEOMINFO * info, double tolerance,
                                 double unused) const = 0;
    virtual long Intersect_Sphere(I3DPose_QN * const pose, C3DBaseSphere const & other, I3DPose_QN * const otherPose,
                                  unsigned long & flags, tagS3DGEOMINFO * info, double tolerance,
                                  double unused) const = 0;
    virtual long Intersect_Box(I3DPose_QN * const pose, C3DBaseBox const & other, I3DPose_QN * const otherPose,
                               unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const = 0;

    /// The query for the kind of `other`. A kind other than point, box and sphere gives `E_NOTIMPL` with `flags` 4 (no
    /// contact); a query that this object lacks gives `E_NOTIMPL` with `flags` as they were.
    long Intersect_All(I3DPose_QN * const pose, C3DMathGeometry const & other, I3DPose_QN * const otherPose,
                       unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const;
    ///@}

    /// Writes the kind and returns 0.
    long GetType(e3dBaseGeomType & type) const;

private:
    e3dBaseGeomType m_Type;
};

namespace math::detail
{

/// Base of the geometry objects that lack some query, or all.
class MATH_API PartialGeometry : public C3DMathGeometry
{
public:
    using C3DMathGeometry::C3DMathGeometry;

    /// \name Contacts
    /// Not implemented: `E_NOTIMPL`, with nothing written. A class with a query of its own overrides it.
    ///@{
    long Intersect_Point(I3DPose_QN * const pose, C3DPoint const & other, I3DPose_QN * const otherPose,
                         unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
    long Intersect_Sphere(I3DPose_QN * const pose, C3DBaseSphere const & other, I3DPose_QN * const otherPose,
                          unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
    long Intersect_Box(I3DPose_QN * const pose, C3DBaseBox const & other, I3DPose_QN * const otherPose,
                       unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
    ///@}
};

} // namespace math::detail
