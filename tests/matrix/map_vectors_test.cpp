/// Many vectors and points through one matrix: each kernel, held to the operations of one vector written out.

#include "matrix/map_vectors.h"
#include "support/random.h"
#include "support/same_bits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace
{

using Vector = C3DVector3Tpl<double>;
using math::detail::MapRows;
using test_support::SameBits;

constexpr double k_Infinity = std::numeric_limits<double>::infinity();
constexpr double k_Nan = std::numeric_limits<double>::quiet_NaN();

/// Sums of three products, from the left.
Vector MappedVector(MapRows const & rows, Vector const & v)
{
    Vector mapped;
    for (int c = 0; c < 3; ++c)
    {
        mapped.Set(c, v.X * rows[0][c] + v.Y * rows[1][c] + v.Z * rows[2][c]);
    }
    return mapped;
}

/// The last row, and one after the other the products whose component is below or above 0.
Vector MappedPoint(MapRows const & rows, Vector const & v)
{
    Vector mapped;
    for (int c = 0; c < 3; ++c)
    {
        double sum = rows[3][c];
        for (int r = 0; r < 3; ++r)
        {
            if (v.Get(r) < 0 || v.Get(r) > 0)
            {
                sum += v.Get(r) * rows[r][c];
            }
        }
        mapped.Set(c, sum);
    }
    return mapped;
}

std::vector<Vector> Vectors(test_support::Random & random, long count)
{
    std::vector<Vector> vectors(static_cast<std::size_t>(count));
    for (Vector & v : vectors)
    {
        v.Set(random.NumberOrSpecial(), random.NumberOrSpecial(), random.NumberOrSpecial());
    }
    return vectors;
}

struct Kernel
{
    long (*map)(MapRows const &, bool, Vector const *, long, Vector *);
    long group;
};

std::vector<Kernel> KernelsOfThisMachine()
{
    std::vector<Kernel> kernels = {{&math::detail::MapByOne, 1}};
#if defined(__x86_64__)
    kernels.push_back({&math::detail::MapByTwo, 2});
    if (__builtin_cpu_supports("avx") != 0)
    {
        kernels.push_back({&math::detail::MapByFour, 4});
    }
    if (__builtin_cpu_supports("avx512f") != 0)
    {
        kernels.push_back({&math::detail::MapByEight, 8});
    }
#endif
    return kernels;
}

Vector const k_GuardVector(77, 77, 77);
constexpr std::size_t k_Guard = 5;

void ExpectMapped(Kernel const & kernel, MapRows const & rows, bool arePoints, std::vector<Vector> const & in, long n,
                  std::size_t offset)
{
    std::vector<Vector> out(static_cast<std::size_t>(n) + k_Guard, k_GuardVector);
    std::vector<Vector> inPlace = in;
    long const done = kernel.map(rows, arePoints, in.data() + offset, n, out.data());
    EXPECT_EQ(done, n - n % kernel.group);
    kernel.map(rows, arePoints, inPlace.data() + offset, n, inPlace.data() + offset);
    for (std::size_t i = 0; i < out.size(); ++i)
    {
        if (i >= static_cast<std::size_t>(done))
        {
            EXPECT_TRUE(SameBits(out[i], k_GuardVector));
            continue;
        }
        Vector const expected = arePoints ? MappedPoint(rows, in[offset + i]) : MappedVector(rows, in[offset + i]);
        EXPECT_TRUE(SameBits(out[i], expected)) << kernel.group << " at " << i;
        EXPECT_TRUE(SameBits(inPlace[offset + i], expected));
    }
}

} // namespace

TEST(MapVectors, Each_kernel_does_its_whole_groups_with_the_scalar_bits)
{
    test_support::Random random(504);
    for (Kernel const & kernel : KernelsOfThisMachine())
    {
        for (long n = 0; n <= 33; ++n)
        {
            for (long offset = 0; offset < 4; ++offset)
            {
                MapRows rows;
                for (auto & row : rows)
                {
                    for (double & element : row)
                    {
                        element = n % 3 == 0 ? random.NumberOrSpecial() : random.Uniform(-1.0, 1.0);
                    }
                }
                std::vector<Vector> const in = Vectors(random, n + offset);
                ExpectMapped(kernel, rows, false, in, n, static_cast<std::size_t>(offset));
                ExpectMapped(kernel, rows, true, in, n, static_cast<std::size_t>(offset));
            }
        }
    }
}

TEST(MapVectors, A_zero_of_a_point_keeps_its_row_out_to_the_sign_of_a_zero)
{
    MapRows const rows = {{k_Infinity, k_Nan, 1}, {2, 3, 4}, {5, 6, 7}, {-0.0, -0.0, -0.0}};
    for (Kernel const & kernel : KernelsOfThisMachine())
    {
        for (double const zero : {0.0, -0.0, k_Nan})
        {
            std::vector<Vector> points(8, Vector(zero, zero, zero));
            EXPECT_EQ(kernel.map(rows, true, points.data(), 8, points.data()), 8);
            for (Vector const & point : points)
            {
                EXPECT_TRUE(SameBits(point, Vector(-0.0, -0.0, -0.0)));
            }
        }
    }
}

TEST(MapVectors, All_of_an_array_is_done_whatever_its_length)
{
    test_support::Random random(505);
    C3DMatrix33Tpl<double> linear;
    C3DMatrix44Tpl<double> affine;
    MapRows rows;
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            affine.Set(r, c, random.Uniform(-1.0, 1.0));
            if (c < 3)
            {
                rows[r][c] = affine.Get(r, c);
            }
            if (r < 3 && c < 3)
            {
                linear.Set(r, c, affine.Get(r, c));
            }
        }
    }
    for (long n = -1; n <= 40; ++n)
    {
        std::vector<Vector> const in = Vectors(random, std::max(n, 0L));
        std::vector<Vector> vectors(in.size() + k_Guard, k_GuardVector);
        std::vector<Vector> points = vectors;
        math::detail::MapVectors(linear, in.data(), n, vectors.data());
        math::detail::MapPoints(affine, in.data(), n, points.data());
        for (std::size_t i = 0; i < vectors.size(); ++i)
        {
            bool const isDone = i < in.size();
            EXPECT_TRUE(SameBits(vectors[i], isDone ? MappedVector(rows, in[i]) : k_GuardVector));
            EXPECT_TRUE(SameBits(points[i], isDone ? MappedPoint(rows, in[i]) : k_GuardVector));
        }
    }
}
