#include "spectrum/table.h"

#include "clip/number_text.h"
#include "clip/table_field.h"

#include <string>

namespace spectrum
{

namespace
{

void WriteCurve(std::ostream & stream, Curve const & curve, double frequencyStep, std::string const & labels)
{
    for (std::size_t i = 0; i < curve.all.size(); ++i)
    {
        stream << clip::ShortestText(static_cast<double>(i) * frequencyStep) << labels;
        for (double const amplitude : {curve.axes[0][i], curve.axes[1][i], curve.axes[2][i], curve.all[i]})
        {
            stream << ',' << clip::ShortestText(amplitude);
        }
        stream << '\n';
    }
}

} // namespace

void WriteSpectrumTable(std::ostream & stream, clip::Skeleton const & skeleton, MotionSpectra const & spectra)
{
    auto const nameOf = [&skeleton](Curve const & curve)
    { return ',' + clip::QuotedField(skeleton.joints[curve.joint].name); };
    stream << "frequency,joint,kind,x,y,z,all\n";
    WriteCurve(stream, spectra.angles, spectra.frequencyStep, nameOf(spectra.angles) + ",angle");
    for (Curve const & path : spectra.paths)
    {
        WriteCurve(stream, path, spectra.frequencyStep, nameOf(path) + ",path");
    }
}

} // namespace spectrum
