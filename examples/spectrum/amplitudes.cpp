#include "spectrum/amplitudes.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <numbers>
#include <numeric>

namespace spectrum
{

namespace
{

constexpr std::size_t k_PointsPerCycle = 4; ///< at least, of the spectrum, for each cycle over all values
constexpr std::size_t k_LeastSize = 256;    ///< so that the curve of a short clip is round
constexpr double k_Rounding = 1e-12;        ///< of the largest value

/// The raised cosine, its values taken in the middle of each step, so that none of them is 0.
std::vector<double> MakeWindow(std::size_t count)
{
    std::vector<double> window(count);
    for (std::size_t i = 0; i < count; ++i)
    {
        double const share = (static_cast<double>(i) + 0.5) / static_cast<double>(count);
        double const sine = std::sin(std::numbers::pi * share);
        window[i] = sine * sine;
    }
    double const sum = std::accumulate(window.begin(), window.end(), 0.0);
    std::for_each(window.begin(), window.end(), [sum](double & weight) { weight /= sum; });
    return window;
}

/// Values without the line that fits them best under the window, so that what is left has no constant part under it.
std::vector<double> RemoveLine(std::span<double const> values, std::span<double const> window)
{
    double const middle = static_cast<double>(values.size() - 1) / 2;
    auto const timeOf = [middle](std::size_t i) { return static_cast<double>(i) - middle; };
    double mean = 0;
    double moment = 0;
    double spread = 0;
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        mean += window[i] * values[i];
        moment += window[i] * timeOf(i) * values[i];
        spread += window[i] * timeOf(i) * timeOf(i);
    }
    double const slope = spread > 0 ? moment / spread : 0;
    std::vector<double> rest(values.size());
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        rest[i] = values[i] - (mean + slope * timeOf(i));
    }
    return rest;
}

double FindLargest(std::span<double const> values)
{
    double largest = 0;
    for (double const value : values)
    {
        largest = std::max(largest, std::abs(value));
    }
    return largest;
}

} // namespace

AmplitudeMeter::AmplitudeMeter(std::size_t count)
    : m_Size(std::max(std::bit_ceil(k_PointsPerCycle * count), k_LeastSize)), m_Window(MakeWindow(count)),
      m_Transform(m_Size)
{
}

std::vector<double> AmplitudeMeter::Measure(std::span<double const> values)
{
    std::vector<double> const rest = RemoveLine(values, m_Window);
    std::span<double> const padded = m_Transform.Values();
    std::fill(std::transform(rest.begin(), rest.end(), m_Window.begin(), padded.begin(), std::multiplies<>()),
              padded.end(), 0.0);
    m_Transform.Forward();
    double const least = k_Rounding * FindLargest(values);
    std::vector<double> amplitudes(FrequencyCount());
    for (std::size_t k = 0; k < amplitudes.size(); ++k)
    {
        // An oscillation stands in the spectrum at its frequency and at the negative one, which at both ends are one.
        bool const isEnd = k == 0 || k + 1 == amplitudes.size();
        double const amplitude = (isEnd ? 1 : 2) * m_Transform.Magnitude(k);
        amplitudes[k] = amplitude > least ? amplitude : 0;
    }
    return amplitudes;
}

std::optional<std::size_t> FindPeak(std::span<double const> amplitudes, std::size_t first)
{
    std::optional<std::size_t> peak;
    for (std::size_t i = std::max<std::size_t>(first, 1); i < amplitudes.size(); ++i)
    {
        bool const isPeak =
            amplitudes[i] > amplitudes[i - 1] && (i + 1 == amplitudes.size() || amplitudes[i] >= amplitudes[i + 1]);
        if (isPeak && (!peak || amplitudes[i] > amplitudes[*peak]))
        {
            peak = i;
        }
    }
    return peak;
}

} // namespace spectrum
