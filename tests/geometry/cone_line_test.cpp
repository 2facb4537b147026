#include "geometry/marked_record.h"
#include "geometry/task_memory_faults.h"
#include "math/line_intersection.h"
#include "math/platform/result.h"
#include "math/platform/task_memory.h"
#include "support/random.h"

#include <cmath>
#include <limits>
#include <vector>

using namespace test_support;
using Vector = C3DVector3Tpl<double>;

namespace
{

constexpr double k_NaN = std::numeric_limits<double>::quiet_NaN();

constexpr unsigned long k_InSurface = 2;
constexpr unsigned long k_UpperNappe = 16;
constexpr unsigned long k_Meeting = 0x10000;

struct Contact
{
    Vector position;
    double u;
};

struct Answer
{
    long result = 0;
    unsigned long flags = k_MarkedFlags;
    unsigned int count = k_MarkedCount;
    bool hasArray = false;
    std::vector<Contact> contacts;
};

/// Asks with and without an array; what does not concern it must be the same.
Answer Ask(double radius, double height, Vector const & p, Vector const & q)
{
    Answer answer;
    tagS3DGEOMINFO marked;
    tagS3DGEOMINFO * infos = &marked;
    answer.result = F3DLocalConeVsLineIntersection(radius, height, p, q, answer.flags, answer.count, &infos);
    unsigned long flags = k_MarkedFlags;
    unsigned int count = k_MarkedCount;
    EXPECT_EQ(F3DLocalConeVsLineIntersection(radius, height, p, q, flags, count, nullptr), answer.result);
    EXPECT_EQ(flags, answer.flags);
    EXPECT_EQ(count, answer.count);
    if (infos == &marked)
    {
        EXPECT_EQ(answer.result, E_INVALIDARG) << "the array was left alone";
        return answer;
    }
    answer.hasArray = infos != nullptr;
    for (unsigned int i = 0; infos != nullptr && i < answer.count; ++i)
    {
        answer.contacts.push_back({infos[i].position, infos[i].u});
        for (double const value :
             {infos[i].normal.X, infos[i].normal.Y, infos[i].normal.Z, infos[i].v, infos[i].distance})
        {
            EXPECT_TRUE(IsAsAllocated(value));
        }
    }
    CoTaskMemFree(infos);
    return answer;
}

/// The cone of slope 1.
Answer Ask(Vector const & p, Vector const & q)
{
    return Ask(1, 1, p, q);
}

void ExpectNone(Answer const & answer, unsigned long flags)
{
    EXPECT_EQ(answer.result, 0);
    EXPECT_EQ(answer.flags, flags);
    EXPECT_EQ(answer.count, 0U);
    EXPECT_FALSE(answer.hasArray);
}

void ExpectContacts(Answer const & answer, std::vector<double> const & parameters)
{
    EXPECT_EQ(answer.result, 0);
    EXPECT_EQ(answer.flags, k_Meeting);
    ASSERT_EQ(answer.contacts.size(), parameters.size());
    for (std::size_t i = 0; i < parameters.size(); ++i)
    {
        EXPECT_DOUBLE_EQ(answer.contacts[i].u, parameters[i]) << i;
    }
}

void ExpectRefused(Answer const & answer)
{
    EXPECT_EQ(answer.result, E_INVALIDARG);
    EXPECT_EQ(answer.flags, k_MarkedFlags);
    EXPECT_EQ(answer.count, k_MarkedCount);
}

/// How far a point is from the surface x^2 + y^2 = k z^2, in the measure of the equation.
double Residual(double k, Vector const & point)
{
    return point.X * point.X + point.Y * point.Y - k * point.Z * point.Z;
}

Vector RandomVector(Random & random, double size)
{
    double const x = random.Uniform(-size, size);
    double const y = random.Uniform(-size, size);
    return {x, y, random.Uniform(-size, size)};
}

} // namespace

TEST(ConeLine, A_radius_or_height_below_the_limit_is_refused)
{
    Vector const p(-2, 0, -1);
    Vector const q(2, 0, -1);
    for (double const bad : {std::nextafter(1e-12, 0), 0.0, -1.0, k_NaN})
    {
        ExpectRefused(Ask(bad, 1, p, q));
        ExpectRefused(Ask(1, bad, p, q));
    }
    EXPECT_EQ(Ask(1e-12, 1e-12, p, q).count, 2U);
}

TEST(ConeLine, A_line_without_length_is_refused_and_one_long_enough_on_one_axis_is_not)
{
    double const below = std::nextafter(1e-12, 0);
    ExpectRefused(Ask(Vector(0, 0, 0), Vector(below, -below, below)));
    ExpectRefused(Ask(Vector(1, 2, -3), Vector(1, 2, -3)));
    for (double const length : {1e-12, -1e-12})
    {
        EXPECT_EQ(Ask(Vector(0, 0, 0), Vector(length, 0, 0)).result, 0);
        EXPECT_EQ(Ask(Vector(0, 0, 0), Vector(0, length, 0)).result, 0);
        EXPECT_EQ(Ask(Vector(0, 0, 0), Vector(0, 0, length)).result, 0);
    }
    EXPECT_NE(Ask(Vector(0, 0, 0), Vector(k_NaN, 0, 0)).result, E_INVALIDARG);
}

TEST(ConeLine, Two_contacts_come_in_the_order_of_the_roots)
{
    // Across the section at z = -1, a circle of radius 1: without a linear term the later parameter comes first.
    Answer const centered = Ask(Vector(0, 0, -1), Vector(1, 0, -1));
    ExpectContacts(centered, {1, -1});
    EXPECT_TRUE(SameBits(centered.contacts[0].position, Vector(1, 0, -1)));
    EXPECT_TRUE(SameBits(centered.contacts[1].position, Vector(-1, 0, -1)));
    ExpectContacts(Ask(Vector(-2, 0, -1), Vector(0, 0, -1)), {1.5, 0.5});
    ExpectContacts(Ask(Vector(2, 0, -1), Vector(4, 0, -1)), {-1.5, -0.5});
}

TEST(ConeLine, The_slope_is_the_radius_over_the_height)
{
    ExpectContacts(Ask(3, 2, Vector(0, 0, -4), Vector(0, 1, -4)), {6, -6});
    ExpectContacts(Ask(2, 3, Vector(0, 0, -3), Vector(0, 1, -3)), {2, -2});
}

TEST(ConeLine, The_position_weighs_the_two_points)
{
    Answer const answer = Ask(Vector(0, 0, -1), Vector(4, 0, -3));
    ASSERT_EQ(answer.contacts.size(), 2U);
    for (Contact const & contact : answer.contacts)
    {
        EXPECT_TRUE(SameBits(contact.position.X, (1 - contact.u) * 0.0 + contact.u * 4));
        EXPECT_TRUE(SameBits(contact.position.Z, (1 - contact.u) * -1 + contact.u * -3));
    }
}

TEST(ConeLine, A_tangent_meets_once)
{
    Answer const answer = Ask(Vector(1, -1, -1), Vector(1, 1, -1));
    ExpectContacts(answer, {0.5});
    EXPECT_TRUE(SameBits(answer.contacts[0].position, Vector(1, 0, -1)));
    ExpectNone(Ask(Vector(1, -1, 1), Vector(1, 1, 1)), k_UpperNappe);
}

TEST(ConeLine, A_line_parallel_to_the_surface_meets_once_on_either_nappe)
{
    ExpectContacts(Ask(Vector(0, 0, -1), Vector(1, 0, 0)), {0.5});
    ExpectNone(Ask(Vector(0, 0, 1), Vector(1, 0, 2)), k_UpperNappe);
}

TEST(ConeLine, A_line_in_the_surface_is_degenerate)
{
    ExpectNone(Ask(Vector(1, 0, -1), Vector(2, 0, -2)), k_InSurface);
    ExpectNone(Ask(Vector(0, 0, 0), Vector(0, 1, -1)), k_InSurface);
    ExpectNone(Ask(3, 4, Vector(3, 0, 4), Vector(-3, 0, -4)), k_InSurface);
}

TEST(ConeLine, A_line_parallel_to_the_surface_that_never_meets_it_is_degenerate)
{
    ExpectNone(Ask(Vector(0, 1, 0), Vector(1, 1, 1)), k_InSurface);
}

TEST(ConeLine, A_miss_is_carried_on_at_the_nearest_parameter)
{
    // Beside the section at z = -1, at twice its radius.
    Answer const answer = Ask(Vector(2, -1, -1), Vector(2, 3, -1));
    ExpectContacts(answer, {0.25});
    EXPECT_TRUE(SameBits(answer.contacts[0].position, Vector(2, 0, -1)));
    // The same line with p at the nearest point: no linear term.
    ExpectContacts(Ask(Vector(2, 0, -1), Vector(2, 1, -1)), {0});
    ExpectNone(Ask(Vector(2, -1, 1), Vector(2, 3, 1)), k_UpperNappe);
}

TEST(ConeLine, A_miss_with_a_negligible_linear_term_is_carried_on_at_p)
{
    auto const withLinearTerm = [](double b) { return Ask(Vector(2, b / 2, -1), Vector(2, b / 2 + 1, -1)); };
    ExpectContacts(withLinearTerm(0.5e-9), {0});
    ExpectContacts(withLinearTerm(-0.5e-9), {0});
    EXPECT_NEAR(withLinearTerm(2e-9).contacts[0].u, -1e-9, 1e-15);
    EXPECT_NEAR(withLinearTerm(-2e-9).contacts[0].u, 1e-9, 1e-15);
}

TEST(ConeLine, A_miss_is_degenerate_where_the_quadratic_term_is_negligible)
{
    // Along Y beside the section at z = -1, in steps so short that their square is 2e-9 or 0.5e-9.
    EXPECT_EQ(Ask(Vector(2, 0, -1), Vector(2, std::sqrt(2e-9), -1)).flags, k_Meeting);
    ExpectNone(Ask(Vector(2, 0, -1), Vector(2, std::sqrt(0.5e-9), -1)), k_InSurface);
}

TEST(ConeLine, Contacts_up_to_a_thousandth_above_the_apex_count)
{
    ExpectContacts(Ask(Vector(0, 0, 0.001), Vector(1, 0, 0.001)), {0.001, -0.001});
    double const above = std::nextafter(0.001, 1);
    ExpectNone(Ask(Vector(0, 0, above), Vector(1, 0, above)), k_UpperNappe);
    // Through the apex, where both roots are one.
    ExpectContacts(Ask(Vector(0, 0, -1), Vector(0, 0, 0)), {1});
}

TEST(ConeLine, Of_two_contacts_on_two_nappes_the_lower_one_is_kept)
{
    // Along Z at x = 1/2. The root with the later parameter comes first: upwards it is the upper one.
    Answer const upwards = Ask(Vector(0.5, 0, 0), Vector(0.5, 0, 1));
    ExpectContacts(upwards, {-0.5});
    EXPECT_TRUE(SameBits(upwards.contacts[0].position, Vector(0.5, 0, -0.5)));
    Answer const downwards = Ask(Vector(0.5, 0, 0), Vector(0.5, 0, -1));
    ExpectContacts(downwards, {0.5});
    EXPECT_TRUE(SameBits(downwards.contacts[0].position, Vector(0.5, 0, -0.5)));
    ExpectNone(Ask(Vector(0, 0, 2), Vector(1, 0, 2)), k_UpperNappe);
}

TEST(ConeLine, The_array_is_as_long_as_the_count_and_made_only_where_asked_for)
{
    TaskMemoryFaults const memory(TaskMemoryFaults::Answer::Serve);
    unsigned long flags = 0;
    unsigned int count = 0;
    tagS3DGEOMINFO * infos = nullptr;
    Vector const p(0, 0, -1);
    F3DLocalConeVsLineIntersection(1, 1, p, Vector(1, 0, -1), flags, count, nullptr);
    EXPECT_EQ(memory.GetRequests(), 0);
    F3DLocalConeVsLineIntersection(1, 1, p, Vector(1, 0, -1), flags, count, &infos);
    EXPECT_EQ(memory.GetRequests(), 1);
    EXPECT_EQ(memory.GetLastSize(), 2 * sizeof(tagS3DGEOMINFO));
    CoTaskMemFree(infos);
    F3DLocalConeVsLineIntersection(1, 1, p, Vector(1, 0, 0), flags, count, &infos);
    EXPECT_EQ(memory.GetRequests(), 2);
    EXPECT_EQ(memory.GetLastSize(), sizeof(tagS3DGEOMINFO));
    CoTaskMemFree(infos);
    F3DLocalConeVsLineIntersection(1, 1, Vector(0, 0, 1), Vector(1, 0, 1), flags, count, &infos);
    EXPECT_EQ(memory.GetRequests(), 2) << "no contact, no array";
}

TEST(ConeLine, Exhausted_memory_is_told_with_no_array)
{
    TaskMemoryFaults const memory(TaskMemoryFaults::Answer::Refuse);
    tagS3DGEOMINFO marked;
    tagS3DGEOMINFO * infos = &marked;
    unsigned long flags = k_MarkedFlags;
    unsigned int count = k_MarkedCount;
    EXPECT_EQ(F3DLocalConeVsLineIntersection(1, 1, Vector(0, 0, -1), Vector(1, 0, -1), flags, count, &infos),
              E_OUTOFMEMORY);
    EXPECT_EQ(infos, nullptr);
    EXPECT_EQ(memory.GetRequests(), 1);
}

TEST(ConeLine, Contacts_lie_on_the_line_and_the_lower_nappe_and_none_is_missed)
{
    Random random(56);
    int two = 0;
    int crossings = 0;
    for (int i = 0; i < 3000; ++i)
    {
        double const radius = random.Uniform(0.2, 3.0);
        double const height = random.Uniform(0.2, 3.0);
        double const k = radius * radius / (height * height);
        Vector const p = RandomVector(random, 3);
        Vector const q = RandomVector(random, 3);
        auto const at = [&](double t) { return Vector().LinearPositionInterpolate(p, q, t); };
        Answer const answer = Ask(radius, height, p, q);
        ASSERT_EQ(answer.result, 0);
        ASSERT_NE(answer.flags, k_InSurface);
        two += answer.count == 2 ? 1 : 0;
        for (Contact const & contact : answer.contacts)
        {
            ASSERT_TRUE(SameBits(contact.position, at(contact.u)));
            ASSERT_LE(contact.position.Z, 0.001 + 1e-12);
        }
        // Where the sign changes between two samples of the lower nappe there is a contact, and a contact is where the
        // sign changes, or the extreme of an equation that never changes it.
        constexpr int samples = 400;
        int changes = 0;
        for (int n = 0; n < samples; ++n)
        {
            double const t0 = 20.0 * n / samples - 10;
            double const t1 = 20.0 * (n + 1) / samples - 10;
            bool const isLower = at(t0).Z < 0 && at(t1).Z < 0;
            if (isLower && (Residual(k, at(t0)) > 0) != (Residual(k, at(t1)) > 0))
            {
                ++changes;
                int matches = 0;
                for (Contact const & contact : answer.contacts)
                {
                    matches += contact.u >= t0 - 1e-9 && contact.u <= t1 + 1e-9 ? 1 : 0;
                }
                ASSERT_GE(matches, 1);
            }
        }
        crossings += changes;
        ASSERT_GE(static_cast<int>(answer.count), changes);
        for (Contact const & contact : answer.contacts)
        {
            double const scale = 1 + contact.position.GetSquaredLength() * (1 + k);
            bool const isOnCone = std::abs(Residual(k, contact.position)) < 1e-9 * scale;
            bool const isExtreme =
                std::abs(Residual(k, at(contact.u - 1)) - Residual(k, at(contact.u + 1))) < 1e-9 * scale;
            ASSERT_TRUE(isOnCone || (isExtreme && answer.count == 1 && changes == 0));
        }
    }
    EXPECT_GT(two, 300);
    EXPECT_GT(crossings, 1000);
}
