#pragma once

/// \file
/// Complex numbers in vector registers: one, or two side by side, or several with their real and imaginary parts apart.
/// For locals of inline functions. Each real operation is rounded as it would be alone, so that every form gives the
/// same bits.

#include <cstddef>

// What takes or gives two numbers is always inlined, so it has no calling convention that the registers could change.
#pragma GCC diagnostic ignored "-Wpsabi"

namespace math::detail
{

/// Real and imaginary part. As a twiddle factor, cosine and sine of the angle that it turns by.
typedef double Complex __attribute__((vector_size(16))); // NOLINT(modernize-use-using): takes the attribute

/// Two of them. Worth its while where a register holds it.
typedef double ComplexPair __attribute__((vector_size(32))); // NOLINT(modernize-use-using): takes the attribute

/// A value each of four arrays.
typedef double ValueQuad __attribute__((vector_size(32))); // NOLINT(modernize-use-using): takes the attribute

/// A complex number, or one each of several arrays: the real parts, then the imaginary ones.
template <typename Values>
struct ComplexOf
{
    [[gnu::always_inline]] ComplexOf operator+(ComplexOf const & x) const
    {
        return {real + x.real, imaginary + x.imaginary};
    }
    [[gnu::always_inline]] ComplexOf operator-(ComplexOf const & x) const
    {
        return {real - x.real, imaginary - x.imaginary};
    }
    [[gnu::always_inline]] ComplexOf operator-() const { return {-real, -imaginary}; }
    [[gnu::always_inline]] ComplexOf operator*(double factor) const { return {real * factor, imaginary * factor}; }
    [[gnu::always_inline]] friend ComplexOf operator*(double factor, ComplexOf const & x) { return x * factor; }

    Values real;
    Values imaginary;
};

/// How many values they hold.
template <typename Lanes>
inline constexpr std::ptrdiff_t k_Width = sizeof(Lanes) / sizeof(double);

/// How registers stand in an array, which may begin anywhere. Each is read and written whole: a copy of bytes may go by
/// smaller pieces, which hold up the loads behind it.
template <typename Lanes>
struct InMemory
{
    [[gnu::always_inline]] static Lanes Read(double const * from) { return *reinterpret_cast<Anywhere const *>(from); }
    [[gnu::always_inline]] static void Write(double * to, Lanes const & x) { *reinterpret_cast<Anywhere *>(to) = x; }

private:
    typedef Lanes Anywhere __attribute__((aligned(8), may_alias)); // NOLINT(modernize-use-using): takes the attribute
};

template <typename Values>
struct InMemory<ComplexOf<Values>>
{
    [[gnu::always_inline]] static ComplexOf<Values> Read(double const * from)
    {
        return {InMemory<Values>::Read(from), InMemory<Values>::Read(from + count)};
    }
    [[gnu::always_inline]] static void Write(double * to, ComplexOf<Values> const & x)
    {
        InMemory<Values>::Write(to, x.real);
        InMemory<Values>::Write(to + count, x.imaginary);
    }

private:
    static constexpr std::ptrdiff_t count = k_Width<Values>;
};

template <typename Lanes>
[[gnu::always_inline]] inline Lanes Load(double const * from)
{
    return InMemory<Lanes>::Read(from);
}

template <typename Lanes>
[[gnu::always_inline]] inline void Store(double * to, Lanes const & x)
{
    InMemory<Lanes>::Write(to, x);
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

template <typename Values>
[[gnu::always_inline]] inline ComplexOf<Values> Exchanged(ComplexOf<Values> const & x)
{
    return {x.imaginary, x.real};
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
template <typename Values>
[[gnu::always_inline]] inline ComplexOf<Values> ChangeSigns(ComplexOf<Values> const & x, long long ofReal,
                                                            long long ofImaginary)
{
    return {ofReal != 0 ? -x.real : x.real, ofImaginary != 0 ? -x.imaginary : x.imaginary};
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

/// The numbers in reverse order, of those that are neighbours in an array.
[[gnu::always_inline]] inline Complex Reversed(Complex const & x)
{
    return x;
}
[[gnu::always_inline]] inline ComplexPair Reversed(ComplexPair const & x)
{
    return __builtin_shufflevector(x, x, 2, 3, 0, 1);
}
template <typename Values>
[[gnu::always_inline]] inline ComplexOf<Values> Reversed(ComplexOf<Values> const & x)
{
    return x;
}

/// Twiddle factors, one a number.
template <typename Lanes>
struct Turning
{
    Lanes cosine;
    Lanes sine;
};

template <typename Values>
struct Turning<ComplexOf<Values>>
{
    double cosine;
    double sine;
};

/// One factor for all numbers.
///@{
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
template <typename Lanes>
[[gnu::always_inline]] inline Turning<Lanes> TurnAllBy(ComplexOf<double> const & w)
{
    return {w.real, w.imaginary};
}
///@}

/// A factor as it stands in a table: whole where registers hold whole numbers.
template <typename Lanes>
struct Factors
{
    using Type = Complex;
};
template <typename Values>
struct Factors<ComplexOf<Values>>
{
    using Type = ComplexOf<double>;
};
template <typename Lanes>
using FactorOf = typename Factors<Lanes>::Type;

[[gnu::always_inline]] inline Turning<ComplexPair> TurnEachBy(Complex const & first, Complex const & second)
{
    return {__builtin_shufflevector(first, second, 0, 0, 2, 2), __builtin_shufflevector(first, second, 1, 1, 3, 3)};
}

template <typename Lanes>
[[gnu::always_inline]] inline Lanes Turn(Lanes const & x, Turning<Lanes> const & w)
{
    return x * w.cosine + TimesI(x) * w.sine;
}

/// The same sums and differences: processors with these registers have one operation that takes them in turn.
[[gnu::always_inline]] inline ComplexPair Turn(ComplexPair const & x, Turning<ComplexPair> const & w)
{
    ComplexPair const direct = x * w.cosine;
    ComplexPair const crossed = Exchanged(x) * w.sine;
    return __builtin_shufflevector(direct - crossed, direct + crossed, 0, 5, 2, 7);
}

} // namespace math::detail
