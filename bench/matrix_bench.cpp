// Products, inverses and points through a matrix. Results are per operation (items_per_second). Points go through a
// homogeneous matrix with the division by w, in every library.

#include "math/matrix33.h"
#include "math/matrix44.h"
#include "math/vector3.h"
#include "random_values.h"
#include "run_over_array.h"

#include <Eigen/Dense>
#include <benchmark/benchmark.h>
#include <cstring>
#include <glm/mat3x3.hpp>
#include <glm/mat4x4.hpp>
#include <glm/matrix.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

namespace
{

constexpr std::size_t k_Count = 64;

/// Keeps random matrices well away from singular ones.
template <int Size, typename T, typename Matrix>
Matrix MakeMatrix(T const * values)
{
    T elements[Size * Size];
    for (int i = 0; i < Size * Size; ++i)
    {
        elements[i] = values[i] + (i % (Size + 1) == 0 ? T(3) : T(0));
    }
    Matrix matrix;
    std::memcpy(static_cast<void *>(&matrix), elements, sizeof elements);
    return matrix;
}

template <typename T>
struct Ours
{
    using Scalar = T;
    using Matrix3 = C3DMatrix33Tpl<T>;
    using Matrix4 = C3DMatrix44Tpl<T>;
    using Point = C3DVector3Tpl<T>;
    static Point MakePoint(T const * v) { return Point(v[0], v[1], v[2]); }
    template <typename Matrix>
    static void Multiply(Matrix & out, Matrix const & a, Matrix const & b)
    {
        out.Mul(a, b);
    }
    template <typename Matrix>
    static void Invert(Matrix & out, Matrix const & a)
    {
        out.Invert(a);
    }
    static void InvertTransposed(Matrix4 & out, Matrix4 const & a) { out.TransposeInverse(a); }
    static void Transform(Point & out, Point const & p, Matrix4 const & m) { out.Mul(p, m); }
};

template <typename T>
struct WithEigen
{
    using Scalar = T;
    using Matrix3 = Eigen::Matrix<T, 3, 3>;
    using Matrix4 = Eigen::Matrix<T, 4, 4>;
    using Point = Eigen::Matrix<T, 3, 1>;
    static Point MakePoint(T const * v) { return Point(v[0], v[1], v[2]); }
    template <typename Matrix>
    static void Multiply(Matrix & out, Matrix const & a, Matrix const & b)
    {
        out.noalias() = a * b;
    }
    template <typename Matrix>
    static void Invert(Matrix & out, Matrix const & a)
    {
        out = a.inverse();
    }
    static void InvertTransposed(Matrix4 & out, Matrix4 const & a) { out = a.inverse().transpose(); }
    static void Transform(Point & out, Point const & p, Matrix4 const & m)
    {
        out = (m * p.homogeneous()).hnormalized();
    }
};

template <typename T>
struct WithGlm
{
    using Scalar = T;
    using Matrix3 = glm::mat<3, 3, T>;
    using Matrix4 = glm::mat<4, 4, T>;
    using Point = glm::vec<3, T>;
    static Point MakePoint(T const * v) { return Point(v[0], v[1], v[2]); }
    template <typename Matrix>
    static void Multiply(Matrix & out, Matrix const & a, Matrix const & b)
    {
        out = a * b;
    }
    template <typename Matrix>
    static void Invert(Matrix & out, Matrix const & a)
    {
        out = glm::inverse(a);
    }
    static void InvertTransposed(Matrix4 & out, Matrix4 const & a) { out = glm::transpose(glm::inverse(a)); }
    static void Transform(Point & out, Point const & p, Matrix4 const & m)
    {
        glm::vec<4, T> const h = m * glm::vec<4, T>(p, T(1));
        out = Point(h) / h.w;
    }
};

template <typename Peer, int Size>
using MatrixOf = std::conditional_t<Size == 3, typename Peer::Matrix3, typename Peer::Matrix4>;

template <typename Peer, int Size>
auto RandomMatrices(std::size_t count)
{
    using T = typename Peer::Scalar;
    return bench::RandomObjects<Size * Size, T>(count, MakeMatrix<Size, T, MatrixOf<Peer, Size>>);
}

template <typename Peer, int Size>
void Product(benchmark::State & state)
{
    bench::RunOverArray(state, RandomMatrices<Peer, Size>(k_Count + 1), std::vector<MatrixOf<Peer, Size>>(k_Count),
                        [](auto const & in, auto & out, std::size_t i) { Peer::Multiply(out[i], in[i], in[i + 1]); });
}

template <typename Peer, int Size>
void Inverse(benchmark::State & state)
{
    bench::RunOverArray(state, RandomMatrices<Peer, Size>(k_Count), std::vector<MatrixOf<Peer, Size>>(k_Count),
                        [](auto const & in, auto & out, std::size_t i) { Peer::Invert(out[i], in[i]); });
}

template <typename Peer>
void TransposedInverse(benchmark::State & state)
{
    bench::RunOverArray(state, RandomMatrices<Peer, 4>(k_Count), std::vector<MatrixOf<Peer, 4>>(k_Count),
                        [](auto const & in, auto & out, std::size_t i) { Peer::InvertTransposed(out[i], in[i]); });
}

template <typename Peer>
void PointsThroughMatrix(benchmark::State & state)
{
    auto const count = static_cast<std::size_t>(state.range(0));
    auto const matrix = RandomMatrices<Peer, 4>(1).front();
    auto const points = bench::RandomObjects<3, typename Peer::Scalar>(count, Peer::MakePoint);
    bench::RunOverArray(state, points, points,
                        [&matrix](auto const & in, auto & out, std::size_t i)
                        { Peer::Transform(out[i], in[i], matrix); });
}

BENCHMARK(Product<Ours<double>, 3>);
BENCHMARK(Product<WithEigen<double>, 3>);
BENCHMARK(Product<WithGlm<double>, 3>);
BENCHMARK(Product<Ours<float>, 3>);
BENCHMARK(Product<WithEigen<float>, 3>);
BENCHMARK(Product<WithGlm<float>, 3>);
BENCHMARK(Product<Ours<double>, 4>);
BENCHMARK(Product<WithEigen<double>, 4>);
BENCHMARK(Product<WithGlm<double>, 4>);
BENCHMARK(Product<Ours<float>, 4>);
BENCHMARK(Product<WithEigen<float>, 4>);
BENCHMARK(Product<WithGlm<float>, 4>);

BENCHMARK(Inverse<Ours<double>, 3>);
BENCHMARK(Inverse<WithEigen<double>, 3>);
BENCHMARK(Inverse<WithGlm<double>, 3>);
BENCHMARK(Inverse<Ours<float>, 3>);
BENCHMARK(Inverse<WithEigen<float>, 3>);
BENCHMARK(Inverse<WithGlm<float>, 3>);
BENCHMARK(Inverse<Ours<double>, 4>);
BENCHMARK(Inverse<WithEigen<double>, 4>);
BENCHMARK(Inverse<WithGlm<double>, 4>);
BENCHMARK(Inverse<Ours<float>, 4>);
BENCHMARK(Inverse<WithEigen<float>, 4>);
BENCHMARK(Inverse<WithGlm<float>, 4>);

BENCHMARK(TransposedInverse<Ours<double>>);
BENCHMARK(TransposedInverse<WithEigen<double>>);
BENCHMARK(TransposedInverse<WithGlm<double>>);
BENCHMARK(TransposedInverse<Ours<float>>);
BENCHMARK(TransposedInverse<WithEigen<float>>);
BENCHMARK(TransposedInverse<WithGlm<float>>);

BENCHMARK(PointsThroughMatrix<Ours<double>>)->Arg(64)->Arg(4096);
BENCHMARK(PointsThroughMatrix<WithEigen<double>>)->Arg(64)->Arg(4096);
BENCHMARK(PointsThroughMatrix<WithGlm<double>>)->Arg(64)->Arg(4096);
BENCHMARK(PointsThroughMatrix<Ours<float>>)->Arg(64)->Arg(4096);
BENCHMARK(PointsThroughMatrix<WithEigen<float>>)->Arg(64)->Arg(4096);
BENCHMARK(PointsThroughMatrix<WithGlm<float>>)->Arg(64)->Arg(4096);

} // namespace
