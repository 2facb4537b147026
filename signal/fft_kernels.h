#pragma once

/// \file
/// The transform kernels: in place, not normalised, on n values, a power of two, with the tables of fft_tables.h, which
/// they fill where these are made for less. `sign` is read for whether it is below 0. Tables grow; a smaller transform
/// is served by larger ones.
///
/// They need (sqrt(n / 2) + 3) offsets and, as twiddles and cosines: n/4 for the complex, n/2 for the real, 5n/4 for
/// the cosine and sine transforms, and 5n/8 for the whole-range ones, whose scratch `t` has n/2 + 1 values.

namespace math::detail
{

/// n/2 samples, real and imaginary part in turn: X[k] = sum of x[j] exp(+-2 pi i j k / N), - for a sign below 0.
void DSPComplexDFT(int n, int sign, double * a, int * ip, double * w);

/// R[k] + i I[k] = sum of a[j] exp(+2 pi i j k / n): a[0] = R[0], a[1] = R[n/2], a[2k] = R[k], a[2k + 1] = I[k]. With a
/// sign below 0 the inverse but for the scale 2/n.
void DSPRealDFT(int n, int sign, double * a, int * ip, double * w);

/// C[k] = sum of a[j] cos(pi j (k + 1/2) / n), or cos(pi (j + 1/2) k / n) for a sign below 0.
void DSPCosineDFT(int n, int sign, double * a, int * ip, double * w);

/// S[k] = sum over 0 < j <= n of a[j] sin(pi j (k + 1/2) / n), or, for a sign below 0, over 0 <= j < n of
/// a[j] sin(pi (j + 1/2) k / n) with 0 < k <= n. The value of index n stands in a[0].
void DSPSineDFT(int n, int sign, double * a, int * ip, double * w);

/// n + 1 values: C[k] = sum over 0 <= j <= n of a[j] cos(pi j k / n), the ends not halved.
void DSPWholeCosine(int n, double * a, double * t, int * ip, double * w);

/// S[k] = sum over 0 < j < n of a[j] sin(pi j k / n), and a[0] = 0.
void DSPWholeSine(int n, double * a, double * t, int * ip, double * w);

} // namespace math::detail
