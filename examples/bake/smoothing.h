#pragma once

#include "clip/clip.h"

namespace bake
{

/// Removes from every channel of a clip what oscillates at a frequency or faster. What oscillates at half of it or
/// slower stays, and between the two the gain falls as a cosine does: a gain that fell at once would ring for long on
/// both sides of every sudden change, such as the step of a foot.
///
/// - The first and the last frame stay as they are, so that a clip which goes on from another one still does. Where
/// they
///   are caught in the middle of a tremor, the frames beside them lead from there to the smooth motion, within about
///   one cycle of the frequency. Constant channels, straight lines, and clips of one or two frames stay.
/// - Angles that jump by a whole turn, which turns nothing, do so in the same place as before. Where all three angles
/// of
///   a joint flip at a pole they pass for motion; Reorder takes such flips out.
///
/// \param hertz above 0
/// \throws std::length_error, std::bad_alloc for a clip that is too long
void Smooth(clip::Clip & motion, double hertz);

} // namespace bake
