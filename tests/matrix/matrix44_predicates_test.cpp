#include "matrix/fixed_matrices.h"

using namespace test_support;

namespace
{

template <typename T>
class Matrix44Predicates : public testing::Test
{
protected:
    using Matrix = C3DMatrix44Tpl<T>;

    // A power of two, so that sums with 1 in which it takes part are exact.
    static constexpr T epsilon = T(0x1p-10);
    static T Below() { return std::nextafter(epsilon, T(0)); }

    static Matrix With(Matrix m, int i, T value)
    {
        m.GetArray()[i] = value;
        return m;
    }
};
TYPED_TEST_SUITE(Matrix44Predicates, Scalars);

TYPED_TEST(Matrix44Predicates, Equality_sees_every_element)
{
    auto const a = CountingMatrix<C3DMatrix44Tpl<TypeParam>>();
    EXPECT_TRUE(a == a);
    EXPECT_FALSE(a != a);
    for (int i = 0; i < 16; ++i)
    {
        for (TypeParam const direction : {-k_Infinity<TypeParam>, k_Infinity<TypeParam>})
        {
            auto const b = this->With(a, i, std::nextafter(TypeParam(i + 1), direction));
            EXPECT_FALSE(a == b);
            EXPECT_TRUE(a != b);
        }
    }
}

TYPED_TEST(Matrix44Predicates, Equality_takes_a_NaN_for_equal_and_the_zeros_of_both_signs)
{
    auto const a = CountingMatrix<C3DMatrix44Tpl<TypeParam>>();
    EXPECT_TRUE(a == this->With(a, 15, k_Nan<TypeParam>));
    EXPECT_FALSE(this->With(a, 15, k_Nan<TypeParam>) != a);
    EXPECT_TRUE(this->With(a, 15, TypeParam(0)) == this->With(a, 15, -TypeParam(0)));
}

TYPED_TEST(Matrix44Predicates, IsNull_rejects_at_the_tolerance_in_every_element)
{
    C3DMatrix44Tpl<TypeParam> const null;
    EXPECT_EQ(null.IsNull(this->epsilon), 1);
    EXPECT_EQ(null.IsNull(), 1);
    EXPECT_EQ(null.IsNull(0), 0);
    for (int i = 0; i < 16; ++i)
    {
        EXPECT_EQ(this->With(null, i, this->epsilon).IsNull(this->epsilon), 0);
        EXPECT_EQ(this->With(null, i, -this->epsilon).IsNull(this->epsilon), 0);
        EXPECT_EQ(this->With(null, i, this->Below()).IsNull(this->epsilon), 1);
        EXPECT_EQ(this->With(null, i, k_Nan<TypeParam>).IsNull(this->epsilon), 1);
    }
}

TYPED_TEST(Matrix44Predicates, IsDiagonal_looks_at_the_elements_off_the_diagonal_alone)
{
    C3DMatrix44Tpl<TypeParam> const diagonal(5, 0, 0, 0, 0, -7, 0, 0, 0, 0, 9, 0, 0, 0, 0, k_Infinity<TypeParam>);
    EXPECT_TRUE(diagonal.IsDiagonal(this->epsilon));
    EXPECT_TRUE(diagonal.IsDiagonal());
    EXPECT_FALSE(diagonal.IsDiagonal(0));
    for (int i = 0; i < 16; ++i)
    {
        bool const onDiagonal = i % 5 == 0;
        EXPECT_EQ(this->With(diagonal, i, this->epsilon).IsDiagonal(this->epsilon), onDiagonal);
        EXPECT_EQ(this->With(diagonal, i, -this->epsilon).IsDiagonal(this->epsilon), onDiagonal);
        EXPECT_TRUE(this->With(diagonal, i, this->Below()).IsDiagonal(this->epsilon));
        EXPECT_TRUE(this->With(diagonal, i, k_Nan<TypeParam>).IsDiagonal(this->epsilon));
    }
}

TYPED_TEST(Matrix44Predicates, IsIdentity_rejects_at_the_tolerance_in_every_element)
{
    auto const identity = IdentityMatrix<C3DMatrix44Tpl<TypeParam>>();
    EXPECT_TRUE(identity.IsIdentity(this->epsilon));
    EXPECT_TRUE(identity.IsIdentity());
    for (int i = 0; i < 16; ++i)
    {
        auto const base = TypeParam(i % 5 == 0);
        EXPECT_FALSE(this->With(identity, i, base + this->epsilon).IsIdentity(this->epsilon));
        EXPECT_FALSE(this->With(identity, i, base - this->epsilon).IsIdentity(this->epsilon));
        EXPECT_TRUE(this->With(identity, i, base + this->epsilon * TypeParam(0.75)).IsIdentity(this->epsilon));
        EXPECT_TRUE(this->With(identity, i, base - this->epsilon * TypeParam(0.75)).IsIdentity(this->epsilon));
        EXPECT_TRUE(this->With(identity, i, k_Nan<TypeParam>).IsIdentity(this->epsilon));
    }
}

TYPED_TEST(Matrix44Predicates, IsIdentity_is_exact_for_a_tolerance_of_0_of_either_sign)
{
    auto const identity = IdentityMatrix<C3DMatrix44Tpl<TypeParam>>();
    EXPECT_TRUE(identity.IsIdentity(0));
    EXPECT_TRUE(identity.IsIdentity(-TypeParam(0)));
    for (int i = 0; i < 16; ++i)
    {
        TypeParam const next = std::nextafter(TypeParam(i % 5 == 0), TypeParam(2));
        EXPECT_FALSE(this->With(identity, i, next).IsIdentity(0));
        EXPECT_FALSE(this->With(identity, i, k_Nan<TypeParam>).IsIdentity(0));
    }
    EXPECT_TRUE(this->With(identity, 1, -TypeParam(0)).IsIdentity(0));
}

TYPED_TEST(Matrix44Predicates, IsExactlyIdentity_has_no_tolerance)
{
    auto const identity = IdentityMatrix<C3DMatrix44Tpl<TypeParam>>();
    EXPECT_TRUE(identity.IsExactlyIdentity());
    EXPECT_TRUE(this->With(identity, 1, -TypeParam(0)).IsExactlyIdentity());
    for (int i = 0; i < 16; ++i)
    {
        TypeParam const next = std::nextafter(TypeParam(i % 5 == 0), TypeParam(-2));
        EXPECT_FALSE(this->With(identity, i, next).IsExactlyIdentity());
        EXPECT_FALSE(this->With(identity, i, k_Nan<TypeParam>).IsExactlyIdentity());
    }
}

TYPED_TEST(Matrix44Predicates, AreAlmostEqual_rejects_at_the_tolerance_in_every_element)
{
    auto const a = CountingMatrix<C3DMatrix44Tpl<TypeParam>>();
    EXPECT_EQ(AreAlmostEqual(a, a, this->epsilon), 1);
    EXPECT_EQ(AreAlmostEqual(a, a), 1);
    EXPECT_EQ(AreAlmostEqual(a, a, 0), 0);
    for (int i = 0; i < 16; ++i)
    {
        TypeParam const element = a.GetArray()[i];
        EXPECT_EQ(AreAlmostEqual(a, this->With(a, i, element + this->epsilon), this->epsilon), 0);
        EXPECT_EQ(AreAlmostEqual(a, this->With(a, i, element - this->epsilon), this->epsilon), 0);
        EXPECT_EQ(AreAlmostEqual(a, this->With(a, i, element + this->epsilon * TypeParam(0.75)), this->epsilon), 1);
        EXPECT_EQ(AreAlmostEqual(a, this->With(a, i, k_Nan<TypeParam>), this->epsilon), 1);
    }
}

TYPED_TEST(Matrix44Predicates, IsSingular_is_exact_and_ignores_its_tolerance)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    auto const small = std::numeric_limits<TypeParam>::min();
    EXPECT_EQ(M().IsSingular(0), 1);
    EXPECT_EQ(M().IsSingular(), 1);
    EXPECT_EQ(IdentityMatrix<M>().IsSingular(k_Infinity<TypeParam>), 0);
    EXPECT_EQ(this->With(IdentityMatrix<M>(), 0, small).IsSingular(1), 0);
    EXPECT_EQ(this->With(IdentityMatrix<M>(), 0, -small).IsSingular(1), 0);
    EXPECT_EQ(this->With(IdentityMatrix<M>(), 0, k_Nan<TypeParam>).IsSingular(0), 1);
    EXPECT_EQ(CountingMatrix<M>().IsSingular(0), 1);
}

TEST(Matrix44PredicatesDouble, IsSingular_accepts_a_determinant_of_1e_minus_300)
{
    auto const m = IdentityMatrix<C3DMatrix44Tpl<double>>().Set(2, 2, 1e-300);
    EXPECT_EQ(m.GetDet(), 1e-300);
    EXPECT_EQ(m.IsSingular(1.0), 0);
}

} // namespace
