#pragma once

#include "clip/clip.h"
#include "clip/drawing.h"
#include "clip/skeleton.h"

#include <string>

namespace bake
{

/// Draws the figure in six poses over the clip, seen from the front (along -Z, X to the right) and from its right side
/// (along X, Z to the right), Y upwards. The clip is cut into as many equal pieces as there are poses; each pose stands
/// in the middle of its piece, in a column of its own, with the paths that the ends of the limbs take through the
/// piece. Both views and all columns share one scale, and the ground lies at the lowest position of the clip. A clip of
/// less than six frames has one pose a frame.
///
/// \param motion gives the skeleton and the time of a frame; its own motion may be another, and of another length
/// \param name what the picture is titled
clip::Drawing DrawPoses(clip::Clip const & motion, clip::WorldPositions const & positions, std::string const & name);

} // namespace bake
