#include "math/rotation.h"

#include "math/rotation_conversions.h"
#include "rotation/angle_mark.h"
#include "rotation/exact_identity.h"
#include "rotation/quaternion_matrix.h"

#include <cmath>
#include <initializer_list>

using namespace math::detail;

void C3DRotation::MultiplyQuats(C3DRotation & a, C3DRotation & b)
{
    a.FreshenQuat();
    b.FreshenQuat();
    _SetDefinitelyIdentity(0);
    C3DQuatTpl<double> product{C3DInitRequest_DoNotInitialize()};
    product.Mul(b.m_Quat, a.m_Quat);
    NormalizeQuaternion(product);
    m_Quat = product;
    m_Angle = k_AngleOfQuat;
}

C3DRotation & C3DRotation::Mul(C3DRotation & a, C3DRotation & b)
{
    bool const aIsIdentity = a._IsDefinitelyIdentity() != 0;
    bool const bIsIdentity = b._IsDefinitelyIdentity() != 0;
    if (!aIsIdentity && !bIsIdentity)
    {
        MultiplyQuats(a, b);
        m_Flags = k_QuatIsSource;
        return *this;
    }
    if (aIsIdentity && bIsIdentity)
    {
        SetIdentity();
    }
    else
    {
        Set(aIsIdentity ? b : a, 1);
    }
    FreshenQuat();
    _SetOrigRep(E3DROTREPTYPE_QUAT);
    _SetAnglesDirty(1);
    return *this;
}

C3DRotation & C3DRotation::Mul(C3DRotation & b)
{
    if (b._IsDefinitelyIdentity())
    {
        return *this;
    }
    b.FreshenQuat();
    return b.m_Quat.IsIdentity() ? *this : Mul(*this, b);
}

C3DRotation & C3DRotation::LeftMul(C3DRotation & a)
{
    if (a._IsDefinitelyIdentity())
    {
        return *this;
    }
    a.FreshenQuat();
    return a.m_Quat.IsIdentity() ? *this : Mul(a, *this);
}

void C3DRotation::SetAnglesAsSource(C3DVector3Tpl<double> const & angles, tagE3DROTORDER order)
{
    m_XYZAngles = angles;
    m_RotOrder = static_cast<unsigned char>(order);
    _SetOrigRep(E3DROTREPTYPE_XYZANGLES);
    _SetAnglesDirty(0);
}

C3DRotation & C3DRotation::MulAndUpdateEulerAngles(C3DRotation & a, C3DRotation & b, unsigned long which)
{
    C3DRotation & reference = which == 1 ? a : b;
    if (!a._IsDefinitelyIdentity() && !b._IsDefinitelyIdentity())
    {
        for (C3DRotation * const operand : {&a, &b})
        {
            operand->FreshenMatrix();
            operand->FreshenAngles();
            operand->FreshenQuat();
        }
        C3DVector3Tpl<double> target = reference.m_XYZAngles;
        return MulUsingEulerAnglesTarget(a, b, target, reference.GetXYZRotOrder());
    }
    bool const aIsIdentity = a._IsDefinitelyIdentity() != 0;
    C3DRotation & identity = aIsIdentity ? a : b;
    C3DRotation & other = aIsIdentity ? b : a;
    tagE3DROTORDER const identityOrder = identity.GetXYZRotOrder();
    bool const otherIsReference = (which == 1) != aIsIdentity;
    Set(other, 0);
    if (otherIsReference)
    {
        FreshenAngles();
        _SetOrigRep(E3DROTREPTYPE_XYZANGLES);
        return *this;
    }
    FreshenQuat();
    FillMatrixFromQuat();
    C3DVector3Tpl<double> angles;
    F3DMatToEuler(m_Matrix, angles, identityOrder);
    SetAnglesAsSource(angles, identityOrder);
    return *this;
}

C3DRotation & C3DRotation::MulUsingEulerAnglesTarget(C3DRotation & a, C3DRotation & b, C3DVector3Tpl<double> & target,
                                                     tagE3DROTORDER order)
{
    bool const aIsIdentity = a._IsDefinitelyIdentity() != 0;
    bool const bIsIdentity = b._IsDefinitelyIdentity() != 0;
    if (!aIsIdentity && !bIsIdentity)
    {
        MultiplyQuats(a, b);
        _SetQuatDirty(0);
    }
    else if (aIsIdentity && bIsIdentity)
    {
        SetIdentity();
    }
    else
    {
        Set(aIsIdentity ? b : a, 0);
    }
    FreshenQuat();
    FillMatrixFromQuat();
    F3DMatToEulerUsingTarget(m_Matrix, target, order);
    SetAnglesAsSource(target, order);
    return *this;
}

C3DRotation & C3DRotation::MulUsingEulerAnglesTarget(C3DRotation & a, C3DRotation & b, C3DRotation & c)
{
    C3DVector3Tpl<double> target;
    c.GetXYZAngles(target);
    return MulUsingEulerAnglesTarget(a, b, target, c.GetXYZRotOrder());
}

C3DRotation & C3DRotation::Interpolate(C3DRotation & a, C3DRotation & b, double t)
{
    if (a._IsDefinitelyIdentity() && b._IsDefinitelyIdentity())
    {
        return SetIdentity();
    }
    a.FreshenQuat();
    b.FreshenQuat();
    _SetDefinitelyIdentity(0);
    m_Quat.Slerp(a.m_Quat, b.m_Quat, t);
    NormalizeQuat();
    SetQuatRep();
    return *this;
}

C3DRotation & C3DRotation::Invert()
{
    return IsExactlyIdentity() ? *this : Invert(*this);
}

C3DRotation & C3DRotation::Invert(C3DRotation & source)
{
    if (source._IsDefinitelyIdentity())
    {
        return SetIdentity();
    }
    _SetDefinitelyIdentity(0);
    if (source._IsQuatDirty() && !source._IsMatDirty())
    {
        if (math::detail::IsExactlyIdentity(source.m_Matrix))
        {
            return SetIdentity();
        }
        m_Matrix.Invert(source.m_Matrix);
        SetMatrixRep();
        return *this;
    }
    if (source._IsQuatDirty())
    {
        C3DVector3Tpl<double> const & angles = source.m_XYZAngles;
        double const tolerance = k_StandardTolerance<double>;
        if (std::abs(angles.X) <= tolerance && std::abs(angles.Y) <= tolerance && std::abs(angles.Z) <= tolerance)
        {
            return SetIdentity();
        }
        source.UpdateQuat();
    }
    else if (source.m_Quat.IsIdentity())
    {
        return SetIdentity();
    }
    m_Quat.Conjugate(source.m_Quat);
    m_Angle = source.m_Angle;
    SetQuatRep();
    return *this;
}
