#include "math/point_sphere_intersection.h"

#include "geometry/marked_record.h"
#include "math/platform/result.h"
#include "support/random.h"
#include "support/same_bits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using namespace test_support;
using Vector = C3DVector3Tpl<double>;

constexpr double k_Infinity = std::numeric_limits<double>::infinity();
constexpr double k_Nan = std::numeric_limits<double>::quiet_NaN();

double Above(double x)
{
    return std::nextafter(x, k_Infinity);
}

double Below(double x)
{
    return std::nextafter(x, -k_Infinity);
}

unsigned long PointsFlags(Vector const & a, Vector const & b, double tol)
{
    unsigned long flags = k_MarkedFlags;
    EXPECT_EQ(F3DWorldPointVsPointIntersection(a, b, flags, nullptr, tol), S_OK);
    return flags;
}

TEST(Point_against_point, Touches_up_to_the_tolerance_and_at_it)
{
    for (double const tol : {0.0, 1e-12, 0.1, 1.0, 1e100})
    {
        EXPECT_EQ(PointsFlags({0, 0, 0}, {0, tol, 0}, tol), 0x20000U) << tol;
        EXPECT_EQ(PointsFlags({0, 0, 0}, {0, 0, 1.001 * tol + 1e-100}, tol), 4U) << tol;
    }
    EXPECT_EQ(PointsFlags({1, 0, 0}, {1 + 0.5, 0, 0}, 0.5), 0x20000U);
    EXPECT_EQ(PointsFlags({1, 0, 0}, {Above(1.5), 0, 0}, 0.5), 4U);
    EXPECT_EQ(PointsFlags({1, 0, 0}, {Below(1.5), 0, 0}, 0.5), 0x20000U);
    EXPECT_EQ(PointsFlags({3, 2, 1}, {3, 2, 1}, 0), 0x20000U);
}

TEST(Point_against_point, Record_receives_the_first_point_and_the_distance_less_the_tolerance)
{
    tagS3DGEOMINFO info = MakeMarkedRecord();
    unsigned long flags = k_MarkedFlags;
    EXPECT_EQ(F3DWorldPointVsPointIntersection({1, 2, 3}, {1, 5, 7}, flags, &info, 1.5), S_OK);
    EXPECT_EQ(flags, 4U);
    EXPECT_TRUE(HasOnly(k_Position | k_Distance, info));
    EXPECT_TRUE(SameBits(info.position, Vector(1, 2, 3)));
    EXPECT_EQ(info.distance, 3.5);

    info = MakeMarkedRecord();
    EXPECT_EQ(F3DWorldPointVsPointIntersection({1, 2, 3}, {1, 5, 7}, flags, &info, 5), S_OK);
    EXPECT_EQ(flags, 0x20000U);
    EXPECT_TRUE(HasOnly(k_Position | k_Distance, info));
    EXPECT_EQ(info.distance, 0);
}

TEST(Point_against_point, Compares_squares_so_that_a_negative_tolerance_counts_as_its_magnitude)
{
    tagS3DGEOMINFO info = MakeMarkedRecord();
    unsigned long flags = k_MarkedFlags;
    F3DWorldPointVsPointIntersection({0, 0, 0}, {0, 0, 1}, flags, &info, -2);
    EXPECT_EQ(flags, 0x20000U);
    EXPECT_EQ(info.distance, 3);
    // Both squares overflow, and then neither is the greater.
    EXPECT_EQ(PointsFlags({0, 0, 0}, {1e200, 0, 0}, 1e180), 0x20000U);
    EXPECT_EQ(PointsFlags({0, 0, 0}, {1e200, 0, 0}, 1), 4U);
}

TEST(Point_against_point, Not_a_number_counts_as_touching)
{
    EXPECT_EQ(PointsFlags({k_Nan, 0, 0}, {5, 0, 0}, 1), 0x20000U);
    EXPECT_EQ(PointsFlags({0, 0, 0}, {5, 0, 0}, k_Nan), 0x20000U);
    EXPECT_EQ(PointsFlags({k_Infinity, 0, 0}, {k_Infinity, 0, 0}, 1), 0x20000U);
    EXPECT_EQ(PointsFlags({k_Infinity, 0, 0}, {0, 0, 0}, 1), 4U);
}

TEST(Point_against_point, Operands_may_lie_in_the_record)
{
    tagS3DGEOMINFO info = MakeMarkedRecord();
    info.position.Set(1, 0, 0);
    info.normal.Set(4, 4, 0);
    unsigned long flags = k_MarkedFlags;
    F3DWorldPointVsPointIntersection(info.normal, info.position, flags, &info, 1);
    EXPECT_TRUE(SameBits(info.position, Vector(4, 4, 0)));
    EXPECT_EQ(info.distance, 4);
}

/// The flags of both forms, which must agree.
unsigned long SphereFlags(Vector const & point, Vector const & center, double radius, double tol)
{
    unsigned long flags = k_MarkedFlags;
    EXPECT_EQ(F3DWorldPointVsSphereIntersection(point, center, radius, flags, nullptr, tol), S_OK);
    unsigned long offsetFlags = k_MarkedFlags;
    Vector offset(-1, -2, -3);
    EXPECT_EQ(F3DWorldPointVsSphereIntersection(point, center, radius, offsetFlags, offset, tol), S_OK);
    EXPECT_EQ(flags, offsetFlags);
    EXPECT_TRUE(SameBits(offset, Vector().Sub(point, center)));
    return flags;
}

TEST(Point_against_sphere, Shell_is_closed_on_both_sides)
{
    Vector const center(0, 0, 0);
    // The gaps are exact: the sphere is four times as large as the shell is thick.
    EXPECT_EQ(SphereFlags({0, 1.25, 0}, center, 1, 0.25), 0x20000U);
    EXPECT_EQ(SphereFlags({0, Above(1.25), 0}, center, 1, 0.25), 4U);
    EXPECT_EQ(SphereFlags({0, 0, -0.75}, center, 1, 0.25), 0x20000U);
    EXPECT_EQ(SphereFlags({0, 0, -Below(0.75)}, center, 1, 0.25), 0x40000U);
    EXPECT_EQ(SphereFlags({1, 0, 0}, center, 1, 0), 0x20000U);
    EXPECT_EQ(SphereFlags({Above(1), 0, 0}, center, 1, 0), 4U);
    EXPECT_EQ(SphereFlags({Below(1), 0, 0}, center, 1, 0), 0x40000U);
}

TEST(Point_against_sphere, Negative_radius_has_every_point_outside)
{
    EXPECT_EQ(SphereFlags({1, 2, 3}, {1, 2, 3}, -2, 1), 4U);
    EXPECT_EQ(SphereFlags({1, 2, 3}, {1, 2, 3}, -1, 1), 0x20000U);
}

TEST(Point_against_sphere, Negative_tolerance_leaves_no_shell)
{
    EXPECT_EQ(SphereFlags({1, 0, 0}, {0, 0, 0}, 1, -0.5), 4U);
    EXPECT_EQ(SphereFlags({0.5, 0, 0}, {0, 0, 0}, 1, -0.5), 0x40000U);
}

TEST(Point_against_sphere, Not_a_number_counts_as_inside)
{
    EXPECT_EQ(SphereFlags({k_Nan, 0, 0}, {0, 0, 0}, 1, 0.1), 0x40000U);
    EXPECT_EQ(SphereFlags({5, 0, 0}, {0, 0, 0}, k_Nan, 0.1), 0x40000U);
    EXPECT_EQ(SphereFlags({5, 0, 0}, {0, 0, 0}, 1, k_Nan), 0x40000U);
    EXPECT_EQ(SphereFlags({k_Infinity, 0, 0}, {0, 0, 0}, 1, 0.1), 4U);
    EXPECT_EQ(SphereFlags({5, 0, 0}, {0, 0, 0}, k_Infinity, 0.1), 0x40000U);
}

TEST(Point_against_sphere, Record_receives_the_point_the_gap_and_the_direction_from_the_center)
{
    struct Row
    {
        Vector point;
        unsigned long flags;
        double gap;
    };
    for (Row const & row : {Row{{1, 5, 7}, 4, 3}, Row{{1, 2 + 1.2, 3 + 1.6}, 0x20000, 0}, Row{{1, 2, 4}, 0x40000, -1}})
    {
        tagS3DGEOMINFO info = MakeMarkedRecord();
        unsigned long flags = k_MarkedFlags;
        EXPECT_EQ(F3DWorldPointVsSphereIntersection(row.point, {1, 2, 3}, 2, flags, &info, 0.5), S_OK);
        EXPECT_EQ(flags, row.flags);
        EXPECT_TRUE(HasOnly(k_Position | k_Normal | k_Distance, info));
        EXPECT_TRUE(SameBits(info.position, row.point));
        EXPECT_NEAR(info.distance, row.gap, 1e-15);
        EXPECT_NEAR(info.normal.GetLength(), 1, 1e-15);
        Vector const back = Vector().Mul(info.normal, info.distance + 2).Add(Vector(1, 2, 3));
        EXPECT_TRUE(AreAlmostEqual(back, row.point, 1e-14));
    }
}

TEST(Point_against_sphere, Normal_stays_for_a_point_within_a_trillionth_of_the_center)
{
    double const limit = 1e-12;
    ASSERT_EQ(Vector(0, limit, 0).GetLength(), limit);
    for (double const distance : {0.0, limit})
    {
        tagS3DGEOMINFO info = MakeMarkedRecord();
        unsigned long flags = k_MarkedFlags;
        F3DWorldPointVsSphereIntersection({0, distance, 0}, {0, 0, 0}, 2, flags, &info, 0.5);
        EXPECT_EQ(flags, 0x40000U);
        EXPECT_TRUE(HasOnly(k_Position | k_Distance, info)) << distance;
    }
    double const over = 1.0000001e-12;
    tagS3DGEOMINFO info = MakeMarkedRecord();
    unsigned long flags = k_MarkedFlags;
    F3DWorldPointVsSphereIntersection({0, over, 0}, {0, 0, 0}, 2, flags, &info, 0.5);
    EXPECT_TRUE(HasOnly(k_Position | k_Normal | k_Distance, info));
    EXPECT_NEAR(info.normal.Y, 1, 1e-15);
}

TEST(Point_against_sphere, Normal_stays_where_the_length_is_not_a_number)
{
    tagS3DGEOMINFO info = MakeMarkedRecord();
    unsigned long flags = k_MarkedFlags;
    F3DWorldPointVsSphereIntersection({k_Nan, 0, 0}, {0, 0, 0}, 2, flags, &info, 0.5);
    EXPECT_TRUE(HasOnly(k_Position | k_Distance, info));
    EXPECT_TRUE(std::isnan(info.distance));
}

TEST(Point_against_sphere, Operands_may_lie_in_the_record_and_in_the_offset)
{
    tagS3DGEOMINFO info = MakeMarkedRecord();
    info.position.Set(1, 0, 0);
    info.normal.Set(1, 5, 0);
    info.distance = 2;
    unsigned long flags = k_MarkedFlags;
    F3DWorldPointVsSphereIntersection(info.normal, info.position, info.distance, flags, &info, 1);
    EXPECT_EQ(flags, 4U);
    EXPECT_TRUE(SameBits(info.position, Vector(1, 5, 0)));
    EXPECT_TRUE(SameBits(info.normal, Vector(0, 1, 0)));
    EXPECT_EQ(info.distance, 3);

    Vector point(4, 0, 0);
    F3DWorldPointVsSphereIntersection(point, {1, 0, 0}, 1, flags, point, 1);
    EXPECT_TRUE(SameBits(point, Vector(3, 0, 0)));
    Vector center(1, 0, 0);
    F3DWorldPointVsSphereIntersection({4, 0, 0}, center, 1, flags, center, 1);
    EXPECT_TRUE(SameBits(center, Vector(3, 0, 0)));
}

unsigned long SpheresFlags(Vector const & c1, double r1, Vector const & c2, double r2, double tol)
{
    unsigned long flags = k_MarkedFlags;
    EXPECT_EQ(F3DWorldSphereVsSphereIntersection(c1, r1, c2, r2, flags, nullptr, tol), S_OK);
    return flags;
}

TEST(Sphere_against_sphere, Shell_is_closed_on_both_sides)
{
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 1, {0, 3.25, 0}, 2, 0.25), 0x20000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 1, {0, Above(3.25), 0}, 2, 0.25), 4U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 1, {0, 0, 2.75}, 2, 0.25), 0x20000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 1, {0, 0, Below(2.75)}, 2, 0.25), 0x10000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 1, {3, 0, 0}, 2, 0), 0x20000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 1, {Above(3), 0, 0}, 2, 0), 4U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 1, {Below(3), 0, 0}, 2, 0), 0x10000U);
}

TEST(Sphere_against_sphere, Sphere_within_the_other_overlaps_it)
{
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 10, {1, 0, 0}, 2, 0.25), 0x10000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 10, {0, 0, 0}, 2, 0.25), 0x10000U);
}

TEST(Sphere_against_sphere, Coincidence_is_strictly_within_the_tolerance_in_center_and_radius)
{
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 4, {0, 0, 0}, 4, 0.25), 0x100000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 4, {Below(0.25), 0, 0}, 4, 0.25), 0x100000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 4, {0.25, 0, 0}, 4, 0.25), 0x10000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 4, {0, 0, 0}, 4.25, 0.25), 0x10000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 4, {0, 0, 0}, Below(4.25), 0.25), 0x100000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 4, {0, 0, 0}, 3.75, 0.25), 0x10000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 4, {0, 0, 0}, Above(3.75), 0.25), 0x100000U);
}

TEST(Sphere_against_sphere, Coincidence_comes_before_every_gap)
{
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 0.125, {0.125, 0, 0}, 0.125, 1), 0x100000U) << "over touching";
    EXPECT_EQ(SpheresFlags({0, 0, 0}, -5, {0, 0, 0}, -5, 1), 0x100000U) << "over apart";
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 5, {0, 0, 0}, 5, 1), 0x100000U) << "over overlap";
}

TEST(Sphere_against_sphere, Nothing_coincides_within_a_tolerance_of_zero)
{
    EXPECT_EQ(SpheresFlags({1, 2, 3}, 5, {1, 2, 3}, 5, 0), 0x10000U);
    EXPECT_EQ(SpheresFlags({1, 2, 3}, 5, {1, 2, 3}, 5, -1), 0x10000U);
    EXPECT_EQ(SpheresFlags({1, 2, 3}, 5, {1, 2, 3}, 5, 5e-324), 0x100000U);
}

TEST(Sphere_against_sphere, Not_a_number_counts_as_overlap)
{
    EXPECT_EQ(SpheresFlags({k_Nan, 0, 0}, 1, {9, 0, 0}, 1, 0.5), 0x10000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, k_Nan, {9, 0, 0}, 1, 0.5), 0x10000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 1, {9, 0, 0}, 1, k_Nan), 0x10000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, k_Infinity, {9, 0, 0}, k_Infinity, 0.5), 0x10000U);
    EXPECT_EQ(SpheresFlags({0, 0, 0}, 1, {k_Infinity, 0, 0}, 1, 0.5), 4U);
}

TEST(Sphere_against_sphere, Record_receives_the_point_of_the_second_sphere_that_faces_the_first_center)
{
    Random random(20241);
    for (int i = 0; i < 200; ++i)
    {
        Vector const c1(random.Uniform(-5.0, 5.0), random.Uniform(-5.0, 5.0), random.Uniform(-5.0, 5.0));
        Vector const c2(random.Uniform(-5.0, 5.0), random.Uniform(-5.0, 5.0), random.Uniform(-5.0, 5.0));
        double const r1 = random.Uniform(0.1, 4.0);
        double const r2 = random.Uniform(0.1, 4.0);
        double const length = GetDistance(c1, c2);
        tagS3DGEOMINFO info = MakeMarkedRecord();
        unsigned long flags = k_MarkedFlags;
        EXPECT_EQ(F3DWorldSphereVsSphereIntersection(c1, r1, c2, r2, flags, &info, 1e-9), S_OK);
        EXPECT_EQ(flags, length > r1 + r2 ? 4U : 0x10000U);
        EXPECT_TRUE(HasOnly(k_Position | k_Normal | k_Distance, info));
        EXPECT_NEAR(info.distance, length - r1 - r2, 1e-13);
        EXPECT_TRUE(AreAlmostEqual(Vector().Mul(info.normal, length).Add(c1), c2, 1e-13));
        EXPECT_NEAR(GetDistance(info.position, c2), r2, 1e-13);
        EXPECT_TRUE(AreAlmostEqual(Vector().Mul(info.normal, r2).Add(info.position), c2, 1e-13));
    }
}

TEST(Sphere_against_sphere, Position_of_a_small_sphere_within_a_large_one_is_on_its_own_surface)
{
    tagS3DGEOMINFO info = MakeMarkedRecord();
    unsigned long flags = k_MarkedFlags;
    F3DWorldSphereVsSphereIntersection({0, 0, 0}, 10, {0, 4, 0}, 1, flags, &info, 0.1);
    EXPECT_EQ(info.distance, -7);
    EXPECT_TRUE(SameBits(info.position, Vector(0, 3, 0)));
}

TEST(Sphere_against_sphere, Centers_within_a_trillionth_give_their_difference_and_the_first_center)
{
    for (double const apart : {0.0, 1e-12})
    {
        tagS3DGEOMINFO info = MakeMarkedRecord();
        unsigned long flags = k_MarkedFlags;
        ASSERT_EQ(Vector(0, 0, apart).GetLength(), apart);
        F3DWorldSphereVsSphereIntersection({0, 0, 0}, 2, {0, 0, apart}, 2, flags, &info, 0.1);
        EXPECT_EQ(flags, 0x100000U);
        EXPECT_TRUE(HasOnly(k_Position | k_Normal | k_Distance, info));
        EXPECT_TRUE(SameBits(info.position, Vector(0, 0, 0)));
        EXPECT_TRUE(SameBits(info.normal, Vector(0, 0, apart)));
        EXPECT_EQ(info.distance, apart - 4);
    }
    tagS3DGEOMINFO info = MakeMarkedRecord();
    unsigned long flags = k_MarkedFlags;
    F3DWorldSphereVsSphereIntersection({0, 0, 0}, 2, {0, 0, 1.0000001e-12}, 2, flags, &info, 0.1);
    EXPECT_NEAR(info.normal.Z, 1, 1e-15);
    EXPECT_NEAR(info.position.Z, -2, 1e-11);
}

TEST(Sphere_against_sphere, Centers_that_are_not_numbers_give_the_first_center)
{
    tagS3DGEOMINFO info = MakeMarkedRecord();
    unsigned long flags = k_MarkedFlags;
    F3DWorldSphereVsSphereIntersection({1, 2, 3}, 2, {k_Nan, 0, 0}, 2, flags, &info, 0.1);
    EXPECT_TRUE(SameBits(info.position, Vector(1, 2, 3)));
    EXPECT_TRUE(SameBits(info.normal, Vector(k_Nan, -2, -3)));
    EXPECT_TRUE(std::isnan(info.distance));
}

TEST(Sphere_against_sphere, Operands_may_lie_in_the_record)
{
    tagS3DGEOMINFO info = MakeMarkedRecord();
    info.position.Set(0, 1, 0);
    info.normal.Set(0, 9, 0);
    info.distance = 3;
    info.u = 2;
    unsigned long flags = k_MarkedFlags;
    F3DWorldSphereVsSphereIntersection(info.normal, info.distance, info.position, info.u, flags, &info, 0.1);
    EXPECT_EQ(flags, 4U);
    EXPECT_EQ(info.distance, 3);
    EXPECT_TRUE(SameBits(info.normal, Vector(0, -1, 0)));
    EXPECT_TRUE(SameBits(info.position, Vector(0, 3, 0)));
}

} // namespace
