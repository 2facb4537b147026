// Transformations: components to matrix and back, products and inverse of transformation matrices, composition in both
// modes, arrays of points, dual quaternions. Results are per operation (items_per_second).

#include "math/dual_quaternion.h"
#include "math/rotation_conversions.h"
#include "math/transformation.h"
#include "random_values.h"
#include "run_over_array.h"

#include <Eigen/Dense>
#include <Eigen/Geometry>
#include <benchmark/benchmark.h>
#include <cmath>
#include <cstring>
#include <glm/gtc/matrix_inverse.hpp>
#include <glm/gtc/quaternion.hpp>
#include <glm/gtx/dual_quaternion.hpp>
#include <glm/mat4x4.hpp>

namespace
{

constexpr std::size_t k_Count = 256;

using bench::RunOverArray;
using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;
using Quaternion = C3DQuatTpl<double>;
using DualQuaternion = C3DDualQuatTpl<double>;

/// The components of a transformation, from nine random values: a scale of 0.5 to 1.5, any rotation, a translation.
struct Components
{
    explicit Components(double const * v)
        : scaling(1 + 0.5 * v[0], 1 + 0.5 * v[1], 1 + 0.5 * v[2]), translation(10 * v[6], 10 * v[7], 10 * v[8])
    {
        F3DEulerToQuat(Vector(3 * v[3], 1.5 * v[4], 3 * v[5]), quaternion, E3DROTORDER_XYZ);
    }

    Eigen::Quaterniond EigenQuaternion() const { return {quaternion.W, quaternion.X, quaternion.Y, quaternion.Z}; }
    Eigen::Vector3d EigenScaling() const { return {scaling.X, scaling.Y, scaling.Z}; }
    Eigen::Vector3d EigenTranslation() const { return {translation.X, translation.Y, translation.Z}; }
    glm::dquat GlmQuaternion() const { return {quaternion.W, quaternion.X, quaternion.Y, quaternion.Z}; }
    glm::dvec3 GlmScaling() const { return {scaling.X, scaling.Y, scaling.Z}; }
    glm::dvec3 GlmTranslation() const { return {translation.X, translation.Y, translation.Z}; }

    Vector scaling;
    Quaternion quaternion;
    Vector translation;
};

std::vector<Components> MakeComponents(std::size_t count)
{
    return bench::RandomObjects<9, double>(count, [](double const * v) { return Components(v); });
}

template <typename Make>
auto MakeObjects(std::size_t count, Make make)
{
    std::vector<decltype(make(Components(nullptr)))> objects;
    objects.reserve(count);
    for (Components const & components : MakeComponents(count))
    {
        objects.push_back(make(components));
    }
    return objects;
}

C3DTransfo MakeTransfo(Components const & c)
{
    return {c.scaling, C3DRotation(c.quaternion), c.translation};
}

Matrix MakeMatrix(Components const & c)
{
    return *MakeTransfo(c).GetMatrix();
}

Eigen::Affine3d MakeEigenAffine(Components const & c)
{
    return Eigen::Affine3d().fromPositionOrientationScale(c.EigenTranslation(), c.EigenQuaternion(), c.EigenScaling());
}

glm::dmat4 MakeGlmMatrix(Components const & c)
{
    glm::dmat4 matrix = glm::mat4_cast(c.GlmQuaternion());
    glm::dvec3 const scaling = c.GlmScaling();
    matrix[0] *= scaling.x;
    matrix[1] *= scaling.y;
    matrix[2] *= scaling.z;
    matrix[3] = glm::dvec4(c.GlmTranslation(), 1);
    return matrix;
}

/// A general upper block: three by three values between -1 and 1.
Eigen::Matrix3d MakeShearedBlock(double const * v)
{
    return Eigen::Map<Eigen::Matrix3d const>(v);
}

Matrix MakeShearedMatrix(double const * v)
{
    return {v[0], v[1], v[2], 0, v[3], v[4], v[5], 0, v[6], v[7], v[8], 0, 1, 2, 3, 1};
}

// --- Components to matrix ---

void Combine(benchmark::State & state)
{
    auto const in = MakeComponents(k_Count);
    C3DTransfo transformation;
    RunOverArray(state, in, std::vector<Matrix>(k_Count),
                 [&](auto const & components, auto & out, std::size_t i)
                 {
                     transformation.SetScaling(components[i].scaling);
                     transformation.SetRotation(components[i].quaternion);
                     transformation.SetTranslation(components[i].translation);
                     out[i] = *transformation.GetMatrix();
                 });
}

void CombineEigen(benchmark::State & state)
{
    auto const in = MakeComponents(k_Count);
    RunOverArray(state, in, std::vector<Eigen::Affine3d>(k_Count),
                 [](auto const & components, auto & out, std::size_t i)
                 {
                     out[i].fromPositionOrientationScale(components[i].EigenTranslation(),
                                                         components[i].EigenQuaternion().normalized(),
                                                         components[i].EigenScaling());
                 });
}

void CombineGlm(benchmark::State & state)
{
    auto const in = MakeComponents(k_Count);
    RunOverArray(state, in, std::vector<glm::dmat4>(k_Count),
                 [](auto const & components, auto & out, std::size_t i) { out[i] = MakeGlmMatrix(components[i]); });
}

// --- Matrix to components ---

struct Factors
{
    Vector scaling;
    Quaternion rotation;
};

void ReadFactors(C3DTransfo & transformation, Matrix const & matrix, Factors & out)
{
    transformation.Set(matrix);
    transformation.GetScaling(out.scaling);
    transformation.GetRotation(out.rotation);
}

void Factorize(benchmark::State & state)
{
    auto const in = MakeObjects(k_Count, MakeMatrix);
    C3DTransfo transformation;
    RunOverArray(state, in, std::vector<Factors>(k_Count),
                 [&](auto const & matrices, auto & out, std::size_t i)
                 { ReadFactors(transformation, matrices[i], out[i]); });
}

void FactorizeEigen(benchmark::State & state)
{
    auto const in = MakeObjects(k_Count, MakeEigenAffine);
    RunOverArray(state, in, std::vector<std::pair<Eigen::Vector3d, Eigen::Quaterniond>>(k_Count),
                 [](auto const & matrices, auto & out, std::size_t i)
                 {
                     Eigen::Matrix3d m = matrices[i].linear();
                     out[i].first = m.colwise().norm();
                     out[i].second = Eigen::Quaterniond(m * out[i].first.cwiseInverse().asDiagonal());
                 });
}

void FactorizeSheared(benchmark::State & state)
{
    auto const in = bench::RandomObjects<9, double>(k_Count, MakeShearedMatrix);
    C3DTransfo transformation;
    RunOverArray(state, in, std::vector<Factors>(k_Count),
                 [&](auto const & matrices, auto & out, std::size_t i)
                 { ReadFactors(transformation, matrices[i], out[i]); });
}

void FactorizeShearedEigen(benchmark::State & state)
{
    auto const in = bench::RandomObjects<9, double>(k_Count, MakeShearedBlock);
    RunOverArray(state, in, std::vector<std::pair<Eigen::Vector3d, Eigen::Quaterniond>>(k_Count),
                 [](auto const & matrices, auto & out, std::size_t i)
                 {
                     Eigen::JacobiSVD<Eigen::Matrix3d> const svd(matrices[i],
                                                                 Eigen::ComputeFullU | Eigen::ComputeFullV);
                     out[i].first = svd.singularValues();
                     out[i].second = Eigen::Quaterniond(svd.matrixU() * svd.matrixV().transpose());
                 });
}

void Decompose(benchmark::State & state)
{
    auto const in = bench::RandomObjects<9, double>(k_Count, MakeShearedMatrix);
    RunOverArray(state, in, std::vector<std::pair<C3DRotMatTpl<double>, Matrix>>(k_Count),
                 [](auto const & matrices, auto & out, std::size_t i)
                 { matrices[i].GetAffineDecomposition(out[i].first, out[i].second); });
}

void DecomposeEigen(benchmark::State & state)
{
    auto const in = bench::RandomObjects<9, double>(k_Count, MakeShearedBlock);
    RunOverArray(state, in, std::vector<Eigen::JacobiSVD<Eigen::Matrix3d>>(k_Count),
                 [](auto const & matrices, auto & out, std::size_t i)
                 { out[i].compute(matrices[i], Eigen::ComputeFullU | Eigen::ComputeFullV); });
}

// --- Product and inverse of matrices ---

void MatrixProduct(benchmark::State & state)
{
    auto const in = MakeObjects(k_Count + 1, MakeMatrix);
    RunOverArray(state, in, std::vector<Matrix>(k_Count),
                 [](auto const & m, auto & out, std::size_t i) { out[i].Mul(m[i], m[i + 1]); });
}

void MatrixProductEigen(benchmark::State & state)
{
    auto const in = MakeObjects(k_Count + 1, MakeEigenAffine);
    RunOverArray(state, in, std::vector<Eigen::Affine3d>(k_Count),
                 [](auto const & m, auto & out, std::size_t i) { out[i] = m[i + 1] * m[i]; });
}

void MatrixProductGlm(benchmark::State & state)
{
    auto const in = MakeObjects(k_Count + 1, MakeGlmMatrix);
    RunOverArray(state, in, std::vector<glm::dmat4>(k_Count),
                 [](auto const & m, auto & out, std::size_t i) { out[i] = m[i + 1] * m[i]; });
}

void MatrixInverse(benchmark::State & state)
{
    auto const in = MakeObjects(k_Count, MakeMatrix);
    RunOverArray(state, in, std::vector<Matrix>(k_Count),
                 [](auto const & m, auto & out, std::size_t i) { out[i].Invert(m[i]); });
}

void MatrixInverseEigen(benchmark::State & state)
{
    auto const in = MakeObjects(k_Count, MakeEigenAffine);
    RunOverArray(state, in, std::vector<Eigen::Affine3d>(k_Count),
                 [](auto const & m, auto & out, std::size_t i) { out[i] = m[i].inverse(Eigen::Affine); });
}

void MatrixInverseGlm(benchmark::State & state)
{
    auto const in = MakeObjects(k_Count, MakeGlmMatrix);
    RunOverArray(state, in, std::vector<glm::dmat4>(k_Count),
                 [](auto const & m, auto & out, std::size_t i) { out[i] = glm::affineInverse(m[i]); });
}

// --- Composition ---

void Compose(benchmark::State & state, int qnScaling)
{
    auto in = MakeObjects(k_Count + 1, MakeTransfo);
    for (C3DTransfo & transformation : in)
    {
        transformation.GetMatrix();
    }
    C3DTransfo product;
    product.SetQNScalingFlag(qnScaling);
    RunOverArray(state, in, std::vector<Vector>(k_Count),
                 [&](auto & operands, auto & out, std::size_t i)
                 { product.Mul(operands[i], operands[i + 1], 63).GetTranslation(out[i]); });
}

void MulByComponent(benchmark::State & state)
{
    Compose(state, 1);
}

void MulByMatrix(benchmark::State & state)
{
    Compose(state, 0);
}

void MulByComponentEigen(benchmark::State & state)
{
    auto const components = MakeComponents(k_Count + 1);
    auto const matrices = MakeObjects(k_Count + 1, MakeEigenAffine);
    Eigen::Vector3d scaling;
    Eigen::Quaterniond rotation;
    RunOverArray(state, components, std::vector<Eigen::Vector3d>(k_Count),
                 [&](auto const & c, auto & out, std::size_t i)
                 {
                     scaling = c[i].EigenScaling().cwiseProduct(c[i + 1].EigenScaling());
                     rotation = (c[i + 1].EigenQuaternion() * c[i].EigenQuaternion()).normalized();
                     out[i] = matrices[i + 1] * c[i].EigenTranslation();
                     benchmark::DoNotOptimize(scaling);
                     benchmark::DoNotOptimize(rotation);
                 });
}

void MulByComponentGlm(benchmark::State & state)
{
    auto const components = MakeComponents(k_Count + 1);
    auto const matrices = MakeObjects(k_Count + 1, MakeGlmMatrix);
    glm::dvec3 scaling;
    glm::dquat rotation;
    RunOverArray(state, components, std::vector<glm::dvec3>(k_Count),
                 [&](auto const & c, auto & out, std::size_t i)
                 {
                     scaling = c[i].GlmScaling() * c[i + 1].GlmScaling();
                     rotation = glm::normalize(c[i + 1].GlmQuaternion() * c[i].GlmQuaternion());
                     out[i] = matrices[i + 1] * glm::dvec4(c[i].GlmTranslation(), 1);
                     benchmark::DoNotOptimize(scaling);
                     benchmark::DoNotOptimize(rotation);
                 });
}

// --- Arrays of points ---

template <typename Point>
std::vector<Point> MakePoints(benchmark::State const & state)
{
    return bench::RandomObjects<3, double>(static_cast<std::size_t>(state.range(0)),
                                           [](double const * v) { return Point(v[0], v[1], v[2]); });
}

void TransformPoints(benchmark::State & state)
{
    auto const in = MakePoints<Vector>(state);
    Matrix const matrix = MakeMatrix(MakeComponents(1).front());
    RunOverArray(state, in, in, [&](auto const & points, auto & out, std::size_t i) { out[i].Mul(points[i], matrix); });
}

void TransformPointArray(benchmark::State & state)
{
    auto const in = MakePoints<Vector>(state);
    auto out = in;
    Matrix const matrix = MakeMatrix(MakeComponents(1).front());
    for (auto _ : state)
    {
        F3DTransformPoints(matrix, in.data(), static_cast<long>(in.size()), out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    bench::CountItems(state, in.size());
}

void TransformPointsEigen(benchmark::State & state)
{
    auto const in = MakePoints<Eigen::Vector3d>(state);
    Eigen::Affine3d const matrix = MakeEigenAffine(MakeComponents(1).front());
    RunOverArray(state, in, in, [&](auto const & points, auto & out, std::size_t i) { out[i] = matrix * points[i]; });
}

void TransformPointsGlm(benchmark::State & state)
{
    auto const in = MakePoints<glm::dvec3>(state);
    glm::dmat4 const matrix = MakeGlmMatrix(MakeComponents(1).front());
    RunOverArray(state, in, in,
                 [&](auto const & points, auto & out, std::size_t i) { out[i] = matrix * glm::dvec4(points[i], 1); });
}

// --- Dual quaternions ---

DualQuaternion MakeDualQuaternion(Components const & c)
{
    return {c.quaternion, c.translation};
}

glm::ddualquat MakeGlmDualQuaternion(Components const & c)
{
    return {c.GlmQuaternion(), c.GlmTranslation()};
}

void ScLerp(benchmark::State & state)
{
    auto const in = MakeObjects(k_Count + 1, MakeDualQuaternion);
    RunOverArray(state, in, std::vector<DualQuaternion>(k_Count),
                 [](auto const & q, auto & out, std::size_t i) { out[i].ScLerp(q[i], q[i + 1], 0.3); });
}

/// A dual quaternion and its screw interpolation with Eigen's quaternions: Eigen has none of its own.
struct EigenDualQuaternion
{
    Eigen::Quaterniond real;
    Eigen::Quaterniond dual;
};

EigenDualQuaternion MakeEigenDualQuaternion(Components const & c)
{
    Eigen::Quaterniond const real = c.EigenQuaternion();
    Eigen::Quaterniond dual = Eigen::Quaterniond(0, c.translation.X, c.translation.Y, c.translation.Z) * real;
    dual.coeffs() *= 0.5;
    return {real, dual};
}

EigenDualQuaternion Product(EigenDualQuaternion const & a, EigenDualQuaternion const & b)
{
    return {a.real * b.real, Eigen::Quaterniond((a.real * b.dual).coeffs() + (a.dual * b.real).coeffs())};
}

EigenDualQuaternion ScLerpWithEigen(EigenDualQuaternion const & a, EigenDualQuaternion b, double t)
{
    if (a.real.dot(b.real) < 0)
    {
        b.real.coeffs() *= -1;
        b.dual.coeffs() *= -1;
    }
    EigenDualQuaternion const step = Product(b, {a.real.conjugate(), a.dual.conjugate()});
    double const reciprocal = 1 / step.real.vec().norm();
    Eigen::Vector3d const axis = step.real.vec() * reciprocal;
    double const halfAngle = t * std::acos(step.real.w());
    double const pitch = -2 * step.dual.w() * reciprocal;
    Eigen::Vector3d const moment = (step.dual.vec() - axis * (pitch * step.real.w() * 0.5)) * reciprocal;
    double const sine = std::sin(halfAngle);
    double const cosine = std::cos(halfAngle);
    double const halfPitch = 0.5 * t * pitch;
    EigenDualQuaternion screw;
    screw.real.w() = cosine;
    screw.real.vec() = sine * axis;
    screw.dual.w() = -halfPitch * sine;
    screw.dual.vec() = sine * moment + halfPitch * cosine * axis;
    return Product(screw, a);
}

void ScLerpEigen(benchmark::State & state)
{
    auto const in = MakeObjects(k_Count + 1, MakeEigenDualQuaternion);
    RunOverArray(state, in, std::vector<EigenDualQuaternion>(k_Count),
                 [](auto const & q, auto & out, std::size_t i) { out[i] = ScLerpWithEigen(q[i], q[i + 1], 0.3); });
}

void LinearBlendOf4(benchmark::State & state)
{
    auto const in = MakeObjects(k_Count + 3, MakeDualQuaternion);
    double const weights[4] = {0.1, 0.2, 0.3, 0.4};
    RunOverArray(state, in, std::vector<DualQuaternion>(k_Count),
                 [&](auto const & q, auto & out, std::size_t i) { out[i].LinearBlend(4, &q[i], weights); });
}

void LinearBlendOf4Glm(benchmark::State & state)
{
    auto const in = MakeObjects(k_Count + 3, MakeGlmDualQuaternion);
    double const weights[4] = {0.1, 0.2, 0.3, 0.4};
    RunOverArray(state, in, std::vector<glm::ddualquat>(k_Count),
                 [&](auto const & q, auto & out, std::size_t i)
                 {
                     glm::ddualquat sum = q[i] * weights[0];
                     for (std::size_t k = 1; k < 4; ++k)
                     {
                         double const sign = glm::dot(q[i + k].real, q[i + k - 1].real) >= 0 ? 1 : -1;
                         sum = sum + q[i + k] * (sign * weights[k]);
                     }
                     out[i] = glm::normalize(sum);
                 });
}

void ArraySizes(benchmark::internal::Benchmark * benchmark)
{
    benchmark->Arg(64)->Arg(4096)->Arg(1000000);
}

BENCHMARK(Combine);
BENCHMARK(CombineEigen);
BENCHMARK(CombineGlm);
BENCHMARK(Factorize);
BENCHMARK(FactorizeEigen);
BENCHMARK(FactorizeSheared);
BENCHMARK(FactorizeShearedEigen);
BENCHMARK(Decompose);
BENCHMARK(DecomposeEigen);
BENCHMARK(MatrixProduct);
BENCHMARK(MatrixProductEigen);
BENCHMARK(MatrixProductGlm);
BENCHMARK(MatrixInverse);
BENCHMARK(MatrixInverseEigen);
BENCHMARK(MatrixInverseGlm);
BENCHMARK(MulByComponent);
BENCHMARK(MulByComponentEigen);
BENCHMARK(MulByComponentGlm);
BENCHMARK(MulByMatrix);
BENCHMARK(TransformPoints)->Apply(ArraySizes);
BENCHMARK(TransformPointArray)->Apply(ArraySizes);
BENCHMARK(TransformPointsEigen)->Apply(ArraySizes);
BENCHMARK(TransformPointsGlm)->Apply(ArraySizes);
BENCHMARK(ScLerp);
BENCHMARK(ScLerpEigen);
BENCHMARK(LinearBlendOf4);
BENCHMARK(LinearBlendOf4Glm);

} // namespace
