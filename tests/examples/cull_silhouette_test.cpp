#include "cull/silhouette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace
{

using clip::Point;
using cull::PageArea;

constexpr PageArea k_Area{0, 0, 10, 20};

double SignedArea(std::vector<Point> const & polygon)
{
    double sum = 0;
    for (std::size_t i = 0; i < polygon.size(); ++i)
    {
        Point const a = polygon[i];
        Point const b = polygon[(i + 1) % polygon.size()];
        sum += a.x * b.y - b.x * a.y;
    }
    return sum / 2;
}

/// Whether a point lies within a convex polygon, or on its rim.
bool IsWithin(std::vector<Point> const & polygon, Point point, double tolerance)
{
    for (std::size_t i = 0; i < polygon.size(); ++i)
    {
        Point const a = polygon[i];
        Point const b = polygon[(i + 1) % polygon.size()];
        if ((b.x - a.x) * (point.y - a.y) - (b.y - a.y) * (point.x - a.x) < -tolerance)
        {
            return false;
        }
    }
    return true;
}

TEST(CullSilhouette, Areas_overlap_unless_they_only_touch)
{
    EXPECT_TRUE(k_Area.Overlaps({9, 19, 12, 22}));
    EXPECT_TRUE(k_Area.Overlaps({2, 2, 3, 3}));
    EXPECT_FALSE(k_Area.Overlaps({10, 0, 12, 20}));
    EXPECT_FALSE(k_Area.Overlaps({-2, 0, 0, 20}));
    EXPECT_FALSE(k_Area.Overlaps({0, 20, 10, 22}));
    EXPECT_FALSE(k_Area.Overlaps({0, -2, 10, 0}));
    EXPECT_TRUE(k_Area.Contains(PageArea{0, 0, 10, 20}));
    EXPECT_FALSE(k_Area.Contains(PageArea{-0.1, 1, 9, 19}));
    EXPECT_FALSE(k_Area.Contains(PageArea{1, -0.1, 9, 19}));
    EXPECT_FALSE(k_Area.Contains(PageArea{1, 1, 10.1, 19}));
    EXPECT_FALSE(k_Area.Contains(PageArea{1, 1, 9, 20.1}));
}

TEST(CullSilhouette, The_hull_of_a_square_with_points_in_and_on_it_has_four_corners)
{
    std::vector<Point> const hull =
        cull::ComputeHull({{0, 0}, {4, 0}, {4, 4}, {0, 4}, {2, 2}, {2, 0}, {4, 1}, {0, 0}, {4, 4}});
    EXPECT_EQ(hull.size(), 4U);
    EXPECT_EQ(SignedArea(hull), 16);
}

TEST(CullSilhouette, The_hull_of_a_line_is_its_ends_and_of_a_place_a_point)
{
    EXPECT_EQ(cull::ComputeHull({}).size(), 0U);
    EXPECT_EQ(cull::ComputeHull({{1, 2}, {1, 2}, {1, 2}}).size(), 1U);
    std::vector<Point> const line = cull::ComputeHull({{0, 0}, {3, 3}, {1, 1}, {2, 2}});
    ASSERT_EQ(line.size(), 2U);
    EXPECT_EQ(std::abs(line[0].x - line[1].x), 3);
}

TEST(CullSilhouette, A_hull_holds_its_points_and_is_made_of_them)
{
    std::mt19937 random(20);
    std::uniform_real_distribution<double> coordinate(-10, 10);
    for (int round = 0; round < 200; ++round)
    {
        std::vector<Point> points(8);
        for (Point & point : points)
        {
            point = {coordinate(random), coordinate(random)};
        }
        std::vector<Point> const hull = cull::ComputeHull(points);
        ASSERT_GE(hull.size(), 3U);
        for (Point const point : points)
        {
            EXPECT_TRUE(IsWithin(hull, point, 1e-9));
        }
        for (Point const corner : hull)
        {
            EXPECT_TRUE(
                std::any_of(points.begin(), points.end(), [&](Point p) { return p.x == corner.x && p.y == corner.y; }));
        }
    }
}

TEST(CullSilhouette, A_polygon_is_clipped_to_the_area)
{
    std::vector<Point> const within = {{1, 1}, {9, 1}, {5, 19}};
    EXPECT_EQ(SignedArea(cull::ClipPolygon(within, k_Area)), SignedArea(within));
    EXPECT_TRUE(cull::ClipPolygon(std::vector<Point>{{11, 0}, {20, 0}, {15, 9}}, k_Area).empty());
    EXPECT_TRUE(cull::ClipPolygon({}, k_Area).empty());
    // Around the whole area, and across each of its sides.
    EXPECT_DOUBLE_EQ(
        SignedArea(cull::ClipPolygon(std::vector<Point>{{-99, -99}, {99, -99}, {99, 99}, {-99, 99}}, k_Area)), 200);
    EXPECT_DOUBLE_EQ(SignedArea(cull::ClipPolygon(std::vector<Point>{{-5, 5}, {5, 5}, {5, 15}, {-5, 15}}, k_Area)), 50);
    EXPECT_DOUBLE_EQ(SignedArea(cull::ClipPolygon(std::vector<Point>{{5, 5}, {15, 5}, {15, 15}, {5, 15}}, k_Area)), 50);
    EXPECT_DOUBLE_EQ(SignedArea(cull::ClipPolygon(std::vector<Point>{{2, -5}, {8, -5}, {8, 5}, {2, 5}}, k_Area)), 30);
    EXPECT_DOUBLE_EQ(SignedArea(cull::ClipPolygon(std::vector<Point>{{2, 15}, {8, 15}, {8, 25}, {2, 25}}, k_Area)), 30);
}

TEST(CullSilhouette, A_clipped_polygon_is_what_both_have_in_common)
{
    std::mt19937 random(21);
    std::uniform_real_distribution<double> coordinate(-15, 30);
    for (int round = 0; round < 200; ++round)
    {
        std::vector<Point> points(6);
        for (Point & point : points)
        {
            point = {coordinate(random), coordinate(random)};
        }
        std::vector<Point> const hull = cull::ComputeHull(points);
        std::vector<Point> const part = cull::ClipPolygon(hull, k_Area);
        for (Point const corner : part)
        {
            EXPECT_TRUE(PageArea({-1e-9, -1e-9, 10 + 1e-9, 20 + 1e-9}).Contains(corner));
            EXPECT_TRUE(IsWithin(hull, corner, 1e-9));
        }
        for (int i = 0; i < 50; ++i)
        {
            Point const sample{coordinate(random), coordinate(random)};
            if (k_Area.Contains(sample) && IsWithin(hull, sample, 0))
            {
                EXPECT_TRUE(!part.empty() && IsWithin(part, sample, 1e-9));
            }
        }
    }
}

TEST(CullSilhouette, A_line_is_clipped_at_both_ends)
{
    auto const part = cull::ClipLine({-10, 10}, {30, 10}, k_Area);
    ASSERT_TRUE(part);
    EXPECT_DOUBLE_EQ(part->first.x, 0);
    EXPECT_DOUBLE_EQ(part->second.x, 10);
    EXPECT_EQ(part->first.y, 10);
    auto const whole = cull::ClipLine({2, 3}, {8, 3}, k_Area);
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->first.x, 2);
    EXPECT_EQ(whole->second.x, 8);
    auto const down = cull::ClipLine({5, 25}, {5, 5}, k_Area);
    ASSERT_TRUE(down);
    EXPECT_DOUBLE_EQ(down->first.y, 20);
    EXPECT_EQ(down->second.y, 5);
    EXPECT_FALSE(cull::ClipLine({-1, 0}, {-1, 20}, k_Area)) << "beside";
    EXPECT_FALSE(cull::ClipLine({-5, 3}, {3, -5}, k_Area)) << "past a corner";
    EXPECT_FALSE(cull::ClipLine({5, 21}, {5, 30}, k_Area)) << "below";
    EXPECT_TRUE(cull::ClipLine({0, 0}, {0, 20}, k_Area)) << "along a side";
    EXPECT_TRUE(cull::ClipLine({5, 5}, {5, 5}, k_Area)) << "a point within";
}

} // namespace
