// Three-component vectors: cross product and normalisation over an array that stays in the first-level cache.
// Results are per vector (items_per_second).

#include "math/vector3.h"
#include "random_values.h"
#include "run_over_array.h"

#include <Eigen/Dense>
#include <Eigen/Geometry>
#include <benchmark/benchmark.h>
#include <glm/geometric.hpp>
#include <glm/vec3.hpp>

namespace
{

constexpr std::size_t k_Count = 256;

template <typename T>
struct Ours
{
    using Vector = C3DVector3Tpl<T>;
    static Vector Make(T const * v) { return Vector(v[0], v[1], v[2]); }
    static void Cross(Vector & out, Vector const & a, Vector const & b) { out.SetCross(a, b); }
    static void Normalize(Vector & out, Vector const & a)
    {
        out = a;
        out.Normalize();
    }
};

template <typename T>
struct WithEigen
{
    using Vector = Eigen::Matrix<T, 3, 1>;
    static Vector Make(T const * v) { return Vector(v[0], v[1], v[2]); }
    static void Cross(Vector & out, Vector const & a, Vector const & b) { out = a.cross(b); }
    static void Normalize(Vector & out, Vector const & a) { out = a.normalized(); }
};

template <typename T>
struct WithGlm
{
    using Vector = glm::vec<3, T>;
    static Vector Make(T const * v) { return Vector(v[0], v[1], v[2]); }
    static void Cross(Vector & out, Vector const & a, Vector const & b) { out = glm::cross(a, b); }
    static void Normalize(Vector & out, Vector const & a) { out = glm::normalize(a); }
};

template <typename Peer, typename T>
void Cross(benchmark::State & state)
{
    bench::RunOverArray(state, bench::RandomObjects<3, T>(k_Count + 1, Peer::Make),
                        std::vector<typename Peer::Vector>(k_Count),
                        [](auto const & in, auto & out, std::size_t i) { Peer::Cross(out[i], in[i], in[i + 1]); });
}

template <typename Peer, typename T>
void Normalize(benchmark::State & state)
{
    bench::RunOverArray(state, bench::RandomObjects<3, T>(k_Count, Peer::Make),
                        std::vector<typename Peer::Vector>(k_Count),
                        [](auto const & in, auto & out, std::size_t i) { Peer::Normalize(out[i], in[i]); });
}

BENCHMARK(Cross<Ours<double>, double>);
BENCHMARK(Cross<WithEigen<double>, double>);
BENCHMARK(Cross<WithGlm<double>, double>);
BENCHMARK(Cross<Ours<float>, float>);
BENCHMARK(Cross<WithEigen<float>, float>);
BENCHMARK(Cross<WithGlm<float>, float>);
BENCHMARK(Normalize<Ours<double>, double>);
BENCHMARK(Normalize<WithEigen<double>, double>);
BENCHMARK(Normalize<WithGlm<double>, double>);
BENCHMARK(Normalize<Ours<float>, float>);
BENCHMARK(Normalize<WithEigen<float>, float>);
BENCHMARK(Normalize<WithGlm<float>, float>);

} // namespace
