#include "bake/bake.h"

#include "bake/angle_motion.h"
#include "bake/blend.h"
#include "bake/curve_picture.h"
#include "bake/joint_table.h"
#include "bake/options.h"
#include "bake/pose_file.h"
#include "bake/pose_picture.h"
#include "bake/reorder.h"
#include "bake/smoothing.h"
#include "bake/world_angles.h"
#include "clip/number_text.h"
#include "clip/output_folder.h"
#include "clip/pose.h"
#include "clip/program.h"
#include "clip/reader.h"
#include "clip/skeleton.h"
#include "clip/stopwatch.h"
#include "clip/writer.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bake
{

namespace
{

/// The most by which the times of a frame of two clips may differ, of the time itself.
constexpr double k_SamePace = 1e-4;

/// A clip that does not go with another one.
class MismatchError : public clip::InputError
{
public:
    using clip::InputError::InputError;
};

/// What is baked: poses of the clip's skeleton, from the clip itself or from elsewhere.
struct Subject
{
    clip::Clip motion;
    clip::PoseTrack poses;
    clip::Composition composition;
    double seconds; ///< that it took to make poses of the channels
};

/// The clip in another order, and what that changed.
struct Rebake
{
    Reordering plain;
    Reordering nearest;
    WorldAngles worldAngles;
    double difference; ///< the greatest between the world positions before and after
};

double ComputeGreatestDifference(clip::WorldPositions const & one, clip::WorldPositions const & other)
{
    double greatest = 0;
    for (std::size_t i = 0; i < one.All().size(); ++i)
    {
        C3DVector3Tpl<double> way;
        way.Sub(one.All()[i], other.All()[i]);
        greatest = std::max(greatest, std::hypot(way.X, way.Y, way.Z));
    }
    return greatest;
}

/// Scalings have no channel: a clip that was written has to be given them.
clip::PoseTrack MakeScaledPoses(clip::Clip const & motion, clip::PoseTrack const & scaled)
{
    clip::PoseTrack poses = clip::MakePoses(motion);
    for (std::size_t frame = 0; frame < poses.FrameCount(); ++frame)
    {
        for (std::size_t i = 0; i < poses.JointCount(); ++i)
        {
            poses.Frame(frame)[i].scaling = scaled.Frame(frame)[i].scaling;
        }
    }
    return poses;
}

Rebake Reexpress(Subject const & subject, clip::ChannelOrder const & order, clip::WorldPositions const & positions)
{
    Rebake rebake{Reorder(subject.motion, subject.poses, order, Extraction::Plain),
                  Reorder(subject.motion, subject.poses, order, Extraction::Nearest),
                  ComputeWorldAngles(subject.motion.skeleton, subject.poses, subject.composition, order), 0};
    clip::Clip const & nearest = rebake.nearest.clip;
    clip::PoseTrack const poses = MakeScaledPoses(nearest, subject.poses);
    rebake.difference = ComputeGreatestDifference(
        positions, clip::ComputeWorldMotion(nearest.skeleton, poses, subject.composition).positions);
    return rebake;
}

void WriteRebake(clip::OutputFolder & folder, Rebake const & rebake, std::string const & name)
{
    clip::Clip const & plain = rebake.plain.clip;
    clip::Clip const & nearest = rebake.nearest.clip;
    folder.Write("baked.bvh", [&](std::ostream & stream) { clip::WriteClip(stream, nearest); });
    folder.Write("angles.csv", [&](std::ostream & stream) { WriteAngleTable(stream, nearest); });
    folder.Write("world-angles.csv",
                 [&](std::ostream & stream) { WriteWorldAngleTable(stream, nearest.skeleton, rebake.worldAngles); });
    folder.Write("curves.svg",
                 [&](std::ostream & stream) {
                     DrawCurves({plain, nearest}, FindMostChanged(plain, nearest), name).Write(stream);
                 });
}

void WritePoses(clip::OutputFolder & folder, std::string const & name, Subject const & subject)
{
    std::vector<unsigned char> const bytes =
        EncodePoses({subject.poses, subject.composition, subject.motion.frameTime});
    folder.Write(
        name, [&](std::ostream & stream)
        { stream.write(reinterpret_cast<char const *>(bytes.data()), static_cast<std::streamsize>(bytes.size())); });
}

/// All results are written before the first takes its place.
std::vector<std::filesystem::path> WriteResults(Options const & options, Subject const & subject,
                                                clip::WorldPositions const & positions,
                                                std::optional<Rebake> const & rebake)
{
    std::string const name = options.clip.stem().string();
    clip::Skeleton const & skeleton = subject.motion.skeleton;
    clip::OutputFolder folder(options.outputFolder);
    folder.Write("world.csv", [&](std::ostream & stream) { WriteWorldTable(stream, skeleton, positions); });
    folder.Write("pose.svg", [&](std::ostream & stream) { DrawPoses(subject.motion, positions, name).Write(stream); });
    if (rebake)
    {
        WriteRebake(folder, *rebake, name);
    }
    if (options.poseTarget.empty())
    {
        return folder.Publish();
    }
    std::filesystem::path const parent =
        options.poseTarget.has_parent_path() ? options.poseTarget.parent_path() : std::filesystem::path(".");
    std::string const poseName = options.poseTarget.filename().string();
    clip::OutputFolder poseFolder(parent);
    // In one folder with the results the poses must not take the name of one.
    if (std::filesystem::equivalent(parent, options.outputFolder))
    {
        WritePoses(folder, poseName, subject);
        return folder.Publish();
    }
    WritePoses(poseFolder, poseName, subject);
    poseFolder.CheckPlaces();
    std::vector<std::filesystem::path> files = folder.Publish();
    poseFolder.Publish();
    files.push_back(options.poseTarget);
    return files;
}

/// \param seconds from channels to world matrices
void PrintSummary(std::ostream & output, Subject const & subject, clip::WorldMotion const & world, double seconds)
{
    clip::Skeleton const & skeleton = subject.motion.skeleton;
    std::size_t const frameCount = subject.poses.FrameCount();
    std::size_t const jointCount = clip::CountJoints(skeleton);
    std::size_t const siteCount = skeleton.joints.size() - jointCount;
    clip::Bounds const bounds = clip::ComputeBounds(world.positions.All());
    double const jointFrames = static_cast<double>(jointCount) * static_cast<double>(frameCount);
    bool const isByComponent = subject.composition == clip::Composition::ByComponent;
    output << "joints        " << jointCount << " and " << siteCount << " end sites\n"
           << "frames        " << frameCount << '\n'
           << "length        " << clip::RoundedText(static_cast<double>(frameCount) * subject.motion.frameTime, 3)
           << " s\n"
           << "bounding box  " << clip::PointText(bounds.smallest, 2) << " to " << clip::PointText(bounds.largest, 2)
           << '\n'
           << "composition   by " << (isByComponent ? "component" : "matrix") << ", " << world.shearedCount << " of "
           << skeleton.joints.size() * frameCount << " world transformations sheared\n"
           << "evaluation    " << clip::RoundedText(1e9 * seconds / jointFrames, 1) << " ns per joint and frame\n";
}

void PrintJumps(std::ostream & output, std::string_view which, clip::Clip const & motion)
{
    output << which << CountJumps(motion, k_HalfTurn) << " over half a turn, " << CountJumps(motion, k_QuarterTurn)
           << " over a quarter turn\n";
}

void PrintRebake(std::ostream & output, clip::Clip const & motion, clip::ChannelOrder const & order,
                 Rebake const & rebake)
{
    output << "order         " << order.name << ", from the outermost to the innermost\n";
    PrintJumps(output, "jumps         before, each frame by itself:        ", rebake.plain.clip);
    PrintJumps(output, "              after, nearest to the frame before:  ", rebake.nearest.clip);
    PrintJumps(output, "              in the clip as it came:              ", motion);
    output << "difference    " << clip::RoughText(rebake.difference, 2)
           << " at most between the world positions of the clip and of the baked one\n";
    if (rebake.nearest.repairs > 0)
    {
        output << "repairs       " << rebake.nearest.repairs << " rotations at a pole that the extraction missed\n";
    }
}

void ScaleRoots(clip::PoseTrack & poses, clip::Skeleton const & skeleton, C3DVector3Tpl<double> const & scale)
{
    for (std::size_t frame = 0; frame < poses.FrameCount(); ++frame)
    {
        for (std::size_t i = 0; i < poses.JointCount(); ++i)
        {
            if (skeleton.joints[i].parent == clip::k_NoParent)
            {
                poses.Frame(frame)[i].scaling = scale;
            }
        }
    }
}

clip::Clip ReadClip(std::filesystem::path const & file, std::optional<double> const & smoothing)
{
    clip::Clip motion = clip::ReadClip(file);
    if (smoothing)
    {
        Smooth(motion, *smoothing);
    }
    return motion;
}

/// The clip to blend in, of the same skeleton and at the same pace.
clip::Clip ReadBlendClip(std::filesystem::path const & file, clip::Clip const & motion,
                         std::optional<double> const & smoothing)
{
    clip::Clip other = ReadClip(file, smoothing);
    if (!AreSameSkeleton(motion.skeleton, other.skeleton))
    {
        throw MismatchError(file.string() + ": the skeleton is another one than that of the clip");
    }
    if (std::abs(other.frameTime - motion.frameTime) > k_SamePace * motion.frameTime)
    {
        throw MismatchError(file.string() + ": a frame takes another time than one of the clip");
    }
    return other;
}

Subject MakeSubject(Options const & options)
{
    clip::Clip motion = ReadClip(options.clip, options.smoothing);
    if (!options.poseSource.empty())
    {
        SavedPoses saved = LoadPoses(options.poseSource, motion.skeleton);
        motion.frameTime = saved.frameTime;
        return {std::move(motion), std::move(saved.poses), saved.composition, 0};
    }
    auto [poses, seconds] = clip::Measure([&motion] { return clip::MakePoses(motion); });
    return {std::move(motion), std::move(poses), clip::Composition::ByComponent, seconds};
}

Subject Prepare(Options const & options)
{
    Subject subject = MakeSubject(options);
    subject.composition = options.composition.value_or(subject.composition);
    if (!options.blendClip.empty())
    {
        clip::Clip const other = ReadBlendClip(options.blendClip, subject.motion, options.smoothing);
        subject.poses = Blend(subject.motion, subject.poses, other, clip::MakePoses(other), options.blendShare);
    }
    if (options.scale)
    {
        ScaleRoots(subject.poses, subject.motion.skeleton, *options.scale);
    }
    return subject;
}

void Bake(Options const & options, std::ostream & output)
{
    Subject const subject = Prepare(options);
    auto const [world, seconds] = clip::Measure(
        [&subject] { return clip::ComputeWorldMotion(subject.motion.skeleton, subject.poses, subject.composition); });
    std::optional<Rebake> const rebake =
        options.order ? std::optional(Reexpress(subject, *options.order, world.positions)) : std::nullopt;
    std::vector<std::filesystem::path> const files = WriteResults(options, subject, world.positions, rebake);
    PrintSummary(output, subject, world, subject.seconds + seconds);
    if (options.smoothing)
    {
        output << "smoothing     below " << clip::RoughText(*options.smoothing, 6) << " hertz alone\n";
    }
    if (rebake)
    {
        PrintRebake(output, subject.motion, *options.order, *rebake);
    }
    for (std::filesystem::path const & file : files)
    {
        output << "wrote         " << file.string() << '\n';
    }
}

} // namespace

int Run(std::span<char const * const> arguments, std::ostream & output, std::ostream & errors)
{
    return clip::RunProgram("bake", output, errors,
                            [&]
                            {
                                Options const options = ParseOptions(arguments);
                                options.isHelpWanted ? void(output << k_Usage) : Bake(options, output);
                            });
}

} // namespace bake
