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
/// edges to look at. **That is a short cut:** beyond an obtuse corner, the edge that is looked at need not be the
/// nearest one, and the answer is then on the triangle but not the closest. A triangle whose cross product of edges is
/// shorter than 1e-25 counts as the longer of its edges from a.
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
