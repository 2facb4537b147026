#pragma once

#include "math/color.h"

#include "support/same_bits.h"

namespace math::detail
{

/// The private operations of a colour, under their own names.
class ColorInspector
{
public:
    static constexpr auto RoundDown = &C3DColor4f::RoundDown;
    static constexpr auto MinMax = &C3DColor4f::MinMax;
};

} // namespace math::detail

namespace describe_test
{

using math::detail::ColorInspector;
using test_support::SameBits;

inline bool SameBits(C3DColor4f const & color, float r, float g, float b, float a)
{
    return test_support::SameBits(color.R(), r) && test_support::SameBits(color.G(), g) &&
           test_support::SameBits(color.B(), b) && test_support::SameBits(color.A(), a);
}

} // namespace describe_test
