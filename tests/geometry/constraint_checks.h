#pragma once

/// \file
/// What the tests of the corrections of a primitive share.

#include "geometry/constraints_by_steps.h"
#include "geometry/pose_tree.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <vector>

namespace geometry_test
{

using Vector = C3DVector3Tpl<double>;
using Points = std::vector<Vector>;

inline constexpr double k_Nan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double k_Infinity = std::numeric_limits<double>::infinity();

/// What no correction gives by accident.
inline Vector const k_MarkedError(-7001.125, -7002.125, -7003.125);

inline unsigned long CountOf(Points const & points)
{
    return static_cast<unsigned long>(points.size());
}

/// What a correction gave.
struct Correction
{
    long result = 0;
    Vector error = k_MarkedError;
};

/// One of the corrections, under the name of its condition.
struct Operation
{
    char const * name;
    long (C3DBaseSphere::*correct)(Vector const &, Vector *, I3DPose_QN *, Vector &, unsigned long);
    Vector (ConstraintBySteps::*bySteps)();

    Correction Ask(C3DBaseSphere sphere, Points points, Vector const & reference, I3DPose_QN & pose) const
    {
        Correction correction;
        Points const before = points;
        correction.result = (sphere.*correct)(reference, points.data(), &pose, correction.error, CountOf(points));
        for (std::size_t i = 0; i < points.size(); ++i)
        {
            EXPECT_TRUE(test_support::SameBits(points[i], before[i])) << "the array is the caller's";
        }
        return correction;
    }

    /// The same without a pose that does anything.
    Vector AskLocal(C3DBaseSphere const & sphere, Points const & points, Vector const & reference = {0, 0, 0}) const
    {
        PoseNode world;
        Correction const correction = Ask(sphere, points, reference, world);
        EXPECT_EQ(correction.result, S_OK);
        return correction.error;
    }
};

inline void PrintTo(Operation const & operation, std::ostream * stream)
{
    *stream << operation.name;
}

inline constexpr Operation k_Include{"Inclusion", &C3DBaseSphere::GetInclusionError, &ConstraintBySteps::Include};
inline constexpr Operation k_Exclude{"Exclusion", &C3DBaseSphere::GetExclusionError, &ConstraintBySteps::Exclude};
inline constexpr Operation k_PutOnSurface{"OnSurface", &C3DBaseSphere::GetOnSurfaceError,
                                          &ConstraintBySteps::PutOnSurface};

/// The points moved in world space and brought into that of the pose.
inline Points MovedLocal(Points points, Vector const & way, PoseNode & pose)
{
    C3DXfoMatTpl<double> const matrix = pose.GlobalMatrix();
    for (Vector & point : points)
    {
        point.Add(way);
    }
    F3DMapPointsInRef(points.data(), CountOf(points), nullptr, &matrix, 1);
    return points;
}

/// Points of the space of a pose, taken to the world.
inline Points InWorld(Points points, PoseNode & pose)
{
    C3DXfoMatTpl<double> const matrix = pose.GlobalMatrix();
    F3DMapPointsInRef(points.data(), CountOf(points), nullptr, &matrix, 0);
    return points;
}

/// A cluster of points about a middle, in a cube of twice the size.
inline Points RandomPrimitive(test_support::Random & random, Vector const & middle, double size)
{
    Points points(static_cast<std::size_t>(random.Integer(1, 8)));
    for (Vector & point : points)
    {
        point.Set(random.Uniform(-size, size), random.Uniform(-size, size), random.Uniform(-size, size));
        point.Add(middle);
    }
    return points;
}

inline Vector RandomVector(test_support::Random & random, double size)
{
    return {random.Uniform(-size, size), random.Uniform(-size, size), random.Uniform(-size, size)};
}

/// The library gives the bits of the steps, on branches of poses and for spheres on and off their origins.
inline void ExpectBitsOfSteps(Operation const & operation, test_support::Random & random, int trials)
{
    for (int i = 0; i < trials; ++i)
    {
        PoseBranch branch(random, i % 2 == 0);
        double const radius = random.Uniform(0.5, 3.0);
        C3DBaseSphere const sphere(radius, i % 3 == 0 ? Vector(0, 0, 0) : RandomVector(random, radius));
        double const size = random.Uniform(0.0, 1.5) * radius;
        Points const points = InWorld(RandomPrimitive(random, RandomVector(random, 3 * radius), size), branch.leaf);
        Vector const reference = points.back();
        ConstraintBySteps steps(sphere, points, reference, branch.leaf.GlobalMatrix());
        Vector const expected = (steps.*operation.bySteps)();
        Correction const correction = operation.Ask(sphere, points, reference, branch.leaf);
        EXPECT_EQ(correction.result, S_OK);
        EXPECT_TRUE(test_support::SameBits(correction.error, expected)) << steps.Steps() << " steps";
    }
}

/// So does it for coordinates that are no numbers, infinite, huge or null. It ends, in the first place.
inline void ExpectBitsOfStepsForSpecialNumbers(Operation const & operation, test_support::Random & random, int trials)
{
    C3DXfoMatTpl<double> const identity;
    for (int i = 0; i < trials; ++i)
    {
        C3DBaseSphere const sphere(random.Uniform(0.5, 3.0), i % 2 == 0 ? Vector(0, 0, 0) : RandomVector(random, 2));
        Points points(static_cast<std::size_t>(random.Integer(1, 3)));
        for (Vector & point : points)
        {
            point.Set(random.NumberOrSpecial(), random.NumberOrSpecial(), random.NumberOrSpecial());
        }
        Vector const reference = points.front();
        ConstraintBySteps steps(sphere, points, reference, identity);
        Vector const expected = (steps.*operation.bySteps)();
        EXPECT_TRUE(test_support::SameBits(operation.AskLocal(sphere, points, reference), expected));
    }
}

} // namespace geometry_test
