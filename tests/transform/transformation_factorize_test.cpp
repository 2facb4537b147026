/// The two ways between the components of a transformation and its matrix.

#include "support/allocation_faults.h"
#include "transform/transformation_states.h"

using namespace transformation_test;
using test_support::AllocationFaults;
using test_support::Random;

namespace
{

constexpr unsigned k_ScalingPart = 1;
constexpr unsigned k_OrientationPart = 2;
constexpr unsigned k_RotationPart = 4;
constexpr unsigned k_TranslationPart = 8;

/// A matrix whose first two rows have this dot product and the lengths `length`.
Matrix WithDotProduct(double dot, double length = 1)
{
    Matrix matrix;
    matrix.Set(0, 0, length).Set(1, 1, length).Set(2, 2, 3).Set(1, 0, dot / length);
    return matrix;
}

C3DTransfo OfMatrix(Matrix const & matrix)
{
    C3DTransfo transfo;
    transfo.Set(matrix);
    return transfo;
}

/// What a matrix with perpendicular rows reads as.
Values ReadRows(Matrix const & matrix, tagE3DROTORDER order)
{
    Values values;
    matrix.GetScaling(values.scaling);
    matrix.GetRotation(values.rotation);
    values.rotation.Set(order, 1);
    matrix.GetTranslation(values.translation);
    return values;
}

/// What any matrix reads as by its decomposition U D V: the orientation U^T, the scale D and the rotation U V.
Values ReadDecomposition(Matrix const & matrix, tagE3DROTORDER order)
{
    RotMatrix u;
    Matrix remainder;
    matrix.GetAffineDecomposition(u, remainder);
    Values values;
    RotMatrix v;
    RotMatrix uv;
    remainder.GetScaling(values.scaling);
    values.rotation.Set(uv.Mul(u, remainder.GetRotation(v)));
    values.rotation.Set(order, 1);
    values.orientation = Rotation(u.Transpose());
    matrix.GetTranslation(values.translation);
    return values;
}

struct Kind
{
    char const * name;
    Values matrix;
    bool is_sheared;
};

Kind const k_Kinds[] = {
    {"plain", Plain(), false},
    {"other plain", OtherPlain(), false},
    {"identity without the flag", IdentityValues(), false},
    {"orientation under a uniform scale",
     {Vector(2, 2, 2), Sheared().orientation, Plain().rotation, Plain().translation},
     false},
    {"sheared", Sheared(), true},
    {"other sheared", OtherSheared(), true},
};

/// A transformation with a fresh matrix alone, with or without a stale orientation.
C3DTransfo MakeDirty(Values const & values, unsigned flags, bool with_stale_orientation)
{
    C3DTransfo transfo = MakeState(flags, values);
    Inside::AllocateScalingOrientation(transfo, with_stale_orientation);
    FillStale(transfo);
    return transfo;
}

/// The parts that a mask names are these, and the others are as before.
void ExpectParts(C3DTransfo & transfo, Snapshot const & before, unsigned mask, Values const & expected)
{
    Snapshot const after(transfo);
    EXPECT_TRUE((mask & k_ScalingPart) != 0 ? Near(after.scaling, expected.scaling, 1e-14)
                                            : testing::AssertionResult(SameBits(after.scaling, before.scaling)));
    EXPECT_TRUE((mask & k_TranslationPart) != 0
                    ? testing::AssertionResult(SameBits(after.translation, expected.translation))
                    : testing::AssertionResult(SameBits(after.translation, before.translation)));
    if ((mask & k_RotationPart) != 0)
    {
        EXPECT_LE(Distance(after.rotation, expected.rotation), 1e-14);
        EXPECT_EQ(after.rotation.GetXYZRotOrder(), expected.rotation.GetXYZRotOrder());
    }
    else
    {
        EXPECT_TRUE(SameRotation(after.rotation, before.rotation));
    }
}

void ExpectFactorize(Kind const & kind, unsigned mask, unsigned others, bool with_stale_orientation)
{
    SCOPED_TRACE(testing::Message() << kind.name << ", mask " << mask << ", flags " << others
                                    << ", with a stale orientation: " << with_stale_orientation);
    C3DTransfo transfo = MakeDirty(kind.matrix, k_ComponentsDirty | others, with_stale_orientation);
    Inside::MatrixRotOrder(transfo) = E3DROTORDER_YZX;
    Snapshot const before(transfo);
    Inside::Factorize(transfo, mask);

    EXPECT_EQ(Inside::Flags(transfo), others);
    EXPECT_TRUE(SameMatrix(before, Snapshot(transfo)));
    Values const expected =
        kind.is_sheared ? ReadDecomposition(before.matrix, E3DROTORDER_YZX) : ReadRows(before.matrix, E3DROTORDER_YZX);
    ExpectParts(transfo, before, mask, expected);
    Snapshot const after(transfo);
    if (!kind.is_sheared)
    {
        EXPECT_EQ(after.pointer, nullptr) << "deleted whatever the mask says";
    }
    else if ((mask & k_OrientationPart) != 0)
    {
        ASSERT_TRUE(after.orientation);
        EXPECT_LE(Distance(*after.orientation, *expected.orientation), 1e-14);
        EXPECT_EQ(after.orientation->GetXYZRotOrder(), with_stale_orientation ? k_StaleOrder : E3DROTORDER_XYZ);
    }
    else
    {
        EXPECT_EQ(after.pointer, before.pointer);
        EXPECT_TRUE(!after.orientation || SameRotation(*after.orientation, *before.orientation));
    }
}

} // namespace

// --- Factorize -------------------------------------------------------------------------------------------------------

TEST(TransformationFactorize, Each_mask_of_each_kind_of_matrix)
{
    for (Kind const & kind : k_Kinds)
    {
        for (unsigned mask = 0; mask < 256; ++mask)
        {
            for (unsigned const others : {0U, k_QNScaling, k_PreserveOrder | k_Unused})
            {
                ExpectFactorize(kind, mask, others, false);
                ExpectFactorize(kind, mask, others, true);
            }
        }
    }
}

TEST(TransformationFactorize, Each_mask_of_the_flagged_identity)
{
    for (unsigned mask = 0; mask < 256; ++mask)
    {
        for (unsigned const others : {0U, 44U})
        {
            for (bool const with_stale_orientation : {false, true})
            {
                unsigned const flags = k_ComponentsDirty | k_Identity | others;
                C3DTransfo transfo = MakeDirty(Plain(), flags, with_stale_orientation);
                Inside::Matrix(transfo) = MatrixOf(Sheared()); // nobody reads it
                Snapshot const before(transfo);
                Inside::Factorize(transfo, mask);
                EXPECT_EQ(Inside::Flags(transfo), k_Identity | others);
                EXPECT_EQ(Inside::ScalingOrientation(transfo), nullptr);
                ExpectParts(transfo, before, mask, IdentityValues(k_StaleOrder));
                EXPECT_TRUE(SameMatrix(before, Snapshot(transfo)));
            }
        }
    }
}

TEST(TransformationFactorize, A_stale_matrix_stays_stale)
{
    for (unsigned const mask : {0U, 2U, 14U, 63U})
    {
        C3DTransfo transfo = MakeState(k_ComponentsDirty | k_MatrixDirty | k_Identity);
        Inside::Factorize(transfo, mask);
        EXPECT_EQ(Inside::Flags(transfo), k_MatrixDirty | k_Identity);
    }
}

TEST(TransformationFactorize, The_rotation_comes_in_the_order_of_the_matrix)
{
    for (Kind const & kind : k_Kinds)
    {
        for (tagE3DROTORDER const order : k_Orders)
        {
            for (unsigned const mask : {4U, 5U, 63U})
            {
                C3DTransfo transfo = MakeState(k_ComponentsDirty, kind.matrix);
                Inside::MatrixRotOrder(transfo) = order;
                Inside::Factorize(transfo, mask);
                EXPECT_EQ(Inside::Rotation(transfo).GetXYZRotOrder(), order);
                EXPECT_EQ(transfo.GetXYZRotOrder(), order);
            }
        }
    }
}

TEST(TransformationFactorize, A_rotation_that_was_marked_as_the_identity_is_replaced)
{
    for (Values const & values : {Plain(), Sheared()})
    {
        C3DTransfo transfo;
        transfo.SetRotation(E3DROTORDER_ZYX, 1);
        ASSERT_EQ(Inside::Rotation(transfo).QuickIsIdentity(), 1);
        transfo.Set(MatrixOf(values));
        Rotation rotation;
        transfo.GetRotation(rotation);
        EXPECT_EQ(rotation.QuickIsIdentity(), 0);
        EXPECT_EQ(rotation.GetXYZRotOrder(), E3DROTORDER_ZYX);
        EXPECT_TRUE(FreshFormsAre(transfo, MatrixOf(values)));
    }
}

TEST(TransformationFactorize, Mask_14_leaves_the_scaling_unwritten_and_clears_the_flag)
{
    for (Kind const & kind : k_Kinds)
    {
        C3DTransfo transfo = MakeState(k_ComponentsDirty, kind.matrix);
        Inside::Factorize(transfo, 14);
        EXPECT_EQ(Inside::Flags(transfo), 0U);
        for (double const factor : Elements(Inside::Scaling(transfo)))
        {
            EXPECT_TRUE(std::isnan(factor));
        }
        EXPECT_LE(Distance(Inside::Rotation(transfo),
                           kind.is_sheared ? ReadDecomposition(MatrixOf(kind.matrix), E3DROTORDER_ZXY).rotation
                                           : kind.matrix.rotation),
                  1e-14);
    }
}

TEST(TransformationFactorize, Rows_count_as_sheared_above_a_dot_product_of_1e_6)
{
    for (double const sign : {1.0, -1.0})
    {
        for (double const length : {1.0, 1000.0, 0.125})
        {
            C3DTransfo below = OfMatrix(WithDotProduct(sign * 0.999999e-6, length));
            C3DTransfo above = OfMatrix(WithDotProduct(sign * 1.000001e-6, length));
            Inside::Factorize(below, 63);
            Inside::Factorize(above, 63);
            EXPECT_EQ(Inside::ScalingOrientation(below), nullptr);
            EXPECT_NE(Inside::ScalingOrientation(above), nullptr);
        }
    }
}

TEST(TransformationFactorize, A_dot_product_of_5e_7_between_rows_of_length_1000_is_no_shear)
{
    Matrix const matrix = WithDotProduct(5e-7, 1000);
    C3DTransfo transfo = MakeDirty(Sheared(), k_ComponentsDirty, true);
    Inside::Matrix(transfo) = matrix;
    EXPECT_FALSE(transfo.HasShearing());
    Vector scaling;
    Vector expected;
    transfo.GetScaling(scaling);
    matrix.GetScaling(expected);
    EXPECT_TRUE(Near(scaling, expected, 1e-12));
    EXPECT_EQ(Inside::ScalingOrientation(transfo), nullptr);
    RotMatrix rows;
    matrix.GetRotation(rows);
    EXPECT_LE(rotation_test::MaxDifference(*transfo.GetRotation(), rows), 1e-15);
}

TEST(TransformationFactorize, The_components_read_from_a_sheared_matrix_make_it_again)
{
    C3DTransfo transfo = OfMatrix(MatrixOf(Sheared()));
    Rotation rotation;
    Rotation orientation;
    Vector scaling;
    Vector translation;
    transfo.GetRotation(rotation);
    transfo.GetScalingOrientation(orientation);
    transfo.GetScaling(scaling);
    transfo.GetTranslation(translation);
    EXPECT_TRUE(transfo.IsScalingOrientationExisting());
    C3DTransfo again;
    again.Set(scaling, orientation, rotation, translation);
    EXPECT_TRUE(Near(*again.GetMatrix(), MatrixOf(Sheared())));
}

TEST(TransformationFactorize, A_mirrored_matrix_without_a_history_reads_with_three_negative_scales)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        Matrix matrix;
        matrix.Set(axis, axis, -1);
        C3DTransfo transfo;
        // The bits that say which axis it is are not there, or were cleared.
        transfo.Set(Matrix(matrix).SetCol(3, 0, 0, 0, 1));
        EXPECT_EQ(transfo.GetMatrix()->GetSclSignBits(), 14);
        Vector scaling;
        transfo.GetScaling(scaling);
        EXPECT_TRUE(SameBits(scaling, Vector(-1, -1, -1)));
        EXPECT_TRUE(FreshFormsAre(transfo, matrix));

        C3DTransfo from_components;
        Vector const mirror = Vector(1, 1, 1).Set(axis, -1);
        from_components.SetScaling(mirror);
        EXPECT_TRUE(Near(*from_components.GetMatrix(), matrix, 0));
        C3DTransfo again = OfMatrix(*from_components.GetMatrix());
        again.GetScaling(scaling);
        EXPECT_TRUE(SameBits(scaling, mirror));
    }
}

TEST(TransformationFactorize, Without_memory_the_other_components_of_a_sheared_matrix_are_read)
{
    C3DTransfo transfo = MakeState(k_ComponentsDirty, Sheared());
    Inside::AllocateScalingOrientation(transfo, false);
    Snapshot const before(transfo);
    {
        AllocationFaults const refuse = AllocationFaults::RefuseAbove(sizeof(Rotation) - 1);
        Inside::Factorize(transfo, 63);
    }
    EXPECT_EQ(Inside::Flags(transfo), 0U);
    EXPECT_EQ(Inside::ScalingOrientation(transfo), nullptr);
    ExpectParts(transfo, before, 63, ReadDecomposition(MatrixOf(Sheared()), E3DROTORDER_ZXY));
}

TEST(TransformationFactorize, Numbers_that_are_none_end_in_some_components)
{
    for (double const number : {k_Nan, k_Infinity, -k_Infinity, 1e300, 5e-324})
    {
        for (int i = 0; i < 12; ++i)
        {
            Matrix matrix = MatrixOf(Sheared());
            matrix.Set(i / 3, i % 3, number);
            C3DTransfo transfo = OfMatrix(matrix);
            Inside::Factorize(transfo, 63);
            EXPECT_EQ(Inside::Flags(transfo), k_QNScaling);
        }
    }
}

TEST(TransformationFactorize, A_null_row_gives_the_smallest_scale)
{
    Matrix matrix;
    matrix.Set(1, 1, 0);
    C3DTransfo transfo = OfMatrix(matrix);
    Vector scaling;
    transfo.GetScaling(scaling);
    EXPECT_TRUE(SameBits(scaling, Vector(1, 1e-12, 1)));
}

// --- Combine ---------------------------------------------------------------------------------------------------------

TEST(TransformationCombine, The_matrix_is_the_formula_with_the_signs_of_the_scaling)
{
    for (Kind const & kind : k_Kinds)
    {
        for (int signs = 0; signs < 8; ++signs)
        {
            for (unsigned const others : {0U, k_QNScaling, k_PreserveOrder | k_Unused})
            {
                Values values = kind.matrix;
                for (int axis = 0; axis < 3; ++axis)
                {
                    values.scaling.Set(axis, (signs >> axis & 1) != 0 ? -std::abs(values.scaling.Get(axis))
                                                                      : std::abs(values.scaling.Get(axis)));
                }
                C3DTransfo transfo = MakeState(k_MatrixDirty | others, values);
                Inside::Matrix(transfo).SetMaskInfo(0xFF);
                Snapshot const before(transfo);
                Inside::Combine(transfo);
                Snapshot const after(transfo);
                EXPECT_EQ(after.flags, others);
                EXPECT_TRUE(Near(after.matrix, MatrixOf(values)));
                EXPECT_EQ(after.matrix.GetMaskInfo(), 0xF1 | signs << 1);
                EXPECT_EQ(after.matrix_order, values.rotation.GetXYZRotOrder());
                EXPECT_TRUE(SameBits(after.scaling, before.scaling));
                EXPECT_TRUE(SameBits(after.translation, before.translation));
                EXPECT_LE(Distance(after.rotation, before.rotation), 0);
                EXPECT_EQ(after.pointer, before.pointer);
            }
        }
    }
}

TEST(TransformationCombine, The_order_of_the_rotation_goes_with_the_matrix)
{
    for (unsigned const state : {k_MatrixDirty, k_MatrixDirty | k_Identity})
    {
        for (tagE3DROTORDER const order : k_Orders)
        {
            for (Values values : {Plain(), Sheared()})
            {
                values.rotation.Set(order, 1);
                C3DTransfo transfo = MakeState(state, values);
                Inside::Combine(transfo);
                EXPECT_EQ(Inside::MatrixRotOrder(transfo), order);
            }
        }
    }
}

TEST(TransformationCombine, The_flagged_identity_gives_the_identity_without_bits_whatever_the_components_hold)
{
    for (unsigned const others : {0U, 44U})
    {
        C3DTransfo transfo = MakeState(k_MatrixDirty | others, Sheared());
        Inside::SetFlags(transfo, k_MatrixDirty | k_Identity | others);
        Inside::Matrix(transfo).SetMaskInfo(0xFF);
        Snapshot const before(transfo);
        Inside::Combine(transfo);
        Snapshot const after(transfo);
        EXPECT_EQ(after.flags, k_Identity | others);
        EXPECT_TRUE(SameBits(after.matrix, Matrix()));
        EXPECT_EQ(after.matrix.GetMaskInfo(), 0xF1);
        EXPECT_TRUE(SameComponents(before, after));
        EXPECT_EQ(after.matrix_order, E3DROTORDER_ZXY);
    }
}

TEST(TransformationCombine, An_orientation_near_the_identity_does_not_survive)
{
    for (bool const beyond : {false, true})
    {
        Values values = Plain();
        values.orientation = Rotation(beyond ? std::nextafter(1e-12, 1.0) : 1e-12, 0, 0, E3DROTORDER_XYZ);
        C3DTransfo transfo = MakeState(k_MatrixDirty, values);
        Inside::Combine(transfo);
        EXPECT_EQ(Inside::ScalingOrientation(transfo) != nullptr, beyond);
        EXPECT_TRUE(Near(Inside::Matrix(transfo), MatrixOf(Plain()), 1e-11));
    }
}

TEST(TransformationCombine, Column_3_is_written_whatever_the_matrix_held)
{
    for (Values const & values : {Plain(), Sheared()})
    {
        C3DTransfo transfo = MakeState(k_ComponentsDirty, values);
        Inside::Factorize(transfo, 63);
        for (int row = 0; row < 4; ++row)
        {
            Inside::Matrix(transfo).Set(row, 3, 9);
        }
        Inside::SetXfoMatDirty(transfo, 1);
        EXPECT_TRUE(Near(*transfo.GetMatrix(), MatrixOf(values)));
        for (int row = 0; row < 4; ++row)
        {
            EXPECT_EQ(transfo.GetMatrix()->Get(row, 3), row == 3 ? 1 : 0);
        }
    }
}

// Bits that contradict the determinant are not repaired here.
TEST(TransformationCombine, The_bits_of_an_improper_rotation_are_those_of_the_scaling)
{
    RotMatrix improper;
    improper.Set(0, 0, -1);
    C3DTransfo transfo;
    transfo.SetRotation(improper);
    EXPECT_EQ(transfo.GetMatrix()->GetSclSignBits(), 0);
    EXPECT_LT(transfo.GetMatrix()->GetDet(), 0);
    transfo.SetScaling(2, -3, 4);
    EXPECT_EQ(transfo.GetMatrix()->GetSclSignBits(), 4);
    EXPECT_GT(transfo.GetMatrix()->GetDet(), 0);
}

TEST(TransformationCombine, Stale_matrices_of_the_rotations_are_brought_up_to_date)
{
    for (unsigned const rotation_state : rotation_test::k_States)
    {
        for (unsigned const orientation_state : rotation_test::k_States)
        {
            Values values = Plain();
            values.rotation = rotation_test::MakeState(rotation_state);
            values.orientation = rotation_test::MakeState(orientation_state, Vector(0.1, 0.2, -0.4), E3DROTORDER_YXZ);
            C3DTransfo transfo = MakeState(k_MatrixDirty, values);
            EXPECT_TRUE(Near(*transfo.GetMatrix(), MatrixOf(values)));
            values.orientation.reset();
            C3DTransfo plain = MakeState(k_MatrixDirty, values);
            EXPECT_TRUE(Near(*plain.GetMatrix(), MatrixOf(values)));
        }
    }
}

TEST(TransformationCombine, The_scaling_orientation_acts_before_the_scaling_and_is_taken_back_after_it)
{
    // A quarter turn about Z: the scale along X of the orientation acts along the axis of the object that it maps to X.
    C3DTransfo transfo(Vector(5, 1, 1), Rotation(E3D_AXIS_Z, k_HalfPi));
    Vector along;
    along.Mul(Vector(0, 1, 0), *transfo.GetMatrix());
    EXPECT_TRUE(Near(along, Vector(0, 5, 0)));
    Vector across;
    across.Mul(Vector(1, 0, 0), *transfo.GetMatrix());
    EXPECT_TRUE(Near(across, Vector(1, 0, 0)));
    // The rotation comes last, and the translation is not rotated.
    transfo.SetRotation(E3D_AXIS_Z, k_HalfPi);
    transfo.SetTranslation(10, 20, 30);
    along.Mul(Vector(0, 1, 0), *transfo.GetMatrix());
    EXPECT_TRUE(Near(along, Vector(5, 20, 30)));
}

// --- Properties ------------------------------------------------------------------------------------------------------

TEST(TransformationProperties, Components_through_the_matrix_come_back)
{
    Random random(4301);
    for (int i = 0; i < 2000; ++i)
    {
        Values values = RandomValues(random);
        values.orientation.reset();
        C3DTransfo transfo;
        transfo.SetRotation(values.rotation.GetXYZRotOrder(), 1);
        transfo.Set(values.scaling, values.rotation, values.translation);
        C3DTransfo back;
        back.SetRotation(values.rotation.GetXYZRotOrder(), 1);
        back.Set(*transfo.GetMatrix());
        Vector scaling;
        Vector translation;
        Rotation rotation;
        back.GetScaling(scaling);
        back.GetRotation(rotation);
        back.GetTranslation(translation);
        EXPECT_FALSE(back.IsScalingOrientationExisting());
        EXPECT_TRUE(Near(scaling, values.scaling, 1e-12));
        EXPECT_LE(Distance(rotation, values.rotation), 1e-12);
        EXPECT_EQ(rotation.GetXYZRotOrder(), values.rotation.GetXYZRotOrder());
        EXPECT_TRUE(SameBits(translation, values.translation));
    }
}

TEST(TransformationProperties, Sheared_components_through_the_matrix_make_the_same_matrix)
{
    Random random(4302);
    int sheared = 0;
    for (int i = 0; i < 2000; ++i)
    {
        Values const values = RandomValues(random);
        C3DTransfo transfo = MakeState(k_MatrixDirty, values);
        Matrix matrix;
        transfo.GetMatrix(matrix);
        C3DTransfo back = OfMatrix(matrix);
        Inside::Factorize(back, 63);
        Values const read = ValuesOf(back);
        sheared += read.orientation ? 1 : 0;
        EXPECT_TRUE(Near(MatrixOf(read), matrix, 1e-10));
        C3DTransfo again = MakeState(k_MatrixDirty, read);
        EXPECT_TRUE(Near(*again.GetMatrix(), matrix, 1e-10));
    }
    EXPECT_GT(sheared, 500);
}

TEST(TransformationProperties, Any_matrix_is_the_formula_of_its_components)
{
    Random random(4303);
    for (int i = 0; i < 3000; ++i)
    {
        std::array<double, 16> elements{};
        double const size = std::pow(10.0, random.Uniform(0.0, 8.0));
        for (int k = 0; k < 16; ++k)
        {
            elements[static_cast<std::size_t>(k)] = k % 4 == 3 ? 0 : random.Uniform(-size, size);
        }
        elements[15] = 1;
        if (i % 4 == 0)
        {
            // Two equal rows: singular, and the decomposition has to do without a third direction.
            std::copy_n(elements.begin(), 4, elements.begin() + 4);
        }
        Matrix const matrix = MakeMatrix(elements, static_cast<unsigned>(random.Integer(0, 7)) << 1U);
        C3DTransfo transfo = OfMatrix(matrix);
        ASSERT_TRUE(transfo.HasShearing());
        Rotation orientation;
        transfo.GetScalingOrientation(orientation);
        EXPECT_TRUE(FreshFormsAre(transfo, matrix, 1e-12 * size * 10));
        EXPECT_NEAR(MatrixOf(orientation).GetDet(), 1, 1e-12);
        EXPECT_NEAR(MatrixOf(Inside::Rotation(transfo)).GetDet(), 1, 1e-12);
    }
}

TEST(TransformationProperties, A_mirrored_scale_set_as_components_comes_back_as_it_was)
{
    Random random(4304);
    for (Vector const & mirror : {Vector(1, 1, -1), Vector(-1, 1, 1), Vector(1, -1, 1), Vector(-1, -1, -1)})
    {
        for (int i = 0; i < 200; ++i)
        {
            Rotation const rotation = rotation_test::RandomRotation(random);
            Vector const translation = RandomTranslation(random);
            C3DTransfo transfo(mirror, rotation, translation);
            Vector scaling;
            transfo.GetScaling(scaling);
            EXPECT_TRUE(SameBits(scaling, mirror));

            // Through the matrix of the object itself, and through a copy of it in another object.
            Matrix matrix;
            transfo.GetMatrix(matrix);
            EXPECT_LT(matrix.GetDet(), 0);
            C3DTransfo other = OfMatrix(matrix);
            for (C3DTransfo * const target : {&transfo, &other})
            {
                target->Set(matrix);
                Rotation read;
                target->GetScaling(scaling);
                target->GetRotation(read);
                EXPECT_TRUE(Near(scaling, mirror));
                EXPECT_LE(Distance(read, rotation), 1e-12);
                EXPECT_FALSE(target->IsScalingOrientationExisting());
            }
        }
    }
}

TEST(TransformationProperties, A_mirrored_scale_survives_a_change_of_mode)
{
    for (Vector const & mirror : {Vector(1, 1, -1), Vector(-1, 1, 1), Vector(1, -1, 1), Vector(-1, -1, -1)})
    {
        C3DTransfo transfo(mirror, Rotation(0.3, 0.4, 0.5, E3DROTORDER_XYZ), Vector(1, 2, 3));
        Matrix matrix;
        transfo.GetMatrix(matrix);
        transfo.Set(matrix);
        transfo.SetQNScalingFlag(0);
        Vector scaling;
        transfo.GetScaling(scaling);
        EXPECT_TRUE(Near(scaling, mirror));
    }
}
