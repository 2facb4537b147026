#pragma once

/// \file
/// Vectors as points and directions: angles, sides, areas, barycentric coordinates, collinearity, orthogonal
/// directions.
///
/// Angles are in radians. In the plane a turn from X to Y is positive. Functions with `2D` in their name, and all that
/// take two-component vectors, work on X and Y. An `epsilon` is an absolute limit, in the units of what it limits.

#include "math/vector2.h"
#include "math/vector3.h"

namespace math::detail
{

/// Twice the area of the triangle a, b, c in the plane: positive when its vertices run counter-clockwise.
template <typename T>
inline T TwiceSignedArea(C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b, C3DVector2Tpl<T> const & c)
{
    return (c.Y - a.Y) * (b.X - a.X) - (c.X - a.X) * (b.Y - a.Y);
}

} // namespace math::detail

/// \name Angles
///@{

/// The cosine of the angle between two directions, kept within -1 and 1.
///
/// 1 where the product of the lengths is below `epsilon`: a null vector counts as parallel to everything. A quotient
/// that is a NaN, which infinite or NaN components give, yields -1.
template <typename T>
MATH_API T GetVctsCosAngle(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b,
                           std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>);

/// The unsigned angle between two directions, 0 to pi: the arc cosine of GetVctsCosAngle, so 0 where one of them is
/// null within `epsilon`, and pi where a NaN appears.
template <typename T>
MATH_API T GetVctsAngle(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b,
                        std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>);

/// The cosine of the angle at o between the points a and b.
///
/// Where a or b coincides with o, the two scalar types differ. The `double` form takes the product of the distances for
/// null below 1e-12 and yields 1. The `float` form has no such guard: the quotient is a NaN and yields -1.
template <typename T>
MATH_API T GetPntsCosAngle(C3DVector3Tpl<T> const & o, C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b);

/// The unsigned angle at o between the points a and b, 0 to pi. Where a or b coincides with o the `double` form yields
/// 0 and the `float` form pi; see GetPntsCosAngle.
template <typename T>
MATH_API T GetPntsAngle(C3DVector3Tpl<T> const & o, C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b);

/// The angle between two directions in space, Z included, with the sign of the turn from a to b in the XY plane.
///
/// Opposite and parallel directions have no turn and count as positive. Where one vector is null the `double` form
/// yields 0 (product of the lengths below 1e-12) and the `float` form, which has no such guard, pi.
template <typename T>
MATH_API T Get2DVctsAngleSigned(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b);

/// Get2DVctsAngleSigned of the directions from o to a and to b.
template <typename T>
MATH_API T Get2DPntsAngleSigned(C3DVector3Tpl<T> const & o, C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b);
///@}

/// \name Sides and collinearity
///@{

/// a.X b.Y - a.Y b.X: the signed area of the parallelogram of a and b, positive when b lies counter-clockwise of a.
template <typename T>
MATH_API inline T GetCross(C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b)
{
    return a.X * b.Y - a.Y * b.X;
}

/// 1 when p lies to the left of the line from a to b or on it, -1 when it lies to the right. A NaN gives -1.
template <typename T>
MATH_API inline int Get2DPntSide(C3DVector2Tpl<T> const & p, C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b)
{
    return math::detail::TwiceSignedArea(a, b, p) >= 0 ? 1 : -1;
}

/// Not a side test: p is not read, and the result is 1 for all points whose extents have a finite product. It is -1
/// where (b.X - a.X)(b.Y - a.Y) is infinite or a NaN. Use the form for two-component vectors to learn a side.
template <typename T>
MATH_API int Get2DPntSide(C3DVector3Tpl<T> const & p, C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b);

/// 1 unless the points run counter-clockwise: collinear points count as clockwise, and so does a NaN.
template <typename T>
MATH_API inline int ArePntsClockWise(C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b, C3DVector2Tpl<T> const & c)
{
    return !(math::detail::TwiceSignedArea(a, b, c) > 0);
}

/// 1 unless the sine of the angle at a between b and c is at or above `epsilon`. Points that coincide with a are
/// collinear with anything, whatever `epsilon` is. The `float` form works in `double` throughout.
///
/// The measure is an angle: b and c may lie far off the line where they are farther from a. For a measure in lengths
/// see ArePntsColinearUsingDistance.
template <typename T>
MATH_API int ArePntsCollinear(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b, C3DVector3Tpl<T> const & c,
                              std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>);

/// 1 when two of the points lie closer together than `epsilon`, or when the point opposite to the longest edge lies
/// closer to its line than `epsilon`; both limits are strict, so an `epsilon` of 0 gives 0. A NaN gives
/// 1.
template <typename T>
MATH_API int ArePntsColinearUsingDistance(C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b,
                                          C3DVector2Tpl<T> const & c,
                                          std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>);

/// Always 0: no intersection is ever reported, of crossing segments either, and that is part of the interface. To
/// intersect lines use C3DVector2Tpl::SetIntersection.
template <typename T>
MATH_API int FSegmentIntersect(C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b, C3DVector2Tpl<T> const & c,
                               C3DVector2Tpl<T> const & d);
///@}

/// \name Triangles
///@{

/// The area of a triangle in space, never negative.
template <typename T>
MATH_API inline T GetTriangleArea(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b, C3DVector3Tpl<T> const & c)
{
    return T(0.5) * C3DVector3Tpl<T>().SetCross(a, b, c).GetLength();
}

/// Unsigned barycentric coordinates: the areas of the triangles p b c, p c a and p a b over their sum.
///
/// None is negative and they add up to 1, also for a point outside the triangle or off its plane; p is u a + v b + w c
/// only where it lies in the triangle. All are 0 where the three areas are, which takes points on one line.
template <typename T>
MATH_API void GetBarycentricCoords(C3DVector3Tpl<T> const & p, C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b,
                                   C3DVector3Tpl<T> const & c, T & u, T & v, T & w);

/// Signed barycentric coordinates in the plane: p = u a + v b + w c, with u + v + w = 1.
///
/// \param p the point
/// \param a,b,c the triangle, counter-clockwise
/// \param u,v,w the coordinates; always written
/// \param epsilon limit of the signed area at or below which the triangle counts as degenerate, and the slack by which
/// a coordinate may be negative
/// \param vertex for a degenerate triangle: edges at the vertex of this index (0 to 2) are preferred; a greater index
/// prefers none
/// \return 1 when the point lies in the triangle, 0 when it lies outside
///
/// A triangle that is degenerate, or runs clockwise, is treated as its three edges: the result is the position of p on
/// one of them, with 0 for the vertex that is not on it. An edge along which p lies (in parameter, within `epsilon`)
/// goes before one that p is beyond, then a preferred edge, then the nearest one. The return is then 1 only if p lies
/// along the edge, at a squared distance below `epsilon`. A p with a NaN passes both tests, on the first edge.
template <typename T>
MATH_API int GetBarycentricCoords(C3DVector2Tpl<T> const & p, C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b,
                                  C3DVector2Tpl<T> const & c, T & u, T & v, T & w, std::type_identity_t<T> epsilon,
                                  unsigned long vertex);
///@}

/// Two directions orthogonal to n and to each other, such that a x b has the direction of n.
///
/// They are not normalised: a has the length of the two larger components of n, and b that of a times that of n. A null
/// n gives two null vectors. Neither a nor b may be n.
template <typename T>
MATH_API void GetOrthogonalBasis(C3DVector3Tpl<T> const & n, C3DVector3Tpl<T> & a, C3DVector3Tpl<T> & b);

extern template float GetVctsCosAngle(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &, float);
extern template double GetVctsCosAngle(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &, double);
extern template float GetVctsAngle(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &, float);
extern template double GetVctsAngle(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &, double);
extern template float GetPntsCosAngle(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &,
                                      C3DVector3Tpl<float> const &);
extern template double GetPntsCosAngle(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &,
                                       C3DVector3Tpl<double> const &);
extern template float GetPntsAngle(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &,
                                   C3DVector3Tpl<float> const &);
extern template double GetPntsAngle(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &,
                                    C3DVector3Tpl<double> const &);
extern template float Get2DVctsAngleSigned(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &);
extern template double Get2DVctsAngleSigned(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &);
extern template float Get2DPntsAngleSigned(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &,
                                           C3DVector3Tpl<float> const &);
extern template double Get2DPntsAngleSigned(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &,
                                            C3DVector3Tpl<double> const &);
extern template float GetCross(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &);
extern template double GetCross(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &);
extern template int Get2DPntSide(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &,
                                 C3DVector2Tpl<float> const &);
extern template int Get2DPntSide(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &,
                                 C3DVector2Tpl<double> const &);
extern template int Get2DPntSide(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &,
                                 C3DVector3Tpl<float> const &);
extern template int Get2DPntSide(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &,
                                 C3DVector3Tpl<double> const &);
extern template int ArePntsClockWise(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &,
                                     C3DVector2Tpl<float> const &);
extern template int ArePntsClockWise(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &,
                                     C3DVector2Tpl<double> const &);
extern template int ArePntsCollinear(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &,
                                     C3DVector3Tpl<float> const &, float);
extern template int ArePntsCollinear(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &,
                                     C3DVector3Tpl<double> const &, double);
extern template int ArePntsColinearUsingDistance(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &,
                                                 C3DVector2Tpl<float> const &, float);
extern template int ArePntsColinearUsingDistance(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &,
                                                 C3DVector2Tpl<double> const &, double);
extern template int FSegmentIntersect(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &,
                                      C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &);
extern template int FSegmentIntersect(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &,
                                      C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &);
extern template float GetTriangleArea(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &,
                                      C3DVector3Tpl<float> const &);
extern template double GetTriangleArea(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &,
                                       C3DVector3Tpl<double> const &);
extern template void GetBarycentricCoords(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &,
                                          C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &, float &, float &,
                                          float &);
extern template void GetBarycentricCoords(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &,
                                          C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &, double &,
                                          double &, double &);
extern template int GetBarycentricCoords(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &,
                                         C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &, float &, float &,
                                         float &, float, unsigned long);
extern template int GetBarycentricCoords(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &,
                                         C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &, double &,
                                         double &, double &, double, unsigned long);
extern template void GetOrthogonalBasis(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> &, C3DVector3Tpl<float> &);
extern template void GetOrthogonalBasis(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> &,
                                        C3DVector3Tpl<double> &);
