#include "clip/page_style.h"
#include "figures/figures.h"
#include "figures/page.h"
#include "figures/space_view.h"

#include "math/transformation.h"

#include <array>
#include <span>
#include <string>

namespace figures
{

namespace
{

using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;

constexpr double k_ProductHeight = 236;
constexpr double k_PlaneHeight = 372;
constexpr double k_CellWidth = 62;
constexpr double k_CellHeight = 30;

constexpr std::array<std::string_view, 4> k_RowColors = {AxisColor(E3D_AXIS_X), AxisColor(E3D_AXIS_Y),
                                                         AxisColor(E3D_AXIS_Z), k_MoveColor};
constexpr std::array<std::string_view, 4> k_RowMeanings = {"row 0: where axis X goes", "row 1: where axis Y goes",
                                                           "row 2: where axis Z goes", "row 3: the translation"};

Matrix MakeMatrix(double angle, Vector const & translation)
{
    C3DTransfo transformation({1, 1, 1}, C3DRotation(E3D_AXIS_Z, angle), translation);
    return *transformation.GetMatrix();
}

/// A row of numbers on a ground of one colour.
void DrawRow(clip::Drawing & drawing, clip::Point place, std::span<double const> numbers, std::string_view color)
{
    double const width = static_cast<double>(numbers.size()) * k_CellWidth;
    drawing.Rectangle(place, width, k_CellHeight - 4, {std::string(color), 0.14}, 4);
    for (std::size_t i = 0; i < numbers.size(); ++i)
    {
        drawing.Text({place.x + (static_cast<double>(i) + 0.5) * k_CellWidth, place.y + 18}, NumberText(numbers[i]),
                     {14, std::string(clip::k_Ink), clip::Anchor::Middle});
    }
}

/// The product with its numbers, the point in front of the matrix.
void DrawProduct(clip::Drawing & drawing, Panel const & panel, Vector const & p, Matrix const & m)
{
    DrawPanel(drawing, panel, "A point is a row, and goes through a matrix from the left: p M",
              "M turns by 30\u00b0 about Z, then moves by (3, 1, 0)");
    double const top = panel.place.y + 98;
    double const left = panel.place.x + 88;
    double const middle = top + 1.5 * k_CellHeight;
    clip::TextStyle const sign{20, std::string(clip::k_Ink), clip::Anchor::Middle};
    clip::TextStyle const name{16, std::string(clip::k_Ink), clip::Anchor::Middle, true};

    std::array<double, 4> const row = {p.X, p.Y, p.Z, 1};
    DrawRow(drawing, {left, middle}, row, clip::k_QuietInk);
    drawing.Text({left + 2 * k_CellWidth, top - 12}, "p", name);
    double const matrixLeft = left + 4 * k_CellWidth + 36;
    for (int r = 0; r < 4; ++r)
    {
        std::array<double, 4> const numbers = {m.Get(r, 0), m.Get(r, 1), m.Get(r, 2), m.Get(r, 3)};
        double const y = top + r * k_CellHeight;
        auto const index = static_cast<std::size_t>(r);
        DrawRow(drawing, {matrixLeft, y}, numbers, k_RowColors[index]);
        drawing.Text({matrixLeft + 4 * k_CellWidth + 14, y + 18}, k_RowMeanings[index],
                     BoldLabel(clip::Anchor::Start, k_RowColors[index]));
    }
    drawing.Text({matrixLeft + 2 * k_CellWidth, top - 12}, "M", name);
    Vector const image = Vector().Mul(p, m);
    std::array<double, 4> const result = {image.X, image.Y, image.Z, 1};
    double const resultLeft = matrixLeft + 4 * k_CellWidth + 260;
    drawing.Text({resultLeft - 28, middle + 20}, "=", sign);
    DrawRow(drawing, {resultLeft, middle}, result, clip::k_QuietInk);
    drawing.Text({resultLeft + 2 * k_CellWidth, top - 12}, "p M", name);
}

/// The plane seen along Z, with a grid of units.
SpaceView DrawPlane(clip::Drawing & drawing, Panel const & panel, double left, double low)
{
    double const unit = 62;
    double const top = panel.place.y + k_PanelHead + 8;
    double const bottom = panel.Bottom() - 16;
    SpaceView const view({panel.place.x + 18 - left * unit, bottom + low * unit}, unit, 0, 0);
    clip::Point const origin = view.PlaceOf({0, 0, 0});
    double const right = panel.place.x + panel.width - 16;
    for (int line = -1; line <= 5; ++line)
    {
        double const x = origin.x + line * unit;
        double const y = origin.y - line * unit;
        if (x > panel.place.x + 16 && x < right)
        {
            drawing.Line({x, top}, {x, bottom}, {std::string(clip::k_GridColor)});
        }
        if (y > top && y < bottom)
        {
            drawing.Line({panel.place.x + 16, y}, {right, y}, {std::string(clip::k_GridColor)});
        }
    }
    drawing.Circle(origin, 3.5, {std::string(clip::k_QuietInk)});
    return view;
}

/// The axes and where they go, each as the row of the matrix that it is.
void DrawImages(clip::Drawing & drawing, Panel const & panel, Vector const & p, Matrix const & m)
{
    DrawPanel(drawing, panel, "The rows are the images of the axes", "seen along Z; one square is one unit");
    SpaceView const view = DrawPlane(drawing, panel, -0.4, -0.4);
    Vector const origin(0, 0, 0);
    Vector const moved = Vector().Mul(origin, m);
    DrawArrow(drawing, view.PlaceOf(origin), view.PlaceOf(moved), {std::string(k_MoveColor), 2.2});
    for (tagE3DAXISTYPE const axis : {E3D_AXIS_X, E3D_AXIS_Y})
    {
        Vector const end(axis, 1.0);
        Vector const image = Vector().Mul(end, m);
        DrawArrow(drawing, view.PlaceOf(origin), view.PlaceOf(end), {std::string(AxisColor(axis)), 2.2, 0.45});
        DrawArrow(drawing, view.PlaceOf(moved), view.PlaceOf(image), {std::string(AxisColor(axis)), 2.6});
        clip::Point const place = view.PlaceOf(image);
        drawing.Text(axis == E3D_AXIS_X ? clip::Point{place.x + 6, place.y + 14} : clip::Point{place.x - 8, place.y},
                     axis == E3D_AXIS_X ? "row 0" : "row 1",
                     BoldLabel(axis == E3D_AXIS_X ? clip::Anchor::Start : clip::Anchor::End, AxisColor(axis)));
    }
    clip::Point const halfWay = view.PlaceOf(Vector().Mul(moved, 0.5));
    drawing.Text({halfWay.x - 6, halfWay.y - 10}, "row 3", BoldLabel(clip::Anchor::Middle, k_MoveColor));
    for (bool const isImage : {false, true})
    {
        // So far along X, so far along Y: the same way along the images of the axes.
        Matrix const map = isImage ? m : Matrix();
        std::array<clip::Point, 3> const way = {view.PlaceOf(Vector().Mul(origin, map)),
                                                view.PlaceOf(Vector().Mul(Vector(p.X, 0, 0), map)),
                                                view.PlaceOf(Vector().Mul(p, map))};
        drawing.Polyline(way, {std::string(clip::k_QuietInk), 1.2, 1, "3 4"});
        clip::Point const place = way.back();
        drawing.Circle(place, 5, {std::string(clip::k_Ink)});
        drawing.Text({place.x + 10, place.y + (isImage ? -6 : 5)}, isImage ? "p M" : "p",
                     BoldLabel(clip::Anchor::Start, clip::k_Ink));
    }
}

/// A body through a product of two factors, one after the other.
void DrawSequence(clip::Drawing & drawing, Panel const & panel, std::string_view title, std::string_view remark,
                  Matrix const & first, Matrix const & second)
{
    Matrix const product = Matrix().Mul(first, second);
    DrawPanel(drawing, panel, title,
              std::string(remark) + "; row 3: " + VectorText(Vector().Mul(Vector(0, 0, 0), product)));
    SpaceView const view = DrawPlane(drawing, panel, -1.35, -0.4);
    DrawBody(drawing, view, Flag(), Matrix(), 0.25);
    DrawBody(drawing, view, Flag(), first, 0.5);
    DrawBody(drawing, view, Flag(), product);
    int step = 0;
    for (Matrix const & stage : {Matrix(), first, product})
    {
        clip::Point const above = view.PlaceOf(Vector().Mul(Vector(0.45, 1.42, 0), stage));
        drawing.Text({above.x, above.y + 5}, std::to_string(step), BoldLabel(clip::Anchor::Middle, clip::k_Ink));
        ++step;
    }
}

} // namespace

clip::Drawing DrawRowVectors()
{
    double const planeTop = k_FirstPanelTop + k_ProductHeight + clip::k_PanelGap;
    clip::Drawing drawing =
        StartPage(planeTop + k_PlaneHeight + clip::k_Margin, "Row vectors", "the left factor acts first");
    Matrix const m = MakeMatrix(30 * k_Degree, {3, 1, 0});
    Vector const p(2, 1, 0);
    DrawProduct(drawing, PlacePanel(0, 1, k_FirstPanelTop, k_ProductHeight), p, m);
    DrawImages(drawing, PlacePanel(0, 3, planeTop, k_PlaneHeight), p, m);
    Matrix const turn = MakeMatrix(60 * k_Degree, {0, 0, 0});
    Matrix const move = MakeMatrix(0, {3, 0, 0});
    DrawSequence(drawing, PlacePanel(1, 3, planeTop, k_PlaneHeight), "Mul(turn, move): 1 turn, 2 move",
                 "60\u00b0 about Z, then (3, 0, 0)", turn, move);
    DrawSequence(drawing, PlacePanel(2, 3, planeTop, k_PlaneHeight), "Mul(move, turn): 1 move, 2 turn",
                 "(3, 0, 0), then 60\u00b0 about Z", move, turn);
    return drawing;
}

} // namespace figures
