#pragma once

/// \file
/// What the tests of the fixed matrices share.

#include "math/matrix33.h"
#include "math/matrix44.h"
#include "support/random.h"

#include <Eigen/Core>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace test_support
{

using Scalars = testing::Types<float, double>;

template <typename T>
inline constexpr T k_Nan = std::numeric_limits<T>::quiet_NaN();
template <typename T>
inline constexpr T k_Infinity = std::numeric_limits<T>::infinity();

template <typename T>
inline constexpr int k_Size = 0;
template <typename T>
inline constexpr int k_Size<C3DMatrix33Tpl<T>> = 3;
template <typename T>
inline constexpr int k_Size<C3DMatrix44Tpl<T>> = 4;

/// 1, 2, 3, ... row by row: no two elements are alike, so that an exchanged index shows.
template <typename Matrix>
Matrix CountingMatrix()
{
    Matrix m;
    for (int i = 0; i < k_Size<Matrix> * k_Size<Matrix>; ++i)
    {
        m.Set(i / k_Size<Matrix>, i % k_Size<Matrix>, static_cast<decltype(m.Get(0, 0))>(i + 1));
    }
    return m;
}

template <typename Matrix>
Matrix IdentityMatrix()
{
    return Matrix().SetIdentity();
}

/// Elements evenly from -limit to limit.
template <typename Matrix, typename T = decltype(std::declval<Matrix>().Get(0, 0))>
Matrix RandomMatrix(Random & random, T limit = T(1))
{
    Matrix m;
    for (int r = 0; r < k_Size<Matrix>; ++r)
    {
        for (int c = 0; c < k_Size<Matrix>; ++c)
        {
            m.Set(r, c, random.Uniform<T>(-limit, limit));
        }
    }
    return m;
}

template <typename Matrix>
using EigenMatrix = Eigen::Matrix<double, k_Size<Matrix>, k_Size<Matrix>>;

/// The matrix as the judge knows it, widened.
template <typename Matrix>
EigenMatrix<Matrix> ToEigen(Matrix const & m)
{
    EigenMatrix<Matrix> result;
    for (int r = 0; r < k_Size<Matrix>; ++r)
    {
        for (int c = 0; c < k_Size<Matrix>; ++c)
        {
            result(r, c) = static_cast<double>(m.Get(r, c));
        }
    }
    return result;
}

/// Bit for bit: tells negative zero from zero, and a NaN equals itself.
template <typename Matrix>
testing::AssertionResult SameBits(Matrix const & a, Matrix const & b)
{
    std::size_t const size = sizeof(a.Get(0, 0)) * k_Size<Matrix> * k_Size<Matrix>;
    if (std::memcmp(a.GetArray(), b.GetArray(), size) == 0)
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << ToEigen(a) << "\nis not\n" << ToEigen(b);
}

/// No element differs by more than `limit`; a NaN differs.
template <typename Derived, typename OtherDerived>
testing::AssertionResult AreClose(Eigen::MatrixBase<Derived> const & a, Eigen::MatrixBase<OtherDerived> const & b,
                                  double limit)
{
    if (((a - b).array().abs() <= limit).all())
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << a << "\nis farther than " << limit << " from\n" << b;
}

/// An object constructed on memory of one byte value, to see what its constructor writes. The compiler is kept from
/// assuming anything of the memory before and after.
template <typename Object>
class ConstructedOver
{
public:
    template <typename... Arguments>
    explicit ConstructedOver(unsigned char byte, Arguments &&... arguments)
    {
        std::memset(m_Memory, byte, sizeof m_Memory);
        Forget();
        m_Object = new (m_Memory) Object(std::forward<Arguments>(arguments)...);
        Forget();
    }
    ConstructedOver(ConstructedOver const &) = delete;
    ConstructedOver & operator=(ConstructedOver const &) = delete;
    ~ConstructedOver() { m_Object->~Object(); }

    Object & Get() { return *m_Object; }
    unsigned char GetByte(std::size_t i) const { return m_Memory[i]; }

private:
    void Forget() { asm volatile("" : : "r"(m_Memory) : "memory"); }

    alignas(Object) unsigned char m_Memory[sizeof(Object)];
    Object * m_Object;
};

} // namespace test_support
