#pragma once

#include <optional>

namespace math::detail
{

/// The position `distance` bytes from `base`; nothing where it lies before the start or above the largest `long long`,
/// so that the distance between any two positions can be told.
std::optional<unsigned long long> GetSeekTarget(unsigned long long base, long long distance);

} // namespace math::detail
