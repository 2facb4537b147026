// The first calls of the page on transformations. The program fails where they do not give what the page says.

//! [first call]
#include <math/transformation.h>

#include <numbers>

int main()
{
    double const degree = std::numbers::pi / 180;
    C3DTransfo arm({-1, 1, 1}, C3DRotation(E3D_AXIS_Z, 40 * degree), {2, 0, 0}); // a mirror in X, a turn, a move
    C3DTransfo body({1, 3, 1}, C3DRotation(), {0, 5, 0});

    C3DTransfo world; // composes by component, unless it is told otherwise
    world.Mul(arm, body, 63);
    bool const isSheared = world.HasShearing(); // false

    world.SetQNScalingFlag(0);
    world.Mul(arm, body, 63);
    bool const isShearedByMatrix = world.HasShearing(); // true

    C3DTransfo again;
    again.Set(*arm.GetMatrix()); // through the matrix, which remembers the mirror
    C3DVector3Tpl<double> scaling;
    again.GetScaling(scaling); // (-1, 1, 1)

    bool const isKept = AreAlmostEqual(scaling, C3DVector3Tpl<double>(-1, 1, 1)) != 0;
    return !isSheared && isShearedByMatrix && isKept ? 0 : 1;
}
//! [first call]
