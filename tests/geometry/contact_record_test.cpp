#include "math/contact_record.h"

#include "geometry/intersect/contact_array.h"
#include "geometry/marked_record.h"
#include "geometry/task_memory_faults.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>

using test_support::HasOnly;
using test_support::MakeMarkedRecord;

// Callers in other compilers' objects index arrays of records: nine numbers in this order, nothing between them.
static_assert(sizeof(tagS3DGEOMINFO) == 9 * sizeof(double));
static_assert(std::is_standard_layout_v<tagS3DGEOMINFO>);
static_assert(std::is_trivially_destructible_v<tagS3DGEOMINFO>);
static_assert(offsetof(tagS3DGEOMINFO, position) == 0);
static_assert(offsetof(tagS3DGEOMINFO, normal) == 3 * sizeof(double));
static_assert(offsetof(tagS3DGEOMINFO, u) == 6 * sizeof(double));
static_assert(offsetof(tagS3DGEOMINFO, v) == 7 * sizeof(double));
static_assert(offsetof(tagS3DGEOMINFO, distance) == 8 * sizeof(double));

// The values are a contract.
static_assert(math::detail::k_ParallelApart == 1);
static_assert(math::detail::k_Degenerate == 2);
static_assert(math::detail::k_NoContact == 4);
static_assert(math::detail::k_OtherNappe == 16);
static_assert(math::detail::k_ThroughCenter == 32);
static_assert(math::detail::k_Intersecting == 0x10000);
static_assert(math::detail::k_Touching == 0x20000);
static_assert(math::detail::k_Inside == 0x40000);
static_assert(math::detail::k_Coincident == 0x100000);
static_assert(math::detail::k_AnyContact == 0xFFFF0000);

TEST(ContactRecord, Value_initialisation_clears_every_field_over_old_memory)
{
    alignas(tagS3DGEOMINFO) unsigned char memory[sizeof(tagS3DGEOMINFO)];
    std::fill(std::begin(memory), std::end(memory), static_cast<unsigned char>(0xA5));
    auto * const record = new (memory) tagS3DGEOMINFO{};
    for (double const value : {record->position.X, record->position.Y, record->position.Z, record->normal.X,
                               record->normal.Y, record->normal.Z, record->u, record->v, record->distance})
    {
        EXPECT_TRUE(test_support::SameBits(value, 0.0));
    }
    std::destroy_at(record);
}

TEST(ContactRecord, A_marked_record_tells_which_fields_were_written)
{
    tagS3DGEOMINFO record = MakeMarkedRecord();
    EXPECT_TRUE(HasOnly(test_support::k_NoField, record));
    record.position.Y = 0;
    record.v = 1;
    EXPECT_TRUE(HasOnly(test_support::k_PositionY | test_support::k_V, record));
    EXPECT_FALSE(HasOnly(test_support::k_PositionY, record));
    EXPECT_FALSE(HasOnly(test_support::k_PositionY | test_support::k_V | test_support::k_U, record));
    EXPECT_TRUE(HasOnly(test_support::k_AllFields, tagS3DGEOMINFO{}));
}

TEST(ContactRecord, An_array_whose_size_in_bytes_overflows_is_not_asked_for)
{
    test_support::TaskMemoryFaults const memory(test_support::TaskMemoryFaults::Answer::Serve);
    // The last of these sizes in bytes is 0 modulo the size of the address space.
    for (std::size_t const count : {SIZE_MAX / sizeof(tagS3DGEOMINFO) + 1, SIZE_MAX, SIZE_MAX / 8 + 1})
    {
        EXPECT_EQ(math::detail::AllocateContacts(count), nullptr) << count;
    }
    EXPECT_EQ(memory.GetRequests(), 0);
}

TEST(ContactRecord, An_array_has_room_for_its_records)
{
    test_support::TaskMemoryFaults const memory(test_support::TaskMemoryFaults::Answer::Serve);
    CoTaskMemFree(math::detail::AllocateContacts(7));
    EXPECT_EQ(memory.GetLastSize(), 7 * sizeof(tagS3DGEOMINFO));
}

TEST(ContactRecord, An_array_of_no_records_is_a_block_too)
{
    tagS3DGEOMINFO * const records = math::detail::AllocateContacts(0);
    EXPECT_NE(records, nullptr);
    CoTaskMemFree(records);
}
