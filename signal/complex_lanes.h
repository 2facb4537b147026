#pragma once

/// \file
/// A complex number in a vector register. For locals of inline functions.

#include <cstring>

namespace math::detail
{

/// Real and imaginary part side by side, each rounded as it would be alone.
typedef double Complex __attribute__((vector_size(16))); // NOLINT(modernize-use-using): takes the attribute

/// cos and sin of an angle: the factor that turns by it.
struct Twiddle
{
    double cosine;
    double sine;
};

inline Complex Load(double const * from)
{
    Complex x;
    std::memcpy(&x, from, sizeof x);
    return x;
}

inline void Store(double * to, Complex const & x)
{
    std::memcpy(to, &x, sizeof x);
}

/// i x.
inline Complex TimesI(Complex const & x)
{
    typedef long long Bits __attribute__((vector_size(16))); // NOLINT(modernize-use-using): takes the attribute
    constexpr long long signBit = static_cast<long long>(1ULL << 63);
    Complex const exchanged = __builtin_shufflevector(x, x, 1, 0);
    return reinterpret_cast<Complex>(reinterpret_cast<Bits>(exchanged) ^ Bits{signBit, 0});
}

inline Complex Conjugate(Complex const & x)
{
    typedef long long Bits __attribute__((vector_size(16))); // NOLINT(modernize-use-using): takes the attribute
    constexpr long long signBit = static_cast<long long>(1ULL << 63);
    return reinterpret_cast<Complex>(reinterpret_cast<Bits>(x) ^ Bits{0, signBit});
}

inline Complex Turn(Complex const & x, Twiddle const & w)
{
    return x * Complex{w.cosine, w.cosine} + TimesI(x) * Complex{w.sine, w.sine};
}

} // namespace math::detail
