#include "math/numeric.h"

#include "math/matrix33.h"
#include "math/matrix44.h"
#include "math/platform/qn_vector.h"
#include "numeric/vector_checks.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cfloat>
#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>

using namespace test_support;

namespace
{

template <typename T>
class CompareEpsilon : public testing::Test
{
};
TYPED_TEST_SUITE(CompareEpsilon, ScalarTypes);

} // namespace

TYPED_TEST(CompareEpsilon, Equal_numbers_compare_equal_without_a_tolerance)
{
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(1), TypeParam(1), TypeParam(0)), 0);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(0), TypeParam(0), TypeParam(0)), 0);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(0), TypeParam(-0.0), TypeParam(0)), 0);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(-3), TypeParam(-3), TypeParam(0)), 0);
}

TYPED_TEST(CompareEpsilon, Without_a_tolerance_the_least_difference_counts)
{
    TypeParam const least = std::numeric_limits<TypeParam>::denorm_min();
    EXPECT_EQ(F3DCompareEpsilon(least, TypeParam(0), TypeParam(0)), 1);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(0), least, TypeParam(0)), -1);
    EXPECT_EQ(F3DCompareEpsilon(NextAbove(TypeParam(1)), TypeParam(1), TypeParam(0)), 1);
}

TYPED_TEST(CompareEpsilon, Tolerance_is_scaled_by_the_power_of_two_above_the_larger_operand)
{
    // The exponent of 1000.5 is 10, so the limit is 1.024.
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(1000), TypeParam(1000.5), TypeParam(1e-3)), 0);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(1000), TypeParam(1001.0), TypeParam(1e-3)), 0);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(1000), TypeParam(1001.25), TypeParam(1e-3)), -1);
    // 0.9 is above 0.46 times 1.9, but below 0.46 times 2.
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(1), TypeParam(1.9), TypeParam(0.46)), 0);
    // A power of two belongs to the next order: the limit at 1 is twice the tolerance.
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(1), TypeParam(0), TypeParam(0.5)), 0);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(1), TypeParam(0), TypeParam(0.4921875)), 1);
    // Below 0.5 the exponent is negative and the limit below the tolerance.
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(0.125), TypeParam(0), TypeParam(0.25)), 1);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(0.125), TypeParam(0), TypeParam(0.5)), 0);
}

TYPED_TEST(CompareEpsilon, Limits_are_included_on_both_sides)
{
    TypeParam const epsilon = TypeParam(1) / 1024; // the limit at 1000 is 1
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(1000), TypeParam(999), epsilon), 0);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(1000), NextBelow(TypeParam(999)), epsilon), 1);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(999), TypeParam(1000), epsilon), 0);
    EXPECT_EQ(F3DCompareEpsilon(NextBelow(TypeParam(999)), TypeParam(1000), epsilon), -1);
}

TYPED_TEST(CompareEpsilon, Larger_operand_is_the_one_of_larger_magnitude)
{
    TypeParam const epsilon = TypeParam(1) / 2048; // 1 at -1024, but half of that at -1023
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(-1024), TypeParam(-1023), epsilon), 0);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(-1023), TypeParam(-1024), epsilon), 0);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(1023), TypeParam(1024), epsilon), 0);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(-1000), TypeParam(1), epsilon), -1);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(1), TypeParam(-1000), epsilon), 1);
}

TYPED_TEST(CompareEpsilon, A_NaN_compares_below_whichever_operand_it_is)
{
    EXPECT_EQ(F3DCompareEpsilon(k_NaN<TypeParam>, TypeParam(1), TypeParam(1e-3)), -1);
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(1), k_NaN<TypeParam>, TypeParam(1e-3)), -1);
    EXPECT_EQ(F3DCompareEpsilon(k_NaN<TypeParam>, k_NaN<TypeParam>, TypeParam(1e-3)), -1);
}

TYPED_TEST(CompareEpsilon, Infinities_are_ordered_but_never_equal)
{
    EXPECT_EQ(F3DCompareEpsilon(k_Infinity<TypeParam>, TypeParam(1), TypeParam(1e-3)), 1);
    EXPECT_EQ(F3DCompareEpsilon(-k_Infinity<TypeParam>, TypeParam(1), TypeParam(1e-3)), -1);
    // Their difference is a NaN.
    EXPECT_EQ(F3DCompareEpsilon(k_Infinity<TypeParam>, k_Infinity<TypeParam>, TypeParam(1e-3)), -1);
    EXPECT_EQ(F3DCompareEpsilon(-k_Infinity<TypeParam>, -k_Infinity<TypeParam>, TypeParam(1e-3)), -1);
}

TYPED_TEST(CompareEpsilon, Limit_that_overflows_takes_everything_for_equal)
{
    TypeParam const largest = std::numeric_limits<TypeParam>::max();
    EXPECT_EQ(F3DCompareEpsilon(largest, -largest, TypeParam(0.25)), 1);
    EXPECT_EQ(F3DCompareEpsilon(largest, -largest, TypeParam(1)), 0);
    EXPECT_EQ(F3DCompareEpsilon(-largest, largest, TypeParam(1)), 0);
}

TYPED_TEST(CompareEpsilon, Negative_tolerance_answers_below_first)
{
    EXPECT_EQ(F3DCompareEpsilon(TypeParam(1), TypeParam(1), TypeParam(-1)), -1);
}

TEST(CompareEpsilonFloat, Difference_is_taken_in_float)
{
    // 16777216.5 is above the limit 16777216, but rounds to it in float.
    EXPECT_EQ(F3DCompareEpsilon(16777216.0F, -0.5F, 0.5F), 0);
    EXPECT_EQ(F3DCompareEpsilon(16777216.0, -0.5, 0.5), 1);
}

TEST(IsValidNumber, Only_infinities_and_NaNs_are_invalid_in_double)
{
    for (double const valid : {0.0, -0.0, 1.0, -1.0, DBL_MAX, -DBL_MAX, DBL_MIN, DBL_TRUE_MIN, -DBL_TRUE_MIN})
    {
        EXPECT_TRUE(F3DIsValidNumber(valid)) << valid;
    }
    for (std::uint64_t const invalid : {0x7FF0000000000000U, 0xFFF0000000000000U, 0x7FF8000000000000U,
                                        0xFFF8000000000000U, 0x7FF0000000000001U, 0x7FFFFFFFFFFFFFFFU})
    {
        EXPECT_FALSE(F3DIsValidNumber(std::bit_cast<double>(invalid))) << std::hex << invalid;
    }
}

TEST(IsValidNumber, Only_infinities_and_NaNs_are_invalid_in_float)
{
    for (float const valid : {0.0F, -0.0F, 1.0F, -1.0F, FLT_MAX, -FLT_MAX, FLT_MIN, FLT_TRUE_MIN, -FLT_TRUE_MIN})
    {
        EXPECT_TRUE(F3DIsValidNumber(valid)) << valid;
    }
    for (std::uint32_t const invalid : {0x7F800000U, 0xFF800000U, 0x7FC00000U, 0xFFC00000U, 0x7F800001U, 0x7FFFFFFFU})
    {
        EXPECT_FALSE(F3DIsValidNumber(std::bit_cast<float>(invalid))) << std::hex << invalid;
    }
}

TEST(IsValidNumber, Result_is_a_truth_value)
{
    static_assert(std::is_same_v<decltype(F3DIsValidNumber(1.0)), bool>);
    static_assert(std::is_same_v<decltype(F3DIsValidNumber(1.0F)), bool>);
    static_assert(std::is_same_v<decltype(F3DCompareEpsilon(1.0F, 1.0F, 1.0F)), int>);
}

TEST(Constants, Axes_number_the_components)
{
    static_assert(E3D_AXIS_X == 0 && E3D_AXIS_Y == 1 && E3D_AXIS_Z == 2);
    C3DVector3Tpl<double> const v(2.0, 3.0, 5.0);
    EXPECT_EQ(v.Get(E3D_AXIS_X), 2);
    EXPECT_EQ(v.Get(E3D_AXIS_Y), 3);
    EXPECT_EQ(v.Get(E3D_AXIS_Z), 5);
    EXPECT_EQ(Components(C3DVector3Tpl<double>(E3D_AXIS_Y, 7.0)), Row<double>(0, 7, 0));
}

TEST(Constants, Unit_vector_has_every_component_one)
{
    EXPECT_EQ(Components(C3DVector3Tpl<double>::k_UnitVector), Row<double>(1, 1, 1));
    EXPECT_EQ(Components(C3DVector3Tpl<float>::k_UnitVector), Row<float>(1, 1, 1));
    EXPECT_EQ(C3DVector3Tpl<double>::k_UnitVector.GetLength(), std::sqrt(3.0));
    EXPECT_EQ(C3DVector3Tpl<float>::k_UnitVector.GetLength(), std::sqrt(3.0F));
    static_assert(std::is_same_v<decltype(C3DVector3Tpl<double>::k_UnitVector), C3DVector3Tpl<double> const>);
    static_assert(std::is_same_v<decltype(C3DVector3Tpl<float>::k_UnitVector), C3DVector3Tpl<float> const>);
}

TYPED_TEST(CompareEpsilon, Less_accurate_tolerance_is_chosen_by_the_type_of_the_argument)
{
    using V = C3DVector3Tpl<TypeParam>;
    static_assert(std::is_same_v<decltype(V::GetLessAccurateEpsilon(1.0)), double>);
    static_assert(std::is_same_v<decltype(V::GetLessAccurateEpsilon(1.0F)), float>);
    EXPECT_EQ(V::GetLessAccurateEpsilon(123.0), 1e-9);
    EXPECT_EQ(V::GetLessAccurateEpsilon(123.0F), 1e-6F);
}

TEST(Layout, Vectors_are_their_scalars_in_order)
{
    static_assert(sizeof(C3DVector2Tpl<float>) == 8 && sizeof(C3DVector2Tpl<double>) == 16);
    static_assert(sizeof(C3DVector3Tpl<float>) == 12 && sizeof(C3DVector3Tpl<double>) == 24);
    static_assert(sizeof(C3DVector4Tpl<float>) == 16 && sizeof(C3DVector4Tpl<double>) == 32);
    static_assert(sizeof(C3DVectorw) == 32 && sizeof(QN_Vector) == 12);
    using V2 = C3DVector2Tpl<float>;
    using V3 = C3DVector3Tpl<double>;
    using V4 = C3DVector4Tpl<float>;
    static_assert(offsetof(V2, X) == 0 && offsetof(V2, Y) == 4);
    static_assert(offsetof(V3, X) == 0 && offsetof(V3, Y) == 8 && offsetof(V3, Z) == 16);
    static_assert(offsetof(V4, X) == 0 && offsetof(V4, Y) == 4 && offsetof(V4, Z) == 8 && offsetof(V4, W) == 12);
    static_assert(offsetof(C3DVectorw, X) == 0 && offsetof(C3DVectorw, Y) == 8 && offsetof(C3DVectorw, Z) == 16 &&
                  offsetof(C3DVectorw, W) == 24);
}

namespace
{

template <typename T>
class ValueClass : public testing::Test
{
};
using ValueClasses =
    testing::Types<C3DVector2Tpl<float>, C3DVector2Tpl<double>, C3DVector3Tpl<float>, C3DVector3Tpl<double>,
                   C3DVector4Tpl<float>, C3DVector4Tpl<double>, C3DVectorw, C3DMatrix33Tpl<float>,
                   C3DMatrix33Tpl<double>, C3DMatrix44Tpl<float>, C3DMatrix44Tpl<double>>;
TYPED_TEST_SUITE(ValueClass, ValueClasses);

} // namespace

TYPED_TEST(ValueClass, Is_copyable_by_bytes_and_holds_no_memory)
{
    static_assert(std::is_standard_layout_v<TypeParam> && std::is_trivially_copyable_v<TypeParam>);
    static_assert(!std::is_polymorphic_v<TypeParam>);
    static_assert(std::is_same_v<decltype(TypeParam().GetDynamicMemSize()), std::uint64_t>);
    EXPECT_EQ(TypeParam().GetDynamicMemSize(), 0U);
}

TEST(Layout, Scalar_types_convert_by_explicit_methods_only)
{
    static_assert(!std::is_convertible_v<C3DVector2Tpl<float>, C3DVector2Tpl<double>>);
    static_assert(!std::is_convertible_v<C3DVector3Tpl<double>, C3DVector3Tpl<float>>);
    static_assert(!std::is_convertible_v<C3DVector4Tpl<float>, C3DVector4Tpl<double>>);
    static_assert(!std::is_convertible_v<C3DMatrix33Tpl<float>, C3DMatrix33Tpl<double>>);
    static_assert(!std::is_convertible_v<C3DMatrix44Tpl<double>, C3DMatrix44Tpl<float>>);
    static_assert(std::is_empty_v<C3DInitRequest_DoNotInitialize>);
}

namespace
{

constexpr unsigned char k_Mark = 0xA5;

/// Memory for one object, with a mark in every byte.
template <typename Object>
struct MarkedMemory
{
    MarkedMemory() { bytes.fill(k_Mark); }
    bool IsMarked(std::size_t first, std::size_t last) const
    {
        return std::all_of(bytes.begin() + static_cast<std::ptrdiff_t>(first),
                           bytes.begin() + static_cast<std::ptrdiff_t>(last),
                           [](unsigned char byte) { return byte == k_Mark; });
    }
    alignas(Object) std::array<unsigned char, sizeof(Object)> bytes;
};

template <typename Object>
void ConstructByValue(void * memory)
{
    new (memory) Object();
}
template <typename Object>
void ConstructByDefault(void * memory)
{
    new (memory) Object;
}
template <typename Object>
void ConstructWithoutNumbers(void * memory)
{
    new (memory) Object(C3DInitRequest_DoNotInitialize());
}

/// The bytes that a constructor leaves on marked memory. It is called where the compiler cannot look into it: to one
/// that can, what stood in the memory before a construction is gone.
template <typename Object>
MarkedMemory<Object> Construct(void (*construct)(void *))
{
    MarkedMemory<Object> memory;
    void (*volatile hidden)(void *) = construct;
    hidden(memory.bytes.data());
    return memory;
}

template <typename T>
class Construction : public testing::Test
{
};
TYPED_TEST_SUITE(Construction, ScalarTypes);

} // namespace

TYPED_TEST(Construction, Default_three_component_vector_writes_nothing)
{
    using V = C3DVector3Tpl<TypeParam>;
    EXPECT_TRUE(Construct<V>(&ConstructByDefault<V>).IsMarked(0, sizeof(V)));
    EXPECT_TRUE(Construct<V>(&ConstructByValue<V>).IsMarked(0, sizeof(V)));
}

TYPED_TEST(Construction, Default_vectors_of_other_sizes_are_null)
{
    using V2 = C3DVector2Tpl<TypeParam>;
    using V4 = C3DVector4Tpl<TypeParam>;
    EXPECT_EQ(Construct<V2>(&ConstructByDefault<V2>).bytes, (std::array<unsigned char, sizeof(V2)>{}));
    EXPECT_EQ(Construct<V4>(&ConstructByDefault<V4>).bytes, (std::array<unsigned char, sizeof(V4)>{}));
    auto const memory = Construct<C3DVectorw>(&ConstructByDefault<C3DVectorw>);
    EXPECT_EQ(memory.bytes, (std::bit_cast<decltype(memory.bytes)>(Row<double>(0, 0, 0, 1))));
}

TYPED_TEST(Construction, Default_matrix_elements_are_null)
{
    using M33 = C3DMatrix33Tpl<TypeParam>;
    EXPECT_EQ(Construct<M33>(&ConstructByDefault<M33>).bytes, (std::array<unsigned char, sizeof(M33)>{}));
    using M44 = C3DMatrix44Tpl<TypeParam>;
    auto const memory = Construct<M44>(&ConstructByDefault<M44>);
    EXPECT_TRUE(std::all_of(memory.bytes.begin(), memory.bytes.begin() + 16 * sizeof(TypeParam),
                            [](unsigned char byte) { return byte == 0; }));
}

TYPED_TEST(Construction, Matrix_on_request_writes_nothing)
{
    using M33 = C3DMatrix33Tpl<TypeParam>;
    using M44 = C3DMatrix44Tpl<TypeParam>;
    EXPECT_TRUE(Construct<M33>(&ConstructWithoutNumbers<M33>).IsMarked(0, sizeof(M33)));
    EXPECT_TRUE(Construct<M44>(&ConstructWithoutNumbers<M44>).IsMarked(0, sizeof(M44)));
}
