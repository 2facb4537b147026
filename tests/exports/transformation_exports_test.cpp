#include "exports/exported.h"

#include "math/rotation.h"
#include "math/space_mapping.h"
#include "math/transformation.h"
#include "math/transformation_matrix.h"

using exported::Constructor;
using exported::Data;
using exported::Function;
using exported::Member;

namespace
{

using X = C3DTransfo;
using V = C3DVector3Tpl<double>;
using R = C3DRotation;
using Q = C3DQuatTpl<double>;
using RM = C3DRotMatTpl<double>;
using M = C3DXfoMatTpl<double>;

/// The protected members are for derived classes, which live in callers' objects too.
struct DerivedTransformation : C3DTransfo
{
    static void ExpectProtectedMembers()
    {
        Member<void()>(&DerivedTransformation::Init);
        Member<void()>(&DerivedTransformation::Combine);
        Member<void(unsigned char)>(&DerivedTransformation::Factorize);
    }
};

} // namespace

TEST(Exports, Transformation_life)
{
    V const v(1, 2, 3);
    Data(X::k_dwTransfo);
    Data(X::k_dwVersion);
    Data(X::k_dwVersion10);
    Data(X::k_dwVersion40);
    Constructor<X>();
    Constructor<X>(C3DInitRequest_DoNotInitialize{}, true);
    Constructor<X>(v, R(), v);
    Constructor<X>(v, R());
    Constructor<X>(v, R(), R(), v);
    Constructor<X>(X());
    Member<X &(X const &)>(&X::operator=);
    Member<long() const>(&X::GetMemSize);
    Member<long(IStream *, int)>(&X::Save);
    Member<long(IStream *)>(&X::Load);
    DerivedTransformation::ExpectProtectedMembers();
}

TEST(Exports, Transformation_setters)
{
    Member<void(V const &, R const &, V const &)>(&X::Set);
    Member<void(V const &, R const &, R const &, V const &)>(&X::Set);
    Member<void(M const &)>(&X::Set);
    Member<void(V const &)>(&X::Set);
    Member<void(R const &)>(&X::Set);
    Member<void(X const &)>(&X::Set);
    Member<void(X const &, bool)>(&X::Set);
    Member<void(int)>(&X::SetQNScalingFlag);
    Member<int() const>(&X::GetQNScalingFlag);
    Member<void(int)>(&X::SetPreserveRotOrderFlag);
    Member<int() const>(&X::GetPreserveRotOrderFlag);
    Member<void()>(&X::SetIdentity);
    Member<void(unsigned char)>(&X::SetIdentity);
    Member<void(V const &)>(&X::SetTranslation);
    Member<void(double, double, double)>(&X::SetTranslation);
    Member<void(V const &)>(&X::SetScaling);
    Member<void(double, double, double)>(&X::SetScaling);
    Member<void(V const &, R const &)>(&X::SetScaling);
    Member<void(R const &)>(&X::SetRotation);
    Member<void(Q const &)>(&X::SetRotation);
    Member<void(RM const &)>(&X::SetRotation);
    Member<void(tagE3DAXISTYPE, double)>(&X::SetRotation);
    Member<void(V const &, double)>(&X::SetRotation);
    Member<void(V const &)>(&X::SetRotation);
    Member<void(double, double, double)>(&X::SetRotation);
    Member<void(tagE3DROTORDER, int)>(&X::SetRotation);
    Member<int(V const &, V const &, int &)>(&X::SetRotation);
    Member<void(V const &)>(&X::SetScalingOrientation);
    Member<void(double, double, double)>(&X::SetScalingOrientation);
    Member<void(R const &)>(&X::SetScalingOrientation);
}

TEST(Exports, Transformation_getters_and_tests)
{
    Member<void(V &)>(&X::GetScaling);
    Member<void(double &, double &, double &)>(&X::GetScaling);
    Member<void(V &, R &)>(&X::GetScaling);
    Member<void(R &)>(&X::GetRotation);
    Member<void(Q &)>(&X::GetRotation);
    Member<void(RM &)>(&X::GetRotation);
    Member<RM const *()>(&X::GetRotation);
    Member<void(V &)>(&X::GetRotation);
    Member<void(double &, double &, double &)>(&X::GetRotation);
    Member<void(V &, double &)>(&X::GetRotation);
    Member<void(V &)>(&X::GetTranslation);
    Member<void(double &, double &, double &)>(&X::GetTranslation);
    Member<void(R &)>(&X::GetScalingOrientation);
    Member<void(V &)>(&X::GetScalingOrientation);
    Member<void(double &, double &, double &)>(&X::GetScalingOrientation);
    Member<bool()>(&X::IsScalingOrientationExisting);
    Member<tagE3DROTORDER() const>(&X::GetXYZRotOrder);
    Member<void(M &)>(&X::GetMatrix);
    Member<M const *()>(&X::GetMatrix);
    Member<void(M &)>(&X::GetInvMatrix);
    Member<bool() const>(&X::HasShearing);
    Member<bool() const>(&X::QuickIsIdentity);
    Member<bool()>(&X::IsExactlyIdentity);
    Member<bool(double)>(&X::IsIdentity);
}

TEST(Exports, Transformation_composition_and_edits)
{
    using Space = tagE3DTRANSFOSPACE;
    Member<X &(X &, X &, unsigned char)>(&X::Mul);
    Member<X &(X &, unsigned char)>(&X::Mul);
    Member<X &(X &, X &, unsigned char, X *)>(&X::Dif);
    Member<X &(X &)>(&X::MapSpaceToWorld);
    Member<X &(X &)>(&X::MapWorldToSpace);
    Member<X &(X &, X &)>(&X::MapSpaceToSpace);
    Member<X &(X &)>(&X::Invert);
    Member<X &()>(&X::Invert);
    Member<X &(X &, X &, double)>(&X::Interpolate);
    Member<X &(V const &, Space, R *)>(&X::AddTranslation);
    Member<X &(R &, Space, R *, Space, V const *, bool)>(&X::AddRotation);
    Member<X &(R &, Space, R *, Space, X *, bool)>(&X::AddRotationAboutPivotXfo);
    Member<X &(V const &, Space, R *, Space, V const *, tagE3DSCLTYPE)>(&X::AddScaling);
    Member<X &(V const &, Space, R *, Space, X *, tagE3DSCLTYPE)>(&X::AddScalingAboutPivotXfo);
    Member<X &(R &, Space, R *, Space, V const *, bool)>(&X::AddScalingOrientation);
}

TEST(Exports, Space_mapping)
{
    Function<M &(tagE3DVECTORTYPE, X &, M &)>(&GetMapSpaceToWorld);
    Function<M &(tagE3DVECTORTYPE, X &, M &)>(&GetMapWorldToSpace);
    Function<M &(tagE3DVECTORTYPE, X &, X &, M &)>(&GetMapSpaceToSpace);
    Function<V &(R &, V const &, V &)>(&MapDirSpaceToWorld);
    Function<V &(R &, V const &, V &)>(&MapDirWorldToSpace);
    Function<V &(R &, R &, V const &, V &)>(&MapDirSpaceToSpace);
}
