#pragma once

/// \file
/// The package's single precision vector.

#include <type_traits>

/// Three 32-bit floats and nothing else.
struct QN_Vector
{
    float X; ///< The first component.
    float Y; ///< The second component.
    float Z; ///< The third component.
};

static_assert(sizeof(QN_Vector) == 3 * sizeof(float) && sizeof(float) == 4);
static_assert(std::is_standard_layout_v<QN_Vector> && std::is_trivially_copyable_v<QN_Vector>);
