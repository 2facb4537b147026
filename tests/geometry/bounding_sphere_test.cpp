/// The bounding sphere: how it grows, and its transformation.

#include "geometry/vector_checks.h"
#include "math/bounding_sphere.h"
#include "math/platform/result.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <type_traits>

using namespace geometry_test;

namespace
{

double RadiusOf(C3DBSphere const & sphere)
{
    double radius = k_Mark;
    sphere.GetRadius(radius);
    return radius;
}

Vector CenterOf(C3DBSphere const & sphere)
{
    Vector center = MarkedVector();
    sphere.GetCenter(center);
    return center;
}

Vector RandomDirection(Random & random)
{
    Vector direction = RandomVector(random, 1);
    direction.Normalize();
    return direction;
}

/// Whether a sphere holds another one, with room for rounding.
bool Holds(C3DBSphere const & outer, C3DBSphere const & inner)
{
    return GetDistance(CenterOf(outer), CenterOf(inner)) + RadiusOf(inner) <= RadiusOf(outer) + 1e-12;
}

} // namespace

static_assert(std::has_virtual_destructor_v<C3DBSphere>);

TEST(BoundingSphere, Constructors_give_the_sphere)
{
    EXPECT_EQ(RadiusOf(C3DBSphere()), 1e-6);
    EXPECT_TRUE(HasBits(CenterOf(C3DBSphere()), Vector(0, 0, 0)));
    EXPECT_EQ(RadiusOf(C3DBSphere(-3)), 1e-6);
    EXPECT_EQ(RadiusOf(C3DBSphere(3)), 3);
    EXPECT_TRUE(HasBits(CenterOf(C3DBSphere(3)), Vector(0, 0, 0)));
    EXPECT_EQ(RadiusOf(C3DBSphere(k_Nan, Vector(1, 2, 3))), 1e-6);
    EXPECT_TRUE(HasBits(CenterOf(C3DBSphere(3, Vector(1, 2, 3))), Vector(1, 2, 3)));
    C3DBSphere const spheres[] = {C3DBSphere(), C3DBSphere(3), C3DBSphere(3, Vector(1, 2, 3))};
    for (C3DBSphere const & sphere : spheres)
    {
        e3dBaseGeomType type = E3DGEOMTYPE_NONE;
        EXPECT_EQ(sphere.GetType(type), S_OK);
        EXPECT_EQ(type, 20);
    }
}

TEST(BoundingSphere, Is_empty_where_the_radius_is_not_above_the_smallest)
{
    EXPECT_EQ(C3DBSphere().IsEmpty(), 1);
    EXPECT_EQ(C3DBSphere(-1.0).IsEmpty(), 1);
    EXPECT_EQ(C3DBSphere(1e-6).IsEmpty(), 1);
    EXPECT_EQ(C3DBSphere(Above(1e-6)).IsEmpty(), 0);
    EXPECT_EQ(C3DBSphere(1, Vector(k_Nan, 0, 0)).IsEmpty(), 0);
    C3DBSphere shrunk(1);
    shrunk.SetToBSphereOfTransformedBSphere(Matrix(1e-9, 0, 0, 0, 0, 1e-9, 0, 0, 0, 0, 1e-9, 0, 0, 0, 0, 1));
    EXPECT_EQ(shrunk.IsEmpty(), 1);
    C3DBSphere nan(1);
    nan.MergeVector(k_Nan, 0, 0);
    EXPECT_EQ(nan.IsEmpty(), 0);
}

TEST(BoundingSphereMergeVector, Radius_reaches_the_point_and_the_center_stays)
{
    C3DBSphere sphere(2, Vector(1, 2, 3));
    EXPECT_EQ(&sphere.MergeVector(Vector(1, 5, 7)), &sphere);
    EXPECT_EQ(RadiusOf(sphere), 5);
    EXPECT_TRUE(HasBits(CenterOf(sphere), Vector(1, 2, 3)));
    EXPECT_EQ(&sphere.MergeVector(7, 2, 11), &sphere);
    EXPECT_EQ(RadiusOf(sphere), 10);
    EXPECT_TRUE(HasBits(CenterOf(sphere), Vector(1, 2, 3)));
}

TEST(BoundingSphereMergeVector, Point_inside_or_on_the_sphere_changes_nothing)
{
    C3DBSphere sphere(5, Vector(1, 2, 3));
    for (Vector const & point : {Vector(1, 5, 7), Vector(1, 2, 3), Vector(4, 2, 6), Vector(-4, 2, 3)})
    {
        sphere.MergeVector(point);
        EXPECT_EQ(RadiusOf(sphere), 5);
        EXPECT_TRUE(HasBits(CenterOf(sphere), Vector(1, 2, 3)));
    }
    sphere.MergeVector(Vector(Above(6), 2, 3));
    EXPECT_EQ(RadiusOf(sphere), Above(6) - 1);
}

TEST(BoundingSphereMergeVector, NaN_gets_into_the_radius_and_gives_way_to_the_next_point)
{
    C3DBSphere sphere(5);
    sphere.MergeVector(Vector(0, k_Nan, 0));
    EXPECT_TRUE(std::isnan(RadiusOf(sphere)));
    sphere.MergeVector(Vector(0, 2, 0));
    EXPECT_EQ(RadiusOf(sphere), 2);
    sphere.MergeVector(Vector(0, -k_Infinity, 0));
    EXPECT_EQ(RadiusOf(sphere), k_Infinity);
}

TEST(BoundingSphereMergeVector, Holds_every_point_that_was_merged)
{
    Random random(571);
    C3DBSphere sphere(0.5, Vector(1, -1, 2));
    double farthest = 0.5;
    for (int i = 0; i < 200; ++i)
    {
        Vector const point = RandomVector(random, 9);
        farthest = std::max(farthest, GetDistance(point, Vector(1, -1, 2)));
        sphere.MergeVector(point);
        EXPECT_NEAR(RadiusOf(sphere), farthest, 1e-14);
    }
}

TEST(BoundingSphereMerge, From_a_center_at_the_origin_it_reaches_the_far_side)
{
    C3DBSphere sphere(77);
    EXPECT_EQ(&sphere.MergeBSphere(C3DBSphere(5, Vector(6, 8, 0))), &sphere);
    EXPECT_EQ(RadiusOf(sphere), 7.5) << "the own radius plays no part";
    EXPECT_TRUE(IsNear(CenterOf(sphere), Vector(4.5, 6, 0), 1e-15));
    Random random(572);
    for (int i = 0; i < 200; ++i)
    {
        double const distance = random.Uniform(0.1, 9.0);
        double const radius = random.Uniform(0.01, 9.0);
        Vector const direction = RandomDirection(random);
        C3DBSphere const other(radius, Vector().Mul(direction, distance));
        C3DBSphere merged(1);
        merged.MergeBSphere(other);
        EXPECT_NEAR(RadiusOf(merged), (distance + radius) / 2, 1e-13);
        EXPECT_TRUE(IsNear(CenterOf(merged), Vector().Mul(direction, (distance + radius) / 2), 1e-13));
        EXPECT_EQ(Holds(merged, other), radius <= distance) << "where the other one holds the origin it sticks out";
    }
}

TEST(BoundingSphereMerge, Elsewhere_the_far_side_is_measured_from_the_origin_of_the_world)
{
    // L = 2 and f = 2.5: the far side is at (12, 0, 0) less 2.5 times 10, which is 3 short of the true one.
    C3DBSphere sphere(77, Vector(12, 0, 0));
    sphere.MergeBSphere(C3DBSphere(3, Vector(2, 0, 0)));
    EXPECT_EQ(RadiusOf(sphere), 12.5);
    EXPECT_TRUE(HasBits(CenterOf(sphere), Vector(-0.5, 0, 0)));
    // L = 10 and f = 1.3: the far side is at 8 plus 1.3 times 2, where the true one is at 13.
    sphere = C3DBSphere(77, Vector(8, 0, 0));
    sphere.MergeBSphere(C3DBSphere(3, Vector(10, 0, 0)));
    EXPECT_DOUBLE_EQ(RadiusOf(sphere), 1.3);
    EXPECT_TRUE(IsNear(CenterOf(sphere), Vector(9.3, 0, 0), 1e-14));
}

TEST(BoundingSphereMerge, Center_and_far_side_are_the_ends_of_a_diameter)
{
    Random random(573);
    int held = 0;
    for (int i = 0; i < 1000; ++i)
    {
        Vector const center = RandomVector(random, 5);
        Vector const otherCenter = RandomVector(random, 5);
        double const radius = random.Uniform(0.01, 3.0);
        C3DBSphere merged(1, center);
        C3DBSphere const other(radius, otherCenter);
        merged.MergeBSphere(other);
        double const factor = 1 + radius / otherCenter.GetLength();
        Vector const way = Vector().Mul(Vector().Sub(otherCenter, center), factor);
        EXPECT_NEAR(RadiusOf(merged), way.GetLength() / 2, 1e-12 * (1 + way.GetLength()));
        EXPECT_TRUE(IsNear(CenterOf(merged), Vector().Mul(way, 0.5).Add(center), 1e-12 * (1 + way.GetLength())));
        held += Holds(merged, other) ? 1 : 0;
        double const distance = GetDistance(center, otherCenter);
        if (std::abs(distance - otherCenter.GetLength()) > 1e-6 && std::abs(distance - radius) > 1e-6)
        {
            EXPECT_EQ(Holds(merged, other), distance >= std::max(radius, otherCenter.GetLength()));
        }
    }
    EXPECT_GT(held, 0);
    EXPECT_LT(held, 1000);
}

TEST(BoundingSphereMerge, Other_center_at_the_origin_divides_by_zero)
{
    C3DBSphere sphere(1, Vector(1, 2, 3));
    sphere.MergeBSphere(C3DBSphere(3));
    EXPECT_EQ(RadiusOf(sphere), k_Infinity);
    EXPECT_TRUE(HasBits(CenterOf(sphere), Vector(-k_Infinity, -k_Infinity, -k_Infinity)));
    C3DBSphere onAxis(1, Vector(1, 0, 0));
    onAxis.MergeBSphere(C3DBSphere(3));
    EXPECT_TRUE(std::isnan(RadiusOf(onAxis)));
    EXPECT_TRUE(HasBits(CenterOf(onAxis), Vector(-k_Infinity, k_Nan, k_Nan)));
}

TEST(BoundingSphereMerge, Merged_with_itself_it_is_a_point)
{
    C3DBSphere sphere(2, Vector(1, 2, 3));
    sphere.MergeBSphere(sphere);
    EXPECT_EQ(RadiusOf(sphere), 0);
    EXPECT_TRUE(HasBits(CenterOf(sphere), Vector(1, 2, 3)));
}

TEST(BoundingSphereTransform, Radius_takes_the_greatest_factor_in_magnitude)
{
    struct Row
    {
        Vector scale;
        double factor;
    };
    Row const rows[] = {{{1, 2, -3}, 3}, {{-3, 2, 1}, 3},   {{1, -3, 2}, 3},          {{2, 2, 2}, 2},
                        {{1, 1, 1}, 1},  {{-1, -1, -1}, 1}, {{0.25, 0.125, 0.5}, 0.5}};
    for (Row const & row : rows)
    {
        Matrix const matrix(row.scale.X, 0, 0, 0, 0, row.scale.Y, 0, 0, 0, 0, row.scale.Z, 0, 10, 20, 30, 1);
        C3DBSphere sphere(4, Vector(1, 2, 3));
        EXPECT_EQ(&sphere.SetToBSphereOfTransformedBSphere(matrix), &sphere);
        EXPECT_EQ(RadiusOf(sphere), 4 * row.factor) << row.scale;
        EXPECT_TRUE(HasBits(CenterOf(sphere), Vector(10 + row.scale.X, 20 + 2 * row.scale.Y, 30 + 3 * row.scale.Z)));
    }
}

TEST(BoundingSphereTransform, Rotation_and_translation_keep_the_radius)
{
    C3DBSphere sphere(4, Vector(1, 2, 3));
    sphere.SetToBSphereOfTransformedBSphere(Matrix(0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 5, 5, 5, 1));
    EXPECT_EQ(RadiusOf(sphere), 4);
    EXPECT_TRUE(HasBits(CenterOf(sphere), Vector(3, 6, 8)));
}

TEST(BoundingSphereTransform, Result_may_be_smaller_than_any_sphere_that_is_built)
{
    C3DBSphere sphere;
    sphere.SetToBSphereOfTransformedBSphere(Matrix(0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1));
    EXPECT_EQ(RadiusOf(sphere), 5e-7);
    // A null matrix counts as a scale of 1e-12.
    C3DBSphere flat(4, Vector(1, 2, 3));
    flat.SetToBSphereOfTransformedBSphere(Matrix(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7, 8, 9, 1));
    EXPECT_DOUBLE_EQ(RadiusOf(flat), 4e-12);
    EXPECT_TRUE(HasBits(CenterOf(flat), Vector(7, 8, 9)));
}

TEST(BoundingSphereTransform, Zero_coordinate_times_an_infinite_entry_adds_nothing)
{
    C3DBSphere sphere(1, Vector(0, 2, 3));
    sphere.SetToBSphereOfTransformedBSphere(WithInfiniteRow(0));
    EXPECT_EQ(RadiusOf(sphere), k_Infinity);
    EXPECT_TRUE(HasBits(CenterOf(sphere), Vector(0, 2, 3)));
}

TEST(BoundingSphereTransform, Holds_the_images_of_its_points_without_shear)
{
    Random random(574);
    for (int i = 0; i < 100; ++i)
    {
        Vector const scale = RandomVector(random, 3);
        double const angle = random.Uniform(0.0, 6.0);
        double const c = std::cos(angle);
        double const s = std::sin(angle);
        Matrix const matrix(scale.X * c, scale.X * s, 0, 0, -scale.Y * s, scale.Y * c, 0, 0, 0, 0, scale.Z, 0, 1, 2, 3,
                            1);
        Vector const center = RandomVector(random, 5);
        C3DBSphere sphere(2, center);
        sphere.SetToBSphereOfTransformedBSphere(matrix);
        for (int k = 0; k < 20; ++k)
        {
            Vector const point = Vector().Mul(RandomDirection(random), 2).Add(center);
            EXPECT_LE(GetDistance(Vector().Mul(point, matrix), CenterOf(sphere)), RadiusOf(sphere) + 1e-13);
        }
    }
}

TEST(BoundingSphereTransform, Shear_can_carry_points_out)
{
    // The rows have length 1, while the diagonal between them stretches by nearly the square root of 2.
    Matrix const matrix(1, 0, 0, 0, 0.96, 0.28, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    C3DBSphere sphere(1);
    sphere.SetToBSphereOfTransformedBSphere(matrix);
    EXPECT_DOUBLE_EQ(RadiusOf(sphere), 1);
    EXPECT_GT(Vector().Mul(Vector(0.6, 0.8, 0), matrix).GetLength(), 1.38);
}
