#include "clip/skeleton.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>
#include <string>

namespace clip
{

namespace
{

using Matrix = C3DMatrix44Tpl<double>;
using Vector = C3DVector3Tpl<double>;

double ToRadians(double degrees)
{
    return degrees * (std::numbers::pi / 180);
}

/// Rotation about an axis, for points as rows.
Matrix ElementaryRotation(int axis, double angle)
{
    double const sine = std::sin(angle);
    double const cosine = std::cos(angle);
    int const next = (axis + 1) % 3;
    int const last = (axis + 2) % 3;
    Matrix rotation;
    rotation.SetIdentity();
    rotation.Set(next, next, cosine);
    rotation.Set(next, last, sine);
    rotation.Set(last, next, -sine);
    rotation.Set(last, last, cosine);
    return rotation;
}

Matrix LocalMatrix(Joint const & joint, std::span<double const> channels)
{
    Matrix local;
    local.SetIdentity();
    std::array<double, 3> place = {joint.offset.X, joint.offset.Y, joint.offset.Z};
    for (std::size_t i = joint.channels.size(); i-- > 0;)
    {
        Channel const channel = joint.channels[i];
        int const axis = AxisOf(channel);
        if (IsRotation(channel))
        {
            local.Mul(local, ElementaryRotation(axis, ToRadians(channels[i])));
        }
        else
        {
            place[static_cast<std::size_t>(axis)] += channels[i];
        }
    }
    // A product with a translation on the right: the rotations before it have left the last row at the origin.
    local.SetRow(3, place[0], place[1], place[2], 1);
    return local;
}

Vector OriginOf(Matrix const & world)
{
    return {world.Get(3, 0), world.Get(3, 1), world.Get(3, 2)};
}

} // namespace

void ComputeWorldMatrices(Skeleton const & skeleton, std::span<double const> frame, std::span<Matrix> world)
{
    for (std::size_t i = 0; i < skeleton.joints.size(); ++i)
    {
        Joint const & joint = skeleton.joints[i];
        Matrix const local = LocalMatrix(joint, frame.subspan(joint.firstChannel, joint.channels.size()));
        if (joint.parent == k_NoParent)
        {
            world[i] = local;
        }
        else
        {
            world[i].Mul(local, world[static_cast<std::size_t>(joint.parent)]);
        }
    }
}

WorldPositions ComputeWorldPositions(Clip const & clip)
{
    std::size_t const jointCount = clip.skeleton.joints.size();
    if (clip.frameCount > k_MostPositions / jointCount)
    {
        throw std::length_error("the clip has " + std::to_string(clip.frameCount) + " frames of " +
                                std::to_string(jointCount) + " positions: more than " +
                                std::to_string(k_MostPositions) + " altogether");
    }
    WorldPositions positions(clip.frameCount, jointCount);
    std::vector<Matrix> world(jointCount);
    for (std::size_t frame = 0; frame < clip.frameCount; ++frame)
    {
        ComputeWorldMatrices(clip.skeleton, clip.Frame(frame), world);
        std::transform(world.begin(), world.end(), positions.Frame(frame).begin(), OriginOf);
    }
    return positions;
}

Bounds ComputeBounds(std::span<Vector const> points)
{
    Bounds bounds;
    if (points.empty())
    {
        return bounds;
    }
    bounds.smallest = points.front();
    bounds.largest = points.front();
    for (Vector const & point : points)
    {
        bounds.smallest = {std::min(bounds.smallest.X, point.X), std::min(bounds.smallest.Y, point.Y),
                           std::min(bounds.smallest.Z, point.Z)};
        bounds.largest = {std::max(bounds.largest.X, point.X), std::max(bounds.largest.Y, point.Y),
                          std::max(bounds.largest.Z, point.Z)};
    }
    return bounds;
}

} // namespace clip
