// A gizmo drags and turns an object in its own axes, in its parent's, in those of any other object, or about a pivot.
// One call for each, and Euler angles that stay in their turn.

#include <math/rotation.h>
#include <math/transformation.h>

#include <cmath>
#include <cstdio>
#include <numbers>

using Vector = C3DVector3Tpl<double>;

constexpr double k_Degree = std::numbers::pi / 180;

// Rounded to what is printed, and 0 for a minus zero.
double Tidy(double x)
{
    return std::round(x * 10) / 10 + 0.0;
}

// Takes a copy, since reading fills caches.
void Print(char const * label, C3DTransfo object)
{
    Vector place;
    Vector angles;
    object.GetTranslation(place);
    object.GetRotation(angles);
    std::printf("%-24s at %4.1f %4.1f %4.1f, angles %5.1f %5.1f %5.1f\n", label, Tidy(place.X), Tidy(place.Y),
                Tidy(place.Z), Tidy(angles.X / k_Degree), Tidy(angles.Y / k_Degree), Tidy(angles.Z / k_Degree));
}

int main()
{
    // At (2, 0, 0), turned about Z by a whole turn and 90 degrees: its own X axis is the parent's Y axis.
    C3DRotation const pose(0, 0, 450 * k_Degree, E3DROTORDER_XYZ);
    C3DTransfo const start(Vector(1, 1, 1), pose, Vector(2, 0, 0));
    Print("start", start);
    Vector const step(1, 0, 0);
    C3DRotation gizmo(E3D_AXIS_Y, 90 * k_Degree); // its X axis is the parent's -Z axis
    Print("drag, own axes", C3DTransfo(start).AddTranslation(step, E3DTRANSFOSPACE_LOCAL, nullptr));
    Print("drag, parent's axes", C3DTransfo(start).AddTranslation(step, E3DTRANSFOSPACE_PARENT, nullptr));
    Print("drag, the gizmo's axes", C3DTransfo(start).AddTranslation(step, E3DTRANSFOSPACE_REFERENCE, &gizmo));

    C3DRotation tilt(E3D_AXIS_X, 30 * k_Degree);
    auto const tilted = [&](tagE3DTRANSFOSPACE space)
    { return C3DTransfo(start).AddRotation(tilt, space, &gizmo, E3DTRANSFOSPACE_LOCAL, nullptr, true); };
    Print("tilt, own X axis", tilted(E3DTRANSFOSPACE_LOCAL));
    Print("tilt, parent's X axis", tilted(E3DTRANSFOSPACE_PARENT));
    Print("tilt, the gizmo's X axis", tilted(E3DTRANSFOSPACE_REFERENCE));

    // Where the pivot is has a space of its own: LOCAL none, PARENT the parent's origin, REFERENCE the point passed.
    C3DRotation turn(E3D_AXIS_Z, 90 * k_Degree);
    Vector const hinge(1, 0, 0);
    auto const turned = [&](tagE3DTRANSFOSPACE pivotSpace, bool keepTurns)
    { return C3DTransfo(start).AddRotation(turn, E3DTRANSFOSPACE_PARENT, nullptr, pivotSpace, &hinge, keepTurns); };
    Print("turn, in place", turned(E3DTRANSFOSPACE_LOCAL, true));
    Print("turn, parent's origin", turned(E3DTRANSFOSPACE_PARENT, true));
    Print("turn, about a hinge", turned(E3DTRANSFOSPACE_REFERENCE, true));
    Print("turn, turns forgotten", turned(E3DTRANSFOSPACE_LOCAL, false));
}
