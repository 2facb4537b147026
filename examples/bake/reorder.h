#pragma once

#include "clip/clip.h"
#include "clip/joint_rotation.h"
#include "clip/pose.h"

#include <cstddef>

namespace bake
{

/// Which of the angles that give a rotation are taken.
enum class Extraction : unsigned char
{
    Plain,  ///< those nearest to zero, each frame by itself, as a conversion without a memory finds them
    Nearest ///< those nearest to the frame before, whole turns included
};

/// A clip whose rotations were put in another order.
struct Reordering
{
    clip::Clip clip;
    std::size_t repairs = 0; ///< rotations at a pole, of all joints and frames, that the nearest extraction missed
};

/// A clip of the poses, in a skeleton like that of a clip, with the rotations of every joint in another order. The
/// nearest extraction starts from the angles of the first pose, so that turns with which a joint begins are kept.
///
/// The rotations take the places of the old ones in a joint's channel list. A joint with less than three gets the
/// missing ones behind its other channels. Position channels that the poses were made of are kept as they are, bit for
/// bit. Scalings have no channel and are left out.
Reordering Reorder(clip::Clip const & motion, clip::PoseTrack const & poses, clip::ChannelOrder const & order,
                   Extraction extraction);

/// The same of a clip as it stands.
Reordering Reorder(clip::Clip const & motion, clip::ChannelOrder const & order, Extraction extraction);

} // namespace bake
