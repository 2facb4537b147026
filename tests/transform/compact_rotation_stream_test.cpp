/// The bytes and the text of the compact rotation.

#include "support/streams.h"
#include "transform/compact_rotation_states.h"

#include <bit>
#include <cstdint>
#include <iomanip>
#include <sstream>
#include <string>

using namespace compact_rotation_test;
using namespace test_support;

namespace
{

constexpr long k_DiskFull = math::detail::MakeResult(0x80030070U);

template <typename T>
class CompactRotationStream : public testing::Test
{
};
TYPED_TEST_SUITE(CompactRotationStream, Scalars);

template <typename T>
void Append(Bytes & bytes, T number)
{
    using Word = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;
    auto const word = std::bit_cast<Word>(number);
    for (unsigned i = 0; i < sizeof(T); ++i)
    {
        bytes.push_back(static_cast<unsigned char>(word >> (8 * i) & 0xFFU));
    }
}

/// The byte of the form, and numbers.
template <typename T>
Bytes Record(int form, std::initializer_list<T> numbers)
{
    Bytes bytes = {static_cast<unsigned char>(form)};
    for (T const number : numbers)
    {
        Append(bytes, number);
    }
    return bytes;
}

template <typename T>
Bytes EulerRecord(std::initializer_list<T> angles, int order)
{
    Bytes bytes = Record(1, angles);
    bytes.push_back(static_cast<unsigned char>(order));
    return bytes;
}

template <typename T>
Bytes Saved(C3DRotation3Tpl<T> const & rotation)
{
    auto const stream = MakeMemoryStream();
    EXPECT_EQ(rotation.Save(stream.get(), 0), S_OK);
    EXPECT_EQ(CountReferences(*stream), 1UL);
    return GetBytes(*stream);
}

/// The records of MakeEach.
template <typename T>
std::array<Bytes, 3> Records()
{
    return {Record<T>(0, {T(1.5), T(-0.5), T(2), T(0.25)}), EulerRecord<T>({T(0.5), T(-1), T(7)}, 4),
            Record<T>(2, {T(1), T(-2), T(3), T(7.5)})};
}

template <typename T>
using Dump = void (C3DRotation3Tpl<T>::*)(wchar_t const *, std::ostream &) const;

template <typename T>
std::string TextOf(C3DRotation3Tpl<T> const & rotation, Dump<T> dump, wchar_t const * name = nullptr)
{
    std::ostringstream stream;
    (rotation.*dump)(name, stream);
    return stream.str();
}

template <typename T>
std::string TextOf(C3DRotation3Tpl<T> const & rotation)
{
    std::ostringstream stream;
    EXPECT_EQ(&(stream << rotation), &stream);
    return stream.str();
}

} // namespace

// --- Save ------------------------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationStream, Save_writes_the_form_and_its_numbers)
{
    using T = TypeParam;
    for (std::size_t i = 0; i < 3; ++i)
    {
        for (int const format : {0, 1, -7})
        {
            C3DRotation3Tpl<T> const rotation = MakeEach<T>()[i];
            auto const stream = MakeMemoryStream();
            EXPECT_EQ(rotation.Save(stream.get(), format), S_OK);
            EXPECT_EQ(GetBytes(*stream), Records<T>()[i]);
            EXPECT_EQ(FieldsOf(rotation), FieldsOf(MakeEach<T>()[i]));
        }
    }
    EXPECT_EQ(Records<T>()[0].size(), 1 + 4 * sizeof(T));
    EXPECT_EQ(Records<T>()[1].size(), 2 + 3 * sizeof(T));
}

TEST(CompactRotationStreamBytes, The_bytes_of_a_float_written_out)
{
    C3DRotation3Tpl<float> const rotation(C3DQuatTpl<float>(1, 2, -0.0F, -1.5F));
    EXPECT_EQ(Saved(rotation), (Bytes{0, 0, 0, 0x80, 0x3F, 0, 0, 0, 0x40, 0, 0, 0, 0x80, 0, 0, 0xC0, 0xBF}));
}

TYPED_TEST(CompactRotationStream, Save_writes_the_low_byte_of_any_order)
{
    using T = TypeParam;
    for (int order = -1; order < 8; ++order)
    {
        C3DRotation3Tpl<T> const rotation(1, 2, 3, static_cast<tagE3DROTORDER>(order));
        EXPECT_EQ(Saved(rotation), EulerRecord<T>({1, 2, 3}, order));
    }
}

TYPED_TEST(CompactRotationStream, Save_of_an_unknown_form_writes_its_byte_alone)
{
    for (int const rep : {3, 4, 128, 255})
    {
        EXPECT_EQ(Saved(WithUnknownForm(MakeQuat<TypeParam>(), static_cast<E3DRotRep>(rep))),
                  Bytes{static_cast<unsigned char>(rep)});
    }
}

TYPED_TEST(CompactRotationStream, A_null_stream_is_an_invalid_argument)
{
    using T = TypeParam;
    for (C3DRotation3Tpl<T> & rotation : MakeEach<T>())
    {
        Fields<T> const before = FieldsOf(rotation);
        EXPECT_EQ(rotation.Save(nullptr, 0), E_INVALIDARG);
        EXPECT_EQ(rotation.Load(nullptr), E_INVALIDARG);
        EXPECT_EQ(FieldsOf(rotation), before);
    }
    EXPECT_EQ(E_INVALIDARG, math::detail::MakeResult(0x80070057U));
}

TYPED_TEST(CompactRotationStream, Save_that_fails_on_any_byte_tells_it_and_writes_no_more)
{
    using T = TypeParam;
    for (std::size_t i = 0; i < 3; ++i)
    {
        Bytes const whole = Records<T>()[i];
        for (std::size_t writable = 0; writable < whole.size(); ++writable)
        {
            for (long const code : {k_DiskFull, S_OK})
            {
                auto const stream = MakeStreamFailingOnWrite(writable, code);
                EXPECT_EQ(MakeEach<T>()[i].Save(stream.get(), 0), code < 0 ? code : E_FAIL) << i << ' ' << writable;
                EXPECT_EQ(GetBytes(stream->GetMemory()),
                          Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(writable)));
                EXPECT_EQ(CountReferences(*stream), 1UL);
            }
        }
        EXPECT_EQ(MakeEach<T>()[i].Save(MakeStreamFailingOnWrite(whole.size()).get(), 0), S_OK);
    }
}

// --- Load ------------------------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationStream, Load_brings_back_the_form_and_the_order)
{
    using T = TypeParam;
    for (std::size_t i = 0; i < 3; ++i)
    {
        for (C3DRotation3Tpl<T> & rotation : MakeEach<T>())
        {
            Bytes bytes = Records<T>()[i];
            std::size_t const size = bytes.size();
            bytes.push_back(0xDD);
            auto const stream = MakeMemoryStream(bytes);
            EXPECT_EQ(rotation.Load(stream.get()), S_OK);
            EXPECT_EQ(FieldsOf(rotation), FieldsOf(MakeEach<T>()[i]));
            EXPECT_EQ(GetPosition(*stream), size);
            EXPECT_EQ(CountReferences(*stream), 1UL);
        }
    }
    for (tagE3DROTORDER const order : k_Orders)
    {
        C3DRotation3Tpl<T> rotation;
        EXPECT_EQ(rotation.Load(MakeMemoryStream(Saved(MakeEuler<T>(order))).get()), S_OK);
        EXPECT_EQ(FieldsOf(rotation), FieldsOf(MakeEuler<T>(order)));
    }
}

TYPED_TEST(CompactRotationStream, Numbers_of_any_bits_and_any_order_survive)
{
    using T = TypeParam;
    T const tiny = std::numeric_limits<T>::denorm_min();
    for (int form = 0; form < 3; ++form)
    {
        Bytes const bytes = form == 1 ? EulerRecord<T>({k_Nan<T>, -k_Infinity<T>, T(-0.0)}, 255)
                                      : Record<T>(form, {k_Nan<T>, -k_Infinity<T>, T(-0.0), tiny});
        C3DRotation3Tpl<T> rotation;
        EXPECT_EQ(rotation.Load(MakeMemoryStream(bytes).get()), S_OK);
        EXPECT_EQ(Saved(rotation), bytes);
    }
    C3DRotation3Tpl<T> rotation;
    EXPECT_EQ(rotation.Load(MakeMemoryStream(EulerRecord<T>({1, 2, 3}, 255)).get()), S_OK);
    EXPECT_EQ(rotation.GetRotOrder(), 255) << "an order is a number without a sign";
}

TYPED_TEST(CompactRotationStream, Load_that_fails_on_any_byte_changes_nothing)
{
    using T = TypeParam;
    for (Bytes const & whole : Records<T>())
    {
        for (std::size_t readable = 0; readable < whole.size(); ++readable)
        {
            for (C3DRotation3Tpl<T> & rotation : MakeEach<T>())
            {
                Fields<T> const before = FieldsOf(rotation);
                auto const failing = MakeStreamFailingOnRead(whole, readable, k_DiskFull);
                EXPECT_EQ(rotation.Load(failing.get()), k_DiskFull);
                EXPECT_EQ(FieldsOf(rotation), before);
                EXPECT_EQ(CountReferences(*failing), 1UL);
                auto const cut =
                    MakeMemoryStream(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(readable)));
                EXPECT_EQ(rotation.Load(cut.get()), E_FAIL);
                EXPECT_EQ(FieldsOf(rotation), before);
            }
        }
    }
}

TYPED_TEST(CompactRotationStream, Load_of_an_unknown_form_reads_no_more_and_changes_nothing)
{
    using T = TypeParam;
    for (int rep = 3; rep < 256; ++rep)
    {
        for (C3DRotation3Tpl<T> & rotation : MakeEach<T>())
        {
            Fields<T> const before = FieldsOf(rotation);
            auto const stream = MakeMemoryStream(Record<T>(rep, {1, 2, 3, 4}));
            EXPECT_EQ(rotation.Load(stream.get()), S_OK);
            EXPECT_EQ(FieldsOf(rotation), before);
            EXPECT_EQ(GetPosition(*stream), 1U);
        }
    }
}

// --- Text ------------------------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationStream, The_text_is_that_of_the_quaternion)
{
    using T = TypeParam;
    EXPECT_EQ(TextOf(MakeQuat<T>()), "( W:1.5  X:-0.5  Y:2  Z:0.25 )");
    EXPECT_EQ(TextOf(C3DRotation3Tpl<T>(E3D_AXIS_X, T(k_Pi / 2))), "( W:0.707107  X:0.707107  Y:0  Z:0 )");
    EXPECT_EQ(TextOf(C3DRotation3Tpl<T>(C3DVector3Tpl<T>(0, 0, -3), T(k_Pi / 2))),
              "( W:0.707107  X:0  Y:0  Z:-0.707107 )");
    EXPECT_EQ(TextOf(WithUnknownForm(MakeQuat<T>())), "( W:1  X:0  Y:0  Z:0 )");
}

TYPED_TEST(CompactRotationStream, Text_reads_as_a_quaternion)
{
    using T = TypeParam;
    for (C3DRotation3Tpl<T> & rotation : MakeEach<T>())
    {
        std::istringstream stream(" 1 -2\n3e2\t0.5 9");
        EXPECT_EQ(&(stream >> rotation), &stream);
        EXPECT_EQ(FieldsOf(rotation), QuatFields(C3DQuatTpl<T>(1, -2, 300, T(0.5))));
        int next = 0;
        stream >> next;
        EXPECT_EQ(next, 9);
    }
}

TYPED_TEST(CompactRotationStream, A_stream_that_has_failed_gives_the_identity)
{
    using T = TypeParam;
    for (auto const state : {std::ios::failbit, std::ios::badbit, std::ios::eofbit})
    {
        C3DRotation3Tpl<T> rotation = MakeEuler<T>();
        std::istringstream stream("1 2 3 4");
        stream.setstate(state);
        stream >> rotation;
        EXPECT_EQ(FieldsOf(rotation), QuatFields(C3DQuatTpl<T>()));
        EXPECT_TRUE(stream.fail());
    }
    C3DRotation3Tpl<T> rotation = MakeEuler<T>();
    std::istringstream parenthesis(TextOf(rotation));
    parenthesis >> rotation;
    EXPECT_TRUE(parenthesis.fail()) << "what was written cannot be read back";
    EXPECT_EQ(rotation.GetRepresentation(), E3DRotRep_Quat);
}

TYPED_TEST(CompactRotationStream, DumpQuat)
{
    using T = TypeParam;
    using R = C3DRotation3Tpl<T>;
    EXPECT_EQ(TextOf(MakeQuat<T>(), &R::DumpQuat, L"elbow"), "elbow\nQuaternion( W:1.5  X:-0.5  Y:2  Z:0.25 )\n");
    EXPECT_EQ(TextOf(R(0, 0, 0, E3DROTORDER_XYZ), &R::DumpQuat), "Quaternion( W:1  X:0  Y:0  Z:0 )\n");
    EXPECT_EQ(TextOf(R(), &R::DumpQuat, L""), "\nQuaternion( W:1  X:0  Y:0  Z:0 )\n") << "an empty name has a line";
}

TYPED_TEST(CompactRotationStream, DumpAxisAngle)
{
    using T = TypeParam;
    using R = C3DRotation3Tpl<T>;
    EXPECT_EQ(TextOf(R(C3DVector3Tpl<T>(1, -2, 3), T(k_Pi)), &R::DumpAxisAngle, L"knee"),
              "knee\nAxis( 1 -2 3 ), Angle(180)\n");
    EXPECT_EQ(TextOf(R(E3D_AXIS_Z, T(-k_Pi / 2)), &R::DumpAxisAngle), "Axis( 0 0 -1 ), Angle(90)\n");
    EXPECT_EQ(TextOf(R(), &R::DumpAxisAngle), "Axis( 1 0 0 ), Angle(0)\n");
    EXPECT_EQ(TextOf(WithUnknownForm(R()), &R::DumpAxisAngle), "Axis( 1 0 0 ), Angle(0)\n");
}

TYPED_TEST(CompactRotationStream, DumpXYZAngles)
{
    using T = TypeParam;
    using R = C3DRotation3Tpl<T>;
    char const * const names[6] = {"xyz", "xzy", "yxz", "yzx", "zxy", "zyx"};
    for (int order = 0; order < 6; ++order)
    {
        EXPECT_EQ(TextOf(R(T(k_Pi), T(-k_Pi / 2), T(4 * k_Pi), k_Orders[static_cast<std::size_t>(order)]),
                         &R::DumpXYZAngles, L"hip"),
                  std::string("hip\nEuler(180-90720, Order(") + names[order] + ")\n");
    }
    EXPECT_EQ(TextOf(R(C3DVector3Tpl<T>(0, 0, 1), T(0.5)), &R::DumpXYZAngles).substr(0, 6), "Euler(");
    EXPECT_NE(TextOf(R(C3DVector3Tpl<T>(0, 0, 1), T(0.5)), &R::DumpXYZAngles).find("28.6479, Order(xyz)\n"),
              std::string::npos);
    EXPECT_EQ(TextOf(R(1, 0, 0, k_NoOrder), &R::DumpXYZAngles), "Euler(57.295800, Order()\n");
    EXPECT_EQ(TextOf(WithUnknownForm(MakeEuler<T>()), &R::DumpXYZAngles), "Euler(000, Order(xyz)\n");
}

TYPED_TEST(CompactRotationStream, Dumps_keep_the_format_of_the_stream_and_the_rotation)
{
    using T = TypeParam;
    for (C3DRotation3Tpl<T> const & rotation : MakeEach<T>())
    {
        Fields<T> const before = FieldsOf(rotation);
        std::ostringstream stream;
        stream << std::fixed << std::setprecision(12);
        rotation.DumpQuat(nullptr, stream);
        rotation.DumpAxisAngle(nullptr, stream);
        rotation.DumpXYZAngles(nullptr, stream);
        EXPECT_EQ(stream.precision(), 12);
        EXPECT_EQ(FieldsOf(rotation), before);
    }
    // The degrees are computed in double.
    std::ostringstream axisAngle;
    axisAngle << std::setprecision(15);
    C3DRotation3Tpl<T>(C3DVector3Tpl<T>(0, 1, 0), T(1)).DumpAxisAngle(nullptr, axisAngle);
    EXPECT_EQ(axisAngle.str(), "Axis( 0 1 0 ), Angle(57.2957795130823)\n");
    std::ostringstream stream;
    stream << std::setprecision(15);
    C3DRotation3Tpl<T>(T(0.5), T(0.25), 1, E3DROTORDER_XYZ).DumpXYZAngles(nullptr, stream);
    EXPECT_EQ(stream.str(), "Euler(28.647889756541214.323944878270657.2957795130823, Order(xyz)\n");
}
