#pragma once

/// \file
/// Snapping to a grid.

#include "math/api.h"

/// The point of the grid base + k step, k whole, that is nearest to `value`. Halves go away from `base`, on both sides
/// of it. The sign of `step` makes no difference but for rounding.
///
/// A `step` that is 0 or a NaN gives `value` itself. A value too far away for its place on the grid to have a fraction,
/// as one beyond 2^53 steps, stays where it is up to rounding. Infinities and NaNs in `value` or `base`, or an infinite
/// `step`, give a result that is not finite.
MATH_API double F3DGetNearestDiscreteValue(double value, double base, double step);
