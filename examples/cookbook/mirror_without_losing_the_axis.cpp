// The left arm is the right arm with a scale of (-1, 1, 1). Sixteen numbers cannot tell which axis is mirrored, so an
// arm that went through them comes back mirrored in all three axes, and turned. A transformation matrix remembers the
// axis.

#include <math/rotation.h>
#include <math/transformation.h>
#include <math/transformation_matrix.h>

#include <cmath>
#include <cstdio>
#include <numbers>

using Vector = C3DVector3Tpl<double>;

constexpr double k_Degree = std::numbers::pi / 180;

void Print(char const * label, C3DXfoMatTpl<double> const & matrix)
{
    Vector scaling;
    C3DRotation rotation;
    matrix.GetScalingAndRotation(scaling, rotation);
    Vector angles;
    rotation.GetXYZAngles(angles);
    std::printf("%-26s scale %4.1f %4.1f %4.1f   angles %6.1f %5.1f %5.1f\n", label, scaling.X, scaling.Y, scaling.Z,
                angles.X / k_Degree, angles.Y / k_Degree, angles.Z / k_Degree);
}

int main()
{
    C3DRotation turn(10 * k_Degree, 30 * k_Degree, 20 * k_Degree, E3DROTORDER_XYZ);
    C3DXfoMatTpl<double> arm;
    arm.SetScalingAndRotation(Vector(-1, 1, 1), turn);
    Print("mirrored in X", arm);

    C3DXfoMatTpl<double> const copy = arm; // a copy brings the history along
    Print("a copy", copy);

    C3DXfoMatTpl<double> numbers;
    numbers.Set(arm.GetMatrix44()); // the sixteen numbers, and nothing else
    Print("from its numbers alone", numbers);

    Vector const finger(1, 2, 3);
    Vector const seen = Vector().Mul(finger, arm);
    Vector const seenAgain = Vector().Mul(finger, numbers);
    std::printf("both take a point to the same place: %s\n", AreAlmostEqual(seen, seenAgain) != 0 ? "yes" : "no");

    // Mirrors multiply axis by axis: a mirror in X inside a mirror in Y.
    C3DXfoMatTpl<double> inY;
    inY.AddScaling(Vector(1, -1, 1), 1);
    Print("then mirrored in Y, world", C3DXfoMatTpl<double>().Mul(arm, inY));

    // A transformation keeps components and matrix, and the axis on the way from one to the other.
    C3DTransfo transformation;
    transformation.Set(arm);
    Vector scaling;
    transformation.GetScaling(scaling);
    std::printf("%-26s scale %4.1f %4.1f %4.1f\n", "through a transformation", scaling.X, scaling.Y, scaling.Z);
}
