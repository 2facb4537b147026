#include "signal/fft_passes.h"

#include "signal/fft_core.h"
#include "signal/fft_tables.h"

namespace math::detail
{

namespace
{

/// Separates the transforms of the even and of the odd values, or joins them.
template <bool IsForward>
void RealPass(int n, double * a, int nc, double const * c)
{
    int const m = n / 2;
    int const step = 2 * nc / m;
    for (int j = 2, kk = step; j < m; j += 2, kk += step)
    {
        int const k = n - j;
        double const wr = 0.5 - c[nc - kk];
        double const wi = c[kk];
        double const xr = a[j] - a[k];
        double const xi = a[j + 1] + a[k + 1];
        double const yr = IsForward ? wr * xr - wi * xi : wr * xr + wi * xi;
        double const yi = IsForward ? wr * xi + wi * xr : wr * xi - wi * xr;
        a[j] -= yr;
        a[j + 1] -= yi;
        a[k] += yr;
        a[k + 1] -= yi;
    }
}

template <bool IsSine>
void PhasePass(int n, double * a, int nc, double const * c)
{
    int const m = n / 2;
    int const step = nc / n;
    for (int j = 1, kk = step; j < m; ++j, kk += step)
    {
        int const k = n - j;
        double const wr = c[kk] - c[nc - kk];
        double const wi = c[kk] + c[nc - kk];
        double const x = a[j];
        double const y = a[k];
        a[j] = IsSine ? wi * y - wr * x : wr * x + wi * y;
        a[k] = IsSine ? wi * x + wr * y : wi * x - wr * y;
    }
    a[m] *= c[0];
}

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

void DSPRealForwardPost(int n, double * a, int nc, double const * c)
{
    RealPass<true>(n, a, nc, c);
}

void DSPRealBackwardPre(int n, double * a, int nc, double const * c)
{
    RealPass<false>(n, a, nc, c);
}

void DSPCosinePhase(int n, double * a, int nc, double const * c)
{
    PhasePass<false>(n, a, nc, c);
}

void DSPSinePhase(int n, double * a, int nc, double const * c)
{
    PhasePass<true>(n, a, nc, c);
}

void TransformForward(int n, double * a, int const * ip, double const * w)
{
    int const nw = ip[0];
    if (n >= 4)
    {
        DSPForwardCore(n, a, ip, nw, w);
    }
    if (n > 4)
    {
        DSPRealForwardPost(n, a, ip[1], w + nw);
    }
}

void TransformBackward(int n, double * a, int const * ip, double const * w)
{
    int const nw = ip[0];
    if (n > 4)
    {
        DSPRealBackwardPre(n, a, ip[1], w + nw);
    }
    if (n >= 4)
    {
        DSPBackwardCore(n, a, ip, nw, w);
    }
}

} // namespace math::detail
