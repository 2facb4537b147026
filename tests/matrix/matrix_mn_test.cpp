#include "matrix/matrix_mn_fixtures.h"

#include <type_traits>

using namespace test_support;

namespace
{

void ExpectEmpty(C3DMatrixMN const & m)
{
    EXPECT_EQ(m.GetNbRow(), 0);
    EXPECT_EQ(m.GetNbCol(), 0);
}

TEST(MatrixMN, Starts_empty)
{
    ExpectEmpty(C3DMatrixMN());
    static_assert(std::is_standard_layout_v<C3DMatrixMN>);
}

TEST(MatrixMN, SetDimensions_gives_a_size)
{
    C3DMatrixMN m;
    EXPECT_EQ(m.SetDimensions(3, 5), 1);
    EXPECT_EQ(m.GetNbRow(), 3);
    EXPECT_EQ(m.GetNbCol(), 5);
    for (int i = 0; i < 15; ++i)
    {
        m.Set(i / 5, i % 5, i);
    }
    for (int i = 0; i < 15; ++i)
    {
        EXPECT_EQ(m.Get(i / 5, i % 5), i);
    }
}

TEST(MatrixMN, SetDimensions_with_the_current_size_keeps_the_contents)
{
    C3DMatrixMN m = MakeMN({{1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(m.SetDimensions(2, 3), 1);
    EXPECT_TRUE(SameElements(m, MakeMN({{1, 2, 3}, {4, 5, 6}})));
    C3DMatrixMN empty;
    EXPECT_EQ(empty.SetDimensions(0, 0), 1);
    ExpectEmpty(empty);
}

TEST(MatrixMN, SetDimensions_changes_to_another_size_and_back)
{
    C3DMatrixMN m = MakeMN({{1, 2, 3}, {4, 5, 6}});
    EXPECT_EQ(m.SetDimensions(3, 2), 1);
    m.Set(2, 1, 7);
    EXPECT_EQ(m.SetDimensions(30, 20), 1);
    m.Set(29, 19, 7);
    EXPECT_EQ(m.SetDimensions(1, 1), 1);
    m.Set(0, 0, 8);
    EXPECT_EQ(m.Get(0, 0), 8);
    EXPECT_EQ(m.GetNbRow(), 1);
    EXPECT_EQ(m.GetNbCol(), 1);
}

TEST(MatrixMN, SetDimensions_below_1_empties_the_matrix)
{
    for (auto const & [rows, cols] :
         {std::pair(0, 5), std::pair(5, 0), std::pair(0, 0), std::pair(-1, 5), std::pair(5, -1), std::pair(-2, -2)})
    {
        C3DMatrixMN m = FilledMN(2, 3, 1);
        EXPECT_EQ(m.SetDimensions(rows, cols), 1);
        ExpectEmpty(m);
        C3DMatrixMN empty;
        EXPECT_EQ(empty.SetDimensions(rows, cols), 1);
        ExpectEmpty(empty);
    }
}

TEST(MatrixMN, SetIdentity_fills_a_rectangle)
{
    C3DMatrixMN wide = FilledMN(2, 3, 9);
    wide.SetIdentity();
    EXPECT_TRUE(SameElements(wide, MakeMN({{1, 0, 0}, {0, 1, 0}})));
    C3DMatrixMN tall = FilledMN(3, 2, 9);
    tall.SetIdentity();
    EXPECT_TRUE(SameElements(tall, MakeMN({{1, 0}, {0, 1}, {0, 0}})));
    C3DMatrixMN empty;
    empty.SetIdentity();
    ExpectEmpty(empty);
}

TEST(MatrixMN, Copy_runs_over_the_size_of_the_target)
{
    C3DMatrixMN const large = MakeMN({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}});
    C3DMatrixMN small = FilledMN(2, 1, 0);
    small.Copy(large);
    EXPECT_TRUE(SameElements(small, MakeMN({{1}, {4}})));
    C3DMatrixMN empty;
    empty.Copy(large);
    ExpectEmpty(empty);
}

TEST(MatrixMN, Set_makes_an_independent_copy_of_the_same_size)
{
    C3DMatrixMN source = MakeMN({{1, 2, 3}, {4, 5, 6}});
    for (C3DMatrixMN target : {C3DMatrixMN(), FilledMN(2, 3, 0), FilledMN(7, 1, 0)})
    {
        EXPECT_EQ(target.Set(source), 1);
        EXPECT_TRUE(SameElements(target, source));
        source.Set(0, 0, -1);
        EXPECT_EQ(target.Get(0, 0), 1);
        source.Set(0, 0, 1);
    }
    EXPECT_EQ(source.Set(source), 1);
    EXPECT_TRUE(SameElements(source, MakeMN({{1, 2, 3}, {4, 5, 6}})));
    EXPECT_EQ(source.Set(C3DMatrixMN()), 1);
    ExpectEmpty(source);
}

TEST(MatrixMN, The_copy_constructor_makes_an_independent_copy)
{
    C3DMatrixMN source = MakeMN({{1, 2, 3}, {4, 5, 6}});
    C3DMatrixMN const copy(source);
    source.Set(1, 2, -1);
    EXPECT_TRUE(SameElements(copy, MakeMN({{1, 2, 3}, {4, 5, 6}})));
    ExpectEmpty(C3DMatrixMN(C3DMatrixMN()));
}

TEST(MatrixMN, Assignment_shares_the_rows)
{
    C3DMatrixMN source = MakeMN({{1, 2, 3}, {4, 5, 6}});
    C3DMatrixMN target;
    EXPECT_EQ(&(target = source), &target);
    EXPECT_EQ(target.GetNbRow(), 2);
    EXPECT_EQ(target.GetNbCol(), 3);
    source.Set(1, 2, -1);
    EXPECT_EQ(target.Get(1, 2), -1);
    target.Set(0, 0, -2);
    EXPECT_EQ(source.Get(0, 0), -2);
    // Parts the two, or both would free the rows.
    target = C3DMatrixMN();
    ExpectEmpty(target);
    EXPECT_EQ(source.Get(0, 0), -2);
}

TEST(MatrixMN, Adds_and_subtracts_element_by_element)
{
    C3DMatrixMN const a = MakeMN({{1, 2, 3}, {4, 5, 6}});
    C3DMatrixMN const b = MakeMN({{10, 20, 30}, {40, 50, 60}});
    C3DMatrixMN target = FilledMN(2, 3, 0);
    EXPECT_EQ(&target.Add(a, b), &target);
    EXPECT_TRUE(SameElements(target, MakeMN({{11, 22, 33}, {44, 55, 66}})));
    EXPECT_EQ(&target.Sub(a, b), &target);
    EXPECT_TRUE(SameElements(target, MakeMN({{-9, -18, -27}, {-36, -45, -54}})));
    EXPECT_EQ(&target.Add(b), &target);
    EXPECT_TRUE(SameElements(target, a));
    EXPECT_EQ(&target.Sub(b), &target);
    EXPECT_TRUE(SameElements(target, MakeMN({{-9, -18, -27}, {-36, -45, -54}})));
}

TEST(MatrixMN, Adds_and_subtracts_where_the_target_is_an_operand)
{
    C3DMatrixMN const a = MakeMN({{1, 2}, {3, 4}});
    C3DMatrixMN target(a);
    EXPECT_TRUE(SameElements(target.Add(target, target), MakeMN({{2, 4}, {6, 8}})));
    EXPECT_TRUE(SameElements(target.Sub(a, target), MakeMN({{-1, -2}, {-3, -4}})));
    EXPECT_TRUE(SameElements(target.Sub(target), FilledMN(2, 2, 0)));
}

TEST(MatrixMN, Adds_and_subtracts_over_the_size_of_the_target)
{
    C3DMatrixMN const a = FilledMN(3, 4, 5);
    C3DMatrixMN const b = FilledMN(4, 3, 2);
    C3DMatrixMN target = FilledMN(2, 1, 0);
    EXPECT_TRUE(SameElements(target.Add(a, b), FilledMN(2, 1, 7)));
    EXPECT_TRUE(SameElements(target.Sub(a, b), FilledMN(2, 1, 3)));
    EXPECT_TRUE(SameElements(target.Add(a), FilledMN(2, 1, 8)));
    EXPECT_TRUE(SameElements(target.Sub(b), FilledMN(2, 1, 6)));
}

TEST(MatrixMN, Transposes_over_the_size_of_the_target)
{
    C3DMatrixMN const a = MakeMN({{1, 2, 3}, {4, 5, 6}});
    C3DMatrixMN target = FilledMN(3, 2, 0);
    EXPECT_EQ(&target.Transpose(a), &target);
    EXPECT_TRUE(SameElements(target, MakeMN({{1, 4}, {2, 5}, {3, 6}})));
    C3DMatrixMN part = FilledMN(2, 1, 0);
    EXPECT_TRUE(SameElements(part.Transpose(a), MakeMN({{1}, {2}})));
}

TEST(MatrixMN, The_product_is_the_first_operand_times_the_second)
{
    C3DMatrixMN const a = MakeMN({{1, 2, 3}, {4, 5, 6}});
    C3DMatrixMN const b = MakeMN({{1, 0, 2, 0}, {0, 3, 0, 4}, {5, 0, 6, 0}});
    C3DMatrixMN target = FilledMN(2, 4, 9);
    EXPECT_EQ(&target.Mul(a, b), &target);
    EXPECT_TRUE(SameElements(target, MakeMN({{16, 6, 20, 8}, {34, 15, 44, 20}})));
}

TEST(MatrixMN, The_product_runs_over_the_size_of_the_target_and_the_columns_of_the_first_operand)
{
    C3DMatrixMN const a = MakeMN({{1, 2}, {4, 5}});
    C3DMatrixMN const b = MakeMN({{1, 10}, {2, 20}, {1000, 1000}});
    C3DMatrixMN target = FilledMN(2, 1, 9);
    target.Mul(a, b);
    EXPECT_TRUE(SameElements(target, MakeMN({{5}, {14}})));
}

TEST(MatrixMN, Multiplies_in_place_from_the_right_and_from_the_left)
{
    C3DMatrixMN const a = MakeMN({{1, 2, 3}, {4, 5, 6}});
    C3DMatrixMN const right = MakeMN({{1, 1, 0}, {0, 1, 1}, {0, 0, 2}});
    C3DMatrixMN const left = MakeMN({{0, 1}, {3, 1}});
    C3DMatrixMN target(a);
    EXPECT_EQ(target.Mul(right), 1);
    EXPECT_TRUE(SameElements(target, MakeMN({{1, 3, 8}, {4, 9, 17}})));
    EXPECT_TRUE(target.Set(a) != 0 && target.LeftMul(left) != 0);
    EXPECT_TRUE(SameElements(target, MakeMN({{4, 5, 6}, {7, 11, 15}})));
}

TEST(MatrixMN, Squares_itself)
{
    C3DMatrixMN target = MakeMN({{1, 2}, {3, 4}});
    EXPECT_EQ(target.Mul(target), 1);
    EXPECT_TRUE(SameElements(target, MakeMN({{7, 10}, {15, 22}})));
    target.Set(MakeMN({{1, 2}, {3, 4}}));
    EXPECT_EQ(target.LeftMul(target), 1);
    EXPECT_TRUE(SameElements(target, MakeMN({{7, 10}, {15, 22}})));
}

TEST(MatrixMN, Products_of_empty_matrices_are_empty)
{
    C3DMatrixMN m;
    C3DMatrixMN const empty;
    EXPECT_EQ(m.Mul(empty), 1);
    EXPECT_EQ(m.LeftMul(empty), 1);
    m.Mul(empty, empty).Add(empty).Sub(empty).Transpose(empty);
    ExpectEmpty(m);
}

TEST(MatrixMN, Agrees_with_Eigen_on_random_matrices)
{
    Random random(241);
    for (int i = 0; i < 200; ++i)
    {
        int const rows = random.Integer(1, 8);
        int const inner = random.Integer(1, 8);
        int const cols = random.Integer(1, 8);
        Eigen::MatrixXd const x = RandomElements(random, rows, inner);
        Eigen::MatrixXd const y = RandomElements(random, inner, cols);
        C3DMatrixMN product = FilledMN(rows, cols, 9);
        product.Mul(MakeMN(x), MakeMN(y));
        EXPECT_LE((ToEigen(product) - x * y).cwiseAbs().maxCoeff(), 16 * 0x1p-52);
        C3DMatrixMN transposed = FilledMN(inner, rows, 9);
        transposed.Transpose(MakeMN(x));
        EXPECT_EQ(ToEigen(transposed), x.transpose());
        Eigen::MatrixXd const square = RandomElements(random, inner, inner);
        C3DMatrixMN target = MakeMN(x);
        EXPECT_EQ(target.Mul(MakeMN(square)), 1);
        EXPECT_LE((ToEigen(target) - x * square).cwiseAbs().maxCoeff(), 16 * 0x1p-52);
        target.Set(MakeMN(y));
        EXPECT_EQ(target.LeftMul(MakeMN(square)), 1);
        EXPECT_LE((ToEigen(target) - square * y).cwiseAbs().maxCoeff(), 16 * 0x1p-52);
    }
}

} // namespace
