#include "math/map_points_in_ref.h"
#include "math/platform/result.h"

#include "vector_checks.h"

#include <Eigen/Dense>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace
{

using namespace geometry_test;

/// Any affine matrix, mirrored or not, sheared and scaled.
Matrix RandomMatrix(Random & random)
{
    Matrix matrix;
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            matrix.Set(r, c, random.Uniform(-2.0, 2.0));
        }
    }
    return matrix;
}

std::vector<Vector> RandomPoints(Random & random, std::size_t count)
{
    std::vector<Vector> points(count);
    for (Vector & point : points)
    {
        point = RandomVector(random, 10);
    }
    return points;
}

/// Maps a copy of the points and compares it, bit for bit, with the points through this matrix one by one.
void ExpectMappedBy(Matrix const & map, std::vector<Vector> points, Matrix const * first, Matrix const * second,
                    int firstToSecond)
{
    std::vector<Vector> const before = points;
    EXPECT_EQ(F3DMapPointsInRef(points.data(), points.size(), first, second, firstToSecond), S_OK);
    for (std::size_t i = 0; i < points.size(); ++i)
    {
        EXPECT_TRUE(SameBits(points[i], Vector().Mul(before[i], map))) << "point " << i << " of " << points.size();
    }
}

Matrix Inverse(Matrix const & matrix)
{
    Matrix inverse;
    EXPECT_EQ(inverse.Invert(matrix), 1);
    return inverse;
}

Matrix Product(Matrix const & a, Matrix const & b)
{
    return Matrix().Mul(a, b);
}

/// Twice as large, then a quarter turn from X to Y, then moved.
Matrix MakeScaledQuarterTurn()
{
    return {0, 2, 0, 0, -2, 0, 0, 0, 0, 0, 2, 0, 10, 20, 30, 1};
}

Matrix MakeTranslation(double x, double y, double z)
{
    return Matrix().SetTranslation(Vector(x, y, z));
}

Eigen::Matrix4d ToEigen(Matrix const & matrix)
{
    Eigen::Matrix4d result;
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            result(r, c) = matrix.Get(r, c);
        }
    }
    return result;
}

Eigen::RowVector4d ToHomogeneous(Vector const & v)
{
    return {v.X, v.Y, v.Z, 1};
}

/// What it does not read stays: the points past the end of the array.
Vector const k_Guard(77, 78, 79);

} // namespace

TEST(MapPointsInRef, Without_a_first_frame_points_go_to_the_world_by_the_second)
{
    Vector point(1, 2, 3);
    Matrix const second = MakeScaledQuarterTurn();
    EXPECT_EQ(F3DMapPointsInRef(&point, 1, nullptr, &second, 0), S_OK);
    EXPECT_TRUE(SameBits(point, Vector(6, 22, 36)));
}

TEST(MapPointsInRef, Without_a_first_frame_points_come_from_the_world_by_the_inverse_of_the_second)
{
    Matrix const second = MakeScaledQuarterTurn();
    for (int const firstToSecond : {1, -1, 256})
    {
        Vector point(6, 22, 36);
        EXPECT_EQ(F3DMapPointsInRef(&point, 1, nullptr, &second, firstToSecond), S_OK);
        EXPECT_DOUBLE_EQ(point.X, 1);
        EXPECT_DOUBLE_EQ(point.Y, 2);
        EXPECT_DOUBLE_EQ(point.Z, 3);
    }
}

TEST(MapPointsInRef, Points_of_the_first_frame_go_through_the_world_to_the_second)
{
    Matrix const first = MakeTranslation(5, 20, 33);
    Matrix const second = MakeScaledQuarterTurn();
    Vector point(1, 2, 3); // (6, 22, 36) in the world
    F3DMapPointsInRef(&point, 1, &first, &second, 1);
    EXPECT_DOUBLE_EQ(point.X, 1);
    EXPECT_DOUBLE_EQ(point.Y, 2);
    EXPECT_DOUBLE_EQ(point.Z, 3);
}

TEST(MapPointsInRef, Points_of_the_second_frame_go_through_the_world_to_the_first)
{
    Matrix const first = MakeTranslation(5, 21, 35);
    Matrix const second = MakeScaledQuarterTurn();
    Vector point(1, 2, 3); // (6, 22, 36) in the world
    F3DMapPointsInRef(&point, 1, &first, &second, 0);
    EXPECT_DOUBLE_EQ(point.X, 1);
    EXPECT_DOUBLE_EQ(point.Y, 1);
    EXPECT_DOUBLE_EQ(point.Z, 1);
}

TEST(MapPointsInRef, Every_count_gives_the_bits_of_the_points_alone)
{
    Random random(570);
    Matrix const first = RandomMatrix(random);
    Matrix const second = RandomMatrix(random);
    Matrix const map = Product(first, Inverse(second));
    for (std::size_t count = 0; count <= 70; ++count)
    {
        // Starting within an array, so that no alignment helps, with guards before and behind.
        std::vector<Vector> points = RandomPoints(random, count + 2);
        points.front() = k_Guard;
        points.back() = k_Guard;
        std::vector<Vector> const before = points;
        EXPECT_EQ(F3DMapPointsInRef(points.data() + 1, count, &first, &second, 1), S_OK);
        for (std::size_t i = 1; i <= count; ++i)
        {
            EXPECT_TRUE(SameBits(points[i], Vector().Mul(before[i], map))) << "point " << i << " of " << count;
        }
        EXPECT_TRUE(SameBits(points.front(), k_Guard));
        EXPECT_TRUE(SameBits(points.back(), k_Guard));
    }
}

TEST(MapPointsInRef, All_four_mappings_have_the_bits_of_their_one_matrix)
{
    Random random(571);
    for (int i = 0; i < 200; ++i)
    {
        Matrix const first = RandomMatrix(random);
        Matrix const second = RandomMatrix(random);
        std::vector<Vector> const points = RandomPoints(random, 13);
        ExpectMappedBy(second, points, nullptr, &second, 0);
        ExpectMappedBy(Inverse(second), points, nullptr, &second, 1);
        ExpectMappedBy(Product(second, Inverse(first)), points, &first, &second, 0);
        ExpectMappedBy(Product(first, Inverse(second)), points, &first, &second, 1);
    }
}

TEST(MapPointsInRef, Both_ways_agree_with_independent_linear_algebra)
{
    Random random(572);
    int compared = 0;
    for (int i = 0; i < 500; ++i)
    {
        Matrix const first = RandomMatrix(random);
        Matrix const second = RandomMatrix(random);
        double const least = std::fmin(std::abs(first.GetDet33()), std::abs(second.GetDet33()));
        if (least < 0.1)
        {
            continue;
        }
        ++compared;
        Vector const original = RandomVector(random, 10);
        Vector point = original;
        F3DMapPointsInRef(&point, 1, &first, &second, 1);
        // The point of the world is the same in both frames.
        Eigen::RowVector4d const world = ToHomogeneous(original) * ToEigen(first);
        EXPECT_LE((ToHomogeneous(point) * ToEigen(second) - world).norm(), 1e-10);
        F3DMapPointsInRef(&point, 1, &first, &second, 0);
        EXPECT_LE(GetDistance(point, original), 1e-9);
    }
    EXPECT_GT(compared, 400);
}

// At every place of the array: the row that the zero would bring in is infinite.
TEST(MapPointsInRef, Components_of_0_meet_no_infinite_element)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        Matrix second = MakeScaledQuarterTurn();
        second.SetRow(axis, k_Infinity, -k_Infinity, k_Nan, 0);
        Matrix clean = MakeScaledQuarterTurn();
        clean.SetRow(axis, 0, 0, 0, 0);
        for (double const zero : {0.0, -0.0, k_Nan})
        {
            std::vector<Vector> points;
            for (int i = 0; i < 37; ++i)
            {
                points.push_back(Vector(i + 1.0, i + 2.0, i + 3.0).Set(axis, zero));
            }
            std::vector<Vector> const before = points;
            F3DMapPointsInRef(points.data(), points.size(), nullptr, &second, 0);
            for (std::size_t i = 0; i < points.size(); ++i)
            {
                EXPECT_TRUE(SameBits(points[i], Vector().Mul(before[i], clean)));
                EXPECT_TRUE(std::isfinite(points[i].X) && std::isfinite(points[i].Y) && std::isfinite(points[i].Z));
            }
        }
    }
}

TEST(MapPointsInRef, Only_the_zeros_of_an_array_are_skipped)
{
    Matrix second;
    second.SetRow(0, k_Infinity, 0, 0, 0);
    for (std::size_t hit = 0; hit < 37; ++hit)
    {
        std::vector<Vector> points(37, Vector(0, 1, 2));
        points[hit].X = std::numeric_limits<double>::denorm_min();
        F3DMapPointsInRef(points.data(), points.size(), nullptr, &second, 0);
        for (std::size_t i = 0; i < points.size(); ++i)
        {
            EXPECT_EQ(points[i].X, i == hit ? k_Infinity : 0);
            EXPECT_EQ(points[i].Z, 2);
        }
    }
}

TEST(MapPointsInRef, Special_numbers_have_the_bits_of_the_points_alone)
{
    Random random(573);
    for (int i = 0; i < 100; ++i)
    {
        Matrix second;
        for (int r = 0; r < 4; ++r)
        {
            for (int c = 0; c < 3; ++c)
            {
                second.Set(r, c, random.NumberOrSpecial());
            }
        }
        std::vector<Vector> points(23);
        for (Vector & point : points)
        {
            double const x = random.NumberOrSpecial();
            double const y = random.NumberOrSpecial();
            point.Set(x, y, random.NumberOrSpecial());
        }
        ExpectMappedBy(second, points, nullptr, &second, 0);
    }
}

TEST(MapPointsInRef, A_translation_of_negative_zero_is_kept_for_the_origin)
{
    Matrix const second = MakeTranslation(-0.0, -0.0, 0.0);
    std::vector<Vector> points(9, Vector(0, -0.0, 0));
    F3DMapPointsInRef(points.data(), points.size(), nullptr, &second, 0);
    for (Vector const & point : points)
    {
        EXPECT_TRUE(SameBits(point, Vector(-0.0, -0.0, 0.0)));
    }
}

TEST(MapPointsInRef, Nothing_divides_by_a_fourth_coordinate)
{
    Matrix second = MakeScaledQuarterTurn();
    second.SetCol(3, 1, 2, 3, 4);
    Vector point(1, 2, 3);
    F3DMapPointsInRef(&point, 1, nullptr, &second, 0);
    EXPECT_TRUE(SameBits(point, Vector(6, 22, 36)));
}

TEST(MapPointsInRef, Without_points_nothing_is_written)
{
    Matrix const first = MakeTranslation(1, 2, 3);
    Matrix const second = MakeScaledQuarterTurn();
    Vector guard = k_Guard;
    for (int const firstToSecond : {0, 1})
    {
        EXPECT_EQ(F3DMapPointsInRef(&guard, 0, &first, &second, firstToSecond), S_OK);
        EXPECT_EQ(F3DMapPointsInRef(&guard, 0, nullptr, &second, firstToSecond), S_OK);
        EXPECT_EQ(F3DMapPointsInRef(nullptr, 0, &first, &second, firstToSecond), S_OK);
    }
    EXPECT_TRUE(SameBits(guard, k_Guard));
}

TEST(MapPointsInRef, Mirrored_frames_map_like_others)
{
    Random random(574);
    std::vector<Vector> const points = RandomPoints(random, 11);
    for (int mirrors = 0; mirrors < 64; ++mirrors)
    {
        auto const sign = [mirrors](int bit) { return (mirrors >> bit & 1) != 0 ? -1.0 : 1.0; };
        Matrix first = MakeTranslation(1, 2, 3);
        first.AddScaling(Vector(2 * sign(0), 3 * sign(1), 4 * sign(2)), 1);
        Matrix second = MakeScaledQuarterTurn();
        second.AddScaling(Vector(sign(3), sign(4), sign(5)), 1);
        ExpectMappedBy(Product(first, Inverse(second)), points, &first, &second, 1);
        ExpectMappedBy(Product(second, Inverse(first)), points, &first, &second, 0);
        std::vector<Vector> back = points;
        F3DMapPointsInRef(back.data(), back.size(), &first, &second, 1);
        F3DMapPointsInRef(back.data(), back.size(), &first, &second, 0);
        for (std::size_t i = 0; i < points.size(); ++i)
        {
            EXPECT_LE(GetDistance(back[i], points[i]), 1e-13);
        }
    }
}

// The bits that tell of mirrored axes are no part of the mapping, right or wrong.
TEST(MapPointsInRef, Stale_mirror_bits_do_not_matter)
{
    Matrix second = MakeScaledQuarterTurn();
    Matrix stale = second;
    stale.AddScaling(Vector(-1, -1, -1), 1);
    for (int r = 0; r < 3; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            stale.Set(r, c, second.Get(r, c));
        }
    }
    ASSERT_NE(stale.GetSclSignBits(), second.GetSclSignBits());
    for (int const firstToSecond : {0, 1})
    {
        Vector point(1, 2, 3);
        Vector byStale(1, 2, 3);
        F3DMapPointsInRef(&point, 1, &second, &second, firstToSecond);
        F3DMapPointsInRef(&byStale, 1, &stale, &stale, firstToSecond);
        EXPECT_TRUE(SameBits(point, byStale));
    }
}

TEST(MapPointsInRef, A_singular_frame_to_map_into_counts_as_the_world)
{
    Random random(575);
    std::vector<Vector> const points = RandomPoints(random, 7);
    Matrix const sound = MakeScaledQuarterTurn();
    Matrix flat = MakeScaledQuarterTurn();
    flat.SetRow(2, 0, 0, 0, 0);
    ExpectMappedBy(Matrix(), points, nullptr, &flat, 1);
    ExpectMappedBy(sound, points, &sound, &flat, 1);
    ExpectMappedBy(sound, points, &flat, &sound, 0);
    // As the frame that points come from it needs no inverse.
    ExpectMappedBy(flat, points, nullptr, &flat, 0);
    ExpectMappedBy(Product(flat, Inverse(sound)), points, &flat, &sound, 1);
    ExpectMappedBy(Product(flat, Inverse(sound)), points, &sound, &flat, 0);
}

TEST(MapPointsInRef, The_matrices_stay)
{
    Matrix const first = MakeTranslation(1, 2, 3);
    Matrix const second = MakeScaledQuarterTurn();
    Matrix const firstBefore = first;
    Matrix const secondBefore = second;
    Vector point(1, 2, 3);
    F3DMapPointsInRef(&point, 1, &first, &second, 1);
    F3DMapPointsInRef(&point, 1, &first, &second, 0);
    EXPECT_EQ(ToEigen(first), ToEigen(firstBefore));
    EXPECT_EQ(ToEigen(second), ToEigen(secondBefore));
}
