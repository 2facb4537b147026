#pragma once

#include "clip/drawing.h"

#include <optional>
#include <span>
#include <utility>
#include <vector>

// Outlines on the page.

namespace cull
{

/// A rectangle on the page, its sides in it.
struct PageArea
{
    double left;
    double top;
    double right;
    double bottom;

    bool Contains(clip::Point point) const
    {
        return point.x >= left && point.x <= right && point.y >= top && point.y <= bottom;
    }
    /// Whether the two have more in common than their sides.
    bool Overlaps(PageArea const & other) const
    {
        return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
    }
    bool Contains(PageArea const & other) const
    {
        return other.left >= left && other.right <= right && other.top >= top && other.bottom <= bottom;
    }
};

/// The corners of the convex hull, in one direction around it, none of them between two others on a line: the
/// silhouette of a convex body, from the projections of its corners. (A. M. Andrew, "Another efficient algorithm for
/// convex hulls in two dimensions", 1979.) Points on one line give its two ends, points in one place one.
std::vector<clip::Point> ComputeHull(std::vector<clip::Point> points);

/// The part of a convex polygon within an area, empty where there is none. (I. E. Sutherland and G. W. Hodgman,
/// "Reentrant polygon clipping", 1974.)
std::vector<clip::Point> ClipPolygon(std::span<clip::Point const> polygon, PageArea const & area);

/// The part of a line from point to point within an area. (Y.-D. Liang and B. A. Barsky, "A new concept and method for
/// line clipping", 1984.)
std::optional<std::pair<clip::Point, clip::Point>> ClipLine(clip::Point from, clip::Point to, PageArea const & area);

} // namespace cull
