#include "matrix/matrix_mn_fixtures.h"

#include <Eigen/QR>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace test_support;

namespace
{

/// The pseudo-inverse by the one-argument form.
C3DMatrixMN Inverse(C3DMatrixMN const & a)
{
    C3DMatrixMN g = FilledMN(a.GetNbCol(), a.GetNbRow(), 9);
    EXPECT_EQ(g.GrevilleInverse(a), 1);
    return g;
}

/// The pseudo-inverse by the three-argument form, of the whole matrix.
C3DMatrixMN BlockInverse(C3DMatrixMN const & a)
{
    C3DMatrixMN g = FilledMN(a.GetNbCol(), a.GetNbRow(), 9);
    EXPECT_EQ(g.GrevilleInverse(a, static_cast<unsigned long>(a.GetNbRow()), static_cast<unsigned long>(a.GetNbCol())),
              1);
    return g;
}

testing::AssertionResult Near(C3DMatrixMN const & m, Eigen::MatrixXd const & expected, double limit)
{
    if (((ToEigen(m) - expected).array().abs() <= limit).all())
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << '\n' << ToEigen(m) << "\nis farther than " << limit << " from\n" << expected;
}

TEST(PseudoInverse, Of_a_column)
{
    C3DMatrixMN const a = MakeMN({{3}, {4}});
    EXPECT_TRUE(SameElements(Inverse(a), MakeMN({{3 * (1.0 / 25), 4 * (1.0 / 25)}})));
    EXPECT_TRUE(SameElements(BlockInverse(a), MakeMN({{3 * (1.0 / 25), 4 * (1.0 / 25)}})));
}

TEST(PseudoInverse, Of_a_row)
{
    EXPECT_TRUE(Near(Inverse(MakeMN({{3, 4}})), ToEigen(MakeMN({{0.12}, {0.16}})), 1e-15));
}

TEST(PseudoInverse, Of_the_identity)
{
    C3DMatrixMN const identity = MakeMN({{1, 0}, {0, 1}});
    EXPECT_TRUE(SameElements(Inverse(identity), identity));
    EXPECT_TRUE(SameElements(BlockInverse(identity), identity));
}

TEST(PseudoInverse, Of_all_ones)
{
    EXPECT_TRUE(SameElements(Inverse(FilledMN(2, 2, 1)), FilledMN(2, 2, 0.25)));
    EXPECT_TRUE(SameElements(BlockInverse(FilledMN(2, 2, 1)), FilledMN(2, 2, 0.25)));
}

TEST(PseudoInverse, Of_a_null_matrix)
{
    EXPECT_TRUE(SameElements(Inverse(FilledMN(2, 3, 0)), FilledMN(3, 2, 0)));
    EXPECT_TRUE(SameElements(BlockInverse(FilledMN(2, 3, 0)), FilledMN(3, 2, 0)));
}

TEST(PseudoInverse, A_null_column_gives_a_null_row)
{
    EXPECT_TRUE(SameElements(Inverse(MakeMN({{2, 0, 0}, {0, 0, 4}})), MakeMN({{0.5, 0}, {0, 0}, {0, 0.25}})));
    EXPECT_TRUE(SameElements(Inverse(MakeMN({{0, 2}, {0, 0}})), MakeMN({{0, 0}, {0.5, 0}})));
}

TEST(PseudoInverse, Of_an_empty_matrix_is_empty)
{
    C3DMatrixMN const empty;
    C3DMatrixMN g;
    EXPECT_EQ(g.GrevilleInverse(empty), 1);
    EXPECT_EQ(g.GrevilleInverse(empty, 0, 0), 1);
    EXPECT_EQ(g.GetNbRow(), 0);
}

TEST(PseudoInverse, A_column_counts_as_null_at_a_squared_length_of_1e_minus_10)
{
    // 2^-34 is below 1e-10 and 2^-32 above it.
    double const small = 0x1p-17;
    double const large = 0x1p-16;
    EXPECT_TRUE(SameElements(Inverse(MakeMN({{small}, {0}})), MakeMN({{0, 0}})));
    EXPECT_TRUE(SameElements(Inverse(MakeMN({{-large}, {0}})), MakeMN({{-1 / large, 0}})));
    EXPECT_TRUE(SameElements(BlockInverse(MakeMN({{small}})), MakeMN({{0}})));
    // The squared length has to be above: 1e-10 itself is not. A second component makes it up exactly.
    double const most = 9.9e-6;
    double const rest = std::sqrt(1e-10 - most * most);
    ASSERT_EQ(most * most + rest * rest, 1e-10);
    EXPECT_TRUE(SameElements(Inverse(MakeMN({{most}, {rest}})), MakeMN({{0, 0}})));
    double const above = std::nextafter(most, 1.0);
    EXPECT_NE(Inverse(MakeMN({{above}, {rest}})).Get(0, 0), 0);
}

TEST(PseudoInverse, A_short_first_column_counts_as_null_however_large_the_others_are)
{
    EXPECT_TRUE(SameElements(Inverse(MakeMN({{0x1p-17, 0}, {0, 1024}})), MakeMN({{0, 0}, {0, 1.0 / 1024}})));
    EXPECT_TRUE(SameElements(BlockInverse(MakeMN({{0x1p-17, 0}, {0, 1024}})), MakeMN({{0, 0}, {0, 1.0 / 1024}})));
}

TEST(PseudoInverse, A_NaN_column_counts_as_null)
{
    EXPECT_TRUE(SameElements(Inverse(MakeMN({{std::numeric_limits<double>::quiet_NaN()}, {1}})), MakeMN({{0, 0}})));
}

TEST(PseudoInverse, The_two_forms_have_two_thresholds_of_dependence)
{
    // The second column leaves 0.0005 of a sum of 1.0005: above one threshold and below the other.
    C3DMatrixMN const a = MakeMN({{1, 1}, {0, 0.0005}});
    EXPECT_TRUE(Near(Inverse(a), ToEigen(MakeMN({{1, -2000}, {0, 2000}})), 1e-9));
    EXPECT_TRUE(SameElements(BlockInverse(a), MakeMN({{0.5, 0}, {0.5, 0}})));
}

/// The second column of these leaves `rest`, all of it in the second row.
C3DMatrixMN WithRest(double rest)
{
    return MakeMN({{1, 1}, {0, rest}});
}
bool IsDependent(C3DMatrixMN const & inverse)
{
    return inverse.Get(0, 1) == 0;
}

TEST(PseudoInverse, A_rest_at_the_threshold_is_independent)
{
    // The rest over the column, rest / (1 + rest), on both sides of the threshold.
    EXPECT_FALSE(IsDependent(Inverse(WithRest(0.0001 / 0.9999 * 1.000001))));
    EXPECT_TRUE(IsDependent(Inverse(WithRest(0.0001 / 0.9999 * 0.999999))));
    EXPECT_FALSE(IsDependent(BlockInverse(WithRest(0.001 / 0.999 * 1.000001))));
    EXPECT_TRUE(IsDependent(BlockInverse(WithRest(0.001 / 0.999 * 0.999999))));
    // Exactly at it: the product of the sum and the threshold is the rest itself.
    double const h = 0.001;
    double rest = h / (1 - h);
    while (rest < (1 + rest) * h)
    {
        rest = std::nextafter(rest, 1.0);
    }
    while (rest > (1 + rest) * h)
    {
        rest = std::nextafter(rest, 0.0);
    }
    ASSERT_EQ(rest, (1 + rest) * h);
    EXPECT_FALSE(IsDependent(BlockInverse(WithRest(rest))));
}

TEST(PseudoInverse, Rests_are_compared_by_sums_of_magnitudes_and_not_by_lengths)
{
    // Four rests of e against a column of length and sum near 1: the sum of the rests is 4e, their length 2e.
    double const e = 0.0003;
    C3DMatrixMN const a = MakeMN({{1, 1}, {0, e}, {0, -e}, {0, e}, {0, -e}});
    EXPECT_FALSE(IsDependent(BlockInverse(a)));
    // A rest of e against a column of length sqrt 4 and sum 4.
    C3DMatrixMN const b = MakeMN({{1, 1}, {1, 1}, {1, 1}, {1, 1}, {0, 0.003}});
    EXPECT_TRUE(BlockInverse(b).Get(0, 4) == 0);
}

TEST(PseudoInverse, A_dependence_that_is_not_a_number_counts_as_dependent)
{
    double const nan = std::numeric_limits<double>::quiet_NaN();
    C3DMatrixMN const g = Inverse(MakeMN({{1, nan}, {0, 1}}));
    // The rule for an independent column would have put zeros in the last row.
    EXPECT_TRUE(std::isnan(g.Get(1, 0)));
}

TEST(PseudoInverse, Of_the_upper_left_block)
{
    C3DMatrixMN const a = MakeMN({{2, 0, 77}, {0, 4, 77}, {77, 77, 77}});
    C3DMatrixMN g = FilledMN(4, 4, 9);
    EXPECT_EQ(g.GrevilleInverse(a, 2, 2), 1);
    EXPECT_TRUE(SameElements(g, MakeMN({{0.5, 0, 9, 9}, {0, 0.25, 9, 9}, {9, 9, 9, 9}, {9, 9, 9, 9}})));
}

TEST(PseudoInverse, Of_a_block_of_one_column_or_none_uses_the_first_column)
{
    C3DMatrixMN const a = MakeMN({{3, 77}, {4, 77}});
    for (unsigned long const n : {0UL, 1UL})
    {
        C3DMatrixMN g = FilledMN(2, 2, 9);
        EXPECT_EQ(g.GrevilleInverse(a, 2, n), 1);
        EXPECT_TRUE(SameElements(g, MakeMN({{3 * (1.0 / 25), 4 * (1.0 / 25)}, {9, 9}})));
    }
}

TEST(PseudoInverse, Of_a_block_without_rows_writes_nothing)
{
    C3DMatrixMN g = FilledMN(2, 2, 9);
    EXPECT_EQ(g.GrevilleInverse(FilledMN(2, 2, 1), 0, 2), 1);
    EXPECT_TRUE(SameElements(g, FilledMN(2, 2, 9)));
}

TEST(PseudoInverse, The_target_keeps_its_size)
{
    C3DMatrixMN g = FilledMN(3, 4, 9);
    EXPECT_EQ(g.GrevilleInverse(MakeMN({{1, 0}, {0, 1}})), 1);
    EXPECT_TRUE(SameElements(g, MakeMN({{1, 0, 9, 9}, {0, 1, 9, 9}, {9, 9, 9, 9}})));
}

/// Of a rank, with the singular values between 0.5 and 2 and random directions.
Eigen::MatrixXd OfRank(Random & random, int rows, int cols, int rank)
{
    auto const directions = [&](int size)
    {
        Eigen::MatrixXd const elements = RandomElements(random, size, size);
        return Eigen::MatrixXd(Eigen::HouseholderQR<Eigen::MatrixXd>(elements).householderQ()).leftCols(rank).eval();
    };
    Eigen::VectorXd const values = Eigen::VectorXd::NullaryExpr(rank, [&] { return random.Uniform(0.5, 2.0); });
    return directions(rows) * values.asDiagonal() * directions(cols).transpose();
}

/// The sum of magnitudes of what the earlier columns leave of column k, over that of the column.
double UnexplainedShare(Eigen::MatrixXd const & a, int k)
{
    Eigen::VectorXd const column = a.col(k);
    Eigen::VectorXd rest = column;
    if (k > 0)
    {
        Eigen::MatrixXd const earlier = a.leftCols(k);
        rest -= earlier * earlier.completeOrthogonalDecomposition().solve(column);
    }
    return rest.lpNorm<1>() / column.lpNorm<1>();
}

/// Of a rank, and no column is anywhere near the thresholds: each is well explained by the earlier ones or not at all.
Eigen::MatrixXd ClearOfRank(Random & random, int rows, int cols, int rank)
{
    while (true)
    {
        Eigen::MatrixXd a = OfRank(random, rows, cols, rank);
        bool clear = true;
        for (int k = 0; k < cols; ++k)
        {
            double const share = UnexplainedShare(a, k);
            clear = clear && (share < 1e-9 || share > 0.1);
        }
        if (clear)
        {
            return a;
        }
    }
}

void ExpectPenroseConditions(Eigen::MatrixXd const & a, Eigen::MatrixXd const & g, double limit)
{
    auto const difference = [](Eigen::MatrixXd const & x, Eigen::MatrixXd const & y)
    { return (x - y).cwiseAbs().maxCoeff(); };
    EXPECT_LE(difference(a * g * a, a), limit);
    EXPECT_LE(difference(g * a * g, g), limit);
    EXPECT_LE(difference((a * g).transpose(), a * g), limit);
    EXPECT_LE(difference((g * a).transpose(), g * a), limit);
}

TEST(PseudoInverse, Agrees_with_Eigen_on_random_matrices_of_full_rank)
{
    Random random(242);
    for (int i = 0; i < 300; ++i)
    {
        int const rows = random.Integer(1, 7);
        int const cols = random.Integer(1, 7);
        Eigen::MatrixXd const a = ClearOfRank(random, rows, cols, std::min(rows, cols));
        Eigen::MatrixXd const expected = a.completeOrthogonalDecomposition().pseudoInverse();
        EXPECT_TRUE(Near(Inverse(MakeMN(a)), expected, 1e-11));
        EXPECT_TRUE(Near(BlockInverse(MakeMN(a)), expected, 1e-11));
        ExpectPenroseConditions(a, ToEigen(Inverse(MakeMN(a))), 1e-11);
    }
}

TEST(PseudoInverse, Fulfils_the_conditions_of_Penrose_for_random_matrices_of_any_rank)
{
    Random random(243);
    for (int i = 0; i < 300; ++i)
    {
        int const rows = random.Integer(1, 7);
        int const cols = random.Integer(1, 7);
        Eigen::MatrixXd const a = ClearOfRank(random, rows, cols, random.Integer(1, std::min(rows, cols)));
        ExpectPenroseConditions(a, ToEigen(Inverse(MakeMN(a))), 1e-11);
        ExpectPenroseConditions(a, ToEigen(BlockInverse(MakeMN(a))), 1e-11);
    }
}

} // namespace
