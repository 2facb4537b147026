#pragma once

#include "clip/drawing.h"

#include "math/numeric.h"
#include "math/vector3.h"

#include <string>
#include <string_view>

// What the pictures of the manual have in common: a page with panels, and how numbers and axes look on it.

namespace figures
{

/// The colours of the axes, as the pictures of the programs have them, and of what belongs to none.
constexpr std::string_view AxisColor(tagE3DAXISTYPE axis)
{
    return axis == E3D_AXIS_X ? "#d55e00" : axis == E3D_AXIS_Y ? "#009e73" : "#0072b2";
}
inline constexpr std::string_view k_MoveColor = "#b0488a";

constexpr std::string_view AxisName(tagE3DAXISTYPE axis)
{
    return axis == E3D_AXIS_X ? "X" : axis == E3D_AXIS_Y ? "Y" : "Z";
}

inline constexpr double k_Degree = 0.017453292519943295;
inline constexpr double k_FirstPanelTop = 74;
inline constexpr double k_PanelHead = 56; ///< for the two lines of text at the top of a panel

/// A white field of the page.
struct Panel
{
    clip::Point place; ///< the upper left corner
    double width = 0;
    double height = 0;

    double Bottom() const { return place.y + height; }
    double Middle() const { return place.x + width / 2; }
};

/// An empty page with its heading.
clip::Drawing StartPage(double height, std::string_view title, std::string_view remark);

/// One of `columns` panels side by side.
Panel PlacePanel(int column, int columns, double top, double height);

/// A panel with its heading and a quieter line beneath that.
void DrawPanel(clip::Drawing & drawing, Panel const & panel, std::string_view title, std::string_view remark);

/// A line from `from` to a head at `to`. Where the two are closer than a head is long, nothing is drawn.
void DrawArrow(clip::Drawing & drawing, clip::Point from, clip::Point to, clip::Stroke const & stroke);

/// Up to two decimals, with a minus sign as print has it and never a negative zero.
std::string NumberText(double value);
/// As "(1, 2, 3)".
std::string VectorText(C3DVector3Tpl<double> const & v);
/// An angle in radians as degrees.
std::string AngleText(double angle);

clip::TextStyle Label(clip::Anchor anchor = clip::Anchor::Start, std::string_view color = "#23272f");
clip::TextStyle BoldLabel(clip::Anchor anchor, std::string_view color);
clip::TextStyle QuietLabel(clip::Anchor anchor = clip::Anchor::Start);

} // namespace figures
