#include "exports/exported.h"

#include "math/angles.h"
#include "math/quaternion.h"
#include "math/rotation.h"
#include "math/rotation_conversions.h"
#include "math/rotation_matrix.h"

#include <istream>
#include <ostream>

using exported::Constructor;
using exported::Data;
using exported::Function;
using exported::Member;

namespace
{

template <typename T>
void ExpectQuaternion()
{
    using Q = C3DQuatTpl<T>;
    using V3 = C3DVector3Tpl<T>;
    using V4 = C3DVector4Tpl<T>;
    Constructor<Q>();
    Constructor<Q>(C3DInitRequest_DoNotInitialize{});
    Constructor<Q>(T(1), T(2), T(3), T(4));
    Constructor<Q>(V3(T(1), T(2), T(3)));
    Constructor<Q>(V4(T(1), T(2), T(3), T(4)));

    Member<Q &(T, T, T, T)>(&Q::Set);
    Member<Q &(V3 const &)>(&Q::Set);
    Member<Q &(V4 const &)>(&Q::Set);
    Member<Q &()>(&Q::SetNull);
    Member<Q &()>(&Q::SetIdentity);
    Member<Q &(T)>(&Q::SetW);
    Member<Q &(T)>(&Q::SetX);
    Member<Q &(T)>(&Q::SetY);
    Member<Q &(T)>(&Q::SetZ);
    Member<void(T &, T &, T &, T &) const>(&Q::Get);
    Member<void(V4 &) const>(&Q::Get);
    Member<T() const>(&Q::GetW);
    Member<T() const>(&Q::GetX);
    Member<T() const>(&Q::GetY);
    Member<T() const>(&Q::GetZ);
    Member<std::uint64_t() const>(&Q::GetDynamicMemSize);

    Member<bool(T) const>(&Q::IsIdentity);
    Member<bool() const>(&Q::IsIdentity);
    Member<bool(T) const>(&Q::IsNull);
    Member<bool(T) const>(&Q::IsPure);
    Member<bool(Q const &) const>(&Q::operator==);
    Member<bool(Q const &) const>(&Q::operator!=);

    Member<Q &(Q const &)>(&Q::Add);
    Member<Q &(Q const &, Q const &)>(&Q::Add);
    Member<Q &(Q const &)>(&Q::Sub);
    Member<Q &(Q const &, Q const &)>(&Q::Sub);
    Member<Q &(T)>(&Q::Mul);
    Member<Q &(T, Q const &)>(&Q::Mul);
    Member<Q &(Q const &, T)>(&Q::Mul);
    Member<Q &()>(&Q::Negate);
    Member<Q &()>(&Q::Conjugate);
    Member<Q &(Q const &)>(&Q::Conjugate);
    Member<Q &()>(&Q::Invert);
    Member<Q &(Q const &)>(&Q::Invert);
    Member<T() const>(&Q::GetSquaredLength);
    Member<T() const>(&Q::GetLength);
    Member<Q &(Q const &, Q const &)>(&Q::Mul);
    Member<Q &(Q const &)>(&Q::Mul);
    Member<Q &(Q const &, V3 const &)>(&Q::Mul);
    Member<Q &(V3 const &, Q const &)>(&Q::Mul);
    Member<Q &()>(&Q::Normalize);
    Member<Q &(Q const &, Q const &, T)>(&Q::Slerp);

    Member<long(IStream *, int) const>(&Q::Save);
    Member<long(IStream *)>(&Q::Load);
    Member<void(wchar_t const *, std::ostream &) const>(&Q::Dump);
    Function<int(Q const &, Q const &, T)>(&AreAlmostEqual);
    Function<std::ostream &(std::ostream &, Q const &)>(&operator<<);
    Function<std::istream &(std::istream &, Q &)>(&operator>>);
}

template <typename T>
void ExpectRotationMatrix()
{
    using M = C3DRotMatTpl<T>;
    using Base = C3DMatrix33Tpl<T>;
    using V = C3DVector3Tpl<T>;
    V const v(T(1), T(2), T(3));
    T const one = 1;
    Constructor<M>();
    Constructor<M>(C3DInitRequest_DoNotInitialize{});
    Constructor<M>(one, one, one, one, one, one, one, one, one);
    Constructor<M>(v, v, v, 1);

    Member<M &(tagE3DAXISTYPE, T)>(&M::Set);
    Member<M &(Base const &)>(&M::Set);
    Member<M &(T(*)[3])>(&M::Set);
    Member<M &(int, int, T)>(&M::Set);
    Member<M &(int, T, T, T)>(&M::SetRow);
    Member<M &(int, V const &)>(&M::SetRow);
    Member<M &(int, T, T, T)>(&M::SetCol);
    Member<M &(int, V const &)>(&M::SetCol);
    Member<M &()>(&M::SetNull);
    Member<M &()>(&M::SetIdentity);
    Member<Base const &() const>(&M::GetMatrix);
    Member<T *()>(&M::GetArray);
    Member<T const *() const>(&M::GetArray);
    Member<std::uint64_t() const>(&M::GetDynamicMemSize);

    Member<bool(T) const>(&M::IsIdentity);
    Member<bool(M const &) const>(&M::operator==);
    Member<bool(M const &) const>(&M::operator!=);
    Member<T() const>(&M::GetDet);
    Member<T() const>(&M::GetTrace);

    Member<M &(M const &, M const &)>(&M::Mul);
    Member<M &(M const &)>(&M::Mul);
    Member<M &(M const &, M const &)>(&M::MulTransByReg);
    Member<M &(M const &, M const &)>(&M::MulRegByTrans);
    Member<M &()>(&M::Negate);
    Member<M &(M const &)>(&M::Negate);
    Member<M &()>(&M::Transpose);
    Member<M &(M const &)>(&M::Transpose);
    Member<M &()>(&M::Invert);
    Member<M &(M const &)>(&M::Invert);

    Member<void(wchar_t const *, std::ostream &) const>(&M::Dump);
    Function<int(M const &, M const &, T)>(&AreAlmostEqual);
    Function<std::ostream &(std::ostream &, M const &)>(&operator<<);
    Function<std::istream &(std::istream &, M &)>(&operator>>);
}

template <typename T>
void ExpectConversions()
{
    using Q = C3DQuatTpl<T>;
    using V = C3DVector3Tpl<T>;
    using M = C3DRotMatTpl<T>;
    using M33 = C3DMatrix33Tpl<T>;
    Function<void(V const &, Q &, tagE3DROTORDER)>(&F3DEulerToQuat);
    Function<void(V const &, M &, tagE3DROTORDER)>(&F3DEulerToMat);
    Function<void(Q const &, M &)>(&F3DQuatToMat);
    Function<void(M const &, Q &)>(&F3DMatToQuat);
    Function<void(M33 const &, V &, tagE3DROTORDER)>(&F3DMatToEuler);
    Function<void(M33 const &, V &, tagE3DROTORDER)>(&F3DMatToEulerUsingTarget);
    Function<void(Q const &, V &, tagE3DROTORDER)>(&F3DQuatToEuler);
    Function<void(Q const &, V &, T &)>(&F3DQuatToAxisAngle);
    Function<void(V const &, T, Q &)>(&F3DAxisAngleToQuat);
}

/// The protected members are for derived classes, which live in callers' objects too.
struct DerivedRotation : C3DRotation
{
    static void ExpectProtectedMembers()
    {
        Member<void()>(&DerivedRotation::SetQuatRep);
        Member<void()>(&DerivedRotation::SetMatrixRep);
        Member<void()>(&DerivedRotation::SetXYZAnglesRep);
        Member<void()>(&DerivedRotation::UpdateQuat);
        Member<void()>(&DerivedRotation::UpdateMatrix);
        Member<void()>(&DerivedRotation::UpdateXYZAngles);
        Function<int(int)>(&DerivedRotation::NextAxis);
    }
};

} // namespace

TEST(Exports, Quaternion)
{
    ExpectQuaternion<float>();
    ExpectQuaternion<double>();
}

TEST(Exports, Rotation_matrix)
{
    ExpectRotationMatrix<float>();
    ExpectRotationMatrix<double>();
}

TEST(Exports, Rotation_conversions)
{
    ExpectConversions<float>();
    ExpectConversions<double>();
    Function(&F3DEulerToQuatf);
    Function(&F3DQuatToMatf);
    Function(&F3DQuatfToEuler);
    Function(&F3DAxisAngleToQuatf);
}

TEST(Exports, Angles)
{
    Function(&F3DArcSinCos);
    Function(&F3DGetClosestAngle);
    Function(&F3DGetUnboundedAngle);
    Function(&F3DBoundAngleInMinus2PITo2PI);
    Function(&F3DBoundAngleInZeroToTwoPI);
    Function(&F3DBoundAngleInMinusPIToPI);
    Function(&F3DBoundAnglesInMatrixInMinus2PITo2PI);
}

TEST(Exports, Rotation)
{
    using R = C3DRotation;
    using V = C3DVector3Tpl<double>;
    using Q = C3DQuatTpl<double>;
    using M = C3DRotMatTpl<double>;
    V const v(1, 2, 3);
    Data(R::k_dwRotation);
    Data(R::k_dwVersion);
    Constructor<R>();
    Constructor<R>(C3DInitRequest_DoNotInitialize{});
    Constructor<R>(Q());
    Constructor<R>(M());
    Constructor<R>(E3D_AXIS_X, 1.0);
    Constructor<R>(v, 1.0);
    Constructor<R>(v, v);
    Constructor<R>(v, E3DROTORDER_XYZ);
    Constructor<R>(1.0, 2.0, 3.0, E3DROTORDER_XYZ);

    Member<void(Q &)>(&R::GetQuat);
    Member<void(M &)>(&R::GetMatrix);
    Member<M const *()>(&R::GetMatrix);
    Member<void(V &)>(&R::GetXYZAngles);
    Member<void(double &, double &, double &)>(&R::GetXYZAngles);
    Member<void(V &, tagE3DROTORDER)>(&R::GetXYZAngles);
    Member<void(V &, double &)>(&R::GetAxisAngle);
    Member<tagE3DROTORDER() const>(&R::GetXYZRotOrder);

    Member<int()>(&R::IsExactlyIdentity);
    Member<int(double const &) const>(&R::IsAlmostIdentity);
    Member<int()>(&R::IsIdentity);
    Member<int(double)>(&R::IsIdentity);
    Member<int() const>(&R::QuickIsIdentity);

    Member<R &()>(&R::SetIdentity);
    Member<R &(Q const &)>(&R::Set);
    Member<R &(M const &)>(&R::Set);
    Member<R &(V const &, V const &, V const &)>(&R::Set);
    Member<R &(V const &, tagE3DROTORDER)>(&R::Set);
    Member<R &(double, double, double, tagE3DROTORDER)>(&R::Set);
    Member<R &(tagE3DAXISTYPE, double)>(&R::Set);
    Member<R &(V const &, double)>(&R::Set);
    Member<int(V const &, V const &, int &)>(&R::Set);
    Member<R &(tagE3DROTORDER, int)>(&R::Set);
    Member<R &(R const &, int)>(&R::Set);

    Member<int(V const &, int &)>(&R::AlignToX);
    Member<int(V const &, int &)>(&R::AlignToY);
    Member<int(V const &, int &)>(&R::AlignToZ);
    Member<int(V const &, int &)>(&R::MinAlignToX);
    Member<int(V const &, int &)>(&R::MinAlignToY);
    Member<int(V const &, int &)>(&R::MinAlignToZ);
    Member<int(tagE3DAXISTYPE, V const &, tagE3DAXISTYPE, V const &, int &)>(&R::AlignAxesToVct);

    Member<R &(R &, R &)>(&R::Mul);
    Member<R &(R &)>(&R::Mul);
    Member<R &(R &)>(&R::LeftMul);
    Member<R &(R &, R &, unsigned long)>(&R::MulAndUpdateEulerAngles);
    Member<R &(R &, R &, V &, tagE3DROTORDER)>(&R::MulUsingEulerAnglesTarget);
    Member<R &(R &, R &, R &)>(&R::MulUsingEulerAnglesTarget);
    Member<R &(R &, R &, double)>(&R::Interpolate);
    Member<R &()>(&R::Invert);
    Member<R &(R &)>(&R::Invert);

    Member<void(V const &, V &)>(&R::RotateVct);
    Member<void(V const &, V &)>(&R::InvRotateVct);
    Member<void(V const *, long, V *)>(&R::RotateVct);
    Member<void(V const *, long, V *)>(&R::InvRotateVct);

    Member<long(IStream *, int)>(&R::Save);
    Member<long(IStream *)>(&R::Load);
    Member<void(wchar_t const *, std::ostream &)>(&R::DumpQuat);
    Member<void(wchar_t const *, std::ostream &)>(&R::DumpMatrix);
    Member<void(wchar_t const *, std::ostream &)>(&R::DumpAxisAngle);
    Member<void(wchar_t const *, std::ostream &)>(&R::DumpXYZAngles);
    DerivedRotation::ExpectProtectedMembers();
}
