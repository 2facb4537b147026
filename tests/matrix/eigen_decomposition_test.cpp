#include "matrix/fixed_matrices.h"

#include <Eigen/Eigenvalues>

#include <algorithm>
#include <array>
#include <vector>

using namespace test_support;

namespace
{

/// Opens what derived classes use.
template <typename T>
struct OpenMatrix33 : C3DMatrix33Tpl<T>
{
    using C3DMatrix33Tpl<T>::ComputeEigen;
};

/// The iteration as it is told: on whole arrays, with a loop for each part of the triangle.
class PlainJacobi
{
public:
    using Row = std::array<double, 3>;

    int Run(std::array<Row, 3> const & matrix, Row const & base, double epsilon)
    {
        a = matrix;
        v = {Row{1, 0, 0}, Row{0, 1, 0}, Row{0, 0, 1}};
        d = {a[0][0], a[1][1], a[2][2]};
        b = base;
        z = {0, 0, 0};
        for (int sweep = 1; sweep <= 50; ++sweep)
        {
            double sum = 0;
            bool below = true;
            for (auto [p, q] : pairs)
            {
                sum += std::abs(a[p][q]);
                below = below && !(std::abs(a[p][q]) >= epsilon);
            }
            if (below)
            {
                Sort();
                return 1;
            }
            for (auto [p, q] : pairs)
            {
                Visit(p, q, sweep < 4 ? sum * 0.022222222222222223 : epsilon, epsilon, sweep > 4);
            }
            for (std::size_t i = 0; i < 3; ++i)
            {
                b[i] += z[i];
                d[i] = b[i];
                z[i] = 0;
            }
        }
        return 0;
    }

    std::array<Row, 3> a;
    std::array<Row, 3> v;
    Row d;
    Row b;
    Row z;

private:
    static constexpr std::pair<std::size_t, std::size_t> pairs[] = {{0, 1}, {0, 2}, {1, 2}};

    void Visit(std::size_t p, std::size_t q, double threshold, double epsilon, bool late)
    {
        double const g = 100 * std::abs(a[p][q]);
        if (late && g < std::abs(d[p] * epsilon) && g < std::abs(d[q] * epsilon))
        {
            a[p][q] = 0;
        }
        else if (std::abs(a[p][q]) > threshold)
        {
            double h = d[q] - d[p];
            double t = a[p][q] / h;
            if (!(g < std::abs(h * epsilon)))
            {
                double const theta = 0.5 * h / a[p][q];
                t = 1 / (std::abs(theta) + std::sqrt(1 + theta * theta));
                t = theta < 0 ? -t : t;
            }
            double const c = 1 / std::sqrt(1 + t * t);
            double const s = t * c;
            double const tau = s / (1 + c);
            h = t * a[p][q];
            z[p] -= h;
            z[q] += h;
            d[p] -= h;
            d[q] += h;
            a[p][q] = 0;
            for (std::size_t j = 0; j < p; ++j)
            {
                Rotate(a[j][p], a[j][q], s, tau);
            }
            for (std::size_t j = p + 1; j < q; ++j)
            {
                Rotate(a[p][j], a[j][q], s, tau);
            }
            for (std::size_t j = q + 1; j < 3; ++j)
            {
                Rotate(a[p][j], a[q][j], s, tau);
            }
            for (std::size_t j = 0; j < 3; ++j)
            {
                Rotate(v[j][p], v[j][q], s, tau);
            }
        }
    }

    static void Rotate(double & x, double & y, double s, double tau)
    {
        double const newX = x - s * (y + tau * x);
        y = y + s * (x - tau * y);
        x = newX;
    }

    void Sort()
    {
        for (std::size_t k = 0; k < 2; ++k)
        {
            std::size_t best = k;
            for (std::size_t j = k + 1; j < 3; ++j)
            {
                best = d[j] >= d[best] ? j : best;
            }
            std::swap(d[k], d[best]);
            for (Row & row : v)
            {
                std::swap(row[k], row[best]);
            }
        }
    }
};

template <typename T>
C3DVector3Tpl<T> Diagonal(C3DMatrix33Tpl<T> const & m)
{
    return {m.Get(0, 0), m.Get(1, 1), m.Get(2, 2)};
}

template <typename T>
C3DMatrix33Tpl<T> Symmetric(T m00, T m01, T m02, T m11, T m12, T m22)
{
    return {m00, m01, m02, m01, m11, m12, m02, m12, m22};
}

template <typename T>
C3DMatrix33Tpl<T> RandomSymmetric(Random & random)
{
    auto const element = [&] { return random.Uniform<T>(T(-1), T(1)); };
    T const m00 = element();
    T const m01 = element();
    T const m02 = element();
    T const m11 = element();
    T const m12 = element();
    return Symmetric(m00, m01, m02, m11, m12, element());
}

template <typename T>
testing::AssertionResult SameVector(C3DVector3Tpl<T> const & v, T x, T y, T z)
{
    if (v.X == x && v.Y == y && v.Z == z)
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << v.X << ", " << v.Y << ", " << v.Z << " is not " << x << ", " << y << ", "
                                       << z;
}

template <typename T>
class EigenDecomposition : public testing::Test
{
protected:
    static constexpr T tolerance = sizeof(T) == sizeof(float) ? T(1e-6) : T(1e-12);
    static constexpr double rounding = static_cast<double>(std::numeric_limits<T>::epsilon());
};
TYPED_TEST_SUITE(EigenDecomposition, Scalars);

TYPED_TEST(EigenDecomposition, The_identity_exchanges_its_columns_because_a_later_equal_value_wins)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    for (TypeParam const content : {TypeParam(0), TypeParam(1), TypeParam(-7), k_Nan<TypeParam>})
    {
        M vectors;
        C3DVector3Tpl<TypeParam> values(content, content, content);
        EXPECT_EQ(IdentityMatrix<M>().GetEigenVectors(vectors, values, this->tolerance), 1);
        EXPECT_TRUE(SameVector<TypeParam>(values, 1, 1, 1));
        EXPECT_TRUE(SameBits(vectors, M(0, 1, 0, 0, 0, 1, 1, 0, 0)));
    }
}

TYPED_TEST(EigenDecomposition, A_diagonal_matrix_is_sorted_with_its_axes)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M vectors;
    C3DVector3Tpl<TypeParam> values(9, 9, 9);
    EXPECT_EQ(M(1, 0, 0, 0, 3, 0, 0, 0, 2).GetEigenVectors(vectors, values, this->tolerance), 1);
    EXPECT_TRUE(SameVector<TypeParam>(values, 3, 2, 1));
    EXPECT_TRUE(SameBits(vectors, M(0, 0, 1, 1, 0, 0, 0, 1, 0)));
}

TYPED_TEST(EigenDecomposition, Values_are_sorted_by_sign_and_magnitude)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    std::array<TypeParam, 3> diagonal = {-5, 0, 2};
    do
    {
        M vectors;
        C3DVector3Tpl<TypeParam> values(0, 0, 0);
        M const m(diagonal[0], 0, 0, 0, diagonal[1], 0, 0, 0, diagonal[2]);
        EXPECT_EQ(m.GetEigenVectors(vectors, values, this->tolerance), 1);
        EXPECT_TRUE(SameVector<TypeParam>(values, 2, 0, -5));
        EXPECT_TRUE(M().Mul(m, vectors) == M().Mul(vectors, M(2, 0, 0, 0, 0, 0, 0, 0, -5)));
    } while (std::next_permutation(diagonal.begin(), diagonal.end()));
}

TYPED_TEST(EigenDecomposition, Values_start_from_the_diagonal)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const m = Symmetric<TypeParam>(2, 1, 0, 2, 0, 1);
    M vectors;
    C3DVector3Tpl<TypeParam> values = Diagonal(m);
    EXPECT_EQ(m.GetEigenVectors(vectors, values, this->tolerance), 1);
    EXPECT_TRUE(SameVector<TypeParam>(values, 3, 1, 1));
    auto const half = static_cast<TypeParam>(std::sqrt(0.5));
    EXPECT_NEAR(vectors.Get(0, 0), half, 4 * this->rounding);
    EXPECT_NEAR(vectors.Get(1, 0), half, 4 * this->rounding);
    EXPECT_EQ(vectors.Get(2, 0), 0);
}

TYPED_TEST(EigenDecomposition, Values_that_start_from_0_go_astray)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const m = Symmetric<TypeParam>(2, 1, 0, 2, 0, 1);
    M vectors;
    C3DVector3Tpl<TypeParam> values(0, 0, 0);
    m.GetEigenVectors(vectors, values, this->tolerance);
    EXPECT_FALSE(SameVector<TypeParam>(values, 3, 1, 1));
    // The one sweep that clears the matrix changes the estimates by -1 and 1, from 0.
    EXPECT_TRUE(SameVector<TypeParam>(values, 1, 0, -1));
}

TYPED_TEST(EigenDecomposition, A_negative_zero_as_cotangent_turns_by_a_positive_angle)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const m = Symmetric<TypeParam>(2, -1, 0, 2, 0, -9);
    M vectors;
    C3DVector3Tpl<TypeParam> values = Diagonal(m);
    EXPECT_EQ(m.GetEigenVectors(vectors, values, this->tolerance), 1);
    EXPECT_TRUE(SameVector<TypeParam>(values, 3, 1, -9));
    // Of both eigenvectors the sign follows from the angle.
    EXPECT_GT(vectors.Get(0, 0), 0);
    EXPECT_LT(vectors.Get(1, 0), 0);
    EXPECT_GT(vectors.Get(0, 1), 0);
    EXPECT_GT(vectors.Get(1, 1), 0);
}

TYPED_TEST(EigenDecomposition, A_matrix_that_is_not_symmetric_gives_0_and_writes_nothing)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    auto const epsilon = TypeParam(0x1p-10);
    M const symmetric = Symmetric<TypeParam>(1, 0, 0, 3, 0, 2);
    for (int i = 0; i < 9; ++i)
    {
        if (i % 4 == 0)
        {
            continue;
        }
        for (TypeParam const difference : {epsilon, -epsilon})
        {
            M m = symmetric;
            m.GetArray()[i] = difference;
            M vectors = CountingMatrix<M>();
            C3DVector3Tpl<TypeParam> values(7, 8, 9);
            EXPECT_EQ(m.GetEigenVectors(vectors, values, epsilon), 0);
            EXPECT_TRUE(SameBits(vectors, CountingMatrix<M>()));
            EXPECT_TRUE(SameVector<TypeParam>(values, 7, 8, 9));
            m.GetArray()[i] = difference * TypeParam(0.75);
            EXPECT_EQ(m.GetEigenVectors(vectors, values, epsilon), 1);
            EXPECT_TRUE(SameVector<TypeParam>(values, 3, 2, 1));
        }
    }
}

TYPED_TEST(EigenDecomposition, A_tolerance_of_0_always_fails)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M vectors = CountingMatrix<M>();
    C3DVector3Tpl<TypeParam> values(7, 8, 9);
    EXPECT_EQ(IdentityMatrix<M>().GetEigenVectors(vectors, values, 0), 0);
    EXPECT_TRUE(SameBits(vectors, CountingMatrix<M>()));
    EXPECT_TRUE(SameVector<TypeParam>(values, 7, 8, 9));
}

TYPED_TEST(EigenDecomposition, Fifty_sweeps_without_convergence_deliver_the_last_estimates_unsorted)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    // Nothing is below a tolerance of 0, and a diagonal matrix is never turned.
    TypeParam const a[3][3] = {{1, 0, 0}, {0, 3, 0}, {0, 0, 2}};
    TypeParam out[3][3];
    C3DVector3Tpl<TypeParam> values(7, 9, 8);
    EXPECT_EQ(OpenMatrix33<TypeParam>().ComputeEigen(a, out, values, 0), 0);
    EXPECT_TRUE(SameVector<TypeParam>(values, 7, 9, 8));
    EXPECT_TRUE(SameBits(M().Set(out), IdentityMatrix<M>()));

    TypeParam const turned[3][3] = {{2, 1, 0}, {1, 2, 0}, {0, 0, 1}};
    values.Set(2, 2, 1);
    EXPECT_EQ(OpenMatrix33<TypeParam>().ComputeEigen(turned, out, values, 0), 0);
    EXPECT_TRUE(SameVector<TypeParam>(values, 1, 3, 1));
}

TYPED_TEST(EigenDecomposition, GetEigenVectors_delivers_the_estimates_of_a_failure_too)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    // Values so large that the changes vanish in them keep all estimates equal. Every angle is then the eighth of a
    // turn, which no more than halves what is left in two steps: not enough for this tolerance.
    auto const huge = TypeParam(0x1p60);
    M const m = Symmetric<TypeParam>(1, 0.5, 0.25, 2, 0.125, 3);
    M vectors = CountingMatrix<M>();
    C3DVector3Tpl<TypeParam> values(huge, huge, huge);
    EXPECT_EQ(m.GetEigenVectors(vectors, values, std::numeric_limits<TypeParam>::denorm_min()), 0);
    EXPECT_TRUE(SameVector(values, huge, huge, huge));
    Eigen::Matrix3d const v = ToEigen(vectors);
    EXPECT_TRUE(AreClose(v.transpose() * v, Eigen::Matrix3d::Identity(), 128 * this->rounding));
}

TYPED_TEST(EigenDecomposition, ComputeEigen_reads_the_upper_triangle_alone)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    TypeParam const whole[3][3] = {{4, 1, 2}, {1, 5, 3}, {2, 3, 6}};
    TypeParam const upper[3][3] = {{4, 1, 2}, {k_Nan<TypeParam>, 5, 3}, {77, k_Infinity<TypeParam>, 6}};
    TypeParam fromWhole[3][3];
    TypeParam fromUpper[3][3];
    C3DVector3Tpl<TypeParam> valuesOfWhole(4, 5, 6);
    C3DVector3Tpl<TypeParam> valuesOfUpper(4, 5, 6);
    OpenMatrix33<TypeParam> const matrix;
    EXPECT_EQ(matrix.ComputeEigen(whole, fromWhole, valuesOfWhole, this->tolerance), 1);
    EXPECT_EQ(matrix.ComputeEigen(upper, fromUpper, valuesOfUpper, this->tolerance), 1);
    EXPECT_TRUE(SameBits(M().Set(fromWhole), M().Set(fromUpper)));
    EXPECT_TRUE(SameVector(valuesOfUpper, valuesOfWhole.X, valuesOfWhole.Y, valuesOfWhole.Z));
}

TYPED_TEST(EigenDecomposition, Elements_below_the_tolerance_count_as_zero)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    auto const epsilon = TypeParam(0x1p-10);
    TypeParam const below = std::nextafter(epsilon, TypeParam(0));
    M vectors;
    C3DVector3Tpl<TypeParam> values(0, 0, 0);
    EXPECT_EQ(Symmetric<TypeParam>(3, below, -below, 2, below, 1).GetEigenVectors(vectors, values, epsilon), 1);
    EXPECT_TRUE(SameVector<TypeParam>(values, 3, 2, 1));
    EXPECT_TRUE(SameBits(vectors, IdentityMatrix<M>()));
    for (int i = 0; i < 3; ++i)
    {
        TypeParam const e[3] = {i == 0 ? epsilon : 0, i == 1 ? -epsilon : 0, i == 2 ? epsilon : 0};
        M const m = Symmetric<TypeParam>(3, e[0], e[1], 2, e[2], 1);
        values = Diagonal(m);
        EXPECT_EQ(m.GetEigenVectors(vectors, values, epsilon), 1);
        EXPECT_FALSE(SameBits(vectors, IdentityMatrix<M>()));
    }
}

TYPED_TEST(EigenDecomposition, A_NaN_counts_as_converged)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    TypeParam const nan = k_Nan<TypeParam>;
    for (M const & m : {Symmetric<TypeParam>(3, nan, 0, 2, 0, 1), Symmetric<TypeParam>(3, 0, nan, 2, 0, 1),
                        Symmetric<TypeParam>(3, 0, 0, 2, nan, 1), Symmetric<TypeParam>(3, nan, nan, 2, nan, 1)})
    {
        M vectors;
        C3DVector3Tpl<TypeParam> values(7, 8, 9);
        EXPECT_EQ(m.GetEigenVectors(vectors, values, this->tolerance), 1);
        EXPECT_TRUE(SameVector<TypeParam>(values, 3, 2, 1));
        EXPECT_TRUE(SameBits(vectors, IdentityMatrix<M>()));
    }
}

TYPED_TEST(EigenDecomposition, A_NaN_among_the_values_is_passed_over_by_the_sort)
{
    C3DMatrix33Tpl<TypeParam> vectors;
    C3DVector3Tpl<TypeParam> values(1, 2, 3);
    auto const m = Symmetric<TypeParam>(1, 0, 0, k_Nan<TypeParam>, 0, 2);
    EXPECT_EQ(m.GetEigenVectors(vectors, values, this->tolerance), 1);
    EXPECT_EQ(values.X, 2);
    EXPECT_TRUE(std::isnan(values.Y));
    EXPECT_EQ(values.Z, 1);
    EXPECT_TRUE(vectors == C3DMatrix33Tpl<TypeParam>(0, 0, 1, 0, 1, 0, 1, 0, 0));
}

TYPED_TEST(EigenDecomposition, A_NaN_is_not_turned_away)
{
    // The first three sweeps have a threshold that is none, above which nothing lies. The fourth turns the one element
    // that is a number, by an eighth of a circle.
    TypeParam const nan = k_Nan<TypeParam>;
    TypeParam const a[3][3] = {{1, nan, 2}, {nan, 1, 0}, {2, 0, 1}};
    TypeParam vectors[3][3];
    C3DVector3Tpl<TypeParam> values(1, 1, 1);
    EXPECT_EQ(OpenMatrix33<TypeParam>().ComputeEigen(a, vectors, values, this->tolerance), 1);
    EXPECT_TRUE(SameVector<TypeParam>(values, 3, 1, -1));
    TypeParam const half = std::sqrt(TypeParam(0.5));
    TypeParam const expected[3][3] = {{half, 0, half}, {0, 1, 0}, {half, 0, -half}};
    for (int r = 0; r < 3; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            EXPECT_NEAR(vectors[r][c], expected[r][c], this->tolerance) << r << ", " << c;
        }
    }
}

TYPED_TEST(EigenDecomposition, Ends_for_infinite_elements)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    TypeParam const a[3][3] = {{1, k_Infinity<TypeParam>, 1}, {0, 1, -k_Infinity<TypeParam>}, {0, 0, 1}};
    TypeParam out[3][3];
    C3DVector3Tpl<TypeParam> values(1, 1, 1);
    int const result = OpenMatrix33<TypeParam>().ComputeEigen(a, out, values, this->tolerance);
    EXPECT_TRUE(result == 0 || result == 1);
    EXPECT_TRUE(std::isnan(M().Set(out).Get(0, 0)));
}

TYPED_TEST(EigenDecomposition, The_vectors_may_be_written_over_the_matrix)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    M const source = Symmetric<TypeParam>(4, 1, 2, 5, 3, 6);
    M apart;
    C3DVector3Tpl<TypeParam> values = Diagonal(source);
    ASSERT_EQ(source.GetEigenVectors(apart, values, this->tolerance), 1);
    M m = source;
    C3DVector3Tpl<TypeParam> sameValues = Diagonal(source);
    EXPECT_EQ(m.GetEigenVectors(m, sameValues, this->tolerance), 1);
    EXPECT_TRUE(SameBits(m, apart));
    EXPECT_TRUE(SameVector(sameValues, values.X, values.Y, values.Z));
}

TYPED_TEST(EigenDecomposition, Agrees_with_Eigen_on_random_symmetric_matrices)
{
    using M = C3DMatrix33Tpl<TypeParam>;
    Random random(222);
    double const limit = 16 * this->rounding;
    for (int i = 0; i < 500; ++i)
    {
        M const m = RandomSymmetric<TypeParam>(random);
        M vectors;
        C3DVector3Tpl<TypeParam> values = Diagonal(m);
        ASSERT_EQ(m.GetEigenVectors(vectors, values, this->tolerance), 1);
        Eigen::Matrix3d const wide = ToEigen(m);
        Eigen::Vector3d const expected = Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d>(wide).eigenvalues().reverse();
        Eigen::Vector3d const found(static_cast<double>(values.X), static_cast<double>(values.Y),
                                    static_cast<double>(values.Z));
        EXPECT_TRUE(AreClose(found, expected, limit));
        Eigen::Matrix3d const v = ToEigen(vectors);
        // An element that counts as zero turns the vectors by up to its magnitude over the gap of the eigenvalues, but
        // what it adds to the residual is no more than itself.
        EXPECT_TRUE(AreClose(wide * v, v * expected.asDiagonal(), limit + 2 * static_cast<double>(this->tolerance)));
        EXPECT_TRUE(AreClose(v.transpose() * v, Eigen::Matrix3d::Identity(), limit));
    }
}

/// Runs the library and the plain iteration on the same numbers and compares them bit by bit.
template <typename T>
int CompareWithPlainIteration(C3DMatrix33Tpl<T> const & m, C3DVector3Tpl<T> const & start, T epsilon)
{
    PlainJacobi plain;
    std::array<PlainJacobi::Row, 3> matrix;
    for (std::size_t i = 0; i < 9; ++i)
    {
        matrix[i / 3][i % 3] = static_cast<double>(m.GetArray()[i]);
    }
    int const expected =
        plain.Run(matrix, {static_cast<double>(start.X), static_cast<double>(start.Y), static_cast<double>(start.Z)},
                  static_cast<double>(epsilon));
    C3DMatrix33Tpl<T> vectors;
    C3DVector3Tpl<T> values = start;
    EXPECT_EQ(OpenMatrix33<T>().ComputeEigen(reinterpret_cast<T const(*)[3]>(m.GetArray()),
                                             reinterpret_cast<T(*)[3]>(vectors.GetArray()), values, epsilon),
              expected);
    for (std::size_t i = 0; i < 3; ++i)
    {
        T const value = static_cast<T>(plain.d[i]);
        EXPECT_EQ(std::memcmp(values.GetArray() + i, &value, sizeof value), 0) << values.GetArray()[i] << ' ' << value;
        for (std::size_t j = 0; j < 3; ++j)
        {
            EXPECT_EQ(vectors.GetArray()[3 * i + j], static_cast<T>(plain.v[i][j]));
        }
    }
    return expected;
}

TYPED_TEST(EigenDecomposition, Follows_the_iteration_for_any_start_of_the_values)
{
    Random random(223);
    int converged = 0;
    for (int i = 0; i < 1000; ++i)
    {
        auto m = RandomSymmetric<TypeParam>(random);
        m.Mul(random.OverDecades<TypeParam>(-2, 4));
        C3DVector3Tpl<TypeParam> const start(random.OverDecades<TypeParam>(-3, 3), random.OverDecades<TypeParam>(-3, 3),
                                             random.OverDecades<TypeParam>(-3, 3));
        converged += CompareWithPlainIteration(m, start, this->tolerance);
        converged += CompareWithPlainIteration(m, Diagonal(m), this->tolerance);
    }
    EXPECT_GE(converged, 1000);
}

TYPED_TEST(EigenDecomposition, Follows_the_iteration_where_off_diagonal_elements_are_of_many_sizes)
{
    Random random(224);
    for (int i = 0; i < 1000; ++i)
    {
        auto const element = [&] { return random.OverDecades<TypeParam>(-8, 2); };
        auto const m =
            C3DMatrix33Tpl<TypeParam>(element(), element(), element(), 0, element(), element(), 0, 0, element());
        CompareWithPlainIteration(m, Diagonal(m), std::abs(random.OverDecades<TypeParam>(-12, -1)));
        CompareWithPlainIteration(m, C3DVector3Tpl<TypeParam>(0, 0, 0), TypeParam(0));
    }
}

TYPED_TEST(EigenDecomposition, Gives_up_after_exactly_fifty_sweeps)
{
    // Every sweep turns these by the same angles, so that the vectors tell how many there were.
    auto const huge = TypeParam(0x1p60);
    auto const m = Symmetric<TypeParam>(1, 0.5, 0.25, 2, 0.125, 3);
    EXPECT_EQ(CompareWithPlainIteration(m, C3DVector3Tpl<TypeParam>(huge, huge, huge),
                                        std::numeric_limits<TypeParam>::denorm_min()),
              0);
}

TEST(EigenDecompositionFloat, Is_the_decomposition_in_double_rounded_once)
{
    Random random(225);
    for (int i = 0; i < 300; ++i)
    {
        auto const narrow = RandomSymmetric<float>(random);
        C3DMatrix33Tpl<double> wide;
        for (int k = 0; k < 9; ++k)
        {
            wide.GetArray()[k] = static_cast<double>(narrow.GetArray()[k]);
        }
        C3DMatrix33Tpl<float> vectors;
        C3DMatrix33Tpl<double> wideVectors;
        C3DVector3Tpl<float> values = Diagonal(narrow);
        C3DVector3Tpl<double> wideValues = Diagonal(wide);
        ASSERT_EQ(narrow.GetEigenVectors(vectors, values, 1e-6F), 1);
        ASSERT_EQ(wide.GetEigenVectors(wideVectors, wideValues, static_cast<double>(1e-6F)), 1);
        for (int k = 0; k < 9; ++k)
        {
            EXPECT_EQ(vectors.GetArray()[k], static_cast<float>(wideVectors.GetArray()[k]));
        }
        EXPECT_TRUE(SameVector(values, static_cast<float>(wideValues.X), static_cast<float>(wideValues.Y),
                               static_cast<float>(wideValues.Z)));
    }
}

} // namespace
