#include "math/rotation.h"

#include "numeric/axis.h"
#include "rotation/angle_constants.h"

#include <cmath>

using namespace math::detail;

namespace
{

/// How the frame of an alignment is completed from the aligned vector u: the helper vector is the cross product of the
/// axis and u, reversed for Z, and the third vector is the helper crossed with u.
struct FrameRecipe
{
    int helper;
    int third;
    bool reversed;
};

constexpr FrameRecipe k_FrameRecipes[3] = {{2, 1, false}, {0, 2, false}, {1, 0, true}};

C3DVector3Tpl<double> UnitAxis(tagE3DAXISTYPE axis)
{
    return {axis, 1.0};
}

bool IsNegligible(C3DVector3Tpl<double> const & v)
{
    double const tolerance = k_StandardTolerance<double>;
    return std::abs(v.X) <= tolerance && std::abs(v.Y) <= tolerance && std::abs(v.Z) <= tolerance;
}

/// Row r as the cross product of the two rows after it in the right-handed cycle.
void SetFromCycle(C3DVector3Tpl<double> (&rows)[3], int r)
{
    rows[r].SetCross(rows[(r + 1) % 3], rows[(r + 2) % 3]);
}

/// Makes a copy of the first vector differ from it, so that a frame can be built on the two.
C3DVector3Tpl<double> Perturb(C3DVector3Tpl<double> v, int axis1, int axis2, int axis3)
{
    double const tolerance = k_StandardTolerance<double>;
    int const component = std::abs(v.Get(axis1)) < tolerance && std::abs(v.Get(axis3)) < tolerance ? axis1 : axis2;
    return v.Set(component, v.Get(component) + 1);
}

} // namespace

int C3DRotation::AlignTo(tagE3DAXISTYPE axis, C3DVector3Tpl<double> const & v, int & degenerate)
{
    degenerate = 0;
    double const length = v.GetLength();
    if (!(length > k_StandardTolerance<double>))
    {
        return 0;
    }
    _SetDefinitelyIdentity(0);
    FrameRecipe const & recipe = k_FrameRecipes[axis];
    C3DVector3Tpl<double> const u = C3DVector3Tpl<double>().Div(v, length);
    C3DVector3Tpl<double> const unit = UnitAxis(axis);
    C3DVector3Tpl<double> helper;
    helper.SetCross(recipe.reversed ? u : unit, recipe.reversed ? unit : u);
    if (helper.GetSquaredLength() >= k_StandardTolerance<double>)
    {
        helper.Normalize();
        m_Matrix.SetCol(axis, u);
        m_Matrix.SetCol(recipe.helper, helper);
        m_Matrix.SetCol(recipe.third, C3DVector3Tpl<double>().SetCross(helper, u));
        SetMatrixRep();
        return 1;
    }
    degenerate = 1;
    if (v.Get(axis) <= 0)
    {
        Set(static_cast<tagE3DAXISTYPE>(NextAxis(axis)), k_Pi);
    }
    else
    {
        SetIdentity();
    }
    return 1;
}

int C3DRotation::AlignToX(C3DVector3Tpl<double> const & v, int & degenerate)
{
    // Unlike its siblings, before the vector is looked at: the mark is lost on failure too.
    _SetDefinitelyIdentity(0);
    return AlignTo(E3D_AXIS_X, v, degenerate);
}

int C3DRotation::AlignToY(C3DVector3Tpl<double> const & v, int & degenerate)
{
    return AlignTo(E3D_AXIS_Y, v, degenerate);
}

int C3DRotation::AlignToZ(C3DVector3Tpl<double> const & v, int & degenerate)
{
    return AlignTo(E3D_AXIS_Z, v, degenerate);
}

int C3DRotation::MinAlignToX(C3DVector3Tpl<double> const & v, int & degenerate)
{
    return Set(v, UnitAxis(E3D_AXIS_X), degenerate);
}

int C3DRotation::MinAlignToY(C3DVector3Tpl<double> const & v, int & degenerate)
{
    return Set(v, UnitAxis(E3D_AXIS_Y), degenerate);
}

int C3DRotation::MinAlignToZ(C3DVector3Tpl<double> const & v, int & degenerate)
{
    return Set(v, UnitAxis(E3D_AXIS_Z), degenerate);
}

int C3DRotation::AlignAxesToVct(tagE3DAXISTYPE axis1, C3DVector3Tpl<double> const & vct1, tagE3DAXISTYPE axis2,
                                C3DVector3Tpl<double> const & vct2, int & degenerate)
{
    degenerate = 0;
    if (!NamesAxis(axis1) || !NamesAxis(axis2) || axis1 == axis2 || IsNegligible(vct1))
    {
        return 0;
    }
    int const axis3 = 3 - axis1 - axis2;
    C3DVector3Tpl<double> rows[3];
    rows[axis1] = vct1;
    rows[axis2] = vct2;
    SetFromCycle(rows, axis3);
    if (IsNegligible(rows[axis3]))
    {
        degenerate = 1;
        rows[axis2] = Perturb(vct1, axis1, axis2, axis3);
        SetFromCycle(rows, axis3);
    }
    rows[axis1].Normalize();
    rows[axis3].Normalize();
    SetFromCycle(rows, axis2);
    Set(rows[0], rows[1], rows[2]);
    return 1;
}
