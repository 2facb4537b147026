#include "math/platform/variant.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <memory>
#include <vector>

namespace
{

constexpr long longest = std::numeric_limits<long>::max();
constexpr long lowest = std::numeric_limits<long>::min();

struct DestroyArray
{
    void operator()(SAFEARRAY * array) const { SafeArrayDestroy(array); }
};
using ArrayPointer = std::unique_ptr<SAFEARRAY, DestroyArray>;

ArrayPointer MakeArray(unsigned short type, std::vector<SAFEARRAYBOUND> const & bounds)
{
    return ArrayPointer(SafeArrayCreate(type, static_cast<unsigned int>(bounds.size()), bounds.data()));
}

KVVARIANT MakeNumber(double number)
{
    KVVARIANT variant{};
    variant.vt = VT_R8;
    variant.dblVal = number;
    return variant;
}

TEST(Variant, Has_the_layout_of_the_platform)
{
    EXPECT_EQ(sizeof(KVVARIANT), 16U);
    EXPECT_EQ(offsetof(KVVARIANT, vt), 0U);
    EXPECT_EQ(offsetof(KVVARIANT, dblVal), 8U);
    EXPECT_EQ(offsetof(KVVARIANT, parray), 8U);
    EXPECT_EQ(offsetof(KVVARIANT, lVal), 8U);
}

TEST(Variant, Types_have_their_numbers)
{
    EXPECT_EQ(VT_EMPTY, 0);
    EXPECT_EQ(VT_I2, 2);
    EXPECT_EQ(VT_I4, 3);
    EXPECT_EQ(VT_R4, 4);
    EXPECT_EQ(VT_R8, 5);
    EXPECT_EQ(VT_BOOL, 11);
    EXPECT_EQ(VT_VARIANT, 12);
    EXPECT_EQ(VT_I1, 16);
    EXPECT_EQ(VT_UI1, 17);
    EXPECT_EQ(VT_UI2, 18);
    EXPECT_EQ(VT_UI4, 19);
    EXPECT_EQ(VT_I8, 20);
    EXPECT_EQ(VT_UI8, 21);
    EXPECT_EQ(VT_ARRAY | VT_VARIANT, 8204);
    EXPECT_EQ(VT_BYREF, 0x4000);
}

TEST(SafeArray, Holds_variants)
{
    auto const array = MakeArray(VT_VARIANT, {{3, 0}});
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(SafeArrayGetDim(array.get()), 1U);
    for (long i = 0; i < 3; ++i)
    {
        KVVARIANT const number = MakeNumber(1.5 * static_cast<double>(i));
        EXPECT_EQ(SafeArrayPutElement(array.get(), &i, &number), S_OK);
    }
    for (long i = 0; i < 3; ++i)
    {
        KVVARIANT number{};
        EXPECT_EQ(SafeArrayGetElement(array.get(), &i, &number), S_OK);
        EXPECT_EQ(number.vt, VT_R8);
        EXPECT_EQ(number.dblVal, 1.5 * static_cast<double>(i));
    }
}

TEST(SafeArray, Starts_with_empty_variants_and_zeros)
{
    auto const array = MakeArray(VT_VARIANT, {{1, 0}});
    ASSERT_NE(array, nullptr);
    long const index = 0;
    KVVARIANT variant = MakeNumber(1);
    EXPECT_EQ(SafeArrayGetElement(array.get(), &index, &variant), S_OK);
    EXPECT_EQ(variant.vt, VT_EMPTY);
    EXPECT_EQ(variant.ullVal, 0U);
}

TEST(SafeArray, Copies_as_many_bytes_as_the_element_has)
{
    struct SizedType
    {
        unsigned short type;
        std::size_t size;
    };
    for (auto const [type, size] : std::initializer_list<SizedType>{{VT_I1, 1},
                                                                    {VT_UI1, 1},
                                                                    {VT_I2, 2},
                                                                    {VT_UI2, 2},
                                                                    {VT_BOOL, 2},
                                                                    {VT_I4, 4},
                                                                    {VT_UI4, 4},
                                                                    {VT_R4, 4},
                                                                    {VT_I8, 8},
                                                                    {VT_UI8, 8},
                                                                    {VT_R8, 8},
                                                                    {VT_VARIANT, 16}})
    {
        auto const array = MakeArray(type, {{2, 0}});
        ASSERT_NE(array, nullptr) << type;
        std::array<unsigned char, 20> value{};
        value.fill(0x11);
        long index = 0;
        EXPECT_EQ(SafeArrayPutElement(array.get(), &index, value.data()), S_OK);
        value.fill(0x22);
        EXPECT_EQ(SafeArrayGetElement(array.get(), &index, value.data()), S_OK);
        for (std::size_t i = 0; i < value.size(); ++i)
        {
            EXPECT_EQ(value[i], i < size ? 0x11 : 0x22) << type << " at " << i;
        }
        index = 1;
        EXPECT_EQ(SafeArrayGetElement(array.get(), &index, value.data()), S_OK);
        for (std::size_t i = 0; i < size; ++i)
        {
            EXPECT_EQ(value[i], 0) << "the neighbour of type " << type;
        }
    }
}

TEST(SafeArray, Gives_its_bounds)
{
    auto const array = MakeArray(VT_I4, {{3, 5}, {4, -2}, {0, 7}, {0, lowest + 1}});
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(SafeArrayGetDim(array.get()), 4U);
    std::array<std::array<long, 2>, 4> const expected{{{5, 7}, {-2, 1}, {7, 6}, {lowest + 1, lowest}}};
    for (unsigned int dimension = 1; dimension <= 4; ++dimension)
    {
        long bound = 42;
        EXPECT_EQ(SafeArrayGetLBound(array.get(), dimension, &bound), S_OK);
        EXPECT_EQ(bound, expected[dimension - 1][0]);
        EXPECT_EQ(SafeArrayGetUBound(array.get(), dimension, &bound), S_OK);
        EXPECT_EQ(bound, expected[dimension - 1][1]);
    }
}

TEST(SafeArray, Dimensions_count_from_1)
{
    auto const array = MakeArray(VT_I4, {{3, 5}});
    ASSERT_NE(array, nullptr);
    for (unsigned int const dimension : {0U, 2U, std::numeric_limits<unsigned int>::max()})
    {
        long bound = 42;
        EXPECT_EQ(SafeArrayGetLBound(array.get(), dimension, &bound), DISP_E_BADINDEX);
        EXPECT_EQ(SafeArrayGetUBound(array.get(), dimension, &bound), DISP_E_BADINDEX);
        EXPECT_EQ(bound, 42);
    }
    EXPECT_LT(DISP_E_BADINDEX, 0);
}

TEST(SafeArray, An_index_outside_the_bounds_is_refused)
{
    auto const array = MakeArray(VT_R8, {{3, 5}});
    ASSERT_NE(array, nullptr);
    for (long const index : {4L, 8L, 0L, -1L, lowest, longest})
    {
        double number = 42;
        EXPECT_EQ(SafeArrayPutElement(array.get(), &index, &number), DISP_E_BADINDEX) << index;
        EXPECT_EQ(SafeArrayGetElement(array.get(), &index, &number), DISP_E_BADINDEX) << index;
        EXPECT_EQ(number, 42);
    }
    for (long const index : {5L, 7L})
    {
        double const number = 1;
        EXPECT_EQ(SafeArrayPutElement(array.get(), &index, &number), S_OK) << index;
    }
}

TEST(SafeArray, Bounds_reach_both_ends_of_long)
{
    for (auto const & [low, high] : {std::pair{lowest, lowest + 1}, std::pair{longest - 1, longest}})
    {
        auto const array = MakeArray(VT_UI1, {{2, low}});
        ASSERT_NE(array, nullptr);
        long bound = 0;
        EXPECT_EQ(SafeArrayGetUBound(array.get(), 1, &bound), S_OK);
        EXPECT_EQ(bound, high);
        unsigned char const byte = 9;
        EXPECT_EQ(SafeArrayPutElement(array.get(), &high, &byte), S_OK);
        long const opposite = low == lowest ? longest : lowest;
        EXPECT_EQ(SafeArrayPutElement(array.get(), &opposite, &byte), DISP_E_BADINDEX);
    }
}

TEST(SafeArray, Every_element_of_several_dimensions_has_its_own_place)
{
    auto const array = MakeArray(VT_I4, {{2, 1}, {3, -1}, {4, 10}});
    ASSERT_NE(array, nullptr);
    auto const for_each = [](auto const & visit)
    {
        for (long i = 1; i <= 2; ++i)
        {
            for (long j = -1; j <= 1; ++j)
            {
                for (long k = 10; k <= 13; ++k)
                {
                    visit(std::array<long, 3>{i, j, k}, static_cast<std::int32_t>(i * 10000 + j * 100 + k));
                }
            }
        }
    };
    for_each([&](std::array<long, 3> const & indices, std::int32_t value)
             { EXPECT_EQ(SafeArrayPutElement(array.get(), indices.data(), &value), S_OK); });
    for_each(
        [&](std::array<long, 3> const & indices, std::int32_t value)
        {
            std::int32_t found = 0;
            EXPECT_EQ(SafeArrayGetElement(array.get(), indices.data(), &found), S_OK);
            EXPECT_EQ(found, value);
        });
    std::int32_t found = 42;
    for (auto const & indices : {std::array<long, 3>{0, 0, 10}, {1, 2, 10}, {1, 0, 14}, {3, 0, 10}})
    {
        EXPECT_EQ(SafeArrayGetElement(array.get(), indices.data(), &found), DISP_E_BADINDEX);
    }
    EXPECT_EQ(found, 42);
}

TEST(SafeArray, An_empty_dimension_makes_an_array_without_elements)
{
    auto const array = MakeArray(VT_R8, {{5, 0}, {0, 0}});
    ASSERT_NE(array, nullptr);
    std::array<long, 2> const indices{0, 0};
    double number = 42;
    EXPECT_EQ(SafeArrayGetElement(array.get(), indices.data(), &number), DISP_E_BADINDEX);
    EXPECT_EQ(SafeArrayPutElement(array.get(), indices.data(), &number), DISP_E_BADINDEX);
    unsigned long const most = std::numeric_limits<unsigned long>::max();
    EXPECT_NE(MakeArray(VT_R8, {{most, lowest}, {0, 0}}), nullptr) << "nothing to count";
}

TEST(SafeArray, Is_not_made_of_unknown_types)
{
    for (unsigned int type = 0; type < 0x10000; ++type)
    {
        auto const code = static_cast<unsigned short>(type);
        bool const known = (type >= 2 && type <= 5) || type == 11 || type == 12 || (type >= 16 && type <= 21);
        EXPECT_EQ(MakeArray(code, {{1, 0}}) != nullptr, known) << type;
    }
}

TEST(SafeArray, Has_1_to_64_dimensions)
{
    std::vector<SAFEARRAYBOUND> const bounds(65, SAFEARRAYBOUND{1, 0});
    for (unsigned int const dimensions : {1U, 64U})
    {
        ArrayPointer const array(SafeArrayCreate(VT_I4, dimensions, bounds.data()));
        EXPECT_EQ(SafeArrayGetDim(array.get()), dimensions);
    }
    for (unsigned int const dimensions : {0U, 65U, std::numeric_limits<unsigned int>::max()})
    {
        EXPECT_EQ(SafeArrayCreate(VT_I4, dimensions, bounds.data()), nullptr);
    }
    EXPECT_EQ(SafeArrayCreate(VT_I4, 1, nullptr), nullptr);
}

TEST(SafeArray, Is_not_made_where_an_index_or_the_size_cannot_be_counted)
{
    unsigned long const most = std::numeric_limits<unsigned long>::max();
    EXPECT_EQ(MakeArray(VT_UI1, {{2, longest}}), nullptr) << "the highest index is no long";
    EXPECT_NE(MakeArray(VT_UI1, {{1, longest}}), nullptr);
    EXPECT_EQ(MakeArray(VT_UI1, {{0, lowest}}), nullptr) << "one below the lowest index is no long";
    EXPECT_EQ(MakeArray(VT_UI1, {{most, 0}}), nullptr);
    EXPECT_EQ(MakeArray(VT_UI1, {{most, lowest}}), nullptr) << "more elements than any object has";
    EXPECT_EQ(MakeArray(VT_R8, {{most / 2, 0}}), nullptr);
    // The product of the counts is 0 modulo 2^64 and modulo 2^32.
    EXPECT_EQ(MakeArray(VT_R8, {{1UL << 16, 0}, {1UL << 16, 0}, {1UL << 16, 0}, {1UL << 16, 0}}), nullptr);
    EXPECT_EQ(MakeArray(VT_VARIANT, {{most / 16 + 2, lowest}}), nullptr) << "16 bytes short of wrapping";
}

TEST(SafeArray, Null_arguments_are_refused)
{
    auto const array = MakeArray(VT_R8, {{1, 0}});
    ASSERT_NE(array, nullptr);
    long index = 0;
    double number = 42;
    EXPECT_EQ(SafeArrayGetDim(nullptr), 0U);
    EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
    EXPECT_EQ(SafeArrayGetLBound(nullptr, 1, &index), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetUBound(nullptr, 1, &index), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetElement(nullptr, &index, &number), E_INVALIDARG);
    EXPECT_EQ(SafeArrayPutElement(nullptr, &index, &number), E_INVALIDARG);
    EXPECT_EQ(SafeArrayGetLBound(array.get(), 1, nullptr), E_POINTER);
    EXPECT_EQ(SafeArrayGetUBound(array.get(), 1, nullptr), E_POINTER);
    EXPECT_EQ(SafeArrayGetElement(array.get(), nullptr, &number), E_POINTER);
    EXPECT_EQ(SafeArrayGetElement(array.get(), &index, nullptr), E_POINTER);
    EXPECT_EQ(SafeArrayPutElement(array.get(), nullptr, &number), E_POINTER);
    EXPECT_EQ(SafeArrayPutElement(array.get(), &index, nullptr), E_POINTER);
    EXPECT_EQ(index, 0);
    EXPECT_EQ(number, 42);
}

TEST(SafeArray, Takes_no_variant_that_owns_an_array)
{
    auto const array = MakeArray(VT_VARIANT, {{1, 0}});
    auto const inner = MakeArray(VT_R8, {{1, 0}});
    ASSERT_NE(array, nullptr);
    long const index = 0;
    KVVARIANT variant = MakeNumber(7);
    EXPECT_EQ(SafeArrayPutElement(array.get(), &index, &variant), S_OK);
    variant.vt = VT_ARRAY | VT_R8;
    variant.parray = inner.get();
    EXPECT_EQ(SafeArrayPutElement(array.get(), &index, &variant), E_NOTIMPL);
    KVVARIANT found{};
    EXPECT_EQ(SafeArrayGetElement(array.get(), &index, &found), S_OK);
    EXPECT_EQ(found.vt, VT_R8);
    EXPECT_EQ(found.dblVal, 7);
    variant.vt = VT_BYREF | VT_ARRAY | VT_R8;
    EXPECT_EQ(SafeArrayPutElement(array.get(), &index, &variant), S_OK) << "a reference owns nothing";
}

TEST(SafeArray, Elements_of_numbers_are_no_variants)
{
    auto const array = MakeArray(VT_UI2, {{1, 0}});
    ASSERT_NE(array, nullptr);
    long const index = 0;
    std::uint16_t const number = VT_ARRAY; // would be refused as the type of a variant
    EXPECT_EQ(SafeArrayPutElement(array.get(), &index, &number), S_OK);
}

} // namespace
