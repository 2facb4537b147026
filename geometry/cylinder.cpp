#include "math/cylinder.h"

#include "geometry/smallest_radius.h"
#include "geometry/surface_parameter.h"
#include "math/platform/result.h"
#include "math/rotation.h"
#include "math/transformation.h"
#include "rotation/angle_constants.h"

#include <cmath>

using math::detail::IsFromUpTo;
using math::detail::k_SmallestRadius;
using math::detail::RadiusAboveSmallest;
using Vector = C3DVector3Tpl<double>;

C3DBaseCylinder::C3DBaseCylinder()
    : C3DBaseCylinder(k_SmallestRadius, Vector(-k_SmallestRadius, 0, 0), Vector(k_SmallestRadius, 0, 0))
{
}

C3DBaseCylinder::C3DBaseCylinder(double radius, double length, tagE3DCylinderAxisType type)
    : PartialGeometry(E3DGEOMTYPE_CYLINDER)
{
    Set(radius, length, type);
}

C3DBaseCylinder::C3DBaseCylinder(double radius, Vector const & start, Vector const & end)
    : PartialGeometry(E3DGEOMTYPE_CYLINDER), m_Radius(RadiusAboveSmallest(radius)), m_Start(start), m_End(end)
{
}

void C3DBaseCylinder::Set(double radius, double length, tagE3DCylinderAxisType type)
{
    SetRadius(radius);
    if (type < E3DCYLINDERAXIS_X || type > E3DCYLINDERAXIS_Y_AGAIN)
    {
        return;
    }
    int const axis = type == E3DCYLINDERAXIS_Y_AGAIN ? E3DCYLINDERAXIS_Y : type;
    m_End = Vector(axis, length * 0.5);
    m_Start = Vector(axis, -(length * 0.5));
}

void C3DBaseCylinder::Set(C3DBaseCylinder const & cylinder)
{
    m_Radius = cylinder.m_Radius;
}

void C3DBaseCylinder::SetAxis(Vector const & start, Vector const & end)
{
    m_Start = start;
    m_End = end;
}

void C3DBaseCylinder::SetRadius(double radius)
{
    m_Radius = RadiusAboveSmallest(radius);
}

void C3DBaseCylinder::GetRadius(double & radius) const
{
    radius = m_Radius;
}

void C3DBaseCylinder::GetLength(double & length) const
{
    length = GetDistance(m_Start, m_End);
}

long C3DBaseCylinder::GetTransfo(C3DTransfo & out) const
{
    if (!out.QuickIsIdentity())
    {
        out.SetIdentity();
    }
    Vector const x(1, 0, 0);
    Vector axis;
    axis.Sub(m_End, m_Start);
    C3DRotation rotation;
    rotation.Set(x, axis, Vector().SetCross(x, axis));
    out.SetRotation(rotation);
    out.SetTranslation(Vector().SetMidpoint(m_Start, m_End));
    return S_OK;
}

C3DXfoMatTpl<double> C3DBaseCylinder::GetFrame() const
{
    C3DTransfo frame;
    GetTransfo(frame);
    return *frame.GetMatrix();
}

double C3DBaseCylinder::SignedHalfLength(double reduced) const
{
    double length = 0;
    GetLength(length);
    return reduced < 0 ? -length / 2 : length / 2;
}

long C3DBaseCylinder::GetPos(double u, double v, Vector & point) const
{
    double const reduced = std::fmod(v, 1.0);
    double const angle = math::detail::k_TwoPi * u;
    if (IsFromUpTo(reduced, 0, 0.25))
    {
        GetNormal(u, v, point);
        point.Mul(m_Radius);
    }
    else
    {
        point.Set(SignedHalfLength(reduced), m_Radius * std::sin(angle), m_Radius * std::cos(angle));
    }
    point.Mul(point, GetFrame());
    return S_OK;
}

long C3DBaseCylinder::GetNormal(double u, double v, Vector & normal) const
{
    double const reduced = std::fmod(v, 1.0);
    double const angle = math::detail::k_TwoPi * u;
    if (IsFromUpTo(reduced, 0, 0.25))
    {
        normal.Set(0, std::sin(angle), std::cos(angle));
    }
    else
    {
        normal.Set(SignedHalfLength(reduced), 0, 0);
    }
    normal.Mul(normal, GetFrame());
    return S_OK;
}

long C3DBaseCylinder::GetTangents(double u, double v, Vector & first, Vector & second) const
{
    double const reduced = std::fmod(v, 1.0);
    double const angle = math::detail::k_TwoPi * u;
    if (IsFromUpTo(reduced, 0, 0.25))
    {
        first.Set(0, std::cos(angle), -std::sin(angle));
        second.Set(-1, 0, 0);
    }
    else
    {
        double const w = reduced < 0 ? 4 * v : 4 * (v - 0.75);
        first.Set(0, std::sin(angle), std::cos(angle));
        second.Set(0, std::cos(math::detail::k_TwoPi * (w + 0.5)), std::sin(math::detail::k_TwoPi * w));
    }
    C3DXfoMatTpl<double> const frame = GetFrame();
    first.Mul(first, frame);
    second.Mul(second, frame);
    return S_OK;
}
