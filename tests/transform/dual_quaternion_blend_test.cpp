/// The blends of dual quaternions.

#include "transform/dual_quaternion_checks.h"

#include <vector>

using namespace dual_quaternion_test;

namespace
{

template <typename T>
class DualQuaternionBlend : public testing::Test
{
};
TYPED_TEST_SUITE(DualQuaternionBlend, Scalars);

template <typename T>
C3DDualQuatTpl<T> Blend(std::vector<C3DDualQuatTpl<T>> const & values, std::vector<T> const & weights)
{
    C3DDualQuatTpl<T> blend = First<T>();
    EXPECT_EQ(&blend.LinearBlend(static_cast<long>(values.size()), values.data(), weights.data()), &blend);
    return blend;
}

/// The blend by its steps, with signs decided from the array alone.
template <typename T>
C3DDualQuatTpl<T> BlendBySteps(std::vector<C3DDualQuatTpl<T>> const & values, std::vector<T> const & weights)
{
    std::array<T, 8> sum = {};
    for (std::size_t i = 0; i < values.size(); ++i)
    {
        T weight = weights[i];
        if (i > 0)
        {
            T dot = 0;
            for (std::size_t k = 0; k < 4; ++k)
            {
                dot += Elements(values[i])[k] * Elements(values[i - 1])[k];
            }
            weight = dot >= 0 ? weight : -weight;
        }
        for (std::size_t k = 0; k < 8; ++k)
        {
            sum[k] += weight * Elements(values[i])[k];
        }
    }
    return Make(sum).Normalize();
}

/// The iterative blend by its steps, after which `passes` holds their number.
template <typename T>
C3DDualQuatTpl<T> IterateBySteps(std::vector<C3DDualQuatTpl<T>> const & values, std::vector<T> const & weights, T tol,
                                 int & passes)
{
    C3DDualQuatTpl<T> b = BlendBySteps(values, weights);
    for (passes = 0; passes < 6;)
    {
        ++passes;
        C3DDualQuatTpl<T> i;
        i.Invert(b);
        C3DDualQuatTpl<T> sum;
        sum.SetNull();
        for (T const weight : weights)
        {
            C3DDualQuatTpl<T> u;
            sum.Add(C3DDualQuatTpl<T>().Mul(weight, u.Mul(i, i).Log()));
        }
        T const real = sum.GetReal().GetSquaredLength();
        T const dual = sum.GetDual().GetSquaredLength();
        b.Mul(b, sum.Exp());
        if (!(real >= tol) && !(dual >= tol))
        {
            break;
        }
    }
    return b.Normalize();
}

template <typename T>
C3DDualQuatTpl<T> Iterate(std::vector<C3DDualQuatTpl<T>> const & values, std::vector<T> const & weights, T tol)
{
    C3DDualQuatTpl<T> blend = First<T>();
    EXPECT_EQ(&blend.IterativeBlend(static_cast<long>(values.size()), values.data(), weights.data(), tol), &blend);
    return blend;
}

template <typename T>
C3DDualQuatTpl<T> Inverse(C3DDualQuatTpl<T> const & q)
{
    C3DDualQuatTpl<T> inverse;
    inverse.Invert(q);
    return inverse;
}

/// A rotation about Z with a translation.
template <typename T>
C3DDualQuatTpl<T> Turned(T angle)
{
    return {C3DQuatTpl<T>(std::cos(angle / 2), 0, 0, std::sin(angle / 2)), C3DVector3Tpl<T>(1, 2, 3)};
}

} // namespace

// --- Linear ----------------------------------------------------------------------------------------------------------

TYPED_TEST(DualQuaternionBlend, The_linear_blend_is_the_normalised_sum)
{
    using T = TypeParam;
    test_support::Random random(3);
    for (int count = 1; count <= 8; ++count)
    {
        for (int i = 0; i < 50; ++i)
        {
            std::vector<C3DDualQuatTpl<T>> values;
            std::vector<T> weights;
            for (int k = 0; k < count; ++k)
            {
                values.push_back(RandomRigid<T>(random));
                weights.push_back(random.Uniform<T>(-1, 1));
            }
            EXPECT_TRUE(Same(Blend(values, weights), BlendBySteps(values, weights)));
        }
    }
}

TYPED_TEST(DualQuaternionBlend, The_linear_blend_of_nothing_is_null)
{
    using T = TypeParam;
    for (long const n : {0L, -1L, std::numeric_limits<long>::min()})
    {
        C3DDualQuatTpl<T> q = First<T>();
        q.LinearBlend(n, nullptr, nullptr);
        EXPECT_TRUE(Same(q, Make<T>({})));
    }
}

TYPED_TEST(DualQuaternionBlend, One_value_is_normalised_and_keeps_the_sign_of_its_weight)
{
    using T = TypeParam;
    C3DDualQuatTpl<T> const q = Make<T>({0, 0, -4, 0, 8, 4, 2, 12});
    EXPECT_EQ(MaxDifference(Blend<T>({q}, {2}), Make<T>({0, 0, -1, 0, 2, 1, 0, 3})), 0);
    EXPECT_EQ(MaxDifference(Blend<T>({q}, {-2}), Make<T>({0, 0, 1, 0, -2, -1, 0, -3})), 0);
    EXPECT_TRUE(Same(Blend<T>({q}, {0}).Normalize(), Blend<T>({q}, {0}))) << "nothing is left to normalise";
}

TYPED_TEST(DualQuaternionBlend, Weights_of_0_and_1_give_the_second_next_to_the_first)
{
    using T = TypeParam;
    C3DDualQuatTpl<T> const a;
    C3DDualQuatTpl<T> const b = Make<T>({4, 0, 0, 3, 0, 10, 5, 0});
    C3DDualQuatTpl<T> unit = b;
    unit.Normalize();
    EXPECT_EQ(MaxDifference(Blend<T>({a, b}, {0, 1}), unit), 0);
    EXPECT_EQ(MaxDifference(Blend<T>({a, C3DDualQuatTpl<T>(b).Negate()}, {0, 1}), unit), 0) << "the weight becomes -1";
    EXPECT_EQ(MaxDifference(Blend<T>({C3DDualQuatTpl<T>(a).Negate(), b}, {0, 1}), C3DDualQuatTpl<T>(unit).Negate()), 0);
}

TYPED_TEST(DualQuaternionBlend, The_sign_is_that_against_the_value_before_as_given)
{
    using T = TypeParam;
    auto const at = [](T degrees) { return Turned(T(2 * degrees * k_Pi / 180)); };
    // By their quaternions at 0, 80 and 160 degrees of the circle: each is in the hemisphere of the one before it.
    EXPECT_LT(MaxDifference(Blend<T>({at(0), at(80), at(160)}, {0, 0, 1}), at(160)), 10 * k_Tolerance<T>);
    // The third against the second, though it is in the hemisphere of the first.
    EXPECT_LT(MaxDifference(Blend<T>({at(0), at(80), at(-80)}, {0, 0, 1}), at(-80).Negate()), 10 * k_Tolerance<T>);
    // The second is negated in the sum; the third is compared with it as it was given.
    EXPECT_LT(MaxDifference(Blend<T>({at(0), at(120), at(200)}, {1, T(1e-3), 5}),
                            BlendBySteps<T>({at(0), at(120), at(200)}, {1, T(1e-3), 5})),
              10 * k_Tolerance<T>);
    EXPECT_LT(MaxDifference(Blend<T>({at(0), at(120), at(200)}, {0, 0, 1}), at(200)), 10 * k_Tolerance<T>);
    // A zero weight does not take a value out of the chain.
    EXPECT_LT(MaxDifference(Blend<T>({at(0), at(100), at(10)}, {1, 0, 0}), at(0)), 10 * k_Tolerance<T>);
    EXPECT_LT(MaxDifference(Blend<T>({at(0), at(170), at(10)}, {0, 0, 1}), at(10).Negate()), 10 * k_Tolerance<T>);
}

TYPED_TEST(DualQuaternionBlend, Perpendicular_values_and_NaNs_in_the_sign_test)
{
    using T = TypeParam;
    C3DDualQuatTpl<T> const a;
    C3DDualQuatTpl<T> const b = Make<T>({0, 0, 1, 0, 0, 0, 0, 0});
    EXPECT_EQ(MaxDifference(Blend<T>({a, b}, {0, 1}), b), 0);
    EXPECT_EQ(MaxDifference(Blend<T>({b, C3DDualQuatTpl<T>(a).Negate()}, {0, 1}), Make<T>({-1})), 0);
    // A product that is a NaN counts as the other hemisphere; what has a NaN for its length is not normalised.
    C3DDualQuatTpl<T> const nan = Make<T>({k_Nan<T>, 1, 0, 0, 0, 2, 0, 0});
    C3DDualQuatTpl<T> const blend = Blend<T>({nan, Make<T>({0, 1, 0, 0, 0, 3, 0, 0})}, {1, 5});
    EXPECT_EQ(blend.GetReal().X, 1 - 5);
    EXPECT_EQ(blend.GetDual().X, 2 - 15);
    // The first has none before it.
    EXPECT_EQ(Blend<T>({nan}, {1}).GetReal().X, 1);
}

TYPED_TEST(DualQuaternionBlend, The_target_may_be_in_the_array)
{
    using T = TypeParam;
    std::vector<C3DDualQuatTpl<T>> values = {Turned(T(0.3)), Turned(T(1)), Turned(T(-2))};
    std::vector<T> const weights = {T(0.5), T(0.25), T(0.25)};
    C3DDualQuatTpl<T> const expected = Blend(values, weights);
    for (std::size_t i = 0; i < 3; ++i)
    {
        std::vector<C3DDualQuatTpl<T>> copy = values;
        EXPECT_TRUE(Same(copy[i].LinearBlend(3, copy.data(), weights.data()), expected));
        C3DDualQuatTpl<T> const iterated = Iterate(values, weights, T(1e-6));
        copy = values;
        EXPECT_TRUE(Same(copy[i].IterativeBlend(3, copy.data(), weights.data(), T(1e-6)), iterated));
    }
}

TYPED_TEST(DualQuaternionBlend, The_forms_with_two_operands_weigh_them_by_1_minus_t_and_t)
{
    using T = TypeParam;
    C3DDualQuatTpl<T> const a = Turned(T(0.3));
    C3DDualQuatTpl<T> const b = Turned(T(2));
    for (T const t : {T(0), T(0.3), T(1), T(-1)})
    {
        std::vector<T> const weights = {T(1) - t, t};
        C3DDualQuatTpl<T> const linear = Blend<T>({a, b}, weights);
        C3DDualQuatTpl<T> const iterative = Iterate<T>({a, b}, weights, k_Limit<T>);
        C3DDualQuatTpl<T> q = First<T>();
        EXPECT_EQ(&q.LinearBlend(a, b, t), &q);
        EXPECT_TRUE(Same(q, linear));
        EXPECT_EQ(&q.IterativeBlend(a, b, t), &q);
        EXPECT_TRUE(Same(q, iterative));
        q = a;
        EXPECT_TRUE(Same(q.LinearBlend(q, b, t), linear));
        q = b;
        EXPECT_TRUE(Same(q.LinearBlend(a, q, t), linear));
        q = a;
        EXPECT_TRUE(Same(q.IterativeBlend(q, b, t), iterative));
        q = b;
        EXPECT_TRUE(Same(q.IterativeBlend(a, q, t), iterative));
    }
}

TYPED_TEST(DualQuaternionBlend, Property_a_blend_of_rotations_about_one_line_turns_about_it)
{
    using T = TypeParam;
    C3DDualQuatTpl<T> q;
    q.LinearBlend(Turned(T(0.2)), Turned(T(0.8)), T(0.5));
    EXPECT_LT(MaxDifference(q, Turned(T(0.5))), 10 * k_Tolerance<T>);
}

// --- Iterative -------------------------------------------------------------------------------------------------------

TYPED_TEST(DualQuaternionBlend, The_iterative_blend_follows_its_steps)
{
    using T = TypeParam;
    test_support::Random random(4);
    int counts[7] = {};
    for (int i = 0; i < 300; ++i)
    {
        // Weights with a small sum shrink the step: some of these end early.
        std::vector<C3DDualQuatTpl<T>> const values = {RandomRigid<T>(random), RandomRigid<T>(random),
                                                       RandomRigid<T>(random)};
        std::vector<T> const weights = {random.Uniform<T>(0, 1), random.Uniform<T>(0, T(0.3)),
                                        random.Uniform<T>(0, T(0.3))};
        T const tol = std::abs(random.OverDecades<T>(-3, 1));
        int passes = 0;
        C3DDualQuatTpl<T> const expected = IterateBySteps(values, weights, tol, passes);
        ++counts[passes];
        EXPECT_TRUE(Same(Iterate(values, weights, tol), expected));
    }
    EXPECT_GT(counts[1], 0);
    EXPECT_GT(counts[6], 0);
    EXPECT_GT(counts[2] + counts[3] + counts[4] + counts[5], 0);
}

TYPED_TEST(DualQuaternionBlend, Six_passes_give_the_linear_blend_back)
{
    using T = TypeParam;
    std::vector<C3DDualQuatTpl<T>> const values = {Turned(T(0.9)), Turned(T(1.7))};
    std::vector<T> const weights = {T(0.25), T(0.75)};
    EXPECT_LT(MaxDifference(Iterate(values, weights, T(0)), Blend(values, weights)), 100 * k_Tolerance<T>);
}

TYPED_TEST(DualQuaternionBlend, A_pass_that_is_the_last_gives_the_inverse)
{
    using T = TypeParam;
    std::vector<C3DDualQuatTpl<T>> const values = {Turned(T(0.9)), Turned(T(1.7))};
    std::vector<T> const weights = {T(0.25), T(0.75)};
    C3DDualQuatTpl<T> const linear = Blend(values, weights);
    EXPECT_LT(MaxDifference(Iterate(values, weights, T(1e6)), Inverse(linear)), 100 * k_Tolerance<T>);
    // A NaN as the limit ends the loop as well.
    EXPECT_LT(MaxDifference(Iterate(values, weights, k_Nan<T>), Inverse(linear)), 100 * k_Tolerance<T>);
}

TYPED_TEST(DualQuaternionBlend, The_limit_is_that_of_both_squared_lengths)
{
    using T = TypeParam;
    std::vector<T> const weight = {1};
    C3DDualQuatTpl<T> const value = Turned(T(1));
    C3DDualQuatTpl<T> square;
    square.Mul(Inverse(value), Inverse(value)).Log();
    T const real = square.GetReal().GetSquaredLength();
    T const dual = square.GetDual().GetSquaredLength();
    ASSERT_GT(dual, 2 * real);
    // The dual part alone holds the loop, then neither.
    EXPECT_LT(MaxDifference(Iterate<T>({value}, weight, (real + dual) / 2), value), 100 * k_Tolerance<T>);
    EXPECT_LT(MaxDifference(Iterate<T>({value}, weight, dual * T(1.01)), Inverse(value)), 100 * k_Tolerance<T>);
    // The primary part alone: a turn in place.
    C3DDualQuatTpl<T> const turn(Turned(T(1)).GetReal(), C3DQuatTpl<T>(0, 0, 0, 0));
    EXPECT_LT(MaxDifference(Iterate<T>({turn}, weight, real * T(0.99)), turn), 100 * k_Tolerance<T>);
    EXPECT_LT(MaxDifference(Iterate<T>({turn}, weight, real * T(1.01)), Inverse(turn)), 100 * k_Tolerance<T>);
}

TYPED_TEST(DualQuaternionBlend, Near_the_identity_the_loop_ends_with_the_inverse)
{
    using T = TypeParam;
    // A translation so small that the square of its logarithm, which is of the second order, is below the limit.
    C3DDualQuatTpl<T> const step(C3DQuatTpl<T>(), C3DVector3Tpl<T>(T(1e-4), 0, 0));
    C3DDualQuatTpl<T> q;
    q.IterativeBlend(step, step, T(0.5));
    // The step of a pure translation is of the second order too: it stays what it was.
    EXPECT_LT(MaxDifference(q, step), 1e-7);
    EXPECT_NE(q.GetDual().X, step.GetDual().X);
    // The turn by 1e-3, whose logarithm squared is 1e-6, runs on; a higher limit ends it.
    C3DDualQuatTpl<T> const turn(C3DQuatTpl<T>(std::cos(T(0.05)), 0, 0, std::sin(T(0.05))), C3DQuatTpl<T>(0, 0, 0, 0));
    EXPECT_LT(MaxDifference(Iterate<T>({turn}, {1}, T(0.02)), Inverse(turn)), 100 * k_Tolerance<T>);
    EXPECT_LT(MaxDifference(Iterate<T>({turn}, {1}, T(0.005)), turn), 100 * k_Tolerance<T>);
}

// One pass gives the inverse, six give the value back.
TYPED_TEST(DualQuaternionBlend, The_form_with_two_operands_has_the_limit_of_its_type)
{
    using T = TypeParam;
    T const root = std::sqrt(k_Limit<T>);
    auto const signOfBlend = [](T angle)
    {
        C3DDualQuatTpl<T> const turn(C3DQuatTpl<T>(std::cos(angle / 2), 0, 0, std::sin(angle / 2)),
                                     C3DQuatTpl<T>(0, 0, 0, 0));
        T const z = C3DDualQuatTpl<T>().IterativeBlend(turn, turn, T(0.5)).GetReal().Z;
        return z > 0 ? 1 : -1;
    };
    EXPECT_EQ(signOfBlend(T(0.8) * root), -1);
    EXPECT_EQ(signOfBlend(T(1.25) * root), 1);
}

TYPED_TEST(DualQuaternionBlend, The_iterative_blend_of_nothing_is_null)
{
    using T = TypeParam;
    for (long const n : {0L, -5L})
    {
        for (T const tol : {T(0), T(1), k_Nan<T>})
        {
            C3DDualQuatTpl<T> q = First<T>();
            q.IterativeBlend(n, nullptr, nullptr, tol);
            EXPECT_EQ(MaxDifference(q, Make<T>({})), 0);
            EXPECT_FALSE(std::isnan(q.GetReal().W));
        }
    }
}
