#include "transform/edit_by_steps.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using namespace edit_test;

constexpr Space k_Local = E3DTRANSFOSPACE_LOCAL;
constexpr Space k_Parent = E3DTRANSFOSPACE_PARENT;
constexpr Space k_Reference = E3DTRANSFOSPACE_REFERENCE;
constexpr auto k_BeyondSpaces = static_cast<Space>(3);
constexpr auto k_BeforeSpaces = static_cast<Space>(-1);
constexpr Space k_Spaces[] = {k_Local, k_Parent, k_Reference, k_BeyondSpaces, k_BeforeSpaces};
constexpr tagE3DSCLTYPE k_AnyType = E3DSCLTYPE_DEFAULT;

Rotation Turn()
{
    return {-0.4, 0.6, 0.9, E3DROTORDER_YZX};
}

Rotation Reference()
{
    return {0.8, 0.1, -0.3, E3DROTORDER_XYZ};
}

C3DTransfo Component(Values const & values = Plain())
{
    return MakeState(k_MatrixDirty | k_QNScaling, values);
}

Values AtOrigin(Values values)
{
    values.translation = Vector(0, 0, 0);
    return values;
}

/// Runs an edit and its steps over every space, pivot space and pivot, in both modes, on every operand.
template <typename Edit, typename Steps>
void CheckEverywhere(Edit const & edit, Steps const & steps)
{
    C3DTransfo const pivots[] = {MakeState(k_MatrixDirty | k_QNScaling, OtherPlain()),
                                 MakeState(k_ComponentsDirty, OtherSheared()), MakeState(0, Unrotated()), C3DTransfo()};
    for (Operand const & operand : Operands())
    {
        // Bit 0 is the mode, the rest counts spaces, pivot spaces and pivots, of which one is none.
        for (int variant = 0; variant < 2 * 5 * 5 * 5; ++variant)
        {
            C3DTransfo actual(operand.value);
            Inside::SetQNScaling(actual, variant & 1);
            C3DTransfo expected(actual);
            int const pivot = variant / 50;
            C3DTransfo actualPivot(pivots[pivot % 4]);
            C3DTransfo expectedPivot(pivots[pivot % 4]);
            Rotation reference = Reference();
            Place place{k_Spaces[variant / 2 % 5], &reference, k_Spaces[variant / 10 % 5],
                        pivot == 4 ? nullptr : &actualPivot};
            EXPECT_EQ(&actual, &edit(actual, place));
            place.pivot = pivot == 4 ? nullptr : &expectedPivot;
            steps(expected, place);
            ASSERT_TRUE(Agree(actual, expected)) << operand << ", mode " << (variant & 1) << ", space " << place.space
                                                 << ", pivot space " << place.pivotSpace << ", pivot " << pivot;
            EXPECT_TRUE(FreshFormsAre(actualPivot, ValueOf(expectedPivot)));
            EXPECT_TRUE(Agree(reference, Reference()));
        }
    }
}

/// Rotations to add: a plain one, one that is marked as the identity, and one that is it unmarked.
Rotation TurnOfKind(int kind)
{
    return kind == 0 ? Turn() : (kind == 1 ? Rotation() : Rotation(Quat(1, 0, 0, 0)));
}

TEST(Edit, The_spaces_have_their_numbers)
{
    EXPECT_EQ(static_cast<int>(E3DTRANSFOSPACE_LOCAL), 0);
    EXPECT_EQ(static_cast<int>(E3DTRANSFOSPACE_PARENT), 1);
    EXPECT_EQ(static_cast<int>(E3DTRANSFOSPACE_REFERENCE), 2);
    EXPECT_EQ(static_cast<int>(E3DSCLTYPE_DEFAULT), 0);
}

// --- Against the steps -----------------------------------------------------------------------------------------------

TEST(Edit, AddTranslation_follows_the_steps_everywhere)
{
    for (Vector const & t : {Vector(1, -2, 3), Vector(0, 0, 0)})
    {
        CheckEverywhere([&](C3DTransfo & self, Place const & place) -> C3DTransfo &
                        { return self.AddTranslation(t, place.space, place.reference); },
                        [&](C3DTransfo & self, Place const & place)
                        { AddTranslationBySteps(self, t, place.space, place.reference); });
    }
}

TEST(Edit, AddRotationAboutPivotXfo_follows_the_steps_everywhere)
{
    for (int variant = 0; variant < 6; ++variant)
    {
        bool const updateEuler = variant % 2 != 0;
        CheckEverywhere(
            [&](C3DTransfo & self, Place const & place) -> C3DTransfo &
            {
                Rotation r = TurnOfKind(variant / 2);
                return self.AddRotationAboutPivotXfo(r, place.space, place.reference, place.pivotSpace, place.pivot,
                                                     updateEuler);
            },
            [&](C3DTransfo & self, Place const & place)
            { AddRotationBySteps(self, TurnOfKind(variant / 2), place, updateEuler); });
    }
}

TEST(Edit, AddScalingAboutPivotXfo_follows_the_steps_everywhere)
{
    for (Vector const & s : {Vector(2, 0.5, 3), Vector(-1, 2, 1), Vector(1, 1, 1)})
    {
        CheckEverywhere(
            [&](C3DTransfo & self, Place const & place) -> C3DTransfo & {
                return self.AddScalingAboutPivotXfo(s, place.space, place.reference, place.pivotSpace, place.pivot,
                                                    k_AnyType);
            },
            [&](C3DTransfo & self, Place const & place) { AddScalingBySteps(self, s, place); });
    }
}

TEST(Edit, AddScalingOrientation_follows_the_steps_everywhere)
{
    Vector const point(1, 2, 3);
    for (int variant = 0; variant < 6; ++variant)
    {
        bool const updateEuler = variant % 2 != 0;
        CheckEverywhere(
            [&](C3DTransfo & self, Place const & place) -> C3DTransfo &
            {
                Rotation r = TurnOfKind(variant / 2);
                return self.AddScalingOrientation(r, place.space, place.reference, place.pivotSpace,
                                                  place.pivot != nullptr ? &point : nullptr, updateEuler);
            },
            [&](C3DTransfo & self, Place const & place)
            { AddScalingOrientationBySteps(self, TurnOfKind(variant / 2), place, updateEuler); });
    }
}

// --- The wrappers ----------------------------------------------------------------------------------------------------

TEST(Edit, A_pivot_point_stands_for_a_transformation_there)
{
    for (Vector const & point : {Vector(4, -5, 6), Vector(0, 0, 0)})
    {
        for (int variant = 0; variant < 50; ++variant)
        {
            Space const space = k_Spaces[variant / 2 % 5];
            Space const pivotSpace = k_Spaces[variant / 10];
            C3DTransfo pivot;
            pivot.SetTranslation(point);
            Rotation r = Turn();
            Rotation reference = Reference();
            C3DTransfo const start = MakeState(k_MatrixDirty | (variant % 2 != 0 ? k_QNScaling : 0U), Sheared());
            C3DTransfo actual(start);
            C3DTransfo expected(start);
            EXPECT_EQ(&actual, &actual.AddRotation(r, space, &reference, pivotSpace, &point, false));
            expected.AddRotationAboutPivotXfo(r, space, &reference, pivotSpace, &pivot, false);
            EXPECT_TRUE(Agree(actual, expected)) << variant;
            Vector const s(2, 3, 4);
            EXPECT_EQ(&actual, &actual.AddScaling(s, space, &reference, pivotSpace, &point, k_AnyType));
            expected.AddScalingAboutPivotXfo(s, space, &reference, pivotSpace, &pivot, k_AnyType);
            EXPECT_TRUE(Agree(actual, expected)) << variant;
        }
    }
}

TEST(Edit, AddRotation_hands_on_the_wish_for_euler_angles)
{
    for (bool const updateEuler : {false, true})
    {
        C3DTransfo self = Component();
        Rotation r = Turn();
        self.AddRotation(r, k_Parent, nullptr, k_Local, nullptr, updateEuler);
        EXPECT_EQ(updateEuler ? E3DROTREPTYPE_XYZANGLES : E3DROTREPTYPE_QUAT,
                  RotationInside(Inside::Rotation(self)).GetOrigRep());
    }
}

TEST(Edit, A_given_pivot_without_a_pointer_acts_as_none)
{
    for (unsigned const mode : {0U, k_QNScaling})
    {
        for (Space const space : {k_Local, k_Parent, k_Reference})
        {
            Rotation r = Turn();
            Rotation reference = Reference();
            C3DTransfo actual = MakeState(k_MatrixDirty | mode);
            C3DTransfo expected(actual);
            actual.AddScaling(Vector(2, 3, 4), space, &reference, k_Reference, nullptr, k_AnyType);
            expected.AddScaling(Vector(2, 3, 4), space, &reference, k_Local, nullptr, k_AnyType);
            EXPECT_TRUE(Agree(actual, expected));
            actual.AddRotation(r, space, &reference, k_Reference, nullptr, false);
            expected.AddRotation(r, space, &reference, k_Local, nullptr, false);
            EXPECT_TRUE(Agree(actual, expected));
        }
    }
}

TEST(Edit, Without_a_pivot_space_the_pivot_is_not_read)
{
    for (unsigned const mode : {0U, k_QNScaling})
    {
        for (Space const pivotSpace : {k_Local, k_Parent, k_BeyondSpaces})
        {
            C3DTransfo pivot = MakeState(k_ComponentsDirty, OtherSheared());
            Snapshot const before(pivot);
            Rotation r = Turn();
            C3DTransfo self = MakeState(k_MatrixDirty | mode);
            self.AddRotationAboutPivotXfo(r, k_Local, nullptr, pivotSpace, &pivot, false);
            self.AddScalingAboutPivotXfo(Vector(2, 3, 4), k_Local, nullptr, pivotSpace, &pivot, k_AnyType);
            EXPECT_EQ(before.flags, Inside::Flags(pivot));
        }
    }
}

TEST(Edit, A_reference_that_the_space_does_not_read_may_be_null)
{
    for (unsigned const mode : {0U, k_QNScaling})
    {
        for (Space const space : {k_Local, k_Parent})
        {
            C3DTransfo pivot = MakeState(k_MatrixDirty, OtherPlain());
            Rotation r = Turn();
            Rotation reference = Reference();
            C3DTransfo without = MakeState(k_MatrixDirty | mode, Sheared());
            C3DTransfo with(without);
            for (Rotation * const given : {static_cast<Rotation *>(nullptr), &reference})
            {
                C3DTransfo & self = given != nullptr ? with : without;
                self.AddTranslation(Vector(1, 2, 3), space, given);
                self.AddRotationAboutPivotXfo(r, space, given, k_Reference, &pivot, true);
                self.AddScalingAboutPivotXfo(Vector(2, 3, 4), space, given, k_Reference, &pivot, k_AnyType);
                self.AddScalingOrientation(r, space, given, k_Parent, nullptr, true);
            }
            EXPECT_TRUE(Agree(without, with));
        }
    }
}

TEST(Edit, A_reference_space_without_a_reference_counts_as_no_rotation)
{
    for (unsigned const mode : {0U, k_QNScaling})
    {
        C3DTransfo pivot = MakeState(k_MatrixDirty, OtherPlain());
        Rotation r = Turn();
        Rotation identity;
        C3DTransfo without = MakeState(k_MatrixDirty | mode);
        C3DTransfo with(without);
        for (Rotation * const given : {static_cast<Rotation *>(nullptr), &identity})
        {
            C3DTransfo & self = given != nullptr ? with : without;
            self.AddTranslation(Vector(1, 2, 3), k_Reference, given);
            self.AddRotationAboutPivotXfo(r, k_Reference, given, k_Reference, &pivot, true);
            self.AddScalingAboutPivotXfo(Vector(2, 3, 4), k_Reference, given, k_Reference, &pivot, k_AnyType);
            self.AddScalingOrientation(r, k_Reference, given, k_Local, nullptr, true);
        }
        EXPECT_TRUE(Agree(without, with));
    }
}

TEST(Edit, The_rotation_may_be_its_own_reference)
{
    for (unsigned const mode : {0U, k_QNScaling})
    {
        Rotation r = Turn();
        Rotation reference = Turn();
        C3DTransfo one = MakeState(k_MatrixDirty | mode);
        C3DTransfo two(one);
        one.AddRotation(r, k_Reference, &r, k_Parent, nullptr, true);
        Rotation again = Turn();
        two.AddRotation(again, k_Reference, &reference, k_Parent, nullptr, true);
        EXPECT_TRUE(Agree(one, two));
    }
}

// --- The pivot as the object itself ----------------------------------------------------------------------------------

TEST(Edit, Rotating_about_itself_keeps_the_translation)
{
    for (unsigned const mode : {0U, k_QNScaling})
    {
        for (unsigned const freshness : k_Freshness)
        {
            for (Space const space : {k_Local, k_Parent, k_Reference})
            {
                Rotation r = Turn();
                Rotation reference = Reference();
                C3DTransfo about = MakeState(freshness | mode);
                C3DTransfo without(about);
                about.AddRotationAboutPivotXfo(r, space, &reference, k_Reference, &about, false);
                without.AddRotationAboutPivotXfo(r, space, &reference, k_Local, nullptr, false);
                EXPECT_EQ(Inside::Flags(without), Inside::Flags(about));
                EXPECT_TRUE(FreshFormsAre(about, ValueOf(without), 1e-13)) << space << ' ' << freshness;
            }
        }
    }
}

TEST(Edit, Scaling_components_about_itself_keeps_the_translation)
{
    for (unsigned const freshness : k_Freshness)
    {
        for (Space const space : {k_Local, k_Parent, k_Reference})
        {
            Rotation reference = Reference();
            C3DTransfo about = MakeState(freshness | k_QNScaling);
            C3DTransfo without(about);
            about.AddScalingAboutPivotXfo(Vector(2, 3, 4), space, &reference, k_Reference, &about, k_AnyType);
            without.AddScalingAboutPivotXfo(Vector(2, 3, 4), space, &reference, k_Local, nullptr, k_AnyType);
            EXPECT_EQ(Inside::Flags(without), Inside::Flags(about));
            EXPECT_TRUE(FreshFormsAre(about, ValueOf(without), 1e-13)) << space << ' ' << freshness;
        }
    }
}

TEST(Edit, Scaling_a_matrix_about_itself_reads_the_pivot_after_the_scale)
{
    for (unsigned const freshness : k_Freshness)
    {
        for (Space const space : {k_Local, k_Parent, k_Reference})
        {
            Rotation reference = Reference();
            C3DTransfo about = MakeState(freshness);
            C3DTransfo expected(about);
            about.AddScalingAboutPivotXfo(Vector(2, 3, 4), space, &reference, k_Reference, &about, k_AnyType);
            AddScalingBySteps(expected, Vector(2, 3, 4), Place{space, &reference, k_Reference, &expected});
            EXPECT_TRUE(Agree(about, expected));
        }
    }
}

// --- Translation -----------------------------------------------------------------------------------------------------

TEST(Edit, AddTranslation_in_the_parent_space_leaves_what_is_clean_clean_and_equal)
{
    for (unsigned const mode : {0U, k_QNScaling})
    {
        C3DTransfo self = MakeState(mode, Sheared());
        self.AddTranslation(Vector(10, 20, 30), k_Parent, nullptr);
        Values expected = Sheared();
        expected.translation = Vector(11, 18, 33);
        EXPECT_EQ(mode, Inside::Flags(self));
        EXPECT_TRUE(FreshFormsAre(self, MatrixOf(expected)));
    }
}

TEST(Edit, AddTranslation_in_the_local_space_ignores_the_scale)
{
    for (unsigned const freshness : k_Freshness)
    {
        Values values = OtherPlain();
        values.rotation = Rotation(E3D_AXIS_Z, k_HalfPi);
        C3DTransfo self = MakeState(freshness, values);
        self.AddTranslation(Vector(1, 0, 0), k_Local, nullptr);
        Vector translation;
        self.GetTranslation(translation);
        EXPECT_TRUE(Near(Vector(-7, 6, 0.125), translation, 1e-14));
        // The matrix has been asked for.
        EXPECT_EQ(freshness & ~k_MatrixDirty, Inside::Flags(self));
        EXPECT_TRUE(FreshFormsAre(self, ValueOf(self)));
    }
}

TEST(Edit, AddTranslation_in_another_space_does_not_ask_for_the_matrix)
{
    Rotation reference = Reference();
    for (Space const space : {k_Parent, k_Reference, k_BeyondSpaces})
    {
        C3DTransfo self = Component();
        self.AddTranslation(Vector(1, 2, 3), space, &reference);
        EXPECT_EQ(k_MatrixDirty | k_QNScaling, Inside::Flags(self));
        C3DTransfo fromMatrix = MakeState(k_ComponentsDirty, Sheared());
        fromMatrix.AddTranslation(Vector(1, 2, 3), space, &reference);
        EXPECT_EQ(k_ComponentsDirty, Inside::Flags(fromMatrix));
    }
}

TEST(Edit, AddTranslation_of_nothing_clears_the_identity_flag)
{
    for (Space const space : {k_Local, k_Parent})
    {
        C3DTransfo self;
        self.AddTranslation(Vector(0, 0, 0), space, nullptr);
        EXPECT_FALSE(self.QuickIsIdentity());
        EXPECT_TRUE(self.IsExactlyIdentity());
    }
}

TEST(Edit, AddTranslation_restores_the_last_element_of_the_matrix)
{
    C3DTransfo self = MakeState(0);
    Inside::Matrix(self).Set(3, 3, 2.0);
    self.AddTranslation(Vector(1, 2, 3), k_Parent, nullptr);
    EXPECT_EQ(1, Inside::Matrix(self).Get(3, 3));
}

// --- Rotation --------------------------------------------------------------------------------------------------------

TEST(Edit, AddRotation_about_the_parents_origin_carries_the_translation_around_it)
{
    Rotation quarter(E3D_AXIS_Z, k_HalfPi);
    for (unsigned const mode : {0U, k_QNScaling})
    {
        C3DTransfo self = MakeState(k_MatrixDirty | mode);
        C3DTransfo inPlace(self);
        self.AddRotation(quarter, k_Parent, nullptr, k_Parent, nullptr, false);
        Vector translation;
        self.GetTranslation(translation);
        EXPECT_TRUE(Near(Vector(2, 1, 3), translation, 1e-14));
        inPlace.AddRotation(quarter, k_Parent, nullptr, k_Local, nullptr, false);
        inPlace.GetTranslation(translation);
        EXPECT_TRUE(Near(Vector(1, -2, 3), translation, 0));
    }
}

TEST(Edit, AddRotation_about_a_point_keeps_the_distance_to_it)
{
    Vector const point(4, -5, 6);
    Rotation r = Turn();
    Rotation reference = Reference();
    for (unsigned const mode : {0U, k_QNScaling})
    {
        for (Space const space : {k_Local, k_Parent, k_Reference})
        {
            // Unscaled, for in a scaled local space a rotation by matrix is none.
            Values values = Plain();
            values.scaling = Vector(1, 1, 1);
            C3DTransfo self = MakeState(k_MatrixDirty | mode, values);
            self.AddRotation(r, space, &reference, k_Reference, &point, false);
            Vector translation;
            self.GetTranslation(translation);
            EXPECT_NEAR(std::sqrt(9.0 + 9 + 9), (Vector().Sub(translation, point)).GetLength(), 1e-13);
            EXPECT_GT((Vector().Sub(translation, Plain().translation)).GetLength(), 0.1);
        }
    }
}

TEST(Edit, AddRotation_in_the_parent_space_about_a_point_is_one_rigid_motion)
{
    Vector const point(4, -5, 6);
    Rotation r = Turn();
    for (unsigned const mode : {0U, k_QNScaling})
    {
        C3DTransfo self = MakeState(k_MatrixDirty | mode, Sheared());
        self.AddRotation(r, k_Parent, nullptr, k_Reference, &point, false);
        Matrix there;
        there.SetTranslation(Vector(-4, 5, -6));
        Matrix back;
        back.SetTranslation(point);
        Matrix const motion = ProductOf(ProductOf(there, Block(MatrixOf(Turn()))), back);
        EXPECT_TRUE(FreshFormsAre(self, ProductOf(MatrixOf(Sheared()), motion)));
    }
}

TEST(Edit, AddRotation_in_the_local_space_acts_before_the_rotation)
{
    Rotation r = Turn();
    C3DTransfo self = Component();
    self.AddRotation(r, k_Local, nullptr, k_Local, nullptr, false);
    RotMatrix expected;
    expected.Mul(MatrixOf(Turn()), MatrixOf(Plain().rotation));
    EXPECT_LE(Distance(Inside::Rotation(self), Rotation(expected)), 1e-14);
    EXPECT_EQ(k_MatrixDirty | k_QNScaling, Inside::Flags(self));
}

TEST(Edit, AddRotation_keeps_the_turns_of_euler_angles_on_wish)
{
    Values values = Plain();
    values.rotation = Rotation(0.1 + 2 * k_Pi, 0.2, 0.3 - 4 * k_Pi, E3DROTORDER_ZXY);
    Rotation reference = Reference();
    for (Space const space : {k_Local, k_Parent, k_Reference})
    {
        Rotation small(0.01, -0.01, 0.01, E3DROTORDER_XYZ);
        C3DTransfo self = Component(values);
        self.AddRotation(small, space, &reference, k_Local, nullptr, true);
        Vector angles;
        self.GetRotation(angles);
        EXPECT_NEAR(0.1 + 2 * k_Pi, angles.X, 0.1) << space;
        EXPECT_NEAR(0.3 - 4 * k_Pi, angles.Z, 0.1) << space;
        EXPECT_EQ(E3DROTORDER_ZXY, self.GetXYZRotOrder());
        C3DTransfo plain = Component(values);
        plain.AddRotation(small, space, &reference, k_Local, nullptr, false);
        plain.GetRotation(angles);
        EXPECT_NEAR(0.1, angles.X, 0.1);
        EXPECT_NEAR(0.3, angles.Z, 0.1);
    }
}

TEST(Edit, AddRotation_by_matrix_has_no_part_in_euler_angles)
{
    C3DTransfo one = MakeState(k_MatrixDirty);
    C3DTransfo two(one);
    Rotation r = Turn();
    one.AddRotation(r, k_Parent, nullptr, k_Local, nullptr, true);
    two.AddRotation(r, k_Parent, nullptr, k_Local, nullptr, false);
    EXPECT_TRUE(SameState(one, two));
    EXPECT_EQ(k_ComponentsDirty, Inside::Flags(one));
}

TEST(Edit, AddRotation_by_matrix_keeps_the_sign_bits_and_order)
{
    Rotation r = Turn();
    for (Space const space : {k_Local, k_Parent})
    {
        C3DTransfo self = MakeState(k_MatrixDirty);
        self.AddRotation(r, space, nullptr, k_Local, nullptr, false);
        EXPECT_EQ(4, Inside::Matrix(self).GetSclSignBits());
        EXPECT_EQ(E3DROTORDER_ZXY, self.GetXYZRotOrder());
    }
}

TEST(Edit, AddRotation_of_the_identity_clears_the_identity_flag)
{
    Rotation identity;
    for (unsigned const mode : {0U, k_QNScaling})
    {
        C3DTransfo self = MakeState(k_MatrixDirty | mode | k_Identity);
        self.AddRotation(identity, k_Local, nullptr, k_Local, nullptr, false);
        EXPECT_EQ(mode != 0 ? k_MatrixDirty | k_QNScaling : k_ComponentsDirty, Inside::Flags(self));
    }
}

// --- Scaling ---------------------------------------------------------------------------------------------------------

TEST(Edit, AddScaling_by_component_gives_one_scale_in_every_space)
{
    Vector const point(4, -5, 6);
    Rotation reference = Reference();
    Vector seen[3];
    for (Space const space : {k_Local, k_Parent, k_Reference})
    {
        C3DTransfo self = Component(OtherPlain());
        self.AddScaling(Vector(2, 3, 4), space, &reference, k_Reference, &point, k_AnyType);
        EXPECT_TRUE(Near(Vector(0.5, 4.5, 16), Inside::Scaling(self), 0));
        EXPECT_TRUE(Agree(Inside::Rotation(self), OtherPlain().rotation));
        EXPECT_EQ(k_MatrixDirty | k_QNScaling, Inside::Flags(self));
        seen[space] = Inside::Translation(self);
    }
    EXPECT_FALSE(Near(seen[0], seen[1], 0.1));
    EXPECT_FALSE(Near(seen[1], seen[2], 0.1));
    EXPECT_FALSE(Near(seen[0], seen[2], 0.1));
}

TEST(Edit, AddScaling_by_component_keeps_the_scale_away_from_zero)
{
    C3DTransfo self = Component();
    self.AddScaling(Vector(0, 1e-13, k_Nan), k_Parent, nullptr, k_Local, nullptr, k_AnyType);
    EXPECT_TRUE(Near(Vector(1e-12, -1e-12, -1e-12), Inside::Scaling(self), 0));
}

TEST(Edit, AddScaling_by_component_about_the_parents_origin_is_not_clamped_in_the_translation)
{
    C3DTransfo self = Component();
    self.AddScaling(Vector(0, 2, -1), k_Parent, nullptr, k_Parent, nullptr, k_AnyType);
    EXPECT_TRUE(Near(Vector(0, -4, -3), Inside::Translation(self), 0));
}

TEST(Edit, AddScaling_by_matrix_about_the_parents_origin)
{
    // The point of the object at the origin stays there.
    Rotation reference = Reference();
    for (Space const space : {k_Local, k_Parent})
    {
        C3DTransfo self = MakeState(k_MatrixDirty, OtherPlain());
        self.AddScaling(Vector(2, 3, 4), space, &reference, k_Parent, nullptr, k_AnyType);
        Vector const origin = LastRow(Inverted(MatrixOf(OtherPlain())));
        Vector image = PointThrough(origin, Inside::Matrix(self));
        if (space == k_Local)
        {
            EXPECT_TRUE(Near(Vector(0, 0, 0), image, 1e-13));
        }
        else
        {
            // There the scaled translation is taken off a second time.
            EXPECT_TRUE(Near(OtherPlain().translation, LastRow(Inside::Matrix(self)), 1e-13));
        }
        EXPECT_EQ(k_ComponentsDirty, Inside::Flags(self));
    }
}

TEST(Edit, AddScaling_by_matrix_in_the_parent_and_reference_spaces_scales_the_translation_without_a_pivot)
{
    Rotation reference = Reference();
    C3DTransfo inParent = MakeState(k_MatrixDirty, OtherPlain());
    inParent.AddScaling(Vector(2, 3, 4), k_Parent, nullptr, k_Local, nullptr, k_AnyType);
    EXPECT_TRUE(Near(Vector(-14, 15, 0.5), LastRow(Inside::Matrix(inParent)), 0));
    C3DTransfo inReference = MakeState(k_MatrixDirty, OtherPlain());
    inReference.AddScaling(Vector(2, 3, 4), k_Reference, &reference, k_Local, nullptr, k_AnyType);
    EXPECT_TRUE(
        Near(RowTimes(Vector(-14, 15, 0.5), MatrixOf(Reference())), LastRow(Inside::Matrix(inReference)), 1e-14));
    C3DTransfo inLocal = MakeState(k_MatrixDirty, OtherPlain());
    inLocal.AddScaling(Vector(2, 3, 4), k_Local, nullptr, k_Local, nullptr, k_AnyType);
    EXPECT_TRUE(Near(OtherPlain().translation, LastRow(Inside::Matrix(inLocal)), 0));
}

TEST(Edit, AddScaling_by_matrix_for_a_reference_is_not_taken_back_in_front)
{
    Rotation reference = Reference();
    C3DTransfo self = MakeState(k_MatrixDirty, AtOrigin(OtherPlain()));
    self.AddScaling(Vector(1, 1, 1), k_Reference, &reference, k_Local, nullptr, k_AnyType);
    EXPECT_TRUE(FreshFormsAre(self, ProductOf(MatrixOf(AtOrigin(OtherPlain())), Block(MatrixOf(Reference())))));
}

TEST(Edit, AddScaling_by_matrix_clamps_small_factors_as_a_matrix_does)
{
    C3DTransfo self = MakeState(k_MatrixDirty, IdentityValues());
    self.AddScaling(Vector(0, -1e-13, 2), k_Local, nullptr, k_Local, nullptr, k_AnyType);
    EXPECT_EQ(1e-6, Inside::Matrix(self).Get(0, 0));
    EXPECT_EQ(-1e-12, Inside::Matrix(self).Get(1, 1));
    EXPECT_EQ(4, Inside::Matrix(self).GetSclSignBits());
}

TEST(Edit, AddScaling_by_matrix_toggles_the_sign_bits)
{
    struct
    {
        Vector s;
        unsigned bits;
    } const rows[] = {{Vector(2, 3, 4), 4}, {Vector(-2, 3, 4), 6}, {Vector(2, -3, 4), 0}, {Vector(-1, -1, -1), 10}};
    for (auto const & row : rows)
    {
        for (Space const space : {k_Local, k_Parent})
        {
            C3DTransfo self = MakeState(k_MatrixDirty);
            self.AddScaling(row.s, space, nullptr, k_Local, nullptr, k_AnyType);
            EXPECT_EQ(row.bits, Inside::Matrix(self).GetSclSignBits());
        }
    }
}

TEST(Edit, AddScaling_by_matrix_repairs_sign_bits)
{
    // The matrix is mirrored and does not say so.
    C3DTransfo self = MakeState(k_ComponentsDirty);
    Inside::Matrix(self) = MakeMatrix({-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1}, 0);
    self.AddScaling(Vector(1, -1, 1), k_Local, nullptr, k_Local, nullptr, k_AnyType);
    EXPECT_EQ(4U ^ 14U, Inside::Matrix(self).GetSclSignBits());
}

TEST(Edit, AddScaling_of_one_clears_the_identity_flag)
{
    for (unsigned const mode : {0U, k_QNScaling})
    {
        C3DTransfo self = MakeState(k_MatrixDirty | mode | k_Identity);
        self.AddScaling(Vector(1, 1, 1), k_Local, nullptr, k_Local, nullptr, k_AnyType);
        EXPECT_EQ(mode != 0 ? k_MatrixDirty | k_QNScaling : k_ComponentsDirty, Inside::Flags(self));
    }
}

TEST(Edit, AddScaling_does_not_read_its_type)
{
    for (unsigned const mode : {0U, k_QNScaling})
    {
        C3DTransfo one = MakeState(k_MatrixDirty | mode);
        C3DTransfo two(one);
        Vector const point(4, -5, 6);
        one.AddScaling(Vector(2, 3, 4), k_Local, nullptr, k_Reference, &point, k_AnyType);
        two.AddScaling(Vector(2, 3, 4), k_Local, nullptr, k_Reference, &point, static_cast<tagE3DSCLTYPE>(5));
        EXPECT_TRUE(SameState(one, two));
    }
}

TEST(Edit, AddScaling_by_matrix_writes_the_translation_where_it_is_clean)
{
    C3DTransfo self = MakeState(0, OtherPlain());
    Vector const point(4, -5, 6);
    self.AddScaling(Vector(2, 3, 4), k_Local, nullptr, k_Reference, &point, k_AnyType);
    EXPECT_TRUE(Near(Inside::Translation(self), LastRow(Inside::Matrix(self)), 0));
    C3DTransfo rotated = MakeState(0, OtherPlain());
    Rotation r = Turn();
    rotated.AddRotation(r, k_Local, nullptr, k_Reference, &point, false);
    EXPECT_TRUE(Near(Inside::Translation(rotated), LastRow(Inside::Matrix(rotated)), 0));
}

// --- Scaling orientation ---------------------------------------------------------------------------------------------

TEST(Edit, AddScalingOrientation_that_cancels_the_present_one_deletes_it)
{
    Rotation inverse = *Sheared().orientation;
    inverse.Invert();
    for (unsigned const mode : {0U, k_QNScaling})
    {
        for (Space const space : {k_Local, k_Parent})
        {
            C3DTransfo self = MakeState(k_MatrixDirty | mode, Sheared());
            self.AddScalingOrientation(inverse, space, nullptr, k_Local, nullptr, false);
            EXPECT_EQ(nullptr, Inside::ScalingOrientation(self));
            EXPECT_EQ(k_MatrixDirty | mode, Inside::Flags(self));
        }
    }
}

TEST(Edit, AddScalingOrientation_makes_one_where_there_is_none)
{
    for (unsigned const flags : {k_MatrixDirty, k_ComponentsDirty, 0U, k_MatrixDirty | k_QNScaling | k_Identity})
    {
        C3DTransfo self = MakeState(flags);
        Rotation r = Turn();
        self.AddScalingOrientation(r, k_Parent, nullptr, k_Local, nullptr, false);
        ASSERT_NE(nullptr, Inside::ScalingOrientation(self));
        EXPECT_LE(Distance(Turn(), *Inside::ScalingOrientation(self)), 1e-14);
        EXPECT_EQ(E3DROTORDER_XYZ, Inside::ScalingOrientation(self)->GetXYZRotOrder());
        EXPECT_EQ(k_MatrixDirty | (flags & k_QNScaling), Inside::Flags(self));
    }
}

TEST(Edit, AddScalingOrientation_of_almost_nothing_makes_none)
{
    for (double const angle : {1e-13, 1e-11})
    {
        C3DTransfo self = Component();
        Rotation r(angle, 0, 0, E3DROTORDER_XYZ);
        self.AddScalingOrientation(r, k_Parent, nullptr, k_Local, nullptr, true);
        EXPECT_EQ(angle > 1e-12, Inside::ScalingOrientation(self) != nullptr);
        EXPECT_FALSE(self.QuickIsIdentity());
    }
}

TEST(Edit, AddScalingOrientation_turns_about_the_axes_of_the_orientation_not_of_the_object)
{
    Rotation r = Turn();
    C3DTransfo self = Component(Sheared());
    self.AddScalingOrientation(r, k_Local, nullptr, k_Parent, nullptr, false);
    RotMatrix expected;
    expected.Mul(MatrixOf(Turn()), MatrixOf(*Sheared().orientation));
    EXPECT_LE(Distance(Rotation(expected), *Inside::ScalingOrientation(self)), 1e-14);
    EXPECT_TRUE(Agree(Inside::Rotation(self), Sheared().rotation));
    EXPECT_TRUE(Near(Sheared().translation, Inside::Translation(self), 0));
}

TEST(Edit, AddScalingOrientation_keeps_the_turns_of_euler_angles_on_wish)
{
    Values values = Plain();
    values.orientation = Rotation(0.1 + 2 * k_Pi, 0.2, 0.3 - 4 * k_Pi, E3DROTORDER_YZX);
    for (Space const space : {k_Local, k_Parent})
    {
        Rotation small(0.01, -0.01, 0.01, E3DROTORDER_XYZ);
        C3DTransfo self = Component(values);
        self.AddScalingOrientation(small, space, nullptr, k_Local, nullptr, true);
        Vector angles;
        self.GetScalingOrientation(angles);
        EXPECT_NEAR(0.1 + 2 * k_Pi, angles.X, 0.1);
        EXPECT_NEAR(0.3 - 4 * k_Pi, angles.Z, 0.1);
    }
}

} // namespace
