#include "math/platform/memory_stream.h"

#include "support/streams.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <numeric>

namespace
{

using test_support::Bytes;
using test_support::CountReferences;
using test_support::GetBytes;
using test_support::GetPosition;
using test_support::MakeMemoryStream;

constexpr long long farthest = std::numeric_limits<long long>::max();

TEST(MemoryStream, Is_created_empty_with_one_reference)
{
    auto const stream = MakeMemoryStream();
    EXPECT_TRUE(stream->GetBytes().empty());
    EXPECT_EQ(GetPosition(*stream), 0U);
    EXPECT_EQ(CountReferences(*stream), 1U);
}

TEST(MemoryStream, Starts_from_a_copy_of_bytes)
{
    Bytes bytes{1, 2, 3};
    auto const stream = MakeMemoryStream(bytes);
    bytes[0] = 9;
    EXPECT_EQ(GetBytes(*stream), (Bytes{1, 2, 3}));
    EXPECT_EQ(GetPosition(*stream), 0U);
}

TEST(MemoryStream, Is_not_created_from_missing_or_uncountable_bytes)
{
    unsigned char const byte = 0;
    EXPECT_EQ(CMemoryStream::Create(nullptr, 1), nullptr);
    EXPECT_EQ(CMemoryStream::Create(&byte, static_cast<std::size_t>(PTRDIFF_MAX) + 1), nullptr);
    EXPECT_EQ(CMemoryStream::Create(&byte, SIZE_MAX), nullptr);
}

TEST(MemoryStream, Reads_from_the_position_on)
{
    auto const stream = MakeMemoryStream(Bytes{1, 2, 3, 4});
    std::array<unsigned char, 2> target{};
    unsigned long done = 0;
    EXPECT_EQ(stream->Read(target.data(), 1, &done), S_OK);
    EXPECT_EQ(done, 1U);
    EXPECT_EQ(stream->Read(target.data(), 2, &done), S_OK);
    EXPECT_EQ(done, 2U);
    EXPECT_EQ(target, (std::array<unsigned char, 2>{2, 3}));
    EXPECT_EQ(GetPosition(*stream), 3U);
}

TEST(MemoryStream, A_read_near_the_end_gives_what_there_is)
{
    auto const stream = MakeMemoryStream(Bytes{1, 2, 3});
    std::array<unsigned char, 8> target{};
    unsigned long done = 99;
    EXPECT_EQ(stream->Read(target.data(), 8, &done), S_FALSE);
    EXPECT_EQ(done, 3U);
    EXPECT_EQ(target, (std::array<unsigned char, 8>{1, 2, 3}));
    EXPECT_EQ(stream->Read(target.data(), 1, &done), S_FALSE);
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(stream->Read(target.data(), 0, &done), S_OK);
}

TEST(MemoryStream, A_read_of_the_largest_count_stops_at_the_end)
{
    auto const stream = MakeMemoryStream(Bytes{1, 2, 3});
    std::array<unsigned char, 3> target{};
    unsigned long done = 0;
    EXPECT_EQ(stream->Read(target.data(), std::numeric_limits<unsigned long>::max(), &done), S_FALSE);
    EXPECT_EQ(done, 3U);
}

TEST(MemoryStream, Overwrites_and_grows)
{
    auto const stream = MakeMemoryStream(Bytes{1, 2, 3});
    stream->Seek(2, STREAM_SEEK_SET, nullptr);
    unsigned long done = 0;
    EXPECT_EQ(stream->Write("\x07\x08\x09", 3, &done), S_OK);
    EXPECT_EQ(done, 3U);
    EXPECT_EQ(GetBytes(*stream), (Bytes{1, 2, 7, 8, 9}));
    EXPECT_EQ(GetPosition(*stream), 5U);
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(stream->Write("\x05", 1, nullptr), S_OK);
    EXPECT_EQ(GetBytes(*stream), (Bytes{5, 2, 7, 8, 9}));
}

TEST(MemoryStream, Keeps_many_small_writes)
{
    auto const stream = MakeMemoryStream();
    Bytes expected(1000);
    std::iota(expected.begin(), expected.end(), static_cast<unsigned char>(0));
    for (unsigned char const byte : expected)
    {
        ASSERT_EQ(stream->Write(&byte, 1, nullptr), S_OK);
    }
    EXPECT_EQ(GetBytes(*stream), expected);
}

TEST(MemoryStream, Writes_a_copy_of_its_own_bytes)
{
    auto const stream = MakeMemoryStream(Bytes{1, 2, 3});
    stream->Seek(0, STREAM_SEEK_END, nullptr);
    for (int i = 0; i < 3; ++i)
    {
        ASSERT_EQ(stream->Write(stream->GetBytes().data(), 3, nullptr), S_OK);
    }
    EXPECT_EQ(GetBytes(*stream), (Bytes{1, 2, 3, 1, 2, 3, 1, 2, 3, 1, 2, 3}));
    stream->Seek(1, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(stream->Write(stream->GetBytes().data(), 4, nullptr), S_OK);
    EXPECT_EQ(GetBytes(*stream), (Bytes{1, 1, 2, 3, 1, 3, 1, 2, 3, 1, 2, 3}));
}

TEST(MemoryStream, Seeks_from_each_origin)
{
    auto const stream = MakeMemoryStream(Bytes(10));
    unsigned long long position = 0;
    EXPECT_EQ(stream->Seek(4, STREAM_SEEK_SET, &position), S_OK);
    EXPECT_EQ(position, 4U);
    EXPECT_EQ(stream->Seek(-1, STREAM_SEEK_CUR, &position), S_OK);
    EXPECT_EQ(position, 3U);
    EXPECT_EQ(stream->Seek(-2, STREAM_SEEK_END, &position), S_OK);
    EXPECT_EQ(position, 8U);
    EXPECT_EQ(stream->Seek(2, STREAM_SEEK_CUR, nullptr), S_OK);
    EXPECT_EQ(GetPosition(*stream), 10U);
}

TEST(MemoryStream, Origins_are_0_the_start_1_the_position_and_2_the_end)
{
    auto const stream = MakeMemoryStream(Bytes(10));
    unsigned long long position = 0;
    EXPECT_EQ(stream->Seek(4, 0, &position), S_OK);
    EXPECT_EQ(position, 4U);
    EXPECT_EQ(stream->Seek(3, 1, &position), S_OK);
    EXPECT_EQ(position, 7U);
    EXPECT_EQ(stream->Seek(-1, 2, &position), S_OK);
    EXPECT_EQ(position, 9U);
    EXPECT_EQ(STREAM_SEEK_SET, 0U);
    EXPECT_EQ(STREAM_SEEK_CUR, 1U);
    EXPECT_EQ(STREAM_SEEK_END, 2U);
}

TEST(MemoryStream, A_refused_seek_keeps_the_position)
{
    auto const stream = MakeMemoryStream(Bytes(10));
    stream->Seek(4, STREAM_SEEK_SET, nullptr);
    unsigned long long position = 77;
    EXPECT_EQ(stream->Seek(-1, STREAM_SEEK_SET, &position), E_INVALIDARG);
    EXPECT_EQ(stream->Seek(-5, STREAM_SEEK_CUR, &position), E_INVALIDARG);
    EXPECT_EQ(stream->Seek(-11, STREAM_SEEK_END, &position), E_INVALIDARG);
    EXPECT_EQ(stream->Seek(std::numeric_limits<long long>::min(), STREAM_SEEK_END, &position), E_INVALIDARG);
    EXPECT_EQ(stream->Seek(farthest, STREAM_SEEK_CUR, &position), E_INVALIDARG);
    EXPECT_EQ(stream->Seek(0, 3, &position), E_INVALIDARG);
    EXPECT_EQ(position, 77U);
    EXPECT_EQ(GetPosition(*stream), 4U);
}

TEST(MemoryStream, Beyond_the_end_nothing_is_read_and_a_write_fills_the_gap_with_zeros)
{
    auto const stream = MakeMemoryStream(Bytes{1});
    EXPECT_EQ(stream->Seek(3, STREAM_SEEK_SET, nullptr), S_OK);
    unsigned char target = 42;
    unsigned long done = 9;
    EXPECT_EQ(stream->Read(&target, 1, &done), S_FALSE);
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(target, 42);
    EXPECT_EQ(stream->Write(nullptr, 0, nullptr), S_OK);
    EXPECT_EQ(stream->GetBytes().size(), 1U) << "an empty write fills nothing";
    EXPECT_EQ(stream->Write("\x02", 1, nullptr), S_OK);
    EXPECT_EQ(GetBytes(*stream), (Bytes{1, 0, 0, 2}));
}

TEST(MemoryStream, A_write_that_memory_cannot_hold_changes_nothing)
{
    auto const stream = MakeMemoryStream(Bytes{1});
    ASSERT_EQ(stream->Seek(farthest, STREAM_SEEK_SET, nullptr), S_OK);
    unsigned long done = 9;
    EXPECT_EQ(stream->Write("\x02", 1, &done), E_OUTOFMEMORY);
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(GetPosition(*stream), static_cast<unsigned long long>(farthest));
    stream->Seek(1, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(stream->Write("\x02", std::numeric_limits<unsigned long>::max(), &done), E_OUTOFMEMORY);
    EXPECT_EQ(GetBytes(*stream), Bytes{1});
    EXPECT_EQ(GetPosition(*stream), 1U);
}

TEST(MemoryStream, Null_buffers_are_refused_unless_nothing_is_asked_for)
{
    auto const stream = MakeMemoryStream(Bytes{1});
    unsigned long done = 9;
    EXPECT_EQ(stream->Read(nullptr, 1, &done), E_POINTER);
    EXPECT_EQ(done, 0U);
    done = 9;
    EXPECT_EQ(stream->Write(nullptr, 1, &done), E_POINTER);
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(stream->Read(nullptr, 0, &done), S_OK);
    EXPECT_EQ(stream->Write(nullptr, 0, &done), S_OK);
    EXPECT_EQ(GetPosition(*stream), 0U);
}

TEST(MemoryStream, Transferred_counts_may_be_left_out)
{
    auto const stream = MakeMemoryStream(Bytes{1});
    unsigned char target = 0;
    EXPECT_EQ(stream->Read(&target, 1, nullptr), S_OK);
    EXPECT_EQ(target, 1);
    EXPECT_EQ(stream->Write(&target, 1, nullptr), S_OK);
}

TEST(MemoryStream, Gives_its_interfaces_with_a_reference_each)
{
    auto const stream = MakeMemoryStream();
    void * root = nullptr;
    void * same = nullptr;
    EXPECT_EQ(stream->QueryInterface(IID_IUnknown, &root), S_OK);
    EXPECT_EQ(stream->QueryInterface(IID_IStream, &same), S_OK);
    EXPECT_EQ(root, same);
    EXPECT_EQ(root, static_cast<void *>(static_cast<IStream *>(stream.get())));
    EXPECT_EQ(CountReferences(*stream), 3U);
    EXPECT_EQ(stream->Release(), 2U);
    EXPECT_EQ(stream->Release(), 1U);
}

TEST(MemoryStream, Refuses_an_unknown_interface_and_a_null_pointer)
{
    auto const stream = MakeMemoryStream();
    int something = 0;
    void * out = &something;
    EXPECT_EQ(stream->QueryInterface(_GUID{1, 2, 3, {}}, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(stream->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(CountReferences(*stream), 1U);
}

} // namespace
