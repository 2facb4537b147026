#include "bake/smoothing.h"

#include "clip/real_transform.h"
#include "clip/whole_turns.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <functional>
#include <numbers>
#include <span>
#include <vector>

namespace bake
{

namespace
{

constexpr double k_PassShare = 0.5;  ///< of the frequency, up to which all stays
constexpr double k_PadCycles = 16;   ///< of the frequency, on either side: what the filter still feels is far less
constexpr double k_MostPadShare = 8; ///< of the clip; low frequencies ask for no more

/// A half cosine from 1 at 0 to 0 at 1.
double FallOff(double share)
{
    return (1 + std::cos(std::numbers::pi * std::clamp(share, 0.0, 1.0))) / 2;
}

/// Smooths sequences of one length.
///
/// The straight line from the first to the last value is set aside, as a walk leads somewhere and a turn goes on. What
/// remains is 0 at both ends, and goes on beyond them as its mirror image in the end point: values and slopes run on
/// without a break, so that nothing rings, and the mean around an end is the end itself. Mirrored in a vertical line
/// instead, every motion would come to rest at its ends. Far outside the continuation fades to 0, where the end of the
/// padded sequence meets its beginning. (G. Smith, "Padding point extrapolation techniques for the Butterworth digital
/// filter", 1989.)
class Smoother
{
public:
    /// \param count of values, at least 2
    /// \param frequency in cycles per value
    Smoother(std::size_t count, double frequency)
        : m_Count(count), m_Frequency(frequency), m_Transform(PaddedSize(count, frequency)), m_Rest(count)
    {
    }

    void Smooth(std::span<double> values)
    {
        double const first = values.front();
        double const slope = (values.back() - first) / static_cast<double>(m_Count - 1);
        auto const line = [first, slope](std::size_t i) { return first + slope * static_cast<double>(i); };
        for (std::size_t i = 0; i < m_Count; ++i)
        {
            m_Rest[i] = values[i] - line(i);
        }
        Pad();
        Filter();
        std::span<double const> const smooth = m_Transform.Values();
        for (std::size_t i = 1; i + 1 < m_Count; ++i)
        {
            values[i] = line(i) + smooth[i];
        }
    }

private:
    static std::size_t PaddedSize(std::size_t count, double frequency)
    {
        double const pad = std::min(k_PadCycles / frequency, k_MostPadShare * static_cast<double>(count));
        return std::bit_ceil(count + 2 * static_cast<std::size_t>(std::ceil(pad)));
    }

    /// The rest beyond its end, by so many values: mirrored in the points of both ends in turn, it repeats.
    double Beyond(std::size_t distance) const
    {
        std::size_t const last = m_Count - 1;
        std::size_t const place = distance % (2 * last);
        return place <= last ? -m_Rest[last - place] : m_Rest[place - last];
    }

    /// The same before its beginning.
    double Before(std::size_t distance) const
    {
        std::size_t const last = m_Count - 1;
        std::size_t const place = distance % (2 * last);
        return place <= last ? -m_Rest[place] : m_Rest[2 * last - place];
    }

    void Pad()
    {
        std::span<double> const padded = m_Transform.Values();
        std::copy(m_Rest.begin(), m_Rest.end(), padded.begin());
        std::size_t const gap = padded.size() - m_Count;
        double const half = static_cast<double>(gap + 1) / 2;
        for (std::size_t i = 1; i <= gap; ++i)
        {
            std::size_t const toBeginning = gap + 1 - i;
            auto const distance = static_cast<double>(std::min(i, toBeginning));
            double const value = i < toBeginning ? Beyond(i) : Before(toBeginning);
            padded[m_Count - 1 + i] = value * FallOff(2 * distance / half - 1);
        }
    }

    void Filter()
    {
        m_Transform.Forward();
        auto const size = static_cast<double>(m_Transform.Values().size());
        for (std::size_t k = 1; k <= m_Transform.Values().size() / 2; ++k)
        {
            double const share = static_cast<double>(k) / size / m_Frequency;
            m_Transform.Scale(k, FallOff((share - k_PassShare) / (1 - k_PassShare)));
        }
        m_Transform.Backward();
    }

    std::size_t m_Count;
    double m_Frequency;
    clip::RealTransform m_Transform;
    std::vector<double> m_Rest;
};

/// Smooths one channel, its values one frame after the other.
void SmoothChannel(Smoother & smoother, clip::Channel channel, std::vector<double> & values)
{
    if (!clip::IsRotation(channel))
    {
        smoother.Smooth(values);
        return;
    }
    std::vector<double> const turns = clip::FindJumpedTurns(values);
    std::transform(values.begin(), values.end(), turns.begin(), values.begin(), std::minus<>());
    smoother.Smooth(values);
    std::transform(values.begin(), values.end(), turns.begin(), values.begin(), std::plus<>());
}

} // namespace

void Smooth(clip::Clip & motion, double hertz)
{
    if (motion.frameCount < 2)
    {
        return;
    }
    Smoother smoother(motion.frameCount, hertz * motion.frameTime);
    std::vector<double> values(motion.frameCount);
    for (clip::Joint const & joint : motion.skeleton.joints)
    {
        for (std::size_t i = 0; i < joint.channels.size(); ++i)
        {
            std::size_t const place = joint.firstChannel + i;
            for (std::size_t frame = 0; frame < values.size(); ++frame)
            {
                values[frame] = motion.Frame(frame)[place];
            }
            SmoothChannel(smoother, joint.channels[i], values);
            for (std::size_t frame = 0; frame < values.size(); ++frame)
            {
                motion.Frame(frame)[place] = values[frame];
            }
        }
    }
}

} // namespace bake
