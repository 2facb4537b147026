#include "bake/blend.h"
#include "bake/pose_file.h"
#include "bake/reorder.h"
#include "bake/world_angles.h"
#include "clip/reader.h"
#include "clip/skeleton.h"

#include "examples/pose_checks.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string_view>

namespace
{

using clip::Channel;
using Vector = C3DVector3Tpl<double>;

void Require(bool holds)
{
    if (!holds)
    {
        std::abort();
    }
}

bool IsFinite(Vector const & vector)
{
    return std::isfinite(vector.X) && std::isfinite(vector.Y) && std::isfinite(vector.Z);
}

/// A root, a joint and its end site, whose poses the files of the corpus hold.
clip::Clip Figure()
{
    clip::Clip figure;
    PutJoint(figure.skeleton, "root", clip::k_NoParent, {0, 0, 0},
             {Channel::YPosition, Channel::ZRotation, Channel::XRotation, Channel::YRotation});
    PutJoint(figure.skeleton, "child", 0, {0, 1, 0}, {Channel::YRotation, Channel::XRotation});
    PutEndSite(figure.skeleton, 1, {0, 1, 0});
    figure.frameTime = 1;
    return figure;
}

/// What was read is finite, and stays so wherever the program takes it.
void Bake(clip::Clip const & figure, bake::SavedPoses const & saved)
{
    for (std::size_t frame = 0; frame < saved.poses.FrameCount(); ++frame)
    {
        std::span<clip::JointPose const> const poses = saved.poses.Frame(frame);
        Require(std::all_of(poses.begin(), poses.end(),
                            [](clip::JointPose const & pose)
                            { return IsFinite(pose.translation) && IsFinite(pose.angles) && IsFinite(pose.scaling); }));
    }
    auto const areFinite = [](std::span<Vector const> vectors)
    { return std::all_of(vectors.begin(), vectors.end(), IsFinite); };
    Require(areFinite(clip::ComputeWorldMotion(figure.skeleton, saved.poses, saved.composition).positions.All()));
    clip::ChannelOrder const & order = clip::k_ChannelOrders[saved.poses.FrameCount() % clip::k_ChannelOrders.size()];
    Require(areFinite(bake::ComputeWorldAngles(figure.skeleton, saved.poses, saved.composition, order).degrees));
    clip::Clip const reordered = bake::Reorder(figure, saved.poses, order, bake::Extraction::Nearest).clip;
    Require(std::all_of(reordered.values.begin(), reordered.values.end(), [](double v) { return std::isfinite(v); }));
}

/// What was read is written and read again as the same. The bytes need not be: a file may hold what nothing reads.
void RoundTrip(clip::Clip const & figure, bake::SavedPoses const & saved)
{
    bake::SavedPoses const again = bake::DecodePoses(bake::EncodePoses(saved), figure.skeleton, "again.bin");
    Require(HaveSameBits(again.poses, saved.poses) && again.composition == saved.composition &&
            again.frameTime == saved.frameTime);
}

bool IsOfClips(clip::JointPose const & pose)
{
    auto const largest = [](Vector const & v) { return std::max({std::abs(v.X), std::abs(v.Y), std::abs(v.Z)}); };
    return largest(pose.translation) <= 2 * clip::k_LargestNumber && largest(pose.angles) <= clip::k_LargestNumber;
}

/// A blend of what clips can hold can be saved as any poses can.
void BlendBackwards(clip::Clip const & figure, bake::SavedPoses const & saved)
{
    clip::PoseTrack backwards(saved.poses.FrameCount(), saved.poses.JointCount());
    for (std::size_t frame = 0; frame < saved.poses.FrameCount(); ++frame)
    {
        std::span<clip::JointPose const> const poses = saved.poses.Frame(saved.poses.FrameCount() - 1 - frame);
        if (!std::all_of(poses.begin(), poses.end(), IsOfClips))
        {
            return;
        }
        std::copy(poses.begin(), poses.end(), backwards.Frame(frame).begin());
    }
    clip::PoseTrack const blend = bake::Blend(figure, saved.poses, figure, backwards, 0.3);
    bake::DecodePoses(bake::EncodePoses({blend, saved.composition, saved.frameTime}), figure.skeleton, "blend.bin");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size)
{
    static clip::Clip const figure = Figure();
    try
    {
        bake::SavedPoses const saved = bake::DecodePoses({data, size}, figure.skeleton, "fuzz.bin");
        Bake(figure, saved);
        RoundTrip(figure, saved);
        BlendBackwards(figure, saved);
    }
    catch (bake::PoseFileError const & error)
    {
        std::string_view const text = error.what();
        Require(text.starts_with("fuzz.bin: ") && text.find('\n') == std::string_view::npos);
    }
    return 0;
}
