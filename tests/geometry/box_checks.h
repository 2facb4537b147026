#pragma once

/// \file
/// What the tests of boxes compare.

#include "geometry/vector_checks.h"
#include "math/box.h"

#include <gtest/gtest.h>

namespace geometry_test
{

/// Both corners bit for bit.
inline testing::AssertionResult HasBounds(C3DBaseBox const & box, Vector const & minimum, Vector const & maximum)
{
    testing::AssertionResult const result = HasBits(box.GetMin(), minimum);
    return result ? HasBits(box.GetMax(), maximum) : result;
}

/// Both corners within a distance on each axis.
inline testing::AssertionResult HasBoundsNear(C3DBaseBox const & box, Vector const & minimum, Vector const & maximum,
                                              double tolerance)
{
    testing::AssertionResult const result = IsNear(box.GetMin(), minimum, tolerance);
    return result ? IsNear(box.GetMax(), maximum, tolerance) : result;
}

} // namespace geometry_test
