#pragma once

/// \file
/// Collision of a moving point with a deforming triangle.
///
/// Each of the four points moves evenly from its first position, at time 0, to its second, at time 1. A point can hit a
/// triangle only when the four are coplanar; the volume they span is a cubic polynomial of time, and its roots are the
/// times to look at. (X. Provot, "Collision and self-collision handling in cloth model dedicated to design garments",
/// 1997.) **Times are not limited to 0 to 1, and not sorted:** the caller chooses.

#include "math/vector3.h"

/// The times at which four moving points are coplanar (despite the name).
///
/// \param p0,p1,a0,a1,b0,b1,c0,c1 first and second position of each point
/// \param count receives how many times there are, 0 to 3; a double root counts twice
/// \param times room for 3
/// \param tolerance relative to the sum of the coefficients, below which a coefficient counts as zero
/// \return 0
///
/// Points that are coplanar all the time give the one time 0. A volume that is quadratic in time and touches zero
/// without passing it gives none.
MATH_API long F3DGetFourDeformedPtsColinearTimes(C3DVector3Tpl<double> const & p0, C3DVector3Tpl<double> const & p1,
                                                 C3DVector3Tpl<double> const & a0, C3DVector3Tpl<double> const & a1,
                                                 C3DVector3Tpl<double> const & b0, C3DVector3Tpl<double> const & b1,
                                                 C3DVector3Tpl<double> const & c0, C3DVector3Tpl<double> const & c1,
                                                 unsigned long & count, double * times, double const & tolerance);

/// The times at which a moving point lies in a deforming triangle, and where.
///
/// \param p0,p1 the point
/// \param a0,a1,b0,b1,c0,c1 the triangle
/// \param count receives how many times there are, 0 to 3
/// \param times room for 3
/// \param weights room for 9: three barycentric weights a time, each above -`tolerance`, whose sum is within a
/// thousandth of 1
/// \param tolerance for coefficients, as above, and for weights
/// \return 0; 1 where there are none. Entries beyond `count` hold what the search left there
///
/// **A triangle that has collapsed to a line**, with a normal not longer than 1e-12, is hit by any point, since nothing
/// tells inside from outside: the weights are then twice the areas of the triangles between its edges and the point,
/// and add up to anything. A point that is off the line has large ones.
MATH_API long F3DDeformedPtVsDeformedTriangleIntersection(
    C3DVector3Tpl<double> const & p0, C3DVector3Tpl<double> const & p1, C3DVector3Tpl<double> const & a0,
    C3DVector3Tpl<double> const & a1, C3DVector3Tpl<double> const & b0, C3DVector3Tpl<double> const & b1,
    C3DVector3Tpl<double> const & c0, C3DVector3Tpl<double> const & c1, unsigned long & count, double * times,
    double * weights, double const & tolerance);
