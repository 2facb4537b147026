/// Euler angles from a matrix, nearest to a target, away from gimbal lock.

#include "math/rotation_conversions.h"

#include "rotation/euler_checks.h"
#include "rotation/extraction_by_steps.h"
#include "support/random.h"

using namespace test_support;

namespace
{

class EulerExtraction : public testing::TestWithParam<OrderRow>
{
protected:
    OrderRow const & row = GetParam();
};
INSTANTIATE_TEST_SUITE_P(All, EulerExtraction, testing::ValuesIn(k_OrderTable), NameOfOrder);

Vectorf Narrow(Vector const & v)
{
    return {static_cast<float>(v.X), static_cast<float>(v.Y), static_cast<float>(v.Z)};
}

Vector Widen(Vectorf const & v)
{
    return {static_cast<double>(v.X), static_cast<double>(v.Y), static_cast<double>(v.Z)};
}

Vectorf Extract(OrderRow const & row, RotMatf const & mat, Vectorf const & target)
{
    Vectorf angles = target;
    F3DMatToEulerUsingTarget(mat, angles, row.order);
    return angles;
}

RotMatf Matrix(OrderRow const & row, Vectorf const & angles)
{
    RotMatf mat;
    F3DEulerToMat(angles, mat, row.order);
    return mat;
}

TEST_P(EulerExtraction, The_identity_gives_zeros)
{
    EXPECT_TRUE(AreEqual(Extract(row, RotMat(), Vector(0, 0, 0)), Vector(0, 0, 0)));
    EXPECT_TRUE(AreEqual(Extract(row, RotMatf(), Vectorf(0, 0, 0)), Vectorf(0, 0, 0)));
}

TEST_P(EulerExtraction, The_whole_turns_of_the_target_come_back)
{
    Vector const target = Acting(row, k_TwoPi, 0, -k_TwoPi);
    EXPECT_TRUE(AreEqual(Extract(row, RotMat(), target), target));
    Vector const many = Acting(row, -6 * k_TwoPi, 20 * k_TwoPi, 3 * k_TwoPi);
    EXPECT_LE(MaxDifference(Extract(row, RotMat(), many), many), 1e-13);
    Vector const turned = Acting(row, 0.5 + 7 * k_TwoPi, -0.25 - k_TwoPi, 3 + 11 * k_TwoPi);
    EXPECT_LE(MaxDifference(Extract(row, Matrix(row, turned), turned), turned), 1e-13);
}

TEST_P(EulerExtraction, Each_angle_comes_back_alone)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        for (double const angle : {-1.5, -0.1, 1e-9, 0.7, 1.5})
        {
            Vector angles(0, 0, 0);
            angles.Set(axis, angle);
            EXPECT_LE(MaxDifference(Extract(row, Matrix(row, angles), Vector(0, 0, 0)), angles), 1e-13);
        }
    }
}

TEST_P(EulerExtraction, Without_a_target_the_content_is_ignored_and_with_zeros_the_two_agree)
{
    Random random(41);
    for (int i = 0; i < 300; ++i)
    {
        Vector const angles(random.Uniform(-4.0, 4.0), random.Uniform(-4.0, 4.0), random.Uniform(-4.0, 4.0));
        RotMat const mat = Matrix(row, angles);
        Vector plain(100, -200, k_Nan<double>);
        F3DMatToEuler(mat, plain, row.order);
        EXPECT_TRUE(AreEqual(plain, Extract(row, mat, Vector(0, 0, 0))));
        for (int axis = 0; axis < 3; ++axis)
        {
            EXPECT_GT(plain.Get(axis), -k_Pi);
            EXPECT_LE(plain.Get(axis), k_Pi);
        }
        RotMatf const narrowMat = Matrix(row, Narrow(angles));
        Vectorf narrow(100, -200, k_Nan<float>);
        F3DMatToEuler(narrowMat, narrow, row.order);
        EXPECT_TRUE(AreEqual(narrow, Extract(row, narrowMat, Vectorf(0, 0, 0))));
    }
}

TEST_P(EulerExtraction, A_quaternion_goes_through_its_matrix)
{
    Random random(42);
    for (int i = 0; i < 300; ++i)
    {
        Vector const angles(random.Uniform(-4.0, 4.0), random.Uniform(-4.0, 4.0), random.Uniform(-4.0, 4.0));
        Quat quat;
        F3DEulerToQuat(angles, quat, row.order);
        RotMat mat;
        F3DQuatToMat(quat, mat);
        Vector expected;
        F3DMatToEuler(mat, expected, row.order);
        Vector result(100, -200, 300);
        F3DQuatToEuler(quat, result, row.order);
        EXPECT_TRUE(AreEqual(result, expected));
        EXPECT_LE(MaxDifference(ToJudge(Matrix(row, result)), ProductMatrix(row, angles)), 1e-9);

        Quatf narrowQuat;
        F3DEulerToQuat(Narrow(angles), narrowQuat, row.order);
        RotMatf narrowMat;
        F3DQuatToMat(narrowQuat, narrowMat);
        Vectorf narrowExpected;
        F3DMatToEuler(narrowMat, narrowExpected, row.order);
        Vectorf narrow(100, -200, 300);
        F3DQuatToEuler(narrowQuat, narrow, row.order);
        EXPECT_TRUE(AreEqual(narrow, narrowExpected));
        Vectorf alias(100, -200, 300);
        F3DQuatfToEuler(narrowQuat, alias, row.order);
        EXPECT_TRUE(AreEqual(alias, narrowExpected));
    }
}

TEST(EulerExtractionWithoutOrder, The_angles_stay_with_a_target_and_are_zeros_without)
{
    RotMat mat;
    mat.Set(E3D_AXIS_Y, 0.5);
    RotMatf matf;
    matf.Set(E3D_AXIS_Y, 0.5F);
    for (tagE3DROTORDER const order : k_NoOrders)
    {
        Vector angles(1, -200, 3);
        F3DMatToEulerUsingTarget(mat, angles, order);
        EXPECT_TRUE(AreEqual(angles, Vector(1, -200, 3)));
        F3DMatToEuler(mat, angles, order);
        EXPECT_TRUE(AreEqual(angles, Vector(0, 0, 0)));
        angles.Set(1, 2, 3);
        F3DQuatToEuler(Quat(0, 1, 0, 0), angles, order);
        EXPECT_TRUE(AreEqual(angles, Vector(0, 0, 0)));
        Vectorf narrow(1, -200, 3);
        F3DMatToEulerUsingTarget(matf, narrow, order);
        EXPECT_TRUE(AreEqual(narrow, Vectorf(1, -200, 3)));
        F3DMatToEuler(matf, narrow, order);
        EXPECT_TRUE(AreEqual(narrow, Vectorf(0, 0, 0)));
        narrow.Set(1, 2, 3);
        F3DQuatToEuler(Quatf(0, 1, 0, 0), narrow, order);
        EXPECT_TRUE(AreEqual(narrow, Vectorf(0, 0, 0)));
    }
}

TEST_P(EulerExtraction, Only_the_five_elements_of_the_middle_row_and_column_count)
{
    Vector const angles = Acting(row, 0.4, -0.8, 1.9);
    RotMat mat = Matrix(row, angles);
    mat.Set(row.a1, row.a0, k_Nan<double>).Set(row.a1, row.a1, k_Nan<double>);
    mat.Set(row.a2, row.a0, k_Nan<double>).Set(row.a2, row.a1, k_Nan<double>);
    EXPECT_LE(MaxDifference(Extract(row, mat, Vector(0, 0, 0)), angles), 1e-14);
}

TEST_P(EulerExtraction, The_nearer_of_the_two_solutions_is_taken)
{
    Random random(43);
    for (int i = 0; i < 500; ++i)
    {
        double const f = random.Uniform(-3.1, 3.1);
        double const mid = random.Uniform(-1.5, 1.5);
        double const h = random.Uniform(-3.1, 3.1);
        RotMat const mat = Matrix(row, Acting(row, f, mid, h));
        Vector const one = Acting(row, f, mid, h);
        Vector const two = Acting(row, f + k_Pi, k_Pi - mid, h - k_Pi);
        EXPECT_LE(MaxDifference(Extract(row, mat, one), one), 1e-12);
        EXPECT_LE(MaxDifference(Extract(row, mat, two), two), 1e-12);
        Vector const target(random.Uniform(-9.0, 9.0), random.Uniform(-9.0, 9.0), random.Uniform(-9.0, 9.0));
        auto const distance = [&target](Vector const & v) {
            return std::abs(Wrapped(v.X - target.X)) + std::abs(Wrapped(v.Y - target.Y)) +
                   std::abs(Wrapped(v.Z - target.Z));
        };
        Vector const result = Extract(row, mat, target);
        // The sum of the angular distances decides, the middle included; a decision within rounding is free.
        double const nearest = std::min(distance(one), distance(two));
        EXPECT_NEAR(distance(result), nearest, 1e-11);
        for (int axis = 0; axis < 3; ++axis)
        {
            EXPECT_LE(std::abs(result.Get(axis) - target.Get(axis)), k_Pi + 1e-12);
        }
    }
}

TEST_P(EulerExtraction, A_tie_goes_to_the_second_solution)
{
    Vector const tie = Acting(row, k_HalfPi, -k_HalfPi, k_HalfPi);
    EXPECT_TRUE(AreEqual(Extract(row, RotMat(), tie), Acting(row, k_Pi, -k_Pi, k_Pi)));
    Vector const nearer = Acting(row, k_HalfPi, -k_HalfPi, k_HalfPi - 1e-9);
    EXPECT_TRUE(AreEqual(Extract(row, RotMat(), nearer), Vector(0, 0, 0)));
    EXPECT_TRUE(AreEqual(Extract(row, RotMatf(), Narrow(tie)), Narrow(Acting(row, k_Pi, -k_Pi, k_Pi))));
}

TEST_P(EulerExtraction, The_second_solution_turns_on_the_sign_of_each_angle)
{
    for (double const f : {-0.5, 0.5})
    {
        for (double const mid : {-0.25, 0.25})
        {
            Vector const one = Acting(row, f, mid, -f);
            Vector const two = Acting(row, f > 0 ? f - k_Pi : f + k_Pi, (mid > 0 ? k_Pi : -k_Pi) - mid,
                                      -f > 0 ? -f - k_Pi : -f + k_Pi);
            Vector const result = Extract(row, Matrix(row, one), two);
            EXPECT_LE(MaxDifference(result, two), 1e-14);
        }
    }
}

TEST_P(EulerExtraction, Results_lie_above_half_a_turn_below_the_target_up_to_half_a_turn_above)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        Vector target(0, 0, 0);
        target.Set(axis, k_Pi);
        Vector up(0, 0, 0);
        up.Set(axis, k_TwoPi);
        Vector stay(0, 0, 0);
        if (axis != row.a1)
        {
            EXPECT_TRUE(AreEqual(Extract(row, RotMat(), target), up)) << "0 is half a turn below: one turn is added";
            target.Set(axis, -k_Pi);
            EXPECT_TRUE(AreEqual(Extract(row, RotMat(), target), stay)) << "0 is half a turn above: it stays";
        }
        target.Set(axis, 3.0);
        EXPECT_TRUE(AreEqual(Extract(row, RotMat(), target), stay));
        target.Set(axis, std::nextafter(-k_Pi, -4.0));
        Vector const below = Extract(row, RotMat(), target);
        if (axis != row.a1)
        {
            EXPECT_NEAR(below.Get(axis), -k_TwoPi, 1e-15) << "0 is more than half a turn above";
        }
    }
}

TEST_P(EulerExtraction, A_far_target_is_approached_as_well_as_its_digits_allow)
{
    RotMat const mat = Matrix(row, Acting(row, 0.1, 0.2, 0.3));
    for (double const far : {1e6, -1e9, 1e15})
    {
        Vector const result = Extract(row, mat, Vector(far, far, far));
        EXPECT_LE(MaxDifference(result, Vector(far, far, far)), k_Pi + std::abs(far) * 1e-15);
    }
    for (double const huge : {1e30, -1e300})
    {
        Vector const result = Extract(row, mat, Vector(huge, huge, huge));
        EXPECT_TRUE(F3DIsValidNumber(result.X) && F3DIsValidNumber(result.Y) && F3DIsValidNumber(result.Z));
    }
}

TEST_P(EulerExtraction, A_NaN_in_the_target_spoils_its_own_angle_alone)
{
    Vector const angles = Acting(row, 0.1, 0.2, 0.3);
    RotMat const mat = Matrix(row, angles);
    for (int axis = 0; axis < 3; ++axis)
    {
        Vector target(0, 0, 0);
        target.Set(axis, k_Nan<double>);
        // With the distances undefined the first solution stands; a NaN is outside no range, so nothing is unwound.
        EXPECT_LE(MaxDifference(Extract(row, mat, target), angles), 1e-14);
        target.Set(axis, k_Infinity<double>);
        Vector result = Extract(row, mat, target);
        EXPECT_EQ(result.Get(axis), k_Infinity<double>);
        result.Set(axis, angles.Get(axis));
        EXPECT_LE(MaxDifference(result, angles), 1e-14);
    }
}

TEST_P(EulerExtraction, A_NaN_in_the_matrix_reaches_the_angles_that_rest_on_it)
{
    Vector const angles = Acting(row, 0.1, 0.2, 0.3);
    RotMat const good = Matrix(row, angles);
    RotMat mat = good;
    mat.Set(row.a0, row.a2, k_Nan<double>);
    Vector const target(0, 0, 0);
    EXPECT_TRUE(std::isnan(Extract(row, mat, target).Get(row.a1)));
    mat = good;
    mat.Set(row.a2, row.a2, k_Nan<double>);
    EXPECT_EQ(Extract(row, mat, target).Get(row.a0), k_HalfPi) << "a NaN cosine counts as a sine that reached one";
    mat = good;
    mat.Set(row.a0, row.a0, k_Nan<double>);
    EXPECT_EQ(Extract(row, mat, target).Get(row.a2), k_HalfPi);
}

// The corner element is set to the limit itself and to its neighbour, between which the routine changes.
TEST_P(EulerExtraction, Gimbal_lock_begins_at_a_sine_of_0_999999999999)
{
    for (double const sign : {-1.0, 1.0})
    {
        double const limit = 0.999999999999;
        double const middle = std::acos(std::sqrt((1 - limit) * (1 + limit))) * sign;
        RotMat mat = Matrix(row, Acting(row, 0.3, middle, 0.1));
        Vector const target = Acting(row, 0.3, middle, 0.1);
        mat.Set(row.a0, row.a2, row.sign * sign * limit);
        EXPECT_EQ(Extract(row, mat, target).Get(row.a1), sign * k_HalfPi);
        double const inside = std::nextafter(limit, 0.0);
        mat.Set(row.a0, row.a2, row.sign * sign * inside);
        EXPECT_EQ(Extract(row, mat, target).Get(row.a1), std::asin(sign * inside));
        EXPECT_LT(std::asin(inside), k_HalfPi - 1.4e-6);
    }
}

TEST_P(EulerExtraction, Gimbal_lock_begins_at_a_sine_of_0_999999_in_float)
{
    float atLimit = 0.999999F;
    atLimit = static_cast<double>(atLimit) >= 0.999999 ? atLimit : std::nextafter(atLimit, 1.0F);
    float const inside = std::nextafter(atLimit, 0.0F);
    ASSERT_LT(static_cast<double>(inside), 0.999999);
    for (float const sign : {-1.0F, 1.0F})
    {
        Vectorf const target = Narrow(Acting(row, 0.3, static_cast<double>(sign) * 1.5694, 0.1));
        RotMatf mat = Matrix(row, target);
        mat.Set(row.a0, row.a2, static_cast<float>(row.sign) * sign * atLimit);
        EXPECT_EQ(Extract(row, mat, target).Get(row.a1), sign * static_cast<float>(k_HalfPi));
        mat.Set(row.a0, row.a2, static_cast<float>(row.sign) * sign * inside);
        EXPECT_EQ(Extract(row, mat, target).Get(row.a1),
                  static_cast<float>(std::asin(static_cast<double>(sign * inside))));
    }
}

TEST_P(EulerExtraction, A_sine_beyond_one_is_gimbal_lock)
{
    for (double const sine : {1.0, 1.0000001, 5.0, k_Infinity<double>})
    {
        for (double const sign : {-1.0, 1.0})
        {
            RotMat mat;
            mat.Set(row.a0, row.a2, row.sign * sign * sine);
            EXPECT_EQ(Extract(row, mat, Vector(0, 0, 0)).Get(row.a1), sign * k_HalfPi);
        }
    }
}

TEST_P(EulerExtraction, It_follows_the_steps_bit_by_bit_on_rotations)
{
    Random random(44);
    for (int i = 0; i < 3000; ++i)
    {
        double const middle = i % 3 == 0 ? k_HalfPi - random.OverDecades(-8, 0) : random.Uniform(-7.0, 7.0);
        Vector const angles = Acting(row, random.Uniform(-9.0, 9.0), middle, random.Uniform(-9.0, 9.0));
        RotMat const mat = Matrix(row, angles);
        double const reach = i % 2 == 0 ? 4 : 200;
        Vector const target(random.Uniform(-reach, reach), random.Uniform(-reach, reach),
                            random.Uniform(-reach, reach));
        EXPECT_TRUE(IsSame(Extract(row, mat, target), ExtractBySteps<double>(mat, target, row)));
        RotMatf const matf = Matrix(row, Narrow(angles));
        EXPECT_TRUE(IsSame(Extract(row, matf, Narrow(target)), ExtractBySteps<float>(matf, Narrow(target), row)));
    }
}

TEST_P(EulerExtraction, It_follows_the_steps_bit_by_bit_at_quarter_turns_where_ties_are)
{
    for (int i = 0; i < 4096; ++i)
    {
        auto const quarter = [i](int digit) { return (((i >> (2 * digit)) & 3) - 1) * k_HalfPi; };
        RotMat const mat = Matrix(row, Vector(quarter(0), quarter(1), quarter(2)));
        Vector const target(quarter(3), quarter(4), quarter(5));
        EXPECT_TRUE(IsSame(Extract(row, mat, target), ExtractBySteps<double>(mat, target, row)));
    }
}

TEST_P(EulerExtraction, It_follows_the_steps_bit_by_bit_on_any_numbers)
{
    Random random(45);
    std::array<double, 10> const special = {
        0.0, -0.0, 1.0, -1.0, k_Nan<double>, k_Infinity<double>, -k_Infinity<double>, 0.70710679, -0.70710679, 1e-6};
    for (int i = 0; i < 3000; ++i)
    {
        RotMat mat;
        Vector target;
        RotMatf matf;
        Vectorf targetf;
        for (int e = 0; e < 12; ++e)
        {
            double const value = random.Integer(0, 2) == 0 ? special[static_cast<std::size_t>(random.Integer(0, 9))]
                                                           : random.Uniform(-1.1, 1.1);
            if (e < 9)
            {
                mat.Set(e / 3, e % 3, value);
                matf.Set(e / 3, e % 3, static_cast<float>(value));
            }
            else
            {
                target.Set(e - 9, 4 * value);
                targetf.Set(e - 9, static_cast<float>(4 * value));
            }
        }
        EXPECT_TRUE(IsSame(Extract(row, mat, target), ExtractBySteps<double>(mat, target, row)));
        EXPECT_TRUE(IsSame(Extract(row, matf, targetf), ExtractBySteps<float>(matf, targetf, row)));
    }
}

TEST_P(EulerExtraction, Float_forms_compute_in_double)
{
    Random random(46);
    for (int i = 0; i < 500; ++i)
    {
        Vectorf const angles =
            Narrow(Acting(row, random.Uniform(-3.0, 3.0), random.Uniform(-1.4, 1.4), random.Uniform(-3.0, 3.0)));
        RotMatf const mat = Matrix(row, angles);
        RotMat wide;
        for (int e = 0; e < 9; ++e)
        {
            wide.Set(e / 3, e % 3, static_cast<double>(mat.Get(e / 3, e % 3)));
        }
        EXPECT_TRUE(AreEqual(Extract(row, mat, angles), Narrow(Extract(row, wide, Widen(angles)))));
    }
}

TEST_P(EulerExtraction, A_general_matrix_serves_as_source)
{
    RotMat const mat = Matrix(row, Vector(0.1, 0.2, 0.3));
    C3DMatrix33Tpl<double> const general = mat.GetMatrix();
    Vector angles(0, 0, 0);
    F3DMatToEulerUsingTarget(general, angles, row.order);
    EXPECT_TRUE(AreEqual(angles, Extract(row, mat, Vector(0, 0, 0))));
}

} // namespace
