#include "geometry/intersect/three_columns.h"

#include "vector_checks.h"

#include <Eigen/Dense>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using namespace geometry_test;

constexpr double k_Limit = 1e-12;
double const k_BelowLimit = std::nextafter(k_Limit, 0.0);
double const k_AboveLimit = std::nextafter(k_Limit, 1.0);

struct Solution
{
    bool isSolved = false;
    double x = k_Mark;
    double y = k_Mark;
    double z = k_Mark;
};

Solution Solve(Vector const & c0, Vector const & c1, Vector const & c2, Vector const & r)
{
    Solution solution;
    solution.isSolved = math::detail::SolveThreeColumns(c0, c1, c2, r, solution.x, solution.y, solution.z);
    return solution;
}

/// With the columns (d, 0, 0), (0, 1, 0), (0, 0, 1): determinant d, numerators r.X, d r.Y and d r.Z.
Solution SolveDiagonal(double d, Vector const & r)
{
    return Solve({d, 0, 0}, {0, 1, 0}, {0, 0, 1}, r);
}

void ExpectRefused(Solution const & solution)
{
    EXPECT_FALSE(solution.isSolved);
    EXPECT_EQ(solution.x, k_Mark);
    EXPECT_EQ(solution.y, k_Mark);
    EXPECT_EQ(solution.z, k_Mark);
}

} // namespace

TEST(SolveThreeColumns, The_unknowns_are_the_factors_of_the_columns)
{
    // 2 (1, 2, 3) + 3 (0, 1, 4) - (5, 6, 0)
    Solution const solution = Solve({1, 2, 3}, {0, 1, 4}, {5, 6, 0}, {-3, 1, 18});
    ASSERT_TRUE(solution.isSolved);
    EXPECT_DOUBLE_EQ(solution.x, 2);
    EXPECT_DOUBLE_EQ(solution.y, 3);
    EXPECT_DOUBLE_EQ(solution.z, -1);
}

TEST(SolveThreeColumns, The_determinant_must_be_above_1e_12_of_the_numerators)
{
    ExpectRefused(SolveDiagonal(k_Limit, {1, 0, 0}));
    ExpectRefused(SolveDiagonal(-k_Limit, {1, 0, 0}));
    ExpectRefused(SolveDiagonal(k_Limit, {-1, 0, 0}));
    ExpectRefused(SolveDiagonal(k_BelowLimit, {1, 0, 0}));
    for (double const d : {k_AboveLimit, -k_AboveLimit})
    {
        Solution const solution = SolveDiagonal(d, {1, 0, 0});
        ASSERT_TRUE(solution.isSolved);
        EXPECT_EQ(solution.x, 1 / d);
        EXPECT_EQ(solution.y, 0);
        EXPECT_EQ(solution.z, 0);
    }
}

TEST(SolveThreeColumns, Each_numerator_counts_with_its_magnitude)
{
    // Permuted columns make another unknown the large one.
    Vector const x(k_Limit, 0, 0);
    Vector const y(0, 1, 0);
    Vector const z(0, 0, 1);
    for (double const sign : {1.0, -1.0})
    {
        Vector const r(sign, 0, 0);
        ExpectRefused(Solve(x, y, z, r));
        ExpectRefused(Solve(z, x, y, r));
        ExpectRefused(Solve(y, z, x, r));
        Vector const above(k_AboveLimit, 0, 0);
        EXPECT_EQ(Solve(above, y, z, r).x, sign / k_AboveLimit);
        EXPECT_EQ(Solve(z, above, y, r).y, sign / k_AboveLimit);
        EXPECT_EQ(Solve(y, z, above, r).z, sign / k_AboveLimit);
    }
    // Two numerators of opposite sign add up and do not cancel: here 1 and -1, then 0.5 and -0.25.
    ExpectRefused(SolveDiagonal(k_AboveLimit, {1, -1 / k_AboveLimit, 0}));
    EXPECT_TRUE(SolveDiagonal(k_Limit, {0.5, -0.25 / k_Limit, 0}).isSolved);
    ExpectRefused(SolveDiagonal(1, {0, 0.75e12, -0.75e12}));
    ExpectRefused(SolveDiagonal(1, {0.75e12, 0, -0.75e12}));
}

TEST(SolveThreeColumns, A_right_side_of_zeros_is_solved_by_zeros)
{
    for (double const d : {1.0, 1e-100, -std::numeric_limits<double>::denorm_min()})
    {
        Solution const solution = SolveDiagonal(d, {0, 0, 0});
        ASSERT_TRUE(solution.isSolved);
        EXPECT_EQ(solution.x, 0);
        EXPECT_EQ(solution.y, 0);
        EXPECT_EQ(solution.z, 0);
    }
    ExpectRefused(SolveDiagonal(0, {0, 0, 0}));
}

TEST(SolveThreeColumns, Dependent_columns_are_refused_whatever_the_right_side)
{
    ExpectRefused(Solve({1, 2, 3}, {2, 4, 6}, {0, 0, 1}, {1, 2, 3}));
    ExpectRefused(Solve({1, 0, 0}, {0, 1, 0}, {1, 1, 0}, {0, 0, 1}));
    ExpectRefused(Solve({1, 0, 0}, {0, 1, 0}, {1, 1, 0}, {0, 0, 0}));
    ExpectRefused(Solve({0, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 1, 1}));
}

TEST(SolveThreeColumns, The_scale_of_the_columns_does_not_matter)
{
    Solution const small = Solve({1e-30, 0, 0}, {0, 1e-30, 0}, {0, 0, 1e-30}, {2e-30, 3e-30, 4e-30});
    ASSERT_TRUE(small.isSolved);
    EXPECT_DOUBLE_EQ(small.x, 2);
    EXPECT_DOUBLE_EQ(small.y, 3);
    EXPECT_DOUBLE_EQ(small.z, 4);
}

TEST(SolveThreeColumns, What_is_no_number_is_refused)
{
    Vector const x(1, 0, 0);
    Vector const y(0, 1, 0);
    Vector const z(0, 0, 1);
    ExpectRefused(Solve({k_Nan, 0, 0}, y, z, x));
    ExpectRefused(Solve(x, {0, k_Nan, 0}, z, x));
    ExpectRefused(Solve(x, y, {0, 0, k_Nan}, x));
    ExpectRefused(Solve(x, y, z, {k_Nan, 0, 0}));
    ExpectRefused(Solve(x, y, z, {0, k_Infinity, 0}));
    ExpectRefused(Solve({k_Infinity, 0, 0}, y, z, x));
}

TEST(SolveThreeColumns, The_solution_may_replace_the_right_side)
{
    Vector r(-3, 1, 18);
    EXPECT_TRUE(math::detail::SolveThreeColumns({1, 2, 3}, {0, 1, 4}, {5, 6, 0}, r, r.X, r.Y, r.Z));
    EXPECT_DOUBLE_EQ(r.X, 2);
    EXPECT_DOUBLE_EQ(r.Y, 3);
    EXPECT_DOUBLE_EQ(r.Z, -1);
}

TEST(SolveThreeColumns, Solutions_agree_with_a_factorisation_and_with_the_equations)
{
    Random random(567);
    int compared = 0;
    for (int i = 0; i < 5000; ++i)
    {
        double const size = std::abs(random.OverDecades(-6, 6));
        Vector const c0 = RandomVector(random, size);
        Vector const c1 = RandomVector(random, size);
        Vector const c2 = RandomVector(random, size);
        Vector const r = RandomVector(random, size);
        Eigen::Matrix3d columns;
        columns << ToEigen(c0), ToEigen(c1), ToEigen(c2);
        Eigen::FullPivLU<Eigen::Matrix3d> const factors(columns);
        Solution const solution = Solve(c0, c1, c2, r);
        ASSERT_TRUE(solution.isSolved);
        Eigen::Vector3d const found(solution.x, solution.y, solution.z);
        double const rounding = 1e-14 * std::fmax(1, found.norm());
        EXPECT_LE((columns * found - ToEigen(r)).norm() / size, 10 * rounding / factors.rcond());
        EXPECT_LE((factors.solve(ToEigen(r)) - found).norm(), 10 * rounding / factors.rcond());
        compared += factors.rcond() > 1e-3 ? 1 : 0;
    }
    EXPECT_GT(compared, 4500);
}
