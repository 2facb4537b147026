/// Points through a transformation matrix, many at once.

#include "math/transformation_matrix.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <vector>

namespace
{

using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;

} // namespace

TEST(TransformPoints, Each_point_has_the_bits_that_it_has_alone)
{
    test_support::Random random(41);
    Matrix matrix;
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 4; ++c)
        {
            matrix.Set(r, c, random.Uniform(-2.0, 2.0));
        }
    }
    for (long n = -1; n <= 40; ++n)
    {
        std::vector<Vector> in(static_cast<std::size_t>(std::max(n, 0L)));
        for (Vector & point : in)
        {
            point.Set(random.OverDecades(-3, 3), random.Integer(0, 3) == 0 ? -0.0 : random.OverDecades(-3, 3),
                      random.OverDecades(-3, 3));
        }
        std::vector<Vector> out(in.size() + 3, Vector(77, 77, 77));
        F3DTransformPoints(matrix, in.data(), n, out.data());
        for (std::size_t i = 0; i < out.size(); ++i)
        {
            Vector expected(77, 77, 77);
            if (i < in.size())
            {
                expected.Mul(in[i], matrix);
            }
            EXPECT_EQ(std::memcmp(&out[i], &expected, sizeof expected), 0);
        }
        F3DTransformPoints(matrix, in.data(), n, in.data());
        for (std::size_t i = 0; i < in.size(); ++i)
        {
            EXPECT_EQ(std::memcmp(&in[i], &out[i], sizeof in[i]), 0);
        }
    }
}

TEST(TransformPoints, Column_3_is_not_read_and_nothing_divides)
{
    double const nan = std::numeric_limits<double>::quiet_NaN();
    Matrix matrix;
    matrix.SetCol(3, nan, nan, nan, 0);
    std::vector<Vector> points(9, Vector(1, 2, 3));
    F3DTransformPoints(matrix, points.data(), 9, points.data());
    for (Vector const & point : points)
    {
        EXPECT_EQ(point.X, 1);
        EXPECT_EQ(point.Y, 2);
        EXPECT_EQ(point.Z, 3);
    }
}
