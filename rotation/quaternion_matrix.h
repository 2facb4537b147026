#pragma once

/// \file
/// Between a quaternion and its matrix, and to unit length: the bodies that the rotations share, for inlining.

#include "math/numeric.h"
#include "math/quaternion.h"
#include "math/rotation_matrix.h"

#include <cmath>

namespace math::detail
{

/// C3DQuatTpl::Normalize.
template <typename T>
inline void NormalizeQuaternion(C3DQuatTpl<T> & q)
{
    double const tolerance = k_StandardTolerance<double>;
    auto const squaredLength = static_cast<double>(q.GetSquaredLength());
    if (!(std::abs(squaredLength - 1) < tolerance))
    {
        if (!(squaredLength >= tolerance))
        {
            q.SetIdentity();
            return;
        }
        q.Mul(static_cast<T>(1 / std::sqrt(squaredLength)));
    }
    if (q.W < -1)
    {
        q.W = -1;
    }
    else if (q.W > 1)
    {
        q.W = 1;
    }
}

/// F3DMatToQuat. A root is taken of the greatest of the four numbers it can be taken of, which gives one component of
/// the quaternion, and that the other three. Which component it is is up to the data, and so is a sign: both are looked
/// up, as a branch on either would be a coin toss.
template <typename T>
inline C3DQuatTpl<T> QuaternionOfMatrix(C3DRotMatTpl<T> const & m)
{
    T const x = m.Get(0, 0);
    T const y = m.Get(1, 1);
    T const z = m.Get(2, 2);
    T const trace = m.GetTrace();
    // The greatest diagonal element competes with the trace, and not the trace with 0.
    static constexpr unsigned char k_GreatestAxis[8] = {0, 1, 2, 1, 0, 2, 2, 2};
    int const axis = k_GreatestAxis[int(y > x) | int(z > x) << 1 | int(z > y) << 2];
    int const found = (axis + 1) * int(m.Get(axis, axis) >= trace);

    T const squares[4] = {trace + 1, x + 1 - y - z, y + 1 - z - x, z + 1 - x - y};
    T const root = std::sqrt(squares[found]) * T(0.5);
    T const factor = T(0.25) / root;
    T const parts[7] = {root,
                        (m.Get(1, 2) - m.Get(2, 1)) * factor,
                        (m.Get(2, 0) - m.Get(0, 2)) * factor,
                        (m.Get(0, 1) - m.Get(1, 0)) * factor,
                        (m.Get(1, 2) + m.Get(2, 1)) * factor,
                        (m.Get(0, 2) + m.Get(2, 0)) * factor,
                        (m.Get(0, 1) + m.Get(1, 0)) * factor};
    // Where W, X, Y and Z stand among the parts, a row for each component that the root may be.
    static constexpr unsigned char k_Places[4][4] = {{0, 1, 2, 3}, {1, 0, 6, 5}, {2, 6, 0, 4}, {3, 5, 4, 0}};
    unsigned char const(&places)[4] = k_Places[found];
    static constexpr T k_Signs[2] = {1, -1};
    T const sign = k_Signs[int(parts[places[0]] < 0)];
    C3DQuatTpl<T> quat(parts[places[0]] * sign, parts[places[1]] * sign, parts[places[2]] * sign,
                       parts[places[3]] * sign);
    NormalizeQuaternion(quat);
    return quat;
}

/// F3DQuatToMat.
template <typename T>
inline void MatrixOfQuaternion(C3DQuatTpl<T> const & q, C3DRotMatTpl<T> & mat)
{
    T const x2 = 2 * q.X;
    T const y2 = 2 * q.Y;
    T const z2 = 2 * q.Z;
    T const xx = x2 * q.X;
    T const xy = x2 * q.Y;
    T const xz = x2 * q.Z;
    T const yy = y2 * q.Y;
    T const yz = y2 * q.Z;
    T const zz = z2 * q.Z;
    T const wx = x2 * q.W;
    T const wy = y2 * q.W;
    T const wz = z2 * q.W;
    mat.SetRow(0, 1 - yy - zz, xy + wz, xz - wy);
    mat.SetRow(1, xy - wz, 1 - xx - zz, yz + wx);
    mat.SetRow(2, xz + wy, yz - wx, 1 - xx - yy);
}

} // namespace math::detail
