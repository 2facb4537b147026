/// The inverse of the bilinear map of a quadrilateral.

#include "math/cross_in_quad.h"

#include "geometry/vector_checks.h"
#include "math/platform/result.h"

#include <array>
#include <functional>
#include <vector>

using namespace geometry_test;

namespace
{

using Vector2 = C3DVector2Tpl<double>;
using Quad = std::array<Vector2, 4>;

/// In `double`, since a vector of two integers is one along the axis that the first one names.
Vector2 At(double x, double y)
{
    return {x, y};
}

Quad const k_UnitSquare = {At(0, 0), At(1, 0), At(1, 1), At(0, 1)};

struct Found
{
    Found(Quad const & quad, Vector2 const & point) : result(F3DFindCrossInQuad(C3DPlane(), quad.data(), point, &u, &v))
    {
    }

    double u = k_Mark;
    double v = k_Mark;
    long result;
};

/// u runs from q0 to q1, v from q1 to q2.
Vector2 Bilinear(Quad const & q, double u, double v)
{
    auto const mix = [u, v](double c0, double c1, double c2, double c3)
    { return (1 - v) * ((1 - u) * c0 + u * c1) + v * ((1 - u) * c3 + u * c2); };
    return {mix(q[0].X, q[1].X, q[2].X, q[3].X), mix(q[0].Y, q[1].Y, q[2].Y, q[3].Y)};
}

double TurnAt(Quad const & q, unsigned i)
{
    Vector2 const & a = q[i];
    Vector2 const & b = q[(i + 1) % 4];
    Vector2 const & c = q[(i + 2) % 4];
    return (b.X - a.X) * (c.Y - b.Y) - (b.Y - a.Y) * (c.X - b.X);
}

/// Convex, in either orientation, with no corner near a straight angle.
Quad RandomConvexQuad(Random & random)
{
    for (;;)
    {
        Quad quad;
        for (Vector2 & corner : quad)
        {
            double const x = random.Uniform(-3.0, 3.0);
            corner = At(x, random.Uniform(-3.0, 3.0));
        }
        for (double const sign : {1.0, -1.0})
        {
            bool isConvex = true;
            for (unsigned i = 0; i < 4; ++i)
            {
                isConvex = isConvex && sign * TurnAt(quad, i) > 0.3;
            }
            if (isConvex)
            {
                return quad;
            }
        }
    }
}

/// The parameters t, from the least, at which the line through line(t, 0) and line(t, 1) passes through a point, to the
/// thousandth.
std::vector<double> LinesThrough(Vector2 const & point, std::function<Vector2(double, double)> const & line)
{
    std::vector<double> found;
    double last = 0;
    for (int i = -1; i <= 1001; ++i)
    {
        double const t = (i - 0.5) / 1000;
        double const side = TurnAt({line(t, 0), line(t, 1), point, point}, 0);
        if (i >= 0 && (side > 0) != (last > 0))
        {
            found.push_back(t);
        }
        last = side;
    }
    return found;
}

void ExpectParameters(Found const & found, double u, double v, double tolerance)
{
    EXPECT_EQ(found.result, S_OK);
    EXPECT_NEAR(found.u, u, tolerance);
    EXPECT_NEAR(found.v, v, tolerance);
}

} // namespace

TEST(CrossInQuad, Centre_of_a_unit_square_is_at_one_half)
{
    ExpectParameters(Found(k_UnitSquare, At(0.5, 0.5)), 0.5, 0.5, 0);
}

TEST(CrossInQuad, The_plane_is_not_read)
{
    double u = 0;
    double v = 0;
    C3DPlane const odd(Vector(k_Nan, k_Nan, k_Nan), Vector(0, 0, 0));
    EXPECT_EQ(F3DFindCrossInQuad(odd, k_UnitSquare.data(), At(0.25, 0.75), &u, &v), S_OK);
    EXPECT_EQ(u, 0.25);
    EXPECT_EQ(v, 0.75);
}

TEST(CrossInQuad, Round_trip_over_convex_quadrilaterals)
{
    Random random(541);
    for (int i = 0; i < 2000; ++i)
    {
        Quad const quad = RandomConvexQuad(random);
        double const u = random.Uniform(0.0, 1.0);
        double const v = random.Uniform(0.0, 1.0);
        ExpectParameters(Found(quad, Bilinear(quad, u, v)), u, v, 1e-6);
    }
}

TEST(CrossInQuad, Points_outside_a_convex_quadrilateral_are_refused)
{
    Random random(542);
    int outside = 0;
    for (int i = 0; i < 2000; ++i)
    {
        Quad const quad = RandomConvexQuad(random);
        double const x = random.Uniform(-4.0, 4.0);
        Vector2 const point(x, random.Uniform(-4.0, 4.0));
        bool isInside = true;
        bool isNearEdge = false;
        double const sign = TurnAt(quad, 0) > 0 ? 1 : -1;
        for (unsigned k = 0; k < 4; ++k)
        {
            double const side = sign * TurnAt({quad[k], quad[(k + 1) % 4], point, point}, 0);
            isInside = isInside && side > 0;
            isNearEdge = isNearEdge || std::abs(side) < 1e-6;
        }
        if (!isNearEdge)
        {
            EXPECT_EQ(Found(quad, point).result, isInside ? S_OK : E_FAIL);
            outside += isInside ? 0 : 1;
        }
    }
    EXPECT_GT(outside, 500);
}

TEST(CrossInQuad, Corners_and_edges_belong_to_the_quadrilateral)
{
    Random random(543);
    for (int i = 0; i < 200; ++i)
    {
        Quad const quad = RandomConvexQuad(random);
        for (double const u : {0.0, 0.25, 1.0})
        {
            for (double const v : {0.0, 0.75, 1.0})
            {
                ExpectParameters(Found(quad, Bilinear(quad, u, v)), u, v, 1e-9);
            }
        }
    }
    for (double const u : {0.0, 1.0})
    {
        for (double const v : {0.0, 1.0})
        {
            ExpectParameters(Found(k_UnitSquare, At(u, v)), u, v, 0);
        }
    }
}

TEST(CrossInQuad, Slack_of_the_parameters_is_an_open_interval)
{
    struct
    {
        double t;
        bool isInside;
    } const rows[] = {{-1e-9, false},   {Above(-1e-9), true}, {1.000000001, false}, {Below(1.000000001), true},
                      {-1.1e-9, false}, {1.0000000011, false}};
    for (auto const & row : rows)
    {
        // The equations of the square are linear, so that their roots are the coordinates: x exactly, y as 1 - (1 - y).
        Found const first(k_UnitSquare, At(row.t, 0.5));
        EXPECT_EQ(first.result, row.isInside ? S_OK : E_FAIL) << row.t;
        EXPECT_EQ(first.u, row.isInside ? row.t : k_Mark);
        EXPECT_EQ(first.v, row.isInside ? 0.5 : k_Mark);
        Found const second(k_UnitSquare, At(0.5, row.t));
        EXPECT_EQ(second.result, row.isInside ? S_OK : E_FAIL) << row.t;
        EXPECT_EQ(second.u, 0.5) << "the first parameter has been written before the second fails";
        EXPECT_EQ(second.v, row.isInside ? row.t : k_Mark);
    }
}

TEST(CrossInQuad, Parallel_edges_take_the_linear_equation_for_one_parameter)
{
    // A trapezoid: the edges along u are parallel, so that u is quadratic in general and v is the height.
    Quad const trapezoid = {At(0, 0), At(4, 0), At(3, 2), At(1, 2)};
    for (double const u : {0.1, 0.5, 0.9})
    {
        for (double const v : {0.1, 0.5, 0.9})
        {
            ExpectParameters(Found(trapezoid, Bilinear(trapezoid, u, v)), u, v, 1e-12);
        }
    }
    Quad const turned = {trapezoid[1], trapezoid[2], trapezoid[3], trapezoid[0]};
    ExpectParameters(Found(turned, Bilinear(turned, 0.2, 0.7)), 0.2, 0.7, 1e-12);
}

TEST(CrossInQuad, The_second_root_is_taken_where_the_first_lies_outside)
{
    // u^2 + (y - x + 1) u - x = 0: of the two roots the greater in magnitude comes first, and it is negative here.
    Quad const quad = {At(0, 0), At(1, 0), At(2, 2), At(0, 1)};
    // Run through from the other end, that root is above 1.
    Quad const reversed = {quad[1], quad[0], quad[3], quad[2]};
    for (double const u : {0.2, 0.5, 0.8})
    {
        ExpectParameters(Found(quad, Bilinear(quad, u, 0.3)), u, 0.3, 1e-12);
        ExpectParameters(Found(reversed, Bilinear(reversed, u, 0.3)), u, 0.3, 1e-12);
    }
}

TEST(CrossInQuad, Of_two_roots_inside_the_greater_comes_first_for_each_parameter_by_itself)
{
    // A bow tie covers points twice, and then the parameters may not belong together.
    Quad const bowTie = {At(0, 0), At(4, 0), At(0, 2), At(4, 3)};
    Random random(545);
    int twiceByU = 0;
    int twiceByV = 0;
    for (int i = 0; i < 200; ++i)
    {
        double const u = random.Uniform(0.0, 1.0);
        Vector2 const point = Bilinear(bowTie, u, random.Uniform(0.0, 1.0));
        std::vector<double> const allU =
            LinesThrough(point, [&](double t, double s) { return Bilinear(bowTie, t, s); });
        std::vector<double> const allV =
            LinesThrough(point, [&](double t, double s) { return Bilinear(bowTie, s, t); });
        ASSERT_FALSE(allU.empty() || allV.empty());
        Found const found(bowTie, point);
        ExpectParameters(found, allU.back(), allV.back(), 1e-2);
        twiceByU += allU.size() == 2 ? 1 : 0;
        twiceByV += allV.size() == 2 ? 1 : 0;
    }
    EXPECT_GT(twiceByU, 20);
    EXPECT_GT(twiceByV, 20);
}

TEST(CrossInQuad, An_equation_that_vanishes_gives_one_half)
{
    Vector2 const corner(3, 4);
    Quad const point = {corner, corner, corner, corner};
    ExpectParameters(Found(point, At(3, 4)), 0.5, 0.5, 0);
    ExpectParameters(Found(point, At(300, -4)), 0.5, 0.5, 0); // whatever is asked for
    // Collapsed along u: all the lines of u are one and the same, and those of v cross it.
    Quad const segment = {At(0, 0), At(0, 0), At(0, 2), At(0, 2)};
    Found const on(segment, At(0, 1));
    EXPECT_EQ(on.result, S_OK);
    EXPECT_EQ(on.u, 0.5);
    EXPECT_EQ(on.v, 0.5) << "the edges along u are null, so that the equation of v vanishes too";
    EXPECT_EQ(Found(segment, At(1, 1)).result, E_FAIL) << "off the line the first equation has no solution";
}

TEST(CrossInQuad, A_failure_of_the_first_parameter_writes_nothing)
{
    Found const found(k_UnitSquare, At(2, 0.5));
    EXPECT_EQ(found.result, E_FAIL);
    EXPECT_EQ(found.u, k_Mark);
    EXPECT_EQ(found.v, k_Mark);
}

TEST(CrossInQuad, An_equation_without_real_roots_is_refused)
{
    // The line of u leads from (u, 0) to (2u, 1 + u), so that u^2 + (y - x + 1) u - x = 0.
    Quad const quad = {At(0, 0), At(1, 0), At(2, 2), At(0, 1)};
    Found const found(quad, At(-1, -2)); // u^2 + 1 = 0
    EXPECT_EQ(found.result, E_FAIL);
    EXPECT_EQ(found.u, k_Mark);
    EXPECT_EQ(found.v, k_Mark);
}

TEST(CrossInQuad, A_double_root_counts_as_one)
{
    // On the envelope of the lines of u, where (u - 1/2)^2 = 0; the lines of v, (v + 3/2)^2 = 0, pass beside.
    Quad const quad = {At(0, 0), At(1, 0), At(2, 2), At(0, 1)};
    Found const found(quad, At(-0.25, -2.25));
    EXPECT_EQ(found.result, E_FAIL);
    EXPECT_EQ(found.u, 0.5);
    EXPECT_EQ(found.v, k_Mark);
    Found const outside(quad, At(-0.25, -0.25)); // (u + 1/2)^2 = 0
    EXPECT_EQ(outside.result, E_FAIL);
    EXPECT_EQ(outside.u, k_Mark);
}

TEST(CrossInQuad, A_point_that_is_not_a_number_is_refused)
{
    Quad const quad = {At(0, 0), At(1, 0), At(2, 2), At(0, 1)};
    for (Quad const & q : {k_UnitSquare, quad})
    {
        Found const found(q, At(k_Nan, 0.5));
        EXPECT_EQ(found.result, E_FAIL);
        EXPECT_EQ(found.u, k_Mark);
        EXPECT_EQ(found.v, k_Mark);
    }
}

TEST(CrossInQuad, Coefficients_below_the_limit_count_as_zero)
{
    // So small a square has coefficients of 1e-10 and less.
    double const size = 1e-5;
    Quad small = k_UnitSquare;
    for (Vector2 & corner : small)
    {
        corner = At(corner.X * size, corner.Y * size);
    }
    ExpectParameters(Found(small, At(0.25 * size, 0.75 * size)), 0.5, 0.5, 0);
}
