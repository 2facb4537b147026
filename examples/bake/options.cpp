#include "bake/options.h"

#include "clip/number_text.h"

#include <algorithm>
#include <cmath>
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
  --smooth HZ   remove from every channel what oscillates at HZ hertz or faster; up
                to half of that all stays. The first and the last frame, and
                angles that jump by whole turns, are as they were. Bake a clip
                whose joints flip at a pole with --order first
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
constexpr double k_LargestFrequency = 1e6; ///< hertz

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
    std::optional<C3DVector3Tpl<double>> const scale = clip::ParseTriple(text);
    auto const isUsable = [](double factor)
    { return std::abs(factor) >= 1 / k_LargestScale && std::abs(factor) <= k_LargestScale; };
    if (!scale || !isUsable(scale->X) || !isUsable(scale->Y) || !isUsable(scale->Z))
    {
        throw UsageError(R"(option "--scale" wants three factors between 1e-6 and 1e6 in size, such as 1,2,-1, not ")" +
                         std::string(text) + "\"");
    }
    return *scale;
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

double ReadFrequency(std::string_view text)
{
    std::optional<double> const hertz = clip::ParseNumber(text);
    if (!hertz || !(*hertz >= 1 / k_LargestFrequency && *hertz <= k_LargestFrequency))
    {
        throw UsageError(R"(option "--smooth" wants a frequency from 1e-6 to 1e6 hertz, not ")" + std::string(text) +
                         "\"");
    }
    return *hertz;
}

class OptionReader
{
public:
    explicit OptionReader(std::span<char const * const> arguments) : m_Arguments(arguments) {}

    Options Read()
    {
        m_Options.isHelpWanted = m_Arguments.Read([this](std::string_view name) { return ReadOption(name); });
        m_Options.clip = m_Arguments.Clip();
        if (!m_Options.isHelpWanted && m_IsShareGiven && m_Options.blendClip.empty())
        {
            throw UsageError(R"(option "--at" is nothing without "--blend")");
        }
        if (!m_Options.isHelpWanted && m_Options.smoothing && !m_Options.poseSource.empty())
        {
            throw UsageError(R"(options "--smooth" and "--load" exclude each other: poses have no channels)");
        }
        return m_Options;
    }

private:
    bool ReadOption(std::string_view name)
    {
        if (name == "--out")
        {
            m_Options.outputFolder = m_Arguments.Path("a folder");
        }
        else if (name == "--order")
        {
            m_Options.order = FindOrder(m_Arguments.Value());
        }
        else if (name == "--scale")
        {
            m_Options.scale = ReadScale(m_Arguments.Value());
        }
        else if (name == "--mode")
        {
            m_Options.composition = FindComposition(m_Arguments.Value());
        }
        else if (name == "--blend")
        {
            m_Options.blendClip = m_Arguments.Path("a clip");
        }
        else if (name == "--at")
        {
            m_Options.blendShare = ReadShare(m_Arguments.Value());
            m_IsShareGiven = true;
        }
        else if (name == "--smooth")
        {
            m_Options.smoothing = ReadFrequency(m_Arguments.Value());
        }
        else if (name == "--save")
        {
            m_Options.poseTarget = m_Arguments.Path("a file");
        }
        else if (name == "--load")
        {
            m_Options.poseSource = m_Arguments.Path("a file");
        }
        else
        {
            return false;
        }
        return true;
    }

    clip::Arguments m_Arguments;
    bool m_IsShareGiven = false;
    Options m_Options;
};

} // namespace

Options ParseOptions(std::span<char const * const> arguments)
{
    return OptionReader(arguments).Read();
}

} // namespace bake
