#pragma once

#include "clip/real_transform.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace spectrum
{

/// Measures how widely sequences of one length oscillate, frequency by frequency.
///
/// Before the transform the best straight line is taken out, the sequence is weighted by a Hann window, and zeros are
/// put behind it up to a power of two. Without the line, a walk's progress would cover everything; without the window,
/// whose sides fall off fast, the jump from the last value to the first would, as the transform takes a sequence to
/// repeat. The zeros add nothing but points on the same curve: at least four on every cycle per clip, so that an
/// amplitude is read within 1.5 % of its height wherever its frequency lies. (F. J. Harris, "On the use of windows for
/// harmonic analysis with the discrete Fourier transform", 1978.)
class AmplitudeMeter
{
public:
    /// \param count of values, above 0
    explicit AmplitudeMeter(std::size_t count);

    /// Of how many frequencies it tells the amplitude: from 0 to half a cycle per value, evenly.
    std::size_t FrequencyCount() const { return m_Size / 2 + 1; }
    /// From one frequency to the next, in cycles per value.
    double FrequencyStep() const { return 1 / static_cast<double>(m_Size); }
    /// The first frequency of at least one cycle over all values.
    std::size_t FirstTold() const { return (m_Size + m_Window.size() - 1) / m_Window.size(); }

    /// The amplitudes of the sequence: a sine of amplitude 1 has 1 at its frequency. What is within rounding of the
    /// values counts as 0.
    std::vector<double> Measure(std::span<double const> values);

private:
    std::size_t m_Size;
    std::vector<double> m_Window; ///< its sum is 1
    clip::RealTransform m_Transform;
};

/// The highest of the peaks from `first` on: of the places that are higher than the one before and no lower than the
/// one behind. None where the amplitudes only fall, or are 0.
std::optional<std::size_t> FindPeak(std::span<double const> amplitudes, std::size_t first);

} // namespace spectrum
