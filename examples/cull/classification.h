#pragma once

#include "clip/clip.h"
#include "cull/camera_motion.h"
#include "cull/joint_boxes.h"
#include "math/view_volume.h"

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace cull
{

inline constexpr std::size_t k_ClassCount = 3;

/// Indexed by tagE3DVIEWINTERSECTION.
inline constexpr std::array<std::string_view, k_ClassCount> k_ClassNames = {"outside", "inside", "crossing"};

/// How the boxes lie to what a camera sees, by both strategies, in the order of the boxes.
struct Classification
{
    std::vector<tagE3DVIEWINTERSECTION> world;
    std::vector<tagE3DVIEWINTERSECTION> view;
    double worldSeconds = 0; ///< that it took, the setting of the volume not counted
    double viewSeconds = 0;
};

Classification Classify(JointBoxes const & boxes, CameraMotion const & camera);

/// How often each pair of answers was given: the answer in world space first, then the one in view space.
using AnswerCounts = std::array<std::array<std::size_t, k_ClassCount>, k_ClassCount>;

AnswerCounts CountAnswers(Classification const & classification);

/// How many boxes lie beyond the bounds of the volume along the world axes: those that the strategy in world space is
/// done with before it looks at a plane.
std::size_t CountBeyondBounds(JointBoxes const & boxes, CameraMotion const & camera);

/// One strategy says inside where the other says outside; `what()` tells where.
class ContradictionError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// \throws ContradictionError that names the first frame and joint in which the strategies contradict each other. Where
/// one of them says crossing they do not: it may be unable to tell.
void CheckAgreement(Classification const & classification, JointBoxes const & boxes, clip::Skeleton const & skeleton);

} // namespace cull
