/// Points.

#include "math/point.h"

#include "geometry/vector_checks.h"

using namespace geometry_test;

TEST(Point, Default_point_is_the_origin)
{
    Vector position = MarkedVector();
    EXPECT_EQ(C3DPoint().GetPos(position), 0);
    EXPECT_TRUE(SameBits(position, Vector(0, 0, 0)));
}

TEST(Point, Position_is_stored_as_given)
{
    C3DPoint point(Vector(1, -0.0, k_Infinity));
    Vector position = MarkedVector();
    EXPECT_EQ(point.GetPos(position), 0);
    EXPECT_TRUE(SameBits(position, Vector(1, -0.0, k_Infinity)));
    point.SetPos(Vector(k_Nan, 5, 6));
    point.GetPos(position);
    EXPECT_TRUE(SameBits(position, Vector(k_Nan, 5, 6)));
}

TEST(Point, Distance_is_Euclidean)
{
    C3DPoint const point(Vector(1, 2, 3));
    double distance = k_Mark;
    EXPECT_EQ(point.GetDistanceFrom(Vector(3, 8, -6), distance), 0);
    EXPECT_EQ(distance, 11);
    point.GetDistanceFrom(Vector(1, 2, 3), distance);
    EXPECT_TRUE(SameBits(distance, 0.0));
    point.GetDistanceFrom(Vector(k_Nan, 2, 3), distance);
    EXPECT_TRUE(std::isnan(distance));
    point.GetDistanceFrom(Vector(1, -k_Infinity, 3), distance);
    EXPECT_EQ(distance, k_Infinity);
}

TEST(Point, Copies_and_assignments_carry_the_position)
{
    C3DPoint const source(Vector(1, 2, 3));
    C3DPoint const copy(source); // NOLINT(performance-unnecessary-copy-initialization): the copy is what is tested
    C3DPoint assigned;
    assigned = source;
    for (C3DPoint const & point : {copy, assigned})
    {
        Vector position;
        point.GetPos(position);
        EXPECT_TRUE(SameBits(position, Vector(1, 2, 3)));
    }
}
