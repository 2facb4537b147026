#pragma once

#include "clip/gradient_noise.h"
#include "cull/camera.h"
#include "math/vector3.h"

#include <cstddef>
#include <memory>
#include <optional>

namespace cull
{

/// The movement of a camera that is held by hand.
struct Shake
{
    double amplitude;       ///< how far the camera moves at most along each of its axes, above 0
    unsigned long seed = 1; ///< of which the low 32 bits count; the same seed gives the same movement
};

/// How a camera differs from where it was placed, along and about its own axes.
struct Sway
{
    C3DVector3Tpl<double> shift{0, 0, 0};
    C3DVector3Tpl<double> turn{0, 0, 0}; ///< radians, right-handed; the turn about X acts first
};

/// A camera over time: still, or held by hand.
class CameraMotion
{
public:
    /// A still camera.
    CameraMotion(Camera const & camera) : m_Camera(camera) {} // NOLINT(google-explicit-constructor)

    /// Held by hand, the camera sways slowly and trembles a little. It turns about each axis by no more than the angle
    /// under which the amplitude appears at the distance of what it looks at, or five degrees.
    /// \param frameTime seconds
    CameraMotion(Camera const & camera, std::optional<Shake> const & shake, double frameTime);

    bool IsStill() const { return m_Noise == nullptr; }
    /// Where the camera was placed.
    Camera const & Rest() const { return m_Camera; }

    Sway SwayAt(std::size_t frame) const;
    Camera At(std::size_t frame) const;

private:
    Camera m_Camera;
    std::shared_ptr<clip::GradientNoise const> m_Noise; ///< none for a still camera
    double m_FrameTime = 0;
    double m_Shift = 0;
    double m_Turn = 0;
};

} // namespace cull
