#include "matrix/singular_values.h"

#include "matrix/fixed_matrices.h"

#include <Eigen/LU>
#include <Eigen/SVD>

#include <algorithm>
#include <array>
#include <functional>

using namespace test_support;
using math::detail::SingularValueDecomposition;

namespace
{

using Matrix = Eigen::Matrix3d;

/// A bound on rounding errors relative to the largest singular value: 60 units in the last place.
constexpr double k_Rounding = 60 * std::numeric_limits<double>::epsilon();

struct Result
{
    Matrix u;
    Eigen::Vector3d w;
    Matrix vt;
};

Result Decompose(Matrix const & a)
{
    double array[3][3];
    for (int i = 0; i < 9; ++i)
    {
        array[i / 3][i % 3] = a(i / 3, i % 3);
    }
    SingularValueDecomposition svd;
    math::detail::DecomposeSingularValues(array, svd);
    Result result;
    for (int i = 0; i < 9; ++i)
    {
        result.u(i / 3, i % 3) = svd.u[i / 3][i % 3];
        result.vt(i / 3, i % 3) = svd.vt[i / 3][i % 3];
    }
    result.w = Eigen::Vector3d(svd.w[0], svd.w[1], svd.w[2]);
    return result;
}

Matrix FromRows(double m00, double m01, double m02, double m10, double m11, double m12, double m20, double m21,
                double m22)
{
    Matrix m;
    m << m00, m01, m02, m10, m11, m12, m20, m21, m22;
    return m;
}

Matrix Diagonal(double x, double y, double z)
{
    return Eigen::Vector3d(x, y, z).asDiagonal();
}

/// The singular values of a matrix as the judge knows them, the greatest first. The judge loses those of extreme
/// matrices, so it is given a multiple.
Eigen::Vector3d ExpectedValues(Matrix const & a)
{
    double const size = a.cwiseAbs().maxCoeff();
    if (size == 0)
    {
        return Eigen::Vector3d::Zero();
    }
    int const exponent = std::ilogb(size);
    Matrix const multiple = a.unaryExpr([&](double x) { return std::scalbn(x, -exponent); });
    Eigen::Vector3d const values = Eigen::JacobiSVD<Matrix>(multiple).singularValues();
    return values.unaryExpr([&](double x) { return std::scalbn(x, exponent); });
}

/// The product, the orthonormal factors, the signs and the set of values.
void ExpectDecomposition(Matrix const & a, Result const & result)
{
    SCOPED_TRACE(testing::Message() << "of\n" << a);
    Matrix const identity = Matrix::Identity();
    EXPECT_TRUE(AreClose(result.u.transpose() * result.u, identity, k_Rounding));
    EXPECT_TRUE(AreClose(result.vt * result.vt.transpose(), identity, k_Rounding));
    EXPECT_GE(result.w.minCoeff(), 0);
    double const limit = std::max(k_Rounding * a.cwiseAbs().maxCoeff(), std::numeric_limits<double>::denorm_min());
    // The product is taken of values that are far from both ends of the range.
    double const size = std::max(a.cwiseAbs().maxCoeff(), std::numeric_limits<double>::min());
    int const exponent = std::min(std::ilogb(size), 900);
    auto const scaled = [&](double x)
    { return std::scalbn(std::scalbn(x, -exponent / 2), -(exponent - exponent / 2)); };
    Matrix const product = result.u * result.w.unaryExpr(scaled).asDiagonal() * result.vt;
    EXPECT_TRUE(AreClose(product, a.unaryExpr(scaled), k_Rounding * scaled(size)));
    Eigen::Vector3d sorted = result.w;
    std::sort(sorted.begin(), sorted.end(), std::greater<>());
    EXPECT_TRUE(AreClose(sorted, ExpectedValues(a), limit));
}

void ExpectDecomposition(Matrix const & a)
{
    ExpectDecomposition(a, Decompose(a));
}

Matrix RandomElements(Random & random)
{
    return Matrix::NullaryExpr([&] { return random.Uniform(-1.0, 1.0); });
}

/// The method as it is told, with its quotients, on matrices that are neither singular nor extreme.
class PlainGolubReinsch
{
public:
    explicit PlainGolubReinsch(Matrix const & matrix) : a(matrix)
    {
        Reduce();
        Accumulate();
        for (int k = 2; k >= 0; --k)
        {
            Converge(k);
        }
    }

    Matrix a;
    Eigen::Vector3d w;
    Eigen::Vector3d e;
    Matrix v = Matrix::Zero();
    double anorm = 0;

private:
    static double Sign(double magnitude, double x) { return x >= 0 ? magnitude : -magnitude; }

    static double Pythagoras(double x, double y)
    {
        double const absX = std::abs(x);
        double const absY = std::abs(y);
        if (absX > absY)
        {
            return absX * std::sqrt(1 + absY / absX * (absY / absX));
        }
        return absY != 0 ? absY * std::sqrt(1 + absX / absY * (absX / absY)) : 0;
    }

    void Reduce()
    {
        e = Eigen::Vector3d::Zero();
        for (int i = 0; i < 3; ++i)
        {
            int const n = 3 - i;
            auto column = a.col(i).tail(n);
            double scale = column.lpNorm<1>();
            column /= scale;
            double g = -Sign(column.norm(), column(0));
            double const h = column(0) * g - column.squaredNorm();
            column(0) -= g;
            for (int j = i + 1; j < 3; ++j)
            {
                a.col(j).tail(n) += column * (column.dot(a.col(j).tail(n)) / h);
            }
            column *= scale;
            w(i) = scale * g;
            if (i < 2)
            {
                auto row = a.row(i).tail(n - 1);
                scale = row.lpNorm<1>();
                row /= scale;
                g = -Sign(row.norm(), row(0));
                double const rowH = row(0) * g - row.squaredNorm();
                row(0) -= g;
                for (int j = i + 1; j < 3; ++j)
                {
                    a.row(j).tail(n - 1) += row * (row.dot(a.row(j).tail(n - 1)) / rowH);
                }
                row *= scale;
                e(i + 1) = scale * g;
            }
            anorm = std::max(anorm, std::abs(w(i)) + std::abs(e(i)));
        }
    }

    void Accumulate()
    {
        for (int i = 2; i >= 0; --i)
        {
            v(i, i) = 1;
            int const n = 2 - i;
            if (n > 0)
            {
                Eigen::RowVectorXd const row = a.row(i).tail(n);
                Eigen::VectorXd const image = row.transpose() / row(0) / e(i + 1);
                v.bottomRightCorner(n, n) += image * (row * v.bottomRightCorner(n, n)).eval();
            }
        }
        for (int i = 2; i >= 0; --i)
        {
            int const n = 2 - i;
            Eigen::VectorXd const column = a.col(i).tail(n + 1);
            a.row(i).tail(n).setZero();
            for (int j = i + 1; j < 3; ++j)
            {
                double const s = column.tail(n).dot(a.col(j).tail(n));
                a.col(j).tail(n + 1) += s / column(0) / w(i) * column;
            }
            a.col(i).tail(n + 1) = column / w(i);
            a(i, i) += 1;
        }
    }

    void Converge(int k)
    {
        for (int sweep = 0; sweep < 30; ++sweep)
        {
            int l = k;
            while (std::abs(e(l)) + anorm != anorm)
            {
                --l;
            }
            if (l == k)
            {
                if (w(k) < 0)
                {
                    w(k) = -w(k);
                    v.col(k) = -v.col(k);
                }
                return;
            }
            Sweep(l, k);
        }
    }

    static void Turn(Matrix & m, int i, int j, double c, double s)
    {
        Eigen::Vector3d const x = m.col(i);
        Eigen::Vector3d const y = m.col(j);
        m.col(i) = x * c + y * s;
        m.col(j) = y * c - x * s;
    }

    void Sweep(int l, int k)
    {
        double x = w(l);
        double y = w(k - 1);
        double g = e(k - 1);
        double h = e(k);
        double z = w(k);
        double f = ((y - z) * (y + z) + (g - h) * (g + h)) / (2 * h * y);
        f = ((x - z) * (x + z) + h * (y / (f + Sign(Pythagoras(f, 1), f)) - h)) / x;
        double c = 1;
        double s = 1;
        for (int j = l; j < k; ++j)
        {
            int const i = j + 1;
            y = w(i);
            h = s * e(i);
            g = c * e(i);
            z = Pythagoras(f, h);
            e(j) = z;
            c = f / z;
            s = h / z;
            f = x * c + g * s;
            g = g * c - x * s;
            h = y * s;
            y = y * c;
            Turn(v, j, i, c, s);
            z = Pythagoras(f, h);
            w(j) = z;
            c = f / z;
            s = h / z;
            f = c * g + s * y;
            x = c * y - s * g;
            Turn(a, j, i, c, s);
        }
        e(l) = 0;
        e(k) = f;
        w(k) = x;
    }
};

TEST(SingularValues, The_identity_is_reflected_on_both_sides)
{
    Result const result = Decompose(Matrix::Identity());
    EXPECT_EQ(result.u, Matrix(-Matrix::Identity()));
    EXPECT_EQ(result.w, Eigen::Vector3d(1, 1, 1));
    EXPECT_EQ(result.vt, Matrix(-Matrix::Identity()));
}

TEST(SingularValues, A_diagonal_matrix_keeps_its_order)
{
    Result const result = Decompose(Diagonal(2, 4, 3));
    EXPECT_EQ(result.u, Matrix(-Matrix::Identity()));
    EXPECT_EQ(result.w, Eigen::Vector3d(2, 4, 3));
    EXPECT_EQ(result.vt, Matrix(-Matrix::Identity()));
}

TEST(SingularValues, A_negative_value_is_made_positive_in_V)
{
    Result const result = Decompose(Diagonal(-2, 3, -4));
    EXPECT_EQ(result.u, Matrix(-Matrix::Identity()));
    EXPECT_EQ(result.w, Eigen::Vector3d(2, 3, 4));
    EXPECT_EQ(result.vt, Diagonal(1, -1, 1));
}

TEST(SingularValues, A_zero_column_is_not_reflected)
{
    EXPECT_EQ(Decompose(Diagonal(0, 3, 4)).u, Diagonal(1, -1, -1));
    EXPECT_EQ(Decompose(Diagonal(2, 0, 4)).u, Diagonal(-1, 1, -1));
    EXPECT_EQ(Decompose(Diagonal(2, 3, 0)).u, Diagonal(-1, -1, 1));
    EXPECT_EQ(Decompose(Diagonal(2, 3, -0.0)).u, Diagonal(-1, -1, 1));
}

TEST(SingularValues, Of_the_null_matrix_nothing_is_reflected)
{
    for (double const zero : {0.0, -0.0})
    {
        Result const result = Decompose(Matrix::Constant(zero));
        EXPECT_EQ(result.u, Matrix(Matrix::Identity()));
        EXPECT_EQ(result.w, Eigen::Vector3d(0, 0, 0));
        EXPECT_EQ(result.vt, Matrix(Matrix::Identity()));
    }
}

TEST(SingularValues, A_pivot_of_zero_of_either_sign_counts_as_positive)
{
    for (double const zero : {0.0, -0.0})
    {
        // The column (0, 1, 0) goes to the axis X as -1, and so does the row (0, 1) to the axis Y.
        Result const column = Decompose(FromRows(zero, 0, 0, 1, 0, 0, 0, 0, 0));
        EXPECT_TRUE(AreClose(column.u.col(0), Eigen::Vector3d(0, -1, 0), k_Rounding));
        EXPECT_EQ(column.vt(0, 0), -1);
        Result const row = Decompose(FromRows(1, zero, 2, 0, 5, 0, 0, 0, 7));
        Result const same = Decompose(FromRows(1, 0, 2, 0, 5, 0, 0, 0, 7));
        EXPECT_EQ(row.vt, same.vt);
        EXPECT_EQ(row.u, same.u);
    }
}

TEST(SingularValues, Every_matrix_of_minus_one_zero_and_one)
{
    Matrix a;
    for (int code = 0; code < 19683; ++code)
    {
        int digits = code;
        for (int i = 0; i < 9; ++i, digits /= 3)
        {
            a(i / 3, i % 3) = digits % 3 - 1;
        }
        ExpectDecomposition(a);
        if (code % 7 == 0)
        {
            ExpectDecomposition(0x1p100 * a);
            ExpectDecomposition(0x1p-100 * a);
        }
        ASSERT_FALSE(HasFailure());
    }
}

TEST(SingularValues, A_vanishing_value_before_the_last_is_split_off)
{
    // Bidiagonal, so that the value 0 on the diagonal reaches the iteration with its neighbour beside it.
    for (double const first : {0.0, 1e-17, 2.0})
    {
        for (double const middle : {0.0, -1e-17, 3.0})
        {
            for (double const last : {0.0, 1e-17, -4.0})
            {
                for (double const e1 : {0.0, 1e-17, 5.0})
                {
                    for (double const e2 : {0.0, -1e-17, 6.0})
                    {
                        ExpectDecomposition(FromRows(first, e1, 0, 0, middle, e2, 0, 0, last));
                    }
                }
            }
        }
    }
}

TEST(SingularValues, Random_matrices)
{
    Random random(601);
    int unsorted = 0;
    for (int i = 0; i < 2000; ++i)
    {
        Matrix const a = RandomElements(random);
        Result const result = Decompose(a);
        ExpectDecomposition(a, result);
        unsorted += !(result.w(0) >= result.w(1) && result.w(1) >= result.w(2));
    }
    EXPECT_GT(unsorted, 0);
}

TEST(SingularValues, Follow_the_method_in_order_and_signs)
{
    Random random(602);
    int compared = 0;
    int sameSigns = 0;
    for (int i = 0; i < 2000; ++i)
    {
        Matrix const a = RandomElements(random);
        Eigen::Vector3d const values = ExpectedValues(a);
        if (values(2) < 1e-3 || values(0) - values(1) < 1e-2 || values(1) - values(2) < 1e-2)
        {
            continue;
        }
        SCOPED_TRACE(testing::Message() << "of\n" << a);
        PlainGolubReinsch const plain(a);
        Result const result = Decompose(a);
        EXPECT_TRUE(AreClose(result.w, plain.w, 1e-13));
        EXPECT_TRUE(AreClose(result.u.cwiseAbs(), plain.a.cwiseAbs(), 1e-11));
        EXPECT_TRUE(AreClose(result.vt.transpose().cwiseAbs(), plain.v.cwiseAbs(), 1e-11));
        ++compared;
        sameSigns += AreClose(result.u, plain.a, 1e-11) && AreClose(result.vt.transpose(), plain.v, 1e-11);
    }
    // The signs of two axes turn with the last bit of an element in one matrix of twenty-five.
    EXPECT_GT(compared, 1500);
    EXPECT_GT(sameSigns, compared * 9 / 10);
}

TEST(SingularValues, Singular_matrices)
{
    Random random(603);
    for (int i = 0; i < 1000; ++i)
    {
        Matrix a = RandomElements(random);
        a.row(random.Integer(0, 2)) = 2 * a.row(random.Integer(0, 2)) - 3 * a.row(random.Integer(0, 2));
        ExpectDecomposition(a);
        Eigen::Vector3d const x = RandomElements(random).col(0);
        Eigen::Vector3d const y = RandomElements(random).col(0);
        ExpectDecomposition(x * y.transpose());
        a.col(random.Integer(0, 2)).setZero();
        ExpectDecomposition(a);
        a.row(random.Integer(0, 2)).setZero();
        ExpectDecomposition(a);
    }
}

TEST(SingularValues, Rotations_and_mirrors)
{
    Random random(604);
    for (int i = 0; i < 1000; ++i)
    {
        Matrix const rotation = Eigen::HouseholderQR<Matrix>(RandomElements(random)).householderQ();
        ExpectDecomposition(rotation);
        ExpectDecomposition(-rotation);
        ExpectDecomposition(1e-6 * rotation);
        ExpectDecomposition(rotation * Diagonal(3, 3, -3));
        ExpectDecomposition(rotation * Diagonal(3, 3, 5));
        ExpectDecomposition(rotation * Diagonal(3, 3 + 1e-13, 3 - 1e-13) * rotation);
    }
}

TEST(SingularValues, Elements_of_many_sizes)
{
    Random random(605);
    for (int i = 0; i < 2000; ++i)
    {
        for (double const decades : {-20.0, -40.0, -160.0, -300.0})
        {
            ExpectDecomposition(Matrix::NullaryExpr([&] { return random.OverDecades(decades, 0.0); }));
        }
    }
}

TEST(SingularValues, Graded_matrices_of_rounding_errors)
{
    // Blocks in which all but one element are near the rounding error of that one, which the sweeps must still turn.
    Random random(606);
    for (int i = 0; i < 2000; ++i)
    {
        Matrix a = Matrix::NullaryExpr([&] { return random.OverDecades(-17.0, -14.0); });
        a(random.Integer(0, 2), random.Integer(0, 2)) = 1;
        ExpectDecomposition(a);
        ExpectDecomposition(0x1p-99 * a);
        ExpectDecomposition(0x1p99 * a);
        ExpectDecomposition(1e-150 * a);
    }
}

TEST(SingularValues, Tiny_and_huge_matrices)
{
    Random random(607);
    for (int i = 0; i < 500; ++i)
    {
        Matrix const a = RandomElements(random);
        Eigen::Vector3d const x = a.col(0);
        Eigen::Vector3d const y = a.col(1);
        for (double const factor : {1e-150, 1e150, 1e-30, 1e30, 1e-31, 1e31, 1e-290, 1e307})
        {
            ExpectDecomposition(factor * a);
            ExpectDecomposition(factor * (x * y.transpose()));
        }
    }
}

TEST(SingularValues, Subnormal_matrices)
{
    Random random(608);
    double const least = std::numeric_limits<double>::denorm_min();
    for (int i = 0; i < 500; ++i)
    {
        ExpectDecomposition(Matrix::NullaryExpr([&] { return least * random.Integer(-1000, 1000); }));
    }
    EXPECT_EQ(Decompose(Diagonal(least, 0, 0)).w, Eigen::Vector3d(least, 0, 0));
}

TEST(SingularValues, The_largest_finite_elements)
{
    double const most = std::numeric_limits<double>::max();
    EXPECT_EQ(Decompose(Diagonal(most, -most, most)).w, Eigen::Vector3d(most, most, most));
    // A value beyond the range is infinite; the vectors stay.
    Result const result = Decompose(Matrix::Constant(most));
    EXPECT_EQ(result.w.maxCoeff(), k_Infinity<double>);
    EXPECT_TRUE(AreClose(result.u.transpose() * result.u, Matrix::Identity(), k_Rounding));
    EXPECT_TRUE(AreClose(result.vt.transpose() * result.vt, Matrix::Identity(), k_Rounding));
}

TEST(SingularValues, A_power_of_two_changes_the_values_alone)
{
    Random random(609);
    for (int i = 0; i < 200; ++i)
    {
        Matrix const a = RandomElements(random);
        Result const result = Decompose(a);
        for (int const exponent : {-950, -102, -20, 20, 102, 950})
        {
            Result const multiple = Decompose(a * std::scalbn(1.0, exponent));
            EXPECT_EQ(multiple.u, result.u);
            EXPECT_EQ(multiple.vt, result.vt);
            EXPECT_EQ(multiple.w, Eigen::Vector3d(result.w * std::scalbn(1.0, exponent)));
        }
    }
}

TEST(SingularValues, What_is_not_finite_ends_and_gives_a_NaN)
{
    Random random(610);
    for (double const odd : {k_Nan<double>, k_Infinity<double>, -k_Infinity<double>})
    {
        for (int set = 1; set < 512; ++set)
        {
            for (Matrix a : {Matrix(Matrix::Zero()), Matrix(Matrix::Identity()), RandomElements(random),
                             Matrix(1e300 * RandomElements(random))})
            {
                for (int i = 0; i < 9; ++i)
                {
                    if ((set >> i & 1) != 0)
                    {
                        a(i / 3, i % 3) = odd;
                    }
                }
                Result const result = Decompose(a);
                EXPECT_TRUE(result.w.hasNaN()) << a;
            }
        }
    }
}

TEST(SingularValues, A_NaN_leaves_what_it_does_not_touch)
{
    // A null column is not reflected, and none of the later reflections reach its axis.
    for (double const odd : {k_Nan<double>, k_Infinity<double>})
    {
        Result const result = Decompose(Diagonal(0, odd, odd));
        EXPECT_EQ(result.w(0), 0);
        EXPECT_TRUE(std::isnan(result.w(1)));
        EXPECT_TRUE(std::isnan(result.w(2)));
    }
}

} // namespace
