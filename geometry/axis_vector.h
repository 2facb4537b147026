#pragma once

#include "math/vector3.h"

namespace math::detail
{

/// The unit vector of an axis. A value that names none counts as Z.
inline C3DVector3Tpl<double> AxisVector(int axis)
{
    return {axis == E3D_AXIS_X || axis == E3D_AXIS_Y ? axis : E3D_AXIS_Z, 1.0};
}

} // namespace math::detail
