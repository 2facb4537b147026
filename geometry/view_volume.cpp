#include "math/view_volume.h"

#include "geometry/eye_view_volume.h"
#include "geometry/world_view_volume.h"

#include <cmath>
#include <new>

using math::detail::EyeViewVolume;
using math::detail::ViewLimits;
using math::detail::WorldViewVolume;

namespace
{

template <typename Record>
Record * Copy(Record const * source)
{
    return source != nullptr ? new (std::nothrow) Record(*source) : nullptr;
}

/// Sets the record, which is made where it is missing.
template <typename Record>
void SetRecord(Record *& record, ViewLimits const & limits, C3DXfoMatTpl<double> const & viewToWorld, int orthographic)
{
    if (record == nullptr)
    {
        record = new (std::nothrow) Record{};
    }
    if (record != nullptr)
    {
        record->Set(limits, viewToWorld, orthographic);
    }
}

} // namespace

static_assert(sizeof(int) == 4 && sizeof(C3DViewVolume) == 3 * sizeof(void *));

C3DViewVolume::C3DViewVolume() = default;

C3DViewVolume::C3DViewVolume(C3DViewVolume const & source)
    : m_ViewSpace(source.m_ViewSpace), m_pEyeVolume(Copy(source.m_pEyeVolume)),
      m_pWorldVolume(Copy(source.m_pWorldVolume))
{
}

C3DViewVolume::~C3DViewVolume()
{
    delete m_pEyeVolume;
    delete m_pWorldVolume;
}

C3DViewVolume & C3DViewVolume::operator=(C3DViewVolume const & source) = default;

void C3DViewVolume::SetViewSpace(int mode)
{
    if (mode == m_ViewSpace)
    {
        return;
    }
    if (m_ViewSpace != 0)
    {
        delete m_pEyeVolume;
        m_pEyeVolume = nullptr;
    }
    else
    {
        delete m_pWorldVolume;
        m_pWorldVolume = nullptr;
    }
    m_ViewSpace = mode;
}

void C3DViewVolume::Set(double left, double right, double bottom, double top, double near, double far,
                        C3DXfoMatTpl<double> const & matrix, int orthographic)
{
    ViewLimits const limits{left, right, bottom, top, near, far};
    if (m_ViewSpace != 0)
    {
        SetRecord(m_pEyeVolume, limits, matrix, orthographic);
    }
    else
    {
        SetRecord(m_pWorldVolume, limits, matrix, orthographic);
    }
}

void C3DViewVolume::SetOrtho(double left, double right, double bottom, double top, double near, double far,
                             C3DXfoMatTpl<double> const & matrix)
{
    Set(left, right, bottom, top, near, far, matrix, 1);
}

void C3DViewVolume::SetFrustum(double left, double right, double bottom, double top, double near, double far,
                               C3DXfoMatTpl<double> const & matrix)
{
    Set(left, right, bottom, top, near, far, matrix, 0);
}

void C3DViewVolume::SetPersp(double fieldOfView, double aspect, double near, double far,
                             C3DXfoMatTpl<double> const & matrix)
{
    double const halfWidth = std::tan(fieldOfView / 2) * near;
    double const halfHeight = halfWidth / aspect;
    SetFrustum(-halfWidth, halfWidth, -halfHeight, halfHeight, near, far, matrix);
}

tagE3DVIEWINTERSECTION C3DViewVolume::Classify(C3DVector3Tpl<double> const * const box,
                                               C3DXfoMatTpl<double> const * matrix) const
{
    return m_ViewSpace != 0 ? m_pEyeVolume->Classify(box, matrix) : m_pWorldVolume->Classify(box, matrix);
}
