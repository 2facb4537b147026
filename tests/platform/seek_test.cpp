#include "platform/seek.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{

using math::detail::GetSeekTarget;

constexpr long long farthest = std::numeric_limits<long long>::max();
constexpr long long lowest = std::numeric_limits<long long>::min();
constexpr auto highest = static_cast<unsigned long long>(farthest);

TEST(GetSeekTarget, Moves_both_ways)
{
    EXPECT_EQ(GetSeekTarget(10, 5), 15U);
    EXPECT_EQ(GetSeekTarget(10, -5), 5U);
    EXPECT_EQ(GetSeekTarget(10, 0), 10U);
}

TEST(GetSeekTarget, Stops_at_the_start)
{
    EXPECT_EQ(GetSeekTarget(10, -10), 0U);
    EXPECT_FALSE(GetSeekTarget(10, -11));
    EXPECT_FALSE(GetSeekTarget(0, lowest));
}

TEST(GetSeekTarget, Stops_at_the_largest_distance)
{
    EXPECT_EQ(GetSeekTarget(0, farthest), highest);
    EXPECT_EQ(GetSeekTarget(1, farthest - 1), highest);
    EXPECT_FALSE(GetSeekTarget(1, farthest));
    EXPECT_FALSE(GetSeekTarget(highest, farthest));
    EXPECT_FALSE(GetSeekTarget(highest + 1, 0));
}

TEST(GetSeekTarget, Takes_the_lowest_distance_from_a_base_that_high)
{
    EXPECT_EQ(GetSeekTarget(highest + 1, lowest), 0U);
    EXPECT_FALSE(GetSeekTarget(highest, lowest));
}

} // namespace
