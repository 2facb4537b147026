#pragma once

/// \file
/// Contacts of lines with a cone, a polygon, a line in the plane and a circle, and of two planes.
///
/// Queries that can find several contacts allocate an array of records with `CoTaskMemAlloc` and leave it to the caller
/// to free with `CoTaskMemFree`; a null `infos` asks for none. Memory that cannot be had gives `E_OUTOFMEMORY`. Fields
/// of such an array that are not named are not initialised.

#include "math/circle.h"
#include "math/contact_record.h"
#include "math/vector2.h"
#include "math/vector3.h"

/// A line against the lower nappe of a cone about the Z axis with its apex at the origin, of unlimited extent.
///
/// The section at height z is a circle of radius |z| `radius` / `height`. Points with z above 0.001 belong to the upper
/// nappe and do not count.
///
/// \param radius,height the slope of the cone
/// \param p,q two points of the line, at the parameters 0 and 1
/// \param flags 0x10000 for contacts; 16 where they are on the upper nappe; 2 for a line in the surface, and for one
/// whose equation has no solution and is linear
/// \param count receives how many contacts there are, 0 to 2
/// \param infos receives the records, with position, and the parameter in u; null where there are none
/// \return 0; `E_INVALIDARG`, with nothing written, for a radius, height or line shorter than 1e-12
///
/// **A line that misses the cone is reported as one contact**, at the parameter where it comes nearest in the measure
/// of the equation.
MATH_API long F3DLocalConeVsLineIntersection(double radius, double height, C3DVector3Tpl<double> const & p,
                                             C3DVector3Tpl<double> const & q, unsigned long & flags,
                                             unsigned int & count, tagS3DGEOMINFO ** infos);

/// A segment in the plane against the outline of a polygon. A vertex that the segment passes through counts once, and
/// one that it only touches does not count; nor does an edge along the segment.
///
/// \param vertexCount,vertices the closed polygon
/// \param orientation where the outline crosses with several vertices on the line, it chooses at which of them the
/// crossing is reported: with 1, a left turn from the edge that comes to the line into the direction from the first of
/// them to the last gives the last, and any other turn the first; with 0, the other way round; with any other value it
/// is always the first. The last one may lie beyond the end of the segment
/// \param a,b the segment
/// \param flags 0x10000 for crossings, else 4
/// \param count receives how many there are
/// \param infos receives `vertexCount` records, of which `count` are filled: position, and the parameter from a to b in
/// u and v. To be freed where there is no crossing and on `E_UNEXPECTED` too
/// \return 0; `E_UNEXPECTED` where the segment passes through a vertex of a polygon that has no other vertex off the
/// line: `flags` is then unwritten, and `count` tells how many crossings were found before. For a segment shorter than
/// 1e-6 every vertex counts as on the line
///
/// Vertices within 1e-6 of the line are on it. An edge whose cross product with the segment is below 1e-9 counts as
/// parallel, so that an outline and a segment that are both small against 3e-5 never meet.
MATH_API long F2DPolygonVs2DLineIntersection(unsigned long vertexCount, C3DVector2Tpl<double> const * vertices,
                                             int orientation, C3DVector2Tpl<double> const & a,
                                             C3DVector2Tpl<double> const & b, unsigned long & flags,
                                             unsigned int & count, tagS3DGEOMINFO ** infos);

/// Two lines in the plane, through a and b, and through c and d; collinear ones as segments.
///
/// \param a,b,c,d the points
/// \param flags 0x10000 for lines that cross; 1 for parallel ones apart; 0x100000 for collinear segments that overlap,
/// 4 for those that do not
/// \param info receives, where they cross, the point and the parameter from a to b in u. **v is minus the parameter
/// from c to d.** May be null
/// \param denominatorLimit limit on the cross product of the two vectors, below which they are parallel
/// \param collinearLimit limit on the cross products of the offset with the two vectors, below which they are collinear
/// \return 0; 1 for parallel lines and for collinear segments apart
MATH_API long F3DWorld2DLineVs2DLineIntersection(C3DVector2Tpl<double> const & a, C3DVector2Tpl<double> const & b,
                                                 C3DVector2Tpl<double> const & c, C3DVector2Tpl<double> const & d,
                                                 unsigned long & flags, tagS3DGEOMINFO * info, double denominatorLimit,
                                                 double collinearLimit);

/// A line in space against a circle.
///
/// \param circle the circle
/// \param p,q two points of the line; p must not be the center
/// \param flags 0x10000 where the line meets the circle within `distanceLimit` (for a line across the plane a limit on
/// the difference of the squared distances), 4 where it misses it, 32 where it crosses the plane at the center
/// \param count receives how many records there are, 0 to 2
/// \param infos receives the records: the point of the circle nearest to where the line meets the plane, for a miss
/// too; the circle's normal; the angle about it over two pi in u, from 0 to 1. Untouched where the query fails. May be
/// null
/// \param parallelLimit **lines whose ends differ in height by less than it, in units of the distance of p from the
/// center**, run along the plane
/// \param distanceLimit the tolerance
/// \return 0; 1 for a line through the center; `E_INVALIDARG` for a radius below 1e-12, for p closer than 1e-12 to the
/// center, and for a line along the plane that is shorter than 1e-6 in it
///
/// The center is hit within 1e-12 in x and within `distanceLimit` in y of the frame in which the normal is Z, so that
/// what counts as through it depends on the direction. Along the plane the contacts are the roots of
/// F3DFindQuadraticRoots, whose limits are absolute: points p and q closer than 3e-5 give one contact at most.
MATH_API long F3DWorldCircleVsLineIntersection(C3DBaseCircle const & circle, C3DVector3Tpl<double> const & p,
                                               C3DVector3Tpl<double> const & q, unsigned long & flags,
                                               unsigned int & count, tagS3DGEOMINFO ** infos, double parallelLimit,
                                               double distanceLimit);

/// Two planes, each by a point and a normal.
///
/// \param origin1,normal1,origin2,normal2 the planes; unit normals make `parallelLimit` a cosine
/// \param flags 0x10000 where they meet; for parallel planes 1 apart, 0x100000 coincident
/// \param info receives a point of the line where they meet as the position, and its direction, of any length, as the
/// normal; **null where `origin1` lies on the line**, unless one of the two tangents of the first plane runs along the
/// second plane. May be null
/// \param parallelLimit normals with a dot product above it in magnitude are parallel
/// \param distanceLimit parallel planes coincide **where their two points are closer than it**
/// \return 0; 1 for parallel planes apart; `E_UNEXPECTED`, with nothing written, where no line is found: for a null
/// normal, and for planes at an angle that `parallelLimit` lets pass but whose sine along both tangents of the first is
/// below 0.05
///
/// The line comes from where the two tangents of GetOrthogonalBasis of `normal1` meet the second plane. A tangent at a
/// sine below 0.05 to that plane counts as parallel to it and stands for the direction, **which is then off** by an
/// angle whose sine is up to 0.05 over that of the angle between the planes.
MATH_API long F3DWorldPlaneVsPlaneIntersection(C3DVector3Tpl<double> const & origin1,
                                               C3DVector3Tpl<double> const & normal1,
                                               C3DVector3Tpl<double> const & origin2,
                                               C3DVector3Tpl<double> const & normal2, unsigned long & flags,
                                               tagS3DGEOMINFO * info, double parallelLimit, double distanceLimit);
