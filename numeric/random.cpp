#include "math/random.h"

#include <cmath>
#include <cstdint>

namespace
{

/// 1 / 0xFFFFFFFF and twice that. The digits of the literals are part of the results.
constexpr double k_ToUnitInterval = 2.3283064370807974e-10;
constexpr double k_ToIntervalOfTwo = 4.656612874161595e-10;
constexpr double k_TwoPi = 6.283185307179586;

/// One step of the generator, in 32 bits whatever the width of `unsigned long`.
std::uint32_t Step(std::uint32_t state)
{
    constexpr std::uint32_t multiplier = 663608941U;
    constexpr std::uint32_t replacementOfZero = 0xFFFFFFEFU;
    std::uint32_t const start = state == 0 ? replacementOfZero : state;
    return start * multiplier % 0xFFFFFFFFU;
}

/// From -1 to below 1.
double ToSignedUnit(std::uint32_t step)
{
    return step * k_ToIntervalOfTwo - 1;
}

} // namespace

unsigned long F3DQuickRand(unsigned long & state)
{
    state = Step(static_cast<std::uint32_t>(state & 0xFFFFFFFFUL));
    return state;
}

double F3DQuickUniformRand(unsigned long & state)
{
    return static_cast<double>(F3DQuickRand(state)) * k_ToUnitInterval;
}

double F3DQuickUniformRand(unsigned long & state, double center, double range)
{
    return center + range * (1 - static_cast<double>(F3DQuickRand(state)) * k_ToIntervalOfTwo);
}

double F3DQuickGaussianRand(unsigned long & state)
{
    return F3DQuickGaussianRand(state, 0, 1);
}

double F3DQuickGaussianRand(unsigned long & state, double mean, double sigma)
{
    double const u1 = F3DQuickUniformRand(state);
    double const u2 = F3DQuickUniformRand(state);
    double const variance = sigma * sigma;
    return mean + std::sqrt(-2 * variance * std::log(u1)) * std::cos(k_TwoPi * variance * u2);
}

double F3DRealGaussianRand(unsigned long & state)
{
    // The caller's state moves by the first step alone, however many pairs are rejected. There is an end to them: from
    // none of the 2^32 states are more than 15 pairs rejected in a row, the short cycles of even states included.
    auto value = static_cast<std::uint32_t>(F3DQuickRand(state));
    for (;;)
    {
        double const w1 = ToSignedUnit(value);
        value = Step(value);
        double const w2 = ToSignedUnit(value);
        double const x = w1 * w1 + w2 * w2;
        if (x != 0 && x < 1)
        {
            return w1 * std::sqrt(-2 * std::log(x) / x);
        }
        value = Step(value);
    }
}
