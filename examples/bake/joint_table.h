#pragma once

#include "bake/world_angles.h"
#include "clip/skeleton.h"

#include <ostream>

// Tables of comma-separated values: a header, then one line a frame and joint. Frames count from 0; the numbers read
// back bit for bit; a name with a comma or a quote in it is quoted.

namespace bake
{

/// The positions of all joints and end sites.
void WriteWorldTable(std::ostream & stream, clip::Skeleton const & skeleton, clip::WorldPositions const & positions);

/// The angles of all joints about X, Y and Z in degrees, as they stand in the clip.
void WriteAngleTable(std::ostream & stream, clip::Clip const & motion);

/// The angles of all joints in world space, as ComputeWorldAngles gives them, in degrees.
void WriteWorldAngleTable(std::ostream & stream, clip::Skeleton const & skeleton, WorldAngles const & angles);

} // namespace bake
