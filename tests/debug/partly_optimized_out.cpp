// Values of which the optimiser keeps some parts and drops others.

#include "math/math.h"

#include <cstdio>

namespace
{

/// Where the debugger stops.
[[gnu::noinline]] void Stop(double kept)
{
    std::printf("%g\n", kept);
}

/// Needs X of the vector and W of the quaternion through the loop, and their other components never again.
[[gnu::noinline]] double KeepSome(double x, int steps)
{
    C3DVector3Tpl<double> vector;
    vector.X = x;
    vector.Y = 2;
    vector.Z = steps * 5.0;
    C3DQuatTpl<double> quaternion;
    quaternion.W = x;
    C3DMatrix33Tpl<double> matrix;
    matrix.Set(0, 0, x * steps);
    C3DXfoMatTpl<double> transformation;
    transformation.Set(0, 0, x);
    C3DRotation const rotation(quaternion);
    for (int i = 0; i < steps; ++i)
    {
        Stop(vector.X);
        vector.X += quaternion.W;
        vector.Y *= 3;
        quaternion.W *= 2;
        quaternion.X = steps * i;
    }
    return vector.X + quaternion.W + matrix.Get(0, 0) + transformation.Get(0, 0);
}

} // namespace

int main(int argc, char ** /*argv*/)
{
    std::printf("%g\n", KeepSome(argc, argc));
}
