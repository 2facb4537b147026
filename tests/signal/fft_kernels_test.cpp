/// Each transform kernel, in each direction, at each size: against the sum that defines it, and against another
/// library.

#include "signal/fftw_transforms.h"
#include "signal/fourier_kernel_cases.h"
#include "signal/fourier_sums.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

using namespace signal_test;
using test_support::Random;

namespace
{

constexpr double k_Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double k_Infinity = std::numeric_limits<double>::infinity();
constexpr int k_LargestSum = 512;
constexpr int k_Largest = 1 << 16;

class FftKernels : public testing::TestWithParam<Kernel>
{
};

bool SameBits(std::vector<double> const & a, std::vector<double> const & b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](double x, double y)
                      { return std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y); });
}

TEST_P(FftKernels, Is_the_sum_that_defines_it)
{
    Random random(61);
    for (int n = 2; n <= k_LargestSum; n *= 2)
    {
        std::vector<double> const a = RandomValues(random, CountValues(GetParam().transform, n));
        EXPECT_LT(RelativeError(Transformed(GetParam(), n, a), DefiningSum(GetParam(), n, a)), ToleranceOf(n)) << n;
    }
}

TEST_P(FftKernels, Agrees_with_FFTW)
{
    Random random(62);
    for (int n = 2; n <= k_Largest; n *= 2)
    {
        std::vector<double> const a = RandomValues(random, CountValues(GetParam().transform, n));
        EXPECT_LT(RelativeError(Transformed(GetParam(), n, a), TransformedByFftw(GetParam(), n, a)), ToleranceOf(n))
            << n;
    }
}

// A single value shows each column of the transform by itself: an error in one place drowns in a sum of many.
TEST_P(FftKernels, Is_right_for_every_single_value)
{
    for (int n = 2; n <= 64; n *= 2)
    {
        std::size_t const count = CountValues(GetParam().transform, n);
        // The whole-range sine does not read the first value.
        for (std::size_t j = GetParam().transform == Transform::WholeSine ? 1 : 0; j < count; ++j)
        {
            std::vector<double> a(count, 0.0);
            a[j] = 1;
            EXPECT_LT(RelativeError(Transformed(GetParam(), n, a), DefiningSum(GetParam(), n, a)), 1e-15)
                << n << " values, the one at " << j;
        }
    }
}

TEST_P(FftKernels, A_larger_table_gives_the_same_bits)
{
    Random random(63);
    for (int const tableSize : {8, 64, 256, 1024, 8192, 32768})
    {
        Tables tables(GetParam().transform, tableSize);
        std::vector<double> first = RandomValues(random, CountValues(GetParam().transform, tableSize));
        RunKernel(GetParam(), tableSize, first.data(), tables);
        for (int n = tableSize; n >= 2; n /= 2)
        {
            std::vector<double> a = RandomValues(random, CountValues(GetParam().transform, n));
            std::vector<double> const alone = Transformed(GetParam(), n, a);
            RunKernel(GetParam(), n, a.data(), tables);
            EXPECT_TRUE(SameBits(a, alone)) << n << " with tables for " << tableSize;
        }
    }
}

TEST_P(FftKernels, Tables_may_grow_between_transforms)
{
    Random random(64);
    constexpr int largest = 4096;
    Tables tables(GetParam().transform, largest);
    for (int const n : {2, 4, 64, 16, 256, 8, 1024, 512, 32, 4096, 128, 2048})
    {
        std::vector<double> a = RandomValues(random, CountValues(GetParam().transform, n));
        std::vector<double> const alone = Transformed(GetParam(), n, a);
        RunKernel(GetParam(), n, a.data(), tables);
        EXPECT_TRUE(SameBits(a, alone)) << n;
    }
}

TEST_P(FftKernels, Reads_of_the_sign_whether_it_is_below_zero)
{
    Random random(65);
    for (int const n : {2, 8, 64})
    {
        std::vector<double> const a = RandomValues(random, CountValues(GetParam().transform, n));
        std::vector<double> const expected = Transformed(GetParam(), n, a);
        std::vector<int> const signs = GetParam().sign < 0
                                           ? std::vector<int>{-1, -2, -1000, std::numeric_limits<int>::min()}
                                           : std::vector<int>{0, 1, 2, 1000, std::numeric_limits<int>::max()};
        for (int const sign : signs)
        {
            EXPECT_TRUE(SameBits(Transformed({GetParam().transform, sign}, n, a), expected)) << sign;
        }
    }
}

TEST_P(FftKernels, Data_may_stand_at_any_address_of_a_double)
{
    Random random(66);
    for (int n = 2; n <= 4096; n *= 2)
    {
        std::size_t const count = CountValues(GetParam().transform, n);
        std::vector<double> const a = RandomValues(random, count);
        std::vector<double> const expected = Transformed(GetParam(), n, a);
        for (std::size_t shift = 0; shift < 8; ++shift)
        {
            std::vector<double> moved(count + 8, k_Unwritten);
            std::copy(a.begin(), a.end(), moved.begin() + static_cast<std::ptrdiff_t>(shift));
            Tables tables(GetParam().transform, n);
            RunKernel(GetParam(), n, moved.data() + shift, tables);
            for (std::size_t i = 0; i < moved.size(); ++i)
            {
                double const value = i < shift || i >= shift + count ? k_Unwritten : expected[i - shift];
                ASSERT_EQ(std::bit_cast<std::uint64_t>(moved[i]), std::bit_cast<std::uint64_t>(value))
                    << n << " values, " << shift << " places on, at " << i;
            }
        }
    }
}

// Every kernel is linear, and scaling by a power of two is exact, down to where numbers lose digits.
TEST_P(FftKernels, Scales_with_its_input_bit_for_bit)
{
    Random random(67);
    for (int const n : {2, 4, 8, 16, 32, 64, 128, 256, 1024})
    {
        std::vector<double> a = RandomValues(random, CountValues(GetParam().transform, n));
        std::vector<double> expected = Transformed(GetParam(), n, a);
        for (double const scale : {0x1p300, 0x1p-300, -1.0})
        {
            std::vector<double> scaled = a;
            for (double & value : scaled)
            {
                value *= scale;
            }
            std::vector<double> const transformed = Transformed(GetParam(), n, scaled);
            for (std::size_t i = 0; i < a.size(); ++i)
            {
                ASSERT_EQ(transformed[i], scale * expected[i]) << n << " values times " << scale << " at " << i;
            }
        }
    }
}

TEST_P(FftKernels, Nothing_but_zeros_stays_so)
{
    for (int n = 2; n <= 2048; n *= 2)
    {
        std::vector<double> const zeros(CountValues(GetParam().transform, n), 0.0);
        EXPECT_EQ(Transformed(GetParam(), n, zeros), zeros) << n;
    }
}

TEST_P(FftKernels, Runs_on_numbers_that_are_not_finite_and_leaves_the_tables_as_they_are)
{
    for (int n = 2; n <= 2048; n *= 2)
    {
        for (double const odd : {k_Nan, k_Infinity, -k_Infinity, std::numeric_limits<double>::max()})
        {
            std::size_t const count = CountValues(GetParam().transform, n);
            Tables tables(GetParam().transform, n);
            std::vector<double> a(count, 1.0);
            RunKernel(GetParam(), n, a.data(), tables);
            Tables const before = tables;
            a.assign(count, odd);
            RunKernel(GetParam(), n, a.data(), tables);
            EXPECT_EQ(tables.ip, before.ip);
            EXPECT_TRUE(SameBits(tables.w, before.w));
        }
    }
}

TEST_P(FftKernels, A_value_that_is_no_number_reaches_every_result)
{
    if (IsWholeRange(GetParam().transform))
    {
        return; // half of their results leave out what cancels
    }
    for (int const n : {8, 64, 512, 2048})
    {
        std::vector<double> a(static_cast<std::size_t>(n), 1.0);
        a[static_cast<std::size_t>(n / 2 + 2)] = k_Nan;
        std::vector<double> const transformed = Transformed(GetParam(), n, a);
        for (std::size_t i = 0; i < a.size(); i += 2)
        {
            ASSERT_TRUE(std::isnan(transformed[i]) || std::isnan(transformed[i + 1])) << n << " values, at " << i;
        }
    }
}

std::string KernelName(testing::TestParamInfo<Kernel> const & info)
{
    return testing::PrintToString(info.param);
}

INSTANTIATE_TEST_SUITE_P(All, FftKernels, testing::ValuesIn(k_Kernels), KernelName);

/// Two steps that take a signal back to itself times n/2, with `between` before the second.
template <typename Between>
void ExpectRoundTrip(Kernel const & first, Kernel const & second, Between const & between)
{
    Random random(68);
    for (int n = 2; n <= k_Largest; n *= 2)
    {
        std::vector<double> const a = RandomValues(random, CountValues(first.transform, n));
        Tables tables(first.transform, n);
        std::vector<double> b = a;
        RunKernel(first, n, b.data(), tables);
        between(b);
        RunKernel(second, n, b.data(), tables);
        double largestError = 0;
        for (std::size_t i = 0; i < a.size(); ++i)
        {
            largestError = std::max(largestError, std::abs(b[i] / (n / 2) - a[i]));
        }
        EXPECT_LT(largestError, 1e-14) << n;
    }
}

void HalveTheFirst(std::vector<double> & values)
{
    values[0] *= 0.5;
}

void HalveTheEnds(std::vector<double> & values)
{
    values.front() *= 0.5;
    values.back() *= 0.5;
}

TEST(FftRoundTrip, The_complex_transform_multiplies_by_half_the_size)
{
    ExpectRoundTrip({Transform::Complex, 1}, {Transform::Complex, -1}, [](auto &) {});
    ExpectRoundTrip({Transform::Complex, -1}, {Transform::Complex, 1}, [](auto &) {});
}

TEST(FftRoundTrip, The_real_transform_multiplies_by_half_the_size)
{
    ExpectRoundTrip({Transform::Real, 1}, {Transform::Real, -1}, [](auto &) {});
    ExpectRoundTrip({Transform::Real, -1}, {Transform::Real, 1}, [](auto &) {});
}

TEST(FftRoundTrip, The_cosine_transform_halves_the_first_value_between)
{
    ExpectRoundTrip({Transform::Cosine, -1}, {Transform::Cosine, 1}, HalveTheFirst);
}

TEST(FftRoundTrip, The_sine_transform_halves_the_first_value_between)
{
    ExpectRoundTrip({Transform::Sine, -1}, {Transform::Sine, 1}, HalveTheFirst);
}

TEST(FftRoundTrip, The_whole_range_cosine_transform_halves_the_ends_before_each_step)
{
    Random random(69);
    Kernel const kernel{Transform::WholeCosine, 1};
    for (int n = 2; n <= k_Largest; n *= 2)
    {
        std::vector<double> const a = RandomValues(random, CountValues(kernel.transform, n));
        std::vector<double> b = a;
        HalveTheEnds(b);
        b = Transformed(kernel, n, b);
        HalveTheEnds(b);
        b = Transformed(kernel, n, b);
        for (std::size_t i = 0; i < a.size(); ++i)
        {
            ASSERT_NEAR(b[i] / (n / 2), a[i], 1e-14) << n << " values, at " << i;
        }
    }
}

TEST(FftRoundTrip, The_whole_range_sine_transform_is_its_own_inverse)
{
    Random random(70);
    Kernel const kernel{Transform::WholeSine, 1};
    for (int n = 2; n <= k_Largest; n *= 2)
    {
        std::vector<double> a = RandomValues(random, CountValues(kernel.transform, n));
        std::vector<double> const b = Transformed(kernel, n, Transformed(kernel, n, a));
        a[0] = 0;
        for (std::size_t i = 0; i < a.size(); ++i)
        {
            ASSERT_NEAR(b[i] / (n / 2), a[i], 1e-14) << n << " values, at " << i;
        }
    }
}

TEST(FftSmallest, One_complex_sample_is_its_own_transform)
{
    for (int const sign : {1, -1})
    {
        EXPECT_EQ(Transformed({Transform::Complex, sign}, 2, {3, -0.5}), (std::vector<double>{3, -0.5}));
    }
}

TEST(FftSmallest, No_samples_at_all_touch_nothing)
{
    for (int const sign : {1, -1})
    {
        Tables tables(Transform::Complex, 0);
        math::detail::DSPComplexDFT(0, sign, nullptr, tables.ip.data(), nullptr);
        EXPECT_EQ(tables.ip[0], 0);
    }
}

TEST(FftSmallest, Two_complex_samples_are_added_and_subtracted_in_both_directions)
{
    for (int const sign : {1, -1})
    {
        EXPECT_EQ(Transformed({Transform::Complex, sign}, 4, {3, -0.5, 1, 4}), (std::vector<double>{4, 3.5, 2, -4.5}));
    }
}

TEST(FftSmallest, Four_complex_samples_turn_with_the_sign)
{
    EXPECT_EQ(Transformed({Transform::Complex, 1}, 8, {0, 0, 1, 0, 0, 0, 0, 0}),
              (std::vector<double>{1, 0, 0, 1, -1, 0, 0, -1}));
    EXPECT_EQ(Transformed({Transform::Complex, -1}, 8, {0, 0, 1, 0, 0, 0, 0, 0}),
              (std::vector<double>{1, 0, 0, -1, -1, 0, 0, 1}));
}

TEST(FftSmallest, Two_real_values_are_added_and_subtracted_and_halved_on_the_way_back)
{
    EXPECT_EQ(Transformed({Transform::Real, 1}, 2, {3, 5}), (std::vector<double>{8, -2}));
    EXPECT_EQ(Transformed({Transform::Real, -1}, 2, {3, 5}), (std::vector<double>{4, -1}));
}

TEST(FftSmallest, Three_values_of_the_whole_range_cosine_transform)
{
    EXPECT_EQ(Transformed({Transform::WholeCosine, 1}, 2, {3, 5, 11}), (std::vector<double>{19, -8, 9}));
}

TEST(FftSmallest, The_whole_range_sine_transform_of_one_value)
{
    // sin(pi / 2)
    EXPECT_EQ(Transformed({Transform::WholeSine, 1}, 2, {3, 5}), (std::vector<double>{0, 5}));
}

TEST(FftWholeSine, Does_not_read_the_first_value_and_sets_it_to_zero)
{
    Random random(71);
    for (int n = 2; n <= 1024; n *= 2)
    {
        std::vector<double> a = RandomValues(random, static_cast<std::size_t>(n));
        std::vector<double> const expected = Transformed({Transform::WholeSine, 1}, n, a);
        a[0] = k_Nan;
        EXPECT_TRUE(SameBits(Transformed({Transform::WholeSine, 1}, n, a), expected)) << n;
        EXPECT_TRUE(expected[0] == 0 && !std::signbit(expected[0])) << n;
    }
}

// The largest of these fill the second level of a cache many times over; a tone has a single line, and a single sample
// a tone, so no other library is needed.
TEST(FftLarge, A_tone_is_a_line)
{
    for (int const n : {1 << 17, 1 << 18, 1 << 19, 1 << 21})
    {
        SCOPED_TRACE(n);
        constexpr long frequency = 12345;
        long const samples = n / 2;
        std::vector<double> a(static_cast<std::size_t>(n));
        for (long j = 0; j < samples; ++j)
        {
            double const angle =
                2 * std::numbers::pi * static_cast<double>(j * frequency % samples) / static_cast<double>(samples);
            a[static_cast<std::size_t>(2 * j)] = std::cos(angle);
            a[static_cast<std::size_t>(2 * j + 1)] = -std::sin(angle);
        }
        Tables tables(Transform::Complex, n);
        RunKernel({Transform::Complex, 1}, n, a.data(), tables);
        a[2 * frequency] -= static_cast<double>(samples);
        double largest = 0;
        for (double const value : a)
        {
            largest = std::max(largest, std::abs(value));
        }
        EXPECT_LT(largest / static_cast<double>(samples), 1e-15);
    }
}

TEST(FftLarge, A_single_sample_is_a_tone)
{
    for (int const n : {1 << 17, 1 << 20})
    {
        SCOPED_TRACE(n);
        constexpr long place = 54321;
        long const samples = n / 2;
        std::vector<double> a(static_cast<std::size_t>(n), 0.0);
        a[2 * place] = 1;
        Tables tables(Transform::Complex, n);
        RunKernel({Transform::Complex, -1}, n, a.data(), tables);
        for (long k = 0; k < samples; ++k)
        {
            double const angle =
                2 * std::numbers::pi * static_cast<double>(k * place % samples) / static_cast<double>(samples);
            ASSERT_NEAR(a[static_cast<std::size_t>(2 * k)], std::cos(angle), 5e-15) << k;
            ASSERT_NEAR(a[static_cast<std::size_t>(2 * k + 1)], -std::sin(angle), 5e-15) << k;
        }
    }
}

} // namespace
