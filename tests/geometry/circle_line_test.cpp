#include "geometry/marked_record.h"
#include "geometry/task_memory_faults.h"
#include "math/line_intersection.h"
#include "math/platform/result.h"
#include "math/platform/task_memory.h"
#include "math/vector_geometry.h"
#include "support/random.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <vector>

using namespace test_support;
using Vector = C3DVector3Tpl<double>;

namespace
{

constexpr double k_NaN = std::numeric_limits<double>::quiet_NaN();

constexpr unsigned long k_Miss = 4;
constexpr unsigned long k_ThroughCenter = 32;
constexpr unsigned long k_Meeting = 0x10000;

constexpr double k_ParallelLimit = 1e-3;
constexpr double k_DistanceLimit = 0.25;

struct Contact
{
    Vector position;
    double u;
};

struct Answer
{
    long result = -1;
    unsigned long flags = k_MarkedFlags;
    unsigned int count = k_MarkedCount;
    bool hasArray = false;
    std::vector<Contact> contacts;
};

/// Asks with and without an array, which must agree, and takes the records out of it.
Answer Ask(C3DBaseCircle const & circle, Vector const & p, Vector const & q, double parallelLimit = k_ParallelLimit,
           double distanceLimit = k_DistanceLimit)
{
    Answer answer;
    tagS3DGEOMINFO marked;
    tagS3DGEOMINFO * infos = &marked;
    answer.result = F3DWorldCircleVsLineIntersection(circle, p, q, answer.flags, answer.count, &infos, parallelLimit,
                                                     distanceLimit);
    unsigned long flags = k_MarkedFlags;
    unsigned int count = k_MarkedCount;
    EXPECT_EQ(F3DWorldCircleVsLineIntersection(circle, p, q, flags, count, nullptr, parallelLimit, distanceLimit),
              answer.result);
    EXPECT_EQ(flags, answer.flags);
    EXPECT_EQ(count, answer.count);
    answer.hasArray = infos != &marked;
    if (!answer.hasArray)
    {
        return answer;
    }
    Vector normal;
    circle.GetNormal(normal);
    for (unsigned int i = 0; i < answer.count; ++i)
    {
        answer.contacts.push_back({infos[i].position, infos[i].u});
        EXPECT_TRUE(SameBits(infos[i].normal, normal));
        EXPECT_TRUE(IsAsAllocated(infos[i].v));
        EXPECT_TRUE(IsAsAllocated(infos[i].distance));
    }
    CoTaskMemFree(infos);
    return answer;
}

C3DBaseCircle const k_UnitCircle;

void ExpectRefused(Answer const & answer)
{
    EXPECT_EQ(answer.result, E_INVALIDARG);
    EXPECT_EQ(answer.flags, k_MarkedFlags);
    EXPECT_EQ(answer.count, k_MarkedCount);
    EXPECT_FALSE(answer.hasArray);
}

void ExpectThroughCenter(Answer const & answer)
{
    EXPECT_EQ(answer.result, S_FALSE);
    EXPECT_EQ(answer.flags, k_ThroughCenter);
    EXPECT_EQ(answer.count, 0U);
    EXPECT_FALSE(answer.hasArray);
}

void ExpectContacts(Answer const & answer, unsigned long flags, std::vector<Vector> const & positions)
{
    EXPECT_EQ(answer.result, S_OK);
    EXPECT_EQ(answer.flags, flags);
    ASSERT_EQ(answer.contacts.size(), positions.size());
    for (std::size_t i = 0; i < positions.size(); ++i)
    {
        EXPECT_LT(GetDistance(answer.contacts[i].position, positions[i]), 1e-14) << i;
    }
}

/// A line across the plane of the unit circle, straight down through (x, y).
Answer AskAcross(double x, double y, double distanceLimit = k_DistanceLimit)
{
    return Ask(k_UnitCircle, Vector(x, y, 1), Vector(x, y, -1), k_ParallelLimit, distanceLimit);
}

Vector RandomVector(Random & random, double size)
{
    double const x = random.Uniform(-size, size);
    double const y = random.Uniform(-size, size);
    return {x, y, random.Uniform(-size, size)};
}

/// A circle, and a frame of unit vectors in its plane: a x b is the normal.
struct RandomCircle
{
    explicit RandomCircle(Random & random)
        : center(RandomVector(random, 4)), normal(RandomVector(random, 1)), radius(random.Uniform(0.2, 3.0))
    {
        normal.Normalize();
        GetOrthogonalBasis(normal, a, b);
        a.Normalize();
        b.Normalize();
    }

    Vector At(double x, double y) const { return Vector(center).Add(Vector().Mul(a, x)).Add(Vector().Mul(b, y)); }

    C3DBaseCircle Make() const { return {center, radius, normal}; }

    Vector center;
    Vector normal;
    double radius;
    Vector a;
    Vector b;
};

} // namespace

TEST(CircleLine, A_radius_below_the_limit_is_refused)
{
    // A circle raises its radius, but not when it is scaled.
    auto const scaled = [](double scale)
    {
        C3DXfoMatTpl<double> matrix;
        matrix.SetIdentity();
        for (int i = 0; i < 3; ++i)
        {
            matrix.Set(i, i, scale);
        }
        C3DBaseCircle circle;
        circle.Mul(k_UnitCircle, matrix);
        return Ask(circle, Vector(1, 0, 1), Vector(1, 0, -1));
    };
    ExpectRefused(scaled(std::nextafter(1e-12, 0)));
    ExpectRefused(scaled(0));
    EXPECT_EQ(scaled(1e-12).result, S_OK);
    EXPECT_NE(Ask(C3DBaseCircle(Vector(0, 0, 0), k_NaN, Vector(0, 0, 1)), Vector(1, 0, 1), Vector(1, 0, -1)).result,
              E_INVALIDARG);
}

TEST(CircleLine, A_line_given_with_p_at_the_center_is_refused)
{
    ExpectRefused(Ask(k_UnitCircle, Vector(0, 0, 0), Vector(1, 0, 0)));
    ExpectRefused(Ask(k_UnitCircle, Vector(0, 0, std::nextafter(1e-12, 0)), Vector(1, 0, 0)));
    EXPECT_EQ(Ask(k_UnitCircle, Vector(1e-12, 0, 0), Vector(1, 0, 0)).count, 2U);
    EXPECT_EQ(Ask(k_UnitCircle, Vector(1, 0, 0), Vector(0, 0, 0)).count, 2U) << "q may be there";
    ExpectRefused(Ask(C3DBaseCircle(Vector(5, 6, 7), 1, Vector(0, 1, 0)), Vector(5, 6, 7), Vector(1, 0, 0)));
    ExpectRefused(Ask(k_UnitCircle, Vector(k_NaN, 0, 0), Vector(1, 0, 0)));
}

TEST(CircleLine, A_line_across_the_plane_gives_the_point_of_the_circle_in_its_direction)
{
    double const half = std::sqrt(0.5);
    ExpectContacts(AskAcross(1, 0), k_Meeting, {Vector(1, 0, 0)});
    ExpectContacts(AskAcross(0, 1), k_Meeting, {Vector(0, 1, 0)});
    ExpectContacts(AskAcross(7, 7), k_Miss, {Vector(half, half, 0)});
    ExpectContacts(AskAcross(-0.1, 0.1), k_Miss, {Vector(-half, half, 0)});
    // Slanted: at a quarter of the way from p to q it is at (2, -2).
    ExpectContacts(Ask(k_UnitCircle, Vector(0, -3, 1), Vector(8, 1, -3)), k_Miss, {Vector(half, -half, 0)});
    // The plane is met beyond q, and before p.
    ExpectContacts(Ask(k_UnitCircle, Vector(3, 0, 2), Vector(2, 0, 1)), k_Meeting, {Vector(1, 0, 0)});
    ExpectContacts(Ask(k_UnitCircle, Vector(2, 0, 1), Vector(3, 0, 2)), k_Meeting, {Vector(1, 0, 0)});
}

TEST(CircleLine, Across_the_plane_the_limit_is_on_the_difference_of_squares)
{
    // Outside 1.5^2 - 1 = 1.25, inside 1 - 0.5^2 = 0.75.
    EXPECT_EQ(AskAcross(1.5, 0, 1.25).flags, k_Miss);
    EXPECT_EQ(AskAcross(1.5, 0, std::nextafter(1.25, 2)).flags, k_Meeting);
    EXPECT_EQ(AskAcross(0, -0.5, 0.75).flags, k_ThroughCenter) << "0.5 is below the limit on y";
    EXPECT_EQ(AskAcross(-0.5, 0, 0.75).flags, k_Miss);
    EXPECT_EQ(AskAcross(-0.5, 0, std::nextafter(0.75, 1)).flags, k_Meeting);
    C3DBaseCircle const wide(Vector(0, 0, 0), 3, E3D_AXIS_Z);
    EXPECT_EQ(Ask(wide, Vector(4, 0, 1), Vector(4, 0, -1), k_ParallelLimit, 7).flags, k_Miss);
    EXPECT_EQ(Ask(wide, Vector(4, 0, 1), Vector(4, 0, -1), k_ParallelLimit, 7.5).flags, k_Meeting);
    EXPECT_EQ(AskAcross(1, 0, k_NaN).flags, k_Meeting) << "not at least the limit";
}

TEST(CircleLine, Through_the_center_there_is_no_contact_to_choose)
{
    ExpectThroughCenter(AskAcross(0, 0));
    // Narrow in x and as wide as the limit in y.
    ExpectThroughCenter(AskAcross(std::nextafter(1e-12, 0), 0));
    ExpectThroughCenter(AskAcross(-0.5e-12, 0));
    EXPECT_EQ(AskAcross(1e-12, 0).flags, k_Miss);
    ExpectThroughCenter(AskAcross(0, std::nextafter(0.25, 0)));
    ExpectThroughCenter(AskAcross(0, -0.125));
    EXPECT_EQ(AskAcross(0, 0.25).flags, k_Miss);
    EXPECT_EQ(AskAcross(0.125, 0).flags, k_Miss);
    // Slanted, from below.
    ExpectThroughCenter(Ask(k_UnitCircle, Vector(-1, -1, -1), Vector(1, 1, 1)));
}

TEST(CircleLine, Heights_are_compared_in_units_of_the_distance_of_p)
{
    // The ends differ by 1 in height, and p is 2 from the center: 1/2, which is not above 1/2.
    Vector const p(2, 0, 0);
    EXPECT_EQ(Ask(k_UnitCircle, p, Vector(0, 0, 1), 0.5).count, 2U) << "along the plane";
    EXPECT_EQ(Ask(k_UnitCircle, p, Vector(0, 0, -1), 0.5).count, 2U);
    EXPECT_EQ(Ask(k_UnitCircle, p, Vector(0, 0, 1), std::nextafter(0.5, 0)).count, 1U) << "across it";
    EXPECT_EQ(Ask(k_UnitCircle, p, Vector(0, 0, -1), std::nextafter(0.5, 0)).count, 1U);
    // The same line by a q that is farther off is across the plane, and by a farther p along it.
    EXPECT_EQ(Ask(k_UnitCircle, p, Vector(-2, 0, 2), 0.5).count, 1U);
    EXPECT_EQ(Ask(k_UnitCircle, Vector(8, 0, -3), Vector(6, 0, -2), 0.5).count, 2U);
}

TEST(CircleLine, A_line_along_the_plane_meets_twice)
{
    double const c = std::sqrt(0.75);
    ExpectContacts(Ask(k_UnitCircle, Vector(-2, 0.5, 0), Vector(2, 0.5, 0)), k_Meeting,
                   {Vector(c, 0.5, 0), Vector(-c, 0.5, 0)});
    ExpectContacts(Ask(k_UnitCircle, Vector(0.5, -3, 0), Vector(0.5, -2, 0)), k_Meeting,
                   {Vector(0.5, c, 0), Vector(0.5, -c, 0)});
    ExpectContacts(Ask(k_UnitCircle, Vector(1, 0, 0), Vector(0, 0, 0)), k_Meeting, {Vector(-1, 0, 0), Vector(1, 0, 0)});
}

TEST(CircleLine, Along_the_plane_the_height_of_p_decides_and_contacts_are_in_the_plane)
{
    auto const ask = [](double height) { return Ask(k_UnitCircle, Vector(3, 0, height), Vector(2, 0, 0), 10, 0.25); };
    for (double const sign : {1.0, -1.0})
    {
        Answer const apart = ask(0.25 * sign);
        EXPECT_EQ(apart.flags, k_Miss);
        EXPECT_EQ(apart.count, 2U);
        ASSERT_EQ(apart.contacts.size(), 2U);
        EXPECT_NEAR(apart.contacts[0].position.Z, 0, 1e-15);
        EXPECT_EQ(ask(std::nextafter(0.25, 0) * sign).flags, k_Meeting);
    }
    EXPECT_EQ(ask(k_NaN).result, E_INVALIDARG) << "a NaN length";
}

TEST(CircleLine, A_line_along_the_plane_without_length_in_it_is_refused)
{
    ExpectRefused(Ask(k_UnitCircle, Vector(1, 0, 0), Vector(1, 0, 0)));
    ExpectRefused(Ask(k_UnitCircle, Vector(1, 0, 0), Vector(1, 0.999e-6, 0)));
    ExpectRefused(Ask(k_UnitCircle, Vector(1, 0, 0), Vector(1, 0, 1), 10));
    EXPECT_EQ(Ask(k_UnitCircle, Vector(1, 0, 0), Vector(1, 1.001e-6, 0)).result, S_OK);
}

TEST(CircleLine, A_tangent_meets_once)
{
    ExpectContacts(Ask(k_UnitCircle, Vector(1, -1, 0), Vector(1, 1, 0)), k_Meeting, {Vector(1, 0, 0)});
}

TEST(CircleLine, A_line_along_the_plane_that_misses_gives_the_nearest_point_of_the_circle)
{
    ExpectContacts(Ask(k_UnitCircle, Vector(-5, 3, 0), Vector(-4, 3, 0)), k_Miss, {Vector(0, 1, 0)});
    ExpectContacts(Ask(k_UnitCircle, Vector(2, 1, 0), Vector(2, 5, 0)), k_Miss, {Vector(1, 0, 0)});
    ExpectContacts(Ask(k_UnitCircle, Vector(0, -2, 0), Vector(1, -2, 0)), k_Miss, {Vector(0, -1, 0)});
}

TEST(CircleLine, A_line_given_by_points_close_together_loses_its_second_contact)
{
    // Their squared distance counts as zero beside 1e-9: the equation is taken as linear, with one root or any.
    EXPECT_EQ(Ask(k_UnitCircle, Vector(1.5, 0, 0), Vector(1.5 + 1e-5, 0, 0)).count, 1U);
    EXPECT_EQ(Ask(k_UnitCircle, Vector(1.5, 0, 0), Vector(1.5 + 1e-4, 0, 0)).count, 2U);
    ExpectContacts(Ask(k_UnitCircle, Vector(1, 0, 0), Vector(1, 2e-6, 0)), k_Meeting, {Vector(1, 0, 0)});
    ExpectContacts(Ask(k_UnitCircle, Vector(0, 2, 0), Vector(1e-5, 2, 0)), k_Miss, {Vector(0, 1, 0)});
}

TEST(CircleLine, The_parameter_is_the_angle_in_turns_from_zero_on)
{
    EXPECT_EQ(AskAcross(1, 0).contacts[0].u, 0);
    EXPECT_EQ(AskAcross(1, 1).contacts[0].u, 0.125);
    EXPECT_EQ(AskAcross(0, 1).contacts[0].u, 0.25);
    EXPECT_EQ(AskAcross(-1, 0).contacts[0].u, 0.5);
    EXPECT_EQ(AskAcross(-1, -1).contacts[0].u, 0.625);
    EXPECT_EQ(AskAcross(0, -1).contacts[0].u, 0.75);
    EXPECT_EQ(AskAcross(1, -1).contacts[0].u, 0.875);
    EXPECT_EQ(AskAcross(1, -1e-18).contacts[0].u, 1) << "a turn less next to nothing";
}

TEST(CircleLine, A_normal_along_minus_Z_and_a_null_one_have_a_frame_too)
{
    C3DBaseCircle const below(Vector(1, 2, 3), 2, Vector(0, 0, -1));
    ExpectContacts(Ask(below, Vector(3, 2, 4), Vector(3, 2, 2)), k_Meeting, {Vector(3, 2, 3)});
    ExpectContacts(Ask(below, Vector(1, 9, 4), Vector(1, 9, 2)), k_Miss, {Vector(1, 4, 3)});
    // A null normal counts as Z.
    C3DBaseCircle const flat(Vector(1, 2, 3), 2, Vector(0, 0, 0));
    ExpectContacts(Ask(flat, Vector(3, 2, 4), Vector(3, 2, 2)), k_Meeting, {Vector(3, 2, 3)});
}

TEST(CircleLine, The_array_is_as_long_as_the_count_and_made_only_where_asked_for)
{
    TaskMemoryFaults const memory(TaskMemoryFaults::Answer::Serve);
    unsigned long flags = 0;
    unsigned int count = 0;
    tagS3DGEOMINFO * infos = nullptr;
    auto const ask = [&](Vector const & q, tagS3DGEOMINFO ** out)
    { return F3DWorldCircleVsLineIntersection(k_UnitCircle, Vector(1, 0, 1), q, flags, count, out, 0.1, 0.1); };
    ask(Vector(1, 0, -1), nullptr);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(memory.GetRequests(), 0);
    ask(Vector(1, 0, -1), &infos);
    EXPECT_EQ(memory.GetRequests(), 1);
    EXPECT_EQ(memory.GetLastSize(), sizeof(tagS3DGEOMINFO));
    CoTaskMemFree(infos);
    ask(Vector(0, 0, 1), &infos);
    EXPECT_EQ(memory.GetRequests(), 2);
    EXPECT_EQ(memory.GetLastSize(), 2 * sizeof(tagS3DGEOMINFO));
    CoTaskMemFree(infos);
    ask(Vector(-1, 0, -1), &infos);
    EXPECT_EQ(flags, k_ThroughCenter);
    EXPECT_EQ(memory.GetRequests(), 2);
}

TEST(CircleLine, Exhausted_memory_is_told_with_flags_and_count)
{
    TaskMemoryFaults const memory(TaskMemoryFaults::Answer::Refuse);
    tagS3DGEOMINFO marked;
    tagS3DGEOMINFO * infos = &marked;
    unsigned long flags = k_MarkedFlags;
    unsigned int count = k_MarkedCount;
    EXPECT_EQ(F3DWorldCircleVsLineIntersection(k_UnitCircle, Vector(2, 0, 0), Vector(1, 0, 0), flags, count, &infos,
                                               0.1, 0.1),
              E_OUTOFMEMORY);
    EXPECT_EQ(infos, &marked);
    EXPECT_EQ(flags, k_Meeting);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(memory.GetRequests(), 1);
}

TEST(CircleLine, Random_lines_across_the_plane_meet_the_circle_where_they_were_led_through)
{
    Random random(61);
    for (int i = 0; i < 5000; ++i)
    {
        RandomCircle const circle(random);
        double const angle = random.Uniform(0.0, 2 * std::numbers::pi);
        double const reach = random.Uniform(0.1, 4.0);
        double const x = std::cos(angle);
        double const y = std::sin(angle);
        Vector const through = circle.At(reach * x, reach * y);
        Vector direction = RandomVector(random, 1);
        double const rise = math::detail::Dot(direction, circle.normal);
        if (std::abs(rise) < 0.1)
        {
            continue;
        }
        Vector const p = Vector(through).Sub(Vector(direction).Mul(random.Uniform(0.5, 3.0)));
        Vector const q = Vector(through).Add(direction);
        double const limit = 0.05;
        Answer const answer = Ask(circle.Make(), p, q, 1e-3, limit);
        double const gap = std::abs(reach * reach - circle.radius * circle.radius) - limit;
        if (std::abs(gap) > 1e-9)
        {
            ASSERT_EQ(answer.flags, gap > 0 ? k_Miss : k_Meeting);
        }
        ASSERT_EQ(answer.contacts.size(), 1U);
        Vector const expected = circle.At(circle.radius * x, circle.radius * y);
        ASSERT_LT(GetDistance(answer.contacts[0].position, expected), 1e-10);
    }
}

TEST(CircleLine, Random_chords_meet_the_circle_at_their_ends)
{
    Random random(62);
    for (int i = 0; i < 5000; ++i)
    {
        RandomCircle const circle(random);
        double const angles[] = {random.Uniform(0.0, 3.0), random.Uniform(3.5, 6.0)};
        Vector ends[2];
        for (unsigned n = 0; n < 2; ++n)
        {
            ends[n] = circle.At(circle.radius * std::cos(angles[n]), circle.radius * std::sin(angles[n]));
        }
        Vector const chord = Vector().Sub(ends[1], ends[0]);
        if (chord.GetLength() < 0.1)
        {
            continue;
        }
        Vector const p = Vector(ends[0]).Sub(Vector(chord).Mul(random.Uniform(0.1, 2.0)));
        Vector const q = Vector(ends[1]).Add(Vector(chord).Mul(random.Uniform(0.1, 2.0)));
        Answer const answer = Ask(circle.Make(), p, q);
        ASSERT_EQ(answer.flags, k_Meeting);
        ASSERT_EQ(answer.contacts.size(), 2U);
        // Either order. The parameters differ by the angle between the ends, counter-clockwise about the normal.
        bool const isSwapped = GetDistance(answer.contacts[0].position, ends[0]) > 1e-7;
        Contact const & first = answer.contacts[isSwapped ? 1 : 0];
        Contact const & second = answer.contacts[isSwapped ? 0 : 1];
        ASSERT_LT(GetDistance(first.position, ends[0]), 1e-9);
        ASSERT_LT(GetDistance(second.position, ends[1]), 1e-9);
        double const turns = second.u - first.u - (angles[1] - angles[0]) / (2 * std::numbers::pi);
        ASSERT_NEAR(turns, std::round(turns), 1e-9);
        ASSERT_GE(std::min(first.u, second.u), 0);
        ASSERT_LE(std::max(first.u, second.u), 1);
    }
}
