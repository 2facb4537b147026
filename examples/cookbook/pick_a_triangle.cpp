// A click in the viewport: which triangle does it hit first, and where? And where it misses, to which point does the
// cursor snap? The line of the query has no ends, so the caller tests weights and parameter, and keeps the nearest hit.

#include <math/closest_position.h>
#include <math/triangle_intersection.h>

#include <array>
#include <cstdio>
#include <limits>

using Vector = C3DVector3Tpl<double>;
using Triangle = std::array<Vector, 3>;
using Mesh = std::array<Triangle, 3>;

struct Spot
{
    long triangle = -1;                                        // none
    double distance = std::numeric_limits<double>::infinity(); // in lengths of the ray's direction
    Vector position{0, 0, 0};
    Vector weights{0, 0, 0}; // of the corners: for texture coordinates, colours, normals
};

// The first spot of the mesh along a ray.
Spot Pick(Mesh const & mesh, Vector const & eye, Vector const & direction)
{
    Spot nearest;
    Spot spot;
    Vector & w = spot.weights;
    for (auto const & [a, b, c] : mesh)
    {
        ++spot.triangle;
        bool const isMet = F3DWorldSegmentVsTriangleIntersection(eye, direction, a, b, c, w.X, w.Y, w.Z, &spot.position,
                                                                 &spot.distance) == 0;
        if (isMet && w.X >= 0 && w.Y >= 0 && w.Z >= 0 && spot.distance > 0 && spot.distance < nearest.distance)
        {
            nearest = spot;
        }
    }
    return nearest;
}

void Print(char const * label, Spot const & spot)
{
    std::printf("%-9s triangle %2ld at %.2f %.2f %.2f, weights %.2f %.2f %.2f\n", label, spot.triangle, spot.position.X,
                spot.position.Y, spot.position.Z, spot.weights.X, spot.weights.Y, spot.weights.Z);
}

int main()
{
    // Something large, and before it a wall four units wide and high, in two halves.
    Mesh const mesh{{{{{-9, -9, -2}, {9, -9, -2}, {0, 9, -2}}},
                     {{{0, 0, 0}, {4, 0, 0}, {4, 4, 0}}},
                     {{{0, 0, 0}, {4, 4, 0}, {0, 4, 0}}}}};
    Vector const eye(0, 0, 8);
    Print("the wall", Pick(mesh, eye, Vector(1, 0.5, -4)));
    Print("below it", Pick(mesh, eye, Vector(1.5, -0.5, -4)));
    Print("away", Pick(mesh, eye, Vector(-1, -0.5, 4)));
    Spot snap{.triangle = 1};
    Vector & w = snap.weights;
    auto const & [a, b, c] = mesh[1];
    F3DClosestPositionOnTriangle(Vector(5, 1, 1), a, b, c, w.X, w.Y, w.Z, nullptr, &snap.position); // always 0
    Print("beside it", snap);
}
