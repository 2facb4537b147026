#pragma once

#include "clip/clip.h"
#include "clip/pose.h"

namespace bake
{

/// Whether two skeletons have the same joints in the same places: names, parents and offsets. Their channels may
/// differ.
bool AreSameSkeleton(clip::Skeleton const & a, clip::Skeleton const & b);

/// The poses of two clips of one skeleton blended joint by joint, frame by frame, over the shorter one: rotation and
/// translation as dual quaternions, by the shorter arc; scalings linearly. Angles are in the orders of a's channels,
/// each frame's nearest to those of the frame before, and the first frame's to those of a. A translation of less than
/// about 1e-12 counts as none.
///
/// Dual quaternion linear blending: Kavan, Collins, Zara and O'Sullivan, "Geometric skinning with approximate dual
/// quaternion blending", ACM Transactions on Graphics 27 (2008).
///
/// \param share of b, 0 to 1
clip::PoseTrack Blend(clip::Clip const & a, clip::PoseTrack const & aPoses, clip::Clip const & b,
                      clip::PoseTrack const & bPoses, double share);

} // namespace bake
