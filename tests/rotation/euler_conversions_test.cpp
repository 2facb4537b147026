/// Euler angles, axis and angle, quaternion and matrix, apart from the extraction with a target.

#include "math/rotation_conversions.h"

#include "rotation/euler_checks.h"
#include "support/random.h"

#include <cstring>

using namespace test_support;

namespace
{

class EulerOrders : public testing::TestWithParam<OrderRow>
{
};
INSTANTIATE_TEST_SUITE_P(All, EulerOrders, testing::ValuesIn(k_OrderTable), NameOfOrder);

TEST(EulerOrder, The_numbers_are_those_that_streams_hold)
{
    EXPECT_EQ(int(E3DROTORDER_XYZ), 0);
    EXPECT_EQ(int(E3DROTORDER_XZY), 1);
    EXPECT_EQ(int(E3DROTORDER_YXZ), 2);
    EXPECT_EQ(int(E3DROTORDER_YZX), 3);
    EXPECT_EQ(int(E3DROTORDER_ZXY), 4);
    EXPECT_EQ(int(E3DROTORDER_ZYX), 5);
}

TEST_P(EulerOrders, A_matrix_is_the_product_of_the_elementary_rotations_as_they_act)
{
    OrderRow const & row = GetParam();
    Random random(31);
    for (int i = 0; i < 500; ++i)
    {
        Vector const angles(random.Uniform(-20.0, 20.0), random.Uniform(-20.0, 20.0), random.Uniform(-20.0, 20.0));
        RotMat mat(9, 9, 9, 9, 9, 9, 9, 9, 9);
        F3DEulerToMat(angles, mat, row.order);
        EXPECT_LE(MaxDifference(ToJudge(mat), ProductMatrix(row, angles)), 1e-15);
    }
}

TEST_P(EulerOrders, A_quaternion_is_the_product_with_the_last_on_the_left)
{
    OrderRow const & row = GetParam();
    Random random(32);
    for (int i = 0; i < 500; ++i)
    {
        Vector const angles(random.Uniform(-20.0, 20.0), random.Uniform(-20.0, 20.0), random.Uniform(-20.0, 20.0));
        Quat quat(9, 9, 9, 9);
        F3DEulerToQuat(angles, quat, row.order);
        // Sign included: the product is not brought to a positive W.
        EXPECT_LE(MaxDifference(ToJudge(quat), ProductQuaternion(row, angles)), 1e-15);
    }
}

TEST_P(EulerOrders, A_quaternion_of_two_angles_is_their_product)
{
    OrderRow const & row = GetParam();
    for (int zero = 0; zero < 3; ++zero)
    {
        Vector angles(0.3, -1.1, 2.6);
        angles.Set(zero, -0.0);
        Quat quat;
        F3DEulerToQuat(angles, quat, row.order);
        EXPECT_LE(MaxDifference(ToJudge(quat), ProductQuaternion(row, angles)), 1e-15) << zero;
    }
}

TEST_P(EulerOrders, Angles_act_about_the_fixed_axes_in_turn)
{
    OrderRow const & row = GetParam();
    Vector const angles(0.4, -0.9, 1.7);
    Vector stepwise(1, 2, 3);
    for (int const axis : {row.a0, row.a1, row.a2})
    {
        RotMat elementary;
        elementary.Set(static_cast<tagE3DAXISTYPE>(axis), angles.Get(axis));
        stepwise.Mul(stepwise, elementary);
    }
    Vector atOnce(1, 2, 3);
    atOnce.Mul(atOnce, Matrix(row, angles));
    EXPECT_LE(MaxDifference(stepwise, atOnce), 1e-15);
}

TEST_P(EulerOrders, Zero_angles_give_exactly_the_identity)
{
    for (double const zero : {0.0, -0.0})
    {
        Quat quat(9, 9, 9, 9);
        F3DEulerToQuat(Vector(zero, zero, zero), quat, GetParam().order);
        EXPECT_TRUE(HasComponents(quat, 1.0, 0.0, 0.0, 0.0));
        RotMat mat(9, 9, 9, 9, 9, 9, 9, 9, 9);
        F3DEulerToMat(Vector(zero, zero, zero), mat, GetParam().order);
        EXPECT_TRUE(HasElements<double>(mat, {1, 0, 0, 0, 1, 0, 0, 0, 1}));
    }
}

TEST_P(EulerOrders, One_angle_gives_its_quaternion_without_normalising)
{
    for (double const angle : {1e-300, -0.7, 1.0, 3.0, 7.0, -40.0})
    {
        double const c = std::cos(angle / 2);
        double const s = std::sin(angle / 2);
        Quat quat(9, 9, 9, 9);
        F3DEulerToQuat(Vector(angle, 0, -0.0), quat, GetParam().order);
        EXPECT_TRUE(HasComponents(quat, c, s, 0.0, 0.0));
        F3DEulerToQuat(Vector(-0.0, angle, 0), quat, GetParam().order);
        EXPECT_TRUE(HasComponents(quat, c, 0.0, s, 0.0));
        F3DEulerToQuat(Vector(0, 0, angle), quat, GetParam().order);
        EXPECT_TRUE(HasComponents(quat, c, 0.0, 0.0, s));
    }
    // An infinite angle shows that nothing is normalised: that would give the identity.
    Quat quat;
    F3DEulerToQuat(Vector(0, k_Infinity<double>, 0), quat, GetParam().order);
    EXPECT_TRUE(std::isnan(quat.W) && std::isnan(quat.Y));
    EXPECT_EQ(quat.X, 0);
    EXPECT_EQ(quat.Z, 0);
}

TEST_P(EulerOrders, A_NaN_angle_counts_as_zero_when_the_angles_are_counted)
{
    double const nan = k_Nan<double>;
    Quat quat(9, 9, 9, 9);
    F3DEulerToQuat(Vector(nan, 0, nan), quat, GetParam().order);
    EXPECT_TRUE(HasComponents(quat, 1.0, 0.0, 0.0, 0.0));
    F3DEulerToQuat(Vector(nan, 0.5, 0), quat, GetParam().order);
    EXPECT_TRUE(HasComponents(quat, std::cos(0.25), 0.0, std::sin(0.25), 0.0));
    // Two others: the product is a NaN, and the normalisation makes the identity of it.
    F3DEulerToQuat(Vector(nan, 0.5, 1.0), quat, GetParam().order);
    EXPECT_TRUE(HasComponents(quat, 1.0, 0.0, 0.0, 0.0));
}

TEST_P(EulerOrders, A_matrix_of_a_NaN_or_infinite_angle_has_no_shortcut)
{
    for (double const bad : {k_Nan<double>, k_Infinity<double>})
    {
        RotMat const mat = Matrix(GetParam(), Acting(GetParam(), 0, bad, 0));
        EXPECT_TRUE(std::isnan(mat.Get(GetParam().a0, GetParam().a2)));
        EXPECT_TRUE(std::isnan(mat.Get(GetParam().a2, GetParam().a2)));
        EXPECT_EQ(mat.Get(GetParam().a1, GetParam().a1) == 1, false);
    }
}

TEST_P(EulerOrders, The_float_forms_compute_in_double)
{
    OrderRow const & row = GetParam();
    Random random(33);
    for (int i = 0; i < 500; ++i)
    {
        Vectorf const angles(random.Uniform(-9.0F, 9.0F), random.Uniform(-9.0F, 9.0F),
                             i % 3 == 0 ? 0 : random.Uniform(-9.0F, 9.0F));
        Vector const wide(static_cast<double>(angles.X), static_cast<double>(angles.Y), static_cast<double>(angles.Z));
        Quat quat;
        F3DEulerToQuat(wide, quat, row.order);
        Quatf narrow(9, 9, 9, 9);
        F3DEulerToQuat(angles, narrow, row.order);
        EXPECT_TRUE(HasComponents(narrow, static_cast<float>(quat.W), static_cast<float>(quat.X),
                                  static_cast<float>(quat.Y), static_cast<float>(quat.Z)));
        Quatf alias(9, 9, 9, 9);
        F3DEulerToQuatf(angles, alias, row.order);
        EXPECT_TRUE(HasComponents(alias, narrow.W, narrow.X, narrow.Y, narrow.Z));
        RotMat const mat = Matrix(row, wide);
        RotMatf narrowMat(9, 9, 9, 9, 9, 9, 9, 9, 9);
        F3DEulerToMat(angles, narrowMat, row.order);
        for (int e = 0; e < 9; ++e)
        {
            EXPECT_EQ(narrowMat.Get(e / 3, e % 3), static_cast<float>(mat.Get(e / 3, e % 3)));
        }
    }
}

TEST(EulerToQuat, A_value_that_names_no_order_leaves_the_product_out_and_nothing_else)
{
    for (tagE3DROTORDER const order : k_NoOrders)
    {
        Quat quat(0, 2, 0, 0);
        F3DEulerToQuat(Vector(0.1, 0.2, 0.3), quat, order);
        EXPECT_TRUE(HasComponents(quat, 0.0, 1.0, 0.0, 0.0)) << "what was there is normalised";
        quat.SetNull();
        F3DEulerToQuat(Vector(0.1, 0, 0.3), quat, order);
        EXPECT_TRUE(HasComponents(quat, 1.0, 0.0, 0.0, 0.0));
        quat.Set(0, 2, 0, 0);
        F3DEulerToQuat(Vector(0, 0.5, 0), quat, order);
        EXPECT_TRUE(HasComponents(quat, std::cos(0.25), 0.0, std::sin(0.25), 0.0));
        F3DEulerToQuat(Vector(0, 0, 0), quat, order);
        EXPECT_TRUE(HasComponents(quat, 1.0, 0.0, 0.0, 0.0));

        Quatf narrow(0, 2, 0, 0);
        F3DEulerToQuat(Vectorf(0.1F, 0.2F, 0.3F), narrow, order);
        EXPECT_TRUE(HasComponents(narrow, 1.0F, 0.0F, 0.0F, 0.0F)) << "the float form starts from the identity";
    }
}

TEST(EulerToMat, A_value_that_names_no_order_leaves_the_matrix_and_in_float_gives_the_identity)
{
    for (tagE3DROTORDER const order : k_NoOrders)
    {
        RotMat mat(1, 2, 3, 4, 5, 6, 7, 8, 9);
        F3DEulerToMat(Vector(0.1, 0.2, 0.3), mat, order);
        EXPECT_TRUE(HasElements<double>(mat, {1, 2, 3, 4, 5, 6, 7, 8, 9}));
        RotMatf narrow(1, 2, 3, 4, 5, 6, 7, 8, 9);
        F3DEulerToMat(Vectorf(0.1F, 0.2F, 0.3F), narrow, order);
        EXPECT_TRUE(HasElements<float>(narrow, {1, 0, 0, 0, 1, 0, 0, 0, 1}));
    }
}

template <typename T>
class Conversions : public testing::Test
{
};
TYPED_TEST_SUITE(Conversions, Scalars);

TYPED_TEST(Conversions, A_matrix_is_written_from_any_quaternion_without_normalising)
{
    C3DRotMatTpl<TypeParam> mat;
    F3DQuatToMat(C3DQuatTpl<TypeParam>(1, 2, 3, 5), mat);
    EXPECT_TRUE(HasElements<TypeParam>(mat, {-67, 22, 14, 2, -57, 34, 26, 26, -25}));
    F3DQuatToMat(C3DQuatTpl<TypeParam>(0, 0, 0, 0), mat);
    EXPECT_TRUE(HasElements<TypeParam>(mat, {1, 0, 0, 0, 1, 0, 0, 0, 1}));
    F3DQuatToMat(C3DQuatTpl<TypeParam>(k_Nan<TypeParam>, 0, 0, 1), mat);
    EXPECT_TRUE(std::isnan(mat.Get(0, 1)));
    EXPECT_EQ(mat.Get(2, 2), 1);
}

TYPED_TEST(Conversions, The_matrix_of_a_quaternion_is_the_transpose_of_the_judge_s)
{
    Random random(34);
    for (int i = 0; i < 1000; ++i)
    {
        C3DQuatTpl<TypeParam> quat(random.Uniform<TypeParam>(-1, 1), random.Uniform<TypeParam>(-1, 1),
                                   random.Uniform<TypeParam>(-1, 1), random.Uniform<TypeParam>(-1, 1));
        quat.Normalize();
        C3DRotMatTpl<TypeParam> mat;
        F3DQuatToMat(quat, mat);
        EXPECT_LE(MaxDifference(ToJudge(mat), ToJudge(quat).toRotationMatrix().transpose()),
                  4 * std::numeric_limits<TypeParam>::epsilon());
    }
}

TEST(QuatToMatf, It_is_the_float_form)
{
    RotMatf mat;
    F3DQuatToMatf(Quatf(1, 2, 3, 5), mat);
    EXPECT_TRUE(HasElements<float>(mat, {-67, 22, 14, 2, -57, 34, 26, 26, -25}));
}

TYPED_TEST(Conversions, A_quaternion_comes_back_from_its_matrix_with_w_not_negative)
{
    Random random(35);
    for (int i = 0; i < 2000; ++i)
    {
        double const wLimit = i % 2 == 0 ? 1 : 1e-3;
        C3DQuatTpl<TypeParam> quat(random.Uniform<TypeParam>(-TypeParam(wLimit), TypeParam(wLimit)),
                                   random.Uniform<TypeParam>(-1, 1), random.Uniform<TypeParam>(-1, 1),
                                   random.Uniform<TypeParam>(-1, 1));
        quat.Normalize();
        C3DRotMatTpl<TypeParam> mat;
        F3DQuatToMat(quat, mat);
        C3DQuatTpl<TypeParam> back(9, 9, 9, 9);
        F3DMatToQuat(mat, back);
        EXPECT_GE(back.W, 0);
        EXPECT_NEAR(back.GetSquaredLength(), 1, 8 * std::numeric_limits<TypeParam>::epsilon());
        if (quat.W < 0)
        {
            quat.Negate();
        }
        EXPECT_LE(MaxDifference(ToJudge(quat), ToJudge(back)), 16 * std::numeric_limits<TypeParam>::epsilon());
    }
}

// The numbers are no rotations; they make each branch show what it does.
TYPED_TEST(Conversions, MatToQuat_of_each_largest_diagonal_element)
{
    using M = C3DRotMatTpl<TypeParam>;
    auto const close = [](M const & mat, double w, double x, double y, double z)
    {
        C3DQuatTpl<TypeParam> quat(9, 9, 9, 9);
        F3DMatToQuat(mat, quat);
        Eigen::Quaterniond expected(w, x, y, z);
        expected.normalize();
        return MaxDifference(ToJudge(quat), expected) <= 4 * std::numeric_limits<TypeParam>::epsilon();
    };
    // Each root is 1 and each factor 1/4, before the normalisation.
    // W from [1][2] - [2][1].
    EXPECT_TRUE(close(M(1, 5, 11, 3, -1, 23, 7, 13, -1), 10 * 0.25, 1, 8 * 0.25, 18 * 0.25));
    // W from [2][0] - [0][2], which is negative here, so that all signs change.
    EXPECT_TRUE(close(M(-1, 5, 11, 3, 1, 23, 7, 13, -1), 4 * 0.25, -8 * 0.25, -1, -36 * 0.25));
    // W from [0][1] - [1][0].
    EXPECT_TRUE(close(M(-1, 5, 11, 3, -1, 23, 7, 13, 1), 2 * 0.25, 18 * 0.25, 36 * 0.25, 1));
    // The trace beats the diagonal.
    EXPECT_TRUE(close(M(1, 5, 11, 3, 1, 23, 7, 13, 1), 1, 10 * 0.25, -4 * 0.25, 2 * 0.25));
}

TYPED_TEST(Conversions, MatToQuat_gives_ties_on_the_diagonal_to_the_lower_index)
{
    using M = C3DRotMatTpl<TypeParam>;
    C3DQuatTpl<TypeParam> quat;
    // Null: each candidate root is one half; the first stands.
    F3DMatToQuat(M().SetNull(), quat);
    EXPECT_TRUE(HasComponents<TypeParam>(quat, 0, 1, 0, 0));
    // [1][1] and [2][2] tie above [0][0].
    F3DMatToQuat(M(-1, 0, 0, 0, 0, 0, 0, 0, 0), quat);
    EXPECT_TRUE(HasComponents<TypeParam>(quat, 0, 0, 1, 0));
    // [0][0] and [2][2] tie above [1][1].
    F3DMatToQuat(M(0, 0, 0, 0, -1, 0, 0, 0, 0), quat);
    EXPECT_TRUE(HasComponents<TypeParam>(quat, 0, 1, 0, 0));
    F3DMatToQuat(M(-1, 0, 0, 0, -1, 0, 0, 0, 1), quat);
    EXPECT_TRUE(HasComponents<TypeParam>(quat, 0, 0, 0, 1));
}

// On a matrix that is no rotation the branches differ, and so does a test of the trace against 0.
TYPED_TEST(Conversions, MatToQuat_compares_the_largest_diagonal_element_with_the_trace)
{
    using M = C3DRotMatTpl<TypeParam>;
    auto const first = [](M const & mat)
    {
        C3DQuatTpl<TypeParam> quat;
        F3DMatToQuat(mat, quat);
        return quat;
    };
    // Trace 1/2 as great as the first element: its branch, although the trace is above 0.
    EXPECT_TRUE(HasComponents<TypeParam>(first(M(0.5, 0, 0, 0, 0.25, 0, 0, 0, -0.25)), 0, 1, 0, 0));
    // Trace just greater.
    TypeParam const above = TypeParam(0.25) + 2 * std::numeric_limits<TypeParam>::epsilon();
    EXPECT_TRUE(HasComponents<TypeParam>(first(M(0.5, 0, 0, 0, above, 0, 0, 0, -0.25)), 1, 0, 0, 0));
    EXPECT_TRUE(HasComponents<TypeParam>(first(M(4, 0, 0, 0, 4, 0, 0, 0, 1)), 1, 0, 0, 0));
    EXPECT_TRUE(HasComponents<TypeParam>(first(M(-3, 0, 0, 0, -3, 0, 0, 0, 9)), 0, 0, 0, 1));
    EXPECT_TRUE(HasComponents<TypeParam>(first(M(-9, 0, 0, 0, -9, 0, 0, 0, -20)), 0, 1, 0, 0));
    // A NaN ends in the normalisation, which makes the identity of it.
    EXPECT_TRUE(HasComponents<TypeParam>(first(M(k_Nan<TypeParam>, 0, 0, 0, -1, 0, 0, 0, -1)), 1, 0, 0, 0));
}

TYPED_TEST(Conversions, MatToQuat_of_half_turns_is_exact)
{
    using M = C3DRotMatTpl<TypeParam>;
    C3DQuatTpl<TypeParam> quat;
    F3DMatToQuat(M(1, 0, 0, 0, -1, 0, 0, 0, -1), quat);
    EXPECT_TRUE(HasComponents<TypeParam>(quat, 0, 1, 0, 0));
    F3DMatToQuat(M(-1, 0, 0, 0, 1, 0, 0, 0, -1), quat);
    EXPECT_TRUE(HasComponents<TypeParam>(quat, 0, 0, 1, 0));
    F3DMatToQuat(M(-1, 0, 0, 0, -1, 0, 0, 0, 1), quat);
    EXPECT_TRUE(HasComponents<TypeParam>(quat, 0, 0, 0, 1));
    F3DMatToQuat(M(), quat);
    EXPECT_TRUE(HasComponents<TypeParam>(quat, 1, 0, 0, 0));
}

/// The steps in single precision.
Quatf MatToQuatBySteps(RotMatf const & m)
{
    float const trace = m.Get(0, 0) + m.Get(1, 1) + m.Get(2, 2);
    int i = m.Get(1, 1) > m.Get(0, 0) ? 1 : 0;
    i = m.Get(2, 2) > m.Get(i, i) ? 2 : i;
    float w = 0;
    float v[3] = {};
    if (m.Get(i, i) >= trace)
    {
        int const j = (i + 1) % 3;
        int const k = (i + 2) % 3;
        float const r = sqrtf(m.Get(i, i) + 1 - m.Get(j, j) - m.Get(k, k)) * 0.5F;
        float const f = 0.25F / r;
        w = (m.Get(j, k) - m.Get(k, j)) * f;
        v[i] = r;
        v[j] = (m.Get(i, j) + m.Get(j, i)) * f;
        v[k] = (m.Get(i, k) + m.Get(k, i)) * f;
    }
    else
    {
        w = sqrtf(trace + 1) * 0.5F;
        float const f = 0.25F / w;
        v[0] = (m.Get(1, 2) - m.Get(2, 1)) * f;
        v[1] = (m.Get(2, 0) - m.Get(0, 2)) * f;
        v[2] = (m.Get(0, 1) - m.Get(1, 0)) * f;
    }
    Quatf quat(w, v[0], v[1], v[2]);
    return w < 0 ? quat.Negate().Normalize() : quat.Normalize();
}

TEST(MatToQuatFloat, It_follows_the_steps_in_single_precision)
{
    Random random(36);
    for (int i = 0; i < 2000; ++i)
    {
        Vectorf const angles(random.Uniform(-3.0F, 3.0F), random.Uniform(-3.0F, 3.0F), random.Uniform(-3.0F, 3.0F));
        RotMatf m;
        F3DEulerToMat(angles, m, E3DROTORDER_XYZ);
        Quatf const expected = MatToQuatBySteps(m);
        Quatf quat;
        F3DMatToQuat(m, quat);
        EXPECT_TRUE(HasComponents<float>(quat, expected.W, expected.X, expected.Y, expected.Z));
    }
}

TYPED_TEST(Conversions, QuatToAxisAngle_of_the_identity_has_no_axis)
{
    C3DVector3Tpl<TypeParam> axis(9, 9, 9);
    TypeParam angle = 9;
    F3DQuatToAxisAngle(C3DQuatTpl<TypeParam>(1, 0, 0, 0), axis, angle);
    EXPECT_EQ(angle, 0);
    EXPECT_TRUE(AreEqual(axis, C3DVector3Tpl<TypeParam>(0, 0, 0)));
    axis.Set(9, 9, 9);
    F3DQuatToAxisAngle(C3DQuatTpl<TypeParam>(-1, 0, 0, 0), axis, angle);
    EXPECT_EQ(angle, 2 * std::acos(TypeParam(-1)));
    EXPECT_NEAR(angle, k_TwoPi, 1e-6);
    if constexpr (std::is_same_v<TypeParam, double>)
    {
        EXPECT_TRUE(AreEqual(axis, C3DVector3Tpl<TypeParam>(0, 0, 0)));
    }
}

TYPED_TEST(Conversions, QuatToAxisAngle_gives_an_angle_from_zero_to_a_whole_turn)
{
    C3DVector3Tpl<TypeParam> axis;
    TypeParam angle = 0;
    auto const c = static_cast<TypeParam>(std::cos(2.5));
    auto const s = static_cast<TypeParam>(std::sin(2.5));
    F3DQuatToAxisAngle(C3DQuatTpl<TypeParam>(c, 0, TypeParam(0.6) * s, TypeParam(-0.8) * s), axis, angle);
    EXPECT_NEAR(angle, 5, 1e-6);
    EXPECT_EQ(axis.X, 0);
    EXPECT_NEAR(axis.Y, 0.6, 1e-6);
    EXPECT_NEAR(axis.Z, -0.8, 1e-6);
    // The components are divided by the sine of the angle, whatever their length is.
    F3DQuatToAxisAngle(C3DQuatTpl<TypeParam>(0, 2, 3, 4), axis, angle);
    EXPECT_NEAR(angle, k_Pi, 1e-6);
    EXPECT_TRUE(AreEqual(axis, C3DVector3Tpl<TypeParam>(2, 3, 4)));
}

TYPED_TEST(Conversions, QuatToAxisAngle_does_not_clamp_w)
{
    for (TypeParam const w : {TypeParam(1.5), TypeParam(-1.5), k_Nan<TypeParam>})
    {
        C3DVector3Tpl<TypeParam> axis(9, 9, 9);
        TypeParam angle = 9;
        F3DQuatToAxisAngle(C3DQuatTpl<TypeParam>(w, 1, 2, 3), axis, angle);
        EXPECT_TRUE(std::isnan(angle));
        EXPECT_TRUE(AreEqual(axis, C3DVector3Tpl<TypeParam>(0, 0, 0))) << "a sine that is a NaN is not at the limit";
    }
}

TEST(QuatToAxisAngleDouble, The_axis_vanishes_below_a_sine_of_1e_12)
{
    // An arc cosine cannot be small but zero: 1 - W is at least 1e-16, and the angle 1e-8. At the whole turn it is the
    // rounding of pi.
    Vector axis;
    double angle = 0;
    F3DQuatToAxisAngle(Quat(std::nextafter(1.0, 0.0), 1e-8, 0, 0), axis, angle);
    EXPECT_GT(angle, 1e-8);
    EXPECT_EQ(axis.X, 1e-8 / std::sin(angle * 0.5));
    F3DQuatToAxisAngle(Quat(-1, 1e-8, 0, 0), axis, angle);
    EXPECT_NE(std::sin(angle * 0.5), 0);
    EXPECT_TRUE(AreEqual(axis, Vector(0, 0, 0)));
}

TEST(QuatToAxisAngleFloat, It_computes_in_single_precision)
{
    Random random(37);
    for (int i = 0; i < 1000; ++i)
    {
        Quatf quat(random.Uniform(-1.0F, 1.0F), random.Uniform(-1.0F, 1.0F), 0.5F, 0);
        quat.Normalize();
        Vectorf axis;
        float angle = 0;
        F3DQuatToAxisAngle(quat, axis, angle);
        float const volatile expected = 2 * acosf(quat.W);
        float const volatile half = expected * 0.5F;
        EXPECT_EQ(angle, expected);
        EXPECT_EQ(axis.Y, quat.Y / sinf(half));
    }
    Vectorf axis;
    float angle = 0;
    // sinf(acosf(-1)) is some -9e-8, within the limit of 1e-6 of single precision.
    F3DQuatToAxisAngle(Quatf(-1, 1, 2, 3), axis, angle);
    EXPECT_GT(std::abs(sinf(angle * 0.5F)), 1e-12F);
    EXPECT_TRUE(AreEqual(axis, Vectorf(0, 0, 0)));
    // The next W has a sine of 3e-4.
    F3DQuatToAxisAngle(Quatf(std::nextafter(1.0F, 0.0F), 1, 2, 3), axis, angle);
    EXPECT_GT(axis.X, 1000);
}

TYPED_TEST(Conversions, AxisAngleToQuat_takes_an_axis_of_any_length)
{
    C3DQuatTpl<TypeParam> quat(9, 9, 9, 9);
    for (TypeParam const length : {TypeParam(1e-9), TypeParam(0.5), TypeParam(1000)})
    {
        F3DAxisAngleToQuat(C3DVector3Tpl<TypeParam>(0, 3 * length, -4 * length), TypeParam(2.5), quat);
        EXPECT_NEAR(quat.W, std::cos(1.25), 1e-7);
        EXPECT_EQ(quat.X, 0);
        EXPECT_NEAR(quat.Y, 0.6 * std::sin(1.25), 1e-7);
        EXPECT_NEAR(quat.Z, -0.8 * std::sin(1.25), 1e-7);
    }
}

TYPED_TEST(Conversions, AxisAngleToQuat_copies_a_null_axis)
{
    C3DQuatTpl<TypeParam> quat(9, 9, 9, 9);
    F3DAxisAngleToQuat(C3DVector3Tpl<TypeParam>(0, 0, 0), static_cast<TypeParam>(k_Pi), quat);
    EXPECT_NEAR(quat.W, 0, 1e-7);
    EXPECT_LT(quat.GetLength(), 1e-7) << "far from a unit quaternion";
    EXPECT_EQ(quat.X, 0);
    F3DAxisAngleToQuat(C3DVector3Tpl<TypeParam>(TypeParam(3e-13), 0, TypeParam(-4e-13)), TypeParam(1), quat);
    EXPECT_EQ(quat.W, static_cast<TypeParam>(std::cos(0.5)));
    EXPECT_EQ(quat.X, TypeParam(3e-13));
    EXPECT_EQ(quat.Y, 0);
    EXPECT_EQ(quat.Z, TypeParam(-4e-13));
    F3DAxisAngleToQuat(C3DVector3Tpl<TypeParam>(k_Nan<TypeParam>, 2, 0), TypeParam(1), quat);
    EXPECT_TRUE(std::isnan(quat.X));
    EXPECT_EQ(quat.Y, 2) << "a length that is a NaN is not above the limit";
}

TEST(AxisAngleToQuatDouble, The_limit_is_a_length_above_1e_12)
{
    Quat quat;
    double const above = std::nextafter(1e-12, 1.0);
    F3DAxisAngleToQuat(Vector(0, 1e-12, 0), 1, quat);
    ASSERT_EQ(Vector(0, 1e-12, 0).GetLength(), 1e-12);
    EXPECT_EQ(quat.Y, 1e-12);
    ASSERT_GT(Vector(0, std::nextafter(above, 1.0), 0).GetLength(), 1e-12);
    F3DAxisAngleToQuat(Vector(0, std::nextafter(above, 1.0), 0), 1, quat);
    EXPECT_NEAR(quat.Y, std::sin(0.5), 1e-15);
}

TEST(AxisAngleToQuatFloat, It_computes_in_double_with_the_same_limit)
{
    Random random(38);
    for (int i = 0; i < 1000; ++i)
    {
        Vectorf const axis(random.OverDecades<float>(-11, 3), random.OverDecades<float>(-11, 3),
                           random.OverDecades<float>(-11, 3));
        float const angle = random.Uniform(-20.0F, 20.0F);
        Quat wide;
        F3DAxisAngleToQuat(
            Vector(static_cast<double>(axis.X), static_cast<double>(axis.Y), static_cast<double>(axis.Z)),
            static_cast<double>(angle), wide);
        Quatf quat;
        F3DAxisAngleToQuat(axis, angle, quat);
        EXPECT_TRUE(HasComponents(quat, static_cast<float>(wide.W), static_cast<float>(wide.X),
                                  static_cast<float>(wide.Y), static_cast<float>(wide.Z)));
        Quatf alias;
        F3DAxisAngleToQuatf(axis, angle, alias);
        EXPECT_TRUE(HasComponents(alias, quat.W, quat.X, quat.Y, quat.Z));
    }
    // Its square would vanish in single precision.
    Quatf quat;
    F3DAxisAngleToQuat(Vectorf(2e-12F, 0, 0), 1, quat);
    EXPECT_NEAR(quat.X, std::sin(0.5), 1e-7);
    F3DAxisAngleToQuat(Vectorf(0.9e-12F, 0, 0), 1, quat);
    EXPECT_EQ(quat.X, 0.9e-12F);
}

} // namespace
