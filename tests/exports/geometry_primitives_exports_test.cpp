#include "exports/contact_queries.h"
#include "exports/exported.h"

#include "math/circle.h"
#include "math/geometry.h"
#include "math/line.h"
#include "math/plane.h"
#include "math/point.h"

using exported::Constructor;
using exported::Member;

namespace
{

using V = C3DVector3Tpl<double>;
using M = C3DXfoMatTpl<double>;
using Axis = tagE3DAXISTYPE;

/// Gives the base's constructors an object to make; the queries are those of a point.
struct Derived : C3DMathGeometry
{
    Derived() = default;
    explicit Derived(e3dBaseGeomType type) : C3DMathGeometry(type) {}

    long Intersect_Point(I3DPose_QN * const /*pose*/, C3DPoint const & /*other*/, I3DPose_QN * const /*otherPose*/,
                         unsigned long & /*flags*/, tagS3DGEOMINFO * /*info*/, double /*tolerance*/,
                         double /*unused*/) const override
    {
        return 0;
    }
    long Intersect_Sphere(I3DPose_QN * const /*pose*/, C3DBaseSphere const & /*other*/,
                          I3DPose_QN * const /*otherPose*/, unsigned long & /*flags*/, tagS3DGEOMINFO * /*info*/,
                          double /*tolerance*/, double /*unused*/) const override
    {
        return 0;
    }
    long Intersect_Box(I3DPose_QN * const /*pose*/, C3DBaseBox const & /*other*/, I3DPose_QN * const /*otherPose*/,
                       unsigned long & /*flags*/, tagS3DGEOMINFO * /*info*/, double /*tolerance*/,
                       double /*unused*/) const override
    {
        return 0;
    }
};

} // namespace

TEST(Exports, Geometry)
{
    using G = C3DMathGeometry;
    Constructor<Derived>();
    Constructor<Derived>(E3DGEOMTYPE_BOX);
    Constructor<Derived>(Derived());
    Member<G &(G const &)>(&G::operator=);
    Member<long(e3dBaseGeomType &) const>(&G::GetType);
    Member<long(I3DPose_QN *, G const &, I3DPose_QN *, unsigned long &, tagS3DGEOMINFO *, double, double) const>(
        &G::Intersect_All);
}

TEST(Exports, Point)
{
    using P = C3DPoint;
    Constructor<P>();
    Constructor<P>(V(1, 2, 3));
    Member<void(V const &)>(&P::SetPos);
    Member<long(V &) const>(&P::GetPos);
    Member<long(V const &, double &) const>(&P::GetDistanceFrom);
    exported::ContactQueries<P>();
}

TEST(Exports, Line)
{
    using L = C3DLine;
    V const v(1, 2, 3);
    Constructor<L>();
    Constructor<L>(v, E3D_AXIS_X);
    Constructor<L>(v, v);
    Member<void(L const &)>(&L::Set);
    Member<void(V const &)>(&L::SetOrigin);
    Member<void(V const &)>(&L::SetTangent);
    Member<void(V const &, V const &)>(&L::SetFromTwoPoints);
    Member<long(double, V &) const>(&L::GetPos);
    Member<long(double, V &) const>(&L::GetTangent);
    Member<long(V const &, double &) const>(&L::ProjectOn);
    Member<void(V const &, V &) const>(&L::GetMinProjectionVector);
    Member<long(V const &, double &) const>(&L::GetDistanceFrom);
    Member<tagE3D_INTERSECTION_STATUS(L const &, double *, V &, double, double) const>(&L::GetClosestPointToOtherLine);
    Member<L &(L const &, M const &)>(&L::Mul);
    exported::ContactQueries<L>();
}

TEST(Exports, Plane)
{
    using P = C3DPlane;
    V const v(1, 2, 3);
    Constructor<P>();
    Constructor<P>(v, E3D_AXIS_X);
    Constructor<P>(v, v);
    Constructor<P>(v, E3D_AXIS_X, E3D_AXIS_Y);
    Constructor<P>(v, v, v);
    Member<void(P const &)>(&P::Set);
    Member<void(V const &)>(&P::SetOrigin);
    Member<void(V const &)>(&P::SetNormal);
    Member<void(V const &, V const &)>(&P::SetTangents);
    Member<long(double, double, V &) const>(&P::GetPos);
    Member<long(double, double, V &, V &) const>(&P::GetTangents);
    Member<long(double, double, V &) const>(&P::GetNormal);
    Member<int(P const &), P>(&P::operator==);
    Member<int(P &), P>(&P::operator==);
    Member<int(P &&), P>(&P::operator==);
    Member<int(P const &), P>(&P::operator!=);
    Member<int(P &), P>(&P::operator!=);
    Member<int(P &&), P>(&P::operator!=);
    exported::ContactQueries<P>();
}

TEST(Exports, Plane_queries)
{
    using P = C3DPlane;
    Member<long(V const &, double &) const>(&P::GetDistanceFrom);
    Member<double(V const &) const>(&P::GetSignedDistanceFrom);
    Member<long(V const &, double &, double &) const>(&P::ProjectOn);
    Member<long(V const &, V &) const>(&P::ProjectPoint);
    Member<long(V const &, V &) const>(&P::ProjectVector);
    Member<long(V const &, V &, double) const>(&P::ProjectVectorOrthogonally);
    Member<long(V const &, V &) const>(&P::ReflectPoint);
    Member<long(V const &, V &) const>(&P::ReflectVector);
    Member<void(C3DLine const &, C3DLine &) const>(&P::ProjectLineOn);
    Member<long(V const &, V const &, double &) const>(&P::GetAngleOfProjectedVectors);
    Member<tagE3D_INTERSECTION_STATUS(C3DLine const &, double *, double *, V &, double, double) const>(
        &P::LineIntersection);
    Member<long(M &, double) const>(&P::GetScaleMatrix);
    Member<long(M &) const>(&P::GetMirrorMatrix);
    Member<P &(P const &, M const &)>(&P::Mul);
}

TEST(Exports, Circle)
{
    using C = C3DBaseCircle;
    V const v(1, 2, 3);
    Constructor<C>();
    Constructor<C>(v, 1.0, v);
    Constructor<C>(v, 1.0, E3D_AXIS_X);
    Constructor<C>(v, v, E3D_AXIS_X);
    Constructor<C>(v, v, v);
    Member<void(V const &)>(&C::SetCenter);
    Member<void(double)>(&C::SetRadius);
    Member<void(Axis)>(&C::SetNormal);
    Member<void(V &) const>(&C::GetCenter);
    Member<void(V &) const>(&C::GetNormal);
    Member<void(double &) const>(&C::GetRadius);
    Member<C &(C const &, M const &)>(&C::Mul);
    exported::ContactQueries<C>();
}
