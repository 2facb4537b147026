/// Distances from a plane, feet and mirror images.

#include "math/plane.h"

#include "geometry/plane_parts.h"
#include "math/platform/result.h"

#include <numbers>

using namespace geometry_test;

namespace
{

constexpr double k_CosineOfOneDegree = 0.9998476951564;
constexpr double k_Degree = std::numbers::pi / 180;

/// Normal (0, 0, 6), tangents (2, 0, 0) and (0, 12, 0).
C3DPlane LevelPlane()
{
    return {Vector(1, 2, 3), Vector(2, 0, 0), Vector(5, 3, 0)};
}

/// Orthogonal tangents of any lengths, unit normal.
C3DPlane RandomOrthogonalPlane(Random & random)
{
    C3DPlane plane;
    plane.SetOrigin(RandomVector(random, 3));
    Vector const first = RandomVector(random, 3);
    plane.SetTangents(first, RandomVector(random, 3));
    return plane;
}

/// The foot of a point by least squares, whatever the angle of the tangents.
Vector FootByLeastSquares(PlaneParts const & plane, Vector const & point)
{
    Eigen::Matrix<double, 3, 2> tangents;
    tangents << ToEigen(plane.first), ToEigen(plane.second);
    Eigen::Vector3d const origin = ToEigen(plane.origin);
    Eigen::Vector2d const uv = tangents.colPivHouseholderQr().solve(ToEigen(point) - origin);
    return FromEigen(origin + tangents * uv);
}

Vector InPlane(double angle)
{
    return {std::cos(angle), std::sin(angle), 0};
}

/// At an angle from Z.
Vector Inclined(double angle)
{
    return {std::sin(angle), 0, std::cos(angle)};
}

} // namespace

TEST(PlaneProjection, Distance_is_never_negative_and_does_not_depend_on_the_length_of_the_normal)
{
    for (double const height : {5.0, -5.0})
    {
        double distance = k_Mark;
        EXPECT_EQ(LevelPlane().GetDistanceFrom(Vector(70, -80, 3 + height), distance), 0);
        EXPECT_DOUBLE_EQ(distance, 5);
        EXPECT_DOUBLE_EQ(LevelPlane().GetSignedDistanceFrom(Vector(70, -80, 3 + height)), height);
    }
}

TEST(PlaneProjection, Distance_along_a_normal_whose_square_is_below_its_limit_is_that_from_the_origin)
{
    for (double const length : {0.0, Below(1e-6)})
    {
        double distance = k_Mark;
        C3DPlane(Vector(1, 2, 3), Vector(0, 0, length)).GetDistanceFrom(Vector(4, 6, 3), distance);
        EXPECT_EQ(distance, 5) << length;
    }
    double distance = k_Mark;
    C3DPlane(Vector(1, 2, 3), Vector(0, 0, 1e-6)).GetDistanceFrom(Vector(4, 6, 5), distance);
    EXPECT_NEAR(distance, 2, 1e-12);
}

TEST(PlaneProjection, Signed_distance_uses_a_normal_not_above_its_limit_as_it_is)
{
    Vector const point(4, 6, 5);
    EXPECT_EQ(C3DPlane(Vector(1, 2, 3), Vector(0, 0, 0)).GetSignedDistanceFrom(point), 0);
    EXPECT_EQ(C3DPlane(Vector(1, 2, 3), Vector(0, 0, -1e-12)).GetSignedDistanceFrom(point), -2e-12);
    EXPECT_NEAR(C3DPlane(Vector(1, 2, 3), Vector(0, 0, -Above(1e-12))).GetSignedDistanceFrom(point), -2, 1e-12);
}

TEST(PlaneProjection, ProjectOn_counts_in_tangents)
{
    double u = k_Mark;
    double v = k_Mark;
    EXPECT_EQ(LevelPlane().ProjectOn(Vector(5, 26, -50), u, v), 0);
    EXPECT_EQ(u, 2);
    EXPECT_EQ(v, 2);
}

TEST(PlaneProjection, ProjectOn_returns_the_parameters_of_orthogonal_tangents_alone)
{
    Random random(511);
    for (int i = 0; i < 200; ++i)
    {
        C3DPlane const plane = RandomOrthogonalPlane(random);
        double const u = random.Uniform(-2.0, 2.0);
        double const v = random.Uniform(-2.0, 2.0);
        Vector point;
        plane.GetPos(u, v, point);
        double foundU = 0;
        double foundV = 0;
        EXPECT_EQ(plane.ProjectOn(point, foundU, foundV), 0);
        EXPECT_NEAR(foundU, u, 1e-8);
        EXPECT_NEAR(foundV, v, 1e-8);
    }
    double u = 0;
    double v = 0;
    PlaneOfTangents(Vector(0, 0, 0), Vector(1, 0, 0), Vector(1, 1, 0)).ProjectOn(Vector(1, 1, 0), u, v);
    EXPECT_EQ(u, 1) << "the second tangent alone leads there";
    EXPECT_EQ(v, 1);
}

TEST(PlaneProjection, ProjectOn_without_a_first_tangent_leaves_v)
{
    C3DPlane const plane = PlaneOfTangents(Vector(1, 2, 3), Vector(1e-170, 0, 0), Vector(0, 2, 0));
    double u = k_Mark;
    double v = k_Mark;
    EXPECT_EQ(plane.ProjectOn(Vector(6, 7, 8), u, v), E_UNEXPECTED);
    EXPECT_EQ(u, 5e-170) << "the plain product";
    EXPECT_EQ(v, k_Mark);
    EXPECT_EQ(C3DPlane(Vector(1, 2, 3), Vector(0, 0, 0)).ProjectOn(Vector(6, 7, 8), u, v), E_UNEXPECTED);
    EXPECT_EQ(u, 0);
    EXPECT_EQ(v, k_Mark);
}

TEST(PlaneProjection, ProjectOn_without_a_second_tangent_leaves_the_plain_product)
{
    C3DPlane const plane = PlaneOfTangents(Vector(1, 2, 3), Vector(2, 0, 0), Vector(0, 1e-170, 0));
    double u = k_Mark;
    double v = k_Mark;
    EXPECT_EQ(plane.ProjectOn(Vector(6, 7, 8), u, v), E_UNEXPECTED);
    EXPECT_EQ(u, 2.5);
    EXPECT_EQ(v, 5e-170);
}

TEST(PlaneProjection, ProjectOn_divides_by_the_least_square_that_is_not_zero)
{
    C3DPlane const plane = PlaneOfTangents(Vector(0, 0, 0), Vector(1e-160, 0, 0), Vector(0, 1e-160, 0));
    double u = k_Mark;
    double v = k_Mark;
    EXPECT_EQ(plane.ProjectOn(Vector(3e-160, -4e-160, 0), u, v), 0);
    EXPECT_NEAR(u, 3, 1e-2);
    EXPECT_NEAR(v, -4, 1e-2);
}

TEST(PlaneProjection, A_point_projects_on_its_foot)
{
    Vector out = MarkedVector();
    EXPECT_EQ(LevelPlane().ProjectPoint(Vector(5, 26, -50), out), 0);
    EXPECT_TRUE(Same(out, Vector(5, 26, 3)));
    Random random(512);
    for (int i = 0; i < 200; ++i)
    {
        C3DPlane const plane = RandomOrthogonalPlane(random);
        Vector const point = RandomVector(random, 5);
        Vector foot;
        plane.ProjectPoint(point, foot);
        EXPECT_TRUE(IsNear(foot, FootByLeastSquares(PlaneParts(plane), point), 1e-8));
        Vector inPlace(point);
        plane.ProjectPoint(inPlace, inPlace);
        EXPECT_TRUE(SameBits(inPlace, foot));
        double distance = 0;
        plane.GetDistanceFrom(point, distance);
        EXPECT_NEAR(GetDistance(foot, point), distance, 1e-8);
    }
}

TEST(PlaneProjection, Skew_tangents_take_a_point_astray)
{
    C3DPlane const plane = PlaneOfTangents(Vector(0, 0, 0), Vector(1, 0, 0), Vector(1, 1, 0));
    Vector out;
    plane.ProjectPoint(Vector(1, 1, 9), out);
    EXPECT_TRUE(Same(out, Vector(2, 1, 0))) << "both products count whole";
}

TEST(PlaneProjection, A_point_projects_without_null_tangents)
{
    Vector const point(6, 7, 8);
    Vector out = MarkedVector();
    EXPECT_EQ(C3DPlane(Vector(1, 2, 3), Vector(0, 0, 0)).ProjectPoint(point, out), 0);
    EXPECT_TRUE(Same(out, Vector(1, 2, 3)));
    // Without a first tangent the second is not looked at; without a second one the first is.
    EXPECT_EQ(PlaneOfTangents(Vector(1, 2, 3), Vector(0, 0, 0), Vector(0, 2, 0)).ProjectPoint(point, out), 0);
    EXPECT_TRUE(Same(out, Vector(1, 2, 3)));
    EXPECT_EQ(PlaneOfTangents(Vector(1, 2, 3), Vector(2, 0, 0), Vector(0, 0, 0)).ProjectPoint(point, out), 0);
    EXPECT_TRUE(Same(out, Vector(6, 2, 3)));
}

TEST(PlaneProjection, A_vector_projects_whatever_the_origin)
{
    Vector out = MarkedVector();
    EXPECT_EQ(LevelPlane().ProjectVector(Vector(4, 5, 6), out), 0);
    EXPECT_TRUE(Same(out, Vector(4, 5, 0)));
    out = Vector(4, 5, 6);
    LevelPlane().ProjectVector(out, out);
    EXPECT_TRUE(Same(out, Vector(4, 5, 0)));
    PlaneOfTangents(Vector(1, 2, 3), Vector(0, 0, 0), Vector(0, 2, 0)).ProjectVector(Vector(4, 5, 6), out);
    EXPECT_TRUE(Same(out, Vector(0, 0, 0)));
}

TEST(PlaneProjection, A_vector_projects_as_a_difference_of_points)
{
    C3DPlane const far(Vector(1e17, 0, 0), E3D_AXIS_Z);
    Vector out;
    far.ProjectVector(Vector(1, 1, 0), out);
    EXPECT_TRUE(Same(out, Vector(0, 1, 0))) << "the origin has swallowed the component along it";
    far.ProjectVectorOrthogonally(Vector(1, 1, 0), out, 1);
    EXPECT_TRUE(Same(out, Vector(0, 1, 0)));
}

TEST(PlaneProjection, A_vector_projects_orthogonally)
{
    Vector out = MarkedVector();
    EXPECT_EQ(LevelPlane().ProjectVectorOrthogonally(Vector(4, 5, 6), out, 0.99), 0);
    EXPECT_TRUE(Same(out, Vector(4, 5, 0)));
    out = Vector(4, 5, 6);
    EXPECT_EQ(LevelPlane().ProjectVectorOrthogonally(out, out, 0.99), 0) << "in place";
    EXPECT_TRUE(Same(out, Vector(4, 5, 0)));
    Random random(513);
    for (int i = 0; i < 200; ++i)
    {
        C3DPlane const plane = RandomOrthogonalPlane(random);
        Vector const vector = RandomVector(random, 3);
        Vector const origin = PlaneParts(plane).origin;
        Vector expected = FootByLeastSquares(PlaneParts(plane), Vector().Add(origin, vector));
        EXPECT_EQ(plane.ProjectVectorOrthogonally(vector, out, 1.5), 0);
        EXPECT_TRUE(IsNear(out, expected.Sub(origin), 1e-8));
    }
}

TEST(PlaneProjection, A_vector_shorter_than_its_limit_projects_to_null)
{
    for (double const length : {0.0, Below(1e-9), k_Nan})
    {
        Vector out = MarkedVector();
        EXPECT_EQ(LevelPlane().ProjectVectorOrthogonally(Vector(length, 0, 0), out, 1), S_FALSE) << length;
        EXPECT_TRUE(SameBits(out, Vector(0, 0, 0))) << length;
        // It is looked at before the tangents are.
        out = MarkedVector();
        EXPECT_EQ(C3DPlane(Vector(1, 2, 3), Vector(0, 0, 0)).ProjectVectorOrthogonally(Vector(length, 0, 0), out, 1),
                  1);
        EXPECT_TRUE(SameBits(out, Vector(0, 0, 0))) << length;
    }
    Vector out = MarkedVector();
    EXPECT_EQ(C3DPlane().ProjectVectorOrthogonally(Vector(1e-9, 0, 0), out, 1), 0);
    EXPECT_TRUE(Same(out, Vector(1e-9, 0, 0)));
}

TEST(PlaneProjection, The_limit_to_the_normal_is_a_signed_cosine)
{
    C3DPlane const plane = LevelPlane();
    Vector const vector(40, 0, 30); // a cosine of 0.6
    Vector out = MarkedVector();
    EXPECT_EQ(plane.ProjectVectorOrthogonally(vector, out, Above(0.6)), 0);
    EXPECT_TRUE(Same(out, Vector(40, 0, 0)));
    EXPECT_EQ(plane.ProjectVectorOrthogonally(vector, out, 0.6), 0) << "at the limit";
    EXPECT_EQ(plane.ProjectVectorOrthogonally(vector, out, Below(0.6)), S_FALSE);
    EXPECT_TRUE(SameBits(out, Vector(0, 0, 0)));
    EXPECT_EQ(plane.ProjectVectorOrthogonally(Vector(40, 0, -30), out, 0.1), 0) << "against the normal";
    EXPECT_TRUE(Same(out, Vector(40, 0, 0)));
    EXPECT_EQ(plane.ProjectVectorOrthogonally(vector, out, k_Nan), 0);
}

TEST(PlaneProjection, Along_the_normal_a_vector_is_refused_and_against_it_projected_to_null)
{
    C3DPlane const plane = LevelPlane();
    Vector out = MarkedVector();
    EXPECT_EQ(plane.ProjectVectorOrthogonally(Vector(0, 0, 2), out, 0.5), S_FALSE);
    EXPECT_TRUE(SameBits(out, Vector(0, 0, 0)));
    out = MarkedVector();
    EXPECT_EQ(plane.ProjectVectorOrthogonally(Vector(0, 0, -2), out, 0.5), S_OK);
    EXPECT_TRUE(Same(out, Vector(0, 0, 0)));
    out = MarkedVector();
    EXPECT_EQ(plane.ProjectVectorOrthogonally(Vector(0, 0, 2), out, 1), S_OK) << "no cosine is above 1";
    EXPECT_TRUE(Same(out, Vector(0, 0, 0)));
}

TEST(PlaneProjection, A_null_tangent_fails_with_the_vector_unwritten)
{
    Vector out = MarkedVector();
    C3DPlane const noFirst = PlaneOfTangents(Vector(1, 2, 3), Vector(0, 0, 0), Vector(0, 2, 0));
    C3DPlane const noSecond = PlaneOfTangents(Vector(1, 2, 3), Vector(2, 0, 0), Vector(0, 0, 0));
    // The normal is null too, so that the cosine is not a number and does not refuse.
    EXPECT_EQ(noFirst.ProjectVectorOrthogonally(Vector(0, 0, 1), out, -2), E_UNEXPECTED);
    EXPECT_TRUE(SameBits(out, MarkedVector()));
    EXPECT_EQ(noSecond.ProjectVectorOrthogonally(Vector(0, 0, 1), out, -2), E_UNEXPECTED);
    EXPECT_TRUE(SameBits(out, MarkedVector()));
    C3DPlane noSquare;
    noSquare.SetTangents(Vector(1e-170, 0, 0), Vector(0, 1e170, 0)); // a unit normal
    EXPECT_EQ(noSquare.ProjectVectorOrthogonally(Vector(0, 0, 1), out, 0.5), S_FALSE)
        << "a vector along the normal is refused before";
    EXPECT_EQ(noSquare.ProjectVectorOrthogonally(Vector(1, 0, 0), out, 0.5), E_UNEXPECTED);
}

TEST(PlaneProjection, A_point_is_mirrored_at_its_foot)
{
    Vector out = MarkedVector();
    EXPECT_EQ(LevelPlane().ReflectPoint(Vector(5, 26, -50), out), 0);
    EXPECT_TRUE(Same(out, Vector(5, 26, 56)));
    Random random(514);
    for (int i = 0; i < 200; ++i)
    {
        C3DPlane const plane = RandomOrthogonalPlane(random);
        Vector const point = RandomVector(random, 5);
        Vector image;
        plane.ReflectPoint(point, image);
        EXPECT_NEAR(plane.GetSignedDistanceFrom(image), -plane.GetSignedDistanceFrom(point), 1e-8);
        Vector inPlace(point);
        plane.ReflectPoint(inPlace, inPlace);
        EXPECT_TRUE(SameBits(inPlace, image));
        plane.ReflectPoint(inPlace, inPlace);
        EXPECT_TRUE(IsNear(inPlace, point, 1e-7)) << "a mirror undoes itself";
    }
}

TEST(PlaneProjection, A_mirrored_vector_does_not_feel_the_origin)
{
    Vector out = MarkedVector();
    EXPECT_EQ(LevelPlane().ReflectVector(Vector(4, 5, 6), out), 0);
    EXPECT_TRUE(Same(out, Vector(4, 5, -6)));
    out = Vector(4, 5, 6);
    LevelPlane().ReflectVector(out, out);
    EXPECT_TRUE(Same(out, Vector(4, 5, -6))) << "in place";
    // Without tangents the origin mirrors, as a point does.
    C3DPlane(Vector(1, 2, 3), Vector(0, 0, 0)).ReflectVector(Vector(4, 5, 6), out);
    EXPECT_TRUE(Same(out, Vector(-4, -5, -6)));
}

TEST(PlaneProjection, A_line_projects_on_the_plane_of_a_unit_normal)
{
    Random random(515);
    for (int i = 0; i < 100; ++i)
    {
        C3DPlane const plane = RandomOrthogonalPlane(random);
        C3DLine const line(RandomVector(random, 3), RandomVector(random, 3));
        C3DLine out;
        plane.ProjectLineOn(line, out);
        for (double const t : {0.0, 0.5, 1.0, -3.0})
        {
            Vector before;
            Vector after;
            line.GetPos(t, before);
            out.GetPos(t, after);
            EXPECT_TRUE(IsNear(after, FootByLeastSquares(PlaneParts(plane), before), 1e-8));
        }
        C3DLine inPlace(line);
        plane.ProjectLineOn(inPlace, inPlace);
        Vector a;
        Vector b;
        inPlace.GetPos(1, a);
        out.GetPos(1, b);
        EXPECT_TRUE(SameBits(a, b));
    }
}

TEST(PlaneProjection, A_line_moves_along_the_normal_as_it_is_stored)
{
    // Heights 1 and 3 over z = 3 count six times with a normal of that length.
    C3DLine out;
    LevelPlane().ProjectLineOn(C3DLine(Vector(7, 8, 4), Vector(1, 0, 2)), out);
    Vector point;
    out.GetPos(0, point);
    EXPECT_TRUE(Same(point, Vector(7, 8, -2)));
    out.GetPos(1, point);
    EXPECT_TRUE(Same(point, Vector(8, 8, -12)));
    // A normal that is too short to be made unit counts twice as it is.
    C3DPlane(Vector(1, 2, 3), Vector(0, 0, 1e-12)).ProjectLineOn(C3DLine(Vector(7, 8, 4), E3D_AXIS_X), out);
    out.GetPos(0, point);
    EXPECT_TRUE(Same(point, Vector(7, 8, 4)));
}

TEST(PlaneProjection, Angle_is_signed_about_the_normal)
{
    C3DPlane const up(Vector(1, 2, 3), E3D_AXIS_Z);
    C3DPlane const down(Vector(1, 2, 3), Vector(0, 0, -1));
    for (double const angle : {0.0, 10 * k_Degree, 90 * k_Degree, 179 * k_Degree, -10 * k_Degree, -179 * k_Degree})
    {
        Vector const a(2, 0, 1);
        Vector const b = InPlane(angle).Mul(5).Add(0, 0, -3);
        double found = k_Mark;
        EXPECT_EQ(up.GetAngleOfProjectedVectors(a, b, found), 0);
        EXPECT_NEAR(found, angle, 1e-12);
        EXPECT_EQ(up.GetAngleOfProjectedVectors(b, a, found), 0);
        EXPECT_NEAR(found, -angle, 1e-12);
        EXPECT_EQ(down.GetAngleOfProjectedVectors(a, b, found), 0);
        EXPECT_NEAR(found, -angle, 1e-12);
    }
    double found = k_Mark;
    up.GetAngleOfProjectedVectors(Vector(1, 0, 0), Vector(-1, 0, 0), found);
    EXPECT_EQ(found, std::numbers::pi) << "a half turn is positive";
}

TEST(PlaneProjection, Angle_of_a_vector_within_one_degree_of_the_normal_is_0)
{
    C3DPlane const plane(Vector(1, 2, 3), E3D_AXIS_Z);
    double const limit = std::acos(k_CosineOfOneDegree);
    Vector const across(0, 1, 0);
    struct
    {
        double inclination;
        double angle;
        long code;
    } const rows[] = {{0, 0, S_FALSE},
                      {limit * (1 - 1e-9), 0, S_FALSE},
                      {limit * (1 + 1e-9), 90 * k_Degree, S_OK},
                      {std::numbers::pi - limit / 2, 90 * k_Degree, S_OK}};
    for (auto const & row : rows)
    {
        double found = k_Mark;
        EXPECT_EQ(plane.GetAngleOfProjectedVectors(across, Inclined(row.inclination), found), row.code);
        EXPECT_NEAR(found, -row.angle, 1e-12) << row.inclination;
        EXPECT_EQ(plane.GetAngleOfProjectedVectors(Inclined(row.inclination), across, found), S_OK)
            << "the code is that of the second vector";
        EXPECT_NEAR(found, row.angle, 1e-12) << row.inclination;
    }
    double found = k_Mark;
    EXPECT_EQ(plane.GetAngleOfProjectedVectors(across, Vector(0, 0, -1), found), S_OK);
    EXPECT_EQ(found, 0) << "straight against the normal the projection is null and accepted";
}

TEST(PlaneProjection, Angle_limits_the_product_of_the_projected_lengths)
{
    C3DPlane const plane(Vector(0, 0, 0), E3D_AXIS_Z);
    double found = k_Mark;
    EXPECT_EQ(plane.GetAngleOfProjectedVectors(Vector(2e-6, 0, 0), Vector(0, 1e-6, 0), found), 0);
    EXPECT_NEAR(found, 90 * k_Degree, 1e-12);
    EXPECT_EQ(plane.GetAngleOfProjectedVectors(Vector(5e-7, 0, 0), Vector(0, 1e-6, 0), found), 0);
    EXPECT_EQ(found, 0);
}

TEST(PlaneProjection, Angle_is_0_with_code_1_where_a_projection_fails)
{
    C3DPlane plane;
    plane.SetTangents(Vector(1e-170, 0, 0), Vector(0, 1e170, 0)); // a unit normal
    Vector const along(0, 0, 1);                                  // refused, which is no failure
    Vector const across(0, 1, 0);                                 // fails
    for (Vector const & a : {along, across})
    {
        double found = k_Mark;
        EXPECT_EQ(plane.GetAngleOfProjectedVectors(a, across, found), S_FALSE);
        EXPECT_TRUE(SameBits(found, 0.0));
        found = k_Mark;
        EXPECT_EQ(plane.GetAngleOfProjectedVectors(across, a, found), S_FALSE);
        EXPECT_TRUE(SameBits(found, 0.0));
    }
    double found = k_Mark;
    EXPECT_EQ(plane.GetAngleOfProjectedVectors(along, along, found), S_FALSE);
    EXPECT_EQ(found, 0);
}

TEST(PlaneProjection, A_refused_vector_does_not_end_the_search_for_the_angle)
{
    // The angle between what is infinite and null is not a number, which counts as a half turn.
    C3DPlane const plane(Vector(0, 0, 0), E3D_AXIS_Z);
    double found = k_Mark;
    EXPECT_EQ(plane.GetAngleOfProjectedVectors(Vector(k_Infinity, 0, 0), Vector(0, 0, 1), found), S_FALSE);
    EXPECT_EQ(found, std::numbers::pi);
    EXPECT_EQ(plane.GetAngleOfProjectedVectors(Vector(0, 0, 1), Vector(k_Infinity, 0, 0), found), S_OK);
    EXPECT_EQ(found, std::numbers::pi);
}
