/// Properties of the rotation conversions over random input.

#include "math/rotation_conversions.h"

#include "rotation/euler_checks.h"
#include "support/random.h"

using namespace test_support;

namespace
{

int const k_Cases = 102000;

OrderRow const & RowOfCase(int i)
{
    return k_OrderTable[static_cast<std::size_t>(i) % 6];
}

/// The middle angle whose cosine, of either sign, is given, with whole turns.
double MiddleOfCosine(Random & random, double cosine)
{
    double const angle = std::acos(cosine) * (random.Integer(0, 1) == 0 ? 1 : -1);
    return angle + random.Integer(-20, 19) * k_TwoPi;
}

double TwentyTurns(Random & random)
{
    return random.Uniform(-20 * k_TwoPi, 20 * k_TwoPi);
}

double CosineOfMiddle(OrderRow const & row, Vector const & angles)
{
    return std::abs(std::cos(angles.Get(row.a1)));
}

// The corner element of the matrix is rounded to 2^-54 near one. The cosine of the middle angle, by which the routine
// divides the other elements, inherits that divided by its own square: u / cos^2 with u = 5.6e-17 in the outer angles.
// Beside it stands the rounding of the twenty turns, 3e-14. So 1e-12 holds where |cos| is at least 0.0076, which is
// 0.44 degrees from the pole, and no closer.
double const k_Unit = 5.6e-17;
double const k_RoundingOfTurns = 3e-14;
double const k_AwayFromPole = 0.0076;

TEST(RoundTrip, Angles_with_twenty_turns_come_back_within_1e_12_away_from_the_pole)
{
    Random random(71);
    double worst = 0;
    for (int i = 0; i < k_Cases; ++i)
    {
        OrderRow const & row = RowOfCase(i);
        double const limit = i % 2 == 0 ? 1 : 0.02;
        double const sign = random.Integer(0, 1) == 0 ? 1 : -1;
        Vector const angles =
            Acting(row, TwentyTurns(random), MiddleOfCosine(random, sign * random.Uniform(k_AwayFromPole, limit)),
                   TwentyTurns(random));
        worst = std::max(worst, MaxDifference(Extract(row, Matrix(row, angles), angles), angles));
    }
    EXPECT_LE(worst, 1e-12);
}

TEST(RoundTrip, Nearer_the_pole_the_error_grows_with_the_inverse_square_of_the_cosine)
{
    Random random(72);
    double worst = 0;
    double worstMatrix = 0;
    for (int i = 0; i < k_Cases; ++i)
    {
        OrderRow const & row = RowOfCase(i);
        double const cosine = random.OverDecades(-5.84, 0);
        Vector const angles = Acting(row, TwentyTurns(random), MiddleOfCosine(random, cosine), TwentyTurns(random));
        RotMat const mat = Matrix(row, angles);
        Vector const result = Extract(row, mat, angles);
        double const scale = k_RoundingOfTurns + 1.05 * k_Unit / (cosine * cosine);
        worst = std::max(worst, MaxDifference(result, angles) / scale);
        worstMatrix = std::max(worstMatrix, MaxDifference(Matrix(row, result), mat) / scale);
    }
    EXPECT_LE(worst, 1);
    EXPECT_LE(worstMatrix, 2) << "both outer angles are off by as much";
}

TEST(RoundTrip, Float_angles_come_back_with_the_digits_of_float)
{
    Random random(73);
    double worst = 0;
    for (int i = 0; i < k_Cases; ++i)
    {
        OrderRow const & row = RowOfCase(i);
        Vector const wide =
            Acting(row, random.Uniform(-20.0, 20.0), std::acos(random.Uniform(0.1, 1.0)), random.Uniform(-20.0, 20.0));
        Vectorf const angles(static_cast<float>(wide.X), static_cast<float>(wide.Y), static_cast<float>(wide.Z));
        RotMatf mat;
        F3DEulerToMat(angles, mat, row.order);
        Vectorf result = angles;
        F3DMatToEulerUsingTarget(mat, result, row.order);
        double const cosine = CosineOfMiddle(row, wide);
        worst = std::max(worst, MaxDifference(result, angles) / (2e-6 + 6e-8 / (cosine * cosine)));
    }
    EXPECT_LE(worst, 1);
}

TEST(RoundTrip, Any_other_target_gives_the_same_rotation_and_lies_within_half_a_turn)
{
    Random random(74);
    double worst = 0;
    double farthest = 0;
    for (int i = 0; i < k_Cases; ++i)
    {
        OrderRow const & row = RowOfCase(i);
        Vector const angles = Acting(row, TwentyTurns(random), TwentyTurns(random), TwentyTurns(random));
        Vector const target(TwentyTurns(random), TwentyTurns(random), TwentyTurns(random));
        RotMat const mat = Matrix(row, angles);
        Vector const result = Extract(row, mat, target);
        farthest = std::max(farthest, MaxDifference(result, target));
        double const cosine = std::max(CosineOfMiddle(row, angles), 1.4e-6);
        worst = std::max(worst, MaxDifference(Matrix(row, result), mat) /
                                    (2 * k_RoundingOfTurns + 2.1 * k_Unit / (cosine * cosine)));
    }
    EXPECT_LE(worst, 1);
    EXPECT_LE(farthest, k_Pi + 1e-13);
}

/// A smooth curve of angles with whole turns.
class Curve
{
public:
    explicit Curve(Random & random)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            m_Offset.Set(axis, random.Uniform(-60.0, 60.0));
            m_Slope.Set(axis, random.Uniform(-3.0, 3.0));
            m_Amplitude.Set(axis, random.Uniform(0.0, 2.0));
            m_Frequency.Set(axis, random.Uniform(0.2, 3.0));
        }
    }

    /// Lifts one angle so that it is a given one at a time.
    void Pass(int axis, double angle, double time) { m_Offset.Set(axis, m_Offset.Get(axis) + angle - Get(axis, time)); }

    double Get(int axis, double time) const
    {
        return m_Offset.Get(axis) + m_Slope.Get(axis) * time +
               m_Amplitude.Get(axis) * std::sin(m_Frequency.Get(axis) * time);
    }

    Vector Get(double time) const { return {Get(0, time), Get(1, time), Get(2, time)}; }

private:
    Vector m_Offset;
    Vector m_Slope;
    Vector m_Amplitude;
    Vector m_Frequency;
};

double Length(Vector const & a, Vector const & b)
{
    return std::abs(a.X - b.X) + std::abs(a.Y - b.Y) + std::abs(a.Z - b.Z);
}

/// How far the angles of a frame can be off: the law of the round trip, or at the pole the middle angle taken as a
/// quarter turn.
double Slack(OrderRow const & row, Vector const & angles)
{
    double const cosine = CosineOfMiddle(row, angles);
    return cosine < 1.5e-6 ? 1.5e-4 : 1e-13 + 3 * k_Unit / (cosine * cosine);
}

// The next angles of the curve are a solution themselves, and so are those on its other branch, which moves as far. So
// the nearest solution is never farther, in the sum of the three angles. At the pole the outer angles are shared anew;
// the frame after it makes up for that with what the curve moved in both.
TEST(BakedCurve, It_never_jumps_by_more_than_the_curve_itself_moves)
{
    Random random(75);
    double const step = 1.0 / 256;
    int const frames = 600;
    int const crossing = frames / 2;
    int atPole = 0;
    for (int i = 0; i < 180; ++i)
    {
        OrderRow const & row = RowOfCase(i);
        Curve curve(random);
        if (i % 3 == 0)
        {
            // Through the pole in the middle, on a frame.
            curve.Pass(row.a1, (random.Integer(-9, 8) + 0.5) * k_Pi, crossing * step);
        }
        Vector source = curve.Get(0.0);
        Vector baked = source;
        double moved = 0;
        for (int frame = 1; frame < frames; ++frame)
        {
            Vector const next = curve.Get(frame * step);
            Vector const result = Extract(row, Matrix(row, next), baked);
            double const allowed = Length(next, source) + Slack(row, next) + Slack(row, source);
            ASSERT_LE(Length(result, baked), allowed + moved) << row << " curve " << i << " frame " << frame;
            bool const pole = CosineOfMiddle(row, next) < 1.4e-6;
            moved = pole ? moved + Length(next, source) : 0;
            atPole += pole ? 1 : 0;
            source = next;
            baked = result;
        }
    }
    EXPECT_GE(atPole, 60);
}

// In another order the angles have rates of their own: that of the middle one is at most that of the rotation, those of
// the outer ones at most that divided by the cosine of the middle.
TEST(BakedCurve, In_another_order_it_moves_no_faster_than_the_rotation_over_the_cosine)
{
    Random random(76);
    double const step = 1.0 / 512;
    int compared = 0;
    for (int i = 0; i < 180; ++i)
    {
        OrderRow const & from = RowOfCase(i);
        OrderRow const & to = RowOfCase(i / 6);
        Curve const curve(random);
        RotMat mat = Matrix(from, curve.Get(0.0));
        Vector baked = Extract(to, mat, Vector(0, 0, 0));
        for (int frame = 1; frame < 600; ++frame)
        {
            RotMat const next = Matrix(from, curve.Get(frame * step));
            Vector const result = Extract(to, next, baked);
            double const turn = Eigen::AngleAxisd(ToJudge(mat).transpose() * ToJudge(next)).angle();
            double const cosine = std::min(CosineOfMiddle(to, baked), CosineOfMiddle(to, result));
            if (cosine > 20 * turn)
            {
                ASSERT_LE(MaxDifference(result, baked), 1.1 * turn / cosine + 1e-9) << to << " frame " << frame;
                ++compared;
            }
            mat = next;
            baked = result;
        }
    }
    EXPECT_GE(compared, 90000);
}

Quat RandomRotation(Random & random)
{
    Quat quat;
    do
    {
        quat.Set(random.Uniform(-1.0, 1.0), random.Uniform(-1.0, 1.0), random.Uniform(-1.0, 1.0),
                 random.Uniform(-1.0, 1.0));
    } while (quat.GetSquaredLength() > 1 || quat.GetSquaredLength() < 0.01);
    return quat.Normalize();
}

TEST(Agreement, Quaternion_products_inverses_and_slerps_are_those_of_the_judge)
{
    Random random(77);
    double worst = 0;
    double worstSlerp = 0;
    for (int i = 0; i < k_Cases; ++i)
    {
        Quat const a = RandomRotation(random);
        Quat const b = RandomRotation(random);
        Quat q;
        worst = std::max(worst, MaxDifference(ToJudge(q.Mul(a, b)), ToJudge(a) * ToJudge(b)));
        worst = std::max(worst, MaxDifference(ToJudge(q.Invert(a)), ToJudge(a).inverse()));
        worst = std::max(worst, MaxDifference(ToJudge(q.Mul(a)), Eigen::Quaterniond::Identity()));
        double const t = random.Uniform(0.0, 1.0);
        worstSlerp = std::max(worstSlerp, MaxDifference(ToJudge(q.Slerp(a, b, t)), ToJudge(a).slerp(t, ToJudge(b))));
    }
    EXPECT_LE(worst, 2e-15);
    EXPECT_LE(worstSlerp, 1e-14);
}

TEST(Agreement, Matrices_of_quaternions_multiply_as_these_do)
{
    Random random(78);
    double worst = 0;
    for (int i = 0; i < k_Cases; ++i)
    {
        Quat const a = RandomRotation(random);
        Quat const b = RandomRotation(random);
        RotMat ma;
        RotMat mb;
        F3DQuatToMat(a, ma);
        F3DQuatToMat(b, mb);
        worst = std::max(worst, MaxDifference(ToJudge(ma), ToJudge(a).toRotationMatrix().transpose()));
        // In a product of quaternions the right one acts first, in one of matrices the left one.
        RotMat product;
        Quat quatProduct;
        F3DQuatToMat(quatProduct.Mul(b, a), product);
        worst = std::max(worst, MaxDifference(RotMat().Mul(ma, mb), product));
        worst = std::max(worst, MaxDifference(ToJudge(RotMat().Mul(ma, mb)), ToJudge(ma) * ToJudge(mb)));
        worst = std::max(worst, MaxDifference(ToJudge(RotMat().Invert(ma)), ToJudge(ma).inverse()));
        worst = std::max(worst, MaxDifference(RotMat().MulTransByReg(ma, ma), RotMat()));
    }
    EXPECT_LE(worst, 3e-15);
}

TEST(Agreement, Quaternions_of_matrices_are_those_of_the_judge)
{
    Random random(79);
    double worst = 0;
    for (int i = 0; i < k_Cases; ++i)
    {
        OrderRow const & row = RowOfCase(i);
        Vector const angles(random.Uniform(-9.0, 9.0), random.Uniform(-9.0, 9.0), random.Uniform(-9.0, 9.0));
        RotMat const mat = Matrix(row, angles);
        Quat quat;
        F3DMatToQuat(mat, quat);
        Eigen::Quaterniond expected(Eigen::Matrix3d(ToJudge(mat).transpose()));
        if (expected.w() < 0)
        {
            expected.coeffs() *= -1;
        }
        double const same = MaxDifference(ToJudge(quat), expected);
        // Half a turn has two axes.
        Eigen::Quaterniond opposite = expected;
        opposite.coeffs() *= -1;
        worst = std::max(worst, quat.W < 1e-14 ? std::min(same, MaxDifference(ToJudge(quat), opposite)) : same);
        Quat direct;
        F3DEulerToQuat(angles, direct, row.order);
        worst = std::max(worst, 1 - std::abs(ToJudge(direct).dot(expected)));
    }
    EXPECT_LE(worst, 3e-15);
}

TEST(Agreement, Axis_and_angle_are_those_of_the_judge)
{
    Random random(80);
    double worst = 0;
    double worstBack = 0;
    for (int i = 0; i < k_Cases; ++i)
    {
        Eigen::Vector3d const axis(random.Uniform(-1.0, 1.0), random.Uniform(-1.0, 1.0), random.Uniform(0.1, 1.0));
        double const angle = random.Uniform(0.01, k_TwoPi - 0.01);
        Quat quat;
        F3DAxisAngleToQuat(Vector(axis.x(), axis.y(), axis.z()), angle, quat);
        worst = std::max(worst,
                         MaxDifference(ToJudge(quat), Eigen::Quaterniond(Eigen::AngleAxisd(angle, axis.normalized()))));
        Vector axisBack;
        double angleBack = 0;
        F3DQuatToAxisAngle(quat, axisBack, angleBack);
        // The arc cosine loses digits where W is near one.
        double const scale = 1e-15 / std::pow(std::sin(angle / 2), 2);
        worstBack = std::max(worstBack, std::abs(angleBack - angle) / scale);
        Vector const unit(axis.normalized().x(), axis.normalized().y(), axis.normalized().z());
        worstBack = std::max(worstBack, MaxDifference(axisBack, unit) / scale);
    }
    EXPECT_LE(worst, 5e-16);
    EXPECT_LE(worstBack, 2);
}

} // namespace
