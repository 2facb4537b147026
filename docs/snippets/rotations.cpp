// The first calls of the page on rotations. The program fails where they do not give what the page says.

//! [first call]
#include <math/rotation.h>
#include <math/rotation_conversions.h>

#include <cmath>
#include <numbers>

int main()
{
    double const degree = std::numbers::pi / 180;
    C3DRotation hips(10 * degree, 730 * degree, 20 * degree, E3DROTORDER_ZXY); // Z acts first, then X, then Y

    C3DRotMatTpl<double> matrix;
    hips.GetMatrix(matrix); // computed here, once, and kept beside the angles

    C3DVector3Tpl<double> plain;
    F3DMatToEuler(matrix, plain, E3DROTORDER_ZXY); // nearest to zero: (10, 10, 20) degrees

    C3DVector3Tpl<double> next(9 * degree, 725 * degree, 21 * degree); // where the frame before was
    F3DMatToEulerUsingTarget(matrix, next, E3DROTORDER_ZXY);           // nearest to that: (10, 730, 20) degrees
    return std::abs(plain.Y - 10 * degree) < 1e-9 && std::abs(next.Y - 730 * degree) < 1e-9 ? 0 : 1;
}
//! [first call]
