#include "signal/noise_inspector.h"
#include "support/allocation_faults.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <gtest/gtest.h>
#include <new>
#include <numeric>
#include <optional>
#include <stdexcept>
#include <type_traits>
#include <vector>

namespace
{

using signal_test::NoiseInspector;
using signal_test::TableOwner;
using test_support::AllocationFaults;

static_assert(!std::is_polymorphic_v<C3DPerlinNoise>);

using Table = std::array<int, 512>;

constexpr std::uint64_t k_Multiplier = 663608941;

/// The shuffle in whole numbers alone.
Table Permutation(std::uint64_t seed)
{
    Table p{};
    std::iota(p.begin(), p.begin() + 256, 0);
    std::uint64_t state = seed % 0x100000000U;
    for (std::size_t i = 0; i < 256; ++i)
    {
        state = (state == 0 ? 0xFFFFFFEFU : state) * k_Multiplier % 0x100000000U % 0xFFFFFFFFU;
        std::swap(p[i], p[state * 256 / 0xFFFFFFFFU]);
    }
    std::copy_n(p.begin(), 256, p.begin() + 256);
    return p;
}

/// The seed from which the generator's first step is this.
std::uint64_t SeedBefore(std::uint64_t step)
{
    // Newton's iteration doubles the bits of the inverse of an odd number modulo a power of two.
    std::uint64_t inverse = k_Multiplier;
    for (int i = 0; i < 5; ++i)
    {
        inverse *= 2 - k_Multiplier * inverse;
    }
    return step * inverse % 0x100000000U;
}

Table Contents(int const * table)
{
    Table contents{};
    std::copy_n(table, contents.size(), contents.begin());
    return contents;
}

Table PermutationOf(C3DPerlinNoise const & noise, unsigned long slot = 0)
{
    return Contents((noise.*NoiseInspector::GetPTable)(slot));
}

/// All three tables of a slot against a shuffle.
void ExpectTables(C3DPerlinNoise const & noise, unsigned long slot, Table const & permutation)
{
    Table p31{};
    Table pairs{};
    for (std::size_t i = 0; i < 512; ++i)
    {
        p31[i] = permutation[i] & 31;
        pairs[i] = (permutation[i] & 31) * 32 + (permutation[(i + 1) % 256] & 31);
    }
    EXPECT_EQ(PermutationOf(noise, slot), permutation);
    EXPECT_EQ(Contents((noise.*NoiseInspector::GetP31Table)(slot)), p31);
    EXPECT_EQ(Contents((noise.*NoiseInspector::GetHashHashTable)(slot)), pairs);
}

void ExpectSlotCount(C3DPerlinNoise const & noise, std::size_t count)
{
    EXPECT_EQ(NoiseInspector::Seeds(noise).size(), count);
    EXPECT_EQ(NoiseInspector::PTables(noise).size(), count);
    EXPECT_EQ(NoiseInspector::P31Tables(noise).size(), count);
    EXPECT_EQ(NoiseInspector::HashHashTables(noise).size(), count);
}

void ExpectEmptySlot(C3DPerlinNoise const & noise, unsigned long slot)
{
    EXPECT_EQ(NoiseInspector::Seeds(noise).at(slot), 0UL) << slot;
    EXPECT_EQ((noise.*NoiseInspector::GetPTable)(slot), nullptr) << slot;
    EXPECT_EQ((noise.*NoiseInspector::GetP31Table)(slot), nullptr) << slot;
    EXPECT_EQ((noise.*NoiseInspector::GetHashHashTable)(slot), nullptr) << slot;
}

/// Whether an operation ran out of memory.
template <typename Operation>
bool RunsOut(Operation operation)
{
    try
    {
        operation();
    }
    catch (std::bad_alloc const &)
    {
        return true;
    }
    return false;
}

} // namespace

TEST(PerlinNoise, Has_no_slot_and_allocates_nothing_at_first)
{
    std::optional<C3DPerlinNoise> noise;
    long requests = -1;
    {
        AllocationFaults const memory;
        noise.emplace();
        requests = memory.GetRequests();
    }
    EXPECT_EQ(requests, 0);
    ExpectSlotCount(*noise, 0);
    noise->Dispose();
    ExpectSlotCount(*noise, 0);
}

TEST(PerlinNoise, Has_its_four_arrays_in_order_and_nothing_else)
{
    C3DPerlinNoise const noise;
    auto const offset = [&noise](void const * field)
    { return static_cast<char const *>(field) - reinterpret_cast<char const *>(&noise); };
    constexpr std::ptrdiff_t array = sizeof(std::vector<int *>);
    EXPECT_EQ(offset(&NoiseInspector::Seeds(noise)), 0);
    EXPECT_EQ(offset(&NoiseInspector::PTables(noise)), array);
    EXPECT_EQ(offset(&NoiseInspector::HashHashTables(noise)), 2 * array);
    EXPECT_EQ(offset(&NoiseInspector::P31Tables(noise)), 3 * array);
    EXPECT_EQ(sizeof noise, static_cast<std::size_t>(4 * array));
}

TEST(PerlinNoise, Tables_follow_the_shuffle_of_the_seed)
{
    for (unsigned long seed : {0x1UL, 0x2UL, 0x3039UL, 0x7FFFFFFFUL, 0x80000000UL, 0x80000001UL, 0xDEADBEEFUL,
                               0xFFFFFFEEUL, 0xFFFFFFF0UL, 0xFFFFFFFEUL, 0xFFFFFFFFUL})
    {
        SCOPED_TRACE(seed);
        C3DPerlinNoise noise(seed);
        TableOwner const owner(noise);
        ExpectSlotCount(noise, 1);
        EXPECT_EQ(NoiseInspector::Seeds(noise)[0], seed);
        ExpectTables(noise, 0, Permutation(seed));
    }
}

TEST(PerlinNoise, Permutation_of_some_seeds_starts_as_ever)
{
    auto const expectStart = [](unsigned long seed, std::vector<int> const & start, int last)
    {
        C3DPerlinNoise noise(seed);
        TableOwner const owner(noise);
        Table const p = PermutationOf(noise);
        EXPECT_EQ(std::vector<int>(p.begin(), p.begin() + 10), start) << seed;
        EXPECT_EQ(p[255], last) << seed;
    };
    expectStart(0, {95, 79, 7, 225, 56, 117, 138, 205, 102, 148}, 197);
    expectStart(1, {161, 145, 89, 211, 139, 237, 94, 101, 38, 19}, 155);
    expectStart(12345, {104, 47, 65, 66, 82, 149, 217, 49, 128, 215}, 177);
    // The state repeats itself, and every step exchanges with place 128.
    expectStart(0x80000000, {128, 0, 1, 2, 3, 4, 5, 6, 7, 8}, 254);
}

TEST(PerlinNoise, Every_permutation_is_one_and_tables_are_doubled_and_in_range)
{
    for (unsigned long seed = 0; seed < 200; ++seed)
    {
        C3DPerlinNoise noise(seed * 21474836 + seed);
        TableOwner const owner(noise);
        Table const p = PermutationOf(noise);
        auto sorted = p;
        std::sort(sorted.begin(), sorted.begin() + 256);
        for (std::size_t i = 0; i < 256; ++i)
        {
            ASSERT_EQ(sorted[i], static_cast<int>(i)) << seed;
            ASSERT_EQ(p[i + 256], p[i]) << seed;
        }
        Table const p31 = Contents((noise.*NoiseInspector::GetP31Table)(0));
        Table const pairs = Contents((noise.*NoiseInspector::GetHashHashTable)(0));
        EXPECT_TRUE(std::all_of(p31.begin(), p31.end(), [](int v) { return v >= 0 && v < 32; })) << seed;
        EXPECT_TRUE(std::all_of(pairs.begin(), pairs.end(), [](int v) { return v >= 0 && v < 1024; })) << seed;
    }
}

TEST(PerlinNoise, Steps_at_the_borders_of_the_256_ranges_exchange_with_the_right_place)
{
    ASSERT_EQ(SeedBefore(12345) * k_Multiplier % 0x100000000U, 12345U);
    for (std::uint64_t place = 1; place < 256; ++place)
    {
        for (std::uint64_t const step : {place * 0x1000000 - 1, place * 0x1000000})
        {
            std::uint64_t const seed = SeedBefore(step);
            C3DPerlinNoise noise(static_cast<unsigned long>(seed));
            TableOwner const owner(noise);
            ASSERT_EQ(PermutationOf(noise), Permutation(seed)) << "first step " << step;
        }
    }
}

TEST(PerlinNoise, First_steps_at_the_ends_of_the_range_are_handled)
{
    // 0xFFFFFFFF becomes 0, which is replaced before the second step.
    for (std::uint64_t const step : {0xFFFFFFFFU, 0xFFFFFFFEU, 1U, 2U})
    {
        std::uint64_t const seed = SeedBefore(step);
        C3DPerlinNoise noise(static_cast<unsigned long>(seed));
        TableOwner const owner(noise);
        EXPECT_EQ(PermutationOf(noise), Permutation(seed)) << "first step " << step;
    }
}

TEST(PerlinNoise, Seed_0_is_as_0xFFFFFFEF)
{
    C3DPerlinNoise zero(0UL);
    TableOwner const zeroOwner(zero);
    C3DPerlinNoise replacement(0xFFFFFFEFUL);
    TableOwner const replacementOwner(replacement);
    EXPECT_EQ(PermutationOf(zero), PermutationOf(replacement));
    EXPECT_EQ(NoiseInspector::Seeds(zero)[0], 0UL);
    EXPECT_EQ(NoiseInspector::Seeds(replacement)[0], 0xFFFFFFEFUL);
    ExpectTables(zero, 0, Permutation(0xFFFFFFEF));
    // They are two seeds all the same: the tables are made again.
    (zero.*NoiseInspector::GetPTable)(0)[0] = -1;
    zero.Init(0, 0xFFFFFFEF);
    ExpectTables(zero, 0, Permutation(0));
}

TEST(PerlinNoise, Seeds_have_32_bits)
{
    if constexpr (sizeof(unsigned long) > 4)
    {
        constexpr unsigned long above = ~0UL << 31U << 1U;
        C3DPerlinNoise noise(above | 77UL);
        TableOwner const owner(noise);
        EXPECT_EQ(NoiseInspector::Seeds(noise)[0], 77UL);
        ExpectTables(noise, 0, Permutation(77));
        // So these are the same seed.
        (noise.*NoiseInspector::GetPTable)(0)[0] = -1;
        noise.Init(0, 77);
        noise.Init(0, above | 77UL);
        EXPECT_EQ((noise.*NoiseInspector::GetPTable)(0)[0], -1);
        noise.Init(0, above);
        EXPECT_EQ(NoiseInspector::Seeds(noise)[0], 0UL);
        ExpectTables(noise, 0, Permutation(0));
    }
}

TEST(PerlinNoise, Init_of_a_far_slot_leaves_those_below_it_empty)
{
    C3DPerlinNoise noise;
    TableOwner const owner(noise);
    noise.Init(3, 5);
    ExpectSlotCount(noise, 4);
    for (unsigned long slot = 0; slot < 3; ++slot)
    {
        ExpectEmptySlot(noise, slot);
    }
    ExpectTables(noise, 3, Permutation(5));
    EXPECT_EQ(NoiseInspector::Seeds(noise)[3], 5UL);
}

TEST(PerlinNoise, Slots_are_seeded_on_their_own_in_any_order)
{
    C3DPerlinNoise noise(11);
    TableOwner const owner(noise);
    int const * const table0 = (noise.*NoiseInspector::GetPTable)(0);
    noise.Init(4, 44);
    int const * const table4 = (noise.*NoiseInspector::GetPTable)(4);
    noise.Init(2, 0);
    ExpectSlotCount(noise, 5);
    noise.Init(5, 11);
    ExpectSlotCount(noise, 6);
    ExpectTables(noise, 0, Permutation(11));
    ExpectEmptySlot(noise, 1);
    ExpectTables(noise, 2, Permutation(0));
    ExpectEmptySlot(noise, 3);
    ExpectTables(noise, 4, Permutation(44));
    ExpectTables(noise, 5, Permutation(11));
    EXPECT_EQ(NoiseInspector::Seeds(noise), (std::vector<unsigned long>{11, 0, 0, 0, 44, 11}));
    EXPECT_EQ((noise.*NoiseInspector::GetPTable)(0), table0);
    EXPECT_EQ((noise.*NoiseInspector::GetPTable)(4), table4);
}

TEST(PerlinNoise, Empty_slot_takes_the_seed_0_that_it_seems_to_have)
{
    C3DPerlinNoise noise;
    TableOwner const owner(noise);
    noise.Init(1, 9);
    ExpectEmptySlot(noise, 0);
    noise.Init(0, 0);
    ExpectTables(noise, 0, Permutation(0));
}

TEST(PerlinNoise, Same_seed_again_costs_nothing_and_leaves_what_was_altered)
{
    for (unsigned long seed : {0UL, 123UL})
    {
        C3DPerlinNoise noise(seed);
        TableOwner const owner(noise);
        (noise.*NoiseInspector::GetPTable)(0)[7] = -7;
        (noise.*NoiseInspector::GetP31Table)(0)[8] = -8;
        (noise.*NoiseInspector::GetHashHashTable)(0)[9] = -9;
        long requests = -1;
        {
            AllocationFaults const memory;
            noise.Init(0, seed);
            requests = memory.GetRequests();
        }
        EXPECT_EQ(requests, 0);
        EXPECT_EQ((noise.*NoiseInspector::GetPTable)(0)[7], -7);
        EXPECT_EQ((noise.*NoiseInspector::GetP31Table)(0)[8], -8);
        EXPECT_EQ((noise.*NoiseInspector::GetHashHashTable)(0)[9], -9);
    }
}

TEST(PerlinNoise, Other_seed_rewrites_the_tables_in_place)
{
    C3DPerlinNoise noise(123);
    TableOwner const owner(noise);
    auto const pTables = NoiseInspector::PTables(noise);
    auto const p31Tables = NoiseInspector::P31Tables(noise);
    auto const hashHashTables = NoiseInspector::HashHashTables(noise);
    long requests = -1;
    {
        AllocationFaults const memory;
        noise.Init(0, 124);
        requests = memory.GetRequests();
    }
    EXPECT_EQ(requests, 0);
    ExpectTables(noise, 0, Permutation(124));
    EXPECT_EQ(NoiseInspector::Seeds(noise)[0], 124UL);
    EXPECT_EQ(NoiseInspector::PTables(noise), pTables);
    EXPECT_EQ(NoiseInspector::P31Tables(noise), p31Tables);
    EXPECT_EQ(NoiseInspector::HashHashTables(noise), hashHashTables);
    noise.Init(0, 123);
    ExpectTables(noise, 0, Permutation(123));
}

TEST(PerlinNoise, Slot_without_a_successor_is_refused_and_changes_nothing)
{
    C3DPerlinNoise noise(8);
    TableOwner const owner(noise);
    noise.Init(2, 9);
    EXPECT_THROW(noise.Init(ULONG_MAX, 1), std::length_error);
    EXPECT_THROW(noise.Init(ULONG_MAX - 1, 1), std::length_error);
    ExpectSlotCount(noise, 3);
    ExpectTables(noise, 0, Permutation(8));
    ExpectEmptySlot(noise, 1);
    ExpectTables(noise, 2, Permutation(9));
    noise.Init(1, 10);
    ExpectTables(noise, 1, Permutation(10));

    C3DPerlinNoise empty;
    EXPECT_THROW(empty.Init(ULONG_MAX, 1), std::length_error);
    ExpectSlotCount(empty, 0);
}

TEST(PerlinNoise, Copies_share_the_tables)
{
    C3DPerlinNoise noise(31);
    TableOwner const owner(noise);
    noise.Init(2, 32);
    C3DPerlinNoise const copy(noise);
    C3DPerlinNoise assigned;
    assigned = noise;
    for (C3DPerlinNoise const * other : {&copy, static_cast<C3DPerlinNoise const *>(&assigned)})
    {
        EXPECT_EQ(NoiseInspector::Seeds(*other), NoiseInspector::Seeds(noise));
        EXPECT_EQ(NoiseInspector::PTables(*other), NoiseInspector::PTables(noise));
        EXPECT_EQ(NoiseInspector::P31Tables(*other), NoiseInspector::P31Tables(noise));
        EXPECT_EQ(NoiseInspector::HashHashTables(*other), NoiseInspector::HashHashTables(noise));
    }
}

TEST(PerlinNoise, Reseeding_one_of_two_copies_changes_both_and_the_other_does_not_know)
{
    C3DPerlinNoise noise(31);
    TableOwner const owner(noise);
    C3DPerlinNoise copy(noise);
    noise.Init(0, 50);
    ExpectTables(copy, 0, Permutation(50));
    EXPECT_EQ(NoiseInspector::Seeds(copy)[0], 31UL);
    copy.Init(0, 31);
    ExpectTables(copy, 0, Permutation(50));
    copy.Init(0, 50);
    EXPECT_EQ(NoiseInspector::Seeds(copy)[0], 50UL);
}

TEST(PerlinNoise, Slots_seeded_after_a_copy_belong_to_one_of_the_two)
{
    C3DPerlinNoise noise(31);
    TableOwner const owner(noise);
    C3DPerlinNoise copy(noise);
    noise.Init(1, 32);
    ExpectSlotCount(copy, 1);
    ExpectSlotCount(noise, 2);
}

TEST(PerlinNoise, Assignment_to_itself_and_of_fewer_slots_takes_the_arrays_over)
{
    C3DPerlinNoise noise(31);
    TableOwner const owner(noise);
    noise.Init(1, 32);
    C3DPerlinNoise const & same = noise;
    noise = same;
    ExpectSlotCount(noise, 2);
    ExpectTables(noise, 1, Permutation(32));

    C3DPerlinNoise copy(noise);
    C3DPerlinNoise const empty;
    EXPECT_EQ(&(copy = empty), &copy);
    ExpectSlotCount(copy, 0);
}

TEST(PerlinNoise, Dispose_frees_three_tables_a_slot_and_keeps_the_pointers)
{
    using Pointers = std::vector<int *>;
    std::optional<C3DPerlinNoise> noise;
    std::optional<C3DPerlinNoise> copy;
    noise.emplace(1);
    noise->Init(3, 2);
    copy.emplace(*noise);
    Pointers const before = NoiseInspector::PTables(*noise);
    long disposed = 0;
    long destroyed = 0;
    {
        AllocationFaults const memory;
        noise->Dispose();
        disposed = memory.GetOutstanding();
        noise.reset();
        destroyed = memory.GetOutstanding();
    }
    // Two slots are seeded, two are empty; after the tables go the four arrays.
    EXPECT_EQ(disposed, -6);
    EXPECT_EQ(destroyed, -10);
    EXPECT_EQ(NoiseInspector::PTables(*copy), before);

    C3DPerlinNoise other(1);
    Pointers const pTables = NoiseInspector::PTables(other);
    Pointers const p31Tables = NoiseInspector::P31Tables(other);
    Pointers const hashHashTables = NoiseInspector::HashHashTables(other);
    other.Dispose();
    ExpectSlotCount(other, 1);
    EXPECT_EQ(NoiseInspector::PTables(other), pTables);
    EXPECT_EQ(NoiseInspector::P31Tables(other), p31Tables);
    EXPECT_EQ(NoiseInspector::HashHashTables(other), hashHashTables);
    EXPECT_EQ(NoiseInspector::Seeds(other)[0], 1UL);
}

TEST(PerlinNoise, Destruction_leaves_the_tables_allocated)
{
    std::optional<C3DPerlinNoise> noise;
    long outstanding = 0;
    std::vector<int *> tables;
    tables.reserve(3);
    {
        AllocationFaults const memory;
        noise.emplace(1);
        tables = {(*noise.*NoiseInspector::GetPTable)(0), (*noise.*NoiseInspector::GetP31Table)(0),
                  (*noise.*NoiseInspector::GetHashHashTable)(0)};
        noise.reset();
        outstanding = memory.GetOutstanding();
    }
    EXPECT_EQ(outstanding, 3);
    EXPECT_EQ(Contents(tables[0]), Permutation(1));
    for (int const * table : tables)
    {
        delete[] table;
    }
}

TEST(PerlinNoiseAllocation, Tables_have_512_integers_each)
{
    C3DPerlinNoise noise;
    TableOwner const owner(noise);
    std::size_t largest = 0;
    {
        AllocationFaults const memory;
        noise.Init(0, 1);
        largest = memory.GetLargestRequest();
    }
    EXPECT_EQ(largest, 512 * sizeof(int));
}

TEST(PerlinNoiseAllocation, Refused_growth_or_table_throws_and_leaves_a_usable_object)
{
    // From an empty object all of seven blocks are needed: four arrays and three tables.
    for (long refused = 0; refused < 7; ++refused)
    {
        SCOPED_TRACE(refused);
        C3DPerlinNoise noise;
        noise.Init(1, 21);
        bool hasRunOut = false;
        long outstanding = 0;
        {
            auto const memory = AllocationFaults::RefuseOne(refused);
            hasRunOut = RunsOut([&] { noise.Init(6, 66); });
            outstanding = memory.GetOutstanding();
        }
        EXPECT_TRUE(hasRunOut);
        EXPECT_EQ(outstanding, 0) << "arrays are exchanged for longer ones, and no table is lost";
        ExpectTables(noise, 1, Permutation(21));

        // Slots between, which need less growth, and the refused one again.
        noise.Init(3, 33);
        ExpectTables(noise, 3, Permutation(33));
        noise.Init(6, 66);
        ExpectSlotCount(noise, 7);
        ExpectTables(noise, 1, Permutation(21));
        ExpectTables(noise, 3, Permutation(33));
        ExpectTables(noise, 6, Permutation(66));
        for (unsigned long slot : {0UL, 2UL, 4UL, 5UL})
        {
            ExpectEmptySlot(noise, slot);
        }
        noise.Dispose();
    }
}

TEST(PerlinNoiseAllocation, Refused_construction_loses_nothing)
{
    for (long refused = 0; refused < 7; ++refused)
    {
        std::optional<C3DPerlinNoise> noise;
        bool hasRunOut = false;
        long outstanding = -1;
        {
            auto const memory = AllocationFaults::RefuseOne(refused);
            hasRunOut = RunsOut([&] { noise.emplace(5UL); });
            outstanding = memory.GetOutstanding();
        }
        EXPECT_TRUE(hasRunOut) << refused;
        EXPECT_EQ(outstanding, 0) << refused;
    }
}

TEST(PerlinNoiseAllocation, Refused_table_leaves_the_slot_empty)
{
    C3DPerlinNoise noise(5);
    TableOwner const owner(noise);
    bool hasRunOut = false;
    {
        auto const memory = AllocationFaults::RefuseAbove(512 * sizeof(int) - 1);
        hasRunOut = RunsOut([&] { noise.Init(2, 6); });
    }
    EXPECT_TRUE(hasRunOut);
    ExpectSlotCount(noise, 3);
    ExpectEmptySlot(noise, 2);
    // The same seed again finds a slot without tables and makes them.
    noise.Init(2, 6);
    ExpectTables(noise, 2, Permutation(6));
}

TEST(PerlinNoiseAllocation, Refused_copy_or_assignment_leaves_both_sides_as_they_were)
{
    C3DPerlinNoise noise(5);
    TableOwner const owner(noise);
    noise.Init(3, 6);
    for (long refused = 0; refused < 4; ++refused)
    {
        SCOPED_TRACE(refused);
        C3DPerlinNoise target(7);
        TableOwner const targetOwner(target);
        std::optional<C3DPerlinNoise> copy;
        bool hasCopyRunOut = false;
        bool hasAssignmentRunOut = false;
        long outstanding = -1;
        {
            auto const memory = AllocationFaults::RefuseOne(refused);
            hasCopyRunOut = RunsOut([&] { copy.emplace(noise); });
            outstanding = memory.GetOutstanding();
        }
        {
            auto const memory = AllocationFaults::RefuseOne(refused);
            hasAssignmentRunOut = RunsOut([&] { target = noise; });
        }
        EXPECT_TRUE(hasCopyRunOut);
        EXPECT_TRUE(hasAssignmentRunOut);
        EXPECT_EQ(outstanding, 0);
        ExpectSlotCount(target, 1);
        ExpectTables(target, 0, Permutation(7));
        EXPECT_EQ(NoiseInspector::Seeds(target)[0], 7UL);
        ExpectSlotCount(noise, 4);
    }
}
