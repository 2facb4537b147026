#pragma once

#include "math/vector3.h"
#include "rotation/angle_constants.h"

#include <cmath>

namespace math::detail
{

/// The unit normal of a sphere at the parameters (u, v): u once around Y from +X over -Z, v from +Y to -Y.
inline C3DVector3Tpl<double> SphereNormal(double u, double v)
{
    double const latitude = k_Pi * v;
    double const longitude = k_TwoPi * u;
    double const ring = std::sin(latitude);
    return {ring * std::cos(longitude), std::cos(latitude), -(ring * std::sin(longitude))};
}

/// The parameters of a direction from the center, of any length but 0: u and v from 0 to 1.
inline void DirectionParameters(C3DVector3Tpl<double> const & w, double & u, double & v)
{
    constexpr double inversePi = 0.3183098861837907;
    v = std::acos(w.Y / w.GetLength()) * inversePi;
    u = std::atan2(-w.Z, w.X) * k_InverseTwoPi;
    if (u < 0)
    {
        u += 1;
    }
}

/// The same with zeros for a null one, which is one without a component above the tolerance: a NaN is not above it.
inline void SphereParameters(C3DVector3Tpl<double> const & w, double & u, double & v)
{
    u = 0;
    v = 0;
    if (w.IsNull() == 0)
    {
        DirectionParameters(w, u, v);
    }
}

} // namespace math::detail
