#include "clip/input.h"

#include "examples/scratch_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <ios>
#include <istream>
#include <sstream>
#include <streambuf>
#include <string>
#include <system_error>

namespace
{

/// One block of text, then a failure.
class FailingBuffer : public std::streambuf
{
protected:
    std::streamsize xsgetn(char * target, std::streamsize count) override
    {
        if (m_IsSpent)
        {
            throw std::ios_base::failure("no more");
        }
        m_IsSpent = true;
        std::fill_n(target, count, 'x');
        return count;
    }
    int_type underflow() override { throw std::ios_base::failure("no more"); }

private:
    bool m_IsSpent = false;
};

TEST(Input, A_stream_is_read_to_its_end_byte_for_byte)
{
    std::string every;
    for (int i = 0; i < 256; ++i)
    {
        every += static_cast<char>(i);
    }
    // Around the size of the blocks in which it is read.
    for (std::size_t const size : {0U, 1U, 65535U, 65536U, 65537U, 200000U})
    {
        std::string text;
        while (text.size() < size)
        {
            text += every;
        }
        text.resize(size);
        std::istringstream stream(text);
        EXPECT_TRUE(clip::ReadAll(stream, "stream") == text) << size;
    }
}

TEST(Input, A_stream_that_fails_is_named)
{
    FailingBuffer buffer;
    std::istream stream(&buffer);
    try
    {
        clip::ReadAll(stream, "the tape");
        ADD_FAILURE() << "not refused";
    }
    catch (std::system_error const & error)
    {
        EXPECT_TRUE(std::string(error.what()).starts_with("cannot read the tape: ")) << error.what();
        EXPECT_NE(error.code().value(), 0);
    }
}

TEST(Input, A_file_is_read_byte_for_byte)
{
    ScratchFolder scratch;
    std::string const text("a\r\nb\0c\x1A\xFF\n", 9);
    WriteText(scratch.Path() / "file", text);
    EXPECT_EQ(clip::ReadAll(scratch.Path() / "file"), text);
    WriteText(scratch.Path() / "empty", "");
    EXPECT_EQ(clip::ReadAll(scratch.Path() / "empty"), "");
}

TEST(Input, A_missing_file_and_a_folder_are_refused_by_name)
{
    ScratchFolder scratch;
    std::string const missing = (scratch.Path() / "missing").string();
    try
    {
        clip::ReadAll(std::filesystem::path(missing));
        ADD_FAILURE() << "not refused";
    }
    catch (std::system_error const & error)
    {
        EXPECT_EQ(error.what(), "cannot read " + missing + ": No such file or directory");
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    }
    try
    {
        clip::ReadAll(scratch.Path());
        ADD_FAILURE() << "not refused";
    }
    catch (std::system_error const & error)
    {
        EXPECT_EQ(error.what(), "cannot read " + scratch.Path().string() + ": Is a directory");
        EXPECT_EQ(error.code(), std::errc::is_a_directory);
    }
}

} // namespace
