#include "math/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <vector>

namespace
{

/// States from which the next step is special, found by the inverse of the multiplier modulo 2^32.
constexpr unsigned long k_StateBeforeZero = 2973705371;
constexpr unsigned long k_StateBeforeLargest = 1652443446;
constexpr unsigned long k_LargestStep = 0xFFFFFFFE;

struct Moments
{
    double mean;
    double variance;
    double skewness;
    double kurtosis;
};

Moments MeasureMoments(std::function<double()> const & draw, int count)
{
    std::vector<double> values(static_cast<std::size_t>(count));
    std::generate(values.begin(), values.end(), draw);
    auto const centralMoment = [&values](double center, int power)
    {
        double sum = 0;
        for (double const value : values)
        {
            sum += std::pow(value - center, power);
        }
        return sum / static_cast<double>(values.size());
    };
    double const mean = centralMoment(0, 1);
    double const variance = centralMoment(mean, 2);
    return {mean, variance, centralMoment(mean, 3) / std::pow(variance, 1.5),
            centralMoment(mean, 4) / (variance * variance)};
}

/// Four standard errors of each moment of a normal sample.
void ExpectNormal(Moments const & moments, double mean, double sigma, int count)
{
    double const error = 4 / std::sqrt(static_cast<double>(count));
    EXPECT_NEAR(moments.mean, mean, sigma * error);
    EXPECT_NEAR(moments.variance, sigma * sigma, sigma * sigma * std::sqrt(2.0) * error);
    EXPECT_NEAR(moments.skewness, 0, std::sqrt(6.0) * error);
    EXPECT_NEAR(moments.kurtosis, 3, std::sqrt(24.0) * error);
}

} // namespace

TEST(QuickRand, Yields_the_known_sequence_from_1)
{
    unsigned long state = 1;
    for (unsigned long const expected :
         std::array<unsigned long, 6>{663608941, 4216535657, 1508633781, 3546922769, 2333349949, 1227634681})
    {
        EXPECT_EQ(F3DQuickRand(state), expected);
        EXPECT_EQ(state, expected);
    }
}

TEST(QuickRand, Replaces_a_state_of_zero)
{
    unsigned long fromZero = 0;
    unsigned long fromReplacement = 0xFFFFFFEF;
    EXPECT_EQ(F3DQuickRand(fromZero), 1603549891UL);
    EXPECT_EQ(F3DQuickRand(fromReplacement), 1603549891UL);
    EXPECT_EQ(fromZero, fromReplacement);
}

TEST(QuickRand, Turns_a_product_of_all_ones_to_zero_and_goes_on_from_there)
{
    unsigned long state = k_StateBeforeZero;
    EXPECT_EQ(F3DQuickRand(state), 0UL);
    EXPECT_EQ(state, 0UL);
    EXPECT_EQ(F3DQuickRand(state), 1603549891UL);
}

TEST(QuickRand, Keeps_the_largest_step_below_all_ones)
{
    unsigned long state = k_StateBeforeLargest;
    EXPECT_EQ(F3DQuickRand(state), k_LargestStep);
}

TEST(QuickRand, Uses_and_stores_32_bits_of_a_wider_state)
{
    if constexpr (sizeof(unsigned long) > 4)
    {
        auto state = static_cast<unsigned long>(0xABCDEF0000000001ULL);
        EXPECT_EQ(F3DQuickRand(state), 663608941UL);
        EXPECT_EQ(state, 663608941UL);
        // Zero in the low 32 bits is no valid state either.
        state = static_cast<unsigned long>(0x100000000ULL);
        EXPECT_EQ(F3DQuickRand(state), 1603549891UL);
        state = static_cast<unsigned long>(0xABCDEF0000000001ULL);
        F3DRealGaussianRand(state);
        EXPECT_EQ(state, 663608941UL);
    }
}

TEST(QuickUniformRand, Spans_zero_to_below_one)
{
    unsigned long state = k_StateBeforeZero;
    EXPECT_EQ(F3DQuickUniformRand(state), 0);
    state = k_StateBeforeLargest;
    double const largest = F3DQuickUniformRand(state);
    EXPECT_LT(largest, 1);
    EXPECT_NEAR(largest, 4294967294.0 / 4294967295.0, 1e-15);
    state = 1;
    EXPECT_NEAR(F3DQuickUniformRand(state), 663608941.0 / 4294967295.0, 1e-15);
    EXPECT_EQ(state, 663608941UL);
}

TEST(QuickUniformRand, Around_a_center_spans_the_upper_end_to_above_the_lower_one)
{
    unsigned long state = k_StateBeforeZero;
    EXPECT_EQ(F3DQuickUniformRand(state, 10, 3), 13);
    state = k_StateBeforeLargest;
    double const smallest = F3DQuickUniformRand(state, 10, 3);
    EXPECT_GT(smallest, 7);
    EXPECT_NEAR(smallest, 7, 2e-9);
    state = 1;
    EXPECT_NEAR(F3DQuickUniformRand(state, 10, 3), 13 - 6 * 663608941.0 / 4294967295.0, 1e-14);
    EXPECT_EQ(state, 663608941UL);
    state = 1;
    EXPECT_EQ(F3DQuickUniformRand(state, 10, 0), 10);
}

TEST(QuickUniformRand, Fills_its_interval_evenly)
{
    constexpr int count = 1 << 18;
    std::array<int, 64> bins{};
    unsigned long state = 1;
    for (int i = 0; i < count; ++i)
    {
        ++bins[static_cast<std::size_t>(F3DQuickUniformRand(state) * 64)];
    }
    double const expected = count / 64.0;
    double chiSquared = 0;
    for (int const found : bins)
    {
        chiSquared += (found - expected) * (found - expected) / expected;
    }
    // 63 degrees of freedom: between the quantiles at 0.0001 and 0.9999.
    EXPECT_GT(chiSquared, 28);
    EXPECT_LT(chiSquared, 114);
}

TEST(QuickUniformRand, Has_no_correlation_between_neighbours)
{
    constexpr int count = 1 << 17;
    unsigned long state = 12345;
    double sum = 0;
    double previous = F3DQuickUniformRand(state, 0, 1);
    for (int i = 0; i < count; ++i)
    {
        double const next = F3DQuickUniformRand(state, 0, 1);
        sum += previous * next;
        previous = next;
    }
    // The product of two variates from -1 to 1 has the variance 1/9.
    EXPECT_NEAR(sum / count, 0, 4 / 3.0 / std::sqrt(count));
}

// Expected values of the gaussian forms come from an evaluation of the formulas in another language.

TEST(QuickGaussianRand, Yields_the_known_variates_and_takes_two_steps)
{
    unsigned long state = 1;
    EXPECT_NEAR(F3DQuickGaussianRand(state), 1.9199104529079785, 1e-13);
    EXPECT_EQ(state, 4216535657UL);
    state = 12345;
    EXPECT_NEAR(F3DQuickGaussianRand(state), -1.2319504621820956, 1e-13);
    state = 0;
    EXPECT_NEAR(F3DQuickGaussianRand(state), -0.5203681167405553, 1e-13);
}

TEST(QuickGaussianRand, With_a_sigma_scales_the_angle_too)
{
    unsigned long state = 1;
    EXPECT_NEAR(F3DQuickGaussianRand(state, 10, 2), 13.465243550213174, 1e-13);
    EXPECT_EQ(state, 4216535657UL);
    state = 1;
    EXPECT_NEAR(F3DQuickGaussianRand(state, 10, 0.5), 10.027714546013279, 1e-13);
    state = 7;
    EXPECT_NEAR(F3DQuickGaussianRand(state, 10, 2), 5.533436949101629, 1e-13);
}

TEST(QuickGaussianRand, With_mean_0_and_sigma_1_is_the_plain_form)
{
    unsigned long plain = 4242;
    unsigned long general = 4242;
    for (int i = 0; i < 1000; ++i)
    {
        EXPECT_EQ(F3DQuickGaussianRand(plain), F3DQuickGaussianRand(general, 0, 1));
    }
    EXPECT_EQ(plain, general);
}

TEST(QuickGaussianRand, Is_normal)
{
    constexpr int count = 200000;
    unsigned long state = 1;
    ExpectNormal(MeasureMoments([&state] { return F3DQuickGaussianRand(state); }, count), 0, 1, count);
    ExpectNormal(MeasureMoments([&state] { return F3DQuickGaussianRand(state, 5, 2); }, count), 5, 2, count);
}

TEST(QuickGaussianRand, With_a_sigma_of_one_half_never_goes_below_the_mean)
{
    unsigned long state = 1;
    for (int i = 0; i < 10000; ++i)
    {
        EXPECT_GE(F3DQuickGaussianRand(state, 5, 0.5), 5);
    }
}

TEST(QuickGaussianRand, Is_infinite_where_the_first_step_is_zero)
{
    unsigned long state = k_StateBeforeZero;
    EXPECT_TRUE(std::isinf(F3DQuickGaussianRand(state)));
    EXPECT_EQ(state, 1603549891UL);
    state = k_StateBeforeZero;
    EXPECT_TRUE(std::isinf(F3DQuickGaussianRand(state, 3, 2)));
}

TEST(RealGaussianRand, Yields_the_known_variates)
{
    struct Sample
    {
        unsigned long state;
        double variate;
    };
    // The pairs of steps that each takes: 1, 1, 1, 2, 2, 3, 4, 5.
    for (Sample const sample :
         {Sample{3, -0.054823255234429734}, Sample{12345, -2.003812643766458}, Sample{0, -0.9846389980492929},
          Sample{1, -0.47969921035161217}, Sample{2, 1.3212296183637513}, Sample{6, -0.9872298794076741},
          Sample{46, -1.0941427867878915}, Sample{57, -0.08615312523514848}})
    {
        unsigned long state = sample.state;
        EXPECT_NEAR(F3DRealGaussianRand(state), sample.variate, 1e-12) << sample.state;
    }
}

TEST(RealGaussianRand, Moves_the_state_by_one_step_however_many_it_takes)
{
    for (unsigned long start = 0; start < 1000; ++start)
    {
        unsigned long state = start;
        unsigned long oneStep = start;
        F3DRealGaussianRand(state);
        F3DQuickRand(oneStep);
        EXPECT_EQ(state, oneStep) << start;
    }
}

TEST(RealGaussianRand, Is_normal)
{
    constexpr int count = 200000;
    unsigned long state = 1;
    // Successive calls share steps, so that the sample is worth less than its size.
    ExpectNormal(MeasureMoments([&state] { return F3DRealGaussianRand(state); }, count), 0, 1, count / 4);
}

TEST(RealGaussianRand, Ends_from_the_short_cycles_of_even_states)
{
    for (unsigned long high = 0; high < 4096; ++high)
    {
        unsigned long state = high << 20;
        EXPECT_TRUE(std::isfinite(F3DRealGaussianRand(state))) << high;
    }
}

TEST(RealGaussianRand, Ends_from_the_state_with_the_longest_run_of_rejections)
{
    unsigned long state = 2099773240;
    unsigned long oneStep = state;
    EXPECT_TRUE(std::isfinite(F3DRealGaussianRand(state)));
    EXPECT_EQ(state, F3DQuickRand(oneStep));
}
