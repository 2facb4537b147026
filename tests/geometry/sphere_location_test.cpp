#include "geometry/pose_tree.h"
#include "math/sphere.h"
#include "support/allocation_faults.h"
#include "support/random.h"
#include "support/same_bits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace
{

using namespace geometry_test;
using test_support::AllocationFaults;
using test_support::Random;
using test_support::SameBits;
using Vector = C3DVector3Tpl<double>;
using Points = std::vector<Vector>;

constexpr double k_Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double k_Infinity = std::numeric_limits<double>::infinity();
constexpr unsigned long k_MarkedFlags = 0xBADU;
Vector const k_MarkedVector(-7001.125, -7002.125, -7003.125);

Vector const k_Center(1, 2, 3);
constexpr double k_Radius = 2;

Vector Inside(double x = 0.5)
{
    return Vector(x, 0, 0).Add(k_Center);
}

Vector On()
{
    return Vector(0, -k_Radius, 0).Add(k_Center);
}

Vector Outside(double z = 3)
{
    return Vector(0, 0, z).Add(k_Center);
}

/// What an operation on an array gave.
struct Found
{
    long result = 0;
    unsigned long flags = k_MarkedFlags;
    Vector worst = k_MarkedVector;
};

unsigned long CountOf(Points const & points)
{
    return static_cast<unsigned long>(points.size());
}

Found CheckInclusion(C3DBaseSphere sphere, Points points)
{
    Found found;
    found.result = sphere.CheckPrimitiveInclusion(nullptr, points.data(), CountOf(points), found.flags, found.worst);
    return found;
}

Found CheckExclusion(C3DBaseSphere sphere, Points points)
{
    Found found;
    found.result = sphere.CheckPrimitiveExclusion(nullptr, points.data(), found.flags, found.worst, CountOf(points));
    return found;
}

Found CheckOnSurface(C3DBaseSphere sphere, Points points)
{
    Found found;
    found.result = sphere.CheckPrimitiveOnSurface(nullptr, points.data(), found.flags, found.worst, CountOf(points));
    return found;
}

/// The flags of an array, in which all four operations must agree.
unsigned long Locate(Points points)
{
    C3DBaseSphere sphere(k_Radius, k_Center);
    unsigned long flags = k_MarkedFlags;
    EXPECT_EQ(sphere.GetPrimitiveLocation(nullptr, points.data(), flags, CountOf(points)), S_OK);
    for (Found const & found :
         {CheckInclusion(sphere, points), CheckExclusion(sphere, points), CheckOnSurface(sphere, points)})
    {
        EXPECT_EQ(found.result, S_OK);
        EXPECT_EQ(found.flags, flags);
    }
    return flags;
}

/// So many points of each kind, inside first or last.
Points Mixed(std::size_t inside, std::size_t outside, std::size_t on, bool insideLast = false)
{
    Points points(insideLast ? 0 : inside, Inside());
    points.insert(points.end(), outside, Outside());
    points.insert(points.end(), on, On());
    points.insert(points.end(), insideLast ? inside : 0, Inside());
    return points;
}

TEST(Point_location, Is_that_of_the_point_against_the_stored_sphere)
{
    C3DBaseSphere sphere(k_Radius, k_Center);
    PoseCalls calls;
    PoseNode pose;
    pose.NoteIn(calls);
    pose.Local().SetTranslation(100, 0, 0);
    struct Row
    {
        Vector point;
        unsigned long flags;
    };
    for (Row const & row : {Row{Inside(), 0x40000}, Row{On(), 0x20000}, Row{Outside(), 4}, Row{k_Center, 0x40000},
                            Row{Vector(k_Nan, 0, 0), 0x40000}})
    {
        unsigned long flags = k_MarkedFlags;
        Vector offset = k_MarkedVector;
        EXPECT_EQ(sphere.GetPointLocation(&pose, row.point, flags, offset), S_OK);
        EXPECT_EQ(flags, row.flags);
        EXPECT_TRUE(SameBits(offset, Vector().Sub(row.point, k_Center)));
    }
    EXPECT_TRUE(calls.empty());
}

TEST(Point_location, Counts_a_shell_of_a_trillionth_as_the_surface)
{
    C3DBaseSphere sphere(1);
    struct Row
    {
        double gap;
        unsigned long flags;
    };
    // Near 1 numbers are 1.1e-16 apart below and 2.2e-16 above.
    for (Row const & row :
         {Row{9.999e-13, 0x20000}, Row{-9.999e-13, 0x20000}, Row{1.0005e-12, 4}, Row{-1.0005e-12, 0x40000}})
    {
        unsigned long flags = k_MarkedFlags;
        Vector offset;
        sphere.GetPointLocation(nullptr, Vector(0, 1 + row.gap, 0), flags, offset);
        EXPECT_EQ(flags, row.flags) << row.gap;
    }
}

TEST(Primitive_location, Combines_the_kinds_of_its_points)
{
    for (unsigned const inside : {0U, 1U, 3U})
    {
        for (unsigned const outside : {0U, 1U, 3U})
        {
            for (unsigned const on : {0U, 1U, 3U})
            {
                SCOPED_TRACE(std::to_string(inside) + " inside, " + std::to_string(outside) + " outside, " +
                             std::to_string(on) + " on");
                unsigned long expected = 4;
                if (inside > 0)
                {
                    unsigned long const notCrossing = on > 0 ? 0x60000 : 0x40000;
                    expected = outside > 0 ? 0x10000 : notCrossing;
                }
                else if (on > 0)
                {
                    expected = outside > 0 ? 0x20004 : 0x100000;
                }
                EXPECT_EQ(Locate(Mixed(inside, outside, on)), expected);
                EXPECT_EQ(Locate(Mixed(inside, outside, on, true)), expected);
            }
        }
    }
}

TEST(Primitive_location, Empty_array_is_outside)
{
    EXPECT_EQ(Locate({}), 4U);
    C3DBaseSphere sphere(1);
    unsigned long flags = k_MarkedFlags;
    EXPECT_EQ(sphere.GetPrimitiveLocation(nullptr, nullptr, flags, 0), S_OK);
    EXPECT_EQ(flags, 4U);
}

TEST(Primitive_location, Counts_each_kind_with_16_bits)
{
    EXPECT_EQ(Locate(Mixed(0, 65535, 1)), 0x20004U);
    EXPECT_EQ(Locate(Mixed(0, 65536, 1)), 0x100000U);
    EXPECT_EQ(Locate(Mixed(0, 65537, 1)), 0x20004U);
    EXPECT_EQ(Locate(Mixed(65535, 1, 0)), 0x10000U);
    EXPECT_EQ(Locate(Mixed(65536, 1, 0)), 4U);
    EXPECT_EQ(Locate(Mixed(65536, 0, 0)), 4U);
    EXPECT_EQ(Locate(Mixed(65536, 0, 1)), 0x100000U);
    EXPECT_EQ(Locate(Mixed(1, 0, 65535)), 0x60000U);
    EXPECT_EQ(Locate(Mixed(1, 0, 65536)), 0x40000U);
    EXPECT_EQ(Locate(Mixed(0, 0, 65536)), 4U);
    EXPECT_EQ(Locate(Mixed(1, 65536, 0)), 0x40000U);
}

TEST(Primitive_location, Points_that_are_not_numbers_are_inside)
{
    EXPECT_EQ(Locate({Vector(k_Nan, 0, 0)}), 0x40000U);
    EXPECT_EQ(Locate({Vector(0, k_Nan, 0), Outside()}), 0x10000U);
    EXPECT_EQ(Locate({Vector(k_Infinity, 0, 0)}), 4U);
}

TEST(Primitive_location, Reads_no_pose)
{
    PoseCalls calls;
    PoseNode pose;
    pose.NoteIn(calls);
    C3DBaseSphere sphere(1);
    Points points{Vector(0, 0, 0)};
    Found found;
    sphere.GetPrimitiveLocation(&pose, points.data(), found.flags, 1);
    sphere.CheckPrimitiveInclusion(&pose, points.data(), 1, found.flags, found.worst);
    sphere.CheckPrimitiveExclusion(&pose, points.data(), found.flags, found.worst, 1);
    sphere.CheckPrimitiveOnSurface(&pose, points.data(), found.flags, found.worst, 1);
    sphere.IsPrimitiveLarger(Vector(0, 0, 0), points.data(), &pose, found.flags, 1);
    EXPECT_TRUE(calls.empty());
}

TEST(Primitive_inclusion, Worst_is_the_offset_of_the_point_farthest_outside)
{
    C3DBaseSphere const sphere(k_Radius, k_Center);
    EXPECT_TRUE(SameBits(CheckInclusion(sphere, {Inside(), Outside(3), Outside(-5), On(), Outside(4)}).worst,
                         Vector(0, 0, -5)));
    EXPECT_TRUE(SameBits(CheckInclusion(sphere, {Outside(5), Outside(-5)}).worst, Vector(0, 0, 5)))
        << "the first of several";
    EXPECT_TRUE(SameBits(CheckInclusion(sphere, {Vector(k_Nan, 0, 0), Outside(3), Vector(0, k_Nan, 0)}).worst,
                         Vector(0, 0, 3)));
    EXPECT_TRUE(SameBits(CheckInclusion(sphere, {Outside(3), Vector(k_Infinity, 2, 3), Outside(9)}).worst,
                         Vector(k_Infinity, 0, 0)));
}

TEST(Primitive_inclusion, Worst_is_null_where_no_point_is_outside)
{
    C3DBaseSphere const sphere(k_Radius, k_Center);
    for (Points const & points : {Points{}, Points{On()}, Points{Inside()}, Points{On(), Inside()}})
    {
        EXPECT_TRUE(SameBits(CheckInclusion(sphere, points).worst, Vector(0, 0, 0)));
    }
    // On the surface within the tolerance, though with a positive gap.
    EXPECT_TRUE(SameBits(CheckInclusion(C3DBaseSphere(1), {Vector(1 + 5e-13, 0, 0)}).worst, Vector(0, 0, 0)));
}

TEST(Primitive_exclusion, Worst_is_the_offset_of_the_point_deepest_inside)
{
    C3DBaseSphere const sphere(k_Radius, k_Center);
    EXPECT_TRUE(SameBits(CheckExclusion(sphere, {Outside(), Inside(1), Inside(-0.25), On(), Inside(0.5)}).worst,
                         Vector(-0.25, 0, 0)));
    EXPECT_TRUE(SameBits(CheckExclusion(sphere, {Inside(0.5), Inside(-0.5)}).worst, Vector(-0.5, 0, 0)))
        << "the last of several";
    EXPECT_TRUE(SameBits(CheckExclusion(sphere, {Outside(), On()}).worst, Vector(0, -2, 0)));
}

TEST(Primitive_exclusion, Worst_is_null_where_no_gap_is_at_most_zero)
{
    C3DBaseSphere const sphere(k_Radius, k_Center);
    EXPECT_TRUE(SameBits(CheckExclusion(sphere, {}).worst, Vector(0, 0, 0)));
    EXPECT_TRUE(SameBits(CheckExclusion(sphere, {Outside()}).worst, Vector(0, 0, 0)));
    Found const justOver = CheckExclusion(C3DBaseSphere(1), {Vector(1 + 5e-13, 0, 0)});
    EXPECT_EQ(justOver.flags, 0x100000U);
    EXPECT_TRUE(SameBits(justOver.worst, Vector(0, 0, 0)));
    EXPECT_TRUE(SameBits(CheckExclusion(C3DBaseSphere(1), {Vector(1 - 5e-13, 0, 0)}).worst, Vector(1 - 5e-13, 0, 0)));
}

TEST(Primitive_exclusion, Worst_is_the_last_once_a_point_is_not_a_number)
{
    C3DBaseSphere const sphere(k_Radius, k_Center);
    Vector const notANumber(k_Nan, 0, 0);
    EXPECT_TRUE(std::isnan(CheckExclusion(sphere, {Inside(0), notANumber}).worst.X));
    EXPECT_TRUE(SameBits(CheckExclusion(sphere, {Inside(0), notANumber, Inside(1)}).worst, Vector(1, 0, 0)));
    EXPECT_TRUE(std::isnan(CheckExclusion(sphere, {notANumber, Outside()}).worst.X));
}

TEST(Primitive_on_surface, Worst_is_the_offset_of_the_point_nearest_to_the_center)
{
    C3DBaseSphere const sphere(k_Radius, k_Center);
    EXPECT_TRUE(
        SameBits(CheckOnSurface(sphere, {Outside(), Inside(1), Inside(-0.25), On()}).worst, Vector(-0.25, 0, 0)));
    EXPECT_TRUE(SameBits(CheckOnSurface(sphere, {Inside(0.5), Inside(-0.5)}).worst, Vector(0.5, 0, 0)))
        << "the first of several";
    EXPECT_TRUE(SameBits(CheckOnSurface(sphere, {Outside(9), Outside(7), Outside(8)}).worst, Vector(0, 0, 7)));
    EXPECT_TRUE(SameBits(CheckOnSurface(sphere, {Outside(9)}).worst, Vector(0, 0, 9)));
    EXPECT_TRUE(SameBits(CheckOnSurface(sphere, {}).worst, Vector(0, 0, 0)));
}

TEST(Primitive_on_surface, Worst_stays_at_a_first_point_that_is_not_a_number)
{
    C3DBaseSphere const sphere(k_Radius, k_Center);
    Vector const notANumber(k_Nan, 0, 0);
    EXPECT_TRUE(std::isnan(CheckOnSurface(sphere, {notANumber, Inside(0)}).worst.X));
    EXPECT_TRUE(SameBits(CheckOnSurface(sphere, {Inside(1), notANumber}).worst, Vector(1, 0, 0)));
}

TEST(Primitive_location, Worst_may_lie_in_the_array_which_is_not_written_otherwise)
{
    C3DBaseSphere sphere(k_Radius, k_Center);
    Points points{Outside(3), Outside(5)};
    unsigned long flags = k_MarkedFlags;
    sphere.CheckPrimitiveInclusion(nullptr, points.data(), 2, flags, points[0]);
    EXPECT_TRUE(SameBits(points[0], Vector(0, 0, 5)));
    EXPECT_TRUE(SameBits(points[1], Outside(5)));
}

TEST(Is_primitive_larger, Judges_the_points_relative_to_the_reference)
{
    C3DBaseSphere sphere(2);
    Points points{Vector(101, 0, 0), Vector(99, 0, 0)};
    unsigned long flags = k_MarkedFlags;
    EXPECT_EQ(sphere.IsPrimitiveLarger(Vector(100, 0, 0), points.data(), nullptr, flags, 2), S_OK);
    EXPECT_EQ(flags, 0x40000U);
    EXPECT_EQ(sphere.IsPrimitiveLarger(Vector(98, 0, 0), points.data(), nullptr, flags, 2), S_OK);
    EXPECT_EQ(flags, 0x10000U);
    EXPECT_EQ(sphere.IsPrimitiveLarger(Vector(99, 0, 0), points.data(), nullptr, flags, 2), S_OK);
    EXPECT_EQ(flags, 0x60000U);
    EXPECT_EQ(sphere.IsPrimitiveLarger(points[0], points.data(), nullptr, flags, 1), S_OK);
    EXPECT_EQ(flags, 0x40000U);
    EXPECT_TRUE(SameBits(points[0], Vector(101, 0, 0))) << "the array stays";
    EXPECT_TRUE(SameBits(points[1], Vector(99, 0, 0)));
    EXPECT_EQ(sphere.IsPrimitiveLarger(points[0], points.data(), nullptr, flags, 0), S_OK);
    EXPECT_EQ(flags, 4U);
}

TEST(Is_primitive_larger, Brings_the_reference_to_the_origin_and_not_to_the_center)
{
    C3DBaseSphere sphere(2, Vector(10, 0, 0));
    Points points{Vector(5, 0, 0)};
    unsigned long flags = k_MarkedFlags;
    sphere.IsPrimitiveLarger(Vector(5, 0, 0), points.data(), nullptr, flags, 1);
    EXPECT_EQ(flags, 4U);
    sphere.IsPrimitiveLarger(Vector(-5, 0, 0), points.data(), nullptr, flags, 1);
    EXPECT_EQ(flags, 0x40000U);
}

TEST(Is_primitive_larger, Refuses_a_null_array)
{
    C3DBaseSphere sphere(2);
    unsigned long flags = k_MarkedFlags;
    EXPECT_EQ(sphere.IsPrimitiveLarger(Vector(0, 0, 0), nullptr, nullptr, flags, 1), E_POINTER);
    EXPECT_EQ(sphere.IsPrimitiveLarger(Vector(0, 0, 0), nullptr, nullptr, flags, 0), E_POINTER);
    EXPECT_EQ(flags, k_MarkedFlags);
}

TEST(Is_primitive_larger, Reports_memory_that_cannot_be_had)
{
    C3DBaseSphere sphere(2);
    Vector point(0, 0, 0);
    unsigned long flags = k_MarkedFlags;
    long result = 0;
    {
        auto const faults = AllocationFaults::RefuseOne(0);
        result = sphere.IsPrimitiveLarger(point, &point, nullptr, flags, 1);
    }
    EXPECT_EQ(result, E_OUTOFMEMORY);
    EXPECT_EQ(flags, k_MarkedFlags);
    EXPECT_EQ(sphere.IsPrimitiveLarger(point, &point, nullptr, flags, std::numeric_limits<unsigned long>::max()),
              E_OUTOFMEMORY);
    EXPECT_EQ(flags, k_MarkedFlags);
    long outstanding = 0;
    {
        AllocationFaults const count;
        result = sphere.IsPrimitiveLarger(point, &point, nullptr, flags, 1);
        outstanding = count.GetOutstanding();
    }
    EXPECT_EQ(result, S_OK);
    EXPECT_EQ(outstanding, 0) << "the array is freed";
}

TEST(Point_is_included, Looks_at_a_sphere_about_the_origin)
{
    C3DBaseSphere sphere(1, Vector(5, 0, 0));
    EXPECT_EQ(sphere.PointIsIncluded(nullptr, Vector(5, 0, 0)), 0);
    EXPECT_EQ(sphere.PointIsIncluded(nullptr, Vector(0, 0, 0)), 1);
    EXPECT_EQ(sphere.PointIsIncluded(nullptr, Vector(0, 1, 0)), 1) << "on the surface";
    EXPECT_EQ(sphere.PointIsIncluded(nullptr, Vector(0, 1 + 9.999e-13, 0)), 1);
    EXPECT_EQ(sphere.PointIsIncluded(nullptr, Vector(0, 1 + 1.0005e-12, 0)), 0);
    EXPECT_EQ(sphere.PointIsIncluded(nullptr, Vector(k_Nan, 0, 0)), 1);
}

TEST(Point_is_included, Takes_the_point_into_the_space_of_the_pose)
{
    C3DBaseSphere sphere(1);
    PoseCalls calls;
    PoseNode pose;
    pose.NoteIn(calls);
    pose.Local().SetTranslation(10, 0, 0);
    pose.Local().SetScaling(-2, 1, 3);
    EXPECT_EQ(sphere.PointIsIncluded(&pose, Vector(11.75, 0, 0)), 1);
    EXPECT_EQ(sphere.PointIsIncluded(&pose, Vector(12.25, 0, 0)), 0);
    EXPECT_EQ(sphere.PointIsIncluded(&pose, Vector(10, 1.125, 0)), 0);
    EXPECT_EQ(sphere.PointIsIncluded(&pose, Vector(10, 0, -2.875)), 1);
    EXPECT_EQ(calls, (PoseCalls(4, {&pose, PoseOperation::GlobalMatrix})));
}

TEST(Point_is_included, Answers_no_for_a_failing_pose)
{
    C3DBaseSphere sphere(1);
    PoseNode pose;
    for (auto const onFailure : {PoseNode::OnFailure::WriteOutput, PoseNode::OnFailure::LeaveOutput})
    {
        pose.Fail(PoseOperation::GlobalMatrix, 0, E_FAIL, onFailure);
        EXPECT_EQ(sphere.PointIsIncluded(&pose, Vector(0, 0, 0)), 0);
    }
    pose.Fail(PoseOperation::GlobalMatrix, 0, S_FALSE, PoseNode::OnFailure::WriteOutput);
    EXPECT_EQ(sphere.PointIsIncluded(&pose, Vector(0, 0, 0)), 1);
    pose.Fail(PoseOperation::GlobalMatrix, 0, S_OK);
    EXPECT_EQ(sphere.PointIsIncluded(&pose, Vector(0, 0, 0)), 0) << "no matrix after all";
}

TEST(Point_is_included, Singular_pose_counts_as_the_world)
{
    C3DBaseSphere sphere(1);
    PoseNode pose;
    pose.Local().SetTranslation(10, 0, 0);
    pose.Flatten();
    EXPECT_EQ(sphere.PointIsIncluded(&pose, Vector(0, 0.5, 0)), 1);
    EXPECT_EQ(sphere.PointIsIncluded(&pose, Vector(10, 0, 0)), 0);
}

TEST(Point_is_included, Agrees_with_points_carried_out_of_the_sphere_by_branches_of_poses)
{
    Random random(20247);
    C3DBaseSphere sphere(1.5, Vector(4, 4, 4));
    for (int i = 0; i < 200; ++i)
    {
        PoseBranch branch(random, i % 2 == 0);
        Vector const local(random.Uniform(-2.0, 2.0), random.Uniform(-2.0, 2.0), random.Uniform(-2.0, 2.0));
        bool const isInside = local.GetLength() < 1.5;
        EXPECT_EQ(sphere.PointIsIncluded(&branch.leaf, Vector().Mul(local, branch.leaf.GlobalMatrix())),
                  isInside ? 1 : 0);
    }
}

} // namespace
