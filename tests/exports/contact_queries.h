#pragma once

#include "exports/exported.h"

#include "math/box.h"
#include "math/geometry.h"
#include "math/point.h"
#include "math/sphere.h"

namespace exported
{

/// Names the symbols of the contact queries of a geometry class. They are virtual and have no address of their own to
/// take; qualified calls need each symbol, made or not.
template <typename Class>
void ContactQueries()
{
    bool const volatile isAsked = false;
    if (isAsked)
    {
        Class const object;
        unsigned long flags = 0;
        object.Class::Intersect_Point(nullptr, C3DPoint(), nullptr, flags, nullptr, 0, 0);
        object.Class::Intersect_Sphere(nullptr, C3DBaseSphere(), nullptr, flags, nullptr, 0, 0);
        object.Class::Intersect_Box(nullptr, C3DBaseBox(), nullptr, flags, nullptr, 0, 0);
    }
}

} // namespace exported
