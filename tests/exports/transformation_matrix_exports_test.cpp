#include "exports/exported.h"

#include "math/compact_rotation.h"
#include "math/rotation.h"
#include "math/transformation_matrix.h"

using exported::Constructor;
using exported::Function;
using exported::Member;

namespace
{

template <typename T>
void ExpectSetters()
{
    using M = C3DXfoMatTpl<T>;
    using V3 = C3DVector3Tpl<T>;
    using V4 = C3DVector4Tpl<T>;
    using Block = C3DMatrix33Tpl<T>;
    using Base = C3DMatrix44Tpl<T>;
    using Rotation = C3DRotMatTpl<T>;
    T const one = 1;
    V4 const v(T(1), T(2), T(3), T(4));
    Constructor<M>();
    Constructor<M>(C3DInitRequest_DoNotInitialize{});
    Constructor<M>(one, one, one, one, one, one, one, one, one, one, one, one, one, one, one, one);
    Constructor<M>(v, v, v, v, 1);

    Member<M &()>(&M::SetIdentity);
    Member<M &(Block const &)>(&M::Set);
    Member<M &(Rotation const &)>(&M::Set);
    Member<M &(Rotation const &)>(&M::SetWithTranspose);
    Member<M &(Base const &)>(&M::Set);
    Member<M &(T const(*)[4])>(&M::Set);
    Member<M &(T const(*)[3])>(&M::Set);
    Member<M &(T(*)[4])>(&M::Set);
    Member<M &(T(*)[3])>(&M::Set);
    Member<M &(int, int, T)>(&M::Set);
    Member<M &(int, V4 const &)>(&M::SetRow);
    Member<M &(int, T, T, T, T)>(&M::SetRow);
    Member<M &(int, V4 const &)>(&M::SetCol);
    Member<M &(int, T, T, T, T)>(&M::SetCol);
    Member<M &(V3 const &)>(&M::SetTranslation);
    Member<M &(V3 const &)>(&M::AddTranslation);
    Member<M &()>(&M::Transpose);
    Member<M &(M const &)>(&M::Transpose);
}

template <typename T>
void ExpectReaders()
{
    using M = C3DXfoMatTpl<T>;
    using V3 = C3DVector3Tpl<T>;
    using Base = C3DMatrix44Tpl<T>;
    Member<Base const &() const>(&M::GetMatrix44);
    Member<unsigned char() const>(&M::GetSclSignBits);
    Member<T() const>(&M::GetDet33);
    Member<V3 &(V3 &) const>(&M::GetTranslation);
    Member<void(float(*)[4]) const>(&M::GetQNMatrix);
    Function<int(M const &, M const &, T)>(&AreAlmostEqual);

    // Readers of the base, by the name of the derived class.
    Member<int(T) const>(&M::IsNull);
    Member<bool(T) const>(&M::IsIdentity);
    Member<bool() const>(&M::IsExactlyIdentity);
    Member<bool(Base const &) const>(&M::operator==);
    Member<bool(Base const &) const>(&M::operator!=);
    Member<T() const>(&M::GetDet);
    Member<T() const>(&M::GetTrace);
    Member<void(wchar_t const *, std::ostream &) const>(&M::Dump);
    Member<T(int, int) const>(&M::Get);
    Member<T *()>(&M::GetArray);
    Member<T const *() const>(&M::GetArray);
    Member<std::uint64_t() const>(&M::GetDynamicMemSize);
}

template <typename T>
void ExpectProducts()
{
    using M = C3DXfoMatTpl<T>;
    using V3 = C3DVector3Tpl<T>;
    using V4 = C3DVector4Tpl<T>;
    using Rotation = C3DRotMatTpl<T>;
    Member<M &(M const &, M const &)>(&M::Mul);
    Member<M &(M const &)>(&M::Mul);
    Member<M &(Rotation const &, M const &)>(&M::Mul);
    Member<M &(M const &, Rotation const &)>(&M::Mul);
    Member<M &(Rotation const &, M const &)>(&M::MulTransByReg);
    Member<M &(M const &, Rotation const &)>(&M::MulWithRotMat);
    Member<M &(Rotation const &)>(&M::AddRotation);
    Member<int()>(&M::Invert);
    Member<int(M const &)>(&M::Invert);

    Member<V3 &(V3 const &, M const &)>(&V3::Mul);
    Member<V4 &(V4 const &, M const &)>(&V4::Mul);
    Member<V4 &(M const &, V4 const &)>(&V4::Mul);
}

template <typename T>
void ExpectScaleAndRotation()
{
    using M = C3DXfoMatTpl<T>;
    using V3 = C3DVector3Tpl<T>;
    using Rotation = C3DRotMatTpl<T>;
    using Compact = C3DRotation3Tpl<T>;
    Member<M &(V3 const &, int)>(&M::AddScaling);
    Member<M &(V3 const &)>(&M::SetScaling);
    Member<M &(Rotation const &)>(&M::SetRotation);
    Member<void(V3 const &, C3DRotation &)>(&M::SetScalingAndRotation);
    Member<void(V3 const &, Compact const &)>(&M::SetScalingAndRotation);

    Member<V3 &(V3 &) const>(&M::GetScaling);
    Member<Rotation &(Rotation &) const>(&M::GetRotation);
    Member<C3DRotation &(C3DRotation &) const>(&M::GetRotation);
    Member<Compact &(Compact &) const>(&M::GetRotation);
    Member<void(V3 &, C3DRotation &) const>(&M::GetScalingAndRotation);
    Member<void(V3 &, Compact &) const>(&M::GetScalingAndRotation);
    Member<void(Rotation &, M &) const>(&M::GetAffineDecomposition);
}

template <typename T>
void ExpectTransformationMatrix()
{
    ExpectSetters<T>();
    ExpectReaders<T>();
    ExpectProducts<T>();
    ExpectScaleAndRotation<T>();
}

} // namespace

TEST(Exports, TransformationMatrix)
{
    ExpectTransformationMatrix<float>();
    ExpectTransformationMatrix<double>();
    using Vector = C3DVector3Tpl<double>;
    Function<void(C3DXfoMatTpl<double> const &, Vector const *, long, Vector *)>(&F3DTransformPoints);
}
