#include "math/vector4.h"

#include "math/matrix44.h"
#include "numeric/vector_checks.h"

#include <climits>
#include <type_traits>

using namespace test_support;

namespace
{

template <typename Scalar>
class Vector4 : public testing::Test
{
protected:
    using Vector = C3DVector4Tpl<Scalar>;
    using M44 = C3DMatrix44Tpl<Scalar>;

    Vector const a{Scalar(2), Scalar(-3), Scalar(5), Scalar(7)};

    static Vector Of(double x, double y, double z, double w) { return Make<Vector>(x, y, z, w); }
    static std::array<Scalar, 4> Numbers(double x, double y, double z, double w) { return Row<Scalar>(x, y, z, w); }
};
TYPED_TEST_SUITE(Vector4, ScalarTypes);

} // namespace

TYPED_TEST(Vector4, Constructors_set_the_components)
{
    using V = C3DVector4Tpl<TypeParam>;
    EXPECT_EQ(Components(V()), this->Numbers(0, 0, 0, 0));
    EXPECT_EQ(Components(V(TypeParam(1), TypeParam(2), TypeParam(3), TypeParam(4))), this->Numbers(1, 2, 3, 4));
    TypeParam const array[5] = {4, 5, 6, 7, 8};
    EXPECT_EQ(Components(V(array)), this->Numbers(4, 5, 6, 7));
    EXPECT_EQ(Components(V(array + 1)), this->Numbers(5, 6, 7, 8));
}

TYPED_TEST(Vector4, Homogeneous_constructor_multiplies_the_point_by_its_weight)
{
    using V = C3DVector4Tpl<TypeParam>;
    C3DVector3Tpl<TypeParam> const point(TypeParam(1), TypeParam(2), TypeParam(3));
    EXPECT_EQ(Components(V(point, TypeParam(2))), this->Numbers(2, 4, 6, 2));
    EXPECT_EQ(Components(V(point, TypeParam(-1))), this->Numbers(-1, -2, -3, -1));
    EXPECT_EQ(Components(V(point, TypeParam(0))), this->Numbers(0, 0, 0, 0));
}

TYPED_TEST(Vector4, Axis_constructor_gives_the_null_vector_for_any_other_axis)
{
    using V = C3DVector4Tpl<TypeParam>;
    EXPECT_EQ(Components(V(0, TypeParam(7))), this->Numbers(7, 0, 0, 0));
    EXPECT_EQ(Components(V(1, TypeParam(7))), this->Numbers(0, 7, 0, 0));
    EXPECT_EQ(Components(V(2, TypeParam(7))), this->Numbers(0, 0, 7, 0));
    EXPECT_EQ(Components(V(3, TypeParam(7))), this->Numbers(0, 0, 0, 7));
    for (int const axis : {-1, 4, INT_MIN, INT_MAX})
    {
        EXPECT_EQ(Components(V(axis, TypeParam(1))), this->Numbers(0, 0, 0, 0)) << axis;
    }
    EXPECT_EQ(Components(V(3, k_Infinity<TypeParam>)), this->Numbers(0, 0, 0, k_Infinity<double>));
}

TYPED_TEST(Vector4, Set_and_Get_move_all_components)
{
    auto v = this->Of(9, 9, 9, 9);
    EXPECT_EQ(&v.Set(TypeParam(1), TypeParam(2), TypeParam(3), TypeParam(4)), &v);
    EXPECT_EQ(Components(v), this->Numbers(1, 2, 3, 4));
    v.Set(this->a);
    EXPECT_EQ(Components(v), Components(this->a));
    TypeParam x = 0;
    TypeParam y = 0;
    TypeParam z = 0;
    TypeParam w = 0;
    this->a.Get(x, y, z, w);
    EXPECT_EQ(Row<TypeParam>(x, y, z, w), this->Numbers(2, -3, 5, 7));
    EXPECT_EQ(&v.SetNull(), &v);
    EXPECT_EQ(Components(v), this->Numbers(0, 0, 0, 0));
}

TYPED_TEST(Vector4, IsExactlyNull_compares_with_zero)
{
    EXPECT_EQ(this->Of(0, -0.0, 0, -0.0).IsExactlyNull(), 1);
    for (unsigned long i = 0; i < 4; ++i)
    {
        using V = C3DVector4Tpl<TypeParam>;
        EXPECT_EQ(MakeAlong<V>(i, std::numeric_limits<TypeParam>::denorm_min()).IsExactlyNull(), 0) << i;
        EXPECT_EQ(MakeAlong<V>(i, k_NaN<TypeParam>).IsExactlyNull(), 0) << i;
    }
}

TYPED_TEST(Vector4, Mul_by_a_matrix_on_the_right_is_the_row_product)
{
    typename TestFixture::M44 const m(2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37, 41, 43, 47, 53);
    auto const v = this->Of(1, 10, 100, 1000);
    auto const product = this->Numbers(43412, 46033, 50275, 56897);
    auto target = this->Of(101, 103, 107, 109);
    EXPECT_EQ(&target.Mul(v, m), &target);
    EXPECT_EQ(Components(target), product);
    target = v;
    EXPECT_EQ(&target.Mul(m), &target);
    EXPECT_EQ(Components(target), product) << "in place";
    target = v;
    target.Mul(target, m);
    EXPECT_EQ(Components(target), product) << "the target is the operand";
}

TYPED_TEST(Vector4, Mul_by_a_matrix_on_the_left_is_the_column_product)
{
    typename TestFixture::M44 const m(2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37, 41, 43, 47, 53);
    auto const v = this->Of(1, 10, 100, 1000);
    auto const product = this->Numbers(7532, 20841, 40413, 58171);
    auto target = this->Of(101, 103, 107, 109);
    EXPECT_EQ(&target.Mul(m, v), &target);
    EXPECT_EQ(Components(target), product);
    target = v;
    target.Mul(m, target);
    EXPECT_EQ(Components(target), product) << "the target is the operand";
}

TYPED_TEST(Vector4, Products_with_a_matrix_neither_skip_zero_components_nor_divide_by_the_weight)
{
    TypeParam const infinity = k_Infinity<TypeParam>;
    typename TestFixture::M44 const m(infinity, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 4);
    auto const v = this->Of(0, 2, 3, 1);
    auto target = this->Of(0, 0, 0, 0);
    target.Mul(v, m);
    EXPECT_TRUE(std::isnan(target.X));
    EXPECT_EQ(target.Y, 2);
    EXPECT_EQ(target.W, 4);
    target.Mul(m, v);
    EXPECT_TRUE(std::isnan(target.X));
    EXPECT_EQ(target.Z, 3);
    EXPECT_EQ(target.W, 4);
    target = v;
    target.Mul(m);
    EXPECT_TRUE(std::isnan(target.X));
    EXPECT_EQ(target.W, 4);
}

TYPED_TEST(Vector4, SetMinimal_keeps_the_sign_of_every_component)
{
    auto target = this->Of(0, -0.5, 3, -0.0);
    EXPECT_EQ(&target.SetMinimal(TypeParam(1)), &target);
    EXPECT_EQ(Components(target), this->Numbers(1, -1, 3, 1));
    target = this->Of(-1, 1, -0.9375, 0.9375);
    target.SetMinimal(TypeParam(1));
    EXPECT_EQ(Components(target), this->Numbers(-1, 1, -1, 1));
    target = this->Of(-1, 0, 2, -3);
    target.SetMinimal(TypeParam(-5));
    EXPECT_EQ(Components(target), this->Numbers(-1, 0, 2, -3)) << "a negative limit is below every magnitude";
}

TYPED_TEST(Vector4, AreOrthogonal_tests_the_product_with_its_sign)
{
    auto const epsilon = TypeParam(0.125);
    EXPECT_EQ(AreOrthogonal(this->Of(1, 0, 0, 0), this->Of(-1, 0, 0, 0), epsilon), 1) << "even opposites";
    EXPECT_EQ(AreOrthogonal(this->Of(1, 0, 0, 0), this->Of(0, 1, 0, 0), epsilon), 1);
    EXPECT_EQ(AreOrthogonal(this->Of(1, 0, 0, 0), this->Of(0, 1, 0, 0), TypeParam(0)), 0) << "0 is at the tolerance";
    for (unsigned long i = 0; i < 4; ++i)
    {
        using V = C3DVector4Tpl<TypeParam>;
        auto const unit = MakeAlong<V>(i, TypeParam(1));
        EXPECT_EQ(AreOrthogonal(unit, MakeAlong<V>(i, epsilon), epsilon), 0) << i;
        EXPECT_EQ(AreOrthogonal(unit, MakeAlong<V>(i, NextBelow(epsilon)), epsilon), 1) << i;
        EXPECT_EQ(AreOrthogonal(unit, MakeAlong<V>(i, k_NaN<TypeParam>), epsilon), 1) << i;
    }
    static_assert(std::is_same_v<decltype(AreOrthogonal(this->a, this->a, epsilon)), int>);
}

namespace
{

template <typename V>
concept HasCross = requires(V v)
{
    v.SetCross(v, v);
};
template <typename V>
concept HasOrthogonal = requires(V v)
{
    v.SetOrthogonal(v, v);
};
template <typename V>
concept HasMidpoint = requires(V v)
{
    v.SetMidpoint(v, v);
};

} // namespace

TYPED_TEST(Vector4, Lacks_what_belongs_to_positions_and_to_space)
{
    using V3 = C3DVector3Tpl<TypeParam>;
    using V4 = C3DVector4Tpl<TypeParam>;
    static_assert(HasCross<V3> && !HasCross<V4>);
    static_assert(HasOrthogonal<V3> && !HasOrthogonal<V4>);
    static_assert(HasMidpoint<V3> && !HasMidpoint<V4>);
}
