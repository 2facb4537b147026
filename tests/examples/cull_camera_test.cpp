#include "cull/camera.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

namespace
{

using cull::Camera;
using cull::CameraRequest;
using Vector = C3DVector3Tpl<double>;

/// A subject from (-10, 0, -20) to (30, 180, 40), with (10, 90, 10) in the middle.
clip::Bounds const k_Subject{{-10, 0, -20}, {30, 180, 40}};
double const k_Radius = std::hypot(20, 90, 30);

void ExpectNear(Vector const & actual, Vector const & expected, double tolerance)
{
    EXPECT_NEAR(actual.X, expected.X, tolerance);
    EXPECT_NEAR(actual.Y, expected.Y, tolerance);
    EXPECT_NEAR(actual.Z, expected.Z, tolerance);
}

Vector AxisOf(Camera const & camera, int row)
{
    return {camera.matrix.Get(row, 0), camera.matrix.Get(row, 1), camera.matrix.Get(row, 2)};
}

/// Of a world point, in the camera's space.
Vector Seen(Camera const & camera, Vector const & point)
{
    Vector way;
    way.Sub(point, camera.eye);
    Vector seen;
    for (int row = 0; row < 3; ++row)
    {
        Vector const axis = AxisOf(camera, row);
        seen.Set(row, way.X * axis.X + way.Y * axis.Y + way.Z * axis.Z);
    }
    return seen;
}

std::string Refusal(CameraRequest const & request, clip::Bounds const & subject = k_Subject)
{
    try
    {
        cull::PlaceCamera(request, subject);
        return {};
    }
    catch (cull::CameraError const & error)
    {
        return error.what();
    }
}

CameraRequest From(Vector const & eye, Vector const & look)
{
    CameraRequest request;
    request.eye = eye;
    request.look = look;
    return request;
}

TEST(CullCamera, A_camera_that_looks_along_minus_Z_has_the_axes_of_the_world)
{
    Camera const camera = cull::PlaceCamera(From({1, 2, 30}, {1, 2, -4}), k_Subject);
    ExpectNear(AxisOf(camera, 0), {1, 0, 0}, 1e-15);
    ExpectNear(AxisOf(camera, 1), {0, 1, 0}, 1e-15);
    ExpectNear(AxisOf(camera, 2), {0, 0, 1}, 1e-15);
    ExpectNear(AxisOf(camera, 3), {1, 2, 30}, 0);
    for (int row = 0; row < 4; ++row)
    {
        EXPECT_EQ(camera.matrix.Get(row, 3), row == 3 ? 1 : 0);
    }
}

TEST(CullCamera, The_axes_are_right_handed_unit_and_perpendicular_wherever_it_looks)
{
    std::vector<Vector> const targets = {{1, 0, 0}, {-1, 0, 0}, {0, 0, 1},   {0, 0, -1},  {0, 1, 0},     {0, -1, 0},
                                         {3, 4, 5}, {-3, 4, 5}, {-1, -9, 2}, {2, -1, -7}, {1e-5, -1, 0}, {0, 1, -1e-5}};
    for (Vector const & target : targets)
    {
        Camera const camera = cull::PlaceCamera(From({0, 0, 0}, target), k_Subject);
        EXPECT_NEAR(camera.matrix.GetDet33(), 1, 1e-12);
        EXPECT_EQ(camera.matrix.GetSclSignBits(), 0);
        for (int row = 0; row < 3; ++row)
        {
            EXPECT_NEAR(AxisOf(camera, row).GetLength(), 1, 1e-12);
        }
        Vector cross;
        ExpectNear(cross.SetCross(AxisOf(camera, 0), AxisOf(camera, 1)), AxisOf(camera, 2), 1e-12);
        Vector const seen = Seen(camera, target);
        ExpectNear(seen, {0, 0, -target.GetLength()}, 1e-12);
        EXPECT_NEAR(AxisOf(camera, 0).Y, 0, 1e-12) << "the horizon is level";
        EXPECT_GE(AxisOf(camera, 1).Y, -1e-12) << "up is not down";
    }
}

TEST(CullCamera, Straight_down_has_minus_Z_up_and_straight_up_has_Z_up)
{
    Camera const down = cull::PlaceCamera(From({5, 300, 7}, {5, 0, 7}), k_Subject);
    ExpectNear(AxisOf(down, 0), {1, 0, 0}, 1e-15);
    ExpectNear(AxisOf(down, 1), {0, 0, -1}, 1e-15);
    Camera const up = cull::PlaceCamera(From({5, -300, 7}, {5, 0, 7}), k_Subject);
    ExpectNear(AxisOf(up, 0), {1, 0, 0}, 1e-15);
    ExpectNear(AxisOf(up, 1), {0, 0, 1}, 1e-15);
}

TEST(CullCamera, By_default_it_stands_in_front_and_sees_all_of_the_subject)
{
    for (double const aspect : {0.01, 0.5, 1.0, 1.5, 100.0})
    {
        for (bool const isOrthographic : {false, true})
        {
            CameraRequest request;
            request.aspect = aspect;
            if (isOrthographic)
            {
                request.orthographicWidth = 500;
            }
            Camera const camera = cull::PlaceCamera(request, k_Subject);
            ExpectNear(camera.look, {10, 90, 10}, 0);
            EXPECT_GT(camera.eye.X, 10);
            EXPECT_GT(camera.eye.Y, 90);
            EXPECT_GT(camera.eye.Z, 10);
            ExpectNear(Seen(camera, {10, 90, 10}), {0, 0, -GetDistance(camera.eye, camera.look)}, 1e-9);
            EXPECT_NEAR(camera.width / camera.height, aspect, 1e-9 * aspect);
            double const depth = GetDistance(camera.eye, camera.look);
            EXPECT_NEAR(camera.nearDistance, depth - k_Radius, 1e-9 * depth);
            EXPECT_NEAR(camera.farDistance, depth + k_Radius, 1e-9 * depth);
        }
        CameraRequest request;
        request.aspect = aspect;
        Camera const camera = cull::PlaceCamera(request, k_Subject);
        EXPECT_EQ(camera.fieldOfView, 40 * std::numbers::pi / 180);
        // The sphere around the subject touches the sides of the narrower direction.
        double const halfAngle = std::atan(std::tan(camera.fieldOfView / 2) * std::min(1.0, 1 / aspect));
        EXPECT_NEAR(std::sin(halfAngle) * GetDistance(camera.eye, camera.look), k_Radius, 1e-9 * k_Radius);
    }
}

TEST(CullCamera, What_is_asked_for_is_kept)
{
    CameraRequest request = From({400, 120, 90}, {0, 80, 100});
    request.fieldOfView = 1.25;
    request.aspect = 2;
    request.nearDistance = 3;
    request.farDistance = 700;
    Camera const camera = cull::PlaceCamera(request, k_Subject);
    ExpectNear(camera.eye, {400, 120, 90}, 0);
    ExpectNear(camera.look, {0, 80, 100}, 0);
    EXPECT_FALSE(camera.isOrthographic);
    EXPECT_EQ(camera.fieldOfView, 1.25);
    EXPECT_EQ(camera.nearDistance, 3);
    EXPECT_EQ(camera.farDistance, 700);
    EXPECT_NEAR(camera.width, 6 * std::tan(0.625), 1e-14);
    EXPECT_NEAR(camera.height, 3 * std::tan(0.625), 1e-14);
}

TEST(CullCamera, An_orthographic_camera_has_its_width_at_every_distance)
{
    CameraRequest request = From({0, 0, 100}, {0, 0, 0});
    request.orthographicWidth = 60;
    request.nearDistance = 10;
    request.farDistance = 90;
    Camera const camera = cull::PlaceCamera(request, k_Subject);
    EXPECT_TRUE(camera.isOrthographic);
    EXPECT_EQ(camera.fieldOfView, 0);
    std::array<Vector, 8> const corners = cull::ComputeCorners(camera);
    for (std::size_t i = 0; i < corners.size(); ++i)
    {
        ExpectNear(corners[i],
                   {(i & 1U) != 0 ? 30.0 : -30.0, (i & 2U) != 0 ? 20.0 : -20.0, (i & 4U) != 0 ? 10.0 : 90.0}, 1e-12);
    }
}

TEST(CullCamera, A_perspective_camera_has_its_corners_on_rays_through_the_eye)
{
    CameraRequest request = From({1, 2, 3}, {4, -5, 9});
    request.fieldOfView = std::numbers::pi / 2;
    request.aspect = 4;
    request.nearDistance = 2;
    request.farDistance = 8;
    Camera const camera = cull::PlaceCamera(request, k_Subject);
    std::array<Vector, 8> const corners = cull::ComputeCorners(camera);
    for (std::size_t i = 0; i < corners.size(); ++i)
    {
        double const depth = (i & 4U) != 0 ? 8 : 2;
        ExpectNear(Seen(camera, corners[i]),
                   {(i & 1U) != 0 ? depth : -depth, (i & 2U) != 0 ? depth / 4 : -depth / 4, -depth}, 1e-12);
    }
}

TEST(CullCamera, Distances_left_open_hold_the_subject_or_else_leave_room)
{
    // In the middle of the subject.
    Camera const within = cull::PlaceCamera(From({10, 90, 10}, {10, 90, 0}), k_Subject);
    EXPECT_NEAR(within.nearDistance, 1e-3 * k_Radius, 1e-12);
    EXPECT_NEAR(within.farDistance, k_Radius, 1e-12);
    // With the subject behind.
    Camera const away = cull::PlaceCamera(From({10, 90, 500}, {10, 90, 600}), k_Subject);
    EXPECT_NEAR(away.nearDistance, 1e-3 * k_Radius, 1e-12);
    EXPECT_NEAR(away.farDistance, away.nearDistance + 2 * k_Radius, 1e-9);
    // Near beyond the subject.
    CameraRequest request = From({10, 90, 500}, {10, 90, 0});
    request.nearDistance = 1000;
    EXPECT_NEAR(cull::PlaceCamera(request, k_Subject).farDistance, 1000 + 2 * k_Radius, 1e-9);
    // Far before it.
    request.nearDistance.reset();
    request.farDistance = 100;
    EXPECT_EQ(cull::PlaceCamera(request, k_Subject).nearDistance, 1);
    EXPECT_EQ(cull::PlaceCamera(request, k_Subject).farDistance, 100);
}

TEST(CullCamera, A_subject_without_extent_is_seen_from_somewhere)
{
    Camera const camera = cull::PlaceCamera({}, {{3, 4, 5}, {3, 4, 5}});
    EXPECT_NEAR(camera.farDistance - camera.nearDistance, 2, 1e-12);
    ExpectNear(camera.look, {3, 4, 5}, 0);
}

TEST(CullCamera, An_eye_at_what_it_looks_at_is_refused)
{
    std::string const refusal = "the camera stands at the very place at which it is to look";
    EXPECT_EQ(Refusal(From({1, 2, 3}, {1, 2, 3})), refusal);
    EXPECT_EQ(Refusal(From({0, 0, 0}, {0, 0.99e-9, 0})), refusal);
    EXPECT_EQ(Refusal(From({0, 0, 0}, {0, 1e-9, 0})), "");
    EXPECT_EQ(Refusal(From({0, 0, 0}, {0, std::numeric_limits<double>::quiet_NaN(), 0})), refusal);
    CameraRequest request;
    request.eye = Vector(10, 90, 10);
    EXPECT_EQ(Refusal(request), refusal) << "the default is the middle of the subject";
}

TEST(CullCamera, Distances_that_cannot_be_told_apart_are_refused)
{
    CameraRequest request = From({0, 0, 10}, {0, 0, 0});
    request.nearDistance = 1e12;
    EXPECT_EQ(Refusal(request, {{0, 0, 0}, {1e-6, 0, 0}}),
              "the camera sees nothing between its near and its far distance");
    request.nearDistance = 5;
    request.farDistance = 5;
    EXPECT_EQ(Refusal(request), "the camera sees nothing between its near and its far distance");
}

} // namespace
