#include "describe/color_inspector.h"
#include "describe/stream_failing_once.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <cstring>

using describe_test::MakeStreamFailingOnce;
using describe_test::SameBits;
using namespace test_support;

namespace
{

/// 1, -2, 1/2 and the negative zero, little-endian.
Bytes const k_Record{0x00, 0x00, 0x80, 0x3F, 0x00, 0x00, 0x00, 0xC0, 0x00, 0x00, 0x00, 0x3F, 0x00, 0x00, 0x00, 0x80};

C3DColor4f MakeColor()
{
    return {1, -2, 0.5F, -0.0F};
}

} // namespace

TEST(ColorStream, Save_writes_red_green_blue_and_alpha_and_ignores_the_format)
{
    for (int const format : {0, 1, -1, 0x40})
    {
        auto const stream = MakeMemoryStream();
        EXPECT_EQ(MakeColor().Save(stream.get(), format), 0);
        EXPECT_EQ(GetBytes(*stream), k_Record);
        EXPECT_EQ(CountReferences(*stream), 1U);
    }
}

TEST(ColorStream, Save_writes_at_the_position)
{
    auto const stream = MakeMemoryStream(Bytes{7, 8});
    stream->Seek(1, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(MakeColor().Save(stream.get(), 0), 0);
    Bytes expected{7};
    expected.insert(expected.end(), k_Record.begin(), k_Record.end());
    EXPECT_EQ(GetBytes(*stream), expected);
}

TEST(ColorStream, Load_reads_the_components_and_stops_behind_them)
{
    Bytes bytes = k_Record;
    bytes.push_back(9);
    auto const stream = MakeMemoryStream(bytes);
    C3DColor4f color(5, 6, 7, 8);
    EXPECT_EQ(color.Load(stream.get()), 0);
    EXPECT_TRUE(SameBits(color, 1, -2, 0.5F, -0.0F));
    EXPECT_EQ(GetPosition(*stream), 16U);
    EXPECT_EQ(CountReferences(*stream), 1U);
}

TEST(ColorStream, Every_bit_pattern_survives)
{
    constexpr std::uint32_t patterns[4] = {0x7FC12345, 0xFFABCDEF, 0x00000001, 0xFF800000};
    C3DColor4f color;
    std::memcpy(color.RGBA(), patterns, sizeof patterns);
    auto const stream = MakeMemoryStream();
    color.Save(stream.get(), 0);
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    C3DColor4f read(5, 6, 7, 8);
    read.Load(stream.get());
    for (int i = 0; i < 4; ++i)
    {
        EXPECT_EQ(std::bit_cast<std::uint32_t>(read.RGBA()[i]), patterns[i]) << i;
    }
}

TEST(ColorStream, Load_of_a_short_stream_keeps_the_components_that_are_not_there)
{
    for (std::size_t length = 0; length <= k_Record.size(); ++length)
    {
        auto const stream = MakeMemoryStream(std::span(k_Record).first(length));
        C3DColor4f color(5, 6, 7, 8);
        EXPECT_EQ(color.Load(stream.get()), 0) << length;
        EXPECT_TRUE(SameBits(color, length >= 4 ? 1.0F : 5.0F, length >= 8 ? -2.0F : 6.0F, length >= 12 ? 0.5F : 7.0F,
                             length >= 16 ? -0.0F : 8.0F))
            << length;
    }
}

TEST(ColorStream, Load_from_a_stream_that_fails_keeps_the_components_that_did_not_come)
{
    for (long const code : {E_FAIL, 0L})
    {
        for (unsigned long long length = 0; length < k_Record.size(); ++length)
        {
            auto const stream = MakeStreamFailingOnRead(k_Record, length, code);
            C3DColor4f color(5, 6, 7, 8);
            EXPECT_EQ(color.Load(stream.get()), 0) << length;
            EXPECT_TRUE(
                SameBits(color, length >= 4 ? 1.0F : 5.0F, length >= 8 ? -2.0F : 6.0F, length >= 12 ? 0.5F : 7.0F, 8))
                << length;
        }
    }
}

TEST(ColorStream, Save_to_a_stream_that_fails_reports_success)
{
    for (unsigned long long length = 0; length < k_Record.size(); ++length)
    {
        auto const stream = MakeStreamFailingOnWrite(length);
        EXPECT_EQ(MakeColor().Save(stream.get(), 0), 0) << length;
        Bytes const expected(k_Record.begin(), k_Record.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_EQ(GetBytes(stream->GetMemory()), expected) << length;
    }
}

TEST(ColorStream, A_transfer_that_fails_does_not_keep_the_next_from_being_tried)
{
    for (int number = 0; number < 4; ++number)
    {
        auto const source = MakeStreamFailingOnce(number, k_Record);
        C3DColor4f color(5, 5, 5, 5);
        float expected[4] = {5, 5, 5, 5};
        float const stored[4] = {1, -2, 0.5F, -0.0F};
        for (int i = 0, next = 0; i < 4; ++i)
        {
            expected[i] = i == number ? 5 : stored[next++];
        }
        EXPECT_EQ(color.Load(source.get()), 0);
        EXPECT_TRUE(SameBits(color, expected[0], expected[1], expected[2], expected[3])) << number;

        auto const target = MakeStreamFailingOnce(number);
        EXPECT_EQ(MakeColor().Save(target.get(), 0), 0);
        Bytes bytes = k_Record;
        bytes.erase(bytes.begin() + 4 * number, bytes.begin() + 4 * (number + 1));
        EXPECT_EQ(target->GetBytes(), bytes) << number;
    }
}

TEST(ColorStream, A_null_stream_changes_nothing_and_reports_success)
{
    C3DColor4f color(5, 6, 7, 8);
    EXPECT_EQ(color.Save(nullptr, 0), 0);
    EXPECT_EQ(color.Load(nullptr), 0);
    EXPECT_TRUE(SameBits(color, 5, 6, 7, 8));
}
