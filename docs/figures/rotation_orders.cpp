#include "clip/page_style.h"
#include "figures/figures.h"
#include "figures/page.h"
#include "figures/space_view.h"

#include "math/rotation.h"
#include "math/transformation_matrix.h"

#include <array>
#include <string>

namespace figures
{

namespace
{

using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;

constexpr double k_PanelHeight = 254;
constexpr double k_Unit = 58;
constexpr double k_AxisLength = 1.5;
constexpr double k_FirstStep = 88; ///< from the left edge of a panel to the first body
constexpr double k_StepDistance = 140;
constexpr double k_EyeTurn = 28 * k_Degree;
constexpr double k_EyeTilt = 22 * k_Degree;

struct Order
{
    tagE3DROTORDER order;
    std::array<tagE3DAXISTYPE, 3> axes; ///< in the sequence in which they act
};

constexpr std::array<Order, 6> k_Orders = {{{E3DROTORDER_XYZ, {E3D_AXIS_X, E3D_AXIS_Y, E3D_AXIS_Z}},
                                            {E3DROTORDER_XZY, {E3D_AXIS_X, E3D_AXIS_Z, E3D_AXIS_Y}},
                                            {E3DROTORDER_YXZ, {E3D_AXIS_Y, E3D_AXIS_X, E3D_AXIS_Z}},
                                            {E3DROTORDER_YZX, {E3D_AXIS_Y, E3D_AXIS_Z, E3D_AXIS_X}},
                                            {E3DROTORDER_ZXY, {E3D_AXIS_Z, E3D_AXIS_X, E3D_AXIS_Y}},
                                            {E3DROTORDER_ZYX, {E3D_AXIS_Z, E3D_AXIS_Y, E3D_AXIS_X}}}};

Vector Angles()
{
    return {50 * k_Degree, 60 * k_Degree, 40 * k_Degree};
}

std::string NameOf(Order const & order)
{
    std::string name;
    for (tagE3DAXISTYPE const axis : order.axes)
    {
        name += AxisName(axis);
    }
    return name;
}

/// What the triple makes in an order, with the angles of all but the first `count` axes left out.
Matrix TurnPartly(Order const & order, std::size_t count)
{
    Vector const all = Angles();
    Vector angles(0, 0, 0);
    for (std::size_t i = 0; i < count; ++i)
    {
        auto const axis = static_cast<unsigned long>(order.axes[i]);
        angles[axis] = all[axis];
    }
    Matrix matrix;
    matrix.Set(*C3DRotation(angles, order.order).GetMatrix());
    return matrix;
}

void DrawOrder(clip::Drawing & drawing, Panel const & panel, Order const & order)
{
    std::string const name = NameOf(order);
    std::string factors;
    for (tagE3DAXISTYPE const axis : order.axes)
    {
        factors += (factors.empty() ? "R(" : " R(") + std::string(AxisName(axis)) + ')';
    }
    DrawPanel(drawing, panel, "E3DROTORDER_" + name, "p " + factors);
    for (std::size_t step = 0; step <= order.axes.size(); ++step)
    {
        double const x = panel.place.x + k_FirstStep + static_cast<double>(step) * k_StepDistance;
        SpaceView const view({x, panel.Bottom() - 92}, k_Unit, k_EyeTurn, k_EyeTilt);
        Vector const origin(0, 0, 0);
        for (tagE3DAXISTYPE const axis : {E3D_AXIS_X, E3D_AXIS_Y, E3D_AXIS_Z})
        {
            drawing.Line(view.PlaceOf(origin), view.PlaceOf(Vector(axis, k_AxisLength)),
                         {std::string(clip::k_RuleColor), 1});
        }
        clip::Point const label{x, panel.Bottom() - 20};
        if (step == 0)
        {
            drawing.Text(label, "at first", QuietLabel(clip::Anchor::Middle));
        }
        else
        {
            tagE3DAXISTYPE const axis = order.axes[step - 1];
            DrawTurnAxis(drawing, view, origin, Vector(axis, 1.0), k_AxisLength, AxisColor(axis));
            drawing.Text(label,
                         (step == 1 ? "" : "then ") + std::string(AxisName(axis)) + ' ' +
                             AngleText(Angles()[static_cast<unsigned long>(axis)]),
                         BoldLabel(clip::Anchor::Middle, AxisColor(axis)));
        }
        DrawBody(drawing, view, Flag(), TurnPartly(order, step));
    }
    Vector const tip = Vector().Mul(FlagTip(), TurnPartly(order, order.axes.size()));
    drawing.Text({panel.place.x + panel.width - 14, panel.place.y + 25},
                 "cloth's corner: " + VectorText(FlagTip()) + " \u2192 " + VectorText(tip),
                 QuietLabel(clip::Anchor::End));
}

} // namespace

clip::Drawing DrawRotationOrders()
{
    constexpr int k_Columns = 2;
    constexpr int k_Rows = static_cast<int>(k_Orders.size()) / k_Columns;
    Vector const angles = Angles();
    clip::Drawing drawing =
        StartPage(k_FirstPanelTop + k_Rows * (k_PanelHeight + clip::k_PanelGap) - clip::k_PanelGap + clip::k_Margin,
                  "The six orders of rotation",
                  "in each, X " + AngleText(angles.X) + ", Y " + AngleText(angles.Y) + ", Z " + AngleText(angles.Z) +
                      "; the first axis of the name acts first, about axes that stay");
    for (int i = 0; i < static_cast<int>(k_Orders.size()); ++i)
    {
        int const row = i / k_Columns;
        double const top = k_FirstPanelTop + row * (k_PanelHeight + clip::k_PanelGap);
        DrawOrder(drawing, PlacePanel(i % k_Columns, k_Columns, top, k_PanelHeight),
                  k_Orders[static_cast<std::size_t>(i)]);
    }
    return drawing;
}

} // namespace figures
