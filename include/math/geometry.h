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
    E3DGEOMTYPE_NONE = 0,
    E3DGEOMTYPE_POINT = 1,
    E3DGEOMTYPE_LINE = 2,
    E3DGEOMTYPE_CIRCLE = 5,
    E3DGEOMTYPE_PLANE = 10,
    E3DGEOMTYPE_CYLINDER = 17,
    E3DGEOMTYPE_BOX = 18,
    E3DGEOMTYPE_SPHERE = 20
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
    explicit C3DMathGeometry(e3dBaseGeomType type);
    C3DMathGeometry(C3DMathGeometry const & other);
    C3DMathGeometry & operator=(C3DMathGeometry const & other);
    virtual ~C3DMathGeometry();

    /// \name Contacts
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

    long Intersect_Point(I3DPose_QN * const pose, C3DPoint const & other, I3DPose_QN * const otherPose,
                         unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
    long Intersect_Sphere(I3DPose_QN * const pose, C3DBaseSphere const & other, I3DPose_QN * const otherPose,
                          unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
    long Intersect_Box(I3DPose_QN * const pose, C3DBaseBox const & other, I3DPose_QN * const otherPose,
                       unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
};

} // namespace math::detail
