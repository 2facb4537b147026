#include "signal/fft_passes.h"

#include "signal/fft_tables.h"
#include "signal/quarter_wave.h"
#include "signal/real_pass.h"

namespace math::detail
{

namespace
{

template <bool IsForward>
void RealPassByOne(int n, double * a, int nc, double const * c)
{
    RealPass<IsForward, Complex>(n, a, nc, c);
}

#if defined(__x86_64__)
template <bool IsForward>
[[gnu::target("avx")]] void RealPassByTwo(int n, double * a, int nc, double const * c)
{
    RealPass<IsForward, ComplexPair>(n, a, nc, c);
}
#endif

} // namespace

void EnsureTwiddles(int n, int ratio, int * ip, double * w)
{
    if (n > ratio * ip[0])
    {
        DSPMakeTwiddles(n / ratio, ip, w);
    }
}

void EnsureCosines(int n, int ratio, int * ip, double * w)
{
    if (n > ratio * ip[1])
    {
        DSPMakeCosines(n / ratio, ip, w + ip[0]);
    }
}

RealPasses RealPassesByOne()
{
    return {RealPassByOne<true>, RealPassByOne<false>};
}

RealPasses RealPassesByTwo()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx"))
    {
        return {RealPassByTwo<true>, RealPassByTwo<false>};
    }
#endif
    return RealPassesByOne();
}

void DSPRealForwardPost(int n, double * a, int nc, double const * c)
{
    RealPassesByTwo().forwardPost(n, a, nc, c);
}

void DSPRealBackwardPre(int n, double * a, int nc, double const * c)
{
    RealPassesByTwo().backwardPre(n, a, nc, c);
}

void DSPCosinePhase(int n, double * a, int nc, double const * c)
{
    PhasePass<false, double>(n, a, nc, c);
}

void DSPSinePhase(int n, double * a, int nc, double const * c)
{
    PhasePass<true, double>(n, a, nc, c);
}

void TransformForward(RealParts const & parts, int n, double * a, int const * ip, double const * w)
{
    int const nw = ip[0];
    if (n >= 4)
    {
        parts.cores.forward(n, a, ip, nw, w);
    }
    if (n > 4)
    {
        parts.passes.forwardPost(n, a, ip[1], w + nw);
    }
}

void TransformBackward(RealParts const & parts, int n, double * a, int const * ip, double const * w)
{
    int const nw = ip[0];
    if (n > 4)
    {
        parts.passes.backwardPre(n, a, ip[1], w + nw);
    }
    if (n >= 4)
    {
        parts.cores.backward(n, a, ip, nw, w);
    }
}

} // namespace math::detail
