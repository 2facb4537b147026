#include "math/sphere.h"

#include "geometry/smallest_radius.h"
#include "geometry/sphere_surface.h"
#include "geometry/vector_expressions.h"
#include "math/platform/result.h"

using math::detail::RadiusAboveSmallest;
using math::detail::SphereNormal;
using Vector = C3DVector3Tpl<double>;

C3DBaseSphere::C3DBaseSphere() : C3DBaseSphere(math::detail::k_SmallestRadius) {}

C3DBaseSphere::C3DBaseSphere(double radius) : C3DBaseSphere(radius, Vector(0, 0, 0)) {}

C3DBaseSphere::C3DBaseSphere(double radius, Vector const & center)
    : C3DMathGeometry(E3DGEOMTYPE_SPHERE), m_Radius(RadiusAboveSmallest(radius)), m_Center(center)
{
}

void C3DBaseSphere::Set(double radius, Vector const & center)
{
    SetRadius(radius);
    SetCenter(center);
}

void C3DBaseSphere::Set(C3DBaseSphere const & sphere)
{
    m_Radius = sphere.m_Radius;
}

void C3DBaseSphere::SetRadius(double radius)
{
    m_Radius = RadiusAboveSmallest(radius);
}

void C3DBaseSphere::SetCenter(Vector const & center)
{
    m_Center = center;
}

void C3DBaseSphere::GetRadius(double & radius) const
{
    radius = m_Radius;
}

void C3DBaseSphere::GetCenter(Vector & center) const
{
    center = m_Center;
}

long C3DBaseSphere::GetDistanceFrom(Vector const & point, double & distance) const
{
    distance = GetDistance(point, m_Center) - m_Radius;
    return S_OK;
}

long C3DBaseSphere::ProjectOn(Vector const & point, double & u, double & v) const
{
    Vector const w = Vector().Sub(point, m_Center);
    u = 0;
    v = 0;
    if (!math::detail::IsNegligible(w))
    {
        math::detail::DirectionParameters(w, u, v);
    }
    return S_OK;
}

long C3DBaseSphere::GetPos(double u, double v, Vector & point) const
{
    point.Mul(SphereNormal(u, v), m_Radius).Add(m_Center, point);
    return S_OK;
}

long C3DBaseSphere::GetNormal(double u, double v, Vector & normal) const
{
    normal = SphereNormal(u, v);
    return S_OK;
}

long C3DBaseSphere::GetTangents(double u, double v, Vector & first, Vector & second) const
{
    double const angle = (0.5 - 2 * u) * math::detail::k_Pi;
    first.Set(std::cos(angle), 0, std::sin(angle));
    Vector normal = SphereNormal(u, v);
    normal.Normalize();
    second.SetCross(normal, first);
    return S_OK;
}
