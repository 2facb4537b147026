/// The transforms of two and three dimensions: against the sums that define them, against another library, and against
/// transforms along one axis after the other.

#include "signal/fftw_grids.h"
#include "signal/fourier_grid.h"
#include "signal/fourier_grid_sums.h"
#include "signal/transforms_by_lines.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

using namespace signal_test;
using test_support::Random;

namespace
{

template <typename Dimensions>
class FourierGrids : public testing::Test
{
};

using AllDimensions = testing::Types<TwoDimensions, ThreeDimensions>;
TYPED_TEST_SUITE(FourierGrids, AllDimensions);

TYPED_TEST(FourierGrids, Are_the_sums_that_define_them)
{
    Random random(71);
    for (Shape const & shape : TypeParam::SmallShapes())
    {
        for (Kernel const & kernel : k_GridKernels)
        {
            std::vector<double> const values = RandomValues(random, CountValues(shape));
            EXPECT_LT(RelativeError(TransformedGrid<TypeParam>(kernel, shape, values),
                                    DefiningGridSum(kernel, shape, values)),
                      ToleranceOf(shape))
                << kernel << ' ' << shape;
        }
    }
}

// A single value shows each column of the transform by itself: an error in one place drowns in a sum of many.
TYPED_TEST(FourierGrids, Are_right_for_every_single_value)
{
    for (Shape const & shape : {Shape{TypeParam::rank == 2 ? 1 : 4, 8, 4}, Shape{TypeParam::rank == 2 ? 1 : 2, 4, 8}})
    {
        for (Kernel const & kernel : k_GridKernels)
        {
            for (std::size_t place = 0; place < CountValues(shape); ++place)
            {
                std::vector<double> values(CountValues(shape), 0.0);
                values[place] = 1;
                EXPECT_LT(RelativeError(TransformedGrid<TypeParam>(kernel, shape, values),
                                        DefiningGridSum(kernel, shape, values)),
                          1e-15)
                    << kernel << ' ' << shape << ", the one at " << place;
            }
        }
    }
}

TYPED_TEST(FourierGrids, Agree_with_FFTW)
{
    Random random(72);
    for (Shape const & shape : TypeParam::LargeShapes())
    {
        for (Kernel const & kernel : k_GridKernels)
        {
            std::vector<double> const values = RandomValues(random, CountValues(shape));
            EXPECT_LT(RelativeError(TransformedGrid<TypeParam>(kernel, shape, values),
                                    GridByFftw(kernel, shape, TypeParam::rank, values)),
                      ToleranceOf(shape))
                << kernel << ' ' << shape;
        }
    }
}

// How columns are gathered must not show in the results.
TYPED_TEST(FourierGrids, Have_the_bits_of_transforms_along_one_axis_after_the_other)
{
    Random random(73);
    std::vector<Shape> shapes = TypeParam::SmallShapes();
    shapes.push_back(TypeParam::LargeShapes().front());
    for (Shape const & shape : shapes)
    {
        for (Kernel const & kernel : k_GridKernels)
        {
            std::vector<double> const values = RandomValues(random, CountValues(shape));
            EXPECT_TRUE(HaveSameBits(TransformedGrid<TypeParam>(kernel, shape, values),
                                     TransformedByLines(kernel, shape, values)))
                << kernel << ' ' << shape;
        }
    }
}

/// There and back, times the inverse of what is stated: half of the values for a Fourier transform, and half of the
/// size along each axis for the others, whose first index along each axis is halved between.
std::vector<double> ThereAndBack(std::vector<double> (*transformed)(Kernel const &, Shape const &,
                                                                    std::vector<double> const &, bool),
                                 Transform transform, Shape const & shape, int rank, std::vector<double> const & values)
{
    bool const isFourier = transform == Transform::Complex || transform == Transform::Real;
    std::vector<double> there = transformed({transform, isFourier ? 1 : -1}, shape, values, false);
    ForEachPlace(shape,
                 [&](int plane, int row, int column)
                 {
                     int const firsts = (plane == 0 && rank == 3 ? 1 : 0) + (row == 0 ? 1 : 0) + (column == 0 ? 1 : 0);
                     there[PlaceOf(shape, plane, row, column)] *= isFourier ? 1 : std::ldexp(1.0, -firsts);
                 });
    std::vector<double> back = transformed({transform, isFourier ? -1 : 1}, shape, there, false);
    double const scale = static_cast<double>(CountValues(shape)) / std::ldexp(1.0, isFourier ? 1 : rank);
    for (double & value : back)
    {
        value /= scale;
    }
    return back;
}

TYPED_TEST(FourierGrids, There_and_back_multiplies_by_the_stated_scale)
{
    Random random(74);
    std::vector<Shape> shapes = TypeParam::SmallShapes();
    for (Shape const & shape : TypeParam::LargeShapes())
    {
        shapes.push_back(shape);
    }
    for (Shape const & shape : shapes)
    {
        for (Transform const transform : k_GridTransforms)
        {
            std::vector<double> const values = RandomValues(random, CountValues(shape));
            std::vector<double> const back =
                ThereAndBack(TransformedGrid<TypeParam>, transform, shape, TypeParam::rank, values);
            EXPECT_LT(RelativeError(back, {values.begin(), values.end()}), ToleranceOf(shape))
                << NameOf(transform) << ' ' << shape;
        }
    }
}

TYPED_TEST(FourierGrids, Read_of_the_sign_whether_it_is_below_zero)
{
    Random random(75);
    Shape const shape = TypeParam::LargeShapes().back();
    for (Kernel const & kernel : k_GridKernels)
    {
        std::vector<double> const values = RandomValues(random, CountValues(shape));
        std::vector<double> const expected = TransformedGrid<TypeParam>(kernel, shape, values);
        std::vector<int> const signs = kernel.sign < 0 ? std::vector<int>{-2, -1000, std::numeric_limits<int>::min()}
                                                       : std::vector<int>{0, 2, 1000, std::numeric_limits<int>::max()};
        for (int const sign : signs)
        {
            EXPECT_TRUE(HaveSameBits(TransformedGrid<TypeParam>({kernel.transform, sign}, shape, values), expected))
                << kernel << ' ' << sign;
        }
    }
}

TYPED_TEST(FourierGrids, Leave_rows_and_sizes_in_their_places)
{
    Random random(76);
    Shape const shape = TypeParam::SmallShapes().back();
    for (Kernel const & kernel : k_GridKernels)
    {
        auto signal = MakeSignal<TypeParam>(shape, RandomValues(random, CountValues(shape)));
        auto const rowsOf = [&]
        {
            std::vector<double const *> rows;
            ForEachRow(shape, [&](int plane, int row) { rows.push_back(TypeParam::Row(signal, plane, row)); });
            return rows;
        };
        std::vector<double const *> const before = rowsOf();
        typename TypeParam::Object object;
        ASSERT_TRUE(ApplyTo(object, kernel, &signal));
        EXPECT_EQ(rowsOf(), before);
        EXPECT_EQ(signal.m_Size1, static_cast<unsigned int>(TypeParam::rank == 3 ? shape.planes : shape.rows));
        EXPECT_EQ(signal.m_Size2, static_cast<unsigned int>(TypeParam::rank == 3 ? shape.rows : shape.width));
    }
}

// What goes wrong in one row must not stay where the next transform finds it.
TYPED_TEST(FourierGrids, Keep_nothing_of_a_signal_that_was_not_finite)
{
    Random random(77);
    Shape const shape = TypeParam::SmallShapes().back();
    for (Kernel const & kernel : k_GridKernels)
    {
        std::vector<double> const values = RandomValues(random, CountValues(shape));
        typename TypeParam::Object object;
        for (double const bad : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()})
        {
            auto spoilt = MakeSignal<TypeParam>(shape, std::vector<double>(CountValues(shape), bad));
            ASSERT_TRUE(ApplyTo(object, kernel, &spoilt));
        }
        auto signal = MakeSignal<TypeParam>(shape, values);
        ASSERT_TRUE(ApplyTo(object, kernel, &signal));
        EXPECT_TRUE(HaveSameBits(ValuesOf<TypeParam>(signal, shape), TransformedGrid<TypeParam>(kernel, shape, values)))
            << kernel;
    }
}

} // namespace
