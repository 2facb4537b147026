#pragma once

#include "clip/clip.h"
#include "clip/drawing.h"
#include "clip/skeleton.h"
#include "cull/camera.h"
#include "cull/classification.h"
#include "cull/joint_boxes.h"

#include <span>
#include <string>

namespace cull
{

/// What a picture shows: a clip, and how a camera sees it.
struct View
{
    clip::Clip const & motion;
    clip::WorldPositions const & positions;
    JointBoxes const & boxes;
    Camera const & camera; ///< where it was placed
    Classification const & classification;
    std::span<C3DVector3Tpl<double> const> eyes = {}; ///< where it is in every frame; nothing for a still one
};

/// Draws a clip from above, X to the right and Z downwards, and how many boxes are inside, crossing and outside over
/// time, both by the strategy in world space. The map has the silhouette of the view volume, the path of the root in
/// the colour of the root's box, and the boxes of poses that do not lie on top of each other. It reaches as far as the
/// boxes, and beyond them towards the camera and the ends of the volume as far as there is room.
/// A camera that is held by hand has its volume where it was placed, and its own path around the eye.
///
/// \param name what the picture is titled
clip::Drawing DrawView(View const & view, std::string const & name);

} // namespace cull
