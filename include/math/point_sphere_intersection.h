#pragma once

/// \file
/// Contacts among points and spheres.
///
/// All return 0. `tol` is half the width of the shell in which surfaces count as touching. `info` may be null.

#include "math/contact_record.h"
#include "math/vector3.h"

/// Two points, which touch where they are no farther apart than the tolerance.
///
/// \param a,b the points
/// \param flags 4 where their distance is above `tol`, else 0x20000 (touching)
/// \param info receives the distance less `tol`, and a as the position
/// \param tol the tolerance
MATH_API long F3DWorldPointVsPointIntersection(C3DVector3Tpl<double> const & a, C3DVector3Tpl<double> const & b,
                                               unsigned long & flags, tagS3DGEOMINFO * info, double tol);

/// A point against a sphere.
///
/// \param point the point
/// \param center,radius the sphere
/// \param flags 4 outside, 0x20000 on the surface, 0x40000 inside
/// \param info receives the distance from the surface, the point as the position, and the direction from the center as
/// the normal, which stays as it was for a point at the center
/// \param tol the tolerance
MATH_API long F3DWorldPointVsSphereIntersection(C3DVector3Tpl<double> const & point,
                                                C3DVector3Tpl<double> const & center, double const & radius,
                                                unsigned long & flags, tagS3DGEOMINFO * info, double tol);

/// The same with the vector from the center to the point in place of the record.
MATH_API long F3DWorldPointVsSphereIntersection(C3DVector3Tpl<double> const & point,
                                                C3DVector3Tpl<double> const & center, double const & radius,
                                                unsigned long & flags, C3DVector3Tpl<double> & offset, double tol);

/// Two spheres, taken as solids: one within the other overlaps it.
///
/// \param c1,r1 the first sphere
/// \param c2,r2 the second sphere
/// \param flags 4 apart, 0x20000 touching, 0x10000 overlapping; 0x100000 where both the distance of the centers and the
/// difference of the radii are below `tol`: with a `tol` of 0 no spheres are coincident
/// \param info receives the gap between the surfaces, the direction from the first center to the second as the normal,
/// and as the position the point of the second sphere that faces the first center; for one center both ways the null
/// vector and that center
/// \param tol the tolerance
MATH_API long F3DWorldSphereVsSphereIntersection(C3DVector3Tpl<double> const & c1, double const & r1,
                                                 C3DVector3Tpl<double> const & c2, double const & r2,
                                                 unsigned long & flags, tagS3DGEOMINFO * info, double tol);
