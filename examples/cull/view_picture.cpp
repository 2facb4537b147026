#include "cull/view_picture.h"

#include "clip/axis_step.h"
#include "clip/number_text.h"
#include "clip/page_style.h"
#include "clip/time_axis.h"
#include "cull/silhouette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <numeric>
#include <span>
#include <string_view>
#include <vector>

namespace cull
{

namespace
{

using Vector = C3DVector3Tpl<double>;

constexpr std::size_t k_MostPoses = 8;
constexpr std::size_t k_PoseCandidates = 48;   ///< frames, evenly over the clip, of which poses are chosen
constexpr std::size_t k_MostPathPoints = 1200; ///< more cannot be told apart
constexpr std::size_t k_MostColumns = 600;     ///< of the plot over time, likewise

constexpr double k_HeaderHeight = 108;
constexpr double k_PanelHead = 40;
constexpr double k_MapFoot = 34; ///< below the map, for the labels of X
constexpr double k_MapLeft = clip::k_Margin + 62;
constexpr double k_MapRight = clip::k_PageWidth - clip::k_Margin - 22;
constexpr double k_MostMapHeight = 700;
constexpr double k_LeastRuleDistance = 70;
constexpr double k_RimShare = 0.06;    ///< of the boxes' extent, around them
constexpr double k_OutlookShare = 0.6; ///< of the boxes' extent, as far as the map reaches beyond for the camera

constexpr double k_LeastExtentShare = 1e-9; ///< of the boxes' distance from the origin

constexpr double k_PlotFoot = 50;
constexpr double k_PlotHeight = 110;

constexpr double k_LabelSize = 13;
constexpr double k_LabelHeight = 18;
constexpr double k_LabelWidth = 50;
constexpr double k_LabelGap = 4;

/// Indexed by tagE3DVIEWINTERSECTION. Told apart by most colour-blind readers.
constexpr std::array<std::string_view, k_ClassCount> k_ClassColors = {"#989da6", "#0072b2", "#d98200"};
constexpr std::array<tagE3DVIEWINTERSECTION, k_ClassCount> k_LegendOrder = {
    E3DVIEWINTERSECTION_INSIDE, E3DVIEWINTERSECTION_CROSSING, E3DVIEWINTERSECTION_OUTSIDE};
constexpr std::string_view k_VolumeColor = "#e9f2e4";
constexpr std::string_view k_VolumeEdgeColor = "#4c7a34";

std::string ColorOf(tagE3DVIEWINTERSECTION answer)
{
    return std::string(k_ClassColors[static_cast<std::size_t>(answer)]);
}

/// At most so many of the numbers from 0 up to `count`, evenly chosen, the first and the last among them.
std::vector<std::size_t> ChooseEvenly(std::size_t count, std::size_t most)
{
    std::vector<std::size_t> chosen(std::min(count, most));
    for (std::size_t i = 0; i < chosen.size(); ++i)
    {
        chosen[i] = chosen.size() == 1 ? 0 : i * (count - 1) / (chosen.size() - 1);
    }
    return chosen;
}

/// From the ground to the page.
class Map
{
public:
    Map(JointBoxes const & boxes, Camera const & camera, double top)
    {
        clip::Bounds const bounds = ComputeBounds(boxes);
        double const unit = ChooseUnit(bounds);
        Shown const least = Widen(bounds, k_RimShare * unit);
        Shown const most = Widen(bounds, k_OutlookShare * unit);
        m_Shown = least;
        std::vector<Vector> outlook = {camera.eye};
        std::array<Vector, 8> const corners = ComputeCorners(camera);
        outlook.insert(outlook.end(), corners.begin(), corners.end());
        for (Vector const & place : outlook)
        {
            m_Shown.left = std::min(m_Shown.left, std::max(place.X - k_RimShare * unit, most.left));
            m_Shown.right = std::max(m_Shown.right, std::min(place.X + k_RimShare * unit, most.right));
            m_Shown.back = std::min(m_Shown.back, std::max(place.Z - k_RimShare * unit, most.back));
            m_Shown.front = std::max(m_Shown.front, std::min(place.Z + k_RimShare * unit, most.front));
        }
        FitInto(top);
    }

    clip::Point PlaceOf(Vector const & position) const
    {
        return {m_Area.left + (position.X - m_Shown.left) * m_Scale,
                m_Area.top + (position.Z - m_Shown.back) * m_Scale};
    }

    PageArea const & Area() const { return m_Area; }
    double Scale() const { return m_Scale; }
    double Left() const { return m_Shown.left; }
    double Right() const { return m_Shown.right; }
    double Back() const { return m_Shown.back; }
    double Front() const { return m_Shown.front; }

private:
    /// The ground that is shown: X from left to right, Z from back to front.
    struct Shown
    {
        double left;
        double right;
        double back;
        double front;
    };

    /// What the map is measured by: the extent of the boxes, unless it is too small beside their distance from the
    /// origin for places to be told apart.
    static double ChooseUnit(clip::Bounds const & bounds)
    {
        double const extent = std::max(bounds.largest.X - bounds.smallest.X, bounds.largest.Z - bounds.smallest.Z);
        double const distance = std::max({std::abs(bounds.smallest.X), std::abs(bounds.largest.X),
                                          std::abs(bounds.smallest.Z), std::abs(bounds.largest.Z)});
        double const unit = std::max(extent, k_LeastExtentShare * distance);
        return unit > 0 ? unit : 1;
    }

    static Shown Widen(clip::Bounds const & bounds, double rim)
    {
        return {bounds.smallest.X - rim, bounds.largest.X + rim, bounds.smallest.Z - rim, bounds.largest.Z + rim};
    }

    /// The map is as wide as the page allows; ground is added at both sides where it would be too high.
    void FitInto(double top)
    {
        double const width = k_MapRight - k_MapLeft;
        m_Scale = std::min(width / (m_Shown.right - m_Shown.left), k_MostMapHeight / (m_Shown.front - m_Shown.back));
        double const added = (width / m_Scale - (m_Shown.right - m_Shown.left)) / 2;
        m_Shown.left -= added;
        m_Shown.right += added;
        m_Area = {k_MapLeft, top, k_MapRight, top + (m_Shown.front - m_Shown.back) * m_Scale};
    }

    Shown m_Shown{};
    PageArea m_Area{};
    double m_Scale = 1;
};

class ViewPicture
{
public:
    explicit ViewPicture(View const & view) : m_View(view), m_Map(view.boxes, view.camera, k_HeaderHeight + k_PanelHead)
    {
    }

    clip::Drawing Draw(std::string const & name) const
    {
        double const mapPanelHeight = k_PanelHead + m_Map.Area().bottom - m_Map.Area().top + k_MapFoot;
        double const plotTop = k_HeaderHeight + mapPanelHeight + clip::k_PanelGap;
        double const plotPanelHeight = k_PanelHead + k_PlotHeight + k_PlotFoot;
        double const pageHeight = plotTop + plotPanelHeight + clip::k_Margin;
        clip::Drawing drawing(clip::k_PageWidth, pageHeight, name + ": what a camera sees, from above and over time");
        drawing.Rectangle({0, 0}, clip::k_PageWidth, pageHeight, {std::string(clip::k_Paper)});
        DrawHeader(drawing, name);
        DrawPanel(drawing, k_HeaderHeight, mapPanelHeight, "From above, X to the right and Z downwards",
                  "what is above or below the volume shows within its outline, and is outside");
        DrawMap(drawing);
        DrawPanel(drawing, plotTop, plotPanelHeight, "Boxes over time", DifferenceText());
        DrawPlot(drawing, plotTop + k_PanelHead);
        return drawing;
    }

private:
    std::size_t JointCount() const { return m_View.boxes.joints.size(); }

    tagE3DVIEWINTERSECTION AnswerFor(std::size_t frame, std::size_t place) const
    {
        return m_View.classification.world[frame * JointCount() + place];
    }

    static void DrawPanel(clip::Drawing & drawing, double top, double height, std::string_view title,
                          std::string_view remark)
    {
        drawing.Rectangle({clip::k_Margin, top}, clip::k_PageWidth - 2 * clip::k_Margin, height,
                          {std::string(clip::k_PanelColor)}, clip::k_PanelCorner);
        drawing.Text({clip::k_Margin + 14, top + 25}, title, {15, std::string(clip::k_Ink), clip::Anchor::Start, true});
        drawing.Text({clip::k_PageWidth - clip::k_Margin - 14, top + 25}, remark,
                     {14, std::string(clip::k_QuietInk), clip::Anchor::End});
    }

    std::string DifferenceText() const
    {
        Classification const & answers = m_View.classification;
        std::size_t differing = 0;
        for (std::size_t i = 0; i < answers.world.size(); ++i)
        {
            differing += answers.world[i] != answers.view[i] ? 1 : 0;
        }
        return "as world space has it; " + std::to_string(differing) + " of " + std::to_string(answers.world.size()) +
               " are otherwise in view space";
    }

    std::string CameraText() const
    {
        Camera const & camera = m_View.camera;
        std::string const lens =
            camera.isOrthographic
                ? "orthographic, " + clip::RoughText(camera.width, 4) + " wide"
                : "perspective, " + clip::RoundedText(camera.fieldOfView * 180 / std::numbers::pi, 1) + "° wide";
        return lens + ", from " + clip::RoughText(camera.nearDistance, 4) + " to " +
               clip::RoughText(camera.farDistance, 4);
    }

    void DrawHeader(clip::Drawing & drawing, std::string const & name) const
    {
        drawing.Text({clip::k_Margin, 46}, name + ": what the camera sees",
                     {26, std::string(clip::k_Ink), clip::Anchor::Start, true});
        drawing.Text({clip::k_PageWidth - clip::k_Margin, 46},
                     std::to_string(JointCount()) + " joints, " + std::to_string(m_View.boxes.FrameCount()) +
                         " frames, " + clip::FixedText(m_View.motion.Length(), 2) + " s" +
                         (m_View.eyes.empty() ? "" : ", camera held by hand"),
                     {15, std::string(clip::k_QuietInk), clip::Anchor::End});
        DrawLegend(drawing);
    }

    void DrawLegend(clip::Drawing & drawing) const
    {
        std::array<std::size_t, k_ClassCount> counts{};
        for (tagE3DVIEWINTERSECTION const answer : m_View.classification.world)
        {
            ++counts[static_cast<std::size_t>(answer)];
        }
        constexpr double k_EntryWidth = 188;
        double x = clip::k_Margin;
        for (tagE3DVIEWINTERSECTION const answer : k_LegendOrder)
        {
            auto const index = static_cast<std::size_t>(answer);
            DrawBox(drawing, {x + 2, 68, x + 24, 88}, answer);
            drawing.Text({x + 34, 83}, std::to_string(counts[index]) + ' ' + std::string(k_ClassNames[index]),
                         {14, std::string(clip::k_Ink)});
            x += k_EntryWidth;
        }
        drawing.Rectangle({x + 2, 68}, 22, 20, {std::string(k_VolumeColor)});
        DrawFrame(drawing, {x + 2, 68, x + 24, 88}, {std::string(k_VolumeEdgeColor), 2});
        drawing.Text({x + 34, 83}, "view volume", {14, std::string(clip::k_Ink)});
        x += 146;
        drawing.Line({x + 2, 78}, {x + 26, 78}, {ColorOf(E3DVIEWINTERSECTION_INSIDE), 4.5});
        drawing.Text({x + 36, 83}, "path of the root", {14, std::string(clip::k_Ink)});
        drawing.Text({clip::k_PageWidth - clip::k_Margin, 83}, CameraText(),
                     {14, std::string(clip::k_QuietInk), clip::Anchor::End});
    }

    static void DrawFrame(clip::Drawing & drawing, PageArea const & area, clip::Stroke const & stroke)
    {
        drawing.Polyline(std::array<clip::Point, 5>{clip::Point{area.left, area.top},
                                                    {area.right, area.top},
                                                    {area.right, area.bottom},
                                                    {area.left, area.bottom},
                                                    {area.left, area.top}},
                         stroke);
    }

    static void DrawBox(clip::Drawing & drawing, PageArea const & area, tagE3DVIEWINTERSECTION answer)
    {
        drawing.Rectangle({area.left, area.top}, area.right - area.left, area.bottom - area.top,
                          {ColorOf(answer), 0.22});
        DrawFrame(drawing, area, {ColorOf(answer), 1.3});
    }

    void DrawMap(clip::Drawing & drawing) const
    {
        std::vector<clip::Point> outline;
        for (Vector const & corner : ComputeCorners(m_View.camera))
        {
            outline.push_back(m_Map.PlaceOf(corner));
        }
        outline = ComputeHull(outline);
        drawing.Polygon(ClipPolygon(outline, m_Map.Area()), {std::string(k_VolumeColor)});
        DrawRules(drawing);
        for (std::size_t i = 0; i < outline.size(); ++i)
        {
            DrawClipped(drawing, outline[i], outline[(i + 1) % outline.size()], {std::string(k_VolumeEdgeColor), 2});
        }
        DrawCamera(drawing);
        DrawPath(drawing);
        DrawPoses(drawing);
    }

    void DrawClipped(clip::Drawing & drawing, clip::Point from, clip::Point to, clip::Stroke const & stroke) const
    {
        if (auto const part = ClipLine(from, to, m_Map.Area()))
        {
            drawing.Line(part->first, part->second, stroke);
        }
    }

    /// Lines of equal X and of equal Z at round numbers, which stand below and to the left.
    void DrawRules(clip::Drawing & drawing) const
    {
        PageArea const & area = m_Map.Area();
        double const step = clip::ChooseDecimalStep(k_LeastRuleDistance / m_Map.Scale(), 1);
        int const decimals = static_cast<int>(std::clamp(-std::floor(std::log10(step)), 0.0, 17.0));
        clip::Stroke const stroke{std::string(clip::k_GridColor), 1.2};
        for (double const ground : clip::ListMultiples(m_Map.Left(), m_Map.Right(), step))
        {
            double const x = m_Map.PlaceOf({ground, 0, 0}).x;
            drawing.Line({x, area.top}, {x, area.bottom}, stroke);
            drawing.Text({x, area.bottom + 19}, clip::RoundedText(ground, decimals),
                         {k_LabelSize, std::string(clip::k_Ink), clip::Anchor::Middle});
        }
        for (double const ground : clip::ListMultiples(m_Map.Back(), m_Map.Front(), step))
        {
            double const y = m_Map.PlaceOf({0, 0, ground}).y;
            drawing.Line({area.left, y}, {area.right, y}, stroke);
            drawing.Text({area.left - 10, y + 4.5}, clip::RoundedText(ground, decimals),
                         {k_LabelSize, std::string(clip::k_Ink), clip::Anchor::End});
        }
    }

    /// The camera where the map shows it, and its line of sight.
    void DrawCamera(clip::Drawing & drawing) const
    {
        std::string const color(k_VolumeEdgeColor);
        clip::Point const eye = m_Map.PlaceOf(m_View.camera.eye);
        DrawClipped(drawing, eye, m_Map.PlaceOf(m_View.camera.look), {color, 1.4, 0.8, "2 6"});
        if (m_Map.Area().Contains(eye))
        {
            drawing.Circle(eye, 8, {color});
            drawing.Circle(eye, 3.4, {std::string(clip::k_PanelColor)});
        }
        DrawEyePath(drawing);
    }

    void DrawEyePath(clip::Drawing & drawing) const
    {
        std::vector<std::size_t> const frames = ChooseEvenly(m_View.eyes.size(), k_MostPathPoints);
        for (std::size_t i = 1; i < frames.size(); ++i)
        {
            DrawClipped(drawing, m_Map.PlaceOf(m_View.eyes[frames[i - 1]]), m_Map.PlaceOf(m_View.eyes[frames[i]]),
                        {std::string(clip::k_Ink), 1.2});
        }
    }

    /// In pieces of one colour, each up to where the next begins, above a pale rim.
    void DrawPath(clip::Drawing & drawing) const
    {
        std::vector<std::size_t> const frames = ChooseEvenly(m_View.boxes.FrameCount(), k_MostPathPoints);
        std::vector<clip::Point> path;
        path.reserve(frames.size());
        for (std::size_t const frame : frames)
        {
            path.push_back(m_Map.PlaceOf(m_View.positions.Frame(frame)[m_View.boxes.joints.front()]));
        }
        drawing.Polyline(path, {std::string(clip::k_PanelColor), 7.5});
        for (std::size_t first = 0; first + 1 < path.size();)
        {
            tagE3DVIEWINTERSECTION const answer = AnswerFor(frames[first], 0);
            std::size_t last = first + 1;
            while (last + 1 < path.size() && AnswerFor(frames[last], 0) == answer)
            {
                ++last;
            }
            drawing.Polyline(std::span(path).subspan(first, last - first + 1), {ColorOf(answer), 4.5});
            first = last;
        }
    }

    PageArea BoxArea(std::size_t frame, std::size_t place) const
    {
        auto const & [low, high] = m_View.boxes.At(frame, place);
        clip::Point const upperLeft = m_Map.PlaceOf(low);
        clip::Point const lowerRight = m_Map.PlaceOf(high);
        return {upperLeft.x, upperLeft.y, lowerRight.x, lowerRight.y};
    }

    PageArea PoseArea(std::size_t frame) const
    {
        PageArea area = BoxArea(frame, 0);
        for (std::size_t place = 1; place < JointCount(); ++place)
        {
            PageArea const box = BoxArea(frame, place);
            area = {std::min(area.left, box.left), std::min(area.top, box.top), std::max(area.right, box.right),
                    std::max(area.bottom, box.bottom)};
        }
        return area;
    }

    /// Poses that leave each other's place free, from the first of the clip on, with their times where there is room.
    void DrawPoses(clip::Drawing & drawing) const
    {
        std::vector<std::size_t> frames;
        std::vector<PageArea> taken;
        for (std::size_t const frame : ChooseEvenly(m_View.boxes.FrameCount(), k_PoseCandidates))
        {
            PageArea const area = PoseArea(frame);
            if (frames.size() < k_MostPoses && IsFree(area, taken))
            {
                frames.push_back(frame);
                taken.push_back(area);
                DrawPose(drawing, frame);
            }
        }
        for (std::size_t const frame : frames)
        {
            DrawPoseTime(drawing, frame, taken);
        }
    }

    static bool IsFree(PageArea const & area, std::vector<PageArea> const & taken)
    {
        return std::none_of(taken.begin(), taken.end(),
                            [&area](PageArea const & other) { return area.Overlaps(other); });
    }

    /// The lowest boxes first, as they lie from above.
    void DrawPose(clip::Drawing & drawing, std::size_t frame) const
    {
        std::vector<std::size_t> order(JointCount());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::stable_sort(order.begin(), order.end(),
                         [&](std::size_t a, std::size_t b)
                         { return m_View.boxes.At(frame, a)[1].Y < m_View.boxes.At(frame, b)[1].Y; });
        for (std::size_t const place : order)
        {
            DrawBox(drawing, BoxArea(frame, place), AnswerFor(frame, place));
        }
    }

    void DrawPoseTime(clip::Drawing & drawing, std::size_t frame, std::vector<PageArea> & taken) const
    {
        PageArea const pose = PoseArea(frame);
        double const x = (pose.left + pose.right - k_LabelWidth) / 2;
        double const y = (pose.top + pose.bottom - k_LabelHeight) / 2;
        std::array<clip::Point, 4> const corners = {clip::Point{pose.right + k_LabelGap, y},
                                                    {pose.left - k_LabelGap - k_LabelWidth, y},
                                                    {x, pose.top - k_LabelGap - k_LabelHeight},
                                                    {x, pose.bottom + k_LabelGap}};
        for (clip::Point const corner : corners)
        {
            PageArea const label{corner.x, corner.y, corner.x + k_LabelWidth, corner.y + k_LabelHeight};
            if (m_Map.Area().Contains(label) && IsFree(label, taken))
            {
                taken.push_back(label);
                drawing.Text({corner.x + k_LabelWidth / 2, corner.y + k_LabelHeight - 4.5},
                             clip::FixedText(static_cast<double>(frame) * m_View.motion.frameTime, 2) + " s",
                             {k_LabelSize, std::string(clip::k_Ink), clip::Anchor::Middle, true});
                return;
            }
        }
    }

    /// How many boxes of a frame are of one of the first `classCount` classes of the legend.
    std::size_t CountUpTo(std::size_t classCount, std::size_t frame) const
    {
        auto const counted = std::span(k_LegendOrder).first(classCount);
        std::size_t count = 0;
        for (std::size_t place = 0; place < JointCount(); ++place)
        {
            count += std::find(counted.begin(), counted.end(), AnswerFor(frame, place)) != counted.end() ? 1 : 0;
        }
        return count;
    }

    /// One class above the other, each frame as wide as it is long.
    void DrawPlot(clip::Drawing & drawing, double top) const
    {
        double const bottom = top + k_PlotHeight;
        clip::DrawTimeAxis(drawing, {k_MapLeft, k_MapRight, top, bottom, m_View.motion.Length()});
        std::vector<std::size_t> const frames = ChooseEvenly(m_View.boxes.FrameCount(), k_MostColumns);
        double const width = (k_MapRight - k_MapLeft) / static_cast<double>(frames.size());
        for (std::size_t classCount = k_ClassCount; classCount > 0; --classCount)
        {
            std::vector<clip::Point> area = {{k_MapLeft, bottom}};
            for (std::size_t i = 0; i < frames.size(); ++i)
            {
                double const share =
                    static_cast<double>(CountUpTo(classCount, frames[i])) / static_cast<double>(JointCount());
                double const x = k_MapLeft + static_cast<double>(i) * width;
                area.push_back({x, bottom - share * k_PlotHeight});
                area.push_back({x + width, bottom - share * k_PlotHeight});
            }
            area.push_back({k_MapRight, bottom});
            drawing.Polygon(area, {ColorOf(k_LegendOrder[classCount - 1])});
        }
        for (std::size_t const count : {std::size_t{0}, JointCount()})
        {
            drawing.Text({k_MapLeft - 10, (count == 0 ? bottom : top) + 4.5}, std::to_string(count),
                         {k_LabelSize, std::string(clip::k_Ink), clip::Anchor::End});
        }
    }

    View const & m_View;
    Map m_Map;
};

} // namespace

clip::Drawing DrawView(View const & view, std::string const & name)
{
    return ViewPicture(view).Draw(name);
}

} // namespace cull
