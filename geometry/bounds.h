#pragma once

#include "math/vector3.h"

namespace math::detail
{

/// The bounds of points: of the first one, then of each that is included. A NaN in the first one stays, and is passed
/// over in the others.
struct Bounds
{
    explicit Bounds(C3DVector3Tpl<double> const & first) : minimum(first), maximum(first) {}

    void Include(C3DVector3Tpl<double> const & point)
    {
        for (unsigned long axis = 0; axis < 3; ++axis)
        {
            double const value = point[axis];
            minimum[axis] = value < minimum[axis] ? value : minimum[axis];
            maximum[axis] = value > maximum[axis] ? value : maximum[axis];
        }
    }

    C3DVector3Tpl<double> minimum;
    C3DVector3Tpl<double> maximum;
};

} // namespace math::detail
