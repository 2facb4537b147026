#include "geometry/vector_expressions.h"
#include "math/plane.h"
#include "math/platform/result.h"
#include "math/vector_geometry.h"

using math::detail::Dot;
using math::detail::UnitOrSame;
using Vector = C3DVector3Tpl<double>;

long C3DPlane::GetDistanceFrom(Vector const & point, double & distance) const
{
    Vector offset;
    offset.Sub(point, m_Origin).SetProjection(m_Normal);
    distance = offset.GetLength();
    return S_OK;
}

double C3DPlane::GetSignedDistanceFrom(Vector const & point) const
{
    return Dot(Vector().Sub(point, m_Origin), UnitOrSame(m_Normal));
}

long C3DPlane::ProjectOn(Vector const & point, double & u, double & v) const
{
    Vector offset;
    offset.Sub(point, m_Origin);
    double const firstSquare = m_FirstTangent.GetSquaredLength();
    u = Dot(offset, m_FirstTangent);
    if (firstSquare == 0)
    {
        return E_UNEXPECTED;
    }
    u /= firstSquare;
    double const secondSquare = m_SecondTangent.GetSquaredLength();
    v = Dot(offset, m_SecondTangent);
    if (secondSquare == 0)
    {
        return E_UNEXPECTED;
    }
    v /= secondSquare;
    return S_OK;
}

long C3DPlane::ProjectPoint(Vector const & point, Vector & out) const
{
    double u = 0;
    double v = 0;
    ProjectOn(point, u, v); // a null tangent takes its raw product to nothing
    return GetPos(u, v, out);
}

long C3DPlane::ProjectVector(Vector const & vector, Vector & out) const
{
    ProjectPoint(Vector().Add(m_Origin, vector), out);
    out.Sub(m_Origin);
    return S_OK;
}

long C3DPlane::ProjectVectorOrthogonally(Vector const & vector, Vector & out, double cosLimit) const
{
    double const length = vector.GetLength();
    bool const isLong = length >= math::detail::k_LessAccurateTolerance<double>;
    if (!isLong || Dot(vector, m_Normal) / (m_Normal.GetLength() * length) > cosLimit)
    {
        out.SetNull();
        return S_FALSE;
    }
    double const firstSquare = m_FirstTangent.GetSquaredLength();
    double const secondSquare = m_SecondTangent.GetSquaredLength();
    if (firstSquare == 0 || secondSquare == 0)
    {
        return E_UNEXPECTED;
    }
    GetPos(Dot(vector, m_FirstTangent) / firstSquare, Dot(vector, m_SecondTangent) / secondSquare, out);
    out.Sub(m_Origin);
    return S_OK;
}

long C3DPlane::ReflectPoint(Vector const & point, Vector & out) const
{
    Vector foot;
    ProjectPoint(point, foot);
    out.Sub(foot, point).Add(foot, out);
    return S_OK;
}

long C3DPlane::ReflectVector(Vector const & vector, Vector & out) const
{
    Vector origin;
    ReflectPoint(Vector(0, 0, 0), origin);
    ReflectPoint(vector, out);
    out.Sub(origin);
    return S_OK;
}

void C3DPlane::ProjectLineOn(C3DLine const & line, C3DLine & out) const
{
    Vector start;
    Vector end;
    line.GetPos(0, start);
    line.GetPos(1, end);
    start.Sub(Vector().Mul(m_Normal, GetSignedDistanceFrom(start)));
    end.Sub(Vector().Mul(m_Normal, GetSignedDistanceFrom(end)));
    out.SetFromTwoPoints(start, end);
}

long C3DPlane::GetAngleOfProjectedVectors(Vector const & a, Vector const & b, double & angle) const
{
    constexpr double cosineOfOneDegree = 0.9998476951564;
    angle = 0;
    Vector first;
    Vector second;
    if (ProjectVectorOrthogonally(a, first, cosineOfOneDegree) < 0)
    {
        return S_FALSE;
    }
    long const result = ProjectVectorOrthogonally(b, second, cosineOfOneDegree);
    if (result < 0)
    {
        return S_FALSE;
    }
    angle = GetVctsAngle(first, second);
    if (Dot(Vector().SetCross(first, second), m_Normal) < 0)
    {
        angle = -angle;
    }
    return result;
}

long C3DPlane::GetScaleMatrix(C3DXfoMatTpl<double> & out, double s) const
{
    double const k = 1 - s;
    Vector const & n = m_Normal;
    double const xy = -k * n.X * n.Y;
    double const xz = -k * n.X * n.Z;
    double const yz = -k * n.Y * n.Z;
    Vector translation;
    translation.Mul(n, k * Dot(m_Origin, n));
    out.Set(C3DMatrix44Tpl<double>(1 - k * n.X * n.X, xy, xz, 0, //
                                   xy, 1 - k * n.Y * n.Y, yz, 0, //
                                   xz, yz, 1 - k * n.Z * n.Z, 0, //
                                   translation.X, translation.Y, translation.Z, 1));
    return S_OK;
}

long C3DPlane::GetMirrorMatrix(C3DXfoMatTpl<double> & out) const
{
    return GetScaleMatrix(out, -1);
}
