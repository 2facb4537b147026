/// Setting a transformation as a whole: from another one, from a matrix, from a translation or a rotation alone.

#include "support/allocation_faults.h"
#include "transform/transformation_states.h"

using namespace transformation_test;
using test_support::AllocationFaults;

namespace
{

Rotation const k_R(-1.1, 0.2, 0.4, E3DROTORDER_XZY);
Vector const k_T(-7, 5, 0.125);

/// The states before: the components alone fresh, the matrix alone, both; the identity without and with its matrix.
constexpr unsigned k_Before[5] = {2, 1, 0, 18, 16};

Rotation MarkedIdentity()
{
    Rotation identity;
    identity.Set(E3DROTORDER_ZYX, 1);
    return identity;
}

bool CountsAsOrientation(std::optional<Rotation> const & orientation)
{
    return orientation && orientation->IsAlmostIdentity(1e-12) == 0;
}

/// The components of the identity, with the order of the rotation kept.
void Reset(Snapshot & target)
{
    target.scaling = Vector(1, 1, 1);
    target.orientation.reset();
    target.rotation.SetIdentity();
    target.translation = Vector(0, 0, 0);
    target.flags = (target.flags & ~k_ComponentsDirty) | k_MatrixDirty | k_Identity;
}

void CopyRotation(Rotation & target, Rotation source, bool keep_order)
{
    tagE3DROTORDER const order = keep_order ? target.GetXYZRotOrder() : source.GetXYZRotOrder();
    if (source.QuickIsIdentity() != 0)
    {
        source.SetIdentity();
    }
    if (order != source.GetXYZRotOrder())
    {
        source.Set(order, 1);
    }
    target = source;
}

/// A target after the copy of a source that is not flagged as the identity.
void CopyFresh(Snapshot & target, Snapshot const & source, bool keep_own_flags)
{
    if (source.HasComponents())
    {
        target.scaling = source.scaling;
        target.translation = source.translation;
        CopyRotation(target.rotation, source.rotation, keep_own_flags || (target.flags & k_PreserveOrder) != 0);
        target.orientation = CountsAsOrientation(source.orientation) ? source.orientation : std::nullopt;
    }
    if (source.HasMatrix())
    {
        unsigned char const other_bits = target.matrix.GetMaskInfo() & 0xF1U;
        target.matrix = source.matrix;
        unsigned const bits = source.matrix.GetSclSignBits();
        bool const odd = std::popcount(bits) % 2 == 1;
        unsigned const repaired = odd == !(source.matrix.GetDet() >= 0) ? bits : 14U - bits;
        target.matrix.SetMaskInfo(static_cast<unsigned char>(other_bits | repaired));
        target.matrix_order = keep_own_flags ? target.matrix_order : source.matrix_order;
    }
}

/// The target after Set(source, keep_own_flags), step by step.
Snapshot After(Snapshot target, Snapshot const & source, bool keep_own_flags)
{
    bool const source_is_identity = (source.flags & k_Identity) != 0;
    if (!keep_own_flags && source_is_identity)
    {
        target.flags = (target.flags & (k_PreserveOrder | k_Unused)) | (source.flags & k_QNScaling);
        Reset(target);
        return target;
    }
    if (source_is_identity)
    {
        if ((target.flags & k_Identity) == 0)
        {
            Reset(target);
        }
        return target;
    }
    unsigned const copied = keep_own_flags ? k_ComponentsDirty | k_MatrixDirty : ~k_PreserveOrder;
    target.flags = (target.flags & ~copied) | (source.flags & copied);
    target.flags &= ~k_Identity;
    CopyFresh(target, source, keep_own_flags);
    return target;
}

void ExpectCopy(C3DTransfo & target, C3DTransfo & source, int form)
{
    Snapshot const source_before(source);
    Snapshot const expected = After(Snapshot(target), source_before, form == 2);
    form == 0 ? target.Set(source) : target.Set(source, form == 2);
    EXPECT_TRUE(Untouched(expected, target)) << "form " << form;
    EXPECT_TRUE(Untouched(source_before, source));
    Rotation const * const pointer = Inside::ScalingOrientation(target);
    EXPECT_TRUE(pointer == nullptr || pointer != Inside::ScalingOrientation(source));
}

} // namespace

// --- Another transformation ------------------------------------------------------------------------------------------

TEST(TransformationCopy, Each_combination_of_the_flags_of_target_and_source)
{
    for (unsigned target_flags = 0; target_flags < 64; ++target_flags)
    {
        for (unsigned source_flags = 0; source_flags < 64; ++source_flags)
        {
            if ((target_flags & 3U) == 3 || (source_flags & 3U) == 3)
            {
                continue;
            }
            for (int form = 0; form < 3; ++form)
            {
                SCOPED_TRACE(testing::Message() << "target " << target_flags << ", source " << source_flags);
                C3DTransfo target = MakeState(target_flags, OtherSheared());
                C3DTransfo source = MakeState(source_flags, Sheared());
                ExpectCopy(target, source, form);
                ASSERT_FALSE(testing::Test::HasFailure());
            }
        }
    }
}

TEST(TransformationCopy, Each_kind_of_components_of_target_and_source)
{
    Values marked = Plain();
    marked.rotation = MarkedIdentity();
    Values from_quaternion = Sheared();
    from_quaternion.rotation.Set(Quat(0.5, 0.5, -0.5, 0.5));
    Values identity_unflagged = IdentityValues(E3DROTORDER_YZX);
    Values same_order = OtherPlain();
    same_order.rotation = Rotation(1, 2, 3, E3DROTORDER_XZY);
    Values const kinds[] = {Plain(),         Sheared(),          AlmostUnsheared(), marked,
                            from_quaternion, identity_unflagged, same_order,        OtherSheared()};
    for (Values const & old : kinds)
    {
        for (Values const & values : kinds)
        {
            for (unsigned const target_flags : {0U, 1U, 2U, 8U, 9U, 10U, 18U, 26U, 16U})
            {
                for (unsigned const source_flags : {0U, 1U, 2U, 8U, 16U})
                {
                    for (int form = 0; form < 3; ++form)
                    {
                        SCOPED_TRACE(testing::Message() << "target " << target_flags << ", source " << source_flags);
                        C3DTransfo target = MakeState(target_flags, old);
                        C3DTransfo source = MakeState(source_flags, values);
                        ExpectCopy(target, source, form);
                        ASSERT_FALSE(testing::Test::HasFailure());
                    }
                }
            }
        }
    }
}

TEST(TransformationCopy, A_copy_of_itself_changes_nothing)
{
    for (unsigned flags = 0; flags < 64; ++flags)
    {
        C3DTransfo transfo = MakeState(flags, Sheared());
        Snapshot const before(transfo);
        C3DTransfo const & same = transfo;
        transfo.Set(same);
        transfo.Set(same, false);
        transfo.Set(same, true);
        EXPECT_TRUE(Untouched(before, transfo));
        EXPECT_EQ(before.pointer, Inside::ScalingOrientation(transfo));
    }
}

TEST(TransformationCopy, The_order_of_rotation_comes_from_the_source_unless_it_is_to_be_kept)
{
    for (unsigned const preserve : {0U, k_PreserveOrder})
    {
        for (bool const keep : {false, true})
        {
            C3DTransfo target = MakeState(k_MatrixDirty | preserve, OtherPlain());
            C3DTransfo source = MakeState(k_MatrixDirty, Plain());
            target.Set(source, keep);
            EXPECT_EQ(target.GetXYZRotOrder(), keep || preserve != 0 ? E3DROTORDER_XZY : E3DROTORDER_ZXY);
            EXPECT_LE(Distance(Inside::Rotation(target), Plain().rotation), 1e-14);
        }
    }
}

TEST(TransformationCopy, An_own_orientation_is_written_where_it_is)
{
    C3DTransfo target = MakeState(k_MatrixDirty, OtherSheared());
    C3DTransfo source = MakeState(k_MatrixDirty, Sheared());
    Rotation const * const pointer = Inside::ScalingOrientation(target);
    target.Set(source);
    EXPECT_EQ(Inside::ScalingOrientation(target), pointer);
}

TEST(TransformationCopy, The_sign_bits_are_repaired)
{
    for (bool const keep : {false, true})
    {
        for (unsigned const target_flags : {0U, 1U, 2U})
        {
            for (unsigned bits = 0; bits < 16; bits += 2)
            {
                C3DTransfo target = MakeState(target_flags, OtherPlain());
                C3DTransfo source = MakeState(0, Plain());
                Inside::Matrix(target).SetMaskInfo(0x20);
                Inside::Matrix(source).SetMaskInfo(static_cast<unsigned char>(0xD1U | bits));
                ExpectCopy(target, source, keep ? 2 : 1);
                EXPECT_EQ(std::popcount(unsigned(Inside::Matrix(target).GetSclSignBits())) % 2, 1);
            }
        }
    }
}

TEST(TransformationCopy, Without_memory_the_copy_has_no_orientation)
{
    for (bool const keep : {false, true})
    {
        C3DTransfo target = MakeState(k_MatrixDirty, OtherPlain());
        C3DTransfo source = MakeState(0, Sheared());
        Snapshot expected = After(Snapshot(target), Snapshot(source), keep);
        expected.orientation.reset();
        {
            AllocationFaults const refuse = AllocationFaults::RefuseOne(0);
            target.Set(source, keep);
        }
        EXPECT_TRUE(Untouched(expected, target));
    }
}

// --- A matrix --------------------------------------------------------------------------------------------------------

TEST(TransformationCopy, A_matrix_makes_the_components_stale)
{
    Matrix const matrix = MatrixOf(OtherSheared());
    for (unsigned const others : {0U, 44U})
    {
        for (unsigned const before : k_Before)
        {
            C3DTransfo transfo = MakeState(before | others, Sheared());
            Snapshot const was(transfo);
            transfo.Set(matrix);
            Snapshot const is(transfo);
            EXPECT_EQ(is.flags, k_ComponentsDirty | others);
            EXPECT_TRUE(SameBits(is.matrix, matrix));
            EXPECT_TRUE(SameComponents(was, is)) << "the stale components are left";
            EXPECT_EQ(is.pointer, was.pointer);
            // Its order was on record where the matrix was fresh, and is taken from the rotation where it was not.
            EXPECT_EQ(is.matrix_order, E3DROTORDER_ZXY);
            EXPECT_EQ(transfo.GetXYZRotOrder(), E3DROTORDER_ZXY);
        }
    }
}

TEST(TransformationCopy, A_matrix_notes_the_order_only_from_components_that_alone_are_fresh)
{
    struct Case
    {
        unsigned before;
        tagE3DROTORDER expected;
    };
    Case const cases[] = {{2, E3DROTORDER_XZY}, {18, E3DROTORDER_XZY}, {0, E3DROTORDER_ZYX},
                          {1, E3DROTORDER_ZYX}, {16, E3DROTORDER_ZYX}, {3, E3DROTORDER_ZYX}};
    for (Case const & row : cases)
    {
        C3DTransfo transfo = MakeState(row.before);
        Inside::Rotation(transfo).Set(E3DROTORDER_XZY, 0);
        Inside::MatrixRotOrder(transfo) = E3DROTORDER_ZYX;
        transfo.Set(Matrix());
        EXPECT_EQ(transfo.GetXYZRotOrder(), row.expected) << row.before;
    }
}

TEST(TransformationCopy, The_sign_bits_of_a_matrix_are_copied_and_repaired)
{
    for (bool const mirrored : {false, true})
    {
        Values values = Plain();
        values.scaling = Vector(2, 3, mirrored ? -4 : 4);
        for (unsigned bits = 0; bits < 16; bits += 2)
        {
            Matrix matrix = MatrixOf(values);
            Inside::SetSclSignBits(matrix, bits);
            matrix.SetMaskInfo(static_cast<unsigned char>(bits | 0xF1U));
            C3DTransfo transfo = MakeState(2);
            Inside::Matrix(transfo).SetMaskInfo(0x50);
            transfo.Set(matrix);
            unsigned const count = (bits >> 1U & 1U) + (bits >> 2U & 1U) + (bits >> 3U & 1U);
            bool const consistent = (count % 2 == 1) == mirrored;
            EXPECT_EQ(Inside::Matrix(transfo).GetSclSignBits(), consistent ? bits : 14U - bits);
            EXPECT_EQ(Inside::Matrix(transfo).GetMaskInfo() & 0xF1U, 0x50U) << "the other bits are its own";
        }
    }
}

TEST(TransformationCopy, The_own_matrix_can_be_set)
{
    for (unsigned const before : {2U, 0U, 1U})
    {
        C3DTransfo transfo = MakeState(before, Sheared());
        transfo.Set(*transfo.GetMatrix());
        EXPECT_EQ(Inside::Flags(transfo), k_ComponentsDirty);
        EXPECT_TRUE(Near(Inside::Matrix(transfo), MatrixOf(Sheared())));
        EXPECT_EQ(transfo.GetXYZRotOrder(), E3DROTORDER_ZXY);
    }
}

TEST(TransformationCopy, The_own_matrix_of_rotation_can_be_set)
{
    for (unsigned const before : {2U, 0U, 1U})
    {
        C3DTransfo transfo = MakeState(before);
        transfo.SetRotation(*transfo.GetRotation());
        EXPECT_TRUE(FreshFormsAre(transfo, MatrixOf(Plain())));
    }
}

// --- A translation with scaling 1, a rotation alone -----------------------------------------------------------------

TEST(TransformationCopy, A_translation_alone_sets_the_scaling_to_1_and_leaves_the_rest_and_the_matrix)
{
    struct Case
    {
        unsigned before;
        unsigned after;
        unsigned after_zero;
    };
    Case const cases[] = {{2, 2, 2}, {1, 0, 0}, {0, 0, 0}, {18, 2, 18}, {16, 0, 16}};
    for (Case const & row : cases)
    {
        for (unsigned const others : {0U, 44U})
        {
            for (Vector const & t : {k_T, Vector(0, 0, 0), Vector(-0.0, 0, -0.0), Vector(0, 5e-324, 0),
                                     Vector(k_Nan, 0, 0), Vector(0, 0, k_Nan), Vector(-1, 0, 0)})
            {
                C3DTransfo transfo = MakeState(row.before | others, Sheared());
                Snapshot expected(transfo);
                transfo.Set(t);
                bool const zero = t.X == 0 && t.Y == 0 && t.Z == 0;
                expected.flags = (zero ? row.after_zero : row.after) | others;
                expected.scaling = Vector(1, 1, 1);
                expected.translation = t;
                EXPECT_TRUE(Untouched(expected, transfo)) << row.before;
                EXPECT_EQ(expected.pointer, Inside::ScalingOrientation(transfo));
            }
        }
    }
}

TEST(TransformationCopy, A_translation_alone_keeps_the_rotation)
{
    C3DTransfo transfo = MakeState(2);
    transfo.Set(k_T);
    Rotation rotation;
    transfo.GetRotation(rotation);
    EXPECT_TRUE(SameRotation(rotation, Plain().rotation));
}

TEST(TransformationCopy, A_rotation_alone_resets_scaling_and_translation_and_leaves_the_rest_and_the_matrix)
{
    struct Case
    {
        unsigned before;
        unsigned after;
        unsigned after_marked;
    };
    Case const cases[] = {{2, 2, 18}, {1, 0, 16}, {0, 0, 16}, {18, 2, 18}, {16, 0, 16}};
    for (Case const & row : cases)
    {
        for (unsigned const others : {0U, 44U})
        {
            for (Rotation const & r : {k_R, MarkedIdentity(), Rotation(Quat(1, 0, 0, 0)), Rotation(RotMatrix())})
            {
                C3DTransfo transfo = MakeState(row.before | others, Sheared());
                Snapshot expected(transfo);
                transfo.Set(r);
                expected.flags = (r.QuickIsIdentity() != 0 ? row.after_marked : row.after) | others;
                expected.scaling = Vector(1, 1, 1);
                expected.translation = Vector(0, 0, 0);
                expected.rotation.Set(r, 1);
                EXPECT_TRUE(Untouched(expected, transfo)) << row.before;
                EXPECT_EQ(expected.pointer, Inside::ScalingOrientation(transfo));
            }
        }
    }
}

TEST(TransformationCopy, The_forms_disagree_after_a_translation_or_a_rotation_alone_where_the_matrix_was_fresh)
{
    C3DTransfo translated = MakeState(0);
    translated.Set(k_T);
    C3DTransfo rotated = MakeState(0);
    rotated.Set(k_R);
    for (C3DTransfo * const transfo : {&translated, &rotated})
    {
        EXPECT_TRUE(Near(*transfo->GetMatrix(), MatrixOf(Plain()), 0));
        Vector scaling;
        transfo->GetScaling(scaling);
        EXPECT_TRUE(SameBits(scaling, Vector(1, 1, 1)));
    }
}
