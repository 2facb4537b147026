#pragma once

#include "clip/clip.h"
#include "clip/joint_rotation.h"

namespace bake
{

/// Which of the angles that give a rotation are taken.
enum class Extraction : unsigned char
{
    Plain,  ///< those nearest to zero, each frame by itself, as a conversion without a memory finds them
    Nearest ///< those nearest to the frame before, whole turns included
};

/// The clip with the rotations of every joint in another order. The nearest extraction starts from the angles of the
/// first frame as they stand in the clip, so that turns with which a joint begins are kept.
///
/// The rotations take the places of the old ones in a joint's channel list. A joint with less than three gets the
/// missing ones behind its other channels. Positions are kept as they are, bit for bit.
clip::Clip Reorder(clip::Clip const & motion, clip::ChannelOrder const & order, Extraction extraction);

} // namespace bake
