#include "signal/fft_core.h"

#include "signal/fft_reversal.h"
#include "signal/fft_steps.h"

#include <cstddef>
#include <initializer_list>

namespace math::detail
{

namespace
{

// The steps, each a function of its own for each width of a register.

struct StepsByOne
{
    template <bool IsConjugate>
    static void DSPSplitStage(std::ptrdiff_t n, double const * from, double * to, double const * t)
    {
        SplitStage<Complex, IsConjugate>(n, from, to, t);
    }
    static void DSPLevelA(std::ptrdiff_t m, double * a, double const * w) { LevelA<Complex>(m, a, w); }
    static void DSPLevelB(std::ptrdiff_t m, double * a, double const * w) { LevelB<Complex>(m, a, w); }
    template <int M, BlockType Type, typename To>
    static void RunBlock(InArray const & from, To const & to, double const * w)
    {
        TransformBlock<M, Type, Complex>(from, to, w);
    }
    template <int M, BlockType Type, typename To>
    static void RunBlocks(Both<InArray> const & from, Both<To> const & to, double const * w)
    {
        RunBlock<M, Type>(from.first, to.first, w);
        RunBlock<M, Type>(from.second, to.second, w);
    }
};

#if defined(__x86_64__)
struct StepsByTwo
{
    template <bool IsConjugate>
    [[gnu::target("avx")]] static void DSPSplitStage(std::ptrdiff_t n, double const * from, double * to,
                                                     double const * t)
    {
        SplitStage<ComplexPair, IsConjugate>(n, from, to, t);
    }
    [[gnu::target("avx")]] static void DSPLevelA(std::ptrdiff_t m, double * a, double const * w)
    {
        LevelA<ComplexPair>(m, a, w);
    }
    [[gnu::target("avx")]] static void DSPLevelB(std::ptrdiff_t m, double * a, double const * w)
    {
        LevelB<ComplexPair>(m, a, w);
    }
    template <int M, BlockType Type, typename To>
    [[gnu::target("avx")]] static void RunBlock(InArray const & from, To const & to, double const * w)
    {
        TransformBlock<M, Type, Complex>(from, to, w);
    }
    template <int M, BlockType Type, typename To>
    [[gnu::target("avx")]] static void RunBlocks(Both<InArray> const & from, Both<To> const & to, double const * w)
    {
        TransformBlock<M, Type, ComplexPair>(from, to, w);
    }
};
#endif

template <typename Steps>
void Level(BlockType type, std::ptrdiff_t m, double * a, double const * w)
{
    type == BlockType::A ? Steps::DSPLevelA(m, a, w) : Steps::DSPLevelB(m, a, w);
}

/// Runs a block of M samples, or two of the same type.
///@{
template <typename Steps, int M, BlockType Type, typename Results>
void RunLast(int number, double * a, Results const & results, double const * w)
{
    Steps::template RunBlock<M, Type>(InPlace<M>{a}.Block(number), results.Block(number), w);
}
template <typename Steps, int M, BlockType Type, typename Results>
void RunLast(int first, int second, double * a, Results const & results, double const * w)
{
    Both<InArray> const from{InPlace<M>{a}.Block(first), InPlace<M>{a}.Block(second)};
    Both<decltype(results.Block(first))> const to{results.Block(first), results.Block(second)};
    Steps::template RunBlocks<M, Type>(from, to, w);
}
///@}

/// The four blocks of M samples of a block of type A whose split is done.
template <typename Steps, int M, typename Results>
void RunFour(double * a, Results const & results, double const * w)
{
    RunLast<Steps, M, BlockType::A>(0, 2, a, results, w);
    RunLast<Steps, M, BlockType::B>(1, a, results, w);
    RunLast<Steps, M, BlockType::A>(3, a, results, w);
}

/// The sixteen blocks of M samples of a block of the type whose split and whose quarters' splits are done. The types
/// are ABAA ABAB ABAA, and ABAA or ABAB; those of one type go through by twos, the results of which are neighbours.
template <typename Steps, int M, typename Results>
void RunSixteen(BlockType type, double * a, Results const & results, double const * w)
{
    for (int const i : {0, 2, 3, 4, 6})
    {
        RunLast<Steps, M, BlockType::A>(i, i + 8, a, results, w);
    }
    for (int const i : {1, 5})
    {
        RunLast<Steps, M, BlockType::B>(i, i + 8, a, results, w);
    }
    if (type == BlockType::B)
    {
        RunLast<Steps, M, BlockType::B>(7, 15, a, results, w);
    }
    else
    {
        RunLast<Steps, M, BlockType::B>(7, a, results, w);
        RunLast<Steps, M, BlockType::A>(15, a, results, w);
    }
}

/// The results of the last blocks stay where they are, still to be reordered.
struct Staying
{
    template <int M>
    InPlace<M> OfSixteen(double * a) const
    {
        return {a};
    }
};

/// They go to their places in another array, conjugated or not.
template <bool IsConjugate>
struct Going
{
    template <int M>
    InOrder<M, 16, IsConjugate> OfSixteen(double * /*a*/) const
    {
        return {to, results};
    }

    double * to;
    ResultsOfBlock results;
};

/// The rest of a block of 256 or 512 values whose own split is done.
template <typename Steps, typename Results>
void DSPLeaf(std::ptrdiff_t m, BlockType type, double * a, Results const & results, double const * w)
{
    std::ptrdiff_t const size = m / 4;
    Steps::DSPLevelA(size, a, w);
    Steps::DSPLevelB(size, a + size, w);
    Steps::DSPLevelA(size, a + 2 * size, w);
    Level<Steps>(type, size, a + 3 * size, w);
    if (m == 512)
    {
        RunSixteen<Steps, 16>(type, a, results.template OfSixteen<16>(a), w);
    }
    else
    {
        RunSixteen<Steps, 8>(type, a, results.template OfSixteen<8>(a), w);
    }
}

/// Splits what comes before the k-th block of m values from the end, at place j: as often as k is a multiple of four,
/// from the largest block down, as all of them end there and have the type of the last quarter of the largest.
/// \return the type of the block of m values
template <typename Steps>
BlockType DSPTreeStep(std::ptrdiff_t m, std::ptrdiff_t j, std::ptrdiff_t k, double * a, double const * w)
{
    std::ptrdiff_t size = m;
    while (k % 4 == 0)
    {
        k /= 4;
        size *= 4;
    }
    auto const type = static_cast<BlockType>(k & 1);
    for (; size >= m; size /= 4)
    {
        Level<Steps>(type, size, a + j - size, w);
    }
    return type;
}

/// The splits behind the first one, depth first, from the end of the array: each block is finished as far as possible
/// while it is in the cache.
template <typename Steps>
void DSPRecurse(std::ptrdiff_t n, double * a, double const * w)
{
    std::ptrdiff_t m = n;
    while (m > 512)
    {
        m /= 4;
        Steps::DSPLevelA(m, a + n - m, w);
    }
    DSPLeaf<Steps>(m, BlockType::A, a + n - m, Staying{}, w);
    for (std::ptrdiff_t j = n - m, k = 1; j > 0; j -= m, ++k)
    {
        BlockType const type = DSPTreeStep<Steps>(m, j, k, a, w);
        DSPLeaf<Steps>(m, type, a + j - m, Staying{}, w);
    }
}

/// Where the results of a whole transform in one block go.
template <int M, bool IsBackward>
struct WholeInOrder
{
    template <int J>
    [[gnu::always_inline]] void Put(Complex const & x) const
    {
        Store(a + 2 * ResultOf<M, IsBackward>(J), x);
    }

    double * a;
};

/// A whole transform of M samples in one block.
template <int M, bool IsConjugate>
void RunSmall(double * a, double const * w)
{
    TransformBlock<M, BlockType::A, Complex>(InArray{a}, WholeInOrder<M, IsConjugate>{a}, w);
}

/// The rest of a block of 256 values or more whose own split is done, from its end.
template <typename Steps, bool IsConjugate>
void Finish(BlockType type, std::ptrdiff_t n, double * a, Going<IsConjugate> const & going, double const * w)
{
    if (n <= 512)
    {
        return DSPLeaf<Steps>(n, type, a, going, w);
    }
    std::ptrdiff_t const size = n / 4;
    for (int i = 3; i >= 0; --i)
    {
        BlockType const typeOfQuarter = TypeOfQuarter(type, i);
        Level<Steps>(typeOfQuarter, size, a + i * size, w);
        Finish<Steps>(typeOfQuarter, size, a + i * size, Going<IsConjugate>{going.to, going.results.Quarter(i)}, w);
    }
}

/// Up to this size the first stage goes to scratch memory, so that the last one can leave its results in their order.
/// Larger arrays would push one another from the cache.
constexpr int k_MostThroughScratch = 4096;

/// A transform of 64 values or more. `w` is the end of the twiddles.
template <bool IsConjugate, typename Steps>
void RunThroughScratch(int n, double * a, double const * w)
{
    double scratch[k_MostThroughScratch];
    Steps::template DSPSplitStage<IsConjugate>(n, a, scratch, w - n / 4);
    switch (n)
    {
    case 64:
        return RunFour<Steps, 8>(scratch, InOrder<8, 4, IsConjugate>{a, {0, 1}}, w);
    case 128:
        return RunFour<Steps, 16>(scratch, InOrder<16, 4, IsConjugate>{a, {0, 1}}, w);
    default:
        Finish<Steps>(BlockType::A, n, scratch, Going<IsConjugate>{a, {0, 1}}, w);
    }
}

/// The directions differ in the first stage, which conjugates what it reads, and in the last, which conjugates what it
/// reorders.
template <bool IsConjugate, typename Steps>
void RunCore(int n, double * a, int const * ip, int nw, double const * w)
{
    double const * const end = w + nw;
    switch (n)
    {
    case 0:
    case 1:
    case 2:
        return;
    case 4:
        return RunSmall<2, IsConjugate>(a, end);
    case 8:
        return RunSmall<4, IsConjugate>(a, end);
    case 16:
        return RunSmall<8, IsConjugate>(a, end);
    case 32:
        return RunSmall<16, IsConjugate>(a, end);
    default:
        break;
    }
    if (n <= k_MostThroughScratch)
    {
        return RunThroughScratch<IsConjugate, Steps>(n, a, end);
    }
    Steps::template DSPSplitStage<IsConjugate>(n, a, a, end - n / 4);
    DSPRecurse<Steps>(n, a, end);
    IsConjugate ? DSPBitReverseConj(n, ip, a) : DSPBitReverse(n, ip, a);
}

template <typename Steps>
constexpr Cores k_CoresBy{RunCore<false, Steps>, RunCore<true, Steps>};

} // namespace

Cores CoresByOne()
{
    return k_CoresBy<StepsByOne>;
}

Cores CoresByTwo()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx"))
    {
        return k_CoresBy<StepsByTwo>;
    }
#endif
    return k_CoresBy<StepsByOne>;
}

void DSPForwardCore(int n, double * a, int const * ip, int nw, double const * w)
{
    CoresByTwo().forward(n, a, ip, nw, w);
}

void DSPBackwardCore(int n, double * a, int const * ip, int nw, double const * w)
{
    CoresByTwo().backward(n, a, ip, nw, w);
}

} // namespace math::detail
