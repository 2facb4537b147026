#include "bake/world_angles.h"

#include "bake/pole_repair.h"
#include "math/transformation.h"

#include <numbers>

namespace bake
{

WorldAngles ComputeWorldAngles(clip::Skeleton const & skeleton, clip::PoseTrack const & poses,
                               clip::Composition composition, clip::ChannelOrder const & order)
{
    WorldAngles result;
    for (std::size_t i = 0; i < skeleton.joints.size(); ++i)
    {
        if (!skeleton.joints[i].isEndSite)
        {
            result.joints.push_back(i);
        }
    }
    std::vector<C3DVector3Tpl<double>> angles(result.joints.size(), {0, 0, 0});
    clip::SkeletonPose pose(skeleton, composition);
    for (std::size_t frame = 0; frame < poses.FrameCount(); ++frame)
    {
        pose.Set(poses.Frame(frame));
        for (std::size_t i = 0; i < result.joints.size(); ++i)
        {
            ExtractNearest(*pose.World(result.joints[i]).GetRotation(), order, angles[i]);
            result.degrees.push_back(angles[i]);
            result.degrees.back().Mul(180 / std::numbers::pi);
        }
    }
    return result;
}

} // namespace bake
