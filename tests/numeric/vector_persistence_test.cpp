/// Binary records and text forms of the vectors.

#include "math/platform/stream_helper.h"
#include "math/vector2.h"
#include "math/vector3.h"
#include "math/vector4.h"
#include "numeric/vector_checks.h"
#include "support/streams.h"

#include <bit>
#include <iomanip>
#include <sstream>
#include <string>
#include <type_traits>

using namespace test_support;

namespace
{

using PersistedTypes = testing::Types<C3DVector2Tpl<float>, C3DVector2Tpl<double>, C3DVector3Tpl<float>,
                                      C3DVector3Tpl<double>, C3DVector4Tpl<float>, C3DVector4Tpl<double>>;

/// The three-component vector leads with a version byte and looks at the results of the stream.
template <typename Vector>
constexpr bool is_checked = VectorTraits<Vector>::stored == 3;
template <typename Vector>
constexpr unsigned long prefix = is_checked<Vector> ? 1 : 0;
template <typename Vector>
constexpr unsigned long record_size = prefix<Vector> + VectorTraits<Vector>::stored * sizeof(ScalarOf<Vector>);
/// A version byte and the scalars, each by a call of its own.
template <typename Vector>
constexpr unsigned long call_count = prefix<Vector> + VectorTraits<Vector>::stored;

template <typename T>
void AppendLittleEndian(Bytes & bytes, T value)
{
    using Bits = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;
    Bits bits = std::bit_cast<Bits>(value);
    for (unsigned long i = 0; i < sizeof(T); ++i, bits >>= 8)
    {
        bytes.push_back(static_cast<unsigned char>(bits & 0xFFU));
    }
}

template <typename Vector>
Bytes RecordOf(Vector const & v)
{
    Bytes bytes(prefix<Vector>, 0);
    for (ScalarOf<Vector> const component : Components(v))
    {
        AppendLittleEndian(bytes, component);
    }
    return bytes;
}

template <typename Vector>
Vector Sample()
{
    return Make<Vector>(0.1, -2.5, 1e30, 7);
}

/// Content that a reader may or may not overwrite.
template <typename Vector>
Vector Previous()
{
    return Make<Vector>(101, 103, 107, 109);
}

/// What a target holds after the first `scalars` components were read.
template <typename Vector>
ComponentsOf<Vector> PartlyRead(unsigned long scalars)
{
    auto expected = Components(Previous<Vector>());
    for (unsigned long i = 0; i < scalars; ++i)
    {
        expected[i] = Components(Sample<Vector>())[i];
    }
    return expected;
}

/// Of `count` bytes of a record, the scalars that are complete.
template <typename Vector>
unsigned long CompleteScalars(unsigned long count)
{
    return count < prefix<Vector> ? 0 : (count - prefix<Vector>) / sizeof(ScalarOf<Vector>);
}

/// A stream that counts its calls and fails a single one of them, without a transfer.
class OneFailureStream final : public math::detail::CountedStream
{
public:
    OneFailureStream(StreamPointer<CMemoryStream> memory, unsigned long failing_call, long code)
        : m_memory(std::move(memory)), m_failing_call(failing_call), m_code(code)
    {
    }
    long Read(void * target, unsigned long count, unsigned long * done) override
    {
        return calls++ == m_failing_call ? m_code : m_memory->Read(target, count, done);
    }
    long Write(void const * source, unsigned long count, unsigned long * done) override
    {
        return calls++ == m_failing_call ? m_code : m_memory->Write(source, count, done);
    }
    long Seek(long long distance, unsigned long origin, unsigned long long * position) override
    {
        return m_memory->Seek(distance, origin, position);
    }
    CMemoryStream & GetMemory() { return *m_memory; }

    unsigned long calls = 0; ///< Of `Read` and `Write`.

private:
    StreamPointer<CMemoryStream> m_memory;
    unsigned long m_failing_call;
    long m_code;
};

StreamPointer<OneFailureStream> MakeOneFailureStream(unsigned long failing_call, long code, Bytes const & bytes = {})
{
    return StreamPointer<OneFailureStream>(new OneFailureStream(MakeMemoryStream(bytes), failing_call, code));
}

template <typename Vector>
class VectorRecord : public testing::Test
{
};
TYPED_TEST_SUITE(VectorRecord, PersistedTypes);

} // namespace

TEST(Vector3Record, Bytes_of_a_double_vector)
{
    auto const stream = MakeMemoryStream();
    EXPECT_EQ(C3DVector3Tpl<double>(1.0, -2.5, 0.1).Save(stream.get(), 0), S_OK);
    EXPECT_EQ(GetBytes(*stream), (Bytes{0,                                              //
                                        0,    0,    0,    0,    0,    0,    0xF0, 0x3F, //
                                        0,    0,    0,    0,    0,    0,    0x04, 0xC0, //
                                        0x9A, 0x99, 0x99, 0x99, 0x99, 0x99, 0xB9, 0x3F}));
}

TEST(Vector3Record, Bytes_of_a_float_vector)
{
    auto const stream = MakeMemoryStream();
    EXPECT_EQ(C3DVector3Tpl<float>(1.0F, -2.5F, 0.1F).Save(stream.get(), 0), S_OK);
    EXPECT_EQ(GetBytes(*stream), (Bytes{0,                //
                                        0, 0, 0x80, 0x3F, //
                                        0, 0, 0x20, 0xC0, //
                                        0xCD, 0xCC, 0xCC, 0x3D}));
}

TEST(VectorRecordSize, Is_that_of_the_scalars_and_a_version_byte_of_the_three_component_vector)
{
    static_assert(record_size<C3DVector3Tpl<double>> == 25 && record_size<C3DVector3Tpl<float>> == 13);
    static_assert(record_size<C3DVector2Tpl<double>> == 16 && record_size<C3DVector2Tpl<float>> == 8);
    static_assert(record_size<C3DVector4Tpl<double>> == 32 && record_size<C3DVector4Tpl<float>> == 16);
}

TYPED_TEST(VectorRecord, Save_writes_the_scalars_in_order)
{
    auto const stream = MakeMemoryStream();
    auto const v = Sample<TypeParam>();
    EXPECT_EQ(v.Save(stream.get(), 0), S_OK);
    EXPECT_EQ(GetBytes(*stream), RecordOf(v));
    EXPECT_EQ(GetPosition(*stream), record_size<TypeParam>);
    EXPECT_EQ(CountReferences(*stream), 1U);
}

TYPED_TEST(VectorRecord, Save_reads_no_format)
{
    for (int const format : {-1, 0, 1, 42})
    {
        auto const stream = MakeMemoryStream();
        EXPECT_EQ(Sample<TypeParam>().Save(stream.get(), format), S_OK);
        EXPECT_EQ(GetBytes(*stream), RecordOf(Sample<TypeParam>())) << format;
    }
}

TYPED_TEST(VectorRecord, Load_reads_what_Save_wrote)
{
    auto const stream = MakeMemoryStream();
    using T = ScalarOf<TypeParam>;
    auto special = Make<TypeParam>(-0.0, k_Infinity<double>, 0, 1);
    special[VectorTraits<TypeParam>::stored - 1] = -k_NaN<T>;
    EXPECT_EQ(Sample<TypeParam>().Save(stream.get(), 0), S_OK);
    EXPECT_EQ(special.Save(stream.get(), 0), S_OK);
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    auto first = Previous<TypeParam>();
    auto second = Previous<TypeParam>();
    EXPECT_EQ(first.Load(stream.get()), S_OK);
    EXPECT_EQ(GetPosition(*stream), record_size<TypeParam>);
    EXPECT_EQ(second.Load(stream.get()), S_OK);
    EXPECT_EQ(GetPosition(*stream), 2 * record_size<TypeParam>);
    EXPECT_TRUE(HasSameBytes(first, Sample<TypeParam>()));
    EXPECT_TRUE(HasSameBytes(second, special));
    EXPECT_EQ(CountReferences(*stream), 1U);
}

TYPED_TEST(VectorRecord, Null_stream_is_an_invalid_argument_only_to_the_class_that_checks)
{
    auto target = Previous<TypeParam>();
    long const expected = is_checked<TypeParam> ? E_INVALIDARG : S_OK;
    EXPECT_EQ(target.Save(nullptr, 0), expected);
    EXPECT_EQ(target.Load(nullptr), expected);
    EXPECT_TRUE(HasSameBytes(target, Previous<TypeParam>()));
}

TYPED_TEST(VectorRecord, Save_that_fails_at_any_byte_leaves_what_was_written)
{
    Bytes const whole = RecordOf(Sample<TypeParam>());
    for (unsigned long count = 0; count < record_size<TypeParam>; ++count)
    {
        for (long const code : {E_FAIL, E_OUTOFMEMORY, S_OK})
        {
            auto const stream = MakeStreamFailingOnWrite(count, code);
            // A stream that writes less than asked for, and says nothing of it, has failed too.
            long const expected = is_checked<TypeParam> ? (code < 0 ? code : E_FAIL) : S_OK;
            EXPECT_EQ(Sample<TypeParam>().Save(stream.get(), 0), expected) << count;
            EXPECT_EQ(GetBytes(stream->GetMemory()), Bytes(whole.begin(), whole.begin() + static_cast<long>(count)));
            EXPECT_EQ(CountReferences(*stream), 1U);
        }
    }
    auto const stream = MakeStreamFailingOnWrite(record_size<TypeParam>);
    EXPECT_EQ(Sample<TypeParam>().Save(stream.get(), 0), S_OK);
}

TYPED_TEST(VectorRecord, Load_that_fails_at_any_byte_keeps_the_components_read_so_far)
{
    Bytes const whole = RecordOf(Sample<TypeParam>());
    for (unsigned long count = 0; count < record_size<TypeParam>; ++count)
    {
        for (long const code : {E_FAIL, E_UNEXPECTED})
        {
            auto const stream = MakeStreamFailingOnRead(whole, count, code);
            auto target = Previous<TypeParam>();
            EXPECT_EQ(target.Load(stream.get()), is_checked<TypeParam> ? code : S_OK) << count;
            EXPECT_EQ(Components(target), PartlyRead<TypeParam>(CompleteScalars<TypeParam>(count))) << count;
            EXPECT_EQ(CountReferences(*stream), 1U);
        }
    }
    auto const stream = MakeStreamFailingOnRead(whole, record_size<TypeParam>);
    auto target = Previous<TypeParam>();
    EXPECT_EQ(target.Load(stream.get()), S_OK);
    EXPECT_TRUE(HasSameBytes(target, Sample<TypeParam>()));
}

TYPED_TEST(VectorRecord, Load_at_the_end_of_the_stream_keeps_the_components_read_so_far)
{
    Bytes const whole = RecordOf(Sample<TypeParam>());
    for (unsigned long count = 0; count < record_size<TypeParam>; ++count)
    {
        auto const stream = MakeMemoryStream(std::span(whole).first(count));
        auto target = Previous<TypeParam>();
        EXPECT_EQ(target.Load(stream.get()), is_checked<TypeParam> ? E_FAIL : S_OK) << count;
        EXPECT_EQ(Components(target), PartlyRead<TypeParam>(CompleteScalars<TypeParam>(count))) << count;
    }
}

TYPED_TEST(VectorRecord, Save_stops_at_the_first_failure_only_in_the_class_that_checks)
{
    for (unsigned long call = 0; call < call_count<TypeParam>; ++call)
    {
        auto const stream = MakeOneFailureStream(call, E_UNEXPECTED);
        EXPECT_EQ(Sample<TypeParam>().Save(stream.get(), 0), is_checked<TypeParam> ? E_UNEXPECTED : S_OK) << call;
        EXPECT_EQ(stream->calls, is_checked<TypeParam> ? call + 1 : call_count<TypeParam>) << call;
        Bytes expected = RecordOf(Sample<TypeParam>());
        if (is_checked<TypeParam>)
        {
            expected.resize(call == 0 ? 0 : prefix<TypeParam> + (call - 1) * sizeof(ScalarOf<TypeParam>));
        }
        else
        {
            auto const lost = expected.begin() + static_cast<long>(call * sizeof(ScalarOf<TypeParam>));
            expected.erase(lost, lost + sizeof(ScalarOf<TypeParam>));
        }
        EXPECT_EQ(GetBytes(stream->GetMemory()), expected) << call;
    }
}

TYPED_TEST(VectorRecord, Load_stops_at_the_first_failure_only_in_the_class_that_checks)
{
    Bytes const whole = RecordOf(Sample<TypeParam>());
    for (unsigned long call = 0; call < call_count<TypeParam>; ++call)
    {
        auto const stream = MakeOneFailureStream(call, E_UNEXPECTED, whole);
        auto target = Previous<TypeParam>();
        EXPECT_EQ(target.Load(stream.get()), is_checked<TypeParam> ? E_UNEXPECTED : S_OK) << call;
        EXPECT_EQ(stream->calls, is_checked<TypeParam> ? call + 1 : call_count<TypeParam>) << call;
        if (is_checked<TypeParam>)
        {
            EXPECT_EQ(Components(target), PartlyRead<TypeParam>(call == 0 ? 0 : call - 1)) << call;
        }
        else
        {
            // The component that could not be read stays, and the next ones take what the stream goes on with.
            auto expected = PartlyRead<TypeParam>(call);
            for (unsigned long i = call + 1; i < expected.size(); ++i)
            {
                expected[i] = Components(Sample<TypeParam>())[i - 1];
            }
            EXPECT_EQ(Components(target), expected) << call;
        }
    }
}

TEST(Vector3Record, Version_byte_is_not_looked_at)
{
    C3DVector3Tpl<double> const v(1.0, 2.0, 3.0);
    for (int const version : {0, 1, 127, 128, 255})
    {
        Bytes bytes = RecordOf(v);
        bytes[0] = static_cast<unsigned char>(version);
        auto const stream = MakeMemoryStream(bytes);
        C3DVector3Tpl<double> target(0.0, 0.0, 0.0);
        EXPECT_EQ(target.Load(stream.get()), S_OK);
        EXPECT_EQ(Components(target), Components(v)) << version;
    }
}

namespace
{

template <typename Vector>
std::string DumpOf(Vector const & v, wchar_t const * label)
{
    std::ostringstream stream;
    v.Dump(label, stream);
    return stream.str();
}

template <typename Vector>
std::string TextOf(Vector const & v)
{
    std::ostringstream stream;
    stream << v;
    return stream.str();
}

/// (1, -2.5, 1/3, 1e20) with six significant digits.
template <typename Vector>
std::string SampleText()
{
    switch (VectorTraits<Vector>::stored)
    {
    case 2:
        return "( 1 -2.5 )";
    case 3:
        return "( 1 -2.5 0.333333 )";
    default:
        return "( 1 -2.5 0.333333 1e+20 )";
    }
}

template <typename Vector>
Vector TextSample()
{
    return Make<Vector>(1, -2.5, 1.0 / 3, 1e20);
}

/// What Dump prints of that sample.
template <typename Vector>
std::string SampleDump(std::string const & label_line = "")
{
    std::string text = label_line;
    text += SampleText<Vector>();
    text += "\n \n";
    return text;
}

template <typename Vector>
concept Printable = requires(std::ostream & stream, Vector const & v)
{
    stream << v;
};
template <typename Vector>
concept Readable = requires(std::istream & stream, Vector & v)
{
    stream >> v;
};

} // namespace

TYPED_TEST(VectorRecord, Dump_without_a_label_ends_with_a_line_of_one_blank)
{
    EXPECT_EQ(DumpOf(TextSample<TypeParam>(), nullptr), SampleDump<TypeParam>());
}

TYPED_TEST(VectorRecord, Dump_puts_the_label_on_a_line_of_its_own)
{
    EXPECT_EQ(DumpOf(TextSample<TypeParam>(), L"left hand"), SampleDump<TypeParam>("left hand\n"));
    EXPECT_EQ(DumpOf(TextSample<TypeParam>(), L""), SampleDump<TypeParam>("\n"));
}

TYPED_TEST(VectorRecord, Dump_writes_labels_that_need_more_bytes_than_characters)
{
    EXPECT_EQ(DumpOf(TextSample<TypeParam>(), L"\u00e9\u4e16\U0001F600"),
              SampleDump<TypeParam>("\xC3\xA9\xE4\xB8\x96\xF0\x9F\x98\x80\n"));
    std::wstring const wide(10000, L'\u4e16');
    std::string narrow;
    for (int i = 0; i < 10000; ++i)
    {
        narrow += "\xE4\xB8\x96";
    }
    narrow += '\n';
    EXPECT_EQ(DumpOf(TextSample<TypeParam>(), wide.c_str()), SampleDump<TypeParam>(narrow));
}

TYPED_TEST(VectorRecord, Dump_uses_the_number_format_of_the_stream_and_leaves_it)
{
    std::ostringstream stream;
    stream << std::setprecision(2) << std::scientific << std::showpos;
    auto const flags = stream.flags();
    Make<TypeParam>(1, 1, 1, 1).Dump(nullptr, stream);
    std::string expected = "(";
    for (unsigned long i = 0; i < VectorTraits<TypeParam>::stored; ++i)
    {
        expected += " +1.00e+00";
    }
    expected += " )\n \n";
    EXPECT_EQ(stream.str(), expected);
    EXPECT_EQ(stream.flags(), flags);
    EXPECT_EQ(stream.precision(), 2);
}

TEST(Vector3Text, Dump_of_a_plain_vector)
{
    EXPECT_EQ(DumpOf(C3DVector3Tpl<double>(1.0, 2.0, 3.0), nullptr), "( 1 2 3 )\n \n");
}

TEST(VectorText, Two_components_and_the_homogeneous_point_have_no_stream_operators)
{
    static_assert(!Printable<C3DVector2Tpl<double>> && !Readable<C3DVector2Tpl<double>>);
    static_assert(!Printable<C3DVector2Tpl<float>> && !Readable<C3DVector2Tpl<float>>);
    static_assert(!Printable<C3DVectorw> && !Readable<C3DVectorw>);
    static_assert(Printable<C3DVector3Tpl<double>> && Readable<C3DVector3Tpl<double>>);
    static_assert(Printable<C3DVector4Tpl<float>> && Readable<C3DVector4Tpl<float>>);
}

namespace
{

template <typename Vector>
class VectorText : public testing::Test
{
};
using TextTypes =
    testing::Types<C3DVector3Tpl<float>, C3DVector3Tpl<double>, C3DVector4Tpl<float>, C3DVector4Tpl<double>>;
TYPED_TEST_SUITE(VectorText, TextTypes);

} // namespace

TYPED_TEST(VectorText, Output_is_the_components_in_parentheses_without_an_end_of_line)
{
    EXPECT_EQ(TextOf(TextSample<TypeParam>()), SampleText<TypeParam>());
    std::ostringstream stream;
    EXPECT_EQ(&(stream << TextSample<TypeParam>()), &stream);
}

TYPED_TEST(VectorText, Input_is_bare_numbers_separated_by_white_space)
{
    std::istringstream stream("  1.5\n-2\t3e2 4\r\n5 6");
    auto target = Previous<TypeParam>();
    EXPECT_EQ(&(stream >> target), &stream);
    EXPECT_EQ(Components(target), Components(Make<TypeParam>(1.5, -2, 300, 4)));
    EXPECT_TRUE(stream.good());
    double next = 0;
    stream >> next;
    EXPECT_EQ(next, VectorTraits<TypeParam>::stored == 3 ? 4 : 5) << "nothing is read beyond the vector";
}

TYPED_TEST(VectorText, Input_may_end_with_the_last_number)
{
    std::istringstream stream(VectorTraits<TypeParam>::stored == 3 ? "1 2 3" : "1 2 3 4");
    auto target = Previous<TypeParam>();
    stream >> target;
    EXPECT_EQ(Components(target), Components(Make<TypeParam>(1, 2, 3, 4)));
    EXPECT_FALSE(stream.fail());
    EXPECT_TRUE(stream.eof());
}

TYPED_TEST(VectorText, Output_cannot_be_read_back)
{
    std::istringstream stream(TextOf(TextSample<TypeParam>()));
    auto target = Previous<TypeParam>();
    stream >> target;
    EXPECT_TRUE(stream.fail());
    stream.clear();
    EXPECT_EQ(stream.peek(), '(') << "it fails on the opening parenthesis";
}

TYPED_TEST(VectorText, Input_that_ends_too_early_fails)
{
    std::istringstream stream("1 2");
    auto target = Previous<TypeParam>();
    stream >> target;
    EXPECT_TRUE(stream.fail());
}
