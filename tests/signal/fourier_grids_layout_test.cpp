/// Where the real transforms of two and three dimensions keep what, packed and expanded.

#include "signal/fourier_grid.h"
#include "signal/fourier_grid_sums.h"
#include "signal/transform_tables_inspector.h"
#include "support/allocation_faults.h"
#include "support/random.h"
#include "support/same_bits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <set>
#include <tuple>
#include <vector>

using namespace signal_test;
using test_support::AllocationFaults;
using test_support::Random;
using test_support::SameBits;

namespace
{

constexpr Kernel k_Forward{Transform::Real, 1};
constexpr Kernel k_Backward{Transform::Real, -1};

template <typename Dimensions>
class RealGridLayout : public testing::Test
{
};

using AllDimensions = testing::Types<TwoDimensions, ThreeDimensions>;
TYPED_TEST_SUITE(RealGridLayout, AllDimensions);

/// Values in expanded rows: the first `shape.width` of each are those given, and the two behind are `behind`.
std::vector<double> Widened(Shape const & shape, std::vector<double> const & values, double behind)
{
    std::vector<double> widened(CountValues(Expanded(shape)), behind);
    ForEachPlace(shape,
                 [&](int plane, int row, int column) {
                     widened[PlaceOf(Expanded(shape), plane, row, column)] = values[PlaceOf(shape, plane, row, column)];
                 });
    return widened;
}

/// The first `shape.width` values of expanded rows.
std::vector<double> Narrowed(Shape const & shape, std::vector<double> const & widened)
{
    std::vector<double> values;
    ForEachPlace(shape, [&](int plane, int row, int column)
                 { values.push_back(widened[PlaceOf(Expanded(shape), plane, row, column)]); });
    return values;
}

/// What the way back reads of expanded rows: the second of two images gives its column width/2, and a row that is its
/// own image the real part of it, to the first two places.
std::vector<double> Packed(Shape const & shape, std::vector<double> const & expanded)
{
    std::vector<double> packed;
    ForEachPlace(shape,
                 [&](int plane, int row, int column)
                 {
                     SpectrumPart const part = PartAt(shape, plane, row, column);
                     int const from = 2 * part.k3 + (part.isImaginary ? 1 : 0);
                     packed.push_back(expanded[PlaceOf(Expanded(shape), plane, row, from)]);
                 });
    return packed;
}

// The judge itself: a place for every number that tells two real signals apart.
TYPED_TEST(RealGridLayout, Names_no_part_of_the_spectrum_twice)
{
    for (Shape const & shape : TypeParam::SmallShapes())
    {
        std::set<std::tuple<int, int, int, bool>> parts;
        ForEachPlace(shape,
                     [&](int plane, int row, int column)
                     {
                         SpectrumPart const part = PartAt(shape, plane, row, column);
                         SpectrumPart const image{(shape.planes - part.k1) % shape.planes,
                                                  (shape.rows - part.k2) % shape.rows,
                                                  (shape.width - part.k3) % shape.width, part.isImaginary};
                         EXPECT_TRUE(parts.emplace(part.k1, part.k2, part.k3, part.isImaginary).second);
                         bool const isOwnImage = part.k1 == image.k1 && part.k2 == image.k2 && part.k3 == image.k3;
                         EXPECT_TRUE(!isOwnImage || !part.isImaginary);
                         EXPECT_TRUE(isOwnImage || !parts.contains({image.k1, image.k2, image.k3, image.isImaginary}));
                     });
    }
}

TYPED_TEST(RealGridLayout, Expanded_has_every_column_in_its_place)
{
    Random random(81);
    for (Shape const & shape : TypeParam::SmallShapes())
    {
        std::vector<double> const values = RandomValues(random, CountValues(shape));
        Spectrum const spectrum = FourierSum(shape, 1, Spectrum(values.begin(), values.end()));
        std::vector<Wide> expected;
        ForEachPlace(Expanded(shape),
                     [&](int plane, int row, int column) {
                         expected.push_back(ValueOf(spectrum, shape, {plane, row, column / 2, column % 2 == 1}));
                     });
        std::vector<double> const expanded =
            TransformedGrid<TypeParam>(k_Forward, Expanded(shape), Widened(shape, values, 17), true);
        EXPECT_LT(RelativeError(expanded, expected), ToleranceOf(shape)) << shape;
    }
}

TYPED_TEST(RealGridLayout, Expanded_mirrors_itself_exactly_and_has_exact_zeros)
{
    Random random(82);
    for (Shape const & shape : TypeParam::SmallShapes())
    {
        SCOPED_TRACE(testing::PrintToString(shape.planes) + ' ' + testing::PrintToString(shape.rows) + ' ' +
                     testing::PrintToString(shape.width));
        std::vector<double> const expanded = TransformedGrid<TypeParam>(
            k_Forward, Expanded(shape), Widened(shape, RandomValues(random, CountValues(shape)), 17), true);
        ForEachRow(shape,
                   [&](int plane, int row)
                   {
                       int const imagePlane = (shape.planes - plane) % shape.planes;
                       int const imageRow = (shape.rows - row) % shape.rows;
                       for (int const column : {0, shape.width})
                       {
                           auto const at = [&](int i, int j, int place)
                           { return expanded[PlaceOf(Expanded(shape), i, j, place)]; };
                           EXPECT_EQ(at(plane, row, column), at(imagePlane, imageRow, column));
                           EXPECT_EQ(at(plane, row, column + 1), -at(imagePlane, imageRow, column + 1));
                           if (plane == imagePlane && row == imageRow)
                           {
                               EXPECT_TRUE(SameBits(at(plane, row, column + 1), 0.0)) << plane << ' ' << row;
                           }
                       }
                   });
    }
}

TYPED_TEST(RealGridLayout, Expanded_has_the_bits_of_packed)
{
    Random random(83);
    for (Shape const & shape : TypeParam::SmallShapes())
    {
        std::vector<double> const values = RandomValues(random, CountValues(shape));
        std::vector<double> const expanded =
            TransformedGrid<TypeParam>(k_Forward, Expanded(shape), Widened(shape, values, 17), true);
        EXPECT_TRUE(HaveSameBits(Packed(shape, expanded), TransformedGrid<TypeParam>(k_Forward, shape, values)))
            << shape;
    }
}

// Random numbers are the spectrum of no real signal, so it shows which of two that should be equal is read.
TYPED_TEST(RealGridLayout, The_way_back_reads_the_last_column_of_the_second_image)
{
    Random random(84);
    for (Shape const & shape : TypeParam::SmallShapes())
    {
        std::vector<double> const spectrum = RandomValues(random, CountValues(Expanded(shape)));
        std::vector<double> const back = TransformedGrid<TypeParam>(k_Backward, Expanded(shape), spectrum, true);
        EXPECT_TRUE(
            HaveSameBits(Narrowed(shape, back), TransformedGrid<TypeParam>(k_Backward, shape, Packed(shape, spectrum))))
            << shape;
    }
}

TYPED_TEST(RealGridLayout, The_way_back_leaves_the_two_last_columns)
{
    Random random(85);
    for (Shape const & shape : TypeParam::SmallShapes())
    {
        std::vector<double> const spectrum = RandomValues(random, CountValues(Expanded(shape)));
        std::vector<double> const back = TransformedGrid<TypeParam>(k_Backward, Expanded(shape), spectrum, true);
        ForEachRow(shape,
                   [&](int plane, int row)
                   {
                       for (int const column : {shape.width, shape.width + 1})
                       {
                           std::size_t const place = PlaceOf(Expanded(shape), plane, row, column);
                           EXPECT_TRUE(SameBits(back[place], spectrum[place])) << shape << ' ' << column;
                       }
                   });
    }
}

TYPED_TEST(RealGridLayout, Expanded_there_and_back_multiplies_by_half_the_values)
{
    Random random(86);
    for (Shape const & shape : TypeParam::SmallShapes())
    {
        std::vector<double> const values = RandomValues(random, CountValues(shape));
        auto signal = MakeSignal<TypeParam>(Expanded(shape), Widened(shape, values, 17));
        typename TypeParam::Object object;
        ASSERT_TRUE(ApplyTo(object, k_Forward, &signal, true));
        ASSERT_TRUE(ApplyTo(object, k_Backward, &signal, true));
        std::vector<Wide> expected(values.begin(), values.end());
        for (Wide & value : expected)
        {
            value *= static_cast<Wide>(CountValues(shape)) / 2;
        }
        EXPECT_LT(RelativeError(Narrowed(shape, ValuesOf<TypeParam>(signal, Expanded(shape))), expected),
                  ToleranceOf(shape))
            << shape;
    }
}

TYPED_TEST(RealGridLayout, Another_sign_than_one_neither_packs_nor_expands)
{
    Random random(87);
    constexpr int most = std::numeric_limits<int>::max();
    for (Shape const & shape : TypeParam::SmallShapes())
    {
        for (int const sign : {0, 2, most, -2, -most, -most - 1})
        {
            std::vector<double> const values = RandomValues(random, CountValues(shape));
            std::vector<double> const result =
                TransformedGrid<TypeParam>({Transform::Real, sign}, Expanded(shape), Widened(shape, values, 17), true);
            std::vector<double> const packed = TransformedGrid<TypeParam>({Transform::Real, sign}, shape, values);
            EXPECT_TRUE(HaveSameBits(result, Widened(shape, packed, 17))) << shape << ' ' << sign;
        }
    }
}

/// What a call leaves that is refused: because an earlier signal had fewer rows, or because memory is short.
template <typename Dimensions>
std::vector<double> Refused(Shape const & shape, int sign, bool isExpanded, std::vector<double> const & values,
                            bool isMemoryShort)
{
    typename Dimensions::Object object;
    auto first = MakeSignal<Dimensions>({shape.planes, shape.rows / 2, shape.width},
                                        std::vector<double>(CountValues(shape), 0.0));
    auto signal = MakeSignal<Dimensions>(shape, values);
    testing::internal::CaptureStderr();
    bool isRefused = false;
    if (isMemoryShort)
    {
        AllocationFaults const faults = AllocationFaults::RefuseAbove(0);
        isRefused = !object.RealFFT(sign, isExpanded, &signal);
    }
    else
    {
        EXPECT_TRUE(object.RealFFT(2, isExpanded, &first));
        isRefused = !object.RealFFT(sign, isExpanded, &signal);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), isMemoryShort ? Dimensions::outOfMemory : "");
    EXPECT_TRUE(isRefused);
    return ValuesOf<Dimensions>(signal, shape);
}

TYPED_TEST(RealGridLayout, A_refused_way_back_has_packed_the_expanded_signal)
{
    Random random(88);
    Shape const shape{TypeParam::rank == 2 ? 1 : 4, 8, 4};
    for (bool const isMemoryShort : {false, true})
    {
        std::vector<double> const values = RandomValues(random, CountValues(Expanded(shape)));
        std::vector<double> const left = Refused<TypeParam>(Expanded(shape), -1, true, values, isMemoryShort);
        std::vector<double> expected = values;
        ForEachPlace(shape,
                     [&](int plane, int row, int column)
                     {
                         expected[PlaceOf(Expanded(shape), plane, row, column)] =
                             Packed(shape, values)[PlaceOf(shape, plane, row, column)];
                     });
        EXPECT_TRUE(HaveSameBits(left, expected));
        EXPECT_FALSE(HaveSameBits(left, values));
    }
}

TYPED_TEST(RealGridLayout, Any_other_refused_call_leaves_the_signal)
{
    Random random(89);
    Shape const shape{TypeParam::rank == 2 ? 1 : 4, 8, 4};
    for (bool const isMemoryShort : {false, true})
    {
        for (bool const isExpanded : {false, true})
        {
            for (int const sign : {1, 0, 2, -2, -1})
            {
                Shape const whole = isExpanded ? Expanded(shape) : shape;
                std::vector<double> const values = RandomValues(random, CountValues(whole));
                if (!isExpanded || sign != -1)
                {
                    EXPECT_TRUE(
                        HaveSameBits(Refused<TypeParam>(whole, sign, isExpanded, values, isMemoryShort), values))
                        << sign;
                }
            }
        }
    }
}

TYPED_TEST(RealGridLayout, The_two_values_more_do_not_count_as_size)
{
    Shape const shape{TypeParam::rank == 2 ? 1 : 4, 8, 16};
    auto expanded = MakeSignal<TypeParam>(Expanded(shape), std::vector<double>(CountValues(Expanded(shape)), 1.0));
    auto packed = MakeSignal<TypeParam>(shape, std::vector<double>(CountValues(shape), 1.0));
    Shape const wider{shape.planes, shape.rows, 32};
    auto tooWide = MakeSignal<TypeParam>(wider, std::vector<double>(CountValues(wider), 1.0));
    typename TypeParam::Object object;
    ASSERT_TRUE(object.RealFFT(1, true, &expanded));
    EXPECT_EQ(TransformTablesInspector(object).MaxSize(TypeParam::rank - 1), 16U);
    EXPECT_TRUE(object.RealFFT(1, false, &packed));
    EXPECT_TRUE(object.RealFFT(-1, true, &expanded));
    EXPECT_FALSE(object.RealFFT(1, false, &tooWide));
    // A wave of no frequency, and two ways to it.
    EXPECT_EQ(*TypeParam::Row(packed, 0, 0), static_cast<double>(CountValues(shape)));
    EXPECT_EQ(*TypeParam::Row(expanded, 0, 0), static_cast<double>(CountValues(shape)) / 2);
}

// The rule for two dimensions by row numbers, as one would write it for rows 0 to 7.
TEST(RealGridLayout2D, Packing_moves_the_last_column_of_the_lower_half)
{
    Shape const shape{1, 8, 4};
    std::vector<double> values(CountValues(Expanded(shape)));
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        values[i] = static_cast<double>(100 * (i / 6) + i % 6); // row and column
    }
    std::vector<double> const left = Refused<TwoDimensions>(Expanded(shape), -1, true, values, false);
    std::vector<double> const expected = {0,   4,   2,   3,   4,   5,   100, 101, 102, 103, 104, 105,
                                          200, 201, 202, 203, 204, 205, 300, 301, 302, 303, 304, 305,
                                          400, 404, 402, 403, 404, 405, 505, 504, 502, 503, 504, 505,
                                          605, 604, 602, 603, 604, 605, 705, 704, 702, 703, 704, 705};
    EXPECT_EQ(left, expected);
}

} // namespace
