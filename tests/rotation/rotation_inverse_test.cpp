/// Inverses and interpolation.

#include "rotation/rotation_states.h"

using namespace rotation_test;

namespace
{

Vector const k_Angles(0.3, -0.5, 0.7);

Judge Inverse()
{
    return JudgeOf(k_Angles, E3DROTORDER_ZXY).conjugate();
}

C3DRotation MakeTarget(unsigned flags)
{
    return MakeState(flags, Vector(1, 1, 1), E3DROTORDER_YZX);
}

/// A rotation that is the identity in one form, which alone is fresh, and is not marked.
C3DRotation UnmarkedIdentity(unsigned flags)
{
    C3DRotation rotation = MakeState(flags | k_Marked);
    Inside(rotation).SetFlags(flags);
    return rotation;
}

} // namespace

// --- Inverse ---------------------------------------------------------------------------------------------------------

TEST(RotationInverse, A_fresh_quaternion_is_conjugated_else_a_fresh_matrix_is_transposed_else_the_quaternion_is_made)
{
    for (unsigned const flags : k_States)
    {
        for (unsigned const old : {24U, 21U, 14U, 0U, 56U, 46U})
        {
            SCOPED_TRACE(testing::Message() << flags << " on " << old);
            C3DRotation source = MakeState(flags);
            C3DRotation target = MakeTarget(old);
            EXPECT_EQ(&target.Invert(source), &target);
            Inside inside(target);
            Inside from(source);
            bool const byMatrix = (flags & k_QuatDirty) != 0 && (flags & k_MatDirty) == 0;
            EXPECT_EQ(inside.Flags(), byMatrix ? k_MatrixAlone : k_QuatAlone);
            EXPECT_EQ(inside.Order(), E3DROTORDER_YZX);
            bool const byAngles = (flags & k_QuatDirty) != 0 && !byMatrix;
            EXPECT_EQ(from.Flags(), byAngles ? flags & ~k_QuatDirty : flags);
            if (byMatrix)
            {
                EXPECT_TRUE(Same(inside.Matrix(), Matrix().Transpose(from.Matrix())));
            }
            else
            {
                EXPECT_TRUE(Same(inside.Quat(), Quat().Conjugate(from.Quat())));
                EXPECT_EQ(inside.Angle(), from.Angle()) << "the angle of the caller is kept";
            }
            EXPECT_TRUE(FreshFormsAre(target, Inverse(), 1e-14));
        }
    }
}

TEST(RotationInverse, The_target_may_be_the_source)
{
    for (unsigned const flags : k_States)
    {
        C3DRotation source = MakeState(flags);
        C3DRotation expected = MakeState(flags);
        expected.Invert(source);
        C3DRotation inverted = MakeState(flags);
        EXPECT_EQ(&inverted.Invert(), &inverted);
        EXPECT_TRUE(SameState(inverted, expected));
        C3DRotation aliased = MakeState(flags);
        aliased.Invert(aliased);
        EXPECT_TRUE(SameState(aliased, expected));
        EXPECT_EQ(aliased.GetXYZRotOrder(), E3DROTORDER_ZXY);
    }
}

TEST(RotationInverse, A_marked_source_makes_the_identity)
{
    for (unsigned const state : k_States)
    {
        for (unsigned const old : {24U, 21U, 14U, 0U, 56U, 46U})
        {
            C3DRotation source = MakeState(state | k_Marked);
            C3DRotation target = MakeTarget(old);
            target.Invert(source);
            EXPECT_EQ(Inside(target).Flags(), old < k_Marked ? k_IdentityState : old);
            EXPECT_EQ(Inside(source).Flags(), state | k_Marked);
            EXPECT_EQ(Inside(target).Order(), E3DROTORDER_YZX);
        }
        C3DRotation self = MakeState(state | k_Marked);
        C3DRotation expected = self;
        EXPECT_TRUE(SameState(self.Invert(), expected));
        EXPECT_TRUE(SameState(self.Invert(self), expected));
    }
}

TEST(RotationInverse, A_source_found_to_be_the_identity_makes_the_identity)
{
    for (unsigned const flags : k_States)
    {
        for (unsigned const old : {24U, 0U, 56U, 46U})
        {
            C3DRotation source = UnmarkedIdentity(flags);
            C3DRotation target = MakeTarget(old);
            target.Invert(source);
            // The mark of the target goes first, so that a marked target is made anew.
            EXPECT_EQ(Inside(target).Flags(), k_IdentityState);
            EXPECT_TRUE(Same(Inside(target).Quat(), Quat(1, 0, 0, 0)));
            EXPECT_EQ(Inside(source).Flags(), flags) << "the source is not marked";
        }
        C3DRotation self = UnmarkedIdentity(flags);
        EXPECT_EQ(&self.Invert(), &self);
        EXPECT_EQ(Inside(self).Flags(), flags | k_Marked) << "in place, the finding leaves its mark and nothing else";
    }
}

TEST(RotationInverse, Only_an_exact_identity_is_found_in_a_quaternion_or_a_matrix)
{
    double const tiny = std::numeric_limits<double>::denorm_min();
    C3DRotation target;
    C3DRotation quat = MakeState(k_QuatAlone);
    Inside(quat).Quat().Set(1, 0, tiny, 0);
    target.Invert(quat);
    EXPECT_EQ(Inside(target).Flags(), k_QuatAlone);
    EXPECT_EQ(Inside(target).Quat().Y, -tiny);
    for (double const value : {tiny, k_Nan})
    {
        C3DRotation matrix = MakeState(k_MatrixAlone);
        Inside(matrix).Matrix().SetIdentity();
        Inside(matrix).Matrix().Set(2, 0, value);
        target.Invert(matrix);
        EXPECT_EQ(Inside(target).Flags(), k_MatrixAlone);
        EXPECT_TRUE(Inside(target).Matrix().Get(0, 2) == value || std::isnan(value));
        EXPECT_EQ(Inside(target).Matrix().Get(2, 0), 0);
    }
}

TEST(RotationInverse, Angles_within_the_limit_count_as_the_identity)
{
    for (int i = 0; i < 3; ++i)
    {
        struct Row
        {
            double angle;
            bool identity;
        };
        for (Row const & row : {Row{1e-12, true}, Row{-1e-12, true}, Row{1.01e-12, false}, Row{-1.01e-12, false},
                                Row{k_TwoPi, false}, Row{k_Nan, false}})
        {
            C3DRotation source(Vector(i, row.angle), E3DROTORDER_XYZ);
            Inside(source).FillStale();
            C3DRotation target;
            target.Invert(source);
            EXPECT_EQ(Inside(target).Flags(), row.identity ? k_IdentityState : k_QuatAlone) << row.angle;
            EXPECT_EQ(Inside(source).Flags(), row.identity ? k_AnglesAlone : 10U);
        }
    }
    // With the quaternion or the matrix fresh, the limit is no matter.
    for (unsigned const flags : {10U, 6U})
    {
        C3DRotation source = MakeState(flags, Vector(1e-13, 0, 0));
        C3DRotation target;
        target.Invert(source);
        EXPECT_EQ(target.QuickIsIdentity(), 0);
    }
}

TEST(RotationInverse, The_angles_are_never_inverted_themselves)
{
    C3DRotation rotation(E3D_AXIS_X, 0.5 + k_TwoPi);
    rotation.Invert();
    EXPECT_EQ(Inside(rotation).Flags(), k_QuatAlone);
    EXPECT_EQ(Inside(rotation).Angle(), 0.5 + k_TwoPi);
    Inside(rotation).FillStale();
    Vector angles;
    rotation.GetXYZAngles(angles);
    EXPECT_LT(MaxDifference(angles, Vector(-0.5, 0, 0)), 1e-15) << "and the whole turn is lost";
}

// --- Interpolation ---------------------------------------------------------------------------------------------------

TEST(RotationInverse, Interpolation_is_the_normalised_slerp_of_the_quaternions)
{
    Vector const anglesB(-1.2, 0.4, 2.1);
    for (unsigned const flagsA : k_States)
    {
        for (unsigned const flagsB : k_States)
        {
            for (unsigned const old : {24U, 14U, 56U})
            {
                for (double const t : {0.0, 0.25, 1.0, -0.5, 1.5})
                {
                    C3DRotation a = MakeState(flagsA);
                    C3DRotation b = MakeState(flagsB, anglesB, E3DROTORDER_XZY);
                    C3DRotation target = MakeTarget(old);
                    EXPECT_EQ(&target.Interpolate(a, b, t), &target);
                    Inside inside(target);
                    EXPECT_EQ(inside.Flags(), k_QuatAlone);
                    EXPECT_EQ(inside.Order(), E3DROTORDER_YZX);
                    EXPECT_EQ(Inside(a).Flags(), flagsA & ~k_QuatDirty);
                    EXPECT_EQ(Inside(b).Flags(), flagsB & ~k_QuatDirty);
                    EXPECT_TRUE(Same(inside.Quat(), Normalized(Quat().Slerp(Inside(a).Quat(), Inside(b).Quat(), t))));
                    EXPECT_EQ(inside.Angle(), AngleOf(inside.Quat()));
                    Judge const judge = JudgeOf(k_Angles, E3DROTORDER_ZXY).slerp(t, JudgeOf(anglesB, E3DROTORDER_XZY));
                    EXPECT_TRUE(FreshFormsAre(target, judge, 1e-14));
                }
            }
        }
    }
}

TEST(RotationInverse, Interpolation_with_one_marked_operand_works_and_loses_the_mark)
{
    for (unsigned const state : k_States)
    {
        for (unsigned const flags : k_States)
        {
            for (bool const first : {true, false})
            {
                C3DRotation identity = MakeState(state | k_Marked, Vector(0, 0, 0), E3DROTORDER_XZY);
                C3DRotation other = MakeState(flags);
                C3DRotation target = MakeTarget(k_IdentityState);
                target.Interpolate(first ? identity : other, first ? other : identity, 0.3);
                EXPECT_EQ(Inside(target).Flags(), k_QuatAlone);
                EXPECT_EQ(Inside(identity).Flags(), (state & ~k_QuatDirty) | k_Marked) << "the operand keeps its mark";
                Judge const judge = JudgeOf(k_Angles, E3DROTORDER_ZXY);
                EXPECT_TRUE(FreshFormsAre(target, Judge::Identity().slerp(first ? 0.3 : 0.7, judge), 1e-14));

                C3DRotation self = MakeState(state | k_Marked, Vector(0, 0, 0), E3DROTORDER_XZY);
                other = MakeState(flags);
                self.Interpolate(first ? self : other, first ? other : self, 0.3);
                EXPECT_EQ(Inside(self).Flags(), k_QuatAlone);
                EXPECT_TRUE(SameState(self, (Inside(target).SetOrder(E3DROTORDER_XZY), target)));
            }
        }
    }
}

TEST(RotationInverse, Interpolation_of_two_identities_stays_marked_and_keeps_the_order)
{
    for (unsigned const stateA : k_States)
    {
        for (unsigned const old : {24U, 21U, 14U, 0U, 56U, 46U})
        {
            C3DRotation a = MakeState(stateA | k_Marked);
            C3DRotation b = MakeState(k_AnglesAlone | k_Marked);
            C3DRotation target = MakeTarget(old);
            target.Interpolate(a, b, 0.3);
            EXPECT_EQ(Inside(target).Flags(), old < k_Marked ? k_IdentityState : old);
            EXPECT_EQ(Inside(target).Order(), E3DROTORDER_YZX);
            EXPECT_EQ(Inside(a).Flags(), stateA | k_Marked);
        }
    }
}

TEST(RotationInverse, Interpolation_far_beyond_almost_equal_rotations_is_normalised)
{
    // So close, the quaternions are blended on a straight line, which leaves the sphere.
    C3DRotation a(E3D_AXIS_X, 1.0);
    C3DRotation b(E3D_AXIS_X, 1.0 + 1e-6);
    C3DRotation beyond;
    beyond.Interpolate(a, b, 1e6);
    EXPECT_NEAR(Inside(beyond).Quat().GetSquaredLength(), 1, 1e-12);
    EXPECT_EQ(Inside(beyond).Angle(), AngleOf(Inside(beyond).Quat()));
    EXPECT_NEAR(Inside(beyond).Angle(), 1 + 2 * std::atan(0.5), 1e-6);
}

TEST(RotationInverse, Interpolation_takes_the_shorter_arc)
{
    C3DRotation a(Quat(1, 0, 0, 0));
    C3DRotation b(Quat(-std::cos(0.5), 0, -std::sin(0.5), 0));
    C3DRotation middle;
    middle.Interpolate(a, b, 0.5);
    EXPECT_LT(MaxDifference(Inside(middle).Quat(), Quat(std::cos(0.25), 0, std::sin(0.25), 0)), 1e-15);
}
