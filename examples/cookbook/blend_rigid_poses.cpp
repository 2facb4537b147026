// A wrench turns a bolt by 120 degrees, and the poses in between are wanted. The average of two matrices goes straight
// through the bolt and shrinks the wrench to half. Dual quaternions keep its size and its distance from the bolt:
// ScLerp at an even pace, LinearBlend nearly so, and of any number of poses.

#include <math/dual_quaternion.h>
#include <math/matrix44.h>
#include <math/rotation_conversions.h>

#include <cmath>
#include <cstdio>
#include <initializer_list>
#include <numbers>

using Vector = C3DVector3Tpl<double>;
using Pose = C3DDualQuatTpl<double>;

constexpr double k_Degree = std::numbers::pi / 180;

// The angle of the wrench's end about the bolt at (2, 0, 0), its distance, and the length of a handle of 1.
void Print(char const * label, double t, C3DMatrix44Tpl<double> const & matrix)
{
    Vector const end = Vector().Mul(Vector(0, 0, 0), matrix);
    Vector const head = Vector().Mul(Vector(1, 0, 0), matrix);
    std::printf("%-14s t %.2f  angle %6.2f  distance %.3f  length %.3f\n", label, t,
                std::atan2(-end.Y, 2 - end.X) / k_Degree, std::hypot(2 - end.X, end.Y), GetDistance(end, head));
}

int main()
{
    // Away from the bolt, turned, and back to it: in a product the right factor acts first.
    C3DQuatTpl<double> const noTurn;
    C3DQuatTpl<double> turn;
    F3DAxisAngleToQuat(Vector(0, 0, 1), 120 * k_Degree, turn);
    Pose const start;
    Pose const end = Pose(turn, Vector(2, 0, 0)).Mul(Pose(noTurn, Vector(-2, 0, 0)));
    C3DMatrix44Tpl<double> from;
    C3DMatrix44Tpl<double> to;
    start.Get(from);
    end.Get(to);
    for (double const t : {0.25, 0.5})
    {
        C3DMatrix44Tpl<double> blend;
        Print("matrix average", t,
              blend.Add(C3DMatrix44Tpl<double>(from).Mul(1 - t), C3DMatrix44Tpl<double>(to).Mul(t)));
        Pose().LinearBlend(start, end, t).Get(blend);
        Print("LinearBlend", t, blend);
        Pose().ScLerp(start, end, t).Get(blend);
        Print("ScLerp", t, blend);
    }

    // A pure translation has no screw axis to turn about: blend it linearly.
    Pose const moved(noTurn, Vector(4, 0, 0));
    Vector linear;
    Vector screw;
    Pose().LinearBlend(start, moved, 0.25).GetTranslation(linear);
    Pose().ScLerp(start, moved, 0.25).GetTranslation(screw);
    std::printf("a quarter of a move by 4: LinearBlend %.3f, ScLerp %.3f\n", linear.X, screw.X);
}
