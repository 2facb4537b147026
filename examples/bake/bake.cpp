#include "bake/bake.h"

#include "bake/angle_motion.h"
#include "bake/curve_picture.h"
#include "bake/joint_table.h"
#include "bake/options.h"
#include "bake/pose_picture.h"
#include "bake/reorder.h"
#include "clip/number_text.h"
#include "clip/output_folder.h"
#include "clip/reader.h"
#include "clip/skeleton.h"
#include "clip/writer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace bake
{

namespace
{

constexpr int k_Done = 0;
constexpr int k_Failed = 1;
constexpr int k_WrongInput = 2;

struct Evaluation
{
    clip::WorldPositions positions;
    double seconds;
};

Evaluation Evaluate(clip::Clip const & motion)
{
    auto const start = std::chrono::steady_clock::now();
    clip::WorldPositions positions = clip::ComputeWorldPositions(motion);
    std::chrono::duration<double> const elapsed = std::chrono::steady_clock::now() - start;
    return {std::move(positions), elapsed.count()};
}

/// The clip in another order, and what that changed.
struct Rebake
{
    Reordering plain;
    Reordering nearest;
    double difference; ///< the greatest between the world positions of the clip and of the nearest one
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

Rebake Reexpress(clip::Clip const & motion, clip::ChannelOrder const & order, clip::WorldPositions const & positions)
{
    Rebake rebake{Reorder(motion, order, Extraction::Plain), Reorder(motion, order, Extraction::Nearest), 0};
    rebake.difference = ComputeGreatestDifference(positions, clip::ComputeWorldPositions(rebake.nearest.clip));
    return rebake;
}

void WriteRebake(clip::OutputFolder & folder, Rebake const & rebake, std::string const & name)
{
    clip::Clip const & plain = rebake.plain.clip;
    clip::Clip const & nearest = rebake.nearest.clip;
    folder.Write("baked.bvh", [&](std::ostream & stream) { clip::WriteClip(stream, nearest); });
    folder.Write("angles.csv", [&](std::ostream & stream) { WriteAngleTable(stream, nearest); });
    folder.Write("curves.svg",
                 [&](std::ostream & stream) {
                     DrawCurves({plain, nearest}, FindMostChanged(plain, nearest), name).Write(stream);
                 });
}

std::vector<std::filesystem::path> WriteResults(Options const & options, clip::Clip const & motion,
                                                clip::WorldPositions const & positions,
                                                std::optional<Rebake> const & rebake)
{
    std::string const name = options.clip.stem().string();
    clip::OutputFolder folder(options.outputFolder);
    folder.Write("world.csv", [&](std::ostream & stream) { WriteWorldTable(stream, motion.skeleton, positions); });
    folder.Write("pose.svg", [&](std::ostream & stream) { DrawPoses(motion, positions, name).Write(stream); });
    if (rebake)
    {
        WriteRebake(folder, *rebake, name);
    }
    return folder.Publish();
}

std::string PointText(C3DVector3Tpl<double> const & point)
{
    std::string text;
    for (double const coordinate : {point.X, point.Y, point.Z})
    {
        text += text.empty() ? "(" : ", ";
        text += clip::RoundedText(coordinate, 2);
    }
    return text += ')';
}

void PrintSummary(std::ostream & output, clip::Clip const & motion, Evaluation const & evaluation)
{
    std::size_t const jointCount = clip::CountJoints(motion.skeleton);
    std::size_t const siteCount = motion.skeleton.joints.size() - jointCount;
    clip::Bounds const bounds = clip::ComputeBounds(evaluation.positions.All());
    double const jointFrames = static_cast<double>(jointCount) * static_cast<double>(motion.frameCount);
    output << "joints        " << jointCount << " and " << siteCount << " end sites\n"
           << "frames        " << motion.frameCount << '\n'
           << "length        " << clip::RoundedText(motion.Length(), 3) << " s\n"
           << "bounding box  " << PointText(bounds.smallest) << " to " << PointText(bounds.largest) << '\n'
           << "evaluation    " << clip::RoundedText(1e9 * evaluation.seconds / jointFrames, 1)
           << " ns per joint and frame\n";
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

void Bake(Options const & options, std::ostream & output)
{
    clip::Clip const motion = clip::ReadClip(options.clip);
    Evaluation const evaluation = Evaluate(motion);
    std::optional<Rebake> const rebake =
        options.order ? std::optional(Reexpress(motion, *options.order, evaluation.positions)) : std::nullopt;
    std::vector<std::filesystem::path> const files = WriteResults(options, motion, evaluation.positions, rebake);
    PrintSummary(output, motion, evaluation);
    if (rebake)
    {
        PrintRebake(output, motion, *options.order, *rebake);
    }
    for (std::filesystem::path const & file : files)
    {
        output << "wrote         " << file.string() << '\n';
    }
}

} // namespace

int Run(std::span<char const * const> arguments, std::ostream & output, std::ostream & errors)
{
    try
    {
        Options const options = ParseOptions(arguments);
        options.isHelpWanted ? void(output << k_Usage) : Bake(options, output);
        if (!output.flush())
        {
            throw std::runtime_error("cannot write to standard output");
        }
        return k_Done;
    }
    catch (UsageError const & error)
    {
        errors << "bake: " << error.what() << "\nTry \"bake --help\".\n";
        return k_WrongInput;
    }
    catch (clip::FormatError const & error)
    {
        errors << error.what() << '\n';
        return k_WrongInput;
    }
    catch (std::exception const & error)
    {
        errors << "bake: " << error.what() << '\n';
        return k_Failed;
    }
}

} // namespace bake
