#pragma once

#include "clip/clip.h"
#include "math/transformation.h"
#include "math/vector3.h"

#include <cstddef>
#include <span>
#include <vector>

namespace clip
{

/// Where a joint is in the frame of its parent, in one frame of a clip.
struct JointPose
{
    C3DVector3Tpl<double> translation{0, 0, 0};
    C3DVector3Tpl<double> angles{0, 0, 0}; ///< about X, Y and Z in radians, in the order of the joint's channels
    C3DVector3Tpl<double> scaling{1, 1, 1};
};

/// The most poses of a joint that are held at once, 1.2 gigabytes of them: 23 minutes of a hundred joints at 120 frames
/// a second. A small file can ask for far more, with many joints and few channels.
inline constexpr std::size_t k_MostPoses = std::size_t(1) << 24;

/// The poses of all joints of a skeleton in all frames.
class PoseTrack
{
public:
    /// \param jointCount above 0
    /// \throws std::length_error for more than `k_MostPoses`
    PoseTrack(std::size_t frameCount, std::size_t jointCount);

    std::size_t FrameCount() const { return m_Poses.size() / m_JointCount; }
    std::size_t JointCount() const { return m_JointCount; }

    std::span<JointPose> Frame(std::size_t frame) { return {m_Poses.data() + frame * m_JointCount, m_JointCount}; }
    std::span<JointPose const> Frame(std::size_t frame) const
    {
        return {m_Poses.data() + frame * m_JointCount, m_JointCount};
    }

private:
    std::size_t m_JointCount;
    std::vector<JointPose> m_Poses;
};

/// The poses that the channels of a clip mean: the translation is the joint's offset and what its position channels
/// add, the angles are those of its rotation channels, and nothing is scaled.
PoseTrack MakePoses(Clip const & motion);

/// How the scale of a joint reaches its children: axis by axis, so that none of them is sheared, or as the matrices
/// have it.
enum class Composition : unsigned char
{
    ByComponent,
    ByMatrix
};

/// The transformations of the joints of a skeleton in one frame, in the order of the joints. With points as rows,
///
///     local = S * R * T,    world = local * world(parent)
///
/// where the channel list of a joint names its rotations from the outermost to the innermost, so that the last-named
/// axis acts first on a point.
class SkeletonPose
{
public:
    /// The skeleton must outlive the object.
    SkeletonPose(Skeleton const & skeleton, Composition composition);

    void Set(std::span<JointPose const> frame);

    std::size_t JointCount() const { return m_Worlds.size(); }
    C3DTransfo & Local(std::size_t joint) { return m_Locals[joint]; }
    C3DTransfo & World(std::size_t joint) { return m_Worlds[joint]; }

private:
    Skeleton const & m_Skeleton;
    C3DTransfo m_Origin;
    std::vector<C3DTransfo> m_Locals;
    std::vector<C3DTransfo> m_Worlds;
};

} // namespace clip
