#include "bake/pole_repair.h"

#include "math/rotation_conversions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

namespace
{

using Matrix = C3DRotMatTpl<double>;
using Vector = C3DVector3Tpl<double>;

constexpr double k_Quarter = std::numbers::pi / 2;

double Miss(Vector const & angles, Matrix const & matrix, tagE3DROTORDER order)
{
    Matrix meant;
    F3DEulerToMat(angles, meant, order);
    double miss = 0;
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 3; ++column)
        {
            miss = std::max(miss, std::abs(meant.Get(row, column) - matrix.Get(row, column)));
        }
    }
    return miss;
}

/// Angles by the place of their axis in the order, the one that acts first being the first.
Vector InOrder(clip::ChannelOrder const & order, double first, double middle, double last)
{
    Vector angles(0, 0, 0);
    angles.Set(order.name[2] - 'X', first);
    angles.Set(order.name[1] - 'X', middle);
    angles.Set(order.name[0] - 'X', last);
    return angles;
}

TEST(PoleRepair, Leaves_angles_that_meet_the_matrix)
{
    for (clip::ChannelOrder const & order : clip::k_ChannelOrders)
    {
        for (double const middle : {0.0, 1.0, k_Quarter, -k_Quarter, 2.0})
        {
            Vector angles = InOrder(order, 0.3, middle, -0.2);
            Matrix matrix;
            F3DEulerToMat(angles, matrix, order.order);
            Vector const before = angles;
            EXPECT_FALSE(bake::RepairAtPole(matrix, order, {0, 0, 0}, angles));
            EXPECT_TRUE(angles == before);
        }
    }
}

TEST(PoleRepair, Leaves_what_is_far_from_the_pole_alone)
{
    Vector const angles(0.3, 0.4, 0.5);
    Matrix matrix;
    F3DEulerToMat(angles, matrix, E3DROTORDER_YXZ);
    Vector wrong(1, 2, 3);
    EXPECT_FALSE(bake::RepairAtPole(matrix, clip::k_ChannelOrders[4], angles, wrong));
    EXPECT_EQ(wrong.X, 1);
}

// Both poles and both senses of the outer angles are met, with whole turns in the target.
TEST(PoleRepair, Meets_the_matrix_where_the_extraction_missed_it_and_stays_near_the_target)
{
    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> angle(-10, 10);
    for (clip::ChannelOrder const & order : clip::k_ChannelOrders)
    {
        int repairs = 0;
        for (int round = 0; round < 400; ++round)
        {
            double const free = angle(random);
            double const middle = round % 2 == 0 ? k_Quarter : -k_Quarter;
            // The angle at the pole itself, where one outer angle undoes the other, is zero.
            Vector const exact = InOrder(order, free, middle, (round / 2) % 2 == 0 ? free : -free);
            Matrix matrix;
            F3DEulerToMat(exact, matrix, order.order);
            Vector const target = InOrder(order, angle(random), angle(random), angle(random));
            Vector angles = target;
            F3DMatToEulerUsingTarget(matrix, angles, order.order);
            double const first = angles.Get(order.name[2] - 'X');
            bool const isMissed = Miss(angles, matrix, order.order) > 1.1e-10;
            bool const isRepaired = bake::RepairAtPole(matrix, order, target, angles);
            repairs += isRepaired ? 1 : 0;
            ASSERT_TRUE(isRepaired || !isMissed);
            ASSERT_LT(Miss(angles, matrix, order.order), 2e-10);
            ASSERT_EQ(angles.Get(order.name[2] - 'X'), first);
            for (int axis = 0; axis < 3; ++axis)
            {
                ASSERT_LE(std::abs(angles.Get(axis) - target.Get(axis)), std::numbers::pi + 1e-9);
            }
        }
        EXPECT_GT(repairs, 50) << order.name;
    }
}

TEST(PoleRepair, In_the_belt_about_the_pole_a_millionth_of_a_radian_remains)
{
    std::mt19937_64 random(6);
    std::uniform_real_distribution<double> angle(-3, 3);
    std::uniform_real_distribution<double> exponent(-9, -2);
    for (clip::ChannelOrder const & order : clip::k_ChannelOrders)
    {
        for (int round = 0; round < 400; ++round)
        {
            double const distance = std::pow(10, exponent(random));
            Matrix matrix;
            F3DEulerToMat(InOrder(order, angle(random), k_Quarter - distance, angle(random)), matrix, order.order);
            Vector const target = InOrder(order, angle(random), angle(random), angle(random));
            Vector angles = target;
            F3DMatToEulerUsingTarget(matrix, angles, order.order);
            bake::RepairAtPole(matrix, order, target, angles);
            // Inside the belt the first angle is a share of the free one, whatever the matrix says.
            ASSERT_LT(Miss(angles, matrix, order.order), distance < 1.5e-6 ? 1.5e-6 : 1.1e-10) << distance;
        }
    }
}

} // namespace
