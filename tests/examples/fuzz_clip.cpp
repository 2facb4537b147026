#include "bake/angle_motion.h"
#include "bake/curve_picture.h"
#include "bake/joint_table.h"
#include "bake/pose_picture.h"
#include "bake/reorder.h"
#include "clip/reader.h"
#include "clip/skeleton.h"
#include "clip/writer.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string_view>

namespace
{

void Require(bool holds)
{
    if (!holds)
    {
        std::abort();
    }
}

/// What was read can be evaluated, with finite positions, and drawn.
void Bake(clip::Clip const & motion)
{
    constexpr std::size_t k_Affordable = 100000;
    if (motion.frameCount > k_Affordable / motion.skeleton.joints.size())
    {
        return;
    }
    clip::WorldPositions const positions = clip::ComputeWorldPositions(motion);
    for (C3DVector3Tpl<double> const & place : positions.All())
    {
        Require(std::isfinite(place.X) && std::isfinite(place.Y) && std::isfinite(place.Z));
    }
    std::ostringstream sink;
    bake::WriteWorldTable(sink, motion.skeleton, positions);
    bake::DrawPoses(motion, positions, "fuzz").Write(sink);
}

/// What was read can be put in another order, with finite angles, and drawn.
void Rebake(clip::Clip const & motion)
{
    constexpr std::size_t k_Affordable = 20000;
    if (motion.frameCount > k_Affordable / motion.skeleton.joints.size())
    {
        return;
    }
    clip::ChannelOrder const & order = clip::k_ChannelOrders[motion.values.size() % clip::k_ChannelOrders.size()];
    clip::Clip const plain = bake::Reorder(motion, order, bake::Extraction::Plain).clip;
    clip::Clip const nearest = bake::Reorder(motion, order, bake::Extraction::Nearest).clip;
    for (double const value : nearest.values)
    {
        Require(std::isfinite(value));
    }
    std::ostringstream sink;
    clip::WriteClip(sink, nearest);
    bake::WriteAngleTable(sink, nearest);
    bake::DrawCurves({plain, nearest}, bake::FindMostChanged(plain, nearest), "fuzz").Write(sink);
}

/// What was read is written and read again as the same.
void RoundTrip(clip::Clip const & motion)
{
    std::stringstream text;
    clip::WriteClip(text, motion);
    clip::Clip const again = clip::ReadClip(text, "again.bvh");
    Require(again.values == motion.values && again.frameTime == motion.frameTime &&
            again.skeleton.joints.size() == motion.skeleton.joints.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const * data, std::size_t size)
{
    try
    {
        clip::Clip const motion =
            clip::ParseClip({reinterpret_cast<char const *>(data), size}, "fuzz.bvh"); // NOLINT: bytes are the text
        RoundTrip(motion);
        Bake(motion);
        Rebake(motion);
    }
    catch (clip::FormatError const & error)
    {
        std::string_view const text(reinterpret_cast<char const *>(data), size); // NOLINT: as above
        auto const breaks = std::count_if(text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; });
        Require(error.Line() >= 1 && error.Line() <= static_cast<std::size_t>(breaks) + 1);
    }
    return 0;
}
