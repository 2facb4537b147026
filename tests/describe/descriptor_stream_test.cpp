#include "math/icon_description.h"
#include "math/shape_description.h"

#include "describe/stream_failing_once.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <cstdint>

using describe_test::MakeStreamFailingOnce;
using namespace test_support;
using Icon = C3DIconDescription;
using Shape = C3DShapeDescription;

namespace
{

Icon MakeIcon(std::uint32_t type)
{
    Icon icon;
    icon.SetIconType(static_cast<Icon::E3DIconType>(type));
    return icon;
}

std::uint32_t GetIconBits(Icon const & icon)
{
    return static_cast<std::uint32_t>(icon.GetIconType());
}

Bytes SaveToBytes(auto const & object, int format = 0)
{
    auto const stream = MakeMemoryStream();
    EXPECT_EQ(object.Save(stream.get(), format), 0);
    EXPECT_EQ(CountReferences(*stream), 1U);
    return GetBytes(*stream);
}

/// The first bytes, as many as are asked for.
Bytes Beginning(Bytes const & bytes, std::size_t count)
{
    return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count)};
}

Shape MakeMarked()
{
    Shape shape;
    shape.SetAsReference(0xA1B2C3D4, true);
    shape.SetAsTrivial(static_cast<Shape::E3DShapeType>(77));
    return shape;
}

void Expect(Shape const & shape, int type, unsigned long id, bool flag)
{
    EXPECT_EQ(static_cast<int>(shape.GetType()), type);
    EXPECT_EQ(shape.GetInstanceDescription().identifier, id);
    EXPECT_EQ(shape.GetReferenceDescription().flag, flag);
}

/// A reference to 0x12345678, flagged.
Bytes const k_Reference{0x81, 0x78, 0x56, 0x34, 0x12, 0x01, 0x00, 0x00, 0x00};

} // namespace

TEST(IconStream, Save_writes_the_low_byte)
{
    for (std::uint32_t const type : {0U, 1U, 7U, 8U, 0x7FU, 0x80U, 0xFFU, 0x101U, 0x12345678U, 0xFFFFFF02U})
    {
        EXPECT_EQ(SaveToBytes(MakeIcon(type)), Bytes{static_cast<unsigned char>(type & 0xFF)}) << type;
        EXPECT_EQ(SaveToBytes(MakeIcon(type), -1), Bytes{static_cast<unsigned char>(type & 0xFF)}) << type;
    }
}

TEST(IconStream, Load_reads_every_byte_without_a_sign)
{
    for (std::uint32_t byte = 0; byte < 256; ++byte)
    {
        auto const stream = MakeMemoryStream(Bytes{static_cast<unsigned char>(byte), 0x55});
        Icon icon;
        EXPECT_EQ(icon.Load(stream.get()), 0);
        EXPECT_EQ(GetIconBits(icon), byte);
        EXPECT_EQ(GetPosition(*stream), 1U);
    }
}

TEST(IconStream, Load_leaves_the_other_bytes_of_the_type)
{
    for (std::uint32_t const type : {0x01020304U, 0xFFFFFFFFU, 0x80000000U, 0x000000FFU})
    {
        for (unsigned const byte : {0x00U, 0x05U, 0x80U, 0xFFU})
        {
            auto const stream = MakeMemoryStream(Bytes{static_cast<unsigned char>(byte)});
            Icon icon = MakeIcon(type);
            EXPECT_EQ(icon.Load(stream.get()), 0);
            EXPECT_EQ(GetIconBits(icon), (type & 0xFFFFFF00U) + byte);
        }
    }
}

TEST(IconStream, A_stream_that_is_empty_or_fails_or_null_leaves_the_type_and_reports_success)
{
    Icon icon = MakeIcon(0x01020304);
    EXPECT_EQ(icon.Load(MakeMemoryStream().get()), 0);
    EXPECT_EQ(icon.Load(MakeStreamFailingOnRead(Bytes{9}, 0).get()), 0);
    EXPECT_EQ(icon.Load(MakeStreamFailingOnRead(Bytes{9}, 0, 0).get()), 0);
    EXPECT_EQ(icon.Load(nullptr), 0);
    EXPECT_EQ(GetIconBits(icon), 0x01020304U);
    EXPECT_EQ(icon.Save(MakeStreamFailingOnWrite(0).get(), 0), 0);
    EXPECT_EQ(icon.Save(nullptr, 0), 0);
}

TEST(ShapeStream, Save_writes_the_type_the_identifier_the_flag_and_zeros)
{
    Shape shape;
    EXPECT_EQ(SaveToBytes(shape), Bytes(9, 0));
    shape.SetAsReference(0x12345678, true);
    EXPECT_EQ(SaveToBytes(shape), k_Reference);
    EXPECT_EQ(SaveToBytes(shape, 0x40), k_Reference);
    shape.SetAsReference(0xFEDCBA98, false);
    EXPECT_EQ(SaveToBytes(shape), (Bytes{0x81, 0x98, 0xBA, 0xDC, 0xFE, 0, 0, 0, 0}));
    Shape instance;
    instance.SetAsInstance(0x12345678);
    EXPECT_EQ(SaveToBytes(instance), (Bytes{0x80, 0x78, 0x56, 0x34, 0x12, 0, 0, 0, 0}));
}

TEST(ShapeStream, Save_of_a_trivial_shape_writes_the_parameters_that_it_does_not_use)
{
    EXPECT_EQ(SaveToBytes(MakeMarked()), (Bytes{77, 0xD4, 0xC3, 0xB2, 0xA1, 1, 0, 0, 0}));
}

TEST(ShapeStream, Save_writes_the_low_32_bits_of_an_identifier)
{
    Shape shape;
    shape.SetAsInstance(static_cast<unsigned long>(-2L));
    EXPECT_EQ(SaveToBytes(shape), (Bytes{0x80, 0xFE, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}));
}

TEST(ShapeStream, Load_reads_the_record_for_every_type)
{
    for (int type = 0; type < 256; ++type)
    {
        Bytes bytes = k_Reference;
        bytes[0] = static_cast<unsigned char>(type);
        bytes.push_back(0x55);
        auto const stream = MakeMemoryStream(bytes);
        Shape shape = MakeMarked();
        EXPECT_EQ(shape.Load(stream.get()), 0);
        Expect(shape, type, 0x12345678, true);
        EXPECT_EQ(GetPosition(*stream), 9U);
        EXPECT_EQ(CountReferences(*stream), 1U);
        EXPECT_EQ(SaveToBytes(shape), Beginning(bytes, 9));
    }
}

TEST(ShapeStream, Load_takes_any_flag_byte_but_0_for_true_and_ignores_the_last_three)
{
    for (int flag = 0; flag < 256; ++flag)
    {
        Bytes const bytes{0x81, 0xFF, 0xFF, 0xFF, 0xFF, static_cast<unsigned char>(flag), 0xDE, 0xAD, 0xBF};
        auto const stream = MakeMemoryStream(bytes);
        Shape shape;
        EXPECT_EQ(shape.Load(stream.get()), 0);
        Expect(shape, 129, 0xFFFFFFFF, flag != 0);
        Shape expected;
        expected.SetAsReference(0xFFFFFFFF, flag != 0);
        EXPECT_TRUE(shape == expected) << flag;
    }
}

TEST(ShapeStream, Load_of_a_short_stream_keeps_what_is_not_there)
{
    for (std::size_t length = 0; length <= k_Reference.size(); ++length)
    {
        SCOPED_TRACE(length);
        bool const isWhole = length == k_Reference.size();
        Shape shape = MakeMarked();
        EXPECT_EQ(shape.Load(MakeMemoryStream(Beginning(k_Reference, length)).get()), 0);
        Expect(shape, length == 0 ? 77 : 129, isWhole ? 0x12345678 : 0xA1B2C3D4, true);

        Bytes bytes = k_Reference;
        bytes[5] = 0;
        for (long const code : {E_FAIL, 0L})
        {
            Shape failing = MakeMarked();
            EXPECT_EQ(failing.Load(MakeStreamFailingOnRead(bytes, length, code).get()), 0);
            Expect(failing, length == 0 ? 77 : 129, isWhole ? 0x12345678 : 0xA1B2C3D4, !isWhole);
        }
    }
}

TEST(ShapeStream, Save_to_a_stream_that_fails_reports_success)
{
    Shape shape;
    shape.SetAsReference(0x12345678, true);
    for (std::size_t length = 0; length < k_Reference.size(); ++length)
    {
        auto const stream = MakeStreamFailingOnWrite(length);
        EXPECT_EQ(shape.Save(stream.get(), 0), 0);
        EXPECT_EQ(GetBytes(stream->GetMemory()), Beginning(k_Reference, length));
    }
}

TEST(ShapeStream, A_transfer_that_fails_does_not_keep_the_next_from_being_tried)
{
    Shape shape = MakeMarked();
    Bytes const parameters(k_Reference.begin() + 1, k_Reference.end());
    EXPECT_EQ(shape.Load(MakeStreamFailingOnce(0, parameters).get()), 0);
    Expect(shape, 77, 0x12345678, true);

    shape.SetAsReference(0x12345678, true);
    auto const withoutType = MakeStreamFailingOnce(0);
    EXPECT_EQ(shape.Save(withoutType.get(), 0), 0);
    EXPECT_EQ(withoutType->GetBytes(), parameters);
    auto const withoutParameters = MakeStreamFailingOnce(1);
    EXPECT_EQ(shape.Save(withoutParameters.get(), 0), 0);
    EXPECT_EQ(withoutParameters->GetBytes(), Bytes{0x81});
}

TEST(ShapeStream, A_null_stream_changes_nothing_and_reports_success)
{
    Shape shape = MakeMarked();
    EXPECT_EQ(shape.Save(nullptr, 0), 0);
    EXPECT_EQ(shape.Load(nullptr), 0);
    Expect(shape, 77, 0xA1B2C3D4, true);
}

TEST(ShapeStream, Random_bytes_load_into_a_shape_that_saves_and_loads_as_itself)
{
    Random random(80);
    for (int i = 0; i < 2000; ++i)
    {
        Bytes bytes(static_cast<std::size_t>(random.Integer(0, 12)));
        for (unsigned char & byte : bytes)
        {
            byte = static_cast<unsigned char>(random.Integer(0, 255));
        }
        Shape shape = MakeMarked();
        EXPECT_EQ(shape.Load(MakeMemoryStream(bytes).get()), 0);
        Shape again;
        EXPECT_EQ(again.Load(MakeMemoryStream(SaveToBytes(shape)).get()), 0);
        EXPECT_TRUE(again == shape);
        EXPECT_EQ(SaveToBytes(again), SaveToBytes(shape));
    }
}
