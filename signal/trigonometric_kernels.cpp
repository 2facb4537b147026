#include "signal/fft_kernels.h"
#include "signal/fft_passes.h"

namespace math::detail
{

namespace
{

/// The cosine and the sine transform are one another's mirror image: the odd values change their sign.
template <bool IsSine>
void TransformQuarterWave(int n, int sign, double * a, int * ip, double * w)
{
    EnsureTwiddles(n, 4, ip, w);
    EnsureCosines(n, 1, ip, w);
    constexpr double mirror = IsSine ? -1 : 1;
    if (sign < 0)
    {
        double const last = a[n - 1];
        for (int j = n - 2; j >= 2; j -= 2)
        {
            double const even = a[j];
            double const odd = mirror * a[j - 1];
            a[j] = even + odd;
            a[j + 1] = mirror * (even - odd);
        }
        double const first = a[0];
        a[0] = first + mirror * last;
        a[1] = first - mirror * last;
        TransformBackward(n, a, ip, w);
    }
    double const * const c = w + ip[0];
    IsSine ? DSPSinePhase(n, a, ip[1], c) : DSPCosinePhase(n, a, ip[1], c);
    if (sign >= 0)
    {
        TransformForward(n, a, ip, w);
        double const last = a[0] - a[1];
        a[0] += a[1];
        for (int j = 2; j < n; j += 2)
        {
            double const even = a[j];
            double const odd = a[j + 1];
            a[j - 1] = mirror * even - odd;
            a[j] = even + mirror * odd;
        }
        a[n - 1] = mirror * last;
    }
}

} // namespace

void DSPCosineDFT(int n, int sign, double * a, int * ip, double * w)
{
    TransformQuarterWave<false>(n, sign, a, ip, w);
}

void DSPSineDFT(int n, int sign, double * a, int * ip, double * w)
{
    TransformQuarterWave<true>(n, sign, a, ip, w);
}

} // namespace math::detail
