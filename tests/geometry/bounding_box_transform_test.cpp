/// The bounding box of transformed corners and of transformed points, against brute force.

#include "geometry/box_checks.h"
#include "math/bounding_box.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

using namespace geometry_test;

namespace
{

std::vector<Vector> RandomPoints(Random & random, unsigned long count)
{
    std::vector<Vector> points;
    while (points.size() < count)
    {
        points.push_back(RandomVector(random, 5));
    }
    return points;
}

/// A point as a row through the matrix, for numbers that are all finite.
Vector Through(Matrix const & m, Vector const & p)
{
    Vector result;
    for (int c = 0; c < 3; ++c)
    {
        result.Set(c, m.Get(3, c) + p.X * m.Get(0, c) + p.Y * m.Get(1, c) + p.Z * m.Get(2, c));
    }
    return result;
}

std::vector<Vector> AllThrough(Matrix const & m, std::vector<Vector> const & points)
{
    std::vector<Vector> result;
    for (Vector const & point : points)
    {
        result.push_back(Through(m, point));
    }
    return result;
}

struct Extent
{
    Vector low{k_Infinity, k_Infinity, k_Infinity};
    Vector high{-k_Infinity, -k_Infinity, -k_Infinity};
};

Extent ExtentOf(std::vector<Vector> const & points)
{
    Extent extent;
    for (Vector const & point : points)
    {
        for (unsigned long axis = 0; axis < 3; ++axis)
        {
            extent.low[axis] = std::min(extent.low[axis], point[axis]);
            extent.high[axis] = std::max(extent.high[axis], point[axis]);
        }
    }
    return extent;
}

std::vector<Vector> CornersOf(Vector const & low, Vector const & high)
{
    std::vector<Vector> corners;
    for (int i = 0; i < 8; ++i)
    {
        corners.emplace_back((i & 4) != 0 ? high.X : low.X, (i & 2) != 0 ? high.Y : low.Y,
                             (i & 1) != 0 ? high.Z : low.Z);
    }
    return corners;
}

/// Scale, rotation, mirror, shear and translation, by one of them at a time and all together.
std::vector<Matrix> MakeMatrices()
{
    std::vector<Matrix> matrices(7);
    matrices[1] = Matrix(2, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 3, 0, 0, 0, 0, 1);
    matrices[2] = Matrix(0.8, 0.6, 0, 0, -0.6, 0.8, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    matrices[3] = Matrix(-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, -2, 0, 0, 0, 0, 1);
    matrices[4] = Matrix(1, 0, 0, 0, 2, 1, 0, 0, -1, 3, 1, 0, 0, 0, 0, 1);
    matrices[5] = Matrix(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 7, -8, 9, 1);
    Random random(541);
    matrices[6] = RandomAffineMap(random).ForRows();
    return matrices;
}

/// The widest block, the sizes beside it, and more than two of it.
constexpr unsigned long k_Counts[] = {1, 2, 3, 4, 5, 7, 8, 9, 31, 63, 64, 65, 127, 128, 129, 200};

} // namespace

TEST(BoundingBoxTransform, Box_of_the_transformed_corners)
{
    Random random(542);
    for (Matrix const & matrix : MakeMatrices())
    {
        for (int i = 0; i < 50; ++i)
        {
            Extent const extent = ExtentOf(RandomPoints(random, 2));
            C3DBBox box(extent.low, extent.high);
            EXPECT_EQ(&box.SetToBBoxOfTransformedBBox(matrix), &box);
            Extent const expected = ExtentOf(AllThrough(matrix, CornersOf(extent.low, extent.high)));
            EXPECT_TRUE(HasBounds(box, expected.low, expected.high));
        }
    }
}

TEST(BoundingBoxTransform, Empty_and_inverted_boxes_are_nothing_special)
{
    C3DBBox empty;
    empty.SetToBBoxOfTransformedBBox(MakeMatrices()[5]);
    EXPECT_TRUE(HasBounds(empty, Vector(7, -8, 9), Vector(7, -8, 9)));
    C3DBBox inverted(Vector(1, 2, 3), Vector(-1, -2, -3));
    inverted.SetToBBoxOfTransformedBBox(Matrix());
    EXPECT_TRUE(HasBounds(inverted, Vector(-1, -2, -3), Vector(1, 2, 3))) << "its corners are those of an upright one";
}

TEST(BoundingBoxTransform, Zero_bound_times_an_infinite_entry_adds_nothing)
{
    for (int row = 0; row < 3; ++row)
    {
        Vector low(-1, -1, -1);
        Vector high(1, 1, 1);
        low.Set(row, 0.0);
        high.Set(row, -0.0);
        C3DBBox box(low, high);
        box.SetToBBoxOfTransformedBBox(WithInfiniteRow(row));
        EXPECT_TRUE(HasBoundsNear(box, low, high, 0)) << row;
    }
}

TEST(BoundingBoxTransform, NaN_of_the_matrix_gets_into_the_minimum_of_later_corners)
{
    // Only corners with Z at the maximum read the row of NaNs, since the minimum is 0. The last corner, 7, reads none.
    Matrix matrix;
    matrix.SetRow(2, k_Nan, k_Nan, k_Nan, 0);
    C3DBBox box(Vector(1, 2, 0), Vector(3, 4, 5));
    box.SetToBBoxOfTransformedBBox(matrix);
    EXPECT_TRUE(HasBounds(box, Vector(3, 4, 0), Vector(3, 4, 0)));
    // Upside down, the last corner is one of them.
    C3DBBox inverted(Vector(1, 2, 5), Vector(3, 4, 0));
    inverted.SetToBBoxOfTransformedBBox(matrix);
    EXPECT_TRUE(HasBounds(inverted, Vector(k_Nan, k_Nan, k_Nan), Vector(k_Nan, k_Nan, k_Nan)));
}

TEST(BoundingBoxOfPoints, Tight_form_is_the_extent_of_the_transformed_points)
{
    Random random(543);
    for (Matrix const & matrix : MakeMatrices())
    {
        for (unsigned long const count : k_Counts)
        {
            std::vector<Vector> const points = RandomPoints(random, count);
            Extent const expected = ExtentOf(AllThrough(matrix, points));
            C3DBBox box(100.0);
            EXPECT_EQ(&box.ComputeInSpaceFromVectorArray(points.data(), count, matrix, 1), &box);
            if (count > 1)
            {
                EXPECT_TRUE(HasBounds(box, expected.low, expected.high)) << count;
            }
        }
    }
}

TEST(BoundingBoxOfPoints, Tight_form_finds_an_extreme_point_wherever_it_stands)
{
    Random random(544);
    for (unsigned long const count : {2UL, 63UL, 64UL, 65UL, 129UL})
    {
        for (unsigned long extreme = 0; extreme < count; ++extreme)
        {
            std::vector<Vector> points = RandomPoints(random, count);
            points[extreme] = Vector(100, -100, 100);
            C3DBBox box;
            box.ComputeInSpaceFromVectorArray(points.data(), count, Matrix(), 1);
            EXPECT_TRUE(box.GetMaxX() == 100 && box.GetMinY() == -100 && box.GetMaxZ() == 100 && box.GetMaxY() <= 5)
                << extreme << " of " << count;
        }
    }
}

TEST(BoundingBoxOfPoints, Tight_form_reads_no_point_beyond_the_count)
{
    for (unsigned long const count : {2UL, 63UL, 64UL, 65UL, 129UL})
    {
        std::vector<Vector> points(count, Vector(1, 2, 3));
        points[0].Set(0, 0, 0);
        points.emplace_back(100, 100, 100);
        C3DBBox box;
        box.ComputeInSpaceFromVectorArray(points.data(), count, Matrix(), 1);
        EXPECT_TRUE(HasBounds(box, Vector(0, 0, 0), Vector(1, 2, 3))) << count;
    }
}

TEST(BoundingBoxOfPoints, Loose_form_is_the_box_of_the_plain_box)
{
    Random random(545);
    for (Matrix const & matrix : MakeMatrices())
    {
        for (unsigned long const count : k_Counts)
        {
            std::vector<Vector> const points = RandomPoints(random, count);
            Extent const plain = ExtentOf(points);
            Extent const expected = ExtentOf(AllThrough(matrix, CornersOf(plain.low, plain.high)));
            C3DBBox box(100.0);
            EXPECT_EQ(&box.ComputeInSpaceFromVectorArray(points.data(), count, matrix, 0), &box);
            EXPECT_TRUE(HasBounds(box, expected.low, expected.high)) << count;
        }
    }
}

TEST(BoundingBoxOfPoints, Loose_form_holds_the_tight_one_and_is_larger_where_the_matrix_rotates)
{
    Random random(546);
    for (Matrix const & matrix : MakeMatrices())
    {
        std::vector<Vector> const points = RandomPoints(random, 20);
        C3DBBox loose;
        C3DBBox tight;
        loose.ComputeInSpaceFromVectorArray(points.data(), 20, matrix, 0);
        tight.ComputeInSpaceFromVectorArray(points.data(), 20, matrix, 1);
        C3DBBox merged = loose;
        merged.MergeBBox(tight);
        EXPECT_TRUE(HasBoundsNear(merged, loose.GetMin(), loose.GetMax(), 1e-13));
        bool const isRotated = matrix.Get(0, 1) != 0 || matrix.Get(1, 0) != 0;
        EXPECT_EQ(loose.GetDiagonalLength() > tight.GetDiagonalLength() + 0.1, isRotated);
    }
}

TEST(BoundingBoxOfPoints, No_points_change_nothing_in_either_form)
{
    Vector const point(50, 50, 50);
    for (int const tight : {0, 1, -1})
    {
        C3DBBox box(Vector(1, 2, 3), Vector(4, 5, 6));
        EXPECT_EQ(&box.ComputeInSpaceFromVectorArray(nullptr, 3, MakeMatrices()[1], tight), &box);
        EXPECT_EQ(&box.ComputeInSpaceFromVectorArray(&point, 0, MakeMatrices()[1], tight), &box);
        EXPECT_EQ(&box.ComputeInSpaceFromVectorArray(nullptr, 0, MakeMatrices()[1], tight), &box);
        EXPECT_TRUE(HasBounds(box, Vector(1, 2, 3), Vector(4, 5, 6)));
    }
}

TEST(BoundingBoxOfPoints, Any_tight_but_0_is_the_tight_form)
{
    Vector const points[] = {Vector(1, 1, 0), Vector(-1, -1, 0)};
    for (int const tight : {1, 2, -1, 256, -2147483647 - 1})
    {
        C3DBBox box;
        box.ComputeInSpaceFromVectorArray(points, 2, Matrix(1, 1, 0, 0, -1, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1), tight);
        EXPECT_TRUE(HasBoundsNear(box, Vector(0, -2, 0), Vector(0, 2, 0), 0)) << tight;
    }
}

TEST(BoundingBoxOfPoints, One_point_gives_a_box_of_a_thousandth_below_it)
{
    Vector const point(1, 2, 3);
    Matrix const matrix = MakeMatrices()[5];
    C3DBBox box;
    box.ComputeInSpaceFromVectorArray(&point, 1, matrix, 1);
    Vector const low(8 - 0.001, -6 - 0.001, 12 - 0.001);
    EXPECT_TRUE(HasBounds(box, low, Vector(low.X + 0.001, low.Y + 0.001, low.Z + 0.001)))
        << "the maximum is the minimum with the side put back";
    EXPECT_TRUE(IsNear(box.GetMax(), Vector(8, -6, 12), 1e-14));
    EXPECT_EQ(box.IsEmpty(), 0);
    C3DBBox loose;
    loose.ComputeInSpaceFromVectorArray(&point, 1, matrix, 0);
    EXPECT_TRUE(HasBounds(loose, Vector(8, -6, 12), Vector(8, -6, 12))) << "the loose form keeps the point";
}

TEST(BoundingBoxOfPoints, Degenerate_box_stands_below_the_last_point)
{
    // Around the origin, so that the last point can differ from the first one within the limit.
    for (unsigned long const count : {2UL, 63UL, 64UL, 65UL, 128UL, 129UL})
    {
        std::vector<Vector> points(count, Vector(0, 0, 0));
        Vector const last(3e-13, -3e-13, 3e-13);
        points.back() = last;
        C3DBBox box;
        box.ComputeInSpaceFromVectorArray(points.data(), count, Matrix(), 1);
        Vector const low(last.X - 0.001, last.Y - 0.001, last.Z - 0.001);
        EXPECT_TRUE(HasBounds(box, low, Vector(low.X + 0.001, low.Y + 0.001, low.Z + 0.001))) << count;
    }
}

TEST(BoundingBoxOfPoints, Degenerate_is_a_diagonal_below_the_limit)
{
    double const limit = 1e-12;
    Vector const atLimit[] = {Vector(0, 0, 0), Vector(limit, 0, 0)};
    C3DBBox box;
    box.ComputeInSpaceFromVectorArray(atLimit, 2, Matrix(), 1);
    EXPECT_TRUE(HasBounds(box, Vector(0, 0, 0), Vector(limit, 0, 0)));
    Vector const below[] = {Vector(0, 0, 0), Vector(Below(limit), 0, 0)};
    box.ComputeInSpaceFromVectorArray(below, 2, Matrix(), 1);
    EXPECT_TRUE(HasBoundsNear(box, Vector(-0.001, -0.001, -0.001), Vector(0, 0, 0), 1e-11));
    // Far apart, and brought together by the matrix.
    Vector const apart[] = {Vector(5, 1, 1), Vector(-5, 1, 1)};
    box.ComputeInSpaceFromVectorArray(apart, 2, Matrix(0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1), 1);
    EXPECT_TRUE(HasBoundsNear(box, Vector(-0.001, 0.999, 0.999), Vector(0, 1, 1), 1e-15));
    // The loose form never widens.
    box.ComputeInSpaceFromVectorArray(below, 2, Matrix(), 0);
    EXPECT_TRUE(HasBounds(box, Vector(0, 0, 0), Vector(Below(limit), 0, 0)));
}

TEST(BoundingBoxOfPoints, Flat_points_are_not_degenerate)
{
    Vector const points[] = {Vector(1, 1, 1), Vector(2, 1, 1)};
    C3DBBox box;
    box.ComputeInSpaceFromVectorArray(points, 2, Matrix(), 1);
    EXPECT_TRUE(HasBounds(box, Vector(1, 1, 1), Vector(2, 1, 1)));
}

TEST(BoundingBoxOfPoints, Zero_coordinate_times_an_infinite_entry_adds_nothing)
{
    for (int row = 0; row < 3; ++row)
    {
        Vector first(3, 4, 5);
        Vector second(6, 7, 8);
        first.Set(row, 0.0);
        second.Set(row, -0.0);
        std::vector<Vector> points(70, first);
        points[66] = second;
        Vector const zeroed = Vector(first).Set(row, 0.0);
        for (int const tight : {0, 1})
        {
            C3DBBox box;
            box.ComputeInSpaceFromVectorArray(points.data(), 70, WithInfiniteRow(row), tight);
            EXPECT_TRUE(HasBoundsNear(box, zeroed, second, 0)) << row << ' ' << tight;
        }
    }
}

TEST(BoundingBoxOfPoints, NaN_of_the_first_transformed_point_stays_and_later_ones_are_passed_over)
{
    Matrix matrix;
    matrix.SetRow(0, k_Nan, 0, 0, 0);
    for (unsigned long const later : {1UL, 5UL, 64UL, 66UL})
    {
        std::vector<Vector> points(70, Vector(0, 1, 2));
        points[1].Set(0, 3, 4);
        points[later].X = 1;
        C3DBBox box;
        box.ComputeInSpaceFromVectorArray(points.data(), 70, matrix, 1);
        EXPECT_TRUE(HasBoundsNear(box, Vector(0, 1, 2), Vector(0, 3, 4), 0)) << later;
        std::swap(points[0], points[later]);
        box.ComputeInSpaceFromVectorArray(points.data(), 70, matrix, 1);
        EXPECT_TRUE(HasBounds(box, Vector(k_Nan, 1, 2), Vector(k_Nan, 3, 4))) << later;
    }
}

TEST(BoundingBoxOfPoints, Box_is_one_with_the_array)
{
    C3DBBox box(Vector(1, 2, 3), Vector(4, 5, 6));
    box.ComputeInSpaceFromVectorArray(&box.GetMax(), 1, MakeMatrices()[5], 0);
    EXPECT_TRUE(HasBounds(box, Vector(11, -3, 15), Vector(11, -3, 15)));
}
