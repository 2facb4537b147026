#pragma once

namespace math::detail
{

/// The limits of a view volume in view space: four of its cross-section at the near plane, and two distances.
struct ViewLimits
{
    double left;
    double right;
    double bottom;
    double top;
    double near;
    double far;
};

} // namespace math::detail
