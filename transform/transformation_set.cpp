#include "math/transformation.h"
#include "transform/component_mask.h"
#include "transform/scale_clamp.h"

using namespace math::detail;

namespace
{

constexpr unsigned char Without(unsigned char component)
{
    return static_cast<unsigned char>(
        (k_ScalingComponent | k_ScalingOrientationComponent | k_RotationComponent | k_TranslationComponent) &
        ~component);
}

} // namespace

// --- The whole -------------------------------------------------------------------------------------------------------

void C3DTransfo::Set(C3DVector3Tpl<double> const & scaling, C3DRotation const & rotation,
                     C3DVector3Tpl<double> const & translation)
{
    FreshenComponents(k_ScalingOrientationComponent);
    m_Scaling = ClampScale(scaling);
    m_Rotation.Set(rotation, 1);
    m_Translation = translation;
    MarkComponentsAsSource();
}

void C3DTransfo::Set(C3DVector3Tpl<double> const & scaling, C3DRotation const & scalingOrientation,
                     C3DRotation const & rotation, C3DVector3Tpl<double> const & translation)
{
    m_Scaling = ClampScale(scaling);
    StoreScalingOrientation(scalingOrientation);
    m_Rotation.Set(rotation, 1);
    m_Translation = translation;
    MarkComponentsAsSource();
}

void C3DTransfo::Set(C3DXfoMatTpl<double> const & matrix)
{
    NoteRotOrder();
    m_XfoMat.SetAndRepair(matrix);
    MarkMatrixAsSource();
}

void C3DTransfo::Set(C3DVector3Tpl<double> const & translation)
{
    m_Translation = translation;
    m_Scaling.Set(1, 1, 1);
    _SetComponentsDirty(0);
    if (!m_Translation.IsExactlyNull())
    {
        _SetDefinitelyIdentity(0);
    }
}

void C3DTransfo::Set(C3DRotation const & rotation)
{
    m_Rotation.Set(rotation, 1);
    m_Scaling.Set(1, 1, 1);
    m_Translation.SetNull();
    _SetComponentsDirty(0);
    _SetDefinitelyIdentity(rotation.QuickIsIdentity());
}

void C3DTransfo::Set(C3DTransfo const & source)
{
    Set(source, false);
}

void C3DTransfo::Set(C3DTransfo const & source, bool keepOwnFlags)
{
    if (&source == this)
    {
        return;
    }
    if (source._IsDefinitelyIdentity())
    {
        if (!keepOwnFlags)
        {
            m_Flags = static_cast<unsigned char>((m_Flags & (k_PreserveRotOrder | k_UnusedFlag)) |
                                                 (source.m_Flags & k_QNScaling));
        }
        SetIdentity();
        return;
    }
    unsigned char const copiedFlags = keepOwnFlags ? k_ComponentsDirty | k_XfoMatDirty | k_DefinitelyIdentity
                                                   : static_cast<unsigned char>(~k_PreserveRotOrder);
    m_Flags = static_cast<unsigned char>((m_Flags & ~copiedFlags) | (source.m_Flags & copiedFlags));
    if (!source._AreComponentsDirty())
    {
        CopyComponents(source, keepOwnFlags || GetPreserveRotOrderFlag() != 0);
    }
    if (!source._IsXfoMatDirty())
    {
        m_XfoMat.SetAndRepair(source.m_XfoMat);
        if (!keepOwnFlags)
        {
            m_XfoRotOrder = source.m_XfoRotOrder;
        }
    }
}

void C3DTransfo::CopyComponents(C3DTransfo const & source, bool keepOwnOrder)
{
    m_Scaling = source.m_Scaling;
    m_Translation = source.m_Translation;
    m_Rotation.Set(source.m_Rotation, keepOwnOrder);
    StoreScalingOrientation(source.m_pScalingOrientation != nullptr ? *source.m_pScalingOrientation : C3DRotation());
}

void C3DTransfo::SetIdentity()
{
    SetIdentity(k_AllComponents);
}

void C3DTransfo::SetIdentity(unsigned char mask)
{
    if (_IsDefinitelyIdentity())
    {
        return;
    }
    if (mask != k_AllComponents)
    {
        FreshenComponents(static_cast<unsigned char>(~mask));
    }
    ResetComponents(mask);
    MarkComponentsAsSource();
    _SetDefinitelyIdentity(mask == k_AllComponents);
}

// --- The flags -------------------------------------------------------------------------------------------------------

void C3DTransfo::SetQNScalingFlag(int on)
{
    if (on == _IsQNScaling())
    {
        return;
    }
    _SetQNScaling(on);
    FreshenComponents(k_AllComponents);
    _SetXfoMatDirty(1);
}

int C3DTransfo::GetQNScalingFlag() const
{
    return _IsQNScaling();
}

void C3DTransfo::SetPreserveRotOrderFlag(int on)
{
    SetFlag(k_PreserveRotOrder, on);
}

int C3DTransfo::GetPreserveRotOrderFlag() const
{
    return (m_Flags & k_PreserveRotOrder) != 0;
}

// --- The components --------------------------------------------------------------------------------------------------

void C3DTransfo::WriteTranslation(C3DVector3Tpl<double> const & translation)
{
    if (!_AreComponentsDirty())
    {
        m_Translation = translation;
    }
    if (!_IsXfoMatDirty())
    {
        m_XfoMat.SetRow(3, translation.X, translation.Y, translation.Z, 1);
    }
}

void C3DTransfo::SetTranslation(C3DVector3Tpl<double> const & translation)
{
    WriteTranslation(translation);
    if (_IsDefinitelyIdentity() && !translation.IsExactlyNull())
    {
        _SetDefinitelyIdentity(0);
    }
}

void C3DTransfo::SetTranslation(double x, double y, double z)
{
    SetTranslation(C3DVector3Tpl<double>(x, y, z));
}

void C3DTransfo::SetScaling(C3DVector3Tpl<double> const & scaling)
{
    FreshenComponents(Without(k_ScalingComponent));
    m_Scaling = ClampScale(scaling);
    MarkComponentsAsSource();
}

void C3DTransfo::SetScaling(double x, double y, double z)
{
    bool const wasIdentity = _IsDefinitelyIdentity();
    SetScaling(C3DVector3Tpl<double>(x, y, z));
    _SetDefinitelyIdentity(wasIdentity && x == 1 && y == 1 && z == 1);
}

void C3DTransfo::SetScaling(C3DVector3Tpl<double> const & scaling, C3DRotation const & scalingOrientation)
{
    FreshenComponents(k_RotationComponent | k_TranslationComponent);
    m_Scaling = ClampScale(scaling);
    StoreScalingOrientation(scalingOrientation);
    MarkComponentsAsSource();
}

void C3DTransfo::FinishSetRotation()
{
    if (!m_Rotation.QuickIsIdentity())
    {
        _SetDefinitelyIdentity(0);
    }
    _SetXfoMatDirty(1);
}

void C3DTransfo::SetRotation(C3DRotation const & rotation)
{
    FreshenComponents(Without(k_RotationComponent));
    m_Rotation.Set(rotation, 1);
    FinishSetRotation();
}

void C3DTransfo::SetRotation(C3DQuatTpl<double> const & quat)
{
    FreshenComponents(Without(k_RotationComponent));
    // Which is never marked as the identity.
    m_Rotation.Set(quat);
    MarkComponentsAsSource();
}

void C3DTransfo::SetRotation(C3DRotMatTpl<double> const & mat)
{
    FreshenComponents(Without(k_RotationComponent));
    // Which is never marked as the identity.
    m_Rotation.Set(mat);
    MarkComponentsAsSource();
}

void C3DTransfo::SetRotation(tagE3DAXISTYPE axis, double angle)
{
    FreshenComponents(Without(k_RotationComponent));
    m_Rotation.Set(axis, angle);
    FinishSetRotation();
}

void C3DTransfo::SetRotation(C3DVector3Tpl<double> const & axis, double angle)
{
    FreshenComponents(Without(k_RotationComponent));
    m_Rotation.Set(axis, angle);
    FinishSetRotation();
}

void C3DTransfo::SetRotation(C3DVector3Tpl<double> const & angles)
{
    FreshenComponents(Without(k_RotationComponent));
    m_Rotation.Set(angles, m_Rotation.GetXYZRotOrder());
    FinishSetRotation();
}

void C3DTransfo::SetRotation(double x, double y, double z)
{
    SetRotation(C3DVector3Tpl<double>(x, y, z));
}

void C3DTransfo::SetRotation(tagE3DROTORDER order, int keepRotation)
{
    FreshenComponents(Without(k_RotationComponent));
    m_Rotation.Set(order, keepRotation);
    FinishSetRotation();
}

int C3DTransfo::SetRotation(C3DVector3Tpl<double> const & from, C3DVector3Tpl<double> const & to, int & degenerate)
{
    FreshenComponents(Without(k_RotationComponent));
    if (m_Rotation.Set(from, to, degenerate) == 0)
    {
        return 0;
    }
    FinishSetRotation();
    return 1;
}

void C3DTransfo::SetScalingOrientation(C3DVector3Tpl<double> const & angles)
{
    FreshenComponents(Without(k_ScalingOrientationComponent));
    _AllocateScalingOrientationMatrix(true);
    if (m_pScalingOrientation != nullptr)
    {
        m_pScalingOrientation->Set(angles, E3DROTORDER_XYZ);
        _SetXfoMatDirty(1);
    }
}

void C3DTransfo::SetScalingOrientation(double x, double y, double z)
{
    SetScalingOrientation(C3DVector3Tpl<double>(x, y, z));
}

void C3DTransfo::SetScalingOrientation(C3DRotation const & scalingOrientation)
{
    FreshenComponents(Without(k_ScalingOrientationComponent));
    StoreScalingOrientation(scalingOrientation);
    if (m_pScalingOrientation != nullptr)
    {
        _SetDefinitelyIdentity(0);
        _SetXfoMatDirty(1);
    }
}
