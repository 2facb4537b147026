#include "math/map_points_in_ref.h"

#include "math/platform/result.h"

long F3DMapPointsInRef(C3DVector3Tpl<double> * points, unsigned long count, C3DXfoMatTpl<double> const * first,
                       C3DXfoMatTpl<double> const * second, int firstToSecond)
{
    C3DXfoMatTpl<double> const * const from = firstToSecond != 0 ? first : second;
    C3DXfoMatTpl<double> const * const to = firstToSecond != 0 ? second : first;
    C3DXfoMatTpl<double> map; // the identity, which a singular matrix leaves
    if (to != nullptr)
    {
        map.Invert(*to);
    }
    if (from != nullptr)
    {
        map = to != nullptr ? C3DXfoMatTpl<double>().Mul(*from, map) : *from;
    }
    F3DTransformPoints(map, points, static_cast<long>(count), points);
    return S_OK;
}
