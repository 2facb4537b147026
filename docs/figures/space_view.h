#pragma once

#include "clip/drawing.h"

#include "math/bounding_box.h"
#include "math/rotation_matrix.h"
#include "math/transformation_matrix.h"
#include "math/vector3.h"

#include <string_view>
#include <vector>

namespace figures
{

/// A look into space, without perspective: right-handed, Y up.
class SpaceView
{
public:
    /// \param origin where the origin of space lies on the page
    /// \param unit pixels
    /// \param turn,tilt how far the eye stands to the right of the Z axis, and above the ground, in radians; with 0 and
    /// 0 it looks along Z, X to the right
    SpaceView(clip::Point origin, double unit, double turn, double tilt);

    clip::Point PlaceOf(C3DVector3Tpl<double> const & position) const;
    /// The greater, the nearer to the eye.
    double NearnessOf(C3DVector3Tpl<double> const & position) const;

private:
    clip::Point m_Origin;
    double m_Unit;
    C3DRotMatTpl<double> m_ToEye;
};

/// A box of one colour; a body is made of some.
struct Part
{
    C3DBBox box;
    std::string_view color;
};
using Body = std::vector<Part>;

/// A flag: its pole along Y, its cloth towards X, its foot towards Z, each in the colour of the axis. No rotation and
/// no mirror takes it into itself.
Body const & Flag();

/// Where the upper outer corner of the cloth is, in the flag's own space.
C3DVector3Tpl<double> FlagTip();

/// A body as a transformation leaves it, mirrored ones too.
/// \param strength 1 for the body itself, less for one that was or will be
void DrawBody(clip::Drawing & drawing, SpaceView const & view, Body const & body, C3DXfoMatTpl<double> const & xfo,
              double strength = 1);

/// The axis through a point, and the sense in which a positive angle turns about it.
void DrawTurnAxis(clip::Drawing & drawing, SpaceView const & view, C3DVector3Tpl<double> const & point,
                  C3DVector3Tpl<double> const & axis, double length, std::string_view color);

/// The three axes of a space as thin lines, each as long as `length` times the row of the matrix.
void DrawAxes(clip::Drawing & drawing, SpaceView const & view, C3DXfoMatTpl<double> const & space, double length);

} // namespace figures
