#include "cull/camera_motion.h"

#include "math/rotation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace cull
{

namespace
{

using Vector = C3DVector3Tpl<double>;

constexpr double k_MostTurn = 5 * std::numbers::pi / 180;

/// A part of the movement: how many cells of the noise pass in a second, and how much of the whole it is.
struct Part
{
    double rate;
    double share;
};

/// The sway of the body, the correction of the arms, the tremor of the hands.
constexpr std::array<Part, 3> k_Parts = {{{0.7, 0.68}, {2.3, 0.24}, {7.9, 0.08}}};

/// So far apart that neighbouring rows of the noise have no lattice point in common.
constexpr double k_RowDistance = 3;

/// One component of the movement, from -1 to 1.
double ComputeComponent(clip::GradientNoise const & noise, int row, double time)
{
    double sum = 0;
    for (std::size_t i = 0; i < k_Parts.size(); ++i)
    {
        // In the middle between the lattice points of a row: at a lattice point the noise is always 0.
        double const y = k_RowDistance * row + 0.5;
        double const z = k_RowDistance * static_cast<double>(i) + 0.5;
        sum += k_Parts[i].share * noise.At(std::fmod(time * k_Parts[i].rate, clip::GradientNoise::k_Period), y, z);
    }
    return sum / clip::GradientNoise::k_Bound;
}

} // namespace

CameraMotion::CameraMotion(Camera const & camera, std::optional<Shake> const & shake, double frameTime)
    : m_Camera(camera), m_FrameTime(frameTime)
{
    if (shake)
    {
        m_Noise = std::make_shared<clip::GradientNoise const>(shake->seed);
        m_Shift = shake->amplitude;
        m_Turn = std::min(std::atan2(shake->amplitude, GetDistance(camera.eye, camera.look)), k_MostTurn);
    }
}

Sway CameraMotion::SwayAt(std::size_t frame) const
{
    Sway sway;
    if (IsStill())
    {
        return sway;
    }
    double const time = static_cast<double>(frame) * m_FrameTime;
    for (int axis = 0; axis < 3; ++axis)
    {
        sway.shift.Set(axis, m_Shift * ComputeComponent(*m_Noise, axis, time));
        sway.turn.Set(axis, m_Turn * ComputeComponent(*m_Noise, 3 + axis, time));
    }
    return sway;
}

Camera CameraMotion::At(std::size_t frame) const
{
    if (IsStill())
    {
        return m_Camera;
    }
    Sway const sway = SwayAt(frame);
    C3DRotation turn(sway.turn, E3DROTORDER_XYZ);
    C3DXfoMatTpl<double> held;
    held.SetIdentity().SetRotation(*turn.GetMatrix()).SetTranslation(sway.shift);
    Camera camera = m_Camera;
    camera.matrix.Mul(held, m_Camera.matrix);
    camera.matrix.GetTranslation(camera.eye);
    double const distance = GetDistance(m_Camera.eye, m_Camera.look);
    camera.look.Mul(Vector(0, 0, -distance), camera.matrix);
    return camera;
}

} // namespace cull
