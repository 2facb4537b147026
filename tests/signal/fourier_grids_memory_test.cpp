/// What transforms of two and three dimensions allocate, which signals they refuse, and what they do when memory runs
/// short.

#include "signal/fourier_grid.h"
#include "signal/transform_tables_inspector.h"
#include "support/allocation_faults.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string>
#include <type_traits>
#include <vector>

using namespace signal_test;
using test_support::AllocationFaults;
using test_support::Random;

// Three pointers, the sizes, and what tells whether the tables are there.
static_assert(sizeof(CDSPTransform2D) == 3 * sizeof(void *) + 4 * 4);
static_assert(sizeof(CDSPTransform3D) == 3 * sizeof(void *) + 4 * 4);
static_assert(!std::is_copy_constructible_v<CDSPTransform2D> && !std::is_copy_assignable_v<CDSPTransform2D>);
static_assert(!std::is_copy_constructible_v<CDSPTransform3D> && !std::is_copy_assignable_v<CDSPTransform3D>);
static_assert(!std::is_polymorphic_v<CDSPTransform2D> && !std::is_polymorphic_v<CDSPTransform3D>);

namespace
{

template <typename Dimensions>
class FourierGridMemory : public testing::Test
{
};

using AllDimensions = testing::Types<TwoDimensions, ThreeDimensions>;
TYPED_TEST_SUITE(FourierGridMemory, AllDimensions);

/// How many bytes each table has.
struct TableBytes
{
    std::size_t work;
    std::size_t index;
    std::size_t scratch;

    std::array<std::size_t, 3> All() const { return {work, index, scratch}; }
};

TableBytes TableBytesOf(std::size_t half, std::size_t work, std::size_t scratch)
{
    auto const index = static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(half + 1)) + 2));
    return {work * sizeof(double), index * sizeof(int), scratch * sizeof(double)};
}

/// By the longest column and the row. In two dimensions there is one plane, which is no longer than a column.
TableBytes TableBytesOf(Transform transform, Shape const & shape)
{
    auto const columns = static_cast<std::size_t>(std::max(shape.planes, shape.rows));
    auto const width = static_cast<std::size_t>(shape.width);
    std::size_t const half = std::max(width / 2, columns);
    switch (transform)
    {
    case Transform::Complex:
        return TableBytesOf(half, half / 2, 8 * columns);
    case Transform::Real:
        return TableBytesOf(half, half / 2 + width / 4, 8 * columns);
    default:
        std::size_t const longest = std::max(width / 2, columns / 2);
        return TableBytesOf(longest, 3 * longest, 4 * columns);
    }
}

template <typename Dimensions>
typename Dimensions::Signal OnesOf(Shape const & shape)
{
    return MakeSignal<Dimensions>(shape, std::vector<double>(CountValues(shape), 1.0));
}

template <typename Dimensions>
Shape MiddleShape()
{
    return Dimensions::rank == 2 ? Shape{1, 8, 16} : Shape{4, 8, 16};
}

/// What a call under a fault returned, and said.
struct Outcome
{
    bool result = false;
    long requests = 0;
    long outstanding = 0;
    std::string words;
};

constexpr long k_RefuseNone = -1;

template <typename Operation>
Outcome RefuseOne(long number, Operation operation)
{
    Outcome outcome;
    testing::internal::CaptureStderr();
    {
        AllocationFaults const faults = AllocationFaults::RefuseOne(number);
        outcome.result = operation();
        outcome.requests = faults.GetRequests();
        outcome.outstanding = faults.GetOutstanding();
    }
    outcome.words = testing::internal::GetCapturedStderr();
    return outcome;
}

/// Which tables are had if blocks of more than so many bytes are refused.
template <typename Dimensions>
std::array<bool, 3> TablesWithin(std::size_t bytes, Transform transform, Shape const & shape)
{
    auto signal = OnesOf<Dimensions>(shape);
    typename Dimensions::Object object;
    testing::internal::CaptureStderr();
    {
        AllocationFaults const faults = AllocationFaults::RefuseAbove(bytes);
        ApplyTo(object, {transform, 1}, &signal);
    }
    testing::internal::GetCapturedStderr();
    TransformTablesInspector const tables(object);
    return {tables.Work() != nullptr, tables.Index() != nullptr, tables.Scratch() != nullptr};
}

TYPED_TEST(FourierGridMemory, Each_table_has_exactly_its_size)
{
    std::vector<Shape> shapes = TypeParam::SmallShapes();
    for (Shape const & shape : TypeParam::LargeShapes())
    {
        shapes.push_back(shape);
    }
    for (Shape const & shape : shapes)
    {
        for (Transform const transform : k_GridTransforms)
        {
            std::array<std::size_t, 3> const sizes = TableBytesOf(transform, shape).All();
            for (std::size_t table = 0; table < sizes.size(); ++table)
            {
                EXPECT_TRUE(TablesWithin<TypeParam>(sizes[table], transform, shape)[table])
                    << NameOf(transform) << ' ' << shape << ", table " << table;
                EXPECT_FALSE(TablesWithin<TypeParam>(sizes[table] - 1, transform, shape)[table])
                    << NameOf(transform) << ' ' << shape << ", table " << table;
            }
        }
    }
}

TYPED_TEST(FourierGridMemory, A_new_object_has_nothing)
{
    typename TypeParam::Object const object;
    TransformTablesInspector const tables(object);
    EXPECT_EQ(tables.Work(), nullptr);
    EXPECT_EQ(tables.Scratch(), nullptr);
    EXPECT_EQ(tables.Index(), nullptr);
    EXPECT_FALSE(tables.IsInitialized());
    for (std::size_t axis = 0; axis < static_cast<std::size_t>(TypeParam::rank); ++axis)
    {
        EXPECT_EQ(tables.MaxSize(axis), 0U);
    }
}

TYPED_TEST(FourierGridMemory, Only_the_first_call_allocates_and_the_end_gives_back)
{
    Shape const shape = MiddleShape<TypeParam>();
    for (Transform const transform : k_GridTransforms)
    {
        auto signal = OnesOf<TypeParam>(shape);
        Outcome const whole = RefuseOne(k_RefuseNone,
                                        [&]
                                        {
                                            typename TypeParam::Object object;
                                            return ApplyTo(object, {transform, 1}, &signal);
                                        });
        EXPECT_TRUE(whole.result);
        EXPECT_EQ(whole.words, "");
        EXPECT_EQ(whole.requests, 3);
        EXPECT_EQ(whole.outstanding, 0);
        typename TypeParam::Object object;
        ASSERT_TRUE(ApplyTo(object, {transform, 1}, &signal));
        TransformTablesInspector const tables(object);
        EXPECT_TRUE(tables.IsInitialized());
        double const * const work = tables.Work();
        for (int const sign : {1, -1})
        {
            Outcome const again = RefuseOne(0, [&] { return ApplyTo(object, {transform, sign}, &signal); });
            EXPECT_TRUE(again.result);
            EXPECT_EQ(again.requests, 0);
        }
        EXPECT_EQ(tables.Work(), work);
    }
}

TYPED_TEST(FourierGridMemory, Keep_the_sizes_of_the_first_call)
{
    Shape const shape = MiddleShape<TypeParam>();
    Shape const smaller{std::max(shape.planes / 2, 1), shape.rows / 2, shape.width / 2};
    auto first = OnesOf<TypeParam>(shape);
    auto second = OnesOf<TypeParam>(smaller);
    typename TypeParam::Object object;
    ASSERT_TRUE(object.RealFFT(1, false, &first));
    ASSERT_TRUE(object.RealFFT(1, false, &second));
    TransformTablesInspector const tables(object);
    if (TypeParam::rank == 3)
    {
        EXPECT_EQ(tables.MaxSize(0), 4U);
    }
    EXPECT_EQ(tables.MaxSize(TypeParam::rank - 2), 8U);
    EXPECT_EQ(tables.MaxSize(TypeParam::rank - 1), 16U);
}

TYPED_TEST(FourierGridMemory, A_signal_larger_along_any_axis_is_refused_and_left)
{
    Random random(111);
    Shape const shape = MiddleShape<TypeParam>();
    std::vector<Shape> larger = {
        {shape.planes, 16, 16}, {shape.planes, 16, 2}, {shape.planes, 8, 32}, {shape.planes, 2, 32}};
    if (TypeParam::rank == 3)
    {
        larger.push_back({8, 8, 16});
        larger.push_back({8, 2, 2});
    }
    for (Transform const transform : k_GridTransforms)
    {
        typename TypeParam::Object object;
        auto first = OnesOf<TypeParam>(shape);
        ASSERT_TRUE(ApplyTo(object, {transform, 1}, &first));
        for (Shape const & refused : larger)
        {
            std::vector<double> const values = RandomValues(random, CountValues(refused));
            auto signal = MakeSignal<TypeParam>(refused, values);
            for (int const sign : {1, -1})
            {
                Outcome const outcome = RefuseOne(0, [&] { return ApplyTo(object, {transform, sign}, &signal); });
                EXPECT_FALSE(outcome.result) << NameOf(transform) << ' ' << refused;
                EXPECT_EQ(outcome.requests, 0);
                EXPECT_EQ(outcome.words, "");
                EXPECT_TRUE(HaveSameBits(ValuesOf<TypeParam>(signal, refused), values));
            }
        }
        EXPECT_TRUE(ApplyTo(object, {transform, 1}, &first)) << "a refusal is not for good";
    }
}

TYPED_TEST(FourierGridMemory, A_smaller_signal_is_served_as_by_an_object_of_its_own)
{
    Random random(112);
    Shape const shape = MiddleShape<TypeParam>();
    for (Kernel const & kernel : k_GridKernels)
    {
        typename TypeParam::Object object;
        auto first = OnesOf<TypeParam>(shape);
        ASSERT_TRUE(ApplyTo(object, kernel, &first));
        for (Shape const & smaller : TypeParam::Shapes(16))
        {
            if (smaller.planes > shape.planes || smaller.rows > shape.rows || smaller.width > shape.width)
            {
                continue;
            }
            std::vector<double> const values = RandomValues(random, CountValues(smaller));
            auto signal = MakeSignal<TypeParam>(smaller, values);
            ASSERT_TRUE(ApplyTo(object, kernel, &signal)) << kernel << ' ' << smaller;
            EXPECT_TRUE(
                HaveSameBits(ValuesOf<TypeParam>(signal, smaller), TransformedGrid<TypeParam>(kernel, smaller, values)))
                << kernel << ' ' << smaller;
        }
    }
}

// All kinds of transform share the sizes and whether there are tables.
TYPED_TEST(FourierGridMemory, Another_kind_of_transform_is_refused_by_the_same_sizes)
{
    Shape const shape = MiddleShape<TypeParam>();
    Shape const larger{shape.planes, 16, 16};
    for (Transform const first : k_GridTransforms)
    {
        typename TypeParam::Object object;
        auto signal = OnesOf<TypeParam>(shape);
        ASSERT_TRUE(ApplyTo(object, {first, 1}, &signal));
        for (Transform const second : k_GridTransforms)
        {
            auto other = OnesOf<TypeParam>(larger);
            EXPECT_FALSE(ApplyTo(object, {second, 1}, &other)) << NameOf(first) << ' ' << NameOf(second);
        }
    }
}

TYPED_TEST(FourierGridMemory, Without_a_table_an_object_has_failed_for_good)
{
    Random random(113);
    Shape const shape = MiddleShape<TypeParam>();
    std::vector<double> const values = RandomValues(random, CountValues(shape));
    for (Transform const transform : k_GridTransforms)
    {
        for (long refused = 0; refused < 3; ++refused)
        {
            auto signal = MakeSignal<TypeParam>(shape, values);
            typename TypeParam::Object object;
            Outcome const first = RefuseOne(refused, [&] { return ApplyTo(object, {transform, 1}, &signal); });
            EXPECT_FALSE(first.result);
            EXPECT_EQ(first.words, TypeParam::outOfMemory);
            EXPECT_EQ(first.outstanding, 2) << "the other tables stay";
            TransformTablesInspector const tables(object);
            EXPECT_FALSE(tables.IsInitialized());
            EXPECT_EQ(tables.MaxSize(TypeParam::rank - 1), 16U);
            for (Transform const next : k_GridTransforms)
            {
                Outcome const again = RefuseOne(k_RefuseNone, [&] { return ApplyTo(object, {next, 1}, &signal); });
                EXPECT_FALSE(again.result);
                EXPECT_EQ(again.words, "");
                EXPECT_EQ(again.requests, 0);
            }
            EXPECT_TRUE(HaveSameBits(ValuesOf<TypeParam>(signal, shape), values));
        }
    }
}

TYPED_TEST(FourierGridMemory, The_tables_of_a_failed_object_are_marked_as_empty_and_given_back)
{
    Shape const shape = MiddleShape<TypeParam>();
    for (long refused = 0; refused < 3; ++refused)
    {
        auto signal = OnesOf<TypeParam>(shape);
        Outcome const whole = RefuseOne(refused,
                                        [&]
                                        {
                                            typename TypeParam::Object object;
                                            object.RealDCT(1, &signal);
                                            TransformTablesInspector const tables(object);
                                            return (tables.Work() == nullptr || *tables.Work() == 0) &&
                                                   (tables.Index() == nullptr || *tables.Index() == 0) &&
                                                   (tables.Scratch() == nullptr || *tables.Scratch() == 0);
                                        });
        EXPECT_TRUE(whole.result);
        EXPECT_EQ(whole.outstanding, 0);
    }
}

TYPED_TEST(FourierGridMemory, A_signal_without_all_of_its_rows_is_refused_and_left)
{
    Random random(114);
    Shape const shape = MiddleShape<TypeParam>();
    long const allocations = 1 + (TypeParam::rank == 3 ? shape.planes : 0) + shape.planes * shape.rows;
    auto whole = MakeSignal<TypeParam>(shape, RandomValues(random, CountValues(shape)));
    for (Transform const transform : k_GridTransforms)
    {
        for (long refused = 0; refused < allocations; ++refused)
        {
            Outcome const outcome = RefuseOne(refused,
                                              [&]
                                              {
                                                  typename TypeParam::Signal signal(whole);
                                                  typename TypeParam::Object object;
                                                  bool const isForward = ApplyTo(object, {transform, 1}, &signal);
                                                  return isForward || ApplyTo(object, {transform, -1}, &signal, true);
                                              });
            EXPECT_FALSE(outcome.result) << NameOf(transform) << ' ' << refused;
            EXPECT_EQ(outcome.words, "");
            EXPECT_EQ(outcome.outstanding, 0);
        }
        typename TypeParam::Object object;
        EXPECT_FALSE(ApplyTo(object, {transform, 1}, static_cast<typename TypeParam::Signal *>(nullptr)));
        EXPECT_FALSE(ApplyTo(object, {transform, -1}, static_cast<typename TypeParam::Signal *>(nullptr), true));
        EXPECT_TRUE(ApplyTo(object, {transform, 1}, &whole)) << "the object is as new";
    }
}

TEST(FourierGridMemory2D, Has_its_tables_its_sizes_and_its_flag_in_this_order)
{
    CDSPTransform2D const transform;
    constexpr std::ptrdiff_t sizes = 3 * sizeof(void *);
    EXPECT_EQ(TransformTablesInspector(transform).Offsets(2),
              (std::vector<std::ptrdiff_t>{0, sizes / 3, sizes * 2 / 3, sizes, sizes + 4, sizes + 8}));
}

TEST(FourierGridMemory3D, Has_its_tables_its_sizes_and_its_flag_in_this_order)
{
    CDSPTransform3D const transform;
    constexpr std::ptrdiff_t sizes = 3 * sizeof(void *);
    EXPECT_EQ(TransformTablesInspector(transform).Offsets(3),
              (std::vector<std::ptrdiff_t>{0, sizes / 3, sizes * 2 / 3, sizes, sizes + 4, sizes + 8, sizes + 12}));
}

TEST(FourierGridMemory2D, Made_for_8_x_16_refuses_16_x_16_and_serves_4_x_8)
{
    CDSPTransform2D object;
    CDSPSignal2D first = OnesOf<TwoDimensions>({1, 8, 16});
    CDSPSignal2D larger = OnesOf<TwoDimensions>({1, 16, 16});
    CDSPSignal2D smaller = OnesOf<TwoDimensions>({1, 4, 8});
    EXPECT_TRUE(object.ComplexFFT(1, &first));
    EXPECT_FALSE(object.ComplexFFT(1, &larger));
    EXPECT_TRUE(object.ComplexFFT(1, &smaller));
    EXPECT_EQ(larger.m_Data[0][0], 1.0);
    EXPECT_EQ(smaller.m_Data[0][0], 16.0); // sixteen samples 1 + i
    EXPECT_EQ(smaller.m_Data[0][1], 16.0);
    EXPECT_EQ(smaller.m_Data[3][7], 0.0);
}

// 4 x 4 x 64: rows more than twice as long as there are rows and planes need a longer table than their quarter gives.
TEST(FourierGridMemory3D, Long_rows_have_tables_by_half_their_length)
{
    TableBytes const bytes = TableBytesOf(Transform::Real, {4, 4, 64});
    EXPECT_EQ(bytes.work, (16 + 16) * sizeof(double));
    EXPECT_TRUE(TablesWithin<ThreeDimensions>(bytes.work, Transform::Real, {4, 4, 64})[0]);
    EXPECT_FALSE(TablesWithin<ThreeDimensions>(bytes.work - 1, Transform::Real, {4, 4, 64})[0]);
}

} // namespace
