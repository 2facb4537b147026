#pragma once

/// \file
/// The tables of a transform object.

namespace math::detail
{

/// What a kind of transform needs at a size.
struct TableCounts
{
    unsigned int half;    ///< complex samples along the longest axis, which the bit reversal depends on
    unsigned int work;    ///< twiddles and cosines
    unsigned int scratch; ///< 0 for none
};

/// How many offsets the kernels need.
unsigned int CountIndexes(unsigned int half);

/// Allocates the tables, none for a count of 0, and marks them as empty.
/// \return whether there was memory for all; otherwise "Out of memory in `owner`..." goes to the standard error stream,
/// and what could be had stays
bool AllocateTables(char const * owner, unsigned int workCount, unsigned int indexCount, unsigned int scratchCount,
                    double *& work, int *& index, double *& scratch);

} // namespace math::detail
