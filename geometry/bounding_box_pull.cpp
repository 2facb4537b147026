#include "math/bounding_box.h"
#include "math/platform/result.h"

using Vector = C3DVector3Tpl<double>;

namespace
{

/// The limits of a box's sides.
struct SideLimits
{
    SideLimits(Vector const & minSizes, Vector const & maxSizes) : least(minSizes), greatest(maxSizes)
    {
        constexpr double smallest = math::detail::k_StandardTolerance<double>;
        bool const hasGreatest = maxSizes.IsNull() == 0;
        for (unsigned long axis = 0; axis < 3; ++axis)
        {
            least[axis] = Raise(least[axis], smallest);
            greatest[axis] = hasGreatest ? Raise(greatest[axis], least[axis]) : greatest[axis];
        }
    }

    Vector least;
    Vector greatest;

private:
    /// A NaN becomes the limit.
    static double Raise(double value, double limit) { return value >= limit ? value : limit; }
};

/// Brings the scale of one axis into its limits.
/// \return false where a limit is broken and nothing may be clamped
bool LimitScale(double & scale, double side, double least, double greatest, bool mayClamp)
{
    double const newSide = scale * side;
    if (!(newSide >= least))
    {
        scale = least / side;
        return mayClamp;
    }
    if (greatest > math::detail::k_StandardTolerance<double> && newSide > greatest)
    {
        scale = greatest / side;
        return mayClamp;
    }
    return true;
}

} // namespace

C3DBBox & C3DBBox::PullCorner(tagE3DBBOXCORNER corner, Vector const & delta, Vector const & pivot,
                              Vector const & minSizes, Vector const & maxSizes, int clamp)
{
    Vector radius;
    if (GetCorner(corner, radius) != S_OK)
    {
        return *this;
    }
    radius.Sub(pivot);
    SideLimits const limits(minSizes, maxSizes);
    Vector minimum;
    Vector maximum;
    for (unsigned long axis = 0; axis < 3; ++axis)
    {
        double scale = (radius[axis] + delta[axis]) / radius[axis];
        double const side = GetMax()[axis] - GetMin()[axis];
        if (!LimitScale(scale, side, limits.least[axis], limits.greatest[axis], clamp != 0))
        {
            return *this;
        }
        minimum[axis] = (GetMin()[axis] - pivot[axis]) * scale;
        maximum[axis] = (GetMax()[axis] - pivot[axis]) * scale;
    }
    SetMin(minimum);
    SetMax(maximum);
    return *this;
}
