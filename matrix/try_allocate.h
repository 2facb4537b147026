#pragma once

/// \file
/// Arrays whose allocation may fail without an exception.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace math::detail
{

/// An array of `count` undefined elements; null when memory is short or the size has no representation. A size too
/// large is caught here because compilers differ on whether the non-throwing form throws for it.
template <typename Element>
std::unique_ptr<Element[]> TryAllocate(std::size_t count)
{
    if (count > PTRDIFF_MAX / sizeof(Element))
    {
        return nullptr;
    }
    return std::unique_ptr<Element[]>(new (std::nothrow) Element[count]);
}

} // namespace math::detail
