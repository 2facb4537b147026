/// The bounding cylinder, which adds a name alone.

#include "geometry/vector_checks.h"
#include "math/bounding_cylinder.h"
#include "math/platform/result.h"

#include <gtest/gtest.h>

#include <type_traits>

using namespace geometry_test;

namespace
{

/// Radius, length and one surface point, which tells the axis.
testing::AssertionResult IsLike(C3DBaseCylinder const & cylinder, C3DBaseCylinder const & expected)
{
    double radii[2] = {k_Mark, k_Mark};
    double lengths[2] = {k_Mark, k_Mark};
    Vector points[2];
    cylinder.GetRadius(radii[0]);
    expected.GetRadius(radii[1]);
    cylinder.GetLength(lengths[0]);
    expected.GetLength(lengths[1]);
    cylinder.GetPos(0.3, 0.5, points[0]);
    expected.GetPos(0.3, 0.5, points[1]);
    if (!SameBits(radii[0], radii[1]) || !SameBits(lengths[0], lengths[1]))
    {
        return testing::AssertionFailure() << "radius " << radii[0] << " and length " << lengths[0] << " where "
                                           << radii[1] << " and " << lengths[1] << " are expected";
    }
    return HasBits(points[0], points[1]);
}

} // namespace

static_assert(std::has_virtual_destructor_v<C3DBCylinder>);
static_assert(std::is_base_of_v<C3DBaseCylinder, C3DBCylinder>);
static_assert(sizeof(C3DBCylinder) == sizeof(C3DBaseCylinder));

TEST(BoundingCylinder, Has_the_three_constructors_of_the_cylinder)
{
    EXPECT_TRUE(IsLike(C3DBCylinder(), C3DBaseCylinder()));
    EXPECT_TRUE(IsLike(C3DBCylinder(3, 4, E3DCYLINDERAXIS_Z), C3DBaseCylinder(3, 4, E3DCYLINDERAXIS_Z)));
    EXPECT_TRUE(IsLike(C3DBCylinder(-3, 4, E3DCYLINDERAXIS_Y_AGAIN), C3DBaseCylinder(1e-6, 4, E3DCYLINDERAXIS_Y)));
    Vector const start(1, 2, 3);
    Vector const end(-4, 5, 7);
    EXPECT_TRUE(IsLike(C3DBCylinder(3, start, end), C3DBaseCylinder(3, start, end)));
}

TEST(BoundingCylinder, Knows_its_kind_and_is_copied_whole)
{
    C3DBCylinder const source(3, Vector(1, 2, 3), Vector(-4, 5, 7));
    C3DBCylinder const copy(source);
    C3DBCylinder assigned;
    assigned = source;
    EXPECT_TRUE(IsLike(copy, source));
    EXPECT_TRUE(IsLike(assigned, source));
    C3DBCylinder const cylinders[] = {C3DBCylinder(), C3DBCylinder(3, 4, E3DCYLINDERAXIS_X), source, copy};
    for (C3DBCylinder const & cylinder : cylinders)
    {
        e3dBaseGeomType type = E3DGEOMTYPE_NONE;
        EXPECT_EQ(cylinder.GetType(type), S_OK);
        EXPECT_EQ(type, 17);
    }
}
