#include "signal/fft_passes.h"

#include "signal/complex_lanes.h"
#include "signal/fft_core.h"
#include "signal/fft_tables.h"

namespace math::detail
{

namespace
{

/// Turns the difference of a sample and of its mirror image's conjugate, takes it from the sample, and adds it,
/// conjugated, to the image. The images of neighbours stand in reverse order.
template <typename Lanes>
[[gnu::always_inline]] inline void JoinMirrored(double * at, double * mirror, Turning<Lanes> const & w)
{
    auto const low = Load<Lanes>(at);
    auto const high = Reversed(Load<Lanes>(mirror));
    auto const turned = Turn<Lanes>(low - Conjugate(high), w);
    Store<Lanes>(at, low - turned);
    Store<Lanes>(mirror, Reversed(high + Conjugate(turned)));
}

/// Separates the transforms of the even and of the odd values, or joins them.
template <bool IsForward, typename Lanes>
[[gnu::always_inline]] inline void RealPass(int n, double * a, int nc, double const * c)
{
    int const m = n / 2;
    int const step = 2 * nc / m;
    int j = 2;
    int kk = step;
    if constexpr (sizeof(Lanes) == sizeof(ComplexPair))
    {
        for (; j + 2 < m; j += 4, kk += 2 * step)
        {
            int const next = kk + step;
            JoinMirrored(a + j, a + n - j - 2,
                         TurnEachBy(Complex{0.5 - c[nc - kk], IsForward ? c[kk] : -c[kk]},
                                    Complex{0.5 - c[nc - next], IsForward ? c[next] : -c[next]}));
        }
    }
    for (; j < m; j += 2, kk += step)
    {
        JoinMirrored(a + j, a + n - j, TurnAllBy<Complex>(Complex{0.5 - c[nc - kk], IsForward ? c[kk] : -c[kk]}));
    }
}

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
