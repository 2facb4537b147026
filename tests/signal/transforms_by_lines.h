#pragma once

/// \file
/// The transforms of two and three dimensions, put together from one-dimensional ones.

#include "signal/fourier_grid.h"
#include "signal/fourier_kernel_cases.h"

#include <cstddef>
#include <vector>

namespace signal_test
{

/// `count` elements of some values each, a step apart.
struct Line
{
    std::size_t first;
    std::size_t step;
    int count;
    int elementSize;
};

inline void TransformLine(Kernel const & kernel, Line const & line, std::vector<double> & values)
{
    std::vector<double> gathered;
    auto const forEachValue = [&](auto visit)
    {
        for (int i = 0; i < line.count * line.elementSize; ++i)
        {
            auto const element = static_cast<std::size_t>(i / line.elementSize);
            visit(values[line.first + element * line.step + static_cast<std::size_t>(i % line.elementSize)],
                  static_cast<std::size_t>(i));
        }
    };
    forEachValue([&](double const & value, std::size_t) { gathered.push_back(value); });
    gathered = Transformed(kernel, line.count * line.elementSize, gathered);
    forEachValue([&](double & value, std::size_t i) { value = gathered[i]; });
}

enum class Axis
{
    Planes,
    Rows,
    Width
};

/// Transforms every line of values along an axis.
inline void TransformAlong(Axis axis, Kernel const & kernel, int elementSize, Shape const & shape,
                           std::vector<double> & values)
{
    std::size_t const step = axis == Axis::Planes ? PlaceOf(shape, 1, 0, 0) : PlaceOf(shape, 0, 1, 0);
    int const count = axis == Axis::Planes ? shape.planes : shape.rows;
    ForEachPlace(shape,
                 [&](int plane, int row, int column)
                 {
                     std::size_t const place = PlaceOf(shape, plane, row, column);
                     if (axis == Axis::Width && column == 0)
                     {
                         TransformLine(kernel, {place, 1, shape.width, 1}, values);
                     }
                     bool const isFirst = axis == Axis::Planes ? plane == 0 : row == 0;
                     if (axis != Axis::Width && isFirst && column % elementSize == 0)
                     {
                         TransformLine(kernel, {place, step, count, elementSize}, values);
                     }
                 });
}

/// The two real columns that share the first places of the rows went through the complex transforms as one column;
/// these steps take them apart, and together. Of the rows (i, j) and (n1 - i, n2 - j) the first in order comes first.
inline void SeparateOrJoin(int sign, Shape const & shape, std::vector<double> & a)
{
    ForEachRow(shape,
               [&](int i, int j)
               {
                   std::size_t const row = PlaceOf(shape, i, j, 0);
                   std::size_t const image =
                       PlaceOf(shape, (shape.planes - i) % shape.planes, (shape.rows - j) % shape.rows, 0);
                   if (row >= image)
                   {
                       return;
                   }
                   if (sign >= 0)
                   {
                       a[image] = 0.5 * (a[row] - a[image]);
                       a[row] = a[row] - a[image];
                       a[image + 1] = 0.5 * (a[row + 1] + a[image + 1]);
                       a[row + 1] = a[row + 1] - a[image + 1];
                       return;
                   }
                   double x = a[row] - a[image];
                   a[row] = a[row] + a[image];
                   a[image] = x;
                   x = a[image + 1] - a[row + 1];
                   a[row + 1] = a[row + 1] + a[image + 1];
                   a[image + 1] = x;
               });
}

/// Rows, columns, then columns through the planes; a real transform backwards has the columns through the planes
/// first and the rows last.
inline std::vector<double> TransformedByLines(Kernel const & kernel, Shape const & shape, std::vector<double> values)
{
    bool const isReal = kernel.transform == Transform::Real;
    int const elementSize = isReal || kernel.transform == Transform::Complex ? 2 : 1;
    Kernel const columnKernel = isReal ? Kernel{Transform::Complex, kernel.sign} : kernel;
    auto const along = [&](Axis axis)
    {
        if (axis != Axis::Planes || shape.planes > 1)
        {
            TransformAlong(axis, axis == Axis::Width ? kernel : columnKernel, elementSize, shape, values);
        }
    };
    if (isReal && kernel.sign < 0)
    {
        SeparateOrJoin(kernel.sign, shape, values);
        along(Axis::Planes);
        along(Axis::Rows);
        along(Axis::Width);
        return values;
    }
    along(Axis::Width);
    along(Axis::Rows);
    along(Axis::Planes);
    if (isReal)
    {
        SeparateOrJoin(kernel.sign, shape, values);
    }
    return values;
}

} // namespace signal_test
