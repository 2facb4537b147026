#include "matrix/fixed_matrices.h"

#include <Eigen/LU>

#include <algorithm>
#include <array>

using namespace test_support;

namespace
{

/// Opens what derived classes use.
template <typename T>
struct OpenMatrix44 : C3DMatrix44Tpl<T>
{
    using C3DMatrix44Tpl<T>::ComputeInverse;
};

template <typename T>
class Matrix44Inverse : public testing::Test
{
};
TYPED_TEST_SUITE(Matrix44Inverse, Scalars);

/// A determinant of 1 with small integer elements, so that the inverse is exact.
template <typename T>
C3DMatrix44Tpl<T> Unimodular()
{
    return {1, 2, 0, 3, 0, 1, 4, 0, 0, 0, 1, 5, 2, 4, 0, 7};
}
template <typename T>
C3DMatrix44Tpl<T> InverseOfUnimodular()
{
    return {87, -2, 8, -43, -40, 1, -4, 20, 10, 0, 1, -5, -2, 0, 0, 1};
}

TYPED_TEST(Matrix44Inverse, Inverts)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const source = Unimodular<TypeParam>();
    M const inverse = InverseOfUnimodular<TypeParam>();
    ASSERT_TRUE(M().Mul(source, inverse).IsExactlyIdentity());
    M target;
    EXPECT_EQ(target.Invert(source), 1);
    EXPECT_TRUE(target == inverse);
    target = source;
    EXPECT_EQ(target.Invert(), 1);
    EXPECT_TRUE(target == inverse);
    target = source;
    EXPECT_EQ(target.Invert(target), 1);
    EXPECT_TRUE(target == inverse);
}

TYPED_TEST(Matrix44Inverse, TransposeInverse_is_the_transpose_of_the_inverse)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const source = Unimodular<TypeParam>();
    M const expected = M().Transpose(InverseOfUnimodular<TypeParam>());
    M target;
    EXPECT_EQ(target.TransposeInverse(source), 1);
    EXPECT_TRUE(target == expected);
    target = source;
    EXPECT_EQ(target.TransposeInverse(), 1);
    EXPECT_TRUE(target == expected);
    target = source;
    EXPECT_EQ(target.TransposeInverse(target), 1);
    EXPECT_TRUE(target == expected);
}

TYPED_TEST(Matrix44Inverse, ComputeInverse_transposes_for_any_value_but_0)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const source = Unimodular<TypeParam>();
    auto const * const a = reinterpret_cast<TypeParam const(*)[4]>(source.GetArray());
    for (int const transposed : {1, 2, -1})
    {
        TypeParam out[4][4];
        EXPECT_EQ(OpenMatrix44<TypeParam>().ComputeInverse(a, out, transposed), 1);
        EXPECT_TRUE(M().Set(out) == M().Transpose(InverseOfUnimodular<TypeParam>()));
    }
}

TYPED_TEST(Matrix44Inverse, A_permutation_is_inverted_by_exchanging_rows)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    std::array<int, 4> order = {0, 1, 2, 3};
    do
    {
        M permutation;
        for (int r = 0; r < 4; ++r)
        {
            permutation.Set(r, order[static_cast<std::size_t>(r)], TypeParam(1));
        }
        M target;
        EXPECT_EQ(target.Invert(permutation), 1);
        EXPECT_TRUE(target == M().Transpose(permutation));
    } while (std::next_permutation(order.begin(), order.end()));
}

TYPED_TEST(Matrix44Inverse, A_singular_matrix_gives_0_and_keeps_the_target)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const null;
    M const dependent(1, 2, 3, 4, 2, 4, 6, 8, 0, 0, 1, 0, 0, 0, 0, 1);
    M const lastPivot(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0);
    M const notANumber = IdentityMatrix<M>().Set(0, 0, k_Nan<TypeParam>);
    for (M const & singular : {null, dependent, lastPivot, notANumber})
    {
        M target = CountingMatrix<M>();
        EXPECT_EQ(target.Invert(singular), 0);
        EXPECT_EQ(target.TransposeInverse(singular), 0);
        EXPECT_TRUE(SameBits(target, CountingMatrix<M>()));
        target = singular;
        EXPECT_EQ(target.Invert(), 0);
        EXPECT_EQ(target.TransposeInverse(), 0);
        EXPECT_TRUE(SameBits(target, singular));
    }
}

TYPED_TEST(Matrix44Inverse, ComputeInverse_leaves_its_output_where_there_is_no_inverse)
{
    TypeParam const a[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {1, 1, 1, 0}};
    TypeParam out[4][4] = {{9, 9, 9, 9}, {9, 9, 9, 9}, {9, 9, 9, 9}, {9, 9, 9, 9}};
    EXPECT_EQ(OpenMatrix44<TypeParam>().ComputeInverse(a, out, 0), 0);
    for (auto const & row : out)
    {
        for (TypeParam const element : row)
        {
            EXPECT_EQ(element, 9);
        }
    }
}

template <typename T>
C3DMatrix44Tpl<T> Scaled(T factor)
{
    return IdentityMatrix<C3DMatrix44Tpl<T>>().Mul(factor);
}

TEST(Matrix44InverseDouble, The_limit_of_a_pivot_is_absolute)
{
    C3DMatrix44Tpl<double> target;
    EXPECT_EQ(target.Invert(Scaled(1e-13)), 0);
    EXPECT_EQ(target.Invert(Scaled(std::nextafter(1e-12, 0.0))), 0);
    EXPECT_EQ(target.Invert(Scaled(1e-12)), 1);
    EXPECT_EQ(target.Get(3, 3), 1 / 1e-12);
    EXPECT_EQ(target.Invert(Scaled(-1e-12)), 1);
}

TEST(Matrix44InverseDouble, The_limit_of_a_pivot_holds_for_a_row_further_down)
{
    auto const withPivotBelow = [](double pivot)
    { return C3DMatrix44Tpl<double>(0, 1, 0, 0, 0, 0, 1, 0, pivot, 0, 0, 0, 0, 0, 0, 1); };
    C3DMatrix44Tpl<double> target;
    EXPECT_EQ(target.Invert(withPivotBelow(std::nextafter(1e-12, 0.0))), 0);
    for (double const pivot : {1e-12, -1e-12})
    {
        EXPECT_EQ(target.Invert(withPivotBelow(pivot)), 1) << pivot;
        EXPECT_EQ(target.Get(0, 2), 1 / pivot);
    }
}

TEST(Matrix44InverseFloat, The_limit_of_a_pivot_is_1e_minus_6_in_double)
{
    C3DMatrix44Tpl<float> target;
    EXPECT_EQ(target.Invert(Scaled(1e-7F)), 0);
    // The float of that name is a little below the limit.
    ASSERT_LT(static_cast<double>(1e-6F), 1e-6);
    EXPECT_EQ(target.Invert(Scaled(1e-6F)), 0);
    EXPECT_EQ(target.Invert(Scaled(-1e-6F)), 0);
    EXPECT_EQ(target.Invert(Scaled(std::nextafter(1e-6F, 1.0F))), 1);
    EXPECT_EQ(target.Invert(Scaled(-std::nextafter(1e-6F, 1.0F))), 1);
}

/// In rows (pivot, 1) and (1, lost) the first pivot turns `lost` into `lost` - 1 / `pivot`, where a double has no digit
/// left for it. The inverse then has 0 in its corner. An elimination that starts from the second row keeps it, and gets
/// the true value next to -`lost`.
template <typename T>
struct SmallPivot
{
    static constexpr bool isFloat = sizeof(T) == sizeof(float);
    static constexpr T pivot = isFloat ? T(0x1p-19) : T(0x1p-39);
    static constexpr T lost = isFloat ? T(0x1p-35) : T(0x1p-20);
};

TYPED_TEST(Matrix44Inverse, A_usable_pivot_is_kept_however_small)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    using S = SmallPivot<TypeParam>;
    M inverse;
    ASSERT_EQ(inverse.Invert(M(S::pivot, 1, 0, 0, 1, S::lost, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1)), 1);
    EXPECT_EQ(inverse.Get(0, 0), 0);
    ASSERT_EQ(inverse.Invert(M(1, S::lost, 0, 0, S::pivot, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1)), 1);
    EXPECT_NE(inverse.Get(0, 1), 0);
}

TYPED_TEST(Matrix44Inverse, The_first_usable_row_is_exchanged_and_not_the_one_with_the_largest_pivot)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    using S = SmallPivot<TypeParam>;
    M inverse;
    ASSERT_EQ(inverse.Invert(M(0, 0, 0, 1, S::pivot, 1, 0, 0, 1, S::lost, 0, 0, 0, 0, 1, 0)), 1);
    EXPECT_EQ(inverse.Get(0, 1), 0);
    ASSERT_EQ(inverse.Invert(M(0, 0, 0, 1, 1, S::lost, 0, 0, S::pivot, 1, 0, 0, 0, 0, 1, 0)), 1);
    EXPECT_NE(inverse.Get(0, 2), 0);
}

TEST(Matrix44InverseFloat, Is_the_inverse_in_double_rounded_once)
{
    Random random(442);
    for (int i = 0; i < 500; ++i)
    {
        auto const narrow = RandomMatrix<C3DMatrix44Tpl<float>>(random);
        C3DMatrix44Tpl<float> inverse;
        C3DMatrix44Tpl<double> wideInverse;
        ASSERT_EQ(inverse.Invert(narrow), 1);
        ASSERT_EQ(wideInverse.Invert(C3DMatrix44Tpl<double>().SetFromFloat(narrow)), 1);
        for (int k = 0; k < 16; ++k)
        {
            EXPECT_EQ(inverse.GetArray()[k], static_cast<float>(wideInverse.GetArray()[k]));
        }
    }
}

/// The elimination on the four by eight array, written out.
template <typename T>
bool EliminateWrittenOut(C3DMatrix44Tpl<T> const & a, C3DMatrix44Tpl<T> & inverse)
{
    double m[4][8] = {};
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            m[r][c] = static_cast<double>(a.Get(r, c));
        }
        m[r][4 + r] = 1;
    }
    for (int k = 0; k < 4; ++k)
    {
        int pivot = k;
        while (pivot < 4 && !(std::abs(m[pivot][k]) >= (sizeof(T) == sizeof(float) ? 1e-6 : 1e-12)))
        {
            ++pivot;
        }
        if (pivot == 4)
        {
            return false;
        }
        std::swap(m[k], m[pivot]);
        double const reciprocal = 1 / m[k][k];
        for (double & element : m[k])
        {
            element *= reciprocal;
        }
        for (int r = 0; r < 4; ++r)
        {
            double const factor = m[r][k];
            for (int c = 0; r != k && c < 8; ++c)
            {
                m[r][c] -= factor * m[k][c];
            }
        }
    }
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            inverse.Set(r, c, static_cast<T>(m[r][4 + c]));
        }
    }
    return true;
}

/// The same number, a zero with its sign, or NaN both.
template <typename T>
bool IsSameNumber(T a, T b)
{
    return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

/// Ones of either sign, zeros of either sign and numbers between, and now and then something that is far from them.
template <typename T>
T ElementOfManyKinds(Random & random)
{
    using Limits = std::numeric_limits<T>;
    std::array<T, 8> const rare = {Limits::infinity(),
                                   -Limits::infinity(),
                                   Limits::quiet_NaN(),
                                   Limits::max(),
                                   -Limits::max(),
                                   Limits::min(),
                                   T(1e-6F),
                                   T(-1e-12)};
    auto const number = static_cast<T>(random.Uniform(-1.0, 1.0));
    auto const kind = static_cast<int>(random.Uniform(0.0, 64.0));
    if (kind == 0)
    {
        return rare[static_cast<std::size_t>(random.Uniform(0.0, 8.0))];
    }
    return kind < 36 ? std::copysign(T(0), number) : kind < 48 ? std::copysign(T(1), number) : number;
}

TYPED_TEST(Matrix44Inverse, Is_to_the_bit_what_the_elimination_written_out_gives)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    Random random(444);
    int invertible = 0;
    for (int i = 0; i < 40000; ++i)
    {
        M x;
        std::generate_n(x.GetArray(), 16, [&random] { return ElementOfManyKinds<TypeParam>(random); });
        for (int k = 0; k < 4 && i % 2 == 0; ++k)
        {
            x.Set(k, k, x.Get(k, k) + static_cast<TypeParam>(random.Uniform(-2.0, 2.0)));
        }
        M expected;
        bool const hasInverse = EliminateWrittenOut(x, expected);
        M inverse;
        M transposed;
        ASSERT_EQ(inverse.Invert(x), hasInverse ? 1 : 0);
        ASSERT_EQ(transposed.TransposeInverse(x), hasInverse ? 1 : 0);
        invertible += hasInverse ? 1 : 0;
        for (int k = 0; k < 16; ++k)
        {
            ASSERT_TRUE(IsSameNumber(inverse.Get(k / 4, k % 4), expected.Get(k / 4, k % 4))) << x;
            ASSERT_TRUE(IsSameNumber(transposed.Get(k % 4, k / 4), expected.Get(k / 4, k % 4))) << x;
        }
    }
    EXPECT_GT(invertible, 10000);
}

TYPED_TEST(Matrix44Inverse, Agrees_with_Eigen_on_random_matrices)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    Random random(443);
    for (int i = 0; i < 500; ++i)
    {
        // A heavy diagonal keeps the pivots large, so that eliminating in order is as good as Eigen's order.
        M x = RandomMatrix<M>(random);
        for (int k = 0; k < 4; ++k)
        {
            x.Set(k, k, x.Get(k, k) + TypeParam(k % 2 == 0 ? 4 : -4));
        }
        M inverse;
        ASSERT_EQ(inverse.Invert(x), 1);
        Eigen::Matrix4d const expected = ToEigen(x).inverse();
        double const condition = ToEigen(x).norm() * expected.norm();
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
