#include "transform/composition_by_steps.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace
{

using namespace composition_test;

C3DTransfo Component(Values const & values = Plain())
{
    return MakeState(k_MatrixDirty | k_QNScaling, values);
}

Matrix InverseOf(Matrix const & m)
{
    Matrix inverse;
    inverse.Invert(m);
    return inverse;
}

Matrix SingularMatrix()
{
    return MakeMatrix({1, 0, 0, 0, 2, 0, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1}, 0);
}

// --- Inverse ---------------------------------------------------------------------------------------------------------

TEST(Inverse, Makes_the_inverse_matrix_the_truth_whatever_the_mode)
{
    for (unsigned const mode : {0U, k_QNScaling})
    {
        for (unsigned const sourceFlags : {0U, k_MatrixDirty, k_ComponentsDirty, k_MatrixDirty | k_QNScaling})
        {
            for (unsigned const flags : {0U, k_MatrixDirty, k_ComponentsDirty, k_MatrixDirty | k_PreserveOrder,
                                         k_MatrixDirty | k_Identity, k_Unused})
            {
                C3DTransfo source = MakeState(sourceFlags, Sheared());
                C3DTransfo self = MakeState(flags | mode, OtherPlain());
                EXPECT_EQ(&self, &self.Invert(source));
                EXPECT_EQ(k_ComponentsDirty | mode | (flags & (k_PreserveOrder | k_Unused)), Inside::Flags(self));
                EXPECT_TRUE(FreshFormsAre(self, InverseOf(MatrixOf(Sheared()))));
                EXPECT_EQ(sourceFlags & ~k_MatrixDirty, Inside::Flags(source));
                EXPECT_TRUE(FreshFormsAre(source, MatrixOf(Sheared())));
            }
        }
    }
}

TEST(Inverse, In_place_makes_the_inverse_matrix_the_truth)
{
    for (unsigned const flags : {0U, k_MatrixDirty, k_ComponentsDirty, k_MatrixDirty | k_QNScaling | k_PreserveOrder})
    {
        C3DTransfo self = MakeState(flags, OtherSheared());
        EXPECT_EQ(&self, &self.Invert());
        EXPECT_EQ(k_ComponentsDirty | (flags & ~k_MatrixDirty), Inside::Flags(self));
        EXPECT_TRUE(FreshFormsAre(self, InverseOf(MatrixOf(OtherSheared()))));
        C3DTransfo same = MakeState(flags, OtherSheared());
        EXPECT_TRUE(SameState(self, same.Invert(same)));
    }
}

TEST(Inverse, Of_an_identity_is_the_identity)
{
    for (unsigned const flags : {0U, k_MatrixDirty, k_ComponentsDirty | k_QNScaling, k_MatrixDirty | k_PreserveOrder})
    {
        C3DTransfo identity = MakeState(k_MatrixDirty | k_Identity);
        C3DTransfo self = MakeState(flags, Sheared());
        self.Invert(identity);
        EXPECT_EQ((flags & ~1U) | k_MatrixDirty | k_Identity, Inside::Flags(self));
        EXPECT_TRUE(FreshFormsAre(self, Matrix(), 0));
        EXPECT_EQ(nullptr, Inside::ScalingOrientation(self));
    }
}

TEST(Inverse, Of_an_identity_leaves_an_identity_as_it_is)
{
    C3DTransfo identity = MakeState(k_MatrixDirty | k_Identity);
    C3DTransfo self = MakeState(k_Identity, IdentityValues(E3DROTORDER_ZYX));
    Snapshot const before(self);
    self.Invert(identity);
    EXPECT_TRUE(Untouched(before, self));
    self.Invert();
    EXPECT_TRUE(Untouched(before, self));
}

TEST(Inverse, Of_a_singular_matrix_leaves_the_matrix_of_the_target)
{
    C3DTransfo source = MakeState(k_ComponentsDirty);
    Inside::Matrix(source) = SingularMatrix();
    C3DTransfo self = MakeState(0, OtherPlain());
    self.Invert(source);
    EXPECT_EQ(k_ComponentsDirty, Inside::Flags(self));
    EXPECT_TRUE(SameBits(MatrixOf(OtherPlain()), Inside::Matrix(self)));
    source.Invert();
    EXPECT_TRUE(SameBits(SingularMatrix(), Inside::Matrix(source)));
    EXPECT_EQ(k_ComponentsDirty, Inside::Flags(source));
}

TEST(Inverse, Of_a_singular_matrix_into_a_new_object_is_the_identity)
{
    C3DTransfo source = MakeState(k_ComponentsDirty);
    Inside::Matrix(source) = SingularMatrix();
    C3DTransfo self;
    self.Invert(source);
    EXPECT_EQ(k_ComponentsDirty | k_QNScaling, Inside::Flags(self));
    EXPECT_TRUE(FreshFormsAre(self, Matrix(), 0));
}

TEST(Inverse, Keeps_the_order_of_rotation_of_the_target)
{
    for (unsigned const flags : {0U, k_MatrixDirty, k_ComponentsDirty})
    {
        C3DTransfo source = Component(Plain());
        C3DTransfo self = MakeState(flags, OtherPlain());
        self.Invert(source);
        EXPECT_EQ(E3DROTORDER_XZY, Inside::MatrixRotOrder(self)) << flags;
        Rotation rotation;
        self.GetRotation(rotation);
        EXPECT_EQ(E3DROTORDER_XZY, rotation.GetXYZRotOrder());
    }
}

TEST(Inverse, Records_the_order_of_the_components_over_an_older_one_of_the_matrix)
{
    C3DTransfo source = Component();
    C3DTransfo self = MakeState(0, OtherPlain());
    Inside::MatrixRotOrder(self) = E3DROTORDER_ZYX;
    self.Invert(source);
    EXPECT_EQ(E3DROTORDER_XZY, self.GetXYZRotOrder());
    C3DTransfo inPlace = MakeState(0, OtherPlain());
    Inside::MatrixRotOrder(inPlace) = E3DROTORDER_ZYX;
    EXPECT_EQ(E3DROTORDER_XZY, inPlace.Invert().GetXYZRotOrder());
}

TEST(Inverse, Keeps_the_sign_bits_of_the_target_and_repairs_them)
{
    C3DTransfo mirrored(Vector(1, -1, 1), Rotation(), Vector(0, 0, 0));
    C3DTransfo other = MakeState(0, Plain());
    ASSERT_EQ(4, Inside::Matrix(other).GetSclSignBits());
    C3DTransfo self(Vector(-1, -1, 1), Rotation(), Vector(0, 0, 0));
    self.GetMatrix();
    self.Invert(mirrored);
    EXPECT_EQ(6U ^ 14U, Inside::Matrix(self).GetSclSignBits());
    EXPECT_EQ(4, Inside::Matrix(other.Invert()).GetSclSignBits());
}

TEST(Inverse, Under_an_uneven_scale_behind_a_rotation_finds_shear)
{
    C3DTransfo self(Vector(1, 2, 3), Rotation(0.3, 0.4, 0.5, E3DROTORDER_XYZ), Vector(1, 2, 3));
    EXPECT_FALSE(self.HasShearing());
    self.Invert();
    EXPECT_TRUE(self.HasShearing());
    EXPECT_TRUE(self.IsScalingOrientationExisting());
    self.Invert();
    EXPECT_FALSE(self.HasShearing());
}

// --- Interpolation ---------------------------------------------------------------------------------------------------

TEST(Interpolation, Blends_translation_and_scale_linearly_and_the_rotation_along_its_arc)
{
    Values first = Plain();
    first.rotation = Rotation(E3D_AXIS_Y, 0.25);
    Values second = OtherPlain();
    second.rotation = Rotation(E3D_AXIS_Y, 1.25);
    for (double const t : {0.0, 0.25, 0.5, 1.0, -0.5, 2.0})
    {
        C3DTransfo a = Component(first);
        C3DTransfo b = Component(second);
        C3DTransfo self = Component(WithoutTranslation());
        EXPECT_EQ(&self, &self.Interpolate(a, b, t));
        EXPECT_EQ(k_MatrixDirty | k_QNScaling, Inside::Flags(self));
        for (int i = 0; i < 3; ++i)
        {
            EXPECT_EQ(first.translation.Get(i) * (1 - t) + second.translation.Get(i) * t,
                      Inside::Translation(self).Get(i));
            EXPECT_EQ(first.scaling.Get(i) * (1 - t) + second.scaling.Get(i) * t, Inside::Scaling(self).Get(i));
        }
        EXPECT_LE(Distance(Rotation(E3D_AXIS_Y, 0.25 + t), Inside::Rotation(self)), 1e-14) << t;
        EXPECT_EQ(E3DROTORDER_XZY, self.GetXYZRotOrder());
    }
}

TEST(Interpolation, Is_that_of_the_rotations_whatever_their_forms)
{
    for (Operand & a : Operands())
    {
        for (Operand & b : Operands())
        {
            C3DTransfo first(a.value);
            C3DTransfo second(b.value);
            FreshenComponents(first);
            FreshenComponents(second);
            Rotation ra = Inside::Rotation(first);
            Rotation rb = Inside::Rotation(second);
            Rotation expected = Plain().rotation;
            expected.Interpolate(ra, rb, 0.375);
            C3DTransfo self = Component();
            self.Interpolate(a.value, b.value, 0.375);
            EXPECT_TRUE(Agree(Inside::Rotation(self), expected)) << a << ' ' << b;
            EXPECT_EQ(0, Inside::AreComponentsDirty(a.value));
            EXPECT_EQ(0, Inside::AreComponentsDirty(b.value));
        }
    }
}

TEST(Interpolation, Halfway_between_opposite_scales_stores_zero)
{
    C3DTransfo a(Vector(1, 2, 3), Rotation(), Vector(0, 0, 0));
    C3DTransfo b(Vector(-1, 2, -3), Rotation(), Vector(0, 0, 0));
    C3DTransfo self;
    self.Interpolate(a, b, 0.5);
    EXPECT_TRUE(Near(Vector(0, 2, 0), Inside::Scaling(self), 0));
}

TEST(Interpolation, Keeps_the_scaling_orientation_of_the_target)
{
    C3DTransfo a = Component(OtherSheared());
    C3DTransfo b = Component(OtherSheared());
    C3DTransfo sheared = Component(Sheared());
    sheared.Interpolate(a, b, 0.5);
    ASSERT_NE(nullptr, Inside::ScalingOrientation(sheared));
    EXPECT_LE(Distance(*Inside::ScalingOrientation(sheared), *Sheared().orientation), 1e-15);
    C3DTransfo plain = Component();
    plain.Interpolate(a, b, 0.5);
    EXPECT_EQ(nullptr, Inside::ScalingOrientation(plain));
}

TEST(Interpolation, Reads_the_scaling_orientation_of_a_dirty_target_from_its_matrix)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    C3DTransfo self = MakeState(k_ComponentsDirty | k_QNScaling, OtherSheared());
    C3DTransfo copy(self);
    Inside::Factorize(copy, 63);
    self.Interpolate(a, b, 0.5);
    ASSERT_NE(nullptr, Inside::ScalingOrientation(self));
    EXPECT_TRUE(Agree(*Inside::ScalingOrientation(self), *Inside::ScalingOrientation(copy)));
    EXPECT_EQ(copy.GetXYZRotOrder(), self.GetXYZRotOrder());
}

TEST(Interpolation, Works_on_components_in_both_modes)
{
    C3DTransfo a = Component();
    C3DTransfo b = Component(OtherPlain());
    for (unsigned const flags : {k_MatrixDirty, 0U, k_ComponentsDirty, k_Identity | k_MatrixDirty | k_PreserveOrder})
    {
        C3DTransfo self = MakeState(flags);
        self.Interpolate(a, b, 0.5);
        EXPECT_EQ(k_MatrixDirty | (flags & k_PreserveOrder), Inside::Flags(self));
    }
}

TEST(Interpolation, Of_two_identities_is_the_identity)
{
    C3DTransfo a;
    C3DTransfo b;
    C3DTransfo self = Component(Sheared());
    self.Interpolate(a, b, 0.5);
    EXPECT_EQ(k_MatrixDirty | k_QNScaling | k_Identity, Inside::Flags(self));
    EXPECT_EQ(nullptr, Inside::ScalingOrientation(self));
    EXPECT_TRUE(FreshFormsAre(self, Matrix(), 0));

    C3DTransfo identity = MakeState(k_Identity, IdentityValues(E3DROTORDER_YXZ));
    Snapshot const before(identity);
    identity.Interpolate(a, b, 0.5);
    EXPECT_TRUE(Untouched(before, identity));
}

TEST(Interpolation, Of_one_identity_is_a_blend)
{
    C3DTransfo identity;
    C3DTransfo b = Component(OtherPlain());
    C3DTransfo self;
    self.Interpolate(identity, b, 1);
    EXPECT_TRUE(FreshFormsAre(self, MatrixOf(OtherPlain())));
    self.Interpolate(b, identity, 1);
    EXPECT_TRUE(FreshFormsAre(self, Matrix(), 1e-15));
    EXPECT_EQ(k_MatrixDirty | k_QNScaling, Inside::Flags(self));
}

TEST(Interpolation, Into_an_operand_reads_both_before_it_writes)
{
    for (unsigned const freshness : k_Freshness)
    {
        for (int const which : {0, 1})
        {
            C3DTransfo operands[2] = {MakeState(freshness | k_QNScaling), Component(OtherPlain())};
            C3DTransfo copies[2] = {operands[0], operands[1]};
            C3DTransfo expected(operands[which]);
            expected.Interpolate(copies[0], copies[1], 0.25);
            operands[which].Interpolate(operands[0], operands[1], 0.25);
            EXPECT_TRUE(Agree(operands[which], expected));
        }
        C3DTransfo self = MakeState(freshness | k_QNScaling);
        self.Interpolate(self, self, 0.25);
        EXPECT_TRUE(FreshFormsAre(self, MatrixOf(Plain())));
    }
}

// --- Maps between spaces ---------------------------------------------------------------------------------------------

TEST(Maps_of_transformations, Are_products_and_differences_by_the_whole_mask)
{
    for (Operand const & operand : Operands())
    {
        for (unsigned const mode : {0U, k_QNScaling})
        {
            C3DTransfo from(operand.value);
            C3DTransfo to = Component(OtherSheared());
            C3DTransfo self = MakeState(k_MatrixDirty | mode);
            C3DTransfo expected(self);
            EXPECT_EQ(&self, &self.MapSpaceToWorld(from));
            expected.Mul(expected, from, 63);
            EXPECT_TRUE(SameState(self, expected)) << operand;
            EXPECT_EQ(&self, &self.MapWorldToSpace(to));
            expected.Dif(expected, to, 63, nullptr);
            EXPECT_TRUE(SameState(self, expected)) << operand;
            EXPECT_EQ(&self, &self.MapSpaceToSpace(to, from));
            expected.Mul(expected, to, 63);
            expected.Dif(expected, from, 63, nullptr);
            EXPECT_TRUE(SameState(self, expected)) << operand;
        }
    }
}

TEST(Maps_of_transformations, Between_spaces_keep_the_place_in_the_world)
{
    C3DTransfo from = MakeState(k_MatrixDirty, OtherPlain());
    C3DTransfo to = MakeState(k_MatrixDirty, Sheared());
    C3DTransfo self = MakeState(k_MatrixDirty);
    self.MapSpaceToSpace(from, to);
    EXPECT_TRUE(FreshFormsAre(
        self, ProductOf(ProductOf(MatrixOf(Plain()), MatrixOf(OtherPlain())), InverseOf(MatrixOf(Sheared()))), 1e-12));
}

TEST(Maps_of_transformations, From_a_space_to_itself_change_nothing)
{
    for (unsigned const mode : {0U, k_QNScaling})
    {
        C3DTransfo space = Component(OtherPlain());
        C3DTransfo self = MakeState(k_MatrixDirty | mode);
        self.MapSpaceToSpace(space, space);
        EXPECT_TRUE(FreshFormsAre(self, MatrixOf(Plain()), 1e-13));
    }
}

} // namespace
