// The first calls of the page on vectors and matrices. The program fails where they do not give what the page says.

//! [first call]
#include <math/matrix33.h>
#include <math/numeric.h>
#include <math/rotation_matrix.h>
#include <math/vector3.h>

#include <numbers>

int main()
{
    C3DRotMatTpl<double> turn;
    turn.Set(E3D_AXIS_Z, std::numbers::pi / 2);                // row 0, the image of X, is Y
    C3DMatrix33Tpl<double> stretch(2, 0, 0, 0, 1, 0, 0, 0, 1); // twice as long along X

    C3DMatrix33Tpl<double> both;
    both.Mul(stretch, turn.GetMatrix()); // the product of the two: stretch acts first

    C3DVector3Tpl<double> v;
    v.Mul(C3DVector3Tpl<double>(1, 0, 0), both); // the row (1, 0, 0) times the matrix: (0, 2, 0)

    C3DMatrix33Tpl<double> back;
    if (back.Invert(both) == 0)
    {
        return 1; // singular, and `back` is as it was
    }
    v.Mul(back); // a form that lacks an operand takes the target: (1, 0, 0) again
    return AreAlmostEqual(v, C3DVector3Tpl<double>(1, 0, 0)) != 0 ? 0 : 1;
}
//! [first call]
