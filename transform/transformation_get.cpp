#include "math/transformation.h"
#include "transform/component_mask.h"

using namespace math::detail;

// --- The components --------------------------------------------------------------------------------------------------

void C3DTransfo::GetScaling(C3DVector3Tpl<double> & scaling)
{
    FreshenComponents(k_AllComponents);
    // Number by number: a copy as a whole would wait for numbers that have only just been stored.
    scaling.Set(m_Scaling.X, m_Scaling.Y, m_Scaling.Z);
}

void C3DTransfo::GetScaling(double & x, double & y, double & z)
{
    FreshenComponents(k_AllComponents);
    m_Scaling.Get(x, y, z);
}

void C3DTransfo::GetScaling(C3DVector3Tpl<double> & scaling, C3DRotation & scalingOrientation)
{
    GetScaling(scaling);
    if (m_pScalingOrientation != nullptr)
    {
        scalingOrientation.Set(*m_pScalingOrientation, 0);
    }
}

void C3DTransfo::GetRotation(C3DRotation & rotation)
{
    FreshenComponents(k_AllComponents);
    rotation.Set(m_Rotation, 0);
}

void C3DTransfo::GetRotation(C3DQuatTpl<double> & quat)
{
    FreshenComponents(k_AllComponents);
    m_Rotation.GetQuat(quat);
}

void C3DTransfo::GetRotation(C3DRotMatTpl<double> & mat)
{
    mat = *GetRotation();
}

C3DRotMatTpl<double> const * C3DTransfo::GetRotation()
{
    FreshenComponents(k_AllComponents);
    return m_Rotation.GetMatrix();
}

void C3DTransfo::GetRotation(C3DVector3Tpl<double> & angles)
{
    FreshenComponents(k_AllComponents);
    m_Rotation.GetXYZAngles(angles);
}

void C3DTransfo::GetRotation(double & x, double & y, double & z)
{
    FreshenComponents(k_AllComponents);
    m_Rotation.GetXYZAngles(x, y, z);
}

void C3DTransfo::GetRotation(C3DVector3Tpl<double> & axis, double & angle)
{
    FreshenComponents(k_AllComponents);
    m_Rotation.GetAxisAngle(axis, angle);
}

void C3DTransfo::GetTranslation(C3DVector3Tpl<double> & translation)
{
    if (_AreComponentsDirty())
    {
        m_XfoMat.GetTranslation(translation);
    }
    else
    {
        translation.Set(m_Translation.X, m_Translation.Y, m_Translation.Z);
    }
}

void C3DTransfo::GetTranslation(double & x, double & y, double & z)
{
    C3DVector3Tpl<double> translation;
    GetTranslation(translation);
    translation.Get(x, y, z);
}

void C3DTransfo::GetScalingOrientation(C3DRotation & scalingOrientation)
{
    FreshenComponents(k_AllComponents);
    if (m_pScalingOrientation != nullptr)
    {
        scalingOrientation.Set(*m_pScalingOrientation, 0);
    }
    else
    {
        scalingOrientation.SetIdentity();
    }
}

void C3DTransfo::GetScalingOrientation(C3DVector3Tpl<double> & angles)
{
    FreshenComponents(k_AllComponents);
    if (m_pScalingOrientation != nullptr)
    {
        m_pScalingOrientation->GetXYZAngles(angles);
    }
    else
    {
        angles.SetNull();
    }
}

void C3DTransfo::GetScalingOrientation(double & x, double & y, double & z)
{
    C3DVector3Tpl<double> angles;
    GetScalingOrientation(angles);
    angles.Get(x, y, z);
}

bool C3DTransfo::IsScalingOrientationExisting()
{
    FreshenComponents(k_AllComponents);
    return HasScalingOrientation();
}

tagE3DROTORDER C3DTransfo::GetXYZRotOrder() const
{
    return _AreComponentsDirty() ? m_XfoRotOrder : m_Rotation.GetXYZRotOrder();
}

// --- The matrix ------------------------------------------------------------------------------------------------------

void C3DTransfo::GetMatrix(C3DXfoMatTpl<double> & matrix)
{
    FreshenMatrix();
    matrix.SetAndRepair(m_XfoMat);
}

C3DXfoMatTpl<double> const * C3DTransfo::GetMatrix()
{
    FreshenMatrix();
    return &m_XfoMat;
}

void C3DTransfo::GetInvMatrix(C3DXfoMatTpl<double> & inverse)
{
    if (_IsDefinitelyIdentity())
    {
        inverse.SetIdentity();
        return;
    }
    FreshenMatrix();
    inverse.Invert(m_XfoMat);
}
