#include "exports/exported.h"

#include "math/compact_rotation.h"
#include "math/dual_quaternion.h"

#include <istream>
#include <ostream>

using exported::Constructor;
using exported::Function;
using exported::Member;

namespace
{

template <typename T>
void ExpectCompactRotation()
{
    using R = C3DRotation3Tpl<T>;
    using Q = C3DQuatTpl<T>;
    using V3 = C3DVector3Tpl<T>;
    using V4 = C3DVector4Tpl<T>;
    using M33 = C3DMatrix33Tpl<T>;
    using M44 = C3DMatrix44Tpl<T>;
    V3 const v(T(1), T(2), T(3));
    Constructor<R>();
    Constructor<R>(C3DInitRequest_DoNotInitialize{});
    Constructor<R>(T(1), T(2), T(3), E3DROTORDER_XYZ);
    Constructor<R>(v, E3DROTORDER_XYZ);
    Constructor<R>(v, T(1));
    Constructor<R>(Q());
    Constructor<R>(E3D_AXIS_X, T(1));
    Constructor<R>(v, v);
    Constructor<R>(M33());
    Constructor<R>(M44());

    Member<R &(V3 const &, tagE3DROTORDER)>(&R::Set);
    Member<R &(V3 const &, T)>(&R::Set);
    Member<R &(Q const &)>(&R::Set);
    Member<R &(tagE3DAXISTYPE, T)>(&R::Set);
    Member<int(V3 const &, V3 const &, int *)>(&R::Set);
    Member<R &(V3 const &, V3 const &, V3 const &)>(&R::Set);
    Member<R &(M33 const &)>(&R::Set);
    Member<R &(M44 const &)>(&R::Set);
    Member<R &()>(&R::SetIdentity);
    Member<R &(tagE3DROTORDER, int)>(&R::Set);
    Member<R &(E3DRotRep, tagE3DROTORDER)>(&R::SetRepresentation);

    Member<E3DRotRep() const>(&R::GetRepresentation);
    Member<tagE3DROTORDER() const>(&R::GetRotOrder);
    Member<void(Q &) const>(&R::GetQuat);
    Member<void(V4 &) const>(&R::GetQuat);
    Member<void(V3 &, T &) const>(&R::GetAxisAngle);
    Member<void(V4 &) const>(&R::GetAxisAngle);
    Member<void(V3 &, tagE3DROTORDER) const>(&R::GetXYZAngles);
    Member<void(V3 &) const>(&R::GetXYZAngles);
    Member<void(T &, T &, T &) const>(&R::GetXYZAngles);
    Member<void(C3DRotMatTpl<T> &) const>(&R::GetMatrix);
    Member<void(M33 &) const>(&R::GetMatrix);
    Member<void(M44 &) const>(&R::GetMatrix);
    Member<std::uint64_t() const>(&R::GetDynamicMemSize);

    Member<int() const>(&R::IsIdentity);
    Member<int(T) const>(&R::IsAlmostIdentity);
    Member<bool(R const &) const>(&R::operator==);
    Member<bool(R const &) const>(&R::operator!=);

    Member<R &()>(&R::Invert);
    Member<R &(R const &)>(&R::Invert);
    Member<R &(R const &, R const &)>(&R::Mul);
    Member<R &(R const &)>(&R::Mul);
    Member<R &(R const &)>(&R::LeftMul);
    Member<R &(R const &, R const &)>(&R::Div);
    Member<R &(R const &)>(&R::Div);
    Member<R &(T)>(&R::Mul);
    Member<R &(T)>(&R::Div);
    Member<R &(R const &, T)>(&R::Mul);
    Member<R &(R const &, T)>(&R::Div);
    Member<R &(R const &, R const &, V3 const &, tagE3DROTORDER)>(&R::MulUsingEulerAnglesTarget);
    Member<R &(R const &, R const &, R const &)>(&R::MulUsingEulerAnglesTarget);
    Member<R &(R const &, R const &, int)>(&R::MulAndUpdateEulerAngles);
    Member<R &(R const &, R const &, T)>(&R::Interpolate);
    Member<int(tagE3DAXISTYPE, V3 const &, tagE3DAXISTYPE, V3 const &, int *) const>(&R::AlignAxesToVct);

    Member<long(IStream *, int) const>(&R::Save);
    Member<long(IStream *)>(&R::Load);
    Member<void(wchar_t const *, std::ostream &) const>(&R::DumpQuat);
    Member<void(wchar_t const *, std::ostream &) const>(&R::DumpAxisAngle);
    Member<void(wchar_t const *, std::ostream &) const>(&R::DumpXYZAngles);
    Function<int(R const &, R const &, T)>(&AreAlmostEqual);
    Function<std::ostream &(std::ostream &, R const &)>(&operator<<);
    Function<std::istream &(std::istream &, R &)>(&operator>>);
}

template <typename T>
void ExpectDualQuaternion()
{
    using D = C3DDualQuatTpl<T>;
    using Q = C3DQuatTpl<T>;
    using V = C3DVector3Tpl<T>;
    using M = C3DMatrix44Tpl<T>;
    Constructor<D>();
    Constructor<D>(C3DInitRequest_DoNotInitialize{});
    Constructor<D>(Q(), V(T(1), T(2), T(3)));
    Constructor<D>(Q(), Q());

    Member<D &()>(&D::SetIdentity);
    Member<D &()>(&D::SetNull);
    Member<D &(D const &)>(&D::Set);
    Member<D &(Q const &, V const &)>(&D::Set);
    Member<D &(Q const &, Q const &)>(&D::Set);
    Member<D &(T, T, V const &, V &)>(&D::Set);
    Member<D &(M const &)>(&D::Set);
    Member<void(Q &, Q &) const>(&D::Get);
    Member<void(Q &, V &) const>(&D::Get);
    Member<void(T &, T &, V &, V &) const>(&D::Get);
    Member<void(M &) const>(&D::Get);
    Member<Q const &() const>(&D::GetReal);
    Member<Q const &() const>(&D::GetRotation);
    Member<Q const &() const>(&D::GetDual);
    Member<void(V &) const>(&D::GetTranslation);
    Member<std::uint64_t() const>(&D::GetDynamicMemSize);

    Member<bool() const>(&D::IsIdentity);
    Member<bool(T) const>(&D::IsIdentity);
    Member<bool(D const &) const>(&D::operator==);
    Member<bool(D const &) const>(&D::operator!=);

    Member<D &(D const &)>(&D::Add);
    Member<D &(D const &, D const &)>(&D::Add);
    Member<D &(D const &)>(&D::Sub);
    Member<D &(D const &, D const &)>(&D::Sub);
    Member<D &()>(&D::Negate);
    Member<D &(T)>(&D::Mul);
    Member<D &(T, D const &)>(&D::Mul);
    Member<D &(D const &, T)>(&D::Mul);
    Member<D &(D const &, D const &)>(&D::Mul);
    Member<D &(D const &)>(&D::Mul);
    Member<D &()>(&D::Conjugate);
    Member<D &(D const &)>(&D::Conjugate);
    Member<D &()>(&D::Normalize);
    Member<void()>(&D::Invert);
    Member<void(D const &)>(&D::Invert);

    Member<D &()>(&D::Log);
    Member<D &()>(&D::Exp);
    Member<D &(D const &, D const &, T)>(&D::ScLerp);
    Member<D &(long, D const *, T const *)>(&D::LinearBlend);
    Member<D &(D const &, D const &, T)>(&D::LinearBlend);
    Member<D &(long, D const *, T const *, T)>(&D::IterativeBlend);
    Member<D &(D const &, D const &, T)>(&D::IterativeBlend);

    Member<long(IStream *, int) const>(&D::Save);
    Member<long(IStream *)>(&D::Load);
    Member<void(wchar_t const *, std::ostream &) const>(&D::Dump);
    Function<bool(D const &, D const &, T)>(&AreAlmostEqual);
    Function<std::ostream &(std::ostream &, D const &)>(&operator<<);
    Function<std::istream &(std::istream &, D &)>(&operator>>);
}

} // namespace

TEST(Exports, Compact_rotation)
{
    ExpectCompactRotation<float>();
    ExpectCompactRotation<double>();
}

TEST(Exports, Dual_quaternion)
{
    ExpectDualQuaternion<float>();
    ExpectDualQuaternion<double>();
}
