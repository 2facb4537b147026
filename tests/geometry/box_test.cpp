/// The box: its bounds, the tests of points, and changes of size.

#include "geometry/box_checks.h"
#include "math/platform/result.h"
#include "math/point.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace geometry_test;

namespace
{

/// No two bounds are alike, and the middle is not the origin.
C3DBaseBox MakeBox()
{
    return {Vector(-1, -2, -3), Vector(4, 6, 8)};
}

double DistanceFrom(C3DBaseBox const & box, Vector const & point)
{
    double distance = 77;
    EXPECT_EQ(box.GetDistanceFrom(point, distance), S_OK);
    return distance;
}

} // namespace

TEST(Box, Default_bounds_are_zeros)
{
    EXPECT_TRUE(HasBounds(C3DBaseBox(), Vector(0, 0, 0), Vector(0, 0, 0)));
}

TEST(Box, Sides_lie_about_the_origin)
{
    EXPECT_TRUE(HasBounds(C3DBaseBox(3.0), Vector(-1.5, -1.5, -1.5), Vector(1.5, 1.5, 1.5)));
    EXPECT_TRUE(HasBounds(C3DBaseBox(-3.0), Vector(1.5, 1.5, 1.5), Vector(-1.5, -1.5, -1.5)));
    EXPECT_TRUE(HasBounds(C3DBaseBox(Vector(2, 4, -6)), Vector(-1, -2, 3), Vector(1, 2, -3)));
    EXPECT_TRUE(HasBounds(C3DBaseBox(Vector(k_Infinity, k_Nan, 1)), Vector(-k_Infinity, k_Nan, -0.5),
                          Vector(k_Infinity, k_Nan, 0.5)));
}

TEST(Box, Corners_are_stored_as_told_even_inverted)
{
    EXPECT_TRUE(HasBounds(C3DBaseBox(Vector(4, -0.0, k_Nan), Vector(1, 2, -k_Infinity)), Vector(4, -0.0, k_Nan),
                          Vector(1, 2, -k_Infinity)));
}

TEST(Box, Knows_its_kind_after_copying_too)
{
    C3DBaseBox const box = MakeBox();
    C3DBaseBox const copy(box);
    C3DBaseBox assigned(9.0);
    assigned = box;
    EXPECT_TRUE(HasBounds(copy, Vector(-1, -2, -3), Vector(4, 6, 8)));
    EXPECT_TRUE(HasBounds(assigned, Vector(-1, -2, -3), Vector(4, 6, 8)));
    C3DBaseBox const boxes[] = {C3DBaseBox(), C3DBaseBox(1.0), C3DBaseBox(Vector(1, 2, 3)), box, copy, assigned};
    for (C3DBaseBox const & each : boxes)
    {
        e3dBaseGeomType type = E3DGEOMTYPE_NONE;
        EXPECT_EQ(each.GetType(type), S_OK);
        EXPECT_EQ(type, 18);
    }
}

TEST(Box, Each_bound_has_its_getter_and_its_setter)
{
    C3DBaseBox box = MakeBox();
    EXPECT_EQ(box.GetMinX(), -1);
    EXPECT_EQ(box.GetMinY(), -2);
    EXPECT_EQ(box.GetMinZ(), -3);
    EXPECT_EQ(box.GetMaxX(), 4);
    EXPECT_EQ(box.GetMaxY(), 6);
    EXPECT_EQ(box.GetMaxZ(), 8);
    box.SetMinX(11);
    EXPECT_TRUE(HasBounds(box, Vector(11, -2, -3), Vector(4, 6, 8)));
    box.SetMinY(12);
    EXPECT_TRUE(HasBounds(box, Vector(11, 12, -3), Vector(4, 6, 8)));
    box.SetMinZ(13);
    EXPECT_TRUE(HasBounds(box, Vector(11, 12, 13), Vector(4, 6, 8)));
    box.SetMaxX(-14);
    EXPECT_TRUE(HasBounds(box, Vector(11, 12, 13), Vector(-14, 6, 8)));
    box.SetMaxY(-15);
    EXPECT_TRUE(HasBounds(box, Vector(11, 12, 13), Vector(-14, -15, 8)));
    box.SetMaxZ(-16);
    EXPECT_TRUE(HasBounds(box, Vector(11, 12, 13), Vector(-14, -15, -16)));
    box.SetMin(1, 2, 3);
    EXPECT_TRUE(HasBounds(box, Vector(1, 2, 3), Vector(-14, -15, -16)));
    box.SetMax(4, 5, 6);
    EXPECT_TRUE(HasBounds(box, Vector(1, 2, 3), Vector(4, 5, 6)));
    box.SetMin(Vector(7, 8, 9));
    EXPECT_TRUE(HasBounds(box, Vector(7, 8, 9), Vector(4, 5, 6)));
    box.SetMax(box.GetMin());
    EXPECT_TRUE(HasBounds(box, Vector(7, 8, 9), Vector(7, 8, 9)));
}

TEST(Box, Set_copies_both_corners)
{
    C3DBaseBox box(9.0);
    box.Set(MakeBox());
    EXPECT_TRUE(HasBounds(box, Vector(-1, -2, -3), Vector(4, 6, 8)));
}

TEST(Box, Get_gives_the_box_about_the_origin_with_the_maximum_for_sides)
{
    C3DBaseBox out(Vector(100, 100, 100), Vector(200, 200, 200));
    MakeBox().Get(out);
    EXPECT_TRUE(HasBounds(out, Vector(-2, -3, -4), Vector(2, 3, 4)));
    C3DBaseBox itself = MakeBox();
    itself.Get(itself);
    EXPECT_TRUE(HasBounds(itself, Vector(-2, -3, -4), Vector(2, 3, 4)));
}

TEST(Box, SetCube_and_SetSideLengths_put_the_box_about_the_origin)
{
    C3DBaseBox box = MakeBox();
    box.SetCube(5.0);
    EXPECT_TRUE(HasBounds(box, Vector(-2.5, -2.5, -2.5), Vector(2.5, 2.5, 2.5)));
    box.SetSideLengths(Vector(2, -4, 6));
    EXPECT_TRUE(HasBounds(box, Vector(-1, 2, -3), Vector(1, -2, 3)));
}

TEST(Box, SetSideLengths_takes_the_box_its_own_corners)
{
    C3DBaseBox byMinimum = MakeBox();
    byMinimum.SetSideLengths(byMinimum.GetMin());
    EXPECT_TRUE(HasBounds(byMinimum, Vector(0.5, 1, 1.5), Vector(-0.5, -1, -1.5)));
    C3DBaseBox byMaximum = MakeBox();
    byMaximum.SetSideLengths(byMaximum.GetMax());
    EXPECT_TRUE(HasBounds(byMaximum, Vector(-2, -3, -4), Vector(2, 3, 4)));
}

TEST(Box, GetSideLengths_is_the_maximum_less_the_minimum)
{
    Vector sides(77, 77, 77);
    MakeBox().GetSideLengths(sides);
    EXPECT_TRUE(HasBits(sides, Vector(5, 8, 11)));
    C3DBaseBox(Vector(1, 5, 0), Vector(-1, 5, k_Infinity)).GetSideLengths(sides);
    EXPECT_TRUE(HasBits(sides, Vector(-2, 0, k_Infinity)));
}

TEST(Box, GetCube_is_the_greatest_side_with_its_sign)
{
    auto const cubeOf = [](double x, double y, double z)
    {
        double side = 77;
        C3DBaseBox(Vector(0, 0, 0), Vector(x, y, z)).GetCube(side);
        return side;
    };
    EXPECT_EQ(cubeOf(3, 2, 1), 3);
    EXPECT_EQ(cubeOf(3, 1, 2), 3);
    EXPECT_EQ(cubeOf(1, 3, 2), 3);
    EXPECT_EQ(cubeOf(2, 3, 1), 3);
    EXPECT_EQ(cubeOf(1, 2, 3), 3);
    EXPECT_EQ(cubeOf(2, 1, 3), 3);
    EXPECT_EQ(cubeOf(1, 1, 1), 1);
    EXPECT_EQ(cubeOf(-3, -2, -9), -2);
}

TEST(Box, GetCube_of_equal_sides_takes_the_later_axis)
{
    // Only zeros of different sign tell which one it is. A side of -0 is -0 less 0.
    auto const cubeOf = [](double x, double y, double z)
    {
        double side = 77;
        C3DBaseBox(Vector(0, 0, 0), Vector(x, y, z)).GetCube(side);
        return side;
    };
    EXPECT_TRUE(SameBits(cubeOf(0.0, 0.0, -0.0), -0.0)) << "Z over X and Y";
    EXPECT_TRUE(SameBits(cubeOf(-0.0, -0.0, 0.0), 0.0)) << "Z over X and Y";
    EXPECT_TRUE(SameBits(cubeOf(0.0, -0.0, -1.0), -0.0)) << "Y over X";
    EXPECT_TRUE(SameBits(cubeOf(-0.0, 0.0, -1.0), 0.0)) << "Y over X";
    EXPECT_TRUE(SameBits(cubeOf(0.0, -1.0, -0.0), -0.0)) << "Z over X";
    EXPECT_TRUE(SameBits(cubeOf(-1.0, 0.0, -0.0), -0.0)) << "Z over Y";
}

TEST(Box, SetFromVectorArray_takes_the_bounds_of_the_points)
{
    Random random(501);
    for (unsigned long count = 1; count < 30; ++count)
    {
        std::vector<Vector> points;
        Vector low(k_Infinity, k_Infinity, k_Infinity);
        Vector high(-k_Infinity, -k_Infinity, -k_Infinity);
        for (unsigned long i = 0; i < count; ++i)
        {
            points.push_back(RandomVector(random, 5));
            for (unsigned long axis = 0; axis < 3; ++axis)
            {
                low[axis] = std::min(low[axis], points.back()[axis]);
                high[axis] = std::max(high[axis], points.back()[axis]);
            }
        }
        C3DBaseBox box(100.0);
        box.SetFromVectorArray(points.data(), count);
        EXPECT_TRUE(HasBounds(box, low, high)) << count;
    }
}

TEST(Box, SetFromVectorArray_without_points_changes_nothing)
{
    C3DBaseBox box = MakeBox();
    Vector const point(100, 100, 100);
    box.SetFromVectorArray(nullptr, 5);
    box.SetFromVectorArray(&point, 0);
    box.SetFromVectorArray(nullptr, 0);
    EXPECT_TRUE(HasBounds(box, Vector(-1, -2, -3), Vector(4, 6, 8)));
}

TEST(Box, SetFromVectorArray_keeps_a_NaN_of_the_first_point_alone)
{
    C3DBaseBox box(1.0);
    Vector const first[] = {Vector(k_Nan, 1, 1), Vector(5, 2, -2)};
    box.SetFromVectorArray(first, 2);
    EXPECT_TRUE(HasBounds(box, Vector(k_Nan, 1, -2), Vector(k_Nan, 2, 1)));
    Vector const later[] = {Vector(1, 1, 1), Vector(k_Nan, 2, k_Nan), Vector(-k_Infinity, 0, k_Infinity)};
    box.SetFromVectorArray(later, 3);
    EXPECT_TRUE(HasBounds(box, Vector(-k_Infinity, 0, 1), Vector(1, 2, k_Infinity)));
}

TEST(Box, SetFromVectorArray_keeps_the_sign_of_the_first_zero)
{
    C3DBaseBox box(1.0);
    Vector const points[] = {Vector(0.0, -0.0, 0.0), Vector(-0.0, 0.0, -0.0)};
    box.SetFromVectorArray(points, 2);
    EXPECT_TRUE(HasBounds(box, points[0], points[0]));
}

TEST(Box, SetFromVectorArray_takes_the_box_its_own_corner)
{
    C3DBaseBox box = MakeBox();
    box.SetFromVectorArray(&box.GetMax(), 1);
    EXPECT_TRUE(HasBounds(box, Vector(4, 6, 8), Vector(4, 6, 8)));
}

TEST(Box, Tests_of_points_look_at_the_named_axes_with_ends_included)
{
    C3DBaseBox const box = MakeBox();
    struct Position
    {
        double value[3];
        bool isWithin;
    };
    Position const positions[] = {{{-1, -2, -3}, true},
                                  {{4, 6, 8}, true},
                                  {{1, 1, 1}, true},
                                  {{Below(-1), Below(-2), Below(-3)}, false},
                                  {{Above(4), Above(6), Above(8)}, false},
                                  {{k_Nan, k_Nan, k_Nan}, false}};
    for (Position const & x : positions)
    {
        for (Position const & y : positions)
        {
            for (Position const & z : positions)
            {
                Vector const point(x.value[0], y.value[1], z.value[2]);
                EXPECT_EQ(box.IsBetweenXPlane(point), x.isWithin ? 1 : 0);
                EXPECT_EQ(box.IsBetweenYPlane(point), y.isWithin ? 1 : 0);
                EXPECT_EQ(box.IsBetweenZPlane(point), z.isWithin ? 1 : 0);
                EXPECT_EQ(box.IsInsideYZRect(point), y.isWithin && z.isWithin ? 1 : 0);
                EXPECT_EQ(box.IsInsideXZRect(point), x.isWithin && z.isWithin ? 1 : 0);
                EXPECT_EQ(box.IsInsideXYRect(point), x.isWithin && y.isWithin ? 1 : 0);
                EXPECT_EQ(box.IsInsideBox(point), x.isWithin && y.isWithin && z.isWithin ? 1 : 0);
            }
        }
    }
}

TEST(Box, No_point_is_inside_an_inverted_box_and_one_is_inside_a_flat_one)
{
    C3DBaseBox const inverted(Vector(1, 1, 1), Vector(-1, -1, -1));
    EXPECT_EQ(inverted.IsInsideBox(Vector(0, 0, 0)), 0);
    EXPECT_EQ(inverted.IsInsideBox(Vector(1, 1, 1)), 0);
    EXPECT_EQ(C3DBaseBox().IsInsideBox(Vector(0, -0.0, 0)), 1);
}

TEST(Box, Inflate_moves_each_bound_by_half)
{
    C3DBaseBox box = MakeBox();
    box.Inflate(Vector(1, -2, 4));
    EXPECT_TRUE(HasBounds(box, Vector(-1.5, -1, -5), Vector(4.5, 5, 10)));
    C3DBaseBox byItself = MakeBox();
    byItself.Inflate(byItself.GetMin());
    EXPECT_TRUE(HasBounds(byItself, Vector(-0.5, -1, -1.5), Vector(3.5, 5, 6.5)));
    C3DBaseBox byMaximum = MakeBox();
    byMaximum.Inflate(byMaximum.GetMax());
    EXPECT_TRUE(HasBounds(byMaximum, Vector(-3, -5, -7), Vector(6, 9, 12)));
}

TEST(Box, Scale_keeps_the_middle_and_multiplies_the_sides)
{
    C3DBaseBox box = MakeBox();
    box.Scale(Vector(2, 0.5, -1));
    EXPECT_TRUE(HasBounds(box, Vector(-3.5, 0, 8), Vector(6.5, 4, -3)));
    C3DBaseBox same = MakeBox();
    same.Scale(Vector(1, 1, 1));
    EXPECT_TRUE(HasBounds(same, Vector(-1, -2, -3), Vector(4, 6, 8)));
    C3DBaseBox none = MakeBox();
    none.Scale(Vector(0, 0, 0));
    EXPECT_TRUE(HasBounds(none, Vector(1.5, 2, 2.5), Vector(1.5, 2, 2.5)));
    C3DBaseBox byItself = MakeBox();
    byItself.Scale(byItself.GetMin());
    EXPECT_TRUE(HasBounds(byItself, Vector(4, 10, 19), Vector(-1, -6, -14)));
}

TEST(Box, Scale_is_linear_in_the_middle_and_the_sides)
{
    Random random(502);
    for (int i = 0; i < 200; ++i)
    {
        Vector const a = RandomVector(random, 5);
        Vector const b = RandomVector(random, 5);
        Vector const factors = RandomVector(random, 5);
        C3DBaseBox box(a, b);
        box.Scale(factors);
        Vector middle;
        Vector half;
        middle.SetMidpoint(a, b);
        half.Sub(b, a).Mul(0.5).MulComp(factors);
        EXPECT_TRUE(IsNear(box.GetMin(), Vector().Sub(middle, half), 1e-13));
        EXPECT_TRUE(IsNear(box.GetMax(), Vector().Add(middle, half), 1e-13));
    }
}

TEST(Box, GetDistanceFrom_inside_is_the_gap_to_the_X_face_whatever_face_is_nearest)
{
    C3DBaseBox const box = MakeBox();
    EXPECT_EQ(DistanceFrom(box, Vector(0, 0, 0)), -4) << "a zero looks at the greater side";
    EXPECT_EQ(DistanceFrom(box, Vector(-0.75, 0, 0)), -0.25);
    EXPECT_EQ(DistanceFrom(box, Vector(3, 5.875, -2.875)), -1);
    EXPECT_EQ(DistanceFrom(box, Vector(4, 6, 8)), 0);
    EXPECT_EQ(DistanceFrom(box, Vector(-1, -2, -3)), 0);
}

TEST(Box, GetDistanceFrom_outside_is_zero_or_the_least_coordinate)
{
    C3DBaseBox const box = MakeBox();
    EXPECT_EQ(DistanceFrom(box, Vector(5, 1, 1)), 0) << "over one face";
    EXPECT_EQ(DistanceFrom(box, Vector(1, -7, 1)), 0);
    EXPECT_EQ(DistanceFrom(box, Vector(1, 1, 9)), 0);
    EXPECT_EQ(DistanceFrom(box, Vector(5, 7, 1)), 0) << "beyond an edge";
    EXPECT_EQ(DistanceFrom(box, Vector(1, 7, -9)), 0);
    EXPECT_EQ(DistanceFrom(box, Vector(5, 1, -9)), 0);
    EXPECT_EQ(DistanceFrom(box, Vector(5, 7, 9)), 5) << "beyond a corner";
    EXPECT_EQ(DistanceFrom(box, Vector(-5, 7, 9)), -5);
    EXPECT_EQ(DistanceFrom(box, Vector(5, -7, -9)), -9);
}

TEST(Box, GetDistanceFrom_a_box_beside_the_origin_measures_from_the_far_edge)
{
    C3DBaseBox const box(Vector(1, 1, 1), Vector(4, 5, 6));
    EXPECT_EQ(DistanceFrom(box, Vector(0.5, 2, 2)), -3.5) << "a point before the X face";
    EXPECT_EQ(DistanceFrom(box, Vector(2, 0.5, 2)), -4.5);
    EXPECT_EQ(DistanceFrom(box, Vector(2, 2, 0.5)), -5.5);
    EXPECT_EQ(DistanceFrom(box, Vector(1 - 0.5, 1 - 0.5, 2)), std::hypot(3.5, 4.5));
    EXPECT_EQ(DistanceFrom(box, Vector(0.5, 0.5, 0.5)), Vector(3.5, 4.5, 5.5).GetLength());
}

TEST(Box, ProjectOn_is_not_implemented_and_writes_nothing)
{
    double u = 77;
    double v = 78;
    EXPECT_EQ(MakeBox().ProjectOn(Vector(1, 2, 3), u, v), E_NOTIMPL);
    EXPECT_EQ(u, 77);
    EXPECT_EQ(v, 78);
}

TEST(Box, Intersect_Point_is_not_implemented_and_writes_nothing)
{
    unsigned long flags = 0xBAD;
    tagS3DGEOMINFO info{};
    info.distance = 77;
    EXPECT_EQ(MakeBox().Intersect_Point(nullptr, C3DPoint(), nullptr, flags, &info, 1, 0), E_NOTIMPL);
    EXPECT_EQ(flags, 0xBADUL);
    EXPECT_EQ(info.distance, 77);
}
