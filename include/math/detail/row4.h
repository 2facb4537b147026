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

template <typename T>
inline void StoreRow(typename Row4<T>::Lanes const & row, T * target)
{
    std::memcpy(target, &row, sizeof row);
}

} // namespace math::detail
