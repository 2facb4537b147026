#pragma once

/// \file
/// Matrices with sign bits, and what the tests of C3DXfoMatTpl compare them by.

#include "math/transformation_matrix.h"
#include "matrix/fixed_matrices.h"
#include "transform/transformation_inspector.h"

#include <Eigen/Geometry>

#include <algorithm>
#include <array>
#include <functional>
#include <initializer_list>
#include <ostream>
#include <vector>

namespace test_support
{

template <typename T>
inline constexpr int k_Size<C3DXfoMatTpl<T>> = 4;

} // namespace test_support

namespace transformation_matrix_test
{

using namespace test_support;

using Inside = math::detail::TransformationInspector;

inline constexpr unsigned k_X = 2;
inline constexpr unsigned k_Y = 4;
inline constexpr unsigned k_Z = 8;
inline constexpr unsigned k_AllAxes = 14;

/// Every set of negative axes.
inline constexpr unsigned k_SignBits[8] = {0, k_X, k_Y, k_X | k_Y, k_Z, k_X | k_Z, k_Y | k_Z, k_AllAxes};

/// What the five bits that are no one's can hold: they must not be cleared, and not be set.
inline constexpr unsigned k_OtherBits[3] = {0xF1, 0x00, 0xA1};

/// How many of the three bits are set, written out.
inline constexpr unsigned CountOf(unsigned bits)
{
    return ((bits & k_X) != 0 ? 1 : 0) + ((bits & k_Y) != 0 ? 1 : 0) + ((bits & k_Z) != 0 ? 1 : 0);
}

/// What a repair makes of the bits: an odd number of negative axes is right for a negative determinant alone.
inline constexpr unsigned Repaired(unsigned bits, bool isNegative)
{
    return (CountOf(bits) % 2 == 1) == isNegative ? bits : k_AllAxes - bits;
}

/// The sixteen elements row by row.
template <typename T>
using Numbers = std::array<T, 16>;

template <typename T>
Numbers<T> NumbersOf(C3DMatrix44Tpl<T> const & m)
{
    Numbers<T> numbers{};
    for (int i = 0; i < 16; ++i)
    {
        numbers[static_cast<std::size_t>(i)] = m.Get(i / 4, i % 4);
    }
    return numbers;
}

template <typename T>
std::array<T, 3> NumbersOf(C3DVector3Tpl<T> const & v)
{
    return {v.X, v.Y, v.Z};
}

template <typename T>
std::array<T, 4> NumbersOf(C3DVector4Tpl<T> const & v)
{
    return {v.X, v.Y, v.Z, v.W};
}

/// Equal numbers, or two NaNs.
template <typename T, std::size_t count>
testing::AssertionResult Same(std::array<T, count> const & a, std::array<T, count> const & b)
{
    for (std::size_t i = 0; i < count; ++i)
    {
        if (!(a[i] == b[i] || (std::isnan(a[i]) && std::isnan(b[i]))))
        {
            return testing::AssertionFailure() << "number " << i << " is " << a[i] << " and not " << b[i];
        }
    }
    return testing::AssertionSuccess();
}

/// A matrix of these elements whose whole mask byte is given.
template <typename T>
C3DXfoMatTpl<T> Make(Numbers<T> const & numbers, unsigned byte)
{
    C3DXfoMatTpl<T> m;
    for (int i = 0; i < 16; ++i)
    {
        m.Set(i / 4, i % 4, numbers[static_cast<std::size_t>(i)]);
    }
    m.SetMaskInfo(static_cast<unsigned char>(byte));
    return m;
}

/// The elements and the whole mask byte.
template <typename T>
testing::AssertionResult Holds(C3DXfoMatTpl<T> const & m, Numbers<T> const & numbers, unsigned byte)
{
    if (m.GetMaskInfo() != byte)
    {
        return testing::AssertionFailure() << "the byte is " << unsigned(m.GetMaskInfo()) << " and not " << byte;
    }
    return Same(NumbersOf(m), numbers);
}

/// No element is like another; the determinants are 1133, and 351 of the upper block.
template <typename T>
inline constexpr Numbers<T> k_Positive = {2, -1, 3, 5, 7, 11, -2, 4, 1, 6, 8, -3, 9, 10, -4, 12};

/// The same with the first row negated.
template <typename T>
inline constexpr Numbers<T> k_Negative = {-2, 1, -3, -5, 7, 11, -2, 4, 1, 6, 8, -3, 9, 10, -4, 12};

/// The first two rows are the same.
template <typename T>
inline constexpr Numbers<T> k_Singular = {2, -1, 3, 5, 2, -1, 3, 5, 1, 6, 8, -3, 9, 10, -4, 12};

/// The NaN stands outside the upper block: it is the full determinant that counts.
template <typename T>
inline constexpr Numbers<T> k_WithNan = {2, -1, 3, k_Nan<T>, 7, 11, -2, 4, 1, 6, 8, -3, 9, 10, -4, 12};

/// The upper block has a positive determinant, and the whole a negative one.
template <typename T>
inline constexpr Numbers<T> k_NegativeAsAWhole = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -1};

template <typename T>
inline constexpr Numbers<T> k_Identity = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

/// Elements with what their determinant makes of cleared bits.
template <typename T>
struct DeterminantCase
{
    char const * name;
    Numbers<T> numbers;
    bool isNegative;
};

template <typename T>
std::vector<DeterminantCase<T>> DeterminantCases()
{
    return {{"positive", k_Positive<T>, false},
            {"negative", k_Negative<T>, true},
            {"zero", k_Singular<T>, false},
            {"a NaN", k_WithNan<T>, true},
            {"negative outside the upper block", k_NegativeAsAWhole<T>, true},
            {"the identity", k_Identity<T>, false}};
}

/// Any nine numbers: whether a rotation is one is no one's test, and a transposed product shows.
template <typename T>
C3DRotMatTpl<T> NineNumbers()
{
    return {3, 1, -4, 1, 5, -9, 2, 6, 5};
}

/// A rotation of a random order of angles, in the type of the matrix.
template <typename T>
C3DRotMatTpl<T> RandomRotationMatrix(Random & random)
{
    Eigen::Quaterniond const q = Eigen::Quaterniond(random.Uniform(-1.0, 1.0), random.Uniform(-1.0, 1.0),
                                                    random.Uniform(-1.0, 1.0), random.Uniform(-1.0, 1.0))
                                     .normalized();
    Eigen::Matrix3d const m = q.toRotationMatrix();
    C3DRotMatTpl<T> r;
    for (int i = 0; i < 9; ++i)
    {
        r.Set(i / 3, i % 3, static_cast<T>(m(i / 3, i % 3)));
    }
    return r;
}

} // namespace transformation_matrix_test
