#include "geometry/world_view_volume.h"
#include "math/view_volume.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace
{

using Vector = C3DVector3Tpl<double>;
using Matrix = C3DXfoMatTpl<double>;
using math::detail::BoundingHyperplane;
using math::detail::ViewLimits;
using math::detail::WorldViewVolume;

constexpr ViewLimits k_Limits{-1, 1, -0.5, 0.5, 1, 4};
constexpr int k_Orthographic = 1;
constexpr int k_Perspective = 0;

WorldViewVolume Make(int orthographic, Matrix const & viewToWorld, ViewLimits const & limits = k_Limits)
{
    WorldViewVolume volume{};
    volume.Set(limits, viewToWorld, orthographic);
    return volume;
}

Matrix TurnedAboutX(double angle)
{
    double const c = std::cos(angle);
    double const s = std::sin(angle);
    return {1, 0, 0, 0, 0, c, s, 0, 0, -s, c, 0, 0, 0, 0, 1};
}

Matrix TurnedAboutY(double angle)
{
    double const c = std::cos(angle);
    double const s = std::sin(angle);
    return {c, 0, -s, 0, 0, 1, 0, 0, s, 0, c, 0, 0, 0, 0, 1};
}

Matrix TurnedAboutZ(double angle)
{
    double const c = std::cos(angle);
    double const s = std::sin(angle);
    return {c, s, 0, 0, -s, c, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
}

Matrix Scaled(double x, double y, double z)
{
    return {x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, 0, 0, 0, 1};
}

constexpr double k_RightAngle = 1.5707963267948966;

/// A general turn, by which no axis stays aligned.
Matrix Askew()
{
    return Matrix().Mul(Matrix().Mul(TurnedAboutX(0.4), TurnedAboutY(0.7)), TurnedAboutZ(1.1));
}

tagE3DVIEWINTERSECTION Classify(WorldViewVolume const & volume, Vector const & minimum, Vector const & maximum)
{
    Vector const box[2] = {minimum, maximum};
    return volume.Classify(box, nullptr);
}

tagE3DVIEWINTERSECTION ClassifyCube(WorldViewVolume const & volume, Vector const & centre, double half)
{
    Vector const reach(half, half, half);
    return Classify(volume, Vector().Sub(centre, reach), Vector().Add(centre, reach));
}

/// A corner of the volume with the limits above, in view space.
Vector Corner(int index, int orthographic)
{
    bool const isFar = (index & 4) != 0;
    double const factor = isFar && orthographic == 0 ? 4 : 1;
    return {(index & 1) != 0 ? factor : -factor, ((index & 2) != 0 ? 0.5 : -0.5) * factor, isFar ? -4.0 : -1.0};
}

template <int Dimension>
void ExpectFlags(BoundingHyperplane<Dimension> const & hyperplane)
{
    for (int i = 0; i < Dimension; ++i)
    {
        EXPECT_EQ(hyperplane.isNegative[i], hyperplane.normal[i] < 0 ? 1 : 0);
    }
}

double ValueAt(BoundingHyperplane<3> const & plane, Vector const & p)
{
    return plane.normal[0] * p.X + plane.normal[1] * p.Y + plane.normal[2] * p.Z + plane.offset;
}

double ValueAt(BoundingHyperplane<2> const & line, double p, double q)
{
    return line.normal[0] * p + line.normal[1] * q + line.offset;
}

} // namespace

// --- Planes ----------------------------------------------------------------------------------------------------------

TEST(WorldViewVolume, The_planes_are_near_left_right_top_bottom_far_and_point_outwards)
{
    WorldViewVolume const box = Make(k_Orthographic, Matrix());
    double const expected[6][4] = {{0, 0, 1, 1},    {-1, 0, 0, -1},   {1, 0, 0, -1},
                                   {0, 1, 0, -0.5}, {0, -1, 0, -0.5}, {0, 0, -1, -4}};
    for (int i = 0; i < 6; ++i)
    {
        for (int k = 0; k < 3; ++k)
        {
            EXPECT_EQ(box.planes[i].normal[k], expected[i][k]) << i << ' ' << k;
        }
        EXPECT_EQ(box.planes[i].offset, expected[i][3]) << i;
        ExpectFlags(box.planes[i]);
    }
}

TEST(WorldViewVolume, Each_plane_of_a_frustum_holds_its_four_corners_and_has_the_others_behind_it)
{
    int const corners[6][4] = {{0, 1, 2, 3}, {0, 2, 4, 6}, {1, 3, 5, 7}, {2, 3, 6, 7}, {0, 1, 4, 5}, {4, 5, 6, 7}};
    for (int const orthographic : {k_Orthographic, k_Perspective})
    {
        Matrix const camera = Askew().SetTranslation(Vector(3, -2, 5));
        WorldViewVolume const volume = Make(orthographic, camera);
        for (int i = 0; i < 6; ++i)
        {
            auto const & normal = volume.planes[i].normal;
            EXPECT_NEAR(std::hypot(normal[0], normal[1], normal[2]), 1, 1e-15);
            ExpectFlags(volume.planes[i]);
            std::vector<int> on;
            for (int k = 0; k < 8; ++k)
            {
                double const value = ValueAt(volume.planes[i], Vector().Mul(Corner(k, orthographic), camera));
                EXPECT_LT(value, 1e-12);
                if (value > -1e-12)
                {
                    on.push_back(k);
                }
            }
            EXPECT_EQ(on, std::vector<int>(corners[i], corners[i] + 4)) << i;
        }
    }
}

TEST(WorldViewVolume, A_mirroring_matrix_turns_the_planes_inside_out)
{
    for (int const orthographic : {k_Orthographic, k_Perspective})
    {
        Matrix const camera = Matrix().Mul(Scaled(-1, 1, 1), Askew());
        WorldViewVolume const volume = Make(orthographic, camera);
        Vector const middle = Vector().Mul(Vector(0, 0, -2), camera);
        for (auto const & plane : volume.planes)
        {
            EXPECT_GT(ValueAt(plane, middle), 0.1);
        }
    }
}

TEST(WorldViewVolume, A_mirroring_matrix_makes_a_box_inside_come_out_as_outside)
{
    Matrix const camera = Matrix().Mul(Scaled(-1, 1, 1), Askew());
    for (int const orthographic : {k_Orthographic, k_Perspective})
    {
        WorldViewVolume const volume = Make(orthographic, camera);
        // In the middle; across the right plane alone; across all planes, but within the bounds along X.
        EXPECT_EQ(ClassifyCube(volume, Vector().Mul(Vector(0, 0, -2), camera), 0.01), E3DVIEWINTERSECTION_OUTSIDE);
        EXPECT_EQ(ClassifyCube(volume, Vector().Mul(Vector(orthographic != 0 ? 1 : 2, 0, -2), camera), 0.01),
                  E3DVIEWINTERSECTION_OUTSIDE);
        Vector const reach(100, 100, 100);
        EXPECT_EQ(Classify(volume, Vector().Sub(Vector(volume.minimum.X + 0.01, 0, 0), Vector(0, 100, 100)), reach),
                  E3DVIEWINTERSECTION_CROSSING);
        EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, 0), 100), E3DVIEWINTERSECTION_CROSSING);
        EXPECT_EQ(ClassifyCube(volume, Vector(50, 0, 0), 1), E3DVIEWINTERSECTION_OUTSIDE);
    }
}

TEST(WorldViewVolume, Exchanged_limits_turn_the_planes_too_and_a_second_exchange_turns_them_back)
{
    Matrix const camera = Askew();
    Vector const middle = Vector().Mul(Vector(0, 0, -2), camera);
    EXPECT_EQ(ClassifyCube(Make(k_Perspective, camera, {1, -1, -0.5, 0.5, 1, 4}), middle, 0.01),
              E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(ClassifyCube(Make(k_Perspective, camera, {1, -1, 0.5, -0.5, 1, 4}), middle, 0.01),
              E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(ClassifyCube(Make(k_Perspective, Matrix().Mul(Scaled(-1, 1, 1), camera), {1, -1, -0.5, 0.5, 1, 4}),
                           middle, 0.01),
              E3DVIEWINTERSECTION_INSIDE);
}

TEST(WorldViewVolume, A_mirrored_box_along_the_axes_is_right_all_the_same)
{
    WorldViewVolume const volume = Make(k_Orthographic, Scaled(-1, 1, 1));
    EXPECT_EQ(volume.alignedAxes, 7);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, -2), 0.1), E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(ClassifyCube(volume, Vector(1, 0, -2), 0.1), E3DVIEWINTERSECTION_CROSSING);
}

TEST(WorldViewVolume, A_normal_not_longer_than_the_tolerance_stays_as_it_is)
{
    // The near face measures 0.5e-6 by 1e-6, the top face 0.5e-6 by 3.8e-6.
    WorldViewVolume const volume = Make(k_Orthographic, Matrix(), {0, 0.5e-6, 0, 1e-6, 1, 1 + 0x1p-18});
    EXPECT_LT(volume.planes[0].normal[2], 1e-12);
    EXPECT_GT(volume.planes[0].normal[2], 0.4e-12);
    EXPECT_EQ(volume.planes[3].normal[1], 1);
}

// --- Aligned axes ----------------------------------------------------------------------------------------------------

TEST(WorldViewVolume, The_mask_tells_along_which_axes_the_silhouette_adds_nothing)
{
    struct Row
    {
        int orthographic;
        Matrix camera;
        int mask;
    };
    Row const rows[] = {{k_Orthographic, Matrix(), 7},
                        {k_Orthographic, TurnedAboutX(k_RightAngle), 7},
                        {k_Orthographic, TurnedAboutY(-k_RightAngle), 7},
                        {k_Orthographic, TurnedAboutZ(2 * k_RightAngle), 7},
                        {k_Orthographic, Scaled(2, 3, 4), 7},
                        {k_Orthographic, TurnedAboutX(0.3), 1},
                        {k_Orthographic, TurnedAboutY(0.3), 2},
                        {k_Orthographic, TurnedAboutZ(0.3), 4},
                        {k_Orthographic, Askew(), 0},
                        {k_Perspective, Matrix(), 3},
                        {k_Perspective, TurnedAboutZ(k_RightAngle), 3},
                        {k_Perspective, TurnedAboutX(k_RightAngle), 5},
                        {k_Perspective, TurnedAboutY(k_RightAngle), 6},
                        {k_Perspective, TurnedAboutX(0.3), 1},
                        {k_Perspective, TurnedAboutY(0.3), 2},
                        {k_Perspective, TurnedAboutZ(0.3), 0},
                        {k_Perspective, Askew(), 0}};
    for (Row const & row : rows)
    {
        EXPECT_EQ(Make(row.orthographic, row.camera).alignedAxes, row.mask) << &row - rows;
    }
}

TEST(WorldViewVolume, A_frustum_whose_left_and_top_planes_are_seen_edge_on_still_has_a_silhouette)
{
    // Its right and bottom planes are not.
    EXPECT_EQ(Make(k_Perspective, Matrix(), {0, 1, -1, 0, 1, 4}).alignedAxes, 3);
    EXPECT_EQ(Make(k_Orthographic, Matrix(), {0, 1, -1, 0, 1, 4}).alignedAxes, 7);
}

TEST(WorldViewVolume, Components_of_normals_below_the_tolerance_count_as_zero)
{
    EXPECT_EQ(Make(k_Orthographic, TurnedAboutZ(0.99e-12)).alignedAxes, 7);
    EXPECT_EQ(Make(k_Orthographic, TurnedAboutZ(1.01e-12)).alignedAxes, 4);
    EXPECT_EQ(Make(k_Orthographic, TurnedAboutX(-0.99e-12)).alignedAxes, 7);
    EXPECT_EQ(Make(k_Orthographic, TurnedAboutX(-1.01e-12)).alignedAxes, 1);
}

// --- Silhouettes -----------------------------------------------------------------------------------------------------

TEST(WorldViewVolume, A_volume_along_the_axes_has_no_lines)
{
    WorldViewVolume volume = Make(k_Perspective, Askew());
    volume.Set(k_Limits, Matrix(), k_Orthographic);
    for (int const count : volume.lineCounts)
    {
        EXPECT_EQ(count, 0);
    }
}

TEST(WorldViewVolume, A_frustum_along_the_axes_has_the_far_rectangle_as_its_one_silhouette)
{
    WorldViewVolume const volume = Make(k_Perspective, Matrix());
    EXPECT_EQ(volume.lineCounts[0], 0);
    EXPECT_EQ(volume.lineCounts[1], 0);
    ASSERT_EQ(volume.lineCounts[2], 4);
    // In the order of the edges: bottom, top, left, right.
    double const expected[4][3] = {{0, -1, -2}, {0, 1, -2}, {-1, 0, -4}, {1, 0, -4}};
    for (int i = 0; i < 4; ++i)
    {
        auto const & line = volume.lines[2][i];
        EXPECT_EQ(line.normal[0], expected[i][0]) << i;
        EXPECT_EQ(line.normal[1], expected[i][1]) << i;
        EXPECT_EQ(line.offset, expected[i][2]) << i;
        ExpectFlags(line);
    }
}

namespace
{

constexpr int k_ProjectionAxes[3][2] = {{1, 2}, {0, 2}, {0, 1}};

/// The edges as pairs of corners, in the order in which their lines stand.
constexpr int k_EdgeCorners[12][2] = {{0, 1}, {3, 2}, {2, 0}, {1, 3}, {0, 4}, {5, 1},
                                      {6, 2}, {3, 7}, {5, 4}, {6, 7}, {4, 6}, {7, 5}};

/// The edges that bound the projection along an axis: those of the convex hull, found by trying all corners.
std::vector<int> HullEdges(Matrix const & camera, int orthographic, int axis)
{
    auto const p = static_cast<unsigned long>(k_ProjectionAxes[axis][0]);
    auto const q = static_cast<unsigned long>(k_ProjectionAxes[axis][1]);
    std::vector<int> edges;
    for (int i = 0; i < 12; ++i)
    {
        Vector const a = Vector().Mul(Corner(k_EdgeCorners[i][0], orthographic), camera);
        Vector const b = Vector().Mul(Corner(k_EdgeCorners[i][1], orthographic), camera);
        int left = 0;
        int right = 0;
        for (int k = 0; k < 8; ++k)
        {
            Vector const c = Vector().Mul(Corner(k, orthographic), camera);
            double const turn = (b[p] - a[p]) * (c[q] - a[q]) - (b[q] - a[q]) * (c[p] - a[p]);
            left += turn > 1e-9 ? 1 : 0;
            right += turn < -1e-9 ? 1 : 0;
        }
        if (left == 0 || right == 0)
        {
            edges.push_back(i);
        }
    }
    return edges;
}

} // namespace

TEST(WorldViewVolume, The_lines_are_the_edges_of_the_projections_hull_pointing_outwards)
{
    for (int const orthographic : {k_Orthographic, k_Perspective})
    {
        for (double const turn : {0.0, 1.0, 2.0, 3.0, 4.0, 5.0})
        {
            Matrix const camera = Matrix().Mul(Askew(), TurnedAboutY(turn)).SetTranslation(Vector(3, -2, 5));
            WorldViewVolume const volume = Make(orthographic, camera);
            ASSERT_EQ(volume.alignedAxes, 0);
            for (int axis = 0; axis < 3; ++axis)
            {
                std::vector<int> const edges = HullEdges(camera, orthographic, axis);
                ASSERT_EQ(volume.lineCounts[axis], static_cast<int>(edges.size()));
                auto const p = static_cast<unsigned long>(k_ProjectionAxes[axis][0]);
                auto const q = static_cast<unsigned long>(k_ProjectionAxes[axis][1]);
                for (int i = 0; i < volume.lineCounts[axis]; ++i)
                {
                    auto const & line = volume.lines[axis][i];
                    ExpectFlags(line);
                    EXPECT_NEAR(std::hypot(line.normal[0], line.normal[1]), 1, 1e-15);
                    for (int k = 0; k < 8; ++k)
                    {
                        Vector const c = Vector().Mul(Corner(k, orthographic), camera);
                        EXPECT_LT(ValueAt(line, c[p], c[q]), 1e-12);
                    }
                    for (int const end : k_EdgeCorners[edges[static_cast<std::size_t>(i)]])
                    {
                        Vector const c = Vector().Mul(Corner(end, orthographic), camera);
                        EXPECT_NEAR(ValueAt(line, c[p], c[q]), 0, 1e-12);
                    }
                }
            }
        }
    }
}

TEST(WorldViewVolume, An_edge_seen_end_on_makes_no_line)
{
    // About Z: the two planes of a long edge are seen edge-on from Z, and so is the edge. About X or Y lines remain.
    WorldViewVolume const volume = Make(k_Orthographic, TurnedAboutZ(0.3));
    EXPECT_EQ(volume.lineCounts[2], 0);
    // From X the edges along Z and those of the near and far rectangles: two planes that are seen edge-on bound too.
    EXPECT_EQ(volume.lineCounts[0], 10);
    EXPECT_EQ(volume.lineCounts[1], 10);
    Vector const middle(0, 0, -2.5);
    for (int axis = 0; axis < 2; ++axis)
    {
        for (int i = 0; i < volume.lineCounts[axis]; ++i)
        {
            EXPECT_LT(ValueAt(volume.lines[axis][i], middle.Get(k_ProjectionAxes[axis][0]), -2.5), -0.1);
        }
    }
    // A frustum whose long edge 0 to 4 lies along Z.
    WorldViewVolume const corner = Make(k_Perspective, Matrix(), {0, 1, 0, 1, 1, 4});
    EXPECT_EQ(corner.alignedAxes, 3);
    for (int i = 0; i < corner.lineCounts[2]; ++i)
    {
        EXPECT_NEAR(std::hypot(corner.lines[2][i].normal[0], corner.lines[2][i].normal[1]), 1, 1e-15);
    }
    EXPECT_EQ(corner.lineCounts[2], 8);
}

TEST(WorldViewVolume, Every_line_of_the_silhouettes_separates)
{
    for (int const orthographic : {k_Orthographic, k_Perspective})
    {
        Matrix const camera = Askew();
        WorldViewVolume const volume = Make(orthographic, camera);
        int separatedByLineAlone = 0;
        for (int axis = 0; axis < 3; ++axis)
        {
            std::vector<int> const edges = HullEdges(camera, orthographic, axis);
            for (int i = 0; i < volume.lineCounts[axis]; ++i)
            {
                // A box with a corner in the projection just beyond the middle of the edge, the other corners farther
                // out, and as long along the axis as the volume's bounds.
                auto const & ends = k_EdgeCorners[edges[static_cast<std::size_t>(i)]];
                Vector const middle = Vector().SetMidpoint(Vector().Mul(Corner(ends[0], orthographic), camera),
                                                           Vector().Mul(Corner(ends[1], orthographic), camera));
                for (double const distance : {-1e-6, 1e-6})
                {
                    Vector minimum = volume.minimum;
                    Vector maximum = volume.maximum;
                    for (int k = 0; k < 2; ++k)
                    {
                        auto const coordinate = static_cast<unsigned long>(k_ProjectionAxes[axis][k]);
                        double const normal = volume.lines[axis][i].normal[k];
                        double const near = middle[coordinate] + distance * normal;
                        minimum[coordinate] = normal < 0 ? near - 0.3 : near;
                        maximum[coordinate] = normal < 0 ? near : near + 0.3;
                    }
                    tagE3DVIEWINTERSECTION const answer = Classify(volume, minimum, maximum);
                    EXPECT_EQ(answer, distance > 0 ? E3DVIEWINTERSECTION_OUTSIDE : E3DVIEWINTERSECTION_CROSSING)
                        << axis << ' ' << i;
                    WorldViewVolume without = volume;
                    without.lineCounts[axis] = 0;
                    separatedByLineAlone += Classify(without, minimum, maximum) != answer ? 1 : 0;
                }
            }
        }
        EXPECT_GE(separatedByLineAlone, 12);
    }
}

// --- Stages of Classify ----------------------------------------------------------------------------------------------

TEST(WorldViewVolume, Touching_the_bounds_of_a_box_volume_is_crossing_and_beyond_them_is_outside)
{
    WorldViewVolume const volume = Make(k_Orthographic, Matrix());
    struct Row
    {
        Vector touching;
        Vector away;
    };
    Row const rows[] = {{{1.25, 0, -2}, {1, 0, 0}},   {{-1.25, 0, -2}, {-1, 0, 0}}, {{0, 0.75, -2}, {0, 1, 0}},
                        {{0, -0.75, -2}, {0, -1, 0}}, {{0, 0, -0.75}, {0, 0, 1}},   {{0, 0, -4.25}, {0, 0, -1}}};
    for (Row const & row : rows)
    {
        EXPECT_EQ(ClassifyCube(volume, row.touching, 0.25), E3DVIEWINTERSECTION_CROSSING);
        Vector const beyond = Vector().Mul(row.away, 1e-15).Add(row.touching);
        EXPECT_EQ(ClassifyCube(volume, beyond, 0.25), E3DVIEWINTERSECTION_OUTSIDE);
        Vector const within = Vector().Mul(row.away, -0.5).Add(row.touching);
        EXPECT_EQ(ClassifyCube(volume, within, 0.25), E3DVIEWINTERSECTION_INSIDE);
        Vector const reaching = Vector().Mul(row.away, 1e-15).Add(within);
        EXPECT_EQ(ClassifyCube(volume, reaching, 0.25), E3DVIEWINTERSECTION_CROSSING);
    }
}

TEST(WorldViewVolume, A_box_that_touches_the_bounds_of_a_frustum_goes_on_to_the_planes)
{
    WorldViewVolume const volume = Make(k_Perspective, Matrix());
    // At the far right edge, which is part of the volume; and at the near plane's depth, where the volume is narrow.
    EXPECT_EQ(Classify(volume, Vector(4, -1, -5), Vector(5, 1, -3)), E3DVIEWINTERSECTION_CROSSING);
    EXPECT_EQ(Classify(volume, Vector(4, -1, -3), Vector(5, 1, -1)), E3DVIEWINTERSECTION_OUTSIDE);
    EXPECT_EQ(Classify(volume, Vector(std::nextafter(4.0, 5), -1, -5), Vector(5, 1, -3)), E3DVIEWINTERSECTION_OUTSIDE);
}

TEST(WorldViewVolume, A_box_that_contains_the_bounds_is_crossing_though_a_plane_would_say_outside)
{
    WorldViewVolume volume = Make(k_Perspective, Matrix());
    volume.planes[0].offset = 1000;
    EXPECT_EQ(Classify(volume, volume.minimum, volume.maximum), E3DVIEWINTERSECTION_CROSSING);
    for (unsigned long axis = 0; axis < 3; ++axis)
    {
        Vector minimum = volume.minimum;
        minimum[axis] += 1e-9;
        EXPECT_EQ(Classify(volume, minimum, volume.maximum), E3DVIEWINTERSECTION_OUTSIDE);
        Vector maximum = volume.maximum;
        maximum[axis] -= 1e-9;
        EXPECT_EQ(Classify(volume, volume.minimum, maximum), E3DVIEWINTERSECTION_OUTSIDE);
    }
}

TEST(WorldViewVolume, A_box_that_touches_a_plane_from_outside_or_inside_is_crossing)
{
    // Planes at 45 degrees with exact values: the unit normal's equal components cancel.
    WorldViewVolume const volume = Make(k_Perspective, Matrix(), {-1, 1, -1, 1, 1, 4});
    for (double const sign : {-1.0, 1.0})
    {
        auto const classify = [&](double from, double to)
        {
            return Classify(volume, Vector(std::min(sign * from, sign * to), -0.5, -2.5),
                            Vector(std::max(sign * from, sign * to), 0.5, -2));
        };
        EXPECT_EQ(classify(2.5, 3), E3DVIEWINTERSECTION_CROSSING);
        EXPECT_EQ(classify(2.5 + 1e-12, 3), E3DVIEWINTERSECTION_OUTSIDE);
        EXPECT_EQ(classify(1, 2), E3DVIEWINTERSECTION_CROSSING);
        EXPECT_EQ(classify(1, 2 - 1e-12), E3DVIEWINTERSECTION_INSIDE);
    }
}

TEST(WorldViewVolume, Each_plane_separates_and_is_crossed)
{
    for (int const orthographic : {k_Orthographic, k_Perspective})
    {
        Matrix const camera = Askew();
        WorldViewVolume const volume = Make(orthographic, camera);
        double const half = 0.01;
        for (auto const & plane : volume.planes)
        {
            // The middle of the face.
            Vector middle(0, 0, 0);
            int count = 0;
            for (int k = 0; k < 8; ++k)
            {
                Vector const corner = Vector().Mul(Corner(k, orthographic), camera);
                bool const isOnPlane = ValueAt(plane, corner) > -1e-9;
                middle.Add(isOnPlane ? corner : Vector(0, 0, 0));
                count += isOnPlane ? 1 : 0;
            }
            ASSERT_EQ(count, 4);
            middle.Mul(0.25);
            Vector const normal(plane.normal);
            double const reach = half * (std::abs(normal.X) + std::abs(normal.Y) + std::abs(normal.Z));
            auto const at = [&](double distance)
            { return ClassifyCube(volume, Vector().Mul(normal, distance).Add(middle), half); };
            EXPECT_EQ(at(0), E3DVIEWINTERSECTION_CROSSING);
            EXPECT_EQ(at(reach - 1e-9), E3DVIEWINTERSECTION_CROSSING);
            EXPECT_EQ(at(reach + 1e-9), E3DVIEWINTERSECTION_OUTSIDE);
            EXPECT_EQ(at(-reach + 1e-9), E3DVIEWINTERSECTION_CROSSING);
            EXPECT_EQ(at(-reach - 1e-9), E3DVIEWINTERSECTION_INSIDE);
        }
    }
}

TEST(WorldViewVolume, A_placed_box_is_taken_as_its_bounds_along_the_axes)
{
    WorldViewVolume const volume = Make(k_Orthographic, Matrix());
    // A cube of half size 0.3, turned by 45 degrees, has bounds of 0.3 times the square root of 2.
    Vector const cube[2] = {Vector(-0.3, -0.1, -0.3), Vector(0.3, 0.1, 0.3)};
    Matrix camera = TurnedAboutZ(k_RightAngle / 2);
    double const reach = 0.4 * std::sqrt(0.5);
    auto const classify = [&](double x) { return volume.Classify(cube, &camera.SetTranslation(Vector(x, 0, -2))); };
    EXPECT_EQ(classify(1 - reach - 1e-9), E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(classify(1 - reach + 1e-9), E3DVIEWINTERSECTION_CROSSING);
    EXPECT_EQ(classify(1 + reach - 1e-9), E3DVIEWINTERSECTION_CROSSING);
    EXPECT_EQ(classify(1 + reach + 1e-9), E3DVIEWINTERSECTION_OUTSIDE);
    // The lower corner counts as the upper one does.
    EXPECT_EQ(classify(-1 + reach + 1e-9), E3DVIEWINTERSECTION_INSIDE);
    EXPECT_EQ(classify(-1 - reach - 1e-9), E3DVIEWINTERSECTION_OUTSIDE);
}

TEST(WorldViewVolume, Each_element_of_the_box_matrix_counts_in_its_row_and_column)
{
    // A volume that is the bounds of the placed box, so that a tenth of a percent more on any one element leaves it.
    Vector const box[2] = {Vector(-1, 2, -5), Vector(3, 7, -4)};
    Matrix const placement(2, 3, -5, 0, -7, 11, 13, 0, 17, -19, 23, 0, 29, 31, -37, 1);
    Vector minimum(1e9, 1e9, 1e9);
    Vector maximum(-1e9, -1e9, -1e9);
    for (unsigned i = 0; i < 8; ++i)
    {
        Vector const corner(box[i & 1].X, box[i >> 1 & 1].Y, box[i >> 2 & 1].Z);
        Vector const image = Vector().Mul(corner, placement);
        for (unsigned long axis = 0; axis < 3; ++axis)
        {
            minimum[axis] = std::min(minimum[axis], image[axis]);
            maximum[axis] = std::max(maximum[axis], image[axis]);
        }
    }
    WorldViewVolume const volume =
        Make(k_Orthographic, Matrix(), {minimum.X, maximum.X, minimum.Y, maximum.Y, -maximum.Z, -minimum.Z});
    ASSERT_EQ(volume.alignedAxes, 7);
    EXPECT_EQ(volume.Classify(box, &placement), E3DVIEWINTERSECTION_INSIDE);
    for (int r = 0; r < 4; ++r)
    {
        for (int c = 0; c < 3; ++c)
        {
            Matrix changed = placement;
            changed.Set(r, c, placement.Get(r, c) * 1.001);
            EXPECT_EQ(volume.Classify(box, &changed), E3DVIEWINTERSECTION_CROSSING) << r << ' ' << c;
        }
    }
    Matrix lastColumn = placement;
    lastColumn.SetCol(3, 4, 5, 6, std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(volume.Classify(box, &lastColumn), E3DVIEWINTERSECTION_INSIDE);
}

TEST(WorldViewVolume, A_volume_of_NaNs_finds_nothing_outside)
{
    double const nan = std::numeric_limits<double>::quiet_NaN();
    Matrix const camera = Matrix().SetTranslation(Vector(nan, nan, nan));
    WorldViewVolume const volume = Make(k_Perspective, camera);
    EXPECT_EQ(volume.alignedAxes, 0);
    // No product of two NaNs is positive, and no length that is a NaN is above the tolerance.
    EXPECT_EQ(volume.lineCounts[0] + volume.lineCounts[1] + volume.lineCounts[2], 0);
    EXPECT_EQ(ClassifyCube(volume, Vector(0, 0, 0), 1), E3DVIEWINTERSECTION_INSIDE);
}

TEST(WorldViewVolume, A_large_volume_with_an_edge_along_an_axis_but_for_rounding_can_lose_a_box)
{
    // A quarter turn by sines and cosines. The edge from corner 0 to corner 4 would lie along Z and make no line; its
    // ends differ by rounding alone, by more than the tolerance, and so in a direction that means nothing.
    double const e = 6.123233995736766e-17;
    Matrix const camera(-e, -1, -2 * e, 0, 1, -e, -2 * e, 0, 2 * e, -2 * e, 1, 0, 12345, 6172.5, 4115, 1);
    ViewLimits const limits{0, 1000, 0, 1000, 1000, 10000};
    // Across the far plane, well within the sides.
    Vector const middle = Vector().Mul(Vector(1000, 3000, -10000), camera);
    EXPECT_EQ(ClassifyCube(Make(k_Perspective, camera, limits), middle, 10), E3DVIEWINTERSECTION_OUTSIDE);
    // At a tenth of the size it is found.
    ViewLimits const smaller{0, 100, 0, 100, 100, 1000};
    Matrix nearer = camera;
    nearer.SetTranslation(Vector(1234.5, 617.25, 411.5));
    Vector const nearerMiddle = Vector().Mul(Vector(100, 300, -1000), nearer);
    EXPECT_EQ(ClassifyCube(Make(k_Perspective, nearer, smaller), nearerMiddle, 1), E3DVIEWINTERSECTION_CROSSING);
}
