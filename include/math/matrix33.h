#pragma once

/// \file
/// The three by three matrix.

#include "math/detail/product3.h"
#include "math/numeric.h"
#include "math/vector3.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <type_traits>

class IStream;
template <typename T>
class C3DMatrix44Tpl;

/// The general three by three matrix, stored row by row.
///
/// Vectors are rows: v goes to v M, and row r of a rotation is the image of axis r. `A.Mul(B, C)` is the product B C,
/// so B acts first and C after it. Methods write into the target and return it; unless an operation says otherwise the
/// target may be an operand.
template <typename T>
class C3DMatrix33Tpl
{
public:
    /// \name Construction and access
    ///@{

    /// All elements 0.
    C3DMatrix33Tpl() : m_Elements{} {}

    /// Writes nothing.
    explicit C3DMatrix33Tpl(C3DInitRequest_DoNotInitialize const & /*unused*/) {}

    /// The elements row by row.
    C3DMatrix33Tpl(T m00, T m01, T m02, T m10, T m11, T m12, T m20, T m21, T m22)
        : m_Elements{{m00, m01, m02}, {m10, m11, m12}, {m20, m21, m22}}
    {
    }

    /// The vectors become the columns where `rows` is 0, else the rows.
    C3DMatrix33Tpl(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b, C3DVector3Tpl<T> const & c, int rows)
        : C3DMatrix33Tpl(a.X, a.Y, a.Z, b.X, b.Y, b.Z, c.X, c.Y, c.Z)
    {
        if (rows == 0)
        {
            Transpose();
        }
    }

    /// From a `float` array.
    explicit C3DMatrix33Tpl(float (&array)[3][3]);

    /// The minor of m: what is left without row r and column c, in order. An index outside 0 to 3 takes 3.
    inline C3DMatrix33Tpl(int r, int c, C3DMatrix44Tpl<T> const & m);

    /// The upper left block of a `float` array.
    C3DMatrix33Tpl & operator=(float (&array)[4][4]);

    /// The elements row by row.
    C3DMatrix33Tpl & Set(T m00, T m01, T m02, T m10, T m11, T m12, T m20, T m21, T m22)
    {
        return SetRow(0, m00, m01, m02).SetRow(1, m10, m11, m12).SetRow(2, m20, m21, m22);
    }
    /// Copies three rows of three scalars, which may be the matrix's own.
    C3DMatrix33Tpl & Set(T (*const array)[3])
    {
        std::memmove(m_Elements, array, sizeof m_Elements);
        return *this;
    }
    /// Becomes a copy.
    C3DMatrix33Tpl & Set(C3DMatrix33Tpl const & m) { return *this = m; }

    /// The minor of m, as in the constructor.
    inline C3DMatrix33Tpl & Set(int r, int c, C3DMatrix44Tpl<T> const & m);

    /// All elements 0.
    C3DMatrix33Tpl & SetNull() { return Set(0, 0, 0, 0, 0, 0, 0, 0, 0); }
    /// 1 on the diagonal and 0 elsewhere.
    C3DMatrix33Tpl & SetIdentity() { return Set(1, 0, 0, 0, 1, 0, 0, 0, 1); }

    /// Sets one row. The index is not checked.
    C3DMatrix33Tpl & SetRow(int r, T x, T y, T z)
    {
        m_Elements[r][0] = x;
        m_Elements[r][1] = y;
        m_Elements[r][2] = z;
        return *this;
    }
    /// Sets one row. The index is not checked.
    C3DMatrix33Tpl & SetRow(int r, C3DVector3Tpl<T> const & v) { return SetRow(r, v.X, v.Y, v.Z); }
    /// Sets one column. The index is not checked.
    C3DMatrix33Tpl & SetCol(int c, T x, T y, T z)
    {
        m_Elements[0][c] = x;
        m_Elements[1][c] = y;
        m_Elements[2][c] = z;
        return *this;
    }
    /// Sets one column. The index is not checked.
    C3DMatrix33Tpl & SetCol(int c, C3DVector3Tpl<T> const & v) { return SetCol(c, v.X, v.Y, v.Z); }

    /// The element in row r and column c; the indices are not checked.
    T Get(int r, int c) const { return m_Elements[r][c]; }
    /// Sets the element in row r and column c; the indices are not checked.
    C3DMatrix33Tpl & Set(int r, int c, T value)
    {
        m_Elements[r][c] = value;
        return *this;
    }

    /// The nine elements as an array, row by row.
    T * GetArray() { return reinterpret_cast<T *>(this); }
    /// The nine elements as an array, row by row, for reading.
    T const * GetArray() const { return reinterpret_cast<T const *>(this); }

    /// Bytes held outside the object: none.
    std::uint64_t GetDynamicMemSize() const { return 0; }
    ///@}

    /// \name Tests
    /// Those with a tolerance reject at a magnitude of `epsilon` or more, so they fail for every matrix where `epsilon`
    /// is 0, and a NaN element passes.
    ///@{

    /// Exact comparison by "below" and "above": a NaN compares equal to anything.
    bool operator==(C3DMatrix33Tpl const & other) const;
    /// The negation of operator==: false where a NaN hides a difference.
    bool operator!=(C3DMatrix33Tpl const & other) const { return !(*this == other); }

    /// 1 when every element is below `epsilon` in magnitude. At an `epsilon` of 0 not even the null matrix is null,
    /// unlike a null vector.
    int IsNull(T epsilon = math::detail::k_StandardTolerance<T>) const;
    /// True when every element differs from the identity's by less than `epsilon`. At an `epsilon` of 0 the identity
    /// fails, while it passes C3DMatrix44Tpl::IsIdentity.
    bool IsIdentity(T epsilon = math::detail::k_StandardTolerance<T>) const;
    /// True when every element off the diagonal is below `epsilon` in magnitude.
    bool IsDiagonal(T epsilon = math::detail::k_StandardTolerance<T>) const;

    /// 1 when every |m[r][c] - m[c][r]| is below `epsilon`. All nine pairs are compared, an element with itself too.
    int IsSymmetric(T epsilon = math::detail::k_StandardTolerance<T>) const;

    /// 1 unless the determinant, relative to its size (see ComputeDetAndDetSize), is at or above `epsilon` in
    /// magnitude. The one relative tolerance of the class; a NaN matrix is singular.
    int IsSingular(T epsilon = math::detail::k_StandardTolerance<T>) const;
    ///@}

    /// \name Arithmetic
    /// The target may be any operand.
    ///@{

    /// The target plus b.
    C3DMatrix33Tpl & Add(C3DMatrix33Tpl const & b) { return Add(*this, b); }
    /// a + b.
    C3DMatrix33Tpl & Add(C3DMatrix33Tpl const & a, C3DMatrix33Tpl const & b)
    {
        for (int i = 0; i < 9; ++i)
        {
            GetArray()[i] = a.GetArray()[i] + b.GetArray()[i];
        }
        return *this;
    }

    /// The target minus b.
    C3DMatrix33Tpl & Sub(C3DMatrix33Tpl const & b) { return Sub(*this, b); }
    /// a - b.
    C3DMatrix33Tpl & Sub(C3DMatrix33Tpl const & a, C3DMatrix33Tpl const & b)
    {
        for (int i = 0; i < 9; ++i)
        {
            GetArray()[i] = a.GetArray()[i] - b.GetArray()[i];
        }
        return *this;
    }

    /// The target times a scalar.
    C3DMatrix33Tpl & Mul(T factor) { return Mul(*this, factor); }
    /// A scalar times a.
    C3DMatrix33Tpl & Mul(T factor, C3DMatrix33Tpl const & a) { return Mul(a, factor); }
    /// a times a scalar.
    C3DMatrix33Tpl & Mul(C3DMatrix33Tpl const & a, T factor)
    {
        for (int i = 0; i < 9; ++i)
        {
            GetArray()[i] = a.GetArray()[i] * factor;
        }
        return *this;
    }

    /// Scales by the reciprocal of the divisor, which is not tested.
    C3DMatrix33Tpl & Div(T divisor) { return Div(*this, divisor); }
    /// a by the divisor, in the same way.
    C3DMatrix33Tpl & Div(C3DMatrix33Tpl const & a, T divisor) { return Mul(a, T(1) / divisor); }

    /// Flips the sign of every element of the target: a zero becomes a negative zero.
    C3DMatrix33Tpl & Negate() { return Negate(*this); }
    /// a with the sign of every element flipped.
    C3DMatrix33Tpl & Negate(C3DMatrix33Tpl const & a)
    {
        for (int i = 0; i < 9; ++i)
        {
            GetArray()[i] = -a.GetArray()[i];
        }
        return *this;
    }

    /// The product a b: a acts first on a row vector.
    C3DMatrix33Tpl & Mul(C3DMatrix33Tpl const & a, C3DMatrix33Tpl const & b)
    {
        if constexpr (std::is_same_v<T, float>)
        {
            math::detail::MultiplyByRows(a.GetArray(), b.GetArray(), GetArray());
            return *this;
        }
        else
        {
            auto const element = [&a, &b](int r, int c)
            {
                return a.m_Elements[r][0] * b.m_Elements[0][c] + a.m_Elements[r][1] * b.m_Elements[1][c] +
                       a.m_Elements[r][2] * b.m_Elements[2][c];
            };
            return Set(element(0, 0), element(0, 1), element(0, 2), element(1, 0), element(1, 1), element(1, 2),
                       element(2, 0), element(2, 1), element(2, 2));
        }
    }
    /// The target times b.
    C3DMatrix33Tpl & Mul(C3DMatrix33Tpl const & b) { return Mul(*this, b); }

    /// The transpose of a, times b.
    C3DMatrix33Tpl & MulTransByReg(C3DMatrix33Tpl const & a, C3DMatrix33Tpl const & b)
    {
        C3DMatrix33Tpl transposed{C3DInitRequest_DoNotInitialize{}};
        return Mul(transposed.Transpose(a), b);
    }

    /// a, times the transpose of b.
    C3DMatrix33Tpl & MulRegByTrans(C3DMatrix33Tpl const & a, C3DMatrix33Tpl const & b)
    {
        C3DMatrix33Tpl transposed{C3DInitRequest_DoNotInitialize{}};
        return Mul(a, transposed.Transpose(b));
    }

    /// The transpose of the target.
    C3DMatrix33Tpl & Transpose() { return Transpose(*this); }
    /// The transpose of a.
    C3DMatrix33Tpl & Transpose(C3DMatrix33Tpl const & a)
    {
        return Set(a.m_Elements[0][0], a.m_Elements[1][0], a.m_Elements[2][0], a.m_Elements[0][1], a.m_Elements[1][1],
                   a.m_Elements[2][1], a.m_Elements[0][2], a.m_Elements[1][2], a.m_Elements[2][2]);
    }

    /// The sum of the diagonal.
    T GetTrace() const { return m_Elements[0][0] + m_Elements[1][1] + m_Elements[2][2]; }

    /// The determinant, expanded along the first row.
    T GetDet() const
    {
        T const(&m)[3][3] = m_Elements;
        return m[0][0] * (m[1][1] * m[2][2] - m[1][2] * m[2][1]) - m[0][1] * (m[1][0] * m[2][2] - m[1][2] * m[2][0]) +
               m[0][2] * (m[1][0] * m[2][1] - m[1][1] * m[2][0]);
    }

    /// The adjugate of the target, which times the matrix is the determinant times the identity.
    C3DMatrix33Tpl & Adjoint() { return Adjoint(*this); }
    /// The adjugate of a.
    C3DMatrix33Tpl & Adjoint(C3DMatrix33Tpl const & a);

    /// The inverse. Returns 0, with the target kept, where the determinant relative to its size (see
    /// ComputeDetAndDetSize) is not at or above the standard tolerance: scale alone makes no matrix singular. The
    /// `float` matrix is inverted in `double`.
    int Invert() { return Invert(*this); }
    /// The inverse of a, under the same test.
    int Invert(C3DMatrix33Tpl const & a);

    /// The transpose of the inverse of the target, under the same test.
    int TransposeInverse() { return TransposeInverse(*this); }
    /// The transpose of the inverse of a, under the same test.
    int TransposeInverse(C3DMatrix33Tpl const & a);

    /// Eigenvalues, the greatest first, and orthonormal eigenvectors, in the columns of `vectors`, of a symmetric
    /// matrix.
    ///
    /// `values` is read too: it is the base on which the estimates of the first sweep are renewed, so it has to hold
    /// the diagonal of the matrix. With other content the result of a matrix that is not diagonal is wrong. Returns 1
    /// on convergence. Returns 0 for a matrix that is not symmetric within `epsilon`, with nothing written, and where
    /// 50 sweeps do not suffice, with the last estimates written. `vectors` may be the matrix itself.
    int GetEigenVectors(C3DMatrix33Tpl & vectors, C3DVector3Tpl<T> & values,
                        T epsilon = math::detail::k_StandardTolerance<T>) const;
    ///@}

    /// \name Operations on arrays
    ///@{

    /// The determinant as the sum of its six signed triple products, and its size, the sum of their magnitudes. The
    /// quotient of their magnitudes tells how singular the matrix is, whatever its scale: 1 for a diagonal matrix, near
    /// 0 for one with proportional rows.
    static void ComputeDetAndDetSize(T const (*const a)[3], T & det, T & size);

    /// The adjugate of a. `a` and `out` must not overlap.
    static void ComputeAdjoint(T const (*const a)[3], T (*const out)[3]);
    ///@}

    /// \name Persistence and text
    ///@{

    /// Writes the nine elements row by row. Always 0: results of the stream are not looked at, and a null stream is
    /// tolerated.
    long Save(IStream * stream, int format) const;

    /// Reads what Save writes, under the same indifference: what cannot be read keeps its value.
    long Load(IStream * stream);

    /// Prints the label (if not null) on a line of its own, the rows on the next three, and a line that holds one
    /// blank.
    void Dump(wchar_t const * label, std::ostream & stream) const;
    ///@}

protected:
    /// The inverse of a, transposed where `transposed` is not 0, into `out`, which may be a. Returns 0, with `out`
    /// untouched, where the determinant relative to its size is not at or above `epsilon`. Computed in `double`.
    int ComputeInverse(T const (*const a)[3], T (*const out)[3], int transposed, T epsilon) const;

    /// The determinant of a from its adjugate: first row times first column.
    T ComputeDetFast(T (*const a)[3], T (*const adjoint)[3]) const
    {
        return a[0][0] * adjoint[0][0] + a[0][1] * adjoint[1][0] + a[0][2] * adjoint[2][0];
    }

    /// The eigen decomposition behind GetEigenVectors, of any array; only the upper triangle counts.
    int ComputeEigen(T const (*const a)[3], T (*const vectors)[3], C3DVector3Tpl<T> & values, T epsilon) const;

    /// Element [r][c] stands in row r and column c.
    T m_Elements[3][3];
};

/// 1 unless some pair of elements differs by `epsilon` or more; a NaN counts as close.
template <typename T>
MATH_API int AreAlmostEqual(C3DMatrix33Tpl<T> const & a, C3DMatrix33Tpl<T> const & b,
                            std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>);

/// Writes three rows, each as a vector is written, with an end of line after the first two.
template <typename T>
MATH_API std::ostream & operator<<(std::ostream & stream, C3DMatrix33Tpl<T> const & matrix);

/// Reads nine bare numbers, row by row. After a failed extraction the target is undefined.
template <typename T>
MATH_API std::istream & operator>>(std::istream & stream, C3DMatrix33Tpl<T> & matrix);

template <typename T>
inline C3DVector3Tpl<T> & C3DVector3Tpl<T>::Mul(C3DVector3Tpl<T> const & v, C3DMatrix33Tpl<T> const & m)
{
    return Set(v.X * m.Get(0, 0) + v.Y * m.Get(1, 0) + v.Z * m.Get(2, 0),
               v.X * m.Get(0, 1) + v.Y * m.Get(1, 1) + v.Z * m.Get(2, 1),
               v.X * m.Get(0, 2) + v.Y * m.Get(1, 2) + v.Z * m.Get(2, 2));
}

template <typename T>
inline C3DVector3Tpl<T> & C3DVector3Tpl<T>::Mul(C3DMatrix33Tpl<T> const & m)
{
    return Mul(*this, m);
}

template <typename T>
inline C3DVector3Tpl<T> & C3DVector3Tpl<T>::Mul(C3DMatrix33Tpl<T> const & m, C3DVector3Tpl<T> const & v)
{
    return Set(m.Get(0, 0) * v.X + m.Get(0, 1) * v.Y + m.Get(0, 2) * v.Z,
               m.Get(1, 0) * v.X + m.Get(1, 1) * v.Y + m.Get(1, 2) * v.Z,
               m.Get(2, 0) * v.X + m.Get(2, 1) * v.Y + m.Get(2, 2) * v.Z);
}

extern template class MATH_API C3DMatrix33Tpl<float>;
extern template class MATH_API C3DMatrix33Tpl<double>;
extern template int AreAlmostEqual(C3DMatrix33Tpl<float> const &, C3DMatrix33Tpl<float> const &, float);
extern template int AreAlmostEqual(C3DMatrix33Tpl<double> const &, C3DMatrix33Tpl<double> const &, double);
extern template std::ostream & operator<<(std::ostream &, C3DMatrix33Tpl<float> const &);
extern template std::ostream & operator<<(std::ostream &, C3DMatrix33Tpl<double> const &);
extern template std::istream & operator>>(std::istream &, C3DMatrix33Tpl<float> &);
extern template std::istream & operator>>(std::istream &, C3DMatrix33Tpl<double> &);
