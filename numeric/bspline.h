#pragma once

/// \file
/// Weights of the uniform cubic B-spline over four control points.

namespace math::detail
{

template <typename T>
struct BsplineWeights
{
    T w0;
    T w1;
    T w2;
    T w3;
};

/// The common factor of the position weights. It is one sixth to seven digits and not the exact value: saved animations
/// were baked with it.
template <typename T>
inline constexpr T k_BsplinePositionFactor = static_cast<T>(0.1666667);

/// The weights of a position, before the common factor.
template <typename T>
BsplineWeights<T> BsplinePositionWeights(T t)
{
    T const t2 = t * t;
    T const t3 = t2 * t;
    return {3 * t2 - t3 - 3 * t + 1, 3 * t3 - 6 * t2 + 4, 3 * t - 3 * t3 + 3 * t2 + 1, t3};
}

/// The weights of the derivative with respect to t.
template <typename T>
BsplineWeights<T> BsplineVectorWeights(T t)
{
    T const half = t * t / 2;
    return {t - half - T(0.5), 3 * half - 2 * t, t - 3 * half + T(0.5), half};
}

} // namespace math::detail
