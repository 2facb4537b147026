/// What users of other libraries have complained of, through matrices.

#include "math/rotation_conversions.h"

#include "rotation/euler_checks.h"

#include <map>
#include <queue>

using namespace test_support;

namespace
{

double const k_Degree = k_Pi / 180;

OrderRow const & RowOf(tagE3DROTORDER order)
{
    return k_OrderTable[static_cast<std::size_t>(order)];
}

TEST(Complaint, A_sweep_through_the_pole_comes_back_as_it_went_in)
{
    OrderRow const & row = RowOf(E3DROTORDER_XYZ);
    Vector shown(0, 0, 0);
    for (double const y : {80.0, 90.0, 100.0})
    {
        Vector const source = Degrees(0, y, 0);
        shown = Extract(row, Matrix(row, source), shown);
        EXPECT_LE(MaxDifference(shown, source), 1e-13) << y;
    }
    // The same rotation from the other side of the pole is the other solution.
    Vector const other = Extract(row, Matrix(row, Degrees(0, 100, 0)), Degrees(170, 80, 170));
    EXPECT_LE(MaxDifference(other, Degrees(180, 80, 180)), 1e-13);
}

TEST(Complaint, A_sweep_through_either_pole_comes_back_in_every_order_and_finely)
{
    for (OrderRow const & row : k_OrderTable)
    {
        Vector shown(0, 0, 0);
        for (int degree = 0; degree <= 1080; ++degree)
        {
            Vector const source = Acting(row, 0, degree * k_Degree, 0);
            shown = Extract(row, Matrix(row, source), shown);
            ASSERT_LE(MaxDifference(shown, source), 2e-12) << row << ' ' << degree;
        }
    }
}

TEST(Complaint, Minus_90_and_45_degrees_in_zyx_keep_their_sign)
{
    OrderRow const & row = RowOf(E3DROTORDER_ZYX);
    Vector const source = Degrees(0, -90, 45);
    RotMat const mat = Matrix(row, source);
    Vector plain;
    F3DMatToEuler(mat, plain, E3DROTORDER_ZYX);
    EXPECT_EQ(plain.Y, -k_HalfPi);
    EXPECT_LE(MaxDifference(Matrix(row, plain), mat), 1e-15);
    // Z - X is 45 degrees, half for each where there is no target; with the target it is all of Z.
    EXPECT_LE(MaxDifference(plain, Degrees(-22.5, -90, 22.5)), 1e-15);
    EXPECT_LE(MaxDifference(Extract(row, mat, source), source), 1e-15);
}

TEST(Complaint, Two_turns_about_one_axis_over_40_frames_come_back_as_720_degrees)
{
    for (OrderRow const & row : k_OrderTable)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            for (double const sign : {-1.0, 1.0})
            {
                Vector shown(0, 0, 0);
                Vector source(0, 0, 0);
                for (int frame = 0; frame <= 40; ++frame)
                {
                    source.Set(axis, sign * frame * 18 * k_Degree);
                    shown = Extract(row, Matrix(row, source), shown);
                    ASSERT_LE(MaxDifference(shown, source), 1e-13) << row << " axis " << axis << " frame " << frame;
                }
                EXPECT_NEAR(shown.Get(axis), sign * 720 * k_Degree, 1e-13);
            }
        }
    }
}

TEST(Complaint, A_quarter_turn_in_all_three_angles_at_once_never_moves_one_by_more)
{
    for (OrderRow const & row : k_OrderTable)
    {
        Vector shown(0, 0, 0);
        for (int step = 1; step <= 40; ++step)
        {
            RotMat const mat = Matrix(row, Vector(step * k_HalfPi, step * k_HalfPi, step * k_HalfPi));
            Vector const next = Extract(row, mat, shown);
            EXPECT_LE(MaxDifference(next, shown), k_HalfPi + 1e-12) << row << ' ' << step;
            EXPECT_LE(MaxDifference(Matrix(row, next), mat), 1e-12) << row << ' ' << step;
            shown = next;
        }
    }
}

/// What an editor shows: the angles by which it turned the object, in quarter turns, and those extracted since.
struct Shown
{
    std::array<int, 3> source;
    Vector angles;

    /// The angles lie on multiples of 22.5 degrees; whole turns do not tell states apart.
    std::array<int, 6> Key() const
    {
        std::array<int, 6> key{};
        for (int axis = 0; axis < 3; ++axis)
        {
            auto const i = static_cast<std::size_t>(axis);
            key[i] = source[i];
            key[i + 3] = static_cast<int>(std::lround(angles.Get(axis) / (22.5 * k_Degree))) & 15;
        }
        return key;
    }
};

/// Where the matrix determines the sum of the outer angles, and that is none: there the shown angles are mirrored.
bool IsMirrored(OrderRow const & row, RotMat const & mat)
{
    double const sine = row.sign * mat.Get(row.a0, row.a2);
    return std::abs(sine) > 0.9 && row.even == (sine < 0) && mat.Get(row.cosineRow, row.cosineColumn) > 0.9;
}

struct QuarterTurns
{
    std::size_t states = 0;
    int steps = 0;
    int mirrored = 0;       ///< Steps into the case above.
    int otherRotation = 0;  ///< Those of them that show another rotation.
    int jumps = 0;          ///< Those of them that move an angle by more than a quarter turn.
    double farthest = 0;    ///< The greatest move of an angle in all other steps.
    double worstMatrix = 0; ///< And what their rotation is off.
};

void Step(OrderRow const & row, Shown const & before, Shown & after, QuarterTurns & result)
{
    RotMat const mat =
        Matrix(row, Vector(after.source[0] * k_HalfPi, after.source[1] * k_HalfPi, after.source[2] * k_HalfPi));
    after.angles = Extract(row, mat, before.angles);
    double const moved = MaxDifference(after.angles, before.angles);
    double const off = MaxDifference(Matrix(row, after.angles), mat);
    ++result.steps;
    if (IsMirrored(row, mat))
    {
        ++result.mirrored;
        result.otherRotation += off > 1e-9 ? 1 : 0;
        result.jumps += moved > k_HalfPi + 1e-9 ? 1 : 0;
        return;
    }
    result.farthest = std::max(result.farthest, moved);
    result.worstMatrix = std::max(result.worstMatrix, off);
}

/// Follows every sequence of quarter turns of one angle from zero, with the last values shown as the target, as long as
/// it meets no mirrored case.
QuarterTurns FollowAll(OrderRow const & row)
{
    QuarterTurns result;
    std::map<std::array<int, 6>, bool> seen;
    std::queue<Shown> open;
    open.push({{0, 0, 0}, Vector(0, 0, 0)});
    seen[open.front().Key()] = true;
    while (!open.empty())
    {
        Shown const before = open.front();
        open.pop();
        for (int move = 0; move < 6; ++move)
        {
            Shown after = before;
            int & turned = after.source[static_cast<std::size_t>(move / 2)];
            turned = (turned + (move % 2 == 0 ? 1 : 3)) & 3;
            int const mirrored = result.mirrored;
            Step(row, before, after, result);
            if (result.mirrored == mirrored && !std::exchange(seen[after.Key()], true))
            {
                open.push(after);
            }
        }
    }
    result.states = seen.size();
    return result;
}

// The exception is stated with F3DMatToEulerUsingTarget: at the pole with a sum, where the sum is zero.
TEST(Complaint, Quarter_turns_of_one_angle_at_a_time_never_jump_but_for_a_sum_of_zero_at_the_pole)
{
    for (OrderRow const & row : k_OrderTable)
    {
        QuarterTurns const all = FollowAll(row);
        EXPECT_EQ(all.states, 288U) << row;
        EXPECT_EQ(all.steps, 1728) << row;
        EXPECT_LE(all.farthest, k_HalfPi + 1e-9) << row;
        EXPECT_LE(all.worstMatrix, 1e-9) << row;
        EXPECT_EQ(all.mirrored, 144) << row;
        EXPECT_EQ(all.otherRotation, 128) << row;
        EXPECT_EQ(all.jumps, 96) << row;
    }
}

// Typed into an editor and shown again: the value itself is the target.
TEST(Complaint, Multiples_of_90_degrees_are_shown_as_they_were_set_but_for_a_sum_of_zero_at_the_pole)
{
    for (OrderRow const & row : k_OrderTable)
    {
        int changed = 0;
        for (int i = 0; i < 9 * 9 * 9; ++i)
        {
            int const x = i % 9 - 4;
            int const y = i / 9 % 9 - 4;
            int const z = i / 81 - 4;
            Vector const set(x * k_HalfPi, y * k_HalfPi, z * k_HalfPi);
            RotMat const mat = Matrix(row, set);
            Vector const shown = Extract(row, mat, set);
            EXPECT_LE(MaxDifference(Matrix(row, shown), mat), 1e-12) << row;
            if (MaxDifference(shown, set) > 1e-12)
            {
                EXPECT_TRUE(IsMirrored(row, mat)) << row << ' ' << set;
                // A quarter turn and its opposite are shown as the same twice.
                EXPECT_NEAR(std::abs(Wrapped(set.Get(row.a0))), k_HalfPi, 1e-12);
                ++changed;
            }
        }
        EXPECT_EQ(changed, 16) << row;
    }
}

} // namespace
