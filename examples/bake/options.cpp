#include "bake/options.h"

#include "clip/number_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string>

namespace bake
{

std::string_view const k_Usage = R"(Usage: bake [options] CLIP.bvh

Reads a motion-capture clip and computes where each joint is in world space,
frame by frame. With an order, writes the same motion with the rotations of
every joint in that order, each frame's angles the nearest to those of the
frame before: nothing flips, and whole turns are kept.

Options:
  --out DIR     folder for the results, made where it is missing (default: bake-out)
  --order ABC   XYZ, XZY, YXZ, YZX, ZXY or ZYX, as a channel list names its
                rotations, from the outermost to the innermost: ZXY stands for
                "Zrotation Xrotation Yrotation", in which Y acts first on a point
  --scale X,Y,Z scale of the roots along their own axes; a factor below 0 mirrors
  --mode MODE   how scale reaches the children: "component", axis by axis, so that
                nothing is sheared (the default), or "matrix", as matrices multiply
  --blend OTHER.bvh
                blend with another clip of the same skeleton, over the shorter one
  --at SHARE    share of the other clip in the blend, 0 to 1 (default: 0.5)
  --save FILE   keep the poses of all joints
  --load FILE   take the poses from there; the clip gives the skeleton alone
  -h, --help    print this text and end

Results:
  world.csv     frame, joint, x, y, z: the position of every joint in every frame
  pose.svg      the figure from the front and from the side in six poses over the
                clip, with the paths of its hands, feet and other ends

Results with an order:
  baked.bvh     the clip in that order; positions are as they were. Rotations that
                a joint lacks count as 0, and are written: every joint has three
  angles.csv    frame, joint, x, y, z: the angles of baked.bvh in degrees
  world-angles.csv
                the same of every joint in world space
  curves.svg    for the joint that changes most, its angles extracted plainly, each
                frame by itself, above those of baked.bvh, with the jumps marked

Status: 0 done, 1 a file could not be read or written,
        2 a clip, poses or the command line are wrong. Results of an earlier run
        stay as they were unless the status is 0.
)";

namespace
{

constexpr double k_LargestScale = 1e6;

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

clip::Composition FindComposition(std::string_view name)
{
    if (name == "component")
    {
        return clip::Composition::ByComponent;
    }
    if (name == "matrix")
    {
        return clip::Composition::ByMatrix;
    }
    throw UsageError("unknown mode \"" + std::string(name) + "\": it is component or matrix");
}

C3DVector3Tpl<double> ReadScale(std::string_view text)
{
    std::string const list = std::string(text) + ','; // so that every factor ends at a comma
    std::string_view rest = list;
    std::array<double, 3> factors{};
    for (double & factor : factors)
    {
        std::string_view const number = rest.substr(0, rest.find(','));
        rest.remove_prefix(std::min(rest.size(), number.size() + 1));
        factor = clip::ParseNumber(number).value_or(0);
    }
    auto const isUsable = [](double factor)
    { return std::abs(factor) >= 1 / k_LargestScale && std::abs(factor) <= k_LargestScale; };
    if (!rest.empty() || !std::all_of(factors.begin(), factors.end(), isUsable))
    {
        throw UsageError(R"(option "--scale" wants three factors between 1e-6 and 1e6 in size, such as 1,2,-1, not ")" +
                         std::string(text) + "\"");
    }
    return {factors[0], factors[1], factors[2]};
}

double ReadShare(std::string_view text)
{
    std::optional<double> const share = clip::ParseNumber(text);
    if (!share || !(*share >= 0 && *share <= 1))
    {
        throw UsageError(R"(option "--at" wants a share from 0 to 1, not ")" + std::string(text) + "\"");
    }
    return *share;
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
        if (m_IsShareGiven && m_Options.blendClip.empty())
        {
            throw UsageError(R"(option "--at" is nothing without "--blend")");
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
            m_Options.outputFolder = ReadPath(argument, "a folder");
        }
        else if (name == "--order")
        {
            m_Options.order = FindOrder(ReadValue(argument));
        }
        else if (name == "--scale")
        {
            m_Options.scale = ReadScale(ReadValue(argument));
        }
        else if (name == "--mode")
        {
            m_Options.composition = FindComposition(ReadValue(argument));
        }
        else if (name == "--blend")
        {
            m_Options.blendClip = ReadPath(argument, "a clip");
        }
        else if (name == "--at")
        {
            m_Options.blendShare = ReadShare(ReadValue(argument));
            m_IsShareGiven = true;
        }
        else if (name == "--save")
        {
            m_Options.poseTarget = ReadPath(argument, "a file");
        }
        else if (name == "--load")
        {
            m_Options.poseSource = ReadPath(argument, "a file");
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

    std::filesystem::path ReadPath(std::string_view option, std::string const & wanted)
    {
        std::string_view const value = ReadValue(option);
        if (value.empty())
        {
            throw UsageError("option \"" + std::string(option.substr(0, option.find('='))) + "\" wants " + wanted);
        }
        return value;
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
    bool m_IsShareGiven = false;
    Options m_Options;
};

} // namespace

Options ParseOptions(std::span<char const * const> arguments)
{
    return ArgumentReader(arguments).Read();
}

} // namespace bake
