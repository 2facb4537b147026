#pragma once

#include "clip/clip.h"
#include "cull/camera_motion.h"
#include "cull/classification.h"
#include "cull/floor.h"
#include "cull/foot.h"
#include "cull/joint_boxes.h"

#include <optional>
#include <ostream>
#include <vector>

// Tables of comma-separated values: a header, then a line an entry. Frames count from 0, times are in seconds, and
// numbers read back bit for bit; a name with a comma or a quote in it is quoted.

namespace cull
{

/// The answers of both strategies for every joint in every frame.
void WriteViewTable(std::ostream & stream, clip::Clip const & motion, JointBoxes const & boxes,
                    Classification const & classification);

/// Where the camera is in every frame, and how it is turned about its own axes, in degrees.
void WriteCameraTable(std::ostream & stream, clip::Clip const & motion, CameraMotion const & camera);

/// The seconds from the start of the clip.
double TimeOf(Contact const & contact, clip::Clip const & motion);

/// The first contact of each foot, which is named after its ankle. A foot that has none has no line.
void WriteFloorTable(std::ostream & stream, clip::Clip const & motion, std::vector<Foot> const & feet,
                     std::vector<std::optional<Contact>> const & contacts);

} // namespace cull
