#pragma once

#include "clip/drawing.h"

namespace spectrum
{

/// Draws what C3DPerlinNoise makes of a seed: the values of its three faces over four cells each way, which grow with
/// the coordinates and break from cell to cell, as its gradients are taken at the coordinates themselves; and the
/// gradient noise that is made of the gradients of its lattice, alone and in octaves, beside those twelve gradients.
///
/// \param seed of which the low 32 bits count
clip::Drawing DrawNoise(unsigned long seed);

} // namespace spectrum
