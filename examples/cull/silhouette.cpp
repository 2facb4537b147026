#include "cull/silhouette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace cull
{

namespace
{

using clip::Point;

/// Positive where c lies to the left of the way from a to b, with y upwards.
double Turn(Point a, Point b, Point c)
{
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

/// Half of a hull: the chain of left turns through sorted points.
template <typename Points>
std::vector<Point> BuildChain(Points const & sorted)
{
    std::vector<Point> chain;
    for (Point const point : sorted)
    {
        while (chain.size() >= 2 && !(Turn(chain[chain.size() - 2], chain.back(), point) > 0))
        {
            chain.pop_back();
        }
        chain.push_back(point);
    }
    return chain;
}

/// How far a point lies within each side of an area.
std::array<double, 4> Depths(Point point, PageArea const & area)
{
    return {point.x - area.left, area.right - point.x, point.y - area.top, area.bottom - point.y};
}

Point Between(Point a, Point b, double share)
{
    return {std::lerp(a.x, b.x, share), std::lerp(a.y, b.y, share)};
}

} // namespace

std::vector<Point> ComputeHull(std::vector<Point> points)
{
    auto const order = [](Point a, Point b) { return a.x < b.x || (a.x == b.x && a.y < b.y); };
    std::sort(points.begin(), points.end(), order);
    points.erase(std::unique(points.begin(), points.end(), [](Point a, Point b) { return a.x == b.x && a.y == b.y; }),
                 points.end());
    if (points.size() < 2)
    {
        return points;
    }
    std::vector<Point> hull = BuildChain(points);
    std::reverse(points.begin(), points.end());
    std::vector<Point> const back = BuildChain(points);
    // Each chain begins where the other ends.
    hull.pop_back();
    hull.insert(hull.end(), back.begin(), back.end() - 1);
    return hull;
}

std::vector<Point> ClipPolygon(std::span<Point const> polygon, PageArea const & area)
{
    std::vector<Point> part(polygon.begin(), polygon.end());
    for (std::size_t side = 0; side < 4; ++side)
    {
        std::vector<Point> const whole = std::move(part);
        part.clear();
        for (std::size_t i = 0; i < whole.size(); ++i)
        {
            Point const from = whole[i];
            Point const to = whole[(i + 1) % whole.size()];
            double const fromDepth = Depths(from, area)[side];
            double const toDepth = Depths(to, area)[side];
            if (fromDepth >= 0)
            {
                part.push_back(from);
            }
            if ((fromDepth >= 0) != (toDepth >= 0))
            {
                part.push_back(Between(from, to, fromDepth / (fromDepth - toDepth)));
            }
        }
    }
    return part;
}

std::optional<std::pair<Point, Point>> ClipLine(Point from, Point to, PageArea const & area)
{
    std::array<double, 4> const fromDepths = Depths(from, area);
    std::array<double, 4> const toDepths = Depths(to, area);
    double entry = 0;
    double exit = 1;
    for (std::size_t side = 0; side < 4; ++side)
    {
        if (fromDepths[side] < 0 && toDepths[side] < 0)
        {
            return std::nullopt;
        }
        double const share = fromDepths[side] / (fromDepths[side] - toDepths[side]);
        if (fromDepths[side] < 0)
        {
            entry = std::max(entry, share);
        }
        else if (toDepths[side] < 0)
        {
            exit = std::min(exit, share);
        }
    }
    if (entry > exit)
    {
        return std::nullopt;
    }
    return std::pair(Between(from, to, entry), Between(from, to, exit));
}

} // namespace cull
