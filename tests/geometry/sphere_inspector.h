#pragma once

/// \file
/// The private operation of a sphere, for its tests.

#include "math/sphere.h"

namespace math::detail
{

/// The friend of C3DBaseSphere.
class SphereInspector
{
public:
    static long FindBetterTranslation(C3DBaseSphere const & sphere, C3DVector3Tpl<double> const & direction,
                                      C3DVector3Tpl<double> & translation)
    {
        return sphere.FindBetterTranslation(direction, translation);
    }
};

} // namespace math::detail
