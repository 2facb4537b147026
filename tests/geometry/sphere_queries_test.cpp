#include "geometry/query_checks.h"
#include "math/bounding_sphere.h"
#include "math/box.h"
#include "math/box_intersection.h"
#include "math/point.h"
#include "math/sphere.h"

#include <gtest/gtest.h>

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
constexpr double k_Pi = 3.14159265358979323846;

Answer AskPoint(TwoPoses & poses, C3DBaseSphere const & sphere, double tolerance, bool withRecord = true)
{
    C3DPoint const point(Vector(70, 80, 90));
    C3DMathGeometry const & query = sphere;
    return AskWith(withRecord,
                   [&](unsigned long & flags, tagS3DGEOMINFO * info) {
                       return query.Intersect_Point(&poses.own, point, &poses.other, flags, info, tolerance, k_Unread);
                   });
}

Answer AskSphere(TwoPoses & poses, C3DBaseSphere const & sphere, C3DBaseSphere const & other, double tolerance,
                 bool withRecord = true)
{
    C3DMathGeometry const & query = sphere;
    return AskWith(withRecord,
                   [&](unsigned long & flags, tagS3DGEOMINFO * info) {
                       return query.Intersect_Sphere(&poses.own, other, &poses.other, flags, info, tolerance, k_Unread);
                   });
}

Answer AskBox(TwoPoses & poses, C3DBaseSphere const & sphere, C3DBaseBox const & box, double tolerance,
              tagS3DGEOMINFO const * record)
{
    C3DMathGeometry const & query = sphere;
    Answer answer;
    if (record != nullptr)
    {
        answer.info = *record;
    }
    answer.result = query.Intersect_Box(&poses.own, box, &poses.other, answer.flags,
                                        record != nullptr ? &answer.info : nullptr, tolerance, k_Unread);
    return answer;
}

/// The unit vector at the parameters of a sphere.
Vector NormalAt(double u, double v)
{
    return {std::sin(k_Pi * v) * std::cos(2 * k_Pi * u), std::cos(k_Pi * v),
            -std::sin(k_Pi * v) * std::sin(2 * k_Pi * u)};
}

TEST(Sphere_queries, Point_is_taken_relative_to_the_stored_center)
{
    TwoPoses poses;
    poses.own.Local().SetTranslation(1, 0, 0);
    poses.other.Local().SetTranslation(1, 9, 0);
    C3DBaseSphere const sphere(2, Vector(0, 4, 0));
    Answer const answer = AskPoint(poses, sphere, 0.5);
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.flags, 4U);
    EXPECT_TRUE(HasOnly(k_AllFields, answer.info));
    EXPECT_TRUE(SameBits(answer.info.position, Vector(1, 5, 0)));
    EXPECT_TRUE(SameBits(answer.info.normal, Vector(0, 1, 0)));
    EXPECT_EQ(answer.info.distance, 3);
    // In the space of the sphere the contact is at (0, 5, 0), a unit above the center.
    EXPECT_EQ(answer.info.v, 0);
    EXPECT_EQ(answer.info.u, 0);
    EXPECT_EQ(AskPoint(poses, sphere, 3).flags, 0x20000U);
    EXPECT_EQ(AskPoint(poses, C3DBaseSphere(6, Vector(0, 4, 0)), 0.5).flags, 0x40000U);
}

TEST(Sphere_queries, Point_needs_the_transformation_for_a_record_alone)
{
    TwoPoses poses;
    EXPECT_EQ(AskPoint(poses, C3DBaseSphere(2), 0.5, false).flags, 0x40000U);
    PoseCalls const withoutRecord{
        {&poses.own, GlobalPosition}, {&poses.own, GlobalScaling}, {&poses.other, GlobalPosition}};
    EXPECT_EQ(poses.calls, withoutRecord);
    poses.calls.clear();
    AskPoint(poses, C3DBaseSphere(2), 0.5);
    PoseCalls withRecord = withoutRecord;
    withRecord.push_back({&poses.own, GlobalTransfo});
    EXPECT_EQ(poses.calls, withRecord);
}

TEST(Sphere_queries, Point_at_the_center_leaves_the_normal_and_has_parameters_of_zero)
{
    TwoPoses poses;
    Answer const answer = AskPoint(poses, C3DBaseSphere(2), 0.5);
    EXPECT_EQ(answer.flags, 0x40000U);
    EXPECT_TRUE(HasOnly(k_Position | k_Distance | k_U | k_V, answer.info));
    EXPECT_EQ(answer.info.u, 0);
    EXPECT_EQ(answer.info.v, 0);
}

TEST(Sphere_queries, Negative_scale_alone_makes_the_radius_negative_against_points_and_spheres)
{
    TwoPoses poses;
    poses.own.Local().SetScaling(-3, -2, -4);
    EXPECT_EQ(AskPoint(poses, C3DBaseSphere(1), 0.5).flags, 4U);
    EXPECT_EQ(AskPoint(poses, C3DBaseSphere(1), 0.5).info.distance, 2);
    EXPECT_EQ(AskSphere(poses, C3DBaseSphere(1), C3DBaseSphere(1), 0.5).info.distance, 1);
    EXPECT_EQ(AskSphere(poses, C3DBaseSphere(1), C3DBaseSphere(1), 0.5).flags, 4U);
    poses.own.Local().SetScaling(-3, 2, -4);
    EXPECT_EQ(AskPoint(poses, C3DBaseSphere(1), 0.5).info.distance, -2);
    poses.other.Local().SetScaling(-3, -5, 1.5);
    EXPECT_EQ(AskSphere(poses, C3DBaseSphere(1), C3DBaseSphere(2), 0.5).info.distance, -5);
}

TEST(Sphere_queries, Failing_pose_of_the_sphere_ends_a_query_against_a_point)
{
    for (auto const operation : {GlobalPosition, GlobalScaling})
    {
        TwoPoses poses;
        poses.own.Fail(operation, 0, E_UNEXPECTED, PoseNode::OnFailure::WriteOutput);
        Answer const answer = AskPoint(poses, C3DBaseSphere(2), 0.5);
        EXPECT_EQ(answer.result, E_UNEXPECTED);
        EXPECT_TRUE(WroteNothing(answer));
        EXPECT_EQ(poses.calls.size(), operation == GlobalPosition ? 1U : 2U);
    }
    TwoPoses poses;
    poses.own.Fail(GlobalTransfo, 0, -3);
    poses.other.Local().SetTranslation(0, 0, 9);
    Answer const late = AskPoint(poses, C3DBaseSphere(2), 0.5);
    EXPECT_EQ(late.result, -3) << "after the pair has answered";
    EXPECT_EQ(late.flags, 4U);
    EXPECT_TRUE(HasOnly(k_Position | k_Normal | k_Distance, late.info));
    poses.own.Fail(GlobalTransfo, 0, -3);
    EXPECT_EQ(AskPoint(poses, C3DBaseSphere(2), 0.5, false).result, S_OK) << "not asked";
}

TEST(Sphere_queries, Failing_pose_of_the_point_is_ignored)
{
    for (auto const onFailure : {PoseNode::OnFailure::WriteOutput, PoseNode::OnFailure::LeaveOutput})
    {
        TwoPoses poses;
        poses.other.Local().SetTranslation(0, 0, 9);
        poses.other.Fail(GlobalPosition, 0, E_FAIL, onFailure);
        Answer const answer = AskPoint(poses, C3DBaseSphere(2), 0.5);
        EXPECT_EQ(answer.result, S_OK);
        EXPECT_EQ(answer.info.distance, onFailure == PoseNode::OnFailure::WriteOutput ? 7 : -2);
    }
}

TEST(Sphere_queries, Parameters_of_a_point_lead_back_to_it_through_the_pose)
{
    Random random(20245);
    for (int i = 0; i < 200; ++i)
    {
        PoseBranch own(random, i % 2 == 0);
        PoseBranch other(random, true);
        C3DBaseSphere const sphere(random.Uniform(0.5, 3.0),
                                   Vector(random.Uniform(-2.0, 2.0), random.Uniform(-2.0, 2.0), 0.5));
        Answer answer;
        answer.result = sphere.Intersect_Point(&own.leaf, C3DPoint(), &other.leaf, answer.flags, &answer.info, 0, 0);
        EXPECT_EQ(answer.result, S_OK);
        Vector center;
        sphere.GetCenter(center);
        Vector const stand = Map(Vector(0, 0, 0), EigenMatrix(other.leaf));
        EXPECT_TRUE(AreAlmostEqual(answer.info.position, Vector().Sub(stand, center), 1e-10));
        Vector const local = Map(answer.info.position, EigenMatrix(own.leaf).inverse());
        Vector const offset = Vector().Sub(local, center);
        Vector const back = Vector().Mul(NormalAt(answer.info.u, answer.info.v), offset.GetLength());
        EXPECT_TRUE(AreAlmostEqual(back, offset, 1e-9 * (1 + offset.GetLength())));
        EXPECT_GE(answer.info.u, 0);
        EXPECT_LE(answer.info.u, 1);
        EXPECT_GE(answer.info.v, 0);
        EXPECT_LE(answer.info.v, 1);
    }
}

TEST(Sphere_queries, Parameters_at_the_axes)
{
    struct Row
    {
        Vector direction;
        double u;
        double v;
    };
    for (Row const & row : {Row{{0, 5, 0}, 0, 0}, Row{{0, -5, 0}, 0, 1}, Row{{5, 0, 0}, 0, 0.5},
                            Row{{0, 0, -5}, 0.25, 0.5}, Row{{-5, 0, 0}, 0.5, 0.5}, Row{{0, 0, 5}, 0.75, 0.5},
                            Row{{0, 1e-12, 0}, 0, 0}, Row{{0, -1e-12, 0}, 0, 0}, Row{{0, -1.0000001e-12, 0}, 0, 1}})
    {
        TwoPoses poses;
        poses.other.Local().SetTranslation(row.direction);
        Answer const answer = AskPoint(poses, C3DBaseSphere(2), 0.5);
        EXPECT_NEAR(answer.info.u, row.u, 1e-15);
        EXPECT_NEAR(answer.info.v, row.v, 1e-15);
    }
}

TEST(Sphere_queries, Spheres_stand_at_their_poses_plus_their_centers)
{
    TwoPoses poses;
    poses.own.Local().SetTranslation(1, 0, 0);
    poses.own.Local().SetScaling(2, 1, 1);
    poses.other.Local().SetTranslation(1, 10, 0);
    poses.other.Local().SetScaling(1, 1, 3);
    C3DBaseSphere const sphere(1, Vector(0, 0, 2));
    C3DBSphere const other(1, Vector(0, 5, 2));
    Answer const answer = AskSphere(poses, sphere, other, 0.5);
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.flags, 4U);
    EXPECT_TRUE(HasOnly(k_AllFields, answer.info));
    EXPECT_TRUE(SameBits(answer.info.normal, Vector(0, 1, 0)));
    EXPECT_EQ(answer.info.distance, 15 - 2 - 3);
    EXPECT_TRUE(SameBits(answer.info.position, Vector(1, 12, 2))) << "on the second sphere";
    EXPECT_EQ(AskSphere(poses, sphere, other, 10).flags, 0x20000U);
    EXPECT_EQ(AskSphere(poses, C3DBaseSphere(7, Vector(0, 0, 2)), other, 0.5).flags, 0x10000U);
    EXPECT_EQ(AskSphere(poses, C3DBaseSphere(7, Vector(0, 0, 2)), other, 0.5, false).flags, 0x10000U);
}

TEST(Sphere_queries, Parameters_of_two_spheres_are_those_of_the_world_point)
{
    TwoPoses poses;
    poses.own.Local().SetTranslation(10, 0, 0);
    poses.own.Local().SetRotation(0.3, 0.4, 0.5);
    poses.other.Local().SetTranslation(10, 10, 0);
    C3DBaseSphere const sphere(1, Vector(10, 2, 3));
    Answer const answer = AskSphere(poses, sphere, C3DBaseSphere(1, Vector(0, 2, 3)), 0);
    Vector const offset = Vector().Sub(answer.info.position, Vector(10, 2, 3));
    Vector const back = Vector().Mul(NormalAt(answer.info.u, answer.info.v), offset.GetLength());
    EXPECT_TRUE(AreAlmostEqual(back, offset, 1e-13));
}

TEST(Sphere_queries, Equal_spheres_coincide)
{
    TwoPoses poses;
    C3DBaseSphere const sphere(2, Vector(1, 2, 3));
    Answer const answer = AskSphere(poses, sphere, sphere, 0.5);
    EXPECT_EQ(answer.flags, 0x100000U);
    EXPECT_TRUE(SameBits(answer.info.position, Vector(1, 2, 3)));
    EXPECT_TRUE(SameBits(answer.info.normal, Vector(0, 0, 0)));
    EXPECT_EQ(answer.info.distance, -4);
    EXPECT_EQ(answer.info.u, 0);
    EXPECT_EQ(answer.info.v, 0);
    EXPECT_EQ(AskSphere(poses, sphere, sphere, 0).flags, 0x10000U);
}

TEST(Sphere_queries, One_pose_may_place_both)
{
    TwoPoses poses;
    C3DBaseSphere const sphere(2);
    Answer answer;
    answer.result = sphere.Intersect_Sphere(&poses.own, sphere, &poses.own, answer.flags, &answer.info, 0.5, 0);
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.flags, 0x100000U);
}

TEST(Sphere_queries, Each_failing_call_ends_a_query_of_two_spheres)
{
    struct Row
    {
        bool ofOther;
        PoseOperation operation;
    };
    constexpr Row rows[] = {{false, GlobalPosition},
                            {false, GlobalScaling},
                            {true, GlobalPosition},
                            {true, GlobalScaling},
                            {false, GlobalTransfo}};
    TwoPoses whole;
    whole.other.Local().SetTranslation(9, 0, 0);
    AskSphere(whole, C3DBaseSphere(2), C3DBaseSphere(3), 0);
    ASSERT_EQ(whole.calls.size(), 5U);
    for (std::size_t i = 0; i < 5; ++i)
    {
        EXPECT_EQ(whole.calls[i], (PoseCall{rows[i].ofOther ? &whole.other : &whole.own, rows[i].operation}));
        TwoPoses poses;
        poses.other.Local().SetTranslation(9, 0, 0);
        long const code = -100 - static_cast<long>(i);
        (rows[i].ofOther ? poses.other : poses.own).Fail(rows[i].operation, 0, code, PoseNode::OnFailure::WriteOutput);
        Answer const answer = AskSphere(poses, C3DBaseSphere(2), C3DBaseSphere(3), 0);
        EXPECT_EQ(answer.result, code);
        EXPECT_EQ(poses.calls.size(), i + 1);
        if (i < 4)
        {
            EXPECT_TRUE(WroteNothing(answer));
        }
        else
        {
            EXPECT_EQ(answer.flags, 4U) << "the pair had answered";
            EXPECT_TRUE(HasOnly(k_Position | k_Normal | k_Distance, answer.info));
        }
    }
    whole.calls.clear();
    AskSphere(whole, C3DBaseSphere(2), C3DBaseSphere(3), 0, false);
    EXPECT_EQ(whole.calls.size(), 4U) << "the last is asked for a record alone";
}

TEST(Sphere_queries, Box_gives_a_contact_in_the_world)
{
    TwoPoses poses;
    poses.own.Local().SetTranslation(10, 0, 4);
    poses.other.Local().SetTranslation(10, 0, 0);
    C3DBaseBox const box(6);
    tagS3DGEOMINFO const cleared;
    Answer const answer = AskBox(poses, C3DBaseSphere(2), box, 0, &cleared);
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.flags, 0x10000U);
    // In the box (0, 0, 2), and so in the sphere (0, 0, -2): a quarter around from +X over -Z, on the equator.
    EXPECT_TRUE(AreAlmostEqual(answer.info.position, Vector(10, 0, 2), 1e-15));
    EXPECT_NEAR(answer.info.u, 0.25, 1e-15);
    EXPECT_NEAR(answer.info.v, 0.5, 1e-15);
    EXPECT_TRUE(AreAlmostEqual(answer.info.normal, Vector(0, 0, -1), 1e-15));
    EXPECT_EQ(answer.info.distance, -1);
    EXPECT_EQ(poses.calls, (PoseCalls{{&poses.own, RelativeTransfo, &poses.other, 0x3F},
                                      {&poses.own, GlobalTransfo},
                                      {&poses.other, GlobalTransfo}}));
}

TEST(Sphere_queries, Box_takes_the_center_along_with_the_pose)
{
    TwoPoses poses;
    poses.own.Local().SetTranslation(0, 0, 1);
    C3DBaseBox const box(6);
    EXPECT_EQ(AskBox(poses, C3DBaseSphere(2, Vector(0, 0, 4)), box, 0, nullptr).flags, 0x10000U);
    EXPECT_EQ(AskBox(poses, C3DBaseSphere(2, Vector(0, 0, 4.125)), box, 0, nullptr).flags, 4U);
    EXPECT_EQ(AskBox(poses, C3DBaseSphere(2, Vector(0, 0, 4)), box, 0.125, nullptr).flags, 4U)
        << "the tolerance takes from the radius";
}

TEST(Sphere_queries, Box_scales_the_radius_by_the_greatest_magnitude)
{
    TwoPoses poses;
    poses.own.Local().SetTranslation(8, 0, 0);
    poses.own.Local().SetScaling(-3, -1, -2);
    EXPECT_EQ(AskBox(poses, C3DBaseSphere(2), C3DBaseBox(4), 0, nullptr).flags, 0x10000U);
    EXPECT_EQ(AskBox(poses, C3DBaseSphere(1.9375), C3DBaseBox(4), 0, nullptr).flags, 4U);
}

TEST(Sphere_queries, Box_apart_or_without_a_record_is_answered_by_the_pair_alone)
{
    TwoPoses poses;
    poses.own.Local().SetTranslation(0, 0, 4);
    tagS3DGEOMINFO const marked = MakeMarkedRecord();
    poses.own.Fail(GlobalTransfo, 0, E_FAIL);
    EXPECT_EQ(AskBox(poses, C3DBaseSphere(2), C3DBaseBox(6), 0, nullptr).result, S_OK);
    poses.own.Local().SetTranslation(0, 0, 6);
    Answer const apart = AskBox(poses, C3DBaseSphere(2), C3DBaseBox(6), 0, &marked);
    EXPECT_EQ(apart.result, S_OK);
    EXPECT_EQ(apart.flags, 4U);
    EXPECT_TRUE(HasOnly(k_NoField, apart.info));
    EXPECT_EQ(poses.calls.size(), 2U);
}

TEST(Sphere_queries, Box_maps_what_the_pair_has_left_in_the_record)
{
    TwoPoses poses;
    poses.own.Local().SetTranslation(0, 0, 4);
    tagS3DGEOMINFO record;
    record.position.Set(7, 8, 9);
    Answer const answer = AskBox(poses, C3DBaseSphere(2), C3DBaseBox(6), 0, &record);
    EXPECT_TRUE(AreAlmostEqual(answer.info.position, Vector(7, 8, 2), 1e-15));
    Vector const offset(7, 8, -2);
    Vector const back = Vector().Mul(NormalAt(answer.info.u, answer.info.v), offset.GetLength());
    EXPECT_TRUE(AreAlmostEqual(back, offset, 1e-14));
}

TEST(Sphere_queries, Failing_transformations_end_a_query_against_a_box_after_the_pair)
{
    for (bool const ofOther : {false, true})
    {
        TwoPoses poses;
        poses.own.Local().SetTranslation(0, 0, 4);
        (ofOther ? poses.other : poses.own).Fail(GlobalTransfo, 0, E_UNEXPECTED, PoseNode::OnFailure::WriteOutput);
        tagS3DGEOMINFO const marked = MakeMarkedRecord();
        Answer const answer = AskBox(poses, C3DBaseSphere(2), C3DBaseBox(6), 0, &marked);
        EXPECT_EQ(answer.result, E_UNEXPECTED);
        EXPECT_EQ(answer.flags, 0x10000U);
        EXPECT_TRUE(HasOnly(k_PositionZ | k_NormalZ | k_Distance, answer.info));
        EXPECT_EQ(answer.info.position.Z, 2) << "still in the space of the box";
        EXPECT_EQ(poses.calls.size(), ofOther ? 3U : 2U);
    }
}

TEST(Sphere_queries, Failing_relative_transformation_is_ignored_against_a_box)
{
    for (auto const onFailure : {PoseNode::OnFailure::WriteOutput, PoseNode::OnFailure::LeaveOutput})
    {
        TwoPoses poses;
        poses.own.Local().SetTranslation(0, 0, 40);
        poses.own.Fail(RelativeTransfo, 0, E_FAIL, onFailure);
        Answer const answer = AskBox(poses, C3DBaseSphere(2), C3DBaseBox(6), 0, nullptr);
        EXPECT_EQ(answer.result, S_OK);
        EXPECT_EQ(answer.flags, onFailure == PoseNode::OnFailure::WriteOutput ? 4U : 0x10000U);
    }
}

TEST(Sphere_queries, Box_maps_through_both_poses_and_turns_the_normal_alone)
{
    Random random(20246);
    int contacts = 0;
    for (int i = 0; i < 400; ++i)
    {
        TwoPoses poses;
        for (PoseNode * node : {&poses.own, &poses.other})
        {
            node->Local().SetQNScalingFlag(i % 2);
            PlaceAnywhere(random, node->Local());
        }
        poses.own.Local().SetScaling(1.5, i % 3 == 0 ? -0.5 : 0.5, 0.75);
        C3DBaseBox const box(Vector(-4, -5, -6), Vector(6, 5, 4));
        Vector const center(0.5, -0.25, 0.75);
        C3DBaseSphere const sphere(2, center);
        tagS3DGEOMINFO const cleared;
        Answer const answer = AskBox(poses, sphere, box, 0, &cleared);
        if (answer.flags != 0x10000U)
        {
            continue;
        }
        ++contacts;
        Eigen::Matrix4d const own = EigenMatrix(poses.own);
        Vector const offset = Vector().Sub(Map(answer.info.position, own.inverse()), center);
        Vector const normal = NormalAt(answer.info.u, answer.info.v);
        EXPECT_TRUE(AreAlmostEqual(Vector().Mul(normal, offset.GetLength()), offset, 1e-12));
        C3DTransfo global;
        poses.own.PlaceGlobal(global);
        C3DRotMatTpl<double> rotation;
        global.GetRotation(rotation);
        EXPECT_TRUE(AreAlmostEqual(answer.info.normal, Vector().Mul(normal, rotation), 1e-14));
        Eigen::Matrix4d const other = EigenMatrix(poses.other);
        Vector const inBox = Map(Vector(0, 0, 0), own * other.inverse()).Add(center);
        Answer pair;
        pair.info = cleared;
        F3DLocalBoxVsSphereIntersection(box.GetMin(), box.GetMax(), inBox, 3, pair.flags, &pair.info, 0);
        EXPECT_TRUE(AreAlmostEqual(answer.info.position, Map(pair.info.position, other), 1e-12));
        EXPECT_NEAR(answer.info.distance, pair.info.distance, 1e-12);
    }
    EXPECT_GT(contacts, 50);
}

} // namespace
