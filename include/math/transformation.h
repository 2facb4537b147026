#pragma once

/// \file
/// The transformation of scaling, rotation and translation, and its equivalent matrix.

#include "math/numeric.h"
#include "math/quaternion.h"
#include "math/rotation.h"
#include "math/rotation_matrix.h"
#include "math/rotation_order.h"
#include "math/transformation_matrix.h"
#include "math/vector3.h"

class IStream;

/// The space in which an edit of a transformation is expressed; as the space of a pivot: none, the parent's origin, or
/// the pivot given. Another value acts as `E3DTRANSFOSPACE_REFERENCE` for an edit, and as no pivot.
enum tagE3DTRANSFOSPACE : int
{
    E3DTRANSFOSPACE_LOCAL = 0,    ///< the axes of the transformation itself
    E3DTRANSFOSPACE_PARENT = 1,   ///< the axes of the space that the transformation lives in
    E3DTRANSFOSPACE_REFERENCE = 2 ///< the axes of a rotation passed beside it; a null pointer counts as no rotation
};

/// A kind of scaling. It is part of the signatures and has no influence.
enum tagE3DSCLTYPE : int
{
    E3DSCLTYPE_DEFAULT = 0
};

/// A transformation, held as its components and as a matrix of which either may be stale.
///
/// A point, as a row, maps by
///
///     p' = p * SO^T * S * SO * R + T
///
/// with the scaling S along the axes of a scaling orientation SO (normally none), the rotation R and the translation T.
/// Callers read and write whichever form they like; the other is brought up to date when it is asked for. A matrix
/// comes from the components by the formula, with their signs in its sign bits, so that a mirrored scale comes back
/// axis by axis. Components come from a matrix by its rows where these are perpendicular within 1e-6 (as dot products
/// of the rows as they stand, so that the limit grows with the scale), else by C3DXfoMatTpl::GetAffineDecomposition,
/// with a scaling orientation.
///
/// Transformations compose in one of two ways, which the receiver's **QN scaling** flag chooses; it is set at first:
/// - set, *by component*: each component with the like component. Scales multiply axis by axis, and the scale of a
///   parent does not shear a rotated child.
/// - clear, *by matrix*: the plain matrix product. Shear may arise, is kept, and reads as a scaling orientation.
///
/// Masks of components add up 1 scaling, 2 scaling orientation, 4 rotation, 8 translation; in products also 16 and 32,
/// by which the translation takes part in the right operand's scaling and rotation. The everyday mask is 63, all of it.
///
/// Factors of scale stay away from zero: one below 1e-12 in magnitude is stored as 1e-12 with its sign (a NaN as
/// -1e-12). A scaling orientation within 1e-12 of the identity counts as none.
///
/// Reading may write a cache, so that getters are not const, operands are non-const references, and an object belongs
/// to one thread at a time, even for reading. What is known to be the identity carries a flag that spares all work.
///
/// Angles are in radians, right-handed. Where memory for a scaling orientation is lacking, an operation goes on as if
/// there were none.
class MATH_API C3DTransfo // NOLINT(clang-analyzer-optin.performance.Padding): the order of the fields is a contract.
{
public:
    static unsigned long const k_dwTransfo;   ///< the tag "TRSF", least byte first in a stream
    static unsigned long const k_dwVersion;   ///< the version that is written
    static unsigned long const k_dwVersion10; ///< the first version, without a scaling orientation
    static unsigned long const k_dwVersion40; ///< the version from which on a scaling orientation is part of it

    /// \name Construction
    ///@{

    /// The identity, flagged as such, in order XYZ, with QN scaling.
    C3DTransfo();

    /// Nothing is valid: a `Set` of all components or of a matrix must follow before anything is read.
    C3DTransfo(C3DInitRequest_DoNotInitialize const & request, bool qnScaling);

    /// From components, with QN scaling. The rotation is taken into order XYZ. Identity values set no flag.
    C3DTransfo(C3DVector3Tpl<double> const & scaling, C3DRotation const & rotation,
               C3DVector3Tpl<double> const & translation);

    /// From a scaling alone, with QN scaling. The second argument is the scaling orientation, not the rotation.
    C3DTransfo(C3DVector3Tpl<double> const & scaling, C3DRotation const & scalingOrientation);

    /// From all components, with QN scaling, as the form without a scaling orientation.
    C3DTransfo(C3DVector3Tpl<double> const & scaling, C3DRotation const & scalingOrientation,
               C3DRotation const & rotation, C3DVector3Tpl<double> const & translation);

    /// An independent copy, of all flags and orders.
    C3DTransfo(C3DTransfo const & source);

    /// Deletes the scaling orientation.
    ~C3DTransfo();

    /// A copy byte by byte, the pointer to the scaling orientation included: **where there is one, both objects own it
    /// afterwards, and the target's former one is lost**. For a copy use `Set(C3DTransfo const &)`.
    C3DTransfo & operator=(C3DTransfo const & source);

    /// Bytes behind the plain object: the pointer to a scaling orientation, and the orientation where there is one.
    long GetMemSize() const;
    ///@}

    /// \name Setting
    /// What is not named stays as it is, read from the matrix if need be. A rotation is taken into this object's order.
    ///@{

    /// All components but the scaling orientation, which stays.
    void Set(C3DVector3Tpl<double> const & scaling, C3DRotation const & rotation,
             C3DVector3Tpl<double> const & translation);
    /// All components.
    void Set(C3DVector3Tpl<double> const & scaling, C3DRotation const & scalingOrientation,
             C3DRotation const & rotation, C3DVector3Tpl<double> const & translation);

    /// The matrix, its sign bits repaired. The rotation read from it later will be in this object's order.
    void Set(C3DXfoMatTpl<double> const & matrix);

    /// A translation and the scaling (1, 1, 1), with the rotation and scaling orientation as they were. **A matrix that
    /// was up to date is not marked stale**, and then goes on without the change.
    void Set(C3DVector3Tpl<double> const & translation);

    /// A rotation, the scaling (1, 1, 1) and the translation 0. The matrix as in the form before.
    void Set(C3DRotation const & rotation);

    /// A copy, of the QN scaling flag too; the flag that preserves the order of rotation stays this object's, and where
    /// it is set so does the order.
    void Set(C3DTransfo const & source);
    /// With `keepOwnFlags` the QN scaling flag and the order of rotation stay this object's as well.
    void Set(C3DTransfo const & source, bool keepOwnFlags);

    /// Chooses how transformations compose into this one. A change leaves the truth in the components.
    void SetQNScalingFlag(int on);
    /// How transformations compose into this one: 1 by component, 0 by matrix.
    int GetQNScalingFlag() const;

    /// With this flag a copy into this object keeps its order of rotation.
    void SetPreserveRotOrderFlag(int on);
    /// 1 where a copy into this object keeps its order of rotation, else 0.
    int GetPreserveRotOrderFlag() const;

    /// All components as those of the identity, flagged as such; the order of rotation stays.
    void SetIdentity();
    /// The components of a mask. The identity flag is set for the mask 63 alone.
    void SetIdentity(unsigned char mask);

    /// Sets the translation, in components and matrix alike, wherever it is up to date, so that nothing becomes stale.
    void SetTranslation(C3DVector3Tpl<double> const & translation);
    void SetTranslation(double x, double y, double z);

    /// Sets the factors of scale, and clears the identity flag always.
    void SetScaling(C3DVector3Tpl<double> const & scaling);
    /// Sets the factors of scale, and clears the identity flag unless all three are 1.
    void SetScaling(double x, double y, double z);
    /// Sets the scaling along the axes of a scaling orientation, which is replaced too.
    void SetScaling(C3DVector3Tpl<double> const & scaling, C3DRotation const & scalingOrientation);

    /// Sets the rotation, as C3DRotation::Set with the same arguments; angles are in the rotation's own order.
    void SetRotation(C3DRotation const & rotation);
    void SetRotation(C3DQuatTpl<double> const & quat);
    void SetRotation(C3DRotMatTpl<double> const & mat);
    void SetRotation(tagE3DAXISTYPE axis, double angle);
    void SetRotation(C3DVector3Tpl<double> const & axis, double angle);
    void SetRotation(C3DVector3Tpl<double> const & angles);
    void SetRotation(double x, double y, double z);
    /// Another order for the rotation, as C3DRotation::Set; where a matrix was set, it acts on the rotation as it was
    /// before that.
    void SetRotation(tagE3DROTORDER order, int keepRotation);
    /// Sets the shortest rotation from one direction to another. Returns 0 where C3DRotation::Set does: the rotation is
    /// then the identity, and **a matrix that was up to date is not marked stale**.
    int SetRotation(C3DVector3Tpl<double> const & from, C3DVector3Tpl<double> const & to, int & degenerate);

    /// Sets the scaling orientation by angles in order XYZ. The identity flag stays, and so does an orientation of
    /// angles 0 until a matrix is made.
    void SetScalingOrientation(C3DVector3Tpl<double> const & angles);
    void SetScalingOrientation(double x, double y, double z);
    /// Sets the scaling orientation. Where it is almost the identity it is deleted, and **a matrix that was up to date
    /// is not marked stale**.
    void SetScalingOrientation(C3DRotation const & scalingOrientation);
    ///@}

    /// \name Reading
    /// Getters of a component bring all components up to date, except that of the translation, which is read from what
    /// is up to date. Those of the matrix bring the matrix up to date.
    ///@{

    /// The factors of scale, with their signs.
    void GetScaling(C3DVector3Tpl<double> & scaling);
    void GetScaling(double & x, double & y, double & z);
    /// The factors of scale and the axes along which they act; the second argument stays as it was where there is no
    /// scaling orientation.
    void GetScaling(C3DVector3Tpl<double> & scaling, C3DRotation & scalingOrientation);

    /// A copy of the rotation, in this object's order.
    void GetRotation(C3DRotation & rotation);
    /// The rotation in the form of the argument.
    void GetRotation(C3DQuatTpl<double> & quat);
    void GetRotation(C3DRotMatTpl<double> & mat);
    /// The inner matrix, valid until the next change.
    C3DRotMatTpl<double> const * GetRotation();
    /// The rotation as Euler angles in the order that GetXYZRotOrder tells.
    void GetRotation(C3DVector3Tpl<double> & angles);
    void GetRotation(double & x, double & y, double & z);
    /// The rotation as an axis and the angle about it.
    void GetRotation(C3DVector3Tpl<double> & axis, double & angle);

    /// The translation. Nothing is brought up to date.
    void GetTranslation(C3DVector3Tpl<double> & translation);
    void GetTranslation(double & x, double & y, double & z);

    /// The scaling orientation, the identity where there is none.
    void GetScalingOrientation(C3DRotation & scalingOrientation);
    /// The angles of the scaling orientation, in its own order; zeros where there is none.
    void GetScalingOrientation(C3DVector3Tpl<double> & angles);
    void GetScalingOrientation(double & x, double & y, double & z);
    /// Whether there is a scaling orientation that is not almost the identity.
    bool IsScalingOrientationExisting();

    /// The order of the Euler angles. Nothing is brought up to date.
    tagE3DROTORDER GetXYZRotOrder() const;

    /// A copy of the matrix, its sign bits repaired.
    void GetMatrix(C3DXfoMatTpl<double> & matrix);
    /// The inner matrix, valid until the next change.
    C3DXfoMatTpl<double> const * GetMatrix();

    /// The inverse of the matrix, by C3DXfoMatTpl::Invert: the sign bits are those of `inverse`, repaired. Leaves
    /// `inverse` where the matrix is singular.
    void GetInvMatrix(C3DXfoMatTpl<double> & inverse);
    ///@}

    /// \name Tests
    ///@{

    /// Whether a matrix has rows that are not perpendicular, or components have a scaling orientation, even under a
    /// uniform scale.
    bool HasShearing() const;

    /// The flag alone: false tells nothing.
    bool QuickIsIdentity() const;

    /// From the matrix where it is up to date, else from the components without the scaling orientation, which is
    /// without effect under the scale 1. Components that are the identity set the flag.
    bool IsExactlyIdentity();

    /// Within `epsilon`, the limit included for components and excluded for a matrix; for 0 IsExactlyIdentity.
    bool IsIdentity(double epsilon);
    ///@}

    /// \name Composition
    /// The first operand acts first, as in a product of row vectors: `Mul(child, parent, 63)` takes a child's
    /// transformation into the space of its parent. The target may be any operand, with one exception told at Mul.
    ///@{

    /// a, then b. By component, what the mask does not name stays as the target holds it, and is called up to date even
    /// where it was not. By matrix the whole product is formed whatever the mask, unless both are flagged as the
    /// identity. Where b is the target and only one of 16 and 32 is in the mask, the inherited part of the translation
    /// comes twice, and that of b is lost.
    C3DTransfo & Mul(C3DTransfo & a, C3DTransfo & b, unsigned char mask);
    C3DTransfo & Mul(C3DTransfo & b, unsigned char mask);

    /// a with b taken off, so that `Mul(result, b, mask)` gives a; a singular matrix of b counts as the identity. The
    /// mask acts as in Mul. By component, Euler angles come near those of a target, which may be null, and where a is
    /// flagged as the identity and b has no translation, that of the target of the call stays. Angles are rewritten
    /// even where b is the identity.
    C3DTransfo & Dif(C3DTransfo & a, C3DTransfo & b, unsigned char mask, C3DTransfo * target);

    /// This transformation, told in a space, as it is in the world: `Mul(*this, space, 63)`.
    C3DTransfo & MapSpaceToWorld(C3DTransfo & space);
    /// This transformation, told in the world, as it is in a space: `Dif(*this, space, 63, nullptr)`.
    C3DTransfo & MapWorldToSpace(C3DTransfo & space);
    /// From one space into the world, and from there into another.
    C3DTransfo & MapSpaceToSpace(C3DTransfo & from, C3DTransfo & to);

    /// The inverse of the matrix, in both modes, so that shear may arise. A singular matrix leaves that of the target.
    C3DTransfo & Invert(C3DTransfo & source);
    C3DTransfo & Invert();

    /// From a at t = 0 to b at t = 1: the rotation along the shorter arc, the others linearly, unclamped: opposite
    /// scales meet at zero. The scaling orientation stays this object's.
    C3DTransfo & Interpolate(C3DTransfo & a, C3DTransfo & b, double t);
    ///@}

    /// \name Edits
    /// Each acts on the components with QN scaling, else on the matrix. `reference` is read for
    /// `E3DTRANSFOSPACE_REFERENCE` alone, and `pivot` for a pivot space of that value; without one there is no pivot.
    ///@{

    /// Moves by a vector that no scale acts on.
    C3DTransfo & AddTranslation(C3DVector3Tpl<double> const & t, tagE3DTRANSFOSPACE space, C3DRotation * reference);

    /// Rotates about the axes of a space, and moves the translation about the pivot. `updateEuler` keeps the angles
    /// near those before, in component mode.
    C3DTransfo & AddRotation(C3DRotation & r, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                             tagE3DTRANSFOSPACE pivotSpace, C3DVector3Tpl<double> const * pivot, bool updateEuler);
    /// The pivot as the origin of a transformation, through whose space the translation is moved.
    C3DTransfo & AddRotationAboutPivotXfo(C3DRotation & r, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                                          tagE3DTRANSFOSPACE pivotSpace, C3DTransfo * pivot, bool updateEuler);

    /// Scales along the axes of a space. By component the scaling is multiplied axis by axis whatever the space, which
    /// only decides how the translation moves about the pivot. By matrix, for a reference, the matrix is multiplied by
    /// the scale and then the reference rotation, which is not taken back in front; **and in the parent and reference
    /// spaces the translation is scaled with the rest, without a pivot too.**
    C3DTransfo & AddScaling(C3DVector3Tpl<double> const & s, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                            tagE3DTRANSFOSPACE pivotSpace, C3DVector3Tpl<double> const * pivot, tagE3DSCLTYPE type);
    /// The pivot as the origin of a transformation, through whose space the translation is moved. `type` is not read.
    C3DTransfo & AddScalingAboutPivotXfo(C3DVector3Tpl<double> const & s, tagE3DTRANSFOSPACE space,
                                         C3DRotation * reference, tagE3DTRANSFOSPACE pivotSpace, C3DTransfo * pivot,
                                         tagE3DSCLTYPE type);

    /// Rotates the scaling orientation, of the components in both modes. A pivot has no effect.
    C3DTransfo & AddScalingOrientation(C3DRotation & r, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                                       tagE3DTRANSFOSPACE pivotSpace, C3DVector3Tpl<double> const * pivot,
                                       bool updateEuler);
    ///@}

    /// \name Persistence
    ///@{

    /// Writes a chunk that holds the QN scaling flag and the components; of the rotation what C3DRotation::Save writes,
    /// its angles without their order. Gives `E_INVALIDARG` for a null stream. On a failure its code, with the stream
    /// back where it was.
    long Save(IStream * stream, int format);

    /// Reads what Save writes. On a failure its code, with what was read so far in the components and the flags of
    /// validity as they were.
    long Load(IStream * stream);
    ///@}

protected:
    /// Forgets what was held, the scaling orientation included, without deleting it; nothing is valid then.
    void Init();

    /// Brings the matrix up to date. To be called where it is stale.
    void Combine();

    /// Brings the components of a mask up to date, and calls all of them clean: the caller overwrites the others. To be
    /// called where they are stale.
    void Factorize(unsigned char mask);

private:
    friend class math::detail::TransformationInspector;

    static constexpr unsigned char k_ComponentsDirty = 1;     ///< the matrix is the truth, the components are not read
    static constexpr unsigned char k_XfoMatDirty = 2;         ///< the components are the truth, the matrix is not read
    static constexpr unsigned char k_QNScaling = 4;           ///< compose and edit by component
    static constexpr unsigned char k_PreserveRotOrder = 8;    ///< a copy into this object keeps the order of rotation
    static constexpr unsigned char k_DefinitelyIdentity = 16; ///< the identity, whatever else is held
    static constexpr unsigned char k_UnusedFlag = 32; ///< a copy of the identity keeps it, any other copy takes it over

    // NOLINTBEGIN(bugprone-reserved-identifier): these names are the package's convention for its cached classes.
    /// The flags one by one: set where the argument is not 0, else cleared, and read as 0 or 1.
    void _SetComponentsDirty(int dirty) { SetFlag(k_ComponentsDirty, dirty); }
    int _AreComponentsDirty() const { return (m_Flags & k_ComponentsDirty) != 0; }
    void _SetXfoMatDirty(int dirty) { SetFlag(k_XfoMatDirty, dirty); }
    int _IsXfoMatDirty() const { return (m_Flags & k_XfoMatDirty) != 0; }
    void _SetQNScaling(int on) { SetFlag(k_QNScaling, on); }
    int _IsQNScaling() const { return (m_Flags & k_QNScaling) != 0; }
    void _SetDefinitelyIdentity(int identity) { SetFlag(k_DefinitelyIdentity, identity); }
    bool _IsDefinitelyIdentity() const { return (m_Flags & k_DefinitelyIdentity) != 0; }
    /// Makes a scaling orientation, the identity in order XYZ, where there is none, or deletes the one there is.
    /// Without memory the pointer is null.
    void _AllocateScalingOrientationMatrix(bool wanted);
    // NOLINTEND(bugprone-reserved-identifier)

    /// Clears some flags and sets others. What is as wanted is not stored again: the next call would wait for it, and
    /// so one call after another.
    void ChangeFlags(int cleared, int set)
    {
        auto const flags = static_cast<unsigned char>((m_Flags & ~cleared) | set);
        if (flags != m_Flags)
        {
            m_Flags = flags;
        }
    }
    void SetFlag(unsigned char flag, int value) { ChangeFlags(flag, value != 0 ? flag : 0); }
    void MarkComponentsAsSource() { ChangeFlags(k_ComponentsDirty | k_DefinitelyIdentity, k_XfoMatDirty); }
    void MarkMatrixAsSource() { ChangeFlags(k_XfoMatDirty | k_DefinitelyIdentity, k_ComponentsDirty); }
    void FreshenComponents(unsigned char mask)
    {
        if (_AreComponentsDirty())
        {
            Factorize(mask);
        }
    }
    void FreshenMatrix()
    {
        if (_IsXfoMatDirty())
        {
            Combine();
        }
    }
    void NoteRotOrder();
    void PrepareForMatrix();

    bool IsMatrixSheared() const;
    bool HasScalingOrientation() const;
    C3DRotation CopyEffectiveScalingOrientation() const;
    void StoreScalingOrientation(C3DRotation const & scalingOrientation);
    void FactorizeSheared(unsigned char mask);
    void FactorizeUnsheared(unsigned char mask);
    void ResetComponents(unsigned char mask);
    void CopyComponents(C3DTransfo const & source, bool keepOwnOrder);
    void FinishSetRotation();
    void WriteTranslation(C3DVector3Tpl<double> const & translation);

    void MulMatrices(C3DTransfo & a, C3DTransfo & b);
    void MulComponents(C3DTransfo & a, C3DTransfo & b, unsigned char mask);
    void MulTranslations(C3DTransfo & a, C3DTransfo & b, unsigned char mask);
    void MulScalingOrientations(C3DTransfo & a, C3DTransfo & b);
    void DifMatrices(C3DTransfo & a, C3DTransfo & b);
    void DifComponents(C3DTransfo & a, C3DTransfo & b, unsigned char mask, C3DTransfo * target, bool isAIdentity);
    void DifTranslations(C3DTransfo & a, C3DTransfo & b, unsigned char mask, bool isAIdentity);
    void DifScalingOrientations(C3DTransfo & a, C3DTransfo & b, C3DVector3Tpl<double> * targetAngles, bool isAIdentity);
    void StoreMatrixProduct(C3DTransfo & a, C3DXfoMatTpl<double> const & right);
    void NormalizeAngles(C3DTransfo * target);

    void RotateComponents(C3DRotation & r, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                          tagE3DTRANSFOSPACE pivotSpace, C3DTransfo * pivot, bool updateEuler);
    void RotateMatrix(C3DRotation & r, tagE3DTRANSFOSPACE space, C3DRotation * reference, tagE3DTRANSFOSPACE pivotSpace,
                      C3DTransfo * pivot);
    void ScaleComponents(C3DVector3Tpl<double> const & s, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                         tagE3DTRANSFOSPACE pivotSpace, C3DTransfo * pivot);
    void ScaleMatrix(C3DVector3Tpl<double> const & s, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                     tagE3DTRANSFOSPACE pivotSpace, C3DTransfo * pivot);

    C3DRotation m_Rotation;
    C3DXfoMatTpl<double> m_XfoMat;
    tagE3DROTORDER m_XfoRotOrder;    ///< the order in which the rotation is read from the matrix
    C3DVector3Tpl<double> m_Scaling; ///< kept away from zero, unless Interpolate wrote it
    C3DVector3Tpl<double> m_Translation;
    C3DRotation * m_pScalingOrientation; ///< owned; null where there is none
    unsigned char m_Flags;
};
