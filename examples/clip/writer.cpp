#include "clip/writer.h"

#include "clip/number_text.h"

#include <string>
#include <vector>

namespace clip
{

namespace
{

std::string Indent(std::size_t depth)
{
    std::string indent(2 * depth, ' ');
    return indent;
}

void WriteJointHead(std::ostream & stream, Joint const & joint, std::size_t depth)
{
    std::string const indent = Indent(depth);
    std::string const inner = Indent(depth + 1);
    if (joint.isEndSite)
    {
        stream << indent << "End Site\n";
    }
    else
    {
        stream << indent << (joint.parent == k_NoParent ? "ROOT " : "JOINT ") << joint.name << '\n';
    }
    stream << indent << "{\n"
           << inner << "OFFSET " << ShortestText(joint.offset.X) << ' ' << ShortestText(joint.offset.Y) << ' '
           << ShortestText(joint.offset.Z) << '\n';
    if (!joint.isEndSite)
    {
        stream << inner << "CHANNELS " << std::to_string(joint.channels.size());
        for (Channel const channel : joint.channels)
        {
            stream << ' ' << k_ChannelNames[static_cast<std::size_t>(channel)];
        }
        stream << '\n';
    }
}

void WriteHierarchy(std::ostream & stream, Skeleton const & skeleton)
{
    stream << "HIERARCHY\n";
    std::vector<int> open;
    auto const closeDownTo = [&](int parent)
    {
        while (!open.empty() && open.back() != parent)
        {
            open.pop_back();
            stream << Indent(open.size()) << "}\n";
        }
    };
    for (std::size_t i = 0; i < skeleton.joints.size(); ++i)
    {
        closeDownTo(skeleton.joints[i].parent);
        WriteJointHead(stream, skeleton.joints[i], open.size());
        open.push_back(static_cast<int>(i));
    }
    closeDownTo(k_NoParent);
}

void WriteMotion(std::ostream & stream, Clip const & clip)
{
    stream << "MOTION\nFrames: " << std::to_string(clip.frameCount) << "\nFrame Time: " << ShortestText(clip.frameTime)
           << '\n';
    for (std::size_t frame = 0; frame < clip.frameCount; ++frame)
    {
        char const * separator = "";
        for (double const value : clip.Frame(frame))
        {
            stream << separator << ShortestText(value);
            separator = " ";
        }
        stream << '\n';
    }
}

} // namespace

void WriteClip(std::ostream & stream, Clip const & clip)
{
    WriteHierarchy(stream, clip.skeleton);
    WriteMotion(stream, clip);
}

} // namespace clip
