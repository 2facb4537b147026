#include "figures/space_view.h"

#include "figures/page.h"

#include "math/rotation.h"
#include "math/vector_geometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <string>

namespace figures
{

namespace
{

using Vector = C3DVector3Tpl<double>;

constexpr std::array<tagE3DAXISTYPE, 3> k_Axes = {E3D_AXIS_X, E3D_AXIS_Y, E3D_AXIS_Z};

/// A side of a box that is turned to the eye.
struct Facet
{
    std::array<clip::Point, 4> outline;
    std::string_view color;
    double shade; ///< 0 in full light
    double nearness;
};

/// Of the light, from above and a little from the right.
double ShadeOf(Vector const & normal)
{
    Vector const light(0.3, 0.7, 0.75);
    return 0.35 * (1 - std::max(0.0, GetVctsCosAngle(normal, light)));
}

void AddFacets(std::vector<Facet> & facets, SpaceView const & view, Part const & part, C3DXfoMatTpl<double> const & xfo)
{
    std::array<Vector, 8> corners;
    part.box.GetCorners(corners.data());
    Vector middle(0, 0, 0);
    for (Vector & corner : corners)
    {
        corner.Mul(corner, xfo);
        middle.Add(Vector().Mul(corner, 0.125));
    }
    for (S3DBBoxFaceInfo const & face : C3DBBox::m_FaceInfo)
    {
        std::array<Vector, 4> const ring = {
            corners[static_cast<std::size_t>(face.corner1)], corners[static_cast<std::size_t>(face.corner2)],
            corners[static_cast<std::size_t>(face.corner3)], corners[static_cast<std::size_t>(face.corner4)]};
        Vector center(0, 0, 0);
        for (Vector const & corner : ring)
        {
            center.Add(Vector().Mul(corner, 0.25));
        }
        // A mirror turns the order of the corners round: the outside is the side that looks away from the middle.
        Vector normal = Vector().SetCross(ring[0], ring[1], ring[2]);
        if (GetVctsCosAngle(normal, Vector().Sub(center, middle)) < 0)
        {
            normal.Negate();
        }
        if (view.NearnessOf(normal) > 1e-9)
        {
            Facet facet{{}, part.color, ShadeOf(normal), view.NearnessOf(center)};
            std::transform(ring.begin(), ring.end(), facet.outline.begin(),
                           [&view](Vector const & corner) { return view.PlaceOf(corner); });
            facets.push_back(facet);
        }
    }
}

} // namespace

SpaceView::SpaceView(clip::Point origin, double unit, double turn, double tilt) : m_Origin(origin), m_Unit(unit)
{
    m_ToEye.Mul(C3DRotMatTpl<double>().Set(E3D_AXIS_Y, -turn), C3DRotMatTpl<double>().Set(E3D_AXIS_X, tilt));
}

clip::Point SpaceView::PlaceOf(Vector const & position) const
{
    Vector const seen = Vector().Mul(position, m_ToEye);
    return {m_Origin.x + m_Unit * seen.X, m_Origin.y - m_Unit * seen.Y};
}

double SpaceView::NearnessOf(Vector const & position) const
{
    return Vector().Mul(position, m_ToEye).Z;
}

Body const & Flag()
{
    constexpr double k_Half = 0.08; ///< of the thickness
    static Body const flag = {
        {C3DBBox(Vector(-k_Half, 0, -k_Half), Vector(k_Half, 1.2, k_Half)), AxisColor(E3D_AXIS_Y)},
        {C3DBBox(Vector(k_Half, 0.68, -k_Half), FlagTip()), AxisColor(E3D_AXIS_X)},
        {C3DBBox(Vector(-k_Half, 0, k_Half), Vector(k_Half, 2 * k_Half, 0.6)), AxisColor(E3D_AXIS_Z)}};
    return flag;
}

Vector FlagTip()
{
    return {0.9, 1.2, 0.08};
}

void DrawBody(clip::Drawing & drawing, SpaceView const & view, Body const & body, C3DXfoMatTpl<double> const & xfo,
              double strength)
{
    std::vector<Facet> facets;
    for (Part const & part : body)
    {
        AddFacets(facets, view, part, xfo);
    }
    std::stable_sort(facets.begin(), facets.end(),
                     [](Facet const & a, Facet const & b) { return a.nearness < b.nearness; });
    for (Facet const & facet : facets)
    {
        std::array<clip::Point, 5> const edge = {facet.outline[0], facet.outline[1], facet.outline[2], facet.outline[3],
                                                 facet.outline[0]};
        // White beneath, so that what is faint hides what lies behind it as the rest does.
        drawing.Polygon(facet.outline, {"#ffffff"});
        drawing.Polygon(facet.outline, {std::string(facet.color), strength});
        drawing.Polygon(facet.outline, {"#000000", strength * facet.shade});
        drawing.Polyline(edge, {"#ffffff", 0.8});
    }
}

void DrawTurnAxis(clip::Drawing & drawing, SpaceView const & view, Vector const & point, Vector const & axis,
                  double length, std::string_view color)
{
    Vector along = axis;
    along.Normalize();
    auto const at = [&](double distance) { return Vector().Mul(along, distance).Add(point); };
    drawing.Line(view.PlaceOf(at(-0.35 * length)), view.PlaceOf(at(length)), {std::string(color), 2});
    constexpr int k_StepCount = 24;
    constexpr double k_Sweep = 1.5 * std::numbers::pi;
    constexpr double k_Radius = 0.2;
    Vector side;
    Vector other;
    GetOrthogonalBasis(along, side, other);
    side.SetLength(k_Radius);
    std::vector<clip::Point> arc;
    for (int i = 0; i <= k_StepCount; ++i)
    {
        C3DRotation turn(along, k_Sweep * i / k_StepCount);
        Vector spoke;
        turn.RotateVct(side, spoke);
        arc.push_back(view.PlaceOf(spoke.Add(at(0.93 * length))));
    }
    drawing.Polyline(std::span<clip::Point const>(arc).first(arc.size() - 2), {std::string(color), 1.6});
    // The head lies along the last bit of the arc, lengthened to the least that an arrow takes.
    clip::Point const tip = arc.back();
    clip::Point const before = arc[arc.size() - 4];
    double const reach = 11.5 / std::max(1e-9, std::hypot(tip.x - before.x, tip.y - before.y));
    DrawArrow(drawing, {tip.x - reach * (tip.x - before.x), tip.y - reach * (tip.y - before.y)}, tip,
              {std::string(color), 1.6});
}

void DrawAxes(clip::Drawing & drawing, SpaceView const & view, C3DXfoMatTpl<double> const & space, double length)
{
    for (tagE3DAXISTYPE const axis : k_Axes)
    {
        DrawArrow(drawing, view.PlaceOf(Vector().Mul(Vector(0, 0, 0), space)),
                  view.PlaceOf(Vector().Mul(Vector(axis, length), space)), {std::string(AxisColor(axis)), 1.4, 0.75});
    }
}

} // namespace figures
