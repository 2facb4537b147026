#include "bake/options.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace bake
{

std::string_view const k_Usage = R"(Usage: bake [--out DIR] [--order ABC] CLIP.bvh

Reads a motion-capture clip and computes where each joint is in world space,
frame by frame. With an order, writes the same motion with the rotations of
every joint in that order, each frame's angles the nearest to those of the
frame before: nothing flips, and whole turns are kept.

Options:
  --out DIR    folder for the results, made where it is missing (default: bake-out)
  --order ABC  XYZ, XZY, YXZ, YZX, ZXY or ZYX, as a channel list names its
               rotations, from the outermost to the innermost: ZXY stands for
               "Zrotation Xrotation Yrotation", in which Y acts first on a point
  -h, --help   print this text and end

Results:
  world.csv    frame, joint, x, y, z: the position of every joint in every frame
  pose.svg     the figure from the front and from the side in six poses over the
               clip, with the paths of its hands, feet and other ends

Results with an order:
  baked.bvh    the clip in that order; positions are as they were. Rotations that
               a joint lacks count as 0, and are written: every joint has three
  angles.csv   frame, joint, x, y, z: the angles of baked.bvh in degrees
  curves.svg   for the joint that changes most, its angles extracted plainly, each
               frame by itself, above those of baked.bvh, with the jumps marked

Status: 0 done, 1 a file could not be read or written,
        2 the clip or the command line is wrong. Results of an earlier run stay
        as they were unless the status is 0.
)";

namespace
{

clip::ChannelOrder FindOrder(std::string_view name)
{
    auto const * const found = std::find_if(clip::k_ChannelOrders.begin(), clip::k_ChannelOrders.end(),
                                            [name](clip::ChannelOrder const & order) { return order.name == name; });
    if (found == clip::k_ChannelOrders.end())
    {
        throw UsageError("unknown order \"" + std::string(name) + "\": it is one of XYZ, XZY, YXZ, YZX, ZXY and ZYX");
    }
    return *found;
}

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
        std::string_view const name = argument.substr(0, argument.find('='));
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
            m_Options.outputFolder = ReadValue(argument);
            if (m_Options.outputFolder.empty())
            {
                throw UsageError("option \"--out\" wants a folder");
            }
        }
        else if (name == "--order")
        {
            m_Options.order = FindOrder(ReadValue(argument));
        }
        else
        {
            throw UsageError("unknown option \"" + std::string(argument) + "\"");
        }
    }

    /// What stands behind the option's equals sign, or else the next argument.
    std::string_view ReadValue(std::string_view option)
    {
        if (std::size_t const equals = option.find('='); equals != std::string_view::npos)
        {
            return option.substr(equals + 1);
        }
        if (m_Next == m_Arguments.size())
        {
            throw UsageError("option \"" + std::string(option) + "\" wants a value");
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
