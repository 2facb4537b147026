#include "signal/lines_of_four.h"

#include "signal/fft_of_four.h"
#include "signal/quarter_wave.h"
#include "signal/real_pass.h"
#include "signal/real_transform.h"

#include <cstddef>

namespace math::detail
{

#if defined(__x86_64__)

namespace
{

constexpr std::ptrdiff_t k_Count = 4;

/// Leaves the results where they are.
struct LeftInPlace
{
    [[gnu::always_inline]] void Write(std::ptrdiff_t place, std::ptrdiff_t /*result*/, SampleOfFour const & x) const
    {
        Store(t + k_SizeOfFour * place, x);
    }

    double * t;
};

/// The even numbers of two registers and the odd ones, with the middle two exchanged; and the way back.
[[gnu::always_inline]] inline SampleOfFour Interleaved(ValueQuad const & x, ValueQuad const & y)
{
    return {__builtin_shufflevector(x, y, 0, 4, 2, 6), __builtin_shufflevector(x, y, 1, 5, 3, 7)};
}

/// To four neighbouring columns. Their order in a sample is 0, 2, 1, 3.
struct ToColumns
{
    [[gnu::always_inline]] void Write(std::ptrdiff_t /*place*/, std::ptrdiff_t result, SampleOfFour const & x) const
    {
        Store(rows.At(static_cast<int>(result)) + place, Interleaved(x.real, x.imaginary));
    }

    Rows const & rows;
    int place;
};

/// To four rows.
struct ToRows
{
    [[gnu::always_inline]] void Write(std::ptrdiff_t /*place*/, std::ptrdiff_t result, SampleOfFour const & x) const
    {
        auto const [of02, of13] = Interleaved(x.real, x.imaginary);
        Store(rows[0] + 2 * result, __builtin_shufflevector(of02, of02, 0, 1));
        Store(rows[1] + 2 * result, __builtin_shufflevector(of13, of13, 0, 1));
        Store(rows[2] + 2 * result, __builtin_shufflevector(of02, of02, 2, 3));
        Store(rows[3] + 2 * result, __builtin_shufflevector(of13, of13, 2, 3));
    }

    double * rows[k_Count];
};

/// Four rows of four values.
struct Tile
{
    [[gnu::always_inline]] Tile Transposed() const
    {
        ValueQuad const even01 = __builtin_shufflevector(rows[0], rows[1], 0, 4, 2, 6);
        ValueQuad const odd01 = __builtin_shufflevector(rows[0], rows[1], 1, 5, 3, 7);
        ValueQuad const even23 = __builtin_shufflevector(rows[2], rows[3], 0, 4, 2, 6);
        ValueQuad const odd23 = __builtin_shufflevector(rows[2], rows[3], 1, 5, 3, 7);
        return {{__builtin_shufflevector(even01, even23, 0, 1, 4, 5), __builtin_shufflevector(odd01, odd23, 0, 1, 4, 5),
                 __builtin_shufflevector(even01, even23, 2, 3, 6, 7),
                 __builtin_shufflevector(odd01, odd23, 2, 3, 6, 7)}};
    }

    ValueQuad rows[k_Count];
};

struct FourRows
{
    [[gnu::always_inline]] FourRows(Rows const & rows, int first)
        : at{rows.At(first), rows.At(first + 1), rows.At(first + 2), rows.At(first + 3)}
    {
    }
    [[gnu::always_inline]] void Gather(int n, double * t) const
    {
        for (std::ptrdiff_t j = 0; j < n; j += k_Count)
        {
            Tile const tile = Tile{{Load<ValueQuad>(at[0] + j), Load<ValueQuad>(at[1] + j), Load<ValueQuad>(at[2] + j),
                                    Load<ValueQuad>(at[3] + j)}}
                                  .Transposed();
            double * const to = t + k_Count * j;
            Store(to, tile.rows[0]);
            Store(to + k_Count, tile.rows[1]);
            Store(to + 2 * k_Count, tile.rows[2]);
            Store(to + 3 * k_Count, tile.rows[3]);
        }
    }
    [[gnu::always_inline]] void Scatter(int n, double const * t) const
    {
        for (std::ptrdiff_t j = 0; j < n; j += k_Count)
        {
            double const * const from = t + k_Count * j;
            Tile const tile = Tile{{Load<ValueQuad>(from), Load<ValueQuad>(from + k_Count),
                                    Load<ValueQuad>(from + 2 * k_Count), Load<ValueQuad>(from + 3 * k_Count)}}
                                  .Transposed();
            Store(at[0] + j, tile.rows[0]);
            Store(at[1] + j, tile.rows[1]);
            Store(at[2] + j, tile.rows[2]);
            Store(at[3] + j, tile.rows[3]);
        }
    }

    double * at[k_Count];
};

// The functions with the registers of AVX call none that would hand such a register on: each of the two kinds of
// functions would do it in its own way.

/// Four columns of complex numbers.
[[gnu::always_inline]] inline void GatherComplexColumns(Rows const & rows, int place, int count, double * t)
{
    for (int i = 0; i < count; ++i)
    {
        double const * const from = rows.At(i) + place;
        Store(t + k_SizeOfFour * i, Interleaved(Load<ValueQuad>(from), Load<ValueQuad>(from + k_Count)));
    }
}

/// Four columns of values.
///@{
[[gnu::always_inline]] inline void GatherColumns(Rows const & rows, int place, int count, double * t)
{
    for (int i = 0; i < count; ++i)
    {
        Store(t + k_Count * i, Load<ValueQuad>(rows.At(i) + place));
    }
}
[[gnu::always_inline]] inline void ScatterColumns(Rows const & rows, int place, int count, double const * t)
{
    for (int i = 0; i < count; ++i)
    {
        Store(rows.At(i) + place, Load<ValueQuad>(t + k_Count * i));
    }
}
///@}

/// Exchanges the samples of n values of each array that are one another's reversal.
[[gnu::always_inline]] inline void ReverseOfFour(std::ptrdiff_t n, double * t)
{
    std::ptrdiff_t const count = n / 2;
    for (std::ptrdiff_t i = 0, reversed = 0; i < count; ++i)
    {
        if (i < reversed)
        {
            auto const x = Load<SampleOfFour>(t + k_SizeOfFour * i);
            Store(t + k_SizeOfFour * i, Load<SampleOfFour>(t + k_SizeOfFour * reversed));
            Store(t + k_SizeOfFour * reversed, x);
        }
        std::ptrdiff_t bit = count / 2;
        for (; (reversed & bit) != 0; bit /= 2)
        {
            reversed ^= bit;
        }
        reversed |= bit;
    }
}

template <bool IsBackward>
[[gnu::target("avx")]] void CoreOfFour(int n, double * t, int const * /*ip*/, int nw, double const * w)
{
    TransformOfFour<IsBackward, LeftInPlace>(t, w + nw, {t}).Run(n);
    if (n > 32)
    {
        ReverseOfFour(n, t);
    }
}

template <bool IsForward>
[[gnu::target("avx")]] void RealPassOfFour(int n, double * t, int nc, double const * c)
{
    RealPass<IsForward, SampleOfFour>(n, t, nc, c);
}

constexpr RealParts k_PartsOfFour{{CoreOfFour<false>, CoreOfFour<true>}, {RealPassOfFour<true>, RealPassOfFour<false>}};

template <typename Output>
[[gnu::always_inline]] inline void TransformComplex(int n, int sign, KernelMemory const & memory, Output const & output)
{
    EnsureTwiddles(n, 4, memory.ip, memory.w);
    double const * const end = memory.w + memory.ip[0];
    sign >= 0 ? TransformOfFour<false, Output>(memory.t, end, output).Run(n)
              : TransformOfFour<true, Output>(memory.t, end, output).Run(n);
}

[[gnu::target("avx")]] void ComplexRows(Rows const & rows, int first, int n, int sign, KernelMemory const & memory)
{
    FourRows const four(rows, first);
    four.Gather(n, memory.t);
    TransformComplex(n, sign, memory, ToRows{four.at[0], four.at[1], four.at[2], four.at[3]});
}

[[gnu::target("avx")]] void ComplexColumns(Rows const & rows, int place, int n, int sign, KernelMemory const & memory)
{
    GatherComplexColumns(rows, place, n / 2, memory.t);
    TransformComplex(n, sign, memory, ToColumns{rows, place});
}

struct Real
{
    [[gnu::always_inline]] static void Run(int n, int sign, KernelMemory const & memory)
    {
        TransformReal<ValueQuad>(k_PartsOfFour, n, sign, memory.t, memory.ip, memory.w);
    }
};

template <bool IsSine>
struct QuarterWave
{
    [[gnu::always_inline]] static void Run(int n, int sign, KernelMemory const & memory)
    {
        TransformQuarterWave<IsSine, ValueQuad>(k_PartsOfFour, n, sign, memory.t, memory.ip, memory.w);
    }
};

template <typename Kernel>
[[gnu::target("avx")]] void RowsOfValues(Rows const & rows, int first, int n, int sign, KernelMemory const & memory)
{
    FourRows const four(rows, first);
    four.Gather(n, memory.t);
    Kernel::Run(n, sign, memory);
    four.Scatter(n, memory.t);
}

template <typename Kernel>
[[gnu::target("avx")]] void ColumnsOfValues(Rows const & rows, int place, int n, int sign, KernelMemory const & memory)
{
    GatherColumns(rows, place, n, memory.t);
    Kernel::Run(n, sign, memory);
    ScatterColumns(rows, place, n, memory.t);
}

constexpr FourLines k_FourLines{ComplexRows,
                                RowsOfValues<Real>,
                                RowsOfValues<QuarterWave<false>>,
                                RowsOfValues<QuarterWave<true>>,
                                ComplexColumns,
                                ColumnsOfValues<QuarterWave<false>>,
                                ColumnsOfValues<QuarterWave<true>>};

} // namespace

FourLines const * FindFourLines()
{
    return __builtin_cpu_supports("avx") ? &k_FourLines : nullptr;
}

#else

FourLines const * FindFourLines()
{
    return nullptr;
}

#endif

} // namespace math::detail
