#pragma once

/// \file
/// Complex transforms of four arrays side by side: a sample is the four real parts, then the four imaginary ones. Each
/// array has the bits that it would have alone.

#include "signal/fft_steps.h"

#include <cstddef>

#if defined(__x86_64__)

namespace math::detail
{

using SampleOfFour = ComplexOf<ValueQuad>;
inline constexpr std::ptrdiff_t k_SizeOfFour = k_SampleSize<SampleOfFour>;

/// The transform in memory `t`. Its results go to an output by Write(place, result, sample): the sample of that place
/// has become the result of that number. The output may write to `t` at `place`.
template <bool IsBackward, typename Output>
class TransformOfFour
{
public:
    /// \param w the end of the twiddles
    TransformOfFour(double * t, double const * w, Output const & output) : m_Values(t), m_End(w), m_Output(output) {}

    /// Transforms n values of each array.
    [[gnu::target("avx")]] void Run(std::ptrdiff_t n) const
    {
        switch (n)
        {
        case 2:
            return m_Output.Write(0, 0, Load<SampleOfFour>(m_Values));
        case 4:
            return RunSmall<2>();
        case 8:
            return RunSmall<4>();
        case 16:
            return RunSmall<8>();
        case 32:
            return RunSmall<16>();
        default:
            SplitStage<SampleOfFour, IsBackward>(n, m_Values, m_Values, m_End - n / 4);
            Finish(BlockType::A, n / 2, 0, {0, 1});
        }
    }

private:
    double * PlaceOf(std::ptrdiff_t sample) const { return m_Values + k_SizeOfFour * sample; }

    /// A block whose own split is done, in the order of its quarters.
    [[gnu::target("avx")]] void Finish(BlockType type, std::ptrdiff_t count, std::ptrdiff_t begin,
                                       ResultsOfBlock const & results) const
    {
        std::ptrdiff_t const quarter = count / 4;
        for (int i = 0; i < 4; ++i)
        {
            std::ptrdiff_t const place = begin + i * quarter;
            ResultsOfBlock const part = results.Quarter(i);
            BlockType const typeOfQuarter = TypeOfQuarter(type, i);
            bool const isA = typeOfQuarter == BlockType::A;
            if (quarter == 8)
            {
                isA ? RunLast<8, BlockType::A>(place, part) : RunLast<8, BlockType::B>(place, part);
            }
            else if (quarter == 16)
            {
                isA ? RunLast<16, BlockType::A>(place, part) : RunLast<16, BlockType::B>(place, part);
            }
            else
            {
                isA ? LevelA<SampleOfFour>(2 * quarter, PlaceOf(place), m_End)
                    : LevelB<SampleOfFour>(2 * quarter, PlaceOf(place), m_End);
                Finish(typeOfQuarter, quarter, place, part);
            }
        }
    }

    /// The samples of a block.
    struct Samples
    {
        template <int J>
        [[gnu::always_inline]] SampleOfFour At() const
        {
            return Load<SampleOfFour>(begin + k_SizeOfFour * J);
        }

        double const * begin;
    };

    /// The results of a whole transform of M samples.
    template <int M>
    struct AllResults
    {
        template <int J>
        [[gnu::always_inline]] void Put(SampleOfFour const & x) const
        {
            constexpr std::ptrdiff_t result = ResultOf<M, IsBackward>(J);
            output.Write(result, result, x);
        }

        Output const & output;
    };

    /// Those of a block of M samples at the end of the steps.
    template <int M>
    struct Results
    {
        template <int J>
        [[gnu::always_inline]] void Put(SampleOfFour const & x) const
        {
            constexpr std::ptrdiff_t reversed = ReverseBits<M>(J);
            output.Write(begin + J, results.first + results.step * reversed, IsBackward ? Conjugate(x) : x);
        }

        Output const & output;
        std::ptrdiff_t begin;
        ResultsOfBlock results;
    };

    template <int M>
    [[gnu::target("avx")]] void RunSmall() const
    {
        TransformBlock<M, BlockType::A, SampleOfFour>(Samples{m_Values}, AllResults<M>{m_Output}, m_End);
    }

    template <int M, BlockType Type>
    [[gnu::target("avx")]] void RunLast(std::ptrdiff_t begin, ResultsOfBlock const & results) const
    {
        TransformBlock<M, Type, SampleOfFour>(Samples{PlaceOf(begin)}, Results<M>{m_Output, begin, results}, m_End);
    }

    double * m_Values;
    double const * m_End;
    Output m_Output;
};

} // namespace math::detail

#endif
