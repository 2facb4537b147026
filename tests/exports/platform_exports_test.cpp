#include "exports/exported.h"

#include "math/platform/file_stream.h"
#include "math/platform/memory_stream.h"
#include "math/platform/qn_string.h"
#include "math/platform/stream_helper.h"
#include "math/platform/task_memory.h"
#include "math/platform/text.h"
#include "math/platform/variant.h"

#include <cstddef>
#include <span>

using exported::Constructor;
using exported::Function;
using exported::Member;

TEST(Exports, Streams)
{
    Function<CMemoryStream *()>(&CMemoryStream::Create);
    Function<CMemoryStream *(void const *, std::size_t)>(&CMemoryStream::Create);
    Member<std::span<unsigned char const>() const>(&CMemoryStream::GetBytes);
    Function<CFileStream *(char const *, CFileStream::Access)>(&CFileStream::Open);
}

// Its operations are virtual and have no address of their own to take; qualified calls name each symbol.
TEST(Exports, Stream_helper)
{
    CKVStreamHelper helper(nullptr);
    long results = 0;
    unsigned char byte = 0;
    char character = 0;
    int truth = 0;
    float single = 0;
    double number = 0;
    unsigned long value = 0;
    results |= helper.CKVStreamHelper::PutUInt8(byte);
    results |= helper.CKVStreamHelper::GetUInt8(&byte);
    results |= helper.CKVStreamHelper::PutInt8(character);
    results |= helper.CKVStreamHelper::GetInt8(&character);
    results |= helper.CKVStreamHelper::PutBool(truth);
    results |= helper.CKVStreamHelper::PutBool(true);
    results |= helper.CKVStreamHelper::GetBool(&truth);
    results |= helper.CKVStreamHelper::PutFloat(single);
    results |= helper.CKVStreamHelper::GetFloat(&single);
    results |= helper.CKVStreamHelper::PutDouble(number);
    results |= helper.CKVStreamHelper::GetDouble(&number);
    results |= helper.CKVStreamHelper::PutByteArray(&character, 1);
    results |= helper.CKVStreamHelper::GetByteArray(&character, 1);
    results |= helper.CKVStreamHelper::GetPos(&value);
    results |= helper.CKVStreamHelper::MovePos(STMHELPERDIR_BACK, 0);
    results |= helper.CKVStreamHelper::ChunkWriteOpen(0, 0);
    results |= helper.CKVStreamHelper::ChunkWriteClose();
    results |= helper.CKVStreamHelper::ChunkReadOpen(0, &value);
    results |= helper.CKVStreamHelper::ChunkReadClose();
    EXPECT_EQ(results, E_FAIL) << "a helper on a null stream fails in all it does";
}

TEST(Exports, Strings_and_memory)
{
    CQNString const string(L"");
    Constructor<CQNString>(string);
    Member<CQNString &(CQNString const &)>(&CQNString::operator=);
    Member<wchar_t const *() const>(&CQNString::GetWideString);
    Function(&CharToOemW);
    Function(&CoTaskMemAlloc);
    Function(&CoTaskMemFree);
}

TEST(Exports, Safe_array_calls)
{
    Function(&SafeArrayCreate);
    Function(&SafeArrayDestroy);
    Function(&SafeArrayGetDim);
    Function(&SafeArrayGetLBound);
    Function(&SafeArrayGetUBound);
    Function(&SafeArrayGetElement);
    Function(&SafeArrayPutElement);
}
