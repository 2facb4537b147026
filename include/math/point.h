#pragma once

/// \file
/// The point.

#include "math/geometry.h"

/// A position. In queries its pose alone tells where it stands: the stored position plays no part in them.
class MATH_API C3DPoint : public C3DMathGeometry
{
public:
    /// The origin.
    C3DPoint();
    /// At a position.
    explicit C3DPoint(C3DVector3Tpl<double> const & position);

    /// Moves the point to a position.
    void SetPos(C3DVector3Tpl<double> const & position);

    /// Writes the position and returns 0.
    long GetPos(C3DVector3Tpl<double> & position) const;

    /// Writes the Euclidean distance and returns 0.
    long GetDistanceFrom(C3DVector3Tpl<double> const & point, double & distance) const;

    /// \name Contacts
    /// This point against another point, a sphere or a box: all three answer. Against a sphere a failing pose is
    /// ignored and counts as the world's origin, without a scale; the radius is scaled by the greatest factor, sign
    /// included, and the stored center plays no part. Against a box the world position of the point is taken from the
    /// space of its own pose into that of the box, so that it is right for a pose at the origin alone; the record stays
    /// in the space of the box.
    ///@{
    long Intersect_Point(I3DPose_QN * const pose, C3DPoint const & other, I3DPose_QN * const otherPose,
                         unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
    long Intersect_Sphere(I3DPose_QN * const pose, C3DBaseSphere const & other, I3DPose_QN * const otherPose,
                          unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
    long Intersect_Box(I3DPose_QN * const pose, C3DBaseBox const & other, I3DPose_QN * const otherPose,
                       unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override;
    ///@}

private:
    C3DVector3Tpl<double> m_Position;
};
