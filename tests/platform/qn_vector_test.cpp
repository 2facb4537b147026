#include "math/platform/qn_vector.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstddef>

namespace
{

TEST(QnVector, Is_three_floats_in_order)
{
    EXPECT_EQ(sizeof(QN_Vector), 12U);
    QN_Vector const vector{1, 2, 3};
    EXPECT_EQ((std::bit_cast<std::array<float, 3>>(vector)), (std::array<float, 3>{1, 2, 3}));
    EXPECT_EQ(offsetof(QN_Vector, X), 0U);
    EXPECT_EQ(offsetof(QN_Vector, Y), 4U);
    EXPECT_EQ(offsetof(QN_Vector, Z), 8U);
}

} // namespace
