#include "math/compact_rotation.h"

#include "math/rotation.h"
#include "math/rotation_conversions.h"
#include "math/transformation_matrix.h"
#include "rotation/euler_order.h"

#include <cmath>
#include <initializer_list>
#include <type_traits>

namespace
{

template <typename T>
C3DVector3Tpl<double> Widen(C3DVector3Tpl<T> const & v)
{
    return {static_cast<double>(v.X), static_cast<double>(v.Y), static_cast<double>(v.Z)};
}

template <typename T>
C3DQuatTpl<T> HeldQuat(C3DRotation3Tpl<T> const & rotation)
{
    C3DQuatTpl<T> quat;
    rotation.GetQuat(quat);
    return quat;
}

/// The order that turns about the same axes the other way round. A value that names no order has none.
tagE3DROTORDER ReverseOrder(tagE3DROTORDER order)
{
    using math::detail::FindEulerOrder;
    math::detail::EulerOrder const * const row = FindEulerOrder(order);
    for (tagE3DROTORDER const other :
         {E3DROTORDER_XYZ, E3DROTORDER_XZY, E3DROTORDER_YXZ, E3DROTORDER_YZX, E3DROTORDER_ZXY, E3DROTORDER_ZYX})
    {
        if (row != nullptr && row->first == FindEulerOrder(other)->last && row->last == FindEulerOrder(other)->first)
        {
            return other;
        }
    }
    return order;
}

/// The same rotation in another order, all angles extracted anew.
template <typename T>
void Reorder(C3DVector3Tpl<T> & angles, tagE3DROTORDER from, tagE3DROTORDER to)
{
    C3DRotMatTpl<T> matrix;
    F3DEulerToMat(angles, matrix, from);
    F3DMatToEuler(matrix, angles, to);
}

/// Whether the held numbers of a, and those of b in the same form, are pairwise close.
template <typename T, typename Close>
bool HoldsCloseNumbers(C3DRotation3Tpl<T> const & a, C3DRotation3Tpl<T> b, Close const & close)
{
    b.SetRepresentation(a.GetRepresentation(), E3DROTORDER_XYZ);
    if (b.GetRepresentation() != a.GetRepresentation())
    {
        return false;
    }
    C3DVector4Tpl<T> p;
    C3DVector4Tpl<T> q;
    switch (a.GetRepresentation())
    {
    case E3DRotRep_Quat:
        a.GetQuat(p);
        b.GetQuat(q);
        break;
    case E3DRotRep_Euler:
        if (a.GetRotOrder() != b.GetRotOrder())
        {
            return false;
        }
        a.GetXYZAngles(p.X, p.Y, p.Z);
        b.GetXYZAngles(q.X, q.Y, q.Z);
        break;
    case E3DRotRep_AxisAngle:
        a.GetAxisAngle(p);
        b.GetAxisAngle(q);
        break;
    default:
        return false;
    }
    return close(p.X, q.X) && close(p.Y, q.Y) && close(p.Z, q.Z) && close(p.W, q.W);
}

} // namespace

// --- Setting ---------------------------------------------------------------------------------------------------------

template <typename T>
int C3DRotation3Tpl<T>::Set(C3DVector3Tpl<T> const & from, C3DVector3Tpl<T> const & to, int * degenerate)
{
    C3DRotation shortest;
    int choice = 0;
    int const result = shortest.Set(Widen(from), Widen(to), choice);
    if (degenerate != nullptr)
    {
        *degenerate = choice;
    }
    C3DQuatTpl<double> quat;
    shortest.GetQuat(quat);
    Set(C3DQuatTpl<T>(static_cast<T>(quat.W), static_cast<T>(quat.X), static_cast<T>(quat.Y), static_cast<T>(quat.Z)));
    return result;
}

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::Set(C3DVector3Tpl<T> const & row0, C3DVector3Tpl<T> const & row1,
                                             C3DVector3Tpl<T> const & row2)
{
    C3DQuatTpl<T> quat;
    F3DMatToQuat(C3DRotMatTpl<T>(row0, row1, row2, 1), quat);
    return Set(quat);
}

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::Set(C3DMatrix33Tpl<T> const & m)
{
    return C3DXfoMatTpl<T>().Set(m).GetRotation(*this);
}

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::Set(C3DMatrix44Tpl<T> const & m)
{
    return C3DXfoMatTpl<T>().Set(m).GetRotation(*this);
}

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::SetIdentity()
{
    switch (m_Rep)
    {
    case E3DRotRep_Quat:
        return Set(C3DQuatTpl<T>());
    case E3DRotRep_Euler:
        return Set(C3DVector3Tpl<T>(0, 0, 0), E3DROTORDER_XYZ);
    case E3DRotRep_AxisAngle:
        return Set(C3DVector3Tpl<T>(1, 0, 0), T(0));
    }
    return *this;
}

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::Set(tagE3DROTORDER order, int keepRotation)
{
    SetRepresentation(E3DRotRep_Euler, keepRotation != 0 ? order : E3DROTORDER_XYZ);
    if (!HoldsKnownForm() || order == m_Last.order)
    {
        return *this;
    }
    if (keepRotation != 0)
    {
        Reorder(m_Values, m_Last.order, order);
    }
    m_Last.order = order;
    return *this;
}

// --- Conversion ------------------------------------------------------------------------------------------------------

template <typename T>
C3DQuatTpl<T> C3DRotation3Tpl<T>::QuatFromEuler() const
{
    C3DQuatTpl<T> quat;
    F3DEulerToQuat(m_Values, quat, m_Last.order);
    return quat;
}

template <typename T>
C3DQuatTpl<T> C3DRotation3Tpl<T>::QuatFromAxisAngle() const
{
    C3DQuatTpl<T> quat;
    T const length = m_Values.GetLength();
    if (length > math::detail::k_StandardTolerance<T>)
    {
        C3DVector3Tpl<T> const axis(m_Values.X / length, m_Values.Y / length, m_Values.Z / length);
        F3DAxisAngleToQuat(axis, m_Last.scalar, quat);
    }
    return quat;
}

template <typename T>
void C3DRotation3Tpl<T>::ConvertToQuat()
{
    Set(m_Rep == E3DRotRep_Euler ? QuatFromEuler() : QuatFromAxisAngle());
}

template <typename T>
void C3DRotation3Tpl<T>::ConvertToEuler(tagE3DROTORDER order)
{
    C3DQuatTpl<T> quat = m_Rep == E3DRotRep_Quat ? HeldQuat(*this).Normalize() : QuatFromAxisAngle();
    C3DVector3Tpl<T> angles;
    F3DQuatToEuler(quat, angles, order);
    Set(angles, order);
}

template <typename T>
void C3DRotation3Tpl<T>::ConvertToAxisAngle()
{
    C3DQuatTpl<T> quat = m_Rep == E3DRotRep_Quat ? HeldQuat(*this).Normalize() : QuatFromEuler();
    C3DVector3Tpl<T> axis;
    T angle;
    F3DQuatToAxisAngle(quat, axis, angle);
    T const tolerance = math::detail::k_StandardTolerance<T>;
    if (std::abs(axis.X) <= tolerance && std::abs(axis.Y) <= tolerance && std::abs(axis.Z) <= tolerance)
    {
        axis.Set(1, 0, 0);
    }
    Set(axis, angle);
}

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::SetRepresentation(E3DRotRep rep, tagE3DROTORDER order)
{
    if (rep == m_Rep || !HoldsKnownForm())
    {
        return *this;
    }
    switch (rep)
    {
    case E3DRotRep_Quat:
        ConvertToQuat();
        break;
    case E3DRotRep_Euler:
        ConvertToEuler(order);
        break;
    case E3DRotRep_AxisAngle:
        ConvertToAxisAngle();
        break;
    }
    return *this;
}

// --- Reading ---------------------------------------------------------------------------------------------------------

template <typename T>
void C3DRotation3Tpl<T>::GetQuat(C3DQuatTpl<T> & quat) const
{
    if (HoldsKnownForm())
    {
        C3DRotation3Tpl copy(*this);
        copy.SetRepresentation(E3DRotRep_Quat, E3DROTORDER_XYZ);
        quat.Set(copy.m_Last.scalar, copy.m_Values.X, copy.m_Values.Y, copy.m_Values.Z);
    }
}

template <typename T>
void C3DRotation3Tpl<T>::GetQuat(C3DVector4Tpl<T> & quat) const
{
    if (HoldsKnownForm())
    {
        HeldQuat(*this).Get(quat);
    }
}

template <typename T>
void C3DRotation3Tpl<T>::GetAxisAngle(C3DVector3Tpl<T> & axis, T & angle) const
{
    if (HoldsKnownForm())
    {
        C3DRotation3Tpl copy(*this);
        copy.SetRepresentation(E3DRotRep_AxisAngle, E3DROTORDER_XYZ);
        axis = copy.m_Values;
        angle = copy.m_Last.scalar;
    }
}

template <typename T>
void C3DRotation3Tpl<T>::GetAxisAngle(C3DVector4Tpl<T> & axisAngle) const
{
    if (HoldsKnownForm())
    {
        C3DVector3Tpl<T> axis(0, 0, 0);
        T angle = 0;
        GetAxisAngle(axis, angle);
        axisAngle.Set(axis.X, axis.Y, axis.Z, angle);
    }
}

template <typename T>
void C3DRotation3Tpl<T>::GetXYZAngles(C3DVector3Tpl<T> & angles, tagE3DROTORDER order) const
{
    if (HoldsKnownForm())
    {
        C3DRotation3Tpl copy(*this);
        angles = copy.Set(order, 1).m_Values;
    }
}

template <typename T>
void C3DRotation3Tpl<T>::GetXYZAngles(T & x, T & y, T & z) const
{
    if (HoldsKnownForm())
    {
        C3DVector3Tpl<T> angles(0, 0, 0);
        GetXYZAngles(angles);
        angles.Get(x, y, z);
    }
}

template <typename T>
void C3DRotation3Tpl<T>::GetMatrix(C3DRotMatTpl<T> & m) const
{
    switch (m_Rep)
    {
    case E3DRotRep_Quat:
        F3DQuatToMat(HeldQuat(*this).Normalize(), m);
        break;
    case E3DRotRep_Euler:
        F3DEulerToMat(m_Values, m, m_Last.order);
        break;
    case E3DRotRep_AxisAngle:
        F3DQuatToMat(QuatFromAxisAngle(), m);
        break;
    }
}

template <typename T>
void C3DRotation3Tpl<T>::GetMatrix(C3DMatrix33Tpl<T> & m) const
{
    if (HoldsKnownForm())
    {
        C3DRotMatTpl<T> rotation;
        GetMatrix(rotation);
        m.Set(rotation.GetMatrix());
    }
}

template <typename T>
void C3DRotation3Tpl<T>::GetMatrix(C3DMatrix44Tpl<T> & m) const
{
    if (HoldsKnownForm())
    {
        C3DRotMatTpl<T> rotation;
        GetMatrix(rotation);
        for (int r = 0; r < 3; ++r)
        {
            m.SetRow(r, rotation.Get(r, 0), rotation.Get(r, 1), rotation.Get(r, 2), 0);
        }
        m.SetRow(3, 0, 0, 0, 1);
    }
}

// --- Tests -----------------------------------------------------------------------------------------------------------

template <typename T>
int C3DRotation3Tpl<T>::IsIdentity() const
{
    switch (m_Rep)
    {
    case E3DRotRep_Quat:
        return m_Last.scalar == 1 && m_Values.IsExactlyNull() != 0;
    case E3DRotRep_Euler:
        return m_Values.IsExactlyNull();
    case E3DRotRep_AxisAngle:
        return m_Last.scalar == 0;
    }
    return 0;
}

template <typename T>
int C3DRotation3Tpl<T>::IsAlmostIdentity(T epsilon) const
{
    bool const smallValues =
        std::abs(m_Values.X) < epsilon && std::abs(m_Values.Y) < epsilon && std::abs(m_Values.Z) < epsilon;
    switch (m_Rep)
    {
    case E3DRotRep_Quat:
        return smallValues && std::abs(m_Last.scalar - 1) < epsilon;
    case E3DRotRep_Euler:
        return smallValues;
    case E3DRotRep_AxisAngle:
        return std::abs(m_Last.scalar) < epsilon;
    }
    return 0;
}

template <typename T>
bool C3DRotation3Tpl<T>::operator==(C3DRotation3Tpl const & other) const
{
    return HoldsCloseNumbers(*this, other, [](T a, T b) { return a == b; });
}

template <typename T>
int AreAlmostEqual(C3DRotation3Tpl<T> const & a, C3DRotation3Tpl<T> const & b, std::type_identity_t<T> epsilon)
{
    return HoldsCloseNumbers(a, b, [epsilon](T p, T q) { return std::abs(p - q) < epsilon; });
}

// --- Products, inverse, interpolation --------------------------------------------------------------------------------

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::Invert()
{
    switch (m_Rep)
    {
    case E3DRotRep_Quat:
        m_Values.Negate();
        break;
    case E3DRotRep_Euler:
        m_Values.Negate();
        m_Last.order = ReverseOrder(m_Last.order);
        break;
    case E3DRotRep_AxisAngle:
        m_Last.scalar = -m_Last.scalar;
        break;
    }
    return *this;
}

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::Invert(C3DRotation3Tpl const & a)
{
    *this = a;
    return Invert();
}

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::Mul(C3DRotation3Tpl const & a, C3DRotation3Tpl const & b)
{
    return Set(C3DQuatTpl<T>().Mul(HeldQuat(b), HeldQuat(a)).Normalize());
}

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::Div(C3DRotation3Tpl const & a, C3DRotation3Tpl const & b)
{
    return Mul(a, C3DRotation3Tpl(b).Invert());
}

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::Mul(T factor)
{
    switch (m_Rep)
    {
    case E3DRotRep_Quat:
    case E3DRotRep_Euler:
        return Interpolate(C3DRotation3Tpl(), *this, factor);
    case E3DRotRep_AxisAngle:
        m_Last.scalar *= factor;
        break;
    }
    return *this;
}

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::MulUsingEulerAnglesTarget(C3DRotation3Tpl const & a, C3DRotation3Tpl const & b,
                                                                   C3DVector3Tpl<T> const & target,
                                                                   tagE3DROTORDER order)
{
    C3DVector3Tpl<T> angles(target);
    Mul(a, b);
    C3DRotMatTpl<T> matrix;
    F3DQuatToMat(HeldQuat(*this), matrix);
    F3DMatToEulerUsingTarget(matrix, angles, order);
    return Set(angles, order);
}

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::MulUsingEulerAnglesTarget(C3DRotation3Tpl const & a, C3DRotation3Tpl const & b,
                                                                   C3DRotation3Tpl const & c)
{
    C3DVector3Tpl<T> target(0, 0, 0);
    c.GetXYZAngles(target);
    return MulUsingEulerAnglesTarget(a, b, target, c.GetRotOrder());
}

template <typename T>
C3DRotation3Tpl<T> & C3DRotation3Tpl<T>::Interpolate(C3DRotation3Tpl const & a, C3DRotation3Tpl const & b, T t)
{
    return Set(C3DQuatTpl<T>().Slerp(HeldQuat(a), HeldQuat(b), t));
}

template <typename T>
int C3DRotation3Tpl<T>::AlignAxesToVct(tagE3DAXISTYPE axis1, C3DVector3Tpl<T> const & vct1, tagE3DAXISTYPE axis2,
                                       C3DVector3Tpl<T> const & vct2, int * degenerate) const
{
    C3DRotation aligned;
    int choice = 0;
    int const result = aligned.AlignAxesToVct(axis1, Widen(vct1), axis2, Widen(vct2), choice);
    if (degenerate != nullptr)
    {
        *degenerate = choice;
    }
    return result;
}

static_assert(sizeof(C3DRotation3Tpl<float>) == 5 * sizeof(float));
static_assert(sizeof(C3DRotation3Tpl<double>) == 5 * sizeof(double));
static_assert(sizeof(tagE3DROTORDER) == 4 && sizeof(E3DRotRep) == 1);
static_assert(std::is_standard_layout_v<C3DRotation3Tpl<float>> && std::is_standard_layout_v<C3DRotation3Tpl<double>>);
static_assert(std::is_trivially_copyable_v<C3DRotation3Tpl<float>> &&
              std::is_trivially_copyable_v<C3DRotation3Tpl<double>>);

template class C3DRotation3Tpl<float>;
template class C3DRotation3Tpl<double>;
template int AreAlmostEqual(C3DRotation3Tpl<float> const &, C3DRotation3Tpl<float> const &, float);
template int AreAlmostEqual(C3DRotation3Tpl<double> const &, C3DRotation3Tpl<double> const &, double);
