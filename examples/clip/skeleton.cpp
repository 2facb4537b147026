#include "clip/skeleton.h"

#include <algorithm>

namespace clip
{

WorldMotion ComputeWorldMotion(Skeleton const & skeleton, PoseTrack const & poses, Composition composition)
{
    WorldMotion motion{WorldPositions(poses.FrameCount(), poses.JointCount()), 0};
    SkeletonPose pose(skeleton, composition);
    for (std::size_t frame = 0; frame < poses.FrameCount(); ++frame)
    {
        pose.Set(poses.Frame(frame));
        for (std::size_t i = 0; i < pose.JointCount(); ++i)
        {
            pose.World(i).GetMatrix()->GetTranslation(motion.positions.Frame(frame)[i]);
            motion.shearedCount += pose.World(i).HasShearing() ? 1 : 0;
        }
    }
    return motion;
}

WorldPositions ComputeWorldPositions(Clip const & clip)
{
    return ComputeWorldMotion(clip.skeleton, MakePoses(clip), Composition::ByComponent).positions;
}

Bounds ComputeBounds(std::span<C3DVector3Tpl<double> const> points)
{
    Bounds bounds;
    if (points.empty())
    {
        return bounds;
    }
    bounds.smallest = points.front();
    bounds.largest = points.front();
    for (C3DVector3Tpl<double> const & point : points)
    {
        bounds.smallest = {std::min(bounds.smallest.X, point.X), std::min(bounds.smallest.Y, point.Y),
                           std::min(bounds.smallest.Z, point.Z)};
        bounds.largest = {std::max(bounds.largest.X, point.X), std::max(bounds.largest.Y, point.Y),
                          std::max(bounds.largest.Z, point.Z)};
    }
    return bounds;
}

} // namespace clip
