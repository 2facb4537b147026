#pragma once

/// \file
/// The mark of an angle that is not stored.

#include <limits>

namespace math::detail
{

/// In place of C3DRotation's angle: it is that of the quaternion, to be computed whenever it is asked for. Most
/// rotations never need this arc cosine.
inline constexpr double k_AngleOfQuat = std::numeric_limits<double>::quiet_NaN();

} // namespace math::detail
