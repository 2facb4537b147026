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

/// The type of quarter 0, 1, 2 or 3 of a block.
constexpr BlockType TypeOfQuarter(BlockType type, int number)
{
    return number == 3 ? type : number == 1 ? BlockType::B : BlockType::A;
}

/// The factors of a place k in a split: W^k and W^3k.
template <typename Factor>
struct Twiddles
{
    Factor first;
    Factor third;
};

/// Those of the place Q - k of a quarter of Q samples, for W = exp(2 pi i / 4 Q): i conj W^k and -i conj W^3k.
template <typename Factor>
[[gnu::always_inline]] inline Twiddles<Factor> Mirrored(Twiddles<Factor> const & at)
{
    return {Exchanged(at.first), -Exchanged(at.third)};
}

/// An entry of a table.
template <typename Factor>
[[gnu::always_inline]] inline Twiddles<Factor> LoadTwiddles(double const * entry)
{
    return {Load<Factor>(entry), Conjugate(Load<Factor>(entry + 2))};
}

/// Those of the middle of a quarter: 45 and 135 degrees.
template <typename Factor>
[[gnu::always_inline]] inline Twiddles<Factor> MiddleTwiddles(double cosineOf45)
{
    return {Factor{cosineOf45, cosineOf45}, Factor{-cosineOf45, cosineOf45}};
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

// A block takes its samples from `from`, by At<J>(), when it needs them, and gives its results to `to`, by Put<J>(x),
// as soon as it has them: so few are under way at a time that the registers hold most of them.

/// Samples under way.
template <typename Lanes>
struct Held
{
    template <int J>
    [[gnu::always_inline]] Lanes At() const
    {
        return x[J];
    }
    template <int J>
    [[gnu::always_inline]] void Put(Lanes const & value) const
    {
        x[J] = value;
    }

    Lanes * x;
};

/// Where the results of a part of a block go, which begins at a place.
template <int Begin, typename To>
struct PartOf
{
    template <int J, typename Lanes>
    [[gnu::always_inline]] void Put(Lanes const & value) const
    {
        to.template Put<Begin + J>(value);
    }

    To const & to;
};

/// Two samples.
template <typename Lanes, typename From, typename To>
[[gnu::always_inline]] inline void BlockA2(From const & from, To const & to)
{
    Lanes const x0 = from.template At<0>();
    Lanes const x1 = from.template At<1>();
    to.template Put<0>(x0 + x1);
    to.template Put<1>(x0 - x1);
}
template <typename Lanes, typename From, typename To>
[[gnu::always_inline]] inline void BlockB2(From const & from, To const & to)
{
    Lanes const x0 = from.template At<0>();
    auto const turned = TimesI<Lanes>(from.template At<1>());
    to.template Put<0>(x0 + turned);
    to.template Put<1>(x0 - turned);
}

/// Gives a split at place K of the quarters of Q samples.
template <int Q, int K, typename To, typename Split>
[[gnu::always_inline]] inline void PutSplit(To const & to, Split const & split)
{
    to.template Put<K>(split.quarter0);
    to.template Put<K + Q>(split.quarter1);
    to.template Put<K + 2 * Q>(split.quarter2);
    to.template Put<K + 3 * Q>(split.quarter3);
}

/// Splits place K of a block of four quarters of Q samples. Place 0 needs no turn.
///@{
template <typename Lanes, int Q, int K, typename From>
[[gnu::always_inline]] inline SplitOfA<Lanes> TakeA(From const & from)
{
    return {from.template At<K>(), from.template At<K + Q>(), from.template At<K + 2 * Q>(),
            from.template At<K + 3 * Q>()};
}
template <typename Lanes, int Q, int K, typename From>
[[gnu::always_inline]] inline SplitOfB<Lanes> TakeB(From const & from, double cosineOf45)
{
    return {from.template At<K>(), from.template At<K + Q>(), from.template At<K + 2 * Q>(),
            from.template At<K + 3 * Q>(), cosineOf45};
}
template <typename Lanes, int Q, int K, typename From, typename To>
[[gnu::always_inline]] inline void SplitA(From const & from, To const & to, Twiddles<FactorOf<Lanes>> const & w)
{
    SplitOfA<Lanes> split = TakeA<Lanes, Q, K>(from);
    split.TurnBy(TurnAllBy<Lanes>(w.first), TurnAllBy<Lanes>(w.third));
    PutSplit<Q, K>(to, split);
}
template <typename Lanes, int Q, typename From, typename To>
[[gnu::always_inline]] inline void SplitA(From const & from, To const & to)
{
    PutSplit<Q, 0>(to, TakeA<Lanes, Q, 0>(from));
}
template <typename Lanes, int Q, int K, typename From, typename To>
[[gnu::always_inline]] inline void SplitB(From const & from, To const & to, double cosineOf45,
                                          Twiddles<FactorOf<Lanes>> const & v)
{
    SplitOfB<Lanes> split = TakeB<Lanes, Q, K>(from, cosineOf45);
    split.TurnBy(TurnAllBy<Lanes>(v.first), TurnAllBy<Lanes>(v.third));
    PutSplit<Q, K>(to, split);
}
template <typename Lanes, int Q, typename From, typename To>
[[gnu::always_inline]] inline void SplitB(From const & from, To const & to, double cosineOf45)
{
    PutSplit<Q, 0>(to, TakeB<Lanes, Q, 0>(from, cosineOf45));
}
///@}

/// Four samples, in quarters of one.
template <typename Lanes, typename From, typename To>
[[gnu::always_inline]] inline void BlockA4(From const & from, To const & to)
{
    SplitA<Lanes, 1>(from, to);
}
template <typename Lanes, typename From, typename To>
[[gnu::always_inline]] inline void BlockB4(From const & from, To const & to, double cosineOf45)
{
    SplitB<Lanes, 1>(from, to, cosineOf45);
}

/// Eight samples. `w` is the end of the twiddles, w + nw.
template <typename Lanes, typename From, typename To>
[[gnu::always_inline]] inline void BlockA8(From const & from, To const & to, double const * w)
{
    Lanes x[8];
    Held<Lanes> const held{x};
    SplitA<Lanes, 2>(from, held);
    SplitA<Lanes, 2, 1>(from, held, MiddleTwiddles<FactorOf<Lanes>>(w[-3])); // of the sub-table of two values
    BlockA2<Lanes>(held, to);
    BlockB2<Lanes>(Held<Lanes>{x + 2}, PartOf<2, To>{to});
    BlockA2<Lanes>(Held<Lanes>{x + 4}, PartOf<4, To>{to});
    BlockA2<Lanes>(Held<Lanes>{x + 6}, PartOf<6, To>{to});
}
template <typename Lanes, typename From, typename To>
[[gnu::always_inline]] inline void BlockB8(From const & from, To const & to, double const * w)
{
    double const * const t = w - 16;
    Lanes x[8];
    Held<Lanes> const held{x};
    SplitB<Lanes, 2>(from, held, t[1]);
    SplitB<Lanes, 2, 1>(from, held, t[1], LoadTwiddles<FactorOf<Lanes>>(t + 4));
    BlockA2<Lanes>(held, to);
    BlockB2<Lanes>(Held<Lanes>{x + 2}, PartOf<2, To>{to});
    BlockA2<Lanes>(Held<Lanes>{x + 4}, PartOf<4, To>{to});
    BlockB2<Lanes>(Held<Lanes>{x + 6}, PartOf<6, To>{to});
}

/// Sixteen samples.
template <typename Lanes, typename From, typename To>
[[gnu::always_inline]] inline void BlockA16(From const & from, To const & to, double const * w)
{
    using Factor = FactorOf<Lanes>;
    double const * const t = w - 8;
    double const r = t[1];
    // 22.5 degrees, and three times that
    Twiddles<Factor> const atOne{Factor{t[2], t[3]}, Factor{t[3], t[2]}};
    Lanes x[16];
    Held<Lanes> const held{x};
    SplitA<Lanes, 4>(from, held);
    SplitA<Lanes, 4, 1>(from, held, atOne);
    SplitA<Lanes, 4, 2>(from, held, MiddleTwiddles<Factor>(r));
    SplitA<Lanes, 4, 3>(from, held, Mirrored(atOne));
    BlockA4<Lanes>(held, to);
    BlockB4<Lanes>(Held<Lanes>{x + 4}, PartOf<4, To>{to}, r);
    BlockA4<Lanes>(Held<Lanes>{x + 8}, PartOf<8, To>{to});
    BlockA4<Lanes>(Held<Lanes>{x + 12}, PartOf<12, To>{to});
}
template <typename Lanes, typename From, typename To>
[[gnu::always_inline]] inline void BlockB16(From const & from, To const & to, double const * w)
{
    using Factor = FactorOf<Lanes>;
    double const * const t = w - 32;
    double const r = t[1];
    Lanes x[16];
    Held<Lanes> const held{x};
    SplitB<Lanes, 4>(from, held, r);
    SplitB<Lanes, 4, 1>(from, held, r, LoadTwiddles<Factor>(t + 4));
    SplitB<Lanes, 4, 2>(from, held, r, LoadTwiddles<Factor>(t + 8));
    SplitB<Lanes, 4, 3>(from, held, r, LoadTwiddles<Factor>(t + 12));
    BlockA4<Lanes>(held, to);
    BlockB4<Lanes>(Held<Lanes>{x + 4}, PartOf<4, To>{to}, r);
    BlockA4<Lanes>(Held<Lanes>{x + 8}, PartOf<8, To>{to});
    BlockB4<Lanes>(Held<Lanes>{x + 12}, PartOf<12, To>{to}, r);
}

/// A block of M samples; those of two and four are of type A.
template <int M, BlockType Type, typename Lanes, typename From, typename To>
[[gnu::always_inline]] inline void TransformBlock(From const & from, To const & to, double const * w)
{
    if constexpr (M == 2)
    {
        BlockA2<Lanes>(from, to);
    }
    else if constexpr (M == 4)
    {
        BlockA4<Lanes>(from, to);
    }
    else if constexpr (M == 8)
    {
        Type == BlockType::A ? BlockA8<Lanes>(from, to, w) : BlockB8<Lanes>(from, to, w);
    }
    else
    {
        Type == BlockType::A ? BlockA16<Lanes>(from, to, w) : BlockB16<Lanes>(from, to, w);
    }
}

} // namespace math::detail
