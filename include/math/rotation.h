#pragma once

/// \file
/// The rotation that answers in any representation.

#include "math/numeric.h"
#include "math/quaternion.h"
#include "math/rotation_matrix.h"
#include "math/rotation_order.h"
#include "math/vector3.h"

#include <iosfwd>

class IStream;

/// Which form of a C3DRotation was given by the caller and is the source of truth.
enum tagE3DROTREPTYPE : int
{
    E3DROTREPTYPE_QUAT = 0,     ///< The quaternion, with the angle that goes with it.
    E3DROTREPTYPE_MATRIX = 1,   ///< The matrix, as it was given.
    E3DROTREPTYPE_XYZANGLES = 2 ///< The Euler angles, with their order.
};

namespace math::detail
{

class RotationInspector;

} // namespace math::detail

/// A rotation in `double` that holds a unit quaternion, a matrix and Euler angles side by side, knows which of them was
/// given and which are stale, and computes a stale one only when it is asked for.
///
/// Reading may fill a cache, so getters are not const, operands are non-const references, and one object belongs to one
/// thread at a time, even for reading. (Where every form that is read is fresh, reading writes nothing;
/// IsExactlyIdentity may still set its mark.) What is known to be the identity carries a mark that spares all
/// arithmetic.
///
/// In `Mul(a, b)` a acts first: the matrix product a b of row vectors, the quaternion product b a. Angles are in
/// radians, right-handed. A triple of Euler angles holds the angles about X, Y and Z, in the object's order, which
/// stays through changes of value: only what names an order sets it.
class MATH_API C3DRotation
{
public:
    /// The tag "ROTA" of a saved rotation and the version of its chunk.
    static unsigned long const k_dwRotation;
    static unsigned long const k_dwVersion;

    /// \name Construction
    ///@{

    /// The identity, in order XYZ.
    C3DRotation();

    /// No form is valid: a `Set` must follow before anything is read.
    explicit C3DRotation(C3DInitRequest_DoNotInitialize const & request);

    /// As the `Set` with the same arguments, in order XYZ where they name none; the shortest rotation loses its result
    /// and its flag.
    explicit C3DRotation(C3DQuatTpl<double> const & quat);
    explicit C3DRotation(C3DRotMatTpl<double> const & mat);
    C3DRotation(tagE3DAXISTYPE axis, double angle);
    C3DRotation(C3DVector3Tpl<double> const & axis, double angle);
    C3DRotation(C3DVector3Tpl<double> const & from, C3DVector3Tpl<double> const & to);
    C3DRotation(C3DVector3Tpl<double> const & angles, tagE3DROTORDER order);
    C3DRotation(double x, double y, double z, tagE3DROTORDER order);
    ///@}

    /// \name Reading
    /// Each brings its own form up to date and no other, except that Euler angles come through the matrix.
    ///@{

    /// The unit quaternion. One that was set is given as it was normalised, with its sign; one from a matrix has W at
    /// least 0.
    void GetQuat(C3DQuatTpl<double> & quat);

    /// The matrix for row vectors. One that was set is given bit for bit, even where it is no rotation.
    void GetMatrix(C3DRotMatTpl<double> & mat);

    /// The inner matrix, valid until the next change.
    C3DRotMatTpl<double> const * GetMatrix();

    /// The angles in the object's order: as they were set, whole turns included, or else in (-pi, pi].
    void GetXYZAngles(C3DVector3Tpl<double> & angles);
    void GetXYZAngles(double & x, double & y, double & z);

    /// The angles in another order, in (-pi, pi]; where it is the object's own, as above. The object keeps its order. A
    /// value that names no order gives zeros.
    void GetXYZAngles(C3DVector3Tpl<double> & angles, tagE3DROTORDER order);

    /// Axis and angle, the angle as it was set, beyond a turn or negative, or else in [0, 2 pi]. Where the sine of half
    /// the angle vanishes the axis is the null vector.
    void GetAxisAngle(C3DVector3Tpl<double> & axis, double & angle);

    /// The order of the Euler angles.
    tagE3DROTORDER GetXYZRotOrder() const;
    ///@}

    /// \name Tests
    /// They trust the angles first, then the quaternion, then the matrix, whichever is valid: angles of a whole turn
    /// are not the identity.
    ///@{

    /// 1 when the most trusted valid form is exactly the identity; the object is then marked.
    int IsExactlyIdentity();

    /// 1 when the most trusted valid form is the identity within `epsilon`, the limit included.
    int IsAlmostIdentity(double const & epsilon) const;

    /// IsExactlyIdentity, also for an `epsilon` of 0; else IsAlmostIdentity.
    int IsIdentity();
    int IsIdentity(double epsilon);

    /// 1 when the object is marked as the identity. A 0 tells nothing.
    int QuickIsIdentity() const;
    ///@}

    /// \name Setting
    ///@{

    /// The identity, marked as such. Where the mark is set already nothing changes; the order stays in any case.
    C3DRotation & SetIdentity();

    /// A copy, normalised. It is not examined for being the identity.
    C3DRotation & Set(C3DQuatTpl<double> const & quat);

    /// A copy, neither orthonormalised nor examined.
    C3DRotation & Set(C3DRotMatTpl<double> const & mat);

    /// The images of the X, Y and Z axes: the rows of the matrix. Not orthonormalised.
    C3DRotation & Set(C3DVector3Tpl<double> const & row0, C3DVector3Tpl<double> const & row1,
                      C3DVector3Tpl<double> const & row2);

    /// Euler angles, any number of turns, and the order they are in.
    C3DRotation & Set(C3DVector3Tpl<double> const & angles, tagE3DROTORDER order);
    C3DRotation & Set(double x, double y, double z, tagE3DROTORDER order);

    /// A rotation about a coordinate axis; all forms are valid afterwards. A value that names no axis gives what an
    /// angle of 0 gives, the identity.
    C3DRotation & Set(tagE3DAXISTYPE axis, double angle);

    /// A rotation about an axis of any length. The null vector counts as the Z axis. A length of at most 1e-12 off the
    /// coordinate axes is used as it stands and gives no unit quaternion.
    C3DRotation & Set(C3DVector3Tpl<double> const & axis, double angle);

    /// The shortest rotation that takes one direction to another. Returns 0, with the identity, where the product of
    /// the lengths is below 1e-12. `degenerate` becomes 1 for opposite directions, where the axis is a choice: X x
    /// from, or Y.
    int Set(C3DVector3Tpl<double> const & from, C3DVector3Tpl<double> const & to, int & degenerate);

    /// Another order of the Euler angles. With `keepRotation` not 0 the rotation stays and its angles change where they
    /// have to: a single angle, and two angles whose axes keep their sequence, keep their numbers and turns; others are
    /// extracted anew, in (-pi, pi]. With `keepRotation` 0 the same angles are read in the new order, another rotation.
    C3DRotation & Set(tagE3DROTORDER order, int keepRotation);

    /// A copy of a rotation, of its valid forms. With `keepOwnOrder` not 0 this object keeps its order, in the manner
    /// of `Set(order, 1)`. (Assignment copies everything, stale forms included.)
    C3DRotation & Set(C3DRotation const & source, int keepOwnOrder);
    ///@}

    /// \name Alignment
    /// Each returns 0 for a null vector. `degenerate` becomes 1 where the rotation about the aligned axis is a choice.
    ///@{

    /// A rotation that carries v to the axis, without regard to the other axes. On failure the rotation stays, but
    /// AlignToX has then already lost the mark of the identity.
    int AlignToX(C3DVector3Tpl<double> const & v, int & degenerate);
    int AlignToY(C3DVector3Tpl<double> const & v, int & degenerate);
    int AlignToZ(C3DVector3Tpl<double> const & v, int & degenerate);

    /// The smallest rotation that carries v to the axis.
    int MinAlignToX(C3DVector3Tpl<double> const & v, int & degenerate);
    int MinAlignToY(C3DVector3Tpl<double> const & v, int & degenerate);
    int MinAlignToZ(C3DVector3Tpl<double> const & v, int & degenerate);

    /// A rotation that carries axis1 to vct1 exactly, and axis2 toward vct2 as nearly as it can: the other way round
    /// than AlignToX, which carries the vector to the axis. Returns 0, with nothing changed, for equal axes, a value
    /// that names no axis, or a null vct1.
    int AlignAxesToVct(tagE3DAXISTYPE axis1, C3DVector3Tpl<double> const & vct1, tagE3DAXISTYPE axis2,
                       C3DVector3Tpl<double> const & vct2, int & degenerate);
    ///@}

    /// \name Products, inverse, interpolation
    /// The target may be any operand.
    ///@{

    /// a, then b.
    C3DRotation & Mul(C3DRotation & a, C3DRotation & b);
    /// This, then b.
    C3DRotation & Mul(C3DRotation & b);
    /// a, then this.
    C3DRotation & LeftMul(C3DRotation & a);

    /// a, then b, with Euler angles near those of a (`which` 1) or of b (any other value), in that one's order.
    C3DRotation & MulAndUpdateEulerAngles(C3DRotation & a, C3DRotation & b, unsigned long which);

    /// a, then b, with Euler angles in an order near a target, which receives them.
    C3DRotation & MulUsingEulerAnglesTarget(C3DRotation & a, C3DRotation & b, C3DVector3Tpl<double> & target,
                                            tagE3DROTORDER order);
    /// The same, near the angles of c and in its order.
    C3DRotation & MulUsingEulerAnglesTarget(C3DRotation & a, C3DRotation & b, C3DRotation & c);

    /// Spherical linear interpolation from a to b by the shorter arc, normalised; t is not clamped.
    C3DRotation & Interpolate(C3DRotation & a, C3DRotation & b, double t);

    /// The inverse: of the quaternion where that is valid, else of the matrix, as its transpose, else of the quaternion
    /// that the angles give. Angles are never inverted themselves; those of the result are extracted anew. What is
    /// found to be the identity gives the marked identity.
    C3DRotation & Invert();
    C3DRotation & Invert(C3DRotation & source);
    ///@}

    /// \name Rotating vectors
    ///@{

    /// Rotates a vector: v M. The vectors may be one object.
    void RotateVct(C3DVector3Tpl<double> const & in, C3DVector3Tpl<double> & out);
    /// Rotates a vector by the inverse. The vectors may be one object.
    void InvRotateVct(C3DVector3Tpl<double> const & in, C3DVector3Tpl<double> & out);

    /// Rotates n vectors. The arrays may be one and the same, but not overlap otherwise. An n below 1 does nothing. The
    /// results are to the bit those of one vector at a time.
    void RotateVct(C3DVector3Tpl<double> const * in, long n, C3DVector3Tpl<double> * out);
    /// Rotates n vectors by the inverse, under the same conditions.
    void InvRotateVct(C3DVector3Tpl<double> const * in, long n, C3DVector3Tpl<double> * out);
    ///@}

    /// \name Persistence and text
    ///@{

    /// Writes a chunk that holds the Euler angles and nothing else: neither the order nor any other form. Gives
    /// `E_INVALIDARG` for a null stream. On a failure its code, with the stream back where it was.
    long Save(IStream * stream, int format);

    /// Reads what Save writes, of any version, as angles in order XYZ. Who saved another order restores it with
    /// `Set(order, 0)`. On a failure of reading, its code; the angles may then hold what was read of them.
    long Load(IStream * stream);

    /// Prints the label (if not null), a line that names the form, and the form; angles in degrees.
    void DumpQuat(wchar_t const * name, std::ostream & stream);
    void DumpMatrix(wchar_t const * name, std::ostream & stream);
    void DumpAxisAngle(wchar_t const * name, std::ostream & stream);
    void DumpXYZAngles(wchar_t const * name, std::ostream & stream);
    ///@}

protected:
    /// \name Marks of the source
    /// Name one form the source of truth and make the other forms stale. The identity mark stays.
    ///@{
    void SetQuatRep();
    void SetMatrixRep();
    void SetXYZAnglesRep();
    ///@}

    /// \name Filling of a stale form
    ///@{

    /// The quaternion, from the matrix where that is the source, else from the angles.
    void UpdateQuat();

    /// The matrix, from the quaternion where that is the source, else from the angles.
    void UpdateMatrix();

    /// The angles, in (-pi, pi], from the matrix, which is filled from the quaternion first where it is stale. The mark
    /// of the identity spares it all.
    void UpdateXYZAngles();
    ///@}

    /// The axis after this one in the right-handed cycle X, Y, Z.
    static int NextAxis(int axis);

private:
    friend class math::detail::RotationInspector;

    /// The bits of the flags. The lowest two name the source.
    static constexpr unsigned char k_SourceMask = 3;
    static constexpr unsigned char k_QuatDirty = 4;
    static constexpr unsigned char k_MatDirty = 8;
    static constexpr unsigned char k_AnglesDirty = 16;
    static constexpr unsigned char k_DefinitelyIdentity = 32;
    /// The whole of the flags where one form was just given, and is not known to be the identity.
    static constexpr unsigned char k_QuatIsSource = E3DROTREPTYPE_QUAT | k_MatDirty | k_AnglesDirty;
    static constexpr unsigned char k_MatrixIsSource = E3DROTREPTYPE_MATRIX | k_QuatDirty | k_AnglesDirty;

    // NOLINTBEGIN(bugprone-reserved-identifier): these names are the package's convention for its cached classes.

    /// The source of truth, the bits of the flags by name, and their setters; any value but 0 sets a bit.
    tagE3DROTREPTYPE _GetOrigRep() const { return static_cast<tagE3DROTREPTYPE>(m_Flags & k_SourceMask); }
    void _SetOrigRep(tagE3DROTREPTYPE rep)
    {
        m_Flags = static_cast<unsigned char>((m_Flags & ~k_SourceMask) | (rep & k_SourceMask));
    }
    int _IsQuatDirty() const { return (m_Flags & k_QuatDirty) != 0; }
    int _IsMatDirty() const { return (m_Flags & k_MatDirty) != 0; }
    int _AreAnglesDirty() const { return (m_Flags & k_AnglesDirty) != 0; }
    int _IsDefinitelyIdentity() const { return (m_Flags & k_DefinitelyIdentity) != 0; }
    void _SetQuatDirty(int dirty) { SetFlag(k_QuatDirty, dirty); }
    void _SetMatDirty(int dirty) { SetFlag(k_MatDirty, dirty); }
    void _SetAnglesDirty(int dirty) { SetFlag(k_AnglesDirty, dirty); }
    void _SetDefinitelyIdentity(int identity) { SetFlag(k_DefinitelyIdentity, identity); }
    // NOLINTEND(bugprone-reserved-identifier)

    void SetFlag(unsigned char flag, int value)
    {
        m_Flags = static_cast<unsigned char>(value != 0 ? m_Flags | flag : m_Flags & ~flag);
    }
    void FreshenQuat()
    {
        if (_IsQuatDirty())
        {
            UpdateQuat();
        }
    }
    void FreshenMatrix()
    {
        if (_IsMatDirty())
        {
            UpdateMatrix();
        }
    }
    void FreshenAngles()
    {
        if (_AreAnglesDirty())
        {
            UpdateXYZAngles();
        }
    }
    double AngleOfFreshQuat() const;
    void NormalizeQuat();
    void MultiplyQuats(C3DRotation & a, C3DRotation & b);
    void FillMatrixFromQuat();
    void SetAnglesAsSource(C3DVector3Tpl<double> const & angles, tagE3DROTORDER order);
    void ConvertAnglesTo(tagE3DROTORDER order);
    int AlignTo(tagE3DAXISTYPE axis, C3DVector3Tpl<double> const & v, int & degenerate);
    void Rotate(C3DVector3Tpl<double> const * in, long n, C3DVector3Tpl<double> * out, bool inverse);

    C3DQuatTpl<double> m_Quat;         ///< Of length one.
    C3DRotMatTpl<double> m_Matrix;     ///< For row vectors.
    C3DVector3Tpl<double> m_XYZAngles; ///< In m_RotOrder, whole turns included.
    double m_Angle;                    ///< The angle as it was set, valid with m_Quat; a NaN: that of m_Quat.
    unsigned char m_Flags;             ///< The source, what is stale, and the mark of the identity.
    unsigned char m_RotOrder;          ///< A tagE3DROTORDER.
};
