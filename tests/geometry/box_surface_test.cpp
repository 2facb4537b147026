/// The surface of the box as a function of two parameters.

#include "geometry/vector_checks.h"
#include "math/box.h"
#include "math/platform/result.h"

#include <gtest/gtest.h>

using namespace geometry_test;

namespace
{

/// X from -1 to 4, Y from -2 to 6, Z from -3 to 8.
C3DBaseBox const k_Box(Vector(-1, -2, -3), Vector(4, 6, 8));

Vector PositionAt(double u, double v)
{
    Vector point(77, 77, 77);
    EXPECT_EQ(k_Box.GetPos(u, v, point), S_OK);
    return point;
}

Vector NormalAt(double u, double v)
{
    Vector normal(77, 77, 77);
    EXPECT_EQ(k_Box.GetNormal(u, v, normal), S_OK);
    return normal;
}

/// A point of the outline, and the side that it lies on.
struct OutlinePoint
{
    double u;
    double x;
    double z;
    Vector normal;
};

OutlinePoint const k_Outline[] = {
    {0, 4, 0, {1, 0, 0}},
    {0.0625, 4, -1.5, {1, 0, 0}},
    {Below(0.125), 4, -3 * (8 * Below(0.125)), {1, 0, 0}},
    {0.125, -0.0, -3, {0, 0, -1}},
    {0.15625, -0.125, -3, {0, 0, -1}},
    {Below(0.1875), -1 * (4 * (Below(0.1875) - 0.125)), -3, {0, 0, -1}},
    {0.1875, -0.25, -3, {0, 0, -1}},
    {Above(0.1875), 4 * (4 * (Above(0.1875) - 0.125)), -3, {0, 0, -1}},
    {0.25, 2, -3, {0, 0, -1}},
    {Below(0.375), 4 * (4 * (Below(0.375) - 0.125)), -3, {0, 0, -1}},
    {0.375, -1, 0, {-1, 0, 0}},
    {0.5, -1, 4, {-1, 0, 0}},
    {Below(0.625), -1, 8 * (4 * (Below(0.625) - 0.375)), {-1, 0, 0}},
    {0.625, 0, 8, {0, 0, 1}},
    {0.75, 2, 8, {0, 0, 1}},
    {Below(0.875), 4 * (4 * (Below(0.875) - 0.625)), 8, {0, 0, 1}},
    {0.875, 4, 0, {1, 0, 0}},
    {0.9375, 4, 4, {1, 0, 0}},
    {Below(1), 4, 8 * (8 * (Below(1) - 0.875)), {1, 0, 0}},
};

} // namespace

TEST(BoxSurface, Outline_of_the_sides_row_by_row)
{
    for (OutlinePoint const & row : k_Outline)
    {
        EXPECT_TRUE(IsNear(PositionAt(row.u, 0.5), Vector(row.x, 2, row.z), 0)) << row.u;
        EXPECT_TRUE(IsNear(NormalAt(row.u, 0.5), row.normal, 0)) << row.u;
    }
}

TEST(BoxSurface, Bound_changes_at_three_sixteenths_and_not_before)
{
    EXPECT_EQ(PositionAt(0.1875, 0.5).X, -0.25);
    EXPECT_GT(PositionAt(Above(0.1875), 0.5).X, 1);
    EXPECT_TRUE(IsNear(PositionAt(0.2, 0.5), Vector(0.3 * 4, 2, -3), 1e-15));
}

TEST(BoxSurface, Top_is_a_fan_that_grows_and_bottom_one_that_shrinks)
{
    for (OutlinePoint const & row : k_Outline)
    {
        for (double const share : {0.0, 0.125, 0.25, 0.5, 0.75, 0.875})
        {
            Vector const top = PositionAt(row.u, share / 4);
            EXPECT_TRUE(IsNear(top, Vector(row.x * share, 6, row.z * share), 1e-15)) << row.u << ' ' << share;
            EXPECT_TRUE(IsNear(NormalAt(row.u, share / 4), Vector(0, 1, 0), 0));
            // The shares of the bottom are 1 and 0.25 to 0, of which v = 1 counts as the top again.
            Vector const bottom = PositionAt(row.u, 1 - share / 4);
            bool const isBottom = share > 0;
            EXPECT_TRUE(IsNear(bottom, Vector(row.x * share, isBottom ? -2 : 6, row.z * share), 1e-15))
                << row.u << ' ' << share;
            EXPECT_TRUE(IsNear(NormalAt(row.u, 1 - share / 4), Vector(0, isBottom ? -1 : 1, 0), 0));
        }
    }
}

TEST(BoxSurface, Middle_of_the_top_is_at_zero_beside_the_middle_of_the_box)
{
    EXPECT_TRUE(IsNear(PositionAt(0, 0), Vector(0, 6, 0), 0));
    EXPECT_TRUE(IsNear(PositionAt(0.3, 0), Vector(0, 6, 0), 0));
}

TEST(BoxSurface, Bands_include_their_lower_end_alone)
{
    // At u = 0.0625: X = 4 and Z = -1.5 where the bounds are full.
    EXPECT_TRUE(HasBits(PositionAt(0.0625, Below(0.25)), Vector(4 * (4 * Below(0.25)), 6, -1.5 * (4 * Below(0.25)))));
    EXPECT_TRUE(HasBits(PositionAt(0.0625, 0.25), Vector(4, 6, -1.5)));
    EXPECT_TRUE(HasBits(PositionAt(0.0625, 0.5), Vector(4, 2, -1.5)));
    EXPECT_TRUE(HasBits(PositionAt(0.0625, Below(0.75)), Vector(4, 6 - 8 * (Below(0.75) - 0.25) * 2, -1.5)));
    EXPECT_TRUE(HasBits(PositionAt(0.0625, 0.75), Vector(4, -2, -1.5)));
    EXPECT_TRUE(HasBits(PositionAt(0.0625, 0.875), Vector(2, -2, -0.75)));
    EXPECT_TRUE(HasBits(PositionAt(0.0625, Below(1)), Vector(16 * (1 - Below(1)), -2, -6 * (1 - Below(1)))));
    EXPECT_TRUE(IsNear(NormalAt(0.0625, Below(0.25)), Vector(0, 1, 0), 0));
    EXPECT_TRUE(IsNear(NormalAt(0.0625, 0.25), Vector(1, 0, 0), 0));
    EXPECT_TRUE(IsNear(NormalAt(0.0625, Below(0.75)), Vector(1, 0, 0), 0));
    EXPECT_TRUE(IsNear(NormalAt(0.0625, 0.75), Vector(0, -1, 0), 0));
    EXPECT_TRUE(IsNear(NormalAt(0.0625, Below(1)), Vector(0, -1, 0), 0));
}

TEST(BoxSurface, Height_falls_over_the_sides_from_top_to_bottom)
{
    for (int i = 0; i < 16; ++i)
    {
        EXPECT_EQ(PositionAt(0.5, 0.25 + i / 32.0).Y, 6 - 8 * i / 16.0);
    }
}

TEST(BoxSurface, Parameters_count_modulo_1)
{
    for (OutlinePoint const & row : k_Outline)
    {
        for (double const v : {0.125, 0.25, 0.5, 0.75, 0.875})
        {
            for (double const turns : {1.0, 2.0, 7.0})
            {
                // Where the sum is exact alone.
                if (row.u + turns - turns == row.u)
                {
                    EXPECT_TRUE(HasBits(PositionAt(row.u + turns, v + turns), PositionAt(row.u, v)));
                    EXPECT_TRUE(HasBits(NormalAt(row.u + turns, v + turns), NormalAt(row.u, v)));
                }
            }
        }
    }
    EXPECT_TRUE(IsNear(NormalAt(0.25, 1.25), Vector(0, 0, -1), 0)) << "the lower end of the sides";
    EXPECT_TRUE(HasBits(PositionAt(0.0625, 1.25), Vector(4, 6, -1.5)));
}

TEST(BoxSurface, Negative_u_falls_into_the_last_row)
{
    for (double const u : {-0.0625, -0.25, -0.5, -0.9375})
    {
        for (double const turns : {0.0, -1.0, -5.0})
        {
            EXPECT_TRUE(HasBits(PositionAt(u + turns, 0.5), Vector(4, 2, 8 * (8 * (u - 0.875))))) << u;
            EXPECT_TRUE(IsNear(NormalAt(u + turns, 0.5), Vector(1, 0, 0), 0)) << u;
        }
    }
    EXPECT_TRUE(IsNear(PositionAt(-0.0, 0.5), Vector(4, 2, 0), 0)) << "a zero of either sign is in the first row";
    EXPECT_TRUE(IsNear(PositionAt(-3.0, 0.5), Vector(4, 2, 0), 0)) << "and so are whole turns back";
}

TEST(BoxSurface, Negative_v_extends_the_bottom_beyond_the_box)
{
    EXPECT_TRUE(HasBits(PositionAt(0.0625, -0.25), Vector(20, -2, -7.5)));
    EXPECT_TRUE(HasBits(PositionAt(0.0625, -1.25), Vector(20, -2, -7.5)));
    EXPECT_TRUE(HasBits(PositionAt(0.0625, -0.75), Vector(28, -2, -10.5)));
    for (double const v : {-0.125, -0.25, -0.5, -0.75, -1.5, -1e-300})
    {
        EXPECT_TRUE(IsNear(NormalAt(0.25, v), Vector(0, -1, 0), 0)) << v;
    }
    EXPECT_TRUE(IsNear(PositionAt(0.0625, -0.0), Vector(0, 6, 0), 0)) << "a zero of either sign is the top";
    EXPECT_TRUE(IsNear(NormalAt(0.0625, -2.0), Vector(0, 1, 0), 0));
}

TEST(BoxSurface, Parameters_that_are_no_numbers_take_the_last_row_and_band)
{
    for (double const wild : {k_Nan, k_Infinity, -k_Infinity})
    {
        EXPECT_TRUE(HasBits(PositionAt(wild, 0.5), Vector(4, 2, k_Nan)));
        EXPECT_TRUE(HasBits(PositionAt(0.0625, wild), Vector(k_Nan, -2, k_Nan)));
        EXPECT_TRUE(IsNear(NormalAt(wild, 0.5), Vector(1, 0, 0), 0));
        EXPECT_TRUE(IsNear(NormalAt(0.25, wild), Vector(0, -1, 0), 0));
        EXPECT_TRUE(IsNear(NormalAt(wild, 0.1), Vector(0, 1, 0), 0));
    }
}

TEST(BoxSurface, Points_lie_on_the_box_for_parameters_from_0_to_1)
{
    Random random(511);
    for (int i = 0; i < 2000; ++i)
    {
        Vector const point = PositionAt(random.Uniform(0.0, 1.0), random.Uniform(0.0, 1.0));
        EXPECT_EQ(k_Box.IsInsideBox(point), 1);
        bool const isOnFace =
            point.X == -1 || point.X == 4 || point.Y == -2 || point.Y == 6 || point.Z == -3 || point.Z == 8;
        EXPECT_TRUE(isOnFace) << point.X << ' ' << point.Y << ' ' << point.Z;
    }
}

TEST(BoxSurface, Tangents_of_the_six_faces)
{
    struct Row
    {
        double u, v;
        Vector first, second;
    };
    Row const rows[] = {{0.0625, 0.5, {0, 1, 0}, {0, 0, 1}}, {0.9375, 0.5, {0, 1, 0}, {0, 0, 1}},
                        {0.25, 0.5, {1, 0, 0}, {0, -1, 0}},  {0.5, 0.5, {0, -1, 0}, {0, 0, 1}},
                        {0.75, 0.5, {-1, 0, 0}, {0, -1, 0}}, {0.25, 0.125, {-1, 0, 0}, {0, 0, 1}},
                        {0.25, 0.875, {1, 0, 0}, {0, 0, 1}}, {0.25, -0.125, {1, 0, 0}, {0, 0, 1}},
                        {-0.25, 0.5, {0, 1, 0}, {0, 0, 1}},  {0.25, 1.25, {1, 0, 0}, {0, -1, 0}}};
    for (Row const & row : rows)
    {
        Vector first(77, 77, 77);
        Vector second(77, 77, 77);
        EXPECT_EQ(k_Box.GetTangents(row.u, row.v, first, second), S_OK);
        EXPECT_TRUE(IsNear(first, row.first, 0)) << row.u << ' ' << row.v;
        EXPECT_TRUE(IsNear(second, row.second, 0)) << row.u << ' ' << row.v;
        EXPECT_TRUE(IsNear(Vector().SetCross(first, second), NormalAt(row.u, row.v), 0)) << row.u << ' ' << row.v;
    }
}
