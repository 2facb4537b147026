#pragma once

/// \file
/// The smallest blocks of the transform, in straight lines. A block of M samples is of one of two types, and leaves its
/// results in bit-reversed order:
/// - A: Y[p] = sum of x[j] exp(2 pi i j p / M)
/// - B: Y[p] = sum of x[j] exp(2 pi i j (p + 1/2) / M), the odd half of a split
/// The four quarters of a split are blocks of the types A, B, A, A for a block of type A and A, B, A, B for one of type
/// B.

#include "signal/complex_lanes.h"

namespace math::detail
{

/// The first step of a split in four, for four samples a quarter of a block apart. Type A gives the sums of the even
/// samples' halves and, still to be turned by W^k and W^3k, those of the odd ones (W = exp(2 pi i / M)).
struct SplitOfA
{
    SplitOfA(Complex const & x0, Complex const & x1, Complex const & x2, Complex const & x3)
    {
        Complex const s = x0 + x2;
        Complex const d = x0 - x2;
        Complex const u = x1 + x3;
        Complex const v = TimesI(x1 - x3);
        quarter0 = s + u;
        quarter1 = s - u;
        quarter2 = d + v;
        quarter3 = d - v;
    }

    Complex quarter0;
    Complex quarter1;
    Complex quarter2;
    Complex quarter3;
};

/// The same for type B: quarters 0 and 1 are still to be turned by V^k, 2 and 3 by V^3k (V = exp(pi i / M)).
struct SplitOfB
{
    SplitOfB(Complex const & x0, Complex const & x1, Complex const & x2, Complex const & x3, double cosineOf45)
    {
        Complex const r{cosineOf45, cosineOf45};
        Complex const p = x0 + TimesI(x2);
        Complex const q = x0 - TimesI(x2);
        Complex const sum = x1 + TimesI(x3);
        Complex const difference = x1 - TimesI(x3);
        Complex const f = r * (sum + TimesI(sum));
        Complex const g = r * (TimesI(difference) - difference);
        quarter0 = p + f;
        quarter1 = p - f;
        quarter2 = q + g;
        quarter3 = q - g;
    }

    Complex quarter0;
    Complex quarter1;
    Complex quarter2;
    Complex quarter3;
};

/// Two samples.
inline void BlockA2(Complex * x)
{
    Complex const difference = x[0] - x[1];
    x[0] += x[1];
    x[1] = difference;
}
inline void BlockB2(Complex * x)
{
    Complex const turned = TimesI(x[1]);
    x[1] = x[0] - turned;
    x[0] += turned;
}

/// Four samples.
inline void BlockA4(Complex * x)
{
    SplitOfA const split(x[0], x[1], x[2], x[3]);
    x[0] = split.quarter0;
    x[1] = split.quarter1;
    x[2] = split.quarter2;
    x[3] = split.quarter3;
}
inline void BlockB4(Complex * x, double cosineOf45)
{
    SplitOfB const split(x[0], x[1], x[2], x[3], cosineOf45);
    x[0] = split.quarter0;
    x[1] = split.quarter1;
    x[2] = split.quarter2;
    x[3] = split.quarter3;
}

/// Stores a split at place k of the quarters of Q samples, without a turn.
template <int Q, typename Split>
inline void StoreSplit(Complex * x, int k, Split const & split)
{
    x[k] = split.quarter0;
    x[k + Q] = split.quarter1;
    x[k + 2 * Q] = split.quarter2;
    x[k + 3 * Q] = split.quarter3;
}

/// Splits place k of a block of type A of four quarters of Q samples.
template <int Q>
inline void SplitA(Complex * x, int k, Twiddle const & w1, Twiddle const & w3)
{
    SplitOfA split(x[k], x[k + Q], x[k + 2 * Q], x[k + 3 * Q]);
    split.quarter2 = Turn(split.quarter2, w1);
    split.quarter3 = Turn(split.quarter3, w3);
    StoreSplit<Q>(x, k, split);
}
template <int Q>
inline void SplitA(Complex * x)
{
    StoreSplit<Q>(x, 0, SplitOfA(x[0], x[Q], x[2 * Q], x[3 * Q]));
}
template <int Q>
inline void SplitB(Complex * x, int k, double cosineOf45, Twiddle const & v1, Twiddle const & v3)
{
    SplitOfB split(x[k], x[k + Q], x[k + 2 * Q], x[k + 3 * Q], cosineOf45);
    split.quarter0 = Turn(split.quarter0, v1);
    split.quarter1 = Turn(split.quarter1, v1);
    split.quarter2 = Turn(split.quarter2, v3);
    split.quarter3 = Turn(split.quarter3, v3);
    StoreSplit<Q>(x, k, split);
}
template <int Q>
inline void SplitB(Complex * x, double cosineOf45)
{
    StoreSplit<Q>(x, 0, SplitOfB(x[0], x[Q], x[2 * Q], x[3 * Q], cosineOf45));
}

/// Eight samples. `w` is the end of the twiddles, w + nw.
inline void BlockA8(Complex * x, double const * w)
{
    double const r = w[-3]; // of the sub-table of two values
    SplitA<2>(x);
    SplitA<2>(x, 1, {r, r}, {-r, r});
    BlockA2(x);
    BlockB2(x + 2);
    BlockA2(x + 4);
    BlockA2(x + 6);
}
inline void BlockB8(Complex * x, double const * w)
{
    double const * const t = w - 16;
    SplitB<2>(x, t[1]);
    SplitB<2>(x, 1, t[1], {t[4], t[5]}, {t[6], -t[7]});
    BlockA2(x);
    BlockB2(x + 2);
    BlockA2(x + 4);
    BlockB2(x + 6);
}

/// Sixteen samples.
inline void BlockA16(Complex * x, double const * w)
{
    double const * const t = w - 8;
    double const r = t[1];
    SplitA<4>(x);
    SplitA<4>(x, 1, {t[2], t[3]}, {t[3], t[2]});
    SplitA<4>(x, 2, {r, r}, {-r, r});
    SplitA<4>(x, 3, {t[3], t[2]}, {-t[2], -t[3]});
    BlockA4(x);
    BlockB4(x + 4, r);
    BlockA4(x + 8);
    BlockA4(x + 12);
}
inline void BlockB16(Complex * x, double const * w)
{
    double const * const t = w - 32;
    double const r = t[1];
    SplitB<4>(x, r);
    for (int k = 1; k < 4; ++k)
    {
        SplitB<4>(x, k, r, {t[4 * k], t[4 * k + 1]}, {t[4 * k + 2], -t[4 * k + 3]});
    }
    BlockA4(x);
    BlockB4(x + 4, r);
    BlockA4(x + 8);
    BlockB4(x + 12, r);
}

} // namespace math::detail
