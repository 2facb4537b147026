#include "math/transformation.h"
#include "transform/component_mask.h"
#include "transform/scale_clamp.h"

using namespace math::detail;

namespace
{

using Matrix = C3DXfoMatTpl<double>;
using Vector = C3DVector3Tpl<double>;

enum class Pivot
{
    None,
    ParentOrigin,
    Given
};

Pivot FindPivot(tagE3DTRANSFOSPACE pivotSpace, C3DTransfo const * pivot)
{
    if (pivotSpace == E3DTRANSFOSPACE_PARENT)
    {
        return Pivot::ParentOrigin;
    }
    return pivotSpace == E3DTRANSFOSPACE_REFERENCE && pivot != nullptr ? Pivot::Given : Pivot::None;
}

/// x^-1 r x. A factor that is the identity is not multiplied.
C3DRotation Conjugate(C3DRotation & r, C3DRotation & x)
{
    C3DRotation inverse;
    inverse.Invert(x);
    C3DRotation conjugate = r;
    conjugate.LeftMul(inverse).Mul(x);
    return conjugate;
}

/// What acts behind a rotation as r does in a space, where `local` is the rotation of the local space. With a null one,
/// where what acts there is not asked for, it is r.
C3DRotation BringIntoParent(C3DRotation & r, tagE3DTRANSFOSPACE space, C3DRotation * reference, C3DRotation * local)
{
    C3DRotation * const axes = space == E3DTRANSFOSPACE_LOCAL ? local : reference;
    return space == E3DTRANSFOSPACE_PARENT || axes == nullptr ? r : Conjugate(r, *axes);
}

/// Adds r to a rotation: in the local space in front of it, else `inParent`, which is r brought into the parent, behind
/// it.
void Rotate(C3DRotation & rotation, C3DRotation & r, C3DRotation & inParent, tagE3DTRANSFOSPACE space, bool updateEuler)
{
    if (space == E3DTRANSFOSPACE_LOCAL)
    {
        updateEuler ? rotation.MulAndUpdateEulerAngles(r, rotation, 2) : rotation.Mul(r, rotation);
    }
    else
    {
        updateEuler ? rotation.MulAndUpdateEulerAngles(rotation, inParent, 1) : rotation.Mul(rotation, inParent);
    }
}

/// The transformation that stands for a pivot at a point.
C3DTransfo MakePivot(Vector const * pivot)
{
    C3DTransfo transformation;
    if (pivot != nullptr)
    {
        transformation.SetTranslation(*pivot);
    }
    return transformation;
}

Matrix InverseOf(Matrix const & m)
{
    Matrix inverse;
    inverse.Invert(m);
    return inverse;
}

/// A point taken into the space of a pivot, through a map there, and back.
template <typename Map>
Vector MapInPivotSpace(Vector const & point, Matrix const & pivot, Map const & map)
{
    Vector mapped;
    mapped.Mul(point, InverseOf(pivot));
    mapped.Mul(mapped, map);
    return mapped.Mul(mapped, pivot);
}

/// What the rotation r of a space with the given axes is in the space of a pivot.
Matrix BringIntoPivot(C3DRotation & r, Matrix const & axes, Matrix pivot)
{
    pivot.SetTranslation(Vector(0, 0, 0));
    Matrix map;
    map.Set(*r.GetMatrix());
    map.Mul(InverseOf(axes), map).Mul(axes);
    return map.Mul(pivot, map).Mul(InverseOf(pivot));
}

/// R^T D R: the scale D along the axes R of a space, where `local` is the rotation of the local space.
C3DMatrix33Tpl<double> ScaleInParent(Vector const & s, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                                     C3DRotation & local)
{
    C3DMatrix33Tpl<double> d(s.X, 0, 0, 0, s.Y, 0, 0, 0, s.Z);
    C3DRotation * const axes = space == E3DTRANSFOSPACE_LOCAL ? &local : reference;
    if (space == E3DTRANSFOSPACE_PARENT || axes == nullptr)
    {
        return d;
    }
    C3DRotMatTpl<double> const & r = *axes->GetMatrix();
    d.Mul(d, r);
    return d.MulTransByReg(r, d);
}

} // namespace

// --- Translation -----------------------------------------------------------------------------------------------------

C3DTransfo & C3DTransfo::AddTranslation(Vector const & t, tagE3DTRANSFOSPACE space, C3DRotation * reference)
{
    Vector translation;
    GetTranslation(translation);
    Vector way = t;
    if (space == E3DTRANSFOSPACE_LOCAL)
    {
        FreshenMatrix();
        C3DRotMatTpl<double> rotation{C3DInitRequest_DoNotInitialize()};
        way.Mul(t, m_XfoMat.GetRotation(rotation));
    }
    else if (space != E3DTRANSFOSPACE_PARENT && reference != nullptr)
    {
        way.Mul(t, *reference->GetMatrix());
    }
    WriteTranslation(translation.Add(way));
    _SetDefinitelyIdentity(0);
    return *this;
}

// --- Rotation --------------------------------------------------------------------------------------------------------

C3DTransfo & C3DTransfo::AddRotation(C3DRotation & r, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                                     tagE3DTRANSFOSPACE pivotSpace, Vector const * pivot, bool updateEuler)
{
    C3DTransfo pivotXfo = MakePivot(pivot);
    return AddRotationAboutPivotXfo(r, space, reference, pivotSpace, pivot != nullptr ? &pivotXfo : nullptr,
                                    updateEuler);
}

C3DTransfo & C3DTransfo::AddRotationAboutPivotXfo(C3DRotation & r, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                                                  tagE3DTRANSFOSPACE pivotSpace, C3DTransfo * pivot, bool updateEuler)
{
    if (_IsQNScaling())
    {
        RotateComponents(r, space, reference, pivotSpace, pivot, updateEuler);
    }
    else
    {
        RotateMatrix(r, space, reference, pivotSpace, pivot);
    }
    return *this;
}

void C3DTransfo::RotateComponents(C3DRotation & r, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                                  tagE3DTRANSFOSPACE pivotSpace, C3DTransfo * pivot, bool updateEuler)
{
    FreshenComponents(k_AllComponents);
    Pivot const kind = FindPivot(pivotSpace, pivot);
    C3DRotation inParent = BringIntoParent(r, space, reference, kind != Pivot::None ? &m_Rotation : nullptr);
    Rotate(m_Rotation, r, inParent, space, updateEuler);
    switch (kind)
    {
    case Pivot::None:
        break;
    case Pivot::ParentOrigin:
        m_Translation.Mul(m_Translation, *inParent.GetMatrix());
        break;
    case Pivot::Given:
        C3DRotation pivotToParent;
        pivot->GetRotation(pivotToParent);
        pivotToParent.Invert();
        C3DRotation inPivot = Conjugate(inParent, pivotToParent);
        m_Translation = MapInPivotSpace(m_Translation, *pivot->GetMatrix(), *inPivot.GetMatrix());
        break;
    }
    MarkComponentsAsSource();
}

void C3DTransfo::RotateMatrix(C3DRotation & r, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                              tagE3DTRANSFOSPACE pivotSpace, C3DTransfo * pivot)
{
    FreshenMatrix();
    Pivot const kind = FindPivot(pivotSpace, pivot);
    Matrix axes;
    C3DRotation rotation;
    if (space == E3DTRANSFOSPACE_LOCAL)
    {
        axes = m_XfoMat;
        axes.SetTranslation(Vector(0, 0, 0));
        m_XfoMat.GetRotation(rotation);
    }
    else if (space != E3DTRANSFOSPACE_PARENT && reference != nullptr)
    {
        axes.Set(*reference->GetMatrix());
    }
    C3DRotation inParent = BringIntoParent(r, space, reference, kind != Pivot::None ? &rotation : nullptr);
    if (space == E3DTRANSFOSPACE_LOCAL)
    {
        m_XfoMat.Mul(*r.GetMatrix(), m_XfoMat);
    }
    else
    {
        m_XfoMat.AddRotation(*inParent.GetMatrix());
    }
    Vector translation;
    switch (kind)
    {
    case Pivot::None:
        break;
    case Pivot::ParentOrigin:
        m_XfoMat.GetTranslation(translation);
        m_XfoMat.SetTranslation(translation.Mul(translation, *inParent.GetMatrix()));
        break;
    case Pivot::Given:
        Matrix const pivotMatrix = *pivot->GetMatrix();
        GetTranslation(translation);
        WriteTranslation(MapInPivotSpace(translation, pivotMatrix, BringIntoPivot(r, axes, pivotMatrix)));
        break;
    }
    MarkMatrixAsSource();
}

// --- Scaling ---------------------------------------------------------------------------------------------------------

C3DTransfo & C3DTransfo::AddScaling(Vector const & s, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                                    tagE3DTRANSFOSPACE pivotSpace, Vector const * pivot, tagE3DSCLTYPE type)
{
    C3DTransfo pivotXfo = MakePivot(pivot);
    return AddScalingAboutPivotXfo(s, space, reference, pivotSpace, pivot != nullptr ? &pivotXfo : nullptr, type);
}

C3DTransfo & C3DTransfo::AddScalingAboutPivotXfo(Vector const & s, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                                                 tagE3DTRANSFOSPACE pivotSpace, C3DTransfo * pivot,
                                                 tagE3DSCLTYPE /*type*/)
{
    _SetDefinitelyIdentity(0);
    if (_IsQNScaling())
    {
        ScaleComponents(s, space, reference, pivotSpace, pivot);
    }
    else
    {
        ScaleMatrix(s, space, reference, pivotSpace, pivot);
    }
    return *this;
}

void C3DTransfo::ScaleComponents(Vector const & s, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                                 tagE3DTRANSFOSPACE pivotSpace, C3DTransfo * pivot)
{
    FreshenComponents(k_AllComponents);
    m_Scaling = ClampScale(Vector().MulComp(m_Scaling, s));
    switch (FindPivot(pivotSpace, pivot))
    {
    case Pivot::None:
        break;
    case Pivot::ParentOrigin:
        m_Translation.Mul(m_Translation, ScaleInParent(s, space, reference, m_Rotation));
        break;
    case Pivot::Given:
        m_Translation =
            MapInPivotSpace(m_Translation, *pivot->GetMatrix(), ScaleInParent(s, space, reference, m_Rotation));
        break;
    }
    _SetXfoMatDirty(1);
}

void C3DTransfo::ScaleMatrix(Vector const & s, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                             tagE3DTRANSFOSPACE pivotSpace, C3DTransfo * pivot)
{
    FreshenMatrix();
    Matrix const before = m_XfoMat;
    Matrix scale;
    scale.SetScaling(s);
    if (space == E3DTRANSFOSPACE_LOCAL)
    {
        m_XfoMat.Mul(scale, m_XfoMat);
    }
    else
    {
        if (space != E3DTRANSFOSPACE_PARENT && reference != nullptr)
        {
            scale.MulWithRotMat(scale, *reference->GetMatrix());
        }
        m_XfoMat.Mul(scale);
    }
    Pivot const kind = FindPivot(pivotSpace, pivot);
    if (kind != Pivot::None)
    {
        // The point of the object that lay at the pivot is kept there.
        Matrix const pivotMatrix = kind == Pivot::Given ? *pivot->GetMatrix() : Matrix();
        Vector fixedPoint;
        Matrix().Mul(pivotMatrix, InverseOf(before)).GetTranslation(fixedPoint);
        Vector pivotPoint;
        pivotMatrix.GetTranslation(pivotPoint);
        Vector translation;
        before.GetTranslation(translation);
        WriteTranslation(translation.Sub(fixedPoint.Mul(fixedPoint, m_XfoMat).Sub(pivotPoint)));
    }
    MarkMatrixAsSource();
}

C3DTransfo & C3DTransfo::AddScalingOrientation(C3DRotation & r, tagE3DTRANSFOSPACE space, C3DRotation * reference,
                                               tagE3DTRANSFOSPACE /*pivotSpace*/, Vector const * /*pivot*/,
                                               bool updateEuler)
{
    FreshenComponents(k_AllComponents);
    C3DRotation orientation = m_pScalingOrientation != nullptr ? *m_pScalingOrientation : C3DRotation();
    C3DRotation inParent = BringIntoParent(r, space, reference, nullptr);
    Rotate(orientation, r, inParent, space, updateEuler);
    StoreScalingOrientation(orientation);
    MarkComponentsAsSource();
    return *this;
}
