#include "bake/pole_repair.h"

#include "math/rotation_conversions.h"

#include <cmath>
#include <numbers>

namespace bake
{

namespace
{

using Matrix = C3DRotMatTpl<double>;
using Vector = C3DVector3Tpl<double>;

constexpr double k_MostMiss = 1e-10;
constexpr double k_SineNearPole = 0.999; ///< of the middle angle: digits are lost beyond this

/// By at most half a turn from `near`.
double AddWholeTurns(double angle, double near)
{
    constexpr double k_WholeTurn = 2 * std::numbers::pi;
    return angle + std::round((near - angle) / k_WholeTurn) * k_WholeTurn;
}

} // namespace

bool RepairAtPole(Matrix const & matrix, clip::ChannelOrder const & order, Vector const & target, Vector & angles)
{
    // The channel list names the axis last that acts first.
    int const first = order.name[2] - 'X';
    int const middle = order.name[1] - 'X';
    int const last = order.name[0] - 'X';
    if (std::abs(matrix.Get(first, last)) < k_SineNearPole)
    {
        return false;
    }
    Matrix meant;
    F3DEulerToMat(angles, meant, order.order);
    if (AreAlmostEqual(meant, matrix, k_MostMiss) != 0)
    {
        return false;
    }
    // R(first)^T M = R(middle) R(last), with the rows (c1 c2, p c1 s2, -p s1), (-p s2, c2, 0), (p s1 c2, s1 s2, c1) in
    // the order of the axes, p being the parity of the order.
    double const parity = middle == (first + 1) % 3 ? 1 : -1;
    Vector firstAlone(0, 0, 0);
    firstAlone.Set(first, angles.Get(first));
    Matrix rest;
    F3DEulerToMat(firstAlone, rest, order.order);
    rest.MulTransByReg(rest, matrix);
    double const angle1 = std::atan2(-parity * rest.Get(first, last), rest.Get(last, last));
    double const angle2 = std::atan2(-parity * rest.Get(middle, first), rest.Get(middle, middle));
    angles.Set(middle, AddWholeTurns(angle1, target.Get(middle)));
    angles.Set(last, AddWholeTurns(angle2, target.Get(last)));
    return true;
}

bool ExtractNearest(Matrix const & matrix, clip::ChannelOrder const & order, Vector & angles)
{
    Vector const target = angles;
    F3DMatToEulerUsingTarget(matrix, angles, order.order);
    return RepairAtPole(matrix, order, target, angles);
}

} // namespace bake
