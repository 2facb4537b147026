#pragma once

/// \file
/// The quaternion.

#include "math/numeric.h"
#include "math/vector3.h"
#include "math/vector4.h"

#include <cmath>
#include <cstdint>
#include <iosfwd>
#include <type_traits>

class IStream;

/// A quaternion W + X i + Y j + Z k, stored in this order.
///
/// The rotation by an angle a about a unit axis u is (cos(a/2), u sin(a/2)); it takes a vector v to q v q*,
/// right-handed, and in a product a b, b acts first. Nothing here insists on unit length. Four orders of the components
/// are in use: W, X, Y, Z in memory, in `Set` and in text; X, Y, Z, W in streams and beside C3DVector4Tpl.
///
/// Methods write into the target, which may be an operand, and return it.
template <typename T>
class C3DQuatTpl
{
public:
    T W; ///< The scalar part: the cosine of half the angle of a rotation.
    T X; ///< The vector part: a component of the axis times the sine of half the angle.
    T Y; ///< As X.
    T Z; ///< As X.

    /// \name Construction and access
    ///@{

    /// The identity (1, 0, 0, 0).
    C3DQuatTpl() : W(1), X(0), Y(0), Z(0) {}

    /// Writes nothing.
    explicit C3DQuatTpl(C3DInitRequest_DoNotInitialize const & /*unused*/) {}

    /// The components, the scalar part first.
    C3DQuatTpl(T w, T x, T y, T z) : W(w), X(x), Y(y), Z(z) {}

    /// The pure quaternion (0, v), which is no rotation.
    explicit C3DQuatTpl(C3DVector3Tpl<T> const & v) : W(0), X(v.X), Y(v.Y), Z(v.Z) {}

    /// X, Y, Z and W of the same names.
    explicit C3DQuatTpl(C3DVector4Tpl<T> const & v) : W(v.W), X(v.X), Y(v.Y), Z(v.Z) {}

    /// The components, the scalar part first.
    C3DQuatTpl & Set(T w, T x, T y, T z)
    {
        W = w;
        X = x;
        Y = y;
        Z = z;
        return *this;
    }

    /// The pure quaternion (0, v), which is no rotation.
    C3DQuatTpl & Set(C3DVector3Tpl<T> const & v) { return Set(T(0), v.X, v.Y, v.Z); }

    /// X, Y, Z and W of the same names.
    C3DQuatTpl & Set(C3DVector4Tpl<T> const & v) { return Set(v.W, v.X, v.Y, v.Z); }

    /// (0, 0, 0, 0), which is not the identity.
    C3DQuatTpl & SetNull() { return Set(T(0), T(0), T(0), T(0)); }

    /// (1, 0, 0, 0).
    C3DQuatTpl & SetIdentity() { return Set(T(1), T(0), T(0), T(0)); }

    /// One component; the others stay.
    C3DQuatTpl & SetW(T w)
    {
        W = w;
        return *this;
    }
    C3DQuatTpl & SetX(T x)
    {
        X = x;
        return *this;
    }
    C3DQuatTpl & SetY(T y)
    {
        Y = y;
        return *this;
    }
    C3DQuatTpl & SetZ(T z)
    {
        Z = z;
        return *this;
    }

    /// The components, the scalar part first.
    void Get(T & w, T & x, T & y, T & z) const
    {
        w = W;
        x = X;
        y = Y;
        z = Z;
    }

    /// X, Y, Z and W of the same names: the scalar part comes last.
    void Get(C3DVector4Tpl<T> & v) const { v.Set(X, Y, Z, W); }

    /// One component.
    T GetW() const { return W; }
    T GetX() const { return X; }
    T GetY() const { return Y; }
    T GetZ() const { return Z; }

    /// Bytes held outside the object: none.
    std::uint64_t GetDynamicMemSize() const { return 0; }
    ///@}

    /// \name Tests
    ///@{

    /// |X|, |Y|, |Z| and |1 - W| at most `epsilon`: (-1, 0, 0, 0) is not the identity, though it is the same rotation.
    bool IsIdentity(T epsilon) const;

    /// Exactly (1, 0, 0, 0).
    bool IsIdentity() const { return W == 1 && X == 0 && Y == 0 && Z == 0; }

    /// All four magnitudes at most `epsilon`.
    bool IsNull(T epsilon = math::detail::k_StandardTolerance<T>) const
    {
        return std::abs(W) <= epsilon && std::abs(X) <= epsilon && std::abs(Y) <= epsilon && std::abs(Z) <= epsilon;
    }

    /// |W| below `epsilon`: at the limit itself it is not pure, while IsNull still holds there.
    bool IsPure(T epsilon = math::detail::k_StandardTolerance<T>) const { return std::abs(W) < epsilon; }

    /// Exact comparison by "below" and "above": a NaN compares equal to anything.
    bool operator==(C3DQuatTpl const & other) const
    {
        return !(W < other.W || W > other.W || X < other.X || X > other.X || Y < other.Y || Y > other.Y ||
                 Z < other.Z || Z > other.Z);
    }
    bool operator!=(C3DQuatTpl const & other) const { return !(*this == other); }
    ///@}

    /// \name Arithmetic
    ///@{

    /// The sum component by component: of a and b, or of the target and b.
    C3DQuatTpl & Add(C3DQuatTpl const & b) { return Add(*this, b); }
    C3DQuatTpl & Add(C3DQuatTpl const & a, C3DQuatTpl const & b)
    {
        return Set(a.W + b.W, a.X + b.X, a.Y + b.Y, a.Z + b.Z);
    }

    /// The difference component by component: a - b, or the target less b.
    C3DQuatTpl & Sub(C3DQuatTpl const & b) { return Sub(*this, b); }
    C3DQuatTpl & Sub(C3DQuatTpl const & a, C3DQuatTpl const & b)
    {
        return Set(a.W - b.W, a.X - b.X, a.Y - b.Y, a.Z - b.Z);
    }

    /// All four components times a factor: those of a, or of the target.
    C3DQuatTpl & Mul(T factor) { return Mul(*this, factor); }
    C3DQuatTpl & Mul(T factor, C3DQuatTpl const & a) { return Mul(a, factor); }
    C3DQuatTpl & Mul(C3DQuatTpl const & a, T factor)
    {
        return Set(a.W * factor, a.X * factor, a.Y * factor, a.Z * factor);
    }

    /// All four components change sign: the same rotation.
    C3DQuatTpl & Negate() { return Set(-W, -X, -Y, -Z); }

    /// The scalar part stays, the vector part changes its sign.
    C3DQuatTpl & Conjugate() { return Conjugate(*this); }
    C3DQuatTpl & Conjugate(C3DQuatTpl const & a) { return Set(a.W, -a.X, -a.Y, -a.Z); }

    /// The conjugate, with no division by the squared length: the inverse of a unit quaternion, and of no other.
    C3DQuatTpl & Invert() { return Conjugate(); }
    C3DQuatTpl & Invert(C3DQuatTpl const & a) { return Conjugate(a); }

    /// The square of the length in four dimensions, 1 for a rotation.
    T GetSquaredLength() const { return W * W + X * X + Y * Y + Z * Z; }
    /// The length in four dimensions, 1 for a rotation.
    T GetLength() const { return std::sqrt(GetSquaredLength()); }

    /// The Hamilton product a b: b acts first.
    C3DQuatTpl & Mul(C3DQuatTpl const & a, C3DQuatTpl const & b)
    {
        return Set(a.W * b.W - a.X * b.X - a.Y * b.Y - a.Z * b.Z, a.W * b.X + a.X * b.W + a.Y * b.Z - a.Z * b.Y,
                   a.W * b.Y - a.X * b.Z + a.Y * b.W + a.Z * b.X, a.W * b.Z + a.X * b.Y - a.Y * b.X + a.Z * b.W);
    }
    /// The target times a.
    C3DQuatTpl & Mul(C3DQuatTpl const & a) { return Mul(*this, a); }

    /// The product q (0, v), not the rotation of v.
    C3DQuatTpl & Mul(C3DQuatTpl const & q, C3DVector3Tpl<T> const & v)
    {
        return Set(-q.X * v.X - q.Y * v.Y - q.Z * v.Z, q.W * v.X + q.Y * v.Z - q.Z * v.Y,
                   q.W * v.Y - q.X * v.Z + q.Z * v.X, q.W * v.Z + q.X * v.Y - q.Y * v.X);
    }

    /// The product (0, v) q.
    C3DQuatTpl & Mul(C3DVector3Tpl<T> const & v, C3DQuatTpl const & q)
    {
        return Set(-v.X * q.X - v.Y * q.Y - v.Z * q.Z, v.X * q.W + v.Y * q.Z - v.Z * q.Y,
                   v.Y * q.W - v.X * q.Z + v.Z * q.X, v.Z * q.W + v.X * q.Y - v.Y * q.X);
    }

    /// Scales to length one where the squared length is 1e-12 or more off, and in any case clamps W to [-1, 1], so that
    /// its arc cosine is defined. A squared length below 1e-12, or a NaN, gives the identity. \return the target
    C3DQuatTpl & Normalize();

    /// Spherical linear interpolation along the shorter arc, from a at t = 0 to b, or -b, at t = 1; t is not clamped.
    /// Quaternions closer than a cosine of 0.999999999999 are blended linearly. The result is not normalised.
    /// (Shoemake, "Animating rotation with quaternion curves", 1985.)
    C3DQuatTpl & Slerp(C3DQuatTpl const & a, C3DQuatTpl const & b, T t);
    ///@}

    /// \name Persistence and text
    ///@{

    /// Writes X, Y, Z, W: the scalar part comes last here. Always 0: results of the stream are not looked at, and a
    /// null stream is tolerated.
    long Save(IStream * stream, int format) const;

    /// Reads what Save writes, under the same indifference: what cannot be read keeps its value.
    long Load(IStream * stream);

    /// Prints the label (if not null) on a line of its own, and the quaternion on the next.
    void Dump(wchar_t const * label, std::ostream & stream) const;
    ///@}
};

namespace math::detail
{

template <typename T>
inline T Dot(C3DQuatTpl<T> const & a, C3DQuatTpl<T> const & b)
{
    return a.W * b.W + a.X * b.X + a.Y * b.Y + a.Z * b.Z;
}

} // namespace math::detail

/// 1 unless some pair of components differs by `epsilon` or more; a NaN counts as close. A quaternion and its negative
/// are not identified.
template <typename T>
MATH_API inline int AreAlmostEqual(C3DQuatTpl<T> const & a, C3DQuatTpl<T> const & b,
                                   std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>)
{
    return !(std::abs(a.W - b.W) >= epsilon || std::abs(a.X - b.X) >= epsilon || std::abs(a.Y - b.Y) >= epsilon ||
             std::abs(a.Z - b.Z) >= epsilon);
}

/// Writes "( W:w  X:x  Y:y  Z:z )" in the stream's number format.
template <typename T>
MATH_API std::ostream & operator<<(std::ostream & stream, C3DQuatTpl<T> const & quaternion);

/// Reads four bare numbers W, X, Y, Z. After a failed extraction the target is undefined.
template <typename T>
MATH_API std::istream & operator>>(std::istream & stream, C3DQuatTpl<T> & quaternion);

extern template class MATH_API C3DQuatTpl<float>;
extern template class MATH_API C3DQuatTpl<double>;
extern template int AreAlmostEqual(C3DQuatTpl<float> const &, C3DQuatTpl<float> const &, float);
extern template int AreAlmostEqual(C3DQuatTpl<double> const &, C3DQuatTpl<double> const &, double);
extern template std::ostream & operator<<(std::ostream &, C3DQuatTpl<float> const &);
extern template std::ostream & operator<<(std::ostream &, C3DQuatTpl<double> const &);
extern template std::istream & operator>>(std::istream &, C3DQuatTpl<float> &);
extern template std::istream & operator>>(std::istream &, C3DQuatTpl<double> &);
