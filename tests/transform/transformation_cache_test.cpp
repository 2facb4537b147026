/// The life of a transformation, its flags, and the questions whether it is the identity and whether it is sheared.

#include "support/allocation_faults.h"
#include "transform/transformation_states.h"

#include <cstring>
#include <memory>
#include <new>
#include <type_traits>

using namespace transformation_test;
using test_support::AllocationFaults;

namespace
{

/// Frees the scaling orientation of one of two transformations that share it, by taking it from the other.
void Disown(C3DTransfo & transfo)
{
    Inside::ScalingOrientation(transfo) = nullptr;
}

/// What a rotation is when it is made.
testing::AssertionResult IsNew(Rotation const & rotation)
{
    return SameRotation(rotation, Rotation());
}

/// Clean components, for tests of values near the identity.
C3DTransfo MakeComponents(Vector const & scaling, Vector const & angles, Vector const & translation)
{
    return MakeState(k_MatrixDirty, {scaling, std::nullopt, Rotation(angles, E3DROTORDER_XYZ), translation});
}

Vector const k_Ones(1, 1, 1);
Vector const k_Zeros(0, 0, 0);

} // namespace

// --- Fields ----------------------------------------------------------------------------------------------------------

TEST(TransformationCache, Fields_lie_in_their_declared_order)
{
    EXPECT_TRUE(std::is_standard_layout_v<C3DTransfo>);
    EXPECT_FALSE(std::is_polymorphic_v<C3DTransfo>);
    constexpr auto offsets = Inside::Offsets();
    EXPECT_EQ(offsets[0], 0U);
    for (std::size_t i = 1; i < offsets.size(); ++i)
    {
        EXPECT_LT(offsets[i - 1], offsets[i]);
    }
}

// --- Construction ----------------------------------------------------------------------------------------------------

TEST(TransformationCache, Default_construction_is_the_flagged_identity_with_QN_scaling)
{
    C3DTransfo transfo;
    Snapshot const made(transfo);
    EXPECT_EQ(made.flags, 22U);
    EXPECT_TRUE(SameBits(made.scaling, k_Ones));
    EXPECT_TRUE(SameBits(made.translation, k_Zeros));
    EXPECT_TRUE(IsNew(made.rotation));
    EXPECT_EQ(made.pointer, nullptr);
    EXPECT_EQ(made.matrix_order, E3DROTORDER_XYZ);
    EXPECT_EQ(made.matrix.GetSclSignBits(), 0);
    EXPECT_EQ(transfo.GetQNScalingFlag(), 1);
    EXPECT_EQ(transfo.GetPreserveRotOrderFlag(), 0);
    EXPECT_EQ(transfo.GetXYZRotOrder(), E3DROTORDER_XYZ);
}

TEST(TransformationCache, A_fresh_transformation_gives_the_identity_matrix_without_sign_bits)
{
    C3DTransfo transfo;
    FillStale(transfo);
    EXPECT_TRUE(transfo.QuickIsIdentity());
    Matrix matrix = MatrixOf(Plain());
    transfo.GetMatrix(matrix);
    EXPECT_TRUE(SameBits(matrix, Matrix()));
    EXPECT_EQ(matrix.GetSclSignBits(), 0);
    EXPECT_EQ(Inside::Flags(transfo), 20U);
}

TEST(TransformationCache, Construction_without_initialisation_writes_no_number)
{
    for (bool const qn_scaling : {false, true})
    {
        alignas(C3DTransfo) unsigned char memory[sizeof(C3DTransfo)];
        std::memset(memory, 0xAB, sizeof memory);
        auto * const transfo = new (memory) C3DTransfo(C3DInitRequest_DoNotInitialize(), qn_scaling);
        EXPECT_EQ(Inside::Flags(*transfo), qn_scaling ? 7U : 3U);
        EXPECT_EQ(RotationInside(Inside::Rotation(*transfo)).Flags(), rotation_test::k_Unset);
        EXPECT_EQ(Inside::Rotation(*transfo).GetXYZRotOrder(), E3DROTORDER_XYZ);
        EXPECT_EQ(Inside::MatrixRotOrder(*transfo), E3DROTORDER_XYZ);
        EXPECT_EQ(Inside::ScalingOrientation(*transfo), nullptr);
        auto const unwritten = [&](auto const & object)
        {
            unsigned char bytes[sizeof object];
            std::memcpy(bytes, &object, sizeof object);
            return std::all_of(bytes, bytes + sizeof bytes, [](unsigned char byte) { return byte == 0xAB; });
        };
        EXPECT_TRUE(unwritten(Inside::Scaling(*transfo)));
        EXPECT_TRUE(unwritten(Inside::Translation(*transfo)));
        EXPECT_TRUE(unwritten(Inside::Matrix(*transfo)));
        EXPECT_TRUE(unwritten(RotationInside(Inside::Rotation(*transfo)).Quat()));
        EXPECT_TRUE(unwritten(RotationInside(Inside::Rotation(*transfo)).Matrix()));
        EXPECT_TRUE(unwritten(RotationInside(Inside::Rotation(*transfo)).Angles()));
        transfo->~C3DTransfo();
    }
}

TEST(TransformationCache, An_uninitialised_transformation_is_filled_by_a_set_of_everything)
{
    C3DTransfo source = MakeState(k_MatrixDirty, Sheared());
    Values const values = Sheared();
    for (bool const qn_scaling : {false, true})
    {
        unsigned const qn = qn_scaling ? k_QNScaling : 0;
        C3DTransfo components(C3DInitRequest_DoNotInitialize(), qn_scaling);
        components.Set(values.scaling, *values.orientation, values.rotation, values.translation);
        EXPECT_EQ(Inside::Flags(components), k_MatrixDirty | qn);
        EXPECT_TRUE(FreshFormsAre(components, MatrixOf(values)));

        C3DTransfo matrix(C3DInitRequest_DoNotInitialize(), qn_scaling);
        matrix.Set(MatrixOf(values));
        EXPECT_EQ(Inside::Flags(matrix), k_ComponentsDirty | qn);
        EXPECT_TRUE(FreshFormsAre(matrix, MatrixOf(values)));
        EXPECT_EQ(matrix.GetXYZRotOrder(), E3DROTORDER_XYZ);

        C3DTransfo copy(C3DInitRequest_DoNotInitialize(), qn_scaling);
        copy.Set(source);
        EXPECT_TRUE(SameState(copy, source));
    }
}

TEST(TransformationCache, Construction_from_components_takes_the_rotation_into_order_XYZ)
{
    Values const values = Plain();
    C3DTransfo transfo(values.scaling, values.rotation, values.translation);
    EXPECT_EQ(Inside::Flags(transfo), 6U);
    EXPECT_TRUE(SameBits(Inside::Scaling(transfo), values.scaling));
    EXPECT_TRUE(SameBits(Inside::Translation(transfo), values.translation));
    EXPECT_EQ(Inside::ScalingOrientation(transfo), nullptr);
    EXPECT_EQ(Inside::MatrixRotOrder(transfo), E3DROTORDER_XYZ);
    Rotation expected;
    expected.Set(values.rotation, 1);
    EXPECT_EQ(expected.GetXYZRotOrder(), E3DROTORDER_XYZ);
    EXPECT_TRUE(SameRotation(Inside::Rotation(transfo), expected));
    EXPECT_LE(Distance(Inside::Rotation(transfo), values.rotation), 1e-14);
}

TEST(TransformationCache, Construction_from_identity_values_leaves_the_identity_flag_clear)
{
    C3DTransfo transfo(k_Ones, Rotation(), k_Zeros);
    EXPECT_EQ(Inside::Flags(transfo), 6U);
    EXPECT_FALSE(transfo.QuickIsIdentity());
    EXPECT_EQ(Inside::Rotation(transfo).QuickIsIdentity(), 1);
    Rotation other_order;
    other_order.Set(E3DROTORDER_ZYX, 1);
    C3DTransfo kept(k_Ones, other_order, k_Zeros);
    EXPECT_EQ(kept.GetXYZRotOrder(), E3DROTORDER_XYZ);
    EXPECT_EQ(Inside::Flags(C3DTransfo(k_Ones, Rotation(), Rotation(), k_Zeros)), 6U);
    EXPECT_EQ(Inside::Flags(C3DTransfo(k_Ones, Rotation())), 6U);
}

TEST(TransformationCache, The_second_of_two_arguments_of_construction_is_the_scaling_orientation)
{
    Rotation const orientation(0.2, 0.4, -0.6, E3DROTORDER_YZX);
    C3DTransfo transfo(Vector(2, 3, 4), orientation);
    Snapshot made(transfo);
    EXPECT_EQ(made.flags, 6U);
    EXPECT_TRUE(SameBits(made.scaling, Vector(2, 3, 4)));
    EXPECT_TRUE(SameBits(made.translation, k_Zeros));
    EXPECT_TRUE(IsNew(made.rotation));
    ASSERT_TRUE(made.orientation);
    EXPECT_TRUE(SameRotation(*made.orientation, orientation));
    EXPECT_TRUE(SameBits(made.matrix, Matrix()));
    EXPECT_EQ(made.matrix.GetSclSignBits(), 0);
    EXPECT_EQ(made.matrix_order, E3DROTORDER_XYZ);
}

TEST(TransformationCache, Construction_from_all_four_components)
{
    Values const values = Sheared();
    C3DTransfo transfo(values.scaling, *values.orientation, values.rotation, values.translation);
    C3DTransfo expected;
    expected.Set(values.scaling, *values.orientation, values.rotation, values.translation);
    EXPECT_EQ(Inside::Flags(transfo), 6U);
    EXPECT_TRUE(SameState(transfo, expected));
    EXPECT_EQ(Inside::ScalingOrientation(transfo)->GetXYZRotOrder(), E3DROTORDER_YZX);
    EXPECT_EQ(transfo.GetXYZRotOrder(), E3DROTORDER_XYZ);
    EXPECT_TRUE(FreshFormsAre(transfo, MatrixOf(values)));
}

TEST(TransformationCache, Construction_clamps_the_scaling_and_stores_no_orientation_near_the_identity)
{
    Rotation const nearly(1e-12, -1e-12, 0, E3DROTORDER_XYZ);
    Vector const small(1e-13, -1e-13, 0);
    Vector const clamped(1e-12, -1e-12, 1e-12);
    C3DTransfo three(small, nearly, k_Zeros);
    C3DTransfo two(small, nearly);
    C3DTransfo four(small, nearly, nearly, k_Zeros);
    for (C3DTransfo * const transfo : {&three, &two, &four})
    {
        EXPECT_TRUE(SameBits(Inside::Scaling(*transfo), clamped));
        EXPECT_EQ(Inside::ScalingOrientation(*transfo), nullptr);
    }
}

// --- Copies and the end ----------------------------------------------------------------------------------------------

TEST(TransformationCache, The_copy_constructor_makes_an_independent_copy_of_everything)
{
    for (unsigned flags = 0; flags < 64; ++flags)
    {
        C3DTransfo source = MakeState(flags, Sheared());
        Inside::Matrix(source).SetMaskInfo(0xF5);
        Snapshot const before(source);
        C3DTransfo copy(source);
        Snapshot const after(copy);
        EXPECT_TRUE(SameState(before, after));
        EXPECT_EQ(before.matrix_order, after.matrix_order);
        EXPECT_EQ(before.orientation.has_value(), after.orientation.has_value());
        EXPECT_TRUE(before.pointer == nullptr || before.pointer != after.pointer);
        EXPECT_TRUE(Untouched(before, source));
        copy.Set(Vector(9, 9, 9), Rotation(1, 1, 1, E3DROTORDER_XYZ), Rotation(2, 2, 2, E3DROTORDER_XYZ), k_Ones);
        EXPECT_TRUE(Untouched(before, source));
    }
}

TEST(TransformationCache, Assignment_copies_every_field_and_the_pointer_itself)
{
    for (unsigned flags = 0; flags < 64; ++flags)
    {
        C3DTransfo source = MakeState(flags, Sheared());
        C3DTransfo target = MakeState(k_PreserveOrder | k_MatrixDirty, OtherPlain());
        C3DTransfo & result = target = source;
        EXPECT_EQ(&result, &target);
        EXPECT_EQ(Inside::ScalingOrientation(target), Inside::ScalingOrientation(source));
        EXPECT_TRUE(Untouched(Snapshot(source), target));
        Disown(target);
    }
}

TEST(TransformationCache, Assignment_loses_the_former_orientation_of_the_target)
{
    C3DTransfo target = MakeState(k_MatrixDirty, Sheared());
    std::unique_ptr<Rotation> const lost(Inside::ScalingOrientation(target));
    C3DTransfo source = MakeState(k_MatrixDirty);
    target = source;
    EXPECT_EQ(Inside::ScalingOrientation(target), nullptr);
    // It is still there: only its owner forgot it.
    EXPECT_TRUE(SameRotation(*lost, *Sheared().orientation));
}

TEST(TransformationCache, Assignment_to_itself_changes_nothing)
{
    C3DTransfo transfo = MakeState(0, Sheared());
    Snapshot const before(transfo);
    C3DTransfo & same = transfo;
    transfo = same;
    EXPECT_TRUE(Untouched(before, transfo));
    EXPECT_EQ(before.pointer, Inside::ScalingOrientation(transfo));
}

TEST(TransformationCache, Every_scaling_orientation_is_freed)
{
    Values const values = Sheared();
    AllocationFaults const ledger;
    {
        C3DTransfo first(values.scaling, *values.orientation, values.rotation, values.translation);
        C3DTransfo second(first);
        second.Set(values.scaling, *values.orientation, values.rotation, values.translation);
        second.SetScaling(values.scaling, *values.orientation);
        second.SetScalingOrientation(0.1, 0.2, 0.3);
        C3DTransfo third;
        third.Set(second);
        third.SetIdentity();
        C3DTransfo fourth(values.scaling, *values.orientation);
    }
    EXPECT_EQ(ledger.GetOutstanding(), 0);
    EXPECT_GT(ledger.GetRequests(), 3);
}

TEST(TransformationCache, Init_forgets_the_orientation_without_deleting_it)
{
    for (unsigned flags = 0; flags < 64; ++flags)
    {
        C3DTransfo transfo = MakeState(flags & ~k_Identity, Sheared());
        Snapshot const before(transfo);
        std::unique_ptr<Rotation> const forgotten(Inside::ScalingOrientation(transfo));
        Inside::SetFlags(transfo, flags);
        Inside::Init(transfo);
        EXPECT_EQ(Inside::Flags(transfo), 7U);
        EXPECT_EQ(Inside::ScalingOrientation(transfo), nullptr);
        EXPECT_TRUE(SameRotation(*forgotten, *before.orientation));
        Snapshot const after(transfo);
        EXPECT_TRUE(SameBits(before.scaling, after.scaling));
        EXPECT_TRUE(SameBits(before.translation, after.translation));
        EXPECT_TRUE(SameMatrix(before, after));
    }
}

TEST(TransformationCache, GetMemSize_counts_the_pointer_and_the_orientation_behind_it)
{
    C3DTransfo transfo;
    EXPECT_EQ(transfo.GetMemSize(), static_cast<long>(sizeof(Rotation *)));
    transfo.SetScalingOrientation(0.1, 0.2, 0.3);
    EXPECT_EQ(transfo.GetMemSize(), static_cast<long>(sizeof(Rotation *) + sizeof(Rotation)));
    transfo.SetIdentity();
    EXPECT_EQ(transfo.GetMemSize(), static_cast<long>(sizeof(Rotation *) + sizeof(Rotation))) << "it was flagged";
    transfo.SetTranslation(1, 0, 0);
    transfo.SetIdentity();
    EXPECT_EQ(transfo.GetMemSize(), static_cast<long>(sizeof(Rotation *)));
}

// --- Flags -----------------------------------------------------------------------------------------------------------

TEST(TransformationCache, Each_accessor_sets_clears_and_reads_its_own_bit)
{
    struct Row
    {
        unsigned bit;
        void (*set)(C3DTransfo &, int);
        int (*get)(C3DTransfo &);
    };
    Row const rows[] = {
        {1, [](C3DTransfo & t, int on) { Inside::SetComponentsDirty(t, on); },
         [](C3DTransfo & t) { return Inside::AreComponentsDirty(t); }},
        {2, [](C3DTransfo & t, int on) { Inside::SetXfoMatDirty(t, on); },
         [](C3DTransfo & t) { return Inside::IsXfoMatDirty(t); }},
        {4, [](C3DTransfo & t, int on) { Inside::SetQNScaling(t, on); },
         [](C3DTransfo & t) { return Inside::IsQNScaling(t); }},
        {8, [](C3DTransfo & t, int on) { t.SetPreserveRotOrderFlag(on); },
         [](C3DTransfo & t) { return t.GetPreserveRotOrderFlag(); }},
        {16, [](C3DTransfo & t, int on) { Inside::SetDefinitelyIdentity(t, on); },
         [](C3DTransfo & t) { return static_cast<int>(t.QuickIsIdentity()); }},
    };
    for (Row const & row : rows)
    {
        for (unsigned flags = 0; flags < 256; ++flags)
        {
            for (int const on : {0, 1, 2, -1, 256})
            {
                C3DTransfo transfo;
                Inside::SetFlags(transfo, flags);
                EXPECT_EQ(row.get(transfo), (flags & row.bit) != 0 ? 1 : 0);
                EXPECT_EQ(transfo.GetQNScalingFlag(), (flags & 4) != 0 ? 1 : 0);
                row.set(transfo, on);
                EXPECT_EQ(Inside::Flags(transfo), on != 0 ? flags | row.bit : flags & ~row.bit);
            }
        }
    }
}

TEST(TransformationCache, SetPreserveRotOrderFlag_changes_nothing_else)
{
    for (unsigned flags = 0; flags < 64; ++flags)
    {
        C3DTransfo transfo = MakeState(flags, Sheared());
        Snapshot before(transfo);
        transfo.SetPreserveRotOrderFlag(1);
        before.flags |= k_PreserveOrder;
        EXPECT_TRUE(Untouched(before, transfo));
        transfo.SetPreserveRotOrderFlag(0);
        before.flags &= ~k_PreserveOrder;
        EXPECT_TRUE(Untouched(before, transfo));
    }
}

// --- Allocation of the scaling orientation ---------------------------------------------------------------------------

TEST(TransformationCache, A_new_scaling_orientation_is_the_identity_in_order_XYZ)
{
    C3DTransfo transfo = MakeState(k_MatrixDirty);
    Snapshot const before(transfo);
    Inside::AllocateScalingOrientation(transfo, true);
    ASSERT_NE(Inside::ScalingOrientation(transfo), nullptr);
    Rotation & orientation = *Inside::ScalingOrientation(transfo);
    RotationInside inside(orientation);
    EXPECT_EQ(orientation.GetXYZRotOrder(), E3DROTORDER_XYZ);
    EXPECT_TRUE(rotation_test::Same(inside.Quat(), Quat(1, 0, 0, 0)));
    EXPECT_EQ(inside.IsQuatDirty(), 0);
    EXPECT_EQ(inside.IsMatDirty(), 1);
    EXPECT_EQ(inside.AreAnglesDirty(), 1);
    EXPECT_EQ(Inside::Flags(transfo), before.flags);

    orientation.Set(1, 2, 3, E3DROTORDER_ZYX);
    Rotation kept = orientation;
    Inside::AllocateScalingOrientation(transfo, true);
    EXPECT_EQ(Inside::ScalingOrientation(transfo), &orientation);
    EXPECT_TRUE(SameRotation(orientation, kept));

    Inside::AllocateScalingOrientation(transfo, false);
    EXPECT_EQ(Inside::ScalingOrientation(transfo), nullptr);
    Inside::AllocateScalingOrientation(transfo, false);
    EXPECT_EQ(Inside::ScalingOrientation(transfo), nullptr);
    EXPECT_TRUE(Untouched(before, transfo));
}

TEST(TransformationCache, Without_memory_there_is_no_scaling_orientation)
{
    C3DTransfo transfo = MakeState(k_MatrixDirty);
    Snapshot const before(transfo);
    {
        AllocationFaults const refuse = AllocationFaults::RefuseOne(0);
        Inside::AllocateScalingOrientation(transfo, true);
    }
    EXPECT_TRUE(Untouched(before, transfo));
    EXPECT_EQ(Inside::ScalingOrientation(transfo), nullptr);
}

TEST(TransformationCache, Without_memory_the_copy_constructor_copies_the_rest)
{
    C3DTransfo source = MakeState(k_MatrixDirty, Sheared());
    alignas(C3DTransfo) unsigned char memory[sizeof(C3DTransfo)];
    C3DTransfo * copy = nullptr;
    {
        AllocationFaults const refuse = AllocationFaults::RefuseOne(0);
        copy = new (memory) C3DTransfo(source);
    }
    C3DTransfo without_orientation = MakeState(k_MatrixDirty, Plain());
    EXPECT_TRUE(SameState(*copy, without_orientation));
    copy->~C3DTransfo();
}

// --- Identity --------------------------------------------------------------------------------------------------------

TEST(TransformationCache, QuickIsIdentity_looks_at_the_flag_alone)
{
    for (unsigned flags = 0; flags < 256; ++flags)
    {
        C3DTransfo transfo = MakeState(0);
        Inside::SetFlags(transfo, flags);
        Snapshot const before(transfo);
        EXPECT_EQ(transfo.QuickIsIdentity(), (flags & 16) != 0);
        EXPECT_TRUE(Untouched(before, transfo));
        Inside::SetFlags(transfo, 0);
    }
    C3DTransfo unflagged = MakeState(0, IdentityValues());
    EXPECT_FALSE(unflagged.QuickIsIdentity());
}

TEST(TransformationCache, What_is_flagged_passes_every_identity_test_unread)
{
    for (unsigned const fresh : k_Freshness)
    {
        C3DTransfo transfo = MakeState(fresh, Sheared());
        Inside::SetFlags(transfo, fresh | k_Identity);
        Snapshot const before(transfo);
        EXPECT_TRUE(transfo.IsExactlyIdentity());
        EXPECT_TRUE(transfo.IsIdentity(0));
        EXPECT_TRUE(transfo.IsIdentity(1e-9));
        EXPECT_TRUE(transfo.IsIdentity(-1));
        EXPECT_TRUE(transfo.IsIdentity(k_Nan));
        EXPECT_TRUE(Untouched(before, transfo));
    }
}

TEST(TransformationCache, The_exact_test_trusts_a_fresh_matrix_and_leaves_no_trace_then)
{
    for (unsigned const fresh : {0U, k_ComponentsDirty})
    {
        for (double const zero : {0.0, -0.0})
        {
            // The components disagree: they are not asked.
            C3DTransfo transfo = MakeState(fresh, IdentityValues());
            if (fresh == 0)
            {
                Inside::Scaling(transfo) = Vector(2, 2, 2);
            }
            Snapshot const before(transfo);
            EXPECT_TRUE(transfo.IsExactlyIdentity());
            EXPECT_TRUE(transfo.IsIdentity(zero));
            EXPECT_TRUE(Untouched(before, transfo));
        }
    }
    for (int i = 0; i < 16; ++i)
    {
        C3DTransfo transfo = MakeState(0, IdentityValues());
        Matrix & matrix = Inside::Matrix(transfo);
        matrix.Set(i / 4, i % 4, std::nextafter(matrix.Get(i / 4, i % 4), 2.0));
        EXPECT_FALSE(transfo.IsExactlyIdentity()) << i;
        EXPECT_FALSE(transfo.IsIdentity(0)) << i;
        EXPECT_EQ(Inside::Flags(transfo), 0U);
    }
}

TEST(TransformationCache, The_exact_test_of_components_sets_the_flag)
{
    for (int form = 0; form < 3; ++form)
    {
        for (double const zero : {0.0, -0.0})
        {
            C3DTransfo transfo = MakeComponents(k_Ones, Vector(zero, zero, zero), Vector(zero, -zero, zero));
            bool const answer = form == 0   ? transfo.IsExactlyIdentity()
                                : form == 1 ? transfo.IsIdentity(0.0)
                                            : transfo.IsIdentity(-0.0);
            EXPECT_TRUE(answer);
            EXPECT_EQ(Inside::Flags(transfo), k_MatrixDirty | k_Identity);
        }
    }
}

TEST(TransformationCache, The_exact_test_of_components_rejects_the_next_number_and_NaN)
{
    double const tiny = 5e-324;
    for (int i = 0; i < 3; ++i)
    {
        C3DTransfo candidates[] = {
            MakeComponents(k_Ones, k_Zeros, Vector(i, tiny)),
            MakeComponents(k_Ones, k_Zeros, Vector(i, k_Nan)),
            MakeComponents(k_Ones, Vector(i, tiny), k_Zeros),
            MakeComponents(k_Ones, Vector(i, k_Nan), k_Zeros),
            MakeComponents(k_Ones, Vector(i, rotation_test::k_TwoPi), k_Zeros),
            MakeComponents(Vector(k_Ones).Set(i, std::nextafter(1.0, 2.0)), k_Zeros, k_Zeros),
            MakeComponents(Vector(k_Ones).Set(i, std::nextafter(1.0, 0.0)), k_Zeros, k_Zeros),
            MakeComponents(Vector(k_Ones).Set(i, -1.0), k_Zeros, k_Zeros),
            MakeComponents(Vector(k_Ones).Set(i, k_Nan), k_Zeros, k_Zeros),
        };
        for (C3DTransfo & transfo : candidates)
        {
            EXPECT_FALSE(transfo.IsExactlyIdentity());
            EXPECT_FALSE(transfo.IsIdentity(0));
            EXPECT_EQ(Inside::Flags(transfo), k_MatrixDirty);
        }
    }
}

TEST(TransformationCache, The_identity_tests_of_components_do_not_look_at_the_scaling_orientation)
{
    for (double const epsilon : {0.0, 1e-9})
    {
        Values values = IdentityValues();
        values.orientation = Rotation(0.5, 0.6, 0.7, E3DROTORDER_XYZ);
        C3DTransfo transfo = MakeState(k_MatrixDirty, values);
        Rotation const * const orientation = Inside::ScalingOrientation(transfo);
        EXPECT_TRUE(transfo.IsIdentity(epsilon));
        EXPECT_EQ(Inside::ScalingOrientation(transfo), orientation);
    }
}

TEST(TransformationCache, The_tolerance_includes_its_limit_for_components_and_sets_no_flag)
{
    double const epsilon = 0x1p-20; // so that 1 + epsilon and its difference from 1 are exact
    double const more = std::nextafter(epsilon, 1.0);
    double const above = std::nextafter(1 + epsilon, 2.0);
    double const below = std::nextafter(1 - epsilon, 0.0);
    for (int i = 0; i < 3; ++i)
    {
        struct Row
        {
            C3DTransfo transfo;
            bool expected;
        };
        Row rows[] = {
            {MakeComponents(k_Ones, k_Zeros, Vector(i, epsilon)), true},
            {MakeComponents(k_Ones, k_Zeros, Vector(i, -epsilon)), true},
            {MakeComponents(k_Ones, k_Zeros, Vector(i, more)), false},
            {MakeComponents(k_Ones, k_Zeros, Vector(i, -more)), false},
            {MakeComponents(k_Ones, k_Zeros, Vector(i, k_Nan)), false},
            {MakeComponents(k_Ones, Vector(i, epsilon), k_Zeros), true},
            {MakeComponents(k_Ones, Vector(i, -more), k_Zeros), false},
            {MakeComponents(Vector(k_Ones).Set(i, 1 + epsilon), k_Zeros, k_Zeros), true},
            {MakeComponents(Vector(k_Ones).Set(i, 1 - epsilon), k_Zeros, k_Zeros), true},
            {MakeComponents(Vector(k_Ones).Set(i, above), k_Zeros, k_Zeros), false},
            {MakeComponents(Vector(k_Ones).Set(i, below), k_Zeros, k_Zeros), false},
            {MakeComponents(Vector(k_Ones).Set(i, -1), k_Zeros, k_Zeros), false},
            {MakeComponents(Vector(k_Ones).Set(i, k_Nan), k_Zeros, k_Zeros), false},
        };
        for (Row & row : rows)
        {
            Snapshot const before(row.transfo);
            EXPECT_EQ(row.transfo.IsIdentity(epsilon), row.expected) << &row - rows;
            EXPECT_TRUE(Untouched(before, row.transfo));
            EXPECT_FALSE(row.transfo.IsIdentity(-epsilon));
            EXPECT_FALSE(row.transfo.IsIdentity(k_Nan));
        }
    }
    C3DTransfo exact = MakeComponents(k_Ones, k_Zeros, k_Zeros);
    EXPECT_TRUE(exact.IsIdentity(epsilon));
    EXPECT_EQ(Inside::Flags(exact), k_MatrixDirty);
}

TEST(TransformationCache, With_a_tolerance_a_fresh_matrix_is_asked_by_its_own_test)
{
    double const epsilon = 1e-6;
    for (unsigned const fresh : {0U, k_ComponentsDirty})
    {
        for (int i = 0; i < 16; ++i)
        {
            for (double const offset : {0.5e-6, -0.5e-6, 2e-6, -2e-6, 1e-6})
            {
                C3DTransfo transfo = MakeState(fresh, IdentityValues());
                if (fresh == 0)
                {
                    Inside::Translation(transfo) = Vector(5, 5, 5);
                }
                Matrix & matrix = Inside::Matrix(transfo);
                matrix.Set(i / 4, i % 4, matrix.Get(i / 4, i % 4) + offset);
                Snapshot const before(transfo);
                EXPECT_EQ(transfo.IsIdentity(epsilon), before.matrix.IsIdentity(epsilon)) << i << " " << offset;
                EXPECT_TRUE(Untouched(before, transfo));
            }
        }
        C3DTransfo far_off = MakeState(fresh, Plain());
        EXPECT_FALSE(far_off.IsIdentity(epsilon));
    }
}

TEST(TransformationCache, A_vector_of_ones_clears_the_flag_and_the_exact_test_finds_the_identity_again)
{
    C3DTransfo transfo;
    transfo.SetScaling(1, 1, 1);
    EXPECT_TRUE(transfo.QuickIsIdentity());
    transfo.SetScaling(Vector(1, 1, 1));
    EXPECT_FALSE(transfo.QuickIsIdentity());
    EXPECT_TRUE(transfo.IsIdentity(0));
    EXPECT_TRUE(transfo.QuickIsIdentity());
}

// --- Shear -----------------------------------------------------------------------------------------------------------

TEST(TransformationCache, HasShearing_of_components_asks_for_a_scaling_orientation)
{
    for (unsigned const fresh : {0U, k_MatrixDirty})
    {
        C3DTransfo plain = MakeState(fresh, Plain());
        C3DTransfo almost = MakeState(fresh, AlmostUnsheared());
        C3DTransfo sheared = MakeState(fresh, Sheared());
        // The matrix, even if it is fresh, is not asked.
        Inside::Matrix(plain) = MatrixOf(Sheared());
        Inside::Matrix(sheared) = MatrixOf(Plain());
        Snapshot const before(sheared);
        EXPECT_FALSE(plain.HasShearing());
        EXPECT_FALSE(almost.HasShearing());
        EXPECT_TRUE(sheared.HasShearing());
        EXPECT_TRUE(Untouched(before, sheared));
    }
}

TEST(TransformationCache, HasShearing_tells_an_orientation_from_the_identity_at_1e_12)
{
    for (bool const beyond : {false, true})
    {
        Values values = Plain();
        values.orientation = Rotation(0, beyond ? std::nextafter(1e-12, 1.0) : 1e-12, 0, E3DROTORDER_XYZ);
        C3DTransfo transfo = MakeState(k_MatrixDirty, values);
        EXPECT_EQ(transfo.HasShearing(), beyond);
        EXPECT_EQ(transfo.IsScalingOrientationExisting(), beyond);
    }
}

TEST(TransformationCache, An_orientation_under_a_uniform_scale_counts_as_shear)
{
    Values values = Sheared();
    values.scaling = Vector(2, 2, 2);
    C3DTransfo transfo = MakeState(k_MatrixDirty, values);
    EXPECT_TRUE(transfo.HasShearing());
    C3DTransfo matrix = MakeState(k_ComponentsDirty, values);
    EXPECT_FALSE(matrix.HasShearing());
}

TEST(TransformationCache, What_is_flagged_as_identity_has_no_shear)
{
    for (unsigned const fresh : k_Freshness)
    {
        C3DTransfo transfo = MakeState(fresh, Sheared());
        Inside::SetFlags(transfo, fresh | k_Identity);
        Inside::Matrix(transfo) = MatrixOf(Sheared());
        EXPECT_FALSE(transfo.HasShearing());
    }
}

TEST(TransformationCache, HasShearing_of_a_matrix_compares_each_dot_product_of_its_rows_as_they_stand_with_1e_6)
{
    for (int a = 0; a < 3; ++a)
    {
        for (int b = a + 1; b < 3; ++b)
        {
            for (double const length : {1.0, 1000.0, 1e-3})
            {
                for (double const sign : {1.0, -1.0})
                {
                    // Row a is the axis a of this length; row b has, along it, what makes the dot product.
                    auto const has_shear = [&](double dot)
                    {
                        Matrix matrix;
                        matrix.Set(a, a, length).Set(b, b, length).Set(b, a, sign * dot / length);
                        C3DTransfo transfo = MakeState(k_ComponentsDirty);
                        Inside::Matrix(transfo) = matrix;
                        return transfo.HasShearing();
                    };
                    EXPECT_FALSE(has_shear(0.999999e-6));
                    EXPECT_TRUE(has_shear(1.000001e-6));
                }
            }
        }
    }
}

TEST(TransformationCache, A_dot_product_of_exactly_1e_6_is_no_shear_and_neither_is_NaN)
{
    for (int a = 0; a < 3; ++a)
    {
        for (int b = a + 1; b < 3; ++b)
        {
            C3DTransfo transfo = MakeState(k_ComponentsDirty);
            auto const has_shear = [&](double dot)
            {
                Inside::Matrix(transfo) = Matrix();
                Inside::Matrix(transfo).Set(b, a, dot);
                return transfo.HasShearing();
            };
            EXPECT_FALSE(has_shear(1e-6));
            EXPECT_FALSE(has_shear(-1e-6));
            EXPECT_TRUE(has_shear(std::nextafter(1e-6, 1.0)));
            EXPECT_TRUE(has_shear(std::nextafter(-1e-6, -1.0)));
            EXPECT_FALSE(has_shear(k_Nan));
            EXPECT_TRUE(has_shear(k_Infinity));
        }
    }
}

TEST(TransformationCache, HasShearing_of_a_matrix_sums_all_three_columns_and_ignores_the_rest)
{
    // Perpendicular rows with large products in each column, and a last row and column that would look like shear.
    C3DTransfo transfo = MakeState(k_ComponentsDirty);
    Inside::Matrix(transfo) = MakeMatrix({1, 2, 2, 50, 2, 1, -2, 60, 2, -2, 1, 70, 5, 6, 7, 1}, 0);
    EXPECT_FALSE(transfo.HasShearing());
    for (int column = 0; column < 3; ++column)
    {
        C3DTransfo sheared = transfo;
        Matrix & matrix = Inside::Matrix(sheared);
        matrix.Set(0, column, matrix.Get(0, column) + 1e-4);
        EXPECT_TRUE(sheared.HasShearing());
    }
    // A stale orientation has no say.
    C3DTransfo stale = MakeState(k_ComponentsDirty, Sheared());
    Inside::Matrix(stale) = Matrix();
    EXPECT_FALSE(stale.HasShearing());
}
