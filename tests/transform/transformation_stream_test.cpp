/// The chunk of a transformation, in both versions, whole and damaged.

#include "math/platform/stream_helper.h"
#include "support/allocation_faults.h"
#include "support/streams.h"
#include "transform/transformation_states.h"

using namespace transformation_test;
using namespace test_support;

namespace
{

constexpr std::uint32_t k_Version10 = 0x30313030;
constexpr std::uint32_t k_Version40 = 0x30313031;
constexpr std::size_t k_HeaderSize = 12;
constexpr std::size_t k_VectorSize = 25;
constexpr std::size_t k_RotationSize = k_HeaderSize + k_VectorSize;
constexpr long k_DiskFull = math::detail::MakeResult(0x80030070U);

// Where the items begin.
constexpr std::size_t k_ScalingAt = k_HeaderSize + 1;
constexpr std::size_t k_TranslationAt = k_ScalingAt + k_VectorSize;
constexpr std::size_t k_RotationAt = k_TranslationAt + k_VectorSize;
constexpr std::size_t k_HasOrientationAt = k_RotationAt + k_RotationSize;
constexpr std::size_t k_OrientationAt = k_HasOrientationAt + 1;

/// What a chunk says.
struct Content
{
    unsigned char qn_scaling = 1;
    Vector scaling = Vector(2, -3, 0.5);
    Vector translation = Vector(1, -2, 1e-300);
    Vector angles = Vector(0.3, -0.5 - rotation_test::k_TwoPi, 0.7);
    std::optional<Vector> orientation = std::nullopt;
};

Content WithOrientation()
{
    Content content;
    content.orientation = Vector(0.2, 0.4, -0.6);
    return content;
}

Content IdentityContent()
{
    return {1, Vector(1, 1, 1), Vector(0, 0, 0), Vector(0, 0, 0), std::nullopt};
}

void Append(Bytes & bytes, std::uint64_t value, int count)
{
    for (int i = 0; i < count; ++i)
    {
        bytes.push_back(static_cast<unsigned char>(value >> (8 * i) & 0xFFU));
    }
}

void AppendVector(Bytes & bytes, Vector const & v)
{
    bytes.push_back(0);
    for (double const component : Elements(v))
    {
        Append(bytes, std::bit_cast<std::uint64_t>(component), 8);
    }
}

void AppendRotation(Bytes & bytes, Vector const & angles)
{
    bytes.insert(bytes.end(), {0x41, 0x54, 0x4F, 0x52});
    Append(bytes, 0x40, 4);
    Append(bytes, k_VectorSize, 4);
    AppendVector(bytes, angles);
}

/// A chunk by hand. Chunks of a version before the second end with the rotation. `more` bytes follow what is known.
Bytes ChunkOf(Content const & content, std::uint32_t version = k_Version40, std::size_t more = 0)
{
    Bytes body = {content.qn_scaling};
    AppendVector(body, content.scaling);
    AppendVector(body, content.translation);
    AppendRotation(body, content.angles);
    if (version >= k_Version40)
    {
        body.push_back(content.orientation ? 1 : 0);
        if (content.orientation)
        {
            AppendRotation(body, *content.orientation);
        }
    }
    body.resize(body.size() + more, 0xCC);
    Bytes bytes = {0x46, 0x53, 0x52, 0x54};
    Append(bytes, version, 4);
    Append(bytes, body.size(), 4);
    bytes.insert(bytes.end(), body.begin(), body.end());
    return bytes;
}

/// The transformation that a content came from, as clean components.
C3DTransfo MakeSaved(Content const & content, unsigned flags = k_MatrixDirty)
{
    std::optional<Rotation> orientation;
    if (content.orientation)
    {
        orientation = Rotation(*content.orientation, E3DROTORDER_ZYX);
    }
    return MakeState(flags | (content.qn_scaling != 0 ? k_QNScaling : 0),
                     {content.scaling, orientation, Rotation(content.angles, E3DROTORDER_YZX), content.translation});
}

/// What a transformation holds after the content was loaded into it.
Snapshot Loaded(Snapshot target, Content const & content)
{
    target.scaling = content.scaling;
    target.translation = content.translation;
    target.rotation = Rotation(content.angles, E3DROTORDER_XYZ);
    target.orientation.reset();
    if (content.orientation)
    {
        target.orientation = Rotation(*content.orientation, E3DROTORDER_XYZ);
    }
    target.flags = (target.flags & (k_PreserveOrder | k_Unused)) | k_MatrixDirty;
    target.flags |= content.qn_scaling != 0 ? k_QNScaling : 0;
    return target;
}

long LoadFrom(C3DTransfo & transfo, Bytes const & bytes)
{
    return transfo.Load(MakeMemoryStream(bytes).get());
}

/// The states before.
constexpr unsigned k_Before[5] = {2, 1, 0, 18, 16};

} // namespace

TEST(TransformationStream, The_constants_of_the_chunk)
{
    EXPECT_EQ(C3DTransfo::k_dwTransfo, 0x54525346UL);
    EXPECT_EQ(C3DTransfo::k_dwVersion, 0x30313031UL);
    EXPECT_EQ(C3DTransfo::k_dwVersion10, 0x30313030UL);
    EXPECT_EQ(C3DTransfo::k_dwVersion40, 0x30313031UL);
}

TEST(TransformationStream, A_null_stream_is_an_invalid_argument)
{
    for (unsigned const flags : k_Before)
    {
        C3DTransfo transfo = MakeState(flags | 44U, Sheared());
        Snapshot const before(transfo);
        EXPECT_EQ(transfo.Save(nullptr, 0), E_INVALIDARG);
        EXPECT_EQ(transfo.Load(nullptr), E_INVALIDARG);
        EXPECT_EQ(E_INVALIDARG, math::detail::MakeResult(0x80070057U));
        EXPECT_TRUE(Untouched(before, transfo));
    }
}

// --- Save ------------------------------------------------------------------------------------------------------------

TEST(TransformationStream, Save_writes_the_components_in_the_current_version)
{
    for (Content content : {Content(), WithOrientation(), IdentityContent()})
    {
        for (int const qn_scaling : {0, 1})
        {
            for (int const format : {0, 1, -7})
            {
                content.qn_scaling = static_cast<unsigned char>(qn_scaling);
                auto const stream = MakeMemoryStream();
                C3DTransfo transfo = MakeSaved(content);
                EXPECT_EQ(transfo.Save(stream.get(), format), S_OK);
                EXPECT_EQ(GetBytes(*stream), ChunkOf(content));
                EXPECT_EQ(GetPosition(*stream), GetBytes(*stream).size());
                EXPECT_EQ(CountReferences(*stream), 1UL);
            }
        }
    }
}

TEST(TransformationStream, Save_in_each_state_brings_the_components_up_to_date_and_nothing_else)
{
    for (Values const & values : {Plain(), Sheared()})
    {
        for (unsigned const state : k_Before)
        {
            for (unsigned const others : {0U, k_QNScaling, 44U})
            {
                C3DTransfo transfo = MakeState(state | others, values);
                C3DTransfo read = MakeState(state | others, values);
                if (state == 1)
                {
                    Inside::Factorize(read, 63);
                }
                Content content;
                content.qn_scaling = (others & k_QNScaling) != 0 ? 1 : 0;
                content.scaling = Inside::Scaling(read);
                content.translation = Inside::Translation(read);
                Inside::Rotation(read).GetXYZAngles(content.angles);
                if (Inside::ScalingOrientation(read) != nullptr)
                {
                    Vector angles;
                    Inside::ScalingOrientation(read)->GetXYZAngles(angles);
                    content.orientation = angles;
                }
                auto const stream = MakeMemoryStream();
                EXPECT_EQ(transfo.Save(stream.get(), 0), S_OK);
                EXPECT_EQ(GetBytes(*stream), ChunkOf(content));
                EXPECT_TRUE(Untouched(Snapshot(read), transfo));
            }
        }
    }
}

TEST(TransformationStream, Save_writes_an_orientation_that_is_there_even_if_it_counts_as_none)
{
    Content content;
    content.orientation = Vector(1e-13, 0, 0);
    C3DTransfo transfo = MakeSaved(content);
    auto const stream = MakeMemoryStream();
    EXPECT_EQ(transfo.Save(stream.get(), 0), S_OK);
    EXPECT_EQ(GetBytes(*stream), ChunkOf(content));
}

TEST(TransformationStream, A_saved_orientation_near_the_identity_disappears_on_load)
{
    for (Vector const & angles : {Vector(1e-13, 0, 0), Vector(0, 0, 0), Vector(-1e-12, 1e-12, 1e-12)})
    {
        Content content;
        content.orientation = angles;
        for (Values const & old : {Plain(), Sheared()})
        {
            C3DTransfo transfo = MakeState(2, old);
            EXPECT_EQ(LoadFrom(transfo, ChunkOf(content)), S_OK);
            EXPECT_EQ(Inside::ScalingOrientation(transfo), nullptr);
        }
    }
    Content content;
    content.orientation = Vector(0, std::nextafter(1e-12, 1.0), 0);
    C3DTransfo transfo;
    EXPECT_EQ(LoadFrom(transfo, ChunkOf(content)), S_OK);
    EXPECT_NE(Inside::ScalingOrientation(transfo), nullptr);
}

TEST(TransformationStream, Save_that_fails_on_any_byte_takes_the_stream_back_and_tells_the_first_failure)
{
    for (Content const & content : {Content(), WithOrientation()})
    {
        // The content, and then the length of each chunk again, patched at its close.
        unsigned long long const chunks = content.orientation ? 3 : 2;
        Values const values = content.orientation ? Sheared() : Plain();
        C3DTransfo clean = MakeState(k_ComponentsDirty, values);
        auto const whole = MakeMemoryStream();
        ASSERT_EQ(clean.Save(whole.get(), 0), S_OK);
        unsigned long long const needed = GetBytes(*whole).size() + 4 * chunks;
        for (unsigned long long writable = 0; writable < needed; ++writable)
        {
            for (long const code : {k_DiskFull, S_OK})
            {
                for (std::size_t const before : {std::size_t(0), std::size_t(5)})
                {
                    SCOPED_TRACE(testing::Message() << "byte " << writable << ", code " << code);
                    Bytes expected(before, 0xEE);
                    auto const stream = MakeFaultyStream({.writable = writable, .code = code}, expected);
                    stream->Seek(0, STREAM_SEEK_END, nullptr);
                    C3DTransfo transfo = MakeState(k_ComponentsDirty, values);
                    EXPECT_EQ(transfo.Save(stream.get(), 0), code < 0 ? code : E_FAIL);
                    EXPECT_EQ(GetPosition(*stream), before);
                    EXPECT_EQ(CountReferences(*stream), 1UL);
                    // The components are read once the chunk is open.
                    EXPECT_EQ(Inside::Flags(transfo), writable < k_HeaderSize ? k_ComponentsDirty : 0U);
                    EXPECT_TRUE(FreshFormsAre(transfo, MatrixOf(values)));

                    // Once the fault is lifted, the next Save overwrites what is left of this one.
                    stream->faults = {};
                    EXPECT_EQ(transfo.Save(stream.get(), 0), S_OK);
                    Bytes const chunk = GetBytes(*whole);
                    expected.insert(expected.end(), chunk.begin(), chunk.end());
                    EXPECT_EQ(GetBytes(stream->GetMemory()), expected);
                }
            }
        }
        C3DTransfo transfo = MakeState(k_ComponentsDirty, values);
        EXPECT_EQ(transfo.Save(MakeStreamFailingOnWrite(needed).get(), 0), S_OK);
    }
}

TEST(TransformationStream, Save_gives_the_failure_of_the_first_position_and_does_nothing)
{
    auto const stream = MakeFaultyStream({.seeks = 0, .code = k_DiskFull});
    C3DTransfo transfo = MakeState(k_ComponentsDirty, Sheared());
    Snapshot const before(transfo);
    EXPECT_EQ(transfo.Save(stream.get(), 0), k_DiskFull);
    EXPECT_TRUE(GetBytes(stream->GetMemory()).empty());
    EXPECT_TRUE(Untouched(before, transfo));
}

TEST(TransformationStream, Save_reports_a_stream_that_cannot_seek)
{
    unsigned long long seeks = 0;
    for (;; ++seeks)
    {
        ASSERT_LT(seeks, 60U);
        auto const stream = MakeFaultyStream({.seeks = seeks, .code = k_DiskFull});
        C3DTransfo transfo = MakeSaved(WithOrientation());
        long const result = transfo.Save(stream.get(), 0);
        EXPECT_EQ(CountReferences(*stream), 1UL);
        if (result == S_OK)
        {
            break;
        }
        EXPECT_EQ(result, k_DiskFull);
    }
    EXPECT_GT(seeks, 6U);
}

TEST(TransformationStream, Save_that_fails_inside_an_outer_chunk_takes_back_its_own_bytes_only)
{
    auto const stream = MakeStreamFailingOnWrite(13 + 60, k_DiskFull);
    CKVStreamHelper outer(stream.get());
    ASSERT_EQ(outer.ChunkWriteOpen(0x1234, 7), S_OK);
    ASSERT_EQ(outer.PutUInt8(5), S_OK);
    C3DTransfo transfo = MakeSaved(Content());
    EXPECT_EQ(transfo.Save(stream.get(), 0), k_DiskFull);
    EXPECT_EQ(GetPosition(*stream), 13U);
}

// --- Load ------------------------------------------------------------------------------------------------------------

TEST(TransformationStream, Load_in_each_state_gives_clean_components_alone)
{
    for (Content content : {Content(), WithOrientation()})
    {
        for (unsigned const state : k_Before)
        {
            for (unsigned const others : {0U, 4U, 8U, 32U, 44U})
            {
                for (int const qn_scaling : {0, 1, 2, 255})
                {
                    for (Values const & old : {OtherPlain(), OtherSheared()})
                    {
                        content.qn_scaling = static_cast<unsigned char>(qn_scaling);
                        C3DTransfo transfo = MakeState(state | others, old);
                        Snapshot const expected = Loaded(Snapshot(transfo), content);
                        auto const stream = MakeMemoryStream(ChunkOf(content));
                        EXPECT_EQ(transfo.Load(stream.get()), S_OK);
                        EXPECT_TRUE(Untouched(expected, transfo));
                        EXPECT_EQ(GetPosition(*stream), ChunkOf(content).size());
                        EXPECT_EQ(CountReferences(*stream), 1UL);
                    }
                }
            }
        }
    }
}

TEST(TransformationStream, Versions_before_the_second_hold_no_orientation)
{
    for (std::uint32_t const version : {k_Version10, 0U, 1U, k_Version10 - 1, 0x30000000U})
    {
        for (Values const & old : {Plain(), Sheared()})
        {
            C3DTransfo transfo = MakeState(0, old);
            Snapshot const expected = Loaded(Snapshot(transfo), Content());
            auto const stream = MakeMemoryStream(ChunkOf(Content(), version));
            EXPECT_EQ(transfo.Load(stream.get()), S_OK);
            EXPECT_TRUE(Untouched(expected, transfo));
            EXPECT_EQ(GetPosition(*stream), k_HasOrientationAt);
        }
    }
}

TEST(TransformationStream, Bytes_behind_the_rotation_of_an_old_version_are_no_orientation)
{
    Bytes bytes = ChunkOf(WithOrientation());
    bytes[4] = 0x30;
    auto const stream = MakeMemoryStream(bytes);
    C3DTransfo transfo;
    EXPECT_EQ(transfo.Load(stream.get()), S_OK);
    EXPECT_EQ(Inside::ScalingOrientation(transfo), nullptr);
    EXPECT_EQ(GetPosition(*stream), bytes.size());
}

TEST(TransformationStream, Versions_from_the_second_on_are_read_as_it_is)
{
    for (std::uint32_t const version : {k_Version40, k_Version40 + 1, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
    {
        for (Content const & content : {Content(), WithOrientation()})
        {
            C3DTransfo transfo = MakeState(0, Sheared());
            Snapshot const expected = Loaded(Snapshot(transfo), content);
            EXPECT_EQ(LoadFrom(transfo, ChunkOf(content, version, 11)), S_OK);
            EXPECT_TRUE(Untouched(expected, transfo));
        }
    }
}

TEST(TransformationStream, What_an_old_version_holds_is_saved_back_in_the_current_one)
{
    C3DTransfo transfo;
    ASSERT_EQ(LoadFrom(transfo, ChunkOf(Content(), k_Version10)), S_OK);
    EXPECT_FALSE(transfo.IsScalingOrientationExisting());
    auto const stream = MakeMemoryStream();
    EXPECT_EQ(transfo.Save(stream.get(), 0), S_OK);
    EXPECT_EQ(GetBytes(*stream), ChunkOf(Content()));
}

TEST(TransformationStream, Any_truth_value_but_0_tells_of_an_orientation)
{
    for (int const truth : {1, 2, 255})
    {
        Bytes bytes = ChunkOf(WithOrientation());
        bytes[k_HasOrientationAt] = static_cast<unsigned char>(truth);
        C3DTransfo transfo;
        EXPECT_EQ(LoadFrom(transfo, bytes), S_OK);
        EXPECT_NE(Inside::ScalingOrientation(transfo), nullptr);
    }
}

TEST(TransformationStream, What_reads_as_exactly_the_identity_is_flagged)
{
    Content with_orientation = IdentityContent();
    with_orientation.orientation = Vector(1, 2, 3);
    Content negative_zeros = IdentityContent();
    negative_zeros.translation = Vector(-0.0, 0, -0.0);
    negative_zeros.angles = Vector(0, -0.0, 0);
    for (Content const & content : {IdentityContent(), with_orientation, negative_zeros})
    {
        C3DTransfo transfo = MakeState(1 | 44U, Sheared());
        EXPECT_EQ(LoadFrom(transfo, ChunkOf(content)), S_OK);
        EXPECT_EQ(Inside::Flags(transfo), 62U);
    }
    for (int axis = 0; axis < 3; ++axis)
    {
        for (double const off : {5e-324, -1e-300, k_Nan})
        {
            Content moved = IdentityContent();
            moved.translation.Set(axis, off);
            Content turned = IdentityContent();
            turned.angles.Set(axis, off);
            Content scaled = IdentityContent();
            scaled.scaling.Set(axis, std::nextafter(1.0, 2.0));
            for (Content const & content : {moved, turned, scaled})
            {
                C3DTransfo transfo;
                EXPECT_EQ(LoadFrom(transfo, ChunkOf(content)), S_OK);
                EXPECT_EQ(Inside::Flags(transfo), 6U);
            }
        }
    }
}

TEST(TransformationStream, The_scaling_is_clamped)
{
    Content content;
    content.scaling = Vector(0.0, -1e-13, k_Nan);
    C3DTransfo transfo;
    EXPECT_EQ(LoadFrom(transfo, ChunkOf(content)), S_OK);
    EXPECT_TRUE(SameBits(Inside::Scaling(transfo), Vector(1e-12, -1e-12, -1e-12)));
    content.scaling = Vector(-0.0, 1e-12, -1e-12);
    EXPECT_EQ(LoadFrom(transfo, ChunkOf(content)), S_OK);
    EXPECT_TRUE(SameBits(Inside::Scaling(transfo), Vector(1e-12, 1e-12, -1e-12)));
}

TEST(TransformationStream, An_own_orientation_is_written_where_it_is)
{
    C3DTransfo transfo = MakeState(2, Sheared());
    Rotation const * const pointer = Inside::ScalingOrientation(transfo);
    EXPECT_EQ(LoadFrom(transfo, ChunkOf(WithOrientation())), S_OK);
    EXPECT_EQ(Inside::ScalingOrientation(transfo), pointer);
}

TEST(TransformationStream, Without_memory_there_is_no_orientation)
{
    auto const stream = MakeMemoryStream(ChunkOf(WithOrientation()));
    C3DTransfo transfo;
    Snapshot const expected = Loaded(Snapshot(transfo), Content());
    long result = -1;
    {
        AllocationFaults const refuse = AllocationFaults::RefuseAbove(sizeof(Rotation) - 1);
        result = transfo.Load(stream.get());
    }
    EXPECT_EQ(result, S_OK);
    EXPECT_TRUE(Untouched(expected, transfo));
}

TEST(TransformationStream, A_read_that_fails_on_any_byte_keeps_the_flags_and_what_is_not_yet_read)
{
    Content content = WithOrientation();
    content.scaling = Vector(0.0, -3, 4); // not clamped where the work stops
    for (std::uint32_t const version : {k_Version10, k_Version40})
    {
        for (unsigned const state : k_Before)
        {
            for (unsigned const qn_scaling : {0U, k_QNScaling})
            {
                content.qn_scaling = qn_scaling == 0 ? 1 : 0;
                Bytes const chunk = ChunkOf(content, version);
                for (std::size_t readable = 0; readable < chunk.size(); ++readable)
                {
                    SCOPED_TRACE(testing::Message() << "state " << state << ", byte " << readable);
                    C3DTransfo transfo = MakeState(state | qn_scaling, Sheared());
                    Snapshot expected(transfo);
                    auto const stream = MakeStreamFailingOnRead(chunk, readable, k_DiskFull);
                    EXPECT_EQ(transfo.Load(stream.get()), k_DiskFull);
                    EXPECT_EQ(CountReferences(*stream), 1UL);

                    if (readable >= k_HeaderSize)
                    {
                        // A truth value that could not be read is 0.
                        bool const is_read = readable > k_HeaderSize;
                        expected.flags &= ~k_QNScaling;
                        expected.flags |= is_read && content.qn_scaling != 0 ? k_QNScaling : 0;
                    }
                    for (std::size_t axis = 0; axis < 3; ++axis)
                    {
                        if (readable >= k_ScalingAt + 9 + 8 * axis)
                        {
                            expected.scaling[axis] = content.scaling[axis];
                        }
                        if (readable >= k_TranslationAt + 9 + 8 * axis)
                        {
                            expected.translation[axis] = content.translation[axis];
                        }
                    }
                    if (readable >= k_HasOrientationAt)
                    {
                        expected.rotation = Rotation(content.angles, E3DROTORDER_XYZ);
                    }
                    else if (readable >= k_RotationAt)
                    {
                        // The angles may hold some of what was read; flags and order are as before.
                        RotationInside(expected.rotation).Angles() = RotationInside(Inside::Rotation(transfo)).Angles();
                    }
                    EXPECT_TRUE(Untouched(expected, transfo));
                    EXPECT_EQ(expected.pointer, Inside::ScalingOrientation(transfo));
                }
            }
        }
    }
}

TEST(TransformationStream, A_truncated_chunk_is_refused_and_changes_nothing)
{
    Bytes const chunk = ChunkOf(WithOrientation());
    for (std::size_t size = 0; size < chunk.size(); ++size)
    {
        auto const stream = MakeMemoryStream(Bytes(chunk.begin(), chunk.begin() + static_cast<std::ptrdiff_t>(size)));
        C3DTransfo transfo = MakeState(k_QNScaling, Sheared());
        Snapshot const before(transfo);
        EXPECT_LT(transfo.Load(stream.get()), 0) << size;
        EXPECT_TRUE(Untouched(before, transfo));
        EXPECT_EQ(CountReferences(*stream), 1UL);
    }
}

TEST(TransformationStream, A_wrong_tag_is_refused_and_changes_nothing)
{
    for (std::size_t byte = 0; byte < 4; ++byte)
    {
        for (unsigned bit = 0; bit < 8; ++bit)
        {
            Bytes chunk = ChunkOf(Content());
            chunk[byte] = static_cast<unsigned char>(chunk[byte] ^ (1U << bit));
            auto const stream = MakeMemoryStream(chunk);
            C3DTransfo transfo = MakeState(0, Sheared());
            Snapshot const before(transfo);
            EXPECT_LT(transfo.Load(stream.get()), 0);
            EXPECT_TRUE(Untouched(before, transfo));
            EXPECT_EQ(GetPosition(*stream), 0U);
        }
    }
}

TEST(TransformationStream, A_wrong_tag_of_a_rotation_inside_stops_the_work)
{
    for (std::size_t const at : {k_RotationAt, k_OrientationAt})
    {
        Bytes chunk = ChunkOf(WithOrientation());
        chunk[at] = 0;
        C3DTransfo transfo = MakeState(1, Sheared());
        Snapshot expected(transfo);
        EXPECT_LT(LoadFrom(transfo, chunk), 0);
        expected.flags |= k_QNScaling;
        expected.scaling = Content().scaling;
        expected.translation = Content().translation;
        if (at == k_OrientationAt)
        {
            expected.rotation = Rotation(Content().angles, E3DROTORDER_XYZ);
        }
        EXPECT_TRUE(Untouched(expected, transfo));
    }
}

TEST(TransformationStream, Bytes_at_the_end_of_the_chunk_are_skipped)
{
    for (std::size_t const more : {1U, 8U, 300U})
    {
        for (std::uint32_t const version : {k_Version10, k_Version40})
        {
            Bytes bytes = ChunkOf(WithOrientation(), version, more);
            std::size_t const size = bytes.size();
            bytes.push_back(0xDD); // behind the chunk
            auto const stream = MakeMemoryStream(bytes);
            C3DTransfo transfo;
            EXPECT_EQ(transfo.Load(stream.get()), S_OK);
            EXPECT_EQ(GetPosition(*stream), size);
            EXPECT_EQ(Inside::ScalingOrientation(transfo) != nullptr, version == k_Version40);
        }
    }
}

// What is inside is read on the bare stream, which knows of no chunk: it is taken before the end is found overrun.
TEST(TransformationStream, A_chunk_too_short_for_its_orientation_fails_at_its_close_with_all_read)
{
    for (std::size_t const cut : {1U, 20U, 37U})
    {
        Bytes bytes = ChunkOf(WithOrientation());
        bytes[8] = static_cast<unsigned char>(bytes[8] - cut);
        C3DTransfo transfo;
        Snapshot const expected = Loaded(Snapshot(transfo), WithOrientation());
        EXPECT_EQ(LoadFrom(transfo, bytes), E_FAIL) << cut;
        EXPECT_TRUE(Untouched(expected, transfo)) << cut;
    }
}

TEST(TransformationStream, A_chunk_that_ends_before_its_second_truth_value_keeps_the_flags)
{
    for (std::size_t const length : {1U, 40U, 88U})
    {
        Bytes bytes = ChunkOf(Content());
        bytes[8] = static_cast<unsigned char>(length);
        C3DTransfo transfo = MakeState(k_ComponentsDirty | k_QNScaling, Sheared());
        EXPECT_LT(LoadFrom(transfo, bytes), 0) << length;
        EXPECT_EQ(Inside::Flags(transfo), k_ComponentsDirty | k_QNScaling);
    }
}

TEST(TransformationStream, Short_reads_are_failures)
{
    auto const stream = MakeStreamWithShortReads(ChunkOf(Content()), 3);
    C3DTransfo transfo = MakeState(0, Sheared());
    Snapshot const before(transfo);
    EXPECT_LT(transfo.Load(stream.get()), 0);
    EXPECT_TRUE(Untouched(before, transfo));
}

TEST(TransformationStream, Load_reports_a_stream_that_cannot_seek)
{
    unsigned long long seeks = 0;
    for (;; ++seeks)
    {
        ASSERT_LT(seeks, 60U);
        auto const stream = MakeFaultyStream({.seeks = seeks, .code = k_DiskFull}, ChunkOf(WithOrientation()));
        C3DTransfo transfo;
        long const result = transfo.Load(stream.get());
        if (result == S_OK)
        {
            break;
        }
        EXPECT_EQ(result, k_DiskFull);
    }
    EXPECT_GT(seeks, 6U);
}

// --- Both ------------------------------------------------------------------------------------------------------------

TEST(TransformationStream, Chunks_follow_one_another_and_nest)
{
    auto const stream = MakeMemoryStream();
    C3DTransfo first = MakeSaved(Content());
    C3DTransfo second = MakeSaved(WithOrientation());
    {
        CKVStreamHelper outer(stream.get());
        ASSERT_EQ(outer.ChunkWriteOpen(0x1234, 7), S_OK);
        ASSERT_EQ(first.Save(stream.get(), 0), S_OK);
        ASSERT_EQ(second.Save(stream.get(), 0), S_OK);
        ASSERT_EQ(outer.ChunkWriteClose(), S_OK);
    }
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    CKVStreamHelper outer(stream.get());
    unsigned long version = 0;
    ASSERT_EQ(outer.ChunkReadOpen(0x1234, &version), S_OK);
    C3DTransfo transfo;
    EXPECT_EQ(transfo.Load(stream.get()), S_OK);
    EXPECT_FALSE(transfo.HasShearing());
    EXPECT_EQ(transfo.Load(stream.get()), S_OK);
    EXPECT_TRUE(transfo.HasShearing());
    EXPECT_EQ(outer.ChunkReadClose(), S_OK);
}

TEST(TransformationStream, What_was_saved_in_order_XYZ_comes_back_to_the_last_bit)
{
    Random random(4310);
    for (int i = 0; i < 500; ++i)
    {
        Values values = RandomValues(random);
        values.rotation = Rotation(RandomTranslation(random), E3DROTORDER_XYZ);
        if (values.orientation)
        {
            values.orientation = Rotation(RandomTranslation(random), E3DROTORDER_XYZ);
        }
        unsigned const qn_scaling = random.Integer(0, 1) == 0 ? 0 : k_QNScaling;
        C3DTransfo saved = MakeState(k_MatrixDirty | qn_scaling, values);
        auto const stream = MakeMemoryStream();
        ASSERT_EQ(saved.Save(stream.get(), 0), S_OK);
        stream->Seek(0, STREAM_SEEK_SET, nullptr);
        C3DTransfo loaded = MakeState(0, OtherSheared());
        ASSERT_EQ(loaded.Load(stream.get()), S_OK);
        EXPECT_TRUE(SameState(saved, loaded));
        EXPECT_TRUE(SameBits(*saved.GetMatrix(), *loaded.GetMatrix()));
        EXPECT_EQ(saved.GetMatrix()->GetSclSignBits(), loaded.GetMatrix()->GetSclSignBits());
    }
}

TEST(TransformationStream, Random_bytes_never_harm)
{
    Random random(4311);
    for (int i = 0; i < 5000; ++i)
    {
        Bytes bytes = ChunkOf(WithOrientation());
        if (random.Integer(0, 3) == 0)
        {
            bytes.resize(static_cast<std::size_t>(random.Integer(0, 160)), 0);
        }
        for (int change = random.Integer(0, 4); change > 0 && !bytes.empty(); --change)
        {
            bytes[random.Bits() % bytes.size()] = static_cast<unsigned char>(random.Bits());
        }
        auto const stream = MakeMemoryStream(bytes);
        C3DTransfo transfo = MakeState(0, Sheared());
        long const result = transfo.Load(stream.get());
        EXPECT_LE(GetPosition(*stream), bytes.size());
        EXPECT_TRUE(result == S_OK || result < 0);
        EXPECT_TRUE(result < 0 || (Inside::Flags(transfo) & 3U) == k_MatrixDirty);
        static_cast<void>(transfo.GetMatrix());
    }
}
