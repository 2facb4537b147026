#include "geometry/marked_record.h"
#include "math/line_intersection.h"
#include "math/platform/result.h"
#include "support/random.h"

#include <cmath>
#include <limits>

using namespace test_support;
using Vector2 = C3DVector2Tpl<double>;

namespace
{

constexpr double k_NaN = std::numeric_limits<double>::quiet_NaN();

constexpr unsigned long k_ParallelApart = 1;
constexpr unsigned long k_Apart = 4;
constexpr unsigned long k_Crossing = 0x10000;
constexpr unsigned long k_Overlap = 0x100000;

struct Answer
{
    long result;
    unsigned long flags;
    tagS3DGEOMINFO info;
};

Answer Ask(Vector2 const & a, Vector2 const & b, Vector2 const & c, Vector2 const & d, double denominatorLimit = 1e-9,
           double collinearLimit = 1e-9)
{
    Answer answer{-1, k_MarkedFlags, MakeMarkedRecord()};
    answer.result =
        F3DWorld2DLineVs2DLineIntersection(a, b, c, d, answer.flags, &answer.info, denominatorLimit, collinearLimit);
    unsigned long flags = k_MarkedFlags;
    EXPECT_EQ(F3DWorld2DLineVs2DLineIntersection(a, b, c, d, flags, nullptr, denominatorLimit, collinearLimit),
              answer.result);
    EXPECT_EQ(flags, answer.flags);
    EXPECT_TRUE(HasOnly(answer.flags == k_Crossing ? k_Position | k_U | k_V : k_NoField, answer.info));
    return answer;
}

/// A vector from whole numbers too, of which the first would otherwise name an axis.
Vector2 Point(double x, double y)
{
    return {x, y};
}

/// The segment from 0 to 1 on the X axis against another one there.
Answer AskOnX(double c, double d)
{
    return Ask(Point(0, 0), Point(1, 0), Point(c, 0), Point(d, 0));
}

void ExpectOverlap(Answer const & answer)
{
    EXPECT_EQ(answer.flags, k_Overlap);
    EXPECT_EQ(answer.result, S_OK);
}

void ExpectCollinearApart(Answer const & answer)
{
    EXPECT_EQ(answer.flags, k_Apart);
    EXPECT_EQ(answer.result, S_FALSE);
}

void ExpectParallelApart(Answer const & answer)
{
    EXPECT_EQ(answer.flags, k_ParallelApart);
    EXPECT_EQ(answer.result, S_FALSE);
}

Vector2 RandomPoint(Random & random)
{
    double const x = random.Uniform(-5.0, 5.0);
    return {x, random.Uniform(-5.0, 5.0)};
}

} // namespace

TEST(Lines2D, Crossing_lines_give_the_point_and_v_against_the_direction_from_c_to_d)
{
    // They meet at (2, 1): a quarter of the way from a to b, and three quarters from c to d.
    Answer const answer = Ask(Point(1, 0), Point(5, 4), Point(2, -2), Point(2, 2));
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.flags, k_Crossing);
    EXPECT_EQ(answer.info.u, 0.25);
    EXPECT_EQ(answer.info.v, -0.75);
    EXPECT_EQ(answer.info.position.X, 2);
    EXPECT_EQ(answer.info.position.Y, 1);
    EXPECT_TRUE(SameBits(answer.info.position.Z, 0.0));
}

TEST(Lines2D, Lines_cross_beyond_the_ends_of_their_segments)
{
    Answer const answer = Ask(Point(0, 0), Point(1, 0), Point(10, 4), Point(10, 5));
    EXPECT_EQ(answer.flags, k_Crossing);
    EXPECT_EQ(answer.info.u, 10);
    EXPECT_EQ(answer.info.v, 4);
    EXPECT_EQ(Ask(Point(0, 0), Point(1, 0), Point(-10, -4), Point(-10, -5)).info.u, -10);
}

TEST(Lines2D, The_limit_of_the_denominator_itself_is_a_crossing)
{
    // The cross product of the two vectors is 6, of either sign.
    for (double const sign : {1.0, -1.0})
    {
        auto const ask = [&](double limit)
        { return Ask(Point(0, 0), Point(2, 0), Point(1, 0), Point(1, 3 * sign), limit, 1e9); };
        EXPECT_EQ(ask(6).flags, k_Crossing);
        EXPECT_EQ(ask(std::nextafter(6, 7)).flags, k_Overlap);
    }
    EXPECT_NE(Ask(Point(0, 0), Point(2, 0), Point(1, 0), Point(1, 3), k_NaN).flags, k_Crossing);
    EXPECT_EQ(Ask(Point(0, 0), Point(0, 0), Point(1, 0), Point(1, 3), 0).flags, k_Crossing) << "0 is not below 0";
}

TEST(Lines2D, Parallel_lines_are_apart_from_the_limit_of_either_cross_product_on)
{
    // At a distance of 1/2: the cross products of the offset with the two vectors are 1 and 2 in magnitude.
    for (double const side : {0.5, -0.5})
    {
        auto const ask = [&](double lengthOfFirst, double lengthOfSecond, double limit)
        { return Ask(Point(0, 0), Point(lengthOfFirst, 0), Point(0, side), Point(lengthOfSecond, side), 1e-9, limit); };
        for (double const longer : {4.0, -4.0})
        {
            ExpectParallelApart(ask(2, longer, 1));
            ExpectParallelApart(ask(2, longer, 2));
            EXPECT_NE(ask(2, longer, std::nextafter(2, 3)).flags, k_ParallelApart);
            ExpectParallelApart(ask(longer, 2, 2));
            EXPECT_NE(ask(longer, 2, std::nextafter(2, 3)).flags, k_ParallelApart);
        }
    }
}

TEST(Lines2D, Collinear_segments_overlap_unless_both_ends_are_on_one_side)
{
    ExpectOverlap(AskOnX(0.25, 0.75));
    ExpectOverlap(AskOnX(0.75, 0.25));
    ExpectOverlap(AskOnX(-1, 0.5));
    ExpectOverlap(AskOnX(0.5, -1));
    ExpectOverlap(AskOnX(0.5, 2));
    ExpectOverlap(AskOnX(2, 0.5));
    ExpectOverlap(AskOnX(-1, 2));
    ExpectOverlap(AskOnX(2, -1));
    ExpectOverlap(AskOnX(0, 1));
    ExpectCollinearApart(AskOnX(-2, -1));
    ExpectCollinearApart(AskOnX(-1, -2));
    ExpectCollinearApart(AskOnX(2, 3));
    ExpectCollinearApart(AskOnX(3, 2));
}

TEST(Lines2D, Collinear_segments_may_be_a_billionth_apart)
{
    double const above = 1.000000001;
    ExpectOverlap(AskOnX(-1, -1e-9));
    ExpectOverlap(AskOnX(-1e-9, -1));
    ExpectCollinearApart(AskOnX(-1, std::nextafter(-1e-9, -1)));
    ExpectCollinearApart(AskOnX(std::nextafter(-1e-9, -1), -1));
    ExpectOverlap(AskOnX(2, above));
    ExpectOverlap(AskOnX(above, 2));
    ExpectCollinearApart(AskOnX(2, std::nextafter(above, 2)));
    ExpectCollinearApart(AskOnX(std::nextafter(above, 2), 2));
}

TEST(Lines2D, Collinear_parameters_are_by_X_from_a_millionth_on_and_else_by_Y)
{
    // Almost along Y. By X the second segment lies within the first, and by Y beyond it.
    auto const ask = [](double dx)
    { return Ask(Point(0, 0), Point(dx, 1), Point(0.25 * dx, 3), Point(0.5 * dx, 4), 1e-3, 1e-3); };
    for (double const sign : {1.0, -1.0})
    {
        ExpectOverlap(ask(sign * 1e-6));
        ExpectCollinearApart(ask(sign * std::nextafter(1e-6, 0)));
    }
    ExpectOverlap(Ask(Point(3, 1), Point(3, 5), Point(3, 4), Point(3, 9)));
    ExpectCollinearApart(Ask(Point(3, 1), Point(3, 5), Point(3, 6), Point(3, 9)));
    ExpectCollinearApart(Ask(Point(3, 1), Point(3, 5), Point(3, -6), Point(3, 0)));
}

TEST(Lines2D, Collinear_parameters_start_at_a)
{
    ExpectOverlap(Ask(Point(10, 10), Point(14, 12), Point(12, 11), Point(20, 15)));
    ExpectCollinearApart(Ask(Point(10, 10), Point(14, 12), Point(16, 13), Point(20, 15)));
    ExpectCollinearApart(Ask(Point(10, 10), Point(14, 12), Point(2, 6), Point(6, 8)));
}

TEST(Lines2D, A_segment_without_length_overlaps_none_that_starts_where_it_is)
{
    // 0 / 0 by Y.
    ExpectCollinearApart(Ask(Point(1, 2), Point(1, 2), Point(1, 2), Point(1, 2)));
    ExpectOverlap(Ask(Point(1, 2), Point(5, 2), Point(1, 2), Point(1, 2)));
}

TEST(Lines2D, A_NaN_is_never_a_crossing)
{
    ExpectParallelApart(Ask(Point(0, 0), Point(1, k_NaN), Point(0, 1), Point(1, 1)));
    ExpectCollinearApart(Ask(Point(k_NaN, k_NaN), Point(1, 0), Point(0, 1), Point(1, 1)));
}

TEST(Lines2D, Random_lines_meet_at_the_point_of_both_parameters)
{
    Random random(59);
    for (int i = 0; i < 20000; ++i)
    {
        Vector2 const a = RandomPoint(random);
        Vector2 const b = RandomPoint(random);
        Vector2 const c = RandomPoint(random);
        Vector2 const d = RandomPoint(random);
        Answer const answer = Ask(a, b, c, d, 0.1);
        if (answer.flags != k_Crossing)
        {
            continue;
        }
        tagS3DGEOMINFO const & info = answer.info;
        double const scale = 1 + std::abs(info.u) + std::abs(info.v);
        ASSERT_NEAR(info.position.X, a.X + info.u * (b.X - a.X), 1e-12 * scale);
        ASSERT_NEAR(info.position.Y, a.Y + info.u * (b.Y - a.Y), 1e-12 * scale);
        ASSERT_NEAR(info.position.X, c.X - info.v * (d.X - c.X), 1e-12 * scale);
        ASSERT_NEAR(info.position.Y, c.Y - info.v * (d.Y - c.Y), 1e-12 * scale);
    }
}
