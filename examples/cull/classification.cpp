#include "cull/classification.h"

#include "clip/stopwatch.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

namespace cull
{

namespace
{

enum class Strategy : unsigned char
{
    WorldSpace,
    ViewSpace
};

/// What one strategy answers, and the seconds it took.
struct Answers
{
    std::vector<tagE3DVIEWINTERSECTION> answers;
    double seconds = 0;
};

/// How many boxes in a row the camera sees from one place.
std::size_t CountAtOnce(JointBoxes const & boxes, CameraMotion const & camera)
{
    return camera.IsStill() ? boxes.boxes.size() : boxes.joints.size();
}

Answers ClassifyIn(Strategy strategy, JointBoxes const & boxes, CameraMotion const & camera)
{
    C3DViewVolume volume;
    volume.SetViewSpace(strategy == Strategy::ViewSpace ? 1 : 0);
    Answers result;
    result.answers.resize(boxes.boxes.size());
    std::size_t const atOnce = CountAtOnce(boxes, camera);
    for (std::size_t first = 0; first < boxes.boxes.size(); first += atOnce)
    {
        SetVolume(volume, camera.At(first / boxes.joints.size()));
        std::span<JointBox const> const seen = std::span(boxes.boxes).subspan(first, atOnce);
        auto const classify = [&]
        {
            return std::transform(seen.begin(), seen.end(), result.answers.begin() + static_cast<std::ptrdiff_t>(first),
                                  [&volume](JointBox const & box) { return volume.Classify(box.data(), nullptr); });
        };
        result.seconds += clip::Measure(classify).second;
    }
    return result;
}

} // namespace

Classification Classify(JointBoxes const & boxes, CameraMotion const & camera)
{
    auto [world, worldSeconds] = ClassifyIn(Strategy::WorldSpace, boxes, camera);
    auto [view, viewSeconds] = ClassifyIn(Strategy::ViewSpace, boxes, camera);
    return {std::move(world), std::move(view), worldSeconds, viewSeconds};
}

AnswerCounts CountAnswers(Classification const & classification)
{
    AnswerCounts counts{};
    for (std::size_t i = 0; i < classification.world.size(); ++i)
    {
        ++counts[static_cast<std::size_t>(classification.world[i])][static_cast<std::size_t>(classification.view[i])];
    }
    return counts;
}

std::size_t CountBeyondBounds(JointBoxes const & boxes, CameraMotion const & camera)
{
    std::size_t count = 0;
    std::size_t const atOnce = CountAtOnce(boxes, camera);
    for (std::size_t first = 0; first < boxes.boxes.size(); first += atOnce)
    {
        clip::Bounds const volume = clip::ComputeBounds(ComputeCorners(camera.At(first / boxes.joints.size())));
        auto const isBeyond = [&volume](JointBox const & box)
        {
            auto const & [low, high] = box;
            return volume.smallest.X > high.X || low.X > volume.largest.X || volume.smallest.Y > high.Y ||
                   low.Y > volume.largest.Y || volume.smallest.Z > high.Z || low.Z > volume.largest.Z;
        };
        std::span<JointBox const> const seen = std::span(boxes.boxes).subspan(first, atOnce);
        count += static_cast<std::size_t>(std::count_if(seen.begin(), seen.end(), isBeyond));
    }
    return count;
}

void CheckAgreement(Classification const & classification, JointBoxes const & boxes, clip::Skeleton const & skeleton)
{
    for (std::size_t i = 0; i < classification.world.size(); ++i)
    {
        tagE3DVIEWINTERSECTION const world = classification.world[i];
        tagE3DVIEWINTERSECTION const view = classification.view[i];
        if (world != view && world != E3DVIEWINTERSECTION_CROSSING && view != E3DVIEWINTERSECTION_CROSSING)
        {
            std::size_t const joint = boxes.joints[i % boxes.joints.size()];
            throw ContradictionError("the strategies contradict each other in frame " +
                                     std::to_string(i / boxes.joints.size()) + ", joint " +
                                     skeleton.joints[joint].name + ": " +
                                     std::string(k_ClassNames[static_cast<std::size_t>(world)]) + " in world space, " +
                                     std::string(k_ClassNames[static_cast<std::size_t>(view)]) + " in view space");
        }
    }
}

} // namespace cull
