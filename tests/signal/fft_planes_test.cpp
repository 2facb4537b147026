/// The kernels of two and three dimensions alone: the tables they make, and the scratch memory they use, be it theirs
/// or the caller's.

#include "signal/fourier_grid.h"
#include "signal/fourier_kernel_cases.h"
#include "signal/malloc_faults.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

using namespace signal_test;
using test_support::MallocFaults;
using test_support::Random;

namespace
{

template <typename Dimensions>
class FftPlanes : public testing::Test
{
};

using AllDimensions = testing::Types<TwoDimensions, ThreeDimensions>;
TYPED_TEST_SUITE(FftPlanes, AllDimensions);

bool IsTrigonometric(Kernel const & kernel)
{
    return kernel.transform == Transform::Cosine || kernel.transform == Transform::Sine;
}

/// The longest column; there are none through the planes in two dimensions, where there is one plane.
int LongestColumn(Shape const & shape)
{
    return std::max(shape.planes, shape.rows);
}

int CountTwiddles(Kernel const & kernel, Shape const & shape)
{
    int const column = LongestColumn(shape);
    return std::max(IsTrigonometric(kernel) ? column : 2 * column, shape.width) / 4;
}

int CountCosines(Kernel const & kernel, Shape const & shape)
{
    int const needed = IsTrigonometric(kernel)               ? std::max(LongestColumn(shape), shape.width)
                       : kernel.transform == Transform::Real ? shape.width / 4
                                                             : 0;
    return std::max(needed, 1);
}

/// Four columns of each row, or two or one in short rows; pairs of values but for the cosine and sine.
std::size_t ScratchSize(Kernel const & kernel, Shape const & shape)
{
    auto const column = static_cast<std::size_t>(LongestColumn(shape));
    if (IsTrigonometric(kernel))
    {
        return shape.width == 2 ? 2 * column : 4 * column;
    }
    return shape.width == 2 ? 2 * column : shape.width == 4 ? 4 * column : 8 * column;
}

/// Tables without a place to spare, and scratch of one place more than is needed, to see that it stays.
struct GridTables
{
    GridTables(Kernel const & kernel, Shape const & shape)
        : ip(static_cast<std::size_t>(std::ceil(
                 std::sqrt(std::max(LongestColumn(shape) / (IsTrigonometric(kernel) ? 2 : 1), shape.width / 2) + 1.0) +
                 2)),
             k_UnwrittenIndex),
          w(static_cast<std::size_t>(CountTwiddles(kernel, shape) + CountCosines(kernel, shape)), k_Unwritten),
          t(ScratchSize(kernel, shape) + 1, k_Unwritten)
    {
        ip[0] = 0;
        ip[1] = 0;
    }

    std::vector<int> ip;
    std::vector<double> w;
    std::vector<double> t;
};

template <typename Dimensions>
std::vector<double> RunKernel(Kernel const & kernel, Shape const & shape, std::vector<double> const & values,
                              GridTables & tables, double * t)
{
    auto const signal = MakeSignal<Dimensions>(shape, values);
    Dimensions::Run(kernel, shape, signal, t, tables.ip.data(), tables.w.data());
    return ValuesOf<Dimensions>(signal, shape);
}

TYPED_TEST(FftPlanes, Make_tables_for_the_longest_axis)
{
    Random random(101);
    for (Shape const & shape : TypeParam::SmallShapes())
    {
        for (Kernel const & kernel : k_GridKernels)
        {
            GridTables tables(kernel, shape);
            RunKernel<TypeParam>(kernel, shape, RandomValues(random, CountValues(shape)), tables, tables.t.data());
            EXPECT_EQ(tables.ip[0], CountTwiddles(kernel, shape)) << kernel << ' ' << shape;
            EXPECT_EQ(tables.ip[1], CountCosines(kernel, shape)) << kernel << ' ' << shape;
        }
    }
}

TYPED_TEST(FftPlanes, Keep_larger_tables)
{
    Random random(102);
    Shape const large = TypeParam::LargeShapes().front();
    for (Kernel const & kernel : k_GridKernels)
    {
        GridTables tables(kernel, large);
        RunKernel<TypeParam>(kernel, large, RandomValues(random, CountValues(large)), tables, tables.t.data());
        std::vector<int> const ip = tables.ip;
        std::vector<double> const w = tables.w;
        for (Shape const & shape : TypeParam::Shapes(8))
        {
            std::vector<double> const values = RandomValues(random, CountValues(shape));
            EXPECT_TRUE(HaveSameBits(RunKernel<TypeParam>(kernel, shape, values, tables, tables.t.data()),
                                     TransformedGrid<TypeParam>(kernel, shape, values)))
                << kernel << ' ' << shape;
        }
        EXPECT_EQ(tables.ip, ip);
        EXPECT_TRUE(HaveSameBits(tables.w, w));
    }
}

TYPED_TEST(FftPlanes, Use_all_of_the_scratch_they_need_and_no_more)
{
    Random random(103);
    for (Shape const & shape : TypeParam::SmallShapes())
    {
        for (Kernel const & kernel : k_GridKernels)
        {
            GridTables tables(kernel, shape);
            RunKernel<TypeParam>(kernel, shape, RandomValues(random, CountValues(shape)), tables, tables.t.data());
            EXPECT_EQ(std::count(tables.t.begin(), tables.t.end(), k_Unwritten), 1) << kernel << ' ' << shape;
            EXPECT_EQ(tables.t.back(), k_Unwritten) << kernel << ' ' << shape;
        }
    }
}

// The size has no other request of its own: what the tables and rows of these shapes need is allocated before.
TYPED_TEST(FftPlanes, Without_scratch_allocate_what_they_need_once)
{
    Random random(104);
    for (Shape const & shape : TypeParam::SmallShapes())
    {
        for (Kernel const & kernel : k_GridKernels)
        {
            std::vector<double> const values = RandomValues(random, CountValues(shape));
            auto const signal = MakeSignal<TypeParam>(shape, values);
            GridTables tables(kernel, shape);
            long requests = 0;
            {
                MallocFaults const faults(ScratchSize(kernel, shape) * sizeof(double), MallocFaults::Answer::Grant);
                TypeParam::Run(kernel, shape, signal, nullptr, tables.ip.data(), tables.w.data());
                requests = faults.GetRequests();
            }
            EXPECT_EQ(requests, 1) << kernel << ' ' << shape;
            EXPECT_TRUE(
                HaveSameBits(ValuesOf<TypeParam>(signal, shape), TransformedGrid<TypeParam>(kernel, shape, values)))
                << kernel << ' ' << shape;
        }
    }
}

TYPED_TEST(FftPlanes, With_scratch_allocate_nothing)
{
    Random random(105);
    Shape const shape = TypeParam::SmallShapes().back();
    for (Kernel const & kernel : k_GridKernels)
    {
        auto const signal = MakeSignal<TypeParam>(shape, RandomValues(random, CountValues(shape)));
        GridTables tables(kernel, shape);
        MallocFaults const faults(ScratchSize(kernel, shape) * sizeof(double), MallocFaults::Answer::Refuse);
        TypeParam::Run(kernel, shape, signal, tables.t.data(), tables.ip.data(), tables.w.data());
        EXPECT_EQ(faults.GetRequests(), 0) << kernel;
    }
}

template <typename Dimensions>
class FftPlanesDeathTest : public testing::Test
{
};

TYPED_TEST_SUITE(FftPlanesDeathTest, AllDimensions);

TYPED_TEST(FftPlanesDeathTest, Without_scratch_and_memory_say_so_and_exit_with_1)
{
    Shape const shape = TypeParam::SmallShapes().back();
    for (Kernel const & kernel : k_GridKernels)
    {
        auto const signal = MakeSignal<TypeParam>(shape, std::vector<double>(CountValues(shape), 1.0));
        GridTables tables(kernel, shape);
        auto const run = [&]
        {
            MallocFaults const faults(ScratchSize(kernel, shape) * sizeof(double), MallocFaults::Answer::Refuse);
            TypeParam::Run(kernel, shape, signal, nullptr, tables.ip.data(), tables.w.data());
        };
        EXPECT_EXIT(run(), testing::ExitedWithCode(1), std::string("^") + TypeParam::noScratch + "$") << kernel;
    }
}

} // namespace
