#pragma once

#include "math/numeric.h"
#include "math/vector3.h"

#include <cmath>

namespace math::detail
{

/// A scale factor kept away from zero: one below the standard tolerance in magnitude becomes `positive`, or the
/// negative tolerance if it is below 0 or a NaN.
template <typename T>
inline T ClampScale(T factor, T positive = k_StandardTolerance<T>)
{
    if (std::abs(factor) >= k_StandardTolerance<T>)
    {
        return factor;
    }
    return factor >= 0 ? positive : -k_StandardTolerance<T>;
}

template <typename T>
inline C3DVector3Tpl<T> ClampScale(C3DVector3Tpl<T> const & scale)
{
    return {ClampScale(scale.X), ClampScale(scale.Y), ClampScale(scale.Z)};
}

} // namespace math::detail
