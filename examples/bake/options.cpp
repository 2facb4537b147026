#include "bake/options.h"

#include <cstddef>
#include <string>

namespace bake
{

std::string_view const kUsage = R"(Usage: bake [--out DIR] CLIP.bvh

Reads a motion-capture clip and computes where each joint is in world space,
frame by frame.

Options:
  --out DIR   folder for the results, made where it is missing (default: bake-out)
  -h, --help  print this text and end

Results:
  world.csv   frame, joint, x, y, z: the position of every joint in every frame
  pose.svg    the figure from the front and from the side in six poses over the
              clip, with the paths of its hands, feet and other ends

Status: 0 done, 1 a file could not be read or written,
        2 the clip or the command line is wrong. Results of an earlier run stay
        as they were unless the status is 0.
)";

namespace
{

class ArgumentReader
{
public:
    explicit ArgumentReader(std::span<char const * const> arguments) : m_Arguments(arguments) {}

    Options Read()
    {
        while (m_Next < m_Arguments.size())
        {
            std::string_view const argument = m_Arguments[m_Next++];
            bool const isOption = !m_AreOptionsOver && argument.size() > 1 && argument.starts_with('-');
            isOption ? ReadOption(argument) : ReadClip(argument);
            if (m_Options.isHelpWanted)
            {
                return m_Options;
            }
        }
        if (m_Options.clip.empty())
        {
            throw UsageError("no clip given");
        }
        return m_Options;
    }

private:
    void ReadOption(std::string_view argument)
    {
        std::size_t const equals = argument.find('=');
        std::string_view const name = argument.substr(0, equals);
        if (argument == "--")
        {
            m_AreOptionsOver = true;
        }
        else if (argument == "--help" || argument == "-h")
        {
            m_Options.isHelpWanted = true;
        }
        else if (name == "--out")
        {
            m_Options.outputFolder = equals == std::string_view::npos ? ReadValue(name) : argument.substr(equals + 1);
            if (m_Options.outputFolder.empty())
            {
                throw UsageError("option \"--out\" wants a folder");
            }
        }
        else
        {
            throw UsageError("unknown option \"" + std::string(argument) + "\"");
        }
    }

    std::string_view ReadValue(std::string_view name)
    {
        if (m_Next == m_Arguments.size())
        {
            throw UsageError("option \"" + std::string(name) + "\" wants a value");
        }
        return m_Arguments[m_Next++];
    }

    void ReadClip(std::string_view argument)
    {
        if (!m_Options.clip.empty())
        {
            throw UsageError("more than one clip given: \"" + m_Options.clip.string() + "\" and \"" +
                             std::string(argument) + "\"");
        }
        if (argument.empty())
        {
            throw UsageError("the clip's name is empty");
        }
        m_Options.clip = argument;
    }

    std::span<char const * const> m_Arguments;
    std::size_t m_Next = 0;
    bool m_AreOptionsOver = false;
    Options m_Options;
};

} // namespace

Options ParseOptions(std::span<char const * const> arguments)
{
    return ArgumentReader(arguments).Read();
}

} // namespace bake
