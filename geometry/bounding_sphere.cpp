#include "math/bounding_sphere.h"

#include "geometry/smallest_radius.h"
#include "geometry/vector_expressions.h"

#include <cmath>

using Vector = C3DVector3Tpl<double>;

static_assert(sizeof(C3DBSphere) == sizeof(C3DBaseSphere));

C3DBSphere::C3DBSphere() = default;

C3DBSphere::C3DBSphere(double radius) : C3DBaseSphere(radius) {}

C3DBSphere::C3DBSphere(double radius, Vector const & center) : C3DBaseSphere(radius, center) {}

int C3DBSphere::IsEmpty() const
{
    return math::detail::k_SmallestRadius >= m_Radius;
}

C3DBSphere & C3DBSphere::MergeVector(Vector const & point)
{
    double const square = GetSquaredDistance(m_Center, point);
    if (!(m_Radius * m_Radius > square))
    {
        m_Radius = std::sqrt(square);
    }
    return *this;
}

C3DBSphere & C3DBSphere::MergeVector(double x, double y, double z)
{
    return MergeVector(Vector(x, y, z));
}

C3DBSphere & C3DBSphere::MergeBSphere(C3DBSphere const & sphere)
{
    double const length = sphere.m_Center.GetLength();
    double const factor = (length + sphere.m_Radius) / length;
    Vector const farSide =
        math::detail::PointAlong(m_Center, math::detail::Difference(sphere.m_Center, m_Center), factor);
    m_Radius = 0.5 * GetDistance(m_Center, farSide);
    m_Center.SetMidpoint(m_Center, farSide);
    return *this;
}

C3DBSphere & C3DBSphere::SetToBSphereOfTransformedBSphere(C3DXfoMatTpl<double> const & matrix)
{
    Vector scaling;
    m_Radius *= matrix.GetScaling(scaling).GetMaxComponent(1);
    m_Center.Mul(m_Center, matrix);
    return *this;
}
