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

constexpr double k_PanelHeight = 292;
constexpr double k_Unit = 60;

struct Space
{
    tagE3DTRANSFOSPACE space;
    std::string_view name;
};

constexpr std::array<Space, 3> k_Spaces = {
    {{E3DTRANSFOSPACE_LOCAL, "LOCAL"}, {E3DTRANSFOSPACE_PARENT, "PARENT"}, {E3DTRANSFOSPACE_REFERENCE, "REFERENCE"}}};

C3DTransfo MakeParent()
{
    return {{1.3, 1.3, 1.3}, C3DRotation(E3D_AXIS_Z, 20 * k_Degree), {0, 0, 0}};
}

C3DTransfo MakeObject()
{
    return {{0.7, 0.7, 0.7}, C3DRotation(E3D_AXIS_Z, -55 * k_Degree), {1.1, 0.7, 0}};
}

/// The axes of the world as the parent sees them.
C3DRotation MakeReference()
{
    C3DTransfo parent = MakeParent();
    C3DRotation rotation;
    parent.GetRotation(rotation);
    return rotation.Invert();
}

Matrix WorldOf(C3DTransfo object)
{
    C3DTransfo parent = MakeParent();
    return *C3DTransfo().Mul(object, parent, 63).GetMatrix();
}

Vector TranslationOf(C3DTransfo object)
{
    Vector translation;
    object.GetTranslation(translation);
    return translation;
}

/// Where the rotation of the object takes the X axis.
Vector FirstRowOf(C3DTransfo object)
{
    C3DRotMatTpl<double> rotation;
    object.GetRotation(rotation);
    return {rotation.Get(0, 0), rotation.Get(0, 1), rotation.Get(0, 2)};
}

/// The rotation whose rows are the axes of a space, as the parent sees them.
C3DRotation AxesOf(tagE3DTRANSFOSPACE space)
{
    C3DRotation axes;
    if (space == E3DTRANSFOSPACE_LOCAL)
    {
        MakeObject().GetRotation(axes);
    }
    return space == E3DTRANSFOSPACE_REFERENCE ? MakeReference() : axes;
}

/// A direction of the parent in the world.
Vector DirectionInWorld(Vector const & direction)
{
    Matrix parent = *MakeParent().GetMatrix();
    parent.SetTranslation({0, 0, 0});
    return Vector().Mul(direction, parent);
}

/// Space with the parent's axes, or the plane, where the eye stands on Z.
SpaceView DrawParent(clip::Drawing & drawing, Panel const & panel, double turn, double tilt)
{
    SpaceView const view({panel.place.x + 118, panel.Bottom() - 62}, k_Unit, turn, tilt);
    DrawAxes(drawing, view, *MakeParent().GetMatrix(), 0.8);
    clip::Point const origin = view.PlaceOf({0, 0, 0});
    drawing.Circle(origin, 3.5, {std::string(clip::k_Ink)});
    drawing.Text({origin.x + 8, origin.y + 18}, "parent", QuietLabel());
    return view;
}

void DrawBeforeAndAfter(clip::Drawing & drawing, Panel const & panel, SpaceView const & view, C3DTransfo const & after,
                        std::string_view quantity, Vector (*valueOf)(C3DTransfo))
{
    DrawBody(drawing, view, Flag(), WorldOf(MakeObject()), 0.3);
    DrawBody(drawing, view, Flag(), WorldOf(after));
    drawing.Text({panel.place.x + panel.width - 14, panel.Bottom() - 16},
                 std::string(quantity) + ' ' + VectorText(valueOf(MakeObject())) + " \u2192 " +
                     VectorText(valueOf(after)),
                 Label(clip::Anchor::End));
}

void DrawTranslation(clip::Drawing & drawing, Panel const & panel, Space const & space)
{
    constexpr std::array<std::string_view, 3> k_Remarks = {"along X of the object itself", "along X of the parent",
                                                           "along X of a rotation given: the world's"};
    DrawPanel(drawing, panel, "AddTranslation((1, 0, 0), " + std::string(space.name) + ')',
              k_Remarks[static_cast<std::size_t>(space.space)]);
    SpaceView const view = DrawParent(drawing, panel, 0, 0);
    C3DRotation reference = MakeReference();
    C3DTransfo after = MakeObject();
    after.AddTranslation({1, 0, 0}, space.space, &reference);
    DrawBeforeAndAfter(drawing, panel, view, after, "translation", TranslationOf);
    Matrix const from = WorldOf(MakeObject());
    Matrix const to = WorldOf(after);
    DrawArrow(drawing, view.PlaceOf(Vector().Mul(Vector(0, 0, 0), from)),
              view.PlaceOf(Vector().Mul(Vector(0, 0, 0), to)), {std::string(k_MoveColor), 2.4});
}

void DrawRotation(clip::Drawing & drawing, Panel const & panel, Space const & space)
{
    constexpr std::array<std::string_view, 3> k_Remarks = {"about Y of the object itself", "about Y of the parent",
                                                           "about Y of a rotation given: the world's"};
    DrawPanel(drawing, panel, "AddRotation(Y 90\u00b0, " + std::string(space.name) + ')',
              k_Remarks[static_cast<std::size_t>(space.space)]);
    SpaceView const view = DrawParent(drawing, panel, 25 * k_Degree, 20 * k_Degree);
    C3DRotation reference = MakeReference();
    C3DRotation turn(E3D_AXIS_Y, 90 * k_Degree);
    C3DTransfo after = MakeObject();
    after.AddRotation(turn, space.space, &reference, E3DTRANSFOSPACE_LOCAL, nullptr, true);
    Vector axis;
    AxesOf(space.space).RotateVct(Vector(0, 1, 0), axis);
    DrawTurnAxis(drawing, view, Vector().Mul(Vector(0, 0, 0), WorldOf(after)), DirectionInWorld(axis), 1.75,
                 k_MoveColor);
    DrawBeforeAndAfter(drawing, panel, view, after, "row 0", FirstRowOf);
}

void DrawPivot(clip::Drawing & drawing, Panel const & panel, Space const & pivotSpace)
{
    constexpr std::array<std::string_view, 3> k_Remarks = {"no pivot: about its own origin",
                                                           "about the parent's origin",
                                                           "about a point given in the parent: (2, 0.4, 0)"};
    DrawPanel(drawing, panel, "AddRotation(Z 60\u00b0), pivot " + std::string(pivotSpace.name),
              k_Remarks[static_cast<std::size_t>(pivotSpace.space)]);
    SpaceView const view = DrawParent(drawing, panel, 0, 0);
    C3DRotation turn(E3D_AXIS_Z, 60 * k_Degree);
    Vector const pivot(2, 0.4, 0);
    C3DTransfo after = MakeObject();
    after.AddRotation(turn, E3DTRANSFOSPACE_PARENT, nullptr, pivotSpace.space, &pivot, true);
    std::array<Vector, 3> const centers = {TranslationOf(MakeObject()), Vector(0, 0, 0), pivot};
    Vector const center = DirectionInWorld(centers[static_cast<std::size_t>(pivotSpace.space)]);
    for (C3DTransfo const & stage : {MakeObject(), after})
    {
        drawing.Line(view.PlaceOf(center), view.PlaceOf(Vector().Mul(Vector(0, 0, 0), WorldOf(stage))),
                     {std::string(k_MoveColor), 1.4, 1, "4 3"});
    }
    DrawBeforeAndAfter(drawing, panel, view, after, "translation", TranslationOf);
    drawing.Circle(view.PlaceOf(center), 5, {std::string(k_MoveColor)});
}

} // namespace

clip::Drawing DrawEditSpaces()
{
    constexpr std::array<void (*)(clip::Drawing &, Panel const &, Space const &), 3> k_Rows = {DrawTranslation,
                                                                                               DrawRotation, DrawPivot};
    clip::Drawing drawing =
        StartPage(k_FirstPanelTop + 3 * (k_PanelHeight + clip::k_PanelGap) - clip::k_PanelGap + clip::k_Margin,
                  "The spaces of an edit",
                  "faint: before; the parent is turned by 20\u00b0 and scaled by 1.3; numbers are in the parent");
    for (int row = 0; row < 3; ++row)
    {
        double const top = k_FirstPanelTop + row * (k_PanelHeight + clip::k_PanelGap);
        for (int column = 0; column < 3; ++column)
        {
            k_Rows[static_cast<std::size_t>(row)](drawing, PlacePanel(column, 3, top, k_PanelHeight),
                                                  k_Spaces[static_cast<std::size_t>(column)]);
        }
    }
    return drawing;
}

} // namespace figures
