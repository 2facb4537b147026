#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

/// An empty folder of the running test's own, removed with what is in it.
class ScratchFolder
{
public:
    ScratchFolder()
    {
        auto const * const test = testing::UnitTest::GetInstance()->current_test_info();
        m_Path = std::filesystem::temp_directory_path() /
                 (std::string("math_") + test->test_suite_name() + "_" + test->name() + "_" +
                  std::to_string(testing::UnitTest::GetInstance()->start_timestamp()));
        std::filesystem::remove_all(m_Path);
        std::filesystem::create_directories(m_Path);
    }
    ScratchFolder(ScratchFolder const &) = delete;
    ScratchFolder & operator=(ScratchFolder const &) = delete;
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_Path, ignored);
    }

    std::filesystem::path const & Path() const { return m_Path; }

    /// Everything in the folder, itself not counted.
    std::size_t CountFiles() const
    {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(m_Path), std::filesystem::directory_iterator()));
    }

private:
    std::filesystem::path m_Path;
};

inline std::string ReadText(std::filesystem::path const & file)
{
    std::ifstream stream(file, std::ios::binary);
    EXPECT_TRUE(stream) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void WriteText(std::filesystem::path const & file, std::string const & text)
{
    std::ofstream(file, std::ios::binary) << text;
}
