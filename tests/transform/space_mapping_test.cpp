#include "math/space_mapping.h"
#include "transform/edit_by_steps.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using namespace edit_test;

constexpr auto k_NoType = static_cast<tagE3DVECTORTYPE>(3);
constexpr auto k_NegativeType = static_cast<tagE3DVECTORTYPE>(-1);
constexpr tagE3DVECTORTYPE k_Types[] = {E3DVECTORTYPE_FULL, E3DVECTORTYPE_NOSCALE, E3DVECTORTYPE_DIRECTION};

/// A matrix that no map gives. Its determinant is positive, which its sign bits contradict.
Matrix Garbage()
{
    Matrix m = MakeMatrix({1, 2, 3, 4, 0, 6, 7, 8, 9, 1, 2, 3, 5, 4, 8, 7}, 0);
    m.SetMaskInfo(32 | 1 | 2);
    return m;
}

/// The map out of a space, put together from what it is made of.
Matrix ToWorld(tagE3DVECTORTYPE type, Values const & values)
{
    if (type == E3DVECTORTYPE_FULL)
    {
        return MatrixOf(values);
    }
    Matrix m = Block(MatrixOf(values.rotation));
    if (type == E3DVECTORTYPE_NOSCALE)
    {
        SetLastRow(m, values.translation);
    }
    return m;
}

TEST(Space_mapping, The_types_have_their_numbers)
{
    EXPECT_EQ(static_cast<int>(E3DVECTORTYPE_FULL), 0);
    EXPECT_EQ(static_cast<int>(E3DVECTORTYPE_NOSCALE), 1);
    EXPECT_EQ(static_cast<int>(E3DVECTORTYPE_DIRECTION), 2);
}

TEST(Space_mapping, Out_of_a_space_holds_what_the_type_names)
{
    for (Values const & values : {Plain(), Sheared(), OtherSheared()})
    {
        for (tagE3DVECTORTYPE const type : k_Types)
        {
            for (unsigned const freshness : {0U, k_MatrixDirty})
            {
                C3DTransfo space = MakeState(freshness, values);
                Matrix out = Garbage();
                EXPECT_EQ(&out, &GetMapSpaceToWorld(type, space, out));
                EXPECT_TRUE(Near(ToWorld(type, values), out, 1e-14));
                EXPECT_EQ(type == E3DVECTORTYPE_FULL ? ToWorld(type, values).GetSclSignBits() : 0,
                          out.GetSclSignBits());
            }
        }
    }
}

TEST(Space_mapping, Out_of_a_space_brings_up_to_date_only_what_it_reads)
{
    for (tagE3DVECTORTYPE const type : k_Types)
    {
        for (unsigned const freshness : k_Freshness)
        {
            C3DTransfo space = MakeState(freshness, OtherSheared());
            Matrix out;
            GetMapSpaceToWorld(type, space, out);
            EXPECT_EQ(type == E3DVECTORTYPE_FULL ? freshness & ~k_MatrixDirty : freshness & ~k_ComponentsDirty,
                      Inside::Flags(space));
            EXPECT_TRUE(FreshFormsAre(space, MatrixOf(OtherSheared()), 1e-13));
            GetMapWorldToSpace(type, space, out);
            EXPECT_EQ(type == E3DVECTORTYPE_FULL ? freshness & ~k_MatrixDirty : freshness & ~k_ComponentsDirty,
                      Inside::Flags(space));
        }
    }
}

TEST(Space_mapping, Out_of_a_dirty_space_has_the_rotation_of_its_decomposition)
{
    C3DTransfo space = MakeState(k_ComponentsDirty, Sheared());
    C3DTransfo copy(space);
    Inside::Factorize(copy, 63);
    Matrix out;
    GetMapSpaceToWorld(E3DVECTORTYPE_NOSCALE, space, out);
    EXPECT_TRUE(Near(ToWorld(E3DVECTORTYPE_NOSCALE, ValuesOf(copy)), out, 1e-13));
    EXPECT_EQ(0, Inside::AreComponentsDirty(space));
}

TEST(Space_mapping, Out_of_a_mirrored_space_repairs_the_bits_of_the_copy_alone)
{
    C3DTransfo space = MakeState(0);
    Inside::SetSclSignBits(Inside::Matrix(space), 6);
    Matrix out;
    GetMapSpaceToWorld(E3DVECTORTYPE_FULL, space, out);
    EXPECT_EQ(6U ^ 14U, out.GetSclSignBits());
    EXPECT_EQ(6, Inside::Matrix(space).GetSclSignBits());
}

TEST(Space_mapping, A_rotation_that_mirrors_gets_all_sign_bits)
{
    C3DTransfo space = MakeState(k_MatrixDirty);
    Inside::Rotation(space).Set(RotMatrix(1, 0, 0, 0, 1, 0, 0, 0, -1));
    for (tagE3DVECTORTYPE const type : {E3DVECTORTYPE_NOSCALE, E3DVECTORTYPE_DIRECTION})
    {
        Matrix out = Garbage();
        EXPECT_EQ(14, GetMapSpaceToWorld(type, space, out).GetSclSignBits());
        EXPECT_EQ(14, GetMapWorldToSpace(type, space, out).GetSclSignBits());
    }
}

TEST(Space_mapping, Into_a_space_is_the_inverse_of_the_way_out)
{
    for (Values const & values : {Plain(), OtherSheared()})
    {
        for (tagE3DVECTORTYPE const type : k_Types)
        {
            for (unsigned const freshness : {0U, k_MatrixDirty})
            {
                C3DTransfo space = MakeState(freshness, values);
                Matrix out = Garbage();
                EXPECT_EQ(&out, &GetMapWorldToSpace(type, space, out));
                EXPECT_TRUE(Near(Inverted(ToWorld(type, values)), out, 1e-13));
                if (type != E3DVECTORTYPE_FULL)
                {
                    EXPECT_EQ(0, out.GetSclSignBits());
                }
            }
        }
    }
}

TEST(Space_mapping, Into_a_space_keeps_and_repairs_the_sign_bits_of_the_target)
{
    C3DTransfo mirrored = MakeState(0);
    Matrix out = Garbage();
    EXPECT_EQ(2, GetMapWorldToSpace(E3DVECTORTYPE_FULL, mirrored, out).GetSclSignBits());
    C3DTransfo space = MakeState(0, OtherPlain());
    EXPECT_EQ(2 ^ 14, GetMapWorldToSpace(E3DVECTORTYPE_FULL, space, out).GetSclSignBits());
}

TEST(Space_mapping, Into_the_identity_is_the_identity_for_every_type)
{
    for (unsigned const flags : {k_Identity, k_Identity | k_MatrixDirty | k_QNScaling})
    {
        for (tagE3DVECTORTYPE const type : k_Types)
        {
            C3DTransfo space = MakeState(flags);
            Matrix out = Garbage();
            GetMapWorldToSpace(type, space, out);
            EXPECT_TRUE(Near(Matrix(), out, 0)) << type;
            EXPECT_EQ(0, out.GetSclSignBits());
            out = Garbage();
            GetMapSpaceToWorld(type, space, out);
            EXPECT_TRUE(Near(Matrix(), out, 0)) << type;
            EXPECT_EQ(0, out.GetSclSignBits());
        }
    }
}

TEST(Space_mapping, Into_a_flattened_space_leaves_the_target)
{
    C3DTransfo space = MakeState(k_ComponentsDirty);
    Inside::Matrix(space) = MakeMatrix({1, 0, 0, 0, 2, 0, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1}, 0);
    Matrix out = Garbage();
    GetMapWorldToSpace(E3DVECTORTYPE_FULL, space, out);
    EXPECT_TRUE(SameBits(Garbage(), out));
    EXPECT_EQ(Garbage().GetMaskInfo(), out.GetMaskInfo());
}

TEST(Space_mapping, Of_an_invalid_type_leaves_the_target_and_the_space)
{
    for (tagE3DVECTORTYPE const type : {k_NoType, k_NegativeType})
    {
        for (unsigned const freshness : {k_MatrixDirty, k_ComponentsDirty})
        {
            C3DTransfo space = MakeState(freshness, OtherSheared());
            Matrix out = Garbage();
            EXPECT_EQ(&out, &GetMapSpaceToWorld(type, space, out));
            EXPECT_EQ(&out, &GetMapWorldToSpace(type, space, out));
            EXPECT_TRUE(SameBits(Garbage(), out));
            EXPECT_EQ(Garbage().GetMaskInfo(), out.GetMaskInfo());
            EXPECT_EQ(freshness, Inside::Flags(space));
        }
    }
}

TEST(Space_mapping, Between_spaces_leads_through_the_world)
{
    for (Values const & first : {Plain(), OtherSheared()})
    {
        for (Values const & second : {OtherPlain(), Sheared()})
        {
            for (tagE3DVECTORTYPE const type : k_Types)
            {
                C3DTransfo from = MakeState(k_MatrixDirty, first);
                C3DTransfo to = MakeState(k_MatrixDirty, second);
                Matrix out = Garbage();
                EXPECT_EQ(&out, &GetMapSpaceToSpace(type, from, to, out));
                Matrix const expected = ProductOf(ToWorld(type, first), Inverted(ToWorld(type, second)));
                EXPECT_TRUE(Near(expected, out, 1e-12));
            }
        }
    }
}

TEST(Space_mapping, Between_spaces_cancels_and_repairs_the_sign_bits)
{
    for (Values const & first : {Plain(), OtherPlain()})
    {
        C3DTransfo from = MakeState(k_MatrixDirty, first);
        C3DTransfo to = MakeState(k_MatrixDirty, Plain());
        Matrix out = Garbage();
        Matrix toSpace = Garbage();
        GetMapWorldToSpace(E3DVECTORTYPE_FULL, to, toSpace);
        GetMapSpaceToSpace(E3DVECTORTYPE_FULL, from, to, out);
        Matrix const expected = ProductOf(MatrixOf(first), toSpace);
        EXPECT_TRUE(Near(expected, out, 1e-13));
        EXPECT_EQ(expected.GetSclSignBits(), out.GetSclSignBits());
    }
}

TEST(Space_mapping, From_a_space_to_itself_is_the_identity)
{
    for (tagE3DVECTORTYPE const type : k_Types)
    {
        C3DTransfo space = MakeState(k_MatrixDirty, OtherSheared());
        Matrix out = Garbage();
        GetMapSpaceToSpace(type, space, space, out);
        EXPECT_TRUE(Near(Matrix(), out, 1e-13));
    }
}

TEST(Space_mapping, Between_spaces_of_an_invalid_type_multiplies_the_target_by_the_identity)
{
    C3DTransfo from = MakeState(k_MatrixDirty);
    C3DTransfo to = MakeState(k_MatrixDirty, OtherPlain());
    Matrix out = Garbage();
    GetMapSpaceToSpace(k_NoType, from, to, out);
    EXPECT_TRUE(SameBits(Garbage(), out));
    // The product repairs the sign bits.
    Matrix const expected = ProductOf(Matrix(), Garbage());
    EXPECT_EQ(expected.GetSclSignBits(), out.GetSclSignBits());
    EXPECT_NE(Garbage().GetSclSignBits(), out.GetSclSignBits());
}

TEST(Space_mapping, Between_spaces_with_a_flattened_target_multiplies_what_was_there)
{
    C3DTransfo from = MakeState(k_MatrixDirty);
    C3DTransfo to = MakeState(k_ComponentsDirty);
    Inside::Matrix(to) = MakeMatrix({1, 0, 0, 0, 2, 0, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1}, 0);
    Matrix out = Garbage();
    GetMapSpaceToSpace(E3DVECTORTYPE_FULL, from, to, out);
    EXPECT_TRUE(Near(ProductOf(MatrixOf(Plain()), Garbage()), out, 1e-13));
}

// --- Directions ------------------------------------------------------------------------------------------------------

TEST(Space_mapping, Directions_go_through_the_rotation_and_back)
{
    Vector const in(1, -2, 3);
    for (unsigned const flags : rotation_test::k_States)
    {
        Rotation r = rotation_test::MakeState(flags);
        RotMatrix const m = rotation_test::MatrixOf(Vector(0.3, -0.5, 0.7), E3DROTORDER_ZXY);
        Vector out(0, 0, 0);
        EXPECT_EQ(&out, &MapDirSpaceToWorld(r, in, out));
        EXPECT_TRUE(Near(RowTimes(in, m), out, 1e-14));
        EXPECT_EQ(&out, &MapDirWorldToSpace(r, in, out));
        EXPECT_TRUE(Near(RowTimes(in, m, true), out, 1e-14));
    }
}

TEST(Space_mapping, Directions_between_spaces_go_through_the_world)
{
    Vector const in(1, -2, 3);
    Rotation from = Plain().rotation;
    Rotation to = OtherPlain().rotation;
    Vector out(0, 0, 0);
    EXPECT_EQ(&out, &MapDirSpaceToSpace(from, to, in, out));
    Vector const expected = RowTimes(RowTimes(in, MatrixOf(from)), MatrixOf(to), true);
    EXPECT_TRUE(Near(expected, out, 1e-14));
    EXPECT_TRUE(Near(Vector(1, -2, 3), in, 0));
    EXPECT_TRUE(Near(in, MapDirSpaceToSpace(to, to, in, out), 1e-14));
}

TEST(Space_mapping, Directions_may_be_mapped_in_place)
{
    Rotation from = Plain().rotation;
    Rotation to = OtherPlain().rotation;
    Vector apart;
    Vector in(1, -2, 3);
    MapDirSpaceToWorld(from, in, apart);
    MapDirSpaceToWorld(from, in, in);
    EXPECT_TRUE(SameBits(apart, in));
    MapDirWorldToSpace(to, in, apart);
    MapDirWorldToSpace(to, in, in);
    EXPECT_TRUE(SameBits(apart, in));
    MapDirSpaceToSpace(from, to, in, apart);
    MapDirSpaceToSpace(from, to, in, in);
    EXPECT_TRUE(SameBits(apart, in));
}

TEST(Space_mapping, Directions_through_the_identity_stay)
{
    Rotation identity;
    Vector const in(1, -2, 3);
    Vector out;
    EXPECT_TRUE(SameBits(in, MapDirSpaceToWorld(identity, in, out)));
    EXPECT_TRUE(SameBits(in, MapDirWorldToSpace(identity, in, out)));
    EXPECT_TRUE(SameBits(in, MapDirSpaceToSpace(identity, identity, in, out)));
}

} // namespace
