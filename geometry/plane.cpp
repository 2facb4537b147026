#include "math/plane.h"

#include "geometry/axis_vector.h"
#include "geometry/vector_expressions.h"
#include "math/platform/result.h"
#include "math/vector_geometry.h"

using math::detail::AxisVector;
using math::detail::Dot;
using math::detail::UnitOrSame;
using Vector = C3DVector3Tpl<double>;

namespace
{

/// Any other value counts as Z, whose successor is X.
tagE3DAXISTYPE NextAxis(tagE3DAXISTYPE axis)
{
    switch (axis)
    {
    case E3D_AXIS_X:
        return E3D_AXIS_Y;
    case E3D_AXIS_Y:
        return E3D_AXIS_Z;
    default:
        return E3D_AXIS_X;
    }
}

} // namespace

C3DPlane::C3DPlane() : C3DPlane(Vector(0, 0, 0), E3D_AXIS_Z) {}

C3DPlane::C3DPlane(Vector const & origin, tagE3DAXISTYPE normalAxis)
    : PartialGeometry(E3DGEOMTYPE_PLANE), m_Origin(origin), m_Normal(AxisVector(normalAxis)),
      m_FirstTangent(AxisVector(NextAxis(normalAxis))), m_SecondTangent(AxisVector(NextAxis(NextAxis(normalAxis))))
{
}

C3DPlane::C3DPlane(Vector const & origin, Vector const & normal) : PartialGeometry(E3DGEOMTYPE_PLANE), m_Origin(origin)
{
    SetNormal(normal);
}

C3DPlane::C3DPlane(Vector const & origin, tagE3DAXISTYPE first, tagE3DAXISTYPE second)
    : PartialGeometry(E3DGEOMTYPE_PLANE), m_Origin(origin), m_FirstTangent(AxisVector(first)),
      m_SecondTangent(AxisVector(first == second ? (second % 3 + 1) % 3 : second))
{
    m_Normal.SetCross(m_FirstTangent, m_SecondTangent);
}

C3DPlane::C3DPlane(Vector const & origin, Vector const & first, Vector const & second)
    : PartialGeometry(E3DGEOMTYPE_PLANE), m_Origin(origin), m_FirstTangent(first)
{
    m_Normal.SetCross(first, second);
    m_SecondTangent.SetCross(m_Normal, first);
}

void C3DPlane::Set(C3DPlane const & plane)
{
    m_Origin = plane.m_Origin;
    m_Normal = plane.m_Normal;
    m_FirstTangent = plane.m_FirstTangent;
    m_SecondTangent = plane.m_SecondTangent;
}

void C3DPlane::SetOrigin(Vector const & origin)
{
    m_Origin = origin;
}

void C3DPlane::SetNormal(Vector const & normal)
{
    m_Normal = normal;
    ComputeTangentsFromNormal();
}

void C3DPlane::ComputeTangentsFromNormal()
{
    GetOrthogonalBasis(m_Normal, m_FirstTangent, m_SecondTangent);
}

void C3DPlane::SetTangents(Vector const & first, Vector const & second)
{
    double const secondLength = second.GetLength();
    m_Normal.SetCross(first, second).Normalize();
    m_FirstTangent = first;
    m_SecondTangent.SetCross(m_Normal, m_FirstTangent).SetLength(secondLength);
}

long C3DPlane::GetPos(double u, double v, Vector & point) const
{
    point.Mul(m_FirstTangent, u).Add(m_Origin, point).Add(Vector().Mul(m_SecondTangent, v));
    return S_OK;
}

long C3DPlane::GetTangents(double /*u*/, double /*v*/, Vector & first, Vector & second) const
{
    first = m_FirstTangent;
    second = m_SecondTangent;
    return S_OK;
}

long C3DPlane::GetNormal(double /*u*/, double /*v*/, Vector & normal) const
{
    normal = m_Normal;
    return S_OK;
}

bool C3DPlane::IsDifferentFrom(C3DPlane const & other) const
{
    return m_Origin != other.m_Origin || m_Normal != other.m_Normal || m_FirstTangent != other.m_FirstTangent ||
           m_SecondTangent != other.m_SecondTangent;
}

int C3DPlane::operator==(C3DPlane const & other)
{
    return !IsDifferentFrom(other);
}

int C3DPlane::operator==(C3DPlane & other)
{
    return !IsDifferentFrom(other);
}

int C3DPlane::operator==(C3DPlane && other)
{
    return !IsDifferentFrom(other);
}

int C3DPlane::operator!=(C3DPlane const & other)
{
    return IsDifferentFrom(other);
}

int C3DPlane::operator!=(C3DPlane & other)
{
    return IsDifferentFrom(other);
}

int C3DPlane::operator!=(C3DPlane && other)
{
    return IsDifferentFrom(other);
}

tagE3D_INTERSECTION_STATUS C3DPlane::LineIntersection(C3DLine const & line, double * outU, double * outV,
                                                      Vector & outPoint, double sineLimit, double distanceLimit) const
{
    double const normalLength = m_Normal.GetLength();
    if (!(normalLength >= math::detail::k_LessAccurateTolerance<double>))
    {
        return E3D_INTERSECTION_NONE;
    }
    Vector start;
    Vector direction;
    line.GetPos(0, start);
    line.GetTangent(0, direction);
    direction.Normalize();
    double const sine = Dot(direction, m_Normal) / normalLength;
    double const height = Dot(Vector().Sub(start, m_Origin), UnitOrSame(m_Normal));
    if (!(std::abs(sine) >= sineLimit))
    {
        bool const areApart = std::abs(height) >= distanceLimit;
        return areApart ? E3D_INTERSECTION_NONE : E3D_INTERSECTION_COINCIDENT;
    }
    outPoint.Sub(start, direction.Mul(height / sine));
    if (outU != nullptr || outV != nullptr)
    {
        double u = 0;
        double v = 0;
        ProjectOn(outPoint, u, v);
        if (outU != nullptr)
        {
            *outU = u;
        }
        if (outV != nullptr)
        {
            *outV = v;
        }
    }
    return E3D_INTERSECTION_POINT;
}

C3DPlane & C3DPlane::Mul(C3DPlane const & plane, C3DXfoMatTpl<double> const & matrix)
{
    Vector firstEnd;
    Vector secondEnd;
    firstEnd.Add(plane.m_Origin, plane.m_FirstTangent);
    secondEnd.Add(plane.m_Origin, plane.m_SecondTangent);
    m_Origin.Mul(plane.m_Origin, matrix);
    m_FirstTangent.Mul(firstEnd, matrix).Sub(m_Origin);
    m_SecondTangent.Mul(secondEnd, matrix).Sub(m_Origin);
    m_Normal.SetCross(m_FirstTangent, m_SecondTangent).Normalize();
    return *this;
}
