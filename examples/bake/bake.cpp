#include "bake/bake.h"

#include "bake/options.h"
#include "bake/pose_picture.h"
#include "bake/world_table.h"
#include "clip/number_text.h"
#include "clip/output_folder.h"
#include "clip/reader.h"
#include "clip/skeleton.h"

#include <chrono>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace bake
{

namespace
{

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kWrongInput = 2;

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

std::vector<std::filesystem::path> WriteResults(Options const & options, clip::Clip const & motion,
                                                clip::WorldPositions const & positions)
{
    clip::OutputFolder folder(options.outputFolder);
    folder.Write("world.csv", [&](std::ostream & stream) { WriteWorldTable(stream, motion.skeleton, positions); });
    folder.Write("pose.svg", [&](std::ostream & stream)
                 { DrawPoses(motion, positions, options.clip.stem().string()).Write(stream); });
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

void Bake(Options const & options, std::ostream & output)
{
    clip::Clip const motion = clip::ReadClip(options.clip);
    Evaluation const evaluation = Evaluate(motion);
    std::vector<std::filesystem::path> const files = WriteResults(options, motion, evaluation.positions);
    PrintSummary(output, motion, evaluation);
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
        options.isHelpWanted ? void(output << kUsage) : Bake(options, output);
        if (!output.flush())
        {
            throw std::runtime_error("cannot write to standard output");
        }
        return kDone;
    }
    catch (UsageError const & error)
    {
        errors << "bake: " << error.what() << "\nTry \"bake --help\".\n";
        return kWrongInput;
    }
    catch (clip::FormatError const & error)
    {
        errors << error.what() << '\n';
        return kWrongInput;
    }
    catch (std::exception const & error)
    {
        errors << "bake: " << error.what() << '\n';
        return kFailed;
    }
}

} // namespace bake
