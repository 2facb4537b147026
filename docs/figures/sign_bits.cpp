#include "clip/page_style.h"
#include "figures/figures.h"
#include "figures/page.h"
#include "figures/space_view.h"

#include "math/transformation.h"

#include <array>
#include <string>

namespace figures
{

namespace
{

using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;

constexpr double k_StepsHeight = 346;
constexpr double k_LineHeight = 28;
constexpr double k_Unit = 84;
constexpr double k_EyeTurn = 28 * k_Degree;
constexpr double k_EyeTilt = 22 * k_Degree;

struct Parts
{
    Vector scaling;
    Vector angles; ///< in order XYZ
};

Vector GivenAngles()
{
    return {0, 0, 25 * k_Degree};
}

Matrix Combine(Vector const & scaling, Vector const & angles)
{
    return *C3DTransfo(scaling, C3DRotation(angles, E3DROTORDER_XYZ), {0, 0, 0}).GetMatrix();
}

/// The same elements without their history.
Matrix Forget(Matrix const & matrix)
{
    return Matrix().Set(matrix.GetMatrix44());
}

Parts TakeApart(Matrix const & matrix)
{
    C3DTransfo transformation;
    transformation.Set(matrix);
    Parts parts;
    transformation.GetScaling(parts.scaling);
    transformation.GetRotation(parts.angles);
    return parts;
}

std::string AnglesText(Vector const & angles)
{
    return '(' + AngleText(angles.X) + ", " + AngleText(angles.Y) + ", " + AngleText(angles.Z) + ')';
}

void DrawStep(clip::Drawing & drawing, Panel const & panel, double share, Matrix const & xfo, std::string_view label,
              bool isWhole)
{
    SpaceView const view({panel.place.x + share * panel.width, panel.Bottom() - 162}, k_Unit, k_EyeTurn, k_EyeTilt);
    for (tagE3DAXISTYPE const axis : {E3D_AXIS_X, E3D_AXIS_Y, E3D_AXIS_Z})
    {
        drawing.Line(view.PlaceOf(Vector(axis, -1.2)), view.PlaceOf(Vector(axis, 1.2)),
                     {std::string(clip::k_GridColor), 1.2});
    }
    DrawBody(drawing, view, Flag(), xfo, isWhole ? 1 : 0.55);
    drawing.Text({panel.place.x + share * panel.width, panel.Bottom() - 18}, label, Label(clip::Anchor::Middle));
}

/// The body, scaled, then turned.
void DrawParts(clip::Drawing & drawing, Panel const & panel, std::string_view title, std::string_view remark,
               Parts const & parts)
{
    DrawPanel(drawing, panel, title, remark);
    DrawStep(drawing, panel, 0.17, Matrix(), "the object", false);
    DrawStep(drawing, panel, 0.48, Combine(parts.scaling, {0, 0, 0}), "scaled by " + VectorText(parts.scaling), false);
    DrawStep(drawing, panel, 0.8, Combine(parts.scaling, parts.angles), "turned by " + AnglesText(parts.angles), true);
}

std::string BitsText(Matrix const & matrix)
{
    return std::to_string(static_cast<int>(matrix.GetSclSignBits()));
}

void DrawTable(clip::Drawing & drawing, Panel const & panel)
{
    constexpr std::array<double, 5> k_Columns = {0.012, 0.19, 0.32, 0.52, 0.76};
    constexpr std::array<std::string_view, 5> k_Heads = {"scaling put in", "its sign bits", "read with the bits",
                                                         "read from the elements alone",
                                                         "and the rotation that goes with it"};
    DrawPanel(drawing, panel, "What comes back",
              "put in: the scaling, and the rotation " + AnglesText(GivenAngles()) +
                  "; the bits are 2 for X, 4 for Y, 8 for Z");
    double y = panel.place.y + k_PanelHead + 24;
    auto const xOf = [&](std::size_t column) { return panel.place.x + k_Columns[column] * panel.width; };
    for (std::size_t column = 0; column < k_Heads.size(); ++column)
    {
        drawing.Text({xOf(column), y}, k_Heads[column], QuietLabel());
    }
    for (unsigned negative = 1; negative < 8; ++negative)
    {
        Vector const scaling((negative & 1U) != 0 ? -1 : 1, (negative & 2U) != 0 ? -1 : 1,
                             (negative & 4U) != 0 ? -1 : 1);
        Matrix const matrix = Combine(scaling, GivenAngles());
        Parts const kept = TakeApart(matrix);
        Parts const lost = TakeApart(Forget(matrix));
        drawing.Line({panel.place.x + 14, y + 9}, {panel.place.x + panel.width - 14, y + 9},
                     {std::string(clip::k_GridColor)});
        y += k_LineHeight;
        drawing.Text({xOf(0), y}, VectorText(scaling), Label());
        drawing.Text({xOf(1), y}, BitsText(matrix), Label());
        drawing.Text({xOf(2), y}, VectorText(kept.scaling), BoldLabel(clip::Anchor::Start, AxisColor(E3D_AXIS_Y)));
        bool const isSame = lost.scaling == scaling;
        drawing.Text({xOf(3), y}, VectorText(lost.scaling),
                     BoldLabel(clip::Anchor::Start, AxisColor(isSame ? E3D_AXIS_Y : E3D_AXIS_X)));
        drawing.Text({xOf(4), y}, AnglesText(lost.angles), Label());
    }
}

} // namespace

clip::Drawing DrawSignBits()
{
    double const tableTop = k_FirstPanelTop + k_StepsHeight + clip::k_PanelGap;
    double const tableHeight = k_PanelHead + 8 * k_LineHeight + 14;
    clip::Drawing drawing = StartPage(tableTop + tableHeight + clip::k_Margin, "The sign bits of a mirrored matrix",
                                      "one matrix, taken apart in two ways");
    Matrix const matrix = Combine({-1, 1, 1}, GivenAngles());
    DrawParts(drawing, PlacePanel(0, 2, k_FirstPanelTop, k_StepsHeight), "With the bits: the mirror that was put in",
              "GetScaling and GetRotation of the matrix as it was made", TakeApart(matrix));
    DrawParts(drawing, PlacePanel(1, 2, k_FirstPanelTop, k_StepsHeight), "Without: all three axes, and another turn",
              "the same sixteen elements, set one by one: the same object in the end", TakeApart(Forget(matrix)));
    DrawTable(drawing, PlacePanel(0, 1, tableTop, tableHeight));
    return drawing;
}

} // namespace figures
