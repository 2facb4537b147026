#include "platform/seek.h"

#include <limits>

namespace math::detail
{

std::optional<unsigned long long> GetSeekTarget(unsigned long long base, long long distance)
{
    constexpr unsigned long long highest = std::numeric_limits<long long>::max();
    if (distance < 0)
    {
        // Negated as an unsigned number: the lowest distance has no positive counterpart.
        unsigned long long const back = 0 - static_cast<unsigned long long>(distance);
        if (back > base)
        {
            return std::nullopt;
        }
        return base - back;
    }
    auto const forward = static_cast<unsigned long long>(distance);
    if (base > highest || forward > highest - base)
    {
        return std::nullopt;
    }
    return base + forward;
}

} // namespace math::detail
