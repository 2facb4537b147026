#pragma once

/// \file
/// A linear map as two rotations with a scale between them.

#include "math/rotation_matrix.h"
#include "math/vector3.h"

namespace math::detail
{

/// The product U diag(s) V of two orthogonal matrices and a scale, for row vectors.
template <typename T>
struct AffineFactors
{
    C3DRotMatTpl<T> u{C3DInitRequest_DoNotInitialize()};
    C3DVector3Tpl<T> s;
    C3DRotMatTpl<T> v{C3DInitRequest_DoNotInitialize()};
};

/// Any matrix as such a product, in which u and v are proper rotations, no factor of s is nearer to zero than the
/// standard tolerance, u is the identity where all factors agree, and no half-turn of u is left beside s. A mirrored
/// matrix has three negative factors, or one where a half-turn moved into s. The decomposition is done in `double`.
template <typename T>
AffineFactors<T> DecomposeAffine(double const (&a)[3][3]);

/// \name The steps of DecomposeAffine
/// Each leaves the product as it is.
///@{

/// A singular value in the type of the result, kept away from zero; a NaN becomes the negative tolerance.
template <typename T>
T NarrowSingularValue(double w);

/// Turns mirrors into rotations, each at the cost of the signs of all factors. A determinant that is a NaN counts as
/// that of a mirror.
template <typename T>
void MakeProper(AffineFactors<T> & factors);

/// Factors of equal magnitude, of which one alone is positive, are a uniform scale and a half-turn about the axis of
/// the positive one, which moves into v. Singular values are not negative, unless their iteration did not converge.
template <typename T>
void UnifyMixedSigns(AffineFactors<T> & factors);

/// Whether all factors agree; the last is compared with the middle one alone.
template <typename T>
bool IsUniform(C3DVector3Tpl<T> const & s);

/// Moves the half-turns of u that stand beside s into the signs of s. Of a half-turn about Z the signs of X and Y
/// change, and so on around; Y can follow only after Z, and X after Y.
template <typename T>
void MoveHalfTurns(AffineFactors<T> & factors);

/// The same, where the Euler angles of u in order XYZ are known.
template <typename T>
void MoveHalfTurns(C3DVector3Tpl<T> angles, AffineFactors<T> & factors);
///@}

} // namespace math::detail
