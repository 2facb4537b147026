#include "geometry/query_checks.h"
#include "math/box.h"
#include "math/point.h"
#include "math/sphere.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

using namespace geometry_test;
using namespace test_support;
using Vector = C3DVector3Tpl<double>;
using enum PoseOperation;

/// The second tolerance is read by nobody: it would show wherever it entered.
constexpr double k_Unread = std::numeric_limits<double>::quiet_NaN();

Answer AskPoint(TwoPoses & poses, double tolerance, bool withRecord = true)
{
    C3DPoint const point(Vector(70, 80, 90));
    C3DPoint const other(Vector(-70, -80, -90));
    C3DMathGeometry const & query = point;
    return AskWith(withRecord,
                   [&](unsigned long & flags, tagS3DGEOMINFO * info) {
                       return query.Intersect_Point(&poses.own, other, &poses.other, flags, info, tolerance, k_Unread);
                   });
}

Answer AskSphere(TwoPoses & poses, double radius, double tolerance, bool withRecord = true)
{
    C3DPoint const point(Vector(70, 80, 90));
    C3DBaseSphere const other(radius, Vector(-70, -80, -90));
    C3DMathGeometry const & query = point;
    return AskWith(withRecord,
                   [&](unsigned long & flags, tagS3DGEOMINFO * info) {
                       return query.Intersect_Sphere(&poses.own, other, &poses.other, flags, info, tolerance, k_Unread);
                   });
}

Answer AskBox(TwoPoses & poses, C3DBaseBox const & box, double tolerance, bool withRecord = true)
{
    C3DPoint const point(Vector(70, 80, 90));
    C3DMathGeometry const & query = point;
    return AskWith(withRecord, [&](unsigned long & flags, tagS3DGEOMINFO * info)
                   { return query.Intersect_Box(&poses.own, box, &poses.other, flags, info, tolerance, k_Unread); });
}

TEST(Point_queries, Point_stands_where_its_pose_stands)
{
    TwoPoses poses;
    poses.own.Local().SetTranslation(1, 2, 3);
    poses.other.Local().SetTranslation(1, 2, 8);
    Answer const apart = AskPoint(poses, 1);
    EXPECT_EQ(apart.result, S_OK);
    EXPECT_EQ(apart.flags, 4U);
    EXPECT_TRUE(HasOnly(k_Position | k_Distance, apart.info));
    EXPECT_TRUE(SameBits(apart.info.position, Vector(1, 2, 3)));
    EXPECT_EQ(apart.info.distance, 4);

    Answer const touching = AskPoint(poses, 5);
    EXPECT_EQ(touching.flags, 0x20000U);
    EXPECT_EQ(touching.info.distance, 0);
}

TEST(Point_queries, Two_points_ask_for_two_positions_and_no_more)
{
    TwoPoses poses;
    AskPoint(poses, 1);
    EXPECT_EQ(poses.calls, (PoseCalls{{&poses.own, GlobalPosition}, {&poses.other, GlobalPosition}}));
    poses.calls.clear();
    Answer const withoutRecord = AskPoint(poses, 1, false);
    EXPECT_EQ(withoutRecord.result, S_OK);
    EXPECT_EQ(withoutRecord.flags, 0x20000U);
    EXPECT_EQ(poses.calls.size(), 2U);
}

TEST(Point_queries, Failing_position_ends_a_query_of_two_points)
{
    TwoPoses first;
    first.own.Fail(GlobalPosition, 0, E_UNEXPECTED, PoseNode::OnFailure::WriteOutput);
    Answer const atFirst = AskPoint(first, 1);
    EXPECT_EQ(atFirst.result, E_UNEXPECTED);
    EXPECT_TRUE(WroteNothing(atFirst));
    EXPECT_EQ(first.calls.size(), 1U);

    TwoPoses second;
    second.other.Fail(GlobalPosition, 0, -7, PoseNode::OnFailure::WriteOutput);
    Answer const atSecond = AskPoint(second, 1);
    EXPECT_EQ(atSecond.result, -7);
    EXPECT_TRUE(WroteNothing(atSecond));
    EXPECT_EQ(second.calls.size(), 2U);
}

TEST(Point_queries, Positive_code_of_a_pose_is_a_success)
{
    TwoPoses poses;
    poses.own.Fail(GlobalPosition, 0, S_FALSE, PoseNode::OnFailure::WriteOutput);
    poses.other.Fail(GlobalPosition, 0, 5, PoseNode::OnFailure::WriteOutput);
    Answer const answer = AskPoint(poses, 1);
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.flags, 0x20000U);
}

TEST(Point_queries, Sphere_stands_at_its_pose_with_the_greatest_factor_of_scale)
{
    TwoPoses poses;
    poses.own.Local().SetTranslation(1, 2, 13);
    poses.other.Local().SetTranslation(1, 2, 3);
    poses.other.Local().SetScaling(2, -7, 3);
    Answer const answer = AskSphere(poses, 2, 0.5);
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.flags, 4U);
    EXPECT_TRUE(HasOnly(k_Position | k_Normal | k_Distance, answer.info));
    EXPECT_TRUE(SameBits(answer.info.position, Vector(1, 2, 13)));
    EXPECT_TRUE(SameBits(answer.info.normal, Vector(0, 0, 1)));
    EXPECT_EQ(answer.info.distance, 4);
    EXPECT_EQ(AskSphere(poses, 2, 4).flags, 0x20000U);
    EXPECT_EQ(AskSphere(poses, 4, 1).flags, 0x40000U);
    EXPECT_EQ(AskSphere(poses, 4, 1, false).flags, 0x40000U);
}

TEST(Point_queries, Scale_of_negative_factors_alone_makes_the_radius_negative)
{
    TwoPoses poses;
    poses.other.Local().SetScaling(-2, -7, -3);
    Answer const answer = AskSphere(poses, 2, 0.5);
    EXPECT_EQ(answer.flags, 4U);
    EXPECT_EQ(answer.info.distance, 4);
    EXPECT_TRUE(HasOnly(k_Position | k_Distance, answer.info)) << "at the center";
}

TEST(Point_queries, Scale_of_the_point_plays_no_part_against_a_sphere)
{
    TwoPoses poses;
    poses.own.Local().SetScaling(100, 100, 100);
    poses.own.Local().SetTranslation(3, 0, 0);
    EXPECT_EQ(AskSphere(poses, 1, 0).info.distance, 2);
    EXPECT_EQ(poses.calls,
              (PoseCalls{{&poses.own, GlobalPosition}, {&poses.other, GlobalPosition}, {&poses.other, GlobalScaling}}));
}

TEST(Point_queries, Failing_poses_are_ignored_against_a_sphere)
{
    for (auto const onFailure : {PoseNode::OnFailure::WriteOutput, PoseNode::OnFailure::LeaveOutput})
    {
        bool const writes = onFailure == PoseNode::OnFailure::WriteOutput;
        for (int failing = 0; failing < 3; ++failing)
        {
            TwoPoses poses;
            poses.own.Local().SetTranslation(10, 0, 0);
            poses.other.Local().SetTranslation(4, 0, 0);
            poses.other.Local().SetScaling(2, 2, 2);
            (failing == 0 ? poses.own : poses.other)
                .Fail(failing == 2 ? GlobalScaling : GlobalPosition, 0, E_FAIL, onFailure);
            Answer const answer = AskSphere(poses, 1, 0);
            EXPECT_EQ(answer.result, S_OK);
            EXPECT_EQ(answer.flags, 4U);
            // What was not written counts as the world's origin, and as no scale.
            double const withoutIt[] = {4 - 2, 10 - 2, 6 - 1};
            EXPECT_EQ(answer.info.distance, writes ? 6 - 2 : withoutIt[failing]);
            EXPECT_EQ(poses.calls.size(), 3U);
        }
    }
}

TEST(Point_queries, Box_answers_in_its_own_space)
{
    TwoPoses poses;
    poses.other.Local().SetTranslation(10, 0, 0);
    poses.other.Local().SetRotation(0, 0, 1.5707963267948966);
    poses.other.Local().SetScaling(2, 2, 2);
    C3DBaseBox const box(Vector(-1, -2, -3), Vector(1, 2, 3));
    Answer const answer = AskBox(poses, box, 0.25);
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.flags, 4U);
    EXPECT_TRUE(HasOnly(k_Position | k_Distance, answer.info));
    // The origin lies at -10 along the world's X, which is the second axis of the box, turned back and halved.
    EXPECT_TRUE(AreAlmostEqual(answer.info.position, Vector(0, 5, 0), 1e-14));
    EXPECT_NEAR(answer.info.distance, -3, 1e-14) << "the least of the gaps -1, 3 and -3";
    EXPECT_EQ(poses.calls,
              (PoseCalls{{&poses.own, GlobalPosition}, {&poses.own, GlobalTransfo}, {&poses.other, GlobalTransfo}}));
    EXPECT_EQ(AskBox(poses, box, 3.25, false).flags, 0x20000U);
}

TEST(Point_queries, World_position_of_the_point_is_mapped_from_its_own_space_to_the_box)
{
    TwoPoses poses;
    poses.own.Local().SetTranslation(1, 0, 0);
    poses.own.Local().SetScaling(3, 3, 3);
    C3DBaseBox const box(8);
    Answer const answer = AskBox(poses, box, 0.25);
    // 1, and once more through the pose: 3 * 1 + 1.
    EXPECT_TRUE(SameBits(answer.info.position, Vector(4, 0, 0)));
    EXPECT_EQ(answer.flags, 0x20000U);
}

TEST(Point_queries, Failing_pose_ends_a_query_against_a_box)
{
    for (int failing = 0; failing < 3; ++failing)
    {
        TwoPoses poses;
        (failing == 2 ? poses.other : poses.own)
            .Fail(failing == 0 ? GlobalPosition : GlobalTransfo, 0, E_FAIL - failing, PoseNode::OnFailure::WriteOutput);
        Answer const answer = AskBox(poses, C3DBaseBox(1), 0);
        EXPECT_EQ(answer.result, E_FAIL - failing);
        EXPECT_TRUE(WroteNothing(answer));
        EXPECT_EQ(poses.calls.size(), static_cast<std::size_t>(failing) + 1);
    }
}

TEST(Point_queries, Box_of_a_singular_pose_takes_the_point_as_in_the_world)
{
    TwoPoses poses;
    poses.other.Local().SetTranslation(100, 0, 0);
    poses.other.Flatten();
    poses.own.Local().SetTranslation(0, 2, 0);
    Answer const answer = AskBox(poses, C3DBaseBox(1), 0);
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_TRUE(SameBits(answer.info.position, Vector(0, 4, 0)));
}

TEST(Point_queries, Branches_of_poses_agree_with_the_product_of_their_matrices)
{
    Random random(20242);
    C3DBaseBox const box(Vector(-1, -2, -3), Vector(3, 2, 1));
    C3DPoint const point;
    for (int i = 0; i < 100; ++i)
    {
        PoseBranch own(random, i % 2 == 0);
        PoseBranch other(random, i % 4 < 2);
        Vector const stand = Map(Vector(0, 0, 0), EigenMatrix(own.leaf));
        Eigen::Matrix4d const map = EigenMatrix(own.leaf) * EigenMatrix(other.leaf).inverse();
        Vector const expected = Map(stand, map);
        double const size = 1 + expected.GetLength();
        Answer answer;
        answer.result = point.Intersect_Box(&own.leaf, box, &other.leaf, answer.flags, &answer.info, 0, k_Unread);
        EXPECT_EQ(answer.result, S_OK);
        EXPECT_TRUE(AreAlmostEqual(answer.info.position, expected, 1e-11 * size));
        Vector const & p = answer.info.position;
        EXPECT_EQ(answer.flags, box.IsInsideBox(p) != 0 ? 0x40000U : 4U);

        Answer points;
        point.Intersect_Point(&own.leaf, point, &other.leaf, points.flags, &points.info, 0, k_Unread);
        double const distance = GetDistance(stand, Map(Vector(0, 0, 0), EigenMatrix(other.leaf)));
        EXPECT_NEAR(points.info.distance, distance, 1e-12 * (1 + distance));
    }
}

} // namespace
