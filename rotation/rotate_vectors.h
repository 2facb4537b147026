#pragma once

/// \file
/// Many vectors through one matrix.

#include "math/matrix33.h"
#include "math/vector3.h"

namespace math::detail
{

/// The row products of n vectors with m. The arrays may be one and the same, but not overlap otherwise. The widest
/// instructions of the machine are used, with the operations of one vector in their order and so with the same bits.
void RotateVectors(C3DMatrix33Tpl<double> const & m, C3DVector3Tpl<double> const * in, long n,
                   C3DVector3Tpl<double> * out);

#if defined(__x86_64__)

/// The kernels: as many whole groups of eight (which needs AVX-512), four (AVX) or two (any x86-64) as n holds. They
/// return how many vectors were done.
long RotateByEight(C3DMatrix33Tpl<double> const & m, C3DVector3Tpl<double> const * in, long n,
                   C3DVector3Tpl<double> * out);
long RotateByFour(C3DMatrix33Tpl<double> const & m, C3DVector3Tpl<double> const * in, long n,
                  C3DVector3Tpl<double> * out);
long RotateByTwo(C3DMatrix33Tpl<double> const & m, C3DVector3Tpl<double> const * in, long n,
                 C3DVector3Tpl<double> * out);

#endif

} // namespace math::detail
