#include "geometry/marked_record.h"
#include "math/line_intersection.h"
#include "math/platform/result.h"
#include "math/vector_geometry.h"
#include "support/random.h"

#include <Eigen/Dense>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace test_support;
using Vector = C3DVector3Tpl<double>;

namespace
{

constexpr double k_NaN = std::numeric_limits<double>::quiet_NaN();

constexpr unsigned long k_ParallelApart = 1;
constexpr unsigned long k_Meeting = 0x10000;
constexpr unsigned long k_Coincident = 0x100000;

constexpr double k_ParallelLimit = 0.9999;
constexpr double k_DistanceLimit = 0.25;

struct Answer
{
    long result;
    unsigned long flags;
    tagS3DGEOMINFO info;
};

Answer Ask(Vector const & origin1, Vector const & normal1, Vector const & origin2, Vector const & normal2,
           double parallelLimit = k_ParallelLimit, double distanceLimit = k_DistanceLimit)
{
    Answer answer{-1, k_MarkedFlags, MakeMarkedRecord()};
    answer.result = F3DWorldPlaneVsPlaneIntersection(origin1, normal1, origin2, normal2, answer.flags, &answer.info,
                                                     parallelLimit, distanceLimit);
    unsigned long flags = k_MarkedFlags;
    EXPECT_EQ(F3DWorldPlaneVsPlaneIntersection(origin1, normal1, origin2, normal2, flags, nullptr, parallelLimit,
                                               distanceLimit),
              answer.result);
    EXPECT_EQ(flags, answer.flags);
    EXPECT_TRUE(HasOnly(answer.flags == k_Meeting ? k_Position | k_Normal : k_NoField, answer.info));
    return answer;
}

void ExpectNothing(Answer const & answer)
{
    EXPECT_EQ(answer.result, E_UNEXPECTED);
    EXPECT_EQ(answer.flags, k_MarkedFlags);
}

void ExpectLine(Answer const & answer, Vector const & position, Vector const & direction)
{
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.flags, k_Meeting);
    EXPECT_NEAR(GetDistance(answer.info.position, position), 0, 1e-14);
    EXPECT_NEAR(GetDistance(answer.info.normal, direction), 0, 1e-14);
}

Vector const k_Zero(0, 0, 0);
Vector const k_X(1, 0, 0);
Vector const k_Y(0, 1, 0);
Vector const k_Z(0, 0, 1);

Vector RandomVector(Random & random, double size)
{
    double const x = random.Uniform(-size, size);
    double const y = random.Uniform(-size, size);
    return {x, y, random.Uniform(-size, size)};
}

Eigen::Vector3d ToEigen(Vector const & v)
{
    return {v.X, v.Y, v.Z};
}

} // namespace

TEST(PlanePlane, Parallel_planes_coincide_where_their_origins_are_close)
{
    struct Row
    {
        Vector origin2;
        unsigned long flags;
    };
    Row const rows[] = {
        {Vector(0, 0, 0), k_Coincident},
        {Vector(0, 0, 0.125), k_Coincident},
        {Vector(0, 0, std::nextafter(0.25, 0)), k_Coincident},
        {Vector(0, 0, 0.25), k_ParallelApart},
        {Vector(0, 0, -0.5), k_ParallelApart},
        // In one plane, but with origins apart: the distance is that of the points.
        {Vector(0.25, 0, 0), k_ParallelApart},
        {Vector(100, 0, 0), k_ParallelApart},
        {Vector(0.125, 0.125, 0), k_Coincident},
    };
    for (Row const & row : rows)
    {
        for (double const sign : {1.0, -1.0})
        {
            Answer const answer = Ask(k_Zero, k_Z, row.origin2, Vector(0, 0, sign));
            EXPECT_EQ(answer.flags, row.flags);
            EXPECT_EQ(answer.result, row.flags == k_Coincident ? S_OK : S_FALSE);
        }
    }
}

TEST(PlanePlane, Normals_at_the_limit_are_not_yet_parallel)
{
    // Along a short normal the dot product is no cosine.
    Vector const half(0, 0.5, 0.5);
    EXPECT_EQ(Ask(k_Zero, k_Z, k_Zero, half, 0.5).flags, k_Meeting);
    EXPECT_EQ(Ask(k_Zero, k_Z, k_Zero, half, std::nextafter(0.5, 0)).flags, k_Coincident);
    EXPECT_EQ(Ask(k_Zero, k_Z, k_Zero, Vector(0, 0.5, -0.5), std::nextafter(0.5, 0)).flags, k_Coincident);
    ExpectNothing(Ask(k_Zero, Vector(0, 0, k_NaN), k_Zero, k_Z));
}

TEST(PlanePlane, Where_only_the_first_tangent_reaches_the_other_plane_the_direction_is_the_second)
{
    Vector t1;
    Vector t2;
    GetOrthogonalBasis(k_Z, t1, t2);
    Vector const start(1, 2, 3);
    // The other plane stands across the first tangent, two further along it.
    ExpectLine(Ask(start, k_Z, Vector(start).Add(Vector(t1).Mul(2)), t1), Vector(start).Add(Vector(t1).Mul(2)), t2);
    ExpectLine(Ask(start, k_Z, Vector(start).Add(Vector(t2).Mul(2)), t2), Vector(start).Add(Vector(t2).Mul(2)), t1);
}

TEST(PlanePlane, Where_both_tangents_reach_it_the_direction_is_from_the_first_point_to_the_second)
{
    Vector t1;
    Vector t2;
    GetOrthogonalBasis(k_Z, t1, t2);
    double const half = std::sqrt(0.5);
    // x t1 + y t2 with x + y = 1.
    Vector normal2;
    normal2.Mul(t1, half).Add(Vector(t2).Mul(half));
    Answer const answer = Ask(k_Zero, k_Z, t1, normal2);
    ExpectLine(answer, t1, Vector().Sub(t2, t1));
    // The tangents have the length of the normal and of its square, but the points do not depend on it.
    ExpectLine(Ask(k_Zero, Vector(0, 0, 0.5), t1, normal2), t1, Vector().Sub(t2, t1));
}

TEST(PlanePlane, The_direction_is_null_where_the_first_origin_lies_on_the_line)
{
    double const half = std::sqrt(0.5);
    Answer const answer = Ask(Vector(1, 2, 3), k_Z, Vector(1, 2, 3), Vector(half, half, 0));
    ExpectLine(answer, Vector(1, 2, 3), k_Zero);
    // With one tangent along the other plane there is a direction all the same.
    EXPECT_NEAR(Ask(Vector(1, 2, 3), k_Z, Vector(1, 2, 3), k_X).info.normal.GetLength(), 1, 1e-15);
}

TEST(PlanePlane, A_tangent_reaches_the_other_plane_from_a_sine_of_a_twentieth_on)
{
    Vector t1;
    Vector t2;
    GetOrthogonalBasis(k_Z, t1, t2);
    // A normal with this sine along t1 and nothing along t2.
    auto const ask = [&](double sine)
    {
        Vector normal2(t1);
        normal2.Mul(sine).Add(Vector(0, 0, std::sqrt(1 - sine * sine)));
        return Ask(k_Zero, k_Z, Vector(0, 0, 1), normal2);
    };
    EXPECT_EQ(ask(0.0501).flags, k_Meeting);
    EXPECT_EQ(ask(-0.0501).flags, k_Meeting);
    // Not parallel within the limit, and yet without a line.
    ExpectNothing(ask(0.0499));
    ExpectNothing(ask(-0.0499));
    // A small sine along t2 does not count beside a large one along t1.
    Vector normal2(t1);
    normal2.Mul(0.9).Add(Vector(t2).Mul(0.04));
    Answer const answer = Ask(k_Zero, k_Z, t1, normal2);
    EXPECT_TRUE(SameBits(answer.info.normal, t2)) << "the direction is a tangent, off by the angle left out";
}

TEST(PlanePlane, A_null_normal_finds_no_line)
{
    ExpectNothing(Ask(k_Zero, k_Zero, k_Zero, k_Z));
    ExpectNothing(Ask(k_Zero, k_Z, k_Zero, k_Zero));
    ExpectNothing(Ask(k_Zero, k_Z, k_Zero, Vector(0.9e-9, 0, 0)));
    EXPECT_EQ(Ask(k_Zero, k_Z, k_Zero, Vector(1.1e-9, 0, 0)).flags, k_Meeting);
}

TEST(PlanePlane, The_record_may_hold_the_arguments)
{
    tagS3DGEOMINFO info = MakeMarkedRecord();
    info.position = Vector(1, 2, 3);
    info.normal = k_Z;
    unsigned long flags = k_MarkedFlags;
    EXPECT_EQ(F3DWorldPlaneVsPlaneIntersection(info.position, info.normal, Vector(4, 0, 0), k_X, flags, &info, 0.99, 1),
              S_OK);
    Answer const expected = Ask(Vector(1, 2, 3), k_Z, Vector(4, 0, 0), k_X);
    EXPECT_TRUE(SameBits(info.position, expected.info.position));
    EXPECT_TRUE(SameBits(info.normal, expected.info.normal));
}

TEST(PlanePlane, Random_planes_meet_in_the_line_of_their_equations)
{
    Random random(60);
    int meetings = 0;
    int ofTangent = 0;
    double greatestSine = 0;
    for (int i = 0; i < 20000; ++i)
    {
        Vector const origin1 = RandomVector(random, 5);
        Vector const origin2 = RandomVector(random, 5);
        Vector normal1 = RandomVector(random, 1);
        Vector normal2 = RandomVector(random, 1);
        if (normal1.GetLength() < 0.1 || normal2.GetLength() < 0.1)
        {
            continue;
        }
        normal1.Normalize();
        normal2.Normalize();
        Answer const answer = Ask(origin1, normal1, origin2, normal2);
        if (answer.flags != k_Meeting)
        {
            continue;
        }
        ++meetings;
        Eigen::Matrix<double, 2, 3> equations;
        equations << ToEigen(normal1).transpose(), ToEigen(normal2).transpose();
        Eigen::Vector2d const heights(ToEigen(normal1).dot(ToEigen(origin1)), ToEigen(normal2).dot(ToEigen(origin2)));
        double const size = 1 + answer.info.position.GetLength();
        ASSERT_LT((equations * ToEigen(answer.info.position) - heights).norm(), 1e-12 * size);
        // The direction is that of the null space. One of the tangents stands in for it where it lies along the other
        // plane to within a sine of 0.05, which makes the smaller an error the more the planes are inclined.
        Eigen::Vector3d const kernel =
            Eigen::FullPivLU<Eigen::Matrix<double, 2, 3>>(equations).kernel().col(0).normalized();
        Eigen::Vector3d const direction = ToEigen(answer.info.normal);
        ASSERT_GT(direction.norm(), 0);
        Eigen::Vector3d const unit = direction.normalized();
        double const sine = unit.cross(kernel).norm();
        ASSERT_LT(std::abs(unit.dot(ToEigen(normal1))), 1e-10 * (1 + size / direction.norm()));
        Vector t1;
        Vector t2;
        GetOrthogonalBasis(normal1, t1, t2);
        bool const isTangent = SameBits(answer.info.normal, t1) || SameBits(answer.info.normal, t2);
        if (isTangent)
        {
            ++ofTangent;
            ASSERT_LT(std::abs(unit.dot(ToEigen(normal2))), 0.05);
            ASSERT_LE(sine, 0.05 / ToEigen(normal1).cross(ToEigen(normal2)).norm());
            greatestSine = std::max(greatestSine, sine);
        }
        else
        {
            ASSERT_LT(sine, 1e-12 * (1 + size / direction.norm()));
        }
    }
    EXPECT_GT(meetings, 10000);
    EXPECT_GT(ofTangent, 100);
    EXPECT_GT(greatestSine, 0.05) << "the direction is off by more than the tangent's own angle";
    RecordProperty("ofTangent", ofTangent);
}
