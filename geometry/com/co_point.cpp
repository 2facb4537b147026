#include "math/co_point.h"

#include "geometry/com/wrapper.h"

using Vector = C3DVector3Tpl<double>;

C3DCoPoint::C3DCoPoint() = default;

C3DCoPoint::C3DCoPoint(Vector const & position) : C3DPoint(position) {}

C3DCoPoint::C3DCoPoint(C3DCoPoint const & other) : C3DPoint(other), I3DReadPoint_QN(other), I3DImplicitGeometry(other)
{
}

C3DCoPoint & C3DCoPoint::operator=(C3DCoPoint const & other)
{
    C3DPoint::operator=(other); // the references stay with the object that they are to
    return *this;
}

C3DCoPoint::~C3DCoPoint() = default;

long C3DCoPoint::QueryInterface(_GUID const & iid, void ** out)
{
    return math::detail::QueryWrapper<I3DReadPoint_QN>(*this, IID_I3DReadPoint_QN, iid, out);
}

unsigned long C3DCoPoint::AddRef()
{
    return ++m_ReferenceCount;
}

unsigned long C3DCoPoint::Release()
{
    return math::detail::ReleaseWrapper(this, m_ReferenceCount);
}

long C3DCoPoint::GetType(e3dBaseGeomType & type) const
{
    return C3DMathGeometry::GetType(type);
}

long C3DCoPoint::GetPos(Vector & position)
{
    return C3DPoint::GetPos(position);
}

long C3DCoPoint::GetDistanceFrom(Vector const & point, double & distance)
{
    return C3DPoint::GetDistanceFrom(point, distance);
}
