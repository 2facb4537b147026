#include "exports/exported.h"

#include "math/matrix33.h"
#include "math/matrix44.h"
#include "math/matrix_mn.h"

#include <istream>
#include <ostream>

using exported::Constructor;
using exported::Function;
using exported::Member;

namespace
{

/// What the fixed matrices of both sizes share.
template <typename T, typename M>
void ExpectCommonMembers()
{
    Constructor<M>();
    Constructor<M>(C3DInitRequest_DoNotInitialize{});

    Member<M &(float(&)[4][4])>(&M::operator=);
    Member<M &(M const &)>(&M::Set);
    Member<M &(int, int, T)>(&M::Set);
    Member<T(int, int) const>(&M::Get);
    Member<T *()>(&M::GetArray);
    Member<T const *() const>(&M::GetArray);
    Member<std::uint64_t() const>(&M::GetDynamicMemSize);
    Member<M &()>(&M::SetNull);
    Member<M &()>(&M::SetIdentity);

    Member<bool(M const &) const>(&M::operator==);
    Member<bool(M const &) const>(&M::operator!=);
    Member<int(T) const>(&M::IsNull);
    Member<bool(T) const>(&M::IsIdentity);
    Member<bool(T) const>(&M::IsDiagonal);
    Member<int(T) const>(&M::IsSingular);

    Member<M &(M const &)>(&M::Add);
    Member<M &(M const &, M const &)>(&M::Add);
    Member<M &(M const &)>(&M::Sub);
    Member<M &(M const &, M const &)>(&M::Sub);
    Member<M &(T)>(&M::Mul);
    Member<M &(T, M const &)>(&M::Mul);
    Member<M &(M const &, T)>(&M::Mul);
    Member<M &(T)>(&M::Div);
    Member<M &(M const &, T)>(&M::Div);
    Member<M &()>(&M::Negate);
    Member<M &(M const &)>(&M::Negate);
    Member<M &(M const &, M const &)>(&M::Mul);
    Member<M &(M const &)>(&M::Mul);
    Member<M &(M const &, M const &)>(&M::MulTransByReg);
    Member<M &(M const &, M const &)>(&M::MulRegByTrans);
    Member<M &()>(&M::Transpose);
    Member<M &(M const &)>(&M::Transpose);
    Member<T() const>(&M::GetTrace);
    Member<T() const>(&M::GetDet);
    Member<int()>(&M::Invert);
    Member<int(M const &)>(&M::Invert);
    Member<int()>(&M::TransposeInverse);
    Member<int(M const &)>(&M::TransposeInverse);

    Member<long(IStream *, int) const>(&M::Save);
    Member<long(IStream *)>(&M::Load);
    Member<void(wchar_t const *, std::ostream &) const>(&M::Dump);

    Function<int(M const &, M const &, T)>(&AreAlmostEqual);
    Function<std::ostream &(std::ostream &, M const &)>(&operator<<);
    Function<std::istream &(std::istream &, M &)>(&operator>>);
}

/// The protected members are for derived classes, which live in callers' objects too.
template <typename T>
struct Derived33 : C3DMatrix33Tpl<T>
{
    static void ExpectProtectedMembers()
    {
        using V = C3DVector3Tpl<T>;
        Member<int(T const(*)[3], T(*)[3], int, T) const>(&Derived33::ComputeInverse);
        Member<T(T(*)[3], T(*)[3]) const>(&Derived33::ComputeDetFast);
        Member<int(T const(*)[3], T(*)[3], V &, T) const>(&Derived33::ComputeEigen);
    }
};

template <typename T>
struct Derived44 : C3DMatrix44Tpl<T>
{
    static void ExpectProtectedMembers() { Member<int(T const(*)[4], T(*)[4], int)>(&Derived44::ComputeInverse); }
};

template <typename T>
void ExpectMatrix33()
{
    using M = C3DMatrix33Tpl<T>;
    using V = C3DVector3Tpl<T>;
    using M44 = C3DMatrix44Tpl<T>;
    ExpectCommonMembers<T, M>();
    Derived33<T>::ExpectProtectedMembers();
    float array[3][3] = {};
    V const v(T(1), T(2), T(3));
    T const one = 1;
    Constructor<M>(one, one, one, one, one, one, one, one, one);
    Constructor<M>(v, v, v, 1);
    Constructor<M>(array);
    Constructor<M>(0, 0, M44());

    Member<M &(T, T, T, T, T, T, T, T, T)>(&M::Set);
    Member<M &(T(*)[3])>(&M::Set);
    Member<M &(int, int, M44 const &)>(&M::Set);
    Member<M &(int, T, T, T)>(&M::SetRow);
    Member<M &(int, V const &)>(&M::SetRow);
    Member<M &(int, T, T, T)>(&M::SetCol);
    Member<M &(int, V const &)>(&M::SetCol);
    Member<int(T) const>(&M::IsSymmetric);
    Member<M &()>(&M::Adjoint);
    Member<M &(M const &)>(&M::Adjoint);
    Member<int(M &, V &, T) const>(&M::GetEigenVectors);
    Function<void(T const(*)[3], T &, T &)>(&M::ComputeDetAndDetSize);
    Function<void(T const(*)[3], T(*)[3])>(&M::ComputeAdjoint);
}

template <typename T>
void ExpectMatrix44()
{
    using M = C3DMatrix44Tpl<T>;
    using V = C3DVector4Tpl<T>;
    ExpectCommonMembers<T, M>();
    Derived44<T>::ExpectProtectedMembers();
    float array[4][4] = {};
    V const v(T(1), T(2), T(3), T(4));
    T const one = 1;
    Constructor<M>(one, one, one, one, one, one, one, one, one, one, one, one, one, one, one, one);
    Constructor<M>(v, v, v, v, 1);
    Constructor<M>(array);

    Member<M &(T, T, T, T, T, T, T, T, T, T, T, T, T, T, T, T)>(&M::Set);
    Member<M &(T const *)>(&M::Set);
    Member<M &(T const(*)[4])>(&M::Set);
    Member<M &(C3DMatrix44Tpl<float> const &)>(&M::SetFromFloat);
    Member<M &(C3DMatrix44Tpl<double> const &)>(&M::SetFromDouble);
    Member<M &(int, T, T, T, T)>(&M::SetRow);
    Member<M &(int, V const &)>(&M::SetRow);
    Member<M &(int, T, T, T, T)>(&M::SetCol);
    Member<M &(int, V const &)>(&M::SetCol);
    Member<unsigned char() const>(&M::GetMaskInfo);
    Member<M &(unsigned char const &)>(&M::SetMaskInfo);
    Member<bool() const>(&M::IsExactlyIdentity);
    Member<T(int, int) const>(&M::GetDet);
}

} // namespace

TEST(Exports, Matrix33)
{
    ExpectMatrix33<float>();
    ExpectMatrix33<double>();
}

TEST(Exports, Matrix44)
{
    ExpectMatrix44<float>();
    ExpectMatrix44<double>();
}

TEST(Exports, MatrixMN)
{
    using M = C3DMatrixMN;
    M const matrix;
    Constructor<M>(matrix);
    Member<M &(M const &)>(&M::operator=);
    Member<int(int, int)>(&M::SetDimensions);
    Member<int() const>(&M::GetNbRow);
    Member<int() const>(&M::GetNbCol);
    Member<double(int, int) const>(&M::Get);
    Member<void(int, int, double)>(&M::Set);
    Member<int(M const &)>(&M::Set);
    Member<void()>(&M::SetIdentity);
    Member<void(M const &)>(&M::Copy);
    Member<M &(M const &)>(&M::Add);
    Member<M &(M const &, M const &)>(&M::Add);
    Member<M &(M const &)>(&M::Sub);
    Member<M &(M const &, M const &)>(&M::Sub);
    Member<M &(M const &)>(&M::Transpose);
    Member<M &(M const &, M const &)>(&M::Mul);
    Member<int(M const &)>(&M::Mul);
    Member<int(M const &)>(&M::LeftMul);
    Member<int(M const &)>(&M::GrevilleInverse);
    Member<int(M const &, unsigned long, unsigned long)>(&M::GrevilleInverse);
    Member<void(wchar_t const *, std::ostream &) const>(&M::Dump);
    Function<std::ostream &(std::ostream &, M const &)>(&operator<<);
}
