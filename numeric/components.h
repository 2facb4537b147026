#pragma once

/// \file
/// What the vectors of every size do to one component.

#include <cmath>

namespace math::detail
{

/// The greater of a component and its limit.
template <typename T>
T RaiseToLimit(T component, T limit)
{
    return component < limit ? limit : component;
}

/// A component whose magnitude is below the limit becomes the limit, with its own sign; a zero counts as positive.
template <typename T>
T RaiseMagnitudeToLimit(T component, T limit)
{
    if (std::abs(component) < limit)
    {
        return component < 0 ? -limit : limit;
    }
    return component;
}

/// The floor that `SetMinimal` puts under one component.
template <typename T>
T SetMinimalComponent(T component, T limit, int magnitudes)
{
    return magnitudes == 0 ? RaiseToLimit(component, limit) : RaiseMagnitudeToLimit(component, limit);
}

} // namespace math::detail
