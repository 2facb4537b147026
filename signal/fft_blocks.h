#pragma once

/// \file
/// The smallest blocks of the transform, in straight lines. A block of M samples is of one of two types, and leaves its
/// results in bit-reversed order:
/// - A: Y[p] = sum of x[j] exp(2 pi i j p / M)
/// - B: Y[p] = sum of x[j] exp(2 pi i j (p + 1/2) / M), the odd half of a split
/// The four quarters of a split are blocks of the types A, B, A, A for a block of type A and A, B, A, B for one of type
/// B. Two blocks of one type go through side by side where a register holds two numbers.

#include "signal/complex_lanes.h"

#include <cstddef>

namespace math::detail
{

/// Which half of a split a block belongs to.
enum class BlockType
{
    B = 0,
    A = 1
};

/// The factors of a place k in a split: W^k and W^3k.
struct Twiddles
{
    Complex first;
    Complex third;
};

/// Those of the place Q - k of a quarter of Q samples, for W = exp(2 pi i / 4 Q): i conj W^k and -i conj W^3k.
[[gnu::always_inline]] inline Twiddles Mirrored(Twiddles const & at)
{
    return {Exchanged(at.first), -Exchanged(at.third)};
}

/// An entry of a table.
[[gnu::always_inline]] inline Twiddles LoadTwiddles(double const * entry)
{
    return {Load<Complex>(entry), Conjugate(Load<Complex>(entry + 2))};
}

/// Those of the middle of a quarter: 45 and 135 degrees.
[[gnu::always_inline]] inline Twiddles MiddleTwiddles(double cosineOf45)
{
    return {Complex{cosineOf45, cosineOf45}, Complex{-cosineOf45, cosineOf45}};
}

/// The first step of a split in four, for four samples a quarter of a block apart. Type A gives the sums of the even
/// samples' halves and, still to be turned by W^k and W^3k, those of the odd ones (W = exp(2 pi i / M)).
template <typename Lanes>
struct SplitOfA
{
    [[gnu::always_inline]] SplitOfA(Lanes const & x0, Lanes const & x1, Lanes const & x2, Lanes const & x3)
    {
        Lanes const s = x0 + x2;
        Lanes const d = x0 - x2;
        Lanes const u = x1 + x3;
        auto const v = TimesI<Lanes>(x1 - x3);
        quarter0 = s + u;
        quarter1 = s - u;
        quarter2 = d + v;
        quarter3 = d - v;
    }

    [[gnu::always_inline]] void TurnBy(Turning<Lanes> const & first, Turning<Lanes> const & third)
    {
        quarter2 = Turn(quarter2, first);
        quarter3 = Turn(quarter3, third);
    }

    Lanes quarter0;
    Lanes quarter1;
    Lanes quarter2;
    Lanes quarter3;
};

/// The same for type B: quarters 0 and 1 are still to be turned by V^k, 2 and 3 by V^3k (V = exp(pi i / M)).
template <typename Lanes>
struct SplitOfB
{
    [[gnu::always_inline]] SplitOfB(Lanes const & x0, Lanes const & x1, Lanes const & x2, Lanes const & x3,
                                    double cosineOf45)
    {
        Lanes const p = x0 + TimesI(x2);
        Lanes const q = x0 - TimesI(x2);
        Lanes const sum = x1 + TimesI(x3);
        Lanes const difference = x1 - TimesI(x3);
        Lanes const f = cosineOf45 * (sum + TimesI(sum));
        Lanes const g = cosineOf45 * (TimesI(difference) - difference);
        quarter0 = p + f;
        quarter1 = p - f;
        quarter2 = q + g;
        quarter3 = q - g;
    }

    [[gnu::always_inline]] void TurnBy(Turning<Lanes> const & first, Turning<Lanes> const & third)
    {
        quarter0 = Turn(quarter0, first);
        quarter1 = Turn(quarter1, first);
        quarter2 = Turn(quarter2, third);
        quarter3 = Turn(quarter3, third);
    }

    Lanes quarter0;
    Lanes quarter1;
    Lanes quarter2;
    Lanes quarter3;
};

/// Two samples.
template <typename Lanes>
[[gnu::always_inline]] inline void BlockA2(Lanes * x)
{
    Lanes const difference = x[0] - x[1];
    x[0] += x[1];
    x[1] = difference;
}
template <typename Lanes>
[[gnu::always_inline]] inline void BlockB2(Lanes * x)
{
    Lanes const turned = TimesI(x[1]);
    x[1] = x[0] - turned;
    x[0] += turned;
}

/// Stores a split at place k of the quarters of Q samples.
template <std::ptrdiff_t Q, typename Lanes, typename Split>
[[gnu::always_inline]] inline void StoreSplit(Lanes * x, std::ptrdiff_t k, Split const & split)
{
    x[k] = split.quarter0;
    x[k + Q] = split.quarter1;
    x[k + 2 * Q] = split.quarter2;
    x[k + 3 * Q] = split.quarter3;
}

/// Splits place k of a block of four quarters of Q samples. Place 0 needs no turn.
template <std::ptrdiff_t Q, typename Lanes>
[[gnu::always_inline]] inline void SplitA(Lanes * x, std::ptrdiff_t k, Twiddles const & w)
{
    SplitOfA<Lanes> split(x[k], x[k + Q], x[k + 2 * Q], x[k + 3 * Q]);
    split.TurnBy(TurnAllBy<Lanes>(w.first), TurnAllBy<Lanes>(w.third));
    StoreSplit<Q>(x, k, split);
}
template <std::ptrdiff_t Q, typename Lanes>
[[gnu::always_inline]] inline void SplitA(Lanes * x)
{
    StoreSplit<Q>(x, 0, SplitOfA<Lanes>(x[0], x[Q], x[2 * Q], x[3 * Q]));
}
template <std::ptrdiff_t Q, typename Lanes>
[[gnu::always_inline]] inline void SplitB(Lanes * x, std::ptrdiff_t k, double cosineOf45, Twiddles const & v)
{
    SplitOfB<Lanes> split(x[k], x[k + Q], x[k + 2 * Q], x[k + 3 * Q], cosineOf45);
    split.TurnBy(TurnAllBy<Lanes>(v.first), TurnAllBy<Lanes>(v.third));
    StoreSplit<Q>(x, k, split);
}
template <std::ptrdiff_t Q, typename Lanes>
[[gnu::always_inline]] inline void SplitB(Lanes * x, double cosineOf45)
{
    StoreSplit<Q>(x, 0, SplitOfB<Lanes>(x[0], x[Q], x[2 * Q], x[3 * Q], cosineOf45));
}

/// Four samples, in quarters of one.
template <typename Lanes>
[[gnu::always_inline]] inline void BlockA4(Lanes * x)
{
    SplitA<1>(x);
}
template <typename Lanes>
[[gnu::always_inline]] inline void BlockB4(Lanes * x, double cosineOf45)
{
    SplitB<1>(x, cosineOf45);
}

/// Eight samples. `w` is the end of the twiddles, w + nw.
template <typename Lanes>
[[gnu::always_inline]] inline void BlockA8(Lanes * x, double const * w)
{
    SplitA<2>(x);
    SplitA<2>(x, 1, MiddleTwiddles(w[-3])); // of the sub-table of two values
    BlockA2(x);
    BlockB2(x + 2);
    BlockA2(x + 4);
    BlockA2(x + 6);
}
template <typename Lanes>
[[gnu::always_inline]] inline void BlockB8(Lanes * x, double const * w)
{
    double const * const t = w - 16;
    SplitB<2>(x, t[1]);
    SplitB<2>(x, 1, t[1], LoadTwiddles(t + 4));
    BlockA2(x);
    BlockB2(x + 2);
    BlockA2(x + 4);
    BlockB2(x + 6);
}

/// Sixteen samples.
template <typename Lanes>
[[gnu::always_inline]] inline void BlockA16(Lanes * x, double const * w)
{
    double const * const t = w - 8;
    double const r = t[1];
    // 22.5 degrees, and three times that
    Twiddles const atOne{Complex{t[2], t[3]}, Complex{t[3], t[2]}};
    SplitA<4>(x);
    SplitA<4>(x, 1, atOne);
    SplitA<4>(x, 2, MiddleTwiddles(r));
    SplitA<4>(x, 3, Mirrored(atOne));
    BlockA4(x);
    BlockB4(x + 4, r);
    BlockA4(x + 8);
    BlockA4(x + 12);
}
template <typename Lanes>
[[gnu::always_inline]] inline void BlockB16(Lanes * x, double const * w)
{
    double const * const t = w - 32;
    double const r = t[1];
    SplitB<4>(x, r);
    for (std::ptrdiff_t k = 1; k < 4; ++k)
    {
        SplitB<4>(x, k, r, LoadTwiddles(t + 4 * k));
    }
    BlockA4(x);
    BlockB4(x + 4, r);
    BlockA4(x + 8);
    BlockB4(x + 12, r);
}

} // namespace math::detail
