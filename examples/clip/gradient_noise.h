#pragma once

#include "math/perlin_noise.h"
#include "math/vector3.h"

namespace clip
{

/// Gradient noise in space: smooth, 0 at the points whose coordinates are whole, and hardly beyond 1 in size. Its
/// gradients are those of C3DPerlinNoise. (K. Perlin, "Improving noise", SIGGRAPH 2002.)
class GradientNoise
{
public:
    /// \param seed of which the low 32 bits count
    explicit GradientNoise(unsigned long seed) : m_Noise(seed) {}
    GradientNoise(GradientNoise const &) = delete;
    GradientNoise & operator=(GradientNoise const &) = delete;
    ~GradientNoise() { m_Noise.Dispose(); }

    /// The values repeat at this distance along each axis.
    static constexpr int k_Period = 256;

    /// No value is larger in size. The middle of a cell whose gradients all point there has 1; a little more is reached
    /// beside it.
    static constexpr double k_Bound = 1.05;

    /// \param x,y,z below 2^53 in size
    double At(double x, double y, double z) const;

    /// The gradient at a point of the lattice: one of the twelve rows of `C3DPerlinNoise::grad3`.
    C3DVector3Tpl<double> Gradient(long long i, long long j, long long k) const;

    C3DPerlinNoise const & Source() const { return m_Noise; }

private:
    C3DPerlinNoise m_Noise;
};

} // namespace clip
