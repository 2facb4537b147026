#pragma once

namespace math::detail
{

/// The smallest radius of a primitive.
inline constexpr double k_SmallestRadius = 1e-6;

/// A radius not above the smallest one, or a NaN, becomes that.
inline double RadiusAboveSmallest(double radius)
{
    return radius > k_SmallestRadius ? radius : k_SmallestRadius;
}

} // namespace math::detail
