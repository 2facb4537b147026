/// What the two and three-component vectors share beyond arithmetic: mirroring and the B-splines; and projection, which
/// the four-component vector has too.

#include "numeric/vector_checks.h"

#include <type_traits>

using namespace test_support;

namespace
{

template <typename Vector>
class VectorProjection : public testing::Test
{
};
using ProjectionTypes = testing::Types<C3DVector2Tpl<float>, C3DVector2Tpl<double>, C3DVector3Tpl<float>,
                                       C3DVector3Tpl<double>, C3DVector4Tpl<float>, C3DVector4Tpl<double>>;
TYPED_TEST_SUITE(VectorProjection, ProjectionTypes);

template <typename Vector>
class VectorSpline : public testing::Test
{
protected:
    using Scalar = ScalarOf<Vector>;
    static constexpr unsigned long stored = VectorTraits<Vector>::stored;
    static constexpr Scalar k_Sixth = static_cast<Scalar>(0.1666667);

    static Vector Target() { return Make<Vector>(101, 103, 107, 0); }

    /// The weights of the four control points at t, as the spline shows them: with 1 in one point and 0 in the others.
    template <typename Interpolate>
    static std::array<Scalar, 4> Weights(Interpolate interpolate, Scalar t)
    {
        std::array<Scalar, 4> weights{};
        for (unsigned long i = 0; i < 4; ++i)
        {
            std::array<Vector, 4> points;
            points.fill(Make<Vector>(0, 0, 0, 0));
            points[i] = Make<Vector>(1, 1, 1, 0);
            Vector target = Target();
            EXPECT_EQ(&interpolate(target, points, t), &target);
            for (unsigned long k = 0; k < stored; ++k)
            {
                EXPECT_EQ(target[k], target[0]) << "component " << k << " of point " << i;
            }
            weights[i] = target.X;
        }
        return weights;
    }

    static Vector & Position(Vector & target, std::array<Vector, 4> const & p, Scalar t)
    {
        return target.BsplinePositionInterpolate(p[0], p[1], p[2], p[3], t);
    }
    static Vector & Derivative(Vector & target, std::array<Vector, 4> const & p, Scalar t)
    {
        return target.BsplineVectorInterpolate(p[0], p[1], p[2], p[3], t);
    }
};
using SplineTypes =
    testing::Types<C3DVector2Tpl<float>, C3DVector2Tpl<double>, C3DVector3Tpl<float>, C3DVector3Tpl<double>>;
TYPED_TEST_SUITE(VectorSpline, SplineTypes);

} // namespace

TYPED_TEST(VectorProjection, SetProjection_keeps_the_part_along_the_direction)
{
    auto target = Make<TypeParam>(7, 3, -5, 11);
    EXPECT_EQ(target.SetProjection(Make<TypeParam>(0, -2, 0, 0)), 1);
    EXPECT_EQ(Components(target), Components(Make<TypeParam>(0, 3, 0, 0)));
    for (unsigned long i = 0; i < VectorTraits<TypeParam>::stored; ++i)
    {
        target = Make<TypeParam>(7, 3, -5, 11);
        auto const along = MakeAlong<TypeParam>(i, target[i]);
        EXPECT_EQ(target.SetProjection(MakeAlong<TypeParam>(i, 4)), 1);
        EXPECT_EQ(Components(target), Components(along)) << i;
    }
    // On the diagonal every component counts.
    target = Make<TypeParam>(8, 4, 12, 24);
    auto const diagonal = Make<TypeParam>(1, 1, 1, 1);
    ScalarOf<TypeParam> sum = 0;
    for (unsigned long i = 0; i < VectorTraits<TypeParam>::stored; ++i)
    {
        sum += target[i];
    }
    TypeParam expected = diagonal;
    expected.Mul(sum / static_cast<ScalarOf<TypeParam>>(VectorTraits<TypeParam>::stored));
    EXPECT_EQ(target.SetProjection(diagonal), 1);
    EXPECT_EQ(Components(target), Components(expected));
}

TYPED_TEST(VectorProjection, SetProjection_on_the_target_itself_keeps_it)
{
    auto target = Make<TypeParam>(7, 3, -5, 11);
    EXPECT_EQ(target.SetProjection(target), 1);
    EXPECT_EQ(Components(target), Components(Make<TypeParam>(7, 3, -5, 11)));
}

TYPED_TEST(VectorProjection, SetProjection_on_a_null_direction_keeps_the_target)
{
    auto target = Make<TypeParam>(7, 3, -5, 11);
    EXPECT_EQ(target.SetProjection(Make<TypeParam>(0, 0, 0, 0)), 0);
    EXPECT_EQ(Components(target), Components(Make<TypeParam>(7, 3, -5, 11)));
}

TYPED_TEST(VectorProjection, SetProjection_goes_on_with_a_NaN)
{
    auto target = Make<TypeParam>(7, 3, -5, 11);
    EXPECT_EQ(target.SetProjection(MakeAlong<TypeParam>(1, k_NaN<ScalarOf<TypeParam>>)), 1);
    EXPECT_TRUE(std::isnan(target.X));
}

TYPED_TEST(VectorSpline, SetMirror_goes_through_the_centre)
{
    TypeParam target = this->Target();
    auto const p = Make<TypeParam>(1, 2, 3, 0);
    auto const c = Make<TypeParam>(10, 30, 50, 0);
    auto const mirrored = Make<TypeParam>(19, 58, 97, 0);
    EXPECT_EQ(&target.SetMirror(p, c), &target);
    EXPECT_EQ(Components(target), Components(mirrored));
    target = c;
    target.SetMirror(p, target);
    EXPECT_EQ(Components(target), Components(mirrored)) << "the target is the centre";
}

TYPED_TEST(VectorSpline, SetMirror_of_the_target_gives_the_null_vector)
{
    auto target = Make<TypeParam>(1, 2, 3, 0);
    target.SetMirror(target, Make<TypeParam>(10, 30, 50, 0));
    EXPECT_EQ(Components(target), Components(Make<TypeParam>(0, 0, 0, 0)));
}

TYPED_TEST(VectorSpline, Position_weights_are_those_of_the_uniform_cubic_spline)
{
    using T = ScalarOf<TypeParam>;
    T const sixth = TestFixture::k_Sixth;
    auto const weights = [](double t) { return TestFixture::Weights(TestFixture::Position, static_cast<T>(t)); };
    EXPECT_EQ(weights(0), Row<T>(1 * sixth, 4 * sixth, 1 * sixth, 0 * sixth));
    EXPECT_EQ(weights(1), Row<T>(0 * sixth, 1 * sixth, 4 * sixth, 1 * sixth));
    EXPECT_EQ(weights(0.5), Row<T>(T(0.125) * sixth, T(2.875) * sixth, T(2.875) * sixth, T(0.125) * sixth));
    EXPECT_EQ(weights(0.25),
              Row<T>(T(0.421875) * sixth, T(3.671875) * sixth, T(1.890625) * sixth, T(0.015625) * sixth));
    EXPECT_EQ(weights(2), Row<T>(-1 * sixth, 4 * sixth, -5 * sixth, 8 * sixth)) << "t is not clamped";
    EXPECT_EQ(weights(-1), Row<T>(8 * sixth, -5 * sixth, 4 * sixth, -1 * sixth)) << "t is not clamped";
}

TYPED_TEST(VectorSpline, Derivative_weights_have_no_common_factor)
{
    using T = ScalarOf<TypeParam>;
    auto const weights = [](double t) { return TestFixture::Weights(TestFixture::Derivative, static_cast<T>(t)); };
    EXPECT_EQ(weights(0), Row<T>(-0.5, 0, 0.5, 0));
    EXPECT_EQ(weights(1), Row<T>(0, -0.5, 0, 0.5));
    EXPECT_EQ(weights(0.5), Row<T>(-0.125, -0.625, 0.625, 0.125));
    EXPECT_EQ(weights(0.25), Row<T>(-0.28125, -0.40625, 0.65625, 0.03125));
    EXPECT_EQ(weights(2), Row<T>(-0.5, 2, -3.5, 2)) << "t is not clamped";
    EXPECT_EQ(weights(-1), Row<T>(-2, 3.5, -2, 0.5)) << "t is not clamped";
}

TYPED_TEST(VectorSpline, Spline_through_four_equal_points_lies_slightly_off_them)
{
    using T = ScalarOf<TypeParam>;
    std::array<TypeParam, 4> points;
    points.fill(Make<TypeParam>(1, 1, 1, 0));
    TypeParam target = this->Target();
    TestFixture::Position(target, points, T(0));
    EXPECT_EQ(target.X, 6 * static_cast<T>(0.1666667));
    EXPECT_NEAR(target.X, 1.0000002, 4e-8);
    EXPECT_GT(target.X, T(1));
    TestFixture::Derivative(target, points, T(0.25));
    EXPECT_EQ(Components(target), Components(Make<TypeParam>(0, 0, 0, 0)));
}

TYPED_TEST(VectorSpline, Position_multiplies_the_weighted_sum_once)
{
    using T = ScalarOf<TypeParam>;
    T const sixth = TestFixture::k_Sixth;
    // At 0.5 the weighted sum of these is exact.
    std::array<TypeParam, 4> const points{Make<TypeParam>(8, 8, 8, 0), Make<TypeParam>(8, 8, 8, 0),
                                          Make<TypeParam>(16, 16, 16, 0), Make<TypeParam>(8, 8, 8, 0)};
    T const sum = 1 + 23 + 46 + 1;
    ASSERT_NE(sum * sixth, 1 * sixth + 23 * sixth + 46 * sixth + 1 * sixth) << "does not tell the order";
    TypeParam target = this->Target();
    TestFixture::Position(target, points, T(0.5));
    EXPECT_EQ(target.X, sum * sixth);
}

TYPED_TEST(VectorSpline, Derivative_is_that_of_the_exact_spline)
{
    using T = ScalarOf<TypeParam>;
    std::array<TypeParam, 4> const points{Make<TypeParam>(1, -2, 3, 0), Make<TypeParam>(4, 5, -6, 0),
                                          Make<TypeParam>(-7, 8, 9, 0), Make<TypeParam>(10, -11, 12, 0)};
    auto const h = T(0.0625);
    for (double const t : {0.0, 0.25, 0.5, 1.0})
    {
        TypeParam before = this->Target();
        TypeParam after = this->Target();
        TypeParam third = this->Target();
        TypeParam derivative = this->Target();
        TestFixture::Position(before, points, static_cast<T>(t) - h);
        TestFixture::Position(after, points, static_cast<T>(t) + h);
        TestFixture::Derivative(derivative, points, static_cast<T>(t));
        // The central difference of a cubic is off by h^2 / 6 of its third derivative, -p0 + 3 p1 - 3 p2 + p3.
        third.Mul(points[1], T(3)).Sub(points[0]).Sub(TypeParam(points[2]).Mul(T(3))).Add(points[3]);
        for (unsigned long k = 0; k < TestFixture::stored; ++k)
        {
            EXPECT_NEAR((after[k] - before[k]) / (2 * h), derivative[k] + third[k] * h * h / 6, 1e-4) << k;
        }
    }
}

TYPED_TEST(VectorSpline, Target_may_be_any_control_point)
{
    using T = ScalarOf<TypeParam>;
    std::array<TypeParam, 4> const points{Make<TypeParam>(1, -2, 3, 0), Make<TypeParam>(4, 5, -6, 0),
                                          Make<TypeParam>(-7, 8, 9, 0), Make<TypeParam>(10, -11, 12, 0)};
    for (unsigned long i = 0; i < 4; ++i)
    {
        TypeParam separate = this->Target();
        std::array<TypeParam, 4> own = points;
        TestFixture::Position(separate, points, T(0.3));
        EXPECT_EQ(Components(TestFixture::Position(own[i], own, T(0.3))), Components(separate)) << i;
        own = points;
        TestFixture::Derivative(separate, points, T(0.3));
        EXPECT_EQ(Components(TestFixture::Derivative(own[i], own, T(0.3))), Components(separate)) << i;
    }
}
