#pragma once

/// \file
/// The cosine and sine transforms as passes around a real one. The two are one another's mirror image: the odd values
/// change their sign. A place of the array holds a value, or those of several arrays side by side.

#include "signal/complex_lanes.h"
#include "signal/fft_passes.h"

#include <cstddef>

namespace math::detail
{

/// The turn of pairs of values that makes a cosine or sine transform of a real one.
template <bool IsSine, typename Values>
[[gnu::always_inline]] inline void PhasePass(int n, double * a, int nc, double const * c)
{
    constexpr std::ptrdiff_t size = k_Width<Values>;
    int const m = n / 2;
    int const step = nc / n;
    for (int j = 1, kk = step; j < m; ++j, kk += step)
    {
        double * const low = a + size * j;
        double * const high = a + size * (n - j);
        double const wr = c[kk] - c[nc - kk];
        double const wi = c[kk] + c[nc - kk];
        auto const x = Load<Values>(low);
        auto const y = Load<Values>(high);
        Store<Values>(low, IsSine ? wi * y - wr * x : wr * x + wi * y);
        Store<Values>(high, IsSine ? wi * x + wr * y : wi * x - wr * y);
    }
    Store<Values>(a + size * m, Load<Values>(a + size * m) * c[0]);
}

/// Adds and subtracts neighbours, before the way back.
template <bool IsSine, typename Values>
[[gnu::always_inline]] inline void FoldNeighbours(int n, double * a)
{
    constexpr std::ptrdiff_t size = k_Width<Values>;
    auto const signedOdd = [](Values const & x) __attribute__((always_inline))
    {
        return IsSine ? -x : x;
    };
    auto const last = signedOdd(Load<Values>(a + size * (n - 1)));
    for (int j = n - 2; j >= 2; j -= 2)
    {
        auto const even = Load<Values>(a + size * j);
        auto const odd = signedOdd(Load<Values>(a + size * (j - 1)));
        Store<Values>(a + size * j, even + odd);
        Store<Values>(a + size * (j + 1), signedOdd(even - odd));
    }
    auto const first = Load<Values>(a);
    Store<Values>(a, first + last);
    Store<Values>(a + size, first - last);
}

/// The same behind the way forth.
template <bool IsSine, typename Values>
[[gnu::always_inline]] inline void UnfoldNeighbours(int n, double * a)
{
    constexpr std::ptrdiff_t size = k_Width<Values>;
    auto const signedOdd = [](Values const & x) __attribute__((always_inline))
    {
        return IsSine ? -x : x;
    };
    auto const first = Load<Values>(a);
    auto const second = Load<Values>(a + size);
    Store<Values>(a, first + second);
    for (int j = 2; j < n; j += 2)
    {
        auto const even = Load<Values>(a + size * j);
        auto const odd = Load<Values>(a + size * (j + 1));
        Store<Values>(a + size * (j - 1), signedOdd(even) - odd);
        Store<Values>(a + size * j, even + signedOdd(odd));
    }
    Store<Values>(a + size * (n - 1), signedOdd(first - second));
}

/// The whole transform, by the real one's parts for as many arrays.
template <bool IsSine, typename Values>
[[gnu::always_inline]] inline void TransformQuarterWave(RealParts const & parts, int n, int sign, double * a, int * ip,
                                                        double * w)
{
    EnsureTwiddles(n, 4, ip, w);
    EnsureCosines(n, 1, ip, w);
    if (sign < 0)
    {
        FoldNeighbours<IsSine, Values>(n, a);
        TransformBackward(parts, n, a, ip, w);
    }
    PhasePass<IsSine, Values>(n, a, ip[1], w + ip[0]);
    if (sign >= 0)
    {
        TransformForward(parts, n, a, ip, w);
        UnfoldNeighbours<IsSine, Values>(n, a);
    }
}

} // namespace math::detail
