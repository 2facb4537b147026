#pragma once

/// \file
/// The two-component vector.

#include "math/numeric.h"

#include <cmath>
#include <cstdint>
#include <iosfwd>
#include <type_traits>

class IStream;
template <typename T>
class C3DRotMatTpl;
template <typename T>
class C3DVector3Tpl;

/// A point or a direction in the plane: two scalars X, Y, contiguous and in this order.
///
/// The sibling of C3DVector3Tpl, with which it shares its manner: methods write into the target and return it, and the
/// target may be an operand unless an operation says otherwise.
template <typename T>
class C3DVector2Tpl
{
public:
    T X; ///< The first component.
    T Y; ///< The second component.

    /// \name Construction and access
    ///@{

    /// The null vector.
    C3DVector2Tpl() : X(0), Y(0) {}
    /// (x, y).
    C3DVector2Tpl(T x, T y) : X(x), Y(y) {}

    /// Copies two consecutive scalars.
    explicit C3DVector2Tpl(T const * const array) : X(array[0]), Y(array[1]) {}

    /// `value` in the component that `axis` selects, 0 in the other; an axis other than 0 and 1 gives the null vector.
    /// Two integer arguments select this constructor: write `C3DVector2Tpl<double>(1.0, 2.0)` for a point.
    C3DVector2Tpl(int axis, T value) : X(axis == 0 ? value : T(0)), Y(axis == 1 ? value : T(0)) {}

    /// Becomes (x, y).
    C3DVector2Tpl & Set(T x, T y)
    {
        X = x;
        Y = y;
        return *this;
    }
    /// Becomes a copy.
    C3DVector2Tpl & Set(C3DVector2Tpl const & vector) { return *this = vector; }

    /// Sets component 0 or 1; any other index changes nothing. It is not called Set, which takes two scalars here.
    C3DVector2Tpl & SetComp(int index, T value)
    {
        if (index == 0)
        {
            X = value;
        }
        else if (index == 1)
        {
            Y = value;
        }
        return *this;
    }
    /// Sets X and leaves the others.
    C3DVector2Tpl & SetX(T x)
    {
        X = x;
        return *this;
    }
    /// Sets Y and leaves the others.
    C3DVector2Tpl & SetY(T y)
    {
        Y = y;
        return *this;
    }

    /// All components at once.
    void Get(T & x, T & y) const
    {
        x = X;
        y = Y;
    }

    /// Component 0; any other index gives Y.
    T Get(int index) const { return index == 0 ? X : Y; }
    /// X.
    T GetX() const { return X; }
    /// Y.
    T GetY() const { return Y; }

    /// The component; the index is not checked.
    T & operator[](unsigned long index) { return GetArray()[index]; }
    /// The component, for reading; the index is not checked.
    T const & operator[](unsigned long index) const { return GetArray()[index]; }

    /// The two components as an array.
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
        return !(std::abs(X) > epsilon || std::abs(Y) > epsilon);
    }

    /// 1 when both components compare equal to 0.
    int IsExactlyNull() const { return X == 0 && Y == 0; }

    /// Exact comparison by "below" and "above": a NaN compares equal to anything.
    bool operator==(C3DVector2Tpl const & other) const
    {
        return !(X < other.X || X > other.X || Y < other.Y || Y > other.Y);
    }
    /// The negation of operator==: false where a NaN hides a difference.
    bool operator!=(C3DVector2Tpl const & other) const { return !(*this == other); }
    ///@}

    /// \name Arithmetic
    /// Nothing is tested. The target may be any operand.
    ///@{

    /// All components 0.
    C3DVector2Tpl & SetNull() { return Set(0, 0); }

    /// The opposite of the target.
    C3DVector2Tpl & Negate() { return Negate(*this); }
    /// -a.
    C3DVector2Tpl & Negate(C3DVector2Tpl const & a) { return Set(-a.X, -a.Y); }

    /// The target plus b.
    C3DVector2Tpl & Add(C3DVector2Tpl const & b) { return Add(*this, b); }
    /// a + b.
    C3DVector2Tpl & Add(C3DVector2Tpl const & a, C3DVector2Tpl const & b) { return Set(a.X + b.X, a.Y + b.Y); }
    /// The target plus (x, y).
    C3DVector2Tpl & Add(T x, T y) { return Set(X + x, Y + y); }

    /// The target minus b.
    C3DVector2Tpl & Sub(C3DVector2Tpl const & b) { return Sub(*this, b); }
    /// a - b.
    C3DVector2Tpl & Sub(C3DVector2Tpl const & a, C3DVector2Tpl const & b) { return Set(a.X - b.X, a.Y - b.Y); }
    /// The target minus (x, y).
    C3DVector2Tpl & Sub(T x, T y) { return Set(X - x, Y - y); }

    /// The target times a scalar.
    C3DVector2Tpl & Mul(T factor) { return Mul(*this, factor); }
    /// A scalar times a.
    C3DVector2Tpl & Mul(T factor, C3DVector2Tpl const & a) { return Mul(a, factor); }
    /// a times a scalar.
    C3DVector2Tpl & Mul(C3DVector2Tpl const & a, T factor) { return Set(a.X * factor, a.Y * factor); }

    /// Scales by the reciprocal of the divisor, taken once; a zero divisor gives infinities or NaNs.
    C3DVector2Tpl & Div(T divisor) { return Div(*this, divisor); }
    /// a by the divisor, in the same way.
    C3DVector2Tpl & Div(C3DVector2Tpl const & a, T divisor) { return Mul(a, T(1) / divisor); }

    /// The target times b, component by component.
    C3DVector2Tpl & MulComp(C3DVector2Tpl const & b) { return MulComp(*this, b); }
    /// a times b, component by component.
    C3DVector2Tpl & MulComp(C3DVector2Tpl const & a, C3DVector2Tpl const & b) { return Set(a.X * b.X, a.Y * b.Y); }

    /// The target by b, component by component, with true quotients.
    C3DVector2Tpl & DivComp(C3DVector2Tpl const & b) { return DivComp(*this, b); }
    /// a by b, component by component, with true quotients.
    C3DVector2Tpl & DivComp(C3DVector2Tpl const & a, C3DVector2Tpl const & b) { return Set(a.X / b.X, a.Y / b.Y); }

    /// The Euclidean length: infinite where a square overflows, 0 where all underflow.
    T GetLength() const { return std::sqrt(GetSquaredLength()); }
    /// The sum of the squares of the components.
    T GetSquaredLength() const { return X * X + Y * Y; }
    ///@}

    /// \name Transformation by a rotation
    /// Defined with the rotation matrix, in its header.
    ///@{

    /// The first two components of the column product m v.
    inline C3DVector2Tpl & Mul(C3DRotMatTpl<T> const & m, C3DVector3Tpl<T> const & v);

    /// The first two components of the row product v m.
    inline C3DVector2Tpl & Mul(C3DVector3Tpl<T> const & v, C3DRotMatTpl<T> const & m);
    ///@}

    /// \name Geometry
    ///@{

    /// Scales to length one. Returns 0, with the vector unchanged, where the length is not above the standard
    /// tolerance.
    int Normalize() { return SetLength(T(1)); }

    /// Scales to the given length, which may be zero or negative. Fails as Normalize does.
    int SetLength(T length)
    {
        T const current = GetLength();
        if (!(static_cast<double>(current) > math::detail::k_WidenedTolerance<T>))
        {
            return 0;
        }
        Mul(length / current);
        return 1;
    }

    /// Projects the target on the direction `onto`. Returns 0, with the target unchanged, where the squared length of
    /// `onto` is below 1e-12. That limit serves both scalar types: it is the one test of the `float` vector that the
    /// standard tolerance of `float` does not rule.
    int SetProjection(C3DVector2Tpl const & onto);

    /// 2c - p: p mirrored through the point c. The target may be c. It may not be p: c is copied to the target first,
    /// and the result would be the null vector.
    C3DVector2Tpl & SetMirror(C3DVector2Tpl const & p, C3DVector2Tpl const & c);

    /// The point half-way between a and b.
    C3DVector2Tpl & SetMidpoint(C3DVector2Tpl const & a, C3DVector2Tpl const & b)
    {
        return Set((a.X + b.X) * T(0.5), (a.Y + b.Y) * T(0.5));
    }

    /// The mean of `count` points, added in array order. A null pointer leaves the target; a count of 0 is not tested
    /// and gives NaNs. The target must not lie in the array.
    C3DVector2Tpl & SetMean(C3DVector2Tpl const * points, unsigned long count);

    /// (1 - t) a + t b, formed with these two products.
    C3DVector2Tpl & LinearPositionInterpolate(C3DVector2Tpl const & a, C3DVector2Tpl const & b, T t)
    {
        T const s = T(1) - t;
        return Set(s * a.X + t * b.X, s * a.Y + t * b.Y);
    }

    /// The parameter t of the target on the segment from a to b, read on the axis on which the segment is longer (Y on
    /// a tie) and not clamped; 0 where the segment does not span more than `epsilon`. The three-component vector
    /// already accepts a span of `epsilon` itself.
    T LinearPositionUnInterpolate(C3DVector2Tpl const & a, C3DVector2Tpl const & b,
                                  T epsilon = math::detail::k_StandardTolerance<T>) const;

    /// The point at t, usually 0 to 1, of the uniform cubic B-spline over four control points. The common factor is the
    /// literal 0.1666667 and not one sixth: the weights add up to 1.0000002.
    C3DVector2Tpl & BsplinePositionInterpolate(C3DVector2Tpl const & p0, C3DVector2Tpl const & p1,
                                               C3DVector2Tpl const & p2, C3DVector2Tpl const & p3, T t);

    /// The derivative with respect to t of the exact spline.
    C3DVector2Tpl & BsplineVectorInterpolate(C3DVector2Tpl const & p0, C3DVector2Tpl const & p1,
                                             C3DVector2Tpl const & p2, C3DVector2Tpl const & p3, T t);

    /// A quarter turn counter-clockwise: (X, Y) becomes (-Y, X).
    void Rotate90DegsCCW() { Set(-Y, X); }

    /// 1 when the target lies strictly within the extent of a and b, widened by `epsilon` at both ends, on the axis on
    /// which they are further apart (Y on a tie). The other axis is not looked at.
    int IsBetween(C3DVector2Tpl const & a, C3DVector2Tpl const & b,
                  T epsilon = math::detail::k_StandardTolerance<T>) const;

    /// The squared distance from a line. Where the squared length of `direction` is below `epsilon`, the line is taken
    /// for the point `base`.
    T GetSquaredDistanceFromLine(C3DVector2Tpl const & base, C3DVector2Tpl const & direction,
                                 T epsilon = math::detail::k_StandardTolerance<T>) const;

    /// The nearest point on a line, as the offset from `base`: add `base` to get the point itself. A null direction
    /// gives NaNs, whatever `epsilon` is.
    void GetNearestPointToLine(C3DVector2Tpl const & base, C3DVector2Tpl const & direction, C3DVector2Tpl & result,
                               T epsilon = math::detail::k_StandardTolerance<T>) const;

    /// Finds s and t such that the target is s a + t b. Returns 1 on success. Where a and b are parallel within
    /// `epsilon`, the target has to lie on the line of a, and one of s and t stays 0; else 0 is returned with s and t
    /// 0.
    int DecomposeIn2Basis(C3DVector2Tpl const & a, C3DVector2Tpl const & b, T & s, T & t,
                          T epsilon = math::detail::k_StandardTolerance<T>) const;

    /// The meeting point of the endless lines p + s d and q + t e. Returns 0, with the target unchanged, where
    /// DecomposeIn2Basis finds no solution.
    int SetIntersection(C3DVector2Tpl const & p, C3DVector2Tpl const & d, C3DVector2Tpl const & q,
                        C3DVector2Tpl const & e, T epsilon = math::detail::k_StandardTolerance<T>);

    /// The larger component. `magnitudes` 0 compares signed values; anything else compares absolute
    /// values and returns one.
    T GetMaxComponent(int magnitudes) const;
    /// The smaller component, under the same choice.
    T GetMinComponent(int magnitudes) const;

    /// The index of the larger component, signed or by magnitude as in GetMaxComponent; a tie yields 1.
    int GetIndexOfMaxComponent(int magnitudes) const;
    /// The index of the smaller component; a tie yields 1.
    int GetIndexOfMinComponent(int magnitudes) const;

    /// A floor for each component. With `magnitudes` 0 a component becomes the greater of itself and its limit. With
    /// any other value a component whose magnitude is below its limit gets the limit with its own sign, a zero counting
    /// as positive.
    C3DVector2Tpl & SetMinimal(C3DVector2Tpl const & limit, int magnitudes);
    /// The same limit for both components; note the order of the arguments.
    C3DVector2Tpl & SetMinimal(int magnitudes, T limit) { return SetMinimal(C3DVector2Tpl(limit, limit), magnitudes); }
    ///@}

    /// \name Persistence and text
    ///@{

    /// Writes X, Y. Always 0: results of the stream are not looked at, and a null stream is tolerated.
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
inline T Dot(C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b)
{
    return a.X * b.X + a.Y * b.Y;
}

} // namespace math::detail

/// 1 unless some pair of components differs by `epsilon` or more; a NaN counts as close.
template <typename T>
MATH_API inline int AreAlmostEqual(C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b,
                                   std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>)
{
    return !(std::abs(a.X - b.X) >= epsilon || std::abs(a.Y - b.Y) >= epsilon);
}

/// The distance of two points.
template <typename T>
MATH_API inline T GetDistance(C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b)
{
    return C3DVector2Tpl<T>().Sub(a, b).GetLength();
}

/// The squared distance of two points.
template <typename T>
MATH_API inline T GetSquaredDistance(C3DVector2Tpl<T> const & a, C3DVector2Tpl<T> const & b)
{
    return C3DVector2Tpl<T>().Sub(a, b).GetSquaredLength();
}

extern template class MATH_API C3DVector2Tpl<float>;
extern template class MATH_API C3DVector2Tpl<double>;
extern template int AreAlmostEqual(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &, float);
extern template int AreAlmostEqual(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &, double);
extern template float GetDistance(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &);
extern template double GetDistance(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &);
extern template float GetSquaredDistance(C3DVector2Tpl<float> const &, C3DVector2Tpl<float> const &);
extern template double GetSquaredDistance(C3DVector2Tpl<double> const &, C3DVector2Tpl<double> const &);
