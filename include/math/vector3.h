#pragma once

/// \file
/// The three-component vector.

#include "math/numeric.h"

#include <cmath>
#include <cstdint>
#include <iosfwd>
#include <type_traits>

class IStream;
struct QN_Vector;
template <typename T>
class C3DMatrix33Tpl;
template <typename T>
class C3DMatrix44Tpl;
template <typename T>
class C3DRotMatTpl;
template <typename T>
class C3DXfoMatTpl;

/// A point or a direction in space: three scalars X, Y, Z, contiguous and in this order.
///
/// Vectors are rows: a point p goes through a matrix M as p M, with the translation in the last row of M. Methods write
/// into the target, `target.Op(a, b)`, and return it for chaining; forms that lack an operand use the target as the
/// first one. Unless an operation says otherwise the target may be an operand.
template <typename T>
class C3DVector3Tpl
{
public:
    T X; ///< The first component.
    T Y; ///< The second component.
    T Z; ///< The third component.

    /// Every component one; its length is the square root of 3.
    static C3DVector3Tpl const k_UnitVector;

    /// \name Construction and access
    ///@{

    /// Writes nothing: the components stay as the memory was.
    C3DVector3Tpl() {} // NOLINT(modernize-use-equals-default): value initialisation must not clear the components.
    /// (x, y, z).
    C3DVector3Tpl(T x, T y, T z) : X(x), Y(y), Z(z) {}

    /// Copies three consecutive scalars.
    explicit C3DVector3Tpl(T const * const array) : X(array[0]), Y(array[1]), Z(array[2]) {}

    /// `value` in the component that `axis` selects, 0 in the others; an axis outside 0 to 2 gives the null vector.
    C3DVector3Tpl(int axis, T value)
        : X(axis == 0 ? value : T(0)), Y(axis == 1 ? value : T(0)), Z(axis == 2 ? value : T(0))
    {
    }

    /// From the package's `float` vector: every value is kept.
    C3DVector3Tpl(QN_Vector const & vector);
    /// Becomes the package's `float` vector.
    C3DVector3Tpl & operator=(QN_Vector const & vector);
    /// To the package's `float` vector. `double` components are rounded to `float`.
    operator QN_Vector() const;

    /// Becomes (x, y, z).
    C3DVector3Tpl & Set(T x, T y, T z)
    {
        X = x;
        Y = y;
        Z = z;
        return *this;
    }
    /// Becomes a copy.
    C3DVector3Tpl & Set(C3DVector3Tpl const & vector) { return *this = vector; }

    /// Sets component 0, 1 or 2; any other index changes nothing.
    C3DVector3Tpl & Set(int index, T value)
    {
        if (index >= 0 && index <= 2)
        {
            GetArray()[index] = value;
        }
        return *this;
    }
    /// Sets X and leaves the others.
    C3DVector3Tpl & SetX(T x)
    {
        X = x;
        return *this;
    }
    /// Sets Y and leaves the others.
    C3DVector3Tpl & SetY(T y)
    {
        Y = y;
        return *this;
    }
    /// Sets Z and leaves the others.
    C3DVector3Tpl & SetZ(T z)
    {
        Z = z;
        return *this;
    }

    /// All components at once.
    void Get(T & x, T & y, T & z) const
    {
        x = X;
        y = Y;
        z = Z;
    }

    /// Component 0 or 1; any other index gives Z.
    T Get(int index) const { return index == 0 ? X : (index == 1 ? Y : Z); }
    /// X.
    T GetX() const { return X; }
    /// Y.
    T GetY() const { return Y; }
    /// Z.
    T GetZ() const { return Z; }

    /// The component; the index is not checked.
    T & operator[](unsigned long index) { return GetArray()[index]; }
    /// The component, for reading; the index is not checked.
    T const & operator[](unsigned long index) const { return GetArray()[index]; }

    /// The three components as an array.
    T * GetArray() { return reinterpret_cast<T *>(this); }
    /// The components as an array, for reading.
    T const * GetArray() const { return reinterpret_cast<T const *>(this); }

    /// Bytes held outside the object: none.
    std::uint64_t GetDynamicMemSize() const { return 0; }
    ///@}

    /// \name Tests
    ///@{

    /// 1 unless the magnitude of some component is above `epsilon`: a null vector passes with an `epsilon` of 0, and a
    /// NaN passes always.
    int IsNull(T epsilon = math::detail::k_StandardTolerance<T>) const
    {
        return !(std::abs(X) > epsilon || std::abs(Y) > epsilon || std::abs(Z) > epsilon);
    }

    /// 1 when all three components compare equal to 0.
    int IsExactlyNull() const { return X == 0 && Y == 0 && Z == 0; }

    /// Exact comparison by "below" and "above": a NaN compares equal to anything.
    bool operator==(C3DVector3Tpl const & other) const
    {
        return !(X < other.X || X > other.X || Y < other.Y || Y > other.Y || Z < other.Z || Z > other.Z);
    }
    /// The negation of operator==: false where a NaN hides a difference.
    bool operator!=(C3DVector3Tpl const & other) const { return !(*this == other); }
    ///@}

    /// \name Arithmetic
    /// Nothing is tested. The target may be any operand.
    ///@{

    /// All components 0.
    C3DVector3Tpl & SetNull() { return Set(0, 0, 0); }

    /// The opposite of the target.
    C3DVector3Tpl & Negate() { return Negate(*this); }
    /// -a.
    C3DVector3Tpl & Negate(C3DVector3Tpl const & a) { return Set(-a.X, -a.Y, -a.Z); }

    /// The target plus b.
    C3DVector3Tpl & Add(C3DVector3Tpl const & b) { return Add(*this, b); }
    /// a + b.
    C3DVector3Tpl & Add(C3DVector3Tpl const & a, C3DVector3Tpl const & b)
    {
        return Set(a.X + b.X, a.Y + b.Y, a.Z + b.Z);
    }
    /// The target plus (x, y, z).
    C3DVector3Tpl & Add(T x, T y, T z) { return Set(X + x, Y + y, Z + z); }

    /// The target minus b.
    C3DVector3Tpl & Sub(C3DVector3Tpl const & b) { return Sub(*this, b); }
    /// a - b.
    C3DVector3Tpl & Sub(C3DVector3Tpl const & a, C3DVector3Tpl const & b)
    {
        return Set(a.X - b.X, a.Y - b.Y, a.Z - b.Z);
    }
    /// The target minus (x, y, z).
    C3DVector3Tpl & Sub(T x, T y, T z) { return Set(X - x, Y - y, Z - z); }

    /// The target times a scalar.
    C3DVector3Tpl & Mul(T factor) { return Mul(*this, factor); }
    /// A scalar times a.
    C3DVector3Tpl & Mul(T factor, C3DVector3Tpl const & a) { return Mul(a, factor); }
    /// a times a scalar.
    C3DVector3Tpl & Mul(C3DVector3Tpl const & a, T factor) { return Set(a.X * factor, a.Y * factor, a.Z * factor); }

    /// Scales by the reciprocal of the divisor, taken once: not a correctly rounded quotient, and a zero divisor gives
    /// infinities or NaNs.
    C3DVector3Tpl & Div(T divisor) { return Div(*this, divisor); }
    /// a by the divisor, in the same way.
    C3DVector3Tpl & Div(C3DVector3Tpl const & a, T divisor) { return Mul(a, T(1) / divisor); }

    /// The target times b, component by component.
    C3DVector3Tpl & MulComp(C3DVector3Tpl const & b) { return MulComp(*this, b); }
    /// a times b, component by component.
    C3DVector3Tpl & MulComp(C3DVector3Tpl const & a, C3DVector3Tpl const & b)
    {
        return Set(a.X * b.X, a.Y * b.Y, a.Z * b.Z);
    }

    /// The target by b, component by component, with true quotients.
    C3DVector3Tpl & DivComp(C3DVector3Tpl const & b) { return DivComp(*this, b); }
    /// a by b, component by component, with true quotients.
    C3DVector3Tpl & DivComp(C3DVector3Tpl const & a, C3DVector3Tpl const & b)
    {
        return Set(a.X / b.X, a.Y / b.Y, a.Z / b.Z);
    }

    /// The Euclidean length: infinite where a square overflows, 0 where all underflow.
    T GetLength() const { return std::sqrt(GetSquaredLength()); }
    /// The sum of the squares of the components.
    T GetSquaredLength() const { return X * X + Y * Y + Z * Z; }
    ///@}

    /// \name Transformation by a matrix
    /// Defined with the matrices, in their headers. Every operand is read before the target is written.
    ///@{

    /// The row product v m: component j is the sum of v_i m[i][j].
    inline C3DVector3Tpl & Mul(C3DVector3Tpl const & v, C3DMatrix33Tpl<T> const & m);
    /// The target as a row times m, in place.
    inline C3DVector3Tpl & Mul(C3DMatrix33Tpl<T> const & m);

    /// The column product m v: component i is the sum of m[i][j] v_j.
    inline C3DVector3Tpl & Mul(C3DMatrix33Tpl<T> const & m, C3DVector3Tpl const & v);

    /// The row product v m with a rotation.
    inline C3DVector3Tpl & Mul(C3DVector3Tpl const & v, C3DRotMatTpl<T> const & m);
    /// The column product m v with a rotation, which undoes the row product.
    inline C3DVector3Tpl & Mul(C3DRotMatTpl<T> const & m, C3DVector3Tpl const & v);

    /// The point (v, 1) as a row times m, divided by the resulting w, which is not tested. A component of v that is
    /// exactly 0 (or a NaN) contributes nothing, so an infinity or NaN in its row of m does not reach the result.
    inline C3DVector3Tpl & Mul(C3DVector3Tpl const & v, C3DMatrix44Tpl<T> const & m);

    /// The point through an affine transformation: the same sums, with no division. Column 3 of m is not read.
    inline C3DVector3Tpl & Mul(C3DVector3Tpl const & v, C3DXfoMatTpl<T> const & m);
    ///@}

    /// \name Geometry
    ///@{

    /// Scales to length one. Returns 0, with the vector unchanged, where the length is not above the standard
    /// tolerance; there is no default direction.
    int Normalize() { return SetLength(T(1)); }

    /// Scales to the given length, which may be zero or negative. Fails as Normalize does.
    int SetLength(T length)
    {
        T const current = GetLength();
        if (!(current > math::detail::k_StandardTolerance<T>))
        {
            return 0;
        }
        Mul(length / current);
        return 1;
    }

    /// The right-handed cross product a x b.
    C3DVector3Tpl & SetCross(C3DVector3Tpl const & a, C3DVector3Tpl const & b)
    {
        return Set(a.Y * b.Z - a.Z * b.Y, a.Z * b.X - a.X * b.Z, a.X * b.Y - a.Y * b.X);
    }
    /// The target crossed with a, in place.
    C3DVector3Tpl & SetCross(C3DVector3Tpl const & a) { return SetCross(*this, a); }
    /// (p1 - p0) x (p2 - p0), the normal of a triangle, at twice its area in length.
    C3DVector3Tpl & SetCross(C3DVector3Tpl const & p0, C3DVector3Tpl const & p1, C3DVector3Tpl const & p2)
    {
        C3DVector3Tpl edge1;
        C3DVector3Tpl edge2;
        return SetCross(edge1.Sub(p1, p0), edge2.Sub(p2, p0));
    }

    /// (a x b) x a: the component of b orthogonal to a, times the squared length of a.
    ///
    /// Returns 0 where no component of a x b is above the standard tolerance; the target then holds that almost null
    /// cross product, and not its old value. The target may be b, but not a, which is read after the first write.
    int SetOrthogonal(C3DVector3Tpl const & a, C3DVector3Tpl const & b);

    /// The part of b orthogonal to a, at its true length. Fails as SetOrthogonal does, with the same content of the
    /// target. The target must be neither a nor b.
    int SetOrthoProj(C3DVector3Tpl const & a, C3DVector3Tpl const & b);

    /// Projects the target on the direction `onto`. Returns 0, with the target unchanged, where the squared length of
    /// `onto` is below the standard tolerance. Squared, and non-strict: shorter directions pass here than in Normalize.
    int SetProjection(C3DVector3Tpl const & onto);

    /// 2c - p: p mirrored through the point c. The target may be c. It may not be p: c is copied to the target first,
    /// and the result would be the null vector.
    C3DVector3Tpl & SetMirror(C3DVector3Tpl const & p, C3DVector3Tpl const & c);

    /// The point half-way between a and b.
    C3DVector3Tpl & SetMidpoint(C3DVector3Tpl const & a, C3DVector3Tpl const & b)
    {
        return Set((a.X + b.X) * T(0.5), (a.Y + b.Y) * T(0.5), (a.Z + b.Z) * T(0.5));
    }

    /// The mean of `count` points, added in array order. A null pointer leaves the target; a count of 0 is not tested
    /// and gives NaNs. The target must not lie in the array.
    C3DVector3Tpl & SetMean(C3DVector3Tpl const * points, unsigned long count);

    /// (1 - t) a + t b, formed with these two products.
    C3DVector3Tpl & LinearPositionInterpolate(C3DVector3Tpl const & a, C3DVector3Tpl const & b, T t)
    {
        T const s = T(1) - t;
        return Set(s * a.X + t * b.X, s * a.Y + t * b.Y, s * a.Z + t * b.Z);
    }

    /// The parameter t of the target on the segment from a to b, read on the axis on which the segment is longest (the
    /// later one on a tie) and not clamped; 0 where the segment spans less than `epsilon` on it.
    T LinearPositionUnInterpolate(C3DVector3Tpl const & a, C3DVector3Tpl const & b,
                                  T epsilon = math::detail::k_StandardTolerance<T>) const;

    /// The point at t, usually 0 to 1, of the uniform cubic B-spline over four control points. The common factor is the
    /// literal 0.1666667 and not one sixth: the weights add up to 1.0000002.
    C3DVector3Tpl & BsplinePositionInterpolate(C3DVector3Tpl const & p0, C3DVector3Tpl const & p1,
                                               C3DVector3Tpl const & p2, C3DVector3Tpl const & p3, T t);

    /// The derivative with respect to t of the exact spline.
    C3DVector3Tpl & BsplineVectorInterpolate(C3DVector3Tpl const & p0, C3DVector3Tpl const & p1,
                                             C3DVector3Tpl const & p2, C3DVector3Tpl const & p3, T t);

    /// Finds s and t such that the target is s a + t b, on the two coordinates that determine them best; whether the
    /// target lies in the plane of a and b is not tested. Returns 1 on success. Where a and b are parallel within
    /// `epsilon` the target has to lie on the line of a, and one of s and t stays 0; else 0 is returned with s and t 0.
    int DecomposeIn2Basis(C3DVector3Tpl const & a, C3DVector3Tpl const & b, T & s, T & t,
                          T epsilon = math::detail::k_StandardTolerance<T>);

    /// The largest component. `magnitudes` 0 compares signed values; anything else compares absolute
    /// values and returns one.
    T GetMaxComponent(int magnitudes) const;
    /// The smallest component, under the same choice.
    T GetMinComponent(int magnitudes) const;

    /// The index of the largest component, signed or by magnitude as in GetMaxComponent. A tie goes to the higher
    /// index: three equal values yield 2.
    int GetIndexOfMaxComponent(int magnitudes) const;
    /// The index of the smallest component; a tie goes to the higher index.
    int GetIndexOfMinComponent(int magnitudes) const;

    /// A floor for each component. With `magnitudes` 0 a component becomes the greater of itself and its limit. With
    /// any other value a component whose magnitude is below its limit gets the limit with its own sign, a zero counting
    /// as positive.
    C3DVector3Tpl & SetMinimal(C3DVector3Tpl const & limit, int magnitudes);
    /// The same limit for all components; note the order of the arguments.
    C3DVector3Tpl & SetMinimal(int magnitudes, T limit)
    {
        return SetMinimal(C3DVector3Tpl(limit, limit, limit), magnitudes);
    }
    ///@}

    /// \name Persistence and text
    ///@{

    /// Writes a zero byte, then X, Y, Z. Gives `E_INVALIDARG` for a null stream, else the first negative result; what
    /// was written before a failure stays in the stream. `format` is not read.
    long Save(IStream * stream, int format) const;

    /// Reads what Save writes; the leading byte may have any value. On a failure the components read so far stay.
    long Load(IStream * stream);

    /// Prints the label (if not null) on a line of its own, the vector on the next, and a line that holds one blank.
    void Dump(wchar_t const * label, std::ostream & stream) const;
    ///@}

    /// The less accurate tolerance of the argument's type, here 1e-9: template code names a tolerance by its scalar.
    /// The argument's value is not read, and both instantiations of the class have both overloads.
    static double GetLessAccurateEpsilon(double const & /*unused*/)
    {
        return math::detail::k_LessAccurateTolerance<double>;
    }
    /// The less accurate tolerance of `float`, 1e-6.
    static float GetLessAccurateEpsilon(float const & /*unused*/)
    {
        return math::detail::k_LessAccurateTolerance<float>;
    }

private:
    /// Whether a component may be 0 or a NaN. A product that is neither has no factor that is; one of three small
    /// components can underflow. The magnitude is compared, so that no branch hangs on the sign, which is a coin toss
    /// from point to point.
    bool MayHaveZero() const { return !(std::abs(X * Y * Z) > 0); }

    /// The row (v, 1) m, and the same with nothing from a component that is 0 or a NaN.
    template <typename Row>
    static inline void MulPoint(C3DVector3Tpl const & v, C3DMatrix44Tpl<T> const & m, Row & sum);
    static void MulPointSkippingZeros(C3DVector3Tpl const & v, C3DMatrix44Tpl<T> const & m, T (&sum)[4]);
};

namespace math::detail
{

template <typename T>
inline T Dot(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    return a.X * b.X + a.Y * b.Y + a.Z * b.Z;
}

} // namespace math::detail

/// 1 unless some pair of components differs by `epsilon` or more: with an `epsilon` of 0 nothing is almost equal, and a
/// NaN counts as close.
template <typename T>
MATH_API inline int AreAlmostEqual(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b,
                                   std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>)
{
    return !(std::abs(a.X - b.X) >= epsilon || std::abs(a.Y - b.Y) >= epsilon || std::abs(a.Z - b.Z) >= epsilon);
}

/// The distance of two points.
template <typename T>
MATH_API inline T GetDistance(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    return C3DVector3Tpl<T>().Sub(a, b).GetLength();
}

/// The squared distance of two points.
template <typename T>
MATH_API inline T GetSquaredDistance(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b)
{
    return C3DVector3Tpl<T>().Sub(a, b).GetSquaredLength();
}

/// Writes "( X Y Z )" in the stream's number format.
template <typename T>
MATH_API std::ostream & operator<<(std::ostream & stream, C3DVector3Tpl<T> const & vector);

/// Reads three bare numbers, not the parentheses that operator<< writes. After a failed extraction the target is
/// undefined.
template <typename T>
MATH_API std::istream & operator>>(std::istream & stream, C3DVector3Tpl<T> & vector);

extern template class MATH_API C3DVector3Tpl<float>;
extern template class MATH_API C3DVector3Tpl<double>;
extern template int AreAlmostEqual(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &, float);
extern template int AreAlmostEqual(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &, double);
extern template float GetDistance(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &);
extern template double GetDistance(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &);
extern template float GetSquaredDistance(C3DVector3Tpl<float> const &, C3DVector3Tpl<float> const &);
extern template double GetSquaredDistance(C3DVector3Tpl<double> const &, C3DVector3Tpl<double> const &);
extern template std::ostream & operator<<(std::ostream &, C3DVector3Tpl<float> const &);
extern template std::ostream & operator<<(std::ostream &, C3DVector3Tpl<double> const &);
extern template std::istream & operator>>(std::istream &, C3DVector3Tpl<float> &);
extern template std::istream & operator>>(std::istream &, C3DVector3Tpl<double> &);
