#include "signal/fft_kernels.h"
#include "signal/quarter_wave.h"

namespace math::detail
{

void DSPCosineDFT(int n, int sign, double * a, int * ip, double * w)
{
    TransformQuarterWave<false, double>(k_PartsOfOne, n, sign, a, ip, w);
}

void DSPSineDFT(int n, int sign, double * a, int * ip, double * w)
{
    TransformQuarterWave<true, double>(k_PartsOfOne, n, sign, a, ip, w);
}

} // namespace math::detail
