#pragma once

/// \file
/// Contacts of a box in its own space.
///
/// The box has a minimum and a maximum corner and is expected to hold the origin of its space: which face of an axis
/// is looked at is decided by the sign of the tested coordinate, not by its place between the bounds. All return 0.
/// `info` may be null.

#include "math/contact_record.h"
#include "math/rotation_matrix.h"
#include "math/vector3.h"

/// A point against the faces of a box.
///
/// \param min,max the box
/// \param point the point
/// \param flags by the greatest of the three gaps: 4 outside, 0x20000 on the surface within `tol`, 0x40000 inside
/// \param gaps receives, axis by axis, how far the point is outside the face on its side; negative inside
/// \param tol the tolerance
MATH_API long F3DLocalBoxVsPointIntersection(C3DVector3Tpl<double> const & min, C3DVector3Tpl<double> const & max,
                                             C3DVector3Tpl<double> const & point, unsigned long & flags,
                                             C3DVector3Tpl<double> & gaps, double tol);

/// The same with a record, which receives the point as the position and **the least of the three gaps** as the
/// distance: that of the face on the point's side from which it is farthest inside.
MATH_API long F3DLocalBoxVsPointIntersection(C3DVector3Tpl<double> const & min, C3DVector3Tpl<double> const & max,
                                             C3DVector3Tpl<double> const & point, unsigned long & flags,
                                             tagS3DGEOMINFO * info, double tol);

/// A sphere against the faces, edges and corners of a box.
///
/// An axis is *near* when the sphere, its radius less `tol`, reaches inwards past the face on its side; a near axis
/// whose other two coordinates lie in the bounds is a contact with that face. Otherwise near axes make an edge or a
/// corner, and its distance decides. (J. Arvo, "A simple method for box-sphere intersection testing", Graphics Gems,
/// 1990, for the idea.) The answer is that of the solids for a box that holds the origin and a radius not below `tol`.
///
/// \param min,max the box
/// \param center,radius the sphere
/// \param flags 0x10000 for a contact, else 4
/// \param info receives, for a face: on its axis alone a component of position (the point of the sphere that lies
/// deepest) and of normal (the outward sign), and the gap of that point as the distance, from the face on **the point's
/// own side of the origin**, which is not that of the normal once the sphere reaches across it. For an edge or corner:
/// the components of position on its axes, the outward unit normal, and the distance. Beyond every face: the least
/// coordinate of the sphere's inward points as the distance, which is no gap. **What is not named stays:** clear a
/// record that you mean to read whole.
/// \param tol the tolerance
MATH_API long F3DLocalBoxVsSphereIntersection(C3DVector3Tpl<double> const & min, C3DVector3Tpl<double> const & max,
                                              C3DVector3Tpl<double> const & center, double radius,
                                              unsigned long & flags, tagS3DGEOMINFO * info, double tol);

/// Two oriented boxes, by separating axes: the three of each box, and the cross products of them. The last one, Z of
/// the first box with the third of the second, is left out: **boxes that it alone separates are reported as
/// intersecting.** (S. Gottschalk, M. C. Lin, D. Manocha, "OBBTree", SIGGRAPH 1996.)
///
/// \param rotation its rows are the axes of the second box in the space of the first
/// \param translation the center of the second box; that of the first is the origin
/// \param extentsA,extentsB the half sizes
/// \param flags 4 for boxes apart, else 0x10000
/// \param info is cleared before anything is read, and receives nothing else: it must not hold the other arguments
/// \param tol is not read: boxes that touch intersect
MATH_API long F3DLocalBoxVsBoxIntersection(C3DRotMatTpl<double> const & rotation,
                                           C3DVector3Tpl<double> const & translation,
                                           C3DVector3Tpl<double> const & extentsA,
                                           C3DVector3Tpl<double> const & extentsB, unsigned long & flags,
                                           tagS3DGEOMINFO * info, double tol);
