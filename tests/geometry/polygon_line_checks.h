#pragma once

/// \file
/// What the tests of a polygon against a segment share.

#include "geometry/marked_record.h"
#include "geometry/task_memory_faults.h"
#include "math/line_intersection.h"
#include "math/platform/result.h"
#include "math/platform/task_memory.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace polygon_test
{

using Vector2 = C3DVector2Tpl<double>;
using Polygon = std::vector<Vector2>;
using test_support::k_MarkedCount;
using test_support::k_MarkedFlags;

inline constexpr unsigned long k_Apart = 4;
inline constexpr unsigned long k_Crossing = 0x10000;

/// A vector from whole numbers too, of which the first would otherwise name an axis.
inline Vector2 Point(double x, double y)
{
    return {x, y};
}

struct Crossing
{
    Vector2 position;
    double t;
};

struct Answer
{
    long result = 0;
    unsigned long flags = k_MarkedFlags;
    unsigned int count = k_MarkedCount;
    std::vector<Crossing> crossings;
};

/// Asks with and without an array, which must agree, and takes the records out of it.
inline Answer Ask(Polygon const & polygon, Vector2 const & a, Vector2 const & b, int orientation = 0)
{
    Answer answer;
    tagS3DGEOMINFO * infos = nullptr;
    answer.result = F2DPolygonVs2DLineIntersection(polygon.size(), polygon.data(), orientation, a, b, answer.flags,
                                                   answer.count, &infos);
    unsigned long flags = k_MarkedFlags;
    unsigned int count = k_MarkedCount;
    EXPECT_EQ(F2DPolygonVs2DLineIntersection(polygon.size(), polygon.data(), orientation, a, b, flags, count, nullptr),
              answer.result);
    EXPECT_EQ(flags, answer.flags);
    EXPECT_EQ(count, answer.count);
    EXPECT_NE(infos, nullptr) << "the array is made whatever is found";
    for (unsigned int i = 0; infos != nullptr && i < answer.count; ++i)
    {
        tagS3DGEOMINFO const & info = infos[i];
        answer.crossings.push_back({Point(info.position.X, info.position.Y), info.u});
        EXPECT_TRUE(test_support::SameBits(info.position.Z, 0.0));
        EXPECT_TRUE(test_support::SameBits(info.u, info.v));
        for (double const value : {info.normal.X, info.normal.Y, info.normal.Z, info.distance})
        {
            EXPECT_TRUE(test_support::IsAsAllocated(value));
        }
    }
    CoTaskMemFree(infos);
    return answer;
}

/// Asks for the crossings with the segment on the X axis from 0 to 10: there t is a tenth of x.
inline Answer AskAlongX(Polygon const & polygon, int orientation = 0)
{
    return Ask(polygon, Point(0, 0), Point(10, 0), orientation);
}

/// Crossings on the X axis at these places, in this order.
inline void ExpectAt(std::vector<double> const & places, Answer const & answer)
{
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.flags, places.empty() ? k_Apart : k_Crossing);
    ASSERT_EQ(answer.crossings.size(), places.size());
    for (std::size_t i = 0; i < places.size(); ++i)
    {
        EXPECT_DOUBLE_EQ(answer.crossings[i].position.X, places[i]) << i;
        EXPECT_EQ(answer.crossings[i].position.Y, 0) << i;
        EXPECT_DOUBLE_EQ(answer.crossings[i].t, places[i] / 10) << i;
    }
}

} // namespace polygon_test
