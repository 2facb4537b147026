#pragma once

#include "math/plane.h"

#include "geometry/vector_checks.h"

namespace geometry_test
{

/// The four vectors of a plane.
struct PlaneParts
{
    explicit PlaneParts(C3DPlane const & plane)
    {
        plane.GetPos(0, 0, origin);
        plane.GetNormal(0, 0, normal);
        plane.GetTangents(0, 0, first, second);
    }

    PlaneParts(Vector const & o, Vector const & n, Vector const & t1, Vector const & t2)
        : origin(o), normal(n), first(t1), second(t2)
    {
    }

    Vector origin;
    Vector normal;
    Vector first;
    Vector second;
};

inline testing::AssertionResult Same(PlaneParts const & found, PlaneParts const & expected)
{
    testing::AssertionResult result = Same(found.origin, expected.origin);
    if (result)
    {
        result = Same(found.normal, expected.normal);
    }
    if (result)
    {
        result = Same(found.first, expected.first);
    }
    return result ? Same(found.second, expected.second) : result;
}

inline testing::AssertionResult Same(C3DPlane const & found, PlaneParts const & expected)
{
    return Same(PlaneParts(found), expected);
}

/// A plane with these tangents, of any lengths and angle, and their cross product made unit as normal.
inline C3DPlane PlaneOfTangents(Vector const & origin, Vector const & first, Vector const & second)
{
    C3DPlane plane;
    plane.Mul(plane, Matrix(first.X, first.Y, first.Z, 0, second.X, second.Y, second.Z, 0, 0, 0, 1, 0, 0, 0, 0, 1));
    plane.SetOrigin(origin);
    return plane;
}

} // namespace geometry_test
