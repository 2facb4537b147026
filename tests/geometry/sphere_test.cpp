/// The sphere: its radius, its center, and distances from it.

#include "geometry/vector_checks.h"
#include "math/platform/result.h"
#include "math/sphere.h"

#include <gtest/gtest.h>

using namespace geometry_test;

namespace
{

testing::AssertionResult Is(C3DBaseSphere const & sphere, double radius, Vector const & center)
{
    double foundRadius = k_Mark;
    Vector foundCenter = MarkedVector();
    sphere.GetRadius(foundRadius);
    sphere.GetCenter(foundCenter);
    if (!SameBits(foundRadius, radius))
    {
        return testing::AssertionFailure() << "radius " << foundRadius << " where " << radius << " is expected";
    }
    return HasBits(foundCenter, center);
}

/// A radius on its way in, and what becomes of it.
struct Radius
{
    double given;
    double stored;
};

Radius const k_Radii[] = {{0.0, 1e-6},   {-0.0, 1e-6},
                          {-1.0, 1e-6},  {-k_Infinity, 1e-6},
                          {k_Nan, 1e-6}, {Below(1e-6), 1e-6},
                          {1e-6, 1e-6},  {Above(1e-6), Above(1e-6)},
                          {2.5, 2.5},    {k_Infinity, k_Infinity}};

} // namespace

TEST(Sphere, Default_is_the_smallest_one_about_the_origin)
{
    EXPECT_TRUE(Is(C3DBaseSphere(), 1e-6, Vector(0, 0, 0)));
}

TEST(Sphere, Radius_not_above_the_smallest_becomes_that_on_every_way_in)
{
    Vector const center(1, -2, 3);
    for (Radius const & radius : k_Radii)
    {
        EXPECT_TRUE(Is(C3DBaseSphere(radius.given), radius.stored, Vector(0, 0, 0)));
        EXPECT_TRUE(Is(C3DBaseSphere(radius.given, center), radius.stored, center));
        C3DBaseSphere set(9, Vector(7, 7, 7));
        set.Set(radius.given, center);
        EXPECT_TRUE(Is(set, radius.stored, center));
        C3DBaseSphere setRadius(9, center);
        setRadius.SetRadius(radius.given);
        EXPECT_TRUE(Is(setRadius, radius.stored, center));
    }
}

TEST(Sphere, SetCenter_stores_anything_and_keeps_the_radius)
{
    C3DBaseSphere sphere(2, Vector(1, 2, 3));
    sphere.SetCenter(Vector(-0.0, k_Nan, k_Infinity));
    EXPECT_TRUE(Is(sphere, 2, Vector(-0.0, k_Nan, k_Infinity)));
}

TEST(Sphere, Set_from_a_sphere_copies_the_radius_alone)
{
    C3DBaseSphere sphere(2, Vector(1, 2, 3));
    sphere.Set(C3DBaseSphere(5, Vector(7, 8, 9)));
    EXPECT_TRUE(Is(sphere, 5, Vector(1, 2, 3)));
    sphere.Set(sphere);
    EXPECT_TRUE(Is(sphere, 5, Vector(1, 2, 3)));
}

TEST(Sphere, Copy_and_assignment_copy_all)
{
    C3DBaseSphere const source(5, Vector(7, 8, 9));
    C3DBaseSphere const copy(source);
    C3DBaseSphere assigned;
    assigned = source;
    EXPECT_TRUE(Is(copy, 5, Vector(7, 8, 9)));
    EXPECT_TRUE(Is(assigned, 5, Vector(7, 8, 9)));
}

TEST(Sphere, Knows_its_kind)
{
    C3DBaseSphere const spheres[] = {C3DBaseSphere(), C3DBaseSphere(2), C3DBaseSphere(2, Vector(1, 2, 3))};
    for (C3DBaseSphere const & sphere : spheres)
    {
        e3dBaseGeomType type = E3DGEOMTYPE_NONE;
        EXPECT_EQ(sphere.GetType(type), S_OK);
        EXPECT_EQ(type, 20);
    }
}

TEST(Sphere, GetDistanceFrom_is_negative_inside_and_0_on_the_surface)
{
    C3DBaseSphere const sphere(5, Vector(1, 2, 3));
    auto const distanceFrom = [&sphere](Vector const & point)
    {
        double distance = k_Mark;
        EXPECT_EQ(sphere.GetDistanceFrom(point, distance), S_OK);
        return distance;
    };
    EXPECT_EQ(distanceFrom(Vector(1, 2, 3)), -5);
    EXPECT_EQ(distanceFrom(Vector(4, 2, 7)), 0);
    EXPECT_EQ(distanceFrom(Vector(1, 2, -2)), 0);
    EXPECT_EQ(distanceFrom(Vector(1, 5, 3)), -2);
    EXPECT_EQ(distanceFrom(Vector(1, -10, 12)), 10);
    EXPECT_TRUE(SameBits(distanceFrom(Vector(1, k_Nan, 12)), k_Nan));
    EXPECT_EQ(distanceFrom(Vector(k_Infinity, 0, 0)), k_Infinity);
}
