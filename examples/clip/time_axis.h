#pragma once

#include "clip/drawing.h"

namespace clip
{

/// Where a plot over time stands on the page, and the seconds from its left to its right side.
struct TimeAxis
{
    double left;
    double right;
    double top;
    double bottom;
    double length;
};

/// Draws the rules of a plot over time, from top to bottom, at round numbers of seconds that stand below it. A plot
/// without length has one at its start.
void DrawTimeAxis(Drawing & drawing, TimeAxis const & axis);

} // namespace clip
