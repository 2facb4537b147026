/// Properties over random rotations, against Eigen's quaternions and matrices.

#include "rotation/rotation_states.h"

using namespace rotation_test;
using test_support::Random;

namespace
{

constexpr int k_Cases = 100'000;

Judge Read(C3DRotation & rotation)
{
    C3DRotation copy = rotation;
    Quat quat;
    copy.GetQuat(quat);
    return JudgeOf(quat);
}

/// The sine of the middle angle of an order, with whatever sign.
double MiddleSine(Matrix const & matrix, tagE3DROTORDER order)
{
    constexpr int first[6] = {0, 0, 1, 1, 2, 2};
    constexpr int last[6] = {2, 1, 2, 0, 1, 0};
    return matrix.Get(first[order], last[order]);
}

/// Whether the extraction in this order counts the matrix as gimbal lock. There it takes the middle angle for a quarter
/// turn, which may be off by 1.4e-6, and may leave a free angle of up to 1e-6.
bool IsAtPole(Matrix const & matrix, tagE3DROTORDER order)
{
    return std::abs(MiddleSine(matrix, order)) > 1 - 2e-12;
}

/// The error of a matrix's elements counts so many times in the angles.
double Conditioning(Matrix const & matrix, tagE3DROTORDER order)
{
    double const sine = MiddleSine(matrix, order);
    return 1 / std::sqrt(1 - sine * sine);
}

/// How far extracted angles can be off. The matrix of a product of quaternions is off by up to 1.5e-15 (the most in six
/// million random products). In the sine of the middle angle that counts divided by the square of the cosine, since the
/// extraction divides the other elements by the cosine it makes of that sine.
double AngleError(Matrix const & matrix, tagE3DROTORDER order)
{
    double const conditioning = Conditioning(matrix, order);
    return 1e-13 + 2e-15 * conditioning * conditioning;
}

testing::AssertionResult IsWithinHalfATurn(Vector const & angles, Vector const & target)
{
    double const farthest = MaxDifference(angles, target);
    return farthest <= k_Pi + 1e-9 ? testing::AssertionSuccess() : testing::AssertionFailure() << farthest;
}

} // namespace

TEST(RotationProperties, Products_agree_with_the_judges_quaternions_and_matrices)
{
    Random random(701);
    double worst = 0;
    for (int i = 0; i < k_Cases; ++i)
    {
        C3DRotation a = RandomRotation(random, 3);
        C3DRotation b = RandomRotation(random, 3);
        Judge const judgeA = Read(a);
        Judge const judgeB = Read(b);
        C3DRotation product;
        product.Mul(a, b);
        double const quat = Distance(Read(product), judgeB * judgeA);
        Eigen::Matrix3d const matrix = judgeB.toRotationMatrix() * judgeA.toRotationMatrix();
        Matrix read;
        product.GetMatrix(read);
        double difference = 0;
        for (int e = 0; e < 9; ++e)
        {
            difference = std::fmax(difference, std::abs(read.Get(e / 3, e % 3) - matrix(e % 3, e / 3)));
        }
        // Multiplying in place is the same to the last bit.
        C3DRotation left = b;
        left.LeftMul(a);
        a.Mul(b);
        Inside inside(product);
        ASSERT_TRUE(Same(inside.Quat(), Inside(a).Quat()) && Same(inside.Quat(), Inside(left).Quat()));
        worst = std::fmax(worst, std::fmax(quat, difference));
    }
    EXPECT_LT(worst, 1e-14);
}

TEST(RotationProperties, Inverses_agree_with_the_judge_and_cancel)
{
    Random random(702);
    double worst = 0;
    for (int i = 0; i < k_Cases; ++i)
    {
        C3DRotation a = RandomRotation(random, 3);
        Judge const judge = Read(a);
        C3DRotation inverse;
        inverse.Invert(a);
        worst = std::fmax(worst, Distance(Read(inverse), judge.conjugate()));
        C3DRotation product;
        product.Mul(inverse, a);
        worst = std::fmax(worst, Distance(Read(product), Judge::Identity()));
        Vector const v(random.Uniform(-1.0, 1.0), random.Uniform(-1.0, 1.0), random.Uniform(-1.0, 1.0));
        Vector there;
        Vector back;
        a.RotateVct(v, there);
        a.InvRotateVct(there, back);
        worst = std::fmax(worst, MaxDifference(v, back));
        inverse.RotateVct(there, back);
        worst = std::fmax(worst, MaxDifference(v, back));
    }
    EXPECT_LT(worst, 1e-14);
}

TEST(RotationProperties, Products_near_a_target_are_the_product_within_half_a_turn_of_the_target)
{
    Random random(703);
    int poles = 0;
    for (int i = 0; i < k_Cases; ++i)
    {
        C3DRotation a = RandomRotation(random, 3);
        C3DRotation b = RandomRotation(random, 3);
        tagE3DROTORDER const order = k_Orders[random.Integer(0, 5)];
        Vector const aim(random.Uniform(-99.0, 99.0), random.Uniform(-99.0, 99.0), random.Uniform(-99.0, 99.0));
        C3DRotation product;
        product.Mul(a, b);
        C3DRotation rotation;
        Vector angles = aim;
        rotation.MulUsingEulerAnglesTarget(a, b, angles, order);
        ASSERT_TRUE(Same(Inside(product).Quat(), Inside(rotation).Quat()));
        ASSERT_TRUE(IsWithinHalfATurn(angles, aim));
        if (IsAtPole(*rotation.GetMatrix(), order))
        {
            ++poles;
            continue;
        }
        ASSERT_TRUE(FreshFormsAre(rotation, Read(product), AngleError(*rotation.GetMatrix(), order)));
    }
    EXPECT_LT(poles, 100);
}

TEST(RotationProperties, Products_near_an_operand_are_the_product_within_half_a_turn_of_the_operand)
{
    Random random(704);
    int poles = 0;
    for (int i = 0; i < k_Cases; ++i)
    {
        C3DRotation a = RandomRotation(random, 3);
        C3DRotation b = RandomRotation(random, 3);
        int const which = random.Integer(0, 1);
        C3DRotation product;
        product.Mul(a, b);
        C3DRotation rotation;
        rotation.MulAndUpdateEulerAngles(a, b, static_cast<unsigned long>(which));
        C3DRotation & reference = which == 1 ? a : b;
        ASSERT_EQ(rotation.GetXYZRotOrder(), reference.GetXYZRotOrder());
        ASSERT_LT(Distance(Read(rotation), Read(product)), 1e-14);
        ASSERT_TRUE(IsWithinHalfATurn(Inside(rotation).Angles(), Inside(reference).Angles()));
        tagE3DROTORDER const order = rotation.GetXYZRotOrder();
        if (IsAtPole(*rotation.GetMatrix(), order))
        {
            ++poles;
            continue;
        }
        ASSERT_TRUE(FreshFormsAre(rotation, Read(product), AngleError(*rotation.GetMatrix(), order)));
    }
    EXPECT_LT(poles, 100);
}

TEST(RotationProperties, A_small_step_from_the_reference_keeps_its_turns)
{
    Random random(705);
    for (int i = 0; i < k_Cases; ++i)
    {
        Vector const angles(random.Uniform(-60.0, 60.0), random.Uniform(-60.0, 60.0), random.Uniform(-60.0, 60.0));
        tagE3DROTORDER const order = k_Orders[random.Integer(0, 5)];
        C3DRotation a(angles, order);
        C3DRotation step(Vector(1, -2, 3), 1e-9);
        double const conditioning = Conditioning(*a.GetMatrix(), order);
        C3DRotation b = step;
        C3DRotation rotation;
        bool const first = i % 2 == 0;
        first ? rotation.MulAndUpdateEulerAngles(a, b, 1) : rotation.MulAndUpdateEulerAngles(b, a, 0);
        if (conditioning < 1e5)
        {
            ASSERT_LT(MaxDifference(Inside(rotation).Angles(), angles), 2e-9 * conditioning + 1e-12);
        }
    }
}

TEST(RotationProperties, Interpolation_agrees_with_the_judge)
{
    Random random(706);
    double worst = 0;
    for (int i = 0; i < k_Cases; ++i)
    {
        C3DRotation a = RandomRotation(random);
        C3DRotation b = RandomRotation(random);
        double const t = random.Uniform(0.0, 1.0);
        Judge const expected = Read(a).slerp(t, Read(b));
        C3DRotation between;
        between.Interpolate(a, b, t);
        // Opposite quaternions leave the arc open.
        if (std::abs(Read(a).dot(Read(b))) > 1e-6)
        {
            worst = std::fmax(worst, Distance(Read(between), expected));
        }
    }
    EXPECT_LT(worst, 1e-14);
}

TEST(RotationProperties, Another_order_keeps_the_rotation)
{
    Random random(707);
    for (int i = 0; i < k_Cases; ++i)
    {
        C3DRotation rotation = RandomRotation(random, 3);
        Judge const before = Read(rotation);
        tagE3DROTORDER const order = k_Orders[random.Integer(0, 5)];
        rotation.Set(order, 1);
        ASSERT_EQ(rotation.GetXYZRotOrder(), order);
        Matrix matrix;
        C3DRotation(rotation).GetMatrix(matrix);
        if (!IsAtPole(matrix, order))
        {
            Vector angles;
            rotation.GetXYZAngles(angles);
            ASSERT_TRUE(FreshFormsAre(rotation, before, AngleError(matrix, order)));
        }
    }
}

// --- Long sequences --------------------------------------------------------------------------------------------------

namespace
{

/// Rotations that run into the shortcuts and the poles: quarter turns about axes, identities of every kind.
C3DRotation SpecialRotation(Random & random)
{
    C3DRotation rotation;
    tagE3DROTORDER const order = k_Orders[random.Integer(0, 5)];
    switch (random.Integer(0, 5))
    {
    case 0:
        rotation.Set(0.0, 0.0, 0.0, order);
        break;
    case 1:
        rotation.Set(static_cast<tagE3DAXISTYPE>(random.Integer(0, 2)), random.Integer(-4, 4) * k_HalfPi);
        break;
    case 2:
        rotation.Set(Quat());
        break;
    case 3:
        rotation.Set(Matrix());
        break;
    case 4:
        rotation.Set(random.Integer(-2, 2) * k_TwoPi, 0, random.Uniform(-1.0, 1.0), order);
        break;
    default:
        break;
    }
    Inside(rotation).FillStale();
    return rotation;
}

struct Player
{
    C3DRotation rotation;
    Judge judge;
};

/// Where the angles have just been taken from a matrix in gimbal lock they may stand for another rotation. Then only
/// the other forms are looked at, and the rotation is set anew.
int SettlePole(Player & player)
{
    Inside inside(player.rotation);
    if ((inside.Flags() & (k_AnglesDirty | k_Marked)) != 0)
    {
        return 0;
    }
    Vector const angles = inside.Angles();
    tagE3DROTORDER const order = player.rotation.GetXYZRotOrder();
    if (!IsAtPole(MatrixOf(angles, order), order))
    {
        return 0;
    }
    EXPECT_TRUE(inside.IsQuatDirty() != 0 || Distance(JudgeOf(inside.Quat()), player.judge) < 1e-9);
    EXPECT_TRUE(inside.IsMatDirty() != 0 || Distance(JudgeOf(inside.Matrix()), player.judge) < 1e-9);
    player.rotation.Set(Quat(player.judge.w(), player.judge.x(), player.judge.y(), player.judge.z()));
    return 1;
}

void Play(Random & random, Player (&players)[3])
{
    Player & t = players[random.Integer(0, 2)];
    Player & a = players[random.Integer(0, 2)];
    Player & b = players[random.Integer(0, 2)];
    Player & c = players[random.Integer(0, 2)];
    tagE3DROTORDER const order = k_Orders[random.Integer(0, 5)];
    double const fraction = random.Uniform(0.0, 1.0);
    int const keep = random.Integer(0, 1);
    Judge const product = b.judge * a.judge;
    Vector angles(random.Uniform(-20.0, 20.0), random.Uniform(-20.0, 20.0), random.Uniform(-20.0, 20.0));
    Quat quat;
    Matrix matrix;
    Vector v;
    double angle = 0;
    switch (random.Integer(0, 21))
    {
    case 0:
        t.rotation = RandomRotation(random);
        t.judge = Read(t.rotation);
        break;
    case 1:
        t.rotation = SpecialRotation(random);
        t.judge = Read(t.rotation);
        break;
    case 2:
    case 3:
        t.rotation.Mul(a.rotation, b.rotation);
        t.judge = product;
        break;
    case 4:
        t.judge = a.judge * t.judge;
        t.rotation.Mul(a.rotation);
        break;
    case 5:
        t.judge = t.judge * a.judge;
        t.rotation.LeftMul(a.rotation);
        break;
    case 6:
    case 7:
        t.rotation.MulAndUpdateEulerAngles(a.rotation, b.rotation, static_cast<unsigned long>(keep));
        t.judge = product;
        break;
    case 8:
        t.rotation.MulUsingEulerAnglesTarget(a.rotation, b.rotation, angles, order);
        t.judge = product;
        break;
    case 9:
        t.rotation.MulUsingEulerAnglesTarget(a.rotation, b.rotation, c.rotation);
        t.judge = product;
        break;
    case 10:
        if (std::abs(a.judge.dot(b.judge)) > 1e-6)
        {
            t.rotation.Interpolate(a.rotation, b.rotation, fraction);
            t.judge = a.judge.slerp(fraction, b.judge);
        }
        break;
    case 11:
        t.rotation.Invert();
        t.judge = t.judge.conjugate();
        break;
    case 12:
        t.judge = a.judge.conjugate();
        t.rotation.Invert(a.rotation);
        break;
    case 13:
        t.rotation.Set(a.rotation, keep);
        t.judge = a.judge;
        break;
    case 14:
        t.rotation.Set(order, 1);
        break;
    case 15:
        t.rotation.Set(order, 0);
        t.judge = t.rotation.QuickIsIdentity() != 0 ? Judge::Identity() : Read(t.rotation);
        break;
    case 16:
        t.rotation.GetQuat(quat);
        break;
    case 17:
        t.rotation.GetMatrix(matrix);
        break;
    case 18:
        t.rotation.GetXYZAngles(v);
        break;
    case 19:
        t.rotation.GetXYZAngles(v, order);
        break;
    case 20:
        t.rotation.GetAxisAngle(v, angle);
        break;
    default:
        t.rotation.IsExactlyIdentity();
        break;
    }
}

} // namespace

// Stale forms hold NaNs at every step, so that one that is read or taken for fresh shows.
TEST(RotationProperties, After_any_sequence_of_operations_all_fresh_forms_agree)
{
    int poles = 0;
    int marks = 0;
    for (std::uint64_t seed = 0; seed < 2000; ++seed)
    {
        Random random(seed);
        Player players[3] = {{RandomRotation(random), {}}, {RandomRotation(random), {}}, {SpecialRotation(random), {}}};
        for (Player & player : players)
        {
            player.judge = Read(player.rotation);
        }
        for (int step = 0; step < 50; ++step)
        {
            Play(random, players);
            for (Player & player : players)
            {
                poles += SettlePole(player);
                marks += player.rotation.QuickIsIdentity();
                ASSERT_TRUE(FreshFormsAre(player.rotation, player.judge, 1e-9)) << "step " << step;
                Inside(player.rotation).FillStale();
                player.judge.normalize();
            }
        }
    }
    EXPECT_GT(poles, 100);
    EXPECT_LT(poles, 1000) << "of 300,000";
    EXPECT_GT(marks, 20'000);
}
