// The first calls of the page on geometry. The program fails where they do not give what the page says.

//! [first call]
#include <math/bounding_box.h>
#include <math/transformation_matrix.h>
#include <math/triangle_intersection.h>
#include <math/view_volume.h>

#include <numbers>

int main()
{
    using Vector = C3DVector3Tpl<double>;

    // Where a line meets the plane of a triangle; it hits where no weight is negative.
    double a = 0;
    double b = 0;
    double c = 0;
    Vector place;
    long const result =
        F3DWorldSegmentVsTriangleIntersection(Vector(0.25, 0.25, 5), Vector(0, 0, -1), Vector(0, 0, 0), Vector(1, 0, 0),
                                              Vector(0, 1, 0), a, b, c, &place, nullptr);
    bool const isHit = result == 0 && a >= 0 && b >= 0 && c >= 0; // at (0.25, 0.25, 0), with the weights 1/2, 1/4, 1/4

    // A box that grows around points; it starts at the first of them, as the default box holds the origin.
    C3DBBox box(place, place);
    box.MergeVector(2, 1, -4);

    // A camera at the origin that looks down -Z: its matrix, from its space to the world, is the identity.
    C3DViewVolume volume;
    volume.SetPersp(60 * std::numbers::pi / 180, 16.0 / 9, 0.1, 100, C3DXfoMatTpl<double>());
    Vector const bounds[2] = {box.GetMin(), box.GetMax()};
    bool const isCrossing = volume.Classify(bounds, nullptr) == E3DVIEWINTERSECTION_CROSSING;
    return isHit && isCrossing ? 0 : 1;
}
//! [first call]
