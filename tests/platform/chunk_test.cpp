#include "math/platform/stream_helper.h"

#include "support/streams.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <utility>

namespace
{

using test_support::Bytes;
using test_support::GetBytes;
using test_support::GetPosition;
using test_support::MakeFaultyStream;
using test_support::MakeMemoryStream;
using test_support::MakeStreamFailingOnWrite;
using test_support::StreamPointer;

constexpr unsigned long outer_tag = 0x5254554FUL;
constexpr unsigned long inner_tag = 0x524E4E49UL;
constexpr long foreign_failure = E_UNEXPECTED;

/// Hand-made stream content, independent of the writer under test.
void AppendWord(Bytes & bytes, std::uint32_t word)
{
    for (unsigned int shift = 0; shift < 32; shift += 8)
    {
        bytes.push_back(static_cast<unsigned char>(word >> shift & 0xFFU));
    }
}

void Append(Bytes & bytes, Bytes const & more)
{
    bytes.insert(bytes.end(), more.begin(), more.end());
}

Bytes MakeChunk(unsigned long tag, std::uint32_t version, std::uint32_t length, Bytes const & content)
{
    Bytes bytes;
    AppendWord(bytes, static_cast<std::uint32_t>(tag));
    AppendWord(bytes, version);
    AppendWord(bytes, length);
    Append(bytes, content);
    return bytes;
}

Bytes MakeChunk(unsigned long tag, std::uint32_t version, Bytes const & content)
{
    return MakeChunk(tag, version, static_cast<std::uint32_t>(content.size()), content);
}

/// A stream with a helper on it.
struct Reader
{
    explicit Reader(Bytes const & bytes) : stream(MakeMemoryStream(bytes)), helper(stream.get()) {}

    StreamPointer<CMemoryStream> stream;
    CKVStreamHelper helper;
};

void ExpectRefused(Reader & reader, unsigned long tag)
{
    unsigned long long const before = GetPosition(*reader.stream);
    unsigned long version = 42;
    EXPECT_EQ(reader.helper.ChunkReadOpen(tag, &version), E_FAIL);
    EXPECT_EQ(version, 42U);
    EXPECT_EQ(GetPosition(*reader.stream), before);
    EXPECT_EQ(reader.helper.ChunkReadClose(), E_FAIL) << "no chunk was entered";
    EXPECT_EQ(GetPosition(*reader.stream), before);
}

TEST(ChunkWriting, Writes_tag_version_and_length_before_the_content)
{
    auto const stream = MakeMemoryStream();
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.ChunkWriteOpen(0x54525346, 0x30313031), S_OK);
    EXPECT_EQ(helper.PutUInt8(7), S_OK);
    EXPECT_EQ(helper.PutUInt8(8), S_OK);
    EXPECT_EQ(helper.ChunkWriteClose(), S_OK);
    EXPECT_EQ(GetBytes(*stream), (Bytes{'F', 'S', 'R', 'T', '1', '0', '1', '0', 2, 0, 0, 0, 7, 8}));
    EXPECT_EQ(GetPosition(*stream), 14U);
}

TEST(ChunkWriting, An_empty_chunk_has_length_0)
{
    auto const stream = MakeMemoryStream();
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), S_OK);
    EXPECT_EQ(helper.ChunkWriteClose(), S_OK);
    EXPECT_EQ(GetBytes(*stream), MakeChunk(outer_tag, 1, {}));
}

TEST(ChunkWriting, Takes_the_low_32_bits_of_tag_and_version)
{
    if constexpr (sizeof(unsigned long) > 4)
    {
        auto const stream = MakeMemoryStream();
        CKVStreamHelper helper(stream.get());
        EXPECT_EQ(helper.ChunkWriteOpen(0xABCDEF0000000000UL | outer_tag, 0x1234567880000001UL), S_OK);
        EXPECT_EQ(helper.ChunkWriteClose(), S_OK);
        EXPECT_EQ(GetBytes(*stream), MakeChunk(outer_tag, 0x80000001U, {}));

        stream->Seek(0, STREAM_SEEK_SET, nullptr);
        unsigned long version = 0;
        EXPECT_EQ(helper.ChunkReadOpen(0x1111111100000000UL | outer_tag, &version), S_OK);
        EXPECT_EQ(version, 0x80000001UL) << "not sign-extended";
    }
}

TEST(ChunkWriting, Chunks_nest_and_follow_each_other)
{
    auto const stream = MakeMemoryStream();
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), S_OK);
    EXPECT_EQ(helper.PutUInt8(1), S_OK);
    for (std::uint32_t i = 0; i < 2; ++i)
    {
        EXPECT_EQ(helper.ChunkWriteOpen(inner_tag, 2 + i), S_OK);
        EXPECT_EQ(helper.PutUInt8(2), S_OK);
        EXPECT_EQ(helper.ChunkWriteClose(), S_OK);
    }
    EXPECT_EQ(helper.PutUInt8(3), S_OK);
    EXPECT_EQ(helper.ChunkWriteClose(), S_OK);

    Bytes content{1};
    Append(content, MakeChunk(inner_tag, 2, {2}));
    Append(content, MakeChunk(inner_tag, 3, {2}));
    content.push_back(3);
    EXPECT_EQ(GetBytes(*stream), MakeChunk(outer_tag, 1, content));
}

TEST(ChunkWriting, The_length_counts_what_other_helpers_wrote)
{
    auto const stream = MakeMemoryStream();
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), S_OK);
    {
        CKVStreamHelper member(stream.get());
        EXPECT_EQ(member.ChunkWriteOpen(inner_tag, 2), S_OK);
        EXPECT_EQ(member.PutDouble(0), S_OK);
        EXPECT_EQ(member.ChunkWriteClose(), S_OK);
    }
    EXPECT_EQ(helper.ChunkWriteClose(), S_OK);
    EXPECT_EQ(GetBytes(*stream), MakeChunk(outer_tag, 1, MakeChunk(inner_tag, 2, Bytes(8))));
}

TEST(ChunkWriting, A_chunk_can_overwrite_what_stands_there)
{
    auto const stream = MakeMemoryStream(Bytes(20, 0xEE));
    stream->Seek(2, STREAM_SEEK_SET, nullptr);
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), S_OK);
    EXPECT_EQ(helper.PutUInt8(7), S_OK);
    EXPECT_EQ(helper.ChunkWriteClose(), S_OK);
    Bytes expected(2, 0xEE);
    Append(expected, MakeChunk(outer_tag, 1, {7}));
    Append(expected, Bytes(5, 0xEE));
    EXPECT_EQ(GetBytes(*stream), expected);
    EXPECT_EQ(GetPosition(*stream), 15U);
}

TEST(ChunkWriting, A_chunk_ends_at_the_position_where_it_is_closed)
{
    auto const stream = MakeMemoryStream();
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), S_OK);
    EXPECT_EQ(helper.PutDouble(0), S_OK);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_BACK, 3), S_OK);
    EXPECT_EQ(helper.ChunkWriteClose(), S_OK);
    EXPECT_EQ(GetPosition(*stream), 17U);
    EXPECT_EQ(GetBytes(*stream), MakeChunk(outer_tag, 1, 5, Bytes(8)));
}

TEST(ChunkWriting, The_position_moves_freely_so_that_a_writer_can_give_up)
{
    auto const stream = MakeMemoryStream();
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), S_OK);
    EXPECT_EQ(helper.ChunkWriteOpen(inner_tag, 1), S_OK);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_FORWARD, 100), S_OK);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_BACK, 124), S_OK);
    EXPECT_EQ(GetPosition(*stream), 0U);
}

TEST(ChunkWriting, Closing_a_chunk_that_is_not_open_fails_and_harms_nothing)
{
    auto const stream = MakeMemoryStream(Bytes{1, 2, 3});
    stream->Seek(2, STREAM_SEEK_SET, nullptr);
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.ChunkWriteClose(), E_FAIL);
    EXPECT_EQ(helper.ChunkReadClose(), E_FAIL);
    EXPECT_EQ(GetBytes(*stream), (Bytes{1, 2, 3}));
    EXPECT_EQ(GetPosition(*stream), 2U);

    EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), S_OK);
    EXPECT_EQ(helper.ChunkWriteClose(), S_OK);
    Bytes const written = GetBytes(*stream);
    EXPECT_EQ(helper.ChunkWriteClose(), E_FAIL) << "a second time";
    EXPECT_EQ(GetBytes(*stream), written);
}

TEST(ChunkWriting, A_chunk_being_written_is_not_closed_as_one_being_read)
{
    auto const stream = MakeMemoryStream();
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), S_OK);
    EXPECT_EQ(helper.ChunkReadClose(), E_FAIL);
    EXPECT_EQ(helper.PutUInt8(7), S_OK);
    EXPECT_EQ(helper.ChunkWriteClose(), S_OK);
    EXPECT_EQ(GetBytes(*stream), MakeChunk(outer_tag, 1, {7}));
}

TEST(ChunkWriting, A_chunk_whose_writer_gave_up_is_refused_by_the_reader)
{
    auto const stream = MakeMemoryStream();
    {
        CKVStreamHelper helper(stream.get());
        EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), S_OK);
        EXPECT_EQ(helper.ChunkWriteOpen(inner_tag, 2), S_OK);
        EXPECT_EQ(helper.PutUInt8(7), S_OK);
    }
    EXPECT_EQ(test_support::CountReferences(*stream), 1U);
    EXPECT_EQ(GetPosition(*stream), 25U) << "the destructor moves nothing";
    Bytes const inner = MakeChunk(inner_tag, 2, 0xFFFFFFFFU, {7});
    EXPECT_EQ(GetBytes(*stream), MakeChunk(outer_tag, 1, 0xFFFFFFFFU, inner));
    Reader reader(GetBytes(*stream));
    ExpectRefused(reader, outer_tag);
}

TEST(ChunkWriting, Closing_in_front_of_the_content_fails)
{
    auto const stream = MakeMemoryStream();
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), S_OK);
    stream->Seek(11, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(helper.ChunkWriteClose(), E_FAIL);
    EXPECT_EQ(GetPosition(*stream), 11U);
    EXPECT_EQ(GetBytes(*stream), MakeChunk(outer_tag, 1, 0xFFFFFFFFU, {}));
    EXPECT_EQ(helper.ChunkWriteClose(), E_FAIL) << "it was closed";
}

/// The writing of an object with a member, as the saving classes do it; gives the first failure.
long SaveNested(IStream & stream)
{
    CKVStreamHelper helper(&stream);
    unsigned long start = 0;
    long result = helper.GetPos(&start);
    auto const step = [&result](long next)
    {
        if (result >= 0)
        {
            result = next;
        }
        return result >= 0;
    };
    if (result < 0)
    {
        return result;
    }
    static_cast<void>(step(helper.ChunkWriteOpen(outer_tag, 1)) && step(helper.PutBool(1)) &&
                      step(helper.ChunkWriteOpen(inner_tag, 2)) && step(helper.PutDouble(3)) &&
                      step(helper.ChunkWriteClose()) && step(helper.PutFloat(4)) && step(helper.ChunkWriteClose()));
    if (result < 0)
    {
        while (helper.ChunkWriteClose() >= 0)
        {
        }
        unsigned long now = 0;
        if (helper.GetPos(&now) >= 0)
        {
            static_cast<void>(helper.MovePos(STMHELPERDIR_BACK, now - start));
        }
    }
    return result;
}

TEST(ChunkWriting, A_failure_at_any_byte_is_reported_and_the_position_can_be_taken_back)
{
    // Two headers, 1 + 8 + 4 bytes of content, two lengths patched.
    constexpr unsigned long long total = 12 + 1 + 12 + 8 + 4 + 4 + 4;
    for (long const code : {foreign_failure, S_OK})
    {
        for (unsigned long long writable = 0; writable < total; ++writable)
        {
            auto const stream = MakeFaultyStream({.writable = writable, .code = code}, Bytes(5));
            stream->Seek(5, STREAM_SEEK_SET, nullptr);
            EXPECT_EQ(SaveNested(*stream), code < 0 ? code : E_FAIL) << writable;
            EXPECT_EQ(GetPosition(*stream), 5U) << writable;
        }
        auto const stream = MakeStreamFailingOnWrite(total, code);
        EXPECT_EQ(SaveNested(*stream), S_OK);
        EXPECT_EQ(GetPosition(*stream), 37U);
    }
}

TEST(ChunkWriting, A_failure_of_any_seek_is_reported)
{
    auto const count_seeks = MakeFaultyStream({.seeks = 1000});
    ASSERT_EQ(SaveNested(*count_seeks), S_OK);
    unsigned long long const total = 1000 - count_seeks->faults.seeks;
    for (unsigned long long seeks = 0; seeks < total; ++seeks)
    {
        auto const stream = MakeFaultyStream({.seeks = seeks, .code = foreign_failure});
        EXPECT_EQ(SaveNested(*stream), foreign_failure) << seeks;
    }
}

TEST(ChunkWriting, A_header_that_fails_opens_no_chunk)
{
    for (unsigned long long writable = 0; writable < 12; ++writable)
    {
        auto const stream = MakeStreamFailingOnWrite(writable, foreign_failure);
        CKVStreamHelper helper(stream.get());
        EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), foreign_failure);
        EXPECT_EQ(GetPosition(*stream), 0U);
        EXPECT_EQ(helper.ChunkWriteClose(), E_FAIL);
    }
}

TEST(ChunkWriting, A_length_that_fails_to_be_written_leaves_the_position_at_the_end)
{
    auto const stream = MakeStreamFailingOnWrite(14, foreign_failure);
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), S_OK);
    EXPECT_EQ(helper.PutUInt8(7), S_OK);
    EXPECT_EQ(helper.ChunkWriteClose(), foreign_failure);
    EXPECT_EQ(GetPosition(*stream), 13U);
    EXPECT_EQ(helper.ChunkWriteClose(), E_FAIL) << "it was closed";
}

/// A stream as long as is wanted, of which only the first bytes and the last four written are kept.
class VastStream final : public math::detail::CountedStream
{
public:
    explicit VastStream(unsigned long long stream_size = 0, Bytes first_bytes = {})
        : first(std::move(first_bytes)), size(stream_size)
    {
    }

    long Read(void * target, unsigned long count, unsigned long * done) override
    {
        *done = 0;
        if (position + count <= first.size())
        {
            std::copy_n(first.begin() + static_cast<std::ptrdiff_t>(position), count,
                        static_cast<unsigned char *>(target));
            position += count;
            *done = count;
        }
        return S_OK;
    }
    long Write(void const * source, unsigned long count, unsigned long * done) override
    {
        auto const * const bytes = static_cast<unsigned char const *>(source);
        last.assign(bytes, bytes + count);
        position += count;
        *done = count;
        return S_OK;
    }
    long Seek(long long distance, unsigned long origin, unsigned long long * reached) override
    {
        std::array<unsigned long long, 3> const bases{0, position, size};
        position = bases.at(origin) + static_cast<unsigned long long>(distance);
        *reached = position;
        return S_OK;
    }

    Bytes first;
    Bytes last;
    unsigned long long size;
    unsigned long long position{0};
};

TEST(ChunkWriting, The_longest_length_is_written_and_a_longer_one_refused)
{
    constexpr unsigned long long longest = 0xFFFFFFFEU;
    for (unsigned long long const length : {longest, longest + 1, longest + 2, longest + 10})
    {
        StreamPointer<VastStream> const stream(new VastStream);
        CKVStreamHelper helper(stream.get());
        EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), S_OK);
        stream->position += length;
        EXPECT_EQ(helper.ChunkWriteClose(), length == longest ? S_OK : E_FAIL) << length;
        EXPECT_EQ(stream->position, 12 + length);
        EXPECT_EQ(stream->last, length == longest ? (Bytes{0xFE, 0xFF, 0xFF, 0xFF}) : Bytes(4, 0xFF)) << length;
        EXPECT_EQ(helper.ChunkWriteClose(), E_FAIL) << "closed in any case";
    }
}

TEST(ChunkReading, Enters_gives_the_version_and_skips_the_rest)
{
    Bytes bytes = MakeChunk(outer_tag, 0xFFFFFFFFU, {1, 2, 3});
    bytes.push_back(9);
    Reader reader(bytes);
    unsigned long version = 0;
    unsigned char byte = 0;
    EXPECT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
    EXPECT_EQ(version, 0xFFFFFFFFUL);
    EXPECT_EQ(GetPosition(*reader.stream), 12U);
    EXPECT_EQ(reader.helper.GetUInt8(&byte), S_OK);
    EXPECT_EQ(byte, 1);
    EXPECT_EQ(reader.helper.ChunkReadClose(), S_OK);
    EXPECT_EQ(GetPosition(*reader.stream), 15U);
    EXPECT_EQ(reader.helper.GetUInt8(&byte), S_OK);
    EXPECT_EQ(byte, 9);
}

TEST(ChunkReading, An_empty_chunk_holds_nothing)
{
    Bytes bytes = MakeChunk(outer_tag, 1, {});
    bytes.push_back(9);
    Reader reader(bytes);
    unsigned long version = 0;
    unsigned char byte = 42;
    EXPECT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
    EXPECT_EQ(reader.helper.GetUInt8(&byte), E_FAIL);
    EXPECT_EQ(byte, 42);
    EXPECT_EQ(reader.helper.ChunkReadClose(), S_OK);
    EXPECT_EQ(GetPosition(*reader.stream), 12U);
}

TEST(ChunkReading, Every_bit_of_the_tag_counts)
{
    for (unsigned int bit = 0; bit < 32; ++bit)
    {
        Reader reader(MakeChunk(outer_tag, 1, {1}));
        ExpectRefused(reader, outer_tag ^ (1UL << bit));
        unsigned long version = 0;
        EXPECT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK) << "the right tag still opens it";
    }
}

TEST(ChunkReading, A_truncated_header_is_refused)
{
    Bytes const whole = MakeChunk(outer_tag, 1, {});
    for (std::size_t held = 0; held < whole.size(); ++held)
    {
        Reader reader(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(held)));
        ExpectRefused(reader, outer_tag);
    }
}

TEST(ChunkReading, A_chunk_that_claims_more_than_the_stream_holds_is_refused)
{
    for (std::uint32_t const length : {4U, 5U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFF3U, 0xFFFFFFFEU, 0xFFFFFFFFU})
    {
        Reader reader(MakeChunk(outer_tag, 1, length, {1, 2, 3}));
        ExpectRefused(reader, outer_tag);
    }
    Reader reader(MakeChunk(outer_tag, 1, 3, {1, 2, 3}));
    unsigned long version = 0;
    EXPECT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
}

TEST(ChunkReading, A_chunk_that_claims_more_than_its_parent_is_refused)
{
    for (std::uint32_t const length : {3U, 4U, 100U, 0xFFFFFFFEU})
    {
        Bytes bytes = MakeChunk(outer_tag, 1, MakeChunk(inner_tag, 2, length, {7, 8}));
        Append(bytes, Bytes(50)); // the stream itself would hold it
        Reader reader(bytes);
        unsigned long version = 42;
        EXPECT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
        EXPECT_EQ(reader.helper.ChunkReadOpen(inner_tag, &version), E_FAIL) << length;
        EXPECT_EQ(version, 1U);
        EXPECT_EQ(GetPosition(*reader.stream), 12U);
        EXPECT_EQ(reader.helper.ChunkReadClose(), S_OK) << "the parent is still open";
        EXPECT_EQ(GetPosition(*reader.stream), 26U);
    }
}

TEST(ChunkReading, A_header_that_passes_the_end_of_its_parent_is_refused)
{
    for (std::uint32_t length = 0; length < 12; ++length)
    {
        Reader reader(MakeChunk(outer_tag, 1, length, MakeChunk(inner_tag, 2, {})));
        unsigned long version = 42;
        EXPECT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
        EXPECT_EQ(reader.helper.ChunkReadOpen(inner_tag, &version), E_FAIL) << length;
        EXPECT_EQ(GetPosition(*reader.stream), 12U);
    }
    Reader reader(MakeChunk(outer_tag, 1, 12, MakeChunk(inner_tag, 2, {})));
    unsigned long version = 0;
    EXPECT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
    EXPECT_EQ(reader.helper.ChunkReadOpen(inner_tag, &version), S_OK);
    EXPECT_EQ(version, 2U);
}

TEST(ChunkReading, Nothing_is_read_past_the_end_of_the_chunk)
{
    Bytes bytes = MakeChunk(outer_tag, 1, Bytes(7));
    Append(bytes, Bytes(400)); // the stream itself would give it
    Reader reader(bytes);
    unsigned long version = 0;
    double number = 42;
    std::array<char, 300> array{};
    array.fill('x');
    std::array<char, 300> const untouched = array;
    ASSERT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
    EXPECT_EQ(reader.helper.GetDouble(&number), E_FAIL);
    EXPECT_EQ(number, 42);
    EXPECT_EQ(reader.helper.GetByteArray(array.data(), 8), E_FAIL);
    EXPECT_EQ(reader.helper.GetByteArray(array.data(), 300), E_FAIL);
    EXPECT_EQ(array, untouched);
    EXPECT_EQ(GetPosition(*reader.stream), 12U) << "a refused read stays where it was";
    EXPECT_EQ(reader.helper.GetByteArray(array.data(), 7), S_OK) << "up to the end it reads";
    EXPECT_EQ(GetPosition(*reader.stream), 19U);
    EXPECT_EQ(reader.helper.ChunkReadClose(), S_OK);
    EXPECT_EQ(reader.helper.GetDouble(&number), S_OK) << "behind the chunk it reads on";
}

TEST(ChunkReading, The_innermost_chunk_bounds_the_reading)
{
    Bytes content = MakeChunk(inner_tag, 2, {1});
    Append(content, {2, 3});
    Reader reader(MakeChunk(outer_tag, 1, content));
    unsigned long version = 0;
    unsigned char byte = 0;
    EXPECT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
    EXPECT_EQ(reader.helper.ChunkReadOpen(inner_tag, &version), S_OK);
    EXPECT_EQ(reader.helper.GetUInt8(&byte), S_OK);
    EXPECT_EQ(reader.helper.GetUInt8(&byte), E_FAIL);
    EXPECT_EQ(reader.helper.ChunkReadClose(), S_OK);
    EXPECT_EQ(reader.helper.GetUInt8(&byte), S_OK);
    EXPECT_EQ(byte, 2);
    EXPECT_EQ(reader.helper.ChunkReadClose(), S_OK);
    EXPECT_EQ(GetPosition(*reader.stream), 12U + content.size());
}

TEST(ChunkReading, The_position_cannot_move_out_of_the_chunk)
{
    Bytes bytes(5);
    Append(bytes, MakeChunk(outer_tag, 1, Bytes(10)));
    Append(bytes, Bytes(5));
    Reader reader(bytes);
    reader.stream->Seek(5, STREAM_SEEK_SET, nullptr);
    unsigned long version = 0;
    ASSERT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
    EXPECT_EQ(reader.helper.MovePos(STMHELPERDIR_BACK, 1), E_FAIL);
    EXPECT_EQ(reader.helper.MovePos(STMHELPERDIR_FORWARD, 11), E_FAIL);
    EXPECT_EQ(GetPosition(*reader.stream), 17U);
    EXPECT_EQ(reader.helper.MovePos(STMHELPERDIR_FORWARD, 10), S_OK);
    EXPECT_EQ(GetPosition(*reader.stream), 27U);
    EXPECT_EQ(reader.helper.MovePos(STMHELPERDIR_BACK, 10), S_OK);
    EXPECT_EQ(GetPosition(*reader.stream), 17U);
    EXPECT_EQ(reader.helper.ChunkReadClose(), S_OK);
    EXPECT_EQ(reader.helper.MovePos(STMHELPERDIR_BACK, 27), S_OK) << "once it is closed, nothing holds the position";
}

TEST(ChunkReading, Another_helper_reads_within_the_chunk)
{
    Bytes content = MakeChunk(inner_tag, 2, {1, 2});
    content.push_back(3);
    Reader reader(MakeChunk(outer_tag, 1, content));
    unsigned long version = 0;
    unsigned char byte = 0;
    EXPECT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
    {
        CKVStreamHelper member(reader.stream.get());
        EXPECT_EQ(member.ChunkReadOpen(inner_tag, &version), S_OK);
        EXPECT_EQ(member.ChunkReadClose(), S_OK);
    }
    EXPECT_EQ(reader.helper.GetUInt8(&byte), S_OK);
    EXPECT_EQ(byte, 3);
    EXPECT_EQ(reader.helper.ChunkReadClose(), S_OK);
}

TEST(ChunkReading, What_another_helper_read_past_the_end_is_reported)
{
    Bytes bytes = MakeChunk(outer_tag, 1, {1, 2});
    Append(bytes, Bytes(8));
    Reader reader(bytes);
    unsigned long version = 0;
    double number = 0;
    unsigned char byte = 42;
    char nothing = 'x';
    EXPECT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
    EXPECT_EQ(CKVStreamHelper(reader.stream.get()).GetDouble(&number), S_OK);
    EXPECT_EQ(reader.helper.GetUInt8(&byte), E_FAIL);
    EXPECT_EQ(byte, 42);
    EXPECT_EQ(reader.helper.GetByteArray(&nothing, 300), E_FAIL);
    EXPECT_EQ(reader.helper.ChunkReadClose(), E_FAIL);
    EXPECT_EQ(GetPosition(*reader.stream), 14U) << "closed at its end all the same";
    EXPECT_EQ(reader.helper.ChunkReadClose(), E_FAIL);
}

TEST(ChunkReading, What_another_helper_read_in_front_of_the_content_is_reported)
{
    Reader reader(MakeChunk(outer_tag, 1, {1, 2}));
    unsigned long version = 0;
    unsigned char byte = 42;
    EXPECT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
    reader.stream->Seek(11, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(reader.helper.GetUInt8(&byte), E_FAIL);
    EXPECT_EQ(byte, 42);
    EXPECT_EQ(reader.helper.ChunkReadClose(), E_FAIL);
    EXPECT_EQ(GetPosition(*reader.stream), 14U);
}

TEST(ChunkReading, A_chunk_being_read_is_not_closed_as_one_being_written)
{
    Bytes const bytes = MakeChunk(outer_tag, 1, {1, 2});
    Reader reader(bytes);
    unsigned long version = 0;
    EXPECT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
    EXPECT_EQ(reader.helper.ChunkWriteClose(), E_FAIL);
    EXPECT_EQ(GetBytes(*reader.stream), bytes);
    EXPECT_EQ(GetPosition(*reader.stream), 12U);
    EXPECT_EQ(reader.helper.ChunkReadClose(), S_OK);
}

TEST(ChunkReading, Is_possible_within_a_chunk_being_written)
{
    auto const stream = MakeMemoryStream();
    CKVStreamHelper helper(stream.get());
    unsigned long version = 0;
    unsigned char byte = 0;
    EXPECT_EQ(helper.ChunkWriteOpen(outer_tag, 1), S_OK);
    EXPECT_EQ(helper.ChunkWriteOpen(inner_tag, 2), S_OK);
    EXPECT_EQ(helper.PutUInt8(7), S_OK);
    EXPECT_EQ(helper.ChunkWriteClose(), S_OK);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_BACK, 13), S_OK);
    EXPECT_EQ(helper.ChunkReadOpen(inner_tag, &version), S_OK);
    EXPECT_EQ(helper.GetUInt8(&byte), S_OK);
    EXPECT_EQ(byte, 7);
    EXPECT_EQ(helper.ChunkReadClose(), S_OK);
    EXPECT_EQ(helper.ChunkWriteClose(), S_OK);
    EXPECT_EQ(GetBytes(*stream), MakeChunk(outer_tag, 1, MakeChunk(inner_tag, 2, {7})));
}

TEST(ChunkReading, Reading_within_a_chunk_being_written_keeps_the_bounds_around_it)
{
    Bytes bytes = MakeChunk(outer_tag, 1, Bytes(20));
    Append(bytes, Bytes(20));
    Reader reader(bytes);
    unsigned long version = 0;
    double number = 0;
    EXPECT_EQ(reader.helper.ChunkReadOpen(outer_tag, &version), S_OK);
    EXPECT_EQ(reader.helper.ChunkWriteOpen(inner_tag, 2), S_OK);
    EXPECT_EQ(reader.helper.GetDouble(&number), S_OK);
    EXPECT_EQ(reader.helper.GetDouble(&number), E_FAIL);
    EXPECT_EQ(reader.helper.MovePos(STMHELPERDIR_FORWARD, 1), E_FAIL);
}

TEST(ChunkReading, A_chunk_left_open_leaves_the_position)
{
    auto const stream = MakeMemoryStream(MakeChunk(outer_tag, 1, {1, 2, 3}));
    {
        CKVStreamHelper helper(stream.get());
        unsigned long version = 0;
        unsigned char byte = 0;
        EXPECT_EQ(helper.ChunkReadOpen(outer_tag, &version), S_OK);
        EXPECT_EQ(helper.GetUInt8(&byte), S_OK);
    }
    EXPECT_EQ(GetPosition(*stream), 13U);
    EXPECT_EQ(test_support::CountReferences(*stream), 1U);
}

TEST(ChunkReading, A_failure_of_any_read_or_seek_is_reported)
{
    Bytes const bytes = MakeChunk(outer_tag, 1, MakeChunk(inner_tag, 2, {7}));
    auto const load = [](IStream & stream)
    {
        CKVStreamHelper helper(&stream);
        unsigned long version = 0;
        unsigned char byte = 0;
        for (long const result : {helper.ChunkReadOpen(outer_tag, &version), helper.ChunkReadOpen(inner_tag, &version),
                                  helper.GetUInt8(&byte), helper.ChunkReadClose(), helper.ChunkReadClose()})
        {
            if (result < 0)
            {
                return result;
            }
        }
        return S_OK;
    };
    auto const count_seeks = MakeFaultyStream({.seeks = 1000}, bytes);
    ASSERT_EQ(load(*count_seeks), S_OK);
    for (unsigned long long seeks = 0; seeks < 1000 - count_seeks->faults.seeks; ++seeks)
    {
        auto const stream = MakeFaultyStream({.seeks = seeks, .code = foreign_failure}, bytes);
        EXPECT_EQ(load(*stream), foreign_failure) << seeks;
    }
    for (unsigned long long readable = 0; readable < bytes.size(); ++readable)
    {
        auto const stream = test_support::MakeStreamFailingOnRead(bytes, readable, foreign_failure);
        EXPECT_EQ(load(*stream), foreign_failure) << readable;
    }
    for (unsigned long long largest = 0; largest < 4; ++largest)
    {
        auto const stream = test_support::MakeStreamWithShortReads(bytes, largest);
        EXPECT_EQ(load(*stream), E_FAIL) << largest;
    }
}

TEST(ChunkReading, The_length_of_an_unfinished_chunk_is_refused_even_where_the_stream_holds_it)
{
    for (std::uint32_t const length : {0xFFFFFFFEU, 0xFFFFFFFFU})
    {
        StreamPointer<VastStream> const stream(new VastStream(1ULL << 40, MakeChunk(outer_tag, 1, length, {})));
        CKVStreamHelper helper(stream.get());
        unsigned long version = 0;
        bool const finished = length == 0xFFFFFFFEU;
        EXPECT_EQ(helper.ChunkReadOpen(outer_tag, &version), finished ? S_OK : E_FAIL);
        EXPECT_EQ(helper.ChunkReadClose(), finished ? S_OK : E_FAIL);
        EXPECT_EQ(stream->position, finished ? 12ULL + length : 0ULL);
    }
}

TEST(ChunkReading, A_byte_array_larger_than_memory_is_refused)
{
    StreamPointer<VastStream> const stream(new VastStream(std::numeric_limits<unsigned long long>::max()));
    CKVStreamHelper helper(stream.get());
    char target = 'x';
    EXPECT_EQ(helper.GetByteArray(&target, std::numeric_limits<unsigned long>::max() / 2 + 1), E_OUTOFMEMORY);
    EXPECT_EQ(target, 'x');
    EXPECT_EQ(stream->position, 0U);
}

TEST(ChunkReading, A_header_that_fails_to_be_read_leaves_the_position)
{
    Bytes const bytes = MakeChunk(outer_tag, 1, {7});
    for (unsigned long long readable = 0; readable < 12; ++readable)
    {
        auto const stream = test_support::MakeStreamFailingOnRead(bytes, readable, foreign_failure);
        CKVStreamHelper helper(stream.get());
        unsigned long version = 42;
        EXPECT_EQ(helper.ChunkReadOpen(outer_tag, &version), foreign_failure);
        EXPECT_EQ(version, 42U);
        EXPECT_EQ(GetPosition(*stream), 0U);
    }
}

TEST(Chunks, Nest_deeper_than_the_call_stack)
{
    constexpr unsigned long depth = 300000;
    auto const stream = MakeMemoryStream();
    {
        CKVStreamHelper helper(stream.get());
        for (unsigned long i = 0; i < depth; ++i)
        {
            ASSERT_EQ(helper.ChunkWriteOpen(outer_tag, i), S_OK);
        }
        for (unsigned long i = 0; i < depth; ++i)
        {
            ASSERT_EQ(helper.ChunkWriteClose(), S_OK);
        }
        EXPECT_EQ(helper.ChunkWriteClose(), E_FAIL);
    }
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    CKVStreamHelper helper(stream.get());
    for (unsigned long i = 0; i < depth; ++i)
    {
        unsigned long version = 0;
        ASSERT_EQ(helper.ChunkReadOpen(outer_tag, &version), S_OK);
        ASSERT_EQ(version, i);
    }
    // All of them are left open: the destructor must not recurse.
}

} // namespace
