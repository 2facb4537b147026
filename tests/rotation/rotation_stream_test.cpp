/// The chunk of a rotation, whole and damaged.

#include "math/platform/stream_helper.h"
#include "rotation/rotation_states.h"
#include "support/streams.h"

#include <bit>
#include <cstdint>

using namespace rotation_test;
using namespace test_support;

namespace
{

constexpr std::size_t k_HeaderSize = 12;
constexpr std::size_t k_ChunkSize = 37;
constexpr long k_DiskFull = math::detail::MakeResult(0x80030070U);

void Append(Bytes & bytes, std::uint64_t value, int count)
{
    for (int i = 0; i < count; ++i)
    {
        bytes.push_back(static_cast<unsigned char>(value >> (8 * i) & 0xFFU));
    }
}

Bytes ChunkOf(Vector const & angles, std::uint32_t version = 0x40, std::uint32_t length = 25, unsigned char lead = 0)
{
    Bytes bytes = {0x41, 0x54, 0x4F, 0x52};
    Append(bytes, version, 4);
    Append(bytes, length, 4);
    bytes.push_back(lead);
    for (double const angle : Elements(angles))
    {
        Append(bytes, std::bit_cast<std::uint64_t>(angle), 8);
    }
    return bytes;
}

Vector const k_Angles(0.1, -2.5 - k_TwoPi, 1e-30);

/// A stream on memory on which one call of `Write` fails, and no other.
class FailingOnceStream final : public math::detail::CountedStream
{
public:
    explicit FailingOnceStream(int call) : m_Call(call), m_Memory(MakeMemoryStream()) {}

    long Read(void * target, unsigned long count, unsigned long * done) override
    {
        return m_Memory->Read(target, count, done);
    }
    long Write(void const * source, unsigned long count, unsigned long * done) override
    {
        return m_Call-- == 0 ? k_DiskFull : m_Memory->Write(source, count, done);
    }
    long Seek(long long distance, unsigned long origin, unsigned long long * position) override
    {
        return m_Memory->Seek(distance, origin, position);
    }
    CMemoryStream & GetMemory() { return *m_Memory; }

private:
    int m_Call;
    StreamPointer<CMemoryStream> m_Memory;
};

/// A rotation that a failing Load must leave as it is.
C3DRotation MakeOld(unsigned flags = k_MatrixAlone)
{
    return MakeState(flags);
}

} // namespace

TEST(RotationStream, The_constants_of_the_chunk)
{
    EXPECT_EQ(C3DRotation::k_dwRotation, 0x524F5441UL);
    EXPECT_EQ(C3DRotation::k_dwVersion, 0x40UL);
}

// --- Save ------------------------------------------------------------------------------------------------------------

TEST(RotationStream, Save_writes_a_chunk_with_the_angles)
{
    for (int const format : {0, 1, -7})
    {
        auto const stream = MakeMemoryStream();
        C3DRotation rotation(k_Angles, E3DROTORDER_ZYX);
        EXPECT_EQ(rotation.Save(stream.get(), format), S_OK);
        EXPECT_EQ(GetBytes(*stream), ChunkOf(k_Angles));
        EXPECT_EQ(GetPosition(*stream), k_ChunkSize);
        EXPECT_EQ(CountReferences(*stream), 1UL);
    }
}

TEST(RotationStream, Save_brings_the_angles_up_to_date_in_the_own_order)
{
    for (unsigned const state : k_States)
    {
        for (unsigned const flags : {state, state | k_Marked})
        {
            auto const stream = MakeMemoryStream();
            C3DRotation rotation = MakeState(flags);
            C3DRotation read = MakeState(flags);
            Vector angles;
            read.GetXYZAngles(angles);
            EXPECT_EQ(rotation.Save(stream.get(), 0), S_OK);
            EXPECT_EQ(GetBytes(*stream), ChunkOf(angles));
            EXPECT_TRUE(SameState(rotation, read));
        }
    }
}

TEST(RotationStream, A_null_stream_is_an_invalid_argument)
{
    C3DRotation rotation = MakeOld();
    C3DRotation expected = MakeOld();
    EXPECT_EQ(rotation.Save(nullptr, 0), E_INVALIDARG);
    EXPECT_EQ(rotation.Load(nullptr), E_INVALIDARG);
    EXPECT_EQ(E_INVALIDARG, math::detail::MakeResult(0x80070057U));
    EXPECT_TRUE(SameState(rotation, expected));
}

TEST(RotationStream, Save_that_fails_on_any_byte_takes_the_stream_back_and_tells_the_first_failure)
{
    // The content, and then the length that is patched at the close.
    for (unsigned long long writable = 0; writable < k_ChunkSize + 4; ++writable)
    {
        for (long const code : {k_DiskFull, S_OK, S_FALSE})
        {
            for (std::size_t const before : {std::size_t(0), std::size_t(5)})
            {
                SCOPED_TRACE(testing::Message() << "byte " << writable << ", code " << code);
                Bytes const content(before, 0xEE);
                auto const stream = MakeFaultyStream({.writable = writable, .code = code}, content);
                stream->Seek(0, STREAM_SEEK_END, nullptr);
                C3DRotation rotation = MakeOld();
                EXPECT_EQ(rotation.Save(stream.get(), 0), code < 0 ? code : E_FAIL);
                EXPECT_EQ(GetPosition(*stream), before);
                EXPECT_EQ(CountReferences(*stream), 1UL);
                // The angles are made once the chunk is open.
                EXPECT_EQ(Inside(rotation).AreAnglesDirty(), writable < k_HeaderSize ? 1 : 0);

                // Once the fault is lifted, the next Save overwrites what is left of this one.
                stream->faults = {};
                EXPECT_EQ(rotation.Save(stream.get(), 0), S_OK);
                Vector angles;
                rotation.GetXYZAngles(angles);
                Bytes expected = content;
                Bytes const chunk = ChunkOf(angles);
                expected.insert(expected.end(), chunk.begin(), chunk.end());
                EXPECT_EQ(GetBytes(stream->GetMemory()), expected);
            }
        }
    }
    auto const enough = MakeStreamFailingOnWrite(k_ChunkSize + 4);
    C3DRotation rotation = MakeOld();
    EXPECT_EQ(rotation.Save(enough.get(), 0), S_OK);
}

TEST(RotationStream, Save_that_fails_closes_the_chunk_it_gives_up)
{
    // Tag, version and length; the lead byte and three angles; the length again at the close.
    for (int call = 0; call < 8; ++call)
    {
        StreamPointer<FailingOnceStream> const stream(new FailingOnceStream(call));
        C3DRotation rotation(k_Angles, E3DROTORDER_XYZ);
        EXPECT_EQ(rotation.Save(stream.get(), 0), k_DiskFull);
        EXPECT_EQ(GetPosition(*stream), 0U);
        if (call >= 3 && call < 7)
        {
            // Of its content the lead byte and some angles were written, and the length tells how much.
            std::size_t const content = call == 3 ? 0 : 1 + 8 * (static_cast<std::size_t>(call) - 4);
            Bytes expected = ChunkOf(k_Angles, 0x40, static_cast<std::uint32_t>(content));
            expected.resize(k_HeaderSize + content);
            EXPECT_EQ(GetBytes(stream->GetMemory()), expected);
        }
    }
}

TEST(RotationStream, Save_reports_a_stream_that_cannot_seek)
{
    unsigned long long seeks = 0;
    for (;; ++seeks)
    {
        ASSERT_LT(seeks, 20U);
        auto const stream = MakeFaultyStream({.seeks = seeks, .code = k_DiskFull});
        C3DRotation rotation = MakeOld();
        long const result = rotation.Save(stream.get(), 0);
        EXPECT_EQ(CountReferences(*stream), 1UL);
        if (result == S_OK)
        {
            break;
        }
        EXPECT_EQ(result, k_DiskFull);
    }
    EXPECT_GT(seeks, 2U);
}

// --- Load ------------------------------------------------------------------------------------------------------------

TEST(RotationStream, Load_restores_the_numbers_in_order_XYZ)
{
    for (unsigned const state : k_States)
    {
        for (unsigned const flags : {state, state | k_Marked})
        {
            auto const stream = MakeMemoryStream(ChunkOf(k_Angles));
            C3DRotation rotation = MakeState(flags);
            EXPECT_EQ(rotation.Load(stream.get()), S_OK);
            EXPECT_EQ(Inside(rotation).Flags(), 14U);
            EXPECT_EQ(rotation.GetXYZRotOrder(), E3DROTORDER_XYZ);
            EXPECT_TRUE(Same(Inside(rotation).Angles(), k_Angles));
            EXPECT_EQ(GetPosition(*stream), k_ChunkSize);
            EXPECT_EQ(CountReferences(*stream), 1UL);
        }
    }
}

TEST(RotationStream, What_was_saved_in_another_order_is_another_rotation_until_the_order_is_restored)
{
    auto const stream = MakeMemoryStream();
    C3DRotation saved(0.3, 0.4, 0.5, E3DROTORDER_ZYX);
    ASSERT_EQ(saved.Save(stream.get(), 0), S_OK);
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    C3DRotation loaded;
    ASSERT_EQ(loaded.Load(stream.get()), S_OK);
    Vector angles;
    loaded.GetXYZAngles(angles);
    EXPECT_TRUE(Same(angles, Vector(0.3, 0.4, 0.5)));
    EXPECT_GT(Distance(JudgeOf(*loaded.GetMatrix()), JudgeOf(*saved.GetMatrix())), 0.1);
    loaded.Set(E3DROTORDER_ZYX, 0);
    EXPECT_TRUE(Same(*loaded.GetMatrix(), *saved.GetMatrix()));
}

TEST(RotationStream, Zeros_set_the_mark)
{
    for (Vector const & angles : {Vector(0, 0, 0), Vector(-0.0, 0, -0.0)})
    {
        C3DRotation rotation = MakeOld();
        EXPECT_EQ(rotation.Load(MakeMemoryStream(ChunkOf(angles)).get()), S_OK);
        EXPECT_EQ(Inside(rotation).Flags(), 46U);
    }
    auto const stream = MakeMemoryStream();
    C3DRotation identity;
    EXPECT_EQ(identity.Save(stream.get(), 0), S_OK);
    EXPECT_EQ(GetBytes(*stream), ChunkOf(Vector(0, 0, 0)));
}

TEST(RotationStream, Any_version_and_any_lead_byte_read_the_same)
{
    for (std::uint32_t const version : {0U, 0x39U, 0x41U, 0xFFFFFFFFU})
    {
        for (int const lead : {0, 1, 255})
        {
            C3DRotation rotation = MakeOld();
            EXPECT_EQ(
                rotation.Load(MakeMemoryStream(ChunkOf(k_Angles, version, 25, static_cast<unsigned char>(lead))).get()),
                S_OK);
            EXPECT_TRUE(Same(Inside(rotation).Angles(), k_Angles));
        }
    }
}

TEST(RotationStream, Angles_of_any_bits_survive)
{
    for (Vector const & angles : {Vector(k_Nan, k_Infinity, -k_Infinity), Vector(1e300, -0.0, 5e-324)})
    {
        auto const stream = MakeMemoryStream();
        C3DRotation saved(angles, E3DROTORDER_XYZ);
        ASSERT_EQ(saved.Save(stream.get(), 0), S_OK);
        stream->Seek(0, STREAM_SEEK_SET, nullptr);
        C3DRotation loaded;
        ASSERT_EQ(loaded.Load(stream.get()), S_OK);
        for (int i = 0; i < 3; ++i)
        {
            EXPECT_EQ(std::bit_cast<std::uint64_t>(Inside(loaded).Angles().Get(i)),
                      std::bit_cast<std::uint64_t>(angles.Get(i)));
        }
    }
}

TEST(RotationStream, A_truncated_chunk_is_refused_and_changes_nothing)
{
    Bytes const chunk = ChunkOf(k_Angles);
    for (std::size_t size = 0; size < chunk.size(); ++size)
    {
        for (unsigned const flags : {21U, 2U, 56U})
        {
            Bytes const cut(chunk.begin(), chunk.begin() + static_cast<std::ptrdiff_t>(size));
            auto const stream = MakeMemoryStream(cut);
            C3DRotation rotation = MakeOld(flags);
            C3DRotation expected = MakeOld(flags);
            EXPECT_LT(rotation.Load(stream.get()), 0) << size;
            EXPECT_TRUE(SameState(rotation, expected)) << size;
            EXPECT_EQ(GetPosition(*stream), 0U);
            EXPECT_EQ(CountReferences(*stream), 1UL);
        }
    }
}

TEST(RotationStream, A_wrong_tag_is_refused_and_changes_nothing)
{
    for (std::size_t byte = 0; byte < 4; ++byte)
    {
        for (unsigned bit = 0; bit < 8; ++bit)
        {
            Bytes chunk = ChunkOf(k_Angles);
            chunk[byte] = static_cast<unsigned char>(chunk[byte] ^ (1U << bit));
            auto const stream = MakeMemoryStream(chunk);
            C3DRotation rotation = MakeOld();
            C3DRotation expected = MakeOld();
            EXPECT_LT(rotation.Load(stream.get()), 0);
            EXPECT_TRUE(SameState(rotation, expected));
            EXPECT_EQ(GetPosition(*stream), 0U);
        }
    }
}

TEST(RotationStream, A_read_that_fails_on_any_byte_keeps_the_flags_and_the_order_and_the_angles_not_yet_read)
{
    Bytes const chunk = ChunkOf(k_Angles);
    for (unsigned long long readable = 0; readable < chunk.size(); ++readable)
    {
        for (unsigned const flags : {14U, 2U, 21U, 46U})
        {
            SCOPED_TRACE(readable);
            auto const stream = MakeStreamFailingOnRead(chunk, readable, k_DiskFull);
            C3DRotation rotation = MakeState(flags);
            Inside inside(rotation);
            inside.FillAngles(77);
            EXPECT_EQ(rotation.Load(stream.get()), k_DiskFull);
            EXPECT_EQ(inside.Flags(), flags);
            EXPECT_EQ(inside.Order(), E3DROTORDER_ZXY);
            unsigned long long const whole = readable < 13 ? 0 : (readable - 13) / 8;
            for (int i = 0; i < 3; ++i)
            {
                EXPECT_EQ(inside.Angles().Get(i), static_cast<unsigned long long>(i) < whole ? k_Angles.Get(i) : 77);
            }
            EXPECT_EQ(CountReferences(*stream), 1UL);
        }
    }
}

TEST(RotationStream, Load_reports_a_stream_that_cannot_seek)
{
    Bytes const chunk = ChunkOf(k_Angles);
    unsigned long long seeks = 0;
    for (;; ++seeks)
    {
        ASSERT_LT(seeks, 20U);
        auto const stream = MakeFaultyStream({.seeks = seeks, .code = k_DiskFull}, chunk);
        C3DRotation rotation = MakeOld();
        long const result = rotation.Load(stream.get());
        if (result == S_OK)
        {
            break;
        }
        EXPECT_EQ(result, k_DiskFull);
    }
    EXPECT_GT(seeks, 2U);
}

TEST(RotationStream, Short_reads_are_failures)
{
    auto const stream = MakeStreamWithShortReads(ChunkOf(k_Angles), 3);
    C3DRotation rotation = MakeOld();
    C3DRotation expected = MakeOld();
    EXPECT_LT(rotation.Load(stream.get()), 0);
    EXPECT_TRUE(SameState(rotation, expected));
}

TEST(RotationStream, What_follows_the_angles_in_the_chunk_is_skipped)
{
    for (std::uint32_t const more : {1U, 8U, 100U})
    {
        Bytes bytes = ChunkOf(k_Angles, 0x41, 25 + more);
        bytes.resize(bytes.size() + more, 0xCC);
        bytes.push_back(0xDD); // behind the chunk
        auto const stream = MakeMemoryStream(bytes);
        C3DRotation rotation = MakeOld();
        EXPECT_EQ(rotation.Load(stream.get()), S_OK);
        EXPECT_EQ(GetPosition(*stream), k_ChunkSize + more);
        EXPECT_TRUE(Same(Inside(rotation).Angles(), k_Angles));
    }
}

TEST(RotationStream, A_length_beyond_the_stream_is_refused_and_changes_nothing)
{
    for (std::uint32_t const length : {26U, 27U, 1000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFEU, 0xFFFFFFFFU})
    {
        auto const stream = MakeMemoryStream(ChunkOf(k_Angles, 0x40, length));
        C3DRotation rotation = MakeOld();
        C3DRotation expected = MakeOld();
        EXPECT_LT(rotation.Load(stream.get()), 0);
        EXPECT_TRUE(SameState(rotation, expected));
        EXPECT_EQ(GetPosition(*stream), 0U);
    }
}

// The angles are read on the bare stream, which knows of no chunk: they are taken before its end is found to be
// overrun.
TEST(RotationStream, A_chunk_too_short_for_the_angles_fails_at_its_close_with_the_angles_read)
{
    for (std::uint32_t length = 0; length < 25; ++length)
    {
        auto const stream = MakeMemoryStream(ChunkOf(k_Angles, 0x40, length));
        C3DRotation rotation = MakeOld();
        EXPECT_EQ(rotation.Load(stream.get()), E_FAIL) << length;
        EXPECT_EQ(GetPosition(*stream), k_HeaderSize + length);
        EXPECT_EQ(Inside(rotation).Flags(), k_AnglesAlone);
        EXPECT_TRUE(Same(Inside(rotation).Angles(), k_Angles));
    }
}

TEST(RotationStream, Chunks_nest_and_follow_one_another)
{
    auto const stream = MakeMemoryStream();
    C3DRotation first(k_Angles, E3DROTORDER_XYZ);
    C3DRotation second(1, 2, 3, E3DROTORDER_XYZ);
    {
        CKVStreamHelper outer(stream.get());
        ASSERT_EQ(outer.ChunkWriteOpen(0x1234, 7), S_OK);
        ASSERT_EQ(outer.PutUInt8(5), S_OK);
        ASSERT_EQ(first.Save(stream.get(), 0), S_OK);
        ASSERT_EQ(second.Save(stream.get(), 0), S_OK);
        ASSERT_EQ(outer.ChunkWriteClose(), S_OK);
    }
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    CKVStreamHelper outer(stream.get());
    unsigned long version = 0;
    unsigned char byte = 0;
    ASSERT_EQ(outer.ChunkReadOpen(0x1234, &version), S_OK);
    ASSERT_EQ(outer.GetUInt8(&byte), S_OK);
    C3DRotation rotation;
    EXPECT_EQ(rotation.Load(stream.get()), S_OK);
    EXPECT_TRUE(SameState(rotation, first));
    EXPECT_EQ(rotation.Load(stream.get()), S_OK);
    EXPECT_TRUE(SameState(rotation, second));
    EXPECT_EQ(outer.ChunkReadClose(), S_OK);
    EXPECT_EQ(GetPosition(*stream), GetBytes(*stream).size());
}

TEST(RotationStream, Save_that_fails_inside_an_outer_chunk_takes_back_its_own_bytes_only)
{
    auto const stream = MakeStreamFailingOnWrite(13 + 20, k_DiskFull);
    CKVStreamHelper outer(stream.get());
    ASSERT_EQ(outer.ChunkWriteOpen(0x1234, 7), S_OK);
    ASSERT_EQ(outer.PutUInt8(5), S_OK);
    C3DRotation rotation(k_Angles, E3DROTORDER_XYZ);
    EXPECT_EQ(rotation.Save(stream.get(), 0), k_DiskFull);
    EXPECT_EQ(GetPosition(*stream), 13U);
}

TEST(RotationStream, Random_bytes_never_harm)
{
    Random random(601);
    for (int i = 0; i < 5000; ++i)
    {
        Bytes bytes = ChunkOf(k_Angles);
        bytes.resize(static_cast<std::size_t>(random.Integer(0, 60)), 0);
        for (int change = random.Integer(0, 4); change > 0 && !bytes.empty(); --change)
        {
            bytes[random.Bits() % bytes.size()] = static_cast<unsigned char>(random.Bits());
        }
        auto const stream = MakeMemoryStream(bytes);
        C3DRotation rotation = MakeOld();
        long const result = rotation.Load(stream.get());
        EXPECT_LE(GetPosition(*stream), bytes.size());
        EXPECT_TRUE(result == S_OK || result < 0);
        EXPECT_TRUE(result < 0 || (Inside(rotation).Flags() & ~k_Marked) == k_AnglesAlone);
    }
}
