#pragma once

/// \file
/// The pass between the real transform and the complex one of half as many samples.

#include "signal/fft_steps.h"

#include <cstddef>
#include <type_traits>

namespace math::detail
{

/// Reads what the step before may have written a number at a time: whole, it would wait until that is in the cache.
template <typename Numbers>
[[gnu::always_inline]] inline Numbers LoadByNumbers(double const * from)
{
    if constexpr (std::is_same_v<Numbers, ComplexPair>)
    {
        return __builtin_shufflevector(Load<Complex>(from), Load<Complex>(from + 2), 0, 1, 2, 3);
    }
    else
    {
        return Load<Numbers>(from);
    }
}

/// Turns the difference of a sample and of its mirror image's conjugate, takes it from the sample, and adds it,
/// conjugated, to the image. The images of neighbours stand in reverse order.
template <typename Numbers>
[[gnu::always_inline]] inline void JoinMirrored(double * at, double * mirror, Turning<Numbers> const & w)
{
    auto const low = LoadByNumbers<Numbers>(at);
    auto const high = Reversed(LoadByNumbers<Numbers>(mirror));
    auto const turned = Turn(low - Conjugate(high), w);
    Store<Numbers>(at, low - turned);
    Store<Numbers>(mirror, Reversed(high + Conjugate(turned)));
}

/// Separates the transforms of the even and of the odd values, or joins them.
template <bool IsForward, typename Lanes>
[[gnu::always_inline]] inline void RealPass(int n, double * a, int nc, double const * c)
{
    constexpr std::ptrdiff_t size = k_SampleSize<Lanes>;
    auto const factor = [nc, c](int kk) __attribute__((always_inline))
    { return FactorOf<Lanes>{0.5 - c[nc - kk], IsForward ? c[kk] : -c[kk]}; };
    int const samples = n / 2;
    int const step = 4 * nc / n;
    int j = 1;
    int kk = step;
    if constexpr (k_TakesNeighbours<Lanes>)
    {
        for (; j + 1 < samples / 2; j += 2, kk += 2 * step)
        {
            JoinMirrored(a + size * j, a + size * (samples - j - 1), TurnEachBy(factor(kk), factor(kk + step)));
        }
    }
    for (; j < samples / 2; ++j, kk += step)
    {
        JoinMirrored(a + size * j, a + size * (samples - j), TurnAllBy<SampleOf<Lanes>>(factor(kk)));
    }
}

} // namespace math::detail
