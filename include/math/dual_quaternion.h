#pragma once

/// \file
/// The dual quaternion.

#include "math/detail/quaternion_lanes.h"
#include "math/numeric.h"
#include "math/quaternion.h"
#include "math/vector3.h"

#include <cmath>
#include <cstdint>
#include <iosfwd>
#include <type_traits>

class IStream;
template <typename T>
class C3DMatrix44Tpl;

/// A rigid transformation, a rotation and a translation, as a unit dual quaternion P + e D with e e = 0.
///
/// P is the rotation and D = 1/2 (0, t) P with the translation t: a point is rotated first, then translated. Of a unit
/// dual quaternion P . P = 1 and P . D = 0, over four components; nothing here insists on it. Screw form: the
/// turn by an angle a about a line of direction l and moment m with a slide d along it is
///
///     P = (cos(a/2), sin(a/2) l),   D = (-(d/2) sin(a/2), sin(a/2) m + (d/2) cos(a/2) l).
///
/// In a product a b, b acts first, as with quaternions. It serves the smooth blending of rigid transformations: between
/// two of them along the screw, and of many of them (Kavan, Collins, Zara and O'Sullivan, "Geometric skinning with
/// approximate dual quaternion blending", 2008). Angles are in radians, right-handed.
///
/// Methods write into the target and return it. The target may be any operand unless an operation says otherwise. No
/// operation reports a failure: degenerate input gives infinities or NaNs where nothing else is said.
template <typename T>
class C3DDualQuatTpl
{
public:
    /// \name Construction and access
    ///@{

    /// The identity.
    C3DDualQuatTpl() : m_Dual(T(0), T(0), T(0), T(0)) {}

    /// Writes nothing.
    explicit C3DDualQuatTpl(C3DInitRequest_DoNotInitialize const & request) : m_Real(request), m_Dual(request) {}

    /// As the `Set` with the same arguments.
    C3DDualQuatTpl(C3DQuatTpl<T> const & q, C3DVector3Tpl<T> const & t) : m_Real(q) { SetDualOfTranslation(t); }

    /// The two parts as they are.
    C3DDualQuatTpl(C3DQuatTpl<T> const & p, C3DQuatTpl<T> const & d) : m_Real(p), m_Dual(d) {}

    /// No rotation and no translation: P = (1, 0, 0, 0), D = 0.
    C3DDualQuatTpl & SetIdentity()
    {
        m_Real.SetIdentity();
        m_Dual.SetNull();
        return *this;
    }

    /// All eight components 0, which is not the identity.
    C3DDualQuatTpl & SetNull()
    {
        m_Real.SetNull();
        m_Dual.SetNull();
        return *this;
    }

    /// A copy of all eight components, as construction and assignment make it.
    C3DDualQuatTpl & Set(C3DDualQuatTpl const & other) { return *this = other; }

    /// The rotation q, of unit length, then the translation t. A t of no component above 1e-12 in magnitude (1e-6 in
    /// `float`) counts as zero.
    C3DDualQuatTpl & Set(C3DQuatTpl<T> const & q, C3DVector3Tpl<T> const & t)
    {
        m_Real = q;
        SetDualOfTranslation(t);
        return *this;
    }

    /// The two parts as they are.
    C3DDualQuatTpl & Set(C3DQuatTpl<T> const & p, C3DQuatTpl<T> const & d)
    {
        C3DQuatTpl<T> const dual(d);
        m_Real = p;
        m_Dual = dual;
        return *this;
    }

    /// The screw form. The axis is taken to be of unit length; the moment is not written.
    C3DDualQuatTpl & Set(T angle, T pitch, C3DVector3Tpl<T> const & axis, C3DVector3Tpl<T> & moment);

    /// The rotation of a matrix, read as C3DRotation3Tpl reads it, so that scale goes lost, and the translation of its
    /// row 3.
    C3DDualQuatTpl & Set(C3DMatrix44Tpl<T> const & m);

    /// The two parts as they are.
    void Get(C3DQuatTpl<T> & p, C3DQuatTpl<T> & d) const
    {
        p = m_Real;
        d = m_Dual;
    }
    /// The rotation, which is P, and the translation as GetTranslation gives it, of a unit value.
    void Get(C3DQuatTpl<T> & q, C3DVector3Tpl<T> & t) const
    {
        q = m_Real;
        GetTranslation(t);
    }

    /// The screw form, of a unit value: the angle in [0, 2 pi], about a unit axis. A pure translation has the angle and
    /// the moment 0 and, as the axis, half the translation, which is no unit vector; its pitch is the length of the
    /// translation, or 0 where the squared length of the axis is not above 1e-12. An axis is divided by its length
    /// without a test, and W is not clamped: a P of (-1, 0, 0, 0) or a W above 1 gives NaNs.
    void Get(T & angle, T & pitch, C3DVector3Tpl<T> & axis, C3DVector3Tpl<T> & moment) const;

    /// The matrix for row vectors, of a unit value. It is written whole, the translation in row 3; the mask byte stays.
    void Get(C3DMatrix44Tpl<T> & m) const;

    /// The parts P, which is the rotation of a unit value, and D, valid as long as the object.
    C3DQuatTpl<T> const & GetReal() const { return m_Real; }
    C3DQuatTpl<T> const & GetRotation() const { return m_Real; }
    C3DQuatTpl<T> const & GetDual() const { return m_Dual; }

    /// The translation, of a unit value. A dual part of no component above 1e-12 in magnitude (1e-6 in `float`) counts
    /// as zero, so that what `Set` took for a translation just above its limit is lost here.
    void GetTranslation(C3DVector3Tpl<T> & t) const;

    /// Bytes held outside the object: none.
    std::uint64_t GetDynamicMemSize() const { return 0; }
    ///@}

    /// \name Tests
    ///@{

    /// P exactly (1, 0, 0, 0), and the magnitudes of D at most 1e-12 (1e-6 in `float`).
    bool IsIdentity() const { return m_Real.IsIdentity() && m_Dual.IsNull(); }

    /// Every component at most `epsilon` away. (-1, 0, 0, 0) is not the identity, though it is the same rotation.
    bool IsIdentity(T epsilon) const
    {
        return std::abs(1 - m_Real.W) <= epsilon && std::abs(m_Real.X) <= epsilon && std::abs(m_Real.Y) <= epsilon &&
               std::abs(m_Real.Z) <= epsilon && m_Dual.IsNull(epsilon);
    }

    /// Exact comparison as for C3DQuatTpl: a NaN compares equal to anything.
    bool operator==(C3DDualQuatTpl const & other) const { return m_Real == other.m_Real && m_Dual == other.m_Dual; }
    bool operator!=(C3DDualQuatTpl const & other) const { return !(*this == other); }
    ///@}

    /// \name Arithmetic
    ///@{

    /// The sum, component by component.
    C3DDualQuatTpl & Add(C3DDualQuatTpl const & b) { return Add(*this, b); }
    C3DDualQuatTpl & Add(C3DDualQuatTpl const & a, C3DDualQuatTpl const & b)
    {
        m_Real.Add(a.m_Real, b.m_Real);
        m_Dual.Add(a.m_Dual, b.m_Dual);
        return *this;
    }

    /// The difference, component by component: a - b in the form with two operands.
    C3DDualQuatTpl & Sub(C3DDualQuatTpl const & b) { return Sub(*this, b); }
    C3DDualQuatTpl & Sub(C3DDualQuatTpl const & a, C3DDualQuatTpl const & b)
    {
        m_Real.Sub(a.m_Real, b.m_Real);
        m_Dual.Sub(a.m_Dual, b.m_Dual);
        return *this;
    }

    /// All eight components change sign: the same transformation.
    C3DDualQuatTpl & Negate()
    {
        m_Real.Negate();
        m_Dual.Negate();
        return *this;
    }

    /// All eight components times a number, which scales the value and not the transformation.
    C3DDualQuatTpl & Mul(T factor) { return Mul(*this, factor); }
    C3DDualQuatTpl & Mul(T factor, C3DDualQuatTpl const & a) { return Mul(a, factor); }
    C3DDualQuatTpl & Mul(C3DDualQuatTpl const & a, T factor)
    {
        m_Real.Mul(a.m_Real, factor);
        m_Dual.Mul(a.m_Dual, factor);
        return *this;
    }

    /// The product a b: b acts first.
    C3DDualQuatTpl & Mul(C3DDualQuatTpl const & a, C3DDualQuatTpl const & b)
    {
        C3DQuatTpl<T> first;
        C3DQuatTpl<T> second;
        first.Mul(a.m_Real, b.m_Dual);
        second.Mul(a.m_Dual, b.m_Real);
        m_Real.Mul(a.m_Real, b.m_Real);
        m_Dual.Add(first, second);
        return *this;
    }
    /// The target times b.
    C3DDualQuatTpl & Mul(C3DDualQuatTpl const & b) { return Mul(*this, b); }

    /// The quaternion conjugate of both parts: the inverse of a unit value.
    C3DDualQuatTpl & Conjugate() { return Conjugate(*this); }
    C3DDualQuatTpl & Conjugate(C3DDualQuatTpl const & source)
    {
        m_Real.Conjugate(source.m_Real);
        m_Dual.Conjugate(source.m_Dual);
        return *this;
    }

    /// Scales P to length one and takes from D its part along P. Each is done where P . P or P . D is more than 1e-12
    /// off, in `float` too; a P . P that is not above 1e-12 leaves all eight components.
    C3DDualQuatTpl & Normalize()
    {
        NormalizeParts(m_Real, m_Dual);
        return *this;
    }

    /// The inverse: normalised, then conjugated. What Normalize leaves as it is, is conjugated all the same.
    void Invert() { Normalize().Conjugate(); }
    void Invert(C3DDualQuatTpl const & source)
    {
        *this = source;
        Invert();
    }
    ///@}

    /// \name Screws and blends
    ///@{

    /// The logarithm, of a unit value: with zero scalar parts, half the angle times the axis over half the angle times
    /// the moment plus half the pitch times the axis. A pure translation has the axis that the screw form gives it.
    C3DDualQuatTpl & Log();

    /// The exponential of a value with zero scalar parts; those are not read. A P of less than 1e-12 in length, in
    /// `float` too, gives a P of (1, 0, 0, 0) and leaves all of D.
    C3DDualQuatTpl & Exp();

    /// Screw linear interpolation from a at t = 0 to b, or the same as -b, at t = 1: (b a^-1)^t a by the shorter arc,
    /// at constant speed about and along the screw. t is not clamped, the result is not normalised, and both are taken
    /// to be of unit length. Where b is a or -a, exactly, the result is a; a NaN in b is no such agreement and reaches
    /// the result. The target may be b, but not a.
    ///
    /// Two kinds of operands are better blended with LinearBlend:
    /// - Those that differ by a translation v alone. The way is not linear: the offset at t is |v| t v / 2 and not t v,
    ///   as the axis of a pure translation is v / 2.
    /// - Those that differ, but by a turn of less than about 1e-7 (2e-3 in `float`). The screw form takes the angle
    ///   from W and the axis from X, Y, Z, which rounding then sets at odds: the translation may go astray by any
    ///   amount, and where W is rounded to more than 1 the result is NaN.
    C3DDualQuatTpl & ScLerp(C3DDualQuatTpl const & a, C3DDualQuatTpl const & b, T t);

    /// The sum of n values times their weights, normalised; 0 for an n below 1. A weight changes its sign where its
    /// value is in the other hemisphere than the value before it in the array, so the order of the array matters: what
    /// is compared is neither the first value nor the sum. A zero weight does not take a value out of that chain.
    C3DDualQuatTpl & LinearBlend(long n, C3DDualQuatTpl const * const q, T const * const w)
    {
        // In vector registers, with the bits that the components would get one by one.
        using Lanes = math::detail::QuaternionLanes<T>;
        Lanes real;
        Lanes dual;
        if (n > 0)
        {
            real.Add(Lanes().Mul(Lanes(q[0].m_Real), w[0]));
            dual.Add(Lanes().Mul(Lanes(q[0].m_Dual), w[0]));
        }
        for (long i = 1; i < n; ++i)
        {
            Lanes const current(q[i].m_Real);
            Lanes const previous(q[i - 1].m_Real);
            real.Add(Lanes().MulByHemisphere(current, w[i], current, previous));
            dual.Add(Lanes().MulByHemisphere(Lanes(q[i].m_Dual), w[i], current, previous));
        }
        NormalizeParts(real, dual);
        real.Store(m_Real);
        dual.Store(m_Dual);
        return *this;
    }

    /// The weights 1 - t and t for a and b.
    C3DDualQuatTpl & LinearBlend(C3DDualQuatTpl const & a, C3DDualQuatTpl const & b, T t)
    {
        C3DDualQuatTpl const values[2] = {a, b};
        T const weights[2] = {1 - t, t};
        return LinearBlend(2, values, weights);
    }

    /// The linear blend, followed by up to 6 passes. A pass multiplies the blend b by the exponential of the weighted
    /// sum of n times the same logarithm, that of the square of the inverse of b; the passes end early where neither
    /// part of the sum has a squared length of at least `tol`. The values of the array are read by the linear blend
    /// alone: this is not the iteration to the mean of a group. With weights that add up to 1 each pass replaces b by
    /// its inverse, so that six of them give the linear blend back and an early end gives the inverse.
    C3DDualQuatTpl & IterativeBlend(long n, C3DDualQuatTpl const * const q, T const * const w, T tol);

    /// The weights 1 - t and t for a and b, and 1e-12 (1e-6 in `float`) as the limit of squared lengths.
    C3DDualQuatTpl & IterativeBlend(C3DDualQuatTpl const & a, C3DDualQuatTpl const & b, T t);
    ///@}

    /// \name Persistence and text
    ///@{

    /// Writes P and then D, each as X, Y, Z, W. Always 0: results of the stream are not looked at, and a null stream is
    /// tolerated.
    long Save(IStream * stream, int format) const;

    /// Reads what Save writes, under the same indifference: what cannot be read keeps its value.
    long Load(IStream * stream);

    /// Prints the label (if not null) on a line of its own, and both quaternions on the next.
    void Dump(wchar_t const * label, std::ostream & stream) const;
    ///@}

private:
    /// Whether a number is above 1e-12, as a `double` in either precision.
    static bool Exceeds(T value) { return static_cast<double>(value) > math::detail::k_StandardTolerance<double>; }

    template <typename Part>
    static void NormalizeParts(Part & real, Part & dual)
    {
        T const squaredLength = math::detail::DotByPairs(real, real);
        if (!Exceeds(squaredLength))
        {
            return;
        }
        if (Exceeds(std::abs(squaredLength - 1)))
        {
            T const reciprocal = 1 / std::sqrt(squaredLength);
            real.Mul(reciprocal);
            dual.Mul(reciprocal);
        }
        T const along = math::detail::DotByPairs(real, dual);
        if (Exceeds(std::abs(along)))
        {
            dual.Sub(Part().Mul(real, along));
        }
    }

    void SetDualOfTranslation(C3DVector3Tpl<T> const & t)
    {
        T const tolerance = math::detail::k_StandardTolerance<T>;
        if (std::abs(t.X) <= tolerance && std::abs(t.Y) <= tolerance && std::abs(t.Z) <= tolerance)
        {
            m_Dual.SetNull();
        }
        else
        {
            m_Dual.Mul(t, m_Real).Mul(T(0.5));
        }
    }

    C3DQuatTpl<T> m_Real;
    C3DQuatTpl<T> m_Dual;
};

/// True unless some pair of the eight components differs by `epsilon` or more; a NaN counts as close. A value and its
/// negative are not identified.
template <typename T>
MATH_API inline bool AreAlmostEqual(C3DDualQuatTpl<T> const & a, C3DDualQuatTpl<T> const & b,
                                    std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>)
{
    return AreAlmostEqual(a.GetReal(), b.GetReal(), epsilon) != 0 &&
           AreAlmostEqual(a.GetDual(), b.GetDual(), epsilon) != 0;
}

/// Writes the quaternion P and at once the quaternion D.
template <typename T>
MATH_API std::ostream & operator<<(std::ostream & stream, C3DDualQuatTpl<T> const & quaternion);

/// Reads eight bare numbers, W, X, Y, Z of P and of D. A stream that has already failed gives (1, 0, 0, 0) for both;
/// after a failed extraction the target is undefined.
template <typename T>
MATH_API std::istream & operator>>(std::istream & stream, C3DDualQuatTpl<T> & quaternion);

extern template class MATH_API C3DDualQuatTpl<float>;
extern template class MATH_API C3DDualQuatTpl<double>;
extern template bool AreAlmostEqual(C3DDualQuatTpl<float> const &, C3DDualQuatTpl<float> const &, float);
extern template bool AreAlmostEqual(C3DDualQuatTpl<double> const &, C3DDualQuatTpl<double> const &, double);
extern template std::ostream & operator<<(std::ostream &, C3DDualQuatTpl<float> const &);
extern template std::ostream & operator<<(std::ostream &, C3DDualQuatTpl<double> const &);
extern template std::istream & operator>>(std::istream &, C3DDualQuatTpl<float> &);
extern template std::istream & operator>>(std::istream &, C3DDualQuatTpl<double> &);
