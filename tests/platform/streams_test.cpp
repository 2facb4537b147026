// The faults that other tests order must happen, and happen where they were ordered.

#include "support/streams.h"

#include <gtest/gtest.h>

#include <array>

namespace
{

using test_support::Bytes;
using test_support::GetBytes;
using test_support::GetPosition;
using test_support::MakeFaultyStream;

TEST(FaultyStream, Without_faults_is_a_stream_on_memory)
{
    auto const stream = MakeFaultyStream({}, Bytes{1, 2, 3});
    std::array<unsigned char, 2> target{};
    unsigned long done = 0;
    EXPECT_EQ(stream->Read(target.data(), 2, &done), S_OK);
    EXPECT_EQ(done, 2U);
    EXPECT_EQ(target, (std::array<unsigned char, 2>{1, 2}));
    EXPECT_EQ(stream->Write("\x07\x08", 2, &done), S_OK);
    EXPECT_EQ(done, 2U);
    EXPECT_EQ(GetBytes(stream->GetMemory()), (Bytes{1, 2, 7, 8}));
    EXPECT_EQ(GetPosition(*stream), 4U);
}

TEST(FaultyStream, Fails_the_write_that_meets_the_limit)
{
    auto const stream = test_support::MakeStreamFailingOnWrite(3, E_UNEXPECTED);
    unsigned long done = 0;
    EXPECT_EQ(stream->Write("ab", 2, &done), S_OK);
    EXPECT_EQ(stream->Write("cd", 2, &done), E_UNEXPECTED);
    EXPECT_EQ(done, 1U);
    EXPECT_EQ(stream->Write("e", 1, &done), E_UNEXPECTED);
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(GetBytes(stream->GetMemory()), (Bytes{'a', 'b', 'c'}));
    stream->faults.writable = test_support::StreamFaults::never;
    EXPECT_EQ(stream->Write("e", 1, &done), S_OK);
}

TEST(FaultyStream, Fails_the_read_that_meets_the_limit)
{
    auto const stream = test_support::MakeStreamFailingOnRead(Bytes{1, 2, 3, 4}, 3, E_UNEXPECTED);
    std::array<unsigned char, 2> target{};
    unsigned long done = 0;
    EXPECT_EQ(stream->Read(target.data(), 2, &done), S_OK);
    EXPECT_EQ(stream->Read(target.data(), 2, &done), E_UNEXPECTED);
    EXPECT_EQ(done, 1U);
    EXPECT_EQ(target[0], 3) << "what came before the fault is delivered";
    EXPECT_EQ(stream->Read(target.data(), 1, &done), E_UNEXPECTED);
    EXPECT_EQ(done, 0U);
}

TEST(FaultyStream, Gives_short_reads_as_success)
{
    auto const stream = test_support::MakeStreamWithShortReads(Bytes{1, 2, 3, 4}, 3);
    std::array<unsigned char, 4> target{};
    unsigned long done = 0;
    EXPECT_EQ(stream->Read(target.data(), 4, &done), S_OK);
    EXPECT_EQ(done, 3U);
    EXPECT_EQ(stream->Read(target.data(), 1, nullptr), S_OK);
}

TEST(FaultyStream, Fails_the_seek_that_meets_the_limit)
{
    auto const stream = MakeFaultyStream({.seeks = 1, .code = S_OK}, Bytes{1, 2});
    unsigned long long position = 0;
    EXPECT_EQ(stream->Seek(1, STREAM_SEEK_SET, &position), S_OK);
    EXPECT_EQ(stream->Seek(0, STREAM_SEEK_SET, &position), E_FAIL) << "there is no short seek";
    EXPECT_EQ(GetPosition(stream->GetMemory()), 1U);
}

} // namespace
