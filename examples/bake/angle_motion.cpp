#include "bake/angle_motion.h"

#include "clip/joint_rotation.h"

#include <cmath>

namespace bake
{

namespace
{

using Vector = C3DVector3Tpl<double>;

/// Calls `visit(before, after)` with the three angles of a joint for every step from one frame to the next.
template <class Visit>
void ForEachStep(clip::Clip const & motion, std::size_t joint, Visit const & visit)
{
    clip::JointRotation const rotation(motion.skeleton.joints[joint]);
    for (std::size_t frame = 1; frame < motion.frameCount; ++frame)
    {
        visit(rotation.Degrees(motion.Frame(frame - 1)), rotation.Degrees(motion.Frame(frame)));
    }
}

/// The way that the three angles of a joint take together over the whole clip.
double ComputeWay(clip::Clip const & motion, std::size_t joint)
{
    double way = 0;
    ForEachStep(motion, joint,
                [&way](Vector const & before, Vector const & after)
                { way += std::abs(after.X - before.X) + std::abs(after.Y - before.Y) + std::abs(after.Z - before.Z); });
    return way;
}

} // namespace

bool IsJump(double before, double after, double limit)
{
    constexpr double k_Rounding = 1e-9;
    return std::abs(after - before) > limit + k_Rounding;
}

std::size_t CountJumps(clip::Clip const & motion, double limit)
{
    std::size_t count = 0;
    for (std::size_t joint = 0; joint < motion.skeleton.joints.size(); ++joint)
    {
        ForEachStep(motion, joint,
                    [&count, limit](Vector const & before, Vector const & after)
                    {
                        for (int axis = 0; axis < 3; ++axis)
                        {
                            count += IsJump(before.Get(axis), after.Get(axis), limit) ? 1 : 0;
                        }
                    });
    }
    return count;
}

std::size_t FindMostChanged(clip::Clip const & motion, clip::Clip const & other)
{
    constexpr double k_LeastExcess = 1;
    std::size_t mostChanged = 0;
    std::size_t mostMoving = 0;
    double largestExcess = 0;
    double longestWay = 0;
    for (std::size_t joint = 0; joint < motion.skeleton.joints.size(); ++joint)
    {
        double const way = ComputeWay(other, joint);
        double const excess = ComputeWay(motion, joint) - way;
        if (excess > largestExcess)
        {
            largestExcess = excess;
            mostChanged = joint;
        }
        if (way > longestWay)
        {
            longestWay = way;
            mostMoving = joint;
        }
    }
    return largestExcess >= k_LeastExcess ? mostChanged : mostMoving;
}

} // namespace bake
