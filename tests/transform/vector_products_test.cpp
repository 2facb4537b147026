/// The products of vectors with a transformation matrix.

#include "math/transformation_matrix.h"
#include "transform/transformation_matrices.h"

using namespace transformation_matrix_test;

namespace
{

template <typename T>
class VectorTimesTransformation : public testing::Test
{
protected:
    using Matrix = C3DXfoMatTpl<T>;

    /// No element is like another; as a projection it would divide by 1000 and more.
    static Matrix Counting() { return Make<T>({2, -1, 3, 50, 7, 11, -2, 40, 1, 6, 8, 30, 9, 10, -4, 1000}, 0xFF); }
};
TYPED_TEST_SUITE(VectorTimesTransformation, Scalars);

TYPED_TEST(VectorTimesTransformation, A_point_is_a_row_with_one_behind_it_and_is_not_divided)
{
    using T = TypeParam;
    using V3 = C3DVector3Tpl<T>;
    auto const m = this->Counting();
    V3 result;
    EXPECT_EQ(&result.Mul(V3(2, 3, -5), m), &result);
    EXPECT_TRUE(Same(NumbersOf(result), {T(9 + 4 + 21 - 5), T(10 - 2 + 33 - 30), T(-4 + 6 - 6 - 40)}));
    result.Mul(V3(2, 3, -5), m.GetMatrix44());
    EXPECT_FALSE(Same(NumbersOf(result), {T(29), T(11), T(-44)})) << "a general matrix divides";
}

TYPED_TEST(VectorTimesTransformation, Column_3_does_not_count_for_a_point)
{
    using T = TypeParam;
    using V3 = C3DVector3Tpl<T>;
    auto m = this->Counting();
    for (T const garbage : {T(0), T(-1), k_Nan<T>, k_Infinity<T>})
    {
        m.SetCol(3, garbage, garbage, garbage, garbage);
        V3 result;
        EXPECT_TRUE(Same(NumbersOf(result.Mul(V3(2, 3, -5), m)), {T(29), T(11), T(-44)})) << garbage;
        EXPECT_TRUE(Same(NumbersOf(result.Mul(V3(0, 3, -5), m)), {T(25), T(13), T(-50)})) << garbage;
    }
}

TYPED_TEST(VectorTimesTransformation, A_component_of_zero_or_NaN_skips_its_row)
{
    using T = TypeParam;
    using V3 = C3DVector3Tpl<T>;
    Numbers<T> const & n = NumbersOf(this->Counting());
    for (unsigned skipped = 0; skipped < 8; ++skipped)
    {
        for (T const nothing : {T(0), T(-0.0), k_Nan<T>})
        {
            for (T const wild : {k_Nan<T>, k_Infinity<T>, T(3)})
            {
                V3 v(2, 3, -5);
                auto m = this->Counting();
                V3 expected(n[12], n[13], n[14]);
                for (int row = 0; row < 3; ++row)
                {
                    auto const i = static_cast<std::size_t>(4 * row);
                    if ((skipped >> row & 1U) != 0)
                    {
                        v.Set(row, nothing);
                        m.SetRow(row, wild, wild, wild, wild);
                    }
                    else
                    {
                        expected.Add(v.Get(row) * n[i], v.Get(row) * n[i + 1], v.Get(row) * n[i + 2]);
                    }
                }
                V3 result;
                EXPECT_TRUE(Same(NumbersOf(result.Mul(v, m)), NumbersOf(expected))) << skipped << ' ' << nothing;
            }
        }
    }
}

TYPED_TEST(VectorTimesTransformation, The_translation_counts_even_for_the_origin)
{
    using T = TypeParam;
    using V3 = C3DVector3Tpl<T>;
    auto m = this->Counting();
    V3 result;
    EXPECT_TRUE(Same(NumbersOf(result.Mul(V3(0, 0, 0), m)), {T(9), T(10), T(-4)}));
    m.SetTranslation({k_Nan<T>, k_Infinity<T>, 1});
    result.Mul(V3(0, 0, 0), m);
    EXPECT_TRUE(Same(NumbersOf(result), {k_Nan<T>, k_Infinity<T>, T(1)}));
}

TYPED_TEST(VectorTimesTransformation, A_small_component_does_not_count_as_zero)
{
    using T = TypeParam;
    using V3 = C3DVector3Tpl<T>;
    // The product of all three underflows; each of them counts, subnormal ones too.
    T const tiny = std::numeric_limits<T>::denorm_min();
    T const big = std::numeric_limits<T>::max();
    C3DXfoMatTpl<T> const m(big, 0, 0, 0, 0, big, 0, 0, 0, 0, big, 0, 0, 0, 0, 1);
    V3 result;
    for (T const sign : {T(1), T(-1)})
    {
        result.Mul(V3(sign * tiny, sign * tiny, sign * tiny), m);
        T const expected = sign * tiny * big;
        EXPECT_TRUE(Same(NumbersOf(result), {expected, expected, expected}));
        EXPECT_NE(result.X, T(0));
    }
}

TYPED_TEST(VectorTimesTransformation, A_point_adds_the_last_row_first_and_then_X_Y_Z)
{
    using T = TypeParam;
    using V3 = C3DVector3Tpl<T>;
    // So large that adding 1 to it changes nothing.
    T const big = T(4) / std::numeric_limits<T>::epsilon();
    auto const sum = [&](T x, T y, T z, T t)
    {
        V3 result;
        return result.Mul(V3(1, 1, 1), Make<T>({x, 0, 0, 0, y, 0, 0, 0, z, 0, 0, 0, t, 0, 0, 1}, 0)).X;
    };
    EXPECT_EQ(sum(big, -big, 0, 1), T(0)) << "the translation is lost in X";
    EXPECT_EQ(sum(-big, 1, 0, big), T(1)) << "the translation meets X before Y";
    EXPECT_EQ(sum(1, -big, 0, big), T(0)) << "the translation meets X before Y";
    EXPECT_EQ(sum(big, 1, -big, 0), T(0)) << "X meets Y before Z";
    EXPECT_EQ(sum(big, -big, 1, 0), T(1)) << "X meets Y before Z";
    EXPECT_EQ(sum(1, big, -big, 0), T(0)) << "X meets Y before Z";
}

TYPED_TEST(VectorTimesTransformation, A_point_may_be_the_target)
{
    using T = TypeParam;
    using V3 = C3DVector3Tpl<T>;
    auto const m = this->Counting();
    V3 v(2, 3, -5);
    EXPECT_EQ(&v.Mul(v, m), &v);
    EXPECT_TRUE(Same(NumbersOf(v), {T(29), T(11), T(-44)}));
    V3 withZero(2, 0, -5);
    withZero.Mul(withZero, m);
    EXPECT_TRUE(Same(NumbersOf(withZero), {T(8), T(-22), T(-38)}));
}

TYPED_TEST(VectorTimesTransformation, Four_components_go_through_all_of_the_matrix_both_ways)
{
    using T = TypeParam;
    using V4 = C3DVector4Tpl<T>;
    auto const m = this->Counting();
    V4 const v(2, 3, -5, 7);
    V4 row;
    EXPECT_EQ(&row.Mul(v, m), &row);
    EXPECT_TRUE(Same(NumbersOf(row),
                     NumbersOf(V4(4 + 21 - 5 + 63, -2 + 33 - 30 + 70, 6 - 6 - 40 - 28, 100 + 120 - 150 + 7000))));
    V4 column;
    EXPECT_EQ(&column.Mul(m, v), &column);
    EXPECT_TRUE(Same(NumbersOf(column),
                     NumbersOf(V4(4 - 3 - 15 + 350, 14 + 33 + 10 + 280, 2 + 18 - 40 + 210, 18 + 30 + 20 + 7000))));
    V4 target = v;
    target.Mul(target, m);
    EXPECT_TRUE(Same(NumbersOf(target), NumbersOf(row)));
    target = v;
    target.Mul(m, target);
    EXPECT_TRUE(Same(NumbersOf(target), NumbersOf(column)));
}

TYPED_TEST(VectorTimesTransformation, Four_components_skip_nothing)
{
    using T = TypeParam;
    using V4 = C3DVector4Tpl<T>;
    for (int row = 0; row < 4; ++row)
    {
        auto m = this->Counting();
        m.SetRow(row, k_Infinity<T>, k_Infinity<T>, k_Infinity<T>, k_Infinity<T>);
        V4 v(1, 1, 1, 1);
        v.Set(row, T(0));
        V4 result;
        result.Mul(v, m);
        for (T const component : NumbersOf(result))
        {
            EXPECT_TRUE(std::isnan(component)) << row;
        }
        m = this->Counting();
        m.SetCol(row, k_Infinity<T>, k_Infinity<T>, k_Infinity<T>, k_Infinity<T>);
        result.Mul(m, v);
        for (T const component : NumbersOf(result))
        {
            EXPECT_TRUE(std::isnan(component)) << row;
        }
    }
}

TYPED_TEST(VectorTimesTransformation, A_product_of_matrices_acts_as_one_after_the_other)
{
    using T = TypeParam;
    using V3 = C3DVector3Tpl<T>;
    Random random(51);
    double const limit = std::is_same_v<T, double> ? 1e-13 : 1e-4;
    for (int i = 0; i < 300; ++i)
    {
        auto a = RandomMatrix<C3DXfoMatTpl<T>>(random, T(2));
        auto b = RandomMatrix<C3DXfoMatTpl<T>>(random, T(2));
        a.SetCol(3, 0, 0, 0, 1);
        b.SetCol(3, 0, 0, 0, 1);
        V3 const v(random.Uniform<T>(-2, 2), random.Uniform<T>(-2, 2), random.Uniform<T>(-2, 2));
        V3 one;
        V3 both;
        one.Mul(v, a);
        one.Mul(one, b);
        both.Mul(v, C3DXfoMatTpl<T>().Mul(a, b));
        for (int c = 0; c < 3; ++c)
        {
            EXPECT_NEAR(one.Get(c), both.Get(c), limit);
        }
    }
}

} // namespace
