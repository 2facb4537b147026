#include "math/compact_rotation.h"
#include "math/rotation.h"
#include "math/transformation_matrix.h"
#include "transform/affine_factors.h"

#include <cstddef>

using namespace math::detail;

namespace
{

C3DRotation & SetRows(C3DRotation & rotation, C3DRotMatTpl<double> const & rows)
{
    return rotation.Set(rows);
}

C3DRotation & SetRows(C3DRotation & rotation, C3DRotMatTpl<float> const & rows)
{
    C3DRotMatTpl<double> wide{C3DInitRequest_DoNotInitialize()};
    for (int i = 0; i < 9; ++i)
    {
        wide.GetArray()[i] = static_cast<double>(rows.GetArray()[i]);
    }
    return rotation.Set(wide);
}

template <typename T>
C3DRotation3Tpl<T> & SetRows(C3DRotation3Tpl<T> & rotation, C3DRotMatTpl<T> const & rows)
{
    T const * const a = rows.GetArray();
    return rotation.Set(C3DVector3Tpl<T>(a), C3DVector3Tpl<T>(a + 3), C3DVector3Tpl<T>(a + 6));
}

/// The length of the first three elements of a row, kept away from zero; a NaN counts as too short.
template <typename T>
T ScaleOfRow(T const * row)
{
    T const length = C3DVector3Tpl<T>(row).GetLength();
    return length >= k_StandardTolerance<T> ? length : k_StandardTolerance<T>;
}

/// The rows of the upper block, divided by their scale.
template <typename T>
C3DRotMatTpl<T> Unscale(C3DMatrix44Tpl<T> const & m, C3DVector3Tpl<T> const & scaling)
{
    C3DRotMatTpl<T> rows{C3DInitRequest_DoNotInitialize()};
    for (int r = 0; r < 3; ++r)
    {
        T const factor = 1 / scaling.Get(r);
        rows.SetRow(r, m.Get(r, 0) * factor, m.Get(r, 1) * factor, m.Get(r, 2) * factor);
    }
    return rows;
}

} // namespace

template <typename T>
C3DVector3Tpl<T> & C3DXfoMatTpl<T>::GetScaling(C3DVector3Tpl<T> & s) const
{
    // First of all the roots, for which everything else waits.
    T const x = ScaleOfRow(this->m_Elements[0]);
    T const y = ScaleOfRow(this->m_Elements[1]);
    T const z = ScaleOfRow(this->m_Elements[2]);
    // IsSclAxisNegative axis by axis would evaluate the determinant three times.
    unsigned const bits = GetSclSignBits() ^ (ValidateSclSignBits() != 0 ? 0U : k_SclSignMask);
    return s.Set((bits & 2U) != 0 ? -x : x, (bits & 4U) != 0 ? -y : y, (bits & 8U) != 0 ? -z : z);
}

template <typename T>
C3DRotMatTpl<T> & C3DXfoMatTpl<T>::GetRotation(C3DRotMatTpl<T> & r) const
{
    C3DVector3Tpl<T> s;
    return r = Unscale(*this, GetScaling(s));
}

template <typename T>
C3DRotation & C3DXfoMatTpl<T>::GetRotation(C3DRotation & r) const
{
    C3DVector3Tpl<T> s;
    return SetRows(r, Unscale(*this, GetScaling(s)));
}

template <typename T>
C3DRotation3Tpl<T> & C3DXfoMatTpl<T>::GetRotation(C3DRotation3Tpl<T> & r) const
{
    C3DVector3Tpl<T> s;
    return SetRows(r, Unscale(*this, GetScaling(s)));
}

template <typename T>
void C3DXfoMatTpl<T>::GetScalingAndRotation(C3DVector3Tpl<T> & s, C3DRotation & r) const
{
    SetRows(r, Unscale(*this, GetScaling(s)));
}

template <typename T>
void C3DXfoMatTpl<T>::GetScalingAndRotation(C3DVector3Tpl<T> & s, C3DRotation3Tpl<T> & r) const
{
    SetRows(r, Unscale(*this, GetScaling(s)));
}

template <typename T>
void C3DXfoMatTpl<T>::GetAffineDecomposition(C3DRotMatTpl<T> & scalingOrientation, C3DXfoMatTpl & remainder) const
{
    double block[3][3];
    for (int r = 0; r < 3; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            block[r][c] = static_cast<double>(this->m_Elements[r][c]);
        }
    }
    C3DVector3Tpl<T> translation;
    GetTranslation(translation);
    AffineFactors<T> const factors = DecomposeAffine<T>(block);
    scalingOrientation = factors.u;
    // What SetScaling makes of the rotation, whose sign bits are known: none, unless it holds NaNs, which count as
    // mirrored.
    T const sign = factors.v.GetDet() >= 0 ? T(1) : T(-1);
    for (int r = 0; r < 3; ++r)
    {
        T const * const row = factors.v.GetArray() + 3 * static_cast<std::ptrdiff_t>(r);
        T const normalizing = sign / ScaleOfRow(row);
        T const scale = factors.s.Get(r);
        remainder.Base::SetRow(r, scale * (row[0] * normalizing), scale * (row[1] * normalizing),
                               scale * (row[2] * normalizing), 0);
    }
    remainder.Base::SetRow(3, translation.X, translation.Y, translation.Z, 1);
    remainder.SetSclSignBits(factors.s);
}

template C3DVector3Tpl<float> & C3DXfoMatTpl<float>::GetScaling(C3DVector3Tpl<float> &) const;
template C3DVector3Tpl<double> & C3DXfoMatTpl<double>::GetScaling(C3DVector3Tpl<double> &) const;
template C3DRotMatTpl<float> & C3DXfoMatTpl<float>::GetRotation(C3DRotMatTpl<float> &) const;
template C3DRotMatTpl<double> & C3DXfoMatTpl<double>::GetRotation(C3DRotMatTpl<double> &) const;
template C3DRotation & C3DXfoMatTpl<float>::GetRotation(C3DRotation &) const;
template C3DRotation & C3DXfoMatTpl<double>::GetRotation(C3DRotation &) const;
template C3DRotation3Tpl<float> & C3DXfoMatTpl<float>::GetRotation(C3DRotation3Tpl<float> &) const;
template C3DRotation3Tpl<double> & C3DXfoMatTpl<double>::GetRotation(C3DRotation3Tpl<double> &) const;
template void C3DXfoMatTpl<float>::GetScalingAndRotation(C3DVector3Tpl<float> &, C3DRotation &) const;
template void C3DXfoMatTpl<double>::GetScalingAndRotation(C3DVector3Tpl<double> &, C3DRotation &) const;
template void C3DXfoMatTpl<float>::GetScalingAndRotation(C3DVector3Tpl<float> &, C3DRotation3Tpl<float> &) const;
template void C3DXfoMatTpl<double>::GetScalingAndRotation(C3DVector3Tpl<double> &, C3DRotation3Tpl<double> &) const;
template void C3DXfoMatTpl<float>::GetAffineDecomposition(C3DRotMatTpl<float> &, C3DXfoMatTpl<float> &) const;
template void C3DXfoMatTpl<double>::GetAffineDecomposition(C3DRotMatTpl<double> &, C3DXfoMatTpl<double> &) const;
