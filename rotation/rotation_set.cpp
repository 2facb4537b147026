#include "math/rotation.h"

#include "math/rotation_conversions.h"
#include "numeric/axis.h"
#include "rotation/angle_constants.h"
#include "rotation/angle_mark.h"
#include "rotation/euler_order.h"
#include "rotation/quaternion_matrix.h"

#include <algorithm>
#include <cmath>

using namespace math::detail;

namespace
{

/// Whether axis i acts before axis j. In an order that does not exist no axis does.
bool ActsBefore(int i, int j, EulerOrder const * order)
{
    return order != nullptr && (i == order->first || j == order->last);
}

/// Whether the angles mean the same rotation in both orders, which differ: no two axes with an angle change their
/// sequence. With three angles every change of order changes some sequence; with one there is none.
bool AnglesKeepTheirMeaning(C3DVector3Tpl<double> const & angles, tagE3DROTORDER oldOrder, tagE3DROTORDER newOrder)
{
    EulerOrder const * const before = FindEulerOrder(oldOrder);
    EulerOrder const * const after = FindEulerOrder(newOrder);
    int pairs = 0;
    for (int i = 0; i < 3; ++i)
    {
        int const j = (i + 1) % 3;
        if (angles.Get(i) != 0 && angles.Get(j) != 0)
        {
            ++pairs;
            if (ActsBefore(i, j, before) != ActsBefore(i, j, after))
            {
                return false;
            }
        }
    }
    return pairs < 3;
}

} // namespace

C3DRotation & C3DRotation::SetIdentity()
{
    if (!_IsDefinitelyIdentity())
    {
        m_Quat.SetIdentity();
        m_Angle = 0;
        m_Flags = k_MatDirty | k_AnglesDirty | k_DefinitelyIdentity;
    }
    return *this;
}

void C3DRotation::NormalizeQuat()
{
    m_Quat.Normalize();
    m_Angle = k_AngleOfQuat;
}

C3DRotation & C3DRotation::Set(C3DQuatTpl<double> const & quat)
{
    C3DQuatTpl<double> unit = quat;
    NormalizeQuaternion(unit);
    m_Quat = unit;
    m_Angle = k_AngleOfQuat;
    m_Flags = k_QuatIsSource;
    return *this;
}

C3DRotation & C3DRotation::Set(C3DRotMatTpl<double> const & mat)
{
    // Number by number: a copy as a whole would wait for numbers that have only just been stored, as they mostly are.
    m_Matrix.SetRow(0, mat.Get(0, 0), mat.Get(0, 1), mat.Get(0, 2))
        .SetRow(1, mat.Get(1, 0), mat.Get(1, 1), mat.Get(1, 2))
        .SetRow(2, mat.Get(2, 0), mat.Get(2, 1), mat.Get(2, 2));
    m_Flags = k_MatrixIsSource;
    return *this;
}

C3DRotation & C3DRotation::Set(C3DVector3Tpl<double> const & row0, C3DVector3Tpl<double> const & row1,
                               C3DVector3Tpl<double> const & row2)
{
    return Set(C3DRotMatTpl<double>(row0, row1, row2, 1));
}

C3DRotation & C3DRotation::Set(C3DVector3Tpl<double> const & angles, tagE3DROTORDER order)
{
    m_XYZAngles = angles;
    m_RotOrder = static_cast<unsigned char>(order);
    _SetDefinitelyIdentity(m_XYZAngles.IsExactlyNull());
    SetXYZAnglesRep();
    return *this;
}

C3DRotation & C3DRotation::Set(double x, double y, double z, tagE3DROTORDER order)
{
    return Set(C3DVector3Tpl<double>(x, y, z), order);
}

C3DRotation & C3DRotation::Set(tagE3DAXISTYPE axis, double angle)
{
    if (angle == 0 || !NamesAxis(axis))
    {
        return SetIdentity();
    }
    double const sine = std::sin(angle * 0.5);
    m_Quat.Set(std::cos(angle * 0.5), axis == E3D_AXIS_X ? sine : 0, axis == E3D_AXIS_Y ? sine : 0,
               axis == E3D_AXIS_Z ? sine : 0);
    m_Angle = angle;
    m_Matrix.Set(axis, angle);
    m_XYZAngles = C3DVector3Tpl<double>(axis, angle);
    // The quaternion is the source, and nothing is stale: one angle is the same rotation in every order.
    m_Flags = 0;
    return *this;
}

C3DRotation & C3DRotation::Set(C3DVector3Tpl<double> const & axis, double angle)
{
    if (angle == 0)
    {
        return SetIdentity();
    }
    if (axis.Y == 0 && axis.Z == 0 && axis.X > 0)
    {
        return Set(E3D_AXIS_X, angle);
    }
    // The null vector comes this way too.
    if (axis.X == 0 && axis.Y == 0 && axis.Z >= 0)
    {
        return Set(E3D_AXIS_Z, angle);
    }
    if (axis.X == 0 && axis.Z == 0 && axis.Y >= 0)
    {
        return Set(E3D_AXIS_Y, angle);
    }
    _SetDefinitelyIdentity(0);
    F3DAxisAngleToQuat(axis, angle, m_Quat);
    m_Angle = angle;
    SetQuatRep();
    return *this;
}

int C3DRotation::Set(C3DVector3Tpl<double> const & from, C3DVector3Tpl<double> const & to, int & degenerate)
{
    double const tolerance = k_StandardTolerance<double>;
    degenerate = 0;
    double const product = from.GetLength() * to.GetLength();
    if (product < tolerance)
    {
        SetIdentity();
        return 0;
    }
    _SetDefinitelyIdentity(0);
    double const cosine = Dot(from, to);
    double angle = std::acos(std::clamp(cosine / product, -1.0, 1.0));
    C3DVector3Tpl<double> normal;
    double length = normal.SetCross(from, to).GetLength();
    if (!(length >= tolerance))
    {
        if (cosine > 0)
        {
            SetIdentity();
            return 1;
        }
        degenerate = 1;
        angle = k_Pi;
        length = normal.Set(0, -from.Z, from.Y).GetLength();
        if (length < tolerance)
        {
            Set(E3D_AXIS_Y, k_Pi);
            return 1;
        }
    }
    double const factor = std::sin(angle * 0.5) / length;
    m_Quat.Set(std::cos(angle * 0.5), normal.X * factor, normal.Y * factor, normal.Z * factor);
    m_Quat.Normalize();
    m_Angle = angle;
    SetQuatRep();
    return 1;
}

C3DRotation & C3DRotation::Set(tagE3DROTORDER order, int keepRotation)
{
    if (_IsDefinitelyIdentity())
    {
        m_RotOrder = static_cast<unsigned char>(order);
        return *this;
    }
    if (order == GetXYZRotOrder())
    {
        return *this;
    }
    if (keepRotation != 0)
    {
        if (_GetOrigRep() == E3DROTREPTYPE_XYZANGLES)
        {
            ConvertAnglesTo(order);
            return *this;
        }
        m_RotOrder = static_cast<unsigned char>(order);
        _SetAnglesDirty(1);
        return *this;
    }
    FreshenAngles();
    SetXYZAnglesRep();
    m_RotOrder = static_cast<unsigned char>(order);
    return *this;
}

void C3DRotation::ConvertAnglesTo(tagE3DROTORDER order)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        if (std::abs(m_XYZAngles.Get(axis)) < k_StandardTolerance<double>)
        {
            m_XYZAngles.Set(axis, 0);
        }
    }
    if (!AnglesKeepTheirMeaning(m_XYZAngles, GetXYZRotOrder(), order))
    {
        C3DRotMatTpl<double> matrix;
        F3DEulerToMat(m_XYZAngles, matrix, GetXYZRotOrder());
        F3DMatToEuler(matrix, m_XYZAngles, order);
    }
    SetXYZAnglesRep();
    m_RotOrder = static_cast<unsigned char>(order);
}

C3DRotation & C3DRotation::Set(C3DRotation const & source, int keepOwnOrder)
{
    if (&source == this)
    {
        return *this;
    }
    tagE3DROTORDER const ownOrder = GetXYZRotOrder();
    if (source._IsDefinitelyIdentity())
    {
        SetIdentity();
        m_RotOrder = keepOwnOrder != 0 ? m_RotOrder : source.m_RotOrder;
        return *this;
    }
    if (!source._IsQuatDirty())
    {
        m_Quat = source.m_Quat;
    }
    if (!source._IsMatDirty())
    {
        m_Matrix = source.m_Matrix;
    }
    if (!source._AreAnglesDirty())
    {
        m_XYZAngles = source.m_XYZAngles;
    }
    m_Flags = source.m_Flags;
    m_Angle = source.m_Angle;
    m_RotOrder = source.m_RotOrder;
    if (keepOwnOrder != 0)
    {
        Set(ownOrder, 1);
    }
    return *this;
}
