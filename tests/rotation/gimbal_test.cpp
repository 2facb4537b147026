/// The extraction of Euler angles in gimbal lock, where the matrix determines only the sum of the outer angles, or only
/// their difference.

#include "math/rotation_conversions.h"

#include "rotation/euler_checks.h"
#include "rotation/extraction_by_steps.h"
#include "support/random.h"

using namespace test_support;

namespace
{

double const k_ZeroFreeAngle = 1e-6;

struct Pole
{
    OrderRow row;
    double side; ///< The sign of the middle angle.

    bool IsSum() const { return row.even == (side < 0); }
    double Middle() const { return side * k_HalfPi; }
};

std::ostream & operator<<(std::ostream & stream, Pole const & pole)
{
    return stream << pole.row << (pole.side < 0 ? " at -90" : " at +90");
}

std::vector<Pole> AllPoles()
{
    std::vector<Pole> poles;
    for (OrderRow const & row : k_OrderTable)
    {
        poles.push_back({row, -1});
        poles.push_back({row, 1});
    }
    return poles;
}

std::string NameOfPole(testing::TestParamInfo<Pole> const & info)
{
    return std::string(info.param.row.name) + (info.param.side < 0 ? "_minus" : "_plus");
}

class GimbalLock : public testing::TestWithParam<Pole>
{
protected:
    Vector Triple(double first, double last) const { return Acting(pole.row, first, pole.Middle(), last); }

    /// The sum or difference of the outer angles, whichever the matrix determines.
    double Free(Vector const & angles) const
    {
        double const last = angles.Get(pole.row.a2);
        return angles.Get(pole.row.a0) + (pole.IsSum() ? last : -last);
    }

    RotMat MatrixOf(Vector const & angles) const { return Matrix(pole.row, angles); }

    /// A matrix in which nothing is a number but the three elements that count.
    template <typename T>
    C3DRotMatTpl<T> Bare(T sine, T cosine) const
    {
        C3DRotMatTpl<T> m;
        for (int e = 0; e < 9; ++e)
        {
            m.Set(e / 3, e % 3, k_Nan<T>);
        }
        OrderRow const & row = pole.row;
        m.Set(row.a0, row.a2, static_cast<T>(row.sign * pole.side));
        m.Set(row.sineRow, row.sineColumn, static_cast<T>(pole.IsSum() ? row.sign : 1) * sine);
        return m.Set(row.cosineRow, row.cosineColumn, cosine);
    }

    Vector Solve(RotMat const & mat, Vector const & target) const { return Extract(pole.row, mat, target); }

    Vectorf Solve(RotMatf const & mat, Vectorf const & target) const
    {
        Vectorf angles = target;
        F3DMatToEulerUsingTarget(mat, angles, pole.row.order);
        return angles;
    }

    Pole const pole = GetParam();
};
INSTANTIATE_TEST_SUITE_P(All, GimbalLock, testing::ValuesIn(AllPoles()), NameOfPole);

TEST_P(GimbalLock, The_target_itself_comes_back)
{
    for (double const first : {0.3, -2.0, 1.1 + 3 * k_TwoPi})
    {
        for (double const last : {0.2, 2.9, -0.7 - 8 * k_TwoPi})
        {
            Vector const target = Triple(first, last);
            EXPECT_LE(MaxDifference(Solve(MatrixOf(target), target), target), 1e-13);
        }
    }
}

TEST_P(GimbalLock, The_table_names_the_elements_that_count)
{
    Vector const source = Triple(1.3, 0.4);
    RotMat const full = MatrixOf(source);
    RotMat const bare = Bare(std::sin(Free(source)), std::cos(Free(source)));
    OrderRow const & row = pole.row;
    EXPECT_NEAR(full.Get(row.a0, row.a2), bare.Get(row.a0, row.a2), 1e-15);
    EXPECT_NEAR(full.Get(row.sineRow, row.sineColumn), bare.Get(row.sineRow, row.sineColumn), 1e-15);
    EXPECT_NEAR(full.Get(row.cosineRow, row.cosineColumn), bare.Get(row.cosineRow, row.cosineColumn), 1e-15);
    for (Vector const & target : {Triple(0, 0), Triple(1, 2), Triple(-2, 0.5)})
    {
        EXPECT_LE(MaxDifference(Solve(bare, target), Solve(full, target)), 1e-14);
    }
}

TEST_P(GimbalLock, What_the_target_lacks_is_shared_evenly)
{
    double const free = 0.8;
    RotMat const mat = Bare(std::sin(free), std::cos(free));
    Vector const result = Solve(mat, Triple(0.3, 0.1));
    double const lack = pole.IsSum() ? free - 0.4 : free - 0.2;
    EXPECT_NEAR(result.Get(pole.row.a0), 0.3 + lack / 2, 1e-15);
    EXPECT_NEAR(result.Get(pole.row.a2), pole.IsSum() ? 0.1 + lack / 2 : 0.1 - lack / 2, 1e-15);
    EXPECT_EQ(result.Get(pole.row.a1), pole.Middle());
}

TEST_P(GimbalLock, A_zero_target_and_a_zero_free_angle_give_zeros)
{
    Vector const result = Solve(Bare(0.0, 1.0), Vector(0, 0, 0));
    EXPECT_TRUE(AreEqual(result, Triple(0, 0)));
    EXPECT_TRUE(AreEqual(Solve(MatrixOf(Triple(0, 0)), Vector(0, 0, 0)), Triple(0, 0)));
    Vector plain(7, 8, 9);
    F3DMatToEuler(Bare(0.0, 1.0), plain, pole.row.order);
    EXPECT_TRUE(AreEqual(plain, Triple(0, 0)));
}

TEST_P(GimbalLock, The_middle_angle_is_wound_to_its_target)
{
    Vector target = Triple(0.3, 0.2);
    RotMat const mat = MatrixOf(target);
    for (int const turns : {-20, -1, 1, 20})
    {
        target.Set(pole.row.a1, pole.Middle() + turns * k_TwoPi);
        EXPECT_LE(MaxDifference(Solve(mat, target), target), 1e-13);
    }
    target.Set(pole.row.a1, 0);
    EXPECT_EQ(Solve(mat, target).Get(pole.row.a1), pole.Middle());
}

// A free angle below the limit loses the target's difference or mirrors its sum.
TEST_P(GimbalLock, A_free_angle_below_1e_6_makes_the_outer_angles_equal)
{
    double sine = std::sin(k_ZeroFreeAngle);
    while (std::asin(sine) >= k_ZeroFreeAngle)
    {
        sine = std::nextafter(sine, 0.0);
    }
    Vector const target = Triple(0.2, 0.6);
    for (double const sign : {-1.0, 1.0})
    {
        Vector const below = Solve(Bare(sign * sine, 1.0), target);
        double const both = pole.IsSum() ? -0.4 : 0.4;
        EXPECT_NEAR(below.Get(pole.row.a0), both, 1e-15);
        EXPECT_NEAR(below.Get(pole.row.a2), both, 1e-15);
        double const atLimit = std::asin(std::nextafter(sine, 1.0));
        ASSERT_GE(atLimit, k_ZeroFreeAngle);
        Vector const at = Solve(Bare(sign * std::nextafter(sine, 1.0), 1.0), target);
        EXPECT_NEAR(Free(at), sign * atLimit, 1e-15);
        EXPECT_NEAR(at.Get(pole.row.a0),
                    pole.IsSum() ? 0.2 + (sign * atLimit - 0.8) / 2 : 0.2 + (sign * atLimit + 0.4) / 2, 1e-15);
    }
}

TEST_P(GimbalLock, A_free_angle_below_1e_6_makes_the_outer_angles_equal_in_float_too)
{
    Vectorf const target(0, 0, 0);
    float const below = 0.99e-6F;
    float const above = 1.01e-6F;
    Vectorf const zero = Solve(Bare(below, 1.0F), target);
    EXPECT_EQ(zero.Get(pole.row.a0), 0);
    EXPECT_EQ(zero.Get(pole.row.a2), 0);
    Vectorf const shared = Solve(Bare(above, 1.0F), target);
    EXPECT_NEAR(shared.Get(pole.row.a0), 0.505e-6, 1e-12);
    EXPECT_NEAR(shared.Get(pole.row.a2), pole.IsSum() ? 0.505e-6 : -0.505e-6, 1e-12);
}

// A target that is mirrored in the sum branch: with outer angles whose sum is zero already, they jump to zero.
TEST_P(GimbalLock, Outer_angles_that_cancel_are_kept_for_a_difference_and_lost_for_a_sum)
{
    Vector const target = pole.IsSum() ? Triple(0.9, -0.9) : Triple(0.9, 0.9);
    RotMat const mat = MatrixOf(target);
    Vector const result = Solve(mat, target);
    Vector const expected = pole.IsSum() ? Triple(0, 0) : target;
    EXPECT_LE(MaxDifference(result, expected), 1e-15);
    EXPECT_LE(MaxDifference(MatrixOf(result), mat), 1e-15) << "the rotation is the same";
}

// Below the limit the target's own sum or difference counts as zero and is not taken off.
TEST_P(GimbalLock, The_target_s_sum_or_difference_counts_from_1e_12)
{
    double const d = std::asin(0.5);
    RotMat const mat = Bare(0.5, std::sqrt(0.75));
    for (double const sign : {-1.0, 1.0})
    {
        double const at = sign * 1e-12;
        EXPECT_EQ(Solve(mat, Triple(at, 0)).Get(pole.row.a0), at + (d - at) / 2);
        double const below = sign * std::nextafter(1e-12, 0.0);
        EXPECT_EQ(Solve(mat, Triple(below, 0)).Get(pole.row.a0), below + d / 2);
        EXPECT_NE(at + (d - at) / 2, at + d / 2);
    }
}

TEST_P(GimbalLock, The_target_s_sum_or_difference_counts_from_1e_6_in_float)
{
    double const d = std::asin(0.5);
    RotMatf const mat = Bare(0.5F, static_cast<float>(std::sqrt(0.75)));
    float above = 1e-6F;
    above = static_cast<double>(above) >= 1e-6 ? above : std::nextafter(above, 1.0F);
    float const below = std::nextafter(above, 0.0F);
    ASSERT_LT(static_cast<double>(below), 1e-6);
    for (float const sign : {-1.0F, 1.0F})
    {
        Vectorf target(0, 0, 0);
        target.Set(pole.row.a0, sign * above);
        auto const p = static_cast<double>(sign * above);
        EXPECT_EQ(Solve(mat, target).Get(pole.row.a0), static_cast<float>(p + (d - p) / 2));
        target.Set(pole.row.a0, sign * below);
        auto const q = static_cast<double>(sign * below);
        EXPECT_EQ(Solve(mat, target).Get(pole.row.a0), static_cast<float>(q + d / 2));
        EXPECT_NE(static_cast<float>(q + (d - q) / 2), static_cast<float>(q + d / 2));
    }
}

TEST_P(GimbalLock, A_tie_goes_to_the_second_solution)
{
    // Half a turn of free angle and a zero target: plus or minus a quarter turn each.
    Vector const result = Solve(Bare(0.0, -1.0), Vector(0, 0, 0));
    EXPECT_NEAR(result.Get(pole.row.a0), k_HalfPi, 1e-15) << "the first solution has a minus here";
    EXPECT_NEAR(result.Get(pole.row.a2), pole.IsSum() ? k_HalfPi : -k_HalfPi, 1e-15);
}

TEST_P(GimbalLock, The_middle_angle_does_not_count_in_the_choice_of_the_outer_ones)
{
    RotMat const mat = Bare(std::sin(0.8), std::cos(0.8));
    Vector near = Triple(0.3, 0.1);
    Vector const expected = Solve(mat, near);
    near.Set(pole.row.a1, pole.Middle() + 3);
    Vector const result = Solve(mat, near);
    EXPECT_EQ(result.Get(pole.row.a0), expected.Get(pole.row.a0));
    EXPECT_EQ(result.Get(pole.row.a2), expected.Get(pole.row.a2));
}

TEST_P(GimbalLock, It_follows_the_steps_bit_by_bit)
{
    Random random(61);
    for (int i = 0; i < 2000; ++i)
    {
        double const free = i % 4 == 0 ? random.OverDecades(-13, -4) : random.Uniform(-k_Pi, k_Pi);
        double const reach = i % 2 == 0 ? 3 : 60;
        double const p = random.Uniform(-reach, reach);
        double const q = i % 3 == 0 ? p + random.OverDecades(-14, -4) : random.Uniform(-reach, reach);
        Vector const target = Acting(pole.row, i % 5 == 0 ? -p : p, random.Uniform(-reach, reach), q);
        RotMat const mat = Bare(std::sin(free), std::cos(free));
        EXPECT_TRUE(IsSame(Solve(mat, target), ExtractBySteps<double>(mat, target, pole.row)));
        RotMatf const matf = Bare(static_cast<float>(std::sin(free)), static_cast<float>(std::cos(free)));
        Vectorf const targetf(static_cast<float>(target.X), static_cast<float>(target.Y), static_cast<float>(target.Z));
        EXPECT_TRUE(IsSame(Solve(matf, targetf), ExtractBySteps<float>(matf, targetf, pole.row)));
    }
}

TEST_P(GimbalLock, A_bad_target_does_no_harm_to_the_middle_angle)
{
    for (double const bad : {k_Nan<double>, k_Infinity<double>, -k_Infinity<double>})
    {
        Vector const result = Solve(Bare(0.5, std::sqrt(0.75)), Triple(bad, 0));
        EXPECT_TRUE(std::isnan(result.Get(pole.row.a0)));
        EXPECT_EQ(result.Get(pole.row.a1), pole.Middle());
    }
}

TEST(GimbalLockExample, A_difference_in_xyz_comes_back_with_its_target)
{
    Vector const target(0.3, k_HalfPi, 0.2);
    RotMat mat;
    F3DEulerToMat(target, mat, E3DROTORDER_XYZ);
    Vector angles = target;
    F3DMatToEulerUsingTarget(mat, angles, E3DROTORDER_XYZ);
    EXPECT_LE(MaxDifference(angles, target), 1e-15);
    angles.Set(0, 0, 0);
    F3DMatToEulerUsingTarget(mat, angles, E3DROTORDER_XYZ);
    EXPECT_LE(MaxDifference(angles, Vector(0.05, k_HalfPi, -0.05)), 1e-15);
}

/// What became of the matrix, over many cases.
struct Tally
{
    int kept = 0;     ///< The result has the matrix that came in.
    int mirrored = 0; ///< The free angle is below the limit and the target's sum, mirrored, gives another.
    int dropped = 0;  ///< A free angle below the limit is dropped with a difference.
};

/// Where the stated treatment of a free angle d gives another rotation, in terms of d and the bounded target alone.
enum class Fate
{
    kept,
    mirrored,
    dropped
};

Fate Foresee(bool isSum, double d, double p, double q)
{
    if (std::abs(d) >= k_ZeroFreeAngle)
    {
        return Fate::kept;
    }
    if (isSum)
    {
        return std::abs(Wrapped(d + p + q)) <= 1e-9 ? Fate::kept : Fate::mirrored;
    }
    return std::abs(d) <= 1e-9 ? Fate::kept : Fate::dropped;
}

// The matrix comes back within 1e-9 unless the free angle is below 1e-6, and then
// - for a sum exactly where minus the target's own sum is that free angle, up to whole turns;
// - for a difference exactly where the free angle is nothing.
TEST(GimbalLockProperty, The_matrix_of_the_result_is_that_which_came_in_but_for_a_free_angle_below_1e_6)
{
    Random random(62);
    std::array<double, 6> const small = {0, 1e-11, -1e-11, 1e-7, -3e-7, 9e-7};
    std::vector<Pole> const poles = AllPoles();
    Tally tally;
    for (int i = 0; i < 120000; ++i)
    {
        Pole const & pole = poles[static_cast<std::size_t>(i) % poles.size()];
        bool const isSmall = random.Integer(0, 3) == 0;
        double const d = isSmall ? small[static_cast<std::size_t>(random.Integer(0, 5))] : random.Uniform(-k_Pi, k_Pi);
        double const first = random.Uniform(-k_Pi, k_Pi);
        double const last = pole.IsSum() ? d - first : first - d;
        RotMat const mat = Matrix(pole.row, Acting(pole.row, first, pole.Middle(), last));
        double const p = random.Uniform(-3.0, 3.0);
        double const q = random.Integer(0, 2) == 0 ? -p - d : random.Uniform(-3.0, 3.0);
        Vector const target = Acting(pole.row, p + random.Integer(-20, 20) * k_TwoPi, random.Uniform(-60.0, 60.0),
                                     q + random.Integer(-20, 20) * k_TwoPi);
        Vector const result = Extract(pole.row, mat, target);
        bool const kept = MaxDifference(Matrix(pole.row, result), mat) <= 1e-9;
        Fate const fate = Foresee(pole.IsSum(), d, p, q);
        ASSERT_EQ(kept, fate == Fate::kept) << pole << " d " << d << " p " << p << " q " << q;
        tally.kept += fate == Fate::kept ? 1 : 0;
        tally.mirrored += fate == Fate::mirrored ? 1 : 0;
        tally.dropped += fate == Fate::dropped ? 1 : 0;
    }
    EXPECT_GT(tally.kept, 90000);
    EXPECT_GT(tally.mirrored, 5000);
    EXPECT_GT(tally.dropped, 5000);
    EXPECT_EQ(tally.kept + tally.mirrored + tally.dropped, 120000);
}

// On plain random rotations in gimbal lock the free angle is hardly ever that small, and the matrix always comes back.
TEST(GimbalLockProperty, The_matrix_comes_back_for_random_angles_and_targets)
{
    Random random(63);
    std::vector<Pole> const poles = AllPoles();
    double worst = 0;
    for (int i = 0; i < 100000; ++i)
    {
        Pole const & pole = poles[static_cast<std::size_t>(i) % poles.size()];
        Vector const angles = Acting(pole.row, random.Uniform(-k_Pi, k_Pi), pole.Middle(), random.Uniform(-k_Pi, k_Pi));
        RotMat const mat = Matrix(pole.row, angles);
        Vector const target(random.Uniform(-126.0, 126.0), random.Uniform(-126.0, 126.0),
                            random.Uniform(-126.0, 126.0));
        worst = std::max(worst, MaxDifference(Matrix(pole.row, Extract(pole.row, mat, target)), mat));
    }
    EXPECT_LE(worst, 1e-13);
}

// Quarter turns meet the free angle of zero often: of the 256 pairs of outer angles and outer targets at each pole that
// determines a sum, 64 have it, and 48 of these give another rotation.
TEST_P(GimbalLock, The_quarter_turns_that_give_another_rotation_are_counted)
{
    int zeroFree = 0;
    int other = 0;
    int moved = 0;
    for (int i = 0; i < 256; ++i)
    {
        auto const quarter = [i](int digit) { return ((i >> (2 * digit)) & 3) * k_HalfPi; };
        Vector const source = Triple(quarter(0), quarter(1));
        RotMat const mat = MatrixOf(source);
        Vector const target = Triple(quarter(2), quarter(3));
        Vector const result = Solve(mat, target);
        zeroFree += std::abs(Wrapped(Free(source))) < k_ZeroFreeAngle ? 1 : 0;
        other += MaxDifference(MatrixOf(result), mat) > 1e-9 ? 1 : 0;
        bool const needless = std::abs(Wrapped(Free(target) - Free(source))) < 1e-9;
        moved += needless && MaxDifference(result, target) > 1e-9 ? 1 : 0;
    }
    EXPECT_EQ(zeroFree, 64);
    EXPECT_EQ(other, pole.IsSum() ? 48 : 0);
    EXPECT_EQ(moved, pole.IsSum() ? 8 : 0) << "the target fits already, and yet the angles jump";
}

// Within the pole's limits, but not on it, the middle angle that is taken as a quarter turn costs up to 1.5e-6.
TEST_P(GimbalLock, Beside_the_pole_the_matrix_is_off_by_what_the_middle_angle_lacks)
{
    Random random(64);
    for (int i = 0; i < 500; ++i)
    {
        double const lack = std::abs(random.OverDecades(-10, -5.86));
        Vector const angles =
            Acting(pole.row, random.Uniform(-3.0, 3.0), pole.side * (k_HalfPi - lack), random.Uniform(-3.0, 3.0));
        RotMat const mat = MatrixOf(angles);
        ASSERT_GE(std::abs(mat.Get(pole.row.a0, pole.row.a2)), 0.999999999999);
        Vector const result = Solve(mat, angles);
        EXPECT_EQ(std::abs(result.Get(pole.row.a1)), k_HalfPi);
        EXPECT_LE(MaxDifference(MatrixOf(result), mat), 1.001 * lack + 1e-15);
        EXPECT_LE(MaxDifference(result, angles), lack + 1e-14);
    }
}

} // namespace
