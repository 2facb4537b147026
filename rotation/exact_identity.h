#pragma once

#include "math/rotation_matrix.h"

namespace math::detail
{

/// Whether every element compares equal to the identity's. The class's own operator== takes a NaN for equal to
/// anything.
inline bool IsExactlyIdentity(C3DRotMatTpl<double> const & m)
{
    for (int r = 0; r < 3; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            if (!(m.Get(r, c) == double(r == c)))
            {
                return false;
            }
        }
    }
    return true;
}

} // namespace math::detail
