#include "transform/composition_by_steps.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <initializer_list>
#include <string>

namespace
{

using namespace composition_test;

constexpr unsigned char k_All = 63;

C3DTransfo Component(Values const & values = Plain())
{
    return MakeState(k_MatrixDirty | k_QNScaling, values);
}

C3DTransfo MatrixReceiver()
{
    return MakeState(k_MatrixDirty);
}

C3DTransfo WithAngles(Vector const & angles, tagE3DROTORDER order)
{
    Values values = OtherPlain();
    values.rotation = Rotation(angles, order);
    return Component(values);
}

Vector AnglesOf(C3DTransfo & transfo)
{
    Vector angles;
    transfo.GetRotation(angles);
    return angles;
}

// --- Shortcuts -------------------------------------------------------------------------------------------------------

TEST(Difference, Of_two_identities_follows_the_reset_of_the_product)
{
    for (unsigned char const mask : std::initializer_list<unsigned char>{0, 1, 2, 4, 8, 15, 48, 62, 127})
    {
        for (unsigned const flags :
             {0U, k_ComponentsDirty, k_MatrixDirty | k_QNScaling, k_MatrixDirty | k_PreserveOrder, k_QNScaling})
        {
            C3DTransfo a;
            C3DTransfo b;
            C3DTransfo self = MakeState(flags, Sheared());
            C3DTransfo expected(self);
            EXPECT_EQ(&self, &self.Dif(a, b, mask, nullptr));
            ResetBySteps(expected, mask);
            EXPECT_TRUE(SameState(self, expected)) << int(mask) << ' ' << flags;
        }
        C3DTransfo identity = MakeState(k_Identity | k_MatrixDirty);
        C3DTransfo b;
        Snapshot const before(identity);
        identity.Dif(b, b, mask, nullptr);
        EXPECT_TRUE(Untouched(before, identity));
    }
}

TEST(Difference, Of_two_identities_by_mask_63_is_the_identity)
{
    for (unsigned const flags : {0U, k_ComponentsDirty, k_MatrixDirty | k_QNScaling | k_PreserveOrder, k_QNScaling})
    {
        C3DTransfo a;
        C3DTransfo b;
        C3DTransfo self = MakeState(flags, Sheared());
        self.Dif(a, b, k_All, nullptr);
        EXPECT_EQ((flags & ~1U) | k_MatrixDirty | k_Identity, Inside::Flags(self));
        EXPECT_TRUE(FreshFormsAre(self, Matrix(), 0));
    }
}

TEST(Difference, With_the_identity_copies_and_keeps_the_targets_flags_and_order)
{
    C3DTransfo identity;
    for (unsigned const flags : {0U, k_QNScaling, k_PreserveOrder})
    {
        C3DTransfo a = Component(Sheared());
        C3DTransfo self = MakeState(k_MatrixDirty | flags, OtherPlain());
        self.Dif(a, identity, k_All, nullptr);
        EXPECT_EQ(k_MatrixDirty | flags, Inside::Flags(self));
        EXPECT_EQ(E3DROTORDER_XZY, self.GetXYZRotOrder());
        EXPECT_TRUE(FreshFormsAre(self, MatrixOf(Sheared())));
    }
}

TEST(Difference, With_the_identity_in_place_rewrites_the_angles_from_the_matrix)
{
    C3DTransfo identity;
    for (unsigned const flags : {k_MatrixDirty, k_MatrixDirty | k_QNScaling, 0U})
    {
        Values values = Plain();
        values.rotation = Rotation(0.3 + 2 * k_Pi, -0.5, 0.7 - 4 * k_Pi, E3DROTORDER_ZXY);
        C3DTransfo self = MakeState(flags, values);
        self.Dif(self, identity, k_All, nullptr);
        EXPECT_TRUE(Near(Vector(0.3, -0.5, 0.7), AnglesOf(self)));
        EXPECT_EQ(flags, Inside::Flags(self));
        EXPECT_EQ(E3DROTREPTYPE_XYZANGLES, RotationInside(Inside::Rotation(self)).GetOrigRep());
        EXPECT_EQ(E3DROTORDER_ZXY, self.GetXYZRotOrder());
    }
}

TEST(Difference, With_the_identity_leaves_a_matrix_without_components_alone)
{
    C3DTransfo identity;
    C3DTransfo nearBy = WithAngles(Vector(7, 0, 0), E3DROTORDER_XYZ);
    for (C3DTransfo * const target : {static_cast<C3DTransfo *>(nullptr), &nearBy})
    {
        // Without QN scaling the target does not count.
        C3DTransfo self = MakeState(k_ComponentsDirty, Sheared());
        self.Dif(self, identity, k_All, target);
        EXPECT_EQ(k_ComponentsDirty, Inside::Flags(self));
    }
    C3DTransfo self = MakeState(k_ComponentsDirty | k_QNScaling, Sheared());
    self.Dif(self, identity, k_All, nullptr);
    EXPECT_EQ(k_ComponentsDirty | k_QNScaling, Inside::Flags(self));
}

TEST(Difference, With_the_identity_brings_the_angles_near_those_of_a_target)
{
    C3DTransfo identity;
    C3DTransfo nearBy = WithAngles(Vector(0.2 + 2 * k_Pi, -0.4, 0.6 - 2 * k_Pi), E3DROTORDER_ZXY);
    for (unsigned const freshness : k_Freshness)
    {
        C3DTransfo self = MakeState(k_QNScaling | freshness);
        self.Dif(self, identity, k_All, &nearBy);
        EXPECT_TRUE(Near(Vector(0.3 + 2 * k_Pi, -0.5, 0.7 - 2 * k_Pi), AnglesOf(self)));
        // A matrix that was fresh is fresh still.
        EXPECT_EQ(k_QNScaling | (freshness & k_MatrixDirty), Inside::Flags(self));
    }
}

TEST(Difference, With_the_identity_and_without_qn_scaling_the_target_is_ignored)
{
    C3DTransfo identity;
    C3DTransfo nearBy = WithAngles(Vector(0.2 + 2 * k_Pi, -0.4, 0.6 - 2 * k_Pi), E3DROTORDER_ZXY);
    C3DTransfo self = MakeState(k_MatrixDirty);
    self.Dif(self, identity, k_All, &nearBy);
    EXPECT_TRUE(Near(Vector(0.3, -0.5, 0.7), AnglesOf(self)));
}

TEST(Difference, With_the_identity_takes_the_mode_of_the_receiver_not_of_the_operand)
{
    C3DTransfo identity;
    C3DTransfo nearBy = WithAngles(Vector(0.2 + 2 * k_Pi, -0.4, 0.6 - 2 * k_Pi), E3DROTORDER_ZXY);
    C3DTransfo a = MakeState(k_MatrixDirty);
    C3DTransfo self = MakeState(k_MatrixDirty | k_QNScaling | k_Identity);
    self.Dif(a, identity, k_All, &nearBy);
    EXPECT_TRUE(Near(Vector(0.3 + 2 * k_Pi, -0.5, 0.7 - 2 * k_Pi), AnglesOf(self)));
}

TEST(Difference, With_the_identity_reads_the_target_in_the_objects_own_order)
{
    C3DTransfo identity;
    // About one axis the angles are those of every order, turns included.
    C3DTransfo nearBy = WithAngles(Vector(0, 6 * k_Pi, 0), E3DROTORDER_ZYX);
    Values values = Plain();
    values.rotation = Rotation(0, 0.25, 0, E3DROTORDER_XZY);
    C3DTransfo self = Component(values);
    self.Dif(self, identity, k_All, &nearBy);
    EXPECT_TRUE(Near(Vector(0, 0.25 + 6 * k_Pi, 0), AnglesOf(self)));
    EXPECT_EQ(E3DROTORDER_XZY, self.GetXYZRotOrder());
    EXPECT_EQ(E3DROTORDER_ZYX, nearBy.GetXYZRotOrder());
    EXPECT_TRUE(Near(Vector(0, 6 * k_Pi, 0), AnglesOf(nearBy), 0));
}

TEST(Difference, With_the_identity_reads_a_dirty_target)
{
    C3DTransfo identity;
    Values nearValues = OtherSheared();
    nearValues.rotation = Rotation(0.2, -0.4, 0.8, E3DROTORDER_ZXY);
    C3DTransfo nearBy = MakeState(k_ComponentsDirty, nearValues);
    Values values = Plain();
    values.rotation = Rotation(0.3 + 2 * k_Pi, -0.5, 0.7, E3DROTORDER_ZXY);
    C3DTransfo self = Component(values);
    self.Dif(self, identity, k_All, &nearBy);
    EXPECT_TRUE(Near(Vector(0.3, -0.5, 0.7), AnglesOf(self)));
}

TEST(Difference, With_the_identity_near_itself_keeps_the_turns)
{
    C3DTransfo identity;
    Values values = Plain();
    values.rotation = Rotation(0.3 + 2 * k_Pi, -0.5, 0.7 - 4 * k_Pi, E3DROTORDER_ZXY);
    C3DTransfo self = Component(values);
    self.Dif(self, identity, k_All, &self);
    EXPECT_TRUE(Near(Vector(0.3 + 2 * k_Pi, -0.5, 0.7 - 4 * k_Pi), AnglesOf(self)));
}

// --- All masks against the steps -------------------------------------------------------------------------------------

enum class Target
{
    None,
    Other,
    Self,
    A,
    B
};

testing::AssertionResult AgreesWithSteps(C3DTransfo const (&operands)[4], int self, Target target, unsigned char mask)
{
    // 0 is a, 1 is b, 2 is a third object and 3 the other target.
    C3DTransfo actual[4] = {operands[0], operands[1], operands[2], operands[3]};
    C3DTransfo expected[4] = {operands[0], operands[1], operands[2], operands[3]};
    int const index = target == Target::Other ? 3 : (target == Target::Self ? self : (target == Target::A ? 0 : 1));
    bool const none = target == Target::None;
    actual[self].Dif(actual[0], actual[1], mask, none ? nullptr : &actual[index]);
    DifBySteps(expected[self], expected[0], expected[1], mask, none ? nullptr : &expected[index]);
    // Of a dirty operand that the shortcuts pass by, the target alone may have asked for the components.
    for (int i = 0; i < 3; ++i)
    {
        if (!none && i == index && i != self)
        {
            FreshenComponents(actual[i]);
            FreshenComponents(expected[i]);
        }
        if (auto const agree = Agree(actual[i], expected[i]); !agree)
        {
            return testing::AssertionFailure() << "object " << i << ": " << agree.message();
        }
    }
    return testing::AssertionSuccess();
}

C3DTransfo OtherTarget()
{
    Values values = Sheared();
    values.rotation = Rotation(7, -9, 4, E3DROTORDER_YXZ);
    values.orientation = Rotation(-8, 5, 2, E3DROTORDER_XYZ);
    return MakeState(k_MatrixDirty, values);
}

void CheckAllMasks(unsigned mode, Target target)
{
    auto const operands = Operands();
    auto const receivers = Receivers(mode);
    for (Operand const & a : operands)
    {
        for (Operand const & b : operands)
        {
            for (Operand const & self : receivers)
            {
                C3DTransfo const all[4] = {a.value, b.value, self.value, OtherTarget()};
                for (int mask = 0; mask < 64; ++mask)
                {
                    ASSERT_TRUE(AgreesWithSteps(all, 2, target, static_cast<unsigned char>(mask)))
                        << self << " := " << a << " without " << b << ", mask " << mask;
                }
            }
        }
    }
}

TEST(Difference, By_component_follows_the_steps_for_every_mask_and_operand)
{
    CheckAllMasks(k_QNScaling, Target::None);
}

TEST(Difference, By_component_with_a_target_follows_the_steps_for_every_mask_and_operand)
{
    CheckAllMasks(k_QNScaling, Target::Other);
}

TEST(Difference, By_component_with_itself_as_target_follows_the_steps_for_every_mask_and_operand)
{
    CheckAllMasks(k_QNScaling, Target::Self);
}

TEST(Difference, By_component_with_an_operand_as_target_follows_the_steps_for_every_mask_and_operand)
{
    CheckAllMasks(k_QNScaling, Target::A);
    CheckAllMasks(k_QNScaling, Target::B);
}

TEST(Difference, By_matrix_follows_the_steps_for_every_mask_and_operand)
{
    CheckAllMasks(0, Target::None);
    CheckAllMasks(0, Target::Other);
}

TEST(Difference, Into_an_operand_follows_the_steps_in_both_modes)
{
    auto const operands = Operands();
    for (Operand const & first : operands)
    {
        for (Operand const & second : operands)
        {
            for (int variant = 0; variant < 8 * 64; ++variant)
            {
                C3DTransfo all[4] = {first.value, second.value, C3DTransfo(), OtherTarget()};
                Inside::SetQNScaling(all[0], variant & 1);
                Inside::SetQNScaling(all[1], variant & 1);
                int const self = variant / 2 & 1;
                auto const target = (variant & 4) != 0 ? Target::Self : Target::None;
                auto const mask = static_cast<unsigned char>(variant / 8);
                ASSERT_TRUE(AgreesWithSteps(all, self, target, mask))
                    << first << " without " << second << " into " << self << ", mask " << int(mask) << ", mode "
                    << (variant & 1) << ", target " << (variant & 4);
            }
        }
    }
}

TEST(Difference, Of_an_object_and_itself_is_no_change_of_place)
{
    for (unsigned const freshness : k_Freshness)
    {
        C3DTransfo byComponent = MakeState(freshness | k_QNScaling, Plain());
        byComponent.Dif(byComponent, byComponent, k_All, nullptr);
        EXPECT_TRUE(FreshFormsAre(byComponent, Matrix(), 1e-14));
        C3DTransfo byMatrix = MakeState(freshness, Sheared());
        byMatrix.Dif(byMatrix, byMatrix, k_All, nullptr);
        EXPECT_TRUE(FreshFormsAre(byMatrix, Matrix(), 1e-13));
    }
}

// --- By component, fact by fact --------------------------------------------------------------------------------------

TEST(Difference, By_component_divides_the_scales_axis_by_axis)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    C3DTransfo self;
    self.Dif(a, b, k_All, nullptr);
    EXPECT_TRUE(Near(Vector(8, -2, 0.125), Inside::Scaling(self), 0));
    Inside::Scaling(a).Set(1e-9, -1e-9, 0);
    Inside::Scaling(b).Set(2e3, 2e3, 1);
    self.Dif(a, b, k_All, nullptr);
    EXPECT_TRUE(Near(Vector(1e-12, -1e-12, 1e-12), Inside::Scaling(self), 0));
}

TEST(Difference, Of_the_identity_and_what_has_no_translation_leaves_the_targets)
{
    C3DTransfo identity;
    C3DTransfo b = Component(WithoutTranslation());
    for (unsigned char const mask : std::initializer_list<unsigned char>{8, 8 | 16, 8 | 32, 8 | 48, 63})
    {
        C3DTransfo self = Component(Sheared());
        self.Dif(identity, b, mask, nullptr);
        EXPECT_TRUE(Near(Sheared().translation, Inside::Translation(self), 0));
        EXPECT_EQ(k_MatrixDirty | k_QNScaling, Inside::Flags(self));
    }
}

TEST(Difference, Of_no_translation_without_the_identity_flag_writes_the_targets)
{
    C3DTransfo almostIdentity = MakeState(k_MatrixDirty, IdentityValues());
    C3DTransfo b = Component(WithoutTranslation());
    C3DTransfo self = Component(Sheared());
    self.Dif(almostIdentity, b, 8, nullptr);
    EXPECT_TRUE(Near(Vector(0, 0, 0), Inside::Translation(self), 0));
}

TEST(Difference, Of_the_identity_and_a_translation_is_its_inverse)
{
    C3DTransfo identity;
    C3DTransfo b = Component(OtherPlain());
    Matrix inverse;
    inverse.Invert(MatrixOf(OtherPlain()));
    C3DTransfo self = Component();
    self.Dif(identity, b, 8 | 48, nullptr);
    EXPECT_TRUE(Near(Vector(inverse.Get(3, 0), inverse.Get(3, 1), inverse.Get(3, 2)), Inside::Translation(self)));
    self.Dif(identity, b, 8, nullptr);
    EXPECT_TRUE(Near(Vector(7, -5, -0.125), Inside::Translation(self), 0));
}

TEST(Difference, Of_the_identity_looks_at_none_of_its_components)
{
    C3DTransfo const identity = MakeState(k_Identity | k_MatrixDirty);
    C3DTransfo b = Component(OtherSheared());
    C3DTransfo plain(identity);
    C3DTransfo expected;
    expected.Dif(plain, b, 62, nullptr);

    C3DTransfo withRemains(identity);
    Inside::Translation(withRemains).Set(5, 6, 7);
    Inside::ScalingOrientation(withRemains) = new Rotation(*Sheared().orientation);
    C3DTransfo self;
    self.Dif(withRemains, b, 62, nullptr);
    EXPECT_TRUE(Agree(self, expected));
}

TEST(Difference, Of_the_identity_in_place_counts_as_without_a_scaling_orientation)
{
    C3DTransfo self(Vector(1, 1, 1), *Sheared().orientation);
    ASSERT_TRUE(self.IsExactlyIdentity());
    C3DTransfo b = Component();
    self.Dif(self, b, k_All, nullptr);
    EXPECT_EQ(nullptr, Inside::ScalingOrientation(self));
}

TEST(Difference, With_scaling_alone_keeps_the_direction_and_divides_the_length)
{
    Values values = OtherPlain();
    values.scaling = Vector(2, 4, 8);
    values.rotation = Rotation(E3D_AXIS_Z, k_HalfPi);
    values.translation = Vector(10, 20, 30);
    C3DTransfo b = Component(values);
    C3DTransfo a = Component();
    Inside::Translation(a).Set(13, 24, 30);
    C3DTransfo self;
    self.Dif(a, b, 8 | 16, nullptr);
    double const factor = std::hypot(4.0 / 2, 3.0 / 4) / 5;
    EXPECT_TRUE(Near(Vector(3 * factor, 4 * factor, 0), Inside::Translation(self), 1e-14));
    Inside::Translation(a).Set(10, 20, 30);
    self.Dif(a, b, 8 | 16, nullptr);
    EXPECT_TRUE(Near(Vector(0, 0, 0), Inside::Translation(self), 0));
}

TEST(Difference, With_rotation_alone_turns_back_and_does_not_scale)
{
    Values values = OtherPlain();
    values.rotation = Rotation(E3D_AXIS_Z, k_HalfPi);
    values.translation = Vector(10, 20, 30);
    C3DTransfo b = Component(values);
    C3DTransfo a = Component();
    Inside::Translation(a).Set(8, 21, 33);
    C3DTransfo self;
    self.Dif(a, b, 8 | 32, nullptr);
    EXPECT_TRUE(Near(Vector(1, 2, 3), Inside::Translation(self), 1e-14));
}

TEST(Difference, By_component_of_a_singular_matrix_takes_the_identity_for_its_inverse)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    Inside::Scaling(b).Set(1, 0, 1e-300);
    Inside::Matrix(b) = MakeMatrix({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5, 6, 7, 1}, 0);
    Inside::SetFlags(b, k_QNScaling);
    C3DTransfo self;
    self.Dif(a, b, 8 | 48, nullptr);
    EXPECT_TRUE(Near(Plain().translation, Inside::Translation(self), 0));
}

TEST(Difference, Angles_come_near_those_of_the_target_in_the_order_of_the_object)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    C3DTransfo plain = MakeState(k_MatrixDirty | k_QNScaling, OtherPlain());
    plain.Dif(a, b, k_All, nullptr);
    Vector const angles = AnglesOf(plain);
    for (int turn = -2; turn <= 2; ++turn)
    {
        Vector const turned(angles.X + 2 * k_Pi * turn, angles.Y, angles.Z - 2 * k_Pi * turn);
        C3DTransfo nearBy = WithAngles(turned, E3DROTORDER_XZY);
        C3DTransfo self = MakeState(k_MatrixDirty | k_QNScaling, OtherPlain());
        self.Dif(a, b, k_All, &nearBy);
        EXPECT_TRUE(Near(turned, AnglesOf(self), 1e-12));
        EXPECT_EQ(E3DROTORDER_XZY, self.GetXYZRotOrder());
        EXPECT_EQ(E3DROTREPTYPE_XYZANGLES, RotationInside(Inside::Rotation(self)).GetOrigRep());
    }
}

TEST(Difference, Angles_of_a_target_are_taken_into_the_order_of_a_dirty_object)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    C3DTransfo nearBy = WithAngles(Vector(0, 6 * k_Pi, 0), E3DROTORDER_ZYX);
    C3DTransfo self = MakeState(k_ComponentsDirty | k_QNScaling, Sheared());
    self.Dif(a, b, k_All, &nearBy);
    EXPECT_EQ(Sheared().rotation.GetXYZRotOrder(), self.GetXYZRotOrder());
    EXPECT_NEAR(6 * k_Pi, AnglesOf(self).Y, k_Pi);
}

TEST(Difference, Keeps_the_targets_value)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    for (unsigned const freshness : k_Freshness)
    {
        C3DTransfo nearBy = MakeState(freshness, OtherSheared());
        C3DTransfo self;
        self.Dif(a, b, k_All, &nearBy);
        EXPECT_TRUE(FreshFormsAre(nearBy, MatrixOf(OtherSheared()), 1e-11));
    }
}

TEST(Difference, Of_scaling_orientations_is_the_first_and_the_inverse_of_the_second)
{
    C3DTransfo a = Component(Sheared());
    C3DTransfo b = Component(OtherSheared());
    C3DTransfo self;
    self.Dif(a, b, k_All, nullptr);
    RotMatrix expected;
    expected.MulRegByTrans(MatrixOf(*Sheared().orientation), MatrixOf(*OtherSheared().orientation));
    ASSERT_NE(nullptr, Inside::ScalingOrientation(self));
    EXPECT_LE(Distance(*Inside::ScalingOrientation(self), Rotation(expected)), 1e-14);

    C3DTransfo equal = Component(Sheared());
    self.Dif(a, equal, k_All, nullptr);
    EXPECT_EQ(nullptr, Inside::ScalingOrientation(self));

    C3DTransfo identity;
    self.Dif(identity, b, k_All, nullptr);
    Rotation inverse = *OtherSheared().orientation;
    inverse.Invert();
    ASSERT_NE(nullptr, Inside::ScalingOrientation(self));
    EXPECT_LE(Distance(*Inside::ScalingOrientation(self), inverse), 1e-14);
}

TEST(Difference, Angles_of_the_scaling_orientation_come_near_those_of_the_targets)
{
    C3DTransfo a = Component(Sheared());
    C3DTransfo b = Component(OtherSheared());
    C3DTransfo plain;
    plain.Dif(a, b, k_All, nullptr);
    Vector angles;
    plain.GetScalingOrientation(angles);
    Vector const turned(angles.X, angles.Y + 2 * k_Pi, angles.Z - 4 * k_Pi);
    Values values = Plain();
    values.orientation = Rotation(turned, E3DROTORDER_XYZ);
    C3DTransfo nearBy = Component(values);
    C3DTransfo self;
    self.Dif(a, b, k_All, &nearBy);
    Vector result;
    self.GetScalingOrientation(result);
    EXPECT_TRUE(Near(turned, result));

    // Without one the target's angles count as 0.
    C3DTransfo unsheared = Component();
    self.Dif(a, b, k_All, &unsheared);
    self.GetScalingOrientation(result);
    EXPECT_TRUE(Near(angles, result));
    ASSERT_NE(nullptr, Inside::ScalingOrientation(self));
    EXPECT_EQ(E3DROTREPTYPE_XYZANGLES, RotationInside(*Inside::ScalingOrientation(self)).GetOrigRep());
}

TEST(Difference, Of_scaling_orientations_by_a_whole_turn_is_held_though_its_angles_near_the_target_are_zeros)
{
    Values turned = Plain();
    turned.orientation = Rotation(Vector(2 * k_Pi, 0, 0), E3DROTORDER_XYZ);
    C3DTransfo a = Component(turned);
    C3DTransfo b = Component(OtherPlain());
    C3DTransfo nearBy = Component();
    for (C3DTransfo * const target : {static_cast<C3DTransfo *>(nullptr), &nearBy})
    {
        C3DTransfo self;
        self.Dif(a, b, k_All, target);
        ASSERT_NE(nullptr, Inside::ScalingOrientation(self));
        C3DQuatTpl<double> quat;
        Inside::ScalingOrientation(self)->GetQuat(quat);
        EXPECT_EQ(-1, quat.GetW());
    }
    C3DTransfo self;
    self.Dif(a, b, k_All, &nearBy);
    Vector angles(1, 2, 3);
    Inside::ScalingOrientation(self)->GetXYZAngles(angles);
    EXPECT_TRUE(Near(Vector(0, 0, 0), angles, 1e-15));
    EXPECT_FALSE(self.IsScalingOrientationExisting());
}

TEST(Difference, Near_itself_reads_the_angles_before_it_writes)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    for (unsigned const freshness : k_Freshness)
    {
        C3DTransfo self = MakeState(freshness | k_QNScaling, Sheared());
        C3DTransfo copy(self);
        C3DTransfo expected(self);
        expected.Dif(a, b, k_All, &copy);
        self.Dif(a, b, k_All, &self);
        EXPECT_TRUE(Agree(self, expected));
    }
}

TEST(Difference, Near_itself_leaves_what_the_mask_does_not_ask_for)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    C3DTransfo self = MakeState(k_ComponentsDirty | k_QNScaling, Sheared());
    Inside::Scaling(self).Set(70, 80, 90);
    self.Dif(a, b, 8 | 48, &self);
    EXPECT_EQ(k_MatrixDirty | k_QNScaling, Inside::Flags(self));
    EXPECT_TRUE(Near(Vector(70, 80, 90), Inside::Scaling(self), 0));
}

TEST(Difference, Asks_a_target_for_angles_only_where_the_mask_has_rotations)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    for (int mask = 0; mask < 64; ++mask)
    {
        C3DTransfo nearBy = MakeState(k_ComponentsDirty, OtherSheared());
        C3DTransfo self;
        self.Dif(a, b, static_cast<unsigned char>(mask), &nearBy);
        EXPECT_LE((mask & 6) == 0, Inside::AreComponentsDirty(nearBy)) << mask;
    }
}

// --- By matrix -------------------------------------------------------------------------------------------------------

TEST(Difference, By_matrix_multiplies_by_the_inverse)
{
    for (Values const & second : {OtherPlain(), OtherSheared()})
    {
        C3DTransfo a = Component(Sheared());
        C3DTransfo b = Component(second);
        C3DTransfo self = MatrixReceiver();
        self.Dif(a, b, 0, nullptr);
        C3DTransfo back = MatrixReceiver();
        back.Mul(self, b, k_All);
        EXPECT_TRUE(FreshFormsAre(back, MatrixOf(Sheared()), 1e-13));
        EXPECT_EQ(k_ComponentsDirty, Inside::Flags(self));
    }
}

TEST(Difference, By_matrix_ignores_the_target)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    C3DTransfo nearBy = WithAngles(Vector(70, 80, 90), E3DROTORDER_ZYX);
    Snapshot const before(nearBy);
    C3DTransfo without = MatrixReceiver();
    without.Dif(a, b, k_All, nullptr);
    C3DTransfo with = MatrixReceiver();
    with.Dif(a, b, k_All, &nearBy);
    EXPECT_TRUE(SameState(with, without));
    EXPECT_TRUE(Untouched(before, nearBy));
}

TEST(Difference, By_matrix_takes_the_inverse_of_a_singular_matrix_for_the_identity)
{
    C3DTransfo a = Component();
    C3DTransfo b = MakeState(k_ComponentsDirty);
    Inside::Matrix(b) = MakeMatrix({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5, 6, 7, 1}, 0);
    C3DTransfo self = MatrixReceiver();
    self.Dif(a, b, k_All, nullptr);
    EXPECT_TRUE(FreshFormsAre(self, MatrixOf(Plain())));
    EXPECT_EQ(4, Inside::Matrix(self).GetSclSignBits());
}

TEST(Difference, By_matrix_knows_a_mirror_in_the_inverse_by_its_determinant_alone)
{
    // One negative axis in b: the inverse holds all three bits, and the product those of a against them.
    C3DTransfo a(Vector(1, -1, 1), Rotation(), Vector(0, 0, 0));
    C3DTransfo b(Vector(-1, 1, 1), Rotation(), Vector(0, 0, 0));
    C3DTransfo self = MatrixReceiver();
    self.Dif(a, b, k_All, nullptr);
    EXPECT_EQ(4U ^ 14U, Inside::Matrix(self).GetSclSignBits());
}

TEST(Difference, By_matrix_with_a_masked_identity_takes_off_nothing)
{
    C3DTransfo a = Component();
    C3DTransfo identity;
    C3DTransfo self = MatrixReceiver();
    self.Dif(a, identity, 62, nullptr);
    EXPECT_TRUE(FreshFormsAre(self, MatrixOf(Plain())));
    EXPECT_EQ(k_ComponentsDirty, Inside::Flags(self));
    // The identity is not asked for its matrix.
    EXPECT_EQ(k_MatrixDirty | k_QNScaling | k_Identity, Inside::Flags(identity));
}

} // namespace
