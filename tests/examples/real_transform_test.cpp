#include "clip/real_transform.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>
#include <stdexcept>
#include <vector>

namespace
{

constexpr double k_Turn = 2 * std::numbers::pi;

std::vector<double> MakeValues(std::size_t size)
{
    std::vector<double> values;
    for (std::size_t i = 0; i < size; ++i)
    {
        values.push_back(std::sin(1.7 * static_cast<double>(i * i)) + 0.25);
    }
    return values;
}

TEST(RealTransform, Its_magnitudes_are_those_of_the_defining_sum)
{
    for (std::size_t const size : {2U, 4U, 8U, 64U, 512U})
    {
        std::vector<double> const values = MakeValues(size);
        clip::RealTransform transform(size);
        ASSERT_EQ(transform.Values().size(), size);
        std::copy(values.begin(), values.end(), transform.Values().begin());
        transform.Forward();
        for (std::size_t k = 0; k <= size / 2; ++k)
        {
            double cosines = 0;
            double sines = 0;
            for (std::size_t i = 0; i < size; ++i)
            {
                double const angle = k_Turn * static_cast<double>(i * k % size) / static_cast<double>(size);
                cosines += values[i] * std::cos(angle);
                sines += values[i] * std::sin(angle);
            }
            EXPECT_NEAR(transform.Magnitude(k), std::hypot(cosines, sines), 1e-11) << size << ", " << k;
        }
    }
}

TEST(RealTransform, There_and_back_gives_the_values_in_their_size)
{
    for (std::size_t const size : {2U, 4U, 256U})
    {
        std::vector<double> const values = MakeValues(size);
        clip::RealTransform transform(size);
        for (int round = 0; round < 2; ++round)
        {
            std::copy(values.begin(), values.end(), transform.Values().begin());
            transform.Forward();
            transform.Backward();
            for (std::size_t i = 0; i < size; ++i)
            {
                EXPECT_NEAR(transform.Values()[i], values[i], 1e-14);
            }
        }
    }
}

TEST(RealTransform, A_factor_reaches_one_frequency_alone)
{
    constexpr std::size_t k_Size = 16;
    auto const valueOf = [](std::size_t i, double constant, double slow, double fast, double fastest)
    {
        double const angle = k_Turn * static_cast<double>(i) / k_Size;
        return constant + slow * std::sin(angle + 0.3) + fast * std::cos(5 * angle) +
               fastest * std::cos(static_cast<double>(k_Size / 2) * angle);
    };
    clip::RealTransform transform(k_Size);
    for (std::size_t i = 0; i < k_Size; ++i)
    {
        transform.Values()[i] = valueOf(i, 1, 2, 3, 4);
    }
    transform.Forward();
    transform.Scale(0, 2);
    transform.Scale(1, 0.5);
    transform.Scale(5, 0);
    transform.Scale(k_Size / 2, -1);
    transform.Backward();
    for (std::size_t i = 0; i < k_Size; ++i)
    {
        EXPECT_NEAR(transform.Values()[i], valueOf(i, 2, 1, 0, -4), 1e-14);
    }
}

TEST(RealTransform, More_values_than_it_may_hold_are_refused)
{
    EXPECT_THROW(clip::RealTransform(2 * clip::RealTransform::k_MostValues), std::length_error);
    EXPECT_THROW(clip::RealTransform(std::size_t(1) << 40), std::length_error) << "which 32 bits would take for 0";
}

} // namespace
