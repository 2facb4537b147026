/// The screw form of the dual quaternion, its logarithm and exponential, and the interpolation along a screw.

#include "transform/dual_quaternion_checks.h"

#include <algorithm>

using namespace dual_quaternion_test;

namespace
{

template <typename T>
class DualQuaternionScrew : public testing::Test
{
};
TYPED_TEST_SUITE(DualQuaternionScrew, Scalars);

template <typename T>
struct Screw
{
    T angle = 9;
    T pitch = 9;
    C3DVector3Tpl<T> axis = {9, 9, 9};
    C3DVector3Tpl<T> moment = {9, 9, 9};
};

template <typename T>
Screw<T> ScrewOf(C3DDualQuatTpl<T> const & q)
{
    Screw<T> screw;
    q.Get(screw.angle, screw.pitch, screw.axis, screw.moment);
    return screw;
}

template <typename T>
C3DDualQuatTpl<T> FromScrew(Screw<T> screw)
{
    return C3DDualQuatTpl<T>().Set(screw.angle, screw.pitch, screw.axis, screw.moment);
}

template <typename T>
C3DDualQuatTpl<T> Translation(T x, T y, T z)
{
    return {C3DQuatTpl<T>(), C3DVector3Tpl<T>(x, y, z)};
}

/// b as it is next to a.
template <typename T>
C3DDualQuatTpl<T> NextTo(C3DDualQuatTpl<T> const & a, C3DDualQuatTpl<T> b)
{
    return math::detail::Dot(a.GetReal(), b.GetReal()) >= 0 ? b : b.Negate();
}

} // namespace

// --- The screw form --------------------------------------------------------------------------------------------------

TYPED_TEST(DualQuaternionScrew, Set_makes_the_dual_quaternion_of_a_screw)
{
    using T = TypeParam;
    T const angle = T(0.8);
    T const pitch = T(3);
    C3DVector3Tpl<T> const axis(0, 0, 1);
    C3DVector3Tpl<T> moment(2, -5, 0);
    C3DDualQuatTpl<T> q = First<T>();
    EXPECT_EQ(&q.Set(angle, pitch, axis, moment), &q);
    T const c = std::cos(T(0.4));
    T const s = std::sin(T(0.4));
    EXPECT_TRUE(AreAlmostEqual(q, Make<T>({c, 0, 0, s, T(-1.5) * s, 2 * s, -5 * s, T(1.5) * c}), T(1e-6)));
    EXPECT_EQ(MaxDifference(moment, C3DVector3Tpl<T>(2, -5, 0)), 0);
    // An axis is taken as it is.
    q.Set(angle, pitch, C3DVector3Tpl<T>(0, 0, 2), moment);
    EXPECT_TRUE(AreAlmostEqual(q, Make<T>({c, 0, 0, 2 * s, T(-1.5) * s, 2 * s, -5 * s, 3 * c}), T(1e-6)));
}

TYPED_TEST(DualQuaternionScrew, A_quarter_turn_about_a_line_and_a_slide_along_it)
{
    using T = TypeParam;
    // About the line through (1, 0, 0) along Z; the moment of the line is (1, 0, 0) x (0, 0, 1).
    Screw<T> const screw = {T(k_Pi / 2), 4, {0, 0, 1}, {0, -1, 0}};
    C3DDualQuatTpl<T> const q = FromScrew(screw);
    C3DMatrix44Tpl<T> m;
    q.Get(m);
    C3DVector3Tpl<T> point;
    point.Mul(C3DVector3Tpl<T>(3, 0, 0), m);
    EXPECT_EQ(AreAlmostEqual(point, C3DVector3Tpl<T>(1, 2, 4), T(1e-6)), 1);
    Screw<T> const back = ScrewOf(q);
    EXPECT_NEAR(static_cast<double>(back.angle), k_Pi / 2, 1e-6);
    EXPECT_NEAR(static_cast<double>(back.pitch), 4, 1e-5);
    EXPECT_EQ(AreAlmostEqual(back.axis, screw.axis, T(1e-6)), 1);
    EXPECT_EQ(AreAlmostEqual(back.moment, screw.moment, T(1e-5)), 1);
}

TYPED_TEST(DualQuaternionScrew, Get_by_hand)
{
    using T = TypeParam;
    // Half a turn about Y: W is 0, and the axis is the vector by its length.
    Screw<T> const screw = ScrewOf(Make<T>({0, 0, 2, 0, 3, 4, 5, 6}));
    EXPECT_NEAR(static_cast<double>(screw.angle), k_Pi, 1e-6);
    EXPECT_EQ(screw.pitch, -3);
    EXPECT_EQ(MaxDifference(screw.axis, C3DVector3Tpl<T>(0, 1, 0)), 0);
    EXPECT_EQ(MaxDifference(screw.moment, C3DVector3Tpl<T>(2, T(2.5), 3)), 0);
    // With W: the part along the axis goes out of the moment.
    T const w = T(0.5);
    Screw<T> const other = ScrewOf(Make<T>({w, 0, 0, 2, 3, 4, 5, 6}));
    EXPECT_NEAR(static_cast<double>(other.angle), 2 * k_Pi / 3, 1e-6);
    EXPECT_EQ(other.pitch, -3);
    EXPECT_EQ(MaxDifference(other.moment, C3DVector3Tpl<T>(2, T(2.5), (6 + 3 * w / 2) / 2)), 0);
}

TYPED_TEST(DualQuaternionScrew, A_pure_translation_has_half_of_itself_as_its_axis)
{
    using T = TypeParam;
    Screw<T> const screw = ScrewOf(Translation<T>(6, 0, -8));
    EXPECT_EQ(screw.angle, 0);
    EXPECT_EQ(MaxDifference(screw.axis, C3DVector3Tpl<T>(3, 0, -4)), 0);
    EXPECT_EQ(screw.pitch, 10);
    EXPECT_TRUE(screw.moment.IsExactlyNull());
    // W of the dual part is not read, and a negative zero in P is a zero.
    Screw<T> const odd = ScrewOf(Make<T>({1, T(-0.0), 0, 0, 7, 3, 0, -4}));
    EXPECT_EQ(odd.pitch, 10);
    EXPECT_EQ(MaxDifference(odd.axis, screw.axis), 0);
    EXPECT_EQ(odd.angle, 0);
}

TYPED_TEST(DualQuaternionScrew, A_translation_whose_half_squared_is_up_to_1e_12_has_no_pitch_in_float_too)
{
    using T = TypeParam;
    T const x = GreatestOfSquareUpTo<T>(1e-12);
    Screw<T> const within = ScrewOf(Make<T>({1, 0, 0, 0, 0, 0, -x, 0}));
    EXPECT_EQ(within.pitch, 0);
    EXPECT_EQ(within.axis.Y, -x) << "the axis is there all the same";
    EXPECT_EQ(ScrewOf(Make<T>({1, 0, 0, 0, 0, 0, Above(x), 0})).pitch, 2 * Above(x));
    Screw<T> const identity = ScrewOf(C3DDualQuatTpl<T>());
    EXPECT_TRUE(identity.angle == 0 && identity.pitch == 0 && identity.axis.IsExactlyNull());
    EXPECT_TRUE(identity.moment.IsExactlyNull());
}

TYPED_TEST(DualQuaternionScrew, Degenerate_input_gives_NaNs)
{
    using T = TypeParam;
    Screw<T> const wholeTurn = ScrewOf(Make<T>({-1, 0, 0, 0, 0, 1, 2, 3}));
    EXPECT_NEAR(static_cast<double>(wholeTurn.angle), 2 * k_Pi, 1e-6);
    EXPECT_TRUE(std::isnan(wholeTurn.axis.X) && std::isnan(wholeTurn.axis.Y) && std::isnan(wholeTurn.axis.Z));
    EXPECT_TRUE(std::isnan(wholeTurn.moment.X));
    EXPECT_TRUE(std::isnan(ScrewOf(Make<T>({T(1.5), 1, 0, 0, 0, 1, 2, 3})).angle)) << "W is not clamped";
    EXPECT_TRUE(std::isnan(ScrewOf(Make<T>({Above(T(1)), 1, 0, 0, 0, 1, 2, 3})).angle));
    EXPECT_TRUE(std::isnan(ScrewOf(Make<T>({T(-1.5), 1, 0, 0, 0, 1, 2, 3})).angle));
    EXPECT_TRUE(std::isnan(ScrewOf(Make<T>({0, 0, 0, 0, 0, 1, 2, 3})).axis.Y));
    // Almost the identity is not the identity: its tiny vector is divided by its length.
    Screw<T> const almost = ScrewOf(Make<T>({1, 0, 0, T(1e-15), 0, 0, 0, 0}));
    EXPECT_EQ(almost.angle, 0);
    EXPECT_NEAR(static_cast<double>(almost.axis.Z), 1, 1e-6);
}

TYPED_TEST(DualQuaternionScrew, Property_a_rigid_transformation_comes_back_from_its_screw)
{
    using T = TypeParam;
    test_support::Random random(8);
    for (int i = 0; i < 500; ++i)
    {
        C3DDualQuatTpl<T> const q = RandomRigid<T>(random);
        EXPECT_LT(MaxDifference(FromScrew(ScrewOf(q)), q), 10 * k_Tolerance<T>);
    }
}

// --- Logarithm and exponential ---------------------------------------------------------------------------------------

TYPED_TEST(DualQuaternionScrew, Log_by_hand)
{
    using T = TypeParam;
    Screw<T> const screw = {T(0.8), 3, {0, 0, 1}, {2, -5, 0}};
    C3DDualQuatTpl<T> q = FromScrew(screw);
    EXPECT_EQ(&q.Log(), &q);
    EXPECT_LT(MaxDifference(q, Make<T>({0, 0, 0, T(0.4), 0, T(0.8), -2, T(1.5)})), 1e-5);
    EXPECT_EQ(q.GetReal().W, 0);
    EXPECT_EQ(q.GetDual().W, 0);
    // The axis of a pure translation is no unit vector.
    q = Translation<T>(6, 0, -8).Log();
    EXPECT_EQ(MaxDifference(q, Make<T>({0, 0, 0, 0, 0, 15, 0, -20})), 0);
    EXPECT_EQ(MaxDifference(C3DDualQuatTpl<T>().Log(), Make<T>({})), 0);
}

TYPED_TEST(DualQuaternionScrew, Exp_by_hand)
{
    using T = TypeParam;
    C3DDualQuatTpl<T> q = Make<T>({0, 0, 0, T(0.4), 0, T(0.8), -2, T(1.5)});
    EXPECT_EQ(&q.Exp(), &q);
    EXPECT_LT(MaxDifference(q, FromScrew<T>({T(0.8), 3, {0, 0, 1}, {2, -5, 0}})), 1e-6);
    // The scalar parts are not read.
    EXPECT_TRUE(Same(Make<T>({5, 0, 0, T(0.4), 7, T(0.8), -2, T(1.5)}).Exp(), q));
}

TYPED_TEST(DualQuaternionScrew, Exp_of_a_null_vector_keeps_the_dual_part)
{
    using T = TypeParam;
    EXPECT_TRUE(Same(Make<T>({5, 0, 0, 0, 7, 1, 2, 3}).Exp(), Make<T>({1, 0, 0, 0, 7, 1, 2, 3})));
    EXPECT_TRUE(Same(Make<T>({0, k_Nan<T>, 0, 0, 7, 1, 2, 3}).Exp(), Make<T>({1, 0, 0, 0, 7, 1, 2, 3})));
}

TYPED_TEST(DualQuaternionScrew, Exp_has_its_limit_at_a_length_of_1e_12_in_float_too)
{
    using T = TypeParam;
    // The root of the square of a number is the number.
    T const nearest = static_cast<T>(1e-12);
    T const atLeast = static_cast<double>(nearest) >= 1e-12 ? nearest : Above(nearest);
    T const below = Below(atLeast);
    EXPECT_TRUE(Same(Make<T>({0, 0, below, 0, 7, 1, 2, 3}).Exp(), Make<T>({1, 0, 0, 0, 7, 1, 2, 3})));
    C3DDualQuatTpl<T> const q = Make<T>({0, 0, atLeast, 0, 7, 1, 2, 3}).Exp();
    EXPECT_EQ(q.GetReal().W, 1);
    EXPECT_EQ(q.GetReal().Y, std::sin(atLeast));
    EXPECT_EQ(q.GetDual().W, -2 * std::sin(atLeast));
    EXPECT_NEAR(static_cast<double>(q.GetDual().X), 1, 1e-6);
    EXPECT_EQ(q.GetDual().Y, 2);
}

TYPED_TEST(DualQuaternionScrew, Property_the_exponential_of_the_logarithm_gives_the_value_back)
{
    using T = TypeParam;
    test_support::Random random(9);
    for (int i = 0; i < 500; ++i)
    {
        C3DDualQuatTpl<T> const q = RandomRigid<T>(random);
        EXPECT_LT(MaxDifference(C3DDualQuatTpl<T>(q).Log().Exp(), q), 10 * k_Tolerance<T>);
        C3DVector3Tpl<T> const real = RandomVector<T>(random, 1);
        C3DVector3Tpl<T> const dual = RandomVector<T>(random, 3);
        C3DDualQuatTpl<T> const log = Make<T>({0, real.X, real.Y, real.Z, 0, dual.X, dual.Y, dual.Z});
        if (real.GetLength() > T(0.1))
        {
            EXPECT_LT(MaxDifference(C3DDualQuatTpl<T>(log).Exp().Log(), log), 100 * k_Tolerance<T>);
        }
    }
}

// --- ScLerp ----------------------------------------------------------------------------------------------------------

TYPED_TEST(DualQuaternionScrew, ScLerp_follows_its_steps)
{
    using T = TypeParam;
    test_support::Random random(10);
    for (int i = 0; i < 200; ++i)
    {
        C3DDualQuatTpl<T> const a = RandomRigid<T>(random);
        C3DDualQuatTpl<T> const b = RandomRigid<T>(random);
        T const t = random.Uniform<T>(-1, 2);
        C3DDualQuatTpl<T> inverse;
        inverse.Invert(a);
        C3DDualQuatTpl<T> relative;
        Screw<T> screw = ScrewOf(relative.Mul(NextTo(a, b), inverse));
        screw.angle *= t;
        screw.pitch *= t;
        C3DDualQuatTpl<T> expected;
        expected.Mul(FromScrew(screw), a);
        C3DDualQuatTpl<T> target = First<T>();
        EXPECT_EQ(&target.ScLerp(a, b, t), &target);
        EXPECT_TRUE(Same(target, expected));
        target = b;
        EXPECT_TRUE(Same(target.ScLerp(a, target, t), expected)) << "the target may be b";
    }
}

TYPED_TEST(DualQuaternionScrew, ScLerp_goes_from_the_one_to_the_other)
{
    using T = TypeParam;
    test_support::Random random(11);
    for (int i = 0; i < 200; ++i)
    {
        C3DDualQuatTpl<T> const a = RandomRigid<T>(random);
        C3DDualQuatTpl<T> const b = NextTo(a, RandomRigid<T>(random));
        C3DDualQuatTpl<T> q;
        EXPECT_LT(MaxDifference(q.ScLerp(a, b, 0), a), 20 * k_Tolerance<T>);
        EXPECT_LT(MaxDifference(q.ScLerp(a, b, 1), b), 20 * k_Tolerance<T>);
        EXPECT_LT(MaxDifference(q.ScLerp(a, C3DDualQuatTpl<T>(b).Negate(), 1), b), 20 * k_Tolerance<T>);
        // The half, twice.
        C3DDualQuatTpl<T> inverse;
        inverse.Invert(a);
        C3DDualQuatTpl<T> step;
        step.Mul(q.ScLerp(a, b, T(0.5)), inverse);
        EXPECT_LT(MaxDifference(C3DDualQuatTpl<T>().Mul(step, q), b), 50 * k_Tolerance<T>);
    }
}

TYPED_TEST(DualQuaternionScrew, ScLerp_of_a_value_and_itself_or_its_negative_keeps_it)
{
    using T = TypeParam;
    test_support::Random random(12);
    for (int i = 0; i < 500; ++i)
    {
        C3DDualQuatTpl<T> const a = RandomRigid<T>(random);
        C3DDualQuatTpl<T> const negative = C3DDualQuatTpl<T>(a).Negate();
        for (T const t : {T(0), T(0.3), T(1), T(-5)})
        {
            C3DDualQuatTpl<T> q = First<T>();
            EXPECT_EQ(MaxDifference(q.ScLerp(a, a, t), a), 0);
            EXPECT_EQ(MaxDifference(q.ScLerp(a, negative, t), a), 0);
            EXPECT_EQ(MaxDifference(q.ScLerp(negative, a, t), negative), 0);
        }
    }
}

TYPED_TEST(DualQuaternionScrew, ScLerp_takes_no_NaN_for_agreement)
{
    // Values with a NaN compare equal to anything, and yet have no screw between them.
    using T = TypeParam;
    test_support::Random random(13);
    C3DDualQuatTpl<T> const a = RandomRigid<T>(random);
    for (std::size_t i = 0; i < 8; ++i)
    {
        std::array<T, 8> numbers = Elements(a);
        numbers[i] = k_Nan<T>;
        C3DDualQuatTpl<T> const broken = Make<T>(numbers);
        ASSERT_TRUE(broken == a);
        for (C3DDualQuatTpl<T> const & result :
             {C3DDualQuatTpl<T>().ScLerp(a, broken, T(0.5)), C3DDualQuatTpl<T>().ScLerp(broken, a, T(0.5))})
        {
            std::array<T, 8> const e = Elements(result);
            EXPECT_TRUE(std::any_of(e.begin(), e.end(), [](T number) { return std::isnan(number); })) << i;
        }
    }
}

TYPED_TEST(DualQuaternionScrew, ScLerp_takes_the_hemisphere_of_a_right_angle_as_it_is)
{
    using T = TypeParam;
    // The half-turn either way: the product of the quaternions is 0, and b is not negated.
    C3DDualQuatTpl<T> const a;
    C3DDualQuatTpl<T> const b = Make<T>({0, 0, 0, 1, 0, 0, 0, 0});
    EXPECT_GT(C3DDualQuatTpl<T>().ScLerp(a, b, T(0.5)).GetReal().Z, 0.7);
    EXPECT_LT(C3DDualQuatTpl<T>().ScLerp(a, C3DDualQuatTpl<T>(b).Negate(), T(0.5)).GetReal().Z, -0.7);
    // A NaN counts as the other hemisphere, and is one in the result.
    EXPECT_TRUE(std::isnan(C3DDualQuatTpl<T>().ScLerp(a, Make<T>({k_Nan<T>, 1}), T(0.5)).GetReal().W));
}

TYPED_TEST(DualQuaternionScrew, ScLerp_between_translations_is_not_linear)
{
    using T = TypeParam;
    C3DDualQuatTpl<T> const a = Translation<T>(1, 2, 3);
    C3DDualQuatTpl<T> const b = Translation<T>(1 + 6, 2, 3 - 8);
    T const t = T(0.25);
    // The dual vector of the step is (v / 2) |v| t / 2, and not (v / 2) t.
    T const factor = 10 * t / 2;
    C3DVector3Tpl<T> const expected(1 + 6 * factor, 2, 3 - 8 * factor);
    EXPECT_EQ(AreAlmostEqual(TranslationOf(C3DDualQuatTpl<T>().ScLerp(a, b, t)), expected, T(1e-5)), 1);
}

TYPED_TEST(DualQuaternionScrew, ScLerp_normalises_neither_the_result_nor_b)
{
    using T = TypeParam;
    C3DDualQuatTpl<T> const a = Make<T>({2, 0, 0, 0, 0, 0, 0, 0});
    C3DDualQuatTpl<T> const b = Make<T>({0, 1, 0, 0, 0, 0, 0, 0});
    C3DDualQuatTpl<T> q;
    q.ScLerp(a, b, 1);
    EXPECT_LT(MaxDifference(q, Make<T>({0, 2, 0, 0, 0, 0, 0, 0})), 1e-6);
}
