#include "bake/pose_picture.h"

#include "clip/number_text.h"
#include "clip/page_style.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace bake
{

namespace
{

using Vector = C3DVector3Tpl<double>;
using Positions = std::span<Vector const>;

constexpr std::size_t k_MostPoses = 6;
constexpr std::size_t k_MostPathPoints = 240; ///< of one end in one column: more cannot be told apart
constexpr std::size_t k_MostNameBytes = 24;   ///< in the legend

constexpr double k_HeaderHeight = 108;
constexpr double k_PanelPadding = 34; ///< above the figures
constexpr double k_PanelFoot = 52;    ///< below the ground, for the labels of time
constexpr double k_MostFigureHeight = 300;
constexpr double k_ColumnShare = 0.97; ///< of a column's width, for figure and paths

constexpr std::string_view k_TrunkColor = "#4a4f5a";

/// Told apart by most colour-blind readers, after Okabe and Ito, a little darker to stand on white.
constexpr std::array<std::string_view, 7> k_LimbColors = {"#0072b2", "#d55e00", "#8a6d00", "#009e73",
                                                          "#b0488a", "#56a0d3", "#c79200"};

/// A direction to look in, level with the ground.
struct View
{
    std::string_view label;
    double (*across)(Vector const &); ///< to the right on the page
    double (*nearness)(Vector const &);
};

constexpr std::array<View, 2> k_Views = {
    View{"From the front", [](Vector const & p) { return p.X; }, [](Vector const & p) { return p.Z; }},
    View{"From the side", [](Vector const & p) { return p.Z; }, [](Vector const & p) { return -p.X; }}};

/// The frames of one column, `first` to `last` with both, and the one in which the figure is drawn.
struct Piece
{
    std::size_t first;
    std::size_t pose;
    std::size_t last;
};

std::vector<Piece> CutIntoPieces(std::size_t frameCount)
{
    std::size_t const count = std::min(frameCount, k_MostPoses);
    std::vector<Piece> pieces;
    for (std::size_t i = 0; i < count; ++i)
    {
        std::size_t const first = i * frameCount / count;
        std::size_t const next = (i + 1) * frameCount / count;
        // Up to the first frame of the next piece, so that the paths leave nothing out.
        pieces.push_back({first, (first + next - 1) / 2, std::min(next, frameCount - 1)});
    }
    return pieces;
}

/// The frames through which a path is drawn: all of a short piece, evenly chosen ones of a long one.
std::vector<std::size_t> PathFrames(Piece const & piece)
{
    std::size_t const steps = std::min(piece.last - piece.first, k_MostPathPoints - 1);
    std::vector<std::size_t> frames;
    for (std::size_t i = 0; i <= steps; ++i)
    {
        frames.push_back(steps == 0 ? piece.first : piece.first + i * (piece.last - piece.first) / steps);
    }
    return frames;
}

/// What a column shows in one view, along the page: distances from the root of the figure.
struct Extent
{
    double left = std::numeric_limits<double>::infinity();
    double right = -std::numeric_limits<double>::infinity();

    void Include(double x)
    {
        left = std::min(left, x);
        right = std::max(right, x);
    }
    double Width() const { return right - left; }
};

class PosePicture
{
public:
    PosePicture(clip::Clip const & motion, clip::WorldPositions const & positions)
        : m_Clip(motion), m_Positions(positions), m_Ends(clip::FindEnds(motion.skeleton)), m_Colors(ColorLimbs()),
          m_Pieces(CutIntoPieces(positions.FrameCount())), m_Bounds(clip::ComputeBounds(positions.All()))
    {
        ChooseScale();
    }

    clip::Drawing Draw(std::string const & name) const
    {
        double const figureHeight = (m_Bounds.largest.Y - m_Bounds.smallest.Y) * m_Scale;
        double const panelHeight = k_PanelPadding + figureHeight + k_PanelFoot;
        double const pageHeight = k_HeaderHeight + 2 * panelHeight + clip::k_PanelGap + clip::k_Margin;
        clip::Drawing drawing(clip::k_PageWidth, pageHeight, name + ": poses from the front and from the side");
        drawing.Rectangle({0, 0}, clip::k_PageWidth, pageHeight, {std::string(clip::k_Paper)});
        DrawHeader(drawing, name);
        double top = k_HeaderHeight;
        for (View const & view : k_Views)
        {
            DrawPanel(drawing, view, top, panelHeight);
            top += panelHeight + clip::k_PanelGap;
        }
        return drawing;
    }

private:
    /// A limb reaches from an end up to the first joint that has other children, and has one colour. What is on no limb
    /// is the trunk, and left empty here.
    std::vector<std::string_view> ColorLimbs() const
    {
        std::vector<clip::Joint> const & joints = m_Clip.skeleton.joints;
        std::vector<int> childCount(joints.size(), 0);
        for (clip::Joint const & joint : joints)
        {
            if (joint.parent != clip::k_NoParent)
            {
                ++childCount[static_cast<std::size_t>(joint.parent)];
            }
        }
        std::vector<std::string_view> colors(joints.size());
        for (std::size_t i = 0; i < m_Ends.size(); ++i)
        {
            int joint = m_Ends[i];
            while (joint != clip::k_NoParent && childCount[static_cast<std::size_t>(joint)] <= 1)
            {
                colors[static_cast<std::size_t>(joint)] = k_LimbColors[i % k_LimbColors.size()];
                joint = joints[static_cast<std::size_t>(joint)].parent;
            }
        }
        return colors;
    }

    std::string ColorOf(std::size_t joint) const
    {
        return std::string(m_Colors[joint].empty() ? k_TrunkColor : m_Colors[joint]);
    }

    /// An end's limb is known by its last joint's name, not by that of the end site.
    std::string const & NameOfEnd(int end) const
    {
        clip::Joint const & joint = m_Clip.skeleton.joints[static_cast<std::size_t>(end)];
        return joint.isEndSite ? m_Clip.skeleton.joints[static_cast<std::size_t>(joint.parent)].name : joint.name;
    }

    std::string LegendName(int end) const { return clip::ShortenText(NameOfEnd(end), k_MostNameBytes); }

    double ColumnWidth() const
    {
        return (clip::k_PageWidth - 2 * clip::k_Margin) / static_cast<double>(m_Pieces.size());
    }

    double RootAcross(View const & view, Piece const & piece) const
    {
        return view.across(m_Positions.Frame(piece.pose)[0]);
    }

    Extent ComputeExtent(View const & view, Piece const & piece) const
    {
        double const origin = RootAcross(view, piece);
        Extent extent;
        for (Vector const & position : m_Positions.Frame(piece.pose))
        {
            extent.Include(view.across(position) - origin);
        }
        for (std::size_t const frame : PathFrames(piece))
        {
            for (int const end : m_Ends)
            {
                extent.Include(view.across(m_Positions.Frame(frame)[static_cast<std::size_t>(end)]) - origin);
            }
        }
        return extent;
    }

    /// The largest scale at which every column fits, and the figure is no taller than it should be. A figure without
    /// any extent is drawn at scale 1.
    void ChooseScale()
    {
        double widest = 0;
        for (View const & view : k_Views)
        {
            for (Piece const & piece : m_Pieces)
            {
                widest = std::max(widest, ComputeExtent(view, piece).Width());
            }
        }
        double const tallest = m_Bounds.largest.Y - m_Bounds.smallest.Y;
        double scale = std::numeric_limits<double>::infinity();
        if (widest > 0)
        {
            scale = std::min(scale, k_ColumnShare * ColumnWidth() / widest);
        }
        if (tallest > 0)
        {
            scale = std::min(scale, k_MostFigureHeight / tallest);
        }
        m_Scale = scale < std::numeric_limits<double>::infinity() ? scale : 1;
    }

    void DrawHeader(clip::Drawing & drawing, std::string const & name) const
    {
        drawing.Text({clip::k_Margin, 46}, name, {26, std::string(clip::k_Ink), clip::Anchor::Start, true});
        std::size_t const frameCount = m_Positions.FrameCount();
        drawing.Text({clip::k_PageWidth - clip::k_Margin, 46},
                     std::to_string(clip::CountJoints(m_Clip.skeleton)) + " joints, " + std::to_string(frameCount) +
                         " frames, " + clip::FixedText(static_cast<double>(frameCount) * m_Clip.frameTime, 2) + " s",
                     {15, std::string(clip::k_QuietInk), clip::Anchor::End});
        DrawLegend(drawing);
    }

    /// As many ends as one line holds, in columns of one width.
    void DrawLegend(clip::Drawing & drawing) const
    {
        constexpr double k_Sample = 22;
        constexpr double k_Gap = 9;
        constexpr double k_CharacterWidth = 7.7; // of the legend's type, on average and generously
        std::size_t longest = 0;
        for (int const end : m_Ends)
        {
            longest = std::max(longest, LegendName(end).size());
        }
        double const width = k_Sample + 3 * k_Gap + k_CharacterWidth * static_cast<double>(longest);
        auto const fitting = static_cast<std::size_t>((clip::k_PageWidth - 2 * clip::k_Margin) / width);
        std::size_t const shown = m_Ends.size() <= fitting ? m_Ends.size() : fitting - 1;
        double x = clip::k_Margin;
        for (int const end : std::span(m_Ends).first(shown))
        {
            drawing.Line({x + 3, 78}, {x + k_Sample, 78}, {ColorOf(static_cast<std::size_t>(end)), 5});
            drawing.Text({x + k_Sample + k_Gap, 83}, LegendName(end), {14, std::string(clip::k_Ink)});
            x += width;
        }
        if (shown < m_Ends.size())
        {
            drawing.Text({x, 83}, "and " + std::to_string(m_Ends.size() - shown) + " more",
                         {14, std::string(clip::k_QuietInk)});
        }
    }

    void DrawPanel(clip::Drawing & drawing, View const & view, double top, double height) const
    {
        double const ground = top + height - k_PanelFoot;
        drawing.Rectangle({clip::k_Margin, top}, clip::k_PageWidth - 2 * clip::k_Margin, height,
                          {std::string(clip::k_PanelColor)}, clip::k_PanelCorner);
        drawing.Text({clip::k_Margin + 14, top + 23}, view.label,
                     {14, std::string(clip::k_QuietInk), clip::Anchor::Start, true});
        drawing.Line({clip::k_Margin + 14, ground}, {clip::k_PageWidth - clip::k_Margin - 14, ground},
                     {std::string(clip::k_RuleColor), 1.5});
        for (std::size_t i = 0; i < m_Pieces.size(); ++i)
        {
            double const center = clip::k_Margin + (static_cast<double>(i) + 0.5) * ColumnWidth();
            DrawColumn(drawing, view, m_Pieces[i], {center, ground});
            DrawTime(drawing, m_Pieces[i].pose, {center, ground});
        }
    }

    void DrawTime(clip::Drawing & drawing, std::size_t frame, clip::Point foot) const
    {
        drawing.Text({foot.x, foot.y + 22}, clip::FixedText(static_cast<double>(frame) * m_Clip.frameTime, 2) + " s",
                     {14, std::string(clip::k_Ink), clip::Anchor::Middle});
        drawing.Text({foot.x, foot.y + 39}, "frame " + std::to_string(frame),
                     {12, std::string(clip::k_QuietInk), clip::Anchor::Middle});
    }

    /// \param foot the middle of the column, on the ground
    void DrawColumn(clip::Drawing & drawing, View const & view, Piece const & piece, clip::Point foot) const
    {
        Extent const extent = ComputeExtent(view, piece);
        double const middle = RootAcross(view, piece) + (extent.left + extent.right) / 2;
        auto const toPage = [&](Vector const & p) -> clip::Point {
            return {foot.x + (view.across(p) - middle) * m_Scale, foot.y - (p.Y - m_Bounds.smallest.Y) * m_Scale};
        };
        DrawPaths(drawing, piece, toPage);
        DrawFigure(drawing, view, m_Positions.Frame(piece.pose), toPage);
    }

    template <class ToPage>
    void DrawPaths(clip::Drawing & drawing, Piece const & piece, ToPage const & toPage) const
    {
        std::vector<std::size_t> const frames = PathFrames(piece);
        for (int const end : m_Ends)
        {
            auto const joint = static_cast<std::size_t>(end);
            std::vector<clip::Point> path;
            path.reserve(frames.size());
            for (std::size_t const frame : frames)
            {
                path.push_back(toPage(m_Positions.Frame(frame)[joint]));
            }
            drawing.Polyline(path, {ColorOf(joint), 1.6, 0.55});
        }
    }

    /// Bones from the farthest to the nearest, each with a pale rim, so that a near limb reads as being in front.
    template <class ToPage>
    void DrawFigure(clip::Drawing & drawing, View const & view, Positions pose, ToPage const & toPage) const
    {
        std::vector<clip::Joint> const & joints = m_Clip.skeleton.joints;
        std::vector<std::pair<double, std::size_t>> bones;
        for (std::size_t i = 0; i < joints.size(); ++i)
        {
            if (joints[i].parent != clip::k_NoParent)
            {
                auto const parent = static_cast<std::size_t>(joints[i].parent);
                bones.emplace_back(view.nearness(pose[i]) + view.nearness(pose[parent]), i);
            }
        }
        std::sort(bones.begin(), bones.end());
        double const width = std::clamp((m_Bounds.largest.Y - m_Bounds.smallest.Y) * m_Scale / 42, 1.5, 6.0);
        for (auto const & [nearness, joint] : bones)
        {
            clip::Point const from = toPage(pose[static_cast<std::size_t>(joints[joint].parent)]);
            clip::Point const to = toPage(pose[joint]);
            drawing.Line(from, to, {std::string(clip::k_PanelColor), 1.4 * width});
            drawing.Line(from, to, {ColorOf(joint), width});
        }
        for (int const end : m_Ends)
        {
            auto const joint = static_cast<std::size_t>(end);
            drawing.Circle(toPage(pose[joint]), 0.75 * width, {ColorOf(joint)});
        }
    }

    clip::Clip const & m_Clip;
    clip::WorldPositions const & m_Positions;
    std::vector<int> m_Ends;
    std::vector<std::string_view> m_Colors;
    std::vector<Piece> m_Pieces;
    clip::Bounds m_Bounds;
    double m_Scale = 1;
};

} // namespace

clip::Drawing DrawPoses(clip::Clip const & motion, clip::WorldPositions const & positions, std::string const & name)
{
    return PosePicture(motion, positions).Draw(name);
}

} // namespace bake
