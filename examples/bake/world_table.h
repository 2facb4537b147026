#pragma once

#include "clip/skeleton.h"

#include <ostream>

namespace bake
{

/// Writes the positions as comma-separated values: a header, then one line a frame and joint. Frames count from 0; the
/// numbers read back bit for bit; a name with a comma or a quote in it is quoted.
void WriteWorldTable(std::ostream & stream, clip::Skeleton const & skeleton, clip::WorldPositions const & positions);

} // namespace bake
