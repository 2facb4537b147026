#include "matrix/fixed_matrices.h"

#include <type_traits>

using namespace test_support;

namespace
{

template <typename T>
class Matrix33 : public testing::Test
{
};
TYPED_TEST_SUITE(Matrix33, Scalars);

TYPED_TEST(Matrix33, Default_constructor_clears_the_elements)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    ConstructedOver<M> m(0xAB);
    EXPECT_TRUE(SameBits(m.Get(), M(0, 0, 0, 0, 0, 0, 0, 0, 0)));
}

TYPED_TEST(Matrix33, Constructor_without_initialisation_writes_nothing)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    ConstructedOver<M> m(0xAB, C3DInitRequest_DoNotInitialize{});
    for (std::size_t i = 0; i < sizeof(M); ++i)
    {
        EXPECT_EQ(m.GetByte(i), 0xAB) << i;
    }
}

TYPED_TEST(Matrix33, Scalars_fill_it_row_by_row)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const constructed(1, 2, 3, 4, 5, 6, 7, 8, 9);
    M set;
    EXPECT_EQ(&set.Set(1, 2, 3, 4, 5, 6, 7, 8, 9), &set);
    for (int i = 0; i < 9; ++i)
    {
        EXPECT_EQ(constructed.Get(i / 3, i % 3), i + 1);
        EXPECT_EQ(constructed.GetArray()[i], i + 1);
        EXPECT_EQ(set.Get(i / 3, i % 3), i + 1);
    }
}

TYPED_TEST(Matrix33, Holds_nine_scalars_and_nothing_else)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    static_assert(sizeof(M) == 9 * sizeof(TypeParam));
    static_assert(std::is_trivially_copyable_v<M> && std::is_standard_layout_v<M> && !std::is_polymorphic_v<M>);
    M m;
    EXPECT_EQ(static_cast<void *>(m.GetArray()), static_cast<void *>(&m));
    EXPECT_EQ(m.GetDynamicMemSize(), 0U);
    static_assert(std::is_same_v<decltype(m.GetDynamicMemSize()), std::uint64_t>);
}

TYPED_TEST(Matrix33, Vectors_become_the_columns_for_0_and_the_rows_for_anything_else)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    C3DVector3Tpl<TypeParam> const a(1, 2, 3);
    C3DVector3Tpl<TypeParam> const b(4, 5, 6);
    C3DVector3Tpl<TypeParam> const c(7, 8, 9);
    EXPECT_TRUE(SameBits(M(a, b, c, 0), M(1, 4, 7, 2, 5, 8, 3, 6, 9)));
    EXPECT_TRUE(SameBits(M(a, b, c, 1), CountingMatrix<M>()));
    EXPECT_TRUE(SameBits(M(a, b, c, -1), CountingMatrix<M>()));
    EXPECT_TRUE(SameBits(M(a, b, c, 2), CountingMatrix<M>()));
}

TYPED_TEST(Matrix33, Takes_a_float_array)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    float array[3][3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 0.1F}};
    M expected = CountingMatrix<M>();
    expected.Set(2, 2, static_cast<TypeParam>(0.1F));
    EXPECT_TRUE(SameBits(M(array), expected));
}

TYPED_TEST(Matrix33, Assignment_from_a_float_array_takes_the_upper_left_block)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    float array[4][4] = {{1, 2, 3, 10}, {4, 5, 6, 11}, {7, 8, 9, 12}, {13, 14, 15, 16}};
    M m;
    EXPECT_EQ(&(m = array), &m);
    EXPECT_TRUE(SameBits(m, CountingMatrix<M>()));
}

TYPED_TEST(Matrix33, Is_copied_element_by_element)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const source(1, -TypeParam(0), k_Nan<TypeParam>, k_Infinity<TypeParam>, 5, 6, 7, 8, 9);
    M const copy(source);
    M assigned;
    M set;
    EXPECT_EQ(&(assigned = source), &assigned);
    EXPECT_EQ(&set.Set(source), &set);
    EXPECT_TRUE(SameBits(copy, source));
    EXPECT_TRUE(SameBits(assigned, source));
    EXPECT_TRUE(SameBits(set, source));

    TypeParam array[3][3] = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    EXPECT_EQ(&set.Set(array), &set);
    EXPECT_TRUE(SameBits(set, CountingMatrix<M>()));
}

TYPED_TEST(Matrix33, SetNull_and_SetIdentity_write_every_element)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M m = CountingMatrix<M>();
    EXPECT_EQ(&m.SetNull(), &m);
    EXPECT_TRUE(SameBits(m, M(0, 0, 0, 0, 0, 0, 0, 0, 0)));
    m = CountingMatrix<M>();
    EXPECT_EQ(&m.SetIdentity(), &m);
    EXPECT_TRUE(SameBits(m, M(1, 0, 0, 0, 1, 0, 0, 0, 1)));
}

TYPED_TEST(Matrix33, Writes_one_row)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    for (int r = 0; r < 3; ++r)
    {
        M scalars = CountingMatrix<M>();
        M vector = scalars;
        EXPECT_EQ(&scalars.SetRow(r, -1, -2, -3), &scalars);
        EXPECT_EQ(&vector.SetRow(r, C3DVector3Tpl<TypeParam>(-1, -2, -3)), &vector);
        for (int i = 0; i < 9; ++i)
        {
            TypeParam const expected = i / 3 == r ? TypeParam(-1 - i % 3) : TypeParam(i + 1);
            EXPECT_EQ(scalars.GetArray()[i], expected);
            EXPECT_EQ(vector.GetArray()[i], expected);
        }
    }
}

TYPED_TEST(Matrix33, Writes_one_column)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    for (int c = 0; c < 3; ++c)
    {
        M scalars = CountingMatrix<M>();
        M vector = scalars;
        EXPECT_EQ(&scalars.SetCol(c, -1, -2, -3), &scalars);
        EXPECT_EQ(&vector.SetCol(c, C3DVector3Tpl<TypeParam>(-1, -2, -3)), &vector);
        for (int i = 0; i < 9; ++i)
        {
            TypeParam const expected = i % 3 == c ? TypeParam(-1 - i / 3) : TypeParam(i + 1);
            EXPECT_EQ(scalars.GetArray()[i], expected);
            EXPECT_EQ(vector.GetArray()[i], expected);
        }
    }
}

TYPED_TEST(Matrix33, Writes_one_element)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    for (int written = 0; written < 9; ++written)
    {
        M m = CountingMatrix<M>();
        EXPECT_EQ(&m.Set(written / 3, written % 3, TypeParam(-1)), &m);
        for (int i = 0; i < 9; ++i)
        {
            EXPECT_EQ(m.Get(i / 3, i % 3), i == written ? TypeParam(-1) : TypeParam(i + 1));
        }
    }
}

TYPED_TEST(Matrix33, Minor_leaves_out_a_row_and_a_column_and_keeps_the_order)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    auto const whole = CountingMatrix<C3DMatrix44Tpl<TypeParam>>();
    EXPECT_TRUE(SameBits(M(3, 3, whole), M(1, 2, 3, 5, 6, 7, 9, 10, 11)));
    EXPECT_TRUE(SameBits(M(0, 0, whole), M(6, 7, 8, 10, 11, 12, 14, 15, 16)));
    EXPECT_TRUE(SameBits(M(1, 2, whole), M(1, 2, 4, 9, 10, 12, 13, 14, 16)));
    EXPECT_TRUE(SameBits(M(2, 1, whole), M(1, 3, 4, 5, 7, 8, 13, 15, 16)));
    EXPECT_TRUE(SameBits(M(0, 3, whole), M(5, 6, 7, 9, 10, 11, 13, 14, 15)));
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            M set;
            EXPECT_EQ(&set.Set(r, c, whole), &set);
            EXPECT_TRUE(SameBits(set, M(r, c, whole)));
        }
    }
}

TYPED_TEST(Matrix33, Minor_takes_an_index_out_of_range_for_3)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    auto const whole = CountingMatrix<C3DMatrix44Tpl<TypeParam>>();
    for (int const outside : {-1, 4, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
    {
        EXPECT_TRUE(SameBits(M(outside, 1, whole), M(3, 1, whole)));
        EXPECT_TRUE(SameBits(M(1, outside, whole), M(1, 3, whole)));
        EXPECT_TRUE(SameBits(M().Set(outside, outside, whole), M(3, 3, whole)));
    }
}

} // namespace
