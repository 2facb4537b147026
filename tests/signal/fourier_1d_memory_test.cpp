/// What signals and transforms allocate, and what they do when memory runs short.

#include "math/fourier_1d.h"
#include "signal/fourier_kernel_cases.h"
#include "signal/transform_kinds.h"
#include "support/allocation_faults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

using namespace signal_test;
using test_support::AllocationFaults;

namespace
{

constexpr char k_TransformWords[] = "Out of memory in CDSPTransform1D...";
constexpr char k_SignalWords[] = "Out of memory in CDSPSignal1D...";

/// How many values each table has.
struct Counts
{
    std::size_t work;
    std::size_t index;
    std::size_t scratch;
};

std::size_t CountIndexes(unsigned int half)
{
    return static_cast<std::size_t>(std::ceil(std::sqrt(half + 1.0) + 2));
}

/// For a transform of n values; n may be any number here, as counts are rounded down.
Counts CountsOf(Transform transform, unsigned int n)
{
    switch (transform)
    {
    case Transform::Complex:
        return {n > 3 ? n / 4 : 0, CountIndexes(n / 2), 0};
    case Transform::Real:
        return {n > 1 ? n / 2 : 0, CountIndexes(n / 2), 0};
    case Transform::Cosine:
    case Transform::Sine:
        return {5 * n > 3 ? 5 * n / 4 : 0, CountIndexes(n / 2), 0};
    case Transform::WholeCosine:
        return {5 * n / 8, CountIndexes(n / 4), n / 2 + 1};
    default:
        return {5 * n / 8, CountIndexes(n / 4), n / 2};
    }
}

std::size_t BytesOf(Counts const & counts)
{
    return (counts.work + counts.scratch) * sizeof(double) + counts.index * sizeof(int);
}

std::size_t LargestOf(Counts const & counts)
{
    return std::max({counts.work * sizeof(double), counts.scratch * sizeof(double), counts.index * sizeof(int)});
}

long TablesOf(Counts const & counts)
{
    return (counts.work > 0 ? 1 : 0) + 1 + (counts.scratch > 0 ? 1 : 0);
}

CDSPSignal1D ConstantSignal(Transform transform, int n)
{
    CDSPSignal1D signal(SignalSize(transform, n));
    Fill(signal, std::vector<double>(signal.m_Size, 1.0));
    return signal;
}

/// What a call with some allocation refused returned, asked for, kept and said.
struct Outcome
{
    bool result;
    long requests;
    long outstanding;
    std::size_t bytes;
    std::size_t largest;
    std::string words;
};

template <typename Operation>
Outcome RefuseOne(long number, Operation const & operation)
{
    Outcome outcome{};
    testing::internal::CaptureStderr();
    {
        AllocationFaults const faults = AllocationFaults::RefuseOne(number);
        bool const result = operation();
        outcome = {result,
                   faults.GetRequests(),
                   faults.GetOutstanding(),
                   faults.GetRequestedBytes(),
                   faults.GetLargestRequest(),
                   {}};
    }
    outcome.words = testing::internal::GetCapturedStderr();
    return outcome;
}

constexpr long k_RefuseNone = -1;

class Transform1DMemory : public testing::TestWithParam<Transform>
{
};

TEST_P(Transform1DMemory, Makes_its_tables_with_the_first_call_and_exactly_as_large_as_needed)
{
    for (int n = 2; n <= 1 << 14; n *= 2)
    {
        SCOPED_TRACE(n);
        Counts const counts = CountsOf(GetParam(), static_cast<unsigned int>(n));
        CDSPSignal1D signal = ConstantSignal(GetParam(), n);
        CDSPTransform1D transform;
        auto const run = [&] { return Apply(transform, {GetParam(), 1}, &signal); };
        Outcome const first = RefuseOne(k_RefuseNone, run);
        EXPECT_TRUE(first.result);
        EXPECT_EQ(first.words, "");
        EXPECT_EQ(first.requests, TablesOf(counts));
        EXPECT_EQ(first.outstanding, TablesOf(counts));
        EXPECT_EQ(first.bytes, BytesOf(counts));
        EXPECT_EQ(first.largest, LargestOf(counts));
        TransformTablesInspector const tables(transform);
        EXPECT_EQ(tables.Work() != nullptr, counts.work > 0);
        EXPECT_EQ(tables.Scratch() != nullptr, counts.scratch > 0);
        EXPECT_EQ(tables.MaxSize(), static_cast<unsigned int>(n));
    }
}

TEST_P(Transform1DMemory, A_second_call_allocates_nothing_and_keeps_the_tables)
{
    CDSPSignal1D signal = ConstantSignal(GetParam(), 128);
    CDSPTransform1D transform;
    ASSERT_TRUE(Apply(transform, {GetParam(), 1}, &signal));
    TransformTablesInspector const tables(transform);
    Counts const counts = CountsOf(GetParam(), 128);
    // The last two twiddles are never written, so they are left out; the offsets end where their rows do.
    std::vector<double> const work(tables.Work(), tables.Work() + counts.work);
    std::vector<int> const index(tables.Index(), tables.Index() + 2);
    double const * const scratch = tables.Scratch();
    double const * const workAt = tables.Work();
    for (int const sign : {1, -1})
    {
        Outcome const again = RefuseOne(0, [&] { return Apply(transform, {GetParam(), sign}, &signal); });
        EXPECT_TRUE(again.result);
        EXPECT_EQ(again.requests, 0);
    }
    EXPECT_EQ(tables.Work(), workAt);
    EXPECT_EQ(tables.Scratch(), scratch);
    EXPECT_EQ(std::vector<int>(tables.Index(), tables.Index() + 2), index);
    auto const twiddles = static_cast<std::size_t>(index[0]);
    for (std::size_t i = 0; i < counts.work; ++i)
    {
        if (i + 2 < twiddles || i >= twiddles)
        {
            EXPECT_EQ(tables.Work()[i], work[i]) << i;
        }
    }
}

TEST_P(Transform1DMemory, Says_once_that_a_table_was_not_to_be_had_and_fails_for_good)
{
    constexpr int n = 64;
    long const count = TablesOf(CountsOf(GetParam(), n));
    for (long refused = 0; refused < count; ++refused)
    {
        SCOPED_TRACE(refused);
        CDSPSignal1D signal = ConstantSignal(GetParam(), n);
        std::vector<double> const before = ValuesOf(signal);
        std::optional<CDSPTransform1D> transform(std::in_place);
        auto const run = [&] { return Apply(*transform, {GetParam(), 1}, &signal); };
        Outcome const first = RefuseOne(refused, run);
        EXPECT_FALSE(first.result);
        EXPECT_EQ(first.words, k_TransformWords);
        EXPECT_EQ(ValuesOf(signal), before);
        // What could be had stays to the end, and is marked as empty.
        EXPECT_EQ(first.requests, count);
        EXPECT_EQ(first.outstanding, count - 1);
        TransformTablesInspector const tables(*transform);
        EXPECT_FALSE(tables.IsInitialized());
        EXPECT_EQ(tables.MaxSize(), static_cast<unsigned int>(n));
        EXPECT_TRUE(tables.Index() == nullptr || tables.Index()[0] == 0);
        EXPECT_TRUE(tables.Work() == nullptr || tables.Work()[0] == 0);
        EXPECT_TRUE(tables.Scratch() == nullptr || tables.Scratch()[0] == 0);
        // There is memory now, but no second attempt, and no more words.
        Outcome const again = RefuseOne(k_RefuseNone, run);
        EXPECT_FALSE(again.result);
        EXPECT_EQ(again.requests, 0);
        EXPECT_EQ(again.words, "");
        EXPECT_EQ(ValuesOf(signal), before);
        CDSPSignal1D smaller = ConstantSignal(GetParam(), 2);
        EXPECT_FALSE(Apply(*transform, {GetParam(), 1}, &smaller));
        Outcome const end = RefuseOne(k_RefuseNone, [&] { return transform.reset(), true; });
        EXPECT_EQ(end.outstanding, 1 - count);
    }
}

TEST_P(Transform1DMemory, Says_once_that_no_table_at_all_was_to_be_had)
{
    CDSPSignal1D signal = ConstantSignal(GetParam(), 64);
    CDSPTransform1D transform;
    testing::internal::CaptureStderr();
    bool result = true;
    long outstanding = -1;
    {
        AllocationFaults const faults = AllocationFaults::RefuseAbove(0);
        result = Apply(transform, {GetParam(), 1}, &signal);
        outstanding = faults.GetOutstanding();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), k_TransformWords);
    EXPECT_FALSE(result);
    EXPECT_EQ(outstanding, 0);
    EXPECT_FALSE(Apply(transform, {GetParam(), 1}, &signal));
}

TEST_P(Transform1DMemory, The_destructor_frees_the_tables)
{
    CDSPSignal1D signal = ConstantSignal(GetParam(), 64);
    Outcome const whole = RefuseOne(k_RefuseNone,
                                    [&]
                                    {
                                        CDSPTransform1D transform;
                                        return Apply(transform, {GetParam(), 1}, &signal);
                                    });
    EXPECT_TRUE(whole.result);
    EXPECT_EQ(whole.outstanding, 0);
}

TEST_P(Transform1DMemory, Refuses_a_signal_without_a_buffer_and_without_a_word)
{
    Outcome const outcome = RefuseOne(0,
                                      [&]
                                      {
                                          CDSPSignal1D signal(16);
                                          CDSPTransform1D transform;
                                          return Apply(transform, {GetParam(), 1}, &signal);
                                      });
    EXPECT_FALSE(outcome.result);
    EXPECT_EQ(outcome.words, k_SignalWords);
    EXPECT_EQ(outcome.requests, 1);
}

TEST_P(Transform1DMemory, A_signal_without_a_buffer_is_refused_when_the_tables_are_there_too)
{
    CDSPTransform1D transform;
    CDSPSignal1D signal = ConstantSignal(GetParam(), 16);
    ASSERT_TRUE(Apply(transform, {GetParam(), 1}, &signal));
    std::optional<CDSPSignal1D> failed;
    Outcome const outcome = RefuseOne(0,
                                      [&]
                                      {
                                          failed.emplace(16U);
                                          return Apply(transform, {GetParam(), 1}, &*failed);
                                      });
    EXPECT_FALSE(outcome.result);
    EXPECT_TRUE(Apply(transform, {GetParam(), 1}, &signal));
}

std::string TransformName(testing::TestParamInfo<Transform> const & info)
{
    return NameOf(info.param);
}

INSTANTIATE_TEST_SUITE_P(All, Transform1DMemory, testing::ValuesIn(k_Transforms), TransformName);

TEST(Transform1DEmptyMemory, The_complex_transform_of_nothing_has_offsets_only)
{
    CDSPSignal1D empty(0);
    CDSPTransform1D transform;
    Outcome const outcome = RefuseOne(k_RefuseNone, [&] { return transform.ComplexFFT(1, &empty); });
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(outcome.requests, 1);
    EXPECT_EQ(outcome.bytes, 3 * sizeof(int));
}

TEST(Signal1DMemory, Allocates_its_values_and_nothing_else)
{
    Outcome const outcome = RefuseOne(k_RefuseNone,
                                      []
                                      {
                                          CDSPSignal1D const signal(100);
                                          return signal.m_Data != nullptr && signal.m_Size == 100;
                                      });
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(outcome.requests, 1);
    EXPECT_EQ(outcome.bytes, 100 * sizeof(double));
    EXPECT_EQ(outcome.outstanding, 0);
    EXPECT_EQ(outcome.words, "");
}

TEST(Signal1DMemory, Says_that_there_is_no_buffer_and_goes_on)
{
    Outcome const outcome = RefuseOne(0,
                                      []
                                      {
                                          CDSPSignal1D const signal(100);
                                          return signal.m_Data == nullptr && signal.m_Size == 100;
                                      });
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(outcome.words, k_SignalWords);
    EXPECT_EQ(outcome.outstanding, 0);
}

TEST(Signal1DMemory, A_copy_that_finds_no_memory_says_so_and_has_no_buffer)
{
    CDSPSignal1D const signal(4);
    Outcome const outcome = RefuseOne(0,
                                      [&]
                                      {
                                          CDSPSignal1D const copy(signal);
                                          return copy.m_Data == nullptr && copy.m_Size == 4;
                                      });
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(outcome.words, k_SignalWords);
}

TEST(Signal1DMemory, A_copy_of_a_signal_without_a_buffer_has_none)
{
    Outcome const outcome = RefuseOne(0,
                                      []
                                      {
                                          CDSPSignal1D const failed(4);
                                          CDSPSignal1D const copy(failed);
                                          CDSPSignal1D assigned(2);
                                          assigned = failed;
                                          return copy.m_Data == nullptr && copy.m_Size == 4 &&
                                                 assigned.m_Data == nullptr && assigned.m_Size == 4;
                                      });
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(outcome.words, k_SignalWords);
    EXPECT_EQ(outcome.outstanding, 0);
}

TEST(Signal1DMemory, An_assignment_that_finds_no_memory_leaves_no_buffer_and_no_leak)
{
    CDSPSignal1D const signal(4);
    Outcome const outcome = RefuseOne(1,
                                      [&]
                                      {
                                          CDSPSignal1D assigned(2);
                                          assigned = signal;
                                          return assigned.m_Data == nullptr && assigned.m_Size == 4;
                                      });
    EXPECT_TRUE(outcome.result);
    EXPECT_EQ(outcome.words, k_SignalWords);
    EXPECT_EQ(outcome.outstanding, 0);
}

} // namespace
