#include "math/scale_volume.h"

#include "math/platform/result.h"

#include <bit>

namespace
{

constexpr unsigned int k_AllAxes = 7;

bool Contains(unsigned int axes, int axis)
{
    return ((axes >> axis) & 1U) != 0;
}

} // namespace

long F3DScaleVolume(C3DVector3Tpl<double> const & scale, unsigned int changed, C3DVector3Tpl<double> & result,
                    unsigned int allowed)
{
    result = scale;
    if (changed == 0 || changed > k_AllAxes)
    {
        return S_OK;
    }
    double product = 1;
    for (int axis = 0; axis < 3; ++axis)
    {
        if (!Contains(changed, axis))
        {
            continue;
        }
        if (result.Get(axis) == 0)
        {
            return S_FALSE;
        }
        product *= result.Get(axis);
    }
    unsigned int const adjusted = allowed & ~changed & k_AllAxes;
    if (adjusted == 0)
    {
        return S_FALSE;
    }
    double const volume = std::abs(1 / product);
    double const factor = std::popcount(adjusted) == 2 ? std::sqrt(volume) : volume;
    for (int axis = 0; axis < 3; ++axis)
    {
        if (Contains(adjusted, axis))
        {
            result.Set(axis, result.Get(axis) * factor);
        }
    }
    return S_OK;
}
