#pragma once

/// \file
/// What the tests of C3DRotation3Tpl share: the held numbers as the memory has them, an object of each form, and one of
/// a form that does not exist.

#include "math/compact_rotation.h"
#include "math/rotation.h"
#include "math/rotation_conversions.h"
#include "support/random.h"
#include "transform/scalars.h"

#include <Eigen/Geometry>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <ostream>

namespace compact_rotation_test
{

using transform_test::Above;
using transform_test::Below;
using transform_test::k_Infinity;
using transform_test::k_Limit;
using transform_test::k_Nan;
using transform_test::k_Pi;
using transform_test::Scalars;

inline constexpr std::array<tagE3DROTORDER, 6> k_Orders = {E3DROTORDER_XYZ, E3DROTORDER_XZY, E3DROTORDER_YXZ,
                                                           E3DROTORDER_YZX, E3DROTORDER_ZXY, E3DROTORDER_ZYX};
inline constexpr std::array<E3DRotRep, 3> k_Forms = {E3DRotRep_Quat, E3DRotRep_Euler, E3DRotRep_AxisAngle};

/// An order and a form that do not exist.
inline constexpr auto k_NoOrder = static_cast<tagE3DROTORDER>(7);
inline constexpr auto k_NoForm = static_cast<E3DRotRep>(3);

/// Whether the numbers are one and the same: of the same sign where they are zero, or both NaNs.
template <typename T>
bool SameNumber(T a, T b)
{
    return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

/// The fields of a rotation. What the form does not have reads as zero.
template <typename T>
struct Fields
{
    int rep = 0;
    T values[3] = {};
    T scalar = 0;
    int order = 0;

    bool operator==(Fields const & other) const
    {
        return rep == other.rep && SameNumber(values[0], other.values[0]) && SameNumber(values[1], other.values[1]) &&
               SameNumber(values[2], other.values[2]) && SameNumber(scalar, other.scalar) && order == other.order;
    }
    friend std::ostream & operator<<(std::ostream & stream, Fields const & f)
    {
        return stream << "form " << f.rep << ": " << f.values[0] << ' ' << f.values[1] << ' ' << f.values[2] << ", "
                      << f.scalar << ", order " << f.order;
    }
};

template <typename T>
inline constexpr std::size_t k_RepOffset = 4 * sizeof(T);

/// Reads the memory, and so settles the order of the fields.
template <typename T>
Fields<T> FieldsOf(C3DRotation3Tpl<T> const & rotation)
{
    auto const * const bytes = reinterpret_cast<unsigned char const *>(&rotation);
    Fields<T> fields;
    std::memcpy(fields.values, bytes, sizeof fields.values);
    fields.rep = bytes[k_RepOffset<T>];
    if (fields.rep == E3DRotRep_Euler)
    {
        std::int32_t order = 0;
        std::memcpy(&order, bytes + sizeof fields.values, sizeof order);
        fields.order = order;
    }
    else
    {
        std::memcpy(&fields.scalar, bytes + sizeof fields.values, sizeof fields.scalar);
    }
    return fields;
}

template <typename T>
Fields<T> QuatFields(C3DQuatTpl<T> const & q)
{
    return {E3DRotRep_Quat, {q.X, q.Y, q.Z}, q.W, 0};
}
template <typename T>
Fields<T> EulerFields(C3DVector3Tpl<T> const & angles, tagE3DROTORDER order)
{
    return {E3DRotRep_Euler, {angles.X, angles.Y, angles.Z}, 0, order};
}
template <typename T>
Fields<T> AxisAngleFields(C3DVector3Tpl<T> const & axis, T angle)
{
    return {E3DRotRep_AxisAngle, {axis.X, axis.Y, axis.Z}, angle, 0};
}

/// The same numbers under a form that does not exist.
template <typename T>
C3DRotation3Tpl<T> WithUnknownForm(C3DRotation3Tpl<T> rotation, E3DRotRep rep = k_NoForm)
{
    unsigned char bytes[sizeof rotation];
    std::memcpy(bytes, &rotation, sizeof rotation);
    bytes[k_RepOffset<T>] = rep;
    std::memcpy(static_cast<void *>(&rotation), bytes, sizeof rotation);
    return rotation;
}

/// Numbers that no conversion would give: a quaternion and an axis that are not unit, angles beyond a turn.
template <typename T>
C3DRotation3Tpl<T> MakeQuat()
{
    return C3DRotation3Tpl<T>(C3DQuatTpl<T>(T(1.5), T(-0.5), T(2), T(0.25)));
}
template <typename T>
C3DRotation3Tpl<T> MakeEuler(tagE3DROTORDER order = E3DROTORDER_ZXY)
{
    return {T(0.5), T(-1), T(7), order};
}
template <typename T>
C3DRotation3Tpl<T> MakeAxisAngle()
{
    return {C3DVector3Tpl<T>(T(1), T(-2), T(3)), T(7.5)};
}
template <typename T>
std::array<C3DRotation3Tpl<T>, 3> MakeEach()
{
    return {MakeQuat<T>(), MakeEuler<T>(), MakeAxisAngle<T>()};
}

template <typename T>
C3DQuatTpl<T> QuatOf(C3DRotation3Tpl<T> const & rotation)
{
    C3DQuatTpl<T> quat;
    rotation.GetQuat(quat);
    return quat;
}

template <typename T>
bool SameNumbers(C3DQuatTpl<T> const & a, C3DQuatTpl<T> const & b)
{
    return SameNumber(a.W, b.W) && SameNumber(a.X, b.X) && SameNumber(a.Y, b.Y) && SameNumber(a.Z, b.Z);
}
template <typename T>
bool SameNumbers(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    return SameNumber(a.X, b.X) && SameNumber(a.Y, b.Y) && SameNumber(a.Z, b.Z);
}
template <typename T>
bool SameNumbers(C3DMatrix33Tpl<T> const & a, C3DMatrix33Tpl<T> const & b)
{
    for (int i = 0; i < 9; ++i)
    {
        if (!SameNumber(a.GetArray()[i], b.GetArray()[i]))
        {
            return false;
        }
    }
    return true;
}

/// The quaternion of an axis that may have any length.
template <typename T>
C3DQuatTpl<T> QuatOfAxis(C3DVector3Tpl<T> const & axis, T angle)
{
    T const length = axis.GetLength();
    C3DQuatTpl<T> quat;
    F3DAxisAngleToQuat(C3DVector3Tpl<T>(axis.X / length, axis.Y / length, axis.Z / length), angle, quat);
    return quat;
}

/// The rotation as the judge knows it.
template <typename T>
Eigen::Quaterniond JudgeOf(C3DQuatTpl<T> const & q)
{
    return Eigen::Quaterniond(static_cast<double>(q.W), static_cast<double>(q.X), static_cast<double>(q.Y),
                              static_cast<double>(q.Z))
        .normalized();
}
template <typename T>
Eigen::Quaterniond JudgeOf(C3DRotation3Tpl<T> const & rotation)
{
    return JudgeOf(QuatOf(rotation));
}

/// The angle of the rotation between the two, whatever the signs of the quaternions.
inline double Distance(Eigen::Quaterniond const & a, Eigen::Quaterniond const & b)
{
    return a.angularDistance(b);
}

/// What two rotations that are equal on paper may be apart.
template <typename T>
inline constexpr double k_Tolerance = 1e-7; // half an ulp of the cosine near 1
template <>
inline constexpr double k_Tolerance<float> = 3e-3;

/// A random rotation of each form, not normalised, with angles of up to half a turn.
template <typename T>
C3DRotation3Tpl<T> RandomRotation(test_support::Random & random, E3DRotRep form)
{
    auto const number = [&random](T limit) { return random.Uniform<T>(-limit, limit); };
    C3DVector3Tpl<T> const v(number(3), number(3), number(3));
    switch (form)
    {
    case E3DRotRep_Quat:
        return C3DRotation3Tpl<T>(C3DQuatTpl<T>(number(3), v.X, v.Y, v.Z));
    case E3DRotRep_Euler:
        return {v, k_Orders[static_cast<std::size_t>(random.Integer(0, 5))]};
    default:
        return {v, number(3)};
    }
}

} // namespace compact_rotation_test
