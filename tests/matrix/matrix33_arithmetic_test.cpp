#include "matrix/fixed_matrices.h"

#include <Eigen/LU>

using namespace test_support;

namespace
{

template <typename T>
class Matrix33Arithmetic : public testing::Test
{
protected:
    using Matrix = C3DMatrix33Tpl<T>;
    Matrix const a = CountingMatrix<Matrix>();
    Matrix const b{2, -3, 5, 7, -11, 13, -17, 19, 23};
};
TYPED_TEST_SUITE(Matrix33Arithmetic, Scalars);

template <typename Scalar>
constexpr double k_Rounding = static_cast<double>(std::numeric_limits<Scalar>::epsilon());

TYPED_TEST(Matrix33Arithmetic, Adds_and_subtracts_element_by_element)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const sum(3, -1, 8, 11, -6, 19, -10, 27, 32);
    M const difference(-1, 5, -2, -3, 16, -7, 24, -11, -14);
    M target;
    EXPECT_EQ(&target.Add(this->a, this->b), &target);
    EXPECT_TRUE(SameBits(target, sum));
    EXPECT_EQ(&target.Sub(this->a, this->b), &target);
    EXPECT_TRUE(SameBits(target, difference));
    EXPECT_TRUE(SameBits(M(this->a).Add(this->b), sum));
    EXPECT_TRUE(SameBits(M(this->a).Sub(this->b), difference));
}

TYPED_TEST(Matrix33Arithmetic, Adds_and_subtracts_where_the_target_is_an_operand)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const sum = M().Add(this->a, this->b);
    M const difference = M().Sub(this->a, this->b);
    M target = this->a;
    EXPECT_TRUE(SameBits(target.Add(target, this->b), sum));
    target = this->b;
    EXPECT_TRUE(SameBits(target.Add(this->a, target), sum));
    target = this->a;
    EXPECT_TRUE(SameBits(target.Sub(target, this->b), difference));
    target = this->b;
    EXPECT_TRUE(SameBits(target.Sub(this->a, target), difference));
    target = this->a;
    EXPECT_TRUE(SameBits(target.Sub(target), M()));
    target = this->a;
    EXPECT_TRUE(SameBits(target.Add(target), M(2, 4, 6, 8, 10, 12, 14, 16, 18)));
}

TYPED_TEST(Matrix33Arithmetic, Scales_in_three_forms)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const tripled(3, 6, 9, 12, 15, 18, 21, 24, 27);
    M target;
    EXPECT_EQ(&target.Mul(TypeParam(3), this->a), &target);
    EXPECT_TRUE(SameBits(target, tripled));
    EXPECT_TRUE(SameBits(target.Mul(this->a, TypeParam(3)), tripled));
    target = this->a;
    EXPECT_EQ(&target.Mul(TypeParam(3)), &target);
    EXPECT_TRUE(SameBits(target, tripled));
    target = this->a;
    EXPECT_TRUE(SameBits(target.Mul(target, TypeParam(3)), tripled));
}

TYPED_TEST(Matrix33Arithmetic, Divides_by_multiplying_with_the_reciprocal)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    // Among these, elements for which the quotient differs from the product with the reciprocal.
    auto const divisor = TypeParam(49);
    M const expected = M().Mul(this->b, TypeParam(1) / divisor);
    M target;
    EXPECT_EQ(&target.Div(this->b, divisor), &target);
    EXPECT_TRUE(SameBits(target, expected));
    EXPECT_TRUE(SameBits(M(this->b).Div(divisor), expected));
    bool differs = false;
    for (int i = 0; i < 9; ++i)
    {
        differs = differs || expected.GetArray()[i] != this->b.GetArray()[i] / divisor;
    }
    EXPECT_TRUE(differs);
}

TYPED_TEST(Matrix33Arithmetic, Division_by_0_gives_infinities_and_NaNs)
{
    auto const m = C3DMatrix33Tpl<TypeParam>(1, -1, 0, 1, 1, 1, 1, 1, 1).Div(0);
    EXPECT_EQ(m.Get(0, 0), k_Infinity<TypeParam>);
    EXPECT_EQ(m.Get(0, 1), -k_Infinity<TypeParam>);
    EXPECT_TRUE(std::isnan(m.Get(0, 2)));
}

TYPED_TEST(Matrix33Arithmetic, Negate_flips_every_sign_zeros_and_NaNs_included)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const m(1, -2, 0, -TypeParam(0), k_Infinity<TypeParam>, k_Nan<TypeParam>, 7, 8, 9);
    M target;
    EXPECT_EQ(&target.Negate(m), &target);
    EXPECT_EQ(target.Get(0, 0), -1);
    EXPECT_EQ(target.Get(0, 1), 2);
    EXPECT_TRUE(std::signbit(target.Get(0, 2)));
    EXPECT_FALSE(std::signbit(target.Get(1, 0)));
    EXPECT_EQ(target.Get(1, 1), -k_Infinity<TypeParam>);
    EXPECT_NE(std::signbit(target.Get(1, 2)), std::signbit(m.Get(1, 2)));
    EXPECT_EQ(target.Get(2, 2), -9);
    M inPlace = m;
    EXPECT_EQ(&inPlace.Negate(), &inPlace);
    EXPECT_TRUE(SameBits(inPlace, target));
    EXPECT_TRUE(M().Negate() == M());
}

TYPED_TEST(Matrix33Arithmetic, The_product_is_the_first_operand_times_the_second)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const ab(-35, 32, 100, -59, 47, 223, -83, 62, 346);
    M const ba(25, 29, 33, 54, 63, 72, 220, 245, 270);
    M target;
    EXPECT_EQ(&target.Mul(this->a, this->b), &target);
    EXPECT_TRUE(SameBits(target, ab));
    EXPECT_TRUE(SameBits(target.Mul(this->b, this->a), ba));
    target = this->a;
    EXPECT_EQ(&target.Mul(this->b), &target);
    EXPECT_TRUE(SameBits(target, ab));
}

TYPED_TEST(Matrix33Arithmetic, Products_with_a_transpose)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const transposedA(1, 4, 7, 2, 5, 8, 3, 6, 9);
    M const transposedB(2, 7, -17, -3, -11, 19, 5, 13, 23);
    M target;
    EXPECT_EQ(&target.MulTransByReg(this->a, this->b), &target);
    EXPECT_TRUE(SameBits(target, M().Mul(transposedA, this->b)));
    EXPECT_EQ(&target.MulRegByTrans(this->a, this->b), &target);
    EXPECT_TRUE(SameBits(target, M().Mul(this->a, transposedB)));
}

TYPED_TEST(Matrix33Arithmetic, Products_where_the_target_is_an_operand)
{
    using M = C3DMatrix33Tpl<TypeParam>;
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
    M target = this->a;
    EXPECT_TRUE(SameBits(target.Mul(target), M(30, 36, 42, 66, 81, 96, 102, 126, 150)));
}

TYPED_TEST(Matrix33Arithmetic, Transposes)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const transposed(1, 4, 7, 2, 5, 8, 3, 6, 9);
    M target;
    EXPECT_EQ(&target.Transpose(this->a), &target);
    EXPECT_TRUE(SameBits(target, transposed));
    target = this->a;
    EXPECT_EQ(&target.Transpose(), &target);
    EXPECT_TRUE(SameBits(target, transposed));
    EXPECT_TRUE(SameBits(target.Transpose(target), this->a));
}

TYPED_TEST(Matrix33Arithmetic, Trace_is_the_sum_of_the_diagonal)
{
    EXPECT_EQ(this->a.GetTrace(), 15);
    EXPECT_EQ(this->b.GetTrace(), 14);
}

TYPED_TEST(Matrix33Arithmetic, Determinant)
{
    EXPECT_EQ(this->a.GetDet(), 0);
    EXPECT_EQ(this->b.GetDet(), -124);
    EXPECT_EQ((C3DMatrix33Tpl<TypeParam>(0, 1, 0, 1, 0, 0, 0, 0, 1)).GetDet(), -1);
}

TYPED_TEST(Matrix33Arithmetic, Determinant_is_expanded_along_the_first_row)
{
    TypeParam const tiny = std::numeric_limits<TypeParam>::min();
    // The minors are formed before the first row scales them: here they underflow.
    C3DMatrix33Tpl<TypeParam> const small(1 / tiny, 0, 0, 0, tiny, 0, 0, 0, tiny);
    EXPECT_EQ(small.GetDet(), 0);
}

TYPED_TEST(Matrix33Arithmetic, Determinant_and_its_size)
{
    TypeParam const m[3][3] = {{2, -3, 5}, {7, -11, 13}, {-17, 19, 23}};
    TypeParam det = 99;
    TypeParam size = 99;
    C3DMatrix33Tpl<TypeParam>::ComputeDetAndDetSize(m, det, size);
    EXPECT_EQ(det, -124);
    EXPECT_EQ(size, 506 + 663 + 665 + 935 + 483 + 494);
}

TYPED_TEST(Matrix33Arithmetic, Determinant_takes_its_six_terms_in_order)
{
    // 4 huge + 1 - 4 huge: the 1 is lost on the way, while the expansion along the first row keeps it.
    TypeParam const huge = 1 / std::numeric_limits<TypeParam>::epsilon();
    TypeParam const m[3][3] = {{huge, 1, 0}, {0, 4, 4}, {TypeParam(0.25), 1, 1}};
    TypeParam det = 99;
    TypeParam size = 99;
    C3DMatrix33Tpl<TypeParam>::ComputeDetAndDetSize(m, det, size);
    EXPECT_EQ(det, 0);
    EXPECT_EQ(size, 8 * huge);
    EXPECT_EQ((C3DMatrix33Tpl<TypeParam>(huge, 1, 0, 0, 4, 4, TypeParam(0.25), 1, 1)).GetDet(), 1);
}

TYPED_TEST(Matrix33Arithmetic, Determinant_of_a_diagonal_matrix_is_as_large_as_its_size)
{
    TypeParam const m[3][3] = {{-2, 0, 0}, {0, 3, 0}, {0, 0, 5}};
    TypeParam det = 0;
    TypeParam size = 0;
    C3DMatrix33Tpl<TypeParam>::ComputeDetAndDetSize(m, det, size);
    EXPECT_EQ(det, -30);
    EXPECT_EQ(size, 30);
}

TYPED_TEST(Matrix33Arithmetic, Adjoint_is_the_transpose_of_the_cofactors)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const adjugate(-500, 164, 16, -382, 131, 9, -54, 13, -1);
    M target;
    EXPECT_EQ(&target.Adjoint(this->b), &target);
    EXPECT_TRUE(SameBits(target, adjugate));
    target = this->b;
    EXPECT_EQ(&target.Adjoint(), &target);
    EXPECT_TRUE(SameBits(target, adjugate));
    EXPECT_TRUE(SameBits(M().Mul(this->b, adjugate), M(-124, 0, 0, 0, -124, 0, 0, 0, -124)));

    TypeParam array[3][3];
    M::ComputeAdjoint(reinterpret_cast<TypeParam const(*)[3]>(this->b.GetArray()), array);
    EXPECT_TRUE(SameBits(M().Set(array), adjugate));
}

template <typename T>
struct WithProtectedMembers : C3DMatrix33Tpl<T>
{
    using C3DMatrix33Tpl<T>::ComputeDetFast;
};

TYPED_TEST(Matrix33Arithmetic, ComputeDetFast_reads_the_first_row_and_the_first_column_of_the_adjoint)
{
    TypeParam matrix[3][3] = {{2, 3, 5}, {-100, -100, -100}, {-100, -100, -100}};
    TypeParam adjoint[3][3] = {{7, 1000, 1000}, {11, 1000, 1000}, {13, 1000, 1000}};
    EXPECT_EQ(WithProtectedMembers<TypeParam>().ComputeDetFast(matrix, adjoint), 2 * 7 + 3 * 11 + 5 * 13);
}

TYPED_TEST(Matrix33Arithmetic, Agrees_with_Eigen_on_random_matrices)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    Random random(331);
    double const limit = 8 * k_Rounding<TypeParam>;
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
        EXPECT_TRUE(
            AreClose(eigenX * ToEigen(M().Adjoint(x)), eigenX.determinant() * Eigen::Matrix3d::Identity(), limit));
        EXPECT_NEAR(static_cast<double>(x.GetDet()), eigenX.determinant(), limit);
        TypeParam det = 0;
        TypeParam size = 0;
        M::ComputeDetAndDetSize(reinterpret_cast<TypeParam const(*)[3]>(x.GetArray()), det, size);
        EXPECT_NEAR(static_cast<double>(det), eigenX.determinant(), limit);
        EXPECT_GE(size, std::abs(det));
    }
}

} // namespace
