#include "spectrum/options.h"

namespace spectrum
{

std::string_view const k_Usage = R"(Usage: spectrum [options] CLIP.bvh

Tells at which frequencies a motion-capture clip oscillates, and how widely: the
angles of one joint, and the path of every end of the skeleton, such as a hand,
in world space.

Options:
  --joint NAME  the joint whose angles are taken (default: the one that turns most)
  --out DIR     folder for the results, made where it is missing
                (default: spectrum-out)
  --noise       also draw the noise of which the shake of a camera is made
  --seed N      another noise, 0 to 4294967295 (default: 1)
  -h, --help    print this text and end

Results:
  spectrum.csv  frequency, joint, kind, x, y, z, all: amplitudes over frequency in
                hertz. The kind is "angle", about each axis in degrees, or "path",
                along each axis in the unit of the clip; "all" is the root of the
                sum of the three squares, which no choice of axes changes for a path
  spectrum.svg  the amplitudes over frequency, with the strongest frequency marked
  noise.svg     with --noise: the three faces of a cell's noise, gradient noise and
                its sum of octaves, and the gradients

A sine of one frequency has its own amplitude there, and a hump two cycles per clip
wide around it. A straight line, such as a walk's progress or the turns of a wheel,
is no oscillation and is taken out before. Frequencies below one cycle per clip
cannot be told from such progress and are never the strongest.

Status: 0 done, 1 a file could not be read or written,
        2 a clip or the command line are wrong. Results of an earlier run stay as
        they were unless the status is 0.
)";

namespace
{

class OptionReader
{
public:
    explicit OptionReader(std::span<char const * const> arguments) : m_Arguments(arguments) {}

    Options Read()
    {
        m_Options.isHelpWanted = m_Arguments.Read([this](std::string_view name) { return ReadOption(name); });
        m_Options.clip = m_Arguments.Clip();
        if (!m_Options.isHelpWanted && m_IsSeedGiven && !m_Options.isNoiseWanted)
        {
            throw UsageError(R"(option "--seed" is nothing without "--noise")");
        }
        return m_Options;
    }

private:
    bool ReadOption(std::string_view name)
    {
        if (name == "--out")
        {
            m_Options.outputFolder = m_Arguments.Path("a folder");
        }
        else if (name == "--joint")
        {
            m_Options.joint = m_Arguments.Value();
        }
        else if (name == "--noise")
        {
            m_Options.isNoiseWanted = true;
        }
        else if (name == "--seed")
        {
            m_Options.seed = m_Arguments.Seed();
            m_IsSeedGiven = true;
        }
        else
        {
            return false;
        }
        return true;
    }

    clip::Arguments m_Arguments;
    bool m_IsSeedGiven = false;
    Options m_Options;
};

} // namespace

Options ParseOptions(std::span<char const * const> arguments)
{
    return OptionReader(arguments).Read();
}

} // namespace spectrum
