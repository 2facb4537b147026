/// Products, inverse, scaling and interpolation of compact rotations.

#include "transform/compact_rotation_states.h"

using namespace compact_rotation_test;

namespace
{

template <typename T>
class CompactRotationProduct : public testing::Test
{
};
TYPED_TEST_SUITE(CompactRotationProduct, Scalars);

template <typename T>
Fields<T> ProductFields(C3DRotation3Tpl<T> const & a, C3DRotation3Tpl<T> const & b)
{
    return QuatFields(C3DQuatTpl<T>().Mul(QuatOf(b), QuatOf(a)).Normalize());
}

template <typename T>
Fields<T> InterpolatedFields(C3DRotation3Tpl<T> const & a, C3DRotation3Tpl<T> const & b, T t)
{
    return QuatFields(C3DQuatTpl<T>().Slerp(QuatOf(a), QuatOf(b), t));
}

template <typename T>
Fields<T> ProductNear(C3DRotation3Tpl<T> const & a, C3DRotation3Tpl<T> const & b, C3DVector3Tpl<T> target,
                      tagE3DROTORDER order)
{
    C3DQuatTpl<T> quat;
    quat.Mul(QuatOf(b), QuatOf(a)).Normalize();
    C3DRotMatTpl<T> matrix;
    F3DQuatToMat(quat, matrix);
    F3DMatToEulerUsingTarget(matrix, target, order);
    return EulerFields(target, order);
}

/// Each form, and one of none.
template <typename T>
std::array<C3DRotation3Tpl<T>, 4> MakeOperands()
{
    return {MakeQuat<T>(), MakeEuler<T>(), MakeAxisAngle<T>(), WithUnknownForm(MakeQuat<T>())};
}

} // namespace

// --- Inverse ---------------------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationProduct, Invert_of_a_quaternion_negates_its_vector)
{
    using T = TypeParam;
    C3DRotation3Tpl<T> rotation = MakeQuat<T>();
    EXPECT_EQ(&rotation.Invert(), &rotation);
    EXPECT_EQ(FieldsOf(rotation), QuatFields(C3DQuatTpl<T>(T(1.5), T(0.5), T(-2), T(-0.25))));
}

TYPED_TEST(CompactRotationProduct, Invert_of_euler_angles_negates_them_and_reverses_the_order)
{
    using T = TypeParam;
    struct Row
    {
        tagE3DROTORDER order;
        tagE3DROTORDER reverse;
    };
    for (auto const & [order, reverse] :
         {Row{E3DROTORDER_XYZ, E3DROTORDER_ZYX}, Row{E3DROTORDER_XZY, E3DROTORDER_YZX},
          Row{E3DROTORDER_YXZ, E3DROTORDER_ZXY}, Row{E3DROTORDER_YZX, E3DROTORDER_XZY},
          Row{E3DROTORDER_ZXY, E3DROTORDER_YXZ}, Row{E3DROTORDER_ZYX, E3DROTORDER_XYZ}, Row{k_NoOrder, k_NoOrder}})
    {
        C3DRotation3Tpl<T> rotation(T(0.1), T(0.2), T(0.3), order);
        EXPECT_EQ(&rotation.Invert(), &rotation);
        EXPECT_EQ(FieldsOf(rotation), EulerFields(C3DVector3Tpl<T>(T(-0.1), T(-0.2), T(-0.3)), reverse));
    }
}

TYPED_TEST(CompactRotationProduct, Invert_of_axis_and_angle_negates_the_angle)
{
    using T = TypeParam;
    C3DRotation3Tpl<T> rotation = MakeAxisAngle<T>();
    EXPECT_EQ(&rotation.Invert(), &rotation);
    EXPECT_EQ(FieldsOf(rotation), AxisAngleFields(C3DVector3Tpl<T>(1, -2, 3), T(-7.5)));
}

TYPED_TEST(CompactRotationProduct, Invert_of_another_copies_it)
{
    using T = TypeParam;
    for (C3DRotation3Tpl<T> const & a : MakeOperands<T>())
    {
        Fields<T> const before = FieldsOf(a);
        C3DRotation3Tpl<T> expected = a;
        expected.Invert();
        for (C3DRotation3Tpl<T> & target : MakeOperands<T>())
        {
            EXPECT_EQ(&target.Invert(a), &target);
            EXPECT_EQ(FieldsOf(target), FieldsOf(expected));
        }
        EXPECT_EQ(FieldsOf(a), before);
        C3DRotation3Tpl<T> self = a;
        EXPECT_EQ(FieldsOf(self.Invert(self)), FieldsOf(expected));
    }
    C3DRotation3Tpl<T> unknown = WithUnknownForm(MakeQuat<T>());
    Fields<T> const before = FieldsOf(unknown);
    EXPECT_EQ(FieldsOf(unknown.Invert()), before);
}

// --- Mul and Div -----------------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationProduct, In_a_product_the_first_acts_first)
{
    using T = TypeParam;
    C3DRotation3Tpl<T> const aboutX(E3D_AXIS_X, T(k_Pi / 2));
    C3DRotation3Tpl<T> const aboutZ(E3D_AXIS_Z, T(k_Pi / 2));
    C3DRotMatTpl<T> matrix;
    C3DRotation3Tpl<T>().Mul(aboutX, aboutZ).GetMatrix(matrix);
    C3DVector3Tpl<T> v;
    v.Mul(C3DVector3Tpl<T>(0, 1, 0), matrix);
    EXPECT_EQ(AreAlmostEqual(v, C3DVector3Tpl<T>(0, 0, 1), T(1e-6)), 1) << "Y to Z about X, and Z stays";
    v.Mul(C3DVector3Tpl<T>(1, 0, 0), matrix);
    EXPECT_EQ(AreAlmostEqual(v, C3DVector3Tpl<T>(0, 1, 0), T(1e-6)), 1) << "X stays, and X to Y about Z";
}

TYPED_TEST(CompactRotationProduct, A_product_is_the_normalised_product_of_the_quaternions_in_all_aliases)
{
    using T = TypeParam;
    using R = C3DRotation3Tpl<T>;
    for (R const & a : MakeOperands<T>())
    {
        for (R const & b : MakeOperands<T>())
        {
            Fields<T> const expected = ProductFields(a, b);
            R inverse = b;
            inverse.Invert();
            Fields<T> const quotient = ProductFields(a, inverse);
            for (R const & start : MakeOperands<T>())
            {
                R target = start;
                EXPECT_EQ(&target.Mul(a, b), &target);
                EXPECT_EQ(FieldsOf(target), expected);
                target = start;
                EXPECT_EQ(&target.Div(a, b), &target);
                EXPECT_EQ(FieldsOf(target), quotient);
            }
            R target = a;
            EXPECT_EQ(FieldsOf(target.Mul(target, b)), expected);
            target = b;
            EXPECT_EQ(FieldsOf(target.Mul(a, target)), expected);
            target = a;
            EXPECT_EQ(&target.Mul(b), &target);
            EXPECT_EQ(FieldsOf(target), expected);
            target = b;
            EXPECT_EQ(&target.LeftMul(a), &target);
            EXPECT_EQ(FieldsOf(target), expected);
            target = a;
            EXPECT_EQ(FieldsOf(target.Div(target, b)), quotient);
            target = b;
            EXPECT_EQ(FieldsOf(target.Div(a, target)), quotient);
            target = a;
            EXPECT_EQ(&target.Div(b), &target);
            EXPECT_EQ(FieldsOf(target), quotient);
        }
        R self = a;
        EXPECT_EQ(FieldsOf(self.Mul(self)), ProductFields(a, a));
        self = a;
        EXPECT_EQ(FieldsOf(self.LeftMul(self)), ProductFields(a, a));
        self = a;
        EXPECT_EQ(FieldsOf(self.Mul(self, self)), ProductFields(a, a));
        R inverse = a;
        inverse.Invert();
        self = a;
        EXPECT_EQ(FieldsOf(self.Div(self)), ProductFields(a, inverse));
        self = a;
        EXPECT_EQ(FieldsOf(self.Div(self, self)), ProductFields(a, inverse));
    }
}

TYPED_TEST(CompactRotationProduct, An_unknown_form_counts_as_the_identity)
{
    using T = TypeParam;
    C3DRotation3Tpl<T> const unknown = WithUnknownForm(MakeQuat<T>());
    C3DQuatTpl<T> unit = QuatOf(MakeQuat<T>());
    unit.Normalize();
    EXPECT_EQ(AreAlmostEqual(QuatOf(C3DRotation3Tpl<T>().Mul(MakeQuat<T>(), unknown)), unit, T(1e-6)), 1);
    EXPECT_EQ(AreAlmostEqual(QuatOf(C3DRotation3Tpl<T>().Mul(unknown, MakeQuat<T>())), unit, T(1e-6)), 1);
    EXPECT_EQ(FieldsOf(C3DRotation3Tpl<T>().Mul(unknown, unknown)), QuatFields(C3DQuatTpl<T>()));
}

// --- Scaling ---------------------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationProduct, A_factor_scales_the_angle)
{
    using T = TypeParam;
    using R = C3DRotation3Tpl<T>;
    for (T const factor : {T(0.5), T(0), T(1), T(-1), T(3), k_Nan<T>})
    {
        for (R const & start : {MakeQuat<T>(), MakeEuler<T>()})
        {
            R rotation = start;
            EXPECT_EQ(&rotation.Mul(factor), &rotation);
            EXPECT_EQ(FieldsOf(rotation), InterpolatedFields(R(), start, factor));
            rotation = start;
            EXPECT_EQ(&rotation.Div(factor), &rotation);
            EXPECT_EQ(FieldsOf(rotation), InterpolatedFields(R(), start, T(1) / factor));
        }
        R rotation = MakeAxisAngle<T>();
        EXPECT_EQ(&rotation.Mul(factor), &rotation);
        EXPECT_EQ(FieldsOf(rotation), AxisAngleFields(C3DVector3Tpl<T>(1, -2, 3), T(7.5) * factor));
        rotation = MakeAxisAngle<T>();
        EXPECT_EQ(&rotation.Div(factor), &rotation);
        EXPECT_EQ(FieldsOf(rotation), AxisAngleFields(C3DVector3Tpl<T>(1, -2, 3), T(7.5) * (T(1) / factor)));
        R unknown = WithUnknownForm(MakeQuat<T>());
        Fields<T> const before = FieldsOf(unknown);
        EXPECT_EQ(FieldsOf(unknown.Mul(factor)), before);
        EXPECT_EQ(FieldsOf(unknown.Div(factor)), before);
    }
    // The quotient goes through the reciprocal, which these divisors show.
    T const divisor = std::is_same_v<T, double> ? T(49) : T(41);
    R rotation(C3DVector3Tpl<T>(1, 0, 0), divisor);
    EXPECT_LT(FieldsOf(rotation.Div(divisor)).scalar, 1);
}

TYPED_TEST(CompactRotationProduct, The_forms_with_a_rotation_and_a_factor_do_not_read_the_rotation)
{
    using T = TypeParam;
    using R = C3DRotation3Tpl<T>;
    R const other(C3DVector3Tpl<T>(0, 1, 0), T(2));
    for (R const & start : MakeEach<T>())
    {
        R expected = start;
        expected.Mul(T(0.5));
        R rotation = start;
        EXPECT_EQ(&rotation.Mul(other, T(0.5)), &rotation);
        EXPECT_EQ(FieldsOf(rotation), FieldsOf(expected));
        rotation = start;
        EXPECT_EQ(FieldsOf(rotation.Mul(rotation, T(0.5))), FieldsOf(expected));
        expected = start;
        expected.Div(T(0.3));
        rotation = start;
        EXPECT_EQ(&rotation.Div(other, T(0.3)), &rotation);
        EXPECT_EQ(FieldsOf(rotation), FieldsOf(expected));
        rotation = start;
        EXPECT_EQ(rotation.Mul(other, T(0.5)).GetRepresentation(),
                  start.GetRepresentation() == E3DRotRep_AxisAngle ? E3DRotRep_AxisAngle : E3DRotRep_Quat);
    }
    R halved(E3D_AXIS_X, T(1));
    halved.Mul(other, T(0.5));
    EXPECT_EQ(AreAlmostEqual(QuatOf(halved), QuatOf(R(E3D_AXIS_X, T(0.5))), T(1e-6)), 1);
}

TYPED_TEST(CompactRotationProduct, A_factor_of_one_makes_a_quaternion_of_euler_angles)
{
    using T = TypeParam;
    C3DRotation3Tpl<T> rotation(T(0.1), T(0.2), T(0.3), E3DROTORDER_YZX);
    auto const before = JudgeOf(rotation);
    rotation.Mul(T(1));
    EXPECT_EQ(rotation.GetRepresentation(), E3DRotRep_Quat);
    EXPECT_LT(Distance(JudgeOf(rotation), before), k_Tolerance<T>);
}

// --- Interpolation ---------------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationProduct, Interpolate_goes_along_the_arc_and_does_not_normalise)
{
    using T = TypeParam;
    using R = C3DRotation3Tpl<T>;
    for (T const t : {T(0), T(0.25), T(1), T(-0.5), T(2)})
    {
        for (R const & a : MakeOperands<T>())
        {
            for (R const & b : MakeOperands<T>())
            {
                Fields<T> const expected = InterpolatedFields(a, b, t);
                R target = MakeEuler<T>();
                EXPECT_EQ(&target.Interpolate(a, b, t), &target);
                EXPECT_EQ(FieldsOf(target), expected);
                target = a;
                EXPECT_EQ(FieldsOf(target.Interpolate(target, b, t)), expected);
                target = b;
                EXPECT_EQ(FieldsOf(target.Interpolate(a, target, t)), expected);
            }
        }
    }
    // Quaternions of length 2 on both ends are blended linearly, and keep the length.
    R const twice(C3DQuatTpl<T>(2, 0, 0, 0));
    EXPECT_EQ(QuatOf(R().Interpolate(twice, twice, T(0.5))).W, 2);
}

// --- Euler angles near a target --------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationProduct, A_product_near_a_target_does_not_write_the_target)
{
    using T = TypeParam;
    using R = C3DRotation3Tpl<T>;
    C3DVector3Tpl<T> const target(T(10), T(-20), T(3));
    for (tagE3DROTORDER const order : k_Orders)
    {
        for (R const & a : MakeOperands<T>())
        {
            for (R const & b : MakeOperands<T>())
            {
                C3DVector3Tpl<T> given = target;
                Fields<T> const expected = ProductNear(a, b, target, order);
                R product = MakeAxisAngle<T>();
                EXPECT_EQ(&product.MulUsingEulerAnglesTarget(a, b, given, order), &product);
                EXPECT_EQ(FieldsOf(product), expected);
                EXPECT_TRUE(SameNumbers(given, target));
                product = a;
                EXPECT_EQ(FieldsOf(product.MulUsingEulerAnglesTarget(product, b, given, order)), expected);
                product = b;
                EXPECT_EQ(FieldsOf(product.MulUsingEulerAnglesTarget(a, product, given, order)), expected);
            }
        }
    }
    // An order that does not exist has no angles but the target's.
    R product;
    product.MulUsingEulerAnglesTarget(MakeQuat<T>(), MakeEuler<T>(), target, k_NoOrder);
    EXPECT_EQ(FieldsOf(product), EulerFields(target, k_NoOrder));
}

TYPED_TEST(CompactRotationProduct, The_angles_of_a_third_rotation_are_a_target_in_its_order)
{
    using T = TypeParam;
    using R = C3DRotation3Tpl<T>;
    R const a = MakeQuat<T>();
    R const b = MakeAxisAngle<T>();
    for (R const & c : MakeOperands<T>())
    {
        C3DVector3Tpl<T> target(0, 0, 0);
        c.GetXYZAngles(target);
        Fields<T> const expected = ProductNear(a, b, target, c.GetRotOrder());
        R product;
        EXPECT_EQ(&product.MulUsingEulerAnglesTarget(a, b, c), &product);
        EXPECT_EQ(FieldsOf(product), expected);
        product = c;
        EXPECT_EQ(FieldsOf(product.MulUsingEulerAnglesTarget(a, b, product)), expected);
    }
    EXPECT_EQ(FieldsOf(R().MulUsingEulerAnglesTarget(a, b, MakeEuler<T>(E3DROTORDER_YZX))).order, E3DROTORDER_YZX);
    EXPECT_EQ(FieldsOf(R().MulUsingEulerAnglesTarget(a, b, MakeQuat<T>())).order, E3DROTORDER_XYZ);
}

TYPED_TEST(CompactRotationProduct, MulAndUpdateEulerAngles_stays_near_the_one_or_the_other)
{
    using T = TypeParam;
    using R = C3DRotation3Tpl<T>;
    for (R const & a : MakeOperands<T>())
    {
        for (R const & b : {MakeEuler<T>(E3DROTORDER_YZX), MakeQuat<T>()})
        {
            for (int const useFirst : {0, 1, 2, -1})
            {
                R const & reference = useFirst != 0 ? a : b;
                C3DVector3Tpl<T> target(0, 0, 0);
                reference.GetXYZAngles(target);
                Fields<T> const expected = ProductNear(a, b, target, reference.GetRotOrder());
                R product;
                EXPECT_EQ(&product.MulAndUpdateEulerAngles(a, b, useFirst), &product);
                EXPECT_EQ(FieldsOf(product), expected);
                product = a;
                EXPECT_EQ(FieldsOf(product.MulAndUpdateEulerAngles(product, b, useFirst)), expected);
                product = b;
                EXPECT_EQ(FieldsOf(product.MulAndUpdateEulerAngles(a, product, useFirst)), expected);
            }
        }
    }
}

TYPED_TEST(CompactRotationProduct, Angles_beyond_a_turn_stay_beyond_it)
{
    using T = TypeParam;
    C3DRotation3Tpl<T> rotation(0, 0, T(4 * k_Pi), E3DROTORDER_XYZ);
    C3DRotation3Tpl<T> const step(E3D_AXIS_Z, T(0.25));
    rotation.MulAndUpdateEulerAngles(rotation, step, 1);
    EXPECT_NEAR(static_cast<double>(FieldsOf(rotation).values[2]), 4 * k_Pi + 0.25, 1e-5);
    EXPECT_EQ(rotation.GetRotOrder(), E3DROTORDER_XYZ);
}

// --- Alignment -------------------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationProduct, AlignAxesToVct_tells_the_result_and_drops_the_rotation)
{
    using T = TypeParam;
    using V = C3DVector3Tpl<T>;
    struct Row
    {
        tagE3DAXISTYPE axis1;
        V vct1;
        tagE3DAXISTYPE axis2;
        V vct2;
        int result;
        int flag;
    };
    Row const rows[] = {
        {E3D_AXIS_X, V(0, 2, 0), E3D_AXIS_Y, V(0, 0, 1), 1, 0},
        {E3D_AXIS_Z, V(0, 2, 0), E3D_AXIS_Y, V(0, -3, 0), 1, 1}, // parallel: the second axis is a choice
        {E3D_AXIS_X, V(0, 2, 0), E3D_AXIS_Y, V(0, 0, 0), 1, 1},
        {E3D_AXIS_X, V(0, 0, 0), E3D_AXIS_Y, V(0, 0, 1), 0, 0},
        {E3D_AXIS_X, V(0, 2, 0), E3D_AXIS_X, V(0, 0, 1), 0, 0},
        {static_cast<tagE3DAXISTYPE>(3), V(0, 2, 0), E3D_AXIS_X, V(0, 0, 1), 0, 0},
    };
    for (Row const & row : rows)
    {
        for (C3DRotation3Tpl<T> & rotation : MakeOperands<T>())
        {
            Fields<T> const before = FieldsOf(rotation);
            int flag = 7;
            EXPECT_EQ(rotation.AlignAxesToVct(row.axis1, row.vct1, row.axis2, row.vct2, &flag), row.result);
            EXPECT_EQ(flag, row.flag);
            EXPECT_EQ(rotation.AlignAxesToVct(row.axis1, row.vct1, row.axis2, row.vct2, nullptr), row.result);
            EXPECT_EQ(FieldsOf(rotation), before);
        }
    }
}

TEST(CompactRotationProductFloat, AlignAxesToVct_has_the_limits_of_double)
{
    using V = C3DVector3Tpl<float>;
    C3DRotation3Tpl<float> const rotation;
    EXPECT_EQ(rotation.AlignAxesToVct(E3D_AXIS_X, V(0, 1e-9F, 0), E3D_AXIS_Y, V(0, 0, 1), nullptr), 1);
}
