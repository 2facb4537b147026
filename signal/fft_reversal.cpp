#include "signal/fft_reversal.h"

#include "signal/complex_lanes.h"

namespace math::detail
{

namespace
{

template <bool IsConjugate>
inline Complex Read(double const * from)
{
    return IsConjugate ? Conjugate(Load(from)) : Load(from);
}

template <bool IsConjugate>
inline void Exchange(double * a, double * b)
{
    Complex const first = Read<IsConjugate>(a);
    Store(a, Read<IsConjugate>(b));
    Store(b, first);
}

/// A sample's number is lo + m mid + m mids hi, with m and Mids powers of two; its reversal exchanges lo and hi and
/// reverses each part. `half` is that of the square: rows of lo against columns of hi.
template <int Mids, bool IsConjugate>
void Reverse(int m, int const * ip, double * a)
{
    int const step = 2 * m; // between neighbours in mid, in values
    for (int lo = 0; lo < m; ++lo)
    {
        int const hiOfLo = Mids / 4 * ip[m + lo]; // where the reversal of lo stands as hi
        int const reversedLo = ip[m + lo] / (8 * m);
        for (int hi = 0; hi < reversedLo; ++hi)
        {
            double * const from = a + 2 * lo + step * Mids * hi;
            double * const to = a + hiOfLo + ip[m + hi] / (4 * m);
            for (int mid = 0; mid < Mids; ++mid)
            {
                Exchange<IsConjugate>(from + step * mid, to + step * ReverseBits<Mids>(mid));
            }
        }
        // The reversal of lo beside lo: the middle alone is reversed.
        double * const row = a + 2 * lo + hiOfLo;
        for (int mid = 0; mid < Mids; ++mid)
        {
            int const reversed = ReverseBits<Mids>(mid);
            if (mid < reversed)
            {
                Exchange<IsConjugate>(row + step * mid, row + step * reversed);
            }
            else if (IsConjugate && mid == reversed)
            {
                Store(row + step * mid, Conjugate(Load(row + step * mid)));
            }
        }
    }
}

template <bool IsConjugate>
void Reverse(int n, int const * ip, double * a)
{
    int m = 2;
    for (int l = n / 4; l > 32; l /= 4)
    {
        m *= 2;
    }
    n / 2 / (m * m) == 8 ? Reverse<8, IsConjugate>(m, ip, a) : Reverse<16, IsConjugate>(m, ip, a);
}

} // namespace

void DSPBitReverse(int n, int const * ip, double * a)
{
    Reverse<false>(n, ip, a);
}

void DSPBitReverseConj(int n, int const * ip, double * a)
{
    Reverse<true>(n, ip, a);
}

} // namespace math::detail
