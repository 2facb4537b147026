#pragma once

/// \file
/// The sums that define the transforms, in a wider type and term by term, and how far a result is from them.

#include "signal/fourier_kernel_cases.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

namespace signal_test
{

using Wide = long double;

/// Cosines and sines of whole multiples of pi / (2 n), by which every angle of these transforms can be told exactly.
class Angles
{
public:
    explicit Angles(int n) : m_Turn(4L * n), m_Cosines(static_cast<std::size_t>(m_Turn))
    {
        for (long i = 0; i < m_Turn; ++i)
        {
            m_Cosines[static_cast<std::size_t>(i)] =
                std::cos(std::numbers::pi_v<Wide> * static_cast<Wide>(i) / static_cast<Wide>(2 * n));
        }
    }
    Wide Cosine(long steps) const { return m_Cosines[static_cast<std::size_t>(steps % m_Turn)]; }
    Wide Sine(long steps) const { return Cosine(steps + 3 * m_Turn / 4); }

private:
    long m_Turn;
    std::vector<Wide> m_Cosines;
};

/// sum of x[j] exp(sign 2 pi i j k / N) over the samples, real and imaginary parts in turn.
inline std::vector<Wide> ComplexSum(int n, int sign, std::vector<double> const & a)
{
    Angles const angles(n);
    std::vector<Wide> sums(a.size());
    for (long k = 0; k < n / 2; ++k)
    {
        Wide real = 0;
        Wide imaginary = 0;
        for (long j = 0; j < n / 2; ++j)
        {
            Wide const cosine = angles.Cosine(8 * j * k);
            Wide const sine = sign < 0 ? -angles.Sine(8 * j * k) : angles.Sine(8 * j * k);
            Wide const re = a[static_cast<std::size_t>(2 * j)];
            Wide const im = a[static_cast<std::size_t>(2 * j + 1)];
            real += re * cosine - im * sine;
            imaginary += re * sine + im * cosine;
        }
        sums[static_cast<std::size_t>(2 * k)] = real;
        sums[static_cast<std::size_t>(2 * k + 1)] = imaginary;
    }
    return sums;
}

/// sum of a[j] term(j, k) over first <= j <= last, for each k of the same range.
template <typename Term>
std::vector<Wide> SumOf(std::vector<double> const & a, long first, long last, Term const & term)
{
    std::vector<Wide> sums(a.size());
    for (long k = first; k <= last; ++k)
    {
        Wide & sum = sums[static_cast<std::size_t>(k)];
        for (long j = first; j <= last; ++j)
        {
            sum += a[static_cast<std::size_t>(j)] * term(j, k);
        }
    }
    return sums;
}

/// R[0], R[n/2], then R[k] and I[k].
inline std::vector<Wide> RealSum(int n, std::vector<double> const & a)
{
    Angles const angles(n);
    return SumOf(a, 0, n - 1,
                 [&](long j, long place)
                 {
                     long const k = place == 1 ? n / 2 : place / 2;
                     return place > 1 && place % 2 == 1 ? angles.Sine(4 * j * k) : angles.Cosine(4 * j * k);
                 });
}

/// The way back, times n/2: half of the first two terms, and all of the others.
inline std::vector<Wide> RealInverseSum(int n, std::vector<double> const & a)
{
    Angles const angles(n);
    return SumOf(a, 0, n - 1,
                 [&](long place, long j)
                 {
                     long const k = place == 1 ? n / 2 : place / 2;
                     return place < 2        ? angles.Cosine(4 * j * k) / 2
                            : place % 2 == 1 ? angles.Sine(4 * j * k)
                                             : angles.Cosine(4 * j * k);
                 });
}

inline std::vector<Wide> CosineSum(int n, int sign, std::vector<double> const & a)
{
    Angles const angles(n);
    return SumOf(a, 0, n - 1,
                 [&](long j, long k)
                 { return sign < 0 ? angles.Cosine((2 * j + 1) * k) : angles.Cosine(j * (2 * k + 1)); });
}

/// The value of index n stands at 0: of the terms forward, of the sums backward.
inline std::vector<Wide> SineSum(int n, int sign, std::vector<double> const & a)
{
    Angles const angles(n);
    auto const index = [n](long place) { return place == 0 ? n : place; };
    return SumOf(a, 0, n - 1,
                 [&](long j, long k)
                 { return sign < 0 ? angles.Sine((2 * j + 1) * index(k)) : angles.Sine(index(j) * (2 * k + 1)); });
}

inline std::vector<Wide> DefiningSum(Kernel const & kernel, int n, std::vector<double> const & a)
{
    Angles const angles(n);
    switch (kernel.transform)
    {
    case Transform::Complex:
        return ComplexSum(n, kernel.sign, a);
    case Transform::Real:
        return kernel.sign < 0 ? RealInverseSum(n, a) : RealSum(n, a);
    case Transform::Cosine:
        return CosineSum(n, kernel.sign, a);
    case Transform::Sine:
        return SineSum(n, kernel.sign, a);
    case Transform::WholeCosine:
        return SumOf(a, 0, n, [&](long j, long k) { return angles.Cosine(2 * j * k); });
    default:
        return SumOf(a, 1, n - 1, [&](long j, long k) { return angles.Sine(2 * j * k); });
    }
}

/// Root mean square of the differences, in parts of the largest value expected. A NaN makes it a NaN.
inline double RelativeError(std::vector<double> const & values, std::vector<Wide> const & expected)
{
    Wide squares = 0;
    Wide largest = 0;
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        Wide const difference = values[i] - expected[i];
        squares += difference * difference;
        largest = std::max(largest, std::abs(expected[i]));
    }
    return static_cast<double>(std::sqrt(squares / static_cast<Wide>(values.size())) / largest);
}

/// What rounding explains in a transform of n values, in the measure of RelativeError.
inline double ToleranceOf(int n)
{
    return 1e-15 * std::log2(static_cast<double>(n));
}

} // namespace signal_test
