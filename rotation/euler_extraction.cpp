#include "rotation/euler_extraction.h"

#include "math/angles.h"
#include "rotation/angle_constants.h"

#include <cmath>

// With the axes a0, a1, a2 of an order as they act, the sines and cosines s, c of their angles, and p = 1 for an even
// order, -1 for an odd one, the matrix R(a0) R(a1) R(a2) has the elements
//
//              a0                        a1                        a2
//     a0   c1 c2                     p c1 s2                   -p s1
//     a1   s0 s1 c2 - p c0 s2        p s0 s1 s2 + c0 c2         p s0 c1
//     a2   p c0 s1 c2 + s0 s2        c0 s1 s2 - p s0 c2         c0 c1
//
// At the pole, s1 = +-1, the upper left and lower right corners vanish, and what is left depends on the sum or the
// difference of the two outer angles alone: row a1, column a1 holds its cosine, and beside it stands its sine.

namespace math::detail
{

namespace
{

/// The three angles of one solution in the order in which they act.
struct Solution
{
    double first;
    double middle;
    double last;
};

bool IsOutsideOneTurn(double angle)
{
    return angle < 0 || angle >= k_TwoPi;
}

double FloorTurns(double angle)
{
    return std::floor(angle * k_InverseTwoPi) * k_TwoPi;
}

/// A target angle in [-pi, pi).
double BoundTarget(double target)
{
    double const shifted = target + k_Pi;
    return IsOutsideOneTurn(shifted) ? target - FloorTurns(shifted) : target;
}

/// The distance on the circle between a bounded target and a candidate.
double WrappedDistance(double target, double candidate)
{
    double distance;
    if (target >= 0 && candidate < 0)
    {
        distance = std::abs(target - candidate - k_TwoPi);
    }
    else if (target < 0 && candidate >= 0)
    {
        distance = std::abs(target + k_TwoPi - candidate);
    }
    else
    {
        distance = std::abs(target - candidate);
    }
    return distance > k_Pi ? k_TwoPi - distance : distance;
}

/// The angle half a turn away, on the side of zero.
double Opposite(double angle)
{
    return angle > 0 ? angle - k_Pi : angle + k_Pi;
}

/// Adds to an angle the whole turns that bring it within half a turn of its target.
double Unwind(double angle, double target)
{
    double const ahead = target + k_Pi - angle;
    return IsOutsideOneTurn(ahead) ? angle + FloorTurns(ahead) : angle;
}

double Distance(Solution const & target, Solution const & candidate)
{
    return WrappedDistance(target.first, candidate.first) + WrappedDistance(target.middle, candidate.middle) +
           WrappedDistance(target.last, candidate.last);
}

/// Away from the pole there are two solutions, whose middle angles add up to half a turn. A tie goes to the second.
Solution SolveRegular(double const (&m)[3][3], EulerOrder const & o, double sign, double middle, double middle2,
                      Solution const & target)
{
    double const k = 1 / std::cos(std::abs(middle));
    double const first = F3DArcSinCos(-sign * m[o.middle][o.last] * k, k * m[o.last][o.last]);
    double const last = F3DArcSinCos(-sign * m[o.first][o.middle] * k, k * m[o.first][o.first]);
    Solution const one{first, middle, last};
    Solution const two{Opposite(first), middle2, Opposite(last)};
    return Distance(target, one) >= Distance(target, two) ? two : one;
}

/// At the pole the matrix determines only the sum of the outer angles, or only their difference. What the target's own
/// sum or difference lacks is shared evenly between them.
Solution SplitFreeAngle(double const (&m)[3][3], EulerOrder const & o, double sign, double middle, double targetZero,
                        Solution const & target)
{
    double const p = target.first;
    double const q = target.last;
    double const sine = o.even ? m[o.middle][o.first] : m[o.last][o.middle];
    double const cosine = m[o.middle][o.middle];
    bool const isSum = o.even == (middle < 0);
    double const targetFree = isSum ? p + q : p - q;
    double free = F3DArcSinCos(isSum ? sign * sine : sine, cosine);
    if (std::abs(free) >= 1e-6)
    {
        if (std::abs(targetFree) >= targetZero)
        {
            free -= targetFree;
        }
        return {p + free / 2, middle, isSum ? q + free / 2 : q - free / 2};
    }
    // Without a free angle both outer angles get the same value. For a sum this makes it -(p + q) and not 0: the branch
    // belongs to the routine on which saved curves rest.
    double const both = isSum ? -(p + q) / 2 : (p + q) / 2;
    return {both, middle, both};
}

double InOneTurn(double angle)
{
    return angle - FloorTurns(angle);
}

/// Half a turn on both outer angles is the second solution. The middle angle is chosen on its own.
Solution SolveAtPole(double const (&m)[3][3], EulerOrder const & o, double sign, double middle, double middle2,
                     double targetZero, Solution const & target)
{
    Solution const split = SplitFreeAngle(m, o, sign, middle, targetZero, target);
    double const first = InOneTurn(split.first);
    double const last = InOneTurn(split.last);
    double const first2 = InOneTurn(split.first + k_Pi);
    double const last2 = InOneTurn(split.last + k_Pi);
    bool const takeSecond = WrappedDistance(target.first, first) + WrappedDistance(target.last, last) >=
                            WrappedDistance(target.first, first2) + WrappedDistance(target.last, last2);
    bool const takeSecondMiddle = WrappedDistance(target.middle, middle) >= WrappedDistance(target.middle, middle2);
    return {takeSecond ? first2 : first, takeSecondMiddle ? middle2 : middle, takeSecond ? last2 : last};
}

Solution Solve(double const (&m)[3][3], EulerOrder const & o, EulerExtractionLimits const & limits,
               Solution const & target)
{
    double const sign = o.even ? -1 : 1;
    double const sine = sign * m[o.first][o.last];
    if (sine <= -limits.poleSine)
    {
        return SolveAtPole(m, o, sign, -k_HalfPi, -k_HalfPi, limits.targetZero, target);
    }
    if (sine >= limits.poleSine)
    {
        return SolveAtPole(m, o, sign, k_HalfPi, k_HalfPi, limits.targetZero, target);
    }
    double const middle = std::asin(sine);
    double const middle2 = (middle > 0 ? k_Pi : -k_Pi) - middle;
    // The limits on the sine keep a finite middle angle further from the pole than this; it is the last guard of the
    // division by its cosine.
    if (std::abs(std::abs(middle) - k_HalfPi) <= 1e-6)
    {
        return SolveAtPole(m, o, sign, middle, middle2, limits.targetZero, target);
    }
    return SolveRegular(m, o, sign, middle, middle2, target);
}

} // namespace

void ExtractEulerAngles(double const (&m)[3][3], EulerOrder const & order, EulerExtractionLimits const & limits,
                        C3DVector3Tpl<double> & angles)
{
    Solution const target{angles.Get(order.first), angles.Get(order.middle), angles.Get(order.last)};
    Solution const bounded{BoundTarget(target.first), BoundTarget(target.middle), BoundTarget(target.last)};
    Solution const solution = Solve(m, order, limits, bounded);
    angles.Set(order.first, Unwind(solution.first, target.first));
    angles.Set(order.middle, Unwind(solution.middle, target.middle));
    angles.Set(order.last, Unwind(solution.last, target.last));
}

} // namespace math::detail
