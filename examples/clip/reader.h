#pragma once

#include "clip/clip.h"
#include "clip/program.h"

#include <cstddef>
#include <filesystem>
#include <istream>
#include <string>
#include <string_view>

namespace clip
{

/// A text that is no clip: `what()` is one line of file name, line number and what was wrong.
class FormatError : public InputError
{
public:
    FormatError(std::string const & file, std::size_t line, std::string const & message);

    std::size_t Line() const { return m_Line; }

private:
    std::size_t m_Line;
};

/// The largest size of a number in a clip. Far above any length or angle, and low enough that no sum or product over a
/// skeleton overflows: a clip that was read gives finite positions.
inline constexpr double k_LargestNumber = 1e12;

/// The longest name of a joint, in bytes.
inline constexpr std::size_t k_LongestName = 255;

/// Reads a clip in BVH, the Biovision hierarchy: `HIERARCHY`, then one or more `ROOT` with nested `JOINT` and `End
/// Site`, each with its `OFFSET` and up to six `CHANNELS` in any order; then `MOTION`, `Frames:`, `Frame Time:` and one
/// line of numbers a frame. Lines end in any of the three customary ways, words are parted by any blanks, upper and
/// lower case are alike, and a byte order mark is skipped. A joint may lack channels, a clip may not.
///
/// Nothing is taken on trust: memory stays in proportion to the text whatever counts it claims, and nesting of any
/// depth is read without recursion.
///
/// \param name names the text in messages
/// \throws FormatError at the first thing that is wrong
Clip ParseClip(std::string_view text, std::string const & name);

/// Reads the stream to its end and parses it.
/// \throws FormatError, and std::system_error when the stream fails
Clip ReadClip(std::istream & stream, std::string const & name);

/// \throws FormatError, and std::system_error when the file cannot be read
Clip ReadClip(std::filesystem::path const & file);

} // namespace clip
