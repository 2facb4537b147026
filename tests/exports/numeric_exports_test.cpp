#include "exports/exported.h"

#include "math/bits.h"
#include "math/discrete_value.h"
#include "math/numeric.h"
#include "math/polynomial_roots.h"
#include "math/random.h"
#include "math/safe_array.h"
#include "math/scale_volume.h"
#include "math/vector_geometry.h"

using exported::Function;

namespace
{

template <typename T>
void ExpectVectorGeometry()
{
    using V2 = C3DVector2Tpl<T>;
    using V3 = C3DVector3Tpl<T>;
    Function<T(V3 const &, V3 const &, T)>(&GetVctsAngle);
    Function<T(V3 const &, V3 const &, T)>(&GetVctsCosAngle);
    Function<T(V3 const &, V3 const &, V3 const &)>(&GetPntsAngle);
    Function<T(V3 const &, V3 const &, V3 const &)>(&GetPntsCosAngle);
    Function<T(V3 const &, V3 const &)>(&Get2DVctsAngleSigned);
    Function<T(V3 const &, V3 const &, V3 const &)>(&Get2DPntsAngleSigned);
    Function<T(V2 const &, V2 const &)>(&GetCross);
    Function<int(V2 const &, V2 const &, V2 const &)>(&Get2DPntSide);
    Function<int(V3 const &, V3 const &, V3 const &)>(&Get2DPntSide);
    Function<int(V2 const &, V2 const &, V2 const &)>(&ArePntsClockWise);
    Function<int(V3 const &, V3 const &, V3 const &, T)>(&ArePntsCollinear);
    Function<int(V2 const &, V2 const &, V2 const &, T)>(&ArePntsColinearUsingDistance);
    Function<int(V2 const &, V2 const &, V2 const &, V2 const &)>(&FSegmentIntersect);
    Function<T(V3 const &, V3 const &, V3 const &)>(&GetTriangleArea);
    Function<void(V3 const &, V3 const &, V3 const &, V3 const &, T &, T &, T &)>(&GetBarycentricCoords);
    Function<int(V2 const &, V2 const &, V2 const &, V2 const &, T &, T &, T &, T, unsigned long)>(
        &GetBarycentricCoords);
    Function<void(V3 const &, V3 &, V3 &)>(&GetOrthogonalBasis);
}

} // namespace

TEST(Exports, Numeric)
{
    Function<int(double, double, double)>(&F3DCompareEpsilon);
    Function<int(float, float, float)>(&F3DCompareEpsilon);
    Function<bool(double)>(&F3DIsValidNumber);
    Function<bool(float)>(&F3DIsValidNumber);
}

TEST(Exports, Vector_geometry)
{
    ExpectVectorGeometry<float>();
    ExpectVectorGeometry<double>();
}

TEST(Exports, Polynomial_roots)
{
    Function(&F3DFindQuadraticRoots);
    Function(&F3DGetLinearRealRoots);
    Function(&F3DGetQuadraticRealRoots);
    Function(&F3DGetCubicRealRoots);
}

TEST(Exports, Random_numbers)
{
    Function(&F3DQuickRand);
    Function<double(unsigned long &)>(&F3DQuickUniformRand);
    Function<double(unsigned long &, double, double)>(&F3DQuickUniformRand);
    Function<double(unsigned long &)>(&F3DQuickGaussianRand);
    Function<double(unsigned long &, double, double)>(&F3DQuickGaussianRand);
    Function(&F3DRealGaussianRand);
}

TEST(Exports, Bits_and_helpers)
{
    Function(&F3DNumberOfBitsOn);
    Function(&F3DReverseBits);
    Function(&F3DFindLowestBit);
    Function(&F3DFindHighestBit);
    Function(&F3DGetNearestDiscreteValue);
    Function(&F3DScaleVolume);
}

TEST(Exports, Safe_arrays)
{
    Function(&F3DGetSafeArrayFromC3DVector3);
    Function(&F3DGetC3DVector3FromSafeArray);
}
