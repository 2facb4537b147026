// Rotations: Euler angles out of a matrix, into a quaternion and a matrix; quaternion product and interpolation; arrays
// of vectors through a rotation, beside a plain copy of the same arrays. Results are per operation (items_per_second).
//
// The peers' extraction is the plain one, without a target: neither offers another.

#include "math/rotation.h"
#include "math/rotation_conversions.h"
#include "random_values.h"
#include "run_over_array.h"

#include <Eigen/Dense>
#include <Eigen/Geometry>
#include <benchmark/benchmark.h>
#include <cstring>
#include <glm/gtc/quaternion.hpp>
#include <glm/gtx/euler_angles.hpp>
#include <glm/mat3x3.hpp>

namespace
{

constexpr std::size_t k_Count = 256;

using bench::CountItems;
using bench::RunOverArray;
using Angles = C3DVector3Tpl<double>;
using Quaternion = C3DQuatTpl<double>;
using RotationMatrix = C3DRotMatTpl<double>;

Angles MakeAngles(double const * v)
{
    return {3 * v[0], 1.5 * v[1], 3 * v[2]};
}

RotationMatrix MakeRotationMatrix(double const * v)
{
    RotationMatrix matrix;
    F3DEulerToMat(MakeAngles(v), matrix, E3DROTORDER_XYZ);
    return matrix;
}

Quaternion MakeQuaternion(double const * v)
{
    Quaternion quaternion;
    F3DEulerToQuat(MakeAngles(v), quaternion, E3DROTORDER_XYZ);
    return quaternion;
}

// --- Euler angles out of a matrix ---

void ExtractEulerUsingTarget(benchmark::State & state)
{
    auto const matrices = bench::RandomObjects<3, double>(k_Count, MakeRotationMatrix);
    RunOverArray(state, matrices, std::vector<Angles>(k_Count, Angles(0.1, 0.2, 6.5)),
                 [](auto const & in, auto & out, std::size_t i)
                 { F3DMatToEulerUsingTarget(in[i], out[i], E3DROTORDER_XYZ); });
}

void ExtractEulerEigen(benchmark::State & state)
{
    auto const matrices =
        bench::RandomObjects<3, double>(k_Count,
                                        [](double const * v)
                                        {
                                            Eigen::Matrix3d m;
                                            std::memcpy(m.data(), MakeRotationMatrix(v).GetArray(), sizeof m);
                                            return m;
                                        });
    RunOverArray(state, matrices, std::vector<Eigen::Vector3d>(k_Count),
                 [](auto const & in, auto & out, std::size_t i) { out[i] = in[i].eulerAngles(2, 1, 0); });
}

void ExtractEulerGlm(benchmark::State & state)
{
    auto const matrices = bench::RandomObjects<3, double>(k_Count,
                                                          [](double const * v)
                                                          {
                                                              Angles const a = MakeAngles(v);
                                                              return glm::eulerAngleXYZ(a.X, a.Y, a.Z);
                                                          });
    RunOverArray(state, matrices, std::vector<glm::dvec3>(k_Count),
                 [](auto const & in, auto & out, std::size_t i)
                 { glm::extractEulerAngleXYZ(in[i], out[i].x, out[i].y, out[i].z); });
}

// --- Euler angles into a quaternion, into a matrix ---

void EulerToQuaternion(benchmark::State & state)
{
    RunOverArray(state, bench::RandomObjects<3, double>(k_Count, MakeAngles), std::vector<Quaternion>(k_Count),
                 [](auto const & in, auto & out, std::size_t i) { F3DEulerToQuat(in[i], out[i], E3DROTORDER_XYZ); });
}

void EulerToQuaternionEigen(benchmark::State & state)
{
    RunOverArray(state, bench::RandomObjects<3, double>(k_Count, MakeAngles), std::vector<Eigen::Quaterniond>(k_Count),
                 [](auto const & in, auto & out, std::size_t i)
                 {
                     out[i] = Eigen::AngleAxisd(in[i].Z, Eigen::Vector3d::UnitZ()) *
                              Eigen::AngleAxisd(in[i].Y, Eigen::Vector3d::UnitY()) *
                              Eigen::AngleAxisd(in[i].X, Eigen::Vector3d::UnitX());
                 });
}

void EulerToQuaternionGlm(benchmark::State & state)
{
    RunOverArray(state, bench::RandomObjects<3, double>(k_Count, MakeAngles), std::vector<glm::dquat>(k_Count),
                 [](auto const & in, auto & out, std::size_t i)
                 { out[i] = glm::dquat(glm::dvec3(in[i].X, in[i].Y, in[i].Z)); });
}

void EulerToMatrix(benchmark::State & state)
{
    RunOverArray(state, bench::RandomObjects<3, double>(k_Count, MakeAngles), std::vector<RotationMatrix>(k_Count),
                 [](auto const & in, auto & out, std::size_t i) { F3DEulerToMat(in[i], out[i], E3DROTORDER_XYZ); });
}

void EulerToMatrixEigen(benchmark::State & state)
{
    RunOverArray(state, bench::RandomObjects<3, double>(k_Count, MakeAngles), std::vector<Eigen::Matrix3d>(k_Count),
                 [](auto const & in, auto & out, std::size_t i)
                 {
                     out[i] = (Eigen::AngleAxisd(in[i].Z, Eigen::Vector3d::UnitZ()) *
                               Eigen::AngleAxisd(in[i].Y, Eigen::Vector3d::UnitY()) *
                               Eigen::AngleAxisd(in[i].X, Eigen::Vector3d::UnitX()))
                                  .toRotationMatrix();
                 });
}

void EulerToMatrixGlm(benchmark::State & state)
{
    RunOverArray(state, bench::RandomObjects<3, double>(k_Count, MakeAngles), std::vector<glm::dmat4>(k_Count),
                 [](auto const & in, auto & out, std::size_t i)
                 { out[i] = glm::eulerAngleXYZ(in[i].X, in[i].Y, in[i].Z); });
}

// --- Quaternions ---

void QuaternionProduct(benchmark::State & state)
{
    RunOverArray(state, bench::RandomObjects<3, double>(k_Count + 1, MakeQuaternion), std::vector<Quaternion>(k_Count),
                 [](auto const & in, auto & out, std::size_t i) { out[i].Mul(in[i], in[i + 1]); });
}

auto EigenQuaternions()
{
    return bench::RandomObjects<3, double>(k_Count + 1,
                                           [](double const * v)
                                           {
                                               Quaternion const q = MakeQuaternion(v);
                                               return Eigen::Quaterniond(q.W, q.X, q.Y, q.Z);
                                           });
}

auto GlmQuaternions()
{
    return bench::RandomObjects<3, double>(k_Count + 1,
                                           [](double const * v)
                                           {
                                               Quaternion const q = MakeQuaternion(v);
                                               return glm::dquat(q.W, q.X, q.Y, q.Z);
                                           });
}

void QuaternionProductEigen(benchmark::State & state)
{
    RunOverArray(state, EigenQuaternions(), std::vector<Eigen::Quaterniond>(k_Count),
                 [](auto const & in, auto & out, std::size_t i) { out[i] = in[i] * in[i + 1]; });
}

void QuaternionProductGlm(benchmark::State & state)
{
    RunOverArray(state, GlmQuaternions(), std::vector<glm::dquat>(k_Count),
                 [](auto const & in, auto & out, std::size_t i) { out[i] = in[i] * in[i + 1]; });
}

void Slerp(benchmark::State & state)
{
    RunOverArray(state, bench::RandomObjects<3, double>(k_Count + 1, MakeQuaternion), std::vector<Quaternion>(k_Count),
                 [](auto const & in, auto & out, std::size_t i) { out[i].Slerp(in[i], in[i + 1], 0.3); });
}

void SlerpEigen(benchmark::State & state)
{
    RunOverArray(state, EigenQuaternions(), std::vector<Eigen::Quaterniond>(k_Count),
                 [](auto const & in, auto & out, std::size_t i) { out[i] = in[i].slerp(0.3, in[i + 1]); });
}

void SlerpGlm(benchmark::State & state)
{
    RunOverArray(state, GlmQuaternions(), std::vector<glm::dquat>(k_Count),
                 [](auto const & in, auto & out, std::size_t i) { out[i] = glm::slerp(in[i], in[i + 1], 0.3); });
}

// --- Arrays of vectors ---

template <typename Vector>
std::vector<Vector> MakeVectors(benchmark::State const & state)
{
    return bench::RandomObjects<3, double>(static_cast<std::size_t>(state.range(0)),
                                           [](double const * v) { return Vector(v[0], v[1], v[2]); });
}

void CountVectors(benchmark::State & state)
{
    CountItems(state, static_cast<std::size_t>(state.range(0)));
    state.SetBytesProcessed(state.iterations() * state.range(0) * std::int64_t{2 * sizeof(C3DVector3Tpl<double>)});
}

void RotateVct(benchmark::State & state)
{
    auto const in = MakeVectors<C3DVector3Tpl<double>>(state);
    auto out = in;
    C3DRotation rotation(0.3, 0.4, 0.5, E3DROTORDER_XYZ);
    for (auto _ : state)
    {
        rotation.RotateVct(in.data(), static_cast<long>(in.size()), out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    CountVectors(state);
}

void RotateVctEigen(benchmark::State & state)
{
    auto const in = MakeVectors<Eigen::Vector3d>(state);
    auto out = in;
    Eigen::Matrix3d const m = Eigen::AngleAxisd(0.3, Eigen::Vector3d(1, 2, 3).normalized()).toRotationMatrix();
    for (auto _ : state)
    {
        for (std::size_t i = 0; i < in.size(); ++i)
        {
            out[i].noalias() = m * in[i];
        }
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    CountVectors(state);
}

void RotateVctEigenArray(benchmark::State & state)
{
    auto const in = MakeVectors<Eigen::Vector3d>(state);
    auto out = in;
    Eigen::Matrix3d const m = Eigen::AngleAxisd(0.3, Eigen::Vector3d(1, 2, 3).normalized()).toRotationMatrix();
    auto const count = static_cast<Eigen::Index>(in.size());
    for (auto _ : state)
    {
        Eigen::Map<Eigen::Matrix3Xd>(out.front().data(), 3, count).noalias() =
            m * Eigen::Map<Eigen::Matrix3Xd const>(in.front().data(), 3, count);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    CountVectors(state);
}

void RotateVctGlm(benchmark::State & state)
{
    auto const in = MakeVectors<glm::dvec3>(state);
    auto out = in;
    glm::dmat3 const m(glm::eulerAngleXYZ(0.3, 0.4, 0.5));
    for (auto _ : state)
    {
        for (std::size_t i = 0; i < in.size(); ++i)
        {
            out[i] = m * in[i];
        }
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    CountVectors(state);
}

void CopyVectors(benchmark::State & state)
{
    auto const in = MakeVectors<C3DVector3Tpl<double>>(state);
    auto out = in;
    for (auto _ : state)
    {
        std::memcpy(out.data(), in.data(), in.size() * sizeof in.front());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    CountVectors(state);
}

void ArraySizes(benchmark::internal::Benchmark * benchmark)
{
    benchmark->Arg(1)->Arg(64)->Arg(4096)->Arg(1000000);
}

BENCHMARK(ExtractEulerUsingTarget);
BENCHMARK(ExtractEulerEigen);
BENCHMARK(ExtractEulerGlm);
BENCHMARK(EulerToQuaternion);
BENCHMARK(EulerToQuaternionEigen);
BENCHMARK(EulerToQuaternionGlm);
BENCHMARK(EulerToMatrix);
BENCHMARK(EulerToMatrixEigen);
BENCHMARK(EulerToMatrixGlm);
BENCHMARK(QuaternionProduct);
BENCHMARK(QuaternionProductEigen);
BENCHMARK(QuaternionProductGlm);
BENCHMARK(Slerp);
BENCHMARK(SlerpEigen);
BENCHMARK(SlerpGlm);
BENCHMARK(RotateVct)->Apply(ArraySizes);
BENCHMARK(RotateVctEigen)->Apply(ArraySizes);
BENCHMARK(RotateVctEigenArray)->Apply(ArraySizes);
BENCHMARK(RotateVctGlm)->Apply(ArraySizes);
BENCHMARK(CopyVectors)->Apply(ArraySizes);

} // namespace
