#include "matrix/fixed_matrices.h"

#include <Eigen/LU>

using namespace test_support;

namespace
{

/// Opens what derived classes use.
template <typename T>
struct OpenMatrix33 : C3DMatrix33Tpl<T>
{
    using C3DMatrix33Tpl<T>::ComputeInverse;
};

template <typename T>
class Matrix33Inverse : public testing::Test
{
};
TYPED_TEST_SUITE(Matrix33Inverse, Scalars);

/// A determinant of 1 with small integer elements, so that the inverse is exact.
template <typename T>
C3DMatrix33Tpl<T> Unimodular()
{
    return {2, 3, 1, 1, 2, 1, 1, 1, 1};
}
template <typename T>
C3DMatrix33Tpl<T> InverseOfUnimodular()
{
    return {1, -2, 1, 0, 1, -1, -1, 1, 1};
}

TYPED_TEST(Matrix33Inverse, Inverts)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M target;
    EXPECT_EQ(target.Invert(Unimodular<TypeParam>()), 1);
    EXPECT_TRUE(target == InverseOfUnimodular<TypeParam>());
    target = Unimodular<TypeParam>();
    EXPECT_EQ(target.Invert(), 1);
    EXPECT_TRUE(target == InverseOfUnimodular<TypeParam>());
    target = Unimodular<TypeParam>();
    EXPECT_EQ(target.Invert(target), 1);
    EXPECT_TRUE(target == InverseOfUnimodular<TypeParam>());
}

TYPED_TEST(Matrix33Inverse, TransposeInverse_is_the_transpose_of_the_inverse)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const expected = M().Transpose(InverseOfUnimodular<TypeParam>());
    M target;
    EXPECT_EQ(target.TransposeInverse(Unimodular<TypeParam>()), 1);
    EXPECT_TRUE(target == expected);
    target = Unimodular<TypeParam>();
    EXPECT_EQ(target.TransposeInverse(), 1);
    EXPECT_TRUE(target == expected);
    target = Unimodular<TypeParam>();
    EXPECT_EQ(target.TransposeInverse(target), 1);
    EXPECT_TRUE(target == expected);
}

TYPED_TEST(Matrix33Inverse, A_singular_matrix_gives_0_and_keeps_the_target)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const null;
    M const proportional(1, 2, 3, 2, 4, 6, -3, -6, -9);
    M const notANumber(1, 0, 0, 0, k_Nan<TypeParam>, 0, 0, 0, 1);
    M const infinite(k_Infinity<TypeParam>, 0, 0, 0, 1, 0, 0, 0, 1);
    for (M const & singular : {null, proportional, notANumber, infinite})
    {
        M target = CountingMatrix<M>();
        EXPECT_EQ(target.Invert(singular), 0);
        EXPECT_TRUE(SameBits(target, CountingMatrix<M>()));
        EXPECT_EQ(target.TransposeInverse(singular), 0);
        EXPECT_TRUE(SameBits(target, CountingMatrix<M>()));
        target = singular;
        EXPECT_EQ(target.Invert(), 0);
        EXPECT_TRUE(SameBits(target, singular));
        EXPECT_EQ(target.TransposeInverse(), 0);
        EXPECT_TRUE(SameBits(target, singular));
    }
}

TYPED_TEST(Matrix33Inverse, Scale_alone_makes_no_matrix_singular)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    auto const small = TypeParam(1e-20);
    M target;
    EXPECT_EQ(target.Invert(M(small, 0, 0, 0, small, 0, 0, 0, small)), 1);
    EXPECT_NEAR(static_cast<double>(target.Get(0, 0)), 1e20, 1e20 * std::numeric_limits<TypeParam>::epsilon());
    EXPECT_EQ(target.Get(0, 1), 0);
    EXPECT_EQ(target.Invert(M(1 / small, 0, 0, 0, 1 / small, 0, 0, 0, 1 / small)), 1);
    EXPECT_NEAR(static_cast<double>(target.Get(2, 2)), 1e-20, 1e-20 * std::numeric_limits<TypeParam>::epsilon());
}

/// A determinant of `gap` with a size of 2 - `gap`: relative to each other about half of `gap`.
template <typename T>
C3DMatrix33Tpl<T> AlmostSingular(T gap)
{
    return {1, 0, 0, 0, 1, 1, 0, T(1) - gap, 1};
}

TYPED_TEST(Matrix33Inverse, Is_limited_by_the_standard_tolerance_of_its_scalar)
{
    // Powers of two on both sides of twice 1e-12 and twice 1e-6.
    bool const isFloat = sizeof(TypeParam) == sizeof(float);
    TypeParam const accepted = isFloat ? TypeParam(0x1p-18) : TypeParam(0x1p-38);
    TypeParam const refused = isFloat ? TypeParam(0x1p-19) : TypeParam(0x1p-39);
    C3DMatrix33Tpl<TypeParam> target;
    EXPECT_EQ(target.Invert(AlmostSingular(accepted)), 1);
    EXPECT_EQ(target.TransposeInverse(AlmostSingular(accepted)), 1);
    EXPECT_EQ(target.Invert(AlmostSingular(refused)), 0);
    EXPECT_EQ(target.TransposeInverse(AlmostSingular(refused)), 0);
    EXPECT_EQ(target.Invert(AlmostSingular(-accepted)), 1);
    EXPECT_EQ(target.Invert(AlmostSingular(-refused)), 0);
}

TYPED_TEST(Matrix33Inverse, ComputeInverse_accepts_at_its_tolerance)
{
    // The determinant is 1 and its size 7.
    TypeParam const a[3][3] = {{1, 0, 0}, {0, 4, 3}, {0, 1, 1}};
    TypeParam out[3][3] = {{9, 9, 9}, {9, 9, 9}, {9, 9, 9}};
    OpenMatrix33<TypeParam> const matrix;
    // The quotient is formed in double, and so is the comparison: these are the scalars next to the double 1/7.
    TypeParam const seventh = TypeParam(1) / TypeParam(7);
    TypeParam const above = static_cast<double>(seventh) > 1.0 / 7 ? seventh : std::nextafter(seventh, TypeParam(1));
    TypeParam const below = std::nextafter(above, TypeParam(0));
    EXPECT_EQ(matrix.ComputeInverse(a, out, 0, above), 0);
    EXPECT_EQ(matrix.ComputeInverse(a, out, 0, k_Nan<TypeParam>), 0);
    for (auto const & row : out)
    {
        for (TypeParam const element : row)
        {
            EXPECT_EQ(element, 9);
        }
    }
    EXPECT_EQ(matrix.ComputeInverse(a, out, 0, below), 1);
    EXPECT_TRUE((C3DMatrix33Tpl<TypeParam>(1, 0, 0, 0, 1, -3, 0, -1, 4)) == (C3DMatrix33Tpl<TypeParam>().Set(out)));
}

TYPED_TEST(Matrix33Inverse, ComputeInverse_transposes_for_any_value_but_0)
{
    auto const source = Unimodular<TypeParam>();
    auto const * const a = reinterpret_cast<TypeParam const(*)[3]>(source.GetArray());
    using M = C3DMatrix33Tpl<TypeParam>;
    M const expected = M().Transpose(InverseOfUnimodular<TypeParam>());
    OpenMatrix33<TypeParam> const matrix;
    for (int const transposed : {1, 2, -1})
    {
        TypeParam out[3][3];
        EXPECT_EQ(matrix.ComputeInverse(a, out, transposed, TypeParam(0)), 1);
        EXPECT_TRUE(M().Set(out) == expected);
    }
}

TYPED_TEST(Matrix33Inverse, ComputeInverse_refuses_a_determinant_of_size_0_whatever_the_tolerance)
{
    TypeParam const a[3][3] = {};
    TypeParam out[3][3] = {{9, 9, 9}, {9, 9, 9}, {9, 9, 9}};
    EXPECT_EQ(OpenMatrix33<TypeParam>().ComputeInverse(a, out, 0, TypeParam(-1)), 0);
    EXPECT_EQ(out[1][1], 9);
}

TEST(Matrix33InverseDouble, ComputeInverse_refuses_a_determinant_that_overflows_whatever_the_tolerance)
{
    // The quotient of two infinities is a NaN, which is not at or above any limit, a negative one included.
    double const a[3][3] = {{1e200, 0, 0}, {0, 1e200, 0}, {0, 0, 1}};
    double out[3][3] = {{7, 7, 7}, {7, 7, 7}, {7, 7, 7}};
    for (double const epsilon : {-1.0, -1e-12, 0.0, 1e-12})
    {
        EXPECT_EQ(OpenMatrix33<double>().ComputeInverse(a, out, 0, epsilon), 0) << epsilon;
    }
    for (auto const & row : out)
    {
        for (double const element : row)
        {
            EXPECT_EQ(element, 7);
        }
    }
}

TEST(Matrix33InverseFloat, Is_the_inverse_in_double_rounded_once)
{
    Random random(332);
    for (int i = 0; i < 500; ++i)
    {
        auto const narrow = RandomMatrix<C3DMatrix33Tpl<float>>(random);
        C3DMatrix33Tpl<double> wide;
        for (int k = 0; k < 9; ++k)
        {
            wide.GetArray()[k] = static_cast<double>(narrow.GetArray()[k]);
        }
        C3DMatrix33Tpl<float> inverse;
        C3DMatrix33Tpl<double> wideInverse;
        ASSERT_EQ(inverse.Invert(narrow), 1);
        ASSERT_EQ(wideInverse.Invert(wide), 1);
        for (int k = 0; k < 9; ++k)
        {
            EXPECT_EQ(inverse.GetArray()[k], static_cast<float>(wideInverse.GetArray()[k]));
        }
    }
}

TEST(Matrix33InverseFloat, Survives_products_beyond_the_range_of_float)
{
    C3DMatrix33Tpl<float> m(1e30F, 0, 0, 0, 1e30F, 0, 0, 0, 1e30F);
    EXPECT_EQ(m.Invert(), 1);
    EXPECT_FLOAT_EQ(m.Get(1, 1), 1e-30F);
}

TYPED_TEST(Matrix33Inverse, Agrees_with_Eigen_on_random_matrices)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    Random random(333);
    for (int i = 0; i < 500; ++i)
    {
        M x = RandomMatrix<M>(random);
        x.Mul(random.OverDecades<TypeParam>(-6, 6));
        M inverse;
        ASSERT_EQ(inverse.Invert(x), 1);
        auto const eigenX = ToEigen(x);
        Eigen::Matrix3d const expected = eigenX.inverse();
        double const condition = eigenX.norm() * expected.norm();
        double const limit =
            (8 * condition * 0x1p-52 + static_cast<double>(std::numeric_limits<TypeParam>::epsilon())) *
            expected.norm();
        EXPECT_TRUE(AreClose(ToEigen(inverse), expected, limit));
        M transposed;
        ASSERT_EQ(transposed.TransposeInverse(x), 1);
        EXPECT_TRUE(SameBits(transposed, M().Transpose(inverse)));
    }
}

} // namespace
