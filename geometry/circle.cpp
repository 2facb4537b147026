#include "math/circle.h"

#include "geometry/smallest_radius.h"
#include "geometry/vector_expressions.h"
#include "math/vector_geometry.h"
#include "numeric/axis.h"

using math::detail::k_SmallestRadius;
using Vector = C3DVector3Tpl<double>;

namespace
{

/// A NaN stays.
double RaiseToSmallest(double radius)
{
    return k_SmallestRadius > radius ? k_SmallestRadius : radius;
}

} // namespace

C3DBaseCircle::C3DBaseCircle() : C3DBaseCircle(Vector(0, 0, 0), 1, E3D_AXIS_Z) {}

C3DBaseCircle::C3DBaseCircle(Vector const & center, double radius, Vector const & normal)
    : PartialGeometry(E3DGEOMTYPE_CIRCLE), m_Center(center), m_Normal(normal), m_Radius(RaiseToSmallest(radius))
{
}

C3DBaseCircle::C3DBaseCircle(Vector const & center, double radius, tagE3DAXISTYPE axis)
    : PartialGeometry(E3DGEOMTYPE_CIRCLE), m_Center(center), m_Radius(RaiseToSmallest(radius))
{
    SetNormal(axis);
}

C3DBaseCircle::C3DBaseCircle(Vector const & center, Vector const & pointOnCircle, tagE3DAXISTYPE axis)
    : C3DBaseCircle(center, 1, axis)
{
    SetRadius(GetDistance(center, pointOnCircle));
}

C3DBaseCircle::C3DBaseCircle(Vector const & center, Vector const & pointOnCircle, Vector const & normal)
    : C3DBaseCircle(center, 1, normal)
{
    SetRadius(GetDistance(center, pointOnCircle));
}

void C3DBaseCircle::SetCenter(Vector const & center)
{
    m_Center = center;
}

void C3DBaseCircle::SetRadius(double radius)
{
    m_Radius = radius >= k_SmallestRadius ? radius : k_SmallestRadius;
}

void C3DBaseCircle::SetNormal(tagE3DAXISTYPE axis)
{
    if (math::detail::NamesAxis(axis))
    {
        m_Normal = Vector(axis, 1.0);
    }
}

void C3DBaseCircle::GetCenter(Vector & center) const
{
    center = m_Center;
}

void C3DBaseCircle::GetNormal(Vector & normal) const
{
    normal = m_Normal;
}

void C3DBaseCircle::GetRadius(double & radius) const
{
    radius = m_Radius;
}

C3DBaseCircle & C3DBaseCircle::Mul(C3DBaseCircle const & circle, C3DXfoMatTpl<double> const & matrix)
{
    Vector a;
    Vector b;
    GetOrthogonalBasis(circle.m_Normal, a, b);
    Vector const center = circle.m_Center;
    a.Mul(circle.m_Radius).Add(center, a);
    b.Mul(circle.m_Radius).Add(center, b);
    m_Center.Mul(center, matrix);
    a.Mul(a, matrix).Sub(m_Center);
    b.Mul(b, matrix).Sub(m_Center);
    m_Radius = a.GetLength();
    m_Normal = math::detail::UnitOrSame(Vector().SetCross(a, b));
    return *this;
}
