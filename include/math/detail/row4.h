#pragma once

/// \file
/// Four scalars side by side.

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

} // namespace math::detail
