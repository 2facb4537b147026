#pragma once

/// \file
/// Many vectors through one matrix.

#include "math/matrix33.h"
#include "math/matrix44.h"
#include "math/vector3.h"

namespace math::detail
{

/// The row products of n vectors with m. The arrays may be one and the same, but not overlap otherwise. The widest
/// instructions of the machine are used, with the operations of one vector in their order and so with the same bits.
void MapVectors(C3DMatrix33Tpl<double> const & m, C3DVector3Tpl<double> const * in, long n,
                C3DVector3Tpl<double> * out);

/// The same of n points with an affine m, whose column 3 is not read: the last row, then the products that are not with
/// a component that is 0 or a NaN.
void MapPoints(C3DMatrix44Tpl<double> const & m, C3DVector3Tpl<double> const * in, long n, C3DVector3Tpl<double> * out);

/// Three rows of three coefficients, and for points a last one, which vectors do not read.
using MapRows = double[4][3];

/// The kernels: as many whole groups of eight (which needs AVX-512), four (AVX), two (any x86-64) or one as n holds.
/// They return how many vectors were done.
///@{
#if defined(__x86_64__)
long MapByEight(MapRows const & rows, bool arePoints, C3DVector3Tpl<double> const * in, long n,
                C3DVector3Tpl<double> * out);
long MapByFour(MapRows const & rows, bool arePoints, C3DVector3Tpl<double> const * in, long n,
               C3DVector3Tpl<double> * out);
long MapByTwo(MapRows const & rows, bool arePoints, C3DVector3Tpl<double> const * in, long n,
              C3DVector3Tpl<double> * out);
#endif
long MapByOne(MapRows const & rows, bool arePoints, C3DVector3Tpl<double> const * in, long n,
              C3DVector3Tpl<double> * out);
///@}

} // namespace math::detail
