#pragma once

/// \file
/// The rotation matrix.

#include "math/matrix33.h"
#include "math/numeric.h"
#include "math/vector2.h"
#include "math/vector3.h"

#include <cstdint>
#include <iosfwd>
#include <type_traits>

/// A three by three matrix that is known to be a rotation, for row vectors: row r is the image of axis r.
///
/// It narrows the type, so that an interface can say that it takes a rotation and that inverting is transposing. It
/// does not guard its content: any nine numbers can be stored, and nothing makes them orthonormal again. Operations
/// mean what they mean in C3DMatrix33Tpl; of its `Set` and `Mul`, those listed here are offered.
template <typename T>
class C3DRotMatTpl : public C3DMatrix33Tpl<T>
{
    using Base = C3DMatrix33Tpl<T>;

public:
    /// \name Construction and access
    ///@{

    /// The identity.
    C3DRotMatTpl() : Base(1, 0, 0, 0, 1, 0, 0, 0, 1) {}

    /// Writes nothing.
    explicit C3DRotMatTpl(C3DInitRequest_DoNotInitialize const & request) : Base(request) {}

    /// The elements row by row.
    C3DRotMatTpl(T m00, T m01, T m02, T m10, T m11, T m12, T m20, T m21, T m22)
        : Base(m00, m01, m02, m10, m11, m12, m20, m21, m22)
    {
    }

    /// The vectors become the columns where `rows` is 0, else the rows.
    C3DRotMatTpl(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b, C3DVector3Tpl<T> const & c, int rows)
        : Base(a, b, c, rows)
    {
    }

    /// The elementary rotation about an axis, right-handed, by an angle in radians. A value that names no axis gives
    /// the identity.
    C3DRotMatTpl & Set(tagE3DAXISTYPE axis, T angle);

    /// Nine elements, as they are: from another matrix, or row by row from an array, which may be the object's own.
    C3DRotMatTpl & Set(Base const & m)
    {
        Base::Set(m);
        return *this;
    }
    C3DRotMatTpl & Set(T (*const array)[3])
    {
        Base::Set(array);
        return *this;
    }

    /// One element, one row or one column; the indices are not checked.
    C3DRotMatTpl & Set(int row, int column, T value)
    {
        Base::Set(row, column, value);
        return *this;
    }
    C3DRotMatTpl & SetRow(int r, T x, T y, T z)
    {
        Base::SetRow(r, x, y, z);
        return *this;
    }
    C3DRotMatTpl & SetRow(int r, C3DVector3Tpl<T> const & v)
    {
        Base::SetRow(r, v);
        return *this;
    }
    C3DRotMatTpl & SetCol(int c, T x, T y, T z)
    {
        Base::SetCol(c, x, y, z);
        return *this;
    }
    C3DRotMatTpl & SetCol(int c, C3DVector3Tpl<T> const & v)
    {
        Base::SetCol(c, v);
        return *this;
    }

    /// All elements 0, which is no rotation.
    C3DRotMatTpl & SetNull()
    {
        Base::SetNull();
        return *this;
    }

    /// The identity.
    C3DRotMatTpl & SetIdentity()
    {
        Base::SetIdentity();
        return *this;
    }

    /// The object as a general matrix.
    Base const & GetMatrix() const { return *this; }

    /// The nine elements as an array, row by row.
    T * GetArray() { return Base::GetArray(); }
    T const * GetArray() const { return Base::GetArray(); }

    /// Bytes held outside the object: none.
    std::uint64_t GetDynamicMemSize() const { return 0; }
    ///@}

    /// \name Tests
    ///@{

    /// True unless an element is `epsilon` or more away from the identity's: an `epsilon` of 0 fails always, a NaN
    /// passes.
    bool IsIdentity(T epsilon = math::detail::k_StandardTolerance<T>) const { return Base::IsIdentity(epsilon); }

    /// Exact comparison by "below" and "above": a NaN compares equal to anything.
    bool operator==(C3DRotMatTpl const & other) const { return Base::operator==(other); }
    bool operator!=(C3DRotMatTpl const & other) const { return Base::operator!=(other); }

    /// The determinant, 1 for a rotation.
    T GetDet() const { return Base::GetDet(); }

    /// The sum of the diagonal, 1 + 2 cos a for a rotation by a.
    T GetTrace() const { return Base::GetTrace(); }
    ///@}

    /// \name Products and inverse
    /// The target may be any operand.
    ///@{

    /// a acts first, then b.
    C3DRotMatTpl & Mul(C3DRotMatTpl const & a, C3DRotMatTpl const & b)
    {
        Base::Mul(a, b);
        return *this;
    }
    /// The target acts first, then b.
    C3DRotMatTpl & Mul(C3DRotMatTpl const & b) { return Mul(*this, b); }

    /// The transpose of a, then b: the inverse of a first, where both are rotations.
    C3DRotMatTpl & MulTransByReg(C3DRotMatTpl const & a, C3DRotMatTpl const & b)
    {
        Base::MulTransByReg(a, b);
        return *this;
    }

    /// a, then the transpose of b.
    C3DRotMatTpl & MulRegByTrans(C3DRotMatTpl const & a, C3DRotMatTpl const & b)
    {
        Base::MulRegByTrans(a, b);
        return *this;
    }

    /// All elements change sign, which makes a rotation a mirrored one: the determinant becomes -1.
    C3DRotMatTpl & Negate() { return Negate(*this); }
    C3DRotMatTpl & Negate(C3DRotMatTpl const & a)
    {
        Base::Negate(a);
        return *this;
    }

    /// Rows become columns: the inverse of a rotation.
    C3DRotMatTpl & Transpose() { return Transpose(*this); }
    C3DRotMatTpl & Transpose(C3DRotMatTpl const & a)
    {
        Base::Transpose(a);
        return *this;
    }

    /// The transpose, whatever the content: it cannot fail.
    C3DRotMatTpl & Invert() { return Transpose(); }
    C3DRotMatTpl & Invert(C3DRotMatTpl const & a) { return Transpose(a); }
    ///@}

    /// Prints as C3DMatrix33Tpl does.
    void Dump(wchar_t const * label, std::ostream & stream) const { Base::Dump(label, stream); }
};

/// As for C3DMatrix33Tpl.
template <typename T>
MATH_API int AreAlmostEqual(C3DRotMatTpl<T> const & a, C3DRotMatTpl<T> const & b,
                            std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>);

/// As for C3DMatrix33Tpl.
template <typename T>
MATH_API std::ostream & operator<<(std::ostream & stream, C3DRotMatTpl<T> const & matrix);

/// As for C3DMatrix33Tpl.
template <typename T>
MATH_API std::istream & operator>>(std::istream & stream, C3DRotMatTpl<T> & matrix);

template <typename T>
inline C3DVector3Tpl<T> & C3DVector3Tpl<T>::Mul(C3DVector3Tpl<T> const & v, C3DRotMatTpl<T> const & m)
{
    return Mul(v, m.GetMatrix());
}

template <typename T>
inline C3DVector3Tpl<T> & C3DVector3Tpl<T>::Mul(C3DRotMatTpl<T> const & m, C3DVector3Tpl<T> const & v)
{
    return Mul(m.GetMatrix(), v);
}

template <typename T>
inline C3DVector2Tpl<T> & C3DVector2Tpl<T>::Mul(C3DRotMatTpl<T> const & m, C3DVector3Tpl<T> const & v)
{
    return Set(m.Get(0, 0) * v.X + m.Get(0, 1) * v.Y + m.Get(0, 2) * v.Z,
               m.Get(1, 0) * v.X + m.Get(1, 1) * v.Y + m.Get(1, 2) * v.Z);
}

template <typename T>
inline C3DVector2Tpl<T> & C3DVector2Tpl<T>::Mul(C3DVector3Tpl<T> const & v, C3DRotMatTpl<T> const & m)
{
    return Set(v.X * m.Get(0, 0) + v.Y * m.Get(1, 0) + v.Z * m.Get(2, 0),
               v.X * m.Get(0, 1) + v.Y * m.Get(1, 1) + v.Z * m.Get(2, 1));
}

extern template class MATH_API C3DRotMatTpl<float>;
extern template class MATH_API C3DRotMatTpl<double>;
extern template int AreAlmostEqual(C3DRotMatTpl<float> const &, C3DRotMatTpl<float> const &, float);
extern template int AreAlmostEqual(C3DRotMatTpl<double> const &, C3DRotMatTpl<double> const &, double);
extern template std::ostream & operator<<(std::ostream &, C3DRotMatTpl<float> const &);
extern template std::ostream & operator<<(std::ostream &, C3DRotMatTpl<double> const &);
extern template std::istream & operator>>(std::istream &, C3DRotMatTpl<float> &);
extern template std::istream & operator>>(std::istream &, C3DRotMatTpl<double> &);
