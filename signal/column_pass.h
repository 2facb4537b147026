#pragma once

/// \file
/// Transforms along the columns of rows that lie apart, a few columns at a time in scratch memory.

#include "signal/lines_of_four.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace math::detail
{

/// How many values of a row are transformed together: four columns, or as many as there are.
inline int ColumnGroupWidth(int width, int elementSize)
{
    return std::min(width, 4 * elementSize);
}

/// The columns of `Count` elements of `ElementSize` values each that begin at one place of every row.
template <int Count, int ElementSize>
struct ColumnGroup
{
    template <typename Kernel>
    static void Transform(int length, int place, Rows const & rows, double * t, Kernel kernel)
    {
        std::ptrdiff_t const columnSize = static_cast<std::ptrdiff_t>(length) * ElementSize;
        // Whole elements are moved, as the kernel reads them: narrower stores would hold up its loads.
        auto const forEachElement = [&](auto move)
        {
            for (int i = 0; i < length; ++i)
            {
                double * const row = rows.At(i) + place;
                double * const inColumns = t + static_cast<std::ptrdiff_t>(i) * ElementSize;
                for (std::ptrdiff_t column = 0; column < Count; ++column)
                {
                    move(row + column * ElementSize, inColumns + column * columnSize);
                }
            }
        };
        constexpr std::size_t size = ElementSize * sizeof(double);
        forEachElement([](double const * inRow, double * inColumn) { std::memcpy(inColumn, inRow, size); });
        for (int column = 0; column < Count; ++column)
        {
            kernel(t + column * columnSize);
        }
        forEachElement([](double * inRow, double const * inColumn) { std::memcpy(inRow, inColumn, size); });
    }
};

/// Runs `kernel` on every column.
/// \param length how many rows there are
/// \param width how many values a row has, a power of two
/// \param t scratch for `length` times ColumnGroupWidth values
/// \param kernel transforms a column in place
template <int ElementSize, typename Kernel>
void TransformColumns(int length, int width, Rows const & rows, double * t, Kernel kernel)
{
    int const groupWidth = ColumnGroupWidth(width, ElementSize);
    for (int place = 0; place < width; place += groupWidth)
    {
        switch (groupWidth / ElementSize)
        {
        case 4:
            ColumnGroup<4, ElementSize>::Transform(length, place, rows, t, kernel);
            break;
        case 2:
            ColumnGroup<2, ElementSize>::Transform(length, place, rows, t, kernel);
            break;
        default:
            ColumnGroup<1, ElementSize>::Transform(length, place, rows, t, kernel);
        }
    }
}

} // namespace math::detail
