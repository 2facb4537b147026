#pragma once

/// \file
/// The determinant of a four by four array.

#include <cstring>

namespace math::detail
{

/// Two scalars that go through the same operations side by side, each rounded as it would be alone. For locals of
/// inline functions only, as Row4 is.
template <typename T>
struct Pair2
{
    typedef T Lanes __attribute__((vector_size(2 * sizeof(T)))); // NOLINT(modernize-use-using): takes the attribute
};

/// The determinant, expanded along the first row into the cofactors of its elements, and these along the second row
/// into the minors of the last two. Minors and cofactors are taken in pairs.
template <typename T>
inline T Determinant(T const (*const m)[4])
{
    using Pair = typename Pair2<T>::Lanes;
    Pair high1;
    Pair high2;
    Pair high3;
    std::memcpy(&high1, &m[1][2], sizeof high1);
    std::memcpy(&high2, &m[2][2], sizeof high2);
    std::memcpy(&high3, &m[3][2], sizeof high3);
    T const minor01 = m[2][0] * m[3][1] - m[2][1] * m[3][0];
    T const minor23 = m[2][2] * m[3][3] - m[2][3] * m[3][2];
    Pair const minors0 = m[2][0] * high3 - high2 * m[3][0]; // of columns 0 and 2, 0 and 3
    Pair const minors1 = m[2][1] * high3 - high2 * m[3][1]; // of columns 1 and 2, 1 and 3
    Pair const cofactors32 = m[1][0] * minors1 - m[1][1] * minors0 + high1 * minor01;
    T const cofactor0 = m[1][1] * minor23 - m[1][2] * minors1[1] + m[1][3] * minors1[0];
    T const cofactor1 = m[1][0] * minor23 - m[1][2] * minors0[1] + m[1][3] * minors0[0];
    return m[0][0] * cofactor0 - m[0][1] * cofactor1 + m[0][2] * cofactors32[1] - m[0][3] * cofactors32[0];
}

} // namespace math::detail
