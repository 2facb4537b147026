#include "spectrum/motion_spectra.h"

#include "clip/joint_rotation.h"
#include "clip/skeleton.h"
#include "clip/whole_turns.h"
#include "spectrum/amplitudes.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace spectrum
{

namespace
{

using Vector = C3DVector3Tpl<double>;

/// One sequence for each axis.
using Sequences = std::array<std::vector<double>, 3>;

/// Sequences of a value for each frame.
Sequences Collect(std::size_t frameCount, std::function<Vector(std::size_t)> const & valueOf)
{
    Sequences sequences;
    for (std::size_t frame = 0; frame < frameCount; ++frame)
    {
        Vector const value = valueOf(frame);
        for (int axis = 0; axis < 3; ++axis)
        {
            sequences[static_cast<std::size_t>(axis)].push_back(value.Get(axis));
        }
    }
    return sequences;
}

/// The angles of a joint in degrees, without jumps by whole turns.
Sequences CollectAngles(clip::Clip const & motion, std::size_t joint)
{
    clip::JointRotation const rotation(motion.skeleton.joints[joint]);
    Sequences angles =
        Collect(motion.frameCount, [&](std::size_t frame) { return rotation.Degrees(motion.Frame(frame)); });
    for (std::vector<double> & sequence : angles)
    {
        std::vector<double> const turns = clip::FindJumpedTurns(sequence);
        std::transform(sequence.begin(), sequence.end(), turns.begin(), sequence.begin(), std::minus<>());
    }
    return angles;
}

double ComputeWay(Sequences const & angles)
{
    double way = 0;
    for (std::vector<double> const & sequence : angles)
    {
        for (std::size_t i = 1; i < sequence.size(); ++i)
        {
            way += std::abs(sequence[i] - sequence[i - 1]);
        }
    }
    return way;
}

Curve MeasureCurve(AmplitudeMeter & meter, std::size_t joint, Sequences const & sequences)
{
    Curve curve{joint, {}, std::vector<double>(meter.FrequencyCount())};
    std::transform(sequences.begin(), sequences.end(), curve.axes.begin(),
                   [&meter](std::vector<double> const & values) { return meter.Measure(values); });
    for (std::size_t i = 0; i < curve.all.size(); ++i)
    {
        curve.all[i] = std::hypot(curve.axes[0][i], curve.axes[1][i], curve.axes[2][i]);
    }
    return curve;
}

} // namespace

std::size_t FindMostTurning(clip::Clip const & motion)
{
    std::size_t mostTurning = 0;
    double longest = 0;
    for (std::size_t joint = 0; joint < motion.skeleton.joints.size(); ++joint)
    {
        double const way = ComputeWay(CollectAngles(motion, joint));
        if (way > longest)
        {
            mostTurning = joint;
            longest = way;
        }
    }
    return mostTurning;
}

std::size_t FindJoint(clip::Skeleton const & skeleton, std::string const & name)
{
    auto const found =
        std::find_if(skeleton.joints.begin(), skeleton.joints.end(),
                     [&name](clip::Joint const & joint) { return !joint.isEndSite && joint.name == name; });
    if (found == skeleton.joints.end())
    {
        throw SpectrumError("the clip has no joint \"" + name + "\"");
    }
    return static_cast<std::size_t>(found - skeleton.joints.begin());
}

MotionSpectra ComputeSpectra(clip::Clip const & motion, std::size_t joint)
{
    if (!std::isfinite(1 / motion.frameTime))
    {
        throw SpectrumError("the clip's frames follow each other too fast for its frequencies to be told");
    }
    AmplitudeMeter meter(motion.frameCount);
    clip::WorldPositions const positions = clip::ComputeWorldPositions(motion);
    MotionSpectra spectra{meter.FrequencyStep() / motion.frameTime,
                          meter.FirstTold(),
                          MeasureCurve(meter, joint, CollectAngles(motion, joint)),
                          {}};
    for (int const end : clip::FindEnds(motion.skeleton))
    {
        auto const index = static_cast<std::size_t>(end);
        spectra.paths.push_back(
            MeasureCurve(meter, index,
                         Collect(motion.frameCount, [&](std::size_t frame) { return positions.Frame(frame)[index]; })));
    }
    return spectra;
}

} // namespace spectrum
