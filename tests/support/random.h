#pragma once

/// \file
/// Seeded random input for properties, the same on every machine.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace test_support
{

/// Random numbers from a seed. While it lives, every failure of its scope names the seed. The generator is SplitMix64:
/// G. L. Steele, D. Lea, C. H. Flood, "Fast splittable pseudorandom number generators" (2014).
class Random
{
public:
    /// The place is that of the call. The compilers' own names for it serve where std::source_location is missing.
    explicit Random(std::uint64_t seed, char const * file = __builtin_FILE(), int line = __builtin_LINE())
        : m_State(seed), m_Trace(file, line, "seed " + std::to_string(seed))
    {
    }
    Random(Random const &) = delete;
    Random & operator=(Random const &) = delete;

    std::uint64_t Bits()
    {
        m_State += 0x9E3779B97F4A7C15U;
        std::uint64_t z = m_State;
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31U);
    }

    /// Evenly distributed from `low` to `high`.
    template <typename T = double>
    T Uniform(T low, T high)
    {
        double const unit = static_cast<double>(Bits() >> 11U) * 0x1p-53;
        return Narrow<T>(static_cast<double>(low) + unit * (static_cast<double>(high) - static_cast<double>(low)));
    }

    /// An integer from `low` to `high`, both included.
    int Integer(int low, int high)
    {
        auto const span = static_cast<std::uint64_t>(static_cast<std::int64_t>(high) - low) + 1;
        return static_cast<int>(low + static_cast<std::int64_t>(Bits() % span));
    }

    /// Of either sign, with a magnitude spread evenly over the decades from 10^low to 10^high.
    template <typename T = double>
    T OverDecades(double low, double high)
    {
        double const magnitude = std::pow(10.0, Uniform(low, high));
        return Narrow<T>((Bits() & 1U) != 0 ? -magnitude : magnitude);
    }

    /// Of either sign, from a thousandth to a thousand, and one in three times a special number.
    double NumberOrSpecial()
    {
        using Limits = std::numeric_limits<double>;
        constexpr double special[] = {0.0,
                                      -0.0,
                                      Limits::quiet_NaN(),
                                      Limits::infinity(),
                                      -Limits::infinity(),
                                      Limits::denorm_min(),
                                      -3 * Limits::denorm_min(),
                                      Limits::min(),
                                      Limits::max(),
                                      -Limits::max()};
        return Integer(0, 2) == 0 ? special[Integer(0, 9)] : OverDecades(-3, 3);
    }

private:
    /// Through memory, since g++ 12 forgets the narrowing of neighbouring numbers that a test widens again.
    template <typename T>
    static T Narrow(double value)
    {
        T const volatile narrow = static_cast<T>(value);
        return narrow;
    }

    std::uint64_t m_State;
    testing::ScopedTrace m_Trace;
};

} // namespace test_support
