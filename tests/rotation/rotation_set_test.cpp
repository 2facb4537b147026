/// What each setter stores, and the state it leaves.

#include "rotation/rotation_states.h"

#include <functional>
#include <vector>

using namespace rotation_test;

namespace
{

/// Every state to set from: the twelve, with and without the mark, in another order than the default.
std::vector<C3DRotation> EveryState()
{
    std::vector<C3DRotation> rotations;
    for (unsigned const state : k_States)
    {
        rotations.push_back(MakeState(state));
        rotations.push_back(MakeState(state | k_Marked));
    }
    return rotations;
}

/// Runs a setter on every state.
void OnEveryState(std::function<void(C3DRotation &, Inside &)> const & check)
{
    for (C3DRotation & rotation : EveryState())
    {
        Inside inside(rotation);
        SCOPED_TRACE(inside.Flags());
        check(rotation, inside);
    }
}

void ExpectIdentityMade(Inside & inside, unsigned before)
{
    // Where the mark is set already, making the identity does nothing at all.
    EXPECT_EQ(inside.Flags(), (before & k_Marked) != 0 ? before : k_IdentityState);
    if ((inside.Flags() & k_QuatDirty) == 0)
    {
        EXPECT_TRUE(Same(inside.Quat(), Quat(1, 0, 0, 0)));
        EXPECT_EQ(inside.Angle(), 0);
    }
}

} // namespace

// --- Quaternion, matrix, angles --------------------------------------------------------------------------------------

TEST(RotationSet, A_quaternion_is_normalised_and_becomes_the_source)
{
    OnEveryState(
        [](C3DRotation & rotation, Inside & inside)
        {
            Quat const q(1, -2, 3, -4);
            EXPECT_EQ(&rotation.Set(q), &rotation);
            EXPECT_EQ(inside.Flags(), 24U);
            EXPECT_TRUE(Same(inside.Quat(), Normalized(q)));
            EXPECT_EQ(inside.Angle(), AngleOf(Normalized(q)));
            EXPECT_EQ(inside.Order(), E3DROTORDER_ZXY);
        });
}

TEST(RotationSet, A_quaternion_is_not_examined_for_being_the_identity)
{
    for (Quat const & q : {Quat(1, 0, 0, 0), Quat(0, 0, 0, 0), Quat(1e-7, 0, 0, 0), Quat(1.0000000000001, 0, 0, 0),
                           Quat(k_Nan, 0, 0, 0), Quat(9, 0, 0, 0)})
    {
        C3DRotation rotation;
        rotation.Set(q);
        Inside inside(rotation);
        EXPECT_EQ(inside.Flags(), 24U);
        EXPECT_TRUE(Same(inside.Quat(), Quat(1, 0, 0, 0)));
        EXPECT_EQ(inside.Angle(), 0);
    }
}

TEST(RotationSet, A_quaternion_of_length_one_is_kept_bit_for_bit_with_its_sign)
{
    for (Quat const & q : {Quat(-0.5, 0.5, -0.5, 0.5), Quat(-1, 0, 0, 0), Quat(1 - 1e-14, 0, 0, 1e-10)})
    {
        C3DRotation rotation(q);
        EXPECT_TRUE(Same(Inside(rotation).Quat(), q));
        EXPECT_EQ(Inside(rotation).Angle(), 2 * std::acos(q.W));
    }
}

TEST(RotationSet, A_matrix_is_kept_bit_for_bit_and_not_examined)
{
    OnEveryState(
        [](C3DRotation & rotation, Inside & inside)
        {
            Matrix const counting(1, 2, 3, 4, 5, 6, 7, 8, 9);
            EXPECT_EQ(&rotation.Set(counting), &rotation);
            EXPECT_EQ(inside.Flags(), 21U);
            EXPECT_TRUE(Same(inside.Matrix(), counting));
            EXPECT_EQ(inside.Order(), E3DROTORDER_ZXY);
            rotation.Set(Matrix());
            EXPECT_EQ(inside.Flags(), 21U) << "the identity is not looked for";
        });
}

TEST(RotationSet, Three_vectors_become_the_rows)
{
    OnEveryState(
        [](C3DRotation & rotation, Inside & inside)
        {
            EXPECT_EQ(&rotation.Set(Vector(1, 2, 3), Vector(4, 5, 6), Vector(7, 8, 9)), &rotation);
            EXPECT_EQ(inside.Flags(), 21U);
            EXPECT_TRUE(Same(inside.Matrix(), Matrix(1, 2, 3, 4, 5, 6, 7, 8, 9)));
            EXPECT_EQ(inside.Order(), E3DROTORDER_ZXY);
        });
}

TEST(RotationSet, Angles_are_kept_with_their_turns_and_name_the_order)
{
    for (tagE3DROTORDER const order : k_Orders)
    {
        OnEveryState(
            [order](C3DRotation & rotation, Inside & inside)
            {
                Vector const angles(100, -1e-300, 0);
                EXPECT_EQ(&rotation.Set(angles, order), &rotation);
                EXPECT_EQ(inside.Flags(), 14U);
                EXPECT_TRUE(Same(inside.Angles(), angles));
                EXPECT_EQ(rotation.GetXYZRotOrder(), order);
                EXPECT_EQ(&rotation.Set(-0.0, 5.0, -70.0, order), &rotation);
                EXPECT_EQ(inside.Flags(), 14U);
                EXPECT_TRUE(Same(inside.Angles(), Vector(0, 5, -70)));
                EXPECT_EQ(rotation.GetXYZRotOrder(), order);
            });
    }
}

TEST(RotationSet, Angles_of_exactly_zero_set_the_mark)
{
    OnEveryState(
        [](C3DRotation & rotation, Inside & inside)
        {
            rotation.Set(Vector(0, -0.0, 0), E3DROTORDER_YZX);
            EXPECT_EQ(inside.Flags(), 46U);
            EXPECT_EQ(inside.Order(), 3);
            inside.FillStale();
            Quat quat;
            rotation.GetQuat(quat);
            EXPECT_TRUE(Same(quat, Quat(1, 0, 0, 0)));
            rotation.Set(0.0, 0.0, 0.0, E3DROTORDER_XZY);
            EXPECT_EQ(inside.Flags(), 46U);
            EXPECT_EQ(inside.Order(), 1);
            for (int i = 0; i < 3; ++i)
            {
                for (double const angle : {std::numeric_limits<double>::denorm_min(), k_Nan})
                {
                    rotation.Set(Vector(i, angle), E3DROTORDER_XYZ);
                    EXPECT_EQ(inside.Flags(), 14U);
                }
            }
        });
}

// --- Axis and angle --------------------------------------------------------------------------------------------------

TEST(RotationSet, A_coordinate_axis_fills_all_forms_for_any_order)
{
    for (double const angle : {0.7, -2.0, 3 * k_Pi, 1e-20, 50.0})
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            OnEveryState(
                [angle, axis](C3DRotation & rotation, Inside & inside)
                {
                    auto const type = static_cast<tagE3DAXISTYPE>(axis);
                    EXPECT_EQ(&rotation.Set(type, angle), &rotation);
                    EXPECT_EQ(inside.Flags(), 0U);
                    double const sine = std::sin(angle * 0.5);
                    EXPECT_TRUE(Same(inside.Quat(), Quat(std::cos(angle * 0.5), axis == 0 ? sine : 0,
                                                         axis == 1 ? sine : 0, axis == 2 ? sine : 0)));
                    EXPECT_TRUE(Same(inside.Matrix(), Matrix().Set(type, angle)));
                    EXPECT_TRUE(Same(inside.Angles(), Vector(axis, angle)));
                    EXPECT_EQ(inside.Angle(), angle);
                    EXPECT_EQ(inside.Order(), E3DROTORDER_ZXY);
                });
            for (tagE3DROTORDER const order : k_Orders)
            {
                C3DRotation rotation = MakeState(k_QuatAlone, Vector(1, 1, 1), order);
                rotation.Set(static_cast<tagE3DAXISTYPE>(axis), angle);
                EXPECT_TRUE(FreshFormsAre(rotation, JudgeOf(Vector(axis, angle), order), 1e-14));
            }
        }
    }
}

TEST(RotationSet, No_angle_makes_the_identity_whatever_the_axis)
{
    OnEveryState(
        [](C3DRotation & rotation, Inside & inside)
        {
            unsigned const before = inside.Flags();
            C3DRotation const start = rotation;
            for (double const angle : {0.0, -0.0})
            {
                for (int axis = 0; axis < 3; ++axis)
                {
                    rotation = start;
                    EXPECT_EQ(&rotation.Set(static_cast<tagE3DAXISTYPE>(axis), angle), &rotation);
                    ExpectIdentityMade(inside, before);
                }
                for (Vector const & axis : {Vector(1, 2, 3), Vector(0, 0, 0), Vector(0, -1, 0), Vector(k_Nan, 0, 0)})
                {
                    rotation = start;
                    EXPECT_EQ(&rotation.Set(axis, angle), &rotation);
                    ExpectIdentityMade(inside, before);
                }
                EXPECT_EQ(inside.Order(), E3DROTORDER_ZXY);
            }
        });
}

TEST(RotationSet, A_value_that_names_no_axis_gives_the_identity)
{
    C3DRotation rotation(1, 2, 3, E3DROTORDER_XYZ);
    rotation.Set(static_cast<tagE3DAXISTYPE>(3), 1.0);
    EXPECT_EQ(Inside(rotation).Flags(), 56U);
}

TEST(RotationSet, A_vector_along_a_positive_axis_is_that_axis_whatever_its_length)
{
    struct Row
    {
        Vector vector;
        tagE3DAXISTYPE axis;
    };
    double const tiny = std::numeric_limits<double>::denorm_min();
    for (Row const & row : {Row{Vector(2, 0, 0), E3D_AXIS_X}, Row{Vector(tiny, 0, -0.0), E3D_AXIS_X},
                            Row{Vector(k_Infinity, -0.0, 0), E3D_AXIS_X}, Row{Vector(0, 3, 0), E3D_AXIS_Y},
                            Row{Vector(-0.0, tiny, -0.0), E3D_AXIS_Y}, Row{Vector(0, 0, 4), E3D_AXIS_Z},
                            Row{Vector(0, 0, tiny), E3D_AXIS_Z},
                            // The null vector goes the way of Z.
                            Row{Vector(0, 0, 0), E3D_AXIS_Z}, Row{Vector(-0.0, -0.0, -0.0), E3D_AXIS_Z}})
    {
        OnEveryState(
            [&row](C3DRotation & rotation, Inside & inside)
            {
                C3DRotation expected = rotation;
                expected.Set(row.axis, 2.5);
                EXPECT_EQ(&rotation.Set(row.vector, 2.5), &rotation);
                EXPECT_EQ(inside.Flags(), 0U);
                EXPECT_TRUE(SameState(rotation, expected));
            });
    }
}

TEST(RotationSet, Any_other_vector_gives_the_quaternion_alone)
{
    double const angle = 7.5;
    double const c = std::cos(angle / 2);
    double const s = std::sin(angle / 2);
    struct Row
    {
        Vector axis;
        Quat expected;
    };
    for (Row const & row :
         {Row{Vector(-2, 0, 0), Quat(c, -s, 0, 0)}, Row{Vector(0, -3, 0), Quat(c, 0, -s, 0)},
          Row{Vector(0, 0, -2), Quat(c, 0, 0, -s)}, Row{Vector(0, 3, 4), Quat(c, 0, 0.6 * s, 0.8 * s)},
          Row{Vector(3, 0, 4), Quat(c, 0.6 * s, 0, 0.8 * s)}, Row{Vector(-3, 4, 0), Quat(c, -0.6 * s, 0.8 * s, 0)},
          Row{Vector(1, 0, 1e-300), Quat(c, s, 0, 1e-300 * s)}})
    {
        OnEveryState(
            [&](C3DRotation & rotation, Inside & inside)
            {
                EXPECT_EQ(&rotation.Set(row.axis, angle), &rotation);
                EXPECT_EQ(inside.Flags(), 24U);
                EXPECT_LT(MaxDifference(inside.Quat(), row.expected), 1e-15);
                EXPECT_EQ(inside.Angle(), angle);
                EXPECT_EQ(inside.Order(), E3DROTORDER_ZXY);
            });
    }
}

TEST(RotationSet, A_tiny_vector_off_the_positive_axes_is_used_as_it_is)
{
    C3DRotation rotation;
    rotation.Set(Vector(0, -0.99e-12, 0), 1.0);
    EXPECT_EQ(Inside(rotation).Flags(), 24U);
    EXPECT_TRUE(Same(Inside(rotation).Quat(), Quat(std::cos(0.5), 0, -0.99e-12, 0))) << "nothing is normalised";
    ASSERT_EQ(Vector(0, -1e-12, 0).GetLength(), 1e-12);
    rotation.Set(Vector(0, -1e-12, 0), 1.0);
    EXPECT_TRUE(Same(Inside(rotation).Quat(), Quat(std::cos(0.5), 0, -1e-12, 0))) << "at the limit";
    rotation.Set(Vector(0, -1.01e-12, 0), 1.0);
    EXPECT_LT(MaxDifference(Inside(rotation).Quat(), Quat(std::cos(0.5), 0, -std::sin(0.5), 0)), 1e-15);
}

TEST(RotationSet, Not_a_number_is_no_coordinate_axis)
{
    for (int i = 0; i < 3; ++i)
    {
        C3DRotation rotation;
        rotation.Set(Vector(i, k_Nan), 1.0);
        EXPECT_EQ(Inside(rotation).Flags(), 24U);
        EXPECT_EQ(Inside(rotation).Quat().W, std::cos(0.5));
    }
    C3DRotation rotation;
    rotation.Set(E3D_AXIS_X, k_Nan);
    EXPECT_EQ(Inside(rotation).Flags(), 0U);
    EXPECT_TRUE(std::isnan(Inside(rotation).Angle()));
}

// --- From one vector to another --------------------------------------------------------------------------------------

TEST(RotationSet, The_shortest_rotation_takes_from_to_to)
{
    test_support::Random random(301);
    for (int i = 0; i < 1000; ++i)
    {
        Vector const from(random.Uniform(-9.0, 9.0), random.Uniform(-9.0, 9.0), random.Uniform(-9.0, 9.0));
        Vector const to(random.Uniform(-1.0, 1.0), random.Uniform(-1.0, 1.0), random.Uniform(-1.0, 1.0));
        C3DRotation rotation = MakeState(k_States[i % 12] | (i % 2 == 0 ? k_Marked : 0));
        Inside inside(rotation);
        int degenerate = 5;
        EXPECT_EQ(rotation.Set(from, to, degenerate), 1);
        EXPECT_EQ(degenerate, 0);
        EXPECT_EQ(inside.Flags(), 24U);
        EXPECT_EQ(inside.Order(), E3DROTORDER_ZXY);
        EXPECT_EQ(inside.Angle(), std::acos(math::detail::Dot(from, to) / (from.GetLength() * to.GetLength())));
        EXPECT_NEAR(inside.Quat().GetSquaredLength(), 1, 1e-12);
        Judge const judge =
            Judge::FromTwoVectors(Eigen::Vector3d(from.X, from.Y, from.Z), Eigen::Vector3d(to.X, to.Y, to.Z));
        EXPECT_LT(Distance(JudgeOf(inside.Quat()), judge), 1e-12);
    }
}

TEST(RotationSet, From_and_to_at_their_limits)
{
    enum class Result
    {
        none,     // null input
        parallel, // the identity
        regular,  // a quaternion
        halfTurnY // opposite, without an axis of its own
    };
    struct Row
    {
        char const * name;
        Vector from;
        Vector to;
        Result result;
        int degenerate;
        Quat quat;
        double angle;
    };
    double const diagonal = 1 / std::sqrt(13.0);
    Row const rows[] = {
        {"null from", {0, 0, 0}, {1, 0, 0}, Result::none, 0, {}, 0},
        {"null to", {1, 0, 0}, {0, 0, 0}, Result::none, 0, {}, 0},
        {"product of lengths below the limit", {1e-6, 0, 0}, {0, 0.99e-6, 0}, Result::none, 0, {}, 0},
        {"product of lengths at the limit",
         {1e-12, 0, 0},
         {0, 1, 0},
         Result::regular,
         0,
         {std::sqrt(0.5), 0, 0, std::sqrt(0.5)},
         k_HalfPi},
        {"a short vector and a long one",
         {1e-9, 0, 0},
         {0, 1e9, 0},
         Result::regular,
         0,
         {std::sqrt(0.5), 0, 0, std::sqrt(0.5)},
         k_HalfPi},
        {"parallel", {1, 2, 3}, {2, 4, 6}, Result::parallel, 0, {}, 0},
        {"cross product below the limit", {1, 0, 0}, {1, 0.99e-12, 0}, Result::parallel, 0, {}, 0},
        {"cross product at the limit", {1, 0, 0}, {1, 1e-12, 0}, Result::regular, 0, {1, 0, 0, 0}, 0},
        // The limit on the cross product is absolute: short vectors seem parallel at any angle below a right one.
        {"short vectors half a right angle apart", {1.1e-6, 0, 0}, {0.7e-6, 0.7e-6, 0}, Result::parallel, 0, {}, 0},
        {"short vectors almost a right angle apart",
         {1.05e-6, 0, 0},
         {0.342e-6, 0.9397e-6, 0},
         Result::parallel,
         0,
         {},
         0},
        {"short vectors beyond a right angle, from off X",
         {0, 1.1e-6, 0},
         {0.6e-6, -0.8e-6, 0},
         Result::regular,
         1,
         {0, 0, 0, 1},
         k_Pi},
        {"short vectors beyond a right angle", {1.1e-6, 0, 0}, {-0.8e-6, 0.6e-6, 0}, Result::halfTurnY, 1, {}, k_Pi},
        {"opposite, along X", {1, 0, 0}, {-1, 0, 0}, Result::halfTurnY, 1, {}, k_Pi},
        {"opposite, against X", {-2, 0, 0}, {1, 0, 0}, Result::halfTurnY, 1, {}, k_Pi},
        {"opposite, along Y", {0, 1, 0}, {0, -1, 0}, Result::regular, 1, {0, 0, 0, 1}, k_Pi},
        {"opposite, against Y", {0, -1, 0}, {0, 5, 0}, Result::regular, 1, {0, 0, 0, -1}, k_Pi},
        {"opposite, along Z", {0, 0, 1}, {0, 0, -2}, Result::regular, 1, {0, 0, -1, 0}, k_Pi},
        {"opposite", {1, 2, 3}, {-1, -2, -3}, Result::regular, 1, {0, 0, -3 * diagonal, 2 * diagonal}, k_Pi},
        {"opposite, cross product below the limit", {1, 0, 0}, {-1, 0.99e-12, 0}, Result::halfTurnY, 1, {}, k_Pi},
        {"opposite, cross product at the limit", {1, 0, 0}, {-1, 1e-12, 0}, Result::regular, 0, {0, 0, 0, 1}, k_Pi},
        {"opposite, X x from below the limit", {1, 0.99e-12, 0}, {-1, -0.99e-12, 0}, Result::halfTurnY, 1, {}, k_Pi},
        {"opposite, X x from at the limit", {1, 1e-12, 0}, {-1, -1e-12, 0}, Result::regular, 1, {0, 0, 0, 1}, k_Pi},
    };
    for (Row const & row : rows)
    {
        SCOPED_TRACE(row.name);
        OnEveryState(
            [&row](C3DRotation & rotation, Inside & inside)
            {
                unsigned const before = inside.Flags();
                int degenerate = 5;
                EXPECT_EQ(rotation.Set(row.from, row.to, degenerate), row.result == Result::none ? 0 : 1);
                EXPECT_EQ(degenerate, row.degenerate);
                EXPECT_EQ(inside.Order(), E3DROTORDER_ZXY);
                switch (row.result)
                {
                case Result::none:
                    ExpectIdentityMade(inside, before);
                    break;
                case Result::parallel:
                    EXPECT_EQ(inside.Flags(), k_IdentityState);
                    ExpectIdentityMade(inside, 0);
                    break;
                case Result::regular:
                    EXPECT_EQ(inside.Flags(), k_QuatAlone);
                    EXPECT_LT(MaxDifference(inside.Quat(), row.quat), 1e-12);
                    EXPECT_NEAR(inside.Angle(), row.angle, 1e-15);
                    break;
                case Result::halfTurnY:
                    C3DRotation expected = rotation;
                    EXPECT_TRUE(SameState(rotation, expected.Set(E3D_AXIS_Y, k_Pi)));
                    break;
                }
            });
    }
}

TEST(RotationSet, The_cosine_is_clamped)
{
    // The quotient of these two is above 1 or below -1 by rounding; the angle must be a number.
    test_support::Random random(302);
    int beyond = 0;
    for (int i = 0; i < 2000; ++i)
    {
        Vector const from(random.Uniform(1.0, 2.0) * 1e6, random.Uniform(1.0, 2.0) * 1e6,
                          random.Uniform(1.0, 2.0) * 1e6);
        Vector const to(-from.X * (1 + 1e-15), -from.Y, -from.Z);
        double const cosine = math::detail::Dot(from, to) / (from.GetLength() * to.GetLength());
        C3DRotation rotation;
        int degenerate = 0;
        EXPECT_EQ(rotation.Set(from, to, degenerate), 1);
        EXPECT_FALSE(std::isnan(Inside(rotation).Angle()));
        beyond += cosine < -1 ? 1 : 0;
    }
    EXPECT_GT(beyond, 10);
}

TEST(RotationSet, Infinite_and_undefined_vectors_give_no_number_away)
{
    for (double const value : {k_Nan, k_Infinity})
    {
        C3DRotation rotation;
        int degenerate = 5;
        EXPECT_EQ(rotation.Set(Vector(0, value, 0), Vector(1, 0, 0), degenerate), 1);
        EXPECT_EQ(degenerate, 1);
        EXPECT_EQ(Inside(rotation).Flags(), k_QuatAlone);
        EXPECT_TRUE(Same(Inside(rotation).Quat(), Quat(1, 0, 0, 0)));
    }
}
