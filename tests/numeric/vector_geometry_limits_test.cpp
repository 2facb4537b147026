#include "math/vector_geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

/// What the plane geometry makes of numbers that overflow or are none.
template <typename T>
class VectorGeometryLimits : public testing::Test
{
public:
    using V2 = C3DVector2Tpl<T>;

    static constexpr T k_NaN = std::numeric_limits<T>::quiet_NaN();
    static constexpr T k_Largest = std::numeric_limits<T>::max();
    static constexpr T k_Small = T(1e-6);

    static V2 Point(T x, T y) { return V2(x, y); }
};

using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(VectorGeometryLimits, Scalars);

} // namespace

TYPED_TEST(VectorGeometryLimits, PntSide_in_space_takes_the_extents_and_not_the_sums)
{
    using V3 = C3DVector3Tpl<TypeParam>;
    TypeParam const far = TestFixture::k_Largest;
    V3 const p(0, 0, 0);
    // An extent that overflows where the sum is 0, on either axis.
    EXPECT_EQ(Get2DPntSide(p, V3(-far, 0, 0), V3(far, 1, 0)), -1);
    EXPECT_EQ(Get2DPntSide(p, V3(0, -far, 0), V3(1, far, 0)), -1);
    // An extent of 0 where the sum overflows.
    EXPECT_EQ(Get2DPntSide(p, V3(far, 0, 0), V3(far, 1, 0)), 1);
    EXPECT_EQ(Get2DPntSide(p, V3(0, far, 0), V3(1, far, 0)), 1);
}

TYPED_TEST(VectorGeometryLimits, ColinearUsingDistance_fails_for_an_epsilon_that_is_no_number)
{
    using F = TestFixture;
    EXPECT_EQ(ArePntsColinearUsingDistance(F::Point(0, 0), F::Point(1, 0), F::Point(2, 0), F::k_NaN), 0);
    EXPECT_EQ(ArePntsColinearUsingDistance(F::Point(0, 0), F::Point(0, 0), F::Point(2, 0), F::k_NaN), 0);
}

TYPED_TEST(VectorGeometryLimits, Barycentric_in_the_plane_of_an_area_that_overflows_is_outside)
{
    using F = TestFixture;
    TypeParam const far = std::sqrt(F::k_Largest) * 2;
    auto const a = F::Point(0, 0);
    auto const b = F::Point(far, 0);
    auto const c = F::Point(0, far);
    auto const p = F::Point(1, 1);
    TypeParam u = 7;
    TypeParam v = 7;
    TypeParam w = 7;
    // The area opposite to a is infinite, and so is the sum: an infinity times 0 is no coordinate above -epsilon.
    EXPECT_EQ(GetBarycentricCoords(p, a, b, c, u, v, w, F::k_Small, 0), 0);
    EXPECT_TRUE(std::isnan(u));
    EXPECT_EQ(v, 0);
    EXPECT_EQ(w, 0);
    EXPECT_EQ(GetBarycentricCoords(p, c, a, b, u, v, w, F::k_Small, 0), 0);
    EXPECT_TRUE(std::isnan(v));
    EXPECT_EQ(GetBarycentricCoords(p, b, c, a, u, v, w, F::k_Small, 0), 0);
    EXPECT_TRUE(std::isnan(w));
}

TYPED_TEST(VectorGeometryLimits, Barycentric_in_the_plane_of_a_point_that_is_no_number_passes_on_the_first_edge)
{
    using F = TestFixture;
    TypeParam u = 7;
    TypeParam v = 7;
    TypeParam w = 7;
    auto const p = F::Point(F::k_NaN, F::k_NaN);
    EXPECT_EQ(GetBarycentricCoords(p, F::Point(0, 0), F::Point(0, 1), F::Point(1, 0), u, v, w, F::k_Small, 3), 1);
    EXPECT_TRUE(std::isnan(u));
    EXPECT_EQ(v, 0);
    EXPECT_TRUE(std::isnan(w));
}

TYPED_TEST(VectorGeometryLimits, Barycentric_in_the_plane_reads_no_edge_along_an_axis_that_is_no_number)
{
    using F = TestFixture;
    TypeParam u = 7;
    TypeParam v = 7;
    TypeParam w = 7;
    // X is no number at a: the edge from c to a is read on Y, half-way, and no later edge is measurably nearer.
    EXPECT_EQ(GetBarycentricCoords(F::Point(0, 1), F::Point(F::k_NaN, 0), F::Point(0, 0), F::Point(0, 2), u, v, w,
                                   F::k_Small, 3),
              1);
    EXPECT_EQ(u, TypeParam(0.5));
    EXPECT_EQ(v, 0);
    EXPECT_EQ(w, TypeParam(0.5));
    // Y is none: X is not longer than it, and it is not longer than epsilon, so the edge counts as its start, c.
    EXPECT_EQ(GetBarycentricCoords(F::Point(1, 0), F::Point(2, F::k_NaN), F::Point(0, 0), F::Point(0, 0), u, v, w,
                                   F::k_Small, 3),
              1);
    EXPECT_EQ(u, 0);
    EXPECT_EQ(v, 0);
    EXPECT_EQ(w, 1);
}
