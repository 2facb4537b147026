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

template <typename T>
inline void LoadRow(typename Row4<T>::Lanes & row, T const * source)
{
    std::memcpy(&row, source, sizeof row);
}

template <typename T>
inline void StoreRow(typename Row4<T>::Lanes const & row, T * target)
{
    std::memcpy(target, &row, sizeof row);
}

} // namespace math::detail
