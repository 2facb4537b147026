#pragma once

/// \file
/// Four scalars side by side.

#include <cstring>

namespace math::detail
{

/// Four scalars that go through the same operations side by side, each rounded as it would be alone: the form in which
/// a compiler finds the vector instructions of its target. For locals of inline functions only: how lanes are passed or
/// returned by value depends on the instruction set of each caller.
template <typename T>
struct Row4
{
    typedef T Lanes __attribute__((vector_size(4 * sizeof(T)))); // NOLINT(modernize-use-using): takes the attribute
};

/// The rows of a four by four array.
template <typename T>
inline void LoadRows(T const * source, typename Row4<T>::Lanes & row0, typename Row4<T>::Lanes & row1,
                     typename Row4<T>::Lanes & row2, typename Row4<T>::Lanes & row3)
{
    std::memcpy(&row0, source, sizeof row0);
    std::memcpy(&row1, source + 4, sizeof row1);
    std::memcpy(&row2, source + 8, sizeof row2);
    std::memcpy(&row3, source + 12, sizeof row3);
}

inline void StoreRow(Row4<float>::Lanes const & row, float * target)
{
    std::memcpy(target, &row, sizeof row);
}

/// By halves: g++ takes a row of four doubles, for which the basic instruction set has no register, over the stack when
/// it is stored as a whole.
inline void StoreRow(Row4<double>::Lanes const & row, double * target)
{
    auto const low = __builtin_shufflevector(row, row, 0, 1);
    auto const high = __builtin_shufflevector(row, row, 2, 3);
    std::memcpy(target, &low, sizeof low);
    std::memcpy(target + 2, &high, sizeof high);
}

} // namespace math::detail
