#include "math/platform/stream_helper.h"

#include "support/streams.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <functional>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

namespace
{

using test_support::Bytes;
using test_support::CountReferences;
using test_support::GetBytes;
using test_support::GetPosition;
using test_support::MakeFaultyStream;
using test_support::MakeMemoryStream;
using test_support::MakeStreamFailingOnRead;
using test_support::MakeStreamFailingOnWrite;
using test_support::MakeStreamWithShortReads;

constexpr long foreign_failure = E_UNEXPECTED; ///< A code that the helper has no use of its own for.

Bytes Written(std::function<long(CKVStreamHelper &)> const & write)
{
    auto const stream = MakeMemoryStream();
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(write(helper), S_OK);
    return GetBytes(*stream);
}

/// A scalar with its read: what the target held before, whether it still does, and how many bytes the scalar has.
struct ScalarRead
{
    char const * name;
    unsigned long size;
    std::function<long(CKVStreamHelper &, bool & untouched)> read;
    std::function<long(CKVStreamHelper &)> read_into_null;
};

template <typename Value>
ScalarRead MakeScalarRead(char const * name, unsigned long size, long (CKVStreamHelper::*get)(Value *))
{
    return {name, size,
            [get](CKVStreamHelper & helper, bool & untouched)
            {
                Value value = 42;
                long const result = (helper.*get)(&value);
                untouched = value == 42;
                return result;
            },
            [get](CKVStreamHelper & helper) { return (helper.*get)(nullptr); }};
}

std::vector<ScalarRead> GetScalarReads()
{
    std::vector<ScalarRead> reads{
        MakeScalarRead("UInt8", 1, &CKVStreamHelper::GetUInt8), MakeScalarRead("Int8", 1, &CKVStreamHelper::GetInt8),
        MakeScalarRead("Bool", 1, &CKVStreamHelper::GetBool), MakeScalarRead("Float", 4, &CKVStreamHelper::GetFloat),
        MakeScalarRead("Double", 8, &CKVStreamHelper::GetDouble)};
    for (unsigned long const size : {3UL, 300UL})
    {
        reads.push_back({size == 3 ? "ByteArray" : "LongByteArray", size,
                         [size](CKVStreamHelper & helper, bool & untouched)
                         {
                             std::string bytes(size, 'x');
                             long const result = helper.GetByteArray(bytes.data(), size);
                             untouched = bytes == std::string(size, 'x');
                             return result;
                         },
                         [size](CKVStreamHelper & helper) { return helper.GetByteArray(nullptr, size); }});
    }
    return reads;
}

struct ScalarWrite
{
    char const * name;
    unsigned long size;
    std::function<long(CKVStreamHelper &)> write;
};

std::vector<ScalarWrite> GetScalarWrites()
{
    return {{"UInt8", 1, [](CKVStreamHelper & h) { return h.PutUInt8(200); }},
            {"Int8", 1, [](CKVStreamHelper & h) { return h.PutInt8(static_cast<char>(-3)); }},
            {"BoolFromInt", 1, [](CKVStreamHelper & h) { return h.PutBool(5); }},
            {"BoolFromBool", 1, [](CKVStreamHelper & h) { return h.PutBool(true); }},
            {"Float", 4, [](CKVStreamHelper & h) { return h.PutFloat(1.5F); }},
            {"Double", 8, [](CKVStreamHelper & h) { return h.PutDouble(-2.5); }},
            {"ByteArray", 3, [](CKVStreamHelper & h) { return h.PutByteArray("abc", 3); }}};
}

TEST(StreamHelper, Scalars_are_little_endian)
{
    EXPECT_EQ(Written([](CKVStreamHelper & h) { return h.PutUInt8(0xC8); }), Bytes{0xC8});
    EXPECT_EQ(Written([](CKVStreamHelper & h) { return h.PutInt8(static_cast<char>(-3)); }), Bytes{0xFD});
    EXPECT_EQ(Written([](CKVStreamHelper & h) { return h.PutFloat(std::bit_cast<float>(0x3F812345U)); }),
              (Bytes{0x45, 0x23, 0x81, 0x3F}));
    EXPECT_EQ(Written([](CKVStreamHelper & h) { return h.PutDouble(std::bit_cast<double>(0xBFF123456789ABCDU)); }),
              (Bytes{0xCD, 0xAB, 0x89, 0x67, 0x45, 0x23, 0xF1, 0xBF}));
}

TEST(StreamHelper, A_truth_value_is_one_byte_of_0_or_1)
{
    EXPECT_EQ(Written([](CKVStreamHelper & h) { return h.PutBool(true); }), Bytes{1});
    EXPECT_EQ(Written([](CKVStreamHelper & h) { return h.PutBool(false); }), Bytes{0});
    for (int const value : {1, -1, 256, std::numeric_limits<int>::min()})
    {
        EXPECT_EQ(Written([value](CKVStreamHelper & h) { return h.PutBool(value); }), Bytes{1}) << value;
    }
    EXPECT_EQ(Written([](CKVStreamHelper & h) { return h.PutBool(0); }), Bytes{0});
}

TEST(StreamHelper, GetBool_gives_1_for_any_byte_but_0)
{
    for (unsigned int byte = 0; byte < 256; ++byte)
    {
        auto const stream = MakeMemoryStream(Bytes{static_cast<unsigned char>(byte)});
        CKVStreamHelper helper(stream.get());
        int value = 42;
        EXPECT_EQ(helper.GetBool(&value), S_OK);
        EXPECT_EQ(value, byte == 0 ? 0 : 1) << byte;
    }
}

TEST(StreamHelper, All_bytes_come_back)
{
    auto const stream = MakeMemoryStream();
    CKVStreamHelper helper(stream.get());
    for (int value = -128; value < 256; ++value)
    {
        ASSERT_EQ(helper.PutUInt8(static_cast<unsigned char>(value)), S_OK);
        ASSERT_EQ(helper.PutInt8(static_cast<char>(value)), S_OK);
    }
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    for (int value = -128; value < 256; ++value)
    {
        unsigned char unsigned_byte = 0;
        char signed_byte = 0;
        ASSERT_EQ(helper.GetUInt8(&unsigned_byte), S_OK);
        ASSERT_EQ(helper.GetInt8(&signed_byte), S_OK);
        EXPECT_EQ(unsigned_byte, static_cast<unsigned char>(value));
        EXPECT_EQ(signed_byte, static_cast<char>(value));
    }
}

TEST(StreamHelper, Floating_point_numbers_come_back_bit_by_bit)
{
    // Zeros of both signs, subnormals, infinities, a quiet NaN with a payload and a sign.
    std::vector<std::uint64_t> const doubles{0,
                                             0x8000000000000000U,
                                             1,
                                             0x7FF0000000000000U,
                                             0xFFF0000000000000U,
                                             0xFFF8DEADBEEF1234U,
                                             std::bit_cast<std::uint64_t>(-1.0 / 3)};
    std::vector<std::uint32_t> const floats{0, 0x80000000U, 1, 0x7F800000U, 0xFF800000U, 0xFFCDBEEFU, 0x3EAAAAABU};
    auto const stream = MakeMemoryStream();
    CKVStreamHelper helper(stream.get());
    for (std::size_t i = 0; i < doubles.size(); ++i)
    {
        ASSERT_EQ(helper.PutDouble(std::bit_cast<double>(doubles[i])), S_OK);
        ASSERT_EQ(helper.PutFloat(std::bit_cast<float>(floats[i])), S_OK);
    }
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    for (std::size_t i = 0; i < doubles.size(); ++i)
    {
        double number = 0;
        float single = 0;
        ASSERT_EQ(helper.GetDouble(&number), S_OK);
        ASSERT_EQ(helper.GetFloat(&single), S_OK);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(number), doubles[i]);
        EXPECT_EQ(std::bit_cast<std::uint32_t>(single), floats[i]);
    }
}

TEST(StreamHelper, Byte_arrays_carry_no_length)
{
    EXPECT_EQ(Written([](CKVStreamHelper & h) { return h.PutByteArray("a\0b", 3); }), (Bytes{'a', 0, 'b'}));
    auto const stream = MakeMemoryStream(Bytes{'a', 0, 'b', 'c'});
    CKVStreamHelper helper(stream.get());
    std::array<char, 4> target{'w', 'x', 'y', 'z'};
    EXPECT_EQ(helper.GetByteArray(target.data(), 3), S_OK);
    EXPECT_EQ(target, (std::array<char, 4>{'a', 0, 'b', 'z'}));
    EXPECT_EQ(GetPosition(*stream), 3U);
}

TEST(StreamHelper, Long_byte_arrays_come_back)
{
    std::string text(70000, '\0');
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        text[i] = static_cast<char>(i % 253);
    }
    for (unsigned long const count : {255UL, 256UL, 257UL, 70000UL})
    {
        auto const stream = MakeMemoryStream();
        CKVStreamHelper helper(stream.get());
        ASSERT_EQ(helper.PutByteArray(text.data(), count), S_OK);
        stream->Seek(0, STREAM_SEEK_SET, nullptr);
        std::string target(count, 'x');
        EXPECT_EQ(helper.GetByteArray(target.data(), count), S_OK);
        EXPECT_EQ(target, text.substr(0, count));
        EXPECT_EQ(GetPosition(*stream), count);
    }
}

TEST(StreamHelper, Empty_byte_arrays_need_no_memory)
{
    auto const stream = MakeMemoryStream(Bytes{1});
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.PutByteArray(nullptr, 0), S_OK);
    EXPECT_EQ(helper.GetByteArray(nullptr, 0), S_OK);
    EXPECT_EQ(GetPosition(*stream), 0U);
    EXPECT_EQ(GetBytes(*stream), Bytes{1});
}

TEST(StreamHelper, Byte_arrays_larger_than_the_stream_are_refused_before_any_memory_is_taken)
{
    auto const stream = MakeMemoryStream(Bytes(1000));
    CKVStreamHelper helper(stream.get());
    char target = 'x';
    EXPECT_EQ(helper.GetByteArray(&target, std::numeric_limits<unsigned long>::max()), E_FAIL);
    EXPECT_EQ(helper.GetByteArray(&target, 1001), E_FAIL);
    stream->Seek(2000, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(helper.GetByteArray(&target, 1000), E_FAIL);
    EXPECT_EQ(helper.GetByteArray(&target, std::numeric_limits<unsigned long>::max() / 2 + 1), E_FAIL);
    EXPECT_EQ(target, 'x');
    EXPECT_EQ(GetPosition(*stream), 2000U);
}

TEST(StreamHelper, Every_scalar_takes_one_call)
{
    for (ScalarRead const & scalar : GetScalarReads())
    {
        auto const stream = MakeStreamWithShortReads(Bytes(scalar.size), scalar.size);
        CKVStreamHelper helper(stream.get());
        bool untouched = false;
        EXPECT_EQ(scalar.read(helper, untouched), S_OK) << scalar.name;
        EXPECT_EQ(GetPosition(*stream), scalar.size) << scalar.name;
    }
}

TEST(StreamHelper, A_short_read_leaves_target_and_position)
{
    for (ScalarRead const & scalar : GetScalarReads())
    {
        for (unsigned long held = 0; held < scalar.size; ++held)
        {
            auto const stream = MakeMemoryStream(Bytes(held));
            CKVStreamHelper helper(stream.get());
            bool untouched = false;
            EXPECT_EQ(scalar.read(helper, untouched), E_FAIL) << scalar.name;
            EXPECT_TRUE(untouched) << scalar.name;
            EXPECT_EQ(GetPosition(*stream), 0U) << scalar.name;
        }
    }
}

TEST(StreamHelper, A_stream_that_gives_less_than_it_holds_fails_too)
{
    for (ScalarRead const & scalar : GetScalarReads())
    {
        auto const stream = MakeStreamWithShortReads(Bytes(scalar.size), scalar.size - 1);
        CKVStreamHelper helper(stream.get());
        bool untouched = false;
        EXPECT_EQ(scalar.read(helper, untouched), E_FAIL) << scalar.name;
        EXPECT_TRUE(untouched) << scalar.name;
        EXPECT_EQ(GetPosition(*stream), 0U) << scalar.name;
    }
}

TEST(StreamHelper, A_failed_read_leaves_the_target_and_passes_on_its_code)
{
    for (ScalarRead const & scalar : GetScalarReads())
    {
        for (unsigned long readable = 0; readable < scalar.size; ++readable)
        {
            auto const stream = MakeStreamFailingOnRead(Bytes(scalar.size), readable, foreign_failure);
            CKVStreamHelper helper(stream.get());
            bool untouched = false;
            EXPECT_EQ(scalar.read(helper, untouched), foreign_failure) << scalar.name;
            EXPECT_TRUE(untouched) << scalar.name;
        }
    }
}

TEST(StreamHelper, A_failed_or_short_write_fails)
{
    for (ScalarWrite const & scalar : GetScalarWrites())
    {
        for (unsigned long writable = 0; writable < scalar.size; ++writable)
        {
            auto const failing = MakeStreamFailingOnWrite(writable, foreign_failure);
            EXPECT_EQ(CKVStreamHelper(failing.get()).PutByteArray("", 0), S_OK);
            CKVStreamHelper helper(failing.get());
            EXPECT_EQ(scalar.write(helper), foreign_failure) << scalar.name;
            auto const brief = MakeStreamFailingOnWrite(writable, S_OK);
            CKVStreamHelper other(brief.get());
            EXPECT_EQ(scalar.write(other), E_FAIL) << scalar.name;
        }
        auto const enough = MakeStreamFailingOnWrite(scalar.size);
        CKVStreamHelper helper(enough.get());
        EXPECT_EQ(scalar.write(helper), S_OK) << scalar.name;
        EXPECT_EQ(GetPosition(*enough), scalar.size) << scalar.name;
    }
}

TEST(StreamHelper, A_null_stream_fails_everything_and_leaves_the_targets)
{
    CKVStreamHelper helper(nullptr);
    for (ScalarRead const & scalar : GetScalarReads())
    {
        bool untouched = false;
        EXPECT_EQ(scalar.read(helper, untouched), E_FAIL) << scalar.name;
        EXPECT_TRUE(untouched) << scalar.name;
        EXPECT_EQ(scalar.read_into_null(helper), E_FAIL) << scalar.name;
    }
    for (ScalarWrite const & scalar : GetScalarWrites())
    {
        EXPECT_EQ(scalar.write(helper), E_FAIL) << scalar.name;
    }
    unsigned long number = 42;
    EXPECT_EQ(helper.GetByteArray(nullptr, 0), E_FAIL);
    EXPECT_EQ(helper.PutByteArray(nullptr, 0), E_FAIL);
    EXPECT_EQ(helper.GetPos(&number), E_FAIL);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_FORWARD, 0), E_FAIL);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_BACK, 0), E_FAIL);
    EXPECT_EQ(helper.ChunkWriteOpen(1, 2), E_FAIL);
    EXPECT_EQ(helper.ChunkWriteClose(), E_FAIL);
    EXPECT_EQ(helper.ChunkReadOpen(1, &number), E_FAIL);
    EXPECT_EQ(helper.ChunkReadClose(), E_FAIL);
    EXPECT_EQ(number, 42U);
}

TEST(StreamHelper, A_null_target_is_refused_and_nothing_is_consumed)
{
    auto const stream = MakeMemoryStream(Bytes(1000));
    CKVStreamHelper helper(stream.get());
    for (ScalarRead const & scalar : GetScalarReads())
    {
        EXPECT_EQ(scalar.read_into_null(helper), E_POINTER) << scalar.name;
    }
    EXPECT_EQ(helper.GetPos(nullptr), E_POINTER);
    EXPECT_EQ(helper.ChunkReadOpen(0, nullptr), E_POINTER);
    EXPECT_EQ(helper.PutByteArray(nullptr, 1), E_POINTER);
    EXPECT_EQ(GetPosition(*stream), 0U);
    EXPECT_EQ(stream->GetBytes().size(), 1000U);
}

TEST(StreamHelper, GetPos_counts_from_the_start_of_the_stream)
{
    auto const stream = MakeMemoryStream(Bytes(10));
    stream->Seek(3, STREAM_SEEK_SET, nullptr);
    CKVStreamHelper helper(stream.get());
    unsigned long position = 0;
    EXPECT_EQ(helper.GetPos(&position), S_OK);
    EXPECT_EQ(position, 3U);
    EXPECT_EQ(helper.PutDouble(0), S_OK);
    EXPECT_EQ(helper.GetPos(&position), S_OK);
    EXPECT_EQ(position, 11U);
}

TEST(StreamHelper, GetPos_passes_on_a_failure)
{
    auto const stream = MakeFaultyStream({.seeks = 0, .code = foreign_failure});
    CKVStreamHelper helper(stream.get());
    unsigned long position = 42;
    EXPECT_EQ(helper.GetPos(&position), foreign_failure);
    EXPECT_EQ(position, 42U);
}

/// Answers every operation with its number.
class NumberingHelper final : public CKVStreamHelper
{
public:
    NumberingHelper() : CKVStreamHelper(nullptr) {}

    long PutUInt8(unsigned char /*value*/) override { return 1; }
    long GetUInt8(unsigned char * /*value*/) override { return 2; }
    long PutInt8(char /*value*/) override { return 3; }
    long GetInt8(char * /*value*/) override { return 4; }
    long PutBool(int /*value*/) override { return 5; }
    long PutBool(bool /*value*/) override { return 6; }
    long GetBool(int * /*value*/) override { return 7; }
    long PutFloat(float /*value*/) override { return 8; }
    long GetFloat(float * /*value*/) override { return 9; }
    long PutDouble(double /*value*/) override { return 10; }
    long GetDouble(double * /*value*/) override { return 11; }
    long PutByteArray(char const * /*bytes*/, unsigned long /*count*/) override { return 12; }
    long GetByteArray(char * /*bytes*/, unsigned long /*count*/) override { return 13; }
    long GetPos(unsigned long * /*position*/) override { return 14; }
    long MovePos(STMHELPERDIR /*direction*/, unsigned long /*distance*/) override { return 15; }
    long ChunkWriteOpen(unsigned long /*tag*/, unsigned long /*version*/) override { return 16; }
    long ChunkWriteClose() override { return 17; }
    long ChunkReadOpen(unsigned long /*tag*/, unsigned long * /*version*/) override { return 18; }
    long ChunkReadClose() override { return 19; }
};

static_assert(std::has_virtual_destructor_v<CKVStreamHelper>);

TEST(StreamHelper, Every_operation_is_virtual)
{
    NumberingHelper numbering;
    CKVStreamHelper & helper = numbering;
    EXPECT_EQ(helper.PutUInt8(1), 1);
    EXPECT_EQ(helper.GetUInt8(nullptr), 2);
    EXPECT_EQ(helper.PutInt8(1), 3);
    EXPECT_EQ(helper.GetInt8(nullptr), 4);
    EXPECT_EQ(helper.PutBool(1), 5);
    EXPECT_EQ(helper.PutBool(true), 6);
    EXPECT_EQ(helper.GetBool(nullptr), 7);
    EXPECT_EQ(helper.PutFloat(1), 8);
    EXPECT_EQ(helper.GetFloat(nullptr), 9);
    EXPECT_EQ(helper.PutDouble(1), 10);
    EXPECT_EQ(helper.GetDouble(nullptr), 11);
    EXPECT_EQ(helper.PutByteArray(nullptr, 1), 12);
    EXPECT_EQ(helper.GetByteArray(nullptr, 1), 13);
    EXPECT_EQ(helper.GetPos(nullptr), 14);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_BACK, 1), 15);
    EXPECT_EQ(helper.ChunkWriteOpen(1, 1), 16);
    EXPECT_EQ(helper.ChunkWriteClose(), 17);
    EXPECT_EQ(helper.ChunkReadOpen(1, nullptr), 18);
    EXPECT_EQ(helper.ChunkReadClose(), 19);
}

TEST(StreamHelper, Directions_are_0_forward_and_1_back)
{
    EXPECT_EQ(STMHELPERDIR_FORWARD, 0);
    EXPECT_EQ(STMHELPERDIR_BACK, 1);
}

TEST(StreamHelper, MovePos_moves_relative_to_the_position)
{
    auto const stream = MakeMemoryStream(Bytes(10));
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.MovePos(static_cast<STMHELPERDIR>(0), 7), S_OK);
    EXPECT_EQ(GetPosition(*stream), 7U);
    EXPECT_EQ(helper.MovePos(static_cast<STMHELPERDIR>(1), 3), S_OK);
    EXPECT_EQ(GetPosition(*stream), 4U);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_BACK, 4), S_OK);
    EXPECT_EQ(GetPosition(*stream), 0U);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_FORWARD, 0), S_OK);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_FORWARD, 20), S_OK) << "beyond the end, as the stream allows";
    EXPECT_EQ(GetPosition(*stream), 20U);
}

TEST(StreamHelper, MovePos_refuses_what_no_stream_has)
{
    auto const stream = MakeMemoryStream(Bytes(10));
    stream->Seek(4, STREAM_SEEK_SET, nullptr);
    CKVStreamHelper helper(stream.get());
    constexpr unsigned long farthest = std::numeric_limits<unsigned long>::max();
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_BACK, 5), E_INVALIDARG);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_BACK, farthest), E_INVALIDARG);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_FORWARD, farthest), E_INVALIDARG);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_FORWARD, farthest / 2), E_INVALIDARG);
    EXPECT_EQ(helper.MovePos(static_cast<STMHELPERDIR>(2), 1), E_INVALIDARG);
    EXPECT_EQ(helper.MovePos(static_cast<STMHELPERDIR>(-1), 1), E_INVALIDARG);
    EXPECT_EQ(GetPosition(*stream), 4U);
}

TEST(StreamHelper, MovePos_passes_on_a_failure)
{
    for (unsigned long long const seeks : {0ULL, 1ULL})
    {
        auto const stream = MakeFaultyStream({.seeks = seeks, .code = foreign_failure}, Bytes(4));
        CKVStreamHelper helper(stream.get());
        EXPECT_EQ(helper.MovePos(STMHELPERDIR_FORWARD, 1), foreign_failure);
    }
}

TEST(StreamHelper, Long_byte_arrays_pass_on_a_failing_seek)
{
    std::array<char, 300> target{};
    for (unsigned long long seeks = 0; seeks < 4; ++seeks)
    {
        auto const stream = MakeFaultyStream({.seeks = seeks, .code = foreign_failure}, Bytes(300));
        CKVStreamHelper helper(stream.get());
        EXPECT_EQ(helper.GetByteArray(target.data(), 300), foreign_failure) << seeks;
    }
}

TEST(StreamHelper, Holds_one_reference_while_it_lives)
{
    auto const stream = MakeMemoryStream();
    {
        CKVStreamHelper const helper(stream.get());
        EXPECT_EQ(CountReferences(*stream), 2U);
        CKVStreamHelper const another(stream.get());
        EXPECT_EQ(CountReferences(*stream), 3U);
    }
    EXPECT_EQ(CountReferences(*stream), 1U);
}

TEST(StreamHelper, Keeps_a_stream_alive_that_its_creator_released)
{
    CMemoryStream * const stream = CMemoryStream::Create();
    ASSERT_NE(stream, nullptr);
    CKVStreamHelper helper(stream);
    EXPECT_EQ(stream->Release(), 1U);
    EXPECT_EQ(helper.PutUInt8(1), S_OK);
}

/// A stream that claims to have transferred other numbers of bytes than it was asked for.
class BoastingStream final : public math::detail::CountedStream
{
public:
    long Read(void *, unsigned long count, unsigned long * done) override
    {
        *done = count + 1;
        return S_OK;
    }
    long Write(void const *, unsigned long count, unsigned long * done) override
    {
        *done = count + 1;
        return S_OK;
    }
    long Seek(long long, unsigned long, unsigned long long * position) override
    {
        *position = std::numeric_limits<unsigned long long>::max();
        return S_OK;
    }
};

TEST(StreamHelper, Distrusts_a_stream_that_boasts)
{
    test_support::StreamPointer<BoastingStream> const stream(new BoastingStream);
    CKVStreamHelper helper(stream.get());
    unsigned char byte = 42;
    unsigned long version = 42;
    EXPECT_EQ(helper.PutUInt8(1), E_FAIL);
    EXPECT_EQ(helper.GetUInt8(&byte), E_FAIL);
    EXPECT_EQ(helper.ChunkWriteOpen(1, 1), E_FAIL);
    EXPECT_EQ(helper.ChunkReadOpen(1, &version), E_FAIL);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_FORWARD, 1), E_INVALIDARG);
    EXPECT_EQ(helper.MovePos(STMHELPERDIR_BACK, 1), E_INVALIDARG);
    EXPECT_EQ(byte, 42);
    EXPECT_EQ(version, 42U);
}

} // namespace
