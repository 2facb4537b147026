// A clip keys its rotations in the order XYZ, and the engine wants ZXY. Each frame's rotation stays what it is, and its
// angles in the new order are taken nearest to those of the frame before: no jump, and both whole turns survive the way
// there and back.

#include <math/rotation.h>
#include <math/rotation_conversions.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <numbers>

using Vector = C3DVector3Tpl<double>;
using Curve = std::array<Vector, 13>;

constexpr double k_Degree = std::numbers::pi / 180;

// The same rotations in another order. `start` is the first frame's target: it chooses the turn that the curve is in.
Curve Reorder(Curve const & curve, tagE3DROTORDER from, tagE3DROTORDER to, Vector const & start)
{
    Curve result;
    Vector angles = start;
    for (std::size_t i = 0; i < curve.size(); ++i)
    {
        C3DRotation rotation(curve[i], from);
        F3DMatToEulerUsingTarget(*rotation.GetMatrix(), angles, to);
        result[i] = angles;
    }
    return result;
}

void Print(char const * label, Vector const & v)
{
    std::printf("%s %6.1f %6.1f %6.1f\n", label, v.X / k_Degree, v.Y / k_Degree, v.Z / k_Degree);
}

int main()
{
    Curve xyz;
    for (std::size_t i = 0; i < xyz.size(); ++i)
    {
        xyz[i].Set(20 * k_Degree, 40 * k_Degree, (50 + 60 * static_cast<double>(i)) * k_Degree);
    }
    Curve const zxy = Reorder(xyz, E3DROTORDER_XYZ, E3DROTORDER_ZXY, xyz.front());
    Curve const back = Reorder(zxy, E3DROTORDER_ZXY, E3DROTORDER_XYZ, xyz.front());

    Print("XYZ, first frame", xyz.front());
    Print("XYZ, last frame ", xyz.back());
    Print("ZXY, first frame", zxy.front());
    Print("ZXY, last frame ", zxy.back());

    Vector plain; // the same frame alone, without a target
    C3DRotation(xyz.back(), E3DROTORDER_XYZ).GetXYZAngles(plain, E3DROTORDER_ZXY);
    Print("ZXY, last, alone", plain);

    bool const isBack = std::ranges::equal(
        back, xyz, [](Vector const & a, Vector const & b) { return AreAlmostEqual(a, b, 1e-9) != 0; });
    std::printf("there and back, every frame has the angles that it had: %s\n", isBack ? "yes" : "no");
}
