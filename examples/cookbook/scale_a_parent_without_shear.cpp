// Stretch a body to three times its height, and a forearm that hangs in it at 45 degrees turns into a leaning box. By
// component the parent's scale goes to the child's own axes instead, the box stays a box, and taking the child off its
// parent again gives back what was there.

#include <math/rotation.h>
#include <math/transformation.h>
#include <math/vector_geometry.h>

#include <cstdio>
#include <initializer_list>
#include <numbers>

using Vector = C3DVector3Tpl<double>;

constexpr double k_Degree = std::numbers::pi / 180;

// What is left of the right angle between the X and Y edges of a box.
double GetCornerAngle(C3DTransfo & box)
{
    C3DXfoMatTpl<double> const & matrix = *box.GetMatrix();
    Vector const x(matrix.Get(0, 0), matrix.Get(0, 1), matrix.Get(0, 2));
    Vector const y(matrix.Get(1, 0), matrix.Get(1, 1), matrix.Get(1, 2));
    return GetVctsAngle(x, y) / k_Degree;
}

int main()
{
    constexpr unsigned char k_AllComponents = 63;
    C3DTransfo body(Vector(1, 3, 1), C3DRotation(), Vector(0, 0, 0));
    C3DTransfo forearm(Vector(1, 1, 1), C3DRotation(E3D_AXIS_Z, 45 * k_Degree), Vector(2, 1, 0));

    C3DTransfo world;
    for (int const byComponent : {1, 0})
    {
        world.SetQNScalingFlag(byComponent); // the flag of the object that receives the product decides
        world.Mul(forearm, body, k_AllComponents);
        Vector place;
        world.GetTranslation(place);
        std::printf("%-12s  corner %5.1f degrees, sheared: %s, hangs at %.1f %.1f %.1f\n",
                    byComponent != 0 ? "by component" : "by matrix", GetCornerAngle(world),
                    world.HasShearing() ? "yes" : "no", place.X, place.Y, place.Z);
    }

    // What the artist keys is the forearm in its body. Off the parent again, it is what it was.
    world.SetQNScalingFlag(1);
    world.Mul(forearm, body, k_AllComponents);
    Vector scaling;
    world.GetScaling(scaling);
    std::printf("in the world, by component: scale %.1f %.1f %.1f\n", scaling.X, scaling.Y, scaling.Z);
    C3DTransfo local;
    local.Dif(world, body, k_AllComponents, nullptr);
    Vector angles;
    local.GetScaling(scaling);
    local.GetRotation(angles);
    std::printf("off the parent again: scale %.1f %.1f %.1f, turned by %.1f degrees\n", scaling.X, scaling.Y, scaling.Z,
                angles.Z / k_Degree);
}
