#pragma once

/// \file
/// Jacobi's eigenvalue iteration.

namespace math::detail
{

/// Eigenvalues of a symmetric matrix, and the eigenvector of value i in column i of `vectors`.
struct EigenDecomposition
{
    double vectors[3][3];
    double values[3];
};

/// Cyclic Jacobi rotations on a symmetric matrix: C. G. J. Jacobi, "Über ein leichtes Verfahren, die in der Theorie der
/// Säcularstörungen vorkommenden Gleichungen numerisch aufzulösen" (1846), in the arrangement of H. Rutishauser, "The
/// Jacobi method for real symmetric matrices", Numerische Mathematik 9 (1966).
///
/// \param a the matrix; of its off-diagonal elements only those above the diagonal are read
/// \param base the sum to which each sweep adds its changes of the eigenvalues: the diagonal of a for true results
/// \param epsilon the elements above the diagonal count as zero below this magnitude
/// \return 1 with the eigenvalues in descending order; 0 when 50 sweeps do not suffice, with the last estimates
/// unsorted
int DecomposeSymmetric(double const (&a)[3][3], double const (&base)[3], double epsilon, EigenDecomposition & result);

} // namespace math::detail
