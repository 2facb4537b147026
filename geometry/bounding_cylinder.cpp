#include "math/bounding_cylinder.h"

using Vector = C3DVector3Tpl<double>;

static_assert(sizeof(C3DBCylinder) == sizeof(C3DBaseCylinder));

C3DBCylinder::C3DBCylinder() = default;

C3DBCylinder::C3DBCylinder(double radius, double length, tagE3DCylinderAxisType type)
    : C3DBaseCylinder(radius, length, type)
{
}

C3DBCylinder::C3DBCylinder(double radius, Vector const & start, Vector const & end)
    : C3DBaseCylinder(radius, start, end)
{
}

C3DBCylinder::~C3DBCylinder() = default;
