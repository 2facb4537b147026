#pragma once

/// \file
/// The transform kernels as values, so that one test runs over all of them, and tables of exactly the size they need.

#include "signal/fft_kernels.h"
#include "support/random.h"

#include <cmath>
#include <cstddef>
#include <ostream>
#include <vector>

namespace signal_test
{

enum class Transform
{
    Complex,
    Real,
    Cosine,
    Sine,
    WholeCosine,
    WholeSine
};

/// A transform and its direction. The whole-range ones have none.
struct Kernel
{
    Transform transform;
    int sign;
};

inline constexpr Kernel k_Kernels[] = {{Transform::Complex, 1},  {Transform::Complex, -1}, {Transform::Real, 1},
                                       {Transform::Real, -1},    {Transform::Cosine, 1},   {Transform::Cosine, -1},
                                       {Transform::Sine, 1},     {Transform::Sine, -1},    {Transform::WholeCosine, 1},
                                       {Transform::WholeSine, 1}};

inline char const * NameOf(Transform transform)
{
    constexpr char const * names[] = {"Complex", "Real", "Cosine", "Sine", "WholeCosine", "WholeSine"};
    return names[static_cast<int>(transform)];
}

inline std::ostream & operator<<(std::ostream & out, Kernel const & kernel)
{
    return out << NameOf(kernel.transform) << (kernel.sign < 0 ? "Backward" : "Forward");
}

inline bool IsWholeRange(Transform transform)
{
    return transform == Transform::WholeCosine || transform == Transform::WholeSine;
}

/// Values that a kernel of size n reads or writes.
inline std::size_t CountValues(Transform transform, int n)
{
    return static_cast<std::size_t>(transform == Transform::WholeCosine ? n + 1 : n);
}

/// What stands in a table where no kernel has written. No table holds it.
inline constexpr double k_Unwritten = -123456.75;
inline constexpr int k_UnwrittenIndex = -123457;

/// Empty tables for a transform of n values, without a place to spare, so that a sanitizer sees every step too far.
struct Tables
{
    Tables(Transform transform, int n)
        : ip(CountIndexes(IsWholeRange(transform) ? n / 4 : n / 2), k_UnwrittenIndex),
          w(CountWork(transform, n), k_Unwritten), t(CountScratch(transform, n), k_Unwritten)
    {
        ip[0] = 0;
        ip[1] = 0;
    }

    static std::size_t CountIndexes(int half)
    {
        return static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(half) + 1) + 2));
    }
    static std::size_t CountWork(Transform transform, int n)
    {
        auto const count = static_cast<std::size_t>(n);
        switch (transform)
        {
        case Transform::Complex:
            return count / 4;
        case Transform::Real:
            return count / 2;
        case Transform::Cosine:
        case Transform::Sine:
            return 5 * count / 4;
        default:
            return 5 * count / 8;
        }
    }
    static std::size_t CountScratch(Transform transform, int n)
    {
        auto const half = static_cast<std::size_t>(n / 2);
        switch (transform)
        {
        case Transform::WholeCosine:
            return half + 1;
        case Transform::WholeSine:
            return half;
        default:
            return 0;
        }
    }

    std::vector<int> ip;
    std::vector<double> w;
    std::vector<double> t;
};

inline void RunKernel(Kernel const & kernel, int n, double * a, Tables & tables)
{
    using namespace math::detail;
    int * const ip = tables.ip.data();
    double * const w = tables.w.data();
    switch (kernel.transform)
    {
    case Transform::Complex:
        return DSPComplexDFT(n, kernel.sign, a, ip, w);
    case Transform::Real:
        return DSPRealDFT(n, kernel.sign, a, ip, w);
    case Transform::Cosine:
        return DSPCosineDFT(n, kernel.sign, a, ip, w);
    case Transform::Sine:
        return DSPSineDFT(n, kernel.sign, a, ip, w);
    case Transform::WholeCosine:
        return DSPWholeCosine(n, a, tables.t.data(), ip, w);
    case Transform::WholeSine:
        return DSPWholeSine(n, a, tables.t.data(), ip, w);
    }
}

/// The transform of a signal, with tables of its own.
inline std::vector<double> Transformed(Kernel const & kernel, int n, std::vector<double> a)
{
    Tables tables(kernel.transform, n);
    RunKernel(kernel, n, a.data(), tables);
    return a;
}

/// Values between -1 and 1.
inline std::vector<double> RandomValues(test_support::Random & random, std::size_t count)
{
    std::vector<double> values(count);
    for (double & value : values)
    {
        value = random.Uniform(-1.0, 1.0);
    }
    return values;
}

} // namespace signal_test
