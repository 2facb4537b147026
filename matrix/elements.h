#pragma once

/// \file
/// Tests over the elements of a fixed matrix. Each stops at the first element that fails; those with a tolerance reject
/// at a magnitude of `epsilon` or more, so that a NaN passes.

#include <cmath>
#include <cstddef>

namespace math::detail
{

template <typename T>
bool ElementsAreEqual(T const * a, T const * b, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        if (a[i] < b[i] || a[i] > b[i])
        {
            return false;
        }
    }
    return true;
}

template <typename T>
bool ElementsAreAlmostEqual(T const * a, T const * b, std::size_t count, T epsilon)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        if (std::abs(a[i] - b[i]) >= epsilon)
        {
            return false;
        }
    }
    return true;
}

template <typename T>
bool ElementsAreNull(T const * a, std::size_t count, T epsilon)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        if (std::abs(a[i]) >= epsilon)
        {
            return false;
        }
    }
    return true;
}

template <typename T, std::size_t Size>
bool IsIdentity(T const (&a)[Size][Size], T epsilon)
{
    for (std::size_t r = 0; r < Size; ++r)
    {
        for (std::size_t c = 0; c < Size; ++c)
        {
            if (std::abs(a[r][c] - T(r == c)) >= epsilon)
            {
                return false;
            }
        }
    }
    return true;
}

template <typename T, std::size_t Size>
bool IsDiagonal(T const (&a)[Size][Size], T epsilon)
{
    for (std::size_t r = 0; r < Size; ++r)
    {
        for (std::size_t c = 0; c < Size; ++c)
        {
            if (r != c && std::abs(a[r][c]) >= epsilon)
            {
                return false;
            }
        }
    }
    return true;
}

} // namespace math::detail
