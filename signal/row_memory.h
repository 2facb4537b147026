#pragma once

/// \file
/// Rows of samples, each allocated by itself.

#include <algorithm>
#include <new>

namespace math::detail
{

/// `count` rows of `size` values that are not initialised. Where memory is short the array, or some rows, are null.
inline double ** AllocateRows(unsigned int count, unsigned int size)
{
    auto ** const rows = new (std::nothrow) double *[count];
    if (rows != nullptr)
    {
        std::generate_n(rows, count, [size] { return new (std::nothrow) double[size]; });
    }
    return rows;
}

inline void FreeRows(double ** rows, unsigned int count)
{
    if (rows != nullptr)
    {
        std::for_each_n(rows, count, [](double * row) { delete[] row; });
    }
    delete[] rows;
}

/// Copies what both have.
inline void CopyRows(double * const * from, double ** to, unsigned int count, unsigned int size)
{
    for (unsigned int i = 0; from != nullptr && to != nullptr && i < count; ++i)
    {
        if (from[i] != nullptr && to[i] != nullptr)
        {
            std::copy_n(from[i], size, to[i]);
        }
    }
}

/// Whether there is memory for all rows.
inline bool HasRows(double * const * rows, unsigned int count)
{
    return rows != nullptr && std::all_of(rows, rows + count, [](double const * row) { return row != nullptr; });
}

} // namespace math::detail
