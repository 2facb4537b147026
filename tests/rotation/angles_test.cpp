#include "math/angles.h"

#include "math/matrix_mn.h"
#include "rotation/euler_checks.h"
#include "support/random.h"

using namespace test_support;

namespace
{

double const k_Limit = 0.70710679;

double InZeroToTwoPi(double angle)
{
    F3DBoundAngleInZeroToTwoPI(angle);
    return angle;
}

double InMinusPiToPi(double angle)
{
    F3DBoundAngleInMinusPIToPI(angle);
    return angle;
}

TEST(ArcSinCos, A_small_cosine_decides_by_the_arc_cosine)
{
    EXPECT_EQ(F3DArcSinCos(1, 0), std::acos(0.0));
    EXPECT_EQ(F3DArcSinCos(-1, 0), -std::acos(0.0));
    EXPECT_EQ(F3DArcSinCos(0, 0.5), std::acos(0.5)) << "a sine of zero counts as positive";
    EXPECT_EQ(F3DArcSinCos(-0.0, 0.5), std::acos(0.5));
    EXPECT_EQ(F3DArcSinCos(-1e-300, -0.5), -std::acos(-0.5));
    EXPECT_EQ(F3DArcSinCos(7, 0.5), std::acos(0.5)) << "the magnitude of the sine is not looked at";
    EXPECT_EQ(F3DArcSinCos(k_Nan<double>, 0.5), -std::acos(0.5));
}

// At the limit itself the arc cosine is still used: a sine that does not fit tells which function was.
TEST(ArcSinCos, The_limit_of_the_cosine_is_0_70710679_both_ways)
{
    double const beyond = std::nextafter(k_Limit, 1.0);
    EXPECT_EQ(F3DArcSinCos(0.1, k_Limit), std::acos(k_Limit));
    EXPECT_EQ(F3DArcSinCos(-0.1, k_Limit), -std::acos(k_Limit));
    EXPECT_EQ(F3DArcSinCos(0.1, beyond), std::asin(0.1));
    EXPECT_EQ(F3DArcSinCos(0.1, -k_Limit), std::acos(-k_Limit));
    EXPECT_EQ(F3DArcSinCos(0.1, -beyond), k_Pi - std::asin(0.1));
    // The square root of one half is below the limit.
    EXPECT_EQ(F3DArcSinCos(0.1, std::sqrt(0.5)), std::acos(std::sqrt(0.5)));
    EXPECT_EQ(F3DArcSinCos(0.1, -std::sqrt(0.5)), std::acos(-std::sqrt(0.5)));
}

TEST(ArcSinCos, A_great_cosine_decides_by_the_arc_sine)
{
    EXPECT_EQ(F3DArcSinCos(0, 1), 0);
    EXPECT_EQ(F3DArcSinCos(0.5, 0.9), std::asin(0.5));
    EXPECT_EQ(F3DArcSinCos(-0.5, 3), std::asin(-0.5));
    EXPECT_EQ(F3DArcSinCos(0.5, -0.9), k_Pi - std::asin(0.5));
    EXPECT_EQ(F3DArcSinCos(-0.5, -0.9), -k_Pi - std::asin(-0.5));
    EXPECT_EQ(F3DArcSinCos(0.25, k_Infinity<double>), std::asin(0.25));
    EXPECT_EQ(F3DArcSinCos(0.25, -k_Infinity<double>), k_Pi - std::asin(0.25));
}

TEST(ArcSinCos, Half_a_turn_is_negative)
{
    EXPECT_EQ(F3DArcSinCos(0, -1), -k_Pi);
    EXPECT_EQ(F3DArcSinCos(-0.0, -1), -k_Pi);
    EXPECT_EQ(F3DArcSinCos(1e-300, -1), k_Pi);
}

TEST(ArcSinCos, A_sine_that_has_reached_one_gives_a_quarter_turn)
{
    double const inside = std::nextafter(1.0, 0.0);
    for (double const cosine : {0.9, -0.9, 2.0})
    {
        for (double const sine : {1.0, 1.5, k_Infinity<double>})
        {
            EXPECT_EQ(F3DArcSinCos(sine, cosine), k_HalfPi);
            EXPECT_EQ(F3DArcSinCos(-sine, cosine), -k_HalfPi);
        }
        EXPECT_EQ(F3DArcSinCos(k_Nan<double>, cosine), -k_HalfPi);
    }
    EXPECT_EQ(F3DArcSinCos(inside, 0.9), std::asin(inside));
    EXPECT_EQ(F3DArcSinCos(-inside, 0.9), -std::asin(inside));
    EXPECT_EQ(F3DArcSinCos(inside, -0.9), k_Pi - std::asin(inside));
    EXPECT_EQ(F3DArcSinCos(-inside, -0.9), -k_Pi + std::asin(inside));
}

TEST(ArcSinCos, A_NaN_cosine_is_in_no_range)
{
    EXPECT_EQ(F3DArcSinCos(0.3, k_Nan<double>), k_HalfPi);
    EXPECT_EQ(F3DArcSinCos(-0.3, k_Nan<double>), k_HalfPi);
    EXPECT_EQ(F3DArcSinCos(-1, k_Nan<double>), -k_HalfPi);
}

TEST(ArcSinCos, It_gives_back_the_angle)
{
    Random random(51);
    for (int i = 0; i < 20000; ++i)
    {
        double const angle = random.Uniform(-k_Pi, k_Pi);
        EXPECT_NEAR(F3DArcSinCos(std::sin(angle), std::cos(angle)), angle, 1e-15);
    }
}

TEST(BoundAngleInZeroToTwoPI, Both_ends_stay)
{
    EXPECT_EQ(InZeroToTwoPi(0), 0);
    EXPECT_TRUE(std::signbit(InZeroToTwoPi(-0.0))) << "negative zero is not below zero";
    EXPECT_EQ(InZeroToTwoPi(k_TwoPi), k_TwoPi);
    EXPECT_EQ(InZeroToTwoPi(3), 3);
}

TEST(BoundAngleInZeroToTwoPI, Above_whole_turns_go_and_below_they_come)
{
    EXPECT_EQ(InZeroToTwoPi(2 * k_TwoPi), 0);
    EXPECT_EQ(InZeroToTwoPi(std::nextafter(k_TwoPi, 7.0)), std::nextafter(k_TwoPi, 7.0) - k_TwoPi);
    EXPECT_EQ(InZeroToTwoPi(7), std::fmod(7, k_TwoPi));
    EXPECT_EQ(InZeroToTwoPi(-k_TwoPi), k_TwoPi);
    EXPECT_EQ(InZeroToTwoPi(-2 * k_TwoPi), k_TwoPi);
    EXPECT_EQ(InZeroToTwoPi(-1), k_TwoPi - 1);
    EXPECT_EQ(InZeroToTwoPi(-1e-300), k_TwoPi);
    EXPECT_EQ(InZeroToTwoPi(-7), k_TwoPi - std::fmod(7, k_TwoPi));
    EXPECT_EQ(InZeroToTwoPi(1e300), std::fmod(1e300, k_TwoPi));
}

TEST(BoundAngleInZeroToTwoPI, What_is_no_number_ends_as_zero)
{
    EXPECT_EQ(InZeroToTwoPi(k_Nan<double>), 0);
    EXPECT_EQ(InZeroToTwoPi(k_Infinity<double>), 0);
    EXPECT_EQ(InZeroToTwoPi(-k_Infinity<double>), 0);
}

TEST(BoundAngleInMinusPIToPI, Both_ends_stay)
{
    EXPECT_EQ(InMinusPiToPi(k_Pi), k_Pi);
    EXPECT_EQ(InMinusPiToPi(-k_Pi), -k_Pi);
    EXPECT_EQ(InMinusPiToPi(0), 0);
    EXPECT_TRUE(std::signbit(InMinusPiToPi(-0.0)));
}

TEST(BoundAngleInMinusPIToPI, Beyond_them_whole_turns_are_taken_off)
{
    EXPECT_EQ(InMinusPiToPi(k_TwoPi), 0);
    EXPECT_EQ(InMinusPiToPi(-k_TwoPi), 0);
    EXPECT_EQ(InMinusPiToPi(4), std::fmod(4 + k_Pi, k_TwoPi) - k_Pi);
    EXPECT_EQ(InMinusPiToPi(-4), k_Pi - std::fmod(-k_Pi + 4, k_TwoPi));
    EXPECT_EQ(InMinusPiToPi(3 * k_Pi), std::fmod(4 * k_Pi, k_TwoPi) - k_Pi);
    EXPECT_EQ(InMinusPiToPi(std::nextafter(-k_Pi, -4.0)),
              k_Pi - std::fmod(-k_Pi - std::nextafter(-k_Pi, -4.0), k_TwoPi));
    EXPECT_GT(InMinusPiToPi(std::nextafter(-k_Pi, -4.0)), 3);
    EXPECT_LT(InMinusPiToPi(std::nextafter(k_Pi, 4.0)), -3);
}

TEST(BoundAngleInMinusPIToPI, What_is_no_number_ends_at_the_lower_end)
{
    EXPECT_EQ(InMinusPiToPi(k_Nan<double>), -k_Pi);
    EXPECT_EQ(InMinusPiToPi(k_Infinity<double>), -k_Pi);
    EXPECT_EQ(InMinusPiToPi(-k_Infinity<double>), -k_Pi);
}

TEST(BoundAngle, Bounding_changes_an_angle_by_whole_turns_into_the_range)
{
    Random random(52);
    for (int i = 0; i < 20000; ++i)
    {
        double const angle = random.Uniform(-100.0, 100.0);
        double const positive = InZeroToTwoPi(angle);
        double const centred = InMinusPiToPi(angle);
        EXPECT_TRUE(0 <= positive && positive <= k_TwoPi);
        EXPECT_TRUE(-k_Pi <= centred && centred <= k_Pi);
        EXPECT_NEAR(std::remainder(positive - angle, k_TwoPi), 0, 1e-13);
        EXPECT_NEAR(std::remainder(centred - angle, k_TwoPi), 0, 1e-13);
    }
}

TEST(BoundAngleInMinus2PITo2PI, The_sign_is_kept)
{
    EXPECT_EQ(F3DBoundAngleInMinus2PITo2PI(7), std::fmod(7, k_TwoPi));
    EXPECT_EQ(F3DBoundAngleInMinus2PITo2PI(-7), -std::fmod(7, k_TwoPi));
    EXPECT_EQ(F3DBoundAngleInMinus2PITo2PI(k_TwoPi), 0);
    EXPECT_TRUE(std::signbit(F3DBoundAngleInMinus2PITo2PI(-k_TwoPi)));
    EXPECT_EQ(F3DBoundAngleInMinus2PITo2PI(-6), -6);
    EXPECT_TRUE(std::isnan(F3DBoundAngleInMinus2PITo2PI(k_Infinity<double>)));
    EXPECT_TRUE(std::isnan(F3DBoundAngleInMinus2PITo2PI(k_Nan<double>)));
}

TEST(GetUnboundedAngle, The_whole_turns_of_the_reference_are_added)
{
    EXPECT_EQ(F3DGetUnboundedAngle(0.5, 0), 0.5);
    EXPECT_EQ(F3DGetUnboundedAngle(0.5, 3), 0.5);
    EXPECT_EQ(F3DGetUnboundedAngle(0.5, 10), 2 * k_TwoPi + 0.5) << "a rest above half a turn counts as one more";
    EXPECT_EQ(F3DGetUnboundedAngle(0.5, 7), k_TwoPi + 0.5);
    EXPECT_EQ(F3DGetUnboundedAngle(0.5, -7), -k_TwoPi + 0.5);
    EXPECT_EQ(F3DGetUnboundedAngle(0.5, -10), -2 * k_TwoPi + 0.5);
    EXPECT_EQ(F3DGetUnboundedAngle(-9.0, 4 * k_TwoPi + 1), 4 * k_TwoPi - 9.0);
}

TEST(GetUnboundedAngle, Half_a_turn_is_no_whole_one)
{
    EXPECT_EQ(F3DGetUnboundedAngle(1, k_Pi), 1);
    EXPECT_EQ(F3DGetUnboundedAngle(1, std::nextafter(k_Pi, 4.0)), k_TwoPi + 1);
    EXPECT_EQ(F3DGetUnboundedAngle(1, -k_Pi), 1);
    EXPECT_EQ(F3DGetUnboundedAngle(1, std::nextafter(-k_Pi, -4.0)), -k_TwoPi + 1);
}

TEST(GetUnboundedAngle, No_turns_have_no_sign)
{
    for (double const reference : {0.0, -0.0, 1.0, -1.0, -k_Pi, std::nan("")})
    {
        EXPECT_FALSE(std::signbit(F3DGetUnboundedAngle(-0.0, reference))) << reference;
    }
}

TEST(GetUnboundedAngle, Beyond_32_bits_the_count_stands_still)
{
    double const most = 2147483647.0 * k_TwoPi;
    double const least = -2147483648.0 * k_TwoPi;
    for (double const reference : {1e11, 1.01e11, 1.02e11, 1e20, 1e300, k_Infinity<double>})
    {
        EXPECT_EQ(F3DGetUnboundedAngle(1, reference), most + 1) << reference;
        EXPECT_EQ(F3DGetUnboundedAngle(1, -reference), least + 1) << reference;
    }
    // The last turn within the count, with a rest above and below half a turn.
    EXPECT_EQ(F3DGetUnboundedAngle(1, most + 1), most + 1);
    EXPECT_EQ(F3DGetUnboundedAngle(1, most + 4), most + 1);
    EXPECT_EQ(F3DGetUnboundedAngle(1, most - 3), most + 1);
    EXPECT_EQ(F3DGetUnboundedAngle(1, most - 4), 2147483646.0 * k_TwoPi + 1);
    EXPECT_EQ(F3DGetUnboundedAngle(1, least - 4), least + 1);
    EXPECT_EQ(F3DGetUnboundedAngle(1, k_Nan<double>), 1);
    EXPECT_TRUE(std::isnan(F3DGetUnboundedAngle(k_Nan<double>, 0)));
}

// With the arc outside [b, c] left of b the nearer end is decided by plain distances.
TEST(GetClosestAngle, With_the_first_not_below_the_second_plain_distance_decides)
{
    EXPECT_EQ(F3DGetClosestAngle(2.5, 3, 1), 3);
    EXPECT_EQ(F3DGetClosestAngle(1.5, 3, 1), 1);
    EXPECT_EQ(F3DGetClosestAngle(2, 3, 1), 3) << "a tie is the first's";
    EXPECT_EQ(F3DGetClosestAngle(6.2, 3, 0.1), 3) << "no wrap, though 0.1 is nearer on the circle";
    EXPECT_EQ(F3DGetClosestAngle(5, 2, 2), 2);
}

TEST(GetClosestAngle, With_the_first_below_the_second_the_midpoint_of_the_outer_arc_decides)
{
    // [1, 2]: the outer arc runs from 2 through a whole turn to 1; its midpoint is 1.5 + pi.
    double const m = ((k_TwoPi - 2) + 1) * 0.5 + 2;
    EXPECT_EQ(F3DGetClosestAngle(3, 1, 2), 2);
    EXPECT_EQ(F3DGetClosestAngle(std::nextafter(m, 0.0), 1, 2), 2);
    EXPECT_EQ(F3DGetClosestAngle(m, 1, 2), 1);
    EXPECT_EQ(F3DGetClosestAngle(6, 1, 2), 1);
    EXPECT_EQ(F3DGetClosestAngle(k_TwoPi, 1, 2), 1);
    // Below the second, even within the range: the first, as long as the angle is above 0.
    EXPECT_EQ(F3DGetClosestAngle(1.9, 1, 2), 1);
    EXPECT_EQ(F3DGetClosestAngle(2, 1, 2), 1);
    EXPECT_EQ(F3DGetClosestAngle(0.5, 1, 2), 1);
    EXPECT_EQ(F3DGetClosestAngle(0, 1, 2), 2) << "an angle of exactly zero is not above it";
}

TEST(GetClosestAngle, The_midpoint_may_lie_beyond_the_whole_turn)
{
    // [4, 5]: the midpoint 4.5 + pi comes round to 4.5 - pi.
    double const m = InZeroToTwoPi(((k_TwoPi - 5) + 4) * 0.5 + 5);
    ASSERT_LT(m, 4);
    EXPECT_EQ(F3DGetClosestAngle(6, 4, 5), 5) << "above the second, and the midpoint is not";
    EXPECT_EQ(F3DGetClosestAngle(k_TwoPi, 4, 5), 4) << "a whole turn is the exception";
    EXPECT_EQ(F3DGetClosestAngle(std::nextafter(m, 6.0), 4, 5), 4);
    EXPECT_EQ(F3DGetClosestAngle(m, 4, 5), 5) << "at the midpoint itself the second, this side of it";
    EXPECT_EQ(F3DGetClosestAngle(0.5, 4, 5), 5);
    EXPECT_EQ(F3DGetClosestAngle(0, 4, 5), 5);
}

TEST(GetClosestAngle, Of_the_two_ends_of_a_whole_turn_the_upper_one_is_taken)
{
    // The outer arc is empty: its midpoint is the upper end, above which no angle lies.
    for (double const angle : {0.0, 1e-300, 1.0, k_Pi, 6.0, k_TwoPi})
    {
        EXPECT_EQ(F3DGetClosestAngle(angle, 0, k_TwoPi), k_TwoPi) << angle;
    }
}

TEST(GetClosestAngle, Angles_are_bounded_first_and_so_is_the_result)
{
    EXPECT_EQ(F3DGetClosestAngle(2.5, 3 + 2 * k_TwoPi, 1), InZeroToTwoPi(3 + 2 * k_TwoPi));
    EXPECT_EQ(F3DGetClosestAngle(2.5 - k_TwoPi, 3, 1), 3);
    EXPECT_EQ(F3DGetClosestAngle(0.4, -1, 1), 1) << "-1 becomes 2 pi - 1, which is not below 1";
    EXPECT_EQ(F3DGetClosestAngle(6, -1, 1), k_TwoPi - 1);
    EXPECT_EQ(F3DGetClosestAngle(k_Nan<double>, 3, 1), 1) << "a NaN counts as zero";
    EXPECT_EQ(F3DGetClosestAngle(1, k_Nan<double>, k_Nan<double>), 0);
}

class BoundAnglesInMatrix : public testing::Test
{
protected:
    BoundAnglesInMatrix()
    {
        m_Matrix.SetDimensions(4, 2);
        for (int r = 0; r < 4; ++r)
        {
            m_Matrix.Set(r, 0, 10.0 * (r % 2 == 0 ? 1 : -1));
            m_Matrix.Set(r, 1, 20);
        }
    }

    /// Exactly the rows from first to last are bounded, in column 0.
    void ExpectBounded(int first, int last) const
    {
        for (int r = 0; r < 4; ++r)
        {
            double const before = 10.0 * (r % 2 == 0 ? 1 : -1);
            bool const bounded = first <= r && r <= last;
            EXPECT_EQ(m_Matrix.Get(r, 0), bounded ? std::fmod(before, k_TwoPi) : before) << r;
            EXPECT_EQ(m_Matrix.Get(r, 1), 20) << r;
        }
    }

    C3DMatrixMN m_Matrix;
};

TEST_F(BoundAnglesInMatrix, Both_rows_are_included)
{
    F3DBoundAnglesInMatrixInMinus2PITo2PI(m_Matrix, 1, 2);
    ExpectBounded(1, 2);
}

TEST_F(BoundAnglesInMatrix, One_row_is_a_range)
{
    F3DBoundAnglesInMatrixInMinus2PITo2PI(m_Matrix, 3, 3);
    ExpectBounded(3, 3);
}

TEST_F(BoundAnglesInMatrix, A_negative_first_is_the_first_row)
{
    F3DBoundAnglesInMatrixInMinus2PITo2PI(m_Matrix, -5, 0);
    ExpectBounded(0, 0);
}

TEST_F(BoundAnglesInMatrix, A_negative_last_is_the_last_row)
{
    F3DBoundAnglesInMatrixInMinus2PITo2PI(m_Matrix, 2, -1);
    ExpectBounded(2, 3);
}

TEST_F(BoundAnglesInMatrix, Both_negative_are_all_rows)
{
    F3DBoundAnglesInMatrixInMinus2PITo2PI(m_Matrix, -1, -1);
    ExpectBounded(0, 3);
}

TEST_F(BoundAnglesInMatrix, A_last_row_beyond_the_matrix_is_its_last)
{
    F3DBoundAnglesInMatrixInMinus2PITo2PI(m_Matrix, 2, 1000);
    ExpectBounded(2, 3);
}

TEST_F(BoundAnglesInMatrix, An_empty_range_or_matrix_changes_nothing)
{
    F3DBoundAnglesInMatrixInMinus2PITo2PI(m_Matrix, 3, 1);
    ExpectBounded(9, 9);
    F3DBoundAnglesInMatrixInMinus2PITo2PI(m_Matrix, 1000, -1);
    ExpectBounded(9, 9);
    C3DMatrixMN empty;
    F3DBoundAnglesInMatrixInMinus2PITo2PI(empty, -1, -1);
    EXPECT_EQ(empty.GetNbRow(), 0);
}

} // namespace
