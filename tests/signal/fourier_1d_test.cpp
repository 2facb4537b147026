/// One-dimensional signals, and the object that transforms them.

#include "math/fourier_1d.h"
#include "signal/fourier_kernel_cases.h"
#include "signal/fourier_sums.h"
#include "signal/transform_kinds.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

using namespace signal_test;
using test_support::Random;

namespace
{

static_assert(!std::is_polymorphic_v<CDSPSignal1D> && !std::is_polymorphic_v<CDSPTransform1D>);
static_assert(!std::is_copy_constructible_v<CDSPTransform1D> && !std::is_copy_assignable_v<CDSPTransform1D>);
static_assert(offsetof(CDSPSignal1D, m_Data) == 0 && offsetof(CDSPSignal1D, m_Size) == sizeof(double *));
static_assert(std::is_same_v<decltype(CDSPSignal1D::m_Size), unsigned int>);

/// A signal for a transform of n, with random values.
CDSPSignal1D RandomSignal(Random & random, Transform transform, int n)
{
    CDSPSignal1D signal(SignalSize(transform, n));
    Fill(signal, RandomValues(random, signal.m_Size));
    return signal;
}

/// What the kernel makes of a signal. The last value of a whole-range sine transform belongs to no sum, and stays.
std::vector<double> ByKernel(Kernel const & kernel, int n, CDSPSignal1D const & signal)
{
    return Transformed(kernel, n, ValuesOf(signal));
}

class Transform1D : public testing::TestWithParam<Kernel>
{
};

TEST_P(Transform1D, Runs_its_kernel_on_the_signal)
{
    Random random(81);
    for (int n = 2; n <= 2048; n *= 2)
    {
        CDSPSignal1D signal = RandomSignal(random, GetParam().transform, n);
        std::vector<double> const expected = ByKernel(GetParam(), n, signal);
        double const * const buffer = signal.m_Data;
        CDSPTransform1D transform;
        EXPECT_TRUE(Apply(transform, GetParam(), &signal)) << n;
        EXPECT_EQ(ValuesOf(signal), expected) << n;
        EXPECT_EQ(signal.m_Data, buffer);
        EXPECT_EQ(signal.m_Size, SignalSize(GetParam().transform, n));
    }
}

TEST_P(Transform1D, Is_the_sum_that_defines_it)
{
    Random random(82);
    for (int const n : {4, 8, 64, 256})
    {
        CDSPSignal1D signal = RandomSignal(random, GetParam().transform, n);
        std::vector<double> const before = ValuesOf(signal);
        std::size_t const count = CountValues(GetParam().transform, n);
        std::vector<Wide> const expected =
            DefiningSum(GetParam(), n, {before.begin(), before.begin() + static_cast<std::ptrdiff_t>(count)});
        CDSPTransform1D transform;
        ASSERT_TRUE(Apply(transform, GetParam(), &signal));
        EXPECT_LT(RelativeError({signal.m_Data, signal.m_Data + count}, expected), ToleranceOf(n)) << n;
    }
}

TEST_P(Transform1D, The_sign_may_change_from_call_to_call)
{
    Random random(83);
    CDSPTransform1D transform;
    for (int const sign : {1, -1, 0, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
    {
        Kernel const kernel{GetParam().transform, sign};
        CDSPSignal1D signal = RandomSignal(random, kernel.transform, 64);
        std::vector<double> const expected = ByKernel({kernel.transform, sign < 0 ? -1 : 1}, 64, signal);
        EXPECT_TRUE(Apply(transform, kernel, &signal)) << sign;
        EXPECT_EQ(ValuesOf(signal), expected) << sign;
    }
}

TEST_P(Transform1D, Refuses_a_signal_larger_than_the_first_and_leaves_it)
{
    Random random(84);
    CDSPTransform1D transform;
    CDSPSignal1D first = RandomSignal(random, GetParam().transform, 64);
    ASSERT_TRUE(Apply(transform, GetParam(), &first));
    TransformTablesInspector const tables(transform);
    double const * const work = tables.Work();
    CDSPSignal1D larger = RandomSignal(random, GetParam().transform, 128);
    std::vector<double> const before = ValuesOf(larger);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(Apply(transform, GetParam(), &larger));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(ValuesOf(larger), before);
    EXPECT_EQ(tables.Work(), work);
    EXPECT_EQ(tables.MaxSize(), 64U);
    EXPECT_TRUE(tables.IsInitialized());
    EXPECT_TRUE(Apply(transform, GetParam(), &first));
}

TEST_P(Transform1D, Refuses_a_signal_that_is_larger_by_one)
{
    CDSPTransform1D transform;
    CDSPSignal1D first(SignalSize(GetParam().transform, 64));
    Fill(first, std::vector<double>(first.m_Size, 1.0));
    ASSERT_TRUE(Apply(transform, GetParam(), &first));
    CDSPSignal1D larger(first.m_Size + 1);
    std::vector<double> const ones(larger.m_Size, 1.0);
    Fill(larger, ones);
    EXPECT_FALSE(Apply(transform, GetParam(), &larger));
    EXPECT_EQ(ValuesOf(larger), ones);
}

TEST_P(Transform1D, Serves_a_smaller_signal_with_the_same_tables)
{
    if (GetParam().transform == Transform::Sine)
    {
        return; // has its own size, see below
    }
    Random random(85);
    CDSPTransform1D transform;
    CDSPSignal1D first = RandomSignal(random, GetParam().transform, 128);
    ASSERT_TRUE(Apply(transform, GetParam(), &first));
    for (int n = 128; n >= 2; n /= 2)
    {
        CDSPSignal1D smaller = RandomSignal(random, GetParam().transform, n);
        std::vector<double> const expected = ByKernel(GetParam(), n, smaller);
        EXPECT_TRUE(Apply(transform, GetParam(), &smaller)) << n;
        EXPECT_EQ(ValuesOf(smaller), expected) << n;
    }
}

TEST_P(Transform1D, A_null_signal_is_refused_and_not_taken_for_the_first)
{
    CDSPTransform1D transform;
    EXPECT_FALSE(Apply(transform, GetParam(), nullptr));
    TransformTablesInspector const tables(transform);
    EXPECT_EQ(tables.Work(), nullptr);
    EXPECT_EQ(tables.Scratch(), nullptr);
    EXPECT_EQ(tables.Index(), nullptr);
    EXPECT_EQ(tables.MaxSize(), 0U);
    EXPECT_FALSE(tables.IsInitialized());
    CDSPSignal1D signal(SignalSize(GetParam().transform, 16));
    Fill(signal, std::vector<double>(signal.m_Size, 1.0));
    EXPECT_TRUE(Apply(transform, GetParam(), &signal));
    EXPECT_FALSE(Apply(transform, GetParam(), nullptr));
    EXPECT_TRUE(Apply(transform, GetParam(), &signal));
}

TEST_P(Transform1D, Separate_objects_are_independent)
{
    Random random(86);
    CDSPTransform1D one;
    CDSPTransform1D other;
    CDSPSignal1D small = RandomSignal(random, GetParam().transform, 16);
    CDSPSignal1D large = RandomSignal(random, GetParam().transform, 256);
    std::vector<double> const expected = ByKernel(GetParam(), 256, large);
    EXPECT_TRUE(Apply(one, GetParam(), &small));
    EXPECT_TRUE(Apply(other, GetParam(), &large));
    EXPECT_EQ(ValuesOf(large), expected);
}

std::string KernelName(testing::TestParamInfo<Kernel> const & info)
{
    return testing::PrintToString(info.param);
}

INSTANTIATE_TEST_SUITE_P(All, Transform1D, testing::ValuesIn(k_Kernels), KernelName);

TEST(Transform1DNew, Has_no_tables)
{
    CDSPTransform1D const transform;
    TransformTablesInspector const tables(transform);
    EXPECT_EQ(tables.Work(), nullptr);
    EXPECT_EQ(tables.Scratch(), nullptr);
    EXPECT_EQ(tables.Index(), nullptr);
    EXPECT_EQ(tables.MaxSize(), 0U);
    EXPECT_FALSE(tables.IsInitialized());
}

TEST(Transform1DNew, Has_its_tables_its_size_and_its_flag_in_this_order)
{
    CDSPTransform1D const transform;
    constexpr std::ptrdiff_t pointer = sizeof(void *);
    EXPECT_EQ(TransformTablesInspector(transform).Offsets(1),
              (std::vector<std::ptrdiff_t>{0, pointer, 2 * pointer, 3 * pointer, 3 * pointer + 4}));
}

TEST(Transform1DSine, Works_on_as_many_values_as_the_first_signal_had)
{
    Random random(87);
    for (int const sign : {1, -1})
    {
        Kernel const kernel{Transform::Sine, sign};
        CDSPTransform1D transform;
        CDSPSignal1D signal = RandomSignal(random, Transform::Sine, 64);
        ASSERT_TRUE(Apply(transform, kernel, &signal));
        std::vector<double> const expected = ByKernel(kernel, 64, signal);
        // Told to have 16 values, it really holds 64, and all are transformed.
        signal.m_Size = 16;
        EXPECT_TRUE(Apply(transform, kernel, &signal));
        EXPECT_EQ((std::vector<double>{signal.m_Data, signal.m_Data + 64}), expected);
        // The size that is checked is the signal's own.
        signal.m_Size = 65;
        EXPECT_FALSE(Apply(transform, kernel, &signal));
        EXPECT_EQ((std::vector<double>{signal.m_Data, signal.m_Data + 64}), expected);
        signal.m_Size = 64;
    }
}

TEST(Transform1DWholeRange, Nine_values_are_a_transform_of_eight)
{
    CDSPSignal1D signal(9);
    Fill(signal, {1, 2, 3, 4, 5, 6, 7, 8, 9});
    std::vector<double> const values = ValuesOf(signal);
    CDSPTransform1D transform;
    ASSERT_TRUE(transform.DCTOfRealFFT(&signal));
    EXPECT_LT(RelativeError(ValuesOf(signal), DefiningSum({Transform::WholeCosine, 1}, 8, values)), 1e-15);
    EXPECT_EQ(TransformTablesInspector(transform).MaxSize(), 8U);
}

TEST(Transform1DWholeRange, The_sine_transform_leaves_the_last_value)
{
    CDSPSignal1D signal(9);
    Fill(signal, {1, 2, 3, 4, 5, 6, 7, 8, 9});
    CDSPTransform1D transform;
    ASSERT_TRUE(transform.DSTOfRealFFT(&signal));
    EXPECT_EQ(signal.m_Data[0], 0);
    EXPECT_EQ(signal.m_Data[8], 9);
}

TEST(Transform1DEmpty, The_complex_transform_of_nothing_runs)
{
    CDSPSignal1D empty(0);
    ASSERT_NE(empty.m_Data, nullptr);
    CDSPTransform1D transform;
    EXPECT_TRUE(transform.ComplexFFT(1, &empty));
    EXPECT_TRUE(transform.ComplexFFT(-1, &empty));
    TransformTablesInspector const tables(transform);
    EXPECT_EQ(tables.Work(), nullptr);
    EXPECT_NE(tables.Index(), nullptr);
    EXPECT_TRUE(tables.IsInitialized());
    // Its size is the largest that the object serves from now on.
    CDSPSignal1D two(2);
    Fill(two, {3, 4});
    EXPECT_FALSE(transform.ComplexFFT(1, &two));
    EXPECT_EQ(ValuesOf(two), (std::vector<double>{3, 4}));
}

TEST(Signal1D, Copies_are_independent)
{
    CDSPSignal1D signal(3);
    Fill(signal, {1, 2, 3});
    CDSPSignal1D copy(signal);
    EXPECT_NE(copy.m_Data, signal.m_Data);
    EXPECT_EQ(ValuesOf(copy), (std::vector<double>{1, 2, 3}));
    copy.m_Data[1] = 7;
    EXPECT_EQ(ValuesOf(signal), (std::vector<double>{1, 2, 3}));
    CDSPSignal1D assigned(5);
    assigned = copy;
    EXPECT_EQ(assigned.m_Size, 3U);
    EXPECT_NE(assigned.m_Data, copy.m_Data);
    copy.m_Data[0] = 9;
    EXPECT_EQ(ValuesOf(assigned), (std::vector<double>{1, 7, 3}));
}

TEST(Signal1D, Assigned_to_itself_keeps_its_values)
{
    CDSPSignal1D signal(3);
    Fill(signal, {1, 2, 3});
    CDSPSignal1D const & same = signal;
    signal = same;
    EXPECT_EQ(ValuesOf(signal), (std::vector<double>{1, 2, 3}));
}

} // namespace
