/// What sets the scale and the rotation of the transformation matrix.

#include "math/transformation_matrix.h"

#include "math/compact_rotation.h"
#include "math/rotation.h"
#include "math/rotation_conversions.h"
#include "transform/transformation_matrices.h"

#include <cmath>
#include <cstring>

using namespace transformation_matrix_test;

namespace
{

template <typename T>
constexpr T k_Tolerance = T(1e-12);
template <>
constexpr float k_Tolerance<float> = 1e-6F;

/// What SetScaling makes of small factors that are not negative.
template <typename T>
constexpr T k_SmallestScaleSet = T(1e-6);
template <>
constexpr float k_SmallestScaleSet<float> = 1e-6F;

/// A factor, what it becomes, what it becomes in SetScaling, and whether its axis counts as negative.
template <typename T>
struct FactorCase
{
    T factor;
    T clamped;
    T set;
    bool isNegative;
};

template <typename T>
std::vector<FactorCase<T>> FactorCases()
{
    T const tolerance = k_Tolerance<T>;
    T const set = k_SmallestScaleSet<T>;
    T const below = std::nextafter(tolerance, T(0));
    T const above = std::nextafter(tolerance, T(1));
    T const tiny = std::numeric_limits<T>::denorm_min();
    return {{T(3), T(3), T(3), false},
            {T(-3), T(-3), T(-3), true},
            {T(1), T(1), T(1), false},
            {T(-1), T(-1), T(-1), true},
            {tolerance, tolerance, tolerance, false},
            {above, above, above, false},
            {below, tolerance, set, false},
            {tiny, tolerance, set, false},
            {T(0), tolerance, set, false},
            {T(-0.0), tolerance, set, false},
            {-tiny, -tolerance, -tolerance, true},
            {-below, -tolerance, -tolerance, true},
            {-tolerance, -tolerance, -tolerance, true},
            {-above, -above, -above, true},
            {k_Nan<T>, -tolerance, -tolerance, false},
            {-k_Nan<T>, -tolerance, -tolerance, false},
            {k_Infinity<T>, k_Infinity<T>, k_Infinity<T>, false},
            {-k_Infinity<T>, -k_Infinity<T>, -k_Infinity<T>, true}};
}

template <typename T>
class TransformationMatrixScaling : public testing::Test
{
protected:
    using Matrix = C3DXfoMatTpl<T>;
    using Vector = C3DVector3Tpl<T>;

    /// Runs with every factor on every axis, between two plain ones.
    static void ForEachFactor(std::function<void(Vector const &, Vector const &, Vector const &, unsigned)> const & run)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            for (auto const & [factor, clamped, set, isNegative] : FactorCases<T>())
            {
                SCOPED_TRACE(testing::Message() << "factor " << factor << " on axis " << axis);
                Vector const plain(T(-2), T(0.5), T(-4));
                unsigned bits = k_X | k_Z;
                bits = isNegative ? bits | 2U << axis : bits & ~(2U << axis);
                run(Vector(plain).Set(axis, factor), Vector(plain).Set(axis, clamped), Vector(plain).Set(axis, set),
                    bits);
            }
        }
    }

    static Numbers<T> ScaledRows(Numbers<T> numbers, Vector const & s)
    {
        for (std::size_t i = 0; i < 12; ++i)
        {
            numbers[i] = i % 4 == 3 ? numbers[i] : numbers[i] * s[i / 4];
        }
        return numbers;
    }

    static Numbers<T> ScaledColumns(Numbers<T> numbers, Vector const & s)
    {
        for (std::size_t i = 0; i < 16; ++i)
        {
            numbers[i] = i % 4 == 3 ? numbers[i] : numbers[i] * s[i % 4];
        }
        return numbers;
    }

    /// The rest of one matrix with an upper block that is s times the rows of r.
    template <typename R>
    static Numbers<T> WithRows(Numbers<T> numbers, Vector const & s, C3DMatrix33Tpl<R> const & r)
    {
        for (int i = 0; i < 9; ++i)
        {
            numbers[static_cast<std::size_t>(4 * (i / 3) + i % 3)] =
                static_cast<T>(static_cast<R>(s.Get(i / 3)) * r.Get(i / 3, i % 3));
        }
        return numbers;
    }

    static Numbers<T> Diagonal(T x, T y, T z, T tx = 0, T ty = 0, T tz = 0)
    {
        return {x, 0, 0, 0, 0, y, 0, 0, 0, 0, z, 0, tx, ty, tz, 1};
    }

    /// A quarter turn about Z, exact: X goes to Y, and Y to -X.
    static C3DRotMatTpl<T> QuarterTurn() { return {0, 1, 0, -1, 0, 0, 0, 0, 1}; }
};
TYPED_TEST_SUITE(TransformationMatrixScaling, Scalars);

// --- AddScaling ------------------------------------------------------------------------------------------------------

TYPED_TEST(TransformationMatrixScaling, AddScaling_of_rows_clamps_and_toggles)
{
    using T = TypeParam;
    this->ForEachFactor(
        [this](auto const & s, auto const & clamped, auto const &, unsigned negative)
        {
            for (unsigned const bits : k_SignBits)
            {
                for (int const scaleRows : {1, 2, -1})
                {
                    auto m = Make<T>(k_Positive<T>, 0xF1 | bits);
                    EXPECT_EQ(&m.AddScaling(s, scaleRows), &m);
                    EXPECT_TRUE(Holds(m, this->ScaledRows(k_Positive<T>, clamped), 0xF1 | (bits ^ negative)));
                }
            }
        });
}

TYPED_TEST(TransformationMatrixScaling, AddScaling_of_columns_clamps_and_toggles)
{
    using T = TypeParam;
    this->ForEachFactor(
        [this](auto const & s, auto const & clamped, auto const &, unsigned negative)
        {
            for (unsigned const bits : k_SignBits)
            {
                for (unsigned const others : k_OtherBits)
                {
                    auto m = Make<T>(k_Positive<T>, others | bits);
                    EXPECT_EQ(&m.AddScaling(s, 0), &m);
                    EXPECT_TRUE(Holds(m, this->ScaledColumns(k_Positive<T>, clamped), others | (bits ^ negative)));
                }
            }
        });
}

TYPED_TEST(TransformationMatrixScaling, AddScaling_of_rows_acts_first_and_keeps_the_translation)
{
    using T = TypeParam;
    auto m = Make<T>({1, 2, 3, 10, 4, 5, 6, 11, 7, 8, 9, 12, 13, 14, 15, 16}, 0);
    m.AddScaling({2, 3, -4}, 1);
    EXPECT_TRUE(Holds(m, {2, 4, 6, 10, 12, 15, 18, 11, -28, -32, -36, 12, 13, 14, 15, 16}, k_Z));
}

TYPED_TEST(TransformationMatrixScaling, AddScaling_of_columns_acts_last_and_scales_the_translation)
{
    using T = TypeParam;
    auto m = Make<T>({1, 2, 3, 10, 4, 5, 6, 11, 7, 8, 9, 12, 13, 14, 15, 16}, 0);
    m.AddScaling({2, 3, -4}, 0);
    EXPECT_TRUE(Holds(m, {2, 6, -12, 10, 8, 15, -24, 11, 14, 24, -36, 12, 26, 42, -60, 16}, k_Z));
}

TYPED_TEST(TransformationMatrixScaling, AddScaling_does_not_repair_the_bits)
{
    using T = TypeParam;
    for (int const scaleRows : {0, 1})
    {
        auto m = Make<T>(k_Identity<T>, 0);
        m.AddScaling({k_Nan<T>, 1, 1}, scaleRows);
        EXPECT_TRUE(Holds(m, this->Diagonal(-k_Tolerance<T>, 1, 1), 0)) << "a NaN mirrors and sets no bit";
        auto inconsistent = Make<T>(k_Identity<T>, 0xF1 | k_Y);
        inconsistent.AddScaling({2, 2, 2}, scaleRows);
        EXPECT_TRUE(Holds(inconsistent, this->Diagonal(2, 2, 2), 0xF1 | k_Y));
    }
}

TYPED_TEST(TransformationMatrixScaling, AddScaling_by_zero_multiplies_by_the_tolerance)
{
    using T = TypeParam;
    auto m = Make<T>(k_Identity<T>, 0);
    m.AddScaling({0, 1, 1}, 1);
    EXPECT_TRUE(Holds(m, this->Diagonal(k_Tolerance<T>, 1, 1), 0));
}

// --- SetScaling ------------------------------------------------------------------------------------------------------

TYPED_TEST(TransformationMatrixScaling, SetScaling_clamps_and_takes_the_bits_of_the_factors)
{
    using T = TypeParam;
    auto const r = this->QuarterTurn();
    this->ForEachFactor(
        [&](auto const & s, auto const &, auto const & set, unsigned negative)
        {
            for (unsigned const others : k_OtherBits)
            {
                // Twice the quarter turn, moved, with a column 3 of its own.
                auto m = Make<T>({0, 2, 0, 5, -2, 0, 0, 6, 0, 0, 2, 7, 8, 9, 10, 1000}, others);
                ASSERT_EQ(Inside::ValidateSclSignBits(m), 1);
                auto const expected = this->WithRows(NumbersOf(m), set, r.GetMatrix());
                EXPECT_EQ(&m.SetScaling(s), &m);
                EXPECT_TRUE(Holds(m, expected, others | negative));
            }
        });
}

TEST(TransformationMatrixScalingOfDoubles, SetScaling_stores_a_millionth_for_zero)
{
    C3DXfoMatTpl<double> m;
    m.SetScaling({0, 1, 1});
    EXPECT_TRUE(Holds(m, {1e-6, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, 0));
    C3DXfoMatTpl<double> negative;
    negative.SetScaling({-0.0, 1, 1});
    EXPECT_TRUE(Holds(negative, {1e-6, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}, 0)) << "and no bit";
}

TEST(TransformationMatrixScalingOfDoubles, SetScaling_is_asymmetric_and_jumps_at_the_tolerance)
{
    C3DXfoMatTpl<double> m;
    m.SetScaling({9e-13, -9e-13, 1e-12});
    EXPECT_EQ(m.Get(0, 0), 1e-6);
    EXPECT_EQ(m.Get(1, 1), -1e-12);
    EXPECT_EQ(m.Get(2, 2), 1e-12);
    EXPECT_EQ(m.GetSclSignBits(), k_Y);
}

TEST(TransformationMatrixScalingOfFloats, SetScaling_is_symmetric)
{
    C3DXfoMatTpl<float> m;
    m.SetScaling({9e-7F, -9e-7F, 0.0F});
    EXPECT_EQ(m.Get(0, 0), 1e-6F);
    EXPECT_EQ(m.Get(1, 1), -1e-6F);
    EXPECT_EQ(m.Get(2, 2), 1e-6F);
    EXPECT_EQ(m.GetSclSignBits(), k_Y);
}

TYPED_TEST(TransformationMatrixScaling, SetScaling_reads_the_rotation_through_the_old_bits)
{
    using T = TypeParam;
    // The rows, the bits, and what the rotation is by them: a row times -1 for every axis read as negative.
    struct Case
    {
        unsigned bits;
        C3DVector3Tpl<T> rows;
        C3DVector3Tpl<T> rotation;
    };
    std::vector<Case> const cases = {
        {0, {2, 3, 4}, {1, 1, 1}},
        {k_X, {-2, 3, 4}, {1, 1, 1}},
        {k_Y, {-2, 3, 4}, {-1, -1, 1}},
        {k_AllAxes, {-2, 3, 4}, {1, -1, -1}},
        {k_X | k_Z, {-2, 3, -4}, {1, 1, 1}},
        {0, {-2, 3, -4}, {-1, 1, -1}},
        // Inconsistent: read as the complement.
        {0, {-2, 3, 4}, {1, -1, -1}},
        {k_X | k_Y, {2, 3, -4}, {1, 1, 1}},
        {k_AllAxes, {2, 3, 4}, {1, 1, 1}},
        {k_X, {2, 3, 4}, {1, -1, -1}},
    };
    for (Case const & c : cases)
    {
        auto m = Make<T>(this->Diagonal(c.rows.X, c.rows.Y, c.rows.Z, 1, 2, 3), 0xF1 | c.bits);
        m.SetScaling({5, -6, 7});
        EXPECT_TRUE(
            Holds(m, this->Diagonal(5 * c.rotation.X, -6 * c.rotation.Y, 7 * c.rotation.Z, 1, 2, 3), 0xF1 | k_Y))
            << c.bits << ' ' << c.rows;
    }
}

TYPED_TEST(TransformationMatrixScaling, SetScaling_does_not_repair_the_bits)
{
    using T = TypeParam;
    C3DXfoMatTpl<T> m;
    m.SetScaling({k_Nan<T>, 2, 2});
    EXPECT_TRUE(Holds(m, this->Diagonal(-k_Tolerance<T>, 2, 2), 0));
    EXPECT_EQ(Inside::ValidateSclSignBits(m), 0);
}

TYPED_TEST(TransformationMatrixScaling, SetScaling_keeps_a_null_row)
{
    using T = TypeParam;
    auto m = Make<T>(this->Diagonal(2, 0, 4), 0);
    m.SetScaling({5, 6, 7});
    EXPECT_TRUE(Holds(m, this->Diagonal(5, 0, 7), 0)) << "a null row has no direction to scale";
}

TYPED_TEST(TransformationMatrixScaling, SetScaling_of_one_negative_axis_is_read_back)
{
    using T = TypeParam;
    for (int axis = 0; axis < 3; ++axis)
    {
        C3DXfoMatTpl<T> m;
        C3DVector3Tpl<T> const s = C3DVector3Tpl<T>(1, 1, 1).Set(axis, T(-1));
        m.SetScaling(s);
        EXPECT_EQ(m.GetSclSignBits(), 2U << axis);
        C3DRotMatTpl<T> rotation;
        EXPECT_GT(m.GetRotation(rotation).GetDet(), T(0)) << "the rotation stays proper";
        for (int other = 0; other < 3; ++other)
        {
            EXPECT_EQ(Inside::IsSclAxisNegative(m, other), other == axis ? 1 : 0);
        }
        C3DVector3Tpl<T> scaling;
        EXPECT_TRUE(Same(NumbersOf(m.GetScaling(scaling)), NumbersOf(s)));
    }
}

// --- SetRotation -----------------------------------------------------------------------------------------------------

TYPED_TEST(TransformationMatrixScaling, SetRotation_keeps_the_scale_and_all_else)
{
    using T = TypeParam;
    auto const r = this->QuarterTurn();
    for (unsigned const bits : k_SignBits)
    {
        for (unsigned const others : k_OtherBits)
        {
            Numbers<T> const before = {0, 0, 3, 5, 0, 4, 0, 6, T(-0.5), 0, 0, 7, 8, 9, 10, 1000};
            auto m = Make<T>(before, others | bits);
            unsigned const read = Repaired(bits, false);
            C3DVector3Tpl<T> const s((read & k_X) != 0 ? -3 : 3, (read & k_Y) != 0 ? -4 : 4,
                                     (read & k_Z) != 0 ? T(-0.5) : T(0.5));
            EXPECT_EQ(&m.SetRotation(r), &m);
            EXPECT_TRUE(Holds(m, this->WithRows(before, s, r.GetMatrix()), others | bits)) << bits;
        }
    }
}

TYPED_TEST(TransformationMatrixScaling, SetRotation_takes_any_nine_numbers_and_leaves_the_bits)
{
    using T = TypeParam;
    auto const mirror = C3DRotMatTpl<T>(3, 1, -4, 1, 5, -9, -2, 6, 5);
    auto m = Make<T>(this->Diagonal(2, -4, 8), 0xF1 | k_Y);
    m.SetRotation(mirror);
    EXPECT_TRUE(Holds(m, {6, 2, -8, 0, -4, -20, 36, 0, -16, 48, 40, 0, 0, 0, 0, 1}, 0xF1 | k_Y));
    auto improper = Make<T>(this->Diagonal(2, -4, 8), 0xF1 | k_Y);
    improper.SetRotation(C3DRotMatTpl<T>(1, 0, 0, 0, 1, 0, 0, 0, -1));
    EXPECT_TRUE(Holds(improper, this->Diagonal(2, -4, -8), 0xF1 | k_Y));
    EXPECT_EQ(Inside::ValidateSclSignBits(improper), 0);
}

TYPED_TEST(TransformationMatrixScaling, SetRotation_gives_a_null_row_the_least_length)
{
    using T = TypeParam;
    auto m = Make<T>(this->Diagonal(2, 0, 4), 0);
    m.SetRotation(C3DRotMatTpl<T>());
    EXPECT_TRUE(Holds(m, this->Diagonal(2, k_Tolerance<T>, 4), 0));
}

// --- SetScalingAndRotation -------------------------------------------------------------------------------------------

TYPED_TEST(TransformationMatrixScaling, SetScalingAndRotation_clamps_and_takes_the_bits_of_the_factors)
{
    using T = TypeParam;
    // Half-turns and quarter-turns have exact quaternions, so that the matrices are exact too.
    C3DRotMatTpl<double> const exact(0, 1, 0, -1, 0, 0, 0, 0, 1);
    this->ForEachFactor(
        [&](auto const & s, auto const & clamped, auto const &, unsigned negative)
        {
            for (unsigned const bits : k_SignBits)
            {
                for (unsigned const others : {0x00U, 0xF1U})
                {
                    auto const before = Make<T>(k_Positive<T>, others | bits);
                    auto m = before;
                    C3DRotation rotation(exact);
                    m.SetScalingAndRotation(s, rotation);
                    EXPECT_TRUE(Holds(m, this->WithRows(k_Positive<T>, clamped, exact.GetMatrix()), others | negative));

                    C3DRotation3Tpl<T> compact;
                    compact.Set(C3DQuatTpl<T>(0, 0, 0, 1));
                    m = before;
                    m.SetScalingAndRotation(s, compact);
                    C3DRotMatTpl<T> const halfTurn(-1, 0, 0, 0, -1, 0, 0, 0, 1);
                    EXPECT_TRUE(
                        Holds(m, this->WithRows(k_Positive<T>, clamped, halfTurn.GetMatrix()), others | negative));
                }
            }
        });
    C3DRotation rotation;
    C3DXfoMatTpl<T> m;
    static_assert(std::is_void_v<decltype(m.SetScalingAndRotation(C3DVector3Tpl<T>(), rotation))>);
    static_assert(std::is_void_v<decltype(m.SetScalingAndRotation(C3DVector3Tpl<T>(), C3DRotation3Tpl<T>()))>);
}

TYPED_TEST(TransformationMatrixScaling, SetScalingAndRotation_does_not_repair_the_bits)
{
    using T = TypeParam;
    C3DRotation rotation;
    C3DXfoMatTpl<T> m;
    m.SetScalingAndRotation({1, k_Nan<T>, 1}, rotation);
    EXPECT_TRUE(Holds(m, this->Diagonal(1, -k_Tolerance<T>, 1), 0));
    m.SetScalingAndRotation({1, k_Nan<T>, 1}, C3DRotation3Tpl<T>());
    EXPECT_TRUE(Holds(m, this->Diagonal(1, -k_Tolerance<T>, 1), 0));
}

TYPED_TEST(TransformationMatrixScaling, SetScalingAndRotation_brings_a_stale_matrix_up_to_date)
{
    using T = TypeParam;
    Random random(7);
    for (int i = 0; i < 100; ++i)
    {
        C3DVector3Tpl<double> const angles(random.Uniform(-3.0, 3.0), random.Uniform(-3.0, 3.0),
                                           random.Uniform(-3.0, 3.0));
        C3DRotMatTpl<double> expected;
        F3DEulerToMat(angles, expected, E3DROTORDER_YZX);
        C3DRotation stale(angles, E3DROTORDER_YZX);
        C3DXfoMatTpl<T> m;
        C3DVector3Tpl<T> const s(random.OverDecades<T>(-1, 1), random.OverDecades<T>(-1, 1),
                                 random.OverDecades<T>(-1, 1));
        m.SetScalingAndRotation(s, stale);
        C3DRotation fresh(angles, E3DROTORDER_YZX);
        fresh.GetMatrix();
        C3DXfoMatTpl<T> again;
        again.SetScalingAndRotation(s, fresh);
        EXPECT_TRUE(SameBits(m, again));
        auto const rows = this->WithRows(k_Identity<T>, s, expected.GetMatrix());
        for (int e = 0; e < 16; ++e)
        {
            EXPECT_NEAR(m.Get(e / 4, e % 4), rows[static_cast<std::size_t>(e)],
                        100 * std::numeric_limits<T>::epsilon());
        }
    }
}

TEST(TransformationMatrixScalingOfFloats, SetScalingAndRotation_multiplies_a_rotation_in_double)
{
    Random random(8);
    int rounded_twice = 0;
    for (int i = 0; i < 200; ++i)
    {
        C3DRotation rotation(random.Uniform(-3.0, 3.0), random.Uniform(-3.0, 3.0), random.Uniform(-3.0, 3.0),
                             E3DROTORDER_XYZ);
        C3DVector3Tpl<float> const s(random.OverDecades<float>(-1, 1), random.OverDecades<float>(-1, 1),
                                     random.OverDecades<float>(-1, 1));
        C3DXfoMatTpl<float> m;
        m.SetScalingAndRotation(s, rotation);
        C3DRotMatTpl<double> const & r = *rotation.GetMatrix();
        for (int e = 0; e < 9; ++e)
        {
            auto const factor = static_cast<double>(s.Get(e / 3));
            auto const expected = static_cast<float>(factor * r.Get(e / 3, e % 3));
            EXPECT_EQ(m.Get(e / 3, e % 3), expected);
            auto const volatile narrowed = static_cast<float>(r.Get(e / 3, e % 3));
            rounded_twice += expected != s.Get(e / 3) * narrowed ? 1 : 0;
        }
    }
    EXPECT_GT(rounded_twice, 100) << "the test tells the two apart";
}

TEST(TransformationMatrixScalingOfFloats, SetScalingAndRotation_clamps_before_it_widens)
{
    C3DRotation rotation;
    C3DXfoMatTpl<float> m;
    // As a double 1e-6F is below 1e-6; it counts as a float.
    m.SetScalingAndRotation({1e-6F, -1e-6F, 0.0F}, rotation);
    EXPECT_EQ(m.Get(0, 0), 1e-6F);
    EXPECT_EQ(m.Get(1, 1), -1e-6F);
    EXPECT_EQ(m.Get(2, 2), 1e-6F);
}

TYPED_TEST(TransformationMatrixScaling, SetScalingAndRotation_takes_a_compact_rotation_in_every_form)
{
    using T = TypeParam;
    Random random(9);
    for (int i = 0; i < 100; ++i)
    {
        C3DVector3Tpl<T> const angles(random.Uniform<T>(-3, 3), random.Uniform<T>(-3, 3), random.Uniform<T>(-3, 3));
        C3DVector3Tpl<T> const s(random.OverDecades<T>(-1, 1), random.OverDecades<T>(-1, 1),
                                 random.OverDecades<T>(-1, 1));
        C3DRotation3Tpl<T> rotation(angles, E3DROTORDER_ZXY);
        for (E3DRotRep const rep : {E3DRotRep_Euler, E3DRotRep_Quat, E3DRotRep_AxisAngle})
        {
            rotation.SetRepresentation(rep, E3DROTORDER_ZXY);
            C3DRotMatTpl<T> r;
            rotation.GetMatrix(r);
            auto m = Make<T>(k_Positive<T>, 0xFF);
            m.SetScalingAndRotation(s, rotation);
            unsigned const bits = (s.X < 0 ? k_X : 0) | (s.Y < 0 ? k_Y : 0) | (s.Z < 0 ? k_Z : 0);
            EXPECT_TRUE(Holds(m, this->WithRows(k_Positive<T>, s, r.GetMatrix()), 0xF1 | bits)) << rep;
        }
    }
}

TYPED_TEST(TransformationMatrixScaling, SetScalingAndRotation_takes_an_unknown_rotation_as_the_identity)
{
    using T = TypeParam;
    auto const expected = this->WithRows(k_Positive<T>, {2, -4, 8}, C3DRotMatTpl<T>().GetMatrix());
    C3DRotation3Tpl<T> const withoutOrder(C3DVector3Tpl<T>(1, 2, 3), static_cast<tagE3DROTORDER>(7));
    auto m = Make<T>(k_Positive<T>, 0xF1);
    m.SetScalingAndRotation({2, -4, 8}, withoutOrder);
    EXPECT_TRUE(Holds(m, expected, 0xF1 | k_Y));

    // The representation is the byte behind four numbers; an unknown one comes with the bytes of an object.
    C3DRotation3Tpl<T> withoutForm(C3DVector3Tpl<T>(1, 2, 3), T(1));
    unsigned char bytes[sizeof withoutForm];
    std::memcpy(bytes, &withoutForm, sizeof bytes);
    bytes[4 * sizeof(T)] = 200;
    std::memcpy(&withoutForm, bytes, sizeof bytes);
    ASSERT_EQ(withoutForm.GetRepresentation(), 200);
    m = Make<T>(k_Positive<T>, 0xF1);
    m.SetScalingAndRotation({2, -4, 8}, withoutForm);
    EXPECT_TRUE(Holds(m, expected, 0xF1 | k_Y));
}

// --- What comes back -------------------------------------------------------------------------------------------------

template <typename T>
class TransformationMatrixComplaints : public testing::Test
{
protected:
    static constexpr double k_Limit = std::is_same_v<T, double> ? 1e-14 : 1e-6;

    static void ExpectNear(C3DVector3Tpl<T> const & a, C3DVector3Tpl<T> const & b, double factor = 1)
    {
        for (int i = 0; i < 3; ++i)
        {
            EXPECT_NEAR(a.Get(i), b.Get(i), factor * k_Limit) << a << ' ' << b;
        }
    }
};
TYPED_TEST_SUITE(TransformationMatrixComplaints, Scalars);

TYPED_TEST(TransformationMatrixComplaints, Mirrored_scales_come_back_as_they_were_set)
{
    using T = TypeParam;
    using V3 = C3DVector3Tpl<T>;
    Random random(10);
    for (V3 const & s : {V3(1, 1, -1), V3(-1, 1, 1), V3(1, -1, 1), V3(-1, -1, -1), V3(-1, -1, 1), V3(1, 1, 1)})
    {
        for (int i = 0; i < 200; ++i)
        {
            C3DRotation rotation(random.Uniform(-3.0, 3.0), random.Uniform(-3.0, 3.0), random.Uniform(-3.0, 3.0),
                                 E3DROTORDER_XYZ);
            C3DXfoMatTpl<T> m;
            m.SetScalingAndRotation(s, rotation);
            V3 scaling;
            this->ExpectNear(m.GetScaling(scaling), s);
            C3DRotMatTpl<T> read;
            m.GetRotation(read);
            EXPECT_TRUE(
                AreClose(ToEigen(read.GetMatrix()), ToEigen(rotation.GetMatrix()->GetMatrix()), 4 * this->k_Limit));

            C3DRotation3Tpl<T> compact;
            compact.Set(read.GetMatrix());
            C3DXfoMatTpl<T> other;
            other.SetScalingAndRotation(s, compact);
            this->ExpectNear(other.GetScaling(scaling), s, 4);
            // The elements alone have no history.
            other.Set(m.GetMatrix44());
            bool const mirrors = s.X * s.Y * s.Z < 0;
            T const all = mirrors ? T(-1) : T(1);
            this->ExpectNear(other.GetScaling(scaling), V3(all, all, all), 4);
        }
    }
}

TYPED_TEST(TransformationMatrixComplaints, A_mirror_without_a_history_reads_as_three_negative_axes)
{
    using T = TypeParam;
    for (int row = 0; row < 3; ++row)
    {
        Numbers<T> numbers = k_Identity<T>;
        numbers[static_cast<std::size_t>(5 * row)] = -1;
        C3DMatrix33Tpl<T> const mirror(numbers[0], 0, 0, 0, numbers[5], 0, 0, 0, numbers[10]);
        C3DXfoMatTpl<T> m;
        m.Set(mirror);
        EXPECT_EQ(m.GetSclSignBits(), 14) << "and not the one true axis";
        C3DVector3Tpl<T> s;
        EXPECT_TRUE(Same(NumbersOf(m.GetScaling(s)), {T(-1), T(-1), T(-1)}));
        C3DRotMatTpl<T> r;
        EXPECT_EQ(m.GetRotation(r).GetDet(), T(1));
        C3DXfoMatTpl<T> again;
        again.Set(r).AddScaling(s, 1);
        EXPECT_TRUE(Holds(again, numbers, 14)) << "the product is the matrix";
    }
}

TYPED_TEST(TransformationMatrixComplaints, Random_components_come_back)
{
    using T = TypeParam;
    using V3 = C3DVector3Tpl<T>;
    Random random(11);
    for (int i = 0; i < 1000; ++i)
    {
        V3 const s(random.OverDecades<T>(-3, 3), random.OverDecades<T>(-3, 3), random.OverDecades<T>(-3, 3));
        V3 const t(random.Uniform<T>(-9, 9), random.Uniform<T>(-9, 9), random.Uniform<T>(-9, 9));
        auto const r = RandomRotationMatrix<T>(random);
        C3DXfoMatTpl<T> m;
        m.SetTranslation(t);
        m.SetScaling(s);
        m.SetRotation(r);
        V3 scaling;
        V3 translation;
        C3DRotMatTpl<T> rotation;
        m.GetScaling(scaling);
        for (int axis = 0; axis < 3; ++axis)
        {
            EXPECT_NEAR(scaling.Get(axis) / s.Get(axis), 1.0, 4 * this->k_Limit);
        }
        EXPECT_TRUE(AreClose(ToEigen(m.GetRotation(rotation).GetMatrix()), ToEigen(r.GetMatrix()), 4 * this->k_Limit));
        EXPECT_TRUE(Same(NumbersOf(m.GetTranslation(translation)), NumbersOf(t)));

        // A second scale replaces the first, and the rotation survives its signs.
        V3 const second(random.OverDecades<T>(-3, 3), random.OverDecades<T>(-3, 3), random.OverDecades<T>(-3, 3));
        m.SetScaling(second);
        m.GetScaling(scaling);
        for (int axis = 0; axis < 3; ++axis)
        {
            EXPECT_NEAR(scaling.Get(axis) / second.Get(axis), 1.0, 8 * this->k_Limit);
        }
        EXPECT_TRUE(AreClose(ToEigen(m.GetRotation(rotation).GetMatrix()), ToEigen(r.GetMatrix()), 8 * this->k_Limit));
    }
}

TYPED_TEST(TransformationMatrixComplaints, A_product_with_the_inverse_has_no_negative_axis)
{
    using T = TypeParam;
    using V3 = C3DVector3Tpl<T>;
    Random random(12);
    for (int i = 0; i < 300; ++i)
    {
        V3 const s(random.OverDecades<T>(-0.5, 0.5), random.OverDecades<T>(-0.5, 0.5),
                   random.OverDecades<T>(-0.5, 0.5));
        C3DXfoMatTpl<T> m;
        m.Set(RandomRotationMatrix<T>(random)).AddScaling(s, 1);
        m.SetTranslation({random.Uniform<T>(-3, 3), random.Uniform<T>(-3, 3), random.Uniform<T>(-3, 3)});
        auto inverse = m;
        ASSERT_EQ(inverse.Invert(), 1);
        EXPECT_EQ(inverse.GetSclSignBits(), m.GetSclSignBits());
        for (C3DXfoMatTpl<T> product : {C3DXfoMatTpl<T>().Mul(m, inverse), C3DXfoMatTpl<T>().Mul(inverse, m)})
        {
            EXPECT_TRUE(AreClose(ToEigen(product), Eigen::Matrix4d::Identity(), 100 * this->k_Limit));
            EXPECT_EQ(product.GetSclSignBits(), 0);
        }
    }
}

} // namespace
