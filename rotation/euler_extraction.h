#pragma once

/// \file
/// Euler angles from a rotation matrix, nearest to a target.

#include "math/vector3.h"
#include "rotation/euler_order.h"

namespace math::detail
{

/// The limits that depend on the precision of the matrix.
struct EulerExtractionLimits
{
    double poleSine;   ///< A sine of the middle angle at or beyond this, either way, is gimbal lock.
    double targetZero; ///< A sum or difference of the outer target angles below this counts as zero in gimbal lock.
};

inline constexpr EulerExtractionLimits k_DoubleExtractionLimits{0.999999999999, 1e-12};
inline constexpr EulerExtractionLimits k_FloatExtractionLimits{0.999999, 1e-6};

/// Replaces `angles`, which hold the target, by the angles of the rotation matrix m, for row vectors, nearest to it.
void ExtractEulerAngles(double const (&m)[3][3], EulerOrder const & order, EulerExtractionLimits const & limits,
                        C3DVector3Tpl<double> & angles);

} // namespace math::detail
