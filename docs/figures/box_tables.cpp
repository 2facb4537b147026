#include "clip/page_style.h"
#include "figures/figures.h"
#include "figures/page.h"
#include "figures/space_view.h"

#include "math/bounding_box.h"

#include <array>
#include <string>

namespace figures
{

namespace
{

using Vector = C3DVector3Tpl<double>;

constexpr double k_PanelHeight = 716;
constexpr double k_Unit = 185;
constexpr double k_LineHeight = 20;
constexpr double k_ListTop = 458; ///< from the top of a panel
constexpr double k_EyeTurn = 22 * k_Degree;
constexpr double k_EyeTilt = 24 * k_Degree;
constexpr unsigned char k_CornerCount = 8;
constexpr unsigned char k_EdgeCount = 12;
constexpr unsigned char k_FaceCount = 6;

/// A box about the origin, with sides of different lengths.
C3DBBox const & Box()
{
    static C3DBBox const box(Vector(1.3, 0.95, 1.1));
    return box;
}

Vector CornerOf(tagE3DBBOXCORNER corner)
{
    Vector point;
    Box().GetCorner(corner, point);
    return point;
}

/// The bound that a corner takes on each axis, as its name has it.
std::string CornerName(tagE3DBBOXCORNER corner)
{
    std::array<short, 3> signs{};
    Box().GetSign(corner, signs.data());
    std::string name;
    for (short const sign : signs)
    {
        name += sign < 0 ? 'M' : 'P';
    }
    return name;
}

/// Whether the faces at an edge or corner all look away from the eye.
bool IsHidden(SpaceView const & view, Vector const & place)
{
    for (tagE3DAXISTYPE const axis : {E3D_AXIS_X, E3D_AXIS_Y, E3D_AXIS_Z})
    {
        auto const index = static_cast<unsigned long>(axis);
        Vector const outward(axis, place[index]);
        bool const isOnFace = place[index] == Box().GetMin()[index] || place[index] == Box().GetMax()[index];
        if (isOnFace && view.NearnessOf(outward) > 0)
        {
            return false;
        }
    }
    return true;
}

Vector MiddleOf(S3DBBoxEdgeInfo const & edge)
{
    return Vector().Add(CornerOf(edge.corner1), CornerOf(edge.corner2)).Mul(0.5);
}

SpaceView DrawFrame(clip::Drawing & drawing, Panel const & panel)
{
    SpaceView const view({panel.Middle(), panel.place.y + 234}, k_Unit, k_EyeTurn, k_EyeTilt);
    for (S3DBBoxEdgeInfo const & edge : C3DBBox::m_EdgeInfo)
    {
        bool const isHidden = IsHidden(view, MiddleOf(edge));
        drawing.Line(view.PlaceOf(CornerOf(edge.corner1)), view.PlaceOf(CornerOf(edge.corner2)),
                     {std::string(AxisColor(edge.axis)), isHidden ? 1.3 : 2.2, 1, isHidden ? "4 4" : ""});
    }
    // The axes, beside the box.
    SpaceView const corner({panel.place.x + 44, panel.place.y + 404}, 40, k_EyeTurn, k_EyeTilt);
    for (tagE3DAXISTYPE const axis : {E3D_AXIS_X, E3D_AXIS_Y, E3D_AXIS_Z})
    {
        DrawArrow(drawing, corner.PlaceOf({0, 0, 0}), corner.PlaceOf(Vector(axis, 0.9)),
                  {std::string(AxisColor(axis)), 1.6});
        clip::Point const out = corner.PlaceOf(Vector(axis, 1.25));
        drawing.Text({out.x, out.y + 4}, AxisName(axis), BoldLabel(clip::Anchor::Middle, AxisColor(axis)));
    }
    return view;
}

/// A number on a disc.
void DrawNumber(clip::Drawing & drawing, clip::Point place, int number, std::string_view color, bool isHidden)
{
    drawing.Circle(place, 12.5, {"#ffffff"});
    drawing.Circle(place, 12.5, {std::string(color), isHidden ? 0.35 : 1});
    drawing.Text({place.x, place.y + 5}, std::to_string(number), {14, "#ffffff", clip::Anchor::Middle, true});
}

/// One line of a table; line 0 is its head.
template <std::size_t Count>
void DrawLine(clip::Drawing & drawing, Panel const & panel, int line, std::array<double, Count> const & columns,
              std::array<std::string, Count> const & texts)
{
    double const y = panel.place.y + k_ListTop + line * k_LineHeight;
    for (std::size_t i = 0; i < Count; ++i)
    {
        drawing.Text({panel.place.x + columns[i], y}, texts[i], line == 0 ? QuietLabel() : Label());
    }
    if (line == 0)
    {
        drawing.Line({panel.place.x + 14, y + 6}, {panel.place.x + panel.width - 14, y + 6},
                     {std::string(clip::k_GridColor)});
    }
}

void DrawCorners(clip::Drawing & drawing, Panel const & panel)
{
    DrawPanel(drawing, panel, "Corners", "named by bound: M minimum, P maximum");
    SpaceView const view = DrawFrame(drawing, panel);
    constexpr std::array<double, 3> k_Columns = {20, 50, 250};
    DrawLine<3>(drawing, panel, 0, k_Columns, {"", "tagE3DBBOXCORNER", "opposite"});
    for (int i = 0; i < k_CornerCount; ++i)
    {
        auto const corner = static_cast<tagE3DBBOXCORNER>(i);
        DrawNumber(drawing, view.PlaceOf(CornerOf(corner)), i, clip::k_Ink, IsHidden(view, CornerOf(corner)));
        tagE3DBBOXCORNER opposite{};
        Box().GetOppositeCorner(corner, &opposite);
        DrawLine<3>(drawing, panel, i + 1, k_Columns,
                    {std::to_string(i), "E3DBBOXCORNER_" + CornerName(corner), std::to_string(opposite)});
    }
}

void DrawEdges(clip::Drawing & drawing, Panel const & panel)
{
    DrawPanel(drawing, panel, "Edges", "named by the corners at their ends");
    SpaceView const view = DrawFrame(drawing, panel);
    constexpr std::array<double, 4> k_Columns = {20, 50, 205, 265};
    DrawLine<4>(drawing, panel, 0, k_Columns, {"", "tagE3DBBOXEDGE", "axis", "opposite"});
    for (int i = 0; i < k_EdgeCount; ++i)
    {
        S3DBBoxEdgeInfo const & edge = C3DBBox::m_EdgeInfo[i];
        DrawNumber(drawing, view.PlaceOf(MiddleOf(edge)), i, AxisColor(edge.axis), IsHidden(view, MiddleOf(edge)));
        tagE3DBBOXEDGE opposite{};
        Box().GetOppositeEdge(static_cast<tagE3DBBOXEDGE>(i), &opposite);
        DrawLine<4>(drawing, panel, i + 1, k_Columns,
                    {std::to_string(i),
                     "E3DBBOXEDGE_" + std::to_string(edge.corner1) + '_' + std::to_string(edge.corner2),
                     std::string(AxisName(edge.axis)), std::to_string(opposite)});
    }
}

std::string RingText(S3DBBoxFaceInfo const & face)
{
    std::string text;
    for (tagE3DBBOXCORNER const corner : {face.corner1, face.corner2, face.corner3, face.corner4})
    {
        text += text.empty() ? "" : " ";
        text += std::to_string(corner);
    }
    return text;
}

void DrawFaces(clip::Drawing & drawing, Panel const & panel)
{
    DrawPanel(drawing, panel, "Faces", "corners counter-clockwise from outside");
    SpaceView const view = DrawFrame(drawing, panel);
    constexpr std::array<std::string_view, k_FaceCount> k_Names = {"MINUS_X", "PLUS_X",  "MINUS_Y",
                                                                   "PLUS_Y",  "MINUS_Z", "PLUS_Z"};
    for (bool const isHiddenTurn : {true, false})
    {
        for (int i = 0; i < k_FaceCount; ++i)
        {
            S3DBBoxFaceInfo const & face = C3DBBox::m_FaceInfo[i];
            std::array<Vector, 4> ring;
            Box().GetFacePoints(static_cast<tagE3DBBOXFACE>(i), ring[0], ring[1], ring[2], ring[3]);
            Vector const middle = Vector().Add(ring[0], ring[2]).Mul(0.5);
            bool const isHidden = IsHidden(view, middle);
            if (isHidden == isHiddenTurn)
            {
                std::array<clip::Point, 4> const outline = {view.PlaceOf(ring[0]), view.PlaceOf(ring[1]),
                                                            view.PlaceOf(ring[2]), view.PlaceOf(ring[3])};
                drawing.Polygon(outline, {std::string(AxisColor(face.axis)), isHidden ? 0.05 : 0.14});
                DrawNumber(drawing, view.PlaceOf(middle), i, AxisColor(face.axis), isHidden);
            }
        }
    }
    constexpr std::array<double, 4> k_Columns = {20, 50, 232, 318};
    DrawLine<4>(drawing, panel, 0, k_Columns, {"", "tagE3DBBOXFACE", "corners", "opposite"});
    for (int i = 0; i < k_FaceCount; ++i)
    {
        tagE3DBBOXFACE opposite{};
        Box().GetOppositeFace(static_cast<tagE3DBBOXFACE>(i), &opposite);
        DrawLine<4>(drawing, panel, i + 1, k_Columns,
                    {std::to_string(i), "E3DBBOXFACE_" + std::string(k_Names[static_cast<std::size_t>(i)]),
                     RingText(C3DBBox::m_FaceInfo[i]), std::to_string(opposite)});
    }
}

} // namespace

clip::Drawing DrawBoxTables()
{
    clip::Drawing drawing = StartPage(k_FirstPanelTop + k_PanelHeight + clip::k_Margin, "The numbers of a box",
                                      "C3DBBox; edges in the colour of their axis, dashed and pale what lies behind");
    DrawCorners(drawing, PlacePanel(0, 3, k_FirstPanelTop, k_PanelHeight));
    DrawEdges(drawing, PlacePanel(1, 3, k_FirstPanelTop, k_PanelHeight));
    DrawFaces(drawing, PlacePanel(2, 3, k_FirstPanelTop, k_PanelHeight));
    return drawing;
}

} // namespace figures
