#pragma once

/// \file
/// The constants of angles, to the last bit of a `double`.

namespace math::detail
{

inline constexpr double k_Pi = 3.141592653589793;
inline constexpr double k_HalfPi = 1.5707963267948966;
inline constexpr double k_TwoPi = 6.283185307179586;
inline constexpr double k_InverseTwoPi = 0.15915494309189535;
inline constexpr double k_DegreesPerRadian = 57.29577951308232;

} // namespace math::detail
