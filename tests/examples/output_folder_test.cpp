#include "clip/output_folder.h"

#include "examples/scratch_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace
{

using clip::OutputFolder;
namespace fs = std::filesystem;

auto Text(std::string const & text)
{
    return [text](std::ostream & stream) { stream << text; };
}

/// A file that opens and takes no byte.
fs::path const k_FullDisk = "/dev/full";

TEST(OutputFolder, Makes_the_folder_and_its_parents)
{
    ScratchFolder scratch;
    OutputFolder folder(scratch.Path() / "a" / "b");
    EXPECT_TRUE(fs::is_directory(scratch.Path() / "a" / "b"));
}

TEST(OutputFolder, Publishes_all_files_at_once)
{
    ScratchFolder scratch;
    WriteText(scratch.Path() / "one", "earlier");
    OutputFolder folder(scratch.Path());
    folder.Write("one", Text("1"));
    folder.Write("two", Text("2"));
    EXPECT_EQ(ReadText(scratch.Path() / "one"), "earlier");
    EXPECT_FALSE(fs::exists(scratch.Path() / "two"));
    EXPECT_EQ(folder.Publish(), (std::vector<fs::path>{scratch.Path() / "one", scratch.Path() / "two"}));
    EXPECT_EQ(ReadText(scratch.Path() / "one"), "1");
    EXPECT_EQ(ReadText(scratch.Path() / "two"), "2");
    EXPECT_EQ(scratch.CountFiles(), 2U);
}

TEST(OutputFolder, Leaves_no_trace_of_what_was_not_published)
{
    ScratchFolder scratch;
    WriteText(scratch.Path() / "one", "earlier");
    {
        OutputFolder folder(scratch.Path());
        folder.Write("one", Text("1"));
        folder.Write("two", Text("2"));
    }
    EXPECT_EQ(ReadText(scratch.Path() / "one"), "earlier");
    EXPECT_EQ(scratch.CountFiles(), 1U);
}

TEST(OutputFolder, A_writer_that_throws_leaves_no_trace)
{
    ScratchFolder scratch;
    {
        OutputFolder folder(scratch.Path());
        EXPECT_THROW(folder.Write("one", [](std::ostream &) { throw std::logic_error("no"); }), std::logic_error);
    }
    EXPECT_EQ(scratch.CountFiles(), 0U);
}

TEST(OutputFolder, A_full_disk_is_told_with_the_file_and_leaves_no_trace)
{
    if (!fs::exists(k_FullDisk))
    {
        GTEST_SKIP() << "no device that is always full";
    }
    ScratchFolder scratch;
    WriteText(scratch.Path() / "one", "earlier");
    // A short text fails when the file is closed, a long one while it is written.
    for (std::size_t const size : {std::size_t(10), std::size_t(1000000)})
    {
        fs::create_symlink(k_FullDisk, scratch.Path() / ".one.partial");
        try
        {
            OutputFolder folder(scratch.Path());
            folder.Write("one", Text(std::string(size, 'x')));
            ADD_FAILURE() << "written to a full disk";
        }
        catch (std::system_error const & error)
        {
            EXPECT_EQ(error.code(), std::errc::no_space_on_device);
            EXPECT_NE(std::string(error.what()).find((scratch.Path() / "one").string()), std::string::npos);
        }
        EXPECT_EQ(ReadText(scratch.Path() / "one"), "earlier");
        EXPECT_EQ(scratch.CountFiles(), 1U);
    }
}

TEST(OutputFolder, A_file_that_cannot_be_opened_is_told)
{
    ScratchFolder scratch;
    fs::create_directory(scratch.Path() / ".one.partial");
    OutputFolder folder(scratch.Path());
    try
    {
        folder.Write("one", Text("1"));
        FAIL();
    }
    catch (std::system_error const & error)
    {
        EXPECT_EQ(error.code(), std::errc::is_a_directory);
    }
}

TEST(OutputFolder, A_folder_that_cannot_be_made_is_told)
{
    ScratchFolder scratch;
    WriteText(scratch.Path() / "file", "x");
    try
    {
        OutputFolder folder(scratch.Path() / "file" / "inside");
        FAIL();
    }
    catch (std::system_error const & error)
    {
        EXPECT_NE(std::string(error.what()).find("cannot make the folder"), std::string::npos);
    }
}

TEST(OutputFolder, A_file_in_the_folders_place_is_told)
{
    ScratchFolder scratch;
    WriteText(scratch.Path() / "file", "x");
    EXPECT_THROW(
        {
            OutputFolder folder(scratch.Path() / "file");
            folder.Write("one", Text("1"));
        },
        std::system_error);
    EXPECT_EQ(ReadText(scratch.Path() / "file"), "x");
}

TEST(OutputFolder, A_place_taken_by_a_folder_stops_every_file)
{
    ScratchFolder scratch;
    WriteText(scratch.Path() / "one", "earlier");
    fs::create_directory(scratch.Path() / "two");
    {
        OutputFolder folder(scratch.Path());
        folder.Write("one", Text("1"));
        folder.Write("two", Text("2"));
        EXPECT_THROW(folder.Publish(), std::system_error);
    }
    EXPECT_EQ(ReadText(scratch.Path() / "one"), "earlier");
    EXPECT_EQ(scratch.CountFiles(), 2U);
}

TEST(OutputFolder, A_file_that_vanished_before_publishing_is_told)
{
    ScratchFolder scratch;
    OutputFolder folder(scratch.Path());
    folder.Write("one", Text("1"));
    fs::remove(scratch.Path() / ".one.partial");
    EXPECT_THROW(folder.Publish(), std::system_error);
}

TEST(OutputFolder, A_second_file_of_one_name_is_refused)
{
    ScratchFolder scratch;
    OutputFolder folder(scratch.Path());
    folder.Write("one", Text("1"));
    EXPECT_THROW(folder.Write("one", Text("2")), std::system_error);
    folder.Publish();
    EXPECT_EQ(ReadText(scratch.Path() / "one"), "1");
    folder.Write("one", Text("3"));
    folder.Publish();
    EXPECT_EQ(ReadText(scratch.Path() / "one"), "3");
}

TEST(OutputFolder, Places_can_be_checked_before_anything_is_moved)
{
    ScratchFolder scratch;
    WriteText(scratch.Path() / "one", "earlier");
    fs::create_directory(scratch.Path() / "two");
    OutputFolder folder(scratch.Path());
    folder.Write("one", Text("1"));
    EXPECT_NO_THROW(folder.CheckPlaces());
    folder.Write("two", Text("2"));
    EXPECT_THROW(folder.CheckPlaces(), std::system_error);
    EXPECT_EQ(ReadText(scratch.Path() / "one"), "earlier");
}

} // namespace
