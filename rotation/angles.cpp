#include "math/angles.h"

#include "math/matrix_mn.h"
#include "rotation/angle_constants.h"

#include <algorithm>
#include <cmath>
#include <limits>

using math::detail::k_HalfPi;
using math::detail::k_InverseTwoPi;
using math::detail::k_Pi;
using math::detail::k_TwoPi;

namespace
{

/// Clamps to [lowest, highest]; a NaN becomes the lowest.
double ClampToRange(double value, double lowest, double highest)
{
    if (value > highest)
    {
        return highest;
    }
    return value >= lowest ? value : lowest;
}

double BoundedInZeroToTwoPi(double angle)
{
    F3DBoundAngleInZeroToTwoPI(angle);
    return angle;
}

/// The whole turns nearest to an angle, in 32 bits; none for a NaN. As an integer, so that no turns have no sign.
int CountTurns(double angle)
{
    double turns = std::trunc(angle * k_InverseTwoPi);
    double const rest = std::fmod(angle, k_TwoPi);
    if (rest > k_Pi)
    {
        turns += 1;
    }
    else if (rest < -k_Pi)
    {
        turns -= 1;
    }
    if (std::isnan(turns))
    {
        return 0;
    }
    return static_cast<int>(
        std::clamp<double>(turns, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

} // namespace

double F3DArcSinCos(double sine, double cosine)
{
    // Near the square root of one half, where both inverse functions are equally well conditioned; not that number.
    double const limit = 0.70710679;
    if (-limit <= cosine && cosine <= limit)
    {
        double const angle = std::acos(cosine);
        return sine >= 0 ? angle : -angle;
    }
    if (-1 < sine && sine < 1)
    {
        double const angle = std::asin(sine);
        if (cosine > limit)
        {
            return angle;
        }
        if (cosine < -limit)
        {
            return (angle > 0 ? k_Pi : -k_Pi) - angle;
        }
    }
    return sine > -1 ? k_HalfPi : -k_HalfPi;
}

double F3DGetClosestAngle(double angle, double first, double second)
{
    double const a = BoundedInZeroToTwoPi(angle);
    double const b = BoundedInZeroToTwoPi(first);
    double const c = BoundedInZeroToTwoPi(second);
    if (b >= c)
    {
        return std::abs(a - b) > std::abs(a - c) ? c : b;
    }
    // The arc outside [b, c] runs from c up through a whole turn to b.
    double const middle = BoundedInZeroToTwoPi(((k_TwoPi - c) + b) * 0.5 + c);
    bool const takeFirst = a > c ? a >= middle && (a >= k_TwoPi || middle >= c) : a > middle || (a > 0 && middle > c);
    return takeFirst ? b : c;
}

double F3DGetUnboundedAngle(double angle, double reference)
{
    return CountTurns(reference) * k_TwoPi + angle;
}

double F3DBoundAngleInMinus2PITo2PI(double angle)
{
    return std::fmod(angle, k_TwoPi);
}

void F3DBoundAngleInZeroToTwoPI(double & angle)
{
    if (angle > k_TwoPi)
    {
        angle = ClampToRange(std::fmod(angle, k_TwoPi), 0, k_TwoPi);
    }
    else if (!(angle >= 0))
    {
        angle = ClampToRange(k_TwoPi - std::fmod(-angle, k_TwoPi), 0, k_TwoPi);
    }
}

void F3DBoundAngleInMinusPIToPI(double & angle)
{
    if (angle > k_Pi)
    {
        angle = ClampToRange(std::fmod(angle + k_Pi, k_TwoPi) - k_Pi, -k_Pi, k_Pi);
    }
    else if (!(angle >= -k_Pi))
    {
        angle = ClampToRange(k_Pi - std::fmod(-k_Pi - angle, k_TwoPi), -k_Pi, k_Pi);
    }
}

void F3DBoundAnglesInMatrixInMinus2PITo2PI(C3DMatrixMN & matrix, int first, int last)
{
    int const lastRow = matrix.GetNbRow() - 1;
    int const end = last < 0 ? lastRow : std::min(last, lastRow);
    for (int row = std::max(first, 0); row <= end; ++row)
    {
        matrix.Set(row, 0, F3DBoundAngleInMinus2PITo2PI(matrix.Get(row, 0)));
    }
}
