#include "matrix/fixed_matrices.h"

#include <Eigen/LU>

using namespace test_support;

namespace
{

template <typename T>
class Matrix44Arithmetic : public testing::Test
{
protected:
    using Matrix = C3DMatrix44Tpl<T>;
    Matrix const a = CountingMatrix<Matrix>();
    Matrix const b{2, -3, 5, 7, -11, 13, -17, 19, 23, 29, -31, 37, 41, -43, 47, 53};

    /// Element by element, from the definition.
    template <typename Operation>
    static Matrix ElementWise(Matrix const & x, Matrix const & y, Operation operation)
    {
        Matrix result;
        for (int i = 0; i < 16; ++i)
        {
            result.GetArray()[i] = operation(x.GetArray()[i], y.GetArray()[i]);
        }
        return result;
    }
};
TYPED_TEST_SUITE(Matrix44Arithmetic, Scalars);

TYPED_TEST(Matrix44Arithmetic, Adds_and_subtracts_element_by_element)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const sum = this->ElementWise(this->a, this->b, [](auto x, auto y) { return x + y; });
    M const difference = this->ElementWise(this->a, this->b, [](auto x, auto y) { return x - y; });
    M target;
    EXPECT_EQ(&target.Add(this->a, this->b), &target);
    EXPECT_TRUE(SameBits(target, sum));
    EXPECT_EQ(&target.Sub(this->a, this->b), &target);
    EXPECT_TRUE(SameBits(target, difference));
    target = this->a;
    EXPECT_EQ(&target.Add(this->b), &target);
    EXPECT_TRUE(SameBits(target, sum));
    target = this->a;
    EXPECT_EQ(&target.Sub(this->b), &target);
    EXPECT_TRUE(SameBits(target, difference));
    target = this->b;
    EXPECT_TRUE(SameBits(target.Add(this->a, target), sum));
    target = this->b;
    EXPECT_TRUE(SameBits(target.Sub(this->a, target), difference));
    EXPECT_TRUE(SameBits(target.Sub(target), M()));
}

TYPED_TEST(Matrix44Arithmetic, Scales_in_three_forms)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    TypeParam const three = 3;
    M const tripled = this->ElementWise(this->b, this->b, [](auto x, auto) { return 3 * x; });
    M target;
    EXPECT_EQ(&target.Mul(three, this->b), &target);
    EXPECT_TRUE(SameBits(target, tripled));
    EXPECT_TRUE(SameBits(target.Mul(this->b, three), tripled));
    target = this->b;
    EXPECT_EQ(&target.Mul(three), &target);
    EXPECT_TRUE(SameBits(target, tripled));
}

TYPED_TEST(Matrix44Arithmetic, Divides_by_multiplying_with_the_reciprocal)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    TypeParam const divisor = 49;
    M const expected = this->ElementWise(this->b, this->b, [=](auto x, auto) { return x * (TypeParam(1) / divisor); });
    M const quotient = this->ElementWise(this->b, this->b, [=](auto x, auto) { return x / divisor; });
    ASSERT_TRUE(expected != quotient);
    M target;
    EXPECT_EQ(&target.Div(this->b, divisor), &target);
    EXPECT_TRUE(SameBits(target, expected));
    target = this->b;
    EXPECT_EQ(&target.Div(divisor), &target);
    EXPECT_TRUE(SameBits(target, expected));
    EXPECT_EQ(M(this->b).Div(0).Get(0, 1), -k_Infinity<TypeParam>);
}

TYPED_TEST(Matrix44Arithmetic, Negate_flips_every_sign_zeros_and_NaNs_included)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const m = M(this->b).Set(0, 0, TypeParam(0)).Set(1, 1, -TypeParam(0)).Set(2, 2, k_Nan<TypeParam>);
    M target;
    EXPECT_EQ(&target.Negate(m), &target);
    for (int i = 0; i < 16; ++i)
    {
        EXPECT_NE(std::signbit(target.GetArray()[i]), std::signbit(m.GetArray()[i])) << i;
    }
    EXPECT_TRUE(M().Add(target, m) == M());
    M inPlace = m;
    EXPECT_EQ(&inPlace.Negate(), &inPlace);
    EXPECT_TRUE(SameBits(inPlace, target));
}

TYPED_TEST(Matrix44Arithmetic, The_product_is_the_first_operand_times_the_second)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const ab(213, -62, 66, 368, 433, -78, 82, 832, 653, -94, 98, 1296, 873, -110, 114, 1760);
    M target;
    EXPECT_EQ(&target.Mul(this->a, this->b), &target);
    EXPECT_TRUE(SameBits(target, ab));
    target = this->a;
    EXPECT_EQ(&target.Mul(this->b), &target);
    EXPECT_TRUE(SameBits(target, ab));
    EXPECT_FALSE(M().Mul(this->b, this->a) == ab);
}

TYPED_TEST(Matrix44Arithmetic, Translations_lie_in_the_last_row_and_the_first_operand_acts_first)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const move(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1);
    M const scale(2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 2, 0, 0, 0, 0, 1);
    C3DVector3Tpl<TypeParam> const point(1, 1, 1);
    C3DVector3Tpl<TypeParam> moved;
    moved.Mul(point, M().Mul(move, scale));
    EXPECT_EQ(moved.X, 12);
    EXPECT_EQ(moved.Y, 14);
    EXPECT_EQ(moved.Z, 16);
}

TYPED_TEST(Matrix44Arithmetic, Products_with_a_transpose)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const transposedA = M().Transpose(this->a);
    M const transposedB = M().Transpose(this->b);
    M target;
    EXPECT_EQ(&target.MulTransByReg(this->a, this->b), &target);
    EXPECT_TRUE(SameBits(target, M().Mul(transposedA, this->b)));
    EXPECT_EQ(&target.MulRegByTrans(this->a, this->b), &target);
    EXPECT_TRUE(SameBits(target, M().Mul(this->a, transposedB)));
}

TYPED_TEST(Matrix44Arithmetic, Products_where_the_target_is_an_operand)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    using Product = M & (M::*)(M const &, M const &);
    for (Product const product : {static_cast<Product>(&M::Mul), static_cast<Product>(&M::MulTransByReg),
                                  static_cast<Product>(&M::MulRegByTrans)})
    {
        M first = this->a;
        M second = this->b;
        M both = this->a;
        EXPECT_TRUE(SameBits((first.*product)(first, this->b), (M().*product)(this->a, this->b)));
        EXPECT_TRUE(SameBits((second.*product)(this->a, second), (M().*product)(this->a, this->b)));
        EXPECT_TRUE(SameBits((both.*product)(both, both), (M().*product)(this->a, this->a)));
    }
    M target = this->b;
    EXPECT_TRUE(SameBits(target.Mul(target), M().Mul(this->b, this->b)));
}

TYPED_TEST(Matrix44Arithmetic, Transposes)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const transposed(1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15, 4, 8, 12, 16);
    M target;
    EXPECT_EQ(&target.Transpose(this->a), &target);
    EXPECT_TRUE(SameBits(target, transposed));
    target = this->a;
    EXPECT_EQ(&target.Transpose(), &target);
    EXPECT_TRUE(SameBits(target, transposed));
    EXPECT_TRUE(SameBits(target.Transpose(target), this->a));
}

TYPED_TEST(Matrix44Arithmetic, Trace_is_the_sum_of_the_diagonal)
{
    EXPECT_EQ(this->a.GetTrace(), 34);
    EXPECT_EQ(this->b.GetTrace(), 37);
}

TYPED_TEST(Matrix44Arithmetic, Determinant)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    EXPECT_EQ(IdentityMatrix<M>().GetDet(), 1);
    EXPECT_EQ(this->a.GetDet(), 0);
    // One element of each column of the first row alone, so that every term shows with its sign.
    EXPECT_EQ(M(3, 0, 0, 0, 0, 5, 0, 0, 0, 0, 7, 0, 0, 0, 0, 11).GetDet(), 1155);
    EXPECT_EQ(M(0, 3, 0, 0, 5, 0, 0, 0, 0, 0, 7, 0, 0, 0, 0, 11).GetDet(), -1155);
    EXPECT_EQ(M(0, 0, 3, 0, 5, 0, 0, 0, 0, 7, 0, 0, 0, 0, 0, 11).GetDet(), 1155);
    EXPECT_EQ(M(0, 0, 0, 3, 5, 0, 0, 0, 0, 7, 0, 0, 0, 0, 11, 0).GetDet(), -1155);
}

TYPED_TEST(Matrix44Arithmetic, Minor_determinants_have_no_sign_of_the_cofactor)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    EXPECT_EQ(IdentityMatrix<M>().GetDet(0, 0), 1);
    EXPECT_EQ(IdentityMatrix<M>().GetDet(0, 1), 0);
    M const m(0, 3, 0, 0, 5, 0, 0, 0, 0, 0, 7, 0, 0, 0, 0, 11);
    EXPECT_EQ(m.GetDet(0, 1), 385);
    EXPECT_EQ(m.GetDet(1, 0), 231);
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            EXPECT_EQ(this->b.GetDet(r, c), (C3DMatrix33Tpl<TypeParam>(r, c, this->b).GetDet()));
        }
    }
}

TYPED_TEST(Matrix44Arithmetic, Minor_determinants_take_an_index_out_of_range_for_3)
{
    for (int const outside : {-1, 4, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
    {
        EXPECT_EQ(this->b.GetDet(outside, 1), this->b.GetDet(3, 1));
        EXPECT_EQ(this->b.GetDet(1, outside), this->b.GetDet(1, 3));
    }
    EXPECT_NE(this->b.GetDet(3, 1), this->b.GetDet(0, 1));
}

TYPED_TEST(Matrix44Arithmetic, Agrees_with_Eigen_on_random_matrices)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    Random random(441);
    double const limit = 32 * static_cast<double>(std::numeric_limits<TypeParam>::epsilon());
    for (int i = 0; i < 500; ++i)
    {
        M const x = RandomMatrix<M>(random);
        M const y = RandomMatrix<M>(random);
        auto const eigenX = ToEigen(x);
        auto const eigenY = ToEigen(y);
        EXPECT_TRUE(AreClose(ToEigen(M().Mul(x, y)), eigenX * eigenY, limit));
        EXPECT_TRUE(AreClose(ToEigen(M().MulTransByReg(x, y)), eigenX.transpose() * eigenY, limit));
        EXPECT_TRUE(AreClose(ToEigen(M().MulRegByTrans(x, y)), eigenX * eigenY.transpose(), limit));
        EXPECT_TRUE(AreClose(ToEigen(M().Transpose(x)), eigenX.transpose(), 0));
        EXPECT_NEAR(static_cast<double>(x.GetDet()), eigenX.determinant(), limit);
    }
}

} // namespace
