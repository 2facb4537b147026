#include "geometry/marked_record.h"
#include "math/box_intersection.h"
#include "support/random.h"

#include <cmath>
#include <limits>

using namespace test_support;
using Vector = C3DVector3Tpl<double>;

namespace
{

constexpr double k_Infinity = std::numeric_limits<double>::infinity();
constexpr double k_NaN = std::numeric_limits<double>::quiet_NaN();

constexpr unsigned long k_Outside = 4;
constexpr unsigned long k_OnSurface = 0x20000;
constexpr unsigned long k_InSolid = 0x40000;

Vector const k_Min(-1, -2, -3);
Vector const k_Max(4, 5, 6);

/// Both forms must give one answer; it is that of the vector form.
unsigned long Classify(Vector const & min, Vector const & max, Vector const & point, double tol,
                       Vector * gaps = nullptr)
{
    unsigned long flags = k_MarkedFlags;
    unsigned long flagsOfInfo = k_MarkedFlags;
    unsigned long flagsWithoutInfo = k_MarkedFlags;
    Vector found(k_NaN, k_NaN, k_NaN);
    tagS3DGEOMINFO info = MakeMarkedRecord();
    EXPECT_EQ(F3DLocalBoxVsPointIntersection(min, max, point, flags, found, tol), 0);
    EXPECT_EQ(F3DLocalBoxVsPointIntersection(min, max, point, flagsOfInfo, &info, tol), 0);
    tagS3DGEOMINFO * const none = nullptr;
    EXPECT_EQ(F3DLocalBoxVsPointIntersection(min, max, point, flagsWithoutInfo, none, tol), 0);
    EXPECT_EQ(flagsOfInfo, flags);
    EXPECT_EQ(flagsWithoutInfo, flags);
    EXPECT_TRUE(HasOnly(k_Position | k_Distance, info));
    EXPECT_TRUE(SameBits(info.position, point));
    if (gaps != nullptr)
    {
        *gaps = found;
    }
    return flags;
}

double DistanceOf(Vector const & point)
{
    unsigned long flags = k_MarkedFlags;
    tagS3DGEOMINFO info = MakeMarkedRecord();
    F3DLocalBoxVsPointIntersection(k_Min, k_Max, point, flags, &info, 0);
    return info.distance;
}

} // namespace

TEST(BoxPoint, Gaps_are_measured_from_the_face_on_the_side_of_the_sign)
{
    struct Row
    {
        Vector point;
        Vector gaps;
        unsigned long flags;
    };
    Row const rows[] = {
        {Vector(1, 1, 1), Vector(-3, -4, -5), k_InSolid},
        {Vector(-0.5, -0.5, -0.5), Vector(-0.5, -1.5, -2.5), k_InSolid},
        {Vector(0, 0, 0), Vector(-4, -5, -6), k_InSolid},
        {Vector(5, 1, 1), Vector(1, -4, -5), k_Outside},
        {Vector(-3, 1, 1), Vector(2, -4, -5), k_Outside},
        {Vector(1, 7, 1), Vector(-3, 2, -5), k_Outside},
        {Vector(1, -7, 1), Vector(-3, 5, -5), k_Outside},
        {Vector(1, 1, 9), Vector(-3, -4, 3), k_Outside},
        {Vector(1, 1, -9), Vector(-3, -4, 6), k_Outside},
        {Vector(4, 1, 1), Vector(0, -4, -5), k_OnSurface},
        {Vector(-1, 1, 1), Vector(0, -4, -5), k_OnSurface},
        {Vector(1, 5, 1), Vector(-3, 0, -5), k_OnSurface},
        {Vector(1, -2, 1), Vector(-3, 0, -5), k_OnSurface},
        {Vector(1, 1, 6), Vector(-3, -4, 0), k_OnSurface},
        {Vector(1, 1, -3), Vector(-3, -4, 0), k_OnSurface},
        {Vector(4, 5, 6), Vector(0, 0, 0), k_OnSurface},
        {Vector(-3, 7, -9), Vector(2, 2, 6), k_Outside},
    };
    for (Row const & row : rows)
    {
        Vector gaps;
        EXPECT_EQ(Classify(k_Min, k_Max, row.point, 0, &gaps), row.flags);
        EXPECT_EQ(gaps.X, row.gaps.X);
        EXPECT_EQ(gaps.Y, row.gaps.Y);
        EXPECT_EQ(gaps.Z, row.gaps.Z);
    }
}

TEST(BoxPoint, Zero_of_either_sign_is_measured_from_the_maximum)
{
    Vector gaps;
    Classify(k_Min, k_Max, Vector(-0.0, -0.0, -0.0), 0, &gaps);
    EXPECT_EQ(gaps.X, -4);
    EXPECT_EQ(gaps.Y, -5);
    EXPECT_EQ(gaps.Z, -6);
    Classify(k_Min, k_Max, Vector(-std::numeric_limits<double>::denorm_min(), 1, 1), 0, &gaps);
    EXPECT_EQ(gaps.X, -1);
}

TEST(BoxPoint, The_distance_is_the_least_gap_whatever_the_greatest_says)
{
    EXPECT_EQ(DistanceOf(Vector(1, 1, 1)), -5);
    EXPECT_EQ(DistanceOf(Vector(-0.5, 4.5, 1)), -5);
    EXPECT_EQ(DistanceOf(Vector(-0.5, 1, -0.5)), -4);
    EXPECT_EQ(DistanceOf(Vector(0.5, -0.5, -0.5)), -3.5);
    // Outside by 1 and on a face by 0, the other two faces being far: it is still theirs.
    EXPECT_EQ(DistanceOf(Vector(5, 1, 1)), -5);
    EXPECT_EQ(DistanceOf(Vector(4, 1, 1)), -5);
    EXPECT_EQ(DistanceOf(Vector(5, 7, 9)), 1);
}

TEST(BoxPoint, Both_ends_of_the_tolerance_are_on_the_surface)
{
    double const tol = 0.25;
    Vector const faces[] = {Vector(4, 0, 0),  Vector(-1, 0, 0), Vector(0, 5, 0),
                            Vector(0, -2, 0), Vector(0, 0, 6),  Vector(0, 0, -3)};
    for (Vector const & face : faces)
    {
        double const length = face.GetLength();
        auto const at = [&](double distance) { return Vector(face).Mul((length + distance) / length); };
        EXPECT_EQ(Classify(k_Min, k_Max, at(0.5), tol), k_Outside);
        EXPECT_EQ(Classify(k_Min, k_Max, at(0.125), tol), k_OnSurface);
        EXPECT_EQ(Classify(k_Min, k_Max, at(-0.125), tol), k_OnSurface);
        EXPECT_EQ(Classify(k_Min, k_Max, at(-0.5), tol), k_InSolid);
    }
    // A step of one unit in the last place on the axis of x, where the subtraction is exact.
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(4.25, 0, 0), tol), k_OnSurface);
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(std::nextafter(4.25, 9), 0, 0), tol), k_Outside);
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(3.75, 0, 0), tol), k_OnSurface);
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(std::nextafter(3.75, 0), 0, 0), tol), k_InSolid);
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(-1.25, 0, 0), tol), k_OnSurface);
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(std::nextafter(-1.25, -9), 0, 0), tol), k_Outside);
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(-0.75, 0, 0), tol), k_OnSurface);
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(std::nextafter(-0.75, 0), 0, 0), tol), k_InSolid);
}

TEST(BoxPoint, A_negative_tolerance_leaves_no_surface)
{
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(4, 0, 0), -0.5), k_Outside);
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(3.75, 0, 0), -0.5), k_Outside);
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(3.25, 0, 0), -0.5), k_InSolid);
}

TEST(BoxPoint, A_box_beside_the_origin_is_looked_at_on_the_wrong_face)
{
    // The point is left of the box from 2 to 4, and is measured from the face on its own side of the origin.
    Vector gaps;
    EXPECT_EQ(Classify(Vector(2, -1, -1), Vector(4, 1, 1), Vector(1, 0, 0), 0, &gaps), k_InSolid);
    EXPECT_EQ(gaps.X, -3);
}

TEST(BoxPoint, Infinite_coordinates_are_outside_and_infinite_bounds_hold_everything)
{
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(k_Infinity, 0, 0), 1), k_Outside);
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(0, -k_Infinity, 0), 1), k_Outside);
    Vector const everywhere(k_Infinity, k_Infinity, k_Infinity);
    EXPECT_EQ(Classify(Vector(everywhere).Mul(-1), everywhere, Vector(1e300, -1e300, 0), 1), k_InSolid);
}

TEST(BoxPoint, A_NaN_tolerance_finds_neither_outside_nor_surface)
{
    EXPECT_EQ(Classify(k_Min, k_Max, Vector(9, 0, 0), k_NaN), k_InSolid);
}

TEST(BoxPoint, A_NaN_coordinate_gives_a_NaN_gap)
{
    Vector gaps;
    Classify(k_Min, k_Max, Vector(1, k_NaN, 1), 0, &gaps);
    EXPECT_EQ(gaps.X, -3);
    EXPECT_TRUE(std::isnan(gaps.Y));
    EXPECT_EQ(gaps.Z, -5);
}

TEST(BoxPoint, The_gaps_may_be_written_over_any_argument)
{
    Vector min(k_Min);
    Vector max(k_Max);
    Vector point(5, 1, -9);
    Vector const expected(1, -4, 6);
    for (Vector * const out : {&min, &max, &point})
    {
        Vector const kept(*out);
        unsigned long flags = k_MarkedFlags;
        F3DLocalBoxVsPointIntersection(min, max, point, flags, *out, 0);
        EXPECT_EQ(flags, k_Outside);
        EXPECT_TRUE(SameBits(*out, expected));
        *out = kept;
    }
}

TEST(BoxPoint, The_point_may_be_the_position_of_the_record)
{
    tagS3DGEOMINFO info = MakeMarkedRecord();
    info.position = Vector(5, 1, 1);
    unsigned long flags = k_MarkedFlags;
    F3DLocalBoxVsPointIntersection(k_Min, k_Max, info.position, flags, &info, 0);
    EXPECT_EQ(flags, k_Outside);
    EXPECT_EQ(info.distance, -5);
    EXPECT_TRUE(SameBits(info.position, Vector(5, 1, 1)));
}

TEST(BoxPoint, Agrees_with_containment_for_random_boxes_about_the_origin)
{
    Random random(51);
    for (int i = 0; i < 20000; ++i)
    {
        Vector const min(-random.Uniform(0.0, 3.0), -random.Uniform(0.0, 3.0), -random.Uniform(0.0, 3.0));
        Vector const max(random.Uniform(0.0, 3.0), random.Uniform(0.0, 3.0), random.Uniform(0.0, 3.0));
        Vector const point(random.Uniform(-4.0, 4.0), random.Uniform(-4.0, 4.0), random.Uniform(-4.0, 4.0));
        bool const isIn = point.X > min.X && point.X < max.X && point.Y > min.Y && point.Y < max.Y && point.Z > min.Z &&
                          point.Z < max.Z;
        ASSERT_EQ(Classify(min, max, point, 0), isIn ? k_InSolid : k_Outside);
    }
}
