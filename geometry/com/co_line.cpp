#include "math/co_line.h"

#include "geometry/com/wrapper.h"

using Vector = C3DVector3Tpl<double>;

C3DCoLine::C3DCoLine() = default;

C3DCoLine::C3DCoLine(Vector const & origin, tagE3DAXISTYPE axis) : C3DLine(origin, axis) {}

C3DCoLine::C3DCoLine(Vector const & origin, Vector const & tangent) : C3DLine(origin, tangent) {}

C3DCoLine::C3DCoLine(C3DCoLine const & other) : C3DLine(other), I3DReadCurve_QN(other), I3DImplicitGeometry(other) {}

C3DCoLine & C3DCoLine::operator=(C3DCoLine const & other)
{
    C3DLine::operator=(other); // the references stay with the object that they are to
    return *this;
}

C3DCoLine::~C3DCoLine() = default;

long C3DCoLine::QueryInterface(_GUID const & iid, void ** out)
{
    return math::detail::QueryWrapper<I3DReadCurve_QN>(*this, IID_I3DReadCurve_QN, iid, out);
}

unsigned long C3DCoLine::AddRef()
{
    return ++m_ReferenceCount;
}

unsigned long C3DCoLine::Release()
{
    return math::detail::ReleaseWrapper(this, m_ReferenceCount);
}

long C3DCoLine::GetType(e3dBaseGeomType & type) const
{
    return C3DMathGeometry::GetType(type);
}

long C3DCoLine::GetPos(double t, Vector & position)
{
    return C3DLine::GetPos(t, position);
}

long C3DCoLine::GetTangent(double t, Vector & tangent)
{
    return C3DLine::GetTangent(t, tangent);
}

long C3DCoLine::GetDistanceFrom(Vector const & point, double & distance)
{
    return C3DLine::GetDistanceFrom(point, distance);
}

long C3DCoLine::ProjectOn(Vector const & point, double & t)
{
    return C3DLine::ProjectOn(point, t);
}
