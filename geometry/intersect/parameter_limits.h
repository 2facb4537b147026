#pragma once

namespace math::detail
{

/// By how much a parameter may lie outside 0 to 1, and the limits that this makes.
inline constexpr double k_ParameterSlack = 1e-9;
inline constexpr double k_JustBelowOne = 0.999999999;
inline constexpr double k_JustAboveOne = 1.000000001;

} // namespace math::detail
