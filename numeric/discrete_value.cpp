#include "math/discrete_value.h"

#include <cmath>

double F3DGetNearestDiscreteValue(double value, double base, double step)
{
    if (step == 0 || std::isnan(step))
    {
        return value;
    }
    double whole = 0;
    double const fraction = std::modf((value - base) / step, &whole);
    // Whole numbers stay in floating point: the place on the grid may be beyond every integer type, or a NaN.
    double const rounding = std::trunc(fraction >= 0 ? fraction + 0.5 : fraction - 0.5);
    return (whole + rounding) * step + base;
}
