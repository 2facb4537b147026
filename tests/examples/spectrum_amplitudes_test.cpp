#include "spectrum/amplitudes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <numbers>
#include <vector>

namespace
{

using spectrum::AmplitudeMeter;
using spectrum::FindPeak;
using Values = std::vector<double>;

constexpr double k_Turn = 2 * std::numbers::pi;

Values MakeValues(std::size_t count, std::function<double(double)> const & valueOf)
{
    Values values;
    for (std::size_t i = 0; i < count; ++i)
    {
        values.push_back(valueOf(static_cast<double>(i)));
    }
    return values;
}

TEST(SpectrumAmplitudes, Its_frequencies_reach_to_half_a_cycle_per_value)
{
    for (std::size_t const count : {1U, 2U, 3U, 63U, 64U, 65U, 240U, 1000U})
    {
        AmplitudeMeter const meter(count);
        EXPECT_DOUBLE_EQ(static_cast<double>(meter.FrequencyCount() - 1) * meter.FrequencyStep(), 0.5) << count;
        EXPECT_LE(4 * meter.FrequencyStep(), 1 / static_cast<double>(count)) << count;
        EXPECT_GE(meter.FrequencyCount(), 129U) << count;
        double const first = static_cast<double>(meter.FirstTold()) * meter.FrequencyStep();
        EXPECT_GE(first, 1 / static_cast<double>(count)) << count;
        EXPECT_LT(first - meter.FrequencyStep(), 1 / static_cast<double>(count)) << count;
    }
}

TEST(SpectrumAmplitudes, A_tone_has_its_amplitude_at_its_frequency_wherever_that_lies)
{
    for (std::size_t const count : {100U, 240U, 257U})
    {
        AmplitudeMeter meter(count);
        for (double const frequency : {0.05, 0.0612, 0.1337, 0.25, 0.4321})
        {
            for (double const phase : {0.0, 1.0, 2.5})
            {
                Values const tone =
                    MakeValues(count, [=](double i) { return 7 * std::sin(k_Turn * frequency * i + phase); });
                Values const amplitudes = meter.Measure(tone);
                auto const peak = FindPeak(amplitudes, meter.FirstTold());
                ASSERT_TRUE(peak.has_value());
                EXPECT_NEAR(static_cast<double>(*peak) * meter.FrequencyStep(), frequency, meter.FrequencyStep());
                EXPECT_LE(amplitudes[*peak], 7 * 1.02) << count << ", " << frequency << ", " << phase;
                EXPECT_GE(amplitudes[*peak], 7 * 0.98) << count << ", " << frequency << ", " << phase;
            }
        }
    }
}

TEST(SpectrumAmplitudes, Away_from_a_tone_there_is_next_to_nothing)
{
    constexpr std::size_t k_Count = 300;
    AmplitudeMeter meter(k_Count);
    Values const amplitudes =
        meter.Measure(MakeValues(k_Count, [](double i) { return 100 * std::cos(k_Turn * 0.1234 * i); }));
    for (std::size_t k = 0; k < amplitudes.size(); ++k)
    {
        double const cycles = std::abs(static_cast<double>(k) * meter.FrequencyStep() - 0.1234) * k_Count;
        if (cycles > 2.5)
        {
            EXPECT_LT(amplitudes[k], 3) << cycles << " cycles away";
        }
        if (cycles > 10)
        {
            EXPECT_LT(amplitudes[k], 0.1) << cycles << " cycles away";
        }
    }
}

TEST(SpectrumAmplitudes, Two_tones_do_not_hide_each_other)
{
    constexpr std::size_t k_Count = 400;
    AmplitudeMeter meter(k_Count);
    Values const amplitudes = meter.Measure(
        MakeValues(k_Count, [](double i) { return 50 * std::sin(k_Turn * 0.03 * i) + std::sin(k_Turn * 0.3 * i); }));
    EXPECT_EQ(FindPeak(amplitudes, meter.FirstTold()), FindPeak(amplitudes, 0));
    auto const high = static_cast<std::size_t>(0.2 / meter.FrequencyStep());
    auto const weak = FindPeak(amplitudes, high);
    ASSERT_TRUE(weak.has_value());
    EXPECT_NEAR(static_cast<double>(*weak) * meter.FrequencyStep(), 0.3, meter.FrequencyStep());
    EXPECT_NEAR(amplitudes[*weak], 1, 0.03);
}

TEST(SpectrumAmplitudes, At_half_a_cycle_per_value_an_amplitude_is_not_doubled)
{
    AmplitudeMeter meter(64);
    Values const fastest = meter.Measure(MakeValues(64, [](double i) { return 3 * std::cos(std::numbers::pi * i); }));
    EXPECT_NEAR(fastest.back(), 3, 0.01);
    EXPECT_LT(*std::max_element(fastest.begin(), fastest.end() - 16), 0.03) << "it stands at the end alone";
}

TEST(SpectrumAmplitudes, A_constant_and_a_straight_line_are_no_oscillation)
{
    for (std::size_t const count : {1U, 2U, 3U, 100U, 240U})
    {
        AmplitudeMeter meter(count);
        for (Values const & line : {Values(count, 0), Values(count, 90.1), Values(count, -1e6),
                                    MakeValues(count, [](double i) { return 17.3 - 2.9 * i; })})
        {
            Values const amplitudes = meter.Measure(line);
            EXPECT_LT(*std::max_element(amplitudes.begin(), amplitudes.end()), 1e-11) << count;
            EXPECT_EQ(FindPeak(amplitudes, meter.FirstTold()), std::nullopt) << count;
        }
    }
}

TEST(SpectrumAmplitudes, A_line_under_a_tone_makes_no_difference)
{
    constexpr std::size_t k_Count = 240;
    auto const tone = [](double i) { return 3 * std::sin(k_Turn * 0.08 * i); };
    AmplitudeMeter meter(k_Count);
    Values const alone = meter.Measure(MakeValues(k_Count, tone));
    Values const both = meter.Measure(MakeValues(k_Count, [&](double i) { return tone(i) + 500 - 4 * i; }));
    for (std::size_t k = 0; k < alone.size(); ++k)
    {
        EXPECT_NEAR(alone[k], both[k], 1e-9);
    }
    EXPECT_NEAR(alone[0], 0, 1e-12) << "nor is there a constant part";
}

TEST(SpectrumAmplitudes, A_meter_measures_again_and_again)
{
    AmplitudeMeter meter(50);
    Values const one = MakeValues(50, [](double i) { return std::sin(i); });
    Values const other = MakeValues(50, [](double i) { return i * std::cos(2 * i); });
    Values const first = meter.Measure(one);
    meter.Measure(other);
    EXPECT_EQ(meter.Measure(one), first);
}

TEST(SpectrumAmplitudes, A_peak_is_higher_than_both_sides)
{
    EXPECT_EQ(FindPeak(Values{}, 0), std::nullopt);
    EXPECT_EQ(FindPeak(Values{5}, 0), std::nullopt);
    EXPECT_EQ(FindPeak(Values{5, 4, 3, 2}, 0), std::nullopt) << "it only falls";
    EXPECT_EQ(FindPeak(Values{0, 0, 0}, 0), std::nullopt);
    EXPECT_EQ(FindPeak(Values{9, 1, 3, 2, 4, 1}, 0), 4U);
    EXPECT_EQ(FindPeak(Values{9, 1, 4, 2, 4, 1}, 0), 2U) << "the first of equals";
    EXPECT_EQ(FindPeak(Values{9, 1, 4, 4, 1}, 0), 2U) << "the start of a level";
    EXPECT_EQ(FindPeak(Values{0, 1, 2, 3}, 0), 3U) << "the last";
    EXPECT_EQ(FindPeak(Values{0, 8, 2, 3, 1}, 1), 1U);
    EXPECT_EQ(FindPeak(Values{0, 8, 2, 3, 1}, 2), 3U) << "before the first";
    EXPECT_EQ(FindPeak(Values{0, 8, 6, 3, 1}, 2), std::nullopt) << "the flank of one before the first";
}

} // namespace
