#pragma once

/// \file
/// The scalar types of the value classes, and numbers that their tests share.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace transform_test
{

using Scalars = testing::Types<float, double>;

inline constexpr double k_Pi = 3.141592653589793;
template <typename T>
inline constexpr T k_Nan = std::numeric_limits<T>::quiet_NaN();
template <typename T>
inline constexpr T k_Infinity = std::numeric_limits<T>::infinity();

/// The limit of lengths and components that count as zero, where the classes have one in each type.
template <typename T>
inline constexpr T k_Limit = T(1e-12);
template <>
inline constexpr float k_Limit<float> = 1e-6F;

template <typename T>
T Above(T value)
{
    return std::nextafter(value, k_Infinity<T>);
}
template <typename T>
T Below(T value)
{
    return std::nextafter(value, -k_Infinity<T>);
}

} // namespace transform_test
