#pragma once

#include "clip/clip.h"
#include "clip/drawing.h"

#include <cstddef>
#include <string>

namespace bake
{

/// Two ways to put the rotations of one motion in an order: clips with the same skeleton and as many frames.
struct Comparison
{
    clip::Clip const & plain;
    clip::Clip const & nearest;
};

/// Draws the three angles of a joint over time, extracted plainly above and with the frame before as target below. A
/// step of more than half a turn stands in a dark band, one of more than a quarter turn in a light one, with a ring at
/// both ends and a dashed line between. Marks that would lie on top of each other are left out.
///
/// \param name what the picture is titled, before the joint's own name
clip::Drawing DrawCurves(Comparison const & clips, std::size_t joint, std::string const & name);

} // namespace bake
