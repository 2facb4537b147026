#pragma once

/// \file
/// The singular value decomposition of Golub and Reinsch.

namespace math::detail
{

/// A = U diag(w) Vt, with U and the transpose Vt of V orthogonal. Either may be a mirror.
struct SingularValueDecomposition
{
    double u[3][3];
    double w[3];
    double vt[3][3];
};

/// Reduction to bidiagonal form by Householder reflections, then implicitly shifted QR sweeps: G. H. Golub and
/// C. Reinsch, "Singular value decomposition and least squares solutions", Numerische Mathematik 14 (1970).
///
/// The singular values are not sorted: they stay in the order in which the sweeps leave them. None is negative, unless
/// 30 sweeps do not suffice for it, which is not reported. A matrix with an infinity or a NaN gives NaNs.
void DecomposeSingularValues(double const (&a)[3][3], SingularValueDecomposition & result);

} // namespace math::detail
