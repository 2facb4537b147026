#pragma once

#include "clip/clip.h"
#include "clip/pose.h"
#include "math/vector3.h"

#include <cstddef>
#include <span>
#include <vector>

namespace clip
{

/// The positions of all joints in all frames, in the unit of the clip's offsets.
class WorldPositions
{
public:
    WorldPositions(std::size_t frameCount, std::size_t jointCount)
        : m_JointCount(jointCount), m_Positions(frameCount * jointCount, C3DVector3Tpl<double>(0, 0, 0))
    {
    }

    std::size_t FrameCount() const { return m_Positions.size() / m_JointCount; }
    std::size_t JointCount() const { return m_JointCount; }

    std::span<C3DVector3Tpl<double>> Frame(std::size_t frame)
    {
        return {m_Positions.data() + frame * m_JointCount, m_JointCount};
    }
    std::span<C3DVector3Tpl<double> const> Frame(std::size_t frame) const
    {
        return {m_Positions.data() + frame * m_JointCount, m_JointCount};
    }
    std::span<C3DVector3Tpl<double> const> All() const { return m_Positions; }

private:
    std::size_t m_JointCount;
    std::vector<C3DVector3Tpl<double>> m_Positions;
};

/// Where all joints are in world space, in all frames.
struct WorldMotion
{
    WorldPositions positions;
    std::size_t shearedCount; ///< transformations, of all joints and frames, whose axes are not perpendicular
};

WorldMotion ComputeWorldMotion(Skeleton const & skeleton, PoseTrack const & poses, Composition composition);

/// The positions of a clip as it stands.
/// \throws std::length_error where the clip asks for more than `k_MostPoses`
WorldPositions ComputeWorldPositions(Clip const & clip);

/// The smallest box with faces along the axes that holds the points given; of none, an empty one at the origin.
struct Bounds
{
    C3DVector3Tpl<double> smallest{0, 0, 0};
    C3DVector3Tpl<double> largest{0, 0, 0};
};

Bounds ComputeBounds(std::span<C3DVector3Tpl<double> const> points);

} // namespace clip
