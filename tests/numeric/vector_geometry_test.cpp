#include "math/vector_geometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

namespace
{

template <typename T>
class VectorGeometry : public testing::Test
{
public:
    using V2 = C3DVector2Tpl<T>;
    using V3 = C3DVector3Tpl<T>;
    using Limits = std::numeric_limits<T>;

    static constexpr T k_Pi = std::numbers::pi_v<T>;
    static constexpr T k_NaN = Limits::quiet_NaN();
    static constexpr T k_Infinity = Limits::infinity();
    /// A few roundings of numbers near 1.
    static constexpr T k_Close = 8 * Limits::epsilon();
    /// Ordinary limits.
    static constexpr T k_Small = T(1e-6);
    static constexpr T k_Tiny = T(1e-12);

    static V2 Point(double x, double y) { return V2(static_cast<T>(x), static_cast<T>(y)); }
    static V3 Point(double x, double y, double z)
    {
        return V3(static_cast<T>(x), static_cast<T>(y), static_cast<T>(z));
    }
};

using Scalars = testing::Types<float, double>;
TYPED_TEST_SUITE(VectorGeometry, Scalars);

using V2f = C3DVector2Tpl<float>;
using V2d = C3DVector2Tpl<double>;
using V3f = C3DVector3Tpl<float>;
using V3d = C3DVector3Tpl<double>;

template <typename T>
std::vector<C3DVector3Tpl<T>> MakeRandomPoints(unsigned int seed, int count)
{
    std::mt19937_64 generator(seed);
    std::uniform_real_distribution<T> coordinate(-5, 5);
    std::vector<C3DVector3Tpl<T>> points;
    for (int i = 0; i < count; ++i)
    {
        T const x = coordinate(generator);
        T const y = coordinate(generator);
        points.emplace_back(x, y, coordinate(generator));
    }
    return points;
}

/// The result and the three coordinates of the signed barycentric function.
template <typename T>
struct PlaneCoordinates
{
    int result;
    T u;
    T v;
    T w;
};

template <typename T>
PlaneCoordinates<T> GetPlaneCoordinates(C3DVector2Tpl<T> const & p, C3DVector2Tpl<T> const & a,
                                        C3DVector2Tpl<T> const & b, C3DVector2Tpl<T> const & c, T epsilon,
                                        unsigned long vertex = 3)
{
    PlaneCoordinates<T> found{-1, T(77), T(88), T(99)};
    found.result = GetBarycentricCoords(p, a, b, c, found.u, found.v, found.w, epsilon, vertex);
    return found;
}

template <typename T>
void ExpectCoordinates(PlaneCoordinates<T> const & found, int result, double u, double v, double w)
{
    EXPECT_EQ(found.result, result);
    EXPECT_NEAR(found.u, u, VectorGeometry<T>::k_Close);
    EXPECT_NEAR(found.v, v, VectorGeometry<T>::k_Close);
    EXPECT_NEAR(found.w, w, VectorGeometry<T>::k_Close);
}

} // namespace

// Angles

TYPED_TEST(VectorGeometry, VctsAngle_is_the_angle_whatever_the_lengths)
{
    using F = TestFixture;
    for (double const angle : {0.1, 0.5, 1.0, 2.0, 3.0})
    {
        auto const a = F::Point(3, 0, 0);
        auto const b = F::Point(0.5 * std::cos(angle), 0.3 * std::sin(angle), -0.4 * std::sin(angle));
        // An arc cosine near 0 and pi magnifies rounding by 1 / sin.
        TypeParam const close = F::k_Close / static_cast<TypeParam>(std::sin(angle));
        EXPECT_NEAR(GetVctsAngle(a, b, F::k_Small), static_cast<TypeParam>(angle), close);
        EXPECT_NEAR(GetVctsAngle(b, a, F::k_Small), static_cast<TypeParam>(angle), close);
        EXPECT_NEAR(GetVctsCosAngle(a, b, F::k_Small), static_cast<TypeParam>(std::cos(angle)), F::k_Close);
    }
}

TYPED_TEST(VectorGeometry, VctsAngle_of_a_null_vector_is_0_and_its_cosine_1)
{
    using F = TestFixture;
    auto const null = F::Point(0, 0, 0);
    auto const other = F::Point(1, -2, 3);
    EXPECT_EQ(GetVctsAngle(null, other, F::k_Tiny), 0);
    EXPECT_EQ(GetVctsAngle(other, null, F::k_Tiny), 0);
    EXPECT_EQ(GetVctsCosAngle(null, other, F::k_Tiny), 1);
    EXPECT_EQ(GetVctsCosAngle(null, null, F::k_Tiny), 1);
    EXPECT_EQ(GetVctsAngle(null, other), 0);
}

TYPED_TEST(VectorGeometry, VctsAngle_limits_the_product_of_the_lengths)
{
    using F = TestFixture;
    auto const a = F::Point(0.25, 0, 0);
    auto const b = F::Point(0, 4, 0);
    TypeParam const beyond = std::nextafter(TypeParam(1), TypeParam(2));
    EXPECT_NEAR(GetVctsAngle(a, b, 1), F::k_Pi / 2, F::k_Close);
    EXPECT_EQ(GetVctsAngle(a, b, beyond), 0);
    EXPECT_EQ(GetVctsCosAngle(a, b, 1), 0);
    EXPECT_EQ(GetVctsCosAngle(a, b, beyond), 1);
}

TYPED_TEST(VectorGeometry, VctsAngle_without_a_limit_makes_a_null_vector_opposite)
{
    using F = TestFixture;
    auto const null = F::Point(0, 0, 0);
    auto const other = F::Point(1, 2, 3);
    EXPECT_EQ(GetVctsAngle(null, other, 0), std::acos(TypeParam(-1)));
    EXPECT_EQ(GetVctsCosAngle(null, other, 0), -1);
}

TYPED_TEST(VectorGeometry, VctsAngle_of_nans_and_infinities_is_pi)
{
    using F = TestFixture;
    TypeParam const pi = std::acos(TypeParam(-1));
    auto const other = F::Point(1, 2, 3);
    auto const undefined = typename F::V3(F::k_NaN, 0, 0);
    auto const infinite = typename F::V3(0, F::k_Infinity, 0);
    EXPECT_EQ(GetVctsAngle(undefined, other, F::k_Tiny), pi);
    EXPECT_EQ(GetVctsAngle(other, undefined, F::k_Tiny), pi);
    EXPECT_EQ(GetVctsCosAngle(undefined, other, F::k_Tiny), -1);
    EXPECT_EQ(GetVctsAngle(infinite, other, F::k_Tiny), pi);
    EXPECT_EQ(GetVctsCosAngle(infinite, infinite, F::k_Tiny), -1);
}

TYPED_TEST(VectorGeometry, VctsAngle_keeps_rounding_from_leaving_the_range_of_the_cosine)
{
    using F = TestFixture;
    int beyond = 0;
    for (auto const & v : MakeRandomPoints<TypeParam>(51, 1000))
    {
        auto const opposite = typename F::V3().Negate(v);
        TypeParam const quotient = v.GetSquaredLength() / (v.GetLength() * v.GetLength());
        beyond += quotient > 1 ? 1 : 0;
        EXPECT_LE(GetVctsCosAngle(v, v, F::k_Tiny), 1);
        EXPECT_GE(GetVctsCosAngle(v, opposite, F::k_Tiny), -1);
        EXPECT_NEAR(GetVctsAngle(v, v, F::k_Tiny), 0, std::sqrt(F::k_Close));
        EXPECT_NEAR(GetVctsAngle(v, opposite, F::k_Tiny), F::k_Pi, std::sqrt(F::k_Close));
    }
    // The sample holds what the test is about.
    EXPECT_GT(beyond, 10);
}

TYPED_TEST(VectorGeometry, PntsAngle_is_the_angle_seen_from_the_first_point)
{
    using F = TestFixture;
    auto const o = F::Point(1, 2, 3);
    EXPECT_NEAR(GetPntsAngle(o, F::Point(3, 2, 3), F::Point(1, 2, 8)), F::k_Pi / 2, F::k_Close);
    EXPECT_NEAR(GetPntsAngle(o, F::Point(3, 2, 3), F::Point(2, 3, 3)), F::k_Pi / 4, F::k_Close);
    EXPECT_NEAR(GetPntsCosAngle(o, F::Point(3, 2, 3), F::Point(2, 2, 3)), 1, F::k_Close);
    EXPECT_NEAR(GetPntsCosAngle(o, F::Point(3, 2, 3), F::Point(-2, 2, 3)), -1, F::k_Close);
}

TEST(VectorGeometryOfDouble, PntsAngle_at_a_coincident_point_is_0)
{
    V3d const o(1, 2, 3);
    V3d const other(4, 5, 7);
    EXPECT_EQ(GetPntsAngle(o, o, other), 0);
    EXPECT_EQ(GetPntsAngle(o, other, o), 0);
    EXPECT_EQ(GetPntsCosAngle(o, o, other), 1);
    EXPECT_EQ(Get2DPntsAngleSigned(o, o, other), 0);
    EXPECT_EQ(Get2DVctsAngleSigned(V3d(0, 0, 0), other), 0);
}

TEST(VectorGeometryOfFloat, PntsAngle_at_a_coincident_point_is_pi)
{
    float const pi = std::acos(-1.0F);
    V3f const o(1, 2, 3);
    V3f const other(4, 5, 7);
    EXPECT_EQ(GetPntsAngle(o, o, other), pi);
    EXPECT_EQ(GetPntsAngle(o, other, o), pi);
    EXPECT_EQ(GetPntsCosAngle(o, o, other), -1);
    EXPECT_EQ(Get2DPntsAngleSigned(o, o, other), pi);
    EXPECT_EQ(Get2DVctsAngleSigned(V3f(0, 0, 0), other), pi);
    // The forms on directions have the guard that their argument gives them.
    EXPECT_EQ(GetVctsAngle(V3f(0, 0, 0), other, 1e-12F), 0);
}

TEST(VectorGeometryOfDouble, PntsAngle_takes_a_product_of_distances_below_1e_12_for_null)
{
    V3d const o(0, 0, 0);
    V3d const up(0, 1, 0);
    EXPECT_EQ(GetPntsAngle(o, V3d(0.9e-12, 0, 0), up), 0);
    EXPECT_NEAR(GetPntsAngle(o, V3d(1.1e-12, 0, 0), up), std::numbers::pi / 2, 1e-15);
    EXPECT_EQ(GetPntsCosAngle(o, V3d(0.9e-12, 0, 0), up), 1);
    EXPECT_EQ(GetPntsCosAngle(o, V3d(1.1e-12, 0, 0), up), 0);
    EXPECT_EQ(Get2DVctsAngleSigned(V3d(0.9e-12, 0, 0), up), 0);
    EXPECT_NEAR(Get2DVctsAngleSigned(V3d(1.1e-12, 0, 0), up), std::numbers::pi / 2, 1e-15);
    EXPECT_EQ(Get2DPntsAngleSigned(o, V3d(0.9e-12, 0, 0), up), 0);
    EXPECT_NEAR(Get2DPntsAngleSigned(o, up, V3d(1.1e-12, 0, 0)), -std::numbers::pi / 2, 1e-15);
}

TEST(VectorGeometryOfFloat, PntsAngle_has_no_limit_on_the_distances)
{
    V3f const o(0, 0, 0);
    V3f const up(0, 1, 0);
    V3f const tiny(1e-15F, 0, 0);
    float const quarter = std::numbers::pi_v<float> / 2;
    EXPECT_NEAR(GetPntsAngle(o, tiny, up), quarter, 1e-6F);
    EXPECT_EQ(GetPntsCosAngle(o, tiny, up), 0);
    EXPECT_NEAR(Get2DVctsAngleSigned(tiny, up), quarter, 1e-6F);
    EXPECT_NEAR(Get2DPntsAngleSigned(o, up, tiny), -quarter, 1e-6F);
    // A square that underflows makes the length 0.
    EXPECT_EQ(GetPntsAngle(o, V3f(1e-25F, 0, 0), up), std::acos(-1.0F));
}

TYPED_TEST(VectorGeometry, Signed_angle_has_the_sign_of_the_turn_in_the_plane)
{
    using F = TestFixture;
    auto const x = F::Point(1, 0, 0);
    auto const y = F::Point(0, 1, 0);
    EXPECT_NEAR(Get2DVctsAngleSigned(x, y), F::k_Pi / 2, F::k_Close);
    EXPECT_NEAR(Get2DVctsAngleSigned(y, x), -F::k_Pi / 2, F::k_Close);
    auto const o = F::Point(5, -3, 2);
    EXPECT_NEAR(Get2DPntsAngleSigned(o, F::Point(6, -3, 2), F::Point(5, -1, 2)), F::k_Pi / 2, F::k_Close);
    EXPECT_NEAR(Get2DPntsAngleSigned(o, F::Point(5, -1, 2), F::Point(6, -3, 2)), -F::k_Pi / 2, F::k_Close);
    EXPECT_NEAR(Get2DPntsAngleSigned(o, F::Point(6, -3, 2), F::Point(4, -4, 2)), -F::k_Pi * 3 / 4, F::k_Close);
}

TYPED_TEST(VectorGeometry, Signed_angle_is_measured_in_space)
{
    using F = TestFixture;
    auto const a = F::Point(1, 0, 1);
    auto const b = F::Point(0, 1, 1);
    EXPECT_NEAR(Get2DVctsAngleSigned(a, b), F::k_Pi / 3, F::k_Close);
    EXPECT_NEAR(Get2DVctsAngleSigned(b, a), -F::k_Pi / 3, F::k_Close);
    // Above each other there is an angle and no turn.
    EXPECT_NEAR(Get2DVctsAngleSigned(F::Point(1, 0, 1), F::Point(1, 0, -1)), F::k_Pi / 2, F::k_Close);
    EXPECT_NEAR(Get2DVctsAngleSigned(F::Point(1, 0, -1), F::Point(1, 0, 1)), F::k_Pi / 2, F::k_Close);
}

TYPED_TEST(VectorGeometry, Signed_angle_of_opposite_directions_is_positive)
{
    using F = TestFixture;
    auto const a = F::Point(1, 0, 0);
    auto const b = F::Point(-1, 0, 0);
    EXPECT_EQ(Get2DVctsAngleSigned(a, b), std::acos(TypeParam(-1)));
    EXPECT_EQ(Get2DVctsAngleSigned(b, a), std::acos(TypeParam(-1)));
}

TYPED_TEST(VectorGeometry, Signed_angle_of_a_nan_is_pi)
{
    using F = TestFixture;
    auto const undefined = typename F::V3(F::k_NaN, 0, 0);
    auto const other = F::Point(1, 1, 0);
    EXPECT_EQ(Get2DVctsAngleSigned(undefined, other), std::acos(TypeParam(-1)));
    EXPECT_EQ(Get2DPntsAngleSigned(undefined, other, F::Point(0, 0, 0)), std::acos(TypeParam(-1)));
    EXPECT_EQ(GetPntsAngle(undefined, other, F::Point(0, 0, 0)), std::acos(TypeParam(-1)));
    EXPECT_EQ(GetPntsCosAngle(undefined, other, F::Point(0, 0, 0)), -1);
}

// Sides and collinearity

TYPED_TEST(VectorGeometry, Cross_is_the_signed_area)
{
    using F = TestFixture;
    EXPECT_EQ(GetCross(F::Point(2, 3), F::Point(5, 7)), -1);
    EXPECT_EQ(GetCross(F::Point(5, 7), F::Point(2, 3)), 1);
    EXPECT_EQ(GetCross(F::Point(2, 3), F::Point(4, 6)), 0);
    EXPECT_EQ(GetCross(F::Point(1, 0), F::Point(0, 1)), 1);
}

TYPED_TEST(VectorGeometry, PntSide_in_the_plane_is_1_on_the_left_and_on_the_line)
{
    using F = TestFixture;
    auto const a = F::Point(0, 0);
    auto const b = F::Point(1, 0);
    EXPECT_EQ(Get2DPntSide(F::Point(0, 1), a, b), 1);
    EXPECT_EQ(Get2DPntSide(F::Point(0, -1), a, b), -1);
    EXPECT_EQ(Get2DPntSide(F::Point(7, 0), a, b), 1);
    EXPECT_EQ(Get2DPntSide(F::Point(0, 1), b, a), -1);
    EXPECT_EQ(Get2DPntSide(F::Point(3, 4), F::Point(1, 1), F::Point(2, 3)), -1);
    EXPECT_EQ(Get2DPntSide(F::Point(3, 6), F::Point(1, 1), F::Point(2, 3)), 1);
    EXPECT_EQ(Get2DPntSide(F::Point(3, 6), a, a), 1);
}

TYPED_TEST(VectorGeometry, PntSide_in_the_plane_of_a_nan_is_minus_1)
{
    using F = TestFixture;
    EXPECT_EQ(Get2DPntSide(typename F::V2(F::k_NaN, 0), F::Point(0, 0), F::Point(1, 1)), -1);
}

TYPED_TEST(VectorGeometry, PntSide_in_space_is_1_whatever_the_points_are)
{
    using F = TestFixture;
    auto const a = F::Point(0, 0, 0);
    auto const b = F::Point(1, 0, 0);
    EXPECT_EQ(Get2DPntSide(F::Point(0, 1, 0), a, b), 1);
    EXPECT_EQ(Get2DPntSide(F::Point(0, -1, 0), a, b), 1);
    auto const points = MakeRandomPoints<TypeParam>(52, 300);
    for (std::size_t i = 0; i + 2 < points.size(); ++i)
    {
        EXPECT_EQ(Get2DPntSide(points[i], points[i + 1], points[i + 2]), 1);
    }
}

TYPED_TEST(VectorGeometry, PntSide_in_space_does_not_read_the_point)
{
    using F = TestFixture;
    auto const undefined = typename F::V3(F::k_NaN, F::k_NaN, F::k_NaN);
    EXPECT_EQ(Get2DPntSide(undefined, F::Point(0, 0, 0), F::Point(1, 1, 0)), 1);
}

TYPED_TEST(VectorGeometry, PntSide_in_space_is_minus_1_where_its_product_is_not_finite)
{
    using F = TestFixture;
    using V = typename F::V3;
    auto const o = F::Point(0, 0, 0);
    TypeParam const large = std::sqrt(F::Limits::max()) * 2;
    EXPECT_EQ(Get2DPntSide(o, o, V(large, large, 0)), -1);
    EXPECT_EQ(Get2DPntSide(o, o, V(large / 4, large / 4, 0)), 1);
    EXPECT_EQ(Get2DPntSide(o, o, V(F::k_Infinity, 1, 0)), -1);
    EXPECT_EQ(Get2DPntSide(o, V(1, F::k_NaN, 0), V(2, 2, 0)), -1);
    EXPECT_EQ(Get2DPntSide(o, o, V(1, 1, F::k_NaN)), 1);
}

TYPED_TEST(VectorGeometry, ClockWise_is_1_unless_the_points_turn_left)
{
    using F = TestFixture;
    auto const a = F::Point(1, 1);
    auto const b = F::Point(4, 1);
    auto const c = F::Point(1, 3);
    EXPECT_EQ(ArePntsClockWise(a, b, c), 0);
    EXPECT_EQ(ArePntsClockWise(b, c, a), 0);
    EXPECT_EQ(ArePntsClockWise(a, c, b), 1);
    EXPECT_EQ(ArePntsClockWise(c, b, a), 1);
}

TYPED_TEST(VectorGeometry, ClockWise_counts_collinear_points_and_nans)
{
    using F = TestFixture;
    EXPECT_EQ(ArePntsClockWise(F::Point(0, 0), F::Point(1, 1), F::Point(3, 3)), 1);
    EXPECT_EQ(ArePntsClockWise(F::Point(1, 2), F::Point(1, 2), F::Point(1, 2)), 1);
    EXPECT_EQ(ArePntsClockWise(F::Point(0, 0), F::Point(1, 0), typename F::V2(0, F::k_NaN)), 1);
}

TYPED_TEST(VectorGeometry, Collinear_measures_the_sine_at_the_first_point)
{
    using F = TestFixture;
    auto const a = F::Point(1, 1, 1);
    EXPECT_EQ(ArePntsCollinear(a, F::Point(2, 3, 4), F::Point(3, 5, 7), F::k_Small), 1);
    EXPECT_EQ(ArePntsCollinear(a, F::Point(2, 3, 4), F::Point(-1, -3, -5), F::k_Small), 1);
    EXPECT_EQ(ArePntsCollinear(a, F::Point(2, 3, 4), F::Point(3, 5, 7.5), F::k_Small), 0);
    // A sine of 0.01 at a, whatever the lengths.
    auto const o = F::Point(0, 0, 0);
    EXPECT_EQ(ArePntsCollinear(o, F::Point(1000, 0, 0), F::Point(1000, 0, 10), TypeParam(0.0101)), 1);
    EXPECT_EQ(ArePntsCollinear(o, F::Point(1000, 0, 0), F::Point(1000, 0, 10), TypeParam(0.0099)), 0);
    EXPECT_EQ(ArePntsCollinear(o, F::Point(0.001, 0, 0), F::Point(1000, 0, 10), TypeParam(0.0099)), 0);
}

TYPED_TEST(VectorGeometry, Collinear_limit_itself_is_not_collinear)
{
    using F = TestFixture;
    auto const o = F::Point(0, 0, 0);
    EXPECT_EQ(ArePntsCollinear(o, F::Point(2, 0, 0), F::Point(0, 0, 4), 1), 0);
    EXPECT_EQ(ArePntsCollinear(o, F::Point(2, 0, 0), F::Point(0, 0, 4), std::nextafter(TypeParam(1), TypeParam(2))), 1);
    EXPECT_EQ(ArePntsCollinear(o, F::Point(2, 0, 0), F::Point(4, 0, 0), 0), 0);
}

TYPED_TEST(VectorGeometry, Collinear_holds_where_another_point_coincides_with_the_first)
{
    using F = TestFixture;
    auto const a = F::Point(1, 2, 3);
    auto const b = F::Point(4, 5, 7);
    EXPECT_EQ(ArePntsCollinear(a, a, b, 0), 1);
    EXPECT_EQ(ArePntsCollinear(a, b, a, 0), 1);
    EXPECT_EQ(ArePntsCollinear(a, a, a, 0), 1);
    EXPECT_EQ(ArePntsCollinear(a, b, b, F::k_Small), 1);
    EXPECT_EQ(ArePntsCollinear(a, b, typename F::V3(F::k_NaN, 0, 0), 0), 1);
}

TEST(VectorGeometryOfFloat, Collinear_works_in_double)
{
    V3f const o(0, 0, 0);
    // Squares that would underflow, and overflow, in float.
    EXPECT_EQ(ArePntsCollinear(o, V3f(1e-30F, 0, 0), V3f(0, 1e-30F, 0), 0.5F), 0);
    EXPECT_EQ(ArePntsCollinear(o, V3f(1e30F, 0, 0), V3f(0, 1e30F, 0), 0.5F), 0);
    // A sine of 5e-9 that the rounded difference of two points would hide.
    EXPECT_EQ(ArePntsCollinear(V3f(1, 0, 0), V3f(1e8F, 1e8F, 0), V3f(2, 1, 0), 4e-9F), 0);
    EXPECT_EQ(ArePntsCollinear(V3f(1, 0, 0), V3f(1e8F, 1e8F, 0), V3f(2, 1, 0), 6e-9F), 1);
}

TEST(VectorGeometryOfDouble, Collinear_of_underflowing_squares_holds)
{
    V3d const o(0, 0, 0);
    EXPECT_EQ(ArePntsCollinear(o, V3d(1e-200, 0, 0), V3d(0, 1e-200, 0), 0.5), 1);
}

TYPED_TEST(VectorGeometry, ColinearUsingDistance_measures_the_height_on_the_longest_edge)
{
    using F = TestFixture;
    auto const a = F::Point(0, 0);
    auto const b = F::Point(4, 0);
    auto const atLimit = F::Point(2, 0.5);
    auto const below = F::Point(2, 0.4375);
    // Each of the edges is the longest one in turn.
    EXPECT_EQ(ArePntsColinearUsingDistance(a, b, atLimit, 0.5), 0);
    EXPECT_EQ(ArePntsColinearUsingDistance(atLimit, a, b, 0.5), 0);
    EXPECT_EQ(ArePntsColinearUsingDistance(b, atLimit, a, 0.5), 0);
    EXPECT_EQ(ArePntsColinearUsingDistance(a, b, below, 0.5), 1);
    EXPECT_EQ(ArePntsColinearUsingDistance(below, a, b, 0.5), 1);
    EXPECT_EQ(ArePntsColinearUsingDistance(b, below, a, 0.5), 1);
}

TYPED_TEST(VectorGeometry, ColinearUsingDistance_agrees_with_area_over_base)
{
    using F = TestFixture;
    auto const points = MakeRandomPoints<TypeParam>(53, 600);
    int collinear = 0;
    for (std::size_t i = 0; i + 2 < points.size(); ++i)
    {
        auto const a = typename F::V2(points[i].X, points[i].Y);
        auto const b = typename F::V2(points[i + 1].X, points[i + 1].Y);
        auto const c = typename F::V2(points[i + 2].X, points[i + 2].Y);
        TypeParam const longest = std::max({GetDistance(a, b), GetDistance(b, c), GetDistance(c, a)});
        TypeParam const shortest = std::min({GetDistance(a, b), GetDistance(b, c), GetDistance(c, a)});
        TypeParam const doubleArea = GetCross(typename F::V2().Sub(b, a), typename F::V2().Sub(c, a));
        TypeParam const height = std::abs(doubleArea) / longest;
        if (std::abs(height - 1) < TypeParam(1e-3) || std::abs(shortest - 1) < TypeParam(1e-3))
        {
            continue;
        }
        int const expected = height < 1 || shortest < 1 ? 1 : 0;
        collinear += expected;
        EXPECT_EQ(ArePntsColinearUsingDistance(a, b, c, 1), expected) << i;
    }
    EXPECT_GT(collinear, 100);
    EXPECT_LT(collinear, 500);
}

TYPED_TEST(VectorGeometry, ColinearUsingDistance_holds_where_two_points_are_close)
{
    using F = TestFixture;
    auto const a = F::Point(0, 0);
    auto const close = F::Point(0, 0.25);
    auto const far = F::Point(100, 0);
    EXPECT_EQ(ArePntsColinearUsingDistance(a, close, far, 0.5), 1);
    EXPECT_EQ(ArePntsColinearUsingDistance(a, far, close, 0.5), 1);
    EXPECT_EQ(ArePntsColinearUsingDistance(far, a, close, 0.5), 1);
    EXPECT_EQ(ArePntsColinearUsingDistance(a, a, a, 0.5), 1);
}

TYPED_TEST(VectorGeometry, ColinearUsingDistance_with_an_epsilon_of_0_never_holds_for_numbers)
{
    using F = TestFixture;
    auto const a = F::Point(1, 2);
    EXPECT_EQ(ArePntsColinearUsingDistance(a, a, F::Point(3, 4), 0), 0);
    EXPECT_EQ(ArePntsColinearUsingDistance(a, a, a, 0), 0);
    EXPECT_EQ(ArePntsColinearUsingDistance(F::Point(0, 0), F::Point(1, 0), F::Point(2, 0), 0), 0);
}

TYPED_TEST(VectorGeometry, ColinearUsingDistance_of_a_nan_holds)
{
    using F = TestFixture;
    auto const undefined = typename F::V2(F::k_NaN, 0);
    auto const b = F::Point(100, 0);
    auto const c = F::Point(0, 100);
    EXPECT_EQ(ArePntsColinearUsingDistance(undefined, b, c, F::k_Small), 1);
    EXPECT_EQ(ArePntsColinearUsingDistance(b, undefined, c, F::k_Small), 1);
    EXPECT_EQ(ArePntsColinearUsingDistance(b, c, undefined, F::k_Small), 1);
    EXPECT_EQ(ArePntsColinearUsingDistance(undefined, undefined, undefined, F::k_Small), 1);
}

TYPED_TEST(VectorGeometry, SegmentIntersect_reports_none_ever)
{
    using F = TestFixture;
    EXPECT_EQ(FSegmentIntersect(F::Point(0, 0), F::Point(2, 2), F::Point(0, 2), F::Point(2, 0)), 0);
    EXPECT_EQ(FSegmentIntersect(F::Point(0, 0), F::Point(1, 0), F::Point(0, 5), F::Point(1, 5)), 0);
    EXPECT_EQ(FSegmentIntersect(F::Point(0, 0), F::Point(1, 0), F::Point(0, 0), F::Point(1, 0)), 0);
}

// Triangles

TYPED_TEST(VectorGeometry, TriangleArea_is_half_base_times_height)
{
    using F = TestFixture;
    EXPECT_NEAR(GetTriangleArea(F::Point(1, 1, 1), F::Point(4, 1, 1), F::Point(1, 1, 5)), 6, 6 * F::k_Close);
    EXPECT_NEAR(GetTriangleArea(F::Point(1, 1, 5), F::Point(4, 1, 1), F::Point(1, 1, 1)), 6, 6 * F::k_Close);
    EXPECT_NEAR(GetTriangleArea(F::Point(1, 0, 0), F::Point(0, 1, 0), F::Point(0, 0, 1)), std::sqrt(3.0) / 2,
                F::k_Close);
    EXPECT_EQ(GetTriangleArea(F::Point(0, 0, 0), F::Point(1, 2, 3), F::Point(2, 4, 6)), 0);
    EXPECT_EQ(GetTriangleArea(F::Point(1, 2, 3), F::Point(1, 2, 3), F::Point(1, 2, 3)), 0);
}

TYPED_TEST(VectorGeometry, Barycentric_in_space_recovers_a_point_in_the_triangle)
{
    using F = TestFixture;
    auto const a = F::Point(1, 0, 2);
    auto const b = F::Point(5, 1, 0);
    auto const c = F::Point(2, 6, 1);
    TypeParam const weights[][3] = {{1, 0, 0},     {0, 1, 0},         {0, 0, 1},
                                    {0.5, 0.5, 0}, {0.25, 0.25, 0.5}, {0.125, 0.75, 0.125}};
    for (auto const & weight : weights)
    {
        auto p = typename F::V3().Mul(a, weight[0]);
        p.Add(typename F::V3().Mul(b, weight[1])).Add(typename F::V3().Mul(c, weight[2]));
        TypeParam u = 7;
        TypeParam v = 7;
        TypeParam w = 7;
        GetBarycentricCoords(p, a, b, c, u, v, w);
        EXPECT_NEAR(u, weight[0], F::k_Close);
        EXPECT_NEAR(v, weight[1], F::k_Close);
        EXPECT_NEAR(w, weight[2], F::k_Close);
    }
}

TYPED_TEST(VectorGeometry, Barycentric_in_space_is_never_negative_and_adds_up_to_1)
{
    using F = TestFixture;
    TypeParam u = 7;
    TypeParam v = 7;
    TypeParam w = 7;
    // Outside: the signed coordinates would be -1, 1, 1.
    GetBarycentricCoords(F::Point(1, 1, 0), F::Point(0, 0, 0), F::Point(1, 0, 0), F::Point(0, 1, 0), u, v, w);
    EXPECT_NEAR(u, 1 / 3.0, F::k_Close);
    EXPECT_NEAR(v, 1 / 3.0, F::k_Close);
    EXPECT_NEAR(w, 1 / 3.0, F::k_Close);

    auto const points = MakeRandomPoints<TypeParam>(54, 300);
    for (std::size_t i = 0; i + 3 < points.size(); ++i)
    {
        GetBarycentricCoords(points[i], points[i + 1], points[i + 2], points[i + 3], u, v, w);
        EXPECT_GE(std::min({u, v, w}), 0);
        EXPECT_NEAR(u + v + w, 1, F::k_Close);
        TypeParam const uOverV = GetTriangleArea(points[i], points[i + 2], points[i + 3]) /
                                 GetTriangleArea(points[i], points[i + 3], points[i + 1]);
        EXPECT_NEAR(u / v, uOverV, F::k_Close * (1 + uOverV));
    }
}

TYPED_TEST(VectorGeometry, Barycentric_in_space_of_points_on_one_line_is_zero)
{
    using F = TestFixture;
    TypeParam u = 7;
    TypeParam v = 7;
    TypeParam w = 7;
    GetBarycentricCoords(F::Point(3, 3, 3), F::Point(0, 0, 0), F::Point(1, 1, 1), F::Point(2, 2, 2), u, v, w);
    EXPECT_EQ(u, 0);
    EXPECT_EQ(v, 0);
    EXPECT_EQ(w, 0);
    // The point alone off the line is enough for areas.
    GetBarycentricCoords(F::Point(0, 1, 0), F::Point(0, 0, 0), F::Point(1, 0, 0), F::Point(4, 0, 0), u, v, w);
    EXPECT_NEAR(u, 3 / 8.0, F::k_Close);
    EXPECT_NEAR(v, 4 / 8.0, F::k_Close);
    EXPECT_NEAR(w, 1 / 8.0, F::k_Close);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_is_signed)
{
    using F = TestFixture;
    auto const a = F::Point(0, 0);
    auto const b = F::Point(1, 0);
    auto const c = F::Point(0, 1);
    TypeParam const epsilon = F::k_Small;
    ExpectCoordinates(GetPlaneCoordinates(F::Point(1, 1), a, b, c, epsilon), 0, -1, 1, 1);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(-1, 0.5), a, b, c, epsilon), 0, 1.5, -1, 0.5);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(0.5, -1), a, b, c, epsilon), 0, 1.5, 0.5, -1);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(0.25, 0.25), a, b, c, epsilon), 1, 0.5, 0.25, 0.25);
    ExpectCoordinates(GetPlaneCoordinates(a, a, b, c, epsilon), 1, 1, 0, 0);
    ExpectCoordinates(GetPlaneCoordinates(b, a, b, c, epsilon), 1, 0, 1, 0);
    ExpectCoordinates(GetPlaneCoordinates(c, a, b, c, epsilon), 1, 0, 0, 1);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(3, 2), F::Point(1, 1), F::Point(5, 1), F::Point(1, 5), epsilon), 1,
                      0.25, 0.5, 0.25);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_allows_coordinates_above_minus_epsilon)
{
    using F = TestFixture;
    auto const a = F::Point(0, 0);
    auto const b = F::Point(1, 0);
    auto const c = F::Point(0, 1);
    auto const epsilon = TypeParam(0.0625);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(1.03125, 0), a, b, c, epsilon), 1, -0.03125, 1.03125, 0);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(1.0625, 0), a, b, c, epsilon), 0, -0.0625, 1.0625, 0);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(-0.03125, 0.5), a, b, c, epsilon), 1, 0.53125, -0.03125, 0.5);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(-0.0625, 0.5), a, b, c, epsilon), 0, 0.5625, -0.0625, 0.5);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(0.5, -0.03125), a, b, c, epsilon), 1, 0.53125, 0.5, -0.03125);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(0.5, -0.0625), a, b, c, epsilon), 0, 0.5625, 0.5, -0.0625);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_takes_an_area_of_epsilon_for_degenerate)
{
    using F = TestFixture;
    auto const a = F::Point(0, 0);
    auto const b = F::Point(1, 0);
    auto const c = F::Point(0, 1);
    // The area is one half. At that limit the point goes to the edge c a, of those at a distance of 1/8.
    ExpectCoordinates(GetPlaneCoordinates(F::Point(0.125, 0.125), a, b, c, TypeParam(0.5)), 1, 0.875, 0, 0.125);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(0.125, 0.125), a, b, c, TypeParam(0.499)), 1, 0.75, 0.125, 0.125);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_treats_a_clockwise_triangle_as_edges)
{
    using F = TestFixture;
    auto const a = F::Point(0, 0);
    auto const b = F::Point(0, 1);
    auto const c = F::Point(1, 0);
    auto const p = F::Point(0.25, 0.25);
    TypeParam const epsilon = F::k_Small;
    // Inside, and at a squared distance of 1/16 from c a and from a b: the first edge keeps it.
    ExpectCoordinates(GetPlaneCoordinates(p, a, b, c, epsilon), 0, 0.75, 0, 0.25);
    // On an edge it counts.
    ExpectCoordinates(GetPlaneCoordinates(F::Point(0, 0.25), a, b, c, epsilon), 1, 0.75, 0.25, 0);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(0.25, 0.75), a, b, c, epsilon), 1, 0, 0.75, 0.25);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_prefers_edges_at_the_named_vertex)
{
    using F = TestFixture;
    auto const a = F::Point(0, 0);
    auto const b = F::Point(0, 1);
    auto const c = F::Point(1, 0);
    TypeParam const epsilon = F::k_Small;
    auto const p = F::Point(0.25, 0.25);
    // Vertex 0: the equally near edges c a and a b. Vertex 1: a b goes before the edge c a at the same distance.
    ExpectCoordinates(GetPlaneCoordinates(p, a, b, c, epsilon, 0), 0, 0.75, 0, 0.25);
    ExpectCoordinates(GetPlaneCoordinates(p, a, b, c, epsilon, 1), 0, 0.75, 0.25, 0);
    ExpectCoordinates(GetPlaneCoordinates(p, a, b, c, epsilon, 2), 0, 0.75, 0, 0.25);
    // On the edge a b, and yet the edges at c go first: c a, at 1/16, before b c, at 9/16.
    auto const onEdge = F::Point(0, 0.25);
    ExpectCoordinates(GetPlaneCoordinates(onEdge, a, b, c, epsilon, 2), 0, 1, 0, 0);
    ExpectCoordinates(GetPlaneCoordinates(onEdge, a, b, c, epsilon, 1), 1, 0.75, 0.25, 0);
    ExpectCoordinates(GetPlaneCoordinates(onEdge, a, b, c, epsilon, std::numeric_limits<unsigned long>::max()), 1, 0.75,
                      0.25, 0);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_of_collinear_vertices_lies_on_an_edge)
{
    using F = TestFixture;
    auto const a = F::Point(0, 0);
    auto const b = F::Point(1, 0);
    auto const c = F::Point(2, 0);
    TypeParam const epsilon = F::k_Small;
    auto const p = F::Point(0.5, 0);
    // On c a and on a b.
    ExpectCoordinates(GetPlaneCoordinates(p, a, b, c, epsilon), 1, 0.75, 0, 0.25);
    ExpectCoordinates(GetPlaneCoordinates(p, a, b, c, epsilon, 1), 1, 0.5, 0.5, 0);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(1.5, 0), a, b, c, epsilon, 1), 1, 0, 0.5, 0.5);
    // Beyond all of them: the place on the first of those that are equally near, and a failure.
    ExpectCoordinates(GetPlaneCoordinates(F::Point(3, 0), a, b, c, epsilon), 0, -0.5, 0, 1.5);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_prefers_an_edge_along_the_point_to_a_nearer_one_beyond_it)
{
    using F = TestFixture;
    auto const a = F::Point(0, 0);
    auto const b = F::Point(4, 4);
    auto const c = F::Point(2, 0);
    ASSERT_EQ(ArePntsClockWise(a, b, c), 1);
    // On the line of c a and beyond its end; a distance of 1 from b c and of 3 from a b, at their ends.
    auto const p = F::Point(3, 0);
    ExpectCoordinates(GetPlaneCoordinates(p, a, b, c, F::k_Small), 0, 0, 0, 1);
    // Also where the edge beyond comes last.
    ExpectCoordinates(GetPlaneCoordinates(p, b, c, a, F::k_Small), 0, 0, 1, 0);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_widens_edges_by_epsilon)
{
    using F = TestFixture;
    auto const a = F::Point(0, 0);
    auto const b = F::Point(4, 0);
    auto const c = F::Point(2, 0);
    auto const epsilon = TypeParam(0.25);
    // On a b the parameter is -1/4, then just beyond; on c a it is 1.5 and on b c 2.5.
    ExpectCoordinates(GetPlaneCoordinates(F::Point(-1, 0), a, b, c, epsilon), 1, 1.25, -0.25, 0);
    EXPECT_EQ(GetPlaneCoordinates(F::Point(-1.001, 0), a, b, c, epsilon).result, 0);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(5, 0), a, b, c, epsilon), 1, -0.25, 1.25, 0);
    EXPECT_EQ(GetPlaneCoordinates(F::Point(5.001, 0), a, b, c, epsilon).result, 0);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_limits_the_squared_distance_from_the_edge)
{
    using F = TestFixture;
    auto const a = F::Point(0, 0);
    auto const b = F::Point(1, 0);
    auto const c = F::Point(2, 0);
    auto const epsilon = TypeParam(0.25);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(0.5, 0.5), a, b, c, epsilon), 0, 0.75, 0, 0.25);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(0.5, 0.4375), a, b, c, epsilon), 1, 0.75, 0, 0.25);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_reads_edges_along_their_longer_axis)
{
    using F = TestFixture;
    auto const epsilon = TypeParam(0.125);
    // Beside steep, diagonal and flat lines; X and Y would give different parameters on the edge c a.
    ExpectCoordinates(GetPlaneCoordinates(F::Point(0.5, 1), F::Point(0, 0), F::Point(0.5, 2), F::Point(1, 4), epsilon),
                      1, 0.75, 0, 0.25);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(0.5, 0.75), F::Point(0, 0), F::Point(1, 1), F::Point(2, 2), epsilon),
                      1, 0.625, 0, 0.375);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(1, 0.5), F::Point(0, 0), F::Point(2, 0.5), F::Point(4, 1), epsilon),
                      1, 0.75, 0, 0.25);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_takes_an_edge_of_epsilon_for_its_start)
{
    using F = TestFixture;
    auto const epsilon = TypeParam(0.125);
    auto const c = F::Point(0, 0);
    // c a spans epsilon along X, which is not more than that, so that the point at its end is placed at its start.
    auto const alongX = F::Point(0.125, 0);
    ExpectCoordinates(GetPlaneCoordinates(alongX, alongX, F::Point(0, 1), c, epsilon, 2), 1, 0, 0, 1);
    auto const widerX = F::Point(0.25, 0);
    ExpectCoordinates(GetPlaneCoordinates(widerX, widerX, F::Point(0, 1), c, epsilon, 2), 1, 1, 0, 0);
    // The same along Y.
    auto const alongY = F::Point(0, 0.125);
    ExpectCoordinates(GetPlaneCoordinates(alongY, alongY, F::Point(-1, 0), c, epsilon, 2), 1, 0, 0, 1);
    auto const widerY = F::Point(0, 0.25);
    ExpectCoordinates(GetPlaneCoordinates(widerY, widerY, F::Point(-1, 0), c, epsilon, 2), 1, 1, 0, 0);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_of_one_point_is_its_last_vertex)
{
    using F = TestFixture;
    auto const o = F::Point(2, 3);
    TypeParam const epsilon = F::k_Small;
    ExpectCoordinates(GetPlaneCoordinates(o, o, o, o, epsilon), 1, 0, 0, 1);
    ExpectCoordinates(GetPlaneCoordinates(F::Point(2, 4), o, o, o, epsilon), 0, 0, 0, 1);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_of_a_point_too_far_to_measure_is_zero)
{
    using F = TestFixture;
    TypeParam const far = std::sqrt(F::Limits::max()) * 2;
    auto const found =
        GetPlaneCoordinates(typename F::V2(far, far), F::Point(0, 0), F::Point(1, 0), F::Point(2, 0), F::k_Small);
    ExpectCoordinates(found, 0, 0, 0, 0);
}

TYPED_TEST(VectorGeometry, Barycentric_in_the_plane_of_a_nan_passes_every_test)
{
    using F = TestFixture;
    auto const found =
        GetPlaneCoordinates(typename F::V2(F::k_NaN, 0), F::Point(0, 0), F::Point(1, 0), F::Point(0, 1), F::k_Small);
    // The first edge, c a, is read on Y.
    ExpectCoordinates(found, 1, 1, 0, 0);
}

// Orthogonal directions

TYPED_TEST(VectorGeometry, OrthogonalBasis_leaves_out_the_smallest_component)
{
    using F = TestFixture;
    typename F::V3 a;
    typename F::V3 b;
    GetOrthogonalBasis(F::Point(3, -2, 1), a, b);
    EXPECT_TRUE(a == F::Point(2, 3, 0));
    GetOrthogonalBasis(F::Point(3, 1, -2), a, b);
    EXPECT_TRUE(a == F::Point(2, 0, 3));
    GetOrthogonalBasis(F::Point(-2, 3, 1), a, b);
    EXPECT_TRUE(a == F::Point(-3, -2, 0));
    GetOrthogonalBasis(F::Point(1, -2, 3), a, b);
    EXPECT_TRUE(a == F::Point(0, -3, -2));
    GetOrthogonalBasis(F::Point(-1, 3, 2), a, b);
    EXPECT_TRUE(a == F::Point(0, -2, 3));
    GetOrthogonalBasis(F::Point(2, 1, 3), a, b);
    EXPECT_TRUE(a == F::Point(-3, 0, 2));
}

TYPED_TEST(VectorGeometry, OrthogonalBasis_decides_ties)
{
    using F = TestFixture;
    typename F::V3 a;
    typename F::V3 b;
    // All equal, and Y equal to Z below X: Z counts as the smallest.
    GetOrthogonalBasis(F::Point(1, -1, 1), a, b);
    EXPECT_TRUE(a == F::Point(1, 1, 0));
    GetOrthogonalBasis(F::Point(2, 1, 1), a, b);
    EXPECT_TRUE(a == F::Point(-1, 2, 0));
    // X equal to Z below Y: Z.
    GetOrthogonalBasis(F::Point(1, 2, 1), a, b);
    EXPECT_TRUE(a == F::Point(-2, 1, 0));
    // X equal to Y below Z: Y.
    GetOrthogonalBasis(F::Point(1, 1, 2), a, b);
    EXPECT_TRUE(a == F::Point(-2, 0, 1));
    GetOrthogonalBasis(F::Point(0, 0, 1), a, b);
    EXPECT_TRUE(a == F::Point(-1, 0, 0));
    EXPECT_TRUE(b == F::Point(0, -1, 0));
}

TYPED_TEST(VectorGeometry, OrthogonalBasis_is_orthogonal_and_right_handed)
{
    using F = TestFixture;
    for (auto const & n : MakeRandomPoints<TypeParam>(55, 500))
    {
        typename F::V3 a;
        typename F::V3 b;
        GetOrthogonalBasis(n, a, b);
        auto const scaled = [](auto const & u, auto const & v)
        { return math::detail::Dot(u, v) / (u.GetLength() * v.GetLength()); };
        EXPECT_NEAR(scaled(n, a), 0, F::k_Close);
        EXPECT_NEAR(scaled(n, b), 0, F::k_Close);
        EXPECT_NEAR(scaled(a, b), 0, F::k_Close);
        EXPECT_NEAR(scaled(typename F::V3().SetCross(a, b), n), 1, F::k_Close);
        EXPECT_NEAR(b.GetLength() / (a.GetLength() * n.GetLength()), 1, F::k_Close);
        // The two larger components make up at least two thirds of the squared length.
        EXPECT_GT(a.GetSquaredLength(), n.GetSquaredLength() * TypeParam(0.66));
    }
}

TYPED_TEST(VectorGeometry, OrthogonalBasis_of_a_null_vector_is_null)
{
    using F = TestFixture;
    typename F::V3 a(1, 1, 1);
    typename F::V3 b(1, 1, 1);
    GetOrthogonalBasis(F::Point(0, 0, 0), a, b);
    EXPECT_TRUE(a.IsExactlyNull());
    EXPECT_TRUE(b.IsExactlyNull());
}
