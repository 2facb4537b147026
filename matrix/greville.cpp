/// \file
/// Greville's recursion for the Moore-Penrose pseudo-inverse.
///
/// The inverse of the first k + 1 columns of a matrix comes from that of the first k, G, and column k, u. With the
/// coefficients d = G u, the residual r = u - A d is what the earlier columns do not explain of u. The new row b is
///
///     b = pseudo-inverse of r                  where u is independent of the earlier columns
///     b = (d^T G) / (1 + d^T d)                where it depends on them, so that r is zero but for rounding
///
/// and G - d b with b below it is the new inverse.
///
/// T. N. E. Greville, "Some applications of the pseudoinverse of a matrix", SIAM Review 2 (1960).

#include "math/matrix_mn.h"

#include "matrix/try_allocate.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace
{

/// Below this share of a column its residual is taken for rounding.
constexpr double k_DependenceOfMatrix = 0.0001;
constexpr double k_DependenceOfBlock = 0.001;

/// Squared length up to which a vector counts as null.
constexpr double k_NullSquaredLength = 1e-10;

/// d = G u, over the first k rows of G.
void ComputeCoefficients(double const * const * inverse, double const * u, std::size_t m, std::size_t k, double * d)
{
    for (std::size_t j = 0; j < k; ++j)
    {
        d[j] = 0;
        for (std::size_t i = 0; i < m; ++i)
        {
            d[j] += inverse[j][i] * u[i];
        }
    }
}

/// r = u - A d, over the first k columns of A.
void ComputeResidual(double const * const * a, double const * u, double const * d, std::size_t m, std::size_t k,
                     double * r)
{
    for (std::size_t i = 0; i < m; ++i)
    {
        double explained = 0;
        for (std::size_t j = 0; j < k; ++j)
        {
            explained += a[i][j] * d[j];
        }
        r[i] = u[i] - explained;
    }
}

/// b = (d^T G) / (1 + d^T d).
void ComputeDependentRow(double const * const * inverse, double const * d, std::size_t m, std::size_t k, double * b)
{
    double squares = 0;
    for (std::size_t j = 0; j < k; ++j)
    {
        squares += d[j] * d[j];
    }
    double const q = 1 / (1 + squares);
    for (std::size_t i = 0; i < m; ++i)
    {
        double sum = 0;
        for (std::size_t j = 0; j < k; ++j)
        {
            sum += inverse[j][i] * d[j];
        }
        b[i] = q * sum;
    }
}

/// G becomes G - d b, with b as row k below it.
void AppendRow(double * const * inverse, double const * d, double const * b, std::size_t m, std::size_t k)
{
    for (std::size_t i = 0; i < m; ++i)
    {
        for (std::size_t j = 0; j < k; ++j)
        {
            inverse[j][i] -= d[j] * b[i];
        }
        inverse[k][i] = b[i];
    }
}

void CopyColumn(double const * const * a, std::size_t k, std::size_t m, double * u)
{
    for (std::size_t i = 0; i < m; ++i)
    {
        u[i] = a[i][k];
    }
}

} // namespace

int C3DMatrixMN::GrevilleInverse(C3DMatrixMN const & a)
{
    return GrevilleRecursion(a, static_cast<unsigned long>(a.m_NbRow), static_cast<unsigned long>(a.m_NbCol),
                             k_DependenceOfMatrix);
}

int C3DMatrixMN::GrevilleInverse(C3DMatrixMN const & a, unsigned long m, unsigned long n)
{
    return GrevilleRecursion(a, m, n, k_DependenceOfBlock);
}

int C3DMatrixMN::GrevilleRecursion(C3DMatrixMN const & a, unsigned long m, unsigned long n, double threshold)
{
    auto const u = math::detail::TryAllocate<double>(m);
    auto const r = math::detail::TryAllocate<double>(m);
    auto const b = math::detail::TryAllocate<double>(m);
    auto const d = math::detail::TryAllocate<double>(n);
    if (u == nullptr || r == nullptr || b == nullptr || d == nullptr)
    {
        return 0;
    }
    int const count = static_cast<int>(m);
    CopyColumn(a.m_Rows, 0, m, u.get());
    InverseVector(u.get(), b.get(), count);
    AppendRow(m_Rows, d.get(), b.get(), m, 0);
    for (std::size_t k = 1; k < n; ++k)
    {
        CopyColumn(a.m_Rows, k, m, u.get());
        ComputeCoefficients(m_Rows, u.get(), m, k, d.get());
        ComputeResidual(a.m_Rows, u.get(), d.get(), m, k, r.get());
        // A null column counts as independent, since 0 >= 0, and its row of the inverse is zero.
        if (SumAbsVal(r.get(), count) >= SumAbsVal(u.get(), count) * threshold)
        {
            InverseVector(r.get(), b.get(), count);
        }
        else
        {
            ComputeDependentRow(m_Rows, d.get(), m, k, b.get());
        }
        AppendRow(m_Rows, d.get(), b.get(), m, k);
    }
    return 1;
}

void C3DMatrixMN::InverseVector(double * in, double * out, int count)
{
    double squares = 0;
    for (int i = 0; i < count; ++i)
    {
        squares += in[i] * in[i];
    }
    if (!(squares > k_NullSquaredLength))
    {
        std::fill_n(out, count, 0.0);
        return;
    }
    double const reciprocal = 1 / squares;
    for (int i = 0; i < count; ++i)
    {
        out[i] = in[i] * reciprocal;
    }
}

double C3DMatrixMN::SumAbsVal(double * v, int count)
{
    double sum = 0;
    for (int i = 0; i < count; ++i)
    {
        sum += std::abs(v[i]);
    }
    return sum;
}
