#include "math/rotation_matrix.h"

#include "math/vector2.h"
#include "rotation/euler_checks.h"
#include "support/random.h"
#include "support/streams.h"

#include <cstring>
#include <sstream>
#include <type_traits>

using namespace test_support;

namespace
{

template <typename T>
class RotationMatrix : public testing::Test
{
protected:
    /// No two elements are alike, and it is no rotation.
    C3DRotMatTpl<T> const counting{1, 2, 3, 4, 5, 6, 7, 8, 9};
    C3DRotMatTpl<T> const other{2, -1, 0, 3, 5, -7, 1, 4, -6};
};
TYPED_TEST_SUITE(RotationMatrix, Scalars);

template <typename M>
concept HasNineScalarSet = requires(M m)
{
    m.Set(1, 2, 3, 4, 5, 6, 7, 8, 9);
};
template <typename M>
concept HasVectorMul = requires(M m, double s)
{
    m.Mul(m, s);
};

TYPED_TEST(RotationMatrix, It_is_a_matrix_of_nine_and_nothing_else)
{
    using M = C3DRotMatTpl<TypeParam>;
    static_assert(std::is_base_of_v<C3DMatrix33Tpl<TypeParam>, M>);
    static_assert(sizeof(M) == 9 * sizeof(TypeParam));
    static_assert(!std::is_polymorphic_v<M>);
    EXPECT_EQ(this->counting.GetDynamicMemSize(), 0U);
    EXPECT_EQ(&this->counting.GetMatrix(), &this->counting);
    static_assert(std::is_same_v<decltype(this->counting.GetMatrix()), C3DMatrix33Tpl<TypeParam> const &>);
}

TYPED_TEST(RotationMatrix, The_forms_of_the_base_that_make_no_rotation_are_hidden)
{
    EXPECT_TRUE(HasNineScalarSet<C3DMatrix33Tpl<TypeParam>>);
    EXPECT_FALSE(HasNineScalarSet<C3DRotMatTpl<TypeParam>>);
    EXPECT_FALSE(HasVectorMul<C3DRotMatTpl<TypeParam>>);
}

TYPED_TEST(RotationMatrix, By_default_and_by_SetIdentity_it_is_the_identity)
{
    using M = C3DRotMatTpl<TypeParam>;
    EXPECT_TRUE(HasElements<TypeParam>(M(), {1, 0, 0, 0, 1, 0, 0, 0, 1}));
    M m = this->counting;
    EXPECT_EQ(&m.SetIdentity(), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {1, 0, 0, 0, 1, 0, 0, 0, 1}));
}

TYPED_TEST(RotationMatrix, A_request_for_no_initialisation_writes_nothing)
{
    using M = C3DRotMatTpl<TypeParam>;
    alignas(M) unsigned char memory[sizeof(M)];
    std::memset(memory, 0x3C, sizeof memory);
    asm volatile("" : : "r"(memory) : "memory");
    new (memory) M(C3DInitRequest_DoNotInitialize());
    asm volatile("" : : "r"(memory) : "memory");
    for (unsigned char const byte : memory)
    {
        EXPECT_EQ(byte, 0x3C);
    }
}

TYPED_TEST(RotationMatrix, It_is_built_from_scalars_rows_or_columns)
{
    using M = C3DRotMatTpl<TypeParam>;
    using V = C3DVector3Tpl<TypeParam>;
    EXPECT_TRUE(HasElements<TypeParam>(M(1, 2, 3, 4, 5, 6, 7, 8, 9), {1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_TRUE(HasElements<TypeParam>(M(V(1, 2, 3), V(4, 5, 6), V(7, 8, 9), 1), {1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_TRUE(HasElements<TypeParam>(M(V(1, 2, 3), V(4, 5, 6), V(7, 8, 9), -3), {1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_TRUE(HasElements<TypeParam>(M(V(1, 2, 3), V(4, 5, 6), V(7, 8, 9), 0), {1, 4, 7, 2, 5, 8, 3, 6, 9}));
}

TYPED_TEST(RotationMatrix, Set_of_an_axis_and_an_angle_is_the_elementary_rotation)
{
    using M = C3DRotMatTpl<TypeParam>;
    for (double const degrees : {-270.0, -90.0, -20.0, 30.0, 90.0, 135.0, 180.0, 725.0})
    {
        auto const angle = static_cast<TypeParam>(degrees * k_Pi / 180);
        TypeParam const c = std::cos(angle);
        TypeParam const s = std::sin(angle);
        M m = this->counting;
        EXPECT_EQ(&m.Set(E3D_AXIS_X, angle), &m);
        EXPECT_TRUE(HasElements<TypeParam>(m, {1, 0, 0, 0, c, s, 0, -s, c})) << degrees;
        m = this->counting;
        EXPECT_TRUE(HasElements<TypeParam>(m.Set(E3D_AXIS_Y, angle), {c, 0, -s, 0, 1, 0, s, 0, c})) << degrees;
        m = this->counting;
        EXPECT_TRUE(HasElements<TypeParam>(m.Set(E3D_AXIS_Z, angle), {c, s, 0, -s, c, 0, 0, 0, 1})) << degrees;
        EXPECT_NEAR(m.GetDet(), 1, 4 * std::numeric_limits<TypeParam>::epsilon());
    }
}

TYPED_TEST(RotationMatrix, Set_agrees_with_the_judge_s_elementary_rotations)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        C3DRotMatTpl<TypeParam> m;
        m.Set(static_cast<tagE3DAXISTYPE>(axis), TypeParam(0.75));
        EXPECT_LE(MaxDifference(ToJudge(m), ElementaryMatrix(axis, 0.75)), std::numeric_limits<TypeParam>::epsilon());
    }
}

TYPED_TEST(RotationMatrix, Set_with_an_angle_of_zero_is_exactly_the_identity)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        auto m = this->counting;
        m.Set(static_cast<tagE3DAXISTYPE>(axis), TypeParam(0));
        EXPECT_TRUE(HasElements<TypeParam>(m, {1, 0, 0, 0, 1, 0, 0, 0, 1})) << axis;
    }
}

TYPED_TEST(RotationMatrix, Set_with_a_value_that_names_no_axis_is_the_identity)
{
    for (int const axis : {-1, 3, 4, 1000000, std::numeric_limits<int>::min()})
    {
        auto m = this->counting;
        EXPECT_EQ(&m.Set(static_cast<tagE3DAXISTYPE>(axis), TypeParam(1)), &m);
        EXPECT_TRUE(HasElements<TypeParam>(m, {1, 0, 0, 0, 1, 0, 0, 0, 1})) << axis;
    }
}

TYPED_TEST(RotationMatrix, A_quarter_turn_about_z_takes_x_to_y)
{
    C3DRotMatTpl<TypeParam> m;
    m.Set(E3D_AXIS_Z, static_cast<TypeParam>(k_HalfPi));
    C3DVector3Tpl<TypeParam> v(1, 0, 0);
    v.Mul(v, m);
    EXPECT_NEAR(v.X, 0, 1e-7);
    EXPECT_NEAR(v.Y, 1, 1e-7);
    EXPECT_EQ(v.Z, 0);
}

TEST(RotationMatrixFloat, Set_uses_the_functions_of_single_precision)
{
    Random random(21);
    for (int i = 0; i < 1000; ++i)
    {
        float const angle = random.Uniform(-100.0F, 100.0F);
        RotMatf m;
        m.Set(E3D_AXIS_X, angle);
        EXPECT_EQ(m.Get(1, 1), cosf(angle));
        EXPECT_EQ(m.Get(1, 2), sinf(angle));
    }
}

TYPED_TEST(RotationMatrix, Setters_write_their_part_and_return_the_object)
{
    using M = C3DRotMatTpl<TypeParam>;
    using V = C3DVector3Tpl<TypeParam>;
    M m;
    static_assert(std::is_same_v<decltype(m.SetRow(0, 1, 2, 3)), M &>);
    EXPECT_EQ(&m.Set(this->counting.GetMatrix()), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {1, 2, 3, 4, 5, 6, 7, 8, 9}));
    TypeParam array[3][3] = {{9, 8, 7}, {6, 5, 4}, {3, 2, 1}};
    EXPECT_EQ(&m.Set(array), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {9, 8, 7, 6, 5, 4, 3, 2, 1}));
    EXPECT_EQ(&m.Set(1, 2, TypeParam(40)), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {9, 8, 7, 6, 5, 40, 3, 2, 1}));
    EXPECT_EQ(&m.SetRow(0, 10, 20, 30), &m);
    EXPECT_EQ(&m.SetRow(2, V(11, 21, 31)), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {10, 20, 30, 6, 5, 40, 11, 21, 31}));
    EXPECT_EQ(&m.SetCol(1, 1, 2, 3), &m);
    EXPECT_EQ(&m.SetCol(0, V(4, 5, 6)), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {4, 1, 30, 5, 2, 40, 6, 3, 31}));
    EXPECT_EQ(&m.SetNull(), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(&(m = this->counting), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {1, 2, 3, 4, 5, 6, 7, 8, 9}));
    m.Set(reinterpret_cast<TypeParam(*)[3]>(m.GetArray()));
    EXPECT_TRUE(HasElements<TypeParam>(m, {1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TYPED_TEST(RotationMatrix, GetArray_gives_the_elements_by_rows)
{
    auto m = this->counting;
    EXPECT_EQ(m.GetArray()[5], 6);
    m.GetArray()[5] = 60;
    EXPECT_EQ(m.Get(1, 2), 60);
    static_assert(std::is_same_v<decltype(this->counting.GetArray()), TypeParam const *>);
    EXPECT_EQ(this->counting.GetArray()[3], 4);
}

TYPED_TEST(RotationMatrix, In_a_product_the_first_operand_acts_first)
{
    using M = C3DRotMatTpl<TypeParam>;
    using V = C3DVector3Tpl<TypeParam>;
    M m;
    EXPECT_EQ(&m.Mul(this->counting, this->other), &m);
    static_assert(std::is_same_v<decltype(m.Mul(m, m)), M &>);
    EXPECT_EQ(ToJudge(m), (ToJudge(this->counting) * ToJudge(this->other)).eval());
    m = this->counting;
    EXPECT_EQ(&m.Mul(this->other), &m);
    EXPECT_EQ(ToJudge(m), (ToJudge(this->counting) * ToJudge(this->other)).eval());
    EXPECT_EQ(&m.MulTransByReg(this->counting, this->other), &m);
    EXPECT_EQ(ToJudge(m), (ToJudge(this->counting).transpose() * ToJudge(this->other)).eval());
    EXPECT_EQ(&m.MulRegByTrans(this->counting, this->other), &m);
    EXPECT_EQ(ToJudge(m), (ToJudge(this->counting) * ToJudge(this->other).transpose()).eval());

    V stepwise(1, 2, 3);
    stepwise.Mul(stepwise, this->counting).Mul(stepwise, this->other);
    V atOnce(1, 2, 3);
    atOnce.Mul(atOnce, m.Mul(this->counting, this->other));
    EXPECT_TRUE(AreEqual(stepwise, atOnce));
}

TYPED_TEST(RotationMatrix, Products_may_be_written_to_their_operands)
{
    Eigen::Matrix3d const a = ToJudge(this->counting);
    Eigen::Matrix3d const b = ToJudge(this->other);
    auto m = this->counting;
    EXPECT_EQ(ToJudge(m.Mul(m, this->other)), (a * b).eval());
    m = this->other;
    EXPECT_EQ(ToJudge(m.Mul(this->counting, m)), (a * b).eval());
    m = this->counting;
    EXPECT_EQ(ToJudge(m.Mul(m)), (a * a).eval());
    m = this->counting;
    EXPECT_EQ(ToJudge(m.MulTransByReg(m, this->other)), (a.transpose() * b).eval());
    m = this->other;
    EXPECT_EQ(ToJudge(m.MulTransByReg(this->counting, m)), (a.transpose() * b).eval());
    m = this->counting;
    EXPECT_EQ(ToJudge(m.MulTransByReg(m, m)), (a.transpose() * a).eval());
    m = this->counting;
    EXPECT_EQ(ToJudge(m.MulRegByTrans(m, this->other)), (a * b.transpose()).eval());
    m = this->other;
    EXPECT_EQ(ToJudge(m.MulRegByTrans(this->counting, m)), (a * b.transpose()).eval());
    m = this->counting;
    EXPECT_EQ(ToJudge(m.MulRegByTrans(m, m)), (a * a.transpose()).eval());
}

TYPED_TEST(RotationMatrix, Invert_is_the_transpose_of_any_content)
{
    using M = C3DRotMatTpl<TypeParam>;
    M m = this->counting;
    EXPECT_EQ(&m.Invert(), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {1, 4, 7, 2, 5, 8, 3, 6, 9}));
    EXPECT_EQ(&m.Invert(this->counting), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {1, 4, 7, 2, 5, 8, 3, 6, 9}));
    EXPECT_EQ(&m.Invert(m), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {1, 2, 3, 4, 5, 6, 7, 8, 9}));
    static_assert(std::is_same_v<decltype(m.Invert()), M &>, "there is nothing to report");
    EXPECT_EQ(&m.Transpose(), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {1, 4, 7, 2, 5, 8, 3, 6, 9}));
    EXPECT_EQ(&m.Transpose(this->counting), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {1, 4, 7, 2, 5, 8, 3, 6, 9}));
    EXPECT_EQ(&m.Transpose(m), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {1, 2, 3, 4, 5, 6, 7, 8, 9}));
    M null;
    null.SetNull().Invert();
    EXPECT_TRUE(HasElements<TypeParam>(null, {0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TYPED_TEST(RotationMatrix, Negate_leaves_the_rotations)
{
    using M = C3DRotMatTpl<TypeParam>;
    M m;
    m.Set(E3D_AXIS_Y, TypeParam(0.5));
    EXPECT_NEAR(m.GetDet(), 1, 1e-6);
    EXPECT_EQ(&m.Negate(), &m);
    EXPECT_NEAR(m.GetDet(), -1, 1e-6);
    EXPECT_EQ(&m.Negate(this->counting), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {-1, -2, -3, -4, -5, -6, -7, -8, -9}));
    EXPECT_EQ(&m.Negate(m), &m);
    EXPECT_TRUE(HasElements<TypeParam>(m, {1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TYPED_TEST(RotationMatrix, Tests_and_measures_are_those_of_the_matrix)
{
    using M = C3DRotMatTpl<TypeParam>;
    auto const limit = TypeParam(0.25);
    EXPECT_TRUE(M().IsIdentity(limit));
    EXPECT_TRUE(M().Set(0, 1, std::nextafter(limit, TypeParam(0))).IsIdentity(limit));
    EXPECT_FALSE(M().Set(0, 1, limit).IsIdentity(limit));
    EXPECT_FALSE(M().Set(2, 2, TypeParam(-1)).IsIdentity(limit));
    EXPECT_TRUE(this->counting == M(1, 2, 3, 4, 5, 6, 7, 8, 9));
    EXPECT_FALSE(this->counting != M(1, 2, 3, 4, 5, 6, 7, 8, 9));
    EXPECT_FALSE(this->counting == this->other);
    EXPECT_TRUE(this->counting != this->other);
    EXPECT_EQ(this->other.GetDet(), TypeParam(ToJudge(this->other).determinant()));
    EXPECT_EQ(this->counting.GetTrace(), 15);
    EXPECT_EQ(AreAlmostEqual(this->counting, M(this->counting).Set(2, 1, TypeParam(8.25)), TypeParam(0.5)), 1);
    EXPECT_EQ(AreAlmostEqual(this->counting, M(this->counting).Set(2, 1, TypeParam(8.5)), TypeParam(0.5)), 0);
    EXPECT_EQ(AreAlmostEqual(this->counting, this->counting, TypeParam(0)), 0);
    EXPECT_EQ(AreAlmostEqual(this->counting, M(this->counting).Set(0, 0, k_Nan<TypeParam>), TypeParam(0.5)), 1);
}

TYPED_TEST(RotationMatrix, Text_and_stream_are_those_of_the_matrix)
{
    using M = C3DRotMatTpl<TypeParam>;
    std::ostringstream text;
    EXPECT_EQ(&(text << this->counting), &text);
    EXPECT_EQ(text.str(), "( 1 2 3 )\n( 4 5 6 )\n( 7 8 9 )");
    std::ostringstream dump;
    this->counting.Dump(L"pose", dump);
    EXPECT_EQ(dump.str(), "pose\n( 1 2 3 )\n( 4 5 6 )\n( 7 8 9 )\n \n");
    std::istringstream numbers("9 8 7\n6 5 4\n3 2 1 0");
    M m;
    EXPECT_EQ(&(numbers >> m), &numbers);
    EXPECT_TRUE(HasElements<TypeParam>(m, {9, 8, 7, 6, 5, 4, 3, 2, 1}));

    auto const stream = MakeMemoryStream();
    EXPECT_EQ(this->counting.Save(stream.get(), 0), 0);
    EXPECT_EQ(GetBytes(*stream).size(), 9 * sizeof(TypeParam));
    stream->Seek(0, STREAM_SEEK_SET, nullptr);
    EXPECT_EQ(m.Load(stream.get()), 0);
    EXPECT_TRUE(HasElements<TypeParam>(m, {1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TYPED_TEST(RotationMatrix, A_vector_of_three_is_taken_as_row_or_column)
{
    using V = C3DVector3Tpl<TypeParam>;
    V const v(1, -2, 3);
    V result;
    EXPECT_EQ(&result.Mul(v, this->counting), &result);
    EXPECT_TRUE(AreEqual(result, V(14, 16, 18)));
    EXPECT_EQ(&result.Mul(this->counting, v), &result);
    EXPECT_TRUE(AreEqual(result, V(6, 12, 18)));
    result = v;
    result.Mul(result, this->counting);
    EXPECT_TRUE(AreEqual(result, V(14, 16, 18)));
    result = v;
    result.Mul(this->counting, result);
    EXPECT_TRUE(AreEqual(result, V(6, 12, 18)));
}

TYPED_TEST(RotationMatrix, A_vector_of_two_takes_the_first_two_components_of_the_product)
{
    C3DVector3Tpl<TypeParam> const v(1, -2, 3);
    C3DVector2Tpl<TypeParam> result;
    EXPECT_EQ(&result.Mul(v, this->counting), &result);
    EXPECT_EQ(result.X, 14);
    EXPECT_EQ(result.Y, 16);
    EXPECT_EQ(&result.Mul(this->counting, v), &result);
    EXPECT_EQ(result.X, 6);
    EXPECT_EQ(result.Y, 12);
}

} // namespace
