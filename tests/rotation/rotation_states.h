#pragma once

/// \file
/// Rotations in every state of their caches, and what the tests of C3DRotation compare them by.

#include "math/rotation.h"
#include "math/rotation_conversions.h"
#include "rotation/rotation_inspector.h"
#include "support/random.h"

#include <Eigen/Geometry>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace rotation_test
{

using Quat = C3DQuatTpl<double>;
using Matrix = C3DRotMatTpl<double>;
using Vector = C3DVector3Tpl<double>;
using Inside = math::detail::RotationInspector;

inline constexpr double k_Nan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double k_Infinity = std::numeric_limits<double>::infinity();
inline constexpr double k_Pi = 3.141592653589793;
inline constexpr double k_HalfPi = 1.5707963267948966;
inline constexpr double k_TwoPi = 6.283185307179586;

inline constexpr tagE3DROTORDER k_Orders[6] = {E3DROTORDER_XYZ, E3DROTORDER_XZY, E3DROTORDER_YXZ,
                                               E3DROTORDER_YZX, E3DROTORDER_ZXY, E3DROTORDER_ZYX};

/// An order that does not exist.
inline constexpr auto k_NoOrder = static_cast<tagE3DROTORDER>(7);

// The bits of the flags. The source of truth is a number in the lowest two.
inline constexpr unsigned k_FromQuat = 0;
inline constexpr unsigned k_FromMatrix = 1;
inline constexpr unsigned k_FromAngles = 2;
inline constexpr unsigned k_Source = 3;
inline constexpr unsigned k_QuatDirty = 4;
inline constexpr unsigned k_MatDirty = 8;
inline constexpr unsigned k_AnglesDirty = 16;
inline constexpr unsigned k_Marked = 32;

/// The state that each setter leaves: its form is the source, and the others are stale.
inline constexpr unsigned k_QuatAlone = 24;
inline constexpr unsigned k_MatrixAlone = 21;
inline constexpr unsigned k_AnglesAlone = 14;
/// The identity as SetIdentity leaves it.
inline constexpr unsigned k_IdentityState = 56;
/// No form is valid.
inline constexpr unsigned k_Unset = 28;

/// Every state a rotation can be in without the mark of the identity: three sources, any other form stale or fresh.
/// With the mark there are the same again, plus 32.
inline constexpr unsigned k_States[12] = {24, 16, 8, 0, 21, 17, 5, 1, 14, 10, 6, 2};

inline std::array<double, 4> Elements(Quat const & q)
{
    return {q.W, q.X, q.Y, q.Z};
}
inline std::array<double, 3> Elements(Vector const & v)
{
    return {v.X, v.Y, v.Z};
}
inline std::array<double, 9> Elements(Matrix const & m)
{
    std::array<double, 9> elements{};
    std::copy_n(m.GetArray(), 9, elements.begin());
    return elements;
}

/// Whether every element has the same value. Unlike the classes' own comparison a NaN equals nothing.
template <typename Form>
bool Same(Form const & a, Form const & b)
{
    return Elements(a) == Elements(b);
}

template <typename Form>
bool IsNan(Form const & form)
{
    auto const elements = Elements(form);
    return std::all_of(elements.begin(), elements.end(), [](double e) { return std::isnan(e); });
}

template <typename Form>
double MaxDifference(Form const & a, Form const & b)
{
    double difference = 0;
    for (std::size_t i = 0; i < Elements(a).size(); ++i)
    {
        difference = std::fmax(difference, std::abs(Elements(a)[i] - Elements(b)[i]));
    }
    return difference;
}

inline Matrix MatrixOf(Vector const & angles, tagE3DROTORDER order)
{
    Matrix matrix;
    F3DEulerToMat(angles, matrix, order);
    return matrix;
}

inline Vector AnglesOf(Matrix const & matrix, tagE3DROTORDER order)
{
    Vector angles;
    F3DMatToEuler(matrix, angles, order);
    return angles;
}

inline Quat Normalized(Quat q)
{
    return q.Normalize();
}

/// The rotation as the judge knows it: Eigen's quaternions, for columns.
using Judge = Eigen::Quaterniond;

inline Judge JudgeOf(Quat const & q)
{
    return {q.W, q.X, q.Y, q.Z};
}

inline Judge JudgeOf(Matrix const & m)
{
    Eigen::Matrix3d transposed;
    for (int i = 0; i < 9; ++i)
    {
        transposed(i % 3, i / 3) = m.Get(i / 3, i % 3);
    }
    return Judge(transposed);
}

inline Judge JudgeOf(Vector const & angles, tagE3DROTORDER order)
{
    constexpr char const * letters[6] = {"XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX"};
    Judge result = Judge::Identity();
    for (char const * letter = letters[order]; *letter != 0; ++letter)
    {
        int const axis = *letter - 'X';
        result = Judge(Eigen::AngleAxisd(angles.Get(axis), Eigen::Vector3d::Unit(axis))) * result;
    }
    return result;
}

/// How far apart two unit quaternions are as rotations: their sign is no matter.
inline double Distance(Judge const & a, Judge const & b)
{
    return std::min((a.coeffs() - b.coeffs()).norm(), (a.coeffs() + b.coeffs()).norm());
}

/// A rotation in a given state. Its fresh forms agree with the angles and its stale ones hold NaNs; the angle that goes
/// with the quaternion is two turns more than need be, as only a caller can have set it. With the mark all is identity.
inline C3DRotation MakeState(unsigned flags, Vector const & angles = Vector(0.3, -0.5, 0.7),
                             tagE3DROTORDER order = E3DROTORDER_ZXY)
{
    C3DRotation rotation;
    Inside inside(rotation);
    inside.SetOrder(order);
    inside.Quat().SetIdentity();
    inside.Matrix().SetIdentity();
    inside.Angles().SetNull();
    inside.Angle() = 0;
    if ((flags & k_Marked) == 0)
    {
        inside.Angles() = angles;
        F3DEulerToQuat(angles, inside.Quat(), order);
        F3DEulerToMat(angles, inside.Matrix(), order);
        inside.Angle() = 2 * std::acos(inside.Quat().W) + 2 * k_TwoPi;
    }
    inside.SetFlags(flags);
    inside.FillStale();
    return rotation;
}

/// Whether the fresh forms of a rotation all are this one, and its source of truth is fresh.
inline testing::AssertionResult FreshFormsAre(C3DRotation & rotation, Judge const & expected, double tolerance = 1e-12)
{
    Inside const inside(rotation);
    unsigned const flags = inside.Flags();
    constexpr unsigned dirtyOfSource[3] = {k_QuatDirty, k_MatDirty, k_AnglesDirty};
    if ((flags & k_Source) == k_Source || (flags & dirtyOfSource[flags & k_Source]) != 0)
    {
        return testing::AssertionFailure() << "the source is stale, flags " << flags;
    }
    Inside forms(rotation);
    double const quat = (flags & k_QuatDirty) != 0 ? 0 : Distance(JudgeOf(forms.Quat()), expected);
    double const matrix = (flags & k_MatDirty) != 0 ? 0 : Distance(JudgeOf(forms.Matrix()), expected);
    double const angles =
        (flags & k_AnglesDirty) != 0 ? 0 : Distance(JudgeOf(forms.Angles(), k_Orders[inside.Order()]), expected);
    if (quat <= tolerance && matrix <= tolerance && angles <= tolerance)
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "flags " << flags << ", off by " << quat << " in the quaternion, " << matrix
                                       << " in the matrix, " << angles << " in the angles";
}

/// Whether two rotations have the same flags and order, and the same fresh forms to the last bit.
inline testing::AssertionResult SameState(C3DRotation & a, C3DRotation & b)
{
    Inside first(a);
    Inside second(b);
    if (first.Flags() != second.Flags() || first.Order() != second.Order())
    {
        return testing::AssertionFailure() << "flags " << first.Flags() << " and " << second.Flags() << ", orders "
                                           << first.Order() << " and " << second.Order();
    }
    unsigned const flags = first.Flags();
    bool const quat =
        (flags & k_QuatDirty) != 0 || (Same(first.Quat(), second.Quat()) && first.Angle() == second.Angle());
    bool const matrix = (flags & k_MatDirty) != 0 || Same(first.Matrix(), second.Matrix());
    bool const angles = (flags & k_AnglesDirty) != 0 || Same(first.Angles(), second.Angles());
    if (quat && matrix && angles)
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "flags " << flags << ", same quaternion: " << quat << ", matrix: " << matrix
                                       << ", angles: " << angles;
}

/// The angle that goes with a quaternion unless a caller gave one.
inline double AngleOf(Quat const & q)
{
    return 2 * std::acos(q.W);
}

/// A rotation of a random kind, set in a random form, in a random order, and sometimes with more forms fresh.
inline C3DRotation RandomRotation(test_support::Random & random, double turns = 1)
{
    Vector const v(random.Uniform(-turns, turns) * k_Pi, random.Uniform(-turns, turns) * k_Pi,
                   random.Uniform(-turns, turns) * k_Pi);
    tagE3DROTORDER const order = k_Orders[random.Integer(0, 5)];
    C3DRotation rotation(v, order);
    int const kind = random.Integer(0, 3);
    if (kind == 0)
    {
        rotation.Set(MatrixOf(v, order));
    }
    else if (kind == 1)
    {
        rotation.Set(Quat(v.X, v.Y, v.Z, random.Uniform(-1.0, 1.0)));
    }
    else if (kind == 2)
    {
        rotation.Set(v, random.Uniform(-turns, turns) * k_Pi);
    }
    Inside inside(rotation);
    int const more = random.Integer(0, 7);
    if ((more & 1) != 0 && inside.IsMatDirty() != 0)
    {
        inside.UpdateMatrix();
    }
    if ((more & 2) != 0 && inside.IsQuatDirty() != 0)
    {
        inside.UpdateQuat();
    }
    inside.FillStale();
    return rotation;
}

} // namespace rotation_test
