#include "math/space_mapping.h"
#include "transform/edit_by_steps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

// What users of transformations complain about elsewhere, and what must hold however operations follow each other.

namespace
{

using namespace edit_test;

// --- Parent and child ------------------------------------------------------------------------------------------------

TEST(Complaint, A_rotated_child_under_an_uneven_scale_does_not_shear_by_component)
{
    C3DTransfo child(Vector(1, 2, 1), Rotation(0.3, 0.4, 0.5, E3DROTORDER_XYZ), Vector(1, 2, 3));
    C3DTransfo parent(Vector(1, 5, 0.5), Rotation(-0.7, 0.2, 0.1, E3DROTORDER_XYZ), Vector(4, 5, 6));
    child.MapSpaceToWorld(parent);
    EXPECT_FALSE(child.HasShearing());
    EXPECT_FALSE(child.IsScalingOrientationExisting());
    Vector scaling;
    child.GetScaling(scaling);
    EXPECT_TRUE(Near(Vector(1, 10, 0.5), scaling, 0));
    EXPECT_FALSE(IsSheared(*child.GetMatrix()));
}

TEST(Complaint, A_rotated_child_under_an_uneven_scale_reports_its_shear_by_matrix)
{
    C3DTransfo child(Vector(1, 2, 1), Rotation(0.3, 0.4, 0.5, E3DROTORDER_XYZ), Vector(1, 2, 3));
    C3DTransfo parent(Vector(1, 5, 0.5), Rotation(-0.7, 0.2, 0.1, E3DROTORDER_XYZ), Vector(4, 5, 6));
    Matrix const expected = ProductOf(ValueOf(child), ValueOf(parent));
    child.SetQNScalingFlag(0);
    child.MapSpaceToWorld(parent);
    EXPECT_TRUE(child.HasShearing());
    EXPECT_TRUE(child.IsScalingOrientationExisting());
    // What is read as components is the same matrix.
    EXPECT_EQ(0U, Inside::Flags(child));
    EXPECT_TRUE(FreshFormsAre(child, expected));
}

TEST(Complaint, An_even_scale_does_not_shear_by_matrix)
{
    C3DTransfo child(Vector(1, 2, 1), Rotation(0.3, 0.4, 0.5, E3DROTORDER_XYZ), Vector(1, 2, 3));
    C3DTransfo parent(Vector(3, 3, 3), Rotation(-0.7, 0.2, 0.1, E3DROTORDER_XYZ), Vector(4, 5, 6));
    child.SetQNScalingFlag(0);
    child.MapSpaceToWorld(parent);
    EXPECT_FALSE(child.HasShearing());
    EXPECT_FALSE(child.IsScalingOrientationExisting());
}

TEST(Complaint, A_mirrored_child_keeps_its_axis_through_a_parent_and_back)
{
    for (int const mode : {1, 0})
    {
        for (Vector const & mirror : {Vector(-1, 2, 3), Vector(1, -2, 3), Vector(1, 2, -3), Vector(-1, -2, -3)})
        {
            C3DTransfo child(mirror, Rotation(0.3, 0.4, 0.5, E3DROTORDER_XYZ), Vector(1, 2, 3));
            child.SetQNScalingFlag(mode);
            C3DTransfo parent(Vector(2, 2, 2), Rotation(-0.7, 0.2, 0.1, E3DROTORDER_XYZ), Vector(4, 5, 6));
            child.MapSpaceToWorld(parent);
            Vector scaling;
            child.GetScaling(scaling);
            EXPECT_TRUE(Near(Times(mirror, 2), scaling, 1e-14));
            child.MapWorldToSpace(parent);
            child.GetScaling(scaling);
            EXPECT_TRUE(Near(mirror, scaling, 1e-14));
            EXPECT_LE(Distance(Rotation(0.3, 0.4, 0.5, E3DROTORDER_XYZ), Inside::Rotation(child)), 1e-14);
        }
    }
}

TEST(Complaint, A_child_of_a_mirrored_parent_comes_back_with_its_own_scale_by_component)
{
    C3DTransfo child(Vector(1, -2, 3), Rotation(0.3, 0.4, 0.5, E3DROTORDER_XYZ), Vector(1, 2, 3));
    C3DTransfo parent(Vector(-2, 3, 0.5), Rotation(-0.7, 0.2, 0.1, E3DROTORDER_XYZ), Vector(4, 5, 6));
    child.MapSpaceToWorld(parent);
    EXPECT_TRUE(Near(Vector(-2, -6, 1.5), Inside::Scaling(child), 0));
    child.MapWorldToSpace(parent);
    EXPECT_TRUE(Near(Vector(1, -2, 3), Inside::Scaling(child), 0));
}

TEST(Complaint, The_scale_of_a_mirrored_axis_does_not_wander_down_a_chain)
{
    C3DTransfo bone(Vector(1, 1, 1), Rotation(0.3, 0.4, 0.5, E3DROTORDER_XYZ), Vector(0, 1, 0));
    C3DTransfo root(Vector(-1, 1, 1), Rotation(0, 0.1, 0, E3DROTORDER_XYZ), Vector(0, 0, 0));
    C3DTransfo world;
    world.Set(root);
    for (int joint = 0; joint < 20; ++joint)
    {
        C3DTransfo next;
        next.Mul(bone, world, 63);
        next.GetMatrix();
        world.Set(next);
        EXPECT_TRUE(Near(Vector(-1, 1, 1), Inside::Scaling(world), 0));
    }
}

// --- There and back --------------------------------------------------------------------------------------------------

TEST(Property, A_product_by_component_less_its_second_operand_is_the_first)
{
    test_support::Random random(4501);
    for (int i = 0; i < 2000; ++i)
    {
        Values const first = RandomValues(random);
        Values const second = RandomValues(random);
        C3DTransfo a = MakeState(k_MatrixDirty | k_QNScaling, first);
        C3DTransfo b = MakeState(k_MatrixDirty | k_QNScaling, second);
        C3DTransfo self;
        self.Mul(a, b, 63);
        self.Dif(self, b, 63, nullptr);
        for (int axis = 0; axis < 3; ++axis)
        {
            EXPECT_TRUE(Close(first.scaling.Get(axis), Inside::Scaling(self).Get(axis), 1e-15));
            // The scale of b, from 0.1 to 10, amplifies the rounding of a translation of that size.
            EXPECT_NEAR(first.translation.Get(axis), Inside::Translation(self).Get(axis), 1e-11);
        }
        // A rotation given as a matrix loses up to a digit and a half on its way to a quaternion, where the component
        // that the others are divided by is small.
        EXPECT_LE(Distance(first.rotation, Inside::Rotation(self)), 1e-13);
        Rotation const * const orientation = Inside::ScalingOrientation(self);
        EXPECT_LE(Distance(first.orientation ? *first.orientation : Rotation(),
                           orientation != nullptr ? *orientation : Rotation()),
                  1e-13);
    }
}

TEST(Property, A_product_without_scaling_less_its_second_operand_is_the_first)
{
    test_support::Random random(4502);
    for (int i = 0; i < 500; ++i)
    {
        for (unsigned char const mask :
             {static_cast<unsigned char>(15), static_cast<unsigned char>(15 | 16), static_cast<unsigned char>(15 | 32)})
        {
            Values const first = RandomValues(random);
            C3DTransfo a = MakeState(k_MatrixDirty | k_QNScaling, first);
            C3DTransfo b = MakeState(k_MatrixDirty | k_QNScaling, RandomValues(random));
            C3DTransfo self;
            self.Mul(a, b, mask);
            self.Dif(self, b, mask, nullptr);
            EXPECT_TRUE(Near(first.translation, Inside::Translation(self), 1e-12)) << int(mask);
        }
    }
}

TEST(Property, A_product_by_matrix_less_its_second_operand_is_the_first)
{
    test_support::Random random(4503);
    for (int i = 0; i < 500; ++i)
    {
        Values const first = RandomValues(random);
        C3DTransfo a = MakeState(k_MatrixDirty, first);
        C3DTransfo b = MakeState(k_MatrixDirty, RandomValues(random));
        C3DTransfo self = MakeState(k_MatrixDirty);
        self.Mul(a, b, 63);
        self.Dif(self, b, 63, nullptr);
        // Scales range over two decades, so that the condition of b is up to a hundred.
        EXPECT_TRUE(FreshFormsAre(self, MatrixOf(first), 1e-11));
    }
}

TEST(Property, An_inverse_undoes_a_transformation_on_both_sides)
{
    test_support::Random random(4504);
    for (int i = 0; i < 500; ++i)
    {
        C3DTransfo a = MakeState(k_MatrixDirty, RandomValues(random));
        C3DTransfo inverse;
        inverse.Invert(a);
        C3DTransfo product = MakeState(k_MatrixDirty);
        product.Mul(a, inverse, 63);
        EXPECT_TRUE(FreshFormsAre(product, Matrix(), 1e-11));
        product.Mul(inverse, a, 63);
        EXPECT_TRUE(FreshFormsAre(product, Matrix(), 1e-11));
    }
}

// --- Matrix and components -------------------------------------------------------------------------------------------

/// How far components may be from the matrix that they were read from. Rows whose dot products are within the limit of
/// shear are read as perpendicular, which moves a row as far as that dot product lets the shortest of them lean.
double ReadingTolerance(Matrix const & m)
{
    double largest = 1;
    double shortest = k_Infinity;
    double lean = 0;
    for (int i = 0; i < 4; ++i)
    {
        Vector const row(m.Get(i, 0), m.Get(i, 1), m.Get(i, 2));
        largest = std::max(largest, row.GetLength());
        if (i < 3)
        {
            Vector const next(m.Get((i + 1) % 3, 0), m.Get((i + 1) % 3, 1), m.Get((i + 1) % 3, 2));
            shortest = std::min(shortest, row.GetLength());
            lean = std::max(lean, std::abs(row.X * next.X + row.Y * next.Y + row.Z * next.Z));
        }
    }
    return 1e-12 * largest + (IsSheared(m) ? 0 : 4 * lean / shortest);
}

/// How far a rotation may be from what it was in another order: near a pole of its own order, where the first and the
/// last angle turn about one axis, they come out of the rotation as exactly as the cosine of the middle one allows.
double ReorderingTolerance(Rotation rotation)
{
    constexpr int middleAxes[6] = {1, 2, 0, 2, 0, 1};
    Vector angles;
    rotation.GetXYZAngles(angles);
    double const cosine = std::abs(std::cos(angles.Get(middleAxes[rotation.GetXYZRotOrder()])));
    return std::min(1e-14 / cosine, 1e-6);
}

/// Whether both forms tell the same, as they stand where both are clean, and after being asked for.
testing::AssertionResult FormsAgree(C3DTransfo const & transfo)
{
    C3DTransfo copy(transfo);
    FreshenComponents(copy);
    FreshenMatrix(copy);
    Matrix const m = ValueOf(copy);
    return FreshFormsAre(copy, m, ReadingTolerance(m) + ReorderingTolerance(Inside::Rotation(copy)));
}

/// A random operation of those after which both forms tell the same. Scales are kept near 1, as they pile up.
class RandomOperation
{
public:
    explicit RandomOperation(test_support::Random & random) : m_Random(random) {}

    /// Its number, for the trace.
    int Apply(C3DTransfo & self)
    {
        int const operation = m_Random.Integer(0, 23);
        operation < 8 ? Set(self, operation) : (operation < 16 ? Compose(self, operation) : Edit(self, operation));
        return operation;
    }

    C3DTransfo Operand()
    {
        Values values = RandomValues(m_Random);
        values.scaling = Scale();
        unsigned flags = k_Freshness[m_Random.Integer(0, 2)] | (m_Random.Integer(0, 1) != 0 ? k_QNScaling : 0U);
        flags |= m_Random.Integer(0, 7) == 0 ? k_Identity : 0U;
        return MakeState(flags, values);
    }

private:
    double Factor()
    {
        double const magnitude = m_Random.Uniform(0.9, 1.1);
        return m_Random.Integer(0, 5) == 0 ? -magnitude : magnitude;
    }
    Vector Scale() { return {Factor(), Factor(), Factor()}; }
    Rotation Turn() { return rotation_test::RandomRotation(m_Random); }
    Vector Shift() { return RandomTranslation(m_Random); }

    void Set(C3DTransfo & self, int operation)
    {
        // Drawn one after the other, as the arguments of a call are in no order.
        Vector const scale = Scale();
        Rotation const turn = Turn();
        Vector const shift = Shift();
        Vector const other = Shift();
        C3DTransfo operand = Operand();
        int degenerate = 0;
        switch (operation)
        {
        case 0:
            self.Set(scale, turn, shift);
            break;
        case 1:
            self.Set(ValueOf(operand));
            break;
        case 2:
            self.SetScaling(scale);
            break;
        case 3:
            self.SetScaling(scale, turn);
            break;
        case 4:
            self.SetRotation(turn);
            break;
        case 5:
            self.SetRotation(shift, other, degenerate);
            break;
        case 6:
            self.SetTranslation(shift);
            break;
        default:
            self.SetScalingOrientation(turn);
            break;
        }
    }

    void Compose(C3DTransfo & self, int operation)
    {
        C3DTransfo a = Operand();
        C3DTransfo b = Operand();
        auto const mask = static_cast<unsigned char>(m_Random.Integer(0, 1) != 0 ? 63 : m_Random.Integer(0, 63));
        C3DTransfo * const target = m_Random.Integer(0, 1) != 0 ? &a : nullptr;
        switch (operation)
        {
        case 8:
            // A partial mask takes over what is there, so that it must be there.
            FreshenComponents(self);
            self.Mul(a, b, mask);
            break;
        case 9:
            FreshenComponents(self);
            self.Mul(b, mask);
            break;
        case 10:
            FreshenComponents(self);
            self.Dif(self, b, mask, target);
            break;
        case 11:
            FreshenComponents(self);
            self.Dif(a, b, mask, &self);
            break;
        case 12:
            self.MapSpaceToSpace(a, b);
            break;
        case 13:
            m_Random.Integer(0, 1) != 0 ? self.Invert() : self.Invert(a);
            break;
        case 14:
            self.Interpolate(self, b, m_Random.Uniform(0.0, 0.2));
            break;
        default:
            m_Random.Integer(0, 1) != 0 ? self.SetQNScalingFlag(m_Random.Integer(0, 1)) : self.Set(a, mask > 31);
            break;
        }
    }

    void Edit(C3DTransfo & self, int operation)
    {
        auto const space = static_cast<Space>(m_Random.Integer(0, 2));
        auto const pivotSpace = static_cast<Space>(m_Random.Integer(0, 2));
        Rotation reference = Turn();
        Rotation r = Turn();
        C3DTransfo pivot = Operand();
        Vector const point = Shift();
        bool const updateEuler = m_Random.Integer(0, 1) != 0;
        switch (operation)
        {
        case 16:
            self.AddTranslation(Shift(), space, &reference);
            break;
        case 17:
            self.AddRotation(r, space, &reference, pivotSpace, &point, updateEuler);
            break;
        case 18:
            self.AddRotationAboutPivotXfo(r, space, &reference, pivotSpace, &pivot, updateEuler);
            break;
        case 19:
            self.AddScaling(Scale(), space, &reference, pivotSpace, &point, E3DSCLTYPE_DEFAULT);
            break;
        case 20:
            self.AddScalingAboutPivotXfo(Scale(), space, &reference, pivotSpace, &pivot, E3DSCLTYPE_DEFAULT);
            break;
        case 21:
            self.AddScalingOrientation(r, space, &reference, pivotSpace, &point, updateEuler);
            break;
        case 22:
            self.GetMatrix();
            break;
        default:
            FreshenComponents(self);
            break;
        }
    }

    test_support::Random & m_Random;
};

TEST(Property, Matrix_and_components_agree_after_every_operation_of_a_sequence)
{
    test_support::Random random(4505);
    for (int sequence = 0; sequence < 400; ++sequence)
    {
        RandomOperation operation(random);
        C3DTransfo self = operation.Operand();
        std::string history;
        int const length = random.Integer(1, 50);
        for (int step = 0; step < length; ++step)
        {
            history += ' ' + std::to_string(operation.Apply(self));
            ASSERT_TRUE(FormsAgree(self)) << "after" << history << " in sequence " << sequence;
        }
    }
}

} // namespace
