#pragma once

#include "clip/clip.h"

#include <ostream>

namespace clip
{

/// Writes a clip in BVH, so that `ParseClip` gives the same clip back: every number bit for bit, in the shortest
/// decimal text that does so, whatever the stream's own format. The joints must stand as a file can say them: depth
/// first, each behind its parent.
void WriteClip(std::ostream & stream, Clip const & clip);

} // namespace clip
