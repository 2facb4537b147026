#pragma once

#include "clip/clip.h"
#include "math/matrix44.h"

#include <cstddef>
#include <span>
#include <vector>

namespace clip
{

/// World matrices of all joints in one frame, in the order of the joints. Points are rows, p_world = p_local * world.
///
/// A joint's channel list names its rotations from the outermost to the innermost, so the last-named axis acts first on
/// a point. With the elementary rotations R of the list in this order,
///
///     local = R(last) * ... * R(first) * T(offset + positions),    world = local * world(parent)
///
/// Position channels add to the offset, wherever they stand in the list; a root's offset is so the place from which it
/// starts.
///
/// \param frame the channels of all joints, as wide as the skeleton says
/// \param world one matrix a joint
void ComputeWorldMatrices(Skeleton const & skeleton, std::span<double const> frame,
                          std::span<C3DMatrix44Tpl<double>> world);

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

/// The most positions that `ComputeWorldPositions` sets out to hold, 1.5 gigabytes of them: an hour and a half of a
/// hundred joints at 120 frames a second. A small file can ask for far more, with many joints and few channels.
inline constexpr std::size_t k_MostPositions = std::size_t(1) << 26;

/// \throws std::length_error where the clip asks for more than `k_MostPositions`
WorldPositions ComputeWorldPositions(Clip const & clip);

/// The smallest box with faces along the axes that holds the points given; of none, an empty one at the origin.
struct Bounds
{
    C3DVector3Tpl<double> smallest{0, 0, 0};
    C3DVector3Tpl<double> largest{0, 0, 0};
};

Bounds ComputeBounds(std::span<C3DVector3Tpl<double> const> points);

} // namespace clip
