#pragma once

/// \file
/// The steps of the transform on an array: splits of large blocks, and the blocks at their end. `Lanes` tells how many
/// numbers an operation takes; the bits are the same.

#include "signal/fft_blocks.h"

#include <cstddef>

namespace math::detail
{

/// Reads four samples, or four of neighbours, from the quarters of a block of type A of so many values each.
template <bool IsConjugate>
struct QuartersOfA
{
    template <typename Lanes>
    [[gnu::always_inline]] SplitOfA<Lanes> SplitAt(double const * a) const
    {
        return {Read<Lanes>(a), Read<Lanes>(a + quarter), Read<Lanes>(a + 2 * quarter), Read<Lanes>(a + 3 * quarter)};
    }
    template <typename Lanes>
    [[gnu::always_inline]] static Lanes Read(double const * a)
    {
        return IsConjugate ? Conjugate(Load<Lanes>(a)) : Load<Lanes>(a);
    }

    std::ptrdiff_t quarter;
};

/// The same for a block of type B.
struct QuartersOfB
{
    template <typename Lanes>
    [[gnu::always_inline]] SplitOfB<Lanes> SplitAt(double const * a) const
    {
        return {Load<Lanes>(a), Load<Lanes>(a + quarter), Load<Lanes>(a + 2 * quarter), Load<Lanes>(a + 3 * quarter),
                cosineOf45};
    }

    std::ptrdiff_t quarter;
    double cosineOf45;
};

template <typename Split>
[[gnu::always_inline]] inline void StoreSplit(double * a, std::ptrdiff_t quarter, Split const & split)
{
    Store(a, split.quarter0);
    Store(a + quarter, split.quarter1);
    Store(a + 2 * quarter, split.quarter2);
    Store(a + 3 * quarter, split.quarter3);
}

template <typename Quarters>
[[gnu::always_inline]] inline void SplitOne(double * a, Quarters const & quarters, Twiddles const & at)
{
    auto split = quarters.template SplitAt<Complex>(a);
    split.TurnBy(TurnAllBy<Complex>(at.first), TurnAllBy<Complex>(at.third));
    StoreSplit(a, quarters.quarter, split);
}

/// Splits at a place and at the next one.
template <typename Lanes, typename Quarters>
[[gnu::always_inline]] inline void SplitNeighbours(double * a, Quarters const & quarters, Twiddles const & at,
                                                   Twiddles const & next)
{
    if constexpr (sizeof(Lanes) == sizeof(ComplexPair))
    {
        auto split = quarters.template SplitAt<ComplexPair>(a);
        split.TurnBy(TurnEachBy(at.first, next.first), TurnEachBy(at.third, next.third));
        StoreSplit(a, quarters.quarter, split);
    }
    else
    {
        SplitOne(a, quarters, at);
        SplitOne(a + 2, quarters, next);
    }
}

/// The first number of one pair and the second of another.
[[gnu::always_inline]] inline ComplexPair FirstAndSecond(ComplexPair const & first, ComplexPair const & second)
{
    return __builtin_shufflevector(first, second, 0, 1, 6, 7);
}

/// Splits at the first two places, of which the first is not turned: a factor of 1 would change the sign of a zero.
template <typename Lanes, typename Quarters>
[[gnu::always_inline]] inline void SplitFirst(double * a, Quarters const & quarters, Twiddles const & next)
{
    if constexpr (sizeof(Lanes) == sizeof(ComplexPair))
    {
        auto const split = quarters.template SplitAt<ComplexPair>(a);
        auto turned = split;
        turned.TurnBy(TurnAllBy<ComplexPair>(next.first), TurnAllBy<ComplexPair>(next.third));
        turned.quarter0 = FirstAndSecond(split.quarter0, turned.quarter0);
        turned.quarter1 = FirstAndSecond(split.quarter1, turned.quarter1);
        turned.quarter2 = FirstAndSecond(split.quarter2, turned.quarter2);
        turned.quarter3 = FirstAndSecond(split.quarter3, turned.quarter3);
        StoreSplit(a, quarters.quarter, turned);
    }
    else
    {
        StoreSplit(a, quarters.quarter, quarters.template SplitAt<Complex>(a));
        SplitOne(a + 2, quarters, next);
    }
}

/// A table with the twiddles of every place.
struct EveryPlace
{
    [[gnu::always_inline]] Twiddles At(std::ptrdiff_t k) const { return LoadTwiddles(table + 4 * k); }

    double const * table;
};

/// A table with those of every other place up to `middle`, the middle of a quarter. Those between them are half the sum
/// of their neighbours over the cosine of half a step.
struct EveryOtherPlace
{
    [[gnu::always_inline]] Twiddles At(std::ptrdiff_t k) const
    {
        if (k % 2 == 0)
        {
            return Even(k);
        }
        Twiddles const before = Even(k - 1);
        Twiddles const after = Even(k + 1);
        return {table[2] * (before.first + after.first), table[3] * (before.third + after.third)};
    }
    [[gnu::always_inline]] Twiddles Even(std::ptrdiff_t k) const
    {
        if (k == 0)
        {
            return {Complex{1, 0}, Complex{1, 0}};
        }
        return k == middle ? MiddleTwiddles(table[1]) : LoadTwiddles(table + 2 * k);
    }

    double const * table;
    std::ptrdiff_t middle;
};

/// Splits a block of type A, whose quarters have so many values. `twiddles` gives those of a place up to the middle of
/// a quarter; beyond it they are mirror images.
template <typename Lanes, bool IsConjugate, typename Places>
[[gnu::always_inline]] inline void SplitBlockA(double * a, std::ptrdiff_t quarter, double cosineOf45,
                                               Places const & twiddles)
{
    QuartersOfA<IsConjugate> const quarters{quarter};
    Twiddles before = twiddles.At(1);
    SplitFirst<Lanes>(a, quarters, before);
    for (std::ptrdiff_t k = 2; k < quarter / 4; k += 2)
    {
        Twiddles const at = twiddles.At(k);
        Twiddles const next = twiddles.At(k + 1);
        SplitNeighbours<Lanes>(a + 2 * k, quarters, at, next);
        SplitNeighbours<Lanes>(a + quarter - 2 * k, quarters, Mirrored(at), Mirrored(before));
        before = next;
    }
    SplitNeighbours<Lanes>(a + quarter / 2, quarters, MiddleTwiddles(cosineOf45), Mirrored(before));
}

/// The first split of a large transform.
template <typename Lanes, bool IsConjugate>
[[gnu::always_inline]] inline void SplitStage(std::ptrdiff_t n, double * a, double const * t)
{
    std::ptrdiff_t const quarter = n / 4;
    SplitBlockA<Lanes, IsConjugate>(a, quarter, t[1], EveryOtherPlace{t, quarter / 4});
}

/// A deeper split of a block of type A of m values. `w` is the end of the twiddles.
template <typename Lanes>
[[gnu::always_inline]] inline void LevelA(std::ptrdiff_t m, double * a, double const * w)
{
    double const * const t = w - m / 2;
    SplitBlockA<Lanes, false>(a, m / 4, t[1], EveryPlace{t});
}

/// A deeper split of a block of type B of m values.
template <typename Lanes>
[[gnu::always_inline]] inline void LevelB(std::ptrdiff_t m, double * a, double const * w)
{
    double const * const t = w - m;
    std::ptrdiff_t const quarter = m / 4;
    QuartersOfB const quarters{quarter, t[1]};
    SplitFirst<Lanes>(a, quarters, LoadTwiddles(t + 4));
    for (std::ptrdiff_t k = 2; k < quarter / 2; k += 2)
    {
        SplitNeighbours<Lanes>(a + 2 * k, quarters, LoadTwiddles(t + 4 * k), LoadTwiddles(t + 4 * k + 4));
    }
}

template <int M, BlockType Type, typename Lanes>
[[gnu::always_inline]] inline void TransformBlock(Lanes * x, double const * w)
{
    if constexpr (M == 8)
    {
        Type == BlockType::A ? BlockA8(x, w) : BlockB8(x, w);
    }
    else
    {
        Type == BlockType::A ? BlockA16(x, w) : BlockB16(x, w);
    }
}

/// Runs a block of M samples on an array.
template <int M, BlockType Type>
[[gnu::always_inline]] inline void RunBlock(double * a, double const * w)
{
    Complex x[M];
    for (std::ptrdiff_t j = 0; j < M; ++j)
    {
        x[j] = Load<Complex>(a + 2 * j);
    }
    TransformBlock<M, Type>(x, w);
    for (std::ptrdiff_t j = 0; j < M; ++j)
    {
        Store(a + 2 * j, x[j]);
    }
}

/// Runs two of the same type.
template <int M, BlockType Type, typename Lanes>
[[gnu::always_inline]] inline void RunBlocks(double * a, double * b, double const * w)
{
    if constexpr (sizeof(Lanes) == sizeof(ComplexPair))
    {
        ComplexPair x[M];
        for (std::ptrdiff_t j = 0; j < M; ++j)
        {
            x[j] = __builtin_shufflevector(Load<Complex>(a + 2 * j), Load<Complex>(b + 2 * j), 0, 1, 2, 3);
        }
        TransformBlock<M, Type>(x, w);
        for (std::ptrdiff_t j = 0; j < M; ++j)
        {
            Store<Complex>(a + 2 * j, __builtin_shufflevector(x[j], x[j], 0, 1));
            Store<Complex>(b + 2 * j, __builtin_shufflevector(x[j], x[j], 2, 3));
        }
    }
    else
    {
        RunBlock<M, Type>(a, w);
        RunBlock<M, Type>(b, w);
    }
}

/// The four blocks of M samples of a block of type A whose split is done.
template <int M, typename Lanes>
[[gnu::always_inline]] inline void RunFourBlocks(double * a, double const * w)
{
    constexpr std::ptrdiff_t size = 2 * std::ptrdiff_t{M};
    RunBlocks<M, BlockType::A, Lanes>(a, a + 2 * size, w);
    RunBlock<M, BlockType::B>(a + size, w);
    RunBlock<M, BlockType::A>(a + 3 * size, w);
}

/// The sixteen blocks of M samples of a block of the type whose split and whose quarters' splits are done. The types
/// are ABAA ABAB ABAA, and ABAA or ABAB; those of one type go through by twos.
template <int M, typename Lanes>
[[gnu::always_inline]] inline void RunSixteenBlocks(BlockType type, double * a, double const * w)
{
    constexpr std::ptrdiff_t size = 2 * std::ptrdiff_t{M};
    constexpr std::ptrdiff_t ofTypeA[][2] = {{0, 2}, {3, 4}, {6, 8}, {10, 11}, {12, 14}};
    constexpr std::ptrdiff_t ofTypeB[][2] = {{1, 5}, {7, 9}, {13, 15}};
    for (auto const & pair : ofTypeA)
    {
        RunBlocks<M, BlockType::A, Lanes>(a + pair[0] * size, a + pair[1] * size, w);
    }
    bool const isLastB = type == BlockType::B;
    for (int i = 0; i < (isLastB ? 3 : 2); ++i)
    {
        RunBlocks<M, BlockType::B, Lanes>(a + ofTypeB[i][0] * size, a + ofTypeB[i][1] * size, w);
    }
    if (!isLastB)
    {
        RunBlock<M, BlockType::B>(a + 13 * size, w);
        RunBlock<M, BlockType::A>(a + 15 * size, w);
    }
}

} // namespace math::detail
