#include "math/polynomial_roots.h"

#include "math/platform/result.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace
{

/// The fixed limit of F3DFindQuadraticRoots and the numbers beside it.
constexpr double k_Limit = 1e-9;
double const k_BelowLimit = std::nextafter(k_Limit, 0.0);
double const k_AboveLimit = std::nextafter(k_Limit, 1.0);

constexpr double k_NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double k_Infinity = std::numeric_limits<double>::infinity();

/// What a slot holds that was not written.
constexpr double k_Unwritten = -12345.0;

struct FoundRoots
{
    long result;
    tagE3D_QUAD_ROOT_CODE code;
    double first;
    double second;
};

FoundRoots FindQuadratic(double a, double b, double c)
{
    double roots[2] = {k_Unwritten, k_Unwritten};
    tagE3D_QUAD_ROOT_CODE code = E3D_QUAD_TWO_ROOTS;
    long const result = F3DFindQuadraticRoots(a, b, c, &code, roots);
    return {result, code, roots[0], roots[1]};
}

void ExpectFound(FoundRoots const & found, tagE3D_QUAD_ROOT_CODE code, double first = k_Unwritten,
                 double second = k_Unwritten)
{
    EXPECT_EQ(found.result, code == E3D_QUAD_NO_ROOT ? S_FALSE : S_OK);
    EXPECT_EQ(found.code, code);
    EXPECT_DOUBLE_EQ(found.first, first);
    EXPECT_DOUBLE_EQ(found.second, second);
}

struct RealRoots
{
    unsigned long count;
    std::array<double, 3> slots;

    std::vector<double> Sorted() const
    {
        std::vector<double> roots(slots.begin(), slots.begin() + static_cast<std::ptrdiff_t>(count));
        std::sort(roots.begin(), roots.end());
        return roots;
    }
};

RealRoots GetLinear(double a, double b, double epsilon = 1e-12)
{
    RealRoots roots{99, {k_Unwritten, k_Unwritten, k_Unwritten}};
    F3DGetLinearRealRoots(a, b, &roots.count, roots.slots.data(), epsilon);
    return roots;
}

RealRoots GetQuadratic(double a, double b, double c, double epsilon = 1e-12)
{
    RealRoots roots{99, {k_Unwritten, k_Unwritten, k_Unwritten}};
    F3DGetQuadraticRealRoots(a, b, c, &roots.count, &roots.slots[0], &roots.slots[1], epsilon);
    return roots;
}

RealRoots GetCubic(double a, double b, double c, double d, double epsilon = 1e-12)
{
    RealRoots roots{99, {k_Unwritten, k_Unwritten, k_Unwritten}};
    F3DGetCubicRealRoots(a, b, c, d, &roots.count, &roots.slots[0], &roots.slots[1], &roots.slots[2], epsilon);
    return roots;
}

void ExpectRoots(RealRoots const & roots, std::vector<double> const & expected, double tolerance = 0)
{
    ASSERT_EQ(roots.count, expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        EXPECT_NEAR(roots.slots[i], expected[i], tolerance) << i;
    }
    for (std::size_t i = expected.size(); i < 3; ++i)
    {
        EXPECT_EQ(roots.slots[i], k_Unwritten) << i;
    }
}

/// The value of a polynomial, over the sum of the magnitudes that its terms have at x, or at 1 for a smaller x.
double RelativeResidual(std::vector<double> const & coefficients, double x)
{
    double value = 0;
    double size = 0;
    for (double const coefficient : coefficients)
    {
        value = value * x + coefficient;
        size = size * std::max(std::abs(x), 1.0) + std::abs(coefficient);
    }
    return std::abs(value) / size;
}

} // namespace

TEST(FindQuadraticRoots, Refuses_a_null_code_and_writes_nothing)
{
    double roots[2] = {k_Unwritten, k_Unwritten};
    EXPECT_EQ(F3DFindQuadraticRoots(1, -3, 2, nullptr, roots), E_POINTER);
    EXPECT_EQ(roots[0], k_Unwritten);
    EXPECT_EQ(roots[1], k_Unwritten);
}

TEST(FindQuadraticRoots, Of_nothing_is_any_value_and_of_a_constant_none)
{
    ExpectFound(FindQuadratic(0, 0, 0), E3D_QUAD_ANY_VALUE);
    ExpectFound(FindQuadratic(0, 0, 1), E3D_QUAD_NO_ROOT);
    ExpectFound(FindQuadratic(0, 0, -1), E3D_QUAD_NO_ROOT);
    ExpectFound(FindQuadratic(-k_BelowLimit, -k_BelowLimit, k_Limit), E3D_QUAD_ANY_VALUE);
    ExpectFound(FindQuadratic(0, 0, -k_Limit), E3D_QUAD_ANY_VALUE);
    ExpectFound(FindQuadratic(0, 0, k_AboveLimit), E3D_QUAD_NO_ROOT);
}

TEST(FindQuadraticRoots, Of_a_linear_equation_is_one)
{
    ExpectFound(FindQuadratic(0, 4, 2), E3D_QUAD_ONE_ROOT, -0.5);
    ExpectFound(FindQuadratic(k_BelowLimit, -4, 2), E3D_QUAD_ONE_ROOT, 0.5);
    ExpectFound(FindQuadratic(-k_BelowLimit, k_Limit, 2 * k_Limit), E3D_QUAD_ONE_ROOT, -2);
    ExpectFound(FindQuadratic(0, k_BelowLimit, 2), E3D_QUAD_NO_ROOT);
    ExpectFound(FindQuadratic(0, 1, 0), E3D_QUAD_ONE_ROOT, 0);
}

TEST(FindQuadraticRoots, Without_a_constant_puts_the_root_zero_second)
{
    ExpectFound(FindQuadratic(2, -3, 0), E3D_QUAD_TWO_ROOTS, 1.5, 0);
    ExpectFound(FindQuadratic(2, 3, -k_BelowLimit), E3D_QUAD_TWO_ROOTS, -1.5, 0);
    ExpectFound(FindQuadratic(k_Limit, k_Limit, k_BelowLimit), E3D_QUAD_TWO_ROOTS, -1, 0);
}

TEST(FindQuadraticRoots, Solves_with_all_coefficients_by_the_stable_form)
{
    ExpectFound(FindQuadratic(1, -3, 2), E3D_QUAD_TWO_ROOTS, 2, 1);
    ExpectFound(FindQuadratic(1, 3, 2), E3D_QUAD_TWO_ROOTS, -2, -1);
    ExpectFound(FindQuadratic(-1, 3, -2), E3D_QUAD_TWO_ROOTS, 2, 1);
    // The plain formula would leave no correct digit of the smaller root.
    ExpectFound(FindQuadratic(1, -1e9, 1), E3D_QUAD_TWO_ROOTS, 1e9, 1e-9);
    ExpectFound(FindQuadratic(1, 1e9, 1), E3D_QUAD_TWO_ROOTS, -1e9, -1e-9);
    // A constant at the limit still counts.
    ExpectFound(FindQuadratic(1, 1, k_Limit), E3D_QUAD_TWO_ROOTS, -1 + 1.000000001e-9, -1.000000001e-9);
}

TEST(FindQuadraticRoots, Takes_a_discriminant_within_the_limit_for_a_double_root)
{
    ExpectFound(FindQuadratic(1, 2, 1), E3D_QUAD_ONE_ROOT, -1);
    ExpectFound(FindQuadratic(2, -4, 2), E3D_QUAD_ONE_ROOT, 1);
    // 4 - 4c is -8e-10 and 8e-10, and then a little beyond the limit on both sides.
    ExpectFound(FindQuadratic(1, 2, 1 + 2e-10), E3D_QUAD_ONE_ROOT, -1);
    ExpectFound(FindQuadratic(1, 2, 1 - 2e-10), E3D_QUAD_ONE_ROOT, -1);
    ExpectFound(FindQuadratic(1, 2, 1 + 3e-10), E3D_QUAD_NO_ROOT);
    EXPECT_EQ(FindQuadratic(1, 2, 1 - 3e-10).code, E3D_QUAD_TWO_ROOTS);
    ExpectFound(FindQuadratic(1, 1, 1), E3D_QUAD_NO_ROOT);
}

TEST(FindQuadraticRoots, A_discriminant_of_exactly_the_limit_is_two_roots_or_none)
{
    // 4 a c is c / 2.
    double const a = 0.125;
    double const b = k_Limit;
    double const upper = 2 * (b * b - k_Limit);
    double const lower = 2 * (b * b + k_Limit);
    ASSERT_EQ(b * b - 0.5 * upper, k_Limit);
    ASSERT_EQ(b * b - 0.5 * lower, -k_Limit);
    EXPECT_EQ(FindQuadratic(a, b, upper).code, E3D_QUAD_TWO_ROOTS);
    EXPECT_EQ(FindQuadratic(a, b, upper * (1 - 1e-15)).code, E3D_QUAD_ONE_ROOT);
    EXPECT_EQ(FindQuadratic(a, b, lower).code, E3D_QUAD_NO_ROOT);
    EXPECT_EQ(FindQuadratic(a, b, lower * (1 - 1e-15)).code, E3D_QUAD_ONE_ROOT);
}

TEST(FindQuadraticRoots, Of_a_pure_square_puts_the_positive_root_first)
{
    ExpectFound(FindQuadratic(1, 0, 0), E3D_QUAD_ONE_ROOT, 0);
    ExpectFound(FindQuadratic(2, 0, -8), E3D_QUAD_TWO_ROOTS, 2, -2);
    ExpectFound(FindQuadratic(-2, k_BelowLimit, 8), E3D_QUAD_TWO_ROOTS, 2, -2);
    ExpectFound(FindQuadratic(1, 0, 4), E3D_QUAD_NO_ROOT);
}

TEST(FindQuadraticRoots, Of_a_pure_square_has_limits_on_the_square)
{
    ExpectFound(FindQuadratic(1, 0, -k_Limit), E3D_QUAD_TWO_ROOTS, std::sqrt(k_Limit), -std::sqrt(k_Limit));
    ExpectFound(FindQuadratic(1, 0, -k_BelowLimit), E3D_QUAD_ONE_ROOT, 0);
    ExpectFound(FindQuadratic(1, 0, k_Limit), E3D_QUAD_ONE_ROOT, 0);
    ExpectFound(FindQuadratic(1, 0, k_AboveLimit), E3D_QUAD_NO_ROOT);
    // It is -c / a that is limited, and not c.
    ExpectFound(FindQuadratic(1e6, 0, -1e-4), E3D_QUAD_ONE_ROOT, 0);
}

TEST(FindQuadraticRoots, Agrees_with_the_roots_it_was_built_from)
{
    std::mt19937_64 generator(21);
    std::uniform_real_distribution<double> coordinate(-10, 10);
    for (int i = 0; i < 2000; ++i)
    {
        double const x = coordinate(generator);
        double const y = coordinate(generator);
        double const a = coordinate(generator);
        if (std::abs(x - y) < 1e-2 || std::abs(a) < 1e-2 || std::abs(x) < 1e-3 || std::abs(y) < 1e-3)
        {
            continue;
        }
        std::vector<double> const coefficients{a, -a * (x + y), a * x * y};
        FoundRoots const found = FindQuadratic(coefficients[0], coefficients[1], coefficients[2]);
        ASSERT_EQ(found.code, E3D_QUAD_TWO_ROOTS);
        EXPECT_LT(RelativeResidual(coefficients, found.first), 1e-14);
        EXPECT_LT(RelativeResidual(coefficients, found.second), 1e-14);
        EXPECT_NEAR(std::max(found.first, found.second), std::max(x, y), 1e-10);
        EXPECT_NEAR(std::min(found.first, found.second), std::min(x, y), 1e-10);
    }
}

TEST(FindQuadraticRoots, A_nan_in_the_first_or_last_coefficient_has_no_root)
{
    EXPECT_EQ(FindQuadratic(k_NaN, 1, 1).code, E3D_QUAD_NO_ROOT);
    EXPECT_EQ(FindQuadratic(k_NaN, 0, 1).code, E3D_QUAD_NO_ROOT);
    EXPECT_EQ(FindQuadratic(1, 1, k_NaN).code, E3D_QUAD_NO_ROOT);
    EXPECT_EQ(FindQuadratic(1, 0, k_NaN).code, E3D_QUAD_NO_ROOT);
    EXPECT_EQ(FindQuadratic(1, k_NaN, 1).code, E3D_QUAD_NO_ROOT);
}

TEST(LinearRealRoots, Is_the_quotient)
{
    ExpectRoots(GetLinear(4, 2), {-0.5});
    ExpectRoots(GetLinear(-4, 2), {0.5});
    ExpectRoots(GetLinear(0.5, 2, 0.5), {-4});
    ExpectRoots(GetLinear(-0.5, 2, 0.5), {4});
}

TEST(LinearRealRoots, Reports_zero_where_every_value_is_a_root)
{
    ExpectRoots(GetLinear(0, 0), {0});
    ExpectRoots(GetLinear(0.25, -0.25, 0.5), {0});
}

TEST(LinearRealRoots, Reports_none_for_a_constant)
{
    ExpectRoots(GetLinear(0, 1), {});
    ExpectRoots(GetLinear(0.25, 0.5, 0.5), {});
    // With an epsilon of 0 even a zero coefficient is not below it: 0 / 0.
    RealRoots const undefined = GetLinear(0, 0, 0);
    EXPECT_EQ(undefined.count, 1UL);
    EXPECT_TRUE(std::isnan(undefined.slots[0]));
}

TEST(LinearRealRoots, A_coefficient_that_is_no_number_is_neither_above_nor_below_the_limit)
{
    ExpectRoots(GetLinear(k_NaN, 1), {});
    ExpectRoots(GetLinear(k_NaN, 0), {0});
    ExpectRoots(GetLinear(0, k_NaN), {});
    ExpectRoots(GetLinear(4, 2, k_NaN), {});
}

TEST(QuadraticRealRoots, Puts_the_root_with_the_positive_square_root_first)
{
    ExpectRoots(GetQuadratic(1, -3, 2), {2, 1});
    ExpectRoots(GetQuadratic(-1, 3, -2), {1, 2});
    ExpectRoots(GetQuadratic(2, 0, -8), {2, -2});
    ExpectRoots(GetQuadratic(1, 2, 0), {0, -2});
}

TEST(QuadraticRealRoots, Reports_a_double_root_as_none)
{
    ExpectRoots(GetQuadratic(1, 2, 1), {});
    ExpectRoots(GetQuadratic(1, 0, 0), {});
    ExpectRoots(GetQuadratic(1, 1, 1), {});
}

TEST(QuadraticRealRoots, Has_no_limit_on_the_discriminant)
{
    EXPECT_EQ(GetQuadratic(1, 2, std::nextafter(1.0, 0.0)).count, 2UL);
    EXPECT_EQ(GetQuadratic(1, 2, std::nextafter(1.0, 2.0)).count, 0UL);
}

TEST(QuadraticRealRoots, Uses_the_plain_formula_which_loses_the_small_root)
{
    RealRoots const roots = GetQuadratic(1, -1e9, 1);
    EXPECT_EQ(roots.slots[0], 1e9);
    EXPECT_EQ(roots.slots[1], 0);
}

TEST(QuadraticRealRoots, Falls_back_to_the_linear_equation)
{
    ExpectRoots(GetQuadratic(0, 4, 2), {-0.5});
    ExpectRoots(GetQuadratic(0, 0, 0), {0});
    ExpectRoots(GetQuadratic(0, 0, 1), {});
    ExpectRoots(GetQuadratic(-0.25, 4, 2, 0.5), {-0.5});
    EXPECT_EQ(GetQuadratic(0.5, 4, 2, 0.5).count, 2UL);
    EXPECT_EQ(GetQuadratic(-0.5, 4, 2, 0.5).count, 2UL);
}

TEST(QuadraticRealRoots, A_discriminant_that_is_no_number_gives_no_root)
{
    ExpectRoots(GetQuadratic(1, k_NaN, 1), {});
    ExpectRoots(GetQuadratic(1, 1, k_NaN), {});
    ExpectRoots(GetQuadratic(1e200, 1e200, 1e200), {});
    // A leading coefficient that is none does not reach the limit, and the rest is linear.
    ExpectRoots(GetQuadratic(k_NaN, 4, 2), {-0.5});
}

TEST(QuadraticRealRoots, May_be_stored_over_its_coefficients)
{
    double a = 1;
    double b = -3;
    double c = 2;
    unsigned long count = 0;
    F3DGetQuadraticRealRoots(a, b, c, &count, &a, &b);
    EXPECT_EQ(count, 2UL);
    EXPECT_EQ(a, 2);
    EXPECT_EQ(b, 1);
}

TEST(CubicRealRoots, Of_a_cube_is_one)
{
    ExpectRoots(GetCubic(1, 0, 0, -1), {1});
    ExpectRoots(GetCubic(1, 0, 0, 1), {-1});
    ExpectRoots(GetCubic(1, 0, 0, -27), {3}, 1e-14);
    ExpectRoots(GetCubic(-2, 0, 0, 54), {3}, 1e-14);
    // (x - 1)(x^2 + 1)
    ExpectRoots(GetCubic(1, -1, 1, -1), {1}, 1e-14);
}

TEST(CubicRealRoots, Stores_a_double_root_twice_after_the_simple_one)
{
    ExpectRoots(GetCubic(1, 0, -3, 2), {-2, 1, 1});
    ExpectRoots(GetCubic(1, 0, -3, -2), {2, -1, -1});
    ExpectRoots(GetCubic(-2, 0, 6, -4), {-2, 1, 1});
}

TEST(CubicRealRoots, Cube_roots_apart_by_just_the_limit_give_one_root)
{
    // x^3 - 1 has the cube roots 0 and -1, and coefficients of the sum 2.
    ExpectRoots(GetCubic(1, 0, 0, -1, 0.5), {1});
    // 2 x^3 - 1 has 0 and -4^(1/3), and the sum 3: within the limit the root counts as a double one.
    EXPECT_EQ(GetCubic(2, 0, 0, -1, 0.5).count, 1UL);
    EXPECT_EQ(GetCubic(2, 0, 0, -1, 0.6).count, 3UL);
}

TEST(CubicRealRoots, Of_a_triple_root_are_three)
{
    ExpectRoots(GetCubic(1, 0, 0, 0), {0, 0, 0});
    ExpectRoots(GetCubic(1, -3, 3, -1), {1, 1, 1});
    ExpectRoots(GetCubic(2, 12, 24, 16), {-2, -2, -2});
}

TEST(CubicRealRoots, Lists_three_simple_roots_downwards_for_a_positive_leading_coefficient)
{
    ExpectRoots(GetCubic(1, -6, 11, -6), {3, 2, 1}, 1e-14);
    ExpectRoots(GetCubic(-1, 6, -11, 6), {1, 2, 3}, 1e-14);
    ExpectRoots(GetCubic(1, 0, -1, 0), {1, 0, -1}, 1e-15);
    ExpectRoots(GetCubic(2, 0, -8, 0), {2, 0, -2}, 1e-15);
}

TEST(CubicRealRoots, Has_finite_roots_where_rounding_moves_a_double_root)
{
    // (x + 0.7)^2 (x + 2.8): the rounded coefficients have a discriminant below 0 and a cosine beyond its range.
    RealRoots const roots = GetCubic(1, 4.2000000000000002, 4.410000000000001, 1.3720000000000003);
    ASSERT_EQ(roots.count, 3UL);
    std::vector<double> const sorted = roots.Sorted();
    EXPECT_NEAR(sorted[0], -2.8, 1e-7);
    EXPECT_NEAR(sorted[1], -0.7, 1e-7);
    EXPECT_NEAR(sorted[2], -0.7, 1e-7);
}

TEST(CubicRealRoots, Of_a_quadratic_are_those_of_the_plain_formula)
{
    ExpectRoots(GetCubic(0, 1, -3, 2), {2, 1});
    ExpectRoots(GetCubic(0, -1, 3, -2), {1, 2});
    ExpectRoots(GetCubic(0, 1, 2, 1), {});
    ExpectRoots(GetCubic(0, 1, 1, 1), {});
}

TEST(CubicRealRoots, Of_a_linear_equation_is_one_and_of_nothing_is_zero)
{
    ExpectRoots(GetCubic(0, 0, 4, 2), {-0.5});
    ExpectRoots(GetCubic(0, 0, 0, 0), {0});
    ExpectRoots(GetCubic(0, 0, 0, 1), {});
    // Beside no other coefficient a constant counts from 1e-91 on.
    ExpectRoots(GetCubic(0, 0, 0, 1.1e-91), {});
    ExpectRoots(GetCubic(0, 0, 0, -0.9e-91), {0});
}

TEST(CubicRealRoots, Measures_zero_against_the_sum_of_the_coefficients)
{
    // The limit is 8 times 1/8: 1 is at it, and less is below.
    ExpectRoots(GetCubic(0.5, 1, 5.5, 1, 0.125), {(-5.5 + std::sqrt(26.25)) / 2, (-5.5 - std::sqrt(26.25)) / 2}, 1e-14);
    ExpectRoots(GetCubic(0.5, -0.5, 6, 1, 0.125), {-1 / 6.0}, 1e-15);
    ExpectRoots(GetCubic(0.5, 0.5, -1, 6, 0.125), {6}, 1e-15);
    // At the limit the leading coefficient counts: (x + 2)(x^2 + x / 2 + 1.5) has one real root, its quadratic part
    // none.
    ExpectRoots(GetCubic(1, 2.5, 2.5, 3, 1 / 9.0), {-2}, 1e-14);
    // So too the constant.
    ExpectRoots(GetCubic(0.25, 0.25, 0.25, 0.25, 0.5), {0});
    ExpectRoots(GetCubic(0, 0, 0, -1, 1), {});
    // With the coefficients a million times as great nothing changes.
    ExpectRoots(GetCubic(0.5e6, -0.5e6, 6e6, 1e6, 0.125), {-1 / 6.0}, 1e-15);
    ExpectRoots(GetCubic(1e-20, 0, 0, -1e-20), {1}, 1e-14);
}

TEST(CubicRealRoots, Agrees_with_the_three_roots_it_was_built_from)
{
    std::mt19937_64 generator(31);
    std::uniform_real_distribution<double> coordinate(-5, 5);
    int tried = 0;
    for (int i = 0; i < 4000; ++i)
    {
        std::vector<double> expected{coordinate(generator), coordinate(generator), coordinate(generator)};
        double const a = coordinate(generator);
        std::sort(expected.begin(), expected.end());
        double const x = expected[0];
        double const y = expected[1];
        double const z = expected[2];
        if (y - x < 0.1 || z - y < 0.1 || std::abs(a) < 0.01)
        {
            continue;
        }
        ++tried;
        std::vector<double> const coefficients{a, -a * (x + y + z), a * (x * y + y * z + z * x), -a * x * y * z};
        RealRoots const roots = GetCubic(coefficients[0], coefficients[1], coefficients[2], coefficients[3]);
        ASSERT_EQ(roots.count, 3UL);
        std::vector<double> const sorted = roots.Sorted();
        for (std::size_t k = 0; k < 3; ++k)
        {
            EXPECT_NEAR(sorted[k], expected[k], 1e-11);
            EXPECT_LT(RelativeResidual(coefficients, sorted[k]), 1e-13);
        }
    }
    EXPECT_GT(tried, 3000);
}

TEST(CubicRealRoots, Agrees_with_the_one_root_it_was_built_from)
{
    std::mt19937_64 generator(32);
    std::uniform_real_distribution<double> coordinate(-2, 2);
    std::uniform_real_distribution<double> positive(0.5, 2);
    int tried = 0;
    for (int i = 0; i < 4000; ++i)
    {
        // The two cube roots of the formula: y = -u - w is the real root of y^3 - 3 u w y + u^3 + w^3, with y = a x +
        // s.
        double const u = coordinate(generator);
        double const w = coordinate(generator);
        double const s = coordinate(generator);
        double const a = positive(generator) * (i % 2 == 0 ? 1 : -1);
        if (std::abs(u - w) < 0.1 || std::min(std::abs(u), std::abs(w)) < 0.2)
        {
            continue;
        }
        ++tried;
        double const p = -u * w;
        double const q = u * u * u + w * w * w;
        std::vector<double> const coefficients{a, 3 * s, 3 * (s * s + p) / a, (s * s * s + 3 * p * s + q) / (a * a)};
        RealRoots const roots = GetCubic(coefficients[0], coefficients[1], coefficients[2], coefficients[3]);
        ASSERT_EQ(roots.count, 1UL);
        EXPECT_NEAR(roots.slots[0], (-u - w - s) / a, 1e-12);
        EXPECT_LT(RelativeResidual(coefficients, roots.slots[0]), 1e-13);
    }
    EXPECT_GT(tried, 2500);
}

TEST(CubicRealRoots, Has_the_one_real_root_to_the_cube_root_of_the_precision_in_the_worst_case)
{
    std::mt19937_64 generator(33);
    std::uniform_real_distribution<double> coordinate(-5, 5);
    std::uniform_real_distribution<double> positive(0.1, 5);
    for (int i = 0; i < 2000; ++i)
    {
        double const x = coordinate(generator);
        double const real = coordinate(generator);
        double const imaginary = positive(generator);
        double const sum = 2 * real;
        double const product = real * real + imaginary * imaginary;
        RealRoots const roots = GetCubic(1, -(x + sum), x * sum + product, -x * product);
        ASSERT_EQ(roots.count, 1UL);
        EXPECT_NEAR(roots.slots[0], x, 1e-4);
    }
    // (x + 5)^3 with a small p: one of the cube roots is all rounding error.
    RealRoots const roots = GetCubic(1, 15, 75 + 1e-9, 125 + 1 + 5e-9);
    ASSERT_EQ(roots.count, 1UL);
    EXPECT_NEAR(roots.slots[0], -6, 1e-4);
}

TEST(CubicRealRoots, May_be_stored_over_its_coefficients)
{
    double a = 1;
    double d = -6;
    double r1 = 0;
    unsigned long count = 0;
    F3DGetCubicRealRoots(a, -6, 11, d, &count, &a, &r1, &d);
    EXPECT_EQ(count, 3UL);
    EXPECT_NEAR(a, 3, 1e-14);
    EXPECT_NEAR(r1, 2, 1e-14);
    EXPECT_NEAR(d, 1, 1e-14);
}

TEST(CubicRealRoots, Of_a_nan_are_none)
{
    EXPECT_EQ(GetCubic(k_NaN, 1, 1, 1).count, 0UL);
    EXPECT_EQ(GetCubic(1, k_NaN, 1, 1).count, 0UL);
    EXPECT_EQ(GetCubic(1, 1, k_NaN, 1).count, 0UL);
    EXPECT_EQ(GetCubic(1, 1, 1, k_NaN).count, 0UL);
    EXPECT_EQ(GetCubic(k_Infinity, -k_Infinity, 1, 1).count, 0UL);
}
