#include "cull/camera_motion.h"
#include "cull/classification.h"
#include "cull/tables.h"

#include "examples/made_clip.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <sstream>
#include <string>
#include <vector>

namespace
{

using Vector = C3DVector3Tpl<double>;
using cull::CameraMotion;
using cull::Shake;

constexpr double k_FrameTime = 1.0 / 30;

/// At (0, 100, 300), looking at (20, 80, 0).
cull::Camera Placed()
{
    cull::CameraRequest request;
    request.eye = Vector(0, 100, 300);
    request.look = Vector(20, 80, 0);
    request.nearDistance = 10;
    request.farDistance = 600;
    return cull::PlaceCamera(request, {{-10, 0, -10}, {10, 200, 10}});
}

std::vector<double> Components(cull::Sway const & sway)
{
    return {sway.shift.X, sway.shift.Y, sway.shift.Z, sway.turn.X, sway.turn.Y, sway.turn.Z};
}

/// The camera axis in a row of its matrix.
Vector AxisOf(cull::Camera const & camera, int row)
{
    return {camera.matrix.Get(row, 0), camera.matrix.Get(row, 1), camera.matrix.Get(row, 2)};
}

/// How far a way leads along an axis.
double Along(Vector const & axis, Vector const & way)
{
    return axis.X * way.X + axis.Y * way.Y + axis.Z * way.Z;
}

TEST(CullShake, A_still_camera_stays_where_it_was_placed)
{
    cull::Camera const placed = Placed();
    for (CameraMotion const & motion : {CameraMotion(placed), CameraMotion(placed, std::nullopt, k_FrameTime)})
    {
        EXPECT_TRUE(motion.IsStill());
        EXPECT_EQ(Components(motion.SwayAt(77)), std::vector<double>(6, 0));
        EXPECT_EQ(motion.At(77).eye, placed.eye);
        EXPECT_EQ(motion.At(77).look, placed.look);
        for (int row = 0; row < 4; ++row)
        {
            EXPECT_EQ(AxisOf(motion.At(77), row), AxisOf(placed, row));
        }
    }
}

TEST(CullShake, It_moves_and_turns_within_its_amplitude_and_by_a_good_part_of_it)
{
    cull::Camera const placed = Placed();
    double const mostTurn = std::atan2(4, GetDistance(placed.eye, placed.look));
    for (unsigned long seed = 1; seed <= 3; ++seed)
    {
        CameraMotion const motion(placed, Shake{4, seed}, k_FrameTime);
        std::vector<double> largest(6, 0);
        for (std::size_t frame = 0; frame < 1500; ++frame)
        {
            std::vector<double> const now = Components(motion.SwayAt(frame));
            for (std::size_t i = 0; i < now.size(); ++i)
            {
                largest[i] = std::max(largest[i], std::abs(now[i]));
            }
        }
        for (std::size_t i = 0; i < 6; ++i)
        {
            double const most = i < 3 ? 4 : mostTurn;
            EXPECT_LE(largest[i], most) << i;
            EXPECT_GT(largest[i], most / 4) << i;
        }
    }
}

TEST(CullShake, Its_turns_are_no_wider_than_five_degrees)
{
    constexpr double k_Most = 5 * std::numbers::pi / 180;
    CameraMotion const motion(Placed(), Shake{1e4}, k_FrameTime);
    double largest = 0;
    for (std::size_t frame = 0; frame < 1000; ++frame)
    {
        Vector const turn = motion.SwayAt(frame).turn;
        largest = std::max({largest, std::abs(turn.X), std::abs(turn.Y), std::abs(turn.Z)});
    }
    EXPECT_LE(largest, k_Most);
    EXPECT_GT(largest, k_Most / 4);
}

TEST(CullShake, Its_components_go_their_own_ways_and_no_frame_jumps)
{
    CameraMotion const motion(Placed(), Shake{1}, k_FrameTime);
    std::vector<std::vector<double>> components(6);
    for (std::size_t frame = 0; frame < 2000; ++frame)
    {
        std::vector<double> const now = Components(motion.SwayAt(frame));
        for (std::size_t i = 0; i < 6; ++i)
        {
            components[i].push_back(now[i]);
        }
    }
    auto const product = [&](std::size_t i, std::size_t j)
    {
        double sum = 0;
        for (std::size_t frame = 0; frame < 2000; ++frame)
        {
            sum += components[i][frame] * components[j][frame];
        }
        return sum;
    };
    for (std::size_t i = 0; i < 6; ++i)
    {
        for (std::size_t j = 0; j < i; ++j)
        {
            EXPECT_LT(std::abs(product(i, j)) / std::sqrt(product(i, i) * product(j, j)), 0.35) << i << ", " << j;
        }
        auto const [lowest, highest] = std::minmax_element(components[i].begin(), components[i].end());
        for (std::size_t frame = 1; frame < 2000; ++frame)
        {
            ASSERT_LT(std::abs(components[i][frame] - components[i][frame - 1]), 0.2 * (*highest - *lowest));
        }
    }
}

TEST(CullShake, It_shakes_along_and_about_the_axes_of_the_camera)
{
    cull::Camera const placed = Placed();
    CameraMotion const motion(placed, Shake{15, 8}, k_FrameTime);
    double const distance = GetDistance(placed.eye, placed.look);
    for (std::size_t const frame : {0U, 13U, 200U})
    {
        cull::Camera const camera = motion.At(frame);
        cull::Sway const sway = motion.SwayAt(frame);
        Vector way;
        way.Sub(camera.eye, placed.eye);
        for (int row = 0; row < 3; ++row)
        {
            EXPECT_NEAR(Along(AxisOf(placed, row), way), sway.shift.Get(row), 1e-12);
            EXPECT_NEAR(AxisOf(camera, row).GetLength(), 1, 1e-14);
        }
        Vector cross;
        cross.SetCross(AxisOf(camera, 0), AxisOf(camera, 1));
        EXPECT_LT(GetDistance(cross, AxisOf(camera, 2)), 1e-14) << "right-handed";
        // The direction of sight after a turn about X, then one about Y; the one about Z, which is last, rolls it.
        Vector const ahead(-std::cos(sway.turn.X) * std::sin(sway.turn.Y), std::sin(sway.turn.X),
                           -std::cos(sway.turn.X) * std::cos(sway.turn.Y));
        double const cosine = std::cos(sway.turn.Z);
        double const sine = std::sin(sway.turn.Z);
        Vector const rolled(cosine * ahead.X - sine * ahead.Y, sine * ahead.X + cosine * ahead.Y, ahead.Z);
        Vector sight;
        sight.Sub(camera.look, camera.eye);
        for (int row = 0; row < 3; ++row)
        {
            EXPECT_NEAR(Along(AxisOf(placed, row), sight), distance * rolled.Get(row), 1e-10) << row;
        }
        EXPECT_EQ(camera.nearDistance, placed.nearDistance);
        EXPECT_EQ(camera.farDistance, placed.farDistance);
        EXPECT_EQ(camera.width, placed.width);
    }
}

TEST(CullShake, The_same_seed_shakes_alike_and_another_does_not)
{
    CameraMotion const one(Placed(), Shake{4, 9}, k_FrameTime);
    CameraMotion const same(Placed(), Shake{4, 9}, k_FrameTime);
    CameraMotion const other(Placed(), Shake{4, 10}, k_FrameTime);
    CameraMotion const copy = one; // NOLINT(performance-unnecessary-copy-initialization)
    for (std::size_t frame = 0; frame < 20; ++frame)
    {
        EXPECT_EQ(Components(one.SwayAt(frame)), Components(same.SwayAt(frame)));
        EXPECT_EQ(Components(one.SwayAt(frame)), Components(copy.SwayAt(frame)));
        EXPECT_NE(Components(one.SwayAt(frame)), Components(other.SwayAt(frame)));
    }
}

TEST(CullShake, The_movement_goes_by_time_and_not_by_frames)
{
    CameraMotion const slow(Placed(), Shake{4}, 0.1);
    CameraMotion const fast(Placed(), Shake{4}, 0.025);
    for (std::size_t frame = 0; frame < 30; ++frame)
    {
        std::vector<double> const one = Components(slow.SwayAt(frame));
        std::vector<double> const other = Components(fast.SwayAt(4 * frame));
        for (std::size_t i = 0; i < 6; ++i)
        {
            EXPECT_NEAR(one[i], other[i], 1e-9);
        }
    }
}

/// A point that stands still, in as many frames.
clip::Clip Standing(std::size_t frames)
{
    MadeClip made;
    made.Add("a", MadeClip::k_Root, {0, 0, 0});
    made.Add("b", 0, {1, 30, 1}, {});
    for (std::size_t frame = 0; frame < frames; ++frame)
    {
        made.AddFrame({15, 60, 0});
    }
    return made.Get();
}

TEST(CullShake, Every_frame_is_seen_from_where_the_camera_is_then)
{
    clip::Clip const motion = Standing(150);
    cull::JointBoxes const boxes = cull::ComputeJointBoxes(motion.skeleton, clip::ComputeWorldPositions(motion), 1);
    cull::CameraRequest request;
    request.eye = Vector(15, 60, 100);
    request.look = Vector(15, 60, 0);
    request.orthographicWidth = 4;
    request.nearDistance = 10;
    request.farDistance = 200;
    cull::Camera const placed = cull::PlaceCamera(request, {});
    CameraMotion const shaken(placed, Shake{12, 4}, k_FrameTime);
    cull::Classification const answers = cull::Classify(boxes, shaken);
    EXPECT_NO_THROW(cull::CheckAgreement(answers, boxes, motion.skeleton));
    std::size_t beyond = 0;
    std::vector<bool> isSeen(3);
    for (std::size_t frame = 0; frame < 150; ++frame)
    {
        cull::JointBoxes one = boxes;
        auto const first = boxes.boxes.begin() + static_cast<std::ptrdiff_t>(2 * frame);
        one.boxes.assign(first, first + 2);
        cull::Classification const alone = cull::Classify(one, shaken.At(frame));
        for (std::size_t i = 0; i < 2; ++i)
        {
            EXPECT_EQ(answers.world[2 * frame + i], alone.world[i]);
            EXPECT_EQ(answers.view[2 * frame + i], alone.view[i]);
            isSeen[static_cast<std::size_t>(alone.world[i])] = true;
        }
        beyond += cull::CountBeyondBounds(one, shaken.At(frame));
    }
    EXPECT_TRUE(isSeen[E3DVIEWINTERSECTION_CROSSING]);
    EXPECT_TRUE(isSeen[E3DVIEWINTERSECTION_OUTSIDE]) << "the movement leads out of the picture and back";
    EXPECT_EQ(cull::CountBeyondBounds(boxes, shaken), beyond);
    cull::Classification const still = cull::Classify(boxes, placed);
    EXPECT_NE(answers.world, still.world);
}

TEST(CullShake, The_camera_table_has_a_line_a_frame)
{
    clip::Clip const motion = Standing(3);
    CameraMotion const shaken(Placed(), Shake{2}, motion.frameTime);
    std::ostringstream stream;
    cull::WriteCameraTable(stream, motion, shaken);
    std::istringstream lines(stream.str());
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(line, "frame,time,x,y,z,pitch,yaw,roll");
    for (std::size_t frame = 0; frame < 3; ++frame)
    {
        std::getline(lines, line);
        std::istringstream fields(line);
        std::vector<double> numbers;
        for (std::string field; std::getline(fields, field, ',');)
        {
            numbers.push_back(std::stod(field));
        }
        Vector const eye = shaken.At(frame).eye;
        Vector const turn = shaken.SwayAt(frame).turn;
        constexpr double k_Degree = std::numbers::pi / 180;
        EXPECT_EQ(numbers,
                  (std::vector<double>{static_cast<double>(frame), 0.5 * static_cast<double>(frame), eye.X, eye.Y,
                                       eye.Z, turn.X / k_Degree, turn.Y / k_Degree, turn.Z / k_Degree}));
    }
    EXPECT_FALSE(std::getline(lines, line));
}

} // namespace
