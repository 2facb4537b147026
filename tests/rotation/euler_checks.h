#pragma once

/// \file
/// What the tests of the rotation conversions share: the tables of the Euler orders written out once more, as the judge
/// of the one from which the library works, and elementary rotations by Eigen.

#include "math/rotation_conversions.h"
#include "math/rotation_matrix.h"

#include <Eigen/Geometry>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <ostream>

namespace test_support
{

using Scalars = testing::Types<float, double>;
using Vector = C3DVector3Tpl<double>;
using Vectorf = C3DVector3Tpl<float>;
using RotMat = C3DRotMatTpl<double>;
using RotMatf = C3DRotMatTpl<float>;
using Quat = C3DQuatTpl<double>;
using Quatf = C3DQuatTpl<float>;

inline constexpr double k_Pi = 3.141592653589793;
inline constexpr double k_HalfPi = 1.5707963267948966;
inline constexpr double k_TwoPi = 6.283185307179586;
template <typename T>
inline constexpr T k_Nan = std::numeric_limits<T>::quiet_NaN();
template <typename T>
inline constexpr T k_Infinity = std::numeric_limits<T>::infinity();

/// One order: the axes as they act, the sign with which the corner element is the sine of the middle angle, and the
/// elements that hold sine and cosine of the free angle in gimbal lock.
struct OrderRow
{
    tagE3DROTORDER order;
    char const * name;
    int a0;
    int a1;
    int a2;
    int sign;
    bool even;
    int sineRow;
    int sineColumn;
    int cosineRow;
    int cosineColumn;
};

inline std::ostream & operator<<(std::ostream & stream, OrderRow const & row)
{
    return stream << row.name;
}

inline constexpr std::array<OrderRow, 6> k_OrderTable = {{
    {E3DROTORDER_XYZ, "XYZ", 0, 1, 2, -1, true, 1, 0, 1, 1},
    {E3DROTORDER_XZY, "XZY", 0, 2, 1, +1, false, 1, 2, 2, 2},
    {E3DROTORDER_YXZ, "YXZ", 1, 0, 2, +1, false, 2, 0, 0, 0},
    {E3DROTORDER_YZX, "YZX", 1, 2, 0, -1, true, 2, 1, 2, 2},
    {E3DROTORDER_ZXY, "ZXY", 2, 0, 1, -1, true, 0, 2, 0, 0},
    {E3DROTORDER_ZYX, "ZYX", 2, 1, 0, +1, false, 0, 1, 1, 1},
}};

/// Values that name no order.
inline constexpr std::array<tagE3DROTORDER, 4> k_NoOrders = {
    static_cast<tagE3DROTORDER>(-1), static_cast<tagE3DROTORDER>(6), static_cast<tagE3DROTORDER>(1 << 30),
    static_cast<tagE3DROTORDER>(std::numeric_limits<int>::min())};

inline std::string NameOfOrder(testing::TestParamInfo<OrderRow> const & info)
{
    return info.param.name;
}

/// A triple from the angles as they act.
inline Vector Acting(OrderRow const & row, double first, double middle, double last)
{
    Vector v;
    v.Set(row.a0, first);
    v.Set(row.a1, middle);
    v.Set(row.a2, last);
    return v;
}

inline Vector Degrees(double x, double y, double z)
{
    return {x * k_Pi / 180, y * k_Pi / 180, z * k_Pi / 180};
}

template <typename T>
C3DVector3Tpl<T> MakeVector(double x, double y, double z)
{
    return {static_cast<T>(x), static_cast<T>(y), static_cast<T>(z)};
}

inline Eigen::Quaterniond ElementaryQuaternion(int axis, double angle)
{
    return Eigen::Quaterniond(Eigen::AngleAxisd(angle, Eigen::Vector3d::Unit(axis)));
}

/// The elementary matrix for row vectors, which is the transpose of the judge's.
inline Eigen::Matrix3d ElementaryMatrix(int axis, double angle)
{
    return Eigen::AngleAxisd(angle, Eigen::Vector3d::Unit(axis)).toRotationMatrix().transpose();
}

inline Eigen::Matrix3d ProductMatrix(OrderRow const & row, Vector const & angles)
{
    return ElementaryMatrix(row.a0, angles.Get(row.a0)) * ElementaryMatrix(row.a1, angles.Get(row.a1)) *
           ElementaryMatrix(row.a2, angles.Get(row.a2));
}

inline Eigen::Quaterniond ProductQuaternion(OrderRow const & row, Vector const & angles)
{
    return ElementaryQuaternion(row.a2, angles.Get(row.a2)) * ElementaryQuaternion(row.a1, angles.Get(row.a1)) *
           ElementaryQuaternion(row.a0, angles.Get(row.a0));
}

template <typename T>
Eigen::Matrix3d ToJudge(C3DMatrix33Tpl<T> const & m)
{
    Eigen::Matrix3d result;
    for (int r = 0; r < 3; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            result(r, c) = static_cast<double>(m.Get(r, c));
        }
    }
    return result;
}

template <typename T>
Eigen::Quaterniond ToJudge(C3DQuatTpl<T> const & q)
{
    return {static_cast<double>(q.W), static_cast<double>(q.X), static_cast<double>(q.Y), static_cast<double>(q.Z)};
}

inline double MaxDifference(Eigen::Matrix3d const & a, Eigen::Matrix3d const & b)
{
    return (a - b).cwiseAbs().maxCoeff();
}

inline double MaxDifference(Eigen::Quaterniond const & a, Eigen::Quaterniond const & b)
{
    return (a.coeffs() - b.coeffs()).cwiseAbs().maxCoeff();
}

inline double MaxDifference(RotMat const & a, RotMat const & b)
{
    double worst = 0;
    for (int i = 0; i < 9; ++i)
    {
        worst = std::max(worst, std::abs(a.Get(i / 3, i % 3) - b.Get(i / 3, i % 3)));
    }
    return worst;
}

template <typename T>
double MaxDifference(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    return static_cast<double>(std::max({std::abs(a.X - b.X), std::abs(a.Y - b.Y), std::abs(a.Z - b.Z)}));
}

/// The angle on the circle, in [-pi, pi].
inline double Wrapped(double angle)
{
    return std::remainder(angle, k_TwoPi);
}

inline RotMat Matrix(OrderRow const & row, Vector const & angles)
{
    RotMat mat;
    F3DEulerToMat(angles, mat, row.order);
    return mat;
}

inline Vector Extract(OrderRow const & row, RotMat const & mat, Vector const & target)
{
    Vector angles = target;
    F3DMatToEulerUsingTarget(mat, angles, row.order);
    return angles;
}

template <typename T>
testing::AssertionResult AreEqual(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    if (a.X == b.X && a.Y == b.Y && a.Z == b.Z)
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << a.X << ' ' << a.Y << ' ' << a.Z << " is not " << b.X << ' ' << b.Y << ' '
                                       << b.Z;
}

/// By ==, so that a NaN is never equal.
template <typename T>
testing::AssertionResult HasComponents(C3DQuatTpl<T> const & q, T w, T x, T y, T z)
{
    if (q.W == w && q.X == x && q.Y == y && q.Z == z)
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << q.W << ' ' << q.X << ' ' << q.Y << ' ' << q.Z << " is not " << w << ' ' << x
                                       << ' ' << y << ' ' << z;
}

template <typename T>
testing::AssertionResult IsAllNan(C3DVector3Tpl<T> const & v)
{
    if (std::isnan(v.X) && std::isnan(v.Y) && std::isnan(v.Z))
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << v.X << ' ' << v.Y << ' ' << v.Z;
}

/// By ==, element by element.
template <typename T>
testing::AssertionResult HasElements(C3DMatrix33Tpl<T> const & m, std::array<T, 9> const & elements)
{
    for (int i = 0; i < 9; ++i)
    {
        if (!(m.Get(i / 3, i % 3) == elements[static_cast<std::size_t>(i)]))
        {
            return testing::AssertionFailure() << "element " << i << " of\n" << ToJudge(m);
        }
    }
    return testing::AssertionSuccess();
}

} // namespace test_support
