/// The arithmetic that the vectors of every size share. The homogeneous point takes part with X, Y, Z alone, and its
/// weight has to come through every operation as it was.

#include "math/matrix33.h"
#include "numeric/vector_checks.h"
#include "support/random.h"

#include <functional>
#include <type_traits>

using namespace test_support;

namespace
{

template <typename Vector>
class VectorArithmetic : public testing::Test
{
protected:
    using Scalar = ScalarOf<Vector>;
    static constexpr unsigned long computed = VectorTraits<Vector>::computed;
    static constexpr unsigned long stored = VectorTraits<Vector>::stored;

    Vector const a = Make<Vector>(2, -3, 5, 7);
    Vector const b = Make<Vector>(11, 13, -17, 19);

    /// A target with content of its own in every component.
    static Vector Target() { return Make<Vector>(101, 103, 107, 109); }

    /// What `target` becomes when each computed component is that of an operation on those of x and y.
    template <typename Operation>
    static ComponentsOf<Vector> Expected(Vector const & target, Vector const & x, Vector const & y, Operation operation)
    {
        ComponentsOf<Vector> result = Components(target);
        for (unsigned long i = 0; i < computed; ++i)
        {
            result[i] = operation(Components(x)[i], Components(y)[i]);
        }
        return result;
    }

    /// A vector whose quotients by 3 differ from its products with the reciprocal of 3.
    static Vector Dividend()
    {
        auto const v = Make<Vector>(5, 7, 10, -5);
        for (unsigned long i = 0; i < computed; ++i)
        {
            Scalar const x = Components(v)[i];
            EXPECT_NE(x / Scalar(3), x * (Scalar(1) / Scalar(3)))
                << "the value does not tell a quotient from a product";
        }
        return v;
    }
};
TYPED_TEST_SUITE(VectorArithmetic, AllVectorTypes);

template <typename Vector>
Vector & AddScalars(Vector & v)
{
    if constexpr (VectorTraits<Vector>::computed == 2)
    {
        return v.Add(11, 13);
    }
    else if constexpr (VectorTraits<Vector>::computed == 3)
    {
        return v.Add(11, 13, -17);
    }
    else
    {
        return v.Add(11, 13, -17, 19);
    }
}

template <typename Vector>
Vector & SubScalars(Vector & v)
{
    if constexpr (VectorTraits<Vector>::computed == 2)
    {
        return v.Sub(11, 13);
    }
    else if constexpr (VectorTraits<Vector>::computed == 3)
    {
        return v.Sub(11, 13, -17);
    }
    else
    {
        return v.Sub(11, 13, -17, 19);
    }
}

/// The two-operand division: the homogeneous point takes the divisor first.
template <typename Vector>
Vector & Divide(Vector & target, Vector const & v, ScalarOf<Vector> divisor)
{
    if constexpr (std::is_same_v<Vector, C3DVectorw>)
    {
        return target.Div(divisor, v);
    }
    else
    {
        return target.Div(v, divisor);
    }
}

/// (2, 3, 6) of length 7 and its like, with a weight that must not count.
template <typename Vector>
Vector OfKnownLength()
{
    switch (VectorTraits<Vector>::computed)
    {
    case 2:
        return Make<Vector>(-3, 4, 0, 0);
    case 3:
        return Make<Vector>(2, -3, 6, 100);
    default:
        return Make<Vector>(2, 4, -5, 6);
    }
}

template <typename Vector>
constexpr int known_length = VectorTraits<Vector>::computed == 2 ? 5 : (VectorTraits<Vector>::computed == 3 ? 7 : 9);

} // namespace

TYPED_TEST(VectorArithmetic, Negate_is_the_opposite)
{
    TypeParam target = this->Target();
    EXPECT_EQ(&target.Negate(this->a), &target);
    EXPECT_EQ(Components(target), this->Expected(this->Target(), this->a, this->a, [](auto x, auto) { return -x; }));

    target = this->a;
    EXPECT_EQ(&target.Negate(), &target);
    EXPECT_EQ(Components(target), this->Expected(this->a, this->a, this->a, [](auto x, auto) { return -x; }));

    target = this->a;
    target.Negate(target);
    EXPECT_EQ(Components(target), this->Expected(this->a, this->a, this->a, [](auto x, auto) { return -x; }));
}

TYPED_TEST(VectorArithmetic, Negate_flips_the_sign_of_zeros)
{
    auto target = Make<TypeParam>(0, 0, 0, 0);
    target.Negate();
    for (unsigned long i = 0; i < this->stored; ++i)
    {
        EXPECT_EQ(std::signbit(Components(target)[i]), i < this->computed) << i;
    }
}

TYPED_TEST(VectorArithmetic, Add_is_the_component_sum)
{
    TypeParam target = this->Target();
    EXPECT_EQ(&target.Add(this->a, this->b), &target);
    EXPECT_EQ(Components(target), this->Expected(this->Target(), this->a, this->b, std::plus<>()));

    target = this->a;
    EXPECT_EQ(&target.Add(this->b), &target);
    EXPECT_EQ(Components(target), this->Expected(this->a, this->a, this->b, std::plus<>()));

    target = this->a;
    EXPECT_EQ(&AddScalars(target), &target);
    EXPECT_EQ(Components(target), this->Expected(this->a, this->a, this->b, std::plus<>()));

    ExpectTargetMayBeAnyOperand([](auto & t, auto const & x, auto const & y) { t.Add(x, y); }, this->a, this->b);
    target = this->a;
    target.Add(target);
    EXPECT_EQ(Components(target), this->Expected(this->a, this->a, this->a, std::plus<>()));
}

TYPED_TEST(VectorArithmetic, Sub_is_the_first_operand_minus_the_second)
{
    TypeParam target = this->Target();
    EXPECT_EQ(&target.Sub(this->a, this->b), &target);
    EXPECT_EQ(Components(target), this->Expected(this->Target(), this->a, this->b, std::minus<>()));

    target = this->a;
    EXPECT_EQ(&target.Sub(this->b), &target);
    EXPECT_EQ(Components(target), this->Expected(this->a, this->a, this->b, std::minus<>()));

    target = this->a;
    EXPECT_EQ(&SubScalars(target), &target);
    EXPECT_EQ(Components(target), this->Expected(this->a, this->a, this->b, std::minus<>()));

    ExpectTargetMayBeAnyOperand([](auto & t, auto const & x, auto const & y) { t.Sub(x, y); }, this->a, this->b);
}

TYPED_TEST(VectorArithmetic, Mul_by_a_scalar_scales)
{
    using T = ScalarOf<TypeParam>;
    auto const scaled = [](auto x, auto) { return x * T(-4); };
    TypeParam target = this->Target();
    EXPECT_EQ(&target.Mul(T(-4), this->a), &target);
    EXPECT_EQ(Components(target), this->Expected(this->Target(), this->a, this->a, scaled));

    target = this->Target();
    EXPECT_EQ(&target.Mul(this->a, T(-4)), &target);
    EXPECT_EQ(Components(target), this->Expected(this->Target(), this->a, this->a, scaled));

    target = this->a;
    EXPECT_EQ(&target.Mul(T(-4)), &target);
    EXPECT_EQ(Components(target), this->Expected(this->a, this->a, this->a, scaled));

    target = this->a;
    target.Mul(target, T(-4));
    EXPECT_EQ(Components(target), this->Expected(this->a, this->a, this->a, scaled));
    target = this->a;
    target.Mul(T(-4), target);
    EXPECT_EQ(Components(target), this->Expected(this->a, this->a, this->a, scaled));
}

TYPED_TEST(VectorArithmetic, Mul_by_a_component_of_the_target_reads_it_first)
{
    TypeParam target = this->a;
    target.Mul(target.X);
    EXPECT_EQ(Components(target),
              this->Expected(this->a, this->a, this->a, [this](auto x, auto) { return x * this->a.X; }));
}

TYPED_TEST(VectorArithmetic, Div_multiplies_by_the_reciprocal)
{
    using T = ScalarOf<TypeParam>;
    auto const by_reciprocal = [](auto x, auto) { return x * (T(1) / T(3)); };
    TypeParam const dividend = this->Dividend();
    TypeParam target = this->Target();
    EXPECT_EQ(&Divide(target, dividend, T(3)), &target);
    EXPECT_EQ(Components(target), this->Expected(this->Target(), dividend, dividend, by_reciprocal));

    target = dividend;
    EXPECT_EQ(&target.Div(T(3)), &target);
    EXPECT_EQ(Components(target), this->Expected(dividend, dividend, dividend, by_reciprocal));

    target = dividend;
    Divide(target, target, T(3));
    EXPECT_EQ(Components(target), this->Expected(dividend, dividend, dividend, by_reciprocal));
}

TYPED_TEST(VectorArithmetic, Div_by_zero_gives_infinities_and_NaNs)
{
    using T = ScalarOf<TypeParam>;
    auto target = Make<TypeParam>(-1, 0, 2, 0);
    target.Div(T(0));
    EXPECT_EQ(target.X, -k_Infinity<T>);
    EXPECT_TRUE(std::isnan(target.Y));
}

TYPED_TEST(VectorArithmetic, MulComp_is_the_component_product)
{
    TypeParam target = this->Target();
    EXPECT_EQ(&target.MulComp(this->a, this->b), &target);
    EXPECT_EQ(Components(target), this->Expected(this->Target(), this->a, this->b, std::multiplies<>()));

    target = this->a;
    EXPECT_EQ(&target.MulComp(this->b), &target);
    EXPECT_EQ(Components(target), this->Expected(this->a, this->a, this->b, std::multiplies<>()));

    ExpectTargetMayBeAnyOperand([](auto & t, auto const & x, auto const & y) { t.MulComp(x, y); }, this->a, this->b);
}

TYPED_TEST(VectorArithmetic, DivComp_is_the_true_quotient)
{
    auto const divisor = Make<TypeParam>(3, 3, 3, 3);
    TypeParam const dividend = this->Dividend();
    TypeParam target = this->Target();
    EXPECT_EQ(&target.DivComp(dividend, divisor), &target);
    EXPECT_EQ(Components(target), this->Expected(this->Target(), dividend, divisor, std::divides<>()));

    target = dividend;
    EXPECT_EQ(&target.DivComp(divisor), &target);
    EXPECT_EQ(Components(target), this->Expected(dividend, dividend, divisor, std::divides<>()));

    ExpectTargetMayBeAnyOperand([](auto & t, auto const & x, auto const & y) { t.DivComp(x, y); }, this->a, this->b);
}

TYPED_TEST(VectorArithmetic, Length_is_the_root_of_the_sum_of_squares)
{
    using T = ScalarOf<TypeParam>;
    auto const v = OfKnownLength<TypeParam>();
    T const length = known_length<TypeParam>;
    EXPECT_EQ(v.GetLength(), length);
    EXPECT_EQ(v.GetSquaredLength(), length * length);
    static_assert(std::is_same_v<decltype(v.GetLength()), T>);

    for (unsigned long i = 0; i < this->stored; ++i)
    {
        EXPECT_EQ(MakeAlong<TypeParam>(i, T(-3)).GetLength(), i < this->computed ? T(3) : T(0)) << i;
    }
}

TYPED_TEST(VectorArithmetic, Length_is_not_guarded_against_overflow)
{
    using T = ScalarOf<TypeParam>;
    T const large = std::numeric_limits<T>::max() / 2;
    EXPECT_EQ(MakeAlong<TypeParam>(0, large).GetLength(), k_Infinity<T>);
}

TYPED_TEST(VectorArithmetic, Distance_is_the_length_of_the_difference)
{
    using T = ScalarOf<TypeParam>;
    auto other = OfKnownLength<TypeParam>();
    AddScalars(other);
    TypeParam const origin = this->b;
    T const length = known_length<TypeParam>;
    EXPECT_EQ(GetDistance(other, origin), length);
    EXPECT_EQ(GetDistance(origin, other), length);
    EXPECT_EQ(GetSquaredDistance(other, origin), length * length);
    EXPECT_EQ(GetDistance(other, other), T(0));
    static_assert(std::is_same_v<decltype(GetDistance(other, origin)), T>);
    static_assert(std::is_same_v<decltype(GetSquaredDistance(other, origin)), T>);
}

TYPED_TEST(VectorArithmetic, SetLength_scales_by_one_quotient)
{
    using T = ScalarOf<TypeParam>;
    auto target = OfKnownLength<TypeParam>();
    TypeParam const before = target;
    T const factor = T(10) / T(known_length<TypeParam>);
    EXPECT_EQ(target.SetLength(T(10)), 1);
    EXPECT_EQ(Components(target), this->Expected(before, before, before, [&](auto x, auto) { return x * factor; }));

    // Here the order of the operations shows: 49 / 95 first, and not a unit vector first.
    ASSERT_NE(T(95) * (T(49) / T(95)), T(95) / T(95) * T(49));
    ASSERT_NE(T(95) * (T(49) / T(95)), T(95) * (T(1) / T(95)) * T(49));
    ASSERT_NE(T(95) * (T(49) / T(95)), T(95) * (T(1) / T(95) * T(49)));
    target = MakeAlong<TypeParam>(1, T(95));
    EXPECT_EQ(target.SetLength(T(49)), 1);
    EXPECT_EQ(target.Y, T(95) * (T(49) / T(95)));
}

TYPED_TEST(VectorArithmetic, SetLength_accepts_zero_and_negative_lengths)
{
    using T = ScalarOf<TypeParam>;
    auto const before = OfKnownLength<TypeParam>();
    TypeParam target = before;
    EXPECT_EQ(target.SetLength(T(-2 * known_length<TypeParam>)), 1);
    EXPECT_EQ(Components(target), this->Expected(before, before, before, [](auto x, auto) { return x * T(-2); }));
    target = before;
    EXPECT_EQ(target.SetLength(T(0)), 1);
    EXPECT_EQ(target.GetLength(), T(0));
}

TYPED_TEST(VectorArithmetic, Normalize_multiplies_by_the_reciprocal_of_the_length)
{
    using T = ScalarOf<TypeParam>;
    ASSERT_NE(T(107) * (T(1) / T(107)), T(1)) << "does not tell a quotient from a product";
    auto target = MakeAlong<TypeParam>(1, T(-107));
    EXPECT_EQ(target.Normalize(), 1);
    EXPECT_EQ(target.Y, T(-107) * (T(1) / T(107)));

    auto const known = OfKnownLength<TypeParam>();
    target = known;
    T const reciprocal = T(1) / T(known_length<TypeParam>);
    EXPECT_EQ(target.Normalize(), 1);
    EXPECT_EQ(Components(target), this->Expected(known, known, known, [&](auto x, auto) { return x * reciprocal; }));
}

TYPED_TEST(VectorArithmetic, Random_vectors_normalise_to_length_one)
{
    using T = ScalarOf<TypeParam>;
    Random random(1);
    for (int i = 0; i < 200; ++i)
    {
        TypeParam v = this->Target();
        for (unsigned long k = 0; k < this->stored; ++k)
        {
            v[k] = random.Uniform(T(-10), T(10));
        }
        T const original = v.GetLength();
        ASSERT_EQ(v.Normalize(), 1);
        EXPECT_NEAR(v.GetLength(), T(1), 8 * std::numeric_limits<T>::epsilon());
        ASSERT_EQ(v.SetLength(original), 1);
        EXPECT_NEAR(v.GetLength(), original, 16 * original * std::numeric_limits<T>::epsilon());
    }
}

TYPED_TEST(VectorArithmetic, Components_are_read_and_written_one_by_one)
{
    using T = ScalarOf<TypeParam>;
    TypeParam v = this->a;
    TypeParam const & constant = v;
    EXPECT_EQ(v.GetArray(), &v.X);
    EXPECT_EQ(constant.GetArray(), &v.X);
    static_assert(std::is_same_v<decltype(v.GetArray()), T *>);
    static_assert(std::is_same_v<decltype(constant.GetArray()), T const *>);
    static_assert(std::is_same_v<decltype(v[0]), T &>);
    static_assert(std::is_same_v<decltype(constant[0]), T const &>);
    for (unsigned long i = 0; i < this->stored; ++i)
    {
        EXPECT_EQ(&v[i], v.GetArray() + i);
        EXPECT_EQ(&constant[i], v.GetArray() + i);
        EXPECT_EQ(v.GetArray()[i], Components(this->a)[i]);
    }
    v[1] = T(42);
    EXPECT_EQ(v.Y, T(42));

    EXPECT_EQ(&v.SetX(T(1)), &v);
    EXPECT_EQ(&v.SetY(T(2)), &v);
    EXPECT_EQ(v.X, T(1));
    EXPECT_EQ(v.Y, T(2));
    EXPECT_EQ(v.GetX(), T(1));
    EXPECT_EQ(v.GetY(), T(2));
    if constexpr (VectorTraits<TypeParam>::stored > 2)
    {
        EXPECT_EQ(&v.SetZ(T(3)), &v);
        EXPECT_EQ(v.Z, T(3));
        EXPECT_EQ(v.GetZ(), T(3));
    }
    if constexpr (VectorTraits<TypeParam>::stored > 3)
    {
        EXPECT_EQ(&v.SetW(T(4)), &v);
        EXPECT_EQ(v.W, T(4));
        EXPECT_EQ(v.GetW(), T(4));
    }
    EXPECT_EQ(v.X, T(1));
    EXPECT_EQ(v.Y, T(2));
}

TYPED_TEST(VectorArithmetic, Equality_looks_at_every_component)
{
    using T = ScalarOf<TypeParam>;
    EXPECT_TRUE(this->a == this->a);
    EXPECT_FALSE(this->a != this->a);
    for (unsigned long i = 0; i < this->stored; ++i)
    {
        for (T const changed : {NextAbove(Components(this->a)[i]), NextBelow(Components(this->a)[i])})
        {
            TypeParam other = this->a;
            other[i] = changed;
            EXPECT_FALSE(this->a == other) << i;
            EXPECT_FALSE(other == this->a) << i;
            EXPECT_TRUE(this->a != other) << i;
        }
    }
    EXPECT_TRUE(Make<TypeParam>(0, 0, 0, 0) == Make<TypeParam>(-0.0, -0.0, -0.0, -0.0));
    static_assert(std::is_same_v<decltype(this->a == this->b), bool>);
}

TYPED_TEST(VectorArithmetic, Equality_takes_a_NaN_for_equal_to_anything)
{
    using T = ScalarOf<TypeParam>;
    for (unsigned long i = 0; i < this->stored; ++i)
    {
        TypeParam other = this->a;
        other[i] = k_NaN<T>;
        EXPECT_TRUE(this->a == other) << i;
        EXPECT_TRUE(other == this->a) << i;
        EXPECT_FALSE(other != this->a) << i;
        TypeParam differing = other;
        differing[(i + 1) % this->stored] = T(1000);
        EXPECT_FALSE(differing == other) << i;
    }
}

TYPED_TEST(VectorArithmetic, IsNull_rejects_above_the_tolerance_in_any_component)
{
    using T = ScalarOf<TypeParam>;
    auto const null = Make<TypeParam>(0, 0, 0, 0);
    EXPECT_EQ(null.IsNull(T(0)), 1) << "a null vector passes without a tolerance";
    EXPECT_EQ(Make<TypeParam>(-0.0, -0.0, -0.0, -0.0).IsNull(T(0)), 1);
    auto const epsilon = T(0.125);
    for (unsigned long i = 0; i < this->stored; ++i)
    {
        for (T const sign : {T(1), T(-1)})
        {
            EXPECT_EQ(MakeAlong<TypeParam>(i, sign * epsilon).IsNull(epsilon), 1) << i;
            EXPECT_EQ(MakeAlong<TypeParam>(i, sign * NextAbove(epsilon)).IsNull(epsilon), 0) << i;
        }
        EXPECT_EQ(MakeAlong<TypeParam>(i, k_NaN<T>).IsNull(epsilon), 1) << i;
        EXPECT_EQ(MakeAlong<TypeParam>(i, k_Infinity<T>).IsNull(epsilon), 0) << i;
        EXPECT_EQ(MakeAlong<TypeParam>(i, T(0)).IsNull(NextBelow(T(0))), 0) << i;
    }
    static_assert(std::is_same_v<decltype(null.IsNull(T(0))), int>);
}

TYPED_TEST(VectorArithmetic, IsNull_has_the_standard_tolerance_by_default)
{
    using T = ScalarOf<TypeParam>;
    T const standard = std::is_same_v<T, double> ? T(1e-12) : T(1e-6F);
    EXPECT_EQ(MakeAlong<TypeParam>(0, standard).IsNull(), 1);
    EXPECT_EQ(MakeAlong<TypeParam>(0, NextAbove(standard)).IsNull(), 0);
}

namespace
{

/// A member of the homogeneous point, a free function for the others.
template <typename Vector>
auto CallAreAlmostEqual(Vector const & a, Vector const & b, ScalarOf<Vector> epsilon)
{
    if constexpr (std::is_same_v<Vector, C3DVectorw>)
    {
        return a.AreAlmostEqual(b, epsilon);
    }
    else
    {
        return AreAlmostEqual(a, b, epsilon);
    }
}

} // namespace

TYPED_TEST(VectorArithmetic, AreAlmostEqual_rejects_at_the_tolerance_in_any_component)
{
    using T = ScalarOf<TypeParam>;
    EXPECT_EQ(CallAreAlmostEqual(this->a, this->a, T(0)), 0) << "without a tolerance nothing is almost equal";
    EXPECT_EQ(CallAreAlmostEqual(this->a, this->a, std::numeric_limits<T>::denorm_min()), 1);
    auto const epsilon = T(0.125);
    auto const null = Make<TypeParam>(0, 0, 0, 0);
    for (unsigned long i = 0; i < this->stored; ++i)
    {
        for (T const sign : {T(1), T(-1)})
        {
            EXPECT_EQ(CallAreAlmostEqual(null, MakeAlong<TypeParam>(i, sign * epsilon), epsilon), 0) << i;
            EXPECT_EQ(CallAreAlmostEqual(null, MakeAlong<TypeParam>(i, sign * NextBelow(epsilon)), epsilon), 1) << i;
            EXPECT_EQ(CallAreAlmostEqual(MakeAlong<TypeParam>(i, sign * epsilon), null, epsilon), 0) << i;
        }
        EXPECT_EQ(CallAreAlmostEqual(null, MakeAlong<TypeParam>(i, k_NaN<T>), epsilon), 1) << i;
        EXPECT_EQ(CallAreAlmostEqual(null, MakeAlong<TypeParam>(i, k_NaN<T>), T(0)), 0) << "the others still differ";
    }
    static_assert(std::is_same_v<decltype(CallAreAlmostEqual(null, null, epsilon)), int>);
}

TYPED_TEST(VectorArithmetic, Assignment_copies_every_component)
{
    TypeParam target = this->Target();
    target = this->a;
    EXPECT_TRUE(HasSameBytes(target, this->a));
    TypeParam const copy(this->b);
    EXPECT_TRUE(HasSameBytes(copy, this->b));
}

namespace
{

/// The classes that are positions: these have midpoints and interpolations.
template <typename Vector>
class VectorInterpolation : public VectorArithmetic<Vector>
{
};
using PositionTypes = testing::Types<C3DVector2Tpl<float>, C3DVector2Tpl<double>, C3DVector3Tpl<float>,
                                     C3DVector3Tpl<double>, C3DVectorw>;
TYPED_TEST_SUITE(VectorInterpolation, PositionTypes);

} // namespace

TYPED_TEST(VectorInterpolation, SetMidpoint_halves_the_sum)
{
    using T = ScalarOf<TypeParam>;
    TypeParam target = this->Target();
    EXPECT_EQ(&target.SetMidpoint(this->a, this->b), &target);
    EXPECT_EQ(Components(target),
              this->Expected(this->Target(), this->a, this->b, [](auto x, auto y) { return (x + y) / 2; }));
    ExpectTargetMayBeAnyOperand([](auto & t, auto const & x, auto const & y) { t.SetMidpoint(x, y); }, this->a,
                                this->b);
    // The sum comes first, so that it can overflow.
    auto const large = MakeAlong<TypeParam>(0, std::numeric_limits<T>::max());
    EXPECT_EQ(target.SetMidpoint(large, large).X, k_Infinity<T>);
}

TYPED_TEST(VectorInterpolation, Linear_interpolation_runs_from_the_first_operand_to_the_second)
{
    using T = ScalarOf<TypeParam>;
    for (double const t : {0.0, 0.25, 1.0, -1.0, 2.0})
    {
        TypeParam target = this->Target();
        EXPECT_EQ(&target.LinearPositionInterpolate(this->a, this->b, T(t)), &target);
        EXPECT_EQ(Components(target), this->Expected(this->Target(), this->a, this->b,
                                                     [&](auto x, auto y) { return (T(1) - T(t)) * x + T(t) * y; }))
            << t;
    }
    ExpectTargetMayBeAnyOperand([](auto & target, auto const & x, auto const & y)
                                { target.LinearPositionInterpolate(x, y, T(0.25)); },
                                this->a, this->b);
}

TYPED_TEST(VectorInterpolation, Linear_interpolation_is_formed_by_two_products)
{
    using T = ScalarOf<TypeParam>;
    auto const far = MakeAlong<TypeParam>(0, T(1e30));
    auto const near = MakeAlong<TypeParam>(0, T(1));
    TypeParam target = this->Target();
    // a + t (b - a) would lose the 1.
    EXPECT_EQ(target.LinearPositionInterpolate(far, near, T(1)).X, T(1));
    // 0 times infinity.
    auto const infinite = MakeAlong<TypeParam>(0, k_Infinity<T>);
    EXPECT_TRUE(std::isnan(target.LinearPositionInterpolate(infinite, near, T(1)).X));
}
