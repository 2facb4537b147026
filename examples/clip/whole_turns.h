#pragma once

#include <span>
#include <vector>

namespace clip
{

/// The whole turns, in degrees, by which a sequence of angles has jumped up to each of them since the first: a step of
/// more than half a turn counts as one the shorter way round and a jump. Without its jumps, which turn nothing, the
/// sequence is the smooth motion that is seen; the turns of an angle that runs on in smaller steps are motion, and
/// stay.
std::vector<double> FindJumpedTurns(std::span<double const> degrees);

} // namespace clip
