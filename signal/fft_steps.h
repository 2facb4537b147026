#pragma once

/// \file
/// The steps of the transform on an array: splits of large blocks, and the blocks at their end. `Lanes` tells what an
/// operation takes: one sample (Complex), two neighbours (ComplexPair), or a sample each of several arrays side by side
/// (ComplexOf); the bits are the same.

#include "signal/fft_blocks.h"
#include "signal/fft_reversal.h"

#include <cstddef>
#include <type_traits>

namespace math::detail
{

template <typename Lanes>
inline constexpr bool k_TakesNeighbours = std::is_same_v<Lanes, ComplexPair>;

/// What stands in an array.
template <typename Lanes>
using SampleOf = std::conditional_t<k_TakesNeighbours<Lanes>, Complex, Lanes>;

/// How many values a sample has.
template <typename Lanes>
inline constexpr std::ptrdiff_t k_SampleSize = k_Width<SampleOf<Lanes>>;

/// Four quarters of so many values each, which are read from one array and written to it or to another.
struct Quarters
{
    template <typename Split>
    [[gnu::always_inline]] void StoreSplit(std::ptrdiff_t place, Split const & split) const
    {
        Store(to + place, split.quarter0);
        Store(to + place + size, split.quarter1);
        Store(to + place + 2 * size, split.quarter2);
        Store(to + place + 3 * size, split.quarter3);
    }

    double const * from;
    double * to;
    std::ptrdiff_t size;
};

/// Those of a block of type A. Reads four samples, or four of neighbours.
template <bool IsConjugate>
struct QuartersOfA : Quarters
{
    template <typename Lanes>
    [[gnu::always_inline]] SplitOfA<Lanes> SplitAt(std::ptrdiff_t place) const
    {
        double const * const a = from + place;
        return {Read<Lanes>(a), Read<Lanes>(a + size), Read<Lanes>(a + 2 * size), Read<Lanes>(a + 3 * size)};
    }
    template <typename Lanes>
    [[gnu::always_inline]] static Lanes Read(double const * a)
    {
        return IsConjugate ? Conjugate(Load<Lanes>(a)) : Load<Lanes>(a);
    }
};

/// Those of a block of type B.
struct QuartersOfB : Quarters
{
    template <typename Lanes>
    [[gnu::always_inline]] SplitOfB<Lanes> SplitAt(std::ptrdiff_t place) const
    {
        double const * const a = from + place;
        return {Load<Lanes>(a), Load<Lanes>(a + size), Load<Lanes>(a + 2 * size), Load<Lanes>(a + 3 * size),
                cosineOf45};
    }

    double cosineOf45;
};

template <typename Sample, typename Block>
[[gnu::always_inline]] inline void SplitOne(std::ptrdiff_t place, Block const & block,
                                            Twiddles<FactorOf<Sample>> const & at)
{
    auto split = block.template SplitAt<Sample>(place);
    split.TurnBy(TurnAllBy<Sample>(at.first), TurnAllBy<Sample>(at.third));
    block.StoreSplit(place, split);
}

/// Splits at a place and at the next one.
template <typename Lanes, typename Block>
[[gnu::always_inline]] inline void SplitNeighbours(std::ptrdiff_t place, Block const & block,
                                                   Twiddles<FactorOf<Lanes>> const & at,
                                                   Twiddles<FactorOf<Lanes>> const & next)
{
    if constexpr (k_TakesNeighbours<Lanes>)
    {
        auto split = block.template SplitAt<ComplexPair>(place);
        split.TurnBy(TurnEachBy(at.first, next.first), TurnEachBy(at.third, next.third));
        block.StoreSplit(place, split);
    }
    else
    {
        SplitOne<SampleOf<Lanes>>(place, block, at);
        SplitOne<SampleOf<Lanes>>(place + k_SampleSize<Lanes>, block, next);
    }
}

/// The first number of one pair and the second of another.
[[gnu::always_inline]] inline ComplexPair FirstAndSecond(ComplexPair const & first, ComplexPair const & second)
{
    return __builtin_shufflevector(first, second, 0, 1, 6, 7);
}

/// Splits at the first two places, of which the first is not turned: a factor of 1 would change the sign of a zero.
template <typename Lanes, typename Block>
[[gnu::always_inline]] inline void SplitFirst(std::ptrdiff_t place, Block const & block,
                                              Twiddles<FactorOf<Lanes>> const & next)
{
    if constexpr (k_TakesNeighbours<Lanes>)
    {
        auto const split = block.template SplitAt<ComplexPair>(place);
        auto turned = split;
        turned.TurnBy(TurnAllBy<ComplexPair>(next.first), TurnAllBy<ComplexPair>(next.third));
        turned.quarter0 = FirstAndSecond(split.quarter0, turned.quarter0);
        turned.quarter1 = FirstAndSecond(split.quarter1, turned.quarter1);
        turned.quarter2 = FirstAndSecond(split.quarter2, turned.quarter2);
        turned.quarter3 = FirstAndSecond(split.quarter3, turned.quarter3);
        block.StoreSplit(place, turned);
    }
    else
    {
        block.StoreSplit(place, block.template SplitAt<SampleOf<Lanes>>(place));
        SplitOne<SampleOf<Lanes>>(place + k_SampleSize<Lanes>, block, next);
    }
}

/// A table with the twiddles of every place.
template <typename Factor>
struct EveryPlace
{
    [[gnu::always_inline]] Twiddles<Factor> At(std::ptrdiff_t k) const { return LoadTwiddles<Factor>(table + 4 * k); }

    double const * table;
};

/// A table with those of every other place up to `middle`, the middle of a quarter. Those between them are half the sum
/// of their neighbours over the cosine of half a step.
template <typename Factor>
struct EveryOtherPlace
{
    [[gnu::always_inline]] Twiddles<Factor> At(std::ptrdiff_t k) const
    {
        if (k % 2 == 0)
        {
            return Even(k);
        }
        Twiddles<Factor> const before = Even(k - 1);
        Twiddles<Factor> const after = Even(k + 1);
        return {table[2] * (before.first + after.first), table[3] * (before.third + after.third)};
    }
    [[gnu::always_inline]] Twiddles<Factor> Even(std::ptrdiff_t k) const
    {
        if (k == 0)
        {
            return {Factor{1, 0}, Factor{1, 0}};
        }
        return k == middle ? MiddleTwiddles<Factor>(table[1]) : LoadTwiddles<Factor>(table + 2 * k);
    }

    double const * table;
    std::ptrdiff_t middle;
};

/// Splits a block of type A, whose quarters have so many samples. `twiddles` gives those of a place up to the middle of
/// a quarter; beyond it they are mirror images.
template <typename Lanes, bool IsConjugate, typename Places>
[[gnu::always_inline]] inline void SplitBlockA(double const * from, double * to, std::ptrdiff_t count,
                                               double cosineOf45, Places const & twiddles)
{
    constexpr std::ptrdiff_t size = k_SampleSize<Lanes>;
    QuartersOfA<IsConjugate> const block{{from, to, size * count}};
    Twiddles<FactorOf<Lanes>> before = twiddles.At(1);
    SplitFirst<Lanes>(0, block, before);
    for (std::ptrdiff_t k = 2; k < count / 2; k += 2)
    {
        auto const at = twiddles.At(k);
        auto const next = twiddles.At(k + 1);
        SplitNeighbours<Lanes>(size * k, block, at, next);
        SplitNeighbours<Lanes>(size * (count - k), block, Mirrored(at), Mirrored(before));
        before = next;
    }
    SplitNeighbours<Lanes>(size * (count / 2), block, MiddleTwiddles<FactorOf<Lanes>>(cosineOf45), Mirrored(before));
}

/// The first split of a large transform of n values, in place or to another array.
template <typename Lanes, bool IsConjugate>
[[gnu::always_inline]] inline void SplitStage(std::ptrdiff_t n, double const * from, double * to, double const * t)
{
    SplitBlockA<Lanes, IsConjugate>(from, to, n / 8, t[1], EveryOtherPlace<FactorOf<Lanes>>{t, n / 16});
}

/// A deeper split of a block of type A of m values. `w` is the end of the twiddles.
template <typename Lanes>
[[gnu::always_inline]] inline void LevelA(std::ptrdiff_t m, double * a, double const * w)
{
    double const * const t = w - m / 2;
    SplitBlockA<Lanes, false>(a, a, m / 8, t[1], EveryPlace<FactorOf<Lanes>>{t});
}

/// A deeper split of a block of type B of m values.
template <typename Lanes>
[[gnu::always_inline]] inline void LevelB(std::ptrdiff_t m, double * a, double const * w)
{
    double const * const t = w - m;
    std::ptrdiff_t const count = m / 8;
    constexpr std::ptrdiff_t size = k_SampleSize<Lanes>;
    QuartersOfB const block{{a, a, size * count}, t[1]};
    SplitFirst<Lanes>(0, block, LoadTwiddles<FactorOf<Lanes>>(t + 4));
    for (std::ptrdiff_t k = 2; k < count; k += 2)
    {
        SplitNeighbours<Lanes>(size * k, block, LoadTwiddles<FactorOf<Lanes>>(t + 4 * k),
                               LoadTwiddles<FactorOf<Lanes>>(t + 4 * k + 4));
    }
}

/// The number of the result that a block of type A of M samples leaves at place j, when it is a whole transform.
/// Backwards is forwards with the order of the results reversed but for the first.
template <int M, bool IsBackward>
constexpr std::ptrdiff_t ResultOf(std::ptrdiff_t j)
{
    std::ptrdiff_t const forwards = ReverseBits<M>(j);
    return IsBackward ? (M - forwards) % M : forwards;
}

/// The samples of a block in an array.
struct InArray
{
    template <int J>
    [[gnu::always_inline]] Complex At() const
    {
        return Load<Complex>(a + std::ptrdiff_t{2} * J);
    }
    template <int J>
    [[gnu::always_inline]] void Put(Complex const & x) const
    {
        Store(a + std::ptrdiff_t{2} * J, x);
    }

    double * a;
};

/// Two blocks in one, side by side.
template <typename Block>
struct Both
{
    template <int J>
    [[gnu::always_inline]] ComplexPair At() const
    {
        return __builtin_shufflevector(first.template At<J>(), second.template At<J>(), 0, 1, 2, 3);
    }
    template <int J>
    [[gnu::always_inline]] void Put(ComplexPair const & x) const
    {
        first.template Put<J>(__builtin_shufflevector(x, x, 0, 1));
        second.template Put<J>(__builtin_shufflevector(x, x, 2, 3));
    }

    Block first;
    Block second;
};

/// A block on its way through the steps: which results it will hold: the first, and every `step`-th from there on, in
/// bit-reversed order.
struct ResultsOfBlock
{
    /// Those of its quarters: every fourth, from the numbers 0, 2, 1 and 3 on.
    [[gnu::always_inline]] ResultsOfBlock Quarter(int number) const
    {
        constexpr std::ptrdiff_t offsets[] = {0, 2, 1, 3};
        return {first + step * offsets[number], 4 * step};
    }

    std::ptrdiff_t first;
    std::ptrdiff_t step;
};

/// Blocks of M samples that leave their results where they are.
template <int M>
struct InPlace
{
    [[gnu::always_inline]] InArray Block(int number) const { return {a + std::ptrdiff_t{2} * M * number}; }

    double * a;
};

/// The results of a block of M samples go to their places in another array, from `a` on with a step.
template <int M, bool IsConjugate>
struct ToPlaces
{
    template <int J>
    [[gnu::always_inline]] void Put(Complex const & x) const
    {
        constexpr std::ptrdiff_t reversed = ReverseBits<M>(J);
        Store(a + step * reversed, IsConjugate ? Conjugate(x) : x);
    }

    double * a;
    std::ptrdiff_t step;
};

/// Blocks of M samples whose results do so. So many of them are a block.
template <int M, int Count, bool IsConjugate>
struct InOrder
{
    [[gnu::always_inline]] ToPlaces<M, IsConjugate> Block(int number) const
    {
        return {a + 2 * (results.first + results.step * ReverseBits<Count>(number)),
                std::ptrdiff_t{2} * Count * results.step};
    }

    double * a;
    ResultsOfBlock results;
};

} // namespace math::detail
