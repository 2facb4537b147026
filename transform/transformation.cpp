#include "math/transformation.h"

#include "math/detail/row4.h"
#include "transform/component_mask.h"
#include "transform/scale_clamp.h"

#include <cmath>
#include <new>
#include <type_traits>

using namespace math::detail;

namespace
{

constexpr double k_Tolerance = k_StandardTolerance<double>;

/// Above this dot product of two rows, as they stand, a matrix counts as sheared.
constexpr double k_ShearTolerance = 1e-6;

/// The scaling and rotation of a matrix without shear, as far as a mask asks for them.
void ReadRows(C3DXfoMatTpl<double> const & m, unsigned char mask, C3DVector3Tpl<double> & scaling,
              C3DRotation & rotation)
{
    bool const isScalingWanted = (mask & k_ScalingComponent) != 0;
    bool const isRotationWanted = (mask & k_RotationComponent) != 0;
    if (isScalingWanted && isRotationWanted)
    {
        m.GetScalingAndRotation(scaling, rotation);
    }
    else if (isRotationWanted)
    {
        m.GetRotation(rotation);
    }
    else if (isScalingWanted)
    {
        m.GetScaling(scaling);
    }
}

/// The matrix of a scale, a rotation and a translation, stored as whole rows, as which it is going to be loaded. Not in
/// a loop: a vectorised one would wait for numbers of the rotation that have only just been stored.
void CombineUnsheared(double (*const rows)[4], C3DVector3Tpl<double> const & scaling,
                      C3DRotMatTpl<double> const & rotation, C3DVector3Tpl<double> const & translation)
{
    using Row = Row4<double>::Lanes;
    auto const storeRow = [rows, &rotation](int r, double factor)
    {
        Row const row{factor * rotation.Get(r, 0), factor * rotation.Get(r, 1), factor * rotation.Get(r, 2), 0};
        StoreRow(row, rows[r]);
    };
    storeRow(0, scaling.X);
    storeRow(1, scaling.Y);
    storeRow(2, scaling.Z);
    StoreRow(Row{translation.X, translation.Y, translation.Z, 1}, rows[3]);
}

} // namespace

// --- Construction ----------------------------------------------------------------------------------------------------

// The matrix is stale and yet the identity: Invert leaves it in place of the inverse of a singular one.
C3DTransfo::C3DTransfo()
    : m_XfoRotOrder(E3DROTORDER_XYZ), m_Scaling(1, 1, 1), m_Translation(0, 0, 0), m_pScalingOrientation(nullptr),
      m_Flags(k_XfoMatDirty | k_QNScaling | k_DefinitelyIdentity)
{
}

C3DTransfo::C3DTransfo(C3DInitRequest_DoNotInitialize const & request, bool qnScaling)
    : m_Rotation(request), m_XfoMat(request), m_XfoRotOrder(E3DROTORDER_XYZ), m_pScalingOrientation(nullptr),
      m_Flags(k_ComponentsDirty | k_XfoMatDirty)
{
    _SetQNScaling(qnScaling);
}

C3DTransfo::C3DTransfo(C3DVector3Tpl<double> const & scaling, C3DRotation const & rotation,
                       C3DVector3Tpl<double> const & translation)
    : C3DTransfo()
{
    Set(scaling, rotation, translation);
}

C3DTransfo::C3DTransfo(C3DVector3Tpl<double> const & scaling, C3DRotation const & scalingOrientation)
    : C3DTransfo(scaling, scalingOrientation, C3DRotation(), C3DVector3Tpl<double>(0, 0, 0))
{
}

C3DTransfo::C3DTransfo(C3DVector3Tpl<double> const & scaling, C3DRotation const & scalingOrientation,
                       C3DRotation const & rotation, C3DVector3Tpl<double> const & translation)
    : C3DTransfo()
{
    Set(scaling, scalingOrientation, rotation, translation);
}

C3DTransfo::C3DTransfo(C3DTransfo const & source)
    : m_Rotation(source.m_Rotation), m_XfoMat(source.m_XfoMat), m_XfoRotOrder(source.m_XfoRotOrder),
      m_Scaling(source.m_Scaling), m_Translation(source.m_Translation), m_pScalingOrientation(nullptr),
      m_Flags(source.m_Flags)
{
    if (source.m_pScalingOrientation != nullptr)
    {
        _AllocateScalingOrientationMatrix(true);
        if (m_pScalingOrientation != nullptr)
        {
            *m_pScalingOrientation = *source.m_pScalingOrientation;
        }
    }
}

C3DTransfo & C3DTransfo::operator=(C3DTransfo const & source) = default;

C3DTransfo::~C3DTransfo()
{
    _AllocateScalingOrientationMatrix(false);
}

void C3DTransfo::Init()
{
    m_pScalingOrientation = nullptr;
    m_Flags = k_ComponentsDirty | k_XfoMatDirty | k_QNScaling;
}

long C3DTransfo::GetMemSize() const
{
    std::size_t const orientation = m_pScalingOrientation != nullptr ? sizeof *m_pScalingOrientation : 0;
    return static_cast<long>(sizeof(void *) + orientation);
}

// --- The flags -------------------------------------------------------------------------------------------------------

/// The order of the rotation goes on record, for a matrix that is about to take the place of the components.
void C3DTransfo::NoteRotOrder()
{
    if (_IsXfoMatDirty() && !_AreComponentsDirty())
    {
        m_XfoRotOrder = m_Rotation.GetXYZRotOrder();
    }
}

// --- The scaling orientation -----------------------------------------------------------------------------------------

void C3DTransfo::_AllocateScalingOrientationMatrix(bool wanted)
{
    if (!wanted)
    {
        delete m_pScalingOrientation;
        m_pScalingOrientation = nullptr;
    }
    else if (m_pScalingOrientation == nullptr)
    {
        m_pScalingOrientation = new (std::nothrow) C3DRotation();
    }
}

bool C3DTransfo::HasScalingOrientation() const
{
    return m_pScalingOrientation != nullptr && !m_pScalingOrientation->IsAlmostIdentity(k_Tolerance);
}

/// The scaling orientation of clean components, and the identity where it is almost that or without effect.
C3DRotation C3DTransfo::CopyEffectiveScalingOrientation() const
{
    return HasShearing() ? *m_pScalingOrientation : C3DRotation();
}

void C3DTransfo::StoreScalingOrientation(C3DRotation const & scalingOrientation)
{
    _AllocateScalingOrientationMatrix(!scalingOrientation.IsAlmostIdentity(k_Tolerance));
    if (m_pScalingOrientation != nullptr)
    {
        m_pScalingOrientation->Set(scalingOrientation, 0);
    }
}

// --- From components to the matrix, and back -------------------------------------------------------------------------

bool C3DTransfo::IsMatrixSheared() const
{
    auto const dot = [this](int a, int b)
    {
        return m_XfoMat.Get(a, 0) * m_XfoMat.Get(b, 0) + m_XfoMat.Get(a, 1) * m_XfoMat.Get(b, 1) +
               m_XfoMat.Get(a, 2) * m_XfoMat.Get(b, 2);
    };
    return std::abs(dot(0, 1)) > k_ShearTolerance || std::abs(dot(0, 2)) > k_ShearTolerance ||
           std::abs(dot(1, 2)) > k_ShearTolerance;
}

bool C3DTransfo::HasShearing() const
{
    if (_IsDefinitelyIdentity())
    {
        return false;
    }
    return _AreComponentsDirty() ? IsMatrixSheared() : HasScalingOrientation();
}

void C3DTransfo::Combine()
{
    if (_IsDefinitelyIdentity())
    {
        m_XfoMat.SetIdentity();
    }
    else
    {
        if (HasScalingOrientation())
        {
            m_XfoMat.SetCol(3, 0, 0, 0, 1);
            m_XfoMat.SetScalingAndRotation(m_Scaling, *m_pScalingOrientation);
            m_XfoMat.MulTransByReg(*m_pScalingOrientation->GetMatrix(), m_XfoMat);
            m_XfoMat.Mul(m_XfoMat, *m_Rotation.GetMatrix());
            m_XfoMat.SetTranslation(m_Translation);
        }
        else
        {
            _AllocateScalingOrientationMatrix(false);
            CombineUnsheared(m_XfoMat.m_Elements, ClampScale(m_Scaling), *m_Rotation.GetMatrix(), m_Translation);
            m_XfoMat.SetSclSignBits(m_Scaling);
        }
    }
    m_XfoRotOrder = m_Rotation.GetXYZRotOrder();
    _SetXfoMatDirty(0);
}

void C3DTransfo::Factorize(unsigned char mask)
{
    // Where the matrix is stale as well there is nothing to read.
    if (_IsDefinitelyIdentity() || _IsXfoMatDirty())
    {
        ResetComponents(static_cast<unsigned char>(mask | k_ScalingOrientationComponent));
    }
    else
    {
        IsMatrixSheared() ? FactorizeSheared(mask) : FactorizeUnsheared(mask);
        if ((mask & k_TranslationComponent) != 0)
        {
            m_XfoMat.GetTranslation(m_Translation);
        }
    }
    _SetComponentsDirty(0);
}

void C3DTransfo::FactorizeSheared(unsigned char mask)
{
    C3DRotMatTpl<double> u{C3DInitRequest_DoNotInitialize()};
    C3DXfoMatTpl<double> remainder{C3DInitRequest_DoNotInitialize()};
    m_XfoMat.GetAffineDecomposition(u, remainder);
    C3DRotation rest;
    ReadRows(remainder, mask, m_Scaling, rest);
    if ((mask & k_RotationComponent) != 0)
    {
        C3DRotMatTpl<double> product{C3DInitRequest_DoNotInitialize()};
        m_Rotation.Set(product.Mul(u, *rest.GetMatrix())).Set(m_XfoRotOrder, 1);
    }
    if ((mask & k_ScalingOrientationComponent) != 0)
    {
        _AllocateScalingOrientationMatrix(true);
        if (m_pScalingOrientation != nullptr)
        {
            m_pScalingOrientation->Set(u.Transpose());
        }
    }
}

void C3DTransfo::FactorizeUnsheared(unsigned char mask)
{
    ReadRows(m_XfoMat, mask, m_Scaling, m_Rotation);
    if ((mask & k_RotationComponent) != 0)
    {
        m_Rotation.Set(m_XfoRotOrder, 1);
    }
    _AllocateScalingOrientationMatrix(false);
}

void C3DTransfo::ResetComponents(unsigned char mask)
{
    if ((mask & k_ScalingComponent) != 0)
    {
        m_Scaling.Set(1, 1, 1);
    }
    if ((mask & k_ScalingOrientationComponent) != 0)
    {
        _AllocateScalingOrientationMatrix(false);
    }
    if ((mask & k_RotationComponent) != 0)
    {
        m_Rotation.SetIdentity();
    }
    if ((mask & k_TranslationComponent) != 0)
    {
        m_Translation.SetNull();
    }
}

// --- Tests -----------------------------------------------------------------------------------------------------------

bool C3DTransfo::QuickIsIdentity() const
{
    return _IsDefinitelyIdentity();
}

bool C3DTransfo::IsExactlyIdentity()
{
    if (_IsDefinitelyIdentity())
    {
        return true;
    }
    if (!_IsXfoMatDirty())
    {
        return m_XfoMat.IsExactlyIdentity();
    }
    bool const identity = m_Translation.IsExactlyNull() && m_Scaling.X == 1 && m_Scaling.Y == 1 && m_Scaling.Z == 1 &&
                          m_Rotation.IsExactlyIdentity();
    if (identity)
    {
        _SetDefinitelyIdentity(1);
    }
    return identity;
}

bool C3DTransfo::IsIdentity(double epsilon)
{
    if (epsilon == 0)
    {
        return IsExactlyIdentity();
    }
    if (_IsDefinitelyIdentity())
    {
        return true;
    }
    if (!_IsXfoMatDirty())
    {
        return m_XfoMat.IsIdentity(epsilon);
    }
    auto const isNear = [epsilon](C3DVector3Tpl<double> const & v, double value) {
        return std::abs(v.X - value) <= epsilon && std::abs(v.Y - value) <= epsilon && std::abs(v.Z - value) <= epsilon;
    };
    return isNear(m_Translation, 0) && isNear(m_Scaling, 1) && m_Rotation.IsAlmostIdentity(epsilon);
}

static_assert(std::is_standard_layout_v<C3DTransfo>);
