#include "spectrum/spectrum_picture.h"

#include "clip/axis_step.h"
#include "clip/number_text.h"
#include "clip/page_style.h"
#include "spectrum/amplitudes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string_view>
#include <vector>

namespace spectrum
{

namespace
{

constexpr std::size_t k_MostPaths = 8;
constexpr std::size_t k_MostNameBytes = 26;
constexpr double k_LeastShare = 0.02; ///< of the highest amplitude, that is still worth showing
constexpr double k_FrequencyRim = 1.1;
constexpr double k_AmplitudeRim = 1.12;

constexpr double k_HeaderHeight = 74;
constexpr double k_PanelHead = 66; ///< above a plot, for its title and the label of its axis
constexpr double k_PanelFoot = 50; ///< below it, for the labels of frequency
constexpr double k_PlotLeft = clip::k_Margin + 74;
constexpr double k_PlotRight = clip::k_PageWidth - clip::k_Margin - 268; ///< the legend stands behind it
constexpr double k_PlotWidth = k_PlotRight - k_PlotLeft;
constexpr double k_AnglePlotHeight = 240;
constexpr double k_PathPlotHeight = 330;
constexpr double k_RuleDistance = 44;
constexpr double k_FrequencyDistance = 76;
constexpr double k_LegendHeight = 41; ///< of an entry
constexpr double k_LabelRoom = 190;   ///< for the words beside the mark

/// Told apart by most colour-blind readers, after Okabe and Ito; the first three are those of the axes.
constexpr std::array<std::string_view, k_MostPaths> k_Colors = {"#d55e00", "#009e73", "#0072b2", "#cc79a7",
                                                                "#7a5c00", "#56b4e9", "#5b2a86", "#6b7079"};

/// A line of a plot.
struct Trace
{
    std::string name;
    std::string color;
    std::vector<double> const * amplitudes;
    std::optional<std::size_t> peak;
};

/// A plot on its panel.
struct Plot
{
    std::string title;
    std::string unit; ///< of the amplitudes, at the axis
    std::string sign; ///< the same in short, behind a number
    std::string remark;
    std::vector<Trace> traces;
    double top;
    double height;
    double highest = 0; ///< of the amplitudes in the plot
};

/// Amplitudes at their peak, or 0.
double PeakHeight(Trace const & trace)
{
    return trace.peak ? (*trace.amplitudes)[*trace.peak] : 0;
}

class SpectrumPicture
{
public:
    SpectrumPicture(clip::Clip const & motion, MotionSpectra const & spectra) : m_Motion(motion), m_Spectra(spectra)
    {
        AddAngles();
        AddPaths();
        m_LastShown = 1;
        for (Plot & plot : m_Plots)
        {
            FindRange(plot);
        }
        auto const room = static_cast<std::size_t>(k_FrequencyRim * static_cast<double>(m_LastShown)) + 1;
        m_LastShown = std::min(room, spectra.angles.all.size() - 1);
    }

    clip::Drawing Draw(std::string const & name) const
    {
        double const height = m_Plots[1].top + m_Plots[1].height + k_PanelFoot + clip::k_Margin;
        clip::Drawing drawing(clip::k_PageWidth, height, name + ": amplitudes over frequency");
        drawing.Rectangle({0, 0}, clip::k_PageWidth, height, {std::string(clip::k_Paper)});
        drawing.Text({clip::k_Margin, 46}, name + ": at which frequencies it moves",
                     {26, std::string(clip::k_Ink), clip::Anchor::Start, true});
        drawing.Text({clip::k_PageWidth - clip::k_Margin, 46},
                     std::to_string(m_Motion.frameCount) + " frames, " + clip::FixedText(m_Motion.Length(), 2) +
                         " s: one cycle is " + clip::RoughText(1 / m_Motion.Length(), 3) + " Hz",
                     {15, std::string(clip::k_QuietInk), clip::Anchor::End});
        for (Plot const & plot : m_Plots)
        {
            DrawPlot(drawing, plot);
        }
        return drawing;
    }

private:
    std::string NameOf(Curve const & curve) const
    {
        return clip::ShortenText(m_Motion.skeleton.joints[curve.joint].name, k_MostNameBytes);
    }

    Trace MakeTrace(std::string const & name, std::vector<double> const & amplitudes) const
    {
        return {name, {}, &amplitudes, FindPeak(amplitudes, m_Spectra.firstTold)};
    }

    void AddAngles()
    {
        Plot & plot = m_Plots[0];
        plot = {"Angles of " + NameOf(m_Spectra.angles),
                "degrees",
                "°",
                "about each axis",
                {},
                k_HeaderHeight + k_PanelHead,
                k_AnglePlotHeight};
        constexpr std::array<std::string_view, 3> k_Names = {"about X", "about Y", "about Z"};
        for (std::size_t axis = 0; axis < k_Names.size(); ++axis)
        {
            plot.traces.push_back(MakeTrace(std::string(k_Names[axis]), m_Spectra.angles.axes[axis]));
        }
        Color(plot);
    }

    void AddPaths()
    {
        Plot & plot = m_Plots[1];
        plot = {"Paths of the ends in world space",
                "units",
                "",
                "all three coordinates together",
                {},
                m_Plots[0].top + k_AnglePlotHeight + k_PanelFoot + clip::k_PanelGap + k_PanelHead,
                k_PathPlotHeight};
        for (Curve const & path : m_Spectra.paths)
        {
            plot.traces.push_back(MakeTrace(NameOf(path), path.all));
        }
        if (plot.traces.size() > k_MostPaths)
        {
            std::stable_sort(plot.traces.begin(), plot.traces.end(),
                             [](Trace const & a, Trace const & b) { return PeakHeight(a) > PeakHeight(b); });
            plot.remark += "; the " + std::to_string(k_MostPaths) + " strongest of " +
                           std::to_string(plot.traces.size()) + " ends";
            plot.traces.resize(k_MostPaths);
        }
        Color(plot);
    }

    static void Color(Plot & plot)
    {
        for (std::size_t i = 0; i < plot.traces.size(); ++i)
        {
            plot.traces[i].color = k_Colors[i];
        }
    }

    void FindRange(Plot & plot)
    {
        for (Trace const & trace : plot.traces)
        {
            plot.highest =
                std::max(plot.highest, *std::max_element(trace.amplitudes->begin(), trace.amplitudes->end()));
        }
        for (Trace const & trace : plot.traces)
        {
            auto const last =
                std::find_if(trace.amplitudes->rbegin(), trace.amplitudes->rend(),
                             [&plot](double amplitude) { return amplitude > k_LeastShare * plot.highest; });
            m_LastShown = std::max(m_LastShown, static_cast<std::size_t>(trace.amplitudes->rend() - last));
        }
    }

    double FrequencyOf(std::size_t point) const { return static_cast<double>(point) * m_Spectra.frequencyStep; }

    double PlaceOf(std::size_t point) const
    {
        return k_PlotLeft + static_cast<double>(point) / static_cast<double>(m_LastShown) * k_PlotWidth;
    }

    /// A plot without amplitudes reaches up to 1.
    static double Top(Plot const & plot) { return plot.highest > 0 ? k_AmplitudeRim * plot.highest : 1; }

    static double HeightOf(Plot const & plot, double amplitude)
    {
        return plot.top + (1 - amplitude / Top(plot)) * plot.height;
    }

    void DrawPlot(clip::Drawing & drawing, Plot const & plot) const
    {
        drawing.Rectangle({clip::k_Margin, plot.top - k_PanelHead}, clip::k_PageWidth - 2 * clip::k_Margin,
                          plot.height + k_PanelHead + k_PanelFoot, {std::string(clip::k_PanelColor)},
                          clip::k_PanelCorner);
        drawing.Text({clip::k_Margin + 14, plot.top - k_PanelHead + 25}, plot.title,
                     {15, std::string(clip::k_Ink), clip::Anchor::Start, true});
        drawing.Text({clip::k_PageWidth - clip::k_Margin - 14, plot.top - k_PanelHead + 25}, plot.remark,
                     {14, std::string(clip::k_QuietInk), clip::Anchor::End});
        DrawAmplitudeRules(drawing, plot);
        DrawFrequencyRules(drawing, plot);
        for (Trace const & trace : plot.traces)
        {
            drawing.Polyline(ListPoints(plot, *trace.amplitudes), {trace.color, 2.4});
        }
        DrawStrongest(drawing, plot);
        for (std::size_t i = 0; i < plot.traces.size(); ++i)
        {
            DrawLegendEntry(drawing, plot, i);
        }
    }

    static void DrawAmplitudeRules(clip::Drawing & drawing, Plot const & plot)
    {
        drawing.Text({k_PlotLeft - 12, plot.top - 12}, plot.unit,
                     {12, std::string(clip::k_QuietInk), clip::Anchor::End});
        double const step = clip::ChooseDecimalStep(Top(plot), std::floor(plot.height / k_RuleDistance));
        for (double const amplitude : clip::ListMultiples(0, Top(plot), step))
        {
            double const y = HeightOf(plot, amplitude);
            drawing.Line({k_PlotLeft, y}, {k_PlotRight, y},
                         {std::string(amplitude == 0 ? clip::k_RuleColor : clip::k_GridColor), 1.2});
            drawing.Text({k_PlotLeft - 12, y + 4.5}, clip::RoughText(amplitude, 4) + plot.sign,
                         {13, std::string(clip::k_Ink), clip::Anchor::End});
        }
    }

    void DrawFrequencyRules(clip::Drawing & drawing, Plot const & plot) const
    {
        double const bottom = plot.top + plot.height;
        double const range = FrequencyOf(m_LastShown);
        double const step = clip::ChooseDecimalStep(range, std::floor(k_PlotWidth / k_FrequencyDistance));
        for (double const frequency : clip::ListMultiples(0, range, step))
        {
            double const x = k_PlotLeft + frequency / range * k_PlotWidth;
            drawing.Line({x, plot.top}, {x, bottom + 5}, {std::string(clip::k_GridColor), 1.2});
            drawing.Text({x, bottom + 22}, clip::RoughText(frequency, 4),
                         {13, std::string(clip::k_Ink), clip::Anchor::Middle});
        }
        drawing.Text({(k_PlotLeft + k_PlotRight) / 2, bottom + 41}, "hertz",
                     {12, std::string(clip::k_QuietInk), clip::Anchor::Middle});
    }

    /// Of the points within half a pixel the highest: the peaks are what counts.
    std::vector<clip::Point> ListPoints(Plot const & plot, std::vector<double> const & amplitudes) const
    {
        std::vector<clip::Point> points;
        for (std::size_t i = 0; i <= m_LastShown; ++i)
        {
            clip::Point const point{PlaceOf(i), HeightOf(plot, amplitudes[i])};
            if (points.empty() || std::floor(2 * point.x) != std::floor(2 * points.back().x))
            {
                points.push_back(point);
            }
            else if (point.y < points.back().y)
            {
                points.back() = point;
            }
        }
        return points;
    }

    void DrawStrongest(clip::Drawing & drawing, Plot const & plot) const
    {
        auto const strongest =
            std::max_element(plot.traces.begin(), plot.traces.end(),
                             [](Trace const & a, Trace const & b) { return PeakHeight(a) < PeakHeight(b); });
        for (Trace const & trace : plot.traces)
        {
            if (trace.peak)
            {
                DrawDot(drawing, {PlaceOf(*trace.peak), HeightOf(plot, PeakHeight(trace))}, trace.color);
            }
        }
        if (strongest == plot.traces.end() || !strongest->peak)
        {
            return;
        }
        double const x = PlaceOf(*strongest->peak);
        drawing.Line({x, plot.top - 4}, {x, plot.top + plot.height}, {strongest->color, 1.6, 0.9, "5 5"});
        bool const hasRoom = x + k_LabelRoom < k_PlotRight;
        drawing.Text({hasRoom ? x + 9 : x - 9, plot.top + 8},
                     "strongest: " + clip::RoughText(FrequencyOf(*strongest->peak), 3) + " Hz",
                     {14, strongest->color, hasRoom ? clip::Anchor::Start : clip::Anchor::End, true});
    }

    static std::string Unit(Plot const & plot) { return plot.sign.empty() ? ' ' + plot.unit : plot.sign; }

    static void DrawDot(clip::Drawing & drawing, clip::Point center, std::string const & color)
    {
        drawing.Circle(center, 5.4, {std::string(clip::k_PanelColor)});
        drawing.Circle(center, 4, {color});
    }

    void DrawLegendEntry(clip::Drawing & drawing, Plot const & plot, std::size_t index) const
    {
        Trace const & trace = plot.traces[index];
        double const x = k_PlotRight + 26;
        double const y = plot.top + static_cast<double>(index) * k_LegendHeight + 8;
        drawing.Line({x, y}, {x + 25, y}, {trace.color, 4});
        drawing.Text({x + 36, y + 5}, trace.name, {14, std::string(clip::k_Ink), clip::Anchor::Start, true});
        std::string const peak = trace.peak ? clip::RoughText(FrequencyOf(*trace.peak), 3) + " Hz, " +
                                                  clip::RoughText(PeakHeight(trace), 3) + Unit(plot)
                                            : "no peak";
        drawing.Text({x + 36, y + 22}, peak, {13, std::string(clip::k_QuietInk)});
    }

    clip::Clip const & m_Motion;
    MotionSpectra const & m_Spectra;
    std::array<Plot, 2> m_Plots;
    std::size_t m_LastShown; ///< the last point of all plots
};

} // namespace

clip::Drawing DrawSpectra(clip::Clip const & motion, MotionSpectra const & spectra, std::string const & name)
{
    return SpectrumPicture(motion, spectra).Draw(name);
}

} // namespace spectrum
