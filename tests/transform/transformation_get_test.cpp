/// The getters of a transformation: what each gives, and what it brings up to date.

#include "transform/transformation_states.h"

using namespace transformation_test;

namespace
{

/// The states of a transformation that is not flagged: the components alone fresh, the matrix alone, both.
constexpr unsigned k_Unflagged[3] = {2, 1, 0};
constexpr unsigned k_Flagged[2] = {18, 16};
constexpr unsigned k_Other = k_QNScaling | k_PreserveOrder | k_Unused;

/// The flags after a getter that needs the components: they are fresh, and the matrix is as it was.
unsigned Ready(unsigned flags)
{
    return flags & ~k_ComponentsDirty;
}

Rotation Default()
{
    return {0.9, 0.8, 0.7, E3DROTORDER_XYZ};
}

/// The components, in a fresh copy, as the getters should read them.
Snapshot Prepared(C3DTransfo copy)
{
    if (Inside::AreComponentsDirty(copy) != 0)
    {
        Inside::Factorize(copy, 63);
    }
    return Snapshot(copy);
}

/// Calls `get`, which reads components, in each state and with each kind of values.
template <typename Get>
void InEachState(Get get)
{
    for (Values const & values : {Plain(), Sheared(), OtherPlain(), OtherSheared()})
    {
        for (unsigned const state : {2U, 1U, 0U, 18U, 16U, 17U})
        {
            for (unsigned const others : {0U, k_Other})
            {
                SCOPED_TRACE(testing::Message() << "flags " << (state | others));
                C3DTransfo transfo = MakeState(state | others, values);
                Snapshot expected = Prepared(transfo);
                get(transfo, expected);
                EXPECT_EQ(Inside::Flags(transfo), Ready(state | others));
                EXPECT_TRUE(SameBits(Inside::Scaling(transfo), expected.scaling));
                EXPECT_TRUE(SameBits(Inside::Translation(transfo), expected.translation));
                EXPECT_EQ(Inside::ScalingOrientation(transfo) != nullptr, expected.orientation.has_value());
                EXPECT_TRUE(SameMatrix(Snapshot(transfo), expected));
            }
        }
    }
}

} // namespace

// --- The components --------------------------------------------------------------------------------------------------

TEST(TransformationGet, The_scaling)
{
    InEachState(
        [](C3DTransfo & transfo, Snapshot & expected)
        {
            Vector vector;
            transfo.GetScaling(vector);
            EXPECT_TRUE(SameBits(vector, expected.scaling));
        });
    InEachState(
        [](C3DTransfo & transfo, Snapshot & expected)
        {
            Vector v;
            transfo.GetScaling(v.X, v.Y, v.Z);
            EXPECT_TRUE(SameBits(v, expected.scaling));
        });
}

TEST(TransformationGet, The_scaling_with_an_orientation_that_stays_untouched_where_there_is_none)
{
    InEachState(
        [](C3DTransfo & transfo, Snapshot & expected)
        {
            Vector vector;
            Rotation orientation = Default();
            transfo.GetScaling(vector, orientation);
            EXPECT_TRUE(SameBits(vector, expected.scaling));
            EXPECT_TRUE(SameRotation(orientation, expected.orientation ? *expected.orientation : Default()));
        });
}

TEST(TransformationGet, The_rotation_in_each_form)
{
    InEachState(
        [](C3DTransfo & transfo, Snapshot & expected)
        {
            Rotation rotation = Default();
            transfo.GetRotation(rotation);
            EXPECT_TRUE(SameRotation(rotation, expected.rotation));
        });
    InEachState(
        [](C3DTransfo & transfo, Snapshot & expected)
        {
            Quat quat;
            Quat wanted;
            transfo.GetRotation(quat);
            expected.rotation.GetQuat(wanted);
            EXPECT_TRUE(rotation_test::Same(quat, wanted));
            EXPECT_EQ(RotationInside(Inside::Rotation(transfo)).IsQuatDirty(), 0);
        });
    InEachState(
        [](C3DTransfo & transfo, Snapshot & expected)
        {
            RotMatrix matrix;
            transfo.GetRotation(matrix);
            EXPECT_TRUE(rotation_test::Same(matrix, *expected.rotation.GetMatrix()));
        });
    InEachState(
        [](C3DTransfo & transfo, Snapshot & expected)
        {
            RotMatrix const * const matrix = transfo.GetRotation();
            EXPECT_EQ(matrix, &RotationInside(Inside::Rotation(transfo)).Matrix());
            EXPECT_EQ(RotationInside(Inside::Rotation(transfo)).IsMatDirty(), 0);
            EXPECT_TRUE(rotation_test::Same(*matrix, *expected.rotation.GetMatrix()));
        });
    InEachState(
        [](C3DTransfo & transfo, Snapshot & expected)
        {
            Vector angles;
            Vector wanted;
            transfo.GetRotation(angles);
            expected.rotation.GetXYZAngles(wanted);
            EXPECT_TRUE(SameBits(angles, wanted));
        });
    InEachState(
        [](C3DTransfo & transfo, Snapshot & expected)
        {
            Vector v;
            Vector wanted;
            transfo.GetRotation(v.X, v.Y, v.Z);
            expected.rotation.GetXYZAngles(wanted);
            EXPECT_TRUE(SameBits(v, wanted));
        });
    InEachState(
        [](C3DTransfo & transfo, Snapshot & expected)
        {
            Vector axis;
            Vector wanted_axis;
            double angle = 0;
            double wanted_angle = 0;
            transfo.GetRotation(axis, angle);
            expected.rotation.GetAxisAngle(wanted_axis, wanted_angle);
            EXPECT_TRUE(SameBits(axis, wanted_axis));
            EXPECT_EQ(angle, wanted_angle);
        });
}

TEST(TransformationGet, A_marked_rotation_gives_the_identity_in_the_own_order)
{
    for (unsigned const state : {2U, 0U, 18U, 16U})
    {
        C3DTransfo transfo = MakeState(state, IdentityValues(E3DROTORDER_YZX));
        Rotation rotation = Default();
        transfo.GetRotation(rotation);
        EXPECT_EQ(rotation.QuickIsIdentity(), 1);
        EXPECT_EQ(rotation.GetXYZRotOrder(), E3DROTORDER_YZX);
    }
}

TEST(TransformationGet, The_scaling_orientation_in_each_form)
{
    InEachState(
        [](C3DTransfo & transfo, Snapshot & expected)
        {
            Rotation orientation = Default();
            transfo.GetScalingOrientation(orientation);
            if (expected.orientation)
            {
                EXPECT_TRUE(SameRotation(orientation, *expected.orientation));
            }
            else
            {
                EXPECT_EQ(orientation.QuickIsIdentity(), 1);
            }
        });
    InEachState(
        [](C3DTransfo & transfo, Snapshot & expected)
        {
            Vector vector(7, 7, 7);
            Vector wanted(0, 0, 0);
            if (expected.orientation)
            {
                expected.orientation->GetXYZAngles(wanted);
            }
            transfo.GetScalingOrientation(vector);
            EXPECT_TRUE(SameBits(vector, wanted));
        });
    InEachState(
        [](C3DTransfo & transfo, Snapshot & expected)
        {
            Vector v(7, 7, 7);
            Vector wanted(0, 0, 0);
            if (expected.orientation)
            {
                expected.orientation->GetXYZAngles(wanted);
            }
            transfo.GetScalingOrientation(v.X, v.Y, v.Z);
            EXPECT_TRUE(SameBits(v, wanted));
        });
    InEachState([](C3DTransfo & transfo, Snapshot & expected)
                { EXPECT_EQ(transfo.IsScalingOrientationExisting(), expected.orientation.has_value()); });
}

TEST(TransformationGet, An_orientation_near_the_identity_is_read_but_does_not_exist)
{
    C3DTransfo transfo = MakeState(2, AlmostUnsheared());
    EXPECT_FALSE(transfo.IsScalingOrientationExisting());
    Vector angles;
    transfo.GetScalingOrientation(angles);
    EXPECT_TRUE(SameBits(angles, Vector(1e-13, 0, -1e-13)));
    EXPECT_NE(Inside::ScalingOrientation(transfo), nullptr);
}

TEST(TransformationGet, The_translation_comes_from_the_fresh_form_and_nothing_is_made_fresh)
{
    for (unsigned const state : {2U, 1U, 0U, 18U, 16U, 17U})
    {
        for (int form = 0; form < 2; ++form)
        {
            C3DTransfo transfo = MakeState(state | k_Other, Sheared());
            Vector const expected = (state & k_Identity) != 0 ? Vector(0, 0, 0) : Sheared().translation;
            if (state == 0)
            {
                Inside::Matrix(transfo).SetTranslation(Vector(8, 8, 8));
            }
            Snapshot const before(transfo);
            Vector t;
            form == 0 ? transfo.GetTranslation(t) : transfo.GetTranslation(t.X, t.Y, t.Z);
            EXPECT_TRUE(SameBits(t, expected)) << state;
            EXPECT_TRUE(Untouched(before, transfo));
        }
    }
}

TEST(TransformationGet, The_order_is_the_one_of_the_fresh_components_or_else_of_the_matrix)
{
    for (unsigned flags = 0; flags < 64; ++flags)
    {
        C3DTransfo transfo = MakeState(flags, Sheared());
        Inside::Rotation(transfo).Set(E3DROTORDER_YZX, 0);
        Inside::MatrixRotOrder(transfo) = E3DROTORDER_XZY;
        Snapshot const before(transfo);
        EXPECT_EQ(transfo.GetXYZRotOrder(), (flags & 1) != 0 ? E3DROTORDER_XZY : E3DROTORDER_YZX);
        EXPECT_TRUE(Untouched(before, transfo));
    }
}

TEST(TransformationGet, Any_getter_of_components_makes_both_forms_clean_and_equal)
{
    for (Values const & values : {Plain(), Sheared()})
    {
        C3DTransfo transfo = MakeState(k_ComponentsDirty, values);
        Vector scaling;
        transfo.GetScaling(scaling);
        EXPECT_EQ(Inside::Flags(transfo), 0U);
        EXPECT_TRUE(FreshFormsAre(transfo, MatrixOf(values)));
    }
}

// --- The matrix ------------------------------------------------------------------------------------------------------

TEST(TransformationGet, The_matrix_is_combined_where_it_is_stale)
{
    for (Values const & values : {Plain(), Sheared(), OtherPlain(), OtherSheared()})
    {
        for (unsigned const state : k_Unflagged)
        {
            for (unsigned const others : {0U, k_Other})
            {
                C3DTransfo first = MakeState(state | others, values);
                C3DTransfo second = MakeState(state | others, values);
                Inside::Matrix(first).SetMaskInfo(0xA1 | Inside::Matrix(first).GetSclSignBits());
                Matrix matrix = MakeMatrix({}, 2);
                matrix.SetMaskInfo(0x52);
                first.GetMatrix(matrix);
                Matrix const * const pointer = second.GetMatrix();
                EXPECT_EQ(pointer, &Inside::Matrix(second));
                for (C3DTransfo * const transfo : {&first, &second})
                {
                    EXPECT_EQ(Inside::Flags(*transfo), (state | others) & ~k_MatrixDirty);
                    EXPECT_TRUE(FreshFormsAre(*transfo, MatrixOf(values)));
                    EXPECT_EQ(Inside::MatrixRotOrder(*transfo), values.rotation.GetXYZRotOrder());
                }
                EXPECT_TRUE(SameBits(matrix, *pointer));
                EXPECT_EQ(matrix.GetMaskInfo(), 0x50 | MatrixOf(values).GetSclSignBits());
                EXPECT_EQ(pointer->GetSclSignBits(), MatrixOf(values).GetSclSignBits());
            }
        }
    }
}

TEST(TransformationGet, The_matrix_of_the_flagged_identity)
{
    for (unsigned const state : k_Flagged)
    {
        C3DTransfo transfo = MakeState(state);
        Matrix matrix = MatrixOf(Sheared());
        transfo.GetMatrix(matrix);
        EXPECT_TRUE(SameBits(matrix, Matrix()));
        EXPECT_EQ(matrix.GetSclSignBits(), 0);
        EXPECT_EQ(Inside::Flags(transfo), k_Identity);
        EXPECT_TRUE(SameBits(*transfo.GetMatrix(), Matrix()));
    }
}

TEST(TransformationGet, The_copy_of_the_matrix_is_repaired_and_the_matrix_itself_is_not)
{
    for (bool const mirrored : {false, true})
    {
        for (unsigned bits = 0; bits < 16; bits += 2)
        {
            Values values = Plain();
            values.scaling = Vector(2, 3, mirrored ? -4 : 4);
            C3DTransfo transfo = MakeState(k_ComponentsDirty, values);
            Inside::SetSclSignBits(Inside::Matrix(transfo), bits);
            Snapshot const before(transfo);
            Matrix copy;
            transfo.GetMatrix(copy);
            bool const consistent = (std::popcount(bits) % 2 == 1) == mirrored;
            EXPECT_EQ(copy.GetSclSignBits(), consistent ? bits : 14U - bits);
            EXPECT_TRUE(SameBits(copy, before.matrix));
            EXPECT_EQ(transfo.GetMatrix()->GetSclSignBits(), bits);
            EXPECT_TRUE(Untouched(before, transfo));
        }
    }
}

TEST(TransformationGet, The_inverse_of_the_matrix_follows_the_bits_of_its_target)
{
    for (Values const & values : {Plain(), Sheared(), OtherPlain()})
    {
        for (unsigned const state : k_Unflagged)
        {
            for (unsigned bits = 0; bits < 16; bits += 2)
            {
                C3DTransfo transfo = MakeState(state | k_Other, values);
                Matrix inverse = MakeMatrix({}, bits);
                Matrix expected = inverse;
                ASSERT_EQ(expected.Invert(MatrixOf(values)), 1);
                transfo.GetInvMatrix(inverse);
                EXPECT_TRUE(Near(inverse, expected));
                EXPECT_EQ(inverse.GetSclSignBits(), expected.GetSclSignBits());
                EXPECT_EQ(Inside::Flags(transfo), (state | k_Other) & ~k_MatrixDirty);
                EXPECT_TRUE(FreshFormsAre(transfo, MatrixOf(values)));
            }
        }
    }
}

TEST(TransformationGet, The_inverse_of_the_flagged_identity_is_the_identity_without_bits_and_makes_no_matrix)
{
    for (unsigned const fresh : k_Freshness)
    {
        C3DTransfo transfo = MakeState(fresh, Sheared());
        Inside::SetFlags(transfo, fresh | k_Identity);
        Snapshot const before(transfo);
        Matrix inverse = MatrixOf(Sheared());
        inverse.SetMaskInfo(0xFF);
        transfo.GetInvMatrix(inverse);
        EXPECT_TRUE(SameBits(inverse, Matrix()));
        EXPECT_EQ(inverse.GetMaskInfo(), 0xF1);
        EXPECT_TRUE(Untouched(before, transfo));
    }
}

TEST(TransformationGet, The_inverse_of_an_identity_without_the_flag_comes_through_the_matrix)
{
    C3DTransfo transfo = MakeState(k_MatrixDirty, IdentityValues());
    Matrix inverse = MakeMatrix({}, 6);
    transfo.GetInvMatrix(inverse);
    EXPECT_TRUE(Near(inverse, Matrix(), 0));
    EXPECT_EQ(inverse.GetSclSignBits(), 6) << "two negative axes agree with the determinant";
    EXPECT_EQ(Inside::Flags(transfo), 0U);
}

TEST(TransformationGet, A_singular_matrix_leaves_the_target_of_its_inverse)
{
    C3DTransfo transfo;
    Matrix singular;
    singular.Set(1, 1, 0);
    transfo.Set(singular);
    Matrix const old = MatrixOf(Sheared());
    Matrix inverse = old;
    transfo.GetInvMatrix(inverse);
    EXPECT_TRUE(SameBits(inverse, old));
    EXPECT_EQ(inverse.GetMaskInfo(), old.GetMaskInfo());
}
