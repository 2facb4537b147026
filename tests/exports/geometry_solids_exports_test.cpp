#include "exports/contact_queries.h"
#include "exports/exported.h"

#include "math/bounding_box.h"
#include "math/bounding_cylinder.h"
#include "math/bounding_sphere.h"
#include "math/box.h"
#include "math/cylinder.h"
#include "math/sphere.h"
#include "math/transformation.h"

using exported::Constructor;
using exported::Data;
using exported::Member;

namespace
{

using V = C3DVector3Tpl<double>;
using M = C3DXfoMatTpl<double>;

} // namespace

TEST(Exports, Box_bounds)
{
    using B = C3DBaseBox;
    V const v(1, 2, 3);
    Constructor<B>();
    Constructor<B>(2.0);
    Constructor<B>(v);
    Constructor<B>(v, v);
    B const copied;
    Constructor<B>(copied);
    Member<B &(B const &)>(&B::operator=);
    Member<V const &() const>(&B::GetMin);
    Member<V const &() const>(&B::GetMax);
    Member<double() const>(&B::GetMinX);
    Member<double() const>(&B::GetMinY);
    Member<double() const>(&B::GetMinZ);
    Member<double() const>(&B::GetMaxX);
    Member<double() const>(&B::GetMaxY);
    Member<double() const>(&B::GetMaxZ);
    Member<void(V const &)>(&B::SetMin);
    Member<void(double, double, double)>(&B::SetMin);
    Member<void(V const &)>(&B::SetMax);
    Member<void(double, double, double)>(&B::SetMax);
    Member<void(double)>(&B::SetMinX);
    Member<void(double)>(&B::SetMinY);
    Member<void(double)>(&B::SetMinZ);
    Member<void(double)>(&B::SetMaxX);
    Member<void(double)>(&B::SetMaxY);
    Member<void(double)>(&B::SetMaxZ);
    Member<void(B const &)>(&B::Set);
    Member<void(B &) const>(&B::Get);
    Member<void(double const &)>(&B::SetCube);
    Member<void(double &) const>(&B::GetCube);
    Member<void(V const &)>(&B::SetSideLengths);
    Member<void(V &) const>(&B::GetSideLengths);
    Member<void(V const *, unsigned long)>(&B::SetFromVectorArray);
}

TEST(Exports, Box_queries)
{
    using B = C3DBaseBox;
    Member<int(V const &) const>(&B::IsBetweenXPlane);
    Member<int(V const &) const>(&B::IsBetweenYPlane);
    Member<int(V const &) const>(&B::IsBetweenZPlane);
    Member<int(V const &) const>(&B::IsInsideYZRect);
    Member<int(V const &) const>(&B::IsInsideXZRect);
    Member<int(V const &) const>(&B::IsInsideXYRect);
    Member<int(V const &) const>(&B::IsInsideBox);
    Member<void(V const &)>(&B::Inflate);
    Member<void(V const &)>(&B::Scale);
    Member<long(V const &, double &) const>(&B::GetDistanceFrom);
    Member<long(V const &, double &, double &) const>(&B::ProjectOn);
    Member<long(double, double, V &) const>(&B::GetPos);
    Member<long(double, double, V &) const>(&B::GetNormal);
    Member<long(double, double, V &, V &) const>(&B::GetTangents);
    exported::ContactQueries<B>();
}

TEST(Exports, Bounding_box_parts)
{
    using B = C3DBBox;
    V const v(1, 2, 3);
    Data(B::m_EdgeInfo);
    Data(B::m_FaceInfo);
    Constructor<B>();
    Constructor<B>(2.0);
    Constructor<B>(v);
    Constructor<B>(v, v);
    B const copied;
    Constructor<B>(copied);
    Member<B &(B const &)>(&B::operator=);
    Member<void(tagE3DBBOXCORNER, short *) const>(&B::GetSign);
    Member<long(tagE3DBBOXCORNER, tagE3DBBOXCORNER *) const>(&B::GetOppositeCorner);
    Member<long(tagE3DBBOXEDGE, tagE3DBBOXEDGE *) const>(&B::GetOppositeEdge);
    Member<long(tagE3DBBOXFACE, tagE3DBBOXFACE *) const>(&B::GetOppositeFace);
    Member<long(tagE3DBBOXCORNER, V &) const>(&B::GetCorner);
    Member<long(V *) const>(&B::GetCorners);
    Member<long(tagE3DBBOXEDGE, V &, V &) const>(&B::GetEdgePoints);
    Member<long(tagE3DBBOXFACE, V &, V &, V &, V &) const>(&B::GetFacePoints);
    Member<long(tagE3DBBOXEDGE, C3DLine &) const>(&B::GetEdgeLine);
    Member<long(tagE3DBBOXFACE, C3DPlane &) const>(&B::GetFacePlane);
    Member<V &(V &) const>(&B::GetDiagonal);
    Member<double() const>(&B::GetDiagonalLength);
    Member<V &(V &) const>(&B::GetMidPoint);
    Member<int() const>(&B::IsEmpty);
}

TEST(Exports, Bounding_box_growth)
{
    using B = C3DBBox;
    Member<B &(B const &)>(&B::MergeBBox);
    Member<B &(V const &)>(&B::MergeVector);
    Member<B &(double, double, double)>(&B::MergeVector);
    Member<B &(tagE3DBBOXCORNER, V const &, V const &, V const &, V const &, int)>(&B::PullCorner);
    Member<B &(M const &)>(&B::SetToBBoxOfTransformedBBox);
    Member<B &(V const *, unsigned long, M const &, int)>(&B::ComputeInSpaceFromVectorArray);
}

TEST(Exports, Sphere)
{
    using S = C3DBaseSphere;
    V const v(1, 2, 3);
    Constructor<S>();
    Constructor<S>(2.0);
    Constructor<S>(2.0, v);
    Member<void(double, V const &)>(&S::Set);
    Member<void(S const &)>(&S::Set);
    Member<void(double)>(&S::SetRadius);
    Member<void(V const &)>(&S::SetCenter);
    Member<void(double &) const>(&S::GetRadius);
    Member<void(V &) const>(&S::GetCenter);
    Member<long(V const &, double &) const>(&S::GetDistanceFrom);
    Member<long(V const &, double &, double &) const>(&S::ProjectOn);
    Member<long(double, double, V &) const>(&S::GetPos);
    Member<long(double, double, V &) const>(&S::GetNormal);
    Member<long(double, double, V &, V &) const>(&S::GetTangents);
    exported::ContactQueries<S>();
}

TEST(Exports, Sphere_constraints)
{
    using S = C3DBaseSphere;
    using Pose = I3DPose_QN *;
    using Flags = unsigned long &;
    Member<long(Pose, V const &, Flags, V &)>(&S::GetPointLocation);
    Member<long(Pose, V *, Flags, unsigned long)>(&S::GetPrimitiveLocation);
    Member<long(Pose, V *, unsigned long, Flags, V &)>(&S::CheckPrimitiveInclusion);
    Member<long(Pose, V *, Flags, V &, unsigned long)>(&S::CheckPrimitiveExclusion);
    Member<long(Pose, V *, Flags, V &, unsigned long)>(&S::CheckPrimitiveOnSurface);
    Member<long(V const &, V *, Pose, Flags, unsigned long)>(&S::IsPrimitiveLarger);
    Member<long(V const &, V *, Pose, V &, unsigned long)>(&S::GetInclusionError);
    Member<long(V const &, V *, Pose, V &, unsigned long)>(&S::GetExclusionError);
    Member<long(V const &, V *, Pose, V &, unsigned long)>(&S::GetOnSurfaceError);
    Member<int(Pose, V const &)>(&S::PointIsIncluded);
}

TEST(Exports, Bounding_sphere)
{
    using S = C3DBSphere;
    V const v(1, 2, 3);
    Constructor<S>();
    Constructor<S>(2.0);
    Constructor<S>(2.0, v);
    Member<int() const>(&S::IsEmpty);
    Member<S &(V const &)>(&S::MergeVector);
    Member<S &(double, double, double)>(&S::MergeVector);
    Member<S &(S const &)>(&S::MergeBSphere);
    Member<S &(M const &)>(&S::SetToBSphereOfTransformedBSphere);
}

TEST(Exports, Cylinder)
{
    using C = C3DBaseCylinder;
    V const v(1, 2, 3);
    Constructor<C>();
    Constructor<C>(1.0, 2.0, E3DCYLINDERAXIS_X);
    Constructor<C>(1.0, v, v);
    Member<void(double, double, tagE3DCylinderAxisType)>(&C::Set);
    Member<void(C const &)>(&C::Set);
    Member<void(V const &, V const &)>(&C::SetAxis);
    Member<void(double)>(&C::SetRadius);
    Member<void(double &) const>(&C::GetRadius);
    Member<void(double &) const>(&C::GetLength);
    Member<long(C3DTransfo &) const>(&C::GetTransfo);
    Member<long(double, double, V &) const>(&C::GetPos);
    Member<long(double, double, V &) const>(&C::GetNormal);
    Member<long(double, double, V &, V &) const>(&C::GetTangents);
    exported::ContactQueries<C>();
}

TEST(Exports, Bounding_cylinder)
{
    using C = C3DBCylinder;
    V const v(1, 2, 3);
    Constructor<C>();
    Constructor<C>(1.0, 2.0, E3DCYLINDERAXIS_X);
    Constructor<C>(1.0, v, v);
}
