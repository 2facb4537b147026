#include "exports/exported.h"

#include "math/matrix33.h"
#include "math/matrix44.h"
#include "math/platform/qn_vector.h"
#include "math/rotation_matrix.h"
#include "math/vector2.h"
#include "math/vector3.h"
#include "math/vector4.h"
#include "math/vectorw.h"

#include <istream>
#include <ostream>

using exported::Constructor;
using exported::Data;
using exported::Function;
using exported::Member;

namespace
{

/// What the vectors of every size share.
template <typename T, typename V>
void ExpectCommonMembers()
{
    T const array[4] = {};
    Constructor<V>();
    Constructor<V>(array);
    Constructor<V>(1, T(2));

    Member<T() const>(&V::GetX);
    Member<T() const>(&V::GetY);
    Member<V &(T)>(&V::SetX);
    Member<V &(T)>(&V::SetY);
    Member<T(int) const>(&V::Get);
    Member<T &(unsigned long)>(&V::operator[]);
    Member<T const &(unsigned long) const>(&V::operator[]);
    Member<T *()>(&V::GetArray);
    Member<T const *() const>(&V::GetArray);
    Member<std::uint64_t() const>(&V::GetDynamicMemSize);

    Member<int(T) const>(&V::IsNull);
    Member<int() const>(&V::IsExactlyNull);
    Member<bool(V const &) const>(&V::operator==);
    Member<bool(V const &) const>(&V::operator!=);

    Member<V &()>(&V::SetNull);
    Member<V &()>(&V::Negate);
    Member<V &(V const &)>(&V::Negate);
    Member<V &(V const &)>(&V::Add);
    Member<V &(V const &, V const &)>(&V::Add);
    Member<V &(V const &)>(&V::Sub);
    Member<V &(V const &, V const &)>(&V::Sub);
    Member<V &(T)>(&V::Mul);
    Member<V &(T, V const &)>(&V::Mul);
    Member<V &(V const &, T)>(&V::Mul);
    Member<V &(T)>(&V::Div);
    Member<V &(V const &, T)>(&V::Div);
    Member<V &(V const &)>(&V::MulComp);
    Member<V &(V const &, V const &)>(&V::MulComp);
    Member<V &(V const &)>(&V::DivComp);
    Member<V &(V const &, V const &)>(&V::DivComp);
    Member<T() const>(&V::GetLength);
    Member<T() const>(&V::GetSquaredLength);
    Member<int()>(&V::Normalize);
    Member<int(T)>(&V::SetLength);
    Member<int(V const &)>(&V::SetProjection);

    Member<long(IStream *, int) const>(&V::Save);
    Member<long(IStream *)>(&V::Load);
    Member<void(wchar_t const *, std::ostream &) const>(&V::Dump);

    Function<int(V const &, V const &, T)>(&AreAlmostEqual);
    Function<T(V const &, V const &)>(&GetDistance);
    Function<T(V const &, V const &)>(&GetSquaredDistance);
}

/// What the vectors of the plane and of space share.
template <typename T, typename V>
void ExpectGeometryMembers()
{
    Member<V &(V const &)>(&V::Set);
    Member<V &(V const &, V const &)>(&V::SetMirror);
    Member<V &(V const &, V const &)>(&V::SetMidpoint);
    Member<V &(V const *, unsigned long)>(&V::SetMean);
    Member<V &(V const &, V const &, T)>(&V::LinearPositionInterpolate);
    Member<T(V const &, V const &, T) const>(&V::LinearPositionUnInterpolate);
    Member<V &(V const &, V const &, V const &, V const &, T)>(&V::BsplinePositionInterpolate);
    Member<V &(V const &, V const &, V const &, V const &, T)>(&V::BsplineVectorInterpolate);
    Member<T(int) const>(&V::GetMaxComponent);
    Member<T(int) const>(&V::GetMinComponent);
    Member<int(int) const>(&V::GetIndexOfMaxComponent);
    Member<int(int) const>(&V::GetIndexOfMinComponent);
    Member<V &(V const &, int)>(&V::SetMinimal);
    Member<V &(int, T)>(&V::SetMinimal);
}

template <typename T>
void ExpectVector3()
{
    using V = C3DVector3Tpl<T>;
    using M33 = C3DMatrix33Tpl<T>;
    using M44 = C3DMatrix44Tpl<T>;
    using Rotation = C3DRotMatTpl<T>;
    ExpectCommonMembers<T, V>();
    ExpectGeometryMembers<T, V>();
    QN_Vector const package{};
    Constructor<V>(T(1), T(2), T(3));
    Constructor<V>(package);
    Data(V::k_UnitVector);

    Member<V &(QN_Vector const &)>(&V::operator=);
    Member<QN_Vector() const>(&V::operator QN_Vector);
    Member<V &(T, T, T)>(&V::Set);
    Member<V &(int, T)>(&V::Set);
    Member<void(T &, T &, T &) const>(&V::Get);
    Member<T() const>(&V::GetZ);
    Member<V &(T)>(&V::SetZ);
    Member<V &(T, T, T)>(&V::Add);
    Member<V &(T, T, T)>(&V::Sub);
    Member<V &(V const &, M33 const &)>(&V::Mul);
    Member<V &(M33 const &)>(&V::Mul);
    Member<V &(M33 const &, V const &)>(&V::Mul);
    Member<V &(V const &, Rotation const &)>(&V::Mul);
    Member<V &(Rotation const &, V const &)>(&V::Mul);
    Member<V &(V const &, M44 const &)>(&V::Mul);
    Member<V &(V const &, V const &)>(&V::SetCross);
    Member<V &(V const &)>(&V::SetCross);
    Member<V &(V const &, V const &, V const &)>(&V::SetCross);
    Member<int(V const &, V const &)>(&V::SetOrthogonal);
    Member<int(V const &, V const &)>(&V::SetOrthoProj);
    Member<int(V const &, V const &, T &, T &, T)>(&V::DecomposeIn2Basis);
    Function<double(double const &)>(&V::GetLessAccurateEpsilon);
    Function<float(float const &)>(&V::GetLessAccurateEpsilon);
    Function<std::ostream &(std::ostream &, V const &)>(&operator<<);
    Function<std::istream &(std::istream &, V &)>(&operator>>);
}

template <typename T>
void ExpectVector2()
{
    using V = C3DVector2Tpl<T>;
    using V3 = C3DVector3Tpl<T>;
    using Rotation = C3DRotMatTpl<T>;
    ExpectCommonMembers<T, V>();
    ExpectGeometryMembers<T, V>();
    Constructor<V>(T(1), T(2));

    Member<V &(T, T)>(&V::Set);
    Member<V &(V3 const &, Rotation const &)>(&V::Mul);
    Member<V &(Rotation const &, V3 const &)>(&V::Mul);
    Member<V &(int, T)>(&V::SetComp);
    Member<void(T &, T &) const>(&V::Get);
    Member<V &(T, T)>(&V::Add);
    Member<V &(T, T)>(&V::Sub);
    Member<void()>(&V::Rotate90DegsCCW);
    Member<int(V const &, V const &, T) const>(&V::IsBetween);
    Member<T(V const &, V const &, T) const>(&V::GetSquaredDistanceFromLine);
    Member<void(V const &, V const &, V &, T) const>(&V::GetNearestPointToLine);
    Member<int(V const &, V const &, T &, T &, T) const>(&V::DecomposeIn2Basis);
    Member<int(V const &, V const &, V const &, V const &, T)>(&V::SetIntersection);
}

template <typename T>
void ExpectVector4()
{
    using V = C3DVector4Tpl<T>;
    using M = C3DMatrix44Tpl<T>;
    ExpectCommonMembers<T, V>();
    Constructor<V>(T(1), T(2), T(3), T(4));
    Constructor<V>(C3DVector3Tpl<T>(T(1), T(2), T(3)), T(2));

    Member<V &(T, T, T, T)>(&V::Set);
    Member<void(V const &)>(&V::Set);
    Member<V &(int, T)>(&V::Set);
    Member<void(T &, T &, T &, T &) const>(&V::Get);
    Member<T() const>(&V::GetZ);
    Member<T() const>(&V::GetW);
    Member<V &(T)>(&V::SetZ);
    Member<V &(T)>(&V::SetW);
    Member<V &(T, T, T, T)>(&V::Add);
    Member<V &(T, T, T, T)>(&V::Sub);
    Member<V &(V const &, M const &)>(&V::Mul);
    Member<V &(M const &)>(&V::Mul);
    Member<V &(M const &, V const &)>(&V::Mul);
    Member<V &(T)>(&V::SetMinimal);
    Function<int(V const &, V const &, T)>(&AreOrthogonal);
    Function<std::ostream &(std::ostream &, V const &)>(&operator<<);
    Function<std::istream &(std::istream &, V &)>(&operator>>);
}

} // namespace

TEST(Exports, Vector2)
{
    ExpectVector2<float>();
    ExpectVector2<double>();
}

TEST(Exports, Vector3)
{
    ExpectVector3<float>();
    ExpectVector3<double>();
}

TEST(Exports, Vector4)
{
    ExpectVector4<float>();
    ExpectVector4<double>();
}

TEST(Exports, Vectorw)
{
    using V = C3DVectorw;
    Constructor<V>();
    double const array[4] = {};
    Constructor<V>(1.0, 2.0, 3.0, 4.0);
    Constructor<V>(array);
    Member<V &(double, double, double, double)>(&V::Set);
    Member<V &(V const &)>(&V::Set);
    Member<int() const>(&V::IsExactlyNull);
    Member<V &(int, double)>(&V::Set);
    Member<V &(double)>(&V::SetX);
    Member<V &(double)>(&V::SetY);
    Member<V &(double)>(&V::SetZ);
    Member<V &(double)>(&V::SetW);
    Member<void(double &, double &, double &, double &) const>(&V::Get);
    Member<double(int) const>(&V::Get);
    Member<double() const>(&V::GetX);
    Member<double() const>(&V::GetY);
    Member<double() const>(&V::GetZ);
    Member<double() const>(&V::GetW);
    Member<double &(unsigned long)>(&V::operator[]);
    Member<double const &(unsigned long) const>(&V::operator[]);
    Member<double *()>(&V::GetArray);
    Member<double const *() const>(&V::GetArray);
    Member<std::uint64_t() const>(&V::GetDynamicMemSize);
    Member<int(double) const>(&V::IsNull);
    Member<int(V const &, double) const>(&V::AreAlmostEqual);
    Member<bool(V const &) const>(&V::operator==);
    Member<bool(V const &) const>(&V::operator!=);
    Member<V &()>(&V::SetNull);
    Member<V &()>(&V::Negate);
    Member<V &(V const &)>(&V::Negate);
    Member<V &(V const &)>(&V::Add);
    Member<V &(V const &, V const &)>(&V::Add);
    Member<V &(double, double, double)>(&V::Add);
    Member<V &(V const &)>(&V::Sub);
    Member<V &(V const &, V const &)>(&V::Sub);
    Member<V &(double, double, double)>(&V::Sub);
    Member<V &(double)>(&V::Mul);
    Member<V &(double, V const &)>(&V::Mul);
    Member<V &(V const &, double)>(&V::Mul);
    Member<V &(double)>(&V::Div);
    Member<V &(double, V const &)>(&V::Div);
    Member<V &(V const &)>(&V::MulComp);
    Member<V &(V const &, V const &)>(&V::MulComp);
    Member<V &(V const &)>(&V::DivComp);
    Member<V &(V const &, V const &)>(&V::DivComp);
    Member<double() const>(&V::GetLength);
    Member<double() const>(&V::GetSquaredLength);
    Member<int()>(&V::Normalize);
    Member<int(double)>(&V::SetLength);
    Member<V &(V const &, V const &)>(&V::SetMidpoint);
    Member<V &(V const &, V const &, double)>(&V::LinearPositionInterpolate);
    Member<V &(double)>(&V::SetMinimal);
    Function<double(V const &, V const &)>(&V::GetDot);
    Function<double(V const &, V const &)>(&V::GetDistance);
    Function<double(V const &, V const &)>(&V::GetSquaredDistance);
    Function<double(V const &, V const &)>(&GetDot);
    Function<double(V const &, V const &)>(&GetDistance);
    Function<double(V const &, V const &)>(&GetSquaredDistance);
}
