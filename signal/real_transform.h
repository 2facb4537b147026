#pragma once

/// \file
/// The real transform on top of the complex one. A place of the array holds a value, or those of several arrays side by
/// side.

#include "signal/complex_lanes.h"
#include "signal/fft_passes.h"

#include <cstddef>

namespace math::detail
{

/// By its parts for as many arrays.
template <typename Values>
[[gnu::always_inline]] inline void TransformReal(RealParts const & parts, int n, int sign, double * a, int * ip,
                                                 double * w)
{
    constexpr std::ptrdiff_t size = k_Width<Values>;
    EnsureTwiddles(n, 4, ip, w);
    EnsureCosines(n, 4, ip, w);
    if (sign >= 0)
    {
        TransformForward(parts, n, a, ip, w);
        auto const first = Load<Values>(a);
        auto const second = Load<Values>(a + size);
        Store<Values>(a, first + second);
        Store<Values>(a + size, first - second);
    }
    else
    {
        auto const first = Load<Values>(a);
        auto const half = 0.5 * (first - Load<Values>(a + size));
        Store<Values>(a + size, half);
        Store<Values>(a, first - half);
        TransformBackward(parts, n, a, ip, w);
    }
}

} // namespace math::detail
