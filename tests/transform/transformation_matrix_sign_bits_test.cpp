/// The three bits of the transformation matrix that tell of negative scale axes.

#include "math/transformation_matrix.h"

#include "transform/transformation_matrices.h"

#include <type_traits>

using namespace transformation_matrix_test;

namespace
{

template <typename T>
class SignBits : public testing::Test
{
protected:
    /// A component and whether it counts as a negative factor.
    struct Factor
    {
        T value;
        bool isNegative;
    };

    static std::vector<Factor> Factors()
    {
        return {{T(2), false},
                {T(-2), true},
                {T(0), false},
                {T(-0.0), false},
                {k_Nan<T>, false},
                {-k_Nan<T>, false},
                {k_Infinity<T>, false},
                {-k_Infinity<T>, true},
                {std::numeric_limits<T>::denorm_min(), false},
                {-std::numeric_limits<T>::denorm_min(), true}};
    }

    /// Every combination of such components with the bits they stand for.
    static void ForEachScaling(std::function<void(C3DVector3Tpl<T> const &, unsigned)> const & run)
    {
        for (Factor const & x : Factors())
        {
            for (Factor const & y : Factors())
            {
                for (Factor const & z : Factors())
                {
                    run({x.value, y.value, z.value},
                        (x.isNegative ? k_X : 0) | (y.isNegative ? k_Y : 0) | (z.isNegative ? k_Z : 0));
                }
            }
        }
    }
};
TYPED_TEST_SUITE(SignBits, Scalars);

// --- Without the determinant -----------------------------------------------------------------------------------------

TYPED_TEST(SignBits, GetSclSignBits_masks_the_byte)
{
    for (unsigned byte = 0; byte < 256; ++byte)
    {
        auto const m = Make<TypeParam>(k_Positive<TypeParam>, byte);
        static_assert(std::is_same_v<decltype(m.GetSclSignBits()), unsigned char>);
        EXPECT_EQ(m.GetSclSignBits(), byte & 14);
    }
}

TYPED_TEST(SignBits, ClearSclSignBits_clears_three_bits)
{
    for (unsigned byte = 0; byte < 256; ++byte)
    {
        auto m = Make<TypeParam>(k_Negative<TypeParam>, byte);
        Inside::ClearSclSignBits(m);
        EXPECT_TRUE(Holds(m, k_Negative<TypeParam>, byte & 241));
    }
}

TYPED_TEST(SignBits, SetSclSignBits_of_a_byte_replaces_three_bits)
{
    for (unsigned byte = 0; byte < 256; ++byte)
    {
        for (unsigned bits = 0; bits < 256; ++bits)
        {
            auto m = C3DXfoMatTpl<TypeParam>();
            m.SetMaskInfo(static_cast<unsigned char>(byte));
            Inside::SetSclSignBits(m, bits);
            ASSERT_EQ(m.GetMaskInfo(), (byte & 241) | (bits & 14)) << byte << ' ' << bits;
        }
    }
}

TYPED_TEST(SignBits, SetSclSignBits_of_a_scale_sets_the_bits_of_factors_below_zero)
{
    this->ForEachScaling(
        [](C3DVector3Tpl<TypeParam> const & scaling, unsigned bits)
        {
            for (unsigned const byte : {0x00U, 0xF1U, 0xFFU, 0x0EU})
            {
                auto m = C3DXfoMatTpl<TypeParam>();
                m.SetMaskInfo(static_cast<unsigned char>(byte));
                Inside::SetSclSignBits(m, scaling);
                ASSERT_EQ(m.GetMaskInfo(), (byte & 241) | bits) << scaling;
            }
        });
}

TYPED_TEST(SignBits, XORSclSignBits_of_two_bytes_forgets_the_old_bits)
{
    for (unsigned a = 0; a < 256; ++a)
    {
        for (unsigned b = 0; b < 256; b += 5)
        {
            for (unsigned const byte : {0x00U, 0xF1U, 0xFFU, 0x0EU, 0xA5U})
            {
                auto m = C3DXfoMatTpl<TypeParam>();
                m.SetMaskInfo(static_cast<unsigned char>(byte));
                Inside::XORSclSignBits(m, a, b);
                ASSERT_EQ(m.GetMaskInfo(), (byte & 241) | ((a ^ b) & 14)) << a << ' ' << b << ' ' << byte;
            }
        }
    }
}

TYPED_TEST(SignBits, XORSclSignBits_of_a_scale_toggles_the_bits_of_factors_below_zero)
{
    this->ForEachScaling(
        [](C3DVector3Tpl<TypeParam> const & scaling, unsigned bits)
        {
            for (unsigned const old : k_SignBits)
            {
                for (unsigned const others : k_OtherBits)
                {
                    auto m = C3DXfoMatTpl<TypeParam>();
                    m.SetMaskInfo(static_cast<unsigned char>(others | old));
                    Inside::XORSclSignBits(m, scaling);
                    ASSERT_EQ(m.GetMaskInfo(), others | (old ^ bits)) << scaling;
                }
            }
        });
}

TYPED_TEST(SignBits, NegSclSignCount_counts_three_bits)
{
    for (unsigned byte = 0; byte < 256; ++byte)
    {
        auto const m = Make<TypeParam>(k_Positive<TypeParam>, byte);
        static_assert(std::is_same_v<decltype(Inside::NegSclSignCount(m)), unsigned long>);
        EXPECT_EQ(Inside::NegSclSignCount(m), CountOf(byte)) << byte;
    }
}

// --- With the determinant --------------------------------------------------------------------------------------------

TYPED_TEST(SignBits, Are_consistent_where_their_number_is_odd_and_the_determinant_negative)
{
    for (auto const & [name, numbers, isNegative] : DeterminantCases<TypeParam>())
    {
        for (unsigned byte = 0; byte < 256; ++byte)
        {
            auto const m = Make<TypeParam>(numbers, byte);
            unsigned const count = CountOf(byte);
            int const expected = (count == 1 || count == 3) == isNegative ? 1 : 0;
            EXPECT_EQ(Inside::ValidateSclSignBits(m), expected) << name << ' ' << byte;
            EXPECT_TRUE(Holds(m, numbers, byte));
        }
    }
}

TYPED_TEST(SignBits, Repair_complements_all_three_or_none)
{
    for (auto const & [name, numbers, isNegative] : DeterminantCases<TypeParam>())
    {
        for (unsigned byte = 0; byte < 256; ++byte)
        {
            auto m = Make<TypeParam>(numbers, byte);
            bool const isConsistent = (CountOf(byte) % 2 == 1) == isNegative;
            EXPECT_EQ(Inside::SetSclSignBitsFromXfo(m), isConsistent ? 1 : 0) << name << ' ' << byte;
            EXPECT_TRUE(Holds(m, numbers, isConsistent ? byte : byte ^ 14)) << name << ' ' << byte;
            EXPECT_EQ(Inside::SetSclSignBitsFromXfo(m), 1) << "once repaired they are consistent";
        }
    }
}

TYPED_TEST(SignBits, SetAndRepair_copies_elements_and_bits_and_repairs_them)
{
    for (auto const & [name, numbers, isNegative] : DeterminantCases<TypeParam>())
    {
        for (unsigned const bits : k_SignBits)
        {
            for (unsigned const others : {0xF1U, 0x00U})
            {
                auto const source = Make<TypeParam>(numbers, (0xF1 - others) | bits);
                auto target = Make<TypeParam>(k_Positive<TypeParam>, others | 10);
                Inside::SetAndRepair(target, source);
                EXPECT_TRUE(Holds(target, numbers, others | Repaired(bits, isNegative))) << name << ' ' << bits;
            }
        }
    }
}

TYPED_TEST(SignBits, ComputeSignBits_gives_none_or_all)
{
    for (auto const & [name, numbers, isNegative] : DeterminantCases<TypeParam>())
    {
        for (unsigned byte = 0; byte < 256; ++byte)
        {
            auto m = Make<TypeParam>(numbers, byte);
            Inside::ComputeSignBits(m);
            EXPECT_TRUE(Holds(m, numbers, (byte & 241) | (isNegative ? 14U : 0U))) << name << ' ' << byte;
        }
    }
}

TYPED_TEST(SignBits, IsSclAxisNegative_reads_the_bits_or_their_complement)
{
    for (auto const & [name, numbers, isNegative] : DeterminantCases<TypeParam>())
    {
        for (unsigned byte = 0; byte < 256; ++byte)
        {
            auto const m = Make<TypeParam>(numbers, byte);
            unsigned const read = Repaired(byte & 14, isNegative);
            EXPECT_EQ(Inside::IsSclAxisNegative(m, 0), (read & k_X) != 0 ? 1 : 0) << name << ' ' << byte;
            EXPECT_EQ(Inside::IsSclAxisNegative(m, 1), (read & k_Y) != 0 ? 1 : 0) << name << ' ' << byte;
            EXPECT_EQ(Inside::IsSclAxisNegative(m, 2), (read & k_Z) != 0 ? 1 : 0) << name << ' ' << byte;
            EXPECT_TRUE(Holds(m, numbers, byte)) << "reading repairs nothing";
        }
    }
}

TYPED_TEST(SignBits, Two_negative_axes_under_a_negative_determinant_read_as_the_third)
{
    auto const m = Make<TypeParam>(k_Negative<TypeParam>, 6);
    EXPECT_EQ(Inside::ValidateSclSignBits(m), 0);
    EXPECT_EQ(Inside::IsSclAxisNegative(m, 0), 0);
    EXPECT_EQ(Inside::IsSclAxisNegative(m, 1), 0);
    EXPECT_EQ(Inside::IsSclAxisNegative(m, 2), 1);
    EXPECT_EQ(m.GetSclSignBits(), 6);
}

TYPED_TEST(SignBits, A_determinant_of_negative_zero_is_not_negative)
{
    C3DXfoMatTpl<TypeParam> const m(TypeParam(-0.0), 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    ASSERT_EQ(m.GetDet(), TypeParam(0));
    EXPECT_EQ(m.GetSclSignBits(), 0);
}

TYPED_TEST(SignBits, A_determinant_that_overflows_to_a_NaN_is_negative)
{
    TypeParam const big = std::numeric_limits<TypeParam>::max();
    C3DXfoMatTpl<TypeParam> const m(big, big, 0, 0, big, big, 0, 0, 0, 0, big, 0, 0, 0, 0, 1);
    ASSERT_TRUE(std::isnan(m.GetDet()));
    EXPECT_EQ(m.GetSclSignBits(), k_AllAxes);
}

TYPED_TEST(SignBits, A_determinant_of_infinity_has_its_sign)
{
    TypeParam const big = std::numeric_limits<TypeParam>::max();
    C3DXfoMatTpl<TypeParam> const positive(big, 0, 0, 0, 0, big, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    EXPECT_EQ(positive.GetDet(), k_Infinity<TypeParam>);
    EXPECT_EQ(positive.GetSclSignBits(), 0);
    C3DXfoMatTpl<TypeParam> const negative(-big, 0, 0, 0, 0, big, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    EXPECT_EQ(negative.GetDet(), -k_Infinity<TypeParam>);
    EXPECT_EQ(negative.GetSclSignBits(), k_AllAxes);
}

} // namespace
