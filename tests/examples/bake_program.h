#pragma once

#include "examples/scratch_folder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>

/// What a run of the program gave.
struct Outcome
{
    int status;
    std::string output;
    std::string errors;
};

/// A test that runs the program in a folder of its own.
class BakeProgram : public testing::Test
{
protected:
    /// Runs the program in the scratch folder, with arguments as a shell takes them.
    Outcome Run(std::string const & arguments) const
    {
        std::filesystem::path const output = m_Scratch.Path() / ".stdout";
        std::filesystem::path const errors = m_Scratch.Path() / ".stderr";
        std::string const command = "cd '" + m_Scratch.Path().string() + "' && '" + BAKE_PROGRAM + "' " + arguments +
                                    " > '" + output.string() + "' 2> '" + errors.string() + "'";
        int const result = std::system(command.c_str()); // NOLINT(cert-env33-c,concurrency-mt-unsafe)
        EXPECT_TRUE(WIFEXITED(result));
        Outcome outcome{WEXITSTATUS(result), ReadText(output), ReadText(errors)};
        std::filesystem::remove(output);
        std::filesystem::remove(errors);
        return outcome;
    }

    std::filesystem::path Path(std::string const & name) const { return m_Scratch.Path() / name; }

    /// Results of an earlier run in a folder `out`.
    void PutEarlierResults() const
    {
        std::filesystem::create_directory(Path("out"));
        WriteText(Path("out/world.csv"), "earlier table");
        WriteText(Path("out/pose.svg"), "earlier picture");
    }

    void ExpectEarlierResults() const
    {
        EXPECT_EQ(ReadText(Path("out/world.csv")), "earlier table");
        EXPECT_EQ(ReadText(Path("out/pose.svg")), "earlier picture");
        EXPECT_EQ(
            std::distance(std::filesystem::directory_iterator(Path("out")), std::filesystem::directory_iterator()), 2);
    }

    ScratchFolder m_Scratch;
    std::string const m_Shipped = std::string("'") + SHIPPED_CLIP + "'";
};
