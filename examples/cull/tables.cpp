#include "cull/tables.h"

#include "clip/number_text.h"
#include "clip/table_field.h"

#include <cstddef>
#include <numbers>
#include <string>

namespace cull
{

void WriteViewTable(std::ostream & stream, clip::Clip const & motion, JointBoxes const & boxes,
                    Classification const & classification)
{
    std::vector<std::string> names;
    for (std::size_t const joint : boxes.joints)
    {
        names.push_back(',' + clip::QuotedField(motion.skeleton.joints[joint].name) + ',');
    }
    stream << "frame,time,joint,world,view\n";
    for (std::size_t frame = 0; frame < boxes.FrameCount(); ++frame)
    {
        std::string const start =
            std::to_string(frame) + ',' + clip::ShortestText(static_cast<double>(frame) * motion.frameTime);
        for (std::size_t i = 0; i < names.size(); ++i)
        {
            std::size_t const box = frame * names.size() + i;
            stream << start << names[i] << k_ClassNames[static_cast<std::size_t>(classification.world[box])] << ','
                   << k_ClassNames[static_cast<std::size_t>(classification.view[box])] << '\n';
        }
    }
}

void WriteCameraTable(std::ostream & stream, clip::Clip const & motion, CameraMotion const & camera)
{
    constexpr double k_Degree = std::numbers::pi / 180;
    stream << "frame,time,x,y,z,pitch,yaw,roll\n";
    for (std::size_t frame = 0; frame < motion.frameCount; ++frame)
    {
        C3DVector3Tpl<double> const eye = camera.At(frame).eye;
        C3DVector3Tpl<double> const turn = camera.SwayAt(frame).turn;
        stream << frame;
        for (double const number : {static_cast<double>(frame) * motion.frameTime, eye.X, eye.Y, eye.Z,
                                    turn.X / k_Degree, turn.Y / k_Degree, turn.Z / k_Degree})
        {
            stream << ',' << clip::ShortestText(number);
        }
        stream << '\n';
    }
}

double TimeOf(Contact const & contact, clip::Clip const & motion)
{
    return (static_cast<double>(contact.frame) + contact.share) * motion.frameTime;
}

void WriteFloorTable(std::ostream & stream, clip::Clip const & motion, std::vector<Foot> const & feet,
                     std::vector<std::optional<Contact>> const & contacts)
{
    stream << "foot,frame,time,x,y,z\n";
    for (std::size_t i = 0; i < feet.size(); ++i)
    {
        if (std::optional<Contact> const & contact = contacts[i])
        {
            stream << clip::QuotedField(motion.skeleton.joints[feet[i].ankle].name) << ',' << contact->frame << ','
                   << clip::ShortestText(TimeOf(*contact, motion)) << ',' << clip::ShortestText(contact->place.X) << ','
                   << clip::ShortestText(contact->place.Y) << ',' << clip::ShortestText(contact->place.Z) << '\n';
        }
    }
}

} // namespace cull
