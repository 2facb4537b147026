#pragma once

#include "math/perlin_noise.h"

#include <vector>

namespace math::detail
{

/// The private operations of gradient noise, under their own names, and its fields.
class NoiseInspector
{
public:
    using Noise = C3DPerlinNoise;

    static constexpr auto InitHashHash = &Noise::InitHashHash;
    static constexpr auto GenerateP = &Noise::GenerateP;
    static constexpr auto fade = &Noise::fade;
    static constexpr auto lerp = &Noise::lerp;
    static constexpr auto FastFloor = &Noise::FastFloor;
    static constexpr auto grad1D = static_cast<double (*)(int, double)>(&Noise::grad);
    static constexpr auto grad2D = static_cast<double (*)(int, double, double)>(&Noise::grad);
    static constexpr auto grad3D = static_cast<double (*)(int, double, double, double)>(&Noise::grad);
    static constexpr auto grad4D = static_cast<double (*)(int, double, double, double, double)>(&Noise::grad);
    static constexpr auto Dot2D = static_cast<double (*)(double const *, double, double)>(&Noise::Dot);
    static constexpr auto Dot3D = static_cast<double (*)(double const *, double, double, double)>(&Noise::Dot);
    static constexpr auto Dot4D = static_cast<double (*)(double const *, double, double, double, double)>(&Noise::Dot);
    static constexpr auto split = &Noise::split;
    static constexpr auto calculate3D = &Noise::calculate3D;
    static constexpr auto lerpgradt = &Noise::lerpgradt;
    static constexpr auto lerpgradxt = &Noise::lerpgradxt;
    static constexpr auto GetPTable = &Noise::GetPTable;
    static constexpr auto GetP31Table = &Noise::GetP31Table;
    static constexpr auto GetHashHashTable = &Noise::GetHashHashTable;

    static constexpr auto & grad4hashhash = Noise::grad4hashhash;
    static constexpr auto & grad4hashhashinited = Noise::grad4hashhashinited;

    static std::vector<unsigned long> const & Seeds(Noise const & noise) { return noise.m_Seeds; }
    static std::vector<int *> const & PTables(Noise const & noise) { return noise.m_PTables; }
    static std::vector<int *> const & P31Tables(Noise const & noise) { return noise.m_P31Tables; }
    static std::vector<int *> const & HashHashTables(Noise const & noise) { return noise.m_HashHashTables; }
};

} // namespace math::detail

namespace signal_test
{

using math::detail::NoiseInspector;

/// Frees the tables of an object at the end of a scope.
class TableOwner
{
public:
    explicit TableOwner(C3DPerlinNoise & noise) : m_Noise(noise) {}
    TableOwner(TableOwner const &) = delete;
    TableOwner & operator=(TableOwner const &) = delete;
    ~TableOwner() { m_Noise.Dispose(); }

private:
    C3DPerlinNoise & m_Noise;
};

} // namespace signal_test
