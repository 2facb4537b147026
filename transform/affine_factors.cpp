#include "transform/affine_factors.h"

#include "math/numeric.h"
#include "math/rotation_conversions.h"
#include "matrix/singular_values.h"
#include "rotation/angle_constants.h"

#include <cmath>
#include <cstdlib>

namespace math::detail
{

namespace
{

template <typename T>
C3DRotMatTpl<T> Narrow(double const (&m)[3][3])
{
    return {static_cast<T>(m[0][0]), static_cast<T>(m[0][1]), static_cast<T>(m[0][2]),
            static_cast<T>(m[1][0]), static_cast<T>(m[1][1]), static_cast<T>(m[1][2]),
            static_cast<T>(m[2][0]), static_cast<T>(m[2][1]), static_cast<T>(m[2][2])};
}

C3DRotMatTpl<double> const & Widen(C3DRotMatTpl<double> const & m)
{
    return m;
}

C3DRotMatTpl<double> Widen(C3DRotMatTpl<float> const & m)
{
    C3DRotMatTpl<double> wide{C3DInitRequest_DoNotInitialize()};
    for (int i = 0; i < 9; ++i)
    {
        wide.GetArray()[i] = static_cast<double>(m.GetArray()[i]);
    }
    return wide;
}

template <typename T>
bool AreEqual(T a, T b)
{
    return std::abs(a - b) < k_StandardTolerance<T>;
}

/// The axis of the one positive factor beside two negative ones, or -1.
template <typename T>
int FindSinglePositive(C3DVector3Tpl<T> const & s)
{
    for (int k = 0; k < 3; ++k)
    {
        if (s.Get(k) > 0 && s.Get((k + 1) % 3) < 0 && s.Get((k + 2) % 3) < 0)
        {
            return k;
        }
    }
    return -1;
}

template <typename T>
bool IsHalfTurn(T angle)
{
    return std::abs(std::abs(static_cast<double>(angle)) - k_Pi) < k_WidenedTolerance<T>;
}

} // namespace

template <typename T>
T NarrowSingularValue(double w)
{
    if (std::abs(w) >= k_WidenedTolerance<T>)
    {
        return static_cast<T>(w);
    }
    return w >= 0 ? k_StandardTolerance<T> : -k_StandardTolerance<T>;
}

template <typename T>
void MakeProper(AffineFactors<T> & factors)
{
    auto const removeMirror = [&factors](C3DRotMatTpl<T> & matrix)
    {
        if (!(matrix.GetDet() >= 0))
        {
            matrix.Negate();
            factors.s.Negate();
        }
    };
    removeMirror(factors.u);
    removeMirror(factors.v);
}

template <typename T>
void UnifyMixedSigns(AffineFactors<T> & factors)
{
    C3DVector3Tpl<T> & s = factors.s;
    C3DVector3Tpl<T> const magnitudes(std::abs(s.X), std::abs(s.Y), std::abs(s.Z));
    int const axis = FindSinglePositive(s);
    if (axis < 0 || !IsUniform(magnitudes))
    {
        return;
    }
    s = magnitudes;
    C3DRotMatTpl<T> halfTurn;
    F3DEulerToMat(C3DVector3Tpl<T>(axis, static_cast<T>(k_Pi)), halfTurn, E3DROTORDER_XYZ);
    factors.v.Mul(halfTurn, factors.v);
}

template <typename T>
bool IsUniform(C3DVector3Tpl<T> const & s)
{
    return AreEqual(s.X, s.Y) && AreEqual(s.Y, s.Z);
}

template <typename T>
void MoveHalfTurns(AffineFactors<T> & factors)
{
    // With a half-turn about Z, the first to go, this element vanishes: it is the sine of the angle times a cosine. The
    // wide limit leaves the decision to the angle, which is costly and seldom needed.
    if (std::abs(factors.u.Get(0, 1)) > 16 * k_StandardTolerance<T>)
    {
        return;
    }
    C3DVector3Tpl<double> angles;
    F3DMatToEuler(Widen(factors.u), angles, E3DROTORDER_XYZ);
    MoveHalfTurns(C3DVector3Tpl<T>(static_cast<T>(angles.X), static_cast<T>(angles.Y), static_cast<T>(angles.Z)),
                  factors);
}

template <typename T>
void MoveHalfTurns(C3DVector3Tpl<T> angles, AffineFactors<T> & factors)
{
    for (int k = 2; k >= 0 && IsHalfTurn(angles.Get(k)); --k)
    {
        factors.s.Negate();
        factors.s.Set(k, -factors.s.Get(k));
        angles.Set(k, 0);
        F3DEulerToMat(angles, factors.u, E3DROTORDER_XYZ);
    }
}

template <typename T>
AffineFactors<T> DecomposeAffine(double const (&a)[3][3])
{
    SingularValueDecomposition svd;
    DecomposeSingularValues(a, svd);
    AffineFactors<T> factors;
    factors.u = Narrow<T>(svd.u);
    factors.s.Set(NarrowSingularValue<T>(svd.w[0]), NarrowSingularValue<T>(svd.w[1]), NarrowSingularValue<T>(svd.w[2]));
    factors.v = Narrow<T>(svd.vt);
    MakeProper(factors);
    UnifyMixedSigns(factors);
    if (IsUniform(factors.s))
    {
        factors.v.Mul(factors.u, factors.v);
        factors.u.SetIdentity();
    }
    else
    {
        MoveHalfTurns(factors);
    }
    return factors;
}

template float NarrowSingularValue(double);
template double NarrowSingularValue(double);
template void MakeProper(AffineFactors<float> &);
template void MakeProper(AffineFactors<double> &);
template void UnifyMixedSigns(AffineFactors<float> &);
template void UnifyMixedSigns(AffineFactors<double> &);
template bool IsUniform(C3DVector3Tpl<float> const &);
template bool IsUniform(C3DVector3Tpl<double> const &);
template void MoveHalfTurns(AffineFactors<float> &);
template void MoveHalfTurns(AffineFactors<double> &);
template void MoveHalfTurns(C3DVector3Tpl<float>, AffineFactors<float> &);
template void MoveHalfTurns(C3DVector3Tpl<double>, AffineFactors<double> &);
template AffineFactors<float> DecomposeAffine(double const (&)[3][3]);
template AffineFactors<double> DecomposeAffine(double const (&)[3][3]);

} // namespace math::detail
