#pragma once

/// \file
/// Complex numbers in a vector register: one, or two side by side. For locals of inline functions. Each real operation
/// is rounded as it would be alone, so that either width gives the same bits.

#include <cstring>

// What takes or gives two numbers is always inlined, so it has no calling convention that the registers could change.
#pragma GCC diagnostic ignored "-Wpsabi"

namespace math::detail
{

/// Real and imaginary part. As a twiddle factor, cosine and sine of the angle that it turns by.
typedef double Complex __attribute__((vector_size(16))); // NOLINT(modernize-use-using): takes the attribute

/// Two of them. Worth its while where a register holds it.
typedef double ComplexPair __attribute__((vector_size(32))); // NOLINT(modernize-use-using): takes the attribute

template <typename Lanes>
[[gnu::always_inline]] inline Lanes Load(double const * from)
{
    Lanes x;
    std::memcpy(&x, from, sizeof x);
    return x;
}

template <typename Lanes>
[[gnu::always_inline]] inline void Store(double * to, Lanes const & x)
{
    std::memcpy(to, &x, sizeof x);
}

/// Imaginary and real part.
[[gnu::always_inline]] inline Complex Exchanged(Complex const & x)
{
    return __builtin_shufflevector(x, x, 1, 0);
}
[[gnu::always_inline]] inline ComplexPair Exchanged(ComplexPair const & x)
{
    return __builtin_shufflevector(x, x, 1, 0, 3, 2);
}

inline constexpr long long k_SignBit = static_cast<long long>(1ULL << 63);

/// Changes the signs that a mask tells, of zeros and of what is no number too.
[[gnu::always_inline]] inline Complex ChangeSigns(Complex const & x, long long ofReal, long long ofImaginary)
{
    typedef long long Bits __attribute__((vector_size(16))); // NOLINT(modernize-use-using): takes the attribute
    return reinterpret_cast<Complex>(reinterpret_cast<Bits>(x) ^ Bits{ofReal, ofImaginary});
}
[[gnu::always_inline]] inline ComplexPair ChangeSigns(ComplexPair const & x, long long ofReal, long long ofImaginary)
{
    typedef long long Bits __attribute__((vector_size(32))); // NOLINT(modernize-use-using): takes the attribute
    return reinterpret_cast<ComplexPair>(reinterpret_cast<Bits>(x) ^ Bits{ofReal, ofImaginary, ofReal, ofImaginary});
}

/// i x.
template <typename Lanes>
[[gnu::always_inline]] inline Lanes TimesI(Lanes const & x)
{
    return ChangeSigns(Exchanged(x), k_SignBit, 0);
}

template <typename Lanes>
[[gnu::always_inline]] inline Lanes Conjugate(Lanes const & x)
{
    return ChangeSigns(x, 0, k_SignBit);
}

/// The numbers in reverse order.
[[gnu::always_inline]] inline Complex Reversed(Complex const & x)
{
    return x;
}
[[gnu::always_inline]] inline ComplexPair Reversed(ComplexPair const & x)
{
    return __builtin_shufflevector(x, x, 2, 3, 0, 1);
}

/// Twiddle factors, one a number.
template <typename Lanes>
struct Turning
{
    Lanes cosine;
    Lanes sine;
};

/// One factor for all numbers.
template <typename Lanes>
[[gnu::always_inline]] inline Turning<Lanes> TurnAllBy(Complex const & w)
{
    if constexpr (sizeof(Lanes) == sizeof(ComplexPair))
    {
        return {__builtin_shufflevector(w, w, 0, 0, 0, 0), __builtin_shufflevector(w, w, 1, 1, 1, 1)};
    }
    else
    {
        return {__builtin_shufflevector(w, w, 0, 0), __builtin_shufflevector(w, w, 1, 1)};
    }
}

[[gnu::always_inline]] inline Turning<ComplexPair> TurnEachBy(Complex const & first, Complex const & second)
{
    return {__builtin_shufflevector(first, second, 0, 0, 2, 2), __builtin_shufflevector(first, second, 1, 1, 3, 3)};
}

template <typename Lanes>
[[gnu::always_inline]] inline Lanes Turn(Lanes const & x, Turning<Lanes> const & w)
{
    return x * w.cosine + TimesI(x) * w.sine;
}

} // namespace math::detail
