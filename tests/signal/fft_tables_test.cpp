/// The tables of the transform kernels: each place by its formula, and when they are made.

#include "signal/fft_passes.h"
#include "signal/fft_tables.h"
#include "signal/fourier_kernel_cases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

using namespace signal_test;

namespace
{

void ExpectSameBits(std::vector<double> const & values, std::vector<double> const & expected)
{
    ASSERT_EQ(values.size(), expected.size());
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        ASSERT_EQ(std::bit_cast<std::uint64_t>(values[i]), std::bit_cast<std::uint64_t>(expected[i]))
            << "at " << i << ": " << values[i] << " for " << expected[i];
    }
}

/// The sub-table of h entries: 1, cos 45 degrees, then 22.5 degrees for four entries, or the factors of an
/// interpolation and the angles by fours.
std::vector<double> SubTable(int h)
{
    double const delta = std::atan(1.0) / h;
    std::vector<double> entries{1, std::cos(delta * h)};
    if (h == 4)
    {
        entries.insert(entries.end(), {std::cos(delta * 2), std::sin(delta * 2)});
    }
    if (h > 4)
    {
        entries.insert(entries.end(), {0.5 / std::cos(delta * 2), 0.5 / std::cos(delta * 6)});
        for (int j = 4; j < h; j += 4)
        {
            entries.insert(entries.end(), {std::cos(delta * j), std::sin(delta * j), std::cos(3 * delta * j),
                                           -std::sin(3 * delta * j)});
        }
    }
    return entries;
}

/// Sub-tables of nw/2, nw/4, ... 2 entries, and two places without one.
std::vector<double> TwiddleChain(int nw)
{
    std::vector<double> chain;
    for (int h = nw / 2; h >= 2; h /= 2)
    {
        std::vector<double> const entries = SubTable(h);
        chain.insert(chain.end(), entries.begin(), entries.end());
    }
    chain.resize(static_cast<std::size_t>(nw), k_Unwritten);
    return chain;
}

std::vector<double> Cosines(int nc)
{
    std::vector<double> cosines(static_cast<std::size_t>(nc), k_Unwritten);
    if (nc > 1)
    {
        auto const h = static_cast<std::size_t>(nc / 2);
        double const delta = std::atan(1.0) / (nc / 2);
        for (std::size_t j = 1; j < h; ++j)
        {
            cosines[j] = 0.5 * std::cos(delta * static_cast<double>(j));
            cosines[2 * h - j] = 0.5 * std::sin(delta * static_cast<double>(j));
        }
        cosines[0] = std::cos(delta * static_cast<double>(h));
        cosines[h] = 0.5 * cosines[0];
    }
    return cosines;
}

int ReversedBits(int number, int bits)
{
    int reversed = 0;
    for (int bit = 0; bit < bits; ++bit)
    {
        reversed |= (number >> bit & 1) << (bits - 1 - bit);
    }
    return reversed;
}

/// The offsets for a transform of 4 nw values: as many as its square of rows and columns needs, and no more.
std::vector<int> Offsets(int nw)
{
    int bits = 1;
    for (int l = nw; l > 32; l /= 4)
    {
        ++bits;
    }
    std::vector<int> offsets(2U << bits, k_UnwrittenIndex);
    for (int b = 1; b <= bits; ++b)
    {
        int const m = 1 << b;
        for (int j = 0; j < m; ++j)
        {
            offsets[static_cast<std::size_t>(m + j)] = 8 * m * ReversedBits(j, b);
        }
    }
    return offsets;
}

struct MadeTables
{
    explicit MadeTables(int places) : w(static_cast<std::size_t>(places), k_Unwritten), ip(2000, k_UnwrittenIndex) {}
    std::vector<double> w;
    std::vector<int> ip;
};

TEST(FftTables, Twiddles_are_a_chain_of_tables_bit_for_bit)
{
    for (int nw = 4; nw <= 1 << 16; nw *= 2)
    {
        SCOPED_TRACE(nw);
        MadeTables made(nw + 3);
        math::detail::DSPMakeTwiddles(nw, made.ip.data(), made.w.data());
        std::vector<double> expected = TwiddleChain(nw);
        expected.resize(expected.size() + 3, k_Unwritten);
        ExpectSameBits(made.w, expected);
        EXPECT_EQ(made.ip[0], nw);
        EXPECT_EQ(made.ip[1], 1);
    }
}

TEST(FftTables, Fewer_than_three_twiddles_are_counted_and_not_written)
{
    for (int nw = 0; nw < 3; ++nw)
    {
        SCOPED_TRACE(nw);
        MadeTables made(3);
        math::detail::DSPMakeTwiddles(nw, made.ip.data(), made.w.data());
        ExpectSameBits(made.w, {k_Unwritten, k_Unwritten, k_Unwritten});
        EXPECT_EQ(made.ip[0], nw);
        EXPECT_EQ(made.ip[1], 1);
        EXPECT_EQ(made.ip[2], k_UnwrittenIndex);
    }
}

TEST(FftTables, Offsets_are_reversed_bits_in_eights_of_their_row)
{
    for (int nw = 16; nw <= 1 << 16; nw *= 2)
    {
        SCOPED_TRACE(nw);
        MadeTables made(nw);
        math::detail::DSPMakeTwiddles(nw, made.ip.data(), made.w.data());
        std::vector<int> expected = Offsets(nw);
        expected[0] = nw;
        expected[1] = 1;
        expected.resize(made.ip.size(), k_UnwrittenIndex);
        EXPECT_EQ(made.ip, expected);
        MadeTables alone(0);
        math::detail::DSPMakeBitRevTable(nw, alone.ip.data());
        expected[0] = k_UnwrittenIndex;
        expected[1] = k_UnwrittenIndex;
        EXPECT_EQ(alone.ip, expected);
    }
}

TEST(FftTables, Up_to_eight_twiddles_come_without_offsets)
{
    for (int nw = 0; nw <= 8; nw == 0 ? nw = 1 : nw *= 2)
    {
        MadeTables made(nw);
        math::detail::DSPMakeTwiddles(nw, made.ip.data(), made.w.data());
        EXPECT_EQ(made.ip[2], k_UnwrittenIndex) << nw;
        EXPECT_EQ(made.ip[3], k_UnwrittenIndex) << nw;
    }
}

TEST(FftTables, The_rows_of_offsets_do_not_depend_on_the_size)
{
    std::vector<int> const large = Offsets(1 << 20);
    for (int nw = 16; nw < 1 << 20; nw *= 2)
    {
        std::vector<int> const small = Offsets(nw);
        EXPECT_TRUE(std::equal(small.begin(), small.end(), large.begin())) << nw;
    }
}

TEST(FftTables, Cosines_bit_for_bit)
{
    for (int nc = 0; nc <= 1 << 16; nc == 0 ? nc = 1 : nc *= 2)
    {
        SCOPED_TRACE(nc);
        MadeTables made(nc + 3);
        math::detail::DSPMakeCosines(nc, made.ip.data(), made.w.data());
        std::vector<double> expected = Cosines(nc);
        expected.resize(expected.size() + 3, k_Unwritten);
        ExpectSameBits(made.w, expected);
        EXPECT_EQ(made.ip[0], k_UnwrittenIndex);
        EXPECT_EQ(made.ip[1], nc);
        EXPECT_EQ(made.ip[2], k_UnwrittenIndex);
    }
}

/// How many twiddles and cosines a kernel makes for its first transform.
struct Made
{
    Transform transform;
    int n;
    int nw;
    int nc;
};

TEST(FftTables, Each_kernel_makes_what_it_needs)
{
    // Making twiddles, even none, counts one cosine.
    constexpr Made made[] = {
        {Transform::Complex, 2, 0, 1},     {Transform::Complex, 4, 1, 1},       {Transform::Complex, 8, 2, 1},
        {Transform::Complex, 64, 16, 1},   {Transform::Complex, 1024, 256, 1},  {Transform::Real, 2, 0, 1},
        {Transform::Real, 4, 1, 1},        {Transform::Real, 8, 2, 2},          {Transform::Real, 64, 16, 16},
        {Transform::Real, 1024, 256, 256}, {Transform::Cosine, 2, 0, 2},        {Transform::Cosine, 4, 1, 4},
        {Transform::Cosine, 64, 16, 64},   {Transform::Sine, 2, 0, 2},          {Transform::Sine, 4, 1, 4},
        {Transform::Sine, 64, 16, 64},     {Transform::WholeCosine, 2, 0, 1},   {Transform::WholeCosine, 4, 0, 2},
        {Transform::WholeCosine, 8, 1, 4}, {Transform::WholeCosine, 64, 8, 32}, {Transform::WholeSine, 2, 0, 1},
        {Transform::WholeSine, 4, 0, 2},   {Transform::WholeSine, 8, 1, 4},     {Transform::WholeSine, 64, 8, 32}};
    for (Made const & row : made)
    {
        for (int const sign : {1, -1})
        {
            SCOPED_TRACE(testing::Message() << (Kernel{row.transform, sign}) << ' ' << row.n);
            Tables tables(row.transform, row.n);
            std::vector<double> a(CountValues(row.transform, row.n), 0.0);
            RunKernel({row.transform, sign}, row.n, a.data(), tables);
            EXPECT_EQ(tables.ip[0], row.nw);
            EXPECT_EQ(tables.ip[1], row.nc);
            std::vector<double> expected = TwiddleChain(row.nw);
            std::vector<double> const cosines = row.nc > 1 ? Cosines(row.nc) : std::vector<double>();
            expected.insert(expected.end(), cosines.begin(), cosines.end());
            expected.resize(tables.w.size(), k_Unwritten);
            ExpectSameBits(tables.w, expected);
        }
    }
}

TEST(FftTables, Twiddles_are_made_where_there_are_fewer)
{
    Tables tables(Transform::Complex, 256);
    math::detail::EnsureTwiddles(64, 4, tables.ip.data(), tables.w.data());
    EXPECT_EQ(tables.ip[0], 16);
    tables.ip[1] = 7; // stays unless twiddles are made
    math::detail::EnsureTwiddles(64, 4, tables.ip.data(), tables.w.data());
    math::detail::EnsureTwiddles(32, 4, tables.ip.data(), tables.w.data());
    EXPECT_EQ(tables.ip[0], 16);
    EXPECT_EQ(tables.ip[1], 7);
    math::detail::EnsureTwiddles(128, 4, tables.ip.data(), tables.w.data());
    EXPECT_EQ(tables.ip[0], 32);
    EXPECT_EQ(tables.ip[1], 1);
}

TEST(FftTables, Cosines_are_made_where_there_are_fewer_and_behind_the_twiddles)
{
    Tables tables(Transform::Cosine, 256);
    tables.ip[0] = 5;
    math::detail::EnsureCosines(64, 2, tables.ip.data(), tables.w.data());
    EXPECT_EQ(tables.ip[1], 32);
    EXPECT_EQ(tables.w[4], k_Unwritten);
    EXPECT_EQ(tables.w[5], Cosines(32)[0]);
    EXPECT_EQ(tables.w[37], k_Unwritten);
    tables.w[5] = 3;
    math::detail::EnsureCosines(64, 2, tables.ip.data(), tables.w.data());
    math::detail::EnsureCosines(32, 2, tables.ip.data(), tables.w.data());
    EXPECT_EQ(tables.ip[1], 32);
    EXPECT_EQ(tables.w[5], 3);
    math::detail::EnsureCosines(128, 2, tables.ip.data(), tables.w.data());
    EXPECT_EQ(tables.ip[1], 64);
    EXPECT_EQ(tables.w[5], Cosines(64)[0]);
}

TEST(FftTables, New_twiddles_move_the_cosines)
{
    Tables tables(Transform::Cosine, 64);
    std::vector<double> a(64, 1.0);
    RunKernel({Transform::Cosine, 1}, 16, a.data(), tables);
    EXPECT_EQ(tables.ip[0], 4);
    EXPECT_EQ(tables.ip[1], 16);
    RunKernel({Transform::Complex, 1}, 64, a.data(), tables);
    EXPECT_EQ(tables.ip[0], 16);
    EXPECT_EQ(tables.ip[1], 1);
    RunKernel({Transform::Cosine, 1}, 16, a.data(), tables);
    EXPECT_EQ(tables.ip[0], 16);
    EXPECT_EQ(tables.ip[1], 16);
    std::vector<double> expected = TwiddleChain(16);
    // What the chain leaves out is what stood there: two of the first cosines.
    expected[14] = Cosines(16)[10];
    expected[15] = Cosines(16)[11];
    std::vector<double> const cosines = Cosines(16);
    expected.insert(expected.end(), cosines.begin(), cosines.end());
    ExpectSameBits({tables.w.begin(), tables.w.begin() + 32}, expected);
}

TEST(FftTables, Without_twiddles_each_call_makes_the_cosines_anew)
{
    Tables tables(Transform::Cosine, 2);
    std::vector<double> a{1, 2};
    RunKernel({Transform::Cosine, 1}, 2, a.data(), tables);
    tables.w[0] = 17;
    RunKernel({Transform::Cosine, 1}, 2, a.data(), tables);
    ExpectSameBits(tables.w, Cosines(2));
    Tables whole(Transform::WholeSine, 4);
    std::vector<double> b{1, 2, 3, 4};
    RunKernel({Transform::WholeSine, 1}, 4, b.data(), whole);
    whole.w[0] = 17;
    RunKernel({Transform::WholeSine, 1}, 4, b.data(), whole);
    ExpectSameBits(whole.w, Cosines(2));
}

TEST(FftTables, A_smaller_transform_leaves_larger_tables_alone)
{
    for (Kernel const & kernel : k_Kernels)
    {
        SCOPED_TRACE(testing::Message() << kernel);
        Tables tables(kernel.transform, 512);
        std::vector<double> a(513, 1.0);
        RunKernel(kernel, 512, a.data(), tables);
        Tables const before = tables;
        // While there are twiddles for the largest, even the smallest size finds enough.
        for (int n = 512; n >= 2; n /= 2)
        {
            RunKernel(kernel, n, a.data(), tables);
            ExpectSameBits(tables.w, before.w);
            ASSERT_EQ(tables.ip, before.ip);
        }
    }
}

TEST(FftTables, Tables_that_grew_are_those_made_at_once)
{
    for (Kernel const & kernel : k_Kernels)
    {
        SCOPED_TRACE(testing::Message() << kernel);
        Tables grown(kernel.transform, 2048);
        Tables atOnce(kernel.transform, 2048);
        std::vector<double> a(2049, 0.0);
        for (int n = 2; n <= 2048; n *= 2)
        {
            RunKernel(kernel, n, a.data(), grown);
        }
        RunKernel(kernel, 2048, a.data(), atOnce);
        EXPECT_EQ(grown.ip, atOnce.ip);
        for (std::size_t i = 0; i < grown.w.size(); ++i)
        {
            if (atOnce.w[i] != k_Unwritten)
            {
                ASSERT_EQ(grown.w[i], atOnce.w[i]) << i;
            }
        }
    }
}

} // namespace
