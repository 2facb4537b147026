#include "clip/axis_step.h"

#include <cmath>

namespace clip
{

double ChooseDecimalStep(double range, double most)
{
    double const power = std::pow(10, std::floor(std::log10(range / most)));
    for (double const factor : {1, 2, 5})
    {
        if (range <= most * factor * power)
        {
            return factor * power;
        }
    }
    return 10 * power;
}

std::vector<double> ListMultiples(double low, double high, double step)
{
    auto const first = std::llround(std::ceil(low / step));
    auto const last = std::llround(std::floor(high / step));
    std::vector<double> multiples;
    for (auto i = first; i <= last; ++i)
    {
        multiples.push_back(static_cast<double>(i) * step);
    }
    return multiples;
}

} // namespace clip
