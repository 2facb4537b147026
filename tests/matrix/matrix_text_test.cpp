/// What the matrices print and read.

#include "math/matrix_mn.h"
#include "matrix/fixed_matrices.h"

#include <iomanip>
#include <sstream>
#include <string>

using namespace test_support;

namespace
{

template <typename Matrix>
class MatrixText : public testing::Test
{
protected:
    static constexpr int count = k_Size<Matrix> * k_Size<Matrix>;

    static std::string Counting()
    {
        return count == 9 ? "( 1 2 3 )\n( 4 5 6 )\n( 7 8 9 )"
                          : "( 1 2 3 4 )\n( 5 6 7 8 )\n( 9 10 11 12 )\n( 13 14 15 16 )";
    }
};
using Matrices =
    testing::Types<C3DMatrix33Tpl<float>, C3DMatrix33Tpl<double>, C3DMatrix44Tpl<float>, C3DMatrix44Tpl<double>>;
TYPED_TEST_SUITE(MatrixText, Matrices);

TYPED_TEST(MatrixText, Rows_are_written_like_vectors_with_ends_of_line_between_them)
{
    std::ostringstream stream;
    EXPECT_EQ(&(stream << CountingMatrix<TypeParam>()), &stream);
    EXPECT_EQ(stream.str(), this->Counting());
}

TYPED_TEST(MatrixText, The_number_format_is_the_stream_s)
{
    auto m = CountingMatrix<TypeParam>();
    m.Set(0, 0, static_cast<decltype(m.Get(0, 0))>(0.123456789));
    std::ostringstream six;
    six << m;
    EXPECT_EQ(six.str().substr(0, 12), "( 0.123457 2");
    std::ostringstream fixed;
    fixed << std::fixed << std::setprecision(2) << m;
    EXPECT_EQ(fixed.str().substr(0, 12), "( 0.12 2.00 ");
    EXPECT_EQ(fixed.precision(), 2);
    EXPECT_TRUE((fixed.flags() & std::ios::fixed) != 0);
}

TYPED_TEST(MatrixText, Dump_writes_label_value_and_a_line_with_a_blank)
{
    std::ostringstream labelled;
    CountingMatrix<TypeParam>().Dump(L"pose", labelled);
    EXPECT_EQ(labelled.str(), std::string("pose\n").append(this->Counting()).append("\n \n"));
    std::ostringstream bare;
    CountingMatrix<TypeParam>().Dump(nullptr, bare);
    EXPECT_EQ(bare.str(), this->Counting() + "\n \n");
    std::ostringstream empty;
    CountingMatrix<TypeParam>().Dump(L"", empty);
    EXPECT_EQ(empty.str(), std::string("\n").append(this->Counting()).append("\n \n"));
}

TYPED_TEST(MatrixText, Bare_numbers_are_read_row_by_row)
{
    std::istringstream stream("1 2 3\n4\t5 6 7 8 9 10 11 12 13 14 15 16 17");
    TypeParam m;
    EXPECT_EQ(&(stream >> m), &stream);
    EXPECT_TRUE(SameBits(m, CountingMatrix<TypeParam>()));
    int next = 0;
    stream >> next;
    EXPECT_EQ(next, TestFixture::count + 1);
}

TYPED_TEST(MatrixText, What_is_written_cannot_be_read_back)
{
    std::stringstream stream;
    auto m = CountingMatrix<TypeParam>();
    stream << m;
    stream >> m;
    EXPECT_TRUE(stream.fail());
}

C3DMatrixMN CountingMN(int rows, int cols)
{
    C3DMatrixMN m;
    m.SetDimensions(rows, cols);
    for (int i = 0; i < rows * cols; ++i)
    {
        m.Set(i / cols, i % cols, i + 1);
    }
    return m;
}

TEST(MatrixMNText, Every_row_ends_its_line)
{
    std::ostringstream stream;
    EXPECT_EQ(&(stream << CountingMN(2, 3)), &stream);
    EXPECT_EQ(stream.str(), "( 1 2 3 )\n( 4 5 6 )\n");
    std::ostringstream column;
    column << CountingMN(2, 1);
    EXPECT_EQ(column.str(), "( 1 )\n( 2 )\n");
}

TEST(MatrixMNText, An_empty_matrix_writes_nothing)
{
    std::ostringstream stream;
    stream << C3DMatrixMN();
    EXPECT_EQ(stream.str(), "");
}

TEST(MatrixMNText, Dump_has_one_more_empty_line)
{
    std::ostringstream labelled;
    CountingMN(2, 2).Dump(L"gains", labelled);
    EXPECT_EQ(labelled.str(), "gains\n( 1 2 )\n( 3 4 )\n\n \n");
    std::ostringstream bare;
    CountingMN(1, 1).Dump(nullptr, bare);
    EXPECT_EQ(bare.str(), "( 1 )\n\n \n");
    std::ostringstream empty;
    C3DMatrixMN().Dump(nullptr, empty);
    EXPECT_EQ(empty.str(), "\n \n");
}

} // namespace
