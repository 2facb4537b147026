#include "signal/fft_kernels.h"
#include "signal/fft_passes.h"

namespace math::detail
{

namespace
{

// Both kernels fold the values about the middle: the part that changes its sign there is a transform of half the length
// of the quarter-wave kind, and the part that does not is the same problem again, on half the values. The parts go to
// `a` and to `t`.

/// A transform of m values without the last step, in which the first two values are still to be added and subtracted.
void HalfPassCosine(int m, double * a, int const * ip, double const * w)
{
    DSPCosinePhase(m, a, ip[1], w + ip[0]);
    TransformForward(k_PartsOfOne, m, a, ip, w);
}

void HalfPassSine(int m, double * a, int const * ip, double const * w)
{
    DSPSinePhase(m, a, ip[1], w + ip[0]);
    TransformForward(k_PartsOfOne, m, a, ip, w);
}

void FoldCosine(int n, double * a, double * t)
{
    int const m = n / 2;
    int const h = m / 2;
    for (int j = 1; j < h; ++j)
    {
        int const k = m - j;
        double const xr = a[j] - a[n - j];
        double const xi = a[j] + a[n - j];
        double const yr = a[k] - a[n - k];
        double const yi = a[k] + a[n - k];
        a[j] = xr;
        a[k] = yr;
        t[j] = xi - yi;
        t[k] = xi + yi;
    }
    t[h] = a[h] + a[n - h];
    a[h] -= a[n - h];
}

void FoldSine(int n, double * a, double * t)
{
    int const m = n / 2;
    int const h = m / 2;
    for (int j = 1; j < h; ++j)
    {
        int const k = m - j;
        double const xr = a[j] + a[n - j];
        double const xi = a[j] - a[n - j];
        double const yr = a[k] + a[n - k];
        double const yi = a[k] - a[n - k];
        a[j] = xr;
        a[k] = yr;
        t[j] = xi + yi;
        t[k] = xi - yi;
    }
    t[0] = a[h] - a[n - h];
    a[h] += a[n - h];
    a[0] = a[m];
}

} // namespace

void DSPWholeCosine(int n, double * a, double * t, int * ip, double * w)
{
    EnsureTwiddles(n, 8, ip, w);
    EnsureCosines(n, 2, ip, w);
    int m = n / 2;
    double const middle = a[m];
    double const ends = a[0] + a[n];
    a[0] -= a[n];
    t[0] = ends - middle;
    t[m] = ends + middle;
    if (n < 3)
    {
        a[1] = a[0];
        a[2] = t[0];
        a[0] = t[1];
        return;
    }
    FoldCosine(n, a, t);
    HalfPassCosine(m, a, ip, w);
    a[n - 1] = a[0] - a[1];
    a[1] += a[0];
    for (int j = m - 2; j >= 2; j -= 2)
    {
        a[2 * j + 1] = a[j] + a[j + 1];
        a[2 * j - 1] = a[j] - a[j + 1];
    }
    int l = 2;
    for (m /= 2; m >= 2; m /= 2)
    {
        HalfPassCosine(m, t, ip, w);
        a[n - l] = t[0] - t[1];
        a[l] = t[0] + t[1];
        for (int j = 2, k = 4 * l; j < m; j += 2, k += 4 * l)
        {
            a[k - l] = t[j] - t[j + 1];
            a[k + l] = t[j] + t[j + 1];
        }
        l *= 2;
        int const h = m / 2;
        for (int j = 0; j < h; ++j)
        {
            int const k = m - j;
            t[j] = t[m + k] - t[m + j];
            t[k] = t[m + k] + t[m + j];
        }
        t[h] = t[m + h];
    }
    a[l] = t[0];
    a[n] = t[2] - t[1];
    a[0] = t[2] + t[1];
}

void DSPWholeSine(int n, double * a, double * t, int * ip, double * w)
{
    EnsureTwiddles(n, 8, ip, w);
    EnsureCosines(n, 2, ip, w);
    if (n > 2)
    {
        int m = n / 2;
        FoldSine(n, a, t);
        HalfPassSine(m, a, ip, w);
        a[n - 1] = a[1] - a[0];
        a[1] += a[0];
        for (int j = m - 2; j >= 2; j -= 2)
        {
            a[2 * j + 1] = a[j] - a[j + 1];
            a[2 * j - 1] = -a[j] - a[j + 1];
        }
        int l = 2;
        for (m /= 2; m >= 2; m /= 2)
        {
            HalfPassSine(m, t, ip, w);
            a[n - l] = t[1] - t[0];
            a[l] = t[0] + t[1];
            for (int j = 2, k = 4 * l; j < m; j += 2, k += 4 * l)
            {
                a[k - l] = -t[j] - t[j + 1];
                a[k + l] = t[j] - t[j + 1];
            }
            l *= 2;
            int const h = m / 2;
            for (int j = 1; j < h; ++j)
            {
                int const k = m - j;
                t[j] = t[m + k] + t[m + j];
                t[k] = t[m + k] - t[m + j];
            }
            t[0] = t[m + h];
        }
        a[l] = t[0];
    }
    a[0] = 0;
}

} // namespace math::detail
