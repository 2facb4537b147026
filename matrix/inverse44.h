#pragma once

/// \file
/// Inverse of a four by four array.

#include "math/detail/row4.h"
#include "math/numeric.h"
#include "numeric/pair.h"

#include <cmath>
#include <cstring>
#include <utility>

namespace math::detail
{

/// A row, by two neighbours that go through the same operations.
struct PairedRow
{
    Pair low;
    Pair high;
};

[[gnu::always_inline]] inline Pair LoadPair(double const * from)
{
    Pair pair;
    std::memcpy(&pair, from, sizeof pair);
    return pair;
}

[[gnu::always_inline]] inline void LoadWidened(double const * from, PairedRow & row)
{
    row = {LoadPair(from), LoadPair(from + 2)};
}
[[gnu::always_inline]] inline void LoadWidened(float const * from, PairedRow & row)
{
    Row4<float>::Lanes narrow;
    std::memcpy(&narrow, from, sizeof narrow);
    auto const wide = __builtin_convertvector(narrow, Row4<double>::Lanes);
    row = {__builtin_shufflevector(wide, wide, 0, 1), __builtin_shufflevector(wide, wide, 2, 3)};
}

[[gnu::always_inline]] inline void StoreNarrowed(Pair low, Pair high, double * to)
{
    std::memcpy(to, &low, sizeof low);
    std::memcpy(to + 2, &high, sizeof high);
}
[[gnu::always_inline]] inline void StoreNarrowed(Pair low, Pair high, float * to)
{
    auto const wide = __builtin_shufflevector(low, high, 0, 1, 2, 3);
    StoreRow(__builtin_convertvector(wide, Row4<float>::Lanes), to);
}

/// Element C, twice.
template <int C>
[[gnu::always_inline]] inline Pair GetTwice(PairedRow const & row)
{
    Pair const & pair = C < 2 ? row.low : row.high;
    return __builtin_shufflevector(pair, pair, C % 2, C % 2);
}

/// Replaces element C by one that is given twice.
template <int C>
[[gnu::always_inline]] inline void Put(PairedRow & row, Pair const & twice)
{
    Pair & pair = C < 2 ? row.low : row.high;
    pair = C % 2 == 0 ? __builtin_shufflevector(twice, pair, 0, 3) : __builtin_shufflevector(pair, twice, 0, 2);
}

/// A matrix beside the identity in the course of Gauss-Jordan elimination. Of the eight columns only four matter at a
/// time: column k of the matrix is not read again after step k and leaves its place to the column of the identity whose
/// one stands in row k, which begins to change with that step. So the registers hold it as a whole, and what works on
/// it is inlined.
struct Elimination
{
    PairedRow rows[4];
    /// What the columns of the identity that are not yet among the rows have in each row beside their one, given twice:
    /// the same in all of them, a zero with the sign that the operations give it, or a NaN.
    Pair beside[4] = {};
    /// The row that took the place of row k in step k, in two bits a step, the first at the bottom; 0 if none did.
    unsigned exchanges = 0;
};

/// Whether row R serves as pivot row of column K. A NaN does not.
template <int K, int R>
[[gnu::always_inline]] inline bool IsPivot(Elimination const & m, double limit)
{
    return std::abs(GetTwice<K>(m.rows[R])[0]) >= limit;
}

/// Brings a row with a usable pivot to place K: the first from row R on that serves. A larger pivot further down is not
/// looked for.
template <int K, int R>
[[gnu::always_inline]] inline bool ExchangeForPivot(Elimination & m, double limit)
{
    if constexpr (R < 4)
    {
        if (!IsPivot<K, R>(m, limit))
        {
            return ExchangeForPivot<K, R + 1>(m, limit);
        }
        std::swap(m.rows[K], m.rows[R]);
        std::swap(m.beside[K], m.beside[R]);
        m.exchanges |= unsigned{R} << (2 * K);
        return true;
    }
    return false;
}

/// Subtracts row K so often from row R that column K is cleared there.
template <int K, int R>
[[gnu::always_inline]] inline void Clear(Elimination & m)
{
    Pair const factor = GetTwice<K>(m.rows[R]);
    Put<K>(m.rows[R], m.beside[R]);
    m.rows[R].low -= factor * m.rows[K].low;
    m.rows[R].high -= factor * m.rows[K].high;
    m.beside[R] -= factor * m.beside[K];
}

/// Step K. Returns false where there is no pivot.
template <int K>
[[gnu::always_inline]] inline bool Eliminate(Elimination & m, double limit)
{
    if (!IsPivot<K, K>(m, limit) && !ExchangeForPivot<K, K + 1>(m, limit)) [[unlikely]]
    {
        return false;
    }
    Pair const reciprocal = 1.0 / GetTwice<K>(m.rows[K]);
    // The one, or a NaN.
    Put<K>(m.rows[K], 1.0 + m.beside[K]);
    m.rows[K].low *= reciprocal;
    m.rows[K].high *= reciprocal;
    m.beside[K] *= reciprocal;
    // The row of the next pivot, which the next division waits for, comes first.
    Clear<K, (K + 1) % 4>(m);
    Clear<K, (K + 2) % 4>(m);
    Clear<K, (K + 3) % 4>(m);
    return true;
}

/// Stores the columns of four pairs as two rows.
template <typename T>
[[gnu::always_inline]] inline void StoreColumns(Pair a, Pair b, Pair c, Pair d, T (*const out)[4])
{
    StoreNarrowed(__builtin_shufflevector(a, b, 0, 2), __builtin_shufflevector(c, d, 0, 2), out[0]);
    StoreNarrowed(__builtin_shufflevector(a, b, 1, 3), __builtin_shufflevector(c, d, 1, 3), out[1]);
}

template <typename T>
[[gnu::always_inline]] inline void StoreRows(PairedRow const (&rows)[4], bool isTransposed, T (*const out)[4])
{
    auto const & [a, b, c, d] = rows;
    if (isTransposed)
    {
        StoreColumns(a.low, b.low, c.low, d.low, out);
        StoreColumns(a.high, b.high, c.high, d.high, out + 2);
    }
    else
    {
        StoreNarrowed(a.low, a.high, out[0]);
        StoreNarrowed(b.low, b.high, out[1]);
        StoreNarrowed(c.low, c.high, out[2]);
        StoreNarrowed(d.low, d.high, out[3]);
    }
}

/// The inverse of a matrix with rows exchanged has its columns exchanged. Brings them back. Out of line, lest compilers
/// hold the result in memory for it.
template <typename T>
[[gnu::noinline]] void UndoExchanges(unsigned exchanges, bool isTransposed, T (*const out)[4])
{
    for (int k = 2; k >= 0; --k)
    {
        unsigned const other = exchanges >> (2 * k) & 3U;
        for (int i = 0; other != 0 && i < 4; ++i)
        {
            isTransposed ? std::swap(out[k][i], out[other][i]) : std::swap(out[i][k], out[i][other]);
        }
    }
}

/// Writes the inverse of a, computed in `double`, to `out`, which may be a. Returns false, with nothing written, where
/// a column has no pivot that is at or above the standard tolerance in magnitude.
template <typename T>
[[gnu::always_inline]] inline bool Invert(T const (*const a)[4], T (*const out)[4], bool isTransposed)
{
    double const limit = k_WidenedTolerance<T>;
    Elimination m;
    for (int r = 0; r < 4; ++r)
    {
        LoadWidened(a[r], m.rows[r]);
    }
    if (!(Eliminate<0>(m, limit) && Eliminate<1>(m, limit) && Eliminate<2>(m, limit) && Eliminate<3>(m, limit)))
    {
        return false;
    }
    StoreRows(m.rows, isTransposed, out);
    if (m.exchanges != 0) [[unlikely]]
    {
        UndoExchanges(m.exchanges, isTransposed, out);
    }
    return true;
}

} // namespace math::detail
