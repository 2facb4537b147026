#include "transform/composition_by_steps.h"

#include <gtest/gtest.h>

#include <array>
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

/// A receiver that works on matrices.
C3DTransfo MatrixReceiver()
{
    return MakeState(k_MatrixDirty);
}

Values Moved(double x, double y, double z)
{
    Values values = IdentityValues();
    values.translation = Vector(x, y, z);
    return values;
}

// --- The case table --------------------------------------------------------------------------------------------------

struct Row
{
    char const * name;
    unsigned char mask;
    bool is_a_identity;
    bool is_b_identity;
    char target; ///< 'a', 'b', 'i' for a third object that is the identity, or '-' for another one
    enum
    {
        Nothing,
        Identity,
        CopyOfA,
        CopyOfB,
        Reset
    } effect;
};

/// A row in one mode, with receivers in each state of their caches.
void CheckRow(Row const & row, unsigned receiverFlags)
{
    C3DTransfo a = row.is_a_identity ? MakeState(k_MatrixDirty | k_QNScaling | k_Identity) : MakeState(k_MatrixDirty);
    C3DTransfo b = row.is_b_identity ? MakeState(k_MatrixDirty | k_Identity) : MakeState(k_QNScaling, OtherSheared());
    C3DTransfo other = row.target == 'i' ? MakeState(k_MatrixDirty | k_Identity | (receiverFlags & ~1U))
                                         : MakeState(receiverFlags, Sheared());
    C3DTransfo & self = row.target == 'a' ? a : (row.target == 'b' ? b : other);
    C3DTransfo expected(self);
    switch (row.effect)
    {
    case Row::Nothing:
        break;
    case Row::Identity:
        expected.SetIdentity();
        Inside::SetFlags(expected, (Inside::Flags(self) & ~1U) | k_MatrixDirty | k_Identity);
        break;
    case Row::CopyOfA:
        expected.Set(a, true);
        break;
    case Row::CopyOfB:
        expected.Set(b, true);
        break;
    case Row::Reset:
        ResetBySteps(expected, row.mask);
        break;
    }
    Snapshot const before(self);
    EXPECT_EQ(&self, &self.Mul(a, b, row.mask));
    EXPECT_TRUE(SameState(self, expected));
    if (row.effect == Row::Nothing)
    {
        EXPECT_TRUE(Untouched(before, self));
    }
}

constexpr Row k_Rows[] = {
    {"b identity into a", k_All, false, true, 'a', Row::Nothing},
    {"both identity into a", k_All, true, true, 'a', Row::Nothing},
    {"both identity into b", k_All, true, true, 'b', Row::Nothing},
    {"both identity into identity", k_All, true, true, 'i', Row::Nothing},
    {"both identity", k_All, true, true, '-', Row::Identity},
    {"b identity", k_All, false, true, '-', Row::CopyOfA},
    {"b identity into b", k_All, false, true, 'b', Row::CopyOfA},
    {"b identity into identity", k_All, false, true, 'i', Row::CopyOfA},
    {"a identity into b", k_All, true, false, 'b', Row::Nothing},
    {"a identity", k_All, true, false, '-', Row::CopyOfB},
    {"a identity into a", k_All, true, false, 'a', Row::CopyOfB},
    {"a identity into identity", k_All, true, false, 'i', Row::CopyOfB},
    {"masked into identity", 15, true, true, 'i', Row::Nothing},
    {"masked into a", 62, true, true, 'a', Row::Nothing},
    {"masked all components", 15, true, true, '-', Row::Reset},
    {"masked scaling", 1, true, true, '-', Row::Reset},
    {"masked orientation", 2, true, true, '-', Row::Reset},
    {"masked rotation", 4, true, true, '-', Row::Reset},
    {"masked translation", 8, true, true, '-', Row::Reset},
    {"masked inheritance", 48, true, true, '-', Row::Reset},
    {"masked nothing", 0, true, true, '-', Row::Reset},
    {"a bit beyond the mask", 64 | 63, true, true, '-', Row::Reset},
};

TEST(Product, Shortcuts_of_identities_follow_their_table)
{
    for (Row const & row : k_Rows)
    {
        for (unsigned const freshness : k_Freshness)
        {
            for (unsigned const flags : {0U, k_QNScaling, k_PreserveOrder, k_QNScaling | k_PreserveOrder | k_Unused})
            {
                SCOPED_TRACE(std::string(row.name) + ", receiver " + std::to_string(freshness | flags));
                CheckRow(row, freshness | flags);
            }
        }
    }
}

TEST(Product, Of_two_identities_resets_what_the_mask_names_and_sets_no_flag)
{
    C3DTransfo a;
    C3DTransfo b;
    C3DTransfo self = MakeState(k_ComponentsDirty, Sheared());
    C3DTransfo whole = MakeState(k_ComponentsDirty, Sheared());
    Inside::Factorize(whole, 63);
    self.Mul(a, b, 4 | 8);
    EXPECT_EQ(k_MatrixDirty, Inside::Flags(self));
    EXPECT_TRUE(Near(Inside::Scaling(whole), Inside::Scaling(self), 0));
    EXPECT_TRUE(self.IsScalingOrientationExisting());
    EXPECT_NE(0, Inside::Rotation(self).QuickIsIdentity());
    EXPECT_TRUE(Near(Vector(0, 0, 0), Inside::Translation(self), 0));
}

TEST(Product, Of_two_identities_by_mask_63_deletes_the_scaling_orientation_of_the_target)
{
    C3DTransfo a;
    C3DTransfo b;
    C3DTransfo self = Component(Sheared());
    self.Mul(a, b, k_All);
    EXPECT_EQ(nullptr, Inside::ScalingOrientation(self));
    EXPECT_TRUE(self.QuickIsIdentity());
}

TEST(Product, With_the_identity_keeps_the_targets_own_mode)
{
    for (int const mode : {0, 1})
    {
        C3DTransfo identity;
        C3DTransfo b = Component(OtherPlain());
        b.SetQNScalingFlag(1 - mode);
        C3DTransfo self = Component();
        self.SetQNScalingFlag(mode);
        self.Mul(identity, b, k_All);
        EXPECT_EQ(mode, self.GetQNScalingFlag());
        self.Mul(b, identity, k_All);
        EXPECT_EQ(mode, self.GetQNScalingFlag());
    }
}

TEST(Product, An_identity_without_the_flag_is_no_shortcut)
{
    C3DTransfo a = Component();
    C3DTransfo b = MakeState(k_MatrixDirty | k_QNScaling, IdentityValues());
    C3DTransfo self = MakeState(k_MatrixDirty | k_QNScaling | k_Identity, IdentityValues(E3DROTORDER_ZYX));
    self.Mul(a, b, k_All);
    // A copy would hold the rotation in the form of a.
    EXPECT_EQ(E3DROTREPTYPE_QUAT, RotationInside(Inside::Rotation(self)).GetOrigRep());
    EXPECT_EQ(k_MatrixDirty | k_QNScaling, Inside::Flags(self));
    EXPECT_EQ(E3DROTORDER_ZYX, self.GetXYZRotOrder());
}

TEST(Product, A_bit_beyond_the_mask_is_no_shortcut_with_one_identity)
{
    for (bool const is_a_identity : {false, true})
    {
        C3DTransfo identity;
        C3DTransfo other = Component();
        C3DTransfo self = MakeState(k_MatrixDirty | k_QNScaling | k_Identity);
        self.Mul(is_a_identity ? identity : other, is_a_identity ? other : identity, 64 | 63);
        // A copy would hold the rotation in the form of the operand.
        EXPECT_EQ(E3DROTREPTYPE_QUAT, RotationInside(Inside::Rotation(self)).GetOrigRep());
        EXPECT_TRUE(FreshFormsAre(self, MatrixOf(Plain())));
    }
}

TEST(Product, An_identity_that_still_has_a_scaling_orientation_counts_as_without)
{
    // Under the scale 1 it is without effect, and the test for the identity does not look at it.
    C3DTransfo a(Vector(1, 1, 1), *Sheared().orientation);
    ASSERT_TRUE(a.IsExactlyIdentity());
    ASSERT_NE(nullptr, Inside::ScalingOrientation(a));
    C3DTransfo b = Component(OtherSheared());
    C3DTransfo self;
    self.Mul(a, b, 62);
    ASSERT_NE(nullptr, Inside::ScalingOrientation(self));
    EXPECT_LE(Distance(*Inside::ScalingOrientation(self), *OtherSheared().orientation), 1e-14);
    self.Mul(b, a, 62);
    ASSERT_NE(nullptr, Inside::ScalingOrientation(self));
    EXPECT_LE(Distance(*Inside::ScalingOrientation(self), *OtherSheared().orientation), 1e-14);
}

TEST(Product, In_place_clears_the_identity_flag_before_it_looks_for_a_scaling_orientation)
{
    C3DTransfo self(Vector(1, 1, 1), *Sheared().orientation);
    ASSERT_TRUE(self.IsExactlyIdentity());
    C3DTransfo b = Component();
    self.Mul(self, b, 62);
    ASSERT_NE(nullptr, Inside::ScalingOrientation(self));
    EXPECT_LE(Distance(*Inside::ScalingOrientation(self), *Sheared().orientation), 1e-14);
}

// --- All masks against the steps -------------------------------------------------------------------------------------

testing::AssertionResult AgreesWithSteps(C3DTransfo const & self, C3DTransfo const & a, C3DTransfo const & b,
                                         unsigned char mask)
{
    C3DTransfo actual(self);
    C3DTransfo actualA(a);
    C3DTransfo actualB(b);
    C3DTransfo expected(self);
    C3DTransfo expectedA(a);
    C3DTransfo expectedB(b);
    actual.Mul(actualA, actualB, mask);
    MulBySteps(expected, expectedA, expectedB, mask);
    if (auto const a_agrees = Agree(actualA, expectedA); !a_agrees)
    {
        return testing::AssertionFailure() << "operand a: " << a_agrees.message();
    }
    if (auto const b_agrees = Agree(actualB, expectedB); !b_agrees)
    {
        return testing::AssertionFailure() << "operand b: " << b_agrees.message();
    }
    return Agree(actual, expected);
}

void CheckAllMasks(unsigned mode)
{
    auto const operands = Operands();
    auto const receivers = Receivers(mode);
    for (Operand const & a : operands)
    {
        for (Operand const & b : operands)
        {
            for (Operand const & self : receivers)
            {
                for (int mask = 0; mask < 64; ++mask)
                {
                    ASSERT_TRUE(AgreesWithSteps(self.value, a.value, b.value, static_cast<unsigned char>(mask)))
                        << self << " := " << a << " x " << b << ", mask " << mask;
                }
            }
        }
    }
}

TEST(Product, By_component_follows_the_steps_for_every_mask_and_operand)
{
    CheckAllMasks(k_QNScaling);
}

TEST(Product, By_matrix_follows_the_steps_for_every_mask_and_operand)
{
    CheckAllMasks(0);
}

/// `which` is 'a' where the target is the first operand, 'b' for the second, '2' for both, which are then one object.
testing::AssertionResult AgreesInPlace(char which, C3DTransfo const & a, C3DTransfo const & b, unsigned char mask)
{
    C3DTransfo actual[2] = {a, b};
    C3DTransfo expected[2] = {a, b};
    int const self = which == 'b' ? 1 : 0;
    int const second = which == '2' ? 0 : 1;
    actual[self].Mul(actual[0], actual[second], mask);
    MulBySteps(expected[self], expected[0], expected[second], mask);
    auto const first = Agree(actual[0], expected[0]);
    return first ? Agree(actual[1], expected[1]) : first;
}

TEST(Product, Into_an_operand_follows_the_steps_in_both_modes)
{
    auto const operands = Operands();
    for (Operand const & first : operands)
    {
        for (Operand const & second : operands)
        {
            for (int variant = 0; variant < 6 * 64; ++variant)
            {
                Operand a = first;
                Operand b = second;
                Inside::SetQNScaling(a.value, variant & 1);
                Inside::SetQNScaling(b.value, variant & 1);
                char const which = "ab2"[variant / 2 % 3];
                auto const mask = static_cast<unsigned char>(variant / 6);
                ASSERT_TRUE(AgreesInPlace(which, a.value, b.value, mask))
                    << a << " x " << b << " into " << which << ", mask " << int(mask) << ", mode " << (variant & 1);
            }
        }
    }
}

TEST(Product, With_one_operand_has_the_object_as_the_first)
{
    for (unsigned const mode : {0U, k_QNScaling})
    {
        C3DTransfo b = Component(OtherSheared());
        C3DTransfo self = MakeState(k_MatrixDirty | mode);
        C3DTransfo expected(self);
        C3DTransfo a(self);
        C3DTransfo expectedB(b);
        expected.Mul(a, expectedB, 63);
        EXPECT_EQ(&self, &self.Mul(b, 63));
        EXPECT_TRUE(Agree(self, expected));
    }
}

TEST(Product, Leaves_the_value_of_its_operands)
{
    for (unsigned const mode : {0U, k_QNScaling})
    {
        for (Operand & operand : Operands())
        {
            Matrix const before = ValueOf(operand.value);
            C3DTransfo b = MakeState(k_ComponentsDirty, OtherSheared());
            C3DTransfo self = MakeState(k_MatrixDirty | mode);
            self.Mul(operand.value, b, 63);
            self.Mul(b, operand.value, 63);
            EXPECT_TRUE(FreshFormsAre(operand.value, before, 1e-11)) << operand;
        }
    }
}

// --- By component, fact by fact --------------------------------------------------------------------------------------

TEST(Product, By_component_multiplies_the_scales_axis_by_axis)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    C3DTransfo self;
    self.Mul(a, b, k_All);
    EXPECT_TRUE(Near(Vector(0.5, -4.5, 2), Inside::Scaling(self), 0));
    EXPECT_EQ(nullptr, Inside::ScalingOrientation(self));
    EXPECT_EQ(k_MatrixDirty | k_QNScaling, Inside::Flags(self));
}

TEST(Product, By_component_keeps_the_scale_away_from_zero)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component();
    Inside::Scaling(a).Set(1e-7, -1e-7, 1e-6);
    Inside::Scaling(b).Set(1e-7, 1e-7, 1.0000000000001e-6);
    C3DTransfo self;
    self.Mul(a, b, k_All);
    EXPECT_EQ(1e-12, Inside::Scaling(self).X);
    EXPECT_EQ(-1e-12, Inside::Scaling(self).Y);
    EXPECT_EQ(1e-6 * 1.0000000000001e-6, Inside::Scaling(self).Z);

    Inside::Scaling(a).Set(0, k_Nan, -0.0);
    Inside::Scaling(b).Set(1, 1, 1);
    self.Mul(a, b, k_All);
    EXPECT_TRUE(Near(Vector(1e-12, -1e-12, 1e-12), Inside::Scaling(self), 0));
}

TEST(Product, Translation_alone_changes_nothing_else)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    for (unsigned char const mask : std::initializer_list<unsigned char>{8, 8 | 16, 8 | 32, 8 | 48})
    {
        C3DTransfo self = Component(Sheared());
        Snapshot const before(self);
        self.Mul(a, b, mask);
        Snapshot after(self);
        EXPECT_FALSE(SameBits(before.translation, after.translation));
        after.translation = before.translation;
        EXPECT_TRUE(SameComponents(before, after));
    }
}

TEST(Product, Without_inheritance_the_translation_is_the_plain_sum)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    C3DTransfo self;
    self.Mul(a, b, 8);
    EXPECT_TRUE(Near(Vector(-6, 3, 3.125), Inside::Translation(self), 0));
    // A rotated parent does not turn it either.
    self.Mul(a, b, 15);
    EXPECT_TRUE(Near(Vector(-6, 3, 3.125), Inside::Translation(self), 0));
}

TEST(Product, With_rotation_alone_the_translation_is_turned_and_not_scaled)
{
    C3DTransfo a = Component();
    C3DTransfo b(Vector(5, 6, 7), Rotation(E3D_AXIS_Z, k_HalfPi), Vector(10, 20, 30));
    C3DTransfo self;
    self.Mul(a, b, 8 | 32);
    EXPECT_TRUE(Near(Vector(10 + 2, 20 + 1, 30 + 3), Inside::Translation(self), 1e-14));
}

TEST(Product, With_scaling_alone_the_translation_keeps_its_direction)
{
    // The direction (3, 4, 0) is seen as (4, -3, 0) in the axes of b, and there divided by the scale.
    C3DTransfo a = MakeState(k_MatrixDirty, Moved(3, 4, 0));
    C3DTransfo b(Vector(2, 4, 8), Rotation(E3D_AXIS_Z, k_HalfPi), Vector(10, 20, 30));
    C3DTransfo self;
    self.Mul(a, b, 8 | 16);
    double const stretch = 5 / std::hypot(4.0 / 2, 3.0 / 4);
    EXPECT_TRUE(Near(Vector(10 + 3 * stretch, 20 + 4 * stretch, 30), Inside::Translation(self), 1e-13));
}

TEST(Product, With_scaling_alone_a_uniform_scale_stretches_by_itself)
{
    C3DTransfo a = MakeState(k_MatrixDirty, Moved(3, 4, 12));
    C3DTransfo b(Vector(-3, 3, -3), Rotation(0.3, 0.4, 0.5, E3DROTORDER_XYZ), Vector(0, 0, 1));
    C3DTransfo self;
    self.Mul(a, b, 8 | 16);
    EXPECT_TRUE(Near(Vector(9, 12, 37), Inside::Translation(self), 1e-13));
}

TEST(Product, With_scaling_alone_a_vanishing_length_is_not_scaled)
{
    C3DTransfo a = MakeState(k_MatrixDirty, Moved(0, 0, 0));
    C3DTransfo b = Component(OtherPlain());
    C3DTransfo self;
    self.Mul(a, b, 8 | 16);
    EXPECT_TRUE(Near(OtherPlain().translation, Inside::Translation(self), 0));

    // Here the squares underflow, so that the length is unknown.
    C3DTransfo small = MakeState(k_MatrixDirty, Moved(1e-170, 0, 0));
    Inside::Translation(b).Set(0, 0, 0);
    self.Mul(small, b, 8 | 16);
    EXPECT_TRUE(Near(Vector(1e-170, 0, 0), Inside::Translation(self), 0));
}

TEST(Product, With_scaling_alone_an_infinite_scale_does_not_scale)
{
    C3DTransfo a = MakeState(k_MatrixDirty, Moved(1, 2, 3));
    C3DTransfo b = MakeState(k_MatrixDirty, OtherPlain());
    Inside::Scaling(b).Set(k_Infinity, 1e300, -k_Infinity);
    C3DTransfo self;
    self.Mul(a, b, 8 | 16);
    EXPECT_TRUE(Near(Vector(-6, 7, 3.125), Inside::Translation(self), 0));
}

TEST(Product, With_all_inheritance_the_matrix_of_the_parent_is_taken_as_it_stands)
{
    C3DTransfo a = Component();
    C3DTransfo b = MakeState(0, OtherPlain());
    // Not divided by the last element, and not combined anew.
    Inside::Matrix(b).Set(3, 3, 2.0);
    Inside::Matrix(b).Set(3, 1, 100.0);
    C3DTransfo self;
    self.Mul(a, b, 8 | 48);
    EXPECT_TRUE(Near(PointThrough(Plain().translation, Inside::Matrix(b)), Inside::Translation(self)));
    EXPECT_EQ(100, Inside::Matrix(b).Get(3, 1));
}

TEST(Product, With_all_inheritance_a_zero_coordinate_does_not_meet_an_infinite_row)
{
    C3DTransfo a = MakeState(k_MatrixDirty, Moved(0, 2, 0));
    C3DTransfo b = MakeState(k_MatrixDirty, Moved(1, 1, 1));
    Inside::Scaling(b).Set(k_Infinity, 3, k_Infinity);
    Inside::Rotation(b).SetIdentity();
    C3DTransfo self;
    self.Mul(a, b, 8 | 48);
    Vector const t = Inside::Translation(self);
    EXPECT_EQ(7, t.Y);
}

TEST(Product, A_partial_mask_calls_the_rest_of_a_dirty_target_clean)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    C3DTransfo self = MakeState(k_ComponentsDirty | k_QNScaling, Sheared());
    Inside::Scaling(self).Set(70, 80, 90);
    self.Mul(a, b, 8 | 48);
    EXPECT_EQ(k_MatrixDirty | k_QNScaling, Inside::Flags(self));
    EXPECT_TRUE(Near(Vector(70, 80, 90), Inside::Scaling(self), 0));
    EXPECT_NE(nullptr, Inside::ScalingOrientation(self));
}

TEST(Product, By_component_multiplies_the_scaling_orientations)
{
    C3DTransfo a = Component(Sheared());
    C3DTransfo b = Component(OtherSheared());
    C3DTransfo self;
    self.Mul(a, b, k_All);
    RotMatrix expected;
    expected.Mul(MatrixOf(*Sheared().orientation), MatrixOf(*OtherSheared().orientation));
    ASSERT_NE(nullptr, Inside::ScalingOrientation(self));
    EXPECT_LE(Distance(*Inside::ScalingOrientation(self), Rotation(expected)), 1e-14);
}

TEST(Product, By_component_deletes_scaling_orientations_that_cancel)
{
    Values inverse = OtherSheared();
    inverse.orientation = *Sheared().orientation;
    inverse.orientation->Invert();
    C3DTransfo a = Component(Sheared());
    C3DTransfo b = Component(inverse);
    C3DTransfo self = Component(OtherSheared());
    self.Mul(a, b, k_All);
    EXPECT_EQ(nullptr, Inside::ScalingOrientation(self));
}

TEST(Product, Shear_in_a_matrix_reaches_the_components_as_a_scaling_orientation)
{
    C3DTransfo a = MakeState(k_ComponentsDirty, Sheared());
    C3DTransfo b = Component(OtherPlain());
    C3DTransfo self;
    self.Mul(a, b, k_All);
    ASSERT_NE(nullptr, Inside::ScalingOrientation(self));
    EXPECT_LE(Distance(*Inside::ScalingOrientation(self), *Inside::ScalingOrientation(a)), 1e-14);
}

TEST(Product, The_flags_of_the_operands_do_not_choose_the_mode)
{
    for (unsigned const flags : {0U, k_QNScaling})
    {
        C3DTransfo a = MakeState(k_MatrixDirty | flags);
        C3DTransfo b = MakeState(k_MatrixDirty | flags, OtherPlain());
        C3DTransfo byComponent;
        EXPECT_EQ(k_MatrixDirty | k_QNScaling, Inside::Flags(byComponent.Mul(a, b, k_All)));
        C3DTransfo byMatrix = MatrixReceiver();
        EXPECT_EQ(k_ComponentsDirty, Inside::Flags(byMatrix.Mul(a, b, k_All)));
    }
}

// --- In place --------------------------------------------------------------------------------------------------------

TEST(Product, Into_the_parent_with_rotation_alone_doubles_the_turned_translation)
{
    C3DTransfo a = MakeState(k_MatrixDirty, Moved(1, 2, 3));
    C3DTransfo b(Vector(1, 1, 1), Rotation(E3D_AXIS_Z, k_HalfPi), Vector(10, 20, 30));
    b.Mul(a, b, 8 | 32);
    EXPECT_TRUE(Near(Vector(-4, 2, 6), Inside::Translation(b), 1e-14));
}

TEST(Product, Into_the_parent_with_scaling_alone_doubles_the_stretched_translation)
{
    C3DTransfo a = MakeState(k_MatrixDirty, Moved(1, 2, 3));
    C3DTransfo b(Vector(3, 3, 3), Rotation(E3D_AXIS_Z, k_HalfPi), Vector(10, 20, 30));
    b.Mul(a, b, 8 | 16);
    EXPECT_TRUE(Near(Vector(6, 12, 18), Inside::Translation(b), 1e-13));
}

TEST(Product, Into_the_parent_with_both_or_no_inheritance_is_right)
{
    for (unsigned char const mask : std::initializer_list<unsigned char>{63, 15})
    {
        C3DTransfo a = Component();
        C3DTransfo b = Component(OtherSheared());
        C3DTransfo copyOfB(b);
        // Into an object of the same order of rotation, which stays.
        C3DTransfo expected = MakeState(k_MatrixDirty | k_QNScaling | k_Identity, IdentityValues(E3DROTORDER_XZY));
        expected.Mul(a, copyOfB, mask);
        b.Mul(a, b, mask);
        EXPECT_TRUE(ComponentsAgree(Snapshot(b), Snapshot(expected)));
    }
}

TEST(Product, Into_the_child_is_right_for_every_inheritance)
{
    for (unsigned char const mask : std::initializer_list<unsigned char>{63, 15, 31, 47})
    {
        C3DTransfo a = Component();
        C3DTransfo copyOfA(a);
        C3DTransfo b = Component(OtherSheared());
        // Into an object of the same order of rotation, which stays.
        C3DTransfo expected = MakeState(k_MatrixDirty | k_QNScaling | k_Identity);
        expected.Mul(copyOfA, b, mask);
        a.Mul(a, b, mask);
        EXPECT_TRUE(Agree(a, expected));
    }
}

TEST(Product, By_matrix_squares_a_transformation_in_place)
{
    C3DTransfo self = MakeState(k_MatrixDirty, Sheared());
    Matrix const m = MatrixOf(Sheared());
    self.Mul(self, self, k_All);
    EXPECT_TRUE(FreshFormsAre(self, ProductOf(m, m)));
}

// --- By matrix -------------------------------------------------------------------------------------------------------

TEST(Product, By_matrix_ignores_the_mask)
{
    for (unsigned mask = 0; mask < 64; ++mask)
    {
        C3DTransfo a = Component();
        C3DTransfo b = Component(OtherPlain());
        C3DTransfo self = MatrixReceiver();
        self.Mul(a, b, static_cast<unsigned char>(mask));
        EXPECT_TRUE(FreshFormsAre(self, ProductOf(MatrixOf(Plain()), MatrixOf(OtherPlain()))));
    }
}

TEST(Product, By_matrix_makes_the_matrix_the_truth)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    for (unsigned const flags : {k_MatrixDirty, k_ComponentsDirty, 0U, k_MatrixDirty | k_Identity | k_PreserveOrder})
    {
        C3DTransfo self = MakeState(flags);
        self.Mul(a, b, k_All);
        EXPECT_EQ(k_ComponentsDirty | (flags & k_PreserveOrder), Inside::Flags(self));
    }
}

TEST(Product, By_matrix_cancels_the_sign_bits_of_both)
{
    struct
    {
        Vector a;
        Vector b;
        unsigned bits;
    } const rows[] = {{Vector(1, 1, 1), Vector(1, 1, 1), 0},     {Vector(-1, 1, 1), Vector(1, 2, 1), 2},
                      {Vector(-1, 1, 1), Vector(-1, 1, 3), 0},   {Vector(-1, 1, 1), Vector(1, -2, 1), 6},
                      {Vector(1, 1, -4), Vector(-2, -1, 1), 14}, {Vector(-1, -1, -1), Vector(1, 1, -1), 6}};
    for (auto const & row : rows)
    {
        C3DTransfo a(row.a, Rotation(), Vector(1, 2, 3));
        C3DTransfo b(row.b, Rotation(), Vector(1, 2, 3));
        C3DTransfo self = MatrixReceiver();
        self.Mul(a, b, k_All);
        EXPECT_EQ(row.bits, Inside::Matrix(self).GetSclSignBits());
        Vector scaling;
        self.GetScaling(scaling);
        EXPECT_TRUE(Near(Vector().MulComp(row.a, row.b), scaling, 0));
    }
}

TEST(Product, By_matrix_repairs_sign_bits_that_contradict_the_determinant)
{
    // The matrix of a is mirrored and does not say so.
    C3DTransfo a = MakeState(k_ComponentsDirty, OtherPlain());
    Inside::Matrix(a) = MakeMatrix({-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, 0);
    C3DTransfo b(Vector(1, -1, 1), Rotation(), Vector(0, 0, 0));
    C3DTransfo self = MatrixReceiver();
    self.Mul(a, b, k_All);
    EXPECT_EQ(4U ^ 14U, Inside::Matrix(self).GetSclSignBits());
}

TEST(Product, By_matrix_records_the_order_of_rotation_of_the_target)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    Values values = Plain();
    values.rotation = Rotation(0.1, 0.2, 0.3, E3DROTORDER_ZYX);
    C3DTransfo fromComponents = MakeState(k_MatrixDirty, values);
    fromComponents.Mul(a, b, k_All);
    EXPECT_EQ(E3DROTORDER_ZYX, fromComponents.GetXYZRotOrder());
    Rotation rotation;
    fromComponents.GetRotation(rotation);
    EXPECT_EQ(E3DROTORDER_ZYX, rotation.GetXYZRotOrder());

    C3DTransfo fromMatrix = MakeState(k_ComponentsDirty, values);
    fromMatrix.Mul(a, b, k_All);
    EXPECT_EQ(E3DROTORDER_ZYX, fromMatrix.GetXYZRotOrder());
}

TEST(Product, By_matrix_deletes_the_scaling_orientation_only_where_there_is_no_shear)
{
    C3DTransfo scale(Vector(2, 3, 4), Rotation(), Vector(0, 0, 0));
    C3DTransfo turn(Vector(1, 1, 1), Rotation(0.3, 0.4, 0.5, E3DROTORDER_XYZ), Vector(0, 0, 0));
    C3DTransfo self = MakeState(k_MatrixDirty, Sheared());
    Rotation const * const orientation = Inside::ScalingOrientation(self);
    self.Mul(turn, scale, k_All);
    EXPECT_EQ(orientation, Inside::ScalingOrientation(self));
    EXPECT_TRUE(self.HasShearing());
    self.Mul(scale, turn, k_All);
    EXPECT_EQ(nullptr, Inside::ScalingOrientation(self));
    EXPECT_FALSE(self.HasShearing());
}

TEST(Product, By_matrix_tells_shear_at_a_dot_product_above_the_limit)
{
    C3DTransfo identity(Vector(1, 1, 1), Rotation(), Vector(0, 0, 0));
    for (int i = 1; i < 3; ++i)
    {
        for (double const dot : {1e-6, 1.0000001e-6, -1.0000001e-6})
        {
            C3DTransfo a = MakeState(k_ComponentsDirty);
            Inside::Matrix(a).SetIdentity();
            Inside::Matrix(a).Set(i, i - 1, dot);
            C3DTransfo self = MakeState(k_MatrixDirty, Sheared());
            self.Mul(a, identity, k_All);
            EXPECT_EQ(std::abs(dot) > 1e-6, Inside::ScalingOrientation(self) != nullptr) << dot;
        }
    }
}

TEST(Product, By_matrix_multiplies_all_sixteen_elements)
{
    C3DTransfo a = MakeState(k_ComponentsDirty);
    Inside::Matrix(a) = MakeMatrix({2, 0, 0, 0.5, 0, 1, 0, 0, 0, 0, 1, 0, 5, 0, 0, 2}, 0);
    C3DTransfo b = MakeState(k_MatrixDirty, OtherPlain());
    C3DTransfo self = MatrixReceiver();
    self.Mul(a, b, k_All);
    EXPECT_TRUE(FreshFormsAre(self, ProductOf(Inside::Matrix(a), MatrixOf(OtherPlain()))));
}

} // namespace
