#pragma once

/// \file
/// The inside of a transformation and of its matrix, for their tests.

#include "math/rotation.h"
#include "math/transformation.h"
#include "math/transformation_matrix.h"

#include <array>
#include <cstddef>

namespace math::detail
{

/// The fields and the private operations of C3DTransfo and C3DXfoMatTpl, which both call it a friend.
class TransformationInspector
{
public:
    /// \name C3DTransfo
    ///@{
    static C3DRotation & Rotation(C3DTransfo & transfo) { return transfo.m_Rotation; }
    static C3DXfoMatTpl<double> & Matrix(C3DTransfo & transfo) { return transfo.m_XfoMat; }
    static tagE3DROTORDER & MatrixRotOrder(C3DTransfo & transfo) { return transfo.m_XfoRotOrder; }
    static C3DVector3Tpl<double> & Scaling(C3DTransfo & transfo) { return transfo.m_Scaling; }
    static C3DVector3Tpl<double> & Translation(C3DTransfo & transfo) { return transfo.m_Translation; }
    static C3DRotation *& ScalingOrientation(C3DTransfo & transfo) { return transfo.m_pScalingOrientation; }
    static unsigned Flags(C3DTransfo const & transfo) { return transfo.m_Flags; }
    static void SetFlags(C3DTransfo & transfo, unsigned flags) { transfo.m_Flags = static_cast<unsigned char>(flags); }

    static void SetComponentsDirty(C3DTransfo & transfo, int dirty) { transfo._SetComponentsDirty(dirty); }
    static int AreComponentsDirty(C3DTransfo const & transfo) { return transfo._AreComponentsDirty(); }
    static void SetXfoMatDirty(C3DTransfo & transfo, int dirty) { transfo._SetXfoMatDirty(dirty); }
    static int IsXfoMatDirty(C3DTransfo const & transfo) { return transfo._IsXfoMatDirty(); }
    static void SetQNScaling(C3DTransfo & transfo, int on) { transfo._SetQNScaling(on); }
    static int IsQNScaling(C3DTransfo const & transfo) { return transfo._IsQNScaling(); }
    static void SetDefinitelyIdentity(C3DTransfo & transfo, int identity) { transfo._SetDefinitelyIdentity(identity); }
    static void AllocateScalingOrientation(C3DTransfo & transfo, bool wanted)
    {
        transfo._AllocateScalingOrientationMatrix(wanted);
    }

    static void Init(C3DTransfo & transfo) { transfo.Init(); }
    static void Combine(C3DTransfo & transfo) { transfo.Combine(); }
    static void Factorize(C3DTransfo & transfo, unsigned mask) { transfo.Factorize(static_cast<unsigned char>(mask)); }

    /// Where the fields lie, in the order in which they are declared.
    static constexpr std::array<std::size_t, 7> Offsets()
    {
        return {offsetof(C3DTransfo, m_Rotation),    offsetof(C3DTransfo, m_XfoMat),
                offsetof(C3DTransfo, m_XfoRotOrder), offsetof(C3DTransfo, m_Scaling),
                offsetof(C3DTransfo, m_Translation), offsetof(C3DTransfo, m_pScalingOrientation),
                offsetof(C3DTransfo, m_Flags)};
    }
    ///@}

    /// \name C3DXfoMatTpl
    ///@{

    /// All three bits at once, whether they are consistent or not.
    template <typename T>
    static void SetSclSignBits(C3DXfoMatTpl<T> & matrix, unsigned bits)
    {
        matrix.SetSclSignBits(static_cast<unsigned char>(bits));
    }
    template <typename T>
    static void SetSclSignBits(C3DXfoMatTpl<T> & matrix, C3DVector3Tpl<T> const & scaling)
    {
        matrix.SetSclSignBits(scaling);
    }
    template <typename T>
    static void ClearSclSignBits(C3DXfoMatTpl<T> & matrix)
    {
        matrix.ClearSclSignBits();
    }
    template <typename T>
    static void XORSclSignBits(C3DXfoMatTpl<T> & matrix, unsigned a, unsigned b)
    {
        matrix.XORSclSignBits(static_cast<unsigned char>(a), static_cast<unsigned char>(b));
    }
    template <typename T>
    static void XORSclSignBits(C3DXfoMatTpl<T> & matrix, C3DVector3Tpl<T> const & scaling)
    {
        matrix.XORSclSignBits(scaling);
    }
    template <typename T>
    static unsigned long NegSclSignCount(C3DXfoMatTpl<T> const & matrix)
    {
        return matrix.NegSclSignCount();
    }
    template <typename T>
    static int ValidateSclSignBits(C3DXfoMatTpl<T> const & matrix)
    {
        return matrix.ValidateSclSignBits();
    }
    template <typename T>
    static int SetSclSignBitsFromXfo(C3DXfoMatTpl<T> & matrix)
    {
        return matrix.SetSclSignBitsFromXfo();
    }
    template <typename T>
    static void SetAndRepair(C3DXfoMatTpl<T> & matrix, C3DXfoMatTpl<T> const & source)
    {
        matrix.SetAndRepair(source);
    }
    template <typename T>
    static void ComputeSignBits(C3DXfoMatTpl<T> & matrix)
    {
        matrix.ComputeSignBits();
    }
    template <typename T>
    static int IsSclAxisNegative(C3DXfoMatTpl<T> const & matrix, int axis)
    {
        return matrix.IsSclAxisNegative(axis);
    }
    ///@}
};

} // namespace math::detail
