#include "math/quaternion.h"

#include "math/vector4.h"
#include "rotation/euler_checks.h"
#include "support/random.h"
#include "support/streams.h"

#include <cstring>
#include <iomanip>
#include <sstream>

using namespace test_support;

namespace
{

template <typename T>
class Quaternion : public testing::Test
{
protected:
    /// Small whole numbers, whose products are exact.
    C3DQuatTpl<T> const first{1, 2, 3, 4};
    C3DQuatTpl<T> const second{-5, 6, 7, -8};
};
TYPED_TEST_SUITE(Quaternion, Scalars);

template <typename T>
C3DQuatTpl<T> RandomQuaternion(Random & random, T limit)
{
    return {random.Uniform<T>(-limit, limit), random.Uniform<T>(-limit, limit), random.Uniform<T>(-limit, limit),
            random.Uniform<T>(-limit, limit)};
}

template <typename T>
bool SameBits(C3DQuatTpl<T> const & a, C3DQuatTpl<T> const & b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

TYPED_TEST(Quaternion, Memory_holds_w_x_y_z)
{
    TypeParam values[4];
    static_assert(sizeof values == sizeof this->first);
    std::memcpy(values, &this->first, sizeof values);
    for (int i = 0; i < 4; ++i)
    {
        EXPECT_EQ(values[i], TypeParam(i + 1));
    }
    EXPECT_EQ(this->first.GetDynamicMemSize(), 0U);
}

TYPED_TEST(Quaternion, By_default_and_by_SetIdentity_it_is_the_identity)
{
    using Q = C3DQuatTpl<TypeParam>;
    EXPECT_TRUE(HasComponents<TypeParam>(Q(), 1, 0, 0, 0));
    Q q = this->first;
    EXPECT_EQ(&q.SetIdentity(), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 1, 0, 0, 0));
}

TYPED_TEST(Quaternion, A_request_for_no_initialisation_writes_nothing)
{
    using Q = C3DQuatTpl<TypeParam>;
    alignas(Q) unsigned char memory[sizeof(Q)];
    std::memset(memory, 0x3C, sizeof memory);
    asm volatile("" : : "r"(memory) : "memory");
    new (memory) Q(C3DInitRequest_DoNotInitialize());
    asm volatile("" : : "r"(memory) : "memory");
    for (unsigned char const byte : memory)
    {
        EXPECT_EQ(byte, 0x3C);
    }
}

TYPED_TEST(Quaternion, Four_scalars_are_w_x_y_z)
{
    using Q = C3DQuatTpl<TypeParam>;
    Q q(1, 2, 3, 4);
    EXPECT_EQ(q.GetW(), 1);
    EXPECT_EQ(q.GetX(), 2);
    EXPECT_EQ(q.GetY(), 3);
    EXPECT_EQ(q.GetZ(), 4);
    EXPECT_EQ(&q.Set(5, 6, 7, 8), &q);
    TypeParam w = 0;
    TypeParam x = 0;
    TypeParam y = 0;
    TypeParam z = 0;
    static_cast<Q const &>(q).Get(w, x, y, z);
    EXPECT_EQ(w, 5);
    EXPECT_EQ(x, 6);
    EXPECT_EQ(y, 7);
    EXPECT_EQ(z, 8);
}

TYPED_TEST(Quaternion, A_vector_of_three_gives_the_pure_quaternion)
{
    using Q = C3DQuatTpl<TypeParam>;
    EXPECT_TRUE(HasComponents<TypeParam>(Q(C3DVector3Tpl<TypeParam>(2, 3, 4)), 0, 2, 3, 4));
    Q q;
    EXPECT_EQ(&q.Set(C3DVector3Tpl<TypeParam>(2, 3, 4)), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 0, 2, 3, 4));
}

TYPED_TEST(Quaternion, A_vector_of_four_matches_by_name_both_ways)
{
    using Q = C3DQuatTpl<TypeParam>;
    C3DVector4Tpl<TypeParam> const v(2, 3, 4, 1);
    EXPECT_TRUE(HasComponents<TypeParam>(Q(v), 1, 2, 3, 4));
    Q q;
    EXPECT_EQ(&q.Set(v), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 1, 2, 3, 4));
    C3DVector4Tpl<TypeParam> out;
    static_cast<Q const &>(q).Get(out);
    EXPECT_EQ(out.X, 2);
    EXPECT_EQ(out.Y, 3);
    EXPECT_EQ(out.Z, 4);
    EXPECT_EQ(out.W, 1);
}

TYPED_TEST(Quaternion, Setters_write_one_component_and_return_the_object)
{
    using Q = C3DQuatTpl<TypeParam>;
    Q q;
    EXPECT_EQ(&q.SetW(5), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 5, 0, 0, 0));
    EXPECT_EQ(&q.SetX(6), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 5, 6, 0, 0));
    EXPECT_EQ(&q.SetY(7), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 5, 6, 7, 0));
    EXPECT_EQ(&q.SetZ(8), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 5, 6, 7, 8));
    Q copy;
    EXPECT_EQ(&(copy = q), &copy);
    EXPECT_TRUE(HasComponents<TypeParam>(copy, 5, 6, 7, 8));
}

TYPED_TEST(Quaternion, Null_is_not_the_identity)
{
    auto q = this->first;
    EXPECT_EQ(&q.SetNull(), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 0, 0, 0, 0));
}

TYPED_TEST(Quaternion, Sums_differences_and_multiples_are_component_wise)
{
    using Q = C3DQuatTpl<TypeParam>;
    Q q;
    EXPECT_EQ(&q.Add(this->first, this->second), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -4, 8, 10, -4));
    EXPECT_EQ(&q.Add(this->first), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -3, 10, 13, 0));
    EXPECT_EQ(&q.Sub(this->first, this->second), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 6, -4, -4, 12));
    EXPECT_EQ(&q.Sub(this->first), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 5, -6, -7, 8));
    EXPECT_EQ(&q.Mul(TypeParam(2)), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 10, -12, -14, 16));
    EXPECT_EQ(&q.Mul(this->first, TypeParam(3)), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 3, 6, 9, 12));
    EXPECT_EQ(&q.Mul(TypeParam(-3), this->first), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -3, -6, -9, -12));
    EXPECT_EQ(&q.Negate(), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 3, 6, 9, 12));
}

TYPED_TEST(Quaternion, Sums_and_multiples_may_take_the_target_as_operand)
{
    using Q = C3DQuatTpl<TypeParam>;
    Q q = this->first;
    q.Add(q, q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 2, 4, 6, 8));
    q.Add(q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 4, 8, 12, 16));
    q.Sub(this->first, q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -3, -6, -9, -12));
    q.Sub(q, this->first);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -4, -8, -12, -16));
    q.Mul(q, TypeParam(0.5)).Mul(TypeParam(0.5), q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -1, -2, -3, -4));
    q.Mul(q.X);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 2, 4, 6, 8));
    q.Sub(q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 0, 0, 0, 0));
}

TYPED_TEST(Quaternion, Conjugate_and_Invert_change_the_sign_of_the_vector_part_alone)
{
    using Q = C3DQuatTpl<TypeParam>;
    Q q = this->first;
    EXPECT_EQ(&q.Conjugate(), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 1, -2, -3, -4));
    EXPECT_EQ(&q.Conjugate(this->second), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -5, -6, -7, 8));
    EXPECT_EQ(&q.Conjugate(q), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -5, 6, 7, -8));
    EXPECT_EQ(&q.Invert(), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -5, -6, -7, 8));
    EXPECT_EQ(&q.Invert(this->first), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 1, -2, -3, -4));
    EXPECT_EQ(&q.Invert(q), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 1, 2, 3, 4));
}

TYPED_TEST(Quaternion, Invert_does_not_divide_by_the_squared_length)
{
    C3DQuatTpl<TypeParam> q(2, 0, 0, 0);
    EXPECT_TRUE(HasComponents<TypeParam>(q.Invert(), 2, 0, 0, 0));
    EXPECT_TRUE(HasComponents<TypeParam>(q.Invert(C3DQuatTpl<TypeParam>(0, 0, 4, 0)), 0, 0, -4, 0));
}

TYPED_TEST(Quaternion, Lengths_count_all_four_components)
{
    EXPECT_EQ(this->first.GetSquaredLength(), 30);
    EXPECT_EQ((C3DQuatTpl<TypeParam>(2, 4, 5, 6).GetLength()), 9);
    EXPECT_EQ(this->first.GetLength(), std::sqrt(TypeParam(30)));
}

TYPED_TEST(Quaternion, A_product_is_that_of_Hamilton)
{
    using Q = C3DQuatTpl<TypeParam>;
    Q q;
    EXPECT_EQ(&q.Mul(this->first, this->second), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -6, -56, 32, -32));
    q = this->first;
    EXPECT_EQ(&q.Mul(this->second), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -6, -56, 32, -32));
    Q const i(0, 1, 0, 0);
    Q const j(0, 0, 1, 0);
    Q const k(0, 0, 0, 1);
    EXPECT_TRUE(HasComponents<TypeParam>(q.Mul(i, j), 0, 0, 0, 1));
    EXPECT_TRUE(HasComponents<TypeParam>(q.Mul(j, i), 0, 0, 0, -1));
    EXPECT_TRUE(HasComponents<TypeParam>(q.Mul(j, k), 0, 1, 0, 0));
    EXPECT_TRUE(HasComponents<TypeParam>(q.Mul(k, i), 0, 0, 1, 0));
    EXPECT_TRUE(HasComponents<TypeParam>(q.Mul(i, j).Mul(k), -1, 0, 0, 0));
}

TYPED_TEST(Quaternion, A_product_may_be_written_to_an_operand)
{
    using Q = C3DQuatTpl<TypeParam>;
    Q q = this->first;
    q.Mul(q, this->second);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -6, -56, 32, -32));
    q = this->second;
    q.Mul(this->first, q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -6, -56, 32, -32));
    q = this->first;
    q.Mul(q, q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -28, 4, 6, 8));
    q = this->first;
    q.Mul(q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -28, 4, 6, 8));
}

TYPED_TEST(Quaternion, A_product_with_a_vector_is_that_with_the_pure_quaternion)
{
    using Q = C3DQuatTpl<TypeParam>;
    C3DVector3Tpl<TypeParam> const v(6, 7, -8);
    Q q;
    EXPECT_EQ(&q.Mul(this->first, v), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -1, -46, 47, -12));
    EXPECT_EQ(&q.Mul(v, this->first), &q);
    EXPECT_TRUE(HasComponents<TypeParam>(q, -1, 58, -33, -4));
    Q const pure(v);
    Q expected;
    EXPECT_TRUE(SameBits(q.Mul(this->first, v), expected.Mul(this->first, pure)));
    EXPECT_TRUE(SameBits(q.Mul(v, this->first), expected.Mul(pure, this->first)));
    q = this->first;
    EXPECT_TRUE(HasComponents<TypeParam>(q.Mul(q, v), -1, -46, 47, -12));
    q = this->first;
    EXPECT_TRUE(HasComponents<TypeParam>(q.Mul(v, q), -1, 58, -33, -4));
}

TYPED_TEST(Quaternion, It_turns_a_vector_right_handed_as_q_v_q_conjugate)
{
    using Q = C3DQuatTpl<TypeParam>;
    auto const half = static_cast<TypeParam>(k_Pi / 4);
    Q const q(std::cos(half), std::sin(half), 0, 0);
    Q turned;
    turned.Mul(q, C3DVector3Tpl<TypeParam>(0, 1, 0)).Mul(Q().Conjugate(q));
    EXPECT_NEAR(turned.W, 0, 1e-6);
    EXPECT_NEAR(turned.X, 0, 1e-6);
    EXPECT_NEAR(turned.Y, 0, 1e-6);
    EXPECT_NEAR(turned.Z, 1, 1e-6);
}

TYPED_TEST(Quaternion, IsIdentity_includes_its_limit_in_each_component)
{
    using Q = C3DQuatTpl<TypeParam>;
    auto const limit = TypeParam(0.25);
    TypeParam const beyond = std::nextafter(limit, TypeParam(1));
    for (TypeParam const sign : {TypeParam(-1), TypeParam(1)})
    {
        EXPECT_TRUE(Q(1 + sign * limit, 0, 0, 0).IsIdentity(limit));
        EXPECT_TRUE(Q(1, sign * limit, 0, 0).IsIdentity(limit));
        EXPECT_TRUE(Q(1, 0, sign * limit, 0).IsIdentity(limit));
        EXPECT_TRUE(Q(1, 0, 0, sign * limit).IsIdentity(limit));
        EXPECT_FALSE(Q(1, sign * beyond, 0, 0).IsIdentity(limit));
        EXPECT_FALSE(Q(1, 0, sign * beyond, 0).IsIdentity(limit));
        EXPECT_FALSE(Q(1, 0, 0, sign * beyond).IsIdentity(limit));
    }
    EXPECT_FALSE(Q(std::nextafter(TypeParam(1.25), TypeParam(2)), 0, 0, 0).IsIdentity(limit));
    EXPECT_FALSE(Q(std::nextafter(TypeParam(0.75), TypeParam(0)), 0, 0, 0).IsIdentity(limit));
    EXPECT_TRUE(Q().IsIdentity(TypeParam(0)));
    EXPECT_FALSE(Q(-1, 0, 0, 0).IsIdentity(TypeParam(0.5)));
    EXPECT_FALSE(Q(k_Nan<TypeParam>, 0, 0, 0).IsIdentity(limit));
    EXPECT_FALSE(Q(1, k_Nan<TypeParam>, 0, 0).IsIdentity(limit));
    EXPECT_FALSE(Q(1, 0, k_Nan<TypeParam>, 0).IsIdentity(limit));
    EXPECT_FALSE(Q(1, 0, 0, k_Nan<TypeParam>).IsIdentity(limit));
}

// In single precision 1 - W would round to the limit itself.
TEST(QuaternionFloat, IsIdentity_takes_the_distance_of_w_from_one_in_double)
{
    float const w = 0x1p-26F;
    ASSERT_EQ(1.0F - w, 1.0F);
    EXPECT_TRUE(Quatf(w, 0, 0, 0).IsIdentity(1.0F));
    EXPECT_FALSE(Quatf(-w, 0, 0, 0).IsIdentity(1.0F));
}

TYPED_TEST(Quaternion, IsIdentity_without_a_limit_is_exact)
{
    using Q = C3DQuatTpl<TypeParam>;
    auto const tiny = std::numeric_limits<TypeParam>::denorm_min();
    EXPECT_TRUE(Q().IsIdentity());
    EXPECT_TRUE(Q(1, TypeParam(-0.0), TypeParam(-0.0), TypeParam(-0.0)).IsIdentity());
    EXPECT_FALSE(Q(std::nextafter(TypeParam(1), TypeParam(2)), 0, 0, 0).IsIdentity());
    EXPECT_FALSE(Q(1, tiny, 0, 0).IsIdentity());
    EXPECT_FALSE(Q(1, 0, tiny, 0).IsIdentity());
    EXPECT_FALSE(Q(1, 0, 0, tiny).IsIdentity());
    EXPECT_FALSE(Q(-1, 0, 0, 0).IsIdentity());
    EXPECT_FALSE(Q(k_Nan<TypeParam>, 0, 0, 0).IsIdentity());
}

TYPED_TEST(Quaternion, IsNull_includes_its_limit_in_all_four)
{
    using Q = C3DQuatTpl<TypeParam>;
    auto const limit = TypeParam(0.25);
    TypeParam const beyond = std::nextafter(limit, TypeParam(1));
    EXPECT_TRUE(Q(limit, -limit, limit, -limit).IsNull(limit));
    EXPECT_TRUE(Q(0, 0, 0, 0).IsNull(TypeParam(0)));
    EXPECT_FALSE(Q(-beyond, 0, 0, 0).IsNull(limit));
    EXPECT_FALSE(Q(0, beyond, 0, 0).IsNull(limit));
    EXPECT_FALSE(Q(0, 0, -beyond, 0).IsNull(limit));
    EXPECT_FALSE(Q(0, 0, 0, beyond).IsNull(limit));
    EXPECT_FALSE(Q(k_Nan<TypeParam>, 0, 0, 0).IsNull(limit));
}

TYPED_TEST(Quaternion, IsPure_excludes_its_limit)
{
    using Q = C3DQuatTpl<TypeParam>;
    auto const limit = TypeParam(0.25);
    TypeParam const inside = std::nextafter(limit, TypeParam(0));
    EXPECT_TRUE(Q(inside, 1, 2, 3).IsPure(limit));
    EXPECT_TRUE(Q(-inside, 1, 2, 3).IsPure(limit));
    EXPECT_FALSE(Q(limit, 1, 2, 3).IsPure(limit));
    EXPECT_FALSE(Q(-limit, 1, 2, 3).IsPure(limit));
    EXPECT_FALSE(Q(0, 1, 2, 3).IsPure(TypeParam(0)));
    EXPECT_FALSE(Q(k_Nan<TypeParam>, 1, 2, 3).IsPure(limit));
}

TYPED_TEST(Quaternion, AreAlmostEqual_excludes_its_limit_and_lets_a_NaN_pass)
{
    using Q = C3DQuatTpl<TypeParam>;
    auto const limit = TypeParam(0.25);
    TypeParam const inside = std::nextafter(limit, TypeParam(0));
    Q const null(0, 0, 0, 0);
    EXPECT_EQ(AreAlmostEqual(null, Q(inside, -inside, inside, -inside), limit), 1);
    EXPECT_EQ(AreAlmostEqual(Q(limit, 0, 0, 0), null, limit), 0);
    EXPECT_EQ(AreAlmostEqual(Q(0, -limit, 0, 0), null, limit), 0);
    EXPECT_EQ(AreAlmostEqual(Q(0, 0, limit, 0), null, limit), 0);
    EXPECT_EQ(AreAlmostEqual(Q(0, 0, 0, -limit), null, limit), 0);
    EXPECT_EQ(AreAlmostEqual(this->first, this->first, TypeParam(0)), 0);
    EXPECT_EQ(AreAlmostEqual(Q(1, 0, 0, 0), Q(-1, 0, 0, 0), limit), 0);
    EXPECT_EQ(AreAlmostEqual(Q(k_Nan<TypeParam>, 2, 3, 4), this->first, limit), 1);
    EXPECT_EQ(AreAlmostEqual(Q(k_Nan<TypeParam>, 2, 3, 5), this->first, limit), 0);
}

TYPED_TEST(Quaternion, Comparison_is_exact_and_a_NaN_equals_anything)
{
    using Q = C3DQuatTpl<TypeParam>;
    EXPECT_TRUE(this->first == Q(1, 2, 3, 4));
    EXPECT_FALSE(this->first != Q(1, 2, 3, 4));
    TypeParam const values[4] = {1, 2, 3, 4};
    for (int i = 0; i < 4; ++i)
    {
        for (TypeParam const toward : {TypeParam(-9), TypeParam(9)})
        {
            TypeParam v[4] = {1, 2, 3, 4};
            v[i] = std::nextafter(values[i], toward);
            EXPECT_FALSE(this->first == Q(v[0], v[1], v[2], v[3])) << i;
            EXPECT_TRUE(this->first != Q(v[0], v[1], v[2], v[3])) << i;
        }
        TypeParam v[4] = {1, 2, 3, 4};
        v[i] = k_Nan<TypeParam>;
        EXPECT_TRUE(this->first == Q(v[0], v[1], v[2], v[3])) << i;
        EXPECT_FALSE(Q(v[0], v[1], v[2], v[3]) != this->first) << i;
    }
    EXPECT_TRUE(Q(0, 0, 0, 0) == Q(TypeParam(-0.0), 0, 0, 0));
}

TYPED_TEST(Quaternion, Normalize_scales_to_length_one)
{
    using Q = C3DQuatTpl<TypeParam>;
    Q q(2, 4, -5, 6);
    EXPECT_EQ(&q.Normalize(), &q);
    EXPECT_NEAR(q.W, 2.0 / 9, 1e-7);
    EXPECT_NEAR(q.X, 4.0 / 9, 1e-7);
    EXPECT_NEAR(q.Y, -5.0 / 9, 1e-7);
    EXPECT_NEAR(q.Z, 6.0 / 9, 1e-7);
    EXPECT_NEAR(q.GetLength(), 1, 4 * std::numeric_limits<TypeParam>::epsilon());
}

TYPED_TEST(Quaternion, Normalize_makes_the_identity_of_null_tiny_and_NaN)
{
    using Q = C3DQuatTpl<TypeParam>;
    auto const nan = k_Nan<TypeParam>;
    for (Q q : {Q(0, 0, 0, 0), Q(TypeParam(9e-7), 0, 0, 0), Q(0, TypeParam(-5e-7), TypeParam(5e-7), TypeParam(5e-7)),
                Q(nan, 0, 0, 0), Q(1, nan, 0, 0), Q(1, 0, nan, 0), Q(1, 0, 0, nan)})
    {
        EXPECT_EQ(&q.Normalize(), &q);
        EXPECT_TRUE(HasComponents<TypeParam>(q, 1, 0, 0, 0));
    }
}

TYPED_TEST(Quaternion, Normalize_scales_what_is_barely_not_tiny)
{
    C3DQuatTpl<TypeParam> q(0, 0, TypeParam(-1.01e-6), 0);
    q.Normalize();
    EXPECT_NEAR(q.Y, -1, 4 * std::numeric_limits<TypeParam>::epsilon());
    EXPECT_EQ(q.W, 0);
}

TYPED_TEST(Quaternion, Normalize_of_an_infinite_quaternion_leaves_the_finite_components_null)
{
    C3DQuatTpl<TypeParam> q(1, k_Infinity<TypeParam>, 2, 3);
    q.Normalize();
    EXPECT_EQ(q.W, 0);
    EXPECT_TRUE(std::isnan(q.X));
    EXPECT_EQ(q.Y, 0);
    EXPECT_EQ(q.Z, 0);
}

TYPED_TEST(Quaternion, Normalize_never_leaves_w_beyond_one)
{
    Random random(11);
    for (int i = 0; i < 2000; ++i)
    {
        C3DQuatTpl<TypeParam> q(random.OverDecades<TypeParam>(-5, 5), 0, 0, 0);
        bool const negative = q.W < 0;
        q.Normalize();
        EXPECT_LE(std::abs(q.W), 1);
        EXPECT_EQ(q.W < 0, negative);
    }
}

TEST(QuaternionDouble, Normalize_has_its_null_limit_at_a_squared_length_of_1e_12)
{
    double const atLimit = 1e-6;
    ASSERT_EQ(atLimit * atLimit, 1e-12);
    Quat q(0, atLimit, 0, 0);
    EXPECT_TRUE(HasComponents(q.Normalize(), 0.0, 1.0, 0.0, 0.0));
    Quat tiny(0, std::nextafter(atLimit, 0.0), 0, 0);
    ASSERT_LT(tiny.GetSquaredLength(), 1e-12);
    EXPECT_TRUE(HasComponents(tiny.Normalize(), 1.0, 0.0, 0.0, 0.0));
}

TEST(QuaternionDouble, Normalize_leaves_a_squared_length_within_1e_12_of_one)
{
    Quat inside(1, 0, 9.99e-7, 0);
    ASSERT_LT(inside.GetSquaredLength() - 1, 1e-12);
    EXPECT_TRUE(HasComponents(inside.Normalize(), 1.0, 0.0, 9.99e-7, 0.0));
    Quat outside(1, 0, 1.001e-6, 0);
    ASSERT_GT(outside.GetSquaredLength() - 1, 1e-12);
    outside.Normalize();
    EXPECT_LT(outside.W, 1);
    EXPECT_LT(outside.Y, 1.001e-6);

    Quat shortInside(0, 1 - 4.99e-13, 0, 0);
    ASSERT_LT(1 - shortInside.GetSquaredLength(), 1e-12);
    EXPECT_TRUE(HasComponents(shortInside.Normalize(), 0.0, 1 - 4.99e-13, 0.0, 0.0));
    Quat shortOutside(0, 1 - 5.01e-13, 0, 0);
    ASSERT_GT(1 - shortOutside.GetSquaredLength(), 1e-12);
    EXPECT_NEAR(shortOutside.Normalize().X, 1, 3e-16);
}

TEST(QuaternionDouble, Normalize_clamps_w_without_scaling_the_rest)
{
    Quat above(1.0000000000001, 0, 1e-8, 0);
    EXPECT_TRUE(HasComponents(above.Normalize(), 1.0, 0.0, 1e-8, 0.0));
    Quat below(-1.0000000000001, 0, 0, -1e-8);
    EXPECT_TRUE(HasComponents(below.Normalize(), -1.0, 0.0, 0.0, -1e-8));
    Quat vectorPart(0, 1.0000000000001, 0, 0);
    EXPECT_TRUE(HasComponents(vectorPart.Normalize(), 0.0, 1.0000000000001, 0.0, 0.0));
}

TEST(QuaternionFloat, Normalize_sums_in_float_and_compares_and_divides_in_double)
{
    Random random(12);
    int left = 0;
    int scaled = 0;
    for (int i = 0; i < 20000; ++i)
    {
        Quatf q = RandomQuaternion(random, 1.0F);
        q.Normalize();
        Quatf const before = q;
        auto const squared = static_cast<double>(before.GetSquaredLength());
        q.Normalize();
        if (std::abs(squared - 1) < 1e-12)
        {
            // One in single precision though not to twelve digits: it must stay.
            left += std::abs(ToJudge(before).squaredNorm() - 1) > 1e-12 ? 1 : 0;
            EXPECT_TRUE(SameBits(q, before));
        }
        else
        {
            auto const volatile factor = static_cast<float>(1 / std::sqrt(squared));
            EXPECT_TRUE(HasComponents<float>(q, std::clamp(before.W * factor, -1.0F, 1.0F), before.X * factor,
                                             before.Y * factor, before.Z * factor));
            ++scaled;
        }
    }
    EXPECT_GT(left, 1000);
    EXPECT_GT(scaled, 1000);
}

TEST(QuaternionFloat, Normalize_has_the_limits_of_double)
{
    // A squared length of 1e-10 is far below the standard tolerance of single precision, and yet it is scaled.
    Quatf q(0, 1e-5F, 0, 0);
    EXPECT_NEAR(q.Normalize().X, 1, 1e-6);
    Quatf barely(1, 0, 4e-4F, 0);
    ASSERT_GT(barely.GetSquaredLength(), 1.0F);
    EXPECT_NE(barely.Normalize().Y, 4e-4F);
}

TYPED_TEST(Quaternion, Slerp_at_the_ends_gives_the_ends)
{
    using Q = C3DQuatTpl<TypeParam>;
    auto const eps = TypeParam(4) * std::numeric_limits<TypeParam>::epsilon();
    Q const a(TypeParam(0.6), TypeParam(0.8), 0, 0);
    Q const b(TypeParam(0.6), 0, 0, TypeParam(-0.8));
    Q q;
    EXPECT_EQ(&q.Slerp(a, b, TypeParam(0)), &q);
    EXPECT_EQ(AreAlmostEqual(q, a, eps), 1);
    EXPECT_EQ(AreAlmostEqual(q.Slerp(a, b, TypeParam(1)), b, eps), 1);
    Q const opposite = Q(b).Negate();
    EXPECT_EQ(AreAlmostEqual(q.Slerp(a, opposite, TypeParam(0)), a, eps), 1);
    EXPECT_EQ(AreAlmostEqual(q.Slerp(a, opposite, TypeParam(1)), b, eps), 1) << "the negative of the second";
}

TYPED_TEST(Quaternion, Slerp_turns_at_an_even_pace_along_the_shorter_arc_and_beyond)
{
    using Q = C3DQuatTpl<TypeParam>;
    double const angle = 1.2;
    Q const a(1, 0, 0, 0);
    Q const b(static_cast<TypeParam>(std::cos(angle)), 0, static_cast<TypeParam>(std::sin(angle)), 0);
    Q const far = Q(b).Negate();
    for (double const t : {-1.0, -0.25, 0.0, 0.25, 0.5, 0.75, 1.0, 2.0})
    {
        Q q;
        q.Slerp(a, b, static_cast<TypeParam>(t));
        EXPECT_NEAR(q.W, std::cos(t * angle), 1e-6) << t;
        EXPECT_NEAR(q.Y, std::sin(t * angle), 1e-6) << t;
        EXPECT_EQ(q.X, 0);
        EXPECT_EQ(q.Z, 0);
        Q r;
        EXPECT_TRUE(SameBits(r.Slerp(a, far, static_cast<TypeParam>(t)), q)) << t;
    }
}

TYPED_TEST(Quaternion, Slerp_to_the_negative_of_itself_does_not_move)
{
    using Q = C3DQuatTpl<TypeParam>;
    Q const q(TypeParam(0.5), TypeParam(-0.5), TypeParam(0.5), TypeParam(0.5));
    for (double const t : {-2.0, 0.0, 0.3, 0.5, 1.0, 3.0})
    {
        Q moved;
        moved.Slerp(q, Q(q).Negate(), static_cast<TypeParam>(t));
        EXPECT_EQ(AreAlmostEqual(moved, q, 4 * std::numeric_limits<TypeParam>::epsilon()), 1) << t;
        moved.Slerp(Q(q).Negate(), q, static_cast<TypeParam>(t));
        EXPECT_EQ(AreAlmostEqual(moved, Q(q).Negate(), 4 * std::numeric_limits<TypeParam>::epsilon()), 1) << t;
    }
}

TYPED_TEST(Quaternion, Slerp_flips_below_a_dot_product_of_zero_and_not_at_it)
{
    using Q = C3DQuatTpl<TypeParam>;
    Q const a(1, 0, 0, 0);
    auto const tiny = std::numeric_limits<TypeParam>::min();
    for (TypeParam const w : {TypeParam(0), TypeParam(-0.0), tiny})
    {
        Q q;
        EXPECT_NEAR(q.Slerp(a, Q(w, 1, 0, 0), TypeParam(1)).X, 1, 1e-6) << w;
    }
    Q q;
    EXPECT_NEAR(q.Slerp(a, Q(-tiny, 1, 0, 0), TypeParam(1)).X, -1, 1e-6);
}

TYPED_TEST(Quaternion, Slerp_of_a_NaN_is_NaN)
{
    using Q = C3DQuatTpl<TypeParam>;
    Q q;
    q.Slerp(Q(k_Nan<TypeParam>, 0, 0, 1), Q(1, 0, 0, 0), TypeParam(0.5));
    EXPECT_TRUE(std::isnan(q.W) && std::isnan(q.X) && std::isnan(q.Y) && std::isnan(q.Z));
}

TYPED_TEST(Quaternion, Slerp_leaves_its_inputs_and_may_be_written_to_them)
{
    using Q = C3DQuatTpl<TypeParam>;
    Q const a(TypeParam(0.6), TypeParam(0.8), 0, 0);
    Q const b(TypeParam(-0.6), 0, 0, TypeParam(-0.8));
    Q expected;
    expected.Slerp(a, b, TypeParam(0.3));
    EXPECT_TRUE(HasComponents<TypeParam>(b, TypeParam(-0.6), 0, 0, TypeParam(-0.8)));
    Q q = a;
    EXPECT_TRUE(SameBits(q.Slerp(q, b, TypeParam(0.3)), expected));
    q = b;
    EXPECT_TRUE(SameBits(q.Slerp(a, q, TypeParam(0.3)), expected));
    q = a;
    EXPECT_TRUE(SameBits(q.Slerp(q, q, TypeParam(0.5)), a));
}

// The two formulas differ in the thirteenth digit there.
TEST(QuaternionDouble, Slerp_blends_linearly_from_a_cosine_of_0_999999999999)
{
    double const limit = 0.999999999999;
    double const x = 1.4e-6;
    Quat const a(1, 0, 0, 0);
    Quat q;
    EXPECT_TRUE(HasComponents(q.Slerp(a, Quat(limit, x, 0, 0), 0.5), 0.5 + 0.5 * limit, 0.5 * x, 0.0, 0.0));
    double const below = std::nextafter(limit, 0.0);
    q.Slerp(a, Quat(below, x, 0, 0), 0.5);
    double const angle = std::acos(below);
    EXPECT_EQ(q.X, std::sin(0.5 * angle) * (1 / std::sin(angle)) * x);
    EXPECT_GT(q.X, 0.5 * x);
    // The limit is that of the flipped cosine too.
    EXPECT_TRUE(HasComponents(q.Slerp(a, Quat(-limit, -x, 0, 0), 0.5), 0.5 + 0.5 * limit, 0.5 * x, 0.0, 0.0));
    EXPECT_GT(q.Slerp(a, Quat(-below, -x, 0, 0), 0.5).X, 0.5 * x);
}

TEST(QuaternionDouble, Slerp_does_not_normalise)
{
    Quat const a(1, 0, 0, 0);
    Quat q;
    EXPECT_TRUE(HasComponents(q.Slerp(Quat(2, 0, 0, 0), Quat(2, 0, 0, 0), 0.5), 2.0, 0.0, 0.0, 0.0));
    q.Slerp(a, Quat(0, 3, 0, 0), 0.5);
    EXPECT_NEAR(q.X, 3 * std::sqrt(0.5), 1e-15);
    EXPECT_NEAR(q.W, std::sqrt(0.5), 1e-15);
}

TEST(QuaternionFloat, Slerp_forms_the_dot_product_in_float)
{
    // Of length one in single precision, but short by more than 1e-12 in double: with that the arc would not vanish,
    // and far outside it the result would turn.
    Random random(13);
    int found = 0;
    while (found < 20)
    {
        Quatf q = RandomQuaternion(random, 1.0F);
        q.Normalize();
        if (q.GetSquaredLength() == 1 && ToJudge(q).squaredNorm() < 1 - 1e-8)
        {
            Quatf far;
            far.Slerp(q, q, 16384);
            EXPECT_EQ(AreAlmostEqual(far, q, 1e-6F), 1);
            ++found;
        }
    }
}

TEST(QuaternionFloat, Slerp_forms_one_minus_t_in_float_and_the_rest_in_double)
{
    float const t = 1e-8F;
    ASSERT_EQ(1.0F - t, 1.0F);
    Quatf q;
    q.Slerp(Quatf(1e5F, 1, 0, 0), Quatf(1e5F, -1e8F, 0, 0), t);
    EXPECT_EQ(q.X, static_cast<float>(1.0 + static_cast<double>(t) * -1e8));
    EXPECT_NE(q.X, static_cast<float>(1.0 - static_cast<double>(t) + static_cast<double>(t) * -1e8));

    Random random(14);
    for (int i = 0; i < 1000; ++i)
    {
        Quatf const a = RandomQuaternion(random, 0.6F);
        Quatf const b = RandomQuaternion(random, 0.6F);
        float const s = random.Uniform(-1.0F, 2.0F);
        float const volatile dot = a.W * b.W + a.X * b.X + a.Y * b.Y + a.Z * b.Z;
        float const volatile rest = 1 - s;
        if (std::abs(dot) > 0.99F)
        {
            continue;
        }
        double const angle = std::acos(static_cast<double>(std::abs(dot)));
        double const r = 1 / std::sin(angle);
        double const s0 = std::sin(static_cast<double>(rest) * angle) * r;
        double const s1 = std::sin(static_cast<double>(s) * angle) * r * (dot < 0 ? -1 : 1);
        q.Slerp(a, b, s);
        EXPECT_EQ(q.W, static_cast<float>(s0 * static_cast<double>(a.W) + s1 * static_cast<double>(b.W)));
        EXPECT_EQ(q.Z, static_cast<float>(s0 * static_cast<double>(a.Z) + s1 * static_cast<double>(b.Z)));
    }
}

TYPED_TEST(Quaternion, A_stream_holds_x_y_z_w)
{
    using Q = C3DQuatTpl<TypeParam>;
    TypeParam const expected[4] = {2, 3, 4, 1};
    auto const stream = MakeMemoryStream();
    EXPECT_EQ(this->first.Save(stream.get(), 0), 0);
    Bytes const bytes = GetBytes(*stream);
    ASSERT_EQ(bytes.size(), 4 * sizeof(TypeParam));
    EXPECT_EQ(std::memcmp(bytes.data(), expected, sizeof expected), 0);

    // The second argument means nothing, and Load starts where Save did.
    Q const awkward(TypeParam(-0.0), std::numeric_limits<TypeParam>::denorm_min(), k_Infinity<TypeParam>,
                    k_Nan<TypeParam>);
    EXPECT_EQ(awkward.Save(stream.get(), 77), 0);
    ASSERT_EQ(GetBytes(*stream).size(), 8 * sizeof(TypeParam));
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    Q q;
    EXPECT_EQ(q.Load(stream.get()), 0);
    EXPECT_TRUE(SameBits(q, this->first));
    EXPECT_EQ(q.Load(stream.get()), 0);
    EXPECT_TRUE(SameBits(q, awkward));
}

TYPED_TEST(Quaternion, Save_and_Load_report_success_whatever_happens)
{
    using Q = C3DQuatTpl<TypeParam>;
    Q q = this->first;
    EXPECT_EQ(q.Save(nullptr, 0), 0);
    EXPECT_EQ(q.Load(nullptr), 0);
    EXPECT_TRUE(SameBits(q, this->first));
    auto const full = MakeStreamFailingOnWrite(2 * sizeof(TypeParam));
    EXPECT_EQ(q.Save(full.get(), 0), 0);
    EXPECT_EQ(GetBytes(full->GetMemory()).size(), 2 * sizeof(TypeParam));

    auto const stream = MakeMemoryStream();
    this->second.Save(stream.get(), 0);
    auto const broken = MakeStreamFailingOnRead(GetBytes(*stream), 2 * sizeof(TypeParam));
    EXPECT_EQ(q.Load(broken.get()), 0);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 1, 6, 7, 4)) << "X and Y were read, Z and W keep their values";
    auto const empty = MakeMemoryStream();
    EXPECT_EQ(q.Load(empty.get()), 0);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 1, 6, 7, 4));
}

TYPED_TEST(Quaternion, Text_is_labelled_w_x_y_z_in_the_format_of_the_stream)
{
    std::ostringstream stream;
    EXPECT_EQ(&(stream << this->first), &stream);
    EXPECT_EQ(stream.str(), "( W:1  X:2  Y:3  Z:4 )");
    std::ostringstream fixed;
    fixed << std::fixed << std::setprecision(2) << C3DQuatTpl<TypeParam>(TypeParam(0.126), 0, -1, 2);
    EXPECT_EQ(fixed.str(), "( W:0.13  X:0.00  Y:-1.00  Z:2.00 )");
}

TYPED_TEST(Quaternion, Text_is_read_as_bare_numbers_w_x_y_z)
{
    using Q = C3DQuatTpl<TypeParam>;
    std::istringstream stream("1 -2\n3.5\t4e1 9");
    Q q;
    EXPECT_EQ(&(stream >> q), &stream);
    EXPECT_TRUE(HasComponents<TypeParam>(q, 1, -2, TypeParam(3.5), 40));
    int rest = 0;
    stream >> rest;
    EXPECT_EQ(rest, 9);
    std::istringstream labelled("( W:1  X:2  Y:3  Z:4 )");
    labelled >> q;
    EXPECT_TRUE(labelled.fail()) << "what is written cannot be read back";
}

TYPED_TEST(Quaternion, Dump_writes_the_label_and_the_text_and_ends_the_line)
{
    std::ostringstream stream;
    this->first.Dump(L"turn", stream);
    EXPECT_EQ(stream.str(), "turn\n( W:1  X:2  Y:3  Z:4 )\n");
    std::ostringstream bare;
    this->first.Dump(nullptr, bare);
    EXPECT_EQ(bare.str(), "( W:1  X:2  Y:3  Z:4 )\n");
}

} // namespace
