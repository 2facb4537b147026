/// Tests for the identity and equality of compact rotations.

#include "transform/compact_rotation_states.h"

using namespace compact_rotation_test;

namespace
{

template <typename T>
class CompactRotationComparison : public testing::Test
{
};
TYPED_TEST_SUITE(CompactRotationComparison, Scalars);

/// A rotation of a form out of its four numbers; the fourth is not there in Euler angles.
template <typename T>
C3DRotation3Tpl<T> Make(E3DRotRep form, T const (&numbers)[4], tagE3DROTORDER order = E3DROTORDER_ZYX)
{
    C3DVector3Tpl<T> const v(numbers[0], numbers[1], numbers[2]);
    switch (form)
    {
    case E3DRotRep_Quat:
        return C3DRotation3Tpl<T>(C3DQuatTpl<T>(numbers[3], v.X, v.Y, v.Z));
    case E3DRotRep_Euler:
        return {v, order};
    default:
        return {v, numbers[3]};
    }
}

constexpr int CountOf(E3DRotRep form)
{
    return form == E3DRotRep_Euler ? 3 : 4;
}

} // namespace

// --- Identity --------------------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationComparison, IsIdentity_asks_for_the_exact_numbers)
{
    using T = TypeParam;
    T const tiny = std::numeric_limits<T>::denorm_min();
    for (E3DRotRep const form : k_Forms)
    {
        bool const isQuat = form == E3DRotRep_Quat;
        T const last = isQuat ? T(1) : T(0);
        EXPECT_EQ(Make<T>(form, {0, 0, 0, last}).IsIdentity(), 1);
        EXPECT_EQ(Make<T>(form, {T(-0.0), T(-0.0), T(-0.0), last}).IsIdentity(), 1);
        for (int i = 0; i < CountOf(form); ++i)
        {
            // The axis does not matter where the angle is 0.
            int const expected = form == E3DRotRep_AxisAngle && i < 3 ? 1 : 0;
            for (T const wrong : {tiny, -tiny, T(1), k_Nan<T>})
            {
                T numbers[4] = {0, 0, 0, last};
                numbers[i] = i == 3 && isQuat ? (wrong == tiny ? Above(T(1)) : (wrong == 1 ? T(-1) : wrong)) : wrong;
                EXPECT_EQ(Make<T>(form, numbers).IsIdentity(), expected) << form << ' ' << i << ' ' << wrong;
            }
        }
    }
    EXPECT_EQ(C3DRotation3Tpl<T>(T(2 * k_Pi), 0, 0, E3DROTORDER_XYZ).IsIdentity(), 0) << "a whole turn";
    EXPECT_EQ(C3DRotation3Tpl<T>(C3DVector3Tpl<T>(0, 0, 0), T(-0.0)).IsIdentity(), 1);
}

TYPED_TEST(CompactRotationComparison, IsAlmostIdentity_keeps_the_limit_itself_out)
{
    using T = TypeParam;
    T const epsilon = T(0.25);
    for (E3DRotRep const form : k_Forms)
    {
        T const last = form == E3DRotRep_Quat ? T(1) : T(0);
        for (int i = 0; i < CountOf(form); ++i)
        {
            bool const isFree = form == E3DRotRep_AxisAngle && i < 3;
            for (T const sign : {T(1), T(-1)})
            {
                T numbers[4] = {0, 0, 0, last};
                numbers[i] += sign * epsilon;
                EXPECT_EQ(Make<T>(form, numbers).IsAlmostIdentity(epsilon), isFree) << form << i;
                // W is compared by its difference from one, which has fewer digits.
                numbers[i] -= sign * std::numeric_limits<T>::epsilon();
                EXPECT_EQ(Make<T>(form, numbers).IsAlmostIdentity(epsilon), 1) << form << i;
            }
            T numbers[4] = {0, 0, 0, last};
            numbers[i] = k_Nan<T>;
            EXPECT_EQ(Make<T>(form, numbers).IsAlmostIdentity(epsilon), isFree) << form << i;
        }
        EXPECT_EQ(Make<T>(form, {0, 0, 0, last}).IsAlmostIdentity(0), 0) << "nothing is below 0";
        EXPECT_EQ(Make<T>(form, {0, 0, 0, last}).IsAlmostIdentity(k_Nan<T>), 0);
        EXPECT_EQ(Make<T>(form, {0, 0, 0, last}).IsAlmostIdentity(std::numeric_limits<T>::denorm_min()), 1);
        EXPECT_EQ(Make<T>(form, {0, 0, 0, last}).IsAlmostIdentity(), 1);
    }
    EXPECT_EQ(C3DRotation3Tpl<T>(C3DQuatTpl<T>(-1, 0, 0, 0)).IsAlmostIdentity(T(0.5)), 0);
}

TYPED_TEST(CompactRotationComparison, An_unknown_form_is_not_the_identity_and_equals_nothing)
{
    using T = TypeParam;
    for (C3DRotation3Tpl<T> const & known : {C3DRotation3Tpl<T>(), C3DRotation3Tpl<T>(0, 0, 0, E3DROTORDER_XYZ)})
    {
        C3DRotation3Tpl<T> const unknown = WithUnknownForm(known);
        EXPECT_EQ(unknown.IsIdentity(), 0);
        EXPECT_EQ(unknown.IsAlmostIdentity(100), 0);
        EXPECT_FALSE(unknown == unknown);
        EXPECT_TRUE(unknown != unknown);
        EXPECT_FALSE(unknown == known);
        EXPECT_FALSE(known == unknown);
        EXPECT_EQ(AreAlmostEqual(unknown, unknown, T(100)), 0);
        EXPECT_EQ(AreAlmostEqual(unknown, known, T(100)), 0);
        EXPECT_EQ(AreAlmostEqual(known, unknown, T(100)), 0);
    }
}

// --- Equality --------------------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationComparison, Every_number_of_the_form_counts)
{
    using T = TypeParam;
    T const epsilon = T(0.125);
    for (E3DRotRep const form : k_Forms)
    {
        T const numbers[4] = {T(0.5), T(-0.25), T(0.75), T(1.5)};
        C3DRotation3Tpl<T> const a = Make(form, numbers);
        EXPECT_TRUE(a == a);
        EXPECT_FALSE(a != a);
        EXPECT_EQ(AreAlmostEqual(a, a, epsilon), 1);
        EXPECT_EQ(AreAlmostEqual(a, a), 1);
        EXPECT_EQ(AreAlmostEqual(a, a, T(0)), 0);
        for (int i = 0; i < CountOf(form); ++i)
        {
            for (T const sign : {T(1), T(-1)})
            {
                T other[4] = {numbers[0], numbers[1], numbers[2], numbers[3]};
                other[i] += sign * epsilon;
                EXPECT_FALSE(a == Make(form, other));
                EXPECT_TRUE(a != Make(form, other));
                EXPECT_EQ(AreAlmostEqual(a, Make(form, other), epsilon), 0) << form << i;
                EXPECT_EQ(AreAlmostEqual(Make(form, other), a, epsilon), 0) << form << i;
                other[i] -= sign * std::numeric_limits<T>::epsilon();
                EXPECT_EQ(AreAlmostEqual(a, Make(form, other), epsilon), 1) << form << i;
                EXPECT_EQ(AreAlmostEqual(Make(form, other), a, epsilon), 1) << form << i;
                other[i] = sign > 0 ? Above(numbers[i]) : Below(numbers[i]);
                EXPECT_FALSE(a == Make(form, other));
            }
            T other[4] = {numbers[0], numbers[1], numbers[2], numbers[3]};
            other[i] = k_Nan<T>;
            C3DRotation3Tpl<T> const nan = Make(form, other);
            EXPECT_FALSE(a == nan || nan == a || nan == nan) << form << i;
            EXPECT_TRUE(nan != nan);
            EXPECT_EQ(AreAlmostEqual(a, nan, T(100)), 0) << form << i;
            EXPECT_EQ(AreAlmostEqual(nan, nan, T(100)), 0) << form << i;
        }
    }
}

TYPED_TEST(CompactRotationComparison, Numbers_are_compared_and_not_rotations)
{
    using T = TypeParam;
    C3DRotation3Tpl<T> const quat(C3DQuatTpl<T>(T(0.5), T(0.5), T(0.5), T(0.5)));
    C3DRotation3Tpl<T> const negative(C3DQuatTpl<T>(T(-0.5), T(-0.5), T(-0.5), T(-0.5)));
    EXPECT_FALSE(quat == negative);
    EXPECT_EQ(AreAlmostEqual(quat, negative, T(0.5)), 0);
    C3DRotation3Tpl<T> const turn(T(2 * k_Pi), 0, 0, E3DROTORDER_XYZ);
    EXPECT_EQ(AreAlmostEqual(turn, C3DRotation3Tpl<T>(0, 0, 0, E3DROTORDER_XYZ), T(1)), 0);
    C3DVector3Tpl<T> const axis(0, 0, 1);
    EXPECT_EQ(AreAlmostEqual(C3DRotation3Tpl<T>(axis, T(1)), C3DRotation3Tpl<T>(C3DVector3Tpl<T>().Negate(axis), T(-1)),
                             T(1)),
              0);
    EXPECT_TRUE(C3DRotation3Tpl<T>(axis, T(0)) == C3DRotation3Tpl<T>(axis, T(-0.0)));
}

TYPED_TEST(CompactRotationComparison, Euler_angles_must_be_in_one_order)
{
    using T = TypeParam;
    for (tagE3DROTORDER const p : k_Orders)
    {
        for (tagE3DROTORDER const q : k_Orders)
        {
            C3DRotation3Tpl<T> const a(0, 0, T(0.5), p);
            C3DRotation3Tpl<T> const b(0, 0, T(0.5), q);
            EXPECT_EQ(a == b, p == q);
            EXPECT_EQ(AreAlmostEqual(a, b, T(0.1)), p == q);
        }
    }
}

TYPED_TEST(CompactRotationComparison, The_second_is_converted_to_the_form_of_the_first)
{
    using T = TypeParam;
    T const half = T(0.5);
    C3DRotation3Tpl<T> const quat(C3DQuatTpl<T>(half, half, half, half));
    for (C3DRotation3Tpl<T> const & a : MakeEach<T>())
    {
        for (E3DRotRep const form : k_Forms)
        {
            C3DRotation3Tpl<T> converted = a;
            converted.SetRepresentation(form, E3DROTORDER_XYZ);
            Fields<T> const before = FieldsOf(converted);
            EXPECT_TRUE(converted == converted);
            // What the conversion gives equals the source, converted again on a copy.
            EXPECT_TRUE(form == a.GetRepresentation() || converted == a) << form;
            EXPECT_EQ(AreAlmostEqual(converted, a, T(1e-6)), 1) << form;
            EXPECT_EQ(FieldsOf(converted), before);
        }
    }
    // The first is not converted: the same two the other way round are compared in the other form.
    C3DRotation3Tpl<T> const longQuat = MakeQuat<T>();
    C3DRotation3Tpl<T> angles = longQuat;
    angles.SetRepresentation(E3DRotRep_Euler, E3DROTORDER_XYZ);
    EXPECT_TRUE(angles == longQuat);
    EXPECT_FALSE(longQuat == angles) << "a quaternion of length one";
    EXPECT_EQ(AreAlmostEqual(longQuat, angles, T(0.1)), 0);
}

TYPED_TEST(CompactRotationComparison, Euler_angles_in_another_order_than_XYZ_equal_no_other_form)
{
    using T = TypeParam;
    for (tagE3DROTORDER const order : k_Orders)
    {
        C3DRotation3Tpl<T> const euler(T(0.1), T(0.2), T(0.3), order);
        for (E3DRotRep const form : {E3DRotRep_Quat, E3DRotRep_AxisAngle})
        {
            C3DRotation3Tpl<T> other = euler;
            other.SetRepresentation(form, E3DROTORDER_XYZ);
            EXPECT_EQ(AreAlmostEqual(euler, other, T(1e-4)), order == E3DROTORDER_XYZ);
            EXPECT_EQ(AreAlmostEqual(other, euler, T(1e-4)), 1) << "but the other form equals them";
        }
    }
}
