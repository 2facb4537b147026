#pragma once

/// \file
/// The table of Euler orders, from which every conversion works.

#include "math/rotation_order.h"

#include <cstddef>

namespace math::detail
{

/// The axes of an order as they act, and whether they are an even permutation of X, Y, Z.
struct EulerOrder
{
    int first;
    int middle;
    int last;
    bool even;
};

inline constexpr EulerOrder k_EulerOrders[6] = {
    {0, 1, 2, true},  // XYZ
    {0, 2, 1, false}, // XZY
    {1, 0, 2, false}, // YXZ
    {1, 2, 0, true},  // YZX
    {2, 0, 1, true},  // ZXY
    {2, 1, 0, false}  // ZYX
};

/// The row of an order, or null for a value that names none.
inline EulerOrder const * FindEulerOrder(tagE3DROTORDER order)
{
    return order >= E3DROTORDER_XYZ && order <= E3DROTORDER_ZYX ? &k_EulerOrders[static_cast<std::size_t>(order)]
                                                                : nullptr;
}

} // namespace math::detail
