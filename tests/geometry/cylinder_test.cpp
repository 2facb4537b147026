/// The cylinder: its axis, its frame, and its surface as a function of two parameters.

#include "geometry/vector_checks.h"
#include "math/cylinder.h"
#include "math/platform/result.h"
#include "math/point.h"
#include "math/transformation.h"

#include <gtest/gtest.h>

#include <numbers>

using namespace geometry_test;

namespace
{

constexpr double k_TwoPi = 2 * std::numbers::pi;

/// The axis vector is (2, 3, 6), of length 7, about (2, 2.5, 4).
C3DBaseCylinder MakeCylinder()
{
    return {5, Vector(1, 1, 1), Vector(3, 4, 7)};
}

/// The frame of that cylinder: its rows are X, the axis vector and their cross product.
Vector InFrame(Vector const & p)
{
    return {2 + p.X + 2 * p.Y, 2.5 + 3 * p.Y - 6 * p.Z, 4 + 6 * p.Y + 3 * p.Z};
}

double RadiusOf(C3DBaseCylinder const & cylinder)
{
    double radius = k_Mark;
    cylinder.GetRadius(radius);
    return radius;
}

double LengthOf(C3DBaseCylinder const & cylinder)
{
    double length = k_Mark;
    cylinder.GetLength(length);
    return length;
}

Matrix FrameOf(C3DBaseCylinder const & cylinder)
{
    C3DTransfo frame;
    EXPECT_EQ(cylinder.GetTransfo(frame), S_OK);
    return *frame.GetMatrix();
}

Vector Row(Matrix const & matrix, int row)
{
    return {matrix.Get(row, 0), matrix.Get(row, 1), matrix.Get(row, 2)};
}

/// Start and end by their middle and difference, which is all that can be asked for.
testing::AssertionResult HasAxis(C3DBaseCylinder const & cylinder, Vector const & start, Vector const & end)
{
    Matrix const frame = FrameOf(cylinder);
    testing::AssertionResult const result = IsNear(Row(frame, 1), Vector().Sub(end, start), 0);
    return result ? IsNear(Row(frame, 3), Vector().SetMidpoint(start, end), 0) : result;
}

Vector PositionAt(double u, double v)
{
    Vector point = MarkedVector();
    EXPECT_EQ(MakeCylinder().GetPos(u, v, point), S_OK);
    return point;
}

Vector NormalAt(double u, double v)
{
    Vector normal = MarkedVector();
    EXPECT_EQ(MakeCylinder().GetNormal(u, v, normal), S_OK);
    return normal;
}

constexpr double k_Rounding = 1e-12;
double const k_Around[] = {0, 0.125, 0.3, 0.75, 1.4, -0.2};
// The side, with turns and the ends of its band, and the two rims.
double const k_SideBand[] = {0, -0.0, 0.1, Below(0.25), 1.125, 3, -1, -5};
double const k_EndRim[] = {0.25, 0.5, 0.75, 0.9, Below(1), 1.25, 7.5};
double const k_StartRim[] = {-0.1, -0.25, -0.5, -0.75, -0.9, -1.125, -1e-300};

} // namespace

TEST(Cylinder, Default_is_tiny_and_lies_along_X)
{
    C3DBaseCylinder const cylinder;
    EXPECT_EQ(RadiusOf(cylinder), 1e-6);
    EXPECT_EQ(LengthOf(cylinder), 2e-6);
    EXPECT_TRUE(HasAxis(cylinder, Vector(-1e-6, 0, 0), Vector(1e-6, 0, 0)));
}

TEST(Cylinder, Knows_its_kind)
{
    C3DBaseCylinder const cylinders[] = {C3DBaseCylinder(), C3DBaseCylinder(1, 2, E3DCYLINDERAXIS_Z), MakeCylinder()};
    for (C3DBaseCylinder const & cylinder : cylinders)
    {
        e3dBaseGeomType type = E3DGEOMTYPE_NONE;
        EXPECT_EQ(cylinder.GetType(type), S_OK);
        EXPECT_EQ(type, 17);
    }
}

TEST(Cylinder, Axis_types_have_their_numbers)
{
    EXPECT_EQ(E3DCYLINDERAXIS_X, 0);
    EXPECT_EQ(E3DCYLINDERAXIS_Y, 1);
    EXPECT_EQ(E3DCYLINDERAXIS_Z, 2);
    EXPECT_EQ(E3DCYLINDERAXIS_Y_AGAIN, 3);
}

TEST(Cylinder, Axis_types_put_the_axis_about_the_origin)
{
    Vector const halves[] = {Vector(2, 0, 0), Vector(0, 2, 0), Vector(0, 0, 2), Vector(0, 2, 0)};
    for (int type = 0; type < 4; ++type)
    {
        Vector const & half = halves[type];
        Vector const start = Vector().Negate(half);
        EXPECT_TRUE(HasAxis(C3DBaseCylinder(3, 4, static_cast<tagE3DCylinderAxisType>(type)), start, half)) << type;
        C3DBaseCylinder cylinder = MakeCylinder();
        cylinder.Set(3, 4, static_cast<tagE3DCylinderAxisType>(type));
        EXPECT_TRUE(HasAxis(cylinder, start, half)) << type;
        EXPECT_EQ(RadiusOf(cylinder), 3);
        cylinder.Set(3, -4, static_cast<tagE3DCylinderAxisType>(type));
        EXPECT_TRUE(HasAxis(cylinder, half, start)) << "a negative length turns it round";
        EXPECT_EQ(LengthOf(cylinder), 4);
    }
}

TEST(Cylinder, Unknown_axis_type_sets_the_radius_alone)
{
    for (int const type : {-1, 4, 99, -2147483647})
    {
        C3DBaseCylinder cylinder = MakeCylinder();
        cylinder.Set(8, 4, static_cast<tagE3DCylinderAxisType>(type));
        EXPECT_EQ(RadiusOf(cylinder), 8);
        EXPECT_TRUE(HasAxis(cylinder, Vector(1, 1, 1), Vector(3, 4, 7))) << type;
        C3DBaseCylinder const built(8, 4, static_cast<tagE3DCylinderAxisType>(type));
        EXPECT_EQ(RadiusOf(built), 8);
    }
}

TEST(Cylinder, Radius_not_above_the_smallest_becomes_that_on_every_way_in)
{
    double const radii[][2] = {{0, 1e-6},
                               {-1, 1e-6},
                               {k_Nan, 1e-6},
                               {1e-6, 1e-6},
                               {Below(1e-6), 1e-6},
                               {Above(1e-6), Above(1e-6)},
                               {k_Infinity, k_Infinity}};
    for (auto const & [given, stored] : radii)
    {
        EXPECT_EQ(RadiusOf(C3DBaseCylinder(given, 4, E3DCYLINDERAXIS_X)), stored);
        EXPECT_EQ(RadiusOf(C3DBaseCylinder(given, Vector(0, 0, 0), Vector(1, 0, 0))), stored);
        C3DBaseCylinder cylinder = MakeCylinder();
        cylinder.SetRadius(given);
        EXPECT_EQ(RadiusOf(cylinder), stored);
        cylinder = MakeCylinder();
        cylinder.Set(given, 4, E3DCYLINDERAXIS_Z);
        EXPECT_EQ(RadiusOf(cylinder), stored);
    }
}

TEST(Cylinder, Set_from_a_cylinder_copies_the_radius_alone_and_assignment_all)
{
    C3DBaseCylinder cylinder(2, 4, E3DCYLINDERAXIS_Z);
    cylinder.Set(MakeCylinder());
    EXPECT_EQ(RadiusOf(cylinder), 5);
    EXPECT_TRUE(HasAxis(cylinder, Vector(0, 0, -2), Vector(0, 0, 2)));
    cylinder = MakeCylinder();
    EXPECT_TRUE(HasAxis(cylinder, Vector(1, 1, 1), Vector(3, 4, 7)));
}

TEST(Cylinder, SetAxis_stores_what_it_is_told)
{
    C3DBaseCylinder cylinder = MakeCylinder();
    cylinder.SetAxis(Vector(4, 4, 4), Vector(4, 4, 4));
    EXPECT_TRUE(HasAxis(cylinder, Vector(4, 4, 4), Vector(4, 4, 4)));
    EXPECT_EQ(LengthOf(cylinder), 0);
    cylinder.SetAxis(Vector(1, 0, 2), Vector(4, 0, 6));
    EXPECT_EQ(LengthOf(cylinder), 5);
    EXPECT_EQ(RadiusOf(cylinder), 5);
}

TEST(CylinderFrame, Rows_are_X_the_axis_and_their_cross_product)
{
    Matrix const frame = FrameOf(MakeCylinder());
    EXPECT_TRUE(IsNear(Row(frame, 0), Vector(1, 0, 0), 0));
    EXPECT_TRUE(IsNear(Row(frame, 1), Vector(2, 3, 6), 0)) << "not made unit";
    EXPECT_TRUE(IsNear(Row(frame, 2), Vector(0, -6, 3), 0));
    EXPECT_TRUE(IsNear(Row(frame, 3), Vector(2, 2.5, 4), 0));
    EXPECT_EQ(frame.Get(3, 3), 1);
}

TEST(CylinderFrame, Axis_along_X_gives_a_null_third_row)
{
    Matrix const frame = FrameOf(C3DBaseCylinder(1, 4, E3DCYLINDERAXIS_X));
    EXPECT_TRUE(IsNear(Row(frame, 0), Vector(1, 0, 0), 0));
    EXPECT_TRUE(IsNear(Row(frame, 1), Vector(4, 0, 0), 0));
    EXPECT_TRUE(IsNear(Row(frame, 2), Vector(0, 0, 0), 0));
}

TEST(CylinderFrame, Replaces_all_that_the_transformation_held)
{
    C3DTransfo frame;
    frame.SetScaling(2, 3, 4);
    frame.SetTranslation(9, 9, 9);
    frame.SetRotation(E3D_AXIS_Y, 1.0);
    EXPECT_EQ(MakeCylinder().GetTransfo(frame), S_OK);
    EXPECT_TRUE(IsNear(Row(*frame.GetMatrix(), 0), Vector(1, 0, 0), 0));
    EXPECT_TRUE(IsNear(Row(*frame.GetMatrix(), 1), Vector(2, 3, 6), 0));
    EXPECT_TRUE(IsNear(Row(*frame.GetMatrix(), 2), Vector(0, -6, 3), 0));
    EXPECT_TRUE(IsNear(Row(*frame.GetMatrix(), 3), Vector(2, 2.5, 4), 0));
    EXPECT_FALSE(frame.QuickIsIdentity());
    C3DTransfo fresh;
    ASSERT_TRUE(fresh.QuickIsIdentity());
    MakeCylinder().GetTransfo(fresh);
    EXPECT_FALSE(fresh.QuickIsIdentity()) << "or its readers would take it for the identity";
}

TEST(CylinderSurface, Normal_of_the_side_lies_across_and_passes_the_frame_as_a_position)
{
    for (double const u : k_Around)
    {
        Vector const expected = InFrame(Vector(0, std::sin(k_TwoPi * u), std::cos(k_TwoPi * u)));
        for (double const v : k_SideBand)
        {
            EXPECT_TRUE(IsNear(NormalAt(u, v), expected, k_Rounding)) << u << ' ' << v;
        }
    }
}

TEST(CylinderSurface, Normals_of_the_rims_are_half_the_axis_long)
{
    for (double const v : k_EndRim)
    {
        EXPECT_TRUE(IsNear(NormalAt(0.3, v), InFrame(Vector(3.5, 0, 0)), k_Rounding)) << v;
    }
    for (double const v : k_StartRim)
    {
        EXPECT_TRUE(IsNear(NormalAt(0.3, v), InFrame(Vector(-3.5, 0, 0)), k_Rounding)) << v;
    }
}

TEST(CylinderSurface, Position_on_the_side_passes_the_frame_twice)
{
    for (double const u : k_Around)
    {
        Vector once = InFrame(Vector(0, std::sin(k_TwoPi * u), std::cos(k_TwoPi * u)));
        Vector const expected = InFrame(once.Mul(5));
        for (double const v : k_SideBand)
        {
            EXPECT_TRUE(IsNear(PositionAt(u, v), expected, 100 * k_Rounding)) << u << ' ' << v;
        }
    }
    // By hand: (0, 0, 1) goes to (2, -3.5, 7), times 5 to (10, -17.5, 35), and that once more.
    EXPECT_TRUE(IsNear(PositionAt(0, 0), Vector(-23, -260, 4), k_Rounding));
}

TEST(CylinderSurface, Positions_on_the_rims_pass_the_frame_once)
{
    for (double const u : k_Around)
    {
        double const y = 5 * std::sin(k_TwoPi * u);
        double const z = 5 * std::cos(k_TwoPi * u);
        for (double const v : k_EndRim)
        {
            EXPECT_TRUE(IsNear(PositionAt(u, v), InFrame(Vector(3.5, y, z)), k_Rounding)) << u << ' ' << v;
        }
        for (double const v : k_StartRim)
        {
            EXPECT_TRUE(IsNear(PositionAt(u, v), InFrame(Vector(-3.5, y, z)), k_Rounding)) << u << ' ' << v;
        }
    }
}

TEST(CylinderSurface, Tangents_of_the_side)
{
    for (double const u : k_Around)
    {
        for (double const v : k_SideBand)
        {
            Vector first = MarkedVector();
            Vector second = MarkedVector();
            EXPECT_EQ(MakeCylinder().GetTangents(u, v, first, second), S_OK);
            Vector const along(0, std::cos(k_TwoPi * u), -std::sin(k_TwoPi * u));
            EXPECT_TRUE(IsNear(first, InFrame(along), k_Rounding)) << u << ' ' << v;
            EXPECT_TRUE(IsNear(second, InFrame(Vector(-1, 0, 0)), k_Rounding)) << u << ' ' << v;
        }
    }
}

TEST(CylinderSurface, Tangents_of_the_rims)
{
    auto const expectRim = [](double u, double v, double w)
    {
        Vector first = MarkedVector();
        Vector second = MarkedVector();
        EXPECT_EQ(MakeCylinder().GetTangents(u, v, first, second), S_OK);
        Vector const outwards(0, std::sin(k_TwoPi * u), std::cos(k_TwoPi * u));
        EXPECT_TRUE(IsNear(first, InFrame(outwards), k_Rounding)) << u << ' ' << v;
        Vector const around(0, std::cos(k_TwoPi * (w + 0.5)), std::sin(k_TwoPi * w));
        EXPECT_TRUE(IsNear(second, InFrame(around), 100 * k_Rounding)) << u << ' ' << v;
    };
    for (double const u : k_Around)
    {
        for (double const v : k_EndRim)
        {
            expectRim(u, v, 4 * (v - 0.75));
        }
        for (double const v : k_StartRim)
        {
            expectRim(u, v, 4 * v);
        }
    }
}

TEST(CylinderSurface, Tangents_of_the_rims_by_hand)
{
    // A unit cylinder along Y has the identity for its frame.
    C3DBaseCylinder const cylinder(2, 1, E3DCYLINDERAXIS_Y);
    Vector first = MarkedVector();
    Vector second = MarkedVector();
    cylinder.GetTangents(0.25, 0.75, first, second);
    EXPECT_TRUE(IsNear(first, Vector(0, 1, 0), 1e-15));
    EXPECT_TRUE(IsNear(second, Vector(0, -1, 0), 1e-15));
    cylinder.GetTangents(0.25, 0.8125, first, second);
    EXPECT_TRUE(IsNear(second, Vector(0, 0, 1), 1e-15));
    cylinder.GetTangents(0.25, -0.0625, first, second);
    EXPECT_TRUE(IsNear(second, Vector(0, 0, -1), 1e-15));
    cylinder.GetTangents(0, -0.25, first, second);
    EXPECT_TRUE(IsNear(first, Vector(0, 0, 1), 1e-15));
    EXPECT_TRUE(IsNear(second, Vector(0, -1, 0), 1e-14));
}

TEST(CylinderSurface, Axis_along_X_flattens_the_rim)
{
    C3DBaseCylinder const cylinder(1, 4, E3DCYLINDERAXIS_X);
    Vector point = MarkedVector();
    EXPECT_EQ(cylinder.GetPos(0, 0.5, point), S_OK);
    EXPECT_TRUE(IsNear(point, Vector(2, 0, 0), 0)) << "the null row takes Z away";
    EXPECT_EQ(cylinder.GetPos(0.25, 0.5, point), S_OK);
    EXPECT_TRUE(IsNear(point, Vector(6, 0, 0), 1e-14)) << "and Y runs along the axis";
}

TEST(Cylinder, Contacts_are_not_implemented_and_nothing_is_written)
{
    C3DBaseCylinder const cylinder = MakeCylinder();
    unsigned long flags = 0xBAD;
    tagS3DGEOMINFO info{};
    info.distance = k_Mark;
    EXPECT_EQ(cylinder.Intersect_Point(nullptr, C3DPoint(), nullptr, flags, &info, 1, 0), E_NOTIMPL);
    EXPECT_EQ(flags, 0xBADUL);
    EXPECT_EQ(info.distance, k_Mark);
}
