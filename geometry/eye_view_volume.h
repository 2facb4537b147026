#pragma once

#include "geometry/view_limits.h"
#include "math/transformation_matrix.h"
#include "math/vector3.h"
#include "math/view_volume.h"

namespace math::detail
{

/// A view volume for boxes that are taken into view space.
///
/// The sides of a perspective volume are planes through the apex. Their coefficients make the dot product with a point
/// negative outside, and need no division by depth, so that points behind the camera are no exception.
struct EyeViewVolume
{
    double left;
    double right;
    double bottom;
    double top;
    double minusNear;
    double minusFar;
    double bottomMinusTop;
    double leftMinusRight;
    double leftSide[3];
    double rightSide[3];
    double topSide[3];
    double bottomSide[3];
    C3DXfoMatTpl<double> worldToView;
    int orthographic;

    /// With a singular matrix `worldToView` stays.
    void Set(ViewLimits const & limits, C3DXfoMatTpl<double> const & viewToWorld, int isOrthographic);

    tagE3DVIEWINTERSECTION Classify(C3DVector3Tpl<double> const * box, C3DXfoMatTpl<double> const * boxToWorld) const;
};

} // namespace math::detail
