#pragma once

namespace math::detail
{

/// Whether a parameter lies from `low` up to, not including, `high`. A NaN lies nowhere.
inline bool IsFromUpTo(double parameter, double low, double high)
{
    return parameter >= low && parameter < high;
}

} // namespace math::detail
