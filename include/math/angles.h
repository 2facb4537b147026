#pragma once

/// \file
/// Scalar helpers that keep angles, in radians, inside given ranges.

#include "math/api.h"

class C3DMatrixMN;

/// The angle in [-pi, pi] with the given sine and cosine, from whichever inverse function is the better conditioned.
/// (0, -1) gives -pi, not pi.
MATH_API double F3DArcSinCos(double sine, double cosine);

/// Whichever of two angles (typically the ends of an allowed range) is closest to a third on the circle. The result is
/// in [0, 2 pi], not necessarily the argument as passed. Where `first` is the lower of the two, "closest" is decided by
/// the midpoint of the arc outside them.
MATH_API double F3DGetClosestAngle(double angle, double first, double second);

/// The angle plus the whole turns of `reference`. The turns are counted in 32 bits; a reference beyond them counts as
/// the greatest number of turns, a NaN as none.
MATH_API double F3DGetUnboundedAngle(double angle, double reference);

/// The remainder of a division by 2 pi, with the sign of the angle.
MATH_API double F3DBoundAngleInMinus2PITo2PI(double angle);

/// Takes an angle to [0, 2 pi] by whole turns. The upper end is kept: 2 pi stays, and -2 pi becomes 2 pi. A NaN ends as
/// 0.
MATH_API void F3DBoundAngleInZeroToTwoPI(double & angle);

/// Takes an angle to [-pi, pi] by whole turns, both ends included. A NaN ends as -pi.
MATH_API void F3DBoundAngleInMinusPIToPI(double & angle);

/// F3DBoundAngleInMinus2PITo2PI on column 0 of the rows `first` to `last`, both included. A negative `first` means the
/// first row; a negative `last`, or one beyond the matrix, means the last row.
MATH_API void F3DBoundAnglesInMatrixInMinus2PITo2PI(C3DMatrixMN & matrix, int first, int last);
