#pragma once

/// \file
/// Lines against a triangle.

#include "math/contact_record.h"
#include "math/vector3.h"

/// Where a line meets the plane of a triangle. It is a hit where no weight is negative; for a ray or a segment the
/// caller tests the parameter too.
///
/// \param origin,direction the line, which has no ends
/// \param a,b,c the triangle
/// \param weightA,weightB,weightC receive the barycentric weights; on a failure weightC is still made of what the other
/// two hold
/// \param position receives the point; may be null
/// \param parameter receives t of origin + t direction; may be null
/// \return 0; 1, with position and parameter unwritten, where the line is parallel to the plane, where there is
/// no plane, or where the magnitudes of parameter and weights would add up to some 1e12
MATH_API long F3DWorldSegmentVsTriangleIntersection(C3DVector3Tpl<double> const & origin,
                                                    C3DVector3Tpl<double> const & direction,
                                                    C3DVector3Tpl<double> const & a, C3DVector3Tpl<double> const & b,
                                                    C3DVector3Tpl<double> const & c, double & weightA, double & weightB,
                                                    double & weightC, C3DVector3Tpl<double> * position,
                                                    double * parameter);

/// The same by projection along the line, for callers that rely on its results. A line in the plane of the triangle is
/// not refused.
///
/// \param start,end two points of the line, which has no ends
/// \param a,b,c the triangle
/// \param weightA,weightB,weightC receive the signed weights, which add up to 1; where the projected triangle has a
/// normal not longer than 1e-12, as seen edge-on, twice the areas that the weights are the shares of
/// \param position receives the weighted sum of the vertices; may be null
/// \return 0; 1, with nothing written, where no component of start and end differs by more than 1e-12
MATH_API long F3DWorldSegmentVsTriangleIntersectionOld(C3DVector3Tpl<double> const & start,
                                                       C3DVector3Tpl<double> const & end,
                                                       C3DVector3Tpl<double> const & a, C3DVector3Tpl<double> const & b,
                                                       C3DVector3Tpl<double> const & c, double & weightA,
                                                       double & weightB, double & weightC,
                                                       C3DVector3Tpl<double> * position);

/// Not implemented: clears the record, if there is one, and returns `E_NOTIMPL`.
MATH_API long F3DWorldSegmentVsTriangleIntersection(C3DVector3Tpl<double> & start, C3DVector3Tpl<double> & end,
                                                    C3DVector3Tpl<double> & a, C3DVector3Tpl<double> & b,
                                                    C3DVector3Tpl<double> & c, unsigned long & flags,
                                                    tagS3DGEOMINFO * info, double tol);

/// Not implemented: returns `E_NOTIMPL`.
MATH_API long F3DWorldPointVsTriangleIntersection(C3DVector3Tpl<double> & point, C3DVector3Tpl<double> & a,
                                                  C3DVector3Tpl<double> & b, C3DVector3Tpl<double> & c,
                                                  unsigned long & flags, tagS3DGEOMINFO * info, double tol);
