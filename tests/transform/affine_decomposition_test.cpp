#include "transform/affine_factors.h"

#include "math/compact_rotation.h"
#include "math/rotation.h"
#include "math/rotation_conversions.h"
#include "transform/transformation_matrices.h"

#include <Eigen/QR>
#include <Eigen/SVD>

using namespace transformation_matrix_test;
using math::detail::AffineFactors;
using math::detail::k_WidenedTolerance;

namespace
{

constexpr double k_PiOfDouble = 3.141592653589793;

/// The least length and the least factor.
template <typename T>
constexpr T k_Least = sizeof(T) == sizeof(float) ? T(1e-6F) : T(1e-12);

/// A bound on rounding errors of quantities near one.
template <typename T>
constexpr double k_Rounding = 60 * static_cast<double>(std::numeric_limits<T>::epsilon());

template <typename T>
Eigen::Matrix3d Upper(C3DXfoMatTpl<T> const & m)
{
    return ToEigen(m).template topLeftCorner<3, 3>();
}

template <typename T>
Eigen::Vector3d Wide(C3DVector3Tpl<T> const & v)
{
    return {static_cast<double>(v.X), static_cast<double>(v.Y), static_cast<double>(v.Z)};
}

template <typename T>
Eigen::Matrix3d Wide(C3DRotMatTpl<T> const & m)
{
    return ToEigen(m.GetMatrix());
}

template <typename T>
C3DXfoMatTpl<T> FromUpper(Eigen::Matrix3d const & upper)
{
    C3DXfoMatTpl<T> m;
    for (int i = 0; i < 9; ++i)
    {
        m.Set(i / 3, i % 3, static_cast<T>(upper(i / 3, i % 3)));
    }
    return m;
}

template <typename T>
C3DXfoMatTpl<T> Diagonal(T x, T y, T z)
{
    return FromUpper<T>(Eigen::Vector3d(double(x), double(y), double(z)).asDiagonal());
}

template <typename T>
struct Decomposition
{
    explicit Decomposition(C3DXfoMatTpl<T> const & m)
    {
        m.GetAffineDecomposition(orientation, remainder);
        remainder.GetScaling(scaling);
    }

    C3DRotMatTpl<T> orientation;
    C3DXfoMatTpl<T> remainder;
    C3DVector3Tpl<T> scaling;
};

/// The product, the proper orthonormal orientation, the perpendicular rows, the signs and the set of factors.
template <typename T>
void ExpectDecomposition(C3DXfoMatTpl<T> const & m)
{
    SCOPED_TRACE(testing::Message() << "of\n" << ToEigen(m));
    Decomposition<T> const found(m);
    Eigen::Matrix3d const a = Upper(m);
    Eigen::Matrix3d const u = Wide(found.orientation);
    Eigen::Matrix3d const rest = Upper(found.remainder);
    auto const least = static_cast<double>(k_Least<T>);
    double const size = std::max(a.cwiseAbs().maxCoeff(), least);
    // What is kept away from zero adds as much to the product.
    EXPECT_TRUE(AreClose(u * rest, a, k_Rounding<T> * size + 3 * least));
    EXPECT_TRUE(AreClose(u.transpose() * u, Eigen::Matrix3d::Identity(), k_Rounding<T>));
    EXPECT_GT(u.determinant(), 0);
    Eigen::Vector3d const s = Wide(found.scaling);
    Eigen::Matrix3d const rotation = s.cwiseInverse().asDiagonal() * rest;
    EXPECT_TRUE(AreClose(rotation * rotation.transpose(), Eigen::Matrix3d::Identity(), k_Rounding<T>));
    EXPECT_GT(rotation.determinant(), 0);

    Eigen::Vector3d magnitudes = s.cwiseAbs();
    std::sort(magnitudes.begin(), magnitudes.end(), std::greater<>());
    Eigen::Vector3d const expected = Eigen::JacobiSVD<Eigen::Matrix3d>(a).singularValues();
    EXPECT_TRUE(AreClose(magnitudes, expected.cwiseMax(least), k_Rounding<T> * size));

    EXPECT_EQ(Inside::ValidateSclSignBits(found.remainder), 1);
    EXPECT_TRUE(Same(NumbersOf(C3DVector4Tpl<T>(found.remainder.Get(0, 3), found.remainder.Get(1, 3),
                                                found.remainder.Get(2, 3), found.remainder.Get(3, 3))),
                     {0, 0, 0, 1}));
}

template <typename T>
Eigen::Matrix3d RandomElements(Random & random)
{
    return Eigen::Matrix3d::NullaryExpr([&] { return static_cast<double>(random.Uniform<T>(-1, 1)); });
}

template <typename T>
class AffineDecomposition : public testing::Test
{
};
TYPED_TEST_SUITE(AffineDecomposition, Scalars);

// --- The rows --------------------------------------------------------------------------------------------------------

TYPED_TEST(AffineDecomposition, Scaling_is_the_lengths_of_the_rows_with_their_signs)
{
    for (bool const isNegative : {false, true})
    {
        auto m = Diagonal<TypeParam>(isNegative ? -2 : 2, 4, 8);
        m.Set(0, 1, 3).Set(0, 2, 6).Set(0, 3, 100).Set(3, 0, 50);
        for (unsigned const bits : k_SignBits)
        {
            for (unsigned const other : k_OtherBits)
            {
                m.SetMaskInfo(static_cast<unsigned char>(bits | other));
                C3DVector3Tpl<TypeParam> s(0, 0, 0);
                EXPECT_EQ(&m.GetScaling(s), &s);
                for (int axis = 0; axis < 3; ++axis)
                {
                    TypeParam const length[3] = {7, 4, 8};
                    bool const negative = (Repaired(bits, !(m.GetDet() >= 0)) & 2U << axis) != 0;
                    EXPECT_EQ(negative, Inside::IsSclAxisNegative(m, axis) != 0);
                    EXPECT_EQ(s.Get(axis), negative ? -length[axis] : length[axis]) << bits << ' ' << axis;
                }
                EXPECT_EQ(m.GetMaskInfo(), bits | other);
            }
        }
    }
}

TYPED_TEST(AffineDecomposition, A_NaN_determinant_counts_as_negative)
{
    auto m = Diagonal<TypeParam>(2, 4, 8);
    m.Set(3, 3, k_Nan<TypeParam>);
    C3DVector3Tpl<TypeParam> s;
    EXPECT_TRUE(Same(NumbersOf(m.GetScaling(s)), {-2, -4, -8}));
    C3DRotMatTpl<TypeParam> r;
    EXPECT_EQ(m.GetRotation(r), C3DRotMatTpl<TypeParam>(-1, 0, 0, 0, -1, 0, 0, 0, -1));
}

TYPED_TEST(AffineDecomposition, A_short_row_counts_as_longer)
{
    TypeParam const least = k_Least<TypeParam>;
    for (TypeParam const length : {TypeParam(0), least / 1024, least / 2, least * TypeParam(0.99), k_Nan<TypeParam>})
    {
        auto m = Diagonal<TypeParam>(2, 4, length);
        m.SetMaskInfo(0);
        C3DVector3Tpl<TypeParam> s;
        EXPECT_EQ(std::abs(m.GetScaling(s).Z), least);
        C3DRotMatTpl<TypeParam> r;
        m.GetRotation(r);
        EXPECT_EQ(std::abs(r.Get(1, 1)), 1);
        if (!std::isnan(length))
        {
            EXPECT_EQ(r.Get(2, 2), length * (1 / least));
        }
    }
    C3DVector3Tpl<TypeParam> s;
    EXPECT_EQ(Diagonal<TypeParam>(2, 4, least * 2).GetScaling(s).Z, least * 2);
    EXPECT_EQ(std::abs(Diagonal<TypeParam>(2, k_Infinity<TypeParam>, 3).GetScaling(s).Y), k_Infinity<TypeParam>);
}

TYPED_TEST(AffineDecomposition, A_null_row_has_the_least_scale_and_no_direction)
{
    C3DXfoMatTpl<TypeParam> m(1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1);
    C3DVector3Tpl<TypeParam> s;
    EXPECT_TRUE(Same(NumbersOf(m.GetScaling(s)), {1, k_Least<TypeParam>, 1}));
    C3DRotMatTpl<TypeParam> r;
    EXPECT_EQ(m.GetRotation(r), C3DRotMatTpl<TypeParam>(1, 0, 0, 0, 0, 0, 0, 0, 1));
}

TYPED_TEST(AffineDecomposition, Rotation_is_the_rows_over_their_scale_with_shear_kept)
{
    C3DXfoMatTpl<TypeParam> m(3, 4, 0, 9, 0, 2, 0, 9, 0, 6, 8, 9, 7, 7, 7, 1);
    m.SetMaskInfo(0);
    C3DRotMatTpl<TypeParam> r;
    EXPECT_EQ(&m.GetRotation(r), &r);
    TypeParam const sign = m.GetDet() >= 0 ? TypeParam(1) : TypeParam(-1);
    TypeParam const fifth = sign / TypeParam(5);
    TypeParam const tenth = sign / TypeParam(10);
    EXPECT_TRUE(SameBits(r.GetMatrix(), C3DMatrix33Tpl<TypeParam>(3 * fifth, 4 * fifth, 0 * fifth, 0 * sign, 1 * sign,
                                                                  0 * sign, 0 * tenth, 6 * tenth, 8 * tenth)));
}

TYPED_TEST(AffineDecomposition, Every_reader_gives_the_same_rows_and_scale)
{
    Random random(620);
    for (int i = 0; i < 200; ++i)
    {
        auto m = FromUpper<TypeParam>(RandomElements<TypeParam>(random));
        m.SetMaskInfo(static_cast<unsigned char>(k_SignBits[random.Integer(0, 7)]));
        C3DVector3Tpl<TypeParam> s;
        C3DRotMatTpl<TypeParam> r;
        m.GetScaling(s);
        m.GetRotation(r);
        for (int row = 0; row < 3; ++row)
        {
            TypeParam const factor = 1 / s.Get(row);
            for (int column = 0; column < 3; ++column)
            {
                EXPECT_EQ(r.Get(row, column), m.Get(row, column) * factor);
            }
        }

        C3DRotation rotation(E3D_AXIS_Y, 1);
        EXPECT_EQ(&m.GetRotation(rotation), &rotation);
        EXPECT_TRUE(AreClose(Wide(*rotation.GetMatrix()), Wide(r), 0));
        C3DRotation rotationBeside;
        C3DVector3Tpl<TypeParam> sBeside(0, 0, 0);
        m.GetScalingAndRotation(sBeside, rotationBeside);
        EXPECT_TRUE(Same(NumbersOf(sBeside), NumbersOf(s)));
        EXPECT_TRUE(AreClose(Wide(*rotationBeside.GetMatrix()), Wide(r), 0));

        using Vector = C3DVector3Tpl<TypeParam>;
        TypeParam const * const rows = r.GetArray();
        C3DRotation3Tpl<TypeParam> expected;
        expected.Set(Vector(rows), Vector(rows + 3), Vector(rows + 6));
        C3DRotation3Tpl<TypeParam> compact(1, 2, 3, E3DROTORDER_ZYX);
        EXPECT_EQ(&m.GetRotation(compact), &compact);
        C3DQuatTpl<TypeParam> quat;
        C3DQuatTpl<TypeParam> expectedQuat;
        expected.GetQuat(expectedQuat);
        compact.GetQuat(quat);
        EXPECT_EQ(quat, expectedQuat);
        C3DRotation3Tpl<TypeParam> compactBeside(1, 2, 3, E3DROTORDER_ZYX);
        sBeside.Set(0, 0, 0);
        m.GetScalingAndRotation(sBeside, compactBeside);
        EXPECT_TRUE(Same(NumbersOf(sBeside), NumbersOf(s)));
        compactBeside.GetQuat(quat);
        EXPECT_EQ(quat, expectedQuat);
    }
}

// --- The steps -------------------------------------------------------------------------------------------------------

TYPED_TEST(AffineDecomposition, Singular_values_are_kept_away_from_zero)
{
    using math::detail::NarrowSingularValue;
    double const limit = k_WidenedTolerance<TypeParam>;
    TypeParam const least = k_Least<TypeParam>;
    for (double const small : {std::nextafter(limit, 0.0), limit / 2, 1e-300, 0.0, -0.0})
    {
        EXPECT_EQ(NarrowSingularValue<TypeParam>(small), least) << small;
    }
    for (double const small : {std::nextafter(limit, 0.0), limit / 2, 1e-300})
    {
        EXPECT_EQ(NarrowSingularValue<TypeParam>(-small), -least) << small;
    }
    EXPECT_EQ(NarrowSingularValue<TypeParam>(k_Nan<double>), -least);
    for (double const value : {limit, std::nextafter(limit, 1.0), limit * 1.01, 1.0, 1e30, k_Infinity<double>})
    {
        EXPECT_EQ(NarrowSingularValue<TypeParam>(value), static_cast<TypeParam>(value));
        EXPECT_EQ(NarrowSingularValue<TypeParam>(-value), static_cast<TypeParam>(-value));
    }
}

TYPED_TEST(AffineDecomposition, Mirrors_move_into_the_signs_of_all_factors)
{
    using Rotation = C3DRotMatTpl<TypeParam>;
    Rotation const turn(0, 1, 0, -1, 0, 0, 0, 0, 1);
    Rotation const mirror(1, 0, 0, 0, 0, 1, 0, 1, 0);
    Rotation const unmirrored(-1, 0, 0, 0, 0, -1, 0, -1, 0);
    Rotation const unknown(k_Nan<TypeParam>, 0, 0, 0, 1, 0, 0, 0, 1);
    struct Case
    {
        Rotation u;
        Rotation v;
        Rotation expectedU;
        Rotation expectedV;
        TypeParam sign;
    };
    for (Case const & c : {Case{turn, turn, turn, turn, 1}, Case{mirror, turn, unmirrored, turn, -1},
                           Case{turn, mirror, turn, unmirrored, -1}, Case{mirror, mirror, unmirrored, unmirrored, 1}})
    {
        AffineFactors<TypeParam> factors{c.u, {2, -3, 4}, c.v};
        math::detail::MakeProper(factors);
        EXPECT_EQ(factors.u, c.expectedU);
        EXPECT_EQ(factors.v, c.expectedV);
        EXPECT_TRUE(Same(NumbersOf(factors.s), {2 * c.sign, -3 * c.sign, 4 * c.sign}));
    }
    AffineFactors<TypeParam> factors{unknown, {2, -3, 4}, turn};
    math::detail::MakeProper(factors);
    EXPECT_EQ(factors.u.Get(1, 1), -1);
    EXPECT_TRUE(Same(NumbersOf(factors.s), {-2, 3, -4}));
}

TYPED_TEST(AffineDecomposition, One_positive_factor_among_equals_becomes_a_half_turn)
{
    Random random(621);
    for (int axis = 0; axis < 3; ++axis)
    {
        AffineFactors<TypeParam> factors;
        factors.u = RandomRotationMatrix<TypeParam>(random);
        factors.v = RandomRotationMatrix<TypeParam>(random);
        factors.s.Set(-2, -2, -2).Set(axis, 2);
        AffineFactors<TypeParam> const before = factors;
        math::detail::UnifyMixedSigns(factors);
        EXPECT_TRUE(Same(NumbersOf(factors.s), {2, 2, 2}));
        EXPECT_EQ(factors.u, before.u);
        Eigen::Matrix3d const expected = Wide(before.s).asDiagonal() * Wide(before.v);
        EXPECT_TRUE(AreClose(2 * Wide(factors.v), expected, k_Rounding<TypeParam>));
        EXPECT_FALSE(AreClose(Wide(factors.v), Wide(before.v), 0.1));
    }
}

TYPED_TEST(AffineDecomposition, Other_signs_and_other_magnitudes_stay)
{
    TypeParam const least = k_Least<TypeParam>;
    TypeParam const one = 1;
    using Vector = C3DVector3Tpl<TypeParam>;
    for (Vector const & s : {Vector(1, 1, 1), Vector(-1, -1, -1), Vector(1, 1, -1), Vector(1, -1, 1), Vector(-1, 1, 1),
                             Vector(0, -1, -1), Vector(0, -least / 2, -least / 2),
                             Vector(one, -one - 8 * least, -one - 8 * least), Vector(-one, -one, one + 8 * least),
                             // A difference of exactly the tolerance.
                             Vector(2 * least, -least, -least), Vector(-least, -least, 2 * least)})
    {
        AffineFactors<TypeParam> factors{C3DRotMatTpl<TypeParam>(), s, C3DRotMatTpl<TypeParam>()};
        math::detail::UnifyMixedSigns(factors);
        EXPECT_TRUE(Same(NumbersOf(factors.s), NumbersOf(s)));
        EXPECT_TRUE(factors.v.IsIdentity());
    }
    TypeParam const below = std::nextafter(2 * least, TypeParam(0));
    for (Vector const & s :
         {Vector(below, -least, -least), Vector(-least, -least, below), Vector(-least, below, -least)})
    {
        AffineFactors<TypeParam> factors{C3DRotMatTpl<TypeParam>(), s, C3DRotMatTpl<TypeParam>()};
        math::detail::UnifyMixedSigns(factors);
        EXPECT_TRUE(Same(NumbersOf(factors.s), {std::abs(s.X), std::abs(s.Y), std::abs(s.Z)}));
        EXPECT_FALSE(factors.v.IsIdentity());
    }
}

TYPED_TEST(AffineDecomposition, Factors_are_uniform_within_the_tolerance_from_neighbour_to_neighbour)
{
    using Vector = C3DVector3Tpl<TypeParam>;
    using math::detail::IsUniform;
    TypeParam const least = k_Least<TypeParam>;
    TypeParam const below = std::nextafter(2 * least, TypeParam(0));
    EXPECT_TRUE(IsUniform(Vector(3, 3, 3)));
    EXPECT_TRUE(IsUniform(Vector(-3, -3, -3)));
    EXPECT_TRUE(IsUniform(Vector(below, least, least)));
    EXPECT_TRUE(IsUniform(Vector(least, below, least)));
    EXPECT_TRUE(IsUniform(Vector(least, least, below)));
    EXPECT_FALSE(IsUniform(Vector(2 * least, least, least)));
    EXPECT_FALSE(IsUniform(Vector(least, 2 * least, 2 * least)));
    EXPECT_FALSE(IsUniform(Vector(least, least, 2 * least)));
    EXPECT_FALSE(IsUniform(Vector(2 * least, 2 * least, least)));
    // The first and the last are not compared with each other.
    EXPECT_TRUE(IsUniform(Vector(TypeParam(0.9) * least, TypeParam(1.8) * least, TypeParam(2.7) * least)));
    // The signs count.
    EXPECT_FALSE(IsUniform(Vector(-3, 3, 3)));
    EXPECT_FALSE(IsUniform(Vector(3, 3, -3)));
    EXPECT_FALSE(IsUniform(Vector(k_Nan<TypeParam>, 3, 3)));
    EXPECT_FALSE(IsUniform(Vector(3, 3, k_Nan<TypeParam>)));
}

/// Angles about X, Y and Z, the signs that the factors take, and which angles are left.
struct HalfTurns
{
    double angles[3];
    int signs[3];
    bool left[3];
};

TYPED_TEST(AffineDecomposition, Half_turns_beside_the_scale_change_two_signs_each)
{
    auto const pi = static_cast<double>(static_cast<TypeParam>(k_PiOfDouble));
    HalfTurns const cases[] = {
        {{0.3, 0.4, pi}, {-1, -1, 1}, {true, true, false}},  {{0.3, 0.4, -pi}, {-1, -1, 1}, {true, true, false}},
        {{0.3, pi, pi}, {1, -1, -1}, {true, false, false}},  {{0.3, -pi, pi}, {1, -1, -1}, {true, false, false}},
        {{pi, pi, pi}, {1, 1, 1}, {false, false, false}},    {{-pi, pi, -pi}, {1, 1, 1}, {false, false, false}},
        {{pi, 0.4, pi}, {-1, -1, 1}, {true, true, false}},   {{pi, 0, 0}, {1, 1, 1}, {true, true, true}},
        {{0.3, pi, 0.5}, {1, 1, 1}, {true, true, true}},     {{pi, pi, 0.5}, {1, 1, 1}, {true, true, true}},
        {{0.3, 0.4, 2 * pi}, {1, 1, 1}, {true, true, true}}, {{0.3, 0.4, 0}, {1, 1, 1}, {true, true, true}},
    };
    for (HalfTurns const & c : cases)
    {
        SCOPED_TRACE(testing::Message() << c.angles[0] << ' ' << c.angles[1] << ' ' << c.angles[2]);
        using Vector = C3DVector3Tpl<TypeParam>;
        Vector const angles(static_cast<TypeParam>(c.angles[0]), static_cast<TypeParam>(c.angles[1]),
                            static_cast<TypeParam>(c.angles[2]));
        AffineFactors<TypeParam> factors{C3DRotMatTpl<TypeParam>(), {2, 3, 5}, C3DRotMatTpl<TypeParam>()};
        F3DEulerToMat(angles, factors.u, E3DROTORDER_XYZ);
        Eigen::Matrix3d const product = Wide(factors.u) * Wide(factors.s).asDiagonal();
        math::detail::MoveHalfTurns(angles, factors);
        EXPECT_TRUE(Same(NumbersOf(factors.s),
                         {TypeParam(2 * c.signs[0]), TypeParam(3 * c.signs[1]), TypeParam(5 * c.signs[2])}));
        EXPECT_TRUE(AreClose(Wide(factors.u) * Wide(factors.s).asDiagonal(), product, k_Rounding<TypeParam>));
        Vector rest(c.left[0] ? angles.X : 0, c.left[1] ? angles.Y : 0, c.left[2] ? angles.Z : 0);
        C3DRotMatTpl<TypeParam> expected;
        F3DEulerToMat(rest, expected, E3DROTORDER_XYZ);
        EXPECT_EQ(factors.u, expected);
    }
}

template <typename T>
bool MovesHalfTurnAboutZ(T angle)
{
    AffineFactors<T> factors{C3DRotMatTpl<T>(), {2, 3, 5}, C3DRotMatTpl<T>()};
    math::detail::MoveHalfTurns(C3DVector3Tpl<T>(0, 0, angle), factors);
    return factors.s.X < 0;
}

TEST(AffineDecompositionOfDoubles, A_half_turn_is_one_within_the_tolerance)
{
    for (double const sign : {1.0, -1.0})
    {
        EXPECT_TRUE(MovesHalfTurnAboutZ(sign * (k_PiOfDouble + 0.99e-12)));
        EXPECT_TRUE(MovesHalfTurnAboutZ(sign * (k_PiOfDouble - 0.99e-12)));
        EXPECT_FALSE(MovesHalfTurnAboutZ(sign * (k_PiOfDouble + 1.01e-12)));
        EXPECT_FALSE(MovesHalfTurnAboutZ(sign * (k_PiOfDouble - 1.01e-12)));
    }
    EXPECT_FALSE(MovesHalfTurnAboutZ(k_Nan<double>));
}

TEST(AffineDecompositionOfFloats, A_half_turn_is_one_within_a_millionth_of_the_exact_half_turn)
{
    // The nearest float is 8.7e-8 too large, and its neighbours are 2.4e-7 apart.
    float const unit = 0x1p-22F;
    auto const nearest = static_cast<float>(k_PiOfDouble);
    for (float const sign : {1.0F, -1.0F})
    {
        EXPECT_TRUE(MovesHalfTurnAboutZ(sign * nearest));
        EXPECT_TRUE(MovesHalfTurnAboutZ(sign * (nearest + 3 * unit)));
        EXPECT_FALSE(MovesHalfTurnAboutZ(sign * (nearest + 4 * unit)));
        EXPECT_TRUE(MovesHalfTurnAboutZ(sign * (nearest - 4 * unit)));
        EXPECT_FALSE(MovesHalfTurnAboutZ(sign * (nearest - 5 * unit)));
    }
    EXPECT_FALSE(MovesHalfTurnAboutZ(k_Nan<float>));
}

// Where the other two angles add up to more than a quarter turn, the same rotation has nearer angles without a
// half-turn.
TYPED_TEST(AffineDecomposition, A_half_turn_about_Z_is_found_in_any_near_orientation)
{
    Random random(622);
    for (int i = 0; i < 500; ++i)
    {
        double const offset = random.Uniform(-0.2, 0.2) * k_WidenedTolerance<TypeParam>;
        C3DVector3Tpl<double> const angles(random.Uniform(-1.0, 1.0), random.Uniform(-0.5, 0.5), k_PiOfDouble + offset);
        C3DRotMatTpl<double> wide;
        F3DEulerToMat(angles, wide, E3DROTORDER_XYZ);
        AffineFactors<TypeParam> factors{C3DRotMatTpl<TypeParam>(), {2, 3, 5}, C3DRotMatTpl<TypeParam>()};
        for (int k = 0; k < 9; ++k)
        {
            factors.u.GetArray()[k] = static_cast<TypeParam>(wide.GetArray()[k]);
        }
        math::detail::MoveHalfTurns(factors);
        EXPECT_TRUE(Same(NumbersOf(factors.s), {-2, -3, 5}));
        C3DRotMatTpl<double> expected;
        F3DEulerToMat(C3DVector3Tpl<double>(angles.X, angles.Y, 0), expected, E3DROTORDER_XYZ);
        EXPECT_TRUE(AreClose(Wide(factors.u), Wide(expected), k_Rounding<TypeParam>));
    }
}

TEST(AffineDecompositionOfDoubles, A_half_turn_about_Z_is_found_up_to_the_tolerance)
{
    Random random(623);
    for (int i = 0; i < 500; ++i)
    {
        double const side = random.Integer(0, 1) == 0 ? 1 : -1;
        for (double const offset : {0.98e-12, 1.02e-12, 1e-11, 1e-6})
        {
            C3DVector3Tpl<double> const angles(random.Uniform(-1.0, 1.0), random.Uniform(-0.5, 0.5),
                                               k_PiOfDouble + side * offset);
            AffineFactors<double> factors{C3DRotMatTpl<double>(), {2, 3, 5}, C3DRotMatTpl<double>()};
            F3DEulerToMat(angles, factors.u, E3DROTORDER_XYZ);
            math::detail::MoveHalfTurns(factors);
            EXPECT_EQ(factors.s.X, offset < 1e-12 ? -2 : 2) << offset;
            EXPECT_EQ(factors.s.Z, 5);
        }
    }
}

TYPED_TEST(AffineDecomposition, A_half_turn_about_Z_with_nearer_angles_stays)
{
    C3DVector3Tpl<TypeParam> const angles(1, TypeParam(0.9), static_cast<TypeParam>(k_PiOfDouble));
    AffineFactors<TypeParam> factors{C3DRotMatTpl<TypeParam>(), {2, 3, 5}, C3DRotMatTpl<TypeParam>()};
    F3DEulerToMat(angles, factors.u, E3DROTORDER_XYZ);
    C3DRotMatTpl<TypeParam> const before = factors.u;
    math::detail::MoveHalfTurns(factors);
    EXPECT_EQ(factors.u, before);
    EXPECT_TRUE(Same(NumbersOf(factors.s), {2, 3, 5}));
}

TYPED_TEST(AffineDecomposition, Half_turns_about_X_and_Y_alone_stay)
{
    AffineFactors<TypeParam> factors{
        C3DRotMatTpl<TypeParam>(1, 0, 0, 0, -1, 0, 0, 0, -1), {2, 3, 5}, C3DRotMatTpl<TypeParam>()};
    math::detail::MoveHalfTurns(factors);
    EXPECT_TRUE(Same(NumbersOf(factors.s), {2, 3, 5}));
    EXPECT_EQ(factors.u, C3DRotMatTpl<TypeParam>(1, 0, 0, 0, -1, 0, 0, 0, -1));
    factors.u.Set(C3DMatrix33Tpl<TypeParam>(-1, 0, 0, 0, 1, 0, 0, 0, -1));
    math::detail::MoveHalfTurns(factors);
    EXPECT_TRUE(Same(NumbersOf(factors.s), {2, 3, 5}));
    EXPECT_EQ(factors.u, C3DRotMatTpl<TypeParam>(-1, 0, 0, 0, 1, 0, 0, 0, -1));
}

// --- The whole -------------------------------------------------------------------------------------------------------

TYPED_TEST(AffineDecomposition, A_rotation_needs_no_orientation)
{
    Random random(624);
    for (int i = 0; i < 200; ++i)
    {
        C3DXfoMatTpl<TypeParam> m;
        m.Set(RandomRotationMatrix<TypeParam>(random));
        Decomposition<TypeParam> const found(m);
        EXPECT_TRUE(SameBits(found.orientation.GetMatrix(), IdentityMatrix<C3DMatrix33Tpl<TypeParam>>()));
        EXPECT_TRUE(AreClose(Upper(found.remainder), Upper(m), k_Rounding<TypeParam>));
        EXPECT_EQ(found.remainder.GetSclSignBits(), 0);
    }
}

TYPED_TEST(AffineDecomposition, Three_negative_axes_stay_so)
{
    Decomposition<TypeParam> const found(Diagonal<TypeParam>(-1, -1, -1));
    EXPECT_TRUE(found.orientation.IsIdentity());
    EXPECT_TRUE(Same(NumbersOf(found.scaling), {-1, -1, -1}));
    EXPECT_EQ(found.remainder.GetSclSignBits(), k_AllAxes);
    EXPECT_TRUE(Same(NumbersOf(found.remainder), NumbersOf(Diagonal<TypeParam>(-1, -1, -1))));
}

TYPED_TEST(AffineDecomposition, A_mirror_is_three_negative_axes_and_a_half_turn)
{
    Decomposition<TypeParam> const found(Diagonal<TypeParam>(-1, 1, 1));
    EXPECT_TRUE(found.orientation.IsIdentity());
    EXPECT_TRUE(Same(NumbersOf(found.scaling), {-1, -1, -1}));
    EXPECT_EQ(found.remainder.GetSclSignBits(), k_AllAxes);
    C3DRotMatTpl<TypeParam> halfTurn;
    EXPECT_EQ(found.remainder.GetRotation(halfTurn), C3DRotMatTpl<TypeParam>(1, 0, 0, 0, -1, 0, 0, 0, -1));
    EXPECT_TRUE(Same(NumbersOf(found.remainder), NumbersOf(Diagonal<TypeParam>(-1, 1, 1))));
}

TYPED_TEST(AffineDecomposition, A_diagonal_matrix_is_not_sorted)
{
    Decomposition<TypeParam> const found(Diagonal<TypeParam>(2, 4, 3));
    EXPECT_TRUE(found.orientation.IsIdentity());
    EXPECT_TRUE(Same(NumbersOf(found.scaling), {2, 4, 3}));
    EXPECT_TRUE(Same(NumbersOf(found.remainder), NumbersOf(Diagonal<TypeParam>(2, 4, 3))));
}

TYPED_TEST(AffineDecomposition, A_scale_after_a_rotation_comes_in_some_order)
{
    Random random(625);
    int sorted = 0;
    for (int i = 0; i < 200; ++i)
    {
        Eigen::Matrix3d const rotation = Wide(RandomRotationMatrix<TypeParam>(random));
        auto const m = FromUpper<TypeParam>(rotation * Eigen::Vector3d(2, 3, 4).asDiagonal());
        Eigen::Vector3d s = Wide(Decomposition<TypeParam>(m).scaling);
        sorted += (s(0) < s(1) && s(1) < s(2)) || (s(0) > s(1) && s(1) > s(2));
        std::sort(s.begin(), s.end());
        EXPECT_TRUE(AreClose(s, Eigen::Vector3d(2, 3, 4), 10 * k_Rounding<TypeParam>));
    }
    EXPECT_LT(sorted, 200);
}

TYPED_TEST(AffineDecomposition, A_null_direction_has_the_least_scale_and_its_half_turn_moves)
{
    // The null column is not reflected, while the others are: U is a half-turn about the null axis.
    TypeParam const least = k_Least<TypeParam>;
    Decomposition<TypeParam> const aboutZ(Diagonal<TypeParam>(2, 3, 0));
    EXPECT_TRUE(aboutZ.orientation.IsIdentity());
    EXPECT_TRUE(Same(NumbersOf(aboutZ.scaling), {-2, -3, least}));
    EXPECT_EQ(aboutZ.remainder.GetSclSignBits(), k_X | k_Y);
    EXPECT_TRUE(Same(NumbersOf(aboutZ.remainder), NumbersOf(Diagonal<TypeParam>(2, 3, least))));

    Decomposition<TypeParam> const aboutX(Diagonal<TypeParam>(0, 3, 4));
    EXPECT_EQ(aboutX.orientation, C3DRotMatTpl<TypeParam>(1, 0, 0, 0, -1, 0, 0, 0, -1));
    EXPECT_TRUE(Same(NumbersOf(aboutX.scaling), {least, 3, 4}));
    EXPECT_TRUE(Same(NumbersOf(aboutX.remainder), NumbersOf(Diagonal<TypeParam>(least, -3, -4))));

    Decomposition<TypeParam> const aboutY(Diagonal<TypeParam>(2, 0, 4));
    EXPECT_EQ(aboutY.orientation, C3DRotMatTpl<TypeParam>(-1, 0, 0, 0, 1, 0, 0, 0, -1));
    EXPECT_TRUE(Same(NumbersOf(aboutY.scaling), {2, least, 4}));
    EXPECT_TRUE(Same(NumbersOf(aboutY.remainder), NumbersOf(Diagonal<TypeParam>(-2, least, -4))));
}

TYPED_TEST(AffineDecomposition, Small_factors_are_uniform_once_they_are_clamped)
{
    TypeParam const least = k_Least<TypeParam>;
    Decomposition<TypeParam> const found(Diagonal<TypeParam>(0, least / 2, least / 4));
    EXPECT_TRUE(found.orientation.IsIdentity());
    EXPECT_TRUE(Same(NumbersOf(found.scaling), {least, least, least}));
    EXPECT_TRUE(Same(NumbersOf(found.remainder), NumbersOf(Diagonal<TypeParam>(least, least, least))));
}

TYPED_TEST(AffineDecomposition, The_null_matrix_has_the_least_scale)
{
    TypeParam const least = k_Least<TypeParam>;
    C3DXfoMatTpl<TypeParam> m;
    m.SetNull();
    Decomposition<TypeParam> const found(m);
    EXPECT_TRUE(found.orientation.IsIdentity());
    EXPECT_TRUE(Same(NumbersOf(found.scaling), {least, least, least}));
    EXPECT_TRUE(Same(NumbersOf(found.remainder), NumbersOf(Diagonal<TypeParam>(least, least, least))));
}

TYPED_TEST(AffineDecomposition, Reads_the_upper_block_and_the_translation_alone)
{
    C3DXfoMatTpl<TypeParam> plain(1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 10, 0, 11, 12, 13, 1);
    Decomposition<TypeParam> const expected(plain);
    EXPECT_TRUE(Same(NumbersOf(C3DVector3Tpl<TypeParam>(expected.remainder.GetArray() + 12)), {11, 12, 13}));
    plain.SetCol(3, 5, k_Nan<TypeParam>, 6, 7);
    for (unsigned const bits : k_SignBits)
    {
        plain.SetMaskInfo(static_cast<unsigned char>(bits | 0xA1U));
        Decomposition<TypeParam> const found(plain);
        EXPECT_EQ(found.orientation, expected.orientation);
        EXPECT_TRUE(Same(NumbersOf(found.remainder), NumbersOf(expected.remainder)));
        EXPECT_EQ(found.remainder.GetSclSignBits(), expected.remainder.GetSclSignBits());
    }
}

TYPED_TEST(AffineDecomposition, The_remainder_is_written_whole_but_for_the_bits_of_no_one)
{
    C3DXfoMatTpl<TypeParam> const m(2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 0, 0, 5, 6, 7, 1);
    for (unsigned const bits : k_SignBits)
    {
        for (unsigned const other : k_OtherBits)
        {
            auto remainder = Make<TypeParam>(k_WithNan<TypeParam>, bits | other);
            C3DRotMatTpl<TypeParam> orientation = NineNumbers<TypeParam>();
            m.GetAffineDecomposition(orientation, remainder);
            EXPECT_TRUE(orientation.IsIdentity());
            EXPECT_TRUE(
                Holds(remainder, {2, 0, 0, 0, 0, 3, 0, 0, 0, 0, k_Least<TypeParam>, 0, 5, 6, 7, 1}, k_X | k_Y | other));
        }
    }
}

TYPED_TEST(AffineDecomposition, The_remainder_may_be_the_matrix_itself)
{
    Random random(626);
    for (int i = 0; i < 100; ++i)
    {
        auto m = FromUpper<TypeParam>(RandomElements<TypeParam>(random));
        m.SetTranslation({3, 4, 5});
        m.SetMaskInfo(0xF3);
        Decomposition<TypeParam> const apart(m);
        C3DRotMatTpl<TypeParam> orientation;
        m.GetAffineDecomposition(orientation, m);
        EXPECT_EQ(orientation, apart.orientation);
        EXPECT_TRUE(Same(NumbersOf(m), NumbersOf(apart.remainder)));
        EXPECT_EQ(m.GetMaskInfo(), 0xF1U | apart.remainder.GetSclSignBits());
    }
}

TYPED_TEST(AffineDecomposition, Remainder_is_what_SetScaling_makes_of_the_rotation)
{
    Random random(627);
    for (int i = 0; i < 200; ++i)
    {
        auto const m = FromUpper<TypeParam>(RandomElements<TypeParam>(random));
        double block[3][3];
        for (int k = 0; k < 9; ++k)
        {
            block[k / 3][k % 3] = static_cast<double>(m.Get(k / 3, k % 3));
        }
        auto const factors = math::detail::DecomposeAffine<TypeParam>(block);
        C3DXfoMatTpl<TypeParam> expected;
        expected.Set(factors.v).SetScaling(factors.s);
        Decomposition<TypeParam> const found(m);
        EXPECT_TRUE(Same(NumbersOf(found.remainder), NumbersOf(expected)));
        EXPECT_EQ(found.remainder.GetSclSignBits(), expected.GetSclSignBits());
        EXPECT_TRUE(AreClose(Wide(found.scaling), Wide(factors.s), k_Rounding<TypeParam>));
    }
}

TYPED_TEST(AffineDecomposition, Any_matrix_is_the_product_of_its_parts)
{
    Random random(628);
    for (int i = 0; i < 1000; ++i)
    {
        Eigen::Matrix3d const a = RandomElements<TypeParam>(random);
        Eigen::Matrix3d const rotation = Wide(RandomRotationMatrix<TypeParam>(random));
        Eigen::Matrix3d sheared = rotation;
        sheared.row(random.Integer(0, 2)) += random.Uniform(-2.0, 2.0) * sheared.row(random.Integer(0, 2));
        Eigen::Vector3d const s = 2 * RandomElements<TypeParam>(random).col(0);
        for (Eigen::Matrix3d const & m : {a, Eigen::Matrix3d(-a), sheared, Eigen::Matrix3d(rotation * s.asDiagonal()),
                                          Eigen::Matrix3d(s.asDiagonal() * rotation), Eigen::Matrix3d(-2.5 * rotation),
                                          Eigen::Matrix3d(rotation * Eigen::Vector3d(3, 3, -3).asDiagonal()),
                                          Eigen::Matrix3d(rotation * Eigen::Vector3d(3, 3, 5).asDiagonal() * rotation)})
        {
            ExpectDecomposition(FromUpper<TypeParam>(m));
        }
    }
}

TYPED_TEST(AffineDecomposition, Singular_matrices_are_products_too)
{
    Random random(629);
    for (int i = 0; i < 500; ++i)
    {
        Eigen::Matrix3d a = RandomElements<TypeParam>(random);
        Eigen::Matrix3d const b = RandomElements<TypeParam>(random);
        ExpectDecomposition(FromUpper<TypeParam>(a.col(0) * b.row(0)));
        ExpectDecomposition(FromUpper<TypeParam>(a.col(0) * b.row(0) + a.col(1) * b.row(1)));
        a.row(random.Integer(0, 2)).setZero();
        ExpectDecomposition(FromUpper<TypeParam>(a));
        a.col(random.Integer(0, 2)).setZero();
        ExpectDecomposition(FromUpper<TypeParam>(a));
    }
}

TYPED_TEST(AffineDecomposition, Every_matrix_of_minus_one_zero_and_one)
{
    Eigen::Matrix3d a;
    for (int code = 0; code < 19683; code += 5)
    {
        int digits = code;
        for (int i = 0; i < 9; ++i, digits /= 3)
        {
            a(i / 3, i % 3) = digits % 3 - 1;
        }
        ExpectDecomposition(FromUpper<TypeParam>(a));
        ASSERT_FALSE(this->HasFailure());
    }
}

TYPED_TEST(AffineDecomposition, Tiny_matrices_have_the_least_scale)
{
    Random random(630);
    TypeParam const factor = sizeof(TypeParam) == sizeof(float) ? TypeParam(1e-30F) : TypeParam(1e-150);
    TypeParam const least = k_Least<TypeParam>;
    for (int i = 0; i < 100; ++i)
    {
        Eigen::Matrix3d const a = static_cast<double>(factor) * RandomElements<TypeParam>(random);
        ExpectDecomposition(FromUpper<TypeParam>(a));
        Decomposition<TypeParam> const found(FromUpper<TypeParam>(a));
        EXPECT_TRUE(found.orientation.IsIdentity());
        EXPECT_TRUE(AreClose(Wide(found.scaling).cwiseAbs(), Eigen::Vector3d::Constant(double(least)),
                             static_cast<double>(least) * k_Rounding<TypeParam>));
    }
}

TEST(AffineDecompositionOfDoubles, Huge_matrices)
{
    Random random(631);
    for (int i = 0; i < 200; ++i)
    {
        ExpectDecomposition(FromUpper<double>(1e150 * RandomElements<double>(random)));
        Eigen::Matrix3d const a = RandomElements<double>(random);
        ExpectDecomposition(FromUpper<double>(1e150 * a.col(0) * a.row(0)));
    }
}

TEST(AffineDecompositionOfFloats, The_decomposition_is_done_in_double)
{
    // In float the small factor would drown in the rounding of the large ones.
    Random random(632);
    for (int i = 0; i < 200; ++i)
    {
        Eigen::Matrix3d a = RandomElements<float>(random);
        a.row(2) = (a.row(0) + a.row(1)) * 0.5;
        C3DXfoMatTpl<float> const m = FromUpper<float>(a);
        Eigen::Vector3d const expected = Eigen::JacobiSVD<Eigen::Matrix3d>(Upper(m)).singularValues();
        Eigen::Vector3d s = Wide(Decomposition<float>(m).scaling).cwiseAbs();
        std::sort(s.begin(), s.end(), std::greater<>());
        double const smallest = std::max(expected(2), static_cast<double>(1e-6F));
        EXPECT_NEAR(s(2), smallest, 1e-6 * smallest);
    }
}

TYPED_TEST(AffineDecomposition, What_is_not_finite_ends)
{
    for (TypeParam const odd : {k_Nan<TypeParam>, k_Infinity<TypeParam>, -k_Infinity<TypeParam>})
    {
        for (int set = 1; set < 512; ++set)
        {
            C3DXfoMatTpl<TypeParam> m;
            m.SetTranslation({3, odd, 5});
            for (int i = 0; i < 9; ++i)
            {
                if ((set >> i & 1) != 0)
                {
                    m.Set(i / 3, i % 3, odd);
                }
            }
            Decomposition<TypeParam> const found(m);
            EXPECT_TRUE(Wide(found.orientation).hasNaN() || Upper(found.remainder).hasNaN());
            EXPECT_TRUE(Same(NumbersOf(C3DVector3Tpl<TypeParam>(found.remainder.GetArray() + 12)), {3, odd, 5}));
        }
    }
}

TYPED_TEST(AffineDecomposition, NaNs_on_two_axes_leave_one_positive_factor_which_is_made_uniform)
{
    // A NaN becomes the negative least factor, and the null axis the positive one: the one way to mixed signs.
    C3DXfoMatTpl<TypeParam> const m(0, 0, 0, 0, 0, k_Nan<TypeParam>, 0, 0, 0, 0, k_Nan<TypeParam>, 0, 0, 0, 0, 1);
    Decomposition<TypeParam> const found(m);
    EXPECT_TRUE(SameBits(found.orientation.GetMatrix(), IdentityMatrix<C3DMatrix33Tpl<TypeParam>>()));
    EXPECT_EQ(found.remainder.GetSclSignBits(), 0);
    EXPECT_TRUE(Upper(found.remainder).hasNaN());
}

} // namespace
