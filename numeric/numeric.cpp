#include "math/numeric.h"

#include <bit>
#include <cmath>
#include <cstdint>

namespace
{

/// The tolerance at the binary order of the larger of two magnitudes.
double ScaledTolerance(double magnitudeA, double magnitudeB, double epsilon)
{
    double const larger = magnitudeA >= magnitudeB ? magnitudeA : magnitudeB;
    int exponent = 0;
    static_cast<void>(std::frexp(larger, &exponent));
    return std::ldexp(epsilon, exponent);
}

/// A NaN difference answers -1, so the first test is not written as a "less than".
template <typename T>
int CompareDifference(T difference, T limit)
{
    if (!(difference >= -limit))
    {
        return -1;
    }
    return difference > limit ? 1 : 0;
}

} // namespace

int F3DCompareEpsilon(double a, double b, double epsilon)
{
    return CompareDifference(a - b, ScaledTolerance(std::abs(a), std::abs(b), epsilon));
}

int F3DCompareEpsilon(float a, float b, float epsilon)
{
    auto const limit = static_cast<float>(ScaledTolerance(std::abs(a), std::abs(b), epsilon));
    return CompareDifference(a - b, limit);
}

bool F3DIsValidNumber(double value)
{
    auto const upper = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(value) >> 32);
    return (upper & 0x7FF00000U) < 0x7FF00000U;
}

bool F3DIsValidNumber(float value)
{
    return (std::bit_cast<std::uint32_t>(value) & 0x7F800000U) < 0x7F800000U;
}
