#pragma once

#include "geometry/view_limits.h"
#include "math/transformation_matrix.h"
#include "math/vector3.h"
#include "math/view_volume.h"

namespace math::detail
{

/// A line of a plane or a plane in space, normal . p + offset = 0, with the normal pointing out of a convex shape; and
/// for each component of the normal 1 where it is negative, else 0, which tells without a branch what corner of a box
/// lies farthest along it.
template <int Dimension>
struct BoundingHyperplane
{
    double normal[Dimension];
    double offset;
    int isNegative[Dimension];
};

/// A view volume for boxes along the axes of world space.
///
/// By the separating-axis theorem a box and a convex polyhedron are apart if they are so along an axis, a face normal,
/// or the cross product of an edge of each; the edges of a box lie along the axes, and such a product is the normal of
/// an edge of the polyhedron's projection along that axis. Only edges of the silhouette matter:
/// N. Greene, "Detecting intersection of a rectangular solid and a convex polyhedron", Graphics Gems IV (1994).
struct WorldViewVolume
{
    static constexpr int k_PlaneCount = 6;
    static constexpr int k_EdgeCount = 12;

    C3DVector3Tpl<double> minimum;
    C3DVector3Tpl<double> maximum;
    /// The axes, 1 for X, 2 for Y, 4 for Z, along which the silhouette consists of planes seen edge-on and of edges
    /// along the other axes, and adds nothing to planes and bounds.
    int alignedAxes;
    BoundingHyperplane<3> planes[k_PlaneCount];
    /// The silhouette along each axis.
    BoundingHyperplane<2> lines[3][k_EdgeCount];
    int lineCounts[3];

    void Set(ViewLimits const & limits, C3DXfoMatTpl<double> const & viewToWorld, int orthographic);

    tagE3DVIEWINTERSECTION Classify(C3DVector3Tpl<double> const * box, C3DXfoMatTpl<double> const * boxToWorld) const;
};

} // namespace math::detail
