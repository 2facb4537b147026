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
    long result = -77;
    double weights[3] = {k_Mark, k_Mark, k_Mark};
    double squaredDistance = k_Mark;
    Vector closest{k_Mark, k_Mark, k_Mark};
};

Answer Ask(Vector const & point, Vector const & a, Vector const & b, Vector const & c)
{
    Answer answer;
    answer.result = F3DClosestPositionOnTriangle(point, a, b, c, answer.weights[0], answer.weights[1],
                                                 answer.weights[2], &answer.squaredDistance, &answer.closest);
    return answer;
}

/// The answer for the triangle p q r, passed with p as the vertex of this index and the others after it, with the
/// weights in the order p, q, r.
Answer AskTurned(Vector const & point, Vector const & p, Vector const & q, Vector const & r, int index)
{
    Vector const * const turned[3][3] = {{&p, &q, &r}, {&r, &p, &q}, {&q, &r, &p}};
    Answer const given = Ask(point, *turned[index][0], *turned[index][1], *turned[index][2]);
    Answer answer = given;
    for (int i = 0; i < 3; ++i)
    {
        answer.weights[i] = given.weights[(index + i) % 3];
    }
    return answer;
}

void ExpectWeights(Answer const & answer, double a, double b, double c)
{
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_DOUBLE_EQ(answer.weights[0], a);
    EXPECT_DOUBLE_EQ(answer.weights[1], b);
    EXPECT_DOUBLE_EQ(answer.weights[2], c);
}

void ExpectClosest(Answer const & answer, Vector const & closest, double squaredDistance)
{
    EXPECT_DOUBLE_EQ(answer.closest.X, closest.X);
    EXPECT_DOUBLE_EQ(answer.closest.Y, closest.Y);
    EXPECT_DOUBLE_EQ(answer.closest.Z, closest.Z);
    EXPECT_DOUBLE_EQ(answer.squaredDistance, squaredDistance);
}

/// All three places that the vertex p can have, above and below the plane z = 0 and in it.
template <typename Check>
void ForEachPlaceAndHeight(Check check)
{
    for (int index = 0; index < 3; ++index)
    {
        for (double const height : {0.0, 2.0, -3.0})
        {
            SCOPED_TRACE(testing::Message() << "vertex " << index << ", height " << height);
            check(index, height);
        }
    }
}

/// Acute at q and r; the edge from q to r lies on the X axis, so that distances along it are exact.
Vector const k_AcuteP(1, 2, 0);
Vector const k_AcuteQ(0, 0, 0);
Vector const k_AcuteR(4, 0, 0);

/// Obtuse at p, with the edge from p to q on the X axis.
Vector const k_ObtuseP(0, 0, 0);
Vector const k_ObtuseQ(4, 0, 0);
Vector const k_ObtuseR(-4, 1, 0);

/// The weights (0.5, 0.25, 0.25) stand at (0.25, 0.25) times the size.
Answer AskAboveRightTriangle(Vector const & point, double size)
{
    return Ask(point, {0, 0, 0}, {size, 0, 0}, {0, 1, 0});
}

} // namespace

TEST(ClosestPositionOnTriangle, A_point_above_the_inside_projects_on_the_plane)
{
    Answer const answer = Ask({0.5, 1, 3}, {0, 0, 0}, {2, 0, 0}, {0, 4, 0});
    ExpectWeights(answer, 0.5, 0.25, 0.25);
    ExpectClosest(answer, {0.5, 1, 0}, 9);
    Answer const below = Ask({0.5, 1, -3}, {0, 0, 0}, {2, 0, 0}, {0, 4, 0});
    ExpectWeights(below, 0.5, 0.25, 0.25);
    ExpectClosest(below, {0.5, 1, 0}, 9);
}

TEST(ClosestPositionOnTriangle, The_sense_of_the_vertices_does_not_matter)
{
    Answer const answer = Ask({0.5, 1, 3}, {0, 0, 0}, {0, 4, 0}, {2, 0, 0});
    ExpectWeights(answer, 0.5, 0.25, 0.25);
    ExpectClosest(answer, {0.5, 1, 0}, 9);
}

TEST(ClosestPositionOnTriangle, A_point_of_the_triangle_is_its_own_closest)
{
    Answer const answer = Ask({0.5, 1, 7}, {0, 0, 7}, {2, 0, 7}, {0, 4, 7});
    ExpectWeights(answer, 0.5, 0.25, 0.25);
    ExpectClosest(answer, {0.5, 1, 7}, 0);
}

TEST(ClosestPositionOnTriangle, A_point_beyond_an_edge_projects_on_the_edge)
{
    ForEachPlaceAndHeight(
        [](int index, double h)
        {
            Answer const answer = AskTurned({1, -1, h}, k_AcuteP, k_AcuteQ, k_AcuteR, index);
            ExpectWeights(answer, 0, 0.75, 0.25);
            ExpectClosest(answer, {1, 0, 0}, 1 + h * h);
        });
}

TEST(ClosestPositionOnTriangle, A_point_above_an_edge_projects_on_the_edge)
{
    ForEachPlaceAndHeight(
        [](int index, double h)
        {
            Answer const answer = AskTurned({3, 0, h}, k_AcuteP, k_AcuteQ, k_AcuteR, index);
            ExpectWeights(answer, 0, 0.25, 0.75);
            ExpectClosest(answer, {3, 0, 0}, h * h);
        });
}

TEST(ClosestPositionOnTriangle, A_point_beyond_an_edge_and_past_its_end_gets_the_end)
{
    ForEachPlaceAndHeight(
        [](int index, double h)
        {
            Answer const atQ = AskTurned({-0.5, -2, h}, k_AcuteP, k_AcuteQ, k_AcuteR, index);
            ExpectWeights(atQ, 0, 1, 0);
            ExpectClosest(atQ, k_AcuteQ, 4.25 + h * h);
            Answer const atR = AskTurned({4.5, -2, h}, k_AcuteP, k_AcuteQ, k_AcuteR, index);
            ExpectWeights(atR, 0, 0, 1);
            ExpectClosest(atR, k_AcuteR, 4.25 + h * h);
        });
}

TEST(ClosestPositionOnTriangle, Both_ends_of_an_edge_are_vertices_and_one_step_inside_them_is_the_edge)
{
    ForEachPlaceAndHeight(
        [](int index, double h)
        {
            auto const closestX = [index, h](double x)
            {
                Answer const answer = AskTurned({x, -1, h}, k_AcuteP, k_AcuteQ, k_AcuteR, index);
                EXPECT_EQ(answer.weights[0], 0);
                EXPECT_EQ(answer.weights[2], answer.closest.X / 4);
                return answer.closest.X;
            };
            double const little = std::numeric_limits<double>::min();
            double const almost = std::nextafter(4.0, 0.0);
            EXPECT_EQ(closestX(0), 0);
            EXPECT_EQ(closestX(-little), 0);
            EXPECT_EQ(closestX(little), little);
            EXPECT_EQ(closestX(almost), almost);
            EXPECT_EQ(closestX(4), 4);
            EXPECT_EQ(closestX(std::nextafter(4.0, 5.0)), 4);
        });
}

TEST(ClosestPositionOnTriangle, A_point_above_a_vertex_gets_the_vertex)
{
    ForEachPlaceAndHeight(
        [](int index, double h)
        {
            Answer const answer = AskTurned({1, 2, h}, k_AcuteP, k_AcuteQ, k_AcuteR, index);
            ExpectWeights(answer, 1, 0, 0);
            ExpectClosest(answer, k_AcuteP, h * h);
        });
}

TEST(ClosestPositionOnTriangle, A_point_beyond_an_acute_corner_gets_the_vertex)
{
    ForEachPlaceAndHeight(
        [](int index, double h)
        {
            Answer const answer = AskTurned({1, 5, h}, k_AcuteP, k_AcuteQ, k_AcuteR, index);
            ExpectWeights(answer, 1, 0, 0);
            ExpectClosest(answer, k_AcuteP, 9 + h * h);
        });
}

TEST(ClosestPositionOnTriangle, A_point_beyond_an_obtuse_corner_gets_the_edge_beside_which_it_is)
{
    ForEachPlaceAndHeight(
        [](int index, double h)
        {
            Answer const onPq = AskTurned({1, -0.5, h}, k_ObtuseP, k_ObtuseQ, k_ObtuseR, index);
            ExpectWeights(onPq, 0.75, 0.25, 0);
            ExpectClosest(onPq, {1, 0, 0}, 0.25 + h * h);
            // Along (-4, 1) the point is at 6.3 / 17, across it at 2 / 17 times (-1, -4).
            Answer const onPr = AskTurned({-1.6, -0.1, h}, k_ObtuseP, k_ObtuseQ, k_ObtuseR, index);
            EXPECT_NEAR(onPr.weights[0], 10.7 / 17, 1e-15);
            EXPECT_EQ(onPr.weights[1], 0);
            EXPECT_NEAR(onPr.weights[2], 6.3 / 17, 1e-15);
            EXPECT_NEAR(onPr.closest.X, -4 * 6.3 / 17, 1e-15);
            EXPECT_NEAR(onPr.closest.Y, 6.3 / 17, 1e-15);
            EXPECT_NEAR(onPr.squaredDistance, 4.0 / 17 + h * h, 1e-14);
        });
}

TEST(ClosestPositionOnTriangle, A_point_between_the_normals_of_an_obtuse_corner_gets_the_vertex)
{
    ForEachPlaceAndHeight(
        [](int index, double h)
        {
            Answer const answer = AskTurned({0, -1, h}, k_ObtuseP, k_ObtuseQ, k_ObtuseR, index);
            ExpectWeights(answer, 1, 0, 0);
            ExpectClosest(answer, k_ObtuseP, 1 + h * h);
        });
}

// The foot on either edge is past its far end. The true answers are q and r, but the search comes back to p.
TEST(ClosestPositionOnTriangle, Far_beyond_an_obtuse_corner_the_vertex_is_taken_for_the_closest)
{
    ForEachPlaceAndHeight(
        [](int index, double h)
        {
            Answer const pastQ = AskTurned({10, -3, h}, k_ObtuseP, k_ObtuseQ, k_ObtuseR, index);
            ExpectWeights(pastQ, 1, 0, 0);
            ExpectClosest(pastQ, k_ObtuseP, 109 + h * h);
            Answer const pastR = AskTurned({-11, -0.5, h}, k_ObtuseP, k_ObtuseQ, k_ObtuseR, index);
            ExpectWeights(pastR, 1, 0, 0);
            ExpectClosest(pastR, k_ObtuseP, 121.25 + h * h);
        });
}

TEST(ClosestPositionOnTriangle, The_step_back_to_an_obtuse_corner_is_at_the_far_end_of_the_edge)
{
    ForEachPlaceAndHeight(
        [](int index, double h)
        {
            auto const closestX = [index, h](double x) {
                return AskTurned({x, -2, h}, k_ObtuseP, k_ObtuseQ, k_ObtuseR, index).closest.X;
            };
            double const almost = std::nextafter(4.0, 0.0);
            EXPECT_EQ(closestX(almost), almost);
            EXPECT_EQ(closestX(4), 0);
        });
}

// On the line of the edge from p to q, past p: the weight of r is exactly 0, which is not positive. Counted as positive
// it would lead to one edge alone: that opposite q, and to r, or that opposite r, and to p.
TEST(ClosestPositionOnTriangle, A_weight_of_0_does_not_count_as_positive)
{
    ForEachPlaceAndHeight(
        [](int index, double h)
        {
            Answer const answer = AskTurned({-20, 0, h}, k_ObtuseP, k_ObtuseQ, k_ObtuseR, index);
            ExpectWeights(answer, 1, 0, 0);
            ExpectClosest(answer, k_ObtuseP, 400 + h * h);
            Answer const near = AskTurned({-1, 0, h}, k_ObtuseP, k_ObtuseQ, k_ObtuseR, index);
            EXPECT_NEAR(near.weights[0], 13.0 / 17, 1e-15);
            EXPECT_EQ(near.weights[1], 0);
            EXPECT_NEAR(near.weights[2], 4.0 / 17, 1e-15);
        });
}

TEST(ClosestPositionOnTriangle, Vertices_that_coincide_are_the_first)
{
    Vector const a(1, 2, 3);
    Answer const answer = Ask({4, 6, 3}, a, a, a);
    ExpectWeights(answer, 1, 0, 0);
    ExpectClosest(answer, a, 25);
}

TEST(ClosestPositionOnTriangle, A_collapsed_triangle_is_the_longer_of_its_edges_from_the_first_vertex)
{
    Answer const alongB = Ask({1, 3, 0}, {0, 0, 0}, {4, 0, 0}, {-3, 0, 0});
    ExpectWeights(alongB, 0.75, 0.25, 0);
    ExpectClosest(alongB, {1, 0, 0}, 9);
    Answer const alongC = Ask({1, 3, 0}, {0, 0, 0}, {-3, 0, 0}, {4, 0, 0});
    ExpectWeights(alongC, 0.75, 0, 0.25);
    ExpectClosest(alongC, {1, 0, 0}, 9);
}

// Between the other two vertices the collapsed triangle is not looked at.
TEST(ClosestPositionOnTriangle, A_collapsed_triangle_does_not_reach_beyond_that_edge)
{
    Answer const answer = Ask({-2, 0, 0}, {0, 0, 0}, {4, 0, 0}, {-3, 0, 0});
    ExpectWeights(answer, 1, 0, 0);
    ExpectClosest(answer, {0, 0, 0}, 4);
}

TEST(ClosestPositionOnTriangle, Of_collapsed_edges_of_one_length_the_one_to_the_last_vertex_counts)
{
    Answer const same = Ask({1, 3, 0}, {0, 0, 0}, {4, 0, 0}, {4, 0, 0});
    ExpectWeights(same, 0.75, 0, 0.25);
    Answer const opposite = Ask({1, 3, 0}, {0, 0, 0}, {-4, 0, 0}, {4, 0, 0});
    ExpectWeights(opposite, 0.75, 0, 0.25);
    // One step longer is longer.
    Answer const longer = Ask({1, 3, 0}, {0, 0, 0}, {std::nextafter(4.0, 5.0), 0, 0}, {4, 0, 0});
    ExpectWeights(longer, 0.75, 0.25, 0);
}

TEST(ClosestPositionOnTriangle, A_squared_area_of_1e_50_is_the_least_that_counts)
{
    // The least width whose square is not below the limit.
    double width = 1e-25;
    while (width * width >= 1e-50)
    {
        width = std::nextafter(width, 0.0);
    }
    width = std::nextafter(width, 1.0);
    while (width * width < 1e-50)
    {
        width = std::nextafter(width, 1.0);
    }
    ExpectWeights(AskAboveRightTriangle({width / 4, 0.25, 0}, width), 0.5, 0.25, 0.25);
    double const less = std::nextafter(width, 0.0);
    ASSERT_LT(less * less, 1e-50);
    ExpectWeights(AskAboveRightTriangle({less / 4, 0.25, 0}, less), 0.75, 0, 0.25);
}

TEST(ClosestPositionOnTriangle, A_squared_area_of_exactly_1e_50_counts)
{
    // The normal is (0, -less slope, less); the slope makes up for what the square of the width is short of the limit.
    double less = 1e-25;
    while (less * less >= 1e-50)
    {
        less = std::nextafter(less, 0.0);
    }
    auto const squareFor = [less](double slope) { return less * slope * (less * slope) + less * less; };
    double low = 0;
    double high = 1e-7;
    for (int i = 0; i < 100 && squareFor(high) != 1e-50; ++i)
    {
        double const middle = (low + high) / 2;
        (squareFor(middle) < 1e-50 ? low : high) = middle;
    }
    ASSERT_EQ(squareFor(high), 1e-50);
    Answer const answer = Ask({less / 4, 0.25, high / 4}, {0, 0, 0}, {less, 0, 0}, {0, 1, high});
    EXPECT_NEAR(answer.weights[0], 0.5, 1e-12);
    EXPECT_NEAR(answer.weights[1], 0.25, 1e-12);
    EXPECT_NEAR(answer.weights[2], 0.25, 1e-12);
}

TEST(ClosestPositionOnTriangle, Outputs_may_be_null)
{
    // Inside, an edge, a vertex, and a collapsed triangle.
    Vector const points[] = {{1, 1, 2}, {1, -1, 2}, {-0.5, -2, 2}, {1, 5, 2}};
    for (Vector const & p : {k_AcuteP, Vector(2, 0, 0)})
    {
        for (Vector const & point : points)
        {
            Answer const whole = Ask(point, p, k_AcuteQ, k_AcuteR);
            Answer part;
            auto const askPart = [&](double * squaredDistance, Vector * closest)
            {
                EXPECT_EQ(F3DClosestPositionOnTriangle(point, p, k_AcuteQ, k_AcuteR, part.weights[0], part.weights[1],
                                                       part.weights[2], squaredDistance, closest),
                          S_OK);
                for (int i = 0; i < 3; ++i)
                {
                    EXPECT_EQ(part.weights[i], whole.weights[i]);
                    part.weights[i] = k_Mark;
                }
            };
            askPart(nullptr, nullptr);
            askPart(&part.squaredDistance, nullptr);
            EXPECT_EQ(part.squaredDistance, whole.squaredDistance);
            askPart(nullptr, &part.closest);
            EXPECT_TRUE(SameBits(part.closest, whole.closest));
        }
    }
}

TEST(ClosestPositionOnTriangle, The_position_may_replace_an_input)
{
    for (Vector const & point : {Vector(1, 1, 2), Vector(1, -1, 2), Vector(-0.5, -2, 2), Vector(1, 5, 2)})
    {
        Answer const apart = Ask(point, k_AcuteP, k_AcuteQ, k_AcuteR);
        for (int replaced = 0; replaced < 4; ++replaced)
        {
            Vector in[4] = {point, k_AcuteP, k_AcuteQ, k_AcuteR};
            Answer answer;
            F3DClosestPositionOnTriangle(in[0], in[1], in[2], in[3], answer.weights[0], answer.weights[1],
                                         answer.weights[2], &answer.squaredDistance, &in[replaced]);
            EXPECT_TRUE(SameBits(in[replaced], apart.closest));
            EXPECT_EQ(answer.squaredDistance, apart.squaredDistance);
            EXPECT_EQ(answer.weights[1], apart.weights[1]);
        }
    }
}

// --- Where the determinant is too small beside the numbers that it divides -------------------------------------------

// With |N| = 2 the determinant is 4 and the numerator of the height 2 h: the division is refused from about 2e12 on.
TEST(ClosestPositionOnTriangle, High_above_a_triangle_the_weights_come_from_areas)
{
    for (double const h : {1e12, 3e12, -3e12})
    {
        Answer const answer = Ask({0.5, 0.25, h}, {0, 0, 0}, {2, 0, 0}, {0, 1, 0});
        ExpectWeights(answer, 0.5, 0.25, 0.25);
    }
    ExpectClosest(Ask({0.5, 0.25, 1e12}, {0, 0, 0}, {2, 0, 0}, {0, 1, 0}), {0.5, 0.25, 0}, 1e24);
}

// There the step along N is the first vertex's way to the second in X, whatever the height.
TEST(ClosestPositionOnTriangle, High_above_a_triangle_position_and_distance_are_not_those_of_the_foot)
{
    ExpectClosest(Ask({0.5, 0.25, 3e12}, {0, 0, 0}, {2, 0, 0}, {0, 1, 0}), {0.5, 0.25, 3e12 + 4}, 16);
    // The same triangle from another corner, and with an edge across X.
    ExpectClosest(Ask({0.5, 0.25, 3e12}, {2, 0, 0}, {0, 1, 0}, {0, 0, 0}), {0.5, 0.25, 3e12 - 4}, 16);
    ExpectClosest(Ask({0.5, 0.25, 3e12}, {0, 1, 0}, {0, 0, 0}, {2, 0, 0}), {0.5, 0.25, 3e12}, 0);
}

TEST(ClosestPositionOnTriangle, High_above_and_beyond_an_edge_the_edge_is_found)
{
    ForEachPlaceAndHeight(
        [](int index, double h)
        {
            double const height = h * 1e13 + 1e14;
            Answer const onEdge = AskTurned({1, -1, height}, k_AcuteP, k_AcuteQ, k_AcuteR, index);
            ExpectWeights(onEdge, 0, 0.75, 0.25);
            ExpectClosest(onEdge, {1, 0, 0}, 1 + height * height);
            Answer const atVertex = AskTurned({1, 5, height}, k_AcuteP, k_AcuteQ, k_AcuteR, index);
            ExpectWeights(atVertex, 1, 0, 0);
            ExpectClosest(atVertex, k_AcuteP, 9 + height * height);
        });
}

// A normal of a length at or below 1e-12 is not made unit, and the areas are not divided by it: the point stays where
// it is, 8 above the plane, and its areas are as good as those of upright triangles.
TEST(ClosestPositionOnTriangle, Areas_of_a_small_triangle_are_not_divided)
{
    double const width = 1e-12;
    Answer const answer = AskAboveRightTriangle({width / 4, 0.25, 8}, width);
    EXPECT_NEAR(answer.weights[0], 8, 1e-11);
    EXPECT_NEAR(answer.weights[1], std::hypot(8, 0), 1e-11);
    EXPECT_NEAR(answer.weights[2], std::hypot(8 * width, 0.25 * width), 1e-24);
    EXPECT_DOUBLE_EQ(answer.closest.X, width / 4);
    EXPECT_DOUBLE_EQ(answer.closest.Z, 8);
    EXPECT_DOUBLE_EQ(answer.squaredDistance, width * width * (width * width));
}

TEST(ClosestPositionOnTriangle, Areas_of_a_triangle_just_above_1e_12_are_divided)
{
    double const width = std::nextafter(1e-12, 1.0);
    Answer const answer = AskAboveRightTriangle({width / 4, 0.25, 8}, width);
    ExpectWeights(answer, 0.5, 0.25, 0.25);
    EXPECT_DOUBLE_EQ(answer.squaredDistance, width * width * (width * width));
}

// --- What is no number -----------------------------------------------------------------------------------------------

// No weight is positive then, the edge opposite the first vertex is the one that is looked at, and a foot that is no
// number is before its start.
TEST(ClosestPositionOnTriangle, Without_a_positive_weight_the_edge_opposite_the_first_vertex_answers)
{
    for (Vector const & point : {Vector(k_Nan, 0, 0), Vector(0, 0, k_Nan), Vector(k_Infinity, k_Infinity, 0)})
    {
        Answer const answer = Ask(point, {5, 5, 1}, {0, 0, 0}, {4, 0, 0});
        ExpectWeights(answer, 0, 1, 0);
        EXPECT_TRUE(SameBits(answer.closest, Vector(0, 0, 0)));
        EXPECT_FALSE(std::isfinite(answer.squaredDistance));
    }
}

TEST(ClosestPositionOnTriangle, Of_a_vertex_without_number_the_edge_between_the_others_is_left)
{
    // The normal is no number, which is not below a limit; the first edge looked at is sound.
    Answer const answer = Ask({1, 2, 0}, {k_Nan, 5, 0}, {0, 0, 0}, {4, 0, 0});
    ExpectWeights(answer, 0, 0.75, 0.25);
    ExpectClosest(answer, {1, 0, 0}, 4);
    Answer const pastEnd = Ask({7, 4, 0}, {k_Nan, 5, 0}, {0, 0, 0}, {4, 0, 0});
    ExpectWeights(pastEnd, 0, 0, 1);
    ExpectClosest(pastEnd, {4, 0, 0}, 25);
    Answer const beforeStart = Ask({-3, 4, 0}, {k_Nan, 5, 0}, {0, 0, 0}, {4, 0, 0});
    ExpectWeights(beforeStart, 0, 1, 0);
    ExpectClosest(beforeStart, {0, 0, 0}, 25);
}
