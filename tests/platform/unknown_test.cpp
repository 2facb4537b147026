#include "math/platform/unknown.h"

#include "math/platform/stream.h"

#include "support/virtual_slots.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace
{

constexpr _GUID sample{0x01234567, 0x89AB, 0xCDEF, {0, 1, 2, 3, 4, 5, 6, 7}};

TEST(Guid, Fields_lie_in_order_without_gaps)
{
    EXPECT_EQ(sizeof(_GUID), 16U);
    EXPECT_EQ(offsetof(_GUID, Data1), 0U);
    EXPECT_EQ(offsetof(_GUID, Data2), 4U);
    EXPECT_EQ(offsetof(_GUID, Data3), 6U);
    EXPECT_EQ(offsetof(_GUID, Data4), 8U);
}

TEST(Guid, Equals_its_copy)
{
    _GUID const copy = sample;
    EXPECT_TRUE(copy == sample);
    EXPECT_FALSE(copy != sample);
}

TEST(Guid, Differs_in_every_one_of_its_bytes)
{
    for (std::size_t i = 0; i < sizeof(_GUID); ++i)
    {
        _GUID other = sample;
        reinterpret_cast<unsigned char *>(&other)[i] ^= 0x80;
        EXPECT_FALSE(other == sample) << "byte " << i;
    }
}

TEST(Guid, Root_interface_has_the_well_known_identifier)
{
    EXPECT_TRUE((IID_IUnknown == _GUID{0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}}));
    EXPECT_FALSE(IID_IUnknown == IID_IStream);
}

TEST(Guid, Stream_interface_has_the_well_known_identifier)
{
    EXPECT_TRUE((IID_IStream == _GUID{0xC, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}}));
}

TEST(Unknown, Operations_of_interfaces_stand_in_their_order)
{
    using test_support::SlotOf;
    EXPECT_EQ(SlotOf(&IUnknown::QueryInterface), 0U);
    EXPECT_EQ(SlotOf(&IUnknown::AddRef), 1U);
    EXPECT_EQ(SlotOf(&IUnknown::Release), 2U);
    EXPECT_EQ(SlotOf(&IStream::Read), 3U);
    EXPECT_EQ(SlotOf(&IStream::Write), 4U);
    EXPECT_EQ(SlotOf(&IStream::Seek), 5U);
}

} // namespace
