#include "signal/fft_core.h"
#include "signal/fft_kernels.h"
#include "signal/fft_passes.h"

namespace math::detail
{

void DSPComplexDFT(int n, int sign, double * a, int * ip, double * w)
{
    EnsureTwiddles(n, 4, ip, w);
    sign >= 0 ? DSPForwardCore(n, a, ip, ip[0], w) : DSPBackwardCore(n, a, ip, ip[0], w);
}

void DSPRealDFT(int n, int sign, double * a, int * ip, double * w)
{
    EnsureTwiddles(n, 4, ip, w);
    EnsureCosines(n, 4, ip, w);
    if (sign >= 0)
    {
        TransformForward(n, a, ip, w);
        double const difference = a[0] - a[1];
        a[0] += a[1];
        a[1] = difference;
    }
    else
    {
        a[1] = 0.5 * (a[0] - a[1]);
        a[0] -= a[1];
        TransformBackward(n, a, ip, w);
    }
}

} // namespace math::detail
