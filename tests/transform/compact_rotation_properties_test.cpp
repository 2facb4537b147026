/// Properties of the compact rotation over random input.

#include "transform/compact_rotation_states.h"

using namespace compact_rotation_test;

namespace
{

template <typename T>
class CompactRotationProperties : public testing::Test
{
protected:
    test_support::Random m_Random{20};

    C3DRotation3Tpl<T> Any() { return RandomRotation<T>(m_Random, AnyForm()); }
    E3DRotRep AnyForm() { return k_Forms[static_cast<std::size_t>(m_Random.Integer(0, 2))]; }
    tagE3DROTORDER AnyOrder() { return k_Orders[static_cast<std::size_t>(m_Random.Integer(0, 5))]; }
};
TYPED_TEST_SUITE(CompactRotationProperties, Scalars);

/// The rotation, by the judge alone.
template <typename T>
Eigen::Quaterniond JudgeOfHeld(C3DRotation3Tpl<T> const & rotation)
{
    Fields<T> const held = FieldsOf(rotation);
    Eigen::Vector3d const v(static_cast<double>(held.values[0]), static_cast<double>(held.values[1]),
                            static_cast<double>(held.values[2]));
    auto const last = static_cast<double>(held.scalar);
    if (held.rep == E3DRotRep_Quat)
    {
        return Eigen::Quaterniond(last, v.x(), v.y(), v.z()).normalized();
    }
    if (held.rep == E3DRotRep_AxisAngle)
    {
        return Eigen::Quaterniond(Eigen::AngleAxisd(last, v.normalized()));
    }
    int const sequences[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
    Eigen::Quaterniond product = Eigen::Quaterniond::Identity();
    for (int const axis : sequences[held.order])
    {
        product = Eigen::AngleAxisd(v[axis], Eigen::Vector3d::Unit(axis)) * product;
    }
    return product;
}

} // namespace

TYPED_TEST(CompactRotationProperties, Every_form_is_the_rotation_that_the_judge_knows)
{
    using T = TypeParam;
    for (int i = 0; i < 500; ++i)
    {
        C3DRotation3Tpl<T> const rotation = this->Any();
        Eigen::Quaterniond const judge = JudgeOfHeld(rotation);
        EXPECT_LT(Distance(JudgeOf(rotation), judge), k_Tolerance<T>);
        C3DRotMatTpl<T> matrix;
        rotation.GetMatrix(matrix);
        Eigen::Matrix3d const rows = judge.toRotationMatrix().transpose();
        for (int r = 0; r < 3; ++r)
        {
            for (int c = 0; c < 3; ++c)
            {
                EXPECT_NEAR(static_cast<double>(matrix.Get(r, c)), rows(r, c),
                            (std::is_same_v<T, float> ? 2e-6 : 1e-14));
            }
        }
    }
}

TYPED_TEST(CompactRotationProperties, A_round_trip_between_the_forms_keeps_the_rotation)
{
    using T = TypeParam;
    for (int i = 0; i < 500; ++i)
    {
        C3DRotation3Tpl<T> rotation = this->Any();
        Eigen::Quaterniond const judge = JudgeOfHeld(rotation);
        for (int step = 0; step < 5; ++step)
        {
            rotation.SetRepresentation(this->AnyForm(), this->AnyOrder());
            rotation.Set(this->AnyOrder(), 1);
            EXPECT_LT(Distance(JudgeOfHeld(rotation), judge), k_Tolerance<T>);
        }
    }
}

TYPED_TEST(CompactRotationProperties, A_rotation_comes_back_from_its_matrix)
{
    using T = TypeParam;
    for (int i = 0; i < 300; ++i)
    {
        C3DRotation3Tpl<T> const rotation = this->Any();
        C3DMatrix33Tpl<T> narrow;
        C3DMatrix44Tpl<T> wide;
        rotation.GetMatrix(narrow);
        rotation.GetMatrix(wide);
        Eigen::Quaterniond const judge = JudgeOfHeld(rotation);
        EXPECT_LT(Distance(JudgeOf(C3DRotation3Tpl<T>(narrow)), judge), k_Tolerance<T>);
        EXPECT_LT(Distance(JudgeOf(C3DRotation3Tpl<T>(wide)), judge), k_Tolerance<T>);
    }
}

TYPED_TEST(CompactRotationProperties, Products_agree_with_the_judge_and_Div_undoes_Mul)
{
    using T = TypeParam;
    for (int i = 0; i < 300; ++i)
    {
        C3DRotation3Tpl<T> const a = this->Any();
        C3DRotation3Tpl<T> const b = this->Any();
        Eigen::Quaterniond const judge = JudgeOfHeld(b) * JudgeOfHeld(a);
        C3DRotation3Tpl<T> product;
        EXPECT_LT(Distance(JudgeOf(product.Mul(a, b)), judge), k_Tolerance<T>);
        EXPECT_LT(Distance(JudgeOf(C3DRotation3Tpl<T>(product).Div(b)), JudgeOfHeld(a)), k_Tolerance<T>);
        EXPECT_LT(Distance(JudgeOf(C3DRotation3Tpl<T>(a).Invert()), JudgeOfHeld(a).conjugate()), k_Tolerance<T>);
        EXPECT_LT(Distance(JudgeOfHeld(C3DRotation3Tpl<T>().MulAndUpdateEulerAngles(a, b, i % 2)), judge),
                  k_Tolerance<T>);
    }
}

TYPED_TEST(CompactRotationProperties, Interpolation_divides_the_angle_between_two_rotations)
{
    using T = TypeParam;
    for (int i = 0; i < 300; ++i)
    {
        C3DRotation3Tpl<T> const a(QuatOf(this->Any()).Normalize());
        C3DRotation3Tpl<T> const b(QuatOf(this->Any()).Normalize());
        T const t = this->m_Random.template Uniform<T>(0, 1);
        Eigen::Quaterniond const between = JudgeOf(C3DRotation3Tpl<T>().Interpolate(a, b, t));
        double const whole = Distance(JudgeOf(a), JudgeOf(b));
        EXPECT_NEAR(Distance(JudgeOf(a), between), whole * static_cast<double>(t), k_Tolerance<T>);
        EXPECT_NEAR(Distance(JudgeOf(b), between), whole * (1 - static_cast<double>(t)), k_Tolerance<T>);
        C3DRotation3Tpl<T> halved = a;
        EXPECT_LT(Distance(JudgeOf(C3DRotation3Tpl<T>().Mul(halved.Mul(T(0.5)), halved)), JudgeOf(a)), k_Tolerance<T>);
    }
}
