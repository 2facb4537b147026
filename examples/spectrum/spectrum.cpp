#include "spectrum/spectrum.h"

#include "clip/number_text.h"
#include "clip/output_folder.h"
#include "clip/program.h"
#include "clip/reader.h"
#include "spectrum/amplitudes.h"
#include "spectrum/motion_spectra.h"
#include "spectrum/noise_picture.h"
#include "spectrum/options.h"
#include "spectrum/spectrum_picture.h"
#include "spectrum/table.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace spectrum
{

namespace
{

/// All results are written before the first takes its place.
std::vector<std::filesystem::path> WriteResults(Options const & options, clip::Clip const & motion,
                                                MotionSpectra const & spectra)
{
    clip::OutputFolder folder(options.outputFolder);
    folder.Write("spectrum.csv", [&](std::ostream & stream) { WriteSpectrumTable(stream, motion.skeleton, spectra); });
    folder.Write("spectrum.svg", [&](std::ostream & stream)
                 { DrawSpectra(motion, spectra, options.clip.stem().string()).Write(stream); });
    if (options.isNoiseWanted)
    {
        folder.Write("noise.svg", [&](std::ostream & stream) { DrawNoise(options.seed).Write(stream); });
    }
    return folder.Publish();
}

/// The strongest frequency of a motion, and its amplitude there.
void PrintPeak(std::ostream & output, std::string const & name, std::vector<double> const & amplitudes,
               MotionSpectra const & spectra, std::string_view unit)
{
    output << "              " << name << ": ";
    if (auto const peak = FindPeak(amplitudes, spectra.firstTold))
    {
        output << clip::RoughText(static_cast<double>(*peak) * spectra.frequencyStep, 3) << " Hz, "
               << clip::RoughText(amplitudes[*peak], 3) << unit << '\n';
    }
    else
    {
        output << "no frequency stands out\n";
    }
}

void PrintSummary(std::ostream & output, clip::Clip const & motion, MotionSpectra const & spectra)
{
    std::vector<clip::Joint> const & joints = motion.skeleton.joints;
    output << "frames        " << motion.frameCount << " in " << clip::RoundedText(motion.Length(), 3)
           << " s, one cycle over all is " << clip::RoughText(1 / motion.Length(), 3) << " Hz\n"
           << "angles        of " << joints[spectra.angles.joint].name << ", the strongest frequency about each axis\n";
    for (std::size_t axis = 0; axis < 3; ++axis)
    {
        PrintPeak(output, std::string(1, "XYZ"[axis]), spectra.angles.axes[axis], spectra, " degrees");
    }
    output << "paths         of the ends, the strongest frequency of each\n";
    for (Curve const & path : spectra.paths)
    {
        PrintPeak(output, joints[path.joint].name, path.all, spectra, " units");
    }
}

void Analyse(Options const & options, std::ostream & output)
{
    clip::Clip const motion = clip::ReadClip(options.clip);
    std::size_t const joint = options.joint ? FindJoint(motion.skeleton, *options.joint) : FindMostTurning(motion);
    MotionSpectra const spectra = ComputeSpectra(motion, joint);
    std::vector<std::filesystem::path> const files = WriteResults(options, motion, spectra);
    PrintSummary(output, motion, spectra);
    for (std::filesystem::path const & file : files)
    {
        output << "wrote         " << file.string() << '\n';
    }
}

} // namespace

int Run(std::span<char const * const> arguments, std::ostream & output, std::ostream & errors)
{
    return clip::RunProgram("spectrum", output, errors,
                            [&]
                            {
                                Options const options = ParseOptions(arguments);
                                options.isHelpWanted ? void(output << k_Usage) : Analyse(options, output);
                            });
}

} // namespace spectrum
