#include "matrix/fixed_matrices.h"

using namespace test_support;

namespace
{

template <typename T>
class Matrix33Predicates : public testing::Test
{
protected:
    using Matrix = C3DMatrix33Tpl<T>;

    // A power of two, so that sums with 1 in which it takes part are exact.
    static constexpr T epsilon = T(0x1p-10);
    static T Below() { return std::nextafter(epsilon, T(0)); }

    static Matrix With(Matrix m, int i, T value)
    {
        m.GetArray()[i] = value;
        return m;
    }
};
TYPED_TEST_SUITE(Matrix33Predicates, Scalars);

TYPED_TEST(Matrix33Predicates, Equality_sees_every_element)
{
    auto const a = CountingMatrix<C3DMatrix33Tpl<TypeParam>>();
    EXPECT_TRUE(a == a);
    EXPECT_FALSE(a != a);
    for (int i = 0; i < 9; ++i)
    {
        for (TypeParam const direction : {-k_Infinity<TypeParam>, k_Infinity<TypeParam>})
        {
            auto const b = this->With(a, i, std::nextafter(TypeParam(i + 1), direction));
            EXPECT_FALSE(a == b);
            EXPECT_TRUE(a != b);
        }
    }
}

TYPED_TEST(Matrix33Predicates, Equality_takes_a_NaN_for_equal_and_the_zeros_of_both_signs)
{
    auto const a = CountingMatrix<C3DMatrix33Tpl<TypeParam>>();
    auto const b = this->With(a, 4, k_Nan<TypeParam>);
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(b == a);
    EXPECT_FALSE(a != b);
    EXPECT_TRUE(this->With(a, 4, TypeParam(0)) == this->With(a, 4, -TypeParam(0)));
    EXPECT_FALSE(this->With(b, 8, TypeParam(0)) == b);
}

TYPED_TEST(Matrix33Predicates, IsNull_rejects_at_the_tolerance_in_every_element)
{
    C3DMatrix33Tpl<TypeParam> const null;
    EXPECT_EQ(null.IsNull(this->epsilon), 1);
    EXPECT_EQ(null.IsNull(), 1);
    for (int i = 0; i < 9; ++i)
    {
        EXPECT_EQ(this->With(null, i, this->epsilon).IsNull(this->epsilon), 0);
        EXPECT_EQ(this->With(null, i, -this->epsilon).IsNull(this->epsilon), 0);
        EXPECT_EQ(this->With(null, i, this->Below()).IsNull(this->epsilon), 1);
        EXPECT_EQ(this->With(null, i, -this->Below()).IsNull(this->epsilon), 1);
        EXPECT_EQ(this->With(null, i, k_Nan<TypeParam>).IsNull(this->epsilon), 1);
        EXPECT_EQ(this->With(null, i, k_Infinity<TypeParam>).IsNull(this->epsilon), 0);
    }
}

TYPED_TEST(Matrix33Predicates, IsIdentity_rejects_at_the_tolerance_in_every_element)
{
    auto const identity = IdentityMatrix<C3DMatrix33Tpl<TypeParam>>();
    EXPECT_TRUE(identity.IsIdentity(this->epsilon));
    EXPECT_TRUE(identity.IsIdentity());
    for (int i = 0; i < 9; ++i)
    {
        auto const base = TypeParam(i % 4 == 0);
        EXPECT_FALSE(this->With(identity, i, base + this->epsilon).IsIdentity(this->epsilon));
        EXPECT_FALSE(this->With(identity, i, base - this->epsilon).IsIdentity(this->epsilon));
        EXPECT_TRUE(this->With(identity, i, base + this->epsilon * TypeParam(0.75)).IsIdentity(this->epsilon));
        EXPECT_TRUE(this->With(identity, i, base - this->epsilon * TypeParam(0.75)).IsIdentity(this->epsilon));
        EXPECT_TRUE(this->With(identity, i, k_Nan<TypeParam>).IsIdentity(this->epsilon));
    }
    EXPECT_FALSE((C3DMatrix33Tpl<TypeParam>()).IsIdentity(this->epsilon));
}

TYPED_TEST(Matrix33Predicates, IsDiagonal_looks_at_the_elements_off_the_diagonal_alone)
{
    C3DMatrix33Tpl<TypeParam> const diagonal(5, 0, 0, 0, -7, 0, 0, 0, k_Infinity<TypeParam>);
    EXPECT_TRUE(diagonal.IsDiagonal(this->epsilon));
    EXPECT_TRUE(diagonal.IsDiagonal());
    for (int i = 0; i < 9; ++i)
    {
        bool const onDiagonal = i % 4 == 0;
        EXPECT_EQ(this->With(diagonal, i, this->epsilon).IsDiagonal(this->epsilon), onDiagonal);
        EXPECT_EQ(this->With(diagonal, i, -this->epsilon).IsDiagonal(this->epsilon), onDiagonal);
        EXPECT_TRUE(this->With(diagonal, i, this->Below()).IsDiagonal(this->epsilon));
        EXPECT_TRUE(this->With(diagonal, i, k_Nan<TypeParam>).IsDiagonal(this->epsilon));
    }
}

TYPED_TEST(Matrix33Predicates, IsSymmetric_compares_every_pair)
{
    C3DMatrix33Tpl<TypeParam> const symmetric(1, 2, 3, 2, 4, 5, 3, 5, 6);
    EXPECT_EQ(symmetric.IsSymmetric(this->epsilon), 1);
    EXPECT_EQ(symmetric.IsSymmetric(), 1);
    for (int i = 0; i < 9; ++i)
    {
        int const onDiagonal = i % 4 == 0;
        TypeParam const element = symmetric.GetArray()[i];
        EXPECT_EQ(this->With(symmetric, i, element + this->epsilon).IsSymmetric(this->epsilon), onDiagonal);
        EXPECT_EQ(this->With(symmetric, i, element - this->epsilon).IsSymmetric(this->epsilon), onDiagonal);
        EXPECT_EQ(this->With(symmetric, i, element + this->epsilon * TypeParam(0.75)).IsSymmetric(this->epsilon), 1);
        EXPECT_EQ(this->With(symmetric, i, k_Nan<TypeParam>).IsSymmetric(this->epsilon), 1);
    }
    // The difference of an infinity with itself is a NaN.
    EXPECT_EQ(this->With(symmetric, 0, k_Infinity<TypeParam>).IsSymmetric(this->epsilon), 1);
}

TYPED_TEST(Matrix33Predicates, No_matrix_passes_a_tolerance_of_0)
{
    auto const identity = IdentityMatrix<C3DMatrix33Tpl<TypeParam>>();
    EXPECT_EQ((C3DMatrix33Tpl<TypeParam>()).IsNull(0), 0);
    EXPECT_FALSE(identity.IsIdentity(0));
    EXPECT_FALSE(identity.IsDiagonal(0));
    EXPECT_EQ(identity.IsSymmetric(0), 0);
    EXPECT_EQ(AreAlmostEqual(identity, identity, 0), 0);
}

TYPED_TEST(Matrix33Predicates, AreAlmostEqual_rejects_at_the_tolerance_in_every_element)
{
    auto const a = CountingMatrix<C3DMatrix33Tpl<TypeParam>>();
    EXPECT_EQ(AreAlmostEqual(a, a, this->epsilon), 1);
    EXPECT_EQ(AreAlmostEqual(a, a), 1);
    for (int i = 0; i < 9; ++i)
    {
        TypeParam const element = a.GetArray()[i];
        EXPECT_EQ(AreAlmostEqual(a, this->With(a, i, element + this->epsilon), this->epsilon), 0);
        EXPECT_EQ(AreAlmostEqual(a, this->With(a, i, element - this->epsilon), this->epsilon), 0);
        EXPECT_EQ(AreAlmostEqual(a, this->With(a, i, element + this->epsilon * TypeParam(0.75)), this->epsilon), 1);
        EXPECT_EQ(AreAlmostEqual(a, this->With(a, i, k_Nan<TypeParam>), this->epsilon), 1);
        EXPECT_EQ(AreAlmostEqual(a, this->With(a, i, k_Infinity<TypeParam>), this->epsilon), 0);
    }
}

TYPED_TEST(Matrix33Predicates, IsSingular_is_relative_to_the_size_of_the_determinant)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    EXPECT_EQ(M().IsSingular(this->epsilon), 1);
    EXPECT_EQ(M().IsSingular(0), 1);
    EXPECT_EQ(IdentityMatrix<M>().IsSingular(1), 0);
    EXPECT_EQ(IdentityMatrix<M>().IsSingular(TypeParam(1.5)), 1);
    EXPECT_EQ(M(1000, 0, 0, 0, 1000, 0, 0, 0, 1000).IsSingular(1), 0);
    EXPECT_EQ(M(1, 2, 3, 2, 4, 6, -3, -6, -9).IsSingular(this->epsilon), 1);
    EXPECT_EQ(M(1, 2, 3, 2, 4, 6, -3, -6, -9).IsSingular(std::numeric_limits<TypeParam>::denorm_min()), 1);
    EXPECT_EQ(IdentityMatrix<M>().IsSingular(k_Nan<TypeParam>), 1);
    EXPECT_EQ(this->With(IdentityMatrix<M>(), 4, k_Nan<TypeParam>).IsSingular(0), 1);
}

TYPED_TEST(Matrix33Predicates, IsSingular_accepts_at_the_tolerance)
{
    // Determinant 4 - 3 of size 4 + 3, and its negative.
    C3DMatrix33Tpl<TypeParam> const m(1, 0, 0, 0, 4, 3, 0, 1, 1);
    C3DMatrix33Tpl<TypeParam> const negative(1, 0, 0, 0, 3, 4, 0, 1, 1);
    TypeParam const quotient = TypeParam(1) / TypeParam(7);
    EXPECT_EQ(m.IsSingular(quotient), 0);
    EXPECT_EQ(negative.IsSingular(quotient), 0);
    EXPECT_EQ(m.IsSingular(std::nextafter(quotient, TypeParam(1))), 1);
    EXPECT_EQ(negative.IsSingular(std::nextafter(quotient, TypeParam(1))), 1);
}

TEST(Matrix33PredicatesDouble, IsSingular_does_not_depend_on_the_scale)
{
    C3DMatrix33Tpl<double> const m(1e-20, 0, 0, 0, 1e-20, 0, 0, 0, 1e-20);
    EXPECT_EQ(m.IsSingular(1e-12), 0);
    EXPECT_EQ(m.IsSingular(), 0);
}

TEST(Matrix33PredicatesFloat, IsSingular_works_in_float)
{
    // The triple products underflow in float: their size is 0.
    C3DMatrix33Tpl<float> const small(1e-20F, 0, 0, 0, 1e-20F, 0, 0, 0, 1e-20F);
    EXPECT_EQ(small.IsSingular(1e-12F), 1);
    // They overflow in float: the quotient is a NaN.
    C3DMatrix33Tpl<float> const large(1e20F, 0, 0, 0, 1e20F, 0, 0, 0, 1e20F);
    EXPECT_EQ(large.IsSingular(1e-12F), 1);
}

} // namespace
