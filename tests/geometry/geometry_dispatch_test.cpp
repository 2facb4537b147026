/// The kinds of geometry objects, and the queries that some of them lack.

#include "math/geometry.h"

#include "geometry/marked_record.h"
#include "geometry/vector_checks.h"
#include "math/bounding_box.h"
#include "math/bounding_cylinder.h"
#include "math/bounding_sphere.h"
#include "math/circle.h"
#include "math/co_line.h"
#include "math/co_plane.h"
#include "math/co_point.h"
#include "math/platform/result.h"
#include "math/transformation.h"
#include "support/virtual_slots.h"

#include <type_traits>

using namespace geometry_test;
using test_support::HasOnly;
using test_support::k_MarkedFlags;
using test_support::k_NoField;
using test_support::MakeMarkedRecord;
using test_support::SlotOf;

namespace
{

constexpr long k_OwnResult = 4711;

/// A pose that no query may ask anything.
class SilentPose : public I3DPose_QN
{
public:
    long GetGlobalTransfo(C3DTransfo & /*out*/) override { return Asked(); }
    long GetGlobalMatrix(C3DXfoMatTpl<double> const ** /*out*/) override { return Asked(); }
    long GetRelativeTransfo(C3DTransfo & /*out*/, I3DPose_QN * /*other*/, unsigned char /*components*/) override
    {
        return Asked();
    }
    long GetGlobalPosition(Vector & /*out*/) override { return Asked(); }
    long GetGlobalScaling(Vector & /*out*/) override { return Asked(); }

private:
    static long Asked()
    {
        ADD_FAILURE() << "the pose was asked";
        return E_FAIL;
    }
};

/// All that a query is given.
struct Arguments
{
    char slot; // 'P', 'S', 'B'
    I3DPose_QN * pose;
    void const * other;
    I3DPose_QN * otherPose;
    unsigned long * flags;
    tagS3DGEOMINFO * info;
    double tolerance;
    double unused;

    bool operator==(Arguments const &) const = default;
};

/// Records the query that reaches it.
class Spy : public C3DMathGeometry
{
public:
    explicit Spy(e3dBaseGeomType type) : C3DMathGeometry(type) {}
    Spy() = default;

    long Intersect_Point(I3DPose_QN * const pose, C3DPoint const & other, I3DPose_QN * const otherPose,
                         unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override
    {
        calls.push_back({'P', pose, &other, otherPose, &flags, info, tolerance, unused});
        return k_OwnResult;
    }
    long Intersect_Sphere(I3DPose_QN * const pose, C3DBaseSphere const & other, I3DPose_QN * const otherPose,
                          unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override
    {
        calls.push_back({'S', pose, &other, otherPose, &flags, info, tolerance, unused});
        return k_OwnResult + 1;
    }
    long Intersect_Box(I3DPose_QN * const pose, C3DBaseBox const & other, I3DPose_QN * const otherPose,
                       unsigned long & flags, tagS3DGEOMINFO * info, double tolerance, double unused) const override
    {
        calls.push_back({'B', pose, &other, otherPose, &flags, info, tolerance, unused});
        return k_OwnResult + 2;
    }

    mutable std::vector<Arguments> calls;
};

e3dBaseGeomType TypeOf(C3DMathGeometry const & geometry)
{
    auto type = static_cast<e3dBaseGeomType>(-1);
    EXPECT_EQ(geometry.GetType(type), 0);
    return type;
}

enum Query
{
    k_Point,
    k_Sphere,
    k_Box,
    k_All
};

/// Asks for contacts with `other` and expects that nothing happens but the result.
void ExpectNothing(C3DMathGeometry const & geometry, Query query, C3DMathGeometry const & other,
                   unsigned long flagsAfter = k_MarkedFlags)
{
    SilentPose pose;
    for (I3DPose_QN * const place : {static_cast<I3DPose_QN *>(&pose), static_cast<I3DPose_QN *>(nullptr)})
    {
        for (bool const hasRecord : {true, false})
        {
            tagS3DGEOMINFO record = MakeMarkedRecord();
            tagS3DGEOMINFO * const info = hasRecord ? &record : nullptr;
            unsigned long flags = k_MarkedFlags;
            long result = 0;
            switch (query)
            {
            case k_Point:
                result = geometry.Intersect_Point(place, C3DPoint(), place, flags, info, 0.1, 0.2);
                break;
            case k_Sphere:
                result = geometry.Intersect_Sphere(place, C3DBaseSphere(), place, flags, info, 0.1, 0.2);
                break;
            case k_Box:
                result = geometry.Intersect_Box(place, C3DBaseBox(), place, flags, info, 0.1, 0.2);
                break;
            case k_All:
                result = geometry.Intersect_All(place, other, place, flags, info, 0.1, 0.2);
                break;
            }
            EXPECT_EQ(result, E_NOTIMPL);
            EXPECT_EQ(flags, flagsAfter);
            EXPECT_TRUE(HasOnly(k_NoField, record));
        }
    }
}

} // namespace

static_assert(std::is_abstract_v<C3DMathGeometry>);
static_assert(std::has_virtual_destructor_v<C3DMathGeometry>);
static_assert(sizeof(e3dBaseGeomType) == 4);
static_assert(std::is_base_of_v<C3DMathGeometry, C3DLine> && std::is_base_of_v<C3DMathGeometry, C3DBBox>);

TEST(Geometry, The_numbering_of_the_kinds_has_gaps)
{
    EXPECT_EQ(E3DGEOMTYPE_NONE, 0);
    EXPECT_EQ(E3DGEOMTYPE_POINT, 1);
    EXPECT_EQ(E3DGEOMTYPE_LINE, 2);
    EXPECT_EQ(E3DGEOMTYPE_CIRCLE, 5);
    EXPECT_EQ(E3DGEOMTYPE_PLANE, 10);
    EXPECT_EQ(E3DGEOMTYPE_CYLINDER, 17);
    EXPECT_EQ(E3DGEOMTYPE_BOX, 18);
    EXPECT_EQ(E3DGEOMTYPE_SPHERE, 20);
    EXPECT_EQ(E3D_INTERSECTION_NONE, 0);
    EXPECT_EQ(E3D_INTERSECTION_POINT, 1);
    EXPECT_EQ(E3D_INTERSECTION_COINCIDENT, 2);
}

TEST(Geometry, The_queries_follow_the_destructor_in_the_order_point_sphere_box)
{
    // Callers in other compilers' objects go by these places. The destructor takes two.
    EXPECT_EQ(SlotOf(&C3DMathGeometry::Intersect_Point), 2);
    EXPECT_EQ(SlotOf(&C3DMathGeometry::Intersect_Sphere), 3);
    EXPECT_EQ(SlotOf(&C3DMathGeometry::Intersect_Box), 4);
}

TEST(Geometry, Every_constructor_gives_the_kind)
{
    Vector const v(1, 2, 3);
    Vector const w(4, 6, 3);
    auto const type = E3DCYLINDERAXIS_X;
    EXPECT_EQ(TypeOf(Spy()), 0);
    EXPECT_EQ(TypeOf(Spy(E3DGEOMTYPE_BOX)), 18);
    EXPECT_EQ(TypeOf(Spy(static_cast<e3dBaseGeomType>(99))), 99);
    for (C3DPoint const & point : {C3DPoint(), C3DPoint(v)})
    {
        EXPECT_EQ(TypeOf(point), 1);
    }
    for (C3DLine const & line : {C3DLine(), C3DLine(v, E3D_AXIS_Y), C3DLine(v, w)})
    {
        EXPECT_EQ(TypeOf(line), 2);
    }
    for (C3DBaseCircle const & circle : {C3DBaseCircle(), C3DBaseCircle(v, 1, v), C3DBaseCircle(v, 1, E3D_AXIS_X),
                                         C3DBaseCircle(v, w, E3D_AXIS_X), C3DBaseCircle(v, w, v)})
    {
        EXPECT_EQ(TypeOf(circle), 5);
    }
    for (C3DPlane const & plane :
         {C3DPlane(), C3DPlane(v, E3D_AXIS_X), C3DPlane(v, v), C3DPlane(v, E3D_AXIS_X, E3D_AXIS_Y), C3DPlane(v, v, w)})
    {
        EXPECT_EQ(TypeOf(plane), 10);
    }
    for (C3DBaseCylinder const & cylinder : {C3DBaseCylinder(), C3DBaseCylinder(1, 2, type), C3DBaseCylinder(1, v, w)})
    {
        EXPECT_EQ(TypeOf(cylinder), 17);
    }
    for (C3DBCylinder const & cylinder : {C3DBCylinder(), C3DBCylinder(1, 2, type), C3DBCylinder(1, v, w)})
    {
        EXPECT_EQ(TypeOf(cylinder), 17);
    }
    for (C3DBaseBox const & box : {C3DBaseBox(), C3DBaseBox(1.0), C3DBaseBox(v), C3DBaseBox(v, w)})
    {
        EXPECT_EQ(TypeOf(box), 18);
    }
    for (C3DBBox const & box : {C3DBBox(), C3DBBox(1.0), C3DBBox(v), C3DBBox(v, w)})
    {
        EXPECT_EQ(TypeOf(box), 18);
    }
    for (C3DBaseSphere const & sphere : {C3DBaseSphere(), C3DBaseSphere(1), C3DBaseSphere(1, v)})
    {
        EXPECT_EQ(TypeOf(sphere), 20);
    }
    for (C3DBSphere const & sphere : {C3DBSphere(), C3DBSphere(1), C3DBSphere(1, v)})
    {
        EXPECT_EQ(TypeOf(sphere), 20);
    }
}

TEST(Geometry, Copies_carry_the_kind)
{
    Spy const source(E3DGEOMTYPE_PLANE);
    Spy const copy(source); // NOLINT(performance-unnecessary-copy-initialization): the copy is what is tested
    EXPECT_EQ(TypeOf(copy), E3DGEOMTYPE_PLANE);
}

TEST(Geometry, Line_plane_circle_and_cylinders_lack_every_query)
{
    C3DLine const line;
    C3DPlane const plane;
    C3DBaseCircle const circle;
    C3DBaseCylinder const cylinder;
    C3DBCylinder const boundingCylinder;
    C3DCoLine const wrappedLine;
    C3DCoPlane const wrappedPlane;
    C3DPoint const point;
    C3DBaseBox const box;
    C3DBaseSphere const sphere;
    for (C3DMathGeometry const * geometry :
         {static_cast<C3DMathGeometry const *>(&line), static_cast<C3DMathGeometry const *>(&plane),
          static_cast<C3DMathGeometry const *>(&circle), static_cast<C3DMathGeometry const *>(&cylinder),
          static_cast<C3DMathGeometry const *>(&boundingCylinder), static_cast<C3DMathGeometry const *>(&wrappedLine),
          static_cast<C3DMathGeometry const *>(&wrappedPlane)})
    {
        SCOPED_TRACE(TypeOf(*geometry));
        for (Query const query : {k_Point, k_Sphere, k_Box})
        {
            ExpectNothing(*geometry, query, point);
        }
        ExpectNothing(*geometry, k_All, point);
        ExpectNothing(*geometry, k_All, box);
        ExpectNothing(*geometry, k_All, sphere);
        ExpectNothing(*geometry, k_All, line, 4);
        ExpectNothing(*geometry, k_All, *geometry, 4);
    }
}

TEST(Geometry, Boxes_lack_the_query_for_a_point_alone)
{
    C3DPoint const point;
    ExpectNothing(C3DBaseBox(2.0), k_Point, point);
    ExpectNothing(C3DBaseBox(2.0), k_All, point);
    ExpectNothing(C3DBBox(2.0), k_Point, point);
    ExpectNothing(C3DBBox(2.0), k_All, point);
}

TEST(Geometry, Intersect_All_chooses_the_query_by_the_kind_of_the_other)
{
    C3DPoint const point;
    C3DCoPoint const wrappedPoint;
    C3DBaseBox const box;
    C3DBBox const boundingBox;
    C3DBaseSphere const sphere;
    C3DBSphere const boundingSphere;
    struct
    {
        C3DMathGeometry const * other;
        char slot;
        long result;
    } const rows[] = {
        {&point, 'P', k_OwnResult},      {&wrappedPoint, 'P', k_OwnResult},
        {&box, 'B', k_OwnResult + 2},    {&boundingBox, 'B', k_OwnResult + 2},
        {&sphere, 'S', k_OwnResult + 1}, {&boundingSphere, 'S', k_OwnResult + 1},
    };
    SilentPose pose;
    SilentPose otherPose;
    tagS3DGEOMINFO record = MakeMarkedRecord();
    unsigned long flags = k_MarkedFlags;
    // The kind of the object itself plays no part.
    for (int const ownType : {0, 1, 2, 18, 20})
    {
        Spy const spy(static_cast<e3dBaseGeomType>(ownType));
        for (auto const & row : rows)
        {
            spy.calls.clear();
            EXPECT_EQ(spy.Intersect_All(&pose, *row.other, &otherPose, flags, &record, 0.25, 0.75), row.result);
            Arguments const expected{row.slot, &pose, row.other, &otherPose, &flags, &record, 0.25, 0.75};
            EXPECT_EQ(spy.calls, std::vector<Arguments>{expected});
            spy.calls.clear();
            EXPECT_EQ(spy.Intersect_All(nullptr, *row.other, nullptr, flags, nullptr, -1, 2), row.result);
            Arguments const withoutPoses{row.slot, nullptr, row.other, nullptr, &flags, nullptr, -1, 2};
            EXPECT_EQ(spy.calls, std::vector<Arguments>{withoutPoses});
        }
    }
    EXPECT_EQ(flags, k_MarkedFlags);
    EXPECT_TRUE(HasOnly(k_NoField, record));
}

TEST(Geometry, Intersect_All_with_another_kind_tells_of_no_contact)
{
    Spy const spy(E3DGEOMTYPE_POINT);
    for (int type = -1; type <= 32; ++type)
    {
        if (type != 1 && type != 18 && type != 20)
        {
            ExpectNothing(spy, k_All, Spy(static_cast<e3dBaseGeomType>(type)), 4);
        }
    }
    ExpectNothing(spy, k_All, C3DLine(), 4);
    ExpectNothing(spy, k_All, C3DPlane(), 4);
    ExpectNothing(spy, k_All, C3DBaseCircle(), 4);
    ExpectNothing(spy, k_All, C3DBaseCylinder(), 4);
    ExpectNothing(spy, k_All, C3DBCylinder(), 4);
    ExpectNothing(spy, k_All, C3DCoLine(), 4);
    ExpectNothing(C3DPoint(), k_All, C3DCoPlane(), 4);
    EXPECT_TRUE(spy.calls.empty());
}
