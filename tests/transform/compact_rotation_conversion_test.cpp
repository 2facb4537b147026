/// Conversion of the compact rotation between its forms, and reading through a conversion.

#include "transform/compact_rotation_states.h"

using namespace compact_rotation_test;

namespace
{

template <typename T>
class CompactRotationConversion : public testing::Test
{
};
TYPED_TEST_SUITE(CompactRotationConversion, Scalars);

template <typename T>
C3DVector3Tpl<T> AnglesOf(C3DQuatTpl<T> const & quat, tagE3DROTORDER order)
{
    C3DVector3Tpl<T> angles;
    F3DQuatToEuler(quat, angles, order);
    return angles;
}

template <typename T>
Fields<T> AxisAngleOf(C3DQuatTpl<T> const & quat)
{
    C3DVector3Tpl<T> axis;
    T angle;
    F3DQuatToAxisAngle(quat, axis, angle);
    return AxisAngleFields(axis, angle);
}

template <typename T>
C3DVector3Tpl<T> Reordered(C3DVector3Tpl<T> angles, tagE3DROTORDER from, tagE3DROTORDER to)
{
    C3DRotMatTpl<T> matrix;
    F3DEulerToMat(angles, matrix, from);
    F3DMatToEuler(matrix, angles, to);
    return angles;
}

template <typename T>
Fields<T> Converted(C3DRotation3Tpl<T> rotation, E3DRotRep rep, tagE3DROTORDER order = E3DROTORDER_XYZ)
{
    EXPECT_EQ(&rotation.SetRepresentation(rep, order), &rotation);
    return FieldsOf(rotation);
}

/// The numbers of MakeQuat, MakeEuler and MakeAxisAngle.
template <typename T>
C3DQuatTpl<T> const k_Quat = {T(1.5), T(-0.5), T(2), T(0.25)};
template <typename T>
C3DVector3Tpl<T> const k_Angles = {T(0.5), T(-1), T(7)};
template <typename T>
C3DVector3Tpl<T> const k_Axis = {T(1), T(-2), T(3)};
template <typename T>
constexpr T k_Angle = T(7.5);

template <typename T>
C3DQuatTpl<T> QuatOfAngles(tagE3DROTORDER order)
{
    C3DQuatTpl<T> quat;
    F3DEulerToQuat(k_Angles<T>, quat, order);
    return quat;
}

} // namespace

// --- SetRepresentation -----------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationConversion, The_held_form_stays_as_it_is_with_its_order)
{
    for (C3DRotation3Tpl<TypeParam> const & rotation : MakeEach<TypeParam>())
    {
        for (tagE3DROTORDER const order : k_Orders)
        {
            EXPECT_EQ(Converted(rotation, rotation.GetRepresentation(), order), FieldsOf(rotation));
        }
    }
}

TYPED_TEST(CompactRotationConversion, To_a_quaternion)
{
    using T = TypeParam;
    for (tagE3DROTORDER const order : k_Orders)
    {
        EXPECT_EQ(Converted(MakeEuler<T>(order), E3DRotRep_Quat, E3DROTORDER_YXZ), QuatFields(QuatOfAngles<T>(order)));
    }
    EXPECT_EQ(Converted(MakeAxisAngle<T>(), E3DRotRep_Quat), QuatFields(QuatOfAxis(k_Axis<T>, k_Angle<T>)));
    // An order that does not exist has no product of turns.
    EXPECT_EQ(Converted(MakeEuler<T>(k_NoOrder), E3DRotRep_Quat), QuatFields(C3DQuatTpl<T>()));
}

TYPED_TEST(CompactRotationConversion, To_euler_angles)
{
    using T = TypeParam;
    C3DQuatTpl<T> unit = k_Quat<T>;
    unit.Normalize();
    for (tagE3DROTORDER const order : k_Orders)
    {
        EXPECT_EQ(Converted(MakeQuat<T>(), E3DRotRep_Euler, order), EulerFields(AnglesOf(unit, order), order));
        EXPECT_EQ(Converted(MakeAxisAngle<T>(), E3DRotRep_Euler, order),
                  EulerFields(AnglesOf(QuatOfAxis(k_Axis<T>, k_Angle<T>), order), order));
    }
    EXPECT_EQ(Converted(MakeQuat<T>(), E3DRotRep_Euler, k_NoOrder), EulerFields(C3DVector3Tpl<T>(0, 0, 0), k_NoOrder));
}

TYPED_TEST(CompactRotationConversion, To_axis_and_angle)
{
    using T = TypeParam;
    C3DQuatTpl<T> unit = k_Quat<T>;
    unit.Normalize();
    EXPECT_EQ(Converted(MakeQuat<T>(), E3DRotRep_AxisAngle), AxisAngleOf(unit));
    for (tagE3DROTORDER const order : k_Orders)
    {
        EXPECT_EQ(Converted(MakeEuler<T>(order), E3DRotRep_AxisAngle, E3DROTORDER_YXZ),
                  AxisAngleOf(QuatOfAngles<T>(order)));
    }
}

TYPED_TEST(CompactRotationConversion, A_quaternion_of_any_length_is_converted_as_the_unit_one)
{
    using T = TypeParam;
    C3DQuatTpl<T> const twice(T(0.5), T(0.5), T(0.5), T(0.5));
    C3DQuatTpl<T> const unit = C3DQuatTpl<T>(T(0.25), T(0.25), T(0.25), T(0.25));
    for (E3DRotRep const rep : {E3DRotRep_Euler, E3DRotRep_AxisAngle})
    {
        EXPECT_EQ(Converted(C3DRotation3Tpl<T>(twice), rep), Converted(C3DRotation3Tpl<T>(unit), rep));
    }
    // One that has no direction is the identity.
    C3DRotation3Tpl<T> const null(C3DQuatTpl<T>(0, 0, 0, 0));
    EXPECT_EQ(Converted(null, E3DRotRep_Euler),
              EulerFields(AnglesOf(C3DQuatTpl<T>(), E3DROTORDER_XYZ), E3DROTORDER_XYZ));
    EXPECT_EQ(Converted(null, E3DRotRep_AxisAngle), AxisAngleFields(C3DVector3Tpl<T>(1, 0, 0), T(0)));
    C3DRotation3Tpl<T> const nan(C3DQuatTpl<T>(k_Nan<T>, 0, 0, 0));
    EXPECT_EQ(Converted(nan, E3DRotRep_AxisAngle), AxisAngleFields(C3DVector3Tpl<T>(1, 0, 0), T(0)));
}

TYPED_TEST(CompactRotationConversion, An_axis_up_to_the_limit_stands_for_the_identity)
{
    using T = TypeParam;
    using V = C3DVector3Tpl<T>;
    C3DRotMatTpl<T> const identity;
    T const limit = k_Limit<T>;
    for (V const & axis : {V(0, 0, 0), V(limit, 0, 0), V(0, -limit, 0), V(0, 0, limit), V(k_Nan<T>, 1, 1)})
    {
        C3DRotation3Tpl<T> const rotation(axis, T(1));
        EXPECT_EQ(Converted(rotation, E3DRotRep_Quat), QuatFields(C3DQuatTpl<T>()));
        EXPECT_EQ(Converted(rotation, E3DRotRep_Euler, E3DROTORDER_ZYX),
                  EulerFields(AnglesOf(C3DQuatTpl<T>(), E3DROTORDER_ZYX), E3DROTORDER_ZYX));
        C3DRotMatTpl<T> matrix(9, 9, 9, 9, 9, 9, 9, 9, 9);
        rotation.GetMatrix(matrix);
        EXPECT_TRUE(SameNumbers(matrix, identity));
    }
    for (V const & axis : {V(Above(limit), 0, 0), V(0, -Above(limit), 0), V(0, 0, Above(limit)),
                           V(T(0.8) * limit, T(0.8) * limit, 0), V(T(1000), 0, 0)})
    {
        C3DRotation3Tpl<T> const rotation(axis, T(1));
        C3DQuatTpl<T> const quat = QuatOfAxis(axis, T(1));
        EXPECT_NEAR(static_cast<double>(quat.W), std::cos(0.5), 1e-6);
        EXPECT_EQ(Converted(rotation, E3DRotRep_Quat), QuatFields(quat));
        EXPECT_EQ(Converted(rotation, E3DRotRep_Euler, E3DROTORDER_ZYX),
                  EulerFields(AnglesOf(quat, E3DROTORDER_ZYX), E3DROTORDER_ZYX));
        C3DRotMatTpl<T> matrix;
        C3DRotMatTpl<T> expected;
        rotation.GetMatrix(matrix);
        F3DQuatToMat(quat, expected);
        EXPECT_TRUE(SameNumbers(matrix, expected));
    }
}

TYPED_TEST(CompactRotationConversion, An_axis_is_divided_by_its_length_first)
{
    using T = TypeParam;
    test_support::Random random(6);
    for (int i = 0; i < 100; ++i)
    {
        C3DVector3Tpl<T> const axis(random.Uniform<T>(-2, 2), random.Uniform<T>(-2, 2), random.Uniform<T>(-2, 2));
        T const angle = random.Uniform<T>(-4, 4);
        C3DRotation3Tpl<T> const rotation(axis, angle);
        EXPECT_EQ(Converted(rotation, E3DRotRep_Quat), QuatFields(QuatOfAxis(axis, angle)));
    }
}

TYPED_TEST(CompactRotationConversion, Where_no_axis_is_determined_it_is_X_and_the_angle_stays)
{
    using T = TypeParam;
    C3DVector3Tpl<T> const x(1, 0, 0);
    EXPECT_EQ(Converted(C3DRotation3Tpl<T>(), E3DRotRep_AxisAngle), AxisAngleFields(x, T(0)));
    EXPECT_EQ(Converted(C3DRotation3Tpl<T>(0, 0, 0, E3DROTORDER_ZYX), E3DRotRep_AxisAngle), AxisAngleFields(x, T(0)));
    Fields<T> const wholeTurn = Converted(C3DRotation3Tpl<T>(C3DQuatTpl<T>(-1, 0, 0, 0)), E3DRotRep_AxisAngle);
    EXPECT_EQ(wholeTurn.values[0], 1);
    EXPECT_NEAR(static_cast<double>(wholeTurn.scalar), 2 * k_Pi, 1e-6);
    Fields<T> const endless = Converted(C3DRotation3Tpl<T>(k_Infinity<T>, 0, 0, E3DROTORDER_XYZ), E3DRotRep_AxisAngle);
    EXPECT_EQ(endless, AxisAngleFields(x, k_Nan<T>));
}

// A quaternion whose squared length is within 1e-12 of one is not scaled, and may have a vector far shorter than the
// sine of its angle.
TEST(CompactRotationConversionDouble, Components_of_an_axis_up_to_the_limit_do_not_determine_it)
{
    double const w = 1 - 1e-13;
    double const sine = std::sin(2 * std::acos(w) * 0.5);
    double const limit = 1e-12;
    double atLimit = sine * limit;
    while (atLimit / sine > limit)
    {
        atLimit = Below(atLimit);
    }
    while (atLimit / sine < limit)
    {
        atLimit = Above(atLimit);
    }
    ASSERT_EQ(atLimit / sine, limit);
    double aboveLimit = atLimit;
    while (aboveLimit / sine <= limit)
    {
        aboveLimit = Above(aboveLimit);
    }
    for (int axis = 0; axis < 3; ++axis)
    {
        C3DVector3Tpl<double> v(axis, atLimit);
        C3DRotation3Tpl<double> rotation(C3DQuatTpl<double>(w, v.X, v.Y, v.Z));
        EXPECT_EQ(Converted(rotation, E3DRotRep_AxisAngle),
                  AxisAngleFields(C3DVector3Tpl<double>(1, 0, 0), 2 * std::acos(w)));
        v = C3DVector3Tpl<double>(axis, -aboveLimit);
        rotation.Set(C3DQuatTpl<double>(w, v.X, v.Y, v.Z));
        EXPECT_EQ(Converted(rotation, E3DRotRep_AxisAngle),
                  AxisAngleFields(C3DVector3Tpl<double>(v.X / sine, v.Y / sine, v.Z / sine), 2 * std::acos(w)));
    }
}

TYPED_TEST(CompactRotationConversion, A_target_form_that_does_not_exist_changes_nothing)
{
    for (C3DRotation3Tpl<TypeParam> const & rotation : MakeEach<TypeParam>())
    {
        EXPECT_EQ(Converted(rotation, k_NoForm, E3DROTORDER_ZYX), FieldsOf(rotation));
        EXPECT_EQ(Converted(rotation, static_cast<E3DRotRep>(255), E3DROTORDER_ZYX), FieldsOf(rotation));
    }
}

TYPED_TEST(CompactRotationConversion, An_unknown_form_is_converted_to_nothing)
{
    using T = TypeParam;
    C3DRotation3Tpl<T> unknown = WithUnknownForm(MakeAxisAngle<T>());
    Fields<T> const before = FieldsOf(unknown);
    for (E3DRotRep const rep : k_Forms)
    {
        EXPECT_EQ(Converted(unknown, rep, E3DROTORDER_ZYX), before);
    }
    EXPECT_EQ(FieldsOf(unknown.Set(E3DROTORDER_ZYX, 1)), before);
    EXPECT_EQ(FieldsOf(unknown.Set(E3DROTORDER_XYZ, 0)), before);

    C3DQuatTpl<T> quat(9, 8, 7, 6);
    C3DVector4Tpl<T> four(9, 8, 7, 6);
    C3DVector3Tpl<T> three(9, 8, 7);
    T x = 9;
    T y = 8;
    T z = 7;
    C3DRotMatTpl<T> matrix(1, 2, 3, 4, 5, 6, 7, 8, 9);
    C3DRotMatTpl<T> const matrixBefore = matrix;
    C3DMatrix33Tpl<T> narrow(1, 2, 3, 4, 5, 6, 7, 8, 9);
    C3DMatrix44Tpl<T> wide(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    C3DMatrix44Tpl<T> const wideBefore = wide;
    unknown.GetQuat(quat);
    unknown.GetQuat(four);
    unknown.GetAxisAngle(four);
    unknown.GetAxisAngle(three, x);
    unknown.GetXYZAngles(three);
    unknown.GetXYZAngles(three, E3DROTORDER_ZYX);
    unknown.GetXYZAngles(x, y, z);
    unknown.GetMatrix(matrix);
    unknown.GetMatrix(narrow);
    unknown.GetMatrix(wide);
    EXPECT_TRUE(SameNumbers(quat, C3DQuatTpl<T>(9, 8, 7, 6)));
    EXPECT_TRUE(four == C3DVector4Tpl<T>(9, 8, 7, 6));
    EXPECT_TRUE(SameNumbers(three, C3DVector3Tpl<T>(9, 8, 7)));
    EXPECT_TRUE(x == 9 && y == 8 && z == 7);
    EXPECT_TRUE(SameNumbers(matrix, matrixBefore));
    EXPECT_TRUE(SameNumbers(narrow, matrixBefore.GetMatrix()));
    EXPECT_TRUE(wide == wideBefore);
    EXPECT_EQ(FieldsOf(unknown), before);
}

// --- Set(order, keepRotation) ----------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationConversion, Another_order_that_keeps_the_rotation_has_other_angles)
{
    using T = TypeParam;
    for (tagE3DROTORDER const from : k_Orders)
    {
        for (tagE3DROTORDER const to : k_Orders)
        {
            for (int const keep : {1, -7})
            {
                C3DRotation3Tpl<T> rotation = MakeEuler<T>(from);
                EXPECT_EQ(&rotation.Set(to, keep), &rotation);
                EXPECT_EQ(FieldsOf(rotation),
                          EulerFields(from == to ? k_Angles<T> : Reordered(k_Angles<T>, from, to), to));
            }
        }
    }
}

TYPED_TEST(CompactRotationConversion, Another_order_that_keeps_the_angles_is_another_rotation)
{
    using T = TypeParam;
    for (tagE3DROTORDER const from : k_Orders)
    {
        for (tagE3DROTORDER const to : {E3DROTORDER_XYZ, E3DROTORDER_ZXY, E3DROTORDER_ZYX, k_NoOrder})
        {
            C3DRotation3Tpl<T> rotation = MakeEuler<T>(from);
            EXPECT_EQ(&rotation.Set(to, 0), &rotation);
            EXPECT_EQ(FieldsOf(rotation), EulerFields(k_Angles<T>, to));
        }
    }
}

TYPED_TEST(CompactRotationConversion, An_order_for_another_form_converts_it_first)
{
    using T = TypeParam;
    for (C3DRotation3Tpl<T> const & source : {MakeQuat<T>(), MakeAxisAngle<T>()})
    {
        for (tagE3DROTORDER const order : k_Orders)
        {
            C3DRotation3Tpl<T> rotation = source;
            rotation.Set(order, 1);
            EXPECT_EQ(FieldsOf(rotation), Converted(source, E3DRotRep_Euler, order));
            rotation = source;
            rotation.Set(order, 0);
            Fields<T> expected = Converted(source, E3DRotRep_Euler, E3DROTORDER_XYZ);
            expected.order = order;
            EXPECT_EQ(FieldsOf(rotation), expected) << "the angles of XYZ under another name";
        }
    }
}

TYPED_TEST(CompactRotationConversion, A_single_angle_is_extracted_anew_and_loses_its_turns)
{
    using T = TypeParam;
    C3DRotation3Tpl<T> rotation(0, 0, T(0.5 + 2 * k_Pi), E3DROTORDER_XYZ);
    rotation.Set(E3DROTORDER_XYZ, 1);
    EXPECT_GT(FieldsOf(rotation).values[2], 6) << "no change of order, no extraction";
    rotation.Set(E3DROTORDER_ZYX, 1);
    EXPECT_NEAR(static_cast<double>(FieldsOf(rotation).values[2]), 0.5, 1e-5);
}

// --- Reading ---------------------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationConversion, GetRepresentation_and_GetRotOrder)
{
    using T = TypeParam;
    EXPECT_EQ(MakeQuat<T>().GetRepresentation(), E3DRotRep_Quat);
    EXPECT_EQ(MakeEuler<T>().GetRepresentation(), E3DRotRep_Euler);
    EXPECT_EQ(MakeAxisAngle<T>().GetRepresentation(), E3DRotRep_AxisAngle);
    EXPECT_EQ(MakeQuat<T>().GetRotOrder(), E3DROTORDER_XYZ);
    EXPECT_EQ(MakeAxisAngle<T>().GetRotOrder(), E3DROTORDER_XYZ);
    for (tagE3DROTORDER const order : {E3DROTORDER_XYZ, E3DROTORDER_YZX, E3DROTORDER_ZYX, k_NoOrder})
    {
        EXPECT_EQ(MakeEuler<T>(order).GetRotOrder(), order);
    }
}

TYPED_TEST(CompactRotationConversion, GetQuat_gives_the_quaternion_of_each_form)
{
    using T = TypeParam;
    for (C3DRotation3Tpl<T> const & rotation : MakeEach<T>())
    {
        Fields<T> const before = FieldsOf(rotation);
        C3DQuatTpl<T> quat(9, 9, 9, 9);
        C3DVector4Tpl<T> four(9, 9, 9, 9);
        rotation.GetQuat(quat);
        rotation.GetQuat(four);
        EXPECT_EQ(QuatFields(quat), Converted(rotation, E3DRotRep_Quat));
        EXPECT_TRUE(four == C3DVector4Tpl<T>(quat.X, quat.Y, quat.Z, quat.W));
        EXPECT_EQ(FieldsOf(rotation), before);
    }
    EXPECT_TRUE(SameNumbers(QuatOf(MakeQuat<T>()), k_Quat<T>)) << "as held, not normalised";
}

TYPED_TEST(CompactRotationConversion, GetAxisAngle_gives_axis_and_angle_of_each_form)
{
    using T = TypeParam;
    for (C3DRotation3Tpl<T> const & rotation : MakeEach<T>())
    {
        Fields<T> const before = FieldsOf(rotation);
        C3DVector3Tpl<T> axis(9, 9, 9);
        T angle = 9;
        C3DVector4Tpl<T> four(9, 9, 9, 9);
        rotation.GetAxisAngle(axis, angle);
        rotation.GetAxisAngle(four);
        EXPECT_EQ(AxisAngleFields(axis, angle), Converted(rotation, E3DRotRep_AxisAngle));
        EXPECT_TRUE(four == C3DVector4Tpl<T>(axis.X, axis.Y, axis.Z, angle));
        EXPECT_EQ(FieldsOf(rotation), before);
    }
}

TYPED_TEST(CompactRotationConversion, GetAxisAngle_of_the_identity_gives_the_X_axis)
{
    using T = TypeParam;
    C3DVector3Tpl<T> axis(9, 9, 9);
    T angle = 9;
    C3DRotation3Tpl<T>().GetAxisAngle(axis, angle);
    EXPECT_TRUE(SameNumbers(axis, C3DVector3Tpl<T>(1, 0, 0)));
    EXPECT_EQ(angle, 0);
    C3DVector3Tpl<double> nullAxis;
    double nullAngle = 9;
    C3DRotation().GetAxisAngle(nullAxis, nullAngle);
    EXPECT_TRUE(nullAxis.IsExactlyNull()) << "unlike the caching class";
}

TYPED_TEST(CompactRotationConversion, A_null_axis_with_an_angle_reads_as_the_identity_but_is_none)
{
    using T = TypeParam;
    C3DRotation3Tpl<T> const rotation(C3DVector3Tpl<T>(0, 0, 0), T(1));
    EXPECT_TRUE(SameNumbers(QuatOf(rotation), C3DQuatTpl<T>()));
    C3DRotMatTpl<T> matrix(9, 9, 9, 9, 9, 9, 9, 9, 9);
    rotation.GetMatrix(matrix);
    EXPECT_TRUE(SameNumbers(matrix, C3DRotMatTpl<T>()));
    EXPECT_EQ(rotation.IsIdentity(), 0);
    C3DVector3Tpl<T> axis;
    T angle;
    rotation.GetAxisAngle(axis, angle);
    EXPECT_EQ(AxisAngleFields(axis, angle), FieldsOf(rotation));
}

TYPED_TEST(CompactRotationConversion, GetXYZAngles_gives_held_angles_as_they_are)
{
    using T = TypeParam;
    C3DVector3Tpl<T> const held(T(-0.0), T(50), k_Nan<T>);
    for (tagE3DROTORDER const order : {E3DROTORDER_XYZ, E3DROTORDER_ZYX, k_NoOrder})
    {
        C3DRotation3Tpl<T> const rotation(held, order);
        C3DVector3Tpl<T> angles(9, 9, 9);
        rotation.GetXYZAngles(angles, order);
        EXPECT_TRUE(SameNumbers(angles, held));
        angles.Set(9, 9, 9);
        rotation.GetXYZAngles(angles);
        EXPECT_TRUE(SameNumbers(angles, held));
        angles.Set(9, 9, 9);
        rotation.GetXYZAngles(angles.X, angles.Y, angles.Z);
        EXPECT_TRUE(SameNumbers(angles, held));
    }
}

TYPED_TEST(CompactRotationConversion, GetXYZAngles_in_another_order_extracts_them)
{
    using T = TypeParam;
    for (tagE3DROTORDER const from : k_Orders)
    {
        C3DRotation3Tpl<T> const rotation = MakeEuler<T>(from);
        for (tagE3DROTORDER const to : k_Orders)
        {
            C3DVector3Tpl<T> angles(9, 9, 9);
            rotation.GetXYZAngles(angles, to);
            EXPECT_TRUE(SameNumbers(angles, from == to ? k_Angles<T> : Reordered(k_Angles<T>, from, to)));
            EXPECT_EQ(FieldsOf(rotation), EulerFields(k_Angles<T>, from));
        }
    }
}

TYPED_TEST(CompactRotationConversion, GetXYZAngles_of_another_form_is_in_the_order_asked_for_or_XYZ)
{
    using T = TypeParam;
    for (C3DRotation3Tpl<T> const & rotation : {MakeQuat<T>(), MakeAxisAngle<T>()})
    {
        Fields<T> const before = FieldsOf(rotation);
        for (tagE3DROTORDER const order : k_Orders)
        {
            C3DVector3Tpl<T> angles(9, 9, 9);
            rotation.GetXYZAngles(angles, order);
            EXPECT_EQ(EulerFields(angles, order), Converted(rotation, E3DRotRep_Euler, order));
        }
        C3DVector3Tpl<T> angles(9, 9, 9);
        rotation.GetXYZAngles(angles);
        EXPECT_EQ(EulerFields(angles, E3DROTORDER_XYZ), Converted(rotation, E3DRotRep_Euler, E3DROTORDER_XYZ));
        C3DVector3Tpl<T> parts(9, 9, 9);
        rotation.GetXYZAngles(parts.X, parts.Y, parts.Z);
        EXPECT_TRUE(SameNumbers(parts, angles));
        EXPECT_EQ(FieldsOf(rotation), before);
    }
}

TYPED_TEST(CompactRotationConversion, GetMatrix_gives_the_matrix_of_each_form)
{
    using T = TypeParam;
    C3DQuatTpl<T> unit = k_Quat<T>;
    unit.Normalize();
    C3DRotMatTpl<T> ofQuat;
    F3DQuatToMat(unit, ofQuat);
    C3DRotMatTpl<T> ofEuler;
    F3DEulerToMat(k_Angles<T>, ofEuler, E3DROTORDER_ZXY);
    C3DRotMatTpl<T> ofAxisAngle;
    F3DQuatToMat(QuatOfAxis(k_Axis<T>, k_Angle<T>), ofAxisAngle);
    std::array<C3DRotMatTpl<T>, 3> const expected = {ofQuat, ofEuler, ofAxisAngle};
    for (std::size_t i = 0; i < 3; ++i)
    {
        C3DRotation3Tpl<T> const rotation = MakeEach<T>()[i];
        C3DRotMatTpl<T> matrix(9, 9, 9, 9, 9, 9, 9, 9, 9);
        rotation.GetMatrix(matrix);
        EXPECT_TRUE(SameNumbers(matrix, expected[i]));
        C3DMatrix33Tpl<T> narrow(9, 9, 9, 9, 9, 9, 9, 9, 9);
        rotation.GetMatrix(narrow);
        EXPECT_TRUE(SameNumbers(narrow, expected[i].GetMatrix()));
        C3DMatrix44Tpl<T> wide(9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9);
        wide.SetMaskInfo(0xA5);
        rotation.GetMatrix(wide);
        for (int r = 0; r < 4; ++r)
        {
            for (int c = 0; c < 4; ++c)
            {
                T const element = r < 3 && c < 3 ? expected[i].Get(r, c) : T(r == c ? 1 : 0);
                EXPECT_TRUE(SameNumber(wide.Get(r, c), element)) << r << c;
            }
        }
        EXPECT_EQ(wide.GetMaskInfo(), 0xA5);
    }
}

TYPED_TEST(CompactRotationConversion, GetMatrix_of_a_null_quaternion_is_the_identity)
{
    using T = TypeParam;
    C3DRotMatTpl<T> matrix(9, 9, 9, 9, 9, 9, 9, 9, 9);
    C3DRotation3Tpl<T>(C3DQuatTpl<T>(0, 0, 0, 0)).GetMatrix(matrix);
    EXPECT_TRUE(SameNumbers(matrix, C3DRotMatTpl<T>()));
}

TYPED_TEST(CompactRotationConversion, GetMatrix_in_an_order_that_does_not_exist)
{
    using T = TypeParam;
    C3DRotation3Tpl<T> const rotation = MakeEuler<T>(k_NoOrder);
    C3DRotMatTpl<T> const nines(9, 9, 9, 9, 9, 9, 9, 9, 9);
    C3DRotMatTpl<T> matrix = nines;
    rotation.GetMatrix(matrix);
    EXPECT_TRUE(SameNumbers(matrix, std::is_same_v<T, double> ? nines : C3DRotMatTpl<T>()));
    C3DMatrix33Tpl<T> narrow = nines;
    rotation.GetMatrix(narrow);
    EXPECT_TRUE(SameNumbers(narrow, C3DRotMatTpl<T>().GetMatrix()));
}
