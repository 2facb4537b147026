#include "geometry/surface_parameter.h"
#include "math/box.h"
#include "math/platform/result.h"
#include "math/vector_geometry.h"

#include <cmath>

using math::detail::IsFromUpTo;
using Vector = C3DVector3Tpl<double>;

long C3DBaseBox::GetPos(double u, double v, Vector & point) const
{
    u = std::fmod(u, 1.0);
    v = std::fmod(v, 1.0);
    // The outline at this height: the top and the bottom shrink to their middles, the sides have the bounds.
    double y = m_Min.Y;
    double share = 4 * (1 - v);
    if (IsFromUpTo(v, 0, 0.25))
    {
        y = m_Max.Y;
        share = 4 * v;
    }
    else if (IsFromUpTo(v, 0.25, 0.75))
    {
        y = m_Max.Y - (m_Max.Y - m_Min.Y) * (v - 0.25) * 2;
        share = 1;
    }
    double const left = m_Min.X * share;
    double const right = m_Max.X * share;
    double const back = m_Min.Z * share;
    double const front = m_Max.Z * share;
    if (IsFromUpTo(u, 0, 0.125))
    {
        point.Set(right, y, 8 * u * back);
    }
    else if (IsFromUpTo(u, 0.125, 0.375))
    {
        // The change of bound at 0.1875 is part of the parametrisation.
        point.Set(4 * (u - 0.125) * (u <= 0.1875 ? left : right), y, back);
    }
    else if (IsFromUpTo(u, 0.375, 0.625))
    {
        point.Set(left, y, 4 * (u - 0.375) * front);
    }
    else if (IsFromUpTo(u, 0.625, 0.875))
    {
        point.Set(4 * (u - 0.625) * right, y, front);
    }
    else
    {
        point.Set(right, y, 8 * (u - 0.875) * front);
    }
    return S_OK;
}

long C3DBaseBox::GetNormal(double u, double v, Vector & normal) const
{
    u = std::fmod(u, 1.0);
    v = std::fmod(v, 1.0);
    if (!IsFromUpTo(v, 0.25, 0.75))
    {
        normal = Vector(E3D_AXIS_Y, IsFromUpTo(v, 0, 0.25) ? 1.0 : -1.0);
    }
    else if (IsFromUpTo(u, 0.125, 0.375))
    {
        normal = Vector(E3D_AXIS_Z, -1.0);
    }
    else if (IsFromUpTo(u, 0.375, 0.625))
    {
        normal = Vector(E3D_AXIS_X, -1.0);
    }
    else if (IsFromUpTo(u, 0.625, 0.875))
    {
        normal = Vector(E3D_AXIS_Z, 1.0);
    }
    else
    {
        normal = Vector(E3D_AXIS_X, 1.0);
    }
    return S_OK;
}

long C3DBaseBox::GetTangents(double u, double v, Vector & first, Vector & second) const
{
    Vector normal;
    GetNormal(u, v, normal);
    GetOrthogonalBasis(normal, first, second);
    return S_OK;
}
