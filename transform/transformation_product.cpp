#include "math/rotation_conversions.h"
#include "math/transformation.h"
#include "transform/component_mask.h"
#include "transform/scale_clamp.h"

#include <cmath>
#include <initializer_list>

using namespace math::detail;

namespace
{

using Vector = C3DVector3Tpl<double>;

/// v R^-1 S^-1: a translation, seen in the scaled axes of a transformation.
Vector IntoScaledAxes(Vector const & v, C3DRotation & rotation, Vector const & scaling)
{
    Vector seen;
    rotation.InvRotateVct(v, seen);
    return seen.DivComp(scaling);
}

/// The inverse; what is exactly the identity is kept as it is.
C3DRotation Inverse(C3DRotation rotation)
{
    rotation.Invert();
    return rotation;
}

} // namespace

// --- Product ---------------------------------------------------------------------------------------------------------

C3DTransfo & C3DTransfo::Mul(C3DTransfo & a, C3DTransfo & b, unsigned char mask)
{
    bool const isAIdentity = a._IsDefinitelyIdentity();
    bool const isBIdentity = b._IsDefinitelyIdentity();
    if (isAIdentity && isBIdentity)
    {
        SetIdentity(mask);
    }
    else if (mask == k_AllComponents && isBIdentity)
    {
        Set(a, true);
    }
    else if (mask == k_AllComponents && isAIdentity)
    {
        Set(b, true);
    }
    else
    {
        _SetDefinitelyIdentity(0);
        _IsQNScaling() ? MulComponents(a, b, mask) : MulMatrices(a, b);
    }
    return *this;
}

C3DTransfo & C3DTransfo::Mul(C3DTransfo & b, unsigned char mask)
{
    return Mul(*this, b, mask);
}

/// Combines, where the components are the source, so that the order of rotation is on record for the matrix to come.
void C3DTransfo::PrepareForMatrix()
{
    if (_IsXfoMatDirty() && !_AreComponentsDirty())
    {
        Combine();
    }
}

/// With the matrix of a brought up to date already, so that `right` may be a matrix of the target itself.
void C3DTransfo::StoreMatrixProduct(C3DTransfo & a, C3DXfoMatTpl<double> const & right)
{
    m_XfoMat.Mul(a.m_XfoMat, right);
    MarkMatrixAsSource();
    if (!IsMatrixSheared())
    {
        _AllocateScalingOrientationMatrix(false);
    }
}

void C3DTransfo::MulMatrices(C3DTransfo & a, C3DTransfo & b)
{
    PrepareForMatrix();
    a.FreshenMatrix();
    b.FreshenMatrix();
    StoreMatrixProduct(a, b.m_XfoMat);
}

void C3DTransfo::MulComponents(C3DTransfo & a, C3DTransfo & b, unsigned char mask)
{
    a.FreshenComponents(k_AllComponents);
    b.FreshenComponents(k_AllComponents);
    if ((mask & k_TranslationComponent) != 0)
    {
        MulTranslations(a, b, mask);
    }
    if ((mask & k_ScalingComponent) != 0)
    {
        m_Scaling = ClampScale(Vector().MulComp(a.m_Scaling, b.m_Scaling));
    }
    if ((mask & k_RotationComponent) != 0)
    {
        m_Rotation.Mul(a.m_Rotation, b.m_Rotation);
    }
    if ((mask & k_ScalingOrientationComponent) != 0)
    {
        MulScalingOrientations(a, b);
    }
    MarkComponentsAsSource();
}

void C3DTransfo::MulTranslations(C3DTransfo & a, C3DTransfo & b, unsigned char mask)
{
    bool const isScaled = (mask & k_InheritScaling) != 0;
    bool const isRotated = (mask & k_InheritRotation) != 0;
    if (isScaled && isRotated)
    {
        b.FreshenMatrix();
        m_Translation.Mul(a.m_Translation, b.m_XfoMat);
        return;
    }
    if (!isScaled && !isRotated)
    {
        m_Translation.Add(a.m_Translation, b.m_Translation);
        return;
    }
    // The sum is taken in place: where b is the target its translation is gone by now, as callers know it.
    m_Translation = a.m_Translation;
    if (isRotated)
    {
        b.m_Rotation.RotateVct(m_Translation, m_Translation);
    }
    else
    {
        // The direction stays, and the length changes by what the scale stretches this direction.
        double const squaredLength = m_Translation.GetSquaredLength();
        double const squaredLengthSeen = IntoScaledAxes(m_Translation, b.m_Rotation, b.m_Scaling).GetSquaredLength();
        if (squaredLengthSeen > 0)
        {
            m_Translation.Mul(std::sqrt(squaredLength / squaredLengthSeen));
        }
    }
    m_Translation.Add(b.m_Translation);
}

void C3DTransfo::MulScalingOrientations(C3DTransfo & a, C3DTransfo & b)
{
    // Mostly there are none, which the pointers tell without a call.
    bool const isASheared = a.m_pScalingOrientation != nullptr && a.HasShearing();
    bool const isBSheared = b.m_pScalingOrientation != nullptr && b.HasShearing();
    if (!isASheared && !isBSheared)
    {
        if (m_pScalingOrientation != nullptr)
        {
            _AllocateScalingOrientationMatrix(false);
        }
        return;
    }
    C3DRotation aOrientation = a.CopyEffectiveScalingOrientation();
    C3DRotation bOrientation = b.CopyEffectiveScalingOrientation();
    C3DRotation product;
    StoreScalingOrientation(product.Mul(aOrientation, bOrientation));
}

// --- Difference ------------------------------------------------------------------------------------------------------

C3DTransfo & C3DTransfo::Dif(C3DTransfo & a, C3DTransfo & b, unsigned char mask, C3DTransfo * target)
{
    bool const isAIdentity = a._IsDefinitelyIdentity();
    bool const isBIdentity = b._IsDefinitelyIdentity();
    if (mask == k_AllComponents && isBIdentity)
    {
        Set(a, true);
        NormalizeAngles(target);
    }
    else if (isAIdentity && isBIdentity)
    {
        SetIdentity(mask);
    }
    else
    {
        _SetDefinitelyIdentity(0);
        _IsQNScaling() ? DifComponents(a, b, mask, target, isAIdentity) : DifMatrices(a, b);
    }
    return *this;
}

void C3DTransfo::NormalizeAngles(C3DTransfo * target)
{
    C3DVector3Tpl<double> angles;
    if (_IsQNScaling() && target != nullptr)
    {
        FreshenComponents(k_AllComponents);
        tagE3DROTORDER const order = m_Rotation.GetXYZRotOrder();
        C3DRotation targetRotation;
        target->GetRotation(targetRotation);
        targetRotation.Set(order, 1).GetXYZAngles(angles);
        F3DMatToEulerUsingTarget(*m_Rotation.GetMatrix(), angles, order);
        m_Rotation.Set(angles, order);
    }
    else if (!_AreComponentsDirty())
    {
        tagE3DROTORDER const order = m_Rotation.GetXYZRotOrder();
        F3DMatToEuler(*m_Rotation.GetMatrix(), angles, order);
        m_Rotation.Set(angles, order);
    }
}

void C3DTransfo::DifMatrices(C3DTransfo & a, C3DTransfo & b)
{
    PrepareForMatrix();
    a.FreshenMatrix();
    C3DXfoMatTpl<double> inverse;
    b.GetInvMatrix(inverse);
    StoreMatrixProduct(a, inverse);
}

void C3DTransfo::DifComponents(C3DTransfo & a, C3DTransfo & b, unsigned char mask, C3DTransfo * target,
                               bool isAIdentity)
{
    a.FreshenComponents(k_AllComponents);
    b.FreshenComponents(k_AllComponents);
    // Read before anything is written, as the target of the angles may be the object itself.
    C3DRotation targetRotation;
    Vector targetAngles;
    if (target != nullptr && (mask & (k_RotationComponent | k_ScalingOrientationComponent)) != 0)
    {
        tagE3DROTORDER const order = GetXYZRotOrder();
        target->GetRotation(targetRotation);
        targetRotation.Set(order, 1);
        target->GetScalingOrientation(targetAngles);
    }
    if ((mask & k_TranslationComponent) != 0 && !(isAIdentity && b.m_Translation.IsExactlyNull()))
    {
        DifTranslations(a, b, mask, isAIdentity);
    }
    if ((mask & k_ScalingComponent) != 0)
    {
        m_Scaling = ClampScale(Vector().DivComp(a.m_Scaling, b.m_Scaling));
    }
    if ((mask & k_RotationComponent) != 0)
    {
        C3DRotation inverse = Inverse(b.m_Rotation);
        target != nullptr ? m_Rotation.MulUsingEulerAnglesTarget(a.m_Rotation, inverse, targetRotation)
                          : m_Rotation.Mul(a.m_Rotation, inverse);
    }
    if ((mask & k_ScalingOrientationComponent) != 0)
    {
        DifScalingOrientations(a, b, target != nullptr ? &targetAngles : nullptr, isAIdentity);
    }
    MarkComponentsAsSource();
}

void C3DTransfo::DifTranslations(C3DTransfo & a, C3DTransfo & b, unsigned char mask, bool isAIdentity)
{
    bool const isScaled = (mask & k_InheritScaling) != 0;
    bool const isRotated = (mask & k_InheritRotation) != 0;
    if (isScaled && isRotated)
    {
        C3DXfoMatTpl<double> inverse;
        b.GetInvMatrix(inverse);
        isAIdentity ? inverse.GetTranslation(m_Translation) : m_Translation.Mul(a.m_Translation, inverse);
        return;
    }
    m_Translation.Sub(a.m_Translation, b.m_Translation);
    if (isRotated)
    {
        b.m_Rotation.InvRotateVct(m_Translation, m_Translation);
    }
    else if (isScaled)
    {
        double const squaredLength = m_Translation.GetSquaredLength();
        if (squaredLength > 0)
        {
            double const squaredLengthSeen =
                IntoScaledAxes(m_Translation, b.m_Rotation, b.m_Scaling).GetSquaredLength();
            m_Translation.Mul(std::sqrt(squaredLengthSeen / squaredLength));
        }
    }
}

void C3DTransfo::DifScalingOrientations(C3DTransfo & a, C3DTransfo & b, C3DVector3Tpl<double> * targetAngles,
                                        bool isAIdentity)
{
    C3DRotation aOrientation = isAIdentity ? C3DRotation() : a.CopyEffectiveScalingOrientation();
    C3DRotation bInverse = Inverse(b.CopyEffectiveScalingOrientation());
    C3DRotation product;
    product.Mul(aOrientation, bInverse);
    // The quaternion of the product decides whether one is held: a whole turn is, though its angles may be zeros.
    StoreScalingOrientation(product);
    if (targetAngles != nullptr && m_pScalingOrientation != nullptr)
    {
        product.MulUsingEulerAnglesTarget(aOrientation, bInverse, *targetAngles, E3DROTORDER_XYZ);
        m_pScalingOrientation->Set(product, 0);
    }
}

// --- Maps between spaces ---------------------------------------------------------------------------------------------

C3DTransfo & C3DTransfo::MapSpaceToWorld(C3DTransfo & space)
{
    return Mul(*this, space, k_AllComponents);
}

C3DTransfo & C3DTransfo::MapWorldToSpace(C3DTransfo & space)
{
    return Dif(*this, space, k_AllComponents, nullptr);
}

C3DTransfo & C3DTransfo::MapSpaceToSpace(C3DTransfo & from, C3DTransfo & to)
{
    return MapSpaceToWorld(from).MapWorldToSpace(to);
}

// --- Inverse and interpolation ---------------------------------------------------------------------------------------

C3DTransfo & C3DTransfo::Invert(C3DTransfo & source)
{
    if (source._IsDefinitelyIdentity())
    {
        SetIdentity();
        return *this;
    }
    NoteRotOrder();
    source.FreshenMatrix();
    m_XfoMat.Invert(source.m_XfoMat);
    m_XfoRotOrder = GetXYZRotOrder();
    MarkMatrixAsSource();
    return *this;
}

C3DTransfo & C3DTransfo::Invert()
{
    return Invert(*this);
}

C3DTransfo & C3DTransfo::Interpolate(C3DTransfo & a, C3DTransfo & b, double t)
{
    if (a._IsDefinitelyIdentity() && b._IsDefinitelyIdentity())
    {
        SetIdentity();
        return *this;
    }
    for (C3DTransfo * const transformation : {this, &b, &a})
    {
        transformation->FreshenComponents(k_AllComponents);
    }
    C3DRotation aRotation = a.m_Rotation;
    C3DRotation bRotation = b.m_Rotation;
    m_Rotation.Interpolate(aRotation, bRotation, t);
    m_Translation.LinearPositionInterpolate(a.m_Translation, b.m_Translation, t);
    m_Scaling.LinearPositionInterpolate(a.m_Scaling, b.m_Scaling, t);
    MarkComponentsAsSource();
    return *this;
}
