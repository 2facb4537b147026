#pragma once

/// \file
/// Conversions between the descriptions of a rotation: Euler angles, quaternion, rotation matrix, axis and angle.
///
/// Angles are in radians, right-handed. Matrices act on row vectors. A triple of Euler angles always holds the angles
/// about X, Y and Z; the order tells which acts first. Results never alias their sources, whose types differ.

#include "math/api.h"
#include "math/matrix33.h"
#include "math/quaternion.h"
#include "math/rotation_matrix.h"
#include "math/rotation_order.h"
#include "math/vector3.h"

/// Euler angles to a unit quaternion. One angle alone gives its quaternion directly, the same in every order; a NaN
/// counts as zero there. For a value that names no order, the `double` form only normalises what the target holds,
/// where two or three angles are not zero; the `float` form gives the identity then. The `float` form computes in
/// `double`.
MATH_API void F3DEulerToQuat(C3DVector3Tpl<double> const & angles, C3DQuatTpl<double> & quat, tagE3DROTORDER order);
/// \overload
MATH_API void F3DEulerToQuat(C3DVector3Tpl<float> const & angles, C3DQuatTpl<float> & quat, tagE3DROTORDER order);
/// The `float` form under a name of its own.
MATH_API void F3DEulerToQuatf(C3DVector3Tpl<float> const & angles, C3DQuatTpl<float> & quat, tagE3DROTORDER order);

/// Euler angles to a matrix. A value that names no order leaves the matrix in the `double` form and gives the identity
/// in the `float` form, which computes in `double`.
MATH_API void F3DEulerToMat(C3DVector3Tpl<double> const & angles, C3DRotMatTpl<double> & mat, tagE3DROTORDER order);
/// \overload
MATH_API void F3DEulerToMat(C3DVector3Tpl<float> const & angles, C3DRotMatTpl<float> & mat, tagE3DROTORDER order);

/// Quaternion to matrix, for a unit quaternion: nothing is normalised.
MATH_API void F3DQuatToMat(C3DQuatTpl<double> const & quat, C3DRotMatTpl<double> & mat);
/// \overload
MATH_API void F3DQuatToMat(C3DQuatTpl<float> const & quat, C3DRotMatTpl<float> & mat);
/// The `float` form under a name of its own.
MATH_API void F3DQuatToMatf(C3DQuatTpl<float> const & quat, C3DRotMatTpl<float> & mat);

/// Matrix to unit quaternion, with W at least 0 up to rounding.
MATH_API void F3DMatToQuat(C3DRotMatTpl<double> const & mat, C3DQuatTpl<double> & quat);
/// \overload
MATH_API void F3DMatToQuat(C3DRotMatTpl<float> const & mat, C3DQuatTpl<float> & quat);

/// Matrix to Euler angles in (-pi, pi]: the solution nearest to (0, 0, 0), whatever `angles` held. A value that names
/// no order gives zeros.
MATH_API void F3DMatToEuler(C3DMatrix33Tpl<double> const & mat, C3DVector3Tpl<double> & angles, tagE3DROTORDER order);
/// \overload
MATH_API void F3DMatToEuler(C3DMatrix33Tpl<float> const & mat, C3DVector3Tpl<float> & angles, tagE3DROTORDER order);

/// Matrix to the Euler angles nearest to a target, which `angles` brings in: of the two solutions, and in gimbal lock
/// of the endless ones, the one at the smallest sum of angular distances; each angle then within half a turn of its
/// target, whole turns included. Baking a curve with the previous frame as the target keeps it continuous. A value that
/// names no order leaves the angles.
///
/// Accuracy: the outer angles, and with them the matrix of the result, are off by some 6e-17 / cos^2 of the middle
/// angle. That is 1e-12 at 0.44 degrees from the pole, where the middle angle is a quarter turn, and 5e-5 just outside
/// gimbal lock.
///
/// Gimbal lock is where the sine of the middle angle is within 1e-12 of one (1e-6 in `float`). The middle angle is then
/// a quarter turn exactly, up to 1.5e-6 from that of the matrix, and the matrix determines the sum of the outer angles
/// (even orders XYZ, YZX, ZXY at minus a quarter turn, odd ones at plus) or their difference (the other poles). What
/// the target lacks of it is shared evenly between the two, and the result has the matrix that came in, unless the sum
/// or difference determined is below 1e-6:
/// - A sum that small is not met: both outer angles become -(p + q) / 2, where p and q are their targets, or that and
///   half a turn. The result is another rotation unless p + q is a whole number of turns, and even then the outer
///   angles move where they cancel, say from (30, -30) degrees to (0, 0). In quarter turns, with each outer angle and
///   each target one of four, such a pole has 256 cases: the sum is zero in 64, and 48 of these give another rotation.
/// - A difference that small is taken as zero: both outer angles become half the sum of their targets.
MATH_API void F3DMatToEulerUsingTarget(C3DMatrix33Tpl<double> const & mat, C3DVector3Tpl<double> & angles,
                                       tagE3DROTORDER order);
/// \overload
/// Computed in `double`, with the limits of `float`.
MATH_API void F3DMatToEulerUsingTarget(C3DMatrix33Tpl<float> const & mat, C3DVector3Tpl<float> & angles,
                                       tagE3DROTORDER order);

/// Quaternion to Euler angles in (-pi, pi], through the matrix.
MATH_API void F3DQuatToEuler(C3DQuatTpl<double> const & quat, C3DVector3Tpl<double> & angles, tagE3DROTORDER order);
/// \overload
MATH_API void F3DQuatToEuler(C3DQuatTpl<float> const & quat, C3DVector3Tpl<float> & angles, tagE3DROTORDER order);
/// The `float` form under a name of its own.
MATH_API void F3DQuatfToEuler(C3DQuatTpl<float> const & quat, C3DVector3Tpl<float> & angles, tagE3DROTORDER order);

/// Unit quaternion to axis and angle, the angle in [0, 2 pi]. Where the sine of half the angle vanishes the axis is the
/// null vector, and the angle keeps its value: (-1, 0, 0, 0) gives a whole turn. A W outside [-1, 1] gives a NaN for
/// the angle and the null vector.
MATH_API void F3DQuatToAxisAngle(C3DQuatTpl<double> const & quat, C3DVector3Tpl<double> & axis, double & angle);
/// \overload
MATH_API void F3DQuatToAxisAngle(C3DQuatTpl<float> const & quat, C3DVector3Tpl<float> & axis, float & angle);

/// Axis, of any length, and angle to quaternion. An axis of at most 1e-12 is copied as it is, and the quaternion is
/// then no unit one.
MATH_API void F3DAxisAngleToQuat(C3DVector3Tpl<double> const & axis, double angle, C3DQuatTpl<double> & quat);
/// \overload
/// Computed in `double`.
MATH_API void F3DAxisAngleToQuat(C3DVector3Tpl<float> const & axis, float angle, C3DQuatTpl<float> & quat);
/// The `float` form under a name of its own.
MATH_API void F3DAxisAngleToQuatf(C3DVector3Tpl<float> const & axis, float angle, C3DQuatTpl<float> & quat);
