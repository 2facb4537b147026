#pragma once

/// \file
/// The complex transform of n values (n/2 samples, real and imaginary part in turn), n a power of two: split in four
/// with a half step (a conjugate-free form of the split radix), depth first, in place, on the tables of fft_tables.h.
/// Up to 4096 values go through as much memory on the stack, which spares the reordering. (P. Duhamel, H. Hollmann,
/// "Split radix FFT algorithm", Electronics Letters 20, 1984.)

namespace math::detail
{

/// X[k] = sum of x[j] exp(+2 pi i j k / N). The tables must hold twiddles for n.
void DSPForwardCore(int n, double * a, int const * ip, int nw, double const * w);

/// The same with exp(-2 pi i j k / N).
void DSPBackwardCore(int n, double * a, int const * ip, int nw, double const * w);

/// The two transforms by operations of one width.
struct Cores
{
    void (*forward)(int n, double * a, int const * ip, int nw, double const * w);
    void (*backward)(int n, double * a, int const * ip, int nw, double const * w);
};

/// One complex number in a register.
Cores CoresByOne();

/// Two, with the same bits as a result. Those by one where the processor has no such registers.
Cores CoresByTwo();

} // namespace math::detail
