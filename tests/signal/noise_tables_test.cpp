#include "signal/noise_inspector.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace
{

using signal_test::NoiseInspector;

/// The code of a pair of gradient components, each -1, 0 or 1.
int PairCode(double a, double b)
{
    return static_cast<int>(3 * (a + 1) + (b + 1));
}

/// The rows of the table of pairs that are not as the two gradients have them.
int WrongPairRows()
{
    int wrong = 0;
    for (int i = 0; i < 1024; ++i)
    {
        auto const & a = C3DPerlinNoise::grad4[i / 32];
        auto const & b = C3DPerlinNoise::grad4[i % 32];
        int const expected[5] = {PairCode(a[0], b[0]), PairCode(a[1], b[1]), PairCode(a[2], b[2]), PairCode(a[3], b[3]),
                                 PairCode(0, -b[3])};
        wrong += std::equal(expected, expected + 5, NoiseInspector::grad4hashhash[i]) ? 0 : 1;
    }
    return wrong;
}

/// Forgets the table of pairs and fills it with what is no code.
void SpoilPairTable()
{
    NoiseInspector::grad4hashhashinited = false;
    for (auto & row : NoiseInspector::grad4hashhash)
    {
        std::fill(row, row + 5, -77);
    }
}

} // namespace

TEST(NoiseTables, Gradients_of_three_dimensions_are_the_edges_of_a_cube)
{
    // The place of the zero goes from the last to the first component; the first of the others changes sign fastest.
    constexpr int first[] = {0, 0, 1};
    constexpr int second[] = {1, 2, 2};
    for (int i = 0; i < 12; ++i)
    {
        SCOPED_TRACE(i);
        double expected[3] = {};
        expected[first[i / 4]] = i % 2 == 0 ? 1 : -1;
        expected[second[i / 4]] = i % 4 < 2 ? 1 : -1;
        for (int k = 0; k < 3; ++k)
        {
            EXPECT_EQ(C3DPerlinNoise::grad3[i][k], expected[k]) << k;
        }
    }
}

TEST(NoiseTables, Gradients_of_four_dimensions_go_by_the_place_of_the_zero_and_binary_signs)
{
    for (int i = 0; i < 32; ++i)
    {
        int const zero = i / 8;
        int bit = 4;
        for (int k = 0; k < 4; ++k)
        {
            double expected = 0;
            if (k != zero)
            {
                expected = (i & bit) != 0 ? -1 : 1;
                bit /= 2;
            }
            EXPECT_EQ(C3DPerlinNoise::grad4[i][k], expected) << i << ' ' << k;
        }
    }
}

TEST(NoiseTables, Simplex_rows_hold_the_ranks_of_the_coordinates)
{
    std::array<std::array<int, 4>, 64> expected{};
    std::array<int, 4> at{0, 1, 2, 3};
    int orders = 0;
    do
    {
        auto const [x, y, z, w] = at;
        int const index =
            32 * int{x > y} + 16 * int{x > z} + 8 * int{y > z} + 4 * int{x > w} + 2 * int{y > w} + int{z > w};
        expected[static_cast<std::size_t>(index)] = at;
        ++orders;
    } while (std::next_permutation(at.begin(), at.end()));
    ASSERT_EQ(orders, 24);

    int zeroRows = 0;
    for (std::size_t i = 0; i < 64; ++i)
    {
        auto const & row = C3DPerlinNoise::simplex[i];
        EXPECT_TRUE(std::equal(row, row + 4, expected[i].begin())) << i;
        zeroRows += std::all_of(row, row + 4, [](int rank) { return rank == 0; }) ? 1 : 0;
    }
    EXPECT_EQ(zeroRows, 40);
}

TEST(NoiseTables, Pair_table_is_there_after_the_first_construction)
{
    SpoilPairTable();
    ASSERT_EQ(WrongPairRows(), 1024);
    C3DPerlinNoise const noise;
    EXPECT_TRUE(NoiseInspector::grad4hashhashinited);
    EXPECT_EQ(WrongPairRows(), 0);
}

TEST(NoiseTables, Pair_table_has_the_codes_of_two_gradients_and_of_the_second_corner)
{
    C3DPerlinNoise const noise;
    auto const expectRow = [](int a, int b, std::array<int, 5> const & expected)
    {
        auto const & row = NoiseInspector::grad4hashhash[a * 32 + b];
        EXPECT_TRUE(std::equal(row, row + 5, expected.begin())) << a << ' ' << b;
    };
    expectRow(0, 0, {4, 8, 8, 8, 3});   // (0, 1, 1, 1) twice
    expectRow(0, 1, {4, 8, 8, 6, 5});   // (0, 1, 1, 1) and (0, 1, 1, -1)
    expectRow(1, 0, {4, 8, 8, 2, 3});   // and the other way round
    expectRow(31, 0, {1, 2, 2, 5, 3});  // (-1, -1, -1, 0) and (0, 1, 1, 1)
    expectRow(0, 31, {3, 6, 6, 7, 4});  // and the other way round
    expectRow(31, 31, {0, 0, 0, 4, 4}); // (-1, -1, -1, 0) twice
    expectRow(15, 20, {0, 5, 1, 2, 3}); // (-1, 0, -1, -1) and (-1, 1, 0, 1)
}

TEST(NoiseTables, Pair_table_is_built_once)
{
    C3DPerlinNoise const first;
    int & entry = NoiseInspector::grad4hashhash[5][2];
    int const kept = entry;
    entry = 1234;
    C3DPerlinNoise const second;
    NoiseInspector::InitHashHash();
    EXPECT_EQ(entry, 1234);
    entry = kept;
    EXPECT_EQ(WrongPairRows(), 0);
}

TEST(NoiseTables, Pair_table_is_whole_for_every_one_of_many_threads_that_construct_at_once)
{
    constexpr std::size_t threadCount = 8;
    for (int round = 0; round < 20; ++round)
    {
        SpoilPairTable();
        std::array<int, threadCount> wrongRows{};
        wrongRows.fill(-1);
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < threadCount; ++i)
        {
            threads.emplace_back(
                [&wrong = wrongRows[i]]
                {
                    C3DPerlinNoise noise(17);
                    wrong = WrongPairRows();
                    noise.Dispose();
                });
        }
        for (std::thread & thread : threads)
        {
            thread.join();
        }
        EXPECT_TRUE(std::all_of(wrongRows.begin(), wrongRows.end(), [](int wrong) { return wrong == 0; })) << round;
    }
}
