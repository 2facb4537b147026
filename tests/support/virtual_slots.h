#pragma once

#include <bit>
#include <cstddef>

namespace test_support
{

/// The place of a virtual operation among those of its class, from 0. The order of an interface's operations is what
/// objects compiled elsewhere rely on.
///
/// The pointer to a virtual member starts with the offset of its entry in the table, plus 1 on most processors.
template <typename Operation>
std::size_t SlotOf(Operation operation)
{
    struct Parts
    {
        std::ptrdiff_t entry;
        std::ptrdiff_t adjustment;
    };
    return static_cast<std::size_t>(std::bit_cast<Parts>(operation).entry) / sizeof(void *);
}

} // namespace test_support
