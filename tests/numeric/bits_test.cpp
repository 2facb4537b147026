#include "math/bits.h"

#include <gtest/gtest.h>

#include <random>

TEST(Bits, Number_of_bits_on_counts_the_set_bits)
{
    EXPECT_EQ(F3DNumberOfBitsOn(0U), 0);
    EXPECT_EQ(F3DNumberOfBitsOn(1U), 1);
    EXPECT_EQ(F3DNumberOfBitsOn(0x80000000U), 1);
    EXPECT_EQ(F3DNumberOfBitsOn(0xA5A50003U), 10);
    EXPECT_EQ(F3DNumberOfBitsOn(0x7FFFFFFFU), 31);
    EXPECT_EQ(F3DNumberOfBitsOn(0xFFFFFFFFU), 32);
}

TEST(Bits, Reverse_bits_mirrors_the_32_bits)
{
    EXPECT_EQ(F3DReverseBits(0), 0UL);
    EXPECT_EQ(F3DReverseBits(1), 0x80000000UL);
    EXPECT_EQ(F3DReverseBits(0x80000000UL), 1UL);
    EXPECT_EQ(F3DReverseBits(0xFFFFFFFFUL), 0xFFFFFFFFUL);
    EXPECT_EQ(F3DReverseBits(0x12345678UL), 0x1E6A2C48UL);
}

TEST(Bits, Reverse_bits_moves_each_bit_to_its_mirror_place)
{
    for (unsigned int i = 0; i < 32; ++i)
    {
        EXPECT_EQ(F3DReverseBits(1UL << i), 1UL << (31 - i)) << i;
    }
}

TEST(Bits, Reverse_bits_ignores_what_lies_above_32_bits_and_yields_nothing_there)
{
    if constexpr (sizeof(unsigned long) > 4)
    {
        EXPECT_EQ(F3DReverseBits(static_cast<unsigned long>(0xDEADBEEF00000000ULL)), 0UL);
        EXPECT_EQ(F3DReverseBits(static_cast<unsigned long>(0xDEADBEEF00000001ULL)), 0x80000000UL);
        EXPECT_EQ(F3DReverseBits(~0UL), 0xFFFFFFFFUL);
    }
}

TEST(Bits, Reverse_bits_twice_is_the_identity)
{
    std::mt19937 generator(11);
    for (int i = 0; i < 1000; ++i)
    {
        unsigned long const bits = generator();
        EXPECT_EQ(F3DReverseBits(F3DReverseBits(bits)), bits);
    }
}

TEST(Bits, Lowest_and_highest_bit_of_zero_are_not_there)
{
    EXPECT_EQ(F3DFindLowestBit(0), -1);
    EXPECT_EQ(F3DFindHighestBit(0), -1);
}

TEST(Bits, Lowest_and_highest_bit_of_a_single_bit_are_its_index)
{
    for (int i = 0; i < 32; ++i)
    {
        EXPECT_EQ(F3DFindLowestBit(1U << i), i);
        EXPECT_EQ(F3DFindHighestBit(1U << i), i);
    }
}

TEST(Bits, Lowest_and_highest_bit_look_from_their_own_end)
{
    EXPECT_EQ(F3DFindLowestBit(0x00F0A000U), 13);
    EXPECT_EQ(F3DFindHighestBit(0x00F0A000U), 23);
    EXPECT_EQ(F3DFindLowestBit(0xFFFFFFFFU), 0);
    EXPECT_EQ(F3DFindHighestBit(0xFFFFFFFFU), 31);
    EXPECT_EQ(F3DFindLowestBit(0x80000001U), 0);
    EXPECT_EQ(F3DFindHighestBit(0x80000001U), 31);
}
