/// The bit reversal by itself.

#include "signal/fft_reversal.h"
#include "signal/fft_tables.h"
#include "signal/fourier_kernel_cases.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace signal_test;

namespace
{

using math::detail::DSPBitReverse;
using math::detail::DSPBitReverseConj;

/// The offsets of a table for n values.
std::vector<int> OffsetsFor(int n)
{
    Tables tables(Transform::Complex, n);
    math::detail::DSPMakeTwiddles(n / 4, tables.ip.data(), tables.w.data());
    return tables.ip;
}

/// Sample j is (j + 1, -j - 1/2), and a value behind the last stays.
std::vector<double> NumberedSamples(int n)
{
    std::vector<double> a;
    for (int j = 0; j < n / 2; ++j)
    {
        a.insert(a.end(), {j + 1.0, -j - 0.5});
    }
    return a;
}

int Reversed(int number, int samples)
{
    int reversed = 0;
    for (int low = 1, high = samples / 2; low < samples; low *= 2, high /= 2)
    {
        reversed += (number & low) != 0 ? high : 0;
    }
    return reversed;
}

void ExpectReversed(int n, std::vector<int> const & offsets, double sign)
{
    std::vector<double> a = NumberedSamples(n);
    sign < 0 ? DSPBitReverseConj(n, offsets.data(), a.data()) : DSPBitReverse(n, offsets.data(), a.data());
    for (int j = 0; j < n / 2; ++j)
    {
        auto const place = static_cast<std::size_t>(2 * j);
        int const from = Reversed(j, n / 2);
        ASSERT_EQ(a[place], from + 1.0) << "sample " << j;
        ASSERT_EQ(a[place + 1], sign * (-from - 0.5)) << "sample " << j;
    }
}

TEST(FftReversal, Every_sample_goes_to_its_reversed_number)
{
    for (int n = 64; n <= 1 << 18; n *= 2)
    {
        SCOPED_TRACE(n);
        ExpectReversed(n, OffsetsFor(n), 1);
    }
}

TEST(FftReversal, The_conjugate_form_negates_every_imaginary_part_too)
{
    for (int n = 64; n <= 1 << 18; n *= 2)
    {
        SCOPED_TRACE(n);
        ExpectReversed(n, OffsetsFor(n), -1);
    }
}

TEST(FftReversal, Offsets_for_a_larger_size_serve_smaller_ones)
{
    std::vector<int> const offsets = OffsetsFor(1 << 15);
    for (int n = 64; n <= 1 << 15; n *= 2)
    {
        SCOPED_TRACE(n);
        ExpectReversed(n, offsets, 1);
        ExpectReversed(n, offsets, -1);
    }
}

TEST(FftReversal, Conjugation_changes_the_sign_bit_alone)
{
    constexpr int n = 64;
    std::vector<double> a(n, 0.0);
    a[3] = -0.0;
    a[5] = std::numeric_limits<double>::infinity();
    DSPBitReverseConj(n, OffsetsFor(n).data(), a.data());
    for (int j = 0; j < n / 2; ++j)
    {
        auto const place = static_cast<std::size_t>(2 * Reversed(j, n / 2));
        EXPECT_FALSE(std::signbit(a[place])) << j;
        EXPECT_EQ(std::signbit(a[place + 1]), j != 1) << j;
    }
    EXPECT_EQ(a[2U * 8 + 1], -std::numeric_limits<double>::infinity());
}

TEST(FftReversal, Twice_is_none)
{
    for (int n : {64, 128, 256, 512, 4096})
    {
        std::vector<int> const offsets = OffsetsFor(n);
        std::vector<double> a = NumberedSamples(n);
        DSPBitReverse(n, offsets.data(), a.data());
        EXPECT_NE(a, NumberedSamples(n)) << n;
        DSPBitReverse(n, offsets.data(), a.data());
        EXPECT_EQ(a, NumberedSamples(n)) << n;
        DSPBitReverseConj(n, offsets.data(), a.data());
        DSPBitReverseConj(n, offsets.data(), a.data());
        EXPECT_EQ(a, NumberedSamples(n)) << n;
    }
}

TEST(FftReversal, Numbers_below_a_power_of_two_have_their_bits_reversed)
{
    static_assert(math::detail::ReverseBits<1>(0) == 0);
    static_assert(math::detail::ReverseBits<8>(1) == 4);
    static_assert(math::detail::ReverseBits<8>(6) == 3);
    for (int j = 0; j < 16; ++j)
    {
        EXPECT_EQ(math::detail::ReverseBits<16>(j), Reversed(j, 16));
    }
}

} // namespace
