#include "cull/floor.h"

#include "clip/axis_step.h"
#include "clip/skeleton.h"
#include "math/deforming_collision.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <span>

namespace cull
{

namespace
{

using Vector = C3DVector3Tpl<double>;

constexpr double k_HeightShare = 0.01;  ///< of the figure's size, by which a floor lies above where feet come down to
constexpr double k_SpacingShare = 0.01; ///< of the figure's size, from point to point of the floor
constexpr double k_MostPoints = 256;    ///< side by side

/// Of the distance from the origin, below which points of the floor could not be told apart.
constexpr double k_LeastSpacingShare = 1e-9;

constexpr double k_CollisionTolerance = 1e-9;

/// The least of the times from 0 to 1 at which a point that rests meets a sole on its way from one frame to the next.
std::optional<double> FindMeeting(Vector const & point, Sole const & from, Sole const & to)
{
    unsigned long count = 0;
    std::array<double, 3> times{};
    std::array<double, 9> weights{};
    F3DDeformedPtVsDeformedTriangleIntersection(point, point, from[0], to[0], from[1], to[1], from[2], to[2], count,
                                                times.data(), weights.data(), k_CollisionTolerance);
    // Neither in order nor limited to the step.
    std::optional<double> first;
    for (double const time : std::span(times).first(count))
    {
        if (time >= 0 && time <= first.value_or(1))
        {
            first = time;
        }
    }
    return first;
}

/// The bounds of a sole on its way from one frame to the next: it moves evenly, and so stays within those of both.
clip::Bounds BoundStep(Sole const & from, Sole const & to)
{
    return clip::ComputeBounds(std::array<Vector, 6>{from[0], from[1], from[2], to[0], to[1], to[2]});
}

std::optional<Contact> FindContactInStep(SoleMotion const & sole, std::size_t frame, Floor const & floor)
{
    Sole const & from = sole[frame];
    Sole const & to = sole[frame + 1];
    clip::Bounds const bounds = BoundStep(from, to);
    if (floor.height < bounds.smallest.Y || floor.height > bounds.largest.Y)
    {
        return std::nullopt;
    }
    std::optional<Contact> first;
    for (double const x : clip::ListMultiples(bounds.smallest.X, bounds.largest.X, floor.spacing))
    {
        for (double const z : clip::ListMultiples(bounds.smallest.Z, bounds.largest.Z, floor.spacing))
        {
            Vector const point(x, floor.height, z);
            std::optional<double> const share = FindMeeting(point, from, to);
            if (share && (!first || *share < first->share))
            {
                first = {frame, *share, point};
            }
        }
    }
    return first;
}

std::vector<Vector> ListPlaces(std::vector<SoleMotion> const & soles)
{
    std::vector<Vector> places;
    for (SoleMotion const & motion : soles)
    {
        for (Sole const & sole : motion)
        {
            places.insert(places.end(), sole.begin(), sole.end());
        }
    }
    return places;
}

} // namespace

double ChooseFloorHeight(std::vector<SoleMotion> const & soles, double figureSize)
{
    if (soles.empty())
    {
        return 0;
    }
    double height = -std::numeric_limits<double>::infinity();
    for (SoleMotion const & motion : soles)
    {
        height = std::max(height, clip::ComputeBounds(ListPlaces({motion})).smallest.Y);
    }
    return height + k_HeightShare * figureSize;
}

Floor LayFloor(double height, std::vector<SoleMotion> const & soles, double figureSize)
{
    clip::Bounds const range = clip::ComputeBounds(ListPlaces(soles));
    double const extent = std::max(range.largest.X - range.smallest.X, range.largest.Z - range.smallest.Z);
    double const distance = std::max(
        {std::abs(range.smallest.X), std::abs(range.smallest.Z), std::abs(range.largest.X), std::abs(range.largest.Z)});
    double const spacing =
        std::max({k_SpacingShare * figureSize, extent / k_MostPoints, k_LeastSpacingShare * distance});
    return {height, spacing > 0 ? spacing : 1};
}

std::optional<Contact> FindFirstContact(SoleMotion const & sole, Floor const & floor)
{
    for (std::size_t frame = 0; frame + 1 < sole.size(); ++frame)
    {
        if (std::optional<Contact> const contact = FindContactInStep(sole, frame, floor))
        {
            return contact;
        }
    }
    return std::nullopt;
}

} // namespace cull
