#pragma once

/// \file
/// What every class shares: tolerances, comparison with a tolerance, the request for an uninitialised object, the axes.
///
/// Tolerances are absolute, in the units of what is compared, unless an operation says otherwise. Operations that take
/// an `epsilon` use the one they are given; the defaults in the declarations are the standard tolerance.

#include "math/api.h"

namespace math::detail
{

/// Length, pivot and singularity tests of most of the library.
template <typename T>
inline constexpr T k_StandardTolerance = T(1e-12);
template <>
inline constexpr float k_StandardTolerance<float> = 1e-6F;

/// The standard tolerance of operations that widen a `float` before they compare it: 1e-6 as a `double`, a little above
/// the `float` of that name.
template <typename T>
inline constexpr double k_WidenedTolerance = 1e-12;
template <>
inline constexpr double k_WidenedTolerance<float> = 1e-6;

/// For quantities that have already lost some digits, such as roots and points of intersection.
template <typename T>
inline constexpr T k_LessAccurateTolerance = T(1e-9);
template <>
inline constexpr float k_LessAccurateTolerance<float> = 1e-6F;

/// For `double` code that deals in `float`-like precision.
inline constexpr double k_CoarseTolerance = 1e-6;

} // namespace math::detail

/// Selects a constructor that leaves the numbers of the object unwritten. The default constructors of the matrices fill
/// their elements; a caller that is about to overwrite them all can spare that.
struct C3DInitRequest_DoNotInitialize
{
};

/// A coordinate axis. The values serve as component indices wherever an `int` selects a component.
enum tagE3DAXISTYPE : int
{
    E3D_AXIS_X = 0, ///< The X axis.
    E3D_AXIS_Y = 1, ///< The Y axis.
    E3D_AXIS_Z = 2  ///< The Z axis.
};

/// Three-way comparison with a tolerance relative to the binary order of the larger operand: the limit is
/// `epsilon` times 2^e, where 2^e is the power of two just above the larger magnitude.
///
/// \return -1 when a - b is below the limit's negative, 1 when it is above the limit, 0 between them, limits included.
/// A difference that is a NaN gives -1; that holds for two equal infinities too, whose difference is a NaN.
MATH_API int F3DCompareEpsilon(double a, double b, double epsilon);

/// \overload
/// The limit is computed in `double` and rounded to `float`; the difference is taken in `float`.
MATH_API int F3DCompareEpsilon(float a, float b, float epsilon);

/// True for a finite number, zeros and subnormals included; false for infinities and NaNs.
MATH_API bool F3DIsValidNumber(double value);

/// \overload
MATH_API bool F3DIsValidNumber(float value);
