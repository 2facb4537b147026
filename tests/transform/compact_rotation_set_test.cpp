/// Construction and setting of the compact rotation.

#include "math/transformation_matrix.h"
#include "transform/compact_rotation_states.h"

#include <type_traits>

using namespace compact_rotation_test;

namespace
{

template <typename T>
class CompactRotationSet : public testing::Test
{
};
TYPED_TEST_SUITE(CompactRotationSet, Scalars);

template <typename T>
Fields<T> const k_IdentityFields = {E3DRotRep_Quat, {0, 0, 0}, 1, 0};

} // namespace

TEST(CompactRotation, The_values_of_the_forms)
{
    EXPECT_EQ(E3DRotRep_Quat, 0);
    EXPECT_EQ(E3DRotRep_Euler, 1);
    EXPECT_EQ(E3DRotRep_AxisAngle, 2);
    static_assert(sizeof(E3DRotRep) == 1 && sizeof(C3DRotation3Tpl<double>) == 40);
    static_assert(sizeof(C3DRotation3Tpl<float>) == 20);
}

TYPED_TEST(CompactRotationSet, It_is_a_plain_value)
{
    using R = C3DRotation3Tpl<TypeParam>;
    static_assert(std::is_trivially_copyable_v<R> && std::is_standard_layout_v<R> && !std::is_polymorphic_v<R>);
    EXPECT_EQ(MakeEuler<TypeParam>().GetDynamicMemSize(), 0U);
    static_assert(std::is_same_v<decltype(R().GetDynamicMemSize()), std::uint64_t>);
}

TYPED_TEST(CompactRotationSet, Memory_holds_x_y_z_then_the_last_then_the_form)
{
    using T = TypeParam;
    C3DRotation3Tpl<T> const quat(C3DQuatTpl<T>(4, 1, 2, 3));
    T numbers[4];
    std::memcpy(numbers, &quat, sizeof numbers);
    for (int i = 0; i < 4; ++i)
    {
        EXPECT_EQ(numbers[i], T(i + 1));
    }
    C3DRotation3Tpl<T> const euler(1, 2, 3, E3DROTORDER_ZYX);
    EXPECT_EQ(reinterpret_cast<unsigned char const *>(&euler)[3 * sizeof(T)], 5);
    EXPECT_EQ(reinterpret_cast<unsigned char const *>(&euler)[4 * sizeof(T)], 1);
}

TYPED_TEST(CompactRotationSet, Both_constructors_without_a_value_give_the_identity)
{
    using R = C3DRotation3Tpl<TypeParam>;
    EXPECT_EQ(FieldsOf(R()), k_IdentityFields<TypeParam>);
    alignas(R) unsigned char memory[sizeof(R)];
    std::memset(memory, 0x3C, sizeof memory);
    R const * const rotation = new (memory) R(C3DInitRequest_DoNotInitialize());
    EXPECT_EQ(FieldsOf(*rotation), k_IdentityFields<TypeParam>);
}

TYPED_TEST(CompactRotationSet, Euler_angles_are_held_as_given)
{
    using T = TypeParam;
    C3DVector3Tpl<T> const angles(T(-0.0), T(100), k_Nan<T>);
    for (int order = -1; order < 8; ++order)
    {
        auto const named = static_cast<tagE3DROTORDER>(order);
        EXPECT_EQ(FieldsOf(C3DRotation3Tpl<T>(angles, named)), EulerFields(angles, named));
        EXPECT_EQ(FieldsOf(C3DRotation3Tpl<T>(angles.X, angles.Y, angles.Z, named)), EulerFields(angles, named));
        for (C3DRotation3Tpl<T> & rotation : MakeEach<T>())
        {
            EXPECT_EQ(&rotation.Set(angles, named), &rotation);
            EXPECT_EQ(FieldsOf(rotation), EulerFields(angles, named));
        }
    }
}

TYPED_TEST(CompactRotationSet, Axis_and_angle_are_held_as_given)
{
    using T = TypeParam;
    for (C3DVector3Tpl<T> const & axis :
         {C3DVector3Tpl<T>(0, 0, 0), C3DVector3Tpl<T>(3, T(-0.0), -4), C3DVector3Tpl<T>(k_Nan<T>, 1, T(1e-20))})
    {
        for (T const angle : {T(1), T(-0.0), T(50), k_Infinity<T>})
        {
            EXPECT_EQ(FieldsOf(C3DRotation3Tpl<T>(axis, angle)), AxisAngleFields(axis, angle));
            for (C3DRotation3Tpl<T> & rotation : MakeEach<T>())
            {
                EXPECT_EQ(&rotation.Set(axis, angle), &rotation);
                EXPECT_EQ(FieldsOf(rotation), AxisAngleFields(axis, angle));
            }
        }
    }
}

TYPED_TEST(CompactRotationSet, A_quaternion_is_held_as_given)
{
    using T = TypeParam;
    for (C3DQuatTpl<T> const & quat :
         {C3DQuatTpl<T>(0, 0, 0, 0), C3DQuatTpl<T>(3, T(-0.0), -4, 5), C3DQuatTpl<T>(k_Nan<T>, 1, k_Infinity<T>, 0)})
    {
        EXPECT_EQ(FieldsOf(C3DRotation3Tpl<T>(quat)), QuatFields(quat));
        for (C3DRotation3Tpl<T> & rotation : MakeEach<T>())
        {
            EXPECT_EQ(&rotation.Set(quat), &rotation);
            EXPECT_EQ(FieldsOf(rotation), QuatFields(quat));
        }
    }
}

TYPED_TEST(CompactRotationSet, A_coordinate_axis_gives_one_angle_in_order_XZY)
{
    using T = TypeParam;
    using V = C3DVector3Tpl<T>;
    T const angle = T(0.7);
    struct Row
    {
        int axis;
        V angles;
    };
    for (auto const & [axis, angles] : {Row{E3D_AXIS_X, V(angle, 0, 0)}, Row{E3D_AXIS_Y, V(0, angle, 0)},
                                        Row{E3D_AXIS_Z, V(0, 0, angle)}, Row{3, V(0, 0, 0)}, Row{-1, V(0, 0, 0)}})
    {
        auto const named = static_cast<tagE3DAXISTYPE>(axis);
        EXPECT_EQ(FieldsOf(C3DRotation3Tpl<T>(named, angle)), EulerFields(angles, E3DROTORDER_XZY));
        for (C3DRotation3Tpl<T> & rotation : MakeEach<T>())
        {
            EXPECT_EQ(&rotation.Set(named, angle), &rotation);
            EXPECT_EQ(FieldsOf(rotation), EulerFields(angles, E3DROTORDER_XZY));
        }
    }
}

// --- The shortest rotation -------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationSet, The_shortest_rotation_is_that_of_the_caching_class)
{
    using T = TypeParam;
    test_support::Random random(31);
    for (int i = 0; i < 100; ++i)
    {
        C3DVector3Tpl<T> const from(random.Uniform<T>(-2, 2), random.Uniform<T>(-2, 2), random.Uniform<T>(-2, 2));
        C3DVector3Tpl<T> to(random.Uniform<T>(-2, 2), random.Uniform<T>(-2, 2), random.Uniform<T>(-2, 2));
        if (i % 10 == 0)
        {
            to.Mul(from, T(i % 20 == 0 ? -2 : 2));
        }
        C3DRotation judge;
        int judgeFlag = 7;
        int const judgeResult = judge.Set(
            C3DVector3Tpl<double>(static_cast<double>(from.X), static_cast<double>(from.Y),
                                  static_cast<double>(from.Z)),
            C3DVector3Tpl<double>(static_cast<double>(to.X), static_cast<double>(to.Y), static_cast<double>(to.Z)),
            judgeFlag);
        C3DQuatTpl<double> q;
        judge.GetQuat(q);
        Fields<T> const expected = QuatFields(
            C3DQuatTpl<T>(static_cast<T>(q.W), static_cast<T>(q.X), static_cast<T>(q.Y), static_cast<T>(q.Z)));
        for (C3DRotation3Tpl<T> & rotation : MakeEach<T>())
        {
            int flag = 7;
            EXPECT_EQ(rotation.Set(from, to, &flag), judgeResult);
            EXPECT_EQ(flag, judgeFlag);
            EXPECT_EQ(FieldsOf(rotation), expected);
        }
        EXPECT_EQ(FieldsOf(C3DRotation3Tpl<T>(from, to)), expected);
        C3DRotation3Tpl<T> rotation = MakeEuler<T>();
        EXPECT_EQ(rotation.Set(from, to, nullptr), judgeResult);
        EXPECT_EQ(FieldsOf(rotation), expected);
    }
}

TYPED_TEST(CompactRotationSet, The_shortest_rotation_tells_of_opposite_and_null_directions)
{
    using T = TypeParam;
    using V = C3DVector3Tpl<T>;
    C3DRotation3Tpl<T> rotation = MakeAxisAngle<T>();
    int flag = 7;
    EXPECT_EQ(rotation.Set(V(1, 0, 0), V(0, 5, 0), &flag), 1);
    EXPECT_EQ(flag, 0);
    T const half = std::sqrt(T(0.5));
    EXPECT_EQ(AreAlmostEqual(QuatOf(rotation), C3DQuatTpl<T>(half, 0, 0, half), T(1e-6)), 1);
    EXPECT_EQ(rotation.Set(V(0, 0, 2), V(0, 0, -3), &flag), 1);
    EXPECT_EQ(flag, 1);
    EXPECT_NEAR(static_cast<double>(QuatOf(rotation).W), 0, 1e-7);
    rotation = MakeAxisAngle<T>();
    EXPECT_EQ(rotation.Set(V(0, 0, 0), V(0, 0, -3), &flag), 0);
    EXPECT_EQ(flag, 0) << "a failure is not a choice of axis";
    EXPECT_EQ(FieldsOf(rotation), k_IdentityFields<T>);
    rotation = MakeAxisAngle<T>();
    EXPECT_EQ(rotation.Set(V(0, 0, 0), V(0, 0, -3), nullptr), 0);
    EXPECT_EQ(FieldsOf(rotation), k_IdentityFields<T>);
}

TEST(CompactRotationSetFloat, The_shortest_rotation_has_the_limits_of_double)
{
    C3DVector3Tpl<float> const from(1e-5F, 0, 0);
    C3DVector3Tpl<float> const to(0, 1e-5F, 0);
    C3DRotation3Tpl<float> rotation;
    EXPECT_EQ(rotation.Set(from, to, nullptr), 1) << "the product of the lengths is 1e-10";
    // The cross product has a length of 1e-10.
    EXPECT_NEAR(QuatOf(rotation).Z, std::sqrt(0.5F), 1e-6F);
    EXPECT_EQ(rotation.Set(C3DVector3Tpl<float>(5e-7F, 0, 0), C3DVector3Tpl<float>(0, 1e-6F, 0), nullptr), 0);
}

// --- Rows and matrices -----------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationSet, Three_vectors_are_the_rows_of_a_matrix)
{
    using T = TypeParam;
    using V = C3DVector3Tpl<T>;
    V const row0(0, 1, 0);
    V const row1(-1, 0, 0);
    V const row2(0, 0, 1);
    C3DRotation3Tpl<T> rotation = MakeEuler<T>();
    EXPECT_EQ(&rotation.Set(row0, row1, row2), &rotation);
    C3DQuatTpl<T> expected;
    F3DMatToQuat(C3DRotMatTpl<T>(0, 1, 0, -1, 0, 0, 0, 0, 1), expected);
    EXPECT_EQ(FieldsOf(rotation), QuatFields(expected));
    EXPECT_GT(QuatOf(rotation).Z, 0.7) << "a quarter turn about Z takes X to Y";
    // No rotation, and not made one: the conversion alone is applied.
    rotation.Set(V(2, 3, 5), V(7, 11, 13), V(17, 19, 23));
    F3DMatToQuat(C3DRotMatTpl<T>(2, 3, 5, 7, 11, 13, 17, 19, 23), expected);
    EXPECT_EQ(FieldsOf(rotation), QuatFields(expected));
}

TYPED_TEST(CompactRotationSet, A_matrix_gives_the_rotation_that_the_transformation_matrix_reads)
{
    using T = TypeParam;
    test_support::Random random(77);
    for (int i = 0; i < 100; ++i)
    {
        T elements[16];
        for (T & element : elements)
        {
            element = random.Uniform<T>(-2, 2);
        }
        C3DMatrix44Tpl<T> wide;
        wide.Set(elements);
        C3DMatrix33Tpl<T> const narrow(elements[0], elements[1], elements[2], elements[3], elements[4], elements[5],
                                       elements[6], elements[7], elements[8]);
        C3DRotation3Tpl<T> expectedWide;
        C3DXfoMatTpl<T>().Set(wide).GetRotation(expectedWide);
        C3DRotation3Tpl<T> expectedNarrow;
        C3DXfoMatTpl<T>().Set(narrow).GetRotation(expectedNarrow);
        EXPECT_EQ(FieldsOf(C3DRotation3Tpl<T>(wide)), FieldsOf(expectedWide));
        EXPECT_EQ(FieldsOf(C3DRotation3Tpl<T>(narrow)), FieldsOf(expectedNarrow));
        for (C3DRotation3Tpl<T> & rotation : MakeEach<T>())
        {
            EXPECT_EQ(&rotation.Set(wide), &rotation);
            EXPECT_EQ(FieldsOf(rotation), FieldsOf(expectedWide));
            EXPECT_EQ(&rotation.Set(narrow), &rotation);
            EXPECT_EQ(FieldsOf(rotation), FieldsOf(expectedNarrow));
        }
    }
}

TYPED_TEST(CompactRotationSet, Scale_goes_lost_and_a_mirrored_matrix_is_mirrored_on_all_axes)
{
    using T = TypeParam;
    auto const expectQuat = [](C3DRotation3Tpl<T> const & rotation, C3DQuatTpl<T> const & expected)
    {
        EXPECT_EQ(rotation.GetRepresentation(), E3DRotRep_Quat);
        EXPECT_EQ(AreAlmostEqual(QuatOf(rotation), expected, T(1e-6)), 1) << QuatOf(rotation);
    };
    T const half = std::sqrt(T(0.5));
    // A quarter turn about Z behind a scale, with a translation.
    expectQuat(C3DRotation3Tpl<T>(C3DMatrix33Tpl<T>(0, 2, 0, -3, 0, 0, 0, 0, 4)), {half, 0, 0, half});
    expectQuat(C3DRotation3Tpl<T>(C3DMatrix44Tpl<T>(0, 2, 0, 0, -3, 0, 0, 0, 0, 0, 4, 0, 5, 6, 7, 1)),
               {half, 0, 0, half});
    // The same mirrored point by point.
    expectQuat(C3DRotation3Tpl<T>(C3DMatrix33Tpl<T>(0, -2, 0, 3, 0, 0, 0, 0, -4)), {half, 0, 0, half});
    // One negative axis counts as three: what is left is a half-turn about it.
    expectQuat(C3DRotation3Tpl<T>(C3DMatrix33Tpl<T>(-1, 0, 0, 0, 1, 0, 0, 0, 1)), {0, 1, 0, 0});
    expectQuat(C3DRotation3Tpl<T>(C3DMatrix44Tpl<T>(1, 0, 0, 0, 0, -5, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1)), {0, 0, 1, 0});
}

TYPED_TEST(CompactRotationSet, The_bits_of_a_transformation_matrix_do_not_come_along)
{
    using T = TypeParam;
    C3DXfoMatTpl<T> mirrored;
    mirrored.AddScaling(C3DVector3Tpl<T>(-1, 1, 1), 1);
    ASSERT_EQ(mirrored.GetSclSignBits(), 2);
    C3DRotation3Tpl<T> own;
    mirrored.GetRotation(own);
    EXPECT_NEAR(static_cast<double>(QuatOf(own).W), 1, 1e-6) << "the matrix itself knows of one negative axis";
    EXPECT_NEAR(static_cast<double>(QuatOf(C3DRotation3Tpl<T>(mirrored)).X), 1, 1e-6);
}

// --- Identity --------------------------------------------------------------------------------------------------------

TYPED_TEST(CompactRotationSet, SetIdentity_stays_in_the_form)
{
    using T = TypeParam;
    C3DRotation3Tpl<T> quat = MakeQuat<T>();
    EXPECT_EQ(&quat.SetIdentity(), &quat);
    EXPECT_EQ(FieldsOf(quat), k_IdentityFields<T>);
    for (tagE3DROTORDER const order : k_Orders)
    {
        C3DRotation3Tpl<T> euler = MakeEuler<T>(order);
        EXPECT_EQ(&euler.SetIdentity(), &euler);
        EXPECT_EQ(FieldsOf(euler), EulerFields(C3DVector3Tpl<T>(0, 0, 0), E3DROTORDER_XYZ));
    }
    C3DRotation3Tpl<T> axisAngle = MakeAxisAngle<T>();
    EXPECT_EQ(&axisAngle.SetIdentity(), &axisAngle);
    EXPECT_EQ(FieldsOf(axisAngle), AxisAngleFields(C3DVector3Tpl<T>(1, 0, 0), T(0)));
}

TYPED_TEST(CompactRotationSet, An_unknown_form_takes_any_setter_and_ignores_SetIdentity)
{
    using T = TypeParam;
    for (E3DRotRep const rep : {k_NoForm, static_cast<E3DRotRep>(255)})
    {
        C3DRotation3Tpl<T> unknown = WithUnknownForm(MakeQuat<T>(), rep);
        Fields<T> const before = FieldsOf(unknown);
        ASSERT_EQ(before.rep, rep);
        EXPECT_EQ(unknown.GetRepresentation(), rep);
        EXPECT_EQ(unknown.GetRotOrder(), E3DROTORDER_XYZ);
        EXPECT_EQ(FieldsOf(unknown.SetIdentity()), before);
        C3DQuatTpl<T> const quat(1, 2, 3, 4);
        EXPECT_EQ(FieldsOf(unknown.Set(quat)), QuatFields(quat));
    }
}
