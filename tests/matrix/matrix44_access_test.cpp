#include "matrix/fixed_matrices.h"

#include <type_traits>

using namespace test_support;

namespace
{

template <typename T>
class Matrix44 : public testing::Test
{
};
TYPED_TEST_SUITE(Matrix44, Scalars);

TYPED_TEST(Matrix44, Default_constructor_clears_the_elements)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    ConstructedOver<M> m(0xAB);
    EXPECT_TRUE(SameBits(m.Get(), M(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)));
}

TYPED_TEST(Matrix44, Constructor_without_initialisation_writes_nothing)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    ConstructedOver<M> m(0xAB, C3DInitRequest_DoNotInitialize{});
    for (std::size_t i = 0; i < sizeof(M); ++i)
    {
        EXPECT_EQ(m.GetByte(i), 0xAB) << i;
    }
}

TYPED_TEST(Matrix44, Scalars_fill_it_row_by_row)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const constructed(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    M set;
    EXPECT_EQ(&set.Set(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16), &set);
    for (int i = 0; i < 16; ++i)
    {
        EXPECT_EQ(constructed.Get(i / 4, i % 4), i + 1);
        EXPECT_EQ(constructed.GetArray()[i], i + 1);
        EXPECT_EQ(set.Get(i / 4, i % 4), i + 1);
    }
}

TYPED_TEST(Matrix44, Holds_sixteen_scalars_and_one_byte_behind_them)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    static_assert(sizeof(M) == 17 * sizeof(TypeParam));
    static_assert(std::is_trivially_copyable_v<M> && std::is_standard_layout_v<M> && !std::is_polymorphic_v<M>);
    M m;
    EXPECT_EQ(static_cast<void *>(m.GetArray()), static_cast<void *>(&m));
    m.SetMaskInfo(0x5A);
    EXPECT_EQ(reinterpret_cast<unsigned char const *>(m.GetArray() + 16)[0], 0x5A);
    EXPECT_EQ(m.GetDynamicMemSize(), 0U);
    static_assert(std::is_same_v<decltype(m.GetDynamicMemSize()), std::uint64_t>);
}

TYPED_TEST(Matrix44, Vectors_become_the_columns_for_0_and_the_rows_for_anything_else)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    C3DVector4Tpl<TypeParam> const a(1, 2, 3, 4);
    C3DVector4Tpl<TypeParam> const b(5, 6, 7, 8);
    C3DVector4Tpl<TypeParam> const c(9, 10, 11, 12);
    C3DVector4Tpl<TypeParam> const d(13, 14, 15, 16);
    EXPECT_TRUE(SameBits(M(a, b, c, d, 0), M(1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15, 4, 8, 12, 16)));
    EXPECT_TRUE(SameBits(M(a, b, c, d, 1), CountingMatrix<M>()));
    EXPECT_TRUE(SameBits(M(a, b, c, d, -1), CountingMatrix<M>()));
}

TYPED_TEST(Matrix44, Takes_a_float_array)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    float array[4][4] = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 0.1F}};
    M const expected = CountingMatrix<M>().Set(3, 3, static_cast<TypeParam>(0.1F));
    EXPECT_TRUE(SameBits(M(array), expected));
    M m;
    EXPECT_EQ(&(m = array), &m);
    EXPECT_TRUE(SameBits(m, expected));
}

TYPED_TEST(Matrix44, Is_copied_element_by_element)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M const source = CountingMatrix<M>().Set(1, 2, -TypeParam(0)).Set(3, 3, k_Nan<TypeParam>);
    M const copy(source);
    M assigned;
    M set;
    EXPECT_EQ(&(assigned = source), &assigned);
    EXPECT_EQ(&set.Set(source), &set);
    EXPECT_TRUE(SameBits(copy, source));
    EXPECT_TRUE(SameBits(assigned, source));
    EXPECT_TRUE(SameBits(set, source));
}

TYPED_TEST(Matrix44, Takes_sixteen_scalars_from_either_form_of_array)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    TypeParam const flat[16] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    TypeParam const rows[4][4] = {{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16}};
    M m;
    EXPECT_EQ(&m.Set(flat), &m);
    EXPECT_TRUE(SameBits(m, CountingMatrix<M>()));
    m.SetNull();
    EXPECT_EQ(&m.Set(rows), &m);
    EXPECT_TRUE(SameBits(m, CountingMatrix<M>()));
    EXPECT_TRUE(SameBits(m.Set(m.GetArray()), CountingMatrix<M>()));
}

TYPED_TEST(Matrix44, SetNull_and_SetIdentity_write_every_element)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    M m = CountingMatrix<M>();
    EXPECT_EQ(&m.SetNull(), &m);
    EXPECT_TRUE(SameBits(m, M(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)));
    m = CountingMatrix<M>();
    EXPECT_EQ(&m.SetIdentity(), &m);
    EXPECT_TRUE(SameBits(m, M(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1)));
}

TYPED_TEST(Matrix44, Writes_one_row)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    for (int r = 0; r < 4; ++r)
    {
        M scalars = CountingMatrix<M>();
        M vector = scalars;
        EXPECT_EQ(&scalars.SetRow(r, -1, -2, -3, -4), &scalars);
        EXPECT_EQ(&vector.SetRow(r, C3DVector4Tpl<TypeParam>(-1, -2, -3, -4)), &vector);
        for (int i = 0; i < 16; ++i)
        {
            TypeParam const expected = i / 4 == r ? TypeParam(-1 - i % 4) : TypeParam(i + 1);
            EXPECT_EQ(scalars.GetArray()[i], expected);
            EXPECT_EQ(vector.GetArray()[i], expected);
        }
    }
}

TYPED_TEST(Matrix44, Writes_one_column)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    for (int c = 0; c < 4; ++c)
    {
        M scalars = CountingMatrix<M>();
        M vector = scalars;
        EXPECT_EQ(&scalars.SetCol(c, -1, -2, -3, -4), &scalars);
        EXPECT_EQ(&vector.SetCol(c, C3DVector4Tpl<TypeParam>(-1, -2, -3, -4)), &vector);
        for (int i = 0; i < 16; ++i)
        {
            TypeParam const expected = i % 4 == c ? TypeParam(-1 - i / 4) : TypeParam(i + 1);
            EXPECT_EQ(scalars.GetArray()[i], expected);
            EXPECT_EQ(vector.GetArray()[i], expected);
        }
    }
}

TYPED_TEST(Matrix44, Writes_one_element)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    for (int written = 0; written < 16; ++written)
    {
        M m = CountingMatrix<M>();
        EXPECT_EQ(&m.Set(written / 4, written % 4, TypeParam(-1)), &m);
        for (int i = 0; i < 16; ++i)
        {
            EXPECT_EQ(m.Get(i / 4, i % 4), i == written ? TypeParam(-1) : TypeParam(i + 1));
        }
    }
}

TYPED_TEST(Matrix44, Is_converted_element_by_element)
{
    using M = C3DMatrix44Tpl<TypeParam>;
    auto const narrow = CountingMatrix<C3DMatrix44Tpl<float>>().Set(2, 1, 0.1F);
    auto const wide = CountingMatrix<C3DMatrix44Tpl<double>>().Set(2, 1, 0.1);
    M m;
    EXPECT_EQ(&m.SetFromFloat(narrow), &m);
    EXPECT_TRUE(SameBits(m, CountingMatrix<M>().Set(2, 1, static_cast<TypeParam>(0.1F))));
    m.SetNull();
    EXPECT_EQ(&m.SetFromDouble(wide), &m);
    EXPECT_TRUE(SameBits(m, CountingMatrix<M>().Set(2, 1, static_cast<TypeParam>(0.1))));
}

} // namespace
