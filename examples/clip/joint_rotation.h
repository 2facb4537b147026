#pragma once

#include "clip/clip.h"
#include "math/rotation_order.h"
#include "math/vector3.h"

#include <array>
#include <cstddef>
#include <limits>
#include <span>
#include <string_view>

namespace clip
{

/// An order of three rotations by its name in a channel list, and by that of the library. A channel list names its
/// rotations from the outermost to the innermost, so the axis that acts last on a point stands first; the library names
/// the axis first that acts first. The two names of an order are each other's reverse.
struct ChannelOrder
{
    std::string_view name; ///< the axes as a channel list names them, such as "ZXY"
    tagE3DROTORDER order;
};

inline constexpr std::array<ChannelOrder, 6> k_ChannelOrders = {{{"XYZ", E3DROTORDER_ZYX},
                                                                 {"XZY", E3DROTORDER_YZX},
                                                                 {"YXZ", E3DROTORDER_ZXY},
                                                                 {"YZX", E3DROTORDER_XZY},
                                                                 {"ZXY", E3DROTORDER_YXZ},
                                                                 {"ZYX", E3DROTORDER_XYZ}}};

/// The rotation channels of a joint, found once and read frame after frame. A rotation that the joint lacks is one by
/// 0: it stands behind the others in the order, where it makes no difference.
class JointRotation
{
public:
    explicit JointRotation(Joint const & joint);

    ChannelOrder const & Order() const { return *m_Order; }

    /// The angles about X, Y and Z in degrees, as they stand in the frame.
    C3DVector3Tpl<double> Degrees(std::span<double const> frame) const;
    /// The same in radians.
    C3DVector3Tpl<double> Radians(std::span<double const> frame) const;
    /// Puts the angles into their places. Those for which the joint has no channel are left out.
    void SetRadians(std::span<double> frame, C3DVector3Tpl<double> const & angles) const;

private:
    static constexpr std::size_t k_NoPlace = std::numeric_limits<std::size_t>::max();

    std::array<std::size_t, 3> m_Places = {k_NoPlace, k_NoPlace, k_NoPlace}; ///< in a frame, by axis
    ChannelOrder const * m_Order;
};

} // namespace clip
