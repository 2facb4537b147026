/// Products that keep Euler angles near others.

#include "rotation/rotation_states.h"

using namespace rotation_test;

namespace
{

Vector const k_AnglesA(0.3 + k_TwoPi, -0.5, 0.7);
Vector const k_AnglesB(-1.2, 0.4 - 2 * k_TwoPi, 2.1);

C3DRotation MakeA(unsigned flags)
{
    return MakeState(flags, k_AnglesA, E3DROTORDER_ZXY);
}

C3DRotation MakeB(unsigned flags)
{
    return MakeState(flags, k_AnglesB, E3DROTORDER_XZY);
}

C3DRotation MakeTarget(unsigned flags)
{
    return MakeState(flags, Vector(1, 1, 1), E3DROTORDER_YZX);
}

Judge Product()
{
    return JudgeOf(k_AnglesB, E3DROTORDER_XZY) * JudgeOf(k_AnglesA, E3DROTORDER_ZXY);
}

/// The extraction from the matrix of a quaternion.
Vector Extract(Quat const & quat, Vector target, tagE3DROTORDER order)
{
    Matrix matrix;
    F3DQuatToMat(quat, matrix);
    F3DMatToEulerUsingTarget(matrix, target, order);
    return target;
}

Matrix MatrixOfQuat(Quat const & quat)
{
    Matrix matrix;
    F3DQuatToMat(quat, matrix);
    return matrix;
}

} // namespace

// --- MulAndUpdateEulerAngles -----------------------------------------------------------------------------------------

TEST(RotationEulerProduct, Unmarked_operands_give_all_forms_near_the_reference_in_its_order)
{
    for (unsigned const flagsA : k_States)
    {
        for (unsigned const flagsB : k_States)
        {
            for (unsigned long const which : {1UL, 0UL, 2UL, 0xFFFFFFFFUL})
            {
                for (unsigned const old : {24U, 14U, 56U})
                {
                    C3DRotation a = MakeA(flagsA);
                    C3DRotation b = MakeB(flagsB);
                    C3DRotation readA = MakeA(flagsA);
                    C3DRotation readB = MakeB(flagsB);
                    Vector anglesA;
                    Vector anglesB;
                    readA.GetXYZAngles(anglesA);
                    readB.GetXYZAngles(anglesB);
                    C3DRotation target = MakeTarget(old);
                    EXPECT_EQ(&target.MulAndUpdateEulerAngles(a, b, which), &target);
                    Inside inside(target);
                    EXPECT_EQ(inside.Flags(), 2U);
                    EXPECT_EQ(Inside(a).Flags(), flagsA & k_Source) << "operands end fully fresh";
                    EXPECT_EQ(Inside(b).Flags(), flagsB & k_Source);
                    EXPECT_TRUE(Same(Inside(a).Angles(), anglesA));
                    tagE3DROTORDER const order = which == 1 ? E3DROTORDER_ZXY : E3DROTORDER_XZY;
                    EXPECT_EQ(target.GetXYZRotOrder(), order);
                    EXPECT_TRUE(Same(inside.Quat(), Normalized(Quat().Mul(Inside(b).Quat(), Inside(a).Quat()))));
                    EXPECT_EQ(inside.Angle(), AngleOf(inside.Quat()));
                    EXPECT_TRUE(Same(inside.Matrix(), MatrixOfQuat(inside.Quat())));
                    EXPECT_TRUE(Same(inside.Angles(), Extract(inside.Quat(), which == 1 ? anglesA : anglesB, order)));
                    EXPECT_TRUE(FreshFormsAre(target, Product(), 1e-14));
                    EXPECT_TRUE(FreshFormsAre(a, JudgeOf(k_AnglesA, E3DROTORDER_ZXY), 1e-14));
                    EXPECT_TRUE(FreshFormsAre(b, JudgeOf(k_AnglesB, E3DROTORDER_XZY), 1e-14));
                }
            }
        }
    }
}

/// What the operands' stale forms are filled from: the matrix first, then the angles from it, then the quaternion. For
/// an operand from angles, the quaternion comes from them, and so does the matrix.
TEST(RotationEulerProduct, Operands_from_angles_keep_their_numbers)
{
    C3DRotation a = MakeA(k_AnglesAlone);
    C3DRotation b = MakeB(k_AnglesAlone);
    C3DRotation target;
    target.MulAndUpdateEulerAngles(a, b, 1);
    EXPECT_TRUE(Same(Inside(a).Angles(), k_AnglesA));
    EXPECT_TRUE(Same(Inside(b).Angles(), k_AnglesB));
    EXPECT_TRUE(Same(Inside(a).Matrix(), MatrixOf(k_AnglesA, E3DROTORDER_ZXY)));
}

namespace
{

/// Every state of the operand that is not marked, of the marked one and of the target, with every kind of reference.
template <typename Check>
void ForEachMarkedPair(Check check)
{
    for (unsigned const flags : k_States)
    {
        for (unsigned const mark : k_States)
        {
            for (unsigned const old : {24U, 14U, 56U, 46U})
            {
                for (unsigned long const which : {1UL, 0UL, 2UL})
                {
                    check(flags, mark, old, which);
                }
            }
        }
    }
}

} // namespace

TEST(RotationEulerProduct, A_marked_operand_beside_the_reference_makes_a_copy_with_its_angles)
{
    ForEachMarkedPair(
        [](unsigned flags, unsigned mark, unsigned old, unsigned long which)
        {
            C3DRotation other = MakeA(flags);
            C3DRotation identity = MakeB(mark | k_Marked);
            C3DRotation target = MakeTarget(old);
            which == 1 ? target.MulAndUpdateEulerAngles(other, identity, 1)
                       : target.MulAndUpdateEulerAngles(identity, other, which);
            C3DRotation expected = MakeA(flags);
            Vector angles;
            expected.GetXYZAngles(angles);
            Inside inside(target);
            // What reading the angles leaves, with the angles as the source.
            EXPECT_EQ(inside.Flags(), (Inside(expected).Flags() & ~k_Source) | k_FromAngles);
            EXPECT_EQ(inside.Order(), E3DROTORDER_ZXY) << "the order is copied too";
            EXPECT_TRUE(Same(inside.Angles(), angles));
            EXPECT_TRUE(FreshFormsAre(target, JudgeOf(k_AnglesA, E3DROTORDER_ZXY), 1e-14));
            EXPECT_EQ(Inside(other).Flags(), flags) << "the operand is not freshened here";
            EXPECT_EQ(Inside(identity).Flags(), mark | k_Marked);
        });
}

TEST(RotationEulerProduct, A_marked_reference_gives_the_other_rotation_in_the_order_of_the_identity_near_zero)
{
    ForEachMarkedPair(
        [](unsigned flags, unsigned mark, unsigned old, unsigned long which)
        {
            C3DRotation other = MakeA(flags);
            C3DRotation identity = MakeB(mark | k_Marked);
            C3DRotation target = MakeTarget(old);
            which == 1 ? target.MulAndUpdateEulerAngles(identity, other, 1)
                       : target.MulAndUpdateEulerAngles(other, identity, which);
            C3DRotation expected = MakeA(flags);
            Quat quat;
            expected.GetQuat(quat);
            Inside inside(target);
            EXPECT_EQ(inside.Flags(), 2U);
            EXPECT_EQ(inside.Order(), E3DROTORDER_XZY);
            EXPECT_TRUE(Same(inside.Quat(), quat));
            EXPECT_EQ(inside.Angle(), Inside(expected).Angle()) << "the caller's angle is copied with it";
            EXPECT_TRUE(Same(inside.Matrix(), MatrixOfQuat(quat)));
            EXPECT_TRUE(Same(inside.Angles(), Extract(quat, Vector(0, 0, 0), E3DROTORDER_XZY)));
            EXPECT_EQ(Inside(other).Flags(), flags);
            EXPECT_EQ(Inside(identity).Flags(), mark | k_Marked);
        });
}

TEST(RotationEulerProduct, Of_two_marked_operands_the_first_counts_as_the_identity_and_the_second_as_the_other)
{
    for (unsigned const stateA : k_States)
    {
        for (unsigned const stateB : k_States)
        {
            for (unsigned const old : {24U, 14U, 0U, 56U, 46U, 32U})
            {
                for (unsigned long const which : {1UL, 0UL, 2UL})
                {
                    C3DRotation a = MakeA(stateA | k_Marked);
                    C3DRotation b = MakeB(stateB | k_Marked);
                    C3DRotation target = MakeTarget(old);
                    target.MulAndUpdateEulerAngles(a, b, which);
                    Inside inside(target);
                    // A target that was marked keeps the forms it has; any other is made the identity first.
                    unsigned const made = old < k_Marked ? k_IdentityState : old;
                    unsigned const expected =
                        which == 1 ? 0U : made & (k_QuatDirty | k_MatDirty); // as reference: all fresh, or the angles
                    EXPECT_EQ(inside.Flags(), expected | k_FromAngles | k_Marked);
                    EXPECT_EQ(inside.Order(), which == 1 ? E3DROTORDER_ZXY : E3DROTORDER_XZY);
                    EXPECT_TRUE(Same(inside.Angles(), Vector(0, 0, 0)));
                    EXPECT_TRUE(FreshFormsAre(target, Judge::Identity()));
                }
            }
        }
    }
}

TEST(RotationEulerProduct, One_marked_object_as_both_operands_is_the_identity_operand_first)
{
    for (unsigned long const which : {1UL, 0UL})
    {
        C3DRotation both = MakeA(k_IdentityState);
        C3DRotation target = MakeTarget(k_MatrixAlone);
        target.MulAndUpdateEulerAngles(both, both, which);
        EXPECT_EQ(Inside(target).Flags(), k_FromAngles | k_Marked | (which == 1 ? 0 : k_MatDirty));
        EXPECT_EQ(Inside(target).Order(), E3DROTORDER_ZXY);
    }
}

// The orders are read before the target is overwritten.
TEST(RotationEulerProduct, The_target_may_be_the_marked_reference_with_an_order_of_its_own)
{
    C3DRotation target = MakeB(k_IdentityState);
    C3DRotation other = MakeA(k_AnglesAlone);
    target.MulAndUpdateEulerAngles(target, other, 1);
    EXPECT_EQ(target.GetXYZRotOrder(), E3DROTORDER_XZY);
    EXPECT_TRUE(FreshFormsAre(target, JudgeOf(k_AnglesA, E3DROTORDER_ZXY), 1e-14));

    target = MakeB(k_AnglesAlone);
    C3DRotation a = MakeA(k_QuatAlone);
    target.MulAndUpdateEulerAngles(a, target, 1);
    EXPECT_EQ(target.GetXYZRotOrder(), E3DROTORDER_ZXY);
    EXPECT_TRUE(FreshFormsAre(target, Product(), 1e-14));
}

// --- MulUsingEulerAnglesTarget ---------------------------------------------------------------------------------------

TEST(RotationEulerProduct, Unmarked_operands_give_all_forms_near_the_target_in_the_given_order)
{
    Vector const aim(20, -30, 40);
    for (unsigned const flagsA : k_States)
    {
        for (unsigned const flagsB : k_States)
        {
            for (tagE3DROTORDER const order : k_Orders)
            {
                C3DRotation a = MakeA(flagsA);
                C3DRotation b = MakeB(flagsB);
                C3DRotation target = MakeTarget(order % 2 == 0 ? k_QuatAlone : k_IdentityState);
                Vector angles = aim;
                EXPECT_EQ(&target.MulUsingEulerAnglesTarget(a, b, angles, order), &target);
                Inside inside(target);
                EXPECT_EQ(inside.Flags(), 2U);
                EXPECT_EQ(target.GetXYZRotOrder(), order);
                EXPECT_EQ(Inside(a).Flags(), flagsA & ~k_QuatDirty) << "only the quaternion is needed";
                EXPECT_EQ(Inside(b).Flags(), flagsB & ~k_QuatDirty);
                EXPECT_TRUE(Same(inside.Quat(), Normalized(Quat().Mul(Inside(b).Quat(), Inside(a).Quat()))));
                EXPECT_EQ(inside.Angle(), AngleOf(inside.Quat()));
                EXPECT_TRUE(Same(inside.Matrix(), MatrixOfQuat(inside.Quat())));
                EXPECT_TRUE(Same(angles, Extract(inside.Quat(), aim, order)));
                EXPECT_TRUE(Same(inside.Angles(), angles)) << "the target receives the angles";
                EXPECT_TRUE(FreshFormsAre(target, Product(), 1e-12));
            }
        }
    }
}

TEST(RotationEulerProduct, A_marked_operand_gives_the_other_near_the_target)
{
    Vector const aim(20, -30, 40);
    for (unsigned const flags : k_States)
    {
        for (unsigned const mark : k_States)
        {
            for (unsigned const old : {24U, 14U, 56U, 46U})
            {
                for (bool const first : {true, false})
                {
                    C3DRotation other = MakeA(flags);
                    C3DRotation identity = MakeB(mark | k_Marked);
                    C3DRotation target = MakeTarget(old);
                    Vector angles = aim;
                    target.MulUsingEulerAnglesTarget(first ? identity : other, first ? other : identity, angles,
                                                     E3DROTORDER_YXZ);
                    C3DRotation expected = MakeA(flags);
                    Quat quat;
                    expected.GetQuat(quat);
                    Inside inside(target);
                    EXPECT_EQ(inside.Flags(), 2U);
                    EXPECT_EQ(inside.Order(), E3DROTORDER_YXZ);
                    EXPECT_TRUE(Same(inside.Quat(), quat)) << "in the order of the source, not in its own";
                    EXPECT_EQ(inside.Angle(), Inside(expected).Angle());
                    EXPECT_TRUE(Same(inside.Matrix(), MatrixOfQuat(quat)));
                    EXPECT_TRUE(Same(angles, Extract(quat, aim, E3DROTORDER_YXZ)));
                    EXPECT_TRUE(Same(inside.Angles(), angles));
                    EXPECT_EQ(Inside(other).Flags(), flags);
                    EXPECT_EQ(Inside(identity).Flags(), mark | k_Marked);
                }
            }
        }
    }
}

// The mark stays on a rotation whose angles are whole turns: it tells the truth of the rotation, not of the numbers.
TEST(RotationEulerProduct, Two_marked_operands_give_the_marked_identity_with_the_whole_turns_of_the_target)
{
    for (unsigned const old : {24U, 14U, 0U, 56U, 46U, 32U})
    {
        C3DRotation a = MakeA(k_IdentityState);
        C3DRotation b = MakeB(k_AnglesAlone | k_Marked);
        C3DRotation target = MakeTarget(old);
        Vector angles(k_TwoPi + 0.1, 0.2, -2 * k_TwoPi + 0.3);
        target.MulUsingEulerAnglesTarget(a, b, angles, E3DROTORDER_YXZ);
        Inside inside(target);
        EXPECT_EQ(inside.Flags(), k_FromAngles | k_Marked);
        EXPECT_EQ(inside.Order(), E3DROTORDER_YXZ);
        EXPECT_TRUE(Same(angles, Vector(k_TwoPi, 0, -2 * k_TwoPi)));
        EXPECT_TRUE(Same(inside.Angles(), angles));
        EXPECT_TRUE(FreshFormsAre(target, Judge::Identity(), 1e-15));
        EXPECT_EQ(target.IsExactlyIdentity(), 1);
        Vector read;
        target.GetXYZAngles(read);
        EXPECT_TRUE(Same(read, angles));
        target.GetXYZAngles(read, E3DROTORDER_YXZ);
        EXPECT_TRUE(Same(read, Vector(0, 0, 0))) << "the form that names an order goes by the mark";
    }
}

TEST(RotationEulerProduct, An_order_that_does_not_exist_stores_the_target)
{
    C3DRotation a = MakeA(k_QuatAlone);
    C3DRotation b = MakeB(k_QuatAlone);
    C3DRotation target;
    Vector angles(1, 2, 3);
    target.MulUsingEulerAnglesTarget(a, b, angles, k_NoOrder);
    EXPECT_TRUE(Same(angles, Vector(1, 2, 3)));
    EXPECT_TRUE(Same(Inside(target).Angles(), Vector(1, 2, 3)));
    EXPECT_EQ(target.GetXYZRotOrder(), k_NoOrder);
}

TEST(RotationEulerProduct, A_rotation_as_target_lends_its_angles_and_its_order)
{
    Vector const aim(1 + 3 * k_TwoPi, -2, 3 - k_TwoPi);
    for (unsigned const state : k_States)
    {
        for (unsigned const flags : {state, state | k_Marked})
        {
            C3DRotation a = MakeA(k_AnglesAlone);
            C3DRotation b = MakeB(k_MatrixAlone);
            C3DRotation c = MakeState(flags, aim, E3DROTORDER_ZYX);
            C3DRotation readC = MakeState(flags, aim, E3DROTORDER_ZYX);
            Vector angles;
            readC.GetXYZAngles(angles);
            C3DRotation target = MakeTarget(k_QuatAlone);
            EXPECT_EQ(&target.MulUsingEulerAnglesTarget(a, b, c), &target);
            EXPECT_TRUE(SameState(c, readC)) << "only its cache changes";
            C3DRotation expected;
            expected.MulUsingEulerAnglesTarget(a, b, angles, E3DROTORDER_ZYX);
            EXPECT_TRUE(SameState(target, expected));
        }
    }
}

TEST(RotationEulerProduct, The_rotation_that_lends_the_target_may_be_the_target_or_an_operand)
{
    for (unsigned const state : k_States)
    {
        for (unsigned const flags : {state, state | k_Marked})
        {
            for (unsigned const flagsA : {14U, 21U, 56U, 46U})
            {
                C3DRotation a = MakeA(flagsA);
                C3DRotation b = MakeB(k_MatrixAlone);
                C3DRotation c = MakeTarget(flags);
                C3DRotation expected = MakeTarget(k_QuatAlone);
                expected.MulUsingEulerAnglesTarget(a, b, c);

                C3DRotation sameA = MakeA(flagsA);
                C3DRotation sameB = MakeB(k_MatrixAlone);
                C3DRotation aliased = MakeTarget(flags);
                aliased.MulUsingEulerAnglesTarget(sameA, sameB, aliased);
                EXPECT_TRUE(SameState(aliased, expected));

                // All four one object.
                C3DRotation one = MakeTarget(flags);
                C3DRotation copyA = MakeTarget(flags);
                C3DRotation copyB = MakeTarget(flags);
                C3DRotation copyC = MakeTarget(flags);
                C3DRotation four = MakeTarget(flags);
                four.MulUsingEulerAnglesTarget(copyA, copyB, copyC);
                one.MulUsingEulerAnglesTarget(one, one, one);
                EXPECT_TRUE(SameState(one, four));
            }
        }
    }
}
