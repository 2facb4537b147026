#pragma once

#include "geometry/vector_expressions.h"

namespace math::detail
{

/// Twice the areas of the triangles that a point makes with the edges of a triangle, each belonging to the vertex that
/// is not on the edge: b c p, c a p, a b p. Negative where the triangle runs against the normal, which for the normal
/// of a b c means that the point lies beyond the edge.
struct SignedAreas
{
    SignedAreas(C3DVector3Tpl<double> const & p, C3DVector3Tpl<double> const & a, C3DVector3Tpl<double> const & b,
                C3DVector3Tpl<double> const & c, C3DVector3Tpl<double> const & normal)
        : ofA(SignedArea(b, c, p, normal)), ofB(SignedArea(c, a, p, normal)), ofC(SignedArea(a, b, p, normal))
    {
    }

    void Divide(double divisor)
    {
        ofA /= divisor;
        ofB /= divisor;
        ofC /= divisor;
    }

    double ofA;
    double ofB;
    double ofC;

private:
    static double SignedArea(C3DVector3Tpl<double> const & from, C3DVector3Tpl<double> const & to,
                             C3DVector3Tpl<double> const & p, C3DVector3Tpl<double> const & normal)
    {
        C3DVector3Tpl<double> cross;
        double const area = cross.SetCross(from, to, p).GetLength();
        return Dot(cross, normal) < 0 ? -area : area;
    }
};

} // namespace math::detail
