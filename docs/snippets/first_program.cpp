// The program of the front page. It fails where it does not print what it says.

//! [first program]
#include <math/math.h>

#include <cmath>
#include <iostream>
#include <numbers>

int main()
{
    C3DRotation turn(E3D_AXIS_Z, std::numbers::pi / 2);
    C3DVector3Tpl<double> p(1, 0, 0);
    turn.RotateVct(p, p); // the target may be an operand
    p.Dump(L"where X goes", std::cout);
    return std::abs(p.Y - 1) < 1e-12 ? 0 : 1; // to Y
}
//! [first program]
