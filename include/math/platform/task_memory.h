#pragma once

/// \file
/// Memory that one component allocates and another frees.

#include "math/api.h"

#include <cstddef>

/// Allocates `size` bytes, aligned for every fundamental type. A size of 0 gives a block too.
/// \return the block, to be freed with `CoTaskMemFree`; null when memory is short
MATH_API void * CoTaskMemAlloc(std::size_t size);

/// Frees a block of `CoTaskMemAlloc`; null is nothing to free.
MATH_API void CoTaskMemFree(void * block);
