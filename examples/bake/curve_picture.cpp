#include "bake/curve_picture.h"

#include "bake/angle_motion.h"
#include "clip/joint_rotation.h"
#include "clip/number_text.h"
#include "clip/page_style.h"
#include "clip/time_axis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string_view>
#include <vector>

namespace bake
{

namespace
{

using Vector = C3DVector3Tpl<double>;

constexpr std::size_t k_MostNameBytes = 48;

constexpr double k_HeaderHeight = 108;
constexpr double k_PanelHead = 62; ///< above a plot, for its title and the label of its axis
constexpr double k_PanelFoot = 50; ///< below it, for the labels of time
constexpr double k_PlotLeft = clip::k_Margin + 74;
constexpr double k_PlotRight = clip::k_PageWidth - clip::k_Margin - 88; ///< the names of the curves stand behind it
constexpr double k_PlotWidth = k_PlotRight - k_PlotLeft;
constexpr double k_PlotHeights = 580; ///< of both together
constexpr double k_LeastShare = 0.32; ///< of them, for the plot with the smaller range
constexpr double k_LeastRuleDistance = 30;
constexpr double k_LeastBandWidth = 7;
constexpr double k_LeastMarkDistance = 4;
constexpr double k_LeastLabelDistance = 46;
constexpr double k_LineHeight = 17;

/// One for each axis, told apart by most colour-blind readers, after Okabe and Ito.
constexpr std::array<std::string_view, 3> k_AxisColors = {"#d55e00", "#009e73", "#0072b2"};
constexpr std::array<std::string_view, 3> k_AxisNames = {"X", "Y", "Z"};
constexpr std::string_view k_BandColor = "#c0143c";
constexpr double k_HalfTurnOpacity = 0.26;
constexpr double k_QuarterTurnOpacity = 0.12;

/// A step from the frame before, with an angle that jumps.
struct Mark
{
    std::size_t frame;
    double largest; ///< of the three angles' steps
};

bool IsOverHalfTurn(Mark const & mark)
{
    return IsJump(0, mark.largest, k_HalfTurn);
}

/// A plot on its panel.
struct Panel
{
    std::string_view title;
    std::vector<Vector> angles; ///< one a frame, in degrees
    double low = 0;             ///< the range that the plot shows, from rule to rule
    double high = 0;
    double ruleStep = 0;
    double top = 0; ///< of the plot, on the page
    double height = 0;
};

std::vector<Vector> ReadAngles(clip::Clip const & motion, std::size_t joint)
{
    clip::JointRotation const rotation(motion.skeleton.joints[joint]);
    std::vector<Vector> angles;
    angles.reserve(motion.frameCount);
    for (std::size_t frame = 0; frame < motion.frameCount; ++frame)
    {
        angles.push_back(rotation.Degrees(motion.Frame(frame)));
    }
    return angles;
}

/// The smallest round number of degrees of which no more than `most` make up the range.
double ChooseDegreeStep(double range, double most)
{
    double step = 1;
    for (double const next : {2, 5, 10, 15, 30, 45, 90, 180, 360})
    {
        step = range > most * step ? next : step;
    }
    while (range > most * step)
    {
        step *= 2;
    }
    return step;
}

/// A line through many points looks the same with the first, the lowest, the highest and the last of each pixel.
std::vector<clip::Point> ThinOut(std::span<clip::Point const> points)
{
    std::vector<clip::Point> kept;
    for (std::size_t first = 0; first < points.size();)
    {
        std::size_t end = first + 1;
        while (end < points.size() && std::floor(points[end].x) == std::floor(points[first].x))
        {
            ++end;
        }
        auto const pixel = points.subspan(first, end - first);
        auto const [lowest, highest] = std::minmax_element(
            pixel.begin(), pixel.end(), [](clip::Point const & a, clip::Point const & b) { return a.y < b.y; });
        std::array<std::ptrdiff_t, 4> chosen = {0, lowest - pixel.begin(), highest - pixel.begin(),
                                                std::ssize(pixel) - 1};
        std::sort(chosen.begin(), chosen.end());
        auto const last = std::unique(chosen.begin(), chosen.end());
        std::for_each(chosen.begin(), last,
                      [&](std::ptrdiff_t i) { kept.push_back(pixel[static_cast<std::size_t>(i)]); });
        first = end;
    }
    return kept;
}

/// In whole degrees, with a minus sign as wide as a plus.
std::string DegreesText(double angle)
{
    std::string const rounded = clip::RoundedText(angle, 0);
    bool const isNegative = rounded.starts_with('-');
    std::string text = isNegative ? "−" : "";
    return text.append(rounded, isNegative ? 1 : 0).append("°");
}

class CurvePicture
{
public:
    CurvePicture(Comparison const & clips, std::size_t joint) : m_Clip(clips.nearest), m_Joint(joint)
    {
        m_Panels[0].title = "Plain extraction: each frame by itself, the angles nearest to zero";
        m_Panels[0].angles = ReadAngles(clips.plain, joint);
        m_Panels[1].title = "With the frame before as target: the angles nearest to those";
        m_Panels[1].angles = ReadAngles(clips.nearest, joint);
        ChooseScales();
    }

    clip::Drawing Draw(std::string const & name) const
    {
        double const height =
            k_HeaderHeight + 2 * (k_PanelHead + k_PanelFoot) + k_PlotHeights + clip::k_PanelGap + clip::k_Margin;
        std::string const title = name + ": " + clip::ShortenText(Joint().name, k_MostNameBytes);
        clip::Drawing drawing(clip::k_PageWidth, height, title + ", angles extracted plainly and with a target");
        drawing.Rectangle({0, 0}, clip::k_PageWidth, height, {std::string(clip::k_Paper)});
        DrawHeader(drawing, title);
        for (Panel const & panel : m_Panels)
        {
            DrawPanel(drawing, panel);
        }
        return drawing;
    }

private:
    clip::Joint const & Joint() const { return m_Clip.skeleton.joints[m_Joint]; }

    /// Heights in proportion to the ranges, so that both plots have one scale unless one would be too low for that.
    void ChooseScales()
    {
        for (Panel & panel : m_Panels)
        {
            panel.low = panel.angles.front().X;
            panel.high = panel.low;
            for (Vector const & angles : panel.angles)
            {
                panel.low = std::min({panel.low, angles.X, angles.Y, angles.Z});
                panel.high = std::max({panel.high, angles.X, angles.Y, angles.Z});
            }
        }
        double const upper = std::max(m_Panels[0].high - m_Panels[0].low, 1.0);
        double const lower = std::max(m_Panels[1].high - m_Panels[1].low, 1.0);
        double const share = std::clamp(upper / (upper + lower), k_LeastShare, 1 - k_LeastShare);
        m_Panels[0].height = share * k_PlotHeights;
        m_Panels[1].height = (1 - share) * k_PlotHeights;
        m_Panels[0].top = k_HeaderHeight + k_PanelHead;
        m_Panels[1].top = m_Panels[0].top + m_Panels[0].height + k_PanelFoot + clip::k_PanelGap + k_PanelHead;
        for (Panel & panel : m_Panels)
        {
            SnapToRules(panel);
        }
    }

    static void SnapToRules(Panel & panel)
    {
        // Snapping adds up to two steps.
        double const most = panel.height / k_LeastRuleDistance - 2;
        panel.ruleStep = ChooseDegreeStep(panel.high - panel.low, most);
        panel.low = std::floor(panel.low / panel.ruleStep) * panel.ruleStep;
        panel.high = std::max(std::ceil(panel.high / panel.ruleStep) * panel.ruleStep, panel.low + panel.ruleStep);
    }

    /// A clip of one frame has its points at the left.
    double FrameDistance() const
    {
        return k_PlotWidth / static_cast<double>(std::max<std::size_t>(m_Clip.frameCount - 1, 1));
    }

    clip::Point PlaceOf(Panel const & panel, std::size_t frame, int axis) const
    {
        double const height = (panel.angles[frame].Get(axis) - panel.low) / (panel.high - panel.low);
        return {k_PlotLeft + static_cast<double>(frame) * FrameDistance(), panel.top + (1 - height) * panel.height};
    }

    void DrawHeader(clip::Drawing & drawing, std::string const & title) const
    {
        std::string const order(clip::JointRotation(Joint()).Order().name);
        drawing.Text({clip::k_Margin, 46}, title, {26, std::string(clip::k_Ink), clip::Anchor::Start, true});
        drawing.Text({clip::k_PageWidth - clip::k_Margin, 46},
                     "order " + order + ", " + std::to_string(m_Clip.frameCount) + " frames, " +
                         clip::FixedText(m_Clip.Length(), 2) + " s",
                     {15, std::string(clip::k_QuietInk), clip::Anchor::End});
        double x = clip::k_Margin;
        for (std::size_t axis = 0; axis < k_AxisNames.size(); ++axis)
        {
            drawing.Line({x + 3, 78}, {x + 28, 78}, {std::string(k_AxisColors[axis]), 4});
            drawing.Text({x + 37, 83}, "about " + std::string(k_AxisNames[axis]), {14, std::string(clip::k_Ink)});
            x += 118;
        }
        DrawBandSample(drawing, x, k_HalfTurnOpacity, "jump over half a turn");
        DrawBandSample(drawing, x + 208, k_QuarterTurnOpacity, "over a quarter turn");
    }

    static void DrawBandSample(clip::Drawing & drawing, double x, double opacity, std::string_view label)
    {
        drawing.Rectangle({x + 4, 66}, 20, 22, {std::string(k_BandColor), opacity});
        drawing.Text({x + 33, 83}, label, {14, std::string(clip::k_Ink)});
    }

    void DrawPanel(clip::Drawing & drawing, Panel const & panel) const
    {
        drawing.Rectangle({clip::k_Margin, panel.top - k_PanelHead}, clip::k_PageWidth - 2 * clip::k_Margin,
                          panel.height + k_PanelHead + k_PanelFoot, {std::string(clip::k_PanelColor)},
                          clip::k_PanelCorner);
        drawing.Text({clip::k_Margin + 14, panel.top - k_PanelHead + 24}, panel.title,
                     {15, std::string(clip::k_Ink), clip::Anchor::Start, true});
        std::vector<Mark> const marks = FindMarks(panel);
        DrawCount(drawing, panel, !marks.empty());
        DrawRules(drawing, panel);
        DrawTimes(drawing, panel);
        DrawBands(drawing, panel, marks);
        for (int axis = 0; axis < 3; ++axis)
        {
            DrawCurve(drawing, panel, axis, marks);
        }
        DrawEnds(drawing, panel);
    }

    static std::size_t CountPanelJumps(Panel const & panel, double limit)
    {
        std::size_t count = 0;
        for (std::size_t frame = 1; frame < panel.angles.size(); ++frame)
        {
            for (int axis = 0; axis < 3; ++axis)
            {
                count += IsJump(panel.angles[frame - 1].Get(axis), panel.angles[frame].Get(axis), limit) ? 1 : 0;
            }
        }
        return count;
    }

    static std::string CountText(Panel const & panel)
    {
        std::size_t const halves = CountPanelJumps(panel, k_HalfTurn);
        std::size_t const quarters = CountPanelJumps(panel, k_QuarterTurn);
        auto const jumps = [](std::size_t count)
        { return std::to_string(count) + (count == 1 ? " jump over " : " jumps over "); };
        if (quarters == 0)
        {
            return "no jump";
        }
        if (quarters == halves)
        {
            return jumps(halves) + "half a turn";
        }
        return jumps(quarters) + "a quarter turn, " + std::to_string(halves) + " of them over half a turn";
    }

    static void DrawCount(clip::Drawing & drawing, Panel const & panel, bool hasMarks)
    {
        drawing.Text({clip::k_PageWidth - clip::k_Margin - 14, panel.top - k_PanelHead + 24}, CountText(panel),
                     {15, std::string(hasMarks ? k_BandColor : clip::k_QuietInk), clip::Anchor::End, true});
    }

    static void DrawRules(clip::Drawing & drawing, Panel const & panel)
    {
        drawing.Text({k_PlotLeft - 12, panel.top - 14}, "degrees",
                     {12, std::string(clip::k_QuietInk), clip::Anchor::End});
        auto const count = std::lround((panel.high - panel.low) / panel.ruleStep);
        for (long i = 0; i <= count; ++i)
        {
            double const angle = panel.low + static_cast<double>(i) * panel.ruleStep;
            double const y = panel.top + panel.height * (1 - static_cast<double>(i) / static_cast<double>(count));
            bool const isZero = std::abs(angle) < panel.ruleStep / 2;
            drawing.Line({k_PlotLeft, y}, {k_PlotRight, y},
                         {std::string(isZero ? clip::k_RuleColor : clip::k_GridColor), 1.2});
            drawing.Text({k_PlotLeft - 12, y + 4.5}, DegreesText(angle),
                         {13, std::string(clip::k_Ink), clip::Anchor::End});
        }
    }

    void DrawTimes(clip::Drawing & drawing, Panel const & panel) const
    {
        clip::DrawTimeAxis(drawing, {k_PlotLeft, k_PlotRight, panel.top, panel.top + panel.height,
                                     static_cast<double>(m_Clip.frameCount - 1) * m_Clip.frameTime});
    }

    std::vector<Mark> FindMarks(Panel const & panel) const
    {
        std::vector<Mark> marks;
        for (std::size_t frame = 1; frame < panel.angles.size(); ++frame)
        {
            Vector step;
            step.Sub(panel.angles[frame], panel.angles[frame - 1]);
            std::array<double, 3> const steps = {step.X, step.Y, step.Z};
            double const largest = *std::max_element(steps.begin(), steps.end(),
                                                     [](double a, double b) { return std::abs(a) < std::abs(b); });
            bool const hasRoom = marks.empty() || static_cast<double>(frame - marks.back().frame) * FrameDistance() >=
                                                      k_LeastMarkDistance;
            if (hasRoom && IsJump(0, largest, k_QuarterTurn))
            {
                marks.push_back({frame, largest});
            }
        }
        return marks;
    }

    void DrawBands(clip::Drawing & drawing, Panel const & panel, std::vector<Mark> const & marks) const
    {
        double const width = std::max(FrameDistance(), k_LeastBandWidth);
        double labelEnd = -k_LeastLabelDistance;
        for (Mark const & mark : marks)
        {
            double const x = k_PlotLeft + (static_cast<double>(mark.frame) - 0.5) * FrameDistance();
            drawing.Rectangle(
                {x - width / 2, panel.top}, width, panel.height,
                {std::string(k_BandColor), IsOverHalfTurn(mark) ? k_HalfTurnOpacity : k_QuarterTurnOpacity});
            if (x - labelEnd >= k_LeastLabelDistance)
            {
                drawing.Text({x, panel.top - 7}, std::string(mark.largest > 0 ? "+" : "") + DegreesText(mark.largest),
                             {13, std::string(k_BandColor), clip::Anchor::Middle, true});
                labelEnd = x;
            }
        }
    }

    /// In pieces from mark to mark, with dashes across those at which this angle jumps.
    void DrawCurve(clip::Drawing & drawing, Panel const & panel, int axis, std::vector<Mark> const & marks) const
    {
        std::string const color(k_AxisColors[static_cast<std::size_t>(axis)]);
        auto mark = marks.begin();
        std::vector<clip::Point> piece;
        for (std::size_t frame = 0; frame < panel.angles.size(); ++frame)
        {
            clip::Point const place = PlaceOf(panel, frame, axis);
            bool const isMarked = mark != marks.end() && mark->frame == frame;
            mark += isMarked ? 1 : 0;
            if (isMarked && IsJump(panel.angles[frame - 1].Get(axis), panel.angles[frame].Get(axis), k_QuarterTurn))
            {
                drawing.Polyline(ThinOut(piece), {color, 2.6});
                drawing.Line(piece.back(), place, {color, 1.4, 0.8, "2 5"});
                DrawRing(drawing, piece.back(), color);
                DrawRing(drawing, place, color);
                piece.clear();
            }
            piece.push_back(place);
        }
        drawing.Polyline(ThinOut(piece), {color, 2.6});
    }

    static void DrawRing(clip::Drawing & drawing, clip::Point center, std::string const & color)
    {
        drawing.Circle(center, 4.6, {color});
        drawing.Circle(center, 2.3, {std::string(clip::k_PanelColor)});
    }

    /// The name and last value of each curve behind its end, one below the other.
    void DrawEnds(clip::Drawing & drawing, Panel const & panel) const
    {
        struct Label
        {
            int axis;
            double y;
        };
        std::array<Label, 3> labels;
        std::size_t const last = panel.angles.size() - 1;
        for (int axis = 0; axis < 3; ++axis)
        {
            clip::Point const end = PlaceOf(panel, last, axis);
            labels[static_cast<std::size_t>(axis)] = {axis, end.y};
            drawing.Circle(end, 3.2, {std::string(k_AxisColors[static_cast<std::size_t>(axis)])});
        }
        std::stable_sort(labels.begin(), labels.end(), [](Label const & a, Label const & b) { return a.y < b.y; });
        labels[1].y = std::max(labels[1].y, labels[0].y + k_LineHeight);
        labels[2].y = std::max(labels[2].y, labels[1].y + k_LineHeight);
        double const excess = std::max(labels[2].y - (panel.top + panel.height), 0.0);
        for (Label const & label : labels)
        {
            auto const axis = static_cast<std::size_t>(label.axis);
            drawing.Text({k_PlotRight + 12, label.y - excess + 5},
                         std::string(k_AxisNames[axis]) + " " + DegreesText(panel.angles[last].Get(label.axis)),
                         {15, std::string(k_AxisColors[axis]), clip::Anchor::Start, true});
        }
    }

    clip::Clip const & m_Clip;
    std::size_t m_Joint;
    std::array<Panel, 2> m_Panels;
};

} // namespace

clip::Drawing DrawCurves(Comparison const & clips, std::size_t joint, std::string const & name)
{
    return CurvePicture(clips, joint).Draw(name);
}

} // namespace bake
