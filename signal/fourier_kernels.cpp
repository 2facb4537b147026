#include "signal/fft_core.h"
#include "signal/fft_kernels.h"
#include "signal/real_transform.h"

namespace math::detail
{

void DSPComplexDFT(int n, int sign, double * a, int * ip, double * w)
{
    EnsureTwiddles(n, 4, ip, w);
    sign >= 0 ? DSPForwardCore(n, a, ip, ip[0], w) : DSPBackwardCore(n, a, ip, ip[0], w);
}

void DSPRealDFT(int n, int sign, double * a, int * ip, double * w)
{
    TransformReal<double>(k_PartsOfOne, n, sign, a, ip, w);
}

} // namespace math::detail
