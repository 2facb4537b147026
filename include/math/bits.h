#pragma once

/// \file
/// Bits of 32-bit words.

#include "math/api.h"

/// The number of set bits.
MATH_API int F3DNumberOfBitsOn(unsigned int bits);

/// The low 32 bits in reverse order: bit 0 becomes bit 31. What a wider `unsigned long` holds above is ignored, and the
/// result is below 2^32.
MATH_API unsigned long F3DReverseBits(unsigned long bits);

/// The index of the lowest set bit, from 0; -1 where no bit is set.
MATH_API int F3DFindLowestBit(unsigned int bits);

/// The index of the highest set bit, from 0; -1 where no bit is set.
MATH_API int F3DFindHighestBit(unsigned int bits);
