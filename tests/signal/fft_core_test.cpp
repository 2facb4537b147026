/// The complex transform, and the pass between it and the real one, by each width of a register: the same bits.

#include "signal/fft_core.h"
#include "signal/fft_passes.h"
#include "signal/fft_tables.h"
#include "signal/fourier_kernel_cases.h"
#include "signal/fourier_sums.h"
#include "support/random.h"
#include "support/same_bits.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <vector>

using namespace signal_test;
using math::detail::Cores;
using test_support::Random;

namespace
{

struct CoreTables
{
    explicit CoreTables(int n) : tables(Transform::Complex, n), nw(n / 4)
    {
        math::detail::DSPMakeTwiddles(nw, tables.ip.data(), tables.w.data());
    }
    std::vector<double> Forward(Cores const & cores, int n, std::vector<double> a) const
    {
        cores.forward(n, a.data(), tables.ip.data(), nw, tables.w.data());
        return a;
    }
    std::vector<double> Backward(Cores const & cores, int n, std::vector<double> a) const
    {
        cores.backward(n, a.data(), tables.ip.data(), nw, tables.w.data());
        return a;
    }

    Tables tables;
    int nw;
};

void ExpectSameBits(std::vector<double> const & one, std::vector<double> const & two)
{
    for (std::size_t i = 0; i < one.size(); ++i)
    {
        ASSERT_TRUE(test_support::SameBits(one[i], two[i])) << one[i] << " and " << two[i] << " at " << i;
    }
}

void ExpectSameBitsByEitherWidth(CoreTables const & tables, int n, std::vector<double> const & a)
{
    SCOPED_TRACE(n);
    Cores const one = math::detail::CoresByOne();
    Cores const two = math::detail::CoresByTwo();
    ExpectSameBits(tables.Forward(one, n, a), tables.Forward(two, n, a));
    ExpectSameBits(tables.Backward(one, n, a), tables.Backward(two, n, a));
}

TEST(FftCore, Is_the_sum_that_defines_it_by_either_width)
{
    Random random(91);
    for (int n = 4; n <= 2048; n *= 2)
    {
        CoreTables const tables(n);
        std::vector<double> const a = RandomValues(random, static_cast<std::size_t>(n));
        for (Cores const & cores : {math::detail::CoresByOne(), math::detail::CoresByTwo()})
        {
            EXPECT_LT(RelativeError(tables.Forward(cores, n, a), ComplexSum(n, 1, a)), ToleranceOf(n)) << n;
            EXPECT_LT(RelativeError(tables.Backward(cores, n, a), ComplexSum(n, -1, a)), ToleranceOf(n)) << n;
        }
    }
}

TEST(FftCore, Has_the_same_bits_by_either_width)
{
    Random random(92);
    for (int n = 2; n <= 1 << 17; n *= 2)
    {
        ExpectSameBitsByEitherWidth(CoreTables(n), n, RandomValues(random, static_cast<std::size_t>(n)));
    }
}

TEST(FftCore, Has_the_same_bits_by_either_width_with_a_larger_table)
{
    Random random(93);
    CoreTables const tables(1 << 14);
    for (int n = 2; n < 1 << 14; n *= 2)
    {
        ExpectSameBitsByEitherWidth(tables, n, RandomValues(random, static_cast<std::size_t>(n)));
    }
}

// Zeros of either sign tell a factor of 1 from none, and what is not finite a product that is left out.
TEST(FftCore, Has_the_same_bits_by_either_width_for_zeros_and_what_is_not_finite)
{
    Random random(94);
    for (int n = 2; n <= 4096; n *= 2)
    {
        CoreTables const tables(n);
        for (int round = 0; round < 8; ++round)
        {
            std::vector<double> zeros(static_cast<std::size_t>(n));
            std::vector<double> special(static_cast<std::size_t>(n));
            for (std::size_t i = 0; i < zeros.size(); ++i)
            {
                zeros[i] = random.Integer(0, 1) == 0 ? 0.0 : -0.0;
                special[i] = random.Integer(0, n) < 8 ? random.NumberOrSpecial() : random.Uniform(-1.0, 1.0);
            }
            ExpectSameBitsByEitherWidth(tables, n, zeros);
            ExpectSameBitsByEitherWidth(tables, n, special);
        }
    }
}

TEST(FftCore, Nothing_but_negative_zeros_stays_so_at_the_first_result)
{
    for (int n = 64; n <= 4096; n *= 2)
    {
        CoreTables const tables(n);
        std::vector<double> const zeros(static_cast<std::size_t>(n), -0.0);
        for (Cores const & cores : {math::detail::CoresByOne(), math::detail::CoresByTwo()})
        {
            // A sum of negative zeros is one; a product with 1 + 0 i would not be.
            EXPECT_TRUE(std::signbit(tables.Forward(cores, n, zeros)[0])) << n;
        }
    }
}

using Pass = void (*)(int n, double * a, int nc, double const * c);

void ExpectSameBitsByEitherPass(Pass one, Pass two, std::vector<double> const & a, std::vector<double> const & cosines)
{
    std::vector<double> byOne = a;
    std::vector<double> byTwo = a;
    auto const n = static_cast<int>(a.size());
    auto const nc = static_cast<int>(cosines.size());
    one(n, byOne.data(), nc, cosines.data());
    two(n, byTwo.data(), nc, cosines.data());
    ExpectSameBits(byOne, byTwo);
}

TEST(FftRealPass, Has_the_same_bits_by_either_width)
{
    Random random(95);
    math::detail::RealPasses const one = math::detail::RealPassesByOne();
    math::detail::RealPasses const two = math::detail::RealPassesByTwo();
    for (int n = 8; n <= 1 << 12; n *= 2)
    {
        for (int const nc : {n / 4, n})
        {
            SCOPED_TRACE(testing::Message() << n << " values, " << nc << " cosines");
            int offsets[2];
            std::vector<double> cosines(static_cast<std::size_t>(nc));
            math::detail::DSPMakeCosines(nc, offsets, cosines.data());
            std::vector<double> const a = RandomValues(random, static_cast<std::size_t>(n));
            std::vector<double> special = a;
            for (int i = 0; i < 8; ++i)
            {
                special[static_cast<std::size_t>(random.Integer(0, n - 1))] = random.NumberOrSpecial();
            }
            ExpectSameBitsByEitherPass(one.forwardPost, two.forwardPost, a, cosines);
            ExpectSameBitsByEitherPass(one.backwardPre, two.backwardPre, a, cosines);
            ExpectSameBitsByEitherPass(one.forwardPost, two.forwardPost, special, cosines);
            ExpectSameBitsByEitherPass(one.backwardPre, two.backwardPre, special, cosines);
        }
    }
}

TEST(FftRealPass, Separates_the_real_transform_by_either_width)
{
    Random random(96);
    for (int n = 8; n <= 1024; n *= 2)
    {
        std::vector<double> const a = RandomValues(random, static_cast<std::size_t>(n));
        CoreTables const tables(n);
        int offsets[2];
        std::vector<double> cosines(static_cast<std::size_t>(n / 4));
        math::detail::DSPMakeCosines(n / 4, offsets, cosines.data());
        for (math::detail::RealPasses const & passes :
             {math::detail::RealPassesByOne(), math::detail::RealPassesByTwo()})
        {
            std::vector<double> b = tables.Forward(math::detail::CoresByOne(), n, a);
            passes.forwardPost(n, b.data(), n / 4, cosines.data());
            double const difference = b[0] - b[1];
            b[0] += b[1];
            b[1] = difference;
            EXPECT_LT(RelativeError(b, RealSum(n, a)), ToleranceOf(n)) << n;
            b = a;
            b[1] = 0.5 * (a[0] - a[1]);
            b[0] = a[0] - b[1];
            passes.backwardPre(n, b.data(), n / 4, cosines.data());
            b = tables.Backward(math::detail::CoresByOne(), n, b);
            EXPECT_LT(RelativeError(b, RealInverseSum(n, a)), ToleranceOf(n)) << n;
        }
    }
}

} // namespace
