#include "bake/world_table.h"

#include "clip/number_text.h"

#include <string>
#include <vector>

namespace bake
{

namespace
{

std::string QuotedField(std::string const & text)
{
    if (text.find_first_of(",\"") == std::string::npos)
    {
        return text;
    }
    std::string quoted = "\"";
    for (char const c : text)
    {
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    }
    return quoted + '"';
}

} // namespace

void WriteWorldTable(std::ostream & stream, clip::Skeleton const & skeleton, clip::WorldPositions const & positions)
{
    std::vector<std::string> names;
    names.reserve(skeleton.joints.size());
    for (clip::Joint const & joint : skeleton.joints)
    {
        names.push_back(',' + QuotedField(joint.name) + ',');
    }
    stream << "frame,joint,x,y,z\n";
    for (std::size_t frame = 0; frame < positions.FrameCount(); ++frame)
    {
        std::string const number = std::to_string(frame);
        std::span<C3DVector3Tpl<double> const> const places = positions.Frame(frame);
        for (std::size_t joint = 0; joint < places.size(); ++joint)
        {
            stream << number << names[joint] << clip::ShortestText(places[joint].X) << ','
                   << clip::ShortestText(places[joint].Y) << ',' << clip::ShortestText(places[joint].Z) << '\n';
        }
    }
}

} // namespace bake
