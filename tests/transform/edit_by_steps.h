#pragma once

/// \file
/// Edits of transformations, written step after step, for the tests to hold the library's against.

#include "transform/composition_by_steps.h"

namespace edit_test
{

using namespace composition_test;

using Space = tagE3DTRANSFOSPACE;

/// An edit in a space, about a pivot.
struct Place
{
    Space space = E3DTRANSFOSPACE_LOCAL;
    C3DRotation * reference = nullptr;
    Space pivotSpace = E3DTRANSFOSPACE_LOCAL;
    C3DTransfo * pivot = nullptr;

    bool HasGivenPivot() const { return pivotSpace == E3DTRANSFOSPACE_REFERENCE && pivot != nullptr; }
    bool IsAboutParent() const { return pivotSpace == E3DTRANSFOSPACE_PARENT; }
};

// --- Parts -----------------------------------------------------------------------------------------------------------

inline bool IsNeutral(Rotation & rotation)
{
    Quat quat;
    rotation.GetQuat(quat);
    return rotation.QuickIsIdentity() != 0 || (quat.W == 1 && quat.X == 0 && quat.Y == 0 && quat.Z == 0);
}

/// x^-1 r x.
inline Rotation ConjugateBySteps(Rotation r, Rotation x)
{
    Rotation inverse;
    inverse.Invert(x);
    if (!IsNeutral(inverse))
    {
        Rotation right = r;
        r.Mul(inverse, right);
    }
    if (!IsNeutral(x))
    {
        Rotation left = r;
        r.Mul(left, x);
    }
    return r;
}

/// r as it acts behind a rotation. A space beyond the three is that of the reference.
inline Rotation InParentBySteps(Rotation const & r, Place const & place, Rotation const & local)
{
    if (place.space == E3DTRANSFOSPACE_PARENT)
    {
        return r;
    }
    return ConjugateBySteps(r, place.space == E3DTRANSFOSPACE_LOCAL ? local : *place.reference);
}

inline void TurnBySteps(Rotation & rotation, Rotation r, Rotation inParent, Space space, bool updateEuler)
{
    Rotation old = rotation;
    if (space == E3DTRANSFOSPACE_LOCAL)
    {
        updateEuler ? rotation.MulAndUpdateEulerAngles(r, old, 2) : rotation.Mul(r, old);
        return;
    }
    updateEuler ? rotation.MulAndUpdateEulerAngles(old, inParent, 1) : rotation.Mul(old, inParent);
}

inline Matrix Inverted(Matrix const & m)
{
    Matrix inverse;
    inverse.Invert(m);
    return inverse;
}

inline Matrix WithoutLastRow(Matrix m)
{
    for (int i = 0; i < 3; ++i)
    {
        m.Set(3, i, 0.0);
    }
    return m;
}

/// The upper block of a matrix, without anything else.
inline Matrix Block(RotMatrix const & r)
{
    Matrix m;
    for (int i = 0; i < 9; ++i)
    {
        m.Set(i / 3, i % 3, r.Get(i / 3, i % 3));
    }
    RepairSigns(m);
    return m;
}

inline void SetLastRow(Matrix & m, Vector const & t)
{
    for (int i = 0; i < 3; ++i)
    {
        m.Set(3, i, t.Get(i));
    }
    m.Set(3, 3, 1.0);
}

inline Vector LastRow(Matrix const & m)
{
    return {m.Get(3, 0), m.Get(3, 1), m.Get(3, 2)};
}

inline Vector TranslationOf(C3DTransfo & self)
{
    return Inside::AreComponentsDirty(self) != 0 ? LastRow(Inside::Matrix(self)) : Inside::Translation(self);
}

inline void WriteWhereClean(C3DTransfo & self, Vector const & t)
{
    if (Inside::AreComponentsDirty(self) == 0)
    {
        Inside::Translation(self) = t;
    }
    if (Inside::IsXfoMatDirty(self) == 0)
    {
        SetLastRow(Inside::Matrix(self), t);
    }
}

inline Matrix MatrixOfPivot(C3DTransfo & pivot)
{
    FreshenMatrix(pivot);
    return Inside::Matrix(pivot);
}

// --- Translation -----------------------------------------------------------------------------------------------------

inline void AddTranslationBySteps(C3DTransfo & self, Vector const & t, Space space, Rotation const * reference)
{
    Vector const before = TranslationOf(self);
    Vector way = t;
    if (space == E3DTRANSFOSPACE_LOCAL)
    {
        FreshenMatrix(self);
        RotMatrix rotation;
        way = RowTimes(t, Inside::Matrix(self).GetRotation(rotation));
    }
    else if (space != E3DTRANSFOSPACE_PARENT)
    {
        way = RowTimes(t, MatrixOf(*reference));
    }
    WriteWhereClean(self, Sum(before, way));
    Inside::SetDefinitelyIdentity(self, 0);
}

// --- Rotation --------------------------------------------------------------------------------------------------------

inline void RotateComponentsBySteps(C3DTransfo & self, Rotation const & r, Place const & place, bool updateEuler)
{
    FreshenComponents(self);
    Rotation const old = Inside::Rotation(self);
    Rotation const q = InParentBySteps(r, place, old);
    TurnBySteps(Inside::Rotation(self), r, q, place.space, updateEuler);
    Vector & t = Inside::Translation(self);
    if (place.IsAboutParent())
    {
        t = RowTimes(t, MatrixOf(q));
    }
    else if (place.HasGivenPivot())
    {
        Matrix const pivot = MatrixOfPivot(*place.pivot);
        FreshenComponents(*place.pivot);
        Rotation const c = Inside::Rotation(*place.pivot);
        RotMatrix turn;
        turn.Mul(MatrixOf(c), MatrixOf(q)).Mul(RotMatrix().Transpose(MatrixOf(c)));
        t = PointThrough(RowTimes(PointThrough(t, Inverted(pivot)), turn), pivot);
    }
    Inside::SetXfoMatDirty(self, 1);
    Inside::SetDefinitelyIdentity(self, 0);
}

inline void RotateMatrixBySteps(C3DTransfo & self, Rotation const & r, Place const & place)
{
    FreshenMatrix(self);
    Matrix & m = Inside::Matrix(self);
    Matrix const old = m;
    Rotation g;
    old.GetRotation(g);
    Rotation const q = InParentBySteps(r, place, g);
    Matrix const turned = place.space == E3DTRANSFOSPACE_LOCAL ? ProductOf(Block(MatrixOf(r)), WithoutLastRow(old))
                                                               : ProductOf(WithoutLastRow(old), Block(MatrixOf(q)));
    for (int i = 0; i < 9; ++i)
    {
        m.Set(i / 3, i % 3, turned.Get(i / 3, i % 3));
    }
    if (place.IsAboutParent())
    {
        Vector const t = RowTimes(LastRow(m), MatrixOf(q));
        for (int i = 0; i < 3; ++i)
        {
            m.Set(3, i, t.Get(i));
        }
    }
    else if (place.HasGivenPivot())
    {
        Matrix const pivot = MatrixOfPivot(*place.pivot);
        Matrix w;
        if (place.space != E3DTRANSFOSPACE_PARENT)
        {
            w = place.space == E3DTRANSFOSPACE_LOCAL ? WithoutLastRow(old) : Block(MatrixOf(*place.reference));
        }
        Matrix const v = ProductOf(ProductOf(Inverted(w), Block(MatrixOf(r))), w);
        Matrix const pn = WithoutLastRow(pivot);
        Matrix const y = ProductOf(ProductOf(pn, v), Inverted(pn));
        Vector const u = PointThrough(TranslationOf(self), Inverted(pivot));
        WriteWhereClean(self, PointThrough(PointThrough(u, y), pivot));
    }
    MatrixIsSource(self);
    Inside::SetDefinitelyIdentity(self, 0);
}

inline void AddRotationBySteps(C3DTransfo & self, Rotation const & r, Place const & place, bool updateEuler)
{
    self.GetQNScalingFlag() != 0 ? RotateComponentsBySteps(self, r, place, updateEuler)
                                 : RotateMatrixBySteps(self, r, place);
}

// --- Scaling ---------------------------------------------------------------------------------------------------------

/// v x R^T x diag(s) x R, with the axes of the space.
inline Vector ScaledInSpace(Vector const & v, Vector const & s, Place const & place, Rotation const & local)
{
    RotMatrix axes;
    if (place.space != E3DTRANSFOSPACE_PARENT)
    {
        axes = MatrixOf(place.space == E3DTRANSFOSPACE_LOCAL ? local : *place.reference);
    }
    Vector const inAxes = RowTimes(v, axes, true);
    return RowTimes(Vector(inAxes.X * s.X, inAxes.Y * s.Y, inAxes.Z * s.Z), axes);
}

inline void ScaleComponentsBySteps(C3DTransfo & self, Vector const & s, Place const & place)
{
    FreshenComponents(self);
    for (int i = 0; i < 3; ++i)
    {
        Inside::Scaling(self).Set(i, Clamped(Inside::Scaling(self).Get(i) * s.Get(i)));
    }
    Vector & t = Inside::Translation(self);
    Rotation const local = Inside::Rotation(self);
    if (place.IsAboutParent())
    {
        t = ScaledInSpace(t, s, place, local);
    }
    else if (place.HasGivenPivot())
    {
        Matrix const pivot = MatrixOfPivot(*place.pivot);
        t = PointThrough(ScaledInSpace(PointThrough(t, Inverted(pivot)), s, place, local), pivot);
    }
    Inside::SetXfoMatDirty(self, 1);
}

inline void ScaleMatrixBySteps(C3DTransfo & self, Vector const & s, Place const & place)
{
    FreshenMatrix(self);
    Matrix & m = Inside::Matrix(self);
    Matrix const old = m;
    Matrix sx;
    sx.SetScaling(s);
    if (place.space == E3DTRANSFOSPACE_LOCAL)
    {
        m = ProductOf(sx, old);
    }
    else if (place.space == E3DTRANSFOSPACE_PARENT)
    {
        m = ProductOf(old, sx);
    }
    else
    {
        unsigned const bits = sx.GetSclSignBits();
        Matrix right = ProductOf(sx, Block(MatrixOf(*place.reference)));
        Inside::SetSclSignBits(right, bits);
        m = ProductOf(old, right);
    }
    if (place.IsAboutParent() || place.HasGivenPivot())
    {
        Matrix const p = place.IsAboutParent() ? Matrix() : MatrixOfPivot(*place.pivot);
        Vector const q = LastRow(ProductOf(p, Inverted(old)));
        Vector const away = Sum(PointThrough(q, m), Times(LastRow(p), -1));
        WriteWhereClean(self, Sum(LastRow(old), Times(away, -1)));
    }
    MatrixIsSource(self);
}

inline void AddScalingBySteps(C3DTransfo & self, Vector const & s, Place const & place)
{
    Inside::SetDefinitelyIdentity(self, 0);
    self.GetQNScalingFlag() != 0 ? ScaleComponentsBySteps(self, s, place) : ScaleMatrixBySteps(self, s, place);
}

// --- Scaling orientation ---------------------------------------------------------------------------------------------

inline void AddScalingOrientationBySteps(C3DTransfo & self, Rotation const & r, Place const & place, bool updateEuler)
{
    FreshenComponents(self);
    Rotation o;
    if (Inside::ScalingOrientation(self) != nullptr)
    {
        o = *Inside::ScalingOrientation(self);
    }
    Rotation const q = InParentBySteps(r, place, o);
    TurnBySteps(o, r, q, place.space, updateEuler);
    StoreOrientation(self, o);
    Inside::SetXfoMatDirty(self, 1);
    Inside::SetDefinitelyIdentity(self, 0);
}

} // namespace edit_test
