#pragma once

/// \file
/// Vectors as values, for formulas with several of them.

#include "math/numeric.h"
#include "math/vector3.h"

#include <cmath>

namespace math::detail
{

/// a - b.
inline C3DVector3Tpl<double> Difference(C3DVector3Tpl<double> const & a, C3DVector3Tpl<double> const & b)
{
    return C3DVector3Tpl<double>().Sub(a, b);
}

/// a x b.
inline C3DVector3Tpl<double> Cross(C3DVector3Tpl<double> const & a, C3DVector3Tpl<double> const & b)
{
    return C3DVector3Tpl<double>().SetCross(a, b);
}

/// a times a factor.
inline C3DVector3Tpl<double> Product(C3DVector3Tpl<double> const & a, double factor)
{
    return C3DVector3Tpl<double>().Mul(a, factor);
}

inline double Length(C3DVector3Tpl<double> const & a)
{
    return a.GetLength();
}

/// origin + t direction.
inline C3DVector3Tpl<double> PointAlong(C3DVector3Tpl<double> const & origin, C3DVector3Tpl<double> const & direction,
                                        double t)
{
    return C3DVector3Tpl<double>().Mul(direction, t).Add(origin);
}

/// The vector made unit; as it is where its length is not above the standard tolerance.
inline C3DVector3Tpl<double> UnitOrSame(C3DVector3Tpl<double> vector)
{
    vector.Normalize();
    return vector;
}

/// Whether every component lies within the standard tolerance of 0. A NaN does not, other than for IsNull.
inline bool IsNegligible(C3DVector3Tpl<double> const & vector)
{
    constexpr double tolerance = k_StandardTolerance<double>;
    return std::abs(vector.X) <= tolerance && std::abs(vector.Y) <= tolerance && std::abs(vector.Z) <= tolerance;
}

} // namespace math::detail
