#pragma once

/// \file
/// What the tests of C3DDualQuatTpl share.

#include "math/compact_rotation.h"
#include "math/dual_quaternion.h"
#include "math/matrix44.h"
#include "math/rotation_conversions.h"
#include "support/random.h"
#include "transform/scalars.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>

namespace dual_quaternion_test
{

using transform_test::Above;
using transform_test::Below;
using transform_test::k_Infinity;
using transform_test::k_Limit;
using transform_test::k_Nan;
using transform_test::k_Pi;
using transform_test::Scalars;

/// What two transformations that are equal on paper may differ by.
template <typename T>
inline constexpr T k_Tolerance = T(1e-12);
template <>
inline constexpr float k_Tolerance<float> = 2e-5F;

/// The least number of the type that is above, or the greatest that is not above, a limit in `double`.
template <typename T>
T FirstAbove(double limit)
{
    T const nearest = static_cast<T>(limit);
    return static_cast<double>(nearest) > limit ? nearest : Above(nearest);
}
template <typename T>
T LastNotAbove(double limit)
{
    return Below(FirstAbove<T>(limit));
}

/// The greatest number of the type whose square, rounded, is not above a limit in `double`.
template <typename T>
T GreatestOfSquareUpTo(double limit)
{
    T x = static_cast<T>(std::sqrt(limit));
    while (static_cast<double>(x * x) > limit)
    {
        x = Below(x);
    }
    while (static_cast<double>(Above(x) * Above(x)) <= limit)
    {
        x = Above(x);
    }
    return x;
}

/// W, X, Y, Z of P and of D.
template <typename T>
std::array<T, 8> Elements(C3DDualQuatTpl<T> const & q)
{
    std::array<T, 8> elements;
    static_assert(sizeof elements == sizeof q);
    std::memcpy(elements.data(), static_cast<void const *>(&q), sizeof elements);
    return elements;
}

template <typename T>
C3DDualQuatTpl<T> Make(std::array<T, 8> const & e)
{
    return {C3DQuatTpl<T>(e[0], e[1], e[2], e[3]), C3DQuatTpl<T>(e[4], e[5], e[6], e[7])};
}

/// One and the same numbers: of the same sign where they are zero, or both NaNs.
template <typename T>
bool Same(C3DDualQuatTpl<T> const & a, C3DDualQuatTpl<T> const & b)
{
    for (std::size_t i = 0; i < 8; ++i)
    {
        T const p = Elements(a)[i];
        T const q = Elements(b)[i];
        if (std::isnan(p) ? !std::isnan(q) : p != q || std::signbit(p) != std::signbit(q))
        {
            return false;
        }
    }
    return true;
}

/// The largest difference of two elements; a NaN for a NaN. Equality by operator would take a NaN for any number.
template <typename T, std::size_t N>
double MaxDifference(std::array<T, N> const & a, std::array<T, N> const & b)
{
    double difference = 0;
    for (std::size_t i = 0; i < N; ++i)
    {
        double const d = std::abs(static_cast<double>(a[i]) - static_cast<double>(b[i]));
        difference = d <= difference ? difference : d;
        if (std::isnan(d))
        {
            return d;
        }
    }
    return difference;
}
template <typename T>
double MaxDifference(C3DDualQuatTpl<T> const & a, C3DDualQuatTpl<T> const & b)
{
    return MaxDifference(Elements(a), Elements(b));
}
template <typename T>
double MaxDifference(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    return MaxDifference(std::array<T, 3>{a.X, a.Y, a.Z}, std::array<T, 3>{b.X, b.Y, b.Z});
}

/// Small whole numbers, whose products are exact.
template <typename T>
C3DDualQuatTpl<T> First()
{
    return Make<T>({1, 2, -3, 4, 5, -6, 7, 8});
}
template <typename T>
C3DDualQuatTpl<T> Second()
{
    return Make<T>({-2, 3, 5, 1, 4, 2, -7, 6});
}

template <typename T>
C3DVector3Tpl<T> RandomVector(test_support::Random & random, T limit)
{
    return {random.Uniform<T>(-limit, limit), random.Uniform<T>(-limit, limit), random.Uniform<T>(-limit, limit)};
}

template <typename T>
C3DQuatTpl<T> RandomRotation(test_support::Random & random)
{
    C3DQuatTpl<T> q(random.Uniform<T>(-1, 1), random.Uniform<T>(-1, 1), random.Uniform<T>(-1, 1),
                    random.Uniform<T>(-1, 1));
    return q.Normalize();
}

template <typename T>
C3DDualQuatTpl<T> RandomRigid(test_support::Random & random)
{
    return {RandomRotation<T>(random), RandomVector<T>(random, T(3))};
}

template <typename T>
C3DVector3Tpl<T> TranslationOf(C3DDualQuatTpl<T> const & q)
{
    C3DVector3Tpl<T> t(9, 9, 9);
    q.GetTranslation(t);
    return t;
}

} // namespace dual_quaternion_test
