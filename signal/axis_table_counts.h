#pragma once

/// \file
/// What the transforms in two and three dimensions need: `rows` is the greatest number of rows or planes, and `width`
/// the number of values of a row.

#include "signal/transform_tables.h"

#include <algorithm>

namespace math::detail
{

inline TableCounts CountsOfComplexAxes(unsigned int rows, unsigned int width)
{
    unsigned int const half = std::max(width / 2, rows);
    return {half, half / 2, 8 * rows};
}

inline TableCounts CountsOfRealAxes(unsigned int rows, unsigned int width)
{
    unsigned int const half = std::max(width / 2, rows);
    return {half, half / 2 + width / 4, 8 * rows};
}

inline TableCounts CountsOfTrigonometricAxes(unsigned int rows, unsigned int width)
{
    unsigned int const half = std::max(rows / 2, width / 2);
    return {half, 3 * half, 4 * rows};
}

} // namespace math::detail
