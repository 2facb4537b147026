#include "math/bits.h"

#include <bit>
#include <cstdint>

namespace
{

/// Swaps the groups of bits that `lowerOfEachPair` masks with those `width` above them.
std::uint32_t SwapNeighbours(std::uint32_t bits, std::uint32_t lowerOfEachPair, int width)
{
    return ((bits >> width) & lowerOfEachPair) | ((bits & lowerOfEachPair) << width);
}

} // namespace

int F3DNumberOfBitsOn(unsigned int bits)
{
    return std::popcount(bits);
}

unsigned long F3DReverseBits(unsigned long bits)
{
    auto reversed = static_cast<std::uint32_t>(bits & 0xFFFFFFFFUL);
    reversed = SwapNeighbours(reversed, 0x55555555U, 1);
    reversed = SwapNeighbours(reversed, 0x33333333U, 2);
    reversed = SwapNeighbours(reversed, 0x0F0F0F0FU, 4);
    reversed = SwapNeighbours(reversed, 0x00FF00FFU, 8);
    return SwapNeighbours(reversed, 0x0000FFFFU, 16);
}

int F3DFindLowestBit(unsigned int bits)
{
    return bits == 0 ? -1 : std::countr_zero(bits);
}

int F3DFindHighestBit(unsigned int bits)
{
    return static_cast<int>(std::bit_width(bits)) - 1;
}
