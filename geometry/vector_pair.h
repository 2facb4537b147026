#pragma once

/// \file
/// Two numbers or vectors side by side, in registers that every x86-64 has. Each operation rounds either as it would
/// alone, so that a pair has the bits of the two.

#include "math/vector3.h"
#include "numeric/pair.h"

#include <cmath>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace math::detail
{

/// Two truth values, with all bits set or none. Of which integer type the comparisons make them is the compiler's own.
using PairOfTruths = decltype(Pair() < Pair());

/// The truth values as bits 0 and 1. What goes on with integers is not taken apart by compilers, as masks are.
inline int ToBits(PairOfTruths x)
{
#if defined(__SSE2__)
    return _mm_movemask_pd(reinterpret_cast<__m128d>(x));
#else
    return static_cast<int>((x[0] & 1) | (x[1] & 2));
#endif
}

inline Pair SquareRoot(Pair x)
{
#if defined(__SSE2__)
    return _mm_sqrt_pd(x);
#else
    return Pair{std::sqrt(x[0]), std::sqrt(x[1])};
#endif
}

/// Two vectors.
struct VectorPair
{
    VectorPair() = default;
    VectorPair(Pair x, Pair y, Pair z) : X(x), Y(y), Z(z) {}
    VectorPair(C3DVector3Tpl<double> const & first, C3DVector3Tpl<double> const & second)
        : X{first.X, second.X}, Y{first.Y, second.Y}, Z{first.Z, second.Z}
    {
    }
    /// The same vector twice.
    explicit VectorPair(C3DVector3Tpl<double> const & both) : VectorPair(both, both) {}

    C3DVector3Tpl<double> Get(unsigned i) const { return {X[i], Y[i], Z[i]}; }

    Pair X;
    Pair Y;
    Pair Z;
};

/// a - b.
inline VectorPair Difference(VectorPair const & a, VectorPair const & b)
{
    return {a.X - b.X, a.Y - b.Y, a.Z - b.Z};
}

/// a times a factor.
inline VectorPair Product(VectorPair const & a, Pair factor)
{
    return {a.X * factor, a.Y * factor, a.Z * factor};
}

inline Pair Dot(VectorPair const & a, VectorPair const & b)
{
    return a.X * b.X + a.Y * b.Y + a.Z * b.Z;
}

/// a x b.
inline VectorPair Cross(VectorPair const & a, VectorPair const & b)
{
    return {a.Y * b.Z - a.Z * b.Y, a.Z * b.X - a.X * b.Z, a.X * b.Y - a.Y * b.X};
}

inline Pair Length(VectorPair const & a)
{
    return SquareRoot(Dot(a, a));
}

/// origin + t direction.
inline VectorPair PointAlong(VectorPair const & origin, VectorPair const & direction, Pair t)
{
    return {direction.X * t + origin.X, direction.Y * t + origin.Y, direction.Z * t + origin.Z};
}

} // namespace math::detail
