#pragma once

#include "geometry/vector_pair.h"

namespace math::detail
{

/// Twice the area of a triangle a b c, and of the triangles that a point makes with its edges, each belonging to the
/// vertex that is not on the edge: b c p, c a p, a b p. These are negative where the triangle runs against the first
/// one, which means that the point lies beyond the edge.
struct SignedAreas
{
    SignedAreas(C3DVector3Tpl<double> const & p, C3DVector3Tpl<double> const & a, C3DVector3Tpl<double> const & b,
                C3DVector3Tpl<double> const & c)
    {
        VectorPair const bc(b, c);
        VectorPair const aTwice(a);
        VectorPair const ofAAndB = Cross(Difference({c, a}, bc), Difference(VectorPair(p), bc));
        VectorPair const ofCAndWhole = Cross(Difference(VectorPair(b), aTwice), Difference({p, c}, aTwice));
        VectorPair const normal(ofCAndWhole.Get(1));
        Pair const areasOfAAndB = SignedLength(ofAAndB, normal);
        Pair const areasOfCAndWhole = SignedLength(ofCAndWhole, normal);
        ofA = areasOfAAndB[0];
        ofB = areasOfAAndB[1];
        ofC = areasOfCAndWhole[0];
        ofWhole = areasOfCAndWhole[1];
    }

    void DivideByWhole()
    {
        ofA /= ofWhole;
        ofB /= ofWhole;
        ofC /= ofWhole;
    }

    double ofA;
    double ofB;
    double ofC;
    double ofWhole;

private:
    /// Which sign it is cannot be foretold: a choice costs less than a branch.
    static Pair SignedLength(VectorPair const & cross, VectorPair const & normal)
    {
        Pair const length = Length(cross);
        return Dot(cross, normal) < 0 ? -length : length;
    }
};

} // namespace math::detail
