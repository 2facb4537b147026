// A camera shall look at a character with its horizon level, and the tool needs to know where things are in its
// picture. One call aligns two axes to two directions, the first exactly, the second as nearly as it can; the inverse
// of the camera's matrix then takes the world into the view.

#include <math/rotation.h>
#include <math/transformation.h>

#include <cmath>
#include <cstdio>

using Vector = C3DVector3Tpl<double>;

// Places a camera that looks down its own negative Z axis with Y up. Where it looks straight up or down, the world's
// up tells nothing, and north is at the top of the picture. False, with the camera as it was, where it stands on its
// target.
bool Aim(C3DTransfo & camera, Vector const & eye, Vector const & target)
{
    Vector const up(0, 1, 0);
    Vector const north(0, 0, -1);
    Vector const backward = Vector().Sub(eye, target);
    C3DRotation rotation;
    int isChoice = 0;
    if (rotation.AlignAxesToVct(E3D_AXIS_Z, backward, E3D_AXIS_Y, up, isChoice) == 0 ||
        (isChoice != 0 && rotation.AlignAxesToVct(E3D_AXIS_Z, backward, E3D_AXIS_Y, north, isChoice) == 0))
    {
        return false;
    }
    camera.Set(Vector(1, 1, 1), rotation, eye);
    return true;
}

// Rounded to what is printed, and 0 for a minus zero.
double Tidy(double x)
{
    return std::round(x * 1000) / 1000 + 0.0;
}

void Print(char const * label, Vector const & v)
{
    std::printf("%-34s %7.3f %7.3f %7.3f\n", label, Tidy(v.X), Tidy(v.Y), Tidy(v.Z));
}

int main()
{
    Vector const head(0, 2, 0);
    C3DTransfo camera;
    if (!Aim(camera, Vector(4, 4, 4), head))
    {
        return 1;
    }
    C3DXfoMatTpl<double> worldToView;
    camera.GetInvMatrix(worldToView);
    Print("right, in the world: level", Vector().Mul(Vector(1, 0, 0), *camera.GetRotation()));
    Print("the head in the view: 6 ahead", Vector().Mul(head, worldToView));
    Print("above the head in the view: higher", Vector().Mul(Vector(0, 3, 0), worldToView));

    std::printf("straight down: %s\n", Aim(camera, Vector(0, 9, 0), head) ? "aimed" : "refused");
    Print("the picture's top, in the world", Vector().Mul(Vector(0, 1, 0), *camera.GetRotation()));
    std::printf("at itself: %s\n", Aim(camera, head, head) ? "aimed" : "refused");
}
