#include "math/co_plane.h"

#include "geometry/com/wrapper.h"

using Vector = C3DVector3Tpl<double>;

C3DCoPlane::C3DCoPlane() = default;

C3DCoPlane::C3DCoPlane(Vector const & origin, tagE3DAXISTYPE normalAxis) : C3DPlane(origin, normalAxis) {}

C3DCoPlane::C3DCoPlane(Vector const & origin, Vector const & normal) : C3DPlane(origin, normal) {}

C3DCoPlane::C3DCoPlane(Vector const & origin, tagE3DAXISTYPE first, tagE3DAXISTYPE second)
    : C3DPlane(origin, first, second)
{
}

C3DCoPlane::C3DCoPlane(Vector const & origin, Vector const & first, Vector const & second)
    : C3DPlane(origin, first, second)
{
}

C3DCoPlane::C3DCoPlane(C3DCoPlane const & other) : C3DPlane(other), I3DReadSurface_QN(other), I3DImplicitGeometry(other)
{
}

C3DCoPlane & C3DCoPlane::operator=(C3DCoPlane const & other)
{
    C3DPlane::operator=(other); // the references stay with the object that they are to
    return *this;
}

C3DCoPlane::~C3DCoPlane() = default;

long C3DCoPlane::QueryInterface(_GUID const & iid, void ** out)
{
    return math::detail::QueryWrapper<I3DReadSurface_QN>(*this, IID_I3DReadSurface_QN, iid, out);
}

unsigned long C3DCoPlane::AddRef()
{
    return ++m_ReferenceCount;
}

unsigned long C3DCoPlane::Release()
{
    return math::detail::ReleaseWrapper(this, m_ReferenceCount);
}

long C3DCoPlane::GetType(e3dBaseGeomType & type) const
{
    return C3DMathGeometry::GetType(type);
}

long C3DCoPlane::GetPos(double u, double v, Vector & position)
{
    return C3DPlane::GetPos(u, v, position);
}

long C3DCoPlane::GetTangents(double u, double v, Vector & first, Vector & second)
{
    return C3DPlane::GetTangents(u, v, first, second);
}

long C3DCoPlane::GetNormal(double u, double v, Vector & normal)
{
    return C3DPlane::GetNormal(u, v, normal);
}

long C3DCoPlane::GetDistanceFrom(Vector const & point, double & distance)
{
    return C3DPlane::GetDistanceFrom(point, distance);
}

long C3DCoPlane::ProjectOn(Vector const & point, double & u, double & v)
{
    return C3DPlane::ProjectOn(point, u, v);
}
