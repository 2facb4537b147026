/// Construction, access, tests and arithmetic of the dual quaternion.

#include "transform/dual_quaternion_checks.h"

#include "math/transformation_matrix.h"

#include <type_traits>

using namespace dual_quaternion_test;

namespace
{

template <typename T>
class DualQuaternion : public testing::Test
{
};
TYPED_TEST_SUITE(DualQuaternion, Scalars);

template <typename T>
C3DDualQuatTpl<T> Translated(C3DVector3Tpl<T> const & t)
{
    return {C3DQuatTpl<T>(), t};
}

template <typename T>
bool IsNullPart(C3DQuatTpl<T> const & q)
{
    return q.W == 0 && q.X == 0 && q.Y == 0 && q.Z == 0;
}

} // namespace

// --- Construction and access -----------------------------------------------------------------------------------------

TYPED_TEST(DualQuaternion, It_is_a_plain_value_of_eight_numbers)
{
    using D = C3DDualQuatTpl<TypeParam>;
    static_assert(sizeof(D) == 8 * sizeof(TypeParam) && std::is_trivially_copyable_v<D>);
    static_assert(std::is_standard_layout_v<D> && !std::is_polymorphic_v<D> && std::is_trivially_destructible_v<D>);
    static_assert(std::is_same_v<decltype(D().GetDynamicMemSize()), std::uint64_t>);
    EXPECT_EQ(First<TypeParam>().GetDynamicMemSize(), 0U);
    EXPECT_EQ(Elements(First<TypeParam>()), (std::array<TypeParam, 8>{1, 2, -3, 4, 5, -6, 7, 8}));
}

TYPED_TEST(DualQuaternion, By_default_and_by_SetIdentity_it_is_the_identity)
{
    using T = TypeParam;
    std::array<T, 8> const identity = {1, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(Elements(C3DDualQuatTpl<T>()), identity);
    C3DDualQuatTpl<T> q = First<T>();
    EXPECT_EQ(&q.SetIdentity(), &q);
    EXPECT_EQ(Elements(q), identity);
    EXPECT_EQ(&q.SetNull(), &q);
    EXPECT_EQ(Elements(q), (std::array<T, 8>{}));
}

TYPED_TEST(DualQuaternion, A_request_for_no_initialisation_writes_nothing)
{
    using D = C3DDualQuatTpl<TypeParam>;
    alignas(D) unsigned char memory[sizeof(D)];
    std::memset(memory, 0x3C, sizeof memory);
    asm volatile("" : : "r"(memory) : "memory");
    new (memory) D(C3DInitRequest_DoNotInitialize());
    asm volatile("" : : "r"(memory) : "memory");
    for (unsigned char const byte : memory)
    {
        EXPECT_EQ(byte, 0x3C);
    }
}

TYPED_TEST(DualQuaternion, The_parts_go_in_and_out_as_they_are)
{
    using T = TypeParam;
    using Q = C3DQuatTpl<T>;
    Q const p(1, 2, 3, 4);
    Q const d(k_Nan<T>, T(-0.0), 6, 7);
    C3DDualQuatTpl<T> const made(p, d);
    C3DDualQuatTpl<T> set = First<T>();
    EXPECT_EQ(&set.Set(p, d), &set);
    EXPECT_TRUE(Same(made, set));
    Q p2(9, 9, 9, 9);
    Q d2(9, 9, 9, 9);
    made.Get(p2, d2);
    EXPECT_TRUE(Same(C3DDualQuatTpl<T>(p2, d2), made));
    EXPECT_EQ(static_cast<void const *>(&made.GetReal()), &made);
    EXPECT_EQ(&made.GetRotation(), &made.GetReal());
    EXPECT_EQ(&made.GetDual(), &made.GetReal() + 1);
    // Its own parts, exchanged.
    set = First<T>();
    set.Set(set.GetDual(), set.GetReal());
    EXPECT_TRUE(Same(set, Make<T>({5, -6, 7, 8, 1, 2, -3, 4})));
}

TYPED_TEST(DualQuaternion, A_copy_takes_all_eight)
{
    using T = TypeParam;
    C3DDualQuatTpl<T> const a = First<T>();
    C3DDualQuatTpl<T> const copy(a);
    C3DDualQuatTpl<T> assigned;
    assigned = a;
    C3DDualQuatTpl<T> set;
    EXPECT_EQ(&set.Set(a), &set);
    EXPECT_TRUE(Same(copy, a) && Same(assigned, a) && Same(set, a));
    EXPECT_TRUE(Same(set.Set(set), a));
}

// --- Translations ----------------------------------------------------------------------------------------------------

TYPED_TEST(DualQuaternion, The_dual_part_is_half_the_translation_times_the_rotation)
{
    using T = TypeParam;
    C3DQuatTpl<T> const q(1, 2, 3, 4);
    C3DVector3Tpl<T> const t(5, 6, 7);
    // (0, 5, 6, 7) (1, 2, 3, 4) = (-56, 8, 0, 10)
    C3DDualQuatTpl<T> const expected = Make<T>({1, 2, 3, 4, -28, 4, 0, 5});
    EXPECT_EQ(MaxDifference(C3DDualQuatTpl<T>(q, t), expected), 0);
    C3DDualQuatTpl<T> set = Second<T>();
    EXPECT_EQ(&set.Set(q, t), &set);
    EXPECT_EQ(MaxDifference(set, expected), 0);
    set = Make<T>({9, 9, 9, 9, 1, 2, 3, 4});
    EXPECT_EQ(MaxDifference(set.Set(set.GetDual(), t), expected), 0) << "the rotation may be a part of the target";
}

TYPED_TEST(DualQuaternion, A_translation_up_to_the_limit_counts_as_zero)
{
    using T = TypeParam;
    T const limit = k_Limit<T>;
    for (int axis = 0; axis < 3; ++axis)
    {
        for (T const sign : {T(1), T(-1)})
        {
            C3DDualQuatTpl<T> q(C3DQuatTpl<T>(), C3DVector3Tpl<T>(axis, sign * limit));
            EXPECT_TRUE(IsNullPart(q.GetDual()));
            EXPECT_TRUE(IsNullPart(First<T>().Set(C3DQuatTpl<T>(), C3DVector3Tpl<T>(axis, sign * limit)).GetDual()));
            C3DVector3Tpl<T> const above(axis, sign * Above(limit));
            q.Set(C3DQuatTpl<T>(), above);
            EXPECT_TRUE(Same(q, Make<T>({1, 0, 0, 0, q.GetDual().W, above.X / 2, above.Y / 2, above.Z / 2})));
        }
        C3DVector3Tpl<T> const nan(axis, k_Nan<T>);
        EXPECT_TRUE(std::isnan(Translated(nan).GetDual().W)) << "a NaN is not small";
    }
    EXPECT_TRUE(IsNullPart(Translated(C3DVector3Tpl<T>(limit, -limit, limit)).GetDual()));
}

TYPED_TEST(DualQuaternion, GetTranslation_takes_a_dual_part_up_to_the_limit_as_zero)
{
    using T = TypeParam;
    T const limit = k_Limit<T>;
    T const half = T(0.5);
    for (std::size_t i = 4; i < 8; ++i)
    {
        for (T const sign : {T(1), T(-1)})
        {
            std::array<T, 8> elements = {half, half, half, half};
            elements[i] = sign * limit;
            EXPECT_TRUE(TranslationOf(Make(elements)).IsExactlyNull());
            elements[i] = sign * Above(limit);
            EXPECT_GT(TranslationOf(Make(elements)).GetLength(), limit);
        }
        std::array<T, 8> elements = {1};
        elements[i] = k_Nan<T>;
        C3DVector3Tpl<T> const t = TranslationOf(Make(elements));
        EXPECT_TRUE(std::isnan(t.X) || std::isnan(t.Y) || std::isnan(t.Z));
    }
    // A translation just above the limit of Set has half of it as its dual part, and goes lost.
    EXPECT_TRUE(TranslationOf(Translated(C3DVector3Tpl<T>(Above(limit), 0, 0))).IsExactlyNull());
    EXPECT_FALSE(TranslationOf(Translated(C3DVector3Tpl<T>(T(2.5) * limit, 0, 0))).IsExactlyNull());
}

TYPED_TEST(DualQuaternion, GetTranslation_is_twice_the_dual_part_times_the_conjugate)
{
    using T = TypeParam;
    // 2 (5, -6, 7, 8) (1, -2, 3, -4): what it gives where P is not of unit length.
    C3DVector3Tpl<T> const t = TranslationOf(First<T>());
    EXPECT_EQ(t.X, 2 * (5 * -2 + -6 * 1 + 7 * -4 - 8 * 3));
    EXPECT_EQ(t.Y, 2 * (5 * 3 - -6 * -4 + 7 * 1 + 8 * -2));
    EXPECT_EQ(t.Z, 2 * (5 * -4 + -6 * 3 - 7 * -2 + 8 * 1));
    C3DQuatTpl<T> q;
    C3DVector3Tpl<T> t2(9, 9, 9);
    First<T>().Get(q, t2);
    EXPECT_EQ(MaxDifference(t2, t), 0);
    EXPECT_TRUE(Same(C3DDualQuatTpl<T>(q, First<T>().GetDual()), First<T>()));
}

// --- Matrices --------------------------------------------------------------------------------------------------------

TYPED_TEST(DualQuaternion, A_matrix_gives_rotation_and_translation)
{
    using T = TypeParam;
    // A quarter turn about Z behind a scale.
    C3DMatrix44Tpl<T> const m(0, 2, 0, 0, -3, 0, 0, 0, 0, 0, 4, 0, 5, 6, 7, 1);
    C3DQuatTpl<T> quat;
    C3DRotation3Tpl<T>().Set(m).GetQuat(quat);
    C3DDualQuatTpl<T> q = First<T>();
    EXPECT_EQ(&q.Set(m), &q);
    EXPECT_TRUE(Same(q, C3DDualQuatTpl<T>(quat, C3DVector3Tpl<T>(5, 6, 7))));
    EXPECT_EQ(AreAlmostEqual(q.GetReal(), C3DQuatTpl<T>(std::sqrt(T(0.5)), 0, 0, std::sqrt(T(0.5))), T(1e-6)), 1);
    C3DMatrix44Tpl<T> near = m;
    near.SetRow(3, k_Limit<T>, -k_Limit<T>, 0, 1);
    EXPECT_TRUE(IsNullPart(q.Set(near).GetDual()));
    near.SetRow(3, 0, Above(k_Limit<T>), 0, 1);
    EXPECT_FALSE(IsNullPart(q.Set(near).GetDual()));
}

TYPED_TEST(DualQuaternion, Get_writes_the_whole_matrix)
{
    using T = TypeParam;
    C3DMatrix44Tpl<T> m(9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9);
    m.SetMaskInfo(0xA5);
    First<T>().Get(m);
    C3DRotMatTpl<T> rotation;
    F3DQuatToMat(First<T>().GetReal(), rotation);
    C3DVector3Tpl<T> const t = TranslationOf(First<T>());
    EXPECT_TRUE(m == C3DMatrix44Tpl<T>(rotation.Get(0, 0), rotation.Get(0, 1), rotation.Get(0, 2), 0,
                                       rotation.Get(1, 0), rotation.Get(1, 1), rotation.Get(1, 2), 0,
                                       rotation.Get(2, 0), rotation.Get(2, 1), rotation.Get(2, 2), 0, t.X, t.Y, t.Z,
                                       1));
    EXPECT_EQ(m.GetMaskInfo(), 0xA5);
}

TYPED_TEST(DualQuaternion, Property_a_rigid_matrix_comes_back_and_products_are_those_of_matrices)
{
    using T = TypeParam;
    test_support::Random random(5);
    double const tolerance = std::is_same_v<T, float> ? 1e-5 : 1e-14;
    auto const expectNear = [tolerance](C3DMatrix44Tpl<T> const & a, C3DMatrix44Tpl<T> const & b)
    {
        for (int i = 0; i < 16; ++i)
        {
            EXPECT_NEAR(static_cast<double>(a.GetArray()[i]), static_cast<double>(b.GetArray()[i]), tolerance);
        }
    };
    for (int i = 0; i < 300; ++i)
    {
        C3DDualQuatTpl<T> const a = RandomRigid<T>(random);
        C3DDualQuatTpl<T> const b = RandomRigid<T>(random);
        C3DMatrix44Tpl<T> ma;
        C3DMatrix44Tpl<T> mb;
        a.Get(ma);
        b.Get(mb);
        C3DDualQuatTpl<T> back;
        back.Set(ma);
        C3DMatrix44Tpl<T> again;
        back.Get(again);
        expectNear(again, ma);
        if (math::detail::Dot(back.GetReal(), a.GetReal()) < 0)
        {
            back.Negate();
        }
        EXPECT_LT(MaxDifference(back, a), tolerance);
        // In a product b a the right one acts first, as in the matrix product Ma Mb of row vectors.
        C3DMatrix44Tpl<T> product;
        C3DDualQuatTpl<T>().Mul(b, a).Get(again);
        expectNear(again, product.Mul(ma, mb));
        C3DDualQuatTpl<T> inverse;
        inverse.Invert(a);
        inverse.Get(again);
        expectNear(product.Mul(ma, again), C3DXfoMatTpl<T>());
    }
}

// --- Tests -----------------------------------------------------------------------------------------------------------

TYPED_TEST(DualQuaternion, IsIdentity_is_exact_in_P_and_has_a_limit_in_D)
{
    using T = TypeParam;
    T const limit = k_Limit<T>;
    std::array<T, 8> const identity = {1, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_TRUE(Make(identity).IsIdentity());
    for (std::size_t i = 0; i < 8; ++i)
    {
        for (T const sign : {T(1), T(-1)})
        {
            std::array<T, 8> e = identity;
            e[i] = i == 0 ? (sign > 0 ? Above(e[0]) : Below(e[0])) : sign * std::numeric_limits<T>::denorm_min();
            EXPECT_EQ(Make(e).IsIdentity(), i >= 4) << i;
            e[i] = identity[i] + sign * limit;
            EXPECT_EQ(Make(e).IsIdentity(), i >= 4) << i;
            e[i] = sign * Above(limit);
            EXPECT_FALSE(Make(e).IsIdentity()) << i;
        }
        std::array<T, 8> e = identity;
        e[i] = k_Nan<T>;
        EXPECT_FALSE(Make(e).IsIdentity());
        EXPECT_FALSE(Make(e).IsIdentity(100));
    }
    EXPECT_FALSE(Make<T>({-1}).IsIdentity());
}

TYPED_TEST(DualQuaternion, IsIdentity_with_an_epsilon_lets_the_limit_pass)
{
    using T = TypeParam;
    std::array<T, 8> const identity = {1, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_TRUE(Make(identity).IsIdentity(T(0)));
    for (std::size_t i = 0; i < 8; ++i)
    {
        for (T const sign : {T(1), T(-1)})
        {
            std::array<T, 8> e = identity;
            e[i] += sign * T(0.25);
            EXPECT_TRUE(Make(e).IsIdentity(T(0.25))) << i;
            e[i] += sign * std::numeric_limits<T>::epsilon();
            EXPECT_FALSE(Make(e).IsIdentity(T(0.25))) << i;
        }
    }
}

TYPED_TEST(DualQuaternion, Equality_compares_all_eight_exactly)
{
    using T = TypeParam;
    C3DDualQuatTpl<T> const a = First<T>();
    EXPECT_TRUE(a == a);
    EXPECT_FALSE(a != a);
    for (std::size_t i = 0; i < 8; ++i)
    {
        std::array<T, 8> e = Elements(a);
        for (T const other : {Above(e[i]), Below(e[i]), -e[i]})
        {
            e[i] = other;
            EXPECT_FALSE(a == Make(e));
            EXPECT_TRUE(a != Make(e));
        }
        e[i] = k_Nan<T>;
        EXPECT_TRUE(a == Make(e)) << "as the quaternions of which it consists";
    }
    EXPECT_TRUE(C3DDualQuatTpl<T>() == Make<T>({1, T(-0.0), 0, 0, T(-0.0)}));
}

TYPED_TEST(DualQuaternion, AreAlmostEqual_keeps_the_limit_out_and_takes_a_NaN_as_close)
{
    using T = TypeParam;
    std::array<T, 8> const numbers = {T(0.5), T(0.25), T(-0.5), 1, T(0.75), -1, T(0.125), T(1.5)};
    C3DDualQuatTpl<T> const a = Make(numbers);
    static_assert(std::is_same_v<decltype(AreAlmostEqual(a, a, T(1))), bool>);
    EXPECT_TRUE(AreAlmostEqual(a, a));
    EXPECT_FALSE(AreAlmostEqual(a, a, T(0)));
    for (std::size_t i = 0; i < 8; ++i)
    {
        for (T const sign : {T(1), T(-1)})
        {
            std::array<T, 8> e = numbers;
            e[i] += sign * T(0.25);
            EXPECT_FALSE(AreAlmostEqual(a, Make(e), T(0.25))) << i;
            e[i] -= sign * std::numeric_limits<T>::epsilon();
            EXPECT_TRUE(AreAlmostEqual(a, Make(e), T(0.25))) << i;
        }
        std::array<T, 8> e = numbers;
        e[i] = k_Nan<T>;
        EXPECT_TRUE(AreAlmostEqual(a, Make(e), T(0.25)));
    }
    EXPECT_FALSE(AreAlmostEqual(a, C3DDualQuatTpl<T>(a).Negate(), T(0.25))) << "the same transformation";
}

// --- Arithmetic ------------------------------------------------------------------------------------------------------

TYPED_TEST(DualQuaternion, Sums_multiples_and_the_negative_go_by_component)
{
    using T = TypeParam;
    using D = C3DDualQuatTpl<T>;
    D const a = First<T>();
    D const b = Second<T>();
    D const sum = Make<T>({-1, 5, 2, 5, 9, -4, 0, 14});
    D const difference = Make<T>({3, -1, -8, 3, 1, -8, 14, 2});
    D const triple = Make<T>({3, 6, -9, 12, 15, -18, 21, 24});
    D target;
    EXPECT_EQ(&target.Add(a, b), &target);
    EXPECT_EQ(MaxDifference(target, sum), 0);
    EXPECT_EQ(&target.Sub(a, b), &target);
    EXPECT_EQ(MaxDifference(target, difference), 0);
    EXPECT_EQ(MaxDifference(D(a).Add(b), sum), 0);
    EXPECT_EQ(MaxDifference(D(a).Sub(b), difference), 0);
    EXPECT_EQ(&target.Mul(a, T(3)), &target);
    EXPECT_EQ(MaxDifference(target, triple), 0);
    EXPECT_EQ(&target.SetNull().Mul(T(3), a), &target);
    EXPECT_EQ(MaxDifference(target, triple), 0);
    target = a;
    EXPECT_EQ(&target.Mul(T(3)), &target);
    EXPECT_EQ(MaxDifference(target, triple), 0);
    EXPECT_EQ(&target.Negate(), &target);
    EXPECT_EQ(MaxDifference(target, Make<T>({-3, -6, 9, -12, -15, 18, -21, -24})), 0);
}

TYPED_TEST(DualQuaternion, The_target_of_a_sum_may_be_an_operand)
{
    using T = TypeParam;
    using D = C3DDualQuatTpl<T>;
    D const a = First<T>();
    D const b = Second<T>();
    D target = a;
    EXPECT_EQ(MaxDifference(target.Add(target, b), D().Add(a, b)), 0);
    target = b;
    EXPECT_EQ(MaxDifference(target.Add(a, target), D().Add(a, b)), 0);
    target = a;
    EXPECT_EQ(MaxDifference(target.Add(target), D().Mul(a, T(2))), 0);
    target = b;
    EXPECT_EQ(MaxDifference(target.Sub(a, target), D().Sub(a, b)), 0);
    target = a;
    EXPECT_EQ(MaxDifference(target.Sub(target), D().SetNull()), 0);
}

TYPED_TEST(DualQuaternion, The_product_in_all_aliases)
{
    using T = TypeParam;
    using D = C3DDualQuatTpl<T>;
    using Q = C3DQuatTpl<T>;
    D const a = First<T>();
    D const b = Second<T>();
    Q real;
    Q dual;
    Q second;
    real.Mul(a.GetReal(), b.GetReal());
    dual.Mul(a.GetReal(), b.GetDual()).Add(second.Mul(a.GetDual(), b.GetReal()));
    D const product(real, dual);
    // By hand: (1, 2, -3, 4) (-2, 3, 5, 1) begins with -2 - 6 + 15 - 4.
    EXPECT_EQ(real.W, 3);
    D target;
    EXPECT_EQ(&target.Mul(a, b), &target);
    EXPECT_EQ(MaxDifference(target, product), 0);
    target = a;
    EXPECT_EQ(MaxDifference(target.Mul(target, b), product), 0);
    target = b;
    EXPECT_EQ(MaxDifference(target.Mul(a, target), product), 0);
    target = a;
    EXPECT_EQ(&target.Mul(b), &target);
    EXPECT_EQ(MaxDifference(target, product), 0);
    target = a;
    EXPECT_EQ(MaxDifference(target.Mul(target), D().Mul(a, a)), 0);
    EXPECT_FALSE(D().Mul(b, a) == product);
}

TYPED_TEST(DualQuaternion, The_conjugate_negates_both_vectors)
{
    using T = TypeParam;
    using D = C3DDualQuatTpl<T>;
    D const expected = Make<T>({1, -2, 3, -4, 5, 6, -7, -8});
    D target;
    EXPECT_EQ(&target.Conjugate(First<T>()), &target);
    EXPECT_EQ(MaxDifference(target, expected), 0);
    target = First<T>();
    EXPECT_EQ(&target.Conjugate(), &target);
    EXPECT_EQ(MaxDifference(target, expected), 0);
}

// --- Normalize and Invert --------------------------------------------------------------------------------------------

TYPED_TEST(DualQuaternion, Normalize_scales_and_makes_the_dual_part_orthogonal)
{
    using T = TypeParam;
    C3DDualQuatTpl<T> q = Make<T>({0, 4, 0, 0, 1, 8, 2, 12});
    EXPECT_EQ(&q.Normalize(), &q);
    EXPECT_EQ(MaxDifference(q, Make<T>({0, 1, 0, 0, T(0.25), 0, T(0.5), 3})), 0);
}

TYPED_TEST(DualQuaternion, Normalize_leaves_what_is_too_short)
{
    using T = TypeParam;
    for (C3DDualQuatTpl<T> const & q : {Make<T>({}), Make<T>({0, 0, 0, 0, 1, 2, 3, 4}),
                                        Make<T>({T(1e-7), 0, 0, 0, 5, 6, 7, 8}), Make<T>({k_Nan<T>, 1, 1, 1, 5})})
    {
        EXPECT_TRUE(Same(C3DDualQuatTpl<T>(q).Normalize(), q));
    }
}

// The squared length of (x, 0, 0, 0) is x^2, rounded, and grows with x.
TYPED_TEST(DualQuaternion, Normalize_has_its_limit_at_a_squared_length_of_1e_12_in_float_too)
{
    using T = TypeParam;
    T const x = GreatestOfSquareUpTo<T>(1e-12);
    C3DDualQuatTpl<T> const atLimit = Make<T>({0, 0, x, 0, 1, 0, 0, 0});
    EXPECT_TRUE(Same(C3DDualQuatTpl<T>(atLimit).Normalize(), atLimit));
    C3DDualQuatTpl<T> above = Make<T>({0, 0, Above(x), 0, 1, 0, 0, 0});
    EXPECT_NEAR(static_cast<double>(above.Normalize().GetReal().Y), 1, 1e-6);
    EXPECT_NEAR(static_cast<double>(above.GetDual().W), 1e6, 1);
}

TEST(DualQuaternionDouble, Normalize_does_not_scale_what_is_within_1e_12_of_unit_length)
{
    for (double const w : {1 + 4e-13, 1 - 4e-13})
    {
        C3DDualQuatTpl<double> q = Make<double>({w, 0, 0, 0, 0, 5, 6, 7});
        EXPECT_TRUE(Same(C3DDualQuatTpl<double>(q).Normalize(), q));
        q = Make<double>({w > 1 ? 1 + 6e-13 : 1 - 6e-13, 0, 0, 0, 0, 5, 6, 7});
        EXPECT_NEAR(q.Normalize().GetReal().W, 1, 2e-16);
        EXPECT_NE(q.GetDual().X, 5);
    }
    // 1e-12 off, as nearly as a squared length can be.
    double w = 1 + 5e-13;
    while (w * w - 1 > 1e-12)
    {
        w = Below(w);
    }
    while (Above(w) * Above(w) - 1 <= 1e-12)
    {
        w = Above(w);
    }
    EXPECT_EQ(Make<double>({w}).Normalize().GetReal().W, w);
    EXPECT_NE(Make<double>({Above(w)}).Normalize().GetReal().W, Above(w));
}

TEST(DualQuaternionFloat, Normalize_scales_what_is_one_digit_off)
{
    // In float the squared length next to one is 1e-7 off.
    float const w = Above(1.0F);
    EXPECT_EQ(Make<float>({w, 0, 0, 0, 0, 8}).Normalize().GetReal().W, w * (1 / std::sqrt(w * w)));
    EXPECT_NE(Make<float>({w, 0, 0, 0, 0, 8}).Normalize().GetDual().X, 8);
}

TYPED_TEST(DualQuaternion, Normalize_leaves_a_dual_part_within_1e_12_of_orthogonal_in_float_too)
{
    using T = TypeParam;
    T const within = LastNotAbove<T>(1e-12);
    T const beyond = FirstAbove<T>(1e-12);
    for (T const sign : {T(1), T(-1)})
    {
        C3DDualQuatTpl<T> q = Make<T>({1, 0, 0, 0, sign * within, 3, 4, 5});
        EXPECT_TRUE(Same(C3DDualQuatTpl<T>(q).Normalize(), q));
        q = Make<T>({1, 0, 0, 0, sign * beyond, 3, 4, 5});
        EXPECT_EQ(MaxDifference(q.Normalize(), Make<T>({1, 0, 0, 0, 0, 3, 4, 5})), 0);
    }
    C3DDualQuatTpl<T> const nan = Make<T>({1, 0, 0, 0, k_Nan<T>, 3, 4, 5});
    EXPECT_TRUE(Same(C3DDualQuatTpl<T>(nan).Normalize(), nan));
}

TYPED_TEST(DualQuaternion, Invert_normalises_and_conjugates)
{
    using T = TypeParam;
    using D = C3DDualQuatTpl<T>;
    static_assert(std::is_void_v<decltype(D().Invert())>);
    D const q = Make<T>({0, 4, 0, 0, 1, 8, 2, 12});
    D const expected = Make<T>({0, -1, 0, 0, T(0.25), 0, T(-0.5), -3});
    D target = First<T>();
    target.Invert(q);
    EXPECT_EQ(MaxDifference(target, expected), 0);
    target = q;
    target.Invert();
    EXPECT_EQ(MaxDifference(target, expected), 0);
    target = q;
    target.Invert(target);
    EXPECT_EQ(MaxDifference(target, expected), 0);
    // What is too short to be normalised is conjugated all the same.
    target.Invert(Make<T>({0, T(1e-7), 0, 0, 1, 2, 3, 4}));
    EXPECT_EQ(MaxDifference(target, Make<T>({0, T(-1e-7), 0, 0, 1, -2, -3, -4})), 0);
}
