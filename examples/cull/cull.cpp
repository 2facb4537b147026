#include "cull/cull.h"

#include "clip/number_text.h"
#include "clip/output_folder.h"
#include "clip/pose.h"
#include "clip/program.h"
#include "clip/reader.h"
#include "clip/skeleton.h"
#include "cull/camera.h"
#include "cull/camera_motion.h"
#include "cull/classification.h"
#include "cull/floor.h"
#include "cull/foot.h"
#include "cull/joint_boxes.h"
#include "cull/options.h"
#include "cull/rest_pose.h"
#include "cull/tables.h"
#include "cull/view_picture.h"

#include <filesystem>
#include <numbers>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace cull
{

namespace
{

constexpr double k_MarginShare = 1.0 / 50; ///< of the figure's size, about the thickness of a limb

/// What a camera sees of a clip.
struct Sighting
{
    JointBoxes boxes;
    CameraMotion camera;
    Classification classification;
};

/// How the feet of a clip meet a floor.
struct FloorReport
{
    Floor floor;
    std::vector<Foot> feet;
    std::vector<std::optional<Contact>> contacts; ///< in the order of the feet
};

Sighting Look(clip::Clip const & motion, clip::WorldPositions const & positions, Options const & options)
{
    JointBoxes boxes =
        ComputeJointBoxes(motion.skeleton, positions, k_MarginShare * ComputeFigureSize(motion.skeleton));
    CameraMotion const camera(PlaceCamera(options.camera, ComputeBounds(boxes)), options.shake, motion.frameTime);
    Classification classification = Classify(boxes, camera);
    CheckAgreement(classification, boxes, motion.skeleton);
    return {std::move(boxes), camera, std::move(classification)};
}

FloorReport MeetFloor(clip::Clip const & motion, clip::PoseTrack const & poses, FloorRequest const & request)
{
    FloorReport report;
    report.feet = FindFeet(motion.skeleton);
    double const size = ComputeFigureSize(motion.skeleton);
    std::vector<SoleMotion> const soles = ComputeSoles(report.feet, motion.skeleton, poses);
    report.floor = LayFloor(request.height ? *request.height : ChooseFloorHeight(soles, size), soles, size);
    for (SoleMotion const & sole : soles)
    {
        report.contacts.push_back(FindFirstContact(sole, report.floor));
    }
    return report;
}

/// Where a moving camera is, frame by frame; nothing for a still one.
std::vector<C3DVector3Tpl<double>> ListEyes(CameraMotion const & camera, std::size_t frameCount)
{
    std::vector<C3DVector3Tpl<double>> eyes;
    for (std::size_t frame = 0; frame < frameCount && !camera.IsStill(); ++frame)
    {
        eyes.push_back(camera.At(frame).eye);
    }
    return eyes;
}

/// All results are written before the first takes its place.
std::vector<std::filesystem::path> WriteResults(Options const & options, clip::Clip const & motion,
                                                clip::WorldPositions const & positions, Sighting const & sighting,
                                                std::optional<FloorReport> const & floor)
{
    std::vector<C3DVector3Tpl<double>> const eyes = ListEyes(sighting.camera, motion.frameCount);
    clip::OutputFolder folder(options.outputFolder);
    folder.Write("view.csv", [&](std::ostream & stream)
                 { WriteViewTable(stream, motion, sighting.boxes, sighting.classification); });
    folder.Write("cull.svg",
                 [&](std::ostream & stream)
                 {
                     DrawView(
                         {motion, positions, sighting.boxes, sighting.camera.Rest(), sighting.classification, eyes},
                         options.clip.stem().string())
                         .Write(stream);
                 });
    if (!sighting.camera.IsStill())
    {
        folder.Write("camera.csv", [&](std::ostream & stream) { WriteCameraTable(stream, motion, sighting.camera); });
    }
    if (floor)
    {
        folder.Write("floor.csv",
                     [&](std::ostream & stream) { WriteFloorTable(stream, motion, floor->feet, floor->contacts); });
    }
    return folder.Publish();
}

void PrintCamera(std::ostream & output, Camera const & camera)
{
    output << "camera        at " << clip::PointText(camera.eye, 2) << ", looking at "
           << clip::PointText(camera.look, 2) << '\n';
    if (camera.isOrthographic)
    {
        output << "volume        orthographic, " << clip::RoundedText(camera.width, 2) << " wide and "
               << clip::RoundedText(camera.height, 2) << " high";
    }
    else
    {
        output << "volume        perspective, " << clip::RoundedText(camera.fieldOfView * 180 / std::numbers::pi, 2)
               << " degrees from left to right";
    }
    output << ", from " << clip::RoundedText(camera.nearDistance, 2) << " to "
           << clip::RoundedText(camera.farDistance, 2) << '\n';
}

/// The counts of one strategy's answers.
std::string CountsText(std::size_t inside, std::size_t crossing, std::size_t outside)
{
    return std::to_string(inside) + " inside, " + std::to_string(crossing) + " crossing, " + std::to_string(outside) +
           " outside";
}

void PrintAnswers(std::ostream & output, Sighting const & sighting)
{
    AnswerCounts const counts = CountAnswers(sighting.classification);
    auto const inWorld = [&counts](std::size_t answer)
    { return counts[answer][0] + counts[answer][1] + counts[answer][2]; };
    auto const inView = [&counts](std::size_t answer)
    { return counts[0][answer] + counts[1][answer] + counts[2][answer]; };
    std::size_t const boxCount = sighting.boxes.boxes.size();
    std::size_t const differing = boxCount - counts[0][0] - counts[1][1] - counts[2][2];
    auto const nanoseconds = [boxCount](double seconds)
    { return clip::RoundedText(1e9 * seconds / static_cast<double>(boxCount), 1) + " ns a box\n"; };
    output << "boxes         " << sighting.boxes.joints.size() << " joints in " << sighting.boxes.FrameCount()
           << " frames\n"
           << "world space   " << CountsText(inWorld(1), inWorld(2), inWorld(0)) << ", "
           << nanoseconds(sighting.classification.worldSeconds) << "view space    "
           << CountsText(inView(1), inView(2), inView(0)) << ", " << nanoseconds(sighting.classification.viewSeconds)
           << "agreement     " << boxCount - differing << " alike, " << differing
           << " with \"crossing\" from one of the two\n"
           << "early outs    " << CountBeyondBounds(sighting.boxes, sighting.camera) << " of " << inWorld(0)
           << " outside are beyond the bounds of the volume\n";
}

void PrintFloor(std::ostream & output, clip::Clip const & motion, FloorReport const & report)
{
    output << "floor         at height " << clip::RoundedText(report.floor.height, 2) << ", points "
           << clip::RoughText(report.floor.spacing, 3) << " apart\n";
    if (report.feet.empty())
    {
        output << "              the figure has no feet\n";
    }
    for (std::size_t i = 0; i < report.feet.size(); ++i)
    {
        output << "              " << motion.skeleton.joints[report.feet[i].ankle].name;
        if (std::optional<Contact> const & contact = report.contacts[i])
        {
            output << " meets it at " << clip::FixedText(TimeOf(*contact, motion), 3) << " s at "
                   << clip::PointText(contact->place, 2) << '\n';
        }
        else
        {
            output << " never meets it\n";
        }
    }
}

void Cull(Options const & options, std::ostream & output)
{
    clip::Clip const motion = clip::ReadClip(options.clip);
    clip::PoseTrack const poses = clip::MakePoses(motion);
    clip::WorldPositions const positions =
        clip::ComputeWorldMotion(motion.skeleton, poses, clip::Composition::ByComponent).positions;
    Sighting const sighting = Look(motion, positions, options);
    std::optional<FloorReport> const floor =
        options.floor ? std::optional(MeetFloor(motion, poses, *options.floor)) : std::nullopt;
    std::vector<std::filesystem::path> const files = WriteResults(options, motion, positions, sighting, floor);
    PrintCamera(output, sighting.camera.Rest());
    if (options.shake)
    {
        output << "shake         up to " << clip::RoughText(options.shake->amplitude, 6) << " along each axis, seed "
               << options.shake->seed << '\n';
    }
    PrintAnswers(output, sighting);
    if (floor)
    {
        PrintFloor(output, motion, *floor);
    }
    for (std::filesystem::path const & file : files)
    {
        output << "wrote         " << file.string() << '\n';
    }
}

} // namespace

int Run(std::span<char const * const> arguments, std::ostream & output, std::ostream & errors)
{
    return clip::RunProgram("cull", output, errors,
                            [&]
                            {
                                Options const options = ParseOptions(arguments);
                                options.isHelpWanted ? void(output << k_Usage) : Cull(options, output);
                            });
}

} // namespace cull
