#pragma once

/// \file
/// The four by four matrix.

#include "math/detail/row4.h"
#include "math/matrix33.h"
#include "math/numeric.h"
#include "math/vector3.h"
#include "math/vector4.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <iosfwd>
#include <type_traits>

class IStream;

/// The general homogeneous matrix: sixteen elements stored row by row, and one byte of flags behind them.
///
/// Vectors are rows and points are (x, y, z, 1), so that the last row of a transformation holds its translation and the
/// last column is normally (0, 0, 0, 1). `A.Mul(B, C)` is the product B C. Methods write into the target, which may be
/// an operand, and return it.
///
/// The byte is stored for derived classes and has no meaning here. Assignment, `Set` from a matrix, SetFromFloat and
/// SetFromDouble copy it; every other operation leaves it as it is, constructors included, after which it is undefined;
/// streams and comparisons ignore it.
template <typename T>
class C3DMatrix44Tpl
{
public:
    /// \name Construction and access
    ///@{

    /// All elements 0; the mask byte is not written.
    C3DMatrix44Tpl() : m_Elements{} {}

    /// Writes nothing.
    explicit C3DMatrix44Tpl(C3DInitRequest_DoNotInitialize const & /*unused*/) {}

    /// The elements row by row.
    C3DMatrix44Tpl(T m00, T m01, T m02, T m03, T m10, T m11, T m12, T m13, T m20, T m21, T m22, T m23, T m30, T m31,
                   T m32, T m33)
        : m_Elements{{m00, m01, m02, m03}, {m10, m11, m12, m13}, {m20, m21, m22, m23}, {m30, m31, m32, m33}}
    {
    }

    /// The vectors become the columns where `rows` is 0, else the rows.
    C3DMatrix44Tpl(C3DVector4Tpl<T> const & a, C3DVector4Tpl<T> const & b, C3DVector4Tpl<T> const & c,
                   C3DVector4Tpl<T> const & d, int rows)
        : C3DMatrix44Tpl(a.X, a.Y, a.Z, a.W, b.X, b.Y, b.Z, b.W, c.X, c.Y, c.Z, c.W, d.X, d.Y, d.Z, d.W)
    {
        if (rows == 0)
        {
            Transpose();
        }
    }

    /// From a `float` array.
    explicit C3DMatrix44Tpl(float (&array)[4][4]);
    /// Becomes a `float` array; the mask byte stays.
    C3DMatrix44Tpl & operator=(float (&array)[4][4]);

    /// The elements row by row; the mask byte stays.
    C3DMatrix44Tpl & Set(T m00, T m01, T m02, T m03, T m10, T m11, T m12, T m13, T m20, T m21, T m22, T m23, T m30,
                         T m31, T m32, T m33)
    {
        return SetRow(0, m00, m01, m02, m03)
            .SetRow(1, m10, m11, m12, m13)
            .SetRow(2, m20, m21, m22, m23)
            .SetRow(3, m30, m31, m32, m33);
    }

    /// Copies sixteen scalars, row by row; the mask byte stays.
    C3DMatrix44Tpl & Set(T const * array)
    {
        std::memmove(m_Elements, array, sizeof m_Elements);
        return *this;
    }
    /// Copies four rows of four scalars; the mask byte stays.
    C3DMatrix44Tpl & Set(T const (*const array)[4])
    {
        std::memmove(m_Elements, array, sizeof m_Elements);
        return *this;
    }

    /// Copies the elements and the mask byte.
    C3DMatrix44Tpl & Set(C3DMatrix44Tpl const & m) { return *this = m; }

    /// A copy from `float`, element by element; the mask byte is copied too.
    C3DMatrix44Tpl & SetFromFloat(C3DMatrix44Tpl<float> const & m);
    /// A copy from `double`, element by element, rounded in the `float` instantiation; the mask byte is copied too.
    C3DMatrix44Tpl & SetFromDouble(C3DMatrix44Tpl<double> const & m);

    /// All elements 0; the mask byte stays.
    C3DMatrix44Tpl & SetNull()
    {
        std::memset(m_Elements, 0, sizeof m_Elements);
        return *this;
    }
    /// 1 on the diagonal and 0 elsewhere; the mask byte stays.
    C3DMatrix44Tpl & SetIdentity() { return Set(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1); }

    /// Sets one row; the mask byte stays. The index is not checked.
    C3DMatrix44Tpl & SetRow(int r, T x, T y, T z, T w)
    {
        m_Elements[r][0] = x;
        m_Elements[r][1] = y;
        m_Elements[r][2] = z;
        m_Elements[r][3] = w;
        return *this;
    }
    /// Sets one row. The index is not checked.
    C3DMatrix44Tpl & SetRow(int r, C3DVector4Tpl<T> const & v) { return SetRow(r, v.X, v.Y, v.Z, v.W); }
    /// Sets one column; the mask byte stays. The index is not checked.
    C3DMatrix44Tpl & SetCol(int c, T x, T y, T z, T w)
    {
        m_Elements[0][c] = x;
        m_Elements[1][c] = y;
        m_Elements[2][c] = z;
        m_Elements[3][c] = w;
        return *this;
    }
    /// Sets one column. The index is not checked.
    C3DMatrix44Tpl & SetCol(int c, C3DVector4Tpl<T> const & v) { return SetCol(c, v.X, v.Y, v.Z, v.W); }

    /// The element in row r and column c; the indices are not checked.
    T Get(int r, int c) const { return m_Elements[r][c]; }
    /// Sets the element in row r and column c; the indices are not checked.
    C3DMatrix44Tpl & Set(int r, int c, T value)
    {
        m_Elements[r][c] = value;
        return *this;
    }

    /// The sixteen elements as an array, row by row.
    T * GetArray() { return reinterpret_cast<T *>(this); }
    /// The sixteen elements as an array, row by row, for reading.
    T const * GetArray() const { return reinterpret_cast<T const *>(this); }

    /// The mask byte; undefined until something has written it.
    unsigned char GetMaskInfo() const { return m_MaskInfo; }
    /// Writes the mask byte and no element.
    C3DMatrix44Tpl & SetMaskInfo(unsigned char const & mask)
    {
        m_MaskInfo = mask;
        return *this;
    }

    /// Bytes held outside the object: none.
    std::uint64_t GetDynamicMemSize() const { return 0; }
    ///@}

    /// \name Tests
    /// Those with a tolerance reject at a magnitude of `epsilon` or more, and a NaN element passes.
    ///@{

    /// Exact comparison by "below" and "above": a NaN compares equal to anything.
    bool operator==(C3DMatrix44Tpl const & other) const;
    /// The negation of operator==: false where a NaN hides a difference.
    bool operator!=(C3DMatrix44Tpl const & other) const { return !(*this == other); }

    /// 1 when every element is below `epsilon` in magnitude. At an `epsilon` of 0 not even the null matrix is null,
    /// unlike a null vector.
    int IsNull(T epsilon = math::detail::k_StandardTolerance<T>) const;
    /// True when every element off the diagonal is below `epsilon` in magnitude.
    bool IsDiagonal(T epsilon = math::detail::k_StandardTolerance<T>) const;

    /// Every element compares equal to the identity's.
    bool IsExactlyIdentity() const;

    /// True when every element differs from the identity's by less than `epsilon`. An `epsilon` of 0 makes the test
    /// exact: the identity passes it here, while it fails C3DMatrix33Tpl::IsIdentity.
    bool IsIdentity(T epsilon = math::detail::k_StandardTolerance<T>) const;

    /// 1 when the determinant is exactly 0 or a NaN. The tolerance is not read.
    int IsSingular(T epsilon = math::detail::k_StandardTolerance<T>) const;
    ///@}

    /// \name Arithmetic
    /// The target may be any operand; its mask byte stays.
    ///@{

    /// The target plus b.
    C3DMatrix44Tpl & Add(C3DMatrix44Tpl const & b) { return Add(*this, b); }
    /// a + b.
    C3DMatrix44Tpl & Add(C3DMatrix44Tpl const & a, C3DMatrix44Tpl const & b)
    {
        for (int i = 0; i < 16; ++i)
        {
            GetArray()[i] = a.GetArray()[i] + b.GetArray()[i];
        }
        return *this;
    }

    /// The target minus b.
    C3DMatrix44Tpl & Sub(C3DMatrix44Tpl const & b) { return Sub(*this, b); }
    /// a - b.
    C3DMatrix44Tpl & Sub(C3DMatrix44Tpl const & a, C3DMatrix44Tpl const & b)
    {
        for (int i = 0; i < 16; ++i)
        {
            GetArray()[i] = a.GetArray()[i] - b.GetArray()[i];
        }
        return *this;
    }

    /// The target times a scalar.
    C3DMatrix44Tpl & Mul(T factor) { return Mul(*this, factor); }
    /// A scalar times a.
    C3DMatrix44Tpl & Mul(T factor, C3DMatrix44Tpl const & a) { return Mul(a, factor); }
    /// a times a scalar.
    C3DMatrix44Tpl & Mul(C3DMatrix44Tpl const & a, T factor)
    {
        for (int i = 0; i < 16; ++i)
        {
            GetArray()[i] = a.GetArray()[i] * factor;
        }
        return *this;
    }

    /// Scales by the reciprocal of the divisor, which is not tested.
    C3DMatrix44Tpl & Div(T divisor) { return Div(*this, divisor); }
    /// a by the divisor, in the same way.
    C3DMatrix44Tpl & Div(C3DMatrix44Tpl const & a, T divisor) { return Mul(a, T(1) / divisor); }

    /// Flips the sign of every element of the target: a zero becomes a negative zero.
    C3DMatrix44Tpl & Negate() { return Negate(*this); }
    /// a with the sign of every element flipped.
    C3DMatrix44Tpl & Negate(C3DMatrix44Tpl const & a)
    {
        for (int i = 0; i < 16; ++i)
        {
            GetArray()[i] = -a.GetArray()[i];
        }
        return *this;
    }

    /// The product a b: a acts first on a row vector.
    C3DMatrix44Tpl & Mul(C3DMatrix44Tpl const & a, C3DMatrix44Tpl const & b)
    {
        // The rows of b are in hand before the first row of the target is written, and each row of a before its own.
        using Row = typename math::detail::Row4<T>::Lanes;
        Row b0;
        Row b1;
        Row b2;
        Row b3;
        math::detail::LoadRows(b.GetArray(), b0, b1, b2, b3);
        for (int r = 0; r < 4; ++r)
        {
            T const * const row = a.m_Elements[r];
            Row const sum = row[0] * b0 + row[1] * b1 + row[2] * b2 + row[3] * b3;
            math::detail::StoreRow(sum, m_Elements[r]);
        }
        return *this;
    }
    /// The target times b.
    C3DMatrix44Tpl & Mul(C3DMatrix44Tpl const & b) { return Mul(*this, b); }

    /// The transpose of a, times b.
    C3DMatrix44Tpl & MulTransByReg(C3DMatrix44Tpl const & a, C3DMatrix44Tpl const & b)
    {
        C3DMatrix44Tpl transposed{C3DInitRequest_DoNotInitialize{}};
        return Mul(transposed.Transpose(a), b);
    }

    /// a, times the transpose of b.
    C3DMatrix44Tpl & MulRegByTrans(C3DMatrix44Tpl const & a, C3DMatrix44Tpl const & b)
    {
        C3DMatrix44Tpl transposed{C3DInitRequest_DoNotInitialize{}};
        return Mul(a, transposed.Transpose(b));
    }

    /// The transpose of the target.
    C3DMatrix44Tpl & Transpose() { return Transpose(*this); }
    /// The transpose of a.
    C3DMatrix44Tpl & Transpose(C3DMatrix44Tpl const & a)
    {
        T const(&m)[4][4] = a.m_Elements;
        return Set(m[0][0], m[1][0], m[2][0], m[3][0], m[0][1], m[1][1], m[2][1], m[3][1], m[0][2], m[1][2], m[2][2],
                   m[3][2], m[0][3], m[1][3], m[2][3], m[3][3]);
    }

    /// The sum of the diagonal.
    T GetTrace() const { return m_Elements[0][0] + m_Elements[1][1] + m_Elements[2][2] + m_Elements[3][3]; }

    /// The determinant, expanded along the first row.
    T GetDet() const;

    /// The determinant of the minor without row r and column c, the sign of the cofactor not applied. An index outside
    /// 0 to 3 takes 3.
    T GetDet(int r, int c) const;

    /// The inverse, by Gauss-Jordan elimination in `double`. Returns 0, with the target kept, where no pivot reaches
    /// the standard tolerance. That test is absolute: 1e-13 times the identity is singular here, while C3DMatrix33Tpl
    /// inverts its like.
    int Invert() { return Invert(*this); }
    /// The inverse of a, under the same test.
    int Invert(C3DMatrix44Tpl const & a);

    /// The transpose of the inverse of the target, under the same test.
    int TransposeInverse() { return TransposeInverse(*this); }
    /// The transpose of the inverse of a, under the same test.
    int TransposeInverse(C3DMatrix44Tpl const & a);
    ///@}

    /// \name Persistence and text
    ///@{

    /// Writes the sixteen elements row by row, without the mask byte. Always 0: results of the stream are not looked
    /// at, and a null stream is tolerated.
    long Save(IStream * stream, int format) const;

    /// Reads what Save writes, under the same indifference: what cannot be read keeps its value.
    long Load(IStream * stream);

    /// Prints the label (if not null) on a line of its own, the rows on the next four, and a line that holds one blank.
    void Dump(wchar_t const * label, std::ostream & stream) const;
    ///@}

protected:
    /// The inverse of a, transposed where `transposed` is not 0, into `out`, which may be a. Returns 0, with `out`
    /// untouched, where a pivot is missing. A row is exchanged only where its pivot is too small, for the first below
    /// that serves and not for the largest.
    int ComputeInverse(T const (*const a)[4], T (*const out)[4], int transposed);

    /// Element [r][c] stands in row r and column c.
    T m_Elements[4][4];
    /// The mask byte, behind the elements.
    unsigned char m_MaskInfo;
};

/// 1 unless some pair of elements differs by `epsilon` or more; a NaN counts as close, and the mask byte is ignored.
template <typename T>
MATH_API int AreAlmostEqual(C3DMatrix44Tpl<T> const & a, C3DMatrix44Tpl<T> const & b,
                            std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>);

/// Writes four rows, each as a four-component vector is written, with an end of line after the first three.
template <typename T>
MATH_API std::ostream & operator<<(std::ostream & stream, C3DMatrix44Tpl<T> const & matrix);

/// Reads sixteen bare numbers, row by row; the mask byte stays. After a failed extraction the elements are undefined.
template <typename T>
MATH_API std::istream & operator>>(std::istream & stream, C3DMatrix44Tpl<T> & matrix);

template <typename T>
inline C3DMatrix33Tpl<T>::C3DMatrix33Tpl(int r, int c, C3DMatrix44Tpl<T> const & m)
{
    Set(r, c, m);
}

template <typename T>
inline C3DMatrix33Tpl<T> & C3DMatrix33Tpl<T>::Set(int r, int c, C3DMatrix44Tpl<T> const & m)
{
    int const skippedRow = r >= 0 && r <= 3 ? r : 3;
    int const skippedColumn = c >= 0 && c <= 3 ? c : 3;
    for (int row = 0; row < 3; ++row)
    {
        for (int column = 0; column < 3; ++column)
        {
            m_Elements[row][column] = m.Get(row + (row >= skippedRow), column + (column >= skippedColumn));
        }
    }
    return *this;
}

template <typename T>
template <typename Row>
inline void C3DVector3Tpl<T>::MulPoint(C3DVector3Tpl<T> const & v, C3DMatrix44Tpl<T> const & m, Row & sum)
{
    Row x;
    Row y;
    Row z;
    Row last;
    math::detail::LoadRows(m.GetArray(), x, y, z, last);
    sum = last + v.X * x + v.Y * y + v.Z * z;
}

template <typename T>
inline C3DVector3Tpl<T> & C3DVector3Tpl<T>::Mul(C3DVector3Tpl<T> const & v, C3DMatrix44Tpl<T> const & m)
{
    if (v.MayHaveZero()) [[unlikely]]
    {
        T sum[4];
        MulPointSkippingZeros(v, m, sum);
        T const reciprocal = T(1) / sum[3];
        return Set(sum[0] * reciprocal, sum[1] * reciprocal, sum[2] * reciprocal);
    }
    typename math::detail::Row4<T>::Lanes sum;
    MulPoint(v, m, sum);
    sum *= T(1) / sum[3];
    return Set(sum[0], sum[1], sum[2]);
}

template <typename T>
inline C3DVector4Tpl<T> & C3DVector4Tpl<T>::Mul(C3DVector4Tpl<T> const & v, C3DMatrix44Tpl<T> const & m)
{
    using Row = typename math::detail::Row4<T>::Lanes;
    Row x;
    Row y;
    Row z;
    Row w;
    math::detail::LoadRows(m.GetArray(), x, y, z, w);
    Row const sum = v.X * x + v.Y * y + v.Z * z + v.W * w;
    math::detail::StoreRow(sum, GetArray());
    return *this;
}

template <typename T>
inline C3DVector4Tpl<T> & C3DVector4Tpl<T>::Mul(C3DMatrix44Tpl<T> const & m)
{
    return Mul(*this, m);
}

template <typename T>
inline C3DVector4Tpl<T> & C3DVector4Tpl<T>::Mul(C3DMatrix44Tpl<T> const & m, C3DVector4Tpl<T> const & v)
{
    T product[4];
    for (int r = 0; r < 4; ++r)
    {
        product[r] = m.Get(r, 0) * v.X + m.Get(r, 1) * v.Y + m.Get(r, 2) * v.Z + m.Get(r, 3) * v.W;
    }
    return Set(product[0], product[1], product[2], product[3]);
}

extern template class MATH_API C3DMatrix44Tpl<float>;
extern template class MATH_API C3DMatrix44Tpl<double>;
extern template int AreAlmostEqual(C3DMatrix44Tpl<float> const &, C3DMatrix44Tpl<float> const &, float);
extern template int AreAlmostEqual(C3DMatrix44Tpl<double> const &, C3DMatrix44Tpl<double> const &, double);
extern template std::ostream & operator<<(std::ostream &, C3DMatrix44Tpl<float> const &);
extern template std::ostream & operator<<(std::ostream &, C3DMatrix44Tpl<double> const &);
extern template std::istream & operator>>(std::istream &, C3DMatrix44Tpl<float> &);
extern template std::istream & operator>>(std::istream &, C3DMatrix44Tpl<double> &);
