#pragma once

#include "examples/scratch_folder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <span>
#include <sstream>
#include <string>
#include <utility>

/// What a run of a program gave.
struct Outcome
{
    int status;
    std::string output;
    std::string errors;
};

/// A test that runs a program in a folder of its own.
class ExampleProgram : public testing::Test
{
protected:
    /// \param table,picture the names of two of the program's results
    ExampleProgram(std::string program, std::string table, std::string picture)
        : m_Program(std::move(program)), m_Table(std::move(table)), m_Picture(std::move(picture))
    {
    }

    /// Runs the program in the scratch folder, with arguments as a shell takes them.
    Outcome Run(std::string const & arguments) const
    {
        std::filesystem::path const output = m_Scratch.Path() / ".stdout";
        std::filesystem::path const errors = m_Scratch.Path() / ".stderr";
        std::string const command = "cd '" + m_Scratch.Path().string() + "' && '" + m_Program + "' " + arguments +
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
        WriteText(Path("out/" + m_Table), "earlier table");
        WriteText(Path("out/" + m_Picture), "earlier picture");
    }

    void ExpectEarlierResults() const
    {
        EXPECT_EQ(ReadText(Path("out/" + m_Table)), "earlier table");
        EXPECT_EQ(ReadText(Path("out/" + m_Picture)), "earlier picture");
        EXPECT_EQ(
            std::distance(std::filesystem::directory_iterator(Path("out")), std::filesystem::directory_iterator()), 2);
    }

    /// Calls a program, known by this name, with an output that cannot be written.
    template <typename RunProgram>
    static void ExpectUnwritableOutputFails(RunProgram run, std::string const & name)
    {
        std::ostringstream output;
        std::ostringstream errors;
        output.setstate(std::ios::badbit);
        char const * const arguments[] = {"--help"};
        EXPECT_EQ(run(std::span(arguments), output, errors), 1);
        EXPECT_EQ(errors.str(), name + ": cannot write to standard output\n");
    }

    ScratchFolder m_Scratch;
    std::string const m_Shipped = std::string("'") + SHIPPED_CLIP + "'";

private:
    std::string m_Program;
    std::string m_Table;
    std::string m_Picture;
};
