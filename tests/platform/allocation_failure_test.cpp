#include "math/platform/file_stream.h"
#include "math/platform/qn_string.h"
#include "math/platform/stream_helper.h"
#include "math/platform/variant.h"
#include "math/safe_array.h"
#include "support/allocation_faults.h"
#include "support/streams.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <sstream>
#include <string>

namespace
{

using test_support::AllocationFaults;
using test_support::GetBytes;
using test_support::GetPosition;
using test_support::MakeMemoryStream;

/// Runs the operation with the allocation of this number refused, and gives its result once memory is back:
/// expectations allocate too.
template <typename Operation>
auto RefuseAllocation(long number, Operation const & operation)
{
    auto const faults = AllocationFaults::RefuseOne(number);
    return operation();
}

/// Blocks that the operation left behind when the allocation of this number was refused.
template <typename Operation>
long CountLeaks(long number, Operation const & operation)
{
    auto const faults = AllocationFaults::RefuseOne(number);
    operation();
    return faults.GetOutstanding();
}

TEST(AllocationFailure, Memory_stream_is_not_created)
{
    std::array<char, 100> const bytes{};
    EXPECT_EQ(RefuseAllocation(0, [] { return CMemoryStream::Create(); }), nullptr);
    for (long const count : {0L, 1L})
    {
        EXPECT_EQ(RefuseAllocation(count, [&] { return CMemoryStream::Create(bytes.data(), bytes.size()); }), nullptr);
        EXPECT_EQ(CountLeaks(count, [&] { CMemoryStream::Create(bytes.data(), bytes.size()); }), 0);
    }
}

TEST(AllocationFailure, Memory_stream_keeps_bytes_and_position)
{
    auto const stream = MakeMemoryStream(test_support::Bytes{1, 2});
    stream->Seek(1, STREAM_SEEK_SET, nullptr);
    std::array<char, 100> const bytes{};
    unsigned long done = 9;
    EXPECT_EQ(RefuseAllocation(0, [&] { return stream->Write(bytes.data(), 100, &done); }), E_OUTOFMEMORY);
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(GetBytes(*stream), (test_support::Bytes{1, 2}));
    EXPECT_EQ(GetPosition(*stream), 1U);
}

TEST(AllocationFailure, File_stream_is_not_opened)
{
    std::string const path = (std::filesystem::path(testing::TempDir()) / "math_allocation_failure").string();
    CFileStream * const stream =
        RefuseAllocation(0, [&] { return CFileStream::Open(path.c_str(), CFileStream::Access::Create); });
    std::filesystem::remove(path);
    EXPECT_EQ(stream, nullptr);
}

TEST(AllocationFailure, Chunks_are_not_opened_and_nothing_moves)
{
    auto const stream = MakeMemoryStream();
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(RefuseAllocation(0, [&] { return helper.ChunkWriteOpen(1, 2); }), E_OUTOFMEMORY);
    EXPECT_TRUE(stream->GetBytes().empty());
    EXPECT_EQ(helper.ChunkWriteClose(), E_FAIL);

    ASSERT_EQ(helper.ChunkWriteOpen(1, 2), S_OK);
    ASSERT_EQ(helper.ChunkWriteClose(), S_OK);
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    unsigned long version = 42;
    EXPECT_EQ(RefuseAllocation(0, [&] { return helper.ChunkReadOpen(1, &version); }), E_OUTOFMEMORY);
    EXPECT_EQ(version, 42U);
    EXPECT_EQ(GetPosition(*stream), 0U);
    EXPECT_EQ(helper.ChunkReadClose(), E_FAIL);
    EXPECT_EQ(helper.ChunkReadOpen(1, &version), S_OK);
}

TEST(AllocationFailure, Long_byte_arrays_are_not_read)
{
    auto const stream = MakeMemoryStream(test_support::Bytes(1000));
    CKVStreamHelper helper(stream.get());
    std::array<char, 1000> target{};
    target[0] = 'x';
    EXPECT_EQ(RefuseAllocation(0, [&] { return helper.GetByteArray(target.data(), 1000); }), E_OUTOFMEMORY);
    EXPECT_EQ(target[0], 'x');
    EXPECT_EQ(GetPosition(*stream), 0U);
    EXPECT_EQ(RefuseAllocation(0, [&] { return helper.GetByteArray(target.data(), 256); }), S_OK)
        << "short ones take no memory";
}

TEST(AllocationFailure, Safe_array_is_not_created)
{
    SAFEARRAYBOUND const bound{3, 0};
    for (long count = 0; count < 3; ++count)
    {
        EXPECT_EQ(RefuseAllocation(count, [&] { return SafeArrayCreate(VT_VARIANT, 1, &bound); }), nullptr) << count;
        EXPECT_EQ(CountLeaks(count, [&] { SafeArrayCreate(VT_VARIANT, 1, &bound); }), 0) << count;
    }
    SAFEARRAY * const array = RefuseAllocation(3, [&] { return SafeArrayCreate(VT_VARIANT, 1, &bound); });
    EXPECT_NE(array, nullptr);
    SafeArrayDestroy(array);
}

TEST(AllocationFailure, Vector_is_put_into_no_safe_array)
{
    C3DVector3Tpl<double> vector(1, 2, 3);
    SAFEARRAYBOUND const bound{1, 0};
    SAFEARRAY * const before = SafeArrayCreate(VT_R8, 1, &bound);
    KVVARIANT result{};
    result.vt = VT_ARRAY | VT_R8;
    result.parray = before;
    auto const convert = [&] { return F3DGetSafeArrayFromC3DVector3(vector, &result); };
    for (long number = 0; number < 3; ++number)
    {
        EXPECT_EQ(CountLeaks(number, convert), 0) << number;
        EXPECT_EQ(RefuseAllocation(number, convert), E_OUTOFMEMORY) << number;
        EXPECT_EQ(result.vt, VT_ARRAY | VT_R8) << number;
        EXPECT_EQ(result.parray, before) << number;
    }
    SafeArrayDestroy(before);
}

TEST(AllocationFailure, Dump_skips_its_label_and_the_end_of_its_line)
{
    C3DVector3Tpl<double> const vector(1, 2, 3);
    auto const dump = [&vector](std::ostringstream & stream) { vector.Dump(L"label", stream); };
    std::ostringstream refused;
    RefuseAllocation(0, [&] { dump(refused); });
    EXPECT_EQ(refused.str(), "( 1 2 3 )\n \n");
    EXPECT_TRUE(refused.good());
    std::ostringstream allowed;
    dump(allowed);
    EXPECT_EQ(allowed.str(), "label\n( 1 2 3 )\n \n");
}

TEST(AllocationFailure, String_is_empty_or_keeps_its_text)
{
    wchar_t const * const text = L"a text too long for any small buffer inside the string";
    CQNString const source(text);
    CQNString target(L"former");
    CQNString const made = RefuseAllocation(0, [&] { return CQNString(text); });
    CQNString const copied = RefuseAllocation(0, [&] { return CQNString(source); });
    RefuseAllocation(0, [&] { return (target = source).GetWideString(); });
    EXPECT_STREQ(made.GetWideString(), L"");
    EXPECT_STREQ(copied.GetWideString(), L"");
    EXPECT_STREQ(target.GetWideString(), L"former");
}

} // namespace
