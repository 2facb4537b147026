#pragma once

/// \file
/// The bit reversal that ends a complex transform.

#include <cstddef>

namespace math::detail
{

/// The number of M - 1 or fewer with its bits in reverse order; M is a power of two.
template <int M>
constexpr std::ptrdiff_t ReverseBits(std::ptrdiff_t number)
{
    std::ptrdiff_t reversed = 0;
    for (int bit = 1; bit < M; bit *= 2)
    {
        reversed = 2 * reversed + (number & 1);
        number /= 2;
    }
    return reversed;
}

/// Reorders n values, at least 64, two a sample, by the offsets of fft_tables.h.
void DSPBitReverse(int n, int const * ip, double * a);

/// The same, and conjugates them.
void DSPBitReverseConj(int n, int const * ip, double * a);

} // namespace math::detail
