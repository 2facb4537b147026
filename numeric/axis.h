#pragma once

#include "math/numeric.h"

namespace math::detail
{

/// Whether a value names a coordinate axis. Callers can pass any other, and each operation says what it does then.
inline bool NamesAxis(tagE3DAXISTYPE axis)
{
    return axis == E3D_AXIS_X || axis == E3D_AXIS_Y || axis == E3D_AXIS_Z;
}

} // namespace math::detail
