#include "geometry/eye_view_volume.h"
#include "math/view_volume.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;
using math::detail::EyeViewVolume;
using math::detail::ViewLimits;

constexpr ViewLimits k_Limits{-1, 2, -3, 5, 1, 4};
constexpr int k_Orthographic = 1;
constexpr int k_Perspective = 0;
constexpr double k_NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double k_Infinity = std::numeric_limits<double>::infinity();

EyeViewVolume Make(int orthographic, Matrix const & viewToWorld = Matrix(), ViewLimits const & limits = k_Limits)
{
    EyeViewVolume volume{};
    volume.Set(limits, viewToWorld, orthographic);
    return volume;
}

tagE3DVIEWINTERSECTION Classify(EyeViewVolume const & volume, Vector const & minimum, Vector const & maximum,
                                Matrix const * matrix = nullptr)
{
    Vector const box[2] = {minimum, maximum};
    return volume.Classify(box, matrix);
}

tagE3DVIEWINTERSECTION ClassifyPoint(EyeViewVolume const & volume, Vector const & point)
{
    return Classify(volume, point, point);
}

} // namespace

// --- The record ------------------------------------------------------------------------------------------------------

TEST(EyeViewVolume, Set_stores_limits_and_differences)
{
    for (int const orthographic : {k_Orthographic, k_Perspective, -7})
    {
        EyeViewVolume const volume = Make(orthographic);
        EXPECT_EQ(volume.left, -1);
        EXPECT_EQ(volume.right, 2);
        EXPECT_EQ(volume.bottom, -3);
        EXPECT_EQ(volume.top, 5);
        EXPECT_EQ(volume.minusNear, -1);
        EXPECT_EQ(volume.minusFar, -4);
        EXPECT_EQ(volume.bottomMinusTop, -8);
        EXPECT_EQ(volume.leftMinusRight, -3);
        EXPECT_EQ(volume.orthographic, orthographic);
    }
}

TEST(EyeViewVolume, The_side_tests_have_the_coefficients_of_planes_through_the_apex)
{
    EyeViewVolume const volume = Make(k_Perspective, Matrix(), {-1, 2, -3, 5, 7, 11});
    double const left[3] = {56, 0, -8};
    double const right[3] = {-56, 0, -16};
    double const top[3] = {0, -21, -15};
    double const bottom[3] = {0, 21, -9};
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_EQ(volume.leftSide[i], left[i]) << i;
        EXPECT_EQ(volume.rightSide[i], right[i]) << i;
        EXPECT_EQ(volume.topSide[i], top[i]) << i;
        EXPECT_EQ(volume.bottomSide[i], bottom[i]) << i;
    }
}

TEST(EyeViewVolume, Set_stores_the_inverse_of_the_matrix)
{
    Matrix const camera(0, 2, 0, 0, -1, 0, 0, 0, 0, 0, 4, 0, 8, 6, 4, 1);
    EXPECT_EQ(Make(k_Orthographic, camera).worldToView, Matrix(0, -1, 0, 0, 0.5, 0, 0, 0, 0, 0, 0.25, 0, -3, 8, -1, 1));
}

TEST(EyeViewVolume, A_singular_matrix_keeps_the_inverse_that_was_there)
{
    Matrix const singular(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 9, 9, 9, 1);
    EyeViewVolume volume = Make(k_Orthographic, singular);
    EXPECT_TRUE(volume.worldToView.IsExactlyIdentity());
    volume.Set(k_Limits, Matrix().SetTranslation(Vector(1, 2, 3)), k_Orthographic);
    volume.Set({10, 20, 30, 40, 50, 60}, singular, k_Perspective);
    EXPECT_EQ(volume.worldToView, Matrix().SetTranslation(Vector(-1, -2, -3)));
    EXPECT_EQ(volume.left, 10);
    EXPECT_EQ(volume.orthographic, k_Perspective);
}

// --- Boundaries ------------------------------------------------------------------------------------------------------

TEST(EyeViewVolume, A_point_on_a_limit_of_a_box_volume_is_inside)
{
    EyeViewVolume const volume = Make(k_Orthographic);
    struct Row
    {
        Vector on;
        unsigned long axis;
        double outwards;
    };
    for (Row const & row : {Row{{-1, 0, -2}, 0, -9}, Row{{2, 0, -2}, 0, 9}, Row{{0, -3, -2}, 1, -9},
                            Row{{0, 5, -2}, 1, 9}, Row{{0, 0, -1}, 2, 9}, Row{{0, 0, -4}, 2, -9}})
    {
        EXPECT_EQ(ClassifyPoint(volume, row.on), E3DVIEWINTERSECTION_INSIDE);
        Vector beyond = row.on;
        beyond[row.axis] = std::nextafter(beyond[row.axis], row.outwards);
        EXPECT_EQ(ClassifyPoint(volume, beyond), E3DVIEWINTERSECTION_OUTSIDE);
    }
}

TEST(EyeViewVolume, A_point_on_a_side_of_a_frustum_is_inside)
{
    EyeViewVolume const volume = Make(k_Perspective);
    struct Row
    {
        Vector on;
        unsigned long axis;
        double outwards;
    };
    for (Row const & row : {Row{{-2, 0, -2}, 0, -9}, Row{{4, 0, -2}, 0, 9}, Row{{0, -6, -2}, 1, -9},
                            Row{{0, 10, -2}, 1, 99}, Row{{0, 0, -1}, 2, 9}, Row{{0, 0, -4}, 2, -9}})
    {
        EXPECT_EQ(ClassifyPoint(volume, row.on), E3DVIEWINTERSECTION_INSIDE);
        Vector beyond = row.on;
        beyond[row.axis] = std::nextafter(beyond[row.axis], row.outwards);
        EXPECT_EQ(ClassifyPoint(volume, beyond), E3DVIEWINTERSECTION_OUTSIDE);
    }
}

TEST(EyeViewVolume, A_corner_on_the_near_plane_counts_as_inside)
{
    for (int const orthographic : {k_Orthographic, k_Perspective})
    {
        EyeViewVolume const volume = Make(orthographic);
        EXPECT_EQ(Classify(volume, Vector(-0.5, -0.5, -2), Vector(0.5, 0.5, -1)), E3DVIEWINTERSECTION_INSIDE);
        EXPECT_EQ(Classify(volume, Vector(-0.5, -0.5, -1), Vector(0.5, 0.5, 0)), E3DVIEWINTERSECTION_CROSSING);
        EXPECT_EQ(Classify(volume, Vector(-0.5, -0.5, -0.999), Vector(0.5, 0.5, 0)), E3DVIEWINTERSECTION_OUTSIDE);
    }
}

// --- Outcodes --------------------------------------------------------------------------------------------------------

TEST(EyeViewVolume, One_corner_of_eight_outside_is_enough_and_each_is_looked_at)
{
    // A box turned so that one corner points along +X, beyond the right limit alone.
    double const a = std::sqrt(1.0 / 3);
    double const b = std::sqrt(1.0 / 2);
    double const c = std::sqrt(1.0 / 6);
    for (unsigned i = 0; i < 8; ++i)
    {
        double const sx = (i & 1) != 0 ? 1 : -1;
        double const sy = (i & 2) != 0 ? 1 : -1;
        double const sz = (i & 4) != 0 ? 1 : -1;
        Matrix const turn(sx * a, sx * b, sx * c, 0, sy * a, -sy * b, sy * c, 0, sz * a, 0, -2 * sz * c, 0, 0, 0, -50,
                          1);
        Vector const maximum(1, 1, 1);
        Vector const minimum(-1, -1, -1);
        double const reach = 3 * a;
        EXPECT_EQ(Classify(Make(k_Orthographic, Matrix(), {-9, reach + 1e-9, -9, 9, 1, 99}), minimum, maximum, &turn),
                  E3DVIEWINTERSECTION_INSIDE);
        EXPECT_EQ(Classify(Make(k_Orthographic, Matrix(), {-9, reach - 1e-9, -9, 9, 1, 99}), minimum, maximum, &turn),
                  E3DVIEWINTERSECTION_CROSSING);
        EXPECT_EQ(Classify(Make(k_Orthographic, Matrix(), {reach - 1e-9, 9, -9, 9, 1, 99}), minimum, maximum, &turn),
                  E3DVIEWINTERSECTION_CROSSING);
        EXPECT_EQ(Classify(Make(k_Orthographic, Matrix(), {reach + 1e-9, 9, -9, 9, 1, 99}), minimum, maximum, &turn),
                  E3DVIEWINTERSECTION_OUTSIDE);
    }
}

TEST(EyeViewVolume, A_box_beyond_different_planes_at_different_corners_is_crossing_however_far_away)
{
    for (int const orthographic : {k_Orthographic, k_Perspective})
    {
        EyeViewVolume const volume = Make(orthographic, Matrix(), {-1, 1, -1, 1, 1, 3});
        // A slab across the diagonal between the right and the top limit, clear of the corner between them.
        double const c = std::sqrt(0.5);
        Matrix const diagonal(c, c, 0, 0, -c, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
        EXPECT_EQ(Classify(volume, Vector(10, -50, -2.5), Vector(11, 50, -2), &diagonal), E3DVIEWINTERSECTION_CROSSING);
        EXPECT_EQ(Classify(volume, Vector(10, -1, -2.5), Vector(11, 1, -2), &diagonal), E3DVIEWINTERSECTION_OUTSIDE);
        // Around the volume without a corner in it.
        EXPECT_EQ(Classify(volume, Vector(-50, -0.1, -2.5), Vector(50, 0.1, -2)), E3DVIEWINTERSECTION_CROSSING);
        EXPECT_EQ(Classify(volume, Vector(-0.1, -50, -2.5), Vector(0.1, 50, -2)), E3DVIEWINTERSECTION_CROSSING);
        EXPECT_EQ(Classify(volume, Vector(-0.1, -0.1, -50), Vector(0.1, 0.1, 50)), E3DVIEWINTERSECTION_CROSSING);
    }
}

TEST(EyeViewVolume, Behind_the_apex_the_near_plane_separates)
{
    EyeViewVolume const volume = Make(k_Perspective, Matrix(), {-1, 1, -1, 1, 1, 3});
    EXPECT_EQ(Classify(volume, Vector(-50, -50, 1), Vector(50, 50, 9)), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(ClassifyPoint(volume, Vector(0, 0, 0)), E3DVIEWINTERSECTION_OUTSIDE);
}

TEST(EyeViewVolume, With_exchanged_limits_beyond_the_first_is_not_beyond_the_second)
{
    // The middle box is left of the left limit and right of the right one, and counts as left: so do its left
    // corners when the other ones are right alone.
    EyeViewVolume const volume = Make(k_Orthographic, Matrix(), {5, -5, -1, 1, 1, 3});
    EXPECT_EQ(Classify(volume, Vector(-1, -0.5, -2), Vector(1, 0.5, -1.5)), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(Classify(volume, Vector(-1, -0.5, -2), Vector(6, 0.5, -1.5)), E3DVIEWINTERSECTION_CROSSING);
    EXPECT_EQ(Classify(volume, Vector(6, -0.5, -2), Vector(7, 0.5, -1.5)), E3DVIEWINTERSECTION_OUTSIDE);
    EyeViewVolume const low = Make(k_Orthographic, Matrix(), {-1, 1, 5, -5, 1, 3});
    EXPECT_EQ(Classify(low, Vector(-0.5, -1, -2), Vector(0.5, 1, -1.5)), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(Classify(low, Vector(-0.5, -1, -2), Vector(0.5, 6, -1.5)), E3DVIEWINTERSECTION_CROSSING);
    EyeViewVolume const deep = Make(k_Orthographic, Matrix(), {-1, 1, -1, 1, 9, 1});
    EXPECT_EQ(Classify(deep, Vector(-0.5, -0.5, -5), Vector(0.5, 0.5, -4)), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(Classify(deep, Vector(-0.5, -0.5, -10), Vector(0.5, 0.5, -4)), E3DVIEWINTERSECTION_CROSSING);
}

TEST(EyeViewVolume, A_mirroring_camera_gives_right_answers)
{
    Matrix const mirror(-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    for (int const orthographic : {k_Orthographic, k_Perspective})
    {
        EyeViewVolume const volume = Make(orthographic, mirror);
        EXPECT_EQ(ClassifyPoint(volume, Vector(-1.5, 0, -1.5)), E3DVIEWINTERSECTION_INSIDE);
        EXPECT_EQ(ClassifyPoint(volume, Vector(1.6, 0, -1.5)), E3DVIEWINTERSECTION_OUTSIDE);
    }
}

// --- Numbers that are none -------------------------------------------------------------------------------------------

TEST(EyeViewVolume, A_component_of_the_box_that_is_0_or_a_NaN_does_not_meet_its_row_of_the_matrix)
{
    Matrix const placement(k_Infinity, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0.5, 0, -2, 1);
    for (int const orthographic : {k_Orthographic, k_Perspective})
    {
        EyeViewVolume const volume = Make(orthographic);
        for (double const x : {0.0, -0.0, k_NaN})
        {
            // The product of the matrices spreads NaNs over the row, which is left out.
            EXPECT_EQ(Classify(volume, Vector(x, -0.5, -0.5), Vector(x, 0.5, 0.5), &placement),
                      E3DVIEWINTERSECTION_INSIDE);
        }
    }
    // Where the row is met, its infinity is beyond a limit.
    EyeViewVolume volume = Make(k_Orthographic);
    volume.worldToView.Set(0, 0, k_Infinity);
    EXPECT_EQ(ClassifyPoint(volume, Vector(1, 0, -2)), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(ClassifyPoint(volume, Vector(0, 0, -2)), E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(Classify(volume, Vector(0, -1, -2), Vector(1, 1, -2)), E3DVIEWINTERSECTION_CROSSING);
    volume.worldToView.SetIdentity().Set(1, 1, k_Infinity);
    EXPECT_EQ(ClassifyPoint(volume, Vector(0, 1, -2)), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(ClassifyPoint(volume, Vector(0, -0.0, -2)), E3DVIEWINTERSECTION_INSIDE);
}

TEST(EyeViewVolume, What_is_left_out_leaves_the_other_terms_and_no_NaN)
{
    // A NaN would lie within the limits.
    for (double const x : {0.0, -0.0, k_NaN})
    {
        EyeViewVolume volume = Make(k_Orthographic);
        volume.worldToView.SetTranslation(Vector(99, 0, 0));
        volume.worldToView.Set(0, 0, k_Infinity);
        EXPECT_EQ(ClassifyPoint(volume, Vector(x, 0, -2)), E3DVIEWINTERSECTION_OUTSIDE);
        volume.worldToView.SetIdentity().SetTranslation(Vector(0, 99, 0));
        volume.worldToView.Set(1, 1, k_Infinity);
        EXPECT_EQ(ClassifyPoint(volume, Vector(0, x, -2)), E3DVIEWINTERSECTION_OUTSIDE);
        volume.worldToView.SetIdentity().SetTranslation(Vector(0, 0, 99));
        volume.worldToView.Set(2, 2, k_Infinity);
        EXPECT_EQ(ClassifyPoint(volume, Vector(0, 0, x)), E3DVIEWINTERSECTION_OUTSIDE);
    }
}

TEST(EyeViewVolume, A_coordinate_that_is_a_NaN_lies_within_its_limits)
{
    EyeViewVolume volume = Make(k_Orthographic);
    volume.worldToView.SetTranslation(Vector(k_NaN, 0, 0));
    EXPECT_EQ(ClassifyPoint(volume, Vector(99, 0, -2)), E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(ClassifyPoint(volume, Vector(99, 6, -2)), E3DVIEWINTERSECTION_OUTSIDE);
    volume.worldToView.SetTranslation(Vector(0, 0, k_NaN));
    EXPECT_EQ(ClassifyPoint(volume, Vector(0, 0, 99)), E3DVIEWINTERSECTION_INSIDE);

    // Of a frustum every side takes every coordinate, if only times 0: one that is no number makes all sides so.
    EyeViewVolume frustum = Make(k_Perspective);
    frustum.worldToView.SetTranslation(Vector(k_NaN, 0, 0));
    EXPECT_EQ(ClassifyPoint(frustum, Vector(99, 60, -2)), E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(ClassifyPoint(frustum, Vector(99, 60, -5)), E3DVIEWINTERSECTION_OUTSIDE);
    frustum.worldToView.SetTranslation(Vector(k_Infinity, 0, 0));
    EXPECT_EQ(ClassifyPoint(frustum, Vector(0, 60, -2)), E3DVIEWINTERSECTION_OUTSIDE);
}

TEST(EyeViewVolume, Column_3_of_the_box_matrix_takes_part_in_the_product)
{
    // Each row of the product gets its last element times the camera's translation.
    EyeViewVolume const volume = Make(k_Orthographic, Matrix().SetTranslation(Vector(10, 0, 0)));
    Matrix placement;
    placement.SetTranslation(Vector(10, 0, -2));
    EXPECT_EQ(Classify(volume, Vector(0, 0, 0), Vector(0, 1, 0), &placement), E3DVIEWINTERSECTION_INSIDE);
    placement.Set(1, 3, 1);
    EXPECT_EQ(Classify(volume, Vector(0, 0, 0), Vector(0, 1, 0), &placement), E3DVIEWINTERSECTION_CROSSING);
}
