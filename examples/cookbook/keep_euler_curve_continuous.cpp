// A turntable spins twice while its arm swings over the top, and was baked to matrices. Read back one by one, the
// angles flip as the arm passes upright and never go beyond half a turn. With the frame before as the target they run
// on: through the pole of the angles, and through two whole turns.

#include <math/rotation.h>
#include <math/rotation_conversions.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

using Vector = C3DVector3Tpl<double>;

constexpr double k_Degree = std::numbers::pi / 180;

// In whole degrees, as integers: these have no minus zero.
void Print(Vector const & v)
{
    std::printf("  %5ld %5ld %5ld", std::lround(v.X / k_Degree), std::lround(v.Y / k_Degree),
                std::lround(v.Z / k_Degree));
}

int main()
{
    std::printf("frame  plain: x     y     z   target: x   y     z\n");
    Vector plainBefore(10 * k_Degree, 18 * k_Degree, 4 * k_Degree);
    Vector keptBefore = plainBefore;
    double plainStep = 0;
    double keptStep = 0;
    bool isSameRotation = true;
    for (int frame = 0; frame <= 12; ++frame)
    {
        Vector const animated(10 * k_Degree, (18 + 12 * frame) * k_Degree, (4 + 60 * frame) * k_Degree);
        C3DRotMatTpl<double> baked;
        F3DEulerToMat(animated, baked, E3DROTORDER_XYZ);

        Vector plain;
        F3DMatToEuler(baked, plain, E3DROTORDER_XYZ);
        Vector kept = keptBefore; // what the call finds here is its target
        F3DMatToEulerUsingTarget(baked, kept, E3DROTORDER_XYZ);
        std::printf("%4d ", frame);
        Print(plain);
        Print(kept);
        std::printf("\n");

        C3DRotMatTpl<double> again;
        F3DEulerToMat(kept, again, E3DROTORDER_XYZ);
        isSameRotation = isSameRotation && AreAlmostEqual(again, baked, 1e-9) != 0;
        // The greatest change of an angle; the 1 asks for magnitudes.
        plainStep = std::max(plainStep, plainBefore.Sub(plain).GetMaxComponent(1));
        keptStep = std::max(keptStep, keptBefore.Sub(kept).GetMaxComponent(1));
        plainBefore = plain;
        keptBefore = kept;
    }
    std::printf("largest step: plain %ld degrees, with the target %ld\n", std::lround(plainStep / k_Degree),
                std::lround(keptStep / k_Degree));
    std::printf("every frame is the rotation that was baked: %s\n", isSameRotation ? "yes" : "no");
}
