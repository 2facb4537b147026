/// Points, lines and planes as reference-counted objects.

#include "geometry/plane_parts.h"
#include "geometry/vector_checks.h"
#include "math/co_line.h"
#include "math/co_plane.h"
#include "math/co_point.h"
#include "math/platform/result.h"
#include "support/virtual_slots.h"

#include <memory>
#include <type_traits>

using namespace geometry_test;
using test_support::SlotOf;

namespace
{

struct PointTraits
{
    using Wrapper = C3DCoPoint;
    using Primitive = C3DPoint;
    using Read = I3DReadPoint_QN;
    static constexpr _GUID k_ReadId = IID_I3DReadPoint_QN;
    static constexpr e3dBaseGeomType k_Type = E3DGEOMTYPE_POINT;
};

struct LineTraits
{
    using Wrapper = C3DCoLine;
    using Primitive = C3DLine;
    using Read = I3DReadCurve_QN;
    static constexpr _GUID k_ReadId = IID_I3DReadCurve_QN;
    static constexpr e3dBaseGeomType k_Type = E3DGEOMTYPE_LINE;
};

struct PlaneTraits
{
    using Wrapper = C3DCoPlane;
    using Primitive = C3DPlane;
    using Read = I3DReadSurface_QN;
    static constexpr _GUID k_ReadId = IID_I3DReadSurface_QN;
    static constexpr e3dBaseGeomType k_Type = E3DGEOMTYPE_PLANE;
};

/// Counts the ends of a wrapper's life, and remembers that it was addressed through its own destructor.
template <typename Wrapper>
struct Mortal : Wrapper
{
    explicit Mortal(int & count) : deaths(count) {}
    Mortal(Mortal const & other) = default;
    Mortal & operator=(Mortal const & other) = delete;
    ~Mortal() override { ++deaths; }

    int & deaths;
};

/// The references to an object, seen through one of its interfaces.
template <typename Counted>
unsigned long CountOf(Counted & object)
{
    object.AddRef();
    return object.Release();
}

struct Release
{
    template <typename Counted>
    void operator()(Counted * object) const
    {
        object->Release();
    }
};

template <typename Counted>
using Owner = std::unique_ptr<Counted, Release>;

template <typename Interface, typename Object>
Interface * Ask(Object & object, _GUID const & iid)
{
    void * out = &object;
    EXPECT_EQ(object.QueryInterface(iid, &out), S_OK);
    return static_cast<Interface *>(out);
}

template <typename Object>
void ExpectNoInterface(Object & object, _GUID const & iid)
{
    unsigned long const count = CountOf(object);
    void * out = &object;
    EXPECT_EQ(object.QueryInterface(iid, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(CountOf(object), count);
}

template <typename Traits>
class CoWrapper : public testing::Test
{
protected:
    /// An object and its two interfaces, with one reference for each of the three.
    struct Interfaces
    {
        int deaths = 0;
        Mortal<typename Traits::Wrapper> * object = new Mortal<typename Traits::Wrapper>(deaths);
        typename Traits::Read * read = Ask<typename Traits::Read>(*object, Traits::k_ReadId);
        I3DImplicitGeometry * kind = Ask<I3DImplicitGeometry>(*object, IID_I3DImplicitGeometry);
    };
};
using AllTraits = testing::Types<PointTraits, LineTraits, PlaneTraits>;
TYPED_TEST_SUITE(CoWrapper, AllTraits);

} // namespace

TYPED_TEST(CoWrapper, Derives_from_its_primitive_and_both_interfaces)
{
    using Wrapper = typename TypeParam::Wrapper;
    static_assert(std::is_base_of_v<typename TypeParam::Primitive, Wrapper>);
    static_assert(std::is_base_of_v<typename TypeParam::Read, Wrapper>);
    static_assert(std::is_base_of_v<I3DImplicitGeometry, Wrapper>);
    static_assert(std::has_virtual_destructor_v<Wrapper> && std::is_destructible_v<Wrapper>);
    // In this order, and the count behind them.
    Wrapper object;
    auto const at = [](auto const * part) { return reinterpret_cast<char const *>(part); };
    char const * const start = at(&object);
    EXPECT_EQ(at(static_cast<typename TypeParam::Primitive *>(&object)), start);
    EXPECT_EQ(at(static_cast<typename TypeParam::Read *>(&object)) - start,
              static_cast<std::ptrdiff_t>(sizeof(typename TypeParam::Primitive)));
    EXPECT_EQ(at(static_cast<I3DImplicitGeometry *>(&object)) - at(static_cast<typename TypeParam::Read *>(&object)),
              static_cast<std::ptrdiff_t>(sizeof(void *)));
    EXPECT_EQ(sizeof object, sizeof(typename TypeParam::Primitive) + 2 * sizeof(void *) + sizeof(unsigned long));
}

TYPED_TEST(CoWrapper, Starts_with_one_reference_and_counts)
{
    int deaths = 0;
    auto * const object = new Mortal<typename TypeParam::Wrapper>(deaths);
    EXPECT_EQ(object->AddRef(), 2U);
    EXPECT_EQ(object->AddRef(), 3U);
    EXPECT_EQ(object->Release(), 2U);
    EXPECT_EQ(object->Release(), 1U);
    EXPECT_EQ(deaths, 0);
    EXPECT_EQ(object->Release(), 0U);
    EXPECT_EQ(deaths, 1);
}

TYPED_TEST(CoWrapper, Interfaces_share_one_count)
{
    typename TestFixture::Interfaces all;
    EXPECT_EQ(CountOf(*all.object), 3U);
    EXPECT_EQ(CountOf(*all.read), 3U);
    EXPECT_EQ(CountOf(*all.kind), 3U);
    EXPECT_EQ(all.kind->AddRef(), 4U);
    EXPECT_EQ(all.read->AddRef(), 5U);
    EXPECT_EQ(all.object->Release(), 4U);
    EXPECT_EQ(all.kind->Release(), 3U);
    EXPECT_EQ(all.read->Release(), 2U);
    EXPECT_EQ(all.kind->Release(), 1U);
    EXPECT_EQ(all.deaths, 0);
    EXPECT_EQ(all.object->Release(), 0U);
    EXPECT_EQ(all.deaths, 1);
}

TYPED_TEST(CoWrapper, The_last_reference_deletes_through_any_interface)
{
    {
        typename TestFixture::Interfaces all;
        all.object->Release();
        all.kind->Release();
        EXPECT_EQ(all.deaths, 0);
        EXPECT_EQ(all.read->Release(), 0U);
        EXPECT_EQ(all.deaths, 1);
    }
    {
        typename TestFixture::Interfaces all;
        all.object->Release();
        all.read->Release();
        EXPECT_EQ(all.deaths, 0);
        EXPECT_EQ(all.kind->Release(), 0U);
        EXPECT_EQ(all.deaths, 1);
    }
}

TYPED_TEST(CoWrapper, Each_interface_gives_the_other_and_one_identity)
{
    using Read = typename TypeParam::Read;
    typename TestFixture::Interfaces all;
    auto & object = *all.object;
    EXPECT_EQ(all.read, static_cast<Read *>(&object));
    EXPECT_EQ(all.kind, static_cast<I3DImplicitGeometry *>(&object));
    EXPECT_EQ(Ask<Read>(*all.kind, TypeParam::k_ReadId), all.read);
    EXPECT_EQ(Ask<Read>(*all.read, TypeParam::k_ReadId), all.read);
    EXPECT_EQ(Ask<I3DImplicitGeometry>(*all.read, IID_I3DImplicitGeometry), all.kind);
    EXPECT_EQ(Ask<I3DImplicitGeometry>(*all.kind, IID_I3DImplicitGeometry), all.kind);
    auto * const identity = Ask<IUnknown>(object, IID_IUnknown);
    EXPECT_EQ(Ask<IUnknown>(*all.read, IID_IUnknown), identity);
    EXPECT_EQ(Ask<IUnknown>(*all.kind, IID_IUnknown), identity);
    EXPECT_EQ(identity, static_cast<IUnknown *>(all.read));
    EXPECT_EQ(CountOf(object), 10U) << "each answer is one reference";
    // The identity works as an interface.
    EXPECT_EQ(Ask<I3DImplicitGeometry>(*identity, IID_I3DImplicitGeometry), all.kind);
    EXPECT_EQ(identity->AddRef(), 12U);
    for (unsigned long left = 12; left-- != 0;)
    {
        EXPECT_EQ(all.deaths, 0);
        EXPECT_EQ(identity->Release(), left);
    }
    EXPECT_EQ(all.deaths, 1);
}

TYPED_TEST(CoWrapper, After_a_query_and_one_release_the_object_lives)
{
    int deaths = 0;
    auto * const object = new Mortal<typename TypeParam::Wrapper>(deaths);
    auto * const kind = Ask<I3DImplicitGeometry>(*object, IID_I3DImplicitGeometry);
    EXPECT_EQ(kind->Release(), 1U);
    EXPECT_EQ(deaths, 0);
    EXPECT_EQ(object->Release(), 0U);
    EXPECT_EQ(deaths, 1);
}

TYPED_TEST(CoWrapper, Answers_to_its_own_read_interface_only)
{
    typename TypeParam::Wrapper object;
    for (_GUID const & iid : {IID_I3DReadPoint_QN, IID_I3DReadCurve_QN, IID_I3DReadSurface_QN})
    {
        if (iid != TypeParam::k_ReadId)
        {
            ExpectNoInterface(object, iid);
        }
    }
    ExpectNoInterface(object, _GUID{});
}

TYPED_TEST(CoWrapper, Identifiers_are_compared_in_all_sixteen_bytes)
{
    typename TypeParam::Wrapper object;
    auto & kind = static_cast<I3DImplicitGeometry &>(object);
    for (_GUID const & iid : {IID_IUnknown, TypeParam::k_ReadId, IID_I3DImplicitGeometry})
    {
        for (unsigned byte = 0; byte < sizeof iid; ++byte)
        {
            _GUID changed = iid;
            reinterpret_cast<unsigned char *>(&changed)[byte] ^= 0x80U;
            ExpectNoInterface(object, changed);
            ExpectNoInterface(kind, changed);
        }
    }
}

TYPED_TEST(CoWrapper, A_null_output_is_refused)
{
    typename TypeParam::Wrapper object;
    EXPECT_EQ(object.QueryInterface(IID_IUnknown, nullptr), E_POINTER);
    EXPECT_EQ(CountOf(object), 1U);
}

TYPED_TEST(CoWrapper, Tells_its_kind_from_every_side)
{
    typename TypeParam::Wrapper const object;
    auto type = E3DGEOMTYPE_NONE;
    EXPECT_EQ(object.GetType(type), S_OK);
    EXPECT_EQ(type, TypeParam::k_Type);
    type = E3DGEOMTYPE_NONE;
    EXPECT_EQ(static_cast<I3DImplicitGeometry const &>(object).GetType(type), S_OK);
    EXPECT_EQ(type, TypeParam::k_Type);
    type = E3DGEOMTYPE_NONE;
    EXPECT_EQ(static_cast<C3DMathGeometry const &>(object).GetType(type), S_OK);
    EXPECT_EQ(type, TypeParam::k_Type);
}

TYPED_TEST(CoWrapper, A_copy_starts_with_one_reference_of_its_own)
{
    int deaths = 0;
    auto * const source = new Mortal<typename TypeParam::Wrapper>(deaths);
    source->AddRef();
    source->AddRef();
    auto * const copy = new Mortal<typename TypeParam::Wrapper>(*source);
    EXPECT_EQ(CountOf(*copy), 1U);
    EXPECT_EQ(CountOf(*source), 3U);
    EXPECT_EQ(copy->Release(), 0U);
    EXPECT_EQ(deaths, 1);
    source->Release();
    source->Release();
    EXPECT_EQ(source->Release(), 0U);
    EXPECT_EQ(deaths, 2);
}

TYPED_TEST(CoWrapper, Assignment_leaves_the_references_with_their_objects)
{
    using Wrapper = typename TypeParam::Wrapper;
    Owner<Wrapper> const source(new Wrapper);
    Owner<Wrapper> const target(new Wrapper);
    source->AddRef();
    target->AddRef();
    target->AddRef();
    EXPECT_EQ(&(*target = *source), target.get());
    EXPECT_EQ(CountOf(*source), 2U);
    EXPECT_EQ(CountOf(*target), 3U);
    auto const & self = *target;
    *target = self;
    EXPECT_EQ(CountOf(*target), 3U);
    source->Release();
    target->Release();
    target->Release();
}

TYPED_TEST(CoWrapper, The_virtual_destructor_serves_the_primitive_too)
{
    int deaths = 0;
    std::unique_ptr<C3DMathGeometry> geometry(new Mortal<typename TypeParam::Wrapper>(deaths));
    geometry.reset();
    EXPECT_EQ(deaths, 1);
}

TEST(CoPoint, Is_read_through_its_interface)
{
    Owner<C3DCoPoint> const object(new C3DCoPoint(Vector(1, 2, 3)));
    auto & read = static_cast<I3DReadPoint_QN &>(*object);
    Vector position = MarkedVector();
    double distance = k_Mark;
    EXPECT_EQ(read.GetPos(position), S_OK);
    EXPECT_TRUE(SameBits(position, Vector(1, 2, 3)));
    EXPECT_EQ(read.GetDistanceFrom(Vector(1, 6, 0), distance), S_OK);
    EXPECT_EQ(distance, 5);
    object->SetPos(Vector(1, 6, 1)); // the client sees what its maker does
    read.GetDistanceFrom(Vector(1, 6, 0), distance);
    EXPECT_EQ(distance, 1);
    C3DCoPoint const constant(*object);
    EXPECT_EQ(constant.GetPos(position), S_OK);
    EXPECT_TRUE(SameBits(position, Vector(1, 6, 1)));
    EXPECT_EQ(constant.GetDistanceFrom(Vector(1, 6, 3), distance), S_OK);
    EXPECT_EQ(distance, 2);
    C3DCoPoint assigned;
    EXPECT_EQ(assigned.GetPos(position), S_OK);
    EXPECT_TRUE(SameBits(position, Vector(0, 0, 0)));
    assigned = constant;
    assigned.GetPos(position);
    EXPECT_TRUE(SameBits(position, Vector(1, 6, 1)));
}

TEST(CoLine, Is_read_through_its_interface)
{
    Owner<C3DCoLine> const object(new C3DCoLine(Vector(1, 2, 3), Vector(0, 4, 0)));
    auto & read = static_cast<I3DReadCurve_QN &>(*object);
    Vector out = MarkedVector();
    double number = k_Mark;
    EXPECT_EQ(read.GetPos(0.5, out), S_OK);
    EXPECT_TRUE(SameBits(out, Vector(1, 4, 3)));
    EXPECT_EQ(read.GetTangent(k_Nan, out), S_OK);
    EXPECT_TRUE(SameBits(out, Vector(0, 4, 0)));
    EXPECT_EQ(read.GetDistanceFrom(Vector(4, 100, -1), number), S_OK);
    EXPECT_EQ(number, 5);
    EXPECT_EQ(read.ProjectOn(Vector(4, 4, -1), number), S_OK);
    EXPECT_EQ(number, 0.5);
    C3DCoLine const constant(*object);
    EXPECT_EQ(constant.GetPos(0.5, out), S_OK);
    EXPECT_TRUE(SameBits(out, Vector(1, 4, 3)));
    EXPECT_EQ(constant.GetTangent(0, out), S_OK);
    EXPECT_TRUE(SameBits(out, Vector(0, 4, 0)));
    EXPECT_EQ(constant.GetDistanceFrom(Vector(4, 100, -1), number), S_OK);
    EXPECT_EQ(number, 5);
    EXPECT_EQ(constant.ProjectOn(Vector(4, 10, -1), number), S_OK);
    EXPECT_EQ(number, 2);
    C3DCoLine assigned(Vector(5, 5, 5), E3D_AXIS_Z);
    assigned.GetPos(2, out);
    EXPECT_TRUE(SameBits(out, Vector(5, 5, 7)));
    assigned = constant;
    assigned.GetPos(1, out);
    EXPECT_TRUE(SameBits(out, Vector(1, 6, 3)));
    C3DCoLine().GetTangent(0, out);
    EXPECT_TRUE(SameBits(out, Vector(1, 0, 0)));
}

TEST(CoPlane, Is_read_through_its_interface)
{
    Owner<C3DCoPlane> const object(new C3DCoPlane(Vector(1, 2, 3), Vector(2, 0, 0), Vector(5, 3, 0)));
    auto & read = static_cast<I3DReadSurface_QN &>(*object);
    Vector out = MarkedVector();
    Vector second = MarkedVector();
    double u = k_Mark;
    double v = k_Mark;
    EXPECT_EQ(read.GetPos(3, -0.5, out), S_OK);
    EXPECT_TRUE(Same(out, Vector(7, -4, 3)));
    EXPECT_EQ(read.GetTangents(k_Nan, 0, out, second), S_OK);
    EXPECT_TRUE(Same(out, Vector(2, 0, 0)));
    EXPECT_TRUE(Same(second, Vector(0, 12, 0)));
    EXPECT_EQ(read.GetNormal(0, k_Nan, out), S_OK);
    EXPECT_TRUE(Same(out, Vector(0, 0, 6)));
    for (double const height : {5.0, -5.0})
    {
        EXPECT_EQ(read.GetDistanceFrom(Vector(9, 9, 3 + height), u), S_OK);
        EXPECT_DOUBLE_EQ(u, 5) << "never negative";
    }
    EXPECT_EQ(read.ProjectOn(Vector(5, 26, 9), u, v), S_OK);
    EXPECT_EQ(u, 2);
    EXPECT_EQ(v, 2);
    C3DCoPlane const constant(*object);
    EXPECT_TRUE(Same(constant, PlaneParts(*object)));
    EXPECT_EQ(constant.GetDistanceFrom(Vector(9, 9, -2), u), S_OK);
    EXPECT_DOUBLE_EQ(u, 5);
    EXPECT_EQ(constant.ProjectOn(Vector(5, 26, 9), u, v), S_OK);
    EXPECT_EQ(v, 2);
    C3DCoPlane assigned;
    EXPECT_TRUE(Same(assigned, PlaneParts(C3DPlane())));
    assigned = constant;
    EXPECT_TRUE(Same(assigned, PlaneParts(constant)));
}

TEST(CoPlane, Constructors_are_those_of_the_plane)
{
    Vector const origin(1, 2, 3);
    Vector const normal(3, -4, 0.5);
    EXPECT_TRUE(Same(C3DCoPlane(origin, E3D_AXIS_Y), PlaneParts(C3DPlane(origin, E3D_AXIS_Y))));
    EXPECT_TRUE(Same(C3DCoPlane(origin, normal), PlaneParts(C3DPlane(origin, normal))));
    EXPECT_TRUE(Same(C3DCoPlane(origin, E3D_AXIS_Y, E3D_AXIS_X), PlaneParts(C3DPlane(origin, E3D_AXIS_Y, E3D_AXIS_X))));
    EXPECT_TRUE(Same(C3DCoPlane(origin, normal, origin), PlaneParts(C3DPlane(origin, normal, origin))));
}

TEST(CoPlane, ProjectOn_passes_the_failure_of_a_null_tangent_on)
{
    C3DCoPlane object(Vector(1, 2, 3), Vector(0, 0, 0));
    double u = k_Mark;
    double v = k_Mark;
    EXPECT_EQ(static_cast<I3DReadSurface_QN &>(object).ProjectOn(Vector(4, 5, 6), u, v), E_UNEXPECTED);
    EXPECT_EQ(u, 0);
    EXPECT_EQ(v, k_Mark);
}

TEST(CoInterfaces, Have_their_operations_behind_the_three_of_the_root)
{
    // Clients of other compilers go by these places.
    EXPECT_EQ(SlotOf(&IUnknown::QueryInterface), 0);
    EXPECT_EQ(SlotOf(&IUnknown::AddRef), 1);
    EXPECT_EQ(SlotOf(&IUnknown::Release), 2);
    EXPECT_EQ(SlotOf(&I3DImplicitGeometry::GetType), 3);
    EXPECT_EQ(SlotOf(&I3DReadPoint_QN::GetPos), 3);
    EXPECT_EQ(SlotOf(&I3DReadPoint_QN::GetDistanceFrom), 4);
    EXPECT_EQ(SlotOf(&I3DReadCurve_QN::GetPos), 3);
    EXPECT_EQ(SlotOf(&I3DReadCurve_QN::GetTangent), 4);
    EXPECT_EQ(SlotOf(&I3DReadCurve_QN::GetDistanceFrom), 5);
    EXPECT_EQ(SlotOf(&I3DReadCurve_QN::ProjectOn), 6);
    EXPECT_EQ(SlotOf(&I3DReadSurface_QN::GetPos), 3);
    EXPECT_EQ(SlotOf(&I3DReadSurface_QN::GetTangents), 4);
    EXPECT_EQ(SlotOf(&I3DReadSurface_QN::GetNormal), 5);
    EXPECT_EQ(SlotOf(&I3DReadSurface_QN::GetDistanceFrom), 6);
    EXPECT_EQ(SlotOf(&I3DReadSurface_QN::ProjectOn), 7);
}

TEST(CoIdentifiers, Are_the_published_ones)
{
    _GUID const kind{0xB1BCC591, 0xBFFD, 0x11D0, {0x96, 0xC3, 0x00, 0xA0, 0x24, 0x3E, 0x34, 0x63}};
    _GUID read{0xD4803730, 0x8C05, 0x11D0, {0x84, 0xD5, 0x00, 0xA0, 0x24, 0x3E, 0x35, 0x43}};
    EXPECT_EQ(IID_I3DImplicitGeometry, kind);
    EXPECT_EQ(IID_I3DReadPoint_QN, read);
    ++read.Data1;
    EXPECT_EQ(IID_I3DReadCurve_QN, read);
    ++read.Data1;
    EXPECT_EQ(IID_I3DReadSurface_QN, read);
}
