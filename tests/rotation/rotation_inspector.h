#pragma once

/// \file
/// The inside of a C3DRotation, for its tests.

#include "math/rotation.h"

#include <array>
#include <cstddef>
#include <limits>

namespace math::detail
{

/// The fields and the private operations of a rotation, which must outlive it.
class RotationInspector
{
public:
    explicit RotationInspector(C3DRotation & rotation) : m_Rotation(rotation) {}

    C3DQuatTpl<double> & Quat() { return m_Rotation.m_Quat; }
    C3DRotMatTpl<double> & Matrix() { return m_Rotation.m_Matrix; }
    C3DVector3Tpl<double> & Angles() { return m_Rotation.m_XYZAngles; }
    double & Angle()
    {
        m_Rotation.m_Angle = m_Rotation.AngleOfFreshQuat();
        return m_Rotation.m_Angle;
    }
    unsigned Flags() const { return m_Rotation.m_Flags; }
    void SetFlags(unsigned flags) { m_Rotation.m_Flags = static_cast<unsigned char>(flags); }
    int Order() const { return m_Rotation.m_RotOrder; }
    void SetOrder(int order) { m_Rotation.m_RotOrder = static_cast<unsigned char>(order); }

    int GetOrigRep() const { return m_Rotation._GetOrigRep(); }
    void SetOrigRep(tagE3DROTREPTYPE rep) { m_Rotation._SetOrigRep(rep); }
    int IsQuatDirty() const { return m_Rotation._IsQuatDirty(); }
    int IsMatDirty() const { return m_Rotation._IsMatDirty(); }
    int AreAnglesDirty() const { return m_Rotation._AreAnglesDirty(); }
    void SetQuatDirty(int dirty) { m_Rotation._SetQuatDirty(dirty); }
    void SetMatDirty(int dirty) { m_Rotation._SetMatDirty(dirty); }
    void SetAnglesDirty(int dirty) { m_Rotation._SetAnglesDirty(dirty); }
    void SetDefinitelyIdentity(int identity) { m_Rotation._SetDefinitelyIdentity(identity); }

    void SetQuatRep() { m_Rotation.SetQuatRep(); }
    void SetMatrixRep() { m_Rotation.SetMatrixRep(); }
    void SetXYZAnglesRep() { m_Rotation.SetXYZAnglesRep(); }
    void UpdateQuat() { m_Rotation.UpdateQuat(); }
    void UpdateMatrix() { m_Rotation.UpdateMatrix(); }
    void UpdateXYZAngles() { m_Rotation.UpdateXYZAngles(); }
    static int NextAxis(int axis) { return C3DRotation::NextAxis(axis); }

    void FillQuat(double value)
    {
        Quat().Set(value, value, value, value);
        Angle() = value;
    }
    void FillMatrix(double value)
    {
        for (int i = 0; i < 9; ++i)
        {
            Matrix().Set(i / 3, i % 3, value);
        }
    }
    void FillAngles(double value) { Angles().Set(value, value, value); }

    /// Fills the stale forms, by default with NaNs, so that reading one of them shows.
    void FillStale(double value = std::numeric_limits<double>::quiet_NaN())
    {
        if (IsQuatDirty() != 0)
        {
            FillQuat(value);
        }
        if (IsMatDirty() != 0)
        {
            FillMatrix(value);
        }
        if (AreAnglesDirty() != 0)
        {
            FillAngles(value);
        }
    }

    /// Where the fields lie, in the order in which they are declared.
    static constexpr std::array<std::size_t, 6> Offsets()
    {
        return {offsetof(C3DRotation, m_Quat),  offsetof(C3DRotation, m_Matrix), offsetof(C3DRotation, m_XYZAngles),
                offsetof(C3DRotation, m_Angle), offsetof(C3DRotation, m_Flags),  offsetof(C3DRotation, m_RotOrder)};
    }

private:
    C3DRotation & m_Rotation;
};

} // namespace math::detail
