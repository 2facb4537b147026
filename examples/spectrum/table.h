#pragma once

#include "clip/clip.h"
#include "spectrum/motion_spectra.h"

#include <ostream>

namespace spectrum
{

/// Comma-separated values: a header, then the curves one after the other, a line a frequency. Numbers read back bit for
/// bit; a name with a comma or a quote in it is quoted.
void WriteSpectrumTable(std::ostream & stream, clip::Skeleton const & skeleton, MotionSpectra const & spectra);

} // namespace spectrum
