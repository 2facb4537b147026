#pragma once

#include "clip/clip.h"
#include "clip/pose.h"
#include "clip/program.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <vector>

// A file of poses: a chunk with the tag "POSE", in it the counts of frames and joints and the time of a frame as
// doubles, then the local transformation of each joint in each frame as C3DTransfo saves it. A saved rotation holds its
// angles without their order, which is that of the joint's channels.

namespace bake
{

/// A file that holds no poses of the skeleton; `what()` is one line that says why.
class PoseFileError : public clip::InputError
{
public:
    using clip::InputError::InputError;
};

/// Poses and how they compose.
struct SavedPoses
{
    clip::PoseTrack poses;
    clip::Composition composition;
    double frameTime;
};

/// The bytes of a file of poses.
std::vector<unsigned char> EncodePoses(SavedPoses const & saved);

/// What EncodePoses made, bit for bit; a factor of scale below 1e-12 in size, which is stored as 1e-12 with its sign,
/// has been so wherever the poses are composed. Memory stays in proportion to the bytes, whatever counts they claim.
/// \param name names the file in messages
/// \throws PoseFileError
SavedPoses DecodePoses(std::span<unsigned char const> bytes, clip::Skeleton const & skeleton, std::string const & name);

/// Reads a file of poses.
/// \throws PoseFileError, and std::system_error when the file cannot be read
SavedPoses LoadPoses(std::filesystem::path const & file, clip::Skeleton const & skeleton);

} // namespace bake
