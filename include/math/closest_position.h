#pragma once

/// \file
/// Closest positions on segments and triangles.

#include "math/vector3.h"

/// The position of a segment that is closest to a point.
///
/// \param point the point
/// \param a,b the segment; of length 0, or shorter than 1e-49, it counts as the point a
/// \param weightA,weightB receive its weights: it is weightA a + weightB b
/// \param squaredDistance receives the squared distance; may be null
/// \param closest receives the position; may be null
/// \return 0
MATH_API long F3DClosestPositionOnSegment(C3DVector3Tpl<double> const & point, C3DVector3Tpl<double> const & a,
                                          C3DVector3Tpl<double> const & b, double & weightA, double & weightB,
                                          double * squaredDistance, C3DVector3Tpl<double> * closest);

/// The position of a triangle that is closest to a point.
///
/// A point that projects inside is answered at once. Elsewhere the signs of its barycentric coordinates choose the
/// edges to look at. **That is a short cut:** a point beyond an obtuse corner, so far along one of its edges that it
/// projects past the far end of the edge, gets the corner and not that end. Everywhere else the answer is exact.
///
/// A triangle whose cross product N of edges is shorter than 1e-25 counts as the longer of its edges from a; of two
/// equally long ones, that to c.
///
/// **Some 1e12 times |N| above the plane** (a triangle too thin, or a point too far) a point that projects inside gets
/// good weights, unless |N| is below 1e-12 too, and a position and a distance that mean nothing: point + (b.X - a.X) N
/// and the length of that step. Without a single number for a weight, as for a point that is a NaN, the edge from b to
/// c alone is looked at.
///
/// \param point the point
/// \param a,b,c the triangle
/// \param weightA,weightB,weightC receive its barycentric weights
/// \param squaredDistance receives the squared distance; may be null
/// \param closest receives the position; may be null
/// \return 0
MATH_API long F3DClosestPositionOnTriangle(C3DVector3Tpl<double> const & point, C3DVector3Tpl<double> const & a,
                                           C3DVector3Tpl<double> const & b, C3DVector3Tpl<double> const & c,
                                           double & weightA, double & weightB, double & weightC,
                                           double * squaredDistance, C3DVector3Tpl<double> * closest);
