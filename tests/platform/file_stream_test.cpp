#include "math/platform/file_stream.h"

#include "math/platform/stream_helper.h"
#include "support/streams.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

#include <sys/stat.h>

namespace
{

using Access = CFileStream::Access;
using FilePointer = test_support::StreamPointer<CFileStream>;
using test_support::GetPosition;

/// A folder of its own for every test, removed at its end.
class FileStream : public testing::Test
{
protected:
    FileStream()
        : folder(std::filesystem::path(testing::TempDir()) /
                 (std::string("math_file_stream_") + testing::UnitTest::GetInstance()->current_test_info()->name()))
    {
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    ~FileStream() override { std::filesystem::remove_all(folder); }

    FilePointer Open(Access access) const { return FilePointer(CFileStream::Open(path().c_str(), access)); }
    std::string path() const { return (folder / "stream").string(); }

    void SetContent(std::string const & content) const { std::ofstream(path(), std::ios::binary) << content; }
    std::string GetContent() const
    {
        std::ifstream file(path(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::filesystem::path folder;
};

TEST_F(FileStream, Is_not_opened_for_a_file_that_is_missing)
{
    EXPECT_EQ(Open(Access::Read), nullptr);
    EXPECT_EQ(Open(Access::Update), nullptr);
    EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(FileStream, Is_not_opened_for_a_null_path_a_folder_or_an_unknown_access)
{
    SetContent("abc");
    EXPECT_EQ(CFileStream::Open(nullptr, Access::Read), nullptr);
    EXPECT_EQ(CFileStream::Open(folder.string().c_str(), Access::Create), nullptr);
    EXPECT_EQ(CFileStream::Open(folder.string().c_str(), Access::Update), nullptr);
    EXPECT_EQ(CFileStream::Open((folder / "no" / "stream").string().c_str(), Access::Create), nullptr);
    EXPECT_EQ(Open(static_cast<Access>(3)), nullptr);
}

TEST_F(FileStream, Create_makes_or_empties_the_file)
{
    SetContent("abc");
    auto const stream = Open(Access::Create);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(GetContent(), "");
    EXPECT_EQ(stream->Write("xy", 2, nullptr), S_OK);
    EXPECT_EQ(GetContent(), "xy") << "what was written has left the process";
}

TEST_F(FileStream, Update_keeps_the_content)
{
    SetContent("abcd");
    auto const stream = Open(Access::Update);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(stream->Seek(1, STREAM_SEEK_SET, nullptr), S_OK);
    EXPECT_EQ(stream->Write("X", 1, nullptr), S_OK);
    EXPECT_EQ(GetContent(), "aXcd");
}

TEST_F(FileStream, Reads_and_writes_in_turn)
{
    SetContent("abcdef");
    auto const stream = Open(Access::Update);
    ASSERT_NE(stream, nullptr);
    std::array<char, 2> target{};
    EXPECT_EQ(stream->Read(target.data(), 2, nullptr), S_OK);
    EXPECT_EQ(stream->Write("XY", 2, nullptr), S_OK);
    EXPECT_EQ(stream->Read(target.data(), 2, nullptr), S_OK);
    EXPECT_EQ(target, (std::array<char, 2>{'e', 'f'}));
    EXPECT_EQ(stream->Write("Z", 1, nullptr), S_OK);
    EXPECT_EQ(GetContent(), "abXYefZ");
}

TEST_F(FileStream, A_read_near_the_end_gives_what_there_is_and_sees_later_growth)
{
    SetContent("abc");
    auto const stream = Open(Access::Update);
    ASSERT_NE(stream, nullptr);
    std::array<char, 8> target{};
    unsigned long done = 0;
    EXPECT_EQ(stream->Read(target.data(), 8, &done), S_FALSE);
    EXPECT_EQ(done, 3U);
    EXPECT_EQ(stream->Read(target.data(), 8, &done), S_FALSE);
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(stream->Write("d", 1, nullptr), S_OK);
    EXPECT_EQ(stream->Seek(-1, STREAM_SEEK_END, nullptr), S_OK);
    EXPECT_EQ(stream->Read(target.data(), 1, &done), S_OK);
    EXPECT_EQ(target[0], 'd');
}

TEST_F(FileStream, Reads_more_than_one_block_and_stops_at_the_end_for_the_largest_count)
{
    std::string content(200000, '\0');
    for (std::size_t i = 0; i < content.size(); ++i)
    {
        content[i] = static_cast<char>(i % 251);
    }
    SetContent(content);
    auto const stream = Open(Access::Read);
    ASSERT_NE(stream, nullptr);
    std::string target(content.size() + (1U << 16), '\0');
    unsigned long done = 0;
    EXPECT_EQ(stream->Read(target.data(), static_cast<unsigned long>(content.size()), &done), S_OK);
    EXPECT_EQ(done, content.size());
    EXPECT_EQ(target.substr(0, done), content);
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(stream->Read(target.data(), std::numeric_limits<unsigned long>::max(), &done), S_FALSE);
    EXPECT_EQ(done, content.size());
}

TEST_F(FileStream, Seeks_from_each_origin)
{
    SetContent("0123456789");
    auto const stream = Open(Access::Read);
    ASSERT_NE(stream, nullptr);
    unsigned long long position = 0;
    EXPECT_EQ(stream->Seek(4, STREAM_SEEK_SET, &position), S_OK);
    EXPECT_EQ(position, 4U);
    EXPECT_EQ(stream->Seek(-1, STREAM_SEEK_CUR, &position), S_OK);
    EXPECT_EQ(position, 3U);
    EXPECT_EQ(stream->Seek(-2, STREAM_SEEK_END, &position), S_OK);
    EXPECT_EQ(position, 8U);
    EXPECT_EQ(stream->Seek(1, STREAM_SEEK_CUR, nullptr), S_OK);
    EXPECT_EQ(GetPosition(*stream), 9U);
}

TEST_F(FileStream, A_refused_seek_keeps_the_position)
{
    SetContent("0123456789");
    auto const stream = Open(Access::Read);
    ASSERT_NE(stream, nullptr);
    stream->Seek(4, STREAM_SEEK_SET, nullptr);
    unsigned long long position = 77;
    EXPECT_EQ(stream->Seek(-1, STREAM_SEEK_SET, &position), E_INVALIDARG);
    EXPECT_EQ(stream->Seek(-5, STREAM_SEEK_CUR, &position), E_INVALIDARG);
    EXPECT_EQ(stream->Seek(-11, STREAM_SEEK_END, &position), E_INVALIDARG);
    EXPECT_EQ(stream->Seek(std::numeric_limits<long long>::max(), STREAM_SEEK_END, &position), E_INVALIDARG);
    EXPECT_EQ(stream->Seek(0, 3, &position), E_INVALIDARG);
    EXPECT_EQ(position, 77U);
    EXPECT_EQ(GetPosition(*stream), 4U);
}

TEST_F(FileStream, Beyond_the_end_nothing_is_read_and_a_write_fills_the_gap_with_zeros)
{
    auto const stream = Open(Access::Create);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(stream->Seek(3, STREAM_SEEK_SET, nullptr), S_OK);
    char target = 'x';
    unsigned long done = 9;
    EXPECT_EQ(stream->Read(&target, 1, &done), S_FALSE);
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(target, 'x');
    EXPECT_EQ(stream->Write("a", 1, nullptr), S_OK);
    EXPECT_EQ(GetContent(), std::string("\0\0\0a", 4));
}

TEST_F(FileStream, Null_buffers_are_refused_unless_nothing_is_asked_for)
{
    auto const stream = Open(Access::Create);
    ASSERT_NE(stream, nullptr);
    unsigned long done = 9;
    EXPECT_EQ(stream->Read(nullptr, 1, &done), E_POINTER);
    EXPECT_EQ(done, 0U);
    done = 9;
    EXPECT_EQ(stream->Write(nullptr, 1, &done), E_POINTER);
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(stream->Read(nullptr, 0, nullptr), S_OK);
    EXPECT_EQ(stream->Write(nullptr, 0, nullptr), S_OK);
}

TEST_F(FileStream, A_file_opened_for_reading_refuses_a_write)
{
    SetContent("abc");
    auto const stream = Open(Access::Read);
    ASSERT_NE(stream, nullptr);
    unsigned long done = 9;
    EXPECT_EQ(stream->Write("x", 1, &done), E_FAIL);
    EXPECT_EQ(done, 0U);
    char target = 0;
    EXPECT_EQ(stream->Read(&target, 1, nullptr), S_OK) << "reading goes on";
    EXPECT_EQ(target, 'a');
    EXPECT_EQ(GetContent(), "abc");
}

TEST_F(FileStream, Reading_a_folder_fails)
{
    FilePointer const stream(CFileStream::Open(folder.string().c_str(), Access::Read));
    if (stream == nullptr)
    {
        GTEST_SKIP() << "this system does not open folders";
    }
    char target = 'x';
    unsigned long done = 9;
    EXPECT_EQ(stream->Read(&target, 1, &done), E_FAIL);
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(target, 'x');
}

TEST_F(FileStream, A_full_disk_is_reported_by_the_write_that_meets_it)
{
    FilePointer const stream(CFileStream::Open("/dev/full", Access::Update));
    if (stream == nullptr)
    {
        GTEST_SKIP() << "no device that is always full";
    }
    unsigned long done = 9;
    EXPECT_EQ(stream->Write("x", 1, &done), E_FAIL);
    EXPECT_EQ(done, 0U);
    CKVStreamHelper helper(stream.get());
    EXPECT_EQ(helper.PutDouble(1), E_FAIL);
    EXPECT_EQ(helper.ChunkWriteOpen(1, 2), E_FAIL);
}

TEST_F(FileStream, A_pipe_is_read_and_written_but_has_no_position)
{
    ASSERT_EQ(mkfifo(path().c_str(), 0600), 0);
    auto const reader = Open(Access::Update);
    auto const writer = Open(Access::Update);
    ASSERT_NE(reader, nullptr);
    ASSERT_NE(writer, nullptr);
    EXPECT_EQ(writer->Write("ab", 2, nullptr), S_OK);
    char target = 0;
    EXPECT_EQ(reader->Read(&target, 1, nullptr), S_OK);
    EXPECT_EQ(target, 'a');
    unsigned long long position = 77;
    EXPECT_EQ(reader->Seek(0, STREAM_SEEK_CUR, &position), E_FAIL);
    EXPECT_EQ(position, 77U);
    unsigned long done = 9;
    EXPECT_EQ(reader->Write("c", 1, &done), E_FAIL) << "turning from reading to writing takes a position";
    EXPECT_EQ(done, 0U);
    EXPECT_EQ(writer->Read(&target, 1, &done), E_FAIL);
    EXPECT_EQ(done, 0U);
}

TEST_F(FileStream, Closes_with_the_last_reference)
{
    SetContent("abc");
    CFileStream * const stream = CFileStream::Open(path().c_str(), Access::Read);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(stream->AddRef(), 2U);
    EXPECT_EQ(stream->Release(), 1U);
    char target = 0;
    EXPECT_EQ(stream->Read(&target, 1, nullptr), S_OK);
    EXPECT_EQ(stream->Release(), 0U);
}

TEST_F(FileStream, Chunks_survive_the_way_through_a_file)
{
    {
        auto const stream = Open(Access::Create);
        ASSERT_NE(stream, nullptr);
        CKVStreamHelper helper(stream.get());
        EXPECT_EQ(helper.ChunkWriteOpen(0x54534554, 7), S_OK);
        EXPECT_EQ(helper.PutDouble(2.5), S_OK);
        EXPECT_EQ(helper.ChunkWriteClose(), S_OK);
        EXPECT_EQ(helper.PutUInt8(9), S_OK);
    }
    auto const stream = Open(Access::Read);
    ASSERT_NE(stream, nullptr);
    CKVStreamHelper helper(stream.get());
    unsigned long version = 0;
    double number = 0;
    unsigned char last = 0;
    EXPECT_EQ(helper.ChunkReadOpen(0x54534554, &version), S_OK);
    EXPECT_EQ(version, 7U);
    EXPECT_EQ(helper.GetDouble(&number), S_OK);
    EXPECT_EQ(number, 2.5);
    EXPECT_EQ(helper.ChunkReadClose(), S_OK);
    EXPECT_EQ(helper.GetUInt8(&last), S_OK);
    EXPECT_EQ(last, 9);
}

} // namespace
