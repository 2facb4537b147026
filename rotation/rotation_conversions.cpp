#include "math/rotation_conversions.h"

#include "rotation/euler_extraction.h"
#include "rotation/euler_order.h"
#include "rotation/quaternion_matrix.h"

#include <cmath>

using math::detail::EulerOrder;
using math::detail::FindEulerOrder;
using math::detail::MatrixOfQuaternion;
using math::detail::QuaternionOfMatrix;

namespace
{

bool IsNonZero(double angle)
{
    return angle < 0 || angle > 0;
}

C3DVector3Tpl<double> Widen(C3DVector3Tpl<float> const & v)
{
    return {static_cast<double>(v.X), static_cast<double>(v.Y), static_cast<double>(v.Z)};
}

C3DQuatTpl<float> Narrow(C3DQuatTpl<double> const & q)
{
    return {static_cast<float>(q.W), static_cast<float>(q.X), static_cast<float>(q.Y), static_cast<float>(q.Z)};
}

/// The product Q(last) Q(middle) Q(first) of the elementary quaternions, expanded.
void MultiplyElementaryQuaternions(C3DVector3Tpl<double> const & angles, EulerOrder const & order,
                                   C3DQuatTpl<double> & quat)
{
    double const half0 = angles.Get(order.first) * 0.5;
    double const half1 = angles.Get(order.middle) * 0.5;
    double const half2 = angles.Get(order.last) * 0.5;
    double const c0 = std::cos(half0);
    double const s0 = std::sin(half0);
    double const c1 = std::cos(half1);
    double const s1 = std::sin(half1);
    double const c2 = std::cos(half2);
    double const s2 = std::sin(half2);
    double const p = order.even ? 1 : -1;
    double vector[3] = {};
    vector[order.first] = c1 * s0 * c2 - p * (s1 * c0 * s2);
    vector[order.middle] = s1 * c0 * c2 + p * (c1 * s0 * s2);
    vector[order.last] = c1 * c0 * s2 - p * (s1 * s0 * c2);
    quat.Set(c1 * c0 * c2 + p * (s1 * s0 * s2), vector[0], vector[1], vector[2]);
}

/// The extraction on elements and angles of either precision, computed in `double`.
template <typename T>
void ExtractUsingTarget(C3DMatrix33Tpl<T> const & mat, C3DVector3Tpl<T> & angles, tagE3DROTORDER order,
                        math::detail::EulerExtractionLimits const & limits)
{
    EulerOrder const * const row = FindEulerOrder(order);
    if (row == nullptr)
    {
        return;
    }
    double elements[3][3];
    for (int r = 0; r < 3; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            elements[r][c] = static_cast<double>(mat.Get(r, c));
        }
    }
    C3DVector3Tpl<double> wide(static_cast<double>(angles.X), static_cast<double>(angles.Y),
                               static_cast<double>(angles.Z));
    math::detail::ExtractEulerAngles(elements, *row, limits, wide);
    angles.Set(static_cast<T>(wide.X), static_cast<T>(wide.Y), static_cast<T>(wide.Z));
}

template <typename T>
void QuatToAxisAngle(C3DQuatTpl<T> const & quat, C3DVector3Tpl<T> & axis, T & angle)
{
    angle = 2 * std::acos(quat.W);
    T const sine = std::sin(angle * T(0.5));
    if (std::abs(sine) >= math::detail::k_StandardTolerance<T>)
    {
        axis.Set(quat.X / sine, quat.Y / sine, quat.Z / sine);
    }
    else
    {
        axis.SetNull();
    }
}

} // namespace

void F3DEulerToQuat(C3DVector3Tpl<double> const & angles, C3DQuatTpl<double> & quat, tagE3DROTORDER order)
{
    bool const x = IsNonZero(angles.X);
    bool const y = IsNonZero(angles.Y);
    bool const z = IsNonZero(angles.Z);
    int const nonZero = int(x) + int(y) + int(z);
    if (nonZero == 0)
    {
        quat.SetIdentity();
        return;
    }
    if (nonZero == 1)
    {
        double const half = (x ? angles.X : (y ? angles.Y : angles.Z)) * 0.5;
        double const sine = std::sin(half);
        quat.Set(std::cos(half), x ? sine : 0, y ? sine : 0, z ? sine : 0);
        return;
    }
    if (EulerOrder const * const row = FindEulerOrder(order))
    {
        MultiplyElementaryQuaternions(angles, *row, quat);
    }
    quat.Normalize();
}

void F3DEulerToQuat(C3DVector3Tpl<float> const & angles, C3DQuatTpl<float> & quat, tagE3DROTORDER order)
{
    C3DQuatTpl<double> wide;
    F3DEulerToQuat(Widen(angles), wide, order);
    quat = Narrow(wide);
}

void F3DEulerToQuatf(C3DVector3Tpl<float> const & angles, C3DQuatTpl<float> & quat, tagE3DROTORDER order)
{
    F3DEulerToQuat(angles, quat, order);
}

void F3DEulerToMat(C3DVector3Tpl<double> const & angles, C3DRotMatTpl<double> & mat, tagE3DROTORDER order)
{
    EulerOrder const * const row = FindEulerOrder(order);
    if (row == nullptr)
    {
        return;
    }
    auto const [a0, a1, a2, even] = *row;
    double const p = even ? 1 : -1;
    double const angle0 = angles.Get(a0);
    double const angle1 = angles.Get(a1);
    double const angle2 = angles.Get(a2);
    double const c0 = std::cos(angle0);
    double const s0 = std::sin(angle0);
    double const c1 = std::cos(angle1);
    double const s1 = std::sin(angle1);
    double const c2 = std::cos(angle2);
    double const s2 = std::sin(angle2);
    mat.Set(a0, a0, c1 * c2).Set(a0, a1, p * (c1 * s2)).Set(a0, a2, -p * s1);
    mat.Set(a1, a0, s0 * s1 * c2 - p * (c0 * s2)).Set(a1, a1, p * (s0 * s1 * s2) + c0 * c2).Set(a1, a2, p * (s0 * c1));
    mat.Set(a2, a0, p * (c0 * s1 * c2) + s0 * s2).Set(a2, a1, c0 * s1 * s2 - p * (s0 * c2)).Set(a2, a2, c0 * c1);
}

void F3DEulerToMat(C3DVector3Tpl<float> const & angles, C3DRotMatTpl<float> & mat, tagE3DROTORDER order)
{
    C3DRotMatTpl<double> wide;
    F3DEulerToMat(Widen(angles), wide, order);
    for (int r = 0; r < 3; ++r)
    {
        mat.SetRow(r, static_cast<float>(wide.Get(r, 0)), static_cast<float>(wide.Get(r, 1)),
                   static_cast<float>(wide.Get(r, 2)));
    }
}

void F3DQuatToMat(C3DQuatTpl<double> const & quat, C3DRotMatTpl<double> & mat)
{
    MatrixOfQuaternion(quat, mat);
}

void F3DQuatToMat(C3DQuatTpl<float> const & quat, C3DRotMatTpl<float> & mat)
{
    MatrixOfQuaternion(quat, mat);
}

void F3DQuatToMatf(C3DQuatTpl<float> const & quat, C3DRotMatTpl<float> & mat)
{
    MatrixOfQuaternion(quat, mat);
}

void F3DMatToQuat(C3DRotMatTpl<double> const & mat, C3DQuatTpl<double> & quat)
{
    quat = QuaternionOfMatrix(mat);
}

void F3DMatToQuat(C3DRotMatTpl<float> const & mat, C3DQuatTpl<float> & quat)
{
    quat = QuaternionOfMatrix(mat);
}

void F3DMatToEuler(C3DMatrix33Tpl<double> const & mat, C3DVector3Tpl<double> & angles, tagE3DROTORDER order)
{
    F3DMatToEulerUsingTarget(mat, angles.SetNull(), order);
}

void F3DMatToEuler(C3DMatrix33Tpl<float> const & mat, C3DVector3Tpl<float> & angles, tagE3DROTORDER order)
{
    F3DMatToEulerUsingTarget(mat, angles.SetNull(), order);
}

void F3DMatToEulerUsingTarget(C3DMatrix33Tpl<double> const & mat, C3DVector3Tpl<double> & angles, tagE3DROTORDER order)
{
    ExtractUsingTarget(mat, angles, order, math::detail::k_DoubleExtractionLimits);
}

void F3DMatToEulerUsingTarget(C3DMatrix33Tpl<float> const & mat, C3DVector3Tpl<float> & angles, tagE3DROTORDER order)
{
    ExtractUsingTarget(mat, angles, order, math::detail::k_FloatExtractionLimits);
}

void F3DQuatToEuler(C3DQuatTpl<double> const & quat, C3DVector3Tpl<double> & angles, tagE3DROTORDER order)
{
    C3DRotMatTpl<double> mat;
    F3DQuatToMat(quat, mat);
    F3DMatToEuler(mat, angles, order);
}

void F3DQuatToEuler(C3DQuatTpl<float> const & quat, C3DVector3Tpl<float> & angles, tagE3DROTORDER order)
{
    C3DRotMatTpl<float> mat;
    F3DQuatToMat(quat, mat);
    F3DMatToEuler(mat, angles, order);
}

void F3DQuatfToEuler(C3DQuatTpl<float> const & quat, C3DVector3Tpl<float> & angles, tagE3DROTORDER order)
{
    F3DQuatToEuler(quat, angles, order);
}

void F3DQuatToAxisAngle(C3DQuatTpl<double> const & quat, C3DVector3Tpl<double> & axis, double & angle)
{
    QuatToAxisAngle(quat, axis, angle);
}

void F3DQuatToAxisAngle(C3DQuatTpl<float> const & quat, C3DVector3Tpl<float> & axis, float & angle)
{
    QuatToAxisAngle(quat, axis, angle);
}

void F3DAxisAngleToQuat(C3DVector3Tpl<double> const & axis, double angle, C3DQuatTpl<double> & quat)
{
    double const half = angle * 0.5;
    double const length = axis.GetLength();
    double const factor = length > math::detail::k_StandardTolerance<double> ? std::sin(half) / length : 1;
    quat.Set(std::cos(half), axis.X * factor, axis.Y * factor, axis.Z * factor);
}

void F3DAxisAngleToQuat(C3DVector3Tpl<float> const & axis, float angle, C3DQuatTpl<float> & quat)
{
    C3DQuatTpl<double> wide;
    F3DAxisAngleToQuat(Widen(axis), static_cast<double>(angle), wide);
    quat = Narrow(wide);
}

void F3DAxisAngleToQuatf(C3DVector3Tpl<float> const & axis, float angle, C3DQuatTpl<float> & quat)
{
    F3DAxisAngleToQuat(axis, angle, quat);
}
