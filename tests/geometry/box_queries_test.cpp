#include "geometry/query_checks.h"
#include "math/box.h"
#include "math/box_intersection.h"
#include "math/point.h"
#include "math/sphere.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{

using namespace geometry_test;
using namespace test_support;
using Vector = C3DVector3Tpl<double>;
using enum PoseOperation;

/// The second tolerance is read by nobody: it would show wherever it entered.
constexpr double k_Unread = std::numeric_limits<double>::quiet_NaN();

Answer AskSphere(TwoPoses & poses, C3DBaseBox const & box, double radius, double tolerance, bool withRecord)
{
    C3DBaseSphere const sphere(radius, Vector(50, 60, 70));
    C3DMathGeometry const & query = box;
    return AskWith(
        withRecord, [&](unsigned long & flags, tagS3DGEOMINFO * info)
        { return query.Intersect_Sphere(&poses.own, sphere, &poses.other, flags, info, tolerance, k_Unread); });
}

Answer AskBox(TwoPoses & poses, C3DBaseBox const & box, C3DBaseBox const & other, bool withRecord)
{
    C3DMathGeometry const & query = box;
    return AskWith(withRecord, [&](unsigned long & flags, tagS3DGEOMINFO * info)
                   { return query.Intersect_Box(&poses.own, other, &poses.other, flags, info, 1000, k_Unread); });
}

TEST(Box_queries, Point_has_no_answer_though_the_point_has_one)
{
    TwoPoses poses;
    C3DBaseBox const box(2);
    C3DPoint const point;
    Answer answer;
    answer.result = box.Intersect_Point(&poses.own, point, &poses.other, answer.flags, &answer.info, 0, 0);
    EXPECT_EQ(answer.result, math::detail::MakeResult(0x80004001U));
    EXPECT_TRUE(WroteNothing(answer));
    EXPECT_TRUE(poses.calls.empty());
    EXPECT_EQ(point.Intersect_Box(&poses.other, box, &poses.own, answer.flags, &answer.info, 0, 0), S_OK);
    EXPECT_EQ(answer.flags, 0x40000U);
}

TEST(Box_queries, Sphere_with_a_record_is_answered_and_denied)
{
    TwoPoses poses;
    poses.own.Local().SetTranslation(0, 0, 4);
    Answer const answer = AskSphere(poses, C3DBaseBox(6), 2, 0.25, true);
    EXPECT_EQ(answer.result, math::detail::MakeResult(0x80004001U));
    EXPECT_EQ(answer.flags, 0x10000U);
    EXPECT_TRUE(HasOnly(k_PositionZ | k_NormalZ | k_Distance, answer.info));
    EXPECT_EQ(answer.info.position.Z, 2.25) << "the innermost point of the sphere less the tolerance";
    EXPECT_EQ(answer.info.normal.Z, 1);
    EXPECT_EQ(answer.info.distance, -0.75);
    EXPECT_EQ(poses.calls, (PoseCalls{{&poses.own, RelativeTransfo, &poses.other, 0x3F}}));

    Answer const withoutRecord = AskSphere(poses, C3DBaseBox(6), 2, 0.25, false);
    EXPECT_EQ(withoutRecord.result, S_OK);
    EXPECT_EQ(withoutRecord.flags, 0x10000U);
}

TEST(Box_queries, Sphere_apart_with_a_record_is_denied_too)
{
    TwoPoses poses;
    poses.own.Local().SetTranslation(0, 9, 0);
    Answer const answer = AskSphere(poses, C3DBaseBox(6), 2, 0, true);
    EXPECT_EQ(answer.result, E_NOTIMPL);
    EXPECT_EQ(answer.flags, 4U);
}

TEST(Box_queries, Sphere_stands_where_the_box_stands_seen_from_it)
{
    // The box reaches far along -X alone. The sphere is on that side, but the box lies along +X from the sphere.
    C3DBaseBox const box(Vector(-10, -1, -1), Vector(1, 1, 1));
    TwoPoses poses;
    poses.other.Local().SetTranslation(-5, 0, 0);
    EXPECT_EQ(AskSphere(poses, box, 1, 0, false).flags, 4U);
    poses.other.Local().SetTranslation(5, 0, 0);
    EXPECT_EQ(AskSphere(poses, box, 1, 0, false).flags, 0x10000U);
}

TEST(Box_queries, Radius_of_the_sphere_grows_by_the_greatest_factor_in_magnitude)
{
    TwoPoses poses;
    poses.own.Local().SetScaling(1, -3, 2);
    poses.own.Local().SetTranslation(7.5, 0, 0);
    EXPECT_EQ(AskSphere(poses, C3DBaseBox(4), 2, 0, false).flags, 0x10000U) << "5.5 from the face, the radius 6";
    EXPECT_EQ(AskSphere(poses, C3DBaseBox(4), 1.75, 0, false).flags, 4U) << "the radius 5.25";
}

TEST(Box_queries, Failing_pose_is_ignored_against_a_sphere)
{
    for (auto const onFailure : {PoseNode::OnFailure::WriteOutput, PoseNode::OnFailure::LeaveOutput})
    {
        bool const writes = onFailure == PoseNode::OnFailure::WriteOutput;
        TwoPoses poses;
        poses.own.Local().SetTranslation(0, 0, 20);
        poses.own.Fail(RelativeTransfo, 0, E_FAIL, onFailure);
        Answer const answer = AskSphere(poses, C3DBaseBox(4), 1, 0, false);
        EXPECT_EQ(answer.result, S_OK);
        EXPECT_EQ(answer.flags, writes ? 4U : 0x10000U) << "what was not written counts as the same place";
    }
}

TEST(Box_queries, Sphere_agrees_with_its_place_through_the_matrices)
{
    Random random(20243);
    C3DBaseBox const box(Vector(-4, -5, -6), Vector(6, 5, 4));
    int contacts = 0;
    for (int i = 0; i < 200; ++i)
    {
        // By matrix, the relative transformation arrives as a matrix, whose components are out of date.
        TwoPoses poses;
        for (PoseNode * node : {&poses.own, &poses.other})
        {
            node->Local().SetQNScalingFlag(i % 2);
            PlaceAnywhere(random, node->Local());
        }
        double const scale = random.Uniform(0.5, 2.0);
        poses.own.Local().SetScaling(scale, scale / 2, scale / 3);
        Answer const answer = AskSphere(poses, box, 1.5, 0.125, true);
        EXPECT_EQ(answer.result, E_NOTIMPL);
        Answer expected;
        Vector const center = Map(Vector(0, 0, 0), EigenMatrix(poses.own) * EigenMatrix(poses.other).inverse());
        F3DLocalBoxVsSphereIntersection(box.GetMin(), box.GetMax(), center, 1.5 * scale, expected.flags, &expected.info,
                                        0.125);
        EXPECT_EQ(answer.flags, expected.flags);
        EXPECT_NEAR(answer.info.distance, expected.info.distance, 1e-12);
        EXPECT_TRUE(AreAlmostEqual(answer.info.position, expected.info.position, 1e-12));
        contacts += answer.flags == 0x10000U ? 1 : 0;
    }
    EXPECT_GT(contacts, 20);
    EXPECT_LT(contacts, 180);
}

TEST(Box_queries, Boxes_count_as_twice_their_size)
{
    TwoPoses poses;
    poses.other.Local().SetTranslation(6, 0, 0);
    EXPECT_EQ(AskBox(poses, C3DBaseBox(2), C3DBaseBox(4), false).flags, 0x10000U);
    poses.other.Local().SetTranslation(6.0000001, 0, 0);
    EXPECT_EQ(AskBox(poses, C3DBaseBox(2), C3DBaseBox(4), false).flags, 4U) << "whatever the tolerance";
}

TEST(Box_queries, Boxes_count_as_centered_on_their_poses)
{
    TwoPoses poses;
    poses.other.Local().SetTranslation(10, 0, 0);
    C3DBaseBox const far(Vector(-12, 0, 0), Vector(-10, 2, 2));
    Answer const answer = AskBox(poses, C3DBaseBox(2), far, true);
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.flags, 4U);
}

TEST(Box_queries, Second_box_is_placed_in_the_space_of_the_first)
{
    // A slab of the first box lies along X, the place of the second is turned by a right angle from where the first
    // would lie from the second.
    TwoPoses poses;
    poses.own.Local().SetRotation(0, 0, 1.5707963267948966);
    poses.other.Local().SetTranslation(0, 8, 0);
    C3DBaseBox const slab(Vector(10, 0.25, 0.25));
    EXPECT_EQ(AskBox(poses, slab, C3DBaseBox(0.25), false).flags, 0x10000U);
    EXPECT_EQ(poses.calls, (PoseCalls{{&poses.other, RelativeTransfo, &poses.own, 0x3F}}));
    poses.other.Local().SetTranslation(8, 0, 0);
    EXPECT_EQ(AskBox(poses, slab, C3DBaseBox(0.25), false).flags, 4U);
}

TEST(Box_queries, Record_of_two_boxes_is_cleared)
{
    for (double const x : {0.0, 100.0})
    {
        TwoPoses poses;
        poses.other.Local().SetTranslation(x, 0, 0);
        Answer const answer = AskBox(poses, C3DBaseBox(2), C3DBaseBox(4), true);
        EXPECT_EQ(answer.result, S_OK);
        EXPECT_TRUE(HasOnly(k_AllFields, answer.info));
        EXPECT_TRUE(SameBits(answer.info.position, Vector(0, 0, 0)));
        EXPECT_TRUE(SameBits(answer.info.normal, Vector(0, 0, 0)));
        EXPECT_EQ(answer.info.u, 0);
        EXPECT_EQ(answer.info.v, 0);
        EXPECT_EQ(answer.info.distance, 0);
    }
}

TEST(Box_queries, Failing_pose_ends_a_query_of_two_boxes)
{
    TwoPoses poses;
    poses.other.Fail(RelativeTransfo, 0, E_UNEXPECTED, PoseNode::OnFailure::WriteOutput);
    Answer const answer = AskBox(poses, C3DBaseBox(2), C3DBaseBox(4), true);
    EXPECT_EQ(answer.result, E_UNEXPECTED);
    EXPECT_TRUE(WroteNothing(answer));
}

TEST(Box_queries, Two_boxes_agree_with_their_places_through_the_matrices)
{
    Random random(20244);
    int contacts = 0;
    for (int i = 0; i < 200; ++i)
    {
        TwoPoses poses;
        for (PoseNode * node : {&poses.own, &poses.other})
        {
            node->Local().SetQNScalingFlag(i % 2);
            PlaceAnywhere(random, node->Local());
        }
        C3DBaseBox const box(Vector(random.Uniform(1.0, 8.0), random.Uniform(1.0, 8.0), random.Uniform(1.0, 8.0)));
        C3DBaseBox const other(Vector(random.Uniform(1.0, 8.0), random.Uniform(1.0, 8.0), random.Uniform(1.0, 8.0)));
        Vector sides;
        Vector otherSides;
        box.GetSideLengths(sides);
        other.GetSideLengths(otherSides);
        Eigen::Matrix4d const map = EigenMatrix(poses.other) * EigenMatrix(poses.own).inverse();
        double elements[3][3];
        for (int row = 0; row < 3; ++row)
        {
            for (int column = 0; column < 3; ++column)
            {
                elements[row][column] = map(row, column);
            }
        }
        C3DRotMatTpl<double> rotation;
        rotation.Set(elements);
        unsigned long expected = k_MarkedFlags;
        F3DLocalBoxVsBoxIntersection(rotation, Map(Vector(0, 0, 0), map), sides, otherSides, expected, nullptr, 0);
        Answer const answer = AskBox(poses, box, other, false);
        EXPECT_EQ(answer.result, S_OK);
        EXPECT_EQ(answer.flags, expected);
        contacts += answer.flags == 0x10000U ? 1 : 0;
    }
    EXPECT_GT(contacts, 20);
    EXPECT_LT(contacts, 180);
}

} // namespace
