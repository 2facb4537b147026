#include "bake/joint_table.h"

#include "clip/joint_rotation.h"
#include "clip/number_text.h"
#include "clip/table_field.h"

#include <string>
#include <vector>

namespace bake
{

namespace
{

using Vector = C3DVector3Tpl<double>;

/// \param vectorAt from the numbers of a frame and of a name to what stands in its line
template <class VectorAt>
void WriteTable(std::ostream & stream, std::size_t frameCount, std::vector<std::string> names,
                VectorAt const & vectorAt)
{
    for (std::string & name : names)
    {
        name = ',' + clip::QuotedField(name) + ',';
    }
    stream << "frame,joint,x,y,z\n";
    for (std::size_t frame = 0; frame < frameCount; ++frame)
    {
        std::string const number = std::to_string(frame);
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            Vector const & vector = vectorAt(frame, i);
            stream << number << names[i] << clip::ShortestText(vector.X) << ',' << clip::ShortestText(vector.Y) << ','
                   << clip::ShortestText(vector.Z) << '\n';
        }
    }
}

} // namespace

void WriteWorldTable(std::ostream & stream, clip::Skeleton const & skeleton, clip::WorldPositions const & positions)
{
    std::vector<std::string> names;
    names.reserve(skeleton.joints.size());
    for (clip::Joint const & joint : skeleton.joints)
    {
        names.push_back(joint.name);
    }
    WriteTable(stream, positions.FrameCount(), names,
               [&positions](std::size_t frame, std::size_t joint) -> Vector const &
               { return positions.Frame(frame)[joint]; });
}

void WriteAngleTable(std::ostream & stream, clip::Clip const & motion)
{
    std::vector<std::string> names;
    std::vector<clip::JointRotation> rotations;
    for (clip::Joint const & joint : motion.skeleton.joints)
    {
        if (!joint.isEndSite)
        {
            names.push_back(joint.name);
            rotations.emplace_back(joint);
        }
    }
    WriteTable(stream, motion.frameCount, names,
               [&](std::size_t frame, std::size_t joint) { return rotations[joint].Degrees(motion.Frame(frame)); });
}

void WriteWorldAngleTable(std::ostream & stream, clip::Skeleton const & skeleton, WorldAngles const & angles)
{
    std::vector<std::string> names;
    for (std::size_t const joint : angles.joints)
    {
        names.push_back(skeleton.joints[joint].name);
    }
    WriteTable(stream, angles.degrees.size() / names.size(), names,
               [&](std::size_t frame, std::size_t joint) { return angles.degrees[frame * names.size() + joint]; });
}

} // namespace bake
