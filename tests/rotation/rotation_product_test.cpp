/// Products of rotations: which form is worked in, what the identity mark spares, and what is left of the state.

#include "rotation/rotation_states.h"

#include <vector>

using namespace rotation_test;

namespace
{

Vector const k_AnglesA(0.3, -0.5, 0.7);
Vector const k_AnglesB(-1.2, 0.4, 2.1);

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

Judge JudgeA()
{
    return JudgeOf(k_AnglesA, E3DROTORDER_ZXY);
}

Judge JudgeB()
{
    return JudgeOf(k_AnglesB, E3DROTORDER_XZY);
}

} // namespace

// --- Mul(a, b) -------------------------------------------------------------------------------------------------------

TEST(RotationProduct, Unmarked_operands_are_multiplied_as_quaternions)
{
    for (unsigned const flagsA : k_States)
    {
        for (unsigned const flagsB : k_States)
        {
            for (unsigned const flags : {24U, 14U, 0U, 56U, 46U})
            {
                C3DRotation a = MakeA(flagsA);
                C3DRotation b = MakeB(flagsB);
                C3DRotation target = MakeTarget(flags);
                EXPECT_EQ(&target.Mul(a, b), &target);
                Inside inside(target);
                EXPECT_EQ(inside.Flags(), k_QuatAlone);
                EXPECT_EQ(inside.Order(), E3DROTORDER_YZX) << "the order stays";
                EXPECT_EQ(Inside(a).Flags(), flagsA & ~k_QuatDirty);
                EXPECT_EQ(Inside(b).Flags(), flagsB & ~k_QuatDirty);
                Quat const product = Quat().Mul(Inside(b).Quat(), Inside(a).Quat());
                EXPECT_TRUE(Same(inside.Quat(), Normalized(product)));
                EXPECT_EQ(inside.Angle(), AngleOf(inside.Quat()));
                EXPECT_TRUE(FreshFormsAre(target, JudgeB() * JudgeA(), 1e-14));
            }
        }
    }
}

TEST(RotationProduct, The_first_operand_acts_first)
{
    C3DRotation a(E3D_AXIS_X, k_HalfPi);
    C3DRotation b(E3D_AXIS_Z, k_HalfPi);
    C3DRotation product;
    product.Mul(a, b);
    Vector v;
    product.RotateVct(Vector(0, 1, 0), v); // a takes Y to Z, which b leaves
    EXPECT_LT(MaxDifference(v, Vector(0, 0, 1)), 1e-15);
}

TEST(RotationProduct, The_product_is_normalised)
{
    C3DRotation a;
    C3DRotation b;
    a.Set(Vector(-1e-13, -1e-13, 0), 2.0); // no unit quaternion: its vector part is as good as null
    b.Set(Vector(1, 2, 3), 1.0);
    C3DRotation product;
    product.Mul(a, b);
    EXPECT_NEAR(Inside(product).Quat().GetSquaredLength(), 1, 1e-12);
    a.Set(Vector(-1e-13, 0, 0), k_Pi); // nothing is left of it
    product.Mul(a, b);
    EXPECT_TRUE(Same(Inside(product).Quat(), Quat(1, 0, 0, 0)));
    EXPECT_EQ(Inside(product).Flags(), k_QuatAlone);
}

/// With one operand marked the target is a copy of the other, under its own order, made a quaternion; the matrix stays
/// fresh where the copy brought a fresh one.
TEST(RotationProduct, A_marked_operand_makes_the_product_a_copy_of_the_other_under_the_own_order)
{
    for (unsigned const flags : k_States)
    {
        for (unsigned const mark : k_States)
        {
            for (unsigned const old : {24U, 14U, 0U, 56U, 46U})
            {
                for (tagE3DROTORDER const order : {E3DROTORDER_YZX, E3DROTORDER_ZXY})
                {
                    for (bool const first : {true, false})
                    {
                        C3DRotation other = MakeA(flags);
                        C3DRotation identity = MakeState(mark | k_Marked, k_AnglesB, E3DROTORDER_XZY);
                        C3DRotation target = MakeState(old, Vector(1, 1, 1), order);
                        C3DRotation expected = MakeState(old, Vector(1, 1, 1), order);
                        target.Mul(first ? identity : other, first ? other : identity);

                        expected.Set(other, 1);
                        bool const matrixIsFresh = (Inside(expected).Flags() & k_MatDirty) == 0;
                        Quat quat;
                        expected.GetQuat(quat);
                        Inside inside(target);
                        EXPECT_EQ(inside.Flags(), matrixIsFresh ? 16U : 24U);
                        bool const converted = (flags & k_Source) == k_FromAngles && order != E3DROTORDER_ZXY;
                        EXPECT_EQ(matrixIsFresh, (flags & k_MatDirty) == 0 && !converted);
                        EXPECT_EQ(inside.Order(), order);
                        EXPECT_TRUE(Same(inside.Quat(), quat));
                        EXPECT_EQ(inside.Angle(), Inside(expected).Angle());
                        EXPECT_TRUE(FreshFormsAre(target, JudgeA(), 1e-14));
                        EXPECT_EQ(Inside(other).Flags(), flags) << "operands are not freshened";
                        EXPECT_EQ(Inside(identity).Flags(), mark | k_Marked);
                    }
                }
            }
        }
    }
}

TEST(RotationProduct, A_marked_operand_and_the_target_as_the_other_only_make_the_target_a_quaternion)
{
    for (unsigned const flags : k_States)
    {
        for (bool const first : {true, false})
        {
            C3DRotation identity = MakeState(k_IdentityState);
            C3DRotation target = MakeA(flags);
            target.Mul(first ? identity : target, first ? target : identity);
            EXPECT_EQ(Inside(target).Flags(), (flags & k_MatDirty) | k_AnglesDirty);
            EXPECT_EQ(Inside(target).Order(), E3DROTORDER_ZXY);
            EXPECT_TRUE(FreshFormsAre(target, JudgeA(), 1e-14));
            bool const angleIsTheCallers = (flags & k_QuatDirty) == 0;
            EXPECT_NEAR(Inside(target).Angle(), AngleOf(Inside(target).Quat()) + (angleIsTheCallers ? 2 * k_TwoPi : 0),
                        1e-14);
        }
    }
}

TEST(RotationProduct, Two_marked_operands_make_the_identity)
{
    for (unsigned const stateA : k_States)
    {
        for (unsigned const stateB : k_States)
        {
            for (unsigned const old : {24U, 14U, 0U, 56U, 46U, 32U, 53U})
            {
                C3DRotation a = MakeState(stateA | k_Marked);
                C3DRotation b = MakeState(stateB | k_Marked);
                C3DRotation target = MakeTarget(old);
                target.Mul(a, b);
                Inside inside(target);
                // What was marked stays as it was, apart from being made a quaternion.
                EXPECT_EQ(inside.Flags(), old < k_Marked ? 56U : (old & k_MatDirty) | k_AnglesDirty | k_Marked);
                EXPECT_EQ(inside.Order(), E3DROTORDER_YZX);
                EXPECT_TRUE(FreshFormsAre(target, Judge::Identity()));
                EXPECT_EQ(inside.Angle(), 0);
                EXPECT_EQ(Inside(a).Flags(), stateA | k_Marked);
                EXPECT_EQ(Inside(b).Flags(), stateB | k_Marked);

                // The target as both operands, and as one.
                C3DRotation self = MakeState(stateA | k_Marked);
                self.Mul(self, self);
                EXPECT_EQ(Inside(self).Flags(), (stateA & k_MatDirty) | k_AnglesDirty | k_Marked);
                EXPECT_TRUE(FreshFormsAre(self, Judge::Identity()));
            }
        }
    }
}

// --- Mul(b) and LeftMul(a) -------------------------------------------------------------------------------------------

TEST(RotationProduct, One_operand_forms_multiply_from_their_side)
{
    for (unsigned const flagsA : k_States)
    {
        for (unsigned const flagsB : k_States)
        {
            for (bool const targetIsMarked : {false, true})
            {
                unsigned const state = flagsA | (targetIsMarked ? k_Marked : 0);
                for (bool const left : {false, true})
                {
                    C3DRotation target = MakeA(state);
                    C3DRotation copy = MakeA(state);
                    C3DRotation b = MakeB(flagsB);
                    C3DRotation expected = MakeA(state);
                    EXPECT_EQ(&(left ? target.LeftMul(b) : target.Mul(b)), &target);
                    EXPECT_EQ(Inside(b).Flags(), flagsB & ~k_QuatDirty);
                    if (left)
                    {
                        expected.Mul(b, copy);
                    }
                    else
                    {
                        expected.Mul(copy, b);
                    }
                    EXPECT_TRUE(SameState(target, expected));
                    Judge const judgeA = targetIsMarked ? Judge::Identity() : JudgeA();
                    EXPECT_TRUE(FreshFormsAre(target, left ? judgeA * JudgeB() : JudgeB() * judgeA, 1e-14));
                }
            }
        }
    }
}

TEST(RotationProduct, One_operand_forms_do_nothing_with_a_marked_operand)
{
    for (unsigned const flags : k_States)
    {
        for (unsigned const mark : k_States)
        {
            for (bool const left : {false, true})
            {
                C3DRotation target = MakeA(flags);
                C3DRotation expected = MakeA(flags);
                C3DRotation b = MakeB(mark | k_Marked);
                EXPECT_EQ(&(left ? target.LeftMul(b) : target.Mul(b)), &target);
                EXPECT_TRUE(SameState(target, expected));
                EXPECT_EQ(Inside(b).Flags(), mark | k_Marked) << "and the operand is not freshened";
            }
        }
    }
}

TEST(RotationProduct, One_operand_forms_do_nothing_with_an_operand_whose_quaternion_is_exactly_the_identity)
{
    C3DRotation operands[] = {C3DRotation(Quat()), C3DRotation(Matrix()), MakeState(k_AnglesAlone, Vector(0, 0, 0)),
                              C3DRotation(Vector(-1, 0, 0), 1e-300)};
    for (C3DRotation const & operand : operands)
    {
        for (unsigned const flags : k_States)
        {
            for (bool const left : {false, true})
            {
                C3DRotation b = operand;
                C3DRotation target = MakeA(flags);
                C3DRotation expected = MakeA(flags);
                left ? target.LeftMul(b) : target.Mul(b);
                bool const unit = Inside(b).Quat().X == 0;
                EXPECT_EQ(SameState(target, expected), unit);
                EXPECT_EQ(Inside(b).Flags() & k_QuatDirty, 0U);
                EXPECT_EQ(b.QuickIsIdentity(), 0) << "the finding leaves no mark";
            }
        }
    }
    // The negative quaternion is the same rotation, and yet it is multiplied.
    C3DRotation minus(Quat(-1, 0, 0, 0));
    C3DRotation target = MakeA(k_AnglesAlone);
    target.Mul(minus);
    EXPECT_EQ(Inside(target).Flags(), k_QuatAlone);
}

// --- Aliasing --------------------------------------------------------------------------------------------------------

namespace
{

std::vector<unsigned> AllStates()
{
    std::vector<unsigned> states;
    for (unsigned const state : k_States)
    {
        states.push_back(state);
        states.push_back(state | k_Marked);
    }
    return states;
}

/// An operation on a target and two operands.
struct Operation
{
    char const * name;
    void (*apply)(C3DRotation & target, C3DRotation & a, C3DRotation & b);
};

constexpr double k_Target[3] = {9, -8, 7};

constexpr Operation k_Operations[] = {
    {"Mul", [](C3DRotation & t, C3DRotation & a, C3DRotation & b) { t.Mul(a, b); }},
    {"MulAndUpdateEulerAngles 1",
     [](C3DRotation & t, C3DRotation & a, C3DRotation & b) { t.MulAndUpdateEulerAngles(a, b, 1); }},
    {"MulAndUpdateEulerAngles 0",
     [](C3DRotation & t, C3DRotation & a, C3DRotation & b) { t.MulAndUpdateEulerAngles(a, b, 0); }},
    {"MulUsingEulerAnglesTarget",
     [](C3DRotation & t, C3DRotation & a, C3DRotation & b)
     {
         Vector target(k_Target);
         t.MulUsingEulerAnglesTarget(a, b, target, E3DROTORDER_YXZ);
     }},
    {"MulUsingEulerAnglesTarget, rotation",
     [](C3DRotation & t, C3DRotation & a, C3DRotation & b)
     {
         C3DRotation c(Vector(k_Target), E3DROTORDER_YXZ);
         t.MulUsingEulerAnglesTarget(a, b, c);
     }},
    {"MulUsingEulerAnglesTarget, near a",
     [](C3DRotation & t, C3DRotation & a, C3DRotation & b) { t.MulUsingEulerAnglesTarget(a, b, a); }},
    {"MulUsingEulerAnglesTarget, near b",
     [](C3DRotation & t, C3DRotation & a, C3DRotation & b) { t.MulUsingEulerAnglesTarget(a, b, b); }},
    {"Interpolate", [](C3DRotation & t, C3DRotation & a, C3DRotation & b) { t.Interpolate(a, b, 0.3); }},
};

} // namespace

TEST(RotationProduct, The_target_may_be_an_operand)
{
    for (Operation const & operation : k_Operations)
    {
        for (unsigned const flagsA : AllStates())
        {
            for (unsigned const flagsB : AllStates())
            {
                SCOPED_TRACE(testing::Message() << operation.name << ", states " << flagsA << " and " << flagsB);
                {
                    C3DRotation a = MakeA(flagsA);
                    C3DRotation b = MakeB(flagsB);
                    C3DRotation expected = a;
                    C3DRotation sameB = b;
                    operation.apply(expected, a, b);
                    C3DRotation aliased = MakeA(flagsA);
                    operation.apply(aliased, aliased, sameB);
                    EXPECT_TRUE(SameState(aliased, expected)) << "as the first operand";
                    EXPECT_TRUE(SameState(sameB, b));
                }
                {
                    C3DRotation a = MakeA(flagsA);
                    C3DRotation b = MakeB(flagsB);
                    C3DRotation expected = b;
                    C3DRotation sameA = a;
                    operation.apply(expected, a, b);
                    C3DRotation aliased = MakeB(flagsB);
                    operation.apply(aliased, sameA, aliased);
                    EXPECT_TRUE(SameState(aliased, expected)) << "as the second operand";
                    EXPECT_TRUE(SameState(sameA, a));
                }
            }
            {
                SCOPED_TRACE(testing::Message() << operation.name << ", state " << flagsA);
                C3DRotation a = MakeA(flagsA);
                C3DRotation b = a;
                C3DRotation expected = a;
                operation.apply(expected, a, b);
                C3DRotation aliased = MakeA(flagsA);
                operation.apply(aliased, aliased, aliased);
                EXPECT_TRUE(SameState(aliased, expected)) << "as both operands";
                C3DRotation both = MakeA(flagsA);
                C3DRotation target = both;
                operation.apply(target, both, both);
                EXPECT_TRUE(SameState(target, expected)) << "one object as both operands";
            }
        }
    }
}

TEST(RotationProduct, One_operand_forms_may_take_the_target)
{
    for (unsigned const flags : AllStates())
    {
        for (bool const left : {false, true})
        {
            C3DRotation target = MakeA(flags);
            left ? target.LeftMul(target) : target.Mul(target);
            EXPECT_TRUE(FreshFormsAre(target, flags < k_Marked ? JudgeA() * JudgeA() : Judge::Identity(), 1e-14));
            EXPECT_EQ(Inside(target).Flags(), flags < k_Marked ? k_QuatAlone : flags);
        }
    }
}
