#pragma once

/// \file
/// Vectors and transformations in tests of geometry: comparison, random ones, and their counterparts in Eigen.

#include "math/transformation_matrix.h"
#include "support/random.h"
#include "support/same_bits.h"

#include <Eigen/Dense>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace geometry_test
{

using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;
using test_support::Random;
using test_support::SameBits;

inline constexpr double k_Nan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double k_Infinity = std::numeric_limits<double>::infinity();

/// What an output holds before an operation that may leave it alone.
inline constexpr double k_Mark = -7001.125;

inline Vector MarkedVector()
{
    return {k_Mark, k_Mark - 1, k_Mark - 2};
}

inline double Below(double x)
{
    return std::nextafter(x, -k_Infinity);
}

inline double Above(double x)
{
    return std::nextafter(x, k_Infinity);
}

/// Equal as numbers, so that zeros of either sign are equal; a NaN is equal to a NaN alone, unlike in `==` of vectors.
inline bool SameNumber(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

inline testing::AssertionResult Same(Vector const & found, Vector const & expected)
{
    bool const isSame =
        SameNumber(found.X, expected.X) && SameNumber(found.Y, expected.Y) && SameNumber(found.Z, expected.Z);
    return (isSame ? testing::AssertionSuccess() : testing::AssertionFailure())
           << found << " where " << expected << " is expected";
}

/// Equal bits, so that zeros of different sign differ.
inline testing::AssertionResult HasBits(Vector const & found, Vector const & expected)
{
    return (SameBits(found, expected) ? testing::AssertionSuccess() : testing::AssertionFailure())
           << found << " where " << expected << " is expected bit for bit";
}

inline testing::AssertionResult IsNear(Vector const & found, Vector const & expected, double tolerance)
{
    bool const isNear = std::abs(found.X - expected.X) <= tolerance && std::abs(found.Y - expected.Y) <= tolerance &&
                        std::abs(found.Z - expected.Z) <= tolerance;
    return (isNear ? testing::AssertionSuccess() : testing::AssertionFailure())
           << found << " where " << expected << " is expected within " << tolerance;
}

inline Vector RandomVector(Random & random, double size)
{
    double const x = random.Uniform(-size, size);
    double const y = random.Uniform(-size, size);
    return {x, y, random.Uniform(-size, size)};
}

inline Eigen::Vector3d ToEigen(Vector const & v)
{
    return {v.X, v.Y, v.Z};
}

inline Vector FromEigen(Eigen::Vector3d const & v)
{
    return {v.x(), v.y(), v.z()};
}

/// An affine map of column vectors, x -> block x + translation.
struct AffineMap
{
    Eigen::Matrix3d block;
    Eigen::Vector3d translation;

    Vector operator()(Vector const & point) const { return FromEigen(block * ToEigen(point) + translation); }

    /// The same map for row vectors.
    Matrix ForRows() const
    {
        Eigen::Matrix3d const & b = block;
        Eigen::Vector3d const & t = translation;
        return {b(0, 0), b(1, 0), b(2, 0), 0, b(0, 1), b(1, 1), b(2, 1), 0, //
                b(0, 2), b(1, 2), b(2, 2), 0, t.x(),   t.y(),   t.z(),   1};
    }
};

/// With shear, and a mirror one time in two.
inline AffineMap RandomAffineMap(Random & random)
{
    AffineMap map;
    do
    {
        for (int i = 0; i < 9; ++i)
        {
            map.block(i / 3, i % 3) = random.Uniform(-2.0, 2.0);
        }
    } while (std::abs(map.block.determinant()) < 0.1);
    map.translation = ToEigen(RandomVector(random, 5));
    return map;
}

/// Row `row` has infinite entries; the rest is the identity. What has no component there must stay finite.
inline Matrix WithInfiniteRow(int row)
{
    Matrix matrix;
    matrix.SetIdentity();
    matrix.SetRow(row, k_Infinity, k_Infinity, -k_Infinity, 0);
    return matrix;
}

} // namespace geometry_test
