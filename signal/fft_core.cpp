#include "signal/fft_core.h"

#include "signal/fft_reversal.h"
#include "signal/fft_steps.h"

#include <cstddef>

namespace math::detail
{

namespace
{

// The steps, each a function of its own for each width of a register.

struct StepsByOne
{
    template <bool IsConjugate>
    static void DSPSplitStage(std::ptrdiff_t n, double * a, double const * t)
    {
        SplitStage<Complex, IsConjugate>(n, a, t);
    }
    static void DSPLevelA(std::ptrdiff_t m, double * a, double const * w) { LevelA<Complex>(m, a, w); }
    static void DSPLevelB(std::ptrdiff_t m, double * a, double const * w) { LevelB<Complex>(m, a, w); }
    template <int M>
    static void RunFour(double * a, double const * w)
    {
        RunFourBlocks<M, Complex>(a, w);
    }
    template <int M>
    static void RunSixteen(BlockType type, double * a, double const * w)
    {
        RunSixteenBlocks<M, Complex>(type, a, w);
    }
};

#if defined(__x86_64__)
struct StepsByTwo
{
    template <bool IsConjugate>
    [[gnu::target("avx")]] static void DSPSplitStage(std::ptrdiff_t n, double * a, double const * t)
    {
        SplitStage<ComplexPair, IsConjugate>(n, a, t);
    }
    [[gnu::target("avx")]] static void DSPLevelA(std::ptrdiff_t m, double * a, double const * w)
    {
        LevelA<ComplexPair>(m, a, w);
    }
    [[gnu::target("avx")]] static void DSPLevelB(std::ptrdiff_t m, double * a, double const * w)
    {
        LevelB<ComplexPair>(m, a, w);
    }
    template <int M>
    [[gnu::target("avx")]] static void RunFour(double * a, double const * w)
    {
        RunFourBlocks<M, ComplexPair>(a, w);
    }
    template <int M>
    [[gnu::target("avx")]] static void RunSixteen(BlockType type, double * a, double const * w)
    {
        RunSixteenBlocks<M, ComplexPair>(type, a, w);
    }
};
#endif

template <typename Steps>
void Level(BlockType type, std::ptrdiff_t m, double * a, double const * w)
{
    type == BlockType::A ? Steps::DSPLevelA(m, a, w) : Steps::DSPLevelB(m, a, w);
}

/// The rest of a block of 256 or 512 values whose own split is done.
template <typename Steps>
void DSPLeaf(std::ptrdiff_t m, BlockType type, double * a, double const * w)
{
    std::ptrdiff_t const size = m / 4;
    Steps::DSPLevelA(size, a, w);
    Steps::DSPLevelB(size, a + size, w);
    Steps::DSPLevelA(size, a + 2 * size, w);
    Level<Steps>(type, size, a + 3 * size, w);
    if (m == 512)
    {
        Steps::template RunSixteen<16>(type, a, w);
    }
    else
    {
        Steps::template RunSixteen<8>(type, a, w);
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
    DSPLeaf<Steps>(m, BlockType::A, a + n - m, w);
    for (std::ptrdiff_t j = n - m, k = 1; j > 0; j -= m, ++k)
    {
        BlockType const type = DSPTreeStep<Steps>(m, j, k, a, w);
        DSPLeaf<Steps>(m, type, a + j - m, w);
    }
}

/// A whole transform of M samples in one block.
template <int M, bool IsConjugate>
void RunSmall(double * a, double const * w)
{
    Complex x[M];
    for (std::ptrdiff_t j = 0; j < M; ++j)
    {
        x[j] = Load<Complex>(a + 2 * j);
    }
    if constexpr (M == 4)
    {
        BlockA4(x);
    }
    else
    {
        TransformBlock<M, BlockType::A>(x, w);
    }
    // Backwards is forwards with the order of the results reversed but for the first.
    for (int j = 0; j < M; ++j)
    {
        std::ptrdiff_t const place = ReverseBits<M>(j);
        Store(a + 2 * (IsConjugate ? (M - place) % M : place), x[j]);
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
    {
        Complex x[2] = {Load<Complex>(a), Load<Complex>(a + 2)};
        BlockA2(x);
        Store(a, x[0]);
        Store(a + 2, x[1]);
        return;
    }
    case 8:
        return RunSmall<4, IsConjugate>(a, end);
    case 16:
        return RunSmall<8, IsConjugate>(a, end);
    case 32:
        return RunSmall<16, IsConjugate>(a, end);
    default:
        break;
    }
    Steps::template DSPSplitStage<IsConjugate>(n, a, end - n / 4);
    switch (n)
    {
    case 64:
        Steps::template RunFour<8>(a, end);
        break;
    case 128:
        Steps::template RunFour<16>(a, end);
        break;
    case 256:
    case 512:
        DSPLeaf<Steps>(n, BlockType::A, a, end);
        break;
    default:
        DSPRecurse<Steps>(n, a, end);
    }
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
