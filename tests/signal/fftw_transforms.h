#pragma once

/// \file
/// The transforms by FFTW, in a wider type than ours, so that what is measured is our rounding.

#include "signal/fourier_sums.h"

#include <fftw3.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace signal_test
{

/// A transform of FFTW between real arrays, not normalised.
inline std::vector<Wide> ByFftw(fftwl_r2r_kind kind, std::vector<Wide> a)
{
    auto * const plan = fftwl_plan_r2r_1d(static_cast<int>(a.size()), a.data(), a.data(), kind, FFTW_ESTIMATE);
    fftwl_execute(plan);
    fftwl_destroy_plan(plan);
    return a;
}

inline std::vector<Wide> ComplexByFftw(int n, int sign, std::vector<Wide> a)
{
    auto * const samples = reinterpret_cast<fftwl_complex *>(a.data());
    auto * const plan =
        fftwl_plan_dft_1d(n / 2, samples, samples, sign < 0 ? FFTW_FORWARD : FFTW_BACKWARD, FFTW_ESTIMATE);
    fftwl_execute(plan);
    fftwl_destroy_plan(plan);
    return a;
}

/// FFTW keeps R[k] at k and the imaginary part at n - k, for exp(-...), so with the other sign.
inline std::vector<Wide> RealByFftw(int sign, std::vector<Wide> const & a)
{
    std::size_t const n = a.size();
    std::vector<Wide> const forward = sign < 0 ? std::vector<Wide>(n) : ByFftw(FFTW_R2HC, a);
    std::vector<Wide> arranged(n);
    auto const exchange = [&](std::size_t ours, std::size_t theirs, Wide factor)
    {
        if (sign < 0)
        {
            arranged[theirs] = factor * a[ours] / 2; // there and back multiplies by n, ours by n/2
        }
        else
        {
            arranged[ours] = factor * forward[theirs];
        }
    };
    exchange(0, 0, 1);
    exchange(1, n / 2, 1);
    for (std::size_t k = 1; k < n / 2; ++k)
    {
        exchange(2 * k, k, 1);
        exchange(2 * k + 1, n - k, -1);
    }
    return sign < 0 ? ByFftw(FFTW_HC2R, arranged) : arranged;
}

/// FFTW doubles each term but those at the ends of the range.
inline std::vector<Wide> HalvedByFftw(fftwl_r2r_kind kind, std::vector<Wide> const & a)
{
    std::vector<Wide> b = ByFftw(kind, a);
    for (Wide & value : b)
    {
        value /= 2;
    }
    return b;
}

/// Index n, which we keep at 0, is the last one there.
inline std::vector<Wide> SineByFftw(int sign, std::vector<Wide> a)
{
    if (sign < 0)
    {
        a = HalvedByFftw(FFTW_RODFT10, a);
        std::rotate(a.begin(), a.end() - 1, a.end());
        return a;
    }
    std::rotate(a.begin(), a.begin() + 1, a.end());
    a.back() *= 2;
    return HalvedByFftw(FFTW_RODFT01, a);
}

inline std::vector<Wide> WholeSineByFftw(std::vector<Wide> const & a)
{
    std::vector<Wide> sums(1, 0);
    if (a.size() > 1)
    {
        std::vector<Wide> const inner = HalvedByFftw(FFTW_RODFT00, {a.begin() + 1, a.end()});
        sums.insert(sums.end(), inner.begin(), inner.end());
    }
    return sums;
}

inline std::vector<Wide> TransformedByFftw(Kernel const & kernel, int n, std::vector<double> const & values)
{
    std::vector<Wide> a(values.begin(), values.end());
    switch (kernel.transform)
    {
    case Transform::Complex:
        return ComplexByFftw(n, kernel.sign, a);
    case Transform::Real:
        return RealByFftw(kernel.sign, a);
    case Transform::Cosine:
        if (kernel.sign >= 0)
        {
            a.front() *= 2;
        }
        return HalvedByFftw(kernel.sign < 0 ? FFTW_REDFT10 : FFTW_REDFT01, a);
    case Transform::Sine:
        return SineByFftw(kernel.sign, a);
    case Transform::WholeCosine:
        a.front() *= 2;
        a.back() *= 2;
        return HalvedByFftw(FFTW_REDFT00, a);
    default:
        return WholeSineByFftw(a);
    }
}

} // namespace signal_test
