#pragma once

#include "geometry/vector_expressions.h"

#include <cmath>

namespace math::detail
{

/// Solves x c0 + y c1 + z c2 = r by Cramer's rule.
///
/// The determinant is measured against those of the right side, so that the scale of the columns does not matter, and
/// neither does a solution of zeros.
/// \return false, with nothing written, for columns that are linearly dependent
inline bool SolveThreeColumns(C3DVector3Tpl<double> const & c0, C3DVector3Tpl<double> const & c1,
                              C3DVector3Tpl<double> const & c2, C3DVector3Tpl<double> const & r, double & x, double & y,
                              double & z)
{
    C3DVector3Tpl<double> const normal = Cross(c1, c2);
    double const determinant = Dot(c0, normal);
    double const ofX = Dot(r, normal);
    double const ofY = Dot(c0, Cross(r, c2));
    double const ofZ = Dot(c0, Cross(c1, r));
    double const limit = (std::abs(ofX) + std::abs(ofY) + std::abs(ofZ)) * k_StandardTolerance<double>;
    if (!(std::abs(determinant) > limit))
    {
        return false;
    }
    x = ofX / determinant;
    y = ofY / determinant;
    z = ofZ / determinant;
    return true;
}

} // namespace math::detail
