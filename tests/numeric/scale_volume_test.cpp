#include "math/scale_volume.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>

namespace
{

using Vector = C3DVector3Tpl<double>;

constexpr unsigned int k_X = 1;
constexpr unsigned int k_Y = 2;
constexpr unsigned int k_Z = 4;

struct Row
{
    unsigned int changed;
    unsigned int allowed;
    double x;
    double y;
    double z;
    long code;
};

void PrintTo(Row const & row, std::ostream * stream)
{
    *stream << "changed " << row.changed << ", allowed " << row.allowed;
}

class ScaleVolumeRows : public testing::TestWithParam<Row>
{
};

} // namespace

// All on the scale (4, 16, -2), whose factors and their roots are exact where they have to be.
TEST_P(ScaleVolumeRows, Adjusts_the_allowed_axes)
{
    Row const & row = GetParam();
    Vector result(-1, -1, -1);
    EXPECT_EQ(F3DScaleVolume(Vector(4, 16, -2), row.changed, result, row.allowed), row.code);
    EXPECT_DOUBLE_EQ(result.X, row.x);
    EXPECT_DOUBLE_EQ(result.Y, row.y);
    EXPECT_DOUBLE_EQ(result.Z, row.z);
}

INSTANTIATE_TEST_SUITE_P(X, ScaleVolumeRows,
                         testing::Values(Row{k_X, 0, 4, 16, -2, 1}, Row{k_X, k_X, 4, 16, -2, 1},
                                         Row{k_X, k_Y, 4, 4, -2, 0}, Row{k_X, k_X | k_Y, 4, 4, -2, 0},
                                         Row{k_X, k_Z, 4, 16, -0.5, 0}, Row{k_X, k_Y | k_Z, 4, 8, -1, 0},
                                         Row{k_X, 7, 4, 8, -1, 0}));
INSTANTIATE_TEST_SUITE_P(Y, ScaleVolumeRows,
                         testing::Values(Row{k_Y, 0, 4, 16, -2, 1}, Row{k_Y, k_Y, 4, 16, -2, 1},
                                         Row{k_Y, k_X, 0.25, 16, -2, 0}, Row{k_Y, k_Z, 4, 16, -0.125, 0},
                                         Row{k_Y, k_X | k_Z, 1, 16, -0.5, 0}, Row{k_Y, 7, 1, 16, -0.5, 0}));
INSTANTIATE_TEST_SUITE_P(Z, ScaleVolumeRows,
                         testing::Values(Row{k_Z, 0, 4, 16, -2, 1}, Row{k_Z, k_Z, 4, 16, -2, 1},
                                         Row{k_Z, k_X, 2, 16, -2, 0}, Row{k_Z, k_Y, 4, 8, -2, 0},
                                         Row{k_Z, k_X | k_Y, 4 * std::sqrt(0.5), 16 * std::sqrt(0.5), -2, 0},
                                         Row{k_Z, 7, 4 * std::sqrt(0.5), 16 * std::sqrt(0.5), -2, 0}));
INSTANTIATE_TEST_SUITE_P(Two_axes, ScaleVolumeRows,
                         testing::Values(Row{k_X | k_Y, k_X | k_Y, 4, 16, -2, 1}, Row{k_X | k_Y, 0, 4, 16, -2, 1},
                                         Row{k_X | k_Y, k_Z, 4, 16, -0.03125, 0}, Row{k_X | k_Y, 7, 4, 16, -0.03125, 0},
                                         Row{k_X | k_Z, k_X | k_Z, 4, 16, -2, 1}, Row{k_X | k_Z, k_Y, 4, 2, -2, 0},
                                         Row{k_X | k_Z, 7, 4, 2, -2, 0}, Row{k_Y | k_Z, k_Y | k_Z, 4, 16, -2, 1},
                                         Row{k_Y | k_Z, k_X, 0.125, 16, -2, 0}, Row{k_Y | k_Z, 7, 0.125, 16, -2, 0}));
INSTANTIATE_TEST_SUITE_P(None_or_all_axes, ScaleVolumeRows,
                         testing::Values(Row{7, 7, 4, 16, -2, 1}, Row{7, 0, 4, 16, -2, 1}, Row{0, 7, 4, 16, -2, 0},
                                         Row{0, 0, 4, 16, -2, 0}, Row{8, 7, 4, 16, -2, 0}, Row{8, 0, 4, 16, -2, 0},
                                         Row{9, 6, 4, 16, -2, 0}, Row{0xFFFFFFFF, 7, 4, 16, -2, 0}));
INSTANTIATE_TEST_SUITE_P(Allowed_bits_above_the_three, ScaleVolumeRows,
                         testing::Values(Row{k_X, 8, 4, 16, -2, 1}, Row{k_X, 8 | k_Y, 4, 4, -2, 0},
                                         Row{k_X, 0xFFFFFFFF, 4, 8, -1, 0}, Row{k_X | k_Y, 0xFFFFFFF8, 4, 16, -2, 1}));

TEST(ScaleVolume, Of_a_doubled_width_thins_the_other_two)
{
    Vector result;
    EXPECT_EQ(F3DScaleVolume(Vector(2, 1, 1), k_X, result, k_Y | k_Z), 0);
    EXPECT_EQ(result.X, 2);
    EXPECT_DOUBLE_EQ(result.Y, std::sqrt(0.5));
    EXPECT_DOUBLE_EQ(result.Z, std::sqrt(0.5));
}

TEST(ScaleVolume, A_changed_factor_of_zero_cannot_be_compensated)
{
    Vector const nowhere(0, 0, -0.0);
    for (unsigned int changed = 1; changed <= 6; ++changed)
    {
        Vector result(9, 9, 9);
        EXPECT_EQ(F3DScaleVolume(nowhere, changed, result, 7), 1) << changed;
        EXPECT_TRUE(result == nowhere);
    }
}

TEST(ScaleVolume, One_of_two_changed_factors_being_zero_is_enough_to_fail)
{
    Vector result;
    EXPECT_EQ(F3DScaleVolume(Vector(0, 2, 3), k_X | k_Y, result, 7), 1);
    EXPECT_TRUE(result == Vector(0, 2, 3));
    EXPECT_EQ(F3DScaleVolume(Vector(2, 0, 3), k_X | k_Y, result, 7), 1);
    EXPECT_EQ(F3DScaleVolume(Vector(0, 2, 3), k_X | k_Z, result, 7), 1);
    EXPECT_EQ(F3DScaleVolume(Vector(2, 3, 0), k_X | k_Z, result, 7), 1);
    EXPECT_EQ(F3DScaleVolume(Vector(3, 0, 2), k_Y | k_Z, result, 7), 1);
    EXPECT_EQ(F3DScaleVolume(Vector(3, 2, 0), k_Y | k_Z, result, 7), 1);
}

TEST(ScaleVolume, A_factor_of_zero_that_was_not_changed_is_no_obstacle)
{
    Vector result;
    EXPECT_EQ(F3DScaleVolume(Vector(2, 0, 3), k_X, result, k_Y | k_Z), 0);
    EXPECT_EQ(result.Y, 0);
    EXPECT_DOUBLE_EQ(result.Z, 3 * std::sqrt(0.5));
}

TEST(ScaleVolume, A_nan_is_not_zero_and_goes_on)
{
    Vector result;
    EXPECT_EQ(F3DScaleVolume(Vector(std::numeric_limits<double>::quiet_NaN(), 1, 1), k_X, result, k_Y), 0);
    EXPECT_TRUE(std::isnan(result.Y));
    EXPECT_EQ(result.Z, 1);
}

TEST(ScaleVolume, The_result_may_be_the_scale)
{
    Vector scale(4, 16, -2);
    EXPECT_EQ(F3DScaleVolume(scale, k_X | k_Y, scale, k_Z), 0);
    EXPECT_TRUE(scale == Vector(4, 16, -0.03125));
}
