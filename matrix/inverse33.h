#pragma once

/// \file
/// Adjugate and inverse of a three by three array.

#include <cmath>

namespace math::detail
{

/// The determinant of a as the sum of its six signed triple products, and its size, the sum of their magnitudes.
template <typename T>
inline void SumTripleProducts(T const (*const a)[3], T & det, T & size)
{
    T const term0 = a[0][0] * a[1][1] * a[2][2];
    T const term1 = a[0][1] * a[1][2] * a[2][0];
    T const term2 = a[0][2] * a[1][0] * a[2][1];
    T const term3 = a[0][2] * a[1][1] * a[2][0];
    T const term4 = a[0][1] * a[1][0] * a[2][2];
    T const term5 = a[0][0] * a[1][2] * a[2][1];
    // The sum starts at 0, so that six negative zeros make a positive one.
    det = T(0) + term0 + term1 + term2 - term3 - term4 - term5;
    size = std::abs(term0) + std::abs(term1) + std::abs(term2) + std::abs(term3) + std::abs(term4) + std::abs(term5);
}

/// Hands over the elements of the adjugate of a one by one: element [r][c] is the cofactor of a[c][r].
template <typename T, typename Store>
inline void VisitAdjugate(T const (*const a)[3], Store store)
{
    store(0, 0, a[1][1] * a[2][2] - a[1][2] * a[2][1]);
    store(0, 1, a[0][2] * a[2][1] - a[0][1] * a[2][2]);
    store(0, 2, a[0][1] * a[1][2] - a[0][2] * a[1][1]);
    store(1, 0, a[1][2] * a[2][0] - a[1][0] * a[2][2]);
    store(1, 1, a[0][0] * a[2][2] - a[0][2] * a[2][0]);
    store(1, 2, a[0][2] * a[1][0] - a[0][0] * a[1][2]);
    store(2, 0, a[1][0] * a[2][1] - a[1][1] * a[2][0]);
    store(2, 1, a[0][1] * a[2][0] - a[0][0] * a[2][1]);
    store(2, 2, a[0][0] * a[1][1] - a[0][1] * a[1][0]);
}

/// Hands over the elements of the inverse of a one by one. Returns false, with nothing handed over, where the
/// determinant relative to its size is not at or above `epsilon` in magnitude.
template <typename Store>
inline bool VisitInverse(double const (*const a)[3], double epsilon, Store store)
{
    double det;
    double size;
    SumTripleProducts(a, det, size);
    // Well above the limit the quotient need not be known. A negative limit does not excuse the NaN of two infinities.
    bool const isFarAbove = std::abs(det) > 2 * std::abs(epsilon) * size;
    if (!isFarAbove && (size == 0 || !(std::abs(det / size) >= epsilon))) [[unlikely]]
    {
        return false;
    }
    double const reciprocal = 1 / det;
    VisitAdjugate(a, [&store, reciprocal](int r, int c, double cofactor) { store(r, c, cofactor * reciprocal); });
    return true;
}

} // namespace math::detail
