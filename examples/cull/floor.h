#pragma once

#include "cull/foot.h"
#include "math/vector3.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace cull
{

/// The grid of points that is the floor: at every multiple of the spacing, in X and in Z.
struct Floor
{
    double height;
    double spacing; ///< above 0
};

/// Where a sole meets a point of the floor.
struct Contact
{
    std::size_t frame; ///< the last one before it, or the one of the contact
    double share;      ///< of the step to the next frame, 0 to 1
    C3DVector3Tpl<double> place;
};

/// The height to which every one of the soles comes down: the highest of their lowest places, and a hundredth of the
/// figure's size more, so that each of them is beneath it at some time. Of no soles it is 0.
double ChooseFloorHeight(std::vector<SoleMotion> const & soles, double figureSize);

/// A floor at a height, for these soles to meet. Its points are a hundredth of the figure's size apart, or farther
/// where the soles range over more than 256 times that, or are so far from the origin that such points could not be
/// told apart.
Floor LayFloor(double height, std::vector<SoleMotion> const & soles, double figureSize);

/// The first moment at which a sole meets a point of the floor, as the sole moves evenly from frame to frame; one of
/// the points where it meets several at once.
std::optional<Contact> FindFirstContact(SoleMotion const & sole, Floor const & floor);

} // namespace cull
