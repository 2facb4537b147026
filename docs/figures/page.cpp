#include "figures/page.h"

#include "clip/number_text.h"
#include "clip/page_style.h"

#include <array>
#include <cmath>

namespace figures
{

namespace
{

constexpr double k_LabelSize = 13;
constexpr double k_HeadLength = 11; ///< of an arrow
constexpr double k_HeadWidth = 9;

} // namespace

clip::Drawing StartPage(double height, std::string_view title, std::string_view remark)
{
    clip::Drawing drawing(clip::k_PageWidth, height, title);
    drawing.Rectangle({0, 0}, clip::k_PageWidth, height, {std::string(clip::k_Paper)});
    drawing.Text({clip::k_Margin, 46}, title, {26, std::string(clip::k_Ink), clip::Anchor::Start, true});
    drawing.Text({clip::k_PageWidth - clip::k_Margin, 46}, remark,
                 {15, std::string(clip::k_QuietInk), clip::Anchor::End});
    return drawing;
}

Panel PlacePanel(int column, int columns, double top, double height)
{
    double const width = (clip::k_PageWidth - 2 * clip::k_Margin - (columns - 1) * clip::k_PanelGap) / columns;
    return {{clip::k_Margin + column * (width + clip::k_PanelGap), top}, width, height};
}

void DrawPanel(clip::Drawing & drawing, Panel const & panel, std::string_view title, std::string_view remark)
{
    drawing.Rectangle(panel.place, panel.width, panel.height, {std::string(clip::k_PanelColor)}, clip::k_PanelCorner);
    drawing.Text({panel.place.x + 14, panel.place.y + 25}, title,
                 {15, std::string(clip::k_Ink), clip::Anchor::Start, true});
    drawing.Text({panel.place.x + 14, panel.place.y + 46}, remark, QuietLabel());
}

void DrawArrow(clip::Drawing & drawing, clip::Point from, clip::Point to, clip::Stroke const & stroke)
{
    double const length = std::hypot(to.x - from.x, to.y - from.y);
    if (length < k_HeadLength)
    {
        return;
    }
    clip::Point const along{(to.x - from.x) / length, (to.y - from.y) / length};
    clip::Point const neck{to.x - along.x * k_HeadLength, to.y - along.y * k_HeadLength};
    double const half = k_HeadWidth / 2 + stroke.width / 4;
    drawing.Line(from, {neck.x + along.x * 2, neck.y + along.y * 2}, stroke);
    std::array<clip::Point, 3> const head = {
        {to, {neck.x - along.y * half, neck.y + along.x * half}, {neck.x + along.y * half, neck.y - along.x * half}}};
    drawing.Polygon(head, {stroke.color, stroke.opacity});
}

std::string NumberText(double value)
{
    std::string text = clip::RoundedText(value, 2);
    if (text.starts_with('-'))
    {
        text.replace(0, 1, "\u2212");
    }
    return text;
}

std::string VectorText(C3DVector3Tpl<double> const & v)
{
    return '(' + NumberText(v.X) + ", " + NumberText(v.Y) + ", " + NumberText(v.Z) + ')';
}

std::string AngleText(double angle)
{
    return NumberText(angle / k_Degree) + "\u00b0";
}

clip::TextStyle Label(clip::Anchor anchor, std::string_view color)
{
    return {k_LabelSize, std::string(color), anchor};
}

clip::TextStyle BoldLabel(clip::Anchor anchor, std::string_view color)
{
    return {k_LabelSize, std::string(color), anchor, true};
}

clip::TextStyle QuietLabel(clip::Anchor anchor)
{
    return {k_LabelSize, std::string(clip::k_QuietInk), anchor};
}

} // namespace figures
