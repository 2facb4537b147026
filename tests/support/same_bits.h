#pragma once

#include "math/vector3.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace test_support
{

/// Equal bits. Of a NaN only that it is one: which of two NaNs a sum passes on is the processor's own.
inline bool SameBits(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) || std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

inline bool SameBits(C3DVector3Tpl<double> const & a, C3DVector3Tpl<double> const & b)
{
    return SameBits(a.X, b.X) && SameBits(a.Y, b.Y) && SameBits(a.Z, b.Z);
}

} // namespace test_support
