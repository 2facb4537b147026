#pragma once

#include "clip/clip.h"

#include <cstddef>

namespace bake
{

inline constexpr double k_HalfTurn = 180;   ///< in degrees, as all angles here
inline constexpr double k_QuarterTurn = 90; ///< what a flip at a pole exceeds, which can stay just short of half a turn

/// Whether an angle moves by more than `limit` from a frame to the next. A step of the limit itself is none, however it
/// was rounded.
bool IsJump(double before, double after, double limit);

/// How many angles jump from one frame to the next, of all joints.
std::size_t CountJumps(clip::Clip const & motion, double limit);

/// The joint whose angles move the most in one clip over what they move in the other, a clip of the same skeleton in
/// the same order. Where no joint's do so by a degree or more, the one that moves most in the other.
std::size_t FindMostChanged(clip::Clip const & motion, clip::Clip const & other);

} // namespace bake
