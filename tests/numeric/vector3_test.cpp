#include "math/vector3.h"

#include "math/matrix33.h"
#include "math/matrix44.h"
#include "math/platform/qn_vector.h"
#include "numeric/vector_checks.h"
#include "support/random.h"

#include <climits>
#include <type_traits>

using namespace test_support;

namespace
{

template <typename Scalar>
class Vector3 : public testing::Test
{
protected:
    using Vector = C3DVector3Tpl<Scalar>;
    using M33 = C3DMatrix33Tpl<Scalar>;
    using M44 = C3DMatrix44Tpl<Scalar>;

    Vector const a{Scalar(2), Scalar(-3), Scalar(5)};
    Vector const b{Scalar(11), Scalar(13), Scalar(-17)};

    /// So large that adding 1 to it changes nothing.
    static constexpr Scalar k_Big = Scalar(4) / std::numeric_limits<Scalar>::epsilon();

    static Vector Of(double x, double y, double z) { return Make<Vector>(x, y, z, 0); }
    static std::array<Scalar, 3> Numbers(double x, double y, double z) { return Row<Scalar>(x, y, z); }

    static Vector RandomVector(Random & random)
    {
        return Of(random.Integer(-9, 9), random.Integer(-9, 9), random.Integer(-9, 9));
    }
};
TYPED_TEST_SUITE(Vector3, ScalarTypes);

} // namespace

TYPED_TEST(Vector3, Constructors_set_the_components)
{
    using V = C3DVector3Tpl<TypeParam>;
    EXPECT_EQ(Components(V(TypeParam(1), TypeParam(2), TypeParam(3))), this->Numbers(1, 2, 3));
    TypeParam const array[4] = {4, 5, 6, 7};
    EXPECT_EQ(Components(V(array)), this->Numbers(4, 5, 6));
    EXPECT_EQ(Components(V(array + 1)), this->Numbers(5, 6, 7));
}

TYPED_TEST(Vector3, Axis_constructor_gives_the_null_vector_for_any_other_axis)
{
    using V = C3DVector3Tpl<TypeParam>;
    EXPECT_EQ(Components(V(0, TypeParam(7))), this->Numbers(7, 0, 0));
    EXPECT_EQ(Components(V(1, TypeParam(7))), this->Numbers(0, 7, 0));
    EXPECT_EQ(Components(V(2, TypeParam(7))), this->Numbers(0, 0, 7));
    for (int const axis : {-1, 3, 5, INT_MIN, INT_MAX})
    {
        EXPECT_EQ(Components(V(axis, TypeParam(1))), this->Numbers(0, 0, 0)) << axis;
    }
    // Not a product with the value, which would make these NaNs.
    EXPECT_EQ(Components(V(0, k_Infinity<TypeParam>)), this->Numbers(k_Infinity<double>, 0, 0));
    EXPECT_EQ(Components(V(5, k_Infinity<TypeParam>)), this->Numbers(0, 0, 0));
}

TYPED_TEST(Vector3, Set_and_Get_move_all_components)
{
    auto v = this->Of(9, 9, 9);
    EXPECT_EQ(&v.Set(TypeParam(1), TypeParam(2), TypeParam(3)), &v);
    EXPECT_EQ(Components(v), this->Numbers(1, 2, 3));
    EXPECT_EQ(&v.Set(this->b), &v);
    EXPECT_EQ(Components(v), Components(this->b));
    EXPECT_EQ(&v.Set(v), &v);
    EXPECT_EQ(Components(v), Components(this->b));
    TypeParam x = 0;
    TypeParam y = 0;
    TypeParam z = 0;
    this->a.Get(x, y, z);
    EXPECT_EQ(Row<TypeParam>(x, y, z), this->Numbers(2, -3, 5));
    EXPECT_EQ(&v.SetNull(), &v);
    EXPECT_EQ(Components(v), this->Numbers(0, 0, 0));
    EXPECT_FALSE(std::signbit(v.X) || std::signbit(v.Y) || std::signbit(v.Z));
}

TYPED_TEST(Vector3, IsExactlyNull_compares_with_zero)
{
    EXPECT_EQ(this->Of(0, 0, 0).IsExactlyNull(), 1);
    EXPECT_EQ(this->Of(-0.0, 0, -0.0).IsExactlyNull(), 1);
    for (unsigned long i = 0; i < 3; ++i)
    {
        using V = C3DVector3Tpl<TypeParam>;
        EXPECT_EQ(MakeAlong<V>(i, std::numeric_limits<TypeParam>::denorm_min()).IsExactlyNull(), 0) << i;
        EXPECT_EQ(MakeAlong<V>(i, k_NaN<TypeParam>).IsExactlyNull(), 0) << i;
    }
}

TYPED_TEST(Vector3, Package_vector_converts_both_ways)
{
    using V = C3DVector3Tpl<TypeParam>;
    QN_Vector const package{0.1F, -2.5F, 3e38F};
    V const constructed(package);
    EXPECT_EQ(constructed.X, static_cast<TypeParam>(0.1F));
    EXPECT_EQ(constructed.Y, static_cast<TypeParam>(-2.5F));
    EXPECT_EQ(constructed.Z, static_cast<TypeParam>(3e38F));

    V assigned = this->a;
    EXPECT_EQ(&(assigned = package), &assigned);
    EXPECT_EQ(Components(assigned), Components(constructed));

    QN_Vector const back = assigned;
    EXPECT_EQ(back.X, 0.1F);
    EXPECT_EQ(back.Y, -2.5F);
    EXPECT_EQ(back.Z, 3e38F);
    static_assert(std::is_convertible_v<QN_Vector, V> && std::is_convertible_v<V, QN_Vector>);
}

TEST(Vector3Double, Conversion_to_the_package_vector_narrows_every_component)
{
    C3DVector3Tpl<double> const v(0.1, 0.2, 0.3);
    // There and back: an optimiser that drops the narrowing of some component leaves it as it was.
    C3DVector3Tpl<double> round_trip;
    round_trip = static_cast<QN_Vector>(v);
    EXPECT_EQ(Components(round_trip), (std::array<double, 3>{0.1F, 0.2F, 0.3F}));
    EXPECT_NE(round_trip.X, v.X);
    EXPECT_NE(round_trip.Y, v.Y);
    EXPECT_NE(round_trip.Z, v.Z);
    QN_Vector const large = C3DVector3Tpl<double>(1e300, -1e300, 1e-300);
    EXPECT_EQ(large.X, k_Infinity<float>);
    EXPECT_EQ(large.Y, -k_Infinity<float>);
    EXPECT_EQ(large.Z, 0.0F);
}

TYPED_TEST(Vector3, Mul_by_a_matrix_on_the_right_is_the_row_product)
{
    typename TestFixture::M33 const m(2, 3, 5, 7, 11, 13, 17, 19, 23);
    auto target = this->Of(101, 103, 107);
    auto const v = this->Of(1, 10, 100);
    EXPECT_EQ(&target.Mul(v, m), &target);
    EXPECT_EQ(Components(target), this->Numbers(1772, 2013, 2435));
    target = v;
    EXPECT_EQ(&target.Mul(m), &target);
    EXPECT_EQ(Components(target), this->Numbers(1772, 2013, 2435)) << "in place";
    target = v;
    target.Mul(target, m);
    EXPECT_EQ(Components(target), this->Numbers(1772, 2013, 2435)) << "the target is the operand";
}

TYPED_TEST(Vector3, Mul_by_a_matrix_on_the_left_is_the_column_product)
{
    typename TestFixture::M33 const m(2, 3, 5, 7, 11, 13, 17, 19, 23);
    auto target = this->Of(101, 103, 107);
    auto const v = this->Of(1, 10, 100);
    EXPECT_EQ(&target.Mul(m, v), &target);
    EXPECT_EQ(Components(target), this->Numbers(532, 1417, 2507));
    target = v;
    target.Mul(m, target);
    EXPECT_EQ(Components(target), this->Numbers(532, 1417, 2507)) << "the target is the operand";
}

TYPED_TEST(Vector3, Products_with_a_three_by_three_matrix_do_not_skip_zero_components)
{
    TypeParam const infinity = k_Infinity<TypeParam>;
    typename TestFixture::M33 const row(infinity, 0, 0, 0, 1, 0, 0, 0, 1);
    auto const v = this->Of(0, 2, 3);
    auto target = this->Of(0, 0, 0);
    EXPECT_TRUE(std::isnan(target.Mul(v, row).X));
    EXPECT_TRUE(std::isnan(target.Mul(row, v).X));
    target = v;
    EXPECT_TRUE(std::isnan(target.Mul(row).X));
    EXPECT_EQ(target.Y, 2);
}

TYPED_TEST(Vector3, Point_through_a_homogeneous_matrix_is_divided_by_w)
{
    typename TestFixture::M44 const m(2, 3, 5, 1, 7, 11, 13, 0, 17, 19, 23, 0, 29, 31, 37, 7);
    auto const v = this->Of(1, 10, 100);
    // The sums are 1801, 2044, 2472 and w = 1 + 7.
    auto target = this->Of(101, 103, 107);
    EXPECT_EQ(&target.Mul(v, m), &target);
    EXPECT_EQ(Components(target), this->Numbers(1801.0 / 8, 2044.0 / 8, 2472.0 / 8));
    target = v;
    target.Mul(target, m);
    EXPECT_EQ(Components(target), this->Numbers(1801.0 / 8, 2044.0 / 8, 2472.0 / 8)) << "the target is the operand";
}

TYPED_TEST(Vector3, Point_through_a_homogeneous_matrix_takes_w_from_every_row)
{
    typename TestFixture::M44 const m(1, 0, 0, 2, 0, 1, 0, 3, 0, 0, 1, 5, 0, 0, 0, -6);
    auto target = this->Of(1, 1, 1);
    target.Mul(this->Of(1, 2, 4), m); // w = 2 + 6 + 20 - 6
    EXPECT_EQ(Components(target),
              Row<TypeParam>(1 * (TypeParam(1) / 22), 2 * (TypeParam(1) / 22), 4 * (TypeParam(1) / 22)));
}

TYPED_TEST(Vector3, Point_through_a_homogeneous_matrix_is_multiplied_by_the_reciprocal_of_w)
{
    typename TestFixture::M44 const m(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 3);
    TypeParam const third = TypeParam(1) / 3;
    ASSERT_NE(TypeParam(5) / 3, TypeParam(5) * third);
    auto target = this->Of(0, 0, 0);
    target.Mul(this->Of(5, 7, 10), m);
    EXPECT_EQ(Components(target), Row<TypeParam>(5 * third, 7 * third, 10 * third));
}

TYPED_TEST(Vector3, Point_through_a_homogeneous_matrix_does_not_test_w)
{
    typename TestFixture::M44 const m(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0);
    auto target = this->Of(0, 0, 0);
    target.Mul(this->Of(1, -1, 0), m);
    EXPECT_EQ(target.X, k_Infinity<TypeParam>);
    EXPECT_EQ(target.Y, -k_Infinity<TypeParam>);
    EXPECT_TRUE(std::isnan(target.Z));
}

TYPED_TEST(Vector3, Point_through_a_homogeneous_matrix_skips_components_that_are_zero_or_NaN)
{
    for (TypeParam const element : {k_Infinity<TypeParam>, k_NaN<TypeParam>})
    {
        for (int row = 0; row < 3; ++row)
        {
            typename TestFixture::M44 m(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 7, 8, 9, 1);
            m.SetRow(row, element, element, element, element);
            for (TypeParam const component : {TypeParam(0), TypeParam(-0.0), k_NaN<TypeParam>})
            {
                auto v = this->Of(10, 20, 30);
                v[static_cast<unsigned long>(row)] = component;
                auto expected = this->Numbers(17, 28, 39);
                expected[static_cast<unsigned long>(row)] = static_cast<TypeParam>(7 + row);
                auto target = this->Of(0, 0, 0);
                target.Mul(v, m);
                EXPECT_EQ(Components(target), expected) << element << " in row " << row << ", times " << component;
            }
        }
    }
}

TYPED_TEST(Vector3, Point_through_a_homogeneous_matrix_does_not_skip_the_smallest_components)
{
    for (int row = 0; row < 3; ++row)
    {
        for (TypeParam const sign : {TypeParam(1), TypeParam(-1)})
        {
            typename TestFixture::M44 m(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
            m.Set(row, row, k_Infinity<TypeParam>);
            auto const v = MakeAlong<C3DVector3Tpl<TypeParam>>(static_cast<unsigned long>(row),
                                                               sign * std::numeric_limits<TypeParam>::denorm_min());
            auto target = this->Of(0, 0, 0);
            target.Mul(v, m);
            EXPECT_EQ(target.Get(row), sign * k_Infinity<TypeParam>) << row;
        }
    }
}

TYPED_TEST(Vector3, Point_through_a_homogeneous_matrix_does_not_skip_the_last_row)
{
    typename TestFixture::M44 m(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, k_Infinity<TypeParam>, 0, 0, 1);
    auto target = this->Of(0, 0, 0);
    target.Mul(this->Of(0, 0, 0), m);
    EXPECT_EQ(target.X, k_Infinity<TypeParam>);
    m.Set(3, 3, k_NaN<TypeParam>);
    target.Mul(this->Of(0, 0, 0), m);
    EXPECT_TRUE(std::isnan(target.Y));
}

TYPED_TEST(Vector3, Point_through_a_homogeneous_matrix_adds_the_rows_in_a_fixed_order)
{
    TypeParam const big = TestFixture::k_Big;
    ASSERT_EQ(big + 1, big);
    struct Case
    {
        TypeParam last, x, y, z;
        TypeParam sum;
    };
    // The last row first, then X, Y, Z: a 1 that is added to the large number is lost.
    for (Case const & c :
         {Case{1, big, -big, 0, 0}, Case{0, 1, big, -big, 0}, Case{0, big, 1, -big, 0}, Case{0, big, -big, 1, 1},
          Case{big, -big, 1, 0, 1}, Case{big, 1, -big, 1, 1}, Case{big, 1, 1, -big, 0}, Case{1, 0, big, -big, 0}})
    {
        typename TestFixture::M44 const m(c.x, 0, 0, 0, c.y, 0, 0, 0, c.z, 0, 0, 0, c.last, 0, 0, 1);
        auto target = this->Of(0, 0, 0);
        target.Mul(this->Of(1, 1, 1), m);
        EXPECT_EQ(target.X, c.sum) << c.last << ' ' << c.x << ' ' << c.y << ' ' << c.z;
    }
}

TYPED_TEST(Vector3, SetCross_is_right_handed)
{
    auto target = this->Of(101, 103, 107);
    EXPECT_EQ(&target.SetCross(this->a, this->b), &target);
    EXPECT_EQ(Components(target), this->Numbers(-14, 89, 59));
    target.SetCross(this->Of(1, 0, 0), this->Of(0, 1, 0));
    EXPECT_EQ(Components(target), this->Numbers(0, 0, 1));
    target.SetCross(this->Of(0, 1, 0), this->Of(0, 0, 1));
    EXPECT_EQ(Components(target), this->Numbers(1, 0, 0));
    target.SetCross(this->Of(0, 0, 1), this->Of(1, 0, 0));
    EXPECT_EQ(Components(target), this->Numbers(0, 1, 0));
}

TYPED_TEST(Vector3, SetCross_may_have_the_target_as_any_operand)
{
    ExpectTargetMayBeAnyOperand([](auto & t, auto const & x, auto const & y) { t.SetCross(x, y); }, this->a, this->b);
    auto target = this->a;
    target.SetCross(target, target);
    EXPECT_EQ(Components(target), this->Numbers(0, 0, 0));
}

TYPED_TEST(Vector3, SetCross_in_place_has_the_target_on_the_left)
{
    auto target = this->a;
    EXPECT_EQ(&target.SetCross(this->b), &target);
    EXPECT_EQ(Components(target), this->Numbers(-14, 89, 59));
    target = this->a;
    target.SetCross(target);
    EXPECT_EQ(Components(target), this->Numbers(0, 0, 0));
}

TYPED_TEST(Vector3, SetCross_of_three_points_is_the_normal_of_their_triangle)
{
    auto const p0 = this->Of(1, 2, 3);
    auto const p1 = this->Of(3, -1, 8);
    auto const p2 = this->Of(12, 15, -14);
    auto target = this->Of(101, 103, 107);
    EXPECT_EQ(&target.SetCross(p0, p1, p2), &target);
    EXPECT_EQ(Components(target), this->Numbers(-14, 89, 59));
    target = p0;
    target.SetCross(target, p1, p2);
    EXPECT_EQ(Components(target), this->Numbers(-14, 89, 59)) << "the target is the first point";
    target = p1;
    target.SetCross(p0, target, p2);
    EXPECT_EQ(Components(target), this->Numbers(-14, 89, 59)) << "the target is the second point";
    target = p2;
    target.SetCross(p0, p1, target);
    EXPECT_EQ(Components(target), this->Numbers(-14, 89, 59)) << "the target is the third point";
    target.SetCross(target, target, target);
    EXPECT_EQ(Components(target), this->Numbers(0, 0, 0));
}

TYPED_TEST(Vector3, Random_crosses_are_orthogonal_to_their_operands_and_change_sign_when_these_change_places)
{
    Random random(2);
    for (int i = 0; i < 200; ++i)
    {
        auto const x = this->RandomVector(random);
        auto const y = this->RandomVector(random);
        auto cross = x;
        cross.SetCross(x, y);
        EXPECT_EQ(math::detail::Dot(cross, x), 0);
        EXPECT_EQ(math::detail::Dot(cross, y), 0);
        auto swapped = x;
        swapped.SetCross(y, x);
        EXPECT_EQ(Components(swapped.Negate()), Components(cross));
        TypeParam const dot = math::detail::Dot(x, y);
        EXPECT_EQ(cross.GetSquaredLength() + dot * dot, x.GetSquaredLength() * y.GetSquaredLength());
    }
}

TYPED_TEST(Vector3, SetOrthogonal_is_scaled_by_the_squared_length_of_the_first_operand)
{
    auto target = this->Of(101, 103, 107);
    EXPECT_EQ(target.SetOrthogonal(this->Of(1, 0, 0), this->Of(1, 1, 0)), 1);
    EXPECT_EQ(Components(target), this->Numbers(0, 1, 0));
    EXPECT_EQ(target.SetOrthogonal(this->Of(2, 0, 0), this->Of(1, 1, 0)), 1);
    EXPECT_EQ(Components(target), this->Numbers(0, 4, 0));
    // |a|^2 b - (a . b) a
    EXPECT_EQ(target.SetOrthogonal(this->Of(1, 2, 2), this->Of(3, 1, -1)), 1);
    EXPECT_EQ(Components(target), this->Numbers(24, 3, -15));
}

TYPED_TEST(Vector3, SetOrthogonal_may_have_the_second_operand_as_the_target_but_not_the_first)
{
    auto target = this->Of(3, 1, -1);
    EXPECT_EQ(target.SetOrthogonal(this->Of(1, 2, 2), target), 1);
    EXPECT_EQ(Components(target), this->Numbers(24, 3, -15));
    // The first operand is overwritten by the cross product c, whose cross product with itself is null.
    target = this->Of(1, 2, 2);
    EXPECT_EQ(target.SetOrthogonal(target, this->Of(3, 1, -1)), 1);
    EXPECT_EQ(Components(target), this->Numbers(0, 0, 0));
}

TYPED_TEST(Vector3, SetOrthogonal_of_parallel_vectors_fails_with_the_null_cross_product_in_the_target)
{
    auto target = this->Of(101, 103, 107);
    EXPECT_EQ(target.SetOrthogonal(this->a, this->a), 0);
    EXPECT_EQ(Components(target), this->Numbers(0, 0, 0));
    target = this->Of(101, 103, 107);
    EXPECT_EQ(target.SetOrthogonal(this->Of(0, 0, 0), this->b), 0);
    EXPECT_EQ(Components(target), this->Numbers(0, 0, 0));
}

TYPED_TEST(Vector3, SetOrthogonal_tests_each_component_of_the_cross_product_against_the_tolerance)
{
    TypeParam const tolerance = std::is_same_v<TypeParam, double> ? TypeParam(1e-12) : TypeParam(1e-6F);
    // Of a unit axis and a small vector along the next axis: the cross product lies along the third.
    for (unsigned long axis = 0; axis < 3; ++axis)
    {
        using V = C3DVector3Tpl<TypeParam>;
        auto const unit = MakeAlong<V>((axis + 1) % 3, TypeParam(1));
        for (TypeParam const sign : {TypeParam(1), TypeParam(-1)})
        {
            auto target = this->Of(101, 103, 107);
            EXPECT_EQ(target.SetOrthogonal(unit, MakeAlong<V>((axis + 2) % 3, sign * tolerance)), 0);
            EXPECT_EQ(Components(target), Components(MakeAlong<V>(axis, sign * tolerance)))
                << "the cross product stays";
            EXPECT_EQ(target.SetOrthogonal(unit, MakeAlong<V>((axis + 2) % 3, sign * NextAbove(tolerance))), 1);
            EXPECT_EQ(Components(target), Components(MakeAlong<V>((axis + 2) % 3, sign * NextAbove(tolerance))));
        }
    }
    // Each component counts on its own: together these are longer than the tolerance.
    auto target = this->Of(101, 103, 107);
    TypeParam const most = tolerance;
    EXPECT_EQ(target.SetOrthogonal(this->Of(1, 0, 0), C3DVector3Tpl<TypeParam>(TypeParam(0), most, most)), 0);
    EXPECT_GT(target.GetLength(), tolerance);
}

TYPED_TEST(Vector3, SetOrthogonal_goes_on_with_NaNs)
{
    auto target = this->Of(101, 103, 107);
    auto const nan = MakeAlong<C3DVector3Tpl<TypeParam>>(0, k_NaN<TypeParam>);
    EXPECT_EQ(target.SetOrthogonal(this->Of(1, 0, 0), nan), 1);
    EXPECT_TRUE(std::isnan(target.Y));
}

TYPED_TEST(Vector3, SetOrthoProj_is_the_orthogonal_part_at_its_true_length)
{
    auto target = this->Of(101, 103, 107);
    EXPECT_EQ(target.SetOrthoProj(this->Of(2, 0, 0), this->Of(5, 3, -4)), 1);
    EXPECT_EQ(Components(target), this->Numbers(0, 3, -4));
    EXPECT_EQ(target.SetOrthoProj(this->Of(0, -4, 0), this->Of(5, 3, -2)), 1);
    EXPECT_EQ(Components(target), this->Numbers(5, 0, -2));
}

TYPED_TEST(Vector3, SetOrthoProj_of_parallel_vectors_fails_as_SetOrthogonal_does)
{
    auto target = this->Of(101, 103, 107);
    EXPECT_EQ(target.SetOrthoProj(this->a, this->a), 0);
    EXPECT_EQ(Components(target), this->Numbers(0, 0, 0));
    TypeParam const tiny = std::is_same_v<TypeParam, double> ? TypeParam(1e-12) : TypeParam(1e-6F);
    EXPECT_EQ(target.SetOrthoProj(this->Of(1, 0, 0), MakeAlong<C3DVector3Tpl<TypeParam>>(1, tiny)), 0);
    EXPECT_EQ(target.Z, tiny);
    EXPECT_EQ(target.Y, 0);
}

TYPED_TEST(Vector3, Random_vectors_are_the_sum_of_their_projection_and_their_orthogonal_part)
{
    Random random(3);
    TypeParam const close = 64 * std::numeric_limits<TypeParam>::epsilon();
    for (int i = 0; i < 200; ++i)
    {
        auto const onto = this->RandomVector(random);
        auto const v = this->RandomVector(random);
        auto orthogonal = v;
        if (orthogonal.SetOrthogonal(onto, v) == 0)
        {
            continue;
        }
        auto sum = v;
        ASSERT_EQ(sum.SetProjection(onto), 1);
        ASSERT_EQ(orthogonal.SetOrthoProj(onto, v), 1);
        sum.Add(orthogonal);
        EXPECT_EQ(AreAlmostEqual(sum, v, 16 * close), 1) << sum << v;
        EXPECT_NEAR(math::detail::Dot(orthogonal, onto), TypeParam(0), 64 * close);
    }
}

TYPED_TEST(Vector3, SetMean_adds_in_array_order)
{
    TypeParam const big = TestFixture::k_Big;
    using V = C3DVector3Tpl<TypeParam>;
    V const points[3] = {V(TypeParam(1), big, TypeParam(3)), V(big, TypeParam(1), TypeParam(6)),
                         V(-big, -big, TypeParam(-3))};
    auto target = this->Of(101, 103, 107);
    EXPECT_EQ(&target.SetMean(points, 3), &target);
    EXPECT_EQ(Components(target), Row<TypeParam>(0, 0, 6 * (TypeParam(1) / 3)));
    // Five points: a loop unrolled into partial sums would find the 1.
    V const more[5] = {V(0, TypeParam(1)), V(0, big), V(0, TypeParam(0)), V(0, -big), V(0, TypeParam(0))};
    EXPECT_EQ(target.SetMean(more, 5).X, 0);
}

TYPED_TEST(Vector3, SetMean_multiplies_by_the_reciprocal_of_the_count)
{
    using V = C3DVector3Tpl<TypeParam>;
    V const points[3] = {this->Of(5, 0, 1), this->Of(0, 7, 2), this->Of(0, 0, 4)};
    TypeParam const third = TypeParam(1) / 3;
    auto target = this->Of(101, 103, 107);
    target.SetMean(points, 3);
    ASSERT_NE(TypeParam(5) / 3, 5 * third);
    EXPECT_EQ(Components(target), Row<TypeParam>(5 * third, 7 * third, 7 * third));
    target.SetMean(points, 1);
    EXPECT_EQ(Components(target), this->Numbers(5, 0, 1));
}

TYPED_TEST(Vector3, SetMean_of_no_points)
{
    auto target = this->a;
    EXPECT_EQ(&target.SetMean(nullptr, 3), &target);
    EXPECT_EQ(Components(target), Components(this->a)) << "a null pointer keeps the target";
    target.SetMean(nullptr, 0);
    EXPECT_EQ(Components(target), Components(this->a));
    target.SetMean(&this->b, 0);
    EXPECT_TRUE(std::isnan(target.X) && std::isnan(target.Y) && std::isnan(target.Z));
}

TYPED_TEST(Vector3, LinearPositionUnInterpolate_reads_the_axis_of_the_largest_difference)
{
    struct Case
    {
        double dx, dy, dz;
        unsigned long axis;
    };
    // Ties go to the later axis.
    for (Case const & c :
         {Case{4, 2, 1, 0}, Case{-4, 2, 1, 0}, Case{1, 4, 2, 1}, Case{1, -4, 2, 1}, Case{1, 2, 4, 2}, Case{1, 2, -4, 2},
          Case{4, 4, 2, 1}, Case{4, 2, 4, 2}, Case{2, 4, 4, 2}, Case{4, 4, 4, 2}, Case{4, -4, 2, 1}, Case{-4, 2, 4, 2}})
    {
        auto const from = this->Of(1, 2, 3);
        auto const to = this->Of(1 + c.dx, 2 + c.dy, 3 + c.dz);
        TypeParam const difference = to[c.axis] - from[c.axis];
        // A target whose parameter differs on every axis, and is not clamped.
        auto const target = this->Of(1 + 8, 2 + 16, 3 + 32);
        EXPECT_EQ(target.LinearPositionUnInterpolate(from, to, TypeParam(1e-3)),
                  (target[c.axis] - from[c.axis]) / difference)
            << c.dx << ' ' << c.dy << ' ' << c.dz;
    }
}

TYPED_TEST(Vector3, LinearPositionUnInterpolate_is_the_inverse_of_the_interpolation)
{
    Random random(4);
    for (int i = 0; i < 100; ++i)
    {
        auto const x = this->RandomVector(random);
        auto const y = this->RandomVector(random);
        if (x == y)
        {
            continue;
        }
        TypeParam const t = random.Uniform(TypeParam(-1), TypeParam(2));
        auto target = x;
        target.LinearPositionInterpolate(x, y, t);
        EXPECT_NEAR(target.LinearPositionUnInterpolate(x, y), t, 64 * std::numeric_limits<TypeParam>::epsilon());
    }
}

TYPED_TEST(Vector3, LinearPositionUnInterpolate_of_equal_ends_is_zero_only_with_a_tolerance)
{
    EXPECT_EQ(this->b.LinearPositionUnInterpolate(this->a, this->a, std::numeric_limits<TypeParam>::denorm_min()), 0);
    EXPECT_EQ(this->Of(9, 9, 9).LinearPositionUnInterpolate(this->a, this->a, TypeParam(0)), k_Infinity<TypeParam>);
    EXPECT_TRUE(std::isnan(this->a.LinearPositionUnInterpolate(this->a, this->a, TypeParam(0))));
}

TYPED_TEST(Vector3, GetMaxComponent_and_GetMinComponent_compare_signed_values_or_magnitudes)
{
    auto const v = this->Of(-5, 1, 2);
    EXPECT_EQ(v.GetMaxComponent(0), 2);
    EXPECT_EQ(v.GetMinComponent(0), -5);
    for (int const magnitudes : {1, -1, 7})
    {
        EXPECT_EQ(v.GetMaxComponent(magnitudes), 5);
        EXPECT_EQ(v.GetMinComponent(magnitudes), 1);
    }
    double const permutations[6][3] = {{1, 2, 3}, {1, 3, 2}, {2, 1, 3}, {2, 3, 1}, {3, 1, 2}, {3, 2, 1}};
    for (auto const & p : permutations)
    {
        auto const positive = this->Of(p[0], p[1], p[2]);
        auto const negative = this->Of(-p[0], -p[1], -p[2]);
        EXPECT_EQ(positive.GetMaxComponent(0), 3);
        EXPECT_EQ(positive.GetMinComponent(0), 1);
        EXPECT_EQ(negative.GetMaxComponent(0), -1);
        EXPECT_EQ(negative.GetMinComponent(0), -3);
        EXPECT_EQ(negative.GetMaxComponent(1), 3);
        EXPECT_EQ(negative.GetMinComponent(1), 1);
    }
}

TYPED_TEST(Vector3, GetIndexOfMaxComponent_takes_the_higher_index_on_a_tie)
{
    struct Case
    {
        double x, y, z;
        int index;
    };
    for (Case const & c :
         {Case{3, 2, 1, 0}, Case{3, 1, 2, 0}, Case{2, 3, 1, 1}, Case{1, 3, 2, 1}, Case{1, 2, 3, 2}, Case{2, 1, 3, 2},
          Case{1, 1, 1, 2}, Case{3, 3, 1, 1}, Case{3, 1, 3, 2}, Case{1, 3, 3, 2}, Case{3, 3, 3, 2}, Case{2, 1, 2, 2}})
    {
        EXPECT_EQ(this->Of(c.x, c.y, c.z).GetIndexOfMaxComponent(0), c.index) << c.x << ' ' << c.y << ' ' << c.z;
        EXPECT_EQ(this->Of(-c.x, c.y, -c.z).GetIndexOfMaxComponent(1), c.index) << c.x << ' ' << c.y << ' ' << c.z;
        EXPECT_EQ(this->Of(c.x, -c.y, c.z).GetIndexOfMaxComponent(-3), c.index) << c.x << ' ' << c.y << ' ' << c.z;
        // Mirrored: the smallest of the opposites.
        EXPECT_EQ(this->Of(-c.x, -c.y, -c.z).GetIndexOfMinComponent(0), c.index) << c.x << ' ' << c.y << ' ' << c.z;
    }
}

TYPED_TEST(Vector3, GetIndexOfMinComponent_takes_the_higher_index_on_a_tie)
{
    struct Case
    {
        double x, y, z;
        int index;
    };
    for (Case const & c : {Case{1, 2, 3, 0}, Case{1, 3, 2, 0}, Case{2, 1, 3, 1}, Case{3, 1, 2, 1}, Case{3, 2, 1, 2},
                           Case{2, 3, 1, 2}, Case{1, 1, 1, 2}, Case{1, 1, 3, 1}, Case{1, 3, 1, 2}, Case{3, 1, 1, 2}})
    {
        EXPECT_EQ(this->Of(c.x, c.y, c.z).GetIndexOfMinComponent(0), c.index) << c.x << ' ' << c.y << ' ' << c.z;
        EXPECT_EQ(this->Of(-c.x, c.y, -c.z).GetIndexOfMinComponent(1), c.index) << c.x << ' ' << c.y << ' ' << c.z;
        EXPECT_EQ(this->Of(c.x, -c.y, c.z).GetIndexOfMinComponent(-3), c.index) << c.x << ' ' << c.y << ' ' << c.z;
    }
}

TYPED_TEST(Vector3, Index_of_a_component_counts_no_comparison_with_a_NaN_as_greater_or_less)
{
    using V = C3DVector3Tpl<TypeParam>;
    TypeParam const nan = k_NaN<TypeParam>;
    for (int const magnitudes : {0, 1})
    {
        EXPECT_EQ(V(nan, 1, 0).GetIndexOfMaxComponent(magnitudes), 1);
        EXPECT_EQ(V(nan, 0, 1).GetIndexOfMaxComponent(magnitudes), 2);
        EXPECT_EQ(V(1, nan, 0).GetIndexOfMaxComponent(magnitudes), 2);
        EXPECT_EQ(V(2, 1, nan).GetIndexOfMaxComponent(magnitudes), 2);
        EXPECT_EQ(V(1, 2, nan).GetIndexOfMaxComponent(magnitudes), 2);
        EXPECT_EQ(V(nan, 0, 1).GetIndexOfMinComponent(magnitudes), 1);
        EXPECT_EQ(V(nan, 1, 0).GetIndexOfMinComponent(magnitudes), 2);
        EXPECT_EQ(V(0, nan, 1).GetIndexOfMinComponent(magnitudes), 2);
        EXPECT_EQ(V(0, 1, nan).GetIndexOfMinComponent(magnitudes), 2);
        EXPECT_EQ(V(1, 0, nan).GetIndexOfMinComponent(magnitudes), 2);
    }
}

TYPED_TEST(Vector3, SetMinimal_of_signed_values_takes_the_greater_one)
{
    auto target = this->Of(-5, 0.5, 3);
    EXPECT_EQ(&target.SetMinimal(this->Of(-2, 1, 1), 0), &target);
    EXPECT_EQ(Components(target), this->Numbers(-2, 1, 3));
    target = this->Of(-5, 0.5, 3);
    EXPECT_EQ(&target.SetMinimal(0, TypeParam(1)), &target);
    EXPECT_EQ(Components(target), this->Numbers(1, 1, 3));
    target = this->Of(-5, 0.5, 3);
    target.SetMinimal(target, 0);
    EXPECT_EQ(Components(target), this->Numbers(-5, 0.5, 3));
}

TYPED_TEST(Vector3, SetMinimal_of_magnitudes_keeps_the_sign)
{
    for (int const magnitudes : {1, -1, 8})
    {
        auto target = this->Of(0, -0.5, 3);
        EXPECT_EQ(&target.SetMinimal(this->Of(1, 1, 1), magnitudes), &target);
        EXPECT_EQ(Components(target), this->Numbers(1, -1, 3));
        target = this->Of(-0.0, -0.5, -3);
        EXPECT_EQ(&target.SetMinimal(magnitudes, TypeParam(2)), &target);
        EXPECT_EQ(Components(target), this->Numbers(2, -2, -3)) << "a negative zero counts as positive";
    }
    // At the limit nothing changes, and a negative limit is below every magnitude.
    auto target = this->Of(-1, 1, 0);
    target.SetMinimal(this->Of(1, 1, -4), 1);
    EXPECT_EQ(Components(target), this->Numbers(-1, 1, 0));
    // The limits belong to their components.
    target = this->Of(0.5, -0.5, 0.5);
    target.SetMinimal(this->Of(1, 2, 3), 1);
    EXPECT_EQ(Components(target), this->Numbers(1, -2, 3));
}

TYPED_TEST(Vector3, SetMinimal_leaves_NaNs)
{
    for (int const magnitudes : {0, 1})
    {
        auto target = MakeAlong<C3DVector3Tpl<TypeParam>>(1, k_NaN<TypeParam>);
        target.SetMinimal(magnitudes, TypeParam(2));
        EXPECT_EQ(target.X, 2);
        EXPECT_TRUE(std::isnan(target.Y));
    }
}
