#pragma once

/// \file
/// The four-component vector.

#include "math/numeric.h"
#include "math/vector3.h"

#include <cmath>
#include <cstdint>
#include <iosfwd>
#include <type_traits>

class IStream;
template <typename T>
class C3DMatrix44Tpl;
template <typename T>
class C3DXfoMatTpl;

/// Four scalars X, Y, Z, W, contiguous and in this order, all of which take part in the arithmetic.
///
/// The sibling of C3DVector3Tpl, with which it shares its manner: vectors are rows, methods write into the target and
/// return it, and the target may be an operand.
template <typename T>
class C3DVector4Tpl
{
public:
    T X; ///< The first component.
    T Y; ///< The second component.
    T Z; ///< The third component.
    T W; ///< The fourth component.

    /// \name Construction and access
    ///@{

    /// The null vector.
    C3DVector4Tpl() : X(0), Y(0), Z(0), W(0) {}
    /// (x, y, z, w).
    C3DVector4Tpl(T x, T y, T z, T w) : X(x), Y(y), Z(z), W(w) {}

    /// Copies four consecutive scalars.
    explicit C3DVector4Tpl(T const * const array) : X(array[0]), Y(array[1]), Z(array[2]), W(array[3]) {}

    /// `value` in the component that `axis` selects, 0 in the others; an axis outside 0 to 3 gives the null vector.
    C3DVector4Tpl(int axis, T value)
        : X(axis == 0 ? value : T(0)), Y(axis == 1 ? value : T(0)), Z(axis == 2 ? value : T(0)),
          W(axis == 3 ? value : T(0))
    {
    }

    /// The point v in homogeneous form with the weight w: (w v, w), not a plain copy of four numbers.
    C3DVector4Tpl(C3DVector3Tpl<T> const & v, T w) : X(v.X * w), Y(v.Y * w), Z(v.Z * w), W(w) {}

    /// Becomes (x, y, z, w).
    C3DVector4Tpl & Set(T x, T y, T z, T w)
    {
        X = x;
        Y = y;
        Z = z;
        W = w;
        return *this;
    }
    /// Becomes a copy. Returns nothing, unlike the other setters.
    void Set(C3DVector4Tpl const & vector) { *this = vector; }

    /// Sets component 0, 1, 2 or 3; any other index changes nothing.
    C3DVector4Tpl & Set(int index, T value)
    {
        if (index >= 0 && index <= 3)
        {
            GetArray()[index] = value;
        }
        return *this;
    }
    /// Sets X and leaves the others.
    C3DVector4Tpl & SetX(T x)
    {
        X = x;
        return *this;
    }
    /// Sets Y and leaves the others.
    C3DVector4Tpl & SetY(T y)
    {
        Y = y;
        return *this;
    }
    /// Sets Z and leaves the others.
    C3DVector4Tpl & SetZ(T z)
    {
        Z = z;
        return *this;
    }
    /// Sets W and leaves the others.
    C3DVector4Tpl & SetW(T w)
    {
        W = w;
        return *this;
    }

    /// All components at once.
    void Get(T & x, T & y, T & z, T & w) const
    {
        x = X;
        y = Y;
        z = Z;
        w = W;
    }

    /// Component 0, 1 or 2; any other index gives W.
    T Get(int index) const { return index >= 0 && index <= 2 ? GetArray()[index] : W; }
    /// X.
    T GetX() const { return X; }
    /// Y.
    T GetY() const { return Y; }
    /// Z.
    T GetZ() const { return Z; }
    /// W.
    T GetW() const { return W; }

    /// The component; the index is not checked.
    T & operator[](unsigned long index) { return GetArray()[index]; }
    /// The component, for reading; the index is not checked.
    T const & operator[](unsigned long index) const { return GetArray()[index]; }

    /// The four components as an array.
    T * GetArray() { return reinterpret_cast<T *>(this); }
    /// The components as an array, for reading.
    T const * GetArray() const { return reinterpret_cast<T const *>(this); }

    /// Bytes held outside the object: none.
    std::uint64_t GetDynamicMemSize() const { return 0; }
    ///@}

    /// \name Tests
    ///@{

    /// 1 unless the magnitude of some component is above `epsilon`.
    int IsNull(T epsilon = math::detail::k_StandardTolerance<T>) const
    {
        return !(std::abs(X) > epsilon || std::abs(Y) > epsilon || std::abs(Z) > epsilon || std::abs(W) > epsilon);
    }

    /// 1 when all four components compare equal to 0.
    int IsExactlyNull() const { return X == 0 && Y == 0 && Z == 0 && W == 0; }

    /// Exact comparison by "below" and "above": a NaN compares equal to anything.
    bool operator==(C3DVector4Tpl const & other) const
    {
        return !(X < other.X || X > other.X || Y < other.Y || Y > other.Y || Z < other.Z || Z > other.Z ||
                 W < other.W || W > other.W);
    }
    /// The negation of operator==: false where a NaN hides a difference.
    bool operator!=(C3DVector4Tpl const & other) const { return !(*this == other); }
    ///@}

    /// \name Arithmetic
    /// Nothing is tested. The target may be any operand.
    ///@{

    /// All components 0.
    C3DVector4Tpl & SetNull() { return Set(0, 0, 0, 0); }

    /// The opposite of the target.
    C3DVector4Tpl & Negate() { return Negate(*this); }
    /// -a.
    C3DVector4Tpl & Negate(C3DVector4Tpl const & a) { return Set(-a.X, -a.Y, -a.Z, -a.W); }

    /// The target plus b.
    C3DVector4Tpl & Add(C3DVector4Tpl const & b) { return Add(*this, b); }
    /// a + b.
    C3DVector4Tpl & Add(C3DVector4Tpl const & a, C3DVector4Tpl const & b)
    {
        return Set(a.X + b.X, a.Y + b.Y, a.Z + b.Z, a.W + b.W);
    }
    /// The target plus (x, y, z, w).
    C3DVector4Tpl & Add(T x, T y, T z, T w) { return Set(X + x, Y + y, Z + z, W + w); }

    /// The target minus b.
    C3DVector4Tpl & Sub(C3DVector4Tpl const & b) { return Sub(*this, b); }
    /// a - b.
    C3DVector4Tpl & Sub(C3DVector4Tpl const & a, C3DVector4Tpl const & b)
    {
        return Set(a.X - b.X, a.Y - b.Y, a.Z - b.Z, a.W - b.W);
    }
    /// The target minus (x, y, z, w).
    C3DVector4Tpl & Sub(T x, T y, T z, T w) { return Set(X - x, Y - y, Z - z, W - w); }

    /// The target times a scalar.
    C3DVector4Tpl & Mul(T factor) { return Mul(*this, factor); }
    /// A scalar times a.
    C3DVector4Tpl & Mul(T factor, C3DVector4Tpl const & a) { return Mul(a, factor); }
    /// a times a scalar.
    C3DVector4Tpl & Mul(C3DVector4Tpl const & a, T factor)
    {
        return Set(a.X * factor, a.Y * factor, a.Z * factor, a.W * factor);
    }

    /// Scales by the reciprocal of the divisor, taken once; a zero divisor gives infinities or NaNs.
    C3DVector4Tpl & Div(T divisor) { return Div(*this, divisor); }
    /// a by the divisor, in the same way.
    C3DVector4Tpl & Div(C3DVector4Tpl const & a, T divisor) { return Mul(a, T(1) / divisor); }

    /// The target times b, component by component.
    C3DVector4Tpl & MulComp(C3DVector4Tpl const & b) { return MulComp(*this, b); }
    /// a times b, component by component.
    C3DVector4Tpl & MulComp(C3DVector4Tpl const & a, C3DVector4Tpl const & b)
    {
        return Set(a.X * b.X, a.Y * b.Y, a.Z * b.Z, a.W * b.W);
    }

    /// The target by b, component by component, with true quotients.
    C3DVector4Tpl & DivComp(C3DVector4Tpl const & b) { return DivComp(*this, b); }
    /// a by b, component by component, with true quotients.
    C3DVector4Tpl & DivComp(C3DVector4Tpl const & a, C3DVector4Tpl const & b)
    {
        return Set(a.X / b.X, a.Y / b.Y, a.Z / b.Z, a.W / b.W);
    }

    /// The Euclidean length: infinite where a square overflows, 0 where all underflow.
    T GetLength() const { return std::sqrt(GetSquaredLength()); }
    /// The sum of the squares of the components.
    T GetSquaredLength() const { return X * X + Y * Y + Z * Z + W * W; }
    ///@}

    /// \name Transformation by a matrix
    /// Defined with the matrices, in their headers. Every operand is read before the target is written. No zero
    /// component is skipped and nothing is divided by W.
    ///@{

    /// The row product v m: component j is the sum of v_i m[i][j].
    inline C3DVector4Tpl & Mul(C3DVector4Tpl const & v, C3DMatrix44Tpl<T> const & m);
    /// The target as a row times m, in place.
    inline C3DVector4Tpl & Mul(C3DMatrix44Tpl<T> const & m);

    /// The column product m v: component i is the sum of m[i][j] v_j.
    inline C3DVector4Tpl & Mul(C3DMatrix44Tpl<T> const & m, C3DVector4Tpl const & v);

    /// The row product v m with a transformation matrix: nothing is divided, and column 3 of m is read.
    inline C3DVector4Tpl & Mul(C3DVector4Tpl const & v, C3DXfoMatTpl<T> const & m);
    /// The column product m v with a transformation matrix.
    inline C3DVector4Tpl & Mul(C3DXfoMatTpl<T> const & m, C3DVector4Tpl const & v);
    ///@}

    /// \name Geometry
    ///@{

    /// Scales to length one. Returns 0, with the vector unchanged, where the length is not above the standard
    /// tolerance.
    int Normalize();

    /// Scales to the given length, which may be zero or negative. Returns 0, with the vector unchanged, where the
    /// length is not at or above the standard tolerance: a vector just as long as that is scaled here, but not by
    /// Normalize.
    int SetLength(T length);

    /// Projects the target on the direction `onto`. Returns 0, with the target unchanged, where the squared length of
    /// `onto` is below the standard tolerance.
    int SetProjection(C3DVector4Tpl const & onto);

    /// A floor for the magnitudes: a component whose magnitude is below `limit` gets `limit` with its own sign, a zero
    /// counting as positive.
    C3DVector4Tpl & SetMinimal(T limit);
    ///@}

    /// \name Persistence and text
    ///@{

    /// Writes X, Y, Z, W. Always 0: results of the stream are not looked at, and a null stream is tolerated.
    long Save(IStream * stream, int format) const;

    /// Reads what Save writes, under the same indifference: what cannot be read keeps its value.
    long Load(IStream * stream);

    /// Prints the label (if not null) on a line of its own, the vector on the next, and a line that holds one blank.
    void Dump(wchar_t const * label, std::ostream & stream) const;
    ///@}
};

namespace math::detail
{

template <typename T>
inline T Dot(C3DVector4Tpl<T> const & a, C3DVector4Tpl<T> const & b)
{
    return a.X * b.X + a.Y * b.Y + a.Z * b.Z + a.W * b.W;
}

} // namespace math::detail

/// 1 unless some pair of components differs by `epsilon` or more; a NaN counts as close.
template <typename T>
MATH_API inline int AreAlmostEqual(C3DVector4Tpl<T> const & a, C3DVector4Tpl<T> const & b,
                                   std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>)
{
    return !(std::abs(a.X - b.X) >= epsilon || std::abs(a.Y - b.Y) >= epsilon || std::abs(a.Z - b.Z) >= epsilon ||
             std::abs(a.W - b.W) >= epsilon);
}

/// 1 unless the dot product is at or above `epsilon`. It is taken with its sign: vectors at an obtuse angle count as
/// orthogonal.
template <typename T>
MATH_API inline int AreOrthogonal(C3DVector4Tpl<T> const & a, C3DVector4Tpl<T> const & b,
                                  std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>)
{
    return !(math::detail::Dot(a, b) >= epsilon);
}

/// The distance of two points.
template <typename T>
MATH_API inline T GetDistance(C3DVector4Tpl<T> const & a, C3DVector4Tpl<T> const & b)
{
    return C3DVector4Tpl<T>().Sub(a, b).GetLength();
}

/// The squared distance of two points.
template <typename T>
MATH_API inline T GetSquaredDistance(C3DVector4Tpl<T> const & a, C3DVector4Tpl<T> const & b)
{
    return C3DVector4Tpl<T>().Sub(a, b).GetSquaredLength();
}

/// Writes "( X Y Z W )" in the stream's number format.
template <typename T>
MATH_API std::ostream & operator<<(std::ostream & stream, C3DVector4Tpl<T> const & vector);

/// Reads four bare numbers, not the parentheses that operator<< writes. After a failed extraction the target is
/// undefined.
template <typename T>
MATH_API std::istream & operator>>(std::istream & stream, C3DVector4Tpl<T> & vector);

extern template class MATH_API C3DVector4Tpl<float>;
extern template class MATH_API C3DVector4Tpl<double>;
extern template int AreAlmostEqual(C3DVector4Tpl<float> const &, C3DVector4Tpl<float> const &, float);
extern template int AreAlmostEqual(C3DVector4Tpl<double> const &, C3DVector4Tpl<double> const &, double);
extern template int AreOrthogonal(C3DVector4Tpl<float> const &, C3DVector4Tpl<float> const &, float);
extern template int AreOrthogonal(C3DVector4Tpl<double> const &, C3DVector4Tpl<double> const &, double);
extern template float GetDistance(C3DVector4Tpl<float> const &, C3DVector4Tpl<float> const &);
extern template double GetDistance(C3DVector4Tpl<double> const &, C3DVector4Tpl<double> const &);
extern template float GetSquaredDistance(C3DVector4Tpl<float> const &, C3DVector4Tpl<float> const &);
extern template double GetSquaredDistance(C3DVector4Tpl<double> const &, C3DVector4Tpl<double> const &);
extern template std::ostream & operator<<(std::ostream &, C3DVector4Tpl<float> const &);
extern template std::ostream & operator<<(std::ostream &, C3DVector4Tpl<double> const &);
extern template std::istream & operator>>(std::istream &, C3DVector4Tpl<float> &);
extern template std::istream & operator>>(std::istream &, C3DVector4Tpl<double> &);
