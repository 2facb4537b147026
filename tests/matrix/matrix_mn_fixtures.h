#pragma once

/// \file
/// What the tests of the matrix of any size share.

#include "math/matrix_mn.h"
#include "support/random.h"

#include <Eigen/Core>
#include <gtest/gtest.h>

#include <initializer_list>

namespace test_support
{

using Rows = std::initializer_list<std::initializer_list<double>>;

inline C3DMatrixMN MakeMN(Rows rows)
{
    C3DMatrixMN m;
    m.SetDimensions(static_cast<int>(rows.size()), static_cast<int>(rows.begin()->size()));
    int r = 0;
    for (auto const & row : rows)
    {
        int c = 0;
        for (double const element : row)
        {
            m.Set(r, c++, element);
        }
        ++r;
    }
    return m;
}

inline C3DMatrixMN MakeMN(Eigen::MatrixXd const & source)
{
    C3DMatrixMN m;
    m.SetDimensions(static_cast<int>(source.rows()), static_cast<int>(source.cols()));
    for (int r = 0; r < m.GetNbRow(); ++r)
    {
        for (int c = 0; c < m.GetNbCol(); ++c)
        {
            m.Set(r, c, source(r, c));
        }
    }
    return m;
}

/// Of a size, with every element the same.
inline C3DMatrixMN FilledMN(int rows, int cols, double value)
{
    return MakeMN(Eigen::MatrixXd::Constant(rows, cols, value));
}

inline Eigen::MatrixXd ToEigen(C3DMatrixMN const & m)
{
    Eigen::MatrixXd result(m.GetNbRow(), m.GetNbCol());
    for (int r = 0; r < m.GetNbRow(); ++r)
    {
        for (int c = 0; c < m.GetNbCol(); ++c)
        {
            result(r, c) = m.Get(r, c);
        }
    }
    return result;
}

/// Same size and, element by element, the same value.
inline testing::AssertionResult SameElements(C3DMatrixMN const & m, C3DMatrixMN const & expected)
{
    if (m.GetNbRow() == expected.GetNbRow() && m.GetNbCol() == expected.GetNbCol() && ToEigen(m) == ToEigen(expected))
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << '\n' << ToEigen(m) << "\nis not\n" << ToEigen(expected);
}

inline Eigen::MatrixXd RandomElements(Random & random, int rows, int cols)
{
    return Eigen::MatrixXd::NullaryExpr(rows, cols, [&] { return random.Uniform(-1.0, 1.0); });
}

} // namespace test_support
