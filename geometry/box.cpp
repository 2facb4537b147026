#include "math/box.h"

#include "geometry/bounds.h"
#include "math/box_intersection.h"
#include "math/platform/result.h"
#include "math/sphere.h"

using Vector = C3DVector3Tpl<double>;

C3DBaseBox::C3DBaseBox() : C3DBaseBox(Vector(0, 0, 0), Vector(0, 0, 0)) {}

C3DBaseBox::C3DBaseBox(double side) : C3DBaseBox(Vector(side, side, side)) {}

C3DBaseBox::C3DBaseBox(Vector const & sides) : PartialGeometry(E3DGEOMTYPE_BOX)
{
    SetSideLengths(sides);
}

C3DBaseBox::C3DBaseBox(Vector const & minimum, Vector const & maximum)
    : PartialGeometry(E3DGEOMTYPE_BOX), m_Min(minimum), m_Max(maximum)
{
}

C3DBaseBox::C3DBaseBox(C3DBaseBox const & other) = default;

C3DBaseBox & C3DBaseBox::operator=(C3DBaseBox const & other) = default;

C3DBaseBox::~C3DBaseBox() = default;

Vector const & C3DBaseBox::GetMin() const
{
    return m_Min;
}

Vector const & C3DBaseBox::GetMax() const
{
    return m_Max;
}

double C3DBaseBox::GetMinX() const
{
    return m_Min.X;
}

double C3DBaseBox::GetMinY() const
{
    return m_Min.Y;
}

double C3DBaseBox::GetMinZ() const
{
    return m_Min.Z;
}

double C3DBaseBox::GetMaxX() const
{
    return m_Max.X;
}

double C3DBaseBox::GetMaxY() const
{
    return m_Max.Y;
}

double C3DBaseBox::GetMaxZ() const
{
    return m_Max.Z;
}

void C3DBaseBox::SetMin(Vector const & minimum)
{
    m_Min = minimum;
}

void C3DBaseBox::SetMin(double x, double y, double z)
{
    m_Min.Set(x, y, z);
}

void C3DBaseBox::SetMax(Vector const & maximum)
{
    m_Max = maximum;
}

void C3DBaseBox::SetMax(double x, double y, double z)
{
    m_Max.Set(x, y, z);
}

void C3DBaseBox::SetMinX(double x)
{
    m_Min.X = x;
}

void C3DBaseBox::SetMinY(double y)
{
    m_Min.Y = y;
}

void C3DBaseBox::SetMinZ(double z)
{
    m_Min.Z = z;
}

void C3DBaseBox::SetMaxX(double x)
{
    m_Max.X = x;
}

void C3DBaseBox::SetMaxY(double y)
{
    m_Max.Y = y;
}

void C3DBaseBox::SetMaxZ(double z)
{
    m_Max.Z = z;
}

void C3DBaseBox::Set(C3DBaseBox const & box)
{
    m_Min = box.m_Min;
    m_Max = box.m_Max;
}

void C3DBaseBox::Get(C3DBaseBox & out) const
{
    // The sides of the minimum go in first, and give way to those of the maximum.
    Vector const maximum = m_Max;
    out.SetSideLengths(maximum);
}

void C3DBaseBox::SetCube(double const & side)
{
    SetSideLengths(Vector(side, side, side));
}

void C3DBaseBox::GetCube(double & side) const
{
    Vector sides;
    GetSideLengths(sides);
    // By its index, which settles ties: of zeros of different sign the later axis wins.
    side = sides.Get(sides.GetIndexOfMaxComponent(0));
}

void C3DBaseBox::SetSideLengths(Vector const & sides)
{
    m_Max.Mul(sides, 0.5);
    m_Min.Negate(m_Max);
}

void C3DBaseBox::GetSideLengths(Vector & sides) const
{
    sides.Sub(m_Max, m_Min);
}

void C3DBaseBox::SetFromVectorArray(Vector const * points, unsigned long count)
{
    if (points == nullptr || count == 0)
    {
        return;
    }
    math::detail::Bounds bounds(points[0]);
    for (unsigned long i = 1; i < count; ++i)
    {
        bounds.Include(points[i]);
    }
    m_Min = bounds.minimum;
    m_Max = bounds.maximum;
}

int C3DBaseBox::IsBetweenXPlane(Vector const & point) const
{
    return point.X >= m_Min.X && point.X <= m_Max.X;
}

int C3DBaseBox::IsBetweenYPlane(Vector const & point) const
{
    return point.Y >= m_Min.Y && point.Y <= m_Max.Y;
}

int C3DBaseBox::IsBetweenZPlane(Vector const & point) const
{
    return point.Z >= m_Min.Z && point.Z <= m_Max.Z;
}

int C3DBaseBox::IsInsideYZRect(Vector const & point) const
{
    return IsBetweenYPlane(point) != 0 && IsBetweenZPlane(point) != 0;
}

int C3DBaseBox::IsInsideXZRect(Vector const & point) const
{
    return IsBetweenXPlane(point) != 0 && IsBetweenZPlane(point) != 0;
}

int C3DBaseBox::IsInsideXYRect(Vector const & point) const
{
    return IsBetweenXPlane(point) != 0 && IsBetweenYPlane(point) != 0;
}

int C3DBaseBox::IsInsideBox(Vector const & point) const
{
    return IsBetweenXPlane(point) != 0 && IsInsideYZRect(point) != 0;
}

void C3DBaseBox::Inflate(Vector const & sizes)
{
    Vector half;
    half.Mul(sizes, 0.5);
    m_Min.Sub(half);
    m_Max.Add(half);
}

void C3DBaseBox::Scale(Vector const & factors)
{
    Vector growth;
    GetSideLengths(growth);
    growth.MulComp(Vector().Sub(factors, Vector::k_UnitVector));
    Inflate(growth);
}

long C3DBaseBox::GetDistanceFrom(Vector const & point, double & distance) const
{
    unsigned long flags = 0;
    tagS3DGEOMINFO info{};
    F3DLocalBoxVsSphereIntersection(m_Min, m_Max, point, 0, flags, &info, 0);
    distance = info.distance;
    return S_OK;
}

long C3DBaseBox::ProjectOn(Vector const & /*point*/, double & /*u*/, double & /*v*/) const
{
    return E_NOTIMPL;
}
