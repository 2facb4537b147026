#pragma once

#include "clip/program.h"
#include "clip/skeleton.h"
#include "math/transformation_matrix.h"
#include "math/vector3.h"
#include "math/view_volume.h"

#include <array>
#include <numbers>
#include <optional>

namespace cull
{

/// What is asked of a camera. What is left open is chosen so that the camera sees what it is placed for.
struct CameraRequest
{
    std::optional<C3DVector3Tpl<double>> eye;
    std::optional<C3DVector3Tpl<double>> look;
    std::optional<double> fieldOfView; ///< radians, from left to right
    std::optional<double> orthographicWidth;
    double aspect = 1.5; ///< width over height
    std::optional<double> nearDistance;
    std::optional<double> farDistance;
};

/// A camera looks along -Z of its own space, with X to the right and Y up.
struct Camera
{
    C3DVector3Tpl<double> eye;
    C3DVector3Tpl<double> look;
    C3DXfoMatTpl<double> matrix; ///< from its space to world space: a rotation and a translation
    bool isOrthographic;
    double fieldOfView; ///< radians, from left to right; 0 where it is orthographic
    double width;       ///< of what it sees at the near distance
    double height;
    double nearDistance;
    double farDistance;
};

/// The angle of view where none is asked for.
inline constexpr double k_DefaultFieldOfView = 40 * std::numbers::pi / 180;

/// A request that no camera can meet; `what()` says why.
class CameraError : public clip::RequestError
{
public:
    using clip::RequestError::RequestError;
};

/// Places a camera. Left open, it looks at the middle of the subject, from the front, the left and a little above, just
/// so far away that the sphere around the subject fits into its picture; near and far are where that sphere begins and
/// ends along its direction. The world's Y points up in its picture; where it looks straight down, -Z does, and
/// straight up, Z.
/// \param subject the bounds of what it is placed for
/// \throws CameraError where eye and look are within 1e-9 of each other, or near and far are too close to be told apart
Camera PlaceCamera(CameraRequest const & request, clip::Bounds const & subject);

/// Makes the volume that of the camera, in the volume's own strategy.
void SetVolume(C3DViewVolume & volume, Camera const & camera);

/// The corners of what the camera sees, in world space: left before right, then bottom before top, then near before
/// far.
std::array<C3DVector3Tpl<double>, 8> ComputeCorners(Camera const & camera);

} // namespace cull
