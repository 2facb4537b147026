#include "math/vector2.h"

#include "numeric/vector_checks.h"

#include <climits>
#include <type_traits>

using namespace test_support;

namespace
{

template <typename Scalar>
class Vector2 : public testing::Test
{
protected:
    using Vector = C3DVector2Tpl<Scalar>;

    Vector const a{Scalar(2), Scalar(-3)};
    Vector const b{Scalar(11), Scalar(13)};

    static constexpr Scalar k_Big = Scalar(4) / std::numeric_limits<Scalar>::epsilon();

    static Vector Of(double x, double y) { return Make<Vector>(x, y, 0, 0); }
    static std::array<Scalar, 2> Numbers(double x, double y) { return Row<Scalar>(x, y); }
};
TYPED_TEST_SUITE(Vector2, ScalarTypes);

} // namespace

TYPED_TEST(Vector2, Constructors_set_the_components)
{
    using V = C3DVector2Tpl<TypeParam>;
    EXPECT_EQ(Components(V()), this->Numbers(0, 0));
    EXPECT_EQ(Components(V(TypeParam(1), TypeParam(2))), this->Numbers(1, 2));
    TypeParam const array[3] = {4, 5, 6};
    EXPECT_EQ(Components(V(array)), this->Numbers(4, 5));
    EXPECT_EQ(Components(V(array + 1)), this->Numbers(5, 6));
}

TYPED_TEST(Vector2, Axis_constructor_gives_the_null_vector_for_any_other_axis)
{
    using V = C3DVector2Tpl<TypeParam>;
    EXPECT_EQ(Components(V(0, TypeParam(7))), this->Numbers(7, 0));
    EXPECT_EQ(Components(V(1, TypeParam(7))), this->Numbers(0, 7));
    for (int const axis : {-1, 2, 5, INT_MIN, INT_MAX})
    {
        EXPECT_EQ(Components(V(axis, TypeParam(1))), this->Numbers(0, 0)) << axis;
    }
    EXPECT_EQ(Components(V(0, k_Infinity<TypeParam>)), this->Numbers(k_Infinity<double>, 0));
}

TYPED_TEST(Vector2, Set_and_Get_move_both_components)
{
    auto v = this->Of(9, 9);
    EXPECT_EQ(&v.Set(TypeParam(1), TypeParam(2)), &v);
    EXPECT_EQ(Components(v), this->Numbers(1, 2));
    // An int is no index here.
    EXPECT_EQ(Components(v.Set(1, TypeParam(5))), this->Numbers(1, 5));
    EXPECT_EQ(&v.Set(this->b), &v);
    EXPECT_EQ(Components(v), Components(this->b));
    TypeParam x = 0;
    TypeParam y = 0;
    this->a.Get(x, y);
    EXPECT_EQ(Row<TypeParam>(x, y), this->Numbers(2, -3));
    EXPECT_EQ(&v.SetNull(), &v);
    EXPECT_EQ(Components(v), this->Numbers(0, 0));
}

TYPED_TEST(Vector2, IsExactlyNull_compares_with_zero)
{
    EXPECT_EQ(this->Of(0, 0).IsExactlyNull(), 1);
    EXPECT_EQ(this->Of(-0.0, -0.0).IsExactlyNull(), 1);
    for (unsigned long i = 0; i < 2; ++i)
    {
        using V = C3DVector2Tpl<TypeParam>;
        EXPECT_EQ(MakeAlong<V>(i, -std::numeric_limits<TypeParam>::denorm_min()).IsExactlyNull(), 0) << i;
        EXPECT_EQ(MakeAlong<V>(i, k_NaN<TypeParam>).IsExactlyNull(), 0) << i;
    }
}

TYPED_TEST(Vector2, SetMean_adds_in_array_order_and_multiplies_by_the_reciprocal)
{
    TypeParam const big = TestFixture::k_Big;
    using V = C3DVector2Tpl<TypeParam>;
    V const points[3] = {V(TypeParam(1), TypeParam(5)), V(big, TypeParam(0)), V(-big, TypeParam(0))};
    TypeParam const third = TypeParam(1) / 3;
    ASSERT_NE(TypeParam(5) / 3, 5 * third);
    auto target = this->Of(101, 103);
    EXPECT_EQ(&target.SetMean(points, 3), &target);
    EXPECT_EQ(Components(target), Row<TypeParam>(0, 5 * third));
}

TYPED_TEST(Vector2, SetMean_of_no_points)
{
    auto target = this->a;
    EXPECT_EQ(&target.SetMean(nullptr, 3), &target);
    EXPECT_EQ(Components(target), Components(this->a)) << "a null pointer keeps the target";
    target.SetMean(&this->b, 0);
    EXPECT_TRUE(std::isnan(target.X) && std::isnan(target.Y));
}

TYPED_TEST(Vector2, LinearPositionUnInterpolate_reads_the_axis_of_the_larger_difference)
{
    auto const epsilon = TypeParam(1e-3);
    auto const from = this->Of(1, 2);
    auto const target = this->Of(9, 18); // not clamped
    EXPECT_EQ(target.LinearPositionUnInterpolate(from, this->Of(5, 4), epsilon), 2);
    EXPECT_EQ(target.LinearPositionUnInterpolate(from, this->Of(-3, 4), epsilon), -2);
    EXPECT_EQ(target.LinearPositionUnInterpolate(from, this->Of(3, 6), epsilon), 4);
    EXPECT_EQ(target.LinearPositionUnInterpolate(from, this->Of(3, -2), epsilon), -4);
    EXPECT_EQ(target.LinearPositionUnInterpolate(from, this->Of(5, 6), epsilon), 4) << "a tie goes to Y";
    EXPECT_EQ(target.LinearPositionUnInterpolate(from, this->Of(-3, 6), epsilon), 4) << "a tie of magnitudes too";
}

TYPED_TEST(Vector2, LinearPositionUnInterpolate_of_equal_ends_is_zero_even_without_a_tolerance)
{
    EXPECT_EQ(this->b.LinearPositionUnInterpolate(this->a, this->a, TypeParam(0)), 0);
    EXPECT_EQ(this->b.LinearPositionUnInterpolate(this->a, this->a), 0);
}

TYPED_TEST(Vector2, LinearPositionUnInterpolate_with_NaN_ends_is_zero)
{
    EXPECT_EQ(this->b.LinearPositionUnInterpolate(this->a, this->Of(k_NaN<double>, k_NaN<double>), TypeParam(0)), 0);
    // A NaN on X does not keep it from reading Y.
    EXPECT_EQ(this->Of(0, 3).LinearPositionUnInterpolate(this->Of(0, 0), this->Of(k_NaN<double>, 6), TypeParam(0)),
              TypeParam(0.5));
}

TYPED_TEST(Vector2, Rotate90DegsCCW_turns_X_to_Y)
{
    auto v = this->Of(1, 0);
    v.Rotate90DegsCCW();
    EXPECT_EQ(Components(v), this->Numbers(0, 1));
    v = this->Of(2, 3);
    v.Rotate90DegsCCW();
    EXPECT_EQ(Components(v), this->Numbers(-3, 2));
    static_assert(std::is_void_v<decltype(v.Rotate90DegsCCW())>);
}

TYPED_TEST(Vector2, IsBetween_looks_at_the_dominant_axis_alone)
{
    auto const epsilon = TypeParam(0.25);
    EXPECT_EQ(this->Of(0.5, 100).IsBetween(this->Of(0, 0), this->Of(1, 0), epsilon), 1);
    EXPECT_EQ(this->Of(100, 0.5).IsBetween(this->Of(0, 0), this->Of(0, 1), epsilon), 1);
    EXPECT_EQ(this->Of(0.5, 100).IsBetween(this->Of(0, 0), this->Of(-2, 1), epsilon), 0);
    // On a tie the axis is Y.
    EXPECT_EQ(this->Of(100, 0.5).IsBetween(this->Of(0, 0), this->Of(1, 1), epsilon), 1);
    EXPECT_EQ(this->Of(0.5, 100).IsBetween(this->Of(0, 0), this->Of(1, 1), epsilon), 0);
    EXPECT_EQ(this->Of(0.5, 100).IsBetween(this->Of(0, 0), this->Of(1, -1), epsilon), 0);
}

TYPED_TEST(Vector2, IsBetween_widens_the_extent_by_the_tolerance_ends_excluded)
{
    auto const epsilon = TypeParam(0.25);
    struct Case
    {
        TypeParam offset; // from the first end, towards the second
        int between;
    };
    for (Case const & c : {Case{-epsilon, 0}, Case{NextAbove(-epsilon), 1}, Case{0, 1}, Case{2, 1},
                           Case{NextBelow(2 + epsilon), 1}, Case{2 + epsilon, 0}})
    {
        auto const onX = C3DVector2Tpl<TypeParam>(c.offset, TypeParam(50));
        auto const onY = C3DVector2Tpl<TypeParam>(TypeParam(50), c.offset);
        EXPECT_EQ(onX.IsBetween(this->Of(0, 0), this->Of(2, 0), epsilon), c.between) << c.offset;
        EXPECT_EQ(C3DVector2Tpl<TypeParam>().Negate(onX).IsBetween(this->Of(0, 0), this->Of(-2, 0), epsilon), c.between)
            << c.offset;
        EXPECT_EQ(onY.IsBetween(this->Of(0, 0), this->Of(0, 2), epsilon), c.between) << c.offset;
        EXPECT_EQ(C3DVector2Tpl<TypeParam>().Negate(onY).IsBetween(this->Of(0, 0), this->Of(0, -2), epsilon), c.between)
            << c.offset;
    }
    static_assert(std::is_same_v<decltype(this->a.IsBetween(this->a, this->b, epsilon)), int>);
}

TYPED_TEST(Vector2, IsBetween_counts_from_the_first_end)
{
    auto const epsilon = TypeParam(0.25);
    EXPECT_EQ(this->Of(11, 0).IsBetween(this->Of(10, 0), this->Of(12, 0), epsilon), 1);
    EXPECT_EQ(this->Of(1, 0).IsBetween(this->Of(10, 0), this->Of(12, 0), epsilon), 0);
    EXPECT_EQ(this->Of(0, 11).IsBetween(this->Of(0, 12), this->Of(0, 10), epsilon), 1);
    EXPECT_EQ(this->Of(0, 1).IsBetween(this->Of(0, 12), this->Of(0, 10), epsilon), 0);
}

TYPED_TEST(Vector2, IsBetween_of_equal_ends_is_the_tolerance_around_them)
{
    auto const epsilon = TypeParam(0.25);
    EXPECT_EQ(this->Of(100, 1.125).IsBetween(this->Of(1, 1), this->Of(1, 1), epsilon), 1);
    EXPECT_EQ(this->Of(1, 1.25).IsBetween(this->Of(1, 1), this->Of(1, 1), epsilon), 0);
    EXPECT_EQ(this->Of(1, 1).IsBetween(this->Of(1, 1), this->Of(1, 1), TypeParam(0)), 0);
    EXPECT_EQ(this->Of(1, k_NaN<double>).IsBetween(this->Of(1, 1), this->Of(1, 9), epsilon), 0);
}

TYPED_TEST(Vector2, GetSquaredDistanceFromLine_removes_the_projection)
{
    auto const epsilon = TypeParam(1e-3);
    EXPECT_EQ(this->Of(5, 7).GetSquaredDistanceFromLine(this->Of(1, 3), this->Of(2, 0), epsilon), 16);
    EXPECT_EQ(this->Of(5, 6).GetSquaredDistanceFromLine(this->Of(1, 3), this->Of(0, -8), epsilon), 16);
    EXPECT_EQ(this->Of(2, 0).GetSquaredDistanceFromLine(this->Of(0, 0), this->Of(1, 1), epsilon), 2);
}

TYPED_TEST(Vector2, GetSquaredDistanceFromLine_takes_a_short_direction_for_a_point)
{
    auto const epsilon = TypeParam(0.0625);
    auto const target = this->Of(4, 3);
    // The squared length of the direction is what is compared.
    EXPECT_EQ(target.GetSquaredDistanceFromLine(this->Of(0, 0), this->Of(0.25, 0), epsilon), 9);
    EXPECT_EQ(target.GetSquaredDistanceFromLine(this->Of(0, 0), this->Of(0.2421875, 0), epsilon), 25);
    EXPECT_EQ(target.GetSquaredDistanceFromLine(this->Of(0, 0), this->Of(0, 0), epsilon), 25);
    EXPECT_EQ(target.GetSquaredDistanceFromLine(this->Of(0, 0), this->Of(k_NaN<double>, 0), epsilon), 25);
}

TYPED_TEST(Vector2, GetNearestPointToLine_gives_the_offset_from_the_base)
{
    auto const epsilon = TypeParam(1e-3);
    auto result = this->Of(101, 103);
    this->Of(3, 5).GetNearestPointToLine(this->Of(1, 1), this->Of(1, 0), result, epsilon);
    EXPECT_EQ(Components(result), this->Numbers(2, 0));
    this->Of(3, 5).GetNearestPointToLine(this->Of(1, 1), this->Of(0, -2), result, epsilon);
    EXPECT_EQ(Components(result), this->Numbers(0, 4));
    static_assert(std::is_void_v<decltype(this->a.GetNearestPointToLine(this->a, this->b, result, epsilon))>);
}

TYPED_TEST(Vector2, GetNearestPointToLine_goes_on_with_a_direction_below_the_tolerance)
{
    auto result = this->Of(101, 103);
    this->Of(3, 5).GetNearestPointToLine(this->Of(1, 1), this->Of(0, 0), result, TypeParam(1e-3));
    EXPECT_TRUE(std::isnan(result.X) && std::isnan(result.Y)) << "a null direction";
    this->Of(3, 5).GetNearestPointToLine(this->Of(1, 1), this->Of(0.5, 0), result, TypeParam(1000));
    EXPECT_EQ(Components(result), this->Numbers(2, 0)) << "a short one";
}

TYPED_TEST(Vector2, GetMaxComponent_and_GetMinComponent_compare_signed_values_or_magnitudes)
{
    for (auto const & v : {this->Of(-5, 2), this->Of(2, -5)})
    {
        EXPECT_EQ(v.GetMaxComponent(0), 2);
        EXPECT_EQ(v.GetMinComponent(0), -5);
        for (int const magnitudes : {1, -1, 7})
        {
            EXPECT_EQ(v.GetMaxComponent(magnitudes), 5);
            EXPECT_EQ(v.GetMinComponent(magnitudes), 2);
        }
    }
}

TYPED_TEST(Vector2, Index_of_a_component_is_1_on_a_tie)
{
    EXPECT_EQ(this->Of(2, 1).GetIndexOfMaxComponent(0), 0);
    EXPECT_EQ(this->Of(1, 2).GetIndexOfMaxComponent(0), 1);
    EXPECT_EQ(this->Of(1, 1).GetIndexOfMaxComponent(0), 1);
    EXPECT_EQ(this->Of(-2, 1).GetIndexOfMaxComponent(0), 1);
    EXPECT_EQ(this->Of(2, 1).GetIndexOfMinComponent(0), 1);
    EXPECT_EQ(this->Of(1, 2).GetIndexOfMinComponent(0), 0);
    EXPECT_EQ(this->Of(1, 1).GetIndexOfMinComponent(0), 1);
    EXPECT_EQ(this->Of(1, -2).GetIndexOfMinComponent(0), 1);
    for (int const magnitudes : {1, -1, 7})
    {
        EXPECT_EQ(this->Of(-2, 1).GetIndexOfMaxComponent(magnitudes), 0);
        EXPECT_EQ(this->Of(1, -2).GetIndexOfMaxComponent(magnitudes), 1);
        EXPECT_EQ(this->Of(1, -1).GetIndexOfMaxComponent(magnitudes), 1);
        EXPECT_EQ(this->Of(-2, 1).GetIndexOfMinComponent(magnitudes), 1);
        EXPECT_EQ(this->Of(1, -2).GetIndexOfMinComponent(magnitudes), 0);
        EXPECT_EQ(this->Of(-1, 1).GetIndexOfMinComponent(magnitudes), 1);
    }
}

TYPED_TEST(Vector2, Index_of_a_component_is_1_beside_one_that_is_no_number)
{
    TypeParam const nan = std::numeric_limits<TypeParam>::quiet_NaN();
    for (int const magnitudes : {0, 1})
    {
        for (auto const & vector : {this->Of(1, 0).SetX(nan), this->Of(1, 0).SetY(nan)})
        {
            EXPECT_EQ(vector.GetIndexOfMaxComponent(magnitudes), 1);
            EXPECT_EQ(vector.GetIndexOfMinComponent(magnitudes), 1);
        }
    }
}

TYPED_TEST(Vector2, SetMinimal_of_signed_values_takes_the_greater_one)
{
    auto target = this->Of(-5, 3);
    EXPECT_EQ(&target.SetMinimal(this->Of(-2, 1), 0), &target);
    EXPECT_EQ(Components(target), this->Numbers(-2, 3));
    target = this->Of(-5, 3);
    EXPECT_EQ(&target.SetMinimal(0, TypeParam(1)), &target);
    EXPECT_EQ(Components(target), this->Numbers(1, 3));
}

TYPED_TEST(Vector2, SetMinimal_of_magnitudes_keeps_the_sign)
{
    for (int const magnitudes : {1, -1, 8})
    {
        auto target = this->Of(-0.0, -0.5);
        EXPECT_EQ(&target.SetMinimal(this->Of(1, 2), magnitudes), &target);
        EXPECT_EQ(Components(target), this->Numbers(1, -2));
        target = this->Of(-3, 0.5);
        EXPECT_EQ(&target.SetMinimal(magnitudes, TypeParam(2)), &target);
        EXPECT_EQ(Components(target), this->Numbers(-3, 2));
        target = this->Of(-2, 0);
        target.SetMinimal(this->Of(2, -4), magnitudes);
        EXPECT_EQ(Components(target), this->Numbers(-2, 0)) << "at the limit, and a negative limit";
    }
}

TYPED_TEST(Vector2, Axes_that_are_no_number_give_way_to_Y)
{
    TypeParam const nan = std::numeric_limits<TypeParam>::quiet_NaN();
    auto const epsilon = TypeParam(0.5);
    // X is never longer than a Y that is no number, and such a Y holds nothing.
    auto const from = this->Of(0, 0).SetY(nan);
    EXPECT_EQ(this->Of(1, 0).LinearPositionUnInterpolate(from, this->Of(2, 1), epsilon), 0);
    EXPECT_EQ(this->Of(1, 0).IsBetween(from, this->Of(2, 1), epsilon), 0);
    // An X that is no number leaves Y to decide.
    auto const aside = this->Of(0, 0).SetX(nan);
    EXPECT_EQ(this->Of(9, 1).LinearPositionUnInterpolate(aside, this->Of(2, 4), epsilon), TypeParam(0.25));
    EXPECT_EQ(this->Of(9, 1).IsBetween(aside, this->Of(2, 4), epsilon), 1);
}
