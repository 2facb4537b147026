#include "exports/exported.h"

#include "math/co_line.h"
#include "math/co_plane.h"
#include "math/co_point.h"

#include <gtest/gtest.h>

using exported::Constructor;
using exported::Member;

namespace
{

using V = C3DVector3Tpl<double>;

/// The operations are virtual and have no address of their own to take; qualified calls name each symbol.
template <typename Wrapper>
void Identity()
{
    auto * const object = new Wrapper;
    auto type = E3DGEOMTYPE_NONE;
    void * out = nullptr;
    EXPECT_EQ(object->Wrapper::AddRef(), 2U);
    EXPECT_EQ(object->Wrapper::QueryInterface(IID_IUnknown, &out), 0);
    EXPECT_EQ(object->Wrapper::Release(), 2U);
    EXPECT_EQ(object->Wrapper::Release(), 1U);
    EXPECT_EQ(object->Wrapper::GetType(type), 0);
    EXPECT_EQ(object->Wrapper::Release(), 0U);
    Constructor<Wrapper>(Wrapper());
    Member<Wrapper &(Wrapper const &)>(&Wrapper::operator=);
}

} // namespace

TEST(Exports, CoPoint)
{
    Constructor<C3DCoPoint>();
    Constructor<C3DCoPoint>(V(1, 2, 3));
    Identity<C3DCoPoint>();
    C3DCoPoint object;
    V out;
    double number = 0;
    long results = 0;
    results |= object.C3DCoPoint::GetPos(out);
    results |= object.C3DCoPoint::GetDistanceFrom(out, number);
    EXPECT_EQ(results, 0);
}

TEST(Exports, CoLine)
{
    V const v(1, 2, 3);
    Constructor<C3DCoLine>();
    Constructor<C3DCoLine>(v, E3D_AXIS_X);
    Constructor<C3DCoLine>(v, v);
    Identity<C3DCoLine>();
    C3DCoLine object;
    V out;
    double number = 0;
    long results = 0;
    results |= object.C3DCoLine::GetPos(1, out);
    results |= object.C3DCoLine::GetTangent(1, out);
    results |= object.C3DCoLine::GetDistanceFrom(v, number);
    results |= object.C3DCoLine::ProjectOn(v, number);
    EXPECT_EQ(results, 0);
}

TEST(Exports, CoPlane)
{
    V const v(1, 2, 3);
    Constructor<C3DCoPlane>();
    Constructor<C3DCoPlane>(v, E3D_AXIS_X);
    Constructor<C3DCoPlane>(v, v);
    Constructor<C3DCoPlane>(v, E3D_AXIS_X, E3D_AXIS_Y);
    Constructor<C3DCoPlane>(v, v, v);
    Identity<C3DCoPlane>();
    C3DCoPlane object;
    V out;
    V second;
    double number = 0;
    double other = 0;
    long results = 0;
    results |= object.C3DCoPlane::GetPos(1, 2, out);
    results |= object.C3DCoPlane::GetTangents(1, 2, out, second);
    results |= object.C3DCoPlane::GetNormal(1, 2, out);
    results |= object.C3DCoPlane::GetDistanceFrom(v, number);
    results |= object.C3DCoPlane::ProjectOn(v, number, other);
    EXPECT_EQ(results, 0);
}
