/// Changing the order of the angles, and copying a rotation with or without its order.

#include "rotation/rotation_states.h"

using namespace rotation_test;

namespace
{

/// Whether axis i acts before axis j in an order.
bool ActsBefore(int i, int j, tagE3DROTORDER order)
{
    constexpr bool xBeforeY[6] = {true, true, false, false, true, false};
    constexpr bool xBeforeZ[6] = {true, true, true, false, false, false};
    constexpr bool yBeforeZ[6] = {true, false, true, true, false, false};
    if (i + j == 1)
    {
        return xBeforeY[order];
    }
    return i + j == 2 ? xBeforeZ[order] : yBeforeZ[order];
}

/// Whether angles whose non-zero ones are the bits of a pattern mean the same in both orders.
bool NumbersStay(unsigned pattern, tagE3DROTORDER before, tagE3DROTORDER after)
{
    switch (pattern)
    {
    case 3: // X and Y
        return ActsBefore(0, 1, before) == ActsBefore(0, 1, after);
    case 5: // X and Z
        return ActsBefore(0, 2, before) == ActsBefore(0, 2, after);
    case 6: // Y and Z
        return ActsBefore(1, 2, before) == ActsBefore(1, 2, after);
    case 7:
        return false;
    default:
        return true;
    }
}

/// Angles of more than a turn where the pattern has a bit, and almost nothing elsewhere.
Vector AnglesWithPattern(unsigned pattern)
{
    return {(pattern & 1U) != 0 ? 0.4 + 2 * k_TwoPi : 0.99e-12, (pattern & 2U) != 0 ? -1.1 - k_TwoPi : -0.99e-12,
            (pattern & 4U) != 0 ? 2.9 + k_TwoPi : 0.5e-12};
}

Vector WithoutTraces(Vector const & angles)
{
    return {std::abs(angles.X) < 1e-12 ? 0 : angles.X, std::abs(angles.Y) < 1e-12 ? 0 : angles.Y,
            std::abs(angles.Z) < 1e-12 ? 0 : angles.Z};
}

} // namespace

// --- Another order ---------------------------------------------------------------------------------------------------

TEST(RotationOrder, Angles_keep_their_numbers_where_they_mean_the_same_and_are_converted_elsewhere)
{
    int kept = 0;
    for (tagE3DROTORDER const before : k_Orders)
    {
        for (tagE3DROTORDER const after : k_Orders)
        {
            for (unsigned pattern = 0; pattern < 8; ++pattern)
            {
                for (unsigned const flags : {14U, 10U, 6U, 2U})
                {
                    for (int const keep : {1, -1, 256})
                    {
                        SCOPED_TRACE(testing::Message() << before << " to " << after << ", pattern " << pattern);
                        Vector const angles = AnglesWithPattern(pattern);
                        C3DRotation rotation = MakeState(flags, angles, before);
                        Inside inside(rotation);
                        EXPECT_EQ(&rotation.Set(after, keep), &rotation);
                        EXPECT_EQ(rotation.GetXYZRotOrder(), after);
                        EXPECT_LT(Distance(JudgeOf(inside.Angles(), after), JudgeOf(angles, before)), 1e-11);
                        if (before == after)
                        {
                            EXPECT_TRUE(Same(inside.Angles(), angles)) << "nothing at all happens";
                            EXPECT_EQ(inside.Flags(), flags);
                            continue;
                        }
                        Vector const clean = WithoutTraces(angles);
                        bool const stay = NumbersStay(pattern, before, after);
                        Vector const converted = AnglesOf(MatrixOf(clean, before), after);
                        EXPECT_TRUE(Same(inside.Angles(), stay ? clean : converted));
                        EXPECT_EQ(inside.Flags(), 14U);
                        kept += stay ? 1 : 0;
                    }
                }
            }
        }
    }
    // Of the 30 changes of order, four patterns stay in all and three in the 12 that keep two axes in sequence.
    EXPECT_EQ(kept, (30 * 4 + 12 * 3) * 4 * 3);
}

TEST(RotationOrder, Examples_of_numbers_that_stay_and_of_numbers_that_do_not)
{
    for (tagE3DROTORDER const order : k_Orders)
    {
        C3DRotation rotation(0.5, 0, 0, E3DROTORDER_XYZ);
        rotation.Set(order, 1);
        EXPECT_TRUE(Same(Inside(rotation).Angles(), Vector(0.5, 0, 0)));
    }
    C3DRotation rotation(0.5, 0.5, 0, E3DROTORDER_XYZ);
    rotation.Set(E3DROTORDER_ZXY, 1);
    EXPECT_TRUE(Same(Inside(rotation).Angles(), Vector(0.5, 0.5, 0)));
    rotation.Set(E3DROTORDER_XYZ, 1).Set(E3DROTORDER_YXZ, 1);
    EXPECT_FALSE(Same(Inside(rotation).Angles(), Vector(0.5, 0.5, 0)));
    EXPECT_LT(
        Distance(JudgeOf(Inside(rotation).Angles(), E3DROTORDER_YXZ), JudgeOf(Vector(0.5, 0.5, 0), E3DROTORDER_XYZ)),
        1e-15);
}

TEST(RotationOrder, An_angle_counts_from_its_limit_on)
{
    for (int i = 0; i < 3; ++i)
    {
        for (double const sign : {1.0, -1.0})
        {
            Vector angles(0.5, 0.5, 0.5);
            angles.Set(i, sign * 1e-12);
            C3DRotation rotation(angles, E3DROTORDER_XYZ);
            rotation.Set(E3DROTORDER_ZYX, 1);
            EXPECT_TRUE(Same(Inside(rotation).Angles(), AnglesOf(MatrixOf(angles, E3DROTORDER_XYZ), E3DROTORDER_ZYX)))
                << "three angles";

            rotation.Set(Vector(i, sign * 1e-12), E3DROTORDER_XYZ).Set(E3DROTORDER_ZYX, 1);
            EXPECT_TRUE(Same(Inside(rotation).Angles(), Vector(i, sign * 1e-12)));
            rotation.Set(Vector(i, sign * 0.99e-12), E3DROTORDER_XYZ).Set(E3DROTORDER_ZYX, 1);
            EXPECT_TRUE(Same(Inside(rotation).Angles(), Vector(0, 0, 0)));
            EXPECT_EQ(Inside(rotation).Flags(), k_AnglesAlone) << "the mark is not set";
        }
    }
}

TEST(RotationOrder, Without_angles_as_the_source_the_order_changes_and_the_angles_become_stale)
{
    for (unsigned const flags : {24U, 16U, 8U, 0U, 21U, 17U, 5U, 1U})
    {
        C3DRotation rotation = MakeState(flags);
        C3DRotation expected = rotation;
        rotation.Set(E3DROTORDER_YZX, 1);
        Inside(expected).SetFlags(flags | k_AnglesDirty);
        Inside(expected).SetOrder(E3DROTORDER_YZX);
        EXPECT_TRUE(SameState(rotation, expected));
        Inside(rotation).FillAngles(k_Nan);
        Vector angles;
        rotation.GetXYZAngles(angles);
        EXPECT_LT(Distance(JudgeOf(angles, E3DROTORDER_YZX), JudgeOf(Vector(0.3, -0.5, 0.7), E3DROTORDER_ZXY)), 1e-14);

        rotation = MakeState(flags);
        rotation.Set(E3DROTORDER_ZXY, 1);
        EXPECT_EQ(Inside(rotation).Flags(), flags) << "its own order";
    }
}

TEST(RotationOrder, Without_keeping_the_rotation_the_same_numbers_are_read_in_the_new_order)
{
    Vector const angles(0.3, -0.5 + 1e-13, 1e-13);
    for (unsigned const flags : k_States)
    {
        C3DRotation rotation = MakeState(flags, angles);
        Inside inside(rotation);
        C3DRotation reading = rotation;
        Vector numbers;
        reading.GetXYZAngles(numbers);
        EXPECT_EQ(&rotation.Set(E3DROTORDER_XZY, 0), &rotation);
        EXPECT_EQ(inside.Flags(), k_AnglesAlone);
        EXPECT_EQ(inside.Order(), E3DROTORDER_XZY);
        EXPECT_TRUE(Same(inside.Angles(), numbers)) << "and no angle is cut to zero";
        inside.FillStale();
        Quat quat;
        rotation.GetQuat(quat);
        EXPECT_LT(Distance(JudgeOf(quat), JudgeOf(angles, E3DROTORDER_XZY)), 1e-14);

        rotation = MakeState(flags, angles);
        rotation.Set(E3DROTORDER_ZXY, 0);
        EXPECT_EQ(inside.Flags(), flags) << "its own order";
    }
}

TEST(RotationOrder, The_marked_identity_only_takes_the_order)
{
    for (unsigned const state : k_States)
    {
        for (int const keep : {0, 1})
        {
            C3DRotation rotation = MakeState(state | k_Marked);
            rotation.Set(E3DROTORDER_XZY, keep);
            EXPECT_EQ(Inside(rotation).Flags(), state | k_Marked);
            EXPECT_EQ(Inside(rotation).Order(), E3DROTORDER_XZY);
        }
    }
}

TEST(RotationOrder, A_value_that_names_no_order_keeps_single_angles_and_loses_others)
{
    C3DRotation rotation(0, 0.5, 0, E3DROTORDER_XYZ);
    rotation.Set(k_NoOrder, 1);
    EXPECT_TRUE(Same(Inside(rotation).Angles(), Vector(0, 0.5, 0)));
    EXPECT_EQ(rotation.GetXYZRotOrder(), k_NoOrder);
    rotation.Set(0.1, 0.2, 0.3, E3DROTORDER_XYZ).Set(k_NoOrder, 1);
    EXPECT_TRUE(Same(Inside(rotation).Angles(), Vector(0, 0, 0)));
    rotation.Set(0.1, 0.2, 0.3, static_cast<tagE3DROTORDER>(8)).Set(k_NoOrder, 1);
    EXPECT_TRUE(Same(Inside(rotation).Angles(), Vector(0, 0, 0)));
}

// --- Copies ----------------------------------------------------------------------------------------------------------

namespace
{

/// A target whose every form, fresh or not, holds a number that no source has.
C3DRotation TargetForCopy(unsigned flags, tagE3DROTORDER order)
{
    C3DRotation target = MakeState(flags, Vector(1, 2, 3), order);
    Inside inside(target);
    inside.FillQuat(77);
    inside.FillMatrix(77);
    inside.FillAngles(77);
    return target;
}

} // namespace

TEST(RotationOrder, A_copy_takes_the_fresh_forms_the_flags_and_the_order)
{
    for (unsigned const flags : k_States)
    {
        for (unsigned const old : {24U, 0U, 21U, 14U, 46U, 56U})
        {
            C3DRotation source = MakeState(flags);
            C3DRotation const untouched = source;
            C3DRotation target = TargetForCopy(old, E3DROTORDER_XZY);
            EXPECT_EQ(&target.Set(untouched, 0), &target);
            EXPECT_TRUE(SameState(target, source));
            Inside inside(target);
            // What is stale in the source was not copied: the target still holds its own.
            EXPECT_EQ(inside.Quat().X == 77, (flags & k_QuatDirty) != 0);
            EXPECT_EQ(inside.Matrix().Get(1, 1) == 77, (flags & k_MatDirty) != 0);
            EXPECT_EQ(inside.Angles().Y == 77, (flags & k_AnglesDirty) != 0);
        }
    }
}

TEST(RotationOrder, A_copy_takes_the_angle_even_beside_a_stale_quaternion)
{
    C3DRotation source = MakeState(k_AnglesAlone);
    Inside(source).Angle() = 4.5;
    C3DRotation target;
    target.Set(source, 0);
    EXPECT_EQ(Inside(target).Angle(), 4.5);
}

TEST(RotationOrder, A_copy_under_the_own_order_converts_angles_that_are_the_source_and_drops_others)
{
    Vector const several(0.3, -0.5 + k_TwoPi, 0.7);
    Vector const single(0, -0.5 + k_TwoPi, 1e-13);
    for (unsigned const flags : k_States)
    {
        for (Vector const & angles : {several, single})
        {
            for (tagE3DROTORDER const own : k_Orders)
            {
                C3DRotation source = MakeState(flags, angles);
                C3DRotation target = TargetForCopy(k_MatrixAlone, own);
                target.Set(source, 1);
                EXPECT_EQ(target.GetXYZRotOrder(), own);
                C3DRotation expected = source;
                if (own != E3DROTORDER_ZXY)
                {
                    expected.Set(own, 1);
                    bool const converted = (flags & k_Source) == k_FromAngles;
                    EXPECT_EQ(Inside(target).Flags(), converted ? k_AnglesAlone : flags | k_AnglesDirty);
                }
                EXPECT_TRUE(SameState(target, expected));
                EXPECT_TRUE(FreshFormsAre(target, JudgeOf(angles, E3DROTORDER_ZXY)));
                EXPECT_EQ(Inside(source).Flags(), flags);
            }
        }
    }
}

TEST(RotationOrder, A_copy_of_the_marked_identity_makes_the_identity)
{
    for (unsigned const state : k_States)
    {
        for (unsigned const old : {24U, 0U, 21U, 14U, 46U, 53U})
        {
            for (int const keep : {0, 1})
            {
                C3DRotation const source = MakeState(state | k_Marked);
                C3DRotation target = TargetForCopy(old, E3DROTORDER_XZY);
                target.Set(source, keep);
                Inside inside(target);
                bool const wasMarked = old >= k_Marked;
                EXPECT_EQ(inside.Flags(), wasMarked ? old : k_IdentityState);
                EXPECT_EQ(inside.Quat().W, wasMarked ? 77 : 1);
                EXPECT_EQ(inside.Angle(), wasMarked ? 77 : 0);
                EXPECT_EQ(inside.Order(), keep != 0 ? E3DROTORDER_XZY : E3DROTORDER_ZXY);
            }
        }
    }
}

TEST(RotationOrder, A_copy_of_itself_does_nothing)
{
    for (unsigned const state : k_States)
    {
        for (unsigned const flags : {state, state | k_Marked})
        {
            for (int const keep : {0, 1})
            {
                C3DRotation rotation = TargetForCopy(flags, E3DROTORDER_XZY);
                C3DRotation expected = rotation;
                EXPECT_EQ(&rotation.Set(rotation, keep), &rotation);
                EXPECT_TRUE(SameState(rotation, expected));
            }
        }
    }
}
