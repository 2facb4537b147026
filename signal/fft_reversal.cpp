#include "signal/fft_reversal.h"

#include "signal/complex_lanes.h"

#include <array>
#include <cstddef>

namespace math::detail
{

namespace
{

template <bool IsConjugate>
inline Complex Read(double const * from)
{
    return IsConjugate ? Conjugate(Load<Complex>(from)) : Load<Complex>(from);
}

template <bool IsConjugate>
inline void Exchange(double * a, double * b)
{
    Complex const first = Read<IsConjugate>(a);
    Store(a, Read<IsConjugate>(b));
    Store(b, first);
}

template <int Mids>
constexpr std::array<std::ptrdiff_t, Mids> k_Reversed = []
{
    std::array<std::ptrdiff_t, Mids> reversed{};
    for (std::ptrdiff_t mid = 0; mid < Mids; ++mid)
    {
        reversed[static_cast<std::size_t>(mid)] = ReverseBits<Mids>(mid);
    }
    return reversed;
}();

/// A sample's number is lo + m mid + m Mids hi, with m and Mids powers of two: rows of lo against columns of hi, with
/// Mids samples at each place. Its reversal exchanges lo and hi and reverses each part.
///
/// The places are taken by tiles of Side neighbours in lo against as many hi that are neighbours when reversed, so that
/// what comes into the cache with one sample is used at once: a tile and the one that it exchanges samples with are
/// both made of runs of Side samples.
template <int Mids, int Side, bool IsConjugate>
class Reversal
{
public:
    Reversal(std::ptrdiff_t m, int const * ip, double * a) : m_M(m), m_Offsets(ip + m), m_Data(a) {}

    void Run() const
    {
        for (std::ptrdiff_t lo = 0; lo < m_M; lo += Side)
        {
            std::ptrdiff_t const ownHi = ReversedOf(lo); // of the tile that is its own reversal
            for (std::ptrdiff_t hi = 0; hi < ownHi; ++hi)
            {
                ExchangeTiles(lo, hi);
            }
            ReverseOwnTile(lo, ownHi);
        }
    }

private:
    std::ptrdiff_t ReversedOf(std::ptrdiff_t part) const { return m_Offsets[part] / (8 * m_M); }
    std::ptrdiff_t Step() const { return 2 * m_M; } // between neighbours in mid, in values
    double * PlaceOf(std::ptrdiff_t lo, std::ptrdiff_t hi) const { return m_Data + 2 * lo + Step() * Mids * hi; }

    void ExchangeTiles(std::ptrdiff_t lo, std::ptrdiff_t hi) const
    {
        double * from[Side];
        double * to[Side];
        for (std::ptrdiff_t i = 0; i < Side; ++i)
        {
            from[i] = PlaceOf(lo, hi + i * (m_M / Side));
            to[i] = PlaceOf(ReversedOf(hi), ReversedOf(lo + i));
        }
        for (std::ptrdiff_t mid = 0; mid < Mids; ++mid)
        {
            std::ptrdiff_t const here = Step() * mid;
            std::ptrdiff_t const there = Step() * k_Reversed<Mids>[static_cast<std::size_t>(mid)];
            for (std::ptrdiff_t i = 0; i < Side; ++i)
            {
                for (std::ptrdiff_t j = 0; j < Side; ++j)
                {
                    Exchange<IsConjugate>(from[j] + here + 2 * i, to[i] + there + 2 * ReverseBits<Side>(j));
                }
            }
        }
    }

    void ReverseOwnTile(std::ptrdiff_t tileLo, std::ptrdiff_t tileHi) const
    {
        for (std::ptrdiff_t lo = tileLo; lo < tileLo + Side; ++lo)
        {
            std::ptrdiff_t const ownHi = ReversedOf(lo);
            for (std::ptrdiff_t hi = tileHi; hi < ownHi; hi += m_M / Side)
            {
                ExchangePlaces(PlaceOf(lo, hi), PlaceOf(ReversedOf(hi), ownHi));
            }
            ReverseOwnPlace(PlaceOf(lo, ownHi));
        }
    }

    void ExchangePlaces(double * from, double * to) const
    {
        for (std::ptrdiff_t mid = 0; mid < Mids; ++mid)
        {
            Exchange<IsConjugate>(from + Step() * mid, to + Step() * k_Reversed<Mids>[static_cast<std::size_t>(mid)]);
        }
    }

    /// The reversal of lo beside lo: the middle alone is reversed.
    void ReverseOwnPlace(double * place) const
    {
        for (std::ptrdiff_t mid = 0; mid < Mids; ++mid)
        {
            std::ptrdiff_t const reversed = k_Reversed<Mids>[static_cast<std::size_t>(mid)];
            double * const sample = place + Step() * mid;
            if (mid < reversed)
            {
                Exchange<IsConjugate>(sample, place + Step() * reversed);
            }
            else if (IsConjugate && mid == reversed)
            {
                Store(sample, Conjugate(Load<Complex>(sample)));
            }
        }
    }

    std::ptrdiff_t m_M;
    int const * m_Offsets; // 8 m times the reversal
    double * m_Data;
};

template <int Mids, bool IsConjugate>
void Reverse(int m, int const * ip, double * a)
{
    m < 4 ? Reversal<Mids, 2, IsConjugate>(m, ip, a).Run() : Reversal<Mids, 4, IsConjugate>(m, ip, a).Run();
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
