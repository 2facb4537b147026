#include "math/rotation.h"

#include "math/rotation_conversions.h"
#include "rotation/angle_mark.h"
#include "rotation/exact_identity.h"
#include "rotation/quaternion_matrix.h"

#include <cmath>
#include <type_traits>

using namespace math::detail;

// --- Construction ----------------------------------------------------------------------------------------------------

C3DRotation::C3DRotation()
    : m_Matrix(C3DInitRequest_DoNotInitialize()), m_Angle(0),
      m_Flags(k_MatDirty | k_AnglesDirty | k_DefinitelyIdentity), m_RotOrder(E3DROTORDER_XYZ)
{
}

C3DRotation::C3DRotation(C3DInitRequest_DoNotInitialize const & request)
    : m_Quat(request), m_Matrix(request), m_Angle(0), m_Flags(k_QuatDirty | k_MatDirty | k_AnglesDirty),
      m_RotOrder(E3DROTORDER_XYZ)
{
}

C3DRotation::C3DRotation(C3DQuatTpl<double> const & quat) : C3DRotation(C3DInitRequest_DoNotInitialize())
{
    Set(quat);
}

C3DRotation::C3DRotation(C3DRotMatTpl<double> const & mat) : C3DRotation(C3DInitRequest_DoNotInitialize())
{
    Set(mat);
}

C3DRotation::C3DRotation(tagE3DAXISTYPE axis, double angle) : C3DRotation(C3DInitRequest_DoNotInitialize())
{
    Set(axis, angle);
}

C3DRotation::C3DRotation(C3DVector3Tpl<double> const & axis, double angle)
    : C3DRotation(C3DInitRequest_DoNotInitialize())
{
    Set(axis, angle);
}

C3DRotation::C3DRotation(C3DVector3Tpl<double> const & from, C3DVector3Tpl<double> const & to)
    : C3DRotation(C3DInitRequest_DoNotInitialize())
{
    int degenerate;
    Set(from, to, degenerate);
}

C3DRotation::C3DRotation(C3DVector3Tpl<double> const & angles, tagE3DROTORDER order)
    : C3DRotation(C3DInitRequest_DoNotInitialize())
{
    Set(angles, order);
}

C3DRotation::C3DRotation(double x, double y, double z, tagE3DROTORDER order)
    : C3DRotation(C3DVector3Tpl<double>(x, y, z), order)
{
}

// --- The flags -------------------------------------------------------------------------------------------------------

void C3DRotation::SetQuatRep()
{
    _SetOrigRep(E3DROTREPTYPE_QUAT);
    _SetQuatDirty(0);
    _SetMatDirty(1);
    _SetAnglesDirty(1);
}

void C3DRotation::SetMatrixRep()
{
    _SetOrigRep(E3DROTREPTYPE_MATRIX);
    _SetQuatDirty(1);
    _SetMatDirty(0);
    _SetAnglesDirty(1);
}

void C3DRotation::SetXYZAnglesRep()
{
    _SetOrigRep(E3DROTREPTYPE_XYZANGLES);
    _SetQuatDirty(1);
    _SetMatDirty(1);
    _SetAnglesDirty(0);
}

int C3DRotation::NextAxis(int axis)
{
    return (axis + 1) % 3;
}

// --- The caches ------------------------------------------------------------------------------------------------------

void C3DRotation::UpdateQuat()
{
    if (_IsDefinitelyIdentity())
    {
        m_Quat.SetIdentity();
        m_Angle = 0;
    }
    if (_GetOrigRep() == E3DROTREPTYPE_MATRIX)
    {
        m_Quat = QuaternionOfMatrix(m_Matrix);
    }
    else
    {
        F3DEulerToQuat(m_XYZAngles, m_Quat, GetXYZRotOrder());
    }
    m_Angle = k_AngleOfQuat;
    _SetQuatDirty(0);
}

void C3DRotation::UpdateMatrix()
{
    if (_IsDefinitelyIdentity())
    {
        m_Matrix.SetIdentity();
    }
    if (_GetOrigRep() != E3DROTREPTYPE_QUAT)
    {
        F3DEulerToMat(m_XYZAngles, m_Matrix, GetXYZRotOrder());
    }
    else
    {
        MatrixOfQuaternion(m_Quat, m_Matrix);
    }
    _SetMatDirty(0);
}

void C3DRotation::UpdateXYZAngles()
{
    if (_IsDefinitelyIdentity())
    {
        m_XYZAngles.SetNull();
        _SetAnglesDirty(0);
        return;
    }
    if (_IsMatDirty())
    {
        FillMatrixFromQuat();
    }
    F3DMatToEuler(m_Matrix, m_XYZAngles, GetXYZRotOrder());
    _SetAnglesDirty(0);
}

double C3DRotation::AngleOfFreshQuat() const
{
    // The result is not kept: reading a fresh form writes nothing, so that threads may share it.
    return std::isnan(m_Angle) ? 2 * std::acos(m_Quat.W) : m_Angle;
}

void C3DRotation::FillMatrixFromQuat()
{
    MatrixOfQuaternion(m_Quat, m_Matrix);
    _SetMatDirty(0);
}

// --- Reading ---------------------------------------------------------------------------------------------------------

void C3DRotation::GetQuat(C3DQuatTpl<double> & quat)
{
    FreshenQuat();
    // Number by number, as Set takes a matrix.
    quat.Set(m_Quat.W, m_Quat.X, m_Quat.Y, m_Quat.Z);
}

void C3DRotation::GetMatrix(C3DRotMatTpl<double> & mat)
{
    FreshenMatrix();
    mat = m_Matrix;
}

C3DRotMatTpl<double> const * C3DRotation::GetMatrix()
{
    FreshenMatrix();
    return &m_Matrix;
}

void C3DRotation::GetXYZAngles(C3DVector3Tpl<double> & angles)
{
    FreshenAngles();
    angles = m_XYZAngles;
}

void C3DRotation::GetXYZAngles(double & x, double & y, double & z)
{
    FreshenAngles();
    m_XYZAngles.Get(x, y, z);
}

void C3DRotation::GetXYZAngles(C3DVector3Tpl<double> & angles, tagE3DROTORDER order)
{
    if (_IsDefinitelyIdentity())
    {
        angles.SetNull();
        return;
    }
    GetXYZAngles(angles);
    if (order != GetXYZRotOrder())
    {
        C3DRotMatTpl<double> matrix;
        F3DEulerToMat(angles, matrix, GetXYZRotOrder());
        F3DMatToEuler(matrix, angles, order);
    }
}

void C3DRotation::GetAxisAngle(C3DVector3Tpl<double> & axis, double & angle)
{
    FreshenQuat();
    angle = AngleOfFreshQuat();
    double const sine = std::sin(angle * 0.5);
    if (std::abs(sine) >= k_StandardTolerance<double>)
    {
        axis.Set(m_Quat.X / sine, m_Quat.Y / sine, m_Quat.Z / sine);
    }
    else
    {
        axis.SetNull();
    }
}

tagE3DROTORDER C3DRotation::GetXYZRotOrder() const
{
    return static_cast<tagE3DROTORDER>(m_RotOrder);
}

// --- Tests -----------------------------------------------------------------------------------------------------------

int C3DRotation::IsExactlyIdentity()
{
    if (_IsDefinitelyIdentity())
    {
        return 1;
    }
    bool identity;
    if (!_AreAnglesDirty())
    {
        identity = m_XYZAngles.IsExactlyNull() != 0;
    }
    else if (!_IsQuatDirty())
    {
        identity = m_Quat.IsIdentity();
    }
    else
    {
        identity = math::detail::IsExactlyIdentity(m_Matrix);
    }
    if (identity)
    {
        _SetDefinitelyIdentity(1);
    }
    return identity;
}

int C3DRotation::IsAlmostIdentity(double const & epsilon) const
{
    if (_IsDefinitelyIdentity())
    {
        return 1;
    }
    if (!_AreAnglesDirty())
    {
        return std::abs(m_XYZAngles.X) <= epsilon && std::abs(m_XYZAngles.Y) <= epsilon &&
               std::abs(m_XYZAngles.Z) <= epsilon;
    }
    if (!_IsQuatDirty())
    {
        return m_Quat.IsIdentity(epsilon);
    }
    for (int r = 0; r < 3; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            // C3DMatrix33Tpl::IsIdentity rejects at the limit itself, which passes here.
            if (!(std::abs(m_Matrix.Get(r, c) - double(r == c)) <= epsilon))
            {
                return 0;
            }
        }
    }
    return 1;
}

int C3DRotation::IsIdentity()
{
    return IsExactlyIdentity();
}

int C3DRotation::IsIdentity(double epsilon)
{
    return epsilon == 0 ? IsExactlyIdentity() : IsAlmostIdentity(epsilon);
}

int C3DRotation::QuickIsIdentity() const
{
    return _IsDefinitelyIdentity();
}

static_assert(std::is_trivially_copyable_v<C3DRotation> && std::is_standard_layout_v<C3DRotation>);
