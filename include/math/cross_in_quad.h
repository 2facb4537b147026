#pragma once

/// \file
/// The inverse of the bilinear map of a quadrilateral.

#include "math/plane.h"
#include "math/vector2.h"

/// The parameters of a point in a quadrilateral: u from the edge q0 q3 to the edge q1 q2, v from the edge q1 q0 to the
/// edge q2 q3. Each is in [0, 1] within 1e-9.
///
/// \param plane is not read
/// \param quad four corners in order
/// \param point the point
/// \param u,v receive the parameters; where `v` has no solution, `u` has been written
/// \return 0; `E_FAIL` for a point outside
///
/// Where the equation of a parameter vanishes, as in a quadrilateral that is a point, it is 0.5. Coefficients below
/// 1e-9 count as zero: scale small quadrilaterals up.
MATH_API long F3DFindCrossInQuad(C3DPlane const & plane, C3DVector2Tpl<double> const * const quad,
                                 C3DVector2Tpl<double> const & point, double * u, double * v);
