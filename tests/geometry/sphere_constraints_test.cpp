#include "geometry/constraint_checks.h"
#include "support/allocation_faults.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace
{

using namespace geometry_test;
using test_support::AllocationFaults;
using test_support::Random;
using test_support::SameBits;

/// What the three corrections share: their dealings with the pose, with memory, and with their operands.
class Constraints : public testing::TestWithParam<Operation>
{
protected:
    /// Asks while memory is short. Nothing else allocates.
    Correction AskWithout(long refusedNumber, PoseNode & pose, Points & points, long & outstanding)
    {
        Correction correction;
        auto const faults = AllocationFaults::RefuseOne(refusedNumber);
        correction.result = (m_Sphere.*GetParam().correct)(points[0], points.data(), &pose, correction.error, 2);
        outstanding = faults.GetOutstanding();
        return correction;
    }

    C3DBaseSphere m_Sphere{2};
    /// Neither inside, nor outside, nor touching.
    Points m_Points{Vector(1.5, 0, 0), Vector(2.5, 0, 0)};
};

TEST_P(Constraints, Ask_the_pose_for_its_matrix_alone)
{
    PoseCalls calls;
    PoseNode pose;
    pose.NoteIn(calls);
    Correction const correction = GetParam().Ask(m_Sphere, m_Points, m_Points[0], pose);
    EXPECT_EQ(correction.result, S_OK);
    EXPECT_FALSE(SameBits(correction.error, k_MarkedError));
    EXPECT_EQ(calls, (PoseCalls{{&pose, PoseOperation::GlobalMatrix}}));
}

TEST_P(Constraints, Return_the_code_of_a_failing_pose)
{
    for (auto const onFailure : {PoseNode::OnFailure::WriteOutput, PoseNode::OnFailure::LeaveOutput})
    {
        PoseNode pose;
        pose.Fail(PoseOperation::GlobalMatrix, 0, E_UNEXPECTED, onFailure);
        Correction const correction = GetParam().Ask(m_Sphere, m_Points, m_Points[0], pose);
        EXPECT_EQ(correction.result, E_UNEXPECTED);
        EXPECT_TRUE(SameBits(correction.error, k_MarkedError));
    }
}

TEST_P(Constraints, Take_a_positive_code_of_the_pose_for_success)
{
    PoseNode pose;
    pose.Fail(PoseOperation::GlobalMatrix, 0, S_FALSE, PoseNode::OnFailure::WriteOutput);
    Correction const correction = GetParam().Ask(m_Sphere, m_Points, m_Points[0], pose);
    EXPECT_EQ(correction.result, S_OK);
    EXPECT_FALSE(SameBits(correction.error, k_MarkedError));
}

TEST_P(Constraints, Refuse_a_pose_that_succeeds_without_a_matrix)
{
    PoseNode pose;
    pose.Fail(PoseOperation::GlobalMatrix, 0, S_OK);
    Correction const correction = GetParam().Ask(m_Sphere, m_Points, m_Points[0], pose);
    EXPECT_EQ(correction.result, E_POINTER);
    EXPECT_TRUE(SameBits(correction.error, k_MarkedError));
}

TEST_P(Constraints, Return_the_code_of_the_pose_where_memory_is_short)
{
    for (long const code : {S_OK, S_FALSE, 77L})
    {
        PoseNode pose;
        pose.Fail(PoseOperation::GlobalMatrix, 0, code, PoseNode::OnFailure::WriteOutput);
        long outstanding = -1;
        Correction const correction = AskWithout(0, pose, m_Points, outstanding);
        EXPECT_EQ(correction.result, code);
        EXPECT_TRUE(SameBits(correction.error, k_MarkedError));
        EXPECT_EQ(outstanding, 0);
    }
}

TEST_P(Constraints, Free_their_memory)
{
    PoseNode pose;
    long outstanding = -1;
    Correction const correction = AskWithout(-1, pose, m_Points, outstanding);
    EXPECT_EQ(correction.result, S_OK);
    EXPECT_EQ(outstanding, 0);
}

TEST_P(Constraints, Read_no_point_where_there_is_no_memory_for_so_many)
{
    constexpr unsigned long most = std::numeric_limits<unsigned long>::max();
    for (unsigned long const count : {most, most - 1, most / 24, most / 48})
    {
        PoseNode pose;
        Vector error = k_MarkedError;
        long result = -1;
        {
            auto const faults = AllocationFaults::RefuseAbove(1U << 20U);
            result = (m_Sphere.*GetParam().correct)(m_Points[0], m_Points.data(), &pose, error, count);
        }
        EXPECT_EQ(result, S_OK);
        EXPECT_TRUE(SameBits(error, k_MarkedError));
    }
}

TEST_P(Constraints, Refuse_a_null_array_that_should_hold_points)
{
    PoseNode pose;
    Vector error = k_MarkedError;
    EXPECT_EQ((m_Sphere.*GetParam().correct)(m_Points[0], nullptr, &pose, error, 1), E_POINTER);
    EXPECT_TRUE(SameBits(error, k_MarkedError));
    EXPECT_EQ((m_Sphere.*GetParam().correct)(Vector(0, 0, 0), nullptr, &pose, error, 0), S_OK);
    EXPECT_EQ(error.GetLength(), 0);
}

TEST_P(Constraints, Write_an_error_that_is_the_reference_or_a_point)
{
    PoseNode pose;
    pose.Local().SetTranslation(0.25, 0.5, 0);
    Vector const expected = GetParam().Ask(m_Sphere, m_Points, m_Points[0], pose).error;
    Vector both = m_Points[0];
    EXPECT_EQ((m_Sphere.*GetParam().correct)(both, m_Points.data(), &pose, both, 2), S_OK);
    EXPECT_TRUE(SameBits(both, expected));
    Points points = m_Points;
    EXPECT_EQ((m_Sphere.*GetParam().correct)(m_Points[0], points.data(), &pose, points[1], 2), S_OK);
    EXPECT_TRUE(SameBits(points[1], expected));
    EXPECT_TRUE(SameBits(points[0], m_Points[0]));
}

TEST_P(Constraints, Give_a_way_of_the_world_that_no_place_enters)
{
    // A quarter turn, twice the size and far away: the local way along X becomes one of twice the length along Y.
    PoseNode pose;
    pose.Local().SetTranslation(100, 200, 300);
    pose.Local().SetRotation(0, 0, 1.5707963267948966);
    pose.Local().SetScaling(2, 2, 2);
    Vector const local = GetParam().AskLocal(m_Sphere, m_Points, m_Points[0]);
    ASSERT_GT(local.GetLength(), 0.1);
    ASSERT_NEAR(local.Y, 0, 1e-12);
    Vector const world = GetParam().Ask(m_Sphere, InWorld(m_Points, pose), InWorld(m_Points, pose).front(), pose).error;
    EXPECT_TRUE(AreAlmostEqual(world, Vector(0, 2 * local.X, 0), 1e-9));
}

TEST_P(Constraints, Mirror_the_way_with_the_pose)
{
    PoseNode pose;
    pose.Local().SetScaling(-1, 1, 1);
    Vector const local = GetParam().AskLocal(m_Sphere, m_Points, m_Points[0]);
    Vector const world = GetParam().Ask(m_Sphere, InWorld(m_Points, pose), InWorld(m_Points, pose).front(), pose).error;
    EXPECT_TRUE(AreAlmostEqual(world, Vector(-local.X, local.Y, local.Z), 1e-12));
}

TEST_P(Constraints, Take_the_points_of_a_singular_pose_as_in_the_world)
{
    PoseNode pose;
    pose.Local().SetTranslation(100, 200, 300);
    pose.Local().SetScaling(3, 3, 3);
    pose.Flatten();
    Points const points{Vector(1.5, 0.5, 0), Vector(2.5, 0.5, 0)};
    Vector const local = GetParam().AskLocal(m_Sphere, points, points[0]);
    ASSERT_NE(local.Y, 0);
    // The way goes out through the matrix all the same, which has lost its second axis.
    Vector const world = GetParam().Ask(m_Sphere, points, points[0], pose).error;
    EXPECT_TRUE(AreAlmostEqual(world, Vector(3 * local.X, 0, 3 * local.Z), 1e-12));
}

TEST_P(Constraints, End_for_many_points)
{
    Random random(20256);
    Points points;
    for (int i = 0; i < 1000; ++i)
    {
        points.push_back(RandomVector(random, 1.1).Add(Vector(1.5, 0, 0)));
    }
    C3DBaseSphere const sphere(2);
    ConstraintBySteps steps(sphere, points, {1.5, 0, 0}, C3DXfoMatTpl<double>());
    Vector const expected = (steps.*GetParam().bySteps)();
    EXPECT_TRUE(SameBits(GetParam().AskLocal(sphere, points, {1.5, 0, 0}), expected));
    EXPECT_LT(steps.Steps(), 1000);
}

TEST_P(Constraints, End_for_huge_coordinates)
{
    for (double const size : {1e15, 1e100, 1e200, 1e308, 1.79e308})
    {
        Points const points{Vector(size, 0, 0), Vector(0, -size, 0), Vector(-size, size, size)};
        for (Vector const & center : {Vector(0, 0, 0), Vector(1, 0, 0), Vector(size, size, 0)})
        {
            C3DBaseSphere const sphere(2, center);
            ConstraintBySteps steps(sphere, points, points[0], C3DXfoMatTpl<double>());
            Vector const expected = (steps.*GetParam().bySteps)();
            EXPECT_TRUE(SameBits(GetParam().AskLocal(sphere, points, points[0]), expected)) << size;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Sphere, Constraints, testing::Values(k_Include, k_Exclude, k_PutOnSurface),
                         [](auto const & instance) { return std::string(instance.param.name); });

TEST(Constraint_memory, Of_the_test_of_size_is_reported)
{
    // The second array is that of IsPrimitiveLarger, whose code comes through.
    Points points{Vector(1.5, 0, 0), Vector(2.5, 0, 0)};
    PoseNode pose;
    Vector error = k_MarkedError;
    long result = 0;
    long outstanding = -1;
    {
        auto const faults = AllocationFaults::RefuseOne(1);
        result = C3DBaseSphere(2).GetInclusionError(points[0], points.data(), &pose, error, 2);
        outstanding = faults.GetOutstanding();
    }
    EXPECT_EQ(result, E_OUTOFMEMORY);
    EXPECT_TRUE(SameBits(error, k_MarkedError));
    EXPECT_EQ(outstanding, 0);
}

TEST(Constraint_reference, Is_read_for_the_inclusion_alone)
{
    // The reference lies behind the end of an array, where memory checkers see it read.
    Points points{Vector(1.5, 0, 0), Vector(2.5, 0, 0)};
    points.shrink_to_fit();
    Vector const & outOfBounds = *(points.data() + 2);
    PoseNode pose;
    Vector error = k_MarkedError;
    EXPECT_EQ(C3DBaseSphere(2).GetExclusionError(outOfBounds, points.data(), &pose, error, 2), S_OK);
    EXPECT_TRUE(AreAlmostEqual(error, Vector(0.5, 0, 0), 1e-14));
    EXPECT_EQ(C3DBaseSphere(2).GetOnSurfaceError(outOfBounds, points.data(), &pose, error, 2), S_OK);
    EXPECT_TRUE(AreAlmostEqual(error, Vector(0.5, 0, 0), 1e-14));
}

} // namespace
