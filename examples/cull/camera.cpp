#include "cull/camera.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace cull
{

namespace
{

using Vector = C3DVector3Tpl<double>;

constexpr double k_LeastLookDistance = 1e-9;
constexpr double k_LeastSlope = 1e-9; ///< of a direction that is not straight up or down
constexpr double k_LeastDepth = 1e-3; ///< the nearest that is seen by default, of the size of the subject
constexpr double k_NearShare = 0.01;  ///< of a far distance that leaves no room for the default

/// The sphere around bounds. A subject without extent has one of radius 1.
struct Sphere
{
    Vector center;
    double radius;
};

Sphere EncloseBounds(clip::Bounds const & bounds)
{
    Vector center;
    center.Add(bounds.smallest, bounds.largest).Mul(0.5);
    double const radius = GetDistance(bounds.smallest, bounds.largest) / 2;
    return {center, radius > 0 ? radius : 1};
}

Vector UnitDirection(Vector const & from, Vector const & to)
{
    Vector way;
    way.Sub(to, from);
    double const length = way.GetLength();
    if (!(length >= k_LeastLookDistance))
    {
        throw CameraError("the camera stands at the very place at which it is to look");
    }
    return way.Div(way, length);
}

/// How far from a sphere's middle a camera has to stand so that the sphere fits into its picture.
double ViewingDistance(CameraRequest const & request, double radius)
{
    if (request.orthographicWidth)
    {
        return 2 * radius;
    }
    double const across = std::tan(request.fieldOfView.value_or(k_DefaultFieldOfView) / 2);
    double const halfAngle = std::atan(std::min(across, across / request.aspect));
    return radius / std::sin(halfAngle);
}

/// The matrix whose rows are the camera's axes and place.
C3DXfoMatTpl<double> OrientCamera(Vector const & eye, Vector const & direction)
{
    bool const isUpright = std::hypot(direction.X, direction.Z) >= k_LeastSlope;
    Vector const worldUp = isUpright ? Vector(0, 1, 0) : Vector(0, 0, direction.Y);
    Vector right;
    right.SetCross(direction, worldUp).Normalize();
    Vector up;
    up.SetCross(right, direction);
    return {right.X,      right.Y,      right.Z,      0, up.X,  up.Y,  up.Z,  0,
            -direction.X, -direction.Y, -direction.Z, 0, eye.X, eye.Y, eye.Z, 1};
}

void ChooseDistances(Camera & camera, CameraRequest const & request, Sphere const & subject, Vector const & direction)
{
    Vector way;
    way.Sub(subject.center, camera.eye);
    double const depth = way.X * direction.X + way.Y * direction.Y + way.Z * direction.Z;
    double const nearest = std::max(depth - subject.radius, k_LeastDepth * subject.radius);
    double const farthest = depth + subject.radius;
    camera.nearDistance = request.nearDistance.value_or(nearest);
    camera.farDistance = request.farDistance.value_or(farthest);
    if (!(camera.nearDistance < camera.farDistance))
    {
        // The subject lies behind the camera, or all on one side of the distance that was given.
        if (!request.farDistance)
        {
            camera.farDistance = camera.nearDistance + 2 * subject.radius;
        }
        else if (!request.nearDistance)
        {
            camera.nearDistance = k_NearShare * camera.farDistance;
        }
    }
    if (!(camera.nearDistance < camera.farDistance))
    {
        throw CameraError("the camera sees nothing between its near and its far distance");
    }
}

} // namespace

Camera PlaceCamera(CameraRequest const & request, clip::Bounds const & subject)
{
    Sphere const sphere = EncloseBounds(subject);
    Camera camera;
    camera.look = request.look.value_or(sphere.center);
    Vector aside(0.55, 0.4, 1);
    aside.SetLength(ViewingDistance(request, sphere.radius));
    camera.eye = request.eye.value_or(Vector().Add(camera.look, aside));
    Vector const direction = UnitDirection(camera.eye, camera.look);
    camera.matrix = OrientCamera(camera.eye, direction);
    ChooseDistances(camera, request, sphere, direction);
    camera.isOrthographic = request.orthographicWidth.has_value();
    camera.fieldOfView = camera.isOrthographic ? 0 : request.fieldOfView.value_or(k_DefaultFieldOfView);
    camera.width = request.orthographicWidth.value_or(2 * std::tan(camera.fieldOfView / 2) * camera.nearDistance);
    camera.height = camera.width / request.aspect;
    return camera;
}

void SetVolume(C3DViewVolume & volume, Camera const & camera)
{
    if (camera.isOrthographic)
    {
        volume.SetOrtho(-camera.width / 2, camera.width / 2, -camera.height / 2, camera.height / 2, camera.nearDistance,
                        camera.farDistance, camera.matrix);
    }
    else
    {
        volume.SetPersp(camera.fieldOfView, camera.width / camera.height, camera.nearDistance, camera.farDistance,
                        camera.matrix);
    }
}

std::array<Vector, 8> ComputeCorners(Camera const & camera)
{
    double const widening = camera.isOrthographic ? 1 : camera.farDistance / camera.nearDistance;
    std::array<Vector, 8> corners;
    for (std::size_t i = 0; i < corners.size(); ++i)
    {
        bool const isFar = (i & 4U) != 0;
        double const scale = isFar ? widening : 1;
        Vector const corner((i & 1U) != 0 ? scale * camera.width / 2 : -scale * camera.width / 2,
                            (i & 2U) != 0 ? scale * camera.height / 2 : -scale * camera.height / 2,
                            isFar ? -camera.farDistance : -camera.nearDistance);
        corners[i].Mul(corner, camera.matrix);
    }
    return corners;
}

} // namespace cull
