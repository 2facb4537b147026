#include "math/point.h"

#include "math/platform/result.h"

using Vector = C3DVector3Tpl<double>;

C3DPoint::C3DPoint() : C3DPoint(Vector(0, 0, 0)) {}

C3DPoint::C3DPoint(Vector const & position) : C3DMathGeometry(E3DGEOMTYPE_POINT), m_Position(position) {}

void C3DPoint::SetPos(Vector const & position)
{
    m_Position = position;
}

long C3DPoint::GetPos(Vector & position) const
{
    position = m_Position;
    return S_OK;
}

long C3DPoint::GetDistanceFrom(Vector const & point, double & distance) const
{
    distance = GetDistance(m_Position, point);
    return S_OK;
}
