#pragma once

#include "clip/clip.h"
#include "clip/drawing.h"
#include "spectrum/motion_spectra.h"

#include <string>

namespace spectrum
{

/// Draws the spectrum of a joint's angles about each axis above those of the paths of the ends, over one range of
/// frequencies: up to the last at which a curve reaches a fiftieth of the highest in its plot. Every curve has a dot
/// at its highest peak, and the highest of a plot a dashed line and its frequency. Of many ends those with the highest
/// peaks are drawn.
///
/// \param name what the picture is titled
clip::Drawing DrawSpectra(clip::Clip const & motion, MotionSpectra const & spectra, std::string const & name);

} // namespace spectrum
