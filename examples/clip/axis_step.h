#pragma once

#include <vector>

namespace clip
{

/// The smallest of 1, 2 and 5 times a power of ten of which no more than `most` make up the range.
double ChooseDecimalStep(double range, double most);

/// The multiples of a step from `low` to `high`, both included. \param step above 0, and no smaller than a billionth of
/// either in size, so that neighbouring multiples can be told apart
std::vector<double> ListMultiples(double low, double high, double step);

} // namespace clip
