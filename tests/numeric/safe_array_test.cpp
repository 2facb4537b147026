#include "math/safe_array.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace
{

using Vector = C3DVector3Tpl<double>;

struct ArrayDeleter
{
    void operator()(SAFEARRAY * array) const { SafeArrayDestroy(array); }
};
using OwnedArray = std::unique_ptr<SAFEARRAY, ArrayDeleter>;

OwnedArray MakeArray(unsigned short type, unsigned long count, long lower)
{
    SAFEARRAYBOUND const bound{count, lower};
    return OwnedArray(SafeArrayCreate(type, 1, &bound));
}

KVVARIANT MakeDouble(double value)
{
    KVVARIANT variant{};
    variant.vt = VT_R8;
    variant.dblVal = value;
    return variant;
}

KVVARIANT MakeVariant(OwnedArray const & array, unsigned short type = VT_ARRAY | VT_VARIANT)
{
    KVVARIANT variant{};
    variant.vt = type;
    variant.parray = array.get();
    return variant;
}

/// An array of `count` variants with the values 10, 20, 30 and so on.
OwnedArray MakeTens(unsigned long count, long lower)
{
    OwnedArray array = MakeArray(VT_VARIANT, count, lower);
    for (long i = 0; i < static_cast<long>(count); ++i)
    {
        KVVARIANT const element = MakeDouble(10.0 * static_cast<double>(i + 1));
        long const index = lower + i;
        EXPECT_EQ(SafeArrayPutElement(array.get(), &index, &element), S_OK);
    }
    return array;
}

} // namespace

TEST(SafeArrayFromVector, Holds_three_double_variants_from_index_zero)
{
    Vector vector(1.5, -2.5, std::numeric_limits<double>::infinity());
    KVVARIANT result{};
    ASSERT_EQ(F3DGetSafeArrayFromC3DVector3(vector, &result), S_OK);
    OwnedArray const owner(result.parray);

    EXPECT_EQ(result.vt, 8204);
    EXPECT_EQ(SafeArrayGetDim(result.parray), 1U);
    long lower = -1;
    long upper = -1;
    EXPECT_EQ(SafeArrayGetLBound(result.parray, 1, &lower), S_OK);
    EXPECT_EQ(SafeArrayGetUBound(result.parray, 1, &upper), S_OK);
    EXPECT_EQ(lower, 0);
    EXPECT_EQ(upper, 2);
    for (long i = 0; i < 3; ++i)
    {
        KVVARIANT element{};
        ASSERT_EQ(SafeArrayGetElement(result.parray, &i, &element), S_OK);
        EXPECT_EQ(element.vt, VT_R8);
        EXPECT_EQ(element.dblVal, vector.Get(static_cast<int>(i)));
    }
}

TEST(SafeArrayFromVector, Leaves_the_reserved_words_of_the_result)
{
    Vector vector(1, 2, 3);
    KVVARIANT result{};
    result.wReserved1 = 11;
    result.wReserved2 = 22;
    result.wReserved3 = 33;
    ASSERT_EQ(F3DGetSafeArrayFromC3DVector3(vector, &result), S_OK);
    OwnedArray const owner(result.parray);
    EXPECT_EQ(result.wReserved1, 11);
    EXPECT_EQ(result.wReserved2, 22);
    EXPECT_EQ(result.wReserved3, 33);
}

TEST(SafeArrayFromVector, Refuses_a_null_result)
{
    Vector vector(1, 2, 3);
    EXPECT_EQ(F3DGetSafeArrayFromC3DVector3(vector, nullptr), E_POINTER);
}

TEST(VectorFromSafeArray, Reads_back_what_was_stored)
{
    Vector stored(1.25, -0.0, 1e-320);
    KVVARIANT variant{};
    ASSERT_EQ(F3DGetSafeArrayFromC3DVector3(stored, &variant), S_OK);
    OwnedArray const owner(variant.parray);
    Vector read(9, 9, 9);
    ASSERT_EQ(F3DGetC3DVector3FromSafeArray(&variant, read), S_OK);
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(read.Get(i)), std::bit_cast<std::uint64_t>(stored.Get(i)));
    }
}

TEST(VectorFromSafeArray, Reads_from_any_lower_bound)
{
    long const largest = std::numeric_limits<long>::max();
    long const smallest = std::numeric_limits<long>::min();
    for (long const lower : std::vector<long>{5, 0, -1, -7, smallest, largest - 2})
    {
        OwnedArray const array = MakeTens(3, lower);
        ASSERT_NE(array, nullptr);
        KVVARIANT const variant = MakeVariant(array);
        Vector vector(0, 0, 0);
        EXPECT_EQ(F3DGetC3DVector3FromSafeArray(&variant, vector), S_OK) << lower;
        EXPECT_TRUE(vector == Vector(10, 20, 30)) << lower;
    }
}

TEST(VectorFromSafeArray, Refuses_other_numbers_of_elements)
{
    for (unsigned long const count : std::vector<unsigned long>{0, 1, 2, 4, 100})
    {
        OwnedArray const array = MakeTens(count, 5);
        ASSERT_NE(array, nullptr);
        KVVARIANT const variant = MakeVariant(array);
        Vector vector(7, 8, 9);
        EXPECT_EQ(F3DGetC3DVector3FromSafeArray(&variant, vector), E_INVALIDARG) << count;
        EXPECT_TRUE(vector == Vector(7, 8, 9));
    }
}

TEST(VectorFromSafeArray, Refuses_other_numbers_of_dimensions)
{
    SAFEARRAYBOUND const bounds[2] = {{3, 0}, {1, 0}};
    OwnedArray const array(SafeArrayCreate(VT_VARIANT, 2, bounds));
    ASSERT_NE(array, nullptr);
    KVVARIANT const variant = MakeVariant(array);
    Vector vector(7, 8, 9);
    EXPECT_EQ(F3DGetC3DVector3FromSafeArray(&variant, vector), E_INVALIDARG);
    EXPECT_TRUE(vector == Vector(7, 8, 9));
}

TEST(VectorFromSafeArray, Refuses_a_null_variant)
{
    Vector vector(7, 8, 9);
    EXPECT_EQ(F3DGetC3DVector3FromSafeArray(nullptr, vector), E_POINTER);
    EXPECT_TRUE(vector == Vector(7, 8, 9));
}

TEST(VectorFromSafeArray, Refuses_a_variant_that_holds_no_array)
{
    Vector vector(7, 8, 9);
    OwnedArray const array = MakeTens(3, 0);
    KVVARIANT variant = MakeVariant(array, VT_VARIANT);
    EXPECT_EQ(F3DGetC3DVector3FromSafeArray(&variant, vector), E_INVALIDARG);
    variant.vt = VT_ARRAY | VT_VARIANT;
    variant.parray = nullptr;
    EXPECT_EQ(F3DGetC3DVector3FromSafeArray(&variant, vector), E_INVALIDARG);
    EXPECT_TRUE(vector == Vector(7, 8, 9));
}

TEST(VectorFromSafeArray, Looks_at_the_array_bit_alone)
{
    OwnedArray const array = MakeTens(3, 0);
    for (int const type : {int{VT_ARRAY}, VT_ARRAY | VT_R8, VT_ARRAY | VT_I4, VT_ARRAY | VT_VARIANT | VT_BYREF, 0xFFFF})
    {
        KVVARIANT const variant = MakeVariant(array, static_cast<unsigned short>(type));
        Vector vector(0, 0, 0);
        EXPECT_EQ(F3DGetC3DVector3FromSafeArray(&variant, vector), S_OK) << type;
        EXPECT_TRUE(vector == Vector(10, 20, 30)) << type;
    }
}

TEST(VectorFromSafeArray, Takes_the_bits_of_integers_for_doubles)
{
    OwnedArray const array = MakeArray(VT_VARIANT, 3, 0);
    std::int64_t const bits[3] = {0x3FF0000000000000, 1, -1};
    for (long i = 0; i < 3; ++i)
    {
        KVVARIANT element{};
        element.vt = VT_I8;
        element.llVal = bits[i];
        ASSERT_EQ(SafeArrayPutElement(array.get(), &i, &element), S_OK);
    }
    KVVARIANT const variant = MakeVariant(array);
    Vector vector(7, 8, 9);
    EXPECT_EQ(F3DGetC3DVector3FromSafeArray(&variant, vector), S_OK);
    EXPECT_EQ(vector.X, 1.0);
    EXPECT_EQ(vector.Y, std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(std::bit_cast<std::int64_t>(vector.Z), -1);
}

TEST(VectorFromSafeArray, Gives_zeros_for_elements_too_short_to_hold_a_value)
{
    for (unsigned short const type : {VT_R8, VT_I4, VT_I2, VT_UI1})
    {
        OwnedArray const array = MakeArray(type, 3, 0);
        double const filled = -1.0e300;
        for (long i = 0; i < 3; ++i)
        {
            ASSERT_EQ(SafeArrayPutElement(array.get(), &i, &filled), S_OK);
        }
        KVVARIANT const variant = MakeVariant(array, static_cast<unsigned short>(VT_ARRAY | type));
        Vector vector(7, 8, 9);
        EXPECT_EQ(F3DGetC3DVector3FromSafeArray(&variant, vector), S_OK) << type;
        EXPECT_TRUE(vector == Vector(0, 0, 0)) << type;
    }
}
