#pragma once

/// \file
/// The compact rotation.

#include "math/matrix33.h"
#include "math/matrix44.h"
#include "math/numeric.h"
#include "math/quaternion.h"
#include "math/rotation_matrix.h"
#include "math/rotation_order.h"
#include "math/vector3.h"
#include "math/vector4.h"

#include <cstdint>
#include <iosfwd>
#include <type_traits>

class IStream;

/// The form that a C3DRotation3Tpl holds. The values are stored in streams.
enum E3DRotRep : std::uint8_t
{
    E3DRotRep_Quat = 0,     ///< A quaternion, of any length.
    E3DRotRep_Euler = 1,    ///< Angles about X, Y and Z, and their order.
    E3DRotRep_AxisAngle = 2 ///< An axis, of any length, and an angle.
};

/// A rotation in one form: a quaternion, Euler angles with their order, or an axis with an angle.
///
/// Where C3DRotation keeps all forms and computes a stale one once, this class keeps the one it was given and computes
/// another on every reading, on a copy. Reading therefore writes nothing: any number of threads may read one object,
/// and it takes little memory.
///
/// In `Mul(a, b)` a acts first: the matrix product a b of row vectors, the quaternion product b a. Angles are in
/// radians, right-handed. A triple of Euler angles holds the angles about X, Y and Z, whatever the order. Nothing is
/// normalised when it is set: a quaternion of any length is normalised where it is converted, an axis may have any
/// length, and one of at most 1e-12 (1e-6 in `float`) stands for the identity, whatever the angle.
///
/// A representation that is none of the three can only come from outside, with the bytes of the object. It is no error:
/// such an object is equal to nothing, is not the identity, writes nothing where it is read, counts as the identity in
/// a product and stays as it is until a form is set.
///
/// Methods write into the target, which may be an operand, and return it.
template <typename T>
class C3DRotation3Tpl
{
public:
    /// \name Construction and setting
    /// Nothing is normalised.
    ///@{

    /// The identity, as a quaternion.
    C3DRotation3Tpl() : m_Values(0, 0, 0), m_Last{.scalar = T(1)}, m_Rep(E3DRotRep_Quat) {}

    /// The identity too: unlike the plain values, a rotation always holds a form.
    explicit C3DRotation3Tpl(C3DInitRequest_DoNotInitialize const & /*unused*/) : C3DRotation3Tpl() {}

    /// As the `Set` with the same arguments; the shortest rotation loses its result and its flag.
    C3DRotation3Tpl(T x, T y, T z, tagE3DROTORDER order)
        : m_Values(x, y, z), m_Last{.order = order}, m_Rep(E3DRotRep_Euler)
    {
    }
    C3DRotation3Tpl(C3DVector3Tpl<T> const & angles, tagE3DROTORDER order)
        : m_Values(angles), m_Last{.order = order}, m_Rep(E3DRotRep_Euler)
    {
    }
    C3DRotation3Tpl(C3DVector3Tpl<T> const & axis, T angle)
        : m_Values(axis), m_Last{.scalar = angle}, m_Rep(E3DRotRep_AxisAngle)
    {
    }
    explicit C3DRotation3Tpl(C3DQuatTpl<T> const & quat)
        : m_Values(quat.X, quat.Y, quat.Z), m_Last{.scalar = quat.W}, m_Rep(E3DRotRep_Quat)
    {
    }
    C3DRotation3Tpl(tagE3DAXISTYPE axis, T angle) : C3DRotation3Tpl() { Set(axis, angle); }
    C3DRotation3Tpl(C3DVector3Tpl<T> const & from, C3DVector3Tpl<T> const & to) : C3DRotation3Tpl()
    {
        Set(from, to, nullptr);
    }
    explicit C3DRotation3Tpl(C3DMatrix33Tpl<T> const & m) : C3DRotation3Tpl() { Set(m); }
    explicit C3DRotation3Tpl(C3DMatrix44Tpl<T> const & m) : C3DRotation3Tpl() { Set(m); }

    /// Euler angles, any number of turns, and the order they are in.
    C3DRotation3Tpl & Set(C3DVector3Tpl<T> const & angles, tagE3DROTORDER order)
    {
        m_Values = angles;
        m_Last.order = order;
        m_Rep = E3DRotRep_Euler;
        return *this;
    }

    /// A rotation about an axis of any length.
    C3DRotation3Tpl & Set(C3DVector3Tpl<T> const & axis, T angle)
    {
        m_Values = axis;
        m_Last.scalar = angle;
        m_Rep = E3DRotRep_AxisAngle;
        return *this;
    }

    /// A quaternion, of any length.
    C3DRotation3Tpl & Set(C3DQuatTpl<T> const & quat)
    {
        m_Values.Set(quat.X, quat.Y, quat.Z);
        m_Last.scalar = quat.W;
        m_Rep = E3DRotRep_Quat;
        return *this;
    }

    /// A rotation about a coordinate axis, as Euler angles in the order XZY: one angle alone is the same rotation in
    /// every order. A value that names no axis gives three zeros.
    C3DRotation3Tpl & Set(tagE3DAXISTYPE axis, T angle)
    {
        return Set(C3DVector3Tpl<T>(static_cast<int>(axis), angle), E3DROTORDER_XZY);
    }

    /// The shortest rotation that takes one direction to another, as a quaternion, computed in `double`. Returns 0,
    /// with the identity, where the product of the lengths is below 1e-12. `degenerate`, which may be null, becomes 1
    /// for opposite directions, where the axis is a choice, else 0.
    int Set(C3DVector3Tpl<T> const & from, C3DVector3Tpl<T> const & to, int * degenerate);

    /// The images of the X, Y and Z axes, the rows of a rotation matrix; nothing makes them orthonormal.
    C3DRotation3Tpl & Set(C3DVector3Tpl<T> const & row0, C3DVector3Tpl<T> const & row1, C3DVector3Tpl<T> const & row2);

    /// The rotation of any matrix, as C3DXfoMatTpl::GetRotation reads it, as a quaternion: the lengths of the rows do
    /// not matter, and a mirrored matrix counts as scaled by -1 on all three axes. What the conversion makes of shear
    /// is some rotation near it.
    C3DRotation3Tpl & Set(C3DMatrix33Tpl<T> const & m);
    C3DRotation3Tpl & Set(C3DMatrix44Tpl<T> const & m);

    /// The identity in the form that is held. Euler angles lose their order and are in XYZ afterwards.
    C3DRotation3Tpl & SetIdentity();

    /// Another order of the Euler angles. What holds no Euler angles is converted to some first, in the new order, or
    /// with `keepRotation` 0 in XYZ. With `keepRotation` not 0 the rotation stays and all three angles are extracted
    /// anew, in (-pi, pi], even where they are zero. With `keepRotation` 0 the same angles are read in the new order,
    /// another rotation.
    C3DRotation3Tpl & Set(tagE3DROTORDER order, int keepRotation);

    /// Converts to another form. `order` matters only where Euler angles are to be made: those that are held keep
    /// their own order, whatever the argument. Made Euler angles are in (-pi, pi], and a made angle about an axis in
    /// [0, 2 pi], with the X axis where no axis is determined. A value that names no form changes nothing.
    C3DRotation3Tpl & SetRepresentation(E3DRotRep rep, tagE3DROTORDER order);
    ///@}

    /// \name Reading
    ///@{

    /// The form that is held.
    E3DRotRep GetRepresentation() const { return m_Rep; }

    /// The order of held Euler angles, else XYZ.
    tagE3DROTORDER GetRotOrder() const { return m_Rep == E3DRotRep_Euler ? m_Last.order : E3DROTORDER_XYZ; }

    /// The quaternion; a held one comes as it is, of whatever length.
    void GetQuat(C3DQuatTpl<T> & quat) const;

    /// The same as X, Y, Z, W.
    void GetQuat(C3DVector4Tpl<T> & quat) const;

    /// Axis and angle; held ones come as they are, the axis of whatever length. The identity has the X axis here, where
    /// C3DRotation has a null vector.
    void GetAxisAngle(C3DVector3Tpl<T> & axis, T & angle) const;

    /// The same as the axis and, as the last component, the angle.
    void GetAxisAngle(C3DVector4Tpl<T> & axisAngle) const;

    /// The angles in an order. Those held in it come as they are, whole turns included; others are in (-pi, pi].
    void GetXYZAngles(C3DVector3Tpl<T> & angles, tagE3DROTORDER order) const;

    /// The angles in the held order, or in XYZ where another form is held.
    void GetXYZAngles(C3DVector3Tpl<T> & angles) const { GetXYZAngles(angles, GetRotOrder()); }
    void GetXYZAngles(T & x, T & y, T & z) const;

    /// The matrix for row vectors. Euler angles in an order that does not exist leave it, in `double`, and give the
    /// identity in `float`.
    void GetMatrix(C3DRotMatTpl<T> & m) const;

    /// The same as a general matrix, where an order that does not exist gives the identity. The four by four matrix is
    /// written whole, without a translation; the mask byte stays.
    void GetMatrix(C3DMatrix33Tpl<T> & m) const;
    void GetMatrix(C3DMatrix44Tpl<T> & m) const;

    /// Bytes held outside the object: none.
    std::uint64_t GetDynamicMemSize() const { return 0; }
    ///@}

    /// \name Tests
    /// They look at the held numbers: a whole turn is not the identity, nor is the quaternion (-1, 0, 0, 0), nor a null
    /// axis with an angle.
    ///@{

    /// Exactly the identity: W one and the rest zero, or all angles zero; the axis does not matter.
    int IsIdentity() const;

    /// The same with every difference below `epsilon`; the limit itself is outside.
    int IsAlmostIdentity(T epsilon = math::detail::k_StandardTolerance<T>) const;

    /// Equality as in AreAlmostEqual, with the numbers compared exactly: it is not symmetric, and a NaN differs from
    /// everything.
    bool operator==(C3DRotation3Tpl const & other) const;
    bool operator!=(C3DRotation3Tpl const & other) const { return !(*this == other); }
    ///@}

    /// \name Products, inverse, interpolation
    ///@{

    /// The inverse, in the form that is held and with no conversion. Euler angles change their sign, and their order
    /// becomes its reverse.
    C3DRotation3Tpl & Invert();
    C3DRotation3Tpl & Invert(C3DRotation3Tpl const & a);

    /// a, then b, as a unit quaternion.
    C3DRotation3Tpl & Mul(C3DRotation3Tpl const & a, C3DRotation3Tpl const & b);
    /// This, then b.
    C3DRotation3Tpl & Mul(C3DRotation3Tpl const & b) { return Mul(*this, b); }
    /// a, then this.
    C3DRotation3Tpl & LeftMul(C3DRotation3Tpl const & a) { return Mul(a, *this); }

    /// a, then the inverse of b.
    C3DRotation3Tpl & Div(C3DRotation3Tpl const & a, C3DRotation3Tpl const & b);
    /// This, then the inverse of b.
    C3DRotation3Tpl & Div(C3DRotation3Tpl const & b) { return Div(*this, b); }

    /// Scales the angle of this rotation. A held axis stays, and its angle may go beyond a turn. The other forms become
    /// a quaternion, on the shorter arc from the identity, where whole turns are lost: even a factor of 1 changes the
    /// form.
    C3DRotation3Tpl & Mul(T factor);
    /// Scales the angle by 1 / divisor, in the same way; the divisor is not tested.
    C3DRotation3Tpl & Div(T divisor) { return Mul(T(1) / divisor); }

    /// Scale this rotation as the forms with one argument do: the rotation that is passed in is not read. To scale
    /// another one, copy it first.
    C3DRotation3Tpl & Mul(C3DRotation3Tpl const & /*unread*/, T factor) { return Mul(factor); }
    C3DRotation3Tpl & Div(C3DRotation3Tpl const & /*unread*/, T divisor) { return Div(divisor); }

    /// a, then b, as Euler angles in an order, near a target. Unlike in C3DRotation the target does not receive them.
    C3DRotation3Tpl & MulUsingEulerAnglesTarget(C3DRotation3Tpl const & a, C3DRotation3Tpl const & b,
                                                C3DVector3Tpl<T> const & target, tagE3DROTORDER order);
    /// The same, near the angles of c and in its order, or in XYZ where it holds another form.
    C3DRotation3Tpl & MulUsingEulerAnglesTarget(C3DRotation3Tpl const & a, C3DRotation3Tpl const & b,
                                                C3DRotation3Tpl const & c);
    /// The same, near the angles of a where `useFirst` is not 0, else near those of b.
    C3DRotation3Tpl & MulAndUpdateEulerAngles(C3DRotation3Tpl const & a, C3DRotation3Tpl const & b, int useFirst)
    {
        return MulUsingEulerAnglesTarget(a, b, useFirst != 0 ? a : b);
    }

    /// Spherical linear interpolation from a to b by the shorter arc, as a quaternion; t is not clamped. Unlike in
    /// C3DRotation the result is not normalised.
    C3DRotation3Tpl & Interpolate(C3DRotation3Tpl const & a, C3DRotation3Tpl const & b, T t);

    /// Tells whether C3DRotation::AlignAxesToVct would succeed: returns its result and gives its flag, where the
    /// pointer is not null. The aligned rotation is dropped; this one stays as it is.
    int AlignAxesToVct(tagE3DAXISTYPE axis1, C3DVector3Tpl<T> const & vct1, tagE3DAXISTYPE axis2,
                       C3DVector3Tpl<T> const & vct2, int * degenerate) const;
    ///@}

    /// \name Persistence and text
    ///@{

    /// Writes the representation as a byte and then the numbers: W, X, Y, Z; the angles and the order as a byte; or the
    /// axis and the angle. No tag, no length: the reader must know the type. Gives `E_INVALIDARG` for a null stream,
    /// else the first failure; what was written before stays in the stream. A representation that is none of the three
    /// writes its byte alone. `format` is not read.
    long Save(IStream * stream, int format) const;

    /// Reads what Save writes. On a failure the object stays as it is. So it does, with the result 0, on a
    /// representation that is none of the three, of which nothing more is read.
    long Load(IStream * stream);

    /// Prints the label (if not null) on a line of its own, and the form under its name on the next; angles in degrees.
    void DumpQuat(wchar_t const * name, std::ostream & stream) const;
    void DumpAxisAngle(wchar_t const * name, std::ostream & stream) const;
    /// Prints the label (if not null) on a line of its own, and the angles in degrees under the name of the form on the
    /// next. The three angles have nothing between them.
    void DumpXYZAngles(wchar_t const * name, std::ostream & stream) const;
    ///@}

private:
    /// W of the quaternion or the angle about the axis, or else the order of the Euler angles: the representation tells
    /// which member is alive.
    union Last
    {
        T scalar;
        tagE3DROTORDER order;
    };

    /// The quaternion of held Euler angles, or of a held axis and angle.
    C3DQuatTpl<T> QuatFromEuler() const;
    C3DQuatTpl<T> QuatFromAxisAngle() const;

    void ConvertToQuat();
    void ConvertToEuler(tagE3DROTORDER order);
    void ConvertToAxisAngle();

    bool HoldsKnownForm() const { return m_Rep <= E3DRotRep_AxisAngle; }

    C3DVector3Tpl<T> m_Values; ///< The vector part of the quaternion, the Euler angles, or the axis.
    Last m_Last;               ///< W, the order, or the angle.
    E3DRotRep m_Rep;           ///< Which of the three forms it is.
};

/// 1 when b, converted to the form of a, has the same numbers within `epsilon`, strictly; a NaN differs. Numbers are
/// compared, not rotations: the quaternions q and -q differ, and so do angles that are a whole turn apart. Euler angles
/// must be in the same order, and what holds none is converted to XYZ: the Euler angles a in another order equal no b
/// in another form.
template <typename T>
MATH_API int AreAlmostEqual(C3DRotation3Tpl<T> const & a, C3DRotation3Tpl<T> const & b,
                            std::type_identity_t<T> epsilon = math::detail::k_StandardTolerance<T>);

/// Writes the text of the quaternion.
template <typename T>
MATH_API std::ostream & operator<<(std::ostream & stream, C3DRotation3Tpl<T> const & rotation);

/// Reads the four bare numbers W, X, Y, Z of a quaternion. A stream that has already failed gives the identity; after a
/// failed extraction the numbers are undefined.
template <typename T>
MATH_API std::istream & operator>>(std::istream & stream, C3DRotation3Tpl<T> & rotation);

extern template class MATH_API C3DRotation3Tpl<float>;
extern template class MATH_API C3DRotation3Tpl<double>;
extern template int AreAlmostEqual(C3DRotation3Tpl<float> const &, C3DRotation3Tpl<float> const &, float);
extern template int AreAlmostEqual(C3DRotation3Tpl<double> const &, C3DRotation3Tpl<double> const &, double);
extern template std::ostream & operator<<(std::ostream &, C3DRotation3Tpl<float> const &);
extern template std::ostream & operator<<(std::ostream &, C3DRotation3Tpl<double> const &);
extern template std::istream & operator>>(std::istream &, C3DRotation3Tpl<float> &);
extern template std::istream & operator>>(std::istream &, C3DRotation3Tpl<double> &);
