/// Signals of two and three dimensions: what they allocate, what they copy, and what they are when memory runs short.

#include "signal/fourier_grid.h"
#include "support/allocation_faults.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>
#include <type_traits>
#include <vector>

using namespace signal_test;
using test_support::AllocationFaults;
using test_support::Random;

static_assert(std::is_standard_layout_v<CDSPSignal2D> && std::is_standard_layout_v<CDSPSignal3D>);
static_assert(offsetof(CDSPSignal2D, m_Data) == 0 && offsetof(CDSPSignal2D, m_Size1) == sizeof(void *) &&
              offsetof(CDSPSignal2D, m_Size2) == sizeof(void *) + 4);
static_assert(offsetof(CDSPSignal3D, m_Data) == 0 && offsetof(CDSPSignal3D, m_Size1) == sizeof(void *) &&
              offsetof(CDSPSignal3D, m_Size2) == sizeof(void *) + 4 &&
              offsetof(CDSPSignal3D, m_Size3) == sizeof(void *) + 8);
static_assert(!std::is_polymorphic_v<CDSPSignal2D> && !std::is_polymorphic_v<CDSPSignal3D>);

namespace
{

template <typename Dimensions>
class SignalGrids : public testing::Test
{
};

using AllDimensions = testing::Types<TwoDimensions, ThreeDimensions>;
TYPED_TEST_SUITE(SignalGrids, AllDimensions);

/// Whether the arrays of pointers are there down to this row, and then the row.
double const * RowOrNull(CDSPSignal2D const & signal, int /*plane*/, int row)
{
    return signal.m_Data == nullptr ? nullptr : signal.m_Data[row];
}
double const * RowOrNull(CDSPSignal3D const & signal, int plane, int row)
{
    return signal.m_Data == nullptr || signal.m_Data[plane] == nullptr ? nullptr : signal.m_Data[plane][row];
}

template <typename Signal>
std::vector<double const *> RowsOf(Signal const & signal, Shape const & shape)
{
    std::vector<double const *> rows;
    ForEachRow(shape, [&](int plane, int row) { rows.push_back(RowOrNull(signal, plane, row)); });
    return rows;
}

template <typename Dimensions>
Shape SmallShape()
{
    return {Dimensions::rank == 2 ? 1 : 3, 4, 6};
}

/// Arrays of pointers and rows.
template <typename Dimensions>
long CountAllocations(Shape const & shape)
{
    return 1 + (Dimensions::rank == 3 ? shape.planes : 0) + shape.planes * shape.rows;
}

void ExpectSizes(CDSPSignal2D const & signal, Shape const & shape)
{
    EXPECT_EQ(signal.m_Size1, static_cast<unsigned int>(shape.rows));
    EXPECT_EQ(signal.m_Size2, static_cast<unsigned int>(shape.width));
}
void ExpectSizes(CDSPSignal3D const & signal, Shape const & shape)
{
    EXPECT_EQ(signal.m_Size1, static_cast<unsigned int>(shape.planes));
    EXPECT_EQ(signal.m_Size2, static_cast<unsigned int>(shape.rows));
    EXPECT_EQ(signal.m_Size3, static_cast<unsigned int>(shape.width));
}

/// While it lives, what goes to the standard error stream is taken; at the end there must be nothing.
class Silence
{
public:
    Silence() { testing::internal::CaptureStderr(); }
    Silence(Silence const &) = delete;
    Silence & operator=(Silence const &) = delete;
    ~Silence() { EXPECT_EQ(testing::internal::GetCapturedStderr(), ""); }
};

TYPED_TEST(SignalGrids, Have_each_row_on_its_own)
{
    Shape const shape = SmallShape<TypeParam>();
    AllocationFaults const counts;
    typename TypeParam::Signal const signal = TypeParam::MakeSignal(shape);
    long const requests = counts.GetRequests();
    std::size_t const bytes = counts.GetRequestedBytes();
    EXPECT_EQ(requests, CountAllocations<TypeParam>(shape));
    auto const pointers = static_cast<std::size_t>(CountAllocations<TypeParam>(shape) - 1);
    EXPECT_EQ(bytes, pointers * sizeof(void *) + CountValues(shape) * sizeof(double));
    ExpectSizes(signal, shape);
    std::vector<double const *> const rows = RowsOf(signal, shape);
    EXPECT_EQ(std::set<double const *>(rows.begin(), rows.end()).size(), rows.size());
    EXPECT_FALSE(std::set<double const *>(rows.begin(), rows.end()).contains(nullptr));
}

TYPED_TEST(SignalGrids, Give_back_all_they_allocated)
{
    AllocationFaults const counts;
    {
        typename TypeParam::Signal const signal = TypeParam::MakeSignal(SmallShape<TypeParam>());
    }
    EXPECT_GT(counts.GetRequests(), 0);
    EXPECT_EQ(counts.GetOutstanding(), 0);
}

TYPED_TEST(SignalGrids, Go_on_in_silence_without_what_could_not_be_had)
{
    Shape const shape = SmallShape<TypeParam>();
    for (long refused = 0; refused < CountAllocations<TypeParam>(shape); ++refused)
    {
        SCOPED_TRACE(refused);
        Silence const silence;
        std::vector<double const *> rows;
        rows.reserve(CountValues(shape));
        long outstanding = -1;
        {
            AllocationFaults const faults = AllocationFaults::RefuseOne(refused);
            {
                typename TypeParam::Signal const signal = TypeParam::MakeSignal(shape);
                ForEachRow(shape, [&](int plane, int row) { rows.push_back(RowOrNull(signal, plane, row)); });
                ExpectSizes(signal, shape);
            }
            outstanding = faults.GetOutstanding();
        }
        EXPECT_EQ(outstanding, 0);
        // Without the outermost array there is no row, without a plane's array none of that plane, and otherwise one
        // row is missing.
        long const placeInPlane = TypeParam::rank == 3 ? (refused - 1) % (1 + shape.rows) : refused;
        long const expectedMissing = refused == 0                                ? shape.planes * shape.rows
                                     : TypeParam::rank == 3 && placeInPlane == 0 ? shape.rows
                                                                                 : 1;
        EXPECT_EQ(std::count(rows.begin(), rows.end(), nullptr), expectedMissing);
    }
}

TYPED_TEST(SignalGrids, Without_any_memory_are_null)
{
    Silence const silence;
    Shape const shape = SmallShape<TypeParam>();
    AllocationFaults const faults = AllocationFaults::RefuseAbove(0);
    typename TypeParam::Signal const signal = TypeParam::MakeSignal(shape);
    EXPECT_EQ(signal.m_Data, nullptr);
    typename TypeParam::Signal const copy(signal);
    EXPECT_EQ(copy.m_Data, nullptr);
    ExpectSizes(copy, shape);
}

TYPED_TEST(SignalGrids, Copies_are_independent)
{
    Random random(91);
    Shape const shape = SmallShape<TypeParam>();
    std::vector<double> const values = RandomValues(random, CountValues(shape));
    std::vector<double> const others = RandomValues(random, CountValues(shape));
    auto signal = MakeSignal<TypeParam>(shape, values);
    typename TypeParam::Signal const copy(signal);
    ExpectSizes(copy, shape);
    Fill<TypeParam>(signal, shape, others);
    EXPECT_EQ(ValuesOf<TypeParam>(copy, shape), values);
    EXPECT_EQ(ValuesOf<TypeParam>(signal, shape), others);
}

TYPED_TEST(SignalGrids, Assignment_takes_over_sizes_and_values)
{
    Random random(92);
    Shape const shape = SmallShape<TypeParam>();
    Shape const larger{TypeParam::rank == 2 ? 1 : 5, 7, 2};
    std::vector<double> const values = RandomValues(random, CountValues(shape));
    auto const signal = MakeSignal<TypeParam>(shape, values);
    AllocationFaults const counts;
    {
        typename TypeParam::Signal target = TypeParam::MakeSignal(larger);
        EXPECT_EQ(&(target = signal), &target);
        ExpectSizes(target, shape);
        EXPECT_EQ(ValuesOf<TypeParam>(target, shape), values);
        EXPECT_NE(TypeParam::Row(target, 0, 0), TypeParam::Row(signal, 0, 0));
    }
    EXPECT_EQ(counts.GetOutstanding(), 0);
    EXPECT_EQ(ValuesOf<TypeParam>(signal, shape), values);
}

TYPED_TEST(SignalGrids, Assigned_to_themselves_keep_their_values)
{
    Random random(93);
    Shape const shape = SmallShape<TypeParam>();
    std::vector<double> const values = RandomValues(random, CountValues(shape));
    auto signal = MakeSignal<TypeParam>(shape, values);
    auto const & same = signal;
    signal = same;
    ExpectSizes(signal, shape);
    EXPECT_EQ(ValuesOf<TypeParam>(signal, shape), values);
}

TYPED_TEST(SignalGrids, A_copy_has_what_there_was_memory_for)
{
    Random random(94);
    Shape const shape = SmallShape<TypeParam>();
    std::vector<double> const values = RandomValues(random, CountValues(shape));
    auto const signal = MakeSignal<TypeParam>(shape, values);
    Silence const silence;
    for (long refused = 0; refused < CountAllocations<TypeParam>(shape); ++refused)
    {
        std::optional<typename TypeParam::Signal> copy;
        {
            AllocationFaults const faults = AllocationFaults::RefuseOne(refused);
            copy.emplace(signal);
        }
        ExpectSizes(*copy, shape);
        ForEachRow(shape,
                   [&](int plane, int row)
                   {
                       double const * const copied = RowOrNull(*copy, plane, row);
                       std::size_t const place = PlaceOf(shape, plane, row, 0);
                       EXPECT_TRUE(copied == nullptr || std::equal(copied, copied + shape.width, &values[place]));
                   });
        // And a copy of what is missing.
        typename TypeParam::Signal const second(*copy);
        std::vector<double const *> const rows = RowsOf(*copy, shape);
        std::vector<double const *> const rowsOfSecond = RowsOf(second, shape);
        EXPECT_EQ(std::count(rowsOfSecond.begin(), rowsOfSecond.end(), nullptr), 0);
        for (std::size_t i = 0; i < rows.size(); ++i)
        {
            std::size_t const place = i * static_cast<std::size_t>(shape.width);
            EXPECT_TRUE(rows[i] == nullptr ||
                        std::equal(rowsOfSecond[i], rowsOfSecond[i] + shape.width, &values[place]));
        }
    }
}

TYPED_TEST(SignalGrids, May_be_empty)
{
    typename TypeParam::Signal const signal = TypeParam::MakeSignal({0, 0, 0});
    ExpectSizes(signal, {0, 0, 0});
    typename TypeParam::Signal const copy(signal);
    ExpectSizes(copy, {0, 0, 0});
}

} // namespace
