#pragma once

/// \file
/// Arrays of points between frames of reference.

#include "math/transformation_matrix.h"
#include "math/vector3.h"

/// Takes an array of points from one frame of reference to another, in place, each point with the bits of
/// C3DVector3Tpl::Mul.
///
/// \param points,count the points
/// \param first the matrix of the first frame to the world; null is the world
/// \param second the matrix of the second frame to the world; not null
/// \param firstToSecond not 0: the points go from the first frame to the second; 0: from the second to the first
/// \return 0
///
/// **A singular matrix that has to be inverted is not reported:** its inverse counts as the identity.
MATH_API long F3DMapPointsInRef(C3DVector3Tpl<double> * points, unsigned long count, C3DXfoMatTpl<double> const * first,
                                C3DXfoMatTpl<double> const * second, int firstToSecond);
