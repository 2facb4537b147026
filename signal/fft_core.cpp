#include "signal/fft_core.h"

#include "signal/fft_blocks.h"
#include "signal/fft_reversal.h"

namespace math::detail
{

namespace
{

/// Which half of a split a block belongs to.
enum class BlockType
{
    B = 0,
    A = 1
};

/// Runs a block of M samples on an array. `w` is the end of the twiddles.
template <int M, BlockType Type>
inline void RunBlock(double * a, double const * w)
{
    Complex x[M];
    for (int j = 0; j < M; ++j)
    {
        x[j] = Load(a + 2 * j);
    }
    if constexpr (M == 8)
    {
        Type == BlockType::A ? BlockA8(x, w) : BlockB8(x, w);
    }
    else
    {
        Type == BlockType::A ? BlockA16(x, w) : BlockB16(x, w);
    }
    for (int j = 0; j < M; ++j)
    {
        Store(a + 2 * j, x[j]);
    }
}

/// Splits four samples that stand `quarter` values apart.
template <bool IsConjugate>
inline SplitOfA LoadSplitOfA(double const * a, int quarter)
{
    if constexpr (IsConjugate)
    {
        return {Conjugate(Load(a)), Conjugate(Load(a + quarter)), Conjugate(Load(a + 2 * quarter)),
                Conjugate(Load(a + 3 * quarter))};
    }
    return {Load(a), Load(a + quarter), Load(a + 2 * quarter), Load(a + 3 * quarter)};
}

template <bool IsConjugate>
inline void SplitA(double * a, int quarter, Twiddle const & w1, Twiddle const & w3)
{
    SplitOfA const split = LoadSplitOfA<IsConjugate>(a, quarter);
    Store(a, split.quarter0);
    Store(a + quarter, split.quarter1);
    Store(a + 2 * quarter, Turn(split.quarter2, w1));
    Store(a + 3 * quarter, Turn(split.quarter3, w3));
}

/// Place 0, which needs no turn, and the middle of a quarter, which turns by 45 degrees.
template <bool IsConjugate>
inline void SplitAtEnds(double * a, int quarter, double cosineOf45)
{
    SplitOfA const split = LoadSplitOfA<IsConjugate>(a, quarter);
    Store(a, split.quarter0);
    Store(a + quarter, split.quarter1);
    Store(a + 2 * quarter, split.quarter2);
    Store(a + 3 * quarter, split.quarter3);
    SplitA<IsConjugate>(a + quarter / 2, quarter, {cosineOf45, cosineOf45}, {-cosineOf45, cosineOf45});
}

/// Place k and its mirror image, for which W^(Q-k) = i conj W^k and W^3(Q-k) = -i conj W^3k. `offset` is 2 k.
template <bool IsConjugate>
inline void SplitBothWays(double * a, int offset, int quarter, Twiddle const & w1, Twiddle const & w3)
{
    SplitA<IsConjugate>(a + offset, quarter, w1, w3);
    SplitA<IsConjugate>(a + quarter - offset, quarter, {w1.sine, w1.cosine}, {-w3.sine, -w3.cosine});
}

/// The first split of a large transform. The table has the twiddles of every other place; those between them are half
/// the sum of their neighbours over the cosine of half a step.
template <bool IsConjugate>
void SplitStage(int n, double * a, double const * t)
{
    int const quarter = n / 4;
    SplitAtEnds<IsConjugate>(a, quarter, t[1]);
    Twiddle before1{1, 0};
    Twiddle before3{1, 0};
    for (int offset = 4; offset <= quarter / 2; offset += 4)
    {
        bool const isMiddle = offset == quarter / 2;
        Twiddle const w1 = isMiddle ? Twiddle{t[1], t[1]} : Twiddle{t[offset], t[offset + 1]};
        Twiddle const w3 = isMiddle ? Twiddle{-t[1], t[1]} : Twiddle{t[offset + 2], -t[offset + 3]};
        SplitBothWays<IsConjugate>(a, offset - 2, quarter,
                                   {t[2] * (before1.cosine + w1.cosine), t[2] * (before1.sine + w1.sine)},
                                   {t[3] * (before3.cosine + w3.cosine), t[3] * (before3.sine + w3.sine)});
        if (!isMiddle)
        {
            SplitBothWays<IsConjugate>(a, offset, quarter, w1, w3);
        }
        before1 = w1;
        before3 = w3;
    }
}

/// A deeper split of a block of type A of m values.
void DSPLevelA(int m, double * a, double const * w)
{
    double const * const t = w - m / 2;
    int const quarter = m / 4;
    SplitAtEnds<false>(a, quarter, t[1]);
    for (int offset = 2; offset < quarter / 2; offset += 2)
    {
        double const * const entry = t + 2 * offset;
        SplitBothWays<false>(a, offset, quarter, {entry[0], entry[1]}, {entry[2], -entry[3]});
    }
}

/// A deeper split of a block of type B of m values.
void DSPLevelB(int m, double * a, double const * w)
{
    double const * const t = w - m;
    double const r = t[1];
    int const quarter = m / 4;
    auto const load = [quarter, r](double const * at)
    { return SplitOfB(Load(at), Load(at + quarter), Load(at + 2 * quarter), Load(at + 3 * quarter), r); };
    SplitOfB const first = load(a);
    Store(a, first.quarter0);
    Store(a + quarter, first.quarter1);
    Store(a + 2 * quarter, first.quarter2);
    Store(a + 3 * quarter, first.quarter3);
    for (int offset = 2; offset < quarter; offset += 2)
    {
        double const * const entry = t + 2 * offset;
        Twiddle const v1{entry[0], entry[1]};
        Twiddle const v3{entry[2], -entry[3]};
        double * const at = a + offset;
        SplitOfB const split = load(at);
        Store(at, Turn(split.quarter0, v1));
        Store(at + quarter, Turn(split.quarter1, v1));
        Store(at + 2 * quarter, Turn(split.quarter2, v3));
        Store(at + 3 * quarter, Turn(split.quarter3, v3));
    }
}

void Level(BlockType type, int m, double * a, double const * w)
{
    type == BlockType::A ? DSPLevelA(m, a, w) : DSPLevelB(m, a, w);
}

/// A quarter of a leaf: four blocks of M samples and their split.
template <int M>
void RunQuarter(BlockType type, double * a, double const * w)
{
    constexpr int size = 2 * M;
    Level(type, 4 * size, a, w);
    RunBlock<M, BlockType::A>(a, w);
    RunBlock<M, BlockType::B>(a + size, w);
    RunBlock<M, BlockType::A>(a + 2 * size, w);
    type == BlockType::A ? RunBlock<M, BlockType::A>(a + 3 * size, w) : RunBlock<M, BlockType::B>(a + 3 * size, w);
}

/// The rest of a block of 256 or 512 values whose own split is done.
void DSPLeaf(int m, BlockType type, double * a, double const * w)
{
    int const size = m / 4;
    auto const run = m == 512 ? RunQuarter<16> : RunQuarter<8>;
    run(BlockType::A, a, w);
    run(BlockType::B, a + size, w);
    run(BlockType::A, a + 2 * size, w);
    run(type, a + 3 * size, w);
}

/// Splits what comes before the k-th block of m values from the end, at place j: as often as k is a multiple of four,
/// from the largest block down, as all of them end there and have the type of the last quarter of the largest.
/// \return the type of the block of m values
BlockType DSPTreeStep(int m, int j, int k, double * a, double const * w)
{
    int size = m;
    while (k % 4 == 0)
    {
        k /= 4;
        size *= 4;
    }
    auto const type = static_cast<BlockType>(k & 1);
    for (; size >= m; size /= 4)
    {
        Level(type, size, a + j - size, w);
    }
    return type;
}

/// The splits behind the first one, depth first, from the end of the array: each block is finished as far as possible
/// while it is in the cache.
void DSPRecurse(int n, double * a, double const * w)
{
    int m = n;
    while (m > 512)
    {
        m /= 4;
        DSPLevelA(m, a + n - m, w);
    }
    DSPLeaf(m, BlockType::A, a + n - m, w);
    for (int j = n - m, k = 1; j > 0; j -= m, ++k)
    {
        BlockType const type = DSPTreeStep(m, j, k, a, w);
        DSPLeaf(m, type, a + j - m, w);
    }
}

/// A whole transform of M samples in one block.
template <int M, bool IsConjugate>
void RunSmall(double * a, double const * w)
{
    Complex x[M];
    for (int j = 0; j < M; ++j)
    {
        x[j] = Load(a + 2 * j);
    }
    if constexpr (M == 4)
    {
        BlockA4(x);
    }
    else if constexpr (M == 8)
    {
        BlockA8(x, w);
    }
    else
    {
        BlockA16(x, w);
    }
    // Backwards is forwards with the order of the results reversed but for the first.
    for (int j = 0; j < M; ++j)
    {
        int const place = ReverseBits<M>(j);
        Store(a + 2 * (IsConjugate ? (M - place) % M : place), x[j]);
    }
}

template <int M>
void RunFourBlocks(double * a, double const * w)
{
    constexpr int size = 2 * M;
    RunBlock<M, BlockType::A>(a, w);
    RunBlock<M, BlockType::B>(a + size, w);
    RunBlock<M, BlockType::A>(a + 2 * size, w);
    RunBlock<M, BlockType::A>(a + 3 * size, w);
}

/// The directions differ in the first stage, which conjugates what it reads, and in the last, which conjugates what it
/// reorders.
template <bool IsConjugate>
void RunCore(int n, double * a, int const * ip, int nw, double const * w)
{
    double const * const end = w + nw;
    switch (n)
    {
    case 0:
    case 1:
    case 2:
        return;
    case 4:
    {
        Complex x[2] = {Load(a), Load(a + 2)};
        BlockA2(x);
        Store(a, x[0]);
        Store(a + 2, x[1]);
        return;
    }
    case 8:
        return RunSmall<4, IsConjugate>(a, end);
    case 16:
        return RunSmall<8, IsConjugate>(a, end);
    case 32:
        return RunSmall<16, IsConjugate>(a, end);
    default:
        break;
    }
    SplitStage<IsConjugate>(n, a, end - n / 4);
    switch (n)
    {
    case 64:
        RunFourBlocks<8>(a, end);
        break;
    case 128:
        RunFourBlocks<16>(a, end);
        break;
    case 256:
    case 512:
        DSPLeaf(n, BlockType::A, a, end);
        break;
    default:
        DSPRecurse(n, a, end);
    }
    IsConjugate ? DSPBitReverseConj(n, ip, a) : DSPBitReverse(n, ip, a);
}

} // namespace

void DSPForwardCore(int n, double * a, int const * ip, int nw, double const * w)
{
    RunCore<false>(n, a, ip, nw, w);
}

void DSPBackwardCore(int n, double * a, int const * ip, int nw, double const * w)
{
    RunCore<true>(n, a, ip, nw, w);
}

} // namespace math::detail
