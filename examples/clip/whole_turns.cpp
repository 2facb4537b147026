#include "clip/whole_turns.h"

#include <cmath>
#include <cstddef>

namespace clip
{

std::vector<double> FindJumpedTurns(std::span<double const> degrees)
{
    constexpr double k_Turn = 360;
    std::vector<double> turns(degrees.size(), 0);
    for (std::size_t i = 1; i < degrees.size(); ++i)
    {
        double const step = degrees[i] - degrees[i - 1];
        bool const isJump = std::abs(step) > k_Turn / 2;
        turns[i] = turns[i - 1] + (isJump ? k_Turn * std::round(step / k_Turn) : 0);
    }
    return turns;
}

} // namespace clip
