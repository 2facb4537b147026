#include "math/line.h"

#include "geometry/axis_vector.h"
#include "geometry/vector_expressions.h"
#include "math/platform/result.h"

#include <cmath>

using math::detail::Dot;
using Vector = C3DVector3Tpl<double>;

C3DLine::C3DLine() : C3DLine(Vector(0, 0, 0), E3D_AXIS_X) {}

C3DLine::C3DLine(Vector const & origin, tagE3DAXISTYPE axis) : C3DLine(origin, math::detail::AxisVector(axis)) {}

C3DLine::C3DLine(Vector const & origin, Vector const & tangent)
    : PartialGeometry(E3DGEOMTYPE_LINE), m_Origin(origin), m_Tangent(tangent)
{
}

void C3DLine::Set(C3DLine const & line)
{
    m_Origin = line.m_Origin;
    m_Tangent = line.m_Tangent;
}

void C3DLine::SetOrigin(Vector const & origin)
{
    m_Origin = origin;
}

void C3DLine::SetTangent(Vector const & tangent)
{
    m_Tangent = tangent;
}

void C3DLine::SetFromTwoPoints(Vector const & a, Vector const & b)
{
    m_Origin = a;
    m_Tangent.Sub(b, a);
}

long C3DLine::GetPos(double t, Vector & point) const
{
    point.Mul(m_Tangent, t).Add(m_Origin, point);
    return S_OK;
}

long C3DLine::GetTangent(double /*t*/, Vector & tangent) const
{
    tangent = m_Tangent;
    return S_OK;
}

long C3DLine::ProjectOn(Vector const & point, double & t) const
{
    double const product = Dot(Vector().Sub(point, m_Origin), m_Tangent);
    double const squaredLength = m_Tangent.GetSquaredLength();
    t = squaredLength > math::detail::k_StandardTolerance<double> ? product / squaredLength : product;
    return S_OK;
}

void C3DLine::GetMinProjectionVector(Vector const & point, Vector & out) const
{
    Vector offset;
    offset.Sub(point, m_Origin);
    Vector projection(offset);
    projection.SetProjection(m_Tangent);
    out.Sub(projection, offset);
}

long C3DLine::GetDistanceFrom(Vector const & point, double & distance) const
{
    Vector way;
    GetMinProjectionVector(point, way);
    distance = way.GetLength();
    return S_OK;
}

tagE3D_INTERSECTION_STATUS C3DLine::GetClosestPointToOtherLine(C3DLine const & other, double * outParameter,
                                                               Vector & outPoint, double parallelLimit,
                                                               double distanceLimit) const
{
    constexpr double leastSquare = math::detail::k_StandardTolerance<double>;
    double const squaredLength = m_Tangent.GetSquaredLength();
    if (!(squaredLength >= leastSquare) || !(other.m_Tangent.GetSquaredLength() >= leastSquare))
    {
        return E3D_INTERSECTION_NONE;
    }
    Vector const direction = math::detail::UnitOrSame(other.m_Tangent);
    double const along = Dot(direction, m_Tangent);
    Vector offset;
    other.GetPos(0, offset);
    offset.Sub(m_Origin);
    if (std::abs(along) / std::sqrt(squaredLength) > parallelLimit)
    {
        Vector projection(offset);
        projection.SetProjection(m_Tangent);
        bool const areApart = projection.Sub(offset).GetLength() >= distanceLimit;
        return areApart ? E3D_INTERSECTION_NONE : E3D_INTERSECTION_COINCIDENT;
    }
    double const s = (Dot(offset, m_Tangent) - Dot(offset, direction) * along) / (squaredLength - along * along);
    if (outParameter != nullptr)
    {
        *outParameter = s;
    }
    GetPos(s, outPoint);
    return E3D_INTERSECTION_POINT;
}

C3DLine & C3DLine::Mul(C3DLine const & line, C3DXfoMatTpl<double> const & matrix)
{
    Vector end;
    end.Add(line.m_Origin, line.m_Tangent);
    m_Origin.Mul(line.m_Origin, matrix);
    m_Tangent.Mul(end, matrix).Sub(m_Origin);
    return *this;
}
