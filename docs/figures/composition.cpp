#include "clip/page_style.h"
#include "figures/figures.h"
#include "figures/page.h"
#include "figures/space_view.h"

#include "math/transformation.h"

#include <string>

namespace figures
{

namespace
{

using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;

constexpr double k_PanelHeight = 400;
constexpr double k_Unit = 80;

C3DTransfo MakeChild()
{
    return {{1, 1, 1}, C3DRotation(E3D_AXIS_Z, -40 * k_Degree), {1.3, 0.35, 0}};
}

/// A dot on the cloth's corner, and where that is.
void DrawTip(clip::Drawing & drawing, Panel const & panel, SpaceView const & view, Matrix const & matrix)
{
    Vector const tip = Vector().Mul(FlagTip(), matrix);
    drawing.Circle(view.PlaceOf(tip), 4.5, {std::string(clip::k_Ink)});
    drawing.Text({panel.place.x + 14, panel.Bottom() - 18}, "the corner with the dot is at " + VectorText(tip),
                 Label());
}

void DrawResult(clip::Drawing & drawing, Panel const & panel, C3DTransfo & parent, bool isByComponent)
{
    C3DTransfo child = MakeChild();
    C3DTransfo world;
    world.SetQNScalingFlag(isByComponent ? 1 : 0);
    world.Mul(child, parent, 63);
    DrawPanel(drawing, panel,
              isByComponent ? "By component: QN scaling, set at first" : "By matrix: SetQNScalingFlag(0)",
              isByComponent ? "scales multiply axis by axis" : "what the plain product of the matrices holds");
    SpaceView const view({panel.place.x + 56, panel.Bottom() - 104}, k_Unit, 0, 0);
    DrawAxes(drawing, view, *parent.GetMatrix(), 1);
    DrawBody(drawing, view, Flag(), *world.GetMatrix());
    DrawTip(drawing, panel, view, *world.GetMatrix());
    drawing.Text({panel.place.x + 14, panel.Bottom() - 40},
                 world.HasShearing() ? "HasShearing() is true" : "HasShearing() is false",
                 BoldLabel(clip::Anchor::Start, clip::k_Ink));
}

} // namespace

clip::Drawing DrawComposition()
{
    clip::Drawing drawing = StartPage(k_FirstPanelTop + k_PanelHeight + clip::k_Margin, "A child under an uneven scale",
                                      "Mul(child, parent, 63), with a parent that is scaled by (1, 2, 1)");
    Panel const given = PlacePanel(0, 3, k_FirstPanelTop, k_PanelHeight);
    DrawPanel(drawing, given, "The child in its parent", "turned by \u221240\u00b0 about Z; no scale yet");
    C3DTransfo identity;
    SpaceView const view({given.place.x + 56, given.Bottom() - 104}, k_Unit, 0, 0);
    DrawAxes(drawing, view, *identity.GetMatrix(), 1);
    DrawBody(drawing, view, Flag(), *MakeChild().GetMatrix());
    DrawTip(drawing, given, view, *MakeChild().GetMatrix());
    C3DTransfo parent({1, 2, 1}, C3DRotation(), {0, 0, 0});
    DrawResult(drawing, PlacePanel(1, 3, k_FirstPanelTop, k_PanelHeight), parent, true);
    DrawResult(drawing, PlacePanel(2, 3, k_FirstPanelTop, k_PanelHeight), parent, false);
    return drawing;
}

} // namespace figures
