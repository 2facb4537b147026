#include "math/closest_position.h"
#include "math/platform/result.h"

#include "vector_checks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using namespace geometry_test;

struct Answer
{
    long result = k_InvalidResult;
    double weightA = k_Mark;
    double weightB = k_Mark;
    double squaredDistance = k_Mark;
    Vector closest{k_Mark, k_Mark, k_Mark};

    static constexpr long k_InvalidResult = -77;
};

Answer Ask(Vector const & point, Vector const & a, Vector const & b)
{
    Answer answer;
    answer.result = F3DClosestPositionOnSegment(point, a, b, answer.weightA, answer.weightB, &answer.squaredDistance,
                                                &answer.closest);
    return answer;
}

void ExpectAnswer(Answer const & answer, double weightA, double weightB, Vector const & closest)
{
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.weightA, weightA);
    EXPECT_EQ(answer.weightB, weightB);
    EXPECT_TRUE(SameBits(answer.closest, closest))
        << answer.closest.X << ' ' << answer.closest.Y << ' ' << answer.closest.Z;
}

} // namespace

TEST(ClosestPositionOnSegment, A_point_beside_the_segment_projects_on_it)
{
    Answer const answer = Ask({1, 3, 0}, {0, 0, 0}, {4, 0, 0});
    ExpectAnswer(answer, 0.75, 0.25, {1, 0, 0});
    EXPECT_EQ(answer.squaredDistance, 9);
}

TEST(ClosestPositionOnSegment, A_point_past_an_end_gets_the_end)
{
    Vector const a(1, 2, 3);
    Vector const b(5, 2, 3);
    Answer const pastB = Ask({8, 6, 3}, a, b);
    ExpectAnswer(pastB, 0, 1, b);
    EXPECT_EQ(pastB.squaredDistance, 25);
    Answer const beforeA = Ask({-2, 6, 3}, a, b);
    ExpectAnswer(beforeA, 1, 0, a);
    EXPECT_EQ(beforeA.squaredDistance, 25);
}

// With a direction of (1, 0, 0) the distance along the segment is the point's X exactly.
TEST(ClosestPositionOnSegment, Both_ends_belong_to_the_ends)
{
    Vector const a(0, 0, 0);
    Vector const b(4, 0, 0);
    ExpectAnswer(Ask({0, 1, 0}, a, b), 1, 0, a);
    ExpectAnswer(Ask({-0.0, 1, 0}, a, b), 1, 0, a);
    ExpectAnswer(Ask({4, 1, 0}, a, b), 0, 1, b);
    ExpectAnswer(Ask({std::nextafter(4.0, 5.0), 1, 0}, a, b), 0, 1, b);
    ExpectAnswer(Ask({-std::numeric_limits<double>::denorm_min(), 1, 0}, a, b), 1, 0, a);
}

TEST(ClosestPositionOnSegment, One_step_inside_the_ends_is_the_interior)
{
    Vector const a(0, 0, 0);
    Vector const b(4, 0, 0);
    double const little = std::numeric_limits<double>::min();
    ExpectAnswer(Ask({little, 1, 0}, a, b), 1, little / 4, {little, 0, 0});
    double const almost = std::nextafter(4.0, 0.0);
    ExpectAnswer(Ask({almost, 1, 0}, a, b), 1 - almost / 4, almost / 4, {almost, 0, 0});
}

TEST(ClosestPositionOnSegment, A_segment_without_length_is_its_start)
{
    Vector const a(1, 2, 3);
    Answer const answer = Ask({4, 6, 3}, a, a);
    ExpectAnswer(answer, 1, 0, a);
    EXPECT_EQ(answer.squaredDistance, 25);
}

TEST(ClosestPositionOnSegment, A_length_of_1e_49_is_the_least_that_counts)
{
    double const least = 1e-49;
    Vector const a(0, 0, 0);
    ExpectAnswer(Ask({1, 0, 0}, a, {least, 0, 0}), 0, 1, {least, 0, 0});
    ExpectAnswer(Ask({1, 0, 0}, a, {std::nextafter(least, 0.0), 0, 0}), 1, 0, a);
    ExpectAnswer(Ask({0, -1, 0}, a, {0, -least, 0}), 0, 1, {0, -least, 0});
    // In between the weights are as good as on any segment.
    Answer const middle = Ask({1e-48, 0, 0}, a, {4e-48, 0, 0});
    EXPECT_DOUBLE_EQ(middle.weightA, 0.75);
    EXPECT_DOUBLE_EQ(middle.weightB, 0.25);
    EXPECT_DOUBLE_EQ(middle.closest.X, 1e-48);
}

TEST(ClosestPositionOnSegment, What_has_no_number_for_its_foot_gets_the_start)
{
    Vector const a(1, 2, 3);
    Vector const b(5, 2, 3);
    for (Vector const & point : {Vector(k_Nan, 0, 0), Vector(0, k_Nan, 0), Vector(0, k_Infinity, 0)})
    {
        Answer const answer = Ask(point, a, b);
        ExpectAnswer(answer, 1, 0, a);
        EXPECT_FALSE(std::isfinite(answer.squaredDistance));
    }
    // Infinitely far along the segment is past its end.
    ExpectAnswer(Ask({k_Infinity, 2, 3}, a, {5, 3, 4}), 0, 1, {5, 3, 4});
    ExpectAnswer(Ask({-k_Infinity, 2, 3}, a, {5, 3, 4}), 1, 0, a);
    // No direction comes of an infinite length, nor of a NaN.
    ExpectAnswer(Ask({2, 2, 3}, a, {k_Infinity, 2, 3}), 1, 0, a);
    ExpectAnswer(Ask({2, 2, 3}, a, {k_Nan, 2, 3}), 1, 0, a);
    ExpectAnswer(Ask({2, 2, 3}, a, {1e200, 2, 3}), 1, 0, a);
    EXPECT_TRUE(std::isnan(Ask({2, 2, 3}, {k_Nan, 2, 3}, b).closest.X));
}

TEST(ClosestPositionOnSegment, Outputs_may_be_null)
{
    Vector const a(0, 0, 0);
    Vector const b(4, 0, 0);
    for (double const x : {-1.0, 1.0, 5.0})
    {
        Vector const point(x, 3, 0);
        Answer const whole = Ask(point, a, b);
        Answer part;
        EXPECT_EQ(F3DClosestPositionOnSegment(point, a, b, part.weightA, part.weightB, nullptr, nullptr), S_OK);
        EXPECT_EQ(part.weightA, whole.weightA);
        EXPECT_EQ(part.weightB, whole.weightB);
        EXPECT_EQ(F3DClosestPositionOnSegment(point, a, b, part.weightA, part.weightB, &part.squaredDistance, nullptr),
                  S_OK);
        EXPECT_EQ(part.squaredDistance, whole.squaredDistance);
        EXPECT_EQ(F3DClosestPositionOnSegment(point, a, b, part.weightA, part.weightB, nullptr, &part.closest), S_OK);
        EXPECT_TRUE(SameBits(part.closest, whole.closest));
    }
}

TEST(ClosestPositionOnSegment, The_position_may_replace_an_input)
{
    for (double const x : {-1.0, 1.0, 5.0})
    {
        Vector const inputs[3] = {{x, 3, 1}, {0, 1, 0}, {4, 0, 2}};
        Answer const apart = Ask(inputs[0], inputs[1], inputs[2]);
        for (int replaced = 0; replaced < 3; ++replaced)
        {
            Vector in[3] = {inputs[0], inputs[1], inputs[2]};
            Answer answer;
            F3DClosestPositionOnSegment(in[0], in[1], in[2], answer.weightA, answer.weightB, &answer.squaredDistance,
                                        &in[replaced]);
            EXPECT_TRUE(SameBits(in[replaced], apart.closest));
            EXPECT_EQ(answer.squaredDistance, apart.squaredDistance);
            EXPECT_EQ(answer.weightB, apart.weightB);
        }
    }
}

// The direction is made unit first: the bits of a quotient by the squared length are others.
TEST(ClosestPositionOnSegment, The_foot_is_measured_along_the_unit_direction)
{
    Random random(561);
    int interior = 0;
    for (int i = 0; i < 2000; ++i)
    {
        Vector const point = RandomVector(random, 1);
        Vector const a = RandomVector(random, 1);
        Vector const b = RandomVector(random, 1);
        Vector const edge = Vector().Sub(b, a);
        double const length = edge.GetLength();
        Vector const unit = Vector().Mul(edge, 1 / length);
        Vector const offset = Vector().Sub(point, a);
        double const s = offset.X * unit.X + offset.Y * unit.Y + offset.Z * unit.Z;
        if (s > 0 && s < length)
        {
            ++interior;
            double const weightB = s * (1 / length);
            Answer const answer = Ask(point, a, b);
            ExpectAnswer(answer, 1 - weightB, weightB, Vector().Mul(unit, s).Add(a));
            EXPECT_EQ(answer.squaredDistance, GetSquaredDistance(point, answer.closest));
        }
    }
    EXPECT_GT(interior, 400);
}

TEST(ClosestPositionOnSegment, No_sample_of_the_segment_is_closer)
{
    Random random(562);
    for (int i = 0; i < 500; ++i)
    {
        double const size = std::abs(random.OverDecades(-3, 3));
        Vector const point = RandomVector(random, 2 * size);
        Vector const a = RandomVector(random, size);
        Vector const b = RandomVector(random, size);
        Answer const answer = Ask(point, a, b);
        double const rounding = 1e-14 * size;
        double best = k_Infinity;
        for (int k = 0; k <= 200; ++k)
        {
            double const t = k / 200.0;
            Vector const sample = Vector().LinearPositionInterpolate(a, b, t);
            best = std::fmin(best, GetDistance(point, sample));
        }
        EXPECT_LE(std::sqrt(answer.squaredDistance), best + rounding);
        // Samples lie no farther apart than 1/200 of the length.
        EXPECT_GE(std::sqrt(answer.squaredDistance), best - GetDistance(a, b) / 400 - rounding);
        Vector const weighted = Vector().Mul(a, answer.weightA).Add(Vector().Mul(b, answer.weightB));
        EXPECT_LE(GetDistance(weighted, answer.closest), rounding);
        EXPECT_EQ(answer.squaredDistance, GetSquaredDistance(point, answer.closest));
        EXPECT_GE(answer.weightA, 0);
        EXPECT_GE(answer.weightB, 0);
    }
}
