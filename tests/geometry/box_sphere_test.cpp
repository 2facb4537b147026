#include "geometry/marked_record.h"
#include "math/box_intersection.h"
#include "support/random.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace test_support;
using Vector = C3DVector3Tpl<double>;

namespace
{

constexpr double k_Infinity = std::numeric_limits<double>::infinity();

constexpr unsigned long k_Apart = 4;
constexpr unsigned long k_Meeting = 0x10000;

Vector const k_Min(-1, -2, -3);
Vector const k_Max(4, 5, 6);

struct Answer
{
    unsigned long flags;
    tagS3DGEOMINFO info;
};

Answer Ask(Vector const & min, Vector const & max, Vector const & center, double radius, double tol)
{
    Answer answer{k_MarkedFlags, MakeMarkedRecord()};
    EXPECT_EQ(F3DLocalBoxVsSphereIntersection(min, max, center, radius, answer.flags, &answer.info, tol), 0);
    unsigned long flags = k_MarkedFlags;
    EXPECT_EQ(F3DLocalBoxVsSphereIntersection(min, max, center, radius, flags, nullptr, tol), 0);
    EXPECT_EQ(flags, answer.flags);
    return answer;
}

Answer Ask(Vector const & center, double radius, double tol = 0)
{
    return Ask(k_Min, k_Max, center, radius, tol);
}

/// The true distance of a point from the solid box.
double DistanceFromBox(Vector const & min, Vector const & max, Vector const & point)
{
    return std::hypot(point.X - std::clamp(point.X, min.X, max.X), point.Y - std::clamp(point.Y, min.Y, max.Y),
                      point.Z - std::clamp(point.Z, min.Z, max.Z));
}

/// The box from -1 to 2 on each axis, and a sphere of radius 1 whose center is beyond a face, an edge or a corner by
/// these offsets; an axis without one holds the center at 0.5.
Vector BesideBox(Vector const & offsets)
{
    Vector center;
    for (unsigned i = 0; i < 3; ++i)
    {
        double const side = offsets[i] > 0 ? 2 : -1;
        center[i] = offsets[i] == 0 ? 0.5 : side + offsets[i];
    }
    return center;
}

Answer AskBeside(Vector const & offsets)
{
    return Ask(Vector(-1, -1, -1), Vector(2, 2, 2), BesideBox(offsets), 1, 0);
}

} // namespace

TEST(BoxSphere, A_face_writes_the_components_of_its_axis_alone)
{
    struct Row
    {
        Vector center;
        unsigned axis;
        double position;
        double normal;
    };
    // Radius 1, overlapping the face by 1/4.
    Row const rows[] = {
        {Vector(4.75, 1, 1), 0, 3.75, 1},    {Vector(-1.75, 1, 1), 0, -0.75, -1}, {Vector(1, 5.75, 1), 1, 4.75, 1},
        {Vector(1, -2.75, 1), 1, -1.75, -1}, {Vector(1, 1, 6.75), 2, 5.75, 1},    {Vector(1, 1, -3.75), 2, -2.75, -1},
    };
    for (Row const & row : rows)
    {
        Answer const answer = Ask(row.center, 1);
        EXPECT_EQ(answer.flags, k_Meeting);
        EXPECT_TRUE(HasOnly(k_PositionX << row.axis | k_NormalX << row.axis | k_Distance, answer.info));
        EXPECT_EQ(answer.info.position[row.axis], row.position);
        EXPECT_EQ(answer.info.normal[row.axis], row.normal);
        EXPECT_EQ(answer.info.distance, -0.25);
    }
}

TEST(BoxSphere, A_face_is_touched_exactly_at_the_radius_less_the_tolerance)
{
    for (unsigned axis = 0; axis < 3; ++axis)
    {
        Vector center(0.5, 0.5, 0.5);
        center[axis] = k_Max[axis] + 0.75;
        EXPECT_EQ(Ask(center, 1, 0.25).flags, k_Meeting);
        center[axis] = std::nextafter(center[axis], 99);
        EXPECT_EQ(Ask(center, 1, 0.25).flags, k_Apart);
        center[axis] = k_Min[axis] - 0.75;
        EXPECT_EQ(Ask(center, 1, 0.25).flags, k_Meeting);
        center[axis] = std::nextafter(center[axis], -99);
        EXPECT_EQ(Ask(center, 1, 0.25).flags, k_Apart);
    }
}

TEST(BoxSphere, A_face_counts_as_long_as_the_center_is_over_it_edges_included)
{
    for (double const y : {-2.0, 5.0})
    {
        for (double const z : {-3.0, 6.0})
        {
            // Beyond the face of x by 1/2, and exactly over one of its corners: the face, not the corner.
            Answer const answer = Ask(Vector(4.5, y, z), 1);
            EXPECT_EQ(answer.flags, k_Meeting);
            EXPECT_TRUE(HasOnly(k_PositionX | k_NormalX | k_Distance, answer.info));
        }
    }
    // A step further in y and it is the edge.
    EXPECT_TRUE(
        HasOnly(k_PositionX | k_PositionY | k_Normal | k_Distance, Ask(Vector(4.5, std::nextafter(5, 9), 1), 1).info));
    EXPECT_TRUE(
        HasOnly(k_PositionX | k_PositionZ | k_Normal | k_Distance, Ask(Vector(4.5, 1, std::nextafter(6, 9)), 1).info));
}

TEST(BoxSphere, Deep_inside_the_first_axis_decides)
{
    Answer const answer = Ask(Vector(1, 1, 1), 0.5);
    EXPECT_EQ(answer.flags, k_Meeting);
    EXPECT_TRUE(HasOnly(k_PositionX | k_NormalX | k_Distance, answer.info));
    EXPECT_EQ(answer.info.position.X, 0.5);
    EXPECT_EQ(answer.info.normal.X, 1);
    EXPECT_EQ(answer.info.distance, -3.5);
}

TEST(BoxSphere, A_center_at_zero_of_either_sign_belongs_to_the_minimum)
{
    for (double const zero : {0.0, -0.0})
    {
        Answer const answer = Ask(Vector(zero, 1, 1), 0.5);
        EXPECT_EQ(answer.info.position.X, 0.5);
        EXPECT_EQ(answer.info.normal.X, -1);
        // The inward point has crossed the origin and is measured from the maximum.
        EXPECT_EQ(answer.info.distance, -3.5);
    }
}

TEST(BoxSphere, The_distance_is_taken_from_the_side_on_which_the_inward_point_lies)
{
    // From the minimum of x inwards: p below 0, p = 0 and p above 0.
    EXPECT_EQ(Ask(Vector(-1.5, 1, 1), 1).info.distance, -0.5);
    EXPECT_EQ(Ask(Vector(-1.5, 1, 1), 1.5).info.distance, -4);
    EXPECT_EQ(Ask(Vector(-1.5, 1, 1), 2).info.distance, -3.5);
    // From the maximum inwards: p above 0, p = 0 and p below 0.
    EXPECT_EQ(Ask(Vector(4.5, 1, 1), 1).info.distance, -0.5);
    EXPECT_EQ(Ask(Vector(4.5, 1, 1), 4.5).info.distance, -4);
    EXPECT_EQ(Ask(Vector(4.5, 1, 1), 4.75).info.distance, -0.75);
}

TEST(BoxSphere, Axes_are_tried_in_their_order)
{
    // Center inside; on x and then on y too the sphere does not reach inwards, because its radius is less than zero.
    Answer const second = Ask(Vector(3.75, 1, 1), 0, 0.5);
    EXPECT_TRUE(HasOnly(k_PositionY | k_NormalY | k_Distance, second.info)) << "x is not near";
    EXPECT_EQ(second.info.position.Y, 1.5);
    Answer const third = Ask(Vector(3.75, 4.75, 1), 0, 0.5);
    EXPECT_TRUE(HasOnly(k_PositionZ | k_NormalZ | k_Distance, third.info)) << "x and y are not near";
    EXPECT_EQ(third.info.position.Z, 1.5);
}

TEST(BoxSphere, Beyond_every_face_the_distance_is_the_least_inward_coordinate)
{
    Answer answer = Ask(Vector(14, 25, 36), 1);
    EXPECT_EQ(answer.flags, k_Apart);
    EXPECT_TRUE(HasOnly(k_Distance, answer.info));
    EXPECT_EQ(answer.info.distance, 13);
    EXPECT_EQ(Ask(Vector(14, -25, 36), 1).info.distance, -24);
    EXPECT_EQ(Ask(Vector(14, 25, -36), 1).info.distance, -35);
}

TEST(BoxSphere, Every_edge_in_reach_is_met)
{
    for (unsigned along = 0; along < 3; ++along)
    {
        unsigned const first = along == 0 ? 1 : 0;
        unsigned const second = along == 2 ? 1 : 2;
        for (double const signOfFirst : {-1.0, 1.0})
        {
            for (double const signOfSecond : {-1.0, 1.0})
            {
                Vector offsets(0, 0, 0);
                offsets[first] = 0.375 * signOfFirst;
                offsets[second] = 0.5 * signOfSecond; // 0.625 from the edge
                Answer const answer = AskBeside(offsets);
                EXPECT_EQ(answer.flags, k_Meeting);
                unsigned const axes = k_PositionX << first | k_PositionX << second;
                EXPECT_TRUE(HasOnly(axes | k_Normal | k_Distance, answer.info));
                EXPECT_EQ(answer.info.position[first], signOfFirst > 0 ? 2 : -1);
                EXPECT_EQ(answer.info.position[second], signOfSecond > 0 ? 2 : -1);
                EXPECT_EQ(answer.info.distance, -0.375);
                EXPECT_DOUBLE_EQ(answer.info.normal[first], signOfFirst * std::sqrt(0.5));
                EXPECT_DOUBLE_EQ(answer.info.normal[second], signOfSecond * std::sqrt(0.5));
                EXPECT_TRUE(SameBits(answer.info.normal[along], 0.0));
            }
        }
    }
}

TEST(BoxSphere, Every_edge_out_of_reach_gives_its_distance_alone)
{
    Vector const offsets[] = {Vector(0.75, 1, 0),   Vector(-1, 0.75, 0), Vector(0.75, 0, -1),
                              Vector(-0.75, 0, -1), Vector(0, 0.75, 1),  Vector(0, -1, 0.75)};
    for (Vector const & offset : offsets)
    {
        Answer const answer = AskBeside(offset); // 1.25 from the edge
        EXPECT_EQ(answer.flags, k_Apart);
        EXPECT_TRUE(HasOnly(k_Distance, answer.info));
        EXPECT_EQ(answer.info.distance, 0.25);
    }
}

TEST(BoxSphere, An_edge_is_touched_exactly_at_the_radius_less_the_tolerance)
{
    Vector const center(2 + 3, 2 + 4, 0.5);
    EXPECT_EQ(Ask(Vector(-1, -1, -1), Vector(2, 2, 2), center, 5.25, 0.25).flags, k_Meeting);
    EXPECT_EQ(Ask(Vector(-1, -1, -1), Vector(2, 2, 2), center, std::nextafter(5.0, 0), 0).flags, k_Apart);
    Answer const touching = Ask(Vector(-1, -1, -1), Vector(2, 2, 2), center, 5, 0);
    EXPECT_EQ(touching.flags, k_Meeting);
    EXPECT_EQ(touching.info.distance, 0);
}

TEST(BoxSphere, Edge_contacts_hold_at_both_ends_of_the_edge)
{
    for (unsigned along = 0; along < 3; ++along)
    {
        for (double const end : {-1.0, 2.0})
        {
            Vector center(2.5, 2.5, 2.5);
            center[along] = end;
            Answer const answer = Ask(Vector(-1, -1, -1), Vector(2, 2, 2), center, 1, 0);
            EXPECT_EQ(answer.flags, k_Meeting);
            unsigned const left = k_PositionX << along;
            EXPECT_TRUE(HasOnly((k_Position & ~left) | k_Normal | k_Distance, answer.info));
        }
    }
}

TEST(BoxSphere, Every_corner_in_reach_is_met)
{
    for (double const x : {-0.25, 0.25})
    {
        for (double const y : {-0.5, 0.5})
        {
            for (double const z : {-0.5, 0.5}) // 0.75 from the corner
            {
                Answer const answer = AskBeside(Vector(x, y, z));
                EXPECT_EQ(answer.flags, k_Meeting);
                EXPECT_TRUE(HasOnly(k_Position | k_Normal | k_Distance, answer.info));
                EXPECT_TRUE(SameBits(answer.info.position, Vector(x > 0 ? 2 : -1, y > 0 ? 2 : -1, z > 0 ? 2 : -1)));
                EXPECT_EQ(answer.info.distance, -0.25);
                EXPECT_DOUBLE_EQ(answer.info.normal.X, std::copysign(1 / std::sqrt(3.0), x));
                EXPECT_DOUBLE_EQ(answer.info.normal.Y, std::copysign(1 / std::sqrt(3.0), y));
                EXPECT_DOUBLE_EQ(answer.info.normal.Z, std::copysign(1 / std::sqrt(3.0), z));
            }
        }
    }
}

TEST(BoxSphere, A_corner_out_of_reach_gives_its_distance_alone)
{
    Answer const answer = AskBeside(Vector(0.5, -1, 1));
    EXPECT_EQ(answer.flags, k_Apart);
    EXPECT_TRUE(HasOnly(k_Distance, answer.info));
    EXPECT_EQ(answer.info.distance, 0.5);
    // Exactly in reach: D = 3 at radius 3.
    Vector const center = BesideBox(Vector(1, 2, 2));
    EXPECT_EQ(Ask(Vector(-1, -1, -1), Vector(2, 2, 2), center, 3, 0).flags, k_Meeting);
    EXPECT_EQ(Ask(Vector(-1, -1, -1), Vector(2, 2, 2), center, std::nextafter(3.0, 0), 0).flags, k_Apart);
}

TEST(BoxSphere, Near_axes_that_make_no_edge_write_nothing)
{
    Vector const offsets[] = {
        Vector(9, 0.5, 0.5), // x is not near, though y and z are
        Vector(9, 0.5, 0),   // x is not near, the center over z alone
        Vector(9, 0, 0),     // beyond the face of x
        Vector(0, 9, 0),     // beyond the face of y, x and z being near
        Vector(0, 0, 9),     // beyond the face of z
        Vector(0.5, 9, 0),   // y is not near
        Vector(0.5, 0, 9),   // z is not near
        Vector(0.5, 9, 0.5), // the edge of x and z, but past the end of it
        Vector(0.5, 0.5, 9), // the edge of x and y, but past the end of it
        Vector(0.5, 9, 9),   // x alone is near
    };
    for (Vector const & offset : offsets)
    {
        Answer const answer = AskBeside(offset);
        EXPECT_EQ(answer.flags, k_Apart);
        EXPECT_TRUE(HasOnly(k_NoField, answer.info));
    }
}

TEST(BoxSphere, With_the_radius_of_a_point_the_faces_are_still_met)
{
    Answer const inside = Ask(Vector(1, 1, 1), 0);
    EXPECT_EQ(inside.flags, k_Meeting);
    EXPECT_EQ(inside.info.distance, -3);
    EXPECT_EQ(Ask(Vector(4, 5, 6), 0).flags, k_Meeting);
    EXPECT_EQ(Ask(Vector(5, 1, 1), 0).flags, k_Apart);
}

TEST(BoxSphere, A_sphere_without_end_meets_everything)
{
    EXPECT_EQ(Ask(Vector(100, 100, 100), k_Infinity).flags, k_Meeting);
}

TEST(BoxSphere, A_NaN_coordinate_is_near_no_face)
{
    double const nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Ask(Vector(nan, 1, 1), 1).flags, k_Apart);
    EXPECT_EQ(Ask(Vector(1, nan, 1), 1).flags, k_Apart);
    EXPECT_EQ(Ask(Vector(1, 1, nan), 1).flags, k_Apart);
    EXPECT_EQ(Ask(Vector(1, 1, 1), nan).flags, k_Apart);
    EXPECT_EQ(Ask(Vector(1, 1, 1), 1, nan).flags, k_Apart);
}

TEST(BoxSphere, The_center_may_be_the_position_of_the_record)
{
    for (Vector const & offsets : {Vector(0.5, 0, 0), Vector(0.375, 0.5, 0), Vector(0.25, 0.5, 0.5)})
    {
        Answer const expected = AskBeside(offsets);
        tagS3DGEOMINFO info = MakeMarkedRecord();
        info.position = BesideBox(offsets);
        unsigned long flags = k_MarkedFlags;
        F3DLocalBoxVsSphereIntersection(Vector(-1, -1, -1), Vector(2, 2, 2), info.position, 1, flags, &info, 0);
        EXPECT_EQ(flags, expected.flags);
        EXPECT_EQ(info.distance, expected.info.distance);
        EXPECT_EQ(info.position.X, expected.info.position.X);
    }
}

// Over a box that holds the origin the classification is exact; its distance is that of the solids only while the
// sphere does not reach across the origin.
TEST(BoxSphere, Agrees_with_the_true_distance_for_boxes_about_the_origin)
{
    Random random(52);
    int meetings = 0;
    int distances = 0;
    for (int i = 0; i < 50000; ++i)
    {
        Vector const min(-random.Uniform(0.0, 3.0), -random.Uniform(0.0, 3.0), -random.Uniform(0.0, 3.0));
        Vector const max(random.Uniform(0.0, 3.0), random.Uniform(0.0, 3.0), random.Uniform(0.0, 3.0));
        Vector const center(random.Uniform(-5.0, 5.0), random.Uniform(-5.0, 5.0), random.Uniform(-5.0, 5.0));
        double const radius = random.Uniform(0.0, 3.0);
        double const tol = random.Uniform(0.0, radius);
        double const gap = DistanceFromBox(min, max, center) - (radius - tol);
        if (std::abs(gap) < 1e-9)
        {
            continue;
        }
        Answer const answer = Ask(min, max, center, radius, tol);
        ASSERT_EQ(answer.flags, gap < 0 ? k_Meeting : k_Apart);
        meetings += answer.flags == k_Meeting ? 1 : 0;
        bool const isFace = HasOnly(k_PositionX | k_NormalX | k_Distance, answer.info) ||
                            HasOnly(k_PositionY | k_NormalY | k_Distance, answer.info) ||
                            HasOnly(k_PositionZ | k_NormalZ | k_Distance, answer.info);
        if (answer.flags == k_Meeting && !isFace)
        {
            ASSERT_NEAR(answer.info.distance, gap, 1e-12);
            ASSERT_NEAR(answer.info.normal.GetLength(), 1, 1e-15);
            ++distances;
        }
    }
    EXPECT_GT(meetings, 1000);
    EXPECT_GT(distances, 1000);
}
